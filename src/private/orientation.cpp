// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "orientation_p.h"

#include <QImage>
#include <QTransform>

#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
#include <QColorSpace>
#endif

namespace OrvaUtilsPrivate {

namespace {

QImage rotated(const QImage& image, int degrees)
{
    return image.transformed(QTransform().rotate(degrees), Qt::SmoothTransformation);
}

QImage transposed(const QImage& image, int orientation)
{
    switch (orientation) {
    case 2:
        return image.mirrored(true, false);
    case 3:
        return rotated(image, 180);
    case 4:
        return image.mirrored(false, true);
    case 5:
        return rotated(image, 90).mirrored(true, false);
    case 6:
        return rotated(image, 90);
    case 7:
        return rotated(image, 90).mirrored(false, true);
    case 8:
        return rotated(image, 270);
    default:
        return image;
    }
}

} // namespace

bool isSideways(int orientation)
{
    return orientation >= 5 && orientation <= 8;
}

QImage upright(const QImage& image, int orientation)
{
    QImage result = transposed(image, orientation);
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    // QImage::transformed() drops it.
    if (result.colorSpace() != image.colorSpace())
        result.setColorSpace(image.colorSpace());
#endif
    return result;
}

int orientationOf(QImageIOHandler::Transformations transformation)
{
    switch (int(transformation)) {
    case QImageIOHandler::TransformationMirror:
        return 2;
    case QImageIOHandler::TransformationRotate180:
        return 3;
    case QImageIOHandler::TransformationFlip:
        return 4;
    case QImageIOHandler::TransformationFlipAndRotate90:
        return 5;
    case QImageIOHandler::TransformationRotate90:
        return 6;
    case QImageIOHandler::TransformationMirrorAndRotate90:
        return 7;
    case QImageIOHandler::TransformationRotate270:
        return 8;
    default:
        return 1;
    }
}

} // namespace OrvaUtilsPrivate

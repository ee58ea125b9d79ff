// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "orientation_p.h"

#include <QImage>
#include <QTransform>

#include <algorithm>
#include <iterator>

#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
#include <QColorSpace>
#endif

namespace OrvaUtilsPrivate {

namespace {

/// What turns a picture upright: it is first rotated clockwise, then mirrored.
struct Turn
{
    int degrees;
    bool swapsLeftAndRight;
    bool swapsTopAndBottom;
    QImageIOHandler::Transformation transformation; ///< Qt's name for the same
};

using Handler = QImageIOHandler;
const Turn turns[] = {
    {0, false, false, Handler::TransformationNone}, // 1
    {0, true, false, Handler::TransformationMirror},
    {180, false, false, Handler::TransformationRotate180},
    {0, false, true, Handler::TransformationFlip},
    {90, true, false, Handler::TransformationFlipAndRotate90}, // transposed
    {90, false, false, Handler::TransformationRotate90},
    {90, false, true, Handler::TransformationMirrorAndRotate90}, // along the other diagonal
    {270, false, false, Handler::TransformationRotate270} // 8
};

} // namespace

bool isSideways(int orientation)
{
    return orientation >= 5 && orientation <= 8;
}

QImage upright(const QImage& image, int orientation)
{
    Q_ASSERT(orientation >= 1 && orientation <= 8);
    const Turn& turn = turns[orientation - 1];
    QImage result = turn.degrees == 0
        ? image
        : image.transformed(QTransform().rotate(turn.degrees), Qt::SmoothTransformation);
    if (turn.swapsLeftAndRight || turn.swapsTopAndBottom)
        result = result.mirrored(turn.swapsLeftAndRight, turn.swapsTopAndBottom);
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    // QImage::transformed() drops it.
    if (result.colorSpace() != image.colorSpace())
        result.setColorSpace(image.colorSpace());
#endif
    return result;
}

int orientationOf(QImageIOHandler::Transformations transformation)
{
    const auto found = std::find_if(std::begin(turns), std::end(turns), [&](const Turn& turn) {
        return int(turn.transformation) == int(transformation);
    });
    return found == std::end(turns) ? 1 : int(found - std::begin(turns)) + 1;
}

} // namespace OrvaUtilsPrivate

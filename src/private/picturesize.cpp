// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "picturesize_p.h"

#include <limits>

namespace OrvaUtilsPrivate {

namespace {

bool fitsInMemory(double width, double height, int bytesPerPixel)
{
    return width * height * bytesPerPixel <= std::numeric_limits<int>::max();
}

} // namespace

bool fitsInMemory(const QSize& size, int bytesPerPixel)
{
    return fitsInMemory(double(size.width()), double(size.height()), bytesPerPixel);
}

bool exceeds(const QSize& size, const QSize& maximum)
{
    return size.width() > maximum.width() || size.height() > maximum.height();
}

QSize doubled(const QSize& size)
{
    const int most = std::numeric_limits<int>::max() / 2;
    return QSize(qMin(size.width(), most) * 2, qMin(size.height(), most) * 2);
}

QSize scaledSize(const QSize& picture, const QSize& target, Qt::AspectRatioMode mode)
{
    if (mode == Qt::KeepAspectRatioByExpanding) {
        // The side that exceeds the target may also exceed the range of int.
        const double factor = qMax(double(target.width()) / picture.width(),
                                   double(target.height()) / picture.height());
        if (!fitsInMemory(factor * picture.width(), factor * picture.height(), 4))
            return QSize();
    }
    const QSize size = picture.scaled(target, mode).expandedTo(QSize(1, 1));
    return fitsInMemory(size) ? size : QSize();
}

} // namespace OrvaUtilsPrivate

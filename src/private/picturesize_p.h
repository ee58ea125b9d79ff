// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Sizes of pictures: what fits into memory, and what scaling gives.

#ifndef ORVAUTILS_PICTURESIZE_P_H
#define ORVAUTILS_PICTURESIZE_P_H

#include <QSize>

namespace OrvaUtilsPrivate {

/// Whether a picture of that size may be held in memory. 2 GiB is what an image can have in the
/// oldest Qt that is supported; newer ones would follow a forged header much further.
bool fitsInMemory(const QSize& size, int bytesPerPixel = 4);

/// Whether \a size is wider or taller than \a maximum.
bool exceeds(const QSize& size, const QSize& maximum);

/// Both sides times two, or as much as fits into the numbers.
QSize doubled(const QSize& size);

/// The size that QImage::scaled() gives to \a picture, or an invalid one where the result could
/// not be held in memory. No side is below 1.
QSize scaledSize(const QSize& picture, const QSize& target, Qt::AspectRatioMode mode);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PICTURESIZE_P_H

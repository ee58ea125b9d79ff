// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Sizes of pictures: what fits into memory, and what scaling results in.

#ifndef ORVAUTILS_PICTURESIZE_P_H
#define ORVAUTILS_PICTURESIZE_P_H

#include <QSize>

namespace OrvaUtilsPrivate {

/// Whether a picture of that size may be kept in memory. 2 GiB is the limit for an image in the
/// oldest supported Qt; newer ones would trust a forged header much further.
bool fitsInMemory(const QSize& size, int bytesPerPixel = 4);

/// Whether \a size is wider or taller than \a maximum.
bool exceeds(const QSize& size, const QSize& maximum);

/// Both sides times two, or as much as fits into an int.
QSize doubled(const QSize& size);

/// The size that QImage::scaled() gives to \a picture, or an invalid one if the result would not
/// fit into memory. No side is below 1.
QSize scaledSize(const QSize& picture, const QSize& target, Qt::AspectRatioMode mode);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PICTURESIZE_P_H

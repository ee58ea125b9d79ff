// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The eight orientations of EXIF, and how a picture is turned upright.

#ifndef ORVAUTILS_ORIENTATION_P_H
#define ORVAUTILS_ORIENTATION_P_H

#include <QImageIOHandler>

namespace OrvaUtilsPrivate {

/// Whether a picture of that EXIF orientation lies on its side: turning it upright swaps width and
/// height.
bool isSideways(int orientation);

/// \a image as it looks upright, with its colour profile. \a orientation is the EXIF orientation,
/// from 1 (already upright) to 8.
QImage upright(const QImage& image, int orientation);

/// The EXIF orientation, 1 to 8, that \a transformation undoes.
int orientationOf(QImageIOHandler::Transformations transformation);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_ORIENTATION_P_H

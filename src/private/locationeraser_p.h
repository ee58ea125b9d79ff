// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Removes the place where a photograph was taken from a JPEG file, or from whatever else holds EXIF
// and XMP.

#ifndef ORVAUTILS_LOCATIONERASER_P_H
#define ORVAUTILS_LOCATIONERASER_P_H

#include <QByteArray>

namespace OrvaUtilsPrivate {

/// Overwrites the GPS values of every EXIF block and XMP packet in a file, and the location of a
/// film behind the picture, wherever they stand. Nothing else changes, and the length stays. False
/// if a block is so damaged that it would have to become longer; \a file is unspecified then.
bool eraseLocation(QByteArray* file);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_LOCATIONERASER_P_H

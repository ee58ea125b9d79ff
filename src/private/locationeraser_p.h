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
/// if a block is so damaged that it would have to become longer or would still tell a location, and
/// if a packet cannot be read; \a file is unspecified then.
bool eraseLocation(QByteArray* file);

/// The same for an XMP packet. False, with \a packet unspecified, where it is in another encoding
/// than UTF-8, which XMP in a picture never is, or far from XML: nobody knows what it tells.
bool eraseLocationInXmp(QByteArray* packet);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_LOCATIONERASER_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Removes the location where a photograph was taken from a JPEG file, or from other data that
// contain EXIF and XMP.

#ifndef ORVAUTILS_LOCATIONERASER_P_H
#define ORVAUTILS_LOCATIONERASER_P_H

#include <QByteArray>

namespace OrvaUtilsPrivate {

/// Overwrites the GPS values of every EXIF block and XMP packet in a file, and the location of a
/// video after the picture, wherever they are. Nothing else changes, and the length stays the same.
/// Returns false if a block is so damaged that it would have to become longer or would still reveal
/// a location, or if a packet cannot be read; \a file is unspecified then.
bool eraseLocation(QByteArray* file);

/// The same for an XMP packet. Returns false, with \a packet unspecified, if it is not encoded in
/// UTF-8, as XMP in a picture always is, or if it is so far from XML that its contents are unknown.
bool eraseLocationInXmp(QByteArray* packet);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_LOCATIONERASER_P_H

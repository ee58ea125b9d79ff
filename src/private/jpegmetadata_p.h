// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Removes metadata from a JPEG file: where, by whom and when the picture was taken.

#ifndef ORVAUTILS_JPEGMETADATA_P_H
#define ORVAUTILS_JPEGMETADATA_P_H

#include <QByteArray>

namespace OrvaUtilsPrivate {

/// Overwrites the GPS values of every EXIF block and XMP packet in a file, and the location of a
/// film behind the picture, wherever they stand. Nothing else changes, and the length stays. False
/// if a block is so damaged that it would have to become longer; \a file is unspecified then.
bool eraseLocation(QByteArray* file);

/// The JPEG without EXIF, XMP, IPTC, comments, other application data and what stands behind the
/// picture. The JFIF header, a colour profile and the coded picture with its tables stay. \a exif,
/// a whole segment or nothing, is put where an EXIF segment belongs.
QByteArray withoutMetadata(const QByteArray& file, const QByteArray& exif);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_JPEGMETADATA_P_H

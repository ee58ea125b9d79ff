// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ExifUtils: what most callers want of a photograph's EXIF block, its rotation.

#ifndef ORVAUTILS_EXIFUTILS_H
#define ORVAUTILS_EXIFUTILS_H

#include "orvautils_export.h"

class QExifImageHeader;
class QIODevice;
class QString;

/// Shortcuts on QExifImageHeader.
class ORVAUTILS_EXPORT ExifUtils
{
public:
    ExifUtils() = delete;

    /// The angle in degrees, clockwise, by which the JPEG file \a fileName has to be turned to
    /// stand upright: 180 for the EXIF orientation 3, 90 for 6, -90 for 8. 0 for every other
    /// orientation (the mirrored ones 2, 4, 5 and 7 deliberately among them), without an
    /// orientation, for one that is not a single Short or Byte, and for a file that cannot be read.
    ///
    /// \code
    /// const QImage upright =
    /// image.transformed(QTransform().rotate(ExifUtils::imageExifRotation(path))); \endcode
    static int imageExifRotation(const QString& fileName);

    /// As above, for the JPEG at the current position of \a device, which must be open for reading,
    /// may be sequential, and stays open. 0 for null.
    static int imageExifRotation(QIODevice* device);

    /// As above, for a header that is loaded already.
    static int imageExifRotation(const QExifImageHeader& header);

    /// Makes the JPEG file \a fileName say that it is not rotated: its Orientation tag becomes 0,
    /// as a SignedLong (not the Short that EXIF asks for; deliberate). The rest of the file is
    /// kept, and a process that is killed leaves the old or the new file, as
    /// QExifImageHeader::saveToJpeg() tells. False when the file cannot be opened, has no EXIF
    /// block that QExifImageHeader::loadFromJpeg() reads, or cannot be written; it is untouched
    /// then.
    static bool clearRotation(const QString& fileName);
};

#endif // ORVAUTILS_EXIFUTILS_H

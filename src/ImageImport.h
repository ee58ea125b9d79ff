// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ImageImport: what is wanted of a picture that is imported.

#ifndef ORVAUTILS_IMAGEIMPORT_H
#define ORVAUTILS_IMAGEIMPORT_H

#include <QByteArray>
#include <QSize>

/// The wishes of ImageUtils::importImage() and ImageImporter. A plain value: change the fields that
/// matter.
///
/// \code
/// ImageImport how;
/// how.maxSize = QSize(1600, 1600);
/// how.metadata = ImageImport::AllButLocation;
/// const ImageImportResult result = ImageUtils::importImage(photo, site + "/boat.jpg", how);
/// \endcode
struct ImageImport
{
    /// What becomes of a colour profile.
    enum ColorProfile {
        /// It stays: in a JPEG that is made of a JPEG byte by byte, in other formats as Qt writes
        /// it. The profile of a CMYK picture goes, because the picture becomes RGB.
        KeepProfile,
        /// The colours are converted to sRGB. A profile that Qt cannot apply stays as with
        /// KeepProfile, and so does any profile before Qt 5.14.
        ConvertToSrgb
    };

    /// What the imported file tells beside its pixels. Wherever less than everything is wanted,
    /// this also applies to files that need no change otherwise; their pixels are kept as they
    /// are.
    enum Metadata {
        /// Nothing but the colour profile, and the orientation of a picture that is not turned.
        NoMetadata,
        /// Copyright, artist and the date the photograph was taken, from its EXIF block.
        CopyrightAndDate,
        /// Everything that is known to tell nothing about the place where the photograph was taken.
        AllButLocation,
        /// EXIF, XMP, IPTC, comments and what else stands in the file.
        AllMetadata
    };

    /// The most that the picture may measure, upright, in pixels. A larger one is scaled down and
    /// keeps its aspect ratio; none is ever enlarged. A side below 1 is no limit.
    QSize maxSize;
    /// Whether the picture is turned and mirrored so that it stands upright by itself.
    bool upright = true;
    /// Whether a JPEG that has to be encoded is a progressive one. A file that can be copied is not
    /// encoded for this alone.
    bool progressive = true;
    /// The quality of a JPEG or WebP that has to be encoded, 0 to 100. Other formats lose nothing.
    int quality = 80;
    /// The format of the imported file, such as "jpeg" or "png"; empty for that of the source.
    QByteArray format;
    /// What becomes of a colour profile.
    ColorProfile colorProfile = KeepProfile;
    /// What the imported file tells beside its pixels.
    Metadata metadata = CopyrightAndDate;
    /// Whether a file that breaks off before its end is refused.
    bool refuseTruncated = false;
    /// The most pixels that a source may have; below 1 for no limit but that of
    /// ImageUtils::copyImageFile(), 2 GiB of decoded pixels.
    qint64 maxPixels = 0;
};

#endif // ORVAUTILS_IMAGEIMPORT_H

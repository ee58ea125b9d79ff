// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ImageImport: the options for importing a picture.

#ifndef ORVAUTILS_IMAGEIMPORT_H
#define ORVAUTILS_IMAGEIMPORT_H

#include <QByteArray>
#include <QSize>

/// The options of ImageUtils::importImage() and ImageImporter. A plain value: change the fields
/// that matter.
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
        /// It is kept: byte for byte in a JPEG made from a JPEG, otherwise as Qt writes it. The
        /// profile of a CMYK picture is dropped, because the picture becomes RGB.
        KeepProfile,
        /// The colours are converted to sRGB. A profile that Qt cannot apply stays as with
        /// KeepProfile, and so does any profile before Qt 5.14.
        ConvertToSrgb
    };

    /// Which metadata the imported file keeps. Metadata that is not wanted is also removed from
    /// files that need no other change; their pixels stay as they are.
    enum Metadata {
        /// Nothing but the colour profile, and the orientation of a picture that is not turned.
        NoMetadata,
        /// Copyright, artist and the date the photograph was taken, from its EXIF block.
        CopyrightAndDate,
        /// All metadata that is known not to tell where the photograph was taken.
        AllButLocation,
        /// All metadata: EXIF, XMP, IPTC, comments and the rest.
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

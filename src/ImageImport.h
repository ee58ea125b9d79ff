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
    /// How a colour profile is handled.
    enum ColorProfile {
        /// It is kept: byte for byte in a JPEG made from a JPEG, otherwise as Qt writes it. The
        /// profile of a CMYK picture is dropped, because the picture becomes RGB.
        KeepProfile,
        /// The colours are converted to sRGB. A profile that Qt cannot apply is kept as with
        /// KeepProfile, and so is any profile before Qt 5.14.
        ConvertToSrgb
    };

    /// Which metadata the imported file keeps. Metadata that is not wanted is also removed from
    /// files that need no other change; their pixels stay as they are.
    enum Metadata {
        /// Nothing but the colour profile, and the orientation of a picture that is not turned.
        NoMetadata,
        /// Copyright, artist and the date the photograph was taken, from its EXIF block.
        CopyrightAndDate,
        /// All metadata that is known not to reveal where the photograph was taken.
        AllButLocation,
        /// All metadata: EXIF, XMP, IPTC, comments and the rest.
        AllMetadata
    };

    /// The maximum size of the picture, upright, in pixels. A larger picture is scaled down and
    /// keeps its aspect ratio; no picture is ever enlarged. A side below 1 sets no limit.
    QSize maxSize;
    /// Whether the picture is rotated and mirrored so that it is upright without an orientation.
    bool upright = true;
    /// Whether a JPEG that has to be encoded is a progressive one. A file that can be copied is not
    /// encoded for this alone.
    bool progressive = true;
    /// The quality of a JPEG or WebP that has to be encoded, 0 to 100. Other formats lose nothing.
    int quality = 80;
    /// The format of the imported file, such as "jpeg" or "png"; empty for that of the source.
    QByteArray format;
    /// How a colour profile is handled.
    ColorProfile colorProfile = KeepProfile;
    /// Which metadata the imported file keeps.
    Metadata metadata = CopyrightAndDate;
    /// Whether a truncated file is refused.
    bool refuseTruncated = false;
    /// The maximum number of pixels of a source; below 1 for no limit other than that of
    /// ImageUtils::copyImageFile(), 2 GiB of decoded pixels.
    qint64 maxPixels = 0;
};

#endif // ORVAUTILS_IMAGEIMPORT_H

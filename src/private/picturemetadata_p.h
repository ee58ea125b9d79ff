// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PictureMetadata: the metadata of a picture file; how it is read from and written to the formats
// that can carry it: JPEG, PNG, WebP and GIF. From a TIFF it is only read.

#ifndef ORVAUTILS_PICTUREMETADATA_P_H
#define ORVAUTILS_PICTUREMETADATA_P_H

#include <QByteArray>
#include <QList>

namespace OrvaUtilsPrivate {

struct PictureMetadata
{
    /// The TIFF block of EXIF, from its byte order mark on.
    QByteArray exif;
    /// The XMP packet.
    QByteArray xmp;
    /// The payload of a JPEG's APP13 segment: IPTC and whatever else Photoshop writes.
    QByteArray iptc;
    /// Comments of a JPEG or GIF; the text chunks of a PNG, each as it is stored.
    QList<QByteArray> comments;
    /// All other metadata, such as extended XMP of a JPEG: whole segments, whole chunks.
    QList<QByteArray> others;

    bool operator==(const PictureMetadata& other) const;
    bool operator!=(const PictureMetadata& other) const { return !(*this == other); }
};

/// What readMetadata() finds in a file.
struct MetadataFindings
{
    PictureMetadata metadata;
    /// The colour profile; only of JPEG and WebP, which store it as it is.
    QByteArray profile;
    /// Whether there is a colour profile.
    bool hasProfile = false;
    /// Whether the file ends before the end that its format prescribes.
    bool isTruncated = false;
    /// Whether something follows the end of the picture.
    bool hasTrailer = false;
};

/// Whether withMetadata() knows \a format.
bool canCarryMetadata(const QByteArray& format);

/// Reads the metadata in \a file, a picture of \a format ("jpeg", "png", "webp", "gif", "tiff";
/// nothing is found in any other).
MetadataFindings readMetadata(const QByteArray& file, const QByteArray& format);

/// \a file with \a metadata instead of its own; null if \a file is not of \a format, or if it is so
/// damaged that it is unclear which bytes belong to the picture. \a format must be one that
/// canCarryMetadata() knows. What does not fit into the format (a JPEG can contain 64 KB each of
/// EXIF and XMP) is left out. Pixels and colour profile are kept as they are stored; what follows
/// the end of the picture is dropped. If \a profile is not empty, it replaces the profile of a
/// JPEG.
QByteArray withMetadata(const QByteArray& file, const QByteArray& format,
                        const PictureMetadata& metadata, const QByteArray& profile = QByteArray());

// The formats

MetadataFindings readJpegMetadata(const QByteArray& file);
QByteArray jpegWithMetadata(const QByteArray& file, const PictureMetadata& metadata,
                            const QByteArray& profile);

MetadataFindings readPngMetadata(const QByteArray& file);
QByteArray pngWithMetadata(const QByteArray& file, const PictureMetadata& metadata);

MetadataFindings readWebpMetadata(const QByteArray& file);
QByteArray webpWithMetadata(const QByteArray& file, const PictureMetadata& metadata);

MetadataFindings readTiffMetadata(const QByteArray& file);

MetadataFindings readGifMetadata(const QByteArray& file);
QByteArray gifWithMetadata(const QByteArray& file, const PictureMetadata& metadata);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PICTUREMETADATA_P_H

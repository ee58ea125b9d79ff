// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PictureMetadata: the metadata of a picture file; how it is read from and written to the formats
// that can carry it: JPEG, PNG, WebP and GIF.

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
    /// The payload of a JPEG's APP13 segment: IPTC and what else Photoshop writes.
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
    /// The colour profile; only of JPEG and WebP, whose file holds it as it is.
    QByteArray profile;
    /// Whether there is a colour profile.
    bool hasProfile = false;
    /// Whether the file breaks off before the end that its format prescribes.
    bool isTruncated = false;
    /// Whether something follows the end of the picture.
    bool hasTrailer = false;
};

/// Whether withMetadata() knows \a format.
bool canCarryMetadata(const QByteArray& format);

/// Reads the metadata in \a file, a picture of \a format ("jpeg", "png", "webp", "gif"; of any
/// other nothing is found).
MetadataFindings readMetadata(const QByteArray& file, const QByteArray& format);

/// \a file with \a metadata instead of its own; null where \a file is not what \a format says, or
/// where it is so damaged that nobody knows which bytes belong to the picture. \a format must be
/// one that canCarryMetadata() knows. What the format cannot hold (a JPEG holds 64 KB of EXIF and
/// of XMP) is left out. Pixels and colour profile are kept as they are stored, what follows the end
/// of the picture is dropped. \a profile, if it is not empty, takes the place of the profile of a
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

MetadataFindings readGifMetadata(const QByteArray& file);
QByteArray gifWithMetadata(const QByteArray& file, const PictureMetadata& metadata);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PICTUREMETADATA_P_H

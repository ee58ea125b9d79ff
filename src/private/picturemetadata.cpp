// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "picturemetadata_p.h"

namespace OrvaUtilsPrivate {

bool PictureMetadata::operator==(const PictureMetadata& other) const
{
    return exif == other.exif && xmp == other.xmp && iptc == other.iptc
        && comments == other.comments && others == other.others;
}

bool canCarryMetadata(const QByteArray& format)
{
    return format == "jpeg" || format == "png" || format == "webp" || format == "gif";
}

MetadataFindings readMetadata(const QByteArray& file, const QByteArray& format)
{
    if (format == "jpeg")
        return readJpegMetadata(file);
    if (format == "png")
        return readPngMetadata(file);
    if (format == "webp")
        return readWebpMetadata(file);
    if (format == "gif")
        return readGifMetadata(file);
    if (format == "tiff")
        return readTiffMetadata(file);
    return MetadataFindings();
}

QByteArray withMetadata(const QByteArray& file, const QByteArray& format,
                        const PictureMetadata& metadata, const QByteArray& profile)
{
    if (format == "jpeg")
        return jpegWithMetadata(file, metadata, profile);
    if (format == "png")
        return pngWithMetadata(file, metadata);
    if (format == "webp")
        return webpWithMetadata(file, metadata);
    return gifWithMetadata(file, metadata);
}

} // namespace OrvaUtilsPrivate

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// QExifImageHeaderPrivate: the values of a QExifImageHeader, read from the block of an EXIF segment
// and written to one in the layout of the class. The file around the block is not known here.

#ifndef ORVAUTILS_EXIFIMAGEHEADER_P_H
#define ORVAUTILS_EXIFIMAGEHEADER_P_H

#include "QExifImageHeader.h"
#include "tiffblock_p.h"

#include <QByteArray>
#include <QDataStream>
#include <QSize>

namespace OrvaUtilsPrivate {

class QExifImageHeaderPrivate
{
public:
    /// Reads everything from a block. Returns false if it has no TIFF header; to be called on a new
    /// object.
    bool read(TiffReader& block);
    /// Appends the block that write() writes, and changes this object as write() does.
    void appendBlock(QByteArray* bytes);
    /// Appends IFD1, which begins at the offset \a start of the block.
    void appendThumbnailIfd(TiffWriter& writer, quint32 start) const;
    /// The payload of an EXIF segment with this block.
    QByteArray payload();
    /// The size of the block according to its formula, not as it was last written.
    int predictedSize() const;

    QDataStream::ByteOrder byteOrder = QDataStream::LittleEndian;
    int size = -1; // of the block; -1 when unknown

    TagMap<QExifImageHeader::ImageTag> imageIfdValues;
    TagMap<QExifImageHeader::ExifExtendedTag> exifIfdValues;
    TagMap<QExifImageHeader::GpsTag> gpsIfdValues;

    QSize thumbnailSize; // of the last image given to setThumbnail()
    QByteArray thumbnailData;
    // From IFD1; null when absent.
    QExifValue thumbnailXResolution;
    QExifValue thumbnailYResolution;
    QExifValue thumbnailResolutionUnit;
    QExifValue thumbnailOrientation;
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_EXIFIMAGEHEADER_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "exifimageheader_p.h"

#include "jpegsegments_p.h"

#include <cstring>

namespace OrvaUtilsPrivate {

namespace {

using Header = QExifImageHeader;

/// Whether a value can be an offset or a length in the block.
bool isSingleInteger(const QExifValue& value)
{
    switch (value.type()) {
    case QExifValue::Byte:
    case QExifValue::Short:
    case QExifValue::Long:
    case QExifValue::SignedLong:
        return value.count() == 1;
    default:
        return false;
    }
}

/// Writes a sub-IFD that begins at \a start. Its data offsets leave out the count field, as they
/// always have in these files.
template <typename Tag>
void writeSubIfd(TiffWriter& block, const TagMap<Tag>& values, quint32 start)
{
    block.write(static_cast<quint16>(values.size()));
    block.writeEntries(values, start + static_cast<quint32>(entrySize * values.size()));
    block.writeData(values);
}

void writePointer(TiffWriter& block, Header::ImageTag tag, quint32 offset)
{
    block.writeEntry(tag, QExifValue(offset), 0);
}

QExifValue valueOr(const QExifValue& value, const QExifValue& fallback)
{
    return value.isNull() ? fallback : value;
}

} // namespace

bool QExifImageHeaderPrivate::read(TiffReader& block)
{
    const Bytes head = block.next(tiffHeaderSize);
    if (head.size < tiffHeaderSize)
        return false;
    if (std::memcmp(head.data, "II", 2) == 0)
        byteOrder = QDataStream::LittleEndian;
    else if (std::memcmp(head.data, "MM", 2) == 0)
        byteOrder = QDataStream::BigEndian;
    else
        return false;
    block.setOrder(byteOrder);
    if (decode<quint16>(head.data + 2, byteOrder) != tiffMagic
        || !block.seek(decode<quint32>(head.data + 4, byteOrder)))
        return false;

    const QVector<ExifIfdHeader> entries = block.entries();
    const Bytes link = block.next(linkSize);
    const quint32 thumbnailIfd = link.size == linkSize ? decode<quint32>(link.data, byteOrder) : 0;
    imageIfdValues = block.values<Header::ImageTag>(entries);

    const QExifValue exifIfd = imageIfdValues.take(Header::ExifIfdPointer);
    if (isSingleInteger(exifIfd))
        exifIfdValues = block.directory<Header::ExifExtendedTag>(exifIfd.toLong());
    const QExifValue gpsIfd = imageIfdValues.take(Header::GpsInfoIfdPointer);
    if (isSingleInteger(gpsIfd))
        gpsIfdValues = block.directory<Header::GpsTag>(gpsIfd.toLong());
    exifIfdValues.remove(Header::InteroperabilityIfdPointer);

    if (thumbnailIfd != 0) {
        const TagMap<Header::ImageTag> values = block.directory<Header::ImageTag>(thumbnailIfd);
        const QExifValue position = values.value(Header::JPEGInterchangeFormat);
        const QExifValue length = values.value(Header::JPEGInterchangeFormatLength);
        if (isSingleInteger(position) && isSingleInteger(length) && block.seek(position.toLong())) {
            const Bytes jpeg = block.next(length.toLong());
            thumbnailData = QByteArray(jpeg.data, jpeg.size);
        }
        thumbnailXResolution = values.value(Header::XResolution);
        thumbnailYResolution = values.value(Header::YResolution);
        thumbnailResolutionUnit = values.value(Header::ResolutionUnit);
        thumbnailOrientation = values.value(Header::Orientation);
    }
    return true;
}

void QExifImageHeaderPrivate::appendBlock(QByteArray* bytes)
{
    const bool hasGps = !gpsIfdValues.isEmpty();
    const bool hasThumbnail = !thumbnailData.isEmpty();
    const int imageEntries = imageIfdValues.size() + (hasGps ? 2 : 1);

    const int start = int(bytes->size());
    TiffWriter writer(bytes, byteOrder);
    writer.write(QByteArray(byteOrder == QDataStream::LittleEndian ? "II" : "MM"));
    writer.write(tiffMagic);
    writer.write(quint32(tiffHeaderSize));

    // IFD0, up to and including its link.
    writer.write(static_cast<quint16>(imageEntries));
    const quint32 exifIfdStart = writer.writeEntries(
        imageIfdValues,
        static_cast<quint32>(tiffHeaderSize + countSize + entrySize * imageEntries + linkSize));
    writePointer(writer, Header::ExifIfdPointer, exifIfdStart);
    const quint32 gpsIfdStart = exifIfdStart + sizeOfDirectory(exifIfdValues);
    quint32 thumbnailIfdStart = gpsIfdStart;
    if (hasGps) {
        writePointer(writer, Header::GpsInfoIfdPointer, gpsIfdStart);
        thumbnailIfdStart += sizeOfDirectory(gpsIfdValues);
    }
    writer.write(hasThumbnail ? thumbnailIfdStart : 0);
    writer.writeData(imageIfdValues);

    writeSubIfd(writer, exifIfdValues, exifIfdStart);
    if (hasGps)
        writeSubIfd(writer, gpsIfdValues, gpsIfdStart);

    if (hasThumbnail)
        appendThumbnailIfd(writer, thumbnailIfdStart);

    // Only now, because a previous entry, if any, has been part of IFD0 above.
    if (hasGps)
        imageIfdValues.insert(Header::GpsInfoIfdPointer, QExifValue(gpsIfdStart));
    size = int(bytes->size() - start);
}

void QExifImageHeaderPrivate::appendThumbnailIfd(TiffWriter& writer, quint32 start) const
{
    const quint16 entryCount = 7;
    const QExifValue jpegCompression(quint16(6));
    const QExifValue inches(quint16(2));
    const QExifValue noOrientation(quint16(0));
    const QExifValue dotsPerInch(QPair<quint32, quint32>(72, 1));
    const QExifValue xResolution = valueOr(thumbnailXResolution, dotsPerInch);
    const QExifValue yResolution = valueOr(thumbnailYResolution, dotsPerInch);
    const QExifValue resolutionUnit = valueOr(thumbnailResolutionUnit, inches);
    const QExifValue orientation = valueOr(thumbnailOrientation, noOrientation);

    // In this order, with Orientation after ResolutionUnit: it has always been written so.
    writer.write(entryCount);
    quint32 offset = start + countSize + entryCount * entrySize;
    writer.writeEntry(Header::Compression, jpegCompression, offset);
    offset = writer.writeEntry(Header::XResolution, xResolution, offset);
    offset = writer.writeEntry(Header::YResolution, yResolution, offset);
    writer.writeEntry(Header::ResolutionUnit, resolutionUnit, offset);
    writer.writeEntry(Header::Orientation, orientation, offset);
    writePointer(writer, Header::JPEGInterchangeFormat, offset);
    writePointer(writer, Header::JPEGInterchangeFormatLength,
                 static_cast<quint32>(thumbnailData.size()));
    writer.writeData(xResolution);
    writer.writeData(yResolution);
    writer.write(thumbnailData);
}

QByteArray QExifImageHeaderPrivate::payload()
{
    QByteArray payload("Exif\0\0", 6);
    payload.reserve(JpegSegments::MaximumPayload); // so that appending does not copy it again
    appendBlock(&payload);
    return payload;
}

int QExifImageHeaderPrivate::predictedSize() const
{
    quint32 predicted = sizeOfDirectory(imageIfdValues) + sizeOfDirectory(exifIfdValues) + 24;
    if (!gpsIfdValues.isEmpty())
        predicted += sizeOfDirectory(gpsIfdValues) + 12;
    if (!thumbnailData.isEmpty())
        predicted += static_cast<quint32>(thumbnailData.size()) + 90;
    return static_cast<int>(predicted);
}

} // namespace OrvaUtilsPrivate

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "QExifImageHeader.h"

#include "filepatch_p.h"
#include "intactfile_p.h"
#include "jpegsegments_p.h"
#include "tiffblock_p.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QSize>
#include <QTransform>

#include <cstring>

using namespace OrvaUtilsPrivate;

class OrvaUtilsPrivate::QExifImageHeaderPrivate
{
public:
    /// Reads everything from a block; to be called after clear().
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

namespace {

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

void writePointer(TiffWriter& block, QExifImageHeader::ImageTag tag, quint32 offset)
{
    block.writeEntry(tag, QExifValue(offset), 0);
}

QExifValue valueOr(const QExifValue& value, const QExifValue& fallback)
{
    return value.isNull() ? fallback : value;
}

// The JPEG around the block

/// Finds what has to change in the JPEG of a device so that its EXIF segment contains \a payload.
/// Returns false if that is impossible.
bool findPatch(QIODevice* device, QByteArray payload, FilePatch* patch)
{
    if (!device->seek(0))
        return false;
    JpegSegments segments(device, JpegSegments::Markers::AllHaveLengths);
    if (!segments.begin())
        return false;
    const bool isJfif = segments.marker() == JpegMarker::App0 && segments.startsWith("JFIF");
    if (isJfif && !segments.next())
        return false;

    const bool isExif = segments.marker() == JpegMarker::App1 && segments.startsWith("Exif");
    const int oldSize = isExif ? segments.size() : 0;
    if (payload.size() < oldSize)
        payload.append(QByteArray(oldSize - payload.size(), '\0'));
    if (segments.hasFailed() || payload.size() > JpegSegments::MaximumPayload)
        return false;
    const bool keepsHead =
        isExif && payload.size() == segments.claimedSize() && payload.size() == oldSize;
    patch->begin = keepsHead ? segments.payloadPosition() : segments.position();
    patch->end = isExif ? segments.payloadPosition() + oldSize : segments.position();
    patch->bytes =
        keepsHead ? payload : JpegSegments::head(JpegMarker::App1, int(payload.size())) + payload;
    return true;
}

} // namespace

QDataStream& operator>>(QDataStream& stream, ExifIfdHeader& header)
{
    char bytes[entrySize] = {};
    const bool complete = stream.readRawData(bytes, entrySize) == entrySize;
    header = complete ? decodeEntry(bytes, stream.byteOrder()) : ExifIfdHeader();
    if (!complete)
        stream.setStatus(QDataStream::ReadPastEnd);
    return stream;
}

QExifImageHeader::QExifImageHeader()
    : d(new QExifImageHeaderPrivate)
{ }

QExifImageHeader::QExifImageHeader(const QString& fileName)
    : QExifImageHeader()
{
    loadFromJpeg(fileName);
}

QExifImageHeader::QExifImageHeader(QIODevice* device)
    : QExifImageHeader()
{
    loadFromJpeg(device);
}

QExifImageHeader::~QExifImageHeader() = default;

bool QExifImageHeader::loadFromJpeg(const QString& fileName)
{
    clear();
    if (fileName.isEmpty())
        return false;
    IntactFile file(fileName);
    const bool isLoaded = loadFromJpeg(&file);
    // A part of a block must not pass for the whole: saving it would lose the rest.
    if (!file.isIntact())
        clear();
    return isLoaded && file.isIntact();
}

bool QExifImageHeader::loadFromJpeg(QIODevice* device)
{
    clear();
    TiffReader block(extractExif(device));
    return d->read(block);
}

bool QExifImageHeader::saveToJpeg(const QString& fileName) const
{
    QFile file(fileName);
    FilePatch patch;
    return openToPatch(&file) && findPatch(&file, d->payload(), &patch)
        && patchFile(&file, patch, Irreplaceable::PatchInPlace) == Patched::Yes;
}

bool QExifImageHeader::saveToJpeg(QIODevice* device) const
{
    if (!device || device->isSequential() || !device->isReadable() || !device->isWritable()
        || device->openMode().testFlag(QIODevice::Append))
        return false;
    FilePatch patch;
    return findPatch(device, d->payload(), &patch) && patchInPlace(device, patch);
}

QByteArray QExifImageHeader::extractExif(QIODevice* device) const
{
    if (!device || !device->isReadable())
        return QByteArray();
    JpegSegments segments(device, JpegSegments::Markers::AllHaveLengths);
    bool isFound = segments.begin();
    while (isFound && segments.marker() != JpegMarker::App1)
        isFound = segments.next();
    const int headSize = 6; // "Exif" and two bytes that are ignored
    if (!isFound || !segments.startsWith("Exif") || segments.read(headSize).size() < headSize)
        return QByteArray();
    return segments.read(segments.claimedSize());
}

bool QExifImageHeader::read(QIODevice* device)
{
    clear();
    if (!device || !device->isReadable() || device->isSequential())
        return false;
    TiffReader block(device, device->pos());
    return d->read(block);
}

bool QExifImageHeaderPrivate::read(TiffReader& block)
{
    using Header = QExifImageHeader;
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

int QExifImageHeader::write(QIODevice* device) const
{
    if (!device || !device->isWritable())
        return 0;
    QByteArray block;
    block.reserve(d->predictedSize());
    d->appendBlock(&block);
    const int written = static_cast<int>(qMax(Q_INT64_C(0), device->write(block)));
    if (written != block.size())
        d->size = -1;
    return written;
}

QByteArray QExifImageHeaderPrivate::payload()
{
    QByteArray payload("Exif\0\0", 6);
    payload.reserve(JpegSegments::MaximumPayload); // so that appending does not copy it again
    appendBlock(&payload);
    return payload;
}

void QExifImageHeaderPrivate::appendBlock(QByteArray* bytes)
{
    using Header = QExifImageHeader;
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
    using Header = QExifImageHeader;
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

QDataStream::ByteOrder QExifImageHeader::byteOrder() const
{
    return d->byteOrder;
}

void QExifImageHeader::clear()
{
    const ByteOrder order = d->byteOrder;
    *d = QExifImageHeaderPrivate();
    d->byteOrder = order;
}

QList<QExifImageHeader::ImageTag> QExifImageHeader::imageTags() const
{
    return d->imageIfdValues.tags();
}

QList<QExifImageHeader::ExifExtendedTag> QExifImageHeader::extendedTags() const
{
    return d->exifIfdValues.tags();
}

QList<QExifImageHeader::GpsTag> QExifImageHeader::gpsTags() const
{
    return d->gpsIfdValues.tags();
}

bool QExifImageHeader::contains(ImageTag tag) const
{
    return d->imageIfdValues.find(tag) != nullptr;
}

bool QExifImageHeader::contains(ExifExtendedTag tag) const
{
    return d->exifIfdValues.find(tag) != nullptr;
}

bool QExifImageHeader::contains(GpsTag tag) const
{
    return d->gpsIfdValues.find(tag) != nullptr;
}

void QExifImageHeader::remove(ImageTag tag)
{
    d->imageIfdValues.remove(tag);
    d->size = -1;
}

void QExifImageHeader::remove(ExifExtendedTag tag)
{
    d->exifIfdValues.remove(tag);
    d->size = -1;
}

void QExifImageHeader::remove(GpsTag tag)
{
    d->gpsIfdValues.remove(tag);
    d->size = -1;
}

QExifValue QExifImageHeader::value(ImageTag tag) const
{
    return d->imageIfdValues.value(tag);
}

QExifValue QExifImageHeader::value(ExifExtendedTag tag) const
{
    return d->exifIfdValues.value(tag);
}

QExifValue QExifImageHeader::value(GpsTag tag) const
{
    return d->gpsIfdValues.value(tag);
}

void QExifImageHeader::setValue(ImageTag tag, const QExifValue& value)
{
    d->imageIfdValues.insert(tag, value);
    d->size = -1;
}

void QExifImageHeader::setValue(ExifExtendedTag tag, const QExifValue& value)
{
    d->exifIfdValues.insert(tag, value);
    d->size = -1;
}

void QExifImageHeader::setValue(GpsTag tag, const QExifValue& value)
{
    d->gpsIfdValues.insert(tag, value);
    d->size = -1;
}

QImage QExifImageHeader::thumbnail() const
{
    if (!d->thumbnailData.startsWith("\xFF\xD8"))
        return QImage();
    QBuffer buffer(&d->thumbnailData);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "JPG");
    // A JPEG spends at least one bit on each block of 8 x 8 pixels. One that claims to use fewer is
    // not worth the memory that it requires.
    const QSize size = reader.size();
    const qint64 maximumPixels = Q_INT64_C(8) * 64 * d->thumbnailData.size();
    if (!size.isValid() || qint64(size.width()) * size.height() > maximumPixels)
        return QImage();
    QImage image = reader.read();

    // toShort() is 0 for anything but a single Short or Byte.
    const QTransform quarterTurn = QTransform().rotate(90);
    switch (d->thumbnailOrientation.toShort()) {
    case 2:
        return image.mirrored(true, false);
    case 3:
        return image.mirrored(true, true);
    case 4:
        return image.mirrored(false, true);
    case 5:
        return image.transformed(quarterTurn).mirrored(true, false);
    case 6:
        return image.transformed(quarterTurn);
    case 7:
        return image.transformed(quarterTurn).mirrored(false, true);
    case 8:
        return image.transformed(QTransform().rotate(270));
    default:
        return image;
    }
}

void QExifImageHeader::setThumbnail(const QImage& thumbnail)
{
    d->size = -1;
    d->thumbnailData.clear();
    d->thumbnailSize = QSize();
    if (thumbnail.isNull())
        return;
    QBuffer buffer(&d->thumbnailData);
    buffer.open(QIODevice::WriteOnly);
    if (!thumbnail.save(&buffer, "JPG"))
        d->thumbnailData.clear();
    d->thumbnailSize = thumbnail.size();
    d->thumbnailOrientation = QExifValue();
}

int QExifImageHeader::size() const
{
    if (d->size == -1)
        d->size = d->predictedSize();
    return d->size;
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

QList<ExifIfdHeader> QExifImageHeader::readIfdHeaders(QDataStream& stream) const
{
    TiffReader block(stream.device(), 0);
    block.setOrder(stream.byteOrder());
    return block.entries().toList();
}

QExifValue QExifImageHeader::readIfdValue(QDataStream& stream, int startPos,
                                          const ExifIfdHeader& header) const
{
    TiffReader block(stream.device(), startPos);
    block.setOrder(stream.byteOrder());
    return block.value(header);
}

quint32 QExifImageHeader::writeExifHeader(QDataStream& stream, quint16 tag, const QExifValue& value,
                                          quint32 offset) const
{
    QByteArray bytes;
    TiffWriter writer(&bytes, stream.byteOrder());
    const quint32 next = writer.writeEntry(tag, value, offset);
    stream.writeRawData(bytes.constData(), int(bytes.size()));
    return next;
}

void QExifImageHeader::writeExifValue(QDataStream& stream, const QExifValue& value) const
{
    QByteArray bytes;
    TiffWriter writer(&bytes, stream.byteOrder());
    writer.writeData(value);
    stream.writeRawData(bytes.constData(), int(bytes.size()));
}

quint32 QExifImageHeader::sizeOf(const QExifValue& value) const
{
    return sizeOfEntry(value);
}

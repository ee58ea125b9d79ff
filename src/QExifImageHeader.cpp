// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "QExifImageHeader.h"

#include <QBuffer>
#include <QDebug>
#include <QFile>
#include <QImageReader>
#include <QMap>
#include <QSize>
#include <QTransform>
#include <QtEndian>

#include <cstring>
#include <limits>

class QExifImageHeaderPrivate
{
public:
    QDataStream::ByteOrder byteOrder = QDataStream::LittleEndian;
    int size = -1; // of the block; -1 when unknown

    QMap<QExifImageHeader::ImageTag, QExifValue> imageIfdValues;
    QMap<QExifImageHeader::ExifExtendedTag, QExifValue> exifIfdValues;
    QMap<QExifImageHeader::GpsTag, QExifValue> gpsIfdValues;

    QSize thumbnailSize; // of the last image given to setThumbnail()
    QByteArray thumbnailData;
    // From IFD1; null when absent.
    QExifValue thumbnailXResolution;
    QExifValue thumbnailYResolution;
    QExifValue thumbnailResolutionUnit;
    QExifValue thumbnailOrientation;
};

namespace {

using ByteOrder = QDataStream::ByteOrder;
using UnsignedRational = QPair<quint32, quint32>;
using SignedRational = QPair<qint32, qint32>;

const quint16 startOfImage = 0xFFD8;
const quint16 app0 = 0xFFE0;
const quint16 app1 = 0xFFE1;
const int maximumSegmentPayload = 65533; // the 16-bit length counts itself

const quint16 tiffMagic = 42;
const int tiffHeaderSize = 8;
const int countSize = 2;
const int entrySize = 12;
const int linkSize = 4;
const quint32 inlineSize = 4;

// No value of a real file comes near; it keeps a payload within what a Qt container holds.
const quint64 maximumPayload = 1u << 29;

// How often the values of one directory may cover the whole device before it is read no further.
// In a sound block they cover it less than once.
const int maximumOverlap = 16;

// Reading

/// Moves to a position within the device. Says false for one outside, instead of letting a file
/// accept it, a buffer grow or Qt write a warning.
bool seekWithin(QIODevice* device, qint64 position)
{
    return position >= 0 && position <= device->size() && device->seek(position);
}

/// Up to wanted bytes: as many as there are. Allocates for no more than that.
QByteArray readBytes(QIODevice* device, quint64 wanted)
{
    quint64 size = qMin(wanted, maximumPayload);
    if (!device->isSequential())
        size = qMin(size, static_cast<quint64>(qMax(Q_INT64_C(0), device->size() - device->pos())));
    return device->read(static_cast<qint64>(size));
}

template <typename Integer>
Integer decode(const char* bytes, ByteOrder order)
{
    const uchar* const source = reinterpret_cast<const uchar*>(bytes);
    return order == QDataStream::BigEndian ? qFromBigEndian<Integer>(source)
                                           : qFromLittleEndian<Integer>(source);
}

ExifIfdHeader decodeEntry(const char* bytes, ByteOrder order)
{
    ExifIfdHeader entry;
    entry.tag = decode<quint16>(bytes, order);
    entry.type = decode<quint16>(bytes + 2, order);
    entry.count = decode<quint32>(bytes + 4, order);
    const char* const field = bytes + 8;
    if ((entry.type == QExifValue::Byte || entry.type == QExifValue::Ascii) && entry.count < 5)
        std::memcpy(entry.inlineBytes.data(), field, inlineSize);
    else if (entry.type == QExifValue::Short && entry.count < 3)
        entry.inlineShorts = {{decode<quint16>(field, order), decode<quint16>(field + 2, order)}};
    else
        entry.offset = decode<quint32>(field, order);
    return entry;
}

QList<ExifIfdHeader> readEntries(QDataStream& stream)
{
    QList<ExifIfdHeader> entries;
    quint16 count = 0;
    stream >> count;
    const QByteArray bytes = readBytes(stream.device(), quint64(count) * entrySize);
    for (int i = 0; i + entrySize <= bytes.size(); i += entrySize)
        entries.append(decodeEntry(bytes.constData() + i, stream.byteOrder()));
    return entries;
}

/// The bytes that an entry refers to; none where its offset leads out of the device.
QByteArray readPayload(QIODevice* device, qint64 start, const ExifIfdHeader& entry, int elementSize)
{
    if (!seekWithin(device, start + entry.offset))
        return QByteArray();
    return readBytes(device, quint64(entry.count) * static_cast<quint64>(elementSize));
}

template <typename Integer>
QVector<Integer> decodeIntegers(const QByteArray& bytes, ByteOrder order)
{
    const int size = static_cast<int>(sizeof(Integer));
    QVector<Integer> values(bytes.size() / size);
    const char* source = bytes.constData();
    for (Integer& value : values) {
        value = decode<Integer>(source, order);
        source += size;
    }
    return values;
}

template <typename Integer>
QVector<QPair<Integer, Integer>> decodeRationals(const QByteArray& bytes, ByteOrder order)
{
    const int size = static_cast<int>(sizeof(Integer));
    QVector<QPair<Integer, Integer>> values(bytes.size() / (2 * size));
    const char* source = bytes.constData();
    for (QPair<Integer, Integer>& value : values) {
        value = {decode<Integer>(source, order), decode<Integer>(source + size, order)};
        source += 2 * size;
    }
    return values;
}

QVector<quint8> byteVector(const char* bytes, int size)
{
    QVector<quint8> values(size);
    std::copy(bytes, bytes + size, values.begin());
    return values;
}

/// The text of an entry that claims count bytes, the last of which ends it, of which size are
/// there.
QString textOf(const char* bytes, int size, quint32 count)
{
    return QString::fromLatin1(bytes, static_cast<quint32>(size) < count ? size : size - 1);
}

QExifValue inlineByteValue(const ExifIfdHeader& entry)
{
    const char* const bytes = reinterpret_cast<const char*>(entry.inlineBytes.data());
    const int count = static_cast<int>(entry.count);
    if (entry.type == QExifValue::Byte)
        return QExifValue(byteVector(bytes, count));
    if (count == 0)
        return QExifValue(
            QString::fromLatin1(bytes, static_cast<int>(qstrnlen(bytes, inlineSize))));
    return QExifValue(textOf(bytes, count, entry.count));
}

void warnOfType(quint16 type)
{
    qWarning() << "Invalid Ifd Type" << type;
}

QExifValue readValue(QDataStream& stream, qint64 start, const ExifIfdHeader& entry)
{
    QIODevice* const device = stream.device();
    const ByteOrder order = stream.byteOrder();
    switch (entry.type) {
    case QExifValue::Byte: {
        if (entry.count < 5)
            return inlineByteValue(entry);
        const QByteArray bytes = readPayload(device, start, entry, 1);
        return QExifValue(byteVector(bytes.constData(), bytes.size()));
    }
    case QExifValue::Ascii: {
        if (entry.count < 5)
            return inlineByteValue(entry);
        const QByteArray bytes = readPayload(device, start, entry, 1);
        return QExifValue(textOf(bytes.constData(), bytes.size(), entry.count));
    }
    case QExifValue::Short: {
        if (entry.count >= 3)
            return QExifValue(decodeIntegers<quint16>(readPayload(device, start, entry, 2), order));
        QVector<quint16> values(static_cast<int>(entry.count));
        std::copy_n(entry.inlineShorts.begin(), values.size(), values.begin());
        return QExifValue(values);
    }
    case QExifValue::Long:
        if (entry.count == 1)
            return QExifValue(entry.offset);
        return QExifValue(decodeIntegers<quint32>(readPayload(device, start, entry, 4), order));
    case QExifValue::SignedLong:
        if (entry.count == 1)
            return QExifValue(static_cast<qint32>(entry.offset));
        return QExifValue(decodeIntegers<qint32>(readPayload(device, start, entry, 4), order));
    case QExifValue::Rational:
        return QExifValue(decodeRationals<quint32>(readPayload(device, start, entry, 8), order));
    case QExifValue::SignedRational:
        return QExifValue(decodeRationals<qint32>(readPayload(device, start, entry, 8), order));
    case QExifValue::Undefined: {
        if (entry.count >= 5)
            return QExifValue(readPayload(device, start, entry, 1));
        // Whatever the byte order of the file: least significant byte first.
        char bytes[inlineSize];
        qToLittleEndian(entry.offset, reinterpret_cast<uchar*>(bytes));
        return QExifValue(QByteArray(bytes, static_cast<int>(entry.count)));
    }
    default:
        warnOfType(entry.type);
        return QExifValue();
    }
}

quint32 sizeOfValue(const QExifValue& value);

/// The values of a directory's entries; where a tag stands twice, the last one.
template <typename Tag>
QMap<Tag, QExifValue> readValues(QDataStream& stream, qint64 start,
                                 const QList<ExifIfdHeader>& entries)
{
    QMap<Tag, QExifValue> values;
    qint64 allowance = stream.device()->size() * maximumOverlap;
    for (const ExifIfdHeader& entry : entries) {
        if (allowance < 0)
            break;
        const QExifValue value = readValue(stream, start, entry);
        allowance -= sizeOfValue(value);
        values.insert(values.constEnd(), static_cast<Tag>(entry.tag), value);
    }
    return values;
}

/// The directory at start + offset, empty where that lies outside of the device.
template <typename Tag>
QMap<Tag, QExifValue> readDirectory(QDataStream& stream, qint64 start, quint32 offset)
{
    if (!seekWithin(stream.device(), start + offset))
        return QMap<Tag, QExifValue>();
    return readValues<Tag>(stream, start, readEntries(stream));
}

/// Whether a value can lead somewhere in the block.
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

// Writing

quint32 sizeOfValue(const QExifValue& value)
{
    const quint32 count = value.count();
    switch (value.type()) {
    case QExifValue::Byte:
    case QExifValue::Ascii:
    case QExifValue::Undefined:
        return count > 4 ? count + entrySize : entrySize;
    case QExifValue::Short:
        return count >= 3 ? 2 * count + entrySize : entrySize;
    case QExifValue::Long:
    case QExifValue::SignedLong:
        return count >= 2 ? 4 * count + entrySize : entrySize;
    case QExifValue::Rational:
    case QExifValue::SignedRational:
        return count < 1 ? entrySize : 8 * count + entrySize;
    default:
        return 0;
    }
}

template <typename Tag>
quint32 sizeOfDirectory(const QMap<Tag, QExifValue>& values)
{
    quint32 size = countSize;
    for (const QExifValue& value : values)
        size += sizeOfValue(value);
    return size;
}

/// A Byte, Ascii or Undefined value as it stands in a file: count() bytes.
QByteArray fileBytes(const QExifValue& value)
{
    switch (value.type()) {
    case QExifValue::Byte: {
        const QVector<quint8> bytes = value.toByteVector();
        return QByteArray(reinterpret_cast<const char*>(bytes.constData()), bytes.size());
    }
    case QExifValue::Ascii:
        return value.toByteArray().append('\0');
    default:
        return value.toByteArray();
    }
}

void writeBytes(QDataStream& stream, const QByteArray& bytes)
{
    stream.writeRawData(bytes.constData(), bytes.size());
}

template <typename Integer>
void writeIntegers(QDataStream& stream, const QVector<Integer>& values)
{
    for (const Integer value : values)
        stream << value;
}

template <typename Integer>
void writeRationals(QDataStream& stream, const QVector<QPair<Integer, Integer>>& values)
{
    for (const QPair<Integer, Integer>& value : values)
        stream << value.first << value.second;
}

quint32 writeEntry(QDataStream& stream, quint16 tag, const QExifValue& value, quint32 offset)
{
    const quint32 count = value.count();
    stream << tag << value.type() << count;
    switch (value.type()) {
    case QExifValue::Byte:
    case QExifValue::Ascii:
    case QExifValue::Undefined:
        if (count > 4) {
            stream << offset;
            return offset + count;
        }
        writeBytes(stream, fileBytes(value).leftJustified(inlineSize, '\0'));
        return offset;
    case QExifValue::Short: {
        if (count > 2) {
            stream << offset;
            return offset + 2 * count;
        }
        QVector<quint16> values = value.toShortVector();
        values.resize(2); // what is added is 0
        writeIntegers(stream, values);
        return offset;
    }
    case QExifValue::Long:
    case QExifValue::SignedLong:
        if (count > 1) {
            stream << offset;
            return offset + 4 * count;
        }
        stream << value.toLong(); // 0 where there is none
        return offset;
    case QExifValue::Rational:
    case QExifValue::SignedRational:
        if (count > 0) {
            stream << offset;
            return offset + 8 * count;
        }
        stream << quint32(0);
        return offset;
    default:
        warnOfType(value.type());
        stream << quint32(0);
        return offset;
    }
}

void writeData(QDataStream& stream, const QExifValue& value)
{
    const quint32 count = value.count();
    switch (value.type()) {
    case QExifValue::Byte:
    case QExifValue::Ascii:
    case QExifValue::Undefined:
        if (count > 4)
            writeBytes(stream, fileBytes(value));
        break;
    case QExifValue::Short:
        if (count > 2)
            writeIntegers(stream, value.toShortVector());
        break;
    case QExifValue::Long:
        if (count > 1)
            writeIntegers(stream, value.toLongVector());
        break;
    case QExifValue::SignedLong:
        if (count > 1)
            writeIntegers(stream, value.toSignedLongVector());
        break;
    case QExifValue::Rational:
        writeRationals(stream, value.toRationalVector());
        break;
    case QExifValue::SignedRational:
        writeRationals(stream, value.toSignedRationalVector());
        break;
    default:
        warnOfType(value.type());
        break;
    }
}

template <typename Tag>
quint32 writeEntries(QDataStream& stream, const QMap<Tag, QExifValue>& values, quint32 offset)
{
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        offset = writeEntry(stream, it.key(), it.value(), offset);
    return offset;
}

template <typename Tag>
void writeDataOf(QDataStream& stream, const QMap<Tag, QExifValue>& values)
{
    for (const QExifValue& value : values)
        writeData(stream, value);
}

/// A sub-IFD that begins at start. Its data offsets leave the count field out, as the format of
/// these files has always had it.
template <typename Tag>
void writeSubIfd(QDataStream& stream, const QMap<Tag, QExifValue>& values, quint32 start)
{
    stream << static_cast<quint16>(values.size());
    writeEntries(stream, values, start + static_cast<quint32>(entrySize * values.size()));
    writeDataOf(stream, values);
}

void writePointer(QDataStream& stream, QExifImageHeader::ImageTag tag, quint32 offset)
{
    writeEntry(stream, tag, QExifValue(offset), 0);
}

QExifValue valueOr(const QExifValue& value, const QExifValue& fallback)
{
    return value.isNull() ? fallback : value;
}

// The JPEG around the block

struct Segment
{
    qint64 begin = 0; // of the marker
    quint16 marker = 0;
    int claimedSize = 0; // of the payload, as the length says
    int size = 0; // of the payload, as far as the device goes
    QByteArray name; // the first 4 bytes of the payload

    qint64 payloadBegin() const { return begin + 4; }
    qint64 end() const { return payloadBegin() + size; }
    bool isJfif() const { return marker == app0 && name == "JFIF"; }
    bool isExif() const { return marker == app1 && name == "Exif"; }
};

/// Reads what it takes to know the segment at a position. False when not even its length is there.
bool readSegment(QIODevice* device, qint64 begin, Segment* segment)
{
    if (!seekWithin(device, begin))
        return false;
    QDataStream stream(device);
    quint16 length = 0;
    stream >> segment->marker >> length;
    if (stream.status() != QDataStream::Ok)
        return false;
    segment->begin = begin;
    segment->claimedSize = qMax(0, length - 2);
    segment->size = static_cast<int>(
        qMin(qint64(segment->claimedSize), device->size() - segment->payloadBegin()));
    segment->name = device->read(qMin(4, segment->size));
    return true;
}

bool writeAt(QIODevice* device, qint64 position, const char* data, qint64 size)
{
    if (!device->seek(position) || device->write(data, size) != size)
        return false;
    QFileDevice* const file = qobject_cast<QFileDevice*>(device);
    return !file || file->flush();
}

bool writeAt(QIODevice* device, qint64 position, const QByteArray& bytes)
{
    return writeAt(device, position, bytes.constData(), bytes.size());
}

/// Overwrites bytes in the middle of a device and puts the old ones back where that fails.
bool overwrite(QIODevice* device, qint64 position, const QByteArray& bytes)
{
    if (!device->seek(position))
        return false;
    const QByteArray before = device->read(bytes.size());
    if (before.size() != bytes.size())
        return false;
    if (writeAt(device, position, bytes))
        return true;
    writeAt(device, position, before);
    return false;
}

/// Replaces the content of a device by a longer one. What lies beyond the old end is written first,
/// so that a lack of space is found out while the old content is still whole.
bool replaceContent(QIODevice* device, const QByteArray& before, const QByteArray& after)
{
    const int oldSize = before.size();
    const bool grown =
        writeAt(device, oldSize, after.constData() + oldSize, after.size() - oldSize);
    if (grown && writeAt(device, 0, after.constData(), oldSize))
        return true;
    if (grown)
        writeAt(device, 0, before);
    if (QFileDevice* const file = qobject_cast<QFileDevice*>(device))
        file->resize(oldSize);
    return false;
}

QByteArray segmentHead(quint16 marker, int payloadSize)
{
    QByteArray head;
    QDataStream(&head, QIODevice::WriteOnly) << marker << static_cast<quint16>(payloadSize + 2);
    return head;
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
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) && loadFromJpeg(&file);
}

bool QExifImageHeader::loadFromJpeg(QIODevice* device)
{
    clear();
    QByteArray block = extractExif(device);
    if (block.isEmpty())
        return false;
    QBuffer buffer(&block);
    return buffer.open(QIODevice::ReadOnly) && read(&buffer);
}

bool QExifImageHeader::saveToJpeg(const QString& fileName) const
{
    QFile file(fileName);
    // Opening for reading and writing would create a file that is not there. Unbuffered, so that a
    // failed write is known at once and what was there can be put back.
    return file.exists() && file.open(QIODevice::ReadWrite | QIODevice::Unbuffered)
        && saveToJpeg(&file);
}

bool QExifImageHeader::saveToJpeg(QIODevice* device) const
{
    if (!device || device->isSequential() || !device->isReadable() || !device->isWritable()
        || device->openMode().testFlag(QIODevice::Append))
        return false;

    QBuffer block;
    block.open(QIODevice::WriteOnly);
    write(&block);
    QByteArray payload = QByteArray("Exif\0\0", 6) + block.data();

    if (!device->seek(0))
        return false;
    QDataStream stream(device);
    quint16 marker = 0;
    stream >> marker;
    if (marker != startOfImage)
        return false;
    Segment segment;
    if (!readSegment(device, 2, &segment))
        return false;
    if (segment.isJfif() && !readSegment(device, segment.end(), &segment))
        return false;

    if (segment.isExif() && payload.size() < segment.size)
        payload = payload.leftJustified(segment.size, '\0');
    if (payload.size() > maximumSegmentPayload)
        return false;
    if (segment.isExif() && payload.size() == segment.claimedSize && payload.size() == segment.size)
        return overwrite(device, segment.payloadBegin(), payload);

    if (!device->seek(0))
        return false;
    const QByteArray before = device->readAll();
    if (before.size() != device->size())
        return false;
    const int begin = static_cast<int>(segment.begin);
    const int rest = segment.isExif() ? static_cast<int>(segment.end()) : begin;
    QByteArray after = before.left(begin) + segmentHead(app1, payload.size()) + payload;
    after.append(before.constData() + rest, before.size() - rest);
    return replaceContent(device, before, after);
}

QByteArray QExifImageHeader::extractExif(QIODevice* device) const
{
    if (!device || !device->isReadable())
        return QByteArray();
    QDataStream stream(device);
    quint16 marker = 0;
    quint16 length = 0;
    stream >> marker;
    if (marker != startOfImage)
        return QByteArray();

    stream >> marker;
    while (marker != app1) {
        if (device->atEnd())
            return QByteArray();
        stream >> length;
        const int payloadSize = length - 2;
        if (payloadSize < 0)
            return QByteArray(); // not the length of a segment
        const bool skipped = device->isSequential()
            ? stream.skipRawData(payloadSize) == payloadSize
            : seekWithin(device, device->pos() + payloadSize);
        if (!skipped)
            return QByteArray();
        stream >> marker;
    }

    stream >> length;
    if (device->read(4) != "Exif")
        return QByteArray();
    stream.skipRawData(2);
    const int blockSize = length - 8;
    return blockSize > 0 ? readBytes(device, static_cast<quint64>(blockSize)) : QByteArray();
}

bool QExifImageHeader::read(QIODevice* device)
{
    clear();
    if (!device || !device->isReadable() || device->isSequential())
        return false;
    const qint64 start = device->pos();

    QDataStream stream(device);
    const QByteArray mark = device->read(2);
    if (mark == "II")
        d->byteOrder = QDataStream::LittleEndian;
    else if (mark == "MM")
        d->byteOrder = QDataStream::BigEndian;
    else
        return false;
    stream.setByteOrder(d->byteOrder);

    quint16 magic = 0;
    quint32 offset = 0;
    stream >> magic >> offset;
    if (stream.status() != QDataStream::Ok || magic != tiffMagic
        || !seekWithin(device, start + offset))
        return false;

    const QList<ExifIfdHeader> entries = readEntries(stream);
    quint32 thumbnailIfdOffset = 0;
    stream >> thumbnailIfdOffset;
    d->imageIfdValues = readValues<ImageTag>(stream, start, entries);

    const QExifValue exifIfd = d->imageIfdValues.take(ExifIfdPointer);
    if (isSingleInteger(exifIfd))
        d->exifIfdValues = readDirectory<ExifExtendedTag>(stream, start, exifIfd.toLong());
    const QExifValue gpsIfd = d->imageIfdValues.take(GpsInfoIfdPointer);
    if (isSingleInteger(gpsIfd))
        d->gpsIfdValues = readDirectory<GpsTag>(stream, start, gpsIfd.toLong());
    d->exifIfdValues.remove(InteroperabilityIfdPointer);

    if (thumbnailIfdOffset != 0) {
        const QMap<ImageTag, QExifValue> values =
            readDirectory<ImageTag>(stream, start, thumbnailIfdOffset);
        const QExifValue position = values.value(JPEGInterchangeFormat);
        const QExifValue length = values.value(JPEGInterchangeFormatLength);
        if (isSingleInteger(position) && isSingleInteger(length)
            && seekWithin(device, start + position.toLong()))
            d->thumbnailData = readBytes(device, length.toLong());
        d->thumbnailXResolution = values.value(XResolution);
        d->thumbnailYResolution = values.value(YResolution);
        d->thumbnailResolutionUnit = values.value(ResolutionUnit);
        d->thumbnailOrientation = values.value(Orientation);
    }
    return true;
}

int QExifImageHeader::write(QIODevice* device) const
{
    if (!device || !device->isWritable())
        return 0;

    const bool hasGps = !d->gpsIfdValues.isEmpty();
    const bool hasThumbnail = !d->thumbnailData.isEmpty();
    const int imageEntries = d->imageIfdValues.size() + (hasGps ? 2 : 1);

    QByteArray block;
    QDataStream stream(&block, QIODevice::WriteOnly);
    stream.setByteOrder(d->byteOrder);

    writeBytes(stream, d->byteOrder == QDataStream::LittleEndian ? "II" : "MM");
    stream << tiffMagic << quint32(tiffHeaderSize);

    // IFD0, up to and with its link.
    stream << static_cast<quint16>(imageEntries);
    const quint32 exifIfdStart = writeEntries(
        stream, d->imageIfdValues,
        static_cast<quint32>(tiffHeaderSize + countSize + entrySize * imageEntries + linkSize));
    writePointer(stream, ExifIfdPointer, exifIfdStart);
    const quint32 gpsIfdStart = exifIfdStart + sizeOfDirectory(d->exifIfdValues);
    quint32 thumbnailIfdStart = gpsIfdStart;
    if (hasGps) {
        writePointer(stream, GpsInfoIfdPointer, gpsIfdStart);
        thumbnailIfdStart += sizeOfDirectory(d->gpsIfdValues);
    }
    stream << (hasThumbnail ? thumbnailIfdStart : 0);
    writeDataOf(stream, d->imageIfdValues);

    writeSubIfd(stream, d->exifIfdValues, exifIfdStart);
    if (hasGps)
        writeSubIfd(stream, d->gpsIfdValues, gpsIfdStart);

    if (hasThumbnail) {
        const quint16 entryCount = 7;
        const quint16 jpegCompression = 6;
        const quint16 inches = 2;
        const QExifValue defaultResolution(UnsignedRational(72, 1));
        const QExifValue xResolution = valueOr(d->thumbnailXResolution, defaultResolution);
        const QExifValue yResolution = valueOr(d->thumbnailYResolution, defaultResolution);

        // In this order, Orientation behind ResolutionUnit: readers have always been given it so.
        stream << entryCount;
        quint32 offset = thumbnailIfdStart + countSize + entryCount * entrySize;
        writeEntry(stream, Compression, QExifValue(jpegCompression), offset);
        offset = writeEntry(stream, XResolution, xResolution, offset);
        offset = writeEntry(stream, YResolution, yResolution, offset);
        writeEntry(stream, ResolutionUnit, valueOr(d->thumbnailResolutionUnit, QExifValue(inches)),
                   offset);
        writeEntry(stream, Orientation, valueOr(d->thumbnailOrientation, QExifValue(quint16(0))),
                   offset);
        writePointer(stream, JPEGInterchangeFormat, offset);
        writePointer(stream, JPEGInterchangeFormatLength,
                     static_cast<quint32>(d->thumbnailData.size()));
        writeData(stream, xResolution);
        writeData(stream, yResolution);
        writeBytes(stream, d->thumbnailData);
    }

    // Only now, because an entry that was there before has had its share of IFD0's data above.
    if (hasGps)
        d->imageIfdValues.insert(GpsInfoIfdPointer, QExifValue(gpsIfdStart));

    const int written = static_cast<int>(qMax(Q_INT64_C(0), device->write(block)));
    d->size = written == block.size() ? written : -1;
    return written;
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
    return d->imageIfdValues.keys();
}

QList<QExifImageHeader::ExifExtendedTag> QExifImageHeader::extendedTags() const
{
    return d->exifIfdValues.keys();
}

QList<QExifImageHeader::GpsTag> QExifImageHeader::gpsTags() const
{
    return d->gpsIfdValues.keys();
}

bool QExifImageHeader::contains(ImageTag tag) const
{
    return d->imageIfdValues.contains(tag);
}

bool QExifImageHeader::contains(ExifExtendedTag tag) const
{
    return d->exifIfdValues.contains(tag);
}

bool QExifImageHeader::contains(GpsTag tag) const
{
    return d->gpsIfdValues.contains(tag);
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
    // A JPEG spends at least one bit on each block of 8 x 8 pixels. One that claims to do better is
    // not worth the memory it asks for.
    const QSize size = reader.size();
    const qint64 maximumPixels = Q_INT64_C(8) * 64 * d->thumbnailData.size();
    if (!size.isValid() || qint64(size.width()) * size.height() > maximumPixels)
        return QImage();
    const QImage image = reader.read();

    // toShort() is 0 for whatever is not a single Short or Byte.
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
    if (d->size != -1)
        return d->size;
    quint32 size = sizeOfDirectory(d->imageIfdValues) + sizeOfDirectory(d->exifIfdValues) + 24;
    if (!d->gpsIfdValues.isEmpty())
        size += sizeOfDirectory(d->gpsIfdValues) + 12;
    if (!d->thumbnailData.isEmpty())
        size += static_cast<quint32>(d->thumbnailData.size()) + 90;
    d->size = static_cast<int>(size);
    return d->size;
}

QList<ExifIfdHeader> QExifImageHeader::readIfdHeaders(QDataStream& stream) const
{
    return readEntries(stream);
}

QExifValue QExifImageHeader::readIfdValue(QDataStream& stream, int startPos,
                                          const ExifIfdHeader& header) const
{
    return readValue(stream, startPos, header);
}

quint32 QExifImageHeader::writeExifHeader(QDataStream& stream, quint16 tag, const QExifValue& value,
                                          quint32 offset) const
{
    return writeEntry(stream, tag, value, offset);
}

void QExifImageHeader::writeExifValue(QDataStream& stream, const QExifValue& value) const
{
    writeData(stream, value);
}

quint32 QExifImageHeader::sizeOf(const QExifValue& value) const
{
    return sizeOfValue(value);
}

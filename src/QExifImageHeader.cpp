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
#include <QVarLengthArray>
#include <QtEndian>

#include <algorithm>
#include <cstring>

class QExifImageHeaderPrivate
{
public:
    /// The block that write() writes; with what writing it changes here.
    QByteArray block();

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

const char startOfImage[] = "\xFF\xD8";
const quint16 app0 = 0xFFE0;
const quint16 app1 = 0xFFE1;
const int maximumSegmentPayload = 65533; // the 16-bit length counts itself

const quint16 tiffMagic = 42;
const int tiffHeaderSize = 8;
const int countSize = 2;
const int entrySize = 12;
const int linkSize = 4;
const int inlineSize = 4;

// No value of a real file comes near; it keeps a payload within what a Qt container holds.
const quint64 maximumPayload = 1u << 29;

// How often the values of one directory may cover the whole device before it is read no further.
// In a sound block they cover it less than once.
const int maximumOverlap = 16;

const QDataStream::ByteOrder bigEndian = QDataStream::BigEndian;

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
    return order == bigEndian ? qFromBigEndian<Integer>(source)
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

/// Bytes that somebody else keeps.
struct Bytes
{
    const char* data;
    int size;
};

/// The block in a device, read piece by piece. Small pieces go through a buffer that is used again
/// and again: a block has dozens of them, and an allocation costs more than reading one.
class BlockReader
{
public:
    BlockReader(QIODevice* device, ByteOrder order, qint64 start)
        : mDevice(device)
        , mOrder(order)
        , mStart(start)
        , mSize(device->size())
    { }

    ByteOrder order() const { return mOrder; }
    qint64 deviceSize() const { return mSize; }

    /// Moves to an offset of the block, false when that lies outside of the device.
    bool seek(quint32 offset)
    {
        const qint64 position = mStart + offset;
        return position >= 0 && position <= mSize && mDevice->seek(position);
    }

    /// The next bytes, up to wanted of them. They stay until the next call.
    Bytes next(quint64 wanted)
    {
        const int size = available(wanted);
        mBuffer.resize(size);
        return {mBuffer.constData(), static_cast<int>(qMax(Q_INT64_C(0), read(size)))};
    }

    /// The bytes that an entry refers to; none where its offset leads out of the device.
    Bytes data(const ExifIfdHeader& entry, int elementSize)
    {
        return next(seek(entry.offset) ? quint64(entry.count) * quint64(elementSize) : 0);
    }

    /// Up to size bytes at an offset, in an array of their own.
    QByteArray bytes(quint32 offset, quint32 size)
    {
        return seek(offset) ? mDevice->read(available(size)) : QByteArray();
    }

    QVector<ExifIfdHeader> entries()
    {
        const Bytes count = next(countSize);
        if (count.size < countSize)
            return QVector<ExifIfdHeader>();
        const Bytes fields = next(quint64(decode<quint16>(count.data, mOrder)) * entrySize);
        QVector<ExifIfdHeader> entries(fields.size / entrySize);
        const char* field = fields.data;
        for (ExifIfdHeader& entry : entries) {
            entry = decodeEntry(field, mOrder);
            field += entrySize;
        }
        return entries;
    }

private:
    int available(quint64 wanted) const
    {
        const qint64 left = qMax(Q_INT64_C(0), mSize - mDevice->pos());
        return static_cast<int>(qMin(qMin(wanted, maximumPayload), static_cast<quint64>(left)));
    }
    qint64 read(int size) { return mDevice->read(mBuffer.data(), size); }

    QIODevice* const mDevice;
    const ByteOrder mOrder;
    const qint64 mStart;
    const qint64 mSize;
    QVarLengthArray<char, 1024> mBuffer;
};

template <typename Integer>
QVector<Integer> integers(Bytes bytes, ByteOrder order)
{
    const int size = static_cast<int>(sizeof(Integer));
    QVector<Integer> values(bytes.size / size);
    for (Integer& value : values) {
        value = decode<Integer>(bytes.data, order);
        bytes.data += size;
    }
    return values;
}

template <typename Integer>
QVector<QPair<Integer, Integer>> rationals(Bytes bytes, ByteOrder order)
{
    const int size = static_cast<int>(sizeof(Integer));
    QVector<QPair<Integer, Integer>> values(bytes.size / (2 * size));
    for (QPair<Integer, Integer>& value : values) {
        value = {decode<Integer>(bytes.data, order), decode<Integer>(bytes.data + size, order)};
        bytes.data += 2 * size;
    }
    return values;
}

QVector<quint8> byteVector(Bytes bytes)
{
    QVector<quint8> values(bytes.size);
    std::copy_n(bytes.data, bytes.size, values.begin());
    return values;
}

/// The text of an entry that claims count bytes, the last of which ends it. Bytes that the end of
/// the device cut short have lost that one already.
QString text(Bytes bytes, quint32 count)
{
    const bool isWhole = static_cast<quint32>(bytes.size) == count;
    return QString::fromLatin1(bytes.data, isWhole ? bytes.size - 1 : bytes.size);
}

QString inlineText(Bytes bytes, quint32 count)
{
    if (count > 0)
        return text({bytes.data, static_cast<int>(count)}, count);
    return QString::fromLatin1(
        bytes.data, static_cast<int>(qstrnlen(bytes.data, static_cast<uint>(bytes.size))));
}

void warnOfType(quint16 type)
{
    qWarning() << "Invalid Ifd Type" << type;
}

QExifValue readValue(BlockReader& block, const ExifIfdHeader& entry)
{
    const ByteOrder order = block.order();
    const quint32 count = entry.count;
    const char* const inlineBytes = reinterpret_cast<const char*>(entry.inlineBytes.data());
    switch (entry.type) {
    case QExifValue::Byte:
        return QExifValue(byteVector(count < 5 ? Bytes{inlineBytes, static_cast<int>(count)}
                                               : block.data(entry, 1)));
    case QExifValue::Ascii:
        return QExifValue(count < 5 ? inlineText({inlineBytes, inlineSize}, count)
                                    : text(block.data(entry, 1), count));
    case QExifValue::Short:
        if (count == 1)
            return QExifValue(entry.inlineShorts[0]);
        if (count == 2)
            return QExifValue(QVector<quint16>{entry.inlineShorts[0], entry.inlineShorts[1]});
        return QExifValue(
            integers<quint16>(count == 0 ? Bytes{inlineBytes, 0} : block.data(entry, 2), order));
    case QExifValue::Long:
        if (count == 1)
            return QExifValue(entry.offset);
        return QExifValue(integers<quint32>(block.data(entry, 4), order));
    case QExifValue::SignedLong:
        if (count == 1)
            return QExifValue(static_cast<qint32>(entry.offset));
        return QExifValue(integers<qint32>(block.data(entry, 4), order));
    case QExifValue::Rational:
        return QExifValue(rationals<quint32>(block.data(entry, 8), order));
    case QExifValue::SignedRational:
        return QExifValue(rationals<qint32>(block.data(entry, 8), order));
    case QExifValue::Undefined: {
        if (count >= 5)
            return QExifValue(block.bytes(entry.offset, count));
        // Whatever the byte order of the file: least significant byte first.
        char bytes[inlineSize];
        qToLittleEndian(entry.offset, reinterpret_cast<uchar*>(bytes));
        return QExifValue(QByteArray(bytes, static_cast<int>(count)));
    }
    default:
        warnOfType(entry.type);
        return QExifValue();
    }
}

quint32 sizeOfValue(const QExifValue& value);

/// The values of a directory's entries; where a tag stands twice, the last one.
template <typename Tag>
QMap<Tag, QExifValue> readValues(BlockReader& block, const QVector<ExifIfdHeader>& entries)
{
    QMap<Tag, QExifValue> values;
    qint64 allowance = block.deviceSize() * maximumOverlap;
    for (const ExifIfdHeader& entry : entries) {
        if (allowance < 0)
            break;
        const QExifValue value = readValue(block, entry);
        allowance -= sizeOfValue(value);
        values.insert(values.constEnd(), static_cast<Tag>(entry.tag), value);
    }
    return values;
}

/// The directory at an offset, empty where that lies outside of the device.
template <typename Tag>
QMap<Tag, QExifValue> readDirectory(BlockReader& block, quint32 offset)
{
    return block.seek(offset) ? readValues<Tag>(block, block.entries()) : QMap<Tag, QExifValue>();
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

/// Appends to a block in one of the two byte orders.
class BlockWriter
{
public:
    BlockWriter(QByteArray* bytes, ByteOrder order)
        : mBytes(bytes)
        , mOrder(order)
    { }

    void write(quint16 number) { writeInteger(number); }
    void write(quint32 number) { writeInteger(number); }
    void write(qint32 number) { writeInteger(number); }
    void write(const QPair<quint32, quint32>& rational) { writeRational(rational); }
    void write(const QPair<qint32, qint32>& rational) { writeRational(rational); }
    void write(const QByteArray& bytes) { mBytes->append(bytes); }

    template <typename Element>
    void write(const QVector<Element>& elements)
    {
        for (const Element& element : elements)
            write(element);
    }

private:
    template <typename Integer>
    void writeInteger(Integer number)
    {
        char bytes[sizeof(Integer)];
        if (mOrder == bigEndian)
            qToBigEndian(number, reinterpret_cast<uchar*>(bytes));
        else
            qToLittleEndian(number, reinterpret_cast<uchar*>(bytes));
        mBytes->append(bytes, static_cast<int>(sizeof(Integer)));
    }
    template <typename Rational>
    void writeRational(const Rational& rational)
    {
        write(rational.first);
        write(rational.second);
    }

    QByteArray* const mBytes;
    const ByteOrder mOrder;
};

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

quint32 writeEntry(BlockWriter& block, quint16 tag, const QExifValue& value, quint32 offset)
{
    const quint32 count = value.count();
    block.write(tag);
    block.write(value.type());
    block.write(count);
    switch (value.type()) {
    case QExifValue::Byte:
    case QExifValue::Ascii:
    case QExifValue::Undefined:
        if (count > 4) {
            block.write(offset);
            return offset + count;
        }
        block.write(fileBytes(value).leftJustified(inlineSize, '\0'));
        return offset;
    case QExifValue::Short: {
        if (count > 2) {
            block.write(offset);
            return offset + 2 * count;
        }
        const QVector<quint16> values = value.toShortVector();
        block.write(values.value(0)); // 0 where there is none
        block.write(values.value(1));
        return offset;
    }
    case QExifValue::Long:
    case QExifValue::SignedLong:
        if (count > 1) {
            block.write(offset);
            return offset + 4 * count;
        }
        block.write(value.toLong()); // 0 where there is none
        return offset;
    case QExifValue::Rational:
    case QExifValue::SignedRational:
        if (count > 0) {
            block.write(offset);
            return offset + 8 * count;
        }
        block.write(quint32(0));
        return offset;
    default:
        warnOfType(value.type());
        block.write(quint32(0));
        return offset;
    }
}

void writeData(BlockWriter& block, const QExifValue& value)
{
    const quint32 count = value.count();
    switch (value.type()) {
    case QExifValue::Byte:
    case QExifValue::Ascii:
    case QExifValue::Undefined:
        if (count > 4)
            block.write(fileBytes(value));
        break;
    case QExifValue::Short:
        if (count > 2)
            block.write(value.toShortVector());
        break;
    case QExifValue::Long:
        if (count > 1)
            block.write(value.toLongVector());
        break;
    case QExifValue::SignedLong:
        if (count > 1)
            block.write(value.toSignedLongVector());
        break;
    case QExifValue::Rational:
        block.write(value.toRationalVector());
        break;
    case QExifValue::SignedRational:
        block.write(value.toSignedRationalVector());
        break;
    default:
        warnOfType(value.type());
        break;
    }
}

template <typename Tag>
quint32 writeEntries(BlockWriter& block, const QMap<Tag, QExifValue>& values, quint32 offset)
{
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        offset = writeEntry(block, it.key(), it.value(), offset);
    return offset;
}

template <typename Tag>
void writeDataOf(BlockWriter& block, const QMap<Tag, QExifValue>& values)
{
    for (const QExifValue& value : values)
        writeData(block, value);
}

/// A sub-IFD that begins at start. Its data offsets leave the count field out, as the format of
/// these files has always had it.
template <typename Tag>
void writeSubIfd(BlockWriter& block, const QMap<Tag, QExifValue>& values, quint32 start)
{
    block.write(static_cast<quint16>(values.size()));
    writeEntries(block, values, start + static_cast<quint32>(entrySize * values.size()));
    writeDataOf(block, values);
}

void writePointer(BlockWriter& block, QExifImageHeader::ImageTag tag, quint32 offset)
{
    writeEntry(block, tag, QExifValue(offset), 0);
}

QExifValue valueOr(const QExifValue& value, const QExifValue& fallback)
{
    return value.isNull() ? fallback : value;
}

// The JPEG around the block

struct Segment
{
    int begin = 0; // of the marker
    quint16 marker = 0;
    int claimedSize = 0; // of the payload, as the length says
    int size = 0; // of the payload, as far as the file goes
    QByteArray name; // the first 4 bytes of the payload

    int payloadBegin() const { return begin + 4; }
    int end() const { return payloadBegin() + size; }
    bool isJfif() const { return marker == app0 && name == "JFIF"; }
    bool isExif() const { return marker == app1 && name == "Exif"; }
};

/// Takes the segment at a position of the file's head. False when not even its length is there.
bool takeSegment(const QByteArray& head, int begin, Segment* segment)
{
    segment->begin = begin;
    if (head.size() < segment->payloadBegin())
        return false;
    segment->marker = decode<quint16>(head.constData() + begin, bigEndian);
    const int length = decode<quint16>(head.constData() + begin + 2, bigEndian);
    segment->claimedSize = qMax(0, length - 2);
    segment->size = qMin(segment->claimedSize, head.size() - segment->payloadBegin());
    segment->name = head.mid(segment->payloadBegin(), qMin(4, segment->size));
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
bool overwrite(QIODevice* device, qint64 position, const QByteArray& before,
               const QByteArray& after)
{
    if (writeAt(device, position, after))
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

/// A marker and the length of a segment.
QByteArray segmentHead(quint16 marker, int payloadSize)
{
    QByteArray head;
    BlockWriter writer(&head, bigEndian);
    writer.write(marker);
    writer.write(static_cast<quint16>(payloadSize + 2));
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

    QByteArray payload = QByteArray("Exif\0\0", 6) + d->block();

    // Whatever decides lies in the first two segments.
    const int twoLargestSegments = 2 * (maximumSegmentPayload + 4);
    if (!device->seek(0))
        return false;
    const QByteArray head = readBytes(device, 2 + twoLargestSegments);
    Segment segment;
    if (!head.startsWith(startOfImage) || !takeSegment(head, 2, &segment))
        return false;
    if (segment.isJfif() && !takeSegment(head, segment.end(), &segment))
        return false;

    if (segment.isExif() && payload.size() < segment.size)
        payload = payload.leftJustified(segment.size, '\0');
    if (payload.size() > maximumSegmentPayload)
        return false;
    if (segment.isExif() && payload.size() == segment.claimedSize && payload.size() == segment.size)
        return overwrite(device, segment.payloadBegin(),
                         head.mid(segment.payloadBegin(), segment.size), payload);

    const QByteArray before = head + device->readAll();
    if (before.size() != device->size())
        return false;
    const int rest = segment.isExif() ? segment.end() : segment.begin;
    QByteArray after = before.left(segment.begin) + segmentHead(app1, payload.size()) + payload;
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
    if (device->read(2) != startOfImage)
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

    const QByteArray head = device->read(tiffHeaderSize);
    if (head.startsWith("II"))
        d->byteOrder = QDataStream::LittleEndian;
    else if (head.startsWith("MM"))
        d->byteOrder = QDataStream::BigEndian;
    else
        return false;
    if (head.size() < tiffHeaderSize
        || decode<quint16>(head.constData() + 2, d->byteOrder) != tiffMagic)
        return false;
    BlockReader block(device, d->byteOrder, start);
    if (!block.seek(decode<quint32>(head.constData() + 4, d->byteOrder)))
        return false;

    const QVector<ExifIfdHeader> entries = block.entries();
    const Bytes link = block.next(linkSize);
    const quint32 thumbnailIfd =
        link.size == linkSize ? decode<quint32>(link.data, d->byteOrder) : 0;
    d->imageIfdValues = readValues<ImageTag>(block, entries);

    const QExifValue exifIfd = d->imageIfdValues.take(ExifIfdPointer);
    if (isSingleInteger(exifIfd))
        d->exifIfdValues = readDirectory<ExifExtendedTag>(block, exifIfd.toLong());
    const QExifValue gpsIfd = d->imageIfdValues.take(GpsInfoIfdPointer);
    if (isSingleInteger(gpsIfd))
        d->gpsIfdValues = readDirectory<GpsTag>(block, gpsIfd.toLong());
    d->exifIfdValues.remove(InteroperabilityIfdPointer);

    if (thumbnailIfd != 0) {
        const QMap<ImageTag, QExifValue> values = readDirectory<ImageTag>(block, thumbnailIfd);
        const QExifValue position = values.value(JPEGInterchangeFormat);
        const QExifValue length = values.value(JPEGInterchangeFormatLength);
        if (isSingleInteger(position) && isSingleInteger(length))
            d->thumbnailData = block.bytes(position.toLong(), length.toLong());
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
    const QByteArray block = d->block();
    const int written = static_cast<int>(qMax(Q_INT64_C(0), device->write(block)));
    if (written != block.size())
        d->size = -1;
    return written;
}

QByteArray QExifImageHeaderPrivate::block()
{
    using Header = QExifImageHeader;
    const bool hasGps = !gpsIfdValues.isEmpty();
    const bool hasThumbnail = !thumbnailData.isEmpty();
    const int imageEntries = imageIfdValues.size() + (hasGps ? 2 : 1);

    QByteArray bytes;
    BlockWriter writer(&bytes, byteOrder);
    writer.write(QByteArray(byteOrder == QDataStream::LittleEndian ? "II" : "MM"));
    writer.write(tiffMagic);
    writer.write(quint32(tiffHeaderSize));

    // IFD0, up to and with its link.
    writer.write(static_cast<quint16>(imageEntries));
    const quint32 exifIfdStart = writeEntries(
        writer, imageIfdValues,
        static_cast<quint32>(tiffHeaderSize + countSize + entrySize * imageEntries + linkSize));
    writePointer(writer, Header::ExifIfdPointer, exifIfdStart);
    const quint32 gpsIfdStart = exifIfdStart + sizeOfDirectory(exifIfdValues);
    quint32 thumbnailIfdStart = gpsIfdStart;
    if (hasGps) {
        writePointer(writer, Header::GpsInfoIfdPointer, gpsIfdStart);
        thumbnailIfdStart += sizeOfDirectory(gpsIfdValues);
    }
    writer.write(hasThumbnail ? thumbnailIfdStart : 0);
    writeDataOf(writer, imageIfdValues);

    writeSubIfd(writer, exifIfdValues, exifIfdStart);
    if (hasGps)
        writeSubIfd(writer, gpsIfdValues, gpsIfdStart);

    if (hasThumbnail) {
        const quint16 entryCount = 7;
        const QExifValue jpegCompression(quint16(6));
        const QExifValue inches(quint16(2));
        const QExifValue noOrientation(quint16(0));
        const QExifValue dotsPerInch(QPair<quint32, quint32>(72, 1));
        const QExifValue xResolution = valueOr(thumbnailXResolution, dotsPerInch);
        const QExifValue yResolution = valueOr(thumbnailYResolution, dotsPerInch);

        // In this order, Orientation behind ResolutionUnit: readers have always been given it so.
        writer.write(entryCount);
        quint32 offset = thumbnailIfdStart + countSize + entryCount * entrySize;
        writeEntry(writer, Header::Compression, jpegCompression, offset);
        offset = writeEntry(writer, Header::XResolution, xResolution, offset);
        offset = writeEntry(writer, Header::YResolution, yResolution, offset);
        writeEntry(writer, Header::ResolutionUnit, valueOr(thumbnailResolutionUnit, inches),
                   offset);
        writeEntry(writer, Header::Orientation, valueOr(thumbnailOrientation, noOrientation),
                   offset);
        writePointer(writer, Header::JPEGInterchangeFormat, offset);
        writePointer(writer, Header::JPEGInterchangeFormatLength,
                     static_cast<quint32>(thumbnailData.size()));
        writeData(writer, xResolution);
        writeData(writer, yResolution);
        writer.write(thumbnailData);
    }

    // Only now, because an entry that was there before has had its share of IFD0's data above.
    if (hasGps)
        imageIfdValues.insert(Header::GpsInfoIfdPointer, QExifValue(gpsIfdStart));
    size = bytes.size();
    return bytes;
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
    if (!d->thumbnailData.startsWith(startOfImage))
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
    return BlockReader(stream.device(), stream.byteOrder(), 0).entries().toList();
}

QExifValue QExifImageHeader::readIfdValue(QDataStream& stream, int startPos,
                                          const ExifIfdHeader& header) const
{
    BlockReader block(stream.device(), stream.byteOrder(), startPos);
    return readValue(block, header);
}

quint32 QExifImageHeader::writeExifHeader(QDataStream& stream, quint16 tag, const QExifValue& value,
                                          quint32 offset) const
{
    QByteArray bytes;
    BlockWriter writer(&bytes, stream.byteOrder());
    const quint32 next = writeEntry(writer, tag, value, offset);
    stream.writeRawData(bytes.constData(), bytes.size());
    return next;
}

void QExifImageHeader::writeExifValue(QDataStream& stream, const QExifValue& value) const
{
    QByteArray bytes;
    BlockWriter writer(&bytes, stream.byteOrder());
    writeData(writer, value);
    stream.writeRawData(bytes.constData(), bytes.size());
}

quint32 QExifImageHeader::sizeOf(const QExifValue& value) const
{
    return sizeOfValue(value);
}

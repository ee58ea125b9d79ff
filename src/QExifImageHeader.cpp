// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "QExifImageHeader.h"

#include "filesystem_p.h"
#include "intactfile_p.h"
#include "jpegsegments_p.h"

#include <QBuffer>
#include <QDebug>
#include <QFile>
#include <QImageReader>
#include <QSize>
#include <QTransform>
#include <QVarLengthArray>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

using namespace OrvaUtilsPrivate;

namespace {

/// Values by tag in ascending order, one behind the other in memory: there are dozens of them, and
/// the nodes of a tree would take as many allocations again as the values do.
template <typename Tag>
class TagMap
{
public:
    struct Entry
    {
        Tag tag;
        QExifValue value;
    };
    using Entries = std::vector<Entry>;

    TagMap() = default;
    /// Of entries in whatever order; where a tag stands twice, the last one counts.
    explicit TagMap(Entries entries)
        : mEntries(std::move(entries))
    {
        const auto descends = [](const Entry& a, const Entry& b) { return a.tag >= b.tag; };
        if (std::adjacent_find(mEntries.begin(), mEntries.end(), descends) == mEntries.end())
            return;
        std::reverse(mEntries.begin(), mEntries.end());
        std::stable_sort(mEntries.begin(), mEntries.end(),
                         [](const Entry& a, const Entry& b) { return a.tag < b.tag; });
        mEntries.erase(std::unique(mEntries.begin(), mEntries.end(),
                                   [](const Entry& a, const Entry& b) { return a.tag == b.tag; }),
                       mEntries.end());
    }

    typename Entries::const_iterator begin() const { return mEntries.begin(); }
    typename Entries::const_iterator end() const { return mEntries.end(); }
    int size() const { return static_cast<int>(mEntries.size()); }
    bool isEmpty() const { return mEntries.empty(); }

    QList<Tag> tags() const
    {
        QList<Tag> tags;
        tags.reserve(size());
        for (const Entry& entry : mEntries)
            tags.append(entry.tag);
        return tags;
    }
    bool contains(Tag tag) const
    {
        const auto place = find(mEntries, tag);
        return place != mEntries.end() && place->tag == tag;
    }
    QExifValue value(Tag tag) const
    {
        return contains(tag) ? find(mEntries, tag)->value : QExifValue();
    }
    void insert(Tag tag, const QExifValue& value)
    {
        if (contains(tag))
            find(mEntries, tag)->value = value;
        else
            mEntries.insert(find(mEntries, tag), Entry{tag, value});
    }
    void remove(Tag tag)
    {
        if (contains(tag))
            mEntries.erase(find(mEntries, tag));
    }
    QExifValue take(Tag tag)
    {
        const QExifValue taken = value(tag);
        remove(tag);
        return taken;
    }

private:
    /// Where a tag is, or else belongs.
    template <typename AnyEntries>
    static auto find(AnyEntries& entries, Tag tag) -> decltype(entries.begin())
    {
        return std::lower_bound(entries.begin(), entries.end(), tag,
                                [](const Entry& entry, Tag wanted) { return entry.tag < wanted; });
    }

    Entries mEntries;
};

class BlockReader;

} // namespace

class QExifImageHeaderPrivate
{
public:
    /// Takes everything from a block, after clear().
    bool read(BlockReader& block);
    /// Appends the block that write() writes, with what writing it changes here.
    void appendBlock(QByteArray* bytes);
    /// What an EXIF segment with this block holds.
    QByteArray payload();
    /// The size of the block by its formula, not by what was written last.
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

using ByteOrder = QDataStream::ByteOrder;

const char startOfImage[] = "\xFF\xD8";

const quint16 tiffMagic = 42;
const int tiffHeaderSize = 8;
const int countSize = 2;
const int entrySize = 12;
const int linkSize = 4;
const int inlineSize = 4;

// No value of a real file comes near; it keeps a payload within what a Qt container holds.
const quint64 maximumPayload = 1u << 29;

// How often the values of one directory may cover the whole block before it is read no further.
// In a sound block they cover it less than once.
const int maximumOverlap = 16;

const QDataStream::ByteOrder bigEndian = QDataStream::BigEndian;

// Reading

template <typename Integer>
Integer decode(const char* bytes, ByteOrder order)
{
    const auto* const source = reinterpret_cast<const uchar*>(bytes);
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

/// A block, in memory or in a device; a device is read piece by piece, small pieces into a buffer
/// that is used again and again. Not one byte is asked for beyond what is there.
class BlockReader
{
public:
    explicit BlockReader(const QByteArray& block)
        : mBlock(block)
        , mSize(block.size())
    { }
    /// A block that begins at a position of a device, which is at some other position maybe.
    BlockReader(QIODevice* device, qint64 start)
        : mDevice(device)
        , mStart(start)
        , mSize(device->size())
        , mPosition(device->pos())
    { }

    ByteOrder order() const { return mOrder; }
    void setOrder(ByteOrder order) { mOrder = order; }
    /// From the beginning of the block to the end of the device.
    qint64 size() const { return mSize - mStart; }

    /// Moves to an offset of the block, false when that lies outside of the device.
    bool seek(quint32 offset)
    {
        const qint64 position = mStart + offset;
        if (position < 0 || position > mSize || (mDevice && !mDevice->seek(position)))
            return false;
        mPosition = position;
        return true;
    }

    /// The next bytes, up to wanted of them. They stay until the next call.
    Bytes next(quint64 wanted)
    {
        const quint64 left = static_cast<quint64>(qMax(Q_INT64_C(0), mSize - mPosition));
        Bytes bytes = {nullptr, static_cast<int>(qMin(qMin(wanted, maximumPayload), left))};
        if (mDevice) {
            mBuffer.resize(bytes.size);
            bytes.size =
                static_cast<int>(qMax(Q_INT64_C(0), mDevice->read(mBuffer.data(), bytes.size)));
            bytes.data = mBuffer.constData();
        } else {
            bytes.data = mBlock.constData() + mPosition;
        }
        mPosition += bytes.size;
        return bytes;
    }

    /// The bytes that an entry refers to; none where its offset leads out of the device.
    Bytes data(const ExifIfdHeader& entry, int elementSize)
    {
        return next(seek(entry.offset) ? quint64(entry.count) * quint64(elementSize) : 0);
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
    QIODevice* const mDevice = nullptr;
    const QByteArray mBlock;
    ByteOrder mOrder = bigEndian;
    const qint64 mStart = 0;
    const qint64 mSize;
    qint64 mPosition = 0;
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
        bytes.data += qint64(2) * size;
    }
    return values;
}

QVector<quint8> byteVector(Bytes bytes)
{
    QVector<quint8> values(bytes.size);
    std::copy_n(bytes.data, bytes.size, values.begin());
    return values;
}

QByteArray byteArray(Bytes bytes)
{
    return QByteArray(bytes.data, bytes.size);
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
            return QExifValue(byteArray(block.data(entry, 1)));
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
TagMap<Tag> readValues(BlockReader& block, const QVector<ExifIfdHeader>& entries)
{
    typename TagMap<Tag>::Entries values;
    values.reserve(static_cast<std::size_t>(entries.size()));
    qint64 allowance = block.size() * maximumOverlap;
    for (const ExifIfdHeader& entry : entries) {
        if (allowance < 0)
            break;
        values.push_back({static_cast<Tag>(entry.tag), readValue(block, entry)});
        allowance -= sizeOfValue(values.back().value);
    }
    return TagMap<Tag>(std::move(values));
}

/// The directory at an offset, empty where that lies outside of the device.
template <typename Tag>
TagMap<Tag> readDirectory(BlockReader& block, quint32 offset)
{
    return block.seek(offset) ? readValues<Tag>(block, block.entries()) : TagMap<Tag>();
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

template <typename Integer>
void encode(Integer number, char* bytes, ByteOrder order)
{
    auto* const target = reinterpret_cast<uchar*>(bytes);
    if (order == bigEndian)
        qToBigEndian(number, target);
    else
        qToLittleEndian(number, target);
}

/// Appends to a block in one of the two byte orders.
class BlockWriter
{
public:
    BlockWriter(QByteArray* bytes, ByteOrder order)
        : mBytes(bytes)
        , mOrder(order)
    { }

    ByteOrder order() const { return mOrder; }

    void write(const char* bytes, int size) { mBytes->append(bytes, size); }
    void write(const QByteArray& bytes) { mBytes->append(bytes); }
    void write(quint16 number) { writeInteger(number); }
    void write(quint32 number) { writeInteger(number); }
    void write(qint32 number) { writeInteger(number); }
    void write(const QPair<quint32, quint32>& rational) { writeRational(rational); }
    void write(const QPair<qint32, qint32>& rational) { writeRational(rational); }

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
        encode(number, bytes, mOrder);
        write(bytes, static_cast<int>(sizeof(Integer)));
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
quint32 sizeOfDirectory(const TagMap<Tag>& values)
{
    quint32 size = countSize;
    for (const auto& entry : values)
        size += sizeOfValue(entry.value);
    return size;
}

/// A Byte, Ascii or Undefined value as it stands in a file, a text without the NUL that ends it.
QByteArray bytesOf(const QExifValue& value)
{
    if (value.type() != QExifValue::Byte)
        return value.toByteArray();
    const QVector<quint8> bytes = value.toByteVector();
    return QByteArray(reinterpret_cast<const char*>(bytes.constData()), bytes.size());
}

/// The bytes of a value that lie behind its entry; 0 where it fits into the entry.
quint32 dataSize(const QExifValue& value)
{
    const quint32 size = sizeOfValue(value);
    return size > entrySize ? size - entrySize : 0;
}

quint32 writeEntry(BlockWriter& block, quint16 tag, const QExifValue& value, quint32 offset)
{
    const ByteOrder order = block.order();
    const quint16 type = value.type();
    const quint32 size = dataSize(value);
    char entry[entrySize] = {}; // what is not set is 0
    char* const field = entry + 8;
    encode(tag, entry, order);
    encode(type, entry + 2, order);
    encode(value.count(), entry + 4, order);
    if (size > 0) {
        encode(offset, field, order);
    } else if (type == QExifValue::Short) {
        const QVector<quint16> values = value.toShortVector();
        encode(values.value(0), field, order);
        encode(values.value(1), field + 2, order);
    } else if (type == QExifValue::Long || type == QExifValue::SignedLong) {
        encode(value.toLong(), field, order); // 0 where there is none
    } else if (type == QExifValue::Byte || type == QExifValue::Ascii
               || type == QExifValue::Undefined) {
        const QByteArray bytes = bytesOf(value);
        std::copy(bytes.begin(), bytes.end(), field);
    } else if (type != QExifValue::Rational && type != QExifValue::SignedRational) {
        warnOfType(type);
    }
    block.write(entry, entrySize);
    return offset + size;
}

void writeData(BlockWriter& block, const QExifValue& value)
{
    if (sizeOfValue(value) == entrySize)
        return; // all of it is in the entry
    switch (value.type()) {
    case QExifValue::Byte:
    case QExifValue::Undefined:
        block.write(bytesOf(value));
        break;
    case QExifValue::Ascii:
        block.write(bytesOf(value));
        block.write("\0", 1);
        break;
    case QExifValue::Short:
        block.write(value.toShortVector());
        break;
    case QExifValue::Long:
        block.write(value.toLongVector());
        break;
    case QExifValue::SignedLong:
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
quint32 writeEntries(BlockWriter& block, const TagMap<Tag>& values, quint32 offset)
{
    for (const auto& entry : values)
        offset = writeEntry(block, entry.tag, entry.value, offset);
    return offset;
}

template <typename Tag>
void writeDataOf(BlockWriter& block, const TagMap<Tag>& values)
{
    for (const auto& entry : values)
        writeData(block, entry.value);
}

/// A sub-IFD that begins at start. Its data offsets leave the count field out, as the format of
/// these files has always had it.
template <typename Tag>
void writeSubIfd(BlockWriter& block, const TagMap<Tag>& values, quint32 start)
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

bool writeAt(QIODevice* device, qint64 position, const char* data, qint64 size)
{
    if (!device->seek(position) || device->write(data, size) != size)
        return false;
    auto* const file = qobject_cast<QFileDevice*>(device);
    return !file || file->flush();
}

bool writeAt(QIODevice* device, qint64 position, const QByteArray& bytes)
{
    return writeAt(device, position, bytes.constData(), bytes.size());
}

bool readAt(QIODevice* device, qint64 position, QByteArray* bytes)
{
    return device->seek(position) && device->read(bytes->data(), bytes->size()) == bytes->size();
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
    if (auto* const file = qobject_cast<QFileDevice*>(device))
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

/// What saving changes in a JPEG: the bytes from begin to end give way to others.
struct Change
{
    qint64 begin = 0;
    qint64 end = 0;
    QByteArray bytes;

    bool movesWhatFollows() const { return bytes.size() != end - begin; }
};

/// Finds what has to change in the JPEG of a device for a payload to be its EXIF segment's. False
/// where that is impossible.
bool findChange(QIODevice* device, QByteArray payload, Change* change)
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
    change->begin = keepsHead ? segments.payloadPosition() : segments.position();
    change->end = isExif ? segments.payloadPosition() + oldSize : segments.position();
    change->bytes = keepsHead ? payload : segmentHead(JpegMarker::App1, payload.size()) + payload;
    return true;
}

bool changeInPlace(QIODevice* device, const Change& change)
{
    if (!change.movesWhatFollows()) {
        QByteArray before(change.bytes.size(), Qt::Uninitialized);
        return readAt(device, change.begin, &before)
            && overwrite(device, change.begin, before, change.bytes);
    }
    if (!device->seek(0))
        return false;
    const QByteArray before = device->readAll();
    if (before.size() != device->size())
        return false;
    QByteArray after = before.left(static_cast<int>(change.begin)) + change.bytes;
    after.append(before.constData() + change.end, before.size() - static_cast<int>(change.end));
    return replaceContent(device, before, after);
}

/// Takes what a change would not change off both ends of it. False where the file cannot be read.
bool narrow(QIODevice* device, Change* change)
{
    QByteArray before(change->bytes.size(), Qt::Uninitialized);
    if (!readAt(device, change->begin, &before))
        return false;
    const QByteArray& after = change->bytes;
    const auto first = std::mismatch(after.begin(), after.end(), before.begin()).first;
    const auto last =
        std::mismatch(after.rbegin(), std::make_reverse_iterator(first), before.rbegin()).first;
    change->end = change->begin + (last.base() - after.begin());
    change->begin += first - after.begin();
    change->bytes = QByteArray(first, static_cast<int>(last.base() - first));
    return true;
}

/// Whether a process that is killed while it writes these bytes has written all of them or none: a
/// system takes them page by page, and ends a killed process between two pages. No page is smaller.
bool isWrittenAtOnce(const Change& change)
{
    const qint64 pageSize = 4096;
    return change.begin / pageSize == (change.end - 1) / pageSize;
}

/// Opens a file to change it. Unlike opening alone this creates none. Unbuffered, so that a write
/// that fails is known at once and what was there can be put back.
bool openExisting(QFile* file)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 11, 0)
    return !file->fileName().isEmpty()
        && file->open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered);
#else
    return file->exists() && file->open(QIODevice::ReadWrite | QIODevice::Unbuffered);
#endif
}

/// Changes a file in place, and closes it: some file systems tell only then that they could not.
bool changeAndClose(QFile* file, const Change& change)
{
    const bool isChanged = changeInPlace(file, change);
    file->close();
    return isChanged && file->error() == QFileDevice::NoError;
}

/// Changes a file so that no end of this process leaves a part of the change; where that is
/// impossible, in place.
bool changeFile(QFile* file, Change change)
{
    if (!change.movesWhatFollows()) {
        if (!narrow(file, &change))
            return false;
        if (change.bytes.isEmpty())
            return true;
        if (isWrittenAtOnce(change))
            return changeAndClose(file, change);
    }
    switch (FileSystem::replaceBytes(file, change.begin, change.end, change.bytes)) {
    case FileSystem::Replaced::Yes:
        return true;
    case FileSystem::Replaced::No:
        return false;
    case FileSystem::Replaced::NotTried:
        break;
    }
    return (file->isOpen() || openExisting(file)) && changeAndClose(file, change);
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
    // A part of a block must not pass for the whole: who saves it would lose the rest.
    if (!file.isIntact())
        clear();
    return isLoaded && file.isIntact();
}

bool QExifImageHeader::loadFromJpeg(QIODevice* device)
{
    clear();
    BlockReader block(extractExif(device));
    return d->read(block);
}

bool QExifImageHeader::saveToJpeg(const QString& fileName) const
{
    QFile file(fileName);
    Change change;
    return openExisting(&file) && findChange(&file, d->payload(), &change)
        && changeFile(&file, change);
}

bool QExifImageHeader::saveToJpeg(QIODevice* device) const
{
    if (!device || device->isSequential() || !device->isReadable() || !device->isWritable()
        || device->openMode().testFlag(QIODevice::Append))
        return false;
    Change change;
    return findChange(device, d->payload(), &change) && changeInPlace(device, change);
}

QByteArray QExifImageHeader::extractExif(QIODevice* device) const
{
    if (!device || !device->isReadable())
        return QByteArray();
    JpegSegments segments(device, JpegSegments::Markers::AllHaveLengths);
    bool isFound = segments.begin();
    while (isFound && segments.marker() != JpegMarker::App1)
        isFound = segments.next();
    const int headSize = 6; // "Exif" and two bytes that are not looked at
    if (!isFound || !segments.startsWith("Exif") || segments.read(headSize).size() < headSize)
        return QByteArray();
    return segments.read(segments.claimedSize());
}

bool QExifImageHeader::read(QIODevice* device)
{
    clear();
    if (!device || !device->isReadable() || device->isSequential())
        return false;
    BlockReader block(device, device->pos());
    return d->read(block);
}

bool QExifImageHeaderPrivate::read(BlockReader& block)
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
    imageIfdValues = readValues<Header::ImageTag>(block, entries);

    const QExifValue exifIfd = imageIfdValues.take(Header::ExifIfdPointer);
    if (isSingleInteger(exifIfd))
        exifIfdValues = readDirectory<Header::ExifExtendedTag>(block, exifIfd.toLong());
    const QExifValue gpsIfd = imageIfdValues.take(Header::GpsInfoIfdPointer);
    if (isSingleInteger(gpsIfd))
        gpsIfdValues = readDirectory<Header::GpsTag>(block, gpsIfd.toLong());
    exifIfdValues.remove(Header::InteroperabilityIfdPointer);

    if (thumbnailIfd != 0) {
        const TagMap<Header::ImageTag> values =
            readDirectory<Header::ImageTag>(block, thumbnailIfd);
        const QExifValue position = values.value(Header::JPEGInterchangeFormat);
        const QExifValue length = values.value(Header::JPEGInterchangeFormatLength);
        if (isSingleInteger(position) && isSingleInteger(length) && block.seek(position.toLong()))
            thumbnailData = byteArray(block.next(length.toLong()));
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
    payload.reserve(JpegSegments::MaximumPayload); // whatever is appended, it is not copied again
    appendBlock(&payload);
    return payload;
}

void QExifImageHeaderPrivate::appendBlock(QByteArray* bytes)
{
    using Header = QExifImageHeader;
    const bool hasGps = !gpsIfdValues.isEmpty();
    const bool hasThumbnail = !thumbnailData.isEmpty();
    const int imageEntries = imageIfdValues.size() + (hasGps ? 2 : 1);

    const int start = bytes->size();
    BlockWriter writer(bytes, byteOrder);
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
    size = bytes->size() - start;
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
    QImage image = reader.read();

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
    BlockReader block(stream.device(), 0);
    block.setOrder(stream.byteOrder());
    return block.entries().toList();
}

QExifValue QExifImageHeader::readIfdValue(QDataStream& stream, int startPos,
                                          const ExifIfdHeader& header) const
{
    BlockReader block(stream.device(), startPos);
    block.setOrder(stream.byteOrder());
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

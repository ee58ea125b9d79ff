// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The TIFF structure of an EXIF block: directories of entries, each with a tag and a typed value,
// which is stored in the entry if it fits and elsewhere in the block otherwise.
//
// TiffType describes the payload of a type, TagMap contains the values of a directory, TiffReader
// and TiffWriter read and write a block.

#ifndef ORVAUTILS_TIFFBLOCK_P_H
#define ORVAUTILS_TIFFBLOCK_P_H

#include "QExifImageHeader.h"

#include <QByteArray>
#include <QVarLengthArray>
#include <QtEndian>

#include <algorithm>
#include <utility>
#include <vector>

namespace OrvaUtilsPrivate {

using ByteOrder = QDataStream::ByteOrder;

const quint16 tiffMagic = 42;
const int tiffHeaderSize = 8;
const int countSize = 2; // of the number of entries that a directory begins with
const int entrySize = 12;
const int linkSize = 4; // of the offset of the next directory
const int inlineSize = 4; // of what fits into an entry

template <typename Integer>
Integer decode(const char* bytes, ByteOrder order)
{
    const auto* const source = reinterpret_cast<const uchar*>(bytes);
    return order == QDataStream::BigEndian ? qFromBigEndian<Integer>(source)
                                           : qFromLittleEndian<Integer>(source);
}

template <typename Integer>
void encode(Integer number, char* bytes, ByteOrder order)
{
    auto* const target = reinterpret_cast<uchar*>(bytes);
    if (order == QDataStream::BigEndian)
        qToBigEndian(number, target);
    else
        qToLittleEndian(number, target);
}

/// Bytes that are owned by someone else.
struct Bytes
{
    const char* data;
    int size;
};

// Types

class TiffWriter;

/// Describes the payload of a field type.
struct TiffType
{
    quint16 number;
    int elementSize; ///< in bytes
    /// Reads the value of a payload that claims \a count elements and contains those that there
    /// are. Null for the types that QExifValue does not support.
    QExifValue (*read)(Bytes payload, quint32 count, ByteOrder order);
    /// Writes the whole payload of a value. Null if read is.
    void (*write)(TiffWriter& block, const QExifValue& value);

    /// The type with that number; null if there is none.
    static const TiffType* find(quint16 number);
};

/// Warns of a type that QExifValue does not support.
void warnOfType(quint16 type);

/// The size of the part of a value outside of its entry, in bytes; 0 if it fits into the entry.
quint32 dataSize(const QExifValue& value);

/// The size of an entry and of its value outside of it, in bytes. 0 for an unknown type.
quint32 sizeOfEntry(const QExifValue& value);

// Values of a directory

/// Values in ascending order of their tags, contiguous in memory: there are dozens of them, and the
/// nodes of a tree would take as many allocations again as the values do.
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
    /// Takes entries in any order; if a tag occurs twice, the last one counts.
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
    /// The value of \a tag; null if there is none.
    const QExifValue* find(Tag tag) const
    {
        const auto place = placeOf(mEntries, tag);
        return place != mEntries.end() && place->tag == tag ? &place->value : nullptr;
    }
    QExifValue value(Tag tag) const
    {
        const QExifValue* const found = find(tag);
        return found ? *found : QExifValue();
    }
    void insert(Tag tag, const QExifValue& value)
    {
        const auto place = placeOf(mEntries, tag);
        if (find(tag))
            place->value = value;
        else
            mEntries.insert(place, Entry{tag, value});
    }
    void remove(Tag tag)
    {
        if (find(tag))
            mEntries.erase(placeOf(mEntries, tag));
    }
    QExifValue take(Tag tag)
    {
        const QExifValue taken = value(tag);
        remove(tag);
        return taken;
    }

private:
    /// The position of a tag, or where it would be inserted.
    template <typename AnyEntries>
    static auto placeOf(AnyEntries& entries, Tag tag) -> decltype(entries.begin())
    {
        return std::lower_bound(entries.begin(), entries.end(), tag,
                                [](const Entry& entry, Tag wanted) { return entry.tag < wanted; });
    }

    Entries mEntries;
};

template <typename Tag>
quint32 sizeOfDirectory(const TagMap<Tag>& values)
{
    quint32 size = countSize;
    for (const auto& entry : values)
        size += sizeOfEntry(entry.value);
    return size;
}

// Reading

/// The entry that is encoded in 12 bytes.
ExifIfdHeader decodeEntry(const char* bytes, ByteOrder order);

/// Reads a block in memory or in a device. A device is read piece by piece, small pieces into a
/// buffer that is reused. No more bytes are requested than there are.
class TiffReader
{
public:
    explicit TiffReader(const QByteArray& block);
    /// Reads the block that begins at \a start of \a device; the first read is at the device's
    /// current position.
    TiffReader(QIODevice* device, qint64 start);

    ByteOrder order() const { return mOrder; }
    void setOrder(ByteOrder order) { mOrder = order; }

    /// The bytes from the beginning of the block to the end of the device.
    qint64 size() const { return mSize - mStart; }

    /// Moves to an offset in the block. False when it lies outside of the device.
    bool seek(quint32 offset);

    /// The next bytes, up to \a wanted of them. They are valid until the next call.
    Bytes next(quint64 wanted);

    /// Reads the number of entries of a directory at the current position, and that many entries;
    /// fewer if the device ends before.
    QVector<ExifIfdHeader> entries();

    /// The value of an entry. Null, after a warning, for a type that QExifValue does not support.
    QExifValue value(const ExifIfdHeader& entry);

    /// The values of the entries of one directory; if a tag occurs twice, the last one.
    template <typename Tag>
    TagMap<Tag> values(const QVector<ExifIfdHeader>& entries)
    {
        // How often the values may cover the whole block. In an intact block, it is less than once.
        const int maximumOverlap = 16;
        typename TagMap<Tag>::Entries values;
        values.reserve(static_cast<std::size_t>(entries.size()));
        qint64 allowance = size() * maximumOverlap;
        for (const ExifIfdHeader& entry : entries) {
            if (allowance < 0)
                break;
            values.push_back({static_cast<Tag>(entry.tag), value(entry)});
            allowance -= sizeOfEntry(values.back().value);
        }
        return TagMap<Tag>(std::move(values));
    }

    /// The directory at an offset; empty if that lies outside of the device.
    template <typename Tag>
    TagMap<Tag> directory(quint32 offset)
    {
        return seek(offset) ? values<Tag>(entries()) : TagMap<Tag>();
    }

private:
    QIODevice* const mDevice = nullptr;
    const QByteArray mBlock;
    ByteOrder mOrder = QDataStream::BigEndian;
    const qint64 mStart = 0;
    const qint64 mSize;
    qint64 mPosition = 0;
    QVarLengthArray<char, 1024> mBuffer;
};

// Writing

/// Appends to a block in one of the two byte orders.
class TiffWriter
{
public:
    TiffWriter(QByteArray* block, ByteOrder order)
        : mBlock(block)
        , mOrder(order)
    { }

    void write(const char* bytes, int size) { mBlock->append(bytes, size); }
    void write(const QByteArray& bytes) { mBlock->append(bytes); }
    void write(quint8 number) { mBlock->append(static_cast<char>(number)); }
    void write(quint16 number) { writeInteger(number); }
    void write(quint32 number) { writeInteger(number); }
    void write(qint32 number) { writeInteger(number); }

    template <typename Integer>
    void write(const QPair<Integer, Integer>& rational)
    {
        write(rational.first);
        write(rational.second);
    }

    template <typename Element>
    void write(const QVector<Element>& elements)
    {
        for (const Element& element : elements)
            write(element);
    }

    /// Writes an entry; its data, if it does not fit, will be at \a offset. Returns the next free
    /// offset.
    quint32 writeEntry(quint16 tag, const QExifValue& value, quint32 offset);

    /// Writes the data of a value if it does not fit into its entry, otherwise nothing.
    void writeData(const QExifValue& value);

    template <typename Tag>
    quint32 writeEntries(const TagMap<Tag>& values, quint32 offset)
    {
        for (const auto& entry : values)
            offset = writeEntry(entry.tag, entry.value, offset);
        return offset;
    }

    template <typename Tag>
    void writeData(const TagMap<Tag>& values)
    {
        for (const auto& entry : values)
            writeData(entry.value);
    }

private:
    template <typename Integer>
    void writeInteger(Integer number)
    {
        char bytes[sizeof(Integer)];
        encode(number, bytes, mOrder);
        write(bytes, static_cast<int>(sizeof(Integer)));
    }

    QByteArray* const mBlock;
    const ByteOrder mOrder;
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_TIFFBLOCK_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "exifblock_p.h"

#include "tiffblock_p.h"

#include <QTextCodec>

#include <algorithm>
#include <cstring>
#include <utility>

namespace OrvaUtilsPrivate {

namespace {

const quint16 exifPointer = QExifImageHeader::ExifIfdPointer;
const quint16 gpsPointer = QExifImageHeader::GpsInfoIfdPointer;
const quint16 interoperabilityPointer = QExifImageHeader::InteroperabilityIfdPointer;
const quint16 subIfdPointer = 0x014A; // of TIFF, to any number of directories

// Limits that plausible blocks do not reach.
const int mostDirectories = 64;
const int mostPointers = 1000;

bool isPointer(quint16 tag)
{
    return tag == exifPointer || tag == gpsPointer || tag == interoperabilityPointer;
}

/// The size in bytes of \a count elements of a type; 0 for a type that TIFF does not define.
quint64 sizeOf(quint16 type, quint32 count)
{
    const TiffType* const known = TiffType::find(type);
    return known ? quint64(count) * quint64(known->elementSize) : 0;
}

/// A value as it is encoded in a file.
QByteArray encoded(const QExifValue& value, ByteOrder order, ExifBlock::TextCodec codec)
{
    QByteArray bytes;
    if (value.type() == QExifValue::Ascii && codec == ExifBlock::TextCodec::Utf8) {
        bytes = value.toString().toUtf8();
        bytes.append('\0');
    } else {
        TiffWriter writer(&bytes, order);
        TiffType::find(value.type())->write(writer, value);
    }
    return bytes;
}

QString decodedText(const QByteArray& bytes, ExifBlock::TextCodec codec)
{
    if (codec == ExifBlock::TextCodec::Utf8) {
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        QString text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(),
                                                                    int(bytes.size()), &state);
        if (state.invalidChars == 0 && state.remainingChars == 0)
            return text;
    }
    return QString::fromLatin1(bytes.constData(), bytes.size());
}

/// Traverses a block along all pointers, and along the links from IFD0 on, wherever they lead.
class PointerWalk
{
public:
    explicit PointerWalk(const QByteArray& block)
        : mBlock(block)
        , mOrder(block.startsWith("II") ? QDataStream::LittleEndian : QDataStream::BigEndian)
    { }

    /// Whether there is a pointer to a GPS directory, or an implausible number of directories.
    bool findsGps()
    {
        add(number(4));
        for (int i = 0; i < mDirectories.size() && !mFindsGps; ++i)
            pass(mDirectories.at(i));
        return mFindsGps;
    }

private:
    bool isThere(qint64 at, qint64 size) const { return at + size <= mBlock.size(); }

    /// Some readers take what is missing at the end for zeros.
    quint32 number(qint64 at) const
    {
        const QByteArray bytes = mBlock.mid(int(qMin(at, qint64(mBlock.size()))), 4);
        return decode<quint32>(bytes.leftJustified(4, '\0').constData(), mOrder);
    }

    void add(quint32 directory)
    {
        mFindsGps = mFindsGps || ++mPointers > mostPointers;
        const bool isDirectory = directory >= tiffHeaderSize && isThere(directory, countSize);
        if (!isDirectory || mDirectories.contains(directory))
            return;
        mDirectories.append(directory);
        mFindsGps = mFindsGps || mDirectories.size() > mostDirectories;
    }

    void pass(quint32 directory)
    {
        const int claimed = decode<quint16>(mBlock.constData() + directory, mOrder);
        qint64 at = qint64(directory) + countSize;
        for (int i = 0; i < claimed && isThere(at, entrySize) && !mFindsGps; ++i, at += entrySize)
            passEntry(at);
        // Some writers put data right after the entries of other directories.
        if (directory == mLinked) {
            mLinked = number(at);
            add(mLinked);
        }
    }

    void passEntry(qint64 at)
    {
        const int offsetSize = 4;
        const auto tag = decode<quint16>(mBlock.constData() + at, mOrder);
        const auto type = decode<quint16>(mBlock.constData() + at + 2, mOrder);
        mFindsGps = mFindsGps || tag == gpsPointer;
        if ((!isPointer(tag) && tag != subIfdPointer) || sizeOf(type, 1) != offsetSize)
            return;
        const quint32 count = number(at + 4);
        const qint64 place = count > 1 ? number(at + 8) : at + 8;
        for (quint32 i = 0; i < count && isThere(place, (i + 1) * qint64(offsetSize)) && !mFindsGps;
             ++i)
            add(number(place + i * qint64(offsetSize)));
    }

    const QByteArray mBlock;
    const ByteOrder mOrder;
    QVector<quint32> mDirectories;
    int mPointers = 0;
    quint32 mLinked = number(4); // the directory that the links have led to so far
    bool mFindsGps = false;
};

} // namespace

// Reading

bool ExifBlock::parse(const QByteArray& block)
{
    *this = ExifBlock();
    if (block.size() < tiffHeaderSize)
        return false;
    const char* const head = block.constData();
    const bool isLittle = std::memcmp(head, "II", 2) == 0;
    const ByteOrder order = isLittle ? QDataStream::LittleEndian : QDataStream::BigEndian;
    const auto offset = decode<quint32>(head + 4, order);
    if ((!isLittle && std::memcmp(head, "MM", 2) != 0)
        || decode<quint16>(head + 2, order) != tiffMagic || offset < tiffHeaderSize
        || qint64(offset) + countSize > block.size())
        return false;
    mBlock = block;
    mOrder = order;

    const int image = parseIfd(Image, offset, -1, 0);
    parsePointers(image, exifPointer, Exif);
    parsePointers(image, gpsPointer, Gps);
    parsePointers(indexOf(Exif), interoperabilityPointer, Other);
    parseIfd(Thumbnail, mIfds[static_cast<std::size_t>(image)].link, image, 0);
    for (int i = static_cast<int>(mIfds.size()); i-- > 0;)
        parsePointers(i, gpsPointer, Other);
    if (mIsTangled) {
        *this = ExifBlock();
        return false;
    }
    claimLinks();
    return true;
}

/// Counts the link at the end of most sub-directories among their bytes, if there is one: some
/// writers put data right after the entries.
void ExifBlock::claimLinks()
{
    for (Ifd& ifd : mIfds) {
        const Range link = {ifd.range.end, ifd.range.end + linkSize};
        const bool mayBeLink = ifd.pointerTag != 0 && link.end <= mBlock.size()
            && decode<quint32>(mBlock.constData() + link.begin, mOrder) == 0;
        if (mayBeLink && !isUsed(link))
            ifd.range.end = link.end;
    }
}

bool ExifBlock::isUsed(const Range& range) const
{
    const auto meets = [&range](const Range& other) {
        return other.begin < range.end && range.begin < other.end;
    };
    return std::any_of(mIfds.begin(), mIfds.end(), [this, &meets](const Ifd& ifd) {
        const QVector<Range> pictures = pictureData(ifd);
        return meets(ifd.range) || std::any_of(pictures.begin(), pictures.end(), meets)
            || std::any_of(ifd.entries.begin(), ifd.entries.end(),
                           [&meets](const Entry& entry) { return meets(entry.data); });
    });
}

/// Parses the directory at an offset and returns its index; -1 if there is none, if it has already
/// been parsed, if there are too many directories, or if they overlap so often that keeping them
/// would take far more memory than the block.
int ExifBlock::parseIfd(Directory kind, quint32 offset, int parent, quint16 pointerTag)
{
    const auto isHere = [offset](const Ifd& ifd) { return ifd.offset == offset; };
    if (offset < tiffHeaderSize || qint64(offset) + countSize > mBlock.size()
        || std::any_of(mIfds.begin(), mIfds.end(), isHere))
        return -1;
    Ifd ifd;
    ifd.kind = kind;
    ifd.parent = parent;
    ifd.pointerTag = pointerTag;
    ifd.offset = offset;
    const int begin = static_cast<int>(offset) + countSize;
    const int claimed = decode<quint16>(mBlock.constData() + offset, mOrder);
    ifd.oldCount = int(qMin(claimed, (mBlock.size() - begin) / entrySize));
    mEntriesSize += qint64(ifd.oldCount) * entrySize;
    mIsTangled = mIsTangled || static_cast<int>(mIfds.size()) == mostDirectories
        || mEntriesSize / 4 > mBlock.size();
    if (mIsTangled)
        return -1;
    ifd.range = {static_cast<int>(offset), begin + ifd.oldCount * entrySize};
    ifd.entries.reserve(static_cast<std::size_t>(ifd.oldCount));
    for (int i = 0; i < ifd.oldCount; ++i) {
        Entry entry;
        entry.at = begin + i * entrySize;
        const char* const bytes = mBlock.constData() + entry.at;
        entry.tag = decode<quint16>(bytes, mOrder);
        entry.type = decode<quint16>(bytes + 2, mOrder);
        entry.count = decode<quint32>(bytes + 4, mOrder);
        const quint64 size = sizeOf(entry.type, entry.count);
        const auto data = decode<quint32>(bytes + 8, mOrder);
        if (size > inlineSize && data < static_cast<quint32>(mBlock.size())) {
            const int dataBegin = static_cast<int>(data);
            const auto available = static_cast<quint64>(mBlock.size() - dataBegin);
            entry.data = {dataBegin, dataBegin + static_cast<int>(qMin(size, available))};
        }
        ifd.entries.push_back(entry);
    }
    const bool hasLink = (kind == Image || kind == Thumbnail) && ifd.oldCount == claimed
        && ifd.range.end + linkSize <= mBlock.size();
    if (hasLink) {
        ifd.link = decode<quint32>(mBlock.constData() + ifd.range.end, mOrder);
        ifd.range.end += linkSize;
    }
    mIfds.push_back(std::move(ifd));
    return static_cast<int>(mIfds.size()) - 1;
}

/// Parses the directories that the entries of a tag point to. Only the last one gets \a kind, the
/// others are Other.
void ExifBlock::parsePointers(int parent, quint16 pointerTag, Directory kind)
{
    if (parent < 0)
        return;
    QVector<quint32> offsets;
    for (const Entry& entry : mIfds[static_cast<std::size_t>(parent)].entries) {
        const bool isOffset = entry.count == 1 && sizeOf(entry.type, 1) == 4;
        if (entry.tag == pointerTag && isOffset)
            offsets.append(decode<quint32>(mBlock.constData() + entry.at + 8, mOrder));
    }
    for (int i = 0; i < offsets.size(); ++i)
        parseIfd(i == offsets.size() - 1 ? kind : Other, offsets[i], parent, pointerTag);
}

/// The ranges of the bytes of a thumbnail: a JPEG or the strips of a picture.
QVector<ExifBlock::Range> ExifBlock::pictureData(const Ifd& ifd) const
{
    const auto numbersOf = [this, &ifd](quint16 tag) {
        QVector<quint32> numbers;
        for (const Entry& entry : ifd.entries) {
            if (entry.tag != tag || entry.isNew)
                continue;
            const QByteArray bytes = payloadOf(entry);
            const int size = static_cast<int>(qMin<quint64>(8, sizeOf(entry.type, 1)));
            numbers.clear();
            for (int at = 0; (size == 2 || size == 4) && at + size <= bytes.size(); at += size)
                numbers.append(size == 2 ? decode<quint16>(bytes.constData() + at, mOrder)
                                         : decode<quint32>(bytes.constData() + at, mOrder));
        }
        return numbers;
    };
    QVector<Range> ranges;
    const std::pair<quint16, quint16> places[] = {
        {QExifImageHeader::JPEGInterchangeFormat, QExifImageHeader::JPEGInterchangeFormatLength},
        {QExifImageHeader::StripOffsets, QExifImageHeader::StripByteCounts}};
    for (const auto& place : places) {
        const QVector<quint32> offsets = numbersOf(place.first);
        const QVector<quint32> sizes = numbersOf(place.second);
        for (int i = 0; i < qMin(offsets.size(), sizes.size()); ++i) {
            const qint64 end = qMin(qint64(offsets[i]) + sizes[i], qint64(mBlock.size()));
            if (offsets[i] >= tiffHeaderSize && end > offsets[i])
                ranges.append({static_cast<int>(offsets[i]), static_cast<int>(end)});
        }
    }
    return ranges;
}

// Values

bool ExifBlock::isEmpty() const
{
    return mBlock.isEmpty() && std::all_of(mIfds.begin(), mIfds.end(), [](const Ifd& ifd) {
               return ifd.entries.empty();
           });
}

int ExifBlock::indexOf(Directory directory) const
{
    const auto isWanted = [directory](const Ifd& ifd) {
        return ifd.kind == directory && !ifd.isRemoved;
    };
    const auto found = std::find_if(mIfds.begin(), mIfds.end(), isWanted);
    return found == mIfds.end() ? -1 : static_cast<int>(found - mIfds.begin());
}

const ExifBlock::Entry* ExifBlock::find(Directory directory, quint16 tag) const
{
    const int index = indexOf(directory);
    if (index < 0)
        return nullptr;
    const Entries& entries = mIfds[static_cast<std::size_t>(index)].entries;
    const auto last = std::find_if(entries.rbegin(), entries.rend(),
                                   [tag](const Entry& entry) { return entry.tag == tag; });
    return last == entries.rend() ? nullptr : &*last;
}

QList<quint16> ExifBlock::tags(Directory directory) const
{
    QList<quint16> tags;
    const int index = indexOf(directory);
    if (index < 0)
        return tags;
    for (const Entry& entry : mIfds[static_cast<std::size_t>(index)].entries) {
        if (!isPointer(entry.tag))
            tags.append(entry.tag);
    }
    std::sort(tags.begin(), tags.end());
    tags.erase(std::unique(tags.begin(), tags.end()), tags.end());
    return tags;
}

bool ExifBlock::contains(Directory directory, quint16 tag) const
{
    return !isPointer(tag) && find(directory, tag);
}

QByteArray ExifBlock::payloadOf(const Entry& entry) const
{
    if (entry.isNew)
        return entry.payload;
    const quint64 size = sizeOf(entry.type, entry.count);
    return size <= inlineSize ? mBlock.mid(entry.at + 8, static_cast<int>(size))
                              : mBlock.mid(entry.data.begin, entry.data.end - entry.data.begin);
}

QExifValue ExifBlock::value(Directory directory, quint16 tag, TextCodec codec) const
{
    const Entry* const entry = isPointer(tag) ? nullptr : find(directory, tag);
    const TiffType* const type = entry ? TiffType::find(entry->type) : nullptr;
    if (!type || !type->read)
        return QExifValue();
    QByteArray bytes = payloadOf(*entry);
    if (entry->type != QExifValue::Ascii)
        return type->read({bytes.constData(), int(bytes.size())}, entry->count, mOrder);
    if (bytes.endsWith('\0'))
        bytes.chop(1);
    return QExifValue(decodedText(bytes, codec));
}

// Changing

ExifBlock::Ifd& ExifBlock::ensured(Directory directory)
{
    int index = indexOf(directory);
    if (index < 0) {
        const bool isImage = directory == Image;
        if (!isImage)
            ensured(Image);
        Ifd ifd;
        ifd.kind = directory;
        ifd.parent = isImage ? -1 : indexOf(Image);
        ifd.pointerTag = directory == Exif ? exifPointer : directory == Gps ? gpsPointer : 0;
        mIfds.push_back(ifd);
        index = static_cast<int>(mIfds.size()) - 1;
    }
    return mIfds[static_cast<std::size_t>(index)];
}

void ExifBlock::setValue(Directory directory, quint16 tag, const QExifValue& value, TextCodec codec)
{
    if (isPointer(tag))
        return;
    if (value.isNull()) {
        remove(directory, tag);
        return;
    }
    Entry entry;
    entry.tag = tag;
    entry.type = value.type();
    entry.isNew = true;
    entry.payload = encoded(value, mOrder, codec);
    entry.count = entry.type == QExifValue::Ascii ? static_cast<quint32>(entry.payload.size())
                                                  : value.count();

    Ifd& ifd = ensured(directory);
    Entries& entries = ifd.entries;
    const auto hasTag = [tag](const Entry& other) { return other.tag == tag; };
    if (std::count_if(entries.begin(), entries.end(), hasTag) == 1) {
        Entry& old = *std::find_if(entries.begin(), entries.end(), hasTag);
        if (old.type == entry.type && old.count == entry.count && payloadOf(old) == entry.payload)
            return;
        entry.data = old.data;
        old = entry;
        return;
    }
    removeEntries(ifd, tag);
    entries.push_back(entry);
    ifd.isRestructured = true;
}

void ExifBlock::remove(Directory directory, quint16 tag)
{
    const int index = indexOf(directory);
    if (index < 0 || isPointer(tag))
        return;
    Ifd& ifd = mIfds[static_cast<std::size_t>(index)];
    removeEntries(ifd, tag);
    if (ifd.entries.empty() && ifd.isRestructured && directory != Image)
        removeIfd(index);
}

void ExifBlock::removeEntries(Ifd& ifd, quint16 tag)
{
    const auto keeps = [tag](const Entry& entry) { return entry.tag != tag; };
    const auto removed = std::stable_partition(ifd.entries.begin(), ifd.entries.end(), keeps);
    if (removed == ifd.entries.end())
        return;
    for (auto entry = removed; entry != ifd.entries.end(); ++entry)
        mFreed.append(entry->data);
    ifd.entries.erase(removed, ifd.entries.end());
    ifd.isRestructured = true;
}

void ExifBlock::removeIfd(int index)
{
    Ifd& ifd = mIfds[static_cast<std::size_t>(index)];
    ifd.isRemoved = true;
    mFreed.append(ifd.range);
    for (const Entry& entry : ifd.entries)
        mFreed.append(entry.data);
    mFreed += pictureData(ifd);
    ifd.entries.clear();
    Ifd& parent = mIfds[static_cast<std::size_t>(ifd.parent)];
    if (ifd.pointerTag != 0)
        removeEntries(parent, ifd.pointerTag);
    else
        setLink(parent, 0);
}

void ExifBlock::setLink(Ifd& ifd, quint32 link)
{
    ifd.isLinkChanged = ifd.isLinkChanged || ifd.link != link;
    ifd.link = link;
}

void ExifBlock::removeGps()
{
    for (std::size_t i = mIfds.size(); i-- > 0;) {
        if (mIfds[i].pointerTag == gpsPointer && !mIfds[i].isRemoved)
            removeIfd(static_cast<int>(i));
    }
    // A pointer may lead nowhere.
    for (Ifd& ifd : mIfds)
        removeEntries(ifd, gpsPointer);
}

bool ExifBlock::mayTellGps(const QByteArray& block)
{
    return PointerWalk(block).findsGps();
}

void ExifBlock::removeThumbnail()
{
    for (std::size_t i = mIfds.size(); i-- > 0;) {
        const int parent = mIfds[i].parent;
        const bool isBelow =
            parent >= 0 && mIfds[static_cast<std::size_t>(parent)].kind == Thumbnail;
        if ((isBelow || mIfds[i].kind == Thumbnail) && !mIfds[i].isRemoved)
            removeIfd(static_cast<int>(i));
    }
    const int image = indexOf(Image);
    if (image >= 0)
        setLink(mIfds[static_cast<std::size_t>(image)], 0); // it may lead nowhere
}

} // namespace OrvaUtilsPrivate

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// How a changed ExifBlock is serialized.

#include "exifblock_p.h"

#include "asconst_p.h"
#include "tiffblock_p.h"

#include <algorithm>

namespace OrvaUtilsPrivate {

namespace {

/// A number as it is encoded in a file.
QByteArray encoded(quint32 number, ByteOrder order)
{
    QByteArray bytes;
    TiffWriter(&bytes, order).write(number);
    return bytes;
}

} // namespace

/// How often each byte of a block is used.
class ExifBlock::Coverage
{
public:
    explicit Coverage(int size)
        : mChanges(static_cast<std::size_t>(size) + 1)
    { }

    void add(const Range& range, int times = 1)
    {
        mChanges[static_cast<std::size_t>(range.begin)] += times;
        mChanges[static_cast<std::size_t>(range.end)] -= times;
    }
    /// How often each byte is used.
    std::vector<int> counts() const
    {
        std::vector<int> counts(mChanges.size() - 1);
        int count = 0;
        for (std::size_t at = 0; at < counts.size(); ++at) {
            count += mChanges[at];
            counts[at] = count;
        }
        return counts;
    }

private:
    std::vector<int> mChanges; // of the count, from one byte to the next
};

/// Writes the changed directories and values of a block: in their old places if they fit there and
/// share them with nothing else, otherwise at the end.
class ExifBlock::Composer
{
public:
    /// If \a movesAll, all changed directories move; otherwise those that fit stay in place.
    Composer(const ExifBlock& block, bool movesAll)
        : mMovesAll(movesAll)
        , mOrder(block.mOrder)
        , mOld(block.mBlock)
        , mOut(block.mBlock)
        , mIfds(block.mIfds)
        , mFreed(block.mFreed)
        , mUses(block.uses())
    { }

    QByteArray run()
    {
        // Children come after their parents, which have to point to their new places.
        for (std::size_t i = mIfds.size(); i-- > 0;)
            choosePlace(mIfds[i]);
        for (Ifd& ifd : mIfds)
            chooseValuePlaces(ifd);
        eraseFreed();
        if (mOut.isEmpty()) {
            TiffWriter writer(&mOut, mOrder);
            writer.write(QByteArray(mOrder == QDataStream::LittleEndian ? "II" : "MM"));
            writer.write(tiffMagic);
            writer.write(quint32(0));
        }
        // Values go after directories, so that what is added and removed again leaves no gap.
        for (Ifd& ifd : mIfds) {
            if (ifd.isMoved)
                ifd.offset = reserve(sizeOf(ifd));
        }
        for (Ifd& ifd : mIfds)
            writeValues(ifd);
        for (const Ifd& ifd : mIfds)
            pointTo(ifd);
        for (const Ifd& ifd : mIfds)
            writeIfd(ifd);
        return mOut;
    }

private:
    static int sizeOf(const Ifd& ifd)
    {
        return countSize + static_cast<int>(ifd.entries.size()) * entrySize + linkSize;
    }

    static bool isChanged(const Ifd& ifd)
    {
        return ifd.isRestructured || ifd.isLinkChanged
            || std::any_of(ifd.entries.begin(), ifd.entries.end(),
                           [](const Entry& entry) { return entry.isNew; });
    }

    /// Whether a range is used only once.
    bool isExclusive(const Range& range) const
    {
        const auto begin = mUses.begin();
        return std::all_of(begin + range.begin, begin + range.end,
                           [](int uses) { return uses == 1; });
    }

    Ifd* parentOf(const Ifd& ifd)
    {
        return ifd.parent < 0 ? nullptr : &mIfds[static_cast<std::size_t>(ifd.parent)];
    }

    void choosePlace(Ifd& ifd)
    {
        if (ifd.isRemoved || (ifd.offset != 0 && !isChanged(ifd)))
            return;
        const bool fits = ifd.offset != 0 && static_cast<int>(ifd.entries.size()) <= ifd.oldCount;
        if (fits && !mMovesAll && isExclusive(ifd.range)) {
            const int end = ifd.range.begin + sizeOf(ifd);
            if (end < ifd.range.end)
                mFreed.append({end, ifd.range.end});
            return;
        }
        ifd.isMoved = true;
        mFreed.append(ifd.range);
        if (Ifd* const parent = parentOf(ifd))
            announceMove(ifd, parent);
    }

    /// Gives a parent the entry, or the link, that will point to a child.
    void announceMove(const Ifd& child, Ifd* parent) const
    {
        if (child.pointerTag == 0) {
            parent->isLinkChanged = true;
            return;
        }
        Entry pointer;
        pointer.tag = child.pointerTag;
        pointer.type = QExifValue::Long;
        pointer.count = 1;
        pointer.isNew = true;
        pointer.payload = encoded(child.offset, mOrder);
        Entries& entries = parent->entries;
        // The entry that points to the old place of the child, otherwise the last one with its tag.
        const auto leadsThere = [this, &pointer](const Entry& entry) {
            return entry.tag == pointer.tag && !entry.isNew
                && mOld.mid(entry.at + 8, inlineSize) == pointer.payload;
        };
        const auto hasTag = [&pointer](const Entry& entry) { return entry.tag == pointer.tag; };
        auto place = std::find_if(entries.rbegin(), entries.rend(), leadsThere);
        if (place == entries.rend())
            place = std::find_if(entries.rbegin(), entries.rend(), hasTag);
        if (place != entries.rend()) {
            *place = pointer;
            return;
        }
        entries.push_back(pointer);
        parent->isRestructured = true;
    }

    void chooseValuePlaces(Ifd& ifd)
    {
        if (ifd.isRestructured) {
            std::stable_sort(ifd.entries.begin(), ifd.entries.end(),
                             [](const Entry& a, const Entry& b) { return a.tag < b.tag; });
        }
        for (Entry& entry : ifd.entries) {
            if (!entry.isNew)
                continue;
            const int size = int(entry.payload.size());
            const Range old = entry.data;
            const bool fits = size > inlineSize && size <= old.end - old.begin && isExclusive(old);
            entry.place = fits ? static_cast<quint32>(old.begin) : 0;
            mFreed.append({fits ? old.begin + size : old.begin, old.end});
        }
    }

    /// Overwrites with NULs what nothing uses any more, and cuts it off at the end of the block.
    void eraseFreed()
    {
        Coverage freed(int(mOut.size()));
        for (const Range& range : asConst(mFreed))
            freed.add(range);
        const std::vector<int> counts = freed.counts();
        const auto isFree = [&counts, this](int at) {
            const auto i = static_cast<std::size_t>(at);
            return counts[i] > 0 && counts[i] >= mUses[i];
        };
        char* const bytes = mOut.data();
        for (const Range& range : asConst(mFreed)) {
            for (int at = range.begin; at < range.end; ++at) {
                if (isFree(at))
                    bytes[at] = '\0';
            }
        }
        // Between two values there may be a byte that aligns the second one to an even offset.
        const auto isBetweenFree = [&isFree, this](int at) {
            return at % 2 == 1 && at + 1 < mOut.size() && mUses[static_cast<std::size_t>(at)] == 0
                && mOut.at(at) == '\0' && isFree(at - 1);
        };
        int size = int(mOut.size());
        while (size > tiffHeaderSize && (isFree(size - 1) || isBetweenFree(size - 1)))
            --size;
        mOut.truncate(size);
    }

    /// Makes room at the end and returns its offset, which is even.
    quint32 reserve(int size)
    {
        const int begin = int(mOut.size() + mOut.size() % 2);
        mOut.append(QByteArray(begin + size - mOut.size(), '\0'));
        return static_cast<quint32>(begin);
    }

    void overwrite(quint32 offset, const QByteArray& bytes)
    {
        std::copy(bytes.begin(), bytes.end(), mOut.data() + offset);
    }

    void writeValues(Ifd& ifd)
    {
        for (Entry& entry : ifd.entries) {
            if (!entry.isNew || entry.payload.size() <= inlineSize)
                continue;
            if (entry.place == 0)
                entry.place = reserve(int(entry.payload.size()));
            overwrite(entry.place, entry.payload);
        }
    }

    /// Updates the pointer, or the link, to a directory that has moved.
    void pointTo(const Ifd& ifd)
    {
        if (!ifd.isMoved)
            return;
        const QByteArray offset = encoded(ifd.offset, mOrder);
        Ifd* const parent = parentOf(ifd);
        if (!parent) {
            overwrite(4, offset);
        } else if (ifd.pointerTag == 0) {
            parent->link = ifd.offset;
        } else {
            for (Entry& entry : parent->entries) {
                if (entry.tag == ifd.pointerTag && entry.isNew)
                    entry.payload = offset;
            }
        }
    }

    void writeIfd(const Ifd& ifd)
    {
        if (ifd.isRemoved || (!ifd.isMoved && !isChanged(ifd)))
            return;
        QByteArray bytes;
        TiffWriter writer(&bytes, mOrder);
        writer.write(static_cast<quint16>(ifd.entries.size()));
        for (const Entry& entry : ifd.entries) {
            if (entry.isNew)
                writeEntry(writer, entry);
            else
                writer.write(mOld.constData() + entry.at, entrySize);
        }
        writer.write(ifd.link);
        // In its old place, a directory may have no room for a link; then it had none before.
        if (!ifd.isMoved)
            bytes.truncate(ifd.range.end - ifd.range.begin);
        overwrite(ifd.offset, bytes);
    }

    static void writeEntry(TiffWriter& writer, const Entry& entry)
    {
        writer.write(entry.tag);
        writer.write(entry.type);
        writer.write(entry.count);
        if (entry.payload.size() > inlineSize) {
            writer.write(entry.place);
            return;
        }
        writer.write(entry.payload);
        writer.write("\0\0\0\0", int(inlineSize - entry.payload.size()));
    }

    const bool mMovesAll;
    const ByteOrder mOrder;
    const QByteArray mOld;
    QByteArray mOut;
    std::vector<Ifd> mIfds;
    QVector<Range> mFreed;
    const std::vector<int> mUses; // of each byte of the old block
};

std::vector<int> ExifBlock::uses() const
{
    Coverage coverage(int(mBlock.size()));
    for (const Range& range : mFreed)
        coverage.add(range);
    for (const Ifd& ifd : mIfds) {
        if (ifd.isRemoved)
            continue;
        coverage.add(ifd.range);
        for (const Entry& entry : ifd.entries)
            coverage.add(entry.data);
        const QVector<Range> pictures = pictureData(ifd);
        for (const Range& range : pictures)
            coverage.add(range);
    }
    return coverage.counts();
}

QByteArray ExifBlock::composed() const
{
    QByteArray inPlace = Composer(*this, false).run();
    const bool isRestructured =
        std::any_of(mIfds.begin(), mIfds.end(), [](const Ifd& ifd) { return ifd.isRestructured; });
    if (!isRestructured)
        return inPlace;
    // Directories that an earlier change has placed at the end together free all of their room only
    // if all of them move.
    const QByteArray moved = Composer(*this, true).run();
    return moved.size() < inPlace.size() ? moved : inPlace;
}

} // namespace OrvaUtilsPrivate

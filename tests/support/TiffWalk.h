// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TiffWalk: lists an EXIF block with a reader that shares no code with the library.

#ifndef TIFFWALK_H
#define TIFFWALK_H

#include <QByteArray>
#include <QList>
#include <QSet>

#include <algorithm>

/// Walks the directories of a block and lists their entries: directory, tag, type, count and the
/// bytes of the value in hexadecimal, for example "IFD0 0112 3 1 0600".
class TiffWalk
{
public:
    explicit TiffWalk(const QByteArray& block)
        : mBlock(block)
        , mIsLittle(block.startsWith("II"))
    {
        const quint32 link = directory("IFD0", u32(4));
        directory("IFD1", link);
    }

    /// The entries of all directories, sorted. Pointers to directories and offsets of thumbnails
    /// are listed without their values.
    QList<QByteArray> entries() const { return mEntries; }

    /// The same without the entries whose text begins with one of these.
    QList<QByteArray> entriesBut(const QList<QByteArray>& beginnings) const
    {
        QList<QByteArray> kept;
        for (const QByteArray& entry : mEntries) {
            bool isKept = true;
            for (const QByteArray& beginning : beginnings)
                isKept = isKept && !entry.startsWith(beginning);
            if (isKept)
                kept.append(entry);
        }
        return kept;
    }

    /// Whether everything lies inside the block, after its header. Values that extend beyond the
    /// end read differently in a longer block, and the header changes when IFD0 moves.
    bool isSound() const { return mIsSound; }

private:
    quint32 number(qint64 at, int size) const
    {
        quint32 number = 0;
        for (int i = 0; i < size; ++i) {
            const qint64 place = at + (mIsLittle ? size - 1 - i : i);
            const bool isThere = place >= 0 && place < mBlock.size();
            number = number << 8 | (isThere ? uchar(mBlock.at(int(place))) : 0);
        }
        return number;
    }
    quint32 u16(qint64 at) const { return number(at, 2); }
    quint32 u32(qint64 at) const { return number(at, 4); }

    static qint64 elementSize(quint32 type)
    {
        const int sizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
        return type <= 13 ? sizes[type] : 0;
    }

    /// Returns the link after the entries.
    quint32 directory(const QByteArray& name, qint64 offset)
    {
        // An offset beyond the end would be inside a longer block.
        mIsSound = mIsSound && offset + 2 <= mBlock.size();
        if (offset < 8 || offset + 2 > mBlock.size() || mSeen.contains(offset))
            return 0;
        mSeen.insert(offset);
        const qint64 count = u16(offset);
        mIsSound = mIsSound && offset + 2 + 12 * count <= mBlock.size();
        qint64 thumbnailAt = 0;
        qint64 thumbnailSize = 0;
        for (qint64 at = offset + 2;
             at + 12 <= qMin<qint64>(mBlock.size(), offset + 2 + 12 * count); at += 12) {
            const quint32 tag = u16(at);
            const quint32 type = u16(at + 2);
            const qint64 size = elementSize(type) * u32(at + 4);
            const qint64 place = size > 4 ? u32(at + 8) : at + 8;
            QByteArray value = mBlock.mid(int(qMin<qint64>(place, mBlock.size())),
                                          int(qMin<qint64>(size, mBlock.size())));
            mIsSound = mIsSound && place >= 8 && place + size <= mBlock.size();
            if (elementSize(type) == 0)
                value = mBlock.mid(int(at) + 8, 4);
            const bool isPointer =
                type == 4 && u32(at + 4) == 1 && (tag == 0x8769 || tag == 0x8825 || tag == 0xA005);
            if (tag == 0x0201)
                thumbnailAt = u32(at + 8);
            if (tag == 0x0202)
                thumbnailSize = u32(at + 8);
            mEntries.append(name + ' ' + QByteArray::number(tag, 16).rightJustified(4, '0') + ' '
                            + QByteArray::number(type) + ' ' + QByteArray::number(u32(at + 4)) + ' '
                            + (isPointer ? QByteArray("...") : value.toHex()));
            if (isPointer)
                directory(tag == 0x8769       ? QByteArray("Exif")
                              : tag == 0x8825 ? name == "IFD0" ? "GPS" : name + " GPS"
                                              : QByteArray("Interoperability"),
                          u32(at + 8));
        }
        // After the loop, because entries need not be sorted.
        const QByteArray thumbnail = mBlock.mid(int(qMin<qint64>(thumbnailAt, mBlock.size())),
                                                int(qMin<qint64>(thumbnailSize, mBlock.size())));
        mIsSound = mIsSound && thumbnail.size() == thumbnailSize
            && (thumbnail.isEmpty() || thumbnailAt >= 8);
        if (!thumbnail.isEmpty())
            mEntries.append(name + " thumbnail " + thumbnail.toHex());
        std::sort(mEntries.begin(), mEntries.end());
        return u32(offset + 2 + 12 * count);
    }

    const QByteArray mBlock;
    const bool mIsLittle;
    QList<QByteArray> mEntries;
    QSet<qint64> mSeen;
    bool mIsSound = true;
};

#endif // TIFFWALK_H

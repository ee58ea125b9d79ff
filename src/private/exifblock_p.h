// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ExifBlock: an EXIF block whose tags are changed in place. Every byte that a change does not
// affect keeps its offset, so that data in proprietary formats, such as maker notes, stay readable.

#ifndef ORVAUTILS_EXIFBLOCK_P_H
#define ORVAUTILS_EXIFBLOCK_P_H

#include "QExifValue.h"

#include <QByteArray>
#include <QDataStream>
#include <QList>
#include <QVector>

#include <vector>

namespace OrvaUtilsPrivate {

class ExifBlock
{
public:
    enum Directory {
        Image, ///< IFD0
        Exif,
        Gps,
        Thumbnail, ///< IFD1
        Other ///< the interoperability IFD, and GPS IFDs that other directories point to
    };
    enum class TextCodec { Latin1, Utf8 };

    /// Parses a block. Returns false, and leaves this one empty, if \a block is not an EXIF block,
    /// if its first directory lies outside of it, or if it has implausibly many directories or
    /// directories that overlap many times.
    bool parse(const QByteArray& block);

    /// Whether there is no block and nothing has been set.
    bool isEmpty() const;

    QDataStream::ByteOrder byteOrder() const { return mOrder; }

    /// The tags of a directory in ascending order, without those that point to other directories.
    QList<quint16> tags(Directory directory) const;

    bool contains(Directory directory, quint16 tag) const;

    /// The value of a tag; the last one if a tag occurs several times. Null if it is absent or of a
    /// type that QExifValue does not support.
    QExifValue value(Directory directory, quint16 tag, TextCodec codec) const;

    /// Sets a tag; a null value removes it.
    void setValue(Directory directory, quint16 tag, const QExifValue& value, TextCodec codec);

    void remove(Directory directory, quint16 tag);

    /// Removes every GPS directory with its contents. In a damaged block, whose directories
    /// overlap, removed data may still be found: see mayTellGps().
    void removeGps();

    /// Whether a reader that follows the pointers and links of all directories of \a block,
    /// wherever they lead, may find an entry for a GPS directory. Also true for a block with
    /// implausibly many directories.
    static bool mayTellGps(const QByteArray& block);

    /// Removes IFD1 with the thumbnail.
    void removeThumbnail();

    /// The block with all changes. What was removed or moved is overwritten with NULs, except where
    /// something else uses the same bytes. Must not be called for an empty block.
    QByteArray composed() const;

private:
    struct Range
    {
        int begin = 0;
        int end = 0;
    };
    struct Entry
    {
        quint16 tag = 0;
        quint16 type = 0;
        quint32 count = 0;
        int at = 0; // of its twelve bytes in the block; 0 for a new entry
        Range data; // outside of the entry; empty if there is none
        bool isNew = false;
        QByteArray payload; // of a new entry
        quint32 place = 0; // of the payload in the new block, if it does not fit into the entry
    };
    using Entries = std::vector<Entry>;
    struct Ifd
    {
        Directory kind = Other;
        int parent = -1; // the index of the directory that points here, by an entry of pointerTag
        quint16 pointerTag = 0; // 0 for IFD0, and for IFD1, which is reached by a link
        quint32 offset = 0; // 0 if it is not in the block
        Range range; // count, entries and, if there is one, the link
        quint32 link = 0;
        int oldCount = 0;
        Entries entries;
        bool isRestructured = false; // has other entries than before
        bool isLinkChanged = false;
        bool isRemoved = false;
        bool isMoved = false; // to the end of the new block
    };
    class Coverage;
    class Composer;

    int parseIfd(Directory kind, quint32 offset, int parent, quint16 pointerTag);
    void parsePointers(int parent, quint16 pointerTag, Directory kind);
    void claimLinks();
    bool isUsed(const Range& range) const;
    std::vector<int> uses() const;
    QVector<Range> pictureData(const Ifd& ifd) const;
    QByteArray payloadOf(const Entry& entry) const;
    const Entry* find(Directory directory, quint16 tag) const;
    int indexOf(Directory directory) const;
    Ifd& ensured(Directory directory);
    void removeEntries(Ifd& ifd, quint16 tag);
    void removeIfd(int index);
    static void setLink(Ifd& ifd, quint32 link);

    QByteArray mBlock;
    QDataStream::ByteOrder mOrder = QDataStream::LittleEndian;
    std::vector<Ifd> mIfds; // every parent before its children
    qint64 mEntriesSize = 0; // in bytes, of all directories
    bool mIsTangled = false;
    QVector<Range> mFreed; // what nothing refers to any more
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_EXIFBLOCK_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FolderReader: the entries of a folder; asks the system only for the details that are wanted.
//
// Why Linux is not left to Qt: QDirIterator makes two file infos for every entry; walking trees of
// small files takes it two to three times as long as the system's own tools.

#ifndef ORVAUTILS_FOLDERREADER_P_H
#define ORVAUTILS_FOLDERREADER_P_H

#include <QString>

#include <memory>
#include <vector>

namespace OrvaUtilsPrivate {

/// What an entry of a folder is, or what it leads to if it is a link.
enum class EntryKind {
    File,
    Folder,
    Other ///< a broken link, a pipe, a socket, a device
};

struct FolderEntry
{
    QString name;
    EntryKind kind = EntryKind::Other;
    bool isLink = false;
    bool isHidden = false;
    /// False when the name on the disk is no text in the system's encoding: `name` is a likeness
    /// then, and no path leads to the entry.
    bool isReachable = false;
    /// For files, in bytes, if asked for.
    qint64 size = 0;
    /// For files, in milliseconds since 1970, if asked for.
    qint64 modified = 0;
};

enum class EntryDetail { Kinds, Sizes, SizesAndTimes };

/// Where a FolderReader has its entries from.
class FolderSource
{
public:
    virtual ~FolderSource() = default;

    virtual bool next(FolderEntry& entry) = 0;
    int error() const { return mError; }

protected:
    int mError = 0;
};

/// Reads a folder entry by entry: all but "." and "..", in the system's order.
///
///     FolderReader reader(path, EntryDetail::Kinds);
///     while (reader.next())
///         ... reader.entry() ...
///
/// The folder stays open until next() returns false, so a walk enters sub-folders after that.
class FolderReader
{
public:
    FolderReader(const QString& path, EntryDetail detail);

    /// Goes to the next entry. False when there is none, or when it cannot be read.
    bool next() { return mSource->next(mEntry); }

    /// The entry that next() went to; overwritten by the next call.
    const FolderEntry& entry() const { return mEntry; }

    /// Whether all that next() wanted so far could be read.
    bool isIntact() const { return error() == 0; }

    /// Why not, as in errno; 0 where it is intact.
    int error() const { return mSource->error(); }

private:
    Q_DISABLE_COPY(FolderReader)

    std::unique_ptr<FolderSource> mSource;
    FolderEntry mEntry;
};

/// Appends all entries of the folder \a path. False if not all of them could be read.
bool readFolder(const QString& path, std::vector<FolderEntry>& entries);

/// The system's own way to read a folder. Null where there is none, and for a path that only Qt
/// understands.
std::unique_ptr<FolderSource> systemFolder(const QString& path, EntryDetail detail);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FOLDERREADER_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FolderReader: reads the entries of a folder, and only the details of them that are wanted.
//
// Linux is not left to Qt, because QDirIterator creates two QFileInfos for every entry: walking
// trees of small files takes it two to three times as long as the system's own tools.

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
    /// False if the name on the disk is not valid in the system's encoding: `name` is then an
    /// approximation, and no path leads to the entry.
    bool isReachable = false;
    /// For files, in bytes, if requested.
    qint64 size = 0;
    /// For files, in milliseconds since 1970, if requested.
    qint64 modified = 0;
};

enum class EntryDetail { Kinds, Sizes, SizesAndTimes };

/// The source of the entries of a FolderReader.
class FolderSource
{
public:
    virtual ~FolderSource() = default;

    virtual bool next(FolderEntry& entry) = 0;
    int error() const { return mError; }

protected:
    int mError = 0;
};

/// Reads a folder entry by entry: all except "." and "..", in the system's order.
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

    /// Advances to the next entry. Returns false if there is none, or if it cannot be read.
    bool next() { return mSource->next(mEntry); }

    /// The entry that next() advanced to; overwritten by the next call.
    const FolderEntry& entry() const { return mEntry; }

    /// Whether next() could read everything so far.
    bool isIntact() const { return error() == 0; }

    /// The value of errno for the failure; 0 if isIntact().
    int error() const { return mSource->error(); }

private:
    Q_DISABLE_COPY(FolderReader)

    std::unique_ptr<FolderSource> mSource;
    FolderEntry mEntry;
};

/// Appends all entries of the folder \a path. Returns false if not all of them could be read.
bool readFolder(const QString& path, std::vector<FolderEntry>& entries);

/// A source that reads the folder through the system's own functions. Null where there is none, and
/// for a path that only Qt understands.
std::unique_ptr<FolderSource> systemFolder(const QString& path, EntryDetail detail);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FOLDERREADER_P_H

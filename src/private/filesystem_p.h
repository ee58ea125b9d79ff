// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FileSystem: the few things that the file classes ask of the operating system more often, or more
// exactly, than Qt's classes answer. On Linux they are system calls; elsewhere, and for paths that
// Qt alone understands (resources, search paths), they are made of Qt's classes, with the same
// results.
//
// Why Linux is not left to Qt: QDirIterator makes two file infos for every entry, and QFile::copy()
// some twenty system calls for every file; walking and copying trees of small files takes them two
// to three times as long as the system's own tools.

#ifndef ORVAUTILS_FILESYSTEM_P_H
#define ORVAUTILS_FILESYSTEM_P_H

#include <QString>

#include <memory>
#include <vector>

class QByteArray;
class QFile;

namespace OrvaUtilsPrivate {

namespace FileSystem {

/// What an entry of a folder is, or what it leads to if it is a link.
enum class Kind {
    File,
    Folder,
    Other ///< a broken link, a pipe, a socket, a device
};

struct Entry
{
    QString name;
    Kind kind = Kind::Other;
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

enum class Detail { Kinds, Sizes, SizesAndTimes };

/// Reads a folder entry by entry: all but "." and "..", in the system's order.
///
///     FolderReader reader(path, Detail::Kinds);
///     while (reader.next())
///         ... reader.entry() ...
///
/// The folder stays open until next() returns false, so a walk enters sub-folders after that.
class FolderReader
{
public:
    FolderReader(const QString& path, Detail detail);
    ~FolderReader();

    /// Goes to the next entry. False when there is none, or when it cannot be read.
    bool next();

    /// The entry that next() went to; overwritten by the next call.
    const Entry& entry() const { return mEntry; }

    /// Whether all that next() wanted so far could be read.
    bool isIntact() const;

    class Source;

private:
    Q_DISABLE_COPY(FolderReader)

    std::unique_ptr<Source> mSource;
    Entry mEntry;
};

/// Appends all entries of the folder \a path. False if not all of them could be read.
bool readFolder(const QString& path, std::vector<Entry>& entries);

/// Whether both paths lead to the same existing file or folder.
bool isSameFile(const QString& one, const QString& other);

enum class Copied {
    Yes,
    No, ///< reading or writing failed
    NotTried ///< there is no quick way here; QFile::copy() may find one, or say why not
};

/// Copies a file, with its permissions, to a path where nothing is yet, as QFile::copy() does it:
/// the copy appears under its name when it is complete and on the disk. Unless Yes is returned,
/// nothing is left behind.
Copied copyFile(const QString& source, const QString& destination);

/// Brings what was written to the file of that descriptor to the disk. False, with the reason, when
/// it could not be stored; true also where a file system has nothing to sync.
bool putOnDisk(int file, QString* reason = nullptr);

/// Opens a new file for writing that has no name yet, to be given one in \a folder. False where the
/// system or the file system has no such files.
bool openUnnamed(QFile* file, const QString& folder);

/// Gives the file of that descriptor, which openUnnamed() opened, its name. False, with the reason,
/// where that is impossible or something has that name.
bool nameFile(int file, const QString& path, QString* reason);

/// Gives an open file the permissions of the one at \a path.
bool takePermissions(const QString& path, QFile* file);

/// Gives the file of the descriptor \a to the owner, the permissions and the extended attributes of
/// the file of \a from, and no others. False where this process may not do so.
bool takeAttributes(int from, int to);

enum class Replaced {
    Yes,
    No, ///< reading or writing failed
    NotTried ///< no new file can take the place of this one without anybody noticing
};

/// Replaces the bytes from \a begin to \a end of a file, which is open for reading, by \a bytes,
/// in one step: a new file is completed beside it, put on the disk, and takes its place. Whoever
/// opens the path at any moment, also after this process was killed, finds the old file or the new
/// one. Unless Yes is returned, nothing has changed and nothing is left behind.
///
/// The new file has the owner, the permissions and the extended attributes of the old one, and a
/// link to the file still leads to it. Not tried where that cannot be: in a folder that takes no
/// new file, for a file that has several names (hard links) or an owner or an attribute that this
/// process may not give, and where the path leads to another file by now.
///
/// \a file may be closed afterwards.
Replaced replaceBytes(QFile* file, qint64 begin, qint64 end, const QByteArray& bytes);

/// A hidden path in the folder of \a path where nothing is: for a file that is completed there and
/// moved over \a path then.
QString pathBeside(const QString& path);

/// Makes the file or link \a path, complete and named otherwise, the one at \a newPath, in one step
/// where the system has one. Where that fails, \a error tells why.
bool moveOver(const QString& path, const QString& newPath, QString* error = nullptr);

/// Removes a file, or a link as a link.
bool removeFile(const QString& path);

/// Removes a folder with everything in it; links as links. What cannot be removed is left, and the
/// rest removed all the same. \a path must not be a link.
bool removeTree(const QString& path);

} // namespace FileSystem

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FILESYSTEM_P_H

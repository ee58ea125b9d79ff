// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Operations that the file classes request from the operating system directly, because Qt's classes
// are too slow or do not offer them.
//
// Operations that differ between systems have a source file for each: filesystem_linux.cpp, or
// filesystem_qt.cpp, which uses Qt's classes; filesystem_unix.cpp or filesystem_windows.cpp;
// fileattributes_linux.cpp, fileattributes_mac.cpp or fileattributes_none.cpp. Paths that only Qt
// understands (resources, search paths) are left to Qt everywhere.

#ifndef ORVAUTILS_FILESYSTEM_P_H
#define ORVAUTILS_FILESYSTEM_P_H

#include <QFile>
#include <QString>

namespace OrvaUtilsPrivate {

// All systems

/// Copies the next \a size bytes of \a source, or all that are left if it is negative, to
/// \a destination. Returns false if reading or writing failed, or if there were fewer bytes.
bool copyPieces(QFile& source, QFile& destination, qint64 size = -1);

/// Appends the unread rest of \a source to \a destination, through both files. Returns false, with
/// the reason in \a reason, if reading or writing failed.
bool copyRest(QFile& source, QFile& destination, QString* reason);

/// An unused hidden path in the folder of \a path, for something that is completed there and then
/// moved over \a path.
QString pathBeside(const QString& path);

// Linux, or Qt's classes

/// Copies a file, with the permissions that QFile::copy() gives a copy, to a path where nothing
/// exists yet. The copy appears under its name once it is complete, but need not be on the disk.
/// Returns false if there is no fast way to do that or if it failed; nothing is left behind then.
/// Otherwise sets \a size to the size of the file, in bytes.
bool copyNewFile(const QString& source, const QString& destination, qint64* size);

/// The same as copyRest(), in a faster way if there is one.
bool copyContent(QFile& source, QFile& destination, QString* reason);

/// The same for file descriptors; the system keeps the reason. \a size is the expected number of
/// bytes, and may be wrong.
bool copyContent(int source, int destination, qint64 size);

/// Exchanges two folders in one step. Returns false if that failed or is not supported.
bool exchangeFolders(const QString& one, const QString& other);

/// Opens a new file without a name, for reading and writing; it can be named in \a folder later.
/// Returns false if that failed, or if the system or the file system has no such files.
bool openUnnamed(QFile* file, const QString& folder);

/// Gives the file with the descriptor \a file, which openUnnamed() opened, the name \a path.
/// Returns false, with the reason, if that is impossible or the name is taken.
bool nameFile(int file, const QString& path, QString* reason);

/// Removes a file, or a link rather than its target.
bool removeFile(const QString& path);

/// Syncs the file system of \a folder to the disk. Returns false, with the reason, if something
/// could not be stored. Does nothing and returns true on systems that do not offer this.
bool putFileSystemOnDisk(const QString& folder, QString* reason);

// Unix or Windows

/// Whether both paths lead to the same existing file or folder.
bool isSameFile(const QString& one, const QString& other);

/// The path, with links resolved, at which a new file can replace the open \a file. On Unix empty
/// if that would be noticed: the file has another name, or the path leads elsewhere by now.
QString replaceablePath(const QFile& file);

/// Syncs the file with the descriptor \a file to the disk. Returns false, with the reason, if it
/// could not be stored; returns true also where a file system has nothing to sync.
bool putOnDisk(int file, QString* reason);

/// Gives an open file, which may have no name, permissions as QFile::setPermissions() does.
bool setPermissions(QFile* file, QFile::Permissions permissions);

/// Gives the file with the descriptor \a to the owner, the permissions and the extended attributes
/// of the one with \a from, and no others. Returns false if that failed. Does nothing on Windows.
bool takeAttributes(int from, int to);

/// Moves the complete file or link \a path to \a newPath, replacing what is there, in one step.
/// Returns false, with the reason, if that failed.
bool moveOver(const QString& path, const QString& newPath, QString* reason);

/// Removes a file, even a read-only one, as QFile::remove() does on Unix.
bool removeOldFile(QFile* file);

/// Whether this process may create files in \a folder.
bool takesNewFiles(const QString& folder);

/// Removes a folder with everything in it, including entries whose names no QString can represent.
/// What cannot be removed stays.
void removeTreeByBytes(const QString& path);

/// Sets the hidden attribute on Windows; does nothing elsewhere.
void hideFile(const QString& path);

// Linux, macOS, or none

/// Gives the file with the descriptor \a to the access lists, labels and notes of the one with
/// \a from, and no others.
bool takeExtendedAttributes(int from, int to);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FILESYSTEM_P_H

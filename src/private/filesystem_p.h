// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// What the file classes ask of the operating system directly, because Qt's classes are too slow or
// do not offer it.
//
// What differs between systems has a source for each: filesystem_linux.cpp, or filesystem_qt.cpp
// with the same results made of Qt's classes; filesystem_unix.cpp or filesystem_windows.cpp;
// fileattributes_linux.cpp, fileattributes_mac.cpp or fileattributes_none.cpp. Paths that only Qt
// understands (resources, search paths) are left to Qt everywhere.

#ifndef ORVAUTILS_FILESYSTEM_P_H
#define ORVAUTILS_FILESYSTEM_P_H

#include <QFile>
#include <QString>

namespace OrvaUtilsPrivate {

// The same everywhere

/// Copies the next \a size bytes of \a source, or all that are left, to \a destination. False when
/// reading or writing failed, or when there were not as many.
bool copyPieces(QFile& source, QFile& destination, qint64 size = -1);

/// A hidden path in the folder of \a path where nothing is: for what is completed there and moved
/// over \a path then.
QString pathBeside(const QString& path);

// Linux, or with Qt's classes

/// Copies a file, with the permissions that QFile::copy() gives a copy, to a path where nothing is
/// yet. The copy appears under its name when it is complete, but need not be on the disk. False
/// where there is no quick way to do that, or where it failed; nothing is left behind then.
/// Otherwise \a size becomes the size of the file, in bytes.
bool copyNewFile(const QString& source, const QString& destination, qint64* size);

/// Appends what is left to read in \a source to \a destination. False when reading or writing
/// failed.
bool copyContent(QFile& source, QFile& destination);

/// The same for descriptors of the system. \a size is how much is expected, and may be wrong.
bool copyContent(int source, int destination, qint64 size);

/// Lets two folders change places in one step. False where the system cannot.
bool exchangeFolders(const QString& one, const QString& other);

/// Opens a new file for reading and writing that has no name yet, to be given one in \a folder.
/// False where the system or the file system has no such files.
bool openUnnamed(QFile* file, const QString& folder);

/// Gives the file of that descriptor, which openUnnamed() opened, its name. False, with the reason,
/// where that is impossible or something has that name.
bool nameFile(int file, const QString& path, QString* reason);

/// Removes a file, or a link as a link.
bool removeFile(const QString& path);

/// Syncs the file system of \a folder to the disk. False, with the reason, if something could not
/// be stored. True without doing anything on systems that do not offer this.
bool putFileSystemOnDisk(const QString& folder, QString* reason);

// Unix or Windows

/// Whether both paths lead to the same existing file or folder.
bool isSameFile(const QString& one, const QString& other);

/// The path, links resolved, at which a new file can take the place of an open one; empty where
/// that would be noticed: by another name of the file, or because the path leads elsewhere by now.
QString replaceablePath(const QFile& file);

/// Syncs the file of that descriptor to the disk. False, with the reason, if it could not be
/// stored; true also where a file system has nothing to sync.
bool putOnDisk(int file, QString* reason);

/// Gives an open file, which may have no name, permissions as QFile::setPermissions() does.
bool setPermissions(QFile* file, QFile::Permissions permissions);

/// Gives the file of the descriptor \a to the owner, the permissions and the extended attributes of
/// the file of \a from, and no others. False where this process may not do so.
bool takeAttributes(int from, int to);

/// Makes the file or link \a path, complete and named otherwise, the one at \a newPath, in one
/// step. Where that fails, \a reason tells why.
bool moveOver(const QString& path, const QString& newPath, QString* reason);

/// Removes a file, as QFile::remove() does on Unix: also one that must not be written to.
bool removeOldFile(QFile* file);

/// Whether this process may make new files in \a folder.
bool takesNewFiles(const QString& folder);

/// Removes a folder with everything in it, also entries whose names no text stands for. What cannot
/// be removed stays.
void removeTreeByBytes(const QString& path);

/// Sets the hidden attribute on Windows; does nothing elsewhere.
void hideFile(const QString& path);

// Linux, macOS, or none

/// Access lists, labels and notes: gives the file of the descriptor \a to those of \a from, and no
/// others.
bool takeExtendedAttributes(int from, int to);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FILESYSTEM_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Copies of files, links and folders that preserve as much as the system allows: modification
// times, permissions, owners, extended attributes and the holes of sparse files. A copy has its
// final name even while it is incomplete: these functions are for a folder that no other program
// reads yet.
//
// There is one implementation for Unix, and one that uses Qt's classes, which preserve less.

#ifndef ORVAUTILS_EXACTCOPY_P_H
#define ORVAUTILS_EXACTCOPY_P_H

#include <QString>

namespace OrvaUtilsPrivate {

/// Copies a file to a path that does not exist yet. \a size is set to its size, in bytes. Returns
/// false and sets \a reason on failure; a partial copy may be left then.
bool copyFileExactly(const QString& source, const QString& destination, qint64* size,
                     QString* reason);

/// Creates a link with the target of the link \a source, at a path that does not exist yet.
bool copyLinkExactly(const QString& source, const QString& destination, QString* reason);

/// Creates a folder that only its owner may use, at a path that does not exist yet.
bool makePrivateFolder(const QString& path, QString* reason);

/// Gives the folder \a destination the attributes of the folder \a source. Call it when the copy is
/// complete, because new entries change the modification time of a folder.
bool finishFolderExactly(const QString& source, const QString& destination, QString* reason);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_EXACTCOPY_P_H

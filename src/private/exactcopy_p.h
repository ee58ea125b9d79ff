// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Copies of files, links and folders that keep as much as the system allows: times of change,
// permissions, owners, extended attributes and the holes of sparse files. A copy has its name from
// the beginning, incomplete as it is: these functions are for a folder that no other program looks
// into yet.
//
// There is one source for Unix and one that uses Qt's classes, which keep less.

#ifndef ORVAUTILS_EXACTCOPY_P_H
#define ORVAUTILS_EXACTCOPY_P_H

#include <QString>

namespace OrvaUtilsPrivate {

/// Copies a file to a path where nothing is. \a size becomes its size, in bytes. False, with the
/// reason, where that fails; a part of the copy may be left then.
bool copyFileExactly(const QString& source, const QString& destination, qint64* size,
                     QString* reason);

/// Makes a link at a path where nothing is that holds what the link \a source holds.
bool copyLinkExactly(const QString& source, const QString& destination, QString* reason);

/// Makes a folder that only its owner may use, at a path where nothing is.
bool makePrivateFolder(const QString& path, QString* reason);

/// Gives the folder \a destination the attributes of the folder \a source. Call it when the copy is
/// complete, because new entries change the time of a folder.
bool finishFolderExactly(const QString& source, const QString& destination, QString* reason);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_EXACTCOPY_P_H

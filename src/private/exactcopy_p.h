// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Copies of files, links and folders that keep all that the system lets them keep: times of change,
// permissions, owners, extended attributes and the holes of sparse files. The copies
// appear under their names at once: they are for a folder that nobody knows of yet.
//
// There is a source for Unix and one with Qt's classes, which know less of files.

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

/// Makes a folder, which nobody but its owner may use, at a path where nothing is.
bool makePrivateFolder(const QString& path, QString* reason);

/// Gives the folder \a destination what the folder \a source has. To be done when it is complete,
/// because new entries change its time.
bool finishFolderExactly(const QString& source, const QString& destination, QString* reason);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_EXACTCOPY_P_H

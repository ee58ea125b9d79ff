// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Paths of folders, which may or may not end with "/", and of their entries; and paths in the
// encoding of the system.

#ifndef ORVAUTILS_FOLDERPATH_P_H
#define ORVAUTILS_FOLDERPATH_P_H

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringBuilder>

namespace OrvaUtilsPrivate {

/// \a folder with a "/" at its end, which is appended unless there is one already. The empty path
/// becomes "/".
inline QString withSlash(const QString& folder)
{
    return folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
}

/// The path of the entry \a name of \a folder. Allocates once, because trees are walked with it.
inline QString joined(const QString& folder, const QString& name)
{
    if (folder.endsWith(QLatin1Char('/')))
        return folder % name;
    return folder % QLatin1Char('/') % name;
}

/// \a path in the system's encoding. The system would stop at a NUL and find another file, so a
/// path that contains one becomes the empty path, which never exists.
inline QByteArray encoded(const QString& path)
{
    return path.contains(QChar()) ? QByteArray() : QFile::encodeName(path);
}

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FOLDERPATH_P_H

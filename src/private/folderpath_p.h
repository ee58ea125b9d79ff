// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Paths of folders, which may or may not end with "/", and of what is in them; and paths as the
// system wants them.

#ifndef ORVAUTILS_FOLDERPATH_P_H
#define ORVAUTILS_FOLDERPATH_P_H

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringBuilder>

namespace OrvaUtilsPrivate {

/// \a folder with a "/" at its end: one is appended unless it is there already. The empty path
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

/// \a path in the system's encoding. The system stops at a NUL, and would find another file: a path
/// that holds one becomes the empty path, where nothing ever is.
inline QByteArray encoded(const QString& path)
{
    return path.contains(QChar()) ? QByteArray() : QFile::encodeName(path);
}

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FOLDERPATH_P_H

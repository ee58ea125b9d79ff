// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Paths of folders, which may or may not end with "/", and of what is in them.

#ifndef ORVAUTILS_FOLDERPATH_P_H
#define ORVAUTILS_FOLDERPATH_P_H

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

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FOLDERPATH_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Removing folder trees.

#ifndef ORVAUTILS_TREEREMOVAL_P_H
#define ORVAUTILS_TREEREMOVAL_P_H

#include <QString>

namespace OrvaUtilsPrivate {

class TreeTask;

/// Removes a folder with everything in it; links are removed, not followed. What cannot be removed
/// is left, and the rest is still removed. \a path must not be a link.
bool removeTree(const QString& path, TreeTask& task);

/// The same, without an observer.
bool removeTree(const QString& path);

/// Empties a folder; sub-folders stay unless \a recursive. Returns the path of the first entry that
/// could not be removed, or of the folder if it cannot be read; otherwise an empty string.
QString removeContent(const QString& folder, bool recursive, TreeTask& task);

/// FileUtils::old::removeDirectory().
bool removeDirectory(const QString& path, bool recursive, QString* error, int depth);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_TREEREMOVAL_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Removing folder trees.

#ifndef ORVAUTILS_TREEREMOVAL_P_H
#define ORVAUTILS_TREEREMOVAL_P_H

#include <QString>

namespace OrvaUtilsPrivate {

class TreeTask;

/// Removes a folder with everything in it; links as links. What cannot be removed is left, and the
/// rest removed all the same. \a path must not be a link.
bool removeTree(const QString& path, TreeTask& task);

/// The same, watched by nobody.
bool removeTree(const QString& path);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_TREEREMOVAL_P_H

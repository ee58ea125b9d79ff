// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FileUtils::replaceDir(): a folder tree that takes the place of another one as a whole.

#ifndef ORVAUTILS_TREEREPLACEMENT_P_H
#define ORVAUTILS_TREEREPLACEMENT_P_H

#include <QString>

namespace OrvaUtilsPrivate {

class TreeTask;

/// Makes \a destination an exact copy of the folder \a source, or leaves it as it was.
bool replaceDir(const QString& source, const QString& destination, TreeTask& task);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_TREEREPLACEMENT_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FileUtils::copyDir() and its rules for trees that overlap.

#ifndef ORVAUTILS_TREECOPY_P_H
#define ORVAUTILS_TREECOPY_P_H

#include <QString>

namespace OrvaUtilsPrivate {

class TreeTask;

/// Whether copying \a source to \a destination would change what is copied or never finish. Both
/// paths are absolute.
bool overlap(const QString& source, const QString& destination);

/// Copies a folder as FileUtils::copyDir() does, with the same log records.
bool copyDir(const QString& source, const QString& destination, bool merge, TreeTask& task);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_TREECOPY_P_H

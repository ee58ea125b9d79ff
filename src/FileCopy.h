// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// copyOver(): FileUtils::forceCopy() for what may be the only copy of a photograph.
//
// This header is private to the library and is not installed.

#ifndef ORVAUTILS_FILECOPY_H
#define ORVAUTILS_FILECOPY_H

#include <QString>

/// As FileUtils::forceCopy(), with the same records, but the file that stands at \a destination is
/// not lost whatever fails: the copy is made beside it and takes its place when it is complete.
bool copyOver(const QString& source, const QString& destination);

#endif // ORVAUTILS_FILECOPY_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// copyOver(): FileUtils::forceCopy() for what may be the only copy of a photograph.

#ifndef ORVAUTILS_FILECOPY_P_H
#define ORVAUTILS_FILECOPY_P_H

#include <QString>

namespace OrvaUtilsPrivate {

/// As FileUtils::forceCopy(), with the same records, but the file that stands at \a destination is
/// not lost whatever fails: the copy is made beside it and takes its place when it is complete.
bool copyOver(const QString& source, const QString& destination);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FILECOPY_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// copyFile(): the implementation of FileUtils::forceCopy(), for all code that copies files.

#ifndef ORVAUTILS_FILECOPY_P_H
#define ORVAUTILS_FILECOPY_P_H

#include <QString>

namespace OrvaUtilsPrivate {

/// What happens to an existing file at the destination of a copy.
enum class OldFile {
    RemovedFirst, ///< it stays removed if the copy fails
    RemovedFirstInTree, ///< as RemovedFirst; the whole tree is synced to the disk at the end
    Kept, ///< until the complete copy replaces it: it may be the only copy of a photograph
    KeptInTree ///< as Kept, for one of many copies, which are not synced to the disk one by one
};

/// Copies a file as FileUtils::forceCopy() does, and logs the same records. On failure the reason
/// is stored in \a reason, which may be null.
bool copyFile(const QString& source, const QString& destination, OldFile oldFile,
              QString* reason = nullptr);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FILECOPY_P_H

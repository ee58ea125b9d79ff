// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// copyFile(): FileUtils::forceCopy(), for all who copy files.

#ifndef ORVAUTILS_FILECOPY_P_H
#define ORVAUTILS_FILECOPY_P_H

#include <QString>

namespace OrvaUtilsPrivate {

/// What becomes of the file that stands at the destination of a copy.
enum class OldFile {
    RemovedFirst, ///< and it stays removed if the copy fails
    RemovedFirstInTree, ///< the same; the whole tree is synced to the disk at the end
    Kept, ///< until the complete copy takes its place: it may be the only copy of a photograph
    KeptInTree ///< the same, for one of many copies, which are not synced to the disk one by one
};

/// Copies a file as FileUtils::forceCopy() does, with the same records. On failure \a reason, which
/// may be null, tells why, in the system's words.
bool copyFile(const QString& source, const QString& destination, OldFile oldFile,
              QString* reason = nullptr);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FILECOPY_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filecopy_p.h"

#include "FileUtils.h"
#include "filesystem_p.h"
#include "logrecord_p.h"
#include "replacement_p.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

namespace OrvaUtilsPrivate {

namespace {

enum class CopyResult { Copied, CannotCopy, CannotRemove };

CopyResult writeCopy(QFile& source, const QString& destination, OldFile oldFile, QString* reason)
{
    const bool isInTree = oldFile == OldFile::RemovedFirstInTree || oldFile == OldFile::KeptInTree;
    const bool isKept = (oldFile == OldFile::Kept || oldFile == OldFile::KeptInTree)
        && QFileInfo(destination).isFile();
    const bool isReplaced = QFileInfo::exists(destination);
    if (!isReplaced && QFileInfo(destination).isSymLink()) {
        *reason = QStringLiteral("a link to nowhere is in the way");
        return CopyResult::CannotCopy;
    }
    if (!isKept) {
        QFile old(destination);
        if (isReplaced && !removeOldFile(&old)) {
            *reason = old.errorString();
            return CopyResult::CannotRemove;
        }
        FileUtils::fileMkPath(destination, nullptr);
    }
    Replacement copy(destination, Replacement::Old::Removed);
    if (!copy.begin()) {
        *reason = copy.reason();
        // In a folder in which no file can be created, none can be removed either.
        return isKept ? CopyResult::CannotRemove : CopyResult::CannotCopy;
    }
    copy.setStoredFirst(isReplaced && !isInTree);
    if (!copyContent(source, copy.device(), reason))
        return CopyResult::CannotCopy;
    // A failure is ignored: some file systems have no permissions.
    setPermissions(&copy.device(), source.permissions());
    if (copy.commit())
        return CopyResult::Copied;
    *reason = copy.reason();
    return isKept && copy.failure() == Replacement::Failure::Place ? CopyResult::CannotRemove
                                                                   : CopyResult::CannotCopy;
}

} // namespace

bool copyFile(const QString& source, const QString& destination, OldFile oldFile, QString* reason)
{
    QString ignored;
    if (!reason)
        reason = &ignored;
    if (!QFileInfo::exists(source)) {
        ORVAUTILS_LOG_WARNING_OF("FileUtils", "forceCopy")
            << source << " est introuvable !! (forceCopy)";
        *reason = qt_error_string(ENOENT);
        return false;
    }
    if (isSameFile(source, destination))
        return true;
    // A source that cannot be read (or, like a pipe, has no end) must not destroy the destination.
    QFile file(source);
    CopyResult result = CopyResult::CannotCopy;
    if (!QFileInfo(source).isFile())
        *reason = qt_error_string(EINVAL);
    else if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        *reason = file.errorString();
    else
        result = writeCopy(file, destination, oldFile, reason);
    if (result == CopyResult::CannotRemove)
        ORVAUTILS_LOG_WARNING_OF("FileUtils", "forceCopy")
            << "FileUtils::forceCopy can't remove " << destination;
    else if (result == CopyResult::CannotCopy)
        ORVAUTILS_LOG_WARNING_OF("FileUtils", "forceCopy")
            << "FileUtils::forceCopy can't copy" << source << destination
            << " error=" << int(QFileDevice::CopyError);
    return result == CopyResult::Copied;
}

} // namespace OrvaUtilsPrivate

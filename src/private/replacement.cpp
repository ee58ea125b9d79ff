// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "replacement_p.h"

#include "filesystem_p.h"

#include <QFileInfo>

namespace OrvaUtilsPrivate {

Replacement::Replacement(const QString& path, Old old)
    : mOld(old)
    , mPath(path)
{ }

Replacement::~Replacement()
{
    abandon();
}

bool Replacement::begin()
{
    const QFileInfo old(mPath);
    mReplaces = old.exists() || old.isSymLink();
    const bool isWrittenTo = mOld == Old::WrittenTo && mReplaces;
    if (isWrittenTo && !findWritten(old))
        return false;
    if (!FileSystem::openUnnamed(&mFile, QFileInfo(mPath).path())) {
        mFile.setFileName(FileSystem::pathBeside(mPath));
        if (!mFile.open(QIODevice::WriteOnly))
            return fail(Failure::NotBegun, mFile.errorString());
        mName = mFile.fileName();
    }
    // Some file systems have no permissions; that is no reason to write nothing.
    if (isWrittenTo && old.exists())
        FileSystem::takePermissions(mPath, &mFile);
    return true;
}

/// Follows a link, and finds out whether what is there could be written to.
bool Replacement::findWritten(const QFileInfo& old)
{
    if (old.exists()) {
        QFile file(mPath);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
            return fail(Failure::NotBegun, file.errorString());
    }
    if (old.isSymLink())
        mPath = old.exists() ? old.canonicalFilePath() : old.symLinkTarget();
    return true;
}

bool Replacement::takeAttributes(const QFile& file)
{
    return FileSystem::takeAttributes(file.handle(), mFile.handle());
}

bool Replacement::commit()
{
    if (!mFile.isOpen())
        return false;
    QString reason;
    // Not even a power failure may find the old file gone and the new one not there yet.
    if (!mFile.flush() || mFile.error() != QFileDevice::NoError)
        return fail(Failure::Content, mFile.errorString());
    if (mReplaces && !FileSystem::putOnDisk(mFile.handle(), &reason))
        return fail(Failure::Content, reason);
    const bool isNamedLast = mName.isEmpty() && !mReplaces && giveName(mPath, &reason);
    if (mName.isEmpty() && !giveName(FileSystem::pathBeside(mPath), &reason))
        return fail(Failure::Place, reason);
    mFile.close();
    // Some file systems tell only now that they could not store the file.
    if (mFile.error() != QFileDevice::NoError)
        return fail(Failure::Content, mFile.errorString());
    if (!isNamedLast && !FileSystem::moveOver(mName, mPath, &reason))
        return fail(Failure::Place, reason);
    mName.clear();
    return true;
}

/// False where that name is taken, too.
bool Replacement::giveName(const QString& path, QString* reason)
{
    if (!FileSystem::nameFile(mFile.handle(), path, reason))
        return false;
    mName = path;
    return true;
}

void Replacement::abandon()
{
    mFile.close();
    if (!mName.isEmpty())
        FileSystem::removeFile(mName);
    mName.clear();
}

bool Replacement::fail(Failure failure, const QString& reason)
{
    abandon();
    mFailure = failure;
    mReason = reason;
    return false;
}

} // namespace OrvaUtilsPrivate

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "replacement_p.h"

#include "filesystem_p.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>

namespace OrvaUtilsPrivate {

Replacement::Replacement(const QString& path, Old old)
    : mOld(old)
    , mPath(path)
    , mFile(std::make_unique<QFile>())
{ }

Replacement::~Replacement()
{
    abandon();
}

bool Replacement::begin()
{
    // The system would end the path there.
    if (mPath.contains(QChar()))
        return fail(Failure::NotBegun, qt_error_string(ENOENT));
    const QFileInfo old(mPath);
    mReplaces = old.exists() || old.isSymLink();
    const bool isWrittenTo = mOld == Old::WrittenTo && mReplaces;
    mIsStoredFirst = mReplaces;
    if (mustOverwrite(old))
        return openElsewhere();
    if (isWrittenTo && !findWritten(old))
        return false;
    if (!openUnnamed(mFile.get(), QFileInfo(mPath).path()) && !openNamed())
        return fail(Failure::NotBegun, mFile->errorString());
    // A failure is ignored: some file systems have no permissions.
    if (isWrittenTo && old.exists())
        setPermissions(mFile.get(),
                       old.permissions() & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser));
    return true;
}

bool Replacement::mustOverwrite(const QFileInfo& old) const
{
    return mFallsBack && old.exists() && !old.isDir()
        && (!old.isFile() || !takesNewFiles(QFileInfo(old.canonicalFilePath()).path()));
}

/// Follows a link, and checks whether the old file may be written to.
bool Replacement::findWritten(const QFileInfo& old)
{
    if (old.exists()) {
        // Opening a pipe would wait for a reader, and a device must not become a file.
        if (!old.isFile() && !old.isDir())
            return fail(Failure::NotBegun, qt_error_string(EINVAL));
        QFile file(mPath);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
            return fail(Failure::NotBegun, file.errorString());
    }
    if (old.isSymLink())
        mPath = old.exists() ? old.canonicalFilePath() : old.symLinkTarget();
    return true;
}

bool Replacement::openNamed()
{
    const QString name = pathBeside(mPath);
    mFile->setFileName(name);
    if (!mFile->open(QIODevice::WriteOnly))
        return false;
    mName = name;
    return true;
}

bool Replacement::openElsewhere()
{
    auto file = std::make_unique<QTemporaryFile>();
    if (!file->open())
        return fail(Failure::NotBegun, file->errorString());
    mFile = std::move(file);
    mIsElsewhere = true;
    return true;
}

bool Replacement::takeAttributes(const QFile& file)
{
    return OrvaUtilsPrivate::takeAttributes(file.handle(), mFile->handle());
}

bool Replacement::commit()
{
    if (!mFile->flush() || mFile->error() != QFileDevice::NoError)
        return fail(Failure::Content, mFile->errorString());
    return mIsElsewhere ? overwrite() : putInPlace();
}

bool Replacement::putInPlace()
{
    QString reason;
    if (mIsStoredFirst && !putOnDisk(mFile->handle(), &reason))
        return fail(Failure::Content, reason);
    const bool isInPlace = mName.isEmpty() && !mReplaces && giveName(mPath, &reason);
    if (mName.isEmpty() && !giveName(pathBeside(mPath), &reason) && !continueNamed())
        return fail(Failure::Place, reason); // GCOVR_EXCL_LINE: takes two faults at once
    mFile->close();
    // Some file systems report only now that they could not store the file.
    if (mFile->error() != QFileDevice::NoError)
        return fail(Failure::Content, mFile->errorString());
    if (!isInPlace && !moveOver(mName, mPath, &reason))
        return fail(Failure::Place, reason);
    mName.clear();
    return true;
}

/// Names a file that has no name yet. False also if that name is taken.
bool Replacement::giveName(const QString& path, QString* reason)
{
    if (!nameFile(mFile->handle(), path, reason))
        return false;
    mName = path;
    return true;
}

/// Continues with a named copy if a file without a name cannot be given one.
bool Replacement::continueNamed()
{
    const std::unique_ptr<QFile> unnamed = std::move(mFile);
    mFile = std::make_unique<QFile>();
    QString reason;
    return openNamed() && unnamed->seek(0) && copyPieces(*unnamed, *mFile) && mFile->flush()
        && OrvaUtilsPrivate::takeAttributes(unnamed->handle(), mFile->handle())
        && (!mIsStoredFirst || putOnDisk(mFile->handle(), &reason));
}

bool Replacement::overwrite()
{
    QFile old(mPath);
    if (!old.open(QIODevice::WriteOnly))
        return fail(Failure::Place, old.errorString());
    QString reason;
    const bool isStored = mFile->seek(0) && copyPieces(*mFile, old) && old.flush()
        && (!mIsStoredFirst || putOnDisk(old.handle(), &reason));
    if (isStored)
        old.close();
    // Some file systems report only when the file is closed that they could not store it.
    if (!isStored || old.error() != QFileDevice::NoError)
        return fail(Failure::Content, reason.isEmpty() ? old.errorString() : reason);
    mFile->close();
    return true;
}

void Replacement::abandon()
{
    mFile->close();
    if (!mName.isEmpty())
        removeFile(mName);
    mName.clear();
}

bool Replacement::fail(Failure failure, const QString& reason)
{
    abandon();
    mFailure = failure;
    mReason = reason;
    return false;
}

namespace {

/// Copies a file with the bytes from \a begin to \a end replaced.
bool copyWith(QFile& file, qint64 begin, qint64 end, const QByteArray& bytes, QFile& copy)
{
    return file.seek(0) && copyPieces(file, copy, begin) && copy.write(bytes) == bytes.size()
        && file.seek(end) && copyPieces(file, copy);
}

/// The same for a file that is in memory, in one call.
bool writeWith(const QByteArray& content, qint64 begin, qint64 end, const QByteArray& bytes,
               QFile& copy)
{
    const QByteArray changed = content.left(int(begin)) + bytes + content.mid(int(end));
    return copy.write(changed) == changed.size();
}

} // namespace

Replaced replaceBytes(QFile* file, qint64 begin, qint64 end, const QByteArray& bytes,
                      const QByteArray& content)
{
    const QString path = replaceablePath(*file);
    if (path.isEmpty())
        return Replaced::NotTried;
    Replacement replacement(path, Replacement::Old::Removed);
    if (!replacement.begin() || !replacement.takeAttributes(*file))
        return Replaced::NotTried;
    QFile& copy = replacement.device();
    const bool isWritten = content.isEmpty() ? copyWith(*file, begin, end, bytes, copy)
                                             : writeWith(content, begin, end, bytes, copy);
    if (!isWritten)
        return Replaced::No;
    file->close(); // some systems cannot replace a file that is open
    if (replacement.commit())
        return Replaced::Yes;
    return replacement.failure() == Replacement::Failure::Place ? Replaced::NotTried : Replaced::No;
}

} // namespace OrvaUtilsPrivate

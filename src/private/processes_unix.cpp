// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "processes_p.h"

#include "folderpath_p.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OrvaUtilsPrivate {

namespace {

// In seconds. A process that creates a lock file has locked it a moment later.
const qint64 longestMoment = 2;

int openToRead(const QString& path)
{
    const QByteArray name = encoded(path);
    for (;;) {
        const int file = open(name.constData(), O_RDONLY | O_CLOEXEC);
        if (file >= 0 || errno != EINTR)
            return file;
    }
}

bool canBeLocked(int file) // GCOVR_EXCL_LINE: for file systems without leases
{
    return flock(file, LOCK_EX | LOCK_NB) == 0 // GCOVR_EXCL_LINE: as above
        && flock(file, LOCK_UN) == 0; // GCOVR_EXCL_LINE: as above
}

} // namespace

bool isProcessRunning(qint64 id, const QString& program)
{
    if (id <= 0 || (kill(pid_t(id), 0) != 0 && errno == ESRCH))
        return false;
    // Process ids are reused. Other users' programs cannot always be seen.
    const QString path =
        QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(QString::number(id)));
    const QString name = QFileInfo(path).fileName();
    return name.isEmpty() || program.isEmpty() || name == program
        || name == program + QStringLiteral(" (deleted)");
}

bool isThisMachine(const QString& host)
{
    return host == QSysInfo::machineHostName();
}

bool isOpenedByNobody(const QString& path)
{
    const int file = openToRead(path);
    if (file < 0)
        return false;
    bool isKnown = false;
    bool isFree = false;
#if defined(F_SETLEASE) && defined(F_SETSIG)
    // A lease is granted only for a file that no process has open for writing. If another process
    // opens the file while the lease lasts, this one gets a signal: SIGURG, which is ignored by
    // default, instead of SIGIO, which would end it.
    if (fcntl(file, F_SETSIG, SIGURG) == 0) {
        isFree = fcntl(file, F_SETLEASE, F_RDLCK) == 0;
        isKnown = isFree || errno == EAGAIN;
        if (isFree)
            fcntl(file, F_SETLEASE, F_UNLCK);
    }
#endif
    if (!isKnown) {
        const QDateTime now = QDateTime::currentDateTimeUtc(); // GCOVR_EXCL_LINE: as above
        const qint64 age = QFileInfo(path).lastModified().secsTo(now); // GCOVR_EXCL_LINE: as above
        isFree = age >= longestMoment && canBeLocked(file); // GCOVR_EXCL_LINE: as above
    }
    close(file);
    return isFree;
}

FolderLock::~FolderLock()
{
    if (mHandle >= 0)
        close(int(mHandle));
}

FolderLock::Answer FolderLock::take(const QString& folder)
{
    mHandle = openToRead(folder);
    if (mHandle < 0)
        return errno == ENOENT ? Answer::InUse : Answer::Unknown;
    int result = -1;
    do
        result = flock(int(mHandle), LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR);
    if (result != 0)
        return errno == EWOULDBLOCK ? Answer::InUse : Answer::Unknown;
    // Whoever had locked it may have moved or removed it in the meantime.
    struct stat locked = {};
    struct stat named = {};
    const bool isThere = fstat(int(mHandle), &locked) == 0
        && lstat(encoded(folder).constData(), &named) == 0 && locked.st_dev == named.st_dev
        && locked.st_ino == named.st_ino;
    return isThere ? Answer::Taken : Answer::InUse;
}

} // namespace OrvaUtilsPrivate

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ProjectFileLocker.h"

#include "FileUtils.h"
#include "folderpath_p.h"
#include "processes_p.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSysInfo>

namespace OrvaUtilsPrivate {

class ProjectFileLockerPrivate
{
public:
    bool take(const QString& lockPath, const QString& project, const QString& folder,
              QString* error);

    std::unique_ptr<QLockFile> lock; // null if none is held
    QString path; // of the project that it locks
    ProjectFileLocker::LockState state = ProjectFileLocker::LockState::NotLocked;
};

} // namespace OrvaUtilsPrivate

using OrvaUtilsPrivate::ProjectFileLockerPrivate;
using OrvaUtilsPrivate::withSlash;

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("ProjectFileLocker", text);
}

/// The reason why a lock that is free cannot be taken.
QString reasonOf(QLockFile::LockError error)
{
    return error == QLockFile::PermissionError
        ? tr(QT_TRANSLATE_NOOP("ProjectFileLocker",
                               "The lock file could not be created, for lack of permissions in the "
                               "parent directory."))
        : tr(QT_TRANSLATE_NOOP("ProjectFileLocker",
                               "Another error happened, for instance a full partition prevented "
                               "writing out the lock file"));
}

QString messageOf(QLockFile::LockError error, const QString& project, const QString& folder)
{
    if (error == QLockFile::LockFailedError)
        return tr(QT_TRANSLATE_NOOP("ProjectFileLocker", "Project %1 already opened !"))
                   .arg(project)
            + QLatin1Char('\n') + QStringLiteral("Folder : %1").arg(folder);
    // All at once, because a name may contain a "%2".
    return tr(QT_TRANSLATE_NOOP("ProjectFileLocker",
                                "Lock failed on '%1' : error=%2  folder=%3 machinehost=%4"))
        .arg(project, reasonOf(error), folder, QSysInfo::machineHostName());
}

QString lockFileIn(const QString& folder)
{
    return withSlash(folder) + QStringLiteral("lockfile");
}

/// Whether QLockFile can look at \a lockPath and at its helper files. It reads whole lines of what
/// exists there: of a pipe it would wait for a writer, and a device or a file of gigabytes would
/// fill the memory. The system would end a path at a NUL, so that the lock would be that of another
/// file, or replace it.
bool canBeLock(const QString& lockPath)
{
    if (lockPath.contains(QChar()))
        return false;
    const qint64 largest = 1 << 16; // bytes; a lock has less than 1,000
    const int helpers = 3;
    QString path = lockPath;
    for (int i = 0; i <= helpers; ++i, path += QStringLiteral(".rmlock")) {
        const QFileInfo file(path);
        const bool isOther = file.exists() && !file.isFile() && !file.isDir();
        if (isOther || (file.isFile() && file.size() > largest))
            return false;
    }
    return true;
}

/// Whether \a lockPath is a lock file that was never completed and never will be.
bool isAbandoned(const QString& lockPath)
{
    qint64 process = 0;
    QString host;
    QString application;
    return QFile::exists(lockPath)
        && !QLockFile(lockPath).getLockInfo(&process, &host, &application)
        && OrvaUtilsPrivate::isOpenedByNobody(lockPath);
}

/// Removes the lock that a process was creating when it was killed: QLockFile recognises the
/// complete locks of such processes, but not those that are still empty. Returns false if nothing
/// was removed, or if an abandoned lock file remains.
///
/// QLockFile uses the helper file to make sure that only one process at a time removes a lock. It
/// is a lock file itself, with a helper file of its own, and so on; \a depth is how many of them
/// are checked.
bool removeAbandoned(const QString& lockPath, int depth = 3)
{
    const QString helperPath = lockPath + QStringLiteral(".rmlock");
    const bool hadHelper = depth > 0 && removeAbandoned(helperPath, depth - 1);
    if (!isAbandoned(lockPath))
        return hadHelper;
    QLockFile helper(helperPath);
    // Checked again, because another process may have been faster.
    return helper.tryLock(0) && isAbandoned(lockPath) && QFile::remove(lockPath);
}

} // namespace

ProjectFileLocker::ProjectFileLocker()
    : d(std::make_unique<ProjectFileLockerPrivate>())
{ }

ProjectFileLocker::~ProjectFileLocker() = default;

QString ProjectFileLocker::suffixLockedFile()
{
    return QStringLiteral(".locked");
}

bool ProjectFileLocker::openNewProjectFile(const QString& path, QString* error)
{
    const QFileInfo project(path);
    if (!d->take(path + suffixLockedFile(), project.fileName(), project.absolutePath(), error))
        return false;
    d->path = project.absoluteFilePath();
    return true;
}

bool ProjectFileLocker::openNewProjectFolder(const QString& folder, const QString& projectName,
                                             QString* error)
{
    if (folder.isEmpty())
        return false;
    const QString path = withSlash(folder);
    if (!FileUtils::fileMkPath(path, error))
        return false;
    if (!QDir(folder).exists(folder)) {
        d->state = LockState::Lenient;
        return true;
    }
    if (!d->take(lockFileIn(folder), projectName, path, error))
        return false;
    d->path = QDir(folder).absolutePath();
    return true;
}

bool ProjectFileLocker::unlock()
{
    d->lock.reset();
    d->path.clear();
    d->state = LockState::NotLocked;
    return true;
}

bool ProjectFileLocker::isLocked() const
{
    return d->lock != nullptr;
}

QString ProjectFileLocker::lockedPath() const
{
    return d->path;
}

ProjectFileLocker::LockState ProjectFileLocker::lockState() const
{
    return d->state;
}

ProjectFileLocker::LockHolder ProjectFileLocker::holder(const QString& path)
{
    const QString lockPath = QFileInfo(path).isDir() ? lockFileIn(path) : path + suffixLockedFile();
    LockHolder holder;
    if (path.isEmpty() || !canBeLock(lockPath)
        || !QLockFile(lockPath).getLockInfo(&holder.processId, &holder.host, &holder.application))
        return LockHolder();
    holder.since = QFileInfo(lockPath).lastModified();
    const bool isHere = holder.host.isEmpty() || OrvaUtilsPrivate::isThisMachine(holder.host);
    holder.isRunning =
        !isHere || OrvaUtilsPrivate::isProcessRunning(holder.processId, holder.application);
    return holder;
}

QDebug operator<<(QDebug debug, const ProjectFileLocker::LockHolder& holder)
{
    const QDebugStateSaver saver(debug);
    debug.nospace();
    if (holder.processId == 0)
        return debug << "LockHolder(nobody)";
    return debug << "LockHolder(process " << holder.processId << ", " << holder.application
                 << " on " << holder.host << ", since "
                 << qPrintable(holder.since.toString(Qt::ISODate))
                 << (holder.isRunning ? ", running)" : ", not running)");
}

// Taking a lock

/// Takes the lock, which then replaces the current one, or returns false with the reason.
bool ProjectFileLockerPrivate::take(const QString& lockPath, const QString& project,
                                    const QString& folder, QString* error)
{
    if (!canBeLock(lockPath)) {
        if (error)
            *error = messageOf(QLockFile::UnknownError, project, folder);
        return false;
    }
    // The current folder may have changed when the lock is released.
    const QString absolutePath = QFileInfo(lockPath).absoluteFilePath();
    auto taken = std::make_unique<QLockFile>(absolutePath);
    if (!taken->tryLock(0) && !(removeAbandoned(absolutePath) && taken->tryLock(0))) {
        if (error)
            *error = messageOf(taken->error(), project, folder);
        return false;
    }
    lock = std::move(taken); // releases the previous lock and removes its file
    state = ProjectFileLocker::LockState::Locked;
    return true;
}

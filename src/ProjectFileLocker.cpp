// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ProjectFileLocker.h"

#include "FileUtils.h"
#include "folderpath_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QSysInfo>

using namespace OrvaUtilsPrivate;

namespace OrvaUtilsPrivate {

class ProjectFileLockerPrivate
{
public:
    std::unique_ptr<QLockFile> lock; // null when none is held
};

} // namespace OrvaUtilsPrivate

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("ProjectFileLocker", text);
}

/// Of a lock that nobody else holds and that cannot be taken all the same.
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
    // All at once: a name may hold a "%2" of its own.
    return tr(QT_TRANSLATE_NOOP("ProjectFileLocker",
                                "Lock failed on '%1' : error=%2  folder=%3 machinehost=%4"))
        .arg(project, reasonOf(error), folder, QSysInfo::machineHostName());
}

// Takes the lock, in which case it replaces the one in held, or says why it cannot.
bool take(const QString& lockPath, const QString& project, const QString& folder,
          std::unique_ptr<QLockFile>& held, QString* error)
{
    auto lock = std::make_unique<QLockFile>(lockPath);
    if (!lock->tryLock(0)) {
        if (error)
            *error = messageOf(lock->error(), project, folder);
        return false;
    }
    held.swap(lock); // what was held goes with the scope, and with it its file
    return true;
}

} // namespace

ProjectFileLocker::ProjectFileLocker()
    : d(std::make_unique<OrvaUtilsPrivate::ProjectFileLockerPrivate>())
{ }

ProjectFileLocker::~ProjectFileLocker() = default;

QString ProjectFileLocker::suffixLockedFile()
{
    return QStringLiteral(".locked");
}

bool ProjectFileLocker::openNewProjectFile(const QString& path, QString* error)
{
    const QFileInfo project(path);
    return take(path + suffixLockedFile(), project.fileName(), project.absolutePath(), d->lock,
                error);
}

bool ProjectFileLocker::openNewProjectFolder(const QString& folder, const QString& projectName,
                                             QString* error)
{
    if (folder.isEmpty())
        return false;
    const QString path = withSlash(folder);
    if (!FileUtils::fileMkPath(path, error))
        return false;
    if (!QDir(folder).exists(folder))
        return true;
    return take(path + QStringLiteral("lockfile"), projectName, path, d->lock, error);
}

bool ProjectFileLocker::unlock()
{
    d->lock.reset();
    return true;
}

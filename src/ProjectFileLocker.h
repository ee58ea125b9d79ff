// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ProjectFileLocker: keeps one project from being open in two instances at once.

#ifndef ORVAUTILS_PROJECTFILELOCKER_H
#define ORVAUTILS_PROJECTFILELOCKER_H

#include "orvautils_export.h"

#include <QString>

#include <memory>

namespace OrvaUtilsPrivate {
class ProjectFileLockerPrivate;
}

/// Holds the lock of the project that an application has open.
///
/// \code
/// ProjectFileLocker locker;
/// QString error;
/// if (!locker.openNewProjectFile(path, &error))
///     QMessageBox::warning(window, title, error);
/// \endcode
///
/// The lock is a file, made and judged by QLockFile: "shop.proj.locked" beside the project file
/// shop.proj, or "lockfile" inside a project folder. It names the process and the machine of its
/// owner. A locker holds at most one lock; opening another project releases the former lock only
/// once the new one is held. No call waits for a lock. Nothing is logged: failures come back as a
/// text for the user. For the main thread.
///
/// The stale-lock time is QLockFile's default of 30 seconds, deliberately. A lock whose process no
/// longer runs on this machine is taken over at once. A lock file that is older than 30 seconds
/// may be taken over as well, which matters for a project that stays open long: on this machine,
/// and on file systems that carry the operating system's own file locks across machines, the
/// owner's file lock still protects it; on a shared folder that does not carry them, another
/// machine takes it for abandoned.
class ORVAUTILS_EXPORT ProjectFileLocker
{
public:
    /// Holds no lock.
    ProjectFileLocker();

    /// Releases the lock that is held; its file is removed.
    ~ProjectFileLocker();

    /// ".locked", what is put behind a project file's path to name its lock.
    static QString suffixLockedFile();

    /// Takes the lock of the project file \a path, which need not exist; its folder must.
    ///
    /// True when the lock is held; a lock held before is then released. False when it cannot be
    /// had; a lock held before stays held, so that opening the same project a second time through
    /// the same locker fails and changes nothing. \a error, when given, is written on failure
    /// only: "Project <file name> already opened !", a line feed and "Folder : <absolute folder>"
    /// when another instance (or this locker) holds the lock, otherwise "Lock failed on ..." with
    /// the reason, the folder and the name of this machine, not that of the lock's owner. Both are
    /// translated in the context "ProjectFileLocker".
    bool openNewProjectFile(const QString& path, QString* error = nullptr);

    /// Takes the lock of the project folder \a folder, which is made, with its parents, where it
    /// does not exist. \a projectName stands for the project in the messages.
    ///
    /// As openNewProjectFile(), with these differences: an empty \a folder gives false without a
    /// message; a folder that cannot be made gives false with the message of
    /// FileUtils::fileMkPath() in \a error; and where QDir(folder).exists(folder) is false the
    /// answer is true and no lock is taken, a lock held before staying held. That is deliberate
    /// leniency towards places where locking is impossible, and true for every relative path: true
    /// is no proof that a lock is held.
    bool openNewProjectFolder(const QString& folder, const QString& projectName,
                              QString* error = nullptr);

    /// Releases the lock that is held, if there is one. Always true.
    bool unlock();

private:
    Q_DISABLE_COPY(ProjectFileLocker)

    const std::unique_ptr<OrvaUtilsPrivate::ProjectFileLockerPrivate> d;
};

#endif // ORVAUTILS_PROJECTFILELOCKER_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ProjectFileLocker: keeps one project from being open in two instances at once.

#ifndef ORVAUTILS_PROJECTFILELOCKER_H
#define ORVAUTILS_PROJECTFILELOCKER_H

#include "orvautils_export.h"

#include <QDateTime>
#include <QString>

#include <memory>

QT_BEGIN_NAMESPACE
class QDebug;
QT_END_NAMESPACE

namespace OrvaUtilsPrivate {
class ProjectFileLockerPrivate;
} // namespace OrvaUtilsPrivate

/// Holds the lock of the project that an application has open.
///
/// \code
/// ProjectFileLocker locker;
/// QString error;
/// if (!locker.openNewProjectFile(path, &error))
///     QMessageBox::warning(window, title, error);
/// \endcode
///
/// The lock is a file, created and checked by QLockFile: "shop.proj.locked" beside the project file
/// shop.proj, or "lockfile" inside a project folder. It names the process and the machine of its
/// owner. A locker holds at most one lock; opening another project releases the former lock only
/// once the new one is held. No call waits for a lock. Nothing is logged: failures are reported as
/// a text for the user. To be used on the main thread.
///
/// Something else under the name of a lock, such as a pipe or a file of more than 64 KiB, is never
/// read or replaced: the lock cannot be taken then, and nobody is its holder.
///
/// A relative path is resolved once, when the lock is taken: later changes of the current folder do
/// not matter. Nevertheless, absolute paths are safer for project folders, see
/// openNewProjectFolder().
///
/// The stale-lock time is QLockFile's default of 30 seconds, deliberately. A lock whose process no
/// longer runs on this machine is taken over at once, and so is a file that such a process left
/// while it was creating a lock, or replacing an old one (".rmlock" beside the lock), if the system
/// can tell that nobody has it open. A lock file that is older than 30 seconds may be taken over as
/// well, which matters for a project that stays open long: on this machine, and on file systems
/// that carry the operating system's own file locks across machines, the owner's file lock still
/// protects it; on a shared folder that does not carry them, another machine considers it
/// abandoned.
class ORVAUTILS_EXPORT ProjectFileLocker
{
public:
    /// Who holds the lock of a project.
    struct LockHolder
    {
        qint64 processId = 0; ///< 0 when nobody holds it
        QString host; ///< the name of the machine
        QString application; ///< the name of the program
        QDateTime since; ///< when the lock was taken
        /// Whether the process still runs. True for one on another machine, which cannot be asked.
        bool isRunning = false;
    };

    /// The state of the project that was opened last.
    enum LockState : int {
        NotLocked, ///< no project is open
        Lenient, ///< it is open without a lock
        Locked ///< its lock is held
    };

    /// Holds no lock.
    ProjectFileLocker();

    /// Releases the lock, if one is held, and removes its file.
    ~ProjectFileLocker();

    /// ".locked", the suffix that is appended to a project file's path to name its lock.
    static QString suffixLockedFile();

    /// Takes the lock of the project file \a path, which need not exist; its folder must.
    ///
    /// True when the lock is held; a lock held before is then released. False when it cannot be
    /// obtained; a lock held before stays held, so that opening the same project a second time
    /// through the same locker fails and changes nothing. \a error, when given, is written on
    /// failure only: "Project <file name> already opened !", a line feed and "Folder : <absolute
    /// folder>" when another instance (or this locker) holds the lock, otherwise "Lock failed on
    /// ..." with the reason, the folder and the name of this machine, not that of the lock's owner.
    /// Both are translated in the context "ProjectFileLocker". A path that contains a NUL cannot be
    /// locked.
    bool openNewProjectFile(const QString& path, QString* error = nullptr);

    /// Takes the lock of the project folder \a folder, which is created, with its parents, if it
    /// does not exist. \a projectName is the name of the project in the messages.
    ///
    /// As openNewProjectFile(), with these differences: an empty \a folder gives false without a
    /// message; a folder that cannot be created gives false with the message of
    /// FileUtils::fileMkPath() in \a error; and if QDir(folder).exists(folder) is false, the result
    /// is true and no lock is taken, while a lock held before stays held. This is deliberate
    /// leniency towards places where locking is impossible. It also affects most relative paths,
    /// because the folder is looked for inside itself: "shop" is locked only if there is a
    /// shop/shop, "." and ".." are locked. True does not mean that a lock is held; check
    /// lockState(). Pass absolute paths.
    bool openNewProjectFolder(const QString& folder, const QString& projectName,
                              QString* error = nullptr);

    /// Releases the lock that is held, if there is one. Always true.
    bool unlock();

    /// Whether a lock is held, possibly that of a project opened before the last one; see
    /// lockedPath().
    ///
    /// \code
    /// saveAction->setEnabled(locker.isLocked());
    /// \endcode
    bool isLocked() const;

    /// The absolute path of the project file or folder whose lock is held; empty when none is.
    ///
    /// \code
    /// setWindowFilePath(locker.lockedPath());
    /// \endcode
    QString lockedPath() const;

    /// Whether the project that was opened last is locked. A project that could not be opened
    /// changes nothing.
    ///
    /// \code
    /// if (locker.openNewProjectFolder(folder, name, &error)
    ///     && locker.lockState() == ProjectFileLocker::LockState::Lenient)
    ///     statusBar()->showMessage(tr("Nothing keeps others from opening this project."));
    /// \endcode
    LockState lockState() const;

    /// Who holds the lock of the project file or folder \a path, in this process or another one. An
    /// existing folder is treated as a project folder, everything else as a project file. Neither
    /// takes nor touches the lock.
    ///
    /// \code
    /// if (!locker.openNewProjectFile(path, &error)) {
    ///     const ProjectFileLocker::LockHolder holder = ProjectFileLocker::holder(path);
    ///     if (holder.isRunning)
    ///         error += tr("\nby %1 on %2").arg(holder.application, holder.host);
    /// }
    /// \endcode
    static LockHolder holder(const QString& path);

private:
    Q_DISABLE_COPY(ProjectFileLocker)

    const std::unique_ptr<OrvaUtilsPrivate::ProjectFileLockerPrivate> d;
};

/// Writes all that is known about \a holder, as in LockHolder(process 4711, "shop-editor" on
/// "counter", since 2026-03-01T09:30:00, running).
///
/// \code
/// qDebug() << ProjectFileLocker::holder(path);
/// \endcode
ORVAUTILS_EXPORT QDebug operator<<(QDebug debug, const ProjectFileLocker::LockHolder& holder);

#endif // ORVAUTILS_PROJECTFILELOCKER_H

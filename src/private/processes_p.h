// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Queries about other processes, and a lock that tells them that a folder is in use.

#ifndef ORVAUTILS_PROCESSES_P_H
#define ORVAUTILS_PROCESSES_P_H

#include <QString>
#include <QtGlobal>

namespace OrvaUtilsPrivate {

/// Whether a process with that ID is running on this machine and, if the system reports its program
/// and \a program is not empty, whether that has this name.
bool isProcessRunning(qint64 id, const QString& program);

/// Whether \a host, as a lock file names it, is this machine.
bool isThisMachine(const QString& host);

/// Whether no process has the existing file \a path open for writing, this one included. If the
/// system does not report it, the file must be a few seconds old and not locked.
bool isOpenedByNobody(const QString& path);

/// Tells other processes that a folder is in use, until this object is destroyed or the process
/// ends. A folder keeps its lock when it is renamed.
class FolderLock
{
public:
    enum class Answer {
        Taken,
        InUse, ///< by somebody else, or it does not exist any more
        Unknown ///< the system, or this file system, has no such locks
    };

    FolderLock() = default;
    ~FolderLock();

    /// Must be called only once.
    Answer take(const QString& folder);

private:
    Q_DISABLE_COPY(FolderLock)

    qintptr mHandle = -1; // of the system
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PROCESSES_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Questions about other processes, and a lock that tells them which folder is in use.

#ifndef ORVAUTILS_PROCESSES_P_H
#define ORVAUTILS_PROCESSES_P_H

#include <QString>
#include <QtGlobal>

namespace OrvaUtilsPrivate {

/// Whether a process of this machine has that number and, where the system tells, runs a program of
/// that name.
bool isProcessRunning(qint64 id, const QString& program);

/// Whether \a host, as a lock file names it, is this machine.
bool isThisMachine(const QString& host);

/// Whether no process has the existing file \a path open for writing, this one included. False
/// where the system does not tell.
bool isOpenedByNobody(const QString& path);

/// Tells other processes that a folder is being worked on, for as long as it lives, or the process
/// does. A folder keeps its lock when it is renamed.
class FolderLock
{
public:
    enum class Answer {
        Taken,
        InUse, ///< by somebody else, or it is gone by now
        Unknown ///< the system, or this file system, has no such locks
    };

    FolderLock() = default;
    ~FolderLock();

    /// To be called once.
    Answer take(const QString& folder);

private:
    Q_DISABLE_COPY(FolderLock)

    qintptr mHandle = -1; // of the system
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PROCESSES_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Questions about other processes.

#ifndef ORVAUTILS_PROCESSES_P_H
#define ORVAUTILS_PROCESSES_P_H

#include <QString>

namespace OrvaUtilsPrivate {

/// Whether a process of this machine has that number and, where the system tells, runs a program of
/// that name.
bool isProcessRunning(qint64 id, const QString& program);

/// Whether no process has the existing file \a path open for writing, this one included. False
/// where the system does not tell.
bool isOpenedByNobody(const QString& path);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PROCESSES_P_H

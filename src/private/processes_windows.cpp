// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "processes_p.h"

#include <QDir>
#include <QFileInfo>
#include <QSysInfo>

#ifndef NOMINMAX
#define NOMINMAX // or min() and max() are macros
#endif
#include <windows.h>

namespace OrvaUtilsPrivate {

namespace {

/// The program that a process runs, without folder and suffix; empty if the system does not report
/// it.
QString programOf(HANDLE process)
{
    wchar_t path[MAX_PATH];
    DWORD size = MAX_PATH;
    if (!QueryFullProcessImageNameW(process, 0, path, &size))
        return QString();
    const QString name = QString::fromWCharArray(path, int(size));
    return QFileInfo(QDir::fromNativeSeparators(name)).completeBaseName();
}

} // namespace

bool isProcessRunning(qint64 id, const QString& program)
{
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, DWORD(id));
    if (!process)
        return GetLastError() == ERROR_ACCESS_DENIED;
    DWORD code = 0;
    const bool isRunning = GetExitCodeProcess(process, &code) && code == STILL_ACTIVE;
    const QString running = isRunning && !program.isEmpty() ? programOf(process) : QString();
    CloseHandle(process);
    // Process ids are reused.
    return isRunning && (running.isEmpty() || running.compare(program, Qt::CaseInsensitive) == 0);
}

bool isThisMachine(const QString& host)
{
    // QLockFile uses this name, in capitals and of 15 characters at most.
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
    return host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0
        || (GetComputerNameW(name, &size)
            && host.compare(QString::fromWCharArray(name, int(size)), Qt::CaseInsensitive) == 0);
}

bool isOpenedByNobody(const QString& path)
{
    // Refused while anybody else has the file open.
    const HANDLE file = CreateFileW(reinterpret_cast<const wchar_t*>(path.utf16()), GENERIC_READ, 0,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    CloseHandle(file);
    return true;
}

FolderLock::~FolderLock()
{
    if (mHandle != -1)
        CloseHandle(reinterpret_cast<HANDLE>(mHandle));
}

FolderLock::Answer FolderLock::take(const QString& folder)
{
    // An open handle would keep the folder from being renamed; a mutex also ends with its process.
    // What follows the second "-" is added and removed when a folder is moved aside.
    const QString name =
        QStringLiteral("Global\\") + QFileInfo(folder).fileName().section(QLatin1Char('-'), 0, 1);
    const HANDLE mutex =
        CreateMutexW(nullptr, FALSE, reinterpret_cast<const wchar_t*>(name.utf16()));
    if (!mutex)
        return Answer::Unknown;
    if (GetLastError() == ERROR_ALREADY_EXISTS) {
        CloseHandle(mutex);
        return Answer::InUse;
    }
    mHandle = reinterpret_cast<qintptr>(mutex);
    return Answer::Taken;
}

} // namespace OrvaUtilsPrivate

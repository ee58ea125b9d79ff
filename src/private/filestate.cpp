// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filestate_p.h"

#include "folderpath_p.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#if defined(Q_OS_UNIX)
#include <cerrno>
#include <sys/stat.h>
#elif defined(Q_OS_WIN)
#ifndef NOMINMAX
#define NOMINMAX // otherwise min() and max() are macros
#endif
#include <windows.h>
#endif

namespace OrvaUtilsPrivate {

namespace {

/// Whether the nearest readable folder above \a path does not list the next part of the path.
bool isUnlisted(QString path)
{
    path = QDir::cleanPath(QDir::current().absoluteFilePath(path));
    for (;;) {
        const QFileInfo info(path);
        const QString above = info.path();
        if (above == path)
            return false; // GCOVR_EXCL_LINE: the root folder can be read
        const QStringList names = QDir(above).entryList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted);
        // An empty folder and an unreadable one both give an empty list.
        if (!names.isEmpty())
            return !names.contains(info.fileName());
        path = above;
    }
}

#if defined(Q_OS_UNIX)

qint64 nanoseconds(const struct stat& status)
{
#if defined(Q_OS_MAC)
    const timespec& time = status.st_ctimespec;
#else
    const timespec& time = status.st_ctim;
#endif
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

FileState stateFrom(const struct stat& status)
{
    FileState state;
    state.kind = S_ISREG(status.st_mode) ? FileState::Kind::File
        : S_ISDIR(status.st_mode)        ? FileState::Kind::Folder
                                         : FileState::Kind::Other;
    state.device = quint64(status.st_dev);
    state.number = quint64(status.st_ino);
    state.changed = nanoseconds(status);
    state.size = status.st_size;
    return state;
}

#elif defined(Q_OS_WIN)

QString nativePath(const QString& path)
{
    return QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
}

/// Queries what identifies the file, and its modification time to 100 nanoseconds.
void identify(const QString& path, FileState& state)
{
    const QString native = nativePath(path);
    const HANDLE file = CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), 0,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return;
    BY_HANDLE_FILE_INFORMATION status = {};
    const auto joined = [](DWORD high, DWORD low) { return quint64(high) << 32 | low; };
    if (GetFileInformationByHandle(file, &status)) {
        state.device = status.dwVolumeSerialNumber;
        state.number = joined(status.nFileIndexHigh, status.nFileIndexLow);
        state.changed = qint64(
            joined(status.ftLastWriteTime.dwHighDateTime, status.ftLastWriteTime.dwLowDateTime));
    }
    CloseHandle(file);
}

/// Whether the system reports that nothing exists at \a path, or a broken link. An empty listing of
/// its folder would not prove that.
bool isKnownToBeMissing(const QString& path)
{
    const QString native = nativePath(path);
    const DWORD attributes = GetFileAttributesW(reinterpret_cast<const wchar_t*>(native.utf16()));
    if (attributes != INVALID_FILE_ATTRIBUTES)
        return attributes & FILE_ATTRIBUTE_REPARSE_POINT;
    const DWORD reason = GetLastError();
    return reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND;
}

#endif

} // namespace

FileState stateOf(const QString& path)
{
    FileState state;
#if defined(Q_OS_UNIX)
    struct stat status = {};
    if (stat(encoded(path).constData(), &status) == 0)
        return stateFrom(status);
    if (errno == ENOENT || errno == ENOTDIR)
        return state;
#else
    const QFileInfo info(path);
    if (info.exists()) {
        state.kind = info.isFile() ? FileState::Kind::File
            : info.isDir()         ? FileState::Kind::Folder
                                   : FileState::Kind::Other;
        state.changed = info.lastModified().toMSecsSinceEpoch();
        state.size = info.size();
#if defined(Q_OS_WIN)
        // Folders only: a file cannot be replaced while it is open, however briefly.
        if (state.isFolder())
            identify(path, state);
#endif
        return state;
    }
#if defined(Q_OS_WIN)
    if (isKnownToBeMissing(path))
        return state;
#endif
#endif
    if (!isUnlisted(path))
        state.kind = FileState::Kind::Unknown;
    return state;
}

QString stampOf(const QString& path)
{
    FileState state = stateOf(path);
    if (state.isMissing() || state.kind == FileState::Kind::Unknown)
        return QString();
#if defined(Q_OS_WIN)
    identify(path, state);
#endif
    return QStringLiteral("%1:%2:%3:%4")
        .arg(state.device)
        .arg(state.number)
        .arg(state.size)
        .arg(state.changed);
}

} // namespace OrvaUtilsPrivate

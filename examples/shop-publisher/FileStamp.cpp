// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FileStamp.h"

#include <QFile>
#include <QStringList>

#ifdef Q_OS_WIN
#include <QDir>
#include <QFileInfo>

#include <windows.h>
#else
#include <sys/stat.h>
#endif

#ifdef Q_OS_WIN
FileStamp FileStamp::of(const QString& path)
{
    FileStamp stamp;
    const QString native = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    // Of a folder, too.
    const HANDLE file = CreateFileW(reinterpret_cast<const wchar_t*>(native.utf16()), 0,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return stamp;
    BY_HANDLE_FILE_INFORMATION status = {};
    if (GetFileInformationByHandle(file, &status)) {
        const auto joined = [](DWORD high, DWORD low) { return quint64(high) << 32 | low; };
        stamp.device = status.dwVolumeSerialNumber;
        stamp.inode = joined(status.nFileIndexHigh, status.nFileIndexLow);
        stamp.size = qint64(joined(status.nFileSizeHigh, status.nFileSizeLow));
        // Counted in 100 nanoseconds since 1601, which in nanoseconds would not fit.
        stamp.changed = qint64(
            joined(status.ftLastWriteTime.dwHighDateTime, status.ftLastWriteTime.dwLowDateTime));
    }
    CloseHandle(file);
    return stamp;
}
#else
FileStamp FileStamp::of(const QString& path)
{
    FileStamp stamp;
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return stamp;
#ifdef Q_OS_DARWIN
    const timespec& changed = status.st_ctimespec;
#else
    const timespec& changed = status.st_ctim;
#endif
    stamp.device = quint64(status.st_dev);
    stamp.inode = quint64(status.st_ino);
    stamp.size = qint64(status.st_size);
    stamp.changed = qint64(changed.tv_sec) * 1000000000 + qint64(changed.tv_nsec);
    return stamp;
}
#endif

QString FileStamp::toText() const
{
    return QStringLiteral("%1:%2:%3:%4").arg(device).arg(inode).arg(size).arg(changed);
}

FileStamp FileStamp::fromText(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    FileStamp stamp;
    if (parts.size() != 4)
        return stamp;
    stamp.device = parts.at(0).toULongLong();
    stamp.inode = parts.at(1).toULongLong();
    stamp.size = parts.at(2).toLongLong();
    stamp.changed = parts.at(3).toLongLong();
    return stamp;
}

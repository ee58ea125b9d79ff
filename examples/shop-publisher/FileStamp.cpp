// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FileStamp.h"

#include <QFile>
#include <QStringList>

#include <sys/stat.h>

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

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "watchlimit_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace OrvaUtilsPrivate {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("DirectoryWatcher", text);
}

bool canBeRead(const QString& path)
{
    if (QFileInfo(path).isDir())
        return QDir(path).isReadable();
    return QFile(path).open(QIODevice::ReadOnly);
}

/// How many files and folders the system watches for one user; 0 if that is not known.
int limitOfThePlatform()
{
#if defined(Q_OS_LINUX)
    QFile limit(QStringLiteral("/proc/sys/fs/inotify/max_user_watches"));
    return limit.open(QIODevice::ReadOnly) ? limit.readAll().trimmed().toInt() : 0;
#else
    return 0;
#endif
}

} // namespace

QString refusalReason(const QStringList& paths)
{
    for (const QString& path : paths) {
        if (!canBeRead(path))
            continue;
        const int limit = limitOfThePlatform();
        if (limit == 0)
            return tr(QT_TRANSLATE_NOOP("DirectoryWatcher",
                                        "The system watches no more files and folders."));
        return tr(QT_TRANSLATE_NOOP(
                      "DirectoryWatcher",
                      "The system watches no more than %1 files and folders for each user. An "
                      "administrator can raise this limit: sysctl fs.inotify.max_user_watches=%2"))
            .arg(QString::number(limit), QString::number(limit * qint64(4)));
    }
    return tr(QT_TRANSLATE_NOOP("DirectoryWatcher", "Permission to read is missing."));
}

} // namespace OrvaUtilsPrivate

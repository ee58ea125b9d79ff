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
#endif

namespace OrvaUtilsPrivate {

namespace {

/// Whether the nearest readable folder above \a path does not list the way to it.
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
        // A folder that holds nothing and one that cannot be read both give an empty list.
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
        return state;
    }
#endif
    if (!isUnlisted(path))
        state.kind = FileState::Kind::Unknown;
    return state;
}

} // namespace OrvaUtilsPrivate

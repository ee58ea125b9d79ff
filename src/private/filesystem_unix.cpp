// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filesystem_p.h"

#include "folderpath_p.h"

#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OrvaUtilsPrivate {

bool isSameFile(const QString& one, const QString& other)
{
    // Unlike a comparison of paths, this is also correct where the file system ignores case.
    struct stat oneStatus = {};
    struct stat otherStatus = {};
    return stat(encoded(one).constData(), &oneStatus) == 0
        && stat(encoded(other).constData(), &otherStatus) == 0
        && oneStatus.st_dev == otherStatus.st_dev && oneStatus.st_ino == otherStatus.st_ino;
}

QString replaceablePath(const QFile& file)
{
    QString path = QFileInfo(file.fileName()).canonicalFilePath();
    struct stat opened = {};
    struct stat named = {};
    if (fstat(file.handle(), &opened) != 0 || !S_ISREG(opened.st_mode) || opened.st_nlink != 1
        || stat(encoded(path).constData(), &named) != 0 || opened.st_dev != named.st_dev
        || opened.st_ino != named.st_ino)
        return QString();
    return path;
}

bool putOnDisk(int file, QString* reason)
{
    while (fsync(file) != 0) {
        if (errno == EINVAL || errno == ENOSYS || errno == EROFS)
            break;
        if (errno != EINTR) {
            *reason = qt_error_string(errno);
            return false;
        }
    }
    return true;
}

bool setPermissions(QFile* file, QFile::Permissions permissions)
{
    const unsigned bits = permissions;
    const unsigned owner = (bits >> 12 | bits >> 8) & 7;
    const auto mode = mode_t(owner << 6 | (bits >> 4 & 7) << 3 | (bits & 7));
    return fchmod(file->handle(), mode) == 0;
}

bool takeAttributes(int from, int to)
{
    struct stat wanted = {};
    struct stat given = {};
    if (fstat(from, &wanted) != 0 || fstat(to, &given) != 0)
        return false;
    const bool isOwned = wanted.st_uid == given.st_uid && wanted.st_gid == given.st_gid;
    if (!isOwned && fchown(to, wanted.st_uid, wanted.st_gid) != 0)
        return false;
    // The permissions come last, because a change of owner and an access list change them.
    return takeExtendedAttributes(from, to) && fstat(to, &given) == 0
        && (wanted.st_mode == given.st_mode || fchmod(to, wanted.st_mode & 07777) == 0);
}

bool moveOver(const QString& path, const QString& newPath, QString* reason)
{
    if (std::rename(encoded(path).constData(), encoded(newPath).constData()) == 0)
        return true;
    *reason = qt_error_string(errno);
    return false;
}

bool removeOldFile(QFile* file)
{
    return file->remove();
}

bool takesNewFiles(const QString& folder)
{
    return faccessat(AT_FDCWD, encoded(folder).constData(), W_OK | X_OK, AT_EACCESS) == 0;
}

void removeTreeByBytes(const QString& path)
{
    const auto removeEntry = [](const char* entry, const struct stat*, int type, struct FTW*) {
        static_cast<void>(type == FTW_DP ? rmdir(entry) : unlink(entry));
        return 0; // the other entries are still removed
    };
    const int mostOpenFolders = 32;
    nftw(encoded(path).constData(), removeEntry, mostOpenFolders, FTW_DEPTH | FTW_PHYS);
}

void hideFile(const QString&) { }

} // namespace OrvaUtilsPrivate

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "exactcopy_p.h"

#include "descriptor_p.h"
#include "filesystem_p.h"
#include "folderpath_p.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OrvaUtilsPrivate {

namespace {

/// Sets \a reason to the system's last error. Returns false.
bool failed(QString* reason)
{
    *reason = qt_error_string(errno);
    return false;
}

enum class Link { Refuse, Follow };

/// Opens without waiting for anything but a disk.
int openFile(const QString& path, int flags, mode_t mode = 0, Link link = Link::Refuse)
{
    const QByteArray name = encoded(path);
    flags |= O_CLOEXEC | O_NONBLOCK | (link == Link::Refuse ? O_NOFOLLOW : 0);
    for (;;) {
        const int file = open(name.constData(), flags, mode);
        if (file >= 0 || errno != EINTR)
            return file;
    }
}

struct Times
{
    explicit Times(const struct stat& status)
#if defined(Q_OS_MAC)
        : times{status.st_atimespec, status.st_mtimespec}
#else
        : times{status.st_atim, status.st_mtim}
#endif
    { }

    struct timespec times[2];
};

/// Gives a copy the attributes of its source; the owner only if this process may give files away.
bool takeStatus(int from, int to, const struct stat& status, QString* reason)
{
    struct stat own = {};
    if (fstat(to, &own) != 0)
        return failed(reason); // GCOVR_EXCL_LINE: every open file has a status
    bool isOwned = own.st_uid == status.st_uid && own.st_gid == status.st_gid;
    if (!isOwned) {
        isOwned = fchown(to, status.st_uid, status.st_gid) == 0;
        if (!isOwned && errno != EPERM)
            return failed(reason);
    }
    // A set-user-ID program must not run with the rights of another owner.
    const mode_t mode = status.st_mode & (isOwned ? 07777 : 01777);
    if (!takeExtendedAttributes(from, to) || fchmod(to, mode) != 0
        || futimens(to, Times(status).times) != 0)
        return failed(reason);
    return true;
}

bool isSparse(const struct stat& status)
{
    return qint64(status.st_blocks) * 512 < qint64(status.st_size);
}

/// Writes all the \a bytes at an offset of the file.
bool writeAll(int file, const char* bytes, ssize_t size, off_t offset)
{
    for (ssize_t written = 0; written < size;) {
        const ssize_t taken =
            pwrite(file, bytes + written, size_t(size - written), offset + written);
        if (taken < 0 && errno != EINTR)
            return false;
        written += qMax(taken, ssize_t(0));
    }
    return true;
}

bool setSize(int file, off_t size)
{
    int result = -1;
    do
        result = ftruncate(file, size);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

/// Copies the data between the holes of a file. Returns false on failure.
bool copyBetweenHoles(int source, int destination, off_t size)
{
#if defined(SEEK_DATA) && defined(SEEK_HOLE)
    char buffer[65536];
    for (off_t at = 0; at < size;) {
        const off_t data = lseek(source, at, SEEK_DATA);
        if (data < 0 && errno == ENXIO)
            break; // all that follows is a hole
        const off_t hole = data < 0 ? -1 : lseek(source, data, SEEK_HOLE);
        if (hole < 0)
            return false; // GCOVR_EXCL_LINE: every file system of Linux answers
        for (at = data; at < hole;) {
            const size_t wanted = size_t(qMin(off_t(sizeof buffer), hole - at));
            const ssize_t got = pread(source, buffer, wanted, at);
            if (got < 0 && errno == EINTR)
                continue;
            if (got == 0) // became shorter
                return setSize(destination, at); // GCOVR_EXCL_LINE: while it was copied
            if (got < 0 || !writeAll(destination, buffer, got, at))
                return false;
            at += got;
        }
    }
    return setSize(destination, size);
#else
    return copyContent(source, destination, size);
#endif
}

} // namespace

bool copyFileExactly(const QString& source, const QString& destination, qint64* size,
                     QString* reason)
{
    const Descriptor from(openFile(source, O_RDONLY));
    struct stat status = {};
    if (!from.isOpen() || fstat(from, &status) != 0)
        return failed(reason);
    if (!S_ISREG(status.st_mode)) {
        *reason = qt_error_string(EINVAL); // GCOVR_EXCL_LINE: it was a file when it was listed
        return false; // GCOVR_EXCL_LINE: as above
    }
    Descriptor to(openFile(destination, O_WRONLY | O_CREAT | O_EXCL, 0600));
    if (!to.isOpen())
        return failed(reason);
    const bool isCopied = isSparse(status) ? copyBetweenHoles(from, to, status.st_size)
                                           : copyContent(from, to, status.st_size);
    if (!isCopied)
        return failed(reason);
    *size = status.st_size;
    return takeStatus(from, to, status, reason) && (to.close() || failed(reason));
}

bool copyLinkExactly(const QString& source, const QString& destination, QString* reason)
{
    const QByteArray from = encoded(source);
    const QByteArray to = encoded(destination);
    struct stat status = {};
    QByteArray target(4096, Qt::Uninitialized);
    const ssize_t size = readlink(from.constData(), target.data(), size_t(target.size()));
    if (size < 0 || lstat(from.constData(), &status) != 0)
        return failed(reason); // GCOVR_EXCL_LINE: it was a link when it was listed
    if (size == target.size()) {
        *reason = qt_error_string(ENAMETOOLONG); // GCOVR_EXCL_LINE: no link is that long
        return false; // GCOVR_EXCL_LINE: as above
    }
    target.truncate(int(size));
    if (symlink(target.constData(), to.constData()) != 0
        || (lchown(to.constData(), status.st_uid, status.st_gid) != 0 && errno != EPERM)
        || utimensat(AT_FDCWD, to.constData(), Times(status).times, AT_SYMLINK_NOFOLLOW) != 0)
        return failed(reason);
    return true;
}

bool makePrivateFolder(const QString& path, QString* reason)
{
    return mkdir(encoded(path).constData(), 0700) == 0 || failed(reason);
}

bool finishFolderExactly(const QString& source, const QString& destination, QString* reason)
{
    // The top folder may be reached through a link.
    const Descriptor from(openFile(source, O_RDONLY, 0, Link::Follow));
    const Descriptor to(openFile(destination, O_RDONLY));
    struct stat status = {};
    if (!from.isOpen() || !to.isOpen() || fstat(from, &status) != 0)
        return failed(reason);
    return takeStatus(from, to, status, reason);
}

} // namespace OrvaUtilsPrivate

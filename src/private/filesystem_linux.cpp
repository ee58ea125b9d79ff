// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filesystem_p.h"

#include "descriptor_p.h"
#include "folderpath_p.h"
#include "folderreader_p.h"

#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OrvaUtilsPrivate {

namespace {

/// Whether only Qt understands \a path: a resource (":/icons") or a search path ("icons:small").
bool isKnownToQtAlone(const QString& path)
{
    const int colon = int(path.indexOf(QLatin1Char(':')));
    if (colon < 0)
        return false;
    const int slash = int(path.indexOf(QLatin1Char('/')));
    return slash < 0 || colon < slash;
}

// Reading folders

class LinuxFolder : public FolderSource
{
public:
    LinuxFolder(const QString& path, EntryDetail detail)
        : mFolder(open(encoded(path)))
        , mDetail(detail)
    {
        mError = mFolder ? 0 : errno;
    }

    ~LinuxFolder() override { close(); }

    bool next(FolderEntry& entry) override
    {
        if (!mFolder)
            return false;
        const struct dirent* found = nullptr;
        do {
            errno = 0;
            found = readdir(mFolder);
        } while (found && isDotOrDotDot(found->d_name));
        if (!found) {
            mError = errno;
            close();
            return false;
        }
        setName(entry, found->d_name);
        setStatus(entry, *found);
        return true;
    }

private:
    static DIR* open(const QByteArray& path)
    {
        for (;;) {
            // Opening a folder on the network may block, and a signal interrupts it.
            DIR* const folder = opendir(path.constData());
            if (folder || errno != EINTR)
                return folder;
        }
    }

    static bool isDotOrDotDot(const char* name)
    {
        return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
    }

    static void setName(FolderEntry& entry, const char* name)
    {
        // Almost all names are plain ASCII, which needs no codec and no new string.
        const int size = int(std::strlen(name));
        entry.name.resize(size);
        QChar* const text = entry.name.data();
        bool isAscii = true;
        for (int i = 0; i < size; ++i) {
            text[i] = QLatin1Char(name[i]);
            isAscii = isAscii && static_cast<signed char>(name[i]) >= 0;
        }
        entry.isHidden = name[0] == '.';
        entry.isReachable = true;
        if (!isAscii) {
            const QByteArray bytes = QByteArray::fromRawData(name, size);
            entry.name = QFile::decodeName(bytes);
            entry.isReachable = QFile::encodeName(entry.name) == bytes;
        }
    }

    static EntryKind kindOf(const struct stat& status)
    {
        return S_ISREG(status.st_mode) ? EntryKind::File
            : S_ISDIR(status.st_mode)  ? EntryKind::Folder
                                       : EntryKind::Other;
    }

    /// Queries the system only for details that the directory entry lacks.
    void setStatus(FolderEntry& entry, const struct dirent& found) const
    {
        const int folder = dirfd(mFolder);
        struct stat status = {};
        entry.size = 0;
        entry.modified = std::numeric_limits<qint64>::min();
        entry.isLink = found.d_type == DT_LNK;
        entry.kind = found.d_type == DT_REG ? EntryKind::File
            : found.d_type == DT_DIR        ? EntryKind::Folder
                                            : EntryKind::Other;
        if (found.d_type == DT_UNKNOWN
            && fstatat(folder, found.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
            entry.isLink = S_ISLNK(status.st_mode);
            entry.kind = kindOf(status);
        }
        const bool wantsStatus = entry.kind == EntryKind::File && mDetail != EntryDetail::Kinds;
        if (!entry.isLink && !wantsStatus)
            return;
        if (fstatat(folder, found.d_name, &status, 0) != 0)
            return;
        entry.kind = kindOf(status);
        entry.size = status.st_size;
        entry.modified = qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1000000;
    }

    void close()
    {
        if (mFolder)
            closedir(mFolder);
        mFolder = nullptr;
    }

    DIR* mFolder;
    const EntryDetail mDetail;
};

// Copying

/// The permissions that QFile::copy() gives a copy: those of the source, the owner's extended by
/// what the current user may do with it.
mode_t permissionsOfCopy(int source, mode_t mode)
{
    mode_t permissions = mode & 0777;
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(source);
    const auto complete = [&](mode_t bit, int right) {
        // Without any execute permission nobody may execute the file.
        const bool anyone = permissions & (bit | bit >> 3 | bit >> 6);
        if (!(permissions & bit) && (anyone || right != X_OK)
            && access(path.constData(), right) == 0)
            permissions |= bit;
    };
    complete(S_IRUSR, R_OK);
    complete(S_IWUSR, W_OK);
    complete(S_IXUSR, X_OK);
    return permissions;
}

bool writeAll(int destination, const char* data, size_t size)
{
    while (size > 0) {
        const ssize_t written = write(destination, data, size);
        if (written < 0 && errno != EINTR)
            return false;
        if (written > 0) {
            data += written;
            size -= size_t(written);
        }
    }
    return true;
}

/// Lets the system copy, which need not move the bytes through this process. Returns how many bytes
/// it copied up to the end, which is expected after \a size bytes, or up to a failure.
qint64 copyWithinSystem(int source, int destination, qint64 size)
{
    const ssize_t step = ssize_t(1) << 30;
    for (qint64 copied = 0;;) {
        const ssize_t got = copy_file_range(source, nullptr, destination, nullptr, step, 0);
        if (got > 0)
            copied += got;
        else if (got == 0 || errno != EINTR)
            return copied;
        if (got > 0 && got < step && copied == size)
            return copied;
    }
}

/// Opens a new file without a name in \a folder.
int openUnnamed(const QByteArray& folder, mode_t mode)
{
    return open(folder.constData(), O_RDWR | O_CLOEXEC | O_TMPFILE, mode);
}

/// Gives such a file the name \a path.
bool link(int file, const QByteArray& path)
{
    const QByteArray unnamed = "/proc/self/fd/" + QByteArray::number(file);
    return linkat(AT_FDCWD, unnamed.constData(), AT_FDCWD, path.constData(), AT_SYMLINK_FOLLOW)
        == 0;
}

} // namespace

std::unique_ptr<FolderSource> systemFolder(const QString& path, EntryDetail detail)
{
    if (isKnownToQtAlone(path))
        return nullptr;
    return std::make_unique<LinuxFolder>(path, detail);
}

bool copyNewFile(const QString& source, const QString& destination, qint64* size)
{
    if (isKnownToQtAlone(source) || isKnownToQtAlone(destination))
        return false;
    // Non-blocking: opening a pipe would otherwise wait for a writer.
    const Descriptor from(open(encoded(source).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!from.isOpen() || fstat(from, &status) != 0 || !S_ISREG(status.st_mode))
        return false;

    const QByteArray path = encoded(destination);
    const int slash = int(path.lastIndexOf('/'));
    Descriptor to(openUnnamed(slash < 0 ? QByteArray("./") : path.left(slash + 1), 0600));
    if (!to.isOpen() || !copyContent(from, to, status.st_size))
        return false;
    // A failure is ignored: some file systems have no permissions.
    static_cast<void>(fchmod(to, permissionsOfCopy(from, status.st_mode)));
    if (!link(to, path))
        return false;
    *size = status.st_size;
    if (to.close())
        return true;
    unlink(path.constData());
    return false;
}

bool copyContent(int source, int destination, qint64 size)
{
    char buffer[65536];
    qint64 copied = 0;
    if (size > qint64(sizeof buffer)) {
        // Some file systems can share the blocks of a file with its copy.
        if (ioctl(destination, FICLONE, source) == 0)
            return true; // GCOVR_EXCL_LINE: few file systems share blocks
        copied = copyWithinSystem(source, destination, size);
        if (copied == size)
            return true;
    }
    for (;;) {
        const ssize_t got = read(source, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 || !writeAll(destination, buffer, size_t(got)))
            return false;
        copied += got;
        // A short read that reaches the expected size: another one would return nothing.
        if (got == 0 || (copied == size && size_t(got) < sizeof buffer)) {
            if (copied < size)
                errno = EIO; // GCOVR_EXCL_LINE: the file became shorter while it was copied
            return copied >= size;
        }
    }
}

bool copyContent(QFile& source, QFile& destination, QString* reason)
{
    // A resource has no descriptor.
    if (source.handle() < 0 || source.pos() != 0 || destination.pos() != 0)
        return copyRest(source, destination, reason);
    if (copyContent(source.handle(), destination.handle(), source.size()))
        return true;
    *reason = qt_error_string(errno);
    return false;
}

bool openUnnamed(QFile* file, const QString& folder)
{
    if (isKnownToQtAlone(folder))
        return false;
    const int descriptor = openUnnamed(encoded(folder), 0666);
    return descriptor >= 0
        && file->open(descriptor, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle);
}

bool nameFile(int file, const QString& path, QString* reason)
{
    if (link(file, encoded(path)))
        return true;
    *reason = qt_error_string(errno);
    return false;
}

bool removeFile(const QString& path)
{
    return isKnownToQtAlone(path) ? QFile::remove(path) : unlink(encoded(path).constData()) == 0;
}

bool exchangeFolders(const QString& one, const QString& other)
{
#if defined(RENAME_EXCHANGE)
    return renameat2(AT_FDCWD, encoded(one).constData(), AT_FDCWD, encoded(other).constData(),
                     RENAME_EXCHANGE)
        == 0;
#else
    Q_UNUSED(one)
    Q_UNUSED(other)
    return false;
#endif
}

bool putFileSystemOnDisk(const QString& folder, QString* reason)
{
    const QByteArray path = encoded(folder);
    int descriptor = -1;
    do
        descriptor = open(path.constData(), O_RDONLY | O_CLOEXEC);
    while (descriptor < 0 && errno == EINTR);
    // A folder may be writable without being readable.
    if (descriptor < 0)
        descriptor = openUnnamed(path, 0600);
    const Descriptor file(descriptor);
    while (!file.isOpen() || syncfs(file) != 0) {
        if (errno == ENOSYS || errno == EROFS)
            break;
        if (!file.isOpen() || errno != EINTR) {
            *reason = qt_error_string(errno);
            return false;
        }
    }
    return true;
}

} // namespace OrvaUtilsPrivate

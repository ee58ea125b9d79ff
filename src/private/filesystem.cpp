// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "filesystem_p.h"

#include "replacement_p.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <limits>

// ORVAUTILS_PORTABLE_FILE_SYSTEM leaves everything to Qt on Linux too, for the tests.
#if defined(Q_OS_LINUX) && !defined(ORVAUTILS_PORTABLE_FILE_SYSTEM)
#define ORVAUTILS_LINUX_FILE_SYSTEM
#endif

#if defined(Q_OS_UNIX)
#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>
#endif
#if defined(Q_OS_MAC)
#include <copyfile.h>
#endif
#if defined(Q_OS_LINUX)
#include <cstring>
#include <sys/xattr.h>
#endif
#if defined(ORVAUTILS_LINUX_FILE_SYSTEM)
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#endif

namespace OrvaUtilsPrivate {

namespace FileSystem {

/// Where a FolderReader has its entries from.
class FolderReader::Source
{
public:
    virtual ~Source() = default;

    virtual bool next(Entry& entry) = 0;
    bool isIntact() const { return mIsIntact; }

protected:
    bool mIsIntact = true;
};

namespace {

// With Qt's classes

class QtSource : public FolderReader::Source
{
public:
    QtSource(const QString& path, Detail detail)
        : mIterator(
            QDir(path, QString(), QDir::Unsorted,
                 QDir::Dirs | QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        , mDetail(detail)
    {
        mIsIntact = QDir(path).isReadable();
    }

    bool next(Entry& entry) override
    {
        if (!mIterator.hasNext())
            return false;
        mIterator.next();
        const QFileInfo info = mIterator.fileInfo();
        entry.name = info.fileName();
        entry.kind = info.isFile() ? Kind::File : info.isDir() ? Kind::Folder : Kind::Other;
        entry.isLink = info.isSymLink();
        entry.isHidden = info.isHidden();
        entry.isReachable = true;
        if (entry.kind == Kind::File && mDetail != Detail::Kinds) {
            entry.size = info.size();
            if (mDetail == Detail::SizesAndTimes)
                entry.modified = info.lastModified().toMSecsSinceEpoch();
        }
        return true;
    }

private:
    QDirIterator mIterator;
    const Detail mDetail;
};

// With Linux's system calls

#if defined(ORVAUTILS_LINUX_FILE_SYSTEM)

/// Resources (":/icons") and search paths ("icons:small"), which the system knows nothing of.
bool isKnownToQtAlone(const QString& path)
{
    const int colon = path.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return false;
    const int slash = path.indexOf(QLatin1Char('/'));
    return slash < 0 || colon < slash;
}

class LinuxSource : public FolderReader::Source
{
public:
    LinuxSource(const QString& path, Detail detail)
        : mFolder(open(QFile::encodeName(path)))
        , mDetail(detail)
    {
        mIsIntact = mFolder;
    }

    ~LinuxSource() override { close(); }

    bool next(Entry& entry) override
    {
        if (!mFolder)
            return false;
        const struct dirent* found = nullptr;
        do {
            errno = 0;
            found = readdir(mFolder);
        } while (found && isDotOrDotDot(found->d_name));
        if (!found) {
            mIsIntact = errno == 0;
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
            // Opening waits where the folder is on the network, and a signal ends the wait.
            DIR* const folder = opendir(path.constData());
            if (folder || errno != EINTR)
                return folder;
        }
    }

    static bool isDotOrDotDot(const char* name)
    {
        return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
    }

    static void setName(Entry& entry, const char* name)
    {
        // Almost all names are plain ASCII, which needs no codec and no new text.
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

    static Kind kindOf(const struct stat& status)
    {
        return S_ISREG(status.st_mode) ? Kind::File
            : S_ISDIR(status.st_mode)  ? Kind::Folder
                                       : Kind::Other;
    }

    /// Asks the system no more than it must.
    void setStatus(Entry& entry, const struct dirent& found) const
    {
        const int folder = dirfd(mFolder);
        struct stat status = {};
        entry.size = 0;
        entry.modified = std::numeric_limits<qint64>::min();
        entry.isLink = found.d_type == DT_LNK;
        entry.kind = found.d_type == DT_REG ? Kind::File
            : found.d_type == DT_DIR        ? Kind::Folder
                                            : Kind::Other;
        if (found.d_type == DT_UNKNOWN
            && fstatat(folder, found.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
            entry.isLink = S_ISLNK(status.st_mode);
            entry.kind = kindOf(status);
        }
        const bool wantsStatus = entry.kind == Kind::File && mDetail != Detail::Kinds;
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
    const Detail mDetail;
};

/// A file descriptor that is closed when it goes out of scope.
class Descriptor
{
public:
    explicit Descriptor(int descriptor)
        : mDescriptor(descriptor)
    { }
    ~Descriptor() { close(); }

    bool isOpen() const { return mDescriptor >= 0; }
    // NOLINTNEXTLINE(google-explicit-constructor): passed to system calls
    operator int() const { return mDescriptor; }

    /// False when the system could not store what was written.
    bool close()
    {
        const int descriptor = mDescriptor;
        mDescriptor = -1;
        return descriptor < 0 || ::close(descriptor) == 0;
    }

private:
    Q_DISABLE_COPY(Descriptor)

    int mDescriptor;
};

/// The permissions that QFile::copy() gives a copy: those of the source, the owner's completed by
/// what the acting user may do with it.
mode_t permissionsOfCopy(int source, mode_t mode)
{
    mode_t permissions = mode & 0777;
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(source);
    const auto complete = [&](mode_t bit, int right) {
        // A right that nobody has is not worth asking for.
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

void setPermissions(int file, mode_t permissions)
{
    // Some file systems have no permissions; that is no reason to have no copy.
    static_cast<void>(fchmod(file, permissions));
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

bool copyContent(int source, int destination, qint64 size)
{
    char buffer[65536];
    // File systems that can share the blocks of a large file between it and its copy do so.
    if (size > qint64(sizeof buffer) && ioctl(destination, FICLONE, source) == 0)
        return true;
    for (qint64 copied = 0;;) {
        const ssize_t got = read(source, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 || !writeAll(destination, buffer, size_t(got)))
            return false;
        copied += got;
        // Less than asked for, and as much as there was to be: a second read would give nothing.
        if (got == 0 || (copied == size && size_t(got) < sizeof buffer))
            return copied >= size;
    }
}

/// False when the content could not be stored; true also where a file system has nothing to sync.
bool flush(int descriptor)
{
    while (fdatasync(descriptor) != 0) {
        if (errno != EINTR)
            return errno == EINVAL || errno == ENOSYS || errno == EROFS;
    }
    return true;
}

/// Gives a file its final name, unless something is there already.
bool renameNew(const QByteArray& name, const QByteArray& newName)
{
    if (link(name.constData(), newName.constData()) == 0) {
        // The file is where it belongs. Its first name is a nuisance if it stays, and no failure.
        if (unlink(name.constData()) != 0)
            unlink(name.constData());
        return true;
    }
    // Not every file system has hard links.
    struct stat status = {};
    return errno != EEXIST && lstat(newName.constData(), &status) != 0
        && rename(name.constData(), newName.constData()) == 0;
}

/// The same through a temporary name, for file systems that have no files without one.
Copied copyThroughName(const Descriptor& from, const struct stat& status, const QByteArray& folder,
                       const QByteArray& destination)
{
    QByteArray name = folder + "orvautils_temp.XXXXXX";
    Descriptor to(mkostemp(name.data(), O_CLOEXEC));
    if (!to.isOpen())
        return Copied::NotTried;
    const bool isComplete = copyContent(from, to, status.st_size) && flush(to);
    setPermissions(to, permissionsOfCopy(from, status.st_mode));
    const bool isStored = to.close() && isComplete;
    if (isStored && renameNew(name, destination))
        return Copied::Yes;
    unlink(name.constData());
    return isStored ? Copied::NotTried : Copied::No;
}

Copied copyFileWithLinux(const QByteArray& source, const QByteArray& destination)
{
    // Not blocking: a pipe in the place of the file would otherwise wait for its writer.
    const Descriptor from(open(source.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!from.isOpen() || fstat(from, &status) != 0 || !S_ISREG(status.st_mode))
        return Copied::NotTried;

    // A file without a name, which gets its name last.
    const int slash = destination.lastIndexOf('/');
    const QByteArray folder = slash < 0 ? QByteArray("./") : destination.left(slash + 1);
    Descriptor to(open(folder.constData(), O_WRONLY | O_CLOEXEC | O_TMPFILE, 0600));
    if (!to.isOpen())
        return copyThroughName(from, status, folder, destination);
    if (!copyContent(from, to, status.st_size) || !flush(to))
        return Copied::No;
    setPermissions(to, permissionsOfCopy(from, status.st_mode));
    const QByteArray unnamed = "/proc/self/fd/" + QByteArray::number(to);
    if (linkat(AT_FDCWD, unnamed.constData(), AT_FDCWD, destination.constData(), AT_SYMLINK_FOLLOW)
        != 0)
        return Copied::NotTried;
    if (!to.close()) {
        unlink(destination.constData());
        return Copied::No;
    }
    return Copied::Yes;
}

bool removeTreeWithLinux(const QString& path)
{
    std::vector<Entry> entries;
    bool removed = readFolder(path, entries);
    for (const Entry& entry : entries) {
        const QString entryPath = path + QLatin1Char('/') + entry.name;
        const bool isFolder = entry.kind == Kind::Folder && !entry.isLink;
        if (!(isFolder ? removeTreeWithLinux(entryPath) : removeFile(entryPath)))
            removed = false;
    }
    // A folder that cannot be read may still be an empty one.
    return (removed || entries.empty()) && rmdir(QFile::encodeName(path).constData()) == 0;
}

#endif // ORVAUTILS_LINUX_FILE_SYSTEM

// Replacing a file

bool copyRange(QFile* from, qint64 begin, qint64 end, QFileDevice* to)
{
    if (!from->seek(begin))
        return false;
    char buffer[65536];
    while (begin < end) {
        const qint64 got = from->read(buffer, qMin(end - begin, qint64(sizeof buffer)));
        if (got <= 0 || to->write(buffer, got) != got)
            return false;
        begin += got;
    }
    return true;
}

/// The path at which a new file can take the place of an open one; empty where that would be
/// noticed: by another name of the file, or because the path leads elsewhere by now.
QString replaceablePath(const QFile& file)
{
    QString path = QFileInfo(file.fileName()).canonicalFilePath();
#if defined(Q_OS_UNIX)
    struct stat opened = {};
    struct stat named = {};
    if (fstat(file.handle(), &opened) != 0 || !S_ISREG(opened.st_mode) || opened.st_nlink != 1
        || stat(QFile::encodeName(path).constData(), &named) != 0 || opened.st_dev != named.st_dev
        || opened.st_ino != named.st_ino)
        return QString();
#endif
    return path;
}

#if defined(Q_OS_LINUX)
using Names = std::vector<char>; // one behind the other, each with its NUL

bool readAttributeNames(int file, Names& names)
{
    const ssize_t size = flistxattr(file, nullptr, 0);
    if (size < 0)
        return errno == ENOTSUP;
    names.resize(size_t(size));
    return size == 0 || flistxattr(file, names.data(), names.size()) == size;
}

bool readAttribute(int file, const char* name, QByteArray& value)
{
    const ssize_t size = fgetxattr(file, name, nullptr, 0);
    if (size < 0)
        return false;
    value.resize(int(size));
    return fgetxattr(file, name, value.data(), size_t(size)) == size;
}

/// Access lists, labels and notes: those of \a from, and no others.
bool takeExtendedAttributes(int from, int to)
{
    Names wanted;
    Names given;
    if (!readAttributeNames(from, wanted) || !readAttributeNames(to, given))
        return false;
    QByteArray value;
    for (const char* name = given.data(); name != given.data() + given.size();
         name += std::strlen(name) + 1) {
        if (!readAttribute(from, name, value) && fremovexattr(to, name) != 0)
            return false;
    }
    QByteArray own;
    for (const char* name = wanted.data(); name != wanted.data() + wanted.size();
         name += std::strlen(name) + 1) {
        if (!readAttribute(from, name, value))
            return false;
        const bool isThere = readAttribute(to, name, own) && own == value;
        if (!isThere && fsetxattr(to, name, value.constData(), size_t(value.size()), 0) != 0)
            return false;
    }
    return true;
}
#elif defined(Q_OS_MAC)
bool takeExtendedAttributes(int from, int to)
{
    return fcopyfile(from, to, nullptr, COPYFILE_ACL | COPYFILE_XATTR) == 0;
}
#elif defined(Q_OS_UNIX)
bool takeExtendedAttributes(int, int)
{
    return true;
}
#endif

} // namespace

FolderReader::FolderReader(const QString& path, Detail detail)
    : mEntry()
{
#if defined(ORVAUTILS_LINUX_FILE_SYSTEM)
    if (!isKnownToQtAlone(path))
        mSource = std::make_unique<LinuxSource>(path, detail);
#endif
    if (!mSource)
        mSource = std::make_unique<QtSource>(path, detail);
}

FolderReader::~FolderReader() = default;

bool FolderReader::next()
{
    return mSource->next(mEntry);
}

bool FolderReader::isIntact() const
{
    return mSource->isIntact();
}

bool readFolder(const QString& path, std::vector<Entry>& entries)
{
    FolderReader reader(path, Detail::Kinds);
    while (reader.next())
        entries.push_back(reader.entry());
    return reader.isIntact();
}

bool isSameFile(const QString& one, const QString& other)
{
#if defined(Q_OS_UNIX)
    // Unlike a comparison of paths this also holds where the file system ignores case.
    struct stat oneStatus = {};
    struct stat otherStatus = {};
    return stat(QFile::encodeName(one).constData(), &oneStatus) == 0
        && stat(QFile::encodeName(other).constData(), &otherStatus) == 0
        && oneStatus.st_dev == otherStatus.st_dev && oneStatus.st_ino == otherStatus.st_ino;
#else
    const QString real = QFileInfo(one).canonicalFilePath();
    return !real.isEmpty()
        && real.compare(QFileInfo(other).canonicalFilePath(), Qt::CaseInsensitive) == 0;
#endif
}

Copied copyFile(const QString& source, const QString& destination)
{
#if defined(ORVAUTILS_LINUX_FILE_SYSTEM)
    if (!isKnownToQtAlone(source) && !isKnownToQtAlone(destination))
        return copyFileWithLinux(QFile::encodeName(source), QFile::encodeName(destination));
#else
    Q_UNUSED(source)
    Q_UNUSED(destination)
#endif
    return Copied::NotTried;
}

bool putOnDisk(int file, QString* reason)
{
#if defined(Q_OS_UNIX)
    while (fsync(file) != 0) {
        if (errno == EINVAL || errno == ENOSYS || errno == EROFS)
            break;
        if (errno != EINTR) {
            if (reason)
                *reason = qt_error_string(errno);
            return false;
        }
    }
#else
    Q_UNUSED(file)
    Q_UNUSED(reason)
#endif
    return true;
}

bool openUnnamed(QFile* file, const QString& folder)
{
#if defined(ORVAUTILS_LINUX_FILE_SYSTEM)
    if (isKnownToQtAlone(folder))
        return false;
    const int descriptor =
        open(QFile::encodeName(folder).constData(), O_WRONLY | O_CLOEXEC | O_TMPFILE, 0666);
    return descriptor >= 0
        && file->open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
#else
    Q_UNUSED(file)
    Q_UNUSED(folder)
    return false;
#endif
}

bool nameFile(int file, const QString& path, QString* reason)
{
#if defined(ORVAUTILS_LINUX_FILE_SYSTEM)
    const QByteArray unnamed = "/proc/self/fd/" + QByteArray::number(file);
    if (linkat(AT_FDCWD, unnamed.constData(), AT_FDCWD, QFile::encodeName(path).constData(),
               AT_SYMLINK_FOLLOW)
        == 0)
        return true;
    *reason = qt_error_string(errno);
#else
    Q_UNUSED(file)
    Q_UNUSED(path)
    Q_UNUSED(reason)
#endif
    return false;
}

bool takePermissions(const QString& path, QFile* file)
{
#if defined(Q_OS_UNIX)
    struct stat wanted = {};
    return stat(QFile::encodeName(path).constData(), &wanted) == 0
        && fchmod(file->handle(), wanted.st_mode & 07777) == 0;
#else
    return file->setPermissions(QFile::permissions(path));
#endif
}

bool takeAttributes(int from, int to)
{
#if defined(Q_OS_UNIX)
    struct stat wanted = {};
    struct stat given = {};
    if (fstat(from, &wanted) != 0 || fstat(to, &given) != 0)
        return false;
    const bool isOwned = wanted.st_uid == given.st_uid && wanted.st_gid == given.st_gid;
    if (!isOwned && fchown(to, wanted.st_uid, wanted.st_gid) != 0)
        return false;
    // Last, because giving a file away and an access list change them.
    return takeExtendedAttributes(from, to) && fstat(to, &given) == 0
        && (wanted.st_mode == given.st_mode || fchmod(to, wanted.st_mode & 07777) == 0);
#else
    Q_UNUSED(from)
    Q_UNUSED(to)
    return true;
#endif
}

Replaced replaceBytes(QFile* file, qint64 begin, qint64 end, const QByteArray& bytes)
{
    const QString path = replaceablePath(*file);
    if (path.isEmpty())
        return Replaced::NotTried;
    Replacement replacement(path, Replacement::Old::Removed);
    if (!replacement.begin() || !replacement.takeAttributes(*file))
        return Replaced::NotTried;
    QFile& copy = replacement.device();
    if (!copyRange(file, 0, begin, &copy) || copy.write(bytes) != bytes.size()
        || !copyRange(file, end, file->size(), &copy))
        return Replaced::No;
    file->close(); // some systems replace no file that is open
    if (replacement.commit())
        return Replaced::Yes;
    return replacement.failure() == Replacement::Failure::Place ? Replaced::NotTried : Replaced::No;
}

QString pathBeside(const QString& path)
{
    const QByteArray name = ".orvautils-" + QUuid::createUuid().toRfc4122().toHex();
    return QFileInfo(path).path() + QLatin1Char('/') + QLatin1String(name);
}

bool moveOver(const QString& path, const QString& newPath, QString* error)
{
#if defined(Q_OS_UNIX)
    if (std::rename(QFile::encodeName(path).constData(), QFile::encodeName(newPath).constData())
        == 0)
        return true;
    if (error)
        *error = qt_error_string(errno);
    return false;
#else
    QFile file(path);
    if ((!QFile::exists(newPath) || QFile::remove(newPath)) && file.rename(newPath))
        return true;
    if (error)
        *error = file.errorString();
    return false;
#endif
}

bool removeFile(const QString& path)
{
#if defined(ORVAUTILS_LINUX_FILE_SYSTEM)
    if (!isKnownToQtAlone(path))
        return unlink(QFile::encodeName(path).constData()) == 0;
#endif
    return QFile::remove(path);
}

bool removeTree(const QString& path)
{
#if defined(ORVAUTILS_LINUX_FILE_SYSTEM)
    if (!isKnownToQtAlone(path))
        return removeTreeWithLinux(path);
#endif
    return QDir(path).removeRecursively();
}

} // namespace FileSystem

} // namespace OrvaUtilsPrivate

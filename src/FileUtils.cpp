// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FileUtils.h"

#include "LogRecord.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QFontMetrics>
#include <QIODevice>
#include <QLocale>
#include <QRegExp>
#include <QRegularExpression>
#include <QVector>

#include <limits>

#if defined(Q_OS_UNIX)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#elif defined(Q_OS_WIN)
#include <windows.h>
#endif

namespace {

// ---- Paths and names as text -------------------------------------------------------------------

/// The position of the last "/" of \a path that has at least one character behind it, or -1.
int lastInnerSlash(const QString& path)
{
    // lastIndexOf() takes a negative position as one counted from the end.
    return path.size() < 2 ? -1 : path.lastIndexOf(QLatin1Char('/'), path.size() - 2);
}

/// Whether normalizeFilename() keeps \a c.
bool isPortable(QChar c)
{
    const ushort code = c.unicode();
    return (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z')
        || (code >= '0' && code <= '9') || code == '(' || code == ')' || code == '-' || code == '_'
        || code == '.' || c.isSpace();
}

const QRegularExpression& forbiddenInNames()
{
    static const QRegularExpression forbidden(QStringLiteral("[/\\\\|\\?<>\\\":\\*]"));
    return forbidden;
}

/// The units of fileSizeToString().
struct SizeUnits
{
    QLatin1String bytes;
    QLatin1String kilo;
    QLatin1String mega;
    QLatin1String giga;
};

SizeUnits sizeUnits()
{
    if (QLocale().name().startsWith(QLatin1String("fr")))
        return {QLatin1String("octets"), QLatin1String("Ko"), QLatin1String("Mo"),
                QLatin1String("Go")};
    return {QLatin1String("B"), QLatin1String("kB"), QLatin1String("MB"), QLatin1String("GB")};
}

// ---- Entries of a folder -----------------------------------------------------------------------

const QDir::Filters allEntries = QDir::Dirs | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot;
const QDir::Filters visibleEntries = QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot;
const QDir::Filters visibleFolders = QDir::Dirs | QDir::NoDotAndDotDot;

/// The folder \a path with the entries that a QDirIterator is to give, in the system's order. An
/// empty \a path is the current folder.
QDir folderOf(const QString& path, QDir::Filters filters)
{
    return QDir(path, QString(), QDir::Unsorted, filters);
}

/// Everything that a deletion meets in \a path, read before the first entry is removed. Links that
/// lead nowhere and special files come too.
QFileInfoList entriesToDelete(const QString& path, QDir::SortFlags sorting)
{
    return QDir(path).entryInfoList(allEntries | QDir::System, sorting);
}

/// Whether the entries of the folder \a path can be read. Otherwise it looks like an empty one.
bool canBeListed(const QString& path)
{
#if defined(Q_OS_UNIX)
    // QFileInfo asks for the rights of the user who started the process, not the acting one's.
    return faccessat(AT_FDCWD, QFile::encodeName(path).constData(), R_OK | X_OK, AT_EACCESS) == 0;
#else
    return QFileInfo(path).isReadable();
#endif
}

QString joined(const QString& folder, const QString& name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

/// Whether both paths lead to the same existing file or folder.
bool isSameFile(const QString& one, const QString& other)
{
#if defined(Q_OS_UNIX)
    // Unlike a comparison of paths this also holds where the file system ignores case.
    struct stat oneStat;
    struct stat otherStat;
    return stat(QFile::encodeName(one).constData(), &oneStat) == 0
        && stat(QFile::encodeName(other).constData(), &otherStat) == 0
        && oneStat.st_dev == otherStat.st_dev && oneStat.st_ino == otherStat.st_ino;
#else
    const QString oneReal = QFileInfo(one).canonicalFilePath();
    return !oneReal.isEmpty()
        && oneReal.compare(QFileInfo(other).canonicalFilePath(), Qt::CaseInsensitive) == 0;
#endif
}

/// A folder that is being walked and, through \a parent, the folders on the way to it.
struct Walk
{
    QString path;
    const Walk* parent;
};

/// Whether the folder \a entry is a link back to one on the way to it, which would be walked
/// forever.
bool leadsBack(const QFileInfo& entry, const Walk* walk)
{
    if (!entry.isSymLink())
        return false;
    for (; walk; walk = walk->parent) {
        if (isSameFile(entry.filePath(), walk->path))
            return true;
    }
    return false;
}

/// Whether \a path, an existing one, or a folder on the way to it is \a folder.
bool passesThrough(QString path, const QString& folder)
{
    for (;;) {
        if (isSameFile(path, folder))
            return true;
        const QString parent = QFileInfo(path).path();
        if (parent == path)
            return false;
        path = parent;
    }
}

/// Whether \a path, which need not exist yet, is \a folder or lies inside it: by its name, or by
/// where its links lead.
bool liesInside(QString path, const QString& folder)
{
    while (!QFileInfo::exists(path)) {
        const QString parent = QFileInfo(path).path();
        if (parent == path)
            return false;
        path = parent;
    }
    return passesThrough(path, folder)
        || passesThrough(QFileInfo(path).canonicalFilePath(), folder);
}

// ---- folderSize --------------------------------------------------------------------------------

/// What folderSize() adds up.
struct FolderContent
{
    qint64 size = 0;
    int fileCount = 0;
};

void measure(const QString& path, const Walk* parent, FolderContent& content,
             QDateTime* lastModified)
{
    const Walk walk = {path, parent};
    QDirIterator entry(folderOf(path, allEntries));
    while (entry.hasNext()) {
        entry.next();
        const QFileInfo info = entry.fileInfo();
        if (info.isFile()) {
            if (entry.fileName().compare(QLatin1String(".DS_Store"), Qt::CaseInsensitive) == 0)
                continue;
            content.size += info.size();
            ++content.fileCount;
            if (lastModified) {
                const QDateTime modified = info.lastModified();
                if (lastModified->isNull() || *lastModified < modified)
                    *lastModified = modified;
            }
        } else if (info.isDir() && !leadsBack(info, &walk)) {
            measure(entry.filePath(), &walk, content, lastModified);
        }
    }
}

// ---- copyDir -----------------------------------------------------------------------------------

/// Deletes the folder \a path, or only the link where \a path is one.
bool removeTree(const QString& path)
{
    // QDir::removeRecursively() would empty the folder behind a link.
    if (QFileInfo(path).isSymLink())
        return QFile::remove(path);
    return QDir(path).removeRecursively();
}

bool refuseCopy(const QString& source, const QString& destination)
{
    ORVAUTILS_LOG_WARNING_IN("copyDir") << "unable to copy" << source << "to" << destination;
    return false;
}

bool copyTree(const QString& source, const QString& destination, const Walk* parent)
{
    if (!canBeListed(source))
        return refuseCopy(source, destination);
    if (!QDir(destination).exists() && !QDir().mkpath(destination)) {
        ORVAUTILS_LOG_WARNING_IN("copyDir") << "unable to mkdir" << destination;
        return false;
    }
    const Walk walk = {source, parent};
    QDirIterator entry(folderOf(source, allEntries));
    while (entry.hasNext()) {
        entry.next();
        const QFileInfo info = entry.fileInfo();
        const QString target = joined(destination, entry.fileName());
        if (info.isFile()) {
            if (!FileUtils::forceCopy(entry.filePath(), target))
                return refuseCopy(entry.filePath(), target);
        } else if (info.isDir() && !leadsBack(info, &walk)) {
            // Links on either side can lead from two separate trees into a common one.
            if (info.isSymLink() || QFileInfo(target).isSymLink()) {
                const Walk* top = &walk;
                while (top->parent)
                    top = top->parent;
                if (liesInside(target, top->path) || liesInside(target, entry.filePath())
                    || liesInside(entry.filePath(), target))
                    return refuseCopy(entry.filePath(), target);
            }
            if (!copyTree(entry.filePath(), target, &walk))
                return false;
        }
    }
    return true;
}

// ---- Listings ----------------------------------------------------------------------------------

/// \a prefix of every entry is complete, with its "/".
int listFiles(const QString& path, QStringList& list, bool recursive, QRegExp* folderFilter,
              const QString& prefix, const Walk* parent)
{
    const Walk walk = {path, parent};
    int count = 0;
    QDirIterator entry(folderOf(path, visibleEntries));
    while (entry.hasNext()) {
        entry.next();
        const QFileInfo info = entry.fileInfo();
        const QString name = entry.fileName();
        if (info.isFile()) {
            list.append(prefix + name);
            ++count;
        } else if (recursive && info.isDir() && (!folderFilter || folderFilter->exactMatch(name))
                   && !leadsBack(info, &walk)) {
            count += listFiles(entry.filePath(), list, true, folderFilter,
                               prefix + name + QLatin1Char('/'), &walk);
        }
    }
    return count;
}

void listFolders(const QString& path, QStringList& list, bool recursive, const Walk* parent)
{
    const Walk walk = {path, parent};
    QDirIterator entry(folderOf(path, visibleFolders));
    while (entry.hasNext()) {
        entry.next();
        const QFileInfo info = entry.fileInfo();
        list.append(info.absoluteFilePath());
        if (recursive && !leadsBack(info, &walk))
            listFolders(entry.filePath(), list, true, &walk);
    }
}

} // namespace

// ---- Paths and names as text -------------------------------------------------------------------

QString FileUtils::lastPartOfFolder(const QString& path)
{
    return path.mid(lastInnerSlash(path) + 1);
}

QString FileUtils::nameOfLastPartFolder(const QString& path)
{
    QString name = lastPartOfFolder(path);
    if (name.endsWith(QLatin1Char('/')))
        name.chop(1);
    return name;
}

QString FileUtils::parentFolder(const QString& path)
{
    if (path.endsWith(QLatin1Char('/'))) {
        const int slash = lastInnerSlash(path);
        return slash < 0 ? path : path.left(slash + 1);
    }
    return QFileInfo(path).absolutePath() + QLatin1Char('/');
}

QString FileUtils::elidedFolder(const QFontMetrics& metrics, QString& path, int width)
{
    const QString elided = metrics.elidedText(path, Qt::ElideLeft, width);
    if (elided == path || elided.startsWith(QLatin1Char('/')))
        return elided;
    const int slash = elided.indexOf(QLatin1Char('/'));
    if (slash < 0 || slash == elided.size() - 1)
        return elided;
    return QLatin1String("...") + elided.mid(slash);
}

QString FileUtils::normalizeFilename(const QString& name)
{
    const QString simplified = name.normalized(QString::NormalizationForm_D).simplified();
    QString portable;
    portable.reserve(simplified.size());
    for (const QChar c : simplified) {
        if (isPortable(c))
            portable += c;
    }
    return portable;
}

QString FileUtils::regExpFilename()
{
    return QStringLiteral("[\\w()\\s\\-\\_]+");
}

QString FileUtils::fileSizeToString(qint64 size)
{
    const qint64 kilo = 1024;
    const qint64 mega = 1024 * kilo;
    const qint64 giga = 1024 * mega;
    const SizeUnits units = sizeUnits();
    const auto text = [](double value, QLatin1String unit) {
        return QString::number(value, 'f', 2) + QLatin1Char(' ') + unit;
    };
    if (size == 0)
        return QLatin1String("0 ") + units.kilo;
    if (size <= kilo)
        return QString::number(size) + QLatin1Char(' ') + units.bytes;
    if (size <= mega)
        return text(double(float(size) * (1.0f / float(kilo))), units.kilo);
    if (size <= giga)
        return text(double(float(size) * (1.0f / float(mega))), units.mega);
    return text(double(size) * (1.0 / double(giga)), units.giga);
}

bool FileUtils::folderExists(const QString& path)
{
    return !path.trimmed().isEmpty() && QDir(QDir::cleanPath(path)).exists();
}

bool FileUtils::directoryIsEmpty(const QString& path)
{
    return !QDirIterator(folderOf(QDir::cleanPath(path), visibleEntries | QDir::Drives)).hasNext();
}

bool FileUtils::checkNameFileValidity(const QString& name)
{
    return !name.contains(forbiddenInNames());
}

QString FileUtils::fixNameFileValidity(const QString& name)
{
    QString fixed = name;
    return fixed.replace(forbiddenInNames(), QStringLiteral("_"));
}

void FileUtils::setFileHiddenOnWindows(const QString& path)
{
#if defined(Q_OS_WIN)
    const QString native = QDir::toNativeSeparators(path);
    const auto* name = reinterpret_cast<const wchar_t*>(native.utf16());
    const DWORD attributes = GetFileAttributesW(name);
    if (attributes != INVALID_FILE_ATTRIBUTES)
        SetFileAttributesW(name, attributes | FILE_ATTRIBUTE_HIDDEN);
#else
    Q_UNUSED(path)
#endif
}

// ---- Folder trees ------------------------------------------------------------------------------

qint64 FileUtils::folderSize(const QString& path, int* fileCount, QDateTime* lastModified)
{
    const QString folder = QDir::cleanPath(path);
    if (folder.isEmpty() || !QDir(folder).exists())
        return 0;
    FolderContent content;
    measure(folder, nullptr, content, lastModified);
    if (fileCount)
        *fileCount += content.fileCount;
    return content.size;
}

bool FileUtils::forceCopy(const QString& source, const QString& destination)
{
    if (!QFileInfo::exists(source)) {
        ORVAUTILS_LOG_WARNING() << source << " est introuvable !! (forceCopy)";
        return false;
    }
    if (QFileInfo::exists(destination)) {
        if (isSameFile(source, destination))
            return true;
        if (!QFile::remove(destination)) {
            ORVAUTILS_LOG_WARNING() << "FileUtils::forceCopy can't remove " << destination;
            return false;
        }
    }
    fileMkPath(destination, nullptr);
    QFile file(source);
    if (!file.copy(destination)) {
        ORVAUTILS_LOG_WARNING() << "FileUtils::forceCopy can't copy" << source << destination
                                << " error=" << int(file.error());
        return false;
    }
    return true;
}

bool FileUtils::fileMkPath(const QString& filePath, QString* error)
{
    const QDir folder = QFileInfo(filePath).dir();
    if (folder.mkpath(QStringLiteral(".")))
        return true;
    if (error)
        *error =
            QStringLiteral("(fileMkPath) Cant create folder '%1' !").arg(folder.absolutePath());
    return false;
}

bool FileUtils::removeContentDirectory(const QString& path, bool recursive)
{
    if (path.isEmpty() || !path.contains(QLatin1Char('/')) || path == QLatin1String("."))
        return false;
    if (!QDir(path).exists())
        return false;
    if (!canBeListed(path)) {
        ORVAUTILS_LOG_CRITICAL() << "enable to removeRecursively" << QDir(path).absolutePath();
        return false;
    }
    const QFileInfoList all = entriesToDelete(path, QDir::Unsorted);
    for (const QFileInfo& entry : all) {
        const QString entryPath = entry.absoluteFilePath();
        bool removed = true;
        if (entry.isSymLink() || entry.isFile())
            removed = QFile::remove(entryPath);
        else if (entry.isDir() && recursive)
            removed = QDir(entryPath).removeRecursively();
        if (!removed) {
            ORVAUTILS_LOG_CRITICAL() << "enable to removeRecursively" << entryPath;
            return false;
        }
    }
    return true;
}

bool FileUtils::copyDir(const QString& source, const QString& destination, bool merge)
{
    // An empty path would mean the current folder, which nobody asked to copy or to delete.
    const QString from = source.isEmpty() ? source : QDir(source).absolutePath();
    const QString to = destination.isEmpty() ? destination : QDir(destination).absolutePath();
    if (from.isEmpty() || !QDir(from).exists()) {
        ORVAUTILS_LOG_CRITICAL() << from << "Doesnt exists";
        return false;
    }
    if (to.isEmpty()) {
        ORVAUTILS_LOG_WARNING() << "unable to mkdir" << to;
        return false;
    }
    if (liesInside(to, from) || liesInside(from, to))
        return refuseCopy(from, to);
    if (!merge && QDir(to).exists() && !removeTree(to)) {
        ORVAUTILS_LOG_WARNING() << "unable to removeRecursively" << to;
        return false;
    }
    return copyTree(from, to, nullptr);
}

int FileUtils::removeEmptyDirs(const QString& path, bool recursive)
{
    if (path.isEmpty())
        return 0;
    int count = 0;
    if (recursive) {
        const QString folder = QDir::cleanPath(path);
        const QFileInfoList folders = QDir(path).entryInfoList(visibleFolders, QDir::Unsorted);
        for (const QFileInfo& entry : folders) {
            if (!entry.isSymLink())
                count += removeEmptyDirs(joined(folder, entry.fileName()), true);
        }
    }
    if (directoryIsEmpty(path) && QDir().rmdir(path))
        ++count;
    return count;
}

int FileUtils::segmentedCopy(QIODevice& source, QIODevice& destination, int segmentSize)
{
    qint64 total = 0;
    for (qint64 wanted = source.bytesAvailable(); wanted > 0; wanted = source.bytesAvailable()) {
        wanted = qMin(wanted, qint64(segmentSize));
        const QByteArray segment = wanted > 0 ? source.read(wanted) : QByteArray();
        if (segment.isEmpty())
            break;
        destination.write(segment);
        total += wanted;
    }
    return int(qMin(total, qint64(std::numeric_limits<int>::max())));
}

int FileUtils::listFilesInFileSystem(const QString& path, QStringList& list, bool recursive,
                                     QRegExp* folderFilter, const QString& prefix)
{
    if (path.isEmpty() || !QDir(path).exists())
        return 0;
    const bool complete = prefix.isEmpty() || prefix.endsWith(QLatin1Char('/'));
    return listFiles(path, list, recursive, folderFilter,
                     complete ? prefix : prefix + QLatin1Char('/'), nullptr);
}

bool FileUtils::listDirectoriesInFileSystem(const QString& path, QStringList& list, bool recursive)
{
    if (!QDir(path).exists())
        return false;
    listFolders(path.isEmpty() ? QStringLiteral(".") : path, list, recursive, nullptr);
    return true;
}

bool FileUtils::listFolderName(const QString& path, QStringList& list)
{
    if (!QDir(path).exists())
        return false;
    QDirIterator entry(folderOf(path, visibleFolders));
    while (entry.hasNext()) {
        entry.next();
        list.append(entry.fileName());
    }
    return true;
}

// ---- File content ------------------------------------------------------------------------------

QByteArray FileUtils::readFileContent(const QString& path, bool logOnFailure)
{
    if (path.isEmpty())
        return QByteArray();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (logOnFailure)
            ORVAUTILS_LOG_INFO() << "FileUtils::readFileContent error : " << path
                                 << " ne peut etre ouvert !";
        return QByteArray();
    }
    return file.readAll();
}

// ---- Older variants ----------------------------------------------------------------------------

bool FileUtils::old::forceDirectoryCreationForAFile(const QString& filePath, QString* error)
{
    const int lastSlash = filePath.lastIndexOf(QLatin1Char('/'));
    const QString folder = lastSlash < 0 ? filePath : filePath.left(lastSlash + 1);
    if (QDir(folder).exists())
        return true;
    bool created = true;
    for (int slash = folder.indexOf(QLatin1Char('/')); slash >= 0;
         slash = folder.indexOf(QLatin1Char('/'), slash + 1)) {
        const QString level = folder.left(slash);
        // Looked at again after a failure: another thread may have been quicker.
        if (level.isEmpty() || QDir(level).exists() || QDir().mkdir(level) || QDir(level).exists())
            continue;
        const QString message = QStringLiteral("Mkdir fail on \"%1\"").arg(level);
        if (error)
            *error = message;
        ORVAUTILS_LOG_WARNING() << message;
        created = false;
    }
    if (!created) {
        const QString message = QStringLiteral("The folder '%1' cannot be created!").arg(folder);
        if (error)
            *error = message;
        ORVAUTILS_LOG_WARNING() << message;
    }
    return created;
}

bool FileUtils::old::removeDirectory(const QString& path, bool recursive, QString* error, int depth)
{
    const auto fail = [error](const QString& message) {
        if (error)
            *error = message;
        return false;
    };
    if (path.isEmpty())
        return false;
    if (depth <= 0)
        return fail(QStringLiteral("FileUtils::removeDirectory ") + path
                    + QStringLiteral(" profondeur max atteinte !"));
    if (!QDir(path).exists())
        return fail(QStringLiteral("FileUtils::removeDirectory: ") + path
                    + QStringLiteral(" doesn't exist"));

    // A "/" at the end would make the system look through a link.
    const QString folder = QDir::cleanPath(path);
    const bool isLink = QFileInfo(folder).isSymLink();
    bool allHandled = true;
    if (!isLink) {
        const QFileInfoList all = entriesToDelete(path, QDir::Name | QDir::IgnoreCase);
        for (const QFileInfo& entry : all) {
            if (entry.isSymLink() || entry.isFile()) {
                QFile file(entry.absoluteFilePath());
                if (!file.remove())
                    return fail(QStringLiteral("Failed to remove file: %1 (%2)")
                                    .arg(file.fileName(), file.errorString()));
            } else if (entry.isDir()) {
                if (!recursive)
                    return fail(
                        QStringLiteral("Failed to remove file: %1 (%2)")
                            .arg(entry.fileName(), QStringLiteral("non recursive operation")));
                if (!removeDirectory(entry.absoluteFilePath(), true, error, depth - 1))
                    return false;
            } else {
                allHandled = false;
            }
        }
    }
    // Removing as a file is for links; of a real folder it can only tell why it stays.
    if (!isLink && QDir().rmdir(folder))
        return allHandled;
    QFile link(folder);
    if (!link.remove())
        return fail(
            QStringLiteral("Failed to remove directory: %1 (%2)").arg(path, link.errorString()));
    return allHandled;
}

int FileUtils::old::listFilesInFileSystem(const QString& path, QStringList& list, bool recursive,
                                          QRegExp* folderFilter, const QString& prefix)
{
    const QString folder = path.isEmpty() ? QStringLiteral(".") : path;
    if (!QDir(folder).exists())
        return 0;
    const bool complete = prefix.endsWith(QLatin1Char('/'));
    return listFiles(folder, list, recursive, folderFilter,
                     complete ? prefix : prefix + QLatin1Char('/'), nullptr);
}

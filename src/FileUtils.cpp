// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FileUtils.h"

#include "ApplicationUtils.h"
#include "StringUtils.h"
#include "ascii_p.h"
#include "filecopy_p.h"
#include "filestate_p.h"
#include "filesystem_p.h"
#include "folderpath_p.h"
#include "logrecord_p.h"
#include "replacement_p.h"
#include "treecopy_p.h"
#include "treeremoval_p.h"
#include "treereplacement_p.h"
#include "treestage_p.h"
#include "treetask_p.h"
#include "treewalk_p.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QFontMetrics>
#include <QIODevice>
#include <QLocale>
#include <QProcess>
#include <QRegExp>
#include <QStringBuilder>

#include <algorithm>
#include <limits>
#include <system_error>
#include <vector>

using namespace OrvaUtilsPrivate;

namespace {

// Paths and names as text

/// The position of the last "/" of \a path that has at least one character after it, or -1.
int lastInnerSlash(const QString& path)
{
    // lastIndexOf() takes a negative position as one counted from the end.
    return int(path.size() < 2 ? -1 : path.lastIndexOf(QLatin1Char('/'), path.size() - 2));
}

/// Whether normalizeFilename() keeps \a c, which is not white space.
bool isPortable(QChar c)
{
    const ushort code = c.unicode();
    return isAsciiLetter(c) || isAsciiDigit(c) || code == '(' || code == ')' || code == '-'
        || code == '_' || code == '.';
}

/// Whether some systems do not allow \a c in the name of a file. Not left to QRegularExpression,
/// which finds nothing at all in a text that contains half a surrogate pair, such as a name that
/// was cut off.
bool isForbiddenInNames(QChar c)
{
    const ushort code = c.unicode();
    return code == '/' || code == '\\' || code == '|' || code == '?' || code == '<' || code == '>'
        || code == '"' || code == ':' || code == '*';
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

// Folder trees

/// The beginning of every record about a folder that cannot be emptied.
const char* const cannotRemove = "enable to removeRecursively";

// folderSize

/// What folderSize() adds up. Times are numbers: a QDateTime for every file would take longer than
/// reading the tree.
struct FolderContent
{
    qint64 size = 0;
    int fileCount = 0;
    qint64 lastModified = noTime;

    static const qint64 noTime = std::numeric_limits<qint64>::min();
};

/// Returns false if the task is cancelled.
bool measure(const QString& path, EntryDetail detail, const Walk* parent, FolderContent& content,
             TreeTask& task)
{
    const Walk walk = {path, parent};
    std::vector<QString> folders;
    FolderReader reader(path, detail);
    while (reader.next()) {
        const FolderEntry& entry = reader.entry();
        if (entry.kind != EntryKind::File) {
            if (leadsOn(entry, walk))
                folders.push_back(joined(path, entry.name));
        } else if (entry.name.compare(QLatin1String(".DS_Store"), Qt::CaseInsensitive) != 0) {
            content.size += entry.size;
            ++content.fileCount;
            if (entry.modified > content.lastModified)
                content.lastModified = entry.modified;
            if (task.isObserved() && !task.advance(joined(path, entry.name), entry.size))
                return false;
        }
    }
    if (!reader.isIntact())
        task.fail(QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be read"), path);
    for (const QString& folder : folders) {
        if (!measure(folder, detail, &walk, content, task))
            return false;
    }
    return true;
}

// Listings

/// \a prefix is put in front of every entry, and contains the separating "/".
int listFiles(const QString& path, QStringList& list, bool recursive, QRegExp* folderFilter,
              const QString& prefix, const Walk* parent)
{
    const Walk walk = {path, parent};
    int count = 0;
    std::vector<QString> folders;
    FolderReader reader(path, EntryDetail::Kinds);
    while (reader.next()) {
        const FolderEntry& entry = reader.entry();
        if (entry.isHidden || !entry.isReachable)
            continue;
        if (entry.kind == EntryKind::File) {
            list.append(prefix % entry.name);
            ++count;
        } else if (recursive && leadsOn(entry, walk)
                   && (!folderFilter || folderFilter->exactMatch(entry.name))) {
            folders.push_back(entry.name);
        }
    }
    for (const QString& folder : folders)
        count += listFiles(joined(path, folder), list, true, folderFilter,
                           prefix % folder % QLatin1Char('/'), &walk);
    return count;
}

void listFolders(const QString& path, QStringList& list, bool recursive, const Walk* parent)
{
    const Walk walk = {path, parent};
    for (const FolderEntry& entry : entriesOf(path)) {
        if (!isVisibleFolder(entry))
            continue;
        list.append(joined(path, entry.name));
        if (recursive && leadsOn(entry, walk))
            listFolders(joined(path, entry.name), list, true, &walk);
    }
}

// File content

QString translated(const char* text)
{
    return QCoreApplication::translate("FileUtils", text);
}

QString digestOfFile(const QString& path, QCryptographicHash::Algorithm algorithm)
{
    QCryptographicHash hash(algorithm);
    QFile file(path);
    // Unbuffered: the pieces are large enough, and QFile's own buffer would only copy them.
    if (!path.isEmpty() && file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        QByteArray piece(64 * 1024, Qt::Uninitialized);
        for (;;) {
            const qint64 size = file.read(piece.data(), piece.size());
            if (size <= 0)
                break;
            hash.addData(piece.constData(), int(size));
        }
    }
    return StringUtils::byteArrayToString(hash.result(), 16);
}

} // namespace

// Paths and names as text

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
    QString elided = metrics.elidedText(path, Qt::ElideLeft, width);
    if (elided == path || elided.startsWith(QLatin1Char('/')))
        return elided;
    const int slash = int(elided.indexOf(QLatin1Char('/')));
    if (slash < 0 || slash == elided.size() - 1)
        return elided;
    return QLatin1String("...") + elided.mid(slash);
}

QString FileUtils::normalizeFilename(const QString& name)
{
    // Decomposes and simplifies as it goes: QString::normalized() takes quadratic time.
    QString portable;
    portable.reserve(name.size());
    bool isFirst = true;
    bool spaceIsDue = false;
    for (const QChar c : name) {
        if (c.isSpace()) {
            spaceIsDue = !isFirst;
            continue;
        }
        isFirst = false;
        if (spaceIsDue)
            portable += QLatin1Char(' ');
        spaceIsDue = false;
        const QChar base = decomposedBase(c);
        if (isPortable(base))
            portable += base;
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
    const QDir folder(QDir::cleanPath(path), QString(), QDir::Unsorted,
                      QDir::Dirs | QDir::Files | QDir::Drives | QDir::NoDotAndDotDot);
    return !QDirIterator(folder).hasNext();
}

bool FileUtils::checkNameFileValidity(const QString& name)
{
    return std::none_of(name.begin(), name.end(), isForbiddenInNames);
}

QString FileUtils::fixNameFileValidity(const QString& name)
{
    QString fixed = name;
    std::replace_if(fixed.begin(), fixed.end(), isForbiddenInNames, QLatin1Char('_'));
    return fixed;
}

void FileUtils::setFileHiddenOnWindows(const QString& path)
{
    hideFile(path);
}

// Folder trees

qint64 FileUtils::folderSize(const QString& path, int* fileCount, QDateTime* lastModified)
{
    return folderSize(path, fileCount, lastModified, TreeObserver());
}

qint64 FileUtils::folderSize(const QString& path, int* fileCount, QDateTime* lastModified,
                             const TreeObserver& observer, QString* error)
{
    TreeTask task(observer, error);
    const QString folder = QDir::cleanPath(path);
    if (folder.isEmpty() || !QDir(folder).exists()) {
        task.fail(QT_TRANSLATE_NOOP("FileUtils", "The folder %1 does not exist"), folder);
        return 0;
    }
    FolderContent content;
    if (measure(folder, lastModified ? EntryDetail::SizesAndTimes : EntryDetail::Sizes, nullptr,
                content, task))
        task.finish();
    if (fileCount)
        *fileCount += content.fileCount;
    if (lastModified && content.lastModified != FolderContent::noTime) {
        const QDateTime latest = QDateTime::fromMSecsSinceEpoch(content.lastModified);
        if (lastModified->isNull() || *lastModified < latest)
            *lastModified = latest;
    }
    return content.size;
}

bool FileUtils::forceCopy(const QString& source, const QString& destination)
{
    return copyFile(source, destination, OldFile::RemovedFirst);
}

bool FileUtils::fileMkPath(const QString& filePath, QString* error)
{
    const QDir folder = QFileInfo(filePath).dir();
    // Some systems refuse to create a folder before they check whether it exists.
    if (folder.mkpath(QStringLiteral(".")) || folder.exists())
        return true;
    if (error)
        *error =
            QStringLiteral("(fileMkPath) Cant create folder '%1' !").arg(folder.absolutePath());
    return false;
}

bool FileUtils::removeContentDirectory(const QString& path, bool recursive)
{
    return removeContentDirectory(path, recursive, TreeObserver());
}

bool FileUtils::removeContentDirectory(const QString& path, bool recursive,
                                       const TreeObserver& observer, QString* error)
{
    TreeTask task(observer, error);
    if (path.isEmpty() || !path.contains(QLatin1Char('/')) || path == QLatin1String("."))
        return task.fail(QT_TRANSLATE_NOOP("FileUtils", "\"%1\" is no path of a folder to empty"),
                         path);
    const QString folder = QDir(path).absolutePath();
    if (!QDir(folder).exists())
        return task.fail(QT_TRANSLATE_NOOP("FileUtils", "The folder %1 does not exist"), folder);
    const QString failed = removeContent(folder, recursive, task);
    if (failed.isEmpty())
        return task.finish();
    if (!task.isCancelled())
        ORVAUTILS_LOG_CRITICAL_IN("removeContentDirectory") << cannotRemove << failed;
    return false;
}

bool FileUtils::copyDir(const QString& source, const QString& destination, bool merge)
{
    return copyDir(source, destination, merge, TreeObserver());
}

bool FileUtils::copyDir(const QString& source, const QString& destination, bool merge,
                        const TreeObserver& observer, QString* error)
{
    TreeTask task(observer, error);
    return OrvaUtilsPrivate::copyDir(source, destination, merge, task);
}

bool FileUtils::replaceDir(const QString& source, const QString& destination,
                           const TreeObserver& observer, QString* error)
{
    TreeTask task(observer, error);
    return OrvaUtilsPrivate::replaceDir(source, destination, task);
}

bool FileUtils::moveOver(const QString& path, const QString& newPath, QString* error)
{
    // Without a "/" at the end, which would make the system follow a link.
    const QFileInfo moved(QDir::cleanPath(path));
    const QFileInfo old(QDir::cleanPath(newPath));
    const bool isFolder = moved.isDir() && !moved.isSymLink();
    if (isFolder)
        clearAfterKills(old.absoluteFilePath());
    const bool areFolders = isFolder && old.isDir() && !old.isSymLink();
    QString reason;
    const bool isMoved = areFolders
        ? moveFolderOver(moved.absoluteFilePath(), old.absoluteFilePath(), &reason)
        : OrvaUtilsPrivate::moveOver(path, newPath, &reason);
    if (!isMoved && error)
        *error = reason;
    return isMoved;
}

int FileUtils::removeEmptyDirs(const QString& path, bool recursive)
{
    if (path.isEmpty())
        return 0;
    int count = 0;
    if (recursive) {
        const QString folder = QDir::cleanPath(path);
        for (const FolderEntry& entry : entriesOf(folder)) {
            if (isVisibleFolder(entry) && !entry.isLink)
                count += removeEmptyDirs(joined(folder, entry.name), true);
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
    return listFiles(path, list, recursive, folderFilter,
                     prefix.isEmpty() ? prefix : withSlash(prefix), nullptr);
}

bool FileUtils::listDirectoriesInFileSystem(const QString& path, QStringList& list, bool recursive)
{
    const QString folder = QDir(path).absolutePath();
    if (!QDir(folder).exists())
        return false;
    listFolders(folder, list, recursive, nullptr);
    return true;
}

bool FileUtils::listFolderName(const QString& path, QStringList& list)
{
    const QString folder = QDir(path).absolutePath();
    if (!QDir(folder).exists())
        return false;
    for (const FolderEntry& entry : entriesOf(folder)) {
        if (isVisibleFolder(entry))
            list.append(entry.name);
    }
    return true;
}

bool FileUtils::listEntries(const QString& path, QVector<Entry>& list, QString* error)
{
    FolderReader reader(path, EntryDetail::Kinds);
    while (reader.next()) {
        const FolderEntry& one = reader.entry();
        list.append({one.name, one.kind == EntryKind::File, one.kind == EntryKind::Folder,
                     one.isLink, one.isHidden, one.isReachable});
    }
    if (!reader.isIntact() && error)
        *error = QString::fromStdString(std::generic_category().message(reader.error()));
    return reader.isIntact();
}

// File content

QByteArray FileUtils::readFileContent(const QString& path, bool logOnFailure)
{
    if (path.isEmpty())
        return QByteArray();
    QFile file(path);
    // A file that is too large for a QByteArray would be taken for an empty one.
    const qint64 mostBytes = std::numeric_limits<int>::max() - 64;
    if (file.open(QIODevice::ReadOnly) && file.size() <= mostBytes) {
        QByteArray content = file.readAll();
        // If reading fails, the beginning of the file must not pass for its content: a caller that
        // writes it back would lose the rest.
        if (file.error() == QFileDevice::NoError)
            return content;
    }
    if (logOnFailure)
        ORVAUTILS_LOG_INFO() << "FileUtils::readFileContent error : " << path
                             << " ne peut etre ouvert !";
    return QByteArray();
}

bool FileUtils::writeFileContent(const QString& path, const QByteArray& data, QString* error)
{
    if (path.isEmpty() || !fileMkPath(path, error))
        return false;
    const auto fail = [&](const char* message) {
        if (error)
            *error = translated(message).arg(path);
        ORVAUTILS_LOG_WARNING_IN("writeFileContent") << "cannot open file " << path;
        return false;
    };
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(QT_TRANSLATE_NOOP("FileUtils", "Cannot open (WriteOnly) %1"));
    // Some file systems report only when the file is closed that they are full.
    const bool isTaken = file.write(data) == data.size() && file.flush();
    file.close();
    if (!isTaken || file.error() != QFileDevice::NoError)
        return fail(QT_TRANSLATE_NOOP("FileUtils", "Cannot write datas (WriteOnly) in %1"));
    return true;
}

bool FileUtils::replaceFileContent(const QString& path, const QByteArray& data, QString* error)
{
    if (path.isEmpty() || !fileMkPath(path, error))
        return false;
    Replacement replacement(path, Replacement::Old::WrittenTo);
    if (replacement.begin() && replacement.device().write(data) == data.size()
        && replacement.commit())
        return true;
    if (error) {
        *error = replacement.failure() == Replacement::Failure::None
            ? replacement.device().errorString()
            : replacement.reason();
    }
    return false;
}

bool FileUtils::replaceInFile(const QString& path, const QString& before, const QString& after)
{
    const QByteArray content = readFileContent(path, false);
    QString text = QString::fromUtf8(content.constData()); // up to the first zero byte
    if (text.isEmpty())
        return false;
    if (!before.isEmpty())
        text.replace(before, after);
    writeFileContent(path, text.toUtf8());
    return true;
}

QString FileUtils::md5FromDatas(const QByteArray& data)
{
    return StringUtils::byteArrayToString(QCryptographicHash::hash(data, QCryptographicHash::Md5),
                                          16);
}

QString FileUtils::md5(const QString& path)
{
    return digestOfFile(path, QCryptographicHash::Md5);
}

QString FileUtils::sha1(const QString& path)
{
    return digestOfFile(path, QCryptographicHash::Sha1);
}

QString FileUtils::fileStamp(const QString& path)
{
    return stampOf(path);
}

bool FileUtils::checkWritingRightInFolder(const QString& folder, const QString& label,
                                          QString* error)
{
    const QString path = QDir::cleanPath(folder);
    if (path.isEmpty()) {
        if (error)
            *error = translated(QT_TRANSLATE_NOOP("FileUtils", "Folder is not valid ! (empty)"));
        return false;
    }
    const QString probe = joined(path, QStringLiteral("check_write"));
    const bool isNew = !QFileInfo::exists(probe);
    QString reason;
    if (!writeFileContent(probe, "data_test", &reason)) {
        // A full disk accepts the file, but not its content.
        if (isNew)
            QFile::remove(probe);
        if (error) {
            // Both at once, because a label may contain a "%2".
            *error = label.isEmpty()
                ? reason
                : translated(QT_TRANSLATE_NOOP("FileUtils", "Cant write in %1 error=%2"))
                      .arg(label, reason);
        }
        return false;
    }
    QFile::remove(probe);
    return true;
}

QString FileUtils::labelWorkingFolderBlocked(const QString& folder,
                                             const QString& documentationAddress)
{
    const QString link =
        QStringLiteral("<a href='%1'>%2</a>")
            .arg(documentationAddress, translated(QT_TRANSLATE_NOOP("FileUtils", "Documentation")));
    QString text =
        translated(QT_TRANSLATE_NOOP("FileUtils",
                                     "Your working folder %1 seem not accessible en write, change "
                                     "it or consult %2"))
            .arg(folder, link);
    return text.replace(QLatin1Char('\n'), QLatin1String("<br>"));
}

// Files on the desktop

QIcon FileUtils::iconFromFilename(const QString& name)
{
    const QFileInfo file(name);
    const QFileInfo shipped(ApplicationUtils::pathDatas() + QLatin1String("suffix_icons/file.")
                            + file.suffix().toLower());
    return QFileIconProvider().icon(shipped.exists() ? shipped : file);
}

void FileUtils::showFileInFolder(const QString& path)
{
    const QString osascript = QStringLiteral("/usr/bin/osascript");
    const QString reveal = QStringLiteral("tell application \"Finder\" to reveal POSIX file \"")
        + path + QLatin1Char('"');
    QProcess::execute(osascript, {QStringLiteral("-e"), reveal});
    QProcess::execute(
        osascript,
        {QStringLiteral("-e"), QStringLiteral("tell application \"Finder\" to activate")});
}

// Older variants

bool FileUtils::old::forceDirectoryCreationForAFile(const QString& filePath, QString* error)
{
    const int lastSlash = int(filePath.lastIndexOf(QLatin1Char('/')));
    const QString folder = lastSlash < 0 ? filePath : filePath.left(lastSlash + 1);
    if (QDir(folder).exists())
        return true;
    bool created = true;
    for (int slash = int(folder.indexOf(QLatin1Char('/'))); slash >= 0;
         slash = int(folder.indexOf(QLatin1Char('/'), slash + 1))) {
        const QString level = folder.left(slash);
        // Checked again after a failure: another thread may have created it.
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
    return OrvaUtilsPrivate::removeDirectory(path, recursive, error, depth);
}

int FileUtils::old::listFilesInFileSystem(const QString& path, QStringList& list, bool recursive,
                                          QRegExp* folderFilter, const QString& prefix)
{
    const QString folder = path.isEmpty() ? QStringLiteral(".") : path;
    if (!QDir(folder).exists())
        return 0;
    return listFiles(folder, list, recursive, folderFilter, withSlash(prefix), nullptr);
}

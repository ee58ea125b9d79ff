// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Project.h"

#include <FileUtils.h>
#include <ImageUtils.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <cstring>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <dirent.h>
#endif

namespace {

/// Two names with the same key are one file on some system: case or the composition of accents
/// do not tell files apart everywhere.
QString fileSystemKey(const QString& name)
{
    return name.normalized(QString::NormalizationForm_C).toCaseFolded();
}

bool hasSuffixOf(const QString& name, std::initializer_list<const char*> suffixes)
{
    const QString suffix = QFileInfo(name).suffix().toLower();
    return std::any_of(suffixes.begin(), suffixes.end(),
                       [&suffix](const char* one) { return suffix == QLatin1String(one); });
}

bool isTiffName(const QString& name)
{
    return hasSuffixOf(name, {"tif", "tiff"});
}

/// Whether an owner would take a file of that name for a picture that ought to be in the site.
bool isUnpublishedName(const QString& name)
{
    return hasSuffixOf(name, {"heic", "heif", "avif", "jxl", "jp2", "bmp",  "psd", "raw", "dng",
                              "cr2",  "cr3",  "nef",  "arw", "orf", "rw2",  "raf", "pef", "srw",
                              "xcf",  "eps",  "ico",  "tga", "pcx", "svgz", "jpe"});
}

bool nameLess(const QFileInfo& a, const QFileInfo& b)
{
    const int order = QString::compare(a.fileName(), b.fileName(), Qt::CaseInsensitive);
    return order != 0 ? order < 0 : a.fileName() < b.fileName();
}

/// Walks the photographs' folder.
class Scan
{
public:
    Scan(QVector<Photograph>* photographs, QStringList* unpublished, WorkItem* errors,
         const std::function<bool()>& stopped)
        : mPhotographs(photographs)
        , mUnpublished(unpublished)
        , mErrors(errors)
        , mStopped(stopped)
    { }

    /// \a prefix is empty or ends with "/".
    void walk(const QString& folder, const QString& prefix)
    {
        if (mStopped() || !checkRawNames(folder, prefix))
            return;
        // System: also links that lead nowhere, so that they can be named.
        QFileInfoList entries = QDir(folder).entryInfoList(QDir::Files | QDir::Dirs | QDir::System
                                                           | QDir::NoDotAndDotDot);
        std::sort(entries.begin(), entries.end(), nameLess);
        const QFileInfoList& sorted = entries;
        for (const QFileInfo& entry : sorted) {
            if (entry.isDir())
                continue;
            if (Project::isPhotographName(entry.fileName()))
                add(entry, prefix + entry.fileName());
            else if (mUnpublished && isUnpublishedName(entry.fileName()))
                mUnpublished->append(prefix + entry.fileName());
        }
        for (const QFileInfo& entry : sorted) {
            if (!entry.isDir())
                continue;
            const QString name = prefix + entry.fileName() + QLatin1Char('/');
            // Following it could lead in a circle, or publish what was never meant to be shown.
            if (entry.isSymLink()) {
                WorkItem* const link = item(WorkItem::Folder, name);
                link->ORVAUTILS_SET_ERROR(
                    link->failure(WorkItem::Unsuitable,
                                  Project::tr("is a link to a folder, which is not followed")));
            } else {
                walk(entry.filePath(), name);
            }
        }
    }

private:
    void add(const QFileInfo& entry, const QString& name)
    {
        if (entry.isSymLink() && !entry.exists()) {
            WorkItem* const link = item(WorkItem::Picture, name);
            link->ORVAUTILS_SET_ERROR(
                link->failure(WorkItem::Missing, Project::tr("is a link that leads nowhere")));
            return;
        }
        if (!entry.isFile()) {
            WorkItem* const noFile = item(WorkItem::Picture, name);
            noFile->ORVAUTILS_SET_ERROR(
                noFile->failure(WorkItem::Unsuitable, Project::tr("is not a file")));
            return;
        }
        mPhotographs->append({entry.canonicalFilePath(), name, QString()});
    }

    /// False when the folder cannot be read. Qt leaves out names that are not text in the system's
    /// encoding, such as names in Latin-1 from an old disk: they must not vanish without a word.
    bool checkRawNames(const QString& folder, const QString& prefix)
    {
#ifdef Q_OS_WIN
        // Where every name is a text.
        if (!QFileInfo(folder).isReadable())
            return cannotRead(folder, prefix, qt_error_string(ERROR_ACCESS_DENIED));
#else
        DIR* const directory = ::opendir(QFile::encodeName(folder).constData());
        if (!directory)
            return cannotRead(folder, prefix, QString::fromLocal8Bit(std::strerror(errno)));
        while (const dirent* const entry = ::readdir(directory)) {
            const QByteArray raw(entry->d_name);
            const QString name = QFile::decodeName(raw);
            const bool undecodable =
                name.contains(QChar(QChar::ReplacementCharacter)) && QFile::encodeName(name) != raw;
            const bool isFolder = entry->d_type == DT_DIR;
            if (!undecodable || raw.startsWith('.')
                || (!isFolder && !Project::isPhotographName(name)))
                continue;
            WorkItem* const strange =
                item(isFolder ? WorkItem::Folder : WorkItem::Picture, prefix + name);
            strange->ORVAUTILS_SET_ERROR(strange->failure(
                WorkItem::Unsuitable,
                Project::tr("has a name that is not valid UTF-8; please rename it")));
        }
        ::closedir(directory);
#endif
        return true;
    }

    bool cannotRead(const QString& folder, const QString& prefix, const QString& reason)
    {
        WorkItem* const closed = item(WorkItem::Folder, prefix.isEmpty() ? folder : prefix);
        closed->ORVAUTILS_SET_ERROR(
            closed->failure(WorkItem::Unreadable, Project::tr("cannot be read (%1)").arg(reason)));
        return false;
    }

    /// What cannot be used.
    WorkItem* item(WorkItem::Kind kind, const QString& name)
    {
        auto* const unusable = new WorkItem(kind, name, mErrors);
        mErrors->ORVAUTILS_ADD_ERRORABLE_CHILD(*unusable);
        return unusable;
    }

    QVector<Photograph>* mPhotographs;
    QStringList* mUnpublished;
    WorkItem* mErrors;
    const std::function<bool()>& mStopped;
};

void giveSiteNames(QVector<Photograph>* photographs)
{
    QSet<QString> wanted;
    const QVector<Photograph>& all = *photographs;
    for (const Photograph& photograph : all)
        wanted.insert(fileSystemKey(photograph.name));

    QSet<QString> taken;
    QHash<QString, int> numbers;
    for (Photograph& photograph : *photographs) {
        QString wish = photograph.name;
        if (isTiffName(wish)) // no browser shows one
            wish = wish.left(wish.lastIndexOf(QLatin1Char('.'))) + QLatin1String(".jpg");
        QString name = wish;
        const bool isOther = wish != photograph.name && wanted.contains(fileSystemKey(wish));
        if (isOther || taken.contains(fileSystemKey(name))) {
            const int dot = int(name.lastIndexOf(QLatin1Char('.')));
            // Photographs of the same name go on where the one before has ended.
            int& number = numbers[fileSystemKey(wish)];
            number = qMax(number, 2);
            do {
                name =
                    wish.left(dot) + QLatin1Char('-') + QString::number(number++) + wish.mid(dot);
            } while (taken.contains(fileSystemKey(name)) || wanted.contains(fileSystemKey(name)));
        }
        taken.insert(fileSystemKey(name));
        photograph.siteName = name;
    }
}

} // namespace

Project::Project(const QString& path)
{
    const QString folder = QFileInfo(path).canonicalFilePath();
    if (folder.isEmpty() || !FileUtils::folderExists(folder))
        return;
    mFolder = folder;
    const QFileInfo photos(QDir(folder).filePath(QStringLiteral("photos")));
    mPhotosFolder = photos.isDir() ? photos.canonicalFilePath() : folder;
    if (photos.isDir())
        mStaticFolder = QDir(folder).filePath(staticName());
}

QString Project::identity() const
{
    return QString::fromLatin1(
        QCryptographicHash::hash(mFolder.toUtf8(), QCryptographicHash::Sha1).toHex());
}

bool Project::isPhotographName(const QString& name)
{
    return ImageUtils::filenameHasWebImageExtension(name) || isTiffName(name)
        || hasSuffixOf(name, {"webp"});
}

QString Project::title() const
{
    const QString name = FileUtils::nameOfLastPartFolder(mFolder);
    return name.isEmpty() ? tr("Photographs") : name;
}

QVector<Photograph> Project::photographs(WorkItem* errors, const std::function<bool()>& stopped,
                                         QStringList* unpublished) const
{
    QVector<Photograph> photographs;
    Scan(&photographs, unpublished, errors, stopped).walk(mPhotosFolder, QString());
    giveSiteNames(&photographs);
    return photographs;
}

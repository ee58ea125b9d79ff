// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Project.h"

#include <FileUtils.h>
#include <ImageUtils.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>

namespace {

/// Two names with the same key are the same file on some system: not every file system
/// distinguishes case or the composition of accents.
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

/// Whether an owner would expect a file of that name to be a picture of the site.
bool isUnpublishedName(const QString& name)
{
    return hasSuffixOf(name, {"heic", "heif", "avif", "jxl", "jp2", "bmp",  "psd", "raw", "dng",
                              "cr2",  "cr3",  "nef",  "arw", "orf", "rw2",  "raf", "pef", "srw",
                              "xcf",  "eps",  "ico",  "tga", "pcx", "svgz", "jpe"});
}

bool nameLess(const FileUtils::Entry& a, const FileUtils::Entry& b)
{
    const int order = QString::compare(a.name, b.name, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : a.name < b.name;
}

/// Walks a folder of the project.
class Walk
{
public:
    enum Kind { Photographs, StaticFiles };

    /// What cannot be used becomes an item below \a errors.
    Walk(Kind kind, const QString& folder, WorkItem* errors, const std::function<bool()>& stopped)
        : mKind(kind)
        , mFolder(folder + QLatin1Char('/'))
        , mErrors(errors)
        , mStopped(stopped)
    { }

    /// \a prefix is empty or ends with "/".
    void walk(const QString& prefix = QString())
    {
        const QVector<FileUtils::Entry> entries =
            mStopped() ? QVector<FileUtils::Entry>() : entriesOf(prefix);
        for (const FileUtils::Entry& entry : entries) {
            if (!entry.isFolder && isWanted(entry.name))
                add(entry, prefix + entry.name);
            else if (!entry.isFolder && isUnpublishedName(entry.name))
                unpublished.append(prefix + entry.name);
        }
        for (const FileUtils::Entry& entry : entries) {
            const QString name = prefix + entry.name + QLatin1Char('/');
            // Following it could form a cycle, or publish what was never meant to be shown.
            if (entry.isFolder && entry.isLink)
                fail(name, WorkItem::Unsuitable,
                     Project::tr("is a link to a folder, which is not followed"));
            else if (entry.isFolder)
                walk(name);
        }
    }

    QVector<ProjectFile> files;
    QStringList unpublished;

private:
    bool isWanted(const QString& name) const
    {
        return mKind == StaticFiles || Project::isPhotographName(name);
    }

    void add(const FileUtils::Entry& entry, const QString& name)
    {
        // No folder on the path is a link, so the path of a file that is not a link is already
        // canonical: to ask the system for each of very many would take longer than everything
        // else.
        const QString path = mFolder + name;
        const QString source = entry.isLink ? QFileInfo(path).canonicalFilePath() : path;
        if (source.isEmpty())
            fail(name, WorkItem::Missing, Project::tr("is a link that leads nowhere"));
        else if (!entry.isFile)
            fail(name, WorkItem::Unsuitable, Project::tr("is not a file"));
        else if (mKind == StaticFiles && !source.startsWith(mFolder))
            fail(name, WorkItem::Unsuitable,
                 Project::tr("is a link that leads out of the static files"));
        else
            files.append({source, name, QString(), false});
    }

    /// The entries of a folder to walk, in order. Reports what cannot be read, and names that are
    /// not valid in the system's encoding, such as names in Latin-1 from an old disk: they must not
    /// be skipped silently.
    QVector<FileUtils::Entry> entriesOf(const QString& prefix)
    {
        QVector<FileUtils::Entry> entries;
        QString reason;
        if (!FileUtils::listEntries(mFolder + prefix, entries, &reason))
            fail(prefix.isEmpty() ? QFileInfo(mFolder).path() : prefix, WorkItem::Unreadable,
                 Project::tr("cannot be read (%1)").arg(reason));
        const auto isLeftOut = [&](const FileUtils::Entry& entry) {
            if (entry.isHidden && mKind == Photographs)
                return true;
            if (!entry.isReachable && (entry.isFolder || isWanted(entry.name)))
                fail(prefix + entry.name, WorkItem::Unsuitable,
                     Project::tr("has a name that is not valid UTF-8; please rename it"));
            return !entry.isReachable;
        };
        entries.erase(std::remove_if(entries.begin(), entries.end(), isLeftOut), entries.end());
        std::sort(entries.begin(), entries.end(), nameLess);
        return entries;
    }

    void fail(const QString& name, WorkItem::Failure failure, const QString& reason)
    {
        const bool isStatic = mKind == StaticFiles;
        const bool isFolder = name.endsWith(QLatin1Char('/')) || failure == WorkItem::Unreadable;
        auto* const item = new WorkItem(
            isFolder       ? WorkItem::Folder
                : isStatic ? WorkItem::StaticFiles
                           : WorkItem::Picture,
            isStatic ? Project::staticName() + QLatin1Char('/') + name : name, mErrors);
        mErrors->ORVAUTILS_ADD_ERRORABLE_CHILD(*item);
        item->ORVAUTILS_SET_ERROR(item->failure(failure, reason));
    }

    const Kind mKind;
    const QString mFolder;
    WorkItem* const mErrors;
    const std::function<bool()>& mStopped;
};

void giveSiteNames(QVector<Photograph>* photographs)
{
    QSet<QString> wanted;
    const QVector<Photograph>& all = *photographs;
    for (const Photograph& photograph : all)
        wanted.insert(fileSystemKey(photograph.name));

    // "a.jpg.webp" is also what "a.jpg" is called in WebP.
    const QLatin1String webp(".webp");
    QSet<QString> taken;
    const auto isTaken = [&](const QString& name) {
        return taken.contains(fileSystemKey(name)) || taken.contains(fileSystemKey(name + webp));
    };
    QHash<QString, int> numbers;
    for (Photograph& photograph : *photographs) {
        QString wish = photograph.name;
        if (isTiffName(wish)) // no browser shows one
            wish = wish.left(wish.lastIndexOf(QLatin1Char('.'))) + QLatin1String(".jpg");
        QString name = wish;
        const bool isOther = wish != photograph.name && wanted.contains(fileSystemKey(wish));
        if (isOther || isTaken(name)) {
            const int dot = int(name.lastIndexOf(QLatin1Char('.')));
            // Continue after the last number given to this name.
            int& number = numbers[fileSystemKey(wish)];
            number = qMax(number, 2);
            do {
                name =
                    wish.left(dot) + QLatin1Char('-') + QString::number(number++) + wish.mid(dot);
            } while (isTaken(name) || wanted.contains(fileSystemKey(name)));
        }
        taken.insert(fileSystemKey(name));
        taken.insert(fileSystemKey(name + webp));
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
    return ImageUtils::filenameHasWebImageExtension(name)
        || hasSuffixOf(name, {"tif", "tiff", "webp"});
}

QString Project::title() const
{
    const QString name = FileUtils::nameOfLastPartFolder(mFolder);
    return name.isEmpty() ? tr("Photographs") : name;
}

QVector<Photograph> Project::photographs(WorkItem* errors, const std::function<bool()>& stopped,
                                         QStringList* unpublished) const
{
    Walk walk(Walk::Photographs, mPhotosFolder, errors, stopped);
    walk.walk();
    unpublished->append(walk.unpublished);
    giveSiteNames(&walk.files);
    return walk.files;
}

QVector<ProjectFile> Project::staticFiles(WorkItem* errors,
                                          const std::function<bool()>& stopped) const
{
    const QFileInfo folder(mStaticFolder);
    if (mStaticFolder.isEmpty() || !folder.isDir())
        return {};
    Walk walk(Walk::StaticFiles, folder.canonicalFilePath(), errors, stopped);
    walk.walk();
    return walk.files;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Project.h"

#include <FileUtils.h>
#include <ImageUtils.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <dirent.h>

namespace {

/// Two names with the same key are one file on some system: case or the composition of accents
/// do not tell files apart everywhere.
QString fileSystemKey(const QString& name)
{
    return name.normalized(QString::NormalizationForm_C).toCaseFolded();
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
    Scan(QVector<Photograph>* photographs, WorkItem* errors, const std::function<bool()>& stopped)
        : mPhotographs(photographs)
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
            if (!entry.isDir() && ImageUtils::filenameHasWebImageExtension(entry.fileName()))
                add(entry, prefix + entry.fileName());
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
        DIR* const directory = ::opendir(QFile::encodeName(folder).constData());
        if (!directory) {
            const QString reason = QString::fromLocal8Bit(std::strerror(errno));
            WorkItem* const closed = item(WorkItem::Folder, prefix.isEmpty() ? folder : prefix);
            closed->ORVAUTILS_SET_ERROR(closed->failure(
                WorkItem::Unreadable, Project::tr("cannot be read (%1)").arg(reason)));
            return false;
        }
        while (const dirent* const entry = ::readdir(directory)) {
            const QByteArray raw(entry->d_name);
            const QString name = QFile::decodeName(raw);
            const bool undecodable =
                name.contains(QChar(QChar::ReplacementCharacter)) && QFile::encodeName(name) != raw;
            const bool isFolder = entry->d_type == DT_DIR;
            if (!undecodable || raw.startsWith('.')
                || (!isFolder && !ImageUtils::filenameHasWebImageExtension(name)))
                continue;
            WorkItem* const strange =
                item(isFolder ? WorkItem::Folder : WorkItem::Picture, prefix + name);
            strange->ORVAUTILS_SET_ERROR(strange->failure(
                WorkItem::Unsuitable,
                Project::tr("has a name that is not valid UTF-8; please rename it")));
        }
        ::closedir(directory);
        return true;
    }

    /// What cannot be used.
    WorkItem* item(WorkItem::Kind kind, const QString& name)
    {
        auto* const unusable = new WorkItem(kind, name, mErrors);
        mErrors->ORVAUTILS_ADD_ERRORABLE_CHILD(*unusable);
        return unusable;
    }

    QVector<Photograph>* mPhotographs;
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
    for (Photograph& photograph : *photographs) {
        QString name = photograph.name;
        if (taken.contains(fileSystemKey(name))) {
            const int dot = name.lastIndexOf(QLatin1Char('.'));
            int number = 2;
            do {
                name = photograph.name.left(dot) + QLatin1Char('-') + QString::number(number++)
                    + photograph.name.mid(dot);
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

QString Project::title() const
{
    const QString name = FileUtils::nameOfLastPartFolder(mFolder);
    return name.isEmpty() ? tr("Photographs") : name;
}

QVector<Photograph> Project::photographs(WorkItem* errors,
                                         const std::function<bool()>& stopped) const
{
    QVector<Photograph> photographs;
    Scan(&photographs, errors, stopped).walk(mPhotosFolder, QString());
    giveSiteNames(&photographs);
    return photographs;
}

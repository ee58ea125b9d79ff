// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Project.h"

#include <FileUtils.h>
#include <ImageUtils.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <dirent.h>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("Project", text);
}

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
    Scan(QVector<Photograph>* photographs, Failures* failures)
        : mPhotographs(photographs)
        , mFailures(failures)
    { }

    /// \a prefix is empty or ends with "/".
    void walk(const QString& folder, const QString& prefix)
    {
        if (!checkRawNames(folder, prefix))
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
            if (entry.isSymLink())
                fail(name, tr("is a link to a folder, which is not followed"));
            else
                walk(entry.filePath(), name);
        }
    }

private:
    void add(const QFileInfo& entry, const QString& name)
    {
        if (entry.isSymLink() && !entry.exists()) {
            fail(name, tr("is a link that leads nowhere"));
            return;
        }
        if (!entry.isFile()) {
            fail(name, tr("is not a file"));
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
            fail(prefix.isEmpty() ? folder : prefix,
                 tr("cannot be read (%1)").arg(QString::fromLocal8Bit(std::strerror(errno))));
            return false;
        }
        while (const dirent* const entry = ::readdir(directory)) {
            const QByteArray raw(entry->d_name);
            const QString name = QFile::decodeName(raw);
            const bool undecodable =
                name.contains(QChar(QChar::ReplacementCharacter)) && QFile::encodeName(name) != raw;
            if (undecodable && !raw.startsWith('.')
                && (entry->d_type == DT_DIR || ImageUtils::filenameHasWebImageExtension(name)))
                fail(prefix + name, tr("has a name that is not valid UTF-8; please rename it"));
        }
        ::closedir(directory);
        return true;
    }

    void fail(const QString& subject, const QString& reason)
    {
        mFailures->append({subject, reason});
    }

    QVector<Photograph>* mPhotographs;
    Failures* mFailures;
};

void giveSiteNames(QVector<Photograph>* photographs)
{
    QSet<QString> wanted;
    for (const Photograph& photograph : *photographs)
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
}

QString Project::title() const
{
    const QString name = FileUtils::nameOfLastPartFolder(mFolder);
    return name.isEmpty() ? tr("Photographs") : name;
}

QVector<Photograph> Project::photographs(Failures* failures) const
{
    QVector<Photograph> photographs;
    Scan(&photographs, failures).walk(mPhotosFolder, QString());
    giveSiteNames(&photographs);
    return photographs;
}

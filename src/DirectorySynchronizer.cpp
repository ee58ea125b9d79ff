// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DirectorySynchronizer.h"

#include "DirectoryWatcher.h"
#include "asconst_p.h"
#include "filecopy_p.h"
#include "filesystem_p.h"
#include "folderpath_p.h"
#include "logrecord_p.h"
#include "treecopy_p.h"
#include "treeremoval_p.h"
#include "treetask_p.h"
#include "treewalk_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSet>

namespace OrvaUtilsPrivate {

namespace {

using Filter = std::function<bool(const QString& relativePath)>;

/// Whether \a filter accepts \a path and all folders between \a root and it.
bool letsThrough(const Filter& filter, const QString& path, const QString& root)
{
    const QString prefix = withSlash(root);
    if (!filter || !path.startsWith(prefix))
        return true;
    const QString relative = path.mid(prefix.size());
    for (int slash = int(relative.indexOf(QLatin1Char('/'))); slash >= 0;
         slash = int(relative.indexOf(QLatin1Char('/'), slash + 1))) {
        if (!filter(relative.left(slash)))
            return false;
    }
    return filter(relative);
}

} // namespace

class DirectorySynchronizerPrivate
{
public:
    explicit DirectorySynchronizerPrivate(DirectorySynchronizer* synchronizer)
        : q(synchronizer)
    { }

    QString mirrorOf(const QString& path) const;
    QString refusalOf(const QString& path, const QString& mirror) const;
    bool isInMirror(const QString& path, const QString& root) const
    {
        const Filter current = filter; // which may set another one, or destroy the synchronizer
        return letsThrough(current, path, root);
    }
    bool canBeMirrored() const;
    void removeObstacles(const QString& mirror) const;
    void reportFailure(const QString& message, const QString& path, const QString& reason) const;

    DirectorySynchronizer* const q;
    QString source;
    QString destination;
    QString startFolder; // the current one when both were set
    DirectoryWatcher* watcher = nullptr; // child of the synchronizer
    Filter filter;
};

} // namespace OrvaUtilsPrivate

using OrvaUtilsPrivate::asConst;
using OrvaUtilsPrivate::DirectorySynchronizerPrivate;
using OrvaUtilsPrivate::Filter;
using OrvaUtilsPrivate::FolderEntry;
using OrvaUtilsPrivate::joined;
using OrvaUtilsPrivate::letsThrough;
using OrvaUtilsPrivate::TreeTask;
using OrvaUtilsPrivate::Walk;

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("DirectorySynchronizer", text);
}

QString missingFolder()
{
    return tr(QT_TRANSLATE_NOOP("DirectorySynchronizer", "The folder does not exist."));
}

QString otherCurrentFolder()
{
    return tr(QT_TRANSLATE_NOOP("DirectorySynchronizer",
                                "The current folder has changed, and the path is relative to it."));
}

QString outsideOfTheSource()
{
    return tr(QT_TRANSLATE_NOOP("DirectorySynchronizer", "The file is not in the source folder."));
}

/// The visible files below a folder. Folders that cannot be read are listed in unreadable.
struct VisibleFiles
{
    QStringList files;
    QStringList unreadable;

    void collect(const QString& folder, const Walk* parent)
    {
        const Walk walk = {folder, parent};
        std::vector<FolderEntry> entries;
        if (!OrvaUtilsPrivate::readFolder(folder, entries))
            unreadable.append(folder);
        for (const FolderEntry& entry : entries) {
            const QString path = joined(folder, entry.name);
            if (isVisibleFolder(entry) && leadsOn(entry, walk))
                collect(path, &walk);
            else if (entry.kind == OrvaUtilsPrivate::EntryKind::File && !entry.isHidden)
                files.append(path);
        }
    }
};

bool haveSameContent(const QString& path, const QString& other)
{
    // Opening a pipe would wait for a writer.
    if (!QFileInfo(path).isFile() || !QFileInfo(other).isFile())
        return false;
    QFile one(path);
    QFile two(other);
    if (!one.open(QIODevice::ReadOnly) || !two.open(QIODevice::ReadOnly)
        || one.size() != two.size())
        return false;
    const qint64 pieceSize = 1 << 16;
    while (!one.atEnd()) {
        const QByteArray piece = one.read(pieceSize);
        if (piece.isEmpty() || piece != two.read(pieceSize))
            return false;
    }
    return true;
}

} // namespace

DirectorySynchronizer::DirectorySynchronizer(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<DirectorySynchronizerPrivate>(this))
{
    d->watcher = new DirectoryWatcher(this);
    connect(d->watcher, &DirectoryWatcher::deletedFile, this,
            &DirectorySynchronizer::onFileDeleted);
    connect(d->watcher, &DirectoryWatcher::addedFiles, this,
            &DirectorySynchronizer::onFileAddedOrModified);
    connect(d->watcher, &DirectoryWatcher::modifiedFile, this,
            &DirectorySynchronizer::onFileAddedOrModified);
    connect(d->watcher, &DirectoryWatcher::unwatched, this,
            [this](const QStringList& paths, const QString& reason) {
                const QPointer<DirectorySynchronizer> self(this);
                for (const QString& path : paths) {
                    if (self)
                        Q_EMIT failed(path, reason);
                }
            });
}

DirectorySynchronizer::~DirectorySynchronizer() = default;

bool DirectorySynchronizer::startWatcher(const QString& source, const QString& destination)
{
    const QPointer<DirectorySynchronizer> self(this);
    d->source = QDir::cleanPath(source);
    d->destination = QDir::cleanPath(destination);
    d->startFolder = QDir::currentPath();
    d->watcher->stop();
    checkDirs();
    if (!self)
        return false;
    const bool canBeMirrored = d->canBeMirrored();
    const bool isWatched = canBeMirrored && d->watcher->setPath(d->source);
    if (!self || isWatched)
        return isWatched;
    const QString path = d->source;
    Q_EMIT error(QStringLiteral("Watcher fail"));
    ORVAUTILS_LOG_CRITICAL() << "Watcher fail";
    if (self && !canBeMirrored)
        Q_EMIT failed(path,
                      tr(QT_TRANSLATE_NOOP("DirectorySynchronizer",
                                           "A folder cannot be mirrored into itself, into a folder "
                                           "that contains it, or nowhere.")));
    return false;
}

bool DirectorySynchronizer::checkDirs()
{
    if (!QDir(d->source).exists()) {
        const QPointer<DirectorySynchronizer> self(this);
        const QString path = d->source;
        const QString message = path + QStringLiteral(" doesn't exist");
        Q_EMIT error(message);
        ORVAUTILS_LOG_CRITICAL() << message;
        if (self)
            Q_EMIT failed(path, missingFolder());
    }
    return true;
}

bool DirectorySynchronizer::fullSync(const QString& source, const QString& destination)
{
    return fullSync(source, destination, FileUtils::TreeObserver());
}

bool DirectorySynchronizer::fullSync(const QString& source, const QString& destination,
                                     const FileUtils::TreeObserver& observer, QString* error)
{
    TreeTask task(observer, error);
    // The observer may destroy this object, or set another filter.
    const Filter filter = d->filter;
    const QString root = QDir(source).absolutePath();
    if (filter)
        task.setFilter([&](const QString& path) { return letsThrough(filter, path, root); });
    if (OrvaUtilsPrivate::copyDir(source, destination, false, task))
        return true;
    ORVAUTILS_LOG_CRITICAL() << "FullSync fail";
    return false;
}

void DirectorySynchronizer::setFilter(const std::function<bool(const QString&)>& filter)
{
    d->filter = filter;
}

bool DirectorySynchronizer::isEqual(QStringList* differences) const
{
    if (d->source.isEmpty())
        return false;
    VisibleFiles source;
    VisibleFiles destination;
    source.collect(d->source, nullptr);
    destination.collect(d->destination, nullptr);

    QSet<QString> different; // relative paths
    QSet<QString> mirrors;
    for (const QString& path : asConst(source.files)) {
        const QString mirror = d->mirrorOf(path);
        mirrors.insert(mirror);
        if (d->isInMirror(path, d->source) && !haveSameContent(path, mirror))
            different.insert(path.mid(d->source.size() + 1));
    }
    for (const QString& path : asConst(destination.files)) {
        if (!mirrors.contains(path) && d->isInMirror(path, d->destination))
            different.insert(path.mid(d->destination.size() + 1));
    }
    for (const QString& path : asConst(source.unreadable))
        different.insert(path.mid(d->source.size() + 1));
    for (const QString& path : asConst(destination.unreadable))
        different.insert(path.mid(d->destination.size() + 1));

    QStringList sorted(different.values());
    sorted.sort();
    if (differences)
        differences->append(sorted);
    return sorted.isEmpty();
}

void DirectorySynchronizer::onFileDeleted(const QString& path)
{
    const QPointer<DirectorySynchronizer> self(this);
    if (!d->isInMirror(path, d->source) || !self)
        return;
    const QString mirror = d->mirrorOf(path);
    const QString refusal = d->refusalOf(path, mirror);
    QFile file(mirror);
    if (refusal.isEmpty() && OrvaUtilsPrivate::removeOldFile(&file)) {
        Q_EMIT log(QStringLiteral("[DEL] %1").arg(mirror));
        if (self)
            Q_EMIT removed(mirror);
    } else {
        d->reportFailure(QStringLiteral("unable to remove ") + mirror, mirror,
                         refusal.isEmpty() ? file.errorString() : refusal);
    }
}

void DirectorySynchronizer::onFileAddedOrModified(const QString& path)
{
    const QPointer<DirectorySynchronizer> self(this);
    if (!d->isInMirror(path, d->source) || !self)
        return;
    const QString mirror = d->mirrorOf(path);
    QString reason = d->refusalOf(path, mirror);
    const bool hasMirror = reason.isEmpty();
    if (hasMirror && QFileInfo(path).isFile())
        d->removeObstacles(mirror);
    if (hasMirror)
        FileUtils::fileMkPath(mirror, nullptr);
    if (hasMirror
        && OrvaUtilsPrivate::copyFile(path, mirror, OrvaUtilsPrivate::OldFile::KeptInTree,
                                      &reason)) {
        Q_EMIT log(QStringLiteral("[MOD] %1").arg(mirror));
        if (self)
            Q_EMIT mirrored(path, mirror);
    } else {
        d->reportFailure(QStringLiteral("unable to copy ") + path, path, reason);
    }
}

void DirectorySynchronizer::stop()
{
    d->watcher->stop();
}

// Mirrors

QString DirectorySynchronizerPrivate::mirrorOf(const QString& path) const
{
    QString mirror = path;
    return source.isEmpty() ? path : mirror.replace(source, destination);
}

/// Why neither \a path nor its \a mirror may be touched, or an empty string.
QString DirectorySynchronizerPrivate::refusalOf(const QString& path, const QString& mirror) const
{
    // A path without a mirror is its own mirror, and must not be removed.
    if (mirror == path)
        return outsideOfTheSource();
    // A relative path leads to another file now, which may be the only copy of something.
    const bool isRelative = QDir::isRelativePath(source) || QDir::isRelativePath(destination);
    return isRelative && QDir::currentPath() != startFolder ? otherCurrentFolder() : QString();
}

bool DirectorySynchronizerPrivate::canBeMirrored() const
{
    return !destination.isEmpty()
        && !overlap(QDir(source).absolutePath(), QDir(destination).absolutePath());
}

/// Removes what blocks the path of a mirror, or of a folder above it, and cannot be replaced in one
/// step. It mirrored something that has been replaced in the source, too.
void DirectorySynchronizerPrivate::removeObstacles(const QString& mirror) const
{
    const QString root = withSlash(destination);
    if (!mirror.startsWith(root))
        return;
    for (int slash = int(mirror.indexOf(QLatin1Char('/'), root.size())); slash >= 0;
         slash = int(mirror.indexOf(QLatin1Char('/'), slash + 1))) {
        const QFileInfo folder(mirror.left(slash));
        if (folder.isFile() || (folder.isSymLink() && !folder.exists()))
            removeFile(folder.filePath());
    }
    const QFileInfo info(mirror);
    if (info.isSymLink() && !info.isFile())
        removeFile(mirror);
    else if (info.isDir() && !info.isSymLink())
        removeTree(mirror);
}

void DirectorySynchronizerPrivate::reportFailure(const QString& message, const QString& path,
                                                 const QString& reason) const
{
    const QPointer<DirectorySynchronizer> self(q);
    Q_EMIT q->error(message);
    if (self)
        Q_EMIT self->failed(path, reason);
}

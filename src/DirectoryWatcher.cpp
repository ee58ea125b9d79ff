// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DirectoryWatcher.h"

#include "FileUtils.h"
#include "asconst_p.h"
#include "folderpath_p.h"
#include "logrecord_p.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QPointer>
#include <QSet>
#include <QStringList>
#include <QTimer>

using namespace OrvaUtilsPrivate;

namespace OrvaUtilsPrivate {

class DirectoryWatcherPrivate
{
public:
    struct Entries
    {
        QStringList files;
        QStringList folders;
    };

    explicit DirectoryWatcherPrivate(DirectoryWatcher* watcher)
        : q(watcher)
    { }

    void discardWatcher();
    Entries treeOf(const QString& folder) const;
    Entries newTreesOf(const QString& folder) const;
    bool watch(const QString& folder, const Entries& entries);
    void lookAgain();
    void reportVanishedFiles(const QString& folder, const QSet<QString>& present);
    void forgetVanishedFolders(const QString& folder);
    QString asGiven(const QString& folder) const;

    DirectoryWatcher* const q;
    QFileSystemWatcher* mWatcher = nullptr; // child of the watcher
    QString mRootPath;
    // What is watched and, as far as files go, has been reported or was there from the beginning.
    // QFileSystemWatcher knows as well, but finds out by comparing with each of its paths.
    QSet<QString> mFiles;
    QSet<QString> mFolders;
    QSet<QString> mSecondLooks; // the folders that wait for theirs
    int mRound = 0; // counts the calls of setPath()
    int mNotifications = 0; // of mWatcher, being handled now
};

} // namespace OrvaUtilsPrivate

using OrvaUtilsPrivate::DirectoryWatcherPrivate;

namespace {

QStringList without(const QStringList& paths, const QSet<QString>& known)
{
    if (known.isEmpty())
        return paths;
    QStringList unknown;
    for (const QString& path : paths) {
        if (!known.contains(path))
            unknown.append(path);
    }
    return unknown;
}

QSet<QString> setOf(const QStringList& paths)
{
    QSet<QString> set;
    set.reserve(paths.size());
    for (const QString& path : paths)
        set.insert(path);
    return set;
}

void insertAll(QSet<QString>& set, const QStringList& paths)
{
    set.reserve(set.size() + paths.size());
    for (const QString& path : paths)
        set.insert(path);
}

void logRefused(const QStringList& paths)
{
    ORVAUTILS_LOG_CRITICAL_IN("addDir")
        << "Impossible to add to Watcher :"
        << QLatin1Char('(') + paths.join(QStringLiteral(", ")) + QLatin1Char(')');
}

} // namespace

DirectoryWatcher::DirectoryWatcher(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<DirectoryWatcherPrivate>(this))
{ }

DirectoryWatcher::~DirectoryWatcher()
{
    d->discardWatcher();
}

void DirectoryWatcherPrivate::discardWatcher()
{
    if (!mWatcher)
        return;
    mWatcher->disconnect(q);
    // It must outlive the notification that a receiver of our signals may be called from, and so
    // may not be destroyed as a child of this object either.
    mWatcher->setParent(nullptr);
    if (mNotifications > 0)
        mWatcher->deleteLater();
    else
        delete mWatcher;
}

bool DirectoryWatcher::setPath(const QString& root)
{
    d->discardWatcher();
    d->mWatcher = new QFileSystemWatcher(this);
    connect(d->mWatcher, &QFileSystemWatcher::fileChanged, this, &DirectoryWatcher::onFilemod);
    connect(d->mWatcher, &QFileSystemWatcher::directoryChanged, this, &DirectoryWatcher::onDirMod);
    ++d->mRound;
    d->mFiles.clear();
    d->mFolders.clear();
    d->mSecondLooks.clear();

    const bool wereBlocked = blockSignals(true);
    d->mRootPath = root;
    bool complete = false;
    if (QDir(root).exists())
        complete = addDir(root);
    else
        ORVAUTILS_LOG_CRITICAL() << "Wrong path";
    blockSignals(wereBlocked);
    return complete;
}

bool DirectoryWatcher::addDir(const QString& folder)
{
    return d->watch(folder, d->treeOf(folder));
}

DirectoryWatcherPrivate::Entries DirectoryWatcherPrivate::treeOf(const QString& folder) const
{
    Entries entries;
    FileUtils::old::listFilesInFileSystem(folder, entries.files, true, nullptr, folder);
    FileUtils::listDirectoriesInFileSystem(folder, entries.folders, true);
    return entries;
}

DirectoryWatcherPrivate::Entries DirectoryWatcherPrivate::newTreesOf(const QString& folder) const
{
    Entries entries;
    FileUtils::old::listFilesInFileSystem(folder, entries.files, false, nullptr, folder);
    QStringList folders;
    FileUtils::listDirectoriesInFileSystem(folder, folders, false);
    const QStringList unknown = without(folders, mFolders);
    for (const QString& path : unknown) {
        const Entries tree = treeOf(asGiven(path));
        entries.files += tree.files;
        entries.folders += path;
        entries.folders += tree.folders;
    }
    return entries;
}

bool DirectoryWatcherPrivate::watch(const QString& folder, const Entries& entries)
{
    if (!mWatcher)
        return false;
    if (QDir(folder).exists())
        mWatcher->addPath(folder);

    const QStringList newFiles = without(entries.files, mFiles);
    if (!newFiles.isEmpty()) {
        const QStringList refused = mWatcher->addPaths(newFiles);
        if (!refused.isEmpty()) {
            // Those that are watched already were accepted by a pass that failed over others.
            const QStringList lost = without(refused, setOf(mWatcher->files()));
            if (!lost.isEmpty()) {
                logRefused(lost);
                return false;
            }
        }
        insertAll(mFiles, newFiles);
        const QPointer<DirectoryWatcher> self(q);
        const int round = mRound;
        for (const QString& file : newFiles) {
            Q_EMIT q->addedFiles(file);
            if (!self || mRound != round)
                return false; // a receiver wants none of this any more
        }
    }

    const QStringList newFolders = without(entries.folders, mFolders);
    if (!newFolders.isEmpty()) {
        const QStringList refused = mWatcher->addPaths(newFolders);
        const QStringList lost =
            refused.isEmpty() ? refused : without(refused, setOf(mWatcher->directories()));
        insertAll(mFolders, newFolders);
        if (!lost.isEmpty()) {
            for (const QString& path : lost)
                mFolders.remove(path);
            logRefused(lost);
            return false;
        }
    }
    return true;
}

void DirectoryWatcher::onDirMod(const QString& folder)
{
    const QPointer<DirectoryWatcher> self(this);
    const int round = d->mRound;
    const QString path = d->asGiven(folder);
    ++d->mNotifications;
    // What is new in folders that are watched already, they notify of themselves.
    d->watch(path, d->newTreesOf(path));
    if (!self)
        return;
    --d->mNotifications;
    if (d->mRound != round)
        return;

    // One second look serves all notifications until it is taken.
    if (d->mSecondLooks.isEmpty())
        QTimer::singleShot(0, this, [this] { d->lookAgain(); });
    d->mSecondLooks.insert(path);
    // A folder that was renamed is notified of under its former name, its contents as well.
    if (!QDir(folder).exists())
        d->mSecondLooks.insert(d->mRootPath);
}

void DirectoryWatcherPrivate::lookAgain()
{
    const QPointer<DirectoryWatcher> self(q);
    const int round = mRound;
    const QSet<QString> folders = mSecondLooks;
    mSecondLooks.clear();
    for (const QString& folder : folders) {
        const Entries entries = treeOf(folder);
        watch(folder, entries);
        if (!self || mRound != round)
            return;
        forgetVanishedFolders(folder);
        reportVanishedFiles(folder, setOf(entries.files));
        if (!self || mRound != round)
            return;
    }
}

void DirectoryWatcherPrivate::reportVanishedFiles(const QString& folder,
                                                  const QSet<QString>& present)
{
    const QString prefix = withSlash(folder);
    const QSet<QString> known = mFiles;
    const QPointer<DirectoryWatcher> self(q);
    for (const QString& file : known) {
        if (!file.startsWith(prefix) || present.contains(file) || QFileInfo::exists(file))
            continue;
        // Not twice, should a receiver have brought the news by itself.
        if (mFiles.contains(file))
            q->onFilemod(file);
        if (!self)
            return;
    }
}

// Where a folder was renamed, the platform goes on to watch what is in it under the former paths.
void DirectoryWatcherPrivate::forgetVanishedFolders(const QString& folder)
{
    QStringList vanished;
    const QString path = QDir(folder).absolutePath();
    const QString prefix = withSlash(path);
    for (const QString& candidate : asConst(mFolders)) {
        if ((candidate == path || candidate.startsWith(prefix)) && !QFileInfo(candidate).isDir())
            vanished.append(candidate);
    }
    if (vanished.isEmpty())
        return;
    mWatcher->removePaths(vanished);
    for (const QString& gone : asConst(vanished))
        mFolders.remove(gone);
}

void DirectoryWatcher::onFilemod(const QString& file)
{
    const bool exists = QFileInfo::exists(file);
    // The watch belongs to the file that was, which may have been replaced or made anew under the
    // same name: take it off, and put it on what is there now.
    if (d->mWatcher) {
        d->mWatcher->removePath(file);
        if (exists)
            d->mWatcher->addPath(file);
    }
    if (!exists)
        d->mFiles.remove(file);

    const QPointer<DirectoryWatcher> self(this);
    ++d->mNotifications;
    if (exists)
        Q_EMIT modifiedFile(file);
    else
        Q_EMIT deletedFile(file);
    if (self)
        --d->mNotifications;
}

QString DirectoryWatcherPrivate::asGiven(const QString& folder) const
{
    // Sub-folders are watched by their absolute paths.
    const QString root = QDir(mRootPath).absolutePath();
    return folder.startsWith(root + QLatin1Char('/'))
        ? withSlash(mRootPath) + folder.mid(root.size() + 1)
        : folder;
}

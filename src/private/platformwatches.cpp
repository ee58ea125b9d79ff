// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "platformwatches_p.h"

#include "DirectoryWatcher.h"
#include "asconst_p.h"

#ifdef Q_OS_WIN
#include <QFileInfo>
#endif
#include <QFileSystemWatcher>

#include <algorithm>

namespace OrvaUtilsPrivate {

namespace {

// Each share takes one of the few instances (128 on many systems) that all programs of a user have
// in common: most trees have one share, and the largest no more than this.
const int mostShares = 16;

/// The number of files at which a share is full, so that another one is created, if there are \a
/// shares already.
int fullShare(size_t shares)
{
    return shares < 4 ? 1000 : 10000;
}

int sizeOf(const QFileSystemWatcher* share)
{
    return int(share->files().size());
}

/// The paths that are not in the list.
QStringList notIn(const QStringList& list, const QStringList& paths)
{
    QStringList missing;
    for (const QString& path : paths) {
        if (!list.contains(path))
            missing.append(path);
    }
    return missing;
}

/// Adds \a files to \a share. Returns those that it refuses.
QStringList addTo(QFileSystemWatcher* share, const QStringList& files)
{
    QStringList refused = share->addPaths(files);
#ifdef Q_OS_WIN
    // It also refuses a file that was deleted and created again, until the notification of the
    // deletion has arrived, with which the file is watched again.
    if (!refused.isEmpty())
        refused = notIn(share->files(), refused);
#endif
    return refused;
}

} // namespace

PlatformWatches::~PlatformWatches() = default;

void PlatformWatches::begin(DirectoryWatcher* watcher)
{
    mWatcher = watcher;
    addShare();
}

void PlatformWatches::end(bool isNotifying)
{
    for (QFileSystemWatcher* share : mShares) {
        share->disconnect(mWatcher);
        // It must outlive the notification that a receiver of our signals may be called from, and
        // so must not be destroyed as a child of the watcher either.
        share->setParent(nullptr);
        if (isNotifying)
            share->deleteLater();
        else
            delete share;
    }
    mShares.clear();
    mShareOf.clear();
}

void PlatformWatches::addShare()
{
    auto* const share = new QFileSystemWatcher(mWatcher);
#ifdef Q_OS_WIN
    // A thread of the share detects deleted files and forgets them at once: the notification
    // arrives even if the path has been removed here in the meantime, and ends the watch of what
    // has taken its place.
    QObject::connect(share, &QFileSystemWatcher::fileChanged, mWatcher,
                     [this, share](const QString& file) {
                         if (mShareOf.value(file) == share)
                             mWatcher->onFilemod(file);
                     });
    QObject::connect(share, &QFileSystemWatcher::directoryChanged, mWatcher,
                     [this, share](const QString& folder) {
                         if (!share->directories().contains(folder) && QFileInfo(folder).isDir())
                             share->addPath(folder);
                         mWatcher->onDirMod(folder);
                     });
#else
    QObject::connect(share, &QFileSystemWatcher::fileChanged, mWatcher,
                     &DirectoryWatcher::onFilemod);
    QObject::connect(share, &QFileSystemWatcher::directoryChanged, mWatcher,
                     &DirectoryWatcher::onDirMod);
#endif
    mShares.push_back(share);
}

/// The share with the fewest files; a new one if that is full.
QFileSystemWatcher* PlatformWatches::shareForMore()
{
    const auto smallest =
        *std::min_element(mShares.begin(), mShares.end(), [](const auto* one, const auto* other) {
            return sizeOf(one) < sizeOf(other);
        });
    if (sizeOf(smallest) < fullShare(mShares.size()) || int(mShares.size()) == mostShares)
        return smallest;
    addShare();
    return mShares.back();
}

QStringList PlatformWatches::addFiles(const QStringList& paths)
{
    QStringList unknown;
    unknown.reserve(paths.size());
    for (const QString& path : paths) {
        if (!isWatched(path))
            unknown.append(path);
    }
    QStringList refused;
    for (int at = 0; at < unknown.size();) {
        QFileSystemWatcher* const share = shareForMore();
        const int space = fullShare(mShares.size()) - sizeOf(share);
        // When all are full, the rest is distributed evenly.
        const int room = space > 0 ? space : (int(unknown.size()) - at) / mostShares + 1;
        const QStringList taken = unknown.mid(at, room);
        at += int(taken.size());
        for (const QString& path : taken)
            mShareOf.insert(path, share);
        refused += addTo(share, taken);
    }
    for (const QString& path : asConst(refused))
        mShareOf.remove(path);
    return refused;
}

QStringList PlatformWatches::addFolders(const QStringList& paths)
{
    QFileSystemWatcher* const share = mShares.front();
    const QStringList refused = share->addPaths(paths);
    return refused.isEmpty() ? refused : notIn(share->directories(), refused);
}

bool PlatformWatches::isWatched(const QString& file) const
{
    const QFileSystemWatcher* const share = mShareOf.value(file);
    return share && share->files().contains(file);
}

void PlatformWatches::removeFile(const QString& path)
{
    if (QFileSystemWatcher* const share = mShareOf.take(path))
        share->removePath(path);
}

void PlatformWatches::removeFolders(const QStringList& paths)
{
    if (!paths.isEmpty() && isActive())
        mShares.front()->removePaths(paths);
}

} // namespace OrvaUtilsPrivate

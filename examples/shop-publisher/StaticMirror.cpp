// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "StaticMirror.h"

#include <FileUtils.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <functional>

namespace {

/// The paths of the visible files below \a folder.
QStringList visibleFiles(const QString& folder)
{
    QStringList names;
    FileUtils::listFilesInFileSystem(folder, names, true);
    return names;
}

QSet<QString> setOf(const QStringList& names)
{
    QSet<QString> set;
    for (const QString& name : names)
        set.insert(name);
    return set;
}

/// Removes the folders below \a mirror that have nothing in them, and no folder below \a source.
void removeFoldersWithoutSource(const QString& source, const QString& mirror)
{
    QStringList folders;
    FileUtils::listDirectoriesInFileSystem(mirror, folders, true);
    // Those in others first.
    std::sort(folders.begin(), folders.end(), std::greater<>());
    const QStringList& sorted = folders;
    for (const QString& folder : sorted) {
        if (!QFileInfo(source + folder.mid(mirror.size())).isDir())
            QDir().rmdir(folder);
    }
}

/// Written to since the copy was made, or never copied whole.
bool isStale(const QString& source, const QString& copy)
{
    const FileStamp original = FileStamp::of(source);
    const FileStamp copied = FileStamp::of(copy);
    return original.exists()
        && (!copied.exists() || original.size != copied.size || original.changed > copied.changed);
}

} // namespace

StaticMirror::StaticMirror(const Project& project, const Site& site)
    : mSite(site)
    , mSource(project.staticFolder())
    , mMirror(site.folder() + QLatin1Char('/') + Project::staticName())
{
    connect(&mSynchronizer, &DirectorySynchronizer::log, this, &StaticMirror::onLog);
    connect(&mSynchronizer, &DirectorySynchronizer::error, this, &StaticMirror::onError);
}

bool StaticMirror::follow()
{
    const FileStamp folder =
        mSource.isEmpty() || !QFileInfo(mSource).isDir() ? FileStamp() : FileStamp::of(mSource);
    if (folder.isSameFile(mFollowed))
        return false;
    mFollowed = folder;
    if (!folder.exists() || !refusal().isEmpty())
        return false;
    mFollows = true;
    mWatchFailed = !mSynchronizer.startWatcher(mSource, mMirror);
    return true;
}

QStringList StaticMirror::settle()
{
    QStringList failures;
    const QString reason = refusal();
    if (!reason.isEmpty()) {
        failures.append(reason);
    } else if (mFollows) {
        mSettling = true;
        setRight(&failures);
        mSettling = false;
    }
    if (mWatchFailed)
        failures.append(
            tr("not everything in %1 can be watched, so changes may be missed").arg(mSource));
    mWatchFailed = false;
    return failures;
}

/// Why nothing may be copied.
QString StaticMirror::refusal() const
{
    if (mSource.isEmpty() || !QFileInfo(mSource).isDir())
        return QString();
    if (QFileInfo(mMirror).isSymLink())
        return tr("%1 is a link that leads out of the site").arg(Project::staticName());
    if (mSite.overlaps(QFileInfo(mSource).canonicalFilePath()))
        return tr("%1 leads into the site itself").arg(mSource);
    return QString();
}

void StaticMirror::setRight(QStringList* failures)
{
    const QString source = mSource + QLatin1Char('/');
    const QString mirror = mMirror + QLatin1Char('/');
    const QStringList wanted = visibleFiles(mSource);
    const QSet<QString> wantedNames = setOf(wanted);
    // First what goes: a folder may get the name of a file.
    const QStringList present = visibleFiles(mMirror);
    for (const QString& name : present) {
        if (wantedNames.contains(name) || QFileInfo(source + name).isFile())
            continue;
        mFailed = false;
        mSynchronizer.onFileDeleted(source + name);
        if (mFailed && QFileInfo::exists(mirror + name))
            failures->append(
                tr("%1 cannot be removed").arg(Project::staticName() + QLatin1Char('/') + name));
    }
    removeFoldersWithoutSource(mSource, mMirror);
    for (const QString& name : wanted) {
        if (!isStale(source + name, mirror + name))
            continue;
        mFailed = false;
        mSynchronizer.onFileAddedOrModified(source + name);
        // One that went meanwhile is the next thing that is told.
        if (mFailed && QFileInfo::exists(source + name))
            failures->append(
                tr("%1 cannot be copied").arg(Project::staticName() + QLatin1Char('/') + name));
    }
}

void StaticMirror::onLog(const QString& message)
{
    // "[MOD] " or "[DEL] ", and the path in the site.
    const QString path = message.mid(6);
    const QString root = mSite.folder() + QLatin1Char('/');
    const QString place = path.startsWith(root) ? path.mid(root.size()) : path;
    if (message.startsWith(QLatin1String("[DEL] ")))
        Q_EMIT removed(place);
    else
        Q_EMIT copied(place);
    if (!mSettling)
        Q_EMIT changed();
}

void StaticMirror::onError(const QString&)
{
    mFailed = true;
    if (!mSettling)
        Q_EMIT changed();
}

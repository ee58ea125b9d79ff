// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "StaticMirror.h"

#include "StaticFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <iterator>

namespace {

/// The path in the site of what stands at \a name in the static folder.
QString placeOf(const QString& name)
{
    return Project::staticName() + QLatin1Char('/') + name;
}

/// Removes the folders below \a mirror that are not among \a wanted and have nothing in them.
void removeFoldersExcept(const QStringList& wanted, const QString& mirror)
{
    QStringList folders = StaticFiles(mirror).folders();
    while (!folders.isEmpty()) {
        const QString folder = folders.takeLast(); // those in others first
        if (!wanted.contains(folder))
            QDir(mirror).rmdir(folder);
    }
}

} // namespace

StaticMirror::StaticMirror(const Project& project, Site* site)
    : mSite(site)
    , mSource(project.staticFolder())
    , mMirror(site->folder() + QLatin1Char('/') + Project::staticName())
{
    connect(&mWatcher, &DirectoryWatcher::addedFiles, this, &StaticMirror::changed);
    connect(&mWatcher, &DirectoryWatcher::modifiedFile, this, &StaticMirror::changed);
    connect(&mWatcher, &DirectoryWatcher::deletedFile, this, &StaticMirror::changed);
    newRefusals(); // told by the first publication
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
    mWatchFailed = !mWatcher.setPath(mSource);
    return true;
}

QStringList StaticMirror::settle()
{
    QStringList failures;
    const QString reason = refusal();
    if (!reason.isEmpty()) {
        failures.append(reason);
    } else if (mFollows) {
        failures = newRefusals();
        setRight(&failures);
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
    if (mSite->overlaps(QFileInfo(mSource).canonicalFilePath()))
        return tr("%1 leads into the site itself").arg(mSource);
    return QString();
}

/// The files that are refused and were not before.
QStringList StaticMirror::newRefusals()
{
    QStringList all;
    const QVector<StaticFiles::Refusal> refusals = StaticFiles(mSource).refusals();
    for (const StaticFiles::Refusal& refusal : refusals)
        all.append(placeOf(refusal.name) + QLatin1String(": ") + refusal.reason);
    const QStringList told = mTold;
    mTold = all;
    QStringList news;
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(news),
                 [&told](const QString& line) { return !told.contains(line); });
    return news;
}

void StaticMirror::setRight(QStringList* failures)
{
    const StaticFiles wanted(mSource);
    const QStringList files = wanted.files();
    QString reason;
    // First what goes: a folder may get the name of a file.
    const QStringList present = StaticFiles(mMirror).files();
    for (const QString& name : present) {
        if (files.contains(name))
            continue;
        if (mSite->remove(placeOf(name), &reason))
            Q_EMIT removed(placeOf(name));
        else
            failures->append(placeOf(name) + QLatin1String(": ") + reason);
    }
    removeFoldersExcept(wanted.folders(), mMirror);

    const QString draft = mSite->draft(QStringLiteral("static-file"));
    for (const QString& name : files) {
        const QString source = mSource + QLatin1Char('/') + name;
        if (!StaticFiles::isStale(source, mMirror + QLatin1Char('/') + name))
            continue;
        QFile::remove(draft);
        QFile file(source);
        if (!file.copy(draft)) {
            // One that went meanwhile is the next thing that is told.
            if (file.exists())
                failures->append(
                    tr("%1 cannot be copied (%2)").arg(placeOf(name), file.errorString()));
        } else if (mSite->publish(draft, placeOf(name), &reason)) {
            Q_EMIT copied(placeOf(name));
        } else {
            failures->append(placeOf(name) + QLatin1String(": ") + reason);
        }
    }
    QFile::remove(draft);
}

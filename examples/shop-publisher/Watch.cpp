// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Watch.h"

#include <QFileInfo>

#include <algorithm>

namespace {

const int quietMilliseconds = 100;
/// If changes keep coming, something is published this long after the first one.
const int patienceMilliseconds = 2000;

} // namespace

Watch::Watch(const Project& project, Site* site, Published* published,
             const PublicationOptions& options, Console* console)
    : mProject(project)
    , mSite(site)
    , mPublished(published)
    , mOptions(options)
    , mConsole(console)
{
    mQuietMoment.setSingleShot(true);
    connect(&mQuietMoment, &QTimer::timeout, this, &Watch::publish);
    for (const DirectoryWatcher* watcher : {&mPhotographs, &mStaticFiles}) {
        connect(watcher, &DirectoryWatcher::addedFiles, this, &Watch::onFile);
        connect(watcher, &DirectoryWatcher::modifiedFile, this, &Watch::onFile);
        connect(watcher, &DirectoryWatcher::deletedFile, this, &Watch::onFile);
        connect(watcher, &DirectoryWatcher::unwatched, this,
                [this](const QStringList& paths, const QString& reason) {
                    mConsole->complain(
                        "unwatched",
                        tr("Changes of %n file(s) may be missed: %1", nullptr, int(paths.size()))
                            .arg(reason));
                });
    }
    connect(&mProjectFolder, &QFileSystemWatcher::directoryChanged, this, &Watch::onProjectFolder);
    connect(&mProjectFolder, &QFileSystemWatcher::fileChanged, this, &Watch::onProjectFolder);
}

void Watch::run(const QVector<ErrorableCode>& told)
{
    if (mStopped)
        return;
    for (const ErrorableCode& failure : told)
        mToldFailures.append(failure.details);
    mProjectFolder.addPath(mProject.folder());
    // Start the watchers first, then look for what has changed since the publication.
    onProjectFolder();
    mConsole->say("watching", {{QStringLiteral("folder"), mProject.folder()}},
                  tr("Watching %1, Ctrl-C ends").arg(mProject.folder()));
    mLoop.exec();
}

void Watch::stop()
{
    mStopped = true;
    if (mThread)
        mThread->requestInterruption(); // onPublished() reports what was done and ends the loop
    else
        mLoop.quit();
}

/// A folder that is replaced by another is followed by the watcher itself.
void Watch::follow(DirectoryWatcher* watcher, const QString& folder)
{
    if (watcher->watchedFolders() == 0 && QFileInfo(folder).isDir())
        watcher->setPath(folder);
}

void Watch::onFile(const QString& path)
{
    const QString photographs = mProject.photosFolder() + QLatin1Char('/');
    mChanged.insert(path.startsWith(photographs)
                        ? path.mid(photographs.size())
                        : Project::staticName() + path.mid(mProject.staticFolder().size()));
    soon();
}

/// Something was added to the project's folder, removed or changed there: perhaps shop.json, or a
/// whole folder.
void Watch::onProjectFolder()
{
    if (QFileInfo::exists(mProject.shopFile()))
        mProjectFolder.addPath(mProject.shopFile()); // also if it was replaced by another file
    follow(&mPhotographs, mProject.photosFolder());
    if (!mProject.staticFolder().isEmpty())
        follow(&mStaticFiles, mProject.staticFolder());
    soon();
}

void Watch::soon()
{
    mHasNews = true;
    if (mStopped || mThread)
        return; // onPublished() comes back to it
    if (!mQuietMoment.isActive())
        mFirstNews.start();
    if (!mQuietMoment.isActive() || mFirstNews.elapsed() < patienceMilliseconds)
        mQuietMoment.start(quietMilliseconds);
}

void Watch::publish()
{
    if (mStopped)
        return; // the loop is about to end
    mHasNews = false;
    mPublication = std::make_unique<Publication>(mProject, mSite, mPublished, mOptions, mChanged);
    mChanged.clear();
    mThread = std::make_unique<PublicationThread>(mPublication.get());
    connect(mThread.get(), &QThread::finished, this, &Watch::onPublished);
    mThread->start();
}

void Watch::onPublished()
{
    mThread->wait();
    const Publication::Outcome& outcome = mPublication->outcome();
    for (const Publication::Change& change : outcome.changes)
        mConsole->say(change.event, {{QStringLiteral("name"), change.name}},
                      tr(change.text).arg(change.name));
    mChanged += outcome.overtaken;
    mHasNews = mHasNews || !outcome.overtaken.isEmpty();
    mConsole->report(newFailures());

    mThread.reset();
    mPublication.reset();
    if (mStopped)
        mLoop.quit();
    else if (mHasNews)
        soon();
}

/// Those that were not reported before. A failure of a file that was modified or deleted meanwhile
/// is left out: the file is checked again.
QVector<ErrorableCode> Watch::newFailures()
{
    QVector<ErrorableCode> news;
    QStringList failures;
    const QVector<ErrorableCode> all = mPublication->failures();
    for (const ErrorableCode& failure : all) {
        const QString& text = failure.details;
        const bool isOvertaken =
            std::any_of(mChanged.cbegin(), mChanged.cend(), [&text](const QString& name) {
                return text.startsWith(name + QLatin1String(": "));
            });
        if (isOvertaken)
            continue;
        failures.append(text);
        if (!mToldFailures.contains(text))
            news.append(failure);
    }
    mToldFailures = failures;
    return news;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Watch.h"

#include "Console.h"

#include <QFileInfo>

#include <algorithm>

namespace {

const int quietMilliseconds = 100;
/// However restless the project is, so long after the first change something is published.
const int patienceMilliseconds = 2000;

/// \a failure is that of a picture in \a names.
bool isOfAny(const ErrorableCode& failure, const QSet<QString>& names)
{
    return std::any_of(names.begin(), names.end(), [&failure](const QString& name) {
        return failure.details.startsWith(name + QLatin1String(": "));
    });
}

} // namespace

Watch::Watch(const Project& project, Site* site, Published* published,
             const PublicationOptions& options, bool quiet, bool verbose)
    : mProject(project)
    , mSite(site)
    , mPublished(published)
    , mOptions(options)
    , mQuiet(quiet)
    , mVerbose(verbose)
    , mStaticMirror(project, site)
{
    mQuietMoment.setSingleShot(true);
    connect(&mQuietMoment, &QTimer::timeout, this, &Watch::publish);
    connect(&mPhotographs, &DirectoryWatcher::addedFiles, this, &Watch::onPhotograph);
    connect(&mPhotographs, &DirectoryWatcher::modifiedFile, this, &Watch::onPhotograph);
    connect(&mPhotographs, &DirectoryWatcher::deletedFile, this, &Watch::onPhotograph);
    connect(&mProjectFolder, &QFileSystemWatcher::directoryChanged, this, &Watch::onProjectFolder);
    connect(&mProjectFolder, &QFileSystemWatcher::fileChanged, this, &Watch::onProjectFolder);

    const auto staticFileChanged = [this] {
        mNewsOfStaticFiles = true;
        soon();
    };
    connect(&mStaticMirror, &StaticMirror::changed, this, staticFileChanged);
    connect(&mStaticMirror, &StaticMirror::copied, this,
            [this](const QString& place) { say(tr("Copied: %1").arg(place)); });
    connect(&mStaticMirror, &StaticMirror::removed, this,
            [this](const QString& place) { say(tr("Removed: %1").arg(place)); });
}

Watch::~Watch() = default;

void Watch::run(const QVector<ErrorableCode>& told)
{
    if (mStopped)
        return;
    for (const ErrorableCode& failure : told)
        mToldFailures.append(failure.details);
    mProjectFolder.addPath(mProject.folder());
    // What changed between the publication and now is found by looking: the watchers come first.
    mNewsOfPhotographs = true;
    mNewsOfStaticFiles = true;
    onProjectFolder();
    say(tr("Watching %1, Ctrl-C ends").arg(mProject.folder()));
    mLoop.exec();
}

void Watch::stop()
{
    mStopped = true;
    if (mThread) {
        // onPublished() ends the loop, and says what was still done.
        mThread->requestInterruption();
        return;
    }
    mLoop.quit();
}

void Watch::onPhotograph(const QString& path)
{
    if (!Project::isPhotographName(QFileInfo(path).fileName()))
        return;
    mChanged.insert(path.mid(mProject.photosFolder().size() + 1));
    mNewsOfPhotographs = true;
    soon();
}

/// Something came into the project's folder, went or changed there: perhaps shop.json, or a folder
/// as a whole.
void Watch::onProjectFolder()
{
    if (QFileInfo::exists(mProject.shopFile()))
        mProjectFolder.addPath(mProject.shopFile()); // a file that took its place, too
    followPhotographs();
    if (mStaticMirror.follow())
        mNewsOfStaticFiles = true;
    // What is published belongs to the thread while that runs.
    if (mThread || FileStamp::of(mProject.shopFile()) != mPublished->shopFile)
        mNewsOfPhotographs = true;
    if (mNewsOfPhotographs || mNewsOfStaticFiles)
        soon();
}

void Watch::followPhotographs()
{
    const FileStamp folder = FileStamp::of(mProject.photosFolder());
    if (folder.isSameFile(mFollowedFolder))
        return;
    mFollowedFolder = folder;
    mNewsOfPhotographs = true;
    if (folder.exists() && !mPhotographs.setPath(mProject.photosFolder()))
        Console::printError(
            Console::printable(tr("Not everything in %1 can be watched, so changes may be missed.")
                                   .arg(mProject.photosFolder()))
            + QLatin1Char('\n'));
}

void Watch::soon()
{
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
    if (mNewsOfStaticFiles)
        settleStaticFiles();
    if (!mNewsOfPhotographs)
        return;
    mNewsOfPhotographs = false;
    mPublication = std::make_unique<Publication>(mProject, mSite, mPublished, mOptions, mChanged);
    mChanged.clear();
    mThread = std::make_unique<PublicationThread>(mPublication.get());
    connect(mThread.get(), &QThread::finished, this, &Watch::onPublished);
    mThread->start();
}

void Watch::onPublished()
{
    mThread->wait();
    const QStringList imported = mPublication->importedNames();
    for (const QString& name : imported)
        say(tr("Imported: %1").arg(name));
    const QStringList removed = mPublication->removedNames();
    for (const QString& name : removed)
        say(tr("Removed: %1").arg(name));
    if (mPublication->pageWritten())
        say(tr("Written: %1").arg(QStringLiteral("index.html")));

    const QStringList overtaken = mPublication->overtakenNames();
    for (const QString& name : overtaken) {
        mChanged.insert(name);
        mNewsOfPhotographs = true;
    }

    QVector<ErrorableCode> news;
    QStringList failures;
    const QVector<ErrorableCode> all = mPublication->failures();
    for (const ErrorableCode& failure : all) {
        // One that was written to, or went, meanwhile is looked at again.
        if (isOfAny(failure, mChanged))
            continue;
        if (!mToldFailures.contains(failure.details))
            news.append(failure);
        failures.append(failure.details);
    }
    mToldFailures = failures;
    Console(mQuiet).report(news, mVerbose);

    mThread.reset();
    mPublication.reset();
    if (mStopped)
        mLoop.quit();
    else if (mNewsOfPhotographs || mNewsOfStaticFiles)
        soon();
}

void Watch::settleStaticFiles()
{
    mNewsOfStaticFiles = false;
    const QStringList failures = mStaticMirror.settle();
    for (const QString& failure : failures)
        Console::printError(Console::printable(failure) + QLatin1Char('\n'));
}

void Watch::say(const QString& text) const
{
    Console(mQuiet).say(text);
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DirectoryWatcher.h"

#include "directorywatcher_p.h"
#include "logrecord_p.h"
#include "watchlimit_p.h"

#include <QDir>
#include <QTimer>

using OrvaUtilsPrivate::DirectoryWatcherPrivate;
using OrvaUtilsPrivate::WatcherTurn;

namespace {

// In milliseconds: how long it must be quiet before files are compared, and after how long they are
// compared even if changes continue.
const int quietTime = 100;
const int longestActivity = 1000;

// The system queues a limited number of notifications and silently drops the others. Some may be
// lost if there were as many as this, or if they had to wait for as long as this.
const int queueLimit = 4000;
const int longWait = 1000;

} // namespace

DirectoryWatcher::DirectoryWatcher(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<DirectoryWatcherPrivate>(this))
{ }

DirectoryWatcher::~DirectoryWatcher()
{
    d->end();
}

bool DirectoryWatcher::setPath(const QString& root)
{
    d->begin(root);
    const WatcherTurn turn(d.get());
    const bool wereBlocked = blockSignals(true);
    d->isScanning = true;
    bool complete = false;
    if (QDir(root).exists())
        complete = addDir(root);
    else
        ORVAUTILS_LOG_CRITICAL() << "Wrong path";
    d->isScanning = false;
    blockSignals(wereBlocked);
    d->announceRefusals();
    return complete && !turn.isOver();
}

bool DirectoryWatcher::addDir(const QString& folder)
{
    const WatcherTurn turn(d.get());
    const bool complete = d->look(folder, DirectoryWatcherPrivate::Scope::Tree,
                                  DirectoryWatcherPrivate::Refusal::EndsLook);
    if (!turn.isOver() && !complete)
        d->lookAgainSoon(folder);
    return complete;
}

void DirectoryWatcher::stop()
{
    d->end();
}

int DirectoryWatcher::watchedFiles() const
{
    int count = int(d->files.size());
    for (auto refused = d->unwatched.cbegin(); refused != d->unwatched.cend(); ++refused)
        count -= d->files.contains(refused.key());
    return count;
}

int DirectoryWatcher::watchedFolders() const
{
    return int(d->folders.size());
}

void DirectoryWatcher::setSettleTime(int milliseconds)
{
    d->settleTime = qMax(0, milliseconds);
}

int DirectoryWatcher::settleTime() const
{
    return d->settleTime;
}

void DirectoryWatcher::onDirMod(const QString& folder)
{
    d->handleFolder(folder);
}

void DirectoryWatcher::onFilemod(const QString& file)
{
    d->handleFile(file);
}

// Starting and stopping

DirectoryWatcherPrivate::DirectoryWatcherPrivate(DirectoryWatcher* watcher)
    : q(watcher)
    , mQuiet(new QTimer(watcher))
    , mSettling(new QTimer(watcher))
{
    for (QTimer* timer : {mQuiet, mSettling})
        timer->setSingleShot(true);
    QObject::connect(mQuiet, &QTimer::timeout, q, [this] { lookOnceQuiet(); });
    QObject::connect(mSettling, &QTimer::timeout, q, [this] { announceSettled(); });
}

void DirectoryWatcherPrivate::begin(const QString& root)
{
    end();
    rootPath = root;
    mRootAbsolute = QDir(root).absolutePath();
    platform.begin(q);
    if (!QDir(root).exists())
        return;
    mGuard.watch(root, q, [this] { checkRoot(); });
    // Changes during the scan are found by the comparison that follows.
    noteActivity(rootPath, longWait);
}

void DirectoryWatcherPrivate::end()
{
    ++round;
    mGuard.stop();
    mQuiet->stop();
    mSettling->stop();
    mIsSettled = true;
    mActivity = 0;
    rootPath.clear();
    files.clear();
    folders.clear();
    unwatched.clear();
    mRefused.clear();
    mSecondLooks.clear();
    mTouched.clear();
    mReplacedFolders.clear();
    platform.end(mNotifications > 0);
}

// Notifications

void DirectoryWatcherPrivate::handleFolder(const QString& folder)
{
    const WatcherTurn turn(this);
    const QString path = asGiven(folder);
    ++mNotifications;
    look(path, Scope::Entries, Refusal::EndsLook);
    if (turn.isWatcherGone())
        return;
    --mNotifications;
    if (turn.isOver())
        return;

    lookAgainSoon(path);
    // For a renamed folder and its content, notifications carry the old path.
    if (stateOf(folder).isMissing())
        lookAgainSoon(rootPath);
    noteActivity(path, turn.elapsed());
}

void DirectoryWatcherPrivate::handleFile(const QString& file)
{
    const WatcherTurn turn(this);
    const FileState state = stateOf(file);
    const bool isKnown = files.contains(file);
    const bool isGone = state.isMissing() || (isKnown && state.isFolder());
    if (isGone) {
        platform.removeFile(file);
        files.remove(file);
        unwatched.remove(file);
    } else if (isKnown) {
        // The watch belongs to the old file, which may have been replaced or created again under
        // the same name.
        if (!state.isSameFile(files.value(file)) || !platform.isWatched(file)) {
            platform.removeFile(file);
            rememberRefused(platform.addFiles({file}));
        }
        files.insert(file, state);
    }

    mIsSettled = false;
    ++mNotifications;
    if (isGone)
        Q_EMIT q->deletedFile(file);
    else
        Q_EMIT q->modifiedFile(file);
    if (turn.isWatcherGone())
        return;
    --mNotifications;
    if (turn.isOver())
        return;
    noteActivity(folderOf(file), turn.elapsed());
    checkReported(file);
    announceRefusals();
}

/// The root's path may now lead to another folder, or to none.
void DirectoryWatcherPrivate::checkRoot()
{
    const FileState state = stateOf(rootPath);
    if (platform.isActive() && state.kind != FileState::Kind::Unknown
        && !state.isSameFile(folders.value(rootPath))) {
        lookAgainSoon(rootPath);
        noteActivity(rootPath, 0);
    }
}

// Once it is quiet

/// \a handledFor is how long handling the notification took, in milliseconds, while others had to
/// wait.
void DirectoryWatcherPrivate::noteActivity(const QString& folder, qint64 handledFor)
{
    mTouched.insert(folder.endsWith(QLatin1Char('/')) ? folderOf(folder) : folder);
    mActivity += handledFor >= longWait ? queueLimit : 1;
    if (!mQuiet->isActive())
        mSinceQuiet.start();
    if (!mQuiet->isActive() || mSinceQuiet.elapsed() < longestActivity)
        mQuiet->start(quietTime);
    if (!mIsSettled)
        mSettling->start(settleTime);
}

/// Notifications are incomplete: when a file is renamed over another one, the watch may remain with
/// either of them or with none, and notifications that wait for too long are dropped. Therefore the
/// files of each folder in which something happened are compared with their last known state.
void DirectoryWatcherPrivate::lookOnceQuiet()
{
    QSet<QString> touched;
    touched.swap(mTouched);
    const bool isAllTouched = mActivity >= queueLimit;
    mActivity = 0;
    QStringList candidates;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        if (isAllTouched || touched.contains(folderOf(file.key())))
            candidates.append(file.key());
    }
    // While folders are exchanged repeatedly, a slot may read a file other than the one that exists
    // before and after it.
    for (auto replaced = mReplacedFolders.cbegin(); replaced != mReplacedFolders.cend();
         ++replaced) {
        const QStringList below =
            replaced.value() > 1 ? filesBelow(asGiven(replaced.key())) : QStringList();
        for (const QString& file : below)
            files.insert(file, FileState());
        candidates += below;
    }
    mReplacedFolders.clear();
    for (auto path = unwatched.begin(); path != unwatched.end();) {
        const FileState state = stateOf(path.key());
        if (state != path.value())
            lookAgainSoon(folderOf(path.key()));
        path = state.isMissing() ? unwatched.erase(path) : ++path;
    }
    if (reportChangedFiles(candidates) && isAllTouched)
        lookAgainSoon(rootPath);
}

void DirectoryWatcherPrivate::announceSettled()
{
    if (mQuiet->isActive() || !mSecondLooks.isEmpty()) {
        mSettling->start(settleTime);
        return;
    }
    mIsSettled = true;
    Q_EMIT q->settled();
}

/// If the file that was just reported has been moved away meanwhile, perhaps with its folder, slots
/// found a different file or none. It may be back before the next comparison, and is then reported
/// again.
void DirectoryWatcherPrivate::checkReported(const QString& file)
{
    const auto known = files.find(file);
    if (known == files.end() || stateOf(file).isSameFile(known.value()))
        return;
    known.value() = FileState();
    noteActivity(folderOf(file), 0);
}

// Refused watches

void DirectoryWatcherPrivate::logRefused(const QStringList& paths)
{
    ORVAUTILS_LOG_CRITICAL_IN("addDir")
        << "Impossible to add to Watcher :"
        << QLatin1Char('(') + paths.join(QStringLiteral(", ")) + QLatin1Char(')');
}

void DirectoryWatcherPrivate::rememberRefused(const QStringList& paths)
{
    for (const QString& path : paths) {
        const FileState state = stateOf(path);
        if (state.isMissing())
            continue;
        if (!unwatched.contains(path))
            mRefused.append(path);
        unwatched.insert(path, state);
    }
}

void DirectoryWatcherPrivate::announceRefusals()
{
    if (mRefused.isEmpty() || isScanning)
        return;
    QStringList paths;
    paths.swap(mRefused);
    Q_EMIT q->unwatched(paths, OrvaUtilsPrivate::refusalReason(paths));
}

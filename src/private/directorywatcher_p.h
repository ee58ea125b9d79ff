// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DirectoryWatcherPrivate: the state of a DirectoryWatcher, and how it scans a tree.

#ifndef ORVAUTILS_DIRECTORYWATCHER_P_H
#define ORVAUTILS_DIRECTORYWATCHER_P_H

#include "DirectoryWatcher.h"
#include "filestate_p.h"
#include "platformwatches_p.h"
#include "rootguard_p.h"

#include <QElapsedTimer>
#include <QHash>
#include <QPointer>
#include <QSet>
#include <QStringList>

class QTimer;

namespace OrvaUtilsPrivate {

class DirectoryWatcherPrivate
{
public:
    /// How much of a folder look() covers.
    enum class Scope {
        Entries, ///< its files and sub-folders, and the trees of new sub-folders
        Tree ///< everything in it
    };

    /// What look() does when the platform refuses to watch files.
    enum class Refusal {
        EndsLook, ///< nothing is reported
        IsSkipped ///< the other files are reported
    };

    explicit DirectoryWatcherPrivate(DirectoryWatcher* watcher);

    void begin(const QString& root);
    void end();
    bool look(const QString& folder, Scope scope, Refusal refusal, QStringList* listed = nullptr);
    void lookAgainSoon(const QString& folder);
    void lookOnceQuiet();
    void handleFolder(const QString& folder);
    void handleFile(const QString& file);
    void announceRefusals();

    DirectoryWatcher* const q;
    PlatformWatches platform;
    QString rootPath;
    int round = 0; // counts the calls of setPath() and stop()
    bool isScanning = false; // for what exists at the beginning

    // The watched files that have been reported or existed at the beginning, and the watched
    // folders, each with its state at that time. Sub-folders are known by their absolute paths.
    QHash<QString, FileState> files;
    QHash<QString, FileState> folders;
    // What the platform refused to watch, with its state at that time.
    QHash<QString, FileState> unwatched;

    int settleTime = 500;

private:
    Q_DISABLE_COPY(DirectoryWatcherPrivate)

    QStringList filesIn(const QString& folder, Scope scope, QStringList* foundFolders) const;
    QStringList foldersIn(const QString& folder, Scope scope) const;
    QStringList withoutRefused(const QStringList& paths, Refusal refusal) const;
    void watchTop(const QString& folder);
    bool watchFiles(const QStringList& found, Refusal refusal);
    bool watchFolders(const QString& folder, const QStringList& found, Refusal refusal);
    static void logRefused(const QStringList& paths);
    void rememberRefused(const QStringList& paths);

    void lookAgain();
    bool forgetFoldersReplacedBy(const QStringList& newFiles);
    bool reportFilesReplacedBy(const QStringList& found);
    QStringList forgetFolders(const QString& folder, bool onlyChanged);
    bool reportVanishedFiles(const QString& folder, const QSet<QString>& present);
    bool reportChangedFiles(const QStringList& candidates);
    bool areAllFiles(const QString& folder, const QStringList& listed) const;
    QStringList filesBelow(const QString& folder) const;

    void checkRoot();
    void checkReported(const QString& file);
    void noteActivity(const QString& folder, qint64 handledFor);
    void announceSettled();
    QString asGiven(const QString& path) const;
    QString absolute(const QString& path) const;

    QString mRootAbsolute;
    RootGuard mGuard;
    QStringList mRefused; // what is still to be announced
    QSet<QString> mSecondLooks; // the folders that wait for a second look
    // Since the last comparison of files with their known state:
    QSet<QString> mTouched; // the folders in which something happened
    QHash<QString, int> mReplacedFolders; // how often each folder was found to be replaced
    int mActivity = 0; // counts notifications; one that took long counts as many
    QElapsedTimer mSinceQuiet;
    QTimer* const mQuiet; // child of the watcher, like mSettling
    QTimer* const mSettling;
    bool mIsSettled = true;
    int mReports = 0; // of files that were added
    int mNotifications = 0; // of the platform, being handled now
};

/// The handling of one notification or call. The slots that it calls may delete the watcher or give
/// it another path; isOver() says whether they did.
class WatcherTurn
{
public:
    explicit WatcherTurn(const DirectoryWatcherPrivate* d)
        : mWatcher(d->q)
        , mPrivate(d)
        , mRound(d->round)
    {
        mClock.start();
    }

    bool isWatcherGone() const { return !mWatcher; }
    bool isOver() const { return !mWatcher || mPrivate->round != mRound; }
    qint64 elapsed() const { return mClock.elapsed(); }

private:
    const QPointer<DirectoryWatcher> mWatcher;
    const DirectoryWatcherPrivate* const mPrivate;
    const int mRound;
    QElapsedTimer mClock;
};

/// The folder of a file, or the folder itself if \a path ends with "/".
inline QString folderOf(const QString& path)
{
    return path.left(qMax(0, path.lastIndexOf(QLatin1Char('/'))));
}

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_DIRECTORYWATCHER_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DirectoryWatcher: the files that appear, change and vanish in a folder tree.

#ifndef ORVAUTILS_DIRECTORYWATCHER_H
#define ORVAUTILS_DIRECTORYWATCHER_H

#include "orvautils_export.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace OrvaUtilsPrivate {
class DirectoryWatcherPrivate;
} // namespace OrvaUtilsPrivate

/// Watches every visible file and folder of a tree through QFileSystemWatcher and turns its
/// notifications into signals for single files.
///
/// \code
/// DirectoryWatcher watcher;
/// connect(&watcher, &DirectoryWatcher::addedFiles, this, &Importer::import);
/// connect(&watcher, &DirectoryWatcher::settled, this, &Importer::publish);
/// if (!watcher.setPath(project + "/photos"))
///     warnThatChangesMayBeMissed();
/// \endcode
///
/// It works in the event loop of the thread that owns it; move it there before setPath(). Every
/// signal is sent from that loop, unwatched() from setPath() and addDir() too. A slot may take
/// long, delete the watcher, stop it or give it another path.
///
/// Paths in signals are the root as given to setPath(), "/", and the path relative to it. A
/// relative root means the current folder of the moment: pass an absolute one if that may change. A
/// renamed file is reported as deleted and as added. Hidden files and folders, and those whose
/// names on disk are not valid in the system's encoding, are neither watched nor reported. A file
/// counts as deleted when the nearest readable folder above it no longer lists the entry that leads
/// to it. A folder that cannot be read for a moment does not make its files count as deleted.
///
/// Files and folders may replace each other in one step, and the root may be moved away, come back
/// or be created again: the watcher follows paths, and whatever exists at them. For this it also
/// watches the folders above the root. Changes without a notification are found by comparing files
/// with their last known state (inode and time of change, if the system has these), once nothing
/// has happened for 100 milliseconds, or after one second of continuous activity.
///
/// Each file and each folder takes one of the platform's watches. A tree that needs more than the
/// platform grants is watched in part, which is reported by the record "Impossible to add to
/// Watcher :", by the result false, and by unwatched() with the reason.
class ORVAUTILS_EXPORT DirectoryWatcher : public QObject
{
    Q_OBJECT

public:
    /// A watcher without a folder; see setPath().
    explicit DirectoryWatcher(QObject* parent = nullptr);

    /// Stops watching. A slot connected to one of its signals may delete the watcher.
    ~DirectoryWatcher() override;

    /// Watches the tree under the folder \a root instead of what was watched before. Files that
    /// exist already are not reported.
    ///
    /// True when the whole tree is watched. False when \a root does not exist, which is logged as
    /// "Wrong path" (LogType 4), or when addDir() returns false; what can be watched is watched
    /// nevertheless. Signals are blocked (QObject::blockSignals) while the tree is scanned;
    /// afterwards they are blocked only if they were before.
    bool setPath(const QString& root);

    /// Watches the tree under \a folder as well, and reports each visible file in it that was not
    /// watched before by addedFiles(), in no particular order.
    ///
    /// When the platform refuses files, the record "Impossible to add to Watcher :" with their
    /// paths is logged (LogType 4) and the result is false. In that case nothing is reported at
    /// once and no folder is watched; both follow from the event loop for what was not refused.
    /// When the platform refuses folders, the same record names them, and the result is false as
    /// well. If \a folder itself is refused, only unwatched() reports it. For a folder that does
    /// not exist the result is true, and nothing is logged. Before setPath() the result is false.
    bool addDir(const QString& folder);

    /// How many files are watched now; each takes a watch of the platform.
    ///
    /// \code
    /// status->setText(tr("Watching %n file(s)", nullptr, watcher.watchedFiles()));
    /// \endcode
    int watchedFiles() const;

    /// How many folders are watched now, the root included. Each takes a watch of the platform, and
    /// so do the folders above the root, which do not count here.
    ///
    /// \code
    /// if (watcher.watchedFiles() + watcher.watchedFolders() > 50000)
    ///     warnThatThisIsALargeProject();
    /// \endcode
    int watchedFolders() const;

    /// Sets after how many milliseconds without a change settled() is sent: 500 unless another time
    /// is set. Negative times count as 0. Takes effect with the next change.
    ///
    /// \code
    /// watcher.setSettleTime(2000);
    /// connect(&watcher, &DirectoryWatcher::settled, this, &Site::upload);
    /// \endcode
    void setSettleTime(int milliseconds);

    /// After how many milliseconds without a change settled() is sent.
    int settleTime() const;

public Q_SLOTS:
    /// The entries of \a folder changed: looks for new files in it and in its new sub-folders at
    /// once, and in its whole tree when control returns to the event loop, because files may appear
    /// during the first pass or while slots handle its results. The second pass also finds files
    /// that disappeared without a notification, as when a folder is renamed.
    void onDirMod(const QString& folder);

    /// The file \a file changed: reports it as deleted if it does not exist any more or is a folder
    /// now, otherwise as modified, even if it cannot be read. A file that is not watched is
    /// reported in the same way, and is not watched afterwards.
    void onFilemod(const QString& file);

    /// Stops watching: nothing more is reported, and the platform's watches are released. Call
    /// setPath() to start again. Does nothing if nothing is watched.
    ///
    /// \code
    /// connect(pauseAction, &QAction::triggered, &watcher, &DirectoryWatcher::stop);
    /// \endcode
    void stop();

Q_SIGNALS:
    /// A watched file is gone.
    void deletedFile(const QString& path);
    /// A file exists that was not watched before: one signal for each file, despite the name.
    void addedFiles(const QString& path);
    /// The content or the attributes of a watched file changed, or another file took its place.
    void modifiedFile(const QString& path);

    /// The platform refuses to watch \a paths: changes in them will be missed. \a reason is a
    /// sentence for the user, translated in the context "DirectoryWatcher": permission to read is
    /// missing, or the system's limit is reached, with its value and how to raise it. Emitted once
    /// for each path until it is watched; for what setPath() could not watch, before it returns.
    ///
    /// \code
    /// connect(&watcher, &DirectoryWatcher::unwatched, this,
    ///         [this](const QStringList& paths, const QString& reason) {
    ///             showWarning(tr("%n file(s) are not watched.", nullptr, paths.size()), reason);
    ///         });
    /// \endcode
    void unwatched(const QStringList& paths, const QString& reason);

    /// Files were reported, and nothing has happened since then for the time of setSettleTime().
    void settled();

private:
    const std::unique_ptr<OrvaUtilsPrivate::DirectoryWatcherPrivate> d;
};

#endif // ORVAUTILS_DIRECTORYWATCHER_H

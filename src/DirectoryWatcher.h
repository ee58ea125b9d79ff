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
/// signal is sent from that loop, unwatched() from setPath() and addDir() too. A receiver may take
/// its time, delete the watcher, stop it or give it another path.
///
/// Paths in signals are the root as given to setPath(), "/", and the path relative to it. A renamed
/// file is reported as deleted and as added. Hidden files and folders are neither watched nor
/// reported. A file counts as deleted when the nearest folder above it that can be read does not
/// list the way to it any more: one that cannot be read for a moment is still there.
///
/// Files and folders may take each other's places in one step, and the root may be moved away, come
/// back or be made anew: what stands at a path is what is watched. For that, the folders above the
/// root are watched as well. What notifications leave out is found by comparing files with what is
/// known of them (inode and time of change, where the system has these) once nothing has happened
/// for 100 milliseconds, or after a second in which things went on to happen.
///
/// Each file and each folder takes one of the platform's watches. A tree with more than it grants
/// is watched in part: that shows as the record "Impossible to add to Watcher :", a false result,
/// and unwatched() with the reason.
class ORVAUTILS_EXPORT DirectoryWatcher : public QObject
{
    Q_OBJECT

public:
    /// Watches nothing yet.
    explicit DirectoryWatcher(QObject* parent = nullptr);

    /// Ends the watching. A receiver of a signal may do it.
    ~DirectoryWatcher() override;

    /// Watches the tree under the folder \a root in the place of whatever was watched before. What
    /// stands there already is not reported.
    ///
    /// True when the whole tree is watched. False when \a root does not exist, which is logged as
    /// "Wrong path" (LogType 4), or when addDir() says false; what could be watched is watched all
    /// the same. Whether signals are blocked (QObject::blockSignals) is the same afterwards as
    /// before; while the tree is scanned they are.
    bool setPath(const QString& root);

    /// Watches the tree under \a folder in addition, and reports each visible file in it that was
    /// not watched before through addedFiles(), in no particular order.
    ///
    /// When the platform refuses files, the record "Impossible to add to Watcher :" with their
    /// paths is logged (LogType 4) and the answer is false; nothing is reported then, and folders
    /// are not watched in this pass. Another pass from the event loop does both for all that was
    /// not refused. When the platform refuses folders, the same record names them, and the answer
    /// is false, too. That \a folder itself is refused shows in unwatched() alone. A folder that
    /// does not exist is true and silent. Before setPath() the answer is false.
    bool addDir(const QString& folder);

    /// How many files are watched now; each takes a watch of the platform.
    ///
    /// \code
    /// status->setText(tr("Watching %n file(s)", nullptr, watcher.watchedFiles()));
    /// \endcode
    int watchedFiles() const;

    /// How many folders are watched now, the root included. Each takes a watch of the platform, and
    /// so do the folders above the root, which do not count here.
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

Q_SIGNALS:
    /// A watched file is gone.
    void deletedFile(const QString& path);
    /// A file is there that was not watched before: one signal for each file, despite the name.
    void addedFiles(const QString& path);
    /// The content or the attributes of a watched file changed, or another file took its place.
    void modifiedFile(const QString& path);

    /// The platform refuses to watch \a paths: changes in them will be missed. \a reason is a
    /// sentence for the user, translated in the context "DirectoryWatcher": permission to read is
    /// missing, or the system's limit is reached, with what it is and how to raise it. Sent once
    /// for each path until it is watched; what setPath() could not watch is named before it
    /// returns.
    ///
    /// \code
    /// connect(&watcher, &DirectoryWatcher::unwatched, this,
    ///         [this](const QStringList& paths, const QString& reason) {
    ///             showWarning(tr("%n file(s) are not watched.", nullptr, paths.size()), reason);
    ///         });
    /// \endcode
    void unwatched(const QStringList& paths, const QString& reason);

    /// Something was reported, and nothing has happened since for the time of setSettleTime().
    void settled();

public Q_SLOTS:
    /// The entries of \a folder changed: looks for new files in it and in its new sub-folders at
    /// once, and in its whole tree when control returns to the event loop, because files may appear
    /// while the first look is taken, or while receivers are busy with what it found. That second
    /// look also finds files that vanished unnoticed, as with a renamed folder.
    void onDirMod(const QString& folder);

    /// The file \a file changed: reports it as deleted when it is not there any more or is a
    /// folder by now, else as modified, also if it cannot be read. Does so for a file that is not
    /// watched, too, which is not watched afterwards either.
    void onFilemod(const QString& file);

    /// Ends the watching: nothing is reported any more, and the platform's watches are given back.
    /// setPath() begins anew. Does nothing while nothing is watched.
    void stop();

private:
    const std::unique_ptr<OrvaUtilsPrivate::DirectoryWatcherPrivate> d;
};

#endif // ORVAUTILS_DIRECTORYWATCHER_H

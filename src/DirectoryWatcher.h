// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DirectoryWatcher: the files that appear, change and vanish in a folder tree.

#ifndef ORVAUTILS_DIRECTORYWATCHER_H
#define ORVAUTILS_DIRECTORYWATCHER_H

#include "orvautils_export.h"

#include <QObject>
#include <QString>

#include <memory>

namespace OrvaUtilsPrivate {
class DirectoryWatcherPrivate;
}

/// Watches every visible file and folder of a tree through QFileSystemWatcher and turns its
/// notifications into signals for single files.
///
/// \code
/// DirectoryWatcher watcher;
/// connect(&watcher, &DirectoryWatcher::addedFiles, this, &Importer::import);
/// if (!watcher.setPath(project + "/photos"))
///     warnThatChangesMayBeMissed();
/// \endcode
///
/// It lives in the event loop of the thread that owns it; every signal comes from there, and a
/// receiver may delete the watcher or give it another path. Idle until setPath(). Each file and
/// each folder takes one of the platform's watches: a tree with more than it grants shows as the
/// record "Impossible to add to Watcher :" and a false result, and is watched in part.
///
/// Paths in signals are the root as given to setPath(), "/", and the path relative to it. A renamed
/// file is reported as deleted and as added. Hidden files and folders are neither watched nor
/// reported.
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
    /// True when the whole tree is watched; false when \a root does not exist, which is logged as
    /// "Wrong path" (LogType 4), or when addDir() says false. Whether signals are blocked
    /// (QObject::blockSignals) is the same afterwards as before.
    bool setPath(const QString& root);

    /// Watches the tree under \a folder in addition, and reports each visible file in it that was
    /// not watched before through addedFiles(), in no particular order.
    ///
    /// When the platform refuses files, the record "Impossible to add to Watcher :" with their
    /// paths is logged (LogType 4) and the answer is false; nothing is reported then, and folders
    /// are not watched in this pass. The files that were accepted are reported by the next pass.
    /// When it refuses folders, the same record names them, and the answer is false, too. A folder
    /// that does not exist is true and silent. Before setPath() the answer is false.
    bool addDir(const QString& folder);

Q_SIGNALS:
    /// A watched file is gone.
    void deletedFile(const QString& path);
    /// A file is there that was not watched before: one signal for each file, despite the name.
    void addedFiles(const QString& path);
    /// The content or the attributes of a watched file changed, or another file took its place.
    void modifiedFile(const QString& path);

public Q_SLOTS:
    /// The entries of \a folder changed: looks for new files in it and in its new sub-folders at
    /// once, and in its whole tree when control returns to the event loop, because files may appear
    /// while the first look is taken. That second look also finds files that vanished unnoticed, as
    /// with a renamed folder.
    void onDirMod(const QString& folder);

    /// The watched file \a file changed: reports it as deleted when it is not there any more, else
    /// as modified.
    void onFilemod(const QString& file);

private:
    const std::unique_ptr<OrvaUtilsPrivate::DirectoryWatcherPrivate> d;
};

#endif // ORVAUTILS_DIRECTORYWATCHER_H

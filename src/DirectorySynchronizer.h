// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DirectorySynchronizer: keeps a copy of a folder in step with it.

#ifndef ORVAUTILS_DIRECTORYSYNCHRONIZER_H
#define ORVAUTILS_DIRECTORYSYNCHRONIZER_H

#include "orvautils_export.h"

#include <QObject>
#include <QString>

#include <memory>

namespace OrvaUtilsPrivate {
class DirectorySynchronizerPrivate;
}

/// Mirrors the files of a source folder into a destination folder as they change.
///
/// \code
/// DirectorySynchronizer synchronizer;
/// connect(&synchronizer, &DirectorySynchronizer::error, this, &Publisher::warn);
/// if (synchronizer.fullSync(source, destination))
///     synchronizer.startWatcher(source, destination);
/// \endcode
///
/// It works in the event loop of the thread that owns it, and copies there, so that a large file
/// delays what comes after it. A copy or removal that fails is reported and does not stop it. Only
/// destroying it stops it. Folders that vanish from the source stay, empty, in the destination;
/// hidden files are copied by fullSync() only.
///
/// The mirror of a file is its path with every occurrence of the source path in it replaced by the
/// destination path, as plain text: where the source's path occurs once more further down, that
/// occurrence is replaced too. Deliberate. A path outside of the source has no mirror: it is an
/// error(), and nothing is touched.
class ORVAUTILS_EXPORT DirectorySynchronizer : public QObject
{
    Q_OBJECT

public:
    /// Watches nothing yet.
    explicit DirectorySynchronizer(QObject* parent = nullptr);

    /// Ends the mirroring.
    ~DirectorySynchronizer() override;

    /// Follows the changes under the folder \a source from now on, in the folder \a destination. It
    /// copies nothing: call fullSync() first.
    ///
    /// True when the whole tree is watched. Otherwise false, with the text "Watcher fail" in
    /// error() and in the log (LogType 4); what could be watched is followed all the same. A
    /// source that does not exist is reported as checkDirs() does, in addition.
    bool startWatcher(const QString& source, const QString& destination);

    /// Reports a source folder that does not exist by its path and " doesn't exist", in error() and
    /// in the log (LogType 4). The destination is not looked at. Always true.
    bool checkDirs();

    /// Makes \a destination an exact copy of \a source, see FileUtils::copyDir(): the destination
    /// is deleted and copied afresh. On failure false, with "FullSync fail" in the log (LogType 4)
    /// beside the records of FileUtils, and no signal. Independent of startWatcher().
    bool fullSync(const QString& source, const QString& destination);

Q_SIGNALS:
    /// Something could not be watched, copied ("unable to copy " and the source path) or removed
    /// ("unable to remove " and the mirror path).
    void error(const QString& message);
    /// A file was copied ("[MOD] " and the mirror path) or removed ("[DEL] " and the mirror path).
    void log(const QString& message);

public Q_SLOTS:
    /// Removes the mirror of \a path. A mirror that is gone already is an error().
    void onFileDeleted(const QString& path);

    /// Copies \a path over its mirror, whose folder is made where it is missing.
    void onFileAddedOrModified(const QString& path);

private:
    const std::unique_ptr<OrvaUtilsPrivate::DirectorySynchronizerPrivate> d;
};

#endif // ORVAUTILS_DIRECTORYSYNCHRONIZER_H

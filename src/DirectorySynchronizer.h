// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DirectorySynchronizer: keeps a copy of a folder in step with it.

#ifndef ORVAUTILS_DIRECTORYSYNCHRONIZER_H
#define ORVAUTILS_DIRECTORYSYNCHRONIZER_H

#include "FileUtils.h"
#include "orvautils_export.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace OrvaUtilsPrivate {
class DirectorySynchronizerPrivate;
} // namespace OrvaUtilsPrivate

/// Mirrors the files of a source folder into a destination folder as they change.
///
/// \code
/// DirectorySynchronizer synchronizer;
/// connect(&synchronizer, &DirectorySynchronizer::mirrored, this, &Publisher::upload);
/// connect(&synchronizer, &DirectorySynchronizer::failed, this, &Publisher::warn);
/// if (synchronizer.fullSync(source, destination))
///     synchronizer.startWatcher(source, destination);
/// \endcode
///
/// It works in the event loop of the thread that owns it, and copies there, so that a large file
/// delays what comes after it. A copy or removal that fails is reported, and the mirroring
/// continues. It ends with stop() or with the object, which a slot connected to its signals may
/// delete.
///
/// A program that reads a file of the destination while it changes finds either the old or the new
/// content, complete, even if this process is killed: each copy is made beside the mirror, under a
/// hidden name if the file system requires one, and then replaces it. The copies are not synced to
/// the disk one by one.
///
/// Folders that are removed from the source stay in the destination, without their files. If a file
/// takes the place of such a folder, the folder is removed with everything in it. Hidden files are
/// copied by fullSync() only.
///
/// The mirror of a file is its path with every occurrence of the source path in it replaced by the
/// destination path, as plain text: if the source path occurs again further down, that occurrence
/// is replaced too. This is deliberate. A path outside of the source has no mirror: it is an
/// error(), and nothing is touched.
///
/// Pass absolute paths. Relative ones lead elsewhere once the current folder changes: every change
/// is an error() then, and no file is touched.
class ORVAUTILS_EXPORT DirectorySynchronizer : public QObject
{
    Q_OBJECT

public:
    /// A synchronizer that does not follow any folder yet.
    explicit DirectorySynchronizer(QObject* parent = nullptr);

    /// Ends the mirroring.
    ~DirectorySynchronizer() override;

    /// Starts to follow the changes under the folder \a source and to repeat them in
    /// \a destination. Existing files are not copied: call fullSync() first.
    ///
    /// True when the whole tree is watched. Otherwise false, with the text "Watcher fail" in
    /// error() and in the log (LogType 4); what can be watched is followed nevertheless. A source
    /// that does not exist is reported as checkDirs() does, in addition. A destination that is
    /// empty, lies inside the source (also through links) or contains it is refused in the same
    /// way, and nothing is followed.
    bool startWatcher(const QString& source, const QString& destination);

    /// Reports a source folder that does not exist by its path and " doesn't exist", in error() and
    /// in the log (LogType 4). The destination is not checked. Always true.
    bool checkDirs();

    /// Makes \a destination an exact copy of \a source, see FileUtils::copyDir(): the destination
    /// is deleted and copied afresh, except for what the filter leaves out. On failure false, with
    /// "FullSync fail" in the log (LogType 4) in addition to the records of FileUtils, and no
    /// signal. Independent of startWatcher().
    bool fullSync(const QString& source, const QString& destination);

    /// The same, for an application that shows the progress. \a observer, which may be null,
    /// receives the progress and may cancel, which counts as a failure; what was copied stays.
    /// \a error, which may be null, is set on failure only, to the first reason, as a sentence for
    /// the user.
    ///
    /// \code
    /// QString error;
    /// const auto show = [&](const FileUtils::TreeProgress& progress) {
    ///     dialog.setValue(progress.files);
    ///     return !dialog.wasCanceled();
    /// };
    /// if (!synchronizer.fullSync(source, destination, show, &error))
    ///     QMessageBox::warning(this, tr("Mirror"), error);
    /// \endcode
    bool fullSync(const QString& source, const QString& destination,
                  const FileUtils::TreeObserver& observer, QString* error = nullptr);

    /// Sets the filter that decides what belongs in the mirror, by its path relative to the source.
    /// It is called for each file and each folder above it; a folder for which it returns false is
    /// left out with everything in it. What it leaves out is neither copied, also by fullSync(),
    /// nor removed from the destination when it vanishes from the source, nor compared by
    /// isEqual(). A null filter, the default, leaves nothing out. The filter may set another one.
    ///
    /// \code
    /// synchronizer.setFilter([](const QString& path) {
    ///     return path != QLatin1String("lockfile") && !path.startsWith(QLatin1String("drafts"));
    /// });
    /// \endcode
    void setFilter(const std::function<bool(const QString& relativePath)>& filter);

    /// Whether the destination contains, byte for byte, what it should: a mirror of each visible
    /// file of the source, and no other visible files. Folders and folders' own attributes do not
    /// count. Compares the folders given to startWatcher() last, and is false before that. Each
    /// file is read, in the calling thread.
    ///
    /// Paths relative to the source of files that differ, are missing or have no counterpart, and
    /// of folders that cannot be read, are appended to \a differences, which may be null, sorted as
    /// by QStringList::sort().
    ///
    /// \code
    /// QStringList differences;
    /// if (!synchronizer.isEqual(&differences))
    ///     qWarning() << "not in step:" << differences;
    /// \endcode
    bool isEqual(QStringList* differences = nullptr) const;

Q_SIGNALS:
    /// Something could not be watched, copied ("unable to copy " and the source path) or removed
    /// ("unable to remove " and the mirror path).
    void error(const QString& message);
    /// A file was copied ("[MOD] " and the mirror path) or removed ("[DEL] " and the mirror path).
    void log(const QString& message);

    /// The file \a source was copied to \a mirror. Follows log().
    ///
    /// \code
    /// connect(&synchronizer, &DirectorySynchronizer::mirrored, this,
    ///         [this](const QString&, const QString& mirror) { upload(mirror); });
    /// \endcode
    void mirrored(const QString& source, const QString& mirror);
    /// The file \a mirror was removed. Follows log().
    ///
    /// \code
    /// connect(&synchronizer, &DirectorySynchronizer::removed, this, &Publisher::removeFromServer);
    /// \endcode
    void removed(const QString& mirror);
    /// Something failed at \a path, for \a reason: a source file that could not be copied, a mirror
    /// that could not be removed, a file or folder that cannot be watched. Follows error() if that
    /// is emitted. The reason is the system's, or translated in the context "DirectorySynchronizer"
    /// or "DirectoryWatcher".
    ///
    /// \code
    /// connect(&synchronizer, &DirectorySynchronizer::failed, this,
    ///         [this](const QString& path, const QString& reason) {
    ///             list->addItem(QDir::toNativeSeparators(path) + ": " + reason);
    ///         });
    /// \endcode
    void failed(const QString& path, const QString& reason);

public Q_SLOTS:
    /// Removes the mirror of \a path. If it does not exist, that is reported as error().
    void onFileDeleted(const QString& path);

    /// Copies \a path over its mirror, whose folder is created if it is missing. A file in place of
    /// that folder, or a folder in place of the mirror, is removed first.
    void onFileAddedOrModified(const QString& path);

    /// Stops following the source. Call startWatcher() to start again.
    ///
    /// \code
    /// synchronizer.stop(); // while the site is published
    /// publish();
    /// synchronizer.startWatcher(source, destination); // changes meanwhile: fullSync(), isEqual()
    /// \endcode
    void stop();

private:
    const std::unique_ptr<OrvaUtilsPrivate::DirectorySynchronizerPrivate> d;
};

#endif // ORVAUTILS_DIRECTORYSYNCHRONIZER_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PlatformWatches: the files and folders that a DirectoryWatcher has the platform watch.
//
// QFileSystemWatcher looks through the list of all its files for each one that is added. One that
// watches thousands of files therefore spends most of its time on that, so large trees are
// distributed among several.

#ifndef ORVAUTILS_PLATFORMWATCHES_P_H
#define ORVAUTILS_PLATFORMWATCHES_P_H

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

class DirectoryWatcher;
class QFileSystemWatcher;

namespace OrvaUtilsPrivate {

class PlatformWatches
{
public:
    PlatformWatches() = default;
    ~PlatformWatches();

    /// Begins without any watches. Notifications go to onFilemod() and onDirMod() of \a watcher.
    void begin(DirectoryWatcher* watcher);

    /// Releases all watches. Safe during a notification if \a isNotifying is true.
    void end(bool isNotifying);

    bool isActive() const { return !mShares.empty(); }

    /// Return the paths that the platform refuses to watch; those that are already watched are not
    /// among them.
    QStringList addFiles(const QStringList& paths);
    QStringList addFolders(const QStringList& paths);

    /// Whether \a file is still watched. The platform itself removes files that it finds deleted.
    bool isWatched(const QString& file) const;

    void removeFile(const QString& path);
    void removeFolders(const QStringList& paths);

private:
    Q_DISABLE_COPY(PlatformWatches)

    void addShare();
    QFileSystemWatcher* shareForMore();

    DirectoryWatcher* mWatcher = nullptr;
    // Children of the watcher. The first one also has all folders.
    std::vector<QFileSystemWatcher*> mShares;
    // Where each file was added; the platform may have removed it since.
    QHash<QString, QFileSystemWatcher*> mShareOf;
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PLATFORMWATCHES_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "treecopy_p.h"

#include "filecopy_p.h"
#include "filesystem_p.h"
#include "folderpath_p.h"
#include "logrecord_p.h"
#include "treeremoval_p.h"
#include "treetask_p.h"
#include "treewalk_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>

namespace OrvaUtilsPrivate {

namespace {

/// Whether the absolute \a path or a folder on the way to it is \a folder.
bool passesThrough(QString path, const QString& folder)
{
    while (QDir::isAbsolutePath(path)) {
        if (isSameFile(path, folder))
            return true;
        const QString parent = QFileInfo(path).path();
        if (parent == path)
            break;
        path = parent;
    }
    return false;
}

/// Whether \a path, which need not exist yet, is \a folder or lies inside it: by its name, or by
/// where its links lead.
bool liesInside(QString path, const QString& folder)
{
    QString parent = QFileInfo(path).path();
    while (!QFileInfo::exists(path) && parent != path) {
        path = parent;
        parent = QFileInfo(path).path();
    }
    return passesThrough(path, folder)
        || passesThrough(QFileInfo(path).canonicalFilePath(), folder);
}

bool cannotCopy(TreeTask& task, const QString& source, const QString& destination,
                const QString& reason = QString())
{
    ORVAUTILS_LOG_WARNING_OF("FileUtils", "copyDir")
        << "unable to copy" << source << "to" << destination;
    return task.fail(QT_TRANSLATE_NOOP("FileUtils", "%1 cannot be copied"), source, reason);
}

bool cannotMake(TreeTask& task, const QString& folder)
{
    ORVAUTILS_LOG_WARNING_OF("FileUtils", "copyDir") << "unable to mkdir" << folder;
    return task.fail(QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be made"), folder);
}

/// The entries of a folder, and whether they are complete.
struct Listing
{
    std::vector<FolderEntry> entries;
    bool isIntact = false;
};

Listing listingOf(const QString& path)
{
    Listing listing;
    listing.isIntact = readFolder(path, listing.entries);
    return listing;
}

class TreeCopy
{
public:
    explicit TreeCopy(TreeTask& task)
        : mTask(task)
    { }

    /// Reads the whole tree, so that its number of files is known.
    void foresee(const QString& source);

    bool copy(const QString& source, const QString& destination, const Walk* parent);

private:
    int countFiles(const QString& path, const Walk* parent);
    bool copyFile(const QString& source, const QString& destination, bool isNew);

    TreeTask& mTask;
    QHash<QString, Listing> mForeseen;
};

void TreeCopy::foresee(const QString& source)
{
    mTask.setTotals(countFiles(source, nullptr), -1);
}

int TreeCopy::countFiles(const QString& path, const Walk* parent)
{
    const Walk walk = {path, parent};
    // Kept for the copy, which then need not read the folder again.
    const auto listing = mForeseen.insert(path, listingOf(path));
    int count = 0;
    std::vector<QString> folders;
    for (const FolderEntry& entry : listing->entries) {
        const QString entryPath = joined(path, entry.name);
        if (!mTask.isWanted(entryPath))
            continue;
        if (entry.kind == EntryKind::File)
            ++count;
        else if (leadsOn(entry, walk))
            folders.push_back(entryPath);
    }
    for (const QString& folder : folders)
        count += countFiles(folder, &walk);
    return count;
}

bool TreeCopy::copy(const QString& source, const QString& destination, const Walk* parent)
{
    const Walk walk = {source, parent};
    const Listing listing = mForeseen.contains(source) ? mForeseen.take(source) : listingOf(source);
    if (!listing.isIntact)
        return cannotCopy(mTask, source, destination);
    const bool isNew = !QDir(destination).exists();
    if (isNew && !QDir().mkpath(destination))
        return cannotMake(mTask, destination);
    for (const FolderEntry& entry : listing.entries) {
        const QString path = joined(source, entry.name);
        const QString target = joined(destination, entry.name);
        if (!mTask.isWanted(path))
            continue;
        if (!entry.isReachable)
            return cannotCopy(mTask, path, target);
        if (entry.kind == EntryKind::File) {
            if (!copyFile(path, target, isNew))
                return false;
        } else if (leadsOn(entry, walk)) {
            // Links on either side can lead out of two separate trees into a common one.
            if ((entry.isLink || (!isNew && QFileInfo(target).isSymLink()))
                && (overlap(path, target) || liesInside(target, walk.start().path)))
                return cannotCopy(mTask, path, target);
            if (!copy(path, target, &walk))
                return false;
        }
    }
    return true;
}

bool TreeCopy::copyFile(const QString& source, const QString& destination, bool isNew)
{
    // In a new folder nothing can be in the way, which is most of what forceCopy() has to check. If
    // the quick way fails, the other one tries again and reports the reason.
    qint64 size = 0;
    if (!isNew || !copyNewFile(source, destination, &size)) {
        QString reason;
        if (!OrvaUtilsPrivate::copyFile(source, destination, OldFile::RemovedFirstInTree, &reason))
            return cannotCopy(mTask, source, destination, reason);
        if (mTask.isObserved())
            size = QFileInfo(destination).size();
    }
    return mTask.advance(destination, size);
}

/// Removes what is at the destination of a copy that does not merge.
bool makeWay(const QString& destination, TreeTask& task)
{
    // A link is removed, not the folder that it points to.
    const bool isLink = QFileInfo(destination).isSymLink();
    if (isLink ? removeFile(destination) : removeTree(destination))
        return true;
    ORVAUTILS_LOG_WARNING_OF("FileUtils", "copyDir")
        << "unable to removeRecursively" << destination;
    return task.fail(QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be removed"),
                     destination);
}

} // namespace

bool overlap(const QString& source, const QString& destination)
{
    return liesInside(destination, source) || liesInside(source, destination);
}

bool copyDir(const QString& source, const QString& destination, bool merge, TreeTask& task)
{
    // An empty path would mean the current folder, which must not be copied or deleted by mistake.
    const QString from = source.isEmpty() ? source : QDir(source).absolutePath();
    const QString to = destination.isEmpty() ? destination : QDir(destination).absolutePath();
    if (from.isEmpty() || !QDir(from).exists()) {
        ORVAUTILS_LOG_CRITICAL_OF("FileUtils", "copyDir") << from << "Doesnt exists";
        return task.fail(QT_TRANSLATE_NOOP("FileUtils", "The folder %1 does not exist"), from);
    }
    if (to.isEmpty())
        return cannotMake(task, to);
    if (overlap(from, to))
        return cannotCopy(task, from, to);
    TreeCopy tree(task);
    if (task.isObserved())
        tree.foresee(from);
    if (!merge && QDir(to).exists()) {
        // A source that cannot be read must not destroy the destination.
        if (!listingOf(from).isIntact)
            return cannotCopy(task, from, to);
        if (!makeWay(to, task))
            return false;
    }
    if (!tree.copy(from, to, nullptr))
        return false;
    QString reason;
    return putFileSystemOnDisk(to, &reason) ? task.finish() : cannotCopy(task, from, to, reason);
}

} // namespace OrvaUtilsPrivate

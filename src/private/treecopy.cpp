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

bool copyTreeFile(const QString& source, const QString& destination, bool isNew, TreeTask& task)
{
    // In a new folder nothing can be in the way, which is most of what forceCopy() looks after.
    // Where the quick way fails, it tries again and tells the reason.
    QString reason;
    if (!(isNew && copyNewFile(source, destination))
        && !copyFile(source, destination, OldFile::RemovedFirstInTree, &reason))
        return cannotCopy(task, source, destination, reason);
    return !task.isObserved() || task.advance(destination, QFileInfo(destination).size());
}

bool copyTree(const QString& source, const QString& destination, const Walk* parent, TreeTask& task)
{
    const Walk walk = {source, parent};
    std::vector<FolderEntry> entries;
    if (!readFolder(source, entries))
        return cannotCopy(task, source, destination);
    const bool isNew = !QDir(destination).exists();
    if (isNew && !QDir().mkpath(destination))
        return cannotMake(task, destination);
    for (const FolderEntry& entry : entries) {
        const QString path = joined(source, entry.name);
        const QString target = joined(destination, entry.name);
        if (!task.isWanted(path))
            continue;
        if (!entry.isReachable)
            return cannotCopy(task, path, target);
        if (entry.kind == EntryKind::File) {
            if (!copyTreeFile(path, target, isNew, task))
                return false;
        } else if (leadsOn(entry, walk)) {
            // Links on either side can lead out of two separate trees into a common one.
            if ((entry.isLink || (!isNew && QFileInfo(target).isSymLink()))
                && (overlap(path, target) || liesInside(target, walk.start().path)))
                return cannotCopy(task, path, target);
            if (!copyTree(path, target, &walk, task))
                return false;
        }
    }
    return true;
}

} // namespace

bool overlap(const QString& source, const QString& destination)
{
    return liesInside(destination, source) || liesInside(source, destination);
}

bool copyDir(const QString& source, const QString& destination, bool merge, TreeTask& task)
{
    // An empty path would mean the current folder, which nobody asked to copy or to delete.
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
    if (!merge && QDir(to).exists()) {
        // The folder behind a link is not the destination's to empty.
        const bool isLink = QFileInfo(to).isSymLink();
        if (!(isLink ? removeFile(to) : removeTree(to))) {
            ORVAUTILS_LOG_WARNING_OF("FileUtils", "copyDir") << "unable to removeRecursively" << to;
            return task.fail(QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be removed"), to);
        }
    }
    if (!copyTree(from, to, nullptr, task))
        return false;
    QString reason;
    return putFileSystemOnDisk(to, &reason) ? task.finish() : cannotCopy(task, from, to, reason);
}

} // namespace OrvaUtilsPrivate

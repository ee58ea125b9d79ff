// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "treeremoval_p.h"

#include "filesystem_p.h"
#include "folderpath_p.h"
#include "treetask_p.h"
#include "treewalk_p.h"

#include <QCoreApplication>
#include <QDir>

namespace OrvaUtilsPrivate {

bool removeTree(const QString& path, TreeTask& task)
{
    std::vector<FolderEntry> entries;
    bool removed = readFolder(path, entries);
    for (const FolderEntry& entry : entries) {
        const QString entryPath = joined(path, entry.name);
        if (entry.kind == EntryKind::Folder && !entry.isLink)
            removed = removeTree(entryPath, task) && removed;
        else if (removeFile(entryPath))
            removed = task.advance(entryPath, 0) && removed;
        else
            removed = task.fail(QT_TRANSLATE_NOOP("FileUtils", "%1 cannot be removed"), entryPath);
        if (task.isCancelled())
            return false;
    }
    // A folder that cannot be read may still be an empty one.
    if (!removed && !entries.empty())
        return false;
    return QDir().rmdir(path)
        || task.fail(QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be removed"), path);
}

bool removeTree(const QString& path)
{
    TreeTask task;
    return removeTree(path, task);
}

} // namespace OrvaUtilsPrivate

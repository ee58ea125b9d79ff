// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "treeremoval_p.h"

#include "filesystem_p.h"
#include "folderpath_p.h"
#include "treetask_p.h"
#include "treewalk_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace OrvaUtilsPrivate {

namespace {

/// Removes a file or link, and counts it.
bool removeTreeFile(const QString& path, TreeTask& task)
{
    if (removeFile(path))
        return task.advance(path, 0);
    return task.fail(QT_TRANSLATE_NOOP("FileUtils", "%1 cannot be removed"), path);
}

/// How many files and links will be removed with the content of a folder.
int countOfRemoval(const QString& folder, bool recursive)
{
    int count = 0;
    for (const FolderEntry& entry : entriesOf(folder)) {
        if (isRemovedAsFile(entry))
            ++count;
        else if (entry.kind == EntryKind::Folder && recursive)
            count += countOfRemoval(joined(folder, entry.name), true);
    }
    return count;
}

/// FileUtils::old::removeDirectory(), which stops at the first entry that cannot be removed and
/// reports it.
class DirectoryRemoval
{
public:
    DirectoryRemoval(bool isRecursive, QString* error)
        : mIsRecursive(isRecursive)
        , mError(error)
    { }

    bool remove(const QString& path, int depth)
    {
        if (path.isEmpty())
            return false;
        if (depth <= 0)
            return fail(QStringLiteral("FileUtils::removeDirectory ") + path
                        + QStringLiteral(" profondeur max atteinte !"));
        // Without a "/" at the end, which would make the system follow a link.
        const QString folder = QDir(path).absolutePath();
        if (!QDir(folder).exists())
            return fail(QStringLiteral("FileUtils::removeDirectory: ") + path
                        + QStringLiteral(" doesn't exist"));
        const bool isLink = QFileInfo(folder).isSymLink();
        if (!isLink && !removeContent(folder, depth))
            return false;
        // Removing as a file is for links; for a real folder it only provides the reason why it
        // stays.
        QFile link(folder);
        if ((!isLink && QDir().rmdir(folder)) || link.remove())
            return true;
        return fail(
            QStringLiteral("Failed to remove directory: %1 (%2)").arg(path, link.errorString()));
    }

private:
    /// False as soon as something fails. What is neither a file nor a folder stays, and makes
    /// removing the folder fail.
    bool removeContent(const QString& folder, int depth)
    {
        std::vector<FolderEntry> entries = entriesOf(folder);
        sortByNameIgnoringCase(entries);
        for (const FolderEntry& entry : entries) {
            const QString path = joined(folder, entry.name);
            const bool isLinkToNowhere = entry.isLink && entry.kind == EntryKind::Other;
            if (!entry.isReachable || isLinkToNowhere)
                continue;
            if (isRemovedAsFile(entry)
                    ? !removeAsFile(path)
                    : entry.kind == EntryKind::Folder && !removeFolder(path, entry.name, depth))
                return false;
        }
        return true;
    }

    bool removeAsFile(const QString& path) const
    {
        if (removeFile(path))
            return true;
        // Tries again with the class that reports the reason.
        QFile file(path);
        return file.remove()
            || fail(QStringLiteral("Failed to remove file: %1 (%2)")
                        .arg(file.fileName(), file.errorString()));
    }

    bool removeFolder(const QString& path, const QString& name, int depth)
    {
        if (!mIsRecursive)
            return fail(QStringLiteral("Failed to remove file: %1 (%2)")
                            .arg(name, QStringLiteral("non recursive operation")));
        return remove(path, depth - 1);
    }

    bool fail(const QString& message) const
    {
        if (mError)
            *mError = message;
        return false;
    }

    const bool mIsRecursive;
    QString* const mError;
};

} // namespace

bool removeTree(const QString& path, TreeTask& task)
{
    std::vector<FolderEntry> entries;
    bool removed = readFolder(path, entries);
    for (const FolderEntry& entry : entries) {
        const QString entryPath = joined(path, entry.name);
        if (entry.kind == EntryKind::Folder && !entry.isLink)
            removed = removeTree(entryPath, task) && removed;
        else
            removed = removeTreeFile(entryPath, task) && removed;
        if (task.isCancelled())
            return false;
    }
    // A folder that cannot be read may still be empty.
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

/// Empties a folder. Returns the path of the first entry that could not be removed, or of the
/// folder if it cannot be read.
QString removeContent(const QString& folder, bool recursive, TreeTask& task)
{
    std::vector<FolderEntry> entries;
    if (!readFolder(folder, entries)) {
        task.fail(QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be read"), folder);
        return folder;
    }
    if (task.isObserved())
        task.setTotals(countOfRemoval(folder, recursive), 0);
    for (const FolderEntry& entry : entries) {
        QString path = joined(folder, entry.name);
        bool isRemoved = entry.isReachable;
        if (isRemoved && isRemovedAsFile(entry))
            isRemoved = removeTreeFile(path, task);
        else if (isRemoved && entry.kind == EntryKind::Folder && recursive)
            isRemoved = removeTree(path, task);
        if (!isRemoved || task.isCancelled()) {
            task.fail(QT_TRANSLATE_NOOP("FileUtils", "%1 cannot be removed"), path);
            return path;
        }
    }
    return QString();
}

bool removeDirectory(const QString& path, bool recursive, QString* error, int depth)
{
    DirectoryRemoval removal(recursive, error);
    return removal.remove(path, depth);
}

} // namespace OrvaUtilsPrivate

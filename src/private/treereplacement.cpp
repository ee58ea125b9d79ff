// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "treereplacement_p.h"

#include "exactcopy_p.h"
#include "filesystem_p.h"
#include "folderpath_p.h"
#include "logrecord_p.h"
#include "treecopy_p.h"
#include "treeremoval_p.h"
#include "treetask_p.h"
#include "treewalk_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace OrvaUtilsPrivate {

namespace {

bool fail(TreeTask& task, const char* text, const QString& path, const QString& reason = QString())
{
    if (!task.isCancelled())
        ORVAUTILS_LOG_WARNING_OF("FileUtils", "replaceDir")
            << "unable to replace" << path << reason;
    return task.fail(text, path, reason);
}

/// The copy of a tree, beside the one that it is to replace.
class ExactCopy
{
public:
    explicit ExactCopy(TreeTask& task)
        : mTask(task)
    { }

    /// Looks through the whole tree for what cannot be copied, and counts its files.
    bool inspect(const QString& source);

    bool copy(const QString& source, const QString& destination);

private:
    void inspectFolder(const QString& path);
    bool copyEntry(const FolderEntry& entry, const QString& source, const QString& destination);

    TreeTask& mTask;
    int mFiles = 0;
    QStringList mUnsuitable;
};

bool ExactCopy::inspect(const QString& source)
{
    inspectFolder(source);
    mTask.setTotals(mFiles, -1);
    return mUnsuitable.isEmpty()
        || fail(mTask, QT_TRANSLATE_NOOP("FileUtils", "These cannot be copied: %1"),
                mUnsuitable.join(QLatin1String(", ")));
}

void ExactCopy::inspectFolder(const QString& path)
{
    std::vector<QString> folders;
    FolderReader reader(path, EntryDetail::Kinds);
    while (reader.next()) {
        const FolderEntry& entry = reader.entry();
        const bool isSpecial = entry.kind == EntryKind::Other && !entry.isLink;
        if (!entry.isReachable || isSpecial)
            mUnsuitable.append(joined(path, entry.name));
        else if (entry.kind == EntryKind::Folder && !entry.isLink)
            folders.push_back(joined(path, entry.name));
        else
            ++mFiles;
    }
    if (!reader.isIntact())
        mUnsuitable.append(path);
    for (const QString& folder : folders)
        inspectFolder(folder);
}

bool ExactCopy::copy(const QString& source, const QString& destination)
{
    QString reason;
    if (!makePrivateFolder(destination, &reason))
        return fail(mTask, QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be made"),
                    destination, reason);
    std::vector<FolderEntry> entries;
    if (!readFolder(source, entries))
        return fail(mTask, QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be read"), source);
    for (const FolderEntry& entry : entries) {
        if (!copyEntry(entry, joined(source, entry.name), joined(destination, entry.name)))
            return false;
    }
    return finishFolderExactly(source, destination, &reason)
        || fail(mTask, QT_TRANSLATE_NOOP("FileUtils", "%1 cannot be copied"), source, reason);
}

bool ExactCopy::copyEntry(const FolderEntry& entry, const QString& source,
                          const QString& destination)
{
    if (entry.kind == EntryKind::Folder && !entry.isLink)
        return copy(source, destination);
    QString reason;
    qint64 size = 0;
    const bool isCopied = entry.isLink ? copyLinkExactly(source, destination, &reason)
                                       : copyFileExactly(source, destination, &size, &reason);
    if (!isCopied)
        return fail(mTask, QT_TRANSLATE_NOOP("FileUtils", "%1 cannot be copied"), source, reason);
    return mTask.advance(source, size);
}

void makeWritable(const QString& folder)
{
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    for (const FolderEntry& entry : entriesOf(folder)) {
        if (entry.kind == EntryKind::Folder && !entry.isLink)
            makeWritable(joined(folder, entry.name));
    }
}

/// Removes a folder that this process has made, even if its sub-folders are read-only.
void removeWholly(const QString& path)
{
    if (removeTree(path))
        return;
    makeWritable(path);
    removeTree(path);
}

/// Puts the complete copy in the place of what is there.
bool takePlace(const QString& copy, const QString& destination, QString* reason)
{
    if (!QFileInfo::exists(destination))
        return moveOver(copy, destination, reason);
    if (exchangeFolders(copy, destination))
        return true;
    // In two steps, between which there is no destination; if the second one fails, the old tree is
    // moved back.
    const QString old = pathBeside(destination);
    if (!moveOver(destination, old, reason))
        return false;
    if (!moveOver(copy, destination, reason)) {
        QString ignored;
        moveOver(old, destination, &ignored);
        return false;
    }
    return moveOver(old, copy, reason);
}

} // namespace

bool replaceDir(const QString& source, const QString& destination, TreeTask& task)
{
    const QString from = source.isEmpty() ? source : QDir(source).absolutePath();
    QString to = destination.isEmpty() ? destination : QDir(destination).absolutePath();
    if (from.isEmpty() || !QDir(from).exists())
        return fail(task, QT_TRANSLATE_NOOP("FileUtils", "The folder %1 does not exist"), from);
    const QFileInfo old(to);
    if (to.isEmpty() || (old.exists() ? !old.isDir() : old.isSymLink()))
        return fail(task, QT_TRANSLATE_NOOP("FileUtils", "%1 is not a folder"), to);
    if (old.isSymLink())
        to = old.canonicalFilePath();
    if (overlap(from, to))
        return fail(task, QT_TRANSLATE_NOOP("FileUtils", "%1 cannot be copied"), from);
    if (!FileUtils::fileMkPath(to, nullptr))
        return fail(task, QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be made"), to);

    ExactCopy tree(task);
    if (!tree.inspect(from))
        return false;
    const QString beside = pathBeside(to);
    bool isReplaced = tree.copy(from, beside);
    QString reason;
    if (isReplaced && !(putFileSystemOnDisk(beside, &reason) && takePlace(beside, to, &reason)))
        isReplaced = fail(task, QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be replaced"),
                          to, reason);
    // The old tree, or the incomplete new one.
    if (QFileInfo::exists(beside))
        removeWholly(beside);
    return isReplaced && task.finish();
}

bool moveFolderOver(const QString& path, const QString& newPath, QString* reason)
{
    if (!takePlace(path, newPath, reason))
        return false;
    if (QFileInfo::exists(path))
        removeWholly(path);
    return true;
}

} // namespace OrvaUtilsPrivate

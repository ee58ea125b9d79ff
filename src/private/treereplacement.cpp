// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "treereplacement_p.h"

#include "exactcopy_p.h"
#include "filesystem_p.h"
#include "folderpath_p.h"
#include "logrecord_p.h"
#include "treecopy_p.h"
#include "treestage_p.h"
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

/// The copy of a tree, next to the one that it is to replace.
class ExactCopy
{
public:
    explicit ExactCopy(TreeTask& task)
        : mTask(task)
    { }

    /// Looks through the whole tree for what cannot be copied, and counts its files.
    bool inspect(const QString& source);

    /// Copies the content of a folder to one that is still empty, and then the attributes of the
    /// folder itself.
    bool fill(const QString& source, const QString& destination);

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

bool ExactCopy::fill(const QString& source, const QString& destination)
{
    std::vector<FolderEntry> entries;
    if (!readFolder(source, entries))
        return fail(mTask, QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be read"), source);
    for (const FolderEntry& entry : entries) {
        if (!copyEntry(entry, joined(source, entry.name), joined(destination, entry.name)))
            return false;
    }
    QString reason;
    return finishFolderExactly(source, destination, &reason)
        || fail(mTask, QT_TRANSLATE_NOOP("FileUtils", "%1 cannot be copied"), source, reason);
}

bool ExactCopy::copyEntry(const FolderEntry& entry, const QString& source,
                          const QString& destination)
{
    QString reason;
    if (entry.kind == EntryKind::Folder && !entry.isLink) {
        return makePrivateFolder(destination, &reason)
            ? fill(source, destination)
            : fail(mTask, QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be made"),
                   destination, reason);
    }
    qint64 size = 0;
    const bool isCopied = entry.isLink ? copyLinkExactly(source, destination, &reason)
                                       : copyFileExactly(source, destination, &size, &reason);
    if (!isCopied)
        return fail(mTask, QT_TRANSLATE_NOOP("FileUtils", "%1 cannot be copied"), source, reason);
    return mTask.advance(source, size);
}

/// The absolute path of \a folder, without a "/" at its end; an empty path stays empty.
QString absolute(const QString& folder)
{
    // QDir keeps the second of two slashes at the end.
    return folder.isEmpty() ? folder : QDir::cleanPath(QDir(folder).absolutePath());
}

/// The final target of a link, even if it does not exist.
QString followed(QString path)
{
    const int mostLinks = 40; // like the system
    for (int i = 0; i < mostLinks && QFileInfo(path).isSymLink(); ++i)
        path = QFileInfo(path).symLinkTarget();
    return path;
}

} // namespace

bool replaceDir(const QString& source, const QString& destination, TreeTask& task)
{
    const QString from = absolute(source);
    QString to = absolute(destination);
    // Before anything is checked: a process that was killed may have moved the old tree aside.
    if (!to.isEmpty())
        clearAfterKills(followed(to));
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
    QString reason;
    TreeStage stage(to);
    if (!stage.begin(&reason))
        return fail(task, QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be made"),
                    stage.path(), reason);
    if (!tree.fill(from, stage.path()))
        return false;
    if (!putFileSystemOnDisk(stage.path(), &reason) || !moveFolderOver(stage.path(), to, &reason))
        return fail(task, QT_TRANSLATE_NOOP("FileUtils", "The folder %1 cannot be replaced"), to,
                    reason);
    return task.finish();
}

} // namespace OrvaUtilsPrivate

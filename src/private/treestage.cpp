// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "treestage_p.h"

#include "exactcopy_p.h"
#include "filesystem_p.h"
#include "folderpath_p.h"
#include "treeremoval_p.h"
#include "treewalk_p.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>
#include <QUuid>

namespace OrvaUtilsPrivate {

namespace {

/// The suffix of a tree that is moved aside until another one has taken its place.
const QLatin1String asideSuffix("-aside");

/// The prefix of the names of all stages of a folder. Another machine, whose locks may not be
/// visible here, uses another prefix.
QString stagePrefix(const QString& destination)
{
    const QString owner =
        QFileInfo(destination).fileName() + QLatin1Char('/') + QSysInfo::machineHostName();
    const QByteArray digest =
        QCryptographicHash::hash(owner.toUtf8(), QCryptographicHash::Sha1).toHex();
    return QLatin1String(".orvautils-") + QLatin1String(digest.left(12));
}

QString newStagePath(const QString& destination)
{
    const QByteArray digits = QUuid::createUuid().toRfc4122().toHex().right(20);
    return joined(QFileInfo(destination).path(), stagePrefix(destination) + QLatin1String(digits));
}

bool isThere(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

void makeWritable(const QString& folder)
{
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    for (const FolderEntry& entry : entriesOf(folder)) {
        if (entry.kind == EntryKind::Folder && !entry.isLink)
            makeWritable(joined(folder, entry.name));
    }
}

/// Removes a folder of our own, even if its sub-folders are read-only, or contain names that no
/// QString can represent.
void removeWholly(const QString& path)
{
    if (path.isEmpty() || !QFileInfo::exists(path) || removeTree(path))
        return;
    makeWritable(path);
    removeTreeByBytes(path);
}

} // namespace

TreeStage::TreeStage(const QString& destination)
    : mDestination(destination)
{ }

TreeStage::~TreeStage()
{
    removeWholly(mPath);
}

bool TreeStage::begin(QString* reason)
{
    // A concurrent clearAfterKills() may take a folder that is not locked yet for a leftover.
    const int mostAttempts = 10;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        mPath = newStagePath(mDestination);
        if (!makePrivateFolder(mPath, reason))
            return false;
        mLock = std::make_unique<FolderLock>();
        if (mLock->take(mPath) != FolderLock::Answer::InUse)
            break;
    }
    return true;
}

bool moveFolderOver(const QString& path, const QString& destination, QString* reason)
{
    if (!QFileInfo::exists(destination))
        return moveOver(path, destination, reason);
    if (exchangeFolders(path, destination)) {
        removeWholly(path);
        return true;
    }
    // In two steps. Between them there is no folder, but a lock and a name that show what was
    // there.
    FolderLock lock;
    lock.take(destination);
    const QString former = newStagePath(destination);
    const QString aside = former + asideSuffix;
    if (!moveOver(destination, aside, reason))
        return false;
    QString ignored;
    if (!moveOver(path, destination, reason)) {
        moveOver(aside, destination, &ignored);
        return false;
    }
    // From now on, it must not be moved back any more.
    removeWholly(moveOver(aside, former, &ignored) ? former : aside);
    return true;
}

void clearAfterKills(const QString& destination)
{
    const QString folder = QFileInfo(destination).path();
    const QString prefix = stagePrefix(destination);
    QStringList leftovers;
    FolderReader reader(folder, EntryDetail::Kinds);
    while (reader.next()) {
        const FolderEntry& entry = reader.entry();
        if (entry.kind == EntryKind::Folder && !entry.isLink && entry.name.startsWith(prefix))
            leftovers.append(entry.name);
    }
    for (const QString& name : leftovers) {
        const QString path = joined(folder, name);
        FolderLock lock;
        QString ignored;
        if (lock.take(path) != FolderLock::Answer::Taken)
            continue;
        if (!name.endsWith(asideSuffix) || isThere(destination))
            removeWholly(path);
        else
            moveOver(path, destination, &ignored);
    }
}

} // namespace OrvaUtilsPrivate

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "StaticFiles.h"

#include "FileStamp.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

/// Whether two files have the same content. Times say nothing: an old site may have been put back.
bool isSame(const QString& one, const QString& other)
{
    QFile first(one);
    QFile second(other);
    if (!first.open(QIODevice::ReadOnly) || !second.open(QIODevice::ReadOnly)
        || first.size() != second.size())
        return false;
    while (!first.atEnd()) {
        const qint64 piece = 256 * 1024;
        const QByteArray content = first.read(piece);
        if (content.isEmpty() || content != second.read(piece))
            return false;
    }
    return true;
}

} // namespace

StaticFiles::StaticFiles(const QString& folder)
    : mFolder(QFileInfo(folder).canonicalFilePath())
{
    if (QFileInfo(mFolder).isDir())
        look(QString());
}

/// \a prefix is empty or ends with "/".
void StaticFiles::look(const QString& prefix)
{
    const QFileInfoList entries =
        QDir(mFolder + QLatin1Char('/') + prefix)
            .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                           QDir::Name);
    for (const QFileInfo& entry : entries) {
        const QString name = prefix + entry.fileName();
        const QString target = entry.canonicalFilePath();
        if (entry.isSymLink() && target.isEmpty()) {
            mRefusals.append({name, tr("is a link that leads nowhere")});
        } else if (entry.isSymLink() && entry.isDir()) {
            mRefusals.append({name, tr("is a link to a folder, which is not followed")});
        } else if (entry.isSymLink() && !target.startsWith(mFolder + QLatin1Char('/'))) {
            mRefusals.append({name, tr("is a link that leads out of the static files")});
        } else if (entry.isDir()) {
            mFolders.append(name);
            look(name + QLatin1Char('/'));
        } else if (entry.isFile()) {
            mFiles.append(name);
        } else {
            mRefusals.append({name, tr("is not a file")});
        }
    }
}

bool StaticFiles::areCopiedIn(const QString& mirror) const
{
    const StaticFiles copies(mirror);
    if (QFileInfo(mirror).isSymLink() || copies.mFiles != mFiles || copies.mFolders != mFolders
        || !copies.mRefusals.isEmpty())
        return false;
    return std::all_of(mFiles.begin(), mFiles.end(), [this, &mirror](const QString& name) {
        return isSame(mFolder + QLatin1Char('/') + name, mirror + QLatin1Char('/') + name);
    });
}

bool StaticFiles::isStale(const QString& source, const QString& copy)
{
    const FileStamp original = FileStamp::of(source);
    const FileStamp copied = FileStamp::of(copy);
    return original.exists()
        && (!copied.exists() || original.size != copied.size || original.changed > copied.changed);
}

bool StaticFiles::copyTo(const QString& draft, QString* reason) const
{
    const QDir to(draft);
    bool allMade = QDir().mkpath(draft);
    for (const QString& folder : mFolders)
        allMade = allMade && to.mkpath(folder);
    if (!allMade) {
        *reason = tr("cannot be copied: a folder cannot be made in the site");
        return false;
    }
    for (const QString& name : mFiles) {
        QFile file(mFolder + QLatin1Char('/') + name);
        if (!file.copy(to.filePath(name))) {
            *reason = tr("%1 cannot be copied (%2)").arg(name, file.errorString());
            return false;
        }
    }
    return true;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "StaticFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ProjectLock.h"

#include "LockFile.h"

#include <QFileInfo>
#include <QLockFile>

bool ProjectLock::take(const Project& project, QString* reason)
{
    const QString path = project.folder() + QLatin1String("/lockfile");
    const auto open = [&] {
        return mLocker.openNewProjectFolder(project.folder(), project.title(), reason);
    };
    mHeld = open() || (LockFile::removeNobodys(path) && open());
    if (mHeld)
        return true;
    if (!QFileInfo::exists(path) && !QFileInfo(project.folder()).isWritable())
        return true;

    qint64 process = 0;
    QString machine;
    QString program;
    if (QLockFile(path).getLockInfo(&process, &machine, &program))
        *reason += QLatin1Char('\n')
            + tr("Held by process %1 (%2) on %3").arg(QString::number(process), program, machine);
    return false;
}

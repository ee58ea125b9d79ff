// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ProjectLock.h"

#include <QFileInfo>
#include <QLockFile>

bool ProjectLock::take(const Project& project, QString* reason)
{
    mHeld = mLocker.openNewProjectFolder(project.folder(), project.title(), reason);
    if (mHeld)
        return true;
    const QString path = project.folder() + QLatin1String("/lockfile");
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

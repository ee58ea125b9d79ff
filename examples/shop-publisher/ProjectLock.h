// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ProjectLock: one instance at a time works on a project.

#ifndef PROJECTLOCK_H
#define PROJECTLOCK_H

#include "Project.h"

#include <ProjectFileLocker.h>

#include <QCoreApplication>
#include <QString>

/// The file "lockfile" in the project's folder, there only while this object holds the lock. It is
/// all that the program ever writes in a project.
class ProjectLock
{
    Q_DECLARE_TR_FUNCTIONS(ProjectLock)

public:
    /// True when the program may work on the project: it holds the lock, or has none because nobody
    /// can make one in a folder that cannot be written to; see isHeld(). Otherwise \a reason says,
    /// on several lines, what is locked and by whom.
    bool take(const Project& project, QString* reason);

    bool isHeld() const { return mHeld; }

private:
    ProjectFileLocker mLocker;
    bool mHeld = false;
};

#endif // PROJECTLOCK_H

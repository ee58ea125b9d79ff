// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TreeStage: where a folder tree is completed before it takes the place of another one: next to
// that one, under a hidden name. The name identifies the folder that it is for, and a lock shows
// whether it is still in use; so what a process that was killed left behind is found and recognized
// by the next one that replaces the same folder.

#ifndef ORVAUTILS_TREESTAGE_P_H
#define ORVAUTILS_TREESTAGE_P_H

#include "processes_p.h"

#include <QString>

#include <memory>

namespace OrvaUtilsPrivate {

class TreeStage
{
public:
    explicit TreeStage(const QString& destination);

    /// Removes what is still there.
    ~TreeStage();

    /// Creates the folder, which only its owner may use.
    bool begin(QString* reason);

    QString path() const { return mPath; }

private:
    Q_DISABLE_COPY(TreeStage)

    const QString mDestination;
    QString mPath; // empty if there is none
    std::unique_ptr<FolderLock> mLock;
};

/// Moves the complete folder \a path to \a destination, and removes what was there. Returns false,
/// with the reason, if nothing has changed.
bool moveFolderOver(const QString& path, const QString& destination, QString* reason);

/// Removes what killed processes left of trees for \a destination; a tree that one of them had
/// moved aside is moved back if nothing is at \a destination. What other processes are working on
/// stays.
void clearAfterKills(const QString& destination);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_TREESTAGE_P_H

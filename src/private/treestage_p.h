// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TreeStage: where a folder tree is completed before it takes the place of another one: beside that
// one, under a hidden name. The name tells which folder it is for, and a lock whether somebody
// still works on it; so what a process that was killed left is found, and taken for what it is, by
// the next one that replaces the same folder.

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

    /// Makes the folder, which nobody but its owner may use.
    bool begin(QString* reason);

    QString path() const { return mPath; }

private:
    Q_DISABLE_COPY(TreeStage)

    const QString mDestination;
    QString mPath; // empty where there is none
    std::unique_ptr<FolderLock> mLock;
};

/// Makes the complete folder \a path the one at \a destination, in the place of what is there,
/// which goes. False, with the reason, where nothing has changed.
bool moveFolderOver(const QString& path, const QString& destination, QString* reason);

/// Removes what killed processes left of trees that were to be at \a destination, and puts the tree
/// back that one of them had moved aside. What other processes are working on stays.
void clearAfterKills(const QString& destination);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_TREESTAGE_P_H

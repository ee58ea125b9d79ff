// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The rules for every walk through a folder tree: which folders are entered, and what counts as a
// file while deleting.

#ifndef ORVAUTILS_TREEWALK_P_H
#define ORVAUTILS_TREEWALK_P_H

#include "folderreader_p.h"

namespace OrvaUtilsPrivate {

/// A folder that is being walked and, through \a parent, the folders on the way to it.
struct Walk
{
    QString path;
    const Walk* parent;

    const Walk& start() const { return parent ? parent->start() : *this; }
};

/// Whether \a entry is a folder to enter: not a link back to one on the way to it, which would be
/// walked forever.
bool leadsOn(const FolderEntry& entry, const Walk& walk);

/// All entries of a folder that can be read.
std::vector<FolderEntry> entriesOf(const QString& path);

/// While deleting, a link is a file, whatever it points to.
inline bool isRemovedAsFile(const FolderEntry& entry)
{
    return entry.isLink || entry.kind == EntryKind::File;
}

inline bool isVisibleFolder(const FolderEntry& entry)
{
    return entry.kind == EntryKind::Folder && !entry.isHidden && entry.isReachable;
}

/// Sorts like QDir by name, ignoring case.
void sortByNameIgnoringCase(std::vector<FolderEntry>& entries);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_TREEWALK_P_H

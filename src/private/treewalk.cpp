// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "treewalk_p.h"

#include "filesystem_p.h"
#include "folderpath_p.h"

#include <algorithm>

namespace OrvaUtilsPrivate {

bool leadsOn(const FolderEntry& entry, const Walk& walk)
{
    if (entry.kind != EntryKind::Folder || !entry.isReachable)
        return false;
    if (!entry.isLink)
        return true;
    const QString path = joined(walk.path, entry.name);
    for (const Walk* folder = &walk; folder; folder = folder->parent) {
        if (isSameFile(path, folder->path))
            return false;
    }
    return true;
}

std::vector<FolderEntry> entriesOf(const QString& path)
{
    std::vector<FolderEntry> entries;
    readFolder(path, entries);
    return entries;
}

void sortByNameIgnoringCase(std::vector<FolderEntry>& entries)
{
    std::sort(entries.begin(), entries.end(), [](const FolderEntry& one, const FolderEntry& other) {
        return one.name.compare(other.name, Qt::CaseInsensitive) < 0;
    });
}

} // namespace OrvaUtilsPrivate

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "folderreader_p.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <cerrno>

namespace OrvaUtilsPrivate {

namespace {

/// The value of errno for a folder that cannot be read; 0 if it can.
int errorOf(const QString& path)
{
    if (path.contains(QChar())) // Qt would warn about it
        return ENOENT;
    const QFileInfo folder(path);
    return !folder.exists()    ? ENOENT
        : !folder.isDir()      ? ENOTDIR
        : !folder.isReadable() ? EACCES
                               : 0;
}

class QtFolder : public FolderSource
{
public:
    QtFolder(const QString& path, EntryDetail detail)
        : mIterator(
            QDir(path, QString(), QDir::Unsorted,
                 QDir::Dirs | QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        , mDetail(detail)
    {
        mError = errorOf(path);
    }

    bool next(FolderEntry& entry) override
    {
        if (mError != 0 || !mIterator.hasNext())
            return false;
        mIterator.next();
        const QFileInfo info = mIterator.fileInfo();
        entry.name = info.fileName();
        entry.kind = info.isFile() ? EntryKind::File
            : info.isDir()         ? EntryKind::Folder
                                   : EntryKind::Other;
        entry.isLink = info.isSymLink();
        // Entries that are completed beside their destination are hidden only by their names.
        entry.isHidden = info.isHidden() || entry.name.startsWith(QLatin1String(".orvautils-"));
        entry.isReachable = true;
        if (entry.kind == EntryKind::File && mDetail != EntryDetail::Kinds) {
            entry.size = info.size();
            if (mDetail == EntryDetail::SizesAndTimes)
                entry.modified = info.lastModified().toMSecsSinceEpoch();
        }
        return true;
    }

private:
    QDirIterator mIterator;
    const EntryDetail mDetail;
};

} // namespace

FolderReader::FolderReader(const QString& path, EntryDetail detail)
    : mSource(systemFolder(path, detail))
{
    if (!mSource)
        mSource = std::make_unique<QtFolder>(path, detail);
}

bool readFolder(const QString& path, std::vector<FolderEntry>& entries)
{
    FolderReader reader(path, EntryDetail::Kinds);
    while (reader.next())
        entries.push_back(reader.entry());
    return reader.isIntact();
}

} // namespace OrvaUtilsPrivate

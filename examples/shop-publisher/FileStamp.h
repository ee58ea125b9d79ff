// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FileStamp: tells whether a file is still the one that was looked at before.

#ifndef FILESTAMP_H
#define FILESTAMP_H

#include <QString>

/// Two equal stamps of a path: nobody replaced the file, wrote to it or changed its attributes in
/// between, as far as the clock of the file system can tell.
struct FileStamp
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = -1; ///< -1: there is no such file
    qint64 changed = 0; ///< time of the last change, as finely as the system tells it

    /// Links are followed.
    static FileStamp of(const QString& path);

    /// As a text, for a file that is read back.
    QString toText() const;
    static FileStamp fromText(const QString& text);

    bool exists() const { return size >= 0; }

    /// Both are the same file, or the same folder, whatever has changed in it.
    bool isSameFile(const FileStamp& other) const
    {
        return exists() == other.exists() && device == other.device && inode == other.inode;
    }

    bool operator==(const FileStamp& other) const
    {
        return isSameFile(other) && size == other.size && changed == other.changed;
    }
    bool operator!=(const FileStamp& other) const { return !(*this == other); }
};

#endif // FILESTAMP_H

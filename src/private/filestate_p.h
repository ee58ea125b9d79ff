// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FileState: which file a path leads to, and whether it has changed since an earlier state.

#ifndef ORVAUTILS_FILESTATE_P_H
#define ORVAUTILS_FILESTATE_P_H

#include <QString>

namespace OrvaUtilsPrivate {

struct FileState
{
    enum class Kind {
        Missing, ///< nothing exists at the path; also a broken link
        File,
        Folder,
        Other, ///< a pipe, a socket, a device
        Unknown ///< the system does not say, as in a folder without search permission
    };

    Kind kind = Kind::Missing;
    // They identify the file where that is known; otherwise both are 0.
    quint64 device = 0;
    quint64 number = 0;
    qint64 changed = 0; ///< when it last changed (on Unix also its attributes); the unit varies
    qint64 size = 0;

    bool isMissing() const { return kind == Kind::Missing; }
    bool isFolder() const { return kind == Kind::Folder; }

    /// Whether this is the same file or folder as \a other, even if it has changed meanwhile.
    bool isSameFile(const FileState& other) const
    {
        return kind == other.kind && device == other.device && number == other.number;
    }

    /// Whether this is the same file as \a other and has not changed either.
    bool operator==(const FileState& other) const
    {
        return isSameFile(other) && changed == other.changed && size == other.size;
    }
    bool operator!=(const FileState& other) const { return !(*this == other); }
};

/// What \a path leads to now; links are followed.
///
/// A file is Missing only if the system says so or the nearest readable folder above does not list
/// the way to it: files in a folder that is inaccessible for a moment do not count as missing.
FileState stateOf(const QString& path);

/// The state of \a path as a string; empty if it is missing or unknown.
QString stampOf(const QString& path);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FILESTATE_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Replacement: a new file that is completed beside the one it is for, and then takes its place in
// one step. Whoever opens the path at any moment, also after this process was killed, finds the old
// file or the new one.
//
//     Replacement replacement(path, Replacement::Old::WrittenTo);
//     if (!replacement.begin() || !write(replacement.device()) || !replacement.commit())
//         ... replacement.reason() ...

#ifndef ORVAUTILS_REPLACEMENT_P_H
#define ORVAUTILS_REPLACEMENT_P_H

#include <QFile>
#include <QString>

#include <memory>

class QFileInfo;

namespace OrvaUtilsPrivate {

class Replacement
{
public:
    /// What the new file is, to somebody who knows the old one.
    enum class Old {
        Removed, ///< another file: with permissions of its own, and in the place of a link
        WrittenTo ///< the same file: with its permissions, and where a link leads
    };

    enum class Failure {
        None,
        NotBegun, ///< no file can be made beside the old one, or the old one must not be changed
        Content, ///< what was written could not be stored
        Place ///< the new file is complete, but the old one does not give way
    };

    Replacement(const QString& path, Old old);

    /// Abandons what was not committed.
    ~Replacement();

    /// Makes the new file, in the folder of the old one, which must exist. On Linux the new file
    /// has no name before it is committed, where the file system allows that: a process that is
    /// killed leaves nothing behind.
    bool begin();

    /// The new file, open for writing. It may have no fileName(), and is not to be
    /// closed.
    QFile& device() { return *mFile; }

    /// Whether something stood at the path when the replacement began.
    bool replaces() const { return mReplaces; }

    /// Whether the new file is brought to the disk before it takes its place. By default it is
    /// where it replaces one, so that not even a power failure finds the old file gone and the new
    /// one not there yet. To be called after begin().
    void setStoredFirst(bool isStoredFirst) { mIsStoredFirst = isStoredFirst; }

    /// Gives the new file the owner, the permissions and the extended attributes of an open one.
    /// False where this process may not do so, or where that is no regular file.
    bool takeAttributes(const QFile& file);

    /// Puts the new file in the place of the old one. Where that fails, the old one stays, and
    /// nothing is left beside it.
    bool commit();

    /// Removes the new file. The old one stays.
    void abandon();

    Failure failure() const { return mFailure; }

    /// Why begin() or commit() failed, in the system's words.
    QString reason() const { return mReason; }

private:
    Q_DISABLE_COPY(Replacement)

    bool findWritten(const QFileInfo& old);
    bool openNamed();
    bool giveName(const QString& path, QString* reason);
    bool continueNamed();
    bool fail(Failure failure, const QString& reason);

    const Old mOld;
    QString mPath;
    QString mName; ///< of the new file while it is beside the old one; empty as long as it has none
    std::unique_ptr<QFile> mFile;
    bool mReplaces = false;
    bool mIsStoredFirst = false;
    Failure mFailure = Failure::None;
    QString mReason;
};

enum class Replaced {
    Yes,
    No, ///< reading or writing failed
    NotTried ///< no new file can take the place of this one without anybody noticing
};

/// Replaces the bytes from \a begin to \a end of a file, which is open for reading, by \a bytes,
/// in one step. Unless Yes is returned, nothing has changed and nothing is left behind.
///
/// The new file has the owner, the permissions and the extended attributes of the old one, and a
/// link to the file still leads to it. Not tried where that cannot be: in a folder that takes no
/// new file, for a file that has several names (hard links) or an owner or an attribute that this
/// process may not give, and where the path leads to another file by now.
///
/// \a file may be closed afterwards.
Replaced replaceBytes(QFile* file, qint64 begin, qint64 end, const QByteArray& bytes);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_REPLACEMENT_P_H

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
    /// How the new file relates to the old one.
    enum class Old {
        Removed, ///< another file: with permissions of its own, and in the place of a link
        WrittenTo ///< the same file: with its permissions, and where a link leads
    };

    enum class Failure {
        None,
        NotBegun, ///< no file can be made beside the old one, or the old one is read-only
        Content, ///< what was written could not be stored
        Place ///< the new file is complete, but cannot take the place of the old one
    };

    Replacement(const QString& path, Old old);

    /// Abandons what was not committed.
    ~Replacement();

    /// Whether the old file itself is written to where its folder takes no new file, and where it
    /// is a device or a pipe. The new content is then completed in the folder for temporary files
    /// and copied over the old one by commit(): if that fails or the process is killed meanwhile,
    /// the old content is lost. Off by default; to be called before begin().
    void setDirectWriteFallback(bool isOn) { mFallsBack = isOn; }

    /// Makes the new file, in the folder of the old one, which must exist. On Linux the new file
    /// has no name before it is committed, where the file system allows that: a process that is
    /// killed leaves nothing behind.
    bool begin();

    /// The new file, open for writing. It may have no fileName(), and must not be closed.
    QFile& device() { return *mFile; }

    /// Whether something stood at the path when the replacement began.
    bool replaces() const { return mReplaces; }

    /// Whether the new file is synced to the disk before it takes its place. By default it is
    /// synced if it replaces a file, so that even after a power failure either the old or the new
    /// one is there. To be called after begin().
    void setStoredFirst(bool isStoredFirst) { mIsStoredFirst = isStoredFirst; }

    /// Gives the new file the owner, the permissions and the extended attributes of an open one.
    /// False where this process may not do so, or where that is no regular file.
    bool takeAttributes(const QFile& file);

    /// Puts the new file in the place of the old one. Where that fails, the old one stays, and
    /// nothing is left beside it. To be called after begin() has succeeded.
    bool commit();

    /// Removes the new file. The old one stays.
    void abandon();

    Failure failure() const { return mFailure; }

    /// Why begin() or commit() failed, in the system's words.
    QString reason() const { return mReason; }

private:
    Q_DISABLE_COPY(Replacement)

    bool mustOverwrite(const QFileInfo& old) const;
    bool findWritten(const QFileInfo& old);
    bool openElsewhere();
    bool openNamed();
    bool giveName(const QString& path, QString* reason);
    bool continueNamed();
    bool putInPlace();
    bool overwrite();
    bool fail(Failure failure, const QString& reason);

    const Old mOld;
    QString mPath;
    QString mName; ///< of the new file while it is beside the old one; empty as long as it has none
    std::unique_ptr<QFile> mFile;
    bool mReplaces = false;
    bool mIsStoredFirst = false;
    bool mFallsBack = false;
    bool mIsElsewhere = false; ///< the new file, which is to be copied over the old one
    Failure mFailure = Failure::None;
    QString mReason;
};

enum class Replaced {
    Yes,
    No, ///< reading or writing failed
    NotTried ///< the file cannot be replaced by a new one without a trace
};

/// Replaces the bytes from \a begin to \a end of a file, which is open for reading, by \a bytes,
/// in one step. Unless Yes is returned, nothing has changed and nothing is left behind.
///
/// The new file has the owner, the permissions and the extended attributes of the old one, and a
/// link to the file still leads to it. Not tried where that is impossible: if no file can be
/// created in the folder, if the file has several names (hard links) or an owner or an attribute
/// that this process may not set, and if the path leads to another file now.
///
/// \a content, if it is not empty, is the whole file, so that it need not be read again. \a file
/// may be closed afterwards.
Replaced replaceBytes(QFile* file, qint64 begin, qint64 end, const QByteArray& bytes,
                      const QByteArray& content = QByteArray());

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_REPLACEMENT_P_H

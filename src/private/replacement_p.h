// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Replacement: a new file that is completed next to the one that it replaces, and then takes its
// place in one step. Whoever opens the path at any moment, even after this process was killed,
// finds the old file or the new one.
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
        Removed, ///< a different file: with its own permissions, and replacing a link
        WrittenTo ///< the same file: with its permissions, and at the target of a link
    };

    enum class Failure {
        None,
        NotBegun, ///< no file can be created next to the old one, or the old one is read-only
        Content, ///< what was written could not be stored
        Place ///< the new file is complete, but cannot take the place of the old one
    };

    Replacement(const QString& path, Old old);

    /// Abandons what was not committed.
    ~Replacement();

    /// Whether the old file itself is written to if no file can be created in its folder, or if it
    /// is a device or a pipe. The new content is then completed in the folder for temporary files
    /// and copied over the old one by commit(): if that fails or the process is killed meanwhile,
    /// the old content is lost. Off by default; must be called before begin().
    void setDirectWriteFallback(bool isOn) { mFallsBack = isOn; }

    /// Creates the new file in the folder of the old one, which must exist. On Linux, the new file
    /// has no name until it is committed, if the file system allows that: a process that is killed
    /// leaves nothing behind.
    bool begin();

    /// The new file, open for writing. It may have no fileName(), and must not be closed.
    QFile& device() { return *mFile; }

    /// Whether something existed at the path when the replacement began.
    bool replaces() const { return mReplaces; }

    /// Whether the new file is synced to the disk before it takes its place. By default it is
    /// synced if it replaces a file, so that even after a power failure either the old or the new
    /// one exists. Must be called after begin().
    void setStoredFirst(bool isStoredFirst) { mIsStoredFirst = isStoredFirst; }

    /// Gives the new file the owner, the permissions and the extended attributes of an open one.
    /// Returns false if this process may not do so, or if that is not a regular file.
    bool takeAttributes(const QFile& file);

    /// Replaces the old file with the new one. If that fails, the old one stays, except as stated
    /// for setDirectWriteFallback(), and nothing is left next to it. Must be called after begin()
    /// has succeeded.
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
    QString mName; ///< of the new file while it is next to the old one; empty if it has none
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
    NotTried ///< the file cannot be replaced with a new one unnoticed
};

/// Replaces the bytes from \a begin to \a end of a file, which is open for reading, with \a bytes,
/// in one step. Unless Yes is returned, nothing has changed and nothing is left behind.
///
/// The new file has the owner, the permissions and the extended attributes of the old one, and a
/// link to the file still leads to it. Not tried if that is impossible: if no file can be created
/// in the folder, if the file has several names (hard links) or an owner or an attribute that this
/// process may not set, or if the path now leads to another file.
///
/// \a content, if it is not empty, is the whole file, so that it need not be read again. \a file
/// may be closed afterwards.
Replaced replaceBytes(QFile* file, qint64 begin, qint64 end, const QByteArray& bytes,
                      const QByteArray& content = QByteArray());

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_REPLACEMENT_P_H

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
    QFile& device() { return mFile; }

    /// Whether something stood at the path when the replacement began.
    bool replaces() const { return mReplaces; }

    /// Gives the new file the owner, the permissions and the extended attributes of an open one.
    /// False where this process may not do so, or where that is no regular file.
    bool takeAttributes(const QFile& file);

    /// Puts the new file in the place of the old one; where it replaces one, it is brought to the
    /// disk first. Otherwise the old one stays, and nothing is left beside it.
    bool commit();

    /// Removes the new file. The old one stays.
    void abandon();

    Failure failure() const { return mFailure; }

    /// Why begin() or commit() failed, in the system's words.
    QString reason() const { return mReason; }

private:
    Q_DISABLE_COPY(Replacement)

    bool findWritten(const QFileInfo& old);
    bool giveName(const QString& path, QString* reason);
    bool fail(Failure failure, const QString& reason);

    const Old mOld;
    QString mPath;
    QString mName; ///< of the new file while it is beside the old one; empty as long as it has none
    QFile mFile;
    bool mReplaces = false;
    Failure mFailure = Failure::None;
    QString mReason;
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_REPLACEMENT_P_H

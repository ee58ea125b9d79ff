// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// FilePatch: replaces bytes in the middle of a file, so that neither a failure nor the end of the
// process leaves the change half done.

#ifndef ORVAUTILS_FILEPATCH_P_H
#define ORVAUTILS_FILEPATCH_P_H

#include <QByteArray>

class QFile;
class QIODevice;

namespace OrvaUtilsPrivate {

/// The bytes from begin to end are replaced by others.
struct FilePatch
{
    qint64 begin = 0;
    qint64 end = 0;
    QByteArray bytes;
    /// What stands there, as long as bytes, where somebody has just read it; else nothing.
    QByteArray before;
    /// The whole file, where somebody has just read it; else nothing.
    QByteArray file;

    bool movesWhatFollows() const { return bytes.size() != end - begin; }
};

/// What to do with a file that cannot be replaced by a new one without a trace: it has several
/// names (hard links), it belongs to another user, or no file can be created in its folder.
enum class Irreplaceable {
    PatchInPlace, ///< a process that is killed meanwhile may leave a part of the change
    Refuse
};

enum class Patched { Yes, Failed, Refused };

/// Opens a file to patch it. Unlike opening alone, this creates none. Unbuffered, so that a write
/// that fails is known at once and what was there can be put back.
bool openToPatch(QFile* file);

/// Patches a file that openToPatch() opened. Where the length stays and all bytes that change lie
/// within one page, they are written in place, which a kill cannot tear; otherwise a new file takes
/// the place of this one in one step. A file that holds these bytes already is not written. Unless
/// Yes is returned nothing has changed, as far as the old bytes could be restored. The file may be
/// closed afterwards.
Patched patchFile(QFile* file, FilePatch patch, Irreplaceable irreplaceable);

/// Patches a random-access device, which the patch may make longer but not shorter, in place. If
/// writing fails, the old bytes are restored as far as the device allows.
bool patchInPlace(QIODevice* device, FilePatch patch);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FILEPATCH_P_H

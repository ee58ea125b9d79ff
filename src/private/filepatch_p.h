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
    /// The bytes to replace, if the length stays the same and they have just been read; else empty.
    QByteArray before;
    /// The content of the whole file, if it has just been read; else empty.
    QByteArray file;

    bool movesWhatFollows() const { return bytes.size() != end - begin; }
};

/// What to do with a file that cannot be replaced with a new one unnoticed: it has several names
/// (hard links), it belongs to another user, or no file can be created in its folder.
enum class Irreplaceable {
    PatchInPlace, ///< a process killed meanwhile may leave the change half done
    Refuse
};

enum class Patched { Yes, Failed, Refused };

/// Opens an existing file for patching; does not create one. The file is unbuffered, so that a
/// failing write is detected at once and the old bytes can be restored.
bool openToPatch(QFile* file);

/// Patches a file that openToPatch() opened. If the length stays the same and all changed bytes lie
/// within one page, they are written in place, which a kill cannot interrupt halfway; otherwise a
/// new file replaces this one in one step, or \a irreplaceable decides. A file that already
/// contains these bytes is not written. Unless Yes is returned, nothing has changed, as far as the
/// old bytes could be restored. \a file may be closed on return.
Patched patchFile(QFile* file, FilePatch patch, Irreplaceable irreplaceable);

/// Patches a random-access device, which the patch may make longer but not shorter, in place. If
/// writing fails, the old bytes are restored as far as the device allows.
bool patchInPlace(QIODevice* device, FilePatch patch);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_FILEPATCH_P_H

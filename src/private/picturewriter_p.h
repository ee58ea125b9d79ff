// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Replaces older pictures with new ones. The old ones are not lost if that fails.

#ifndef ORVAUTILS_PICTUREWRITER_P_H
#define ORVAUTILS_PICTUREWRITER_P_H

#include <QByteArray>

class QImage;
class QString;

namespace OrvaUtilsPrivate {

/// How a picture is written.
struct Encoding
{
    QByteArray format;
    int quality;
    bool progressive;
};

enum class SaveResult {
    Saved,
    CannotRemove, ///< what is at the destination cannot be replaced
    CannotSave
};

/// Replaces what is at \a dst with \a image. Unless it was saved, \a error is set to the reason.
///
/// The old file may be the only copy of a photograph, and even the file that the picture was loaded
/// from. So it is not removed first: the picture is saved next to it, under a hidden name of its
/// own, and takes the place of \a dst when it is complete. A link is replaced, not followed.
SaveResult replacePicture(const QImage& image, const QString& dst, const Encoding& encoding,
                          QString* error);

/// Writes \a image to the file \a path. Unlike with replacePicture(), it remains the same file: a
/// link is followed, the permissions are kept, and if no file can be created in the folder, it is
/// overwritten. On failure, \a error is set to the reason.
bool writePicture(const QImage& image, const QString& path, const Encoding& encoding,
                  QString* error);

/// Replaces what is at \a dst with \a bytes, in the same way as replacePicture().
SaveResult replaceBytes(const QByteArray& bytes, const QString& dst, QString* error);

/// Encodes \a image into \a bytes, with its quality if the format is JPEG or WebP. On failure, \a
/// error is set to the reason.
bool encodeInMemory(const QImage& image, const Encoding& encoding, QByteArray* bytes,
                    QString* error);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PICTUREWRITER_P_H

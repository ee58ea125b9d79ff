// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Writes pictures in the place of older ones, which are not lost if that fails.

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
    CannotRemove, ///< what stands at the destination cannot be replaced
    CannotSave
};

/// Puts \a image in the place of what stands at \a dst. Unless it was saved, \a error tells why.
///
/// What stands there may be the only copy of a photograph, and even be the file that the picture
/// was loaded from. So it is not removed first: the picture is saved beside it, under a hidden name
/// of its own, and takes the place of \a dst when it is complete. A link is replaced, not followed.
SaveResult replacePicture(const QImage& image, const QString& dst, const Encoding& encoding,
                          QString* error);

/// Makes \a image the content of the file \a path. Unlike with replacePicture() it stays the same
/// file: a link is followed, the permissions stay, and where the folder takes no new file, it is
/// overwritten. Where that fails, \a error tells why.
bool writePicture(const QImage& image, const QString& path, const Encoding& encoding,
                  QString* error);

/// Puts \a bytes in the place of what stands at \a dst, as replacePicture() does a picture.
SaveResult replaceBytes(const QByteArray& bytes, const QString& dst, QString* error);

/// Encodes \a image into \a bytes, with its quality where the format has one. Where that fails,
/// \a error tells why.
bool encodeInMemory(const QImage& image, const Encoding& encoding, QByteArray* bytes,
                    QString* error);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PICTUREWRITER_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Loading of pictures from files that may be forged, damaged or on a failing disk.

#ifndef ORVAUTILS_PICTUREREADER_P_H
#define ORVAUTILS_PICTUREREADER_P_H

#include <QByteArray>
#include <QSize>

class QImage;
class QImageReader;
class QString;

class QIODevice;

namespace OrvaUtilsPrivate {

/// What a picture file states about itself before its pixels.
struct PictureHeader
{
    /// In lower case; empty if no image reader supports the file.
    QByteArray format;
    /// Invalid if the reader does not report it.
    QSize size;
    /// The size for which the reader allocates memory, see canvasOf().
    QSize canvas;
    /// How much memory the reader takes per pixel.
    int bytesPerPixel = 4;
    /// The EXIF orientation, 1 to 8, that the image reader reports; 1 if it reports none.
    int orientation = 1;
    /// False if reading failed, so that the rest may not be what the file contains, or if the
    /// header has more segments than any camera writes: readers take hours for millions of them.
    bool isIntact = false;
};

enum class PngChunks { BeforePixels, All };

/// Whether a chunk of the PNG at the current position of \a device claims more than a mebibyte
/// beyond the end of the file. The decoder would allocate all that is claimed, up to 2 GiB, and
/// fail only after reading what there is. Pixels are not checked: they are read piece by piece, and
/// the decoder decides how much of truncated ones to show. False for other files. The position is
/// not changed.
bool claimsMissingBytes(QIODevice* device, PngChunks chunks);

/// The size of the image that \a reader, whose device begins with a picture, will create: the size
/// of the picture, except for a GIF whose screen is larger.
QSize canvasOf(const QImageReader& reader);

/// Reads the header of the picture file \a path, and nothing more.
PictureHeader readPictureHeader(const QString& path);

/// Loads the whole picture in the file \a path. Returns false if the image reader fails, if the
/// picture would not fit into memory, or if it is a JPEG of more than a thousand segments or scans,
/// or a PNG that claims bytes that are missing; \a image is untouched or null then. Also returns
/// false if reading the file failed at any point; \a image may be incomplete then.
bool loadWhole(const QString& path, QImage* image);

/// Reads the whole file \a path. Returns false if that fails, or if the file has 1 GiB or more.
bool readWholeFile(const QString& path, QByteArray* bytes);

/// Decodes the JPEG \a bytes, whose size is \a whole and which is to be scaled to \a target, or not
/// at all if \a target is invalid. It may be decoded at a reduced size if the scaled picture will
/// not show it. Returns false as loadWhole() does.
bool decodeJpeg(const QByteArray& bytes, const QSize& whole, const QSize& target, QImage* image);

/// The size at which decodeJpeg() decodes first. It then decodes the whole picture if this turns
/// out to have more detail than its file suggested.
QSize decodedJpegSize(const QByteArray& bytes, const QSize& whole, const QSize& target);

/// Decodes the picture \a bytes, of \a format, as it is stored: not turned, even if its reader
/// otherwise does so. Returns false as loadWhole() does.
bool decodeAsStored(const QByteArray& bytes, const QByteArray& format, QImage* image);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PICTUREREADER_P_H

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
    /// Lower-case; empty where no image reader knows the file.
    QByteArray format;
    /// Invalid where the reader does not tell it.
    QSize size;
    /// What the reader makes room for, see canvasOf().
    QSize canvas;
    /// How much memory the reader takes for a pixel.
    int bytesPerPixel = 4;
    /// The EXIF orientation, 1 to 8, that the image reader tells; 1 where it tells none.
    int orientation = 1;
    /// False where reading failed, so that the rest may not be what the file holds, and where the
    /// header has more segments than any camera writes: readers take hours for millions of them.
    bool isIntact = false;
};

enum class PngChunks { BeforePixels, All };

/// Whether a chunk of the PNG at the current position of \a device claims a mebibyte more than
/// there is. The decoder would reserve all that is claimed, up to 2 GiB, and fail only when it has
/// read what there is. Pixels are read piece by piece, and how far they are shown where they break
/// off is the decoder's matter. False for other files. The position stays.
bool claimsMissingBytes(QIODevice* device, PngChunks chunks);

/// The size of the image that \a reader, which has a device with a picture at its beginning, will
/// make. That of the picture, except in a GIF whose screen is larger.
QSize canvasOf(const QImageReader& reader);

/// Reads the header of the picture file \a path, nothing more.
PictureHeader readPictureHeader(const QString& path);

/// Loads the whole picture in the file \a path. False, with \a image untouched or null, where the
/// image reader cannot, where the file cannot be read to where the reader wanted it, where the
/// picture would not fit into memory, and where it is a JPEG of more than a thousand segments or
/// scans, or a PNG that claims bytes that are missing.
bool loadWhole(const QString& path, QImage* image);

/// Reads the whole file \a path, which is no larger than an array of bytes can be.
bool readWholeFile(const QString& path, QByteArray* bytes);

/// Decodes the JPEG \a bytes, whose size is \a whole and which is to be scaled to \a target, or not
/// at all where \a target is invalid. It may be decoded at a reduced size where the scaled picture
/// will not show it. False as with loadWhole().
bool decodeJpeg(const QByteArray& bytes, const QSize& whole, const QSize& target, QImage* image);

/// The size at which decodeJpeg() begins to decode. It ends with the whole where the picture turns
/// out to have more detail than its file told.
QSize decodedJpegSize(const QByteArray& bytes, const QSize& whole, const QSize& target);

/// Decodes the picture \a bytes, of \a format, as it is stored: not turned, whatever its reader
/// does otherwise. False as with loadWhole().
bool decodeAsStored(const QByteArray& bytes, const QByteArray& format, QImage* image);

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PICTUREREADER_P_H

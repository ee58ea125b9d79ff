// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ExifUtils: what most callers need from a photograph's EXIF block: its orientation, and a way to
// remove private data.

#ifndef ORVAUTILS_EXIFUTILS_H
#define ORVAUTILS_EXIFUTILS_H

#include "orvautils_export.h"

class QExifImageHeader;
class QIODevice;
class QString;

/// Shortcuts for QExifImageHeader and ExifEditor. They keep no state: several threads may use them
/// at the same time, each on a different file. Nothing is logged except for the warnings of
/// QExifImageHeader.
///
/// \code
/// QString error;
/// if (!ExifUtils::setOrientation(path, 1, &error) || !ExifUtils::removeLocation(path, &error))
///     return error;
/// \endcode
class ORVAUTILS_EXPORT ExifUtils
{
public:
    ExifUtils() = delete;

    /// What removeMetadata() does with a picture that its orientation rotates or mirrors.
    enum class Rotated {
        Refuse, ///< leave the file as it is
        KeepOrientation ///< leave an EXIF block with nothing but the orientation
    };

    /// The angle in degrees, clockwise, by which the JPEG file \a fileName has to be rotated to be
    /// upright: 180 for the EXIF orientation 3, 90 for 6, -90 for 8. 0 for every other orientation
    /// (deliberately including the mirrored ones 2, 4, 5 and 7), without an orientation, for one
    /// that is not a single Short or Byte, and for a file that cannot be read.
    ///
    /// Only the first APP1 segment is examined: an EXIF block after an XMP one gives 0, too.
    /// imageExifOrientation() finds it and supports all eight orientations.
    ///
    /// \code
    /// const int angle = ExifUtils::imageExifRotation(path);
    /// const QImage upright = image.transformed(QTransform().rotate(angle));
    /// \endcode
    static int imageExifRotation(const QString& fileName);

    /// As above, for the JPEG at the current position of \a device, which must be open for reading,
    /// may be sequential, and stays open. 0 for null.
    static int imageExifRotation(QIODevice* device);

    /// As above, for a \a header that is loaded already.
    static int imageExifRotation(const QExifImageHeader& header);

    /// Marks the JPEG file \a fileName as not rotated: its Orientation tag becomes 0, as a
    /// SignedLong (deliberately not the Short that EXIF requires).
    ///
    /// The whole EXIF block is rewritten in the layout of QExifImageHeader::write(), which loses
    /// tags: maker notes with offsets, the interoperability IFD, tags of unknown types, and for
    /// other programs (and for QExifImageHeader itself) every value of the Exif and GPS directories
    /// that does not fit into its entry, including the date of the photograph. Everything outside
    /// of the block is kept. setOrientation() changes the orientation and nothing else.
    ///
    /// A process that is killed leaves the old or the new file, as described for
    /// QExifImageHeader::saveToJpeg(). False when the file cannot be opened, has no EXIF block that
    /// QExifImageHeader::loadFromJpeg() reads, or cannot be written; it is untouched then.
    static bool clearRotation(const QString& fileName);

    /// The EXIF orientation of the JPEG file \a fileName, 1 to 8; 0 if it has none or one that EXIF
    /// does not define, and if the file cannot be read. The first EXIF segment counts, wherever it
    /// is in front of the picture; no more than its first directory is read.
    static int imageExifOrientation(const QString& fileName);

    /// As above, for the JPEG at the current position of \a device, which must be open for reading,
    /// may be sequential, and stays open. 0 for null.
    static int imageExifOrientation(QIODevice* device);

    /// Gives the JPEG file \a fileName the EXIF \a orientation, 1 to 8, and leaves every other byte
    /// as it is. If the tag exists, as in nearly all photographs, only its two bytes are written,
    /// in one page of the file: a process that is killed leaves the old orientation or the new one.
    /// (A tag that is not a single Short becomes one.) If it does not exist, or there is no EXIF
    /// block, it is added as ExifEditor::save() does.
    ///
    /// A file that already has the orientation is not written. False, with the file untouched and
    /// the reason, a sentence in the user's language, in \a error if that is not null, for other
    /// numbers, if the file is not a JPEG, and when the file cannot be opened, read or written.
    static bool setOrientation(const QString& fileName, int orientation, QString* error = nullptr);

    /// Removes the location where the photograph was taken from the JPEG file \a fileName: the GPS
    /// directories of every EXIF block, also of pictures inside or after the picture; the
    /// properties of every XMP packet whose names begin with "GPS" or contain "latitude" or
    /// "longitude"; and the location of a video after the picture. Their bytes are overwritten.
    /// Everything else stays, including the length of the file, place names in captions and
    /// keywords, and anything in a maker note.
    ///
    /// A process that is killed leaves the old file or the new one. A file without a location is
    /// not written. False, with the file untouched and the reason in \a error, when it is not a
    /// JPEG, cannot be opened, read, written or replaced in one step (see ExifEditor::save()), or
    /// when its EXIF or XMP data is too damaged to remove the location from it.
    static bool removeLocation(const QString& fileName, QString* error = nullptr);

    /// Removes all metadata from the JPEG file \a fileName: EXIF, XMP, IPTC, comments, all other
    /// application data and everything after the picture (a second picture, a video). The JFIF
    /// header, the colour profile and the coded picture stay, byte for byte; a colour space that is
    /// stated only in EXIF is lost.
    ///
    /// A picture that its EXIF orientation rotates or mirrors would no longer be upright.
    /// \a rotated determines what happens then: the function fails with a reason, or leaves an EXIF
    /// block that contains nothing but the orientation.
    ///
    /// A process that is killed leaves the old file or the new one. False, with the file untouched
    /// and the reason in \a error, also when it is not a JPEG, when a segment has an impossible
    /// length, or when it cannot be opened, read, written or replaced in one step (see
    /// ExifEditor::save()).
    static bool removeMetadata(const QString& fileName, QString* error = nullptr,
                               Rotated rotated = Rotated::Refuse);
};

#endif // ORVAUTILS_EXIFUTILS_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ExifEditor: changes single EXIF tags of a JPEG file and leaves everything else as it is.

#ifndef ORVAUTILS_EXIFEDITOR_H
#define ORVAUTILS_EXIFEDITOR_H

#include "QExifImageHeader.h"
#include "QExifValue.h"
#include "orvautils_export.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <memory>

class QIODevice;
namespace OrvaUtilsPrivate {
class ExifEditorPrivate;
} // namespace OrvaUtilsPrivate

/// Edits the EXIF block of a JPEG file in place: data that is not meant to change keeps its bytes
/// and its offset. Maker notes, the interoperability IFD, the thumbnail and its IFD, tags of
/// unknown types and whatever else a camera has put into the block survive.
///
/// \code
/// ExifEditor editor;
/// QString error;
/// if (!editor.load(path, &error))
///     return error;
/// editor.setValue(QExifImageHeader::Artist, QExifValue(QStringLiteral("A. Person")));
/// editor.setValue(QExifImageHeader::UserComment,
///                 QExifValue(QStringLiteral("At dawn"), QExifValue::UnicodeEncoding));
/// if (!editor.save(path, &error))
///     return error;
/// \endcode
///
/// The block is the first EXIF segment in front of the picture, wherever it is among the other
/// segments. (QExifImageHeader looks at the first APP1 segment alone, and writes a layout of its
/// own that drops what it does not support.)
///
/// Changes are written as follows:
/// - A value that fits in the place of the old one is written there. A longer one goes to the end
///   of the block.
/// - A directory that loses a tag stays in its place and closes the gap. One that gains a tag is
///   rewritten at the end of the block, in ascending order, and the reference to it is adjusted.
/// - A place that something else uses too (a value that two tags share, for example) is not
///   written; the new value or directory goes to the end instead.
/// - Data that is replaced, moved or removed is overwritten with NULs, so that it does not remain
///   in the file, and cut off if it is at the end of the block.
///
/// Functions that can fail return false and write the reason, a sentence in the user's language, to
/// \a error if that is not null. Nothing is logged. An editor is used by one thread at a time; it
/// cannot be copied.
class ORVAUTILS_EXPORT ExifEditor
{
public:
    /// An editor without a block. Setting tags creates one, in little-endian byte order.
    ExifEditor();
    /// Discards changes that were not saved.
    ~ExifEditor();

    /// Replaces the content of this editor with the EXIF block of the JPEG file \a fileName. True
    /// also for a JPEG without one; the editor is empty then. False, with the editor empty, when
    /// the file cannot be read, is not a JPEG, or when its EXIF block has no readable directory.
    ///
    /// A block that is damaged after its first directory is accepted: values are read as far as
    /// they exist.
    bool load(const QString& fileName, QString* error = nullptr);

    /// As above, from the current position of \a device, which must be open for reading and may be
    /// sequential. The device is left at an unspecified position.
    bool load(QIODevice* device, QString* error = nullptr);

    /// Writes the block into the JPEG file \a fileName, which must exist and need not be the one
    /// that was loaded: its first EXIF segment is replaced, or a new one is inserted after SOI and
    /// the JFIF segment. All other bytes of the file stay as they are. An empty editor changes
    /// nothing.
    ///
    /// A process that is killed at any moment leaves the old file or the new one. If the length
    /// does not change and all bytes that change lie within one block of 4096 bytes, these are
    /// written in place; otherwise a new file is completed beside the old one, with its
    /// permissions, owner, access list and extended attributes, and replaces it in one step. A file
    /// that already contains the block is not written.
    ///
    /// False, with the file untouched, when it cannot be opened for reading and writing, is not a
    /// JPEG, when the block exceeds what a segment can hold (65,527 bytes), when it would grow
    /// although it continues in the next segment, when the block was so damaged that it could not
    /// be loaded again, when writing fails, and when a new file would be needed but cannot replace
    /// this one unnoticed: it has several names (hard links), it belongs to somebody else, or no
    /// new file can be created in its folder. The editor keeps its changes, so that they can be
    /// saved elsewhere.
    bool save(const QString& fileName, QString* error = nullptr);

    /// As above, into the JPEG at the beginning of \a device, which must be open for reading and
    /// writing and allow random access. It is written in place, so that a process that is killed
    /// may leave a mixture. The device is never made shorter: a smaller block is padded with NULs.
    bool save(QIODevice* device, QString* error = nullptr);

    /// Discards the block and all values that were set.
    void clear();

    /// Whether there is no block and no tag, because none was set or all were removed again.
    bool isEmpty() const;

    /// The byte order of the block, little endian if there is none.
    QDataStream::ByteOrder byteOrder() const;

    /// How texts (values of type Ascii) are read and written: as Latin-1, which is the default and
    /// replaces characters that it does not have with "?", or as UTF-8, which many programs expect
    /// although the standard does not say so. When reading, bytes that are not UTF-8 count as
    /// Latin-1. Texts that are already set stay as they are.
    void setUtf8(bool isUtf8);
    /// Whether texts are read and written as UTF-8.
    bool isUtf8() const;

    /// The tags of IFD0 in ascending order. The three tags that lead to other directories
    /// (ExifIfdPointer, GpsInfoIfdPointer, InteroperabilityIfdPointer) are managed by the editor:
    /// no list contains them, their value is null, and setting or removing them does nothing.
    QList<QExifImageHeader::ImageTag> imageTags() const;
    /// The tags of the Exif sub-IFD in ascending order.
    QList<QExifImageHeader::ExifExtendedTag> extendedTags() const;
    /// The tags of the GPS sub-IFD in ascending order.
    QList<QExifImageHeader::GpsTag> gpsTags() const;

    /// Whether the image \a tag is present, even with a value that QExifValue cannot represent.
    bool contains(QExifImageHeader::ImageTag tag) const;
    /// Whether the extended \a tag is present.
    bool contains(QExifImageHeader::ExifExtendedTag tag) const;
    /// Whether the GPS \a tag is present.
    bool contains(QExifImageHeader::GpsTag tag) const;

    /// The value of the image \a tag. Null if it is absent, and for types that QExifValue does not
    /// have. If a tag occurs several times, the last one counts.
    ///
    /// Unlike QExifImageHeader this gives raw values in file order whatever the byte order, and a
    /// text that lacks its final NUL keeps its last character.
    QExifValue value(QExifImageHeader::ImageTag tag) const;
    /// As above, for the extended \a tag.
    QExifValue value(QExifImageHeader::ExifExtendedTag tag) const;
    /// As above, for the GPS \a tag.
    QExifValue value(QExifImageHeader::GpsTag tag) const;

    /// Adds the image \a tag or replaces its \a value; a null value removes it. Type and count are
    /// those of the value, whatever EXIF requires. Setting the value that the tag already has
    /// changes nothing.
    void setValue(QExifImageHeader::ImageTag tag, const QExifValue& value);
    /// As above, for the extended \a tag and its \a value.
    void setValue(QExifImageHeader::ExifExtendedTag tag, const QExifValue& value);
    /// As above, for the GPS \a tag and its \a value.
    void setValue(QExifImageHeader::GpsTag tag, const QExifValue& value);

    /// Removes the image \a tag; does nothing if it is absent.
    void remove(QExifImageHeader::ImageTag tag);
    /// Removes the extended \a tag. A sub-IFD that has no tag left is removed.
    void remove(QExifImageHeader::ExifExtendedTag tag);
    /// As above, for the GPS \a tag.
    void remove(QExifImageHeader::GpsTag tag);

    /// The orientation of the picture, 1 to 8; 0 if there is none or one that EXIF does not define.
    int orientation() const;

    /// Sets the orientation, a Short from 1 to 8; 0 removes the tag. Other numbers change nothing.
    void setOrientation(int orientation);

    /// Removes the GPS sub-IFD with all its values. A position that the file also states elsewhere
    /// (XMP) stays; see ExifUtils::removeLocation().
    void removeGps();

    /// Removes the thumbnail with its IFD.
    void removeThumbnail();

    /// When the photograph was taken: DateTimeOriginal, with the fraction of SubSecTimeOriginal in
    /// milliseconds and the offset from UTC of OffsetTimeOriginal (else OffsetTimeDigitized, else
    /// OffsetTime). Without an offset it is in local time. Invalid if DateTimeOriginal is absent or
    /// not a date.
    QDateTime dateTimeOriginal() const;

    /// Where the photograph was taken: \a latitude (north positive) and \a longitude (east
    /// positive) in decimal degrees, \a altitude in metres above sea level. False, with nothing
    /// written, when latitude or longitude is missing, has no reference ("N", "S", "E", "W") or is
    /// out of range. The altitude is NaN if it is missing. Each pointer may be null.
    bool gpsPosition(double* latitude, double* longitude, double* altitude = nullptr) const;

private:
    Q_DISABLE_COPY(ExifEditor)

    const std::unique_ptr<OrvaUtilsPrivate::ExifEditorPrivate> d;
};

#endif // ORVAUTILS_EXIFEDITOR_H

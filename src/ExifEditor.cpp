// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ExifEditor.h"

#include "exifblock_p.h"
#include "filepatch_p.h"
#include "intactfile_p.h"
#include "jpegsegments_p.h"
#include "photofile_p.h"

#include <QBuffer>
#include <QCoreApplication>

using namespace OrvaUtilsPrivate;

using Header = QExifImageHeader;

class OrvaUtilsPrivate::ExifEditorPrivate
{
public:
    QExifValue value(ExifBlock::Directory directory, quint16 tag) const
    {
        return block.value(directory, tag, codec);
    }
    QString text(Header::ExifExtendedTag tag) const
    {
        return value(ExifBlock::Exif, tag).toString();
    }

    ExifBlock block;
    ExifBlock::TextCodec codec = ExifBlock::TextCodec::Latin1;
};

namespace {

// "Exif" and two bytes in front of the block
const int nameSize = 6;

// The EXIF segment of a photograph usually ends within this number of bytes.
const int usualSize = 20 * 1024;
// Files up to this size are read as a whole before they are changed.
const int smallSize = 1024 * 1024;

template <typename Tag>
QList<Tag> tagsOf(const ExifBlock& block, ExifBlock::Directory directory)
{
    const QList<quint16> numbers = block.tags(directory);
    QList<Tag> tags;
    for (const quint16 tag : numbers)
        tags.append(static_cast<Tag>(tag));
    return tags;
}

// Finding the block in a JPEG

struct ExifPlace
{
    bool isJpeg = false;
    bool isFound = false;
    qint64 begin = 0; // of the segment in the JPEG, or the position to insert one at
    qint64 end = 0;
    QByteArray block;
    bool goesOn = false; // in the next segment, as some programs write a block that is too large
};

/// Whether the next segment contains the rest of a block: it has the name of one, but no head.
bool isContinued(JpegSegments* segments)
{
    if (!segments->next() || segments->marker() != JpegMarker::App1
        || !segments->startsWith("Exif"))
        return false;
    const QByteArray head = segments->read(nameSize + 2).mid(nameSize);
    return head != "II" && head != "MM";
}

/// Finds the first EXIF segment of the JPEG at the current position of a device.
ExifPlace findExif(QIODevice* device)
{
    ExifPlace place;
    JpegSegments segments(device, JpegSegments::Markers::Standard);
    bool isThere = segments.begin();
    place.isJpeg = isThere;
    place.begin = 2; // after SOI
    bool isAtFront = true;
    for (; isThere && segments.marker() != JpegMarker::StartOfScan; isThere = segments.next()) {
        isAtFront = isAtFront && segments.marker() == JpegMarker::App0;
        if (isAtFront)
            place.begin = segments.payloadPosition() + segments.claimedSize();
        if (segments.marker() != JpegMarker::App1 || !segments.startsWith("Exif"))
            continue;
        const QByteArray payload = segments.read(segments.claimedSize());
        if (payload.size() < nameSize || payload.at(4) != '\0')
            continue;
        place.isFound = true;
        place.block = payload.mid(nameSize);
        place.begin = segments.position();
        place.end = segments.payloadPosition() + payload.size();
        place.goesOn = isContinued(&segments);
        break;
    }
    place.isJpeg = place.isJpeg && !segments.hasFailed();
    if (!place.isFound)
        place.end = place.begin;
    return place;
}

/// The same in a file whose \a head has already been read. More is read only if the head does not
/// contain the whole segment.
ExifPlace findExif(QFile* file, const QByteArray& head)
{
    const int nextSize = 16; // enough to see whether the block continues in the next segment
    QBuffer buffer;
    buffer.setData(head);
    buffer.open(QIODevice::ReadOnly);
    ExifPlace place = findExif(&buffer);
    if (head.size() == file->size() || (place.isFound && place.end + nextSize <= head.size()))
        return place;
    file->seek(0);
    return findExif(file);
}

/// Returns false, with the reason, if it is not a JPEG or its block is damaged.
bool parse(const ExifPlace& place, ExifBlock* block, QString* error)
{
    if (!place.isJpeg)
        return fail(error, PhotoFailure::NotJpeg);
    return !place.isFound || block->parse(place.block) || fail(error, PhotoFailure::Damaged);
}

enum class Shrinking { Allowed, FilledUp };

/// Finds what has to change in a JPEG so that it contains \a block. Returns false, with the reason,
/// if that is impossible.
bool findPatch(const ExifPlace& place, QByteArray block, Shrinking shrinking, FilePatch* patch,
               QString* error)
{
    if (!place.isJpeg)
        return fail(error, PhotoFailure::NotJpeg);
    const int missing = int(place.block.size() - block.size());
    if ((shrinking == Shrinking::FilledUp || place.goesOn) && missing > 0)
        block.append(QByteArray(missing, '\0'));
    if (place.goesOn && missing < 0)
        return fail(error,
                    QCoreApplication::translate(
                        "ExifEditor",
                        "The EXIF data of the picture fills several segments and cannot grow."));
    if (nameSize + block.size() > JpegSegments::MaximumPayload)
        return fail(error,
                    QCoreApplication::translate(
                        "ExifEditor", "The EXIF data is larger than a JPEG picture can hold."));
    patch->begin = place.begin;
    patch->end = place.end;
    patch->bytes = JpegSegments::head(JpegMarker::App1, int(nameSize + block.size()))
        + QByteArray("Exif\0\0", nameSize) + block;
    return true;
}

/// Composes the \a bytes of \a block and parses them again, as \a written: a damaged block may
/// become unreadable when it grows.
bool compose(const ExifBlock& block, QByteArray* bytes, ExifBlock* written, QString* error)
{
    *bytes = block.composed();
    return written->parse(*bytes) || fail(error, PhotoFailure::Damaged);
}

// Dates and positions

/// Parses an offset from UTC like "+02:00" into \a seconds.
bool parseOffset(const QString& text, int* seconds)
{
    const QString offset = text.trimmed();
    const QTime time = QTime::fromString(offset.mid(1), QStringLiteral("HH:mm"));
    const bool isEast = offset.startsWith(QLatin1Char('+'));
    if (!time.isValid() || (!isEast && !offset.startsWith(QLatin1Char('-'))))
        return false;
    const int size = time.hour() * 3600 + time.minute() * 60;
    *seconds = isEast ? size : -size;
    return true;
}

/// The milliseconds of a fraction of a second: 50 for "05".
int parseFraction(const QString& text)
{
    const QString digits = text.trimmed().leftJustified(3, QLatin1Char('0')).left(3);
    bool isNumber = false;
    const int milliseconds = digits.toInt(&isNumber);
    return isNumber ? qMax(0, milliseconds) : 0;
}

/// Returns false if the denominator is 0.
bool toDouble(const QPair<quint32, quint32>& rational, double* number)
{
    if (rational.second == 0)
        return false;
    *number = double(rational.first) / double(rational.second);
    return true;
}

/// Converts degrees, minutes and seconds, the last two of which may be missing, to degrees.
bool toDegrees(const QExifValue& value, double* degrees)
{
    const QVector<QPair<quint32, quint32>> parts = value.toRationalVector();
    if (parts.isEmpty() || parts.size() > 3 || !toDouble(parts[0], degrees))
        return false;
    double unit = 1;
    for (int i = 1; i < parts.size(); ++i) {
        unit /= 60;
        double part = 0;
        const bool isMissing = parts[i].first == 0 && parts[i].second == 0;
        if (!isMissing && !toDouble(parts[i], &part))
            return false;
        *degrees += part * unit;
    }
    return true;
}

/// A coordinate whose reference names one of two directions.
bool toCoordinate(const QExifValue& value, const QExifValue& reference, char positive,
                  char negative, double maximum, double* coordinate)
{
    const QString name = reference.toString();
    const QChar direction = name.isEmpty() ? QChar() : name.at(0).toUpper();
    const bool isNegative = direction == QLatin1Char(negative);
    if (!isNegative && direction != QLatin1Char(positive))
        return false;
    double degrees = 0;
    if (!toDegrees(value, &degrees) || degrees > maximum)
        return false;
    *coordinate = isNegative ? -degrees : degrees;
    return true;
}

} // namespace

ExifEditor::ExifEditor()
    : d(new ExifEditorPrivate)
{ }

ExifEditor::~ExifEditor() = default;

// Files

bool ExifEditor::load(const QString& fileName, QString* error)
{
    clear();
    IntactFile file(fileName);
    if (!file.isIntact())
        return failToOpen(error, file);
    const bool isLoaded = file.isSequential()
        ? parse(findExif(&file), &d->block, error)
        : parse(findExif(&file, file.read(usualSize)), &d->block, error);
    if (file.isIntact())
        return isLoaded;
    clear();
    return fail(error, PhotoFailure::NotRead);
}

bool ExifEditor::load(QIODevice* device, QString* error)
{
    clear();
    if (!device || !device->isReadable())
        return fail(error, PhotoFailure::NotRead);
    return parse(findExif(device), &d->block, error);
}

bool ExifEditor::save(const QString& fileName, QString* error)
{
    QFile file(fileName);
    if (!openPhoto(&file, error))
        return false;
    if (isEmpty())
        return true;
    QByteArray block;
    ExifBlock written;
    if (!compose(d->block, &block, &written, error))
        return false;
    FilePatch patch;
    const qint64 size = file.size();
    const QByteArray head = file.read(size <= smallSize ? size : usualSize);
    if (head.size() == size)
        patch.file = head;
    if (!findPatch(findExif(&file, head), block, Shrinking::Allowed, &patch, error))
        return false;
    if (!patchPhoto(&file, patch, error))
        return false;
    d->block = written;
    return true;
}

bool ExifEditor::save(QIODevice* device, QString* error)
{
    if (!device || device->isSequential() || !device->isReadable() || !device->isWritable()
        || device->openMode().testFlag(QIODevice::Append))
        return fail(error, PhotoFailure::NotWritten);
    if (isEmpty())
        return true;
    if (!device->seek(0))
        return fail(error, PhotoFailure::NotRead);
    QByteArray block;
    ExifBlock written;
    if (!compose(d->block, &block, &written, error))
        return false;
    FilePatch patch;
    if (!findPatch(findExif(device), block, Shrinking::FilledUp, &patch, error))
        return false;
    if (!patchInPlace(device, patch))
        return fail(error, PhotoFailure::NotWritten);
    d->block = written;
    return true;
}

void ExifEditor::clear()
{
    d->block = ExifBlock();
}

bool ExifEditor::isEmpty() const
{
    return d->block.isEmpty();
}

QDataStream::ByteOrder ExifEditor::byteOrder() const
{
    return d->block.byteOrder();
}

void ExifEditor::setUtf8(bool isUtf8)
{
    d->codec = isUtf8 ? ExifBlock::TextCodec::Utf8 : ExifBlock::TextCodec::Latin1;
}

bool ExifEditor::isUtf8() const
{
    return d->codec == ExifBlock::TextCodec::Utf8;
}

// Tags

QList<Header::ImageTag> ExifEditor::imageTags() const
{
    return tagsOf<Header::ImageTag>(d->block, ExifBlock::Image);
}

QList<Header::ExifExtendedTag> ExifEditor::extendedTags() const
{
    return tagsOf<Header::ExifExtendedTag>(d->block, ExifBlock::Exif);
}

QList<Header::GpsTag> ExifEditor::gpsTags() const
{
    return tagsOf<Header::GpsTag>(d->block, ExifBlock::Gps);
}

bool ExifEditor::contains(Header::ImageTag tag) const
{
    return d->block.contains(ExifBlock::Image, tag);
}

bool ExifEditor::contains(Header::ExifExtendedTag tag) const
{
    return d->block.contains(ExifBlock::Exif, tag);
}

bool ExifEditor::contains(Header::GpsTag tag) const
{
    return d->block.contains(ExifBlock::Gps, tag);
}

QExifValue ExifEditor::value(Header::ImageTag tag) const
{
    return d->value(ExifBlock::Image, tag);
}

QExifValue ExifEditor::value(Header::ExifExtendedTag tag) const
{
    return d->value(ExifBlock::Exif, tag);
}

QExifValue ExifEditor::value(Header::GpsTag tag) const
{
    return d->value(ExifBlock::Gps, tag);
}

void ExifEditor::setValue(Header::ImageTag tag, const QExifValue& value)
{
    d->block.setValue(ExifBlock::Image, tag, value, d->codec);
}

void ExifEditor::setValue(Header::ExifExtendedTag tag, const QExifValue& value)
{
    d->block.setValue(ExifBlock::Exif, tag, value, d->codec);
}

void ExifEditor::setValue(Header::GpsTag tag, const QExifValue& value)
{
    d->block.setValue(ExifBlock::Gps, tag, value, d->codec);
}

void ExifEditor::remove(Header::ImageTag tag)
{
    d->block.remove(ExifBlock::Image, tag);
}

void ExifEditor::remove(Header::ExifExtendedTag tag)
{
    d->block.remove(ExifBlock::Exif, tag);
}

void ExifEditor::remove(Header::GpsTag tag)
{
    d->block.remove(ExifBlock::Gps, tag);
}

// Convenience functions

int ExifEditor::orientation() const
{
    const quint32 number = value(Header::Orientation).toLong();
    return number <= 8 ? static_cast<int>(number) : 0;
}

void ExifEditor::setOrientation(int orientation)
{
    if (orientation == 0)
        remove(Header::Orientation);
    else if (orientation > 0 && orientation <= 8)
        setValue(Header::Orientation, QExifValue(static_cast<quint16>(orientation)));
}

void ExifEditor::removeGps()
{
    d->block.removeGps();
}

void ExifEditor::removeThumbnail()
{
    d->block.removeThumbnail();
}

QDateTime ExifEditor::dateTimeOriginal() const
{
    const QString text = d->text(Header::DateTimeOriginal);
    const QDate date = QDate::fromString(text.left(11), QStringLiteral("yyyy:MM:dd "));
    const QTime second = QTime::fromString(text.mid(11), QStringLiteral("HH:mm:ss"));
    if (!date.isValid() || !second.isValid())
        return QDateTime();
    const QTime time = second.addMSecs(parseFraction(d->text(Header::SubSecTimeOriginal)));
    for (const Header::ExifExtendedTag tag :
         {Header::OffsetTimeOriginal, Header::OffsetTimeDigitized, Header::OffsetTime}) {
        int seconds = 0;
        if (parseOffset(d->text(tag), &seconds))
            return QDateTime(date, time, Qt::OffsetFromUTC, seconds);
    }
    return QDateTime(date, time);
}

bool ExifEditor::gpsPosition(double* latitude, double* longitude, double* altitude) const
{
    double north = 0;
    double east = 0;
    if (!toCoordinate(value(Header::GPSLatitude), value(Header::GPSLatitudeRef), 'N', 'S', 90,
                      &north)
        || !toCoordinate(value(Header::GPSLongitude), value(Header::GPSLongitudeRef), 'E', 'W', 180,
                         &east))
        return false;
    double height = qQNaN();
    if (toDouble(value(Header::GPSAltitude).toRational(), &height)
        && value(Header::GPSAltitudeRef).toByte() % 2 == 1) // 1 below sea level, 3 below ellipsoid
        height = -height;
    if (latitude)
        *latitude = north;
    if (longitude)
        *longitude = east;
    if (altitude)
        *altitude = height;
    return true;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "QExifImageHeader.h"

#include "exifimageheader_p.h"
#include "filepatch_p.h"
#include "intactfile_p.h"
#include "jpegsegments_p.h"
#include "tiffblock_p.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QTransform>

using namespace OrvaUtilsPrivate;

namespace {

/// Finds what has to change in the JPEG of a device so that its EXIF segment contains \a payload.
/// Returns false if that is impossible.
bool findPatch(QIODevice* device, QByteArray payload, FilePatch* patch)
{
    if (!device->seek(0))
        return false;
    JpegSegments segments(device, JpegSegments::Markers::AllHaveLengths);
    if (!segments.begin())
        return false;
    const bool isJfif = segments.marker() == JpegMarker::App0 && segments.startsWith("JFIF");
    if (isJfif && !segments.next())
        return false;

    const bool isExif = segments.marker() == JpegMarker::App1 && segments.startsWith("Exif");
    const int oldSize = isExif ? segments.size() : 0;
    if (payload.size() < oldSize)
        payload.append(QByteArray(oldSize - payload.size(), '\0'));
    if (segments.hasFailed() || payload.size() > JpegSegments::MaximumPayload)
        return false;
    const bool keepsHead =
        isExif && payload.size() == segments.claimedSize() && payload.size() == oldSize;
    patch->begin = keepsHead ? segments.payloadPosition() : segments.position();
    patch->end = isExif ? segments.payloadPosition() + oldSize : segments.position();
    patch->bytes =
        keepsHead ? payload : JpegSegments::head(JpegMarker::App1, int(payload.size())) + payload;
    return true;
}

} // namespace

QDataStream& operator>>(QDataStream& stream, ExifIfdHeader& header)
{
    char bytes[entrySize] = {};
    const bool complete = stream.readRawData(bytes, entrySize) == entrySize;
    header = complete ? decodeEntry(bytes, stream.byteOrder()) : ExifIfdHeader();
    if (!complete)
        stream.setStatus(QDataStream::ReadPastEnd);
    return stream;
}

QExifImageHeader::QExifImageHeader()
    : d(new QExifImageHeaderPrivate)
{ }

QExifImageHeader::QExifImageHeader(const QString& fileName)
    : QExifImageHeader()
{
    loadFromJpeg(fileName);
}

QExifImageHeader::QExifImageHeader(QIODevice* device)
    : QExifImageHeader()
{
    loadFromJpeg(device);
}

QExifImageHeader::~QExifImageHeader() = default;

bool QExifImageHeader::loadFromJpeg(const QString& fileName)
{
    clear();
    if (fileName.isEmpty())
        return false;
    IntactFile file(fileName);
    const bool isLoaded = loadFromJpeg(&file);
    // A part of a block must not pass for the whole: saving it would lose the rest.
    if (!file.isIntact())
        clear();
    return isLoaded && file.isIntact();
}

bool QExifImageHeader::loadFromJpeg(QIODevice* device)
{
    clear();
    TiffReader block(extractExif(device));
    return d->read(block);
}

bool QExifImageHeader::saveToJpeg(const QString& fileName) const
{
    QFile file(fileName);
    FilePatch patch;
    return openToPatch(&file) && findPatch(&file, d->payload(), &patch)
        && patchFile(&file, patch, Irreplaceable::PatchInPlace) == Patched::Yes;
}

bool QExifImageHeader::saveToJpeg(QIODevice* device) const
{
    if (!device || device->isSequential() || !device->isReadable() || !device->isWritable()
        || device->openMode().testFlag(QIODevice::Append))
        return false;
    FilePatch patch;
    return findPatch(device, d->payload(), &patch) && patchInPlace(device, patch);
}

QByteArray QExifImageHeader::extractExif(QIODevice* device) const
{
    if (!device || !device->isReadable())
        return QByteArray();
    JpegSegments segments(device, JpegSegments::Markers::AllHaveLengths);
    bool isFound = segments.begin();
    while (isFound && segments.marker() != JpegMarker::App1)
        isFound = segments.next();
    const int headSize = 6; // "Exif" and two bytes that are ignored
    if (!isFound || !segments.startsWith("Exif") || segments.read(headSize).size() < headSize)
        return QByteArray();
    return segments.read(segments.claimedSize());
}

bool QExifImageHeader::read(QIODevice* device)
{
    clear();
    if (!device || !device->isReadable() || device->isSequential())
        return false;
    TiffReader block(device, device->pos());
    return d->read(block);
}

int QExifImageHeader::write(QIODevice* device) const
{
    if (!device || !device->isWritable())
        return 0;
    QByteArray block;
    block.reserve(d->predictedSize());
    d->appendBlock(&block);
    const int written = static_cast<int>(qMax(Q_INT64_C(0), device->write(block)));
    if (written != block.size())
        d->size = -1;
    return written;
}

QDataStream::ByteOrder QExifImageHeader::byteOrder() const
{
    return d->byteOrder;
}

void QExifImageHeader::clear()
{
    const ByteOrder order = d->byteOrder;
    *d = QExifImageHeaderPrivate();
    d->byteOrder = order;
}

QList<QExifImageHeader::ImageTag> QExifImageHeader::imageTags() const
{
    return d->imageIfdValues.tags();
}

QList<QExifImageHeader::ExifExtendedTag> QExifImageHeader::extendedTags() const
{
    return d->exifIfdValues.tags();
}

QList<QExifImageHeader::GpsTag> QExifImageHeader::gpsTags() const
{
    return d->gpsIfdValues.tags();
}

bool QExifImageHeader::contains(ImageTag tag) const
{
    return d->imageIfdValues.find(tag) != nullptr;
}

bool QExifImageHeader::contains(ExifExtendedTag tag) const
{
    return d->exifIfdValues.find(tag) != nullptr;
}

bool QExifImageHeader::contains(GpsTag tag) const
{
    return d->gpsIfdValues.find(tag) != nullptr;
}

void QExifImageHeader::remove(ImageTag tag)
{
    d->imageIfdValues.remove(tag);
    d->size = -1;
}

void QExifImageHeader::remove(ExifExtendedTag tag)
{
    d->exifIfdValues.remove(tag);
    d->size = -1;
}

void QExifImageHeader::remove(GpsTag tag)
{
    d->gpsIfdValues.remove(tag);
    d->size = -1;
}

QExifValue QExifImageHeader::value(ImageTag tag) const
{
    return d->imageIfdValues.value(tag);
}

QExifValue QExifImageHeader::value(ExifExtendedTag tag) const
{
    return d->exifIfdValues.value(tag);
}

QExifValue QExifImageHeader::value(GpsTag tag) const
{
    return d->gpsIfdValues.value(tag);
}

void QExifImageHeader::setValue(ImageTag tag, const QExifValue& value)
{
    d->imageIfdValues.insert(tag, value);
    d->size = -1;
}

void QExifImageHeader::setValue(ExifExtendedTag tag, const QExifValue& value)
{
    d->exifIfdValues.insert(tag, value);
    d->size = -1;
}

void QExifImageHeader::setValue(GpsTag tag, const QExifValue& value)
{
    d->gpsIfdValues.insert(tag, value);
    d->size = -1;
}

QImage QExifImageHeader::thumbnail() const
{
    if (!d->thumbnailData.startsWith("\xFF\xD8"))
        return QImage();
    QBuffer buffer(&d->thumbnailData);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "JPG");
    // A JPEG spends at least one bit on each block of 8 x 8 pixels. One that claims to use fewer is
    // not worth the memory that it requires.
    const QSize size = reader.size();
    const qint64 maximumPixels = Q_INT64_C(8) * 64 * d->thumbnailData.size();
    if (!size.isValid() || qint64(size.width()) * size.height() > maximumPixels)
        return QImage();
    QImage image = reader.read();

    // toShort() is 0 for anything but a single Short or Byte.
    const QTransform quarterTurn = QTransform().rotate(90);
    switch (d->thumbnailOrientation.toShort()) {
    case 2:
        return image.mirrored(true, false);
    case 3:
        return image.mirrored(true, true);
    case 4:
        return image.mirrored(false, true);
    case 5:
        return image.transformed(quarterTurn).mirrored(true, false);
    case 6:
        return image.transformed(quarterTurn);
    case 7:
        return image.transformed(quarterTurn).mirrored(false, true);
    case 8:
        return image.transformed(QTransform().rotate(270));
    default:
        return image;
    }
}

void QExifImageHeader::setThumbnail(const QImage& thumbnail)
{
    d->size = -1;
    d->thumbnailData.clear();
    d->thumbnailSize = QSize();
    if (thumbnail.isNull())
        return;
    QBuffer buffer(&d->thumbnailData);
    buffer.open(QIODevice::WriteOnly);
    if (!thumbnail.save(&buffer, "JPG"))
        d->thumbnailData.clear();
    d->thumbnailSize = thumbnail.size();
    d->thumbnailOrientation = QExifValue();
}

int QExifImageHeader::size() const
{
    if (d->size == -1)
        d->size = d->predictedSize();
    return d->size;
}

QList<ExifIfdHeader> QExifImageHeader::readIfdHeaders(QDataStream& stream) const
{
    TiffReader block(stream.device(), 0);
    block.setOrder(stream.byteOrder());
    return block.entries().toList();
}

QExifValue QExifImageHeader::readIfdValue(QDataStream& stream, int startPos,
                                          const ExifIfdHeader& header) const
{
    TiffReader block(stream.device(), startPos);
    block.setOrder(stream.byteOrder());
    return block.value(header);
}

quint32 QExifImageHeader::writeExifHeader(QDataStream& stream, quint16 tag, const QExifValue& value,
                                          quint32 offset) const
{
    QByteArray bytes;
    TiffWriter writer(&bytes, stream.byteOrder());
    const quint32 next = writer.writeEntry(tag, value, offset);
    stream.writeRawData(bytes.constData(), int(bytes.size()));
    return next;
}

void QExifImageHeader::writeExifValue(QDataStream& stream, const QExifValue& value) const
{
    QByteArray bytes;
    TiffWriter writer(&bytes, stream.byteOrder());
    writer.writeData(value);
    stream.writeRawData(bytes.constData(), int(bytes.size()));
}

quint32 QExifImageHeader::sizeOf(const QExifValue& value) const
{
    return sizeOfEntry(value);
}

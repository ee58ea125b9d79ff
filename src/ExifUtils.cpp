// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ExifUtils.h"

#include "ExifEditor.h"
#include "QExifImageHeader.h"
#include "filepatch_p.h"
#include "intactfile_p.h"
#include "jpegsegments_p.h"
#include "locationeraser_p.h"
#include "metadatachoice_p.h"
#include "photofile_p.h"
#include "picturemetadata_p.h"
#include "tiffblock_p.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>

using namespace OrvaUtilsPrivate;

namespace {

/// The entries of the first directory of a picture's EXIF block.
struct ImageIfd
{
    ByteOrder order = QDataStream::BigEndian;
    qint64 position = 0; // of the entries, from the beginning of the JPEG
    QByteArray entries;
};

/// Reads no further than this directory. Returns false if it is missing or incomplete.
bool readImageIfd(QIODevice* device, ImageIfd* ifd)
{
    const int nameSize = 6; // "Exif" and two bytes
    JpegSegments segments(device, JpegSegments::Markers::Standard);
    bool isThere = segments.begin();
    while (isThere && segments.marker() != JpegMarker::StartOfScan
           && !(segments.marker() == JpegMarker::App1 && segments.startsWith("Exif")))
        isThere = segments.next();
    if (!isThere || segments.marker() != JpegMarker::App1)
        return false;
    const QByteArray head = segments.read(nameSize + tiffHeaderSize).mid(nameSize);
    const bool isLittle = head.startsWith("II");
    ifd->order = isLittle ? QDataStream::LittleEndian : QDataStream::BigEndian;
    if (head.size() < tiffHeaderSize || (!isLittle && !head.startsWith("MM"))
        || decode<quint16>(head.constData() + 2, ifd->order) != tiffMagic)
        return false;
    const auto offset = decode<quint32>(head.constData() + 4, ifd->order);
    if (offset < tiffHeaderSize || offset > static_cast<quint32>(segments.claimedSize()))
        return false;
    segments.read(static_cast<int>(offset) - tiffHeaderSize);
    const QByteArray count = segments.read(countSize);
    if (count.size() < countSize)
        return false;
    const int size = decode<quint16>(count.constData(), ifd->order) * entrySize;
    ifd->position = segments.payloadPosition() + nameSize + static_cast<int>(offset) + countSize;
    ifd->entries = segments.read(size);
    return ifd->entries.size() == size;
}

/// The same for an unbuffered file; usually a single read is enough.
ImageIfd readImageIfd(QFile* file)
{
    QBuffer head;
    head.setData(file->read(2048));
    head.open(QIODevice::ReadOnly);
    ImageIfd ifd;
    if (readImageIfd(&head, &ifd))
        return ifd;
    ifd = ImageIfd();
    file->seek(0);
    readImageIfd(file, &ifd);
    return ifd;
}

/// The orientation that an entry contains, or 0 if EXIF does not define it.
int orientationOf(const ExifIfdHeader& entry, const ImageIfd& ifd, int at)
{
    if (entry.count != 1)
        return 0;
    const char* const field = ifd.entries.constData() + at + 8;
    quint32 number = 0;
    if (entry.type == QExifValue::Byte)
        number = static_cast<quint8>(*field);
    else if (entry.type == QExifValue::Short)
        number = decode<quint16>(field, ifd.order);
    else if (entry.type == QExifValue::Long || entry.type == QExifValue::SignedLong)
        number = decode<quint32>(field, ifd.order);
    return number <= 8 ? static_cast<int>(number) : 0;
}

/// Calls \a visit with each entry of the orientation and its position.
template <typename Visit>
void visitOrientations(const ImageIfd& ifd, const Visit& visit)
{
    for (int at = 0; at + entrySize <= ifd.entries.size(); at += entrySize) {
        const ExifIfdHeader entry = decodeEntry(ifd.entries.constData() + at, ifd.order);
        if (entry.tag == QExifImageHeader::Orientation)
            visit(entry, at);
    }
}

/// The entries with \a orientation in them, as a single Short; empty if they have no orientation.
QByteArray entriesWith(const ImageIfd& ifd, quint16 orientation)
{
    QByteArray entries;
    visitOrientations(ifd, [&](const ExifIfdHeader& entry, int at) {
        if (entries.isEmpty())
            entries = ifd.entries;
        char* const bytes = entries.data() + at;
        const bool isShort = entry.type == QExifValue::Short && entry.count == 1;
        encode(quint16(QExifValue::Short), bytes + 2, ifd.order);
        encode(quint32(1), bytes + 4, ifd.order);
        if (!isShort)
            encode(quint32(0), bytes + 8, ifd.order);
        encode(orientation, bytes + 8, ifd.order);
    });
    return entries;
}

/// Opens a JPEG file to change it, and reads all of it.
bool readToChange(QFile* file, QByteArray* content, QString* error)
{
    if (!openPhoto(file, error))
        return false;
    *content = file->readAll();
    if (content->size() != file->size())
        return fail(error, PhotoFailure::NotRead);
    if (!content->startsWith("\xFF\xD8\xFF"))
        return fail(error, PhotoFailure::NotJpeg);
    return true;
}

} // namespace

// Rotation

int ExifUtils::imageExifRotation(const QString& fileName)
{
    return imageExifRotation(QExifImageHeader(fileName));
}

int ExifUtils::imageExifRotation(QIODevice* device)
{
    return imageExifRotation(QExifImageHeader(device));
}

int ExifUtils::imageExifRotation(const QExifImageHeader& header)
{
    switch (header.value(QExifImageHeader::Orientation).toShort()) {
    case 3:
        return 180;
    case 6:
        return 90;
    case 8:
        return -90;
    default:
        return 0;
    }
}

bool ExifUtils::clearRotation(const QString& fileName)
{
    QExifImageHeader header;
    if (!header.loadFromJpeg(fileName))
        return false;
    header.setValue(QExifImageHeader::Orientation, QExifValue(qint32(0)));
    return header.saveToJpeg(fileName);
}

// Orientation

int ExifUtils::imageExifOrientation(const QString& fileName)
{
    IntactFile file(fileName);
    const int orientation = file.isIntact() ? imageExifOrientation(&file) : 0;
    return file.isIntact() ? orientation : 0;
}

int ExifUtils::imageExifOrientation(QIODevice* device)
{
    ImageIfd ifd;
    int orientation = 0;
    if (device && device->isReadable()) {
        readImageIfd(device, &ifd);
        visitOrientations(ifd, [&](const ExifIfdHeader& entry, int at) {
            orientation = orientationOf(entry, ifd, at);
        });
    }
    return orientation;
}

bool ExifUtils::setOrientation(const QString& fileName, int orientation, QString* error)
{
    if (orientation < 1 || orientation > 8)
        return fail(
            error,
            QCoreApplication::translate("ExifUtils", "There is no such orientation of a picture."));
    QFile file(fileName);
    if (!openPhoto(&file, error))
        return false;
    const ImageIfd ifd = readImageIfd(&file);
    FilePatch patch;
    patch.bytes = entriesWith(ifd, static_cast<quint16>(orientation));
    if (!patch.bytes.isEmpty()) {
        patch.begin = ifd.position;
        patch.end = ifd.position + patch.bytes.size();
        patch.before = ifd.entries;
        return patchPhoto(&file, patch, error);
    }
    file.close();
    ExifEditor editor;
    if (!editor.load(fileName, error))
        return false;
    editor.setOrientation(orientation);
    return editor.save(fileName, error);
}

// Privacy

bool ExifUtils::removeLocation(const QString& fileName, QString* error)
{
    QFile file(fileName);
    QByteArray content;
    if (!readToChange(&file, &content, error))
        return false;
    QByteArray without = content;
    if (!eraseLocation(&without))
        return fail(error, PhotoFailure::Damaged);
    return patchPhoto(&file, {0, content.size(), without, content, content}, error);
}

bool ExifUtils::removeMetadata(const QString& fileName, QString* error, Rotated rotated)
{
    QFile file(fileName);
    QByteArray content;
    if (!readToChange(&file, &content, error))
        return false;
    file.seek(0);
    const int orientation = imageExifOrientation(&file);
    if (orientation > 1 && rotated == Rotated::Refuse)
        return fail(
            error,
            QCoreApplication::translate(
                "ExifUtils", "Without its EXIF data the picture would no longer stand upright."));
    const QByteArray bare =
        jpegWithMetadata(content, withOrientation(PictureMetadata(), orientation), QByteArray());
    if (bare.isEmpty())
        return fail(error, PhotoFailure::NotJpeg);
    return patchPhoto(&file, {0, content.size(), bare, QByteArray(), content}, error);
}

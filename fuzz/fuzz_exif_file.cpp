// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// loadFromJpeg() and saveToJpeg() on a whole file: everything outside the EXIF segment is kept byte
// for byte, and a second save changes nothing.

#include "Fuzz.h"
#include "QExifImageHeader.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

namespace {

int lengthAt(const QByteArray& file, int position)
{
    return uchar(file.at(position)) << 8 | uchar(file.at(position + 1));
}

/// The begin and the end of a segment in a file.
struct Range
{
    int begin;
    int end;
};

/// The segment at \a begin, which may be truncated by the end of the file.
Range segmentAt(const QByteArray& file, int begin)
{
    if (begin + 4 > file.size())
        return {begin, begin};
    return {begin, qMin(begin + 2 + qMax(2, lengthAt(file, begin + 2)), file.size())};
}

/// The EXIF segment that a save replaces: the first one, or the second one after JFIF; otherwise an
/// empty range where a new one is inserted.
Range exifSegment(const QByteArray& file)
{
    Range segment = segmentAt(file, 2);
    if (file.mid(segment.begin, 2) == "\xff\xe0" && file.mid(segment.begin + 4, 4) == "JFIF"
        && segment.end >= segment.begin + 8)
        segment = segmentAt(file, segment.end);
    const bool isExif = file.mid(segment.begin, 2) == "\xff\xe1"
        && file.mid(segment.begin + 4, 4) == "Exif" && segment.end >= segment.begin + 8;
    return isExif ? segment : Range{segment.begin, segment.begin};
}

QByteArray saved(const QExifImageHeader& header, const QByteArray& file, bool* ok)
{
    QBuffer device;
    device.setData(file);
    device.open(QIODevice::ReadWrite);
    *ok = header.saveToJpeg(&device);
    return device.data();
}

void editAsAsked(QExifImageHeader* header, FuzzedDataProvider& wishes)
{
    const auto count = wishes.ConsumeIntegralInRange<int>(0, 3);
    for (int i = 0; i < count; ++i) {
        const auto tag = wishes.ConsumeIntegral<quint16>();
        const QString text(wishes.ConsumeIntegralInRange<int>(0, 2000), QLatin1Char('x'));
        switch (wishes.ConsumeIntegralInRange<int>(0, 3)) {
        case 0:
            header->setValue(QExifImageHeader::ImageTag(tag), QExifValue(text));
            break;
        case 1:
            header->setValue(QExifImageHeader::ExifExtendedTag(tag), QExifValue(text));
            break;
        case 2:
            header->setValue(QExifImageHeader::GpsTag(tag), QExifValue(text));
            break;
        default:
            header->remove(QExifImageHeader::ImageTag(tag));
            break;
        }
    }
}

QString filePath()
{
    static const QTemporaryDir folder;
    return folder.filePath(QStringLiteral("photo.jpg"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, size_t size)
{
    // The settings are at the end, so that a real photograph is a good input.
    FuzzedDataProvider wishes(data, size);
    const bool asFile = wishes.ConsumeIntegralInRange<int>(0, 15) == 1;
    QExifImageHeader header;
    {
        QBuffer device;
        device.setData(reinterpret_cast<const char*>(data), int(size));
        device.open(QIODevice::ReadOnly);
        header.loadFromJpeg(&device);
    }
    editAsAsked(&header, wishes);
    header.remove(QExifImageHeader::GpsInfoIfdPointer); // a save sets it itself

    const QByteArray before(reinterpret_cast<const char*>(data), int(size));
    bool ok = false;
    const QByteArray after = saved(header, before, &ok);
    if (!ok) {
        FUZZ_PROMISE(after == before);
    } else {
        const Range oldSegment = exifSegment(before);
        const Range newSegment = exifSegment(after);
        FUZZ_PROMISE(newSegment.begin == oldSegment.begin);
        FUZZ_PROMISE(newSegment.end > newSegment.begin);
        FUZZ_PROMISE(after.left(newSegment.begin) == before.left(oldSegment.begin));
        FUZZ_PROMISE(after.mid(newSegment.end) == before.mid(oldSegment.end));
        FUZZ_PROMISE(after.size() >= before.size());

        // The GPS pointer that a save leaves in the header would be written twice.
        header.remove(QExifImageHeader::GpsInfoIfdPointer);
        FUZZ_PROMISE(saved(header, after, &ok) == after && ok);
        // With it the file grows once, and stays the same from then on.
        QByteArray again = after;
        for (int i = 0; i < 3 && ok; ++i)
            again = saved(header, again, &ok);
        if (ok)
            FUZZ_PROMISE(saved(header, again, &ok) == again && ok);
    }

    if (asFile) {
        QFile file(filePath());
        FUZZ_PROMISE(file.open(QIODevice::WriteOnly) && file.write(before) == before.size());
        file.close();
        header.remove(QExifImageHeader::GpsInfoIfdPointer);
        const bool fileOk = header.saveToJpeg(file.fileName());
        FUZZ_PROMISE(file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();
        header.remove(QExifImageHeader::GpsInfoIfdPointer);
        FUZZ_PROMISE(content == saved(header, before, &ok) && ok == fileOk);
    }
    return 0;
}

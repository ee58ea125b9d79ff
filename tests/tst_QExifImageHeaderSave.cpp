// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// QExifImageHeader and JPEG files: what it reads, and how it changes them.

#include "QExifImageHeader.h"

#include "Columns.h"
#include "JpegParts.h"
#include "LogCapture.h"
#include "OddDevices.h"
#include "OrdinaryUser.h"
#include "Sandbox.h"
#include "SystemCalls.h"
#include "TiffBuilder.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <array>

#ifdef Q_OS_LINUX
#include <cerrno>
#include <sys/xattr.h>
#endif

using Header = QExifImageHeader;

namespace {

#ifdef Q_OS_UNIX
/// As long as the object lives, files cannot grow beyond a size: writes fail as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(qint64 size)
    {
        getrlimit(RLIMIT_FSIZE, &mBefore);
        mHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = mBefore;
        limit.rlim_cur = static_cast<rlim_t>(size);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &mBefore);
        std::signal(SIGXFSZ, mHandler);
    }

private:
    Q_DISABLE_COPY(FileSizeLimit)

    rlimit mBefore;
    void (*mHandler)(int);
};
#endif

} // namespace

class tst_QExifImageHeaderSave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void extractExif_data();
    void extractExif();
    void extractExifSequential_data();
    void extractExifSequential();
    void extractExifFromPosition();
    void extractExifFromBadDevice();
    void loadFromJpeg();
    void loadFails_data();
    void loadFails();

    void save_data();
    void save();
    void savePadsInPlace_data();
    void savePadsInPlace();
    void saveRefuses_data();
    void saveRefuses();
    void saveRefusesDevice();
    void saveRefusesLargeBlock();
    void saveTakesLargestBlock();
    void saveFileErrors();
    void saveFailedWrite_data();
    void saveFailedWrite();
    void saveFailedRead_data();
    void saveFailedRead();
    void saveOnFullDisk();
    void saveIgnoresPosition();
#ifdef Q_OS_UNIX
    void saveReplacesFile_data();
    void saveReplacesFile();
    void saveLeavesSameFile();
    void saveFollowsLink();
    void saveKeepsNames();
    void saveKeepsPermissions_data();
    void saveKeepsPermissions();
    void saveKeepsOwner();
    void saveInForeignFolder();
    void saveOfForeignFile();
    void saveOfLongName();
#endif
#ifdef Q_OS_LINUX
    void saveKeepsAttributes();
    void saveKeepsAccessList();
#endif
};

void tst_QExifImageHeaderSave::extractExif_data()
{
    const auto row = columns<QByteArray, QByteArray>("file", "block");

    const QByteArray block("the block");
    const QByteArray none;
    row("first", soi() + exifSegment(block) + scan(), block);
    row("behind JFIF", soi() + jfif() + exifSegment(block) + scan(), block);
    row("behind others",
        soi() + jfif() + segment(0xFFE2, "ICC_PROFILE") + dqt() + exifSegment(block) + scan(),
        block);
    row("a segment without payload before it", soi() + segment(0xFFFE, "") + exifSegment(block),
        block);
    row("only the first of two", soi() + exifSegment(block) + exifSegment("second"), block);
    row("the two bytes behind the name are not looked at",
        soi() + segment(0xFFE1, "Exif!?the block"), block);
    row("XMP before it", soi() + jfif() + xmp() + exifSegment(block) + scan(), none);
    row("lower case", soi() + segment(0xFFE1, QByteArray("exif\0\0abc", 9)), none);
    row("no APP1", soi() + jfif() + dqt() + hex("FFD9"), none);
    row("not a JPEG", "GIF89a", none);
    row("SOI swapped", hex("D8FF") + exifSegment(block), none);
    row("empty", none, none);
    row("one byte", hex("FF"), none);
    row("SOI alone", soi(), none);
    row("half a marker", soi() + hex("FF"), none);
    row("marker without a length", soi() + hex("FFE0"), none);
    row("half a length", soi() + hex("FFE0 00"), none);
    row("APP1 without a length", soi() + hex("FFE1"), none);
    row("APP1 with half a length", soi() + hex("FFE1 00"), none);
    row("APP1 without a name", soi() + hex("FFE1 0020"), none);
    row("APP1 with half a name", soi() + hex("FFE1 0020 4578"), none);
    row("cut short behind the name", soi() + hex("FFE1 0020 45786966"), none);
    row("cut short in the NULs", soi() + hex("FFE1 0020 45786966 00"), none);
    row("cut short before the block", soi() + hex("FFE1 0020 45786966 0000"), none);
    row("cut short in the block", soi() + hex("FFE1 0020 45786966 0000 0102"), hex("0102"));
    row("largest length, little there", soi() + hex("FFE1 FFFF 45786966 0000 0102"), hex("0102"));
    for (int length = 0; length <= 8; ++length)
        row(qPrintable(QStringLiteral("APP1 of length %1").arg(length)),
            soi() + TiffBuilder(big).u16(0xFFE1).u16(unsigned(length)).all()
                + QByteArray("Exif\0\0abcdef", 12),
            none);
    row("APP1 of length 9", soi() + hex("FFE1 0009 45786966 0000 01020304"), hex("01"));
    row("segment of length 0", soi() + hex("FFE0 0000") + exifSegment(block), none);
    row("segment of length 1", soi() + hex("FFE0 0001") + exifSegment(block), none);
    row("segment that leads beyond the end", soi() + hex("FFE0 FFFF") + exifSegment(block), none);
    row("segment that leads to the very end", soi() + hex("FFE0 0004 0000"), none);
    row("a million NULs", soi() + QByteArray(1000000, '\0'), none);
}

void tst_QExifImageHeaderSave::extractExif()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, block);
    LogCapture log;
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadWrite); // can grow, but must not
    QCOMPARE(Header().extractExif(&buffer), block);
    QCOMPARE(buffer.data(), file);
    QVERIFY(buffer.isOpen());

    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, file);
    QFile onDisk(fileName);
    QVERIFY(onDisk.open(QIODevice::ReadWrite));
    QCOMPARE(Header().extractExif(&onDisk), block);
    onDisk.close();
    QCOMPARE(contentOf(fileName), file);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeaderSave::extractExifSequential_data()
{
    extractExif_data();
}

// A device that cannot seek gives the same result.
void tst_QExifImageHeaderSave::extractExifSequential()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, block);
    LogCapture log;
    SequentialDevice device;
    device.content = file;
    device.open(QIODevice::ReadOnly);
    QCOMPARE(Header().extractExif(&device), block);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeaderSave::extractExifFromPosition()
{
    QBuffer buffer;
    buffer.setData("prefix" + soi() + jfif() + exifSegment("block") + scan());
    buffer.open(QIODevice::ReadOnly);
    QVERIFY(Header().extractExif(&buffer).isEmpty());
    buffer.seek(6);
    QCOMPARE(Header().extractExif(&buffer), QByteArray("block"));
}

void tst_QExifImageHeaderSave::extractExifFromBadDevice()
{
    LogCapture log;
    QVERIFY(Header().extractExif(nullptr).isEmpty());
    QBuffer buffer;
    buffer.setData(soi() + exifSegment("block"));
    QVERIFY(Header().extractExif(&buffer).isEmpty());
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(Header().extractExif(&buffer).isEmpty());
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeaderSave::loadFromJpeg()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("\u00e9 1.jpg"));
    const QByteArray content = soi() + jfif() + exifSegment(fullBlock(big)) + scan();
    writeFile(fileName, content);
    Header header;
    QVERIFY(header.loadFromJpeg(fileName));
    QCOMPARE(header.value(Header::Make).toString(), QStringLiteral("Orva"));
    QCOMPARE(header.byteOrder(), big);
    QCOMPARE(contentOf(fileName), content);
    QCOMPARE(Header(fileName).value(Header::Orientation).toShort(), quint16(6));

    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(Header(&file).value(Header::Orientation).toShort(), quint16(6));
    QVERIFY(file.isOpen());

    SequentialDevice sequential;
    sequential.content = content;
    sequential.open(QIODevice::ReadOnly);
    QVERIFY(header.loadFromJpeg(&sequential));
    QCOMPARE(header.gpsTags().size(), 2);
}

void tst_QExifImageHeaderSave::loadFails_data()
{
    const auto row = columns<QByteArray>("file");
    row("empty", QByteArray());
    row("no EXIF", soi() + jfif() + scan());
    row("XMP first", soi() + xmp() + exifSegment(orientationBlock()));
    row("empty block", soi() + exifSegment(QByteArray()));
    row("no mark", soi() + exifSegment("not a block at all"));
}

void tst_QExifImageHeaderSave::loadFails()
{
    QFETCH(QByteArray, file);
    LogCapture log;
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, file);
    Header header;
    fillWithOrientation(&header);
    QVERIFY(!header.loadFromJpeg(fileName));
    QVERIFY(header.imageTags().isEmpty());
    fillWithOrientation(&header);
    QVERIFY(!header.loadFromJpeg(folder.filePath(QStringLiteral("missing.jpg"))));
    QVERIFY(header.imageTags().isEmpty());
    QVERIFY(!header.loadFromJpeg(folder.path()));
    QVERIFY(!header.loadFromJpeg(QString()));
    QVERIFY(!header.loadFromJpeg(static_cast<QIODevice*>(nullptr)));
    QVERIFY(!QFile::exists(folder.filePath(QStringLiteral("missing.jpg"))));
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeaderSave::save_data()
{
    const auto row = columns<QByteArray, QByteArray>("before", "after");

    const QByteArray fresh = exifSegment(orientationBlock()); // payload 46 bytes
    const QByteArray small = exifSegment("a smaller one");
    const QByteArray large = exifSegment(QByteArray(100, 'x'));
    const QByteArray padded = exifSegment(orientationBlock() + QByteArray(60, '\0'));
    const QByteArray same = exifSegment(QByteArray(40, 'x'));
    const QByteArray icc = segment(0xFFE2, QByteArray("ICC_PROFILE\0\1\1", 14));

    row("EXIF first, grows", soi() + small + dqt() + scan(), soi() + fresh + dqt() + scan());
    row("EXIF first, same size", soi() + same + dqt() + scan(), soi() + fresh + dqt() + scan());
    row("EXIF first, padded", soi() + large + dqt() + scan(), soi() + padded + dqt() + scan());
    row("EXIF first, name alone", soi() + segment(0xFFE1, "Exif") + scan(), soi() + fresh + scan());
    row("JFIF, EXIF, grows", soi() + jfif() + small + dqt() + scan(),
        soi() + jfif() + fresh + dqt() + scan());
    row("JFIF, EXIF, same size", soi() + jfif() + same + dqt() + scan(),
        soi() + jfif() + fresh + dqt() + scan());
    row("JFIF, EXIF, padded", soi() + jfif() + large + dqt() + scan(),
        soi() + jfif() + padded + dqt() + scan());
    row("JFIF, no EXIF", soi() + jfif() + dqt() + scan(), soi() + jfif() + fresh + dqt() + scan());
    row("JFIF, XMP", soi() + jfif() + xmp() + dqt() + scan(),
        soi() + jfif() + fresh + xmp() + dqt() + scan());
    row("JFIF, XMP, EXIF", soi() + jfif() + xmp() + small + scan(),
        soi() + jfif() + fresh + xmp() + small + scan());
    row("JFIF, ICC, EXIF", soi() + jfif() + icc + small + scan(),
        soi() + jfif() + fresh + icc + small + scan());
    row("JFIF, EXIF, EXIF", soi() + jfif() + small + small + scan(),
        soi() + jfif() + fresh + small + scan());
    row("JFIF, JFXX", soi() + jfif() + segment(0xFFE0, "JFXX") + scan(),
        soi() + jfif() + fresh + segment(0xFFE0, "JFXX") + scan());
    row("XMP first", soi() + xmp() + dqt() + scan(), soi() + fresh + xmp() + dqt() + scan());
    row("XMP, EXIF", soi() + xmp() + small + scan(), soi() + fresh + xmp() + small + scan());
    row("APP0 that is not JFIF", soi() + segment(0xFFE0, "JFXX") + small + scan(),
        soi() + fresh + segment(0xFFE0, "JFXX") + small + scan());
    row("APP13, EXIF", soi() + segment(0xFFED, "Photoshop") + small + scan(),
        soi() + fresh + segment(0xFFED, "Photoshop") + small + scan());
    row("DQT first", soi() + dqt() + scan(), soi() + fresh + dqt() + scan());
    row("SOF first", soi() + segment(0xFFC0, "frame") + scan(),
        soi() + fresh + segment(0xFFC0, "frame") + scan());
    row("APP1 of length 0", soi() + hex("FFE1 0000 45786966 0000") + scan(),
        soi() + fresh + hex("FFE1 0000 45786966 0000") + scan());
    row("APP1 whose name does not fit", soi() + hex("FFE1 0005 45786966 0000") + scan(),
        soi() + fresh + hex("FFE1 0005 45786966 0000") + scan());
    row("APP0 of length 1", soi() + hex("FFE0 0001 4A464946") + scan(),
        soi() + fresh + hex("FFE0 0001 4A464946") + scan());
    row("EXIF cut short by the end, grows", soi() + hex("FFE1 1000 45786966 0000 0102"),
        soi() + fresh);
    row("EXIF cut short by the end, padded",
        soi() + TiffBuilder(big).u16(0xFFE1).u16(4096).all() + exifPayload(QByteArray(100, 'x')),
        soi() + padded);
    row("EXIF cut short by the end, same size",
        soi() + TiffBuilder(big).u16(0xFFE1).u16(4096).all() + exifPayload(QByteArray(40, 'x')),
        soi() + fresh);
    row("segment cut short by the end", soi() + hex("FFDB 1000 0102"),
        soi() + fresh + hex("FFDB 1000 0102"));
    row("shortest file that has a segment", soi() + hex("FFFE 0002"),
        soi() + fresh + hex("FFFE 0002"));
}

void tst_QExifImageHeaderSave::save()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    LogCapture log;
    Header header;
    fillWithOrientation(&header);

    QBuffer buffer;
    buffer.setData(before);
    buffer.open(QIODevice::ReadWrite);
    QVERIFY(header.saveToJpeg(&buffer));
    QCOMPARE(buffer.data().toHex(), after.toHex());
    QVERIFY(buffer.isOpen());

    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, before);
    QVERIFY(header.saveToJpeg(fileName));
    QCOMPARE(contentOf(fileName).toHex(), after.toHex());

    writeFile(fileName, before);
    QFile buffered(fileName);
    QVERIFY(buffered.open(QIODevice::ReadWrite));
    QVERIFY(header.saveToJpeg(&buffered));
    buffered.close();
    QCOMPARE(contentOf(fileName).toHex(), after.toHex());
    QVERIFY(log.records().isEmpty());

    // The saved block is found again if it is the first APP1 segment.
    Header again;
    QVERIFY(again.loadFromJpeg(fileName));
    QCOMPARE(again.value(Header::Orientation).toShort(), quint16(6));
}

void tst_QExifImageHeaderSave::savePadsInPlace_data()
{
    const auto row = columns<QByteArray, int>("head", "oldBlock");
    row("first, same size", soi(), 40);
    row("first, larger", soi(), 5000);
    row("behind JFIF, same size", soi() + jfif(), 40);
    row("behind JFIF, larger", soi() + jfif(), 41);
    row("largest segment", soi(), 65527);
}

// Only the payload is written.
void tst_QExifImageHeaderSave::savePadsInPlace()
{
    QFETCH(QByteArray, head);
    QFETCH(int, oldBlock);
    WatchedBuffer buffer;
    buffer.setData(head + exifSegment(QByteArray(oldBlock, 'x')) + scan());
    buffer.open(QIODevice::ReadWrite);
    Header header;
    fillWithOrientation(&header);
    QVERIFY(header.saveToJpeg(&buffer));
    const QVector<QPair<qint64, qint64>> writes = {{head.size() + 4, oldBlock + 6}};
    QCOMPARE(buffer.writes, writes);
    QCOMPARE(buffer.data(),
             head + exifSegment(orientationBlock() + QByteArray(oldBlock - 40, '\0')) + scan());
}

void tst_QExifImageHeaderSave::saveRefuses_data()
{
    const auto row = columns<QByteArray>("file");
    row("empty", QByteArray());
    row("one byte", hex("FF"));
    row("not a JPEG", "GIF89a and more");
    row("SOI alone", soi());
    row("half a marker", soi() + hex("FF"));
    row("no length", soi() + hex("FFE1"));
    row("half a length", soi() + hex("FFE1 00"));
    row("SOI and EOI", soi() + hex("FFD9"));
    row("nothing behind JFIF", soi() + jfif());
    row("half a marker behind JFIF", soi() + jfif() + hex("FF"));
    row("no length behind JFIF", soi() + jfif() + hex("FFE1"));
    row("JFIF cut short", soi() + jfif().left(12));
}

void tst_QExifImageHeaderSave::saveRefuses()
{
    QFETCH(QByteArray, file);
    LogCapture log;
    Header header;
    fillWithOrientation(&header);
    WatchedBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadWrite);
    QVERIFY(!header.saveToJpeg(&buffer));
    QCOMPARE(buffer.data(), file);
    QVERIFY(buffer.writes.isEmpty());
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, file);
    QVERIFY(!header.saveToJpeg(fileName));
    QCOMPARE(contentOf(fileName), file);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeaderSave::saveRefusesDevice()
{
    LogCapture log;
    Header header;
    fillWithOrientation(&header);
    const QByteArray file = soi() + jfif() + dqt() + scan();
    QVERIFY(!header.saveToJpeg(static_cast<QIODevice*>(nullptr)));
    SequentialDevice sequential;
    sequential.content = file;
    sequential.open(QIODevice::ReadWrite);
    QVERIFY(!header.saveToJpeg(&sequential));
    QCOMPARE(sequential.content, file);
    const QIODevice::OpenMode modes[] = {QIODevice::NotOpen, QIODevice::ReadOnly,
                                         QIODevice::ReadWrite | QIODevice::Append};
    for (const QIODevice::OpenMode mode : modes) {
        QBuffer buffer;
        buffer.setData(file);
        if (mode != QIODevice::NotOpen)
            buffer.open(mode);
        QVERIFY(!header.saveToJpeg(&buffer));
        QCOMPARE(buffer.data(), file);
    }
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, file);
    QFile writeOnly(fileName);
    QVERIFY(writeOnly.open(QIODevice::WriteOnly | QIODevice::Append));
    QVERIFY(!header.saveToJpeg(&writeOnly));
    writeOnly.close();
    QCOMPARE(contentOf(fileName), file);
    QVERIFY(log.records().isEmpty());
}

// The block of a header with one value of raw bytes: 26 + 2 + 12 and the bytes, which begin 2 bytes
// after their offset.
static int blockSizeWith(int rawBytes)
{
    return 40 + rawBytes;
}

void tst_QExifImageHeaderSave::saveRefusesLargeBlock()
{
    Header header;
    const int tooMany = 65533 - 6 - blockSizeWith(0) + 1;
    header.setValue(Header::MakerNote, QExifValue(QByteArray(tooMany, 'x')));
    QCOMPARE(written(header).size(), 65528);
    for (const QByteArray& file : {soi() + exifSegment("old") + scan(), soi() + jfif() + scan(),
                                   soi() + exifSegment(QByteArray(65527, 'x')) + scan()}) {
        WatchedBuffer buffer;
        buffer.setData(file);
        buffer.open(QIODevice::ReadWrite);
        QVERIFY(!header.saveToJpeg(&buffer));
        QCOMPARE(buffer.data(), file);
        QVERIFY(buffer.writes.isEmpty());
    }
}

void tst_QExifImageHeaderSave::saveTakesLargestBlock()
{
    Header header;
    const int asMany = 65533 - 6 - blockSizeWith(0);
    header.setValue(Header::MakerNote, QExifValue(QByteArray(asMany, 'x')));
    const QByteArray block = written(header);
    QCOMPARE(block.size(), 65527);
    QBuffer buffer;
    buffer.setData(soi() + jfif() + scan());
    buffer.open(QIODevice::ReadWrite);
    QVERIFY(header.saveToJpeg(&buffer));
    QCOMPARE(buffer.data(), soi() + jfif() + hex("FFE1 FFFF") + exifPayload(block) + scan());
}

void tst_QExifImageHeaderSave::saveFileErrors()
{
    LogCapture log;
    QTemporaryDir folder;
    Header header;
    fillWithOrientation(&header);
    const QString missing = folder.filePath(QStringLiteral("missing.jpg"));
    QVERIFY(!header.saveToJpeg(missing));
    QVERIFY(!QFile::exists(missing));
    QVERIFY(!header.saveToJpeg(folder.path()));
    QVERIFY(!header.saveToJpeg(QString()));
    // The system would end the name at the NUL, and change another file.
    const QString photo = folder.filePath(QStringLiteral("a.jpg"));
    const QByteArray content = soi() + exifSegment(fullBlock(big)) + scan();
    writeFile(photo, content);
    QVERIFY(!header.saveToJpeg(photo + QChar() + QLatin1Char('b')));
    QVERIFY(!header.loadFromJpeg(photo + QChar() + QLatin1Char('b')));
    QVERIFY(header.imageTags().isEmpty());
    QCOMPARE(contentOf(photo), content);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeaderSave::saveFailedWrite_data()
{
    const auto row = columns<QByteArray>("file");
    row("in place", soi() + exifSegment(QByteArray(500, 'x')) + scan());
    row("grows", soi() + exifSegment("small") + dqt() + scan());
    row("inserted", soi() + jfif() + dqt() + scan());
}

// A device that refuses a write at some byte, then accepts what is restored.
void tst_QExifImageHeaderSave::saveFailedWrite()
{
    QFETCH(QByteArray, file);
    Header header;
    fillWithOrientation(&header);
    QBuffer whole;
    whole.setData(file);
    whole.open(QIODevice::ReadWrite);
    QVERIFY(header.saveToJpeg(&whole));
    const int toWrite = int(qMax(file.size(), whole.data().size()));
    int failures = 0;
    for (int capacity = 0; capacity < toWrite + 1; ++capacity) {
        WatchedBuffer buffer;
        buffer.setData(file);
        buffer.open(QIODevice::ReadWrite);
        buffer.capacity = capacity;
        buffer.failsOnce = true;
        if (header.saveToJpeg(&buffer)) {
            QCOMPARE(buffer.data(), whole.data());
            continue;
        }
        ++failures;
        // A buffer cannot be truncated; all former bytes are there.
        QCOMPARE(buffer.data().left(file.size()), file);
    }
    QVERIFY(failures > 40);
}

void tst_QExifImageHeaderSave::saveFailedRead_data()
{
    saveFailedWrite_data();
}

// A device that refuses one read or seek, each in turn.
void tst_QExifImageHeaderSave::saveFailedRead()
{
    QFETCH(QByteArray, file);
    Header header;
    fillWithOrientation(&header);
    int failing = 0;
    for (;; ++failing) {
        FaultyBuffer buffer(file, failing);
        const bool isSaved = header.saveToJpeg(&buffer);
        QCOMPARE(isSaved, !buffer.hasFailed());
        if (isSaved)
            break;
        // A buffer cannot be truncated; all former bytes are there.
        QCOMPARE(buffer.data().left(file.size()), file);
    }
    QVERIFY(failing > 5);
}

void tst_QExifImageHeaderSave::saveOnFullDisk()
{
#ifdef Q_OS_UNIX
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    const QByteArray file = soi() + jfif() + dqt() + QByteArray(100000, 'x') + scan();
    Header header;
    fillWithOrientation(&header);
    for (const int room : {0, 1, 49}) { // 50 bytes are needed
        writeFile(fileName, file);
        bool saved = true;
        {
            const FileSizeLimit limit(file.size() + room);
            saved = header.saveToJpeg(fileName);
        }
        QVERIFY(!saved);
        QVERIFY(contentOf(fileName) == file);
    }
    {
        const FileSizeLimit limit(file.size() + 50);
        QVERIFY(header.saveToJpeg(fileName));
    }
    QCOMPARE(contentOf(fileName).size(), file.size() + 50);
#else
    QSKIP("a limit of the file size is set with setrlimit()");
#endif
}

// The whole device is the JPEG: also right after loading from it.
void tst_QExifImageHeaderSave::saveIgnoresPosition()
{
    QBuffer buffer;
    buffer.setData(soi() + exifSegment(fullBlock(little)) + scan());
    buffer.open(QIODevice::ReadWrite);
    Header header;
    QVERIFY(header.loadFromJpeg(&buffer));
    QVERIFY(buffer.pos() != 0);
    header.setValue(Header::Orientation, QExifValue(quint16(3)));
    QVERIFY(header.saveToJpeg(&buffer));
    buffer.seek(0);
    QCOMPARE(Header(&buffer).value(Header::Orientation).toShort(), quint16(3));

    // A JPEG further back is not at the beginning of the device.
    const QByteArray content = "prefix" + soi() + jfif() + scan();
    QBuffer embedded;
    embedded.setData(content);
    embedded.open(QIODevice::ReadWrite);
    embedded.seek(6);
    QVERIFY(!header.saveToJpeg(&embedded));
    QCOMPARE(embedded.data(), content);
}

#ifdef Q_OS_UNIX

/// The status of a file.
static struct stat statusOf(const QString& fileName)
{
    struct stat status = {};
    if (stat(QFile::encodeName(fileName).constData(), &status) != 0)
        qFatal("no status of %s", qPrintable(fileName));
    return status;
}

static QStringList everythingIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                  | QDir::NoDotAndDotDot);
}

/// Saves the header of fillWithOrientation() into a file.
static bool saveOrientation(const QString& fileName)
{
    Header header;
    fillWithOrientation(&header);
    return header.saveToJpeg(fileName);
}

/// A file that grows by a new segment, and the result of saving the header of fillWithOrientation()
/// into it.
static QByteArray shortFile()
{
    return soi() + jfif() + scan();
}
static QByteArray shortFileSaved()
{
    return soi() + jfif() + exifSegment(orientationBlock()) + scan();
}

void tst_QExifImageHeaderSave::saveReplacesFile_data()
{
    const auto row = columns<QByteArray, QByteArray, bool>("before", "after", "replaced");

    const auto padded = [](int size) { return orientationBlock() + QByteArray(size - 40, '\0'); };
    const auto withX = [](QByteArray bytes, const QVector<int>& positions) {
        for (const int position : positions)
            bytes[position] = 'x';
        return bytes;
    };
    row("inserted", shortFile(), shortFileSaved(), true);
    row("grows", soi() + exifSegment("small") + scan(),
        soi() + exifSegment(orientationBlock()) + scan(), true);
    row("grows, large file", soi() + exifSegment("small") + QByteArray(1000003, 's'),
        soi() + exifSegment(orientationBlock()) + QByteArray(1000003, 's'), true);
    row("same size", soi() + exifSegment(QByteArray(40, 'x')) + scan(),
        soi() + exifSegment(orientationBlock()) + scan(), false);
    // SOI, marker, length and "Exif" with its NULs take 12 bytes.
    row("up to the end of a block of 4096 bytes",
        soi() + exifSegment(QByteArray(4096 - 12, 'x')) + scan(),
        soi() + exifSegment(padded(4096 - 12)) + scan(), false);
    row("one byte beyond", soi() + exifSegment(QByteArray(4097 - 12, 'x')) + scan(),
        soi() + exifSegment(padded(4097 - 12)) + scan(), true);
    const QByteArray wanted = soi() + exifSegment(padded(9000)) + scan();
    row("in the second block alone", withX(wanted, {4096, 8191}), wanted, false);
    row("on both sides of a border", withX(wanted, {4095, 4096}), wanted, true);
    row("at both ends", withX(wanted, {20, 9011}), wanted, true);
    row("last byte of the segment", withX(wanted, {9011}), wanted, false);
    row("EXIF cut short by the end, length corrected",
        soi() + TiffBuilder(big).u16(0xFFE1).u16(4096).all() + exifPayload(QByteArray(40, 'x')),
        soi() + exifSegment(orientationBlock()), false);
}

// Bytes within one block are written in place. Any change that a kill could leave incomplete
// replaces the file.
void tst_QExifImageHeaderSave::saveReplacesFile()
{
    SKIP_ON_WINDOWS("files have no numbers there");
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(bool, replaced);
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, before);
    const ino_t old = statusOf(fileName).st_ino;
    // An open file keeps its inode number, which no other file can have then.
    QFile open(fileName);
    QVERIFY(open.open(QIODevice::ReadOnly));

    QVERIFY(saveOrientation(fileName));
    QVERIFY(contentOf(fileName) == after);
    QCOMPARE(statusOf(fileName).st_ino != old, replaced);
    QVERIFY(open.readAll() == (replaced ? before : after));
    QCOMPARE(everythingIn(folder.path()), QStringList(QStringLiteral("file.jpg")));
}

// Bytes that are there already are not written again.
void tst_QExifImageHeaderSave::saveLeavesSameFile()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    for (const QByteArray& block : {orientationBlock(), orientationBlock() + QByteArray(9000, 0)}) {
        const QByteArray file = soi() + exifSegment(block) + scan();
        writeFile(fileName, file);
        const utimbuf longAgo = {1000000000, 1000000000};
        QCOMPARE(utime(QFile::encodeName(fileName).constData(), &longAgo), 0);
        const ino_t number = statusOf(fileName).st_ino;
        Header header;
        fillWithOrientation(&header);
        QVERIFY(header.saveToJpeg(fileName));
        QVERIFY(contentOf(fileName) == file);
        QCOMPARE(statusOf(fileName).st_mtime, time_t(1000000000));
        QCOMPARE(statusOf(fileName).st_ino, number);

        header.setValue(Header::Orientation, QExifValue(quint16(3)));
        QVERIFY(header.saveToJpeg(fileName));
        QVERIFY(statusOf(fileName).st_mtime > time_t(1000000000));
    }
}

void tst_QExifImageHeaderSave::saveFollowsLink()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("photos")));
    const QString photo = folder.filePath(QStringLiteral("photos/file.jpg"));
    const QString link = folder.filePath(QStringLiteral("link.jpg"));
    const QString linkToLink = folder.filePath(QStringLiteral("second.jpg"));
    writeFile(photo, shortFile());
    QCOMPARE(symlink("photos/file.jpg", QFile::encodeName(link).constData()), 0);
    QCOMPARE(symlink("link.jpg", QFile::encodeName(linkToLink).constData()), 0);
    QVERIFY(saveOrientation(linkToLink));
    QCOMPARE(contentOf(photo).toHex(), shortFileSaved().toHex());
    QVERIFY(!QFileInfo(photo).isSymLink());
    QCOMPARE(QFileInfo(link).symLinkTarget(), QFileInfo(photo).absoluteFilePath());
    QCOMPARE(QFileInfo(linkToLink).symLinkTarget(), QFileInfo(link).absoluteFilePath());
    QCOMPARE(everythingIn(folder.path()).size(), 3);
    QCOMPARE(everythingIn(folder.filePath(QStringLiteral("photos"))).size(), 1);
}

// All hard links of a file show what was saved.
void tst_QExifImageHeaderSave::saveKeepsNames()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QTemporaryDir folder;
    const QString one = folder.filePath(QStringLiteral("one.jpg"));
    const QString other = folder.filePath(QStringLiteral("other.jpg"));
    writeFile(one, shortFile());
    QCOMPARE(link(QFile::encodeName(one).constData(), QFile::encodeName(other).constData()), 0);
    QVERIFY(saveOrientation(one));
    QCOMPARE(contentOf(one).toHex(), shortFileSaved().toHex());
    QCOMPARE(contentOf(other).toHex(), shortFileSaved().toHex());
    QCOMPARE(statusOf(one).st_ino, statusOf(other).st_ino);
    QCOMPARE(everythingIn(folder.path()).size(), 2);
}

void tst_QExifImageHeaderSave::saveKeepsPermissions_data()
{
    const auto row = columns<int>("permissions");
    for (const int permissions : {0600, 0640, 0604, 0666, 0755, 0700})
        row(QByteArray::number(permissions, 8).constData(), permissions);
}

void tst_QExifImageHeaderSave::saveKeepsPermissions()
{
    SKIP_ON_WINDOWS("there are no modes of POSIX");
    QFETCH(int, permissions);
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, shortFile());
    changeMode(fileName, mode_t(permissions));
    QVERIFY(saveOrientation(fileName));
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    QCOMPARE(int(statusOf(fileName).st_mode & 07777), permissions);
}

// The superuser can change the owner of files, and does.
void tst_QExifImageHeaderSave::saveKeepsOwner()
{
    SKIP_ON_WINDOWS("there are no modes of POSIX");
    if (geteuid() != 0)
        QSKIP("only root owns files of others");
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, shortFile());
    QCOMPARE(chown(QFile::encodeName(fileName).constData(), 12345, 23456), 0);
    changeMode(fileName, 0640);
    const ino_t old = statusOf(fileName).st_ino;
    QFile open(fileName);
    QVERIFY(open.open(QIODevice::ReadOnly));
    QVERIFY(saveOrientation(fileName));
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    const struct stat status = statusOf(fileName);
    QVERIFY(status.st_ino != old);
    QCOMPARE(status.st_uid, uid_t(12345));
    QCOMPARE(status.st_gid, gid_t(23456));
    QCOMPARE(int(status.st_mode & 07777), 0640);
}

// A folder that accepts no new file: the photograph itself is written.
void tst_QExifImageHeaderSave::saveInForeignFolder()
{
    SKIP_ON_WINDOWS("there are no modes of POSIX");
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, shortFile());
    changeMode(fileName, 0666);
    const ino_t old = statusOf(fileName).st_ino;
    changeMode(folder.path(), 0555);
    bool saved = false;
    {
        const OrdinaryUser ordinary;
        saved = saveOrientation(fileName);
    }
    changeMode(folder.path(), 0700);
    QVERIFY(saved);
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    QCOMPARE(statusOf(fileName).st_ino, old);
}

// The owner of a photograph remains the same.
void tst_QExifImageHeaderSave::saveOfForeignFile()
{
    SKIP_ON_WINDOWS("there are no modes of POSIX");
    if (geteuid() != 0)
        QSKIP("only root makes files of others");
    QTemporaryDir folder;
    changeMode(folder.path(), 0777);
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, shortFile());
    changeMode(fileName, 0666);
    const ino_t old = statusOf(fileName).st_ino;
    {
        const OrdinaryUser ordinary;
        QVERIFY(saveOrientation(fileName));
    }
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    QCOMPARE(statusOf(fileName).st_ino, old);
    QCOMPARE(statusOf(fileName).st_uid, uid_t(0));
    QCOMPARE(everythingIn(folder.path()).size(), 1);
}

// Next to a name of the maximum length no longer name is possible.
void tst_QExifImageHeaderSave::saveOfLongName()
{
    QTemporaryDir folder;
    const QString fileName =
        folder.filePath(QString(251, QLatin1Char('n')) + QStringLiteral(".jpg"));
    writeFile(fileName, shortFile());
    QVERIFY(saveOrientation(fileName));
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    QCOMPARE(everythingIn(folder.path()).size(), 1);
}

#endif // Q_OS_UNIX

#ifdef Q_OS_LINUX

/// Null if it does not exist.
static QByteArray attributeOf(const QByteArray& path, const char* name)
{
    std::array<char, 2000> value;
    const ssize_t size = getxattr(path.constData(), name, value.data(), value.size());
    return size < 0 ? QByteArray() : QByteArray(value.data(), int(size));
}

void tst_QExifImageHeaderSave::saveKeepsAttributes()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    const QByteArray path = QFile::encodeName(fileName);
    writeFile(fileName, shortFile());
    const QByteArray longValue(1000, 'v');
    if (setxattr(path.constData(), "user.comment", "a note", 6, 0) != 0 && errno == ENOTSUP)
        QSKIP("this file system has no extended attributes");
    QCOMPARE(setxattr(path.constData(), "user.empty", "", 0, 0), 0);
    QCOMPARE(setxattr(path.constData(), "user.long", longValue.constData(), 1000, 0), 0);
    QVERIFY(saveOrientation(fileName));
    QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
    QCOMPARE(attributeOf(path, "user.comment"), QByteArray("a note"));
    QCOMPARE(attributeOf(path, "user.empty"), QByteArray(""));
    QCOMPARE(attributeOf(path, "user.long"), longValue);
}

/// An access control list as Linux stores it: the permissions of the owner, of user 1000, of the
/// group, the mask, and of all others.
static QByteArray accessList(unsigned owner, unsigned user1000, unsigned group, unsigned others)
{
    const quint32 nobody = 0xFFFFFFFF;
    TiffBuilder list(little);
    list.u32(2);
    list.u16(0x01).u16(owner).u32(nobody);
    list.u16(0x02).u16(user1000).u32(1000);
    list.u16(0x04).u16(group).u32(nobody);
    list.u16(0x10).u16(user1000 | group).u32(nobody);
    list.u16(0x20).u16(others).u32(nobody);
    return list.all();
}

// The access control list of the file, not the default of its folder.
void tst_QExifImageHeaderSave::saveKeepsAccessList()
{
    QTemporaryDir folder;
    const QByteArray folderPath = QFile::encodeName(folder.path());
    const QString listed = folder.filePath(QStringLiteral("listed.jpg"));
    const QString plain = folder.filePath(QStringLiteral("plain.jpg"));
    writeFile(listed, shortFile());
    writeFile(plain, shortFile());
    changeMode(plain, 0640);
    const char* const access = "system.posix_acl_access";
    const QByteArray own = accessList(6, 4, 4, 0);
    const QByteArray ofFolder = accessList(7, 7, 7, 7);
    if (setxattr(QFile::encodeName(listed).constData(), access, own.constData(), size_t(own.size()),
                 0)
            != 0
        && errno == ENOTSUP)
        QSKIP("this file system has no access lists");
    QCOMPARE(setxattr(folderPath.constData(), "system.posix_acl_default", ofFolder.constData(),
                      size_t(ofFolder.size()), 0),
             0);
    for (const QString& fileName : {listed, plain}) {
        QVERIFY(saveOrientation(fileName));
        QCOMPARE(contentOf(fileName).toHex(), shortFileSaved().toHex());
        QCOMPARE(int(statusOf(fileName).st_mode & 07777), 0640);
    }
    QCOMPARE(attributeOf(QFile::encodeName(listed), access).toHex(), own.toHex());
    QVERIFY(attributeOf(QFile::encodeName(plain), access).isNull());
}

#endif // Q_OS_LINUX

QTEST_GUILESS_MAIN(tst_QExifImageHeaderSave)
#include "tst_QExifImageHeaderSave.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// QExifImageHeader: the block that it writes, byte for byte, its size and the thumbnail.

#include "QExifImageHeader.h"

#include "Columns.h"
#include "JpegParts.h"
#include "LogCapture.h"
#include "OddDevices.h"
#include "TiffBuilder.h"

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QtTest>

#include <functional>
#include <random>

using Header = QExifImageHeader;
using UnsignedPair = QPair<quint32, quint32>;
using SignedPair = QPair<qint32, qint32>;
using Longs = QVector<quint32>;

Q_DECLARE_METATYPE(QExifValue)
Q_DECLARE_METATYPE(QDataStream::ByteOrder)

class tst_QExifImageHeaderWrite : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizeOf_data();
    void sizeOf();
    void writeEntry_data();
    void writeEntry();
    void writeEmpty();
    void writeImageTags();
    void writeSubIfdOffsets();
    void writeGps();
    void writeGpsTwice();
    void writeGpsOverOldPointer();
    void writeThumbnail();
    void writeThumbnailDefaults();
    void writeAtPosition();
    void writeFails();
    void sizePredicted();
    void sizeCached();
    void rereadAfterWrite_data();
    void rereadAfterWrite();

    void thumbnailOrientation_data();
    void thumbnailOrientation();
    void thumbnailOrientationOfOtherKind_data();
    void thumbnailOrientationOfOtherKind();
    void setThumbnail();
    void thumbnailThatCannotBe();

    void mutations_data();
    void mutations();
};

void tst_QExifImageHeaderWrite::sizeOf_data()
{
    const auto row = columns<QExifValue, quint32>("value", "size");
    row("null", QExifValue(), 12u);
    row("4 bytes", QExifValue(QVector<quint8>(4)), 12u);
    row("5 bytes", QExifValue(QVector<quint8>(5)), 17u);
    row("text of 3", QExifValue(QStringLiteral("abc")), 12u);
    row("text of 4", QExifValue(QStringLiteral("abcd")), 17u);
    row("no text", QExifValue(QString()), 12u);
    row("4 raw bytes", QExifValue(QByteArray(4, 'x')), 12u);
    row("5 raw bytes", QExifValue(QByteArray(5, 'x')), 17u);
    row("no short", QExifValue(QVector<quint16>()), 12u);
    row("2 shorts", QExifValue(QVector<quint16>(2)), 12u);
    row("3 shorts", QExifValue(QVector<quint16>(3)), 18u);
    row("no long", QExifValue(Longs()), 12u);
    row("1 long", QExifValue(quint32(1)), 12u);
    row("2 longs", QExifValue(Longs(2)), 20u);
    row("1 signed long", QExifValue(qint32(1)), 12u);
    row("2 signed longs", QExifValue(QVector<qint32>(2)), 20u);
    row("no rational", QExifValue(QVector<UnsignedPair>()), 12u);
    row("1 rational", QExifValue(UnsignedPair(1, 2)), 20u);
    row("3 rationals", QExifValue(QVector<UnsignedPair>(3)), 36u);
    row("no signed rational", QExifValue(QVector<SignedPair>()), 12u);
    row("1 signed rational", QExifValue(SignedPair(1, 2)), 20u);
    row("2 signed rationals", QExifValue(QVector<SignedPair>(2)), 28u);
}

void tst_QExifImageHeaderWrite::sizeOf()
{
    QFETCH(QExifValue, value);
    QFETCH(quint32, size);
    QCOMPARE(OpenHeader().sizeOf(value), size);
}

void tst_QExifImageHeaderWrite::writeEntry_data()
{
    // entry: after the tag 9286
    // next: after the offset 256
    const auto table = columns<QDataStream::ByteOrder, QExifValue, QByteArray, quint32, QByteArray>(
        "order", "value", "entry", "next", "data");

    const auto row = [&](const char* name, const QExifValue& value, const char* littleEntry,
                         const char* bigEntry, quint32 next, const char* littleData = "",
                         const char* bigData = "") {
        table(qPrintable(QLatin1String(name) + QLatin1String(", II")), little, value,
              hex(littleEntry), next, hex(littleData));
        table(qPrintable(QLatin1String(name) + QLatin1String(", MM")), big, value, hex(bigEntry),
              next, hex(bigData));
    };
    row("null", QExifValue(), "0100 00000000 00000000", "0001 00000000 00000000", 256);
    row("byte", QExifValue(quint8(9)), "0100 01000000 09000000", "0001 00000001 09000000", 256);
    row("4 bytes", QExifValue(QVector<quint8>{1, 2, 3, 4}), "0100 04000000 01020304",
        "0001 00000004 01020304", 256);
    row("5 bytes", QExifValue(QVector<quint8>{1, 2, 3, 4, 5}), "0100 05000000 00010000",
        "0001 00000005 00000100", 261, "0102030405", "0102030405");
    row("no text", QExifValue(QString()), "0200 01000000 00000000", "0002 00000001 00000000", 256);
    row("text of 1", QExifValue(QStringLiteral("N")), "0200 02000000 4E000000",
        "0002 00000002 4E000000", 256);
    row("text of 3", QExifValue(QStringLiteral("ab\u00e9")), "0200 04000000 6162E900",
        "0002 00000004 6162E900", 256);
    row("text of 4", QExifValue(QStringLiteral("a\u20acb\u00e9")), "0200 05000000 00010000",
        "0002 00000005 00000100", 261, "613F62E900", "613F62E900");
    row("text with NULs", QExifValue(QString::fromLatin1("a\0b\0", 4)), "0200 05000000 00010000",
        "0002 00000005 00000100", 261, "6100620000", "6100620000");
    row("no raw byte", QExifValue(QByteArray()), "0700 00000000 00000000", "0007 00000000 00000000",
        256);
    row("3 raw bytes", QExifValue(QByteArray("\1\2\3")), "0700 03000000 01020300",
        "0007 00000003 01020300", 256);
    row("5 raw bytes", QExifValue(hex("0001020304")), "0700 05000000 00010000",
        "0007 00000005 00000100", 261, "0001020304", "0001020304");
    row("no short", QExifValue(QVector<quint16>()), "0300 00000000 00000000",
        "0003 00000000 00000000", 256);
    row("1 short", QExifValue(quint16(0x1234)), "0300 01000000 34120000", "0003 00000001 12340000",
        256);
    row("2 shorts", QExifValue(QVector<quint16>{0x1234, 5}), "0300 02000000 34120500",
        "0003 00000002 12340005", 256);
    row("3 shorts", QExifValue(QVector<quint16>{0x1234, 5, 6}), "0300 03000000 00010000",
        "0003 00000003 00000100", 262, "341205000600", "123400050006");
    row("no long", QExifValue(Longs()), "0400 00000000 00000000", "0004 00000000 00000000", 256);
    row("1 long", QExifValue(quint32(0x12345678)), "0400 01000000 78563412",
        "0004 00000001 12345678", 256);
    row("2 longs", QExifValue(Longs{0x12345678, 1}), "0400 02000000 00010000",
        "0004 00000002 00000100", 264, "7856341201000000", "1234567800000001");
    row("no signed long", QExifValue(QVector<qint32>()), "0900 00000000 00000000",
        "0009 00000000 00000000", 256);
    row("1 signed long", QExifValue(qint32(-2)), "0900 01000000 FEFFFFFF", "0009 00000001 FFFFFFFE",
        256);
    row("2 signed longs", QExifValue(QVector<qint32>{-2, 1}), "0900 02000000 00010000",
        "0009 00000002 00000100", 264, "FEFFFFFF01000000", "FFFFFFFE00000001");
    row("no rational", QExifValue(QVector<UnsignedPair>()), "0500 00000000 00000000",
        "0005 00000000 00000000", 256);
    row("1 rational", QExifValue(UnsignedPair(1, 60)), "0500 01000000 00010000",
        "0005 00000001 00000100", 264, "010000003C000000", "000000010000003C");
    row("2 rationals", QExifValue(QVector<UnsignedPair>{{1, 2}, {3, 4}}), "0500 02000000 00010000",
        "0005 00000002 00000100", 272, "01000000020000000300000004000000",
        "00000001000000020000000300000004");
    row("no signed rational", QExifValue(QVector<SignedPair>()), "0A00 00000000 00000000",
        "000A 00000000 00000000", 256);
    row("1 signed rational", QExifValue(SignedPair(-1, 3)), "0A00 01000000 00010000",
        "000A 00000001 00000100", 264, "FFFFFFFF03000000", "FFFFFFFF00000003");
}

void tst_QExifImageHeaderWrite::writeEntry()
{
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QExifValue, value);
    QFETCH(QByteArray, entry);
    QFETCH(quint32, next);
    QFETCH(QByteArray, data);
    LogCapture log;
    const OpenHeader header;
    QByteArray writtenEntry;
    {
        QDataStream stream(&writtenEntry, QIODevice::WriteOnly);
        stream.setByteOrder(order);
        QCOMPARE(header.writeExifHeader(stream, 0x9286, value, 256), next);
    }
    QCOMPARE(writtenEntry.toHex(), (TiffBuilder(order).u16(0x9286).all() + entry).toHex());
    QByteArray writtenData;
    {
        QDataStream stream(&writtenData, QIODevice::WriteOnly);
        stream.setByteOrder(order);
        header.writeExifValue(stream, value);
    }
    QCOMPARE(writtenData.toHex(), data.toHex());
    QCOMPARE(header.sizeOf(value), quint32(12 + data.size()));
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeaderWrite::writeEmpty()
{
    Header header;
    QCOMPARE(written(header),
             hex("4949 2A00 08000000" // little endian, 42, IFD0 at 8
                 "0100" // one entry
                 "6987 0400 01000000 1A000000" // ExifIfdPointer, Long, 1, 26
                 "00000000" // no IFD1
                 "0000")); // at 26: no entries
    QCOMPARE(header.size(), 28);
    QVERIFY(readBlock(&header, hex("4D4D 002A 00000008 0000 00000000")));
    QCOMPARE(written(header),
             hex("4D4D 002A 00000008 0001 8769 0004 00000001 0000001A 00000000 0000"));
}

// In ascending order, with data in the same order and offsets where the data is.
void tst_QExifImageHeaderWrite::writeImageTags()
{
    Header header;
    header.setValue(Header::Copyright, QExifValue(QStringLiteral("me")));
    header.setValue(Header::XResolution, QExifValue(UnsignedPair(300, 1)));
    header.setValue(Header::Orientation, QExifValue(quint16(6)));
    header.setValue(Header::Make, QExifValue(QStringLiteral("Orva")));
    const QByteArray expected =
        hex("4949 2A00 08000000 0500"
            "0F01 0200 05000000 4A000000" // Make, 5 characters at 74 = 26 + 12 x 4
            "1201 0300 01000000 06000000" // Orientation 6
            "1A01 0500 01000000 4F000000" // XResolution, at 79
            "9882 0200 03000000 6D650000" // Copyright "me"
            "6987 0400 01000000 57000000" // ExifIfdPointer, 87
            "00000000"
            "4F72766100" // 74: "Orva"
            "2C010000 01000000" // 79: 300/1
            "0000"); // 87: no extended tags
    QCOMPARE(written(header).toHex(), expected.toHex());
    QCOMPARE(header.size(), 89);
}

void tst_QExifImageHeaderWrite::writeSubIfdOffsets()
{
    Header header;
    header.setValue(Header::ExposureTime, QExifValue(UnsignedPair(1, 60)));
    header.setValue(Header::UserComment, QExifValue(QByteArray("abcde")));
    const QByteArray expected = hex("4949 2A00 08000000 0100"
                                    "6987 0400 01000000 1A000000"
                                    "00000000"
                                    "0200" // 26: two extended tags
                                    "9A82 0500 01000000 32000000" // 50 = 26 + 12 x 2
                                    "8692 0700 05000000 3A000000" // 58
                                    "01000000 3C000000" // lands at 52
                                    "6162636465"); // lands at 60
    QCOMPARE(written(header).toHex(), expected.toHex());
}

void tst_QExifImageHeaderWrite::writeGps()
{
    Header header;
    QVERIFY(readBlock(&header, hex("4D4D 002A 00000008 0000 00000000"))); // big endian
    header.setValue(Header::GPSVersionID, QExifValue(QVector<quint8>{2, 3, 0, 0}));
    header.setValue(Header::GPSLatitude,
                    QExifValue(QVector<UnsignedPair>{{47, 1}, {30, 1}, {5, 2}}));
    header.setValue(Header::Flash, QExifValue(quint16(1)));
    QVERIFY(!header.contains(Header::GpsInfoIfdPointer));
    const QByteArray expected =
        hex("4D4D 002A 00000008 0002"
            "8769 0004 00000001 00000026" // ExifIfdPointer, 38
            "8825 0004 00000001 00000034" // GpsInfoIfdPointer, 52 = 38 + 2 + 12
            "00000000"
            "0001 9209 0003 00000001 00010000" // 38: Flash
            "0002" // 52: two GPS tags
            "0000 0001 00000004 02030000"
            "0002 0005 00000003 0000004C" // 76 = 52 + 12 x 2
            "0000002F 00000001 0000001E 00000001 00000005 00000002"); // lands at 78
    QCOMPARE(written(header).toHex(), expected.toHex());
    QCOMPARE(header.size(), 102);
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::GpsInfoIfdPointer}));
    QCOMPARE(described(header.value(Header::GpsInfoIfdPointer)), QStringLiteral("4 x 1: 52"));
}

// The pointer that the first write() left behind counts as an image tag.
void tst_QExifImageHeaderWrite::writeGpsTwice()
{
    Header header;
    header.setValue(Header::GPSStatus, QExifValue(QStringLiteral("A")));
    const QByteArray first = written(header);
    QCOMPARE(first.toHex(),
             hex("4949 2A00 08000000 0200"
                 "6987 0400 01000000 26000000"
                 "2588 0400 01000000 28000000"
                 "00000000 0000"
                 "0100 0900 0200 02000000 41000000")
                 .toHex());
    const QByteArray second = written(header);
    QCOMPARE(second.toHex(),
             hex("4949 2A00 08000000 0300"
                 "2588 0400 01000000 28000000" // the former one, 40
                 "6987 0400 01000000 32000000" // 50
                 "2588 0400 01000000 34000000" // 52
                 "00000000 0000"
                 "0100 0900 0200 02000000 41000000")
                 .toHex());
    QCOMPARE(header.size(), 66);
    QCOMPARE(described(header.value(Header::GpsInfoIfdPointer)), QStringLiteral("4 x 1: 52"));
    // The last one is correct, and the one that readers use.
    Header again;
    QVERIFY(readBlock(&again, second));
    QCOMPARE(again.gpsTags(), QList<Header::GpsTag>({Header::GPSStatus}));
    QVERIFY(again.imageTags().isEmpty());
}

// Data of an entry that the new pointer replaces is still at its offset.
void tst_QExifImageHeaderWrite::writeGpsOverOldPointer()
{
    Header header;
    header.setValue(Header::GpsInfoIfdPointer, QExifValue(QStringLiteral("a text")));
    header.setValue(Header::GPSStatus, QExifValue(QStringLiteral("A")));
    const QByteArray block = written(header);
    Header again;
    QVERIFY(readBlock(&again, block));
    QCOMPARE(again.gpsTags(), QList<Header::GpsTag>({Header::GPSStatus}));
    QCOMPARE(again.value(Header::GPSStatus).toString(), QStringLiteral("A"));
    QCOMPARE(described(header.value(Header::GpsInfoIfdPointer)), QStringLiteral("4 x 1: 59"));
}

void tst_QExifImageHeaderWrite::writeThumbnail()
{
    Header header;
    QVERIFY(readBlock(&header, fullBlock(little)));
    header.remove(Header::Make);
    header.remove(Header::XResolution);
    header.remove(Header::ExifVersion);
    header.remove(Header::ExposureBiasValue);
    header.remove(Header::GPSLatitude);
    const QByteArray expected =
        hex("4949 2A00 08000000 0300"
            "1201 0300 01000000 06000000"
            "6987 0400 01000000 32000000" // 50 = 38 + 12
            "2588 0400 01000000 34000000" // 52
            "42000000" // IFD1 at 66
            "0000" // 50: no extended tags
            "0100 0000 0100 04000000 02030000" // 52: GPSVersionID
            "0700" // 66: IFD1, seven entries, no link behind them
            "0301 0300 01000000 06000000" // Compression 6
            "1A01 0500 01000000 98000000" // XResolution, 152 = 66 + 86
            "1B01 0500 01000000 A0000000" // YResolution, 160
            "2801 0300 01000000 03000000" // ResolutionUnit 3, as it was
            "1201 0300 01000000 08000000" // Orientation 8, unchanged, after ResolutionUnit
            "0102 0400 01000000 A8000000" // JPEGInterchangeFormat, 168
            "0202 0400 01000000 0C000000" // JPEGInterchangeFormatLength, 12
            "2C010000 01000000" // 300/1, as it was
            "48000000 01000000") // 72/1
        + "not a JPEG!!";
    QCOMPARE(written(header).toHex(), expected.toHex());
    QCOMPARE(header.size(), 180);
}

void tst_QExifImageHeaderWrite::writeThumbnailDefaults()
{
    QImage image(16, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(image.save(&buffer, "JPG"));

    Header header;
    header.setThumbnail(image);
    const QByteArray expected = hex("4949 2A00 08000000 0100"
                                    "6987 0400 01000000 1A000000"
                                    "1C000000" // IFD1 at 28
                                    "0000"
                                    "0700"
                                    "0301 0300 01000000 06000000"
                                    "1A01 0500 01000000 72000000" // 114 = 28 + 86
                                    "1B01 0500 01000000 7A000000" // 122
                                    "2801 0300 01000000 02000000"
                                    "1201 0300 01000000 00000000"
                                    "0102 0400 01000000 82000000") // 130
        + TiffBuilder(little).entry(0x0202, 4, 1, quint32(jpeg.size())).all()
        + hex("48000000 01000000 48000000 01000000") + jpeg;
    QCOMPARE(written(header).toHex(), expected.toHex());
}

void tst_QExifImageHeaderWrite::writeAtPosition()
{
    Header header;
    fillWithOrientation(&header);
    QBuffer buffer;
    buffer.setData("0123456789");
    buffer.open(QIODevice::ReadWrite);
    buffer.seek(10);
    QCOMPARE(header.write(&buffer), 40);
    QCOMPARE(buffer.data(), "0123456789" + orientationBlock());
    SequentialDevice sequential;
    sequential.open(QIODevice::WriteOnly);
    QCOMPARE(header.write(&sequential), 40);
    QCOMPARE(sequential.content, orientationBlock());
}

void tst_QExifImageHeaderWrite::writeFails()
{
    LogCapture log;
    Header header;
    fillWithOrientation(&header);
    QCOMPARE(header.write(nullptr), 0);
    QBuffer closed;
    QCOMPARE(header.write(&closed), 0);
    QBuffer readOnly;
    readOnly.open(QIODevice::ReadOnly);
    QCOMPARE(header.write(&readOnly), 0);
    WatchedBuffer full;
    full.capacity = 0;
    full.open(QIODevice::WriteOnly);
    QCOMPARE(header.write(&full), 0);
    WatchedBuffer nearlyFull;
    nearlyFull.capacity = 7;
    nearlyFull.open(QIODevice::WriteOnly);
    QCOMPARE(header.write(&nearlyFull), 7);
    QCOMPARE(header.size(), 40);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeaderWrite::sizePredicted()
{
    Header header;
    QCOMPARE(header.size(), 28);
    header.setValue(Header::Make, QExifValue(QStringLiteral("Orva"))); // 17
    QCOMPARE(header.size(), 45);
    header.setValue(Header::ExposureTime, QExifValue(UnsignedPair(1, 60))); // 20
    QCOMPARE(header.size(), 65);
    header.setValue(Header::GPSStatus, QExifValue(QStringLiteral("A"))); // 12, and 2 + 12
    QCOMPARE(header.size(), 91);
    QCOMPARE(written(header).size(), 91);

    Header withThumbnail;
    QVERIFY(readBlock(&withThumbnail, fullBlock(big)));
    // image 2 + 17 + 12 + 20, extended 2 + 12 + 20, 24, GPS 2 + 12 + 36 + 12, thumbnail 12 + 90
    QCOMPARE(withThumbnail.size(), 273);
    QCOMPARE(written(withThumbnail).size(), 285); // 12 more
    QCOMPARE(withThumbnail.size(), 285);
    withThumbnail.remove(Header::Make);
    // The prediction again; the image tags now contain the pointer that write() left, 12.
    QCOMPARE(withThumbnail.size(), 273 - 17 + 12);
}

void tst_QExifImageHeaderWrite::sizeCached()
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::blue);
    Header header;
    header.setThumbnail(image);
    const int predicted = header.size();
    const int real = int(written(header).size());
    QCOMPARE(real, predicted + 12);

    // Each change makes it a prediction again.
    const std::function<void()> changes[] = {
        [&] { header.setValue(Header::Flash, QExifValue(quint16(0))); },
        [&] { header.remove(Header::Flash); },
        [&] { header.setValue(Header::Orientation, QExifValue(quint16(0))); },
        [&] { header.remove(Header::Orientation); },
        [&] { header.setValue(Header::GPSStatus, QExifValue(quint16(0))); },
        [&] { header.remove(Header::GPSStatus); },
        [&] { header.remove(Header::GPSDateStamp); },
        [&] { header.setThumbnail(image); },
    };
    for (const std::function<void()>& change : changes) {
        change();
        const int before = header.size();
        QCOMPARE(header.size(), before);
        QCOMPARE(written(header).size(), before + 12);
        QCOMPARE(header.size(), before + 12);
        header.remove(Header::GpsInfoIfdPointer); // left behind by write()
    }
    header.setThumbnail(QImage());
    QCOMPARE(header.size(), 28);
    header.clear();
    QCOMPARE(header.size(), 28);
}

void tst_QExifImageHeaderWrite::rereadAfterWrite_data()
{
    const auto row = columns<QDataStream::ByteOrder>("order");
    row("II", little);
    row("MM", big);
}

// IFD0 and IFD1 are read back unchanged. In sub-IFDs this is true for values inside entries, while
// data is read 2 bytes before its place.
void tst_QExifImageHeaderWrite::rereadAfterWrite()
{
    QFETCH(QDataStream::ByteOrder, order);
    Header header;
    QVERIFY(readBlock(&header, fullBlock(order)));
    Header again;
    QVERIFY(readBlock(&again, written(header)));
    QCOMPARE(again.byteOrder(), order);
    for (const Header::ImageTag tag : {Header::Make, Header::Orientation, Header::XResolution})
        QCOMPARE(described(again.value(tag)), described(header.value(tag)));
    QCOMPARE(again.imageTags().size(), 3);
    QCOMPARE(again.extendedTags(), header.extendedTags());
    QCOMPARE(again.gpsTags(), header.gpsTags());
    QCOMPARE(described(again.value(Header::GPSVersionID)),
             described(header.value(Header::GPSVersionID)));
    QCOMPARE(thumbnailBytes(again, 12), QByteArray("not a JPEG!!"));

    // ExposureBiasValue -1/3: the 2 bytes before it are the end of its own entry, an offset below
    // 65536.
    const SignedPair bias = again.value(Header::ExposureBiasValue).toSignedRational();
    if (order == little)
        QCOMPARE(bias, SignedPair(qint32(0xFFFF0000), 0x0003FFFF));
    else
        QCOMPARE(bias.second, qint32(0xFFFF0000));
}

/// A block whose IFD1 has a JPEG and the given entry of Orientation (type, count, value).
static QByteArray blockWithThumbnail(const QByteArray& jpeg, const QByteArray& orientationRest)
{
    // 8: no entries, IFD1 at 14; 14: three entries, no link; 56: the JPEG
    return TiffBuilder(little)
        .tiff()
        .u16(0)
        .u32(14)
        .u16(3)
        .u16(0x0112)
        .raw(orientationRest)
        .entry(0x0201, 4, 1, 56)
        .entry(0x0202, 4, 1, quint32(jpeg.size()))
        .u32(0)
        .raw(jpeg);
}

/// A picture of 32 x 16 that changes in every orientation.
static QByteArray thumbnailJpeg()
{
    QImage image(32, 16, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 8, y * 16, x < 16 && y < 8 ? 255 : 0));
    }
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG");
    return jpeg;
}

void tst_QExifImageHeaderWrite::thumbnailOrientation_data()
{
    // row0: the side of the upright picture at which row 0 is stored
    const auto table = columns<int, QString, QString>("orientation", "row0", "column0");
    const auto row = [&](int orientation, const char* row0, const char* column0) {
        table(qPrintable(QString::number(orientation)), orientation, QString::fromLatin1(row0),
              QString::fromLatin1(column0));
    };
    row(1, "top", "left");
    row(2, "top", "right");
    row(3, "bottom", "right");
    row(4, "bottom", "left");
    row(5, "left", "top");
    row(6, "right", "top");
    row(7, "right", "bottom");
    row(8, "left", "bottom");
    row(0, "top", "left");
    row(9, "top", "left");
}

void tst_QExifImageHeaderWrite::thumbnailOrientation()
{
    QFETCH(int, orientation);
    QFETCH(QString, row0);
    QFETCH(QString, column0);
    const QByteArray jpeg = thumbnailJpeg();
    const QImage stored = QImage::fromData(jpeg, "JPG").convertToFormat(QImage::Format_RGB32);
    QCOMPARE(stored.size(), QSize(32, 16));

    const bool rowsAreColumns = row0 == QLatin1String("left") || row0 == QLatin1String("right");
    QImage upright(rowsAreColumns ? QSize(16, 32) : QSize(32, 16), QImage::Format_RGB32);
    for (int row = 0; row < stored.height(); ++row) {
        for (int column = 0; column < stored.width(); ++column) {
            QPoint at;
            const auto place = [&at, &upright](const QString& side, int distance) {
                if (side == QLatin1String("top"))
                    at.setY(distance);
                else if (side == QLatin1String("bottom"))
                    at.setY(upright.height() - 1 - distance);
                else if (side == QLatin1String("left"))
                    at.setX(distance);
                else
                    at.setX(upright.width() - 1 - distance);
            };
            place(row0, row);
            place(column0, column);
            upright.setPixel(at, stored.pixel(column, row));
        }
    }

    const QByteArray asShort = TiffBuilder(little).u16(3).u32(1).u16(unsigned(orientation)).u16(0);
    Header header;
    QVERIFY(readBlock(&header, blockWithThumbnail(jpeg, asShort)));
    QCOMPARE(header.thumbnail().convertToFormat(QImage::Format_RGB32), upright);
    const QByteArray asByte = TiffBuilder(little)
                                  .u16(1)
                                  .u32(1)
                                  .raw(QByteArray(1, char(orientation)))
                                  .raw(QByteArray(3, '\0'));
    QVERIFY(readBlock(&header, blockWithThumbnail(jpeg, asByte)));
    QCOMPARE(header.thumbnail().convertToFormat(QImage::Format_RGB32), upright);
}

void tst_QExifImageHeaderWrite::thumbnailOrientationOfOtherKind_data()
{
    const auto row = columns<QByteArray>("rest");
    row("Long", hex("0400 01000000 06000000"));
    row("SignedLong", hex("0900 01000000 06000000"));
    row("two Shorts", hex("0300 02000000 06000600"));
    row("two Bytes", hex("0100 02000000 06060000"));
    row("no Short", hex("0300 00000000 06000000"));
    row("Undefined", hex("0700 01000000 06000000"));
    row("Ascii", hex("0200 02000000 36000000"));
}

void tst_QExifImageHeaderWrite::thumbnailOrientationOfOtherKind()
{
    QFETCH(QByteArray, rest);
    const QByteArray jpeg = thumbnailJpeg();
    Header header;
    QVERIFY(readBlock(&header, blockWithThumbnail(jpeg, rest)));
    QCOMPARE(header.thumbnail(), QImage::fromData(jpeg, "JPG"));
}

void tst_QExifImageHeaderWrite::setThumbnail()
{
    const QByteArray jpeg = thumbnailJpeg();
    Header header;
    QVERIFY(readBlock(&header, blockWithThumbnail(jpeg, hex("0300 01000000 06000000"))));
    QCOMPARE(header.thumbnail().size(), QSize(16, 32));

    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(QColor(200, 30, 40));
    header.setThumbnail(image);
    // Already upright: the old orientation is forgotten.
    const QImage back = header.thumbnail();
    QCOMPARE(back.size(), QSize(20, 10));
    QVERIFY(qAbs(qRed(back.pixel(5, 5)) - 200) < 6);
    QVERIFY(qAbs(qGreen(back.pixel(5, 5)) - 30) < 6);

    header.setThumbnail(QImage());
    QVERIFY(header.thumbnail().isNull());
    QCOMPARE(header.size(), 28);

    // Too wide for a JPEG: as if there were none.
    LogCapture log; // of the image format
    header.setThumbnail(QImage(70000, 1, QImage::Format_RGB32));
    QVERIFY(header.thumbnail().isNull());
    QCOMPARE(header.size(), 28);
}

// A JPEG whose header claims a size that so few bytes cannot hold is not decoded.
void tst_QExifImageHeaderWrite::thumbnailThatCannotBe()
{
    QByteArray jpeg = thumbnailJpeg();
    const int frame = int(jpeg.indexOf(hex("FFC0")));
    QVERIFY(frame > 0);
    jpeg.replace(frame + 5, 4, hex("FFDC FFDC")); // height and width 65500
    Header header;
    QVERIFY(readBlock(&header, blockWithThumbnail(jpeg, hex("0300 01000000 06000000"))));
    QVERIFY(header.thumbnail().isNull());

    QVERIFY(readBlock(&header, fullBlock(little)));
    QVERIFY(header.thumbnail().isNull());
    QVERIFY(Header().thumbnail().isNull());
}

void tst_QExifImageHeaderWrite::mutations_data()
{
    const auto row = columns<QByteArray>("block");
    row("II", fullBlock(little));
    row("MM", fullBlock(big));
    row("with a real thumbnail",
        blockWithThumbnail(thumbnailJpeg(), hex("0300 01000000 06000000")));
    Header header;
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(Qt::green);
    header.setThumbnail(image);
    fillWithOrientation(&header);
    header.setValue(Header::UserComment,
                    QExifValue(QStringLiteral("comment"), QExifValue::UnicodeEncoding));
    header.setValue(Header::GPSDateStamp, QExifValue(QStringLiteral("2020:01:01")));
    row("written by us", written(header));
}

// Thousands of damaged blocks: each is read, shown, written and saved without harm.
void tst_QExifImageHeaderWrite::mutations()
{
    QFETCH(QByteArray, block);
    LogCapture log; // of unknown types and of the JPEG library
    std::mt19937 random(20260101);
    const auto below = [&random](int end) { return int(random() % unsigned(end)); };
    const QByteArray interesting = hex("00 01 04 07 08 7F 80 FE FF");
    for (int round = 0; round < 4000; ++round) {
        QByteArray damaged = block;
        if (round % 4 == 0)
            damaged.truncate(below(int(block.size() + 1)));
        for (int flips = 1 + below(6); flips > 0 && !damaged.isEmpty(); --flips) {
            // Every second one in the first directories, where the structure is.
            const int at = below(int(flips % 2 ? qMin(damaged.size(), 120) : damaged.size()));
            damaged[at] = random() % 2 ? interesting.at(below(int(interesting.size())))
                                       : char(damaged.at(at) ^ char(1 << below(8)));
        }

        QBuffer buffer;
        buffer.setData(soi() + exifSegment(damaged) + scan());
        buffer.open(QIODevice::ReadWrite);
        Header header;
        const bool loaded = header.loadFromJpeg(&buffer);
        QCOMPARE(buffer.data().size(), damaged.size() + 12 + scan().size());

        qint64 held = 0;
        const auto hold = [&held](const QExifValue& value) {
            held += value.toByteVector().size() + value.toByteArray().size()
                + 2 * value.toShortVector().size() + 4 * value.toLongVector().size()
                + 4 * value.toSignedLongVector().size() + 8 * value.toRationalVector().size()
                + 8 * value.toSignedRationalVector().size();
            value.toString();
            value.toDateTime();
        };
        for (const Header::ImageTag tag : header.imageTags())
            hold(header.value(tag));
        for (const Header::ExifExtendedTag tag : header.extendedTags())
            hold(header.value(tag));
        for (const Header::GpsTag tag : header.gpsTags())
            hold(header.value(tag));
        QVERIFY2(held <= 3 * 17 * damaged.size(), qPrintable(QString::number(round)));
        if (round % 16 == 0)
            header.thumbnail();

        QVERIFY(loaded || header.imageTags().isEmpty());
        // The gap of a directory that is held three times stays far from a segment's limit.
        QVERIFY(header.saveToJpeg(&buffer));
        QVERIFY(buffer.data().startsWith(soi() + hex("FFE1")));
        QVERIFY(buffer.data().endsWith(scan()));
        QVERIFY(written(header).size() <= 65533);
    }
}

QTEST_GUILESS_MAIN(tst_QExifImageHeaderWrite)
#include "tst_QExifImageHeaderWrite.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// QExifImageHeader: its tags, and reading blocks.

#include "QExifImageHeader.h"

#include "Columns.h"
#include "JpegParts.h"
#include "LogCapture.h"
#include "OddDevices.h"
#include "Sandbox.h"
#include "TiffBuilder.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using Header = QExifImageHeader;
using UnsignedPair = QPair<quint32, quint32>;
using Longs = QVector<quint32>;

Q_DECLARE_METATYPE(QDataStream::ByteOrder)

class tst_QExifImageHeader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newHeader();
    void tagNumbers_data();
    void tagNumbers();
    void tags();
    void anyNumberIsATag();

    void ifdHeader_data();
    void ifdHeader();
    void ifdHeaderCutShort();
    void ifdHeaders_data();
    void ifdHeaders();
    void ifdValue_data();
    void ifdValue();
    void ifdValueCutShort_data();
    void ifdValueCutShort();
    void ifdValueOfUnknownType_data();
    void ifdValueOfUnknownType();

    void readFull_data();
    void readFull();
    void readFails_data();
    void readFails();
    void readFailsOnDevice();
    void readFailsMidway_data();
    void readFailsMidway();
    void readReplacesEverything();
    void readCutShort_data();
    void readCutShort();
    void entryCountBeyondTheEnd();
    void pointerKinds_data();
    void pointerKinds();
    void pointersOutside_data();
    void pointersOutside();
    void thumbnailPointers_data();
    void thumbnailPointers();
    void linksInCircles();
    void repeatedTag();
    void unknownTypeIsKept();
    void overlappingValuesStayBounded();
    void readLeavesDeviceAlone();
};

void tst_QExifImageHeader::newHeader()
{
    const Header header;
    QCOMPARE(header.byteOrder(), little);
    QVERIFY(header.imageTags().isEmpty());
    QVERIFY(header.extendedTags().isEmpty());
    QVERIFY(header.gpsTags().isEmpty());
    QVERIFY(header.thumbnail().isNull());
    QVERIFY(header.value(Header::Orientation).isNull());
    QVERIFY(header.value(Header::ExposureTime).isNull());
    QVERIFY(header.value(Header::GPSLatitude).isNull());
    QCOMPARE(header.size(), 28);
    static_assert(std::has_virtual_destructor<Header>::value, "made to be derived from");
    static_assert(!std::is_copy_constructible<Header>::value, "the state belongs to one header");
    QCOMPARE(int(big), 0);
    QCOMPARE(int(little), 1);
}

void tst_QExifImageHeader::tagNumbers_data()
{
    const auto row = columns<int, int>("tag", "number");
    // Decimal numbers, as in the published tables.
    row("ExifIfdPointer", int(Header::ExifIfdPointer), 34665);
    row("GpsInfoIfdPointer", int(Header::GpsInfoIfdPointer), 34853);
    row("InteroperabilityIfdPointer", int(Header::InteroperabilityIfdPointer), 40965);
    row("Orientation", int(Header::Orientation), 274);
    row("Compression", int(Header::Compression), 259);
    row("XResolution", int(Header::XResolution), 282);
    row("YResolution", int(Header::YResolution), 283);
    row("ResolutionUnit", int(Header::ResolutionUnit), 296);
    row("JPEGInterchangeFormat", int(Header::JPEGInterchangeFormat), 513);
    row("JPEGInterchangeFormatLength", int(Header::JPEGInterchangeFormatLength), 514);
    row("ImageWidth", int(Header::ImageWidth), 256);
    row("ImageDescription", int(Header::ImageDescription), 270);
    row("Make", int(Header::Make), 271);
    row("Model", int(Header::Model), 272);
    row("Software", int(Header::Software), 305);
    row("DateTime", int(Header::DateTime), 306);
    row("Artist", int(Header::Artist), 315);
    row("YCbCrPositioning", int(Header::YCbCrPositioning), 531);
    row("Copyright", int(Header::Copyright), 33432);
    row("ExposureTime", int(Header::ExposureTime), 33434);
    row("FNumber", int(Header::FNumber), 33437);
    row("PhotographicSensitivity", int(Header::PhotographicSensitivity), 34855);
    row("ExifVersion", int(Header::ExifVersion), 36864);
    row("DateTimeOriginal", int(Header::DateTimeOriginal), 36867);
    row("DateTimeDigitized", int(Header::DateTimeDigitized), 36868);
    row("ExposureBiasValue", int(Header::ExposureBiasValue), 37380);
    row("Flash", int(Header::Flash), 37385);
    row("FocalLength", int(Header::FocalLength), 37386);
    row("MakerNote", int(Header::MakerNote), 37500);
    row("UserComment", int(Header::UserComment), 37510);
    row("ColorSpace", int(Header::ColorSpace), 40961);
    row("PixelXDimension", int(Header::PixelXDimension), 40962);
    row("PixelYDimension", int(Header::PixelYDimension), 40963);
    row("FileSource", int(Header::FileSource), 41728);
    row("SubjectDistanceRange", int(Header::SubjectDistanceRange), 41996);
    row("ImageUniqueID", int(Header::ImageUniqueID), 42016);
    row("LensModel", int(Header::LensModel), 42036);
    row("Gamma", int(Header::Gamma), 42240);
    row("GPSVersionID", int(Header::GPSVersionID), 0);
    row("GPSLatitude", int(Header::GPSLatitude), 2);
    row("GPSLongitude", int(Header::GPSLongitude), 4);
    row("GPSAltitude", int(Header::GPSAltitude), 6);
    row("GPSMapDatum", int(Header::GPSMapDatum), 18);
    row("GPSDateStamp", int(Header::GPSDateStamp), 29);
    row("GPSHPositioningError", int(Header::GPSHPositioningError), 31);
}

void tst_QExifImageHeader::tagNumbers()
{
    QFETCH(int, tag);
    QFETCH(int, number);
    QCOMPARE(tag, number);
}

void tst_QExifImageHeader::tags()
{
    Header header;
    const QExifValue make(QStringLiteral("Orva"));
    header.setValue(Header::YResolution, QExifValue(UnsignedPair(72, 1)));
    header.setValue(Header::Make, make);
    header.setValue(Header::Orientation, QExifValue(quint16(1)));
    header.setValue(Header::FNumber, QExifValue(UnsignedPair(28, 10)));
    header.setValue(Header::ExposureTime, QExifValue(UnsignedPair(1, 60)));
    header.setValue(Header::GPSLatitude, QExifValue(UnsignedPair(1, 1)));
    header.setValue(Header::GPSVersionID, QExifValue(QVector<quint8>{2, 3, 0, 0}));

    QCOMPARE(header.imageTags(),
             QList<Header::ImageTag>({Header::Make, Header::Orientation, Header::YResolution}));
    QCOMPARE(header.extendedTags(),
             QList<Header::ExifExtendedTag>({Header::ExposureTime, Header::FNumber}));
    QCOMPARE(header.gpsTags(), QList<Header::GpsTag>({Header::GPSVersionID, Header::GPSLatitude}));
    QVERIFY(header.contains(Header::Make));
    QVERIFY(!header.contains(Header::Model));
    QVERIFY(header.contains(Header::FNumber));
    QVERIFY(!header.contains(Header::Flash));
    QVERIFY(header.contains(Header::GPSLatitude));
    QVERIFY(!header.contains(Header::GPSLongitude));
    QVERIFY(header.value(Header::Make) == make);
    QVERIFY(header.value(Header::Model).isNull());
    QVERIFY(header.value(Header::Flash).isNull());
    QVERIFY(header.value(Header::GPSLongitude).isNull());
    QCOMPARE(header.value(Header::FNumber).toRational(), UnsignedPair(28, 10));
    QCOMPARE(header.value(Header::GPSLatitude).toRational(), UnsignedPair(1, 1));

    header.setValue(Header::Orientation, QExifValue(quint16(8)));
    QCOMPARE(header.value(Header::Orientation).toShort(), quint16(8));
    QCOMPARE(header.imageTags().size(), 3);

    header.remove(Header::Make);
    header.remove(Header::Model);
    header.remove(Header::FNumber);
    header.remove(Header::Flash);
    header.remove(Header::GPSLatitude);
    header.remove(Header::GPSLongitude);
    QCOMPARE(header.imageTags(),
             QList<Header::ImageTag>({Header::Orientation, Header::YResolution}));
    QCOMPARE(header.extendedTags(), QList<Header::ExifExtendedTag>({Header::ExposureTime}));
    QCOMPARE(header.gpsTags(), QList<Header::GpsTag>({Header::GPSVersionID}));

    header.setValue(Header::Model, QExifValue());
    QVERIFY(header.contains(Header::Model));
    QVERIFY(header.value(Header::Model).isNull());

    header.clear();
    QVERIFY(header.imageTags().isEmpty());
    QVERIFY(header.extendedTags().isEmpty());
    QVERIFY(header.gpsTags().isEmpty());
}

// A number in one space is not found in another one.
void tst_QExifImageHeader::anyNumberIsATag()
{
    Header header;
    const auto image = static_cast<Header::ImageTag>(0xFFFF);
    const auto extended = static_cast<Header::ExifExtendedTag>(0x0112);
    const auto gps = static_cast<Header::GpsTag>(0xFFFE);
    header.setValue(image, QExifValue(quint8(1)));
    header.setValue(extended, QExifValue(quint8(2)));
    header.setValue(gps, QExifValue(quint8(3)));
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({image}));
    QCOMPARE(header.extendedTags(), QList<Header::ExifExtendedTag>({extended}));
    QCOMPARE(header.gpsTags(), QList<Header::GpsTag>({gps}));
    QVERIFY(!header.contains(Header::Orientation));
}

void tst_QExifImageHeader::ifdHeader_data()
{
    const auto row =
        columns<QByteArray, QDataStream::ByteOrder, int, quint32, QByteArray, int, int, quint32>(
            "bytes", "order", "type", "count", "inlineBytes", "firstShort", "secondShort",
            "offset");

    const QByteArray none(4, '\0');
    const QByteArray four = hex("01020304");
    // The field 01 02 03 04, interpreted according to type and count.
    struct Case
    {
        const char* name;
        int type;
        quint32 count;
        char reading; // b: bytes, s: shorts, o: offset
    };
    const Case cases[] = {
        {"no byte", 1, 0, 'b'},
        {"4 bytes", 1, 4, 'b'},
        {"5 bytes", 1, 5, 'o'},
        {"no character", 2, 0, 'b'},
        {"4 characters", 2, 4, 'b'},
        {"5 characters", 2, 5, 'o'},
        {"no short", 3, 0, 's'},
        {"1 short", 3, 1, 's'},
        {"2 shorts", 3, 2, 's'},
        {"3 shorts", 3, 3, 'o'},
        {"1 long", 4, 1, 'o'},
        {"2 longs", 4, 2, 'o'},
        {"rational", 5, 1, 'o'},
        {"1 raw byte", 7, 1, 'o'},
        {"4 raw bytes", 7, 4, 'o'},
        {"5 raw bytes", 7, 5, 'o'},
        {"1 signed long", 9, 1, 'o'},
        {"signed rational", 10, 1, 'o'},
        {"unknown type 6", 6, 1, 'o'},
        {"unknown type 65535", 65535, 1, 'o'},
        {"largest count", 1, 4294967295u, 'o'},
    };
    for (const QDataStream::ByteOrder order : {little, big}) {
        for (const Case& c : cases) {
            const bool isLittle = order == little;
            const QByteArray bytes = TiffBuilder(order)
                                         .u16(0x9286)
                                         .u16(static_cast<unsigned>(c.type))
                                         .u32(c.count)
                                         .raw(four);
            row(qPrintable(QLatin1String(c.name) + QLatin1String(isLittle ? ", II" : ", MM")),
                bytes, order, c.type, c.count, c.reading == 'b' ? four : none,
                c.reading == 's' ? (isLittle ? 0x0201 : 0x0102) : 0,
                c.reading == 's' ? (isLittle ? 0x0403 : 0x0304) : 0,
                c.reading == 'o' ? (isLittle ? 0x04030201u : 0x01020304u) : 0u);
        }
    }
}

void tst_QExifImageHeader::ifdHeader()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(int, type);
    QFETCH(quint32, count);
    QFETCH(QByteArray, inlineBytes);
    QFETCH(int, firstShort);
    QFETCH(int, secondShort);
    QFETCH(quint32, offset);
    QDataStream stream(bytes);
    stream.setByteOrder(order);
    ExifIfdHeader header;
    stream >> header;
    QCOMPARE(stream.status(), QDataStream::Ok);
    QVERIFY(stream.atEnd());
    QCOMPARE(int(header.tag), 0x9286);
    QCOMPARE(int(header.type), type);
    QCOMPARE(header.count, count);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(int(header.inlineBytes[size_t(i)]), int(inlineBytes[i]));
    QCOMPARE(int(header.inlineShorts[0]), firstShort);
    QCOMPARE(int(header.inlineShorts[1]), secondShort);
    QCOMPARE(header.offset, offset);
}

void tst_QExifImageHeader::ifdHeaderCutShort()
{
    const QByteArray bytes = hex("8692 0700 05000000 010203");
    QDataStream stream(bytes);
    stream.setByteOrder(little);
    ExifIfdHeader header;
    header.tag = 1;
    stream >> header;
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
    QCOMPARE(int(header.tag), 0);
    QCOMPARE(header.count, 0u);
}

void tst_QExifImageHeader::ifdHeaders_data()
{
    const auto row = columns<QByteArray, int>("bytes", "entries");
    const QByteArray entry = hex("0F01 0200 05000000 4A000000");
    row("none", hex("0000"), 0);
    row("one", hex("0100") + entry, 1);
    row("two, and more behind", hex("0200") + entry + entry + entry, 2);
    row("65535 claimed, two there", hex("FFFF") + entry + entry, 2);
    row("second one cut short", hex("0200") + entry + entry.left(11), 1);
    row("nothing behind the count", hex("0500"), 0);
    row("half a count", hex("05"), 0);
    row("no count", QByteArray(), 0);
}

void tst_QExifImageHeader::ifdHeaders()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, entries);
    QDataStream stream(bytes);
    stream.setByteOrder(little);
    const QList<ExifIfdHeader> headers = OpenHeader().readIfdHeaders(stream);
    QCOMPARE(headers.size(), entries);
    for (const ExifIfdHeader& header : headers) {
        QCOMPARE(int(header.tag), 0x010F);
        QCOMPARE(int(header.type), 2);
        QCOMPARE(header.count, 5u);
        QCOMPARE(header.offset, 74u);
    }
}

void tst_QExifImageHeader::ifdValue_data()
{
    // data: at offset 16 of a block that starts at 3
    const auto table = columns<QDataStream::ByteOrder, QByteArray, QByteArray, QString>(
        "order", "entry", "data", "expected");

    for (const QDataStream::ByteOrder order : {little, big}) {
        const auto row = [&, order](const char* name, const TiffBuilder& entry,
                                    const TiffBuilder& data, const char* expected) {
            table(
                qPrintable(QLatin1String(name) + QLatin1String(order == little ? ", II" : ", MM")),
                order, entry.all(), data.all(), QString::fromLatin1(expected));
        };
        const TiffBuilder none(order);
        const auto inlined = [order](unsigned type, quint32 count, const char* bytes) {
            return TiffBuilder(order).bytes(1, type, count, hex(bytes));
        };
        const auto number = [order](unsigned type, quint32 count, quint32 value) {
            return TiffBuilder(order).entry(1, type, count, value);
        };
        row("no byte", inlined(1, 0, "01020304"), none, "1 x 0:");
        row("one byte", inlined(1, 1, "FF020304"), none, "1 x 1: 255");
        row("four bytes", inlined(1, 4, "01020304"), none, "1 x 4: 1 2 3 4");
        row("five bytes", number(1, 5, 16), TiffBuilder(order).raw("ABCDEF"),
            "1 x 5: 65 66 67 68 69");
        row("text, count 0", inlined(2, 0, "41420043"), none, "2 x 3: 4142");
        row("text, count 0, no NUL", inlined(2, 0, "41424344"), none, "2 x 5: 41424344");
        row("text, count 0, at once a NUL", inlined(2, 0, "00424344"), none, "2 x 1: ");
        row("text, count 1", inlined(2, 1, "41420043"), none, "2 x 1: ");
        row("text, count 2", inlined(2, 2, "4E000000"), none, "2 x 2: 4e");
        row("text, count 4", inlined(2, 4, "41424300"), none, "2 x 4: 414243");
        row("text, count 4, not ended by a NUL", inlined(2, 4, "41424344"), none, "2 x 4: 414243");
        row("text, count 4, NUL inside", inlined(2, 4, "41004300"), none, "2 x 4: 410043");
        row("text, count 5", number(2, 5, 16), TiffBuilder(order).raw("Orva!"), "2 x 5: 4f727661");
        row("text, NULs kept", number(2, 6, 16),
            TiffBuilder(order).raw(QByteArray("a\0b\0\0\0", 6)), "2 x 6: 6100620000");
        row("text in Latin-1", number(2, 5, 16), TiffBuilder(order).raw("\xe9\xff-\x80"),
            "2 x 5: e9ff2d80");
        row("no short", TiffBuilder(order).shorts(1, 0, 7, 8), none, "3 x 0:");
        row("one short", TiffBuilder(order).shorts(1, 1, 0x1234, 9), none, "3 x 1: 4660");
        row("two shorts", TiffBuilder(order).shorts(1, 2, 0x1234, 9), none, "3 x 2: 4660 9");
        row("three shorts", number(3, 3, 16), TiffBuilder(order).u16(1).u16(2).u16(0xFFFF).u16(4),
            "3 x 3: 1 2 65535");
        row("no long", number(4, 0, 16), TiffBuilder(order).u32(1), "4 x 0:");
        row("one long", number(4, 1, 0xFFFFFFFE), none, "4 x 1: 4294967294");
        row("two longs", number(4, 2, 16), TiffBuilder(order).u32(1).u32(0xFFFFFFFF),
            "4 x 2: 1 4294967295");
        row("no signed long", number(9, 0, 16), TiffBuilder(order).u32(1), "9 x 0:");
        row("one signed long", number(9, 1, 0xFFFFFFFE), none, "9 x 1: -2");
        row("two signed longs", number(9, 2, 16), TiffBuilder(order).u32(1).u32(0x80000000),
            "9 x 2: 1 -2147483648");
        row("no rational", number(5, 0, 16), TiffBuilder(order).u32(1).u32(2), "5 x 0:");
        row("one rational", number(5, 1, 16), TiffBuilder(order).u32(1).u32(0xFFFFFFFF),
            "5 x 1: 1/4294967295");
        row("two rationals", number(5, 2, 16), TiffBuilder(order).u32(1).u32(2).u32(3).u32(4),
            "5 x 2: 1/2 3/4");
        row("no signed rational", number(10, 0, 16), TiffBuilder(order).u32(1).u32(2), "10 x 0:");
        row("one signed rational", number(10, 1, 16), TiffBuilder(order).u32(quint32(-1)).u32(3),
            "10 x 1: -1/3");
        row("two signed rationals", number(10, 2, 16),
            TiffBuilder(order).u32(1).u32(quint32(-2)).u32(3).u32(4), "10 x 2: 1/-2 3/4");
        row("no raw byte", inlined(7, 0, "01020304"), none, "7 x 0: ");
        row("five raw bytes", number(7, 5, 16), TiffBuilder(order).raw(hex("0001020304")),
            "7 x 5: 0001020304");
        row("beyond the end", number(7, 5, 4000), none, "7 x 0: ");
        row("offset 0xFFFFFFFF", number(4, 5, 0xFFFFFFFF), none, "4 x 0:");
    }
    // Small raw values: in file order in one byte order, reversed in the other.
    const auto raw = [&](const char* name, QDataStream::ByteOrder order, quint32 count,
                         const char* expected) {
        table(name, order, TiffBuilder(order).bytes(1, 7, count, hex("01020304")).all(),
              QByteArray(), QString::fromLatin1(expected));
    };
    raw("one raw byte, II", little, 1, "7 x 1: 01");
    raw("three raw bytes, II", little, 3, "7 x 3: 010203");
    raw("four raw bytes, II", little, 4, "7 x 4: 01020304");
    raw("one raw byte, MM", big, 1, "7 x 1: 04");
    raw("three raw bytes, MM", big, 3, "7 x 3: 040302");
    raw("four raw bytes, MM", big, 4, "7 x 4: 04030201");
}

void tst_QExifImageHeader::ifdValue()
{
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(QByteArray, entry);
    QFETCH(QByteArray, data);
    QFETCH(QString, expected);
    LogCapture log;
    const QByteArray bytes = "abc" + entry + QByteArray(4, 'x') + data;
    QDataStream stream(bytes);
    stream.setByteOrder(order);
    stream.skipRawData(3);
    ExifIfdHeader header;
    stream >> header;
    const QExifValue value = OpenHeader().readIfdValue(stream, 3, header);
    QCOMPARE(described(value), expected);
    QVERIFY(!value.isNull());
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::ifdValueCutShort_data()
{
    const auto table = columns<int, quint32, QString>("type", "count", "expected");

    // The bytes from the offset on: 41 42 43 44 45 46 47 48 49 4A.
    const quint32 counts[] = {11,         1000,       65536,      0x10000000, 0x20000001,
                              0x40000000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    for (const quint32 count : counts) {
        const auto row = [&, count](int type, const char* expected) {
            table(qPrintable(QStringLiteral("type %1, count %2").arg(type).arg(count)), type, count,
                  QString::fromLatin1(expected));
        };
        row(1, "1 x 10: 65 66 67 68 69 70 71 72 73 74");
        row(2, "2 x 11: 4142434445464748494a"); // its last byte is no terminator
        row(3, "3 x 5: 16961 17475 17989 18503 19017");
        row(4, "4 x 2: 1145258561 1212630597");
        row(5, "5 x 1: 1145258561/1212630597");
        row(7, "7 x 10: 4142434445464748494a");
        row(9, "9 x 2: 1145258561 1212630597");
        row(10, "10 x 1: 1145258561/1212630597");
    }
}

void tst_QExifImageHeader::ifdValueCutShort()
{
    QFETCH(int, type);
    QFETCH(quint32, count);
    QFETCH(QString, expected);
    LogCapture log;
    const QByteArray bytes =
        TiffBuilder(little).entry(1, static_cast<unsigned>(type), count, 12).raw("ABCDEFGHIJ");
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadWrite);
    QDataStream stream(&buffer);
    stream.setByteOrder(little);
    ExifIfdHeader header;
    stream >> header;
    const QExifValue value = OpenHeader().readIfdValue(stream, 0, header);
    QCOMPARE(described(value), expected);
    QVERIFY(value.toByteVector().capacity() < 100);
    QVERIFY(value.toByteArray().capacity() < 100);
    QCOMPARE(buffer.data(), bytes);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::ifdValueOfUnknownType_data()
{
    const auto row = columns<int>("type");
    for (const int type : {0, 6, 8, 11, 12, 13, 255, 256, 65535})
        row(qPrintable(QString::number(type)), type);
}

void tst_QExifImageHeader::ifdValueOfUnknownType()
{
    QFETCH(int, type);
    const QByteArray bytes = TiffBuilder(big).entry(1, static_cast<unsigned>(type), 1, 0);
    QDataStream stream(bytes);
    ExifIfdHeader header;
    stream >> header;
    LogCapture log;
    QVERIFY(OpenHeader().readIfdValue(stream, 0, header).isNull());
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("warning default: Invalid Ifd Type %1").arg(type)));
}

void tst_QExifImageHeader::readFull_data()
{
    const auto row = columns<QDataStream::ByteOrder, int>("order", "position");
    row("II", little, 0);
    row("MM", big, 0);
    row("II, not at the beginning", little, 1001);
    row("MM, not at the beginning", big, 1001);
}

void tst_QExifImageHeader::readFull()
{
    QFETCH(QDataStream::ByteOrder, order);
    QFETCH(int, position);
    LogCapture log;
    QBuffer buffer;
    buffer.setData(QByteArray(position, 'x') + fullBlock(order));
    buffer.open(QIODevice::ReadOnly);
    buffer.seek(position);
    Header header;
    QVERIFY(header.read(&buffer));
    QCOMPARE(header.byteOrder(), order);
    QCOMPARE(header.imageTags(),
             QList<Header::ImageTag>({Header::Make, Header::Orientation, Header::XResolution}));
    QCOMPARE(header.extendedTags(),
             QList<Header::ExifExtendedTag>({Header::ExifVersion, Header::ExposureBiasValue}));
    QCOMPARE(header.gpsTags(), QList<Header::GpsTag>({Header::GPSVersionID, Header::GPSLatitude}));
    QCOMPARE(described(header.value(Header::Make)), QStringLiteral("2 x 5: 4f727661"));
    QCOMPARE(described(header.value(Header::Orientation)), QStringLiteral("3 x 1: 6"));
    QCOMPARE(described(header.value(Header::XResolution)), QStringLiteral("5 x 1: 72/1"));
    QCOMPARE(described(header.value(Header::ExifVersion)),
             order == little ? QStringLiteral("7 x 4: 30323330")
                             : QStringLiteral("7 x 4: 30333230"));
    QCOMPARE(described(header.value(Header::ExposureBiasValue)), QStringLiteral("10 x 1: -1/3"));
    QCOMPARE(described(header.value(Header::GPSVersionID)), QStringLiteral("1 x 4: 2 3 0 0"));
    QCOMPARE(described(header.value(Header::GPSLatitude)), QStringLiteral("5 x 3: 47/1 30/1 5/2"));
    QCOMPARE(thumbnailBytes(header, 12), QByteArray("not a JPEG!!"));
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::readFails_data()
{
    const auto row = columns<QByteArray>("block");
    row("nothing", QByteArray());
    row("one byte", "I");
    row("the mark alone", "II");
    row("cut short before 42", hex("4949 2A"));
    row("cut short before the offset", hex("4949 2A00"));
    row("cut short in the offset", hex("4949 2A00 080000"));
    row("no such mark", hex("4A4A 2A00 08000000 0000 00000000"));
    row("mixed mark", hex("494D 2A00 08000000 0000 00000000"));
    row("lower case", hex("6969 2A00 08000000 0000 00000000"));
    row("43 instead of 42", hex("4949 2B00 08000000 0000 00000000"));
    row("42 in the other order, II", hex("4949 002A 08000000 0000 00000000"));
    row("42 in the other order, MM", hex("4D4D 2A00 00000008 0000 00000000"));
    row("IFD0 beyond the end", hex("4949 2A00 0F000000 0000 00000000"));
    row("IFD0 far beyond the end", hex("4949 2A00 FFFFFFFF 0000 00000000"));
}

void tst_QExifImageHeader::readFails()
{
    QFETCH(QByteArray, block);
    LogCapture log;
    Header header;
    fillWithOrientation(&header);
    QVERIFY(!readBlock(&header, block));
    QVERIFY(header.imageTags().isEmpty());
    QCOMPARE(header.size(), 28);
    // A buffer that could grow must not grow.
    QBuffer writable;
    writable.setData(block);
    writable.open(QIODevice::ReadWrite);
    QVERIFY(!header.read(&writable));
    QCOMPARE(writable.data(), block);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::readFailsOnDevice()
{
    LogCapture log;
    Header header;
    QVERIFY(!header.read(nullptr));
    QByteArray block = orientationBlock();
    QBuffer closed(&block);
    QVERIFY(!header.read(&closed));
    QBuffer writeOnly;
    writeOnly.open(QIODevice::WriteOnly);
    QVERIFY(!header.read(&writeOnly));
    SequentialDevice sequential;
    sequential.content = block;
    sequential.open(QIODevice::ReadOnly);
    QVERIFY(!header.read(&sequential));
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::readFailsMidway_data()
{
    const auto row = columns<bool>("isJpeg");
    row("block", false);
    row("JPEG", true);
}

// A device that refuses one read or seek, each in turn. What was read is kept, and nothing is
// invented.
void tst_QExifImageHeader::readFailsMidway()
{
    QFETCH(bool, isJpeg);
    const QByteArray block = fullBlock(big);
    const QByteArray content = isJpeg ? soi() + jfif() + exifSegment(block) + scan() : block;
    const auto readFrom = [isJpeg](Header* header, QIODevice* device) {
        return isJpeg ? header->loadFromJpeg(device) : header->read(device);
    };
    Header whole;
    QVERIFY(readBlock(&whole, block));
    int failing = 0;
    int failures = 0;
    for (;; ++failing) {
        FaultyBuffer buffer(content, failing);
        Header header;
        fillWithOrientation(&header);
        const bool isRead = readFrom(&header, &buffer);
        failures += !isRead;
        if (!buffer.hasFailed())
            break;
        if (!isRead)
            QVERIFY(header.imageTags().isEmpty());
        for (const Header::ImageTag tag : header.imageTags())
            QVERIFY(whole.contains(tag));
        for (const Header::ExifExtendedTag tag : header.extendedTags())
            QVERIFY(whole.contains(tag));
        for (const Header::GpsTag tag : header.gpsTags())
            QVERIFY(whole.contains(tag));
        QCOMPARE(buffer.data(), content);
    }
    QVERIFY(failing > 5);
    QVERIFY(failures > 0);
    FaultyBuffer sound(content, failing);
    Header header;
    QVERIFY(readFrom(&header, &sound));
    QCOMPARE(written(header), written(whole));
}

void tst_QExifImageHeader::readReplacesEverything()
{
    Header header;
    QVERIFY(readBlock(&header, fullBlock(big)));
    QVERIFY(readBlock(&header, orientationBlock()));
    QCOMPARE(header.byteOrder(), little);
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::Orientation}));
    QVERIFY(header.extendedTags().isEmpty());
    QVERIFY(header.gpsTags().isEmpty());
    QCOMPARE(written(header), orientationBlock());
    QVERIFY(readBlock(&header, fullBlock(big)));
    header.clear();
    QCOMPARE(header.byteOrder(), big);
    QCOMPARE(header.size(), 28);
}

void tst_QExifImageHeader::readCutShort_data()
{
    const auto row = columns<int, int, int, int>("length", "image", "extended", "gps");
    // Complete entries count; the two pointers of IFD0 are removed.
    row("IFD0 without entries", 10, 0, 0, 0);
    row("half an entry", 16, 0, 0, 0);
    row("two entries and a half", 40, 2, 0, 0);
    row("up to the pointers", 46, 3, 0, 0);
    row("before the link", 70, 3, 0, 0);
    row("half a link", 72, 3, 0, 0);
    row("in the data of IFD0", 77, 3, 0, 0);
    row("at the Exif sub-IFD", 88, 3, 0, 0);
    row("in the Exif sub-IFD", 102, 3, 1, 0);
    row("in the GPS sub-IFD", 152, 3, 2, 1);
    row("in IFD1", 210, 3, 2, 2);
}

void tst_QExifImageHeader::readCutShort()
{
    QFETCH(int, length);
    QFETCH(int, image);
    QFETCH(int, extended);
    QFETCH(int, gps);
    LogCapture log;
    for (const QDataStream::ByteOrder order : {little, big}) {
        Header header;
        QVERIFY(readBlock(&header, fullBlock(order).left(length)));
        QCOMPARE(header.imageTags().size(), image);
        QCOMPARE(header.extendedTags().size(), extended);
        QCOMPARE(header.gpsTags().size(), gps);
        if (length == 77)
            QCOMPARE(header.value(Header::Make).toString(), QStringLiteral("Orv"));
        if (image == 3 && length <= 80)
            QCOMPARE(described(header.value(Header::XResolution)), QStringLiteral("5 x 0:"));
    }
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::entryCountBeyondTheEnd()
{
    const QByteArray block =
        TiffBuilder(little).tiff().u16(65535).shorts(0x0112, 1, 6).raw("behind it");
    Header header;
    QVERIFY(readBlock(&header, block));
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::Orientation}));
}

void tst_QExifImageHeader::pointerKinds_data()
{
    // entryRest: type, count and value of the pointer
    const auto row = columns<QByteArray, bool>("entryRest", "followed");
    // The sub-IFD is at 26, little endian.
    row("Long", hex("0400 01000000 1A000000"), true);
    row("SignedLong", hex("0900 01000000 1A000000"), true);
    row("Short", hex("0300 01000000 1A00 FFFF"), true);
    row("Byte", hex("0100 01000000 1A FFFFFF"), true);
    row("two Longs", hex("0400 02000000 1A000000"), false);
    row("no Long", hex("0400 00000000 1A000000"), false);
    row("two Shorts", hex("0300 02000000 1A00 1A00"), false);
    row("two Bytes", hex("0100 02000000 1A1A0000"), false);
    row("Ascii", hex("0200 02000000 1A000000"), false);
    row("Undefined", hex("0700 01000000 1A000000"), false);
    row("Rational", hex("0500 01000000 1A000000"), false);
    row("SignedRational", hex("0A00 01000000 1A000000"), false);
    row("unknown type", hex("0D00 01000000 1A000000"), false);
}

void tst_QExifImageHeader::pointerKinds()
{
    QFETCH(QByteArray, entryRest);
    QFETCH(bool, followed);
    LogCapture log; // an unknown type is logged
    const TiffBuilder directory = TiffBuilder(little).u16(1).shorts(0x0001, 1, 7).u32(0);
    const QByteArray head = TiffBuilder(little).tiff().u16(1);
    const QByteArray link = TiffBuilder(little).u32(0);
    {
        Header header;
        QVERIFY(readBlock(&header, head + hex("6987") + entryRest + link + directory.all()));
        QVERIFY(!header.contains(Header::ExifIfdPointer));
        QCOMPARE(header.extendedTags().size(), followed ? 1 : 0);
    }
    {
        Header header;
        QVERIFY(readBlock(&header, head + hex("2588") + entryRest + link + directory.all()));
        QVERIFY(!header.contains(Header::GpsInfoIfdPointer));
        QCOMPARE(header.gpsTags().size(), followed ? 1 : 0);
    }
}

void tst_QExifImageHeader::pointersOutside_data()
{
    const auto row = columns<quint32>("offset");
    row("just behind the end", 67u);
    row("far", 0x7FFFFFFFu);
    row("negative", 0x80000000u);
    row("-1", 0xFFFFFFFFu);
}

void tst_QExifImageHeader::pointersOutside()
{
    QFETCH(quint32, offset);
    LogCapture log;
    const QByteArray block = TiffBuilder(big)
                                 .tiff()
                                 .u16(4)
                                 .shorts(0x0112, 1, 6)
                                 .entry(0x010F, 2, 9, offset)
                                 .entry(0x8769, 4, 1, offset)
                                 .entry(0x8825, 9, 1, offset)
                                 .u32(offset)
                                 .raw("1234");
    QCOMPARE(block.size(), 66);
    QBuffer buffer;
    buffer.setData(block);
    buffer.open(QIODevice::ReadWrite); // can grow, but must not
    Header header;
    QVERIFY(header.read(&buffer));
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::Make, Header::Orientation}));
    QCOMPARE(described(header.value(Header::Make)), QStringLiteral("2 x 1: "));
    QVERIFY(header.extendedTags().isEmpty());
    QVERIFY(header.gpsTags().isEmpty());
    QCOMPARE(buffer.data(), block);

    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("block"));
    writeFile(fileName, block);
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(header.read(&file));
    QCOMPARE(header.value(Header::Orientation).toShort(), quint16(6));
    file.close();
    QCOMPARE(contentOf(fileName), block);
    QVERIFY(log.records().isEmpty());
}

void tst_QExifImageHeader::thumbnailPointers_data()
{
    // entries: two of IFD1, at 14
    // thumbnail: of the 8 bytes at 44
    const auto table = columns<QByteArray, QByteArray>("entries", "thumbnail");
    const auto row = [&](const char* name, const TiffBuilder& entries, const char* thumbnail) {
        table(name, entries.all(), QByteArray(thumbnail));
    };
    const auto longs = [](quint32 offset, quint32 length) {
        return TiffBuilder(little).entry(0x0201, 4, 1, offset).entry(0x0202, 4, 1, length);
    };
    row("all", longs(44, 8), "THUMBNAL");
    row("a part", longs(46, 3), "UMB");
    row("no byte", longs(44, 0), "");
    row("longer than there is", longs(44, 9), "THUMBNAL");
    row("much longer than there is", longs(48, 0xFFFFFFFF), "BNAL");
    row("at the end", longs(52, 4), "");
    row("outside", longs(53, 4), "");
    row("far outside", longs(0xFFFFFFFF, 0xFFFFFFFF), "");
    row("as Shorts", TiffBuilder(little).shorts(0x0201, 1, 44).shorts(0x0202, 1, 5), "THUMB");
    row("offset not single", TiffBuilder(little).shorts(0x0201, 2, 44, 44).entry(0x0202, 4, 1, 8),
        "");
    row("length not single", TiffBuilder(little).entry(0x0201, 4, 1, 44).shorts(0x0202, 2, 8, 8),
        "");
    row("offset missing", TiffBuilder(little).entry(0x0200, 4, 1, 44).entry(0x0202, 4, 1, 8), "");
    row("length missing", TiffBuilder(little).entry(0x0201, 4, 1, 44).entry(0x0203, 4, 1, 8), "");
    row("length is a text",
        TiffBuilder(little).entry(0x0201, 4, 1, 44).bytes(0x0202, 2, 2, "8\0\0"), "");
}

void tst_QExifImageHeader::thumbnailPointers()
{
    QFETCH(QByteArray, entries);
    QFETCH(QByteArray, thumbnail);
    LogCapture log;
    // 8: IFD0 without entries, IFD1 at 14; 14: two entries, no link.
    const QByteArray block =
        TiffBuilder(little).tiff().u16(0).u32(14).u16(2).raw(entries).u32(0).raw("THUMBNAL");
    Header header;
    QVERIFY(readBlock(&header, block));
    QCOMPARE(header.size(), thumbnail.isEmpty() ? 28 : 28 + 90 + thumbnail.size());
    QCOMPARE(thumbnailBytes(header, int(thumbnail.size())), thumbnail);
    QVERIFY(log.records().isEmpty());
}

// Every directory leads back to IFD0.
void tst_QExifImageHeader::linksInCircles()
{
    const QByteArray block = TiffBuilder(big)
                                 .tiff()
                                 .u16(3)
                                 .shorts(0x0112, 1, 6)
                                 .entry(0x8769, 4, 1, 8)
                                 .entry(0x8825, 4, 1, 8)
                                 .u32(8);
    Header header;
    QVERIFY(readBlock(&header, block));
    QCOMPARE(header.imageTags(), QList<Header::ImageTag>({Header::Orientation}));
    const auto tag = [](unsigned number) { return static_cast<Header::ExifExtendedTag>(number); };
    const auto gpsTag = [](unsigned number) { return static_cast<Header::GpsTag>(number); };
    QCOMPARE(header.extendedTags(),
             QList<Header::ExifExtendedTag>({tag(0x0112), tag(0x8769), tag(0x8825)}));
    QCOMPARE(header.gpsTags(),
             QList<Header::GpsTag>({gpsTag(0x0112), gpsTag(0x8769), gpsTag(0x8825)}));
    QVERIFY(header.thumbnail().isNull());
}

void tst_QExifImageHeader::repeatedTag()
{
    const QByteArray block = TiffBuilder(big)
                                 .tiff()
                                 .u16(3)
                                 .shorts(0x0112, 1, 6)
                                 .shorts(0x0103, 1, 1) // not in ascending order
                                 .shorts(0x0112, 1, 8)
                                 .u32(0);
    Header header;
    QVERIFY(readBlock(&header, block));
    QCOMPARE(header.imageTags(),
             QList<Header::ImageTag>({Header::Compression, Header::Orientation}));
    QCOMPARE(header.value(Header::Orientation).toShort(), quint16(8));
}

void tst_QExifImageHeader::unknownTypeIsKept()
{
    const QByteArray block = TiffBuilder(big)
                                 .tiff()
                                 .u16(3)
                                 .entry(0x010F, 6, 1, 0)
                                 .shorts(0x0112, 1, 6)
                                 .entry(0x0131, 65535, 0xFFFFFFFF, 0xFFFFFFFF)
                                 .u32(0);
    LogCapture log;
    Header header;
    QVERIFY(readBlock(&header, block));
    QCOMPARE(header.imageTags(),
             QList<Header::ImageTag>({Header::Make, Header::Orientation, Header::Software}));
    QVERIFY(header.value(Header::Make).isNull());
    QVERIFY(header.value(Header::Software).isNull());
    QCOMPARE(header.value(Header::Orientation).toShort(), quint16(6));
    QCOMPARE(log.lines(),
             QStringList({QStringLiteral("warning default: Invalid Ifd Type 6"),
                          QStringLiteral("warning default: Invalid Ifd Type 65535")}));
    // A null value is written as a Byte with count 0.
    QCOMPARE(written(header).mid(10, 12), hex("010F 0001 00000000 00000000"));
}

// 5,000 entries that each claim the whole block would turn 60 kB into 300 MB.
void tst_QExifImageHeader::overlappingValuesStayBounded()
{
    const unsigned count = 5000;
    for (const unsigned type : {1u, 2u, 5u, 7u}) {
        TiffBuilder laid(little);
        laid.tiff().u16(count);
        for (unsigned i = 0; i < count; ++i)
            laid.entry(i + 1, type, 0xFFFFFFFF, 0);
        laid.u32(0);
        Header header;
        QVERIFY(readBlock(&header, laid));
        qint64 total = 0;
        for (const Header::ImageTag tag : header.imageTags()) {
            const qint64 elementSize = type == 5 ? 8 : 1;
            total += header.value(tag).count() * elementSize;
        }
        QVERIFY(header.imageTags().size() >= 16);
        QVERIFY(total <= qint64(laid.size()) * 18);

        // Data before the block is ignored.
        QBuffer device;
        device.setData(QByteArray(1000 * 1000, '\0') + laid);
        device.open(QIODevice::ReadOnly);
        device.seek(1000 * 1000);
        Header behindOthers;
        QVERIFY(behindOthers.read(&device));
        QCOMPARE(behindOthers.imageTags(), header.imageTags());
    }
}

void tst_QExifImageHeader::readLeavesDeviceAlone()
{
    QBuffer buffer;
    buffer.setData(fullBlock(little));
    buffer.open(QIODevice::ReadWrite);
    Header header;
    QVERIFY(header.read(&buffer));
    QVERIFY(buffer.isOpen());
    QCOMPARE(buffer.data(), fullBlock(little));
}

QTEST_GUILESS_MAIN(tst_QExifImageHeader)
#include "tst_QExifImageHeader.moc"

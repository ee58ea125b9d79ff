// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ExifUtils.h"

#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "Photographs.h"
#include "QExifImageHeader.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

using Header = QExifImageHeader;

Q_DECLARE_METATYPE(QExifValue)

namespace {

/// A JPEG whose EXIF block, 38 bytes, is IFD0 with one entry: Orientation, of the type, count and
/// value given in hexadecimal digits.
QByteArray jpegWithOrientation(const char* typeCountValue)
{
    const QByteArray block = QByteArray::fromHex("4D4D 002A 00000008 0001 0112")
        + QByteArray::fromHex(typeCountValue) + QByteArray::fromHex("00000000") // no IFD1
        + QByteArray("a bit more..");
    return QByteArray::fromHex("FFD8 FFE1 002E") + QByteArray("Exif\0\0", 6) + block
        + QByteArray::fromHex("FFDB 0004 0102 FFD9");
}

} // namespace

class tst_ExifUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rotation_data();
    void rotation();
    void rotationOfHeader_data();
    void rotationOfHeader();
    void rotationOfDamagedBlock();
    void rotationWithoutFile();
    void rotationOfDevice();
    void clearRotation();
    void clearRotationAddsTheTag();
    void clearRotationFails_data();
    void clearRotationFails();
    void clearRotationOfReadOnlyFile();
    void clearRotationWithoutRoom();
    void photos_data();
    void photos();
};

void tst_ExifUtils::rotation_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("angle");
    const auto row = [](const char* name, const char* typeCountValue, int angle) {
        QTest::newRow(name) << jpegWithOrientation(typeCountValue) << angle;
    };
    row("0", "0003 00000001 00000000", 0);
    row("1", "0003 00000001 00010000", 0);
    row("2", "0003 00000001 00020000", 0);
    row("3", "0003 00000001 00030000", 180);
    row("4", "0003 00000001 00040000", 0);
    row("5", "0003 00000001 00050000", 0);
    row("6", "0003 00000001 00060000", 90);
    row("7", "0003 00000001 00070000", 0);
    row("8", "0003 00000001 00080000", -90);
    row("9", "0003 00000001 00090000", 0);
    row("65535", "0003 00000001 FFFF0000", 0);
    row("Byte 6", "0001 00000001 06000000", 90);
    row("Long 6", "0004 00000001 00000006", 0);
    row("SignedLong 6", "0009 00000001 00000006", 0);
    row("two Shorts", "0003 00000002 00060006", 0);
    row("no Short", "0003 00000000 00060000", 0);
    row("Ascii 6", "0002 00000002 36000000", 0);
    row("Undefined 6", "0007 00000001 00000006", 0);
    QTest::newRow("no EXIF") << QByteArray::fromHex("FFD8 FFDB 0004 0102 FFD9") << 0;
    QTest::newRow("not a JPEG") << QByteArray("GIF89a") << 0;
    QTest::newRow("empty") << QByteArray() << 0;
}

void tst_ExifUtils::rotation()
{
    QFETCH(QByteArray, file);
    QFETCH(int, angle);
    LogCapture log;
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, file);
    QCOMPARE(ExifUtils::imageExifRotation(fileName), angle);
    QCOMPARE(contentOf(fileName), file);
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly);
    QCOMPARE(ExifUtils::imageExifRotation(&buffer), angle);
    QVERIFY(buffer.isOpen());
    QCOMPARE(ExifUtils::imageExifRotation(Header(fileName)), angle);
    QVERIFY(log.records().isEmpty());
}

void tst_ExifUtils::rotationOfHeader_data()
{
    QTest::addColumn<QExifValue>("value");
    QTest::addColumn<int>("angle");
    QTest::newRow("Short 3") << QExifValue(quint16(3)) << 180;
    QTest::newRow("Short 6") << QExifValue(quint16(6)) << 90;
    QTest::newRow("Short 8") << QExifValue(quint16(8)) << -90;
    QTest::newRow("Byte 8") << QExifValue(quint8(8)) << -90;
    QTest::newRow("Short 2") << QExifValue(quint16(2)) << 0;
    QTest::newRow("SignedLong 6") << QExifValue(qint32(6)) << 0;
    QTest::newRow("null") << QExifValue() << 0;
}

void tst_ExifUtils::rotationOfHeader()
{
    QFETCH(QExifValue, value);
    QFETCH(int, angle);
    Header header;
    QCOMPARE(ExifUtils::imageExifRotation(header), 0);
    header.setValue(Header::Orientation, value);
    QCOMPARE(ExifUtils::imageExifRotation(header), angle);
    // The same number in another tag space says nothing.
    header.remove(Header::Orientation);
    header.setValue(static_cast<Header::ExifExtendedTag>(0x0112), value);
    QCOMPARE(ExifUtils::imageExifRotation(header), 0);
}

// What could be read before the damage counts.
void tst_ExifUtils::rotationOfDamagedBlock()
{
    QByteArray file = jpegWithOrientation("0003 00000001 00060000");
    file.truncate(2 + 4 + 6 + 22); // directly behind the entry
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly);
    QCOMPARE(ExifUtils::imageExifRotation(&buffer), 90);
}

void tst_ExifUtils::rotationWithoutFile()
{
    LogCapture log;
    QTemporaryDir folder;
    QCOMPARE(ExifUtils::imageExifRotation(folder.filePath(QStringLiteral("missing.jpg"))), 0);
    QCOMPARE(ExifUtils::imageExifRotation(folder.path()), 0);
    QCOMPARE(ExifUtils::imageExifRotation(QString()), 0);
    QCOMPARE(ExifUtils::imageExifRotation(static_cast<QIODevice*>(nullptr)), 0);
    QVERIFY(log.records().isEmpty());
}

void tst_ExifUtils::rotationOfDevice()
{
    QByteArray content = "prefix" + jpegWithOrientation("0003 00000001 00080000");
    QBuffer buffer(&content);
    QCOMPARE(ExifUtils::imageExifRotation(&buffer), 0); // not open
    buffer.open(QIODevice::ReadOnly);
    QCOMPARE(ExifUtils::imageExifRotation(&buffer), 0);
    buffer.seek(6);
    QCOMPARE(ExifUtils::imageExifRotation(&buffer), -90);
}

void tst_ExifUtils::clearRotation()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, jpegWithOrientation("0003 00000001 00060000"));
    LogCapture log;
    QVERIFY(ExifUtils::clearRotation(fileName));
    QVERIFY(log.records().isEmpty());
    // The new block needs 40 bytes where the old one had 38.
    const QByteArray expected = QByteArray::fromHex("FFD8 FFE1 0030") + QByteArray("Exif\0\0", 6)
        + QByteArray::fromHex("4D4D 002A 00000008 0002"
                              "0112 0009 00000001 00000000" // Orientation, SignedLong, 0
                              "8769 0004 00000001 00000026"
                              "00000000 0000"
                              "FFDB 0004 0102 FFD9");
    QCOMPARE(contentOf(fileName).toHex(), expected.toHex());

    const Header header(fileName);
    QCOMPARE(int(header.value(Header::Orientation).type()), int(QExifValue::SignedLong));
    QCOMPARE(header.value(Header::Orientation).toSignedLong(), 0);
    QCOMPARE(ExifUtils::imageExifRotation(fileName), 0);

    // Once more: nothing changes.
    QVERIFY(ExifUtils::clearRotation(fileName));
    QCOMPARE(contentOf(fileName).toHex(), expected.toHex());
}

void tst_ExifUtils::clearRotationAddsTheTag()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    QByteArray content = jpegWithOrientation("0003 00000001 00060000");
    content[2 + 4 + 6 + 11] = 0x03; // another tag
    writeFile(fileName, content);
    QVERIFY(ExifUtils::clearRotation(fileName));
    QVERIFY(Header(fileName).contains(Header::Orientation));
}

void tst_ExifUtils::clearRotationFails_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("not a JPEG") << QByteArray("GIF89a");
    QTest::newRow("no EXIF") << QByteArray::fromHex("FFD8 FFDB 0004 0102 FFD9");
    QTest::newRow("broken block") << QByteArray::fromHex("FFD8 FFE1 000C")
            + QByteArray("Exif\0\0", 6) + "????";
    // An EXIF segment behind another APP1 segment is not looked for.
    QTest::newRow("XMP first") << QByteArray::fromHex("FFD8 FFE1 0006 41424344")
            + jpegWithOrientation("0003 00000001 00060000").mid(2);
}

void tst_ExifUtils::clearRotationFails()
{
    QFETCH(QByteArray, file);
    LogCapture log;
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    writeFile(fileName, file);
    QVERIFY(!ExifUtils::clearRotation(fileName));
    QCOMPARE(contentOf(fileName), file);
    const QString missing = folder.filePath(QStringLiteral("missing.jpg"));
    QVERIFY(!ExifUtils::clearRotation(missing));
    QVERIFY(!QFile::exists(missing));
    QVERIFY(!ExifUtils::clearRotation(folder.path()));
    QVERIFY(!ExifUtils::clearRotation(QString()));
    QVERIFY(log.records().isEmpty());
}

void tst_ExifUtils::clearRotationOfReadOnlyFile()
{
    QTemporaryDir folder;
    QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x7777)));
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    const QByteArray content = jpegWithOrientation("0003 00000001 00060000");
    writeFile(fileName, content);
    QVERIFY(QFile::setPermissions(fileName, QFile::Permissions(0x4444)));
    {
        const OrdinaryUser user;
        LogCapture log;
        QCOMPARE(ExifUtils::imageExifRotation(fileName), 90);
        QVERIFY(!ExifUtils::clearRotation(fileName));
        QVERIFY(log.records().isEmpty());
    }
    QCOMPARE(contentOf(fileName), content);
}

// A block that has no room left for one more entry.
void tst_ExifUtils::clearRotationWithoutRoom()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("file.jpg"));
    Header header;
    header.setValue(Header::MakerNote, QExifValue(QByteArray(65487, 'x')));
    const QByteArray jpeg = QByteArray::fromHex("FFD8 FFDB 0004 0102 FFD9");
    writeFile(fileName, jpeg);
    QVERIFY(header.saveToJpeg(fileName));
    const QByteArray content = contentOf(fileName);
    QCOMPARE(content.size(), jpeg.size() + 65537);
    QVERIFY(!ExifUtils::clearRotation(fileName));
    QCOMPARE(contentOf(fileName), content);
}

void tst_ExifUtils::photos_data()
{
    QTest::addColumn<QString>("fileName");
    const QJsonObject expected = expectedPhotos();
    for (const QString& name : expected.keys())
        QTest::newRow(qPrintable(name)) << name;
    if (expected.isEmpty())
        QTest::newRow("no photographs") << QString();
}

void tst_ExifUtils::photos()
{
    QFETCH(QString, fileName);
    if (fileName.isEmpty())
        QSKIP("the folder of photographs is not there; hand-made files cover the logic");
    LogCapture log; // of unknown types
    const QString path = photosFolder() + QLatin1Char('/') + fileName;
    const QJsonObject expected = expectedPhotos()[fileName].toObject();
    const QByteArray before = contentOf(path);

    // The first APP1 segment of a JPEG decides; where that is not EXIF there is no orientation.
    const bool hasBlock = Header().loadFromJpeg(path);
    int angle = 0;
    switch (hasBlock ? expected[QStringLiteral("orientation")].toInt() : 0) {
    case 3:
        angle = 180;
        break;
    case 6:
        angle = 90;
        break;
    case 8:
        angle = -90;
        break;
    default:
        break;
    }
    QCOMPARE(ExifUtils::imageExifRotation(path), angle);

    QTemporaryDir folder;
    const QString copy = folder.filePath(fileName);
    writeFile(copy, before);
    QCOMPARE(ExifUtils::clearRotation(copy), hasBlock);
    if (!hasBlock) {
        QVERIFY(contentOf(copy) == before);
        return;
    }
    // Where EXIF is neither the first segment nor the one behind JFIF, the new segment comes before
    // it, so that it is the one that counts in each case.
    QCOMPARE(ExifUtils::imageExifRotation(copy), 0);
    QCOMPARE(QImage::fromData(contentOf(copy), "JPG"), QImage::fromData(before, "JPG"));

    const QString exiftool = QStandardPaths::findExecutable(QStringLiteral("exiftool"));
    if (angle == 0 || exiftool.isEmpty())
        return;
    const QByteArray read = outputOf(
        exiftool,
        {QStringLiteral("-n"), QStringLiteral("-s3"), QStringLiteral("-IFD0:Orientation"), copy});
    QCOMPARE(read.trimmed(), QByteArray("0"));
}

QTEST_GUILESS_MAIN(tst_ExifUtils)
#include "tst_ExifUtils.moc"

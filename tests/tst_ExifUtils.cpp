// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ExifUtils.h"

#include "Columns.h"
#include "ImageUtils.h"
#include "JpegParts.h"
#include "LogCapture.h"
#include "OddDevices.h"
#include "OrdinaryUser.h"
#include "Photographs.h"
#include "QExifImageHeader.h"
#include "SystemCalls.h"
#include "Text.h"
#include "TiffBuilder.h"
#include "TiffWalk.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QFile>
#include <QImage>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

using Header = QExifImageHeader;

Q_DECLARE_METATYPE(QExifValue)

namespace {

/// A JPEG with an EXIF block of 38 bytes: IFD0 with one entry, Orientation, whose type, count and
/// value are given in hexadecimal.
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

    void orientation_data();
    void orientation();
    void orientationBehindXmp();
    void orientationReadsNoFurther();
    void setOrientationChangesTwoBytes_data();
    void setOrientationChangesTwoBytes();
    void setOrientationOfOtherKind_data();
    void setOrientationOfOtherKind();
    void setOrientationAddsTheTag();
    void setOrientationFails();
    void setOrientationAcrossPages();
    void removeLocation_data();
    void removeLocation();
    void removeLocationFromXmp_data();
    void removeLocationFromXmp();
    void removeLocationFromExtendedXmp();
    void removeLocationFromFilm_data();
    void removeLocationFromFilm();
    void removeLocationBesideNoBlock();
    void removeLocationFromThumbnail();
    void removeLocationFromOddPlaces_data();
    void removeLocationFromOddPlaces();
    void removeLocationFromJoinedBlock();
    void removeLocationFromTangledBlock_data();
    void removeLocationFromTangledBlock();
    void removeLocationFails();
    void removeLocationFromPhotos();
    void removeMetadata_data();
    void removeMetadata();
    void removeMetadataOfRotated();
    void removeMetadataFails();
    void removeMetadataFromPhotos();
};

void tst_ExifUtils::rotation_data()
{
    const auto table = columns<QByteArray, int>("file", "angle");
    const auto row = [&](const char* name, const char* typeCountValue, int angle) {
        table(name, jpegWithOrientation(typeCountValue), angle);
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
    table("no EXIF", QByteArray::fromHex("FFD8 FFDB 0004 0102 FFD9"), 0);
    table("not a JPEG", "GIF89a", 0);
    table("empty", QByteArray(), 0);
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
    const auto row = columns<QExifValue, int>("value", "angle");
    row("Short 3", QExifValue(quint16(3)), 180);
    row("Short 6", QExifValue(quint16(6)), 90);
    row("Short 8", QExifValue(quint16(8)), -90);
    row("Byte 8", QExifValue(quint8(8)), -90);
    row("Short 2", QExifValue(quint16(2)), 0);
    row("SignedLong 6", QExifValue(qint32(6)), 0);
    row("null", QExifValue(), 0);
}

void tst_ExifUtils::rotationOfHeader()
{
    QFETCH(QExifValue, value);
    QFETCH(int, angle);
    Header header;
    QCOMPARE(ExifUtils::imageExifRotation(header), 0);
    header.setValue(Header::Orientation, value);
    QCOMPARE(ExifUtils::imageExifRotation(header), angle);
    // The same number in another tag space has no meaning.
    header.remove(Header::Orientation);
    header.setValue(static_cast<Header::ExifExtendedTag>(0x0112), value);
    QCOMPARE(ExifUtils::imageExifRotation(header), 0);
}

// What could be read before the damage is used.
void tst_ExifUtils::rotationOfDamagedBlock()
{
    QByteArray file = jpegWithOrientation("0003 00000001 00060000");
    file.truncate(2 + 4 + 6 + 22); // directly after the entry
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
    const auto row = columns<QByteArray>("file");
    row("empty", QByteArray());
    row("not a JPEG", "GIF89a");
    row("no EXIF", QByteArray::fromHex("FFD8 FFDB 0004 0102 FFD9"));
    row("broken block", QByteArray::fromHex("FFD8 FFE1 000C") + QByteArray("Exif\0\0", 6) + "????");
    // An EXIF segment after another APP1 segment is ignored.
    row("XMP first",
        QByteArray::fromHex("FFD8 FFE1 0006 41424344")
            + jpegWithOrientation("0003 00000001 00060000").mid(2));
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
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
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

// A block without room for one more entry.
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
    const auto row = columns<QString>("fileName");
    const QJsonObject expected = expectedPhotos();
    for (const QString& name : expected.keys())
        row(qPrintable(name), name);
    if (expected.isEmpty())
        row("no photographs", QString());
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

    // The first APP1 segment of a JPEG decides; if that is not EXIF there is no orientation.
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
    // If EXIF is neither the first segment nor the one after JFIF, the new segment is inserted
    // before it, so that readers find the new one first.
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

// Orientation

void tst_ExifUtils::orientation_data()
{
    const auto table = columns<QByteArray, int>("file", "orientation");
    const auto row = [&](const char* name, const char* typeCountValue, int orientation) {
        table(name, jpegWithOrientation(typeCountValue), orientation);
    };
    row("0", "0003 00000001 00000000", 0);
    row("1", "0003 00000001 00010000", 1);
    row("2", "0003 00000001 00020000", 2);
    row("3", "0003 00000001 00030000", 3);
    row("4", "0003 00000001 00040000", 4);
    row("5", "0003 00000001 00050000", 5);
    row("6", "0003 00000001 00060000", 6);
    row("7", "0003 00000001 00070000", 7);
    row("8", "0003 00000001 00080000", 8);
    row("9", "0003 00000001 00090000", 0);
    row("Byte 6", "0001 00000001 06000000", 6);
    row("Long 6", "0004 00000001 00000006", 6);
    row("SignedLong 6", "0009 00000001 00000006", 6);
    row("negative", "0009 00000001 FFFFFFFF", 0);
    row("two Shorts", "0003 00000002 00060006", 0);
    row("no Short", "0003 00000000 00060000", 0);
    row("Ascii 6", "0002 00000002 36000000", 0);
    table("no EXIF", soi() + dqt() + scan(), 0);
    table("not a JPEG", "GIF89a", 0);
    table("empty", QByteArray(), 0);
    table("no TIFF", soi() + exifSegment("??????????????????") + scan(), 0);
    table("directory outside", soi() + exifSegment(TiffBuilder(big).tiff(500).u16(0)) + scan(), 0);
    table("directory in the head", soi() + exifSegment(TiffBuilder(big).tiff(2).u16(0)) + scan(),
          0);
    table(
        "directory further back",
        soi()
            + exifSegment(
                TiffBuilder(little).tiff(20).raw("maker's note").u16(1).shorts(0x0112, 1, 5).u32(0))
            + scan(),
        5);
    table(
        "the last of two",
        soi()
            + exifSegment(
                TiffBuilder(little).tiff().u16(2).shorts(0x0112, 1, 5).shorts(0x0112, 1, 6).u32(0))
            + scan(),
        6);
}

void tst_ExifUtils::orientation()
{
    QFETCH(QByteArray, file);
    QFETCH(int, orientation);
    LogCapture log;
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file);
    QCOMPARE(ExifUtils::imageExifOrientation(path), orientation);
    QBuffer buffer(&file);
    QCOMPARE(ExifUtils::imageExifOrientation(&buffer), 0); // not open
    buffer.open(QIODevice::ReadOnly);
    QCOMPARE(ExifUtils::imageExifOrientation(&buffer), orientation);
    SequentialDevice sequential;
    sequential.content = file;
    sequential.open(QIODevice::ReadOnly);
    QCOMPARE(ExifUtils::imageExifOrientation(&sequential), orientation);
    QCOMPARE(ExifUtils::imageExifOrientation(static_cast<QIODevice*>(nullptr)), 0);
    QCOMPARE(ExifUtils::imageExifOrientation(sandbox(text("missing.jpg"))), 0);
    QVERIFY(log.records().isEmpty());
}

void tst_ExifUtils::orientationBehindXmp()
{
    const QByteArray segment = jpegWithOrientation("0003 00000001 00060000").mid(2);
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), soi() + jfif() + xmp() + segment);
    QCOMPARE(ExifUtils::imageExifOrientation(path), 6);
    QCOMPARE(ExifUtils::imageExifRotation(path), 0);
}

// A file that ends after the first directory, and a device that is read up to that point.
void tst_ExifUtils::orientationReadsNoFurther()
{
    const QByteArray file = jpegWithOrientation("0003 00000001 00080000");
    SequentialDevice device;
    device.content = file;
    device.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    QCOMPARE(ExifUtils::imageExifOrientation(&device), 8);
    QCOMPARE(int(device.bytesAvailable()), file.size() - (2 + 4 + 6 + 22));
}

void tst_ExifUtils::setOrientationChangesTwoBytes_data()
{
    const auto row = columns<QByteArray, int>("file", "place"); // the offset of the two bytes
    row("big endian", jpegWithOrientation("0003 00000001 00060000"), 30);
    row("little endian", soi() + exifSegment(fullBlock(little)) + scan(), 12 + 8 + 2 + 12 + 8);
    row("behind XMP", soi() + xmp() + jpegWithOrientation("0003 00000001 00060000").mid(2),
        30 + 37);
}

void tst_ExifUtils::setOrientationChangesTwoBytes()
{
    QFETCH(QByteArray, file);
    QFETCH(int, place);
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file);
    const auto inode = [&path] {
        struct stat status;
        return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
    };
    const auto before = inode();
    const int low = file.contains("II*") ? place : place + 1;
    for (int orientation = 1; orientation <= 8; ++orientation) {
        QString error = text("as it was");
        QVERIFY(ExifUtils::setOrientation(path, orientation, &error));
        QCOMPARE(error, text("as it was"));
        QByteArray expected = file;
        expected[low] = char(orientation);
        QCOMPARE(contentOf(path).toHex(), expected.toHex());
        QCOMPARE(ExifUtils::imageExifOrientation(path), orientation);
        QVERIFY(inode() == before);
    }
    const QDateTime time = QFileInfo(path).lastModified();
    QVERIFY(ExifUtils::setOrientation(path, 8));
    QCOMPARE(QFileInfo(path).lastModified(), time);
    QCOMPARE(treeOf(sandbox.root()).size(), 1);
}

void tst_ExifUtils::setOrientationOfOtherKind_data()
{
    const auto row = columns<QByteArray>("typeCountValue");
    row("Byte", "0001 00000001 06000000");
    row("SignedLong 0", "0009 00000001 00000000");
    row("two Shorts", "0003 00000002 00060006");
    row("a text further back", "0002 0000000C 0000001A");
}

void tst_ExifUtils::setOrientationOfOtherKind()
{
    QFETCH(QByteArray, typeCountValue);
    const Sandbox sandbox;
    const QString path =
        sandbox.file(text("file.jpg"), jpegWithOrientation(typeCountValue.constData()));
    QVERIFY(ExifUtils::setOrientation(path, 8));
    QCOMPARE(contentOf(path).toHex(), jpegWithOrientation("0003 00000001 00080000").toHex());
}

void tst_ExifUtils::setOrientationAddsTheTag()
{
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), soi() + jfif() + dqt() + scan());
    QVERIFY(ExifUtils::setOrientation(path, 6));
    const QByteArray block = TiffBuilder(little).tiff().u16(1).shorts(0x0112, 1, 6).u32(0);
    QCOMPARE(contentOf(path).toHex(),
             (soi() + jfif() + exifSegment(block) + dqt() + scan()).toHex());
    const QByteArray other =
        TiffBuilder(big).tiff().u16(1).bytes(0x010F, 2, 4, QByteArray("abc\0", 4)).u32(0);
    writeFile(path, soi() + exifSegment(other) + scan());
    QVERIFY(ExifUtils::setOrientation(path, 6));
    QCOMPARE(ExifUtils::imageExifOrientation(path), 6);
    QCOMPARE(Header(path).value(Header::Make).toString(), text("abc"));
}

void tst_ExifUtils::setOrientationFails()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    const Sandbox sandbox;
    const QByteArray content = jpegWithOrientation("0003 00000001 00060000");
    const QString path = sandbox.file(text("file.jpg"), content);
    QString error;
    for (const int orientation : {-1, 0, 9, 65537}) {
        error.clear();
        QVERIFY(!ExifUtils::setOrientation(path, orientation, &error));
        QCOMPARE(error, text("There is no such orientation of a picture."));
    }
    QVERIFY(!ExifUtils::setOrientation(path, 0));
    QVERIFY(!ExifUtils::setOrientation(sandbox(text("missing.jpg")), 1, &error));
    QVERIFY2(error.startsWith(text("The file cannot be opened: ")), qPrintable(error));
    QVERIFY(!isThere(sandbox(text("missing.jpg"))));
    QVERIFY(!ExifUtils::setOrientation(sandbox.file(text("text"), "text"), 1, &error));
    QCOMPARE(error, text("The file is not a JPEG picture."));
    QCOMPARE(contentOf(sandbox(text("text"))), QByteArray("text"));
    const QByteArray damaged = soi() + exifSegment("????????????") + scan();
    QVERIFY(!ExifUtils::setOrientation(sandbox.file(text("bad.jpg"), damaged), 1, &error));
    QCOMPARE(error, text("The EXIF data of the picture is damaged."));
    QCOMPARE(contentOf(sandbox(text("bad.jpg"))), damaged);
    changeMode(path, 0444);
    const OrdinaryUser user;
    QVERIFY(!ExifUtils::setOrientation(path, 1, &error));
    QCOMPARE(contentOf(path), content);
}

// The entry of another type crosses a page boundary: the file is replaced in one step.
void tst_ExifUtils::setOrientationAcrossPages()
{
    const QByteArray file = jpegWithOrientation("0009 00000001 00000006").mid(2);
    const Sandbox sandbox;
    // Type, count and value are at 22 to 32.
    const int commentSize = 4096 - 26 - 4;
    const QString path = sandbox.file(text("file.jpg"),
                                      soi() + segment(0xFFFE, QByteArray(commentSize, ' ')) + file);
    QFile held(path); // keeps the inode number from being reused
    QVERIFY(held.open(QIODevice::ReadOnly));
#ifdef Q_OS_WIN
    // An open file cannot be replaced, and stays as it is.
    const QByteArray before = contentOf(path);
    QVERIFY(!ExifUtils::setOrientation(path, 3));
    QCOMPARE(contentOf(path), before);
    held.close();
    QVERIFY(ExifUtils::setOrientation(path, 3));
#else
    struct stat before;
    struct stat after;
    QCOMPARE(::fstat(held.handle(), &before), 0);
    QVERIFY(ExifUtils::setOrientation(path, 3));
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &after), 0);
    QVERIFY(before.st_ino != after.st_ino);
#endif
    QCOMPARE(ExifUtils::imageExifOrientation(path), 3);
    QCOMPARE(contentOf(path).size(), commentSize + 4 + 2 + file.size());
}

// Privacy

namespace {

/// The latitude of the blocks in TiffBuilder.h, as it is stored in a file.
QByteArray latitude(QDataStream::ByteOrder order)
{
    return TiffBuilder(order).u32(47).u32(1).u32(30).u32(1).u32(5).u32(2);
}

QByteArray xmpSegment(const QByteArray& xml)
{
    return segment(0xFFE1, QByteArray("http://ns.adobe.com/xap/1.0/\0", 29) + xml);
}

} // namespace

void tst_ExifUtils::removeLocation_data()
{
    const auto row = columns<QByteArray>("file");
    const QByteArray rest = dqt() + scan();
    for (const auto order : {little, big}) {
        const QByteArray exif = exifSegment(fullBlock(order));
        const QByteArray name = order == little ? "little endian, " : "big endian, ";
        row(name + "alone", soi() + exif + rest);
        row(name + "behind XMP", soi() + jfif() + xmp() + exif + rest);
        row(name + "twice", soi() + exif + xmp() + exif + rest);
        row(name + "of a second picture", soi() + rest + soi() + exif + rest);
        row(name + "in no segment", soi() + rest + exif.mid(4));
    }
}

void tst_ExifUtils::removeLocation()
{
    QFETCH(QByteArray, file);
    LogCapture log;
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file);
    QString error;
    QVERIFY2(ExifUtils::removeLocation(path, &error), qPrintable(error));
    const QByteArray after = contentOf(path);
    QCOMPARE(after.size(), file.size());
    QVERIFY(!after.contains(latitude(little)) && !after.contains(latitude(big)));
    // The blocks read the same except for their GPS directories.
    int blocks = 0;
    for (int at = 0; (at = int(file.indexOf(QByteArray("Exif\0\0", 6), at))) >= 0; at += 6) {
        const int size = int(fullBlock(big).size());
        QCOMPARE(TiffWalk(after.mid(at + 6, size)).entries(),
                 TiffWalk(file.mid(at + 6, size)).entriesBut({"GPS", "IFD0 8825"}));
        ++blocks;
    }
    QVERIFY(blocks > 0);
    const QDateTime time = QFileInfo(path).lastModified();
    QVERIFY(ExifUtils::removeLocation(path));
    QCOMPARE(contentOf(path), after);
    QCOMPARE(QFileInfo(path).lastModified(), time);
    QVERIFY(log.records().isEmpty());
}

void tst_ExifUtils::removeLocationFromXmp_data()
{
    const auto table = columns<QByteArray, QByteArray>("before", "after");
    const auto row = [&](const char* name, const QByteArray& before,
                         const QList<QByteArray>& erased) {
        QByteArray after = before;
        for (const QByteArray& part : erased) {
            QVERIFY(after.contains(part));
            after.replace(part, QByteArray(part.size(), ' '));
        }
        table(name, before, after);
    };
    row("attribute", "<a exif:GPSLatitude=\"48,7.5N\" b=\"c\"/>", {"exif:GPSLatitude=\"48,7.5N\""});
    row("apostrophes", "<a exif:GPSLatitude='4\">8' b='>'/>", {"exif:GPSLatitude='4\">8'"});
    row("element", "<a><exif:GPSLongitude>11E</exif:GPSLongitude><b>c</b></a>",
        {"<exif:GPSLongitude>11E</exif:GPSLongitude>"});
    row("element with others", "<a><GPSx f='/'><rdf:li>1</rdf:li><c/></GPSx></a>",
        {"<GPSx f='/'><rdf:li>1</rdf:li><c/></GPSx>"});
    row("element in itself", "<x:GPSa><x:GPSa>1</x:GPSa><x:GPSa/></x:GPSa><b/>",
        {"<x:GPSa><x:GPSa>1</x:GPSa><x:GPSa/></x:GPSa>"});
    row("element around a comment", "<GPSa><!-- </GPSa> --></GPSa><b/>",
        {"<GPSa><!-- </GPSa> --></GPSa>"});
    row("empty element", "<exif:GPSAltitude/><b/>", {"<exif:GPSAltitude/>"});
    row("other names", "<a drone:GpsLongtitude=\"1\" m:Latitude=\"2\" gps=\"3\"/>",
        {"drone:GpsLongtitude=\"1\"", "m:Latitude=\"2\"", "gps=\"3\""});
    row("names alone", "<a xmlns:gps=\"u\" t=\"GPSLatitude\">GPSLatitude</a>", {});
    row("no markup", "<!-- <GPS>1</GPS> --><?x <GPS?><![CDATA[<GPS>]]><a/>", {});
    row("spaces", "<a GPSx = \"1\"\n\tb=\"2\"/>", {"GPSx = \"1\""});
    row("element without end", "<a><GPSx>48", {"<GPSx>48"});
    row("a quote too many", "<a u='x'y' exif:GPSLatitude='4' b='0'><exif:GPSx>1</exif:GPSx></a>",
        {"y' exif:GPSLatitude='4'", "<exif:GPSx>1</exif:GPSx>"});
    row("attribute without end", "<a GPSx=\"48", {});
    row("comment without end", "<a/><!-- ", {});
    row("nothing behind", "<", {});
}

void tst_ExifUtils::removeLocationFromXmp()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const Sandbox sandbox;
    const QString path =
        sandbox.file(text("file.jpg"), soi() + xmpSegment(before) + dqt() + scan());
    QVERIFY(ExifUtils::removeLocation(path));
    QCOMPARE(contentOf(path), soi() + xmpSegment(after) + dqt() + scan());
    // The same in a packet outside of any segment.
    const auto inNoSegment = [](const QByteArray& xml) {
        return soi() + dqt() + scan() + "<x:xmpmeta>" + xml + "</x:xmpmeta>tail";
    };
    writeFile(path, inNoSegment(before));
    QVERIFY(ExifUtils::removeLocation(path));
    const bool isWhole = before.endsWith("/>") || before.endsWith("a>");
    if (isWhole)
        QCOMPARE(contentOf(path), inNoSegment(after));
    QCOMPARE(contentOf(path).size(), inNoSegment(before).size());
}

// A packet of several segments, split in the middle of a property.
void tst_ExifUtils::removeLocationFromExtendedXmp()
{
    const QByteArray xml = "<x:xmpmeta><a>" + QByteArray(100, 'x')
        + "</a><exif:GPSLatitude>48,7.5N</exif:GPSLatitude></x:xmpmeta>";
    const auto digestOf = [](const QByteArray& bytes) {
        return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex().toUpper();
    };
    const auto part = [&](const QByteArray& whole, int begin, int size) {
        return segment(0xFFE1,
                       QByteArray("http://ns.adobe.com/xmp/extension/\0", 35) + digestOf(whole)
                           + TiffBuilder(big).u32(quint32(whole.size())).u32(quint32(begin)).all()
                           + whole.mid(begin, size));
    };
    const auto file = [&](const QByteArray& whole) {
        const QByteArray main =
            xmpSegment("<a xmpNote:HasExtendedXMP=\"" + digestOf(whole) + "\"/>");
        const int cut = 130;
        return soi() + main + part(whole, cut, int(whole.size())) + part(whole, 0, cut) + scan();
    };
    QByteArray expected = xml;
    const int begin = int(expected.indexOf("<exif:GPS"));
    const int end = int(expected.indexOf("</x:xmpmeta>"));
    expected.replace(begin, end - begin, QByteArray(end - begin, ' '));
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file(xml));
    QVERIFY(ExifUtils::removeLocation(path));
    QCOMPARE(contentOf(path), file(expected));

    const QByteArray plain = "<x:xmpmeta><a>" + QByteArray(200, 'x') + "</a></x:xmpmeta>";
    writeFile(path, file(plain));
    QVERIFY(ExifUtils::removeLocation(path));
    QCOMPARE(contentOf(path), file(plain));

    // A packet with a NUL is not XML in any encoding that is read.
    QByteArray unreadable = xml;
    unreadable[50] = '\0';
    writeFile(path, file(unreadable));
    QVERIFY(!ExifUtils::removeLocation(path));
    QCOMPARE(contentOf(path), file(unreadable));
}

void tst_ExifUtils::removeLocationFromFilm_data()
{
    const auto row = columns<QByteArray, QByteArray>("before", "after");
    const auto box = [](const QByteArray& type, const QByteArray& content, int excess = 0) {
        const auto size = quint32(8 + content.size() + excess);
        return TiffBuilder(big).u32(size).raw(type).raw(content).all();
    };
    const QByteArray place("\0\x12\x15\xC7+48.8577+002.295/", 22);
    const QByteArray zeros(place.size(), '\0');
    row("a text", box("\xA9xyz", place), box("free", zeros));
    row("a structure", box("loci", place), box("free", zeros));
    row("both, among others",
        box("mvhd", "1234") + box("loci", place) + box("\xA9xyz", place) + box("mdat", "5678"),
        box("mvhd", "1234") + box("free", zeros) + box("free", zeros) + box("mdat", "5678"));
    row("too short to be a box", box("loci", "123"), box("loci", "123"));
    row("larger than a location", box("loci", QByteArray(600, 'x')),
        box("loci", QByteArray(600, 'x')));
    row("beyond the end of the file", box("loci", place, 1), box("loci", place, 1));
}

/// The boxes that state where a film was taken, behind the picture, become free space.
void tst_ExifUtils::removeLocationFromFilm()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QByteArray photo = soi() + jfif() + dqt() + scan();
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), photo + before);
    QVERIFY(ExifUtils::removeLocation(path));
    QCOMPARE(contentOf(path), photo + after);
}

/// The name of an EXIF block with bytes that are no block and state no location.
void tst_ExifUtils::removeLocationBesideNoBlock()
{
    const QByteArray file =
        soi() + dqt() + scan() + exifPayload(hex("49492A00FFFFFFFF")) + "something else";
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file);
    QString error;
    QVERIFY2(ExifUtils::removeLocation(path, &error), qPrintable(error));
    QCOMPARE(contentOf(path), file);
}

/// IFD1 loses an entry, and IFD0 must still lead to it.
void tst_ExifUtils::removeLocationFromThumbnail()
{
    TiffBuilder block(big);
    block.tiff(8).u16(1).shorts(0x0112, 1, 6).u32(26);
    block.u16(2).shorts(0x0128, 1, 2).entry(0x8825, 4, 1, 56).u32(0); // 26: IFD1
    block.u16(1).entry(0x0002, 5, 3, 74).u32(0).raw(latitude(big)); // 56: GPS
    const Sandbox sandbox;
    const QString path =
        sandbox.file(text("file.jpg"), soi() + exifSegment(block.all()) + dqt() + scan());
    QString error;
    QVERIFY2(ExifUtils::removeLocation(path, &error), qPrintable(error));
    const QByteArray after = contentOf(path);
    QVERIFY(!after.contains(latitude(big)));
    QCOMPARE(TiffWalk(after.mid(12, block.all().size())).entries(),
             QList<QByteArray>({"IFD0 0112 3 1 0006", "IFD1 0128 3 1 0002"}));
}

// Some readers show a position from blocks that others do not recognise.
void tst_ExifUtils::removeLocationFromOddPlaces_data()
{
    const auto table = columns<QByteArray, bool>("segment", "can");
    const QByteArray block = fullBlock(big);
    const auto resource = [](const char* name, int nameSize, const QByteArray& data) {
        TiffBuilder bytes(big);
        bytes.raw("Photoshop 3.0").raw(QByteArray(1, '\0')).raw("8BIM").u16(0x0422);
        bytes.raw(QByteArray(name, nameSize)).u32(quint32(data.size())).raw(data);
        return segment(0xFFED, bytes.all());
    };
    const QByteArray name("Exif\0", 5);
    table("another byte after the name", segment(0xFFE1, name + '\x01' + block), true);
    table("0xFF after the name", segment(0xFFE1, name + '\xFF' + block), true);
    table("a resource", resource("\0\0", 2, block), true);
    table("a resource with a name", resource("\2ab\0", 4, block), true);
    table("a resource that begins with a name", resource("\0\0", 2, exifPayload(block)), true);
    QByteArray odd = block;
    odd[3] = '\x55';
    table("another number after the byte order", exifSegment(odd), false);
    TiffBuilder third(big); // the third directory leads to GPS
    third.tiff(8).u16(0).u32(14).u16(0).u32(20).u16(1).entry(0x8825, 4, 1, 38).u32(0);
    third.u16(1).entry(0x0002, 5, 3, 56).u32(0).raw(latitude(big));
    table("a resource with an unusual block", resource("\0\0", 2, third), false);
}

void tst_ExifUtils::removeLocationFromOddPlaces()
{
    QFETCH(QByteArray, segment);
    QFETCH(bool, can);
    const QByteArray file = soi() + segment + dqt() + scan();
    QVERIFY(file.contains(latitude(big)));
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file);
    QString error;
    QCOMPARE(ExifUtils::removeLocation(path, &error), can);
    QCOMPARE(error, can ? QString() : text("The EXIF data of the picture is damaged."));
    const QByteArray after = contentOf(path);
    QCOMPARE(after.size(), file.size());
    QCOMPARE(after.contains(latitude(big)), !can);
    QCOMPARE(after == file, !can);
}

// A block of more than one segment: only the first has a header.
void tst_ExifUtils::removeLocationFromJoinedBlock()
{
    const QByteArray block = fullBlock(big);
    const int cut = 150; // in the middle of the GPS directory
    const Sandbox sandbox;
    const QString path =
        sandbox.file(text("file.jpg"),
                     soi() + exifSegment(block.left(cut)) + exifSegment(block.mid(cut)) + scan());
    QVERIFY(ExifUtils::removeLocation(path));
    const QByteArray after = contentOf(path);
    const QByteArray joined = after.mid(12, cut) + after.mid(12 + cut + 10, block.size() - cut);
    QCOMPARE(TiffWalk(joined).entries(), TiffWalk(block).entriesBut({"GPS", "IFD0 8825"}));
    QVERIFY(after.endsWith(scan()));
}

// Directories that overlap other data, or that refer to each other in unusual ways: what cannot be
// removed with certainty is not reported as removed.
void tst_ExifUtils::removeLocationFromTangledBlock_data()
{
    const auto row = columns<QByteArray>("block");
    const auto gpsAt = [](TiffBuilder& block) {
        const auto behind = quint32(block.size() + 2 + 12 + 4);
        block.u16(1).entry(0x0002, 5, 3, behind).u32(0).raw(latitude(big));
    };

    // The name of the camera overlaps IFD0, which then moves and leaves its old bytes behind.
    TiffBuilder across(big);
    across.tiff(8).u16(3).entry(0x010F, 2, 40, 8).entry(0x8769, 4, 1, 50).entry(0x8825, 4, 1, 68);
    across.u32(0).u16(1).entry(0xA005, 4, 1, 8).u32(0); // 50: Exif, which leads to IFD0
    gpsAt(across);
    row("interoperability leads to the old IFD0", across.all());

    TiffBuilder third(big);
    third.tiff(8).u16(0).u32(14).u16(0).u32(20).u16(1).entry(0x8825, 4, 1, 38).u32(0);
    gpsAt(third);
    row("a third directory leads to GPS", third.all());

    TiffBuilder listed(big);
    listed.tiff(8).u16(1).entry(0x014A, 4, 2, 26).u32(0).u32(34).u32(40);
    listed.u16(0).u32(0).u16(1).entry(0x8825, 4, 1, 58).u32(0); // 34 and 40
    gpsAt(listed);
    row("the second of two directories leads to GPS", listed.all());

    TiffBuilder half(little);
    half.tiff(68).u16(1).entry(0x8825, 4, 1, 26).u32(0); // 8
    half.u16(1).entry(0x0002, 5, 3, 44).u32(0).raw(latitude(little)); // 26: GPS
    half.u16(1).shorts(0x0112, 1, 1).u16(8); // 68: IFD0, and the first half of a link
    row("a link to GPS that breaks off", half.all());

    TiffBuilder many(big);
    const int count = 100;
    many.tiff(8).u16(1).entry(0x014A, 4, count, 26).u32(0);
    for (int i = 0; i < count; ++i)
        many.u32(quint32(26 + 4 * count + 2 * i));
    many.raw(QByteArray(2 * count, '\0'));
    row("a hundred directories", many.all());

    // Each of the 5,000 entries leads to a directory of its own, which contains everything after
    // it.
    TiffBuilder large(big);
    const int most = 5000;
    large.tiff(8).u16(most);
    for (int i = 0; i < most; ++i)
        large.entry(0x8769, 4, 1, quint32(10 + 8 + 12 * i));
    large.entry(0x8825, 4, 1, 8);
    row("5,000 directories of thousands of entries", large.all());
}

void tst_ExifUtils::removeLocationFromTangledBlock()
{
    QFETCH(QByteArray, block);
    const QByteArray file = soi() + exifSegment(block) + dqt() + scan();
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file);
    QString error;
    QVERIFY(!ExifUtils::removeLocation(path, &error));
    QCOMPARE(error, text("The EXIF data of the picture is damaged."));
    QCOMPARE(contentOf(path), file);
    // Transferred to another file, without the block.
    QImage pixels(8, 8, QImage::Format_RGB32);
    pixels.fill(Qt::blue);
    QVERIFY(pixels.save(path, "jpeg"));
    writeFile(path, contentOf(path).insert(2, exifSegment(block)));
    ImageImport how;
    how.metadata = ImageImport::AllButLocation;
    const ImageImportResult result = ImageUtils::importImage(path, sandbox(text("copy.jpg")), how);
    QVERIFY2(result, qPrintable(result.error));
    QVERIFY(!contentOf(sandbox(text("copy.jpg"))).contains("Exif"));
}

void tst_ExifUtils::removeLocationFails()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    const Sandbox sandbox;
    QString error;
    QVERIFY(!ExifUtils::removeLocation(sandbox(text("missing.jpg")), &error));
    QVERIFY2(error.startsWith(text("The file cannot be opened: ")), qPrintable(error));
    QVERIFY(!isThere(sandbox(text("missing.jpg"))));
    QVERIFY(!ExifUtils::removeLocation(sandbox.file(text("text"), "text"), &error));
    QCOMPARE(error, text("The file is not a JPEG picture."));
    const QByteArray file = soi() + exifSegment(fullBlock(big)) + scan();
    const QString path = sandbox.file(text("file.jpg"), file);
    QCOMPARE(::link(QFile::encodeName(path).constData(),
                    QFile::encodeName(sandbox(text("name.jpg"))).constData()),
             0);
    // A change within one page is written in place.
    QVERIFY(ExifUtils::removeLocation(path, &error));
    writeFile(path, soi() + segment(0xFFFE, QByteArray(3900, ' ')) + file.mid(2));
    const QByteArray content = contentOf(path);
    QVERIFY(!ExifUtils::removeLocation(path, &error));
    QVERIFY2(error.startsWith(text("The file cannot be replaced: ")), qPrintable(error));
    QCOMPARE(contentOf(path), content);
}

void tst_ExifUtils::removeLocationFromPhotos()
{
    const QStringList names = expectedPhotos().keys().filter(QRegularExpression(text("jpg$")));
    const QString exiftool = QStandardPaths::findExecutable(text("exiftool"));
    if (names.isEmpty() || exiftool.isEmpty())
        QSKIP("the photographs or exiftool are not there; hand-made files cover the logic");
    const Sandbox sandbox;
    int located = 0;
    for (const QString& name : names) {
        const QString path =
            sandbox.file(name, contentOf(photosFolder() + QLatin1Char('/') + name));
        QString error;
        QVERIFY2(ExifUtils::removeLocation(path, &error), qPrintable(name + error));
        located += contentOf(path) == contentOf(photosFolder() + QLatin1Char('/') + name) ? 0 : 1;
    }
    QVERIFY(located >= 5);
    const QStringList options{text("-a"), text("-G1"), text("-s"), text("-ee"), text("-u")};
    const QByteArray gps = outputOf(
        exiftool, options + QStringList{text("-GPS*"), text("-*Latitude*"), sandbox.root()});
    QVERIFY2(!gps.contains("GPS") && !gps.contains("atitude"), gps.constData());
    // All other tags read as before; readers number the directories differently.
    const auto others = [&](const QString& folder) {
        QList<QByteArray> lines =
            outputOf(exiftool,
                     options
                         + QStringList{text("-EXIF:all"), text("-XMP:all"), text("-IPTC:all"),
                                       text("-ICC:all"), text("-ext"), text("jpg"), folder})
                .split('\n');
        for (QByteArray& line : lines) {
            if (line.contains("GPS") || line.startsWith("========"))
                line = QByteArray();
        }
        lines.removeAll(QByteArray());
        std::sort(lines.begin(), lines.end());
        return lines;
    };
    QCOMPARE(others(sandbox.root()), others(photosFolder()));
}

void tst_ExifUtils::removeMetadata_data()
{
    const auto row = columns<QByteArray, QByteArray>("file", "expected");
    const QByteArray icc = segment(0xFFE2, QByteArray("ICC_PROFILE\0\1\1....", 18));
    const QByteArray adobe = segment(0xFFEE, "Adobe.......");
    const QByteArray exif = exifSegment(TiffBuilder(big).tiff().u16(1).shorts(0x0112, 1, 1).u32(0));
    const QByteArray iptc = segment(0xFFED, QByteArray("Photoshop 3.0\08BIM", 18));
    const QByteArray comment = segment(0xFFFE, "a comment");
    const QByteArray extension = segment(0xFFE0, QByteArray("JFXX\0\x10", 6));
    const QByteArray rest = dqt() + scan();
    row("nothing to remove", soi() + jfif() + icc + adobe + rest,
        soi() + jfif() + icc + adobe + rest);
    row("everything",
        soi() + jfif() + extension + exif + xmp() + icc + iptc + comment + segment(0xFFE2, "MPF")
            + segment(0xFFEB, "JP") + segment(0xFFEF, "?") + adobe + rest,
        soi() + jfif() + icc + adobe + rest);
    row("between scans", soi() + dqt() + scan().chopped(2) + comment + rest,
        soi() + dqt() + scan().chopped(2) + rest);
    row("behind the picture", soi() + rest + soi() + exif + rest + "a film", soi() + rest);
    row("cut short", soi() + exif + dqt() + scan().chopped(2), soi() + dqt() + scan().chopped(2));
    row("cut short in it", soi() + dqt() + exif.chopped(3), soi() + dqt());
    row("fill bytes", soi() + hex("FFFF") + exif + hex("FF") + rest, soi() + rest);
}

void tst_ExifUtils::removeMetadata()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, expected);
    LogCapture log;
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file);
    QString error = text("as it was");
    QVERIFY(ExifUtils::removeMetadata(path, &error));
    QCOMPARE(contentOf(path).toHex(), expected.toHex());
    QCOMPARE(error, text("as it was"));
    QVERIFY(ExifUtils::removeMetadata(path));
    QCOMPARE(contentOf(path), expected);
    QVERIFY(log.records().isEmpty());
}

void tst_ExifUtils::removeMetadataOfRotated()
{
    const Sandbox sandbox;
    const QByteArray file =
        soi() + jfif() + xmp() + exifSegment(fullBlock(little)) + dqt() + scan();
    const QString path = sandbox.file(text("file.jpg"), file);
    QString error;
    QVERIFY(!ExifUtils::removeMetadata(path, &error));
    QCOMPARE(error, text("Without its EXIF data the picture would no longer stand upright."));
    QCOMPARE(contentOf(path), file);
    QVERIFY(ExifUtils::removeMetadata(path, &error, ExifUtils::Rotated::KeepOrientation));
    const QByteArray block = TiffBuilder(little).tiff().u16(1).shorts(0x0112, 1, 6).u32(0);
    QCOMPARE(contentOf(path).toHex(),
             (soi() + jfif() + exifSegment(block) + dqt() + scan()).toHex());
    QVERIFY(ExifUtils::setOrientation(path, 1));
    QVERIFY(ExifUtils::removeMetadata(path));
    QCOMPARE(contentOf(path), soi() + jfif() + dqt() + scan());
}

void tst_ExifUtils::removeMetadataFails()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    const Sandbox sandbox;
    QString error;
    QVERIFY(!ExifUtils::removeMetadata(sandbox(text("missing.jpg")), &error));
    QVERIFY(!ExifUtils::removeMetadata(QString()));
    QVERIFY(!ExifUtils::removeMetadata(sandbox.file(text("text"), "text"), &error));
    QCOMPARE(error, text("The file is not a JPEG picture."));
    // An impossible length, and a picture that starts again: decoders continue, and what belongs to
    // the picture is anybody's guess.
    for (const char* const damage : {"FFE20000", "FFFE0001", "FFE20002FFD8"}) {
        const QByteArray damaged = soi() + xmp() + hex(damage) + dqt() + scan();
        QVERIFY(!ExifUtils::removeMetadata(sandbox.file(text("bad.jpg"), damaged), &error));
        QCOMPARE(contentOf(sandbox(text("bad.jpg"))), damaged);
    }
    const QByteArray file = soi() + xmp() + dqt() + scan();
    const QString path = sandbox.file(text("file.jpg"), file);
    QCOMPARE(::link(QFile::encodeName(path).constData(),
                    QFile::encodeName(sandbox(text("name.jpg"))).constData()),
             0);
    QVERIFY(!ExifUtils::removeMetadata(path, &error));
    QVERIFY2(error.startsWith(text("The file cannot be replaced: ")), qPrintable(error));
    QCOMPARE(contentOf(path), file);
}

void tst_ExifUtils::removeMetadataFromPhotos()
{
    const QStringList names = expectedPhotos().keys().filter(QRegularExpression(text("jpg$")));
    const QString exiftool = QStandardPaths::findExecutable(text("exiftool"));
    if (names.isEmpty() || exiftool.isEmpty())
        QSKIP("the photographs or exiftool are not there; hand-made files cover the logic");
    const Sandbox sandbox;
    for (const QString& name : names) {
        const QByteArray before = contentOf(photosFolder() + QLatin1Char('/') + name);
        const QString path = sandbox.file(name, before);
        QString error;
        if (!ExifUtils::removeMetadata(path, &error, ExifUtils::Rotated::KeepOrientation)) {
            // It ends before its picture begins: nothing would remain.
            QVERIFY2(name.startsWith(text("broken-file-ends-inside-app1")),
                     qPrintable(name + error));
            QCOMPARE(error, text("The file is not a JPEG picture."));
            QCOMPARE(contentOf(path), before);
            continue;
        }
        const QByteArray after = contentOf(path);
        QCOMPARE(QImage::fromData(after, "JPG"), QImage::fromData(before, "JPG"));
        QCOMPARE(after.contains("ICC_PROFILE"), before.contains("ICC_PROFILE"));
    }
    const QByteArray left =
        outputOf(exiftool,
                 {text("-a"), text("-G1"), text("-s"), text("-EXIF:all"), text("-XMP:all"),
                  text("-IPTC:all"), text("-MakerNotes:all"), text("-Photoshop:all"),
                  text("-Comment"), text("-ext"), text("jpg"), sandbox.root()});
    for (const QByteArray& line : left.split('\n'))
        QVERIFY2(!line.startsWith('[') || line.contains("Orientation"), line.constData());
}

QTEST_GUILESS_MAIN(tst_ExifUtils)
#include "tst_ExifUtils.moc"

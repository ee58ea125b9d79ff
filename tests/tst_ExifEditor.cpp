// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ExifEditor.h"

#include "Columns.h"
#include "ExifUtils.h"

#include "JpegParts.h"
#include "LogCapture.h"
#include "OddDevices.h"
#include "OrdinaryUser.h"
#include "Photographs.h"
#include "Sandbox.h"
#include "Text.h"
#include "TiffBuilder.h"
#include "TiffWalk.h"

#include <QtTest>

#include <functional>

using Header = QExifImageHeader;
using Rationals = QVector<QPair<quint32, quint32>>;

Q_DECLARE_METATYPE(QDataStream::ByteOrder)

namespace {

/// A JPEG with an EXIF block.
QByteArray jpegOf(const QByteArray& block)
{
    return soi() + exifSegment(block) + dqt() + scan();
}

/// The block of the first EXIF segment.
QByteArray blockOf(const QByteArray& file)
{
    for (const JpegParts::Part& part : JpegParts(file).parts) {
        if (part.isExif())
            return part.bytes.mid(10);
    }
    return QByteArray();
}

bool loadFrom(ExifEditor* editor, const QByteArray& file)
{
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    return editor->load(&buffer);
}

/// The file that results from saving into a copy of another one; empty if that fails.
QByteArray savedInto(ExifEditor* editor, const QByteArray& file)
{
    const Sandbox sandbox(folderInMemory());
    const QString path = sandbox.file(text("file.jpg"), file);
    return editor->save(path) ? contentOf(path) : QByteArray();
}

/// The block after a change.
QByteArray edited(const QByteArray& block, const std::function<void(ExifEditor*)>& change)
{
    ExifEditor editor;
    if (!loadFrom(&editor, jpegOf(block)))
        return QByteArray("not loaded");
    change(&editor);
    return blockOf(savedInto(&editor, jpegOf(block)));
}

Header::ImageTag imageTag(unsigned number)
{
    return static_cast<Header::ImageTag>(number);
}

Header::ExifExtendedTag extendedTag(unsigned number)
{
    return static_cast<Header::ExifExtendedTag>(number);
}

/// A block of 92 bytes: Make, a text of 10 bytes, and an orientation in IFD0; ExposureTime in the
/// Exif sub-IFD.
QByteArray smallBlock(QDataStream::ByteOrder order)
{
    return TiffBuilder(order)
        .tiff()
        .u16(3)
        .entry(0x010F, 2, 10, 50)
        .shorts(0x0112, 1, 6)
        .entry(0x8769, 4, 1, 60)
        .u32(0)
        .raw(QByteArray("Orva Corp\0", 10)) // 50
        .u16(1) // 60
        .entry(0x829A, 5, 1, 78)
        .u32(0)
        .u32(1) // 78
        .u32(125)
        .raw("tail.."); // 86: nothing refers to it
}

} // namespace

class tst_ExifEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyEditor();
    void loadFails_data();
    void loadFails();
    void reasons();
    void tooDamagedToGrow();
    void findsBlock_data();
    void findsBlock();
    void loadsFromSequentialDevice();
    void nothingToSave();
    void valuesAsInFile_data();
    void valuesAsInFile();
    void unknownTypes();

    void sameValueChangesNothing();
    void shorterValueStaysInPlace_data() { valuesAsInFile_data(); }
    void shorterValueStaysInPlace();
    void longerValueGoesToTheEnd();
    void valueMovesIntoEntry();
    void newTagMovesDirectory_data() { valuesAsInFile_data(); }
    void newTagMovesDirectory();
    void lostTagClosesGap();
    void lastTagTakesDirectoryAway();
    void pointersAreTheEditors();
    void repeatedTagIsOneAfterwards();
    void sharedValueIsKept();
    void overlappingDirectoryIsKept();
    void linklessDirectoriesAreKept();
    void unorderedDirectories_data();
    void unorderedDirectories();
    void addingAndRemovingDoesNotGrow();
    void removedValuesAreErased();
    void texts();
    void newBlock_data();
    void newBlock();
    void largestBlock();
    void continuedBlock();

    void saveTwice();
    void saveIntoAnotherFile();
    void saveIntoDevice();
    void saveRefuses();
    void saveFailedWrite();
    void saveKeepsFile();

    void orientation_data();
    void orientation();
    void dateTimeOriginal_data();
    void dateTimeOriginal();
    void gpsPosition_data();
    void gpsPosition();
    void removeGps();
    void removeThumbnail();

    void mutations_data() { valuesAsInFile_data(); }
    void mutations();
};

void tst_ExifEditor::emptyEditor()
{
    ExifEditor editor;
    QVERIFY(editor.isEmpty());
    QVERIFY(editor.imageTags().isEmpty() && editor.extendedTags().isEmpty());
    QVERIFY(editor.gpsTags().isEmpty());
    QVERIFY(editor.value(Header::Make).isNull());
    QVERIFY(!editor.contains(Header::GPSLatitude));
    QCOMPARE(editor.orientation(), 0);
    QVERIFY(!editor.dateTimeOriginal().isValid());
    QVERIFY(!editor.gpsPosition(nullptr, nullptr));
    QCOMPARE(int(editor.byteOrder()), int(little));
    editor.removeGps();
    editor.removeThumbnail();
    editor.remove(Header::Make);
    editor.setOrientation(0);
    editor.setOrientation(9);
    editor.setOrientation(-1);
    QVERIFY(editor.isEmpty());
    const QByteArray file = jpegOf(smallBlock(big));
    QCOMPARE(savedInto(&editor, file), file);

    // Tags that were set and removed again leave nothing to save.
    editor.setOrientation(6);
    editor.setValue(Header::GPSLatitudeRef, QExifValue(text("N")));
    QVERIFY(!editor.isEmpty());
    editor.removeGps();
    QVERIFY(!editor.isEmpty());
    editor.setOrientation(0);
    QVERIFY(editor.isEmpty());
    QCOMPARE(savedInto(&editor, file), file);
    editor.setOrientation(6);
    QCOMPARE(editor.orientation(), 6);
    QVERIFY(!editor.isEmpty());
}

void tst_ExifEditor::loadFails_data()
{
    const auto row = columns<QByteArray, QString>("file", "reason");
    const QString noJpeg = text("The file is not a JPEG picture.");
    const QString damaged = text("The EXIF data of the picture is damaged.");
    row("empty", QByteArray(), noJpeg);
    row("GIF", "GIF89a....", noJpeg);
    row("SOI alone", soi(), noJpeg);
    row("no TIFF", jpegOf("????????????"), damaged);
    row("short", jpegOf("II"), damaged);
    row("other number", jpegOf(TiffBuilder(big).raw("MM").u16(43).u32(8).u16(0)), damaged);
    row("directory outside", jpegOf(TiffBuilder(big).tiff(800).u16(0)), damaged);
    row("directory in the head", jpegOf(TiffBuilder(big).tiff(4).u16(0)), damaged);
}

void tst_ExifEditor::loadFails()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, reason);
    LogCapture log;
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file);
    ExifEditor editor;
    editor.setOrientation(6);
    QString error;
    QVERIFY(!editor.load(path, &error));
    QCOMPARE(error, reason);
    QVERIFY(editor.isEmpty());
    QVERIFY(!editor.load(path));
    QCOMPARE(contentOf(path), file);
    QVERIFY(log.records().isEmpty());
}

void tst_ExifEditor::reasons()
{
    const Sandbox sandbox;
    ExifEditor editor;
    QString error;
    QVERIFY(!editor.load(sandbox(text("missing.jpg")), &error));
    QVERIFY2(error.startsWith(text("The file cannot be opened: ")), qPrintable(error));
    QVERIFY(!editor.load(QString(), &error));
    QVERIFY(!editor.load(static_cast<QIODevice*>(nullptr), &error));
    QCOMPARE(error, text("The file cannot be read."));
    editor.setOrientation(6);
    QVERIFY(!editor.save(sandbox(text("missing.jpg")), &error));
    QVERIFY2(error.startsWith(text("The file cannot be opened: ")), qPrintable(error));
    QVERIFY(!isThere(sandbox(text("missing.jpg"))));
    QVERIFY(!editor.save(sandbox.file(text("text.jpg"), "no picture"), &error));
    QCOMPARE(error, text("The file is not a JPEG picture."));
    // On success nothing is written there.
    error = text("as it was");
    QVERIFY(editor.save(sandbox.file(text("file.jpg"), soi() + dqt() + scan()), &error));
    QVERIFY(editor.load(sandbox(text("file.jpg")), &error));
    QCOMPARE(error, text("as it was"));
}

// Truncated directories have more entries in a longer block, here more than are read.
void tst_ExifEditor::tooDamagedToGrow()
{
    TiffBuilder block(big);
    const int room = 2000;
    block.tiff(8).u16(5);
    for (const quint32 place : {74u, 76u, 78u, 80u, 2070u})
        block.entry(0x8769, 4, 1, place);
    block.u32(0).u16(0xFFFF).u16(0xFFFF).u16(0xFFFF).u16(0xFFFF);
    block.raw(QByteArray(room - 12, '\0')).u16(0xFFFF).raw(QByteArray(24, '\0'));
    const QByteArray file = soi() + exifSegment(block) + scan();
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file);
    ExifEditor editor;
    QString error;
    QVERIFY2(editor.load(path, &error), qPrintable(error));
    editor.setValue(QExifImageHeader::Artist, QExifValue(QString(3000, QLatin1Char('a'))));
    QVERIFY(!editor.save(path, &error));
    QCOMPARE(error, text("The EXIF data of the picture is damaged."));
    QCOMPARE(contentOf(path), file);

    QBuffer device;
    device.setData(file);
    QVERIFY(device.open(QIODevice::ReadWrite));
    error.clear();
    QVERIFY(!editor.save(&device, &error));
    QCOMPARE(error, text("The EXIF data of the picture is damaged."));
    QCOMPARE(device.data(), file);
}

void tst_ExifEditor::findsBlock_data()
{
    // front: the bytes before the segment
    const auto row = columns<QByteArray, QByteArray>("front", "behind");
    const QByteArray icc = segment(0xFFE2, QByteArray("ICC_PROFILE\0\1\1....", 18));
    const QByteArray comment = segment(0xFFFE, "a comment");
    const QByteArray rest = dqt() + scan();
    const QByteArray other = exifSegment(fullBlock(little));
    row("first", soi(), rest);
    row("behind JFIF", soi() + jfif(), rest);
    row("behind XMP", soi() + xmp(), rest);
    row("behind JFIF, XMP, ICC, comment", soi() + jfif() + xmp() + icc + comment, rest);
    row("behind tables", soi() + dqt(), rest);
    row("fill bytes", soi() + hex("FFFFFF"), rest);
    row("bytes of no segment", soi() + hex("00112233"), rest);
    row("first of two", soi(), other + rest);
    row("in front of XMP", soi(), xmp() + rest);
    row("behind a short one", soi() + segment(0xFFE1, "Exif"), rest);
}

void tst_ExifEditor::findsBlock()
{
    QFETCH(QByteArray, front);
    QFETCH(QByteArray, behind);
    const QByteArray file = front + exifSegment(smallBlock(big)) + behind;
    ExifEditor editor;
    QVERIFY(loadFrom(&editor, file));
    QCOMPARE(editor.value(Header::Make).toString(), text("Orva Corp"));
    editor.setValue(Header::Artist, QExifValue(text("Somebody")));
    const QByteArray saved = savedInto(&editor, file);
    QVERIFY(saved.startsWith(front));
    QVERIFY(saved.endsWith(behind));
    ExifEditor again;
    QVERIFY(loadFrom(&again, saved));
    QCOMPARE(again.value(Header::Artist).toString(), text("Somebody"));
    QCOMPARE(again.value(Header::Make).toString(), text("Orva Corp"));
}

void tst_ExifEditor::loadsFromSequentialDevice()
{
    SequentialDevice device;
    device.content =
        soi() + hex("FFFF") + jfif() + xmp() + exifSegment(smallBlock(little)) + scan();
    device.open(QIODevice::ReadOnly);
    ExifEditor editor;
    QVERIFY(editor.load(&device));
    QCOMPARE(editor.orientation(), 6);
}

void tst_ExifEditor::nothingToSave()
{
    for (const QByteArray& file : {jpegOf(fullBlock(big)), QByteArray("no photograph")}) {
        QBuffer device;
        device.setData(file);
        QVERIFY(device.open(QIODevice::ReadWrite));
        ExifEditor editor;
        QVERIFY(editor.isEmpty());
        QVERIFY(editor.save(&device));
        QCOMPARE(device.data(), file);
    }
}

void tst_ExifEditor::valuesAsInFile_data()
{
    const auto row = columns<QDataStream::ByteOrder>("order");
    row("little endian", little);
    row("big endian", big);
}

void tst_ExifEditor::valuesAsInFile()
{
    QFETCH(QDataStream::ByteOrder, order);
    ExifEditor editor;
    QVERIFY(loadFrom(&editor, jpegOf(fullBlock(order))));
    QCOMPARE(int(editor.byteOrder()), int(order));
    QCOMPARE(editor.imageTags(),
             QList<Header::ImageTag>({Header::Make, Header::Orientation, Header::XResolution}));
    QCOMPARE(editor.extendedTags(),
             QList<Header::ExifExtendedTag>({Header::ExifVersion, Header::ExposureBiasValue}));
    QCOMPARE(editor.gpsTags(), QList<Header::GpsTag>({Header::GPSVersionID, Header::GPSLatitude}));
    QCOMPARE(described(editor.value(Header::Make)), text("2 x 5: 4f727661"));
    QCOMPARE(described(editor.value(Header::Orientation)), text("3 x 1: 6"));
    QCOMPARE(described(editor.value(Header::XResolution)), text("5 x 1: 72/1"));
    QCOMPARE(described(editor.value(Header::ExifVersion)), text("7 x 4: 30323330"));
    QCOMPARE(described(editor.value(Header::ExposureBiasValue)), text("10 x 1: -1/3"));
    QCOMPARE(described(editor.value(Header::GPSVersionID)), text("1 x 4: 2 3 0 0"));
    QCOMPARE(described(editor.value(Header::GPSLatitude)), text("5 x 3: 47/1 30/1 5/2"));
    QVERIFY(editor.contains(Header::Make));
    QVERIFY(!editor.contains(Header::Model));
    QVERIFY(editor.contains(Header::ExifVersion));
    QVERIFY(!editor.contains(Header::DateTimeOriginal));
}

void tst_ExifEditor::unknownTypes()
{
    const QByteArray block = TiffBuilder(big)
                                 .tiff()
                                 .u16(3)
                                 .entry(0x0100, 12, 1, 50) // a double
                                 .entry(0x0101, 99, 7, 0x12345678)
                                 .shorts(0x0112, 1, 6)
                                 .u32(0)
                                 .raw("DOUBLE!!");
    ExifEditor editor;
    LogCapture log;
    QVERIFY(loadFrom(&editor, jpegOf(block)));
    QVERIFY(editor.contains(imageTag(0x0100)));
    QVERIFY(editor.value(imageTag(0x0100)).isNull());
    QVERIFY(editor.value(imageTag(0x0101)).isNull());
    editor.setValue(Header::Artist, QExifValue(text("Somebody")));
    const QByteArray saved = blockOf(savedInto(&editor, jpegOf(block)));
    QCOMPARE(TiffWalk(saved).entriesBut({"IFD0 013b"}), TiffWalk(block).entries());
    QVERIFY(log.records().isEmpty());
}

// Changes

void tst_ExifEditor::sameValueChangesNothing()
{
    const QByteArray block = smallBlock(big);
    QCOMPARE(edited(block,
                    [](ExifEditor* editor) {
                        editor->setValue(Header::Make, QExifValue(text("Orva Corp")));
                        editor->setOrientation(6);
                        editor->remove(Header::Model);
                    })
                 .toHex(),
             block.toHex());
}

void tst_ExifEditor::shorterValueStaysInPlace()
{
    QFETCH(QDataStream::ByteOrder, order);
    const QByteArray saved = edited(smallBlock(order), [](ExifEditor* editor) {
        editor->setValue(Header::Make, QExifValue(text("Other")));
        editor->setOrientation(3);
        editor->setValue(Header::ExposureTime, QExifValue(QPair<quint32, quint32>(1, 60)));
    });
    const QByteArray expected = TiffBuilder(order)
                                    .tiff()
                                    .u16(3)
                                    .entry(0x010F, 2, 6, 50)
                                    .shorts(0x0112, 1, 3)
                                    .entry(0x8769, 4, 1, 60)
                                    .u32(0)
                                    .raw(QByteArray("Other\0\0\0\0\0", 10))
                                    .u16(1)
                                    .entry(0x829A, 5, 1, 78)
                                    .u32(0)
                                    .u32(1)
                                    .u32(60)
                                    .raw("tail..");
    QCOMPARE(saved.toHex(), expected.toHex());
}

void tst_ExifEditor::longerValueGoesToTheEnd()
{
    const QByteArray saved = edited(smallBlock(big), [](ExifEditor* editor) {
        editor->setValue(Header::Make, QExifValue(text("Orva Corporation")));
    });
    const QByteArray expected = TiffBuilder(big)
                                    .tiff()
                                    .u16(3)
                                    .entry(0x010F, 2, 17, 92)
                                    .shorts(0x0112, 1, 6)
                                    .entry(0x8769, 4, 1, 60)
                                    .u32(0)
                                    .raw(QByteArray(10, '\0')) // the old text
                                    .raw(smallBlock(big).mid(60))
                                    .raw(QByteArray("Orva Corporation\0", 17)); // 92
    QCOMPARE(saved.toHex(), expected.toHex());
}

void tst_ExifEditor::valueMovesIntoEntry()
{
    const QByteArray saved = edited(smallBlock(little), [](ExifEditor* editor) {
        editor->setValue(Header::Make, QExifValue(text("abc")));
    });
    QByteArray expected = smallBlock(little);
    expected.replace(10, 12, TiffBuilder(little).bytes(0x010F, 2, 4, QByteArray("abc\0", 4)).all());
    expected.replace(50, 10, QByteArray(10, '\0'));
    QCOMPARE(saved.toHex(), expected.toHex());
}

void tst_ExifEditor::newTagMovesDirectory()
{
    QFETCH(QDataStream::ByteOrder, order);
    const QByteArray saved = edited(smallBlock(order), [](ExifEditor* editor) {
        editor->setValue(Header::Model, QExifValue(text("M 1234")));
    });
    const QByteArray expected = TiffBuilder(order)
                                    .tiff(92)
                                    .raw(QByteArray(42, '\0')) // where the directory was
                                    .raw(smallBlock(order).mid(50))
                                    .u16(4) // 92
                                    .entry(0x010F, 2, 10, 50)
                                    .entry(0x0110, 2, 7, 146)
                                    .shorts(0x0112, 1, 6)
                                    .entry(0x8769, 4, 1, 60)
                                    .u32(0)
                                    .raw(QByteArray("M 1234\0", 7)); // 146
    QCOMPARE(saved.toHex(), expected.toHex());
}

void tst_ExifEditor::lostTagClosesGap()
{
    const QByteArray saved =
        edited(smallBlock(little), [](ExifEditor* editor) { editor->remove(Header::Orientation); });
    const QByteArray expected = TiffBuilder(little)
                                    .tiff()
                                    .u16(2)
                                    .entry(0x010F, 2, 10, 50)
                                    .entry(0x8769, 4, 1, 60)
                                    .u32(0)
                                    .raw(QByteArray(12, '\0'))
                                    .raw(smallBlock(little).mid(50));
    QCOMPARE(saved.toHex(), expected.toHex());
}

void tst_ExifEditor::lastTagTakesDirectoryAway()
{
    const QByteArray saved = edited(
        smallBlock(little), [](ExifEditor* editor) { editor->remove(Header::ExposureTime); });
    const QByteArray expected = TiffBuilder(little)
                                    .tiff()
                                    .u16(2)
                                    .entry(0x010F, 2, 10, 50)
                                    .shorts(0x0112, 1, 6)
                                    .u32(0)
                                    .raw(QByteArray(12, '\0'))
                                    .raw(smallBlock(little).mid(50, 10))
                                    .raw(QByteArray(26, '\0'))
                                    .raw("tail..");
    QCOMPARE(saved.toHex(), expected.toHex());
}

void tst_ExifEditor::pointersAreTheEditors()
{
    ExifEditor editor;
    QVERIFY(loadFrom(&editor, jpegOf(fullBlock(big))));
    for (const unsigned tag : {0x8769u, 0x8825u, 0xA005u}) {
        editor.setValue(imageTag(tag), QExifValue(quint32(1)));
        editor.setValue(extendedTag(tag), QExifValue(quint32(1)));
        editor.remove(imageTag(tag));
        editor.remove(extendedTag(tag));
        QVERIFY(!editor.contains(imageTag(tag)));
        QVERIFY(editor.value(imageTag(tag)).isNull());
    }
    const QByteArray file = jpegOf(fullBlock(big));
    QCOMPARE(savedInto(&editor, file), file);
}

void tst_ExifEditor::repeatedTagIsOneAfterwards()
{
    const QByteArray block = TiffBuilder(big)
                                 .tiff()
                                 .u16(3)
                                 .shorts(0x0112, 1, 6)
                                 .shorts(0x0103, 1, 1)
                                 .shorts(0x0112, 1, 8)
                                 .u32(0);
    ExifEditor editor;
    QVERIFY(loadFrom(&editor, jpegOf(block)));
    QCOMPARE(editor.orientation(), 8);
    const QByteArray saved = edited(block, [](ExifEditor* changed) { changed->setOrientation(3); });
    QCOMPARE(TiffWalk(saved).entries(),
             QList<QByteArray>({"IFD0 0103 3 1 0001", "IFD0 0112 3 1 0003"}));
}

// Two tags may share a value, and one value may be part of another.
void tst_ExifEditor::sharedValueIsKept()
{
    const QByteArray block = TiffBuilder(little)
                                 .tiff()
                                 .u16(3)
                                 .entry(0x010F, 2, 8, 50)
                                 .entry(0x0110, 2, 8, 50)
                                 .entry(0x0131, 2, 5, 53)
                                 .u32(0)
                                 .raw(QByteArray("abc 456\0", 8));
    for (const auto tag : {Header::Make, Header::Model, Header::Software}) {
        const QByteArray saved = edited(
            block, [tag](ExifEditor* editor) { editor->setValue(tag, QExifValue(text("12345"))); });
        const QByteArray name = "IFD0 " + QByteArray::number(tag, 16).rightJustified(4, '0');
        QCOMPARE(TiffWalk(saved).entriesBut({name}), TiffWalk(block).entriesBut({name}));
        QVERIFY(TiffWalk(saved).entries().contains(name + " 2 6 313233343500"));
        const QByteArray less = edited(block, [tag](ExifEditor* editor) { editor->remove(tag); });
        QCOMPARE(TiffWalk(less).entries(), TiffWalk(block).entriesBut({name}));
    }
}

// A value that overlaps a directory reads the same after the directory changes.
void tst_ExifEditor::overlappingDirectoryIsKept()
{
    const QByteArray block = TiffBuilder(big)
                                 .tiff()
                                 .u16(2)
                                 .entry(0x010F, 2, 20, 20) // starts at the next entry
                                 .shorts(0x0112, 1, 6)
                                 .u32(0)
                                 .raw("0123456789");
    const QByteArray saved = edited(block, [](ExifEditor* editor) { editor->setOrientation(3); });
    QVERIFY(TiffWalk(saved).entries().contains("IFD0 0112 3 1 0003"));
    QCOMPARE(TiffWalk(saved).entriesBut({"IFD0 0112"}), TiffWalk(block).entriesBut({"IFD0 0112"}));
}

// QExifImageHeader writes no links after its sub-directories, and offsets two bytes before the
// data.
void tst_ExifEditor::linklessDirectoriesAreKept()
{
    Header header;
    header.setValue(Header::Make, QExifValue(text("Orva Corp")));
    header.setValue(Header::ExposureTime, QExifValue(QPair<quint32, quint32>(1, 125)));
    header.setValue(Header::DateTimeOriginal, QExifValue(text("2020:01:02 03:04:05")));
    header.setValue(Header::GPSLatitude, QExifValue(Rationals{{48, 1}, {8, 1}, {0, 1}}));
    const QByteArray block = written(header);
    for (const auto tag : {Header::ColorSpace, Header::DateTimeOriginal, Header::ExposureTime}) {
        const QByteArray name = "Exif " + QByteArray::number(tag, 16);
        const QByteArray saved = edited(block, [tag](ExifEditor* editor) {
            editor->setValue(tag, QExifValue(text("a longer text than any before")));
        });
        QCOMPARE(TiffWalk(saved).entriesBut({name}), TiffWalk(block).entriesBut({name}));
        QCOMPARE(TiffWalk(saved).entries().size(), TiffWalk(block).entriesBut({name}).size() + 1);
    }
}

void tst_ExifEditor::unorderedDirectories_data()
{
    QTest::addColumn<QByteArray>("block");
    for (const QDataStream::ByteOrder order : {little, big}) {
        QTest::newRow(order == little ? "little-endian" : "big-endian")
            << TiffBuilder(order)
                   .tiff()
                   .u16(2)
                   .shorts(0x0112, 1, 6)
                   .entry(0x010F, 2, 10, 38)
                   .u32(48)
                   .raw(QByteArray("Orva Corp\0", 10)) // 38
                   .u16(2) // 48
                   .entry(0x0202, 4, 1, 6)
                   .entry(0x0201, 4, 1, 78)
                   .u32(0)
                   .raw(hex("FFD86E61FFD9")) // 78
                   .all();
    }
}

// Some programs write unsorted entries, with the size of a thumbnail before its offset.
void tst_ExifEditor::unorderedDirectories()
{
    QFETCH(QByteArray, block);
    const TiffWalk before(block);
    QVERIFY(before.isSound());
    QVERIFY(before.entries().contains("IFD1 thumbnail ffd86e61ffd9"));
    const QByteArray added = edited(block, [](ExifEditor* editor) {
        editor->setValue(Header::Artist, QExifValue(text("a longer text than any")));
    });
    QCOMPARE(TiffWalk(added).entriesBut({"IFD0 013b"}), before.entries());
    const QByteArray removed =
        edited(added, [](ExifEditor* editor) { editor->remove(Header::Artist); });
    QCOMPARE(TiffWalk(removed).entries(), before.entries());
}

void tst_ExifEditor::addingAndRemovingDoesNotGrow()
{
    QByteArray file = jpegOf(fullBlock(big));
    int size = 0;
    for (int i = 0; i < 6; ++i) {
        ExifEditor editor;
        QVERIFY(loadFrom(&editor, file));
        const bool adds = i % 2 == 0;
        const QExifValue value = adds ? QExifValue(text("Somebody")) : QExifValue();
        editor.setValue(Header::Artist, value);
        editor.setValue(Header::LensModel, value);
        editor.setValue(Header::GPSMapDatum, value);
        file = savedInto(&editor, file);
        if (i == 0)
            size = int(file.size());
        QCOMPARE(file.size() <= size, true);
        QCOMPARE(adds, file.size() == size);
    }
    QCOMPARE(TiffWalk(blockOf(file)).entries(), TiffWalk(fullBlock(big)).entries());
}

void tst_ExifEditor::removedValuesAreErased()
{
    QByteArray file = jpegOf(smallBlock(big));
    ExifEditor editor;
    QVERIFY(loadFrom(&editor, file));
    editor.setValue(Header::Artist, QExifValue(text("SecretName")));
    editor.setValue(Header::Copyright, QExifValue(text("another secret, a longer one")));
    file = savedInto(&editor, file);
    QVERIFY(file.contains("SecretName") && file.contains("another secret"));
    editor.setValue(Header::Copyright, QExifValue(text("short")));
    editor.remove(Header::Artist);
    editor.remove(Header::Make);
    file = savedInto(&editor, file);
    QVERIFY(!file.contains("Secret") && !file.contains("secret") && !file.contains("Orva"));
    QCOMPARE(editor.value(Header::Copyright).toString(), text("short"));
}

void tst_ExifEditor::texts()
{
    const QByteArray block = TiffBuilder(big)
                                 .tiff()
                                 .u16(3)
                                 .bytes(0x010F, 2, 3, QByteArray("abc\0", 4)) // without a NUL
                                 .entry(0x0110, 2, 8, 50) // UTF-8
                                 .entry(0x0131, 2, 6, 58) // Latin-1
                                 .u32(0)
                                 .raw(QByteArray("Z\xC3\xBCrich\0", 8))
                                 .raw(QByteArray("Gr\xFC\xDF"
                                                 "e\0",
                                                 6));
    ExifEditor editor;
    QVERIFY(loadFrom(&editor, jpegOf(block)));
    QVERIFY(!editor.isUtf8());
    QCOMPARE(editor.value(Header::Make).toString(), text("abc"));
    QCOMPARE(editor.value(Header::Model).toString(), QString::fromLatin1("Z\xC3\xBCrich"));
    QCOMPARE(editor.value(Header::Software).toString(), text("Grüße"));
    editor.setUtf8(true);
    QVERIFY(editor.isUtf8());
    QCOMPARE(editor.value(Header::Make).toString(), text("abc"));
    QCOMPARE(editor.value(Header::Model).toString(), text("Zürich"));
    QCOMPARE(editor.value(Header::Software).toString(), text("Grüße"));
    editor.setValue(Header::Artist, QExifValue(text("Łukasz 😀")));
    editor.setUtf8(false);
    editor.setValue(Header::Copyright, QExifValue(text("© Łukasz")));
    const QList<QByteArray> entries =
        TiffWalk(blockOf(savedInto(&editor, jpegOf(block)))).entries();
    QVERIFY(entries.contains("IFD0 013b 2 13 " + QByteArray("Łukasz 😀\0", 13).toHex()));
    QVERIFY(entries.contains("IFD0 8298 2 9 " + QByteArray("\xA9 ?ukasz\0", 9).toHex()));
    editor.setUtf8(true);
    QCOMPARE(editor.value(Header::Artist).toString(), text("Łukasz 😀"));
}

void tst_ExifEditor::newBlock_data()
{
    const auto row = columns<QByteArray>("front");
    const QByteArray extension = segment(0xFFE0, QByteArray("JFXX\0\x10", 6));
    row("behind SOI", soi());
    row("behind JFIF", soi() + jfif());
    row("behind JFIF and its extension", soi() + jfif() + extension);
}

void tst_ExifEditor::newBlock()
{
    QFETCH(QByteArray, front);
    const QByteArray behind = xmp() + dqt() + scan();
    ExifEditor editor;
    QVERIFY(loadFrom(&editor, front + behind));
    QVERIFY(editor.isEmpty());
    editor.setOrientation(6);
    editor.setValue(Header::ColorSpace, QExifValue(quint16(1)));
    editor.setValue(Header::GPSMapDatum, QExifValue(text("WGS-84")));
    const QByteArray block = TiffBuilder(little)
                                 .tiff()
                                 .u16(3)
                                 .shorts(0x0112, 1, 6)
                                 .entry(0x8769, 4, 1, 50)
                                 .entry(0x8825, 4, 1, 68)
                                 .u32(0)
                                 .u16(1) // 50
                                 .shorts(0xA001, 1, 1)
                                 .u32(0)
                                 .u16(1) // 68
                                 .entry(0x0012, 2, 7, 86)
                                 .u32(0)
                                 .raw(QByteArray("WGS-84\0", 7));
    QCOMPARE(savedInto(&editor, front + behind).toHex(),
             (front + exifSegment(block) + behind).toHex());
}

void tst_ExifEditor::largestBlock()
{
    const QByteArray file = soi() + dqt() + scan();
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file);
    ExifEditor editor;
    // Header, directory with one entry, the text and its NUL.
    const int room = 65527 - 8 - 18;
    editor.setValue(Header::Artist, QExifValue(QString(room, QLatin1Char('x'))));
    QString error;
    QVERIFY(!editor.save(path, &error));
    QCOMPARE(error, text("The EXIF data is larger than a JPEG picture can hold."));
    QCOMPARE(contentOf(path), file);
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadWrite);
    QVERIFY(!editor.save(&buffer, &error));
    QCOMPARE(buffer.data(), file);
    editor.setValue(Header::Artist, QExifValue(QString(room - 1, QLatin1Char('x'))));
    QVERIFY(editor.save(path));
    QCOMPARE(contentOf(path).size(), file.size() + 65537);
    // A full block still accepts values that need no room.
    QVERIFY(editor.load(path));
    editor.setValue(Header::Artist, QExifValue(QString(room - 2, QLatin1Char('y'))));
    QVERIFY(editor.save(path));
    editor.setValue(Header::Make, QExifValue(text("Orva")));
    QVERIFY(!editor.save(path));
    editor.remove(Header::Make);
    editor.remove(Header::Artist);
    editor.setOrientation(8);
    QVERIFY(editor.save(path));
    QVERIFY(contentOf(path).size() < file.size() + 100);
}

// The rest of a block that is larger than a segment is in the next segment.
void tst_ExifEditor::continuedBlock()
{
    const QByteArray file = soi() + exifSegment(smallBlock(big))
        + segment(0xFFE1, QByteArray("Exif\0\0and so on", 15)) + dqt() + scan();
    ExifEditor editor;
    QVERIFY(loadFrom(&editor, file));
    editor.setOrientation(3);
    QByteArray expected = file;
    expected.replace(TiffBuilder(big).shorts(0x0112, 1, 6).all(),
                     TiffBuilder(big).shorts(0x0112, 1, 3).all());
    QCOMPARE(savedInto(&editor, file).toHex(), expected.toHex());
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), file);
    QVERIFY(editor.load(path));
    editor.setValue(Header::Artist, QExifValue(text("Somebody")));
    QString error;
    QVERIFY(!editor.save(path, &error));
    QCOMPARE(error, text("The EXIF data of the picture fills several segments and cannot grow."));
    QCOMPARE(contentOf(path), file);
}

// Files

void tst_ExifEditor::saveTwice()
{
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), jpegOf(fullBlock(big)));
    ExifEditor editor;
    QVERIFY(editor.load(path));
    editor.setValue(Header::Artist, QExifValue(text("Somebody")));
    editor.setValue(Header::LensMake, QExifValue(text("Orva")));
    QVERIFY(editor.save(path));
    const QByteArray once = contentOf(path);
    const QDateTime time = QFileInfo(path).lastModified();
    QVERIFY(editor.save(path));
    QCOMPARE(contentOf(path), once);
    ExifEditor again;
    QVERIFY(again.load(path));
    again.setValue(Header::Artist, QExifValue(text("Somebody")));
    QVERIFY(again.save(path));
    QCOMPARE(contentOf(path), once);
    QCOMPARE(QFileInfo(path).lastModified(), time);
}

void tst_ExifEditor::saveIntoAnotherFile()
{
    ExifEditor editor;
    QVERIFY(loadFrom(&editor, jpegOf(fullBlock(big))));
    const QByteArray other = soi() + jfif() + xmp() + dqt() + scan();
    QCOMPARE(savedInto(&editor, other).toHex(),
             (soi() + jfif() + exifSegment(fullBlock(big)) + xmp() + dqt() + scan()).toHex());
    const QByteArray behindXmp = soi() + xmp() + exifSegment(smallBlock(little)) + scan();
    QCOMPARE(savedInto(&editor, behindXmp).toHex(),
             (soi() + xmp() + exifSegment(fullBlock(big)) + scan()).toHex());
}

void tst_ExifEditor::saveIntoDevice()
{
    const QByteArray file = jpegOf(fullBlock(little));
    WatchedBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadWrite);
    ExifEditor editor;
    QVERIFY(editor.load(&buffer));
    editor.removeThumbnail();
    QVERIFY(editor.save(&buffer));
    // Padded, so that only the segment is written.
    QCOMPARE(buffer.data().size(), file.size());
    QVERIFY(buffer.data().endsWith(dqt() + scan()));
    QCOMPARE(buffer.writes.size(), 1);
    QVERIFY(!buffer.data().contains("not a JPEG!!"));
    const QByteArray once = buffer.data();
    QVERIFY(editor.save(&buffer));
    QCOMPARE(buffer.data(), once);
    editor.setValue(Header::Artist, QExifValue(QString(500, QLatin1Char('x'))));
    QVERIFY(editor.save(&buffer));
    QVERIFY(buffer.data().size() > file.size());
    QVERIFY(buffer.data().endsWith(dqt() + scan()));
}

void tst_ExifEditor::saveRefuses()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    ExifEditor editor;
    editor.setOrientation(6);
    QString error;
    QVERIFY(!editor.save(static_cast<QIODevice*>(nullptr), &error));
    QCOMPARE(error, text("The file cannot be written."));
    QBuffer closed;
    QVERIFY(!editor.save(&closed));
    QBuffer readOnly;
    readOnly.setData(jpegOf(smallBlock(big)));
    readOnly.open(QIODevice::ReadOnly);
    QVERIFY(!editor.save(&readOnly));
    SequentialDevice sequential;
    sequential.content = jpegOf(smallBlock(big));
    sequential.open(QIODevice::ReadWrite);
    QVERIFY(!editor.save(&sequential));
    QCOMPARE(sequential.content, jpegOf(smallBlock(big)));

    // A file with several names (hard links) is not replaced, because the others would keep the old
    // one.
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), jpegOf(smallBlock(big)));
    QVERIFY(QFile(path).exists());
    QCOMPARE(::link(QFile::encodeName(path).constData(),
                    QFile::encodeName(sandbox(text("name.jpg"))).constData()),
             0);
    QVERIFY(editor.load(path));
    editor.setValue(Header::Artist, QExifValue(text("Somebody")));
    QVERIFY(!editor.save(path, &error));
    QVERIFY2(error.startsWith(text("The file cannot be replaced: ")), qPrintable(error));
    QCOMPARE(contentOf(path), jpegOf(smallBlock(big)));
    // A change within one page is written in place.
    QVERIFY(editor.load(path));
    editor.setOrientation(3);
    QVERIFY(editor.save(path));
    QCOMPARE(contentOf(sandbox(text("name.jpg"))), contentOf(path));
    QCOMPARE(ExifUtils::imageExifRotation(path), 180);
}

void tst_ExifEditor::saveFailedWrite()
{
    const QByteArray file = jpegOf(smallBlock(big));
    for (int capacity = 0; capacity < 300; capacity += 7) {
        WatchedBuffer buffer;
        buffer.setData(file);
        buffer.open(QIODevice::ReadWrite);
        ExifEditor editor;
        QVERIFY(editor.load(&buffer));
        editor.setValue(Header::Artist, QExifValue(text("Somebody")));
        buffer.capacity = capacity;
        buffer.failsOnce = true;
        const bool isSaved = editor.save(&buffer);
        QCOMPARE(isSaved, buffer.capacity >= 0);
        if (!isSaved)
            QVERIFY(buffer.data().startsWith(file));
        QCOMPARE(editor.value(Header::Artist).toString(), text("Somebody"));
    }
    for (int failing = 0; failing < 30; ++failing) {
        FaultyBuffer buffer(file, failing);
        ExifEditor editor;
        editor.setValue(Header::Artist, QExifValue(text("Somebody")));
        const bool isSaved = editor.save(&buffer);
        QCOMPARE(isSaved, !buffer.hasFailed());
        if (!isSaved)
            QVERIFY(buffer.data().startsWith(file));
    }
}

void tst_ExifEditor::saveKeepsFile()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    const Sandbox sandbox;
    const QString path = sandbox.file(text("file.jpg"), jpegOf(smallBlock(big)));
    const QString link = sandbox.link(text("link.jpg"), path);
    changeMode(path, 0640);
    ExifEditor editor;
    QVERIFY(editor.load(link));
    editor.setValue(Header::Artist, QExifValue(text("Somebody")));
    QVERIFY(editor.save(link));
    QVERIFY(QFileInfo(link).isSymLink());
    struct stat status;
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 07777), 0640);
    QVERIFY(contentOf(path).contains("Somebody"));
    QCOMPARE(treeOf(sandbox.root()).size(), 2);
    changeMode(path, 0444);
    changeMode(sandbox.root(), 0777);
    const OrdinaryUser user;
    QString error;
    QVERIFY(!editor.save(path, &error));
    QVERIFY(!error.isEmpty());
}

// Typical uses

void tst_ExifEditor::orientation_data()
{
    const auto row = columns<QByteArray, int>("typeCountValue", "orientation");
    row("0", hex("0003 00000001 00000000"), 0);
    row("1", hex("0003 00000001 00010000"), 1);
    row("8", hex("0003 00000001 00080000"), 8);
    row("9", hex("0003 00000001 00090000"), 0);
    row("Byte", hex("0001 00000001 06000000"), 6);
    row("Long", hex("0004 00000001 00000006"), 6);
    row("SignedLong", hex("0009 00000001 00000005"), 5);
    row("negative", hex("0009 00000001 FFFFFFFF"), 0);
    row("two", hex("0003 00000002 00060006"), 0);
    row("text", hex("0002 00000002 36000000"), 0);
}

void tst_ExifEditor::orientation()
{
    QFETCH(QByteArray, typeCountValue);
    QFETCH(int, orientation);
    const QByteArray block = TiffBuilder(big).tiff().u16(1).u16(0x0112).raw(typeCountValue).u32(0);
    ExifEditor editor;
    QVERIFY(loadFrom(&editor, jpegOf(block)));
    QCOMPARE(editor.orientation(), orientation);
    editor.setOrientation(7);
    QCOMPARE(editor.orientation(), 7);
    QCOMPARE(blockOf(savedInto(&editor, jpegOf(block))).toHex(),
             TiffBuilder(big).tiff().u16(1).shorts(0x0112, 1, 7).u32(0).all().toHex());
    editor.setOrientation(0);
    QVERIFY(!editor.contains(Header::Orientation));
}

void tst_ExifEditor::dateTimeOriginal_data()
{
    const auto row =
        columns<QString, QString, QString, QDateTime>("date", "fraction", "offset", "expected");
    const QDate date(2020, 2, 29);
    const QString written = text("2020:02:29 13:14:15");
    const auto at = [date](int milliseconds) {
        return QDateTime(date, QTime(13, 14, 15, milliseconds));
    };
    const auto inZone = [date](int milliseconds, int seconds) {
        return QDateTime(date, QTime(13, 14, 15, milliseconds), Qt::OffsetFromUTC, seconds);
    };
    row("date alone", written, QString(), QString(), at(0));
    row("tenths", written, "5", QString(), at(500));
    row("hundredths", written, "05", QString(), at(50));
    row("thousandths, padded", written, "678 ", QString(), at(678));
    row("microseconds", written, "678901", QString(), at(678));
    row("no fraction", written, "  ", QString(), at(0));
    row("east", written, "25", "+02:00", inZone(250, 7200));
    row("west", written, QString(), "-03:30", inZone(0, -12600));
    row("UTC", written, QString(), "+00:00", inZone(0, 0));
    row("no offset", written, QString(), "   :  ", at(0));
    row("no date", "    :  :     :  :  ", "5", "+02:00", QDateTime());
    row("no such date", "2019:02:29 13:14:15", QString(), QString(), QDateTime());
    row("too long", written + text("Z"), QString(), QString(), QDateTime());
}

void tst_ExifEditor::dateTimeOriginal()
{
    QFETCH(QString, date);
    QFETCH(QString, fraction);
    QFETCH(QString, offset);
    QFETCH(QDateTime, expected);
    for (const auto tag :
         {Header::OffsetTimeOriginal, Header::OffsetTimeDigitized, Header::OffsetTime}) {
        ExifEditor editor;
        editor.setValue(Header::DateTimeOriginal, QExifValue(date));
        if (!fraction.isEmpty())
            editor.setValue(Header::SubSecTimeOriginal, QExifValue(fraction));
        if (!offset.isEmpty())
            editor.setValue(tag, QExifValue(offset));
        QCOMPARE(editor.dateTimeOriginal(), expected);
        QCOMPARE(editor.dateTimeOriginal().timeSpec(), expected.timeSpec());
        QCOMPARE(editor.dateTimeOriginal().offsetFromUtc(), expected.offsetFromUtc());
    }
}

void tst_ExifEditor::gpsPosition_data()
{
    // latitude: numerators and denominators
    const auto row =
        columns<QString, QVector<quint32>, QString, QVector<quint32>, bool, double, double>(
            "northOrSouth", "latitude", "eastOrWest", "longitude", "isKnown", "north", "east");
    const QVector<quint32> some{48, 1, 30, 1, 36, 1};
    row("seconds", "N", some, "E", some, true, 48.51, 48.51);
    row("other half", "S", some, "W", some, true, -48.51, -48.51);
    row("small letters", "s", some, "w", some, true, -48.51, -48.51);
    row("minutes", "N", QVector<quint32>{47, 1, 3075, 100, 0, 1}, "E",
        QVector<quint32>{8, 1, 3075, 100}, true, 47.5125, 8.5125);
    row("degrees", "N", QVector<quint32>{475, 10}, "E", QVector<quint32>{180, 1, 0, 1, 0, 0}, true,
        47.5, 180.0);
    row("no reference", "", some, "E", some, false, 0.0, 0.0);
    row("other reference", "N", some, "X", some, false, 0.0, 0.0);
    row("no number", "N", QVector<quint32>{48, 0, 0, 1, 0, 1}, "E", some, false, 0.0, 0.0);
    row("no number of minutes", "N", QVector<quint32>{48, 1, 5, 0, 0, 1}, "E", some, false, 0.0,
        0.0);
    row("no degrees", "N", QVector<quint32>(), "E", some, false, 0.0, 0.0);
    row("beyond the pole", "N", QVector<quint32>{90, 1, 1, 1, 0, 1}, "E", some, false, 0.0, 0.0);
    row("around the world", "N", some, "E", QVector<quint32>{181, 1}, false, 0.0, 0.0);
}

void tst_ExifEditor::gpsPosition()
{
    QFETCH(QString, northOrSouth);
    QFETCH(QVector<quint32>, latitude);
    QFETCH(QString, eastOrWest);
    QFETCH(QVector<quint32>, longitude);
    QFETCH(bool, isKnown);
    QFETCH(double, north);
    QFETCH(double, east);
    const auto rationals = [](const QVector<quint32>& numbers) {
        Rationals pairs;
        for (int i = 0; i + 1 < numbers.size(); i += 2)
            pairs.append({numbers[i], numbers[i + 1]});
        return QExifValue(pairs);
    };
    ExifEditor editor;
    editor.setValue(Header::GPSLatitudeRef, QExifValue(northOrSouth));
    editor.setValue(Header::GPSLatitude, rationals(latitude));
    editor.setValue(Header::GPSLongitudeRef, QExifValue(eastOrWest));
    editor.setValue(Header::GPSLongitude, rationals(longitude));
    double gotNorth = 1000;
    double gotEast = 1000;
    double gotHeight = 1000;
    QCOMPARE(editor.gpsPosition(&gotNorth, &gotEast, &gotHeight), isKnown);
    QCOMPARE(gotNorth, isKnown ? north : 1000);
    QCOMPARE(gotEast, isKnown ? east : 1000);
    QCOMPARE(qIsNaN(gotHeight), isKnown);
    QCOMPARE(editor.gpsPosition(nullptr, nullptr, nullptr), isKnown);
    editor.setValue(Header::GPSAltitude, QExifValue(QPair<quint32, quint32>(8848, 10)));
    editor.setValue(Header::GPSAltitudeRef, QExifValue(quint8(1)));
    if (editor.gpsPosition(nullptr, nullptr, &gotHeight))
        QCOMPARE(gotHeight, -884.8);
    editor.remove(Header::GPSAltitudeRef);
    if (editor.gpsPosition(nullptr, nullptr, &gotHeight))
        QCOMPARE(gotHeight, 884.8);
}

void tst_ExifEditor::removeGps()
{
    for (const auto order : {little, big}) {
        const QByteArray saved =
            edited(fullBlock(order), [](ExifEditor* editor) { editor->removeGps(); });
        QCOMPARE(TiffWalk(saved).entries(),
                 TiffWalk(fullBlock(order)).entriesBut({"GPS", "IFD0 8825"}));
        // The 54 bytes of the directory and its values are all NULs.
        QCOMPARE(saved.mid(138, 54), QByteArray(54, '\0'));
        QCOMPARE(saved.size(), fullBlock(order).size());
    }
}

void tst_ExifEditor::removeThumbnail()
{
    for (const auto order : {little, big}) {
        const QByteArray saved =
            edited(fullBlock(order), [](ExifEditor* editor) { editor->removeThumbnail(); });
        QCOMPARE(TiffWalk(saved).entries(), TiffWalk(fullBlock(order)).entriesBut({"IFD1"}));
        QVERIFY(!saved.contains("JPEG"));
        QCOMPARE(saved.size(), 192); // IFD1 and its data were at the end of the block
    }
}

// Damage

// A damaged block: after a change it reads the same, whatever that is, except for the change.
void tst_ExifEditor::mutations()
{
    QFETCH(QDataStream::ByteOrder, order);
    quint32 state = 12345;
    const auto random = [&state](int below) {
        state = state * 1664525u + 1013904223u;
        return int((state >> 8) % quint32(below));
    };
    int soundBlocks = 0;
    for (int round = 0; round < 3000; ++round) {
        QByteArray block = fullBlock(order);
        for (int i = 0; i <= round % 4; ++i)
            block[random(int(block.size()))] = char(random(round % 2 ? 300 : 12));
        ExifEditor editor;
        if (!loadFrom(&editor, jpegOf(block)))
            continue;
        const QByteArray saved = edited(block, [](ExifEditor* changed) {
            changed->setValue(Header::Model, QExifValue(text("a model of some kind")));
        });
        QVERIFY2(saved.size() < 1000 && saved.size() >= block.size() / 2,
                 qPrintable(QString::number(round)));
        ExifEditor after;
        QVERIFY(loadFrom(&after, jpegOf(saved)));
        QCOMPARE(after.value(Header::Model).toString(), text("a model of some kind"));
        if (!TiffWalk(block).isSound())
            continue;
        ++soundBlocks;
        QList<Header::ImageTag> tags = editor.imageTags();
        tags.removeOne(Header::Model);
        for (const Header::ImageTag tag : qAsConst(tags))
            QCOMPARE(described(after.value(tag)), described(editor.value(tag)));
        QCOMPARE(after.gpsTags(), editor.gpsTags());
        for (const Header::GpsTag tag : after.gpsTags())
            QCOMPARE(described(after.value(tag)), described(editor.value(tag)));
        QCOMPARE(after.extendedTags(), editor.extendedTags());
    }
    QVERIFY(soundBlocks > 300);
}

QTEST_GUILESS_MAIN(tst_ExifEditor)
#include "tst_ExifEditor.moc"

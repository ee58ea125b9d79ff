// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// QExifImageHeader on photographs, judged by other readers.

#include "QExifImageHeader.h"

#include "Columns.h"
#include "JpegParts.h"
#include "LogCapture.h"
#include "Photographs.h"
#include "TiffBuilder.h"

#include <QCryptographicHash>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

using Header = QExifImageHeader;
using UnsignedPair = QPair<quint32, quint32>;
using SignedPair = QPair<qint32, qint32>;

class tst_QExifImageHeaderPhotos : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void readers();
    void photoTags_data();
    void photoTags();
    void photoSaved_data();
    void photoSaved();
    void photosSavedForReaders();

private:
    QJsonObject mExpected; // the output of the readers by file name
};

void tst_QExifImageHeaderPhotos::initTestCase()
{
    mExpected = expectedPhotos();
}

// A generated picture with tags, checked by other readers.
void tst_QExifImageHeaderPhotos::readers()
{
    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("made.jpg"));
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QVERIFY(image.save(fileName, "JPG"));
    Header header;
    header.setValue(Header::Make, QExifValue(QStringLiteral("Orva Optics")));
    header.setValue(Header::Orientation, QExifValue(quint16(6)));
    header.setValue(Header::XResolution, QExifValue(UnsignedPair(300, 1)));
    header.setValue(Header::Artist, QExifValue(QStringLiteral("Andr\u00e9")));
    header.setValue(Header::DateTime, QExifValue(QDateTime(QDate(2020, 2, 29), QTime(12, 34, 56))));
    header.setValue(Header::Flash, QExifValue(quint16(1))); // fits into its entry
    header.setValue(Header::GPSLatitudeRef, QExifValue(QStringLiteral("N")));
    header.setThumbnail(image.scaled(16, 12));
    QVERIFY(header.saveToJpeg(fileName));
    QCOMPARE(QImage(fileName), QImage::fromData(contentOf(fileName), "JPG"));

    const QString exiftool = QStandardPaths::findExecutable(QStringLiteral("exiftool"));
    const QString exiv2 = QStandardPaths::findExecutable(QStringLiteral("exiv2"));
    if (exiftool.isEmpty() || exiv2.isEmpty())
        QSKIP("exiftool and exiv2, which judge the file, are not both installed");
    const QByteArray json =
        outputOf(exiftool,
                 {QStringLiteral("-j"), QStringLiteral("-n"), QStringLiteral("-G1"),
                  QStringLiteral("-charset"), QStringLiteral("exif=latin1"), QStringLiteral("-b"),
                  QStringLiteral("-a"), QStringLiteral("-u"), QStringLiteral("-IFD0:all"),
                  QStringLiteral("-IFD1:all"), QStringLiteral("-ExifIFD:Flash"),
                  QStringLiteral("-GPS:GPSLatitudeRef"), fileName});
    const QJsonObject tags = QJsonDocument::fromJson(json).array().first().toObject();
    QCOMPARE(tags[QStringLiteral("IFD0:Make")].toString(), QStringLiteral("Orva Optics"));
    QCOMPARE(tags[QStringLiteral("IFD0:Orientation")].toInt(), 6);
    QCOMPARE(tags[QStringLiteral("IFD0:XResolution")].toInt(), 300);
    QCOMPARE(tags[QStringLiteral("IFD0:Artist")].toString(), QStringLiteral("Andr\u00e9"));
    QCOMPARE(tags[QStringLiteral("IFD0:ModifyDate")].toString(),
             QStringLiteral("2020:02:29 12:34:56"));
    QCOMPARE(tags[QStringLiteral("ExifIFD:Flash")].toInt(), 1);
    QCOMPARE(tags[QStringLiteral("GPS:GPSLatitudeRef")].toString(), QStringLiteral("N"));
    QCOMPARE(tags[QStringLiteral("IFD1:Compression")].toInt(), 6);
    QCOMPARE(tags[QStringLiteral("IFD1:XResolution")].toInt(), 72);
    QCOMPARE(tags[QStringLiteral("IFD1:ResolutionUnit")].toInt(), 2);
    const QByteArray values = outputOf(
        exiv2,
        {QStringLiteral("-PEkv"), QStringLiteral("-g"), QStringLiteral("Exif.Image.Orientation"),
         QStringLiteral("-g"), QStringLiteral("Exif.Image.Make"), fileName});
    QVERIFY2(values.simplified().contains("Exif.Image.Orientation 6"), values.constData());
    QVERIFY2(values.simplified().contains("Exif.Image.Make Orva Optics"), values.constData());
    const QByteArray thumbnail =
        outputOf(exiftool, {QStringLiteral("-b"), QStringLiteral("-ThumbnailImage"), fileName});
    QCOMPARE(QImage::fromData(thumbnail, "JPG").size(), QSize(16, 12));
}

/// A value as it is stored in a file and reported by the readers; count() bytes of a text.
static QByteArray inFile(const QExifValue& value, QDataStream::ByteOrder order)
{
    TiffBuilder laid(order);
    switch (value.type()) {
    case QExifValue::Byte:
        for (const quint8 item : value.toByteVector())
            laid.raw(QByteArray(1, char(item)));
        break;
    case QExifValue::Ascii:
        laid.raw(value.toByteArray() + '\0');
        break;
    case QExifValue::Short:
        for (const quint16 item : value.toShortVector())
            laid.u16(item);
        break;
    case QExifValue::Long:
        for (const quint32 item : value.toLongVector())
            laid.u32(item);
        break;
    case QExifValue::SignedLong:
        for (const qint32 item : value.toSignedLongVector())
            laid.u32(quint32(item));
        break;
    case QExifValue::Rational:
        for (const UnsignedPair& item : value.toRationalVector())
            laid.u32(item.first).u32(item.second);
        break;
    case QExifValue::SignedRational:
        for (const SignedPair& item : value.toSignedRationalVector())
            laid.u32(quint32(item.first)).u32(quint32(item.second));
        break;
    case QExifValue::Undefined:
        laid.raw(value.toByteArray());
        break;
    }
    return laid;
}

/// The bytes that the readers report for a tag, as content or as length and digest.
struct ReportedBytes
{
    bool known = false;
    QByteArray bytes;
    int length = 0;
    QByteArray sha1;

    explicit ReportedBytes(const QJsonObject& tag)
    {
        for (const char* reader : {"exiftool", "libexif"}) {
            const QJsonValue value = tag[QLatin1String(reader)].toObject()[QStringLiteral("bytes")];
            if (value.isString()) {
                bytes = QByteArray::fromHex(value.toString().toLatin1());
                length = int(bytes.size());
                known = true;
                return;
            }
            if (value.isObject()) {
                length = value.toObject()[QStringLiteral("bytes")].toInt();
                sha1 = value.toObject()[QStringLiteral("sha1")].toString().toLatin1();
                known = true;
                return;
            }
        }
    }

    bool is(const QByteArray& other) const
    {
        if (sha1.isEmpty())
            return other == bytes;
        return other.size() == length
            && QCryptographicHash::hash(other, QCryptographicHash::Sha1).toHex() == sha1;
    }
};

/// Whether a value agrees with the readers, apart from known differences: the reason if it does
/// not, else an empty text.
static QString differs(const QExifValue& value, const QJsonObject& reported,
                       QDataStream::ByteOrder order, const QByteArray& block)
{
    if (reported[QStringLiteral("disagree")].toBool()) {
        // The readers differ; the one that reports bytes has joined several segments. Ours is the
        // part in the first segment.
        const ReportedBytes bytes(reported);
        const QByteArray text = value.toByteArray();
        return bytes.known && bytes.bytes.startsWith(text) && block.endsWith(text)
            ? QString()
            : QStringLiteral("not the beginning of what the readers joined");
    }
    const int type = reported[QStringLiteral("type")].toInt();
    const quint32 count = quint32(reported[QStringLiteral("count")].toDouble());
    const bool typeExists = (type >= 1 && type <= 5) || type == 7 || type == 9 || type == 10;
    if (!typeExists)
        return value.isNull() ? QString() : QStringLiteral("unknown type, but not null");
    if (value.type() != type)
        return QStringLiteral("type %1 instead of %2").arg(value.type()).arg(type);

    QByteArray ours = inFile(value, order);
    const ReportedBytes bytes(reported);
    if (type == QExifValue::Ascii && count == 0) // the text runs up to the first NUL
        return value.count() >= 1 && value.count() <= 5
                && !ours.left(ours.size() - 1).contains('\0')
            ? QString()
            : QStringLiteral("wrong text of count 0");
    if (value.count() != count) {
        // Only if it extends beyond the end of the block: then it has the existing bytes.
        if (type == QExifValue::Ascii)
            ours.chop(1);
        return value.count() < count && bytes.known && bytes.bytes.startsWith(ours)
                && block.endsWith(ours)
            ? QString()
            : QStringLiteral("count %1 instead of %2").arg(value.count()).arg(count);
    }
    if (!bytes.known)
        return QString();
    if (type == QExifValue::Undefined && count < 5 && order == big) {
        // The four bytes of the entry, with zeros after the value, are reversed.
        QByteArray reversed = bytes.bytes.leftJustified(4, '\0');
        std::reverse(reversed.begin(), reversed.end());
        return ours == reversed.left(int(count)) ? QString() : QStringLiteral("not reversed");
    }
    if (type == QExifValue::Ascii && bytes.sha1.isEmpty()) {
        // The last byte of a text is removed whatever it is.
        return ours.left(ours.size() - 1) == bytes.bytes.left(bytes.length - 1)
            ? QString()
            : QStringLiteral("text %1").arg(QString::fromLatin1(ours.toHex()));
    }
    return bytes.is(ours) ? QString()
                          : QStringLiteral("bytes %1").arg(QString::fromLatin1(ours.toHex()));
}

/// The bytes of the last text in IFD0 of a little-endian block for a tag that occurs there more
/// than once; empty for other tags. Read by hand, because the readers keep the first one.
static QByteArray lastOfRepeatedText(const QByteArray& block, quint16 tag)
{
    if (!block.startsWith("II"))
        return QByteArray();
    const auto number = [&block](int at, int size) {
        quint32 value = 0;
        for (int i = size - 1; i >= 0; --i)
            value = value << 8 | uchar(block.at(at + i));
        return value;
    };
    const int ifd0 = int(number(4, 4));
    const int count = int(number(ifd0, 2));
    int occurrences = 0;
    QByteArray last;
    for (int at = ifd0 + 2; at < ifd0 + 2 + 12 * count; at += 12) {
        if (number(at, 2) != tag || number(at + 2, 2) != 2)
            continue;
        ++occurrences;
        last = block.mid(int(number(at + 8, 4)), int(number(at + 4, 4)));
    }
    return occurrences > 1 ? last : QByteArray();
}

static void addPhotoRows(const QJsonObject& expected)
{
    const auto row = columns<QString>("fileName");
    for (const QString& name : expected.keys()) {
        if (expected[name].toObject()[QStringLiteral("type")] == QStringLiteral("JPEG"))
            row(qPrintable(name), name);
    }
    if (expected.isEmpty())
        row("no photographs", QString());
}

void tst_QExifImageHeaderPhotos::photoTags_data()
{
    addPhotoRows(mExpected);
}

void tst_QExifImageHeaderPhotos::photoTags()
{
    QFETCH(QString, fileName);
    if (fileName.isEmpty())
        QSKIP("the folder of photographs is not there; hand-made files cover the logic");
    const QString path = photosFolder() + QLatin1Char('/') + fileName;
    const QByteArray content = contentOf(path);
    const QJsonObject expected = mExpected[fileName].toObject();
    const bool damaged = fileName.startsWith(QLatin1String("broken-"));
    LogCapture log;
    Header header;
    const bool loaded = header.loadFromJpeg(path);

    // The first APP1 segment decides, and a block begins with "II" or "MM".
    const QByteArray app1 = JpegParts(content).firstApp1();
    const QByteArray block = app1.mid(10);
    const bool loadable = app1.mid(4, 4) == "Exif"
        && (block.startsWith(hex("49492A00")) || block.startsWith(hex("4D4D002A")));
    QCOMPARE(loaded, loadable);
    if (!loaded) {
        QVERIFY(header.imageTags().isEmpty());
        return;
    }
    QCOMPARE(header.byteOrder(), block.startsWith("II") ? little : big);

    const QJsonObject ifds = expected[QStringLiteral("ifds")].toObject();
    const QJsonObject ifd0 = ifds[QStringLiteral("IFD0")].toObject();
    // A pointer that is not a single integer is ignored.
    const auto leads = [&ifd0](const char* pointer) {
        const QJsonObject entry = ifd0[QLatin1String(pointer)].toObject();
        const int type = entry[QStringLiteral("type")].toInt(4);
        return entry[QStringLiteral("count")].toInt(1) == 1
            && (type == 1 || type == 3 || type == 4 || type == 9);
    };

    QStringList wrong;
    // Compares the tags of one directory, of the type of firstTag, with the output of the readers.
    // Returns their numbers, except those that lead to other directories.
    const auto compareTags = [&](const char* name, auto firstTag, const QList<quint16>& pointers) {
        QList<quint16> numbers;
        const bool isIfd0 = qstrcmp(name, "IFD0") == 0;
        const QJsonObject entries = ifds[QLatin1String(name)].toObject();
        for (const QString& key : entries.keys()) {
            const quint16 number = static_cast<quint16>(key.toUInt(nullptr, 16));
            const auto tag = static_cast<decltype(firstTag)>(number);
            QString reason;
            if (pointers.contains(number)) {
                reason = header.contains(tag) ? QStringLiteral("a pointer") : QString();
            } else {
                numbers.append(number);
                const QByteArray repeated =
                    damaged && isIfd0 ? lastOfRepeatedText(block, number) : QByteArray();
                if (!repeated.isEmpty())
                    reason = inFile(header.value(tag), header.byteOrder()) == repeated
                        ? QString()
                        : QStringLiteral("not the last of several");
                else if (!header.contains(tag))
                    reason = QStringLiteral("missing");
                else
                    reason = differs(header.value(tag), entries[key].toObject(), header.byteOrder(),
                                     block);
            }
            if (!reason.isEmpty())
                wrong.append(QStringLiteral("%1 %2: %3").arg(QLatin1String(name), key, reason));
        }
        std::sort(numbers.begin(), numbers.end());
        return numbers;
    };
    QList<quint16> readersTags[3];
    readersTags[0] = compareTags("IFD0", Header::ImageTag(),
                                 {Header::ExifIfdPointer, Header::GpsInfoIfdPointer});
    if (leads("0x8769"))
        readersTags[1] =
            compareTags("ExifIFD", Header::ExifExtendedTag(), {Header::InteroperabilityIfdPointer});
    if (leads("0x8825"))
        readersTags[2] = compareTags("GPS", Header::GpsTag(), {});
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("; "))));

    // The readers give up early on damaged files; of an intact one we read no more than they do.
    if (!damaged) {
        QList<quint16> ours[3];
        for (const Header::ImageTag tag : header.imageTags())
            ours[0].append(tag);
        for (const Header::ExifExtendedTag tag : header.extendedTags())
            ours[1].append(tag);
        for (const Header::GpsTag tag : header.gpsTags())
            ours[2].append(tag);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(ours[i], readersTags[i]);
        QVERIFY(log.records().isEmpty());
    }
    if (!leads("0x8769"))
        QVERIFY(header.extendedTags().isEmpty());

    // exiftool reports it for files that it can read to the end, libexif also for others.
    const QJsonValue orientation = expected[QStringLiteral("orientation")];
    if (orientation.isDouble())
        QCOMPARE(int(header.value(Header::Orientation).toShort()), orientation.toInt());
    else if (!ifd0.contains(QStringLiteral("0x0112")))
        QVERIFY(header.value(Header::Orientation).isNull());

    const QJsonObject thumbnail = expected[QStringLiteral("thumbnail")].toObject();
    if (thumbnail[QStringLiteral("is_jpeg")].toBool()) {
        const int length = thumbnail[QStringLiteral("extracted_bytes")].toInt();
        const QByteArray jpeg =
            content.mid(thumbnail[QStringLiteral("exiftool_file_offset")].toInt(), length);
        QCOMPARE(
            QString::fromLatin1(QCryptographicHash::hash(jpeg, QCryptographicHash::Sha1).toHex()),
            thumbnail[QStringLiteral("sha1")].toString());
        QCOMPARE(thumbnailBytes(header, length), jpeg);
        QSize size(thumbnail[QStringLiteral("width")].toInt(),
                   thumbnail[QStringLiteral("height")].toInt());
        if (thumbnail[QStringLiteral("orientation")].toInt() >= 5)
            size.transpose();
        QCOMPARE(header.thumbnail().size(), size);
    } else if (!damaged) {
        QVERIFY(header.thumbnail().isNull());
    }
}

/// Loads a copy of a photograph, sets a few tags and saves it; false if that is refused.
static bool changeTags(const QString& fileName)
{
    Header header;
    header.loadFromJpeg(fileName);
    header.setValue(Header::Orientation, QExifValue(quint16(3)));
    header.setValue(Header::Artist, QExifValue(QStringLiteral("A. Person")));
    return header.saveToJpeg(fileName);
}

void tst_QExifImageHeaderPhotos::photoSaved_data()
{
    addPhotoRows(mExpected);
}

// Only the EXIF segment of a saved photograph changes.
void tst_QExifImageHeaderPhotos::photoSaved()
{
    QFETCH(QString, fileName);
    if (fileName.isEmpty())
        QSKIP("the folder of photographs is not there; hand-made files cover the logic");
    LogCapture log; // of unknown types
    QTemporaryDir folder;
    const QString copy = folder.filePath(fileName);
    const QByteArray before = contentOf(photosFolder() + QLatin1Char('/') + fileName);
    writeFile(copy, before);
    QVERIFY(changeTags(copy));
    const QByteArray after = contentOf(copy);

    const JpegParts old(before);
    const JpegParts fresh(after);
    const int replaced = old.replaced();
    const int place = replaced >= 0                          ? replaced
        : !old.parts.isEmpty() && old.parts.first().isJfif() ? 1
                                                             : 0;
    QVERIFY(fresh.parts.size() > place);
    QVERIFY(fresh.parts[place].isExif());
    const int inserted = replaced >= 0 ? 0 : 1;
    QCOMPARE(fresh.parts.size(), old.parts.size() + inserted);
    for (int i = 0; i < old.parts.size(); ++i) {
        if (i == replaced)
            continue;
        const int now = i < place ? i : i + inserted;
        QCOMPARE(fresh.parts[now].marker, old.parts[i].marker);
        QVERIFY(fresh.parts[now].bytes == old.parts[i].bytes);
    }
    QVERIFY(fresh.rest == old.rest);
    QVERIFY(after.size() >= before.size());
    QCOMPARE(QImage::fromData(after, "JPG"), QImage::fromData(before, "JPG"));

    // Our own reader finds it if it is the first APP1 segment.
    Header header;
    if (fresh.firstApp1() == fresh.parts[place].bytes) {
        QVERIFY(header.loadFromJpeg(copy));
        QCOMPARE(header.value(Header::Orientation).toShort(), quint16(3));
        QCOMPARE(header.value(Header::Artist).toString(), QStringLiteral("A. Person"));
    }
}

void tst_QExifImageHeaderPhotos::photosSavedForReaders()
{
    if (mExpected.isEmpty())
        QSKIP("the folder of photographs is not there; readers() judges a picture made here");
    const QString exiftool = QStandardPaths::findExecutable(QStringLiteral("exiftool"));
    const QString exiv2 = QStandardPaths::findExecutable(QStringLiteral("exiv2"));
    if (exiftool.isEmpty() || exiv2.isEmpty())
        QSKIP("exiftool and exiv2, which judge the files, are not both installed");
    LogCapture log; // of unknown types

    // Intact files with one EXIF segment: for others the readers differ.
    QTemporaryDir folder;
    QStringList names;
    for (const QString& name : mExpected.keys()) {
        if (!name.endsWith(QLatin1String(".jpg")) || name.startsWith(QLatin1String("broken-")))
            continue;
        const QByteArray content = contentOf(photosFolder() + QLatin1Char('/') + name);
        const QString copy = folder.filePath(name);
        writeFile(copy, content);
        QVERIFY2(changeTags(copy), qPrintable(name));
        if (JpegParts(contentOf(copy)).exifCount() == 1)
            names.append(name);
    }
    QVERIFY(names.size() > 20);

    const auto tagsOf = [&](const QString& where) {
        QStringList arguments{QStringLiteral("-j"), QStringLiteral("-n"), QStringLiteral("-u"),
                              QStringLiteral("-G1"), QStringLiteral("-IFD0:all")};
        for (const QString& name : names)
            arguments.append(where + QLatin1Char('/') + name);
        return QJsonDocument::fromJson(outputOf(exiftool, arguments)).array();
    };
    const QJsonArray before = tagsOf(photosFolder());
    const QJsonArray after = tagsOf(folder.path());
    QCOMPARE(before.size(), names.size());
    QCOMPARE(after.size(), names.size());
    for (int i = 0; i < names.size(); ++i) {
        QJsonObject wanted = before[i].toObject();
        QJsonObject got = after[i].toObject();
        QCOMPARE(got[QStringLiteral("IFD0:Orientation")].toInt(), 3);
        QCOMPARE(got[QStringLiteral("IFD0:Artist")].toString(), QStringLiteral("A. Person"));
        for (const char* changed : {"SourceFile", "IFD0:Orientation", "IFD0:Artist"}) {
            wanted.remove(QLatin1String(changed));
            got.remove(QLatin1String(changed));
        }
        QVERIFY2(got == wanted,
                 qPrintable(names[i] + QString::fromUtf8(QJsonDocument(got).toJson())
                            + QString::fromUtf8(QJsonDocument(wanted).toJson())));

        const QByteArray value =
            outputOf(exiv2,
                     {QStringLiteral("-Pv"), QStringLiteral("-g"),
                      QStringLiteral("Exif.Image.Orientation"), folder.filePath(names[i])});
        QVERIFY2(value.trimmed() == "3", qPrintable(names[i] + QString::fromLatin1(value)));
    }
}

QTEST_GUILESS_MAIN(tst_QExifImageHeaderPhotos)
#include "tst_QExifImageHeaderPhotos.moc"

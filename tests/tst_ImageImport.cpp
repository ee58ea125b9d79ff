// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ImageImport, and its effect on ImageUtils::importImage().

#define QT_STATICPLUGIN // the image format of this test is part of the program

#include "ImageImport.h"

#include "Columns.h"
#include "ExifEditor.h"
#include "ExifUtils.h"
#include "FileLimit.h"
#include "ImageUtils.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "Sandbox.h"
#include "TestPictures.h"

#include <QBuffer>
#include <QByteArrayList>
#include <QImageIOPlugin>
#include <QImageReader>
#include <QImageWriter>
#include <QtTest>

#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
#include <QColorSpace>
#endif

// An image format whose reader reports an orientation, as that of HEIC may: "SPUN", the number of
// the orientation, and a PNG.

const QByteArray spunMark = "SPUN";

class SpunFormat : public QImageIOHandler
{
public:
    bool canRead() const override { return device()->peek(spunMark.size()) == spunMark; }
    bool read(QImage* image) override
    {
        *image = QImage::fromData(device()->readAll().mid(spunMark.size() + 1), "png");
        return !image->isNull();
    }
    bool supportsOption(ImageOption option) const override
    {
        return option == Size || option == ImageTransformation;
    }
    QVariant option(ImageOption option) const override
    {
        const QByteArray bytes = device()->peek(device()->size());
        if (option == Size)
            return QImage::fromData(bytes.mid(spunMark.size() + 1), "png").size();
        const Transformations all[] = {TransformationNone,
                                       TransformationMirror,
                                       TransformationRotate180,
                                       TransformationFlip,
                                       TransformationFlipAndRotate90,
                                       TransformationRotate90,
                                       TransformationMirrorAndRotate90,
                                       TransformationRotate270};
        return option == ImageTransformation ? QVariant(int(all[bytes.at(spunMark.size()) - 1]))
                                             : QVariant();
    }
};

class SpunFormatPlugin : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "support/spunformat.json")
public:
    Capabilities capabilities(QIODevice* device, const QByteArray& format) const override
    {
        const bool isSpun =
            device && device->isReadable() && device->peek(spunMark.size()) == spunMark;
        return format == "spun" || (format.isEmpty() && isSpun) ? CanRead : Capabilities();
    }
    QImageIOHandler* create(QIODevice* device, const QByteArray&) const override
    {
        auto* const handler = new SpunFormat;
        handler->setDevice(device);
        handler->setFormat("spun"); // also if the content decided
        return handler;
    }
};

Q_IMPORT_PLUGIN(SpunFormatPlugin)

namespace {

/// The output of a program; null if it is not installed or fails.
QByteArray answerOf(const QString& program, const QStringList& arguments)
{
    const QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty())
        return QByteArray();
    QProcess process;
    process.start(path, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return QByteArray();
    return process.readAllStandardOutput() + "";
}

bool canWrite(const char* format)
{
    return QImageWriter::supportedImageFormats().contains(format);
}

/// A picture with that orientation which looks like \a upright once it is turned.
QImage stored(const QImage& upright, int orientation)
{
    switch (orientation) {
    case 2:
        return upright.mirrored(true, false);
    case 3:
        return upright.mirrored(true, true);
    case 4:
        return upright.mirrored(false, true);
    case 5: // transposed
        return upright.transformed(QTransform(0, 1, 1, 0, 0, 0));
    case 6:
        return upright.transformed(QTransform().rotate(-90));
    case 7: // transposed over the other diagonal
        return upright.transformed(QTransform(0, -1, -1, 0, 0, 0));
    case 8:
        return upright.transformed(QTransform().rotate(90));
    default:
        return upright;
    }
}

/// A segment of a JPEG.
QByteArray segment(int marker, const QByteArray& payload)
{
    const int length = int(payload.size() + 2);
    const char head[] = {char(0xFF), char(marker), char(length >> 8), char(length & 0xFF)};
    return QByteArray(head, 4) + payload;
}

QByteArray xmpSegment(const QByteArray& packet)
{
    return segment(0xE1, QByteArrayLiteral("http://ns.adobe.com/xap/1.0/\0") + packet);
}

const QByteArray plainXmp = "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
                            "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
                            "<rdf:Description rdf:about='' "
                            "xmlns:xmp='http://ns.adobe.com/xap/1.0/' "
                            "xmlns:tiff='http://ns.adobe.com/tiff/1.0/' "
                            "xmp:Label='told-in-xmp' tiff:Orientation='6'/>"
                            "</rdf:RDF></x:xmpmeta>";
const QByteArray xmpWithLocation = "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
                                   "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
                                   "<rdf:Description rdf:about='' "
                                   "xmlns:exif='http://ns.adobe.com/exif/1.0/' "
                                   "exif:GPSLatitude='48,12.345N' exif:Flash='told-beside'/>"
                                   "</rdf:RDF></x:xmpmeta>";

ImageImport limitedTo(int side)
{
    ImageImport how;
    how.maxSize = QSize(side, side);
    return how;
}

} // namespace

class tst_ImageImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void defaults();

    void copyOrEncode_data();
    void copyOrEncode();
    void orientations_data();
    void orientations();
    void orientationsOfReader_data();
    void orientationsOfReader();
    void orientationsBesidePixels_data();
    void orientationsBesidePixels();
    void orientationStaysIfNotTurned_data();
    void orientationStaysIfNotTurned();
    void metadata_data();
    void metadata();
    void locationInXmp();
    void locationInOddXmp_data();
    void locationInOddXmp();
    void locationInComments_data();
    void locationInComments();
    void metadataOfEncodedPicture();
    void behindThePicture();
    void gif();
    void cutShort_data();
    void cutShort();
    void profile_data();
    void profile();
    void toSrgb_data();
    void toSrgb();
    void greyStaysGrey();
    void transparencyOnWhite();
    void truncated_data();
    void truncated();
    void truncatedCopy_data();
    void truncatedCopy();
    void segmentThatBreaksOff();
    void quality_data();
    void quality();
    void failures_data();
    void failures();
    void cannotBeWritten();
    void tooLarge_data();
    void tooLarge();
    void ontoItself();
    void ontoPipe();

private:
    QString path(const char* name) const { return (*mSandbox)(QString::fromUtf8(name)); }

    /// A photograph with metadata of every kind.
    QByteArray tellingPhotograph(int orientation, const QByteArray& xmp) const;

    QScopedPointer<Sandbox> mSandbox;
};

void tst_ImageImport::init()
{
    mSandbox.reset(new Sandbox);
}

void tst_ImageImport::cleanup()
{
    mSandbox.reset();
}

QByteArray tst_ImageImport::tellingPhotograph(int orientation, const QByteArray& xmp) const
{
    using Header = QExifImageHeader;
    QByteArray bytes = jpeg(picture(400, 300));
    bytes.insert(2,
                 xmpSegment(xmp) + segment(0xFE, "told-in-comment")
                     + segment(0xED, QByteArrayLiteral("Photoshop 3.0\0told-in-iptc"))
                     + segment(0xEC, "told-in-ducky"));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadWrite);
    ExifEditor editor;
    editor.setOrientation(orientation);
    editor.setValue(Header::Artist, QExifValue(QStringLiteral("told-artist")));
    editor.setValue(Header::Make, QExifValue(QStringLiteral("told-make")));
    editor.setValue(Header::Copyright, QExifValue(QStringLiteral("told-copyright")));
    editor.setValue(Header::DateTimeOriginal, QExifValue(QStringLiteral("2024:05:06 07:08:09")));
    editor.setValue(Header::OffsetTimeOriginal, QExifValue(QStringLiteral("+02:00")));
    editor.setValue(Header::PixelXDimension, QExifValue(quint32(400)));
    editor.setValue(Header::GPSMapDatum, QExifValue(QStringLiteral("told-location")));
    editor.save(&buffer);
    return bytes;
}

void tst_ImageImport::defaults()
{
    const ImageImport how;
    QVERIFY(!how.maxSize.isValid());
    QVERIFY(how.upright);
    QVERIFY(how.progressive);
    QCOMPARE(how.quality, 80);
    QVERIFY(how.format.isEmpty());
    QCOMPARE(int(how.colorProfile), int(ImageImport::KeepProfile));
    QCOMPARE(int(how.metadata), int(ImageImport::CopyrightAndDate));
    QVERIFY(!how.refuseTruncated);
    QCOMPARE(how.maxPixels, qint64(0));
}

void tst_ImageImport::copyOrEncode_data()
{
    // format: the requested one
    const auto row = columns<QByteArray, QSize, QByteArray, QByteArray, QSize, bool>(
        "source", "maximum", "format", "expectedFormat", "expected", "copied");
    const QByteArray photo = jpeg(picture(400, 300));
    const QByteArray sideways = jpeg(picture(400, 300), 6);
    const QByteArray png = encoded(picture(400, 300), "png");
    const QSize whole(400, 300);
    const QByteArray none;
    row("no limit", photo, QSize(), none, "jpeg", whole, true);
    row("limit of 0", photo, QSize(0, 0), none, "jpeg", whole, true);
    row("exactly the limit", photo, whole, none, "jpeg", whole, true);
    row("one pixel too wide", photo, QSize(399, 300), none, "jpeg", QSize(399, 299), false);
    row("only the height is limited", photo, QSize(0, 150), none, "jpeg", QSize(200, 150), false);
    row("named as it is", photo, QSize(), "JPG", "jpeg", whole, true);
    row("another format", photo, QSize(), "png", "png", whole, false);
    row("sideways", sideways, QSize(), none, "jpeg", QSize(300, 400), false);
    row("sideways, limited upright", sideways, QSize(300, 200), none, "jpeg", QSize(150, 200),
        false);
    row("bmp", encoded(picture(400, 300), "bmp"), QSize(), none, "bmp", whole, true);
    row("png", png, QSize(), none, "png", whole, true);
    row("png, too large", png, QSize(200, 200), none, "png", QSize(200, 150), false);
    row("png to jpeg", png, QSize(), "jpeg", "jpeg", whole, false);
}

void tst_ImageImport::copyOrEncode()
{
    QFETCH(QByteArray, source);
    QFETCH(QSize, maximum);
    QFETCH(QByteArray, format);
    QFETCH(QByteArray, expectedFormat);
    QFETCH(QSize, expected);
    QFETCH(bool, copied);
    writeFile(path("source"), source);
    ImageImport how;
    how.maxSize = maximum;
    how.format = format;
    LogCapture log;
    const ImageImportResult result = ImageUtils::importImage(path("source"), path("a/copy"), how);
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(result);
    QCOMPARE(int(result.status),
             int(copied ? ImageImportResult::Copied : ImageImportResult::Imported));
    QCOMPARE(result.format, expectedFormat);
    QCOMPARE(result.sourceSize, QSize(400, 300));
    QCOMPARE(result.size, expected);
    QVERIFY(result.error.isEmpty());
    QVERIFY(!result.truncated);
    QCOMPARE(contentOf(path("source")), source);
    QCOMPARE(contentOf(path("a/copy")) == source, copied);
    QImageReader reader(path("a/copy"));
    reader.setDecideFormatFromContent(true);
    QCOMPARE(reader.format(), expectedFormat);
    QCOMPARE(reader.read().size(), expected);
    if (!copied && expectedFormat == "jpeg")
        QVERIFY(isProgressive(contentOf(path("a/copy"))));
}

/// A row for each writable format and each orientation.
static void addOrientations(const char* first, const char* second)
{
    const auto row = columns<QByteArray, int>("format", "orientation");
    for (const char* format : {first, second}) {
        for (int orientation = 1; canWrite(format) && orientation <= 8; ++orientation) {
            row(qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(format)).arg(orientation)),
                QByteArray(format), orientation);
        }
    }
}

void tst_ImageImport::orientations_data()
{
    addOrientations("jpeg", "tiff");
}

void tst_ImageImport::orientations()
{
    QFETCH(QByteArray, format);
    QFETCH(int, orientation);
    const QImage whole = picture(400, 300);
    const QImage turned = stored(whole, orientation);
    if (format == "jpeg") {
        writeFile(path("source"), jpeg(turned, orientation));
    } else {
        QImageWriter writer(path("source"), format);
        writer.setTransformation(QMap<int, QImageIOHandler::Transformation>{
            {1, QImageIOHandler::TransformationNone},
            {2, QImageIOHandler::TransformationMirror},
            {3, QImageIOHandler::TransformationRotate180},
            {4, QImageIOHandler::TransformationFlip},
            {5, QImageIOHandler::TransformationFlipAndRotate90},
            {6, QImageIOHandler::TransformationRotate90},
            {7, QImageIOHandler::TransformationMirrorAndRotate90},
            {8, QImageIOHandler::TransformationRotate270}}
                                     .value(orientation));
        QVERIFY(writer.write(turned));
    }
    ImageImport how;
    how.format = "png"; // a lossless format
    const ImageImportResult result = ImageUtils::importImage(path("source"), path("copy.png"), how);
    QVERIFY2(result, qPrintable(result.error));
    // A reader may report the same for an upright picture and one without an orientation.
    QCOMPARE(qMax(1, result.orientation), orientation);
    QCOMPARE(result.size, QSize(400, 300));
    const QImage copy = QImage(path("copy.png")).convertToFormat(QImage::Format_RGB32);
    if (format == "jpeg")
        QVERIFY(psnr(copy, whole) > 35);
    else
        QCOMPARE(copy, whole);
    // Another program turns it into the same pixels.
    if (answerOf(QStringLiteral("convert"),
                 {path("source"), QStringLiteral("-auto-orient"), path("theirs.png")})
            .isNull())
        QSKIP("ImageMagick is not installed");
    QCOMPARE(QImage(path("theirs.png")).convertToFormat(QImage::Format_RGB32), copy);
}

void tst_ImageImport::orientationsOfReader_data()
{
    const auto row = columns<int>("orientation");
    for (int orientation = 1; orientation <= 8; ++orientation)
        row(qPrintable(QString::number(orientation)), orientation);
}

void tst_ImageImport::orientationsOfReader()
{
    QFETCH(int, orientation);
    const QImage whole = picture(400, 300);
    const QImage turned = stored(whole, orientation);
    writeFile(path("source"), spunMark + char(orientation) + encoded(turned, "png"));
    ImageImport how;
    how.format = "png";
    ImageImportResult result = ImageUtils::importImage(path("source"), path("copy.png"), how);
    QVERIFY2(result, qPrintable(result.error));
    QCOMPARE(qMax(1, result.orientation), orientation);
    QCOMPARE(result.size, whole.size());
    QCOMPARE(QImage(path("copy.png")).convertToFormat(QImage::Format_RGB32), whole);

    how.maxSize = QSize(100, 100);
    result = ImageUtils::importImage(path("source"), path("copy.png"), how);
    QCOMPARE(result.size, QSize(100, 75));

    how.maxSize = QSize();
    how.upright = false; // the orientation is copied along
    how.format = "jpeg";
    result = ImageUtils::importImage(path("source"), path("copy.jpg"), how);
    QCOMPARE(result.size, turned.size());
    ExifEditor editor;
    QVERIFY(editor.load(path("copy.jpg")));
    QCOMPARE(qMax(1, editor.orientation()), orientation);
}

void tst_ImageImport::orientationsBesidePixels_data()
{
    addOrientations("png", "webp");
}

void tst_ImageImport::orientationsBesidePixels()
{
    QFETCH(QByteArray, format);
    QFETCH(int, orientation);
    // A PNG or WebP with its orientation in EXIF, which Qt's readers ignore.
    const QImage pixels = stored(picture(400, 300), orientation);
    writeFile(path("photo.jpg"), jpeg(pixels, orientation));
    ImageImport how;
    how.format = format;
    how.upright = false;
    how.metadata = ImageImport::NoMetadata; // the orientation must be kept nevertheless
    ImageImportResult result = ImageUtils::importImage(path("photo.jpg"), path("source"), how);
    QVERIFY2(result, qPrintable(result.error));
    QCOMPARE(result.size, pixels.size());

    how.format = "png";
    how.upright = true;
    result = ImageUtils::importImage(path("source"), path("copy.png"), how);
    QVERIFY2(result, qPrintable(result.error));
    QCOMPARE(result.orientation, 0);
    QCOMPARE(result.size, pixels.size());
    const QByteArray answer = answerOf(QStringLiteral("exiftool"),
                                       {QStringLiteral("-s3"), QStringLiteral("-n"),
                                        QStringLiteral("-Orientation"), path("copy.png")});
    if (!answer.isNull() && orientation > 1)
        QCOMPARE(answer.trimmed().toInt(), orientation);
    if (answerOf(QStringLiteral("convert"),
                 {QString::fromLatin1(format) + QLatin1Char(':') + path("source"),
                  QStringLiteral("-auto-orient"), path("theirs.png")})
            .isNull())
        QSKIP("ImageMagick is not installed");
    QCOMPARE(QImage(path("theirs.png")).convertToFormat(QImage::Format_RGB32),
             QImage(path("copy.png")).convertToFormat(QImage::Format_RGB32));
}

void tst_ImageImport::orientationStaysIfNotTurned_data()
{
    const auto row = columns<int>("side");
    row("copied", 1000);
    row("encoded", 100);
}

void tst_ImageImport::orientationStaysIfNotTurned()
{
    QFETCH(int, side);
    writeFile(path("source.jpg"), tellingPhotograph(6, plainXmp));
    for (const auto metadata : {ImageImport::NoMetadata, ImageImport::CopyrightAndDate,
                                ImageImport::AllButLocation, ImageImport::AllMetadata}) {
        ImageImport how = limitedTo(side);
        how.upright = false;
        how.metadata = metadata;
        QVERIFY(ImageUtils::importImage(path("source.jpg"), path("copy.jpg"), how));
        ExifEditor editor;
        QVERIFY(editor.load(path("copy.jpg")));
        QCOMPARE(editor.orientation(), 6);
    }
}

void tst_ImageImport::metadata_data()
{
    const auto table =
        columns<QByteArray, int, bool, QByteArrayList>("format", "metadata", "isEncoded", "told");
    const QByteArrayList nothing;
    const QByteArrayList who = {"told-artist", "told-copyright", "2024:05:06 07:08:09", "+02:00"};
    const QByteArrayList inExifAndXmp = who + QByteArrayList({"told-make", "told-in-xmp"});
    const QByteArrayList where = {"told-location"};
    for (const char* format : {"jpeg", "png", "webp"}) {
        if (!canWrite(format))
            continue;
        const bool isJpeg = qstrcmp(format, "jpeg") == 0;
        const QByteArrayList inJpeg =
            isJpeg ? QByteArrayList({"told-in-comment", "told-in-iptc"}) : nothing;
        const QByteArrayList elsewhere = isJpeg ? QByteArrayList({"told-in-ducky"}) : nothing;
        for (const bool isEncoded : {false, true}) {
            const QByteArray name = QByteArray(format) + (isEncoded ? ", encoded" : ", copied");
            const auto row = [&](const char* kind, ImageImport::Metadata metadata,
                                 const QByteArrayList& told) {
                table((name + ", " + kind).constData(), QByteArray(format), int(metadata),
                      isEncoded, told);
            };
            row("nothing", ImageImport::NoMetadata, nothing);
            row("copyright and date", ImageImport::CopyrightAndDate, who);
            row("all but location", ImageImport::AllButLocation, inExifAndXmp + inJpeg);
            row("all", ImageImport::AllMetadata, inExifAndXmp + inJpeg + elsewhere + where);
        }
    }
}

void tst_ImageImport::metadata()
{
    QFETCH(QByteArray, format);
    QFETCH(int, metadata);
    QFETCH(bool, isEncoded);
    QFETCH(QByteArrayList, told);
    writeFile(path("photo.jpg"), tellingPhotograph(1, plainXmp));
    ImageImport all;
    all.format = format;
    all.metadata = ImageImport::AllMetadata;
    QVERIFY(ImageUtils::importImage(path("photo.jpg"), path("source"), all));

    ImageImport how = isEncoded ? limitedTo(100) : ImageImport();
    how.metadata = ImageImport::Metadata(metadata);
    const ImageImportResult result = ImageUtils::importImage(path("source"), path("copy"), how);
    QVERIFY2(result, qPrintable(result.error));
    QCOMPARE(int(result.status),
             int(isEncoded ? ImageImportResult::Imported : ImageImportResult::Copied));
    const QByteArray copy = contentOf(path("copy"));
    for (const char* text :
         {"told-artist", "told-copyright", "2024:05:06 07:08:09", "+02:00", "told-make",
          "told-in-xmp", "told-location", "told-in-comment", "told-in-iptc", "told-in-ducky"})
        QVERIFY2(copy.contains(text) == told.contains(text), text);
    // A copy keeps its pixels.
    QImageReader reader(path("copy"));
    reader.setDecideFormatFromContent(true);
    QCOMPARE(reader.format(), format);
    const QImage image = reader.read();
    QVERIFY(!image.isNull());
    if (!isEncoded) {
        QImageReader whole(path("source"));
        whole.setDecideFormatFromContent(true);
        QCOMPARE(image, whole.read());
    }

    const QByteArray answer =
        answerOf(QStringLiteral("exiftool"),
                 {QStringLiteral("-s3"), QStringLiteral("-Warning"), QStringLiteral("-Error"),
                  QStringLiteral("-Artist"), QStringLiteral("-GPSMapDatum"),
                  QStringLiteral("-XMP:Label"), path("copy")});
    if (answer.isNull())
        QSKIP("exiftool is not installed");
    QByteArrayList expected;
    for (const char* text : {"told-artist", "told-location", "told-in-xmp"}) {
        if (told.contains(text))
            expected.append(text);
    }
    QByteArrayList lines = answer.split('\n');
    lines.removeAll(QByteArray());
    // The IPTC data of this test is plain text and not valid.
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const QByteArray& line) { return line.contains("IRB"); }),
                lines.end());
    QCOMPARE(lines, expected);
}

void tst_ImageImport::locationInXmp()
{
    writeFile(path("source.jpg"), tellingPhotograph(1, xmpWithLocation));
    for (const auto metadata : {ImageImport::NoMetadata, ImageImport::CopyrightAndDate,
                                ImageImport::AllButLocation, ImageImport::AllMetadata}) {
        ImageImport how;
        how.metadata = metadata;
        QVERIFY(ImageUtils::importImage(path("source.jpg"), path("copy.jpg"), how));
        const bool isAll = metadata == ImageImport::AllMetadata;
        QCOMPARE(contentOf(path("copy.jpg")).contains("48,12.345N"), isAll);
        QCOMPARE(contentOf(path("copy.jpg")).contains("told-location"), isAll);
        QCOMPARE(contentOf(path("copy.jpg")).contains("told-beside"),
                 isAll || metadata == ImageImport::AllButLocation);
    }
}

void tst_ImageImport::locationInOddXmp_data()
{
    // isKept: the rest of the packet
    const auto row = columns<QByteArray, QByteArray, bool>("format", "xmp", "isKept");
    QByteArray bare = xmpWithLocation; // the outer element is optional
    bare.remove(0, bare.indexOf('>') + 1).chop(int(qstrlen("</x:xmpmeta>")));
    QVERIFY(bare.startsWith("<rdf:RDF") && bare.endsWith("</rdf:RDF>"));
    QByteArray utf16("\xFE\xFF");
    for (const char character : xmpWithLocation)
        (utf16 += '\0') += character;
    for (const char* const format : {"jpeg", "png"}) {
        row(QByteArray(format) + ", bare", QByteArray(format), bare, true);
        row(QByteArray(format) + ", with a NUL behind it", QByteArray(format),
            xmpWithLocation + '\0', true);
        row(QByteArray(format) + ", UTF-16", QByteArray(format), utf16, false);
        row(QByteArray(format) + ", a NUL in it", QByteArray(format),
            QByteArray(xmpWithLocation).insert(20, '\0'), false);
    }
}

void tst_ImageImport::locationInOddXmp()
{
    QFETCH(QByteArray, format);
    QFETCH(QByteArray, xmp);
    QFETCH(bool, isKept);
    const QByteArray name = QByteArrayLiteral("XML:com.adobe.xmp\0\0\0\0\0");
    QByteArray source = format == "png" ? encoded(picture(40, 30), "png") : jpeg(picture(40, 30));
    const int place = format == "png" ? 8 + 25 : 2;
    source.insert(place, format == "png" ? pngChunk("iTXt", name + xmp) : xmpSegment(xmp));
    writeFile(path("source"), source);
    ImageImport how;
    how.metadata = ImageImport::AllButLocation;
    const ImageImportResult result = ImageUtils::importImage(path("source"), path("copy"), how);
    QVERIFY2(result, qPrintable(result.error));
    const QByteArray copy = contentOf(path("copy")).replace('\0', QByteArray());
    QVERIFY(!copy.contains("48,12.345N"));
    QCOMPARE(copy.contains("told-beside"), isKept);
    // In the file itself: what cannot be read is not reported as removed.
    if (format == "jpeg") {
        QString error;
        QCOMPARE(ExifUtils::removeLocation(path("source"), &error), isKept);
        QCOMPARE(contentOf(path("source")) == source, !isKept);
        QCOMPARE(error.isEmpty(), isKept);
    }
}

void tst_ImageImport::locationInComments_data()
{
    const auto row = columns<QByteArray>("source");
    const QByteArray photo = jpeg(picture(40, 30));
    const QByteArray iptc = QByteArrayLiteral("Photoshop 3.0\0") + "8BIM\x04\x24" + xmpWithLocation;
    const auto jpegWith = [&](const QByteArray& segments) {
        QByteArray bytes = photo;
        return bytes.insert(2, segments);
    };
    row("jpeg, a comment",
        jpegWith(segment(0xFE, xmpWithLocation) + segment(0xFE, "told-comment")));
    row("jpeg, XMP in what holds IPTC",
        jpegWith(segment(0xED, iptc) + segment(0xFE, "told-comment")));

    const QByteArray png = encoded(picture(40, 30), "png");
    const int headerSize = 8 + 25; // signature and first chunk
    const auto pngWith = [&](const QByteArray& chunks) {
        QByteArray bytes = png;
        return bytes.insert(headerSize,
                            chunks + pngChunk("tEXt", QByteArrayLiteral("Author\0told-comment")));
    };
    const QByteArray xmp = QByteArrayLiteral("XML:com.adobe.xmp\0\0\0\0\0") + xmpWithLocation;
    row("png, a text",
        pngWith(pngChunk("iTXt", QByteArrayLiteral("Comment\0\0\0\0\0") + xmpWithLocation)));
    row("png, XMP twice", pngWith(pngChunk("iTXt", xmp) + pngChunk("iTXt", xmp)));
    row("png, compressed XMP",
        pngWith(pngChunk("iTXt", QByteArrayLiteral("XML:com.adobe.xmp\0\1\0\0\0 48,12.345N"))));
}

// AllButLocation keeps comments, except those that may state a location.
void tst_ImageImport::locationInComments()
{
    QFETCH(QByteArray, source);
    QVERIFY(source.contains("48,12.345N"));
    writeFile(path("source"), source);
    ImageImport how;
    how.metadata = ImageImport::AllButLocation;
    const ImageImportResult result = ImageUtils::importImage(path("source"), path("copy"), how);
    QCOMPARE(int(result.status), int(ImageImportResult::Copied));
    const QByteArray copy = contentOf(path("copy"));
    QVERIFY(!copy.contains("48,12.345N"));
    QVERIFY(copy.contains("told-comment"));
    QCOMPARE(QImage::fromData(copy), QImage::fromData(source));
}

void tst_ImageImport::metadataOfEncodedPicture()
{
    // It is upright and smaller now, and the thumbnail of the old picture is removed.
    QByteArray source = tellingPhotograph(6, plainXmp);
    writeFile(path("source.jpg"), source);
    ImageImport how = limitedTo(100);
    how.metadata = ImageImport::AllMetadata;
    QVERIFY(ImageUtils::importImage(path("source.jpg"), path("copy.jpg"), how));
    ExifEditor editor;
    QVERIFY(editor.load(path("copy.jpg")));
    QCOMPARE(editor.orientation(), 1);
    QCOMPARE(editor.value(QExifImageHeader::PixelXDimension).toLong(), quint32(75));
    QVERIFY(contentOf(path("copy.jpg")).contains("tiff:Orientation='1'"));
    // It is not turned a second time.
    QCOMPARE(ImageUtils::importImage(path("copy.jpg"), path("again.jpg"), how).size,
             QSize(75, 100));
}

void tst_ImageImport::behindThePicture()
{
    // Phones append a film, or a second photograph with its own location, to the picture.
    const QByteArray photo = jpeg(picture(400, 300));
    writeFile(path("source.jpg"), photo + tellingPhotograph(1, xmpWithLocation));
    ImageImport how;
    how.metadata = ImageImport::AllButLocation;
    QVERIFY(ImageUtils::importImage(path("source.jpg"), path("copy.jpg"), how));
    QCOMPARE(contentOf(path("copy.jpg")), photo);
    how.metadata = ImageImport::AllMetadata;
    QVERIFY(ImageUtils::importImage(path("source.jpg"), path("copy.jpg"), how));
    QCOMPARE(contentOf(path("copy.jpg")), contentOf(path("source.jpg")));
}

void tst_ImageImport::gif()
{
    const QByteArray head = QByteArray::fromHex("47494638396102000100800100ff000000ff00");
    const QByteArray loop = QByteArray::fromHex("21ff0b4e45545343415045322e300301000000");
    const QByteArray comment = QByteArray::fromHex("21fe04746f6c6400"); // "told"
    QByteArray xmp = QByteArray::fromHex("21ff0b584d502044617461584d50") + xmpWithLocation + '\x01';
    for (int i = 0xFF; i >= 0; --i)
        xmp += char(i);
    xmp += '\0';
    const QByteArray frame = QByteArray::fromHex("21f90400010000002c0000000002000100000202440a00");
    const QByteArray source = head + loop + comment + xmp + frame + frame + ';';
    writeFile(path("source.gif"), source);
    ImageImport how = limitedTo(1); // copied nevertheless
    const auto copyWith = [&](ImageImport::Metadata metadata) {
        how.metadata = metadata;
        const ImageImportResult result =
            ImageUtils::importImage(path("source.gif"), path("copy.gif"), how);
        return result.status == ImageImportResult::Copied ? contentOf(path("copy.gif"))
                                                          : QByteArray();
    };
    QCOMPARE(copyWith(ImageImport::NoMetadata), head + loop + frame + frame + ';');
    QCOMPARE(copyWith(ImageImport::CopyrightAndDate), head + loop + frame + frame + ';');
    const QByteArray withoutPlace = copyWith(ImageImport::AllButLocation);
    QVERIFY(withoutPlace.startsWith(head + loop + frame + frame + comment));
    QVERIFY(withoutPlace.contains("told-beside"));
    QVERIFY(!withoutPlace.contains("48,12.345N"));
    QCOMPARE(copyWith(ImageImport::AllMetadata), source);
    const QByteArray answer = answerOf(QStringLiteral("exiftool"),
                                       {QStringLiteral("-s3"), QStringLiteral("-GPSLatitude"),
                                        QStringLiteral("-Comment"), path("copy.gif")});
    if (!answer.isNull())
        QVERIFY(answer.contains("told") && answer.contains("48 deg"));

    // The existing part of a truncated picture is kept.
    const QByteArray cut = head + comment + frame + frame.chopped(3);
    writeFile(path("source.gif"), cut);
    QCOMPARE(copyWith(ImageImport::NoMetadata), head + frame + frame.chopped(3));
}

// A picture that ends before its pixels are complete, or whose parts contradict their lengths, is
// refused if something has to be removed from it: the copy would have no pixels.
void tst_ImageImport::cutShort_data()
{
    const auto row = columns<QByteArray>("source");
    const QByteArray png = encoded(picture(400, 300), "png");
    const int pixels = int(png.indexOf("IDAT")) - 4;
    const QByteArray withText = QByteArray(png).insert(pixels, pngChunk("tEXt", "Comment"));
    row("png, in its pixels", withText.left(withText.size() - 100));
    row("png, in front of its pixels", withText.left(withText.indexOf("IDAT") - 6));
    row("png, a text longer than the file",
        png.left(pixels) + QByteArray::fromHex("7f000000") + "tEXt" + png.mid(pixels));
    const auto webpChunk = [](const QByteArray& type, int size, const QByteArray& data) {
        QByteArray length(4, '\0');
        qToLittleEndian(quint32(size), reinterpret_cast<uchar*>(length.data()));
        return type + length + data;
    };
    const QByteArray lossless = QByteArray::fromHex("2f00 0000 1007 1011 1188 88fe 0700");
    const QByteArray head = webpChunk("VP8X", 10, QByteArray::fromHex("04000000000000000000"));
    const auto webp = [&](const QByteArray& chunks) {
        return webpChunk("RIFF", int(chunks.size()) + 4, "WEBP" + chunks);
    };
    row("webp, in its pixels", webp(head + webpChunk("VP8L", 14, lossless)).chopped(3));
    row("webp, an empty head",
        webp(webpChunk("VP8X", 0, QByteArray(4, '\0')) + webpChunk("VP8L", 14, lossless)));
    const QByteArray photo = jpeg(picture(400, 300));
    const auto photoWith = [&photo](const char* segment) {
        return QByteArray(photo).insert(2, QByteArray::fromHex(segment));
    };
    row("jpeg, a segment without length", photoWith("fffe0004746fffe20000"));
    row("jpeg, it begins twice", photoWith("fffe0004746fffd8"));
}

void tst_ImageImport::cutShort()
{
    QFETCH(QByteArray, source);
    writeFile(path("source"), source);
    ImageImport how;
    how.metadata = ImageImport::NoMetadata;
    const ImageImportResult result = ImageUtils::importImage(path("source"), path("copy"), how);
    QVERIFY(!result && !result.error.isEmpty());
    QVERIFY(!QFile::exists(path("copy")));
    QCOMPARE(contentOf(path("source")), source);
}

void tst_ImageImport::profile_data()
{
    const auto table = columns<QByteArray, int, int>("format", "space", "orientation");
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    const auto row = [&](const char* format, int orientation) {
        const auto name = [&](const char* space) {
            return QByteArray(format) + ", " + space + ' ' + QByteArray::number(orientation);
        };
        table(name("Display P3").constData(), QByteArray(format), int(QColorSpace::DisplayP3),
              orientation);
        table(name("Adobe RGB").constData(), QByteArray(format), int(QColorSpace::AdobeRgb),
              orientation);
    };
    for (int orientation = 1; orientation <= 8; ++orientation)
        row("jpeg", orientation);
    row("png", 1);
    if (canWrite("webp"))
        row("webp", 1);
#else
    table("none", QByteArray(), 0, 0);
#endif
}

void tst_ImageImport::profile()
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    QFETCH(QByteArray, format);
    QFETCH(int, space);
    QFETCH(int, orientation);
    const QColorSpace colorSpace((QColorSpace::NamedColorSpace(space)));
    QImage image = stored(picture(400, 300), orientation);
    image.setColorSpace(colorSpace);
    const bool isJpeg = format == "jpeg";
    const QByteArray source =
        isJpeg ? jpeg(image, orientation) : encoded(image, format.constData());
    writeFile(path("source"), source);
    QVERIFY(ImageUtils::importImage(path("source"), path("copy"), limitedTo(200)));
    const QByteArray copy = contentOf(path("copy"));
    QCOMPARE(QImage::fromData(copy, format).colorSpace(), colorSpace);
    if (isJpeg) { // byte for byte
        const int begin = int(source.indexOf("ICC_PROFILE"));
        const int length = uchar(source.at(begin - 2)) << 8 | uchar(source.at(begin - 1));
        QVERIFY(copy.contains(source.mid(begin - 4, length + 2)));
        QCOMPARE(copy.count("ICC_PROFILE"), 1);
    }
    ImageImport how = limitedTo(200);
    how.format = "png";
    QVERIFY(ImageUtils::importImage(path("source"), path("copy.png"), how));
    QCOMPARE(QImage(path("copy.png")).colorSpace(), colorSpace);

    // Also if all metadata is removed and the pixels are unchanged.
    how = ImageImport();
    how.metadata = ImageImport::NoMetadata;
    how.upright = false;
    QVERIFY(ImageUtils::importImage(path("source"), path("copy"), how));
    QCOMPARE(QImage::fromData(contentOf(path("copy")), format).colorSpace(), colorSpace);
    QCOMPARE(QImage::fromData(contentOf(path("copy")), format), QImage::fromData(source, format));
#else
    QSKIP("this version of Qt knows no colour profiles");
#endif
}

void tst_ImageImport::toSrgb_data()
{
    profile_data();
}

void tst_ImageImport::toSrgb()
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    QFETCH(QByteArray, format);
    QFETCH(int, space);
    QFETCH(int, orientation);
    QImage image = stored(picture(400, 300), orientation);
    image.setColorSpace(QColorSpace::NamedColorSpace(space));
    writeFile(path("source"),
              format == "jpeg" ? jpeg(image, orientation) : encoded(image, format.constData()));
    ImageImport how;
    how.format = "png";
    how.colorProfile = ImageImport::ConvertToSrgb;
    QVERIFY(ImageUtils::importImage(path("source"), path("copy.png"), how));
    const QImage copy = QImage(path("copy.png")).convertToFormat(QImage::Format_RGB32);
    QVERIFY(QImage(path("copy.png")).colorSpace() == QColorSpace(QColorSpace::SRgb));

    if (answerOf(QStringLiteral("vips"),
                 {QStringLiteral("autorot"), path("source"), path("upright.v")})
            .isNull())
        QSKIP("vips is not installed");
    QVERIFY(!answerOf(QStringLiteral("vips"),
                      {QStringLiteral("icc_transform"), path("upright.v"), path("theirs.png"),
                       QStringLiteral("srgb"), QStringLiteral("--embedded"),
                       QStringLiteral("--intent"), QStringLiteral("relative")})
                 .isNull());
    const QImage theirs = QImage(path("theirs.png")).convertToFormat(QImage::Format_RGB32);
    QCOMPARE(theirs.size(), copy.size());
    qint64 sum = 0;
    for (int y = 0; y < copy.height(); ++y) {
        for (int x = 0; x < copy.width(); ++x) {
            const QRgb a = copy.pixel(x, y);
            const QRgb b = theirs.pixel(x, y);
            sum +=
                qAbs(qRed(a) - qRed(b)) + qAbs(qGreen(a) - qGreen(b)) + qAbs(qBlue(a) - qBlue(b));
        }
    }
    const double mean = double(sum) / (3.0 * copy.width() * copy.height());
    QVERIFY2(mean <= 1.0, qPrintable(QString::number(mean)));
#else
    QSKIP("this version of Qt knows no colour profiles");
#endif
}

void tst_ImageImport::greyStaysGrey()
{
    writeFile(path("source.jpg"),
              jpeg(picture(400, 300).convertToFormat(QImage::Format_Grayscale8)));
    for (const int side : {100, 130, 390}) { // by the decoder, by Qt or by both
        QVERIFY(ImageUtils::importImage(path("source.jpg"), path("copy.jpg"), limitedTo(side)));
        QCOMPARE(int(QImage(path("copy.jpg")).format()), int(QImage::Format_Grayscale8));
        QCOMPARE(QImage(path("copy.jpg")).width(), side);
    }
}

void tst_ImageImport::transparencyOnWhite()
{
    QImage image(40, 30, QImage::Format_ARGB32);
    image.fill(qRgba(0, 0, 0, 0));
    writeFile(path("source.png"), encoded(image, "png"));
    ImageImport how;
    how.format = "jpeg";
    QVERIFY(ImageUtils::importImage(path("source.png"), path("copy.jpg"), how));
    QCOMPARE(QImage(path("copy.jpg")).pixel(20, 15), qRgb(255, 255, 255));
    how.format = "png";
    how.maxSize = QSize(20, 20);
    QVERIFY(ImageUtils::importImage(path("source.png"), path("copy.png"), how));
    QCOMPARE(qAlpha(QImage(path("copy.png")).pixel(10, 7)), 0);
}

void tst_ImageImport::truncated_data()
{
    // decodes: as far as it goes
    const auto row = columns<QByteArray, bool>("format", "decodes");
    row("jpeg", "jpeg", true);
    row("png", "png", false);
    if (canWrite("webp"))
        row("webp", "webp", false);
}

void tst_ImageImport::truncated()
{
    QFETCH(QByteArray, format);
    QFETCH(bool, decodes);
    const QByteArray whole = encoded(landscape(400, 300, 0.7), format.constData(), 90);
    writeFile(path("source"), whole.left(whole.size() * 3 / 4));
    writeFile(path("copy"), "old");
    LogCapture log;
    ImageImport how = limitedTo(100);
    how.refuseTruncated = true;
    ImageImportResult result = ImageUtils::importImage(path("source"), path("copy"), how);
    QCOMPARE(int(result.status), int(ImageImportResult::Truncated));
    QVERIFY(result.truncated);
    QCOMPARE(result.error, QStringLiteral("\"source\" is incomplete."));
    QCOMPARE(contentOf(path("copy")), QByteArray("old"));

    how.refuseTruncated = false;
    result = ImageUtils::importImage(path("source"), path("copy"), how);
    QVERIFY(result.truncated);
    QCOMPARE(bool(result), decodes);
    if (decodes)
        QCOMPARE(QImage::fromData(contentOf(path("copy"))).size(), QSize(100, 75));
    else
        QCOMPARE(int(result.status), int(ImageImportResult::Truncated));

    writeFile(path("source"), whole);
    result = ImageUtils::importImage(path("source"), path("copy"), how);
    QVERIFY(result && !result.truncated);
}

void tst_ImageImport::truncatedCopy_data()
{
    const auto row = columns<QByteArray, int>("bytes", "status");
    const QByteArray jpeg = encoded(landscape(400, 300, 0.7), "jpeg", 90);
    const QByteArray png = encoded(landscape(400, 300, 0.7), "png");
    const int scan = int(jpeg.indexOf("\xFF\xDA"));
    row("jpeg", jpeg.left(jpeg.size() * 3 / 4), int(ImageImportResult::Copied));
    row("jpeg, in its first segment", jpeg.left(12), int(ImageImportResult::Truncated));
    row("jpeg, before its scan", jpeg.left(scan), int(ImageImportResult::Truncated));
    row("png", png.left(png.size() * 3 / 4), int(ImageImportResult::Truncated));
}

void tst_ImageImport::truncatedCopy()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, status);
    writeFile(path("source"), bytes);
    writeFile(path("copy"), "old");
    LogCapture log;
    const ImageImportResult result = ImageUtils::importImage(path("source"), path("copy"), {});
    QVERIFY(result.truncated);
    QCOMPARE(int(result.status), status);
    QCOMPARE(contentOf(path("copy")) == "old", !result);
}

void tst_ImageImport::segmentThatBreaksOff()
{
    // The file ends inside a segment after its pixels. Before the pixels of another file, that
    // segment would swallow as many bytes of them as it lacks.
    QByteArray bytes = encoded(landscape(400, 300, 0.7), "jpeg", 90);
    bytes.chop(2); // the end of the picture
    const QByteArray whole = segment(0xE4, QByteArray(200, 'w'));
    const QByteArray broken = segment(0xE5, QByteArray(200, 'b')).left(100);
    writeFile(path("source.jpg"), bytes + whole + broken);
    ImageImport how = limitedTo(100);
    how.metadata = ImageImport::AllMetadata;
    LogCapture log;
    const ImageImportResult result =
        ImageUtils::importImage(path("source.jpg"), path("copy.jpg"), how);
    QCOMPARE(int(result.status), int(ImageImportResult::Imported));
    QVERIFY(result.truncated);
    const QByteArray copy = contentOf(path("copy.jpg"));
    QVERIFY(copy.contains(whole));
    QVERIFY(!copy.contains("bbbb"));
    QCOMPARE(QImage::fromData(copy).size(), QSize(100, 75));
}

void tst_ImageImport::quality_data()
{
    const auto row = columns<int, bool, int>("quality", "progressive", "expected");
    for (const bool progressive : {false, true}) {
        const QByteArray suffix = progressive ? ", progressive" : "";
        row(("30" + suffix).constData(), 30, progressive, 30);
        row(("80" + suffix).constData(), 80, progressive, 80);
        row(("0" + suffix).constData(), 0, progressive, 0);
        row(("100" + suffix).constData(), 100, progressive, 100);
        row(("beyond" + suffix).constData(), 400, progressive, 100);
        row(("below" + suffix).constData(), -3, progressive, 0);
    }
}

void tst_ImageImport::quality()
{
    QFETCH(int, quality);
    QFETCH(bool, progressive);
    QFETCH(int, expected);
    writeFile(path("source.jpg"), jpeg(picture(400, 300)));
    ImageImport how = limitedTo(100);
    how.quality = quality;
    how.progressive = progressive;
    QVERIFY(ImageUtils::importImage(path("source.jpg"), path("copy.jpg"), how));
    QCOMPARE(isProgressive(contentOf(path("copy.jpg"))), progressive);
    QCOMPARE(quantisation(contentOf(path("copy.jpg"))), quantisationOf(expected));
}

void tst_ImageImport::failures_data()
{
    const auto row = columns<QString, int, QString>("source", "status", "error");
    row("missing", "none.jpg", int(ImageImportResult::NotFound), "There is no file \"none.jpg\".");
    row("empty", "empty.jpg", int(ImageImportResult::NotAnImage), "\"empty.jpg\" is no picture.");
    row("text", "text.jpg", int(ImageImportResult::NotAnImage), "\"text.jpg\" is no picture.");
    row("folder", "folder", int(ImageImportResult::NotAnImage), "\"folder\" is no picture.");
    row("damaged", "damaged.png", int(ImageImportResult::NotReadable),
        "\"damaged.png\" is damaged.");
    row("endless", "endless.jpg", int(ImageImportResult::NotReadable),
        "\"endless.jpg\" cannot be read.");
}

void tst_ImageImport::failures()
{
    QFETCH(QString, source);
    QFETCH(int, status);
    QFETCH(QString, error);
    writeFile(path("empty.jpg"), QByteArray());
    writeFile(path("text.jpg"), "no picture");
    makeFolder(path("folder"));
    QByteArray damaged = encoded(landscape(400, 300, 0.7), "png");
    damaged[damaged.size() / 2] = char(damaged.at(damaged.size() / 2) ^ 0x55);
    writeFile(path("damaged.png"), damaged);
    QByteArray endless = jpeg(picture(40, 30));
    endless.insert(2, QByteArray::fromHex("fffe0002").repeated(5000));
    writeFile(path("endless.jpg"), endless);
    writeFile(path("copy"), "old");
    LogCapture log;
    const ImageImportResult result =
        ImageUtils::importImage((*mSandbox)(source), path("copy"), limitedTo(20));
    QVERIFY(!result);
    QCOMPARE(int(result.status), status);
    QCOMPARE(result.error, error);
    QVERIFY(!result.size.isValid());
    QCOMPARE(contentOf(path("copy")), QByteArray("old"));
    QCOMPARE(log.lines().filter(QStringLiteral("warning orvautils ImageUtils importImage")).size(),
             1);
}

void tst_ImageImport::cannotBeWritten()
{
    writeFile(path("source.jpg"), jpeg(picture(400, 300)));
    writeFile(path("file"), "in the way");
    makeFolder(path("folder.jpg/inside"));
    LogCapture log;
    for (const int side : {1000, 100}) {
        for (const char* destination : {"file/copy.jpg", "folder.jpg"}) {
            const ImageImportResult result =
                ImageUtils::importImage(path("source.jpg"), path(destination), limitedTo(side));
            QCOMPARE(int(result.status), int(ImageImportResult::NotWritable));
            QVERIFY2(!result.error.isEmpty() && !result.error.contains(mSandbox->root()),
                     qPrintable(result.error));
        }
    }
    QCOMPARE(contentOf(path("file")), QByteArray("in the way"));
#ifndef Q_OS_WIN
    writeFile(path("copy.jpg"), "before");
    {
        const FileLimit limit(RLIMIT_FSIZE, 1000);
        const ImageImportResult result =
            ImageUtils::importImage(path("source.jpg"), path("copy.jpg"), limitedTo(300));
        QCOMPARE(int(result.status), int(ImageImportResult::NotWritable));
    }
    QCOMPARE(contentOf(path("copy.jpg")), QByteArray("before"));
    QVERIFY(QFile::remove(path("copy.jpg")));
#endif
    ImageImport how;
    how.format = "nonsense";
    const ImageImportResult result =
        ImageUtils::importImage(path("source.jpg"), path("copy.jpg"), how);
    QCOMPARE(int(result.status), int(ImageImportResult::NotWritable));
    QCOMPARE(result.error, QStringLiteral("Pictures cannot be saved in the format \"nonsense\"."));
    QVERIFY(!QFile::exists(path("copy.jpg")));
}

void tst_ImageImport::tooLarge_data()
{
    const auto row = columns<QByteArray, qint64, bool>("bytes", "maxPixels", "imported");
    const QByteArray photo = jpeg(picture(400, 300));
    row("no limit", photo, qint64(0), true);
    row("within", photo, qint64(120000), true);
    row("a pixel too many", photo, qint64(119999), false);
    QByteArray forged = photo;
    forged.replace(forged.indexOf("\xff\xc0") + 5, 4, QByteArray::fromHex("ea60ea60"));
    row("60,000 x 60,000", forged, qint64(0), false);
    // A GIF of 63,234 x 0 pixels with a frame of 1 x 512: readers allocate both.
    const QByteArray wide = QByteArray::fromHex("474946383961 02f7 0000 800100 ff0000 00ff00"
                                                "2c 0000 0000 0100 0002 00 02 02440a00 3b");
    row("a wide GIF with a narrow frame", wide, qint64(1000000), false);
}

void tst_ImageImport::tooLarge()
{
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, maxPixels);
    QFETCH(bool, imported);
    writeFile(path("source.jpg"), bytes);
    ImageImport how = limitedTo(100);
    how.maxPixels = maxPixels;
    LogCapture log;
    const ImageImportResult result =
        ImageUtils::importImage(path("source.jpg"), path("copy.jpg"), how);
    QCOMPARE(bool(result), imported);
    QVERIFY(result.sourceSize.isValid());
    if (!imported) {
        QCOMPARE(int(result.status), int(ImageImportResult::TooLarge));
        QCOMPARE(result.error, QStringLiteral("\"source.jpg\" is too large."));
        QVERIFY(!QFile::exists(path("copy.jpg")));
    }
}

void tst_ImageImport::ontoItself()
{
    for (const int side : {1000, 100}) {
        writeFile(path("a.jpg"), tellingPhotograph(6, plainXmp));
        ImageImport how = limitedTo(side);
        const ImageImportResult result =
            ImageUtils::importImage(QStringLiteral("file://") + path("a.jpg"), path("a.jpg"), how);
        QVERIFY2(result, qPrintable(result.error));
        QCOMPARE(QImage(path("a.jpg")).size(), side == 100 ? QSize(75, 100) : QSize(300, 400));
        QCOMPARE(treeOf(mSandbox->root()).size(), 1);
    }
}

// What is neither a file nor a folder, such as a pipe or a device, stays what it is.
void tst_ImageImport::ontoPipe()
{
    SKIP_ON_WINDOWS("there are no named pipes in folders");
    writeFile(path("a.jpg"), tellingPhotograph(6, plainXmp));
    const QString pipe = mSandbox->pipe(QStringLiteral("pipe.jpg"));
    const LogCapture log;
    for (const auto metadata : {ImageImport::AllMetadata, ImageImport::NoMetadata}) {
        ImageImport how; // copied, copied without metadata
        how.upright = false;
        how.metadata = metadata;
        for (const int side : {0, 10}) { // and scaled
            how.maxSize = side == 0 ? QSize() : QSize(side, side);
            const ImageImportResult result = ImageUtils::importImage(path("a.jpg"), pipe, how);
            QCOMPARE(int(result.status), int(ImageImportResult::NotWritable));
            QCOMPARE(result.error, QStringLiteral("\"pipe.jpg\" cannot be saved."));
            QVERIFY(QFileInfo::exists(pipe) && !QFileInfo(pipe).isFile());
        }
    }
}

QTEST_MAIN(tst_ImageImport)
#include "tst_ImageImport.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Importing pictures with unusual or damaged containers: rare chunks of PNG and WebP, GIFs without
// a picture, metadata that does not fit into another format.

#include "ImageImport.h"

#include "Columns.h"
#include "ExifEditor.h"
#include "ImageImporter.h"
#include "ImageUtils.h"
#include "JpegParts.h"
#include "LogCapture.h"
#include "Sandbox.h"
#include "SystemCalls.h"
#include "TestPictures.h"
#include "Text.h"
#include "TiffBuilder.h"

#include <QImageReader>
#include <QImageWriter>
#include <QSignalSpy>
#include <QtEndian>
#include <QtTest>

#if defined(__clang__)
// QSKIP() is a macro with optional arguments.
#pragma clang diagnostic ignored "-Wgnu-zero-variadic-macro-arguments"
#endif

namespace {

const int pngHead = 8 + 25; // signature and first chunk

QByteArray png()
{
    return encoded(picture(40, 30), "png");
}

/// A PNG with \a chunks after its first one.
QByteArray pngWith(const QByteArray& chunks)
{
    QByteArray file = png();
    return file.insert(pngHead, chunks);
}

QByteArray riffChunk(const QByteArray& type, const QByteArray& data)
{
    const quint32 size = qToLittleEndian(quint32(data.size()));
    return type + QByteArray(reinterpret_cast<const char*>(&size), 4) + data
        + QByteArray(data.size() & 1, '\0');
}

QByteArray webp(const QByteArray& chunks)
{
    return riffChunk("RIFF", "WEBP" + chunks);
}

/// The chunks of a WebP that Qt writes, without the container.
QByteArray webpChunks(const QImage& image, int quality)
{
    return encoded(image, "webp", quality).mid(12);
}

/// The extended header of a WebP of 40 x 30 pixels.
QByteArray extendedHeader(int flags)
{
    QByteArray header(10, '\0');
    header[0] = char(flags);
    header[4] = 39;
    header[7] = 29;
    return riffChunk("VP8X", header);
}

bool hasWebp()
{
    return QImageWriter::supportedImageFormats().contains("webp");
}

/// An EXIF block with an Artist of \a size bytes.
QByteArray exifBlock(int size = 5)
{
    QByteArray artist(size, 'a');
    artist[size - 1] = '\0';
    QByteArray block = QByteArray::fromHex("49492a000800000001003b010200");
    const quint32 count = qToLittleEndian(quint32(size));
    block += QByteArray(reinterpret_cast<const char*>(&count), 4);
    return block + QByteArray::fromHex("1a00000000000000") + artist;
}

/// A grey TIFF of 2 x 1 pixels with an author, a copyright, a date, a maker note, a position and an
/// XMP packet of 80 bytes.
QByteArray tiffWithMetadata(QDataStream::ByteOrder order, const QByteArray& xmp)
{
    TiffBuilder tiff(order);
    // 8: IFD0, 14 entries
    tiff.tiff(8)
        .u16(14)
        .shorts(0x0100, 1, 2) // ImageWidth
        .shorts(0x0101, 1, 1) // ImageLength
        .shorts(0x0102, 1, 8) // BitsPerSample
        .shorts(0x0103, 1, 1) // Compression: none
        .shorts(0x0106, 1, 1) // PhotometricInterpretation: black is 0
        .entry(0x0111, 4, 1, 182) // StripOffsets
        .shorts(0x0115, 1, 1) // SamplesPerPixel
        .shorts(0x0116, 1, 1) // RowsPerStrip
        .entry(0x0117, 4, 1, 2) // StripByteCounts
        .entry(0x013B, 2, 6, 184) // Artist
        .entry(0x02BC, 1, 80, 190) // XMP
        .entry(0x8298, 2, 10, 270) // Copyright
        .entry(0x8769, 4, 1, 280) // the Exif sub-IFD
        .entry(0x8825, 4, 1, 336) // the GPS sub-IFD
        .u32(0);
    tiff.raw(hex("20E0")); // 182: the pixels
    tiff.raw(QByteArray("Gr\xC3\xBCn\0", 6)); // 184: Artist, in UTF-8
    tiff.raw(xmp.leftJustified(80)); // 190
    tiff.raw(QByteArray("(c) Gruen\0", 10)); // 270: Copyright
    // 280: Exif sub-IFD, 2 entries, no next one
    tiff.u16(2).entry(0x9003, 2, 20, 310).entry(0x927C, 7, 6, 330).u32(0);
    tiff.raw(QByteArray("2024:05:06 07:08:09\0", 20)); // 310: DateTimeOriginal
    tiff.raw("MAKER!"); // 330
    // 336: GPS sub-IFD, 2 entries, no next one
    tiff.u16(2).bytes(0x0001, 2, 2, QByteArray("N\0\0\0", 4)).entry(0x0002, 5, 3, 366).u32(0);
    tiff.u32(47).u32(1).u32(30).u32(1).u32(5).u32(2); // 366: GPSLatitude
    return tiff;
}

const QByteArray brokenXmp = QByteArrayLiteral("XML:com.adobe.xmp\0\0\0without an end");

} // namespace

class tst_ImageImportContainers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { mSandbox.reset(new Sandbox); }
    void cleanup() { mSandbox.reset(); }

    void chunksAfterEncoding_data();
    void chunksAfterEncoding();
    void copiesWithout_data();
    void copiesWithout();
    void refused_data();
    void refused();
    void untoldSize();
    void webpOfWebp_data();
    void webpOfWebp();
    void webpKeepsPrivateChunk();
    void jpegWithEmptyTables();
    void jpegWithMissingTable();
    void iptcWithTangledBlock();
    void metadataOfTiff_data();
    void metadataOfTiff();
    void tiffWithManyPointers();
    void jpegWithoutPicture();
    void tooMuchForJpeg();
    void tooWideForTheFormat();
    void cancelledWhileItWaits();

private:
    QString path(const char* name) const { return (*mSandbox)(text(name)); }
    ImageImportResult import(const QByteArray& source, const ImageImport& how) const;

    QScopedPointer<Sandbox> mSandbox;
};

/// Imports \a source to "copy".
ImageImportResult tst_ImageImportContainers::import(const QByteArray& source,
                                                    const ImageImport& how) const
{
    writeFile(path("source"), source);
    return ImageUtils::importImage(path("source"), path("copy"), how);
}

void tst_ImageImportContainers::chunksAfterEncoding_data()
{
    const auto row =
        columns<QByteArray, int, QByteArray, bool>("chunks", "metadata", "chunk", "isKept");
    const QByteArray own = pngChunk("teSt", "own");
    const QByteArray copyright = pngChunk("tEXt", QByteArrayLiteral("Copyright\0somebody"));
    const QByteArray title = pngChunk("tEXt", QByteArrayLiteral("Title\0a boat"));
    row("a private chunk", own, int(ImageImport::AllMetadata), own, true);
    row("a private chunk, no metadata", own, int(ImageImport::NoMetadata), own, false);
    row("a private chunk, which may tell a location", own, int(ImageImport::AllButLocation), own,
        false);
    row("copyright of two texts", title + copyright, int(ImageImport::CopyrightAndDate), copyright,
        true);
    row("no title beside a copyright", title + copyright, int(ImageImport::CopyrightAndDate), title,
        false);
    row("XMP that breaks off is a text", pngChunk("iTXt", brokenXmp), int(ImageImport::AllMetadata),
        pngChunk("iTXt", brokenXmp), true);
    row("XMP that breaks off may tell a location", pngChunk("iTXt", brokenXmp),
        int(ImageImport::AllButLocation), "without an end", false);
    const QByteArray unknown = pngChunk("eXIf", "this is no block");
    row("EXIF that nobody understands", unknown, int(ImageImport::AllButLocation), "eXIf", false);
    row("EXIF that somebody understands", pngChunk("eXIf", exifBlock()),
        int(ImageImport::AllButLocation), "eXIf", true);
}

void tst_ImageImportContainers::chunksAfterEncoding()
{
    QFETCH(QByteArray, chunks);
    QFETCH(int, metadata);
    QFETCH(QByteArray, chunk);
    QFETCH(bool, isKept);
    if (QImage::fromData(pngWith(chunks)).isNull()) {
        SKIP_ON_WINDOWS("Qt's own libpng, 1.6.37, loses its way behind such a chunk");
    }
    ImageImport how;
    how.metadata = static_cast<ImageImport::Metadata>(metadata);
    for (const int side : {20, 40}) { // scaled and unscaled
        how.maxSize = QSize(side, side);
        QVERIFY(import(pngWith(chunks), how));
        const QByteArray copy = contentOf(path("copy"));
        QCOMPARE(copy.contains(chunk), isKept);
        QCOMPARE(QImage(path("copy")).width(), side);
    }
}

void tst_ImageImportContainers::copiesWithout_data()
{
    const auto row = columns<QByteArray, QByteArray>("source", "copy");
    row("png, what the pixels need stays", pngWith(pngChunk("gAMA", QByteArray(4, '\1'))),
        pngWith(pngChunk("gAMA", QByteArray(4, '\1'))));
    row("png, all texts go", pngWith(pngChunk("tEXt", QByteArrayLiteral("a\0b"))), png());
    const QByteArray gifHead = QByteArray::fromHex("47494638396102000100800100ff000000ff00");
    const QByteArray frame = QByteArray::fromHex("2c0000000002000100000202440a00");
    const QByteArray told = QByteArray::fromHex("21fe04746f6c6400");
    row("gif, stray bytes between blocks go, no picture does",
        gifHead + frame + QByteArray(3, '\0') + told + "ab" + frame + "c;",
        gifHead + frame + QByteArray(3, '\0') + frame + ';');
    row("gif, an extension without content stays",
        gifHead + QByteArray::fromHex("21f90000") + frame + told + ';',
        gifHead + QByteArray::fromHex("21f90000") + frame + ';');
    row("gif, padding at a missing end", gifHead + told + frame + QByteArray(2, '\0'),
        gifHead + frame + QByteArray(2, '\0'));
    if (!hasWebp())
        return;
    const QByteArray pixels = webpChunks(picture(40, 30), 80);
    row("webp, a private chunk goes", webp(extendedHeader(0) + pixels + riffChunk("oWn ", "12")),
        webp(extendedHeader(0) + pixels));
    row("webp, EXIF and its flag go",
        webp(extendedHeader(8) + pixels + riffChunk("EXIF", exifBlock())),
        webp(extendedHeader(0) + pixels));
}

void tst_ImageImportContainers::copiesWithout()
{
    QFETCH(QByteArray, source);
    QFETCH(QByteArray, copy);
    ImageImport how;
    how.metadata = ImageImport::NoMetadata;
    QCOMPARE(int(import(source, how).status), int(ImageImportResult::Copied));
    QCOMPARE(contentOf(path("copy")), copy);
}

void tst_ImageImportContainers::refused_data()
{
    const auto row = columns<QByteArray, int>("source", "status");
    const QByteArray gifHead = QByteArray::fromHex("474946383961020001008001");
    row("gif, cut short in its header", gifHead.left(10), int(ImageImportResult::Truncated));
    row("gif, cut short in its colours", gifHead + QByteArray::fromHex("00ff00"),
        int(ImageImportResult::Truncated));
    row("gif, metadata alone and cut short",
        gifHead + QByteArray::fromHex("00ff000000ff0021fe04746f6c6400"),
        int(ImageImportResult::Truncated));
    row("gif, its name alone", "GIF89a", int(ImageImportResult::Truncated));
    row("png, another chunk first", png().left(8) + pngChunk("teSt", "own") + png().mid(8),
        int(ImageImportResult::NotReadable));
    if (!hasWebp())
        return;
    row("webp, no picture in it", webp(riffChunk("oWn ", "12")),
        int(ImageImportResult::NotReadable));
    row("webp, a picture without a size",
        webp(riffChunk("VP8 ", "1234") + riffChunk("EXIF", exifBlock()) + riffChunk("oWn ", "12")),
        int(ImageImportResult::NotReadable));
}

void tst_ImageImportContainers::refused()
{
    QFETCH(QByteArray, source);
    QFETCH(int, status);
    writeFile(path("copy"), "before");
    ImageImport how;
    how.metadata = ImageImport::AllButLocation;
    const LogCapture log;
    const ImageImportResult result = import(source, how);
    QCOMPARE(int(result.status), status);
    QVERIFY(!result.error.isEmpty());
    QCOMPARE(contentOf(path("copy")), QByteArray("before"));
    QCOMPARE(contentOf(path("source")), source);
}

// A picture that does not tell its size cannot be said to fit.
void tst_ImageImportContainers::untoldSize()
{
    const QByteArray threeBits = QByteArray::fromHex("000000280000001e0302000000");
    const QByteArray source = png().left(8) + pngChunk("IHDR", threeBits) + png().mid(pngHead);
    ImageImport how;
    how.metadata = ImageImport::AllMetadata;
    const LogCapture log;
    const ImageImportResult whole = import(source, how);
    QCOMPARE(int(whole.status), int(ImageImportResult::Copied));
    QVERIFY(!whole.sourceSize.isValid());
    QCOMPARE(contentOf(path("copy")), source);

    writeFile(path("copy"), "before");
    how.maxSize = QSize(20, 20);
    const ImageImportResult limited = import(source, how);
    QCOMPARE(int(limited.status), int(ImageImportResult::NotReadable));
    QVERIFY(!limited.error.isEmpty());
    QCOMPARE(contentOf(path("copy")), QByteArray("before"));
}

void tst_ImageImportContainers::webpOfWebp_data()
{
    const auto row = columns<QByteArray, int, QByteArray>("pixels", "flags", "format");
    if (!hasWebp())
        QSKIP("no plugin writes WebP");
    QImage clear = picture(40, 30).convertToFormat(QImage::Format_ARGB32);
    clear.setPixelColor(3, 3, Qt::transparent);
    row("lossy", webpChunks(picture(40, 30), 80), 0x08, "VP8 ");
    row("lossless", webpChunks(picture(40, 30), 100), 0x08, "VP8L");
    row("lossless, transparent", webpChunks(clear, 100), 0x18, "VP8L");
}

/// A picture without an extended header gets one if it has to carry metadata.
void tst_ImageImportContainers::webpOfWebp()
{
    QFETCH(QByteArray, pixels);
    QFETCH(int, flags);
    QFETCH(QByteArray, format);
    if (!pixels.startsWith(format))
        QSKIP("this plugin does not write such pixels");
    // EXIF after the pixels of a simple file, where readers do not look.
    const QByteArray source =
        webp(pixels + riffChunk("EXIF", exifBlock()) + riffChunk("oWn ", "told"));
    ImageImport how;
    how.metadata = ImageImport::AllButLocation;
    QCOMPARE(int(import(source, how).status), int(ImageImportResult::Copied));
    const QByteArray copy = contentOf(path("copy"));
    QCOMPARE(copy.mid(12, 18), extendedHeader(flags));
    QCOMPARE(copy.mid(30, pixels.size()), pixels);
    QVERIFY(copy.contains("EXIF"));
    QVERIFY(!copy.contains("told"));
    QCOMPARE(QImage(path("copy")), QImage::fromData(source));
}

/// A private chunk of a WebP is kept when the picture is encoded anew.
void tst_ImageImportContainers::webpKeepsPrivateChunk()
{
    if (!hasWebp())
        QSKIP("no plugin writes WebP");
    const QByteArray own = riffChunk("oWn ", "12");
    ImageImport how;
    how.metadata = ImageImport::AllMetadata;
    how.maxSize = QSize(20, 20);
    const QByteArray source = webp(extendedHeader(0) + webpChunks(picture(40, 30), 80) + own);
    QCOMPARE(int(import(source, how).status), int(ImageImportResult::Imported));
    QCOMPARE(QImage(path("copy")).size(), QSize(20, 15));
    QVERIFY(contentOf(path("copy")).endsWith(own));
}

/// A segment without a table is allowed, and says nothing about the detail of the picture.
void tst_ImageImportContainers::jpegWithEmptyTables()
{
    QByteArray source = encoded(picture(400, 300), "jpeg");
    ImageImport how;
    how.maxSize = QSize(100, 100);
    QVERIFY(import(source, how));
    const QImage expected(path("copy"));
    source.insert(2, segment(0xFFDB, QByteArray()));
    QVERIFY(import(source, how));
    QCOMPARE(QImage(path("copy")), expected);
}

/// A picture whose header is sound, but whose pixels refer to a table that does not exist.
void tst_ImageImportContainers::jpegWithMissingTable()
{
    QByteArray source = encoded(picture(1600, 1200), "jpeg");
    const int frame = int(source.indexOf(hex("FFC0")));
    QVERIFY(frame > 0);
    source[frame + 12] = '\3'; // the quantisation table of the first component
    ImageImport how;
    how.maxSize = QSize(100, 100);
    writeFile(path("copy"), "before");
    const LogCapture log;
    QCOMPARE(int(import(source, how).status), int(ImageImportResult::NotReadable));
    QCOMPARE(contentOf(path("copy")), QByteArray("before"));
}

/// Data of other programs that may state a location, which cannot be removed with certainty, goes.
void tst_ImageImportContainers::iptcWithTangledBlock()
{
    TiffBuilder tangled(big); // a third directory leads to GPS
    tangled.tiff(8).u16(0).u32(14).u16(0).u32(20).u16(1).entry(0x8825, 4, 1, 38).u32(0);
    tangled.u16(1).entry(0x0002, 5, 3, 56).u32(0).raw(QByteArray(24, '\1'));
    const QByteArray name("Photoshop 3.0\0", 14);
    ImageImport how;
    how.metadata = ImageImport::AllButLocation;
    for (const bool isTangled : {false, true}) {
        QByteArray source = encoded(picture(40, 30), "jpeg");
        source.insert(2, segment(0xFFED, name + (isTangled ? exifPayload(tangled.all()) : "told")));
        QVERIFY(import(source, how));
        QCOMPARE(contentOf(path("copy")).contains(name), !isTangled);
        QCOMPARE(QImage(path("copy")), QImage::fromData(source));
    }
}

/// A file that is complete as a JPEG, but has no picture, is copied without being decoded.
void tst_ImageImportContainers::jpegWithoutPicture()
{
    ImageImport how;
    how.metadata = ImageImport::NoMetadata;
    const ImageImportResult result = import(soi() + jfif() + hex("FFD9") + "trailer", how);
    QCOMPARE(int(result.status), int(ImageImportResult::Copied));
    QVERIFY(!result.sourceSize.isValid());
    QCOMPARE(contentOf(path("copy")), soi() + jfif() + hex("FFD9"));
}

void tst_ImageImportContainers::tooMuchForJpeg()
{
    // EXIF data too large for a JPEG segment
    ImageImport how;
    how.format = "jpeg";
    how.metadata = ImageImport::AllMetadata;
    const QByteArray source = pngWith(pngChunk("eXIf", exifBlock(70000)));
    QCOMPARE(int(import(source, how).status), int(ImageImportResult::Imported));
    QVERIFY(!contentOf(path("copy")).contains("Exif"));
    QCOMPARE(QImage(path("copy"), "jpeg").size(), QSize(40, 30));
}

void tst_ImageImportContainers::tooWideForTheFormat()
{
    QImage wide(65501, 1, QImage::Format_RGB32); // a JPEG has at most 65,500 columns
    wide.fill(Qt::red);
    writeFile(path("copy"), "before");
    ImageImport how;
    how.format = "jpeg";
    LogCapture log;
    const ImageImportResult result = import(encoded(wide, "png"), how);
    QCOMPARE(int(result.status), int(ImageImportResult::NotWritable));
    QCOMPARE(result.error, text("\"copy\" cannot be saved."));
    QCOMPARE(contentOf(path("copy")), QByteArray("before"));
    QCOMPARE(log.lines().filter(text("ImageUtils importImage")).size(), 1);
}

void tst_ImageImportContainers::metadataOfTiff_data()
{
    const auto row = columns<int, int, bool, bool, bool>("order", "metadata", "hasCopyright",
                                                         "hasPosition", "hasXmp");
    for (const int order : {int(QDataStream::LittleEndian), int(QDataStream::BigEndian)}) {
        const QByteArray name = order == QDataStream::LittleEndian ? "little" : "big";
        row(name + ", none", order, int(ImageImport::NoMetadata), false, false, false);
        row(name + ", copyright", order, int(ImageImport::CopyrightAndDate), true, false, false);
        row(name + ", no place", order, int(ImageImport::AllButLocation), true, false, true);
        row(name + ", all", order, int(ImageImport::AllMetadata), true, true, true);
    }
}

// A TIFF that becomes a JPEG takes along what is wanted of its metadata.
void tst_ImageImportContainers::metadataOfTiff()
{
    QFETCH(int, order);
    QFETCH(int, metadata);
    QFETCH(bool, hasCopyright);
    QFETCH(bool, hasPosition);
    QFETCH(bool, hasXmp);
    if (!QImageReader::supportedImageFormats().contains("tiff"))
        QSKIP("Qt's plugin for TIFF is not installed");
    const QByteArray xmp = "<x:xmpmeta xmlns:x='adobe:ns:meta/'>told</x:xmpmeta>";
    ImageImport how;
    how.format = "jpeg";
    how.metadata = static_cast<ImageImport::Metadata>(metadata);
    const QByteArray source = tiffWithMetadata(static_cast<QDataStream::ByteOrder>(order), xmp);
    QCOMPARE(int(import(source, how).status), int(ImageImportResult::Imported));
    QCOMPARE(QImage(path("copy"), "jpeg").size(), QSize(2, 1));

    ExifEditor editor;
    QVERIFY(editor.load(path("copy")));
    QCOMPARE(editor.value(QExifImageHeader::Artist).toString(),
             hasCopyright ? QString::fromLatin1("Gr\xC3\xBCn") : QString());
    QCOMPARE(editor.value(QExifImageHeader::Copyright).toString(),
             hasCopyright ? text("(c) Gruen") : QString());
    QCOMPARE(editor.dateTimeOriginal().isValid(), hasCopyright);
    if (hasCopyright)
        QCOMPARE(editor.dateTimeOriginal(), QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9)));
    QCOMPARE(!editor.value(QExifImageHeader::GPSLatitude).isNull(), hasPosition);
    const QByteArray copy = contentOf(path("copy"));
    QCOMPARE(copy.contains("told"), hasXmp);
    QVERIFY(!copy.contains("MAKER!")); // it would refer to places in the TIFF
    QCOMPARE(contentOf(path("source")), source);
}

// A file that leads to the same large directory again and again is not read again and again: that
// would take minutes.
void tst_ImageImportContainers::tiffWithManyPointers()
{
    if (!QImageReader::supportedImageFormats().contains("tiff"))
        QSKIP("Qt's plugin for TIFF is not installed");
    const QByteArray picture = tiffWithMetadata(QDataStream::LittleEndian, QByteArray());
    const int storage = 9; // the entries about the pixels
    const int pointers = 60000;
    const auto place = quint32(picture.size());
    TiffBuilder file(QDataStream::LittleEndian);
    file.tiff(place).raw(picture.mid(file.size()));
    file.u16(storage + pointers).raw(picture.mid(10, storage * 12));
    for (int i = 0; i < pointers; ++i)
        file.entry(0x8769, 4, 1, place); // the Exif sub-IFD: this directory
    file.u32(0);
    ImageImport how;
    how.format = "jpeg";
    const LogCapture log;
    QCOMPARE(int(import(file, how).status), int(ImageImportResult::NotReadable));
}

void tst_ImageImportContainers::cancelledWhileItWaits()
{
    // Each import needs more memory than all together may use, so that all but one wait.
    QImage large(6000, 4500, QImage::Format_RGB32);
    large.fill(Qt::darkGreen);
    const QByteArray whole = encoded(large, "png");
    const QByteArray cut = encoded(large, "jpeg").chopped(2);
    const int count = 4;
    ImageImporter importer;
    ImageImport how;
    for (int i = 0; i < count; ++i) {
        // Half of them are truncated and to be copied: they are decoded to check for a picture.
        how.maxSize = i % 2 == 0 ? QSize(100, 100) : QSize();
        how.metadata = ImageImport::NoMetadata;
        const QString source = (*mSandbox)(QString::number(i));
        writeFile(source, i % 2 == 0 ? whole : cut);
        importer.add(source, source + text(".copy"), how);
    }
    QSignalSpy imported(&importer, &ImageImporter::imported);
    QSignalSpy finished(&importer, &ImageImporter::finished);
    connect(&importer, &ImageImporter::imported, &importer, &ImageImporter::cancel);
    importer.start(count);
    QVERIFY(finished.wait(120000));
    QCOMPARE(imported.size(), count);
    for (int i = 0; i < count; ++i) {
        const QList<QVariant>& arguments = imported.at(i);
        const auto result = arguments.at(1).value<ImageImportResult>();
        QVERIFY(bool(result) || result.status == ImageImportResult::Cancelled);
        const QString copy = (*mSandbox)(arguments.at(0).toString()) + text(".copy");
        QCOMPARE(QFile::exists(copy), bool(result));
    }
}

QTEST_GUILESS_MAIN(tst_ImageImportContainers)
#include "tst_ImageImportContainers.moc"

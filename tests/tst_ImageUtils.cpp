// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#define QT_STATICPLUGIN // the image formats of this test are part of the program

#include "ImageUtils.h"

#include "LogCapture.h"
#include "OrdinaryUser.h"

#include <QImageIOPlugin>
#include <QImageReader>
#include <QImageWriter>
#include <QLabel>
#include <QPainter>
#include <QtPlugin>
#include <QtTest>

#include <cmath>
#include <limits>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

// --- Image formats of this test ------------------------------------------------------------------

/// "hollow" reads every file as an empty picture, "readonly" as a red one; neither can be written.
class OddFormat : public QImageIOHandler
{
public:
    bool canRead() const override { return true; }
    bool read(QImage* image) override
    {
        *image = format() == "hollow" ? QImage() : QImage(40, 30, QImage::Format_RGB32);
        image->fill(Qt::red);
        return true;
    }
};

class OddFormatPlugin : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "support/oddformats.json")
public:
    Capabilities capabilities(QIODevice*, const QByteArray& format) const override
    {
        return format == "hollow" || format == "readonly" ? CanRead : Capabilities();
    }
    QImageIOHandler* create(QIODevice* device, const QByteArray& format) const override
    {
        QImageIOHandler* handler = new OddFormat;
        handler->setDevice(device);
        handler->setFormat(format);
        return handler;
    }
};

Q_IMPORT_PLUGIN(OddFormatPlugin)

// --- Pictures and files --------------------------------------------------------------------------

namespace {

const ImageUtils::OptionsImageCopy noOption;

/// A picture that looks different however it is turned or mirrored.
QImage picture(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const bool mark = x < width / 3 && y < height / 4;
            row[x] = qRgb(mark ? 250 : 200 * x / width, 180 * y / height, mark ? 20 : 120);
        }
    }
    return image;
}

/// Noise in all sizes from that of the whole picture down to one pixel, each finer one weaker by
/// the factor falloff: 0.5 is about what photographs have, 0.95 is far more detail than they have.
QImage landscape(int width, int height, double falloff)
{
    quint32 state = 1;
    const auto random = [&state] {
        state = state * 1664525u + 1013904223u;
        return double(state >> 8) / double(1 << 24) - 0.5;
    };
    QVector<double> values(width * height, 0.0);
    double strength = 160;
    for (int cell = 512; cell >= 1; cell /= 2, strength *= falloff) {
        const int columns = width / cell + 2;
        const int rows = height / cell + 2;
        QVector<double> grid(columns * rows);
        for (double& value : grid)
            value = random() * strength;
        for (int y = 0; y < height; ++y) {
            const double fy = double(y % cell) / cell;
            for (int x = 0; x < width; ++x) {
                const double fx = double(x % cell) / cell;
                const double* corner = grid.constData() + (y / cell) * columns + x / cell;
                values[y * width + x] += (1 - fy) * ((1 - fx) * corner[0] + fx * corner[1])
                    + fy * ((1 - fx) * corner[columns] + fx * corner[columns + 1]);
            }
        }
    }
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const double v = 128 + values[y * width + x];
            row[x] = qRgb(qBound(0, int(v * 1.05), 255), qBound(0, int(v), 255),
                          qBound(0, int(v * 0.9 + 10), 255));
        }
    }
    return image;
}

/// PSNR of the luma of two pictures of one size, in decibels; 99 for equal ones.
double psnr(const QImage& first, const QImage& second)
{
    if (first.size() != second.size() || first.isNull())
        return 0;
    const QImage a = first.convertToFormat(QImage::Format_RGB32);
    const QImage b = second.convertToFormat(QImage::Format_RGB32);
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        const QRgb* p = reinterpret_cast<const QRgb*>(a.constScanLine(y));
        const QRgb* q = reinterpret_cast<const QRgb*>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            const double difference = 0.299 * (qRed(p[x]) - qRed(q[x]))
                + 0.587 * (qGreen(p[x]) - qGreen(q[x])) + 0.114 * (qBlue(p[x]) - qBlue(q[x]));
            sum += difference * difference;
        }
    }
    return sum == 0 ? 99 : 10 * std::log10(255.0 * 255.0 * a.width() * a.height() / sum);
}

/// A pixel of whatever format, not premultiplied.
QRgb colorAt(const QImage& image, int x, int y)
{
    return image.convertToFormat(QImage::Format_ARGB32).pixel(x, y);
}

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

void store(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

QByteArray encoded(const QImage& image, const char* format, int quality = -1)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, quality);
    return bytes;
}

/// A JPEG that states an EXIF orientation, or none for 0.
QByteArray jpeg(const QImage& image, int orientation = 0, int quality = 95)
{
    QByteArray bytes = encoded(image, "jpeg", quality);
    if (orientation != 0) {
        QByteArray exif = QByteArray::fromHex("ffe10022457869660000"
                                              "49492a0008000000"
                                              "0100"
                                              "120103000100000000000000"
                                              "00000000");
        exif[28] = char(orientation);
        bytes.insert(2, exif);
    }
    return bytes;
}

/// The checksum of a PNG chunk, as it stands in the file.
QByteArray crc32(const QByteArray& bytes)
{
    quint32 crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    crc = qToBigEndian(~crc);
    return QByteArray(reinterpret_cast<const char*>(&crc), 4);
}

/// The frame marker of a JPEG: 0xC0 baseline, 0xC2 progressive; 0 where there is none.
int frameMarker(const QByteArray& bytes)
{
    for (int at = 2; at + 4 <= bytes.size() && uchar(bytes[at]) == 0xFF;) {
        const int marker = uchar(bytes[at + 1]);
        if (marker >= 0xC0 && marker <= 0xCF && marker != 0xC4)
            return marker;
        at += 2 + (uchar(bytes[at + 2]) << 8 | uchar(bytes[at + 3]));
    }
    return 0;
}

bool isProgressive(const QByteArray& bytes)
{
    return frameMarker(bytes) == 0xC2;
}

/// All quantisation tables of a JPEG: they tell its quality.
QByteArray quantisation(const QByteArray& bytes)
{
    QByteArray tables;
    for (int at = 2; at + 4 <= bytes.size() && uchar(bytes[at]) == 0xFF;) {
        const int length = uchar(bytes[at + 2]) << 8 | uchar(bytes[at + 3]);
        if (uchar(bytes[at + 1]) == 0xDB)
            tables += bytes.mid(at + 4, length - 2);
        if (uchar(bytes[at + 1]) == 0xDA)
            break;
        at += 2 + length;
    }
    return tables;
}

QByteArray quantisationOf(int quality)
{
    return quantisation(encoded(picture(16, 16), "jpeg", quality));
}

/// The names of everything in a folder, hidden files too.
QStringList namesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                  | QDir::NoDotAndDotDot);
}

/// The captured records of the library alone: image readers print warnings of their own.
QStringList ownLines(const LogCapture& log)
{
    return log.lines().filter(QStringLiteral(" orvautils "));
}

QString warning(const QString& text)
{
    return QStringLiteral("warning orvautils ImageUtils copyImageFile: ") + text;
}

QString critical(const QString& text)
{
    return QStringLiteral("critical orvautils ImageUtils copyImageFile: ") + text;
}

#ifdef Q_OS_UNIX
/// While it lives no file can be written beyond some bytes: what a full disk looks like.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        mHandler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &mLimit);
        const rlimit limit = {bytes, mLimit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &mLimit);
        std::signal(SIGXFSZ, mHandler);
    }

private:
    Q_DISABLE_COPY(FullDisk)

    void (*mHandler)(int);
    rlimit mLimit;
};
#endif

const QString photosDir = QStringLiteral(ORVAUTILS_PHOTOS_DIR);

} // namespace

Q_DECLARE_METATYPE(ImageUtils::OptionsImageCopy)

class tst_ImageUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void flagValues();
    void defaultQuality();

    void writeProgressive();
    void writeProgressiveQualityIsCompression_data();
    void writeProgressiveQualityIsCompression();
    void writeProgressiveOtherFormats();
    void writeProgressiveFailure_data();
    void writeProgressiveFailure();
    void writeProgressiveKeepsOldFile();

    void copyOrReencode_data();
    void copyOrReencode();
    void pixelsOfReencoding_data();
    void pixelsOfReencoding();
    void quality_data();
    void quality();
    void formats_data();
    void formats();
    void invalidMaximum_data();
    void invalidMaximum();
    void unreadableSource_data();
    void unreadableSource();
    void fileScheme();
    void createsFolders();
    void folderCannotBeCreated();
    void failedCopyIsLogged();
    void emptyPicture();
    void emptyPictureTurned();
    void formatThatCannotBeWritten();
    void cannotBeScaled();
    void truncatedJpeg();
    void hostileHeader_data();
    void hostileHeader();
    void cmyk();

    void ontoItself_data();
    void ontoItself();
    void ontoLinkToSource();
    void ontoHardLinkOfSource();
    void sourceIsLinkToDestination();
    void ontoDanglingLink();
    void ontoReadOnlyFile();
    void ontoFolder();
    void ontoFileInReadOnlyFolder();
    void newFileInReadOnlyFolder();
    void newFileWhoseNameIsTooLong();
    void fullDisk_data();
    void fullDisk();
    void newFileHasUsualPermissions();

    void reducedDecoding_data();
    void reducedDecoding();
    void reducedToOnePixel();
    void realPhotographs();
    void realPhotographsReduced_data();
    void realPhotographsReduced();
    void realOrientations_data();
    void realOrientations();
    void otherReadersAgree();

    void imageSize();
    void scaledPixmapFromFilepath_data();
    void scaledPixmapFromFilepath();
    void fusionImage();
    void fusionImageOnTransparency();
    void fusionImageFailures();

    void imageExtensions_data();
    void imageExtensions();
    void imageNames_data();
    void imageNames();

    void resizeKeepingRatio_data();
    void resizeKeepingRatio();
    void retinaRect_data();
    void retinaRect();
    void squareImage_data();
    void squareImage();
    void squareImageContent();
    void squarePixmap_data();
    void squarePixmap();
    void labelPixmap_data();
    void labelPixmap();

    void hasTransparentPixel_data();
    void hasTransparentPixel();
    void transparentPixelAnywhere();
    void applyOpacity_data();
    void applyOpacity();
    void applyOpacityUnchanged_data();
    void applyOpacityUnchanged();
    void applyOpacityMultiplies();
    void applyOpacityNull();
    void applyOpacityPixmap();
    void transparentPixmap_data();
    void transparentPixmap();
    void transparentPixmapDrawsImage();
    void gray_data();
    void gray();
    void grayPixmap();
    void colorize_data();
    void colorize();
    void colorizeNull();

private:
    QString path(const char* name) const { return mFolder->filePath(QString::fromUtf8(name)); }

    QScopedPointer<QTemporaryDir> mFolder;
};

void tst_ImageUtils::init()
{
    mFolder.reset(new QTemporaryDir);
    QVERIFY(mFolder->isValid());
}

void tst_ImageUtils::cleanup()
{
    mFolder.reset();
}

// --- Constants -----------------------------------------------------------------------------------

void tst_ImageUtils::flagValues()
{
    QCOMPARE(int(ImageUtils::UseExifRotation), 0x01);
    QCOMPARE(int(ImageUtils::ProgressiveJpeg), 0x02);
    QCOMPARE(int(ImageUtils::ExpandToFill), 0x04);
    QCOMPARE(int(ImageUtils::Quality85), 0x08);
    QCOMPARE(int(ImageUtils::NoResize), 0x10);
    QCOMPARE(int(ImageUtils::Retina), 0x20);
    QCOMPARE(int(ImageUtils::ProgressiveOnlyWhenReencoded), 0x40);
    const QFlags<ImageUtils::OptionImageCopy> both =
        ImageUtils::UseExifRotation | ImageUtils::Retina;
    QCOMPARE(int(both), 0x21);
}

void tst_ImageUtils::defaultQuality()
{
    QCOMPARE(ImageUtils::defaultJpegCompression(), 80);
}

// --- writeProgressiveImage -----------------------------------------------------------------------

void tst_ImageUtils::writeProgressive()
{
    const QImage image = picture(60, 40);
    LogCapture log;
    QVERIFY(ImageUtils::writeProgressiveImage(image, path("a.jpg"), "jpeg", 50));
    QCOMPARE(log.lines(), QStringList());
    const QByteArray bytes = content(path("a.jpg"));
    QVERIFY(isProgressive(bytes));
    QVERIFY(psnr(QImage::fromData(bytes), image) > 30);
    QCOMPARE(namesIn(mFolder->path()), QStringList(QStringLiteral("a.jpg")));
}

void tst_ImageUtils::writeProgressiveQualityIsCompression_data()
{
    QTest::addColumn<int>("quality");
    QTest::newRow("negative") << -1;
    QTest::newRow("0") << 0;
    QTest::newRow("10") << 10;
    QTest::newRow("85") << 85;
    QTest::newRow("100") << 100;
}

void tst_ImageUtils::writeProgressiveQualityIsCompression()
{
    QFETCH(int, quality);
    QVERIFY(ImageUtils::writeProgressiveImage(picture(16, 16), path("a.jpg"), "jpeg", quality));
    QCOMPARE(quantisation(content(path("a.jpg"))), quantisationOf(75));
}

void tst_ImageUtils::writeProgressiveOtherFormats()
{
    const QImage image = picture(60, 40);
    QVERIFY(ImageUtils::writeProgressiveImage(image, path("a.dat"), "png", 80));
    QCOMPARE(QImage(path("a.dat"), "png").convertToFormat(QImage::Format_RGB32), image);
    // Without a format the suffix tells, as with any image writer on a file.
    QVERIFY(ImageUtils::writeProgressiveImage(image, path("a.JPG"), QByteArray(), 80));
    QVERIFY(isProgressive(content(path("a.JPG"))));
}

void tst_ImageUtils::writeProgressiveFailure_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("null image") << QImage() << QStringLiteral("a.jpg") << QByteArray("jpeg");
    QTest::newRow("no such format")
        << picture(6, 4) << QStringLiteral("a.jpg") << QByteArray("nonsense");
    QTest::newRow("no such folder")
        << picture(6, 4) << QStringLiteral("b/a.jpg") << QByteArray("jpeg");
}

void tst_ImageUtils::writeProgressiveFailure()
{
    QFETCH(QImage, image);
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    const QString target = mFolder->filePath(name);
    QImageWriter writer(target, format);
    QVERIFY(!writer.write(image));
    QFile::remove(target);

    LogCapture log;
    QVERIFY(!ImageUtils::writeProgressiveImage(image, target, format, 80));
    QCOMPARE(ownLines(log),
             QStringList(QStringLiteral("warning orvautils ImageUtils writeProgressiveImage: "
                                        "can't save writeProgressiveImage  %1  errorString= %2  "
                                        "size= QSize(%3, %4)")
                             .arg(target, writer.errorString())
                             .arg(image.width())
                             .arg(image.height())));
    QCOMPARE(namesIn(mFolder->path()), QStringList());
}

void tst_ImageUtils::writeProgressiveKeepsOldFile()
{
    store(path("a.jpg"), "the only copy");
    LogCapture log;
    QVERIFY(!ImageUtils::writeProgressiveImage(picture(6, 4), path("a.jpg"), "nonsense", 80));
    QCOMPARE(content(path("a.jpg")), QByteArray("the only copy"));
#ifdef Q_OS_UNIX
    {
        const FullDisk full(500);
        QVERIFY(!ImageUtils::writeProgressiveImage(picture(600, 400), path("a.jpg"), "jpeg", 80));
        QVERIFY(!ImageUtils::writeProgressiveImage(picture(60, 40), path("a.jpg"), "jpeg", 80));
    }
    QCOMPARE(content(path("a.jpg")), QByteArray("the only copy"));
    QCOMPARE(ownLines(log).size(), 3);
#endif
    QCOMPARE(namesIn(mFolder->path()), QStringList(QStringLiteral("a.jpg")));
}

// --- copyImageFile: what is done -----------------------------------------------------------------

void tst_ImageUtils::copyOrReencode_data()
{
    using I = ImageUtils;
    using Options = ImageUtils::OptionsImageCopy;
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("keepAspectRatio");
    QTest::addColumn<QSize>("maximum");
    QTest::addColumn<ImageUtils::OptionsImageCopy>("options");
    QTest::addColumn<QSize>("size"); // invalid: copied byte for byte
    QTest::addColumn<bool>("progressive");
    const QSize copied;
    const QSize large(1600, 1600);

    // The source is 400 x 300.
    QTest::newRow("smaller than the maximum") << 0 << true << large << noOption << copied << false;
    QTest::newRow("exactly the maximum")
        << 0 << true << QSize(400, 300) << noOption << copied << false;
    QTest::newRow("one pixel too wide")
        << 0 << true << QSize(399, 300) << noOption << QSize(399, 299) << false;
    QTest::newRow("one pixel too tall")
        << 0 << true << QSize(400, 299) << noOption << QSize(398, 299) << false;
    QTest::newRow("too large") << 0 << true << QSize(200, 200) << noOption << QSize(200, 150)
                               << false;
    QTest::newRow("free aspect ratio, small")
        << 0 << false << large << noOption << QSize(400, 300) << false;
    QTest::newRow("free aspect ratio")
        << 0 << false << QSize(200, 200) << noOption << QSize(200, 200) << false;
    QTest::newRow("free aspect ratio enlarges the side that fits")
        << 0 << false << QSize(200, 900) << noOption << QSize(200, 900) << false;

    QTest::newRow("progressive, small")
        << 0 << true << large << Options(I::ProgressiveJpeg) << QSize(400, 300) << true;
    QTest::newRow("progressive only when re-encoded, small")
        << 0 << true << large << (I::ProgressiveJpeg | I::ProgressiveOnlyWhenReencoded) << copied
        << false;
    QTest::newRow("progressive only when re-encoded, too large")
        << 0 << true << QSize(200, 200) << (I::ProgressiveJpeg | I::ProgressiveOnlyWhenReencoded)
        << QSize(200, 150) << true;
    QTest::newRow("progressive only when re-encoded, turned")
        << 6 << true << large
        << (I::ProgressiveJpeg | I::ProgressiveOnlyWhenReencoded | I::UseExifRotation)
        << QSize(300, 400) << true;
    QTest::newRow("only when re-encoded alone, small")
        << 0 << true << large << Options(I::ProgressiveOnlyWhenReencoded) << copied << false;
    QTest::newRow("only when re-encoded alone, too large")
        << 0 << true << QSize(200, 200) << Options(I::ProgressiveOnlyWhenReencoded)
        << QSize(200, 150) << false;

    QTest::newRow("no resize, too large")
        << 0 << true << QSize(200, 200) << Options(I::NoResize) << copied << false;
    QTest::newRow("no resize, progressive")
        << 0 << true << QSize(200, 200) << (I::NoResize | I::ProgressiveJpeg) << copied << false;
    QTest::newRow("no resize, free aspect ratio")
        << 0 << false << QSize(200, 200) << Options(I::NoResize) << copied << false;
    QTest::newRow("no resize, everything else but a rotation")
        << 6 << false << QSize(200, 200)
        << (I::NoResize | I::ProgressiveJpeg | I::ExpandToFill | I::Quality85 | I::Retina) << copied
        << false;
    QTest::newRow("no resize, turned")
        << 6 << true << QSize(200, 200) << (I::NoResize | I::UseExifRotation) << QSize(300, 400)
        << false;
    QTest::newRow("no resize, turned, progressive")
        << 8 << true << QSize(200, 200) << (I::NoResize | I::UseExifRotation | I::ProgressiveJpeg)
        << QSize(300, 400) << true;
    QTest::newRow("no resize, no orientation, progressive")
        << 1 << true << QSize(200, 200) << (I::NoResize | I::UseExifRotation | I::ProgressiveJpeg)
        << copied << false;

    QTest::newRow("orientation not asked for") << 6 << true << large << noOption << copied << false;
    const QSize upright[] = {copied, copied,          copied, QSize(400, 300), copied,
                             copied, QSize(300, 400), copied, QSize(300, 400)};
    for (int orientation = 0; orientation <= 8; ++orientation) {
        QTest::newRow(qPrintable(QStringLiteral("orientation %1").arg(orientation)))
            << orientation << true << large << Options(I::UseExifRotation) << upright[orientation]
            << false;
    }
    QTest::newRow("the maximum is that of the picture as it is stored")
        << 6 << true << QSize(200, 200) << Options(I::UseExifRotation) << QSize(150, 200) << false;
    QTest::newRow("the maximum is turned with the picture")
        << 6 << true << QSize(100, 300) << Options(I::UseExifRotation) << QSize(75, 100) << false;
    QTest::newRow("too large, mirrored orientation")
        << 5 << true << QSize(200, 200) << Options(I::UseExifRotation) << QSize(200, 150) << false;

    QTest::newRow("expand") << 0 << true << QSize(200, 200) << Options(I::ExpandToFill)
                            << QSize(266, 200) << false;
    QTest::newRow("expand wins over the free aspect ratio")
        << 0 << false << QSize(200, 200) << Options(I::ExpandToFill) << QSize(266, 200) << false;
    QTest::newRow("expand, small")
        << 0 << true << large << Options(I::ExpandToFill) << copied << false;
    QTest::newRow("expand enlarges when one side exceeds")
        << 0 << true << QSize(200, 900) << Options(I::ExpandToFill) << QSize(1200, 900) << false;

    QTest::newRow("retina") << 0 << true << QSize(100, 100) << Options(I::Retina) << QSize(200, 150)
                            << false;
    QTest::newRow("retina enlarges")
        << 0 << true << QSize(300, 300) << Options(I::Retina) << QSize(600, 450) << false;
    QTest::newRow("retina, small")
        << 0 << true << QSize(400, 300) << Options(I::Retina) << copied << false;
    QTest::newRow("retina, expand") << 0 << true << QSize(100, 100) << (I::Retina | I::ExpandToFill)
                                    << QSize(266, 200) << false;
    QTest::newRow("retina, free aspect ratio")
        << 0 << false << QSize(100, 50) << Options(I::Retina) << QSize(200, 100) << false;

    // 400 x 300 into 999999999 x 1 is 1 x 1.
    QTest::newRow("height 0 gives one pixel")
        << 0 << true << QSize(100, 0) << noOption << QSize(1, 1) << false;
    QTest::newRow("no side becomes 0")
        << 0 << true << QSize(1, 1600) << noOption << QSize(1, 1) << false;
}

void tst_ImageUtils::copyOrReencode()
{
    QFETCH(int, orientation);
    QFETCH(bool, keepAspectRatio);
    QFETCH(QSize, maximum);
    QFETCH(ImageUtils::OptionsImageCopy, options);
    QFETCH(QSize, size);
    QFETCH(bool, progressive);

    const QByteArray source = jpeg(picture(400, 300), orientation);
    store(path("source.jpg"), source);
    LogCapture log;
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), keepAspectRatio,
                                      maximum, options, 70));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(content(path("source.jpg")), source);
    const QByteArray copy = content(path("copy.jpg"));
    if (!size.isValid()) {
        QCOMPARE(copy, source);
    } else {
        QVERIFY(copy != source);
        QCOMPARE(QImage::fromData(copy, "jpeg").size(), size);
        QCOMPARE(isProgressive(copy), progressive);
        QVERIFY(!copy.contains("Exif"));
    }
    QCOMPARE(namesIn(mFolder->path()),
             QStringList({QStringLiteral("copy.jpg"), QStringLiteral("source.jpg")}));
}

void tst_ImageUtils::pixelsOfReencoding_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("angle");
    QTest::newRow("1") << 1 << 0;
    QTest::newRow("3") << 3 << 180;
    QTest::newRow("6") << 6 << 90;
    QTest::newRow("8") << 8 << -90;
}

void tst_ImageUtils::pixelsOfReencoding()
{
    QFETCH(int, orientation);
    QFETCH(int, angle);
    store(path("source.jpg"), jpeg(picture(400, 300), orientation));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(300, 300),
                                      ImageUtils::UseExifRotation, 100));
    QTransform turn;
    turn.rotate(angle);
    const QImage expected = picture(300, 225).transformed(turn);
    QVERIFY2(psnr(QImage(path("copy.jpg")), expected) > 35,
             qPrintable(QString::number(psnr(QImage(path("copy.jpg")), expected))));
}

void tst_ImageUtils::quality_data()
{
    using I = ImageUtils;
    using Options = ImageUtils::OptionsImageCopy;
    QTest::addColumn<ImageUtils::OptionsImageCopy>("options");
    QTest::addColumn<int>("quality");
    QTest::addColumn<int>("expected");
    QTest::newRow("argument") << noOption << 30 << 30;
    QTest::newRow("0") << noOption << 0 << 0;
    QTest::newRow("100") << noOption << 100 << 100;
    QTest::newRow("beyond 100") << noOption << 400 << 100;
    QTest::newRow("negative") << noOption << -1 << 80;
    QTest::newRow("very negative") << noOption << -1000 << 80;
    QTest::newRow("85") << Options(I::Quality85) << 30 << 85;
    QTest::newRow("85 wins over negative") << Options(I::Quality85) << -1 << 85;
    QTest::newRow("progressive") << Options(I::ProgressiveJpeg) << 30 << 75;
    QTest::newRow("progressive 85") << (I::ProgressiveJpeg | I::Quality85) << 30 << 75;
}

void tst_ImageUtils::quality()
{
    QFETCH(ImageUtils::OptionsImageCopy, options);
    QFETCH(int, quality);
    QFETCH(int, expected);
    store(path("source.jpg"), jpeg(picture(400, 300)));
    LogCapture log;
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(100, 100),
                                      options, quality));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(quantisation(content(path("copy.jpg"))), quantisationOf(expected));
}

void tst_ImageUtils::formats_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format"); // empty: copied byte for byte
    QTest::addColumn<QSize>("size");

    const QImage image = picture(400, 300);
    QImage transparent = image.convertToFormat(QImage::Format_ARGB32);
    transparent.setPixel(0, 0, qRgba(0, 0, 0, 0));
    const QByteArray gif = QByteArray::fromHex("47494638396102000100800100ff000000ff00"
                                               "21f90400010000002c0000000002000100000202440a003b");
    const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='400' height='300'>"
                           "<rect width='9' height='9'/></svg>";
    QTest::newRow("gif") << gif << QStringLiteral("a.gif") << QByteArray() << QSize();
    QTest::newRow("gif named jpg") << gif << QStringLiteral("a.jpg") << QByteArray() << QSize();
    QTest::newRow("svg") << svg << QStringLiteral("a.svg") << QByteArray() << QSize();
    QTest::newRow("png") << encoded(image, "png") << QStringLiteral("a.png") << QByteArray("png")
                         << QSize(100, 75);
    QTest::newRow("png with alpha") << encoded(transparent, "png") << QStringLiteral("a.png")
                                    << QByteArray("png") << QSize(100, 75);
#if QT_VERSION >= QT_VERSION_CHECK(5, 12, 0)
    QTest::newRow("png of 16 bits")
        << encoded(image.convertToFormat(QImage::Format_RGBX64), "png") << QStringLiteral("a.png")
        << QByteArray("png") << QSize(100, 75);
#endif
    QTest::newRow("png with a palette")
        << encoded(image.convertToFormat(QImage::Format_Indexed8), "png") << QStringLiteral("a.png")
        << QByteArray("png") << QSize(100, 75);
    QTest::newRow("jpeg named png")
        << jpeg(image) << QStringLiteral("a.png") << QByteArray("jpeg") << QSize(100, 75);
    QTest::newRow("png named jpg")
        << encoded(image, "png") << QStringLiteral("a.jpg") << QByteArray("png") << QSize(100, 75);
    QTest::newRow("jpeg without a suffix")
        << jpeg(image) << QStringLiteral("a") << QByteArray("jpeg") << QSize(100, 75);
    QTest::newRow("grey jpeg") << jpeg(image.convertToFormat(QImage::Format_Grayscale8))
                               << QStringLiteral("a.jpg") << QByteArray("jpeg") << QSize(100, 75);
    QTest::newRow("bmp") << encoded(image, "bmp") << QStringLiteral("a.bmp") << QByteArray("bmp")
                         << QSize(100, 75);
    QTest::newRow("ppm") << encoded(image, "ppm") << QStringLiteral("a.ppm") << QByteArray("ppm")
                         << QSize(100, 75);
}

void tst_ImageUtils::formats()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    QFETCH(QSize, size);
    const QString source = mFolder->filePath(name);
    const QString copy = path("copy.jpg"); // its suffix does not count
    store(source, bytes);
    const QImage whole(source);
    QVERIFY2(!whole.isNull(), "the image plugin for this format is missing");

    LogCapture log;
    QVERIFY(ImageUtils::copyImageFile(source, copy, false, QSize(100, 75),
                                      ImageUtils::ProgressiveJpeg | ImageUtils::UseExifRotation));
    QCOMPARE(ownLines(log), QStringList());
    if (format.isEmpty()) {
        QCOMPARE(content(copy), bytes);
        return;
    }
    QImageReader reader(copy);
    reader.setDecideFormatFromContent(true);
    QCOMPARE(reader.format(), format);
    const QImage image = reader.read();
    QCOMPARE(image.size(), size);
    QCOMPARE(image.hasAlphaChannel(), whole.hasAlphaChannel());
    QVERIFY(psnr(image, whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)) > 30);
}

// --- copyImageFile: what fails -------------------------------------------------------------------

void tst_ImageUtils::invalidMaximum_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSize>("maximum");
    QTest::addColumn<QString>("shown");
    const QSize landscape(400, 300);
    const QSize portrait(300, 400);
    QTest::newRow("both 0") << landscape << QSize(0, 0) << QStringLiteral("QSize(-1, -1)");
    QTest::newRow("invalid") << landscape << QSize() << QStringLiteral("QSize(-1, -1)");
    QTest::newRow("negative width")
        << landscape << QSize(-4, 100) << QStringLiteral("QSize(-4, 100)");
    QTest::newRow("negative height")
        << landscape << QSize(100, -4) << QStringLiteral("QSize(100, -4)");
    // 300 x 400 into 999999999 x 1 and 400 x 300 into 1 x 999999999 leave no pixel.
    QTest::newRow("height 0, portrait")
        << portrait << QSize(100, 0) << QStringLiteral("QSize(0, 1)");
    QTest::newRow("width 0, landscape")
        << landscape << QSize(0, 100) << QStringLiteral("QSize(1, 0)");
}

void tst_ImageUtils::invalidMaximum()
{
    QFETCH(QSize, picture);
    QFETCH(QSize, maximum);
    QFETCH(QString, shown);
    store(path("source.jpg"), jpeg(::picture(picture.width(), picture.height())));
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, maximum,
                                       ImageUtils::NoResize));
    QCOMPARE(log.lines(),
             QStringList(
                 critical(QStringLiteral("copyImageFile maxSizeImage invalid !!  =  ") + shown)));
    QVERIFY(!QFile::exists(path("copy.jpg")));
}

void tst_ImageUtils::unreadableSource_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("missing") << QByteArray("missing");
}

void tst_ImageUtils::unreadableSource()
{
    QFETCH(QByteArray, bytes);
    if (bytes != "missing")
        store(path("source.jpg"), bytes);
    store(path("copy.jpg"), "old");
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(0, 0),
                                       noOption));
    // The format comes before the maximum size.
    QCOMPARE(ownLines(log), QStringList(warning(QStringLiteral("importImageFile format null"))));
    QCOMPARE(content(path("copy.jpg")), QByteArray("old"));
}

void tst_ImageUtils::fileScheme()
{
    const QByteArray bytes = jpeg(picture(400, 300), 6);
    store(path("source.jpg"), bytes);
    const QString address = QStringLiteral("file://") + path("source.jpg");
    QVERIFY(ImageUtils::copyImageFile(address, path("same.jpg"), true, QSize(400, 400), noOption));
    QCOMPARE(content(path("same.jpg")), bytes);
    QVERIFY(ImageUtils::copyImageFile(address, path("turned.jpg"), true, QSize(400, 400),
                                      ImageUtils::UseExifRotation));
    QCOMPARE(QImage(path("turned.jpg")).size(), QSize(300, 400));
}

void tst_ImageUtils::createsFolders()
{
    store(path("source.jpg"), jpeg(picture(400, 300)));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("a/b/copy.jpg"), true,
                                      QSize(100, 100), noOption));
    QCOMPARE(QImage(path("a/b/copy.jpg")).size(), QSize(100, 75));
    // Also where nothing comes of the copy.
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("none.jpg"), path("c/copy.jpg"), true, QSize(100, 100),
                                       noOption));
    QVERIFY(QFileInfo(path("c")).isDir());
}

void tst_ImageUtils::folderCannotBeCreated()
{
    store(path("source.jpg"), jpeg(picture(400, 300)));
    store(path("file"), "in the way");
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("file/copy.jpg"), true,
                                       QSize(100, 100), noOption));
    QCOMPARE(
        ownLines(log).filter(QStringLiteral(" orvautils ImageUtils ")),
        QStringList(warning(QStringLiteral("importImageFile can't save  ") + path("file/copy.jpg")
                            + QStringLiteral(" jpeg QSize(100, 75) maxSizeImage= QSize(100, "
                                             "100)"))));
    QCOMPARE(content(path("file")), QByteArray("in the way"));
}

void tst_ImageUtils::failedCopyIsLogged()
{
    store(path("file"), "in the way");
    const QByteArray bytes = jpeg(picture(40, 30));
    store(path("source.jpg"), bytes);
    LogCapture log;
    for (const auto options : {noOption, ImageUtils::OptionsImageCopy(ImageUtils::NoResize)}) {
        QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("file/copy.jpg"), true,
                                           QSize(100, 100), options));
        QCOMPARE(ownLines(log).filter(QStringLiteral(" orvautils ImageUtils ")).last(),
                 warning(QStringLiteral("FileUtils::forceCopy")));
    }
    QCOMPARE(ownLines(log).filter(QStringLiteral(" orvautils ImageUtils ")).size(), 2);
    QCOMPARE(content(path("source.jpg")), bytes);

    // A GIF says nothing more than forceCopy() does.
    store(path("a.gif"), encoded(picture(4, 3), "gif"));
    store(path("a.gif"),
          QByteArray::fromHex("47494638396102000100800100ff000000ff00"
                              "21f90400010000002c0000000002000100000202440a003b"));
    LogCapture gifLog;
    QVERIFY(!ImageUtils::copyImageFile(path("a.gif"), path("file/copy.gif"), true, QSize(100, 100),
                                       noOption));
    QCOMPARE(ownLines(gifLog).filter(QStringLiteral(" orvautils ImageUtils ")), QStringList());
}

void tst_ImageUtils::emptyPicture()
{
    store(path("source.hollow"), "x");
    store(path("copy.jpg"), "old");
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.hollow"), path("copy.jpg"), false,
                                       QSize(100, 100), noOption));
    QCOMPARE(ownLines(log),
             QStringList({warning(QStringLiteral("copyImageFile img.size() =  QSize(0, 0)")),
                          warning(QStringLiteral("copyImageFile #3 img.size() =  QSize(0, 0)")),
                          warning(QStringLiteral("importImageFile can't save  ") + path("copy.jpg")
                                  + QStringLiteral(" hollow QSize(0, 0) maxSizeImage= QSize(100, "
                                                   "100)"))}));
    QCOMPARE(content(path("copy.jpg")), QByteArray("old"));
}

void tst_ImageUtils::emptyPictureTurned()
{
    store(path("source.hollow"), jpeg(picture(40, 30), 6));
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.hollow"), path("copy.jpg"), true,
                                       QSize(100, 100), ImageUtils::UseExifRotation));
    QCOMPARE(ownLines(log),
             QStringList({warning(QStringLiteral("copyImageFile img.size() =  QSize(0, 0)")),
                          warning(QStringLiteral("copyImageFile #3 img.size() =  QSize(0, 0)")),
                          warning(QStringLiteral("copyImageFile #4 img.size() =  QSize(0, 0)")),
                          warning(QStringLiteral("importImageFile can't save  ") + path("copy.jpg")
                                  + QStringLiteral(" hollow QSize(0, 0) maxSizeImage= QSize(100, "
                                                   "100)"))}));
}

void tst_ImageUtils::formatThatCannotBeWritten()
{
    const QByteArray source = "any";
    store(path("source.readonly"), source);
    store(path("copy.jpg"), "old");
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.readonly"), path("copy.jpg"), false,
                                       QSize(20, 0), ImageUtils::ProgressiveJpeg));
    // Its size is not told before it is loaded: -1 x -1 into 999999999 x 1 is 1 x 1.
    QCOMPARE(ownLines(log),
             QStringList(
                 {QStringLiteral("warning orvautils ImageUtils writeProgressiveImage: can't "
                                 "save writeProgressiveImage  ")
                      + path("copy.jpg")
                      + QStringLiteral("  errorString= Unsupported image format  size= "
                                       "QSize(1, 1)"),
                  warning(QStringLiteral("importImageFile can't save  ") + path("copy.jpg")
                          + QStringLiteral(" readonly QSize(1, 1) maxSizeImage= QSize(1, 1)"))}));
    QCOMPARE(content(path("source.readonly")), source);
    QCOMPARE(content(path("copy.jpg")), QByteArray("old"));
    QCOMPARE(namesIn(mFolder->path()),
             QStringList({QStringLiteral("copy.jpg"), QStringLiteral("source.readonly")}));
}

void tst_ImageUtils::cannotBeScaled()
{
    const int most = std::numeric_limits<int>::max();
    const QByteArray source = jpeg(picture(400, 300));
    store(path("source.jpg"), source);
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true,
                                       QSize(10, 999999999), ImageUtils::ExpandToFill));
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), false, QSize(10, most),
                                       ImageUtils::Retina));
    QCOMPARE(ownLines(log),
             QStringList({warning(QStringLiteral("copyImageFile #2 img.size() =  QSize(0, 0) "
                                                 "QSize(10, 999999999)")),
                          warning(QStringLiteral("copyImageFile #2 img.size() =  QSize(0, 0) "
                                                 "QSize(20, 2147483646)"))}));
    QVERIFY(!QFile::exists(path("copy.jpg")));
}

void tst_ImageUtils::truncatedJpeg()
{
    const QByteArray whole = jpeg(landscape(800, 600, 0.6));
    for (const int part : {3, 20, 150, 400, 700, 2000, whole.size() / 2, whole.size() - 2}) {
        const QByteArray bytes = whole.left(part);
        store(path("source.jpg"), bytes);
        store(path("copy.jpg"), "old");
        for (const int side : {100, 350, 500}) {
            LogCapture log;
            // What the image reader makes of it decides.
            const QImage readable(path("source.jpg"));
            const bool imported =
                ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true,
                                          QSize(side, side), ImageUtils::ProgressiveJpeg);
            QCOMPARE(imported, !readable.isNull());
            if (imported)
                QCOMPARE(QImage(path("copy.jpg")).size(), QSize(side, side * 3 / 4));
            else
                QVERIFY(!QImageReader(path("copy.jpg")).canRead());
        }
        QCOMPARE(content(path("source.jpg")), bytes);
        QCOMPARE(namesIn(mFolder->path()),
                 QStringList({QStringLiteral("copy.jpg"), QStringLiteral("source.jpg")}));
    }
}

void tst_ImageUtils::hostileHeader_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<ImageUtils::OptionsImageCopy>("options");

    // 60,000 x 60,000 pixels, and hardly a byte of them.
    QByteArray forgedJpeg = jpeg(picture(16, 16), 6);
    const int frame = forgedJpeg.indexOf("\xff\xc0");
    QVERIFY(frame > 0);
    forgedJpeg.replace(frame + 5, 4, QByteArray::fromHex("ea60ea60"));
    QTest::newRow("jpeg, to be turned at full size")
        << forgedJpeg << (ImageUtils::NoResize | ImageUtils::UseExifRotation);

    QByteArray png = encoded(picture(16, 16), "png");
    png.replace(16, 8, QByteArray::fromHex("0000ea600000ea60"));
    QTest::newRow("png, bad checksum") << png << noOption;
    // The checksum of "IHDR", 60,000, 60,000, 8 bits, RGB.
    png.replace(24, 9,
                QByteArray::fromHex("0802000000")
                    + crc32(png.mid(12, 12) + QByteArray::fromHex("0802000000")));
    QTest::newRow("png") << png << noOption;
    QTest::newRow("ppm") << QByteArray("P6 60000 60000 255\nabc") << noOption;
}

void tst_ImageUtils::hostileHeader()
{
    QFETCH(QByteArray, bytes);
    QFETCH(ImageUtils::OptionsImageCopy, options);
    store(path("source.img"), bytes);
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.img"), path("copy.jpg"), false, QSize(100, 100),
                                       options));
    QCOMPARE(
        ownLines(log),
        QStringList(warning(QStringLiteral("importImageFile can't load  ") + path("source.img"))));
    QCOMPARE(namesIn(mFolder->path()), QStringList(QStringLiteral("source.img")));
}

void tst_ImageUtils::cmyk()
{
    const QString source = photosDir + QStringLiteral("/cmyk-mm-exif-first-thumb.jpg");
    if (!QFile::exists(source))
        QSKIP("the real photographs are not here, and Qt writes no CMYK JPEG");
    const QImage whole(source);
    const QSize target = whole.size() / 2;
    QVERIFY(ImageUtils::copyImageFile(source, path("copy.jpg"), false, target, noOption, 100));
    const QImage expected = whole.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QVERIFY2(psnr(QImage(path("copy.jpg")), expected) > 36,
             qPrintable(QString::number(psnr(QImage(path("copy.jpg")), expected))));
}

// --- copyImageFile: nothing is lost --------------------------------------------------------------

void tst_ImageUtils::ontoItself_data()
{
    QTest::addColumn<bool>("address");
    QTest::addColumn<ImageUtils::OptionsImageCopy>("options");
    QTest::addColumn<QSize>("size");
    using Options = ImageUtils::OptionsImageCopy;
    for (const bool address : {false, true}) {
        const QByteArray suffix = address ? ", file://" : "";
        QTest::newRow(("copied" + suffix).constData())
            << address << Options(ImageUtils::NoResize) << QSize(400, 300);
        QTest::newRow(("re-encoded" + suffix).constData())
            << address << Options(ImageUtils::UseExifRotation) << QSize(75, 100);
    }
}

void tst_ImageUtils::ontoItself()
{
    QFETCH(bool, address);
    QFETCH(ImageUtils::OptionsImageCopy, options);
    QFETCH(QSize, size);
    store(path("a.jpg"), jpeg(picture(400, 300), 6));
    LogCapture log;
    QVERIFY(
        ImageUtils::copyImageFile((address ? QStringLiteral("file://") : QString()) + path("a.jpg"),
                                  path("a.jpg"), true, QSize(100, 100), options));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(QImage(path("a.jpg")).size(), size);
    QCOMPARE(namesIn(mFolder->path()), QStringList(QStringLiteral("a.jpg")));
}

void tst_ImageUtils::ontoLinkToSource()
{
    const QByteArray bytes = jpeg(picture(400, 300));
    store(path("source.jpg"), bytes);
    QVERIFY(QFile::link(path("source.jpg"), path("link.jpg")));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("link.jpg"), true, QSize(100, 100),
                                      noOption));
    QCOMPARE(content(path("source.jpg")), bytes);
    QVERIFY(!QFileInfo(path("link.jpg")).isSymLink());
    QCOMPARE(QImage(path("link.jpg")).size(), QSize(100, 75));
}

void tst_ImageUtils::ontoHardLinkOfSource()
{
#ifdef Q_OS_UNIX
    const QByteArray bytes = jpeg(picture(400, 300));
    store(path("source.jpg"), bytes);
    QCOMPARE(::link(QFile::encodeName(path("source.jpg")).constData(),
                    QFile::encodeName(path("link.jpg")).constData()),
             0);
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("link.jpg"), true, QSize(100, 100),
                                      noOption));
    QCOMPARE(content(path("source.jpg")), bytes);
    QCOMPARE(QImage(path("link.jpg")).size(), QSize(100, 75));
#endif
}

void tst_ImageUtils::sourceIsLinkToDestination()
{
    store(path("a.jpg"), jpeg(picture(400, 300)));
    QVERIFY(QFile::link(path("a.jpg"), path("link.jpg")));
    QVERIFY(ImageUtils::copyImageFile(path("link.jpg"), path("a.jpg"), true, QSize(100, 100),
                                      noOption));
    QCOMPARE(QImage(path("a.jpg")).size(), QSize(100, 75));
    QVERIFY(QFileInfo(path("link.jpg")).isSymLink());
}

void tst_ImageUtils::ontoDanglingLink()
{
    store(path("source.jpg"), jpeg(picture(400, 300)));
    QVERIFY(QFile::link(path("nowhere"), path("link.jpg")));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("link.jpg"), true, QSize(100, 100),
                                      noOption));
    QVERIFY(!QFile::exists(path("nowhere")));
    QCOMPARE(QImage(path("link.jpg")).size(), QSize(100, 75));
}

void tst_ImageUtils::ontoReadOnlyFile()
{
    store(path("source.jpg"), jpeg(picture(400, 300)));
    store(path("copy.jpg"), "old");
    QVERIFY(QFile::setPermissions(path("copy.jpg"), QFile::ReadOwner));
    QVERIFY(QFile::setPermissions(mFolder->path(), QFile::Permissions(0x7777)));
    QVERIFY(QFile::setPermissions(path("source.jpg"), QFile::Permissions(0x6666)));
    const OrdinaryUser user;
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(100, 100),
                                      noOption));
    QCOMPARE(QImage(path("copy.jpg")).size(), QSize(100, 75));
}

void tst_ImageUtils::ontoFolder()
{
    store(path("source.jpg"), jpeg(picture(400, 300)));
    QVERIFY(QDir(mFolder->path()).mkpath(QStringLiteral("copy.jpg/inside")));
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(100, 100),
                                       ImageUtils::ProgressiveJpeg));
    QCOMPARE(
        log.lines(),
        QStringList(critical(QStringLiteral("copyImageFile : can't remove ") + path("copy.jpg"))));
    QCOMPARE(namesIn(path("copy.jpg")), QStringList(QStringLiteral("inside")));
    QCOMPARE(namesIn(mFolder->path()),
             QStringList({QStringLiteral("copy.jpg"), QStringLiteral("source.jpg")}));
}

void tst_ImageUtils::ontoFileInReadOnlyFolder()
{
    store(path("source.jpg"), jpeg(picture(400, 300)));
    QVERIFY(QFile::setPermissions(path("source.jpg"), QFile::Permissions(0x6666)));
    QVERIFY(QDir(mFolder->path()).mkdir(QStringLiteral("site")));
    store(path("site/copy.jpg"), "old");
    QVERIFY(QFile::setPermissions(path("site/copy.jpg"), QFile::Permissions(0x6666)));
    QVERIFY(QFile::setPermissions(mFolder->path(), QFile::Permissions(0x7777)));
    QVERIFY(QFile::setPermissions(path("site"), QFile::Permissions(0x5555)));
    {
        const OrdinaryUser user;
        LogCapture log;
        QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("site/copy.jpg"), true,
                                           QSize(100, 100), noOption));
        QCOMPARE(log.lines(),
                 QStringList(critical(QStringLiteral("copyImageFile : can't remove ")
                                      + path("site/copy.jpg"))));
        QCOMPARE(content(path("site/copy.jpg")), QByteArray("old"));
        QCOMPARE(namesIn(path("site")), QStringList(QStringLiteral("copy.jpg")));
    }
    QVERIFY(QFile::setPermissions(path("site"), QFile::Permissions(0x7777)));
}

void tst_ImageUtils::newFileInReadOnlyFolder()
{
    store(path("source.jpg"), jpeg(picture(400, 300)));
    QVERIFY(QFile::setPermissions(path("source.jpg"), QFile::Permissions(0x6666)));
    QVERIFY(QDir(mFolder->path()).mkdir(QStringLiteral("site")));
    QVERIFY(QFile::setPermissions(mFolder->path(), QFile::Permissions(0x7777)));
    QVERIFY(QFile::setPermissions(path("site"), QFile::Permissions(0x5555)));
    {
        const OrdinaryUser user;
        LogCapture log;
        QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("site/copy.jpg"), true,
                                           QSize(100, 100), noOption));
        QCOMPARE(log.lines(),
                 QStringList(warning(QStringLiteral("importImageFile can't save  ")
                                     + path("site/copy.jpg")
                                     + QStringLiteral(" jpeg QSize(100, 75) maxSizeImage= "
                                                      "QSize(100, 100)"))));
        QCOMPARE(namesIn(path("site")), QStringList());
    }
    QVERIFY(QFile::setPermissions(path("site"), QFile::Permissions(0x7777)));
}

void tst_ImageUtils::newFileWhoseNameIsTooLong()
{
    store(path("source.jpg"), jpeg(picture(400, 300)));
    const QString copy = mFolder->filePath(QString(300, QLatin1Char('x')) + QLatin1String(".jpg"));
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), copy, true, QSize(100, 100), noOption));
    QCOMPARE(log.lines(),
             QStringList(warning(QStringLiteral("importImageFile can't save  ") + copy
                                 + QStringLiteral(" jpeg QSize(100, 75) maxSizeImage= "
                                                  "QSize(100, 100)"))));
    QCOMPARE(namesIn(mFolder->path()), QStringList(QStringLiteral("source.jpg")));
}

void tst_ImageUtils::fullDisk_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<bool>("progressive");
    for (const bool progressive : {false, true}) {
        const QByteArray suffix = progressive ? ", progressive" : "";
        QTest::newRow(("not a byte" + suffix).constData()) << 0 << progressive;
        // The picture is smaller than the buffer of a file: it fails when that is flushed.
        QTest::newRow(("some" + suffix).constData()) << 500 << progressive;
    }
    QTest::newRow("most") << 20000 << false;
}

void tst_ImageUtils::fullDisk()
{
#ifdef Q_OS_UNIX
    QFETCH(int, bytes);
    QFETCH(bool, progressive);
    // Onto the source itself: this is its only copy.
    const QByteArray source = jpeg(landscape(400, 300, 0.8), 6);
    QVERIFY(source.size() > 40000);
    store(path("a.jpg"), source);
    const ImageUtils::OptionsImageCopy options = progressive
        ? ImageUtils::UseExifRotation | ImageUtils::ProgressiveJpeg
        : ImageUtils::OptionsImageCopy(ImageUtils::UseExifRotation);
    const QSize maximum = bytes < 1000 ? QSize(100, 100) : QSize(400, 400);
    LogCapture log;
    {
        const FullDisk full{rlim_t(bytes)};
        QVERIFY(
            !ImageUtils::copyImageFile(path("a.jpg"), path("a.jpg"), true, maximum, options, 95));
    }
    const QStringList lines = ownLines(log);
    QCOMPARE(lines.size(), progressive ? 2 : 1);
    if (progressive) {
        QVERIFY(lines.first().startsWith(
            QStringLiteral("warning orvautils ImageUtils writeProgressiveImage: can't save "
                           "writeProgressiveImage  ")
            + path("a.jpg")));
    }
    QVERIFY(lines.last().startsWith(
        warning(QStringLiteral("importImageFile can't save  ") + path("a.jpg"))));
    QCOMPARE(content(path("a.jpg")), source);
    QCOMPARE(namesIn(mFolder->path()), QStringList(QStringLiteral("a.jpg")));
#endif
}

void tst_ImageUtils::newFileHasUsualPermissions()
{
    store(path("source.jpg"), jpeg(picture(400, 300)));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(100, 100),
                                      noOption));
    QCOMPARE(QFile::permissions(path("copy.jpg")), QFile::permissions(path("source.jpg")));
}

// --- copyImageFile: reduced decoding -------------------------------------------------------------

void tst_ImageUtils::reducedDecoding_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("falloff");
    QTest::addColumn<QSize>("maximum");
    QTest::addColumn<bool>("keepAspectRatio");
    QTest::addColumn<ImageUtils::OptionsImageCopy>("options");
    QTest::addColumn<QSize>("expected");
    using Options = ImageUtils::OptionsImageCopy;
    const QSize multiple(1600, 1200);
    const QSize odd(1603, 1201);
    for (const double falloff : {0.5, 0.75, 0.95}) {
        const QByteArray detail = " detail " + QByteArray::number(falloff);
        const auto row = [&](const char* name, const QSize& size, const QSize& maximum,
                             bool keepAspectRatio, Options options, const QSize& expected) {
            QTest::newRow((name + detail).constData())
                << size << falloff << maximum << keepAspectRatio << options << expected;
        };
        row("eighth", multiple, QSize(200, 200), true, noOption, QSize(200, 150));
        row("below an eighth", multiple, QSize(64, 64), true, noOption, QSize(64, 48));
        row("above an eighth", multiple, QSize(208, 208), true, noOption, QSize(208, 156));
        row("quarter", multiple, QSize(400, 400), true, noOption, QSize(400, 300));
        row("below a quarter", multiple, QSize(360, 360), true, noOption, QSize(360, 270));
        row("half", multiple, QSize(800, 800), true, noOption, QSize(800, 600));
        row("below half", multiple, QSize(640, 640), true, noOption, QSize(640, 480));
        row("above half", multiple, QSize(900, 900), true, noOption, QSize(900, 675));
        row("one side below half", multiple, QSize(700, 1100), false, noOption, QSize(700, 1100));
        row("one side, kept", multiple, QSize(1600, 300), true, noOption, QSize(400, 300));
        row("expand", multiple, QSize(300, 300), true, ImageUtils::ExpandToFill, QSize(400, 300));
        row("retina", multiple, QSize(300, 300), true, ImageUtils::Retina, QSize(600, 450));
        row("retina, larger", multiple, QSize(1000, 1000), true, ImageUtils::Retina,
            QSize(2000, 1500));
        // 1603 x 1201: 300 * 1201 / 1603 = 224.7, 700 * 1201 / 1603 = 524.4
        row("odd", odd, QSize(300, 300), true, noOption, QSize(300, 224));
        row("odd, half", odd, QSize(700, 700), true, noOption, QSize(700, 524));
        // 1604 x 1202 is even, but no multiple of 4: 300 * 1202 / 1604 = 224.8
        row("even", QSize(1604, 1202), QSize(300, 300), true, noOption, QSize(300, 224));
    }
}

void tst_ImageUtils::reducedDecoding()
{
    QFETCH(QSize, size);
    QFETCH(double, falloff);
    QFETCH(QSize, maximum);
    QFETCH(bool, keepAspectRatio);
    QFETCH(ImageUtils::OptionsImageCopy, options);
    QFETCH(QSize, expected);
    static QHash<QString, QByteArray> made;
    QByteArray& bytes = made[QStringLiteral("%1 %2").arg(size.width()).arg(falloff)];
    if (bytes.isEmpty())
        bytes = jpeg(landscape(size.width(), size.height(), falloff), 0, 92);
    store(path("source.jpg"), bytes);
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), keepAspectRatio,
                                      maximum, options, 100));
    const QImage copy(path("copy.jpg"));
    QCOMPARE(copy.size(), expected);
    // The plain way, through the same quality.
    const QImage plain = QImage::fromData(
        encoded(QImage(path("source.jpg"))
                    .scaled(expected, Qt::IgnoreAspectRatio, Qt::SmoothTransformation),
                "jpeg", 100));
    QVERIFY2(psnr(copy, plain) >= 38, qPrintable(QString::number(psnr(copy, plain))));
}

void tst_ImageUtils::reducedToOnePixel()
{
    // Half of it is too small to hold any detail.
    QImage whole(4, 4, QImage::Format_RGB32);
    whole.fill(QColor(200, 100, 50));
    store(path("source.jpg"), jpeg(whole));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(1, 1),
                                      noOption, 100));
    const QImage copy(path("copy.jpg"));
    QCOMPARE(copy.size(), QSize(1, 1));
    const QColor color = copy.pixelColor(0, 0);
    QVERIFY(qAbs(color.red() - 200) <= 4);
    QVERIFY(qAbs(color.green() - 100) <= 4);
    QVERIFY(qAbs(color.blue() - 50) <= 4);
}

void tst_ImageUtils::realPhotographsReduced_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("side");
    const QStringList names =
        QDir(photosDir).entryList({QStringLiteral("*.jpg")}, QDir::Files, QDir::Name);
    for (const QString& name : names) {
        if (name.startsWith(QLatin1String("broken")) || name.contains(QLatin1String("cmyk")))
            continue;
        // The other orientations are the same two photographs.
        if (name.startsWith(QLatin1String("orientation"))
            && !name.endsWith(QLatin1String("-1.jpg")))
            continue;
        for (const int side : {96, 160, 213, 320, 400, 640, 720, 800, 1200, 1600})
            QTest::newRow(qPrintable(name + QStringLiteral(" %1").arg(side))) << name << side;
    }
    if (names.isEmpty())
        QTest::newRow("none") << QString() << 0;
}

void tst_ImageUtils::realPhotographsReduced()
{
    QFETCH(QString, name);
    QFETCH(int, side);
    if (name.isEmpty())
        QSKIP("the real photographs are not here");
    const QString source = photosDir + QLatin1Char('/') + name;
    const QImage whole(source);
    const QSize maximum(side, side);
    if (whole.width() <= side && whole.height() <= side)
        return;
    QVERIFY(ImageUtils::copyImageFile(source, path("copy.jpg"), true, maximum, noOption, 100));
    const QImage plain = QImage::fromData(
        encoded(whole.scaled(maximum, Qt::KeepAspectRatio, Qt::SmoothTransformation), "jpeg", 100));
    const QImage copy(path("copy.jpg"));
    QCOMPARE(copy.size(), plain.size());
    QVERIFY2(psnr(copy, plain) >= 38, qPrintable(QString::number(psnr(copy, plain))));
}

// --- copyImageFile: real photographs -------------------------------------------------------------

void tst_ImageUtils::realPhotographs()
{
    const QDir folder(photosDir);
    const QStringList names = folder.entryList({QStringLiteral("*.jpg"), QStringLiteral("*.gif"),
                                                QStringLiteral("*.png"), QStringLiteral("*.svg")},
                                               QDir::Files);
    if (names.isEmpty())
        QSKIP("the real photographs are not here");
    for (const QString& name : names) {
        const QString source = folder.filePath(name);
        const QString copy = mFolder->filePath(name);
        const QByteArray before = content(source);
        LogCapture log;
        const QImage readable(source);
        QVERIFY2(
            ImageUtils::copyImageFile(source, copy, true, QSize(320, 320),
                                      ImageUtils::UseExifRotation | ImageUtils::ProgressiveJpeg)
                == !readable.isNull(),
            qPrintable(name));
        QCOMPARE(content(source), before);
        if (name.endsWith(QLatin1String("gif")) || name.endsWith(QLatin1String("svg"))) {
            QCOMPARE(content(copy), before);
        } else if (!readable.isNull()) {
            const QImage result(copy);
            QVERIFY2(!result.isNull() && qMax(result.width(), result.height()) <= 320,
                     qPrintable(name));
        } else {
            QVERIFY2(!QFile::exists(copy), qPrintable(name));
        }
    }
}

void tst_ImageUtils::realOrientations_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSize>("expected");
    // 1800 x 1200 into 1600 x 1600 is 1600 x 1066. The files of the orientations 5 to 8 hold the
    // picture lying; 6 and 8 are set upright, the mirrored 5 and 7 stay as they are.
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const bool lying = orientation == 5 || orientation == 7;
        const QSize landscape(1600, 1066);
        const QByteArray number = QByteArray::number(orientation);
        QTest::newRow(("landscape " + number).constData())
            << QStringLiteral("landscape") << orientation
            << (lying ? landscape.transposed() : landscape);
        QTest::newRow(("portrait " + number).constData())
            << QStringLiteral("portrait") << orientation
            << (lying ? landscape : landscape.transposed());
    }
}

void tst_ImageUtils::realOrientations()
{
    QFETCH(QString, kind);
    QFETCH(int, orientation);
    QFETCH(QSize, expected);
    const QString name = photosDir + QStringLiteral("/orientation-%1-%2.jpg").arg(kind);
    if (!QFile::exists(name.arg(1)))
        QSKIP("the real photographs are not here");
    const QByteArray before = content(name.arg(orientation));
    QVERIFY(ImageUtils::copyImageFile(name.arg(orientation), path("copy.jpg"), true,
                                      QSize(1600, 1600),
                                      ImageUtils::UseExifRotation | ImageUtils::ProgressiveJpeg));
    QCOMPARE(content(name.arg(orientation)), before);
    QVERIFY(isProgressive(content(path("copy.jpg"))));
    const QImage copy(path("copy.jpg"));
    QCOMPARE(copy.size(), expected);

    // The photograph of orientation 1 is the same picture, upright.
    QImage upright = QImage(name.arg(1));
    switch (orientation) { // mirrored as the library leaves it
    case 2:
        upright = upright.mirrored(true, false);
        break;
    case 4:
        upright = upright.mirrored(false, true);
        break;
    case 5: // transposed
        upright = upright.transformed(QTransform(0, 1, 1, 0, 0, 0));
        break;
    case 7: // transposed over the other diagonal
        upright = upright.transformed(QTransform(0, -1, -1, 0, 0, 0));
        break;
    default:
        break;
    }
    const QSize small = expected / 8;
    const double likeness =
        psnr(copy.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation),
             upright.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    QVERIFY2(likeness > 28, qPrintable(QString::number(likeness)));
}

void tst_ImageUtils::otherReadersAgree()
{
    store(path("source.jpg"), jpeg(landscape(1600, 1200, 0.6), 6));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("progressive.jpg"), true,
                                      QSize(400, 400),
                                      ImageUtils::UseExifRotation | ImageUtils::ProgressiveJpeg));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("baseline.jpg"), true,
                                      QSize(400, 400),
                                      ImageUtils::UseExifRotation | ImageUtils::Quality85));
    const auto answer = [](const QString& program, const QStringList& arguments) {
        QProcess process;
        process.start(program, arguments);
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    };
    const QString identify = QStandardPaths::findExecutable(QStringLiteral("identify"));
    const QString exiftool = QStandardPaths::findExecutable(QStringLiteral("exiftool"));
    if (identify.isEmpty() && exiftool.isEmpty())
        QSKIP("neither ImageMagick nor exiftool is installed");
    if (!identify.isEmpty()) {
        const QString format = QStringLiteral("%m %wx%h %Q %[interlace]");
        QCOMPARE(answer(identify, {QStringLiteral("-format"), format, path("progressive.jpg")}),
                 QStringLiteral("JPEG 300x400 75 JPEG"));
        QCOMPARE(answer(identify, {QStringLiteral("-format"), format, path("baseline.jpg")}),
                 QStringLiteral("JPEG 300x400 85 None"));
    }
    if (!exiftool.isEmpty()) {
        const QStringList arguments = {QStringLiteral("-s3"), QStringLiteral("-EncodingProcess"),
                                       QStringLiteral("-ImageSize"), QStringLiteral("-Orientation"),
                                       QStringLiteral("-Warning")};
        QCOMPARE(answer(exiftool, arguments + QStringList(path("progressive.jpg"))),
                 QStringLiteral("Progressive DCT, Huffman coding\n300x400"));
        QCOMPARE(answer(exiftool, arguments + QStringList(path("baseline.jpg"))),
                 QStringLiteral("Baseline DCT, Huffman coding\n300x400"));
    }
}

// --- Other files ---------------------------------------------------------------------------------

void tst_ImageUtils::imageSize()
{
    store(path("a.jpg"), jpeg(picture(400, 300), 6).left(700));
    QCOMPARE(ImageUtils::imageSize(path("a.jpg")), QSize(400, 300));
    QVERIFY(!ImageUtils::imageSize(path("none.jpg")).isValid());
    store(path("text.jpg"), "no picture");
    QVERIFY(!ImageUtils::imageSize(path("text.jpg")).isValid());
}

void tst_ImageUtils::scaledPixmapFromFilepath_data()
{
    QTest::addColumn<QSize>("maximum");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("smaller") << QSize(500, 500) << QSize(400, 300);
    QTest::newRow("equal") << QSize(400, 300) << QSize(400, 300);
    QTest::newRow("wider") << QSize(200, 500) << QSize(200, 150);
    QTest::newRow("taller") << QSize(500, 150) << QSize(200, 150);
    QTest::newRow("both") << QSize(40, 90) << QSize(40, 30);
    QTest::newRow("flat") << QSize(500, 1) << QSize(1, 1);
    QTest::newRow("zero") << QSize(0, 0) << QSize(0, 0);
    QTest::newRow("invalid") << QSize() << QSize(0, 0);
}

void tst_ImageUtils::scaledPixmapFromFilepath()
{
    QFETCH(QSize, maximum);
    QFETCH(QSize, expected);
    const QImage image = picture(400, 300);
    store(path("a.png"), encoded(image, "png"));
    const QPixmap pixmap = ImageUtils::scaledPixmapFromFilepath(path("a.png"), maximum);
    QCOMPARE(pixmap.size(), expected);
    if (!expected.isEmpty()) {
        QCOMPARE(pixmap.toImage().convertToFormat(QImage::Format_RGB32),
                 image.scaled(expected, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                     .convertToFormat(QImage::Format_RGB32));
    }
    QVERIFY(ImageUtils::scaledPixmapFromFilepath(path("none.png"), maximum).isNull());
}

void tst_ImageUtils::fusionImage()
{
    QImage below(20, 10, QImage::Format_RGB32);
    below.fill(Qt::blue);
    QImage above(8, 4, QImage::Format_ARGB32);
    above.fill(QColor(255, 0, 0, 255));
    above.setPixel(0, 0, qRgba(0, 0, 0, 0));
    const QString folder = mFolder->path() + QLatin1Char('/');
    // A palette and a name that means a double density to Qt: pixels stay pixels.
    store(path("below.png"), encoded(below.convertToFormat(QImage::Format_Indexed8), "png"));
    store(path("above@2x.png"), encoded(above, "png"));
    LogCapture log;
    QVERIFY(ImageUtils::fusionImage(folder, QStringLiteral("below.png"),
                                    QStringLiteral("above@2x.png"), QColor(Qt::green),
                                    QStringLiteral("out.dat")));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(content(path("out.dat")).startsWith("\x89PNG"));
    const QImage out = QImage(path("out.dat")).convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(out.size(), QSize(20, 10));
    QCOMPARE(out.pixel(0, 0), qRgb(0, 0, 255));
    QCOMPARE(out.pixel(1, 0), qRgb(255, 0, 0));
    QCOMPARE(out.pixel(7, 3), qRgb(255, 0, 0));
    QCOMPARE(out.pixel(8, 3), qRgb(0, 0, 255));
    QCOMPARE(out.pixel(7, 4), qRgb(0, 0, 255));
}

void tst_ImageUtils::fusionImageOnTransparency()
{
    QImage below(4, 2, QImage::Format_ARGB32);
    below.fill(qRgba(0, 0, 255, 0));
    below.setPixel(3, 1, qRgba(0, 0, 255, 255));
    QImage above(2, 2, QImage::Format_ARGB32);
    above.fill(qRgba(255, 0, 0, 255));
    above.setPixel(0, 0, qRgba(0, 0, 0, 0));
    const QString folder = mFolder->path() + QLatin1Char('/');
    store(path("below.png"), encoded(below, "png"));
    store(path("above.png"), encoded(above, "png"));
    QVERIFY(ImageUtils::fusionImage(folder, QStringLiteral("below.png"),
                                    QStringLiteral("above.png"), QColor(),
                                    QStringLiteral("out.png")));
    const QImage out = QImage(path("out.png")).convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(qAlpha(out.pixel(0, 0)), 0);
    QCOMPARE(out.pixel(1, 1), qRgba(255, 0, 0, 255));
    QCOMPARE(qAlpha(out.pixel(2, 0)), 0);
    QCOMPARE(out.pixel(3, 1), qRgba(0, 0, 255, 255));
}

void tst_ImageUtils::fusionImageFailures()
{
    const QString folder = mFolder->path() + QLatin1Char('/');
    store(path("a.png"), encoded(picture(4, 3), "png"));
    store(path("out.png"), "old");
    QVERIFY(!ImageUtils::fusionImage(folder, QStringLiteral("a.png"), QStringLiteral("none.png"),
                                     QColor(), QStringLiteral("out.png")));
    QCOMPARE(content(path("out.png")), QByteArray("old"));
    QVERIFY(ImageUtils::fusionImage(folder, QStringLiteral("none.png"), QStringLiteral("a.png"),
                                    QColor(), QStringLiteral("out.png")));
    QCOMPARE(content(path("out.png")), QByteArray("old"));
    QVERIFY(ImageUtils::fusionImage(folder, QStringLiteral("a.png"), QStringLiteral("a.png"),
                                    QColor(), QStringLiteral("none/out.png")));
}

// --- Names of web images -------------------------------------------------------------------------

void tst_ImageUtils::imageExtensions_data()
{
    QTest::addColumn<QString>("formats");
    QTest::addColumn<QString>("extensions");
    QTest::newRow("example") << QStringLiteral("JPG png") << QStringLiteral("jpeg jpg png");
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("jpeg") << QStringLiteral("jpeg") << QStringLiteral("jpeg jpg");
    QTest::newRow("jpg") << QStringLiteral("jpg") << QStringLiteral("jpeg jpg");
    QTest::newRow("both jpeg") << QStringLiteral("jpg JPEG") << QStringLiteral("jpeg jpg");
    QTest::newRow("order") << QStringLiteral("SVG Png gif jpeg")
                           << QStringLiteral("jpeg jpg gif png svg");
    QTest::newRow("repeated") << QStringLiteral("gif gif GIF") << QStringLiteral("gif");
    QTest::newRow("others") << QStringLiteral("bmp jpe svgz .png") << QString();
}

void tst_ImageUtils::imageExtensions()
{
    QFETCH(QString, formats);
    QFETCH(QString, extensions);
    const QStringList list = formats.isEmpty() ? QStringList() : formats.split(QLatin1Char(' '));
    QCOMPARE(ImageUtils::imageExtensionsAccordingImageFormat(list).join(QLatin1Char(' ')),
             extensions);
}

void tst_ImageUtils::imageNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("web");
    QTest::addColumn<bool>("vector");
    const auto row = [](const char* name, bool web, bool vector) {
        QTest::newRow(name) << QString::fromLatin1(name) << web << vector;
    };
    row("a.jpg", true, false);
    row("a.JPEG", true, false);
    row("/p/a.Png", true, false);
    row("a.gif", true, false);
    row("a.svg", true, true);
    row("a.b.SVG", true, true);
    row("a.svgz", false, false);
    row("a.svg.bak", false, false);
    row("a.svg/b", false, false);
    row("svg", false, false);
    row("a.jpe", false, false);
    row("a.jpg ", false, false);
    row("a.", false, false);
    row("", false, false);
}

void tst_ImageUtils::imageNames()
{
    QFETCH(QString, name);
    QFETCH(bool, web);
    QFETCH(bool, vector);
    QCOMPARE(ImageUtils::filenameHasWebImageExtension(name), web);
    QCOMPARE(ImageUtils::imageNameIsVectoriel(name), vector);
}

// --- Sizes ---------------------------------------------------------------------------------------

void tst_ImageUtils::resizeKeepingRatio_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("toWidth");
    QTest::addColumn<QSize>("toHeight");
    const int most = std::numeric_limits<int>::max();
    QTest::newRow("smaller") << 200 << QSize(400, 300) << QSize(200, 150) << QSize(267, 200);
    QTest::newRow("larger") << 800 << QSize(400, 300) << QSize(800, 600) << QSize(1067, 800);
    QTest::newRow("half is rounded up") << 1 << QSize(2, 3) << QSize(1, 2) << QSize(1, 1);
    QTest::newRow("0") << 0 << QSize(400, 300) << QSize(0, 0) << QSize(0, 0);
    QTest::newRow("width 0") << 100 << QSize(0, 300) << QSize(100, 0) << QSize(0, 100);
    QTest::newRow("height 0") << 100 << QSize(300, 0) << QSize(100, 0) << QSize(0, 100);
    QTest::newRow("beyond the numbers")
        << most << QSize(1, most) << QSize(most, most - 1) << QSize(1, most);
}

void tst_ImageUtils::resizeKeepingRatio()
{
    QFETCH(int, side);
    QFETCH(QSize, size);
    QFETCH(QSize, toWidth);
    QFETCH(QSize, toHeight);
    QCOMPARE(ImageUtils::resizeImageToWidthKeepingRatio(side, size), toWidth);
    QCOMPARE(ImageUtils::resizeImageToHeightKeepingRatio(side, size), toHeight);
}

void tst_ImageUtils::retinaRect_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("rect");
    QTest::newRow("even") << QSize(40, 30) << QRect(0, 0, 20, 15);
    QTest::newRow("odd") << QSize(41, 1) << QRect(0, 0, 21, 1);
    QTest::newRow("null") << QSize(0, 0) << QRect(0, 0, 0, 0);
}

void tst_ImageUtils::retinaRect()
{
    QFETCH(QSize, size);
    QFETCH(QRect, rect);
    QCOMPARE(ImageUtils::retinaRect(QPixmap(size)), rect);
}

void tst_ImageUtils::squareImage_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("maximum");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<int>("side");
    QTest::newRow("square, fits") << QSize(40, 40) << QSize(40, 40) << false << 40;
    QTest::newRow("square, no maximum") << QSize(40, 40) << QSize() << false << 40;
    QTest::newRow("square, maximum of 0") << QSize(40, 40) << QSize(0, 10) << false << 40;
    QTest::newRow("square, height of 0") << QSize(40, 40) << QSize(10, 0) << false << 40;
    QTest::newRow("square, larger") << QSize(40, 40) << QSize(10, 10) << true << 10;
    QTest::newRow("square, only the width counts") << QSize(40, 40) << QSize(50, 10) << false << 40;
    QTest::newRow("landscape, fits") << QSize(60, 40) << QSize(40, 40) << true << 40;
    QTest::newRow("landscape, larger") << QSize(60, 40) << QSize(10, 10) << true << 10;
    QTest::newRow("portrait, larger") << QSize(40, 60) << QSize(10, 20) << true << 10;
    QTest::newRow("landscape, no maximum") << QSize(60, 40) << QSize() << true << 40;
    QTest::newRow("landscape, maximum of 0") << QSize(60, 40) << QSize(0, 0) << true << 40;
    QTest::newRow("null") << QSize(0, 0) << QSize(10, 10) << false << 0;
}

void tst_ImageUtils::squareImage()
{
    QFETCH(QSize, size);
    QFETCH(QSize, maximum);
    QFETCH(bool, changed);
    QFETCH(int, side);
    QImage image = size.isEmpty() ? QImage() : picture(size.width(), size.height());
    const QImage before = image;
    QCOMPARE(ImageUtils::resizeImageToSquare(image, maximum), changed);
    QCOMPARE(image.size(), QSize(side, side));
    if (!changed)
        QCOMPARE(image, before);
}

void tst_ImageUtils::squareImageContent()
{
    // 7 x 3: the square begins at (7 - 3) / 2 = 2.
    QImage image = picture(7, 3);
    const QImage expected = image.copy(2, 0, 3, 3);
    QVERIFY(ImageUtils::resizeImageToSquare(image, QSize(10, 10)));
    QCOMPARE(image, expected);
    QImage larger = picture(60, 40);
    const QImage scaled =
        larger.copy(10, 0, 40, 40).scaled(8, 8, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QVERIFY(ImageUtils::resizeImageToSquare(larger, QSize(8, 30)));
    QCOMPARE(larger, scaled);
}

void tst_ImageUtils::squarePixmap_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("transparent");
    QTest::addColumn<QRect>("place");
    QTest::newRow("landscape") << QSize(60, 40) << true << QRect(0, 10, 60, 40);
    QTest::newRow("portrait") << QSize(40, 61) << true << QRect(10, 0, 40, 61);
    QTest::newRow("not transparent") << QSize(60, 40) << false << QRect(0, 10, 60, 40);
}

void tst_ImageUtils::squarePixmap()
{
    QFETCH(QSize, size);
    QFETCH(bool, transparent);
    QFETCH(QRect, place);
    const int side = qMax(size.width(), size.height());
    for (const double density : {1.0, 2.0}) {
        const QImage image = picture(size.width(), size.height());
        QPixmap pixmap = QPixmap::fromImage(image);
        pixmap.setDevicePixelRatio(density);
        QVERIFY(ImageUtils::resizeImageToSquare(pixmap, transparent));
        QCOMPARE(pixmap.size(), QSize(side, side));
        QCOMPARE(pixmap.devicePixelRatio(), density);
        QImage result = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
        result.setDevicePixelRatio(1);
        QCOMPARE(result.copy(place).convertToFormat(QImage::Format_RGB32), image);
        const QRgb background = transparent ? qRgba(0, 0, 0, 0) : qRgb(255, 255, 255);
        QCOMPARE(result.pixel(side - 1, side - 1),
                 place.contains(side - 1, side - 1)
                     ? image.pixel(size.width() - 1, size.height() - 1)
                     : background);
        QVERIFY(!ImageUtils::resizeImageToSquare(pixmap, transparent));
    }
    QPixmap null;
    QVERIFY(!ImageUtils::resizeImageToSquare(null, transparent));
}

void tst_ImageUtils::labelPixmap_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("side");
    QTest::addColumn<QSize>("label");
    QTest::addColumn<QSize>("pixmap");
    QTest::newRow("landscape") << QSize(400, 300) << 100 << QSize(100, 75) << QSize(200, 150);
    QTest::newRow("portrait") << QSize(300, 400) << 100 << QSize(75, 100) << QSize(150, 200);
    QTest::newRow("enlarged") << QSize(40, 30) << 100 << QSize(100, 75) << QSize(200, 150);
    // 100 * 299 / 400 = 74.75: the label is 74 high, and so twice that is 148. 400 x 299 into
    // 200 x 148 is 197 x 148.
    QTest::newRow("uneven") << QSize(400, 299) << 100 << QSize(100, 74) << QSize(197, 148);
    QTest::newRow("0") << QSize(400, 300) << 0 << QSize(0, 0) << QSize(400, 300);
    QTest::newRow("negative") << QSize(400, 300) << -5 << QSize(0, 0) << QSize(400, 300);
    QTest::newRow("null") << QSize(0, 0) << 100 << QSize(100, 100) << QSize(0, 0);
    // A pixmap of twice the size of such a label would fit into no memory.
    QTest::newRow("immense") << QSize(40, 40) << 16000000 << QSize(16000000, 16000000)
                             << QSize(40, 40);
}

void tst_ImageUtils::labelPixmap()
{
    QFETCH(QSize, size);
    QFETCH(int, side);
    QFETCH(QSize, label);
    QFETCH(QSize, pixmap);
    QLabel widget;
    const QPixmap source =
        size.isEmpty() ? QPixmap() : QPixmap::fromImage(picture(size.width(), size.height()));
    LogCapture log;
    ImageUtils::setLabelPixmap(&widget, side, source);
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(widget.minimumSize(), label);
    QCOMPARE(widget.maximumSize(), label);
    QVERIFY(widget.hasScaledContents());
    QCOMPARE(widget.pixmap() ? widget.pixmap()->size() : QSize(0, 0), pixmap);
}

// --- Pixels --------------------------------------------------------------------------------------

void tst_ImageUtils::hasTransparentPixel_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<bool>("expected");
    const auto filled = [](QImage::Format format, const QColor& color) {
        QImage image(5, 4, format);
        image.fill(color);
        return image;
    };
    const QColor clear(0, 0, 0, 0);
    const QColor faint(255, 255, 255, 1);
    QTest::newRow("null") << QImage() << false;
    QTest::newRow("RGB32") << filled(QImage::Format_RGB32, Qt::black) << false;
    QImage padded(5, 4, QImage::Format_RGB32);
    padded.fill(0u); // its highest byte is no alpha
    QTest::newRow("RGB32, highest byte 0") << padded << false;
    QTest::newRow("RGB16") << filled(QImage::Format_RGB16, Qt::black) << false;
    QTest::newRow("grey") << filled(QImage::Format_Grayscale8, Qt::black) << false;
    for (const QImage::Format format :
         {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_RGBA8888,
          QImage::Format_RGBA8888_Premultiplied, QImage::Format_ARGB4444_Premultiplied,
          QImage::Format_A2RGB30_Premultiplied, QImage::Format_Alpha8}) {
        const QByteArray name = QByteArray::number(int(format));
        QTest::newRow((name + " transparent").constData()) << filled(format, clear) << true;
        QTest::newRow((name + " opaque").constData()) << filled(format, Qt::black) << false;
    }
    QTest::newRow("ARGB32, alpha 1") << filled(QImage::Format_ARGB32, faint) << false;
    QTest::newRow("premultiplied, alpha 1")
        << filled(QImage::Format_ARGB32_Premultiplied, faint) << false;
    QImage white(5, 4, QImage::Format_ARGB32);
    white.fill(0x00FFFFFFu);
    QTest::newRow("ARGB32, transparent white") << white << true;
    QImage indexed(5, 4, QImage::Format_Indexed8);
    indexed.setColorTable({qRgba(0, 0, 0, 0), qRgb(255, 0, 0)});
    indexed.fill(1);
    QTest::newRow("palette, transparent colour unused") << indexed << false;
    indexed.setPixel(4, 3, 0);
    QTest::newRow("palette, transparent colour used") << indexed << true;
}

void tst_ImageUtils::hasTransparentPixel()
{
    QFETCH(QImage, image);
    QFETCH(bool, expected);
    QCOMPARE(ImageUtils::hasTransparentPixel(image), expected);
}

void tst_ImageUtils::transparentPixelAnywhere()
{
    for (const QImage::Format format : {QImage::Format_ARGB32, QImage::Format_RGBA8888}) {
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < 17; ++x) {
                QImage image(17, 3, format);
                image.fill(Qt::white);
                image.setPixel(x, y, qRgba(0, 0, 0, 0));
                QVERIFY(ImageUtils::hasTransparentPixel(image));
            }
        }
    }
}

void tst_ImageUtils::applyOpacity_data()
{
    QTest::addColumn<double>("opacity");
    QTest::addColumn<int>("alpha");
    QTest::newRow("0") << 0.0 << 0;
    QTest::newRow("0.5") << 0.5 << 128; // 127.5 is rounded up
    QTest::newRow("0.25") << 0.25 << 64; // 63.75
    QTest::newRow("0.001") << 0.001 << 0; // 0.255
    QTest::newRow("0.002") << 0.002 << 1; // 0.51
    QTest::newRow("just below 1") << 0.9999 << 255;
    QTest::newRow("negative") << -0.5 << 0;
    QTest::newRow("very negative") << -1e300 << 0;
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 0;
}

void tst_ImageUtils::applyOpacity()
{
    QFETCH(double, opacity);
    QFETCH(int, alpha);
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(QColor(255, 0, 0));
    QVERIFY(ImageUtils::applyOpacity(image, opacity));
    QCOMPARE(int(image.format()), int(QImage::Format_ARGB32_Premultiplied));
    QCOMPARE(image.size(), QSize(3, 2));
    for (int x = 0; x < 3; ++x)
        QCOMPARE(reinterpret_cast<const QRgb*>(image.constScanLine(1))[x],
                 qRgba(alpha, 0, 0, alpha));
}

void tst_ImageUtils::applyOpacityUnchanged_data()
{
    QTest::addColumn<double>("opacity");
    QTest::newRow("1") << 1.0;
    QTest::newRow("2") << 2.0;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
}

void tst_ImageUtils::applyOpacityUnchanged()
{
    QFETCH(double, opacity);
    QImage image = picture(4, 3);
    const QImage before = image;
    QVERIFY(ImageUtils::applyOpacity(image, opacity));
    QCOMPARE(image, before);
    QCOMPARE(image.format(), before.format());
    QPixmap pixmap = QPixmap::fromImage(before);
    QVERIFY(ImageUtils::applyOpacity(pixmap, opacity));
    QCOMPARE(pixmap.toImage().convertToFormat(QImage::Format_RGB32), before);
}

void tst_ImageUtils::applyOpacityMultiplies()
{
    QImage image(1, 1, QImage::Format_ARGB32);
    image.fill(qRgba(255, 255, 255, 128));
    QVERIFY(ImageUtils::applyOpacity(image, 0.5));
    QCOMPARE(qAlpha(image.pixel(0, 0)), 64); // 128 * 128 / 255 = 64.3
}

void tst_ImageUtils::applyOpacityNull()
{
    LogCapture log;
    QImage image;
    QVERIFY(ImageUtils::applyOpacity(image, 0.5));
    QVERIFY(image.isNull());
    QPixmap pixmap;
    QVERIFY(ImageUtils::applyOpacity(pixmap, 0.5));
    QVERIFY(pixmap.isNull());
    QCOMPARE(log.lines(), QStringList());
}

void tst_ImageUtils::applyOpacityPixmap()
{
    QPixmap pixmap(4, 3);
    pixmap.fill(Qt::red);
    QVERIFY(ImageUtils::applyOpacity(pixmap, 0.5));
    QCOMPARE(pixmap.size(), QSize(4, 3));
    QCOMPARE(colorAt(pixmap.toImage(), 3, 2), qRgba(255, 0, 0, 128));
}

void tst_ImageUtils::transparentPixmap_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<int>("opacity");
    QTest::addColumn<QRgb>("pixel");
    QTest::addColumn<bool>("null");
    QTest::newRow("opacity 0") << QColor(Qt::red) << 0 << QRgb() << true;
    QTest::newRow("opacity -1") << QColor(Qt::red) << -1 << QRgb() << true;
    QTest::newRow("opacity 101") << QColor(Qt::red) << 101 << QRgb() << true;
    QTest::newRow("opacity 1 changes nothing") << QColor(Qt::red) << 1 << qRgb(255, 0, 0) << false;
    QTest::newRow("opacity 50 changes nothing")
        << QColor(Qt::red) << 50 << qRgb(255, 0, 0) << false;
    QTest::newRow("opacity 100") << QColor(Qt::red) << 100 << qRgb(255, 0, 0) << false;
    QTest::newRow("invalid colour") << QColor() << 50 << qRgba(0, 0, 0, 0) << false;
    QTest::newRow("colour with alpha")
        << QColor(255, 0, 0, 51) << 50 << qRgba(255, 0, 0, 51) << false;
}

void tst_ImageUtils::transparentPixmap()
{
    QFETCH(QColor, color);
    QFETCH(int, opacity);
    QFETCH(QRgb, pixel);
    QFETCH(bool, null);
    const QImage canvas = ImageUtils::createTransparentPixmap(QImage(), color, opacity);
    QCOMPARE(canvas.isNull(), null);
    if (null)
        return;
    QCOMPARE(canvas.size(), QSize(20, 20));
    QCOMPARE(colorAt(canvas, 0, 0), pixel);
    QCOMPARE(colorAt(canvas, 19, 19), pixel);
}

void tst_ImageUtils::transparentPixmapDrawsImage()
{
    QImage image(4, 3, QImage::Format_ARGB32);
    image.fill(qRgba(0, 0, 0, 0));
    image.setPixel(1, 2, qRgb(0, 0, 255));
    for (const double density : {1.0, 2.0}) {
        image.setDevicePixelRatio(density);
        const QImage canvas = ImageUtils::createTransparentPixmap(image, Qt::red, 50);
        QCOMPARE(canvas.size(), QSize(4, 3));
        QCOMPARE(colorAt(canvas, 0, 0), qRgb(255, 0, 0));
        QCOMPARE(colorAt(canvas, 1, 2), qRgb(0, 0, 255));
        QCOMPARE(colorAt(canvas, 3, 2), qRgb(255, 0, 0));
    }
    QVERIFY(ImageUtils::createTransparentPixmap(image, Qt::red, 0).isNull());
}

void tst_ImageUtils::gray_data()
{
    QTest::addColumn<QRgb>("color");
    QTest::addColumn<QRgb>("expected");
    QTest::newRow("black") << qRgb(0, 0, 0) << qRgb(0, 0, 0);
    QTest::newRow("white") << qRgb(255, 255, 255) << qRgb(255, 255, 255);
    QTest::newRow("red") << qRgb(255, 0, 0) << qRgb(87, 87, 87); // 2805 / 32 = 87.6
    QTest::newRow("green") << qRgb(0, 255, 0) << qRgb(127, 127, 127); // 4080 / 32 = 127.5
    QTest::newRow("blue") << qRgb(0, 0, 255) << qRgb(39, 39, 39); // 1275 / 32 = 39.8
    QTest::newRow("mixed") << qRgb(10, 20, 30) << qRgb(18, 18, 18); // 580 / 32 = 18.1
    QTest::newRow("with alpha") << qRgba(255, 0, 0, 100) << qRgba(87, 87, 87, 100);
    QTest::newRow("transparent") << qRgba(255, 0, 0, 0) << qRgba(87, 87, 87, 0);
}

void tst_ImageUtils::gray()
{
    QFETCH(QRgb, color);
    QFETCH(QRgb, expected);
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(color);
    QImage result = ImageUtils::toGray(image);
    QCOMPARE(int(result.format()), int(QImage::Format_ARGB32));
    QCOMPARE(result.size(), QSize(3, 2));
    QCOMPARE(result.pixel(2, 1), expected);
    QCOMPARE(image.pixel(2, 1), color);
    if (qAlpha(color) == 255) {
        for (const QImage::Format format : {QImage::Format_RGB32, QImage::Format_RGB888}) {
            result = ImageUtils::toGray(image.convertToFormat(format));
            QCOMPARE(int(result.format()), int(QImage::Format_RGB32));
            QCOMPARE(result.pixel(0, 0), expected);
        }
    }
    result = ImageUtils::toGray(image.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    QCOMPARE(int(result.format()), int(QImage::Format_ARGB32_Premultiplied));
    QCOMPARE(result.pixel(0, 0), qPremultiply(expected));
    QVERIFY(ImageUtils::toGray(QImage()).isNull());
}

void tst_ImageUtils::grayPixmap()
{
    QPixmap pixmap(3, 2);
    pixmap.fill(Qt::green);
    const QPixmap result = ImageUtils::toGray(pixmap);
    QCOMPARE(result.size(), QSize(3, 2));
    QCOMPARE(result.toImage().pixel(2, 1), qRgb(127, 127, 127));
    QVERIFY(ImageUtils::toGray(QPixmap()).isNull());
}

void tst_ImageUtils::colorize_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<int>("alpha"); // of the pixmap
    QTest::addColumn<QRgb>("expected");
    QTest::newRow("opaque") << QColor(255, 0, 0) << 255 << qRgb(255, 0, 0);
    QTest::newRow("nothing there") << QColor(255, 0, 0) << 0 << qRgba(0, 0, 0, 0);
    QTest::newRow("half there") << QColor(255, 0, 0) << 128 << qRgba(255, 0, 0, 128);
    QTest::newRow("colour with alpha") << QColor(255, 0, 0, 51) << 255 << qRgba(255, 0, 0, 51);
    QTest::newRow("both") << QColor(255, 0, 0, 128) << 128 << qRgba(255, 0, 0, 64);
    QTest::newRow("transparent colour") << QColor(255, 0, 0, 0) << 255 << qRgba(0, 0, 0, 0);
}

void tst_ImageUtils::colorize()
{
    QFETCH(QColor, color);
    QFETCH(int, alpha);
    QFETCH(QRgb, expected);
    QPixmap pixmap(4, 3);
    if (alpha == 255)
        pixmap.fill(Qt::blue); // a pixmap without an alpha channel
    else
        pixmap.fill(QColor(0, 0, 255, alpha));
    const QPixmap copy = ImageUtils::colorized(pixmap, color);
    QCOMPARE(colorAt(copy.toImage(), 3, 2), expected);
    QCOMPARE(qAlpha(pixmap.toImage().pixel(3, 2)), alpha);
    ImageUtils::colorize(pixmap, color);
    QCOMPARE(pixmap.toImage(), copy.toImage());
    QCOMPARE(pixmap.size(), QSize(4, 3));
}

void tst_ImageUtils::colorizeNull()
{
    LogCapture log;
    QPixmap pixmap;
    ImageUtils::colorize(pixmap, Qt::red);
    QVERIFY(pixmap.isNull());
    QVERIFY(ImageUtils::colorized(QPixmap(), Qt::red).isNull());
    QCOMPARE(log.lines(), QStringList());
}

QTEST_MAIN(tst_ImageUtils)
#include "tst_ImageUtils.moc"

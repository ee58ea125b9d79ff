// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The functions of ImageUtils that write files: copyImageFile() and writeProgressiveImage().

#define QT_STATICPLUGIN // the image formats of this test are part of the program

#include "ImageUtils.h"

#include "Columns.h"
#include "FileLimit.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "Sandbox.h"
#include "TestPictures.h"

#include <QImageIOPlugin>
#include <QImageReader>
#include <QImageWriter>
#include <QtPlugin>
#include <QtTest>

#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
#include <QColorSpace>
#endif

#include <limits>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

// The image formats of this test

/// "hollow" reads every file as an empty picture, "readonly" as a red one; "deep" announces a
/// picture of 20,000 x 20,000 pixels with 16 bits per channel. None of them can be written.
class OddFormat : public QImageIOHandler
{
public:
    static int reads; // the pictures read by all handlers

    bool canRead() const override { return true; }
    bool read(QImage* image) override
    {
        ++reads;
        *image = format() == "hollow" ? QImage() : QImage(40, 30, QImage::Format_RGB32);
        image->fill(Qt::red);
        return true;
    }
    bool supportsOption(ImageOption option) const override
    {
        return format() == "deep" && (option == Size || option == ImageFormat);
    }
    QVariant option(ImageOption option) const override
    {
#if QT_VERSION >= QT_VERSION_CHECK(5, 12, 0)
        if (option == ImageFormat)
            return int(QImage::Format_RGBA64);
#endif
        return option == Size ? QVariant(QSize(20000, 20000)) : QVariant();
    }
};

int OddFormat::reads = 0;

class OddFormatPlugin : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "support/oddformats.json")
public:
    Capabilities capabilities(QIODevice*, const QByteArray& format) const override
    {
        return format == "hollow" || format == "readonly" || format == "deep" ? CanRead
                                                                              : Capabilities();
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

namespace {

const ImageUtils::OptionsImageCopy noOption;

/// The names of all entries of a folder, including hidden ones.
QStringList namesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                  | QDir::NoDotAndDotDot);
}

/// The records of the library only: image readers print their own warnings.
QStringList ownLines(const LogCapture& log)
{
    return log.lines().filter(QStringLiteral(" orvautils "));
}

/// The peak memory of the process in bytes; 0 if the system does not report it.
qint64 mostMemory()
{
#ifdef Q_OS_LINUX
    rusage usage;
    return getrusage(RUSAGE_SELF, &usage) == 0 ? qint64(usage.ru_maxrss) * 1024 : 0;
#else
    return 0;
#endif
}

QString warning(const QString& text)
{
    return QStringLiteral("warning orvautils ImageUtils copyImageFile: ") + text;
}

QString critical(const QString& text)
{
    return QStringLiteral("critical orvautils ImageUtils copyImageFile: ") + text;
}

/// A GIF of 2 x 1 pixels.
QByteArray smallGif()
{
    return QByteArray::fromHex("47494638396102000100800100ff000000ff00"
                               "21f90400010000002c0000000002000100000202440a003b");
}

const QString photosDir = QStringLiteral(ORVAUTILS_PHOTOS_DIR);

} // namespace

Q_DECLARE_METATYPE(ImageUtils::OptionsImageCopy)

class tst_ImageUtilsCopy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void writeProgressive();
    void writeProgressiveQualityIsCompression_data();
    void writeProgressiveQualityIsCompression();
    void writeProgressiveOtherFormats();
    void writeProgressiveFailure_data();
    void writeProgressiveFailure();
    void writeProgressiveKeepsOldFile();
    void writeProgressiveKeepsLinkAndPermissions();
    void writeProgressiveInReadOnlyFolder();
    void writeProgressiveIntoDevice();

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
    void invalidMaximumOfGif();
    void unreadableSource_data();
    void unreadableSource();
    void fileScheme();
    void createsFolders();
    void pathsWithNul();
    void folderCannotBeCreated();
    void failedCopyIsLogged();
    void emptyPicture();
    void emptyPictureTurned();
    void formatThatCannotBeWritten();
    void cannotBeScaled();
    void truncatedJpeg();
    void hostileHeader_data();
    void hostileHeader();
    void endlessJpeg_data();
    void endlessJpeg();
    void deepPixelsCount();
    void cmyk();
    void turningKeepsProfile_data();
    void turningKeepsProfile();

    void ontoItself_data();
    void ontoItself();
    void ontoLinkToSource();
    void ontoHardLinkOfSource();
    void sourceIsLinkToDestination();
    void ontoDanglingLink();
    void ontoReadOnlyFile();
    void ontoFolder();
    void intoReadOnlyFolder_data();
    void intoReadOnlyFolder();
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

private:
    QString path(const char* name) const { return (*mSandbox)(QString::fromUtf8(name)); }

    QScopedPointer<Sandbox> mSandbox;
};

void tst_ImageUtilsCopy::init()
{
    mSandbox.reset(new Sandbox);
}

void tst_ImageUtilsCopy::cleanup()
{
    mSandbox.reset();
}

// writeProgressiveImage

void tst_ImageUtilsCopy::writeProgressive()
{
    const QImage image = picture(60, 40);
    LogCapture log;
    QVERIFY(ImageUtils::writeProgressiveImage(image, path("a.jpg"), "jpeg", 50));
    QCOMPARE(log.lines(), QStringList());
    const QByteArray bytes = contentOf(path("a.jpg"));
    QVERIFY(isProgressive(bytes));
    QVERIFY(psnr(QImage::fromData(bytes), image) > 30);
    QCOMPARE(namesIn(mSandbox->root()), QStringList(QStringLiteral("a.jpg")));
}

void tst_ImageUtilsCopy::writeProgressiveQualityIsCompression_data()
{
    const auto row = columns<int>("quality");
    row("negative", -1);
    row("0", 0);
    row("10", 10);
    row("85", 85);
    row("100", 100);
}

void tst_ImageUtilsCopy::writeProgressiveQualityIsCompression()
{
    QFETCH(int, quality);
    QVERIFY(ImageUtils::writeProgressiveImage(picture(16, 16), path("a.jpg"), "jpeg", quality));
    QCOMPARE(quantisation(contentOf(path("a.jpg"))), quantisationOf(75));
}

void tst_ImageUtilsCopy::writeProgressiveOtherFormats()
{
    const QImage image = picture(60, 40);
    QVERIFY(ImageUtils::writeProgressiveImage(image, path("a.dat"), "png", 80));
    QCOMPARE(QImage(path("a.dat"), "png").convertToFormat(QImage::Format_RGB32), image);
    // Without a format the suffix decides, as with any image writer for files.
    QVERIFY(ImageUtils::writeProgressiveImage(image, path("a.JPG"), QByteArray(), 80));
    QVERIFY(isProgressive(contentOf(path("a.JPG"))));
}

void tst_ImageUtilsCopy::writeProgressiveFailure_data()
{
    const auto row = columns<QImage, QString, QByteArray>("image", "name", "format");
    row("null image", QImage(), "a.jpg", "jpeg");
    row("no such format", picture(6, 4), "a.jpg", "nonsense");
    row("no such folder", picture(6, 4), "b/a.jpg", "jpeg");
}

void tst_ImageUtilsCopy::writeProgressiveFailure()
{
    QFETCH(QImage, image);
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    const QString target = (*mSandbox)(name);
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
    QCOMPARE(namesIn(mSandbox->root()), QStringList());
}

void tst_ImageUtilsCopy::writeProgressiveKeepsOldFile()
{
    SKIP_ON_WINDOWS("there is no limit of files and their size");
    writeFile(path("a.jpg"), "the only copy");
    LogCapture log;
    QVERIFY(!ImageUtils::writeProgressiveImage(picture(6, 4), path("a.jpg"), "nonsense", 80));
    QCOMPARE(contentOf(path("a.jpg")), QByteArray("the only copy"));
#ifdef Q_OS_UNIX
    {
        const FileLimit full(RLIMIT_FSIZE, 500);
        QVERIFY(!ImageUtils::writeProgressiveImage(picture(600, 400), path("a.jpg"), "jpeg", 80));
        QVERIFY(!ImageUtils::writeProgressiveImage(picture(60, 40), path("a.jpg"), "jpeg", 80));
    }
    QCOMPARE(contentOf(path("a.jpg")), QByteArray("the only copy"));
    QCOMPARE(ownLines(log).size(), 3);
#endif
    QCOMPARE(namesIn(mSandbox->root()), QStringList(QStringLiteral("a.jpg")));
}

void tst_ImageUtilsCopy::writeProgressiveKeepsLinkAndPermissions()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    changeMode(mSandbox->file(QStringLiteral("a.jpg"), "old"), 0604);
    const QString link = mSandbox->link(QStringLiteral("link.jpg"), QStringLiteral("a.jpg"));
    QVERIFY(ImageUtils::writeProgressiveImage(picture(60, 40), link, "jpeg", 80));
    QVERIFY(QFileInfo(link).isSymLink());
    QVERIFY(isProgressive(contentOf(path("a.jpg"))));
    struct stat status;
    QCOMPARE(stat(QFile::encodeName(path("a.jpg")).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 07777), 0604);
}

/// A folder that accepts no new file: the old file is overwritten, but only if it is writable.
void tst_ImageUtilsCopy::writeProgressiveInReadOnlyFolder()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    changeMode(mSandbox->file(QStringLiteral("site/a.jpg"), "old"), 0666);
    changeMode(mSandbox->file(QStringLiteral("site/b.jpg"), "old"), 0444);
    mSandbox->lock(path("site"), 0555);
    const OrdinaryUser user;
    LogCapture log;
    QVERIFY(!ImageUtils::writeProgressiveImage(picture(60, 40), path("site/a.jpg"), "odd", 80));
    QCOMPARE(contentOf(path("site/a.jpg")), QByteArray("old"));
    QVERIFY(!ImageUtils::writeProgressiveImage(picture(60, 40), path("site/b.jpg"), "jpeg", 80));
    QVERIFY(!ImageUtils::writeProgressiveImage(picture(60, 40), path("site/c.jpg"), "jpeg", 80));
    QCOMPARE(contentOf(path("site/b.jpg")), QByteArray("old"));
    const QString record = QStringLiteral(
        "warning orvautils ImageUtils writeProgressiveImage: can't save writeProgressiveImage  %1  "
        "errorString= %2  size= QSize(60, 40)");
    QCOMPARE(ownLines(log).mid(1),
             QStringList({record.arg(path("site/b.jpg"), QStringLiteral("Permission denied")),
                          record.arg(path("site/c.jpg"),
                                     QStringLiteral("Cannot open device for writing: "
                                                    "Permission denied"))}));
    // The picture is first completed in the folder for temporary files.
    const QByteArray temporary = qgetenv("TMPDIR");
    qputenv("TMPDIR", QFile::encodeName(path("none")));
    const bool isWritten =
        ImageUtils::writeProgressiveImage(picture(60, 40), path("site/a.jpg"), "jpeg", 80);
    if (temporary.isNull())
        qunsetenv("TMPDIR");
    else
        qputenv("TMPDIR", temporary);
    QVERIFY(!isWritten);
    QCOMPARE(contentOf(path("site/a.jpg")), QByteArray("old"));
    QVERIFY(ImageUtils::writeProgressiveImage(picture(60, 40), path("site/a.jpg"), "jpeg", 80));
    QVERIFY(isProgressive(contentOf(path("site/a.jpg"))));
    QCOMPARE(namesIn(path("site")),
             QStringList({QStringLiteral("a.jpg"), QStringLiteral("b.jpg")}));
}

/// A device is written to, not replaced.
void tst_ImageUtilsCopy::writeProgressiveIntoDevice()
{
    SKIP_ON_WINDOWS("there are no devices in folders");
    const QString none = QStringLiteral("/dev/null");
    const QString full = QStringLiteral("/dev/full");
    if (!QFileInfo(full).isWritable())
        QSKIP("there is no device that is always full");
    QVERIFY(ImageUtils::writeProgressiveImage(picture(60, 40), none, "jpeg", 80));
    LogCapture log;
    QVERIFY(!ImageUtils::writeProgressiveImage(picture(60, 40), full, "jpeg", 80));
    QCOMPARE(ownLines(log).size(), 1);
    QVERIFY(ownLines(log).first().contains(QStringLiteral("No space left on device")));
    QVERIFY(!QFileInfo(none).isFile() && !QFileInfo(full).isFile());
}

// copyImageFile: results

void tst_ImageUtilsCopy::copyOrReencode_data()
{
    using I = ImageUtils;
    using Options = ImageUtils::OptionsImageCopy;
    // size: invalid: copied byte for byte
    const auto row = columns<int, bool, QSize, ImageUtils::OptionsImageCopy, QSize, bool>(
        "orientation", "keepAspectRatio", "maximum", "options", "size", "progressive");
    const QSize copied;
    const QSize large(1600, 1600);

    // The source is 400 x 300.
    row("smaller than the maximum", 0, true, large, noOption, copied, false);
    row("exactly the maximum", 0, true, QSize(400, 300), noOption, copied, false);
    row("one pixel too wide", 0, true, QSize(399, 300), noOption, QSize(399, 299), false);
    row("one pixel too tall", 0, true, QSize(400, 299), noOption, QSize(398, 299), false);
    row("too large", 0, true, QSize(200, 200), noOption, QSize(200, 150), false);
    row("free aspect ratio, small", 0, false, large, noOption, QSize(400, 300), false);
    row("free aspect ratio", 0, false, QSize(200, 200), noOption, QSize(200, 200), false);
    row("free aspect ratio enlarges the side that fits", 0, false, QSize(200, 900), noOption,
        QSize(200, 900), false);

    row("progressive, small", 0, true, large, Options(I::ProgressiveJpeg), QSize(400, 300), true);
    row("progressive only when re-encoded, small", 0, true, large,
        (I::ProgressiveJpeg | I::ProgressiveOnlyWhenReencoded), copied, false);
    row("progressive only when re-encoded, too large", 0, true, QSize(200, 200),
        (I::ProgressiveJpeg | I::ProgressiveOnlyWhenReencoded), QSize(200, 150), true);
    row("progressive only when re-encoded, turned", 6, true, large,
        (I::ProgressiveJpeg | I::ProgressiveOnlyWhenReencoded | I::UseExifRotation),
        QSize(300, 400), true);
    row("only when re-encoded alone, small", 0, true, large,
        Options(I::ProgressiveOnlyWhenReencoded), copied, false);
    row("only when re-encoded alone, too large", 0, true, QSize(200, 200),
        Options(I::ProgressiveOnlyWhenReencoded), QSize(200, 150), false);

    row("no resize, too large", 0, true, QSize(200, 200), Options(I::NoResize), copied, false);
    row("no resize, progressive", 0, true, QSize(200, 200), (I::NoResize | I::ProgressiveJpeg),
        copied, false);
    row("no resize, free aspect ratio", 0, false, QSize(200, 200), Options(I::NoResize), copied,
        false);
    row("no resize, everything else but a rotation", 6, false, QSize(200, 200),
        (I::NoResize | I::ProgressiveJpeg | I::ExpandToFill | I::Quality85 | I::Retina), copied,
        false);
    row("no resize, turned", 6, true, QSize(200, 200), (I::NoResize | I::UseExifRotation),
        QSize(300, 400), false);
    row("no resize, turned, progressive", 8, true, QSize(200, 200),
        (I::NoResize | I::UseExifRotation | I::ProgressiveJpeg), QSize(300, 400), true);
    row("no resize, no orientation, progressive", 1, true, QSize(200, 200),
        (I::NoResize | I::UseExifRotation | I::ProgressiveJpeg), copied, false);

    row("orientation not asked for", 6, true, large, noOption, copied, false);
    const QSize upright[] = {copied, copied,          copied, QSize(400, 300), copied,
                             copied, QSize(300, 400), copied, QSize(300, 400)};
    for (int orientation = 0; orientation <= 8; ++orientation) {
        row(qPrintable(QStringLiteral("orientation %1").arg(orientation)), orientation, true, large,
            Options(I::UseExifRotation), upright[orientation], false);
    }
    row("the maximum is that of the picture as it is stored", 6, true, QSize(200, 200),
        Options(I::UseExifRotation), QSize(150, 200), false);
    row("the maximum is turned with the picture", 6, true, QSize(100, 300),
        Options(I::UseExifRotation), QSize(75, 100), false);
    row("too large, mirrored orientation", 5, true, QSize(200, 200), Options(I::UseExifRotation),
        QSize(200, 150), false);

    row("expand", 0, true, QSize(200, 200), Options(I::ExpandToFill), QSize(266, 200), false);
    row("expand wins over the free aspect ratio", 0, false, QSize(200, 200),
        Options(I::ExpandToFill), QSize(266, 200), false);
    row("expand, small", 0, true, large, Options(I::ExpandToFill), copied, false);
    row("expand enlarges when one side exceeds", 0, true, QSize(200, 900), Options(I::ExpandToFill),
        QSize(1200, 900), false);

    row("retina", 0, true, QSize(100, 100), Options(I::Retina), QSize(200, 150), false);
    row("retina enlarges", 0, true, QSize(300, 300), Options(I::Retina), QSize(600, 450), false);
    row("retina, small", 0, true, QSize(400, 300), Options(I::Retina), copied, false);
    row("retina, expand", 0, true, QSize(100, 100), (I::Retina | I::ExpandToFill), QSize(266, 200),
        false);
    row("retina, free aspect ratio", 0, false, QSize(100, 50), Options(I::Retina), QSize(200, 100),
        false);

    // 400 x 300 into 999999999 x 1 is 1 x 1.
    row("height 0 gives one pixel", 0, true, QSize(100, 0), noOption, QSize(1, 1), false);
    row("no side becomes 0", 0, true, QSize(1, 1600), noOption, QSize(1, 1), false);
}

void tst_ImageUtilsCopy::copyOrReencode()
{
    QFETCH(int, orientation);
    QFETCH(bool, keepAspectRatio);
    QFETCH(QSize, maximum);
    QFETCH(ImageUtils::OptionsImageCopy, options);
    QFETCH(QSize, size);
    QFETCH(bool, progressive);

    const QByteArray source = jpeg(picture(400, 300), orientation);
    writeFile(path("source.jpg"), source);
    LogCapture log;
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), keepAspectRatio,
                                      maximum, options, 70));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(contentOf(path("source.jpg")), source);
    const QByteArray copy = contentOf(path("copy.jpg"));
    if (!size.isValid()) {
        QCOMPARE(copy, source);
    } else {
        QVERIFY(copy != source);
        QCOMPARE(QImage::fromData(copy, "jpeg").size(), size);
        QCOMPARE(isProgressive(copy), progressive);
        QVERIFY(!copy.contains("Exif"));
    }
    QCOMPARE(namesIn(mSandbox->root()),
             QStringList({QStringLiteral("copy.jpg"), QStringLiteral("source.jpg")}));
}

void tst_ImageUtilsCopy::pixelsOfReencoding_data()
{
    const auto row = columns<int, int>("orientation", "angle");
    row("1", 1, 0);
    row("3", 3, 180);
    row("6", 6, 90);
    row("8", 8, -90);
}

void tst_ImageUtilsCopy::pixelsOfReencoding()
{
    QFETCH(int, orientation);
    QFETCH(int, angle);
    writeFile(path("source.jpg"), jpeg(picture(400, 300), orientation));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(300, 300),
                                      ImageUtils::UseExifRotation, 100));
    QTransform turn;
    turn.rotate(angle);
    const QImage expected = picture(300, 225).transformed(turn);
    QVERIFY2(psnr(QImage(path("copy.jpg")), expected) > 35,
             qPrintable(QString::number(psnr(QImage(path("copy.jpg")), expected))));
}

void tst_ImageUtilsCopy::quality_data()
{
    using I = ImageUtils;
    using Options = ImageUtils::OptionsImageCopy;
    const auto row =
        columns<ImageUtils::OptionsImageCopy, int, int>("options", "quality", "expected");
    row("argument", noOption, 30, 30);
    row("0", noOption, 0, 0);
    row("100", noOption, 100, 100);
    row("beyond 100", noOption, 400, 100);
    row("negative", noOption, -1, 80);
    row("very negative", noOption, -1000, 80);
    row("85", Options(I::Quality85), 30, 85);
    row("85 wins over negative", Options(I::Quality85), -1, 85);
    row("progressive", Options(I::ProgressiveJpeg), 30, 75);
    row("progressive 85", (I::ProgressiveJpeg | I::Quality85), 30, 75);
}

void tst_ImageUtilsCopy::quality()
{
    QFETCH(ImageUtils::OptionsImageCopy, options);
    QFETCH(int, quality);
    QFETCH(int, expected);
    writeFile(path("source.jpg"), jpeg(picture(400, 300)));
    LogCapture log;
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(100, 100),
                                      options, quality));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(quantisation(contentOf(path("copy.jpg"))), quantisationOf(expected));
}

void tst_ImageUtilsCopy::formats_data()
{
    // format: empty: copied byte for byte
    const auto row =
        columns<QByteArray, QString, QByteArray, QSize>("bytes", "name", "format", "size");

    const QImage image = picture(400, 300);
    QImage transparent = image.convertToFormat(QImage::Format_ARGB32);
    transparent.setPixel(0, 0, qRgba(0, 0, 0, 0));
    const QByteArray gif = smallGif();
    const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='400' height='300'>"
                           "<rect width='9' height='9'/></svg>";
    row("gif", gif, "a.gif", QByteArray(), QSize());
    row("gif named jpg", gif, "a.jpg", QByteArray(), QSize());
    row("svg", svg, "a.svg", QByteArray(), QSize());
    row("png", encoded(image, "png"), "a.png", "png", QSize(100, 75));
    row("png with alpha", encoded(transparent, "png"), "a.png", "png", QSize(100, 75));
#if QT_VERSION >= QT_VERSION_CHECK(5, 12, 0)
    row("png of 16 bits", encoded(image.convertToFormat(QImage::Format_RGBX64), "png"), "a.png",
        "png", QSize(100, 75));
#endif
    row("png with a palette", encoded(image.convertToFormat(QImage::Format_Indexed8), "png"),
        "a.png", "png", QSize(100, 75));
    row("jpeg named png", jpeg(image), "a.png", "jpeg", QSize(100, 75));
    row("png named jpg", encoded(image, "png"), "a.jpg", "png", QSize(100, 75));
    row("jpeg without a suffix", jpeg(image), "a", "jpeg", QSize(100, 75));
    row("grey jpeg", jpeg(image.convertToFormat(QImage::Format_Grayscale8)), "a.jpg", "jpeg",
        QSize(100, 75));
    row("bmp", encoded(image, "bmp"), "a.bmp", "bmp", QSize(100, 75));
    row("ppm", encoded(image, "ppm"), "a.ppm", "ppm", QSize(100, 75));
}

void tst_ImageUtilsCopy::formats()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    QFETCH(QSize, size);
    const QString source = (*mSandbox)(name);
    const QString copy = path("copy.jpg"); // the suffix is ignored
    writeFile(source, bytes);
    const QImage whole(source);
    if (whole.isNull()) {
        SKIP_ON_WINDOWS("Qt is made there without its plugins for SVG, TIFF and WebP");
    }
    QVERIFY2(!whole.isNull(), "the image plugin for this format is missing");

    LogCapture log;
    QVERIFY(ImageUtils::copyImageFile(source, copy, false, QSize(100, 75),
                                      ImageUtils::ProgressiveJpeg | ImageUtils::UseExifRotation));
    QCOMPARE(ownLines(log), QStringList());
    if (format.isEmpty()) {
        QCOMPARE(contentOf(copy), bytes);
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

// copyImageFile: failures

void tst_ImageUtilsCopy::invalidMaximum_data()
{
    const auto row = columns<QSize, QSize, QString>("picture", "maximum", "shown");
    const QSize landscape(400, 300);
    const QSize portrait(300, 400);
    row("both 0", landscape, QSize(0, 0), "QSize(-1, -1)");
    row("invalid", landscape, QSize(), "QSize(-1, -1)");
    row("negative width", landscape, QSize(-4, 100), "QSize(-4, 100)");
    row("negative height", landscape, QSize(100, -4), "QSize(100, -4)");
    // 300 x 400 into 999999999 x 1, and 400 x 300 into 1 x 999999999, leave no pixel.
    row("height 0, portrait", portrait, QSize(100, 0), "QSize(0, 1)");
    row("width 0, landscape", landscape, QSize(0, 100), "QSize(1, 0)");
}

void tst_ImageUtilsCopy::invalidMaximum()
{
    QFETCH(QSize, picture);
    QFETCH(QSize, maximum);
    QFETCH(QString, shown);
    writeFile(path("source.jpg"), jpeg(::picture(picture.width(), picture.height())));
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, maximum,
                                       ImageUtils::NoResize));
    QCOMPARE(log.lines(),
             QStringList(
                 critical(QStringLiteral("copyImageFile maxSizeImage invalid !!  =  ") + shown)));
    QVERIFY(!QFile::exists(path("copy.jpg")));
}

/// The maximum size is checked before the format: it must be valid for what is always copied, too.
void tst_ImageUtilsCopy::invalidMaximumOfGif()
{
    writeFile(path("source.gif"), smallGif());
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.gif"), path("copy.gif"), true, QSize(0, 0),
                                       noOption));
    // 2 x 1 into 1 x 999999999 leaves no pixel: 1 x 0.
    QVERIFY(!ImageUtils::copyImageFile(path("source.gif"), path("copy.gif"), true, QSize(0, 9),
                                       noOption));
    QCOMPARE(ownLines(log),
             QStringList({critical(QStringLiteral("copyImageFile maxSizeImage invalid !!  =  "
                                                  "QSize(-1, -1)")),
                          critical(QStringLiteral("copyImageFile maxSizeImage invalid !!  =  "
                                                  "QSize(1, 0)"))}));
    QVERIFY(!QFile::exists(path("copy.gif")));
    // 2 x 1 into 999999999 x 1 is 2 x 1.
    QVERIFY(ImageUtils::copyImageFile(path("source.gif"), path("copy.gif"), true, QSize(9, 0),
                                      noOption));
    QCOMPARE(contentOf(path("copy.gif")), smallGif());
}

void tst_ImageUtilsCopy::unreadableSource_data()
{
    const auto row = columns<QByteArray>("bytes");
    row("text", "no picture");
    row("empty", QByteArray());
    row("missing", "missing");
}

void tst_ImageUtilsCopy::unreadableSource()
{
    QFETCH(QByteArray, bytes);
    if (bytes != "missing")
        writeFile(path("source.jpg"), bytes);
    writeFile(path("copy.jpg"), "old");
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(0, 0),
                                       noOption));
    // The format is checked before the maximum size.
    QCOMPARE(ownLines(log), QStringList(warning(QStringLiteral("importImageFile format null"))));
    QCOMPARE(contentOf(path("copy.jpg")), QByteArray("old"));
}

void tst_ImageUtilsCopy::fileScheme()
{
    const QByteArray bytes = jpeg(picture(400, 300), 6);
    writeFile(path("source.jpg"), bytes);
    const QString address = QStringLiteral("file://") + path("source.jpg");
    QVERIFY(ImageUtils::copyImageFile(address, path("same.jpg"), true, QSize(400, 400), noOption));
    QCOMPARE(contentOf(path("same.jpg")), bytes);
    QVERIFY(ImageUtils::copyImageFile(address, path("turned.jpg"), true, QSize(400, 400),
                                      ImageUtils::UseExifRotation));
    QCOMPARE(QImage(path("turned.jpg")).size(), QSize(300, 400));
}

void tst_ImageUtilsCopy::createsFolders()
{
    writeFile(path("source.jpg"), jpeg(picture(400, 300)));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("a/b/copy.jpg"), true,
                                      QSize(100, 100), noOption));
    QCOMPARE(QImage(path("a/b/copy.jpg")).size(), QSize(100, 75));
    // Also if the copy fails.
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("none.jpg"), path("c/copy.jpg"), true, QSize(100, 100),
                                       noOption));
    QVERIFY(QFileInfo(path("c")).isDir());
}

/// The system would end such a path at the NUL, and read or write another file.
void tst_ImageUtilsCopy::pathsWithNul()
{
    const QString nul = QChar() + QStringLiteral("x");
    const QString source = path("source.jpg");
    writeFile(source, jpeg(picture(400, 300)));
    LogCapture log;
    for (const int side : {100, 500}) { // re-encoded, and copied
        for (const QString& target : {source + nul, path("a") + nul + QStringLiteral("/b.jpg")})
            QVERIFY(!ImageUtils::copyImageFile(source, target, true, QSize(side, side), noOption));
        QVERIFY(!ImageUtils::copyImageFile(source + nul, path("b.jpg"), true, QSize(side, side),
                                           noOption));
    }
    QVERIFY(!ImageUtils::imageSize(source + nul).isValid());
    QCOMPARE(contentOf(source), jpeg(picture(400, 300)));
    QCOMPARE(namesIn(mSandbox->root()), QStringList(QStringLiteral("source.jpg")));
}

void tst_ImageUtilsCopy::folderCannotBeCreated()
{
    writeFile(path("source.jpg"), jpeg(picture(400, 300)));
    writeFile(path("file"), "in the way");
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("file/copy.jpg"), true,
                                       QSize(100, 100), noOption));
    QCOMPARE(
        ownLines(log).filter(QStringLiteral(" orvautils ImageUtils ")),
        QStringList(warning(QStringLiteral("importImageFile can't save  ") + path("file/copy.jpg")
                            + QStringLiteral(" jpeg QSize(100, 75) maxSizeImage= QSize(100, "
                                             "100)"))));
    QCOMPARE(contentOf(path("file")), QByteArray("in the way"));
}

void tst_ImageUtilsCopy::failedCopyIsLogged()
{
    writeFile(path("file"), "in the way");
    const QByteArray bytes = jpeg(picture(40, 30));
    writeFile(path("source.jpg"), bytes);
    LogCapture log;
    for (const auto options : {noOption, ImageUtils::OptionsImageCopy(ImageUtils::NoResize)}) {
        QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("file/copy.jpg"), true,
                                           QSize(100, 100), options));
        QCOMPARE(ownLines(log).filter(QStringLiteral(" orvautils ImageUtils ")).last(),
                 warning(QStringLiteral("FileUtils::forceCopy")));
    }
    QCOMPARE(ownLines(log).filter(QStringLiteral(" orvautils ImageUtils ")).size(), 2);
    QCOMPARE(contentOf(path("source.jpg")), bytes);

    // A GIF logs only what forceCopy() logs.
    writeFile(path("a.gif"), smallGif());
    LogCapture gifLog;
    QVERIFY(!ImageUtils::copyImageFile(path("a.gif"), path("file/copy.gif"), true, QSize(100, 100),
                                       noOption));
    QCOMPARE(ownLines(gifLog).filter(QStringLiteral(" orvautils ImageUtils ")), QStringList());
}

void tst_ImageUtilsCopy::emptyPicture()
{
    writeFile(path("source.hollow"), "x");
    writeFile(path("copy.jpg"), "old");
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.hollow"), path("copy.jpg"), false,
                                       QSize(100, 100), noOption));
    QCOMPARE(ownLines(log),
             QStringList({warning(QStringLiteral("copyImageFile img.size() =  QSize(0, 0)")),
                          warning(QStringLiteral("copyImageFile #3 img.size() =  QSize(0, 0)")),
                          warning(QStringLiteral("importImageFile can't save  ") + path("copy.jpg")
                                  + QStringLiteral(" hollow QSize(0, 0) maxSizeImage= QSize(100, "
                                                   "100)"))}));
    QCOMPARE(contentOf(path("copy.jpg")), QByteArray("old"));
}

void tst_ImageUtilsCopy::emptyPictureTurned()
{
    writeFile(path("source.hollow"), jpeg(picture(40, 30), 6));
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

void tst_ImageUtilsCopy::formatThatCannotBeWritten()
{
    const QByteArray source = "any";
    writeFile(path("source.readonly"), source);
    writeFile(path("copy.jpg"), "old");
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.readonly"), path("copy.jpg"), false,
                                       QSize(20, 0), ImageUtils::ProgressiveJpeg));
    // The size is unknown before the picture is loaded: -1 x -1 into 999999999 x 1 is 1 x 1.
    QCOMPARE(ownLines(log),
             QStringList(
                 {QStringLiteral("warning orvautils ImageUtils writeProgressiveImage: can't "
                                 "save writeProgressiveImage  ")
                      + path("copy.jpg")
                      + QStringLiteral("  errorString= Unsupported image format  size= "
                                       "QSize(1, 1)"),
                  warning(QStringLiteral("importImageFile can't save  ") + path("copy.jpg")
                          + QStringLiteral(" readonly QSize(1, 1) maxSizeImage= QSize(1, 1)"))}));
    QCOMPARE(contentOf(path("source.readonly")), source);
    QCOMPARE(contentOf(path("copy.jpg")), QByteArray("old"));
    QCOMPARE(namesIn(mSandbox->root()),
             QStringList({QStringLiteral("copy.jpg"), QStringLiteral("source.readonly")}));
}

void tst_ImageUtilsCopy::cannotBeScaled()
{
    const int most = std::numeric_limits<int>::max();
    const QByteArray source = jpeg(picture(400, 300));
    writeFile(path("source.jpg"), source);
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

void tst_ImageUtilsCopy::truncatedJpeg()
{
    const QByteArray whole = jpeg(landscape(800, 600, 0.6));
    for (const int part :
         {3, 20, 150, 400, 700, 2000, int(whole.size() / 2), int(whole.size() - 2)}) {
        const QByteArray bytes = whole.left(part);
        writeFile(path("source.jpg"), bytes);
        writeFile(path("copy.jpg"), "old");
        for (const int side : {100, 350, 500}) {
            LogCapture log;
            // The result depends on whether the image reader accepts the file.
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
        QCOMPARE(contentOf(path("source.jpg")), bytes);
        QCOMPARE(namesIn(mSandbox->root()),
                 QStringList({QStringLiteral("copy.jpg"), QStringLiteral("source.jpg")}));
    }
}

void tst_ImageUtilsCopy::hostileHeader_data()
{
    const auto row = columns<QByteArray, ImageUtils::OptionsImageCopy>("bytes", "options");

    // 60,000 x 60,000 pixels in very few bytes.
    QByteArray forgedJpeg = jpeg(picture(16, 16), 6);
    const int frame = int(forgedJpeg.indexOf("\xff\xc0"));
    QVERIFY(frame > 0);
    forgedJpeg.replace(frame + 5, 4, QByteArray::fromHex("ea60ea60"));
    row("jpeg, to be turned at full size", forgedJpeg,
        (ImageUtils::NoResize | ImageUtils::UseExifRotation));

    QByteArray png = encoded(picture(16, 16), "png");
    png.replace(16, 8, QByteArray::fromHex("0000ea600000ea60"));
    row("png, bad checksum", png, noOption);
    // The checksum of "IHDR", 60,000, 60,000, 8 bits, RGB.
    png.replace(24, 9,
                QByteArray::fromHex("0802000000")
                    + pngChecksum(png.mid(12, 12) + QByteArray::fromHex("0802000000")));
    row("png", png, noOption);
    row("ppm", "P6 60000 60000 255\nabc", noOption);

    // A text chunk of 1.5 GiB, of which only 8 bytes exist.
    const QByteArray endless =
        QByteArray::fromHex("60000000") + QByteArrayLiteral("iTXt") + QByteArray(8, 'x');
    png = encoded(picture(16, 16), "png");
    row("png, behind a text that is not there", png.left(33) + endless + png.mid(33), noOption);
    row("png, before a text that is not there", png.left(png.indexOf("IEND") - 4) + endless,
        noOption);
}

void tst_ImageUtilsCopy::hostileHeader()
{
    QFETCH(QByteArray, bytes);
    QFETCH(ImageUtils::OptionsImageCopy, options);
    writeFile(path("source.img"), bytes);
    LogCapture log;
    const qint64 before = mostMemory();
    QVERIFY(!ImageUtils::copyImageFile(path("source.img"), path("copy.jpg"), false, QSize(100, 100),
                                       options));
    QVERIFY(mostMemory() - before < 100000000);
    QCOMPARE(
        ownLines(log),
        QStringList(warning(QStringLiteral("importImageFile can't load  ") + path("source.img"))));
    QCOMPARE(namesIn(mSandbox->root()), QStringList(QStringLiteral("source.img")));
}

void tst_ImageUtilsCopy::endlessJpeg_data()
{
    // count: the segments in the whole file
    const auto row =
        columns<QByteArray, bool, int, bool>("piece", "behindPixels", "count", "loads");
    const QByteArray comment = QByteArray::fromHex("fffe0002");
    const QByteArray app1 = QByteArray::fromHex("ffe100074162636465");
    const QByteArray emptyScan = QByteArray::fromHex("ffda000801010000003f00");
    row("1,000 comments", comment, false, 1000, true);
    row("1,001 comments", comment, false, 1001, false);
    row("2 million comments", comment, false, 2000000, false);
    row("1,001 APP1", app1, false, 1001, false);
    row("a million APP1", app1, false, 1000000, false);
    row("1,001 scans", emptyScan, true, 1001, false);
    row("20,000 scans", emptyScan, true, 20000, false);
}

void tst_ImageUtilsCopy::endlessJpeg()
{
    QFETCH(QByteArray, piece);
    QFETCH(bool, behindPixels);
    QFETCH(int, count);
    QFETCH(bool, loads);
    // A JPEG written by Qt has nine segments: APP0, two quantisation tables, a frame, four Huffman
    // tables and a scan.
    QByteArray bytes = jpeg(picture(160, 120));
    const int place = int(behindPixels ? bytes.size() - 2 : 2);
    bytes.insert(place, piece.repeated(count - 9));
    writeFile(path("source.jpg"), bytes);
    // The scan is not part of the header.
    QCOMPARE(ImageUtils::imageSize(path("source.jpg")).isValid(), behindPixels || count <= 1001);
    QCOMPARE(ImageUtils::scaledPixmapFromFilepath(path("source.jpg"), QSize(40, 40)).isNull(),
             !loads);
    LogCapture log;
    QCOMPARE(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(40, 40)),
             loads);
    QCOMPARE(ownLines(log),
             loads ? QStringList()
                   : QStringList(warning(QStringLiteral("importImageFile can't load  ")
                                         + path("source.jpg"))));
    QCOMPARE(QFile::exists(path("copy.jpg")), loads);
}

void tst_ImageUtilsCopy::deepPixelsCount()
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 12, 0)
    // 1.6 GB with four bytes per pixel, but 3.2 GB with the eight that the reader announces.
    writeFile(path("source.deep"), "any");
    LogCapture log;
    const int reads = OddFormat::reads;
    QVERIFY(
        !ImageUtils::copyImageFile(path("source.deep"), path("copy.jpg"), false, QSize(100, 100)));
    QCOMPARE(OddFormat::reads, reads);
    QCOMPARE(
        ownLines(log),
        QStringList(warning(QStringLiteral("importImageFile can't load  ") + path("source.deep"))));
#endif
}

void tst_ImageUtilsCopy::turningKeepsProfile_data()
{
    const auto row = columns<int>("orientation");
    for (const int orientation : {1, 3, 6, 8})
        row(qPrintable(QString::number(orientation)), orientation);
}

void tst_ImageUtilsCopy::turningKeepsProfile()
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    QFETCH(int, orientation);
    for (const auto name : {QColorSpace::AdobeRgb, QColorSpace::DisplayP3}) {
        QImage image = picture(400, 300);
        image.setColorSpace(name);
        writeFile(path("source.jpg"), jpeg(image, orientation));
        QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true,
                                          QSize(100, 100), ImageUtils::UseExifRotation));
        QCOMPARE(QImage(path("copy.jpg")).colorSpace(), QColorSpace(name));
    }
#else
    QSKIP("this version of Qt knows no colour profiles");
#endif
}

void tst_ImageUtilsCopy::cmyk()
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

// copyImageFile: no data loss

void tst_ImageUtilsCopy::ontoItself_data()
{
    const auto row =
        columns<bool, ImageUtils::OptionsImageCopy, QSize>("address", "options", "size");
    using Options = ImageUtils::OptionsImageCopy;
    for (const bool address : {false, true}) {
        const QByteArray suffix = address ? ", file://" : "";
        row(("copied" + suffix).constData(), address, Options(ImageUtils::NoResize),
            QSize(400, 300));
        row(("re-encoded" + suffix).constData(), address, Options(ImageUtils::UseExifRotation),
            QSize(75, 100));
    }
}

void tst_ImageUtilsCopy::ontoItself()
{
    QFETCH(bool, address);
    QFETCH(ImageUtils::OptionsImageCopy, options);
    QFETCH(QSize, size);
    writeFile(path("a.jpg"), jpeg(picture(400, 300), 6));
    LogCapture log;
    QVERIFY(
        ImageUtils::copyImageFile((address ? QStringLiteral("file://") : QString()) + path("a.jpg"),
                                  path("a.jpg"), true, QSize(100, 100), options));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(QImage(path("a.jpg")).size(), size);
    QCOMPARE(namesIn(mSandbox->root()), QStringList(QStringLiteral("a.jpg")));
}

void tst_ImageUtilsCopy::ontoLinkToSource()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    const QByteArray bytes = jpeg(picture(400, 300));
    writeFile(path("source.jpg"), bytes);
    QVERIFY(QFile::link(path("source.jpg"), path("link.jpg")));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("link.jpg"), true, QSize(100, 100),
                                      noOption));
    QCOMPARE(contentOf(path("source.jpg")), bytes);
    QVERIFY(!QFileInfo(path("link.jpg")).isSymLink());
    QCOMPARE(QImage(path("link.jpg")).size(), QSize(100, 75));
}

void tst_ImageUtilsCopy::ontoHardLinkOfSource()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
#ifdef Q_OS_UNIX
    const QByteArray bytes = jpeg(picture(400, 300));
    writeFile(path("source.jpg"), bytes);
    QCOMPARE(::link(QFile::encodeName(path("source.jpg")).constData(),
                    QFile::encodeName(path("link.jpg")).constData()),
             0);
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("link.jpg"), true, QSize(100, 100),
                                      noOption));
    QCOMPARE(contentOf(path("source.jpg")), bytes);
    QCOMPARE(QImage(path("link.jpg")).size(), QSize(100, 75));
#endif
}

void tst_ImageUtilsCopy::sourceIsLinkToDestination()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    writeFile(path("a.jpg"), jpeg(picture(400, 300)));
    QVERIFY(QFile::link(path("a.jpg"), path("link.jpg")));
    QVERIFY(ImageUtils::copyImageFile(path("link.jpg"), path("a.jpg"), true, QSize(100, 100),
                                      noOption));
    QCOMPARE(QImage(path("a.jpg")).size(), QSize(100, 75));
    QVERIFY(QFileInfo(path("link.jpg")).isSymLink());
}

void tst_ImageUtilsCopy::ontoDanglingLink()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    writeFile(path("source.jpg"), jpeg(picture(400, 300)));
    QVERIFY(QFile::link(path("nowhere"), path("link.jpg")));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("link.jpg"), true, QSize(100, 100),
                                      noOption));
    QVERIFY(!QFile::exists(path("nowhere")));
    QCOMPARE(QImage(path("link.jpg")).size(), QSize(100, 75));
}

void tst_ImageUtilsCopy::ontoReadOnlyFile()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    writeFile(path("source.jpg"), jpeg(picture(400, 300)));
    writeFile(path("copy.jpg"), "old");
    QVERIFY(QFile::setPermissions(path("copy.jpg"), QFile::ReadOwner));
    QVERIFY(QFile::setPermissions(mSandbox->root(), QFile::Permissions(0x7777)));
    QVERIFY(QFile::setPermissions(path("source.jpg"), QFile::Permissions(0x6666)));
    const OrdinaryUser user;
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(100, 100),
                                      noOption));
    QCOMPARE(QImage(path("copy.jpg")).size(), QSize(100, 75));
}

void tst_ImageUtilsCopy::ontoFolder()
{
    writeFile(path("source.jpg"), jpeg(picture(400, 300)));
    QVERIFY(QDir(mSandbox->root()).mkpath(QStringLiteral("copy.jpg/inside")));
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(100, 100),
                                       ImageUtils::ProgressiveJpeg));
    QCOMPARE(
        log.lines(),
        QStringList(critical(QStringLiteral("copyImageFile : can't remove ") + path("copy.jpg"))));
    QCOMPARE(namesIn(path("copy.jpg")), QStringList(QStringLiteral("inside")));
    QCOMPARE(namesIn(mSandbox->root()),
             QStringList({QStringLiteral("copy.jpg"), QStringLiteral("source.jpg")}));
}

void tst_ImageUtilsCopy::intoReadOnlyFolder_data()
{
    const auto row = columns<QStringList, QString>("before", "record");
    row("onto a file", QStringList(QStringLiteral("copy.jpg")),
        critical(QStringLiteral("copyImageFile : can't remove %1")));
    row("new file", QStringList(),
        warning(QStringLiteral("importImageFile can't save  %1 jpeg "
                               "QSize(100, 75) maxSizeImage= "
                               "QSize(100, 100)")));
}

void tst_ImageUtilsCopy::intoReadOnlyFolder()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    QFETCH(QStringList, before);
    QFETCH(QString, record);
    changeMode(mSandbox->file(QStringLiteral("source.jpg"), jpeg(picture(400, 300))), 0666);
    makeFolder(path("site"));
    for (const QString& name : qAsConst(before))
        changeMode(mSandbox->file(QStringLiteral("site/") + name, "old"), 0666);
    mSandbox->lock(path("site"), 0555);
    const OrdinaryUser user;
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), path("site/copy.jpg"), true,
                                       QSize(100, 100), noOption));
    QCOMPARE(log.lines(), QStringList(record.arg(path("site/copy.jpg"))));
    QCOMPARE(namesIn(path("site")), before);
    for (const QString& name : qAsConst(before))
        QCOMPARE(contentOf(path("site/") + name), QByteArray("old"));
}

void tst_ImageUtilsCopy::newFileWhoseNameIsTooLong()
{
    writeFile(path("source.jpg"), jpeg(picture(400, 300)));
    const QString copy = (*mSandbox)(QString(300, QLatin1Char('x')) + QLatin1String(".jpg"));
    LogCapture log;
    QVERIFY(!ImageUtils::copyImageFile(path("source.jpg"), copy, true, QSize(100, 100), noOption));
    QCOMPARE(log.lines(),
             QStringList(warning(QStringLiteral("importImageFile can't save  ") + copy
                                 + QStringLiteral(" jpeg QSize(100, 75) maxSizeImage= "
                                                  "QSize(100, 100)"))));
    QCOMPARE(namesIn(mSandbox->root()), QStringList(QStringLiteral("source.jpg")));
}

void tst_ImageUtilsCopy::fullDisk_data()
{
    const auto row = columns<int, bool>("bytes", "progressive");
    for (const bool progressive : {false, true}) {
        const QByteArray suffix = progressive ? ", progressive" : "";
        row(("not a byte" + suffix).constData(), 0, progressive);
        // The picture is smaller than the buffer of a file: writing fails when the buffer is
        // flushed.
        row(("some" + suffix).constData(), 500, progressive);
    }
    row("most", 20000, false);
}

void tst_ImageUtilsCopy::fullDisk()
{
    SKIP_ON_WINDOWS("there is no limit of files and their size");
#ifdef Q_OS_UNIX
    QFETCH(int, bytes);
    QFETCH(bool, progressive);
    // Onto the source itself, of which no other copy exists.
    const QByteArray source = jpeg(landscape(400, 300, 0.8), 6);
    QVERIFY(source.size() > 40000);
    writeFile(path("a.jpg"), source);
    const ImageUtils::OptionsImageCopy options = progressive
        ? ImageUtils::UseExifRotation | ImageUtils::ProgressiveJpeg
        : ImageUtils::OptionsImageCopy(ImageUtils::UseExifRotation);
    const QSize maximum = bytes < 1000 ? QSize(100, 100) : QSize(400, 400);
    LogCapture log;
    {
        const FileLimit full(RLIMIT_FSIZE, rlim_t(bytes));
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
    QCOMPARE(contentOf(path("a.jpg")), source);
    QCOMPARE(namesIn(mSandbox->root()), QStringList(QStringLiteral("a.jpg")));
#endif
}

void tst_ImageUtilsCopy::newFileHasUsualPermissions()
{
    writeFile(path("source.jpg"), jpeg(picture(400, 300)));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(100, 100),
                                      noOption));
    QCOMPARE(QFile::permissions(path("copy.jpg")), QFile::permissions(path("source.jpg")));
}

// copyImageFile: reduced decoding

void tst_ImageUtilsCopy::reducedDecoding_data()
{
    const auto table = columns<QSize, double, QSize, bool, ImageUtils::OptionsImageCopy, QSize>(
        "size", "falloff", "maximum", "keepAspectRatio", "options", "expected");
    using Options = ImageUtils::OptionsImageCopy;
    const QSize multiple(1600, 1200);
    const QSize odd(1603, 1201);
    for (const double falloff : {0.5, 0.75, 0.95}) {
        const QByteArray detail = " detail " + QByteArray::number(falloff);
        const auto row = [&](const char* name, const QSize& size, const QSize& maximum,
                             bool keepAspectRatio, Options options, const QSize& expected) {
            table((name + detail).constData(), size, falloff, maximum, keepAspectRatio, options,
                  expected);
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
        // 1604 x 1202 is even, but not a multiple of 4: 300 * 1202 / 1604 = 224.8
        row("even", QSize(1604, 1202), QSize(300, 300), true, noOption, QSize(300, 224));
    }
}

void tst_ImageUtilsCopy::reducedDecoding()
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
    writeFile(path("source.jpg"), bytes);
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), keepAspectRatio,
                                      maximum, options, 100));
    const QImage copy(path("copy.jpg"));
    QCOMPARE(copy.size(), expected);
    // The simple way, with the same quality.
    const QImage plain = QImage::fromData(
        encoded(QImage(path("source.jpg"))
                    .scaled(expected, Qt::IgnoreAspectRatio, Qt::SmoothTransformation),
                "jpeg", 100));
    QVERIFY2(psnr(copy, plain) >= 38, qPrintable(QString::number(psnr(copy, plain))));
}

void tst_ImageUtilsCopy::reducedToOnePixel()
{
    // Half the size is too small for any detail.
    QImage whole(4, 4, QImage::Format_RGB32);
    whole.fill(QColor(200, 100, 50));
    writeFile(path("source.jpg"), jpeg(whole));
    QVERIFY(ImageUtils::copyImageFile(path("source.jpg"), path("copy.jpg"), true, QSize(1, 1),
                                      noOption, 100));
    const QImage copy(path("copy.jpg"));
    QCOMPARE(copy.size(), QSize(1, 1));
    const QColor color = copy.pixelColor(0, 0);
    QVERIFY(qAbs(color.red() - 200) <= 4);
    QVERIFY(qAbs(color.green() - 100) <= 4);
    QVERIFY(qAbs(color.blue() - 50) <= 4);
}

void tst_ImageUtilsCopy::realPhotographsReduced_data()
{
    const auto row = columns<QString, int>("name", "side");
    const QStringList names =
        QDir(photosDir).entryList({QStringLiteral("*.jpg")}, QDir::Files, QDir::Name);
    for (const QString& name : names) {
        if (name.startsWith(QLatin1String("broken")) || name.contains(QLatin1String("cmyk")))
            continue;
        // The other orientations show the same two photographs.
        if (name.startsWith(QLatin1String("orientation"))
            && !name.endsWith(QLatin1String("-1.jpg")))
            continue;
        for (const int side : {96, 160, 213, 320, 400, 640, 720, 800, 1200, 1600})
            row(qPrintable(name + QStringLiteral(" %1").arg(side)), name, side);
    }
    if (names.isEmpty())
        row("none", QString(), 0);
}

void tst_ImageUtilsCopy::realPhotographsReduced()
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

// copyImageFile: real photographs

void tst_ImageUtilsCopy::realPhotographs()
{
    SKIP_ON_WINDOWS("Qt is made there without its plugins for SVG, TIFF and WebP");
    const QDir folder(photosDir);
    const QStringList names = folder.entryList({QStringLiteral("*.jpg"), QStringLiteral("*.gif"),
                                                QStringLiteral("*.png"), QStringLiteral("*.svg")},
                                               QDir::Files);
    if (names.isEmpty())
        QSKIP("the real photographs are not here");
    for (const QString& name : names) {
        const QString source = folder.filePath(name);
        const QString copy = (*mSandbox)(name);
        const QByteArray before = contentOf(source);
        LogCapture log;
        const QImage readable(source);
        QVERIFY2(
            ImageUtils::copyImageFile(source, copy, true, QSize(320, 320),
                                      ImageUtils::UseExifRotation | ImageUtils::ProgressiveJpeg)
                == !readable.isNull(),
            qPrintable(name));
        QCOMPARE(contentOf(source), before);
        if (name.endsWith(QLatin1String("gif")) || name.endsWith(QLatin1String("svg"))) {
            QCOMPARE(contentOf(copy), before);
        } else if (!readable.isNull()) {
            const QImage result(copy);
            QVERIFY2(!result.isNull() && qMax(result.width(), result.height()) <= 320,
                     qPrintable(name));
        } else {
            QVERIFY2(!QFile::exists(copy), qPrintable(name));
        }
    }
}

void tst_ImageUtilsCopy::realOrientations_data()
{
    const auto row = columns<QString, int, QSize>("kind", "orientation", "expected");
    // 1800 x 1200 into 1600 x 1600 is 1600 x 1066. The files with the orientations 5 to 8 are
    // stored on their side; 6 and 8 are turned upright, the mirrored 5 and 7 stay as they are.
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const bool lying = orientation == 5 || orientation == 7;
        const QSize landscape(1600, 1066);
        const QByteArray number = QByteArray::number(orientation);
        row(("landscape " + number).constData(), "landscape", orientation,
            lying ? landscape.transposed() : landscape);
        row(("portrait " + number).constData(), "portrait", orientation,
            lying ? landscape : landscape.transposed());
    }
}

void tst_ImageUtilsCopy::realOrientations()
{
    QFETCH(QString, kind);
    QFETCH(int, orientation);
    QFETCH(QSize, expected);
    const QString name = photosDir + QStringLiteral("/orientation-%1-%2.jpg").arg(kind);
    if (!QFile::exists(name.arg(1)))
        QSKIP("the real photographs are not here");
    const QByteArray before = contentOf(name.arg(orientation));
    QVERIFY(ImageUtils::copyImageFile(name.arg(orientation), path("copy.jpg"), true,
                                      QSize(1600, 1600),
                                      ImageUtils::UseExifRotation | ImageUtils::ProgressiveJpeg));
    QCOMPARE(contentOf(name.arg(orientation)), before);
    QVERIFY(isProgressive(contentOf(path("copy.jpg"))));
    const QImage copy(path("copy.jpg"));
    QCOMPARE(copy.size(), expected);

    // The photograph of orientation 1 is the same picture, upright.
    QImage upright = QImage(name.arg(1));
    switch (orientation) { // mirrored, because the library does not change that
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

void tst_ImageUtilsCopy::otherReadersAgree()
{
    writeFile(path("source.jpg"), jpeg(landscape(1600, 1200, 0.6), 6));
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

QTEST_MAIN(tst_ImageUtilsCopy)
#include "tst_ImageUtilsCopy.moc"

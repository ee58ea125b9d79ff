// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ImageUtils.h"

#include "Columns.h"
#include "FileLimit.h"
#include "LogCapture.h"
#include "Sandbox.h"
#include "TestPictures.h"

#include <QImageReader>
#include <QLabel>
#include <QPainter>
#include <QtTest>

#include <limits>

namespace {

/// A pixel of any format, not premultiplied.
QRgb colorAt(const QImage& image, int x, int y)
{
    return image.convertToFormat(QImage::Format_ARGB32).pixel(x, y);
}

/// The picture of \a label; null if it has none.
QPixmap pixmapOf(const QLabel& label)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return label.pixmap();
#else
    return label.pixmap() ? *label.pixmap() : QPixmap();
#endif
}

} // namespace

class tst_ImageUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void flagValues();
    void defaultQuality();

    void imageSize();
    void scaledPixmapFromFilepath_data();
    void scaledPixmapFromFilepath();
    void fusionImage();
    void fusionImageOnTransparency();
    void fusionImageFailures();
    void fusionImageKeepsOldFile();

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
    void labelPixmapWithoutLabel();

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
    QString path(const char* name) const { return (*mSandbox)(QString::fromUtf8(name)); }

    QScopedPointer<Sandbox> mSandbox;
};

void tst_ImageUtils::init()
{
    mSandbox.reset(new Sandbox);
}

void tst_ImageUtils::cleanup()
{
    mSandbox.reset();
}

// Constants

void tst_ImageUtils::flagValues()
{
    const QList<int> numbers{ImageUtils::UseExifRotation,
                             ImageUtils::ProgressiveJpeg,
                             ImageUtils::ExpandToFill,
                             ImageUtils::Quality85,
                             ImageUtils::NoResize,
                             ImageUtils::Retina,
                             ImageUtils::ProgressiveOnlyWhenReencoded};
    QCOMPARE(numbers, QList<int>({0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40}));
    const QFlags<ImageUtils::OptionImageCopy> both =
        ImageUtils::UseExifRotation | ImageUtils::Retina;
    QCOMPARE(int(both), 0x21);
}

void tst_ImageUtils::defaultQuality()
{
    QCOMPARE(ImageUtils::defaultJpegCompression(), 80);
}

// Other files

void tst_ImageUtils::imageSize()
{
    writeFile(path("a.jpg"), jpeg(picture(400, 300), 6).left(700));
    QCOMPARE(ImageUtils::imageSize(path("a.jpg")), QSize(400, 300));
    QVERIFY(!ImageUtils::imageSize(path("none.jpg")).isValid());
    writeFile(path("text.jpg"), "no picture");
    QVERIFY(!ImageUtils::imageSize(path("text.jpg")).isValid());
}

void tst_ImageUtils::scaledPixmapFromFilepath_data()
{
    const auto row = columns<QSize, QSize>("maximum", "expected");
    row("smaller", QSize(500, 500), QSize(400, 300));
    row("equal", QSize(400, 300), QSize(400, 300));
    row("wider", QSize(200, 500), QSize(200, 150));
    row("taller", QSize(500, 150), QSize(200, 150));
    row("both", QSize(40, 90), QSize(40, 30));
    row("flat", QSize(500, 1), QSize(1, 1));
    row("zero", QSize(0, 0), QSize(0, 0));
    row("invalid", QSize(), QSize(0, 0));
}

void tst_ImageUtils::scaledPixmapFromFilepath()
{
    QFETCH(QSize, maximum);
    QFETCH(QSize, expected);
    const QImage image = picture(400, 300);
    writeFile(path("a.png"), encoded(image, "png"));
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
    const QString folder = mSandbox->root() + QLatin1Char('/');
    // A palette, and a name that requests a double density from Qt: pixels stay as they are.
    writeFile(path("below.png"), encoded(below.convertToFormat(QImage::Format_Indexed8), "png"));
    writeFile(path("above@2x.png"), encoded(above, "png"));
    LogCapture log;
    QVERIFY(ImageUtils::fusionImage(folder, QStringLiteral("below.png"),
                                    QStringLiteral("above@2x.png"), QColor(Qt::green),
                                    QStringLiteral("out.dat")));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(contentOf(path("out.dat")).startsWith("\x89PNG"));
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
    const QString folder = mSandbox->root() + QLatin1Char('/');
    writeFile(path("below.png"), encoded(below, "png"));
    writeFile(path("above.png"), encoded(above, "png"));
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
    const QString folder = mSandbox->root() + QLatin1Char('/');
    writeFile(path("a.png"), encoded(picture(4, 3), "png"));
    writeFile(path("out.png"), "old");
    QVERIFY(!ImageUtils::fusionImage(folder, QStringLiteral("a.png"), QStringLiteral("none.png"),
                                     QColor(), QStringLiteral("out.png")));
    QCOMPARE(contentOf(path("out.png")), QByteArray("old"));
    QVERIFY(ImageUtils::fusionImage(folder, QStringLiteral("none.png"), QStringLiteral("a.png"),
                                    QColor(), QStringLiteral("out.png")));
    QCOMPARE(contentOf(path("out.png")), QByteArray("old"));
    QVERIFY(ImageUtils::fusionImage(folder, QStringLiteral("a.png"), QStringLiteral("a.png"),
                                    QColor(), QStringLiteral("none/out.png")));
}

void tst_ImageUtils::fusionImageKeepsOldFile()
{
    const QString folder = mSandbox->root() + QLatin1Char('/');
    const QString name = QStringLiteral("a.png");
    writeFile(path("a.png"), encoded(picture(400, 300), "png"));
    writeFile(path("out.png"), "old");
    // The system would end the name at the NUL.
    const QString longer = QStringLiteral("out.png") + QChar() + QLatin1Char('x');
    LogCapture log;
    QVERIFY(ImageUtils::fusionImage(folder, name, name, QColor(), longer));
    QCOMPARE(contentOf(path("out.png")), QByteArray("old"));
    QVERIFY(!ImageUtils::fusionImage(folder, name, name + QChar(), QColor(), longer));
#ifdef Q_OS_UNIX
    {
        const FileLimit full(RLIMIT_FSIZE, 500);
        QVERIFY(ImageUtils::fusionImage(folder, name, name, QColor(), QStringLiteral("out.png")));
    }
    QCOMPARE(contentOf(path("out.png")), QByteArray("old"));
#endif
    QVERIFY(ImageUtils::fusionImage(folder, name, name, QColor(), QStringLiteral("out.png")));
    QCOMPARE(QImage(path("out.png")).size(), QSize(400, 300));
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList({name, QStringLiteral("out.png")}));
}

// Names of web images

void tst_ImageUtils::imageExtensions_data()
{
    const auto row = columns<QString, QString>("formats", "extensions");
    row("example", "JPG png", "jpeg jpg png");
    row("none", QString(), QString());
    row("jpeg", "jpeg", "jpeg jpg");
    row("jpg", "jpg", "jpeg jpg");
    row("both jpeg", "jpg JPEG", "jpeg jpg");
    row("order", "SVG Png gif jpeg", "jpeg jpg gif png svg");
    row("repeated", "gif gif GIF", "gif");
    row("others", "bmp jpe svgz .png", QString());
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
    const auto table = columns<QString, bool, bool>("name", "web", "vector");
    const auto row = [&](const char* name, bool web, bool vector) {
        table(name, QString::fromLatin1(name), web, vector);
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

// Sizes

void tst_ImageUtils::resizeKeepingRatio_data()
{
    const auto row = columns<int, QSize, QSize, QSize>("side", "size", "toWidth", "toHeight");
    const int most = std::numeric_limits<int>::max();
    row("smaller", 200, QSize(400, 300), QSize(200, 150), QSize(267, 200));
    row("larger", 800, QSize(400, 300), QSize(800, 600), QSize(1067, 800));
    row("half is rounded up", 1, QSize(2, 3), QSize(1, 2), QSize(1, 1));
    row("0", 0, QSize(400, 300), QSize(0, 0), QSize(0, 0));
    row("width 0", 100, QSize(0, 300), QSize(100, 0), QSize(0, 100));
    row("height 0", 100, QSize(300, 0), QSize(100, 0), QSize(0, 100));
    row("beyond the numbers", most, QSize(1, most), QSize(most, most - 1), QSize(1, most));
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
    const auto row = columns<QSize, QRect>("size", "rect");
    row("even", QSize(40, 30), QRect(0, 0, 20, 15));
    row("odd", QSize(41, 1), QRect(0, 0, 21, 1));
    row("null", QSize(0, 0), QRect(0, 0, 0, 0));
}

void tst_ImageUtils::retinaRect()
{
    QFETCH(QSize, size);
    QFETCH(QRect, rect);
    QCOMPARE(ImageUtils::retinaRect(QPixmap(size)), rect);
}

void tst_ImageUtils::squareImage_data()
{
    const auto row = columns<QSize, QSize, bool, int>("size", "maximum", "changed", "side");
    row("square, fits", QSize(40, 40), QSize(40, 40), false, 40);
    row("square, no maximum", QSize(40, 40), QSize(), false, 40);
    row("square, maximum of 0", QSize(40, 40), QSize(0, 10), false, 40);
    row("square, height of 0", QSize(40, 40), QSize(10, 0), false, 40);
    row("square, larger", QSize(40, 40), QSize(10, 10), true, 10);
    row("square, only the width counts", QSize(40, 40), QSize(50, 10), false, 40);
    row("landscape, fits", QSize(60, 40), QSize(40, 40), true, 40);
    row("landscape, larger", QSize(60, 40), QSize(10, 10), true, 10);
    row("portrait, larger", QSize(40, 60), QSize(10, 20), true, 10);
    row("landscape, no maximum", QSize(60, 40), QSize(), true, 40);
    row("landscape, maximum of 0", QSize(60, 40), QSize(0, 0), true, 40);
    row("null", QSize(0, 0), QSize(10, 10), false, 0);
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
    const auto row = columns<QSize, bool, QRect>("size", "transparent", "place");
    row("landscape", QSize(60, 40), true, QRect(0, 10, 60, 40));
    row("portrait", QSize(40, 61), true, QRect(10, 0, 40, 61));
    row("not transparent", QSize(60, 40), false, QRect(0, 10, 60, 40));
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
    const auto row = columns<QSize, int, QSize, QSize>("size", "side", "label", "pixmap");
    row("landscape", QSize(400, 300), 100, QSize(100, 75), QSize(200, 150));
    row("portrait", QSize(300, 400), 100, QSize(75, 100), QSize(150, 200));
    row("enlarged", QSize(40, 30), 100, QSize(100, 75), QSize(200, 150));
    // 100 * 299 / 400 = 74.75: the label is 74 high, and twice that is 148. 400 x 299 fits into 200
    // x 148 as 197 x 148.
    row("uneven", QSize(400, 299), 100, QSize(100, 74), QSize(197, 148));
    row("0", QSize(400, 300), 0, QSize(0, 0), QSize(400, 300));
    row("negative", QSize(400, 300), -5, QSize(0, 0), QSize(400, 300));
    row("null", QSize(0, 0), 100, QSize(100, 100), QSize(0, 0));
    // A pixmap of twice the size of such a label would not fit into memory.
    row("immense", QSize(40, 40), 16000000, QSize(16000000, 16000000), QSize(40, 40));
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
    QCOMPARE(pixmapOf(widget).size(), pixmap);
}

void tst_ImageUtils::labelPixmapWithoutLabel()
{
    LogCapture log;
    ImageUtils::setLabelPixmap(nullptr, 100, QPixmap::fromImage(picture(40, 30)));
    QCOMPARE(log.lines(), QStringList());
}

// Pixels

void tst_ImageUtils::hasTransparentPixel_data()
{
    const auto row = columns<QImage, bool>("image", "expected");
    const auto filled = [](QImage::Format format, const QColor& color) {
        QImage image(5, 4, format);
        image.fill(color);
        return image;
    };
    const QColor clear(0, 0, 0, 0);
    const QColor faint(255, 255, 255, 1);
    row("null", QImage(), false);
    row("RGB32", filled(QImage::Format_RGB32, Qt::black), false);
    QImage padded(5, 4, QImage::Format_RGB32);
    padded.fill(0u); // the highest byte is not alpha
    row("RGB32, highest byte 0", padded, false);
    row("RGB16", filled(QImage::Format_RGB16, Qt::black), false);
    row("grey", filled(QImage::Format_Grayscale8, Qt::black), false);
    for (const QImage::Format format :
         {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_RGBA8888,
          QImage::Format_RGBA8888_Premultiplied, QImage::Format_ARGB4444_Premultiplied,
          QImage::Format_A2RGB30_Premultiplied, QImage::Format_Alpha8}) {
        const QByteArray name = QByteArray::number(int(format));
        row((name + " transparent").constData(), filled(format, clear), true);
        row((name + " opaque").constData(), filled(format, Qt::black), false);
    }
    row("ARGB32, alpha 1", filled(QImage::Format_ARGB32, faint), false);
    row("premultiplied, alpha 1", filled(QImage::Format_ARGB32_Premultiplied, faint), false);
    QImage white(5, 4, QImage::Format_ARGB32);
    white.fill(0x00FFFFFFu);
    row("ARGB32, transparent white", white, true);
    QImage indexed(5, 4, QImage::Format_Indexed8);
    indexed.setColorTable({qRgba(0, 0, 0, 0), qRgb(255, 0, 0)});
    indexed.fill(1);
    row("palette, transparent colour unused", indexed, false);
    indexed.setPixel(4, 3, 0);
    row("palette, transparent colour used", indexed, true);
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
    const auto row = columns<double, int>("opacity", "alpha");
    row("0", 0.0, 0);
    row("0.5", 0.5, 128); // 127.5 is rounded up
    row("0.25", 0.25, 64); // 63.75
    row("0.001", 0.001, 0); // 0.255
    row("0.002", 0.002, 1); // 0.51
    row("just below 1", 0.9999, 255);
    row("negative", -0.5, 0);
    row("very negative", -1e300, 0);
    row("not a number", std::numeric_limits<double>::quiet_NaN(), 0);
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
    const auto row = columns<double>("opacity");
    row("1", 1.0);
    row("2", 2.0);
    row("infinite", std::numeric_limits<double>::infinity());
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
    const auto row = columns<QColor, int, QRgb, bool>("color", "opacity", "pixel", "null");
    row("opacity 0", QColor(Qt::red), 0, QRgb(), true);
    row("opacity -1", QColor(Qt::red), -1, QRgb(), true);
    row("opacity 101", QColor(Qt::red), 101, QRgb(), true);
    row("opacity 1 changes nothing", QColor(Qt::red), 1, qRgb(255, 0, 0), false);
    row("opacity 50 changes nothing", QColor(Qt::red), 50, qRgb(255, 0, 0), false);
    row("opacity 100", QColor(Qt::red), 100, qRgb(255, 0, 0), false);
    row("invalid colour", QColor(), 50, qRgba(0, 0, 0, 0), false);
    row("colour with alpha", QColor(255, 0, 0, 51), 50, qRgba(255, 0, 0, 51), false);
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
    const auto row = columns<QRgb, QRgb>("color", "expected");
    row("black", qRgb(0, 0, 0), qRgb(0, 0, 0));
    row("white", qRgb(255, 255, 255), qRgb(255, 255, 255));
    row("red", qRgb(255, 0, 0), qRgb(87, 87, 87)); // 2805 / 32 = 87.6
    row("green", qRgb(0, 255, 0), qRgb(127, 127, 127)); // 4080 / 32 = 127.5
    row("blue", qRgb(0, 0, 255), qRgb(39, 39, 39)); // 1275 / 32 = 39.8
    row("mixed", qRgb(10, 20, 30), qRgb(18, 18, 18)); // 580 / 32 = 18.1
    row("with alpha", qRgba(255, 0, 0, 100), qRgba(87, 87, 87, 100));
    row("transparent", qRgba(255, 0, 0, 0), qRgba(87, 87, 87, 0));
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
    // alpha: of the pixmap
    const auto row = columns<QColor, int, QRgb>("color", "alpha", "expected");
    row("opaque", QColor(255, 0, 0), 255, qRgb(255, 0, 0));
    row("nothing there", QColor(255, 0, 0), 0, qRgba(0, 0, 0, 0));
    row("half there", QColor(255, 0, 0), 128, qRgba(255, 0, 0, 128));
    row("colour with alpha", QColor(255, 0, 0, 51), 255, qRgba(255, 0, 0, 51));
    row("both", QColor(255, 0, 0, 128), 128, qRgba(255, 0, 0, 64));
    row("transparent colour", QColor(255, 0, 0, 0), 255, qRgba(0, 0, 0, 0));
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

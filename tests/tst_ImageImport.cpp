// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ImageImport, and what ImageUtils::importImage() makes of it.

#include "ImageImport.h"

#include "ImageUtils.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "Sandbox.h"
#include "TestPictures.h"

#include <QImageReader>
#include <QImageWriter>
#include <QtTest>

#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
#include <QColorSpace>
#endif

namespace {

/// What a program prints; null where it is not installed or fails.
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

/// A picture of that orientation which, set upright, is \a upright.
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
    void quality_data();
    void quality();

private:
    QString path(const char* name) const { return (*mSandbox)(QString::fromUtf8(name)); }

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
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QSize>("maximum");
    QTest::addColumn<QByteArray>("format"); // wanted
    QTest::addColumn<QByteArray>("expectedFormat");
    QTest::addColumn<QSize>("expected");
    QTest::addColumn<bool>("copied");
    const QByteArray photo = jpeg(picture(400, 300));
    const QByteArray sideways = jpeg(picture(400, 300), 6);
    const QByteArray png = encoded(picture(400, 300), "png");
    const QSize whole(400, 300);
    const QByteArray none;
    QTest::newRow("no limit") << photo << QSize() << none << QByteArray("jpeg") << whole << true;
    QTest::newRow("limit of 0") << photo << QSize(0, 0) << none << QByteArray("jpeg") << whole
                                << true;
    QTest::newRow("exactly the limit")
        << photo << whole << none << QByteArray("jpeg") << whole << true;
    QTest::newRow("one pixel too wide")
        << photo << QSize(399, 300) << none << QByteArray("jpeg") << QSize(399, 299) << false;
    QTest::newRow("only the height is limited")
        << photo << QSize(0, 150) << none << QByteArray("jpeg") << QSize(200, 150) << false;
    QTest::newRow("named as it is")
        << photo << QSize() << QByteArray("JPG") << QByteArray("jpeg") << whole << true;
    QTest::newRow("another format")
        << photo << QSize() << QByteArray("png") << QByteArray("png") << whole << false;
    QTest::newRow("sideways") << sideways << QSize() << none << QByteArray("jpeg")
                              << QSize(300, 400) << false;
    QTest::newRow("sideways, limited upright")
        << sideways << QSize(300, 200) << none << QByteArray("jpeg") << QSize(150, 200) << false;
    QTest::newRow("png") << png << QSize() << none << QByteArray("png") << whole << true;
    QTest::newRow("png, too large")
        << png << QSize(200, 200) << none << QByteArray("png") << QSize(200, 150) << false;
    QTest::newRow("png to jpeg") << png << QSize() << QByteArray("jpeg") << QByteArray("jpeg")
                                 << whole << false;
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

void tst_ImageImport::orientations_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<int>("orientation");
    for (const char* format : {"jpeg", "tiff"}) {
        if (!canWrite(format))
            continue;
        for (int orientation = 1; orientation <= 8; ++orientation) {
            QTest::newRow(
                qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(format)).arg(orientation)))
                << QByteArray(format) << orientation;
        }
    }
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
    how.format = "png"; // loses nothing
    const ImageImportResult result = ImageUtils::importImage(path("source"), path("copy.png"), how);
    QVERIFY2(result, qPrintable(result.error));
    // A reader that finds nothing to do may not tell an upright picture from one that says nothing.
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

void tst_ImageImport::quality_data()
{
    QTest::addColumn<int>("quality");
    QTest::addColumn<bool>("progressive");
    QTest::addColumn<int>("expected");
    for (const bool progressive : {false, true}) {
        const QByteArray suffix = progressive ? ", progressive" : "";
        QTest::newRow(("30" + suffix).constData()) << 30 << progressive << 30;
        QTest::newRow(("80" + suffix).constData()) << 80 << progressive << 80;
        QTest::newRow(("0" + suffix).constData()) << 0 << progressive << 0;
        QTest::newRow(("100" + suffix).constData()) << 100 << progressive << 100;
        QTest::newRow(("beyond" + suffix).constData()) << 400 << progressive << 100;
        QTest::newRow(("below" + suffix).constData()) << -3 << progressive << 0;
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

QTEST_MAIN(tst_ImageImport)
#include "tst_ImageImport.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Differences between Qt 5 and Qt 6 that must not show in the library.

#include "Columns.h"
#include "CurrencyUtils.h"
#include "ImageUtils.h"
#include "LogCapture.h"
#include "PhpCodeHelpers.h"
#include "Sandbox.h"
#include "TestPictures.h"
#include "Text.h"

#include <QImageReader>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <QtTest>

namespace {

/// Limits image readers to \a megabytes as long as the object lives. Readers of Qt 5 have no limit.
class AllocationLimit
{
public:
    explicit AllocationLimit(int megabytes) { set(megabytes); }
    ~AllocationLimit() { set(mPrevious); }

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    static int current()
    {
        return QImageReader::allocationLimit();
    }
#else
    static int current()
    {
        return 0;
    }
#endif

private:
    Q_DISABLE_COPY(AllocationLimit)

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    static void set(int megabytes)
    {
        QImageReader::setAllocationLimit(megabytes);
    }
#else
    static void set(int) { }
#endif

    const int mPrevious = current();
};

QString phpLiteral(const QVariant& value)
{
    QString literal;
    QTextStream stream(&literal);
    PhpCodeHelpers::formatVariantValue(&stream, value);
    stream.flush();
    return literal;
}

} // namespace

class tst_QtVersions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picturesBeyondTheLimit_data();
    void picturesBeyondTheLimit();
    void limitStaysThatOfTheApplication();
    void density();
    void negativeHalves_data();
    void negativeHalves();
    void nullTextInAVariant();
    void numbersFromJson();
};

void tst_QtVersions::picturesBeyondTheLimit_data()
{
    const auto row = columns<QByteArray, QImage::Format>("format", "pixels");
    row("JPEG", "jpg", QImage::Format_RGB32);
    row("grey JPEG", "jpg", QImage::Format_Grayscale8);
    row("PNG", "png", QImage::Format_RGB32);
    row("PNG with transparency", "png", QImage::Format_ARGB32);
}

// 1600 x 1200 pixels need 7.3 MB, or 1.8 MB in grey.
void tst_QtVersions::picturesBeyondTheLimit()
{
    QFETCH(QByteArray, format);
    QFETCH(QImage::Format, pixels);
    Sandbox box;
    const QString source = box(text("large.") + QString::fromLatin1(format));
    const QImage large = picture(1600, 1200).convertToFormat(pixels);
    QVERIFY(large.save(source));

    const AllocationLimit limit(1);
    LogCapture log;
    // At full size, slightly smaller, and as shown.
    const QPixmap loaded = ImageUtils::scaledPixmapFromFilepath(source, QSize(2000, 2000));
    QCOMPARE(loaded.size(), large.size());
    QVERIFY(psnr(loaded.toImage(), large) > 35);
    for (const QSize& size : {QSize(1500, 1500), QSize(200, 200)}) {
        const QString destination = box(text("copy.") + QString::fromLatin1(format));
        QVERIFY(ImageUtils::copyImageFile(source, destination, true, size));
        QCOMPARE(QImageReader(destination).size(), large.size().scaled(size, Qt::KeepAspectRatio));
    }
    QCOMPARE(log.lines(), QStringList());
}

void tst_QtVersions::limitStaysThatOfTheApplication()
{
    Sandbox box;
    const QString source = box(text("a.jpg"));
    QVERIFY(picture(1600, 1200).save(source));
    const AllocationLimit limit(3);
    const int before = AllocationLimit::current();
    QVERIFY(!ImageUtils::scaledPixmapFromFilepath(source, QSize(2000, 2000)).isNull());
    QCOMPARE(AllocationLimit::current(), before);
}

void tst_QtVersions::density()
{
    Sandbox box;
    const QString source = box(text("a.jpg"));
    const QString destination = box(text("b.jpg"));
    const int dotsPerMetre = 11811; // 300 per inch
    QImage image = picture(400, 300);
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    QVERIFY(image.save(source));
    QVERIFY(ImageUtils::copyImageFile(source, destination, true, QSize(200, 200)));
    QCOMPARE(QImage(destination).dotsPerMeterX(), dotsPerMetre);
    QCOMPARE(QImage(destination).dotsPerMeterY(), dotsPerMetre);
}

void tst_QtVersions::negativeHalves_data()
{
    const auto row = columns<double, double>("price", "rounded");
    // Amounts whose product with 100 is exact. Halves are rounded towards positive infinity.
    row("-0.125", -0.125, -0.12);
    row("-0.375", -0.375, -0.37);
    row("-0.625", -0.625, -0.62);
    row("-2.875", -2.875, -2.87);
    row("0.125", 0.125, 0.13);
}

void tst_QtVersions::negativeHalves()
{
    QFETCH(double, price);
    QTEST(CurrencyUtils::roundPrice(price), "rounded");
}

// Such a variant is null in Qt 5, but not in Qt 6.
void tst_QtVersions::nullTextInAVariant()
{
    QCOMPARE(phpLiteral(QVariant(QString())), text("''"));
}

// Before 5.15 a variant made of JSON holds a double, later a 64-bit integer for whole numbers.
void tst_QtVersions::numbersFromJson()
{
    const QVariantMap map =
        QJsonDocument::fromJson("{\"n\": 1234, \"x\": 0.5}").object().toVariantMap();
    QCOMPARE(phpLiteral(map.value(text("n"))), text("1234"));
    QCOMPARE(phpLiteral(map.value(text("x"))), text("0.5"));
}

QTEST_MAIN(tst_QtVersions)
#include "tst_QtVersions.moc"

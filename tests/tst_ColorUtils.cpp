// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ColorUtils.h"

#include "ColorFraction.h"

#include <QtTest>

#include <cstdlib>
#include <limits>

class tst_ColorUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notificationColors_data();
    void notificationColors();
    void metaObject();
    void grayColor_data();
    void grayColor();
    void randomColor();
    void interpolate_data();
    void interpolate();
    void colorToCss_data();
    void colorToCss();
    void colorFromCss_data();
    void colorFromCss();
    void cssAndBack();
};

void tst_ColorUtils::notificationColors_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("background");
    QTest::newRow("Info") << 0 << QStringLiteral("#00529b") << QStringLiteral("#bde5f8");
    QTest::newRow("Success") << 1 << QStringLiteral("#4f8a10") << QStringLiteral("#dff2bf");
    QTest::newRow("Warning") << 2 << QStringLiteral("#9f6000") << QStringLiteral("#feefb3");
    QTest::newRow("Error") << 3 << QStringLiteral("#d8000c") << QStringLiteral("#ffbaba");
    QTest::newRow("another") << 7 << QStringLiteral("#000000") << QStringLiteral("#000000");
}

void tst_ColorUtils::notificationColors()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(QString, background);
    const auto kind = static_cast<ColorUtils::NotificationType>(type);
    QCOMPARE(ColorUtils::bootstrapColorText(kind).name(), text);
    QCOMPARE(ColorUtils::bootstrapColorBackground(kind).name(), background);
    QCOMPARE(ColorUtils::bootstrapColorText(kind).alpha(), 255);
}

void tst_ColorUtils::metaObject()
{
    QObject parent;
    const ColorUtils* child = new ColorUtils(&parent);
    QCOMPARE(child->parent(), &parent);
    QCOMPARE(QByteArray(child->metaObject()->className()), QByteArray("ColorUtils"));
}

void tst_ColorUtils::grayColor_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("gray");
    QTest::newRow("red") << QColor(255, 0, 0) << QColor(87, 87, 87); // 2805 / 32 = 87.6
    QTest::newRow("green") << QColor(0, 255, 0) << QColor(127, 127, 127); // 4080 / 32 = 127.5
    QTest::newRow("blue") << QColor(0, 0, 255) << QColor(39, 39, 39); // 1275 / 32 = 39.8
    QTest::newRow("white") << QColor(255, 255, 255) << QColor(255, 255, 255); // 8160 / 32
    QTest::newRow("alpha stays") << QColor(8, 16, 24, 77) << QColor(14, 14, 14, 77); // 464 / 32
}

void tst_ColorUtils::grayColor()
{
    QFETCH(QColor, color);
    QFETCH(QColor, gray);
    QCOMPARE(ColorUtils::grayColor(color), gray);
}

void tst_ColorUtils::randomColor()
{
    std::srand(7);
    int draws[3];
    for (int& draw : draws)
        draw = std::rand();
    std::srand(7);
    QCOMPARE(ColorUtils::randomColor(), QColor(draws[0] % 255, draws[1] % 255, draws[2] % 255));

    bool zeroSeen = false;
    for (int i = 0; i < 20000; ++i) {
        const QColor color = ColorUtils::randomColor();
        QVERIFY(color.red() < 255 && color.green() < 255 && color.blue() < 255);
        QCOMPARE(color.alpha(), 255);
        zeroSeen = zeroSeen || color.red() == 0;
    }
    QVERIFY(zeroSeen);
}

void tst_ColorUtils::interpolate_data()
{
    QTest::addColumn<QColor>("a");
    QTest::addColumn<QColor>("b");
    QTest::addColumn<double>("t");
    QTest::addColumn<QColor>("color");
    const QColor a(10, 20, 30, 40);
    const QColor b(110, 10, 31, 0);
    QTest::newRow("start") << a << b << 0.0 << QColor(10, 20, 30);
    QTest::newRow("end") << a << b << 1.0 << QColor(110, 10, 31);
    // 10 * 0.75 + 110 * 0.25 = 35, 17.5, 30.25
    QTest::newRow("a quarter, truncated") << a << b << 0.25 << QColor(35, 17, 30);
    // 10 * 1.1 - 11 = 0, 22 - 1 = 21, 33 - 3.1 = 29.9
    QTest::newRow("a little before") << a << b << -0.1 << QColor(0, 21, 29);
    // 5 * 1.1 - 6 = -0.5 for all: truncated toward zero, not down
    QTest::newRow("toward zero") << QColor(5, 5, 5) << QColor(60, 60, 60) << -0.1
                                 << QColor(0, 0, 0);
    QTest::newRow("below 0") << a << b << -1.0 << QColor();
    QTest::newRow("above 255") << a << b << 3.0 << QColor();
    // Further than an int goes.
    QTest::newRow("far above") << a << b << 1e12 << QColor();
    QTest::newRow("far below") << a << b << -1e12 << QColor();
    QTest::newRow("no number") << a << b << std::numeric_limits<double>::quiet_NaN() << QColor();
    QTest::newRow("infinite") << a << b << std::numeric_limits<double>::infinity() << QColor();
}

void tst_ColorUtils::interpolate()
{
    QFETCH(QColor, a);
    QFETCH(QColor, b);
    QFETCH(double, t);
    QFETCH(QColor, color);
    const QColor result = ColorUtils::interpolate(a, b, t);
    QCOMPARE(result.isValid(), color.isValid());
    if (color.isValid())
        QCOMPARE(result, color);
}

void tst_ColorUtils::colorToCss_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QString>("css");
    QTest::newRow("opaque") << QColor(255, 0, 0) << QStringLiteral("#ff0000");
    QTest::newRow("lower case") << QColor(0xAB, 0xCD, 0xEF) << QStringLiteral("#abcdef");
    // 128 / 255 = 0.50196078...
    QTest::newRow("alpha 128") << QColor(255, 0, 0, 128)
                               << QStringLiteral("rgba(255,0,0,0.501961)");
    QTest::newRow("alpha 0") << QColor(1, 2, 3, 0) << QStringLiteral("rgba(1,2,3,0)");
    QTest::newRow("alpha 51") << QColor(1, 2, 3, 51) << QStringLiteral("rgba(1,2,3,0.2)");
    // 1 / 255 = 0.00392157
    QTest::newRow("alpha 1") << QColor(9, 8, 7, 1) << QStringLiteral("rgba(9,8,7,0.00392157)");
    QColor half(255, 0, 0);
    half.setAlphaF(0.5); // stored as 32768 / 65535 = 0.50000763
    QTest::newRow("half, as stored") << half << QStringLiteral("rgba(255,0,0,0.500008)");
}

void tst_ColorUtils::colorToCss()
{
    QFETCH(QColor, color);
    QFETCH(QString, css);
    QCOMPARE(ColorUtils::colorToCss(color), css);
}

void tst_ColorUtils::colorFromCss_data()
{
    QTest::addColumn<QString>("css");
    QTest::addColumn<QColor>("color");
    const auto rgba = [](int red, int green, int blue, double alpha) {
        QColor color(red, green, blue);
        color.setAlphaF(ColorFraction(alpha));
        return color;
    };
    QTest::newRow("rgba") << QStringLiteral("rgba(1,2,3,0.5)") << rgba(1, 2, 3, 0.5);
    QTest::newRow("RGBA") << QStringLiteral("RGBA(1,2,3,0.5)") << rgba(1, 2, 3, 0.5);
    QTest::newRow("blanks") << QStringLiteral("rgba( 1 , 2, 3 ,0 )") << rgba(1, 2, 3, 0);
    QTest::newRow("rgba with 3") << QStringLiteral("rgba(1,2,3)") << QColor();
    QTest::newRow("rgba with 5") << QStringLiteral("rgba(1,2,3,1,1)") << QColor();
    QTest::newRow("rgba open") << QStringLiteral("rgba(1,2,3,0.5") << QColor();
    QTest::newRow("rgba empty parts") << QStringLiteral("rgba(,,,)") << rgba(0, 0, 0, 0);
    QTest::newRow("rgba words") << QStringLiteral("rgba(x,2,3,y)") << rgba(0, 2, 3, 0);
    QTest::newRow("rgba without parts") << QStringLiteral("rgba()") << QColor();
    QTest::newRow("rgba beyond 255") << QStringLiteral("rgba(256,0,0,1)") << QColor();
    QTest::newRow("alpha above 1") << QStringLiteral("rgba(1,2,3,7)") << rgba(1, 2, 3, 1);
    QTest::newRow("alpha below 0") << QStringLiteral("rgba(1,2,3,-7)") << rgba(1, 2, 3, 0);
    QTest::newRow("alpha no number") << QStringLiteral("rgba(1,2,3,nan)") << rgba(1, 2, 3, 0);
    QTest::newRow("alpha infinite") << QStringLiteral("rgba(1,2,3,inf)") << rgba(1, 2, 3, 1);
    QTest::newRow("rgb") << QStringLiteral("rgb(1,2,3)") << QColor(1, 2, 3);
    QTest::newRow("Rgb") << QStringLiteral("Rgb(255,255,255)") << QColor(255, 255, 255);
    QTest::newRow("rgb with 4") << QStringLiteral("rgb(1,2,3,4)") << QColor();
    QTest::newRow("rgb negative") << QStringLiteral("rgb(-1,2,3)") << QColor();
    QTest::newRow("3 digits") << QStringLiteral("#f80") << QColor(255, 136, 0);
    QTest::newRow("6 digits") << QStringLiteral("#FF8000") << QColor(255, 128, 0);
    QTest::newRow("8 digits") << QStringLiteral("#80ff8000") << QColor(255, 128, 0, 128);
    QTest::newRow("9 digits") << QStringLiteral("#fff800000") << QColor(255, 128, 0);
    QTest::newRow("12 digits") << QStringLiteral("#ffff80800000") << QColor(255, 128, 0);
    QTest::newRow("5 digits") << QStringLiteral("#ff800") << QColor();
    QTest::newRow("name") << QStringLiteral("SteelBlue") << QColor(70, 130, 180);
    QTest::newRow("unknown name") << QStringLiteral("shopblue") << QColor();
    QTest::newRow("empty") << QString() << QColor();
}

void tst_ColorUtils::colorFromCss()
{
    QFETCH(QString, css);
    QFETCH(QColor, color);
    const QColor result = ColorUtils::colorFromCss(css);
    QCOMPARE(result.isValid(), color.isValid());
    if (!color.isValid())
        return;
    QCOMPARE(result.red(), color.red());
    QCOMPARE(result.green(), color.green());
    QCOMPARE(result.blue(), color.blue());
    QCOMPARE(result.alphaF(), color.alphaF());
}

void tst_ColorUtils::cssAndBack()
{
    for (int alpha = 0; alpha < 256; ++alpha) {
        const QColor color(alpha, 255 - alpha, 7, alpha);
        QCOMPARE(ColorUtils::colorFromCss(ColorUtils::colorToCss(color)).rgba(), color.rgba());
    }
}

QTEST_GUILESS_MAIN(tst_ColorUtils)
#include "tst_ColorUtils.moc"

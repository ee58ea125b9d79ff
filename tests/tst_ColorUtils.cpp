// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ColorUtils.h"

#include "ColorFraction.h"
#include "Columns.h"

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
    const auto row = columns<int, QString, QString>("type", "text", "background");
    row("Info", 0, "#00529b", "#bde5f8");
    row("Success", 1, "#4f8a10", "#dff2bf");
    row("Warning", 2, "#9f6000", "#feefb3");
    row("Error", 3, "#d8000c", "#ffbaba");
    row("another", 7, "#000000", "#000000");
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
    const auto row = columns<QColor, QColor>("color", "gray");
    row("red", QColor(255, 0, 0), QColor(87, 87, 87)); // 2805 / 32 = 87.6
    row("green", QColor(0, 255, 0), QColor(127, 127, 127)); // 4080 / 32 = 127.5
    row("blue", QColor(0, 0, 255), QColor(39, 39, 39)); // 1275 / 32 = 39.8
    row("white", QColor(255, 255, 255), QColor(255, 255, 255)); // 8160 / 32
    row("alpha stays", QColor(8, 16, 24, 77), QColor(14, 14, 14, 77)); // 464 / 32
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
    const auto row = columns<QColor, QColor, double, QColor>("a", "b", "t", "color");
    const QColor a(10, 20, 30, 40);
    const QColor b(110, 10, 31, 0);
    row("start", a, b, 0.0, QColor(10, 20, 30));
    row("end", a, b, 1.0, QColor(110, 10, 31));
    // 10 * 0.75 + 110 * 0.25 = 35, 17.5, 30.25
    row("a quarter, truncated", a, b, 0.25, QColor(35, 17, 30));
    // 10 * 1.1 - 11 = 0, 22 - 1 = 21, 33 - 3.1 = 29.9
    row("a little before", a, b, -0.1, QColor(0, 21, 29));
    // 5 * 1.1 - 6 = -0.5 for all: truncated toward zero, not down
    row("toward zero", QColor(5, 5, 5), QColor(60, 60, 60), -0.1, QColor(0, 0, 0));
    row("below 0", a, b, -1.0, QColor());
    row("above 255", a, b, 3.0, QColor());
    // Further than an int goes.
    row("far above", a, b, 1e12, QColor());
    row("far below", a, b, -1e12, QColor());
    row("no number", a, b, std::numeric_limits<double>::quiet_NaN(), QColor());
    row("infinite", a, b, std::numeric_limits<double>::infinity(), QColor());
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
    const auto row = columns<QColor, QString>("color", "css");
    row("opaque", QColor(255, 0, 0), "#ff0000");
    row("lower case", QColor(0xAB, 0xCD, 0xEF), "#abcdef");
    // 128 / 255 = 0.50196078...
    row("alpha 128", QColor(255, 0, 0, 128), "rgba(255,0,0,0.501961)");
    row("alpha 0", QColor(1, 2, 3, 0), "rgba(1,2,3,0)");
    row("alpha 51", QColor(1, 2, 3, 51), "rgba(1,2,3,0.2)");
    // 1 / 255 = 0.00392157
    row("alpha 1", QColor(9, 8, 7, 1), "rgba(9,8,7,0.00392157)");
    QColor half(255, 0, 0);
    half.setAlphaF(0.5); // stored as 32768 / 65535 = 0.50000763
    row("half, as stored", half, "rgba(255,0,0,0.500008)");
}

void tst_ColorUtils::colorToCss()
{
    QFETCH(QColor, color);
    QFETCH(QString, css);
    QCOMPARE(ColorUtils::colorToCss(color), css);
}

void tst_ColorUtils::colorFromCss_data()
{
    const auto row = columns<QString, QColor>("css", "color");
    const auto rgba = [](int red, int green, int blue, double alpha) {
        QColor color(red, green, blue);
        color.setAlphaF(ColorFraction(alpha));
        return color;
    };
    row("rgba", "rgba(1,2,3,0.5)", rgba(1, 2, 3, 0.5));
    row("RGBA", "RGBA(1,2,3,0.5)", rgba(1, 2, 3, 0.5));
    row("blanks", "rgba( 1 , 2, 3 ,0 )", rgba(1, 2, 3, 0));
    row("rgba with 3", "rgba(1,2,3)", QColor());
    row("rgba with 5", "rgba(1,2,3,1,1)", QColor());
    row("rgba open", "rgba(1,2,3,0.5", QColor());
    row("rgba empty parts", "rgba(,,,)", rgba(0, 0, 0, 0));
    row("rgba words", "rgba(x,2,3,y)", rgba(0, 2, 3, 0));
    row("rgba without parts", "rgba()", QColor());
    row("rgba beyond 255", "rgba(256,0,0,1)", QColor());
    row("alpha above 1", "rgba(1,2,3,7)", rgba(1, 2, 3, 1));
    row("alpha below 0", "rgba(1,2,3,-7)", rgba(1, 2, 3, 0));
    row("alpha no number", "rgba(1,2,3,nan)", rgba(1, 2, 3, 0));
    row("alpha infinite", "rgba(1,2,3,inf)", rgba(1, 2, 3, 1));
    row("rgb", "rgb(1,2,3)", QColor(1, 2, 3));
    row("Rgb", "Rgb(255,255,255)", QColor(255, 255, 255));
    row("rgb with 4", "rgb(1,2,3,4)", QColor());
    row("rgb negative", "rgb(-1,2,3)", QColor());
    row("3 digits", "#f80", QColor(255, 136, 0));
    row("6 digits", "#FF8000", QColor(255, 128, 0));
    row("8 digits", "#80ff8000", QColor(255, 128, 0, 128));
    row("9 digits", "#fff800000", QColor(255, 128, 0));
    row("12 digits", "#ffff80800000", QColor(255, 128, 0));
    row("5 digits", "#ff800", QColor());
    row("name", "SteelBlue", QColor(70, 130, 180));
    row("unknown name", "shopblue", QColor());
    row("empty", QString(), QColor());
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

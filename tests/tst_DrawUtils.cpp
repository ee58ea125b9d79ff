// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DrawUtils.h"

#include "Columns.h"

#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QtTest>

class tst_DrawUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nullWidgets();
    void widgetColorBackground();
    void widgetColorText();
    void bootstrapColor();
    void widgetFont();
    void smoothPixmap_data();
    void smoothPixmap();
    void tiledPixmap_data();
    void tiledPixmap();
    void tiledPixmapNothing();
    void undefinedOblique_data();
    void undefinedOblique();
    void undefinedStraight_data();
    void undefinedStraight();
    void informativeMessage_data();
    void informativeMessage();
    void informativeMessageRounded();
    void roundedShape_data();
    void roundedShape();
    void roundedShapeFromVector();
    void painterStateKept();
};

namespace {

const QRgb white = 0xFFFFFFFF;

// A white canvas of a size in logical pixels.
QImage canvas(int width, int height, int ratio)
{
    QImage image(width * ratio, height * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    return image;
}

// The rectangle, in device pixels, of all pixels that are no longer white.
QRect painted(const QImage& image)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != white)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

void addRatios()
{
    const auto row = columns<int>("ratio");
    row("ratio 1", 1);
    row("ratio 2", 2);
}

} // namespace

void tst_DrawUtils::nullWidgets()
{
    DrawUtils::setWidgetColorBackground(nullptr, Qt::red);
    DrawUtils::setWidgetColorText(nullptr, Qt::red);
    DrawUtils::setBootstrapColor(nullptr, ColorUtils::Info);
    DrawUtils::setWidgetTextPixelSize(nullptr, 12);
    DrawUtils::setWidgetTextFamily(nullptr, QStringLiteral("Serif"));
    DrawUtils::setWidgetTextBold(nullptr, true);
    // Still being alive is all that can be checked.
    QVERIFY(qApp != nullptr);
}

void tst_DrawUtils::widgetColorBackground()
{
    QWidget widget;
    QVERIFY(!widget.autoFillBackground());
    const QColor color(1, 2, 3);
    DrawUtils::setWidgetColorBackground(&widget, color);
    QVERIFY(widget.autoFillBackground());
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (const auto role : {QPalette::Window, QPalette::Button}) {
            QCOMPARE(widget.palette().brush(group, role), QBrush(color));
            QCOMPARE(widget.palette().brush(group, role).style(), Qt::SolidPattern);
        }
        QVERIFY(widget.palette().color(group, QPalette::WindowText) != color);
    }
}

void tst_DrawUtils::widgetColorText()
{
    QWidget widget;
    const QColor color(10, 20, 30);
    QColor disabled = color;
    disabled.setAlphaF(0.5);
    DrawUtils::setWidgetColorText(&widget, color);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        QCOMPARE(widget.palette().color(QPalette::Active, role), color);
        QCOMPARE(widget.palette().color(QPalette::Inactive, role), color);
        QCOMPARE(widget.palette().color(QPalette::Disabled, role), disabled);
    }
    QVERIFY(widget.palette().color(QPalette::Active, QPalette::Window) != color);
}

void tst_DrawUtils::bootstrapColor()
{
    QLabel label;
    DrawUtils::setBootstrapColor(&label, ColorUtils::Error);
    QCOMPARE(label.palette().color(QPalette::Active, QPalette::Window).name(),
             QStringLiteral("#ffbaba"));
    QCOMPARE(label.palette().color(QPalette::Active, QPalette::WindowText).name(),
             QStringLiteral("#d8000c"));
}

void tst_DrawUtils::widgetFont()
{
    QWidget widget;
    DrawUtils::setWidgetTextPixelSize(&widget, 23);
    QCOMPARE(widget.font().pixelSize(), 23);
    DrawUtils::setWidgetTextFamily(&widget, QStringLiteral("Quite Another"));
    QCOMPARE(widget.font().family(), QStringLiteral("Quite Another"));
    DrawUtils::setWidgetTextBold(&widget, true);
    QCOMPARE(int(widget.font().weight()), int(QFont::Bold)); // 75 in Qt 5, 700 in Qt 6
    DrawUtils::setWidgetTextBold(&widget, false);
    QCOMPARE(int(widget.font().weight()), int(QFont::Normal)); // 50, or 400
    QCOMPARE(widget.font().pixelSize(), 23);
}

void tst_DrawUtils::smoothPixmap_data()
{
    const auto row = columns<QSize, QRect, bool>(
        "pixmapSize", "rect", "allSeen"); // whether every pixel of the source has its share
    row("scaled first: 60 into 6", QSize(60, 60), QRect(3, 4, 6, 6), true);
    row("wide alone is enough", QSize(60, 6), QRect(3, 4, 6, 60), true);
    row("high alone is enough", QSize(45, 600), QRect(3, 4, 4, 6), true);
    row("flat alone is enough", QSize(600, 600), QRect(3, 4, 55, 6), true);
    row("50 is not larger than 50", QSize(50, 50), QRect(3, 4, 5, 5), false);
    row("50 is not smaller than 50", QSize(600, 600), QRect(3, 4, 50, 50), false);
}

void tst_DrawUtils::smoothPixmap()
{
    QFETCH(QSize, pixmapSize);
    QFETCH(QRect, rect);
    QFETCH(bool, allSeen);
    // One column in ten is black: averaged over all pixels the result is light grey everywhere; a
    // painter that looks at only two neighbours makes some columns white.
    QImage stripes(pixmapSize, QImage::Format_RGB32);
    stripes.fill(Qt::white);
    for (int x = 4; x < pixmapSize.width(); x += 10) {
        for (int y = 0; y < pixmapSize.height(); ++y)
            stripes.setPixel(x, y, 0xFF000000);
    }
    QImage image = canvas(100, 100, 1);
    image.fill(Qt::yellow);
    {
        QPainter painter(&image);
        DrawUtils::drawSmoothPixmap(&painter, rect, QPixmap::fromImage(stripes));
        QVERIFY(!painter.testRenderHint(QPainter::SmoothPixmapTransform));
    }
    // The rectangle is filled, and nothing outside of it.
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 100; ++x)
            QCOMPARE(image.pixel(x, y) == QColor(Qt::yellow).rgb(), !rect.contains(x, y));
    }
    int lightGrey = 0;
    for (int x = rect.left(); x <= rect.right(); ++x) {
        const int gray = qGray(image.pixel(x, rect.center().y()));
        lightGrey += gray > 200 && gray < 250;
    }
    QCOMPARE(lightGrey == rect.width(), allSeen);
}

void tst_DrawUtils::tiledPixmap_data()
{
    const auto table =
        columns<QRect, bool, bool, QRect>("clip", "firstColumn", "firstRow", "bounds");
    // Tiles of 10 x 8. By the algorithm: x = left, left + 10, ... while less than the width; y = 0,
    // 8, ... while less than the height; clipped.
    table("all", QRect(0, 0, 25, 20), true, true, QRect(0, 0, 25, 20));
    table("no first column", QRect(0, 0, 25, 20), false, true, QRect(10, 0, 15, 20));
    table("no first row", QRect(0, 0, 25, 20), true, false, QRect(0, 8, 25, 12));
    table("neither", QRect(0, 0, 25, 20), false, false, QRect(10, 8, 15, 12));
    // Columns at 5 and 15 only, since 25 is not less than 25: they end at 25, where the clip ends
    // at 30.
    table("clip off the origin", QRect(5, 0, 25, 20), true, true, QRect(5, 0, 20, 20));
    // Rows at 0, 8 and 16: what is above the top of the clip is cut off; they end at 24, not at 26.
    table("clip below the origin", QRect(0, 6, 25, 20), true, true, QRect(0, 6, 25, 18));
    table("one tile, not wanted", QRect(0, 0, 10, 8), false, true, QRect());
}

void tst_DrawUtils::tiledPixmap()
{
    QFETCH(QRect, clip);
    QFETCH(bool, firstColumn);
    QFETCH(bool, firstRow);
    QFETCH(QRect, bounds);
    QPixmap tile(10, 8);
    tile.fill(Qt::red);
    for (const int ratio : {1, 2}) {
        QImage image = canvas(60, 50, ratio);
        {
            QPainter painter(&image);
            DrawUtils::drawTiledPixmap(&painter, tile, QRect(7, 7, 7, 7), clip, firstColumn,
                                       firstRow);
            QVERIFY(!painter.hasClipping());
        }
        QCOMPARE(painted(image), QRect(bounds.topLeft() * ratio, bounds.size() * ratio));
        if (!bounds.isNull())
            QCOMPARE(image.pixel(bounds.center() * ratio), QColor(Qt::red).rgb());
    }
}

void tst_DrawUtils::tiledPixmapNothing()
{
    QPixmap tile(10, 8);
    tile.fill(Qt::red);
    QImage image = canvas(30, 30, 1);
    {
        QPainter painter(&image);
        DrawUtils::drawTiledPixmap(&painter, QPixmap(), QRect(0, 0, 9, 9), QRect(0, 0, 9, 9), true,
                                   true);
        DrawUtils::drawTiledPixmap(&painter, tile, QRect(0, 0, 9, 9), QRect(), true, true);
        DrawUtils::drawTiledPixmap(&painter, tile, QRect(0, 0, 9, 9), QRect(0, 0, 9, 0), true,
                                   true);
    }
    QCOMPARE(painted(image), QRect());
}

void tst_DrawUtils::undefinedOblique_data()
{
    addRatios();
}

void tst_DrawUtils::undefinedOblique()
{
    QFETCH(int, ratio);
    QImage image = canvas(60, 40, ratio);
    {
        QPainter painter(&image);
        DrawUtils::drawUndefinedRectOblique(&painter, QRect(10, 5, 31, 31));
        QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
    }
    // From (12, 7) to (38, 33), one pixel wide.
    const QRect bounds = painted(image);
    const QRect ideal(QPoint(12, 7) * ratio, QPoint(38, 33) * ratio);
    QVERIFY(ideal.adjusted(-2, -2, 2, 2).contains(bounds));
    QVERIFY(bounds.contains(ideal.adjusted(2, 2, -2, -2)));
    // Black at alpha 0.8 on white is no darker than 51.
    int darkest = 255;
    for (int y = bounds.top(); y <= bounds.bottom(); ++y) {
        for (int x = bounds.left(); x <= bounds.right(); ++x)
            darkest = qMin(darkest, qGray(image.pixel(x, y)));
    }
    QVERIFY2(darkest >= 50 && darkest < 160, qPrintable(QString::number(darkest)));
    // The other two corners are empty.
    QCOMPARE(image.pixel(38 * ratio, 7 * ratio), white);
    QCOMPARE(image.pixel(12 * ratio, 33 * ratio), white);
}

void tst_DrawUtils::undefinedStraight_data()
{
    const auto row = columns<bool, QRgb>("black", "color");
    // Alpha 0.9 over white: 0 + 255 * 0.1 = 25.5.
    row("black", true, qRgb(25, 25, 25));
    row("red", false, qRgb(255, 25, 25));
}

void tst_DrawUtils::undefinedStraight()
{
    QFETCH(bool, black);
    QFETCH(QRgb, color);
    QImage image = canvas(60, 40, 1);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        DrawUtils::drawUndefinedRectStraight(&painter, QRect(10, 5, 31, 21), black);
        QVERIFY(painter.testRenderHint(QPainter::Antialiasing));
    }
    // The rectangle goes from (10, 5) to (40, 25), its centre is (25, 15).
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 60; ++x) {
            const bool stroke = y == 15 && ((x >= 15 && x <= 23) || (x >= 27 && x <= 35));
            const QRgb pixel = image.pixel(x, y);
            if (!stroke) {
                QCOMPARE(pixel, white);
                continue;
            }
            QVERIFY(qAbs(qRed(pixel) - qRed(color)) <= 1);
            QVERIFY(qAbs(qGreen(pixel) - qGreen(color)) <= 1);
            QVERIFY(qAbs(qBlue(pixel) - qBlue(color)) <= 1);
        }
    }
}

void tst_DrawUtils::informativeMessage_data()
{
    const auto row = columns<int, QString>("ratio", "text");
    for (const int ratio : {1, 2}) {
        const QByteArray suffix = ", ratio " + QByteArray::number(ratio);
        row(("one line" + suffix).constData(), ratio, "No picture");
        row(("wrapped" + suffix).constData(), ratio,
            "There is no picture that could be shown in this place");
    }
}

void tst_DrawUtils::informativeMessage()
{
    QFETCH(int, ratio);
    QFETCH(QString, text);
    const QRect rect(20, 10, 200, 120);
    QImage image = canvas(260, 150, ratio);
    image.fill(Qt::blue);
    QRect box;
    {
        QPainter painter(&image);
        const QFont before = painter.font();
        DrawUtils::drawInformativeMessage(&painter, nullptr, text, rect);
        QCOMPARE(painter.font(), before);
        QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));

        QFont font = before;
        font.setPixelSize(16);
        painter.setFont(font);
        box = painter.boundingRect(QRect(0, 0, 161, 81), Qt::AlignCenter | Qt::TextWordWrap, text);
        box.moveCenter(rect.center());
        box.adjust(-10, -10, 10, 10);
    }
    // Light grey inside, with white text and a white border, and unchanged outside.
    QVERIFY(rect.contains(box));
    QVERIFY(qGray(image.pixel(QPoint(box.center().x(), box.top()) * ratio)) > 200);
    QVERIFY(qGray(image.pixel(QPoint(box.left(), box.center().y()) * ratio)) > 200);
    const QRgb grey = QColor(Qt::lightGray).rgb();
    const QRgb blue = QColor(Qt::blue).rgb();
    QCOMPARE(image.pixel(QPoint(box.left() + 5, box.center().y()) * ratio), grey);
    QCOMPARE(image.pixel(QPoint(box.right() - 5, box.center().y()) * ratio), grey);
    QCOMPARE(image.pixel(QPoint(box.center().x(), box.top() + 4) * ratio), grey);
    QCOMPARE(image.pixel(QPoint(box.center().x(), box.bottom() - 4) * ratio), grey);
    QCOMPARE(image.pixel(QPoint(box.left() - 3, box.center().y()) * ratio), blue);
    QCOMPARE(image.pixel(QPoint(box.center().x(), box.bottom() + 4) * ratio), blue);
    // The corners are round: radius 9 leaves the outermost pixels free.
    QCOMPARE(image.pixel(QPoint(box.left() + 1, box.top() + 1) * ratio), blue);
    QCOMPARE(image.pixel(QPoint(box.right() - 1, box.bottom() - 1) * ratio), blue);
    int textPixels = 0;
    const QRect inner = box.adjusted(9, 9, -9, -9);
    for (int y = inner.top() * ratio; y < inner.bottom() * ratio; ++y) {
        for (int x = inner.left() * ratio; x < inner.right() * ratio; ++x)
            textPixels += qGray(image.pixel(x, y)) > 230;
    }
    QVERIFY2(textPixels > 50, qPrintable(QString::number(textPixels)));
    const QRect border = box.adjusted(-1, -1, 2, 2);
    const QRect whole(border.topLeft() * ratio, border.size() * ratio);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            QVERIFY(whole.contains(x, y) || image.pixel(x, y) == blue);
    }
}

void tst_DrawUtils::informativeMessageRounded()
{
    // 19.5 rounds to 20, 9.6 to 10, 220.4 to 220 and 129.5 to 130: the rectangle (20, 10, 200,
    // 120).
    const QRectF exact(QPointF(19.5, 9.6), QPointF(220.4, 129.5));
    QImage one = canvas(260, 150, 1);
    QImage other = canvas(260, 150, 1);
    {
        QPainter painter(&one);
        DrawUtils::drawInformativeMessage(&painter, nullptr, QStringLiteral("No picture"), exact);
    }
    {
        QPainter painter(&other);
        DrawUtils::drawInformativeMessage(&painter, nullptr, QStringLiteral("No picture"),
                                          QRect(20, 10, 200, 120));
    }
    QVERIFY(!painted(one).isNull());
    QCOMPARE(one, other);
}

void tst_DrawUtils::roundedShape_data()
{
    const auto row =
        columns<QVector<int>>("radii"); // top left, top right, bottom right, bottom left
    row("all different", QVector<int>({4, 12, 20, 8}));
    row("all equal", QVector<int>({10, 10, 10, 10}));
    row("square", QVector<int>({0, 0, 0, 0}));
    row("one round", QVector<int>({0, 0, 25, 0}));
    row("negative is square", QVector<int>({-5, 10, -5, 10}));
}

void tst_DrawUtils::roundedShape()
{
    QFETCH(QVector<int>, radii);
    const QRectF rect(30, 20, 100, 60);
    const QPainterPath path =
        DrawUtils::makePathRoundedShape(rect, radii[0], radii[1], radii[2], radii[3]);
    QCOMPARE(path.elementAt(0).isMoveTo(), true);
    QCOMPARE(QPointF(path.elementAt(0)), QPointF(path.elementAt(path.elementCount() - 1)));
    QVERIFY(qAbs(path.boundingRect().left() - 30) < 0.01);
    QVERIFY(qAbs(path.boundingRect().top() - 20) < 0.01);
    QVERIFY(qAbs(path.boundingRect().width() - 100) < 0.01);
    QVERIFY(qAbs(path.boundingRect().height() - 60) < 0.01);

    const QPointF corners[] = {rect.topLeft(), rect.topRight(), rect.bottomRight(),
                               rect.bottomLeft()};
    const QPointF inward[] = {{1, 1}, {-1, 1}, {-1, -1}, {1, -1}};
    for (int i = 0; i < 4; ++i) {
        const int radius = qMax(0, radii[i]);
        // On the diagonal the arc is (1 - 1/sqrt 2) of the radius away from the corner on each
        // axis.
        const double distance = radius * (1 - 1 / std::sqrt(2.0));
        QVERIFY(path.contains(corners[i] + inward[i] * (distance + 0.3)));
        QVERIFY(!path.contains(corners[i] + inward[i] * (distance - 0.3)));
    }
    QVERIFY(path.contains(rect.center()));
}

void tst_DrawUtils::roundedShapeFromVector()
{
    const QRectF rect(3, 4, 100, 60);
    QCOMPARE(DrawUtils::makePathRoundedShape(rect, {4, 12, 20, 8}),
             DrawUtils::makePathRoundedShape(rect, 4, 12, 20, 8));
    QCOMPARE(DrawUtils::makePathRoundedShape(rect, {4, 12}),
             DrawUtils::makePathRoundedShape(rect, 4, 12, 0, 0));
    QCOMPARE(DrawUtils::makePathRoundedShape(rect, QVector<int>()),
             DrawUtils::makePathRoundedShape(rect, 0, 0, 0, 0));
    QCOMPARE(DrawUtils::makePathRoundedShape(rect, {1, 2, 3, 4, 5}),
             DrawUtils::makePathRoundedShape(rect, 1, 2, 3, 4));
}

void tst_DrawUtils::painterStateKept()
{
    QImage image = canvas(100, 100, 1);
    QPainter painter(&image);
    painter.setPen(QPen(Qt::green, 3));
    painter.setBrush(Qt::yellow);
    QPixmap tile(10, 10);
    tile.fill(Qt::red);
    const QRect rect(10, 10, 70, 70);
    DrawUtils::drawSmoothPixmap(&painter, rect, tile);
    DrawUtils::drawTiledPixmap(&painter, tile, rect, rect, true, true);
    DrawUtils::drawUndefinedRectOblique(&painter, rect);
    DrawUtils::drawUndefinedRectStraight(&painter, rect, true);
    DrawUtils::drawInformativeMessage(&painter, nullptr, QStringLiteral("a"), rect);
    QCOMPARE(painter.pen(), QPen(Qt::green, 3));
    QCOMPARE(painter.brush(), QBrush(Qt::yellow));
    QCOMPARE(painter.renderHints(), QPainter::RenderHints(QPainter::TextAntialiasing));
}

QTEST_MAIN(tst_DrawUtils)
#include "tst_DrawUtils.moc"

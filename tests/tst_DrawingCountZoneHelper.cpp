// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DrawingCountZoneHelper.h"

#include "Columns.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QtTest>

Q_DECLARE_METATYPE(Qt::Alignment)

class tst_DrawingCountZoneHelper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void size();
    void placement_data();
    void placement();
    void margin();
    void nothingBehindByDefault();
    void gradient_data();
    void gradient();
    void pill();
    void border();
    void textInTheMiddle();
    void stateKept();
};

namespace {

QImage canvas(int ratio)
{
    QImage image(200 * ratio, 100 * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::blue);
    return image;
}

QFont badgeFont()
{
    QFont font;
    font.setPixelSize(20);
    return font;
}

DrawingCountOptions redBadge()
{
    DrawingCountOptions options;
    options.rect = QRect(0, 0, 200, 100);
    options.firstBackgroundColor = options.secondBackgroundColor = Qt::red;
    options.textColor = Qt::transparent;
    return options;
}

// Paints on the canvas and returns the place of the badge.
QRect paint(QImage& image, const QString& text, const DrawingCountOptions& options)
{
    QPainter painter(&image);
    painter.setFont(badgeFont());
    DrawingCountZoneHelper::paintCountZone(&painter, text, options);
    return DrawingCountZoneHelper::boundingRect(&painter, text, options);
}

QColor at(const QImage& image, const QPoint& point)
{
    return QColor(image.pixel(point * int(image.devicePixelRatio())));
}

} // namespace

void tst_DrawingCountZoneHelper::size()
{
    QImage image = canvas(1);
    QPainter painter(&image);
    painter.setFont(badgeFont());
    const QFontMetrics metrics(badgeFont(), &image);
    for (const QString& text : {QStringLiteral("7"), QStringLiteral("1234"), QString()}) {
        const QRect badge = DrawingCountZoneHelper::boundingRect(&painter, text, redBadge());
        QCOMPARE(badge.height(), metrics.height());
        QCOMPARE(badge.width(),
                 metrics.horizontalAdvance(text) + 2 * qRound(0.3 * metrics.height()));
    }
}

void tst_DrawingCountZoneHelper::placement_data()
{
    // horizontal: -1 for left, 0 for the middle, 1 for right
    const auto row = columns<Qt::Alignment, int, int>("alignment", "horizontal", "vertical");
    row("default", Qt::Alignment(132), 0, 0);
    row("none", Qt::Alignment(), 0, 0);
    row("left", Qt::Alignment(1), -1, 0);
    row("right", Qt::Alignment(2), 1, 0);
    row("top", Qt::Alignment(32), 0, -1);
    row("bottom", Qt::Alignment(64), 0, 1);
    row("top left", Qt::Alignment(33), -1, -1);
    row("bottom right", Qt::Alignment(66), 1, 1);
}

void tst_DrawingCountZoneHelper::placement()
{
    QFETCH(Qt::Alignment, alignment);
    QFETCH(int, horizontal);
    QFETCH(int, vertical);
    QImage image = canvas(1);
    QPainter painter(&image);
    painter.setFont(badgeFont());
    DrawingCountOptions options = redBadge();
    options.rect = QRect(10, 20, 150, 70);
    options.alignment = alignment;
    const QRect badge =
        DrawingCountZoneHelper::boundingRect(&painter, QStringLiteral("12"), options);
    const int left = badge.left() - options.rect.left();
    const int right = options.rect.right() - badge.right();
    const int top = badge.top() - options.rect.top();
    const int bottom = options.rect.bottom() - badge.bottom();
    QVERIFY(options.rect.contains(badge));
    if (horizontal == 0)
        QVERIFY(qAbs(left - right) <= 1);
    else
        QCOMPARE(horizontal < 0 ? left : right, 0);
    if (vertical == 0)
        QVERIFY(qAbs(top - bottom) <= 1);
    else
        QCOMPARE(vertical < 0 ? top : bottom, 0);
}

void tst_DrawingCountZoneHelper::margin()
{
    QImage image = canvas(1);
    QPainter painter(&image);
    painter.setFont(badgeFont());
    DrawingCountOptions options = redBadge();
    options.rect = QRect(10, 20, 150, 70);
    options.margin = 6;
    options.alignment = Qt::AlignLeft | Qt::AlignTop;
    const QString text = QStringLiteral("12");
    QCOMPARE(DrawingCountZoneHelper::boundingRect(&painter, text, options).topLeft(),
             QPoint(16, 26));
    options.alignment = Qt::AlignRight | Qt::AlignBottom;
    QCOMPARE(DrawingCountZoneHelper::boundingRect(&painter, text, options).bottomRight(),
             QPoint(153, 83)); // the rectangle's last pixel is (159, 89)
}

void tst_DrawingCountZoneHelper::nothingBehindByDefault()
{
    QImage image = canvas(1);
    DrawingCountOptions options;
    options.rect = QRect(0, 0, 200, 100);
    options.textColor = Qt::transparent;
    paint(image, QStringLiteral("12"), options);
    QImage untouched = canvas(1);
    QCOMPARE(image, untouched);
}

void tst_DrawingCountZoneHelper::gradient_data()
{
    const auto row = columns<int>("ratio");
    row("ratio 1", 1);
    row("ratio 2", 2);
}

void tst_DrawingCountZoneHelper::gradient()
{
    QFETCH(int, ratio);
    QImage image = canvas(ratio);
    DrawingCountOptions options = redBadge();
    options.firstBackgroundColor = QColor(200, 0, 0);
    options.secondBackgroundColor = QColor(0, 200, 0);
    const QRect badge = paint(image, QStringLiteral("123456"), options);
    const int x = badge.center().x();
    // Mostly the first colour at the top, and the second one from the middle down.
    const QColor top = at(image, QPoint(x, badge.top() + 1));
    QVERIFY(top.red() > 150 && top.green() < 50);
    const QColor quarter = at(image, QPoint(x, badge.top() + badge.height() / 4));
    QVERIFY(qAbs(quarter.red() - 100) < 30 && qAbs(quarter.green() - 100) < 30);
    const QColor low = at(image, QPoint(x, badge.top() + badge.height() * 3 / 4));
    QCOMPARE(low, QColor(0, 200, 0));
}

void tst_DrawingCountZoneHelper::pill()
{
    for (const int ratio : {1, 2}) {
        QImage image = canvas(ratio);
        const QRect badge = paint(image, QStringLiteral("12"), redBadge());
        const QColor red(Qt::red);
        const QColor blue(Qt::blue);
        // The ends are semicircles: filled at mid-height, empty in the corners. On the diagonal a
        // circle of radius r is 0.29 r away from the corner of its square.
        const int mid = badge.center().y();
        QCOMPARE(at(image, QPoint(badge.left() + 1, mid)), red);
        QCOMPARE(at(image, QPoint(badge.right() - 1, mid)), red);
        const int free = int(0.29 * badge.height() / 2) - 1;
        QVERIFY(free > 0);
        QCOMPARE(at(image, badge.topLeft() + QPoint(free, free)), blue);
        QCOMPARE(at(image, badge.topRight() + QPoint(-free, free)), blue);
        QCOMPARE(at(image, badge.bottomLeft() + QPoint(free, -free)), blue);
        QCOMPARE(at(image, badge.bottomRight() + QPoint(-free, -free)), blue);
        QCOMPARE(at(image, badge.topLeft() + QPoint(free + 4, free + 4)), red);
        QCOMPARE(at(image, QPoint(badge.center().x(), badge.top() - 2)), blue);
        QCOMPARE(at(image, QPoint(badge.left() - 2, mid)), blue);
    }
}

void tst_DrawingCountZoneHelper::border()
{
    QImage image = canvas(1);
    DrawingCountOptions options = redBadge();
    options.borderColor = Qt::yellow;
    const QRect badge = paint(image, QStringLiteral("12345"), options);
    const QColor edge = at(image, QPoint(badge.center().x(), badge.top()));
    QVERIFY(edge.green() > 100); // the fill and the canvas have no green
    QCOMPARE(at(image, QPoint(badge.center().x(), badge.center().y())), QColor(Qt::red));
}

void tst_DrawingCountZoneHelper::textInTheMiddle()
{
    for (const int ratio : {1, 2}) {
        QImage image = canvas(ratio);
        DrawingCountOptions options = redBadge();
        options.textColor = Qt::green;
        const QRect badge = paint(image, QStringLiteral("88"), options);
        QRect text;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qGreen(image.pixel(x, y)) > 128)
                    text |= QRect(x, y, 1, 1);
            }
        }
        QVERIFY(!text.isNull());
        const QRect device(badge.topLeft() * ratio, badge.size() * ratio);
        QVERIFY(device.contains(text));
        const int left = text.left() - device.left();
        const int right = device.right() - text.right();
        QVERIFY2(qAbs(left - right) <= 2 * ratio,
                 qPrintable(QStringLiteral("%1 %2").arg(left).arg(right)));
    }
}

void tst_DrawingCountZoneHelper::stateKept()
{
    QImage image = canvas(1);
    QPainter painter(&image);
    painter.setPen(QPen(Qt::green, 3));
    painter.setBrush(Qt::yellow);
    DrawingCountZoneHelper::paintCountZone(&painter, QStringLiteral("1"), redBadge());
    QCOMPARE(painter.pen(), QPen(Qt::green, 3));
    QCOMPARE(painter.brush(), QBrush(Qt::yellow));
    QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
}

QTEST_MAIN(tst_DrawingCountZoneHelper)
#include "tst_DrawingCountZoneHelper.moc"

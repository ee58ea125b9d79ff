// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Pictures.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace {

/// A painter scaled uniformly so that \a drawing units fill the pixmap,
/// centred; what does not fit is cut off.
class UnitPainter : public QPainter
{
public:
    UnitPainter(QPixmap* pixmap, const QSizeF& drawing)
        : QPainter(pixmap)
    {
        setRenderHint(Antialiasing);
        const double unit = qMax(pixmap->width() / drawing.width(),
                                 pixmap->height() / drawing.height());
        translate((pixmap->width() - unit * drawing.width()) / 2,
                  (pixmap->height() - unit * drawing.height()) / 2);
        scale(unit, unit);
        setPen(Qt::NoPen);
    }
};

QPixmap transparent(int side)
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

} // namespace

QPixmap Pictures::boat(const QSize& size)
{
    QPixmap pixmap(size);
    UnitPainter painter(&pixmap, {160, 100});
    QLinearGradient sky(0, 0, 0, 66);
    sky.setColorAt(0, QColor(0x3b, 0x7f, 0xc4));
    sky.setColorAt(1, QColor(0xfd, 0xd9, 0xa8));
    painter.fillRect(QRectF(0, 0, 160, 66), sky);
    painter.setBrush(QColor(0xff, 0xf2, 0xc0));
    painter.drawEllipse(QPointF(122, 44), 11, 11);
    QLinearGradient sea(0, 64, 0, 100);
    sea.setColorAt(0, QColor(0x2a, 0x7f, 0x9e));
    sea.setColorAt(1, QColor(0x0c, 0x3c, 0x5c));
    painter.fillRect(QRectF(0, 64, 160, 36), sea);
    painter.setBrush(QColor(0x1d, 0x52, 0x4a));
    painter.drawPolygon(
        QPolygonF({{0, 64}, {0, 54}, {18, 49}, {40, 58}, {58, 64}}));

    painter.setBrush(QColor(0xff, 0xff, 0xff));
    painter.drawPolygon(QPolygonF({{76, 12}, {76, 66}, {46, 66}}));
    painter.setBrush(QColor(0xd8, 0x3a, 0x34));
    painter.drawPolygon(QPolygonF({{79, 22}, {79, 66}, {104, 66}}));
    painter.setBrush(QColor(0x5b, 0x35, 0x1e));
    painter.drawRect(QRectF(76, 10, 2.4, 62));
    painter.drawPolygon(QPolygonF({{42, 70}, {112, 70}, {100, 82}, {52, 82}}));

    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 110), 1.2));
    for (int row = 0; row < 3; ++row) {
        for (int x = -10 + 9 * row; x < 160; x += 34)
            painter.drawArc(QRectF(x, 84 + 5 * row, 20, 5), 0, 180 * 16);
    }
    return pixmap;
}

QPixmap Pictures::bell(int side)
{
    QPixmap pixmap = transparent(side);
    UnitPainter painter(&pixmap, {100, 100});
    QPainterPath bell(QPointF(14, 76));
    bell.cubicTo(30, 62, 22, 20, 50, 18);
    bell.cubicTo(78, 20, 70, 62, 86, 76);
    bell.closeSubpath();
    painter.setBrush(Qt::black);
    painter.drawPath(bell);
    painter.drawEllipse(QPointF(50, 15), 7, 7);
    painter.drawPie(QRectF(38, 68, 24, 24), 180 * 16, 180 * 16);
    return pixmap;
}

QPixmap Pictures::lifebelt(int side)
{
    QPixmap pixmap = transparent(side);
    UnitPainter painter(&pixmap, {100, 100});
    QPainterPath ring;
    ring.addEllipse(QPointF(50, 50), 46, 46);
    ring.addEllipse(QPointF(50, 50), 22, 22);
    painter.setBrush(QColor(0xfa, 0xf5, 0xe9));
    painter.drawPath(ring);
    painter.setClipPath(ring);
    painter.setBrush(QColor(0xe4, 0x57, 0x2e));
    for (int quarter = 0; quarter < 4; ++quarter)
        painter.drawPie(QRectF(2, 2, 96, 96), (22 + 90 * quarter) * 16,
                        46 * 16);
    painter.setClipping(false);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0x2c, 0x5d, 0x8a), 3));
    painter.drawEllipse(QPointF(50, 50), 46, 46);
    painter.drawEllipse(QPointF(50, 50), 22, 22);
    return pixmap;
}

QPixmap Pictures::engraving(int side)
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::white);
    UnitPainter painter(&pixmap, {200, 200});
    painter.setPen(QPen(QColor(0x1b, 0x2a, 0x41), 2));
    for (int angle = 0; angle < 360; angle += 10) {
        painter.save();
        painter.translate(100, 100);
        painter.rotate(angle);
        painter.drawLine(24, 0, 94, 0);
        painter.restore();
    }
    for (int radius = 26; radius <= 94; radius += 8)
        painter.drawEllipse(QPointF(100, 100), radius, radius);
    return pixmap;
}

void Pictures::drawChequerboard(QPainter* painter, const QRect& rect)
{
    const int side = 8;
    painter->save();
    painter->setClipRect(rect);
    painter->fillRect(rect, Qt::white);
    for (int y = 0; y * side < rect.height(); ++y) {
        for (int x = y % 2; x * side < rect.width(); x += 2) {
            painter->fillRect(rect.left() + x * side, rect.top() + y * side,
                              side, side, QColor(0xd4, 0xd8, 0xde));
        }
    }
    painter->restore();
}

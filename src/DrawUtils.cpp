// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DrawUtils.h"

#include <QLabel>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QWidget>

namespace {

/// Saves the state of a painter, and restores it at the end of the scope.
class PainterState
{
public:
    explicit PainterState(QPainter* painter)
        : mPainter(painter)
    {
        mPainter->save();
    }
    ~PainterState() { mPainter->restore(); }

private:
    Q_DISABLE_COPY(PainterState)

    QPainter* const mPainter;
};

QColor withAlpha(QColor color, double alpha)
{
    color.setAlphaF(decltype(color.alphaF())(alpha));
    return color;
}

template <typename Change>
void changeFont(QWidget* widget, Change change)
{
    if (!widget)
        return;
    QFont font = widget->font();
    change(font);
    widget->setFont(font);
}

// Continues the outline to a corner and around it, clockwise, with an arc from startAngle.
void roundCorner(QPainterPath& path, const QPointF& corner, const QPointF& boxTopLeft, int radius,
                 int startAngle)
{
    if (radius > 0)
        path.arcTo(QRectF(boxTopLeft, QSizeF(2 * radius, 2 * radius)), startAngle, -90);
    else
        path.lineTo(corner);
}

} // namespace

void DrawUtils::setWidgetColorBackground(QWidget* widget, const QColor& color)
{
    if (!widget)
        return;
    widget->setAutoFillBackground(true);
    QPalette palette = widget->palette();
    palette.setBrush(QPalette::All, QPalette::Window, QBrush(color));
    palette.setBrush(QPalette::All, QPalette::Button, QBrush(color));
    widget->setPalette(palette);
}

void DrawUtils::setWidgetColorText(QWidget* widget, const QColor& color)
{
    if (!widget)
        return;
    QPalette palette = widget->palette();
    const QColor disabled = withAlpha(color, 0.5);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::All, role, color);
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    widget->setPalette(palette);
}

void DrawUtils::setBootstrapColor(QLabel* label, ColorUtils::NotificationType type)
{
    setWidgetColorBackground(label, ColorUtils::bootstrapColorBackground(type));
    setWidgetColorText(label, ColorUtils::bootstrapColorText(type));
}

void DrawUtils::setWidgetTextPixelSize(QWidget* widget, int pixelSize)
{
    changeFont(widget, [pixelSize](QFont& font) { font.setPixelSize(pixelSize); });
}

void DrawUtils::setWidgetTextFamily(QWidget* widget, const QString& family)
{
    changeFont(widget, [&family](QFont& font) { font.setFamily(family); });
}

void DrawUtils::setWidgetTextBold(QWidget* widget, bool bold)
{
    changeFont(widget, [bold](QFont& font) { font.setWeight(bold ? QFont::Bold : QFont::Normal); });
}

void DrawUtils::drawSmoothPixmap(QPainter* painter, const QRect& rect, const QPixmap& pixmap)
{
    const int small = 50;
    const PainterState state(painter);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    if ((pixmap.width() > small || pixmap.height() > small)
        && (rect.width() < small || rect.height() < small))
        painter->drawPixmap(
            rect, pixmap.scaled(rect.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    else
        painter->drawPixmap(rect, pixmap);
}

void DrawUtils::drawTiledPixmap(QPainter* painter, const QPixmap& pixmap, const QRect& target,
                                const QRect& clip, bool firstColumn, bool firstRow)
{
    Q_UNUSED(target)
    if (pixmap.isNull() || clip.isEmpty())
        return;
    const PainterState state(painter);
    painter->setClipRect(clip);
    for (int x = clip.left(); x < clip.width(); x += pixmap.width()) {
        if (x == clip.left() && !firstColumn)
            continue;
        for (int y = firstRow ? 0 : pixmap.height(); y < clip.height(); y += pixmap.height())
            painter->drawPixmap(x, y, pixmap);
    }
}

void DrawUtils::drawUndefinedRectOblique(QPainter* painter, const QRect& rect)
{
    const PainterState state(painter);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(withAlpha(Qt::black, 0.8));
    painter->drawLine(rect.left() + 2, rect.top() + 2, rect.right() - 2, rect.bottom() - 2);
}

void DrawUtils::drawUndefinedRectStraight(QPainter* painter, const QRect& rect, bool black)
{
    const PainterState state(painter);
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(withAlpha(black ? Qt::black : Qt::red, 0.9));
    const QPoint centre = rect.center();
    painter->drawLine(rect.left() + 5, centre.y(), centre.x() - 2, centre.y());
    painter->drawLine(centre.x() + 2, centre.y(), rect.right() - 5, centre.y());
}

void DrawUtils::drawInformativeMessage(QPainter* painter, QWidget* widget, QString text,
                                       const QRectF& rect)
{
    const QPoint topLeft(qRound(rect.left()), qRound(rect.top()));
    const QPoint behind(qRound(rect.right()), qRound(rect.bottom()));
    drawInformativeMessage(
        painter, widget, text,
        QRect(topLeft, QSize(behind.x() - topLeft.x(), behind.y() - topLeft.y())));
}

void DrawUtils::drawInformativeMessage(QPainter* painter, QWidget* widget, QString text,
                                       const QRect& rect)
{
    Q_UNUSED(widget)
    const int keptFree = 39;
    const int padding = 10;
    const int radius = 9;
    const int flags = Qt::AlignCenter | Qt::TextWordWrap;

    const PainterState state(painter);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::white);
    QFont font = painter->font();
    font.setPixelSize(16);
    painter->setFont(font);

    QRect box = painter->boundingRect(
        QRect(0, 0, rect.width() - keptFree, rect.height() - keptFree), flags, text);
    box.moveCenter(rect.center());
    box.adjust(-padding, -padding, padding, padding);
    painter->setBrush(QBrush(Qt::lightGray));
    painter->drawRoundedRect(box, radius, radius);
    painter->drawText(box, flags, text);
}

QPainterPath DrawUtils::makePathRoundedShape(const QRectF& rect, const QVector<int>& radii)
{
    return makePathRoundedShape(rect, radii.value(0), radii.value(1), radii.value(2),
                                radii.value(3));
}

QPainterPath DrawUtils::makePathRoundedShape(const QRectF& rect, int topLeft, int topRight,
                                             int bottomRight, int bottomLeft)
{
    const qreal width = rect.width();
    const qreal height = rect.height();
    QPainterPath path;
    path.moveTo(qMax(0, topLeft), 0);
    roundCorner(path, {width, 0}, {width - 2 * topRight, 0}, topRight, 90);
    roundCorner(path, {width, height}, {width - 2 * bottomRight, height - 2 * bottomRight},
                bottomRight, 0);
    roundCorner(path, {0, height}, {0, height - 2 * bottomLeft}, bottomLeft, 270);
    roundCorner(path, {0, 0}, {0, 0}, topLeft, 180);
    path.closeSubpath();
    path.translate(rect.topLeft());
    return path;
}

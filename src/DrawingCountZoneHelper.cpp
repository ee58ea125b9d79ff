// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DrawingCountZoneHelper.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>

namespace {

int textWidth(const QFontMetrics& metrics, const QString& text)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 11, 0)
    return metrics.horizontalAdvance(text);
#else
    return metrics.width(text);
#endif
}

} // namespace

QRect DrawingCountZoneHelper::boundingRect(QPainter* painter, const QString& text,
                                           const DrawingCountOptions& options)
{
    const QFontMetrics metrics = painter->fontMetrics();
    const int height = metrics.height();
    const int padding = qRound(0.3 * height);
    const QSize size(textWidth(metrics, text) + 2 * padding, height);

    const int margin = options.margin;
    const QRect place = options.rect.adjusted(margin, margin, -margin, -margin);
    QPoint corner = place.topLeft()
        + QPoint((place.width() - size.width()) / 2, (place.height() - size.height()) / 2);
    if (options.alignment & Qt::AlignLeft)
        corner.setX(place.left());
    else if (options.alignment & Qt::AlignRight)
        corner.setX(place.left() + place.width() - size.width());
    if (options.alignment & Qt::AlignTop)
        corner.setY(place.top());
    else if (options.alignment & Qt::AlignBottom)
        corner.setY(place.top() + place.height() - size.height());
    return QRect(corner, size);
}

void DrawingCountZoneHelper::paintCountZone(QPainter* painter, const QString& text,
                                            const DrawingCountOptions& options)
{
    const QRect badge = boundingRect(painter, text, options);
    const qreal radius = qMin(badge.width(), badge.height()) / 2.0;

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(options.borderColor);
    if (options.firstBackgroundColor.alpha() > 0) {
        QLinearGradient gradient(badge.topLeft(), badge.topLeft() + QPoint(0, badge.height()));
        gradient.setColorAt(0.0, options.firstBackgroundColor);
        gradient.setColorAt(0.5, options.secondBackgroundColor);
        painter->setBrush(gradient);
    } else {
        painter->setBrush(Qt::NoBrush);
    }
    painter->drawRoundedRect(badge, radius, radius);
    painter->setPen(options.textColor);
    painter->drawText(badge, Qt::AlignCenter, text);
    painter->restore();
}

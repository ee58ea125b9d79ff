// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Canvas.h"

#include <QPainter>

Canvas::Canvas(const QSize& size, const Paint& paint)
    : mPaint(paint)
{
    setFixedSize(size);
}

void Canvas::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setPen(Qt::black);
    painter.save();
    mPaint(&painter, rect());
    painter.restore();
    // One pixel along the edge, at every number of device pixels.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0xc8, 0xcd, 0xd4), 1));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

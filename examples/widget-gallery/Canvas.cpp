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
    painter.setPen(QColor(0xc8, 0xcd, 0xd4));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

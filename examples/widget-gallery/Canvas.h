// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Canvas: a piece of white paper of a fixed size that a function paints on.

#ifndef CANVAS_H
#define CANVAS_H

#include <QSize>
#include <QWidget>

#include <functional>

class QPainter;

class Canvas : public QWidget
{
public:
    /// Paints the canvas whose rectangle it gets.
    using Paint = std::function<void(QPainter*, const QRect&)>;

    Canvas(const QSize& size, const Paint& paint);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Paint mPaint;
};

#endif // CANVAS_H

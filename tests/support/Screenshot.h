// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Screenshot: what a window looks like on a real display.

#ifndef SCREENSHOT_H
#define SCREENSHOT_H

#include <QApplication>
#include <QColor>
#include <QImage>
#include <QPalette>
#include <QPixmap>
#include <QRect>
#include <QScreen>
#include <QWidget>

/// Fills \a widget with \a color, so that it can be found in a screenshot.
inline void paintPlain(QWidget* widget, const QColor& color)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, color);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

/// A screenshot of \a screen.
inline QImage screenshot(QScreen* screen)
{
    QApplication::processEvents();
    return screen->grabWindow(0).toImage();
}

/// The bounding rectangle of the pixels of \a image that have \a color; null if there are none.
inline QRect placeOf(const QColor& color, const QImage& image)
{
    QRect place;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == color.rgb())
                place |= QRect(x, y, 1, 1);
        }
    }
    return place;
}

#endif // SCREENSHOT_H

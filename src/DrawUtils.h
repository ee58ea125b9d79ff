// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DrawUtils: palette and font shortcuts for widgets, and painter routines.

#ifndef ORVAUTILS_DRAWUTILS_H
#define ORVAUTILS_DRAWUTILS_H

#include "ColorUtils.h"
#include "orvautils_export.h"

#include <QPainterPath>
#include <QRect>
#include <QString>
#include <QVector>

class QLabel;
class QPainter;
class QPixmap;
class QWidget;

/// Shortcuts for the palettes and fonts of widgets, and painter routines.
///
/// \code
/// DrawUtils::setBootstrapColor(statusLabel, ColorUtils::Warning); // brown on light yellow
/// DrawUtils::setWidgetTextBold(statusLabel, true);
/// \endcode
///
/// Static functions for the GUI thread. The setters do nothing for a null \a widget; the painter
/// routines need an active \a painter and leave its state as they found it. Lengths are in the
/// painter's logical pixels unless a function says otherwise. Nothing is logged.
class ORVAUTILS_EXPORT DrawUtils
{
public:
    /// Fills the background of \a widget with \a color: turns on automatic filling and sets the
    /// roles Window and Button of all colour groups.
    static void setWidgetColorBackground(QWidget* widget, const QColor& color);

    /// Sets the text colour of \a widget to \a color: sets the roles WindowText, Text and
    /// ButtonText of all colour groups, and for the disabled group the same colour at alpha 0.5.
    static void setWidgetColorText(QWidget* widget, const QColor& color);

    /// Gives \a label the text and background colours of a notification of \a type, see ColorUtils.
    static void setBootstrapColor(QLabel* label, ColorUtils::NotificationType type);

    /// Sets the size of the font of \a widget to \a pixelSize pixels, which must be above 0.
    static void setWidgetTextPixelSize(QWidget* widget, int pixelSize);

    /// Sets the family of the font of \a widget to \a family.
    static void setWidgetTextFamily(QWidget* widget, const QString& family);

    /// Sets the weight of the font of \a widget to 75 when \a bold, else to 50.
    static void setWidgetTextBold(QWidget* widget, bool bold);

    /// Draws \a pixmap into \a rect with smooth transformation. A pixmap that is more than 50
    /// pixels wide or high and is drawn into a rectangle less than 50 wide or high is first scaled
    /// to the size of \a rect, ignoring its aspect ratio: the painter's own scaling drops pixels
    /// when it makes a pixmap much smaller.
    static void drawSmoothPixmap(QPainter* painter, const QRect& rect, const QPixmap& pixmap);

    /// Tiles \a clip with \a pixmap. The tiles are placed at x = left of \a clip, then in steps of
    /// the pixmap's width in its own pixels while x is below the width of \a clip, and at y = 0,
    /// then in steps of its height while y is below the height of \a clip; everything is clipped to
    /// \a clip. The tiles of the first column are drawn only with \a firstColumn, those of the
    /// first row only with \a firstRow. \a target is ignored. Nothing is drawn for a null pixmap or
    /// an empty clip.
    ///
    /// Columns start at the clip's left edge but end at its width, and rows start at 0 whatever its
    /// top. This is deliberate; callers move the painter's origin to the clip.
    static void drawTiledPixmap(QPainter* painter, const QPixmap& pixmap, const QRect& target,
                                const QRect& clip, bool firstColumn, bool firstRow);

    /// Marks undefined content by a diagonal line, black at alpha 0.8, from 2 pixels inside
    /// the top left corner of \a rect to 2 pixels inside the bottom right one.
    static void drawUndefinedRectOblique(QPainter* painter, const QRect& rect);

    /// Marks undefined content by two strokes at mid height of \a rect, from 5 pixels
    /// inside the left edge to 2 pixels left of the centre and from 2 pixels right of the centre to
    /// 5 pixels inside the right edge; black if \a black is true, else red, at alpha 0.9, not
    /// antialiased.
    static void drawUndefinedRectStraight(QPainter* painter, const QRect& rect, bool black);

    /// As below, with each edge of \a rect rounded to whole pixels.
    static void drawInformativeMessage(QPainter* painter, QWidget* widget, QString text,
                                       const QRectF& rect);

    /// Shows \a text in the middle of \a rect: white, 16 pixels high, wrapped at words, on a
    /// light-grey rectangle with a white border and corners of radius 9 that leaves 10 pixels
    /// around the text. The text takes at most the width and height of \a rect less 39. \a widget
    /// is ignored and may be null.
    static void drawInformativeMessage(QPainter* painter, QWidget* widget, QString text,
                                       const QRect& rect);

    /// As below; \a radii are those of the top left, top right, bottom right and bottom left
    /// corners. Missing radii count as 0, additional ones are ignored.
    static QPainterPath makePathRoundedShape(const QRectF& rect, const QVector<int>& radii);

    /// A closed path around \a rect with a quarter circle at each corner, of the radius given for
    /// that corner: \a topLeft, \a topRight, \a bottomRight, \a bottomLeft. A radius of 0 or less
    /// gives a square corner. Radii that together exceed a side overlap; they are not reduced.
    static QPainterPath makePathRoundedShape(const QRectF& rect, int topLeft, int topRight,
                                             int bottomRight, int bottomLeft);
};

#endif // ORVAUTILS_DRAWUTILS_H

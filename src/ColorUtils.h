// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ColorUtils: notification colours, grey and random colours, interpolation, and colours as CSS.

#ifndef ORVAUTILS_COLORUTILS_H
#define ORVAUTILS_COLORUTILS_H

#include "orvautils_export.h"

#include <QColor>
#include <QObject>
#include <QString>

/// Static functions on colours. The class is a QObject only for the sake of its meta-object; it
/// has no state and logs nothing.
class ORVAUTILS_EXPORT ColorUtils : public QObject
{
    Q_OBJECT

public:
    /// The kinds of message that the applications show.
    enum NotificationType : int {
        Info = 0, ///< "#00529B" on "#BDE5F8"
        Success = 1, ///< "#4F8A10" on "#DFF2BF"
        Warning = 2, ///< "#9F6000" on "#FEEFB3"
        Error = 3 ///< "#D8000C" on "#FFBABA"
    };
    Q_ENUM(NotificationType)

    /// All functions are static, so there is no need for an object. If \a parent is not null, it
    /// becomes the owner.
    explicit ColorUtils(QObject* parent = nullptr);

    /// The text colour of a notification of \a type; black for any other value.
    static QColor bootstrapColorText(NotificationType type);

    /// The background colour of a notification of \a type; black for any other value.
    static QColor bootstrapColorBackground(NotificationType type);

    /// The grey of \a color, (11 red + 16 green + 5 blue) / 32 rounded down, with its alpha.
    static QColor grayColor(const QColor& color);

    /// An opaque colour from three draws of the C runtime's generator (`rand`), which the caller
    /// seeds. Each component is a draw modulo 255 and therefore never 255. This is deliberate.
    static QColor randomColor();

    /// The colour between \a a, where \a t is 0, and \a b, where \a t is 1. Red, green and blue
    /// are a (1 - t) + b t, truncated toward zero; alpha is always 255. The colour is invalid if
    /// \a t lies so far outside the range 0 to 1 that a component leaves the range 0 to 255.
    static QColor interpolate(QColor a, QColor b, double t);

    /// \a color as CSS: "#rrggbb" in lower case when it is fully opaque, otherwise
    /// "rgba(255,0,0,0.501961)" with red, green and blue in decimal and the alpha as it is stored,
    /// with at most six significant digits. QColor stores the alpha in sixteen bits, so that 0.5 is
    /// stored, and written, as 0.500008.
    static QString colorToCss(const QColor& color);

    /// The colour that a CSS text names: "rgba(r,g,b,a)" with exactly four parts, "rgb(r,g,b)" with
    /// exactly three, a hash sign with 3, 6, 8, 9 or 12 hexadecimal digits, or an SVG colour name;
    /// case does not matter. Parts that are not numbers are read as 0. A red, green or blue outside
    /// the range 0 to 255, a wrong number of parts and any other text give an invalid colour; an
    /// alpha outside the range 0 to 1 is clamped to it.
    ///
    /// \code
    /// ColorUtils::colorFromCss("RGBA(1,2,3,0.5)"); // (1, 2, 3), half transparent
    /// ColorUtils::colorFromCss("rgba(1,2,3)"); // invalid
    /// \endcode
    static QColor colorFromCss(const QString& text);
};

#endif // ORVAUTILS_COLORUTILS_H

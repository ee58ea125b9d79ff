// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DrawingCountZoneHelper: a badge that shows a count.

#ifndef ORVAUTILS_DRAWINGCOUNTZONEHELPER_H
#define ORVAUTILS_DRAWINGCOUNTZONEHELPER_H

#include "DrawingCountOptions.h"
#include "orvautils_export.h"

#include <QRect>
#include <QString>

class QPainter;

/// Measures and paints a count badge with the font of an active painter. The class is stateless and
/// belongs to the GUI thread. Nothing is logged.
///
/// \code
/// QPainter painter(this);
/// DrawingCountZoneHelper::paintCountZone(&painter, QString::number(count), options);
/// \endcode
///
/// The badge is as high as a line of text and as wide as the text plus 0.3 of that height, rounded,
/// on the left and on the right. The radius of its corners is half its height (half its width if it
/// is narrower than high), so that a short count reads as a pill with the text in its middle.
class ORVAUTILS_EXPORT DrawingCountZoneHelper
{
public:
    /// The rectangle of the badge for \a text, in the logical pixels of \a painter: inside the
    /// rectangle of \a options minus the margin on each side, at the left (Qt::AlignLeft) or right
    /// (Qt::AlignRight) and at the top (Qt::AlignTop) or bottom (Qt::AlignBottom), centred if
    /// neither is set. A badge that is larger than that area extends beyond it.
    static QRect boundingRect(QPainter* painter, const QString& text,
                              const DrawingCountOptions& options);

    /// Paints the badge with \a painter and \a options at boundingRect(), antialiased: a
    /// background, only if the first background colour has an alpha above 0, that changes downwards
    /// from the first colour to the second one, which it reaches at half the height; the border;
    /// and \a text in its middle. The painter's state is left as it was.
    static void paintCountZone(QPainter* painter, const QString& text,
                               const DrawingCountOptions& options);
};

#endif // ORVAUTILS_DRAWINGCOUNTZONEHELPER_H

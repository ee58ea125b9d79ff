// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DrawingCountOptions: how a count badge looks and where it is placed.

#ifndef ORVAUTILS_DRAWINGCOUNTOPTIONS_H
#define ORVAUTILS_DRAWINGCOUNTOPTIONS_H

#include "orvautils_export.h"

#include <QColor>
#include <QRect>

/// The options of DrawingCountZoneHelper. A plain value: change the fields that matter.
///
/// \code
/// DrawingCountOptions options;
/// options.rect = rect();
/// options.alignment = Qt::AlignRight | Qt::AlignTop;
/// options.firstBackgroundColor = options.secondBackgroundColor = Qt::red;
/// options.textColor = Qt::white;
/// \endcode
class ORVAUTILS_EXPORT DrawingCountOptions
{
public:
    /// A centred badge with black text and no visible background and border.
    DrawingCountOptions();

    Qt::Alignment alignment; ///< the position of the badge in rect: Qt::AlignCenter (132)
    int margin = 0; ///< extra pixels kept free around the badge within rect: 0
    QColor firstBackgroundColor; ///< at the top; no background at all with alpha 0: transparent
    QColor secondBackgroundColor; ///< from the middle down: white
    QColor textColor; ///< black
    QColor borderColor; ///< transparent
    QRect rect; ///< the rectangle in which the badge is placed: null
};

#endif // ORVAUTILS_DRAWINGCOUNTOPTIONS_H

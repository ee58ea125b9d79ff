// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Pictures: what the samples show, drawn by code.

#ifndef PICTURES_H
#define PICTURES_H

#include <QPixmap>
#include <QSize>

class QPainter;
class QRect;

namespace Pictures {

/// A sailing boat at sea, opaque.
QPixmap boat(const QSize& size);

/// A black bell on a transparent background, for a symbol that can have any
/// colour.
QPixmap bell(int side);

/// A round sign in several colours on a transparent background.
QPixmap lifebelt(int side);

/// A print of fine lines, which poor scaling breaks up.
QPixmap engraving(int side);

/// The pattern that shows where a picture is transparent.
void drawChequerboard(QPainter* painter, const QRect& rect);

} // namespace Pictures

#endif // PICTURES_H

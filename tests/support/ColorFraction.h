// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#ifndef COLORFRACTION_H
#define COLORFRACTION_H

#include <QColor>

/// The type that QColor uses for fractions: double in Qt 5, float in Qt 6.
using ColorFraction = decltype(QColor().alphaF());

#endif // COLORFRACTION_H

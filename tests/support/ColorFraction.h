// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#ifndef COLORFRACTION_H
#define COLORFRACTION_H

#include <QColor>

/// What QColor takes for a part of the whole: a double in Qt 5, a float in Qt 6.
using ColorFraction = decltype(QColor().alphaF());

#endif // COLORFRACTION_H

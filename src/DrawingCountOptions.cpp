// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DrawingCountOptions.h"

DrawingCountOptions::DrawingCountOptions()
    : alignment(Qt::AlignCenter)
    , firstBackgroundColor(Qt::transparent)
    , secondBackgroundColor(Qt::white)
    , textColor(Qt::black)
    , borderColor(Qt::transparent)
{ }

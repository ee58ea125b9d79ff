// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "EventUtils.h"

#include <QKeyEvent>

bool EventUtils::match_KeyDelete(QKeyEvent* event)
{
    return event->matches(QKeySequence::Delete)
        || (event->modifiers() == Qt::NoModifier && event->key() == Qt::Key_Backspace);
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "KeyPressCheatCodeDetection.h"

#include <QKeyEvent>

KeyPressCheatCodeDetection::KeyPressCheatCodeDetection(QObject* target)
    : QObject(target)
{
    target->installEventFilter(this);
}

KeyPressCheatCodeDetection::~KeyPressCheatCodeDetection() = default;

void KeyPressCheatCodeDetection::setKey(const QString& key)
{
    mKey = key;
    mPosition = 0;
}

bool KeyPressCheatCodeDetection::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parent() && event->type() == QEvent::KeyPress)
        keyPressEvent(static_cast<QKeyEvent*>(event));
    return false;
}

void KeyPressCheatCodeDetection::keyPressEvent(QKeyEvent* event)
{
    const QString typed = event->text();
    if (typed.size() != 1)
        return;
    const QString expected = mKey.mid(mPosition, 1); // empty for an empty sequence: nothing matches
    if (typed.compare(expected, Qt::CaseInsensitive) != 0) {
        mPosition = 0;
        return;
    }
    ++mPosition;
    if (mPosition < mKey.size())
        return;
    // Reset first: a slot may type on, set another sequence or delete this object.
    mPosition = 0;
    Q_EMIT keyDetected();
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "KeyPressCheatCodeDetection.h"

#include <QKeyEvent>

using namespace OrvaUtilsPrivate;

class OrvaUtilsPrivate::KeyPressCheatCodeDetectionPrivate
{
public:
    QString key;
    int position =
        0; // how many characters of the key have been typed so far, always less than its length
};

KeyPressCheatCodeDetection::KeyPressCheatCodeDetection(QObject* target)
    : QObject(target)
    , d(new KeyPressCheatCodeDetectionPrivate)
{
    target->installEventFilter(this);
}

KeyPressCheatCodeDetection::~KeyPressCheatCodeDetection() = default;

void KeyPressCheatCodeDetection::setKey(const QString& key)
{
    d->key = key;
    d->position = 0;
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
    const QString expected =
        d->key.mid(d->position, 1); // empty for an empty sequence: nothing matches
    if (typed.compare(expected, Qt::CaseInsensitive) != 0) {
        d->position = 0;
        return;
    }
    ++d->position;
    if (d->position < d->key.size())
        return;
    // Reset first: a slot may type on, set another sequence or delete this object.
    d->position = 0;
    Q_EMIT keyDetected();
}

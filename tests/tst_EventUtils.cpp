// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "EventUtils.h"

#include "Columns.h"

#include <QKeyEvent>
#include <QtTest>

class tst_EventUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyDelete_data();
    void keyDelete();
};

void tst_EventUtils::keyDelete_data()
{
    const auto row = columns<int, int, bool>("key", "modifiers", "deletes");
    row("Delete", int(Qt::Key_Delete), int(Qt::NoModifier), true);
    row("Delete of the keypad", int(Qt::Key_Delete), int(Qt::KeypadModifier), true);
    row("Backspace", int(Qt::Key_Backspace), int(Qt::NoModifier), true);
    row("Shift+Backspace", int(Qt::Key_Backspace), int(Qt::ShiftModifier), false);
    row("Control+Backspace", int(Qt::Key_Backspace), int(Qt::ControlModifier), false);
    row("Backspace of a keypad", int(Qt::Key_Backspace), int(Qt::KeypadModifier), false);
    row("Shift+Delete, which cuts", int(Qt::Key_Delete), int(Qt::ShiftModifier), false);
    row("Control+Delete", int(Qt::Key_Delete), int(Qt::ControlModifier), false);
    row("a letter", int(Qt::Key_X), int(Qt::NoModifier), false);
    row("Return", int(Qt::Key_Return), int(Qt::NoModifier), false);
}

void tst_EventUtils::keyDelete()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, deletes);
    QKeyEvent press(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers));
    QCOMPARE(EventUtils::match_KeyDelete(&press), deletes);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::KeyboardModifiers(modifiers));
    QCOMPARE(EventUtils::match_KeyDelete(&release), deletes);
}

QTEST_MAIN(tst_EventUtils)
#include "tst_EventUtils.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "EventUtils.h"

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
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("deletes");
    QTest::newRow("Delete") << int(Qt::Key_Delete) << int(Qt::NoModifier) << true;
    QTest::newRow("Delete of the keypad") << int(Qt::Key_Delete) << int(Qt::KeypadModifier) << true;
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << int(Qt::NoModifier) << true;
    QTest::newRow("Shift+Backspace") << int(Qt::Key_Backspace) << int(Qt::ShiftModifier) << false;
    QTest::newRow("Control+Backspace")
        << int(Qt::Key_Backspace) << int(Qt::ControlModifier) << false;
    QTest::newRow("Backspace of a keypad")
        << int(Qt::Key_Backspace) << int(Qt::KeypadModifier) << false;
    QTest::newRow("Shift+Delete, which cuts")
        << int(Qt::Key_Delete) << int(Qt::ShiftModifier) << false;
    QTest::newRow("Control+Delete") << int(Qt::Key_Delete) << int(Qt::ControlModifier) << false;
    QTest::newRow("a letter") << int(Qt::Key_X) << int(Qt::NoModifier) << false;
    QTest::newRow("Return") << int(Qt::Key_Return) << int(Qt::NoModifier) << false;
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

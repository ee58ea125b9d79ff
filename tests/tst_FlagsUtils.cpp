// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FlagsUtils.h"

#include "Columns.h"

#include <QtTest>

class tst_FlagsUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void setFlag_data();
    void setFlag();
};

void tst_FlagsUtils::setFlag_data()
{
    const auto row = columns<int, int, bool, int>("before", "flag", "on", "after");
    // Selectable is 1, editable 2 and enabled 32.
    row("set", 33, int(Qt::ItemIsEditable), true, 35);
    row("set again", 35, int(Qt::ItemIsEditable), true, 35);
    row("set in none", 0, int(Qt::ItemIsEnabled), true, 32);
    row("clear", 35, int(Qt::ItemIsEditable), false, 33);
    row("clear again", 33, int(Qt::ItemIsEditable), false, 33);
    row("clear the last", 32, int(Qt::ItemIsEnabled), false, 0);
    row("set no flag", 33, int(Qt::NoItemFlags), true, 33);
    row("clear no flag", 33, int(Qt::NoItemFlags), false, 33);
}

void tst_FlagsUtils::setFlag()
{
    QFETCH(int, before);
    QFETCH(int, flag);
    QFETCH(bool, on);
    QFETCH(int, after);
    auto flags = Qt::ItemFlags(QFlag(before));
    FlagsUtils::setFlag(flags, static_cast<Qt::ItemFlag>(flag), on);
    QCOMPARE(int(flags), after);
}

QTEST_APPLESS_MAIN(tst_FlagsUtils)
#include "tst_FlagsUtils.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "UnitTestInfo.h"

#include "Columns.h"

#include <QElapsedTimer>
#include <QtTest>

class tst_UnitTestInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesAndRestartsTheTimer();
    void toString_data();
    void toString();
};

void tst_UnitTestInfo::takesAndRestartsTheTimer()
{
    QElapsedTimer whole;
    whole.start();
    QElapsedTimer timer;
    timer.start();
    QTest::qSleep(30);
    const UnitTestInfo first(QStringLiteral("first"), timer);
    const UnitTestInfo second(QStringLiteral("second"), timer);
    const qint64 total = whole.elapsed();
    QCOMPARE(first.label, QStringLiteral("first"));
    QVERIFY(first.milliseconds >= 30);
    // Restarted: the first step is not counted again.
    QVERIFY(first.milliseconds + second.milliseconds <= total);
}

void tst_UnitTestInfo::toString_data()
{
    const auto row = columns<qint64, QString>("milliseconds", "text");
    row("nothing", qint64(0), "scan ");
    row("seconds", qint64(1500), "scan 1s 500ms ");
    row("hours", qint64(3723000), "scan 1h 2mn 3s ");
}

void tst_UnitTestInfo::toString()
{
    QFETCH(qint64, milliseconds);
    QFETCH(QString, text);
    QElapsedTimer timer;
    timer.start();
    UnitTestInfo step(QStringLiteral("scan"), timer);
    step.milliseconds = milliseconds;
    QCOMPARE(step.toString(), text);
}

QTEST_GUILESS_MAIN(tst_UnitTestInfo)
#include "tst_UnitTestInfo.moc"

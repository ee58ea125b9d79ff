// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "SpeedTestAnalyzer.h"

#include "StringUtils.h"

#include <QRegularExpression>
#include <QtTest>

class tst_SpeedTestAnalyzer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elapsedRunsFromConstruction();
    void report();
    void stepsAreTimedOneByOne();
    void disabled();
    void enabledAgain();
};

namespace {

const int pause = 25;

// The milliseconds of a text such as "scan 1s 25ms ".
qint64 milliseconds(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("(?:(\\d+)s )?(?:(\\d+)ms )?$"));
    const QRegularExpressionMatch match = pattern.match(text);
    return match.captured(1).toLongLong() * 1000 + match.captured(2).toLongLong();
}

} // namespace

void tst_SpeedTestAnalyzer::elapsedRunsFromConstruction()
{
    const SpeedTestAnalyzer speed(QStringLiteral("Import"));
    QTest::qSleep(pause);
    QVERIFY(speed.elapsed() >= pause);
    QVERIFY(milliseconds(speed.speedTotalToString()) >= pause);
}

void tst_SpeedTestAnalyzer::report()
{
    SpeedTestAnalyzer speed(QStringLiteral("Import"));
    QTest::qSleep(pause);
    speed.append(QStringLiteral("scan"));
    SpeedTestAnalyzer& same = speed << QStringLiteral("copy");
    QCOMPARE(&same, &speed);

    const QString text = speed.toString();
    QVERIFY(text.endsWith(QLatin1Char('\n')));
    const QStringList lines = text.split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 4);
    QVERIFY2(lines.at(0).startsWith(QStringLiteral("Import Speed total =")), qPrintable(text));
    QVERIFY2(milliseconds(lines.at(0)) >= pause, qPrintable(text));
    QVERIFY2(lines.at(1).startsWith(QStringLiteral("scan ")), qPrintable(text));
    QVERIFY2(lines.at(2).startsWith(QStringLiteral("copy ")), qPrintable(text));
    QCOMPARE(lines.at(3), QString(QLatin1String("")));
}

void tst_SpeedTestAnalyzer::stepsAreTimedOneByOne()
{
    SpeedTestAnalyzer speed(QStringLiteral("Import"));
    QTest::qSleep(pause);
    speed << QStringLiteral("slow");
    speed << QStringLiteral("quick");
    const qint64 total = speed.elapsed();
    const QStringList lines = speed.toString().split(QLatin1Char('\n'));
    QVERIFY(milliseconds(lines.at(1)) >= pause);
    QVERIFY(milliseconds(lines.at(1)) + milliseconds(lines.at(2)) <= total);
}

void tst_SpeedTestAnalyzer::disabled()
{
    SpeedTestAnalyzer speed(QStringLiteral("Import"));
    speed.setEnabled(false);
    speed << QStringLiteral("scan");
    speed.append(QStringLiteral("copy"));
    QCOMPARE(speed.elapsed(), qint64(-1));
    QCOMPARE(speed.speedTotalToString(), QString());
    QCOMPARE(speed.toString(), QString());

    speed.setEnabled(true);
    QCOMPARE(speed.toString().count(QLatin1Char('\n')), 1);
}

void tst_SpeedTestAnalyzer::enabledAgain()
{
    SpeedTestAnalyzer speed(QStringLiteral("Import"));
    speed << QStringLiteral("before");
    speed.setEnabled(false);
    QTest::qSleep(pause);
    speed << QStringLiteral("not recorded");
    speed.setEnabled(true);
    speed << QStringLiteral("after");
    // The step after the pause includes it: a call that records nothing restarts nothing.
    const QStringList lines = speed.toString().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines.at(1).startsWith(QStringLiteral("before ")));
    QVERIFY(lines.at(2).startsWith(QStringLiteral("after ")));
    QVERIFY(milliseconds(lines.at(2)) >= pause);
}

QTEST_GUILESS_MAIN(tst_SpeedTestAnalyzer)
#include "tst_SpeedTestAnalyzer.moc"

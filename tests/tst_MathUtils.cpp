// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "MathUtils.h"

#include "Columns.h"
#include "LogCapture.h"

#include <QSet>
#include <QtTest>

#include <cstdlib>
#include <limits>

class tst_MathUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstDrawSeeds();
    void random_data();
    void random();
    void randomReachesEveryValue();
    void srandomSeedsWithMilliseconds();
    void randomTriggerOneIn();
    void randomTriggerMisuse_data();
    void randomTriggerMisuse();
    void counterTriggerOneIn_data();
    void counterTriggerOneIn();
};

namespace {

// The next random numbers, enough of them to distinguish the thousand possible seeds.
QVector<int> nextDraws()
{
    QVector<int> draws;
    for (int i = 0; i < 8; ++i)
        draws << std::rand();
    return draws;
}

bool isSequenceOfAMillisecondSeed(const QVector<int>& draws)
{
    for (unsigned int seed = 0; seed < 1000; ++seed) {
        std::srand(seed);
        if (nextDraws() == draws)
            return true;
    }
    return false;
}

} // namespace

// Runs first: the generator is not seeded yet.
void tst_MathUtils::firstDrawSeeds()
{
    std::srand(123456); // replaced, because it is not one of the library's seeds
    MathUtils::random(0, 0); // uses one random number
    const QVector<int> draws = nextDraws();
    bool found = false;
    for (unsigned int seed = 0; seed < 1000 && !found; ++seed) {
        std::srand(seed);
        std::rand();
        found = nextDraws() == draws;
    }
    QVERIFY(found);

    // Once seeded, it is not seeded again.
    std::srand(123456);
    std::rand();
    const QVector<int> expected = nextDraws();
    std::srand(123456);
    MathUtils::random(0, 0);
    QCOMPARE(nextDraws(), expected);
}

void tst_MathUtils::random_data()
{
    const auto row = columns<int, int, QVector<int>>("min", "max", "draws");
    const int least = std::numeric_limits<int>::min();
    const int most = std::numeric_limits<int>::max();
    // Expected: min + random % (max - min + 1), with random numbers of the generator seeded with 7.
    std::srand(7);
    const QVector<int> draws = nextDraws();
    row("one value", 5, 5, draws);
    row("a die", 1, 6, draws);
    row("negative", -10, -3, draws);
    row("the whole range", least, most, draws);
}

void tst_MathUtils::random()
{
    QFETCH(int, min);
    QFETCH(int, max);
    QFETCH(QVector<int>, draws);
    std::srand(7);
    for (const int draw : draws)
        QCOMPARE(qint64(MathUtils::random(min, max)), min + draw % (qint64(max) - min + 1));
}

void tst_MathUtils::randomReachesEveryValue()
{
    std::srand(1);
    QSet<int> seen;
    for (int i = 0; i < 1000; ++i)
        seen << MathUtils::random(-1, 2);
    QCOMPARE(seen, QSet<int>({-1, 0, 1, 2}));
    QCOMPARE(MathUtils::random(3, 2), 3);
    QCOMPARE(MathUtils::random(3, -8), 3);
}

void tst_MathUtils::srandomSeedsWithMilliseconds()
{
    std::srand(123456);
    MathUtils::srandom();
    QVERIFY(isSequenceOfAMillisecondSeed(nextDraws()));
    std::srand(123456);
    QVERIFY(!isSequenceOfAMillisecondSeed(nextDraws()));
}

void tst_MathUtils::randomTriggerOneIn()
{
    std::srand(7);
    const QVector<int> draws = nextDraws();
    std::srand(7);
    for (const int draw : draws)
        QCOMPARE(MathUtils::randomTriggerOneIn(3), draw % 3 == 0);
    for (int i = 0; i < 100; ++i)
        QVERIFY(MathUtils::randomTriggerOneIn(1));
}

void tst_MathUtils::randomTriggerMisuse_data()
{
    const auto row = columns<int>("n");
    row("zero", 0);
    row("minus one", -1);
    row("negative", -3);
    row("lowest", std::numeric_limits<int>::min());
}

void tst_MathUtils::randomTriggerMisuse()
{
    QFETCH(int, n);
    std::srand(7);
    const QVector<int> draws = nextDraws();
    std::srand(7);
    for (const int draw : draws) {
        // It is logged each time, and only 0 does without a draw.
        LogCapture log;
        QCOMPARE(MathUtils::randomTriggerOneIn(n), n != 0 && draw % n == 0);
        QCOMPARE(log.lines(),
                 QStringList(QStringLiteral(
                     "critical orvautils MathUtils randomTriggerOneIn: bad usage!!")));
    }
}

void tst_MathUtils::counterTriggerOneIn_data()
{
    const auto row =
        columns<int, int, QVector<bool>, QVector<int>>("n", "start", "answers", "counters");
    row("three", 3, 0, QVector<bool>({false, false, true, false, false, true}),
        QVector<int>({1, 2, 0, 1, 2, 0}));
    row("one", 1, 0, QVector<bool>({true, true}), QVector<int>({0, 0}));
    row("zero", 0, 0, QVector<bool>({true, true}), QVector<int>({0, 0}));
    row("counter beyond n", 3, 9, QVector<bool>({true, false}), QVector<int>({0, 1}));
    row("largest counter", 3, std::numeric_limits<int>::max(), QVector<bool>({true}),
        QVector<int>({0}));
}

void tst_MathUtils::counterTriggerOneIn()
{
    QFETCH(int, n);
    QFETCH(int, start);
    QFETCH(QVector<bool>, answers);
    QFETCH(QVector<int>, counters);
    int counter = start;
    for (int i = 0; i < answers.size(); ++i) {
        QCOMPARE(MathUtils::counterTriggerOneIn(n, counter), answers.at(i));
        QCOMPARE(counter, counters.at(i));
    }
}

QTEST_GUILESS_MAIN(tst_MathUtils)
#include "tst_MathUtils.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "MetricSystemUtils.h"

#include "Columns.h"
#include "LogCapture.h"
#include "Text.h"

#include <QtTest>

class tst_MetricSystemUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void enumerators();
    void ownership();
    void symbols_data();
    void symbols();
    void everyOtherCombinationIsEmpty();
};

void tst_MetricSystemUtils::enumerators()
{
    const QList<int> numbers{MetricSystemUtils::Length, MetricSystemUtils::Weight,
                             MetricSystemUtils::Distance, MetricSystemUtils::Metric,
                             MetricSystemUtils::ShortSymbol};
    QCOMPARE(numbers, QList<int>({0, 1, 2, 0, 0}));
}

void tst_MetricSystemUtils::ownership()
{
    QObject parent;
    const auto* owned = new MetricSystemUtils(&parent);
    QCOMPARE(owned->parent(), &parent);
    QVERIFY(!MetricSystemUtils().parent());
    QCOMPARE(owned->symbol(MetricSystemUtils::Weight, MetricSystemUtils::Metric,
                           MetricSystemUtils::ShortSymbol),
             text("Kg"));
}

void tst_MetricSystemUtils::symbols_data()
{
    const auto row = columns<int, int, int, QString>("quantity", "system", "display", "symbol");
    row("length", 0, 0, 0, "m");
    row("weight", 1, 0, 0, "Kg");
    row("distance", 2, 0, 0, "Km");
    row("no such quantity", 3, 0, 0, "");
    row("negative quantity", -1, 0, 0, "");
    row("another system", 0, 1, 0, "");
    row("another display", 0, 0, 1, "");
    row("negative system", 1, -1, 0, "");
    row("negative display", 1, 0, -1, "");
    row("largest numbers", INT_MAX, INT_MAX, INT_MAX, "");
}

void tst_MetricSystemUtils::symbols()
{
    QFETCH(int, quantity);
    QFETCH(int, system);
    QFETCH(int, display);
    QFETCH(QString, symbol);
    QCOMPARE(MetricSystemUtils::symbol(MetricSystemUtils::TypeGrandeur(quantity),
                                       MetricSystemUtils::SystemMetric(system),
                                       MetricSystemUtils::Display(display)),
             symbol);
}

void tst_MetricSystemUtils::everyOtherCombinationIsEmpty()
{
    LogCapture log;
    int symbols = 0;
    for (int quantity = -2; quantity < 6; ++quantity) {
        for (int system = -2; system < 4; ++system) {
            for (int display = -2; display < 4; ++display) {
                symbols += !MetricSystemUtils::symbol(MetricSystemUtils::TypeGrandeur(quantity),
                                                      MetricSystemUtils::SystemMetric(system),
                                                      MetricSystemUtils::Display(display))
                                .isEmpty();
            }
        }
    }
    QCOMPARE(symbols, 3);
    QCOMPARE(log.lines(), QStringList());
}

QTEST_APPLESS_MAIN(tst_MetricSystemUtils)
#include "tst_MetricSystemUtils.moc"

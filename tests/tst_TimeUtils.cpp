// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TimeUtils.h"

#include "Columns.h"
#include "Text.h"

#include <QLocale>
#include <QtTest>

#include <limits>

class tst_TimeUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void precisionNumbers();
    void msecToString_data();
    void msecToString();
    void sameInEveryLocale();
};

void tst_TimeUtils::precisionNumbers()
{
    const QList<int> numbers{TimeUtils::Year,   TimeUtils::Month,      TimeUtils::Week,
                             TimeUtils::Day,    TimeUtils::Hour,       TimeUtils::Minute,
                             TimeUtils::Second, TimeUtils::Millisecond};
    QCOMPARE(numbers, QList<int>({1, 2, 3, 4, 5, 6, 7, 8}));
}

void tst_TimeUtils::msecToString_data()
{
    const auto table = columns<qint64, int, QString>("ms", "precision", "expected");
    const auto row = [&](qint64 ms, int precision, const char* expected) {
        table(qPrintable(QString::asprintf("%lld at %d", static_cast<long long>(ms), precision)),
              ms, precision, text(expected));
    };
    // A day, an hour, a minute, a second and a half, at every precision.
    row(90061500, 1, "");
    row(90061500, 2, "");
    row(90061500, 3, "");
    row(90061500, 4, "1j");
    row(90061500, 5, "1j 1h");
    row(90061500, 6, "1j 1h 1mn");
    row(90061500, 7, "1j 1h 1mn 1sec");
    row(90061500, 8, "1j 1h 1mn 1sec");
    // The fraction is in tenths, and shown only below a minute.
    row(1500, 7, "1sec 5ms");
    row(1500, 8, "1sec 5ms");
    row(1500, 6, "");
    row(500, 7, "5ms");
    row(999, 7, "9ms");
    row(100, 7, "1ms");
    row(99, 7, "");
    row(1099, 7, "1sec");
    row(59999, 7, "59sec 9ms");
    row(60500, 7, "1mn");
    row(61500, 7, "1mn 1sec");
    row(3600500, 7, "1h");
    row(86400500, 7, "1j");
    row(0, 7, "");
    // Parts of zero leave no gap.
    row(3601000, 7, "1h 1sec");
    row(86460000, 7, "1j 1mn");
    row(86399999, 7, "23h 59mn 59sec");
    row(86399999, 4, "");
    row(172800000, 4, "2j");
    row(Q_INT64_C(864000000000), 7, "10000j");
    // 2^63 - 1 ms are 106751991167 days and 25975807 ms, which are 7 h 12 mn 55 s and 807 ms.
    row(std::numeric_limits<qint64>::max(), 7, "106751991167j 7h 12mn 55sec");
    row(-90061500, 7, "");
    row(-500, 7, "");
    row(std::numeric_limits<qint64>::min(), 7, "");
}

void tst_TimeUtils::msecToString()
{
    QFETCH(qint64, ms);
    QFETCH(int, precision);
    QTEST(TimeUtils::msecToString(ms, static_cast<TimeUtils::TimePrecision>(precision)),
          "expected");
}

void tst_TimeUtils::sameInEveryLocale()
{
    const QLocale before;
    for (const QLocale::Language language :
         {QLocale::French, QLocale::English, QLocale::German, QLocale::Arabic}) {
        QLocale::setDefault(QLocale(language));
        QCOMPARE(TimeUtils::msecToString(Q_INT64_C(86400000000) + 3723000, TimeUtils::Second),
                 text("1000j 1h 2mn 3sec"));
    }
    QLocale::setDefault(before);
}

QTEST_GUILESS_MAIN(tst_TimeUtils)
#include "tst_TimeUtils.moc"

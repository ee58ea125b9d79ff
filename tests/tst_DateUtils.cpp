// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DateUtils.h"

#include "Columns.h"
#include "Text.h"

#include <QDateTime>
#include <QTranslator>
#include <QtTest>

namespace {

/// Translates the three texts, in the context "DateUtils" only.
class FrenchTexts : public QTranslator
{
public:
    bool isEmpty() const override { return false; }

    QString translate(const char* context, const char* expected, const char*, int) const override
    {
        if (qstrcmp(context, "DateUtils") != 0)
            return QString();
        if (qstrcmp(expected, "Today at %1") == 0)
            return text("Aujourd'hui à %1");
        if (qstrcmp(expected, "Yesterday at %1") == 0)
            return text("Hier à %1");
        if (qstrcmp(expected, "Day before yesterday at %1") == 0)
            return text("À %1 avant-hier");
        return QString();
    }
};

} // namespace

class tst_DateUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void accordingToNow_data();
    void accordingToNow();
    void translated_data() { accordingToNow_data(); }
    void translated();
    void formats_data();
    void formats();
    void timeOfItsOwnZone();
    void invalid();
};

void tst_DateUtils::accordingToNow_data()
{
    // days: from today
    // expected: if empty, the date format is used
    const auto table = columns<int, QTime, QString, QString>("days", "time", "expected", "french");
    const auto row = [&](int days, const QTime& time, const char* expected, const char* french) {
        table(qPrintable(QString::asprintf("%d days, %s", days, qPrintable(time.toString()))), days,
              time, text(expected), text(french));
    };
    const QTime first(0, 0);
    const QTime last(23, 59, 59, 999);
    row(0, first, "Today at 00:00", "Aujourd'hui à 00:00");
    row(0, last, "Today at 23:59", "Aujourd'hui à 23:59");
    row(0, QTime(9, 5), "Today at 09:05", "Aujourd'hui à 09:05");
    // Calendar days, not periods of 24 hours.
    row(-1, first, "Yesterday at 00:00", "Hier à 00:00");
    row(-1, last, "Yesterday at 23:59", "Hier à 23:59");
    row(-2, first, "Day before yesterday at 00:00", "À 00:00 avant-hier");
    row(-2, last, "Day before yesterday at 23:59", "À 23:59 avant-hier");
    row(-3, first, "", "");
    row(-3, last, "", "");
    row(-4, QTime(12, 0), "", "");
    row(-4000, QTime(12, 0), "", "");
    // A date in the future counts as today.
    row(1, first, "Today at 00:00", "Aujourd'hui à 00:00");
    row(2, QTime(13, 30), "Today at 13:30", "Aujourd'hui à 13:30");
    row(400, QTime(13, 30), "Today at 13:30", "Aujourd'hui à 13:30");
}

/// Compares the text for a time \a days from today: in words, or in ISO format if \a expected is
/// empty.
static void compareAccordingToNow(int days, const QTime& time, const QString& expected)
{
    QDate today;
    QDateTime dt;
    QString got;
    do { // repeated if midnight passes in between
        today = QDate::currentDate();
        dt = QDateTime(today.addDays(days), time);
        got = DateUtils::dateTimeToStringAccordingNow(dt, Qt::ISODate);
    } while (QDate::currentDate() != today);
    QCOMPARE(got, expected.isEmpty() ? dt.toString(Qt::ISODate) : expected);
}

void tst_DateUtils::accordingToNow()
{
    QFETCH(int, days);
    QFETCH(QTime, time);
    QFETCH(QString, expected);
    compareAccordingToNow(days, time, expected);
}

void tst_DateUtils::translated()
{
    QFETCH(int, days);
    QFETCH(QTime, time);
    QFETCH(QString, french);
    FrenchTexts translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    compareAccordingToNow(days, time, french);
}

void tst_DateUtils::formats_data()
{
    const auto row = columns<int, QString>("format", "expected");
    row("ISO", int(Qt::ISODate), "2001-02-03T04:05:06");
    row("text", int(Qt::TextDate), "Sat Feb 3 04:05:06 2001");
}

void tst_DateUtils::formats()
{
    QFETCH(int, format);
    const QDateTime dt(QDate(2001, 2, 3), QTime(4, 5, 6, 7));
    QTEST(DateUtils::dateTimeToStringAccordingNow(dt, static_cast<Qt::DateFormat>(format)),
          "expected");
}

void tst_DateUtils::timeOfItsOwnZone()
{
    // Far enough in the future in every time zone.
    const QDateTime dt(QDate::currentDate().addDays(5), QTime(1, 2), Qt::OffsetFromUTC, 5 * 3600);
    QCOMPARE(DateUtils::dateTimeToStringAccordingNow(dt, Qt::ISODate), text("Today at 01:02"));
}

void tst_DateUtils::invalid()
{
    QCOMPARE(DateUtils::dateTimeToStringAccordingNow(QDateTime(), Qt::ISODate), text("Today at "));
}

QTEST_GUILESS_MAIN(tst_DateUtils)
#include "tst_DateUtils.moc"

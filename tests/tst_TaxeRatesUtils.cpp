// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TaxeRatesUtils.h"

#include "FileUtils.h"
#include "LogCapture.h"
#include "Text.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

/// The rates of a country in the order of the file: standard, reduced, alternative, super reduced,
/// parking; -1 for none.
struct Rates
{
    double standard, reduced, alternative, superReduced, parking;
};

} // namespace

Q_DECLARE_METATYPE(Rates)

class tst_TaxeRatesUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstUseBuilds(); // first: nothing has asked for a rate yet
    void categories();
    void rates_data();
    void rates();
    void file_data();
    void file();
    void fileAsAWhole();
    void noRate_data();
    void noRate();
    void initAgain();
    void nothingIsLogged();

private:
    void countries();
};

void tst_TaxeRatesUtils::firstUseBuilds()
{
    QCOMPARE(TaxeRatesUtils::europeanTax(text("fr"), 1), 5.5);
    QCOMPARE(TaxeRatesUtils::europeanTax(text("FR"), 2), 10.0);
}

void tst_TaxeRatesUtils::categories()
{
    QCOMPARE(TaxeRatesUtils::europeanTaxCategories(), QList<int>({0, 1, 2, 3, 4}));
}

void tst_TaxeRatesUtils::countries()
{
    QTest::addColumn<QString>("country");
    QTest::addColumn<Rates>("rates");
    const auto row = [](const char* code, const char* country, const Rates& rates) {
        QTest::newRow(code) << QString::fromLatin1(country) << rates;
    };
    row("AT", "Austria", {20, 10, 13, -1, 12});
    row("BE", "Belgium", {21, 12, 6, -1, 12});
    row("BG", "Bulgaria", {20, 9, -1, -1, -1});
    row("CY", "Cyprus", {19, 9, 5, -1, -1});
    row("CZ", "Czech Republic", {21, 15, 10, -1, -1});
    row("DK", "Denmark", {25, -1, -1, -1, -1});
    row("DE", "Germany", {19, 7, -1, -1, -1});
    row("EE", "Estonia", {20, 9, -1, -1, -1});
    row("EL", "Greece", {24, 13, 6, -1, -1});
    row("GR", "Greece", {24, 13, 6, -1, -1});
    row("ES", "Spain", {21, 10, -1, 4, -1});
    row("FI", "Finland", {24, 14, 10, -1, -1});
    row("FR", "France", {20, 10, 5.5, 2.1, -1});
    row("HR", "Croatia", {25, 13, 5, -1, -1});
    row("IT", "Italy", {22, 10, 4, -1, -1});
    row("LV", "Latvia", {21, 12, -1, -1, -1});
    row("LT", "Lithuania", {21, 9, 5, -1, -1});
    row("LU", "Luxembourg", {17, 14, 8, 3, 12});
    row("HU", "Hungary", {27, 18, 5, -1, -1});
    row("IE", "Ireland", {23, 13.5, 9, 4.8, 13.5});
    row("MT", "Malta", {18, 7, 5, -1, -1});
    row("NL", "Netherlands", {21, 6, -1, -1, -1});
    row("PL", "Poland", {23, 8, 5, -1, -1});
    row("PT", "Portugal", {23, 13, 6, -1, 13});
    row("RO", "Romania", {20, 9, 5, -1, -1});
    row("SI", "Slovenia", {22, 9.5, -1, -1, -1});
    row("SK", "Slovakia", {20, 10, -1, -1, -1});
    row("SE", "Sweden", {25, 12, 6, -1, -1});
    row("UK", "United Kingdom", {20, 5, -1, -1, -1});
    row("GB", "United Kingdom", {20, 5, -1, -1, -1});
}

void tst_TaxeRatesUtils::rates_data()
{
    countries();
}

void tst_TaxeRatesUtils::rates()
{
    QFETCH(Rates, rates);
    const QString code = QString::fromLatin1(QTest::currentDataTag());
    const QString mixed = code.left(1) + code.mid(1).toLower();
    for (const QString& spelling : {code, code.toLower(), mixed, mixed.toLower()}) {
        QCOMPARE(TaxeRatesUtils::europeanTax(spelling, 0), rates.standard);
        QCOMPARE(TaxeRatesUtils::europeanTax(spelling, 1), rates.alternative);
        QCOMPARE(TaxeRatesUtils::europeanTax(spelling, 2), rates.reduced);
        QCOMPARE(TaxeRatesUtils::europeanTax(spelling, 3), rates.superReduced);
        QCOMPARE(TaxeRatesUtils::europeanTax(spelling, 4), rates.parking);
    }
}

void tst_TaxeRatesUtils::file_data()
{
    countries();
}

void tst_TaxeRatesUtils::file()
{
    QFETCH(QString, country);
    QFETCH(Rates, rates);
    const QString code = QString::fromLatin1(QTest::currentDataTag());
    const QJsonObject entry =
        QJsonDocument::fromJson(
            FileUtils::readFileContent(text(":/orvautils/ue_tax_rates/taxes_ue.json")))
            .object()[text("rates")]
            .toObject()[code]
            .toObject();
    const auto json = [](double rate) { return rate < 0 ? QJsonValue(false) : QJsonValue(rate); };
    QJsonObject expected;
    expected[text("country")] = country;
    expected[text("standard_rate")] = json(rates.standard);
    expected[text("reduced_rate")] = json(rates.reduced);
    expected[text("reduced_rate_alt")] = json(rates.alternative);
    expected[text("super_reduced_rate")] = json(rates.superReduced);
    expected[text("parking_rate")] = json(rates.parking);
    QJsonObject read = entry;
    // The four doubled entries point to each other, with a word why.
    const QMap<QString, QString> other = {{text("EL"), text("GR")},
                                          {text("GR"), text("EL")},
                                          {text("UK"), text("GB")},
                                          {text("GB"), text("UK")}};
    if (other.contains(code)) {
        QVERIFY(!read.take(text("_comment")).toString().isEmpty());
        const bool first = code == QLatin1String("EL") || code == QLatin1String("UK");
        QCOMPARE(read.take(first ? text("iso_duplicate") : text("iso_duplicate_of")).toString(),
                 other.value(code));
    }
    QCOMPARE(read, expected);
}

void tst_TaxeRatesUtils::fileAsAWhole()
{
    const QJsonObject file =
        QJsonDocument::fromJson(
            FileUtils::readFileContent(text(":/orvautils/ue_tax_rates/taxes_ue.json")))
            .object();
    QCOMPARE(file.keys(), QStringList({text("disclaimer"), text("last_updated"), text("rates")}));
    QCOMPARE(file[text("rates")].toObject().size(), 30);
}

void tst_TaxeRatesUtils::noRate_data()
{
    QTest::addColumn<QString>("country");
    QTest::addColumn<int>("category");
    QTest::newRow("no reduced rate") << "DK" << 2;
    QTest::newRow("not in the table") << "CH" << 0;
    QTest::newRow("category behind the last") << "DE" << 5;
    QTest::newRow("negative category") << "DE" << -1;
    QTest::newRow("largest category") << "DE" << INT_MAX;
    QTest::newRow("empty code") << "" << 0;
    QTest::newRow("blank behind") << "FR " << 0;
    QTest::newRow("name of the country") << "France" << 0;
    QTest::newRow("key of the file") << "rates" << 0;
}

void tst_TaxeRatesUtils::noRate()
{
    QFETCH(QString, country);
    QFETCH(int, category);
    QCOMPARE(TaxeRatesUtils::europeanTax(country, category), -1.0);
}

void tst_TaxeRatesUtils::initAgain()
{
    TaxeRatesUtils::init();
    TaxeRatesUtils::init();
    QCOMPARE(TaxeRatesUtils::europeanTax(text("el"), 0), 24.0);
    QCOMPARE(TaxeRatesUtils::europeanTax(text("gr"), 0), 24.0);
}

void tst_TaxeRatesUtils::nothingIsLogged()
{
    LogCapture log;
    TaxeRatesUtils::europeanTax(text("nowhere"), 99);
    QCOMPARE(log.lines(), QStringList());
}

QTEST_GUILESS_MAIN(tst_TaxeRatesUtils)
#include "tst_TaxeRatesUtils.moc"

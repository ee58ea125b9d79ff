// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The tax rates with files that this test generates: when the table is built, and from what.

#include "Columns.h"
#include "FileUtils.h"
#include "TaxeRatesUtils.h"
#include "Text.h"

#include <QtTest>

// Replaces the parts of the library that the class calls.

static QByteArray content;
static QStringList pathsRead;

QByteArray FileUtils::readFileContent(const QString& path, bool logOnFailure)
{
    pathsRead += path;
    return logOnFailure ? content : QByteArray();
}

int qInitResources_ue_tax_rates()
{
    return 0;
}

class tst_TaxeRatesUtilsResource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // In this order: what is built stays built.
    void nothingIsBuiltFromNothing_data();
    void nothingIsBuiltFromNothing();
    void nextCallBuilds();
    void builtOnce();
};

void tst_TaxeRatesUtilsResource::nothingIsBuiltFromNothing_data()
{
    const auto row = columns<QByteArray>("file");
    row("missing or empty", QByteArray());
    row("cut short", QByteArray(R"({"rates": {"FR": {"standard_rate": 20)"));
    row("no JSON", "rates");
}

void tst_TaxeRatesUtilsResource::nothingIsBuiltFromNothing()
{
    QFETCH(QByteArray, file);
    content = file;
    pathsRead.clear();
    QCOMPARE(TaxeRatesUtils::europeanTax(text("FR"), 0), -1.0);
    TaxeRatesUtils::init();
    QCOMPARE(TaxeRatesUtils::europeanTax(text("FR"), 0), -1.0);
    // Every call tries again.
    const QString path = text(":/orvautils/ue_tax_rates/taxes_ue.json");
    QCOMPARE(pathsRead, QStringList({path, path, path}));
}

void tst_TaxeRatesUtilsResource::nextCallBuilds()
{
    content = R"({"rates": {
        "FR": {"standard_rate": 20, "reduced_rate": 10, "reduced_rate_alt": 5.5,
               "super_reduced_rate": 2.1, "parking_rate": 0},
        "Xx": {"standard_rate": false, "reduced_rate": "7", "reduced_rate_alt": null},
        "YY": 20
    }, "FR": {"standard_rate": 1}})";
    pathsRead.clear();
    const QList<double> french = {20, 5.5, 10, 2.1, 0};
    for (int category = 0; category < 5; ++category) {
        QCOMPARE(TaxeRatesUtils::europeanTax(text("fr"), category), french.at(category));
        // false, a text, null and a missing value are not rates.
        QCOMPARE(TaxeRatesUtils::europeanTax(text("xx"), category), -1.0);
        QCOMPARE(TaxeRatesUtils::europeanTax(text("XX"), category), -1.0);
        QCOMPARE(TaxeRatesUtils::europeanTax(text("yy"), category), -1.0);
    }
    QCOMPARE(pathsRead.size(), 1);
}

void tst_TaxeRatesUtilsResource::builtOnce()
{
    content = R"({"rates": {"FR": {"standard_rate": 99}}})";
    pathsRead.clear();
    TaxeRatesUtils::init();
    QCOMPARE(TaxeRatesUtils::europeanTax(text("FR"), 0), 20.0);
    QCOMPARE(pathsRead, QStringList());
}

QTEST_GUILESS_MAIN(tst_TaxeRatesUtilsResource)
#include "tst_TaxeRatesUtilsResource.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TaxeRatesUtils.h"

#include "Columns.h"
#include "FileUtils.h"
#include "LogCapture.h"
#include "Sandbox.h"
#include "Text.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QThread>
#include <QTranslator>
#include <QtTest>

#include <atomic>

namespace {

/// The rates of a country in the order of the file: standard, reduced, alternative, super reduced,
/// parking; -1 if there is none.
struct Rates
{
    double standard, reduced, alternative, superReduced, parking;
};

/// An entry with rates that the built-in table does not have.
const char* const fullEntry =
    R"({"standard_rate": 21, "reduced_rate": 11, "reduced_rate_alt": 6, "super_reduced_rate": 2.5,
        "parking_rate": false, "_comment": "made up"})";

/// A file of rates.
QByteArray fileOf(const QByteArray& date, const QByteArray& countries)
{
    return R"({"last_updated": ")" + date + R"(", "rates": {)" + countries + "}}";
}

} // namespace

Q_DECLARE_METATYPE(Rates)

class tst_TaxeRatesUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstUseBuilds(); // first: no rate has been asked for yet
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
    void lastUpdated();
    void countryCodes();
    void categoryNames();
    void hostsFile();
    void refusedFiles_data();
    void refusedFiles();
    void filesThatCannotBeRead();
    void replacedWhileRead();

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
    const auto row = columns<QString, Rates>("country", "rates");
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
    // The four duplicate entries refer to each other in a comment.
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
    const auto row = columns<QString, int>("country", "category");
    row("no reduced rate", "DK", 2);
    row("not in the table", "CH", 0);
    row("category behind the last", "DE", 5);
    row("negative category", "DE", -1);
    row("largest category", "DE", INT_MAX);
    row("empty code", "", 0);
    row("blank behind", "FR ", 0);
    row("name of the country", "France", 0);
    row("key of the file", "rates", 0);
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

void tst_TaxeRatesUtils::lastUpdated()
{
    QCOMPARE(TaxeRatesUtils::lastUpdated(), QDate(2016, 6, 1));
}

void tst_TaxeRatesUtils::countryCodes()
{
    QCOMPARE(
        TaxeRatesUtils::countries().join(QLatin1Char(' ')),
        text("AT BE BG CY CZ DE DK EE EL ES FI FR GB GR HR HU IE IT LT LU LV MT NL PL PT RO SE "
             "SI SK UK"));
}

void tst_TaxeRatesUtils::categoryNames()
{
    const QStringList names{text("Standard rate"), text("Alternative reduced rate"),
                            text("Reduced rate"), text("Super-reduced rate"), text("Parking rate")};
    for (int category = 0; category < 5; ++category)
        QCOMPARE(TaxeRatesUtils::categoryName(category), names.at(category));
    QCOMPARE(TaxeRatesUtils::categoryName(5), QString());
    QCOMPARE(TaxeRatesUtils::categoryName(-1), QString());

    class French : public QTranslator
    {
    public:
        bool isEmpty() const override { return false; }
        QString translate(const char* context, const char* source, const char*, int) const override
        {
            const bool known = qstrcmp(context, "TaxeRatesUtils") == 0;
            return known && qstrcmp(source, "Parking rate") == 0 ? text("Taux parking") : QString();
        }
    } french;
    QCoreApplication::installTranslator(&french);
    const QString name = TaxeRatesUtils::categoryName(4);
    QCoreApplication::removeTranslator(&french);
    QCOMPARE(name, text("Taux parking"));
}

// A file of the host application

void tst_TaxeRatesUtils::hostsFile()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(text("rates.json"));
    writeFile(path, fileOf("2026-01-01", R"("Fr": )" + QByteArray(fullEntry)));
    LogCapture log;
    QString error = text("untouched");
    QVERIFY(TaxeRatesUtils::setRatesFile(path, &error));
    QCOMPARE(error, text("untouched"));
    QCOMPARE(TaxeRatesUtils::lastUpdated(), QDate(2026, 1, 1));
    QCOMPARE(TaxeRatesUtils::countries(), QStringList(text("FR")));
    const QList<double> rates{21, 6, 11, 2.5, -1};
    for (int category = 0; category < 5; ++category)
        QCOMPARE(TaxeRatesUtils::europeanTax(text("fR"), category), rates.at(category));
    // The table is replaced as a whole.
    QCOMPARE(TaxeRatesUtils::europeanTax(text("DE"), 0), -1.0);
    TaxeRatesUtils::init();
    QCOMPARE(TaxeRatesUtils::europeanTax(text("FR"), 0), 21.0);
    // The file is not read again.
    QVERIFY(QFile::remove(path));
    QCOMPARE(TaxeRatesUtils::europeanTax(text("FR"), 0), 21.0);
    // The last one is used, even if it is older than the one before.
    for (const char* date : {"2019-05-01", "2016-06-01"}) {
        writeFile(path, fileOf(date, R"("FR": )" + QByteArray(fullEntry)));
        QVERIFY(TaxeRatesUtils::setRatesFile(path));
        QCOMPARE(TaxeRatesUtils::lastUpdated(), QDate::fromString(text(date), Qt::ISODate));
    }

    QVERIFY(TaxeRatesUtils::setRatesFile(QString()));
    QCOMPARE(TaxeRatesUtils::lastUpdated(), QDate(2016, 6, 1));
    QCOMPARE(TaxeRatesUtils::countries().size(), 30);
    QCOMPARE(TaxeRatesUtils::europeanTax(text("FR"), 0), 20.0);
    QCOMPARE(log.lines(), QStringList());

    // The library's own file has the format that it requires of others.
    QVERIFY(TaxeRatesUtils::setRatesFile(text(":/orvautils/ue_tax_rates/taxes_ue.json")));
    QCOMPARE(TaxeRatesUtils::europeanTax(text("FR"), 0), 20.0);
    QVERIFY(TaxeRatesUtils::setRatesFile(QString()));
}

void tst_TaxeRatesUtils::refusedFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char* name, const QByteArray& content, const QByteArray& reason) {
        QTest::newRow(name) << content << text(reason.constData());
    };
    const auto noRate = [](const QByteArray& key, const QByteArray& country) {
        return '"' + key + "\" of " + country + " is neither a rate from 0 to 100 nor false";
    };
    const QByteArray good = fullEntry;
    const auto fr = [&](const char* before, const char* after) {
        return fileOf("2026-01-01", "\"FR\": " + QByteArray(good).replace(before, after));
    };
    QByteArray cutShort = fileOf("2026-01-01", "\"FR\": " + good);
    cutShort.chop(3);
    const char* const noTable = "The file is not a table of rates";
    row("empty", QByteArray(), noTable);
    row("no JSON", "rates", noTable);
    row("cut short", cutShort, noTable);
    row("array", "[]", noTable);
    row("no date", R"({"rates": {"FR": )" + good + "}}", "The file has no valid date");
    row("no valid date", fileOf("2026-02-30", "\"FR\": " + good), "The file has no valid date");
    row("no rates", R"({"last_updated": "2026-01-01"})", "The file has no rates");
    row("no countries", fileOf("2026-01-01", ""), "The file has no rates");
    row("older", fileOf("2016-05-31", "\"FR\": " + good),
        "The file is older than the rates of this program");
    row("three letters", fileOf("2026-01-01", "\"FRA\": " + good),
        "\"FRA\" is not the code of a country");
    row("no letters", fileOf("2026-01-01", "\"F1\": " + good),
        "\"F1\" is not the code of a country");
    row("accented",
        fileOf("2026-01-01",
               "\"\xc3\x89"
               "E\": "
                   + good),
        "\"ÉE\" is not the code of a country");
    row("twice", fileOf("2026-01-01", "\"FR\": " + good + ", \"fr\": " + good),
        "A country is in the file twice");
    row("no entry", fileOf("2026-01-01", "\"FR\": 20"), noRate("standard_rate", "FR"));
    row("misspelled", fr("parking_rate", "parkingrate"), noRate("parking_rate", "FR"));
    row("text", fr("11", "\"11\""), noRate("reduced_rate", "FR"));
    row("true", fr("false", "true"), noRate("parking_rate", "FR"));
    row("null", fr("false", "null"), noRate("parking_rate", "FR"));
    row("negative", fr("2.5", "-1"), noRate("super_reduced_rate", "FR"));
    row("above 100", fr("21", "100.5"), noRate("standard_rate", "FR"));
    row("second country", fileOf("2026-01-01", "\"FR\": " + good + ", \"DE\": {}"),
        noRate("standard_rate", "DE"));
    row("too large", fileOf("2026-01-01", "\"FR\": " + good) + QByteArray(1 << 20, ' '),
        "The file is too large");
}

void tst_TaxeRatesUtils::refusedFiles()
{
    QFETCH(QByteArray, content);
    QTemporaryDir folder;
    const QString path = folder.filePath(text("rates.json"));
    writeFile(path, content);
    for (const bool custom : {false, true}) {
        const QString before = folder.filePath(text("before.json"));
        writeFile(before, fileOf("2020-01-01", R"("DE": )" + QByteArray(fullEntry)));
        QVERIFY(TaxeRatesUtils::setRatesFile(custom ? before : QString()));
        LogCapture log;
        QString error;
        const bool taken = TaxeRatesUtils::setRatesFile(path, &error);
        const bool takenSilently = TaxeRatesUtils::setRatesFile(path);
        const QDate date = TaxeRatesUtils::lastUpdated();
        const double rate = TaxeRatesUtils::europeanTax(text("de"), 0);
        QVERIFY(TaxeRatesUtils::setRatesFile(QString()));
        QVERIFY(!taken && !takenSilently);
        QTEST(error, "reason");
        QCOMPARE(log.lines().size(), 2);
        QVERIFY2(log.lines().first().contains(error), qPrintable(log.lines().first()));
        // Nothing has changed.
        QCOMPARE(date, custom ? QDate(2020, 1, 1) : QDate(2016, 6, 1));
        QCOMPARE(rate, custom ? 21.0 : 19.0);
    }
}

void tst_TaxeRatesUtils::filesThatCannotBeRead()
{
    QTemporaryDir folder;
    for (const QString& path :
         {folder.path(), folder.filePath(text("missing")), QString(QLatin1String("a\0b", 3))}) {
        LogCapture log;
        QString error;
        QVERIFY(!TaxeRatesUtils::setRatesFile(path, &error));
        QCOMPARE(error, text("The file cannot be read"));
        QVERIFY(log.lines().last().contains(error));
    }
    QCOMPARE(TaxeRatesUtils::europeanTax(text("de"), 0), 19.0);
}

/// A call while the table is being replaced gets the rate of one of the two tables.
void tst_TaxeRatesUtils::replacedWhileRead()
{
    class Asker : public QThread
    {
    public:
        std::atomic<bool> done{false};
        int others = 0;

        void run() override
        {
            while (!done) {
                const double rate = TaxeRatesUtils::europeanTax(text("FR"), 0);
                others += rate != 20.0 && rate != 21.0;
            }
        }
    };
    QTemporaryDir folder;
    const QString path = folder.filePath(text("rates.json"));
    writeFile(path, fileOf("2026-01-01", R"("FR": )" + QByteArray(fullEntry)));
    Asker first;
    Asker second;
    first.start();
    second.start();
    bool taken = true;
    for (int i = 0; i < 50; ++i)
        taken = TaxeRatesUtils::setRatesFile(i % 2 == 0 ? path : QString()) && taken;
    first.done = second.done = true;
    QVERIFY(first.wait() && second.wait());
    QVERIFY(taken);
    QCOMPARE(first.others + second.others, 0);
}

QTEST_GUILESS_MAIN(tst_TaxeRatesUtils)
#include "tst_TaxeRatesUtils.moc"

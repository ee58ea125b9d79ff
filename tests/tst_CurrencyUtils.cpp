// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CurrencyUtils.h"

#include "Columns.h"
#include "LogCapture.h"
#include "Text.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QtTest>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <vector>

namespace {

/// Rounds like Qt 5: halves towards positive infinity.
double rounded(double x)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    // Qt rounds negative halves the other way here, and changes some whole numbers beyond 2^52.
    if (x < 0 && x - std::trunc(x) >= -0.5)
        return std::trunc(x);
#endif
    return double(qRound64(x));
}

/// Stands for a host whose own static objects ask for a price. beforeMain() sets the variable for a
/// child process.
struct EarlyUser
{
    EarlyUser()
    {
        if (qEnvironmentVariableIsSet("TST_CURRENCY_BEFORE_MAIN")) {
            const QByteArray price = CurrencyUtils::formatPrice(12.5, text("EUR")).toUtf8();
            std::fwrite(price.constData(), 1, size_t(price.size()), stdout);
            std::fflush(stdout);
            std::_Exit(0);
        }
    }
} earlyUser;

QString euro()
{
    return text("EUR");
}

/// The representative locale of each currency, determined in a second way: all locales of a
/// currency are collected first, and one of them is chosen afterwards.
QMap<QString, QLocale> expectedLocales()
{
    QMap<QString, QList<QLocale>> users;
    const QList<QLocale> all =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    for (const QLocale& locale : all) {
        const QString code = locale.currencySymbol(QLocale::CurrencyIsoCode);
        if (!code.isEmpty() && !locale.currencySymbol(QLocale::CurrencyDisplayName).isEmpty())
            users[code].append(locale);
    }
    QMap<QString, QLocale> chosen;
    for (auto it = users.constBegin(); it != users.constEnd(); ++it) {
        QList<QLocale> reference;
        QList<QLocale> english;
        for (const QLocale& locale : it.value())
            if (locale.language() == QLocale::C)
                reference += locale;
            else if (locale.language() == QLocale::English)
                english += locale;
        chosen[it.key()] = !reference.isEmpty() ? reference.first()
            : !english.isEmpty()                ? english.last()
                                                : it.value().first();
    }
    return chosen;
}

} // namespace

class tst_CurrencyUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void concurrentFirstCalls(); // first: the tables must not be built yet
    void beforeMain();
    void isoCodes();
    void representativeLocales_data();
    void representativeLocales();
    void lastEnglishLocaleWins();
    void knownSymbols_data();
    void knownSymbols();
    void unknownCodes_data();
    void unknownCodes();
    void numericCodes_data();
    void numericCodes();
    void initAgain();
    void rounding_data();
    void rounding();
    void roundingAgreesWithQt();
    void roundingBeyondIntegers();
    void prices_data();
    void prices();
    void inputField_data();
    void inputField();
    void minorUnits_data();
    void minorUnits();
    void minorUnitsOfTheStandard();
    void money_data();
    void money();
    void moneyOfUnknownCurrencies();
    void moneyOfEachCurrency();
    void moneyFromDoubles_data();
    void moneyFromDoubles();
    void moneyFollowsNumberOptions();
    void vat_data();
    void vat();
    void vatOfNothing_data();
    void vatOfNothing();
    void vatOfEachAmount();
    void vatFromDoubles();
    void vatToDebug();
    void defaultLocalePlaysNoPart();
    void nothingIsLogged();
};

void tst_CurrencyUtils::concurrentFirstCalls()
{
    class Asker : public QThread
    {
    public:
        QStringList codes;
        QString price;
        int number = 0;

        void run() override
        {
            price = CurrencyUtils::formatPrice(12.5, euro());
            number = CurrencyUtils::currencyNumericCode(euro());
            codes = CurrencyUtils::listIsoCodes();
        }
    };
    std::vector<std::unique_ptr<Asker>> askers;
    for (int i = 0; i < 8; ++i)
        askers.push_back(std::unique_ptr<Asker>(new Asker));
    for (const auto& asker : askers)
        asker->start();
    for (const auto& asker : askers) {
        QVERIFY(asker->wait());
        QCOMPARE(asker->price, text("12.50 \u20ac"));
        QCOMPARE(asker->number, 978);
        QCOMPARE(asker->codes, QStringList(expectedLocales().keys()));
    }
}

void tst_CurrencyUtils::beforeMain()
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(text("TST_CURRENCY_BEFORE_MAIN"), text("1"));
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), QStringList());
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
    QCOMPARE(QString::fromUtf8(child.readAllStandardOutput()), text("12.50 \u20ac"));
}

void tst_CurrencyUtils::isoCodes()
{
    const QStringList codes = CurrencyUtils::listIsoCodes();
    QCOMPARE(codes, QStringList(expectedLocales().keys()));
    QVERIFY(codes.size() > 100);
    for (int i = 1; i < codes.size(); ++i)
        QVERIFY2(codes.at(i - 1) < codes.at(i), qPrintable(codes.at(i)));
    for (const QString& code : codes) {
        QVERIFY2(QRegularExpression(text("^[A-Z]{3}$")).match(code).hasMatch(), qPrintable(code));
    }
    for (const char* code : {"EUR", "USD", "GBP", "JPY", "CHF"})
        QVERIFY2(codes.contains(QLatin1String(code)), code);
}

void tst_CurrencyUtils::representativeLocales_data()
{
    const auto row = columns<QLocale>("locale");
    const QMap<QString, QLocale> expected = expectedLocales();
    for (auto it = expected.constBegin(); it != expected.constEnd(); ++it)
        row(qPrintable(it.key()), it.value());
}

void tst_CurrencyUtils::representativeLocales()
{
    QFETCH(QLocale, locale);
    const QString code = QString::fromLatin1(QTest::currentDataTag());
    const QString symbol = locale.currencySymbol(QLocale::CurrencySymbol);
    const QString name = locale.currencySymbol(QLocale::CurrencyDisplayName);

    QCOMPARE(CurrencyUtils::currencySymbol(code, QLocale::CurrencyIsoCode), code);
    QCOMPARE(CurrencyUtils::currencySymbol(code, QLocale::CurrencySymbol),
             symbol.isEmpty() ? code : symbol);
    // Only the name begins with a capital letter.
    QCOMPARE(CurrencyUtils::currencySymbol(code, QLocale::CurrencyDisplayName),
             name.left(1).toUpper() + name.mid(1));
}

void tst_CurrencyUtils::lastEnglishLocaleWins()
{
    // The rule makes a difference: for some currency the last English locale shows something else
    // than the first locale, and than the first English one.
    int unlikeTheFirst = 0;
    int unlikeTheFirstEnglish = 0;
    const QList<QLocale> all =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    for (const QString& code : CurrencyUtils::listIsoCodes()) {
        const auto show = [&](bool englishOnly) {
            for (const QLocale& locale : all)
                if (locale.currencySymbol(QLocale::CurrencyIsoCode) == code
                    && (!englishOnly || locale.language() == QLocale::English))
                    return locale.currencySymbol(QLocale::CurrencySymbol);
            return QString();
        };
        const QString symbol = CurrencyUtils::currencySymbol(code, QLocale::CurrencySymbol);
        unlikeTheFirst += symbol != show(false);
        unlikeTheFirstEnglish += !show(true).isEmpty() && symbol != show(true);
    }
    QVERIFY(unlikeTheFirst > 0);
    QVERIFY(unlikeTheFirstEnglish > 0);
}

void tst_CurrencyUtils::knownSymbols_data()
{
    const auto row = columns<int, QString>("format", "expected");
    row("EUR", int(QLocale::CurrencySymbol), "\u20ac");
    row("GBP", int(QLocale::CurrencySymbol), "\u00a3");
    row("EUR as a code", int(QLocale::CurrencyIsoCode), "EUR");
    row("EUR as a name", int(QLocale::CurrencyDisplayName), "Euro");
    row("USD as a name", int(QLocale::CurrencyDisplayName), "US Dollar");
}

void tst_CurrencyUtils::knownSymbols()
{
    QFETCH(int, format);
    QFETCH(QString, expected);
    const QString code = QString::fromLatin1(QTest::currentDataTag()).left(3);
    QCOMPARE(CurrencyUtils::currencySymbol(code, QLocale::CurrencySymbolFormat(format)), expected);
}

void tst_CurrencyUtils::unknownCodes_data()
{
    const auto row = columns<QString>("code");
    row("small letters", "eur");
    row("mixed case", "Eur");
    row("no currency", "XYZ");
    row("blank behind", "EUR ");
    row("symbol", "\u20ac");
    row("empty", "");
    row("null", QString());
}

void tst_CurrencyUtils::unknownCodes()
{
    QFETCH(QString, code);
    for (QLocale::CurrencySymbolFormat format :
         {QLocale::CurrencyIsoCode, QLocale::CurrencySymbol, QLocale::CurrencyDisplayName})
        QCOMPARE(CurrencyUtils::currencySymbol(code, format), QString());
    QVERIFY(!CurrencyUtils::listIsoCodes().contains(code));
    QCOMPARE(CurrencyUtils::currencyNumericCode(code), 0);
    QCOMPARE(CurrencyUtils::formatPrice(3, code), text("3.00 "));
}

void tst_CurrencyUtils::numericCodes_data()
{
    const auto row = columns<int>("number");
    row("EUR", 978);
    row("USD", 840);
    row("GBP", 826);
    row("JPY", 0);
    row("CHF", 0);
    row("eur", 0);
    row("Usd", 0);
    row("", 0);
}

void tst_CurrencyUtils::numericCodes()
{
    QFETCH(int, number);
    const QString code = QString::fromLatin1(QTest::currentDataTag());
    QCOMPARE(CurrencyUtils::currencyNumericCode(code), number);
}

void tst_CurrencyUtils::initAgain()
{
    const QStringList codes = CurrencyUtils::listIsoCodes();
    CurrencyUtils::init();
    CurrencyUtils::init();
    QCOMPARE(CurrencyUtils::listIsoCodes(), codes);
    QCOMPARE(CurrencyUtils::currencyNumericCode(euro()), 978);
}

void tst_CurrencyUtils::rounding_data()
{
    const auto row = columns<double, double>("price", "rounded");
    row("zero", 0.0, 0.0);
    row("whole", 12.0, 12.0);
    row("cents stay", 12.34, 12.34);
    row("down", 1.234, 1.23);
    row("up", 1.236, 1.24);
    // Halves that are exact in binary are rounded up on both sides of zero.
    row("half", 0.125, 0.13);
    row("half below zero", -0.125, -0.12);
    row("half of a cent", 0.375, 0.38);
    row("half of a cent below zero", -0.375, -0.37);
    row("down below zero", -1.236, -1.24);
    row("up below zero", -1.234, -1.23);
    // 2.345 * 100 is 234.50000000000003 (up), -2.345 * 100 lies below the half (down).
    row("beside the half", 2.345, 2.35);
    row("beside the half below zero", -2.345, -2.35);
    // 1.005 * 100 is 100.49999999999999.
    row("short of the half", 1.005, 1.0);
    row("-0.004", -0.004, 0.0);
    row("-0.005", -0.005, 0.0);
    row("-0.006", -0.006, -0.01);
    row("one cent below zero", -0.01, -0.01);
    row("a billion", 1e9 + 0.125, 1e9 + 0.13);
}

void tst_CurrencyUtils::rounding()
{
    QFETCH(double, price);
    QFETCH(double, rounded);
    const double result = CurrencyUtils::roundPrice(price);
    QVERIFY2(result == rounded, qPrintable(QString::number(result, 'g', 17)));
    QVERIFY(result != 0 || !std::signbit(result));
}

void tst_CurrencyUtils::roundingAgreesWithQt()
{
    // Steps of an eighth of a cent: exact halves, products next to them and everything in between.
    for (int i = -400000; i <= 400000; ++i) {
        const double price = i / 800.0;
        const double expected = rounded(price * 100) / 100.0;
        if (CurrencyUtils::roundPrice(price) != expected)
            QFAIL(qPrintable(QString::number(price, 'g', 17)));
    }
    for (double price = 0.3; price < 1e16; price *= 1.7) {
        for (double signedPrice : {price, -price}) {
            QVERIFY(CurrencyUtils::roundPrice(signedPrice) == rounded(signedPrice * 100) / 100.0);
        }
    }
}

void tst_CurrencyUtils::roundingBeyondIntegers()
{
    // 1e300 has no fraction, and must not be converted to an integer.
    QVERIFY(qFuzzyCompare(CurrencyUtils::roundPrice(1e300), 1e300));
    QVERIFY(qFuzzyCompare(CurrencyUtils::roundPrice(-1e300), -1e300));
    const double infinite = std::numeric_limits<double>::infinity();
    for (double price : {infinite, -infinite, std::numeric_limits<double>::quiet_NaN()})
        QVERIFY(!std::isfinite(CurrencyUtils::roundPrice(price)));
}

void tst_CurrencyUtils::prices_data()
{
    const auto row =
        columns<double, QString, QString, QString>("price", "code", "number", "symbol");
    const QString euroSign = text("\u20ac");
    row("two decimals", 12.5, "EUR", "12.50", euroSign);
    row("whole", 3.0, "EUR", "3.00", euroSign);
    row("rounded", 2.345, "EUR", "2.35", euroSign);
    row("below zero", -12.5, "EUR", "-12.50", euroSign);
    row("no negative zero", -0.004, "EUR", "0.00", euroSign);
    row("no grouping", 1234567.891, "EUR", "1234567.89", euroSign);
    row("fixed notation", 1e15, "EUR", "1000000000000000.00", euroSign);
    row("pounds", 1.0, "GBP", "1.00", "\u00a3");
    row("unknown", 3.0, "XYZ", "3.00", QString());
    row("no code", 3.0, "", "3.00", QString());
    row("no cents in use, yet two decimals", 100.0, "JPY", "100.00",
        CurrencyUtils::currencySymbol(text("JPY"), QLocale::CurrencySymbol));
}

void tst_CurrencyUtils::prices()
{
    QFETCH(double, price);
    QFETCH(QString, code);
    QFETCH(QString, number);
    QFETCH(QString, symbol);
    QCOMPARE(CurrencyUtils::formatPrice(price, code), number + QLatin1Char(' ') + symbol);
    QCOMPARE(CurrencyUtils::formatPriceWithoutSymbol(price, code), number);
    // The code is not used.
    QCOMPARE(CurrencyUtils::formatPriceWithoutSymbol(price, text("no code")), number);
}

void tst_CurrencyUtils::inputField_data()
{
    const auto row = columns<double, QString>("price", "expected");
    row("whole", 10.0, "10");
    row("zero", 0.0, "0");
    row("hundreds keep their zeros", 1200.0, "1200");
    row("one decimal", 2.5, "2.5");
    row("not rounded to the cent", 2.345, "2.345");
    row("six decimals", 0.123456, "0.123456");
    row("seven decimals", 0.1234567, "0.123457");
    row("below zero", -2.50, "-2.5");
}

void tst_CurrencyUtils::inputField()
{
    QFETCH(double, price);
    QFETCH(QString, expected);
    QCOMPARE(CurrencyUtils::formatPrecisionPriceForInputLineEdit(price), expected);
}

// Amounts

void tst_CurrencyUtils::minorUnits_data()
{
    const auto row = columns<int>("decimals");
    row("EUR", 2);
    row("USD", 2);
    row("JPY", 0);
    row("XOF", 0);
    row("TND", 3);
    row("KWD", 3);
    row("IQD", 3); // though no such coins are in use
    row("MRU", 2); // though a unit is five khoums
    row("CLF", 4);
    row("UYW", 4);
    row("HRK", 2); // withdrawn in 2023
    row("XAU", -1);
    row("XDR", -1);
    row("XXX", -1);
    row("XTS", -1);
    row("DEM", -1);
    row("eur", -1);
    row("EUR ", -1);
    row("", -1);
}

void tst_CurrencyUtils::minorUnits()
{
    QFETCH(int, decimals);
    QCOMPARE(CurrencyUtils::minorUnits(text(QTest::currentDataTag())), decimals);
}

/// Every currency of the standard and of QLocale is known; only units of account and the like have
/// no minor unit.
void tst_CurrencyUtils::minorUnitsOfTheStandard()
{
    for (const QString& code : CurrencyUtils::listIsoCodes())
        QVERIFY2(CurrencyUtils::minorUnits(code) >= 0, qPrintable(code));

    QFile file(QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                      text("iso-codes/json/iso_4217.json")));
    if (!file.open(QIODevice::ReadOnly))
        QSKIP("iso-codes is not installed");
    const QJsonArray currencies =
        QJsonDocument::fromJson(file.readAll()).object()[text("4217")].toArray();
    QVERIFY(currencies.size() > 170);
    const QString none = text("XAG XAU XBA XBB XBC XBD XDR XPD XPT XSU XTS XUA XXX");
    for (const QJsonValue& currency : currencies) {
        const QString code = currency.toObject()[text("alpha_3")].toString();
        QVERIFY2((CurrencyUtils::minorUnits(code) < 0) == none.contains(code), qPrintable(code));
    }
}

void tst_CurrencyUtils::money_data()
{
    const auto row =
        columns<qint64, QString, QString, QString>("amount", "code", "locale", "expected");
    const qint64 most = std::numeric_limits<qint64>::max();
    const qint64 least = std::numeric_limits<qint64>::min();
    row("French", 2940, "EUR", "fr_FR", "29,40\u00a0€");
    row("English", 1250, "JPY", "en_US", "¥1,250");
    row("German", 125050, "EUR", "de_DE", "1.250,50\u00a0€");
    row("Dutch, symbol in front", 2940, "EUR", "nl_NL", "€\u00a029,40");
    row("Swiss", 125050, "CHF", "de_CH", "1’250.50\u00a0CHF");
    row("Hindi groups", 123456789, "INR", "hi_IN", "₹12,34,567.89");
    row("Arabic digits", 2940, "EUR", "ar_EG", "٢٩٫٤٠\u00a0€");
    row("Arabic fraction", 1005, "KWD", "ar_EG", "١٫٠٠٥\u00a0KWD");
    row("no locale", 2940, "EUR", "C", "29.40€");
    row("below zero", -2940, "EUR", "de_DE", "-29,40\u00a0€");
    row("zero", 0, "EUR", "de_DE", "0,00\u00a0€");
    row("one cent", 1, "EUR", "en_GB", "€0.01");
    row("one cent below zero", -1, "EUR", "da_DK", "-0,01\u00a0€");
    row("three decimals", 3500, "TND", "en_US", "TND\u00a03.500");
    row("four decimals", 12345678, "CLF", "en_US", "CLF\u00a01,234.5678");
    row("no decimals", 1250, "XPF", "fr_FR", "1\u00a0250\u00a0CFPF");
    row("no decimals where the locale has two", 1250, "JPY", "de_DE", "1.250\u00a0¥");
    row("two decimals where the locale has none", 2940, "EUR", "ja_JP", "€29.40");
    // Symbols.
    row("own symbol", 2940, "CAD", "en_CA", "$29.40");
    row("own symbol in Japanese", 1250, "JPY", "ja_JP", "￥1,250");
    row("symbol of another dollar", 2940, "CAD", "en_US", "CA$29.40");
    row("dollar in a country of another", 2940, "USD", "en_AU", "USD\u00a029.40");
    row("symbol that ends with a letter", 1250, "XAF", "en_US", "FCFA\u00a01,250");
    row("no symbol", 2940, "CHF", "en_US", "CHF\u00a029.40");
    row("no symbol in the language", 2940, "PLN", "fr_FR", "29,40\u00a0PLN");
    // The limits of the range.
    row("most", most, "EUR", "de_DE", "92.233.720.368.547.758,07\u00a0€");
    row("least", least, "EUR", "de_DE", "-92.233.720.368.547.758,08\u00a0€");
    row("most without decimals", most, "JPY", "en_US", "¥9,223,372,036,854,775,807");
}

void tst_CurrencyUtils::money()
{
    QFETCH(qint64, amount);
    QFETCH(QString, code);
    QFETCH(QString, locale);
    // French uses a no-break space between groups, which was a narrow one in some versions.
    QString written = CurrencyUtils::formatMoney(amount, code, QLocale(locale));
    QTEST(written.replace(QChar(0x202f), QChar(0xa0)), "expected");
}

void tst_CurrencyUtils::moneyOfUnknownCurrencies()
{
    for (const char* code : {"", "eur", "XYZ", "XAU", "EUR "}) {
        QCOMPARE(CurrencyUtils::formatMoney(Q_INT64_C(2940), text(code), QLocale()), QString());
        QCOMPARE(CurrencyUtils::formatMoney(29.4, text(code), QLocale()), QString());
    }
}

/// In every locale each currency can be told from the others, and the digits can be read back.
void tst_CurrencyUtils::moneyOfEachCurrency()
{
    const QStringList codes = CurrencyUtils::listIsoCodes();
    for (const char* name : {"en_US", "en_AU", "fr_FR", "ja_JP", "zh_CN", "sv_SE", "ar_SA", "C"}) {
        const QLocale locale{text(name)};
        QSet<QString> seen;
        for (const QString& code : codes) {
            const QString written = CurrencyUtils::formatMoney(Q_INT64_C(70000), code, locale);
            QVERIFY2(written.contains(locale.toString(7)), qPrintable(written));
            QVERIFY2(!seen.contains(written), qPrintable(text(name) + code + written));
            seen.insert(written);
        }
    }
}

void tst_CurrencyUtils::moneyFromDoubles_data()
{
    const auto row = columns<double, QString, QString>("amount", "code", "expected");
    const double infinite = std::numeric_limits<double>::infinity();
    row("two decimals", 29.4, "EUR", "29,40\u00a0€");
    row("rounded", 2.345, "EUR", "2,35\u00a0€");
    row("half below zero", -0.125, "EUR", "-0,12\u00a0€");
    row("no negative zero", -0.004, "EUR", "0,00\u00a0€");
    row("no decimals", 1250.5, "JPY", "1.251\u00a0¥");
    row("three decimals", 3.5, "TND", "3,500\u00a0TND");
    row("beyond integers", 1e17, "EUR", "100.000.000.000.000.000,00\u00a0€");
    row("far below zero", -1e17, "EUR", "-100.000.000.000.000.000,00\u00a0€");
    row("infinite", infinite, "EUR", QString());
    row("infinite below zero", -infinite, "EUR", QString());
    row("no number", std::numeric_limits<double>::quiet_NaN(), "EUR", QString());
}

void tst_CurrencyUtils::moneyFromDoubles()
{
    QFETCH(double, amount);
    QFETCH(QString, code);
    QTEST(CurrencyUtils::formatMoney(amount, code, QLocale(text("de_DE"))), "expected");
}

void tst_CurrencyUtils::moneyFollowsNumberOptions()
{
    QLocale german(text("de_DE"));
    german.setNumberOptions(QLocale::OmitGroupSeparator);
    QCOMPARE(CurrencyUtils::formatMoney(Q_INT64_C(125050), euro(), german), text("1250,50\u00a0€"));
}

// Value-added tax

void tst_CurrencyUtils::vat_data()
{
    const auto table =
        columns<qint64, int, double, qint64, qint64>("amount", "kind", "rate", "net", "vat");
    const auto row = [&](const char* name, qint64 amount, CurrencyUtils::AmountKind kind,
                         double rate, qint64 net,
                         qint64 vat) { table(name, amount, int(kind), rate, net, vat); };
    const auto net = CurrencyUtils::Net;
    const auto gross = CurrencyUtils::Gross;
    const qint64 most = std::numeric_limits<qint64>::max();
    row("19 % on net", 10000, net, 19, 10000, 1900);
    row("19 % in gross", 11900, gross, 19, 10000, 1900);
    row("5.5 % in gross", 999, gross, 5.5, 947, 52); // 52.08
    row("2.1 % on net", 333, net, 2.1, 333, 7); // 6.993
    row("2.1 % in gross", 1021, gross, 2.1, 1000, 21);
    row("13.5 % in gross", 1, gross, 13.5, 1, 0);
    row("no tax", 999, gross, 0, 999, 0);
    row("nothing", 0, net, 20, 0, 0);
    row("half a cent", 1, net, 50, 1, 1);
    row("half a cent of a refund", -1, net, 50, -1, -1);
    row("half a cent in gross", 3, gross, 100, 1, 2);
    row("half a cent in the gross of a refund", -3, gross, 100, -1, -2);
    row("a refund", -11900, gross, 19, -10000, -1900);
    row("a tenth of a promille", 1000000, net, 0.0001, 1000000, 1);
    row("less than that is rounded", 1000000, net, 0.00004, 1000000, 0);
    row("the highest rate", 100, net, 1000, 100, 1000);
    row("far beyond doubles", Q_INT64_C(1000000000000000001), net, 20,
        Q_INT64_C(1000000000000000001), Q_INT64_C(200000000000000000));
    row("the most in gross", most, gross, 20, most - Q_INT64_C(1537228672809129301),
        Q_INT64_C(1537228672809129301)); // 2^63 - 1 is 6 times that, and 1
    row("the least in gross", -most, gross, 20, -most + Q_INT64_C(1537228672809129301),
        -Q_INT64_C(1537228672809129301));
    row("the most on net", most, net, 0, most, 0);
}

void tst_CurrencyUtils::vat()
{
    QFETCH(qint64, amount);
    QFETCH(int, kind);
    QFETCH(double, rate);
    const auto split =
        CurrencyUtils::vatOf(amount, CurrencyUtils::AmountKind(kind), rate, text("EUR"));
    QVERIFY(split.isValid);
    QTEST(split.net, "net");
    QTEST(split.vat, "vat");
    QCOMPARE(split.gross, split.net + split.vat);
    QCOMPARE(kind == CurrencyUtils::Net ? split.net : split.gross, amount);
}

void tst_CurrencyUtils::vatOfNothing_data()
{
    const auto row = columns<qint64, int, double, QString>("amount", "kind", "rate", "code");
    const qint64 most = std::numeric_limits<qint64>::max();
    const qint64 least = std::numeric_limits<qint64>::min();
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    const int net = CurrencyUtils::Net;
    const int gross = CurrencyUtils::Gross;
    row("no such rate", Q_INT64_C(100), net, -1.0, euro());
    row("rate too high", Q_INT64_C(100), net, 1000.1, euro());
    row("rate is no number", Q_INT64_C(100), gross, noNumber, euro());
    row("unknown currency", Q_INT64_C(100), gross, 20.0, "XYZ");
    row("gold", Q_INT64_C(100), gross, 20.0, "XAU");
    row("gross beyond the range", most, net, 20.0, euro());
    row("gross one beyond", most - 1, net, 0.0001, euro());
    row("tax beyond the range", most, net, 1000.0, euro());
    row("least on net", least, net, 0.0, euro());
    row("least in gross", least, gross, 20.0, euro());
}

void tst_CurrencyUtils::vatOfNothing()
{
    QFETCH(qint64, amount);
    QFETCH(int, kind);
    QFETCH(double, rate);
    QFETCH(QString, code);
    const auto split = CurrencyUtils::vatOf(amount, CurrencyUtils::AmountKind(kind), rate, code);
    QVERIFY(!split.isValid);
    QCOMPARE(split.net, Q_INT64_C(0));
    QCOMPARE(split.vat, Q_INT64_C(0));
    QCOMPARE(split.gross, Q_INT64_C(0));
}

/// For every rate in use: no whole number of cents is closer to the tax, and the parts add up.
void tst_CurrencyUtils::vatOfEachAmount()
{
    for (const int tenths : {0, 21, 30, 48, 55, 70, 95, 100, 135, 190, 200, 210, 270}) {
        for (qint64 amount = -3000; amount <= 3000; ++amount) {
            const auto onNet =
                CurrencyUtils::vatOf(amount, CurrencyUtils::Net, tenths / 10.0, euro());
            const auto inGross =
                CurrencyUtils::vatOf(amount, CurrencyUtils::Gross, tenths / 10.0, euro());
            // In thousandths of a cent; a gross amount is 100 % plus the rate.
            const qint64 netError = onNet.vat * 1000 - amount * tenths;
            const qint64 grossError = inGross.vat * (1000 + tenths) - amount * tenths;
            QVERIFY(2 * qAbs(netError) <= 1000 && 2 * qAbs(grossError) <= 1000 + tenths);
            // Halves are rounded away from zero.
            QVERIFY(2 * qAbs(netError) < 1000 || (netError > 0) == (amount > 0));
            QVERIFY(onNet.isValid && onNet.net == amount && onNet.gross == amount + onNet.vat);
            QVERIFY(inGross.isValid && inGross.gross == amount
                    && inGross.net == amount - inGross.vat);
        }
    }
}

void tst_CurrencyUtils::vatFromDoubles()
{
    const auto split = CurrencyUtils::vatOf(9.99, CurrencyUtils::Gross, 5.5, euro());
    QVERIFY(split.isValid);
    QCOMPARE(split.net, Q_INT64_C(947));
    QCOMPARE(split.vat, Q_INT64_C(52));
    QCOMPARE(split.gross, Q_INT64_C(999));
    // The amount is rounded to the currency's own unit first.
    QCOMPARE(CurrencyUtils::vatOf(1250.5, CurrencyUtils::Net, 10, text("JPY")).gross,
             Q_INT64_C(1376)); // 1251 and 125
    QCOMPARE(CurrencyUtils::vatOf(1.2345, CurrencyUtils::Net, 0, text("TND")).net, Q_INT64_C(1235));
    QVERIFY(!CurrencyUtils::vatOf(1e17, CurrencyUtils::Gross, 20, euro()).isValid);
    QVERIFY(!CurrencyUtils::vatOf(1.0, CurrencyUtils::Gross, 20, text("XYZ")).isValid);
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    QVERIFY(!CurrencyUtils::vatOf(noNumber, CurrencyUtils::Gross, 20, euro()).isValid);
}

void tst_CurrencyUtils::vatToDebug()
{
    QString written;
    QDebug(&written) << CurrencyUtils::vatOf(Q_INT64_C(999), CurrencyUtils::Gross, 5.5, euro())
                     << CurrencyUtils::VatSplit() << 1;
    QCOMPARE(written.trimmed(), text("VatSplit(net 947, vat 52, gross 999) VatSplit(invalid) 1"));
}

void tst_CurrencyUtils::defaultLocalePlaysNoPart()
{
    const QString before = CurrencyUtils::currencySymbol(text("USD"), QLocale::CurrencyDisplayName);
    QLocale::setDefault(QLocale(text("de_DE")));
    QCOMPARE(CurrencyUtils::formatPrice(1234.5, euro()), text("1234.50 \u20ac"));
    QCOMPARE(CurrencyUtils::currencySymbol(text("USD"), QLocale::CurrencyDisplayName), before);
    QCOMPARE(CurrencyUtils::formatPrecisionPriceForInputLineEdit(2.5), text("2.5"));
    QLocale::setDefault(QLocale::c());
}

void tst_CurrencyUtils::nothingIsLogged()
{
    LogCapture log;
    CurrencyUtils::currencySymbol(text("XYZ"), QLocale::CurrencySymbol);
    CurrencyUtils::formatPrice(std::numeric_limits<double>::quiet_NaN(), QString());
    QCOMPARE(log.lines(), QStringList());
}

QTEST_GUILESS_MAIN(tst_CurrencyUtils)
#include "tst_CurrencyUtils.moc"

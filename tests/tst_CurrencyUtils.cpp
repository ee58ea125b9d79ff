// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CurrencyUtils.h"

#include "LogCapture.h"
#include "Text.h"

#include <QMap>
#include <QProcess>
#include <QThread>
#include <QtTest>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <vector>

namespace {

/// What a host does whose own static objects ask for a price. The variable is set by the test
/// beforeMain(), for a child process.
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

/// The representative locale of each currency, told another way than by walking and replacing: all
/// locales of a currency are gathered first, and the one that has to stand is picked afterwards.
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
    void concurrentFirstCalls(); // first: the tables are not built yet
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
    QTest::addColumn<QLocale>("locale");
    const QMap<QString, QLocale> expected = expectedLocales();
    for (auto it = expected.constBegin(); it != expected.constEnd(); ++it)
        QTest::newRow(qPrintable(it.key())) << it.value();
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
    // The name alone begins with a capital.
    QCOMPARE(CurrencyUtils::currencySymbol(code, QLocale::CurrencyDisplayName),
             name.left(1).toUpper() + name.mid(1));
}

void tst_CurrencyUtils::lastEnglishLocaleWins()
{
    // The rule matters: for some currency the last English locale differs from the first locale in
    // what it shows, and from the first English one.
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
    QTest::addColumn<int>("format");
    QTest::addColumn<QString>("expected");
    QTest::newRow("EUR") << int(QLocale::CurrencySymbol) << text("\u20ac");
    QTest::newRow("GBP") << int(QLocale::CurrencySymbol) << text("\u00a3");
    QTest::newRow("EUR as a code") << int(QLocale::CurrencyIsoCode) << text("EUR");
    QTest::newRow("EUR as a name") << int(QLocale::CurrencyDisplayName) << text("Euro");
    QTest::newRow("USD as a name") << int(QLocale::CurrencyDisplayName) << text("US Dollar");
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
    QTest::addColumn<QString>("code");
    QTest::newRow("small letters") << text("eur");
    QTest::newRow("mixed case") << text("Eur");
    QTest::newRow("no currency") << text("XYZ");
    QTest::newRow("blank behind") << text("EUR ");
    QTest::newRow("symbol") << text("\u20ac");
    QTest::newRow("empty") << text("");
    QTest::newRow("null") << QString();
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
    QTest::addColumn<int>("number");
    QTest::newRow("EUR") << 978;
    QTest::newRow("USD") << 840;
    QTest::newRow("GBP") << 826;
    QTest::newRow("JPY") << 0;
    QTest::newRow("CHF") << 0;
    QTest::newRow("eur") << 0;
    QTest::newRow("Usd") << 0;
    QTest::newRow("") << 0;
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
    QTest::addColumn<double>("price");
    QTest::addColumn<double>("rounded");
    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("whole") << 12.0 << 12.0;
    QTest::newRow("cents stay") << 12.34 << 12.34;
    QTest::newRow("down") << 1.234 << 1.23;
    QTest::newRow("up") << 1.236 << 1.24;
    // Halves that are exact in binary go up on both sides of zero.
    QTest::newRow("half") << 0.125 << 0.13;
    QTest::newRow("half below zero") << -0.125 << -0.12;
    QTest::newRow("half of a cent") << 0.375 << 0.38;
    QTest::newRow("half of a cent below zero") << -0.375 << -0.37;
    QTest::newRow("down below zero") << -1.236 << -1.24;
    QTest::newRow("up below zero") << -1.234 << -1.23;
    // 2.345 * 100 is 234.50000000000003 (up), -2.345 * 100 lies below the half (down).
    QTest::newRow("beside the half") << 2.345 << 2.35;
    QTest::newRow("beside the half below zero") << -2.345 << -2.35;
    // 1.005 * 100 is 100.49999999999999.
    QTest::newRow("short of the half") << 1.005 << 1.0;
    QTest::newRow("-0.004") << -0.004 << 0.0;
    QTest::newRow("-0.005") << -0.005 << 0.0;
    QTest::newRow("-0.006") << -0.006 << -0.01;
    QTest::newRow("one cent below zero") << -0.01 << -0.01;
    QTest::newRow("a billion") << 1e9 + 0.125 << 1e9 + 0.13;
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
    // Steps of an eighth of a cent meet exact halves, products beside them and everything between.
    for (int i = -400000; i <= 400000; ++i) {
        const double price = i / 800.0;
        const double expected = double(qRound64(price * 100)) / 100.0;
        if (CurrencyUtils::roundPrice(price) != expected)
            QFAIL(qPrintable(QString::number(price, 'g', 17)));
    }
    for (double price = 0.3; price < 1e16; price *= 1.7) {
        for (double signedPrice : {price, -price}) {
            QVERIFY(CurrencyUtils::roundPrice(signedPrice)
                    == double(qRound64(signedPrice * 100)) / 100.0);
        }
    }
}

void tst_CurrencyUtils::roundingBeyondIntegers()
{
    // 1e300 is whole by far; no conversion to an integer may break it.
    QVERIFY(qFuzzyCompare(CurrencyUtils::roundPrice(1e300), 1e300));
    QVERIFY(qFuzzyCompare(CurrencyUtils::roundPrice(-1e300), -1e300));
    const double infinite = std::numeric_limits<double>::infinity();
    for (double price : {infinite, -infinite, std::numeric_limits<double>::quiet_NaN()})
        QVERIFY(!std::isfinite(CurrencyUtils::roundPrice(price)));
}

void tst_CurrencyUtils::prices_data()
{
    QTest::addColumn<double>("price");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("symbol");
    const QString euroSign = text("\u20ac");
    QTest::newRow("two decimals") << 12.5 << "EUR"
                                  << "12.50" << euroSign;
    QTest::newRow("whole") << 3.0 << "EUR"
                           << "3.00" << euroSign;
    QTest::newRow("rounded") << 2.345 << "EUR"
                             << "2.35" << euroSign;
    QTest::newRow("below zero") << -12.5 << "EUR"
                                << "-12.50" << euroSign;
    QTest::newRow("no negative zero") << -0.004 << "EUR"
                                      << "0.00" << euroSign;
    QTest::newRow("no grouping") << 1234567.891 << "EUR"
                                 << "1234567.89" << euroSign;
    QTest::newRow("fixed notation") << 1e15 << "EUR"
                                    << "1000000000000000.00" << euroSign;
    QTest::newRow("pounds") << 1.0 << "GBP"
                            << "1.00" << text("\u00a3");
    QTest::newRow("unknown") << 3.0 << "XYZ"
                             << "3.00" << QString();
    QTest::newRow("no code") << 3.0 << ""
                             << "3.00" << QString();
    QTest::newRow("no cents in use, yet two decimals")
        << 100.0 << "JPY"
        << "100.00" << CurrencyUtils::currencySymbol(text("JPY"), QLocale::CurrencySymbol);
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
    QTest::addColumn<double>("price");
    QTest::addColumn<QString>("expected");
    QTest::newRow("whole") << 10.0 << "10";
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("hundreds keep their zeros") << 1200.0 << "1200";
    QTest::newRow("one decimal") << 2.5 << "2.5";
    QTest::newRow("not rounded to the cent") << 2.345 << "2.345";
    QTest::newRow("six decimals") << 0.123456 << "0.123456";
    QTest::newRow("seven decimals") << 0.1234567 << "0.123457";
    QTest::newRow("below zero") << -2.50 << "-2.5";
}

void tst_CurrencyUtils::inputField()
{
    QFETCH(double, price);
    QFETCH(QString, expected);
    QCOMPARE(CurrencyUtils::formatPrecisionPriceForInputLineEdit(price), expected);
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

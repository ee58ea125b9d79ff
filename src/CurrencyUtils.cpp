// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CurrencyUtils.h"

#include "StringUtils.h"
#include "currencytable_p.h"
#include "processstate_p.h"

#include <QDebug>
#include <QHash>
#include <QMap>

#include <cmath>
#include <limits>

using namespace OrvaUtilsPrivate;

namespace {

// Tables

/// ISO 4217 alphabetic code -> the locale that supplies symbol and name of the currency.
QMap<QString, QLocale> representativeLocales()
{
    const QLocale::Language reference = QLocale(QLocale::C, QLocale::AnyCountry).language();
    const QList<QLocale> locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);

    QMap<QString, QLocale> currencies;
    for (const QLocale& locale : locales) {
        const QString code = locale.currencySymbol(QLocale::CurrencyIsoCode);
        if (code.isEmpty() || locale.currencySymbol(QLocale::CurrencyDisplayName).isEmpty())
            continue;
        const auto entry = currencies.find(code);
        if (entry == currencies.end()) {
            currencies.insert(code, locale);
            continue;
        }
        // The reference language takes precedence over all others, and English over the rest. An
        // English locale also replaces an earlier English one, so that the last of them stays.
        if (entry->language() != reference
            && (locale.language() == reference || locale.language() == QLocale::English))
            *entry = locale;
    }
    return currencies;
}

/// ISO 4217 alphabetic code -> the decimals of the minor unit.
QHash<QString, int> minorUnitTable()
{
    QHash<QString, int> table;
    for (const MinorUnits& group : minorUnitsOfCurrencies) {
        const QStringList codes = QString::fromLatin1(group.codes).split(QLatin1Char(' '));
        for (const QString& code : codes)
            table.insert(code, group.decimals);
    }
    return table;
}

/// ISO 4217 alphabetic code -> the symbol outside the countries of the currency.
QHash<QString, QString> internationalSymbolTable()
{
    QHash<QString, QString> table;
    for (const InternationalSymbol& entry : internationalSymbols)
        table.insert(QString::fromLatin1(entry.code), QString::fromUtf8(entry.symbol));
    return table;
}

/// The tables, read-only once they are built.
struct Tables
{
    const QMap<QString, QLocale> mMapCurrencies = representativeLocales();
    const QMap<QString, int> mMapNumericCodes = {
        {QStringLiteral("EUR"), 978},
        {QStringLiteral("USD"), 840},
        {QStringLiteral("GBP"), 826},
    };
    const QHash<QString, int> minorUnits = minorUnitTable();
    const QHash<QString, QString> internationalSymbols = internationalSymbolTable();
};

/// Built by the first call; other threads that call meanwhile wait for it.
const Tables& tables()
{
    return processState<Tables>();
}

// Rounding

/// \a price in whole units, of which \a unitsOfOne make 1. Uses the formula of Qt's qRound64(), but
/// without its conversion to an integer type, which is undefined for values that do not fit.
double roundedUnits(double price, double unitsOfOne)
{
    const double x = price * unitsOfOne;
    if (x >= 0)
        return std::trunc(x + 0.5);
    const double below = std::trunc(x - 1);
    return below + std::trunc(x - below + 0.5);
}

/// How many minor units with \a decimals decimals make 1: 100 for 2.
int unitsOfOne(int decimals)
{
    int units = 1;
    while (decimals-- > 0)
        units *= 10;
    return units;
}

bool fitsInteger(double units)
{
    // The bound is a power of two, which a double holds exactly.
    return std::abs(units) < 9223372036854775808.0;
}

/// The absolute value, which for the lowest qint64 does not fit that type.
quint64 magnitude(qint64 number)
{
    return number < 0 ? ~quint64(number) + 1 : quint64(number);
}

// Amounts in the notation of a locale

/// The symbol of the currency \a isoCode as readers of \a locale understand it.
QString symbolFor(const QString& isoCode, const QLocale& locale)
{
    QString own = locale.currencySymbol(QLocale::CurrencySymbol);
    if (locale.currencySymbol(QLocale::CurrencyIsoCode) == isoCode && !own.isEmpty())
        return own;
    const QString symbol = tables().internationalSymbols.value(isoCode, isoCode);
    // In Australia, "$" means another dollar.
    return symbol == own ? isoCode : symbol;
}

/// \a units minor units in the digits of \a locale, with \a decimals after the decimal point.
QString numberText(quint64 units, int decimals, const QLocale& locale)
{
    const auto one = quint64(unitsOfOne(decimals));
    QString text = locale.toString(units / one);
    if (decimals == 0)
        return text;
    text += locale.decimalPoint();
    for (quint64 place = one / 10; place > 0; place /= 10)
        text += locale.toString(units / place % 10);
    return text;
}

/// \a number with the symbol of the currency where \a locale puts it. The locale writes the amount
/// 1 with a placeholder as its symbol; both are then replaced, so that nothing is computed in
/// floating point.
QString withSymbol(const QString& number, bool isNegative, const QString& isoCode,
                   const QLocale& locale)
{
    const QChar placeholder(0xe000); // for private use: no locale uses it
    const QString one = locale.toString(qlonglong(1));
    QString text = locale.toCurrencyString(qlonglong(isNegative ? -1 : 1), placeholder);
    text.replace(text.indexOf(one), one.size(), number);

    QString symbol = symbolFor(isoCode, locale);
    const int position = int(text.indexOf(placeholder));
    const auto touches = [&text](int neighbour) {
        return neighbour >= 0 && neighbour < text.size() && text.at(neighbour).isDigit();
    };
    // A space separates letters from the number: "TND 3.500", but "€3.50".
    const QChar noBreakSpace(QChar::Nbsp);
    if (symbol.at(0).isLetter() && touches(position - 1))
        symbol.prepend(noBreakSpace);
    if (symbol.at(symbol.size() - 1).isLetter() && touches(position + 1))
        symbol.append(noBreakSpace);
    return text.replace(position, 1, symbol);
}

// Value-added tax

/// \a units * \a numerator / \a denominator, with halves rounded up. Returns false if that does not
/// fit.
///
/// The quotient and the remainder are multiplied separately, so that no product needs more than 64
/// bits: \a numerator and \a denominator are less than 2^31.
bool scaled(quint64 units, quint64 numerator, quint64 denominator, quint64& result)
{
    const quint64 whole = units / denominator;
    if (numerator > 0 && whole > std::numeric_limits<quint64>::max() / 2 / numerator)
        return false;
    const quint64 rest = units % denominator * numerator;
    result = whole * numerator + (rest + denominator / 2) / denominator;
    return result <= quint64(std::numeric_limits<qint64>::max());
}

} // namespace

// Currencies

void CurrencyUtils::init()
{
    tables();
}

QStringList CurrencyUtils::listIsoCodes()
{
    return tables().mMapCurrencies.keys();
}

QString CurrencyUtils::currencySymbol(const QString& isoCode, QLocale::CurrencySymbolFormat format)
{
    const auto entry = tables().mMapCurrencies.constFind(isoCode);
    if (entry == tables().mMapCurrencies.constEnd())
        return QString();
    QString text = entry->currencySymbol(format);
    if (text.isEmpty())
        text = isoCode.toUpper();
    return format == QLocale::CurrencyDisplayName ? StringUtils::capitalize(text) : text;
}

int CurrencyUtils::currencyNumericCode(const QString& isoCode)
{
    return tables().mMapNumericCodes.value(isoCode, 0);
}

int CurrencyUtils::minorUnits(const QString& isoCode)
{
    return tables().minorUnits.value(isoCode, -1);
}

// Prices

double CurrencyUtils::roundPrice(double price)
{
    return roundedUnits(price, 100) / 100.0;
}

QString CurrencyUtils::formatPrice(double price, const QString& isoCode)
{
    return formatPriceWithoutSymbol(price, isoCode) + QLatin1Char(' ')
        + currencySymbol(isoCode, QLocale::CurrencySymbol);
}

QString CurrencyUtils::formatPriceWithoutSymbol(double price, const QString& isoCode)
{
    Q_UNUSED(isoCode)
    return QString::number(roundPrice(price), 'f', 2);
}

QString CurrencyUtils::formatPrecisionPriceForInputLineEdit(double price)
{
    return StringUtils::formatRealForInput(price, 6);
}

// Amounts

QString CurrencyUtils::formatMoney(qint64 amount, const QString& isoCode, const QLocale& locale)
{
    const int decimals = minorUnits(isoCode);
    if (decimals < 0)
        return QString();
    return withSymbol(numberText(magnitude(amount), decimals, locale), amount < 0, isoCode, locale);
}

QString CurrencyUtils::formatMoney(double amount, const QString& isoCode, const QLocale& locale)
{
    const int decimals = minorUnits(isoCode);
    if (decimals < 0 || !std::isfinite(amount))
        return QString();
    const double units = roundedUnits(amount, unitsOfOne(decimals));
    if (fitsInteger(units))
        return formatMoney(qint64(units), isoCode, locale);
    return withSymbol(locale.toString(std::abs(amount), 'f', decimals), amount < 0, isoCode,
                      locale);
}

CurrencyUtils::VatSplit CurrencyUtils::vatOf(qint64 amount, AmountKind kind, double rate,
                                             const QString& isoCode)
{
    // Rates are exact in ten-thousandths of a percent; as binary fractions most of them are not.
    const quint64 hundredPercent = 1000000;
    VatSplit split;
    if (minorUnits(isoCode) < 0 || !(rate >= 0 && rate <= 1000))
        return split;
    const auto rateUnits = quint64(qRound64(rate * 10000));

    const quint64 units = magnitude(amount);
    quint64 vat = 0;
    if (!scaled(units, rateUnits, kind == Net ? hundredPercent : hundredPercent + rateUnits, vat))
        return split;
    const quint64 net = kind == Net ? units : units - vat;
    const auto most = quint64(std::numeric_limits<qint64>::max());
    if (net > most || vat > most - net)
        return split;

    const qint64 sign = amount < 0 ? -1 : 1;
    split.net = sign * qint64(net);
    split.vat = sign * qint64(vat);
    split.gross = split.net + split.vat;
    split.isValid = true;
    return split;
}

CurrencyUtils::VatSplit CurrencyUtils::vatOf(double amount, AmountKind kind, double rate,
                                             const QString& isoCode)
{
    const double units = roundedUnits(amount, unitsOfOne(minorUnits(isoCode)));
    return fitsInteger(units) ? vatOf(qint64(units), kind, rate, isoCode) : VatSplit();
}

QDebug operator<<(QDebug debug, const CurrencyUtils::VatSplit& split)
{
    const QDebugStateSaver saver(debug);
    debug.nospace();
    if (!split.isValid)
        return debug << "VatSplit(invalid)";
    return debug << "VatSplit(net " << split.net << ", vat " << split.vat << ", gross "
                 << split.gross << ')';
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CurrencyUtils.h"

#include "StringUtils.h"
#include "processstate_p.h"

#include <QMap>

#include <cmath>

using namespace OrvaUtilsPrivate;

namespace {

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
        // The reference language beats every other, and behind it English does. An English locale
        // beats an earlier English one as well: the last of them stays.
        if (entry->language() != reference
            && (locale.language() == reference || locale.language() == QLocale::English))
            *entry = locale;
    }
    return currencies;
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
};

/// Built by the first call, while other threads that call meanwhile wait for it.
const Tables& tables()
{
    return processState<Tables>();
}

/// \a price in whole cents. By the formula of Qt's qRound64(), but without its conversion to an
/// integer type, which is undefined for what does not fit.
double roundedCents(double price)
{
    const double x = price * 100;
    if (x >= 0)
        return std::trunc(x + 0.5);
    const double below = std::trunc(x - 1);
    return below + std::trunc(x - below + 0.5);
}

} // namespace

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

double CurrencyUtils::roundPrice(double price)
{
    return roundedCents(price) / 100.0;
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

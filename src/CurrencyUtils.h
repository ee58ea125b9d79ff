// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// CurrencyUtils: the world's currencies, prices and value-added tax.

#ifndef ORVAUTILS_CURRENCYUTILS_H
#define ORVAUTILS_CURRENCYUTILS_H

#include "orvautils_export.h"

#include <QLocale>
#include <QString>
#include <QStringList>

QT_BEGIN_NAMESPACE
class QDebug;
QT_END_NAMESPACE

/// Currency codes, symbols and names; rounding and formatting of prices; value-added tax.
///
/// The currencies of listIsoCodes() are those of Qt's locale database (QLocale), so that the list,
/// the symbols and the names depend on the version of Qt.
///
/// \code
/// CurrencyUtils::formatPrice(12.5, QStringLiteral("EUR")); // "12.50 €"
/// CurrencyUtils::currencySymbol(QStringLiteral("EUR"), QLocale::CurrencyDisplayName); // "Euro"
/// CurrencyUtils::formatMoney(Q_INT64_C(2940), QStringLiteral("EUR"), QLocale("fr")); // "29,40 €"
/// \endcode
///
/// A currency is named by its ISO 4217 alphabetic code in upper case ("EUR"). Codes are compared
/// exactly: "eur" is not a currency. No result depends on the user's language or the default
/// locale.
///
/// formatPrice() and the other functions for prices always use two decimals and a point, whatever
/// the currency. formatMoney() follows the currency and a locale.
///
/// Each currency takes its symbol and its name from one representative locale among those that use
/// it: the last English one in the order of QLocale::matchingLocales(), or the first one if none is
/// English. Locales for which Qt knows no code or no name of the currency are ignored.
///
/// All functions are static and may be called from any thread at any time. Nothing is logged.
class ORVAUTILS_EXPORT CurrencyUtils
{
public:
    // Currencies

    /// Builds the tables that the other functions read, unless that has been done.
    ///
    /// It is not necessary to call it: the first call that needs the tables builds them, even
    /// before main(). That takes a third of a millisecond (603 locales, 152 currencies with
    /// Qt 5.15). A program that never asks for a price does not pay for it. Call init() if the
    /// first price must not wait.
    static void init();

    /// The codes of all currencies, ascending.
    static QStringList listIsoCodes();

    /// The symbol ("€"), the code ("EUR") or the name ("Euro") of the currency \a isoCode,
    /// depending on \a format, as its representative locale writes it.
    ///
    /// If that locale knows none, the result is the code. A name begins with a capital. Empty for a
    /// code that is not in listIsoCodes().
    static QString currencySymbol(const QString& isoCode, QLocale::CurrencySymbolFormat format);

    /// The ISO 4217 numeric code of the currencies that the payment services of the shops identify
    /// by number: 978 for "EUR", 840 for "USD" and 826 for "GBP". 0 for every other code.
    static int currencyNumericCode(const QString& isoCode);

    /// The number of decimals of the currency \a isoCode according to ISO 4217.
    ///
    /// \code
    /// CurrencyUtils::minorUnits("EUR"); // 2: 1 euro is 100 cents
    /// CurrencyUtils::minorUnits("JPY"); // 0
    /// CurrencyUtils::minorUnits("TND"); // 3: 1 dinar is 1000 millimes
    /// \endcode
    ///
    /// -1 for a code that ISO 4217 does not have, and for one that has no minor unit, such as gold
    /// ("XAU"). Codes withdrawn since 2020 are known. Unlike listIsoCodes(), the table does not
    /// depend on Qt.
    static int minorUnits(const QString& isoCode);

    // Prices

    /// \a price rounded to the cent. Halves are rounded towards positive infinity, also for
    /// negative prices: 0.125 gives 0.13 and -0.125 gives -0.12.
    ///
    /// The binary product `price * 100` is rounded, which may differ slightly from the decimal
    /// text: -2.345 * 100 is -234.50000000000003, so that -2.345 gives -2.35. The result is
    /// `qRound64(price * 100) / 100.0` wherever that is defined. Prices too large for it have no
    /// cents. Zero is always positive. The result is not finite if \a price is not.
    static double roundPrice(double price);

    /// \a price rounded by roundPrice(), with two decimals after a point, followed by a space and
    /// the symbol of the currency \a isoCode: 12.5 in "EUR" gives "12.50 €".
    ///
    /// The text ends with the space if the currency is unknown: 3 in "XYZ" gives "3.00 ".
    static QString formatPrice(double price, const QString& isoCode);

    /// The text of formatPrice() for \a price, without the space and the symbol: 12.5 gives
    /// "12.50". \a isoCode is not used: all prices have two decimals.
    static QString formatPriceWithoutSymbol(double price, const QString& isoCode);

    /// \a price for an input field: with at most six decimals, without trailing zeros, and not
    /// rounded to the cent. 10.0 gives "10", 2.345 gives "2.345".
    static QString formatPrecisionPriceForInputLineEdit(double price);

    // Amounts

    /// \a amount, in minor units of the currency \a isoCode, as it is written in \a locale.
    ///
    /// \code
    /// CurrencyUtils::formatMoney(Q_INT64_C(2940), "EUR", QLocale("fr_FR")); // "29,40 €"
    /// CurrencyUtils::formatMoney(Q_INT64_C(1250), "JPY", QLocale("en_US")); // "¥1,250"
    /// CurrencyUtils::formatMoney(Q_INT64_C(3500), "TND", QLocale("en_US")); // "TND 3.500"
    /// \endcode
    ///
    /// The digits, the separators, the position of the symbol and the notation of negative amounts
    /// are those of QLocale, including its number options. The space beside a symbol is a no-break
    /// space. The decimals are those of minorUnits(). Every amount is written exactly: nothing is
    /// computed in floating point.
    ///
    /// A currency has its local symbol in a locale of its own country. Elsewhere it has its
    /// international symbol ("€", "CA$") or its code, so that no two currencies look the same in
    /// one locale.
    ///
    /// Empty if minorUnits() is -1. An argument that is neither a qint64 nor a double, such as 5,
    /// does not compile, because it would not be clear whether it is in minor units.
    static QString formatMoney(qint64 amount, const QString& isoCode, const QLocale& locale);

    /// \a amount, in the main unit of the currency \a isoCode, as it is written in \a locale.
    ///
    /// \code
    /// CurrencyUtils::formatMoney(29.4, "EUR", QLocale("fr_FR")); // "29,40 €"
    /// \endcode
    ///
    /// It is rounded to minor units like roundPrice(), halves towards positive infinity, and
    /// written like an amount in minor units. Empty if it is not finite or minorUnits() is -1.
    static QString formatMoney(double amount, const QString& isoCode, const QLocale& locale);

    // Value-added tax

    /// Whether an amount includes the tax.
    enum AmountKind {
        Net, ///< without the tax
        Gross ///< with the tax
    };

    /// An amount and its tax, in minor units. net + vat is always exactly gross.
    struct VatSplit
    {
        qint64 net = 0; ///< the amount without the tax
        qint64 vat = 0; ///< the tax
        qint64 gross = 0; ///< the amount with the tax
        bool isValid = false; ///< false if there is no result; the amounts are 0 then
    };

    /// Splits \a amount, in minor units of the currency \a isoCode, which is \a kind, into net
    /// amount, tax and gross amount. \a rate is in percent, as from TaxeRatesUtils::europeanTax().
    ///
    /// \code
    /// const auto split = CurrencyUtils::vatOf(Q_INT64_C(999), CurrencyUtils::Gross, 5.5, "EUR");
    /// // split.net 947, split.vat 52, split.gross 999
    /// \endcode
    ///
    /// The tax is rounded to the minor unit, halves away from zero, so that a refund has the
    /// amounts of the sale. The other amount is the sum or the difference. The rate is taken to
    /// four decimals, and the computation is exact.
    ///
    /// The result is invalid if the rate is negative (there is no such rate), above 1000 or not a
    /// number, if a result does not fit a qint64, and if minorUnits() is -1.
    static VatSplit vatOf(qint64 amount, AmountKind kind, double rate, const QString& isoCode);

    /// The same for \a amount in the main unit of the currency. It is rounded to minor units first,
    /// like in formatMoney(). The result is in minor units.
    ///
    /// \code
    /// CurrencyUtils::vatOf(9.99, CurrencyUtils::Gross, 5.5, "EUR").vat; // 52
    /// \endcode
    static VatSplit vatOf(double amount, AmountKind kind, double rate, const QString& isoCode);

    CurrencyUtils() = delete;
};

/// Writes the three amounts:
///
/// \code
/// qDebug() << split; // VatSplit(net 947, vat 52, gross 999), or VatSplit(invalid)
/// \endcode
///
/// \relates CurrencyUtils
ORVAUTILS_EXPORT QDebug operator<<(QDebug debug, const CurrencyUtils::VatSplit& split);

#endif // ORVAUTILS_CURRENCYUTILS_H

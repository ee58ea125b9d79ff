// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// CurrencyUtils: the world's currencies, and prices as a shop writes them.

#ifndef ORVAUTILS_CURRENCYUTILS_H
#define ORVAUTILS_CURRENCYUTILS_H

#include "orvautils_export.h"

#include <QLocale>
#include <QString>
#include <QStringList>

/// Currency codes, symbols and names; price rounding and formatting.
///
/// The currencies are no table of this library: they are all that Qt's locale database (QLocale)
/// knows, so that the list, the symbols and the names follow the version of Qt.
///
/// \code
/// CurrencyUtils::formatPrice(12.5, QStringLiteral("EUR")); // "12.50 €"
/// CurrencyUtils::currencySymbol(QStringLiteral("EUR"), QLocale::CurrencyDisplayName); // "Euro"
/// \endcode
///
/// A currency is named by its ISO 4217 alphabetic code in upper case ("EUR"). Codes are compared
/// exactly: "eur" is no currency. The user's language and the application's default locale play no
/// part in any result.
///
/// Every currency takes its symbol and its name from one representative locale among those that use
/// it: the last English one in the order of QLocale::matchingLocales(), or the first one where none
/// is English. Locales for which Qt has no code or no name of the currency do not count.
///
/// Thread: any, at any time. Nothing is logged.
class ORVAUTILS_EXPORT CurrencyUtils
{
public:
    /// Builds the tables that the other functions read; once they are built it does nothing.
    ///
    /// Nobody has to call it: as soon as the library is loaded, before main() too, the other
    /// functions answer as though it had run. The tables are built by the first call that needs
    /// them, which takes a third of a millisecond (603 locales, 152 currencies with Qt 5.15), and
    /// not while the library is loaded, so that a program that never asks for a price pays nothing.
    /// The locale database never changes while a program runs: when it is read cannot be told from
    /// any result. Call init() where the first price must not wait.
    static void init();

    /// The codes of all currencies, ascending.
    static QStringList listIsoCodes();

    /// The symbol ("€"), the code ("EUR") or the name ("Euro") of the currency \a isoCode, which of
    /// them \a format tells, as its representative locale writes it.
    ///
    /// The code itself, in upper case, stands for what that locale does not know. A name begins
    /// with a capital. Empty for a code that is not in listIsoCodes().
    static QString currencySymbol(const QString& isoCode, QLocale::CurrencySymbolFormat format);

    /// The ISO 4217 numeric code: 978 for "EUR", 840 for "USD", 826 for "GBP", the currencies that
    /// the payment services of the shops ask for by number. 0 for every other code.
    static int currencyNumericCode(const QString& isoCode);

    /// \a price rounded to the cent; halves are rounded upwards, towards positive infinity, for
    /// negative prices too: 0.125 gives 0.13 and -0.125 gives -0.12.
    ///
    /// What is rounded is the binary product `price * 100`, which may lie beside the half that the
    /// decimal text shows: -2.345 * 100 is -234.50000000000003, so that -2.345 gives -2.35. The
    /// result is `qRound64(price * 100) / 100.0` wherever that is defined; a price too large for it
    /// has no cents to round. Zero is always positive. A price that is not finite gives a result
    /// that is not finite.
    static double roundPrice(double price);

    /// The \a price rounded by roundPrice() with two decimals behind a point, a blank, and the
    /// symbol of the currency \a isoCode: 12.5 in "EUR" gives "12.50 €".
    ///
    /// An unknown currency leaves the blank at the end: 3 in "XYZ" gives "3.00 ".
    static QString formatPrice(double price, const QString& isoCode);

    /// The \a price as formatPrice() writes it, without blank and symbol: 12.5 gives "12.50".
    /// \a isoCode is not used: every currency is written with two decimals.
    static QString formatPriceWithoutSymbol(double price, const QString& isoCode);

    /// The price for an input field: at most six decimals, without trailing zeros, not rounded to
    /// the cent. 10.0 gives "10", 2.345 gives "2.345".
    static QString formatPrecisionPriceForInputLineEdit(double price);

    CurrencyUtils() = delete;
};

#endif // ORVAUTILS_CURRENCYUTILS_H

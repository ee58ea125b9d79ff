// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TaxeRatesUtils: the rates of value-added tax in the European Union.

#ifndef ORVAUTILS_TAXERATESUTILS_H
#define ORVAUTILS_TAXERATESUTILS_H

#include "orvautils_export.h"

#include <QList>
#include <QString>

/// Rates of value-added tax by country and category.
///
/// The table is compiled into the library: 28 countries, two of them under both of their codes
/// (Greece as "EL" and "GR", the United Kingdom as "UK" and "GB"). It is read on first use.
///
/// \code
/// TaxeRatesUtils::europeanTax(QStringLiteral("fr"), 0); // 20.0, the standard rate
/// TaxeRatesUtils::europeanTax(QStringLiteral("fr"), 1); // 5.5
/// TaxeRatesUtils::europeanTax(QStringLiteral("ch"), 0); // -1.0: not in the table
/// \endcode
///
/// Thread: build the table with init() before several threads ask for rates.
class ORVAUTILS_EXPORT TaxeRatesUtils
{
public:
    /// Builds the table, unless that has been done. europeanTax() calls it by itself.
    ///
    /// Where the table's file cannot be read or is no JSON, nothing is built, and the next call
    /// tries again; FileUtils::readFileContent() logs a file that cannot be opened.
    static void init();

    /// The tax categories: 0 to 4.
    static QList<int> europeanTaxCategories();

    /// The rate in percent of a country, for example 5.5 for "fr" and 1.
    ///
    /// \a countryCode is the country's code of two letters, in any case. \a category is 0 for the
    /// standard rate, 1 for the alternative reduced rate, 2 for the reduced rate, 3 for the super
    /// reduced rate, and 4 for the parking rate; the alternative rate stands in front of the
    /// reduced one deliberately. Returns -1.0 for a country that is not in the table, for any other
    /// category, and where the country has no such rate.
    static double europeanTax(const QString& countryCode, int category);

    TaxeRatesUtils() = delete;
};

#endif // ORVAUTILS_TAXERATESUTILS_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TaxeRatesUtils: the rates of value-added tax in the European Union.

#ifndef ORVAUTILS_TAXERATESUTILS_H
#define ORVAUTILS_TAXERATESUTILS_H

#include "orvautils_export.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

/// Rates of value-added tax by country and category.
///
/// A table is compiled into the library: 28 countries, two of them under both of their codes
/// (Greece as "EL" and "GR", the United Kingdom as "UK" and "GB"). Its rates are those of
/// lastUpdated() and do not change with the law. A host that knows newer ones provides them with
/// setRatesFile().
///
/// \code
/// TaxeRatesUtils::europeanTax(QStringLiteral("fr"), 0); // 20.0, the standard rate
/// TaxeRatesUtils::europeanTax(QStringLiteral("fr"), 1); // 5.5
/// TaxeRatesUtils::europeanTax(QStringLiteral("ch"), 0); // -1.0: not in the table
/// \endcode
///
/// All functions are static and may be called from any thread at any time. Only setRatesFile() and
/// a compiled-in table that cannot be read are logged.
class ORVAUTILS_EXPORT TaxeRatesUtils
{
public:
    // The table

    /// Reads the compiled-in table, unless a table is in use already. The other functions call it.
    ///
    /// If the table cannot be read or is not JSON, none is in use, and the next call tries again.
    static void init();

    /// The date of the rates that are in use: 2016-06-01 for the compiled-in table, otherwise the
    /// date in the file that setRatesFile() was given. Invalid if no table can be read.
    ///
    /// \code
    /// tr("Rates of %1").arg(TaxeRatesUtils::lastUpdated().toString(Qt::DefaultLocaleShortDate));
    /// \endcode
    static QDate lastUpdated();

    /// Replaces the table with that of the file \a path, which the host maintains. An empty path
    /// brings back the compiled-in table.
    ///
    /// \code
    /// QString error;
    /// if (!TaxeRatesUtils::setRatesFile(folder + "/rates.json", &error))
    ///     showWarning(error); // the rates are still those from before
    /// \endcode
    ///
    /// The file is in the form of the compiled-in one:
    ///
    /// \code
    /// {
    ///   "last_updated": "2026-01-01",
    ///   "rates": {
    ///     "FR": {
    ///       "standard_rate": 20, "reduced_rate": 10, "reduced_rate_alt": 5.5,
    ///       "super_reduced_rate": 2.1, "parking_rate": false
    ///     }
    ///   }
    /// }
    /// \endcode
    ///
    /// It is read once. The whole table is replaced, in one step: a thread that asks for rates
    /// meanwhile gets those of one of the two tables. Countries that the file does not have are
    /// unknown from then on.
    ///
    /// Returns false and changes nothing if the file cannot be read, exceeds 1 MiB or is not in
    /// that form: without a date, without rates, with a country code that is not two letters or
    /// that occurs twice in different case, or with a country in which one of the five rates is
    /// neither a number from 0 to 100 nor false. Other keys are allowed. A file that is older than
    /// the compiled-in table is refused as well, so that a leftover file does not bring old rates
    /// back into a program with a newer library; a file of the same day is accepted. Files are not
    /// compared with each other: the last one counts. The reason is written to \a error, unless
    /// that is null, as a sentence for users, translated in the context "TaxeRatesUtils". It is
    /// also logged.
    ///
    /// Replaced tables stay in memory, some 5 kB each, because other threads may be reading them.
    static bool setRatesFile(const QString& path, QString* error = nullptr);

    // Rates, those of lastUpdated()

    /// The tax categories: 0 to 4.
    static QList<int> europeanTaxCategories();

    /// The name of \a category for users, for example "Reduced rate" for 2, translated in the
    /// context "TaxeRatesUtils". Empty for a number that is not in europeanTaxCategories().
    ///
    /// \code
    /// for (int category : TaxeRatesUtils::europeanTaxCategories())
    ///     comboBox->addItem(TaxeRatesUtils::categoryName(category), category);
    /// \endcode
    static QString categoryName(int category);

    /// The codes of the countries for which there are rates on the date of lastUpdated(), in upper
    /// case and ascending.
    ///
    /// \code
    /// TaxeRatesUtils::countries(); // {"AT", "BE", "BG", … "SK", "UK"}
    /// \endcode
    ///
    /// A country that the table has under two codes is listed with both.
    static QStringList countries();

    /// The rate in percent of a country on the date of lastUpdated(), for example 5.5 for "fr"
    /// and 1.
    ///
    /// \a countryCode is the country's code of two letters, in upper or lower case. \a category is
    /// 0 for the standard rate, 1 for the alternative reduced rate, 2 for the reduced rate, 3 for
    /// the super-reduced rate, and 4 for the parking rate. Deliberate: the alternative rate comes
    /// before the reduced one.
    ///
    /// -1.0 for a country that is not in the table, for any other category, and if the country has
    /// no such rate.
    static double europeanTax(const QString& countryCode, int category);

    TaxeRatesUtils() = delete;
};

#endif // ORVAUTILS_TAXERATESUTILS_H

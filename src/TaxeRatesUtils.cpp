// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TaxeRatesUtils.h"

#include "FileUtils.h"
#include "processstate_p.h"

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

/// Registers the compiled-in table, which in a static library does not happen by itself. Outside
/// the unnamed namespace, because Q_INIT_RESOURCE declares a function of the global one.
static void registerRates()
{
    Q_INIT_RESOURCE(ue_tax_rates);
}

using namespace OrvaUtilsPrivate;

namespace {

/// The key of each category in the file, by the category's number.
const char* const keysOfCategories[] = {"standard_rate", "reduced_rate_alt", "reduced_rate",
                                        "super_reduced_rate", "parking_rate"};

const double noRate = -1.0;

struct Table
{
    bool built = false;
    QHash<QString, QMap<int, double>> rates; ///< by the country's code in small letters
};

Table& table()
{
    return processState<Table>();
}

} // namespace

void TaxeRatesUtils::init()
{
    if (table().built)
        return;
    registerRates();
    const QJsonDocument document = QJsonDocument::fromJson(
        FileUtils::readFileContent(QStringLiteral(":/orvautils/ue_tax_rates/taxes_ue.json")));
    if (document.isNull())
        return;
    const QList<int> categories = europeanTaxCategories();
    const QJsonObject countries = document.object().value(QLatin1String("rates")).toObject();
    for (auto country = countries.begin(); country != countries.end(); ++country) {
        const QJsonObject entry = country.value().toObject();
        QMap<int, double> rates;
        for (int category : categories) {
            // A rate that the country does not have is false in the file.
            rates.insert(category,
                         entry.value(QLatin1String(keysOfCategories[category])).toDouble(noRate));
        }
        table().rates.insert(country.key().toLower(), rates);
    }
    table().built = true;
}

QList<int> TaxeRatesUtils::europeanTaxCategories()
{
    return {0, 1, 2, 3, 4};
}

double TaxeRatesUtils::europeanTax(const QString& countryCode, int category)
{
    init();
    return table().rates.value(countryCode.toLower()).value(category, noRate);
}

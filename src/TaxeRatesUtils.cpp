// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TaxeRatesUtils.h"

#include "FileUtils.h"
#include "ascii_p.h"
#include "logrecord_p.h"
#include "processstate_p.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>

/// Registers the compiled-in table, which does not happen automatically in a static library.
/// Outside the unnamed namespace, because Q_INIT_RESOURCE declares a function in the global one.
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

// Tables

/// The rates of a country by category.
using Rates = std::array<double, 5>;

/// A table, which does not change once it is in use.
struct Table
{
    QDate lastUpdated;
    QHash<QString, Rates> rates; ///< by the country's code in lower case
    const Table* previous = nullptr; ///< read before this one
};

/// Any thread may ask for rates while another one replaces the table. Tables are therefore never
/// deleted; those of files are chained.
struct Tables
{
    std::atomic<const Table*> builtIn{nullptr}; ///< null until it has been read
    std::atomic<const Table*> current{nullptr}; ///< in use; null for the compiled-in one
    std::atomic<const Table*> lastRead{nullptr}; ///< from a file
};

Tables& tables()
{
    return processState<Tables>();
}

/// The table of \a file, an object in the form of the compiled-in one. A value that is not
/// in that form counts as missing.
std::unique_ptr<Table> tableOf(const QJsonObject& file)
{
    std::unique_ptr<Table> table(new Table);
    table->lastUpdated =
        QDate::fromString(file.value(QLatin1String("last_updated")).toString(), Qt::ISODate);
    const QJsonObject countries = file.value(QLatin1String("rates")).toObject();
    for (auto country = countries.begin(); country != countries.end(); ++country) {
        const QJsonObject entry = country.value().toObject();
        Rates rates;
        // A rate that a country does not have is false in the file.
        std::transform(
            std::begin(keysOfCategories), std::end(keysOfCategories), rates.begin(),
            [&entry](const char* key) { return entry.value(QLatin1String(key)).toDouble(noRate); });
        table->rates.insert(country.key().toLower(), rates);
    }
    return table;
}

/// The compiled-in table, or null if it cannot be read.
const Table* builtInTable()
{
    const Table* builtIn = tables().builtIn.load();
    if (builtIn)
        return builtIn;
    registerRates();
    const QJsonDocument document = QJsonDocument::fromJson(
        FileUtils::readFileContent(QStringLiteral(":/orvautils/ue_tax_rates/taxes_ue.json")));
    if (document.isNull())
        return nullptr;
    std::unique_ptr<Table> table = tableOf(document.object());
    // Another thread may have built it meanwhile.
    if (tables().builtIn.compare_exchange_strong(builtIn, table.get()))
        builtIn = table.release();
    return builtIn;
}

/// The table that is in use, or null if there is none.
const Table* currentTable()
{
    const Table* const current = tables().current.load();
    return current ? current : builtInTable();
}

// Files of a host

/// In bytes; larger than any file of rates.
const qint64 largestFile = 1 << 20;

QString translated(const char* text)
{
    return QCoreApplication::translate("TaxeRatesUtils", text);
}

/// Whether \a value is valid for a rate in the file: a percentage, or false.
bool isRate(const QJsonValue& value)
{
    if (value.isDouble())
        return value.toDouble() >= 0 && value.toDouble() <= 100;
    return value.isBool() && !value.toBool();
}

/// What is wrong with the entry \a code of a file, or an empty string.
QString faultOf(const QString& code, const QJsonValue& entry)
{
    if (code.size() != 2 || !isAsciiLetter(code.at(0)) || !isAsciiLetter(code.at(1)))
        return translated(
                   QT_TRANSLATE_NOOP("TaxeRatesUtils", "\"%1\" is not the code of a country"))
            .arg(code);
    const QJsonObject rates = entry.toObject();
    const auto isMissing = [&rates](const char* key) {
        return !isRate(rates.value(QLatin1String(key)));
    };
    const auto fault =
        std::find_if(std::begin(keysOfCategories), std::end(keysOfCategories), isMissing);
    if (fault == std::end(keysOfCategories))
        return QString();
    return translated(QT_TRANSLATE_NOOP("TaxeRatesUtils",
                                        "\"%1\" of %2 is neither a rate from 0 to 100 nor false"))
        .arg(QLatin1String(*fault), code);
}

/// The table of the file \a path, or null and the reason in \a fault.
std::unique_ptr<Table> readTable(const QString& path, QString& fault)
{
    QFile file(path);
    // Opening a pipe would block.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        fault = translated(QT_TRANSLATE_NOOP("TaxeRatesUtils", "The file cannot be read"));
        return nullptr;
    }
    const QByteArray content = file.read(largestFile + 1);
    if (content.size() > largestFile) {
        fault = translated(QT_TRANSLATE_NOOP("TaxeRatesUtils", "The file is too large"));
        return nullptr;
    }
    const QJsonDocument document = QJsonDocument::fromJson(content);
    if (!document.isObject()) {
        fault = translated(QT_TRANSLATE_NOOP("TaxeRatesUtils", "The file is not a table of rates"));
        return nullptr;
    }

    std::unique_ptr<Table> table = tableOf(document.object());
    const QJsonObject countries = document.object().value(QLatin1String("rates")).toObject();
    if (!table->lastUpdated.isValid()) {
        fault = translated(QT_TRANSLATE_NOOP("TaxeRatesUtils", "The file has no valid date"));
        return nullptr;
    }
    if (countries.isEmpty()) {
        fault = translated(QT_TRANSLATE_NOOP("TaxeRatesUtils", "The file has no rates"));
        return nullptr;
    }
    for (auto country = countries.begin(); country != countries.end(); ++country) {
        fault = faultOf(country.key(), country.value());
        if (!fault.isEmpty())
            return nullptr;
    }
    if (table->rates.size() != countries.size()) {
        fault = translated(QT_TRANSLATE_NOOP("TaxeRatesUtils", "A country is in the file twice"));
        return nullptr;
    }
    return table;
}

/// Puts \a table into use.
void use(std::unique_ptr<Table> table)
{
    const Table* lastRead = tables().lastRead.load();
    do {
        table->previous = lastRead;
    } while (!tables().lastRead.compare_exchange_weak(lastRead, table.get()));
    tables().current = table.release();
}

} // namespace

// The table

void TaxeRatesUtils::init()
{
    currentTable();
}

QDate TaxeRatesUtils::lastUpdated()
{
    const Table* const table = currentTable();
    return table ? table->lastUpdated : QDate();
}

bool TaxeRatesUtils::setRatesFile(const QString& path, QString* error)
{
    if (path.isEmpty()) {
        tables().current = nullptr;
        return true;
    }
    QString fault;
    std::unique_ptr<Table> table = readTable(path, fault);
    const Table* const builtIn = builtInTable();
    if (table && builtIn && table->lastUpdated < builtIn->lastUpdated) {
        fault = translated(QT_TRANSLATE_NOOP("TaxeRatesUtils",
                                             "The file is older than the rates of this program"));
        table.reset();
    }
    if (!table) {
        ORVAUTILS_LOG_WARNING() << "rates file refused :" << path << fault;
        if (error)
            *error = fault;
        return false;
    }
    use(std::move(table));
    return true;
}

// Rates

QList<int> TaxeRatesUtils::europeanTaxCategories()
{
    return {0, 1, 2, 3, 4};
}

QString TaxeRatesUtils::categoryName(int category)
{
    switch (category) {
    case 0:
        return QCoreApplication::translate("TaxeRatesUtils", "Standard rate");
    case 1:
        return QCoreApplication::translate("TaxeRatesUtils", "Alternative reduced rate");
    case 2:
        return QCoreApplication::translate("TaxeRatesUtils", "Reduced rate");
    case 3:
        return QCoreApplication::translate("TaxeRatesUtils", "Super-reduced rate");
    case 4:
        return QCoreApplication::translate("TaxeRatesUtils", "Parking rate");
    default:
        return QString();
    }
}

QStringList TaxeRatesUtils::countries()
{
    QStringList codes;
    if (const Table* const table = currentTable()) {
        codes.reserve(table->rates.size());
        for (auto country = table->rates.begin(); country != table->rates.end(); ++country)
            codes += country.key().toUpper();
        codes.sort();
    }
    return codes;
}

double TaxeRatesUtils::europeanTax(const QString& countryCode, int category)
{
    const Table* const table = currentTable();
    if (!table || category < 0 || category >= int(Rates().size()))
        return noRate;
    const auto country = table->rates.find(countryCode.toLower());
    return country == table->rates.end() ? noRate : (*country)[size_t(category)];
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Shop: the contents of shop.json, checked and complete.

#ifndef SHOP_H
#define SHOP_H

#include <CurrencyUtils.h>

#include <QColor>
#include <QDate>
#include <QMap>
#include <QSize>
#include <QStringList>
#include <QVector>

#include <cmath>

/// A text in each language of the shop, by the language's code.
using LocalText = QMap<QString, QString>;

struct ShopFont
{
    QString family; ///< as the catalogue spells it; empty for the fonts of the system
    QString category; ///< "serif", "sans-serif", "display", "handwriting" or "monospace"
    int textWeight = 400; ///< the weight of the family nearest to 400
    int boldWeight = 700; ///< the one nearest to 700
    bool italic = false; ///< the family has no upright style
    QMap<int, QString> files; ///< paths in the site by weight
    bool fromService = false; ///< the pages load it from the font service
};

struct ShopProduct
{
    QString id; ///< of its element in the pages, distinct and the same in all languages
    LocalText name;
    LocalText description;
    QStringList photos; ///< paths of the photographs below photos/, at least one
    QString order; ///< like that of the shop, over which it takes precedence
    int taxCategory = 0;
    double vatRate = 0; ///< percent
    CurrencyUtils::VatSplit price; ///< in minor units of the currency
};

struct Shop
{
    /// An amount in minor units of the currency as a number: 2940 cents are 29.4.
    double amount(qint64 minorUnits) const
    {
        return double(minorUnits) / std::pow(10.0, CurrencyUtils::minorUnits(currency));
    }

    LocalText name;
    LocalText description; ///< empty if the file has none
    QStringList languages;
    QString currency;
    QString country;
    QMap<int, double> vatRates; ///< percent by category
    QDate vatDate; ///< of these rates
    ShopFont font;
    QColor accent; ///< invalid for that of the program
    bool crop = false; ///< pictures fill their frames
    QString url; ///< where the site is published, with a slash at the end; empty if unknown
    QString logo; ///< a path in the site, like the next
    QString favicon;
    QSize logoSize; ///< pixels
    LocalText imprint;
    LocalText address;
    QString email;
    QString phone;
    QString order; ///< an e-mail address, or a web address in which {id} and {name} are filled in
    QVector<ShopProduct> products;

    /// Whether an imprint is the address of a page.
    static bool isWebAddress(const QString& text)
    {
        return text.startsWith(QLatin1String("http://"))
            || text.startsWith(QLatin1String("https://"));
    }
};

#endif // SHOP_H

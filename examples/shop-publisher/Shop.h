// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Shop: what shop.json tells, checked and complete.

#ifndef SHOP_H
#define SHOP_H

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

/// A text in each language of the shop, by the language's code.
using LocalText = QMap<QString, QString>;

struct ShopFont
{
    QString family; ///< as the catalogue spells it
    QString category; ///< "serif", "sans-serif", "display", "handwriting" or "monospace"
    int textWeight = 400; ///< the weight of the family that is nearest to 400
    int boldWeight = 700; ///< that nearest to 700
    bool italic = false; ///< the family has no upright style
};

struct ShopProduct
{
    QString id; ///< of its element in the pages, distinct and the same in all languages
    LocalText name;
    LocalText description;
    QString photo; ///< path of the photograph below photos/
    int taxCategory = 0;
    double vatRate = 0; ///< percent
    double net = 0; ///< rounded to the cent, as the other two
    double vat = 0;
    double gross = 0; ///< net and vat
};

struct Shop
{
    LocalText name;
    LocalText description; ///< empty where the file holds none
    QStringList languages;
    QString currency;
    QString country;
    ShopFont font;
    QVector<ShopProduct> products;
};

#endif // SHOP_H

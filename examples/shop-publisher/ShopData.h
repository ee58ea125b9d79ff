// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ShopData: the shop for other programs: its products for scripts of a page, its settings for PHP.
//
// Both read the very texts and prices of shop.json, which takes care: the library's literals turn
// double quotes into single ones, leave backslashes alone, and write six digits of a number.

#ifndef SHOPDATA_H
#define SHOPDATA_H

#include "PictureImporter.h"
#include "Shop.h"

#include <QByteArray>
#include <QMap>

class ShopData
{
public:
    /// data/products.js: the constant "products", a list of objects. \a pictures are those of the
    /// products, by the photograph's name.
    static QByteArray productsJs(const Shop& shop, const QMap<QString, PublishedPicture>& pictures);

    /// config/config.php: constants.
    static QByteArray configPhp(const Shop& shop);
};

#endif // SHOPDATA_H

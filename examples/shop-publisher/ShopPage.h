// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ShopPage: the page of the shop in one of its languages: what there is, and what it costs.

#ifndef SHOPPAGE_H
#define SHOPPAGE_H

#include "PictureImporter.h"
#include "Shop.h"

#include <QByteArray>
#include <QMap>
#include <QString>

class ShopPage
{
public:
    /// The page's place in the site: "shop-fr.html".
    static QString fileName(const QString& language);

    /// The language as those who speak it call it: "Français".
    static QString languageName(const QString& language);

    /// \a pictures are those of the products, by the photograph's name. Both outlive this object.
    ShopPage(const Shop& shop, const QMap<QString, PublishedPicture>& pictures,
             const QString& language)
        : mShop(shop)
        , mPictures(pictures)
        , mLanguage(language)
    { }

    /// One HTML document in UTF-8, complete without a network: the shop's font comes from the font
    /// service after everything else is there, and a similar one of the system stands in for it.
    /// The same shop gives the same bytes.
    QByteArray html() const;

private:
    const Shop& mShop;
    const QMap<QString, PublishedPicture>& mPictures;
    QString mLanguage;
};

#endif // SHOPPAGE_H

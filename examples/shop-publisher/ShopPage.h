// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ShopPage: the pages of the shop: what there is, and what it costs, in each of its languages.

#ifndef SHOPPAGE_H
#define SHOPPAGE_H

#include "Published.h"
#include "Shop.h"
#include "Site.h"

#include <QMap>
#include <QString>
#include <QVariant>
#include <QVector>

class ShopPage
{
public:
    /// The place in the site of the first page in \a language: "shop-fr.html".
    static QString fileName(const QString& language);

    /// All pages: those of each language, of at most 100 products each; "index.html", which is the
    /// first of the first language and leads on to that of the reader; and "sitemap.xml" where the
    /// address of the site is known. \a pictures are those of the products, by the photograph's
    /// name.
    ///
    /// Each is one HTML document in UTF-8, complete without a network and without scripts. The same
    /// shop gives the same bytes.
    static QVector<SiteFile> files(const Shop& shop,
                                   const QMap<QString, PublishedPicture>& pictures);

private:
    ShopPage(const Shop& shop, const QMap<QString, PublishedPicture>& pictures,
             const QString& language);

    QByteArray html(int number, bool isFrontPage) const;
    QVariantMap product(const ShopProduct& product, bool isFirst) const;
    QVariantMap picture(const QString& photo, const QString& alt, bool isLazy, bool isSmall) const;
    QVariantMap style() const;
    QVariantMap links(int number) const;
    QVariantMap foot() const;
    QString data(int first, int count, const QString& place) const;
    QString order(const ShopProduct& product) const;
    QString price(qint64 amount) const;

    const Shop& mShop;
    const QMap<QString, PublishedPicture>& mPictures;
    QString mLanguage;
    QVariantMap mTexts;
};

#endif // SHOPPAGE_H

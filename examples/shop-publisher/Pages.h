// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Pages: what visitors see of the site, and the data of the shop for other programs. The same
// pictures and products give the same bytes.

#ifndef PAGES_H
#define PAGES_H

#include "Published.h"
#include "Shop.h"
#include "Site.h"

#include <QCoreApplication>
#include <QMap>
#include <QString>
#include <QVariant>
#include <QVector>

/// The pages that show all pictures of the site, small, each leading to the large one.
class ContactSheet
{
    Q_DECLARE_TR_FUNCTIONS(ContactSheet)

public:
    /// The pages of at most 200 pictures each. Those of a folder are shown together under its name,
    /// in their order. The first page is "index.html" where \a isFrontPage says so, otherwise
    /// "photographs.html", which leads to the shop.
    ///
    /// Each is one self-contained HTML document in UTF-8 that names its pictures relative to
    /// itself, so that it works from the disk as from a server.
    static QVector<SiteFile> files(const QString& title, const QVector<PublishedPicture>& pictures,
                                   bool isFrontPage);
};

/// The pages of the shop: what there is, and what it costs, in each of its languages.
struct ShopPage
{
    /// The place in the site of the first page in \a language: "shop-fr.html".
    static QString fileName(const QString& language);

    /// All pages: those of each language, of at most 100 products each; "index.html", which is the
    /// first of the first language and leads on to that of the reader; and "sitemap.xml" where the
    /// address of the site is known. \a pictures are those of the products, by the photograph's
    /// name. Each is complete without a network and without scripts.
    static QVector<SiteFile> files(const Shop& shop,
                                   const QMap<QString, PublishedPicture>& pictures);
};

/// The shop for other programs: its products for scripts of a page, its settings for PHP.
///
/// Both read the very texts and prices of shop.json, which takes care: the library's literals turn
/// double quotes into single ones, leave backslashes alone, and write six digits of a number.
struct ShopData
{
    /// "data/products.js" with the constant "products", a list of objects, and "config/config.php"
    /// with constants.
    static QVector<SiteFile> files(const Shop& shop,
                                   const QMap<QString, PublishedPicture>& pictures);
};

/// What the pages of the shop and of the photographs have in common.
namespace PageParts {

/// The words of a page in the language \a code, whatever the program speaks, by the names that the
/// templates have for them; English ones where the program has none of that language.
QVariantMap texts(const QString& code);

/// The file names of the pages that hold \a count things, so many \a onAPage: \a first, then
/// \a others with a number. There is always a first page.
QStringList names(const QString& first, const QString& others, int count, int onAPage);

/// What page \a index of several says, beside \a texts: the way to the page before it and to the
/// one behind it.
QVariantMap pager(const QVariantMap& texts, const QStringList& names, int index);

/// A small picture, which leads to the large one.
QVariantMap picture(const PublishedPicture& picture, const QString& alternativeText);

} // namespace PageParts

#endif // PAGES_H

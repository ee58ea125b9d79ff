// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Pages: the pages that visitors see, and the data of the shop for other programs. The same
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

/// The pages that show thumbnails of all pictures of the site, each linked to the large one.
class ContactSheet
{
    Q_DECLARE_TR_FUNCTIONS(ContactSheet)

public:
    /// The pages of at most 200 pictures each. Those of a folder are shown together under its name,
    /// in their order. The first page is "index.html" if \a isFrontPage is true, otherwise
    /// "photographs.html", which links to the shop.
    ///
    /// Each is one self-contained HTML document in UTF-8 that names its pictures relative to
    /// itself, so that it works from the disk as well as from a server.
    static QVector<SiteFile> files(const QString& title, const QVector<PublishedPicture>& pictures,
                                   bool isFrontPage);
};

/// The pages of the shop: its products and their prices, in each of its languages.
struct ShopPage
{
    /// The path in the site of the first page in \a language: "shop-fr.html".
    static QString fileName(const QString& language);

    /// All pages: those of each language, of at most 100 products each; "index.html", which is the
    /// first page of the first language and redirects to the reader's language; and "sitemap.xml"
    /// if the address of the site is known. \a pictures are those of the products, by the
    /// photograph's name. Each page is complete without a network and without scripts.
    static QVector<SiteFile> files(const Shop& shop,
                                   const QMap<QString, PublishedPicture>& pictures);
};

/// The shop for other programs: its products for scripts of a page, its settings for PHP.
///
/// Both get exactly the texts and prices of shop.json, which takes care: the library's literals
/// turn double quotes into single ones, leave backslashes alone, and write numbers with six digits.
struct ShopData
{
    /// "data/products.js" with the constant "products", a list of objects, and "config/config.php"
    /// with constants.
    static QVector<SiteFile> files(const Shop& shop,
                                   const QMap<QString, PublishedPicture>& pictures);
};

/// What the pages of the shop and of the photographs have in common.
namespace PageParts {

/// The words of a page in the language \a code, whatever the program's language, by their names in
/// the templates; in English if the program has none in that language.
QVariantMap texts(const QString& code);

/// The file names of the pages for \a count things, \a onAPage on each: \a first, then \a others
/// with a number. There is always a first page.
QStringList names(const QString& first, const QString& others, int count, int onAPage);

/// The values of page \a index of several: \a texts, and the links to the previous and the next
/// page.
QVariantMap pager(const QVariantMap& texts, const QStringList& names, int index);

/// A thumbnail that links to the large picture.
QVariantMap picture(const PublishedPicture& picture, const QString& alternativeText);

} // namespace PageParts

#endif // PAGES_H

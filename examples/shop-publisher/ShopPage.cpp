// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Pages.h"

#include "Languages.h"
#include "Template.h"

#include <ColorUtils.h>
#include <CurrencyUtils.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QLocale>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <cmath>

namespace {

const int productsOnAPage = 100;
/// The number of pictures that a reader sees before scrolling; the others are loaded lazily.
const int firstPictures = 4;
const int cardRem = 24; ///< the width of a card on a wide screen, at most

/// A CSS string in double quotes without line breaks, safe inside a style element, too.
QString cssText(const QString& text)
{
    QString escaped = text.simplified();
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('"'), QLatin1String("\\\""))
        .replace(QLatin1Char('<'), QLatin1String("\\3c "));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

/// The relative luminance of a colour plus 0.05, as accessibility rules use it: 0.05 to 1.05.
double brightness(const QColor& color)
{
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.05 + 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

/// The contrast of two colours, from 1 to 21.
double contrast(const QColor& one, const QColor& other)
{
    const double a = brightness(one);
    const double b = brightness(other);
    return qMax(a, b) / qMin(a, b);
}

/// \a color, or one between it and \a end that is legible on \a background.
QColor readable(const QColor& color, const QColor& background, const QColor& end)
{
    QColor shade = color;
    for (int step = 1; step <= 20 && contrast(shade, background) < 4.6; ++step)
        shade = ColorUtils::interpolate(color, end, step / 20.0);
    return shade;
}

/// The country's name in the language of the page, as far as Qt knows it: in English, and in the
/// languages of the country itself; otherwise in the first of these.
QString countryName(const QString& code, const QString& pageLanguage)
{
    // Two countries have codes of their own in the Union.
    const QMap<QString, QString> others{{QStringLiteral("EL"), QStringLiteral("GR")},
                                        {QStringLiteral("UK"), QStringLiteral("GB")}};
    const QString ending = QLatin1Char('_') + others.value(code, code);
    const QList<QLocale> locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    const auto there =
        std::find_if(locales.begin(), locales.end(),
                     [&ending](const QLocale& locale) { return locale.name().endsWith(ending); });
    if (there == locales.end())
        return code;
    const QLocale::Language language = QLocale(pageLanguage).language();
    if (language == QLocale::English)
        return QLocale::countryToString(there->country());
    const QLocale local(language, there->country());
    if (local.language() == language && local.country() == there->country())
        return local.nativeCountryName();
    return QLocale(QLocale::AnyLanguage, there->country()).nativeCountryName();
}

QString tagOf(QString language)
{
    return language.replace(QLatin1Char('_'), QLatin1Char('-'));
}

QString percentEncoded(const QString& text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

/// A value as JSON that cannot end the script element that contains it.
QString scriptCode(const QVariant& value)
{
    return QString::fromUtf8(QJsonDocument::fromVariant(value)
                                 .toJson(QJsonDocument::Compact)
                                 .replace('<', "\\u003c")
                                 .replace('>', "\\u003e")
                                 .replace('&', "\\u0026"));
}

/// The pages in one language.
class ShopPages
{
public:
    ShopPages(const Shop& shop, const QMap<QString, PublishedPicture>& pictures,
              const QString& language)
        : mShop(shop)
        , mPictures(pictures)
        , mLanguage(language)
        , mTexts(PageParts::texts(language))
        , mNames(namesIn(language))
        , mValues(mTexts)
    {
        const QLocale locale(language);
        const QVariantMap shopsOwn =
            Template::values({{"lang", tagOf(language)},
                              {"rtl", locale.textDirection() == Qt::RightToLeft},
                              {"locale", locale.name()},
                              {"generator", QCoreApplication::applicationName()},
                              {"name", shop.name.value(language)},
                              {"description", shop.description.value(language)},
                              {"url", shop.url},
                              {"isMultilingual", shop.languages.size() > 1},
                              {"image", imageAddress(shop.products.first().photos.first())},
                              {"favicon", Template::address(shop.favicon)},
                              {"logo", Template::address(shop.logo)},
                              {"logoWidth", shop.logoSize.width()},
                              {"logoHeight", shop.logoSize.height()}});
        for (const QVariantMap& more : {shopsOwn, style(), foot()})
            mValues = Template::with(mValues, more);
    }

    QStringList names() const { return mNames; }

    /// The front page is the first page, and redirects readers of other languages to theirs.
    QByteArray html(int page, bool isFrontPage) const
    {
        const QVariantMap pager = PageParts::pager(mTexts, mNames, page);
        QString title = mShop.name.value(mLanguage);
        if (page > 0)
            title += QStringLiteral(" – ") + pager.value(QStringLiteral("pageText")).toString();
        QVariantList products;
        QVariantList data;
        const QVector<ShopProduct> all =
            mShop.products.mid(page * productsOnAPage, productsOnAPage);
        for (const ShopProduct& one : all) {
            products.append(product(one, products.size() < firstPictures));
            data.append(dataOf(one, mNames.at(page)));
        }
        QVariantList languages;
        QVariantMap firstPages;
        for (const QString& language : mShop.languages) {
            firstPages.insert(language, ShopPage::fileName(language));
            languages.append(Template::values({{"firstPage", ShopPage::fileName(language)},
                                               {"samePage", namesIn(language).at(page)},
                                               {"lang", tagOf(language)},
                                               {"ownName", Languages::nativeName(language)},
                                               {"current", language == mLanguage}}));
        }
        const QString choices =
            scriptCode(firstPages) + QStringLiteral(", \"%1\"").arg(mNames.first());
        const QVariantMap own = Template::values(
            {{"title", title},
             {"place", mNames.at(page)},
             {"languages", languages},
             {"products", products},
             {"pager", pager},
             {"data", scriptCode(data)},
             {"choices", isFrontPage && languages.size() > 1 ? choices : QString()}});
        return Template::fill(QStringLiteral("shop.html"), Template::with(mValues, own));
    }

private:
    QStringList namesIn(const QString& language) const
    {
        return PageParts::names(ShopPage::fileName(language),
                                QStringLiteral("shop-%1-%2.html").arg(language),
                                int(mShop.products.size()), productsOnAPage);
    }

    QString imageAddress(const QString& photo) const
    {
        return Template::address(QLatin1String("images/") + mPictures.value(photo).name);
    }

    /// What the style sheet takes from the shop. The colours of the page are defined there.
    QVariantMap style() const
    {
        const ShopFont& font = mShop.font;
        const bool hasAccent = mShop.accent.isValid();
        const QColor light =
            readable(hasAccent ? mShop.accent : QColor(0x9c4a27), QColor(0xfaf7f2), Qt::black);
        const QColor dark =
            readable(hasAccent ? mShop.accent : QColor(0xeaa27c), QColor(0x221e1a), Qt::white);
        const auto textOn = [](const QColor& color) {
            const bool isDark = contrast(color, Qt::white) >= contrast(color, Qt::black);
            return QString::fromLatin1(isDark ? "#fff" : "#000");
        };
        QVariantList files;
        for (auto it = font.files.begin(); it != font.files.end(); ++it)
            files.append(Template::values(
                {{"weight", it.key()}, {"address", Template::address(it.value())}}));
        const QByteArray name = QUrl::toPercentEncoding(font.family, QByteArrayLiteral(" "));
        const QStringList ownKinds{QStringLiteral("serif"), QStringLiteral("handwriting"),
                                   QStringLiteral("monospace")};
        QVariantMap style = Template::values(
            {{"accent", light.name()},
             {"onAccent", textOn(light)},
             {"accentDark", dark.name()},
             {"onAccentDark", textOn(dark)},
             {"fontFamily", font.family.isEmpty() ? QString() : cssText(font.family)},
             {"fontName", QString::fromLatin1(name).replace(QLatin1Char(' '), QLatin1Char('+'))},
             {"fontFiles", files},
             {"fontService", font.fromService},
             {"textWeight", font.textWeight},
             {"boldWeight", font.boldWeight},
             {"hasBold", font.boldWeight != font.textWeight},
             {"italic", font.italic},
             {"crop", mShop.crop}});
        style.insert(ownKinds.contains(font.category) ? font.category : QStringLiteral("sans"),
                     true);
        return style;
    }

    QVariantMap product(const ShopProduct& product, bool isFirst) const
    {
        const QString name = product.name.value(mLanguage);
        QVariantList more;
        for (int i = 1; i < product.photos.size(); ++i)
            more.append(picture(product.photos.at(i),
                                QStringLiteral("%1 (%2)").arg(name, QString::number(i + 1)), true,
                                true));
        return Template::values({{"id", product.id},
                                 {"name", name},
                                 {"text", product.description.value(mLanguage)},
                                 {"photo", picture(product.photos.first(), name, !isFirst, false)},
                                 {"hasMorePhotos", !more.isEmpty()},
                                 {"morePhotos", more},
                                 {"gross", price(product.price.gross)},
                                 {"net", price(product.price.net)},
                                 {"vat", price(product.price.vat)},
                                 {"rate", QLocale(mLanguage).toString(product.vatRate, 'g', 6)},
                                 {"order", order(product)}});
    }

    /// One picture in all its sizes. The page states how wide it is shown, which for an upright one
    /// that is not cropped is less than the card, and the reader's browser chooses.
    QVariantMap picture(const QString& photo, const QString& alt, bool isLazy, bool isSmall) const
    {
        const PublishedPicture picture = mPictures.value(photo);
        const auto set = [](const QVector<PictureSize>& sizes) {
            QStringList list;
            for (const PictureSize& size : sizes)
                list.append(Template::address(size.place) + QStringLiteral(" %1w").arg(size.width));
            return list.join(QLatin1String(", "));
        };
        const QSize shown = picture.thumbSize;
        const double share = mShop.crop ? qMax(1.0, double(shown.width()) / shown.height())
                                        : qMin(1.0, double(shown.width()) / shown.height());
        const QString sizes = QStringLiteral("(max-width: 40rem) %1vw, %2rem")
                                  .arg(qRound(100 * share))
                                  .arg(qMax(1, qRound(cardRem * share)));
        return Template::with(
            PageParts::picture(picture, alt),
            Template::values({{"srcset", picture.sizes.size() > 1 ? set(picture.sizes) : QString()},
                              {"webp", set(picture.webp)},
                              {"sizes", isSmall ? QStringLiteral("4rem") : sizes},
                              {"lazy", isLazy}}));
    }

    QVariantMap foot() const
    {
        const auto text = [this](const char* name) {
            return mTexts.value(QLatin1String(name)).toString();
        };
        const QString currency =
            CurrencyUtils::currencySymbol(mShop.currency, QLocale::CurrencyDisplayName);
        // A month in words cannot be misread anywhere.
        const QString date =
            QLocale(mLanguage).toString(mShop.vatDate, QStringLiteral("d MMMM yyyy"));
        const QString imprint = mShop.imprint.value(mLanguage);
        const bool isFile = imprint.startsWith(QLatin1String("static/"));
        const bool isAddress = isFile || Shop::isWebAddress(imprint);
        const QString imprintAddress = isFile ? Template::address(imprint) : imprint;
        QString phone = mShop.phone; // without possible line breaks
        phone.replace(QLatin1Char(' '), QChar(QChar::Nbsp))
            .replace(QLatin1Char('-'), QChar(0x2011));
        static const QRegularExpression noDigits(QStringLiteral("[^0-9+]"));
        return Template::values(
            {{"pricesText",
              text("pricesText").arg(currency, countryName(mShop.country, mLanguage))},
             {"ratesText", text("ratesText").arg(date)},
             {"imprint", isAddress ? QString() : imprint},
             {"imprintAddress", isAddress ? imprintAddress : QString()},
             {"contact", !mShop.email.isEmpty() || !phone.isEmpty() || !mShop.address.isEmpty()},
             {"address", mShop.address.value(mLanguage)},
             {"email", mShop.email},
             {"phone", phone},
             {"phoneNumber", QString(mShop.phone).remove(noDigits)}});
    }

    /// The address for ordering the product; empty if there is none.
    QString order(const ShopProduct& product) const
    {
        QString order = product.order.isEmpty() ? mShop.order : product.order;
        const QString name = product.name.value(mLanguage);
        if (order.isEmpty() || order.contains(QLatin1String("://")))
            return order.replace(QLatin1String("{id}"), percentEncoded(product.id))
                .replace(QLatin1String("{name}"), percentEncoded(name));
        return QStringLiteral("mailto:%1?subject=%2").arg(order, percentEncoded(name));
    }

    QString price(qint64 amount) const
    {
        return CurrencyUtils::formatMoney(amount, mShop.currency, QLocale(mLanguage));
    }

    /// The product for search engines.
    QVariantMap dataOf(const ShopProduct& product, const QString& place) const
    {
        const int decimals = CurrencyUtils::minorUnits(mShop.currency);
        QStringList images;
        for (const QString& photo : product.photos)
            images.append(mShop.url + imageAddress(photo));
        const QVariantMap offer = Template::values(
            {{"@type", QStringLiteral("Offer")},
             {"price", QString::number(mShop.amount(product.price.gross), 'f', decimals)},
             {"priceCurrency", mShop.currency},
             {"url", QString(mShop.url + place + QLatin1Char('#') + product.id)}});
        return Template::values({{"@context", QStringLiteral("https://schema.org")},
                                 {"@type", QStringLiteral("Product")},
                                 {"name", product.name.value(mLanguage)},
                                 {"description", product.description.value(mLanguage)},
                                 {"image", images},
                                 {"offers", offer}});
    }

    const Shop& mShop;
    const QMap<QString, PublishedPicture>& mPictures;
    QString mLanguage;
    QVariantMap mTexts;
    QStringList mNames; ///< of the pages
    QVariantMap mValues; ///< common to all pages
};

} // namespace

QString ShopPage::fileName(const QString& language)
{
    return QStringLiteral("shop-%1.html").arg(language);
}

QVector<SiteFile> ShopPage::files(const Shop& shop, const QMap<QString, PublishedPicture>& pictures)
{
    QVector<SiteFile> files;
    QVariantList places;
    for (const QString& language : shop.languages) {
        const ShopPages pages(shop, pictures, language);
        for (int i = 0; i < pages.names().size(); ++i) {
            files.append({pages.names().at(i), pages.html(i, false)});
            places.append(Template::values({{"place", pages.names().at(i)}}));
        }
    }
    files.append({QStringLiteral("index.html"),
                  ShopPages(shop, pictures, shop.languages.first()).html(0, true)});
    const QVariantMap map = Template::values({{"url", shop.url}, {"pages", places}});
    if (!shop.url.isEmpty())
        files.append(
            {QStringLiteral("sitemap.xml"), Template::fill(QStringLiteral("sitemap.xml"), map)});
    return files;
}

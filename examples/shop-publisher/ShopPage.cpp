// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Pages.h"

#include "Languages.h"
#include "PageParts.h"
#include "Template.h"

#include <ColorUtils.h>
#include <CurrencyUtils.h>
#include <HTMLUtils.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QLocale>
#include <QRegularExpression>
#include <QUrl>

#include <cmath>

namespace {

const int productsOnAPage = 100;
/// Pictures that a reader sees before scrolling; the others are loaded when they come near.
const int firstPictures = 4;
const int cardRem = 24; ///< the width of a card on a wide screen, at most

/// A text of CSS in double quotes, which no end of a line closes, also inside of a style element.
QString cssText(const QString& text)
{
    QString escaped = text.simplified();
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('"'), QLatin1String("\\\""))
        .replace(QLatin1Char('<'), QLatin1String("\\3c "));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

/// The fonts of the system that are nearest to a family of this kind.
QString systemFonts(const QString& category)
{
    if (category == QLatin1String("serif"))
        return QStringLiteral("Georgia, \"Times New Roman\", serif");
    if (category == QLatin1String("handwriting"))
        return QStringLiteral("\"Segoe Print\", \"Bradley Hand\", cursive");
    if (category == QLatin1String("monospace"))
        return QStringLiteral("ui-monospace, Menlo, Consolas, monospace");
    return QStringLiteral("system-ui, -apple-system, \"Segoe UI\", Roboto, sans-serif");
}

/// Where the font service has the two weights, as a text of JavaScript.
QString fontAddress(const ShopFont& font)
{
    const QLatin1String slope(font.italic ? "i" : "");
    QString weights = QString::number(font.textWeight) + slope;
    if (font.boldWeight != font.textWeight)
        weights += QLatin1Char(',') + QString::number(font.boldWeight) + slope;
    const QString family = QString::fromLatin1(
        QUrl::toPercentEncoding(font.family, QByteArrayLiteral(" ")).replace(' ', '+'));
    return HTMLUtils::encodeToJavascriptText(
        QStringLiteral("https://fonts.googleapis.com/css?family=%1:%2&display=swap")
            .arg(family, weights));
}

double luminance(const QColor& color)
{
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

/// The contrast of two colours as accessibility counts it, from 1 to 21.
double contrast(const QColor& one, const QColor& other)
{
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return a > b ? a / b : b / a;
}

/// \a color, or one between it and \a end that can be read on \a background.
QColor readable(const QColor& color, const QColor& background, const QColor& end)
{
    QColor shade = color;
    for (int step = 1; step <= 20 && contrast(shade, background) < 4.6; ++step)
        shade = ColorUtils::interpolate(color, end, step / 20.0);
    return shade;
}

QLocale::Country countryOf(const QString& code)
{
    QString territory = code;
    if (territory == QLatin1String("EL")) // as the Union writes them
        territory = QStringLiteral("GR");
    else if (territory == QLatin1String("UK"))
        territory = QStringLiteral("GB");
    const QList<QLocale> locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    for (const QLocale& locale : locales) {
        if (locale.name().endsWith(QLatin1Char('_') + territory))
            return locale.country();
    }
    return QLocale::AnyCountry;
}

/// The country's name in the language of the page, as far as Qt knows it: in English, and in the
/// languages of the country itself; else in the first of these.
QString countryName(const QString& code, const QString& pageLanguage)
{
    const QLocale::Country country = countryOf(code);
    const QLocale::Language language = QLocale(pageLanguage).language();
    if (country == QLocale::AnyCountry)
        return code;
    if (language == QLocale::English)
        return QLocale::countryToString(country);
    const QLocale there(language, country);
    if (there.language() == language && there.country() == country)
        return there.nativeCountryName();
    return QLocale(QLocale::AnyLanguage, country).nativeCountryName();
}

QString pageName(const QString& language, int number)
{
    return PageParts::fileName(ShopPage::fileName(language),
                               QStringLiteral("shop-%1-%2.html").arg(language), number);
}

QString tagOf(QString language)
{
    return language.replace(QLatin1Char('_'), QLatin1Char('-'));
}

QString percentEncoded(const QString& text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

int pagesOf(const Shop& shop)
{
    return (int(shop.products.size()) + productsOnAPage - 1) / productsOnAPage;
}

/// The addresses of all pages, for search engines. They hold nothing that XML would need escaped.
QByteArray sitemap(const Shop& shop)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                     "<urlset xmlns=\"http://www.sitemaps.org/schemas/sitemap/0.9\">\n";
    for (const QString& language : shop.languages) {
        for (int number = 1; number <= pagesOf(shop); ++number)
            xml += "<url><loc>" + HTMLUtils::escaped(shop.url + pageName(language, number)).toUtf8()
                + "</loc></url>\n";
    }
    return xml + "</urlset>\n";
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
    { }

    QByteArray html(int number, bool isFrontPage) const
    {
        const QString place = pageName(mLanguage, number);
        const int first = (number - 1) * productsOnAPage;
        const int count = qMin(productsOnAPage, int(mShop.products.size()) - first);
        const QVariantMap pager = PageParts::pager(mTexts, ShopPage::fileName(mLanguage),
                                                   QStringLiteral("shop-%1-%2.html").arg(mLanguage),
                                                   number, pagesOf(mShop));
        QString title = mShop.name.value(mLanguage);
        if (number > 1)
            title += QStringLiteral(" – ") + pager.value(QStringLiteral("pageText")).toString();
        QVariantList products;
        for (int i = first; i < first + count; ++i)
            products.append(product(mShop.products.at(i), i - first < firstPictures));

        QVariantMap values = mTexts;
        const QVariantMap own =
            Template::values({{"lang", tagOf(mLanguage)},
                              {"rtl", QLocale(mLanguage).textDirection() == Qt::RightToLeft},
                              {"locale", QLocale(mLanguage).name()},
                              {"generator", QCoreApplication::applicationName()},
                              {"title", title},
                              {"name", mShop.name.value(mLanguage)},
                              {"description", mShop.description.value(mLanguage)},
                              {"products", products},
                              {"pager", pager},
                              {"data", data(first, count, place)}});
        for (const QVariantMap& more : {own, style(), links(number), foot()}) {
            for (auto it = more.begin(); it != more.end(); ++it)
                values.insert(it.key(), it.value());
        }
        if (isFrontPage && mShop.languages.size() > 1) {
            QVariantMap pages;
            for (const QString& language : mShop.languages)
                pages.insert(language, ShopPage::fileName(language));
            const QByteArray json =
                QJsonDocument::fromVariant(pages).toJson(QJsonDocument::Compact);
            values.insert(QStringLiteral("choices"),
                          QString::fromLatin1(json + ", \"" + place.toLatin1() + '"'));
        }
        return Template::fill(QStringLiteral("shop.html"), values);
    }

private:
    /// What leads to other pages, and what other programs want to know of page \a number.
    QVariantMap links(int number) const
    {
        QVariantList languages;
        QVariantList alternates{
            Template::values({{"lang", QStringLiteral("x-default")}, {"address", mShop.url}})};
        for (const QString& language : mShop.languages) {
            languages.append(Template::values({{"address", ShopPage::fileName(language)},
                                               {"lang", tagOf(language)},
                                               {"name", Languages::nativeName(language)},
                                               {"current", language == mLanguage}}));
            alternates.append(
                Template::values({{"lang", tagOf(language)},
                                  {"address", QString(mShop.url + pageName(language, number))}}));
        }
        const QString image =
            QLatin1String("images/") + mPictures.value(mShop.products.first().photos.first()).name;
        QVariantMap links =
            Template::values({{"url", mShop.url},
                              {"canonical", QString(mShop.url + pageName(mLanguage, number))},
                              {"image", QString(mShop.url + Template::address(image))},
                              {"alternates", alternates},
                              {"favicon", Template::address(mShop.favicon)}});
        if (languages.size() > 1)
            links.insert(QStringLiteral("languages"), Template::values({{"list", languages}}));
        if (!mShop.logo.isEmpty())
            links.insert(QStringLiteral("logo"),
                         Template::values({{"address", Template::address(mShop.logo)},
                                           {"width", mShop.logoSize.width()},
                                           {"height", mShop.logoSize.height()}}));
        return links;
    }

    /// What the style sheet takes from the shop. The colours of the page are those that stand
    /// there.
    QVariantMap style() const
    {
        const ShopFont& font = mShop.font;
        const QColor accent = mShop.accent.isValid() ? mShop.accent : QColor(0x9c4a27);
        const QColor accentDark = mShop.accent.isValid() ? mShop.accent : QColor(0xeaa27c);
        const QColor light = readable(accent, QColor(0xfaf7f2), Qt::black);
        const QColor dark = readable(accentDark, QColor(0x221e1a), Qt::white);
        const auto textOn = [](const QColor& color) {
            return contrast(color, Qt::white) >= contrast(color, Qt::black)
                ? QStringLiteral("#fff")
                : QStringLiteral("#000");
        };
        QVariantList files;
        for (auto it = font.files.begin(); it != font.files.end(); ++it)
            files.append(Template::values({{"family", cssText(font.family)},
                                           {"weight", it.key()},
                                           {"address", Template::address(it.value())}}));
        QString family = systemFonts(font.category);
        if (!font.family.isEmpty())
            family.prepend(cssText(font.family) + QLatin1String(", "));
        return Template::values(
            {{"accent", light.name()},
             {"onAccent", textOn(light)},
             {"accentDark", dark.name()},
             {"onAccentDark", textOn(dark)},
             {"fontFamily", family},
             {"fontFiles", files},
             {"fontAddress", font.fromService ? fontAddress(font) : QString()},
             {"textWeight", font.textWeight},
             {"boldWeight", font.boldWeight},
             {"fontStyle", font.italic ? QStringLiteral("italic") : QStringLiteral("normal")},
             {"fit", mShop.crop ? QStringLiteral("cover") : QStringLiteral("contain")}});
    }

    QVariantMap product(const ShopProduct& product, bool isFirst) const
    {
        const QString name = product.name.value(mLanguage);
        const QString rate =
            QLocale(mLanguage).toString(product.vatRate, 'g', 6) + QStringLiteral("\u00a0%");
        QVariantList more;
        for (int i = 1; i < product.photos.size(); ++i)
            more.append(picture(product.photos.at(i),
                                QStringLiteral("%1 (%2)").arg(name).arg(i + 1), true, true));
        return Template::values(
            {{"id", product.id},
             {"name", name},
             {"text", product.description.value(mLanguage)},
             {"photo", picture(product.photos.first(), name, !isFirst, false)},
             {"photos", more.isEmpty() ? QVariantMap() : Template::values({{"list", more}})},
             {"gross", price(product.price.gross)},
             {"net", price(product.price.net)},
             {"vat", price(product.price.vat)},
             {"rate", rate},
             {"order", order(product)}});
    }

    /// One picture in all its sizes. The reader's browser is told how wide it is shown, which for
    /// an upright one that is not cropped is less than the card, and chooses.
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
        QVariantMap values = PageParts::picture(picture, alt);
        values.insert(QStringLiteral("srcset"),
                      picture.sizes.size() > 1 ? set(picture.sizes) : QString());
        values.insert(QStringLiteral("webp"), set(picture.webp));
        values.insert(QStringLiteral("sizes"),
                      isSmall ? QStringLiteral("4rem")
                              : QStringLiteral("(max-width: 40rem) %1vw, %2rem")
                                    .arg(qRound(100 * share))
                                    .arg(qMax(1, qRound(cardRem * share))));
        values.insert(QStringLiteral("lazy"), isLazy);
        return values;
    }

    QVariantMap foot() const
    {
        const QLocale locale(mLanguage);
        const QString currency =
            CurrencyUtils::currencySymbol(mShop.currency, QLocale::CurrencyDisplayName);
        // Months in words are read alike everywhere.
        const QString date = locale.toString(mShop.vatDate, QStringLiteral("d MMMM yyyy"));
        QVariantMap foot = Template::values(
            {{"pricesText",
              mTexts.value(QStringLiteral("pricesText"))
                  .toString()
                  .arg(currency, countryName(mShop.country, mLanguage))},
             {"ratesText", mTexts.value(QStringLiteral("ratesText")).toString().arg(date)}});
        const QString imprint = mShop.imprint.value(mLanguage);
        if (imprint.startsWith(QLatin1String("static/")))
            foot.insert(QStringLiteral("imprintAddress"), Template::address(imprint));
        else if (Shop::isWebAddress(imprint))
            foot.insert(QStringLiteral("imprintAddress"), imprint);
        else
            foot.insert(QStringLiteral("imprint"), imprint);
        QString phone = mShop.phone; // without places where a line may break
        phone.replace(QLatin1Char(' '), QChar(QChar::Nbsp))
            .replace(QLatin1Char('-'), QChar(0x2011));
        static const QRegularExpression noDigits(QStringLiteral("[^0-9+]"));
        const QString phoneNumber = QString(mShop.phone).remove(noDigits);
        if (!mShop.email.isEmpty() || !phone.isEmpty() || !mShop.address.isEmpty())
            foot.insert(QStringLiteral("contact"),
                        Template::values({{"address", mShop.address.value(mLanguage)},
                                          {"email", mShop.email},
                                          {"phone", phone},
                                          {"phoneNumber", phoneNumber}}));
        return foot;
    }

    /// Where the product is ordered; empty where there is no such place.
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

    /// The products for search engines. No text in it can end the script element that holds it.
    QString data(int first, int count, const QString& place) const
    {
        const int decimals = CurrencyUtils::minorUnits(mShop.currency);
        QVariantList products;
        for (int i = first; i < first + count; ++i) {
            const ShopProduct& product = mShop.products.at(i);
            QStringList images;
            for (const QString& photo : product.photos)
                images.append(
                    mShop.url
                    + Template::address(QLatin1String("images/") + mPictures.value(photo).name));
            const QVariantMap offer = Template::values(
                {{"@type", QStringLiteral("Offer")},
                 {"price", QString::number(mShop.amount(product.price.gross), 'f', decimals)},
                 {"priceCurrency", mShop.currency},
                 {"url", QString(mShop.url + place + QLatin1Char('#') + product.id)}});
            products.append(Template::values({{"@context", QStringLiteral("https://schema.org")},
                                              {"@type", QStringLiteral("Product")},
                                              {"name", product.name.value(mLanguage)},
                                              {"description", product.description.value(mLanguage)},
                                              {"image", images},
                                              {"offers", offer}}));
        }
        return QString::fromUtf8(QJsonDocument::fromVariant(products)
                                     .toJson(QJsonDocument::Compact)
                                     .replace('<', "\\u003c")
                                     .replace('>', "\\u003e")
                                     .replace('&', "\\u0026"));
    }

    const Shop& mShop;
    const QMap<QString, PublishedPicture>& mPictures;
    QString mLanguage;
    QVariantMap mTexts;
};

} // namespace

QString ShopPage::fileName(const QString& language)
{
    return QStringLiteral("shop-%1.html").arg(language);
}

QVector<SiteFile> ShopPage::files(const Shop& shop, const QMap<QString, PublishedPicture>& pictures)
{
    QVector<SiteFile> files;
    for (const QString& language : shop.languages) {
        const ShopPages page(shop, pictures, language);
        for (int number = 1; number <= pagesOf(shop); ++number)
            files.append({pageName(language, number), page.html(number, false)});
    }
    files.append({QStringLiteral("index.html"),
                  ShopPages(shop, pictures, shop.languages.first()).html(1, true)});
    if (!shop.url.isEmpty())
        files.append({QStringLiteral("sitemap.xml"), sitemap(shop)});
    return files;
}

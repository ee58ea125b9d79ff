// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ShopPage.h"

#include "Html.h"
#include "PageTexts.h"

#include <CurrencyUtils.h>
#include <HTMLUtils.h>
#include <StringUtils.h>

#include <QCoreApplication>
#include <QLocale>
#include <QTextStream>
#include <QUrl>

namespace {

// Light and dark follow the reader's system. @FONT@ and the weights are those of the shop.
const char style[] = R"css(
:root {
  color-scheme: light dark;
  --page: #faf7f2; --card: #fffefb; --ink: #2a2420; --soft: #756a60; --line: #e4dcd0;
  --accent: #9c4a27; --table: #f1ece3; --shadow: 0 1px 2px #3a2a1a14, 0 10px 30px -16px #3a2a1a40;
}
@media (prefers-color-scheme: dark) {
  :root {
    --page: #181512; --card: #221e1a; --ink: #f1ebe3; --soft: #aa9e91; --line: #3a332c;
    --accent: #eaa27c; --table: #e6e0d6; --shadow: none;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0; background: var(--page); color: var(--ink);
  font-family: @FONT@; font-weight: @TEXT@; font-style: @STYLE@; font-size: 1.125rem; line-height: 1.5;
  font-variant-numeric: lining-nums;
}
a { color: inherit; }
:focus-visible { outline: 2px solid var(--accent); outline-offset: 3px; }
.shop-head, .shop-products, .shop-foot {
  max-width: 78rem; margin: 0 auto; padding-inline: clamp(1.1rem, 4vw, 3rem);
}
.shop-languages {
  display: flex; flex-wrap: wrap; justify-content: flex-end; gap: .25rem 1.25rem;
  margin: 0; padding: 1.1rem 0 0; list-style: none; font-size: 1rem;
}
.shop-languages a { color: var(--soft); text-decoration: none; padding: .2rem 0; }
.shop-languages a:hover { color: var(--accent); }
.shop-languages a[aria-current] { color: var(--ink); border-bottom: 2px solid var(--accent); }
.shop-title { padding: clamp(1.75rem, 5vw, 4rem) 0 clamp(2rem, 5vw, 3.75rem); text-align: center; }
h1, h2, .product-gross { font-weight: @BOLD@; line-height: 1.15; }
h1 { margin: 0; font-size: clamp(2.1rem, 6vw, 3.75rem); letter-spacing: -.015em; overflow-wrap: anywhere; }
.shop-title p {
  max-width: 38rem; margin: 1rem auto 0; color: var(--soft); font-size: clamp(1.1rem, 2vw, 1.3rem);
  text-wrap: balance;
}
.shop-products {
  display: grid; gap: clamp(1.25rem, 2.5vw, 2rem); list-style: none; margin-block: 0;
  grid-template-columns: repeat(auto-fill, minmax(min(100%, 18rem), 1fr));
}
.product-card {
  display: flex; flex-direction: column; overflow: hidden; scroll-margin: 1rem;
  background: var(--card); border: 1px solid var(--line); border-radius: .85rem;
  box-shadow: var(--shadow);
}
.product-card:target { border-color: var(--accent); }
.product-photo { display: block; aspect-ratio: 1; overflow: hidden; background: var(--table); }
.product-photo img {
  display: block; width: 100%; height: 100%; object-fit: cover; transform: scale(1.03);
  transition: transform .4s ease;
}
.product-photo img.drawing { object-fit: contain; padding: 8%; }
.product-photo:hover img { transform: scale(1.07); }
@media (prefers-reduced-motion: reduce) { .product-photo img { transition: none; } }
.product-text { flex: 1; padding: 1.15rem 1.35rem 1rem; }
h2 { margin: 0; font-size: 1.45rem; overflow-wrap: anywhere; text-wrap: balance; }
.product-text p { margin: .45rem 0 0; color: var(--soft); overflow-wrap: anywhere; white-space: pre-line; }
.product-price { margin: 0 1.35rem; padding: .85rem 0 1.15rem; border-top: 1px solid var(--line); }
.product-gross { margin: 0; font-size: 1.6rem; }
.product-gross, .price-part { white-space: nowrap; }
.product-gross small { font-size: 1rem; font-weight: @TEXT@; color: var(--soft); }
.price-parts { margin: .15rem 0 0; color: var(--soft); font-size: 1rem; }
.shop-foot { padding-block: clamp(2rem, 5vw, 3.5rem); color: var(--soft); font-size: 1rem; text-align: center; }
.shop-foot p { margin: .25rem 0; }
.shop-foot a:hover { color: var(--accent); }
)css";

/// A text of CSS in double quotes, also inside of a style element.
QString cssText(const QString& text)
{
    QString escaped = text;
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

QString styleFor(const ShopFont& font)
{
    QString css = QString::fromLatin1(style);
    css.replace(QLatin1String("@FONT@"),
                cssText(font.family) + QLatin1String(", ") + systemFonts(font.category));
    css.replace(QLatin1String("@TEXT@"), QString::number(font.textWeight));
    css.replace(QLatin1String("@STYLE@"), QLatin1String(font.italic ? "italic" : "normal"));
    css.replace(QLatin1String("@BOLD@"), QString::number(font.boldWeight));
    return css;
}

/// Asks the font service for the two weights once the page is there, so that it never waits for
/// them.
QString scriptFor(const ShopFont& font)
{
    const QLatin1String slope(font.italic ? "i" : "");
    QString weights = QString::number(font.textWeight) + slope;
    if (font.boldWeight != font.textWeight)
        weights += QLatin1Char(',') + QString::number(font.boldWeight) + slope;
    const QString family = QString::fromLatin1(
        QUrl::toPercentEncoding(font.family, QByteArrayLiteral(" ")).replace(' ', '+'));
    const QString url = QStringLiteral("https://fonts.googleapis.com/css?family=%1:%2&display=swap")
                            .arg(family, weights);
    return QStringLiteral("addEventListener('load', function () {\n"
                          "  var font = document.createElement('link');\n"
                          "  font.rel = 'stylesheet';\n"
                          "  font.href = '%1';\n"
                          "  document.head.appendChild(font);\n"
                          "});\n")
        .arg(HTMLUtils::encodeToJavascriptText(url));
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

/// A rate as people write it: "5.5 %", with the point of the prices.
QString percent(double rate)
{
    return QString::number(rate) + QStringLiteral("\u00a0%");
}

/// A price whose symbol stays with its number.
QString price(double value, const QString& currency)
{
    return CurrencyUtils::formatPrice(value, currency)
        .trimmed()
        .replace(QLatin1Char(' '), QChar(QChar::Nbsp));
}

QString className(const char* name)
{
    return HTMLUtils::formatCompliantcssClassName(QLatin1String(name));
}

} // namespace

QString ShopPage::fileName(const QString& language)
{
    return QStringLiteral("shop-%1.html").arg(language);
}

QString ShopPage::languageName(const QString& language)
{
    const QLocale locale(language);
    // Qt names the English of one country.
    return locale.language() == QLocale::English
        ? QStringLiteral("English")
        : StringUtils::capitalize(locale.nativeLanguageName());
}

QByteArray ShopPage::html() const
{
    const PageTexts texts(mLanguage);
    const QString name = mShop.name.value(mLanguage);
    const QString description = mShop.description.value(mLanguage);
    QString langTag = mLanguage;
    langTag.replace(QLatin1Char('_'), QLatin1Char('-'));

    QByteArray page;
    QTextStream html(&page, QIODevice::WriteOnly);
    html.setCodec("UTF-8");
    html << "<!DOCTYPE html>\n<html lang=\"" << langTag << "\">\n<head>\n<meta charset=\"utf-8\">\n"
         << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         << HTMLUtils::formatHtmlMetaName(QStringLiteral("generator"),
                                          QCoreApplication::applicationName())
         << '\n';
    if (!description.isEmpty())
        html << HTMLUtils::formatHtmlMetaName(QStringLiteral("description"), description) << '\n';
    html << "<title>" << HTMLUtils::escaped(name) << "</title>\n<style>" << styleFor(mShop.font)
         << "</style>\n<script>\n"
         << scriptFor(mShop.font) << "</script>\n</head>\n<body>\n"
         << "<header class=\"" << className("shop_head") << "\">\n";
    if (mShop.languages.size() > 1) {
        html << "<nav><ul class=\"" << className("shop_languages") << "\">\n";
        for (const QString& language : mShop.languages)
            html << "<li><a href=\"" << fileName(language) << '"'
                 << (language == mLanguage ? " aria-current=\"page\"" : "") << '>'
                 << HTMLUtils::escaped(languageName(language)) << "</a></li>\n";
        html << "</ul></nav>\n";
    }
    html << "<div class=\"" << className("shop_title") << "\">\n<h1>" << HTMLUtils::escaped(name)
         << "</h1>\n";
    if (!description.isEmpty())
        html << "<p>" << HTMLUtils::escaped(description) << "</p>\n";
    html << "</div>\n</header>\n<main>\n<ul class=\"" << className("shop_products") << "\">\n";

    for (const ShopProduct& product : mShop.products) {
        const PublishedPicture picture = mPictures.value(product.photo);
        const bool drawing = picture.name.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive);
        const QString productName = HTMLUtils::escaped(product.name.value(mLanguage));
        const QString productText = product.description.value(mLanguage);
        const QString vat = texts.text(QT_TRANSLATE_NOOP("PageTexts", "VAT"));
        html << "<li class=\"" << className("product_card") << "\" id=\"" << product.id << "\">\n"
             << "<a class=\"" << className("product_photo") << "\" href=\""
             << Html::address(QLatin1String("images/") + picture.name) << "\"><img"
             << (drawing ? " class=\"drawing\"" : "") << " src=\""
             << Html::address(QLatin1String("thumbs/") + picture.name) << "\" alt=\"" << productName
             << "\" width=\"" << picture.thumbSize.width() << "\" height=\""
             << picture.thumbSize.height() << "\"></a>\n"
             << "<div class=\"" << className("product_text") << "\">\n<h2>" << productName
             << "</h2>\n";
        if (!productText.isEmpty()) {
            QStringList lines = productText.split(QLatin1Char('\n'));
            for (QString& line : lines)
                line = HTMLUtils::escaped(line);
            html << "<p>" << lines.join(QLatin1Char('\n')) << "</p>\n";
        }
        html << "</div>\n<div class=\"" << className("product_price") << "\">\n<p class=\""
             << className("product_gross") << "\">"
             << HTMLUtils::escaped(price(product.gross, mShop.currency)) << " <small>"
             << HTMLUtils::escaped(texts.text(QT_TRANSLATE_NOOP("PageTexts", "incl. VAT")))
             << "</small></p>\n<p class=\"" << className("price_parts") << "\"><span class=\""
             << className("price_part") << "\">"
             << HTMLUtils::escaped(price(product.net, mShop.currency) + QLatin1Char(' ')
                                   + texts.text(QT_TRANSLATE_NOOP("PageTexts", "net")))
             << "</span> + <span class=\"" << className("price_part") << "\">"
             << HTMLUtils::escaped(price(product.vat, mShop.currency) + QLatin1Char(' ') + vat
                                   + QStringLiteral(" (%1)").arg(percent(product.vatRate)))
             << "</span></p>\n</div>\n</li>\n";
    }

    const QString currencyName =
        CurrencyUtils::currencySymbol(mShop.currency, QLocale::CurrencyDisplayName);
    html << "</ul>\n</main>\n<footer class=\"" << className("shop_foot") << "\">\n<p>"
         << HTMLUtils::escaped(
                texts.text(QT_TRANSLATE_NOOP("PageTexts", "Prices in %1, with the VAT of %2."))
                    .arg(currencyName, countryName(mShop.country, mLanguage)))
         << "</p>\n<p><a href=\"index.html\">"
         << HTMLUtils::escaped(texts.text(QT_TRANSLATE_NOOP("PageTexts", "All photographs")))
         << "</a></p>\n</footer>\n</body>\n</html>\n";
    html.flush();
    return page;
}

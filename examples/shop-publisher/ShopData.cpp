// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Pages.h"

#include "Template.h"

#include <CurrencyUtils.h>
#include <HTMLUtils.h>
#include <JsCodeHelpers.h>
#include <PhpCodeHelpers.h>
#include <TextStreamUTF8.h>

#include <QBuffer>
#include <QVariant>

namespace {

const char note[] = "// Written by shop-publisher from shop.json: what is changed here is lost.\n";

/// All six digits before the point and both behind it. A byte array passes through the formatters
/// as code.
QByteArray priceCode(double price, const QString& currency)
{
    return CurrencyUtils::formatPriceWithoutSymbol(price, currency).toLatin1();
}

/// With every quote and backslash as an escape sequence, which the formatter leaves alone.
QString jsText(const QString& text)
{
    return HTMLUtils::encodeToJavascriptText(text);
}

/// A literal in single quotes, in which PHP knows only these two escape sequences. A byte array
/// passes through the formatters as code, up to its first NUL: for any text the literal ends with
/// its quote.
QByteArray phpCode(const QString& text)
{
    QByteArray code = text.toUtf8();
    code.replace('\0', QString(QChar(QChar::ReplacementCharacter)).toUtf8());
    code.replace('\\', "\\\\").replace('\'', "\\'");
    return '\'' + code + '\'';
}

/// The texts as literals of a language, made by jsText() or phpCode().
template <typename Literal>
QVariantMap literals(const LocalText& texts, Literal literal)
{
    QVariantMap map;
    for (auto it = texts.begin(); it != texts.end(); ++it)
        map.insert(it.key(), literal(it.value()));
    return map;
}

QByteArray productsJs(const Shop& shop, const QMap<QString, PublishedPicture>& pictures)
{
    const auto address = [&pictures](const char* folder, const QString& photo) {
        return jsText(Template::address(QLatin1String(folder) + pictures.value(photo).name));
    };
    QVariantList products;
    for (const ShopProduct& product : shop.products) {
        QStringList images;
        for (const QString& photo : product.photos)
            images.append(address("images/", photo));
        const double gross = shop.amount(product.price.gross);
        products.append(Template::values(
            {{"id", product.id},
             {"name", literals(product.name, jsText)},
             {"description", literals(product.description, jsText)},
             {"image", images.first()},
             {"images", images},
             {"thumb", address("thumbs/", product.photos.first())},
             {"taxCategory", product.taxCategory},
             {"vatRate", product.vatRate},
             {"net", priceCode(shop.amount(product.price.net), shop.currency)},
             {"vat", priceCode(shop.amount(product.price.vat), shop.currency)},
             {"gross", priceCode(gross, shop.currency)},
             {"price", jsText(CurrencyUtils::formatPrice(gross, shop.currency))}}));
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TextStreamUTF8 stream(&buffer);
    stream << QLatin1String(note) << QStringLiteral("const products = ");
    JsCodeHelpers::formatJavascriptArray(&stream, products);
    stream << QStringLiteral(";\n");
    stream.flush();
    return buffer.data();
}

QByteArray configPhp(const Shop& shop)
{
    QVariantMap rates;
    for (auto it = shop.vatRates.begin(); it != shop.vatRates.end(); ++it)
        rates.insert(QString::number(it.key()), it.value());
    QList<int> weights{shop.font.textWeight};
    if (shop.font.boldWeight != shop.font.textWeight)
        weights.append(shop.font.boldWeight);

    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TextStreamUTF8 stream(&buffer);
    const auto constant = [&stream](const char* name, const QVariant& value,
                                    const QString& comment = QString()) {
        PhpCodeHelpers::writeConstant(&stream, QLatin1String(name), value, comment);
    };
    const auto symbol = [&shop](QLocale::CurrencySymbolFormat format) {
        return CurrencyUtils::currencySymbol(shop.currency, format);
    };
    stream << QStringLiteral("<?php\n") << QLatin1String(note);
    PhpCodeHelpers::writePhpMap(&stream, QStringLiteral("SHOP_NAME"), literals(shop.name, phpCode));
    PhpCodeHelpers::writePhpMap(&stream, QStringLiteral("SHOP_DESCRIPTION"),
                                literals(shop.description, phpCode));
    PhpCodeHelpers::writePhpArray(&stream, QStringLiteral("SHOP_LANGUAGES"), shop.languages);
    constant("SHOP_COUNTRY", shop.country);
    constant("SHOP_CURRENCY", shop.currency, symbol(QLocale::CurrencyDisplayName));
    constant("SHOP_CURRENCY_SYMBOL", phpCode(symbol(QLocale::CurrencySymbol)));
    constant("SHOP_CURRENCY_NUMBER", CurrencyUtils::currencyNumericCode(shop.currency),
             QStringLiteral("ISO 4217; 0 where it is not known"));
    PhpCodeHelpers::writePhpMap(&stream, QStringLiteral("SHOP_VAT_RATES"), rates);
    constant("SHOP_FONT", phpCode(shop.font.family));
    PhpCodeHelpers::writePhpArray(&stream, QStringLiteral("SHOP_FONT_WEIGHTS"), weights);
    stream.flush();
    return buffer.data();
}

} // namespace

QVector<SiteFile> ShopData::files(const Shop& shop, const QMap<QString, PublishedPicture>& pictures)
{
    return {{QStringLiteral("data/products.js"), productsJs(shop, pictures)},
            {QStringLiteral("config/config.php"), configPhp(shop)}};
}

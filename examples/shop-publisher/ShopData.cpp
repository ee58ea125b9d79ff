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

QVariantMap jsTexts(const LocalText& texts)
{
    QVariantMap map;
    for (auto it = texts.begin(); it != texts.end(); ++it)
        map.insert(it.key(), jsText(it.value()));
    return map;
}

/// A literal in single quotes, in which PHP knows no other escapes than these two. A byte array
/// passes through the formatters as code, up to its first NUL: whatever has come here, the literal
/// ends with its quote.
QByteArray phpCode(const QString& text)
{
    QByteArray code = text.toUtf8();
    code.replace('\0', QString(QChar(QChar::ReplacementCharacter)).toUtf8());
    code.replace('\\', "\\\\").replace('\'', "\\'");
    return '\'' + code + '\'';
}

QVariantMap phpTexts(const LocalText& texts)
{
    QVariantMap map;
    for (auto it = texts.begin(); it != texts.end(); ++it)
        map.insert(it.key(), phpCode(it.value()));
    return map;
}

QByteArray productsJs(const Shop& shop, const QMap<QString, PublishedPicture>& pictures)
{
    QVariantList products;
    for (const ShopProduct& product : shop.products) {
        const PublishedPicture picture = pictures.value(product.photos.first());
        QStringList images;
        for (const QString& photo : product.photos)
            images.append(
                jsText(Template::address(QLatin1String("images/") + pictures.value(photo).name)));
        const double gross = shop.amount(product.price.gross);
        products.append(QVariantMap{
            {QStringLiteral("id"), product.id},
            {QStringLiteral("name"), jsTexts(product.name)},
            {QStringLiteral("description"), jsTexts(product.description)},
            {QStringLiteral("image"), images.first()},
            {QStringLiteral("images"), images},
            {QStringLiteral("thumb"),
             jsText(Template::address(QLatin1String("thumbs/") + picture.name))},
            {QStringLiteral("taxCategory"), product.taxCategory},
            {QStringLiteral("vatRate"), product.vatRate},
            {QStringLiteral("net"), priceCode(shop.amount(product.price.net), shop.currency)},
            {QStringLiteral("vat"), priceCode(shop.amount(product.price.vat), shop.currency)},
            {QStringLiteral("gross"), priceCode(gross, shop.currency)},
            {QStringLiteral("price"), jsText(CurrencyUtils::formatPrice(gross, shop.currency))},
        });
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
    stream << QStringLiteral("<?php\n") << QLatin1String(note);
    PhpCodeHelpers::writePhpMap(&stream, QStringLiteral("SHOP_NAME"), phpTexts(shop.name));
    PhpCodeHelpers::writePhpMap(&stream, QStringLiteral("SHOP_DESCRIPTION"),
                                phpTexts(shop.description));
    PhpCodeHelpers::writePhpArray(&stream, QStringLiteral("SHOP_LANGUAGES"), shop.languages);
    PhpCodeHelpers::writeConstant(&stream, QStringLiteral("SHOP_COUNTRY"), shop.country);
    PhpCodeHelpers::writeConstant(
        &stream, QStringLiteral("SHOP_CURRENCY"), shop.currency,
        CurrencyUtils::currencySymbol(shop.currency, QLocale::CurrencyDisplayName));
    PhpCodeHelpers::writeConstant(
        &stream, QStringLiteral("SHOP_CURRENCY_SYMBOL"),
        phpCode(CurrencyUtils::currencySymbol(shop.currency, QLocale::CurrencySymbol)));
    PhpCodeHelpers::writeConstant(&stream, QStringLiteral("SHOP_CURRENCY_NUMBER"),
                                  CurrencyUtils::currencyNumericCode(shop.currency),
                                  QStringLiteral("ISO 4217; 0 where it is not known"));
    PhpCodeHelpers::writePhpMap(&stream, QStringLiteral("SHOP_VAT_RATES"), rates);
    PhpCodeHelpers::writeConstant(&stream, QStringLiteral("SHOP_FONT"), phpCode(shop.font.family));
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

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PublisherShop: a valid shop.json that tests of shop-publisher change in one place, and a browser
// that runs scripts in the pages.

#ifndef PUBLISHERSHOP_H
#define PUBLISHERSHOP_H

#include "Sandbox.h"
#include "ShopPublisherRun.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

inline QJsonObject localText(const char* english, const char* french)
{
    return {{text("en"), text(english)}, {text("fr"), text(french)}};
}

inline QJsonObject product(const char* english, const char* french, double price, int category,
                           const char* photo)
{
    return {{text("name"), localText(english, french)},
            {text("netPrice"), price},
            {text("taxCategory"), category},
            {text("photo"), text(photo)},
            {text("description"), localText("A fine thing.", "Une belle chose.")}};
}

/// A valid shop with two products.
inline QJsonObject goodShop()
{
    return {{text("name"), text("Chez Zoë")},
            {text("languages"), QJsonArray{text("en"), text("fr")}},
            {text("currency"), text("EUR")},
            {text("country"), text("FR")},
            {text("font"), text("Open Sans")},
            {text("products"),
             QJsonArray{product("Blue bowl", "Bol bleu", 24.5, 0, "bowl.jpg"),
                        product("Pear", "Poire", 3.79, 1, "fruit/pear.jpg")}}};
}

/// The shop with one value of a product replaced, or removed if it is undefined.
inline QJsonObject withProduct(int index, const char* key, const QJsonValue& value)
{
    QJsonObject shop = goodShop();
    QJsonArray products = shop.value(text("products")).toArray();
    QJsonObject changed = products.at(index).toObject();
    changed.insert(text(key), value);
    products.replace(index, changed);
    shop.insert(text("products"), products);
    return shop;
}

inline QJsonObject with(const char* key, const QJsonValue& value)
{
    QJsonObject shop = goodShop();
    shop.insert(text(key), value);
    return shop;
}

inline QByteArray json(const QJsonObject& object)
{
    return QJsonDocument(object).toJson();
}

/// Evaluates \a expression in a page of the site in headless Chromium, after all pictures are
/// loaded, and returns its value, or what the promise resolves to, as JSON. The script \a library
/// is loaded first; \a options are passed to the browser.
inline QJsonObject askBrowser(const QString& page, const QByteArray& expression, int width,
                              const QByteArray& library = QByteArray(),
                              const QStringList& options = QStringList())
{
    const QByteArray script = "<script>" + library
        + "</script><script>addEventListener('load', () => Promise.resolve(" + expression
        + ").then(value => { const report = document.createElement('pre');"
          "report.textContent = 'BEGIN' + encodeURIComponent(JSON.stringify(value)) + 'END';"
          "document.body.append(report); }));</script></body>";
    QByteArray html = readFile(page);
    html.replace("loading=\"lazy\"", "").replace("</body>", script);
    const QString copy = QFileInfo(page).path() + text("/check.html");
    writeFile(copy, html);
    const QByteArray dom =
        runChromium(options
                    + QStringList{text("--window-size=%1,900").arg(width), text("--dump-dom"),
                                  QUrl::fromLocalFile(copy).toString(QUrl::FullyEncoded)});
    QFile::remove(copy);
    const int begin = int(dom.indexOf("<pre>BEGIN") + 10);
    const int end = int(dom.indexOf("END</pre>", begin));
    return QJsonDocument::fromJson(QByteArray::fromPercentEncoding(dom.mid(begin, end - begin)))
        .object();
}

#endif // PUBLISHERSHOP_H

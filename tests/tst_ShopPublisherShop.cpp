// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The example program shop-publisher with a shop.json: the pages in a browser, the data in node,
// the settings in php, and the messages about errors in the file.

#include "Columns.h"
#include "PublisherShop.h"
#include "PublisherTest.h"
#include "ScriptRunner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <functional>

namespace {

const QString shopFiles[] = {text("config/config.php"), text("data/products.js"),
                             text("index.html"), text("shop-en.html"), text("shop-fr.html")};

/// The files of a site without the additional sizes of pictures, which depend on their bytes.
QStringList mainFilesIn(const QString& site)
{
    QStringList files = filesIn(site);
    files.erase(std::remove_if(files.begin(), files.end(),
                               [](const QString& file) { return file.startsWith(text("sizes/")); }),
                files.end());
    return files;
}

const char cardsExpression[] = R"js({
  lang: document.documentElement.lang,
  title: document.title,
  heading: document.querySelector('h1').textContent,
  font: getComputedStyle(document.body).fontFamily,
  weights: [getComputedStyle(document.body).fontWeight,
            getComputedStyle(document.querySelector('h2')).fontWeight],
  fits: document.documentElement.scrollWidth <= innerWidth,
  ids: Array.from(document.querySelectorAll('[id]'), e => e.id),
  fontAddress: (document.querySelector('link[rel=stylesheet]') || {}).href,
  foot: document.querySelector('.shop-foot > p').textContent,
  cards: Array.from(document.querySelectorAll('.product-card'), card => ({
    name: card.querySelector('h2').textContent,
    text: (card.querySelector('.product-text p') || {textContent: ''}).textContent,
    price: card.querySelector('.product-gross').textContent.replace(/\s+/g, ' '),
    parts: card.querySelector('.price-parts').textContent.replace(/\s+/g, ' '),
    loaded: card.querySelector('img').naturalWidth > 0,
    alt: card.querySelector('img').alt
  }))
})js";

QStringList strings(const QJsonArray& array, const char* key)
{
    QStringList list;
    for (const QJsonValue& value : array)
        list.append(value.toObject().value(text(key)).toString());
    return list;
}

} // namespace

class tst_ShopPublisherShop : public PublisherTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void goodShopIsWritten();
    void projectWithoutShop();
    void wrong_data();
    void wrong();
    void wrongFiles_data();
    void wrongFiles();
    void everythingWrongAtOnce();
    void wayOfAnError();
    void wrongInFrench();
    void photoThatFails();
    void placesThatCannotBeWritten_data();
    void placesThatCannotBeWritten();
    void fullDisk();
    void stoppedRun();
    void secondRun();
    void acceptedSpellings();
    void prices_data();
    void prices();
    void fonts_data();
    void fonts();
    void idsAreDistinct();
    void unknownPageLanguage();
    void nodeReadsTheProducts();
    void phpReadsTheSettings();
    void hostileTextsInTheBrowser();
    void sampleShopInTheBrowser_data();
    void sampleShopInTheBrowser();

private:
    void writeShop(const QByteArray& content) const
    {
        writeFile(mProject + text("/shop.json"), content);
    }
    using PublisherTest::publish;
    Outcome publish(const QJsonObject& shop) const
    {
        writeShop(json(shop));
        return publish();
    }
    /// The value of a JavaScript expression after products.js has run.
    QJsonValue inNode(const QByteArray& expression) const
    {
        return valueOfJson(runScript(text("node"),
                                     siteFile(text("data/products.js"))
                                         + "\nconsole.log(JSON.stringify(" + expression + "));")
                               .output);
    }
    /// The value of a PHP expression after config.php has run.
    QJsonValue inPhp(const QByteArray& expression) const
    {
        return valueOfJson(runScript(text("php"),
                                     siteFile(text("config/config.php")) + "\necho json_encode("
                                         + expression + ");")
                               .output);
    }
};

void tst_ShopPublisherShop::init()
{
    PublisherTest::init();
    const QByteArray picture = encoded(corners(40, 30), "jpg");
    for (const char* name : {"bowl.jpg", "fruit/pear.jpg"})
        writeFile(mProject + text("/photos/") + text(name), picture);
}

void tst_ShopPublisherShop::goodShopIsWritten()
{
    const Outcome outcome = publish(goodShop());
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, allImported);
    QVERIFY2(outcome.out.endsWith(text("2 of 2 photographs imported: %1/index.html\n"
                                       "Shop: %1/shop-en.html\nShop: %1/shop-fr.html\n")
                                      .arg(mSite)),
             qPrintable(outcome.out));
    QCOMPARE(
        mainFilesIn(mSite),
        QStringList({text("config/config.php"), text("data/products.js"), text("images/bowl.jpg"),
                     text("images/fruit/pear.jpg"), text("index.html"), text("photographs.html"),
                     text("shop-en.html"), text("shop-fr.html"), text("thumbs/bowl.jpg"),
                     text("thumbs/fruit/pear.jpg")}));
    // The site starts with the shop in its first language, which links to the others by their
    // native names, and to the contact sheet.
    const QString index = QString::fromUtf8(siteFile(text("index.html")));
    QVERIFY(index.contains(text("<html lang=\"en\">")));
    QVERIFY(index.contains(text("<h2>Blue bowl</h2>")));
    QVERIFY(index.contains(
        text("<a href=\"shop-en.html\" lang=\"en\" hreflang=\"en\" aria-current=\"page\">"
             "English</a>")));
    QVERIFY(
        index.contains(text("<a href=\"shop-fr.html\" lang=\"fr\" hreflang=\"fr\">Français</a>")));
    const QByteArray sheet = siteFile(text("photographs.html"));
    QVERIFY(sheet.contains("<a href=\"index.html\">To the shop</a>"));
    QVERIFY(sheet.contains("images/fruit/pear.jpg"));

    const QString french = QString::fromUtf8(siteFile(text("shop-fr.html")));
    QVERIFY(french.startsWith(text("<!DOCTYPE html>\n<html lang=\"fr\">")));
    QVERIFY(french.contains(text("<title>Chez Zoë</title>")));
    QVERIFY(french.contains(text("<h2>Bol bleu</h2>")));
    QVERIFY(french.contains(text("<li class=\"product-card\" id=\"product_pear\">")));
    QVERIFY(french.contains(text("href=\"images/fruit/pear.jpg\"")));
    QVERIFY(!french.contains(text("Blue bowl")));
    QVERIFY(!french.contains(root()));
}

void tst_ShopPublisherShop::projectWithoutShop()
{
    QCOMPARE(publish().exitCode, allImported);
    QVERIFY(!QFileInfo::exists(mSite + text("/data")));
    QVERIFY(!QFileInfo::exists(mSite + text("/config")));
    QVERIFY(!siteFile(text("index.html")).contains("href=\"shop-"));
}

void tst_ShopPublisherShop::wrong_data()
{
    const auto row =
        columns<QJsonObject, QString>("shop", "message"); // the whole line, without its indentation
    const QJsonValue none(QJsonValue::Undefined);
    const QString bowl = text("shop.json, product 1 (Blue bowl), ");
    const QString pear = text("shop.json, product 2 (Pear), ");

    for (const char* key : {"name", "languages", "currency", "country", "products"})
        row(QByteArray("missing ") + key, with(key, none),
            text("shop.json, %1: is missing").arg(text(key)));
    for (const char* key : {"netPrice", "taxCategory", "photo", "description"})
        row(QByteArray("product: missing ") + key, withProduct(1, key, none),
            pear + text(key) + text(": is missing"));
    row("product: missing name", withProduct(1, "name", none),
        "shop.json, product 2, name: is missing");

    row("price is a text", withProduct(0, "netPrice", text("24.50")),
        bowl + text("netPrice: is no number, such as 12.50"));
    row("price is true", withProduct(0, "netPrice", true),
        bowl + text("netPrice: is no number, such as 12.50"));
    row("price is null", withProduct(0, "netPrice", QJsonValue()),
        bowl + text("netPrice: is no number, such as 12.50"));
    row("price below zero", withProduct(0, "netPrice", -1), bowl + text("netPrice: is below zero"));
    row("price without end", withProduct(0, "netPrice", 1e300),
        bowl + text("netPrice: is too high for a price"));

    const QString noCategory = text("taxCategory: is no tax category: a number from 0 to 4");
    row("category above 4", withProduct(1, "taxCategory", 5), pear + noCategory);
    row("category below 0", withProduct(1, "taxCategory", -1), pear + noCategory);
    row("half a category", withProduct(1, "taxCategory", 1.5), pear + noCategory);
    row("category is a text", withProduct(1, "taxCategory", text("1")), pear + noCategory);
    row("rate that the country does not have", withProduct(1, "taxCategory", 4),
        pear + text("taxCategory: FR has no rate of the category 4"));

    row("no such photo", withProduct(0, "photo", text("cup.jpg")),
        bowl + text("photo: there is no photograph \"cup.jpg\""));
    row("photo outside the project", withProduct(0, "photo", text("../shop.json")),
        bowl + text("photo: there is no photograph \"../shop.json\""));
    row("photo by its path", withProduct(0, "photo", text("photos/bowl.jpg")),
        bowl + text("photo: there is no photograph \"photos/bowl.jpg\""));
    row("photo is a number", withProduct(0, "photo", 7), bowl + text("photo: is no text"));
    row("photo is empty", withProduct(0, "photo", text(" ")), bowl + text("photo: is empty"));

    row("unknown currency", with("currency", text("XYZ")),
        "shop.json, currency: \"XYZ\" is no code of a currency, such as \"EUR\"");
    row("currency in small letters", with("currency", text("eur")),
        "shop.json, currency: \"eur\" is no code of a currency, such as \"EUR\"");
    row("unknown country", with("country", text("CH")),
        "shop.json, country: \"CH\" is no country of the European Union whose tax rates "
        "are known, such as \"FR\"");
    row("country by its name", with("country", text("France")),
        "shop.json, country: \"FRANCE\" is no country of the European Union whose tax "
        "rates are known, such as \"FR\"");
    row("unknown font", with("font", text("Comic Sans MS")),
        "shop.json, font: \"Comic Sans MS\" is no family of the catalogue of web fonts");
    row("font is a list", with("font", QJsonArray{text("Lora")}), "shop.json, font: is no text");

    row("no language", with("languages", QJsonArray()),
        "shop.json, languages: is no list of languages");
    row("language is no list", with("languages", text("en")),
        "shop.json, languages: is no list of languages");
    row("unknown language", with("languages", QJsonArray{text("en"), text("fr"), text("xx")}),
        "shop.json, languages: \"xx\" is no code of a language, such as \"fr\" or "
        "\"pt_BR\"");
    row("language that would be a path",
        with("languages", QJsonArray{text("en"), text("fr"), text("../en")}),
        "shop.json, languages: \"../en\" is no code of a language, such as \"fr\" or "
        "\"pt_BR\"");
    row("language twice", with("languages", QJsonArray{text("en"), text("fr"), text("en")}),
        "shop.json, languages: \"en\" stands there twice");

    row("empty name", with("name", text("  ")), "shop.json, name: is empty");
    row("name is a number", with("name", 5), "shop.json, name: is no text");
    row("text without a translation",
        withProduct(0, "description", QJsonObject{{text("en"), text("A")}}),
        bowl + text("description: has no text in \"fr\""));
    row("translation that is no text",
        withProduct(0, "description", QJsonObject{{text("en"), text("A")}, {text("fr"), 3}}),
        bowl + text("description: is no text in \"fr\""));
    row("no products", with("products", QJsonArray()),
        "shop.json, products: is no list of products");
    row("products by name", with("products", QJsonObject{{text("a"), 1}}),
        "shop.json, products: is no list of products");
    row("product that is no object",
        with("products", QJsonArray{goodShop().value(text("products")).toArray().at(0), 3}),
        "shop.json, product 2: is no object");
}

void tst_ShopPublisherShop::wrong()
{
    QFETCH(QJsonObject, shop);
    QFETCH(QString, message);
    // The shop of an earlier run is kept, byte for byte.
    QCOMPARE(publish(goodShop()).exitCode, allImported);
    QMap<QString, QByteArray> before;
    for (const QString& place : shopFiles)
        before.insert(place, siteFile(place));

    const Outcome outcome = publish(shop);
    QCOMPARE(outcome.exitCode, someFailed);
    QCOMPARE(outcome.err, text("1 failure:\n  ") + message + QLatin1Char('\n'));
    QVERIFY(outcome.out.endsWith(text("2 of 2 photographs imported: %1/index.html\n").arg(mSite)));
    for (const QString& place : shopFiles)
        QCOMPARE(siteFile(place), before.value(place));
    // Nothing new either.
    QCOMPARE(mainFilesIn(mSite).size(), 10);
}

void tst_ShopPublisherShop::wrongFiles_data()
{
    const auto row = columns<QByteArray, QString>("content", "message");
    row("empty", QByteArray(), "shop.json: is no valid JSON (line 1: ");
    row("no JSON", "<shop/>", "shop.json: is no valid JSON (line 1: ");
    row("cut", "{\n  \"name\": \"A\",\n  \"lang", "shop.json: is no valid JSON (line 3: ");
    row("comma too much", "{\n  \"name\": \"A\",\n}\n", "shop.json: is no valid JSON (line 3: ");
    row("Latin-1", QByteArray("{\"name\": \"caf\xe9\"}"), "shop.json: is no valid JSON (line 1: ");
    row("a list", "[]", "shop.json: holds no object");
}

void tst_ShopPublisherShop::wrongFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    writeShop(content);
    const Outcome outcome = publish();
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.startsWith(text("1 failure:\n  ") + message), qPrintable(outcome.err));
    QCOMPARE(filesIn(mSite).size(), 5);
    QVERIFY(siteFile(text("index.html")).contains("images/bowl.jpg"));
}

void tst_ShopPublisherShop::everythingWrongAtOnce()
{
    // All errors of the file are reported in one run.
    const QJsonObject shop{
        {text("languages"), QJsonArray{text("en")}},
        {text("currency"), text("XYZ")},
        {text("country"), text("US")},
        {text("font"), text("No Font")},
        {text("products"),
         QJsonArray{QJsonObject{{text("name"), text("Cup")}, {text("netPrice"), text("1")}}}}};
    const Outcome outcome = publish(shop);
    QCOMPARE(outcome.exitCode, someFailed);
    const QStringList expected{text("8 failures:"),
                               text("  shop.json, name: is missing"),
                               text("  shop.json, currency: "),
                               text("  shop.json, country: "),
                               text("  shop.json, font: "),
                               text("  shop.json, product 1 (Cup), description: is missing"),
                               text("  shop.json, product 1 (Cup), photo: is missing"),
                               text("  shop.json, product 1 (Cup), taxCategory: is missing"),
                               text("  shop.json, product 1 (Cup), netPrice: is no number")};
    const QStringList lines = nonEmptyParts(outcome.err, QLatin1Char('\n'));
    QCOMPARE(lines.size(), expected.size());
    for (int i = 0; i < lines.size(); ++i)
        QVERIFY2(lines.at(i).startsWith(expected.at(i)), qPrintable(lines.at(i)));
}

void tst_ShopPublisherShop::wayOfAnError()
{
    writeShop(json(withProduct(0, "netPrice", text("1"))));
    const Outcome outcome = publish({text("--verbose")});
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.contains(text("      ShopValue:Unsuitable (#3) (shop.json, product 1 "
                                       "(Blue bowl), netPrice: is no number")),
             qPrintable(outcome.err));
    // Raised by the value in the product, the product in the file, the file in the publication.
    QCOMPARE(outcome.err.count(text("ShopFile.cpp:")), 3);
    QCOMPARE(outcome.err.count(text("Publication.cpp:")), 1);
}

void tst_ShopPublisherShop::wrongInFrench()
{
    writeShop(json(withProduct(0, "netPrice", text("1"))));
    const Outcome outcome = publish({text("--language"), text("fr")});
    QCOMPARE(outcome.err,
             text("1 échec :\n  shop.json, produit 1 (Blue bowl), netPrice: n’est pas un nombre, "
                  "comme 12.50\n"));
}

void tst_ShopPublisherShop::photoThatFails()
{
    writeFile(mProject + text("/photos/bowl.jpg"), "broken");
    const Outcome outcome = publish(goodShop());
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.startsWith(text("2 failures:\n  bowl.jpg: cannot be decoded (")),
             qPrintable(outcome.err));
    QVERIFY2(outcome.err.endsWith(
                 text("  shop.json: the shop is not written, because the photograph \"bowl.jpg\" "
                      "of one of its products could not be imported\n")),
             qPrintable(outcome.err));
    QCOMPARE(mainFilesIn(mSite),
             QStringList({text("images/fruit/pear.jpg"), text("index.html"),
                          text("thumbs/fruit/pear.jpg")}));
}

void tst_ShopPublisherShop::placesThatCannotBeWritten_data()
{
    // file: exists in place of a folder, or
    // folder: exists in place of a file
    const auto row = columns<QString, QString, QString>("file", "folder", "message");
    row("data is a file", "data", QString(),
        "data/products.js: cannot be written: the folder data");
    row("config is a file", "config", QString(),
        "config/config.php: cannot be written: the folder");
    row("a page is a folder", QString(), "shop-fr.html",
        "shop-fr.html: cannot be written to shop-fr.html (");
}

void tst_ShopPublisherShop::placesThatCannotBeWritten()
{
    QFETCH(QString, file);
    QFETCH(QString, folder);
    QFETCH(QString, message);
    writeFile(mSite + QLatin1Char('/') + recordName, "{}"); // a site of the program
    if (!file.isEmpty())
        writeFile(mSite + QLatin1Char('/') + file, "in the way");
    if (!folder.isEmpty())
        QVERIFY(QDir().mkpath(mSite + QLatin1Char('/') + folder));
    const Outcome outcome = publish(goodShop());
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.startsWith(text("1 failure:\n  ") + message), qPrintable(outcome.err));
    // None of the others was written either.
    for (const QString& place : shopFiles)
        QVERIFY2(place == text("index.html")
                     || !QFileInfo(mSite + QLatin1Char('/') + place).isFile(),
                 qPrintable(place));
    QVERIFY(!siteFile(text("index.html")).contains("href=\"shop-"));
}

void tst_ShopPublisherShop::fullDisk()
{
    SKIP_ON_WINDOWS("there is no limit of files and their size");
    QCOMPARE(publish(goodShop()).exitCode, allImported);
    QMap<QString, QByteArray> before;
    for (const QString& place : shopFiles)
        before.insert(place, siteFile(place));
    // The settings are small; only the French page is too large for the disk.
    const QJsonObject description{{text("en"), text("A")},
                                  {text("fr"), QString(40000, QLatin1Char('x'))}};
    writeShop(json(withProduct(0, "description", description)));
    LimitedProcess process;
    const Outcome outcome = run(process, {mProject, mSite}, mHome);
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.contains(text(": cannot be written (")), qPrintable(outcome.err));
    for (const QString& place : shopFiles)
        QCOMPARE(siteFile(place), before.value(place));
    QCOMPARE(mainFilesIn(mSite).size(), 10);
}

void tst_ShopPublisherShop::stoppedRun()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    writeFile(mProject + text("/photos/large.jpg"), encoded(corners(2400, 1800), "jpg"));
    for (int i = 0; i < 40; ++i)
        QVERIFY(QFile::link(mProject + text("/photos/large.jpg"),
                            mProject + text("/photos/l%1.jpg").arg(i)));
    writeShop(json(goodShop()));
    QProcess process;
    process.setProcessEnvironment(environmentFor(mHome));
    process.start(text(SHOP_PUBLISHER), {mProject, mSite});
    QVERIFY(process.waitForReadyRead(60000));
    process.terminate();
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), stopped);
    for (const QString& place : shopFiles)
        QVERIFY(!QFileInfo::exists(mSite + QLatin1Char('/') + place));
}

void tst_ShopPublisherShop::secondRun()
{
    QCOMPARE(publish(goodShop()).exitCode, allImported);
    QMap<QString, QByteArray> first;
    for (const QString& name : filesIn(mSite))
        first.insert(name, siteFile(name));
    // In any language of the program itself.
    QCOMPARE(publish({text("--language"), text("de")}).exitCode, allImported);
    for (const QString& place : shopFiles)
        QCOMPARE(siteFile(place), first.value(place));
    QCOMPARE(publish().exitCode, allImported);
    for (const QString& name : filesIn(mSite))
        QCOMPARE(siteFile(name), first.value(name));
}

void tst_ShopPublisherShop::acceptedSpellings()
{
    // A byte-order mark, a country in lower case, a font without its blank, texts that are the same
    // in all languages, and a photo whose accent is composed differently.
    writeFile(mProject + text("/photos/e\u0301te\u0301.jpg"), encoded(corners(40, 30), "jpg"));
    QJsonObject shop = withProduct(0, "photo", text("\u00e9t\u00e9.jpg"));
    shop.insert(text("country"), text("fr"));
    shop.insert(text("font"), text("opensans"));
    shop.insert(text("description"), text(" À bientôt "));
    writeShop("\xef\xbb\xbf" + json(shop));
    const Outcome outcome = publish();
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, allImported);
    const QString page = QString::fromUtf8(siteFile(text("shop-en.html")));
    QVERIFY(page.contains(text("<p>À bientôt</p>")));
    QVERIFY(page.contains(text("images/e%CC%81te%CC%81.jpg")));
    QVERIFY(page.contains(text("font-family: \"Open Sans\", system-ui")));
    QVERIFY(siteFile(text("config/config.php")).contains("const SHOP_COUNTRY='FR';"));
}

void tst_ShopPublisherShop::prices_data()
{
    // Calculated by hand: the net price rounded to the cent, the gross price rounded from it, and
    // the tax as the difference.
    QTest::addColumn<double>("netPrice");
    QTest::addColumn<int>("category");
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("currency");
    QTest::addColumn<QString>("gross");
    QTest::addColumn<QString>("parts");
    QTest::addColumn<QString>("price"); // for scripts, in every language
    QTest::newRow("standard rate") << 24.5 << 0 << text("FR") << text("EUR") << text("€29.40")
                                   << text("€24.50 net + €4.90 VAT (20 %)") << text("29.40 €");
    QTest::newRow("alternative rate") << 3.79 << 1 << text("FR") << text("EUR") << text("€4.00")
                                      << text("€3.79 net + €0.21 VAT (5.5 %)") // 3.99845
                                      << text("4.00 €");
    QTest::newRow("reduced rate") << 10.0 << 2 << text("FR") << text("EUR") << text("€11.00")
                                  << text("€10.00 net + €1.00 VAT (10 %)") << text("11.00 €");
    QTest::newRow("super reduced rate")
        << 100.0 << 3 << text("IE") << text("EUR") << text("€104.80")
        << text("€100.00 net + €4.80 VAT (4.8 %)") << text("104.80 €");
    QTest::newRow("parking rate") << 1.0 << 4 << text("IE") << text("EUR") << text("€1.14")
                                  << text("€1.00 net + €0.14 VAT (13.5 %)") // 1.135
                                  << text("1.14 €");
    QTest::newRow("pounds") << 10.0 << 0 << text("UK") << text("GBP") << text("£12.00")
                            << text("£10.00 net + £2.00 VAT (20 %)") << text("12.00 £");
    QTest::newRow("nothing") << 0.0 << 0 << text("DE") << text("EUR") << text("€0.00")
                             << text("€0.00 net + €0.00 VAT (19 %)") << text("0.00 €");
    QTest::newRow("more than six digits")
        << 123456.78 << 0 << text("FR") << text("EUR") << text("€148,148.14") // 148148.136
        << text("€123,456.78 net + €24,691.36 VAT (20 %)") << text("148148.14 €");
    QTest::newRow("rounded to the cent")
        << 1.239 << 0 << text("FR") << text("EUR") << text("€1.49") // 1.24, 1.488
        << text("€1.24 net + €0.25 VAT (20 %)") << text("1.49 €");
    QTest::newRow("a currency without cents")
        << 149.6 << 0 << text("FR") << text("JPY") << text("¥180")
        << text("¥150 net + ¥30 VAT (20 %)") << text("180.00 ￥");
}

void tst_ShopPublisherShop::prices()
{
    QFETCH(double, netPrice);
    QFETCH(int, category);
    QFETCH(QString, country);
    QFETCH(QString, currency);
    QFETCH(QString, gross);
    QFETCH(QString, parts);
    QFETCH(QString, price);
    QJsonObject shop = goodShop();
    QJsonArray products;
    products.append(product("Thing", "Chose", netPrice, category, "bowl.jpg"));
    shop.insert(text("products"), products);
    shop.insert(text("country"), country);
    shop.insert(text("currency"), currency);
    const Outcome outcome = publish(shop);
    QCOMPARE(outcome.err, QString());
    QString page = QString::fromUtf8(siteFile(text("shop-en.html")));
    page.replace(QChar(QChar::Nbsp), QLatin1Char(' '))
        .remove(text("<bdi>"))
        .remove(text("<bdi class=\"price-part\">"))
        .remove(text("</bdi>"));
    QVERIFY(
        page.contains(text("<p class=\"product-gross\">%1 <small>incl. VAT</small>").arg(gross)));
    QVERIFY(page.contains(text("<p class=\"price-parts\">%1</p>").arg(parts)));
    SKIP_ON_WINDOWS("php and node are programs of another system");
    // The same numbers in the data, to the last digit.
    const QJsonArray numbers =
        inNode("[products[0].net, products[0].vat, products[0].gross, products[0].price]")
            .toArray();
    const auto number = [](QString amount) {
        return amount.remove(QRegularExpression(text("[^0-9.]"))).toDouble();
    };
    QCOMPARE(numbers.at(2).toDouble(), number(gross));
    QCOMPARE(numbers.at(0).toDouble(), number(parts.section(QLatin1Char(' '), 0, 0)));
    QCOMPARE(numbers.at(3).toString(), price);
}

void tst_ShopPublisherShop::fonts_data()
{
    const auto row = columns<QString, QString, QString>("font", "css", "address");
    row("all weights", "open sans", "\"Open Sans\", system-ui", "Open+Sans:400,700");
    row("one weight", "Lobster", "\"Lobster\", system-ui", "Lobster:400");
    row("light only", "Buda", "\"Buda\", system-ui", "Buda:300");
    row("bold only", "UnifrakturCook", "\"UnifrakturCook\", system-ui", "UnifrakturCook:700");
    row("neither 400", "Sunflower", "\"Sunflower\", system-ui", "Sunflower:500,700");
    row("italic only", "Molle", "\"Molle\", \"Segoe Print\"", "Molle:400i");
    row("serif", "EBGaramond", "\"EB Garamond\", Georgia", "EB+Garamond:400,700");
    row("monospace", "Source Code Pro", "\"Source Code Pro\", ui-monospace",
        "Source+Code+Pro:400,700");
}

void tst_ShopPublisherShop::fonts()
{
    QFETCH(QString, font);
    QFETCH(QString, css);
    QFETCH(QString, address);
    QJsonObject shop = with("font", font);
    QCOMPARE(publish(shop).err, QString());
    QString page = QString::fromUtf8(siteFile(text("shop-fr.html")));
    QVERIFY(page.contains(text("font-family: ") + css));
    QVERIFY(!page.contains(text("fonts.googleapis.com"))); // only on request

    shop.insert(text("fontService"), true);
    QCOMPARE(publish(shop).err, QString());
    page = QString::fromUtf8(siteFile(text("shop-fr.html")));
    QVERIFY2(page.contains(text("css?family=") + address + text("&display=swap'")),
             qPrintable(page.section(text("<script>"), 1).left(300)));
}

void tst_ShopPublisherShop::idsAreDistinct()
{
    SKIP_ON_WINDOWS("php and node are programs of another system");
    QJsonObject shop = goodShop();
    QJsonArray products;
    for (const char* name : {"Bowl été", "bowl ete", "Bowl-Été!", "漢字", "漢字", "<b>", "1 2"})
        products.append(product(name, "Nom", 1, 0, "bowl.jpg"));
    shop.insert(text("products"), products);
    QCOMPARE(publish(shop).exitCode, allImported);
    const QJsonArray ids = inNode("products.map(p => p.id)").toArray();
    QCOMPARE(ids,
             QJsonArray({text("product_bowl_ete"), text("product_bowl_ete_1"),
                         text("product_bowl_ete_2"), text("product_"), text("product__1"),
                         text("product_b"), text("product_1_2")}));
    for (const char* language : {"en", "fr"}) {
        const QByteArray page = siteFile(text("shop-%1.html").arg(text(language)));
        for (const QJsonValue& id : ids)
            QCOMPARE(page.count("id=\"" + id.toString().toUtf8() + "\""), 1);
    }
}

void tst_ShopPublisherShop::unknownPageLanguage()
{
    // A shop may use a language that the program lacks: its own words stay English there.
    QJsonObject shop = goodShop();
    shop.insert(text("languages"), QJsonArray{text("pt_BR")});
    QJsonObject thing = product("", "", 10, 0, "bowl.jpg");
    thing.insert(text("name"), QJsonObject{{text("pt_BR"), text("Tigela azul")}});
    thing.insert(text("description"), QJsonObject{{text("pt_BR"), QString()}});
    shop.insert(text("products"), QJsonArray{thing});
    const Outcome outcome = publish(shop);
    QCOMPARE(outcome.err, QString());
    const QString page = QString::fromUtf8(siteFile(text("shop-pt_BR.html")));
    QVERIFY(page.contains(text("<html lang=\"pt-BR\">")));
    QVERIFY(page.contains(text("<h2>Tigela azul</h2>")));
    QVERIFY(page.contains(text("incl. VAT")));
}

void tst_ShopPublisherShop::nodeReadsTheProducts()
{
    SKIP_ON_WINDOWS("php and node are programs of another system");
    // Every text arrives as it is in shop.json: no quirk of the formatter is visible.
    const QStringList hostile{
        text("\"double\" and 'single'"),
        text("back\\slash \\n \\u0041 \\"),
        text("lines\nand\ttabs"),
        text("`${process.exit(3)}`"),
        text("</script><!-- \u2028\u2029 -->"),
        text("'+alert(1)+'"),
        text("emoji \U0001F600 漢字 été €"),
    };
    QJsonObject shop = goodShop();
    QJsonArray products;
    for (const QString& name : hostile) {
        QJsonObject thing = product("", "", 1234567.89, 1, "bowl.jpg");
        thing.insert(text("name"), name);
        thing.insert(text("description"), QJsonObject{{text("en"), name}, {text("fr"), text("x")}});
        products.append(thing);
    }
    shop.insert(text("products"), products);
    const Outcome outcome = publish(shop);
    QCOMPARE(outcome.err, QString());

    const QJsonArray read = inNode("products").toArray();
    QCOMPARE(read.size(), hostile.size());
    for (int i = 0; i < hostile.size(); ++i) {
        const QJsonObject thing = read.at(i).toObject();
        QCOMPARE(thing.value(text("name")).toObject(),
                 QJsonObject({{text("en"), hostile.at(i)}, {text("fr"), hostile.at(i)}}));
        QCOMPARE(thing.value(text("description")).toObject().value(text("en")).toString(),
                 hostile.at(i));
        QCOMPARE(thing.value(text("net")).toDouble(), 1234567.89);
        QCOMPARE(thing.value(text("gross")).toDouble(), 1302469.12); // 1302469.12395
        QCOMPARE(thing.value(text("vatRate")).toDouble(), 5.5);
        QCOMPARE(thing.value(text("taxCategory")).toInt(), 1);
        QCOMPARE(thing.value(text("image")).toString(), text("images/bowl.jpg"));
    }
}

void tst_ShopPublisherShop::phpReadsTheSettings()
{
    SKIP_ON_WINDOWS("php and node are programs of another system");
    QJsonObject shop = goodShop();
    const QString name = text("\"Chez\" l'\\Été\\\\ $x {$y} ?> <?php € \U0001F600 \\");
    shop.insert(text("name"), QJsonObject{{text("en"), name}, {text("fr"), text("Été")}});
    shop.insert(text("description"), text("one\ntwo"));
    shop.insert(text("font"), text("Open Sans"));
    QCOMPARE(publish(shop).exitCode, allImported);
    QCOMPARE(inPhp("SHOP_NAME").toObject(),
             QJsonObject({{text("en"), name}, {text("fr"), text("Été")}}));
    QCOMPARE(inPhp("SHOP_DESCRIPTION['fr']").toString(), text("one\ntwo"));
    QCOMPARE(inPhp("SHOP_LANGUAGES").toArray(), QJsonArray({text("en"), text("fr")}));
    QCOMPARE(inPhp("[SHOP_COUNTRY, SHOP_CURRENCY, SHOP_CURRENCY_SYMBOL, SHOP_FONT]").toArray(),
             QJsonArray({text("FR"), text("EUR"), text("€"), text("Open Sans")}));
    QCOMPARE(inPhp("SHOP_CURRENCY_NUMBER").toInt(), 978);
    QCOMPARE(inPhp("array_keys(SHOP_VAT_RATES)").toArray(), QJsonArray({0, 1, 2, 3}));
    QCOMPARE(inPhp("array_values(SHOP_VAT_RATES)").toArray(), QJsonArray({20, 5.5, 10, 2.1}));
    QCOMPARE(inPhp("SHOP_FONT_WEIGHTS").toArray(), QJsonArray({400, 700}));
    // There is nothing before or after the code.
    QCOMPARE(runScript(text("php"), siteFile(text("config/config.php"))).output, QByteArray());
}

void tst_ShopPublisherShop::hostileTextsInTheBrowser()
{
    if (chromium().isEmpty())
        QSKIP("Chromium is not installed");
    const QString hostile = text(
        "<script>document.title='gone'</script> \"a\" 'b' &amp; </style> \\ € {{name}} {{{data}}}");
    QJsonObject shop = withProduct(0, "name", hostile);
    shop.insert(text("name"), hostile);
    shop.insert(text("description"), hostile);
    QCOMPARE(publish(shop).exitCode, allImported);
    const QJsonObject seen = askBrowser(mSite + text("/shop-en.html"), cardsExpression, 1280);
    QCOMPARE(seen.value(text("title")).toString(), hostile);
    QCOMPARE(seen.value(text("heading")).toString(), hostile);
    const QJsonArray cards = seen.value(text("cards")).toArray();
    QCOMPARE(strings(cards, "name"), QStringList({hostile, text("Pear")}));
    QCOMPARE(strings(cards, "alt"), QStringList({hostile, text("Pear")}));
}

void tst_ShopPublisherShop::sampleShopInTheBrowser_data()
{
    const auto row = columns<int, QStringList, QString, QString>("width", "names", "parts", "foot");
    row("en", 1280,
        QStringList({text("Bowl \"Summer blue\""), text("Teapot for five o'clock"),
                     text("Celadon vase"), text("Workshop lamp"), text("Three pears, 100 % ripe"),
                     text("A cup of hot chocolate")}),
        "€24.50 net + €4.90 VAT (20 %)", "Prices in Euro, with the VAT of France.");
    row("fr", 500,
        QStringList({text("Bol « Bleu d'été »"), text("Théière de cinq heures"),
                     text("Vase céladon"), text("Lampe d’atelier"),
                     text("Trois poires, 100 % mûres"), text("Une tasse de chocolat chaud")}),
        "24,50 € HT + 4,90 € TVA (20 %)", "Prix en Euro, TVA applicable : France.");
    row("de", 800,
        QStringList({text("Schale „Sommerblau“"), text("Teekanne für fünf Uhr"),
                     text("Seladon-Vase"), text("Werkstattlampe"), text("Drei Birnen, 100 % reif"),
                     text("Eine Tasse heiße Schokolade")}),
        "24,50 € netto + 4,90 € MwSt. (20 %)", "Preise in Euro, Mehrwertsteuer: France.");
}

void tst_ShopPublisherShop::sampleShopInTheBrowser()
{
    if (chromium().isEmpty())
        QSKIP("Chromium is not installed");
    QFETCH(int, width);
    QFETCH(QStringList, names);
    QFETCH(QString, parts);
    QFETCH(QString, foot);
    const QString language = text(QTest::currentDataTag());
    const Outcome outcome = run({text(SAMPLE_SHOP_DIR), mSite}, mHome);
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, allImported);

    const QJsonObject seen =
        askBrowser(mSite + text("/shop-%1.html").arg(language), cardsExpression, width);
    QCOMPARE(seen.value(text("lang")).toString(), language);
    QCOMPARE(seen.value(text("heading")).toString(), text("L’Atelier d’Orva"));
    QCOMPARE(seen.value(text("foot")).toString(), foot);
    QVERIFY(seen.value(text("font")).toString().startsWith(text("\"EB Garamond\", Georgia")));
    QCOMPARE(seen.value(text("weights")).toArray(), QJsonArray({text("400"), text("700")}));
    QVERIFY(seen.value(text("fits")).toBool());
    const QJsonArray cards = seen.value(text("cards")).toArray();
    QCOMPARE(strings(cards, "name"), names);
    QCOMPARE(strings(cards, "parts").value(0), parts);
    const QStringList prices = strings(cards, "price");
    const char* const gross[] = {"29.40", "69.90", "49.92", "149.88", "4.00", "4.50"};
    for (int i = 0; i < 6; ++i) {
        QString amount = text(gross[i]);
        amount = language == text("en")
            ? text("€%1 ").arg(amount)
            : text("%1 € ").arg(amount.replace(QLatin1Char('.'), QLatin1Char(',')));
        QVERIFY2(prices.value(i).startsWith(amount), qPrintable(prices.value(i)));
        QVERIFY(cards.at(i).toObject().value(text("loaded")).toBool());
    }
    const QJsonArray ids = seen.value(text("ids")).toArray();
    QCOMPARE(ids.size(), 6);
    QCOMPARE(ids.at(0).toString(), text("product_bowl_summer_blue"));
    // No request goes to another site.
    QVERIFY(seen.value(text("fontAddress")).isUndefined());
}

QTEST_MAIN(tst_ShopPublisherShop)
#include "tst_ShopPublisherShop.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The example program shop-publisher under attack: projects that try to run code on the server or
// in a visitor's browser, to publish what was never meant to be shown, or to keep the program busy
// forever.

#include "Columns.h"
#include "PublisherTest.h"
#include "ScriptRunner.h"
#include "SystemCalls.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>
#include <QtTest>

class tst_ShopPublisherAttacks : public PublisherTest
{
    Q_OBJECT

private Q_SLOTS:
    void controlCharactersInTheShop_data();
    void controlCharactersInTheShop();
    void hostileTextsStayTexts();
    void svgThatDoesSomething_data();
    void svgThatDoesSomething();
    void drawingsArePublished_data();
    void drawingsArePublished();
    void contentDecidesNotTheLink();
    void linksOutOfTheStaticFiles();
    void linksOutOfTheStaticFilesWhileWatched();
    void hugePictures_data();
    void hugePictures();
    void secondSignalEndsAtOnce();
    void siteOfSomebodyElse();
    void photographsOfAnotherProject();
    void photographThatLeftLeavesTheSite();
    void forgedRecord();
    void namesThatMeetInTheSite();
    void longestName();
    void shopThatIsNoFile();
    void limitOfTheFileSize();
    void deadLocks();
    void nothingTellsThePlace_data();
    void nothingTellsThePlace();
    void unchangedPhotographsAreNotTouched();
    void manyProductsOfOneName();

private:
    Outcome publishShop(const QByteArray& shop) const
    {
        writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
        writeFile(mProject + text("/shop.json"), shop);
        return publish();
    }
};

namespace {

/// A shop with one product, and some JSON in place of each of its texts.
QByteArray shopWith(const QByteArray& name, const QByteArray& productName = "\"Bowl\"",
                    const QByteArray& description = "\"\"")
{
    return "{\"name\": " + name
        + ", \"languages\": [\"en\", \"or\"], \"currency\": \"EUR\", \"country\": \"FR\","
          " \"font\": \"Open Sans\", \"products\": [{\"name\": "
        + productName + ", \"description\": " + description
        + ", \"netPrice\": 1, \"taxCategory\": 0, \"photo\": \"a.jpg\"}]}";
}

QByteArray svg(const QByteArray& content, const QByteArray& attributes = QByteArray())
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" "
           "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"8\" height=\"8\" "
        + attributes + ">" + content + "</svg>";
}

/// A PNG chunk.
QByteArray chunk(const QByteArray& typeAndData)
{
    quint32 crc = 0xffffffff;
    for (const char byte : typeAndData) {
        crc ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? (crc >> 1) ^ 0xedb88320 : crc >> 1;
    }
    QByteArray size(4, '\0');
    QByteArray sum(4, '\0');
    qToBigEndian(quint32(typeAndData.size() - 4), size.data());
    qToBigEndian(~crc, sum.data());
    return size + typeAndData + sum;
}

/// A PNG whose header announces a size, with almost no data.
QByteArray hugePng(quint32 width, quint32 height)
{
    QByteArray header("IHDR\0\0\0\0\0\0\0\0\x08\x02\0\0\0", 17);
    qToBigEndian(width, header.data() + 4);
    qToBigEndian(height, header.data() + 8);
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + chunk(header) + chunk("IDAT1234");
}

/// A JPEG whose header announces a wrong size.
QByteArray hugeJpeg(quint16 width, quint16 height)
{
    QByteArray jpeg = encoded(corners(40, 30), "jpg");
    const int frame = int(jpeg.indexOf("\xff\xc0"));
    qToBigEndian(height, jpeg.data() + frame + 5);
    qToBigEndian(width, jpeg.data() + frame + 7);
    return jpeg;
}

} // namespace

void tst_ShopPublisherAttacks::controlCharactersInTheShop_data()
{
    const auto row = columns<QByteArray, QString>("shop", "failure");
    const QByteArray attack = "{\"en\": \"My shop\\u0000\", "
                              "\"or\": \"];file_put_contents('owned', 'x');//\"}";
    row("name of the shop", shopWith(attack),
        "shop.json, name: holds a control character "
        "(U+0000)");
    row("name of a product", shopWith("\"Shop\"", "{\"en\": \"a\", \"or\": \"b\\u001bc\"}"),
        "shop.json, product 1 (a), name: holds a control character (U+001b)");
    row("carriage return in a name", shopWith("\"Shop\"", "\"a\\rb\""),
        "name: holds a control character (U+000d)");
    row("description of a product", shopWith("\"Shop\"", "\"Bowl\"", "\"x\\u0000y\""),
        "shop.json, product 1 (Bowl), description: holds a control character (U+0000)");
    row("next line", shopWith("\"Shop\\u0085two\""),
        "shop.json, name: holds a control character (U+0085)");
}

void tst_ShopPublisherAttacks::controlCharactersInTheShop()
{
    QFETCH(QByteArray, shop);
    QFETCH(QString, failure);
    const Outcome outcome = publishShop(shop);
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.contains(failure), qPrintable(outcome.err));
    for (const char* place : {"config/config.php", "data/products.js", "shop-en.html"})
        QVERIFY2(!QFileInfo::exists(mSite + QLatin1Char('/') + text(place)), place);
}

void tst_ShopPublisherAttacks::hostileTextsStayTexts()
{
    SKIP_ON_WINDOWS("php and node are programs of another system");
    const QByteArray hostile = "\\\\']; echo 'owned'; // <?php ?> ${x} \\\" </script>";
    const Outcome outcome = publishShop(
        shopWith('"' + hostile + '"', '"' + hostile + '"', "\"one\\ntwo " + hostile + '"'));
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    const QString expected = text("\\']; echo 'owned'; // <?php ?> ${x} \" </script>");
    const QByteArray php = siteFile(text("config/config.php"));
    QVERIFY(!php.isEmpty());
    QCOMPARE(
        valueOfJson(runScript(text("php"), php + "\necho json_encode(SHOP_NAME['or']);").output)
            .toString(),
        expected);
    const QByteArray js = siteFile(text("data/products.js"));
    QCOMPARE(valueOfJson(
                 runScript(text("node"), js + "\nconsole.log(JSON.stringify(products[0].name.en));")
                     .output)
                 .toString(),
             expected);
}

void tst_ShopPublisherAttacks::svgThatDoesSomething_data()
{
    const auto row = columns<QByteArray, QString>("content", "reason");
    row("script", svg("<script>alert(1)</script>"), "it holds an element \"script\" (line 1)");
    row("script of another namespace",
        svg("<h:script xmlns:h=\"http://www.w3.org/1999/xhtml\">alert(1)</h:script>"),
        "it holds an element \"script\"");
    row("capital letters", svg("<SCRIPT/>"), "it holds an element \"SCRIPT\"");
    row("HTML", svg("<h:img xmlns:h=\"http://www.w3.org/1999/xhtml\" src=\"x\"/>"),
        "it holds an element \"img\"");
    row("foreignObject", svg("<foreignObject/>"), "it holds an element \"foreignObject\"");
    row("event", svg("<rect/>", "onload=\"alert(1)\""), "it holds an attribute \"onload\"");
    row("javascript", svg("<a xlink:href=\"javascript:alert(1)\"><rect/></a>"),
        "it holds a script in");
    row("javascript with blanks", svg("<a href=\" java&#10;Script&#9;:alert(1)\"><rect/></a>"),
        "it holds a script in an attribute \"href\"");
    row("animated address", svg("<a><set attributeName=\"xlink:href\" to=\"#x\"/></a>"),
        "it animates the attribute \"xlink:href\"");
    row("animated event", svg("<set attributeName=\"onclick\" to=\"x\"/>"),
        "it animates the attribute \"onclick\"");
    row("picture elsewhere", svg("<image href=\"https://example.org/a.png\"/>"),
        "it refers to \"https://example.org/a.png\"");
    row("picture beside it", svg("<image href=\"../secret.png\"/>"),
        "it refers to \"../secret.png\"");
    row("SVG in an address", svg("<use href=\"data:image/svg+xml;base64,AAAA#x\"/>"),
        "it refers to \"data:");
    row("address in a presentation attribute",
        svg("<rect fill=\"url( 'https://example.org/#a' )\"/>"),
        "it has a style that refers to \"https://example.org/#a");
    row("address in a style element", svg("<style>rect{background:url(//example.org/a)}</style>"),
        "it has a style that refers to \"//example.org/a\"");
    row("import", svg("<style>@import 'https://example.org/';</style>"),
        "it has a style with \"@import\"");
    row("escaped import", svg("<style>@\\69mport 'x';</style>"), "it has a style with \"\\\"");
    row("style in parts", svg("<style>@im<![CDATA[port 'x';]]></style>"),
        "it has a style with \"@import\"");
    row("import beside an element in a style",
        svg("<style><g/>@import 'https://example.org/';</style>"), "it holds an element \"g\"");
    row("escaped function in an attribute",
        svg("<rect cursor=\"\\75rl(https://example.org/a.png),auto\"/>"),
        "it has a style with \"\\\"");
    row("set of pictures in an attribute",
        svg("<rect cursor=\"image-set('https://example.org/a.png' 1x),auto\"/>"),
        "it has a style with \"image-set(\"");
    row("address told of a click", svg("<a href=\"#a\" ping=\"https://example.org/\"/>"),
        "it refers to \"https://example.org/\"");
    QByteArray doubled = "<g id=\"a0\"><rect width=\"1\" height=\"1\"/></g>";
    for (int i = 1; i < 40; ++i) {
        const QByteArray use = "<use xlink:href=\"#a" + QByteArray::number(i - 1) + "\"/>";
        doubled += "<g id=\"a" + QByteArray::number(i) + "\">" + use + use + "</g>";
    }
    // Without a size of its own, so that its parts give it.
    row("parts that double", svg(doubled).replace("width=\"8\" height=\"8\"", ""),
        "uses its own parts too often");
    row("part that uses itself", svg("<g id=\"a\"><use href=\"#a\"/></g>"),
        "uses its own parts too often");
    row("DTD", "<!DOCTYPE svg [<!ENTITY a \"b\">]>" + svg("&a;"), "it has a document type (DTD)");
    row("style sheet", "<?xml-stylesheet href=\"a.css\"?>" + svg(""),
        "it refers to a style sheet elsewhere");
    row("strange encoding", "<?xml version=\"1.0\" encoding=\"UTF-7\"?>" + svg(""), "encoding");
    row("base", svg("<rect/>", "xml:base=\"https://example.org/\""),
        "it refers to \"https://example.org/\"");
}

void tst_ShopPublisherAttacks::svgThatDoesSomething()
{
    SKIP_ON_WINDOWS("Qt is made there without its plugins for SVG, TIFF and WebP");
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    writeFile(photo("b.svg"), content);
    const Outcome outcome = publish();
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.startsWith(text("1 failure:\n  b.svg: ")), qPrintable(outcome.err));
    QVERIFY2(outcome.err.contains(reason), qPrintable(outcome.err));
    QCOMPARE(filesIn(mSite + text("/images")), QStringList(text("a.jpg")));
    QCOMPARE(filesIn(mSite + text("/thumbs")), QStringList(text("a.jpg")));
}

void tst_ShopPublisherAttacks::drawingsArePublished_data()
{
    const auto row = columns<QByteArray>("content");
    row("plain", svg("<rect width=\"8\" height=\"8\"/>"));
    row("gradient by a local address",
        svg("<defs><linearGradient id=\"a\"/></defs><rect fill=\"url(#a)\" "
            "style=\"stroke: url('#a')\"/><use xlink:href=\"#a\"/>"));
    row("parts that are used twice",
        svg("<g id=\"a\"><rect id=\"b\"/><use href=\"#b\" transform=\"rotate(9)\"/></g>"
            "<use href=\"#a\"/><use href=\"#a\"/>"));
    row("picture inside", svg("<image href=\"data:image/png;base64,AAAA\"/>"));
    row("style", svg("<style>rect { fill: url(#a) }</style>"));
    row("declaration", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + svg(""));
    row("text that only speaks of scripts",
        svg("<title>javascript: onload &lt;script&gt;</title>"));
    row("animation", svg("<rect><animate attributeName=\"x\" to=\"4\"/></rect>"));
}

void tst_ShopPublisherAttacks::drawingsArePublished()
{
    SKIP_ON_WINDOWS("Qt is made there without its plugins for SVG, TIFF and WebP");
    QFETCH(QByteArray, content);
    writeFile(photo("b.svg"), content);
    const Outcome outcome = publish();
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QCOMPARE(siteFile(text("images/b.svg")), content);
}

void tst_ShopPublisherAttacks::contentDecidesNotTheLink()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    writeFile(root() + text("/real.svg"), svg("<script>alert(1)</script>"));
    writeFile(root() + text("/fine.svg"), svg("<rect/>"));
    writeFile(root() + text("/real.jpg"), encoded(corners(40, 30), "jpg"));
    QVERIFY(QFile::link(root() + text("/real.svg"), photo("a.jpg")));
    QVERIFY(QFile::link(root() + text("/fine.svg"), photo("b.jpg")));
    QVERIFY(QFile::link(root() + text("/real.jpg"), photo("c.svg")));
    QVERIFY(QFile::link(root() + text("/real.jpg"), photo("d.jpg")));
    const Outcome outcome = publish();
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(
        outcome.err.startsWith(text("3 failures:\n  a.jpg: holds a picture of the kind svg, ")),
        qPrintable(outcome.err));
    QCOMPARE(filesIn(mSite + text("/images")), QStringList(text("d.jpg")));
    QCOMPARE(filesIn(mSite + text("/thumbs")), QStringList(text("d.jpg")));
}

void tst_ShopPublisherAttacks::linksOutOfTheStaticFiles()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    writeFile(root() + text("/secret/key.txt"), "secret");
    writeFile(mProject + text("/static/css/style.css"), "body {}");
    const QString folder = mProject + text("/static/");
    QVERIFY(QFile::link(root() + text("/secret"), folder + text("sec")));
    QVERIFY(QFile::link(root() + text("/secret/key.txt"), folder + text("key.txt")));
    QVERIFY(QFile::link(text("../../shop.json"), folder + text("css/shop.json")));
    QVERIFY(QFile::link(root() + text("/nowhere"), folder + text("lost")));
    QVERIFY(QFile::link(text("css/style.css"), folder + text("same.css")));
    writeFile(mProject + text("/shop.json"), "not yet");
    const Outcome outcome = publish();
    QCOMPARE(outcome.exitCode, someFailed);
    for (const char* line :
         {"  static/sec/: is a link to a folder, which is not followed\n",
          "  static/key.txt: is a link that leads out of the static files\n",
          "  static/css/shop.json: is a link that leads out of the static files\n",
          "  static/lost: is a link that leads nowhere\n"})
        QVERIFY2(outcome.err.contains(text(line)), qPrintable(outcome.err));
    QCOMPARE(filesIn(mSite + text("/static")),
             QStringList({text("css/style.css"), text("same.css")}));
    QVERIFY(!QFileInfo(mSite + text("/static/same.css")).isSymLink());
    QCOMPARE(siteFile(text("static/same.css")), QByteArray("body {}"));
}

void tst_ShopPublisherAttacks::linksOutOfTheStaticFilesWhileWatched()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    writeFile(mProject + text("/static/a.txt"), "a");
    writeFile(root() + text("/secret.txt"), "secret");
    QProcess process;
    start(&process, {text("--watch")});
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(mSite + text("/static/a.txt")), 60000);
    QVERIFY(QFile::link(root() + text("/secret.txt"), mProject + text("/static/b.txt")));
    writeFile(mProject + text("/static/c.txt"), "c");
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(mSite + text("/static/c.txt")), 60000);
    // An ordinary file becomes a link.
    QVERIFY(QFile::remove(mProject + text("/static/a.txt")));
    QVERIFY(QFile::link(root() + text("/secret.txt"), mProject + text("/static/a.txt")));
    QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(mSite + text("/static/a.txt")), 60000);
    process.terminate();
    const Outcome outcome = outcomeOf(process);
    QCOMPARE(outcome.exitCode, stopped);
    QVERIFY2(outcome.err.contains(text("static/b.txt: is a link that leads out of the static")),
             qPrintable(outcome.err));
    QCOMPARE(filesIn(mSite + text("/static")), QStringList(text("c.txt")));
}

void tst_ShopPublisherAttacks::hugePictures_data()
{
    const auto row = columns<QString, QByteArray, QString>("name", "content", "size");
    row("PNG", "huge.png", hugePng(30000, 25000), "30000 × 25000");
    row("wide PNG", "huge.png", hugePng(1000000, 201), "1000000 × 201");
    row("JPEG", "huge.jpg", hugeJpeg(65000, 65000), "65000 × 65000");
}

void tst_ShopPublisherAttacks::hugePictures()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, size);
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    writeFile(photo(name), content);
    const Outcome outcome = publish();
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.contains(
                 text("  %1: %2 pixels: larger than 200 million pixels\n").arg(name, size)),
             qPrintable(outcome.err));
}

void tst_ShopPublisherAttacks::secondSignalEndsAtOnce()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    const QByteArray large = encoded(corners(2400, 1800), "jpg");
    for (int i = 0; i < 12; ++i)
        writeFile(photo(text("%1.jpg").arg(i)), large);
    QProcess process;
    start(&process);
    QVERIFY(process.waitForReadyRead(60000));
    const auto program = pid_t(process.processId());
    // Two that arrive at the same moment count as one.
    while (process.state() == QProcess::Running) {
        ::kill(program, SIGINT);
        process.waitForFinished(1);
    }
    const Outcome outcome = outcomeOf(process);
    QCOMPARE(outcome.exitCode, stopped);

    // The next run completes the site and removes temporary files.
    QCOMPARE(publish().exitCode, allImported);
    QCOMPARE(filesIn(mSite).size(), 2 * 12 + 1);
    QCOMPARE(QDir(mSite).entryList({text(".shop-publisher-??????")}, QDir::Dirs | QDir::Hidden),
             QStringList());
    QVERIFY(!QFileInfo::exists(mProject + text("/lockfile")));
}

// Data that an owner could lose

void tst_ShopPublisherAttacks::siteOfSomebodyElse()
{
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    writeFile(mProject + text("/static/a.txt"), "a");
    writeFile(mSite + text("/static/theirs.txt"), "theirs");
    writeFile(mSite + text("/index.html"), "<h1>theirs</h1>");
    writeFile(mSite + text("/notes.txt"), "theirs");
    const QStringList before = snapshot(root(), text("-"));
    Outcome outcome = publish();
    QCOMPARE(outcome.exitCode, badUsage);
    QVERIFY2(outcome.err.contains(text("SITE was not made by this program")),
             qPrintable(outcome.err));
    QVERIFY2(outcome.err.contains(text("This would be replaced: index.html, static. --force ")),
             qPrintable(outcome.err));
    QCOMPARE(snapshot(root(), text("-")), before);

    outcome = publish({text("--force")});
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QCOMPARE(filesIn(mSite + text("/static")), QStringList(text("a.txt")));
    QCOMPARE(siteFile(text("notes.txt")), QByteArray("theirs"));
    // From then on it belongs to the program.
    QCOMPARE(publish().exitCode, allImported);
}

void tst_ShopPublisherAttacks::photographsOfAnotherProject()
{
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    QCOMPARE(publish().exitCode, allImported);
    const QString other = root() + text("/other");
    writeFile(other + text("/photos/b.jpg"), encoded(corners(40, 30), "jpg"));
    const QStringList before = snapshot(mSite, text("-"));
    const Outcome outcome = run({other, mSite}, mHome);
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.contains(text("SITE shows the photographs of another project")),
             qPrintable(outcome.err));
    QCOMPARE(snapshot(mSite, text("-")), before);
    QCOMPARE(run({text("--force"), other, mSite}, mHome).exitCode, allImported);
    QCOMPARE(filesIn(mSite + text("/images")), QStringList(text("b.jpg")));

    // A project that was moved is still the same.
    QVERIFY(QDir().rename(other, root() + text("/moved")));
    QCOMPARE(run({root() + text("/moved"), mSite}, mHome).exitCode, allImported);
}

void tst_ShopPublisherAttacks::photographThatLeftLeavesTheSite()
{
    for (const char* name : {"a.jpg", "private/b.jpg", "c.jpg"})
        writeFile(photo(name), encoded(corners(40, 30), "jpg"));
    QCOMPARE(publish().exitCode, allImported);
    writeFile(mSite + text("/images/theirs.jpg"), "theirs");
    QVERIFY(QDir(photo("private")).removeRecursively());
    // A photograph that is damaged now is removed from the page.
    writeFile(photo("c.jpg"), "broken");
    QCOMPARE(publish().exitCode, someFailed);
    QCOMPARE(filesIn(mSite + text("/images")),
             QStringList({text("a.jpg"), text("c.jpg"), text("theirs.jpg")}));
    QVERIFY(!QFileInfo::exists(mSite + text("/thumbs/private")));
    QVERIFY(!siteFile(text("index.html")).contains("b.jpg"));
}

void tst_ShopPublisherAttacks::forgedRecord()
{
    // Somebody who can write to the site must not reach anything outside it.
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    QCOMPARE(publish().exitCode, allImported);
    const QStringList outside{text("../one.txt"), text("images/../../two.txt"),
                              text("../three.html"), text("../four.txt")};
    for (const QString& place : outside)
        writeFile(QDir::cleanPath(mSite + QLatin1Char('/') + place), "theirs");
    const QString record = mSite + QLatin1Char('/') + recordName;
    QJsonObject root = QJsonDocument::fromJson(readFile(record)).object();
    QJsonObject pictures = root.value(text("pictures")).toObject();
    pictures.insert(
        text("gone.jpg"),
        QJsonObject{
            {text("name"), text("gone.jpg")},
            {text("files"), QJsonObject{{outside.at(0), QString()}, {outside.at(1), QString()}}}});
    root.insert(text("pictures"), pictures);
    root.insert(text("shopPages"), QJsonArray{outside.at(2)});
    root.insert(text("static"),
                QJsonObject{{text("../../four.txt"), QJsonArray{text("a"), text("b")}}});
    writeFile(record, QJsonDocument(root).toJson());
    const Outcome outcome = publish();
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    for (const QString& place : outside)
        QVERIFY2(QFileInfo::exists(mSite + QLatin1Char('/') + place), qPrintable(place));
}

void tst_ShopPublisherAttacks::namesThatMeetInTheSite()
{
    SKIP_ON_WINDOWS("Qt is made there without its plugins for SVG, TIFF and WebP");
    // "a.jpg" in WebP would get the name of the other photograph.
    writeFile(photo("a.jpg.webp"), encoded(corners(1000, 700), "webp"));
    const Outcome outcome = publishShop(
        shopWith("\"Shop\"", "\"Half %1\"")
            .replace("\"photo\": \"a.jpg\"", "\"photos\": [\"a.jpg\", \"a.jpg.webp\"]"));
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QVERIFY(QFileInfo::exists(mSite + text("/images/a.jpg-2.webp")));
    QVERIFY(!QFileInfo::exists(mSite + text("/images/a.jpg.webp")));
    QVERIFY(siteFile(text("shop-en.html")).contains("alt=\"Half %1 (2)\""));
}

void tst_ShopPublisherAttacks::longestName()
{
    SKIP_ON_WINDOWS("a whole path is no longer than that there");
    const QString name = QString(251, QLatin1Char('n')) + text(".jpg");
    writeFile(photo(name), encoded(corners(1000, 700), "jpg"));
    const Outcome outcome =
        publishShop(shopWith("\"Shop\"").replace("\"a.jpg\"", '"' + name.toUtf8() + '"'));
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QVERIFY(QFileInfo::exists(mSite + text("/sizes/960/") + name));
}

void tst_ShopPublisherAttacks::shopThatIsNoFile()
{
    SKIP_ON_WINDOWS("there are no pipes in folders");
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    const QString shop = mProject + text("/shop.json");
    QCOMPARE(::mkfifo(QFile::encodeName(shop).constData(), 0600), 0);
    Outcome outcome = publish(); // reading it would never end
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.contains(text("shop.json: is not a file\n")), qPrintable(outcome.err));
    QVERIFY(QFile::remove(shop));
    QVERIFY(QFile::link(text("/dev/zero"), shop));
    outcome = publish();
    QVERIFY2(outcome.err.contains(text("shop.json: is not a file\n")), qPrintable(outcome.err));
}

void tst_ShopPublisherAttacks::limitOfTheFileSize()
{
    SKIP_ON_WINDOWS("there is no such limit");
    writeFile(photo("a.jpg"), encoded(corners(2400, 1800), "jpg"));
    QProcess process;
    process.setProcessEnvironment(environmentFor(mHome));
    process.start(text("sh"),
                  {text("-c"), text("ulimit -f 1; exec \"$@\""), text("sh"),
                   QStringLiteral(SHOP_PUBLISHER), mProject, mSite});
    const Outcome outcome = outcomeOf(process);
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.contains(text("a.jpg: cannot be saved in the site")),
             qPrintable(outcome.err));
    QVERIFY(!QFileInfo::exists(mProject + text("/lockfile")));
    QCOMPARE(publish().exitCode, allImported);
}

void tst_ShopPublisherAttacks::deadLocks()
{
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    QCOMPARE(publish().exitCode, allImported);
    // Killed while it created its locks: empty ones.
    for (const QString& lock :
         {mProject + text("/lockfile"), mSite + text("/.shop-publisher.locked")})
        writeFile(lock, QByteArray());
    const Outcome outcome = publish();
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QVERIFY(!QFileInfo::exists(mProject + text("/lockfile")));
    QVERIFY(!QFileInfo::exists(mSite + text("/.shop-publisher.locked")));
}

void tst_ShopPublisherAttacks::nothingTellsThePlace_data()
{
    const auto row = columns<QString, QByteArray>("name", "content");
    const QByteArray secret = "<x:xmpmeta>exif:GPSLatitude=48,51.5N</x:xmpmeta>";
    QByteArray jpeg = encoded(corners(40, 30), "jpg");
    const QByteArray xmp = QByteArray("http://ns.adobe.com/xap/1.0/\0", 29) + secret;
    QByteArray size(2, '\0');
    qToBigEndian(quint16(xmp.size() + 2), size.data());
    jpeg.insert(2, "\xff\xe1" + size + xmp);
    row("JPEG", "a.jpg", jpeg);
    QByteArray png = encoded(corners(40, 30), "png");
    png.insert(png.indexOf("IDAT") - 4,
               chunk("iTXt" + QByteArray("XML:com.adobe.xmp\0\0\0\0\0", 22) + secret));
    row("PNG", "a.png", png);
    QByteArray gif = QByteArray::fromHex("474946383961 01000100 800000 ff0000 ffffff");
    gif += QByteArray("\x21\xfe", 2) + char(secret.size()) + secret + '\0';
    gif += QByteArray::fromHex("2c000000000100010000 02024401 00") + ';';
    row("GIF", "a.gif", gif);
}

void tst_ShopPublisherAttacks::nothingTellsThePlace()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QVERIFY(content.contains("GPSLatitude"));
    writeFile(photo(name), content);
    const Outcome outcome = publish();
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    for (const char* folder : {"images/", "thumbs/"}) {
        const QByteArray published = siteFile(text(folder) + name);
        QVERIFY(!published.isEmpty());
        QVERIFY2(!published.contains("GPS"), folder);
    }
}

// Time that an owner could lose

void tst_ShopPublisherAttacks::unchangedPhotographsAreNotTouched()
{
    writeFile(photo("a.jpg"), encoded(corners(2000, 1000), "jpg"));
    writeFile(photo("b.png"), encoded(corners(40, 30), "png"));
    writeFile(mProject + text("/static/style.css"), "body {}");
    QCOMPARE(publish().exitCode, allImported);
    const QStringList before = snapshot(mSite, text("-"));
    Outcome outcome = publish();
    QCOMPARE(outcome.exitCode, allImported);
    QCOMPARE(outcome.out, text("2 of 2 photographs imported: %1/index.html\n").arg(mSite));
    QCOMPARE(snapshot(mSite, text("-")), before);

    // A different time, the same content.
    const QByteArray content = readFile(photo("a.jpg"));
    QVERIFY(QFile::remove(photo("a.jpg")));
    writeFile(photo("a.jpg"), content);
    outcome = publish();
    QCOMPARE(outcome.out, text("2 of 2 photographs imported: %1/index.html\n").arg(mSite));
    QCOMPARE(snapshot(mSite, mSite + QLatin1Char('/') + recordName),
             before.filter(QRegularExpression(text("^(?!.*\\.shop-publisher\\.json)"))));

    // Different content of the same size; and a picture of the site that somebody changed.
    QImage other = corners(40, 30);
    writeFile(photo("b.png"), encoded(other.mirrored(), "png"));
    writeFile(mSite + text("/images/a.jpg"), "changed");
    outcome = publish();
    QVERIFY2(outcome.out.startsWith(text("[1/2] a.jpg\n[2/2] b.png\n")), qPrintable(outcome.out));
    QCOMPARE(QImage(mSite + text("/images/a.jpg")).size(), QSize(1600, 800));
}

void tst_ShopPublisherAttacks::manyProductsOfOneName()
{
    QByteArray products;
    for (int i = 0; i < 5000; ++i)
        products += QByteArray(i == 0 ? "" : ",")
            + "{\"name\": \"Bowl\", \"description\": \"\", \"netPrice\": 1, \"taxCategory\": 0, "
              "\"photo\": \"a.jpg\"}";
    const Outcome outcome = publishShop("{\"name\": \"Shop\", \"languages\": [\"en\"], "
                                        "\"currency\": \"EUR\", \"country\": \"FR\", "
                                        "\"font\": \"Open Sans\", \"products\": ["
                                        + products + "]}");
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QByteArray pages;
    for (const QString& name : QDir(mSite).entryList({text("shop-en*.html")}))
        pages += siteFile(name);
    QCOMPARE(pages.count("id=\"product_bowl"), 5000);
    QVERIFY(pages.contains("id=\"product_bowl\""));
    QVERIFY(pages.contains("id=\"product_bowl_4999\""));
}

QTEST_MAIN(tst_ShopPublisherAttacks)
#include "tst_ShopPublisherAttacks.moc"

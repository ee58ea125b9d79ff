// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "HTMLUtils.h"

#include "ColorFraction.h"
#include "Columns.h"
#include "ScriptRunner.h"
#include "Text.h"

#include <QColor>
#include <QImage>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

/// The text with the given UTF-16 units.
QString units(std::initializer_list<ushort> codes)
{
    QString string;
    for (const ushort code : codes)
        string += QChar(code);
    return string;
}

/// A colour of which \a alpha is visible.
QColor translucent(int red, int green, int blue, double alpha)
{
    return QColor::fromRgbF(ColorFraction(red), ColorFraction(green), ColorFraction(blue),
                            ColorFraction(alpha));
}

} // namespace

class tst_HTMLUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void generateUUID();
    void identifiers_data();
    void identifiers();
    void encodeSrcUrl_data();
    void encodeSrcUrl();
    void encodeSrcUrlWithFullyAmpersands_data();
    void encodeSrcUrlWithFullyAmpersands();
    void encodeSrcUrlKeepsEachOf();
    void formatedLocalFile();
    void codeCharMustBeEncoded();
    void encodeToJavascriptText_data();
    void encodeToJavascriptText();
    void encodeToJavascriptTextOfEachUnit();
    void encodeToJavascriptTextReadByNode();
    void formatHtmlToPlainText_data();
    void formatHtmlToPlainText();
    void textWithoutHtmlTags_data();
    void textWithoutHtmlTags();
    void textWithoutHtmlTagsOfEachUnit();
    void textWithoutHtmlTagsReadByQt();
    void decodeFromHtmlText_data();
    void decodeFromHtmlText();
    void escapedAndDecoded();
    void escaped_data();
    void escaped();
    void escapedReadByQt();
    void htmlBRreplace_data();
    void htmlBRreplace();
    void htmlBRreplaceOfManyLines();
    void metaTags();
    void tiniestInlineGifImage();
    void base64Images();
    void cssWeightToQtWeight_data();
    void cssWeightToQtWeight();
    void colorToCss_data();
    void colorToCss();
    void colorToCssOfEachAlpha();
};

void tst_HTMLUtils::generateUUID()
{
    const QString id = HTMLUtils::generateUUID();
    const QRegularExpression form(text("\\A[0-9a-f]{8}(_[0-9a-f]{4}){3}_[0-9a-f]{12}\\z"));
    QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
    QVERIFY(HTMLUtils::generateUUID() != id);
}

void tst_HTMLUtils::identifiers_data()
{
    const auto row = namedByText(columns<QString, QString, QString>("s", "id", "className"));
    row("", "", "");
    row("plain", "plain", "plain");
    row("a-b_c", "a_b_c", "a-b-c");
    row("{67c8770b-44f1}", "67c8770b_44f1", "67c8770b-44f1");
    row("  a b\t\n", "a b", "a b");
    row("{{a}{b}}", "ab", "ab");
    row("{ a }", " a ", " a "); // trimmed before the braces are removed
    row("--__", "____", "----");
    row("été.#1", "été.#1", "été.#1");
}

void tst_HTMLUtils::identifiers()
{
    QFETCH(QString, s);
    QTEST(HTMLUtils::formatCompliantcssId(s), "id");
    QTEST(HTMLUtils::formatCompliantFolder(s), "id");
    QTEST(HTMLUtils::formatCompliantcssClassName(s), "className");
}

void tst_HTMLUtils::encodeSrcUrl_data()
{
    const auto row = namedByText(columns<QString, QString>("url", "encoded"));
    row("", "");
    row("images/a.png", "images/a.png");
    row("images/été 1.png", "images/%C3%A9t%C3%A9%201.png");
    row("http://example.com/a b?c=d e#f g", "http://example.com/a%20b?c=d%20e#f%20g");
    row("a%20b", "a%20b"); // not encoded twice
    row("a%zz", "a%25zz"); // tolerant parsing
    row("a&b", "a&b");
    row("a\"<>b", "a%22%3C%3Eb");
    row("http://exämple.de/", "http://xn--exmple-cua.de/");
    row("file:///tmp/€.gif", "file:///tmp/%E2%82%AC.gif");
    row("http://[1", ""); // not a URL
}

void tst_HTMLUtils::encodeSrcUrl()
{
    QFETCH(QString, url);
    QTEST(HTMLUtils::encodeSrcUrl(url), "encoded");
}

void tst_HTMLUtils::encodeSrcUrlWithFullyAmpersands_data()
{
    const auto row = namedByText(columns<QString, QString>("path", "encoded"));
    row("", "");
    row("images/a b&c.png", "images/a%20b%26c.png");
    row("a b & c", "a b & c"); // no point, nothing to do
    row("a b/.c d", "a%20b/.c d"); // the extension is kept
    row("a b.c d.e f", "a%20b.c%20d.e f");
    row(".a b", ".a b");
    row("a b.", "a%20b.");
    row("\t.x", "%9.x"); // no leading zero
    row("été.x", "été.x");
    row("€.x", "%20ac.x");
    row("日本語٣.x", "日本語٣.x"); // letters and a digit of other scripts
    row("½.x", "%bd.x"); // a number, but no digit
    row("a%20b.x", "a%2520b.x");
    row("x?a=1&b=2#c.d", "x?a=1%26b=2#c.d");
    row("~'\"()+,:;@[]{}!$*.x", "%7e%27%22%28%29%2b%2c%3a%3b%40%5b%5d%7b%7d%21%24%2a.x");
    row("😀.x", "%d83d%de00.x"); // one code for each UTF-16 unit
    row("C:\\a.x", "C%3a%5ca.x");
}

void tst_HTMLUtils::encodeSrcUrlWithFullyAmpersands()
{
    QFETCH(QString, path);
    QTEST(HTMLUtils::encodeSrcUrlWithFullyAmpersands(path), "encoded");
}

void tst_HTMLUtils::encodeSrcUrlKeepsEachOf()
{
    const QString kept = text("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwx"
                              "yz#-./=?_");
    for (int code = 0; code < 128; ++code) {
        const QChar c(code);
        const QString expected =
            kept.contains(c) ? QString(c) : QLatin1Char('%') + QString::number(code, 16);
        QCOMPARE(HTMLUtils::encodeSrcUrlWithFullyAmpersands(c + text(".x")), expected + text(".x"));
    }
}

void tst_HTMLUtils::formatedLocalFile()
{
    QCOMPARE(HTMLUtils::formatedLocalFile(text("/tmp/a b.html")), text("file:///tmp/a b.html"));
    QCOMPARE(HTMLUtils::formatedLocalFile(text("a.html")), text("file://a.html"));
    QCOMPARE(HTMLUtils::formatedLocalFile(QString()), text("file://"));
}

void tst_HTMLUtils::codeCharMustBeEncoded()
{
    for (int code = -1; code <= 125; ++code) {
        const bool expected = code == 34 || code == 38 || code == 60 || code == 62;
        QCOMPARE(HTMLUtils::codeCharMustBeEncoded(code), expected);
    }
    for (const int code : {126, 127, 128, 233, 8364, 65535, 128512})
        QVERIFY(HTMLUtils::codeCharMustBeEncoded(code));
}

void tst_HTMLUtils::encodeToJavascriptText_data()
{
    const auto row = namedByText(columns<QString, QString>("s", "encoded"));
    row("", "");
    row("plain text, <b>&;", "plain text, <b>&;");
    row("é", "\\u00e9");
    row("\"", "\\u0022");
    row("'", "\\u0027");
    row("\\", "\\u005c");
    row("a\nb", "a\\nb");
    row("a\r\tb", "a\\u000d\\u0009b");
    row("~\x7f", "~\\u007f");
    row("€", "\\u20ac");
    row("😀", "\\ud83d\\ude00");
    row("\xe2\x80\xa8", "\\u2028"); // a line separator, which ends a line in JavaScript
}

void tst_HTMLUtils::encodeToJavascriptText()
{
    QFETCH(QString, s);
    QTEST(HTMLUtils::encodeToJavascriptText(s), "encoded");
}

void tst_HTMLUtils::encodeToJavascriptTextOfEachUnit()
{
    for (int code = 0; code <= 0xffff; ++code) {
        QString expected = text("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
        if (code == 10)
            expected = text("\\n");
        else if (code >= 32 && code <= 126 && code != 34 && code != 39 && code != 92)
            expected = QString(QChar(code));
        QCOMPARE(HTMLUtils::encodeToJavascriptText(QString(QChar(code))), expected);
    }
}

void tst_HTMLUtils::encodeToJavascriptTextReadByNode()
{
    const QString node = QStandardPaths::findExecutable(text("node"));
    if (node.isEmpty())
        QSKIP("node is not installed");
    QString string;
    for (int code = 0; code <= 0xffff; ++code)
        string += QChar(code);
    const QString encoded = HTMLUtils::encodeToJavascriptText(string);
    const ScriptResult result = runScript(
        node,
        "for (const text of ['" + encoded.toLatin1() + "', \"" + encoded.toLatin1()
            + "\"]) {\n"
              "  let right = text.length === 65536;\n"
              "  for (let i = 0; i < 65536; ++i) right = right && text.charCodeAt(i) === i;\n"
              "  console.log(right);\n}\n");
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.output, QByteArray("true\ntrue\n"));
}

void tst_HTMLUtils::formatHtmlToPlainText_data()
{
    const auto row = namedByText(columns<QString, QString>("html", "plain"));
    row("", "");
    row("plain", "plain");
    row("<p>a <b>b</b></p><p>c</p>", "a b\nc");
    row("a<br>b", "a\nb");
    row("&lt;b&gt; &amp; &eacute;&#233;", "<b> & éé");
    row("a  \n b", "a b");
    row("<style>p { color: red }</style><p>x</p>", "x");
}

void tst_HTMLUtils::formatHtmlToPlainText()
{
    QFETCH(QString, html);
    QTEST(HTMLUtils::formatHtmlToPlainText(html), "plain");
}

void tst_HTMLUtils::textWithoutHtmlTags_data()
{
    const auto row =
        columns<QString, bool, bool, QString>("s", "encodeSpaces", "encodeNewLines", "escaped");
    const QString blanks = text("a b\nc");
    row("empty", QString(), true, true, "");
    row("nothing encoded", blanks, false, false, "a b\nc");
    row("spaces", blanks, true, false, "a&nbsp;b\nc");
    row("line feeds", blanks, false, true, "a b&#10;c");
    row("both", blanks, true, true, "a&nbsp;b&#10;c");
    row("the four", text("\"&<>"), false, false, "&#34;&#38;&#60;&#62;");
    row("the apostrophe is none of them", text("it's"), false, false, "it's");
    row("tags stay, as text", text("<b>x</b>"), false, false, "&#60;b&#62;x&#60;/b&#62;");
    row("references are escaped again", text("&amp;"), false, false, "&#38;amp;");
    row("accents", text("éÀ€日"), true, true, "éÀ€日");
    row("control characters", text("\t\r\u007f"), true, true, "&#9;&#13;&#127;");
    row("NUL", units({'a', 0, 'b'}), false, false, "a&#0;b");
    row("no-break space", text("\u00a0"), true, true, "\u00a0");
    row("soft hyphen, not printable", text("\u00ad"), false, false, "&#173;");
    row("beyond the BMP", text("a😀b"), false, false, "a😀b");
    row("beyond it, not printable", units({0xdb40, 0xdc01}), false, false, "&#917505;");
    row("high surrogate alone", units({0xd83d, 'a'}), false, false, "&#55357;a");
    row("high surrogate at the end", units({'a', 0xd83d}), false, false, "a&#55357;");
    row("low surrogate alone", units({0xde00}), false, false, "&#56832;");
    row("surrogates the wrong way round", units({0xde00, 0xd83d}), false, false,
        "&#56832;&#55357;");
}

void tst_HTMLUtils::textWithoutHtmlTags()
{
    QFETCH(QString, s);
    QFETCH(bool, encodeSpaces);
    QFETCH(bool, encodeNewLines);
    QTEST(HTMLUtils::textWithoutHtmlTags(s, encodeSpaces, encodeNewLines), "escaped");
}

void tst_HTMLUtils::textWithoutHtmlTagsOfEachUnit()
{
    for (int code = 0; code <= 0xffff; ++code) {
        const QChar c(code);
        QString expected(c);
        if (code != 10 && (code == 34 || code == 38 || code == 60 || code == 62 || !c.isPrint()))
            expected = text("&#%1;").arg(code);
        QCOMPARE(HTMLUtils::textWithoutHtmlTags(QString(c), false, false), expected);
    }
}

void tst_HTMLUtils::textWithoutHtmlTagsReadByQt()
{
    // An HTML reader must get back the original text.
    const QString string = text("<b>\"A\" & 'B'</b> &amp; é😀 > </p>");
    QCOMPARE(HTMLUtils::formatHtmlToPlainText(HTMLUtils::textWithoutHtmlTags(string, false, false)),
             string);
    const QString blanks = text("a   b\nc");
    QCOMPARE(HTMLUtils::formatHtmlToPlainText(text("<pre>")
                                              + HTMLUtils::textWithoutHtmlTags(blanks, true, true)),
             blanks);
}

void tst_HTMLUtils::decodeFromHtmlText_data()
{
    const auto row = namedByText(columns<QString, QString>("s", "decoded"));
    row("", QString());
    row("plain é", text("plain é"));
    row("a&#233;b&nbsp;c", text("aéb c"));
    row("&#34;&#38;&#60;&#62;&#10;", text("\"&<>\n"));
    row("&nbsp;", text(" "));
    row("&nbsp;&nbsp;x", text("  x"));
    row("&#65x", text("Ax")); // the character after the digits is copied …
    row("&#65;x", text("Ax")); // … unless it is ";"
    row("&#65;;", text("A;"));
    row("&#65", text("A")); // the end of the text
    row("&#6", units({6}));
    row("&#65&#66;", text("A&#66;")); // copied, and not parsed as another one
    row("&#65&nbsp;", text("A&nbsp;"));
    row("&#;", units({0})); // no digits mean code 0
    row("&#x41;", units({0, 'x', '4', '1', ';'}));
    row("&#a", units({0, 'a'}));
    row("&#00065;", text("A"));
    // Other references.
    row("&amp;&lt;&eacute;", text("&amp;&lt;&eacute;"));
    row("&nbsp", text("&nbsp"));
    row("&nbs;", text("&nbs;"));
    row("&nbsx;", text("&nbsx;"));
    row("&NBSP;", text("&NBSP;"));
    row("&&#65;", text("&A"));
    row("a & b", text("a & b"));
    // Too close to the end.
    row("&", text("&"));
    row("a&", text("a&"));
    row("&#", text("&#"));
    row("a&#", text("a&#"));
    // Large codes.
    row("&#65535;", units({0xffff}));
    row("&#65536;", units({0xd800, 0xdc00}));
    row("&#128512;", text("😀"));
    row("&#55357;&#56832;", text("😀")); // a surrogate pair in two references
    // A lone surrogate is not a character.
    row("&#55357;", units({0xfffd}));
    row("&#56832;", units({0xfffd}));
    row("a&#55357;b", units({'a', 0xfffd, 'b'}));
    row("&#55296x&#57343", units({0xfffd, 'x', 0xfffd}));
    row("&#56832;&#55357;", units({0xfffd, 0xfffd}));
    row("&#55357;&#55357;&#56832;&#56832;", units({0xfffd, 0xd83d, 0xde00, 0xfffd}));
    row("&#1114111;", units({0xdbff, 0xdfff}));
    row("&#1114112;", units({0xfffd}));
    row("&#4294967361;", units({0xfffd})); // 2^32 + 65
    row("&#99999999999999999999999999999999x", units({0xfffd, 'x'}));
    row("&#9&#9", text("\t&#9"));
    row("\xd9\xa3&#\xd9\xa3", units({0x663, 0, 0x663})); // digits of other scripts are not accepted
}

void tst_HTMLUtils::decodeFromHtmlText()
{
    QFETCH(QString, s);
    QTEST(HTMLUtils::decodeFromHtmlText(s), "decoded");
}

void tst_HTMLUtils::escapedAndDecoded()
{
    QString all;
    for (uint code = 1; code <= 0x10ffff; code += code < 0x3000 ? 1 : 97) {
        if (!QChar::isSurrogate(code)) // lone surrogates are not restored
            all += QString::fromUcs4(&code, 1);
    }
    const QString escaped = HTMLUtils::textWithoutHtmlTags(all, true, true);
    QVERIFY(escaped != all);
    QCOMPARE(HTMLUtils::decodeFromHtmlText(escaped), all);
}

void tst_HTMLUtils::escaped_data()
{
    const auto row = columns<QString, QString>("s", "html");
    row("empty", QString(), QString());
    row("plain", text("Été à 5 €, 日本 😀 -_.{}`$\\"), text("Été à 5 €, 日本 😀 -_.{}`$\\"));
    row("markup", text("Tom & \"Zoé\" <3>"), text("Tom &amp; &quot;Zoé&quot; &lt;3&gt;"));
    row("apostrophe", text("l'été"), text("l&#39;été"));
    row("escaped already", text("&amp;&#39;"), text("&amp;amp;&amp;#39;"));
    row("white space", text(" a\tb\nc\rd\fe\u00a0"), text(" a\tb\nc\rd\fe\u00a0"));
    row("control characters", units({'a', 0, 1, 0x0b, 0x1b, 0x7f, 0x80, 0x9f, 'b'}),
        units({'a', 0xfffd, 0xfffd, 0xfffd, 0xfffd, 0xfffd, 0xfffd, 0xfffd, 'b'}));
}

void tst_HTMLUtils::escaped()
{
    QFETCH(QString, s);
    QTEST(HTMLUtils::escaped(s), "html");
}

/// Parsed by a reader of XML and HTML, in both contexts where text can be.
void tst_HTMLUtils::escapedReadByQt()
{
    const QString s = text("<b title=\"A\" lang='x'>&amp; &#65; é😀</b> ]]> --> </script>");
    QCOMPARE(HTMLUtils::formatHtmlToPlainText(HTMLUtils::escaped(s)), s);
    for (const char quote : {'"', '\''}) {
        const QString element = text("<a t=") + QLatin1Char(quote) + HTMLUtils::escaped(s)
            + QLatin1Char(quote) + text("/>");
        QXmlStreamReader reader(element);
        QVERIFY(reader.readNextStartElement());
        QCOMPARE(reader.attributes().value(QLatin1String("t")).toString(), s);
    }
}

void tst_HTMLUtils::htmlBRreplace_data()
{
    const auto row = columns<QString, QString>("s", "result");
    row("empty", QString(), QString());
    row("none", "a b", "a b");
    row("two", "a\nb\n", "a<br />b<br />");
    row("carriage return stays", "a\r\nb", "a\r<br />b");
}

void tst_HTMLUtils::htmlBRreplace()
{
    QFETCH(QString, s);
    HTMLUtils::htmlBRreplace(s);
    QTEST(s, "result");
}

void tst_HTMLUtils::htmlBRreplaceOfManyLines()
{
    const int count = 4 << 20;
    QString s(count, QLatin1Char('\n'));
    const QString shared = s;
    HTMLUtils::htmlBRreplace(s);
    QVERIFY(s == text("<br />").repeated(count));
    QVERIFY(shared == QString(count, QLatin1Char('\n')));
}

void tst_HTMLUtils::metaTags()
{
    QCOMPARE(HTMLUtils::formatHtmlMetaName(text("author"), text("A & \"B\"\nC")),
             text("<meta name=\"author\" content=\"A &#38; &#34;B&#34;&#10;C\"/>"));
    QCOMPARE(HTMLUtils::formatHtmlMetaHttpEqui(text("refresh"), text("5 <6>")),
             text("<meta http-equiv=\"refresh\" content=\"5 &#60;6&#62;\"/>"));
    // Deliberate: the name is not escaped.
    QCOMPARE(HTMLUtils::formatHtmlMetaName(text("a\"&<"), QString()),
             text("<meta name=\"a\"&<\" content=\"\"/>"));
    QCOMPARE(HTMLUtils::formatHtmlMetaHttpEqui(text("a\"&<"), QString()),
             text("<meta http-equiv=\"a\"&<\" content=\"\"/>"));
}

void tst_HTMLUtils::tiniestInlineGifImage()
{
    const QString uri = HTMLUtils::tiniestInlineGifImage();
    QCOMPARE(uri,
             text("data:image/gif;base64,R0lGODlhAQABAAAAACH5BAEKAAEALAAAAAABAAEAAAICTAEA"
                  "Ow=="));
    const QByteArray gif = QByteArray::fromBase64(uri.section(QLatin1Char(','), 1).toLatin1());
    const QImage image = QImage::fromData(gif, "GIF");
    QCOMPARE(image.size(), QSize(1, 1));
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
}

void tst_HTMLUtils::base64Images()
{
    QCOMPARE(HTMLUtils::base64ForSvgImageTagSource("<svg/>"),
             text("data:image/svg+xml;base64,PHN2Zy8+"));
    QCOMPARE(HTMLUtils::base64ForSvgImageTagSource(QByteArray()),
             text("data:image/svg+xml;base64,"));
    // Standard Base64, with "+", "/" and "=".
    QCOMPARE(HTMLUtils::base64ForImageTagSource(QByteArray::fromHex("fbefff00")),
             text("data:image;base64,++//AA=="));
}

void tst_HTMLUtils::cssWeightToQtWeight_data()
{
    const auto table = columns<int, int>("css", "qt");
    const auto row = [&](int css, int qt) { table(qPrintable(QString::number(css)), css, qt); };
    row(100, 0);
    row(200, 12);
    row(300, 25);
    row(400, 50);
    row(500, 57);
    row(600, 63);
    row(700, 75);
    row(800, 81);
    row(900, 87);
    for (const int other : {-100, 0, 1, 99, 101, 450, 899, 901, 1000})
        row(other, 50);
}

void tst_HTMLUtils::cssWeightToQtWeight()
{
    QFETCH(int, css);
    QTEST(HTMLUtils::cssWeightToQtWeight(css), "qt");
}

void tst_HTMLUtils::colorToCss_data()
{
    const auto table = columns<QColor, QString>("color", "css");
    const auto row = [&](const char* css, const QColor& color) { table(css, color, text(css)); };
    row("#ff0000", QColor(255, 0, 0));
    row("#0a0bff", QColor(10, 11, 255));
    row("#000000", QColor());
    row("#00ff00", QColor::fromHsv(120, 255, 255));
    row("rgba(255,0,0,0.5)", translucent(1, 0, 0, 0.5));
    row("rgba(1,2,3,0)", QColor(1, 2, 3, 0));
    row("rgba(0,0,0,0.1)", translucent(0, 0, 0, 0.1));
    row("rgba(0,0,0,0.25)", translucent(0, 0, 0, 0.25));
    row("rgba(0,0,0,0.125)", translucent(0, 0, 0, 0.125));
    row("rgba(0,0,0,0.333)", translucent(0, 0, 0, 0.333));
    row("rgba(0,0,0,0.999)", translucent(0, 0, 0, 0.999));
    row("rgba(0,0,0,0.333333)", translucent(0, 0, 0, 1.0 / 3)); // 21845 of 65535
    row("rgba(9,8,7,0.501961)", QColor(9, 8, 7, 128)); // 128 of 255
    row("rgba(9,8,7,0.996078)", QColor(9, 8, 7, 254)); // 254 of 255
    row("rgba(9,8,7,0.2)", QColor(9, 8, 7, 51)); // 51 of 255, exactly
    row("rgba(9,8,7,0.00392157)", QColor(9, 8, 7, 1)); // 1 of 255
    row("rgba(0,0,255,0.5)",
        QColor::fromHsvF(ColorFraction(240 / 360.0), 1, 1, ColorFraction(0.5)));
}

void tst_HTMLUtils::colorToCss()
{
    QFETCH(QColor, color);
    QTEST(HTMLUtils::colorToCss(color), "css");
}

void tst_HTMLUtils::colorToCssOfEachAlpha()
{
    // All decimals of up to three places are restored exactly.
    for (int thousandths = 0; thousandths < 1000; ++thousandths) {
        QColor color(1, 2, 3);
        color.setAlphaF(ColorFraction(thousandths / 1000.0));
        QCOMPARE(HTMLUtils::colorToCss(color), text("rgba(1,2,3,%1)").arg(thousandths / 1000.0));
    }
    // What is written restores each 8-bit alpha.
    for (int alpha = 0; alpha < 255; ++alpha) {
        const QString css = HTMLUtils::colorToCss(QColor(0, 0, 0, alpha));
        const QString string = css.mid(11, css.size() - 12);
        QCOMPARE(qRound(string.toDouble() * 255), alpha);
    }
}

QTEST_MAIN(tst_HTMLUtils)
#include "tst_HTMLUtils.moc"

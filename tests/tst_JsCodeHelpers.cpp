// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "JsCodeHelpers.h"

#include "HTMLUtils.h"
#include "LiteralRows.h"
#include "ScriptRunner.h"
#include "StreamedDocument.h"
#include "TextStreamUTF8.h"

#include <QJsonValue>
#include <QStandardPaths>
#include <QtTest>

namespace {

QString literal(const QVariant& value)
{
    return written([&](QTextStream* s) { JsCodeHelpers::formatVariantValue(s, value); });
}

} // namespace

class tst_JsCodeHelpers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void literals_data() { addLiteralRows(); }
    void literals();
    void keys_data() { addKeyRows(); }
    void keys();
    void arrays();
    void objects();
    void indentationDoesNotApply();
    void deepNesting();
    void largeDocumentsAreStreamed();
    void readByNode();
    void arraysAndObjectsReadByNode();
    void encodedTextsReadByNode();
    void quirksAsNodeReadsThem_data();
    void quirksAsNodeReadsThem();

private:
    /// What node makes of \a literal, as JSON; nothing where it is no JavaScript.
    QByteArray readAsJson(const QString& literal) const;

    QString mNode;
};

void tst_JsCodeHelpers::initTestCase()
{
    mNode = QStandardPaths::findExecutable(QStringLiteral("node"));
}

QByteArray tst_JsCodeHelpers::readAsJson(const QString& literal) const
{
    const ScriptResult result = runScript(
        mNode,
        "const value = " + literal.toUtf8() + ";\nprocess.stdout.write(JSON.stringify(value));\n");
    return result.exitCode == 0 ? result.output : QByteArray();
}

void tst_JsCodeHelpers::literals()
{
    QFETCH(QVariant, value);
    QFETCH(QString, literal);
    literal.replace(QStringLiteral("«"), QStringLiteral("{"));
    literal.replace(QStringLiteral("→"), QStringLiteral(":"));
    literal.replace(QStringLiteral("»"), QStringLiteral("}"));
    QCOMPARE(::literal(value), literal);
}

void tst_JsCodeHelpers::keys()
{
    QFETCH(QString, key);
    QFETCH(QString, literal);
    QCOMPARE(::literal(QVariantMap({{key, 1}})),
             QStringLiteral("{\n") + literal + QStringLiteral(":1\n}"));
}

void tst_JsCodeHelpers::arrays()
{
    const auto array = [](const auto& list) {
        return written([&](QTextStream* s) { JsCodeHelpers::formatJavascriptArray(s, list); });
    };
    QCOMPARE(array(QStringList()), text("[]"));
    QCOMPARE(array(QStringList({text("a"), text("it's \"b\""), QString()})),
             text("['a','it\\'s \\'b\\'','']"));
    QCOMPARE(array(QList<int>()), text("[]"));
    QCOMPARE(array(QList<int>({-1, 0, 2147483647})), text("[-1,0,2147483647]"));
    QCOMPARE(array(QVariantList()), text("[]"));
    QCOMPARE(array(QVariantList({true, text("x"), QVariant(QVariantList({2, 3})), 4})),
             text("[1,'x',[2,3]\n,4]"));
}

void tst_JsCodeHelpers::objects()
{
    const auto object = [](const QVariantMap& values) {
        return written([&](QTextStream* s) { JsCodeHelpers::formatJavascriptObject(s, values); });
    };
    QCOMPARE(object({}), text("{\n\n}"));
    QCOMPARE(object({{text("b"), 2}, {text("a"), text("x")}, {text("10"), true}}),
             text("{\n10:1,'a':'x','b':2\n}"));
    QCOMPARE(object({{text("m"), QVariantMap({{text("k"), QVariantMap()}})}}),
             text("{\n'm':{\n'k':{\n\n}\n}\n}"));
}

void tst_JsCodeHelpers::indentationDoesNotApply()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.incrementIndent();
    stream << text("a\n");
    JsCodeHelpers::formatJavascriptObject(&stream, QVariantMap({{text("k"), text("é")}}));
    stream << text("c");
    QCOMPARE(result, text("  a\n{\n'k':'é'\n}  c"));
}

void tst_JsCodeHelpers::deepNesting()
{
    const int depth = 2000;
    QVariant value(QVariantMap{});
    for (int i = 1; i < depth; ++i)
        value = QVariantMap({{text("k"), value}});
    const QString written = literal(value);
    QCOMPARE(written,
             text("{\n'k':").repeated(depth - 1) + text("{\n") + text("\n}").repeated(depth));
}

void tst_JsCodeHelpers::largeDocumentsAreStreamed()
{
    const QVariantMap map{{text("k"), listOfSize(64 << 20)}};
    CountingDevice device;
    TextStreamUTF8 stream(&device);
    const qint64 before = peakMemory();
    JsCodeHelpers::formatJavascriptObject(&stream, map);
    // All but the last bit is with the device, though nothing was flushed.
    QVERIFY(device.total() > (64 << 20) - 65536);
    QVERIFY(device.largest() <= 65536);
    if (before >= 0)
        QVERIFY(peakMemory() - before < 4096); // KiB, for a document of 64 MiB
}

void tst_JsCodeHelpers::readByNode()
{
    if (mNode.isEmpty())
        QSKIP("node is not installed");
    QVariantMap expected = faithfulValues();
    const QByteArray json = readAsJson(literal(expected));
    expected.insert(text("byte array"), text("code"));
    QCOMPARE(valueOfJson(json), QJsonValue::fromVariant(expected));
}

void tst_JsCodeHelpers::arraysAndObjectsReadByNode()
{
    if (mNode.isEmpty())
        QSKIP("node is not installed");
    const QString array = written([](QTextStream* s) {
        *s << '[';
        JsCodeHelpers::formatJavascriptArray(s, QStringList({text("é"), text("'")}));
        *s << ',';
        JsCodeHelpers::formatJavascriptArray(s, QList<int>({1, -2}));
        *s << ',';
        JsCodeHelpers::formatJavascriptArray(s, QVariantList({QVariant(QVariantList({1})), 2.5}));
        *s << ',';
        JsCodeHelpers::formatJavascriptObject(s, QVariantMap({{text("7"), text("seven")}}));
        *s << ']';
    });
    QCOMPARE(readAsJson(array), QByteArray("[[\"é\",\"'\"],[1,-2],[[1],2.5],{\"7\":\"seven\"}]"));
}

/// Texts encoded for JavaScript keep every character when they are written as values.
void tst_JsCodeHelpers::encodedTextsReadByNode()
{
    if (mNode.isEmpty())
        QSKIP("node is not installed");
    QString all;
    for (int code = 0; code < 0x3000; ++code)
        all += QChar(code);
    all += text("😀");
    const QByteArray json = readAsJson(literal(HTMLUtils::encodeToJavascriptText(all)));
    QCOMPARE(valueOfJson(json).toString(), all);
}

/// Deliberate: these values are not what went in.
void tst_JsCodeHelpers::quirksAsNodeReadsThem_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("json"); // empty where node does not read it at all
    QTest::newRow("double quotes become single")
        << QVariant(text("say \"hi\"")) << QByteArray("\"say 'hi'\"");
    QTest::newRow("true becomes 1") << QVariant(true) << QByteArray("1");
    QTest::newRow("false becomes 0") << QVariant(false) << QByteArray("0");
    QTest::newRow("a backslash begins an escape sequence")
        << QVariant(text("C:\\new\\dir")) << QByteArray("\"C:\\newdir\"");
    QTest::newRow("a backslash at the end leaves the text open")
        << QVariant(text("C:\\")) << QByteArray();
    QTest::newRow("a line break leaves the text open") << QVariant(text("a\nb")) << QByteArray();
    QTest::newRow("six digits") << QVariant(1234567.0) << QByteArray("1234570");
    QTest::newRow("more than 53 bits")
        << QVariant(Q_INT64_C(9007199254740993)) << QByteArray("9007199254740992");
    QTest::newRow("unsigned becomes text") << QVariant(7u) << QByteArray("\"7\"");
    QTest::newRow("nothing becomes an empty text") << QVariant() << QByteArray("\"\"");
    QTest::newRow("code is run") << QVariant(QByteArray("'x'.toUpperCase() + (1 + 2)"))
                                 << QByteArray("\"X3\"");
    QTest::newRow("keys become numbers")
        << QVariant(QVariantMap({{text("007"), text("x")}})) << QByteArray("{\"7\":\"x\"}");
    QTest::newRow("a negative number is no key")
        << QVariant(QVariantMap({{text("-3"), text("x")}})) << QByteArray();
}

void tst_JsCodeHelpers::quirksAsNodeReadsThem()
{
    if (mNode.isEmpty())
        QSKIP("node is not installed");
    QFETCH(QVariant, value);
    QTEST(readAsJson(literal(value)), "json");
}

QTEST_GUILESS_MAIN(tst_JsCodeHelpers)
#include "tst_JsCodeHelpers.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "LiteralTest.h"

#include "ScriptRunner.h"
#include "StreamedDocument.h"
#include "Text.h"
#include "TextStreamUTF8.h"

#include <QDateTime>
#include <QJsonValue>
#include <QStandardPaths>
#include <QThread>
#include <QUrl>
#include <QtTest>

#include <functional>
#include <limits>

namespace {

/// Values that a reader of either language returns unchanged, except for the byte array, which is
/// code with the value "code".
QVariantMap faithfulValues()
{
    return QVariantMap({
        {text("plain"), text("plain text")},
        {text("empty"), QString()},
        {text("apostrophes"), text("'it''s'")},
        {text("accents"), text("L'été à Ærø coûte 5 €, 日本 😀")},
        {text("markup"), text("<b>$name</b> {$a} ${b} `c` <?php ?> // /* #")},
        {text("int"), -42},
        {text("zero"), 0},
        {text("long"), Q_INT64_C(9007199254740991)},
        {text("double"), 0.125},
        {text("large"), 1.5e300},
        {text("small"), -2.5e-7},
        {text("texts"), QStringList({text("a"), QString()})},
        {text("no texts"), QStringList()},
        {text("list"),
         QVariantList({1, QVariant(QVariantList({2.5, QVariant(QVariantList())})), text("x")})},
        {text("map"),
         QVariantMap({{text("10"), text("ten")}, {text("it's"), QVariantMap({{text("k"), 1}})}})},
        {text("byte array"), QByteArray("'code'")},
    });
}

/// A list nested \a depth deep, or a map.
QVariant nestedValue(bool isMap, int depth)
{
    QVariant value = isMap ? QVariant(QVariantMap()) : QVariant(QVariantList());
    for (int i = 1; i < depth; ++i)
        value =
            isMap ? QVariant(QVariantMap({{text("k"), value}})) : QVariant(QVariantList({value}));
    return value;
}

/// The literal of nestedValue().
QString nestedLiteral(bool isMap, int depth)
{
    if (isMap)
        return text("«\n'k'→").repeated(depth - 1) + text("«\n") + text("\n»").repeated(depth);
    return text("[").repeated(depth) + text("]\n").repeated(depth);
}

struct FunctionThread : QThread
{
    std::function<void()> function;
    void run() override { function(); }
};

} // namespace

LiteralTest::LiteralTest(const LiteralLanguage& language)
    : mLanguage(language)
{ }

// Shared by the tests of both languages

QString LiteralTest::literal(const QVariant& value) const
{
    return written([&](QTextStream* stream) { mLanguage.formatValue(stream, value); });
}

QString LiteralTest::inLanguage(const QString& utf8) const
{
    return QString(utf8)
        .replace(text("«"), text(mLanguage.mapStart))
        .replace(text("→"), text(mLanguage.keyEnd))
        .replace(text("»"), text(mLanguage.mapEnd));
}

QByteArray LiteralTest::readAsJson(const QString& literal) const
{
    const ScriptResult result = runScript(mInterpreter, scriptFor(literal.toUtf8()));
    return result.exitCode == 0 ? result.output : QByteArray();
}

void LiteralTest::addQuirkRows()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("json"); // empty where the interpreter does not accept the literal
    QTest::newRow("double quotes become single")
        << QVariant(text("say \"hi\"")) << QByteArray("\"say 'hi'\"");
    QTest::newRow("true becomes 1") << QVariant(true) << QByteArray("1");
    QTest::newRow("false becomes 0") << QVariant(false) << QByteArray("0");
    QTest::newRow("a backslash at the end leaves the text open")
        << QVariant(text("C:\\")) << QByteArray();
    QTest::newRow("six digits") << QVariant(1234567.0) << QByteArray("1234570");
    QTest::newRow("a whole double becomes an int") << QVariant(3.0) << QByteArray("3");
    QTest::newRow("unsigned becomes text") << QVariant(7u) << QByteArray("\"7\"");
    QTest::newRow("nothing becomes an empty text") << QVariant() << QByteArray("\"\"");
    QTest::newRow("code is run") << QVariant(QByteArray("(1 + 2)")) << QByteArray("3");
    QTest::newRow("keys become numbers")
        << QVariant(QVariantMap({{text("007"), text("x")}})) << QByteArray("{\"7\":\"x\"}");
}

void LiteralTest::compareQuirks() const
{
    if (mInterpreter.isEmpty())
        QSKIP("the interpreter is not installed");
    QFETCH(QVariant, value);
    QTEST(readAsJson(literal(value)), "json");
}

// Literals

void LiteralTest::initTestCase()
{
    mInterpreter = QStandardPaths::findExecutable(text(mLanguage.interpreter));
}

void LiteralTest::literals_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("literal");
    const auto row = [](const char* name, const QVariant& value, const char* literal) {
        QTest::newRow(name) << value << text(literal);
    };
    // Raw code.
    row("byte array", QByteArray("time() + 1"), "time() + 1");
    row("byte array with quotes", QByteArray("'a\"b\\'"), "'a\"b\\'");
    row("byte array in UTF-8", QByteArray("\"\xc3\xa9\""), "\"é\"");
    row("empty byte array", QByteArray(), "");
    // Texts.
    row("text", text("plain"), "'plain'");
    row("empty text", QString(), "''");
    row("apostrophe", text("it's"), "'it\\'s'");
    row("double quotes become single", text("say \"hi\""), "'say \\'hi\\''");
    row("quotes alone", text("'\"'\""), "'\\'\\'\\'\\''");
    row("backslashes stay", text("C:\\new\\"), "'C:\\new\\'");
    row("backslash and quote", text("\\'"), "'\\\\''");
    row("line break stays", text("a\nb\t"), "'a\nb\t'");
    row("accents", text("été € 日本 😀"), "'été € 日本 😀'");
    row("dollar", text("$name"), "'$name'");
    // Numbers and booleans.
    row("true", true, "1");
    row("false", false, "0");
    row("3.0", 3.0, "3");
    row("0.1", 0.1, "0.1");
    row("2.5", 2.5, "2.5");
    row("six digits", 123456.0, "123456");
    row("seven digits", 1234567.0, "1.23457e+06");
    row("many decimals", 3.14159265, "3.14159");
    row("small", 0.0001, "0.0001");
    row("very small", 0.00001, "1e-05");
    row("negative", -1.5, "-1.5");
    row("zero", 0.0, "0");
    row("int", 42, "42");
    row("negative int", -42, "-42");
    row("least int", std::numeric_limits<int>::min(), "-2147483648");
    row("long long", Q_INT64_C(9007199254740993), "9007199254740993");
    row("least long long", std::numeric_limits<qint64>::min(), "-9223372036854775808");
    row("greatest long long", std::numeric_limits<qint64>::max(), "9223372036854775807");
    // Lists.
    row("list of texts", QStringList({text("a"), text("b'\"")}), "['a','b\\'\\'']");
    row("empty list of texts", QStringList(), "[]");
    row("list", QVariantList({1, text("x"), 2.5}), "[1,'x',2.5]\n");
    row("empty list", QVariantList(), "[]\n");
    row("boolean in a list", QVariantList{true}, "[1]\n");
    row("list in a list", QVariantList({QVariant(QVariantList({1, 2})), 3}), "[[1,2]\n,3]\n");
    row("texts in a list", QVariantList({QVariant(QStringList({text("a")})), 3}), "[['a'],3]\n");
    // Maps.
    row("empty map", QVariantMap(), "«\n\n»");
    row("map", QVariantMap({{text("b"), 2}, {text("a"), text("x")}, {text("10"), true}}),
        "«\n10→1,'a'→'x','b'→2\n»");
    row("map in a map", QVariantMap({{text("m"), QVariantMap({{text("k"), 1}})}, {text("n"), 2}}),
        "«\n'm'→«\n'k'→1\n»,'n'→2\n»");
    row("list in a map", QVariantMap({{text("l"), QVariantList({1, 2})}}), "«\n'l'→[1,2]\n\n»");
    row("texts in a map", QVariantMap({{text("l"), QStringList({text("a")})}}), "«\n'l'→['a']\n»");
    row("map in a list", QVariantList({QVariantMap({{text("k"), QString()}})}), "[«\n'k'→''\n»]\n");
    // Everything else is written as text.
    row("unsigned int", 7u, "'7'");
    row("unsigned long long", Q_UINT64_C(18446744073709551615), "'18446744073709551615'");
    row("float", 2.5f, "'2.5'");
    row("short", QVariant::fromValue<short>(7), "'7'");
    row("character", QChar(u'\''), "'\\''");
    row("date", QDate(2001, 2, 3), "'2001-02-03'");
    row("time", QTime(4, 5, 6), "'04:05:06.000'");
    row("address", QUrl(text("http://a/'")), "'http://a/\\''");
    row("hash", QVariantHash({{text("k"), 1}}), "''");
    row("invalid", QVariant(), "''");
}

void LiteralTest::literals()
{
    QFETCH(QVariant, value);
    QFETCH(QString, literal);
    QCOMPARE(this->literal(value), inLanguage(literal));
}

void LiteralTest::keys_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("literal");
    const auto row = [](const char* key, const char* literal) {
        QTest::newRow(*key ? key : "empty") << text(key) << text(literal);
    };
    row("name", "'name'");
    row("", "''");
    row("it's", "'it\\'s'");
    row("a\"b", "'a\\'b'");
    row("été", "'été'");
    row("_", "'_'");
    row("a1", "'a1'");
    // Text that holds a decimal integer, in any spelling, becomes that number.
    row("0", "0");
    row("10", "10");
    row("007", "7");
    row("-3", "-3");
    row("+5", "5");
    row(" 5 ", "5");
    row("-0", "0");
    row("9223372036854775807", "9223372036854775807");
    row("-9223372036854775808", "-9223372036854775808");
    row("9223372036854775808", "'9223372036854775808'");
    row("1.5", "'1.5'");
    row("1e3", "'1e3'");
    row("0x10", "'0x10'");
    row("12a", "'12a'");
    row("1 2", "'1 2'");
    row("1,000", "'1,000'");
    row("-", "'-'");
    row("٣", "'٣'");
}

void LiteralTest::keys()
{
    QFETCH(QString, key);
    QFETCH(QString, literal);
    QCOMPARE(this->literal(QVariantMap({{key, 1}})),
             inLanguage(text("«\n") + literal + text("→1\n»")));
}

void LiteralTest::arrays()
{
    const auto texts = [this](const QStringList& list) {
        return written([&](QTextStream* stream) { mLanguage.formatTexts(stream, list); });
    };
    QCOMPARE(texts({}), text("[]"));
    QCOMPARE(texts({text("a")}), text("['a']"));
    QCOMPARE(texts({text("a"), text("it's \"b\""), QString()}), text("['a','it\\'s \\'b\\'','']"));

    const auto numbers = [this](const QList<int>& list) {
        return written([&](QTextStream* stream) { mLanguage.formatNumbers(stream, list); });
    };
    QCOMPARE(numbers({}), text("[]"));
    QCOMPARE(numbers({3}), text("[3]"));
    QCOMPARE(numbers({-1, 0, 2147483647}), text("[-1,0,2147483647]"));

    const auto values = [this](const QVariantList& list) {
        return written([&](QTextStream* stream) { mLanguage.formatList(stream, list); });
    };
    QCOMPARE(values({}), text("[]"));
    QCOMPARE(values({true}), text("[1]"));
    // There is no line break after the outer list, but one after each inner list.
    QCOMPARE(values({1, text("x"), QVariant(QVariantList({2, 3})), 4}), text("[1,'x',[2,3]\n,4]"));
}

void LiteralTest::maps()
{
    const auto map = [this](const QVariantMap& values) {
        return written([&](QTextStream* stream) { mLanguage.formatMap(stream, values); });
    };
    QCOMPARE(map({}), inLanguage(text("«\n\n»")));
    QCOMPARE(map({{text("b"), 2}, {text("a"), text("x")}, {text("10"), true}}),
             inLanguage(text("«\n10→1,'a'→'x','b'→2\n»")));
    // Keys sort as texts: "10" before "9", capitals before small letters.
    QCOMPARE(map({{text("a"), 1}, {text("B"), 2}, {text("9"), 3}, {text("10"), 4}}),
             inLanguage(text("«\n10→4,9→3,'B'→2,'a'→1\n»")));
    QCOMPARE(map({{text("m"), QVariantMap({{text("k"), QVariantMap()}})}}),
             inLanguage(text("«\n'm'→«\n'k'→«\n\n»\n»\n»")));
}

// The stream

/// Checks the text around the end of a block of the writer.
void LiteralTest::blocksMeetAnywhere()
{
    for (int size = 4080; size <= 4100; ++size) {
        const QString filler(size, QLatin1Char('x'));
        const QString quoted = QLatin1Char('\'') + filler;
        QCOMPARE(literal(filler + text("'\"é'\"")), quoted + text("\\'\\'é\\'\\''"));
        QCOMPARE(literal(filler.toUtf8() + "'12'"), filler + text("'12'"));
        QCOMPARE(literal(QVariantList({filler, 123456, 0.5, QVariantMap({{text("7"), 8}})})),
                 text("[") + quoted + inLanguage(text("',123456,0.5,«\n7→8\n»]\n")));
    }
    const QString quotes(10000, QLatin1Char('"'));
    QCOMPARE(literal(quotes), text("'") + text("\\'").repeated(10000) + text("'"));
}

void LiteralTest::streamIsLeftAsItWas()
{
    QString result;
    QTextStream stream(&result);
    stream.setFieldWidth(4);
    stream.setPadChar(QLatin1Char('.'));
    stream.setIntegerBase(16);
    stream.setNumberFlags(QTextStream::ShowBase);
    mLanguage.formatValue(&stream, QVariantList({10, text("a")}));
    QCOMPARE(result, text("[10,'a']\n"));
    QCOMPARE(stream.fieldWidth(), 4);
    stream << QLatin1Char('x');
    QCOMPARE(result, text("[10,'a']\n...x"));
}

void LiteralTest::indentationDoesNotApply()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.incrementIndent();
    stream << text("a\n");
    mLanguage.formatMap(&stream, QVariantMap({{text("k"), text("é\nb")}}));
    stream << text("c");
    QCOMPARE(result, inLanguage(text("  a\n«\n'k'→'é\nb'\n»  c")));
}

void LiteralTest::deepNesting_data()
{
    QTest::addColumn<bool>("isMap");
    QTest::newRow("lists") << false;
    QTest::newRow("maps") << true;
}

void LiteralTest::deepNesting()
{
    QFETCH(bool, isMap);
    QCOMPARE(literal(nestedValue(isMap, 2000)), inLanguage(nestedLiteral(isMap, 2000)));
}

/// Deep nesting does not use more of the stack.
void LiteralTest::deepNestingOnASmallStack()
{
    QFETCH(bool, isMap);
    const QVariant value = nestedValue(isMap, 5000);
    FunctionThread thread;
    thread.setStackSize(256 * 1024);
    QString result;
    thread.function = [&] { result = literal(value); };
    thread.start();
    QVERIFY(thread.wait());
    QCOMPARE(result, inLanguage(nestedLiteral(isMap, 5000)));
}

/// Deliberate: bytes are read as a C string.
void LiteralTest::codeEndsAtANul()
{
    QCOMPARE(literal(QByteArray("a\0b", 3)), text("a"));
    QCOMPARE(literal(QVariantList({QByteArray("\0", 1), 1})), text("[,1]\n"));
    // A QString does not end at a NUL.
    QCOMPARE(literal(QString(QLatin1String("a\0b", 3))), QString(QLatin1String("'a\0b'", 5)));
}

void LiteralTest::largeDocumentsAreStreamed_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("list") << QVariant(listOfSize(64 << 20));
    QTest::newRow("map") << QVariant(QVariantMap({{text("k"), listOfSize(64 << 20)}}));
    QTest::newRow("text") << QVariant(QString(8 << 20, QLatin1Char('"')));
    QTest::newRow("code") << QVariant(QByteArray(8 << 20, 'x'));
}

void LiteralTest::largeDocumentsAreStreamed()
{
    QFETCH(QVariant, value);
    const bool isList =
        value.userType() != QMetaType::QString && value.userType() != QMetaType::QByteArray;
    CountingDevice device;
    TextStreamUTF8 stream(&device);
    const qint64 before = peakMemory();
    mLanguage.formatValue(&stream, value);
    // All but the last bit has reached the device, although nothing was flushed.
    QVERIFY(device.total() > (isList ? 64 << 20 : 8 << 20) - 65536);
    QVERIFY(device.largest() <= 65536);
    if (before >= 0 && isList)
        QVERIFY(peakMemory() - before < 4096); // KiB, for a document of 64 MiB
}

// Read by the interpreter

void LiteralTest::faithfulValuesAreReadBack()
{
    if (mInterpreter.isEmpty())
        QSKIP("the interpreter is not installed");
    QVariantMap expected = faithfulValues();
    const QByteArray json = readAsJson(literal(expected));
    expected.insert(text("byte array"), text("code"));
    QCOMPARE(valueOfJson(json), QJsonValue::fromVariant(expected));
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PhpCodeHelpers.h"

#include "LiteralRows.h"
#include "ScriptRunner.h"
#include "StreamedDocument.h"
#include "TextStreamUTF8.h"

#include <QBuffer>
#include <QJsonValue>
#include <QStandardPaths>
#include <QtTest>

namespace {

QString literal(const QVariant& value)
{
    return written([&](QTextStream* s) { PhpCodeHelpers::formatVariantValue(s, value); });
}

} // namespace

class tst_PhpCodeHelpers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void literals_data() { addLiteralRows(); }
    void literals();
    void keys_data() { addKeyRows(); }
    void keys();
    void arrays();
    void maps();
    void hashes();
    void constants_data();
    void constants();
    void namedArraysAndMaps();
    void classOfConstants();
    void blocksMeetAnywhere();
    void streamIsLeftAsItWas();
    void indentationDoesNotApply();
    void deepNesting();
    void largeDocumentsAreStreamed_data();
    void largeDocumentsAreStreamed();
    void readByPhp();
    void declarationsReadByPhp();
    void quirksAsPhpReadsThem_data();
    void quirksAsPhpReadsThem();
    void lastBackslashLeavesTheTextOpen();

private:
    /// What PHP makes of \a literal, as JSON; nothing where it is no PHP.
    QByteArray readAsJson(const QString& literal) const;

    QString mPhp;
};

void tst_PhpCodeHelpers::initTestCase()
{
    mPhp = QStandardPaths::findExecutable(QStringLiteral("php"));
}

QByteArray tst_PhpCodeHelpers::readAsJson(const QString& literal) const
{
    const ScriptResult result =
        runScript(mPhp, "<?php echo json_encode(" + literal.toUtf8() + ", JSON_THROW_ON_ERROR);");
    return result.exitCode == 0 ? result.output : QByteArray();
}

void tst_PhpCodeHelpers::literals()
{
    QFETCH(QVariant, value);
    QFETCH(QString, literal);
    literal.replace(QStringLiteral("«"), QStringLiteral("["));
    literal.replace(QStringLiteral("→"), QStringLiteral("=>"));
    literal.replace(QStringLiteral("»"), QStringLiteral("]"));
    QCOMPARE(::literal(value), literal);
}

void tst_PhpCodeHelpers::keys()
{
    QFETCH(QString, key);
    QFETCH(QString, literal);
    QCOMPARE(::literal(QVariantMap({{key, 1}})),
             QStringLiteral("[\n") + literal + QStringLiteral("=>1\n]"));
}

void tst_PhpCodeHelpers::arrays()
{
    const auto array = [](const auto& list) {
        return written([&](QTextStream* s) { PhpCodeHelpers::formatPhpArray(s, list); });
    };
    QCOMPARE(array(QStringList()), text("[]"));
    QCOMPARE(array(QStringList({text("a")})), text("['a']"));
    QCOMPARE(array(QStringList({text("a"), text("it's \"b\""), QString()})),
             text("['a','it\\'s \\'b\\'','']"));
    QCOMPARE(array(QList<int>()), text("[]"));
    QCOMPARE(array(QList<int>({3})), text("[3]"));
    QCOMPARE(array(QList<int>({-1, 0, 2147483647})), text("[-1,0,2147483647]"));
    QCOMPARE(array(QVariantList()), text("[]"));
    QCOMPARE(array(QVariantList({true})), text("[1]"));
    // No line break behind the outer list, one behind each inner one.
    QCOMPARE(array(QVariantList({1, text("x"), QVariant(QVariantList({2, 3})), 4})),
             text("[1,'x',[2,3]\n,4]"));
}

void tst_PhpCodeHelpers::maps()
{
    const auto map = [](const QVariantMap& values) {
        return written([&](QTextStream* s) { PhpCodeHelpers::formatPhpMap(s, values); });
    };
    QCOMPARE(map({}), text("[\n\n]"));
    QCOMPARE(map({{text("b"), 2}, {text("a"), text("x")}, {text("10"), true}}),
             text("[\n10=>1,'a'=>'x','b'=>2\n]"));
    // Keys sort as texts: "10" before "9", capitals before small letters.
    QCOMPARE(map({{text("a"), 1}, {text("B"), 2}, {text("9"), 3}, {text("10"), 4}}),
             text("[\n10=>4,9=>3,'B'=>2,'a'=>1\n]"));
}

void tst_PhpCodeHelpers::hashes()
{
    const auto map = [](const QVariantHash& values) {
        return written([&](QTextStream* s) { PhpCodeHelpers::formatPhpMap(s, values); });
    };
    QCOMPARE(map({}), text("[\n\n]"));
    QCOMPARE(map({{text("it's"), 1}}), text("[\n'it\\'s'=>1\n]"));
    QVariantHash hash;
    for (int i = 0; i < 20; ++i)
        hash.insert(QString::number(i), i);
    QStringList entries;
    for (auto entry = hash.constBegin(); entry != hash.constEnd(); ++entry)
        entries.append(entry.key() + QLatin1String("=>") + entry.key());
    QCOMPARE(map(hash), text("[\n") + entries.join(QLatin1Char(',')) + text("\n]"));
}

void tst_PhpCodeHelpers::constants_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("comment");
    QTest::addColumn<QString>("line");
    QTest::newRow("number") << QVariant(3) << QString() << text("const NAME=3;\n");
    QTest::newRow("comment") << QVariant(3) << text("x") << text("const NAME=3; // x\n");
    QTest::newRow("text") << QVariant(text("l'été")) << QString()
                          << text("const NAME='l\\'été';\n");
    QTest::newRow("boolean") << QVariant(false) << text("no") << text("const NAME=0; // no\n");
    QTest::newRow("list") << QVariant(QVariantList({1})) << text("c")
                          << text("const NAME=[1]\n; // c\n");
    QTest::newRow("map") << QVariant(QVariantMap({{text("k"), 1}})) << QString()
                         << text("const NAME=[\n'k'=>1\n];\n");
    QTest::newRow("code") << QVariant(QByteArray("self::A . 'b'")) << QString()
                          << text("const NAME=self::A . 'b';\n");
}

void tst_PhpCodeHelpers::constants()
{
    QFETCH(QVariant, value);
    QFETCH(QString, comment);
    QFETCH(QString, line);
    QCOMPARE(written([&](QTextStream* s) {
                 PhpCodeHelpers::writeConstant(s, text("NAME"), value, comment);
             }),
             line);
    if (comment.isEmpty()) {
        QCOMPARE(
            written([&](QTextStream* s) { PhpCodeHelpers::writeConstant(s, text("NAME"), value); }),
            line);
    }
}

void tst_PhpCodeHelpers::namedArraysAndMaps()
{
    const auto array = [](const auto& list) {
        return written(
            [&](QTextStream* s) { PhpCodeHelpers::writePhpArray(s, text("NAME"), list); });
    };
    QCOMPARE(array(QList<int>({1, 2})), text("const NAME=[1,2];\n"));
    QCOMPARE(array(QList<int>()), text("const NAME=[];\n"));
    QCOMPARE(array(QStringList({text("a"), text("b")})), text("const NAME=['a','b'];\n"));
    QCOMPARE(array(QVariantList({1, text("a"), QVariant(QVariantList({2}))})),
             text("const NAME=[1,'a',[2]\n];\n"));
    const auto map = [](const QVariantMap& values) {
        return written(
            [&](QTextStream* s) { PhpCodeHelpers::writePhpMap(s, text("NAME"), values); });
    };
    QCOMPARE(map({}), text("const NAME=[\n\n];\n"));
    QCOMPARE(map({{text("a"), 1}, {text("2"), text("x")}}),
             text("const NAME=[\n2=>'x','a'=>1\n];\n"));
}

void tst_PhpCodeHelpers::classOfConstants()
{
    const auto classOf = [](const QVariantMap& values) {
        return written([&](QTextStream* s) {
            PhpCodeHelpers::writePhpMapAsClassOfConstants(s, text("Config"), values);
        });
    };
    QCOMPARE(classOf({}), text("\nclass Config\n{\n}\n"));
    QCOMPARE(classOf({{text("B"), text("x")}, {text("A"), 1}, {text("C"), QVariantList({1})}}),
             text("\nclass Config\n{\nconst A=1;\nconst B='x';\nconst C=[1]\n;\n}\n"));
    // The keys are not looked at.
    QCOMPARE(classOf({{text("10"), 1}, {text("a b"), 2}}),
             text("\nclass Config\n{\nconst 10=1;\nconst a b=2;\n}\n"));
}

/// Whatever stands where one block of the writer ends and the next begins.
void tst_PhpCodeHelpers::blocksMeetAnywhere()
{
    for (int size = 4080; size <= 4100; ++size) {
        const QString filler(size, QLatin1Char('x'));
        const QString quoted = QLatin1Char('\'') + filler;
        QCOMPARE(literal(filler + text("'\"é'\"")), quoted + text("\\'\\'é\\'\\''"));
        QCOMPARE(literal(filler.toUtf8() + "'12'"), filler + text("'12'"));
        QCOMPARE(literal(QVariantList({filler, 123456, 0.5, QVariantMap({{text("7"), 8}})})),
                 text("[") + quoted + text("',123456,0.5,[\n7=>8\n]]\n"));
    }
    const QString quotes(10000, QLatin1Char('"'));
    QCOMPARE(literal(quotes), text("'") + text("\\'").repeated(10000) + text("'"));
}

void tst_PhpCodeHelpers::streamIsLeftAsItWas()
{
    QString result;
    QTextStream stream(&result);
    stream.setFieldWidth(4);
    stream.setPadChar(QLatin1Char('.'));
    stream.setIntegerBase(16);
    stream.setNumberFlags(QTextStream::ShowBase);
    PhpCodeHelpers::formatVariantValue(&stream, QVariantList({10, text("a")}));
    QCOMPARE(result, text("[10,'a']\n"));
    QCOMPARE(stream.fieldWidth(), 4);
    stream << QLatin1Char('x');
    QCOMPARE(result, text("[10,'a']\n...x"));
}

void tst_PhpCodeHelpers::indentationDoesNotApply()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.incrementIndent();
    stream << text("a\n");
    PhpCodeHelpers::formatPhpMap(&stream, QVariantMap({{text("k"), text("é\nb")}}));
    stream << text("c");
    QCOMPARE(result, text("  a\n[\n'k'=>'é\nb'\n]  c"));
}

void tst_PhpCodeHelpers::deepNesting()
{
    const int depth = 2000;
    QVariant value(QVariantList{});
    for (int i = 1; i < depth; ++i)
        value = QVariantList({value});
    QCOMPARE(literal(value), QString(depth, QLatin1Char('[')) + text("]\n").repeated(depth));
}

void tst_PhpCodeHelpers::largeDocumentsAreStreamed_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("list") << QVariant(listOfSize(64 << 20));
    QTest::newRow("map") << QVariant(QVariantMap({{text("k"), listOfSize(64 << 20)}}));
    QTest::newRow("text") << QVariant(QString(8 << 20, QLatin1Char('"')));
    QTest::newRow("code") << QVariant(QByteArray(8 << 20, 'x'));
}

void tst_PhpCodeHelpers::largeDocumentsAreStreamed()
{
    QFETCH(QVariant, value);
    const bool isList =
        value.userType() != QMetaType::QString && value.userType() != QMetaType::QByteArray;
    CountingDevice device;
    TextStreamUTF8 stream(&device);
    const qint64 before = peakMemory();
    PhpCodeHelpers::formatVariantValue(&stream, value);
    // All but the last bit is with the device, though nothing was flushed.
    QVERIFY(device.total() > (isList ? 64 << 20 : 8 << 20) - 65536);
    QVERIFY(device.largest() <= 65536);
    if (before >= 0 && isList)
        QVERIFY(peakMemory() - before < 4096); // KiB, for a document of 64 MiB
}

void tst_PhpCodeHelpers::readByPhp()
{
    if (mPhp.isEmpty())
        QSKIP("php is not installed");
    QVariantMap expected = faithfulValues();
    // PHP keeps line breaks in a text.
    expected.insert(text("lines"), text("a\nb\r\n\tc"));
    const QByteArray json = readAsJson(literal(expected));
    expected.insert(text("byte array"), text("code"));
    QCOMPARE(valueOfJson(json), QJsonValue::fromVariant(expected));
}

void tst_PhpCodeHelpers::declarationsReadByPhp()
{
    if (mPhp.isEmpty())
        QSKIP("php is not installed");
    QBuffer script;
    QVERIFY(script.open(QIODevice::WriteOnly));
    {
        TextStreamUTF8 stream(&script);
        stream << text("<?php\n");
        PhpCodeHelpers::writeConstant(&stream, text("TITLE"), text("L'été"), text("a comment"));
        PhpCodeHelpers::writePhpArray(&stream, text("NUMBERS"), QList<int>({1, -2}));
        PhpCodeHelpers::writePhpArray(&stream, text("TEXTS"), QStringList({text("a"), text("'")}));
        PhpCodeHelpers::writePhpArray(&stream, text("VALUES"),
                                      QVariantList({1.5, QVariant(QVariantList({text("x")}))}));
        PhpCodeHelpers::writePhpMap(&stream, text("MAP"),
                                    QVariantMap({{text("7"), text("seven")}}));
        PhpCodeHelpers::writePhpMapAsClassOfConstants(
            &stream, text("Config"),
            QVariantMap({{text("LEVEL"), 3}, {text("NAMES"), QStringList({text("é")})}}));
        stream << text("echo json_encode([TITLE, NUMBERS, TEXTS, VALUES, MAP, Config::LEVEL, "
                       "Config::NAMES]);");
    }
    const ScriptResult result = runScript(mPhp, script.data());
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
    const QVariantList expected{text("L'été"),
                                QVariant(QVariantList({1, -2})),
                                QVariant(QStringList({text("a"), text("'")})),
                                QVariant(QVariantList({1.5, QVariant(QVariantList({text("x")}))})),
                                QVariantMap({{text("7"), text("seven")}}),
                                3,
                                QVariant(QStringList({text("é")}))};
    QCOMPARE(valueOfJson(result.output), QJsonValue::fromVariant(expected));
}

/// Deliberate: these values are not what went in.
void tst_PhpCodeHelpers::quirksAsPhpReadsThem_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("double quotes become single")
        << QVariant(text("say \"hi\"")) << QByteArray("\"say 'hi'\"");
    QTest::newRow("true becomes 1") << QVariant(true) << QByteArray("1");
    QTest::newRow("false becomes 0") << QVariant(false) << QByteArray("0");
    QTest::newRow("one backslash stays")
        << QVariant(text("C:\\new")) << QByteArray("\"C:\\\\new\"");
    QTest::newRow("two backslashes become one")
        << QVariant(text("a\\\\b")) << QByteArray("\"a\\\\b\"");
    QTest::newRow("six digits") << QVariant(1234567.0) << QByteArray("1234570");
    QTest::newRow("a whole double becomes an int") << QVariant(3.0) << QByteArray("3");
    QTest::newRow("unsigned becomes text") << QVariant(7u) << QByteArray("\"7\"");
    QTest::newRow("nothing becomes an empty text") << QVariant() << QByteArray("\"\"");
    QTest::newRow("code is run") << QVariant(QByteArray("strtoupper('x') . (1 + 2)"))
                                 << QByteArray("\"X3\"");
    QTest::newRow("keys become numbers")
        << QVariant(QVariantMap({{text("007"), text("x")}})) << QByteArray("{\"7\":\"x\"}");
}

void tst_PhpCodeHelpers::quirksAsPhpReadsThem()
{
    if (mPhp.isEmpty())
        QSKIP("php is not installed");
    QFETCH(QVariant, value);
    QTEST(readAsJson(literal(value)), "json");
}

/// Deliberate: a backslash is not escaped, not even in front of the closing quote.
void tst_PhpCodeHelpers::lastBackslashLeavesTheTextOpen()
{
    if (mPhp.isEmpty())
        QSKIP("php is not installed");
    QCOMPARE(literal(text("C:\\")), text("'C:\\'"));
    QCOMPARE(readAsJson(literal(text("C:\\"))), QByteArray());
}

QTEST_GUILESS_MAIN(tst_PhpCodeHelpers)
#include "tst_PhpCodeHelpers.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PhpCodeHelpers.h"

#include "Columns.h"
#include "LiteralTest.h"
#include "ScriptRunner.h"
#include "Text.h"
#include "TextStreamUTF8.h"

#include <QBuffer>
#include <QJsonValue>
#include <QtTest>

namespace {

const LiteralLanguage phpLanguage{"php",
                                  "[",
                                  "=>",
                                  "]",
                                  &PhpCodeHelpers::formatVariantValue,
                                  &PhpCodeHelpers::formatPhpArray,
                                  &PhpCodeHelpers::formatPhpArray,
                                  &PhpCodeHelpers::formatPhpArray,
                                  &PhpCodeHelpers::formatPhpMap};

} // namespace

class tst_PhpCodeHelpers : public LiteralTest
{
    Q_OBJECT

public:
    tst_PhpCodeHelpers()
        : LiteralTest(phpLanguage)
    { }

protected:
    QByteArray scriptFor(const QByteArray& literal) const override
    {
        return "<?php echo json_encode(" + literal + ", JSON_THROW_ON_ERROR);";
    }

private Q_SLOTS:
    void hashes();
    void constants_data();
    void constants();
    void namedArraysAndMaps();
    void classOfConstants();
    void lineBreaksAreReadBack();
    void declarationsReadByPhp();
    void quirksAsPhpReadsThem_data();
    void quirksAsPhpReadsThem() { compareQuirks(); }
};

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
    const auto row = columns<QVariant, QString, QString>("value", "comment", "line");
    row("number", QVariant(3), QString(), "const NAME=3;\n");
    row("comment", QVariant(3), "x", "const NAME=3; // x\n");
    row("text", QVariant(text("l'été")), QString(), "const NAME='l\\'été';\n");
    row("boolean", QVariant(false), "no", "const NAME=0; // no\n");
    row("list", QVariant(QVariantList{1}), "c", "const NAME=[1]\n; // c\n");
    row("map", QVariant(QVariantMap({{text("k"), 1}})), QString(), "const NAME=[\n'k'=>1\n];\n");
    row("code", QVariant(QByteArray("self::A . 'b'")), QString(), "const NAME=self::A . 'b';\n");
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
    QCOMPARE(array(QVariantList({1, text("a"), QVariant(QVariantList{2})})),
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
    QCOMPARE(classOf({{text("B"), text("x")}, {text("A"), 1}, {text("C"), QVariantList{1}}}),
             text("\nclass Config\n{\nconst A=1;\nconst B='x';\nconst C=[1]\n;\n}\n"));
    // The keys are not checked.
    QCOMPARE(classOf({{text("10"), 1}, {text("a b"), 2}}),
             text("\nclass Config\n{\nconst 10=1;\nconst a b=2;\n}\n"));
}

void tst_PhpCodeHelpers::declarationsReadByPhp()
{
    if (interpreter().isEmpty())
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
    const ScriptResult result = runScript(interpreter(), script.data());
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

/// PHP keeps line breaks in a text.
void tst_PhpCodeHelpers::lineBreaksAreReadBack()
{
    if (interpreter().isEmpty())
        QSKIP("php is not installed");
    QCOMPARE(readAsJson(literal(text("a\nb\r\n\tc"))), QByteArray("\"a\\nb\\r\\n\\tc\""));
}

/// Deliberate: these values come back changed.
void tst_PhpCodeHelpers::quirksAsPhpReadsThem_data()
{
    addQuirkRows();
    QTest::newRow("one backslash stays")
        << QVariant(text("C:\\new")) << QByteArray("\"C:\\\\new\"");
    QTest::newRow("two backslashes become one")
        << QVariant(text("a\\\\b")) << QByteArray("\"a\\\\b\"");
}

QTEST_GUILESS_MAIN(tst_PhpCodeHelpers)
#include "tst_PhpCodeHelpers.moc"

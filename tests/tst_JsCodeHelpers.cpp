// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "JsCodeHelpers.h"

#include "HTMLUtils.h"
#include "LiteralTest.h"
#include "ScriptRunner.h"
#include "Text.h"

#include <QJsonValue>
#include <QtTest>

namespace {

const LiteralLanguage javascript{"node",
                                 "{",
                                 ":",
                                 "}",
                                 &JsCodeHelpers::formatVariantValue,
                                 &JsCodeHelpers::formatJavascriptArray,
                                 &JsCodeHelpers::formatJavascriptArray,
                                 &JsCodeHelpers::formatJavascriptArray,
                                 &JsCodeHelpers::formatJavascriptObject};

} // namespace

class tst_JsCodeHelpers : public LiteralTest
{
    Q_OBJECT

public:
    tst_JsCodeHelpers()
        : LiteralTest(javascript)
    { }

protected:
    QByteArray scriptFor(const QByteArray& literal) const override
    {
        return "const value = " + literal + ";\nprocess.stdout.write(JSON.stringify(value));\n";
    }

private Q_SLOTS:
    void arraysAndObjectsReadByNode();
    void encodedTextsReadByNode();
    void quirksAsNodeReadsThem_data();
    void quirksAsNodeReadsThem() { compareQuirks(); }
};

void tst_JsCodeHelpers::arraysAndObjectsReadByNode()
{
    if (interpreter().isEmpty())
        QSKIP("node is not installed");
    const QString array = written([](QTextStream* s) {
        *s << '[';
        JsCodeHelpers::formatJavascriptArray(s, QStringList({text("é"), text("'")}));
        *s << ',';
        JsCodeHelpers::formatJavascriptArray(s, QList<int>({1, -2}));
        *s << ',';
        JsCodeHelpers::formatJavascriptArray(s, QVariantList({QVariant(QVariantList{1}), 2.5}));
        *s << ',';
        JsCodeHelpers::formatJavascriptObject(s, QVariantMap({{text("7"), text("seven")}}));
        *s << ']';
    });
    QCOMPARE(readAsJson(array), QByteArray("[[\"é\",\"'\"],[1,-2],[[1],2.5],{\"7\":\"seven\"}]"));
}

/// Texts encoded for JavaScript keep all characters when they are written as values.
void tst_JsCodeHelpers::encodedTextsReadByNode()
{
    if (interpreter().isEmpty())
        QSKIP("node is not installed");
    QString all;
    for (int code = 0; code < 0x3000; ++code)
        all += QChar(code);
    all += text("😀");
    const QByteArray json = readAsJson(literal(HTMLUtils::encodeToJavascriptText(all)));
    QCOMPARE(valueOfJson(json).toString(), all);
}

/// Deliberate: these values come back changed.
void tst_JsCodeHelpers::quirksAsNodeReadsThem_data()
{
    addQuirkRows();
    QTest::newRow("a backslash begins an escape sequence")
        << QVariant(text("C:\\new\\dir")) << QByteArray("\"C:\\newdir\"");
    QTest::newRow("a line break leaves the text open") << QVariant(text("a\nb")) << QByteArray();
    QTest::newRow("more than 53 bits")
        << QVariant(Q_INT64_C(9007199254740993)) << QByteArray("9007199254740992");
    QTest::newRow("a negative number is no key")
        << QVariant(QVariantMap({{text("-3"), text("x")}})) << QByteArray();
}

QTEST_GUILESS_MAIN(tst_JsCodeHelpers)
#include "tst_JsCodeHelpers.moc"

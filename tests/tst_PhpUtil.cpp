// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PhpUtil.h"

#include "Columns.h"
#include "ScriptRunner.h"
#include "Text.h"

#include <QStandardPaths>
#include <QtTest>

class tst_PhpUtil : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void strings_data();
    void strings();
    void readByPhp();
    void variablesAreInterpolated();
    void backslashesBeginEscapes();
};

void tst_PhpUtil::strings_data()
{
    const auto row = namedByText(columns<QString, QString, QString>("s", "quoted", "simplified"));
    row("", "\"\"", "\"\"");
    row("plain", "\"plain\"", "\"plain\"");
    row("say \"hi\"", "\"say \\\"hi\\\"\"", "\"say \\\"hi\\\"\"");
    row("it's", "\"it's\"", "\"it's\"");
    row("$name {$a->b}", "\"$name {$a->b}\"", "\"$name {$a->b}\"");
    row("C:\\new", "\"C:\\new\"", "\"C:\\new\"");
    row("\\\"", "\"\\\\\"\"", "\"\\\\\"\""); // the backslash before the quote is not doubled
    row("  a \t b\nc ", "\"  a \t b\nc \"", "\"a b c\"");
    row("été €", "\"été €\"", "\"été €\"");
}

void tst_PhpUtil::strings()
{
    QFETCH(QString, s);
    QTEST(PhpUtil::formatPhpString(s), "quoted");
    QTEST(PhpUtil::escapeAndQuotedPhpStringVariable(s), "quoted");
    QTEST(PhpUtil::formatPhpSimplifiedString(s), "simplified");
}

void tst_PhpUtil::readByPhp()
{
    const QString php = QStandardPaths::findExecutable(text("php"));
    if (php.isEmpty())
        QSKIP("php is not installed");
    const QStringList texts{QString(),
                            text("plain"),
                            text("say \"hi\", it's '100' %"),
                            text("two\nlines\tand <b>tags</b> ?>"),
                            text("été € 日本 😀"),
                            text("\"\"\"")};
    for (const QString& string : texts) {
        const ScriptResult result =
            runScript(php, "<?php echo " + PhpUtil::formatPhpString(string).toUtf8() + ";");
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(QString::fromUtf8(result.output), string);
    }
}

/// Deliberate: "$name" in the text is a PHP variable.
void tst_PhpUtil::variablesAreInterpolated()
{
    const QString php = QStandardPaths::findExecutable(text("php"));
    if (php.isEmpty())
        QSKIP("php is not installed");
    const ScriptResult result =
        runScript(php,
                  "<?php $name = 'Zoé'; echo "
                      + PhpUtil::formatPhpString(text("\"$name\" {$name}")).toUtf8() + ";");
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(QString::fromUtf8(result.output), text("\"Zoé\" Zoé"));
}

/// Deliberate: backslashes are not escaped.
void tst_PhpUtil::backslashesBeginEscapes()
{
    const QString php = QStandardPaths::findExecutable(text("php"));
    if (php.isEmpty())
        QSKIP("php is not installed");
    const ScriptResult changed =
        runScript(php, "<?php echo " + PhpUtil::formatPhpString(text("a\\nb\\\\c")).toUtf8() + ";");
    QCOMPARE(changed.exitCode, 0);
    QCOMPARE(changed.output, QByteArray("a\nb\\c"));
    // A backslash at the end leaves the string open.
    const ScriptResult open =
        runScript(php, "<?php echo " + PhpUtil::formatPhpString(text("C:\\")).toUtf8() + ";");
    QVERIFY(open.exitCode != 0);
}

QTEST_GUILESS_MAIN(tst_PhpUtil)
#include "tst_PhpUtil.moc"

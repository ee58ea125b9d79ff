// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// What the tests of the PHP and of the JavaScript literals share: both languages get the same
// values, and the same text for all but maps.

#ifndef LITERALROWS_H
#define LITERALROWS_H

#include <QDateTime>
#include <QTextStream>
#include <QUrl>
#include <QVariant>
#include <QtTest>

#include <limits>

/// What \a write writes to a stream.
template <typename Function>
QString written(Function write)
{
    QString text;
    QTextStream stream(&text);
    write(&stream);
    return text;
}

inline QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// Rows of a value and its literal. Where a map is in it, "«" stands for what opens a map, "»" for
/// what closes it and "→" for what follows a key.
inline void addLiteralRows()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("literal");
    const auto row = [](const char* name, const QVariant& value, const char* literal) {
        QTest::newRow(name) << value << QString::fromUtf8(literal);
    };
    // Raw code.
    row("byte array", QByteArray("time() + 1"), "time() + 1");
    row("byte array with quotes", QByteArray("'a\"b\\'"), "'a\"b\\'");
    row("byte array in UTF-8", QByteArray("\"\xc3\xa9\""), "\"é\"");
    row("empty byte array", QByteArray(), "");
    // Texts.
    row("text", QStringLiteral("plain"), "'plain'");
    row("empty text", QString(), "''");
    row("apostrophe", QStringLiteral("it's"), "'it\\'s'");
    row("double quotes become single", QStringLiteral("say \"hi\""), "'say \\'hi\\''");
    row("quotes alone", QStringLiteral("'\"'\""), "'\\'\\'\\'\\''");
    row("backslashes stay", QStringLiteral("C:\\new\\"), "'C:\\new\\'");
    row("backslash and quote", QStringLiteral("\\'"), "'\\\\''");
    row("line break stays", QStringLiteral("a\nb\t"), "'a\nb\t'");
    row("accents", QStringLiteral("été € 日本 😀"), "'été € 日本 😀'");
    row("dollar", QStringLiteral("$name"), "'$name'");
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
    row("list of texts", QStringList({QStringLiteral("a"), QStringLiteral("b'\"")}),
        "['a','b\\'\\'']");
    row("empty list of texts", QStringList(), "[]");
    row("list", QVariantList({1, QStringLiteral("x"), 2.5}), "[1,'x',2.5]\n");
    row("empty list", QVariantList(), "[]\n");
    row("boolean in a list", QVariantList({true}), "[1]\n");
    row("list in a list", QVariantList({QVariant(QVariantList({1, 2})), 3}), "[[1,2]\n,3]\n");
    row("texts in a list", QVariantList({QVariant(QStringList({QStringLiteral("a")})), 3}),
        "[['a'],3]\n");
    // Maps.
    row("empty map", QVariantMap(), "«\n\n»");
    row("map",
        QVariantMap({{QStringLiteral("b"), 2},
                     {QStringLiteral("a"), QStringLiteral("x")},
                     {QStringLiteral("10"), true}}),
        "«\n10→1,'a'→'x','b'→2\n»");
    row("map in a map",
        QVariantMap({{QStringLiteral("m"), QVariantMap({{QStringLiteral("k"), 1}})},
                     {QStringLiteral("n"), 2}}),
        "«\n'm'→«\n'k'→1\n»,'n'→2\n»");
    row("list in a map", QVariantMap({{QStringLiteral("l"), QVariantList({1, 2})}}),
        "«\n'l'→[1,2]\n\n»");
    row("texts in a map", QVariantMap({{QStringLiteral("l"), QStringList({QStringLiteral("a")})}}),
        "«\n'l'→['a']\n»");
    row("map in a list", QVariantList({QVariantMap({{QStringLiteral("k"), QString()}})}),
        "[«\n'k'→''\n»]\n");
    // Anything else is text.
    row("unsigned int", 7u, "'7'");
    row("unsigned long long", Q_UINT64_C(18446744073709551615), "'18446744073709551615'");
    row("float", 2.5f, "'2.5'");
    row("short", QVariant::fromValue<short>(7), "'7'");
    row("character", QChar(u'\''), "'\\''");
    row("date", QDate(2001, 2, 3), "'2001-02-03'");
    row("time", QTime(4, 5, 6), "'04:05:06.000'");
    row("address", QUrl(QStringLiteral("http://a/'")), "'http://a/\\''");
    row("hash", QVariantHash({{QStringLiteral("k"), 1}}), "''");
    row("invalid", QVariant(), "''");
}

/// Rows of a key and the way in which a map writes it.
inline void addKeyRows()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("literal");
    const auto row = [](const char* key, const char* literal) {
        QTest::newRow(*key ? key : "empty") << QString::fromUtf8(key) << QString::fromUtf8(literal);
    };
    row("name", "'name'");
    row("", "''");
    row("it's", "'it\\'s'");
    row("a\"b", "'a\\'b'");
    row("été", "'été'");
    row("_", "'_'");
    row("a1", "'a1'");
    // What is a whole number in decimal, however it is written, becomes that number.
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

/// Values that readers of either language give back as they went in, but for the byte array, which
/// is code whose value is the text "code".
inline QVariantMap faithfulValues()
{
    return QVariantMap({
        {QStringLiteral("plain"), QStringLiteral("plain text")},
        {QStringLiteral("empty"), QString()},
        {QStringLiteral("apostrophes"), QStringLiteral("'it''s'")},
        {QStringLiteral("accents"), QStringLiteral("L'été à Ærø coûte 5 €, 日本 😀")},
        {QStringLiteral("markup"), QStringLiteral("<b>$name</b> {$a} ${b} `c` <?php ?> // /* #")},
        {QStringLiteral("int"), -42},
        {QStringLiteral("zero"), 0},
        {QStringLiteral("long"), Q_INT64_C(9007199254740991)},
        {QStringLiteral("double"), 0.125},
        {QStringLiteral("large"), 1.5e300},
        {QStringLiteral("small"), -2.5e-7},
        {QStringLiteral("texts"), QStringList({QStringLiteral("a"), QString()})},
        {QStringLiteral("no texts"), QStringList()},
        {QStringLiteral("list"),
         QVariantList(
             {1, QVariant(QVariantList({2.5, QVariant(QVariantList())})), QStringLiteral("x")})},
        {QStringLiteral("map"),
         QVariantMap({{QStringLiteral("10"), QStringLiteral("ten")},
                      {QStringLiteral("it's"), QVariantMap({{QStringLiteral("k"), 1}})}})},
        {QStringLiteral("byte array"), QByteArray("'code'")},
    });
}

#endif // LITERALROWS_H

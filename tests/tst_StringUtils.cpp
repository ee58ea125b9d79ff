// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "StringUtils.h"

#include "Columns.h"
#include "LogCapture.h"
#include "PiecesBetween.h"
#include "ProcessRandom.h"
#include "Text.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QSet>
#include <QUuid>
#include <QtTest>

#include <atomic>
#include <limits>
#include <thread>
#include <vector>

namespace {

/// Runs \a function in eight threads that start together.
template <typename Function>
void inEightThreads(Function function)
{
    std::atomic<int> waiting{8};
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&waiting, function] {
            --waiting;
            while (waiting > 0) { }
            function();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

/// The search key according to its rule, step by step, with Qt's own functions.
QString searchKeyByRule(const QString& s)
{
    const QStringList kept = piecesBetween(s.normalized(QString::NormalizationForm_D),
                                           QRegExp(text("[^a-zA-Z0-9\\s\\-]")));
    return kept.join(QString()).simplified().toLower();
}

/// The search words according to their rule.
QStringList searchWordsByRule(const QString& s)
{
    QStringList words;
    const QStringList parts = piecesBetween(s.simplified().toLower(), QRegExp(text("[\\W\\-]+")));
    for (const QString& part : parts)
        words.append(searchKeyByRule(part));
    return words;
}

/// A text of up to \a maximum characters from \a alphabet.
QString randomText(const QString& alphabet, int maximum)
{
    QString expected;
    for (int size = processRandom() % (maximum + 1); size > 0; --size)
        expected += alphabet.at(processRandom() % alphabet.size());
    return expected;
}

QString bytesInHex(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

} // namespace

class tst_StringUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void concurrentFirstCalls();
    void formatDurationFromMSec_data();
    void formatDurationFromMSec();
    void formatDurationFromSec();
    void fixedTexts();
    void compareVersion_data();
    void compareVersion();
    void capitalize_data();
    void capitalize();
    void escapeQuotes_data();
    void escapeQuotes();
    void escapeQuotesOfManyQuotes();
    void removeAccentsOfEachCharacter_data();
    void removeAccentsOfEachCharacter();
    void removeAccentsLeavesAllOthers();
    void removeAccents_data();
    void removeAccents();
    void normalizeTextForSearch_data();
    void normalizeTextForSearch();
    void normalizeTextForSearchOfEachCharacter();
    void splitTextForSearch_data();
    void splitTextForSearch();
    void splitTextForSearchOfEachCharacter();
    void searchByRule();
    void getRandomString();
    void getRandomStringUsesQrand();
    void generateUUID();
    void generateUniqueId();
    void formatRealForInput_data();
    void formatRealForInput();
    void byteArrayToString_data();
    void byteArrayToString();
    void hexaStringToByteArray_data();
    void hexaStringToByteArray();
    void bytesThereAndBack();
    void findNoExistantName_data();
    void findNoExistantName();
    void findNoExistantNameAmongMany();
    void replaceFirstText_data();
    void replaceFirstText();
    void replaceFirstMatch_data();
    void replaceFirstMatch();
    void replacesInPlace();
    void removeLastChar_data();
    void removeLastChar();
    void richTextToBold();
    void joinWithSlashes_data();
    void joinWithSlashes();
    void nothingIsLogged();
};

/// Runs first: only the first calls of a process build the tables.
void tst_StringUtils::concurrentFirstCalls()
{
    std::atomic<int> right{0};
    inEightThreads([&right] {
        right += StringUtils::removeAccents(text("Œÿ")) == QLatin1String("OEy");
        right += StringUtils::normalizeTextForSearch(text("Éỹ")) == QLatin1String("ey");
    });
    QCOMPARE(right.load(), 16);
}

void tst_StringUtils::formatDurationFromMSec_data()
{
    const auto table = columns<quint64, QString>("ms", "expected");
    const auto row = [&](quint64 ms, const char* expected) {
        table(qPrintable(QString::asprintf("%llu", static_cast<unsigned long long>(ms))), ms,
              text(expected));
    };
    row(0, "");
    row(1, "1ms ");
    row(999, "999ms ");
    row(1000, "1s ");
    row(1500, "1s 500ms ");
    row(59999, "59s 999ms ");
    row(60000, "1mn ");
    row(60001, "1mn 1ms ");
    row(61000, "1mn 1s ");
    row(3599999, "59mn 59s 999ms ");
    row(3600000, "1h ");
    row(3601000, "1h 1s ");
    row(3723000, "1h 2mn 3s ");
    row(36000000, "10h ");
    // A day and more: the days are included in the milliseconds.
    row(86399999, "23h 59mn 59s 999ms ");
    row(86400000, "86400000ms ");
    row(90061001, "1h 1mn 1s 86400001ms ");
    row(172800000, "172800000ms ");
    // 49 710 days, 6 h 28 mn 16 s: one second more than fits into 32 bits.
    row(Q_UINT64_C(4294967296000), "6h 28mn 16s 4294944000000ms ");
    // 18446744073709551 s are 213503982334 days and 51951 s, which are 14 h 25 mn 51 s.
    row(std::numeric_limits<quint64>::max(), "14h 25mn 51s 18446744073657600615ms ");
}

void tst_StringUtils::formatDurationFromMSec()
{
    QFETCH(quint64, ms);
    QTEST(StringUtils::formatDurationFromMSec(ms), "expected");
}

void tst_StringUtils::formatDurationFromSec()
{
    QCOMPARE(StringUtils::formatDurationFromSec(0), QString());
    QCOMPARE(StringUtils::formatDurationFromSec(1), text("1s "));
    QCOMPARE(StringUtils::formatDurationFromSec(61), text("1mn 1s "));
    QCOMPARE(StringUtils::formatDurationFromSec(3723), text("1h 2mn 3s "));
    QCOMPARE(StringUtils::formatDurationFromSec(86401), text("1s 86400000ms "));
}

void tst_StringUtils::fixedTexts()
{
    QCOMPARE(StringUtils::systemMainFamily(), text("Helvetica Neue"));
    QCOMPARE(StringUtils::endl(), text("\n"));
    QCOMPARE(
        StringUtils::stringLoremIpsum(),
        QStringLiteral(
            "Lorem ipsum dolor sit amet, consectetur adipiscing elit. Donec viverra enim quis "
            "quam bibendum, at blandit nibh sollicitudin. Donec scelerisque risus et nulla "
            "sollicitudin pretium. Maecenas turpis neque, semper quis gravida nec, semper quis "
            "ligula. Pellentesque nec risus non sem aliquam feugiat et id lacus. Cras ornare nibh "
            "mauris, eget sagittis magna gravida eu. Pellentesque dapibus sodales ligula, vitae "
            "scelerisque leo condimentum tempus. Sed aliquet iaculis maximus."));
}

void tst_StringUtils::compareVersion_data()
{
    const auto table = columns<QString, QString, bool, int>("a", "b", "comparable", "result");
    const auto row = [&](const char* a, const char* b, bool comparable, int result) {
        table(qPrintable(QString::asprintf("'%s' '%s'", a, b)), text(a), text(b), comparable,
              result);
    };
    row("1", "1", true, 0);
    row("2", "1", true, 1);
    row("1", "2", true, -1);
    row("2.10", "2.9", true, 1);
    row("1.9", "1.10", true, -1);
    row("1.2.3", "1.2.3", true, 0);
    row("1.2.3", "1.2.4", true, -1);
    row("2.0.0", "1.9.9", true, 1);
    row("01", "1", true, 0);
    row("1.002", "1.2", true, 0);
    row("0000000000000000001", "1", true, 0);
    row("0000000000000000002.1", "1.1", true, 1);
    row("2147483647", "2147483646", true, 1);
    row("1234567890", "1234567891", true, -1);
    // Only the components of the first version are compared.
    row("1.2", "1.2.5", true, 0);
    row("1.0", "1.0.7", true, 0);
    row("1.2", "1.3.5", true, -1);
    // The second version has fewer.
    row("1.2.5", "1.2", false, 0);
    row("1.0.0", "1", false, 0);
    row("2.1", "1", true, 1);
    row("1.1", "2", true, -1);
    // Malformed, in any position.
    row("1.a", "1.0", false, 0);
    row("1.2b", "1.2", false, 0);
    row("2.2b", "1.2", false, 0);
    row("1.2", "1.2b", false, 0);
    row("2", "1.b", false, 0);
    row("2", "1.1.b", false, 0);
    row("2.1.1.b", "1", false, 0);
    row("1..2", "1.0", false, 0);
    row("1.0", "1..2", false, 0);
    row("1.", "1.0", false, 0);
    row(".1", "1.0", false, 0);
    row("1", ".", false, 0);
    row("", "1", false, 0);
    row("1", "", false, 0);
    row("", "", false, 0);
    row("  ", "1", false, 0);
    row("1 2", "1", false, 0);
    row("2147483648", "1", false, 0);
    row("99999999999999999999", "1", false, 0);
    row("1", "99999999999999999999", false, 0);
    row("2", "1.99999999999999999999", false, 0);
    row("0x10", "1", false, 0);
    row("1e3", "1", false, 0);
    row("1,000", "1", false, 0);
    row("\xd9\xa1", "1", false, 0); // an Arabic digit one
    // White space around a number is accepted, but the comparison ends at the first character that
    // is not a digit, so that it must not come first.
    row("1 .2", "1.1", true, 1);
    row("1.2\t", "1.2", true, 0);
    row("1\xc2\xa0", "1", true, 0);
    row(" 1", "1", false, 0);
    row("1", " 1", false, 0);
    row("1. 2", "1.2", false, 0);
    // The same applies to signs, which only matter if nothing has been decided before.
    row("-1", "1", false, 0);
    row("+1", "1", false, 0);
    row("1.-2", "1.2", false, 0);
    row("2.-1", "1.0", true, 1);
    row("1.0", "2.+7", true, -1);
    row("1", "1.-5", true, 0);
    row("1.-5", "1", false, 0);
}

void tst_StringUtils::compareVersion()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    int result = 7;
    QTEST(StringUtils::compareVersion(a, b, result), "comparable");
    QTEST(result, "result");
}

void tst_StringUtils::capitalize_data()
{
    const auto row = namedByText(columns<QString, QString>("s", "capitalized"));
    row("", "");
    row("a", "A");
    row("hello world", "Hello world");
    row("hELLO", "HELLO"); // the rest is unchanged
    row("Hello", "Hello");
    row("élan VITAL", "Élan VITAL");
    row("ßa", "SSa"); // longer in upper case
    row("1a", "1a");
    row(" a", " a");
}

void tst_StringUtils::capitalize()
{
    QFETCH(QString, s);
    QTEST(StringUtils::capitalize(s), "capitalized");
}

void tst_StringUtils::escapeQuotes_data()
{
    const auto row = namedByText(columns<QString, QString>("s", "escaped"));
    row("", "");
    row("it's", "it's");
    row("say \"hi\"", "say \\\"hi\\\"");
    row("\"", "\\\"");
    // Deliberate: a backslash is not doubled.
    row("a\\b", "a\\b");
    row("\\\"", "\\\\\"");
}

void tst_StringUtils::escapeQuotes()
{
    QFETCH(QString, s);
    const QString before = s;
    QTEST(StringUtils::escapeQuotes(s), "escaped");
    QCOMPARE(s, before);
}

void tst_StringUtils::escapeQuotesOfManyQuotes()
{
    const int count = 4 << 20;
    QVERIFY(StringUtils::escapeQuotes(QString(count, QLatin1Char('"')))
            == text("\\\"").repeated(count));
}

void tst_StringUtils::removeAccentsOfEachCharacter_data()
{
    const auto row = columns<QString, QString>("accented", "plain");
    const auto rows = [&](const char* characters, const char* plain) {
        for (const QChar c : text(characters))
            row(QString(c).toUtf8().constData(), QString(c), text(plain));
    };
    rows("Š", "S");
    rows("Œ", "OE");
    rows("Ž", "Z");
    rows("š", "s");
    rows("œ", "oe");
    rows("ž", "z");
    rows("Ÿ", "Y");
    rows("¥", "Y");
    rows("µ", "u");
    rows("ÌÍÎÏ", "I");
    rows("Ð", "D");
    rows("Ñ", "N");
    rows("ÒÓÔÕÖØ", "O");
    rows("ÙÚÛÜ", "U");
    rows("Ý", "Y");
    rows("ß", "s");
    rows("ÀÁÂÃÄÅ", "A");
    rows("Æ", "AE");
    rows("Ç", "C");
    rows("ÈÉÊË", "E");
    rows("àáâãäå", "a");
    rows("æ", "ae");
    rows("ç", "c");
    rows("èéêë", "e");
    rows("ìíîï", "i");
    rows("ð", "o");
    rows("ñ", "n");
    rows("òóôõöø", "o");
    rows("ùúûü", "u");
    rows("ýÿ", "y");
}

void tst_StringUtils::removeAccentsOfEachCharacter()
{
    QFETCH(QString, accented);
    QTEST(StringUtils::removeAccents(accented), "plain");
}

void tst_StringUtils::removeAccentsLeavesAllOthers()
{
    int folded = 0;
    for (int code = 0; code <= 0xffff; ++code)
        folded += StringUtils::removeAccents(QString(QChar(code))) != QString(QChar(code));
    QCOMPARE(folded, 69);
}

void tst_StringUtils::removeAccents_data()
{
    const auto row = columns<QString, QString>("s", "plain");
    row("null", QString(), QString());
    row("empty", "", QString());
    row("plain", "plain text, 1", "plain text, 1");
    row("ligatures", "Œuvre à Ærø", "OEuvre a AEro");
    row("sharp s", "Straße", "Strase");
    row("quirks", "ðµ¥", "ouY");
    row("unknown letters", "Ąłřþ×", "Ąłřþ×");
    row("mixed", "éĄè", "eĄe");
    row("combining accent", "e\u0301", "e\u0301");
    row("micro sign only", "\u03bc", "\u03bc");
    row("beyond the BMP", "é😀", "e😀");
    row("NUL", QString(QChar(0)) + text("é"), QString(QChar(0)) + text("e"));
}

void tst_StringUtils::removeAccents()
{
    QFETCH(QString, s);
    QTEST(StringUtils::removeAccents(s), "plain");
}

void tst_StringUtils::normalizeTextForSearch_data()
{
    const auto row = namedByText(columns<QString, QString>("s", "key"));
    row("", "");
    row("Élan, Vital!", "elan vital");
    row("  two\t\n blanks  ", "two blanks");
    row("rendez-vous", "rendez-vous");
    row("A - B", "a - b");
    row("a , b", "a b"); // a character between two blanks disappears
    row("!!!", "");
    row(" ! ", "");
    row("ABC xyz 019", "abc xyz 019");
    row("under_score", "underscore");
    row("L'été", "lete");
    row("ß", ""); // has no decomposition
    row("œuvre Ærø", "uvre r");
    row("Ångström ÅNGSTRÖM", "angstrom angstrom"); // the first begins with the sign U+212B
    row("273 K", "273 k"); // the Kelvin sign
    row("Ţară ČŘŽ Ệỹ", "tara crz ey");
    row("e\xcc\x81", "e");
    row("≠", ""); // an equals sign with a stroke
    row("Ελλάς Москва 東京 한글", "");
    row("a\xc2\xa0"
        "b",
        "a b"); // the no-break space is white space
    row("a\xe3\x80\x80"
        "b",
        "a b"); // so is the ideographic space
    row("a😀b", "ab");
    row("½ ² ①", "");
}

void tst_StringUtils::normalizeTextForSearch()
{
    QFETCH(QString, s);
    QTEST(StringUtils::normalizeTextForSearch(s), "key");
}

void tst_StringUtils::normalizeTextForSearchOfEachCharacter()
{
    for (uint code = 0; code <= 0x10ffff; ++code) {
        const QString character = QString::fromUcs4(&code, 1);
        if (code >= 0x10000 && character.normalized(QString::NormalizationForm_D) == character)
            continue; // two surrogates, which are not part of a key
        const QString s = QLatin1Char('A') + character + QLatin1Char('B');
        const QString key = StringUtils::normalizeTextForSearch(s);
        const QString expected = searchKeyByRule(s);
        if (key != expected)
            QCOMPARE(QString::number(code, 16) + key, QString::number(code, 16) + expected);
    }
}

void tst_StringUtils::splitTextForSearch_data()
{
    const auto row = namedByText(columns<QString, QStringList>("s", "words"));
    row("", {});
    row("  ", {});
    row("-,;", {});
    row("word", {text("word")});
    row("Two Words", {text("two"), text("words")});
    row("Arc-en-ciel, été", {text("arc"), text("en"), text("ciel"), text("ete")});
    row("--a--b--", {text("a"), text("b")});
    row("again Again AGAIN", {text("again"), text("again"), text("again")});
    row("a ß b", {text("a"), QString(), text("b")});
    row("東京 tower", {QString(), text("tower")});
    row("snake_case", {text("snakecase")});
    row("_", {QString()});
    row("l'été", {text("l"), text("ete")});
    row("e\xcc\x81t\xc3\xa9", {text("ete")});
    row("a😀b", {text("a"), text("b")});
    row("a\xc2\xa0"
        "b",
        {text("a"), text("b")});
    row("İstanbul", {text("istanbul")}); // the lower case is an i and a dot above
}

void tst_StringUtils::splitTextForSearch()
{
    QFETCH(QString, s);
    QTEST(StringUtils::splitTextForSearch(s), "words");
}

void tst_StringUtils::splitTextForSearchOfEachCharacter()
{
    for (int code = 0; code <= 0xffff; ++code) {
        const QString s = QLatin1Char('A') + QString(QChar(code)) + QLatin1Char('B');
        const QStringList words = StringUtils::splitTextForSearch(s);
        const QStringList expected = searchWordsByRule(s);
        if (words != expected) {
            QCOMPARE(QString::number(code, 16) + words.join(QLatin1Char('|')),
                     QString::number(code, 16) + expected.join(QLatin1Char('|')));
        }
    }
}

void tst_StringUtils::searchByRule()
{
    seedProcessRandom(1);
    const QString alphabet = text("aZ09éÉßœİǅ_-.,' \t\u00a0\u0301\u0327ΣσЖ한\u1fef\u212b")
        + QChar(0xd83d) + QChar(0xde00);
    for (int i = 0; i < 20000; ++i) {
        const QString s = randomText(alphabet, 12);
        QCOMPARE(StringUtils::normalizeTextForSearch(s), searchKeyByRule(s));
        QCOMPARE(StringUtils::splitTextForSearch(s), searchWordsByRule(s));
    }
}

void tst_StringUtils::getRandomString()
{
    QCOMPARE(StringUtils::getRandomString(0), QString());
    QCOMPARE(StringUtils::getRandomString(-3), QString());
    QCOMPARE(StringUtils::getRandomString(1).size(), 1);

    const QString expected = StringUtils::getRandomString(20000);
    QCOMPARE(expected.size(), 20000);
    QSet<QChar> seen;
    for (const QChar c : expected)
        seen.insert(c);
    QSet<QChar> alphabet;
    for (const QChar c : text("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"))
        alphabet.insert(c);
    QCOMPARE(alphabet.size(), 62);
    QCOMPARE(seen, alphabet);
}

void tst_StringUtils::getRandomStringUsesQrand()
{
    seedProcessRandom(42);
    const QString first = StringUtils::getRandomString(32);
    const QString second = StringUtils::getRandomString(32);
    QVERIFY(first != second); // not seeded again by each call
    seedProcessRandom(42);
    QCOMPARE(StringUtils::getRandomString(32), first);
    QCOMPARE(StringUtils::getRandomString(32), second);
    seedProcessRandom(43);
    QVERIFY(StringUtils::getRandomString(32) != first);
}

void tst_StringUtils::generateUUID()
{
    const QString uuid = StringUtils::generateUUID();
    const QRegularExpression form(text("\\A\\{[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\}\\z"));
    QVERIFY2(form.match(uuid).hasMatch(), qPrintable(uuid));
    QCOMPARE(QUuid(uuid).version(), QUuid::Random);
    QVERIFY(StringUtils::generateUUID() != uuid);
}

void tst_StringUtils::generateUniqueId()
{
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const QString id = StringUtils::generateUniqueId(reinterpret_cast<void*>(quintptr(12345)));
    const qint64 after = QDateTime::currentMSecsSinceEpoch();
    const QString address = text("9ix"); // 9 * 1296 + 18 * 36 + 33
    QVERIFY2(id.endsWith(address), qPrintable(id));
    bool parses = false;
    const qint64 time = id.left(id.size() - address.size()).toLongLong(&parses, 36);
    QVERIFY(parses);
    QVERIFY(before <= time && time <= after);

    QVERIFY(StringUtils::generateUniqueId(nullptr).endsWith(QLatin1Char('0')));
    const void* highest = reinterpret_cast<void*>(std::numeric_limits<quintptr>::max());
    if (sizeof(void*) == 8)
        QVERIFY(StringUtils::generateUniqueId(highest).endsWith(QLatin1String("3w5e11264sgsf")));
}

void tst_StringUtils::formatRealForInput_data()
{
    const auto table = columns<double, int, QString>("value", "precision", "expected");
    const auto row = [&](double value, int precision, const char* expected) {
        table(qPrintable(QString::asprintf("%g with %d", value, precision)), value, precision,
              text(expected));
    };
    row(2.5, 2, "2.5");
    row(3.0, 2, "3");
    row(10.5, 3, "10.5");
    row(10.0, 3, "10");
    row(0.0, 2, "0");
    row(0.05, 2, "0.05");
    row(0.004, 2, "0");
    row(1.006, 2, "1.01");
    row(100.25, 2, "100.25");
    row(-2.5, 2, "-2.5");
    row(1234567.0, 1, "1234567");
    row(1e15, 1, "1000000000000000");
    // Zeros are removed whatever the precision.
    row(100.0, 0, "1");
    row(120.0, 0, "12");
    row(101.0, 0, "101");
    row(0.0, 0, "");
    row(7.0, 0, "7");
    row(-10.0, 0, "-1");
}

void tst_StringUtils::formatRealForInput()
{
    QFETCH(double, value);
    QFETCH(int, precision);
    QTEST(StringUtils::formatRealForInput(value, precision), "expected");
}

void tst_StringUtils::byteArrayToString_data()
{
    const auto table = columns<QByteArray, int, QString>("bytes", "base", "expected");
    const auto row = [&](const char* bytesInHex, int base, const char* expected) {
        table(qPrintable(QString::asprintf("%s in base %d", bytesInHex, base)),
              QByteArray::fromHex(bytesInHex), base, text(expected));
    };
    row("", 16, "");
    row("0aff", 16, "0aff");
    row("05a0", 16, "05a0");
    row("00", 16, "00");
    row("05", 2, "101");
    row("01", 2, "01");
    row("ff", 2, "11111111");
    row("00", 10, "00");
    row("09ff0a", 10, "0925510");
    row("0708ff", 8, "0710377");
    row("ff23", 36, "730z"); // 255 = 7 * 36 + 3; 35 = z
    // There are no such bases.
    for (const int base : {-16, -1, 0, 1, 37, 1000})
        row("09ff0a", base, "0925510");
}

void tst_StringUtils::byteArrayToString()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, base);
    QTEST(StringUtils::byteArrayToString(bytes, base), "expected");
}

void tst_StringUtils::hexaStringToByteArray_data()
{
    const auto table = columns<QString, int, QString>("s", "base", "hex");
    const auto row = [&](const char* s, int base, const char* hex) {
        table(qPrintable(QString::asprintf("'%s' in base %d", s, base)), text(s), base, text(hex));
    };
    row("", 16, "");
    row("0aff", 16, "0aff");
    row("0AFF", 16, "0aff");
    row("0aZZff", 16, "0aff");
    row("abc", 16, "ab0c"); // the last character forms a pair of its own
    row("7", 16, "07");
    row("z", 16, "");
    row("101112", 10, "0a0b0c");
    row("1012", 2, "02"); // "12" is not a binary number
    row("0809", 8, ""); // not octal digits
    row("zz", 36, "0f"); // 1295 = 5 * 256 + 15: the low byte
    row("10", 36, "24");
    row("10", 99, "24"); // 36 is the highest base
    row(" 5", 16, "05"); // read like any number in Qt
    row("-1", 16, "");
}

void tst_StringUtils::hexaStringToByteArray()
{
    QFETCH(QString, s);
    QFETCH(int, base);
    QTEST(bytesInHex(StringUtils::hexaStringToByteArray(s, base)), "hex");
}

void tst_StringUtils::bytesThereAndBack()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i)
        bytes.append(char(i));
    for (const int base : {16, 17, 36}) {
        const QString expected = StringUtils::byteArrayToString(bytes, base);
        QCOMPARE(expected.size(), 512);
        QCOMPARE(StringUtils::hexaStringToByteArray(expected, base), bytes);
    }
}

void tst_StringUtils::findNoExistantName_data()
{
    const auto table = columns<QStringList, QString, QString, QString, QString>(
        "existing", "prefix", "pattern", "extension", "name");
    const auto row = [&](const char* existing, const char* prefix, const char* pattern,
                         const char* extension, const char* name) {
        table(qPrintable(
                  QString::asprintf("[%s] '%s' '%s' '%s'", existing, prefix, pattern, extension)),
              nonEmptyParts(text(existing), QLatin1Char('|')), text(prefix), text(pattern),
              text(extension), text(name));
    };
    row("page.html|Page 1.html", "Page", " %1", "html", "Page 2.html");
    row("", "Page", " %1", "html", "Page.html");
    row("other.html", "Page", " %1", "html", "Page.html");
    row("", "  ", "", "", "Prefix");
    row("", "", "", "", "Prefix");
    row("PREFIX", "", "", "", "Prefix1");
    row("", "  two   words ", "", "", "two words");
    // The pattern gets a number at the end, the extension a dot.
    row("a", "a", "-", "", "a-1");
    row("a|a-1", "a", "-", "", "a-2");
    row("a", "a", "", "", "a1");
    row("a.txt", "a", "(%1)", "txt", "a(1).txt");
    row("a.txt", "a", "(%1)", ".txt", "a(1).txt");
    row("a.txt", "a", "(%1)", "", "a");
    row("a", "a", "(%1)", "txt", "a.txt");
    row("a", "a", "%1-%1", "", "a1-1");
    row("a", "a", " %1 of 9", "", "a 1 of 9");
    row("a", "a", "%10", "", "a10");
    // The first gap, in any order.
    row("a3|a|a1", "a", "", "", "a2");
    row("a1", "a", "", "", "a");
    // Case is ignored, accents are not.
    row("ÉTÉ", "été", "", "", "été1");
    row("ete", "été", "", "", "été");
    row("STRASSE", "Straße", "", "", "Straße");
    // A prefix that looks like a pattern is taken literally.
    row("%1", "%1", "", "", "%11");
}

void tst_StringUtils::findNoExistantName()
{
    QFETCH(QStringList, existing);
    QFETCH(QString, prefix);
    QFETCH(QString, pattern);
    QFETCH(QString, extension);
    QTEST(StringUtils::findNoExistantName(existing, prefix, pattern, extension), "name");
}

void tst_StringUtils::findNoExistantNameAmongMany()
{
    QStringList existing{text("A.txt")};
    for (int i = 20000; i > 0; --i)
        existing.append(text("A %1.TXT").arg(i));
    QCOMPARE(StringUtils::findNoExistantName(existing, text("a"), text(" %1"), text("txt")),
             text("a 20001.txt"));
    existing.removeOne(text("A 777.TXT"));
    QCOMPARE(StringUtils::findNoExistantName(existing, text("a"), text(" %1"), text("txt")),
             text("a 777.txt"));
}

void tst_StringUtils::replaceFirstText_data()
{
    const auto table =
        columns<QString, QString, QString, QString>("s", "before", "after", "result");
    const auto row = [&](const char* s, const char* before, const char* after, const char* result) {
        table(qPrintable(QString::asprintf("'%s' '%s' '%s'", s, before, after)), text(s),
              text(before), text(after), text(result));
    };
    row("one two one", "one", "1", "1 two one");
    row("one two", "two", "second", "one second");
    row("one two", "three", "3", "one two");
    row("One one", "one", "1", "One 1");
    row("abc", "b", "", "ac");
    row("aaa", "aa", "b", "ba");
    row("", "a", "b", "");
    row("a.c abc", "a.c", "x", "x abc"); // taken literally
    row("abc", "", "x", "xabc");
}

void tst_StringUtils::replaceFirstText()
{
    QFETCH(QString, s);
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, result);
    QCOMPARE(StringUtils::replaceFirstOccurrence(s, before, after), result);
    QCOMPARE(s, result);
}

void tst_StringUtils::replaceFirstMatch_data()
{
    const auto table = columns<QString, QString, QString, QString, QString>("s", "pattern", "group",
                                                                            "after", "result");
    const auto row = [&](const char* s, const char* pattern, const char* group, const char* after,
                         const char* result) {
        table(qPrintable(QString::asprintf("'%s' '%s' '%s'", s, pattern, group)), text(s),
              text(pattern), text(group), text(after), text(result));
    };
    row("w=10 h=20 h=30", "h=(?<n>\\d+)", "n", "99", "w=10 h=99 h=30");
    row("w=10 h=20", "(?<key>\\w)=(?<n>\\d+)", "n", "5", "w=5 h=20");
    row("w=10 h=20", "(?<key>\\w)=(?<n>\\d+)", "key", "width", "width=10 h=20");
    row("w=10", "d=(?<n>\\d+)", "n", "5", "w=10");
    row("w=", "w=(?<n>\\d*)", "n", "5", "w=5"); // an empty span
    row("b", "(?<n>a)|b", "n", "5", "b"); // a group that does not participate
    row("a", "(?<n>a)", "m", "5", "a"); // a group that does not exist
    row("a1", "(?<n>\\d)", "n", "\\1 %1 $1", "a\\1 %1 $1"); // nothing is special in the new text
}

void tst_StringUtils::replaceFirstMatch()
{
    QFETCH(QString, s);
    QFETCH(QString, pattern);
    QFETCH(QString, group);
    QFETCH(QString, after);
    QFETCH(QString, result);
    QCOMPARE(StringUtils::replaceFirstOccurrence(s, QRegularExpression(pattern), group, after),
             result);
    QCOMPARE(s, result);
}

void tst_StringUtils::replacesInPlace()
{
    QString s = text("one one");
    QCOMPARE(&StringUtils::replaceFirstOccurrence(s, text("one"), text("1")), &s);
    const QRegularExpression rx(text("(?<word>one)"));
    QCOMPARE(&StringUtils::replaceFirstOccurrence(s, rx, text("word"), text("2")), &s);
    QCOMPARE(s, text("1 2"));
}

void tst_StringUtils::removeLastChar_data()
{
    const auto row = columns<QString, QString>("s", "result");
    row("word", "abc", "ab");
    row("one", "a", QString());
    row("empty", QString(), QString());
}

void tst_StringUtils::removeLastChar()
{
    QFETCH(QString, s);
    StringUtils::removeLastChar(s);
    QTEST(s, "result");
}

void tst_StringUtils::richTextToBold()
{
    QCOMPARE(StringUtils::richTextToBold(text("a & b")), text("<b>a & b</b>"));
    QCOMPARE(StringUtils::richTextToBold(QString()), text("<b></b>"));
}

void tst_StringUtils::joinWithSlashes_data()
{
    const auto row = columns<QStringList, QString>("elements", "joined");
    row("none", QStringList(), QString());
    row("one", QStringList{text("a")}, "a");
    row("three", QStringList{text("a"), text("b"), text("c")}, "a/b/c");
    row("empty elements", QStringList{QString(), text("a"), QString()}, "/a/");
    row("slashes inside stay", QStringList{text("a/"), text("/b")}, "a///b");
}

void tst_StringUtils::joinWithSlashes()
{
    QFETCH(QStringList, elements);
    QTEST(StringUtils::joinWithSlashes(elements), "joined");
}

void tst_StringUtils::nothingIsLogged()
{
    LogCapture log;
    int result = 0;
    StringUtils::compareVersion(text("x"), text("y"), result);
    StringUtils::hexaStringToByteArray(text("zz"), 16);
    StringUtils::getRandomString(-1);
    QCOMPARE(log.lines(), QStringList());
}

QTEST_GUILESS_MAIN(tst_StringUtils)
#include "tst_StringUtils.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TextStreamUTF8.h"

#include "Columns.h"
#include "StreamedDocument.h"
#include "Text.h"

#include <QBuffer>
#include <QTextCodec>
#include <QtTest>

#include <cstdio>
#include <limits>
#include <type_traits>

namespace {

// The functions for the encoding of a stream differ between Qt 5 and Qt 6.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
using Qt::dec;
using Qt::endl;
using Qt::hex;

void writeLatin1(QTextStream& stream)
{
    stream.setEncoding(QStringConverter::Latin1);
}

QByteArray encodingOf(const QTextStream& stream)
{
    return QStringConverter::nameForEncoding(stream.encoding());
}
#else
void writeLatin1(QTextStream& stream)
{
    stream.setCodec("ISO-8859-1");
}

QByteArray encodingOf(const QTextStream& stream)
{
    return stream.codec()->name();
}
#endif

} // namespace

class tst_TextStreamUTF8 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isATextStream();
    void writesUtf8ToADevice();
    void writesUtf8ToACFile();
    void writesToAString();
    void reads();
    void init();
    void indented_data();
    void indented();
    void levelZeroLeavesTheLineStart();
    void levelBelowZero();
    void writeTextWithIndentAtLevelZero();
    void writeIndent();
    void writeRaw();
    void jump();
    void incrementString();
    void chaining();
    void numbers();
    void numbersInTheirLine();
    void characters();
    void bytes();
    void formatOfNumbers();
    void manipulators();
    void indentationIsNoField();
    void manyLineBreaks();
    void throughTheBase();
    void streamsLargeTexts();
};

void tst_TextStreamUTF8::isATextStream()
{
    QVERIFY((std::is_base_of<QTextStream, TextStreamUTF8>::value));
    TextStreamUTF8 stream;
    QCOMPARE(encodingOf(stream), QByteArray("UTF-8"));
    QVERIFY(!stream.device());
    QVERIFY(!stream.string());
}

void tst_TextStreamUTF8::writesUtf8ToADevice()
{
    QTextCodec* const before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    {
        TextStreamUTF8 stream(&buffer);
        QCOMPARE(stream.device(), static_cast<QIODevice*>(&buffer));
        stream << text("é€😀");
    }
    QTextCodec::setCodecForLocale(before);
    QCOMPARE(buffer.data(), QByteArray("\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80"));
}

void tst_TextStreamUTF8::writesUtf8ToACFile()
{
    std::FILE* const file = std::tmpfile();
    QVERIFY(file);
    {
        TextStreamUTF8 stream(file, QIODevice::WriteOnly);
        QCOMPARE(encodingOf(stream), QByteArray("UTF-8"));
        stream.incrementIndent();
        stream << text("é\n");
    }
    std::rewind(file);
    char bytes[16];
    const size_t size = std::fread(bytes, 1, sizeof bytes, file);
    std::fclose(file);
    QCOMPARE(QByteArray(bytes, int(size)), QByteArray("  \xc3\xa9\n"));
}

void tst_TextStreamUTF8::writesToAString()
{
    QString string = text("before ");
    {
        TextStreamUTF8 stream(&string, QIODevice::WriteOnly | QIODevice::Append);
        QCOMPARE(encodingOf(stream), QByteArray("UTF-8"));
        stream << text("é");
    }
    QCOMPARE(string, text("before é"));
}

void tst_TextStreamUTF8::reads()
{
    QBuffer buffer;
    buffer.setData("\xc3\xa9t\xc3\xa9\nx");
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    TextStreamUTF8 stream(&buffer);
    QCOMPARE(stream.readLine(), text("été"));
    QCOMPARE(stream.readAll(), text("x"));
}

void tst_TextStreamUTF8::init()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    TextStreamUTF8 stream;
    stream.incrementIndent();
    stream.setIncrementString(text("-"));
    stream.setDevice(&buffer);
    writeLatin1(stream);
    QCOMPARE(encodingOf(stream), QByteArray("ISO-8859-1"));
    stream.init();
    QCOMPARE(encodingOf(stream), QByteArray("UTF-8"));
    stream << text("é\n");
    // The level is 0 again, but the unit is kept.
    stream.incrementIndent();
    stream << text("b\n");
    stream.flush();
    QCOMPARE(buffer.data(), QByteArray("\xc3\xa9\n-b\n"));

    // The stream still knows that the line "b" has not ended.
    stream << text("c");
    stream.init();
    stream.incrementIndent();
    stream << text("d\n");
    stream.flush();
    QCOMPARE(buffer.data(), QByteArray("\xc3\xa9\n-b\n-cd\n"));
}

void tst_TextStreamUTF8::indented_data()
{
    const auto table = columns<int, QStringList, QString>("level", "texts", "result");
    const auto row = [&](int level, const QStringList& texts, const char* result) {
        table(qPrintable(text("%1: %2").arg(level).arg(
                  texts.join(QLatin1Char('|')).replace(QLatin1Char('\n'), QLatin1String("\\n")))),
              level, texts, text(result));
    };
    const auto s = [](const char* string) { return text(string); };
    row(0, {s("a\nb\n"), s("c")}, "a\nb\nc");
    row(1, {s("a\nb\n"), s("c")}, "  a\n  b\n  c");
    row(2, {s("a\nb\n"), s("c")}, "    a\n    b\n    c");
    row(1, {s("a"), s("b")}, "  ab");
    row(1, {s("a"), s("b\n"), s("c")}, "  ab\n  c");
    row(1, {s("a\n"), s("\n"), s("b")}, "  a\n  \n  b"); // an empty line is indented
    row(1, {s("\n")}, "  \n");
    row(1, {s("\n\n")}, "  \n  \n");
    row(1, {s("a\n\nb")}, "  a\n  \n  b");
    row(1, {s("a"), s("\n"), s("b")}, "  a\n  b");
    row(1, {s("")}, "  ");
    row(1, {s(""), s("a")}, "  a");
    row(1, {s("a\n"), s(""), s("b")}, "  a\n  b");
    row(1, {s("a\r\nb")}, "  a\r\n  b");
    row(1, {s("é\n日本")}, "  é\n  日本");
}

void tst_TextStreamUTF8::indented()
{
    QFETCH(int, level);
    QFETCH(QStringList, texts);
    QString result;
    TextStreamUTF8 stream(&result);
    for (int i = 0; i < level; ++i)
        stream.incrementIndent();
    for (const QString& string : texts)
        stream << string;
    QTEST(result, "result");
}

void tst_TextStreamUTF8::levelZeroLeavesTheLineStart()
{
    QString result;
    TextStreamUTF8 stream(&result);
    // The flag is still set, although a text without a line break was written.
    stream << text("a");
    stream.incrementIndent();
    stream << text("b");
    QCOMPARE(result, text("a  b"));
    // The flag is now clear, and a line break at level 0 does not set it.
    stream.decrementIndent();
    stream << text("c\n");
    stream.incrementIndent();
    stream << text("d");
    QCOMPARE(result, text("a  bc\nd"));
}

void tst_TextStreamUTF8::levelBelowZero()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.decrementIndent();
    stream.decrementIndent(); // -2
    stream << text("a\nb");
    stream.writeIndent();
    stream.jump();
    QCOMPARE(result, text("a\nb\n"));
    stream.incrementIndent();
    stream.incrementIndent(); // 0
    stream << text("c");
    QCOMPARE(result, text("a\nb\nc"));
    stream.incrementIndent(); // 1; the flag was set all the time
    stream << text("d");
    QCOMPARE(result, text("a\nb\nc  d"));

    // At a negative level writeTextWithIndent() behaves as at level zero.
    result.clear();
    TextStreamUTF8 another(&result);
    another.decrementIndent();
    another.writeTextWithIndent(text("a\nb"));
    another.incrementIndent();
    another.incrementIndent();
    another << text("c");
    QCOMPARE(result, text("a\nbc"));
}

void tst_TextStreamUTF8::writeTextWithIndentAtLevelZero()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.writeTextWithIndent(text("a\nb"));
    stream.incrementIndent();
    stream.writeTextWithIndent(text("c")); // the flag was cleared
    stream.decrementIndent();
    stream.writeTextWithIndent(text("\n"));
    stream.incrementIndent();
    stream.writeTextWithIndent(text("d")); // and set again
    QCOMPARE(result, text("a\nbc\n  d"));
}

void tst_TextStreamUTF8::writeIndent()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.writeIndent();
    QCOMPARE(result, QString());
    stream.incrementIndent();
    stream.incrementIndent();
    stream.writeIndent();
    QCOMPARE(result, text("    "));
    stream << text("a"); // the flag is still set
    QCOMPARE(result, text("        a"));
    stream.writeIndent();
    stream << text("b"); // and still clear now
    QCOMPARE(result, text("        a    b"));
}

void tst_TextStreamUTF8::writeRaw()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.incrementIndent();
    stream.writeRaw(text("a\nb\n"));
    QCOMPARE(result, text("a\nb\n"));
    stream << text("c"); // the flag is still set
    stream.writeRaw(text("\n"));
    stream << text("d"); // and still clear now
    QCOMPARE(result, text("a\nb\n  c\nd"));
}

void tst_TextStreamUTF8::jump()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.jump();
    QCOMPARE(result, text("\n"));
    stream.incrementIndent();
    stream.jump(); // the indentation is written before it
    QCOMPARE(result, text("\n  \n"));
    stream << text("a");
    stream.jump();
    stream << text("b");
    QCOMPARE(result, text("\n  \n  a\n  b"));
}

void tst_TextStreamUTF8::incrementString()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.setIncrementString(text("\t"));
    stream.incrementIndent();
    stream.incrementIndent();
    stream << text("a\nb\n");
    stream.setIncrementString(QString());
    stream << text("c\n");
    stream.setIncrementString(text("é "));
    stream << text("d");
    QCOMPARE(result, text("\t\ta\n\t\tb\nc\né é d"));
}

void tst_TextStreamUTF8::chaining()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.incrementIndent();
    TextStreamUTF8& returned = stream << text("a\n") << text("b") << QString(QLatin1Char('c'));
    QCOMPARE(&returned, &stream);
    QCOMPARE(result, text("  a\n  bc"));
}

/// Numbers are written like in QTextStream, and indented at the start of a line.
template <typename Number>
void compareNumber(Number number)
{
    QString plain;
    QTextStream(&plain) << number;
    QVERIFY(!plain.isEmpty());
    for (const int level : {-1, 0, 2}) {
        QString result;
        TextStreamUTF8 stream(&result);
        for (int i = level; i < 0; ++i)
            stream.decrementIndent();
        for (int i = 0; i < level; ++i)
            stream.incrementIndent();
        stream << number << number;
        QCOMPARE(result, QString(qMax(0, 2 * level), QLatin1Char(' ')) + plain + plain);
    }
}

void tst_TextStreamUTF8::numbers()
{
    enum Enumeration { Enumerator = 7 };
    compareNumber(0);
    compareNumber(5);
    compareNumber(-42);
    compareNumber(7u);
    compareNumber(short(-3));
    compareNumber(ushort(65535));
    compareNumber(uchar(200));
    compareNumber(2147483648L);
    compareNumber(4000000000UL);
    compareNumber(std::numeric_limits<qlonglong>::min());
    compareNumber(std::numeric_limits<qulonglong>::max());
    compareNumber(1.5);
    compareNumber(1234567.0);
    compareNumber(0.1f);
    compareNumber(true);
    compareNumber(false);
    compareNumber(Enumerator);
}

void tst_TextStreamUTF8::numbersInTheirLine()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.incrementIndent();
    stream << text("a: ") << 1 << text("\n") << 2 << text(",") << 3.5 << text("\nb");
    QCOMPARE(result, text("  a: 1\n  2,3.5\n  b"));
}

void tst_TextStreamUTF8::characters()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.incrementIndent();
    stream << 'a' << '\n' << QChar(0x20ac) << '\xe9' << QLatin1Char('\n') << 'b';
    QCOMPARE(result, text("  a\n  €é\n  b"));
}

void tst_TextStreamUTF8::bytes()
{
    // As a QString made of them: UTF-8, up to the first NUL.
    QString written;
    TextStreamUTF8 stream(&written);
    const char* const pointer = "\xc3\xa9\n";
    const QByteArray array("b\xc3\xa9\0c", 5);
    stream.incrementIndent();
    stream << pointer << array << "d" << QByteArray() << static_cast<const char*>(nullptr);
    stream.flush();
    QCOMPARE(written, QString::fromUtf8("  \xc3\xa9\n  b\xc3\xa9") + QLatin1Char('d'));
}

void tst_TextStreamUTF8::formatOfNumbers()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.incrementIndent();
    stream.setIntegerBase(16);
    stream.setNumberFlags(QTextStream::ShowBase);
    stream.setRealNumberNotation(QTextStream::FixedNotation);
    stream.setRealNumberPrecision(1);
    stream << 255 << ' ' << 0.75;
    QCOMPARE(result, text("  0xff 0.8"));
}

void tst_TextStreamUTF8::manipulators()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    TextStreamUTF8 stream(&buffer);
    stream.incrementIndent();
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    TextStreamUTF8& returned = stream << text("a") << endl << text("b");
    // A line break flushes the stream.
    QCOMPARE(buffer.data(), QByteArray("  a\n"));
    QCOMPARE(&returned, &stream);
    stream << endl << hex << 255 << dec << 10;
    QT_WARNING_POP
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    stream << Qt::endl << Qt::hex << 255;
#else
    stream << endl << hex << 255;
#endif
    stream << qSetFieldWidth(4) << 1 << TextStreamUTF8::Manipulator();
    stream.flush();
    QCOMPARE(buffer.data(), QByteArray("  a\n  b\n  ff10\n  ff   1"));
}

void tst_TextStreamUTF8::indentationIsNoField()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.setFieldWidth(4);
    stream.writeIndent();
    QCOMPARE(result, QString());
    stream.incrementIndent();
    stream << 1 << text("x\n") << text("ab");
    QCOMPARE(result, text("     1  x\n    ab"));
    QCOMPARE(stream.fieldWidth(), 4);
}

/// Every line break of a long text, in time proportional to its length.
void tst_TextStreamUTF8::manyLineBreaks()
{
    const int count = 4 << 20;
    QString result;
    TextStreamUTF8 stream(&result);
    stream.incrementIndent();
    stream << QString(count, QLatin1Char('\n'));
    QCOMPARE(result.size(), 3 * count);
    QCOMPARE(result, text("  \n").repeated(count));
}

/// Formatters get the stream as a QTextStream: their output is not indented.
void tst_TextStreamUTF8::throughTheBase()
{
    QString result;
    TextStreamUTF8 stream(&result);
    stream.incrementIndent();
    QTextStream& base = stream;
    base << text("a\nb\n") << 7;
    QCOMPARE(result, text("a\nb\n7"));
    stream << text("c");
    QCOMPARE(result, text("a\nb\n7  c"));
}

void tst_TextStreamUTF8::streamsLargeTexts()
{
    CountingDevice device;
    const QString line = QString(99, QLatin1Char('x')) + QLatin1Char('\n');
    {
        TextStreamUTF8 stream(&device);
        stream.incrementIndent();
        for (int i = 0; i < 100000; ++i)
            stream << line;
        QVERIFY(device.total() > 102 * 100000 - 65536); // before the stream is flushed
    }
    QCOMPARE(device.total(), qint64(102 * 100000));
    QVERIFY(device.largest() <= 65536);
}

QTEST_GUILESS_MAIN(tst_TextStreamUTF8)
#include "tst_TextStreamUTF8.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "QExifValue.h"

#include "Columns.h"
#include "LogCapture.h"

#include <QTextCodec>
#include <QThread>
#include <QtTest>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <vector>

Q_DECLARE_METATYPE(QExifValue)

using Bytes = QVector<quint8>;
using Shorts = QVector<quint16>;
using Longs = QVector<quint32>;
using SignedLongs = QVector<qint32>;
using UnsignedPair = QPair<quint32, quint32>;
using SignedPair = QPair<qint32, qint32>;
using Rationals = QVector<UnsignedPair>;
using SignedRationals = QVector<SignedPair>;

Q_DECLARE_METATYPE(Bytes)
Q_DECLARE_METATYPE(Shorts)
Q_DECLARE_METATYPE(Longs)
Q_DECLARE_METATYPE(SignedLongs)
Q_DECLARE_METATYPE(UnsignedPair)
Q_DECLARE_METATYPE(SignedPair)
Q_DECLARE_METATYPE(Rationals)
Q_DECLARE_METATYPE(SignedRationals)

namespace {

/// Reports at exit, after the report of the test is written, that a value misbehaved while static
/// objects were destroyed.
void checkAtExit(bool condition, const char* what)
{
    if (condition)
        return;
    std::fputs(what, stderr);
    std::_Exit(1);
}

/// Asks for a null value when even the null record is destroyed: this object is older.
struct LastUser
{
    LastUser() { std::atexit(lateUse); }
    static void lateUse()
    {
        checkAtExit(QExifValue().isNull(), "no null value at the end\n");
        checkAtExit(QExifValue() == QExifValue() || QExifValue().count() == 0,
                    "the null value at the end is broken\n");
    }
} lastUser;

/// Lives from before main() until after it, and is created before the null record exists.
struct StaticValues
{
    ~StaticValues()
    {
        checkAtExit(number.toLong() == 7, "a static value lost its content\n");
        checkAtExit(null.isNull(), "a static null value is not null any more\n");
        number = QExifValue();
        checkAtExit(number.isNull() && number == QExifValue(), "no null value at exit\n");
    }

    QExifValue number{quint32(7)};
    QExifValue null;
} staticValues;

/// Replaces the codec that a platform may have: two bytes per character, the high byte first.
class JisCodec : public QTextCodec
{
public:
    QByteArray name() const override { return "JIS X 0208"; }
    int mibEnum() const override { return 63; }

protected:
    QString convertToUnicode(const char* bytes, int length, ConverterState*) const override
    {
        QString text;
        for (int i = 0; i + 1 < length; i += 2)
            text += QChar(uchar(bytes[i + 1]), uchar(bytes[i]));
        return text;
    }
    QByteArray convertFromUnicode(const QChar* text, int length, ConverterState*) const override
    {
        QByteArray bytes;
        for (int i = 0; i < length; ++i) {
            bytes += char(text[i].row());
            bytes += char(text[i].cell());
        }
        return bytes;
    }
};

QByteArray asciiPrefix()
{
    return QByteArray("ASCII\0\0\0", 8);
}

QByteArray jisPrefix()
{
    return QByteArray("JIS\0\0\0\0\0", 8);
}

QByteArray unicodePrefix()
{
    return QByteArray("UNICODE\0", 8);
}

QByteArray undefinedPrefix()
{
    return QByteArray(8, '\0');
}

} // namespace

class tst_QExifValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void debugOutput_data();
    void debugOutput();
    void numbers();
    void constructors_data();
    void constructors();
    void scalarConverters_data();
    void scalarConverters();
    void vectorConverters_data();
    void vectorConverters();
    void plainText_data();
    void plainText();
    void encodingOutsideTheEnumeration_data();
    void encodingOutsideTheEnumeration();
    void asciiEncoding();
    void jisEncoding();
    void unicodeEncoding();
    void undefinedEncoding();
    void encodedEmptyText();
    void encoding_data();
    void encoding();
    void decoding_data();
    void decoding();
    void toByteArray_data();
    void toByteArray();
    void dateTime_data();
    void dateTime();
    void toDateTime_data();
    void toDateTime();
    void nullValue();
    void emptyIsNotNull_data();
    void emptyIsNotNull();
    void identity();
    void assignment();
    void outlivesItsSource();
    void implicitConversion();
    void sharedBetweenThreads();
    void nullFromThreads();
    void logsNothing();
    void jisEncodingWithACodec();
};

void tst_QExifValue::numbers()
{
    const QList<int> values{QExifValue::Byte,
                            QExifValue::Ascii,
                            QExifValue::Short,
                            QExifValue::Long,
                            QExifValue::Rational,
                            QExifValue::Undefined,
                            QExifValue::SignedLong,
                            QExifValue::SignedRational,
                            QExifValue::NoEncoding,
                            QExifValue::AsciiEncoding,
                            QExifValue::JisEncoding,
                            QExifValue::UnicodeEncoding,
                            QExifValue::UndefinedEncoding};
    QCOMPARE(values, QList<int>({1, 2, 3, 4, 5, 7, 9, 10, 0, 1, 2, 3, 4}));
    static_assert(sizeof(QExifValue().type()) == 2, "the type is a 16-bit number");
    static_assert(sizeof(QExifValue().count()) == 4, "the count is a 32-bit number");
}

void tst_QExifValue::constructors_data()
{
    const auto row = columns<QExifValue, int, int>("value", "type", "count");

    row("nothing", QExifValue(), 1, 0);
    row("quint8", QExifValue(quint8(255)), 1, 1);
    row("bytes", QExifValue(Bytes{1, 2, 3}), 1, 3);
    row("no bytes", QExifValue(Bytes()), 1, 0);
    row("quint16", QExifValue(quint16(65535)), 3, 1);
    row("shorts", QExifValue(Shorts{1, 2}), 3, 2);
    row("no shorts", QExifValue(Shorts()), 3, 0);
    row("quint32", QExifValue(quint32(4294967295u)), 4, 1);
    row("longs", QExifValue(Longs{1, 2, 3, 4}), 4, 4);
    row("no longs", QExifValue(Longs()), 4, 0);
    row("rational", QExifValue(UnsignedPair(72, 1)), 5, 1);
    row("rationals", QExifValue(Rationals{{1, 2}, {3, 4}, {5, 6}}), 5, 3);
    row("no rationals", QExifValue(Rationals()), 5, 0);
    row("qint32", QExifValue(qint32(-1)), 9, 1);
    row("signed longs", QExifValue(SignedLongs{-1, 0}), 9, 2);
    row("no signed longs", QExifValue(SignedLongs()), 9, 0);
    row("signed rational", QExifValue(SignedPair(-1, 3)), 10, 1);
    row("signed rationals", QExifValue(SignedRationals{{-1, 3}, {1, -3}}), 10, 2);
    row("no signed rationals", QExifValue(SignedRationals()), 10, 0);
    row("byte array", QExifValue(QByteArray("abcd\0f", 6)), 7, 6);
    row("empty byte array", QExifValue(QByteArray()), 7, 0);
    row("date", QExifValue(QDateTime(QDate(2004, 7, 10), QTime(18, 9, 53))), 2, 20);
    row("invalid date", QExifValue(QDateTime()), 2, 1);
    row("text", QExifValue(QStringLiteral("abc")), 2, 4);
    row("empty text", QExifValue(QString()), 2, 1);
    row("encoded text", QExifValue(QStringLiteral("abc"), QExifValue::AsciiEncoding), 7, 11);
}

void tst_QExifValue::constructors()
{
    QFETCH(QExifValue, value);
    QFETCH(int, type);
    QFETCH(int, count);
    QCOMPARE(int(value.type()), type);
    QCOMPARE(value.count(), quint32(count));
    const QExifValue copy(value);
    QCOMPARE(int(copy.type()), type);
    QCOMPARE(copy.count(), quint32(count));
}

void tst_QExifValue::scalarConverters_data()
{
    const auto table =
        columns<QExifValue, quint8, quint16, quint32, qint32, UnsignedPair, SignedPair>(
            "value", "asByte", "asShort", "asLong", "asSignedLong", "asRational",
            "asSignedRational");

    const auto row = [&](const char* name, const QExifValue& value, quint8 asByte, quint16 asShort,
                         quint32 asLong, qint32 asSignedLong,
                         UnsignedPair asRational = UnsignedPair(0, 0),
                         SignedPair asSignedRational = SignedPair(0, 0)) {
        table(name, value, asByte, asShort, asLong, asSignedLong, asRational, asSignedRational);
    };
    row("null", QExifValue(), 0, 0, 0, 0);
    row("byte", QExifValue(quint8(200)), 200, 200, 200, 200);
    row("one byte of a vector", QExifValue(Bytes{200}), 200, 200, 200, 200);
    row("short", QExifValue(quint16(65535)), 0, 65535, 65535, 65535);
    row("one short of a vector", QExifValue(Shorts{6}), 0, 6, 6, 6);
    row("long", QExifValue(quint32(70000)), 0, 0, 70000, 70000);
    row("long of a short's size", QExifValue(quint32(6)), 0, 0, 6, 6);
    row("long of all bits", QExifValue(quint32(4294967295u)), 0, 0, 4294967295u, -1);
    row("one long of a vector", QExifValue(Longs{6}), 0, 0, 6, 6);
    row("signed long", QExifValue(qint32(-2)), 0, 0, 4294967294u, -2);
    row("one signed long of a vector", QExifValue(SignedLongs{7}), 0, 0, 7, 7);
    row("least signed long", QExifValue(std::numeric_limits<qint32>::min()), 0, 0, 2147483648u,
        std::numeric_limits<qint32>::min());
    row("rational", QExifValue(UnsignedPair(4294967295u, 3)), 0, 0, 0, 0,
        UnsignedPair(4294967295u, 3));
    row("one rational of a vector", QExifValue(Rationals{{1, 2}}), 0, 0, 0, 0, UnsignedPair(1, 2));
    row("signed rational", QExifValue(SignedPair(-1, 3)), 0, 0, 0, 0, UnsignedPair(0, 0),
        SignedPair(-1, 3));
    row("one signed rational of a vector", QExifValue(SignedRationals{{5, -6}}), 0, 0, 0, 0,
        UnsignedPair(0, 0), SignedPair(5, -6));
    row("text of one digit", QExifValue(QStringLiteral("6")), 0, 0, 0, 0);
    row("empty text, count 1", QExifValue(QString()), 0, 0, 0, 0);
    row("one raw byte", QExifValue(QByteArray("\x06")), 0, 0, 0, 0);
    row("two bytes", QExifValue(Bytes{1, 2}), 0, 0, 0, 0);
    row("two shorts", QExifValue(Shorts{1, 2}), 0, 0, 0, 0);
    row("two longs", QExifValue(Longs{1, 2}), 0, 0, 0, 0);
    row("two signed longs", QExifValue(SignedLongs{1, 2}), 0, 0, 0, 0);
    row("two rationals", QExifValue(Rationals{{1, 2}, {3, 4}}), 0, 0, 0, 0);
    row("two signed rationals", QExifValue(SignedRationals{{1, 2}, {3, 4}}), 0, 0, 0, 0);
    row("no bytes", QExifValue(Bytes()), 0, 0, 0, 0);
    row("no shorts", QExifValue(Shorts()), 0, 0, 0, 0);
    row("no longs", QExifValue(Longs()), 0, 0, 0, 0);
    row("no signed longs", QExifValue(SignedLongs()), 0, 0, 0, 0);
    row("no rationals", QExifValue(Rationals()), 0, 0, 0, 0);
    row("no signed rationals", QExifValue(SignedRationals()), 0, 0, 0, 0);
}

void tst_QExifValue::scalarConverters()
{
    QFETCH(QExifValue, value);
    QFETCH(quint8, asByte);
    QFETCH(quint16, asShort);
    QFETCH(quint32, asLong);
    QFETCH(qint32, asSignedLong);
    QFETCH(UnsignedPair, asRational);
    QFETCH(SignedPair, asSignedRational);
    QCOMPARE(value.toByte(), asByte);
    QCOMPARE(value.toShort(), asShort);
    QCOMPARE(value.toLong(), asLong);
    QCOMPARE(value.toSignedLong(), asSignedLong);
    QCOMPARE(value.toRational(), asRational);
    QCOMPARE(value.toSignedRational(), asSignedRational);
}

void tst_QExifValue::vectorConverters_data()
{
    const auto table =
        columns<QExifValue, Bytes, Shorts, Longs, Rationals, SignedLongs, SignedRationals>(
            "value", "bytes", "shorts", "longs", "rationals", "signedLongs", "signedRationals");

    const Bytes bytes{0, 255, 7};
    const Shorts shorts{0, 65535};
    const Longs longs{0, 4294967295u};
    const Rationals rationals{{1, 2}, {4294967295u, 0}};
    const SignedLongs signedLongs{-1, 0, 1};
    const SignedRationals signedRationals{{-1, 2}, {1, -2}};
    const auto row = [&](const char* name, const QExifValue& value, const Bytes& asBytes = Bytes(),
                         const Shorts& asShorts = Shorts(), const Longs& asLongs = Longs(),
                         const Rationals& asRationals = Rationals(),
                         const SignedLongs& asSignedLongs = SignedLongs(),
                         const SignedRationals& asSignedRationals = SignedRationals()) {
        table(name, value, asBytes, asShorts, asLongs, asRationals, asSignedLongs,
              asSignedRationals);
    };
    row("null", QExifValue());
    row("byte", QExifValue(quint8(3)), Bytes{3});
    row("bytes", QExifValue(bytes), bytes);
    row("short", QExifValue(quint16(3)), Bytes(), Shorts{3});
    row("shorts", QExifValue(shorts), Bytes(), shorts);
    row("long", QExifValue(quint32(3)), Bytes(), Shorts(), Longs{3});
    row("longs", QExifValue(longs), Bytes(), Shorts(), longs);
    row("rational", QExifValue(UnsignedPair(3, 4)), Bytes(), Shorts(), Longs(), Rationals{{3, 4}});
    row("rationals", QExifValue(rationals), Bytes(), Shorts(), Longs(), rationals);
    row("signed long", QExifValue(qint32(-3)), Bytes(), Shorts(), Longs(), Rationals(),
        SignedLongs{-3});
    row("signed longs", QExifValue(signedLongs), Bytes(), Shorts(), Longs(), Rationals(),
        signedLongs);
    row("signed rational", QExifValue(SignedPair(-3, 4)), Bytes(), Shorts(), Longs(), Rationals(),
        SignedLongs(), SignedRationals{{-3, 4}});
    row("signed rationals", QExifValue(signedRationals), Bytes(), Shorts(), Longs(), Rationals(),
        SignedLongs(), signedRationals);
    row("text", QExifValue(QStringLiteral("abc")));
    row("raw bytes", QExifValue(QByteArray("abc")));
}

void tst_QExifValue::vectorConverters()
{
    QFETCH(QExifValue, value);
    QTEST(value.toByteVector(), "bytes");
    QTEST(value.toShortVector(), "shorts");
    QTEST(value.toLongVector(), "longs");
    QTEST(value.toRationalVector(), "rationals");
    QTEST(value.toSignedLongVector(), "signedLongs");
    QTEST(value.toSignedRationalVector(), "signedRationals");
}

void tst_QExifValue::plainText_data()
{
    const auto row = columns<QString>("text");
    row("null", QString());
    row("empty", "");
    row("plain", "abc");
    row("outside of Latin-1, kept as it is", "\u20ac\u4e2d");
    row("embedded NUL", QString::fromLatin1("a\0b", 3));
    row("trailing NUL", QString::fromLatin1("ab\0", 3));
    row("outside of the BMP", "\U0001F600");
}

void tst_QExifValue::plainText()
{
    QFETCH(QString, text);
    const QExifValue value(text);
    QCOMPARE(int(value.type()), int(QExifValue::Ascii));
    QCOMPARE(value.count(), quint32(text.length() + 1));
    QCOMPARE(value.toString(), text);
    QCOMPARE(value.encoding(), QExifValue::NoEncoding);
    QCOMPARE(QExifValue(text, QExifValue::NoEncoding).toString(), text);
}

void tst_QExifValue::encodingOutsideTheEnumeration_data()
{
    const auto row = columns<int>("number");
    row("5", 5);
    row("-1", -1);
    row("large", 2147483647);
}

void tst_QExifValue::encodingOutsideTheEnumeration()
{
    QFETCH(int, number);
    const QExifValue value(QStringLiteral("abc"), static_cast<QExifValue::TextEncoding>(number));
    QCOMPARE(int(value.type()), int(QExifValue::Ascii));
    QCOMPARE(value.count(), 4u);
    QCOMPARE(value.toString(), QStringLiteral("abc"));
}

void tst_QExifValue::asciiEncoding()
{
    const QExifValue value(QStringLiteral("ab\u00e9"), QExifValue::AsciiEncoding);
    QCOMPARE(int(value.type()), int(QExifValue::Undefined));
    QCOMPARE(value.count(), 11u);
    QCOMPARE(value.toByteArray(), asciiPrefix() + QByteArray("ab\xe9"));
    QCOMPARE(value.encoding(), QExifValue::AsciiEncoding);
    QCOMPARE(value.toString(), QStringLiteral("ab\u00e9"));
}

void tst_QExifValue::jisEncoding()
{
    const QString text = QStringLiteral("\u65e5\u672c");
    const QExifValue value(text, QExifValue::JisEncoding);
    QTextCodec* const codec = QTextCodec::codecForName("JIS X 0208");
    if (!codec) {
        QVERIFY(value.isNull());
        QVERIFY(value == QExifValue());
        // A payload in this encoding that comes from a file cannot be read either.
        const QExifValue fromFile(jisPrefix() + QByteArray("abc"));
        QCOMPARE(fromFile.encoding(), QExifValue::JisEncoding);
        QVERIFY(fromFile.toString().isNull());
        return;
    }
    QCOMPARE(int(value.type()), int(QExifValue::Undefined));
    QCOMPARE(value.toByteArray(), jisPrefix() + codec->fromUnicode(text));
    QCOMPARE(value.count(), quint32(value.toByteArray().size()));
    QCOMPARE(value.encoding(), QExifValue::JisEncoding);
    QCOMPARE(value.toString(), text);
}

void tst_QExifValue::unicodeEncoding()
{
    const QExifValue value(QStringLiteral("a\u20ac"), QExifValue::UnicodeEncoding);
    QCOMPARE(int(value.type()), int(QExifValue::Undefined));
    // A byte-order mark and the two characters in the host's byte order.
    const QByteArray text = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? QByteArray("\xff\xfe"
                                                                         "a\0"
                                                                         "\xac\x20",
                                                                         6)
                                                            : QByteArray("\xfe\xff"
                                                                         "\0a"
                                                                         "\x20\xac",
                                                                         6);
    QCOMPARE(value.toByteArray(), unicodePrefix() + text);
    QCOMPARE(value.count(), 14u);
    QCOMPARE(value.encoding(), QExifValue::UnicodeEncoding);
    QCOMPARE(value.toString(), QStringLiteral("a\u20ac"));
}

void tst_QExifValue::undefinedEncoding()
{
    const QString text = QStringLiteral("a\u00e9");
    const QExifValue value(text, QExifValue::UndefinedEncoding);
    QCOMPARE(int(value.type()), int(QExifValue::Undefined));
    QCOMPARE(value.toByteArray(), undefinedPrefix() + text.toLocal8Bit());
    QCOMPARE(value.count(), quint32(8 + text.toLocal8Bit().size()));
    QCOMPARE(value.encoding(), QExifValue::UndefinedEncoding);
    QCOMPARE(value.toString(), QString::fromLocal8Bit(text.toLocal8Bit()));
}

// The prefix alone has 8 bytes, too few to count as an encoded text.
void tst_QExifValue::encodedEmptyText()
{
    const QExifValue value(QString(), QExifValue::AsciiEncoding);
    QCOMPARE(value.toByteArray(), asciiPrefix());
    QCOMPARE(value.count(), 8u);
    QCOMPARE(value.encoding(), QExifValue::NoEncoding);
    QVERIFY(value.toString().isNull());
    QVERIFY(!value.isNull());
}

void tst_QExifValue::encoding_data()
{
    const auto row = columns<QExifValue, int>("value", "encoding");

    row("ASCII", QExifValue(asciiPrefix() + 'x'), 1);
    row("JIS", QExifValue(jisPrefix() + 'x'), 2);
    row("UNICODE", QExifValue(unicodePrefix() + 'x'), 3);
    row("eight NULs", QExifValue(undefinedPrefix() + 'x'), 4);
    row("ASCII, 8 bytes", QExifValue(asciiPrefix()), 0);
    row("eight NULs, 8 bytes", QExifValue(undefinedPrefix()), 0);
    row("7 bytes", QExifValue(QByteArray(7, '\0')), 0);
    row("no bytes", QExifValue(QByteArray()), 0);
    row("ASCII with two NULs", QExifValue(QByteArray("ASCII\0\0xy", 9)), 0);
    row("lower case", QExifValue(QByteArray("ascii\0\0\0x", 9)), 0);
    row("other bytes", QExifValue(QByteArray("012345678")), 0);
    row("null", QExifValue(), 0);
    row("prefix in a text",
        QExifValue(QString::fromLatin1(asciiPrefix().constData(), 8) + QStringLiteral("x")), 0);
    row("nine zero bytes of type Byte", QExifValue(Bytes(9, 0)), 0);
}

void tst_QExifValue::encoding()
{
    QFETCH(QExifValue, value);
    QFETCH(int, encoding);
    QCOMPARE(int(value.encoding()), encoding);
    if (encoding == 0 && value.type() == QExifValue::Undefined)
        QVERIFY(value.toString().isNull());
}

void tst_QExifValue::decoding_data()
{
    const auto row = columns<QExifValue, QString>("value", "text");

    row("Latin-1", QExifValue(asciiPrefix() + QByteArray("\xe9\xff")), "\u00e9\u00ff");
    row("Latin-1 with NULs", QExifValue(asciiPrefix() + QByteArray("a\0b\0", 4)),
        QString::fromLatin1("a\0b\0", 4));
    row("UTF-16, little endian by its mark",
        QExifValue(unicodePrefix() + QByteArray("\xff\xfe\xac\x20", 4)), "\u20ac");
    row("UTF-16, big endian by its mark",
        QExifValue(unicodePrefix() + QByteArray("\xfe\xff\x20\xac", 4)), "\u20ac");
    row("local 8 bit", QExifValue(undefinedPrefix() + QByteArray("abc")), "abc");
    row("local 8 bit with a NUL", QExifValue(undefinedPrefix() + QByteArray("a\0b", 3)),
        QString::fromLatin1("a\0b", 3));
    row("byte", QExifValue(quint8(65)), QString());
    row("short", QExifValue(quint16(65)), QString());
    row("long", QExifValue(quint32(65)), QString());
    row("signed long", QExifValue(qint32(65)), QString());
    row("rational", QExifValue(UnsignedPair(6, 5)), QString());
    row("signed rational", QExifValue(SignedPair(6, 5)), QString());
    row("null", QExifValue(), QString());
}

void tst_QExifValue::decoding()
{
    QFETCH(QExifValue, value);
    QFETCH(QString, text);
    QCOMPARE(value.toString(), text);
    QCOMPARE(value.toString().isNull(), text.isNull());
}

void tst_QExifValue::toByteArray_data()
{
    const auto row = columns<QExifValue, QByteArray>("value", "bytes");

    row("raw", QExifValue(QByteArray("a\0b", 3)), QByteArray("a\0b", 3));
    row("prefix included", QExifValue(asciiPrefix() + "abc"), asciiPrefix() + "abc");
    row("text", QExifValue(QStringLiteral("ab\u00e9")), QByteArray("ab\xe9"));
    row("text outside of Latin-1", QExifValue(QStringLiteral("a\u20acb")), "a?b");
    row("null", QExifValue(), QByteArray());
    row("bytes", QExifValue(Bytes{65, 66}), QByteArray());
    row("short", QExifValue(quint16(65)), QByteArray());
    row("long", QExifValue(quint32(65)), QByteArray());
    row("signed long", QExifValue(qint32(65)), QByteArray());
    row("rational", QExifValue(UnsignedPair(6, 5)), QByteArray());
    row("signed rational", QExifValue(SignedPair(6, 5)), QByteArray());
}

void tst_QExifValue::toByteArray()
{
    QFETCH(QExifValue, value);
    QTEST(value.toByteArray(), "bytes");
}

void tst_QExifValue::dateTime_data()
{
    const auto row = columns<QDateTime, QString>("dateTime", "text");

    row("local", QDateTime(QDate(2004, 7, 10), QTime(18, 9, 53)), "2004:07:10 18:09:53");
    row("UTC", QDateTime(QDate(2004, 7, 10), QTime(18, 9, 53), Qt::UTC), "2004:07:10 18:09:53");
    row("milliseconds are dropped", QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59, 999), Qt::UTC),
        "1999:12:31 23:59:59");
    row("first hour, small numbers", QDateTime(QDate(101, 1, 2), QTime(0, 3, 4), Qt::UTC),
        "0101:01:02 00:03:04");
    row("invalid", QDateTime(), QString());
}

void tst_QExifValue::dateTime()
{
    QFETCH(QDateTime, dateTime);
    QFETCH(QString, text);
    const QExifValue value(dateTime);
    QCOMPARE(int(value.type()), int(QExifValue::Ascii));
    QCOMPARE(value.count(), quint32(text.length() + 1));
    QCOMPARE(value.toString(), text);
}

void tst_QExifValue::toDateTime_data()
{
    const auto row = columns<QExifValue, QDateTime>("value", "dateTime");

    const QDateTime moment(QDate(2004, 7, 10), QTime(18, 9, 53));
    row("of a date", QExifValue(moment), moment);
    row("of a text", QExifValue(QStringLiteral("2004:07:10 18:09:53")), moment);
    row("one character short", QExifValue(QStringLiteral("2004:07:10 18:09:5")), QDateTime());
    row("one character long", QExifValue(QStringLiteral("2004:07:10 18:09:53 ")), QDateTime());
    row("right length, no date", QExifValue(QStringLiteral("                   ")), QDateTime());
    row("unset clock of a camera", QExifValue(QStringLiteral("0000:00:00 00:00:00")), QDateTime());
    row("no such day", QExifValue(QStringLiteral("2005:02:29 00:00:00")), QDateTime());
    row("other separators", QExifValue(QStringLiteral("2004-07-10 18:09:53")), QDateTime());
    row("raw bytes", QExifValue(QByteArray("2004:07:10 18:09:53\0", 20)), QDateTime());
    row("20 bytes", QExifValue(Bytes(20, 48)), QDateTime());
    row("null", QExifValue(), QDateTime());
}

void tst_QExifValue::toDateTime()
{
    QFETCH(QExifValue, value);
    QFETCH(QDateTime, dateTime);
    QCOMPARE(value.toDateTime().isValid(), dateTime.isValid());
    if (dateTime.isValid())
        QCOMPARE(value.toDateTime(), dateTime);
}

void tst_QExifValue::nullValue()
{
    const QExifValue null;
    QVERIFY(null.isNull());
    QVERIFY(null == QExifValue());
    QVERIFY(!(null != QExifValue()));
    QVERIFY(QExifValue(null).isNull());
    QCOMPARE(int(null.type()), int(QExifValue::Byte));
    QCOMPARE(null.count(), 0u);
    QCOMPARE(null.toByteVector(), Bytes());
    QVERIFY(null.toString().isNull());
    QVERIFY(!null.toDateTime().isValid());
}

void tst_QExifValue::emptyIsNotNull_data()
{
    const auto row = columns<QExifValue>("value");
    row("bytes", QExifValue(Bytes()));
    row("shorts", QExifValue(Shorts()));
    row("longs", QExifValue(Longs()));
    row("signed longs", QExifValue(SignedLongs()));
    row("rationals", QExifValue(Rationals()));
    row("signed rationals", QExifValue(SignedRationals()));
    row("raw bytes", QExifValue(QByteArray()));
    row("text", QExifValue(QString()));
    row("date", QExifValue(QDateTime()));
    row("a zero byte", QExifValue(quint8(0)));
}

void tst_QExifValue::emptyIsNotNull()
{
    QFETCH(QExifValue, value);
    QVERIFY(!value.isNull());
    QVERIFY(value != QExifValue());
}

void tst_QExifValue::identity()
{
    const QExifValue five(quint32(5));
    const QExifValue copy(five);
    QVERIFY(five == five);
    QVERIFY(five == copy);
    QVERIFY(!(five != copy));
    QVERIFY(!(QExifValue(quint32(5)) == QExifValue(quint32(5))));
    QVERIFY(QExifValue(quint32(5)) != five);
    QVERIFY(!(QExifValue(Bytes()) == QExifValue(Bytes())));
}

void tst_QExifValue::assignment()
{
    QExifValue value(quint32(5));
    const QExifValue old(value);
    const QExifValue other(QStringLiteral("abc"));
    value = other;
    QVERIFY(value == other);
    QVERIFY(value != old);
    QCOMPARE(old.toLong(), 5u);
    const QExifValue& same = value;
    value = same;
    QCOMPARE(value.toString(), QStringLiteral("abc"));
    value = QExifValue();
    QVERIFY(value.isNull());
    QCOMPARE(other.toString(), QStringLiteral("abc"));
}

void tst_QExifValue::outlivesItsSource()
{
    QExifValue copy;
    QString text;
    {
        QByteArray bytes("abc");
        const QExifValue value(bytes);
        bytes[0] = 'x';
        copy = value;
    }
    QCOMPARE(copy.toByteArray(), QByteArray("abc"));
    {
        QVector<quint16> shorts{1, 2};
        const QExifValue value(shorts);
        shorts[0] = 9;
        QVector<quint16> taken = value.toShortVector();
        taken[1] = 9;
        copy = value;
    }
    QCOMPARE(copy.toShortVector(), Shorts({1, 2}));
}

void tst_QExifValue::implicitConversion()
{
    QVector<QExifValue> values;
    values.append(quint16(6));
    values.append(QStringLiteral("abc"));
    values.append(6);
    QCOMPARE(int(values[0].type()), int(QExifValue::Short));
    QCOMPARE(int(values[1].type()), int(QExifValue::Ascii));
    QCOMPARE(int(values[2].type()), int(QExifValue::SignedLong));
}

// Copies are made and destroyed in several threads at the same time: a lost reference shows as a
// leak or a double deletion, which the sanitizers report, or as changed content.
void tst_QExifValue::sharedBetweenThreads()
{
    class Copier : public QThread
    {
    public:
        explicit Copier(const QExifValue& value)
            : mValue(value)
        { }
        void run() override
        {
            for (int i = 0; i < 20000; ++i) {
                const QExifValue copy(mValue);
                QExifValue assigned;
                assigned = copy;
                if (!(assigned == mValue) || assigned.toLongVector().size() != 3)
                    ++wrong;
            }
            mValue = QExifValue();
        }
        int wrong = 0;

    private:
        QExifValue mValue;
    };

    std::vector<std::unique_ptr<Copier>> threads;
    {
        const QExifValue value(Longs{1, 2, 3});
        for (int i = 0; i < 4; ++i)
            threads.push_back(std::unique_ptr<Copier>(new Copier(value)));
    }
    for (const auto& thread : threads)
        thread->start();
    for (const auto& thread : threads) {
        QVERIFY(thread->wait());
        QCOMPARE(thread->wrong, 0);
    }
}

void tst_QExifValue::nullFromThreads()
{
    class Asker : public QThread
    {
    public:
        void run() override { value = QExifValue(); }
        QExifValue value{quint8(1)};
    };
    std::vector<std::unique_ptr<Asker>> threads;
    for (int i = 0; i < 8; ++i)
        threads.push_back(std::unique_ptr<Asker>(new Asker));
    for (const auto& thread : threads)
        thread->start();
    for (const auto& thread : threads)
        QVERIFY(thread->wait());
    for (const auto& thread : threads) {
        QVERIFY(thread->value.isNull());
        QVERIFY(thread->value == threads.front()->value);
    }
}

void tst_QExifValue::logsNothing()
{
    LogCapture log;
    const QExifValue value(QByteArray(5, '\0'));
    value.toString();
    value.toDateTime();
    value.toRational();
    QExifValue(QStringLiteral("\u20ac"), QExifValue::JisEncoding).toString();
    QVERIFY(log.records().isEmpty());
}

void tst_QExifValue::debugOutput_data()
{
    const auto row = columns<QExifValue, QString>("value", "text");
    row("null", QExifValue(), "QExifValue()");
    row("byte", QExifValue(quint8(255)), "QExifValue(Byte, 255)");
    row("empty", QExifValue(QVector<quint8>()), "QExifValue(Byte, )");
    row("shorts", QExifValue(QVector<quint16>({8, 8, 65535})), "QExifValue(Short, 8 8 65535)");
    row("long", QExifValue(quint32(4294967295)), "QExifValue(Long, 4294967295)");
    row("signed long", QExifValue(-2), "QExifValue(SignedLong, -2)");
    row("rationals", QExifValue(Rationals({{1, 250}, {0, 0}})), "QExifValue(Rational, 1/250 0/0)");
    row("signed rational", QExifValue(SignedPair(-1, 3)), "QExifValue(SignedRational, -1/3)");
    row("text", QExifValue(QStringLiteral("a \"b\"")), R"(QExifValue(Ascii, "a \"b\""))");
    row("bytes", QExifValue(QByteArray("\x00\x0f\xff", 3)), "QExifValue(Undefined, 00 0f ff)");
    row("sixteen bytes", QExifValue(QByteArray(16, '0')),
        "QExifValue(Undefined, 30 30 30 30 30 30 30 30 "
        "30 30 30 30 30 30 30 30)");
    row("many bytes", QExifValue(QByteArray(70000, '0')),
        "QExifValue(Undefined, 30 30 30 30 30 30 30 30 "
        "30 30 30 30 30 30 30 30 and 69984 more)");
}

void tst_QExifValue::debugOutput()
{
    QFETCH(QExifValue, value);
    QFETCH(QString, text);
    QString output;
    QDebug(&output) << value << QStringLiteral("quoted"); // the format of what follows is unchanged
    QCOMPARE(output, text + QStringLiteral(" \"quoted\" "));
}

// Must be last: a codec cannot be removed any more.
void tst_QExifValue::jisEncodingWithACodec()
{
    if (!QTextCodec::codecForName("JIS X 0208"))
        new JisCodec; // owned by Qt
    const QString text = QStringLiteral("\u65e5\u672c");
    const QExifValue value(text, QExifValue::JisEncoding);
    QCOMPARE(int(value.type()), int(QExifValue::Undefined));
    QVERIFY(value.toByteArray().startsWith(jisPrefix()));
    QCOMPARE(value.count(), quint32(value.toByteArray().size()));
    QVERIFY(value.count() > 8);
    QCOMPARE(value.encoding(), QExifValue::JisEncoding);
    QCOMPARE(value.toString(), text);
}

QTEST_GUILESS_MAIN(tst_QExifValue)
#include "tst_QExifValue.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The constructors of QExifValue and the converters that lead back.

#include "Fuzz.h"
#include "QExifValue.h"

#include <QDateTime>
#include <QTextCodec>

namespace {

/// The n-th element of type Integer from the input, or pairs of them.
template <typename Integer>
void consume(FuzzedDataProvider& input, Integer* value)
{
    *value = input.ConsumeIntegral<Integer>();
}

template <typename Integer>
void consume(FuzzedDataProvider& input, QPair<Integer, Integer>* value)
{
    consume(input, &value->first);
    consume(input, &value->second);
}

template <typename Element>
QVector<Element> elements(FuzzedDataProvider& input)
{
    QVector<Element> values(input.ConsumeIntegralInRange<int>(0, 40));
    for (Element& value : values)
        consume(input, &value);
    return values;
}

/// The two ways to make a value of one type, and the two ways to read it.
template <typename Element, QExifValue::Type type, Element (QExifValue::*single)() const,
          QVector<Element> (QExifValue::*all)() const>
void checkNumbers(FuzzedDataProvider& input)
{
    const QVector<Element> numbers = elements<Element>(input);
    const QExifValue value(numbers);
    FUZZ_PROMISE(!value.isNull() && value.type() == type);
    FUZZ_PROMISE(value.count() == quint32(numbers.size()));
    FUZZ_PROMISE((value.*all)() == numbers);
    FUZZ_PROMISE((value.*single)() == (numbers.size() == 1 ? numbers.first() : Element()));
    if (!numbers.isEmpty()) {
        const QExifValue one(numbers.first());
        FUZZ_PROMISE(one.type() == type && one.count() == 1);
        FUZZ_PROMISE((one.*single)() == numbers.first());
        FUZZ_PROMISE((one.*all)() == QVector<Element>{numbers.first()});
    }
    FUZZ_PROMISE(value.toString().isNull() && !value.toDateTime().isValid());
    FUZZ_PROMISE(value.toByteArray().isEmpty() && value.encoding() == QExifValue::NoEncoding);
}

bool isLatin1(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 256; });
}

/// Whether all surrogates form pairs.
bool isWellFormed(const QString& text)
{
    return QString::fromUcs4(text.toUcs4().constData(), text.toUcs4().size()) == text
        && !text.toUcs4().contains(QChar::ReplacementCharacter);
}

void checkText(const QString& text)
{
    const QExifValue plain(text);
    FUZZ_PROMISE(plain.type() == QExifValue::Ascii);
    FUZZ_PROMISE(plain.count() == quint32(text.size()) + 1);
    FUZZ_PROMISE(plain.toString() == text);
    FUZZ_PROMISE(plain.toByteArray() == text.toLatin1());
    FUZZ_PROMISE(plain.encoding() == QExifValue::NoEncoding);
    // A time is read from nineteen characters, and is the time that they state.
    const QDateTime time = plain.toDateTime();
    if (time.isValid()) {
        FUZZ_PROMISE(text.size() == 19);
        FUZZ_PROMISE(QExifValue(time).toDateTime() == time);
    }

    const QExifValue ascii(text, QExifValue::AsciiEncoding);
    FUZZ_PROMISE(ascii.type() == QExifValue::Undefined);
    FUZZ_PROMISE(ascii.count() == quint32(text.size()) + 8);
    FUZZ_PROMISE(ascii.toByteArray() == QByteArray("ASCII\0\0\0", 8) + text.toLatin1());
    if (!text.isEmpty()) {
        FUZZ_PROMISE(ascii.encoding() == QExifValue::AsciiEncoding);
        if (isLatin1(text))
            FUZZ_PROMISE(ascii.toString() == text);
    }

    const QExifValue unicode(text, QExifValue::UnicodeEncoding);
    if (!unicode.isNull() && !text.isEmpty()) {
        FUZZ_PROMISE(unicode.encoding() == QExifValue::UnicodeEncoding);
        // A leading byte-order mark is interpreted.
        if (isWellFormed(text) && text.at(0).unicode() != 0xfeff && text.at(0).unicode() != 0xfffe)
            FUZZ_PROMISE(unicode.toString() == text);
    }

    const QExifValue undefined(text, QExifValue::UndefinedEncoding);
    FUZZ_PROMISE(undefined.toByteArray() == QByteArray(8, '\0') + text.toLocal8Bit());
    QExifValue(text, QExifValue::JisEncoding).toString();
}

void checkBytes(const QByteArray& bytes)
{
    const QExifValue value(bytes);
    FUZZ_PROMISE(value.type() == QExifValue::Undefined && value.count() == quint32(bytes.size()));
    FUZZ_PROMISE(value.toByteArray() == bytes);
    FUZZ_PROMISE(value.toByteVector().isEmpty() && value.toLong() == 0);
    const QExifValue::TextEncoding encoding = value.encoding();
    FUZZ_PROMISE(encoding == QExifValue::NoEncoding || bytes.size() > 8);
    if (encoding == QExifValue::AsciiEncoding)
        FUZZ_PROMISE(value.toString()
                     == QString::fromLatin1(bytes.mid(8).constData(), bytes.size() - 8));
    else if (encoding == QExifValue::NoEncoding)
        FUZZ_PROMISE(value.toString().isNull());
    else
        value.toString();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const auto text = [](FuzzedDataProvider& rest) { checkText(remainingText(rest)); };
    const auto bytes = [](FuzzedDataProvider& rest) {
        checkBytes(QByteArray::fromStdString(rest.ConsumeRemainingBytesAsString()));
    };
    using Value = QExifValue;
    using UnsignedPair = QPair<quint32, quint32>;
    using SignedPair = QPair<qint32, qint32>;
    void (*const checks[])(FuzzedDataProvider&) = {
        checkNumbers<quint8, Value::Byte, &Value::toByte, &Value::toByteVector>,
        checkNumbers<quint16, Value::Short, &Value::toShort, &Value::toShortVector>,
        checkNumbers<quint32, Value::Long, &Value::toLong, &Value::toLongVector>,
        checkNumbers<qint32, Value::SignedLong, &Value::toSignedLong, &Value::toSignedLongVector>,
        checkNumbers<UnsignedPair, Value::Rational, &Value::toRational, &Value::toRationalVector>,
        checkNumbers<SignedPair, Value::SignedRational, &Value::toSignedRational,
                     &Value::toSignedRationalVector>,
        text,
        bytes};
    checks[input.ConsumeIntegralInRange<int>(0, 7)](input);
    return 0;
}

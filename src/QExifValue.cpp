// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "QExifValue.h"

#include <QDebug>
#include <QLocale>
#include <QMutex>
#include <QStringList>
#include <QTextCodec>
#include <QtEndian>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <mutex>
#include <utility>

using namespace OrvaUtilsPrivate;

/// The data that copies of a value share. There is one subclass for each kind of payload.
class OrvaUtilsPrivate::QExifValuePrivate : public QSharedData
{
public:
    QExifValuePrivate(quint16 valueType, quint32 valueCount)
        : type(valueType)
        , count(valueCount)
    { }
    virtual ~QExifValuePrivate() = default;

    const quint16 type;
    const quint32 count;

private:
    Q_DISABLE_COPY(QExifValuePrivate)
};

namespace {

template <typename Payload>
class PayloadRecord : public QExifValuePrivate
{
public:
    PayloadRecord(quint16 valueType, quint32 valueCount, Payload value)
        : QExifValuePrivate(valueType, valueCount)
        , payload(std::move(value))
    { }

    const Payload payload;
};

using ByteVectorRecord = PayloadRecord<QVector<quint8>>;
using ShortVectorRecord = PayloadRecord<QVector<quint16>>;
using LongVectorRecord = PayloadRecord<QVector<quint32>>;
using RationalVectorRecord = PayloadRecord<QVector<QPair<quint32, quint32>>>;
using SignedLongVectorRecord = PayloadRecord<QVector<qint32>>;
using SignedRationalVectorRecord = PayloadRecord<QVector<QPair<qint32, qint32>>>;
using ByteArrayRecord = PayloadRecord<QByteArray>;
using StringRecord = PayloadRecord<QString>;

template <typename Container>
quint32 sizeOf(const Container& container)
{
    return static_cast<quint32>(container.size());
}

template <typename Element>
PayloadRecord<QVector<Element>>* vectorRecord(QExifValue::Type type, const QVector<Element>& values)
{
    return new PayloadRecord<QVector<Element>>(type, sizeOf(values), values);
}

template <typename Element>
PayloadRecord<QVector<Element>>* scalarRecord(QExifValue::Type type, const Element& value)
{
    return new PayloadRecord<QVector<Element>>(type, 1, QVector<Element>(1, value));
}

ByteArrayRecord* byteArrayRecord(const QByteArray& bytes)
{
    return new ByteArrayRecord(QExifValue::Undefined, sizeOf(bytes), bytes);
}

StringRecord* stringRecord(const QString& text)
{
    return new StringRecord(QExifValue::Ascii, sizeOf(text) + 1, text);
}

// Unlike other state that lasts as long as the process, the null record has to be destroyed when
// the process exits. It may be requested before main() and in the destructors of static objects, in
// any order. The variables that lead to it therefore need neither construction nor destruction at
// run time: a record that was released at exit is created again.
std::atomic<QExifValuePrivate*> nullRecord{nullptr};
QBasicMutex nullRecordMutex;

class NullRecord : public ByteVectorRecord
{
public:
    NullRecord()
        : ByteVectorRecord(QExifValue::Byte, 0, QVector<quint8>())
    { }
    ~NullRecord() override { nullRecord.store(nullptr, std::memory_order_release); }
};

void releaseNullRecord()
{
    QExifValuePrivate* const record = nullRecord.load(std::memory_order_acquire);
    if (record && !record->ref.deref())
        delete record;
}

QExifValuePrivate* sharedNullRecord()
{
    if (QExifValuePrivate* const record = nullRecord.load(std::memory_order_acquire))
        return record;
    std::lock_guard<QBasicMutex> lock(nullRecordMutex);
    QExifValuePrivate* record = nullRecord.load(std::memory_order_acquire);
    if (!record) {
        record = new NullRecord;
        record->ref.ref(); // the reference of the process until it exits
        // If that cannot be registered, the record is left to the system.
        static_cast<void>(std::atexit(releaseNullRecord));
        nullRecord.store(record, std::memory_order_release);
    }
    return record;
}

template <typename Payload>
const Payload& payloadOf(const QExifValuePrivate& record)
{
    return static_cast<const PayloadRecord<Payload>&>(record).payload;
}

template <typename Element>
QVector<Element> vectorOf(const QExifValuePrivate& record, QExifValue::Type type)
{
    return record.type == type ? payloadOf<QVector<Element>>(record) : QVector<Element>();
}

template <typename Element>
Element scalarOf(const QExifValuePrivate& record, QExifValue::Type type)
{
    return record.type == type && record.count == 1 ? payloadOf<QVector<Element>>(record).first()
                                                    : Element();
}

const int encodingPrefixLength = 8;

struct EncodingPrefix
{
    QExifValue::TextEncoding encoding;
    char bytes[encodingPrefixLength];
};

// In the order in which encoding() compares them.
const EncodingPrefix encodingPrefixes[] = {
    {QExifValue::AsciiEncoding, {'A', 'S', 'C', 'I', 'I', 0, 0, 0}},
    {QExifValue::JisEncoding, {'J', 'I', 'S', 0, 0, 0, 0, 0}},
    {QExifValue::UnicodeEncoding, {'U', 'N', 'I', 'C', 'O', 'D', 'E', 0}},
    {QExifValue::UndefinedEncoding, {0, 0, 0, 0, 0, 0, 0, 0}},
};

/// The prefix of any encoding but NoEncoding, which has none.
QByteArray prefixOf(QExifValue::TextEncoding encoding)
{
    const auto* const prefix = std::find_if(
        std::begin(encodingPrefixes), std::end(encodingPrefixes),
        [encoding](const EncodingPrefix& candidate) { return candidate.encoding == encoding; });
    return QByteArray(prefix->bytes, encodingPrefixLength);
}

QTextCodec* jisCodec()
{
    return QTextCodec::codecForName("JIS X 0208");
}

/// \a text in UTF-16 in native byte order, with a byte order mark.
QByteArray toUtf16(const QString& text)
{
    const QString marked = QChar(QChar::ByteOrderMark) + text;
    return QByteArray(reinterpret_cast<const char*>(marked.utf16()),
                      int(marked.size() * int(sizeof(ushort))));
}

/// Decodes UTF-16 \a bytes in the byte order that a byte order mark indicates, or else in native
/// byte order. Half a code unit at the end is ignored.
QString fromUtf16(const QByteArray& bytes)
{
    const int size = int(bytes.size()) / int(sizeof(ushort));
    QString text(size, Qt::Uninitialized);
    std::memcpy(text.data(), bytes.constData(), size_t(size) * sizeof(ushort));
    if (text.startsWith(QChar(QChar::ByteOrderSwapped))) {
        for (QChar& c : text)
            c = QChar(qbswap(c.unicode()));
    }
    return text.startsWith(QChar(QChar::ByteOrderMark)) ? text.mid(1) : text;
}

// Decodes all bytes; QString's own function for byte arrays stops at the first NUL.
QString fromLocal8Bit(const QByteArray& text)
{
    return QString::fromLocal8Bit(text.constData(), text.size());
}

QExifValuePrivate* textRecord(const QString& text, QExifValue::TextEncoding encoding)
{
    switch (encoding) {
    case QExifValue::AsciiEncoding:
        return byteArrayRecord(prefixOf(encoding) + text.toLatin1());
    case QExifValue::JisEncoding:
        if (const QTextCodec* const codec = jisCodec())
            return byteArrayRecord(prefixOf(encoding) + codec->fromUnicode(text));
        return sharedNullRecord();
    case QExifValue::UnicodeEncoding:
        return byteArrayRecord(prefixOf(encoding) + toUtf16(text));
    case QExifValue::UndefinedEncoding:
        return byteArrayRecord(prefixOf(encoding) + text.toLocal8Bit());
    case QExifValue::NoEncoding:
        break;
    }
    return stringRecord(text);
}

QString dateTimeFormat()
{
    return QStringLiteral("yyyy:MM:dd HH:mm:ss");
}

} // namespace

QExifValue::QExifValue()
    : d(sharedNullRecord())
{ }

QExifValue::QExifValue(quint8 value)
    : d(scalarRecord(Byte, value))
{ }

QExifValue::QExifValue(quint16 value)
    : d(scalarRecord(Short, value))
{ }

QExifValue::QExifValue(quint32 value)
    : d(scalarRecord(Long, value))
{ }

QExifValue::QExifValue(qint32 value)
    : d(scalarRecord(SignedLong, value))
{ }

QExifValue::QExifValue(const QPair<quint32, quint32>& value)
    : d(scalarRecord(Rational, value))
{ }

QExifValue::QExifValue(const QPair<qint32, qint32>& value)
    : d(scalarRecord(SignedRational, value))
{ }

QExifValue::QExifValue(const QVector<quint8>& values)
    : d(vectorRecord(Byte, values))
{ }

QExifValue::QExifValue(const QVector<quint16>& values)
    : d(vectorRecord(Short, values))
{ }

QExifValue::QExifValue(const QVector<quint32>& values)
    : d(vectorRecord(Long, values))
{ }

QExifValue::QExifValue(const QVector<qint32>& values)
    : d(vectorRecord(SignedLong, values))
{ }

QExifValue::QExifValue(const QVector<QPair<quint32, quint32>>& values)
    : d(vectorRecord(Rational, values))
{ }

QExifValue::QExifValue(const QVector<QPair<qint32, qint32>>& values)
    : d(vectorRecord(SignedRational, values))
{ }

QExifValue::QExifValue(const QString& value, TextEncoding encoding)
    : d(textRecord(value, encoding))
{ }

QExifValue::QExifValue(const QDateTime& value)
    // The C locale, because the system's may use digits that are not Western.
    : d(stringRecord(QLocale::c().toString(value, dateTimeFormat())))
{ }

QExifValue::QExifValue(const QByteArray& value)
    : d(byteArrayRecord(value))
{ }

QExifValue::QExifValue(const QExifValue& other) = default;

QExifValue& QExifValue::operator=(const QExifValue& other) = default;

QExifValue::~QExifValue() = default;

bool QExifValue::operator==(const QExifValue& other) const
{
    return d == other.d;
}

bool QExifValue::isNull() const
{
    return d.data() == nullRecord.load(std::memory_order_acquire);
}

quint16 QExifValue::type() const
{
    return d->type;
}

quint32 QExifValue::count() const
{
    return d->count;
}

QExifValue::TextEncoding QExifValue::encoding() const
{
    if (d->type != Undefined || d->count <= encodingPrefixLength)
        return NoEncoding;
    const auto& bytes = payloadOf<QByteArray>(*d);
    for (const EncodingPrefix& prefix : encodingPrefixes) {
        if (bytes.startsWith(QByteArray::fromRawData(prefix.bytes, encodingPrefixLength)))
            return prefix.encoding;
    }
    return NoEncoding;
}

quint8 QExifValue::toByte() const
{
    return scalarOf<quint8>(*d, Byte);
}

quint16 QExifValue::toShort() const
{
    return d->type == Byte ? toByte() : scalarOf<quint16>(*d, Short);
}

quint32 QExifValue::toLong() const
{
    switch (d->type) {
    case Byte:
    case Short:
        return toShort();
    case Long:
        return scalarOf<quint32>(*d, Long);
    default:
        return static_cast<quint32>(scalarOf<qint32>(*d, SignedLong));
    }
}

qint32 QExifValue::toSignedLong() const
{
    return static_cast<qint32>(toLong());
}

QPair<quint32, quint32> QExifValue::toRational() const
{
    return scalarOf<QPair<quint32, quint32>>(*d, Rational);
}

QPair<qint32, qint32> QExifValue::toSignedRational() const
{
    return scalarOf<QPair<qint32, qint32>>(*d, SignedRational);
}

QVector<quint8> QExifValue::toByteVector() const
{
    return vectorOf<quint8>(*d, Byte);
}

QVector<quint16> QExifValue::toShortVector() const
{
    return vectorOf<quint16>(*d, Short);
}

QVector<quint32> QExifValue::toLongVector() const
{
    return vectorOf<quint32>(*d, Long);
}

QVector<QPair<quint32, quint32>> QExifValue::toRationalVector() const
{
    return vectorOf<QPair<quint32, quint32>>(*d, Rational);
}

QVector<qint32> QExifValue::toSignedLongVector() const
{
    return vectorOf<qint32>(*d, SignedLong);
}

QVector<QPair<qint32, qint32>> QExifValue::toSignedRationalVector() const
{
    return vectorOf<QPair<qint32, qint32>>(*d, SignedRational);
}

QByteArray QExifValue::toByteArray() const
{
    switch (d->type) {
    case Undefined:
        return payloadOf<QByteArray>(*d);
    case Ascii:
        return payloadOf<QString>(*d).toLatin1();
    default:
        return QByteArray();
    }
}

QString QExifValue::toString() const
{
    if (d->type == Ascii)
        return payloadOf<QString>(*d);
    const TextEncoding textEncoding = encoding();
    if (textEncoding == NoEncoding)
        return QString();

    const QByteArray text = payloadOf<QByteArray>(*d).mid(encodingPrefixLength);
    switch (textEncoding) {
    case AsciiEncoding:
        return QString::fromLatin1(text.constData(), text.size());
    case JisEncoding: {
        QTextCodec* const codec = jisCodec();
        return codec ? codec->toUnicode(text) : QString();
    }
    case UnicodeEncoding:
        return fromUtf16(text);
    case UndefinedEncoding:
    case NoEncoding:
        break;
    }
    return fromLocal8Bit(text);
}

QDateTime QExifValue::toDateTime() const
{
    const quint32 dateTimeCount = 20;
    if (d->type != Ascii || d->count != dateTimeCount)
        return QDateTime();
    return QLocale::c().toDateTime(payloadOf<QString>(*d), dateTimeFormat());
}

// Debug output

namespace {

QString shown(quint32 number)
{
    return QString::number(number);
}

QString shown(qint32 number)
{
    return QString::number(number);
}

template <typename Number>
QString shown(const QPair<Number, Number>& rational)
{
    return shown(rational.first) + QLatin1Char('/') + shown(rational.second);
}

QString shown(char byte)
{
    return QStringLiteral("%1").arg(quint8(byte), 2, 16, QLatin1Char('0'));
}

template <typename Container>
QString shownElements(const Container& elements)
{
    const int most = 16;
    QStringList texts;
    for (int i = 0; i < qMin(most, elements.size()); ++i)
        texts += shown(elements.at(i));
    if (elements.size() > most)
        texts += QStringLiteral("and %1 more").arg(elements.size() - most);
    return texts.join(QLatin1Char(' '));
}

template <typename Elements, Elements (QExifValue::*elementsOf)() const>
QString shownContent(const QExifValue& value)
{
    return shownElements((value.*elementsOf)());
}

/// How the values of the types other than Ascii are written.
const struct
{
    quint16 type;
    const char* name;
    QString (*content)(const QExifValue&);
} typeTexts[] = {
    {QExifValue::Byte, "Byte", shownContent<QVector<quint8>, &QExifValue::toByteVector>},
    {QExifValue::Short, "Short", shownContent<QVector<quint16>, &QExifValue::toShortVector>},
    {QExifValue::Long, "Long", shownContent<QVector<quint32>, &QExifValue::toLongVector>},
    {QExifValue::Rational, "Rational",
     shownContent<QVector<QPair<quint32, quint32>>, &QExifValue::toRationalVector>},
    {QExifValue::Undefined, "Undefined", shownContent<QByteArray, &QExifValue::toByteArray>},
    {QExifValue::SignedLong, "SignedLong",
     shownContent<QVector<qint32>, &QExifValue::toSignedLongVector>},
    {QExifValue::SignedRational, "SignedRational",
     shownContent<QVector<QPair<qint32, qint32>>, &QExifValue::toSignedRationalVector>},
};

} // namespace

QDebug operator<<(QDebug debug, const QExifValue& value)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "QExifValue(";
    if (value.type() == QExifValue::Ascii)
        debug << "Ascii, " << value.toString();
    for (const auto& text : typeTexts) {
        if (text.type == value.type() && !value.isNull())
            debug.noquote() << text.name << ", " << text.content(value);
    }
    debug << ')';
    return debug;
}

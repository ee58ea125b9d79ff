// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "tiffblock_p.h"

#include <QDebug>
#include <QIODevice>

#include <cstring>
#include <iterator>

namespace OrvaUtilsPrivate {

namespace {

// No value of a real file comes near this size; it keeps a payload within the limits of a Qt
// container.
const quint64 maximumPayload = 1u << 29;

template <typename Integer>
void decodeElement(const char* bytes, ByteOrder order, Integer* element)
{
    *element = decode<Integer>(bytes, order);
}

template <typename Integer>
void decodeElement(const char* bytes, ByteOrder order, QPair<Integer, Integer>* element)
{
    decodeElement(bytes, order, &element->first);
    decodeElement(bytes + sizeof(Integer), order, &element->second);
}

template <typename Element>
QExifValue readElements(Bytes payload, quint32 /*count*/, ByteOrder order)
{
    const int size = static_cast<int>(sizeof(Element));
    QVector<Element> elements(payload.size / size);
    for (Element& element : elements) {
        decodeElement(payload.data, order, &element);
        payload.data += size;
    }
    return QExifValue(elements);
}

template <typename Elements, Elements (QExifValue::*elements)() const>
void writeElements(TiffWriter& block, const QExifValue& value)
{
    block.write((value.*elements)());
}

/// The last byte, which terminates the text, is removed. A payload that was cut short by the end of
/// the device has already lost it.
QExifValue readText(Bytes payload, quint32 count, ByteOrder /*order*/)
{
    const bool isWhole = payload.size > 0 && static_cast<quint32>(payload.size) == count;
    return QExifValue(QString::fromLatin1(payload.data, isWhole ? payload.size - 1 : payload.size));
}

void writeText(TiffWriter& block, const QExifValue& value)
{
    block.write(value.toByteArray());
    block.write("\0", 1);
}

QExifValue readBytes(Bytes payload, quint32 /*count*/, ByteOrder /*order*/)
{
    return QExifValue(QByteArray(payload.data, payload.size));
}

using URationals = QVector<QPair<quint32, quint32>>;
using SRationals = QVector<QPair<qint32, qint32>>;

// By number. Types without functions are defined by TIFF, but not supported by QExifValue.
const TiffType tiffTypes[] = {
    {QExifValue::Byte, 1, readElements<quint8>,
     writeElements<QVector<quint8>, &QExifValue::toByteVector>},
    {QExifValue::Ascii, 1, readText, writeText},
    {QExifValue::Short, 2, readElements<quint16>,
     writeElements<QVector<quint16>, &QExifValue::toShortVector>},
    {QExifValue::Long, 4, readElements<quint32>,
     writeElements<QVector<quint32>, &QExifValue::toLongVector>},
    {QExifValue::Rational, 8, readElements<QPair<quint32, quint32>>,
     writeElements<URationals, &QExifValue::toRationalVector>},
    {6, 1, nullptr, nullptr}, // signed bytes
    {QExifValue::Undefined, 1, readBytes, writeElements<QByteArray, &QExifValue::toByteArray>},
    {8, 2, nullptr, nullptr}, // signed 16-bit integers
    {QExifValue::SignedLong, 4, readElements<qint32>,
     writeElements<QVector<qint32>, &QExifValue::toSignedLongVector>},
    {QExifValue::SignedRational, 8, readElements<QPair<qint32, qint32>>,
     writeElements<SRationals, &QExifValue::toSignedRationalVector>},
    {11, 4, nullptr, nullptr}, // floating point numbers
    {12, 8, nullptr, nullptr}, // the same in double precision
    {13, 4, nullptr, nullptr}, // offsets of directories
};

quint64 payloadSize(const TiffType& type, quint32 count)
{
    return quint64(count) * quint64(type.elementSize);
}

/// Encodes the field of an entry as in the block, except for an Undefined value: this is encoded
/// least significant byte first, whatever the order of the block.
void encodeField(const ExifIfdHeader& entry, char* field, ByteOrder order)
{
    switch (entry.type) {
    case QExifValue::Byte:
    case QExifValue::Ascii:
        std::memcpy(field, entry.inlineBytes.data(), inlineSize);
        break;
    case QExifValue::Short:
        encode(entry.inlineShorts[0], field, order);
        encode(entry.inlineShorts[1], field + 2, order);
        break;
    case QExifValue::Undefined:
        encode(entry.offset, field, QDataStream::LittleEndian);
        break;
    default:
        encode(entry.offset, field, order);
        break;
    }
}

} // namespace

// Types

const TiffType* TiffType::find(quint16 number)
{
    const int count = static_cast<int>(std::end(tiffTypes) - std::begin(tiffTypes));
    return number >= 1 && number <= count ? &tiffTypes[number - 1] : nullptr;
}

void warnOfType(quint16 type)
{
    qWarning() << "Invalid Ifd Type" << type;
}

quint32 dataSize(const QExifValue& value)
{
    const TiffType* const type = TiffType::find(value.type());
    const quint64 size = type && type->write ? payloadSize(*type, value.count()) : 0;
    return size > inlineSize ? static_cast<quint32>(size) : 0;
}

quint32 sizeOfEntry(const QExifValue& value)
{
    const TiffType* const type = TiffType::find(value.type());
    return type && type->write ? entrySize + dataSize(value) : 0;
}

// Reading

ExifIfdHeader decodeEntry(const char* bytes, ByteOrder order)
{
    ExifIfdHeader entry;
    entry.tag = decode<quint16>(bytes, order);
    entry.type = decode<quint16>(bytes + 2, order);
    entry.count = decode<quint32>(bytes + 4, order);
    const char* const field = bytes + 8;
    if ((entry.type == QExifValue::Byte || entry.type == QExifValue::Ascii) && entry.count < 5)
        std::memcpy(entry.inlineBytes.data(), field, inlineSize);
    else if (entry.type == QExifValue::Short && entry.count < 3)
        entry.inlineShorts = {{decode<quint16>(field, order), decode<quint16>(field + 2, order)}};
    else
        entry.offset = decode<quint32>(field, order);
    return entry;
}

TiffReader::TiffReader(const QByteArray& block)
    : mBlock(block)
    , mSize(block.size())
{ }

TiffReader::TiffReader(QIODevice* device, qint64 start)
    : mDevice(device)
    , mStart(start)
    , mSize(device->size())
    , mPosition(device->pos())
{ }

bool TiffReader::seek(quint32 offset)
{
    const qint64 position = mStart + offset;
    if (position < 0 || position > mSize || (mDevice && !mDevice->seek(position)))
        return false;
    mPosition = position;
    return true;
}

Bytes TiffReader::next(quint64 wanted)
{
    const quint64 left = static_cast<quint64>(qMax(Q_INT64_C(0), mSize - mPosition));
    Bytes bytes = {nullptr, static_cast<int>(qMin(qMin(wanted, maximumPayload), left))};
    if (mDevice) {
        mBuffer.resize(bytes.size);
        bytes.size =
            static_cast<int>(qMax(Q_INT64_C(0), mDevice->read(mBuffer.data(), bytes.size)));
        bytes.data = mBuffer.constData();
    } else {
        bytes.data = mBlock.constData() + mPosition;
    }
    mPosition += bytes.size;
    return bytes;
}

QVector<ExifIfdHeader> TiffReader::entries()
{
    const Bytes count = next(countSize);
    if (count.size < countSize)
        return QVector<ExifIfdHeader>();
    const Bytes fields = next(quint64(decode<quint16>(count.data, mOrder)) * entrySize);
    QVector<ExifIfdHeader> entries(fields.size / entrySize);
    const char* field = fields.data;
    for (ExifIfdHeader& entry : entries) {
        entry = decodeEntry(field, mOrder);
        field += entrySize;
    }
    return entries;
}

QExifValue TiffReader::value(const ExifIfdHeader& entry)
{
    const TiffType* const type = TiffType::find(entry.type);
    if (!type || !type->read) {
        warnOfType(entry.type);
        return QExifValue();
    }
    const quint64 size = payloadSize(*type, entry.count);
    if (size > inlineSize)
        return type->read(next(seek(entry.offset) ? size : 0), entry.count, mOrder);
    char field[inlineSize];
    encodeField(entry, field, mOrder);
    if (entry.type == QExifValue::Ascii && entry.count == 0) // the bytes up to a NUL
        return type->read({field, static_cast<int>(qstrnlen(field, inlineSize))}, 0, mOrder);
    return type->read({field, static_cast<int>(size)}, entry.count, mOrder);
}

// Writing

quint32 TiffWriter::writeEntry(quint16 tag, const QExifValue& value, quint32 offset)
{
    const TiffType* const type = TiffType::find(value.type());
    const quint32 size = dataSize(value);
    write(tag);
    write(value.type());
    write(value.count());
    const int end = int(mBlock->size() + inlineSize); // unused bytes up to there are 0
    if (size > 0)
        write(offset);
    else if (type && type->write)
        type->write(*this, value);
    else
        warnOfType(value.type()); // GCOVR_EXCL_LINE: every value has a known type
    write("\0\0\0\0", int(end - mBlock->size()));
    return offset + size;
}

void TiffWriter::writeData(const QExifValue& value)
{
    const TiffType* const type = TiffType::find(value.type());
    if (!type || !type->write)
        warnOfType(value.type()); // GCOVR_EXCL_LINE: every value has a known type
    else if (dataSize(value) > 0)
        type->write(*this, value);
}

} // namespace OrvaUtilsPrivate

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TiffBuilder: EXIF blocks for tests, built number by number, and a description of values that were
// read.

#ifndef TIFFBUILDER_H
#define TIFFBUILDER_H

#include "QExifImageHeader.h"

#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
#include <QString>

const QDataStream::ByteOrder little = QDataStream::LittleEndian;
const QDataStream::ByteOrder big = QDataStream::BigEndian;

/// Bytes given as hexadecimal digits; blanks are ignored.
inline QByteArray hex(const char* digits)
{
    return QByteArray::fromHex(digits);
}

/// A block that is built number by number.
class TiffBuilder
{
public:
    explicit TiffBuilder(QDataStream::ByteOrder order)
        : mOrder(order)
    { }

    TiffBuilder& raw(const QByteArray& bytes)
    {
        mBytes += bytes;
        return *this;
    }
    TiffBuilder& u16(unsigned number)
    {
        const char low = static_cast<char>(number & 0xFF);
        const char high = static_cast<char>(number >> 8 & 0xFF);
        mBytes += mOrder == little ? low : high;
        mBytes += mOrder == little ? high : low;
        return *this;
    }
    TiffBuilder& u32(quint32 number)
    {
        return mOrder == little ? u16(number & 0xFFFF).u16(number >> 16)
                                : u16(number >> 16).u16(number & 0xFFFF);
    }
    /// "II" or "MM", 42 and the offset of IFD0.
    TiffBuilder& tiff(quint32 ifd0 = 8)
    {
        return raw(mOrder == little ? "II" : "MM").u16(42).u32(ifd0);
    }
    /// An entry with a 32-bit value or offset.
    TiffBuilder& entry(unsigned tag, unsigned type, quint32 count, quint32 value)
    {
        return u16(tag).u16(type).u32(count).u32(value);
    }
    /// An entry with two 16-bit values.
    TiffBuilder& shorts(unsigned tag, quint32 count, unsigned first, unsigned second = 0)
    {
        return u16(tag).u16(3).u32(count).u16(first).u16(second);
    }
    /// An entry with four bytes as its value.
    TiffBuilder& bytes(unsigned tag, unsigned type, quint32 count, const QByteArray& four)
    {
        return u16(tag).u16(type).u32(count).raw(four);
    }

    operator QByteArray() const { return mBytes; }
    QByteArray all() const { return mBytes; }
    int size() const { return int(mBytes.size()); }

private:
    const QDataStream::ByteOrder mOrder;
    QByteArray mBytes;
};

// Blocks

/// A header with the single tag Orientation = Short 6.
inline void fillWithOrientation(QExifImageHeader* header)
{
    header->setValue(QExifImageHeader::Orientation, QExifValue(quint16(6)));
}

/// The 40 bytes of this header in a file.
inline QByteArray orientationBlock()
{
    return hex("4949 2A00 08000000" // little endian, 42, IFD0 at 8
               "0200" // two entries
               "1201 0300 01000000 06000000" // Orientation, Short, 1, the number 6
               "6987 0400 01000000 26000000" // ExifIfdPointer, Long, 1, 38
               "00000000" // no IFD1
               "0000"); // at 38: an Exif sub-IFD without entries
}

/// A block with all directories, in either byte order; 278 bytes.
inline QByteArray fullBlock(QDataStream::ByteOrder order)
{
    TiffBuilder laid(order);
    laid.tiff(8);
    // 8: IFD0, 5 entries
    laid.u16(5)
        .entry(0x010F, 2, 5, 74) // Make
        .shorts(0x0112, 1, 6) // Orientation
        .entry(0x011A, 5, 1, 80) // XResolution
        .entry(0x8769, 4, 1, 88) // the Exif sub-IFD
        .entry(0x8825, 4, 1, 138) // the GPS sub-IFD
        .u32(192); // 70: IFD1
    laid.raw(QByteArray("Orva\0\0", 6)); // 74: Make and a byte to fill up
    laid.u32(72).u32(1); // 80: XResolution
    // 88: Exif sub-IFD, 3 entries, no next one
    laid.u16(3)
        .bytes(0x9000, 7, 4, "0230") // ExifVersion
        .entry(0x9204, 10, 1, 130) // ExposureBiasValue
        .entry(0xA005, 4, 1, 8) // the interoperability IFD
        .u32(0);
    laid.u32(quint32(-1)).u32(3); // 130: ExposureBiasValue
    // 138: GPS sub-IFD, 2 entries, no next one
    laid.u16(2)
        .bytes(0x0000, 1, 4, hex("02030000")) // GPSVersionID
        .entry(0x0002, 5, 3, 168) // GPSLatitude
        .u32(0);
    laid.u32(47).u32(1).u32(30).u32(1).u32(5).u32(2); // 168: GPSLatitude
    // 192: IFD1, 5 entries, no next one
    laid.u16(5)
        .shorts(0x0112, 1, 8) // Orientation
        .entry(0x011A, 5, 1, 258) // XResolution
        .shorts(0x0128, 1, 3) // ResolutionUnit
        .entry(0x0201, 4, 1, 266) // JPEGInterchangeFormat
        .entry(0x0202, 4, 1, 12) // JPEGInterchangeFormatLength
        .u32(0);
    laid.u32(300).u32(1); // 258: XResolution
    laid.raw("not a JPEG!!"); // 266: the thumbnail
    return laid;
}

// Headers and values

/// Makes the protected helpers accessible.
class OpenHeader : public QExifImageHeader
{
public:
    using QExifImageHeader::QExifImageHeader;
    using QExifImageHeader::readIfdHeaders;
    using QExifImageHeader::readIfdValue;
    using QExifImageHeader::sizeOf;
    using QExifImageHeader::writeExifHeader;
    using QExifImageHeader::writeExifValue;
};

inline bool readBlock(QExifImageHeader* header, const QByteArray& block)
{
    QBuffer buffer;
    buffer.setData(block);
    buffer.open(QIODevice::ReadOnly);
    return header->read(&buffer);
}

inline QByteArray written(const QExifImageHeader& header)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const int size = header.write(&buffer);
    if (size != buffer.data().size())
        return QByteArray("not what it returned");
    return buffer.data();
}

/// The thumbnail at the end of what a header writes.
inline QByteArray thumbnailBytes(const QExifImageHeader& header, int size)
{
    return written(header).right(size);
}

inline QString listed(const QString& item)
{
    return QLatin1Char(' ') + item;
}

template <typename Number>
QString listed(const Number& item)
{
    return listed(QString::number(item));
}

template <typename Number>
QString listed(const QPair<Number, Number>& item)
{
    return listed(QStringLiteral("%1/%2").arg(item.first).arg(item.second));
}

template <typename Item>
QString listed(const QVector<Item>& items)
{
    QString text;
    for (const Item& item : items)
        text += listed(item);
    return text;
}

/// A text that describes everything about a value.
inline QString described(const QExifValue& value)
{
    const QString text = QStringLiteral("%1 x %2:").arg(value.type()).arg(value.count());
    switch (value.type()) {
    case QExifValue::Ascii:
        return text + listed(QString::fromLatin1(value.toString().toLatin1().toHex()));
    case QExifValue::Undefined:
        return text + listed(QString::fromLatin1(value.toByteArray().toHex()));
    default:
        // Only one type has each of these.
        return text + listed(value.toByteVector()) + listed(value.toShortVector())
            + listed(value.toLongVector()) + listed(value.toSignedLongVector())
            + listed(value.toRationalVector()) + listed(value.toSignedRationalVector());
    }
}

#endif // TIFFBUILDER_H

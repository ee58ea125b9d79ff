// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// QExifValue: the value of one EXIF tag, a typed and counted payload.
//
// QExifImageHeader reads such values from a file and writes them to one; applications build them
// with the constructors and read them with the to...() functions.

#ifndef ORVAUTILS_QEXIFVALUE_H
#define ORVAUTILS_QEXIFVALUE_H

#include "orvautils_export.h"

#include <QByteArray>
#include <QDateTime>
#include <QExplicitlySharedDataPointer>
#include <QPair>
#include <QString>
#include <QVector>

class QDebug;

namespace OrvaUtilsPrivate {
class QExifValuePrivate;
} // namespace OrvaUtilsPrivate

/// The immutable value of one EXIF tag: a run of bytes, of 16-bit or 32-bit integers or of
/// rationals, a text, or opaque bytes.
///
/// \code
/// const QExifValue orientation(quint16(6));
/// orientation.type();    // QExifValue::Short
/// orientation.count();   // 1
/// orientation.toShort(); // 6
/// orientation.toString(); // null: nothing is converted between kinds
/// \endcode
///
/// A value is a handle to a shared record; copying one costs an atomic increment. There are no
/// setters: a changed value is a new value. Handles may be copied, read and destroyed from several
/// threads at once. Nothing here does I/O or logs.
class ORVAUTILS_EXPORT QExifValue
{
public:
    /// The kind of payload of a value. The numbers are the field types of TIFF, as they are stored
    /// in files; 6 and 8 are not used.
    enum Type : quint16 {
        Byte = 1, ///< unsigned 8-bit integers
        Ascii = 2, ///< a text, in files Latin-1 followed by a NUL
        Short = 3, ///< unsigned 16-bit integers
        Long = 4, ///< unsigned 32-bit integers
        Rational = 5, ///< pairs of unsigned 32-bit numerator and denominator
        Undefined = 7, ///< raw bytes
        SignedLong = 9, ///< signed 32-bit integers
        SignedRational = 10 ///< pairs of signed 32-bit numerator and denominator
    };

    /// How an Undefined payload encodes a text, a user comment for example. The encoding is given
    /// by the first 8 bytes of the payload.
    enum TextEncoding : int {
        NoEncoding = 0, ///< not an encoded text
        AsciiEncoding = 1, ///< "ASCII" and three NUL bytes, then Latin-1
        JisEncoding = 2, ///< "JIS" and five NUL bytes, then JIS X 0208
        UnicodeEncoding = 3, ///< "UNICODE" and one NUL byte, then UTF-16
        UndefinedEncoding = 4 ///< eight NUL bytes, then the local 8-bit encoding
    };

    /// The null value: type() Byte, count() 0. All null values share a single record.
    QExifValue();

    // NOLINTBEGIN(google-explicit-constructor): a value is passed where its tag's is expected

    /// One unsigned 8-bit integer, type() Byte.
    QExifValue(quint8 value);
    /// Unsigned 8-bit integers, type() Byte. A value made from an empty vector is not null.
    QExifValue(const QVector<quint8>& values);

    /// One unsigned 16-bit integer, type() Short.
    QExifValue(quint16 value);
    /// Unsigned 16-bit integers, type() Short.
    QExifValue(const QVector<quint16>& values);

    /// One unsigned 32-bit integer, type() Long.
    QExifValue(quint32 value);
    /// Unsigned 32-bit integers, type() Long.
    QExifValue(const QVector<quint32>& values);

    /// One unsigned rational (numerator, denominator), type() Rational.
    QExifValue(const QPair<quint32, quint32>& value);
    /// Unsigned rationals, type() Rational.
    QExifValue(const QVector<QPair<quint32, quint32>>& values);

    /// One signed 32-bit integer, type() SignedLong. A plain `QExifValue(6)` is of this kind.
    QExifValue(qint32 value);
    /// Signed 32-bit integers, type() SignedLong.
    QExifValue(const QVector<qint32>& values);

    /// One signed rational (numerator, denominator), type() SignedRational.
    QExifValue(const QPair<qint32, qint32>& value);
    /// Signed rationals, type() SignedRational.
    QExifValue(const QVector<QPair<qint32, qint32>>& values);

    /// A text. With NoEncoding, or an \a encoding that is not in the enumeration, type() is Ascii
    /// and count() the length plus 1. With an encoding type() is Undefined, the payload is the
    /// encoding's prefix of 8 bytes followed by the encoded text, and count() is its size.
    ///
    /// UnicodeEncoding writes UTF-16 with a byte-order mark, in the byte order of the host. If Qt
    /// has no text codec for JisEncoding ("JIS X 0208"), the value is null.
    ///
    /// \code
    /// QExifValue(QStringLiteral("abc")).count();                            // 4, Ascii
    /// QExifValue(QStringLiteral("abc"), QExifValue::AsciiEncoding).count(); // 11, Undefined
    /// \endcode
    QExifValue(const QString& value, TextEncoding encoding = NoEncoding);

    /// A point in time as EXIF writes it, "yyyy:MM:dd HH:mm:ss" with Western digits in the time
    /// that \a value states (no conversion between time zones); type() Ascii, count() 20. An
    /// invalid date gives an empty text.
    QExifValue(const QDateTime& value);

    /// Raw bytes, type() Undefined.
    QExifValue(const QByteArray& value);

    // NOLINTEND(google-explicit-constructor)

    /// Shares the record of \a other.
    QExifValue(const QExifValue& other);
    /// Releases its record, which is deleted with its last handle, and shares that of \a other.
    QExifValue& operator=(const QExifValue& other);
    /// Releases its record, which is deleted with its last handle.
    ~QExifValue();

    /// Whether both share one record: one is a copy of the other, or both are null. Deliberately
    /// not a comparison of contents: `QExifValue(quint32(5)) == QExifValue(quint32(5))` is false.
    bool operator==(const QExifValue& other) const;
    /// Whether the two have different records: the opposite of operator==().
    bool operator!=(const QExifValue& other) const { return !(*this == other); }

    /// Whether this value shares the record of the default-constructed ones. A value with an empty
    /// payload of its own is not null.
    bool isNull() const;

    /// The type number, one of Type.
    quint16 type() const;

    /// The element count as EXIF counts: elements for integers and rationals, bytes for Undefined
    /// (an encoding's prefix included), characters plus 1 for Ascii.
    quint32 count() const;

    /// The encoding that the first 8 bytes of an Undefined payload name; NoEncoding for another
    /// type, for other bytes, and for fewer than 9 bytes in all.
    TextEncoding encoding() const;

    /// The byte of a Byte value with count() 1, else 0.
    quint8 toByte() const;
    /// The number of a Short or Byte value with count() 1, else 0.
    quint16 toShort() const;
    /// The number of a Byte, Short, Long or SignedLong value with count() 1, else 0. The 32 bits of
    /// a SignedLong are returned unchanged: -1 gives 4294967295.
    quint32 toLong() const;
    /// As toLong(), the 32 bits taken as signed: a Long of 4294967295 gives -1.
    qint32 toSignedLong() const;
    /// The (numerator, denominator) of a Rational value with count() 1, else (0, 0).
    QPair<quint32, quint32> toRational() const;
    /// The (numerator, denominator) of a SignedRational value with count() 1, else (0, 0).
    QPair<qint32, qint32> toSignedRational() const;

    /// The elements of a Byte value, else an empty vector.
    QVector<quint8> toByteVector() const;
    /// The elements of a Short value, else an empty vector.
    QVector<quint16> toShortVector() const;
    /// The elements of a Long value, else an empty vector.
    QVector<quint32> toLongVector() const;
    /// The elements of a Rational value, else an empty vector.
    QVector<QPair<quint32, quint32>> toRationalVector() const;
    /// The elements of a SignedLong value, else an empty vector.
    QVector<qint32> toSignedLongVector() const;
    /// The elements of a SignedRational value, else an empty vector.
    QVector<QPair<qint32, qint32>> toSignedRationalVector() const;

    /// The bytes of an Undefined value, an encoding's prefix included; the text of an Ascii value
    /// in Latin-1, without a NUL; else an empty array.
    QByteArray toByteArray() const;

    /// The text of an Ascii value; of an Undefined value the bytes after the first 8, decoded as
    /// encoding() says, NUL characters included. A null string for other types and for NoEncoding.
    ///
    /// UnicodeEncoding reads UTF-16 in the byte order given by a byte-order mark, otherwise in that
    /// of the host. Without the text codec of JisEncoding the result is a null string.
    QString toString() const;

    /// The point in time of an Ascii value whose count() is exactly 20 and whose text reads
    /// "yyyy:MM:dd HH:mm:ss", in local time; else an invalid one.
    QDateTime toDateTime() const;

private:
    QExplicitlySharedDataPointer<OrvaUtilsPrivate::QExifValuePrivate> d;
};

Q_DECLARE_TYPEINFO(QExifValue, Q_MOVABLE_TYPE);

/// Writes the type and the content of \a value, or "QExifValue()" for the null value: a text in
/// quotes, raw bytes in hexadecimal, rationals as fractions. Only the first 16 elements are
/// written, followed by the number of the others.
///
/// \code
/// qDebug() << header.value(QExifImageHeader::ExposureTime); // QExifValue(Rational, 1/250)
/// \endcode
///
/// \relates QExifValue
ORVAUTILS_EXPORT QDebug operator<<(QDebug debug, const QExifValue& value);

#endif // ORVAUTILS_QEXIFVALUE_H

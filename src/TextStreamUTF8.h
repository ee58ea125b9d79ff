// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TextStreamUTF8: a text stream that always writes UTF-8 and indents lines.

#ifndef ORVAUTILS_TEXTSTREAMUTF8_H
#define ORVAUTILS_TEXTSTREAMUTF8_H

#include "orvautils_export.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <QTextStream>

#include <type_traits>

/// A QTextStream that always writes UTF-8 and indents lines.
///
/// \code
/// TextStreamUTF8 stream(&file);
/// stream << "class A\n{\n";
/// stream.incrementIndent();
/// stream << "int a;\nint b;\n"; // two spaces in front of each
/// stream.decrementIndent();
/// stream << "}\n";
/// \endcode
///
/// Indentation is written lazily, in front of the first text of each line. What is written through
/// a reference or pointer to the base class, for example by PhpCodeHelpers, is not indented, and
/// its line breaks do not count as such.
///
/// A stream may be used by one thread at a time. QTextStream::status() tells whether writing
/// succeeded; nothing is logged.
class ORVAUTILS_EXPORT TextStreamUTF8 : public QTextStream
{
public:
    /// A stream without a device; see init().
    TextStreamUTF8();
    /// A stream that writes to or reads from \a device. The caller keeps ownership of the device,
    /// which must outlive the stream.
    explicit TextStreamUTF8(QIODevice* device);
    /// A stream on the C file \a file, which is open in \a openMode. The caller keeps ownership.
    explicit TextStreamUTF8(FILE* file, QIODevice::OpenMode openMode = QIODevice::ReadWrite);
    /// A stream that appends to or reads from \a string, depending on \a openMode. The string must
    /// outlive the stream.
    explicit TextStreamUTF8(QString* string, QIODevice::OpenMode openMode = QIODevice::ReadWrite);

    /// Sets the codec to UTF-8 again and the indent level to 0. Call it after setDevice(), which
    /// resets the codec to that of the locale.
    void init();

    /// Increases the indent level by one. It starts at 0.
    void incrementIndent();
    /// Decreases the indent level by one. The level may become negative, which has the effect of
    /// zero until it has been increased as often.
    void decrementIndent();
    /// Makes \a unit the indentation of one level. Initially it is two spaces.
    void setIncrementString(const QString& unit);

    /// Writes \a text, with writeTextWithIndent() if the indent level is above 0. At level 0 the
    /// text is written unchanged, and whether the stream is at the start of a line is not updated.
    TextStreamUTF8& operator<<(QString text);

    /// Writes \a text, which is UTF-8, like a QString. It ends at the first NUL.
    TextStreamUTF8& operator<<(const char* text);
    /// Writes \a text, which is UTF-8, like a QString. It ends at the first NUL.
    TextStreamUTF8& operator<<(const QByteArray& text);

    /// Writes \a character like a text of one character.
    TextStreamUTF8& operator<<(QChar character);
    /// Writes \a character, which is Latin-1, like a text of one character.
    TextStreamUTF8& operator<<(char character);

    /// Writes \a number as QTextStream does: with the stream's base, precision, notation, field
    /// width and locale. If it is the first text of a line, the indentation goes in front of it.
    ///
    /// \code
    /// stream.incrementIndent();
    /// stream << 5 << ',' << 1.5 << endl; // "  5,1.5" and a line break
    /// \endcode
    ///
    /// Numbers are all integer and floating-point types. A bool is written as 1 or 0, and an
    /// enumerator as its value.
    template <
        typename Number,
        typename = typename std::enable_if<std::is_arithmetic<Number>::value
                                           || (std::is_enum<Number>::value
                                               && std::is_convertible<Number, int>::value)>::type>
    TextStreamUTF8& operator<<(Number number)
    {
        beginLine();
        QTextStream::operator<<(number);
        return *this;
    }

    /// A manipulator without an argument, such as endl or hex.
    using Manipulator = QTextStream& (*)(QTextStream&);

    /// Applies \a manipulator to this stream. Both the global endl and Qt::endl are written with
    /// jump(), so that the next line is indented, and flush the stream.
    TextStreamUTF8& operator<<(Manipulator manipulator);
    /// Applies \a manipulator, for example qSetFieldWidth(8), to this stream.
    TextStreamUTF8& operator<<(QTextStreamManipulator manipulator);

    /// Writes \a text with the indentation in front of each of its lines.
    ///
    /// \code
    /// stream.incrementIndent();
    /// stream.writeTextWithIndent("a\nb\n");
    /// stream.writeTextWithIndent("c"); // "  a\n  b\n  c" so far
    /// \endcode
    ///
    /// The first line is indented if the stream is at the start of a line: at the beginning and
    /// after a text that ended with "\n". Deliberate: empty lines are indented as well, and an
    /// empty string at the start of a line writes the indentation.
    void writeTextWithIndent(const QString& text);

    /// Writes the indentation of the current level, wherever the stream is. If it is at the start
    /// of a line, it stays there, and the next text is indented nevertheless.
    void writeIndent();

    /// Writes \a text unchanged at every level. Whether the stream is at the start of a line is not
    /// updated.
    void writeRaw(const QString& text);

    /// Writes a line break with operator<<(). Deliberate: at the start of a line the indentation
    /// goes in front of it.
    void jump();

private:
    QString indentation() const;
    void beginLine();

    qint32 mIndentLevel = 0;
    bool mAtLineStart = true;
    QString mIncrementString;
};

#endif // ORVAUTILS_TEXTSTREAMUTF8_H

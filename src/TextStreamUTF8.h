// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TextStreamUTF8: a text stream that always writes UTF-8 and indents lines by itself.

#ifndef ORVAUTILS_TEXTSTREAMUTF8_H
#define ORVAUTILS_TEXTSTREAMUTF8_H

#include "orvautils_export.h"

#include <QString>
#include <QTextStream>

/// A QTextStream that always writes UTF-8 and indents lines by itself.
///
/// \code
/// TextStreamUTF8 stream(&file);
/// stream << "class A\n{\n";
/// stream.incrementIndent();
/// stream << "int a;\nint b;\n"; // two blanks in front of each
/// stream.decrementIndent();
/// stream << "}\n";
/// \endcode
///
/// Indentation is written lazily, in front of the first text of each line. What is written through
/// the QTextStream below, a formatter of code among others, goes out as it is: it is not indented,
/// and the stream does not learn where its lines start.
///
/// A stream belongs to the thread that uses it.
/// Whether writing worked, QTextStream::status() tells; nothing is logged.
class ORVAUTILS_EXPORT TextStreamUTF8 : public QTextStream
{
public:
    /// A stream without a device; see init().
    TextStreamUTF8();
    /// A stream that writes to \a device or reads from it. The device stays the caller's and must
    /// outlive the stream.
    explicit TextStreamUTF8(QIODevice* device);
    /// A stream on the C file \a file, which stays the caller's and is open as \a openMode says.
    explicit TextStreamUTF8(FILE* file, QIODevice::OpenMode openMode = QIODevice::ReadWrite);
    /// A stream that appends to \a string or reads from it, as \a openMode says; the string must
    /// outlive the stream.
    explicit TextStreamUTF8(QString* string, QIODevice::OpenMode openMode = QIODevice::ReadWrite);

    /// Sets the codec to UTF-8 again and the indent level to 0: to be called after setDevice(),
    /// which falls back to the codec of the locale.
    void init();

    /// Raises the indent level by one. It starts at 0.
    void incrementIndent();
    /// Lowers the indent level by one, below zero as well: there it behaves as zero until it has
    /// been raised as often.
    void decrementIndent();
    /// Makes \a unit the indentation of one level, in the place of two blanks.
    void setIncrementString(const QString& unit);

    /// Writes \a text: by writeTextWithIndent() where the indent level is above 0, else as it is,
    /// which leaves the stream's knowledge of line starts untouched.
    TextStreamUTF8& operator<<(QString text);

    /// Writes \a text with the indentation in front of each of its lines.
    ///
    /// \code
    /// stream.incrementIndent();
    /// stream.writeTextWithIndent("a\nb\n");
    /// stream.writeTextWithIndent("c"); // "  a\n  b\n  c" so far
    /// \endcode
    ///
    /// The first line is indented when it starts a line of the stream: at the beginning and after a
    /// text that ended with "\n". Deliberate: an empty line is indented as well, and an empty text
    /// at the start of a line writes the indentation.
    void writeTextWithIndent(const QString& text);

    /// Writes the indentation of the current level, whatever stands in front; does not count as the
    /// start of a line being written.
    void writeIndent();

    /// Writes \a text as it is, at every level; does not count as text of a line.
    void writeRaw(const QString& text);

    /// Writes a line break in the way of operator<<(). Deliberate: at the start of a line the
    /// indentation goes in front of it.
    void jump();

private:
    QString indentation() const;

    qint32 mIndentLevel = 0;
    bool mAtLineStart = true;
    QString mIncrementString;
};

#endif // ORVAUTILS_TEXTSTREAMUTF8_H

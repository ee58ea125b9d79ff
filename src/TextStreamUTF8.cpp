// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TextStreamUTF8.h"

#include "replaceeach_p.h"
#include "utf8stream_p.h"

using namespace OrvaUtilsPrivate;

namespace {

QString defaultIncrementString()
{
    return QStringLiteral("  ");
}

/// Whether \a manipulator is one of the two functions of Qt 5 named endl.
bool isEndl(TextStreamUTF8::Manipulator manipulator)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    if (manipulator == &Qt::endl)
        return true;
#endif
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return manipulator == static_cast<TextStreamUTF8::Manipulator>(&::endl);
    QT_WARNING_POP
#else
    return false;
#endif
}

} // namespace

// Construction

TextStreamUTF8::TextStreamUTF8()
    : mIncrementString(defaultIncrementString())
{
    writeUtf8(*this);
}

TextStreamUTF8::TextStreamUTF8(QIODevice* device)
    : QTextStream(device)
    , mIncrementString(defaultIncrementString())
{
    writeUtf8(*this);
}

TextStreamUTF8::TextStreamUTF8(FILE* file, QIODevice::OpenMode openMode)
    : QTextStream(file, openMode)
    , mIncrementString(defaultIncrementString())
{
    writeUtf8(*this);
}

TextStreamUTF8::TextStreamUTF8(QString* string, QIODevice::OpenMode openMode)
    : QTextStream(string, openMode)
    , mIncrementString(defaultIncrementString())
{
    writeUtf8(*this);
}

void TextStreamUTF8::init()
{
    writeUtf8(*this);
    mIndentLevel = 0;
}

// Indentation

void TextStreamUTF8::incrementIndent()
{
    ++mIndentLevel;
}

void TextStreamUTF8::decrementIndent()
{
    --mIndentLevel;
}

void TextStreamUTF8::setIncrementString(const QString& unit)
{
    mIncrementString = unit;
}

QString TextStreamUTF8::indentation() const
{
    return mIncrementString.repeated(mIndentLevel);
}

void TextStreamUTF8::writeIndent()
{
    // Indentation is not a field: it is not padded.
    const int width = fieldWidth();
    setFieldWidth(0);
    writeRaw(indentation());
    setFieldWidth(width);
}

void TextStreamUTF8::beginLine()
{
    if (mIndentLevel <= 0 || !mAtLineStart)
        return;
    writeIndent();
    mAtLineStart = false;
}

// Writing

TextStreamUTF8& TextStreamUTF8::operator<<(QString text)
{
    if (mIndentLevel > 0)
        writeTextWithIndent(text);
    else
        writeRaw(text);
    return *this;
}

TextStreamUTF8& TextStreamUTF8::operator<<(const char* text)
{
    return *this << QString::fromUtf8(text);
}

TextStreamUTF8& TextStreamUTF8::operator<<(const QByteArray& text)
{
    return *this << text.constData();
}

TextStreamUTF8& TextStreamUTF8::operator<<(QChar character)
{
    return *this << QString(character);
}

TextStreamUTF8& TextStreamUTF8::operator<<(char character)
{
    return *this << QString(QLatin1Char(character));
}

TextStreamUTF8& TextStreamUTF8::operator<<(Manipulator manipulator)
{
    if (isEndl(manipulator)) {
        jump();
        flush();
    } else if (manipulator) {
        manipulator(*this);
    }
    return *this;
}

TextStreamUTF8& TextStreamUTF8::operator<<(QTextStreamManipulator manipulator)
{
    manipulator.exec(*this);
    return *this;
}

void TextStreamUTF8::writeTextWithIndent(const QString& text)
{
    if (mAtLineStart)
        writeIndent();
    mAtLineStart = text.endsWith(QLatin1Char('\n'));

    // The line after the last line break is indented when something is written to it.
    QString lines = mAtLineStart ? text.left(text.size() - 1) : text;
    lines = replacedEach(lines, QLatin1Char('\n'), QLatin1Char('\n') + indentation());
    if (mAtLineStart)
        lines += QLatin1Char('\n');
    writeRaw(lines);
}

void TextStreamUTF8::writeRaw(const QString& text)
{
    QTextStream::operator<<(text);
}

void TextStreamUTF8::jump()
{
    *this << QStringLiteral("\n");
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TextStreamUTF8.h"

namespace {

const char* const codecName = "UTF-8";

QString defaultIncrementString()
{
    return QStringLiteral("  ");
}

} // namespace

TextStreamUTF8::TextStreamUTF8()
    : mIncrementString(defaultIncrementString())
{
    setCodec(codecName);
}

TextStreamUTF8::TextStreamUTF8(QIODevice* device)
    : QTextStream(device)
    , mIncrementString(defaultIncrementString())
{
    setCodec(codecName);
}

TextStreamUTF8::TextStreamUTF8(FILE* file, QIODevice::OpenMode openMode)
    : QTextStream(file, openMode)
    , mIncrementString(defaultIncrementString())
{
    setCodec(codecName);
}

TextStreamUTF8::TextStreamUTF8(QString* string, QIODevice::OpenMode openMode)
    : QTextStream(string, openMode)
    , mIncrementString(defaultIncrementString())
{
    setCodec(codecName);
}

void TextStreamUTF8::init()
{
    setCodec(codecName);
    mIndentLevel = 0;
}

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

TextStreamUTF8& TextStreamUTF8::operator<<(QString text)
{
    if (mIndentLevel > 0)
        writeTextWithIndent(text);
    else
        writeRaw(text);
    return *this;
}

void TextStreamUTF8::writeTextWithIndent(const QString& text)
{
    if (mAtLineStart)
        writeIndent();
    mAtLineStart = text.endsWith(QLatin1Char('\n'));

    // Behind the last line break nothing is written yet: that line is indented when it has text.
    QString lines = mAtLineStart ? text.left(text.size() - 1) : text;
    lines.replace(QLatin1Char('\n'), QLatin1Char('\n') + indentation());
    if (mAtLineStart)
        lines += QLatin1Char('\n');
    writeRaw(lines);
}

void TextStreamUTF8::writeIndent()
{
    writeRaw(indentation());
}

void TextStreamUTF8::writeRaw(const QString& text)
{
    QTextStream::operator<<(text);
}

void TextStreamUTF8::jump()
{
    *this << QStringLiteral("\n");
}

QString TextStreamUTF8::indentation() const
{
    return mIncrementString.repeated(mIndentLevel);
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LiteralWriter: writes Qt values as literals of PHP or JavaScript, which differ in their maps
// only.
//
// Text is gathered in a block of fixed size and handed to the stream block by block: the stream is
// called once in thousands of characters, and a document of any size is written with the memory of
// one block.

#ifndef ORVAUTILS_LITERALWRITER_P_H
#define ORVAUTILS_LITERALWRITER_P_H

#include "ascii_p.h"

#include <QStringList>
#include <QTextStream>
#include <QVariant>

#include <algorithm>

namespace OrvaUtilsPrivate {

/// How a language writes a map.
struct LiteralSyntax
{
    char mapStart;
    const char* keyEnd;
    char mapEnd;
};

constexpr LiteralSyntax phpSyntax{'[', "=>", ']'};
constexpr LiteralSyntax javascriptSyntax{'{', ":", '}'};

/// Writes to a stream until it goes out of scope; only then has the stream got everything.
class LiteralWriter
{
public:
    // Of the block only what was put into it is read.
    // cppcheck-suppress uninitMemberVar
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
    LiteralWriter(QTextStream* stream, const LiteralSyntax& syntax)
        : mStream(*stream)
        , mSyntax(syntax)
        , mFieldWidth(stream->fieldWidth())
    {
        // Blocks are no fields, and literals are not padded.
        mStream.setFieldWidth(0);
    }

    ~LiteralWriter()
    {
        flush();
        mStream.setFieldWidth(mFieldWidth);
    }

    // Any value

    void write(const QVariant& value)
    {
        switch (value.userType()) {
        case QMetaType::QByteArray:
            return writeRaw(value.toString());
        case QMetaType::QString:
            return write(stored<QString>(value));
        case QMetaType::Bool:
            return write(stored<bool>(value) ? 1 : 0);
        case QMetaType::Double:
            return writeRaw(QString::number(stored<double>(value), 'g', 6));
        case QMetaType::Int:
            return write(stored<int>(value));
        case QMetaType::LongLong:
            return write(stored<qlonglong>(value));
        case QMetaType::QStringList:
            return writeList(stored<QStringList>(value));
        case QMetaType::QVariantMap:
            return writeMap(stored<QVariantMap>(value));
        case QMetaType::QVariantList:
            writeList(stored<QVariantList>(value));
            return put('\n');
        default:
            return write(value.toString());
        }
    }

    // Values of one kind

    /// A quoted text: both kinds of quotes become an escaped single one, backslashes stay.
    void write(const QString& text)
    {
        put('\'');
        const QChar* c = text.constData();
        const QChar* const end = c + text.size();
        while (c != end) {
            reserve(2);
            // A character may need two.
            const QChar* const stop = c + std::min<qptrdiff>(end - c, (BlockSize - mSize) / 2);
            for (; c != stop; ++c) {
                if (*c == QLatin1Char('\'') || *c == QLatin1Char('"')) {
                    mBlock[mSize++] = '\\';
                    mBlock[mSize++] = '\'';
                } else {
                    mBlock[mSize++] = c->unicode();
                }
            }
        }
        put('\'');
    }

    void write(qlonglong number) { writeRaw(QString::number(number)); }
    void write(int number) { write(qlonglong(number)); }

    /// The elements in brackets, without the line break that a list inside a value has.
    template <typename List>
    void writeList(const List& list)
    {
        put('[');
        bool first = true;
        for (const auto& element : list) {
            if (!first)
                put(',');
            first = false;
            write(element);
        }
        put(']');
    }

    /// The entries of a map or a hash in its order.
    template <typename Map>
    void writeMap(const Map& map)
    {
        put(mSyntax.mapStart);
        put('\n');
        for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry) {
            if (entry != map.constBegin())
                put(',');
            writeKey(entry.key());
            writeRaw(mSyntax.keyEnd);
            write(entry.value());
        }
        put('\n');
        put(mSyntax.mapEnd);
    }

    // Code

    void writeRaw(const QString& text)
    {
        const QChar* c = text.constData();
        const QChar* const end = c + text.size();
        while (c != end) {
            reserve(1);
            const QChar* const stop = c + std::min<qptrdiff>(end - c, BlockSize - mSize);
            std::transform(c, stop, mBlock + mSize, [](QChar unit) { return unit.unicode(); });
            mSize += int(stop - c);
            c = stop;
        }
    }

    void writeRaw(const char* ascii)
    {
        while (*ascii)
            put(*ascii++);
    }

private:
    Q_DISABLE_COPY(LiteralWriter)

    static constexpr int BlockSize = 4096;

    /// The value inside \a variant, which is a T, without a copy.
    template <typename T>
    static const T& stored(const QVariant& variant)
    {
        return *static_cast<const T*>(variant.constData());
    }

    /// A key that is a whole number in decimal is written as that number.
    void writeKey(const QString& key)
    {
        bool isNumber = false;
        qlonglong number = 0;
        // Most keys are names, which need not be parsed to know.
        if (!key.isEmpty() && !isAsciiLetter(key.at(0)))
            number = key.toLongLong(&isNumber);
        if (isNumber)
            write(number);
        else
            write(key);
    }

    void put(char ascii)
    {
        reserve(1);
        mBlock[mSize++] = uchar(ascii);
    }

    /// Sees to it that \a units more have room.
    void reserve(int units)
    {
        if (mSize + units > BlockSize)
            flush();
    }

    void flush()
    {
        mStream << QString::fromRawData(reinterpret_cast<const QChar*>(mBlock), mSize);
        mSize = 0;
    }

    QTextStream& mStream;
    const LiteralSyntax mSyntax;
    const int mFieldWidth;
    int mSize = 0;
    ushort mBlock[BlockSize]; // not QChar, which would be cleared each time
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_LITERALWRITER_P_H

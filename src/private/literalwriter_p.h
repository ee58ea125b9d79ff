// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// LiteralWriter: writes Qt values as literals of PHP or JavaScript, which differ only in their
// maps.
//
// Text is collected in a block of fixed size and passed on to the stream block by block. The stream
// is called once for thousands of characters, and a document of any size needs the memory of one
// block. Lists and maps inside values are written without recursion, so that no nesting is too deep
// for the stack of the thread.

#ifndef ORVAUTILS_LITERALWRITER_P_H
#define ORVAUTILS_LITERALWRITER_P_H

#include "ascii_p.h"

#include <QStringList>
#include <QTextStream>
#include <QVarLengthArray>
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

/// Writes to a stream. The stream has received everything when the writer has been destroyed.
class LiteralWriter
{
public:
    // Only what has been put into the block is read.
    // cppcheck-suppress uninitMemberVar
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
    LiteralWriter(QTextStream* stream, const LiteralSyntax& syntax)
        : mStream(*stream)
        , mSyntax(syntax)
        , mFieldWidth(stream->fieldWidth())
    {
        // Neither blocks nor literals are padded.
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
        const int outside = int(mOpen.size());
        open(value);
        while (mOpen.size() > outside) {
            Container& container = mOpen.last();
            if (container.isMap)
                writeNextEntry(container);
            else
                writeNextElement(container);
        }
    }

    // Values of one kind

    /// A quoted text. Both kinds of quotes become an escaped single one, and backslashes are kept.
    void write(const QString& text)
    {
        put('\'');
        const QChar* c = text.constData();
        const QChar* const end = c + text.size();
        while (c != end) {
            reserve(2);
            // A character may become two.
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

    /// The elements in brackets, without the line break that follows a list inside a value.
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
        openMap();
        for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry) {
            if (entry != map.constBegin())
                put(',');
            writeKey(entry.key());
            write(entry.value());
        }
        closeMap();
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

    /// A list or a map that is being written, and what is left of it.
    struct Container
    {
        bool isMap;
        bool isFirst; ///< nothing of it has been written yet
        QVariantList::const_iterator element, lastElement;
        QVariantMap::const_iterator entry, lastEntry;
    };

    /// The value inside \a variant, which is a T, without a copy.
    template <typename T>
    static const T& stored(const QVariant& variant)
    {
        return *static_cast<const T*>(variant.constData());
    }

    /// Writes \a value, or only the start of it if it is a container of arbitrary values.
    void open(const QVariant& value)
    {
        switch (value.userType()) {
        case QMetaType::QByteArray: // which ends at its first NUL
            return writeRaw(QString::fromUtf8(stored<QByteArray>(value).constData()));
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
        case QMetaType::QVariantMap: {
            const QVariantMap& map = stored<QVariantMap>(value);
            openMap();
            return mOpen.append({true, true, {}, {}, map.constBegin(), map.constEnd()});
        }
        case QMetaType::QVariantList: {
            const QVariantList& list = stored<QVariantList>(value);
            put('[');
            return mOpen.append({false, true, list.constBegin(), list.constEnd(), {}, {}});
        }
        default:
            return write(value.toString());
        }
    }

    void writeNextElement(Container& list)
    {
        if (list.element == list.lastElement) {
            put(']');
            put('\n');
            return mOpen.removeLast();
        }
        separate(list);
        open(*list.element++);
    }

    void writeNextEntry(Container& map)
    {
        if (map.entry == map.lastEntry) {
            closeMap();
            return mOpen.removeLast();
        }
        separate(map);
        const QVariantMap::const_iterator entry = map.entry++;
        writeKey(entry.key());
        open(entry.value());
    }

    void separate(Container& container)
    {
        if (!container.isFirst)
            put(',');
        container.isFirst = false;
    }

    void openMap()
    {
        put(mSyntax.mapStart);
        put('\n');
    }

    void closeMap()
    {
        put('\n');
        put(mSyntax.mapEnd);
    }

    /// Writes a key and what follows it. A key that is a decimal integer is written as that number.
    void writeKey(const QString& key)
    {
        bool isNumber = false;
        qlonglong number = 0;
        // Most keys are names and need not be parsed.
        if (!key.isEmpty() && !isAsciiLetter(key.at(0)))
            number = key.toLongLong(&isNumber);
        if (isNumber)
            write(number);
        else
            write(key);
        writeRaw(mSyntax.keyEnd);
    }

    void put(char ascii)
    {
        reserve(1);
        mBlock[mSize++] = uchar(ascii);
    }

    /// Makes room for \a units more.
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
    QVarLengthArray<Container, 8> mOpen; ///< the innermost one is the last
    int mSize = 0;
    ushort mBlock[BlockSize]; // not QChar, whose constructor would clear it each time
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_LITERALWRITER_P_H

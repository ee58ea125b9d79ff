// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Literals of PHP and JavaScript: a reader of the language restores the value according to the
// rules of the emitters (both quotes become single ones, true and false become 1 and 0).

#include "Fuzz.h"
#include "HTMLUtils.h"
#include "JsCodeHelpers.h"
#include "PhpCodeHelpers.h"
#include "PhpUtil.h"
#include "Written.h"

namespace {

/// Reads one literal like the language: single-quoted texts in which a backslash escapes a quote or
/// a backslash, decimal integers, lists in brackets and maps.
class Reader
{
public:
    Reader(const QString& code, QChar mapOpen, const QString& arrow, QChar mapClose)
        : mCode(code)
        , mMapOpen(mapOpen)
        , mArrow(arrow)
        , mMapClose(mapClose)
    { }

    /// Reads the whole code as one value.
    QVariant readAll()
    {
        const QVariant value = read();
        skipBlanks();
        FUZZ_PROMISE(mPosition == mCode.size());
        return value;
    }

private:
    QVariant read()
    {
        skipBlanks();
        if (peek() == QLatin1Char('\''))
            return readText();
        // A map has a line break after its bracket, a list has none.
        if (peek() == mMapOpen && mCode.mid(mPosition + 1, 1) == QLatin1String("\n"))
            return readMap();
        if (peek() == QLatin1Char('['))
            return readList();
        return readNumber();
    }

    QString readText()
    {
        take(QLatin1Char('\''));
        QString text;
        while (peek() != QLatin1Char('\'')) {
            if (peek() == QLatin1Char('\\'))
                ++mPosition;
            text += peek();
            ++mPosition;
        }
        take(QLatin1Char('\''));
        return text;
    }

    QVariant readNumber()
    {
        const int begin = mPosition;
        while (mPosition < mCode.size()
               && (mCode.at(mPosition).isDigit() || mCode.at(mPosition) == QLatin1Char('-')))
            ++mPosition;
        bool ok = false;
        const qlonglong number = mCode.mid(begin, mPosition - begin).toLongLong(&ok);
        FUZZ_PROMISE(ok);
        return number;
    }

    QVariant readList()
    {
        QVariantList list;
        take(QLatin1Char('['));
        skipBlanks();
        while (peek() != QLatin1Char(']')) {
            if (!list.isEmpty())
                take(QLatin1Char(','));
            list.append(read());
            skipBlanks();
        }
        take(QLatin1Char(']'));
        return list;
    }

    QVariant readMap()
    {
        QVariantMap map;
        take(mMapOpen);
        skipBlanks();
        while (peek() != mMapClose) {
            if (!map.isEmpty())
                take(QLatin1Char(','));
            const QString key = read().toString();
            for (const QChar c : mArrow)
                take(c);
            FUZZ_PROMISE(!map.contains(key));
            map.insert(key, read());
            skipBlanks();
        }
        take(mMapClose);
        return map;
    }

    QChar peek() const
    {
        FUZZ_PROMISE(mPosition < mCode.size());
        return mCode.at(mPosition);
    }

    void take(QChar c)
    {
        FUZZ_PROMISE(peek() == c);
        ++mPosition;
    }

    void skipBlanks()
    {
        while (mPosition < mCode.size() && mCode.at(mPosition) == QLatin1Char('\n'))
            ++mPosition;
    }

    const QString mCode;
    const QChar mMapOpen;
    const QString mArrow;
    const QChar mMapClose;
    int mPosition = 0;
};

/// A value, and what a reader of its literal returns.
struct Sample
{
    QVariant value;
    QVariant readBack;
};

QString singleQuoted(QString text)
{
    return text.replace(QLatin1Char('"'), QLatin1Char('\''));
}

/// Without backslashes, which callers of the emitters have to escape.
QString plainText(FuzzedDataProvider& input)
{
    return textOf(input.ConsumeRandomLengthString(60)).remove(QLatin1Char('\\'));
}

Sample sample(FuzzedDataProvider& input, int depth)
{
    switch (input.ConsumeIntegralInRange<int>(0, depth > 0 ? 6 : 3)) {
    case 0: {
        const QString text = plainText(input);
        return {text, singleQuoted(text)};
    }
    case 1: {
        const int number = input.ConsumeIntegral<int>();
        return {number, qlonglong(number)};
    }
    case 2: {
        const qlonglong number = input.ConsumeIntegral<qint64>();
        return {number, number};
    }
    case 3: {
        const bool yes = input.ConsumeBool();
        return {yes, qlonglong(yes ? 1 : 0)};
    }
    case 4: {
        QStringList list;
        QVariantList readBack;
        for (int i = input.ConsumeIntegralInRange<int>(0, 5); i > 0; --i) {
            list.append(plainText(input));
            readBack.append(singleQuoted(list.last()));
        }
        return {list, readBack};
    }
    case 5: {
        QVariantList list;
        QVariantList readBack;
        for (int i = input.ConsumeIntegralInRange<int>(0, 5); i > 0; --i) {
            const Sample element = sample(input, depth - 1);
            list.append(element.value);
            readBack.append(element.readBack);
        }
        return {list, readBack};
    }
    default: {
        QVariantMap map;
        QVariantMap readBack;
        for (int i = input.ConsumeIntegralInRange<int>(0, 5); i > 0; --i) {
            const QString key = plainText(input);
            bool isNumber = false;
            const qlonglong number = key.toLongLong(&isNumber);
            // Two spellings of one key would be the same key.
            const QString readKey = isNumber ? QString::number(number) : singleQuoted(key);
            if (readBack.contains(readKey))
                continue;
            const Sample entry = sample(input, depth - 1);
            map.insert(key, entry.value);
            readBack.insert(readKey, entry.readBack);
        }
        return {map, readBack};
    }
    }
}

/// encodeToJavascriptText() as read by JavaScript.
QString readEscapes(const QString& code)
{
    QString text;
    for (int i = 0; i < code.size(); ++i) {
        FUZZ_PROMISE(code.at(i) != QLatin1Char('\'') && code.at(i) != QLatin1Char('"'));
        FUZZ_PROMISE(code.at(i).unicode() >= 32 && code.at(i).unicode() <= 126);
        if (code.at(i) != QLatin1Char('\\')) {
            text += code.at(i);
        } else if (code.mid(i, 2) == QLatin1String("\\n")) {
            text += QLatin1Char('\n');
            ++i;
        } else {
            FUZZ_PROMISE(code.mid(i, 2) == QLatin1String("\\u"));
            bool ok = false;
            FUZZ_PROMISE(code.mid(i + 2, 4).size() == 4);
            text += QChar(code.mid(i + 2, 4).toUShort(&ok, 16));
            FUZZ_PROMISE(ok);
            i += 5;
        }
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const Sample value = sample(input, 4);

    const QString php = written(
        [&](QTextStream* stream) { PhpCodeHelpers::formatVariantValue(stream, value.value); });
    FUZZ_PROMISE(Reader(php, QLatin1Char('['), QStringLiteral("=>"), QLatin1Char(']')).readAll()
                 == value.readBack);
    const QString javascript = written(
        [&](QTextStream* stream) { JsCodeHelpers::formatVariantValue(stream, value.value); });
    FUZZ_PROMISE(
        Reader(javascript, QLatin1Char('{'), QStringLiteral(":"), QLatin1Char('}')).readAll()
        == value.readBack);

    // Any text, including backslashes.
    const QString text = remainingText(input);
    QString escaped = text;
    escaped.replace(QLatin1Char('"'), QLatin1Char('\''));
    escaped.replace(QLatin1String("'"), QLatin1String("\\'"));
    FUZZ_PROMISE(
        written([&](QTextStream* stream) { PhpCodeHelpers::formatVariantValue(stream, text); })
        == QLatin1Char('\'') + escaped + QLatin1Char('\''));
    FUZZ_PROMISE(readEscapes(HTMLUtils::encodeToJavascriptText(text)) == text);
    FUZZ_PROMISE(PhpUtil::formatPhpString(text)
                 == QLatin1Char('"')
                     + QString(text).replace(QLatin1String("\""), QLatin1String("\\\""))
                     + QLatin1Char('"'));
    return 0;
}

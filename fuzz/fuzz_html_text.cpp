// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// HTMLUtils: the output of textWithoutHtmlTags() is safe inside HTML, and decodeFromHtmlText()
// restores the text, except lone surrogates; decodeFromHtmlText() follows its grammar on any other
// text.

#include "Fuzz.h"
#include "HTMLUtils.h"

#include <QSet>

namespace {

QString character(const QString& digits)
{
    bool fits = false;
    const uint code = digits.isEmpty() ? 0 : digits.toUInt(&fits);
    if (!digits.isEmpty() && (!fits || code > QChar::LastValidCodePoint))
        return QString(QChar::ReplacementCharacter);
    return code < 0x10000 ? QString(QChar(ushort(code))) : QString::fromUcs4(&code, 1);
}

/// \a text with U+FFFD in place of lone surrogates; only for those at \a positions unless that is
/// null.
QString withoutLoneSurrogates(QString text, const QSet<int>* positions = nullptr)
{
    for (int at = 0; at < text.size(); ++at) {
        const bool isPair = text.at(at).isHighSurrogate() && at + 1 < text.size()
            && text.at(at + 1).isLowSurrogate();
        if (isPair)
            ++at;
        else if (text.at(at).isSurrogate() && (!positions || positions->contains(at)))
            text[at] = QChar(QChar::ReplacementCharacter);
    }
    return text;
}

/// A second implementation of decodeFromHtmlText(), which goes from one "&" to the next.
QString decodedByGrammar(const QString& text)
{
    QString result;
    QSet<int> surrogates; // positions of surrogates that were references
    int from = 0;
    for (int at = text.indexOf(QLatin1Char('&')); at >= 0;
         at = text.indexOf(QLatin1Char('&'), from)) {
        result += text.mid(from, at - from);
        int end = at + 1;
        if (text.size() - at >= 3 && text.mid(at, 6) == QLatin1String("&nbsp;")) {
            result += QLatin1Char(' ');
            end = at + 6;
        } else if (text.size() - at >= 3 && text.at(at + 1) == QLatin1Char('#')) {
            end = at + 2;
            while (end < text.size() && text.at(end) >= QLatin1Char('0')
                   && text.at(end) <= QLatin1Char('9'))
                ++end;
            const QString meant = character(text.mid(at + 2, end - at - 2));
            if (meant.size() == 1 && meant.at(0).isSurrogate())
                surrogates.insert(result.size());
            result += meant;
            if (end < text.size() && text.at(end) != QLatin1Char(';'))
                result += text.at(end);
            end = qMin(end + 1, text.size());
        } else {
            result += QLatin1Char('&');
        }
        from = end;
    }
    return withoutLoneSurrogates(result + text.mid(from), &surrogates);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const bool encodeSpaces = input.ConsumeBool();
    const bool encodeNewLines = input.ConsumeBool();
    const QString text = remainingText(input);

    const QString escaped = HTMLUtils::textWithoutHtmlTags(text, encodeSpaces, encodeNewLines);
    for (const char special : {'<', '>', '"'})
        FUZZ_PROMISE(!escaped.contains(QLatin1Char(special)));
    FUZZ_PROMISE(!encodeSpaces || !escaped.contains(QLatin1Char(' ')));
    FUZZ_PROMISE(!encodeNewLines || !escaped.contains(QLatin1Char('\n')));
    FUZZ_PROMISE(HTMLUtils::decodeFromHtmlText(escaped) == withoutLoneSurrogates(text));

    const QString decoded = HTMLUtils::decodeFromHtmlText(text);
    FUZZ_PROMISE(decoded.size() <= text.size());
    FUZZ_PROMISE(decoded == decodedByGrammar(text));
    return 0;
}

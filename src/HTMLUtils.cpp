// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "HTMLUtils.h"

#include "StringUtils.h"
#include "ascii_p.h"
#include "asconst_p.h"
#include "replaceeach_p.h"

#include <QColor>
#include <QTextDocument>
#include <QUrl>
#include <QVector>

#include <algorithm>

using namespace OrvaUtilsPrivate;

namespace {

/// \a s trimmed and without braces.
QString withoutBraces(const QString& s)
{
    return s.trimmed().remove(QLatin1Char('{')).remove(QLatin1Char('}'));
}

/// Whether \a c is left unencoded in a path.
bool isKeptInPath(QChar c)
{
    switch (c.unicode()) {
    case '#':
    case '-':
    case '.':
    case '/':
    case '=':
    case '?':
    case '_':
        return true;
    default:
        return isAsciiLetter(c) || isAsciiDigit(c)
            || (c.unicode() >= 128 && (c.isLetter() || c.isDigit()));
    }
}

/// The character reference for \a c in HTML; null if \a c is written as it is.
const char* referenceFor(QChar c)
{
    switch (c.unicode()) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    default:
        return nullptr;
    }
}

/// Whether HTML forbids \a c: all control characters except those that are white space.
bool isForbiddenControl(QChar c)
{
    return c.category() == QChar::Other_Control && c != QLatin1Char('\t') && c != QLatin1Char('\n')
        && c != QLatin1Char('\f') && c != QLatin1Char('\r');
}

/// A meta tag with \a name as the value of \a attribute.
QString metaTag(const char* attribute, const QString& name, const QString& content)
{
    return QLatin1String("<meta ") + QLatin1String(attribute) + QLatin1String("=\"") + name
        + QLatin1String("\" content=\"") + HTMLUtils::textWithoutHtmlTags(content, false, true)
        + QLatin1String("\"/>");
}

/// Whether \a s contains \a text at \a position.
bool standsAt(const QString& s, int position, QLatin1String text)
{
    return s.size() - position >= text.size()
        && std::equal(text.data(), text.data() + text.size(), s.constData() + position,
                      [](char latin, QChar c) { return c == QLatin1Char(latin); });
}

/// Appends the character with the code point \a code, or U+FFFD beyond the last one.
void appendCodePoint(QString& text, uint code)
{
    if (code > QChar::LastValidCodePoint)
        code = QChar::ReplacementCharacter;
    if (QChar::requiresSurrogates(code)) {
        text += QChar(QChar::highSurrogate(code));
        text += QChar(QChar::lowSurrogate(code));
    } else {
        text += QChar(code);
    }
}

/// Whether the surrogate at \a position of \a s is not half of a pair.
bool isLoneSurrogate(const QString& s, int position)
{
    // There is one at the position, so the text is not empty.
    // cppcheck-suppress containerOutOfBounds
    if (s.at(position).isHighSurrogate())
        return position + 1 == s.size() || !s.at(position + 1).isLowSurrogate();
    return position == 0 || !s.at(position - 1).isHighSurrogate();
}

} // namespace

// Identifiers

QString HTMLUtils::generateUUID()
{
    return formatCompliantcssId(StringUtils::generateUUID());
}

QString HTMLUtils::formatCompliantcssId(const QString& s)
{
    return withoutBraces(s).replace(QLatin1Char('-'), QLatin1Char('_'));
}

QString HTMLUtils::formatCompliantcssClassName(const QString& s)
{
    return withoutBraces(s).replace(QLatin1Char('_'), QLatin1Char('-'));
}

QString HTMLUtils::formatCompliantFolder(const QString& s)
{
    return formatCompliantcssId(s);
}

// Addresses of resources

QString HTMLUtils::encodeSrcUrl(const QString& url)
{
    // The bytes are ASCII. Deliberately read as a C string, up to the first NUL.
    return QString::fromLatin1(QUrl(url, QUrl::TolerantMode).toEncoded().constData());
}

QString HTMLUtils::encodeSrcUrlWithFullyAmpersands(const QString& path)
{
    const int point = int(path.lastIndexOf(QLatin1Char('.')));
    if (point < 0)
        return path;

    QString encoded;
    encoded.reserve(path.size());
    for (int i = 0; i < point; ++i) {
        const QChar c = path.at(i);
        if (isKeptInPath(c)) {
            encoded += c;
        } else {
            encoded += QLatin1Char('%');
            encoded += QString::number(c.unicode(), 16);
        }
    }
    encoded.append(path.constData() + point, path.size() - point);
    return encoded;
}

QString HTMLUtils::formatedLocalFile(const QString& path)
{
    return QLatin1String("file://") + path;
}

// Escaped text

QString HTMLUtils::encodeToJavascriptText(const QString& s)
{
    static const char digits[] = "0123456789abcdef";
    QString text;
    text.reserve(s.size());
    for (const QChar c : s) {
        const ushort code = c.unicode();
        if (code == u'\n') {
            text += QLatin1String("\\n");
        } else if (code >= 32 && code <= 126 && code != u'"' && code != u'\'' && code != u'\\') {
            text += c;
        } else {
            const char escape[] = {'\\',
                                   'u',
                                   digits[code >> 12],
                                   digits[code >> 8 & 15],
                                   digits[code >> 4 & 15],
                                   digits[code & 15]};
            text += QLatin1String(escape, int(sizeof escape));
        }
    }
    return text;
}

QString HTMLUtils::formatHtmlToPlainText(const QString& html)
{
    QTextDocument document;
    document.setHtml(html);
    return document.toPlainText();
}

QString HTMLUtils::textWithoutHtmlTags(const QString& s, bool encodeSpaces, bool encodeNewLines)
{
    QString text;
    text.reserve(s.size());
    for (int i = 0; i < s.size(); ++i) {
        const QChar c = s.at(i);
        uint code = c.unicode();
        const bool pair = c.isHighSurrogate() && i + 1 < s.size() && s.at(i + 1).isLowSurrogate();
        if (pair)
            code = QChar::surrogateToUcs4(c, s.at(++i));

        if (code == u' ' && encodeSpaces) {
            text += QLatin1String("&nbsp;");
        } else if (code == u'\n' ? encodeNewLines
                                 : code == u'"' || code == u'&' || code == u'<' || code == u'>'
                           || !QChar::isPrint(code)) {
            text += QLatin1String("&#");
            text += QString::number(code);
            text += QLatin1Char(';');
        } else {
            text += c;
            if (pair)
                text += s.at(i);
        }
    }
    return text;
}

bool HTMLUtils::codeCharMustBeEncoded(int code)
{
    return code == '"' || code == '&' || code == '<' || code == '>' || code > 125;
}

QString HTMLUtils::escaped(const QString& text)
{
    QString html;
    html.reserve(text.size());
    for (const QChar c : text) {
        if (const char* const reference = referenceFor(c))
            html += QLatin1String(reference);
        else
            html += isForbiddenControl(c) ? QChar(QChar::ReplacementCharacter) : c;
    }
    return html;
}

QString HTMLUtils::decodeFromHtmlText(const QString& s)
{
    const QLatin1String noBreakSpace("&nbsp;");
    QVector<int> surrogates; // positions of those that came from references
    QString text;
    text.reserve(s.size());
    for (int i = 0; i < s.size();) {
        const QChar c = s.at(i);
        if (c != QLatin1Char('&') || s.size() - i < 3) {
            text += c;
            ++i;
        } else if (standsAt(s, i, noBreakSpace)) {
            text += QLatin1Char(' ');
            i += int(noBreakSpace.size());
        } else if (s.at(i + 1) == QLatin1Char('#')) {
            uint code = 0;
            for (i += 2; i < s.size() && isAsciiDigit(s.at(i)); ++i) {
                // Further digits are skipped once the number is beyond the last code point.
                if (code <= QChar::LastValidCodePoint)
                    code = code * 10 + (s.at(i).unicode() - u'0');
            }
            if (QChar::isSurrogate(code))
                surrogates.append(int(text.size()));
            appendCodePoint(text, code);
            if (i < s.size() && s.at(i) != QLatin1Char(';'))
                text += s.at(i);
            ++i;
        } else {
            text += c;
            ++i;
        }
    }
    for (const int position : asConst(surrogates)) {
        if (isLoneSurrogate(text, position))
            text[position] = QChar(QChar::ReplacementCharacter);
    }
    return text;
}

void HTMLUtils::htmlBRreplace(QString& s)
{
    s = replacedEach(s, QLatin1Char('\n'), QStringLiteral("<br />"));
}

// Tags

QString HTMLUtils::formatHtmlMetaName(const QString& name, const QString& content)
{
    return metaTag("name", name, content);
}

QString HTMLUtils::formatHtmlMetaHttpEqui(const QString& name, const QString& content)
{
    return metaTag("http-equiv", name, content);
}

// Images

QString HTMLUtils::tiniestInlineGifImage()
{
    return QStringLiteral("data:image/gif;base64,"
                          "R0lGODlhAQABAAAAACH5BAEKAAEALAAAAAABAAEAAAICTAEAOw==");
}

QString HTMLUtils::base64ForSvgImageTagSource(const QByteArray& svg)
{
    return QLatin1String("data:image/svg+xml;base64,") + QString::fromLatin1(svg.toBase64());
}

QString HTMLUtils::base64ForImageTagSource(const QByteArray& image)
{
    return QLatin1String("data:image;base64,") + QString::fromLatin1(image.toBase64());
}

// Style

int HTMLUtils::cssWeightToQtWeight(int cssWeight)
{
    switch (cssWeight) {
    case 100:
        return 0;
    case 200:
        return 12;
    case 300:
        return 25;
    case 500:
        return 57;
    case 600:
        return 63;
    case 700:
        return 75;
    case 800:
        return 81;
    case 900:
        return 87;
    default:
        return 50;
    }
}

QString HTMLUtils::colorToCss(const QColor& c)
{
    const double alpha = c.alphaF();
    if (alpha == 1.0)
        return c.name();

    // QColor stores the alpha as a fraction of 65535, so that 0.5 comes back as 0.5000076.
    const auto stored = [](double value) { return qRound(value * 65535); };
    QString alphaText = QString::number(alpha, 'g', 6);
    for (int decimals = 1; decimals <= 3; ++decimals) {
        const double rounded = QString::number(alpha, 'f', decimals).toDouble();
        if (stored(rounded) == stored(alpha)) {
            alphaText = QString::number(rounded); // "0", not "0.0"
            break;
        }
    }
    return QStringLiteral("rgba(%1,%2,%3,%4)")
        .arg(c.red())
        .arg(c.green())
        .arg(c.blue())
        .arg(alphaText);
}

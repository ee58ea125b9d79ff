// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// HTMLUtils: identifiers, addresses, escaped text, meta tags, inline images, colours and font
// weights for generated pages.

#ifndef ORVAUTILS_HTMLUTILS_H
#define ORVAUTILS_HTMLUTILS_H

#include "orvautils_export.h"

#include <QByteArray>
#include <QString>

class QColor;

/// Identifiers, addresses, escaped text, meta tags, inline images and style for generated pages.
///
/// All functions are static, keep no state and may be called from any thread. Nothing is logged.
class ORVAUTILS_EXPORT HTMLUtils
{
public:
    HTMLUtils() = delete;

    // Identifiers

    /// A new random UUID in the form of formatCompliantcssId(), for example
    /// "67c8770b_44f1_410a_ab9a_f9b5446f13ee".
    static QString generateUUID();

    /// \a s as an id: trimmed, without braces, every "-" a "_".
    ///
    /// \code
    /// HTMLUtils::formatCompliantcssId(" {a-b_c} "); // "a_b_c"
    /// \endcode
    ///
    /// Other characters that CSS does not allow in an identifier are not replaced.
    static QString formatCompliantcssId(const QString& s);

    /// \a s as a class name: trimmed, without braces, every "_" a "-".
    ///
    /// \code
    /// HTMLUtils::formatCompliantcssClassName(" {a-b_c} "); // "a-b-c"
    /// \endcode
    static QString formatCompliantcssClassName(const QString& s);

    /// \a s as the name of a folder: the same as formatCompliantcssId().
    static QString formatCompliantFolder(const QString& s);

    // Addresses of resources

    /// \a url, parsed in tolerant mode, in its fully encoded form.
    ///
    /// \code
    /// HTMLUtils::encodeSrcUrl("images/été 1.png"); // "images/%C3%A9t%C3%A9%201.png"
    /// \endcode
    ///
    /// Empty if \a url cannot be parsed even in tolerant mode.
    static QString encodeSrcUrl(const QString& url);

    /// \a path with everything up to its last point encoded for a link, including "&". The point
    /// and what follows it are unchanged.
    ///
    /// \code
    /// HTMLUtils::encodeSrcUrlWithFullyAmpersands("images/a b&c.png"); // "images/a%20b%26c.png"
    /// HTMLUtils::encodeSrcUrlWithFullyAmpersands("a b"); // "a b"
    /// \endcode
    ///
    /// ASCII letters and digits, "#-./=?_" and letters and digits of other scripts are kept. Every
    /// other UTF-16 unit becomes "%" and its code in lower-case hexadecimal.
    ///
    /// Deliberate: a path without a point is returned unchanged, and the code is written without
    /// leading zeros and not in UTF-8: a tab gives "%9", "€" gives "%20ac".
    static QString encodeSrcUrlWithFullyAmpersands(const QString& path);

    /// "file://" and \a path as it is: three slashes for an absolute path.
    static QString formatedLocalFile(const QString& path);

    // Escaped text

    /// \a s escaped for a JavaScript string literal in single or double quotes.
    ///
    /// \code
    /// HTMLUtils::encodeToJavascriptText("l'été\n"); // R"(l\u0027\u00e9t\u00e9\n)"
    /// \endcode
    ///
    /// A line feed becomes "\n" (two characters). Printable ASCII except both quotes and the
    /// backslash is kept. Every other UTF-16 unit becomes "\u" and four lower-case hexadecimal
    /// digits, so that a character outside the BMP gives two escapes.
    static QString encodeToJavascriptText(const QString& s);

    /// The plain text of \a html as QTextDocument renders it. Requires a QGuiApplication.
    ///
    /// \code
    /// HTMLUtils::formatHtmlToPlainText("<p>a <b>b</b></p><p>c</p>"); // "a b\nc"
    /// \endcode
    static QString formatHtmlToPlainText(const QString& html);

    /// \a s escaped so that it can be used inside HTML.
    ///
    /// \code
    /// HTMLUtils::textWithoutHtmlTags("<b> é", true, false); // "&#60;b&#62;&nbsp;é"
    /// \endcode
    ///
    /// The double quote, "&", "<", ">" and characters that are not printable become "&#", their
    /// decimal code and ";". Blanks become "&nbsp;" if \a encodeSpaces is true, and line feeds
    /// become "&#10;" if \a encodeNewLines is true. All other characters are copied, including
    /// those outside the BMP. An unpaired surrogate becomes a reference.
    ///
    /// Deliberate: despite the name, no tag is removed.
    static QString textWithoutHtmlTags(const QString& s, bool encodeSpaces, bool encodeNewLines);

    /// Whether the character with this \a code is written as a reference: the double quote, "&",
    /// "<", ">" and all above 125. Control characters are not.
    static bool codeCharMustBeEncoded(int code);

    /// \a text for HTML: as the contents of an element and as an attribute's value in quotes of
    /// either kind.
    ///
    /// \code
    /// HTMLUtils::escaped("Tom & \"Zoé\" <3"); // "Tom &amp; &quot;Zoé&quot; &lt;3"
    /// \endcode
    ///
    /// "&", "<", ">", the double quote and the apostrophe become references. Control characters
    /// that HTML does not allow become U+FFFD: all except tab, line feed, form feed and carriage
    /// return. All other characters are copied. Browsers and QTextDocument read the text back as it
    /// was.
    ///
    /// Use it for new pages. textWithoutHtmlTags() also replaces white space but not the
    /// apostrophe.
    static QString escaped(const QString& text);

    /// \a s with its numeric references and "&nbsp;" replaced by the characters they stand for.
    ///
    /// \code
    /// HTMLUtils::decodeFromHtmlText("a&#233;b&nbsp;c &amp;"); // "aéb c &amp;"
    /// \endcode
    ///
    /// "&nbsp;" gives a space. "&#" and decimal digits (0 to 9) give the character with that code,
    /// or U+FFFD if there is none: above the last code point and for half of a surrogate pair. Two
    /// references to both halves give the character. The character after the digits belongs to the
    /// reference: ";" is dropped, and any other is copied without being looked at, even "&"
    /// ("&#65x" gives "Ax"). Without digits the code is 0. The end of the text ends a reference.
    ///
    /// Deliberate: other named references are left alone, and so is an "&" that is the last or the
    /// last but one character.
    static QString decodeFromHtmlText(const QString& s);

    /// Replaces every line feed of \a s, in place, by "<br />".
    static void htmlBRreplace(QString& s);

    // Tags

    /// The tag `<meta name="NAME" content="CONTENT"/>`, with \a content escaped by
    /// textWithoutHtmlTags(), line feeds included.
    ///
    /// \code
    /// HTMLUtils::formatHtmlMetaName("author", "A & B");
    /// // <meta name="author" content="A &#38; B"/>
    /// \endcode
    ///
    /// Deliberate: \a name is not escaped.
    static QString formatHtmlMetaName(const QString& name, const QString& content);

    /// The tag `<meta http-equiv="NAME" content="CONTENT"/>` of \a name and \a content,
    /// otherwise like formatHtmlMetaName().
    static QString formatHtmlMetaHttpEqui(const QString& name, const QString& content);

    // Images

    /// A transparent GIF image of one pixel as a data URI.
    static QString tiniestInlineGifImage();

    /// A data URI with \a svg, the contents of an SVG file.
    static QString base64ForSvgImageTagSource(const QByteArray& svg);

    /// A data URI with \a image, the contents of an image file. It does not name the format, which
    /// browsers detect.
    static QString base64ForImageTagSource(const QByteArray& image);

    // Style

    /// The Qt font weight (0 to 99) for a CSS weight of 100, 200, … 900, and 50 (normal) for any
    /// other number.
    ///
    /// \code
    /// HTMLUtils::cssWeightToQtWeight(700); // 75
    /// \endcode
    static int cssWeightToQtWeight(int cssWeight);

    /// \a c in CSS notation.
    ///
    /// \code
    /// HTMLUtils::colorToCss(QColor(255, 0, 0)); // "#ff0000"
    /// HTMLUtils::colorToCss(QColor::fromRgbF(1, 0, 0, 0.5)); // "rgba(255,0,0,0.5)"
    /// \endcode
    ///
    /// An opaque colour is "#rrggbb", any other "rgba(r,g,b,a)" with 0 to 255 for red, green and
    /// blue. The alpha is written with the fewest decimals, at most three, that restore the stored
    /// alpha, otherwise with six significant digits: an alpha of 128 is 0.501961. An invalid colour
    /// is opaque black.
    static QString colorToCss(const QColor& c);
};

#endif // ORVAUTILS_HTMLUTILS_H

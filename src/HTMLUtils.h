// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// HTMLUtils: what goes into a generated page beside the text itself: identifiers, addresses,
// escaped text, meta tags, inline images, colours and font weights.

#ifndef ORVAUTILS_HTMLUTILS_H
#define ORVAUTILS_HTMLUTILS_H

#include "orvautils_export.h"

#include <QByteArray>
#include <QString>

class QColor;

/// Identifiers, addresses, escaped text, meta tags, inline images and style for generated pages.
///
/// All functions are static, keep no state and may be called from any thread. Nothing here writes
/// to the log.
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
    /// Other characters that CSS does not take are left to the caller.
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

    /// \a url, read tolerantly, in its fully encoded form.
    ///
    /// \code
    /// HTMLUtils::encodeSrcUrl("images/été 1.png"); // "images/%C3%A9t%C3%A9%201.png"
    /// \endcode
    ///
    /// Empty where even tolerant reading makes no URL of it.
    static QString encodeSrcUrl(const QString& url);

    /// \a path with everything up to its last point encoded for a link, "&" included; the point and
    /// what follows stay as they are.
    ///
    /// \code
    /// HTMLUtils::encodeSrcUrlWithFullyAmpersands("images/a b&c.png"); // "images/a%20b%26c.png"
    /// HTMLUtils::encodeSrcUrlWithFullyAmpersands("a b"); // "a b"
    /// \endcode
    ///
    /// ASCII letters and digits, "#-./=?_" and letters and digits of other scripts are kept. Every
    /// other character, as a UTF-16 unit, becomes "%" and its code in lower-case hexadecimal.
    ///
    /// Deliberate: a path without a point comes back unchanged, and the code is written without
    /// leading zeros and not in UTF-8: a tab gives "%9", "€" gives "%20ac".
    static QString encodeSrcUrlWithFullyAmpersands(const QString& path);

    /// "file://" and \a path as it is: three slashes for an absolute path.
    static QString formatedLocalFile(const QString& path);

    // Escaped text

    /// Whether the character of this \a code is one of those that pages show as a reference: the
    /// double quote, "&", "<", ">" and all above 125. Control characters are not among them.
    static bool codeCharMustBeEncoded(int code);

    /// \a s for a JavaScript string literal, in either kind of quotes.
    ///
    /// \code
    /// HTMLUtils::encodeToJavascriptText("l'été\n"); // R"(l\u0027\u00e9t\u00e9\n)"
    /// \endcode
    ///
    /// A line feed becomes "\n" (two characters). ASCII is kept except control characters, both
    /// quotes and the backslash; these and all else become "\u" and four lower-case hexadecimal
    /// digits for each UTF-16 unit, so that a character beyond the BMP gives two of them.
    static QString encodeToJavascriptText(const QString& s);

    /// The plain text of \a html, as a rich-text document renders it. Needs a QGuiApplication.
    ///
    /// \code
    /// HTMLUtils::formatHtmlToPlainText("<p>a <b>b</b></p><p>c</p>"); // "a b\nc"
    /// \endcode
    static QString formatHtmlToPlainText(const QString& html);

    /// \a s escaped so that it can stand inside HTML.
    ///
    /// \code
    /// HTMLUtils::textWithoutHtmlTags("<b> é", true, false); // "&#60;b&#62;&nbsp;é"
    /// \endcode
    ///
    /// The double quote, "&", "<", ">" and characters that are not printable become "&#", their
    /// decimal code and ";". Blanks become "&nbsp;" where \a encodeSpaces asks for it, line feeds
    /// "&#10;" where \a encodeNewLines does; else both are kept. All other characters are copied,
    /// those beyond the BMP whole. Half a surrogate pair becomes a reference of its own.
    ///
    /// Deliberate: in spite of the name no tag is taken out.
    static QString textWithoutHtmlTags(const QString& s, bool encodeSpaces, bool encodeNewLines);

    /// \a s with its numeric references and "&nbsp;" turned back into characters.
    ///
    /// \code
    /// HTMLUtils::decodeFromHtmlText("a&#233;b&nbsp;c &amp;"); // "aéb c &amp;"
    /// \endcode
    ///
    /// "&nbsp;" gives a blank. "&#" and decimal digits (0 to 9) give the character of that code, a
    /// surrogate pair above 65535, U+FFFD above the last code point. The character behind the
    /// digits is taken in: ";" is dropped, any other is copied as it is, even another "&" ("&#65x"
    /// gives "Ax"). Without digits the code is 0. A reference may end with the text.
    ///
    /// Deliberate: other named references are left alone, and so is an "&" that is the last
    /// character or the last but one.
    static QString decodeFromHtmlText(const QString& s);

    /// Replaces every line feed of \a s, in place, by "<br />".
    static void htmlBRreplace(QString& s);

    // Tags

    /// The tag `<meta name="NAME" content="CONTENT"/>` for \a name and \a content, the latter
    /// escaped by textWithoutHtmlTags() with its line feeds.
    ///
    /// \code
    /// HTMLUtils::formatHtmlMetaName("author", "A & B");
    /// // <meta name="author" content="A &#38; B"/>
    /// \endcode
    ///
    /// Deliberate: \a name is not escaped.
    static QString formatHtmlMetaName(const QString& name, const QString& content);

    /// The tag `<meta http-equiv="NAME" content="CONTENT"/>`, made of \a name and \a content as by
    /// formatHtmlMetaName().
    static QString formatHtmlMetaHttpEqui(const QString& name, const QString& content);

    // Images

    /// A transparent GIF of one pixel as a data URI.
    static QString tiniestInlineGifImage();

    /// \a svg, a whole SVG file, as a data URI.
    static QString base64ForSvgImageTagSource(const QByteArray& svg);

    /// \a image, a whole image file, as a data URI that leaves the kind of image to the browser.
    static QString base64ForImageTagSource(const QByteArray& image);

    // Style

    /// The Qt font weight (0 to 99) for a CSS weight of 100, 200, … 900; 50, the normal one, for
    /// any other number.
    ///
    /// \code
    /// HTMLUtils::cssWeightToQtWeight(700); // 75
    /// \endcode
    static int cssWeightToQtWeight(int cssWeight);

    /// \a c as CSS writes it.
    ///
    /// \code
    /// HTMLUtils::colorToCss(QColor(255, 0, 0)); // "#ff0000"
    /// HTMLUtils::colorToCss(QColor::fromRgbF(1, 0, 0, 0.5)); // "rgba(255,0,0,0.5)"
    /// \endcode
    ///
    /// An opaque colour is "#rrggbb". Any other is "rgba(r,g,b,a)" with 0 to 255 for red, green and
    /// blue, and the alpha with as few decimals, up to three, as give the stored alpha back, else
    /// with six significant digits: an alpha of 128 is 0.501961. An invalid colour is opaque black.
    static QString colorToCss(const QColor& c);
};

#endif // ORVAUTILS_HTMLUTILS_H

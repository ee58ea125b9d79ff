// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// StringUtils: the text operations that the rest of the library and its hosts share, from accent
// folding and version comparison to random names and the next free name in a list.

#ifndef ORVAUTILS_STRINGUTILS_H
#define ORVAUTILS_STRINGUTILS_H

#include "orvautils_export.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

class QRegularExpression;

/// The text operations that everything else uses.
///
/// All functions are static, keep no state and may be called from any thread at any time; the
/// tables of removeAccents() and of the search keys are built once, by whichever thread asks first.
/// A "character" is a UTF-16 unit (QChar) throughout. Nothing here writes to the log.
class ORVAUTILS_EXPORT StringUtils
{
public:
    StringUtils() = delete;

    // Durations

    /// The duration \a seconds in the form of formatDurationFromMSec().
    ///
    /// \code
    /// StringUtils::formatDurationFromSec(61); // "1mn 1s "
    /// \endcode
    ///
    /// Beyond 2^64 milliseconds (half a milliard years) the count wraps.
    static QString formatDurationFromSec(quint64 seconds);

    /// The duration \a ms, in milliseconds, as hours, minutes, seconds and milliseconds, each piece
    /// followed by one blank and pieces of zero left out.
    ///
    /// \code
    /// StringUtils::formatDurationFromMSec(3723000); // "1h 2mn 3s "
    /// StringUtils::formatDurationFromMSec(1500); // "1s 500ms "
    /// StringUtils::formatDurationFromMSec(0); // ""
    /// StringUtils::formatDurationFromMSec(90061001); // "1h 1mn 1s 86400001ms "
    /// \endcode
    ///
    /// Deliberate: a text that is not empty ends with a blank, and whole days are not shown as days
    /// but counted into the milliseconds (last example: a day, an hour, a minute, a second and a
    /// millisecond).
    static QString formatDurationFromMSec(quint64 ms);

    // Fixed texts

    /// A paragraph of filler text, always the same one.
    static QString stringLoremIpsum();

    /// "Helvetica Neue", the family that the applications are designed with. The fonts of the
    /// system are not looked at.
    static QString systemMainFamily();

    /// A line break: the single character "\n".
    static QString endl();

    // Versions

    /// Compares the dotted versions \a a and \a b component by component, as numbers.
    ///
    /// \code
    /// int result;
    /// StringUtils::compareVersion("2.10", "2.9", result); // true, result 1
    /// StringUtils::compareVersion("1.0", "1.0.7", result); // true, result 0
    /// StringUtils::compareVersion("1.a", "1.0", result); // false, result 0
    /// \endcode
    ///
    /// \a result receives 1 where \a a is the later version, -1 where it is the earlier one, 0
    /// where they are equal and whenever the answer is false.
    ///
    /// Returns true when both are well-formed: every component, white space around it aside, is a
    /// decimal number that an int holds. "1.2b", "1..2" and the empty text are not. A component
    /// that has to be compared must also begin with a digit: " 1", "-1" and "+1" give false there.
    ///
    /// Deliberate: the components of \a a alone are walked. Further components of \a b are checked
    /// but not compared (second example); where \a b has fewer and those it has are equal, the
    /// answer is false.
    static bool compareVersion(const QString& a, const QString& b, int& result);

    // Case, quotes and accents

    /// \a s with its first character in upper case, the others as they are.
    ///
    /// \code
    /// StringUtils::capitalize("élan VITAL"); // "Élan VITAL"
    /// \endcode
    ///
    /// The upper case may be longer than the character: "ß" gives "SS".
    static QString capitalize(const QString& s);

    /// \a s with a backslash in front of every double quote.
    ///
    /// \code
    /// StringUtils::escapeQuotes(R"(say "hi")"); // R"(say \"hi\")"
    /// \endcode
    ///
    /// Deliberate: backslashes that are there already are not doubled.
    static QString escapeQuotes(const QString& s);

    /// \a s with the accented letters and ligatures of western Europe replaced by plain letters.
    ///
    /// \code
    /// StringUtils::removeAccents("Œuvre à Ærø"); // "OEuvre a AEro"
    /// StringUtils::removeAccents("Straße"); // "Strase"
    /// \endcode
    ///
    /// 69 characters are known, among them "ð", "µ" and "¥", which give "o", "u" and "Y"; all
    /// others stay as they are ("Ą", "ł", "ř"), combining accents included. Œ, œ, Æ and æ become
    /// two letters. Deliberate, because names of existing files were made this way: "ß" becomes one
    /// "s", "ð" an "o".
    static QString removeAccents(const QString& s);

    // Search

    /// The search key of \a s: lower case, accents and punctuation except "-" gone, white space
    /// trimmed and each run of it one blank.
    ///
    /// \code
    /// StringUtils::normalizeTextForSearch("Élan,  Vital!"); // "elan vital"
    /// \endcode
    ///
    /// What remains after canonical decomposition is the letters a to z, the digits 0 to 9, "-" and
    /// blanks; letters that do not decompose to one of these ("ß", "œ", "ø", Greek, Cyrillic) are
    /// dropped. White space is what QChar::isSpace() takes for it, the no-break space included.
    static QString normalizeTextForSearch(const QString& s);

    /// The words of \a s as search keys, in their order.
    ///
    /// \code
    /// StringUtils::splitTextForSearch("Arc-en-ciel, été"); // {"arc", "en", "ciel", "ete"}
    /// \endcode
    ///
    /// A word is a run of letters, digits, marks and "_", whatever the script. Deliberate: a word
    /// whose key is empty ("ß") stays as an empty text, and repeated words stay repeated.
    static QStringList splitTextForSearch(const QString& s);

    // Random and unique texts

    /// \a length letters and digits (A-Z, a-z, 0-9) drawn with qrand(); empty when \a length is
    /// less than 1.
    ///
    /// The generator is not seeded here: that is the application's business, and per thread. This
    /// is no source of secrets.
    static QString getRandomString(int length);

    /// A new random UUID with its braces, for example "{67c8770b-44f1-410a-ab9a-f9b5446f13ee}".
    static QString generateUUID();

    /// The current time in milliseconds since the epoch, then the address \a p, both in base 36
    /// with nothing between them. Unique among the living objects of one process. \a p is not
    /// followed and may be null.
    static QString generateUniqueId(const void* p);

    // Numbers and bytes

    /// \a value with at most \a precision decimals, without trailing zeros, for an input field.
    ///
    /// \code
    /// StringUtils::formatRealForInput(2.50, 2); // "2.5"
    /// StringUtils::formatRealForInput(3.00, 2); // "3"
    /// StringUtils::formatRealForInput(120.0, 0); // "12"
    /// \endcode
    ///
    /// Deliberate: the zeros go whatever the precision, so that with the precision 0 those in front
    /// of the point go as well: 100 gives "1" and 0 the empty text.
    static QString formatRealForInput(const double& value, int precision);

    /// The \a bytes as unsigned numbers in \a base (2 to 36, lower case), each filled with "0" to
    /// two characters at least, with nothing between them.
    ///
    /// \code
    /// StringUtils::byteArrayToString(QByteArray::fromHex("05a0"), 16); // "05a0"
    /// StringUtils::byteArrayToString("\x05", 2); // "101"
    /// \endcode
    ///
    /// Below 2 and above 36 the base is 10.
    static QString byteArrayToString(const QByteArray& bytes, int base);

    /// The bytes that the pairs of characters of \a s stand for in \a base.
    ///
    /// \code
    /// StringUtils::hexaStringToByteArray("0aZZff", 16); // the bytes 0x0a 0xff
    /// \endcode
    ///
    /// Each pair (the last character alone where the length is odd) is read as QString::toUShort()
    /// reads it, in \a base but at most 36, and its low byte is taken. A pair that is no number is
    /// skipped.
    static QByteArray hexaStringToByteArray(const QString& s, int base);

    // Names and replacements

    /// The first free name among \a prefix + \a extension, then \a prefix + \a numberPattern + \a
    /// extension with 1, 2, 3, … in the place of "%1".
    ///
    /// \code
    /// StringUtils::findNoExistantName({"page.html", "Page 1.html"}, "Page", " %1", "html");
    /// // "Page 2.html"
    /// \endcode
    ///
    /// Names are taken when \a existing has them, upper and lower case being the same. The prefix
    /// is simplified ("Prefix" where nothing is left of it), a pattern without "%1" gets it at its
    /// end, and an extension without its point gets one; no extension, no point.
    static QString findNoExistantName(const QStringList& existing, const QString& prefix,
                                      const QString& numberPattern, const QString& extension);

    /// Replaces, in \a s itself, the first occurrence of \a before (case-sensitive) by \a after.
    /// Returns \a s, untouched where there is none. An empty \a before occurs at the start.
    static QString& replaceFirstOccurrence(QString& s, const QString& before, const QString& after);

    /// Replaces, in \a s itself, what the group \a groupName captured in the first match of \a rx
    /// by \a after, taken literally.
    ///
    /// \code
    /// QString s = "width=10 height=20";
    /// StringUtils::replaceFirstOccurrence(s, QRegularExpression("height=(?<n>\\d+)"), "n", "30");
    /// // "width=10 height=30"
    /// \endcode
    ///
    /// Returns \a s, untouched where \a rx does not match or the group took no part in the match.
    static QString& replaceFirstOccurrence(QString& s, const QRegularExpression& rx,
                                           const QString& groupName, const QString& after);

    /// Removes the last character of \a s in place; an empty text stays empty.
    static void removeLastChar(QString& s);

    /// \a s between "<b>" and "</b>". Nothing is escaped.
    static QString richTextToBold(const QString& s);

    /// The elements of \a l with "/" between them and none in front or behind.
    static QString joinWithSlashes(const QStringList& l);
};

#endif // ORVAUTILS_STRINGUTILS_H

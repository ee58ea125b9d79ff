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

/// Text operations that the rest of the library and its hosts share.
///
/// All functions are static, keep no state and may be called from any thread at any time. The
/// tables of removeAccents() and of the search keys are built on first use, which is thread-safe.
/// A "character" is a UTF-16 unit (QChar) throughout. Nothing is logged.
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
    /// The count of milliseconds wraps at 2^64, which is after 585 million years.
    static QString formatDurationFromSec(quint64 seconds);

    /// The duration \a ms, in milliseconds, as hours, minutes, seconds and milliseconds, each unit
    /// followed by one space and units of zero left out.
    ///
    /// \code
    /// StringUtils::formatDurationFromMSec(3723000); // "1h 2mn 3s "
    /// StringUtils::formatDurationFromMSec(1500); // "1s 500ms "
    /// StringUtils::formatDurationFromMSec(0); // ""
    /// StringUtils::formatDurationFromMSec(90061001); // "1h 1mn 1s 86400001ms "
    /// \endcode
    ///
    /// Deliberate: a non-empty string ends with a space, and whole days are not shown as days but
    /// added to the milliseconds (the last example is a day, an hour, a minute, a second and a
    /// millisecond).
    static QString formatDurationFromMSec(quint64 ms);

    // Fixed texts

    /// A paragraph of filler text, always the same one.
    static QString stringLoremIpsum();

    /// "Helvetica Neue", the family that the applications are designed with. It may not be
    /// installed: the fonts of the system are not consulted.
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
    /// \a result is set to 1 if \a a is the later version, to -1 if it is the earlier one, and to 0
    /// if they are equal or the function returns false.
    ///
    /// Returns true if both are well-formed: every component, apart from white space around it, is
    /// a decimal number that fits an int. "1.2b", "1..2" and the empty string are not well-formed.
    /// A component that has to be compared must also begin with a digit: " 1", "-1" and "+1" give
    /// false.
    ///
    /// Deliberate: only as many components are compared as \a a has. Further components of \a b
    /// are checked but not compared (second example). If \a b has fewer and those are equal, the
    /// function returns false.
    static bool compareVersion(const QString& a, const QString& b, int& result);

    // Case, quotes and accents

    /// \a s with its first character in upper case and the others unchanged.
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
    /// Deliberate: existing backslashes are not doubled.
    static QString escapeQuotes(const QString& s);

    /// \a s with the accented letters and ligatures of western Europe replaced by plain letters.
    ///
    /// \code
    /// StringUtils::removeAccents("Œuvre à Ærø"); // "OEuvre a AEro"
    /// StringUtils::removeAccents("Straße"); // "Strase"
    /// \endcode
    ///
    /// Replaces 69 characters; all others, including combining accents, stay as they are ("Ą",
    /// "ł", "ř"). Œ, œ, Æ and æ become two letters, "µ" becomes "u" and "¥" becomes "Y".
    ///
    /// Deliberate, because the names of existing files were made this way: "ß" becomes a single
    /// "s", and "ð" an "o".
    static QString removeAccents(const QString& s);

    // Search

    /// The search key of \a s: in lower case, without accents and punctuation except "-", and with
    /// its white space simplified.
    ///
    /// \code
    /// StringUtils::normalizeTextForSearch("Élan,  Vital!"); // "elan vital"
    /// \endcode
    ///
    /// After canonical decomposition only the letters a to z, the digits 0 to 9, "-" and spaces
    /// remain. Letters that do not decompose to one of these ("ß", "œ", "ø", Greek, Cyrillic) are
    /// dropped. White space is what QChar::isSpace() reports, including the no-break space.
    static QString normalizeTextForSearch(const QString& s);

    /// The search keys of the words of \a s, in the order of the words.
    ///
    /// \code
    /// StringUtils::splitTextForSearch("Arc-en-ciel, été"); // {"arc", "en", "ciel", "ete"}
    /// \endcode
    ///
    /// A word is a run of letters, digits, marks and "_" of any script. Deliberate: a word whose
    /// key is empty ("ß") gives an empty string, and repeated words are kept.
    static QStringList splitTextForSearch(const QString& s);

    // Random and unique texts

    /// \a length letters and digits (A-Z, a-z, 0-9) drawn with qrand(); empty when \a length is
    /// less than 1. Qt 6 has no qrand(): there they are drawn with std::rand().
    ///
    /// The generator is not seeded here. The application does that with qsrand(), once per thread,
    /// or for Qt 6 with std::srand(), once per process.
    /// The result is predictable: do not use it for passwords or tokens.
    static QString getRandomString(int length);

    /// A new random UUID with its braces, for example "{67c8770b-44f1-410a-ab9a-f9b5446f13ee}".
    static QString generateUUID();

    /// The current time in milliseconds since the epoch followed by the address \a p, both in base
    /// 36 and without a separator. Unique among the objects that exist in one process at that time.
    /// \a p is not dereferenced and may be null.
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
    /// Deliberate: trailing zeros are removed whatever the precision. With a precision of 0 they
    /// are digits of the whole number: 100 gives "1" and 0 gives the empty string.
    static QString formatRealForInput(const double& value, int precision);

    /// The \a bytes as unsigned numbers in \a base (2 to 36, lower case), each padded with "0" to
    /// at least two characters, without separators.
    ///
    /// \code
    /// StringUtils::byteArrayToString(QByteArray::fromHex("05a0"), 16); // "05a0"
    /// StringUtils::byteArrayToString("\x05", 2); // "101"
    /// \endcode
    ///
    /// A base below 2 or above 36 is taken as 10.
    static QString byteArrayToString(const QByteArray& bytes, int base);

    /// The bytes whose numbers in \a base are the pairs of characters of \a s.
    ///
    /// \code
    /// StringUtils::hexaStringToByteArray("0aZZff", 16); // the bytes 0x0a 0xff
    /// \endcode
    ///
    /// Each pair is parsed by QString::toUShort() in \a base, but at most 36, and its low byte is
    /// appended. If the length is odd, the last character is parsed alone. A pair that is not a
    /// number is skipped.
    static QByteArray hexaStringToByteArray(const QString& s, int base);

    // Names and replacements

    /// The first free name among \a prefix + \a extension and then \a prefix + \a numberPattern +
    /// \a extension, in which 1, 2, 3 … replaces "%1".
    ///
    /// \code
    /// StringUtils::findNoExistantName({"page.html", "Page 1.html"}, "Page", " %1", "html");
    /// // "Page 2.html"
    /// \endcode
    ///
    /// A name is free when \a existing does not contain it, regardless of case. The prefix is
    /// simplified, and "Prefix" is used if nothing is left of it. "%1" is appended to a pattern
    /// that does not contain it, and a non-empty extension that does not start with a point gets
    /// one.
    static QString findNoExistantName(const QStringList& existing, const QString& prefix,
                                      const QString& numberPattern, const QString& extension);

    /// Replaces the first occurrence of \a before (case-sensitive) by \a after, in place.
    /// Returns \a s, which is unchanged if there is none. An empty \a before is found at the start.
    static QString& replaceFirstOccurrence(QString& s, const QString& before, const QString& after);

    /// Replaces what the group \a groupName captured in the first match of \a rx by \a after, in
    /// place. \a after is taken literally.
    ///
    /// \code
    /// QString s = "width=10 height=20";
    /// StringUtils::replaceFirstOccurrence(s, QRegularExpression("height=(?<n>\\d+)"), "n", "30");
    /// // "width=10 height=30"
    /// \endcode
    ///
    /// Returns \a s, which is unchanged if \a rx does not match, and if the group does not exist or
    /// took no part in the match. Where it captured an empty text, \a after is inserted.
    static QString& replaceFirstOccurrence(QString& s, const QRegularExpression& rx,
                                           const QString& groupName, const QString& after);

    /// Removes the last character of \a s, in place. An empty string stays empty.
    static void removeLastChar(QString& s);

    /// \a s between "<b>" and "</b>". Nothing is escaped.
    static QString richTextToBold(const QString& s);

    /// The elements of \a l joined with "/", without a leading or trailing one.
    static QString joinWithSlashes(const QStringList& l);
};

#endif // ORVAUTILS_STRINGUTILS_H

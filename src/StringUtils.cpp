// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "StringUtils.h"

#include "ascii_p.h"
#include "durationtext_p.h"
#include "processstate_p.h"
#include "replaceeach_p.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QUuid>

#include <algorithm>
#include <array>
#include <cstdlib>

using namespace OrvaUtilsPrivate;

namespace {

/// The next number of the process's generator.
int processRandom()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return std::rand(); // as qrand() did, unless the application had seeded the thread
#else
    return qrand();
#endif
}

// Versions

/// Reads a dotted version component by component.
class VersionReader
{
public:
    explicit VersionReader(const QString& version)
        : mNext(version.constData())
        , mEnd(mNext + version.size())
    { }

    /// Whether the last component was read. There is at least one, which may be empty.
    bool atEnd() const { return mAtEnd; }

    /// Reads the next component. Returns false unless it is, apart from white space, a number that
    /// fits an int.
    bool read()
    {
        const QChar* const begin = mNext;
        mNext = std::find(begin, mEnd, QLatin1Char('.'));
        mAtEnd = mNext == mEnd;
        const bool wellFormed = parse(begin, int(mNext - begin));
        if (!mAtEnd)
            ++mNext;
        return wellFormed;
    }

    /// Whether the component just read begins with a digit; only those that do are compared.
    bool comparable() const { return mComparable; }

    /// The number at the start of the component just read.
    int number() const { return mNumber; }

private:
    bool parse(const QChar* text, int size)
    {
        mNumber = 0;
        int digits = 0;
        // Nine digits cannot overflow.
        while (digits < size && digits < 9 && isAsciiDigit(text[digits]))
            mNumber = mNumber * 10 + (text[digits++].unicode() - u'0');
        mComparable = digits > 0;
        if (digits == size)
            return mComparable;

        // Signs, white space and long runs of leading zeros are rare and left to Qt.
        bool wellFormed = false;
        QString(text, size).simplified().toInt(&wellFormed);
        if (wellFormed && mComparable) {
            while (digits < size && isAsciiDigit(text[digits]))
                ++digits;
            mNumber = QString(text, digits).toInt(&mComparable);
        }
        return wellFormed;
    }

    const QChar* mNext;
    const QChar* const mEnd;
    bool mAtEnd = false;
    bool mComparable = false;
    int mNumber = 0;
};

// Accents

/// The one or two letters that removeAccents() writes for a character.
struct Replacement
{
    ushort first = 0; ///< 0 if the character stays as it is
    ushort second = 0;
};

/// The replacements by code point. All characters that have one lie below U+0180.
struct AccentTable
{
    static constexpr int Size = 0x180;
    std::array<Replacement, Size> replacements;

    AccentTable()
    {
        const QString accented = QString::fromUtf8(
            "ŠŒŽšœžŸ¥µÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝßàáâãäåæçèéêëìíîïðñòóôõöøùúûüýÿ");
        const char* const plain[] = {
            "S", "OE", "Z", "s", "oe", "z", "Y",  "Y", "u", // ŠŒŽšœžŸ¥µ
            "A", "A",  "A", "A", "A",  "A", "AE", "C", // ÀÁÂÃÄÅÆÇ
            "E", "E",  "E", "E", "I",  "I", "I",  "I", // ÈÉÊËÌÍÎÏ
            "D", "N",  "O", "O", "O",  "O", "O",  "O", // ÐÑÒÓÔÕÖØ
            "U", "U",  "U", "U", "Y",  "s", // ÙÚÛÜÝß
            "a", "a",  "a", "a", "a",  "a", "ae", "c", // àáâãäåæç
            "e", "e",  "e", "e", "i",  "i", "i",  "i", // èéêëìíîï
            "o", "n",  "o", "o", "o",  "o", "o",  "o", // ðñòóôõöø
            "u", "u",  "u", "u", "y",  "y", // ùúûüýÿ
        };
        static_assert(sizeof plain / sizeof *plain == 69, "one replacement for each character");
        for (int i = 0; i < accented.size(); ++i) {
            Replacement& replacement = replacements[accented.at(i).unicode()];
            replacement.first = uchar(plain[i][0]);
            replacement.second = uchar(plain[i][1]);
        }
    }

    const Replacement* find(QChar c) const
    {
        if (c.unicode() >= Size || replacements[c.unicode()].first == 0)
            return nullptr;
        return &replacements[c.unicode()];
    }
};

const AccentTable& accentTable()
{
    return processState<AccentTable>();
}

// Search keys

/// What \a c contributes to a search key: a lower-case letter, a digit, "-", a blank for white
/// space, or 0 for nothing. It is never more than one character, because a canonical decomposition
/// consists of a base character and its marks, and a key has no marks.
char searchKeyOf(QChar c)
{
    if (c.isSpace())
        return ' ';
    c = decomposedBase(c);
    if (isAsciiLetter(c) || isAsciiDigit(c) || c == QLatin1Char('-'))
        return toAsciiLower(c).toLatin1();
    return 0;
}

/// The results of searchKeyOf() for the Latin script, including Vietnamese letters and letter-like
/// symbols. The results for other characters are computed when they are needed.
struct SearchKeyTable
{
    static constexpr int Size = 0x2200;
    std::array<char, Size> keys = {};

    SearchKeyTable()
    {
        for (int code = 0; code < Size; ++code)
            keys[size_t(code)] = searchKeyOf(QChar(code));
    }

    char find(QChar c) const { return c.unicode() < Size ? keys[c.unicode()] : searchKeyOf(c); }
};

const SearchKeyTable& searchKeyTable()
{
    return processState<SearchKeyTable>();
}

QString searchKey(const QChar* text, int size)
{
    const SearchKeyTable& table = searchKeyTable();
    QString key(size, Qt::Uninitialized);
    QChar* const begin = key.data();
    QChar* out = begin;
    for (const QChar* c = text; c != text + size; ++c) {
        const char wanted = table.find(*c);
        // White space becomes a blank only after another character, and only once.
        if (wanted == ' ' ? out != begin && out[-1] != QLatin1Char(' ') : wanted != 0)
            *out++ = QLatin1Char(wanted);
    }
    if (out != begin && out[-1] == QLatin1Char(' '))
        --out;
    key.resize(int(out - begin));
    return key;
}

bool isWordCharacter(QChar c)
{
    return c.isLetterOrNumber() || c.isMark() || c == QLatin1Char('_');
}

// Names

bool lessWithoutCase(const QString& a, const QString& b)
{
    return QString::compare(a, b, Qt::CaseInsensitive) < 0;
}

} // namespace

// Durations

QString StringUtils::formatDurationFromSec(quint64 seconds)
{
    return formatDurationFromMSec(seconds * 1000);
}

QString StringUtils::formatDurationFromMSec(quint64 ms)
{
    // The time of day, which does not count whole days …
    const quint64 seconds = ms / 1000;
    const quint64 h = seconds / 3600 % 24;
    const quint64 m = seconds / 60 % 60;
    const quint64 s = seconds % 60;

    // … so that the rest includes them.
    const quint64 rest = ms - (h * 3600000 + m * 60000 + s * 1000);

    DurationText text;
    if (h > 0)
        text.add(h, "h ");
    if (m > 0)
        text.add(m, "mn ");
    if (s > 0)
        text.add(s, "s ");
    if (rest > 0)
        text.add(rest, "ms ");
    return text.toString();
}

// Fixed texts

QString StringUtils::stringLoremIpsum()
{
    return QStringLiteral(
        "Lorem ipsum dolor sit amet, consectetur adipiscing elit. Donec viverra enim quis quam "
        "bibendum, at blandit nibh sollicitudin. Donec scelerisque risus et nulla sollicitudin "
        "pretium. Maecenas turpis neque, semper quis gravida nec, semper quis ligula. Pellentesque "
        "nec risus non sem aliquam feugiat et id lacus. Cras ornare nibh mauris, eget sagittis "
        "magna gravida eu. Pellentesque dapibus sodales ligula, vitae scelerisque leo condimentum "
        "tempus. Sed aliquet iaculis maximus.");
}

QString StringUtils::systemMainFamily()
{
    return QStringLiteral("Helvetica Neue");
}

QString StringUtils::endl()
{
    return QStringLiteral("\n");
}

// Versions

bool StringUtils::compareVersion(const QString& a, const QString& b, int& result)
{
    result = 0;
    VersionReader left(a);
    VersionReader right(b);
    int order = 0;
    bool comparable = true;

    // The components after the deciding one are read as well, because a malformed component makes
    // the whole version malformed.
    while (!left.atEnd()) {
        if (!left.read())
            return false;
        const bool paired = !right.atEnd();
        if (paired && !right.read())
            return false;
        if (order != 0 || !comparable)
            continue;
        comparable = paired && left.comparable() && right.comparable();
        if (comparable)
            order = (left.number() > right.number()) - (left.number() < right.number());
    }
    while (!right.atEnd()) {
        if (!right.read())
            return false;
    }

    if (comparable)
        result = order;
    return comparable;
}

// Case, quotes and accents

QString StringUtils::capitalize(const QString& s)
{
    // QString::toUpper() rather than QChar's, because the capital of "ß" is "SS".
    return s.left(1).toUpper() + s.mid(1); // clazy:exclude=qstring-left
}

QString StringUtils::escapeQuotes(const QString& s)
{
    return replacedEach(s, QLatin1Char('"'), QStringLiteral("\\\""));
}

QString StringUtils::removeAccents(const QString& s)
{
    const AccentTable& table = accentTable();

    // Count first: most texts need no copy at all, the others one of the right size.
    int accents = 0;
    int ligatures = 0;
    for (const QChar c : s) {
        if (const Replacement* replacement = table.find(c)) {
            ++accents;
            ligatures += replacement->second != 0;
        }
    }
    if (accents == 0)
        return s;

    QString plain(s.size() + ligatures, Qt::Uninitialized);
    QChar* out = plain.data();
    for (const QChar c : s) {
        const Replacement* const replacement = table.find(c);
        *out++ = replacement ? QChar(replacement->first) : c;
        if (replacement && replacement->second != 0)
            *out++ = QChar(replacement->second);
    }
    return plain;
}

// Search

QString StringUtils::normalizeTextForSearch(const QString& s)
{
    return searchKey(s.constData(), int(s.size()));
}

QStringList StringUtils::splitTextForSearch(const QString& s)
{
    const QString text = s.simplified().toLower();
    QStringList words;
    const QChar* const end = text.constData() + text.size();
    const QChar* next = text.constData();
    for (;;) {
        const QChar* const word = std::find_if(next, end, isWordCharacter);
        if (word == end)
            return words;
        next = std::find_if_not(word, end, isWordCharacter);
        words.append(searchKey(word, int(next - word)));
    }
}

// Random and unique texts

QString StringUtils::getRandomString(int length)
{
    static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    if (length < 1)
        return QString();
    QString text(length, Qt::Uninitialized);
    for (QChar& c : text)
        c = QLatin1Char(alphabet[size_t(processRandom()) % (sizeof alphabet - 1)]);
    return text;
}

QString StringUtils::generateUUID()
{
    return QUuid::createUuid().toString();
}

QString StringUtils::generateUniqueId(const void* p)
{
    return QString::number(QDateTime::currentMSecsSinceEpoch(), 36)
        + QString::number(reinterpret_cast<quintptr>(p), 36);
}

// Numbers and bytes

QString StringUtils::formatRealForInput(const double& value, int precision)
{
    QString text = QString::number(value, 'f', precision);
    int size = int(text.size());
    while (size > 0 && text.at(size - 1) == QLatin1Char('0'))
        --size;
    if (size > 0 && text.at(size - 1) == QLatin1Char('.'))
        --size;
    text.truncate(size);
    return text;
}

QString StringUtils::byteArrayToString(const QByteArray& bytes, int base)
{
    if (base == 16)
        return QString::fromLatin1(bytes.toHex());
    // Qt would divide by zero for a base of 0.
    if (base < 2 || base > 36)
        base = 10;
    QString text;
    for (const char byte : bytes)
        text += QString::number(uchar(byte), base).rightJustified(2, QLatin1Char('0'));
    return text;
}

QByteArray StringUtils::hexaStringToByteArray(const QString& s, int base)
{
    QByteArray bytes;
    bytes.reserve((s.size() + 1) / 2);
    for (int i = 0; i < s.size(); i += 2) {
        bool parses = false;
        const ushort number = s.mid(i, 2).toUShort(&parses, std::min(base, 36));
        if (parses)
            bytes.append(char(number & 0xff));
    }
    return bytes;
}

// Names and replacements

QString StringUtils::findNoExistantName(const QStringList& existing, const QString& prefix,
                                        const QString& numberPattern, const QString& extension)
{
    const QString placeholder = QStringLiteral("%1");
    QString start = prefix.simplified();
    if (start.isEmpty())
        start = QStringLiteral("Prefix");
    QString pattern = numberPattern;
    if (!pattern.contains(placeholder))
        pattern += placeholder;
    QString end = extension;
    if (!end.isEmpty() && !end.startsWith(QLatin1Char('.')))
        end.prepend(QLatin1Char('.'));

    QString candidate = start + end;
    if (!existing.contains(candidate, Qt::CaseInsensitive))
        return candidate;

    // There may be as many candidates as names: look them up in a sorted list.
    QStringList taken = existing;
    std::sort(taken.begin(), taken.end(), lessWithoutCase);
    int counter = 0;
    do {
        const QString number = QString::number(++counter);
        candidate = start + QString(pattern).replace(placeholder, number) + end;
    } while (std::binary_search(taken.constBegin(), taken.constEnd(), candidate, lessWithoutCase));
    return candidate;
}

QString& StringUtils::replaceFirstOccurrence(QString& s, const QString& before,
                                             const QString& after)
{
    const int position = int(s.indexOf(before));
    if (position >= 0)
        s.replace(position, before.size(), after);
    return s;
}

QString& StringUtils::replaceFirstOccurrence(QString& s, const QRegularExpression& rx,
                                             const QString& groupName, const QString& after)
{
    const QRegularExpressionMatch match = rx.match(s);
    const int position = int(match.hasMatch() ? match.capturedStart(groupName) : -1);
    if (position >= 0)
        s.replace(position, match.capturedLength(groupName), after);
    return s;
}

void StringUtils::removeLastChar(QString& s)
{
    s.chop(1);
}

QString StringUtils::richTextToBold(const QString& s)
{
    return QLatin1String("<b>") + s + QLatin1String("</b>");
}

QString StringUtils::joinWithSlashes(const QStringList& l)
{
    return l.join(QLatin1Char('/'));
}

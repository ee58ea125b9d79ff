// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Character classes of ASCII. Those of QChar include the letters and digits of all scripts.

#ifndef ORVAUTILS_ASCII_P_H
#define ORVAUTILS_ASCII_P_H

#include <QChar>
#include <QString>

namespace OrvaUtilsPrivate {

/// 0 to 9.
inline bool isAsciiDigit(QChar c)
{
    return c.unicode() >= u'0' && c.unicode() <= u'9';
}

/// A to Z.
inline bool isAsciiCapital(QChar c)
{
    return c.unicode() >= u'A' && c.unicode() <= u'Z';
}

/// A to Z and a to z.
inline bool isAsciiLetter(QChar c)
{
    const int lower = c.unicode() | 0x20;
    return lower >= u'a' && lower <= u'z';
}

/// \a c, with A to Z turned into a to z.
inline QChar toAsciiLower(QChar c)
{
    return isAsciiCapital(c) ? QChar(c.unicode() + (u'a' - u'A')) : c;
}

/// What the canonical decomposition of \a c begins with: the letter itself for an accented one, \a
/// c for a character that does not decompose.
inline QChar decomposedBase(QChar c)
{
    // Qt decomposes one step at a time: "ế" to "ê" and its acute accent.
    while (c.decompositionTag() == QChar::Canonical)
        c = c.decomposition().at(0);
    return c;
}

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_ASCII_P_H

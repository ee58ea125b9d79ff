// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Character classes of ASCII. Those of QChar hold the letters and digits of all scripts.

#ifndef ORVAUTILS_ASCII_P_H
#define ORVAUTILS_ASCII_P_H

#include <QChar>

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

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_ASCII_P_H

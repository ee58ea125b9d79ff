// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The character classes of ASCII, which QChar's own (letters and digits of all scripts) are not.

#ifndef ORVAUTILS_ASCII_P_H
#define ORVAUTILS_ASCII_P_H

#include <QChar>

namespace OrvaUtilsPrivate {

/// 0 to 9.
inline bool isAsciiDigit(QChar c)
{
    return c.unicode() >= u'0' && c.unicode() <= u'9';
}

/// A to Z and a to z.
inline bool isAsciiLetter(QChar c)
{
    const int lower = c.unicode() | 0x20;
    return lower >= u'a' && lower <= u'z';
}

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_ASCII_P_H

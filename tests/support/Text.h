// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// text: the one spelling of a literal text in tests.

#ifndef TEXT_H
#define TEXT_H

#include <QString>

/// \a utf8 as a QString.
inline QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

#endif // TEXT_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// stringHash: a hash of texts that is the same with every version of Qt.

#ifndef ORVAUTILS_STRINGHASH_P_H
#define ORVAUTILS_STRINGHASH_P_H

#include <QString>

namespace OrvaUtilsPrivate {

/// The value of qHash(text, 0) in Qt 5: each UTF-16 unit is added to 31 times the previous value.
/// Qt 6 has another function, of 64 bits.
///
/// \code
/// stringHash("ab"); // 97 * 31 + 98
/// \endcode
inline quint32 stringHash(const QString& text)
{
    quint32 hash = 0;
    for (const QChar c : text)
        hash = 31 * hash + c.unicode();
    return hash;
}

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_STRINGHASH_P_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// replacedEach: a character replaced by a text, in one pass.
//
// QString::replace() moves the rest of the text for every thousand occurrences, so that its time
// grows with the square of the length.

#ifndef ORVAUTILS_REPLACEEACH_P_H
#define ORVAUTILS_REPLACEEACH_P_H

#include <QString>

#include <algorithm>

namespace OrvaUtilsPrivate {

/// \a s with each \a before replaced by \a after. Shares the data of \a s if there is none.
inline QString replacedEach(const QString& s, QChar before, const QString& after)
{
    const int occurrences = int(s.count(before));
    if (occurrences == 0)
        return s;
    QString replaced(s.size() + occurrences * (after.size() - 1), Qt::Uninitialized);
    QChar* out = replaced.data();
    for (const QChar c : s) {
        if (c == before)
            out = std::copy(after.begin(), after.end(), out);
        else
            *out++ = c;
    }
    return replaced;
}

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_REPLACEEACH_P_H

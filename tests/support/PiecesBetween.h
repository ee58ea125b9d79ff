// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// piecesBetween: splits a text by a QRegExp, whose rules some functions are documented with.
// QString accepts one in Qt 5 only.

#ifndef PIECESBETWEEN_H
#define PIECESBETWEEN_H

#include <QRegExp>
#include <QStringList>

/// The parts of \a s between the matches of \a separator, without empty ones.
inline QStringList piecesBetween(const QString& s, const QRegExp& separator)
{
    QStringList pieces;
    int begin = 0;
    for (;;) {
        const int at = int(separator.indexIn(s, begin));
        const QString piece = at < 0 ? s.mid(begin) : s.mid(begin, at - begin);
        if (!piece.isEmpty())
            pieces.append(piece);
        if (at < 0)
            return pieces;
        begin = at + separator.matchedLength();
    }
}

#endif // PIECESBETWEEN_H

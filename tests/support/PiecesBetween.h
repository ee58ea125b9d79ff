// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// piecesBetween: splits a text by a QRegExp, whose rules some functions are told in. QString itself
// takes one in Qt 5 alone.

#ifndef PIECESBETWEEN_H
#define PIECESBETWEEN_H

#include <QRegExp>
#include <QStringList>

/// What stands in \a s between the places that \a separator matches, without empty pieces.
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

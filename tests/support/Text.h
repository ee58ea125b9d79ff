// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// text: the one spelling of a literal text in tests. nonEmptyParts: a list that stands in a text.

#ifndef TEXT_H
#define TEXT_H

#include <QString>
#include <QStringList>

/// \a utf8 as a QString.
inline QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// The parts of \a list between its separators, without the empty ones.
inline QStringList nonEmptyParts(const QString& list, QChar separator)
{
    QStringList parts = list.split(separator);
    parts.removeAll(QString());
    return parts;
}

#endif // TEXT_H

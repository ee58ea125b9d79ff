// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// text: makes a QString of a literal, the same way in all tests. nonEmptyParts: splits a list.

#ifndef TEXT_H
#define TEXT_H

#include <QString>
#include <QStringList>

/// \a utf8 as a QString.
inline QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// The parts of \a list between its separators, without empty ones.
inline QStringList nonEmptyParts(const QString& list, QChar separator)
{
    QStringList parts = list.split(separator);
    parts.removeAll(QString());
    return parts;
}

#endif // TEXT_H

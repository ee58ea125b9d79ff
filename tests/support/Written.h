// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// written: returns what a function writes to a stream. The fuzz targets use it as well.

#ifndef WRITTEN_H
#define WRITTEN_H

#include <QString>
#include <QTextStream>

/// Returns what \a write writes to a stream.
template <typename Function>
QString written(Function write)
{
    QString text;
    QTextStream stream(&text);
    write(&stream);
    return text;
}

#endif // WRITTEN_H

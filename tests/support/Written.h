// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// written: what a function writes to a stream. The fuzz targets use it, too.

#ifndef WRITTEN_H
#define WRITTEN_H

#include <QString>
#include <QTextStream>

/// What \a write writes to a stream.
template <typename Function>
QString written(Function write)
{
    QString text;
    QTextStream stream(&text);
    write(&stream);
    return text;
}

#endif // WRITTEN_H

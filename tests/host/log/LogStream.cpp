// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "LogStream.h"

#include <QFile>

LogStream::LogStream(LogType type, const char* file, const char* function, int)
    : mText(
        QStringLiteral("%1 %2 %3:")
            .arg(QString::number(int(type)), QString::fromUtf8(file), QString::fromUtf8(function)))
    , mSpace(true)
{ }

LogStream::~LogStream()
{
    QFile out(QFile::decodeName(qgetenv("HOST_LOG")));
    if (out.open(QIODevice::Append))
        out.write(mText.toUtf8() + '\n');
}

LogStream& LogStream::checkSpacing()
{
    mSpace = true;
    return *this;
}

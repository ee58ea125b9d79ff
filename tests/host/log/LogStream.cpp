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

LogStream& LogStream::operator<<(const QString& text)
{
    if (mSpace)
        mText += QLatin1Char(' ');
    mSpace = false;
    mText += text;
    return *this;
}

LogStream& LogStream::operator<<(const char* text)
{
    return *this << QString::fromUtf8(text);
}

LogStream& LogStream::operator<<(qint64 number)
{
    return *this << QString::number(number);
}

LogStream& LogStream::operator<<(int number)
{
    return *this << QString::number(number);
}

LogStream& LogStream::operator<<(double number)
{
    return *this << QString::number(number);
}

LogStream& LogStream::operator<<(const QSize& size)
{
    return *this << QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

LogStream& LogStream::checkSpacing()
{
    mSpace = true;
    return *this;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "LogStream.h"

#include <QDebug>
#include <QLoggingCategory>

namespace {

Q_LOGGING_CATEGORY(orvautilsCategory, "orvautils")

} // namespace

LogStream::LogStream(LogType type, const char* file, const char* function, int line)
    : mType(type)
    , mFile(file)
    , mFunction(function)
    , mLine(line)
{ }

LogStream::~LogStream()
{
    // QMessageLogger drops the record if the category is disabled for its type.
    const QMessageLogger logger(mFile.constData(), mLine, mFunction.constData());
    switch (mType) {
    case LogType::Info:
        logger.info(orvautilsCategory()).noquote().nospace() << mMessage;
        break;
    case LogType::Warning:
        logger.warning(orvautilsCategory()).noquote().nospace() << mMessage;
        break;
    case LogType::Critical:
        logger.critical(orvautilsCategory()).noquote().nospace() << mMessage;
        break;
    }
}

LogStream& LogStream::operator<<(const QString& text)
{
    append(text);
    return *this;
}

LogStream& LogStream::operator<<(const char* text)
{
    append(QString::fromUtf8(text));
    return *this;
}

LogStream& LogStream::operator<<(int number)
{
    append(QString::number(number));
    return *this;
}

LogStream& LogStream::operator<<(unsigned int number)
{
    append(QString::number(number));
    return *this;
}

LogStream& LogStream::operator<<(qint64 number)
{
    append(QString::number(number));
    return *this;
}

LogStream& LogStream::operator<<(quint64 number)
{
    append(QString::number(number));
    return *this;
}

LogStream& LogStream::operator<<(double number)
{
    append(QString::number(number));
    return *this;
}

LogStream& LogStream::operator<<(const QSize& size)
{
    append(QStringLiteral("QSize(%1, %2)").arg(size.width()).arg(size.height()));
    return *this;
}

LogStream& LogStream::checkSpacing()
{
    mSpaceWanted = true;
    return *this;
}

void LogStream::append(const QString& text)
{
    if (mSpaceWanted) {
        mMessage += QLatin1Char(' ');
        mSpaceWanted = false;
    }
    mMessage += text;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "LogCapture.h"

#include <QMap>
#include <QMutex>
#include <QMutexLocker>
#include <QStringList>

namespace {

QMutex captureMutex;
QVector<QVector<CapturedRecord>> captureStack;

void capture(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    QMutexLocker lock(&captureMutex);
    if (!captureStack.isEmpty())
        captureStack.last().append({type, QByteArray(context.category), QByteArray(context.file),
                                    QByteArray(context.function), context.line, text});
}

QString typeName(QtMsgType type)
{
    static const QMap<int, QString> names{{QtDebugMsg, QStringLiteral("debug")},
                                          {QtInfoMsg, QStringLiteral("info")},
                                          {QtWarningMsg, QStringLiteral("warning")},
                                          {QtCriticalMsg, QStringLiteral("critical")},
                                          {QtFatalMsg, QStringLiteral("fatal")}};
    return names.value(type);
}

} // namespace

LogCapture::LogCapture()
{
    {
        QMutexLocker lock(&captureMutex);
        captureStack.append(QVector<CapturedRecord>());
    }
    mPrevious = qInstallMessageHandler(capture);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(mPrevious);
    QMutexLocker lock(&captureMutex);
    captureStack.removeLast();
}

QVector<CapturedRecord> LogCapture::records() const
{
    QMutexLocker lock(&captureMutex);
    return captureStack.last();
}

QVector<CapturedRecord> LogCapture::take()
{
    QMutexLocker lock(&captureMutex);
    QVector<CapturedRecord> taken;
    taken.swap(captureStack.last());
    return taken;
}

QStringList LogCapture::lines() const
{
    QStringList lines;
    const QVector<CapturedRecord> all = records();
    for (const CapturedRecord& record : all) {
        QString line =
            typeName(record.type) + QLatin1Char(' ') + QString::fromUtf8(record.category);
        if (record.category == "orvautils")
            line += QLatin1Char(' ') + QString::fromUtf8(record.file) + QLatin1Char(' ')
                + QString::fromUtf8(record.function);
        lines += line + QStringLiteral(": ") + record.text;
    }
    return lines;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "LogKeeper.h"

#include <QMutex>

namespace {

QtMessageHandler passOn = nullptr;

QMutex& keptMutex() // messages come from any thread
{
    static QMutex mutex;
    return mutex;
}

QStringList& kept()
{
    static QStringList messages;
    return messages;
}

void keep(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type == QtFatalMsg) {
        // The process is about to end: nobody would ask for what was kept.
        if (passOn)
            passOn(type, context, text);
        return;
    }
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    const QMutexLocker locker(&keptMutex());
    kept().append(text.simplified());
}

} // namespace

LogKeeper::LogKeeper()
    : mPrevious(qInstallMessageHandler(keep))
{
    if (mPrevious != keep)
        passOn = mPrevious;
}

LogKeeper::~LogKeeper()
{
    qInstallMessageHandler(mPrevious);
    if (mPrevious != keep)
        passOn = nullptr;
    take();
}

QStringList LogKeeper::take()
{
    const QMutexLocker locker(&keptMutex());
    QStringList taken;
    taken.swap(kept());
    return taken;
}

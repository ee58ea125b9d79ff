// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Thread.h"

#include "Threadable.h"
#include "logrecord_p.h"

#include <QCoreApplication>
#include <QMutexLocker>

namespace {

const unsigned long lastChanceMs = 3000;

} // namespace

Thread::Thread(QObject* parent)
    : QThread(parent ? parent : QCoreApplication::instance())
{
    if (parent)
        connect(parent, &QObject::destroyed, this, &Thread::lastChanceBeforeDestroyed);
    else
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
                &Thread::lastChanceBeforeDestroyed);
    connect(this, &QThread::finished, this, &Thread::onFinished);
}

Thread::~Thread()
{
    if (!isRunning())
        return;
    ORVAUTILS_LOG_CRITICAL() << Thread::metaObject()->className()
                             << "Thread is still running on Destructor call!"
                             << "\n"
                             << "=> terminate()";
    Thread::terminate();
    ORVAUTILS_LOG_CRITICAL() << "Thread Terminated! #BRUTAL";
}

// The cancel flag

bool Thread::isCancelRequested() const
{
    QMutexLocker locker(&mLock);
    return mCancelFlag;
}

void Thread::setCancelFlag(bool b)
{
    QMutexLocker locker(&mLock);
    mCancelFlag = b;
}

// Stopping

void Thread::requestInterruption()
{
    mCondition.wakeAll();
    QThread::requestInterruption();
}

bool Thread::stopAndWait(unsigned long ms)
{
    requestInterruption();
    return wait(ms);
}

bool Thread::lastChanceBeforeDestroyed()
{
    if (!isRunning())
        return false;
    ORVAUTILS_LOG_INFO() << metaObject()->className()
                         << "Thread is still running on lastChanceBeforeDestroyed call!"
                         << "\n"
                         << "=> stopAndWait(3000)";
    return stopAndWait(lastChanceMs);
}

void Thread::terminate()
{
    enableThreadDeleteOnFinished(false);
    QThread::terminate();
}

// Finishing

void Thread::onFinished() { }

void Thread::enableThreadDeleteOnFinished(bool enabled)
{
    if (enabled)
        connect(this, &QThread::finished, this, &QObject::deleteLater, Qt::UniqueConnection);
    else
        disconnect(this, &QThread::finished, this, &QObject::deleteLater);
}

// Workers and progress

void Thread::addThreadableChild(Threadable& child)
{
    child.setThreadForInterrupt(this);
}

void Thread::emitThreadProgress(const QString& progress_level1, const QString& progress_level2)
{
    Q_EMIT progressThread(progress_level1, progress_level2);
}

// The main side's wait

void Thread::mainWake()
{
    mCondition.wakeAll();
}

void Thread::mainWaitForCondition()
{
    QMutexLocker locker(&mLock);
    mCondition.wait(&mLock);
}

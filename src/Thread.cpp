// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Thread.h"

#include "Threadable.h"
#include "logrecord_p.h"
#include "thread_p.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMutexLocker>

#include <climits>

using namespace OrvaUtilsPrivate;

namespace {

/// \a timeout in milliseconds for QThread::wait(), where ULONG_MAX means no limit.
unsigned long waitingTime(std::chrono::milliseconds timeout)
{
    const auto ms = timeout.count();
    if (ms > INT_MAX)
        return ULONG_MAX;
    return ms > 0 ? static_cast<unsigned long>(ms) : 0;
}

unsigned long remainingTime(const QElapsedTimer& timer, unsigned long ms)
{
    const auto elapsed = static_cast<unsigned long>(timer.elapsed());
    return elapsed < ms ? ms - elapsed : 0;
}

/// Waits for the thread to finish for at most \a ms milliseconds. A worker that checked for the
/// request just before it was made may begin to wait after the last wake-up, so a thread that was
/// asked to stop is woken repeatedly until it has finished.
bool waitAndWake(Thread& thread, unsigned long ms)
{
    if (QThread::currentThread() == &thread)
        return thread.wait(ms); // Qt warns, and does not wait
    const unsigned long stepMs = 20;
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        const unsigned long left = remainingTime(timer, ms);
        if (thread.wait(qMin(left, stepMs)))
            return true;
        if (left <= stepMs)
            return false;
        if (thread.isInterruptionRequested())
            thread.mainWake();
    }
}

} // namespace

Thread::Thread(QObject* parent)
    : QThread(parent ? parent : QCoreApplication::instance())
    , d(new ThreadPrivate)
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
    if (!isRunning() || d->endedByDestructor)
        return;
    ThreadPrivate::logStillRunning();
    Thread::terminate();
    ThreadPrivate::logTerminated();
}

void ThreadPrivate::logStillRunning()
{
    ORVAUTILS_LOG_CRITICAL_IN("~Thread")
        << Thread::staticMetaObject.className() << "Thread is still running on Destructor call!"
        << "\n"
        << "=> terminate()";
}

void ThreadPrivate::logTerminated()
{
    ORVAUTILS_LOG_CRITICAL_IN("~Thread") << "Thread Terminated! #BRUTAL";
}

// The cancel flag

bool Thread::isCancelRequested() const
{
    QMutexLocker locker(&d->lock);
    return d->cancelFlag;
}

void Thread::setCancelFlag(bool b)
{
    QMutexLocker locker(&d->lock);
    d->cancelFlag = b;
}

// Stopping

void Thread::requestInterruption()
{
    d->condition.wakeAll();
    QThread::requestInterruption();
    // A worker that was woken may have checked for the request before it was made, and wait again.
    d->condition.wakeAll();
}

bool Thread::stopAndWait(unsigned long ms)
{
    requestInterruption();
    return waitAndWake(*this, ms);
}

bool Thread::stopAndWait(std::chrono::milliseconds timeout)
{
    return stopAndWait(waitingTime(timeout));
}

bool Thread::waitForAll(const QList<QPointer<Thread>>& threads, std::chrono::milliseconds timeout)
{
    const unsigned long ms = waitingTime(timeout);
    QElapsedTimer timer;
    timer.start();
    for (const QPointer<Thread>& thread : threads) {
        if (thread && !waitAndWake(*thread, remainingTime(timer, ms)))
            return false;
    }
    return true;
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
    d->terminated = true;
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

const QList<QPointer<Threadable>>& Thread::threadables() const
{
    return d->workers;
}

void Thread::emitThreadProgress(const QString& progress_level1, const QString& progress_level2)
{
    Q_EMIT progressThread(progress_level1, progress_level2);
}

// The wait condition

void Thread::mainWake()
{
    d->condition.wakeAll();
}

void Thread::mainWaitForCondition()
{
    QMutexLocker locker(&d->lock);
    d->condition.wait(&d->lock);
}

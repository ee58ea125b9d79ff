// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TsanQt: tells the thread sanitizer about the synchronisation inside Qt.
//
// Qt as it is installed is not built with the sanitizer, and QMutex, QSemaphore and QThread use
// atomic operations inside the library, which the sanitizer does not see: it would report a race
// for everything that they protect. Suppressing such reports would also hide real races. Therefore
// the test programs are linked with these definitions, which replace Qt's in the calls of the
// library under test and of the tests, call Qt's, and tell the sanitizer about the order. They
// promise no more than Qt guarantees:
//
// - what a thread did before it unlocked a mutex or released a semaphore happens before what
//   another thread does after it has locked the same mutex or acquired from the same semaphore;
// - what a thread did until its last finished() slot returned happens before the return of a
//   QThread::wait() that found it finished.
//
// Only test programs that are built with the thread sanitizer contain this file.

#include <QMutex>
#include <QSemaphore>
#include <QThread>
#include <QThreadStorage>
#include <QWaitCondition>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace {

/// The function of that name that this file replaces: \a Function is the type of a free function
/// whose first parameter is the object.
template <typename Function>
Function* qtFunction(const char* mangledName)
{
    void* const address = dlsym(RTLD_NEXT, mangledName);
    if (!address)
        qFatal("TsanQt: %s is not there", mangledName);
    return reinterpret_cast<Function*>(address);
}

/// Everything so far happens before what follows a later before() of the same object.
void happened(void* object)
{
    __tsan_release(object);
}

void before(void* object)
{
    __tsan_acquire(object);
}

/// Destroyed by the thread that made it, after finished() and before wait() returns.
class ThreadEnd
{
public:
    explicit ThreadEnd(QThread* thread)
        : mThread(thread)
    { }
    ~ThreadEnd() { happened(mThread); }

private:
    Q_DISABLE_COPY(ThreadEnd)

    QThread* mThread;
};

QThreadStorage<ThreadEnd*>& threadEnds()
{
    static QThreadStorage<ThreadEnd*> storage;
    return storage;
}

bool waited(QThread* thread, bool finished)
{
    if (finished)
        before(thread);
    return finished;
}

} // namespace

// QMutex

void QMutex::lock() QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto qtLock = qtFunction<void(QMutex*)>("_ZN6QMutex4lockEv");
    qtLock(this);
    before(this);
}

bool QMutex::tryLock(int timeout) QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto qtTryLock = qtFunction<bool(QMutex*, int)>("_ZN6QMutex7tryLockEi");
    const bool locked = qtTryLock(this, timeout);
    if (locked)
        before(this);
    return locked;
}

void QMutex::unlock() noexcept
{
    static const auto qtUnlock = qtFunction<void(QMutex*)>("_ZN6QMutex6unlockEv");
    happened(this);
    qtUnlock(this);
}

// QWaitCondition: unlocks and locks the mutex inside Qt

bool QWaitCondition::wait(QMutex* lockedMutex, QDeadlineTimer deadline)
{
    static const auto qtWait = qtFunction<bool(QWaitCondition*, QMutex*, QDeadlineTimer)>(
        "_ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer");
    happened(lockedMutex);
    const bool woken = qtWait(this, lockedMutex, deadline);
    before(lockedMutex);
    return woken;
}

// QSemaphore

void QSemaphore::acquire(int n)
{
    static const auto qtAcquire = qtFunction<void(QSemaphore*, int)>("_ZN10QSemaphore7acquireEi");
    qtAcquire(this, n);
    before(this);
}

void QSemaphore::release(int n)
{
    static const auto qtRelease = qtFunction<void(QSemaphore*, int)>("_ZN10QSemaphore7releaseEi");
    happened(this);
    qtRelease(this, n);
}

// QThread

void QThread::start(Priority priority)
{
    static const auto qtStart =
        qtFunction<void(QThread*, Priority)>("_ZN7QThread5startENS_8PriorityE");
    connect(
        this, &QThread::started, this,
        [this] {
            if (!threadEnds().hasLocalData())
                threadEnds().setLocalData(new ThreadEnd(this));
        },
        Qt::DirectConnection);
    qtStart(this, priority);
}

bool QThread::wait(QDeadlineTimer deadline)
{
    static const auto qtWait =
        qtFunction<bool(QThread*, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    return waited(this, qtWait(this, deadline));
}

bool QThread::wait(unsigned long time)
{
    static const auto qtWait = qtFunction<bool(QThread*, unsigned long)>("_ZN7QThread4waitEm");
    return waited(this, qtWait(this, time));
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Thread.h"

#include "ChildRole.h"
#include "Columns.h"
#include "LogCapture.h"
#include "SystemCalls.h"
#include "ThreadParents.h"
#include "ThreadRecords.h"
#include "Threadable.h"

#include <QMetaMethod>
#include <QSemaphore>
#include <QSignalSpy>
#include <QtTest>

#include <atomic>
#include <memory>
#include <vector>

namespace {

const unsigned long longEnoughMs = 60000;

} // namespace

/// Signals when it runs.
class AwaitedThread : public Thread
{
    Q_OBJECT

public:
    using Thread::Thread;

    void startAndAwaitRun()
    {
        start();
        mRunning.acquire();
    }

protected:
    QSemaphore mRunning; ///< released by run()
};

/// Runs until its interruption is requested.
class PoliteThread : public AwaitedThread
{
    Q_OBJECT

public:
    using AwaitedThread::AwaitedThread;

    void requestInterruption() override
    {
        ++mInterruptionRequests;
        Thread::requestInterruption();
    }

    void onFinished() override
    {
        ++mFinished;
        mFinishedIn = QThread::currentThread();
    }

    using QObject::receivers;
    using Thread::threadables;

    std::atomic<int> mInterruptionRequests{0};
    int mFinished = 0;
    QThread* mFinishedIn = nullptr;

protected:
    void run() override
    {
        mRunning.release();
        while (!isInterruptionRequested())
            msleep(1);
    }
};

/// Ignores all requests, so that it must be released, waited for or terminated.
class StubbornThread : public AwaitedThread
{
    Q_OBJECT

public:
    using AwaitedThread::AwaitedThread;

    void letGo() { mGo = true; }

    bool mMayBeTerminated = true;

protected:
    void run() override
    {
        setTerminationEnabled(mMayBeTerminated);
        mRunning.release();
        // Sanitizers fail if a thread is terminated inside Qt, as in msleep(), or in a function
        // with local variables whose addresses are taken.
        while (!mGo)
            poll(nullptr, 0, 1);
    }

private:
    std::atomic<bool> mGo{false};
};

/// Waits for the condition of another Thread, then ends.
class WaitingThread : public QThread
{
    Q_OBJECT

public:
    explicit WaitingThread(Thread& thread)
        : mThread(thread)
    { }

    std::atomic<bool> mBegun{false};
    std::atomic<bool> mWoken{false};

protected:
    void run() override
    {
        mBegun = true;
        mThread.mainWaitForCondition();
        mWoken = true;
    }

private:
    Thread& mThread;
};

/// Counts how often it is bound, and to which threads.
class BoundWorker : public Threadable
{
    Q_OBJECT

public:
    void setThreadForInterrupt(Thread* thread) override
    {
        mBoundTo.append(thread);
        Threadable::setThreadForInterrupt(thread);
    }

    QList<Thread*> mBoundTo;
};

class tst_Thread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void parents();

    void cancelFlag();
    void cancelFlagIsNoInterruption();
    void cancelFlagUnderLoad();
    void cancellationUnderLoad();

    void requestInterruption();
    void interruptionOfAThreadThatDoesNotRun();
    void interruptionLeavesWorkersAlone();
    void wakes_data();
    void wakes();
    void lostWake_data();
    void lostWake();
    void waitReleasesTheLock();

    void stopAndWaitZero();
    void stopAndWait();
    void stopAndWaitOnTheThreadItself();
    void stopAndWaitWakesAgain();
    void durations_data();
    void durations();
    void waitForAll();
    void waitForAnyContainer();
    void waitForAllWakesWhoWasAsked();
    void terminate();
    void terminateLeavesTheObject();

    void progress();
    void progressInNumbers();
    void onFinished();
    void deleteOnFinished_data();
    void deleteOnFinished();
    void threadables();
    void deadWorkersAreForgotten();

    void lastChanceOfAnIdleThread();
    void lastChanceStops();
    void lastChanceWaitsThreeSecondsAndGivesUp();
    void parentDiesWhileRunning();
    void parentDiesWhileIdle();
    void tiedToTheParentOfItsConstruction();
    void applicationQuits();
    void applicationQuitsWithAParentAlive();
    void quittingProgram();

    void destroyedSilentlyWhenNotRunning();
    void destructorTerminates();
    void destructorDoesNotWait();
};

void tst_Thread::metaObject()
{
    const QMetaObject& meta = Thread::staticMetaObject;
    QCOMPARE(meta.className(), "Thread");
    QCOMPARE(meta.superClass(), &QThread::staticMetaObject);

    QList<QByteArray> methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods +=
            QByteArray(meta.method(i).methodType() == QMetaMethod::Signal ? "signal " : "slot ")
            + meta.method(i).typeName() + ' ' + meta.method(i).methodSignature();
    QCOMPARE(methods,
             QList<QByteArray>({"signal void progressThread(QString,QString)",
                                "signal void progressed(int,int,QString)",
                                "slot void setCancelFlag(bool)", "slot void onFinished()",
                                "slot bool lastChanceBeforeDestroyed()", "slot void terminate()"}));
    QCOMPARE(meta.method(meta.methodOffset()).parameterNames(),
             QList<QByteArray>({"progress_level1", "progress_level2"}));
    QCOMPARE(meta.method(meta.methodOffset() + 1).parameterNames(),
             QList<QByteArray>({"done", "total", "what"}));
}

void tst_Thread::parents()
{
    compareParents<Thread>();
}

// The cancel flag

void tst_Thread::cancelFlag()
{
    Thread thread;
    QVERIFY(!thread.isCancelRequested());
    thread.setCancelFlag(true);
    QVERIFY(thread.isCancelRequested());
    QVERIFY(QMetaObject::invokeMethod(&thread, "setCancelFlag", Q_ARG(bool, false)));
    QVERIFY(!thread.isCancelRequested());
}

void tst_Thread::cancelFlagIsNoInterruption()
{
    PoliteThread thread;
    thread.startAndAwaitRun();
    thread.setCancelFlag(true);
    QVERIFY(!thread.isInterruptionRequested());
    thread.setCancelFlag(false);
    QVERIFY(thread.stopAndWait(longEnoughMs));
    QVERIFY(!thread.isCancelRequested());
}

void tst_Thread::cancelFlagUnderLoad()
{
    // Many threads read and write the flag of one; none may block, and the last one wins.
    class Load : public QThread
    {
    public:
        explicit Load(Thread& thread)
            : mThread(thread)
        { }

    protected:
        void run() override
        {
            for (int i = 0; i < 2000; ++i) {
                mThread.setCancelFlag(i % 2 == 0);
                if (mThread.isCancelRequested())
                    yieldCurrentThread();
            }
        }

    private:
        Thread& mThread;
    };

    Thread thread;
    std::vector<std::unique_ptr<Load>> load;
    for (int i = 0; i < 8; ++i) {
        load.emplace_back(new Load(thread));
        load.back()->start();
    }
    for (const auto& one : load)
        QVERIFY(one->wait(longEnoughMs));
    thread.setCancelFlag(true);
    QVERIFY(thread.isCancelRequested());
}

void tst_Thread::cancellationUnderLoad()
{
    // Twice as many threads as cores that only compute and check the flag: each one stops.
    class BusyThread : public Thread
    {
    public:
        std::atomic<quint64> mSteps{0};

    protected:
        void run() override
        {
            while (!isCancelRequested() && !isInterruptionRequested())
                ++mSteps;
        }
    };

    const int count = 2 * qMax(2, QThread::idealThreadCount());
    for (int round = 0; round < 5; ++round) {
        std::vector<std::unique_ptr<BusyThread>> threads;
        for (int i = 0; i < count; ++i) {
            threads.emplace_back(new BusyThread);
            threads.back()->start();
        }
        for (const auto& thread : threads)
            QTRY_VERIFY_WITH_TIMEOUT(thread->mSteps > 100, int(longEnoughMs));
        for (int i = 0; i < count; ++i) {
            if (i % 2 == 0)
                threads[size_t(i)]->setCancelFlag(true);
            else
                threads[size_t(i)]->requestInterruption();
        }
        for (const auto& thread : threads)
            QVERIFY(thread->wait(longEnoughMs));
        for (int i = 0; i < count; ++i)
            QCOMPARE(threads[size_t(i)]->isCancelRequested(), i % 2 == 0);
    }
}

// Interruption and wakeup

void tst_Thread::requestInterruption()
{
    PoliteThread thread;
    thread.startAndAwaitRun();
    QVERIFY(!thread.isInterruptionRequested());
    thread.requestInterruption();
    QVERIFY(thread.wait(longEnoughMs)); // it saw the request, because nothing else ends it
    QVERIFY(!thread.isCancelRequested());
}

void tst_Thread::interruptionOfAThreadThatDoesNotRun()
{
    PoliteThread thread;
    thread.requestInterruption();
    QVERIFY(!thread.isInterruptionRequested());
    thread.startAndAwaitRun();
    QVERIFY(!thread.wait(50)); // an earlier request does not count
    QVERIFY(thread.stopAndWait(longEnoughMs));
}

void tst_Thread::interruptionLeavesWorkersAlone()
{
    Thread thread;
    BoundWorker worker;
    thread.addThreadableChild(worker);
    thread.requestInterruption();
    QCOMPARE(worker.mBoundTo, QList<Thread*>({&thread}));
}

void tst_Thread::wakes_data()
{
    const auto row = columns<bool>("byInterruption");
    row("mainWake", false);
    row("requestInterruption", true);
}

void tst_Thread::wakes()
{
    QFETCH(bool, byInterruption);
    Thread thread;
    std::vector<std::unique_ptr<WaitingThread>> waiting;
    for (int i = 0; i < 3; ++i) {
        waiting.emplace_back(new WaitingThread(thread));
        waiting.back()->start();
    }
    // A wakeup that comes too early is lost; so repeat it until everyone has continued.
    for (const auto& one : waiting) {
        while (!one->mWoken) {
            if (byInterruption)
                thread.requestInterruption();
            else
                thread.mainWake();
            QThread::msleep(1);
        }
        QVERIFY(one->wait(longEnoughMs));
    }
    thread.setCancelFlag(true); // the mutex was released
    QVERIFY(thread.isCancelRequested());
}

void tst_Thread::lostWake_data()
{
    wakes_data();
}

void tst_Thread::lostWake()
{
    QFETCH(bool, byInterruption);
    PoliteThread thread;
    thread.startAndAwaitRun();
    for (int i = 0; i < 10; ++i) {
        if (byInterruption)
            thread.requestInterruption();
        else
            thread.mainWake();
    }

    WaitingThread waiting(thread);
    waiting.start();
    while (!waiting.mBegun)
        QThread::msleep(1);
    QThread::msleep(100);
    QVERIFY(!waiting.mWoken); // none of the ten is remembered

    while (!waiting.mWoken) {
        thread.mainWake();
        QThread::msleep(1);
    }
    QVERIFY(waiting.wait(longEnoughMs));
    QVERIFY(thread.stopAndWait(longEnoughMs));
}

void tst_Thread::waitReleasesTheLock()
{
    Thread thread;
    WaitingThread waiting(thread);
    waiting.start();
    while (!waiting.mBegun)
        QThread::msleep(1);
    for (int i = 0; i < 50; ++i) {
        thread.setCancelFlag(i % 2 == 0); // would block forever
        QThread::msleep(1);
    }
    QVERIFY(!waiting.mWoken);
    while (!waiting.mWoken) {
        thread.mainWake();
        QThread::msleep(1);
    }
    QVERIFY(waiting.wait(longEnoughMs));
}

// Stopping

void tst_Thread::stopAndWaitZero()
{
    StubbornThread thread;
    thread.startAndAwaitRun();
    QVERIFY(!thread.stopAndWait(0));
    QVERIFY(thread.isInterruptionRequested());
    QVERIFY(thread.isRunning());
    thread.letGo();
    QVERIFY(thread.wait(longEnoughMs));
}

void tst_Thread::stopAndWait()
{
    PoliteThread thread;
    Thread& base = thread;
    QVERIFY(base.stopAndWait(0)); // never started: nothing to wait for
    QCOMPARE(thread.mInterruptionRequests.load(), 1); // through the virtual function

    thread.startAndAwaitRun();
    QVERIFY(base.stopAndWait(longEnoughMs));
    QVERIFY(thread.isFinished());
    QCOMPARE(thread.mInterruptionRequests.load(), 2);
    QVERIFY(base.stopAndWait(0)); // already finished
}

void tst_Thread::stopAndWaitOnTheThreadItself()
{
    class StopsItself : public Thread
    {
    public:
        bool mStopped = true;

    protected:
        void run() override { mStopped = stopAndWait(longEnoughMs); }
    };

    StopsItself thread;
    LogCapture log;
    thread.start();
    QVERIFY(thread.wait(longEnoughMs));
    QVERIFY(!thread.mStopped);
    QCOMPARE(log.records().size(), 1);
    QVERIFY2(log.records().at(0).text.contains(QLatin1String("tried to wait on itself")),
             qPrintable(log.records().at(0).text));
}

/// A wakeup between a worker's check for the request and its wait is lost. This worker checks, and
/// does not wait until the request has been made.
class LooksFirst : public Thread
{
    Q_OBJECT

protected:
    void run() override
    {
        while (!isInterruptionRequested()) {
            while (!isInterruptionRequested())
                yieldCurrentThread();
            mainWaitForCondition();
        }
    }
};

void tst_Thread::stopAndWaitWakesAgain()
{
    for (int i = 0; i < 100; ++i) {
        LooksFirst thread;
        thread.start();
        const bool stopped = thread.stopAndWait(longEnoughMs / 6);
        for (int j = 0; !stopped && j < 100 && !thread.wait(10); ++j)
            thread.mainWake();
        QVERIFY2(stopped, qPrintable(QStringLiteral("in round %1").arg(i)));
    }
}

void tst_Thread::durations_data()
{
    const auto row =
        columns<qint64, bool>("milliseconds", "isLimit"); // else none that could be waited for
    row("the least", qint64(std::chrono::milliseconds::min().count()), true);
    row("negative", qint64(-1), true);
    row("none", qint64(0), true);
    row("short", qint64(30), true);
    row("a day", qint64(86400000), false);
    row("25 days", 25 * qint64(86400000), false);
    row("the most", qint64(std::chrono::milliseconds::max().count()), false);
}

void tst_Thread::durations()
{
    QFETCH(qint64, milliseconds);
    QFETCH(bool, isLimit);
    const std::chrono::milliseconds duration(milliseconds);
    StubbornThread stubborn;
    stubborn.startAndAwaitRun();
    if (isLimit) {
        QVERIFY(!stubborn.stopAndWait(duration));
        QVERIFY(stubborn.isInterruptionRequested());
        QVERIFY(!Thread::waitForAll({&stubborn}, duration));
    }
    stubborn.letGo();
    QVERIFY(stubborn.wait(longEnoughMs));
    QVERIFY(Thread::waitForAll({&stubborn}, duration));

    PoliteThread polite;
    polite.startAndAwaitRun();
    if (!isLimit)
        QVERIFY(polite.stopAndWait(duration));
    QVERIFY(polite.stopAndWait(longEnoughMs));
    QVERIFY(polite.stopAndWait(duration)); // already finished
}

void tst_Thread::waitForAll()
{
    QVERIFY(Thread::waitForAll({}, std::chrono::milliseconds(0)));

    Thread neverStarted;
    PoliteThread first;
    PoliteThread second;
    const QPointer<Thread> destroyed(new Thread);
    delete destroyed.data();
    const QList<QPointer<Thread>> threads = {&neverStarted, destroyed, &first, &second};
    first.startAndAwaitRun();
    second.startAndAwaitRun();
    second.requestInterruption();
    QVERIFY(!Thread::waitForAll(threads, std::chrono::milliseconds(20)));
    QVERIFY(first.isRunning()); // none is asked
    QVERIFY(!first.isInterruptionRequested());
    first.requestInterruption();
    QVERIFY(Thread::waitForAll(threads));
    QVERIFY(first.isFinished());
    QVERIFY(second.isFinished());
}

void tst_Thread::waitForAnyContainer()
{
    PoliteThread first;
    PoliteThread second;
    const QVector<PoliteThread*> ofSubclass = {&first, &second, nullptr};
    const QList<Thread*> ofThreads = {&first, &second};
    const std::vector<QPointer<PoliteThread>> ofPointers = {&first, &second};
    const std::chrono::milliseconds moment(20);
    first.startAndAwaitRun();
    second.startAndAwaitRun();
    QVERIFY(!Thread::waitForAll(ofSubclass, moment));
    QVERIFY(!Thread::waitForAll(ofThreads, moment));
    QVERIFY(!Thread::waitForAll(ofPointers, moment));
    first.requestInterruption();
    second.requestInterruption();
    QVERIFY(Thread::waitForAll(ofPointers));
    QVERIFY(Thread::waitForAll(ofThreads));
    QVERIFY(Thread::waitForAll(ofSubclass));
    QVERIFY(second.isFinished());
}

void tst_Thread::waitForAllWakesWhoWasAsked()
{
    LooksFirst first;
    LooksFirst second;
    first.start();
    second.start();
    first.requestInterruption();
    second.requestInterruption();
    const bool stopped = Thread::waitForAll({&first, &second}, std::chrono::seconds(10));
    for (int i = 0; !stopped && i < 100; ++i) {
        first.mainWake();
        second.mainWake();
        QThread::msleep(10);
    }
    QVERIFY(stopped);
}

void tst_Thread::terminate()
{
    StubbornThread thread;
    thread.startAndAwaitRun();
    QVERIFY(QMetaObject::invokeMethod(&thread, "terminate"));
    QVERIFY(thread.wait(longEnoughMs));
    QVERIFY(thread.isFinished());
}

void tst_Thread::terminateLeavesTheObject()
{
    const QPointer<StubbornThread> thread(new StubbornThread);
    thread->enableThreadDeleteOnFinished(true);
    thread->startAndAwaitRun();
    thread->terminate();
    QVERIFY(thread->wait(longEnoughMs));
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(thread);
    delete thread;
}

// Progress and finishing

void tst_Thread::progress()
{
    class Reporting : public Thread
    {
    protected:
        void run() override
        {
            emitThreadProgress(QStringLiteral("Photographs"), QStringLiteral("a.jpg"));
            emitThreadProgress(QString(), QStringLiteral("b.jpg"));
        }
    };

    Reporting thread;
    QThread* deliveredIn = nullptr;
    QStringList texts;
    connect(&thread, &Thread::progressThread, this, [&](const QString& one, const QString& two) {
        deliveredIn = QThread::currentThread();
        texts << one << two;
    });
    thread.start();
    QVERIFY(thread.wait(longEnoughMs));
    QVERIFY(texts.isEmpty()); // queued, as it came from the other thread
    QCoreApplication::processEvents();
    QCOMPARE(texts,
             QStringList({QStringLiteral("Photographs"), QStringLiteral("a.jpg"), QString(),
                          QStringLiteral("b.jpg")}));
    QCOMPARE(deliveredIn, QThread::currentThread());

    texts.clear();
    thread.emitThreadProgress(QStringLiteral("here"), QString());
    QCOMPARE(texts, QStringList({QStringLiteral("here"), QString()})); // on the calling thread
}

void tst_Thread::progressInNumbers()
{
    class Counting : public Thread
    {
    protected:
        void run() override
        {
            Q_EMIT progressed(0, 0, QString());
            Q_EMIT progressed(3, 40, QStringLiteral("a.jpg"));
        }
    };

    Counting thread;
    const QSignalSpy numbers(&thread, &Thread::progressed);
    const QSignalSpy texts(&thread, &Thread::progressThread);
    thread.start();
    QVERIFY(thread.wait(longEnoughMs));
    QCoreApplication::processEvents();
    QCOMPARE(numbers.count(), 2);
    QCOMPARE(numbers.at(0), QVariantList({0, 0, QString()}));
    QCOMPARE(numbers.at(1), QVariantList({3, 40, QStringLiteral("a.jpg")}));
    QCOMPARE(texts.count(), 0);
}

void tst_Thread::onFinished()
{
    PoliteThread thread;
    thread.startAndAwaitRun();
    QVERIFY(thread.stopAndWait(longEnoughMs));
    QCOMPARE(thread.mFinished, 0); // delivered by the event loop
    QCoreApplication::processEvents();
    QCOMPARE(thread.mFinished, 1);
    QCOMPARE(thread.mFinishedIn, QThread::currentThread());
}

void tst_Thread::deleteOnFinished_data()
{
    const auto row = columns<QList<bool>, bool>("calls", "deleted");
    row("never asked", QList<bool>(), false);
    row("asked", QList<bool>({true}), true);
    row("asked twice", QList<bool>({true, true}), true);
    row("withdrawn", QList<bool>({true, false}), false);
    row("asked twice, withdrawn once", QList<bool>({true, true, false}), false);
    row("withdrawn, asked", QList<bool>({false, true}), true);
}

void tst_Thread::deleteOnFinished()
{
    QFETCH(QList<bool>, calls);
    QFETCH(bool, deleted);
    const QPointer<PoliteThread> thread(new PoliteThread);
    const int connections = thread->receivers(SIGNAL(finished()));
    for (const bool enabled : calls)
        thread->enableThreadDeleteOnFinished(enabled);
    QCOMPARE(thread->receivers(SIGNAL(finished())), connections + (deleted ? 1 : 0));

    thread->startAndAwaitRun();
    QVERIFY(thread->stopAndWait(longEnoughMs));
    QVERIFY(thread); // not before the event loop runs
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(thread.isNull(), deleted);
    delete thread;
}

void tst_Thread::threadables()
{
    PoliteThread thread;
    BoundWorker first;
    auto second = std::make_unique<BoundWorker>();
    thread.addThreadableChild(first);
    thread.addThreadableChild(*second);
    thread.addThreadableChild(first);
    QCOMPARE(first.mBoundTo, QList<Thread*>({&thread, &thread})); // through the virtual function
    QCOMPARE(thread.threadables(),
             QList<QPointer<Threadable>>({QPointer<Threadable>(&first), second.get()}));
    second.reset();
    QCOMPARE(thread.threadables(), QList<QPointer<Threadable>>({QPointer<Threadable>(&first), {}}));
}

void tst_Thread::deadWorkersAreForgotten()
{
    PoliteThread thread;
    BoundWorker first;
    thread.addThreadableChild(first);
    for (int i = 0; i < 1000; ++i) {
        BoundWorker worker;
        thread.addThreadableChild(worker);
        QCOMPARE(thread.threadables(),
                 QList<QPointer<Threadable>>({QPointer<Threadable>(&first), &worker}));
    }
    QVERIFY2(thread.threadables().size() <= 2,
             qPrintable(QString::number(thread.threadables().size())));
}

// The guard

void tst_Thread::lastChanceOfAnIdleThread()
{
    LogCapture log;
    PoliteThread thread;
    QVERIFY(!thread.lastChanceBeforeDestroyed());
    thread.startAndAwaitRun();
    QVERIFY(thread.stopAndWait(longEnoughMs));
    QVERIFY(!thread.lastChanceBeforeDestroyed());
    QCOMPARE(thread.mInterruptionRequests.load(), 1); // that of stopAndWait()
    QCOMPARE(log.lines(), QStringList());
}

void tst_Thread::lastChanceStops()
{
    PoliteThread thread;
    thread.startAndAwaitRun();
    LogCapture log;
    bool stopped = false;
    QVERIFY(QMetaObject::invokeMethod(&thread, "lastChanceBeforeDestroyed",
                                      Q_RETURN_ARG(bool, stopped)));
    QVERIFY(stopped);
    QVERIFY(thread.isFinished());
    QCOMPARE(thread.mInterruptionRequests.load(), 1);
    QCOMPARE(log.lines(), QStringList(guardRecord("PoliteThread")));
}

void tst_Thread::lastChanceWaitsThreeSecondsAndGivesUp()
{
    StubbornThread thread;
    thread.startAndAwaitRun();
    LogCapture log;
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!thread.lastChanceBeforeDestroyed());
    QVERIFY2(timer.elapsed() >= 2990, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(thread.isInterruptionRequested());
    QVERIFY(!thread.wait(50)); // asked, but not terminated
    QCOMPARE(log.records().size(), 1);
    thread.letGo();
    QVERIFY(thread.wait(longEnoughMs));
}

void tst_Thread::parentDiesWhileRunning()
{
    auto parent = std::make_unique<QObject>();
    const QPointer<PoliteThread> thread(new PoliteThread(parent.get()));
    bool finished = false;
    connect(parent.get(), &QObject::destroyed, this, [&] { finished = thread->isFinished(); });
    thread->startAndAwaitRun();
    LogCapture log;
    parent.reset();
    QVERIFY(!thread);
    QVERIFY(finished); // before the parent deleted it
    QCOMPARE(log.lines(), QStringList(guardRecord("PoliteThread")));
}

void tst_Thread::parentDiesWhileIdle()
{
    auto parent = std::make_unique<QObject>();
    const QPointer<Thread> thread(new Thread(parent.get()));
    LogCapture log;
    parent.reset();
    QVERIFY(!thread);
    QCOMPARE(log.lines(), QStringList());
}

void tst_Thread::tiedToTheParentOfItsConstruction()
{
    auto parent = std::make_unique<QObject>();
    PoliteThread thread(parent.get());
    thread.setParent(nullptr);
    thread.startAndAwaitRun();
    LogCapture log;
    parent.reset();
    QVERIFY(thread.isFinished());
    QCOMPARE(log.records().size(), 1);
}

void tst_Thread::applicationQuits()
{
    PoliteThread thread;
    thread.startAndAwaitRun();
    LogCapture log;
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();
    QVERIFY(thread.isFinished());
    QCOMPARE(thread.mInterruptionRequests.load(), 1);
    QCOMPARE(log.lines(), QStringList(guardRecord("PoliteThread")));
}

void tst_Thread::applicationQuitsWithAParentAlive()
{
    QObject parent;
    PoliteThread thread(&parent);
    thread.startAndAwaitRun();
    LogCapture log;
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();
    QCOMPARE(thread.mInterruptionRequests.load(), 0);
    QVERIFY(thread.isRunning());
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(thread.stopAndWait(longEnoughMs));
}

void tst_Thread::quittingProgram()
{
    const ChildResult child = runChildRole("quits with a running thread");
    QCOMPARE(child.errors, guardRecord("PoliteThread").split(QLatin1Char('\n')));
    QVERIFY(child.exitedNormally);
    QCOMPARE(child.exitCode, 0);
}

/// A whole program whose thread belongs to the application object.
static int quitsWithARunningThread(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    auto* const thread = new PoliteThread;
    thread->startAndAwaitRun();
    QTimer::singleShot(0, &app, &QCoreApplication::quit);
    return app.exec();
}

// Destruction

void tst_Thread::destroyedSilentlyWhenNotRunning()
{
    LogCapture log;
    {
        Thread neverStarted;
    }
    {
        PoliteThread done;
        done.startAndAwaitRun();
        QVERIFY(done.stopAndWait(longEnoughMs));
    }
    QCOMPARE(log.lines(), QStringList());
}

void tst_Thread::destructorTerminates()
{
    const ChildResult child = runChildRole("destroys a running thread");
    QCOMPARE(child.errors,
             stillRunningRecord().split(QLatin1Char('\n'))
                 << terminatedRecord() << QStringLiteral("ended by force, not deleted again"));
    QVERIFY(child.exitedNormally);
    QCOMPARE(child.exitCode, 0);
}

void tst_Thread::destructorDoesNotWait()
{
    const ChildResult child = runChildRole("destroys a thread that cannot be terminated");
    QCOMPARE(child.errors.mid(0, 3),
             stillRunningRecord().split(QLatin1Char('\n')) << terminatedRecord());
    QVERIFY2(child.errors.value(3).endsWith(
                 QStringLiteral("QThread: Destroyed while thread is still running")),
             qPrintable(child.errors.value(3)));
    QVERIFY(!child.exitedNormally); // Qt aborted the program
}

static QThread* threadBeingDestroyed = nullptr;
static QtMessageHandler handlerBefore = nullptr;

/// Delays the destructor between its last record and the end of the object until the thread that it
/// terminated has ended; otherwise the result would depend on chance.
static void awaitTheEndAfterBrutal(QtMsgType type, const QMessageLogContext& context,
                                   const QString& text)
{
    handlerBefore(type, context, text);
    if (text.contains(QLatin1String("#BRUTAL")) && !threadBeingDestroyed->wait(longEnoughMs))
        fprintf(stderr, "still running\n");
}

static int destroysARunningThread(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    auto* const thread = new StubbornThread;
    thread->enableThreadDeleteOnFinished(true); // must not delete it a second time
    thread->startAndAwaitRun();
    threadBeingDestroyed = thread;
    handlerBefore = qInstallMessageHandler(awaitTheEndAfterBrutal);
    delete thread;
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    fprintf(stderr, "ended by force, not deleted again\n");
    return 0;
}

static int destroysAThreadThatCannotBeTerminated(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    auto* const thread = new StubbornThread;
    thread->mMayBeTerminated = false;
    thread->startAndAwaitRun();
    delete thread; // Qt aborts: the thread is still running
    return 0;
}

int main(int argc, char** argv)
{
    const ChildRole role = childRole(
        argc, argv,
        {{"quits with a running thread", [&] { return quitsWithARunningThread(argc, argv); }},
         {"destroys a running thread", [&] { return destroysARunningThread(argc, argv); }},
         {"destroys a thread that cannot be terminated",
          [&] { return destroysAThreadThatCannotBeTerminated(argc, argv); }}});
    if (role)
        return role();

    QCoreApplication app(argc, argv);
    tst_Thread test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Thread.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GenericThread.h"

#include "ChildRole.h"
#include "Columns.h"
#include "LogCapture.h"
#include "SystemCalls.h"
#include "ThreadParents.h"
#include "ThreadRecords.h"

#include <QMetaMethod>
#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

namespace {

const int longEnoughMs = 60000;

QString textOf(int number)
{
    return QStringLiteral("the result of thread number %1").arg(number);
}

/// Handles events until the thread has deleted itself, and then what was posted in the meantime.
bool deletedItself(const QPointer<GenericThread>& thread)
{
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(longEnoughMs);
    while (thread && limit.isActive()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QCoreApplication::processEvents();
    return !thread;
}

} // namespace

/// Receives results and remembers in which thread.
class Receiver : public QObject
{
    Q_OBJECT

public:
    QVariantList mResults;
    QList<QThread*> mReceivedIn;
    int mCalls = 0;
    QSemaphore mReceived; ///< released by every receive()

public Q_SLOTS:
    void receive(const QVariant& result)
    {
        mResults.append(result);
        mReceivedIn.append(QThread::currentThread());
        ++mCalls;
        mReceived.release();
    }

    void called() { ++mCalls; }
};

/// A thread with an event loop, for a receiver to live in.
class EventLoop
{
public:
    ~EventLoop()
    {
        mThread.quit();
        mThread.wait();
    }

    QThread mThread;
};

class tst_GenericThread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void parents();
    void deletesItself();

    void resultReachesTheReceiversThread();
    void resultReachesAnotherThread();
    void slotWithoutArgument();
    void withoutResult();
    void runsOnItsOwnThread();
    void keepsACopyOfTheFunction();
    void receiverIsDestroyed();
    void withoutReceiver_data();
    void withoutReceiver();

    void anyCallable_data();
    void anyCallable();
    void receiverFunctionRunsInTheThreadOfItsContext();
    void receiverFunctionDiesWithItsContext_data();
    void receiverFunctionDiesWithItsContext();
    void withoutContextOrReceiverFunction_data();
    void withoutContextOrReceiverFunction();

    void deletionIsScheduledBeforeTheResultIsHandedOver();
    void ownersEventLoopWaitsForTheEmission();
    void sixtyRoundsOfFortyThreads();
    void twoHundredInARow();

    void destructorStopsTheFunction_data();
    void destructorStopsTheFunction();
    void destructorEndsTheFunctionByForce();
    void subclassIsTerminated();
    void programThatNeverRunsItsEventLoop();
    void parentDiesWhileRunning();
    void applicationQuits();
    void cancellationUnderLoad();
    void emptyFunction();
};

void tst_GenericThread::metaObject()
{
    const QMetaObject& meta = GenericThread::staticMetaObject;
    QCOMPARE(meta.className(), "GenericThread");
    QCOMPARE(meta.superClass(), &Thread::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod method = meta.method(meta.methodOffset());
    QCOMPARE(method.methodType(), QMetaMethod::Signal);
    QCOMPARE(method.methodSignature(), QByteArray("genericFinished(QVariant)"));
    QCOMPARE(method.parameterNames(), QList<QByteArray>({"result"}));
}

void tst_GenericThread::parents()
{
    compareParents<GenericThread>();
}

void tst_GenericThread::deletesItself()
{
    Receiver receiver;
    const QPointer<GenericThread> thread =
        GenericThread::runInGenericThread([](QVariant&) {}, &receiver, SLOT(called()));
    QCOMPARE(thread->parent(), static_cast<QObject*>(QCoreApplication::instance()));
    QVERIFY(thread->wait(ulong(longEnoughMs)));
    QVERIFY(thread);
    QVERIFY(deletedItself(thread));
}

// The result

void tst_GenericThread::resultReachesTheReceiversThread()
{
    Receiver receiver;
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [](QVariant& result) { result = textOf(1); }, &receiver, SLOT(receive(QVariant)));
    QVERIFY(thread->wait(ulong(longEnoughMs)));
    QCOMPARE(receiver.mCalls, 0); // queued
    QVERIFY(deletedItself(thread));
    QCOMPARE(receiver.mResults, QVariantList({textOf(1)}));
    QCOMPARE(receiver.mReceivedIn, QList<QThread*>({QThread::currentThread()}));
}

void tst_GenericThread::resultReachesAnotherThread()
{
    Receiver receiver;
    EventLoop loop;
    receiver.moveToThread(&loop.mThread);
    loop.mThread.start();
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [](QVariant& result) { result = textOf(1); }, &receiver, SLOT(receive(QVariant)));
    receiver.mReceived.acquire();
    QCOMPARE(receiver.mResults, QVariantList({textOf(1)}));
    QCOMPARE(receiver.mReceivedIn, QList<QThread*>({&loop.mThread}));
    QVERIFY(deletedItself(thread));
}

void tst_GenericThread::slotWithoutArgument()
{
    Receiver receiver;
    const QPointer<GenericThread> thread =
        GenericThread::runInGenericThread([](QVariant&) {}, &receiver, SLOT(called()));
    QVERIFY(deletedItself(thread));
    QCOMPARE(receiver.mCalls, 1);
}

void tst_GenericThread::withoutResult()
{
    Receiver receiver;
    std::atomic<bool> invalidAtFirst{false};
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [&](QVariant& result) { invalidAtFirst = !result.isValid(); }, &receiver,
        SLOT(receive(QVariant)));
    QVERIFY(deletedItself(thread));
    QCOMPARE(receiver.mCalls, 1);
    QVERIFY(invalidAtFirst);
    QVERIFY(!receiver.mResults.at(0).isValid());
}

void tst_GenericThread::runsOnItsOwnThread()
{
    Receiver receiver;
    std::atomic<QThread*> ranOn{nullptr};
    std::atomic<int> priority{-1};
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [&](QVariant&) {
            ranOn = QThread::currentThread();
            priority = ranOn.load()->priority();
        },
        &receiver, SLOT(called()));
    QVERIFY(thread->wait(ulong(longEnoughMs)));
    QCOMPARE(ranOn.load(), static_cast<QThread*>(thread));
    QCOMPARE(priority.load(), int(QThread::InheritPriority));
    QVERIFY(deletedItself(thread));
}

void tst_GenericThread::keepsACopyOfTheFunction()
{
    Receiver receiver;
    QSemaphore go;
    auto shared = std::make_shared<QString>(textOf(1));
    const std::weak_ptr<QString> watch = shared;
    std::function<void(QVariant&)> function = [&go, shared](QVariant& result) {
        go.acquire();
        result = *shared;
    };
    const QPointer<GenericThread> thread =
        GenericThread::runInGenericThread(function, &receiver, SLOT(receive(QVariant)));
    function = nullptr;
    shared.reset();
    go.release();
    QVERIFY(deletedItself(thread));
    QCOMPARE(receiver.mResults, QVariantList({textOf(1)}));
    QVERIFY(watch.expired()); // destroyed with the thread
}

void tst_GenericThread::receiverIsDestroyed()
{
    auto receiver = std::make_unique<Receiver>();
    QSemaphore go;
    std::atomic<bool> ran{false};
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [&](QVariant&) {
            go.acquire();
            ran = true;
        },
        receiver.get(), SLOT(receive(QVariant)));
    receiver.reset();
    go.release();
    QVERIFY(deletedItself(thread));
    QVERIFY(ran);
}

void tst_GenericThread::withoutReceiver_data()
{
    const auto row = columns<bool, QByteArray, QString>("hasReceiver", "member", "warning");
    row("null receiver", false, QByteArray(SLOT(receive(QVariant))),
        "QObject::connect: Cannot connect GenericThread::genericFinished("
        "QVariant) to (nullptr)::receive(QVariant)");
    row("no such slot", true, QByteArray(SLOT(nothing(QVariant))),
        "QObject::connect: No such slot Receiver::nothing(QVariant)");
}

void tst_GenericThread::withoutReceiver()
{
    QFETCH(bool, hasReceiver);
    QFETCH(QByteArray, member);
    QFETCH(QString, warning);
    Receiver receiver;
    std::atomic<bool> ran{false};
    LogCapture log;
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [&](QVariant&) { ran = true; }, hasReceiver ? &receiver : nullptr, member.constData());
    QVERIFY(deletedItself(thread));
    QVERIFY(ran);
    QCOMPARE(log.records().size(), 1);
    QVERIFY2(log.records().at(0).text.startsWith(warning), qPrintable(log.records().at(0).text));
}

// Any callable as the function, and functions as receivers

using Callable = std::function<QVariant()>;
Q_DECLARE_METATYPE(Callable)

static QVariant answer()
{
    return 42;
}

void tst_GenericThread::anyCallable_data()
{
    struct Multiplies
    {
        int operator()() const { return mLeft * mRight; }

        int mLeft;
        int mRight;
    };

    const auto row = columns<Callable, QVariant>("function", "result");
    row("a function", Callable(answer), QVariant(42));
    row("a function object", Callable(Multiplies{6, 7}), QVariant(42));
    row("a lambda expression that returns a text", Callable([] { return textOf(1); }),
        QVariant(textOf(1)));
    row("a bound function", Callable(std::bind(textOf, 2)), QVariant(textOf(2)));
    row("no value", Callable([] { return QVariant(); }), QVariant());
}

void tst_GenericThread::anyCallable()
{
    QFETCH(Callable, function);
    QFETCH(QVariant, result);
    QVariantList received;
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        function, this, [&received](const QVariant& value) { received += value; });
    QVERIFY(deletedItself(thread));
    QCOMPARE(received, QVariantList({result}));
}

void tst_GenericThread::receiverFunctionRunsInTheThreadOfItsContext()
{
    QObject context;
    EventLoop loop;
    context.moveToThread(&loop.mThread);
    QSemaphore received;
    std::atomic<QThread*> ranIn{nullptr};
    std::atomic<QThread*> receivedIn{nullptr};
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [&ranIn] {
            ranIn = QThread::currentThread();
            return QVariant();
        },
        &context,
        [&](const QVariant&) {
            receivedIn = QThread::currentThread();
            received.release();
        });
    QThread* const worker = thread;
    // Started only now, so that the sanitizer sees that the receiver exists before.
    loop.mThread.start();
    received.acquire();
    QCOMPARE(ranIn.load(), worker);
    QCOMPARE(receivedIn.load(), &loop.mThread);
    QVERIFY(deletedItself(thread));
}

void tst_GenericThread::receiverFunctionDiesWithItsContext_data()
{
    const auto row = columns<bool>("isUnderWay");
    row("while the function runs", false);
    row("when the result is under way", true);
}

void tst_GenericThread::receiverFunctionDiesWithItsContext()
{
    QFETCH(bool, isUnderWay);
    auto context = std::make_unique<QObject>();
    auto owned = std::make_shared<QString>(textOf(1));
    const std::weak_ptr<QString> watch = owned;
    QSemaphore go;
    bool received = false;
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [&go] {
            go.acquire();
            return QVariant();
        },
        context.get(), [&received, owned](const QVariant&) { received = true; });
    owned.reset();
    if (isUnderWay) {
        go.release();
        QVERIFY(thread->wait(ulong(longEnoughMs)));
        context.reset();
    } else {
        context.reset();
        go.release();
    }
    QVERIFY(deletedItself(thread));
    QVERIFY(!received);
    QVERIFY(watch.expired());
}

void tst_GenericThread::withoutContextOrReceiverFunction_data()
{
    const auto row = columns<bool, bool, int>("hasContext", "hasReceiver", "warnings");
    row("no context", false, true, 1);
    row("no receiver", true, false, 0);
    row("neither", false, false, 0);
}

void tst_GenericThread::withoutContextOrReceiverFunction()
{
    QFETCH(bool, hasContext);
    QFETCH(bool, hasReceiver);
    QFETCH(int, warnings);
    std::function<void(const QVariant&)> receiver;
    if (hasReceiver)
        receiver = [](const QVariant&) { QFAIL("called without a context"); };
    std::atomic<bool> ran{false};
    LogCapture log;
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [&ran] {
            ran = true;
            return QVariant();
        },
        hasContext ? this : nullptr, receiver);
    QVERIFY(deletedItself(thread));
    QVERIFY(ran);
    QCOMPARE(log.records().size(), warnings);
}

// The end of a thread

/// Records when the event loop is about to delete the object.
class DeletionWatch : public QObject
{
    Q_OBJECT

public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::DeferredDelete)
            mBegun = true;
        return false;
    }

    std::atomic<bool> mBegun{false};
};

void tst_GenericThread::deletionIsScheduledBeforeTheResultIsHandedOver()
{
    // The signal is still being emitted when the deletion begins, so that was scheduled before.
    DeletionWatch watch;
    Receiver receiver;
    QSemaphore go;
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [&go](QVariant&) { go.acquire(); }, &receiver, SLOT(called()));
    thread->installEventFilter(&watch);
    QThread* emittedIn = nullptr;
    bool deletionHadBegun = false;
    connect(
        thread, &GenericThread::genericFinished, this,
        [&] {
            emittedIn = QThread::currentThread();
            for (int i = 0; i < longEnoughMs && !watch.mBegun; ++i)
                QThread::msleep(1);
            deletionHadBegun = watch.mBegun;
        },
        Qt::DirectConnection);
    QThread* const worker = thread;
    go.release();
    QVERIFY(deletedItself(thread));
    QVERIFY(deletionHadBegun);
    QCOMPARE(emittedIn, worker); // the worker thread, not the owner of the object
}

void tst_GenericThread::ownersEventLoopWaitsForTheEmission()
{
    DeletionWatch watch;
    Receiver receiver;
    QSemaphore go;
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [&go](QVariant& result) {
            go.acquire();
            result = textOf(1);
        },
        &receiver, SLOT(receive(QVariant)));
    thread->installEventFilter(&watch);
    connect(
        thread, &GenericThread::genericFinished, this,
        [&] {
            while (!watch.mBegun)
                QThread::msleep(1);
            QThread::msleep(50); // the owner has reached the destructor by now
        },
        Qt::DirectConnection);
    QVariant seenLast;
    std::atomic<bool> emitted{false};
    connect(
        thread, &GenericThread::genericFinished, this,
        [&](const QVariant& result) {
            seenLast = result;
            emitted = true;
        },
        Qt::DirectConnection);
    bool emittedBeforeTheEnd = false;
    connect(thread, &QObject::destroyed, this, [&] { emittedBeforeTheEnd = emitted; });
    go.release();
    QVERIFY(deletedItself(thread));
    QVERIFY(emittedBeforeTheEnd);
    QCOMPARE(seenLast, QVariant(textOf(1)));
    QCOMPARE(receiver.mResults, QVariantList({textOf(1)}));
}

void tst_GenericThread::sixtyRoundsOfFortyThreads()
{
    const int rounds = 60;
    const int threadsPerRound = 40;
    for (int round = 0; round < rounds; ++round) {
        Receiver receiver;
        QVector<QPointer<GenericThread>> threads;
        QVariantList expected;
        for (int i = 0; i < threadsPerRound; ++i) {
            expected.append(textOf(i));
            threads.append(GenericThread::runInGenericThread(
                [i](QVariant& result) { result = textOf(i); }, &receiver, SLOT(receive(QVariant))));
        }
        for (const QPointer<GenericThread>& thread : threads)
            QVERIFY(deletedItself(thread));
        QCOMPARE(receiver.mCalls, threadsPerRound);
        for (const QVariant& result : expected)
            QCOMPARE(receiver.mResults.count(result), 1);
    }
}

void tst_GenericThread::twoHundredInARow()
{
    const int objectsBefore = int(QCoreApplication::instance()->children().size());
    Receiver receiver;
    for (int i = 0; i < 200; ++i) {
        const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
            [i](QVariant& result) { result = textOf(i); }, &receiver, SLOT(receive(QVariant)));
        QVERIFY(deletedItself(thread));
        QCOMPARE(receiver.mResults.size(), i + 1);
        QCOMPARE(receiver.mResults.last().toString(), textOf(i));
    }
    QCOMPARE(QCoreApplication::instance()->children().size(), objectsBefore);
}

// The guard

void tst_GenericThread::destructorStopsTheFunction_data()
{
    const auto row = columns<bool>("polite");
    row("that looks for the request", true);
    row("that returns in time by itself", false);
}

void tst_GenericThread::destructorStopsTheFunction()
{
    QFETCH(bool, polite);
    Receiver receiver;
    QSemaphore running;
    LogCapture log;
    GenericThread* const thread = GenericThread::runInGenericThread(
        [&running, polite](QVariant& result) {
            running.release();
            QElapsedTimer timer;
            timer.start();
            while (polite ? !QThread::currentThread()->isInterruptionRequested()
                          : timer.elapsed() < 100)
                QThread::msleep(1);
            result = textOf(1);
        },
        &receiver, SLOT(receive(QVariant)));
    running.acquire();
    delete thread;
    QCOMPARE(log.lines(), QStringList(stillRunningRecord()));
    QCoreApplication::processEvents();
    QCOMPARE(receiver.mResults, QVariantList({textOf(1)})); // delivered before the end
}

void tst_GenericThread::destructorEndsTheFunctionByForce()
{
    const ChildResult child = runChildRole("destroys a thread that does not listen");
    QCOMPARE(child.errors,
             stillRunningRecord().split(QLatin1Char('\n'))
                 << terminatedRecord() << QStringLiteral("after more than 2990 ms, 0 results"));
    QVERIFY(child.exitedNormally);
    QCOMPARE(child.exitCode, 0);
}

/// Sleeps until it is terminated. Sanitizers fail if a thread is terminated inside Qt, or in a
/// function with local variables whose addresses are taken.
static void sleepForEver()
{
    for (;;)
        poll(nullptr, 0, 1);
}

static int destroysAThreadThatDoesNotListen(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    Receiver receiver;
    QSemaphore running;
    GenericThread* const thread = GenericThread::runInGenericThread(
        [&running](QVariant&) {
            running.release();
            sleepForEver();
        },
        &receiver, SLOT(called()));
    running.acquire();
    QElapsedTimer timer;
    timer.start();
    delete thread;
    const qint64 elapsed = timer.elapsed();
    QCoreApplication::processEvents();
    fprintf(stderr, "after %s 2990 ms, %d results\n", elapsed > 2990 ? "more than" : "at most",
            receiver.mCalls);
    return 0;
}

/// Overrides run(), and does not listen either.
class SleepingGenericThread : public GenericThread
{
public:
    QSemaphore mRunning;

protected:
    void run() override
    {
        mRunning.release();
        sleepForEver();
    }
};

static int terminatesASubclass(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    Receiver receiver;
    SleepingGenericThread thread;
    QObject::connect(&thread, SIGNAL(genericFinished(QVariant)), &receiver, SLOT(called()));
    thread.start();
    thread.mRunning.acquire();
    thread.terminate();
    const bool hasEnded = thread.wait();
    QCoreApplication::processEvents();
    fprintf(stderr, "%s, %d results\n", hasEnded ? "ended" : "still running", receiver.mCalls);
    return 0;
}

void tst_GenericThread::subclassIsTerminated()
{
    const ChildResult child = runChildRole("terminates a subclass");
    QCOMPARE(child.errors, QStringList(QStringLiteral("ended, 0 results")));
    QVERIFY(child.exitedNormally);
    QCOMPARE(child.exitCode, 0);
}

void tst_GenericThread::programThatNeverRunsItsEventLoop()
{
    // The thread is destroyed with the application object.
    const ChildResult child = runChildRole("ends without an event loop");
    QCOMPARE(child.errors,
             stillRunningRecord().split(QLatin1Char('\n')) << QStringLiteral("asked to stop"));
    QVERIFY(child.exitedNormally);
    QCOMPARE(child.exitCode, 0);
}

static int endsWithoutAnEventLoop(int argc, char** argv)
{
    QSemaphore running;
    QCoreApplication app(argc, argv);
    GenericThread::runInGenericThread(
        [&running](QVariant&) {
            running.release();
            while (!QThread::currentThread()->isInterruptionRequested())
                QThread::msleep(1);
            fprintf(stderr, "asked to stop\n");
        },
        &app, SLOT(quit()));
    running.acquire();
    return 0;
}

/// Runs until its interruption is requested.
class PoliteGenericThread : public GenericThread
{
    Q_OBJECT

public:
    using GenericThread::GenericThread;

    QSemaphore mRunning;

protected:
    void run() override
    {
        mRunning.release();
        while (!isInterruptionRequested())
            msleep(1);
    }
};

void tst_GenericThread::parentDiesWhileRunning()
{
    auto parent = std::make_unique<QObject>();
    Receiver receiver;
    const QPointer<PoliteGenericThread> thread(new PoliteGenericThread(parent.get()));
    connect(thread, &GenericThread::genericFinished, &receiver, &Receiver::receive);
    thread->start();
    thread->mRunning.acquire();
    LogCapture log;
    parent.reset();
    QVERIFY(!thread);
    QCOMPARE(log.lines(), QStringList(guardRecord("PoliteGenericThread")));
    QCoreApplication::processEvents();
    QCOMPARE(receiver.mResults, QVariantList({QVariant()})); // delivered before the end
}

void tst_GenericThread::applicationQuits()
{
    Receiver receiver;
    QSemaphore running;
    const QPointer<GenericThread> thread = GenericThread::runInGenericThread(
        [&](QVariant&) {
            running.release();
            while (!QThread::currentThread()->isInterruptionRequested())
                QThread::msleep(1);
        },
        &receiver, SLOT(called()));
    running.acquire();
    LogCapture log;
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();
    QVERIFY(!thread || thread->isFinished());
    QCOMPARE(log.lines(), QStringList(guardRecord("GenericThread")));
    QVERIFY(deletedItself(thread));
}

void tst_GenericThread::cancellationUnderLoad()
{
    const int count = 4 * qMax(2, QThread::idealThreadCount());
    Receiver receiver;
    std::atomic<int> running{0};
    QVector<QPointer<GenericThread>> threads;
    for (int i = 0; i < count; ++i)
        threads.append(GenericThread::runInGenericThread(
            [&running](QVariant& result) {
                auto* const self = static_cast<Thread*>(QThread::currentThread());
                ++running;
                while (!self->isInterruptionRequested() && !self->isCancelRequested()) { }
                result = self->isCancelRequested();
            },
            &receiver, SLOT(receive(QVariant))));
    QTRY_COMPARE_WITH_TIMEOUT(running.load(), count, longEnoughMs);
    for (int i = 0; i < count; ++i) {
        if (i % 2 == 0)
            threads.at(i)->setCancelFlag(true);
        else
            threads.at(i)->requestInterruption();
    }
    for (const QPointer<GenericThread>& thread : threads)
        QVERIFY(deletedItself(thread));
    QCOMPARE(receiver.mResults.count(QVariant(true)), count / 2);
    QCOMPARE(receiver.mResults.count(QVariant(false)), count / 2);
}

// An empty function

static QThread* mainThread = nullptr;

/// The terminate handler: prints an uncaught exception and where it was raised.
[[noreturn]] static void reportUncaught()
{
    const char* where = QThread::currentThread() == mainThread ? "main thread" : "worker thread";
    const char* what = "something else";
    try {
        std::rethrow_exception(std::current_exception());
    } catch (const std::bad_function_call&) {
        what = "bad_function_call";
    } catch (...) { }
    fprintf(stderr, "%s on the %s\n", what, where);
    fflush(stderr);
    _exit(3);
}

static int runsAnEmptyFunction(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    mainThread = QThread::currentThread();
    std::set_terminate(reportUncaught);
    GenericThread thread;
    thread.start();
    thread.wait();
    return 0;
}

void tst_GenericThread::emptyFunction()
{
    const ChildResult child = runChildRole("runs an empty function");
    QCOMPARE(child.errors, QStringList(QStringLiteral("bad_function_call on the worker thread")));
    QVERIFY(child.exitedNormally);
    QCOMPARE(child.exitCode, 3);
}

int main(int argc, char** argv)
{
    const ChildRole role = childRole(
        argc, argv,
        {{"runs an empty function", [&] { return runsAnEmptyFunction(argc, argv); }},
         {"destroys a thread that does not listen",
          [&] { return destroysAThreadThatDoesNotListen(argc, argv); }},
         {"terminates a subclass", [&] { return terminatesASubclass(argc, argv); }},
         {"ends without an event loop", [&] { return endsWithoutAnEventLoop(argc, argv); }}});
    if (role)
        return role();

    QCoreApplication app(argc, argv);
    tst_GenericThread test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_GenericThread.moc"

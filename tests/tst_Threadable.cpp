// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Threadable.h"

#include "Columns.h"
#include "Thread.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

const unsigned long longEnoughMs = 60000;

} // namespace

/// Counts its interruption requests, and exposes its workers.
class CountingThread : public Thread
{
    Q_OBJECT

public:
    void requestInterruption() override
    {
        ++mInterruptionRequests;
        Thread::requestInterruption();
    }

    using Thread::threadables;

    int mInterruptionRequests = 0;
};

/// Remembers what it was bound to, and in which order among all workers.
class Worker : public Threadable
{
    Q_OBJECT

public:
    explicit Worker(const QString& name = QString(), QStringList* order = nullptr)
        : mName(name)
        , mOrder(order)
    { }

    void setThreadForInterrupt(Thread* thread) override
    {
        mBoundTo.append(thread);
        if (mOrder)
            mOrder->append(mName);
        Threadable::setThreadForInterrupt(thread);
    }

    QList<Thread*> mBoundTo;

private:
    QString mName;
    QStringList* mOrder;
};

/// Runs one worker until it is interrupted, like an application.
class WorkingThread : public Thread
{
    Q_OBJECT

public:
    explicit WorkingThread(Threadable& worker)
        : mWorker(worker)
    {
        addThreadableChild(worker);
    }

    QSemaphore mRunning;

protected:
    void run() override
    {
        mRunning.release();
        mWorker.emitThreadProgressMessages(QStringLiteral("begun"), QString());
        while (!mWorker.isInterruptionRequested())
            mWorker.msleep(1);
        mWorker.emitThreadProgressMessages(QStringLiteral("stopped"), QStringLiteral("early"));
    }

private:
    Threadable& mWorker;
};

class tst_Threadable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void parent();

    void unbound();
    void bound();
    void threadIsDestroyed();
    void boundAgain();

    void childIsBoundWithItsParent_data();
    void childIsBoundWithItsParent();
    void childAddedToAWorkerWhoseThreadIsGone();
    void addedTwice();
    void boundTwice();
    void allLevels();
    void destroyedChild();
    void childAddedWhileBinding();

    void interruptedAtWork();
    void interruptedByAWorker();
    void sleepsOnTheCallingThread_data();
    void sleepsOnTheCallingThread();
};

void tst_Threadable::metaObject()
{
    const QMetaObject& meta = Threadable::staticMetaObject;
    QCOMPARE(meta.className(), "Threadable");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset()); // no signals or slots of its own
}

void tst_Threadable::parent()
{
    QObject parent;
    Threadable child(&parent);
    Threadable orphan;
    QCOMPARE(child.parent(), &parent);
    QVERIFY(!orphan.parent());
}

// One worker and its thread

void tst_Threadable::unbound()
{
    CountingThread stranger;
    const QSignalSpy progress(&stranger, &Thread::progressThread);
    const QSignalSpy numbers(&stranger, &Thread::progressed);
    Threadable worker;
    worker.requestInterruption();
    worker.emitThreadProgressMessages(QStringLiteral("a"), QStringLiteral("b"));
    worker.emitThreadProgress(3, 40, QStringLiteral("a"));
    QVERIFY(!worker.isInterruptionRequested());
    QCOMPARE(stranger.mInterruptionRequests, 0);
    QCOMPARE(progress.count(), 0);
    QCOMPARE(numbers.count(), 0);
}

void tst_Threadable::bound()
{
    CountingThread thread;
    const QSignalSpy progress(&thread, &Thread::progressThread);
    const QSignalSpy numbers(&thread, &Thread::progressed);
    Threadable worker;
    worker.setThreadForInterrupt(&thread);
    QCOMPARE(thread.threadables(), QList<QPointer<Threadable>>({&worker}));

    worker.requestInterruption();
    QCOMPARE(thread.mInterruptionRequests, 1); // through the virtual function
    QVERIFY(!worker.isInterruptionRequested()); // Qt ignores the request: the thread is not running
    worker.emitThreadProgressMessages(QStringLiteral("a"), QStringLiteral("b"));
    QCOMPARE(progress.count(), 1);
    QCOMPARE(progress.at(0), QVariantList({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(numbers.count(), 0);
    worker.emitThreadProgress(3, 40, QStringLiteral("a"));
    QCOMPARE(numbers.count(), 1);
    QCOMPARE(numbers.at(0), QVariantList({3, 40, QStringLiteral("a")}));
    QCOMPARE(progress.count(), 1);
}

void tst_Threadable::threadIsDestroyed()
{
    Worker parent;
    Worker child;
    auto thread = std::make_unique<CountingThread>();
    parent.setThreadForInterrupt(thread.get());
    thread.reset();

    parent.requestInterruption();
    parent.emitThreadProgressMessages(QStringLiteral("a"), QStringLiteral("b"));
    parent.emitThreadProgress(3, 40, QStringLiteral("a"));
    QVERIFY(!parent.isInterruptionRequested());
    parent.addThreadableChild(child);
    QVERIFY(child.mBoundTo.isEmpty());
}

void tst_Threadable::boundAgain()
{
    CountingThread first;
    CountingThread second;
    Threadable worker;
    first.addThreadableChild(worker);
    second.addThreadableChild(worker);
    worker.requestInterruption();
    QCOMPARE(first.mInterruptionRequests, 0);
    QCOMPARE(second.mInterruptionRequests, 1);
    QCOMPARE(first.threadables(), QList<QPointer<Threadable>>({&worker})); // it is not removed
    QCOMPARE(second.threadables(), QList<QPointer<Threadable>>({&worker}));
}

// Sub-workers

void tst_Threadable::childIsBoundWithItsParent_data()
{
    const auto row = columns<bool>("parentIsBound");
    row("added before the parent is bound", false);
    row("added after that", true);
}

void tst_Threadable::childIsBoundWithItsParent()
{
    QFETCH(bool, parentIsBound);
    CountingThread thread;
    Worker parent;
    Worker child;
    if (parentIsBound)
        parent.setThreadForInterrupt(&thread);
    parent.addThreadableChild(child);
    QCOMPARE(child.mBoundTo.size(), parentIsBound ? 1 : 0);
    if (!parentIsBound)
        parent.setThreadForInterrupt(&thread);
    QCOMPARE(child.mBoundTo, QList<Thread*>({&thread}));
    QCOMPARE(parent.mBoundTo, QList<Thread*>({&thread})); // the parent is not bound again
    child.requestInterruption();
    QCOMPARE(thread.mInterruptionRequests, 1);
}

void tst_Threadable::childAddedToAWorkerWhoseThreadIsGone()
{
    Worker parent;
    Worker child;
    {
        Thread gone;
        parent.setThreadForInterrupt(&gone);
    }
    parent.addThreadableChild(child);
    QVERIFY(child.mBoundTo.isEmpty());
    Thread thread;
    parent.setThreadForInterrupt(&thread);
    QCOMPARE(child.mBoundTo, QList<Thread*>({&thread}));
}

void tst_Threadable::addedTwice()
{
    Thread thread;
    Worker parent;
    Worker child;
    parent.addThreadableChild(child);
    parent.addThreadableChild(child);
    parent.setThreadForInterrupt(&thread);
    QCOMPARE(child.mBoundTo.size(), 1); // it is in the parent's list once
}

void tst_Threadable::boundTwice()
{
    CountingThread thread;
    Threadable worker;
    worker.setThreadForInterrupt(&thread);
    worker.setThreadForInterrupt(&thread);
    thread.addThreadableChild(worker);
    QCOMPARE(thread.threadables(), QList<QPointer<Threadable>>({&worker}));
}

void tst_Threadable::allLevels()
{
    QStringList order;
    Worker root(QStringLiteral("root"), &order);
    Worker left(QStringLiteral("left"), &order);
    Worker right(QStringLiteral("right"), &order);
    Worker leaf(QStringLiteral("leaf"), &order);
    root.addThreadableChild(left);
    root.addThreadableChild(right);
    left.addThreadableChild(leaf);

    CountingThread thread;
    thread.addThreadableChild(root);
    QCOMPARE(order,
             QStringList({QStringLiteral("root"), QStringLiteral("left"), QStringLiteral("leaf"),
                          QStringLiteral("right")}));
    QCOMPARE(thread.threadables(),
             QList<QPointer<Threadable>>({QPointer<Threadable>(&root), &left, &leaf, &right}));
    leaf.requestInterruption();
    QCOMPARE(thread.mInterruptionRequests, 1);
}

void tst_Threadable::destroyedChild()
{
    Worker parent;
    Worker first;
    auto second = std::make_unique<Worker>();
    auto third = std::make_unique<Worker>();
    Worker last;
    for (Worker* const child : {&first, second.get(), third.get(), &last})
        parent.addThreadableChild(*child);
    second.reset();
    third.reset();

    CountingThread thread;
    for (int i = 0; i < 2; ++i)
        parent.setThreadForInterrupt(&thread);
    QCOMPARE(first.mBoundTo.size(), 2);
    QCOMPARE(last.mBoundTo.size(), 2);
    QCOMPARE(thread.threadables(),
             QList<QPointer<Threadable>>({QPointer<Threadable>(&parent), &first, &last}));
}

void tst_Threadable::childAddedWhileBinding()
{
    /// Creates its helper when it learns its thread, in the list that is being iterated.
    class Late : public Worker
    {
    public:
        explicit Late(Threadable& parent)
            : mParent(parent)
        { }

        void setThreadForInterrupt(Thread* thread) override
        {
            Worker::setThreadForInterrupt(thread);
            mParent.addThreadableChild(mHelper);
        }

        Worker mHelper;

    private:
        Threadable& mParent;
    };

    Worker parent;
    Late late(parent);
    Worker last;
    parent.addThreadableChild(late);
    parent.addThreadableChild(last);
    Thread thread;
    parent.setThreadForInterrupt(&thread);
    QVERIFY(late.mHelper.mBoundTo.contains(&thread));
    QCOMPARE(last.mBoundTo, QList<Thread*>({&thread}));
}

// Running workers

void tst_Threadable::interruptedAtWork()
{
    Threadable worker;
    WorkingThread thread(worker);
    QStringList texts;
    connect(&thread, &Thread::progressThread, this,
            [&texts](const QString& one, const QString& two) { texts << one << two; });
    thread.start();
    thread.mRunning.acquire();
    QVERIFY(!worker.isInterruptionRequested());
    QVERIFY(thread.stopAndWait(longEnoughMs));
    QCoreApplication::processEvents();
    QCOMPARE(texts,
             QStringList({QStringLiteral("begun"), QString(), QStringLiteral("stopped"),
                          QStringLiteral("early")}));
}

void tst_Threadable::interruptedByAWorker()
{
    Threadable worker;
    Threadable child;
    worker.addThreadableChild(child);
    WorkingThread thread(worker);
    thread.start();
    thread.mRunning.acquire();
    child.requestInterruption(); // stops its whole thread, and with it every worker
    QVERIFY(thread.wait(longEnoughMs));
}

void tst_Threadable::sleepsOnTheCallingThread_data()
{
    const auto row = columns<bool, bool>("inSeconds", "bound");
    row("seconds, unbound", true, false);
    row("milliseconds, unbound", false, false);
    row("seconds, bound elsewhere", true, true);
    row("milliseconds, bound elsewhere", false, true);
}

void tst_Threadable::sleepsOnTheCallingThread()
{
    QFETCH(bool, inSeconds);
    QFETCH(bool, bound);
    Thread thread;
    Threadable worker;
    if (bound)
        worker.setThreadForInterrupt(&thread);
    const Threadable& constant = worker;
    QElapsedTimer timer;
    timer.start();
    if (inSeconds)
        constant.sleep(1);
    else
        constant.msleep(30);
    // A sleep lasts at least as long as requested; how much longer depends on the system.
    const qint64 atLeast = inSeconds ? 999 : 29;
    QVERIFY2(timer.elapsed() >= atLeast, qPrintable(QString::number(timer.elapsed())));
}

QTEST_GUILESS_MAIN(tst_Threadable)
#include "tst_Threadable.moc"

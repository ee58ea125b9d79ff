// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GenericThread.h"

#include "thread_p.h"

using namespace OrvaUtilsPrivate;

class OrvaUtilsPrivate::GenericThreadPrivate
{
public:
    /// Where the worker thread is. A subclass that overrides run() leaves it outside.
    enum Place { Outside, InFunction, Returned };

    std::function<void(QVariant&)> function;
    QVariant result;
    std::atomic<Place> place{Outside};
};

GenericThread::GenericThread(QObject* parent)
    : Thread(parent)
    , d(new GenericThreadPrivate)
{
    // The order of these two is the order of what happens on finished(): the deletion is scheduled
    // first, then the result is handed over.
    enableThreadDeleteOnFinished(true);
    connect(
        this, &QThread::finished, this, [this] { handOver(); }, Qt::DirectConnection);
}

GenericThread::~GenericThread()
{
    const auto stillRuns = [this] {
        return isRunning() && d->place != GenericThreadPrivate::Returned;
    };
    if (stillRuns()) {
        ThreadPrivate::logStillRunning();
        if (!stopAndWait(lastChanceMs) && stillRuns()) {
            terminate();
            ThreadPrivate::logTerminated();
            Thread::d->endedByDestructor = true;
            wait(lastChanceMs); // termination may be delayed; Qt aborts if the thread still runs
            return;
        }
    }
    // The deletion was scheduled before the emission, so the owner's event loop may get here while
    // the worker thread still reads the result.
    wait();
}

GenericThread* GenericThread::runInGenericThread(const std::function<void(QVariant&)>& function,
                                                 const QObject* receiver, const char* member)
{
    auto* const thread = new GenericThread;
    thread->d->function = function;
    connect(thread, SIGNAL(genericFinished(QVariant)), receiver, member);
    thread->start(QThread::InheritPriority);
    return thread;
}

GenericThread*
GenericThread::runInGenericThread(const std::function<QVariant()>& function, const QObject* context,
                                  const std::function<void(const QVariant&)>& receiver)
{
    auto* const thread = new GenericThread;
    thread->d->function = [function](QVariant& result) { result = function(); };
    if (receiver)
        connect(thread, &GenericThread::genericFinished, context, receiver);
    thread->start(QThread::InheritPriority);
    return thread;
}

void GenericThread::run()
{
    d->place = GenericThreadPrivate::InFunction;
    d->function(d->result);
    d->place = GenericThreadPrivate::Returned;
}

void GenericThread::handOver()
{
    const GenericThreadPrivate::Place place = d->place;
    if (place == GenericThreadPrivate::InFunction)
        return; // terminated
    if (place == GenericThreadPrivate::Outside && Thread::d->terminated)
        return;
    Q_EMIT genericFinished(d->result);
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Threadable.h"

#include "Thread.h"
#include "thread_p.h"

using namespace OrvaUtilsPrivate;

class OrvaUtilsPrivate::ThreadablePrivate
{
public:
    QPointer<Thread> thread;
    QList<QPointer<Threadable>> children;
};

namespace {

void appendOnce(QList<QPointer<Threadable>>& workers, Threadable* worker)
{
    const QPointer<Threadable> guarded(worker);
    if (!workers.contains(guarded))
        workers.append(guarded);
}

} // namespace

Threadable::Threadable(QObject* parent)
    : QObject(parent)
    , d(new ThreadablePrivate)
{ }

Threadable::~Threadable() = default;

// Binding

void Threadable::setThreadForInterrupt(Thread* thread)
{
    d->thread = thread;
    if (d->thread) {
        QList<QPointer<Threadable>>& workers = d->thread->d->workers;
        workers.removeAll(QPointer<Threadable>()); // otherwise dead ones would remain
        appendOnce(workers, this);
    }

    // By index: a subclass may add further sub-workers while it is bound.
    for (int i = 0; i < d->children.size();) {
        if (Threadable* const child = d->children.at(i)) {
            child->setThreadForInterrupt(thread);
            ++i;
        } else {
            d->children.removeAt(i);
        }
    }
}

void Threadable::addThreadableChild(Threadable& child)
{
    appendOnce(d->children, &child);
    if (d->thread)
        child.setThreadForInterrupt(d->thread);
}

// Forwarded to the bound thread

void Threadable::requestInterruption()
{
    if (d->thread)
        d->thread->requestInterruption();
}

bool Threadable::isInterruptionRequested() const
{
    return d->thread && d->thread->isInterruptionRequested();
}

void Threadable::emitThreadProgressMessages(const QString& progress_level1,
                                            const QString& progress_level2)
{
    if (d->thread)
        d->thread->emitThreadProgress(progress_level1, progress_level2);
}

void Threadable::emitThreadProgress(int done, int total, const QString& what)
{
    if (d->thread)
        Q_EMIT d->thread->progressed(done, total, what);
}

// Sleeping

void Threadable::sleep(unsigned long seconds) const
{
    QThread::sleep(seconds);
}

void Threadable::msleep(unsigned long ms) const
{
    QThread::msleep(ms);
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Threadable.h"

#include "Thread.h"

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
{ }

Threadable::~Threadable() = default;

// Binding

void Threadable::setThreadForInterrupt(Thread* thread)
{
    mThread = thread;
    if (mThread)
        appendOnce(mThread->mThreadables, this);

    // By index: a subclass may add further sub-workers while it is bound.
    for (int i = 0; i < mChildren.size();) {
        if (Threadable* const child = mChildren.at(i)) {
            child->setThreadForInterrupt(thread);
            ++i;
        } else {
            mChildren.removeAt(i);
        }
    }
}

void Threadable::addThreadableChild(Threadable& child)
{
    appendOnce(mChildren, &child);
    if (mThread)
        child.setThreadForInterrupt(mThread);
}

// What the bound thread does for its worker

void Threadable::requestInterruption()
{
    if (mThread)
        mThread->requestInterruption();
}

bool Threadable::isInterruptionRequested() const
{
    return mThread && mThread->isInterruptionRequested();
}

void Threadable::emitThreadProgressMessages(const QString& progress_level1,
                                            const QString& progress_level2)
{
    if (mThread)
        mThread->emitThreadProgress(progress_level1, progress_level2);
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

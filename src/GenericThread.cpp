// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GenericThread.h"

GenericThread::GenericThread(QObject* parent)
    : Thread(parent)
{
    // The order of these two is the order of what happens on finished(): the deletion is scheduled
    // first, then the result is handed over.
    enableThreadDeleteOnFinished(true);
    connect(
        this, &QThread::finished, this, [this] { Q_EMIT genericFinished(mResult); },
        Qt::DirectConnection);
}

GenericThread::~GenericThread()
{
    // The deletion was scheduled before the emission, so the owner's event loop may get here while
    // the worker thread still reads the result.
    wait();
}

GenericThread* GenericThread::runInGenericThread(const std::function<void(QVariant&)>& function,
                                                 const QObject* receiver, const char* member)
{
    auto* const thread = new GenericThread;
    thread->mFunction = function;
    connect(thread, SIGNAL(genericFinished(QVariant)), receiver, member);
    thread->start(QThread::InheritPriority);
    return thread;
}

void GenericThread::run()
{
    mFunction(mResult);
}

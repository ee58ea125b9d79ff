// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The state of a Thread, as far as its workers and GenericThread need it.

#ifndef ORVAUTILS_THREAD_P_H
#define ORVAUTILS_THREAD_P_H

#include <QList>
#include <QMutex>
#include <QPointer>
#include <QWaitCondition>

#include <atomic>

class Threadable;

namespace OrvaUtilsPrivate {

/// How long the guard and the destructor of GenericThread wait for a thread that was asked to stop.
constexpr unsigned long lastChanceMs = 3000;

class ThreadPrivate
{
public:
    /// Logs, on behalf of ~Thread(), that a destructor found the thread still running.
    static void logStillRunning();
    /// Logs, in the same way, that the destructor has ended it by force.
    static void logTerminated();

    mutable QMutex lock; // of cancelFlag; the wait condition needs one, too
    QWaitCondition condition;
    QList<QPointer<Threadable>> workers;
    bool cancelFlag = false;
    std::atomic<bool> terminated{false}; // terminate() was called
    bool endedByDestructor = false; // a subclass's destructor did and logged what ~Thread() would
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_THREAD_P_H

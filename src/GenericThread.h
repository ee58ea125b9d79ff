// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// GenericThread: one function on a thread of its own, and its result back in the caller's thread.

#ifndef ORVAUTILS_GENERICTHREAD_H
#define ORVAUTILS_GENERICTHREAD_H

#include "Thread.h"

#include <QVariant>

#include <functional>

/// A Thread that runs one function, hands the result over by a signal, and deletes itself.
///
/// \code
/// GenericThread::runInGenericThread(
///     [path](QVariant& result) { result = hashOfFolder(path); },
///     this, SLOT(showHash(QVariant)));
/// \endcode
///
/// \par Lifetime
/// When the function has returned, finished() is emitted on the worker thread, and there first
/// schedules the object's deletion and then makes it emit genericFinished(). The event loop of the
/// thread that owns the object carries the deletion out; without an event loop the object stays
/// until its parent goes. As the deletion may come while the signal is still being emitted, the
/// destructor waits for the thread.
class ORVAUTILS_EXPORT GenericThread : public Thread
{
    Q_OBJECT

public:
    /// A thread without a function, which deletes itself once it has finished. See Thread for
    /// \a parent and the guard. Started as it is, it fails as run() tells.
    explicit GenericThread(QObject* parent = nullptr);

    /// Waits, without time limit, until the thread is done: the function and the result are in use
    /// until genericFinished() has been emitted. A function that is still running therefore holds
    /// the destructor until it returns, and is never ended by force; let it ask
    /// QThread::currentThread()->isInterruptionRequested().
    ~GenericThread() override;

    /// Runs a copy of \a function on a new thread and hands its result to \a receiver.
    ///
    /// The function gets a reference to an invalid QVariant, to store its result in. After it has
    /// returned, \a member of \a receiver (a slot that takes a QVariant or nothing, written with
    /// SLOT()) is called with the result by the rules of Qt's automatic connections: in the thread
    /// of the receiver, once its event loop comes to it, and not at all if the receiver has been
    /// destroyed. A null receiver or a slot that does not exist gets Qt's warning; the function
    /// runs all the same. An empty function ends the program; see run().
    ///
    /// Returns the thread, started with the priority of the calling one. The caller does not own
    /// it: it is a child of the application object, is asked to stop when the application quits,
    /// and deletes itself. So the pointer is valid until control returns to the event loop; keep it
    /// longer in a QPointer only. To be called on the application object's thread.
    static GenericThread* runInGenericThread(const std::function<void(QVariant&)>& function,
                                             const QObject* receiver, const char* member);

Q_SIGNALS:
    /// The function has returned; \a result is what it stored, invalid if nothing. Emitted on the
    /// worker thread as it finishes.
    void genericFinished(QVariant result);

protected:
    /// Calls the function, on the worker thread. An empty function raises std::bad_function_call
    /// there, as any exception of a function does go through here: no thread catches it, so it ends
    /// the program.
    void run() override;

private:
    std::function<void(QVariant&)> mFunction;
    QVariant mResult;
};

#endif // ORVAUTILS_GENERICTHREAD_H

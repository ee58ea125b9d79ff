// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// GenericThread: runs one function on its own thread, and delivers the result to the caller's
// thread.

#ifndef ORVAUTILS_GENERICTHREAD_H
#define ORVAUTILS_GENERICTHREAD_H

#include "Thread.h"

#include <QVariant>

#include <functional>
#include <memory>

namespace OrvaUtilsPrivate {
class GenericThreadPrivate;
} // namespace OrvaUtilsPrivate

/// A Thread that runs one function, delivers the result by a signal, and deletes itself.
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
/// thread that owns the object carries the deletion out; without an event loop the object exists
/// until its parent is destroyed. As the deletion may happen while the signal is still being
/// emitted, the destructor waits for the emission to end.
class ORVAUTILS_EXPORT GenericThread : public Thread
{
    Q_OBJECT

public:
    /// A thread without a function, which deletes itself once it has finished. See Thread for
    /// \a parent and the guard. Started as it is, it fails as described for run().
    explicit GenericThread(QObject* parent = nullptr);

    /// Destroys the thread. When the function has returned, the destructor waits until
    /// genericFinished() has been emitted, and nothing is logged.
    ///
    /// Destroying it while the function is running is a misuse. It is logged at once with LogType
    /// 4, as ~Thread() does: "Thread Thread is still running on Destructor call! \n =>
    /// terminate()". Then the function is asked to return by requestInterruption(), and the
    /// destructor waits at most three seconds for it; the function can check
    /// QThread::currentThread()->isInterruptionRequested(). If it has not returned by then,
    /// terminate() ends it by force, and "Thread Terminated! #BRUTAL" is logged with LogType 4.
    /// genericFinished() is not emitted in that case.
    ///
    /// A function that cannot even be ended by force, because it never reaches a point where that
    /// is possible, gets three more seconds; then Qt aborts the program.
    ~GenericThread() override;

    /// Runs a copy of \a function on a new thread and passes its result to \a receiver.
    ///
    /// The function gets a reference to an invalid QVariant in which to store its result. After it
    /// has returned, \a member of \a receiver (a slot that takes a QVariant or nothing, or a
    /// signal, written with SLOT() or SIGNAL()) is called with the result by the rules of Qt's
    /// automatic connections: in the thread of the receiver, once its event loop gets to it, and
    /// not at all if the receiver has been destroyed. A null receiver or a slot that does not exist
    /// gets Qt's warning; the function still runs. An empty function ends the program; see run().
    ///
    /// Returns the thread, started with the priority of the calling one. The caller does not own
    /// it: it is a child of the application object, is asked to stop when the application's event
    /// loop quits, and deletes itself. So the pointer is valid until control returns to the event
    /// loop; keep it longer in a QPointer only. To be called on the application object's thread.
    static GenericThread* runInGenericThread(const std::function<void(QVariant&)>& function,
                                             const QObject* receiver, const char* member);

    /// Runs a copy of \a function on a new thread, and passes what it returns to \a receiver, a
    /// function that is called in the thread of \a context:
    ///
    /// \code
    /// GenericThread::runInGenericThread([path] { return hashOfFolder(path); }, this,
    ///                                   [this](const QVariant& hash) { showHash(hash); });
    /// \endcode
    ///
    /// Any callable without arguments whose result converts to QVariant can be passed. The receiver
    /// is called once the event loop of the thread of \a context gets to it, and not at all if
    /// \a context has been destroyed before: it may use what the context owns. Without a context,
    /// which Qt warns of, and without a receiver the function still runs. An empty function ends
    /// the program; see run().
    ///
    /// Returns the thread, for which everything said for the other overload applies.
    static GenericThread* runInGenericThread(const std::function<QVariant()>& function,
                                             const QObject* context,
                                             const std::function<void(const QVariant&)>& receiver);

Q_SIGNALS:
    /// The function has returned; \a result is what it stored, invalid if nothing. Emitted on the
    /// worker thread as it finishes, and not at all after the function was ended by force.
    void genericFinished(QVariant result);

protected:
    /// Calls the function, on the worker thread. An empty function raises std::bad_function_call
    /// there. Like any exception of a function, it passes through here uncaught and ends the
    /// program.
    void run() override;

private:
    void handOver();

    const std::unique_ptr<OrvaUtilsPrivate::GenericThreadPrivate> d;
};

#endif // ORVAUTILS_GENERICTHREAD_H

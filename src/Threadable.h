// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Threadable: work that runs on a Thread without being one, and is told when to stop.

#ifndef ORVAUTILS_THREADABLE_H
#define ORVAUTILS_THREADABLE_H

#include "orvautils_export.h"

#include <QObject>

#include <memory>

class Thread;

namespace OrvaUtilsPrivate {
class ThreadablePrivate;
} // namespace OrvaUtilsPrivate

/// A worker that is bound to a Thread: it passes interruption requests, queries for them and its
/// progress on to that thread, and its binding to its sub-workers.
///
/// \code
/// void PhotoImporter::importAll() // called from Thread::run()
/// {
///     for (int i = 0; i < mFiles.size() && !isInterruptionRequested(); ++i) {
///         emitThreadProgressMessages(tr("Photographs"), mFiles.at(i));
///         importOne(mFiles.at(i));
///     }
/// }
/// \endcode
///
/// A worker that was never bound, or whose thread has been destroyed, still works: it is never
/// interrupted and its progress is not reported. So the same class can be used with and without a
/// thread.
///
/// \par Ownership
/// Neither the thread nor the sub-workers are owned; both are watched and count as absent once they
/// have been destroyed.
///
/// \par Threads
/// Binding and adding sub-workers must be done on the thread that owns the objects, before the work
/// starts. requestInterruption(), isInterruptionRequested(), emitThreadProgressMessages() and
/// emitThreadProgress() may be called from any thread, in general the bound one, as long as the
/// binding does not change and the bound thread's object is not destroyed meanwhile.
class ORVAUTILS_EXPORT Threadable : public QObject
{
    Q_OBJECT

public:
    /// A worker without a thread and without sub-workers, owned by \a parent.
    explicit Threadable(QObject* parent = nullptr);
    /// Does not affect its sub-workers; threads and workers that refer to this one treat it as
    /// absent from now on.
    ~Threadable() override;

    /// Binds this worker to \a thread, and also every sub-worker that still exists, through all
    /// levels; sub-workers that have been destroyed are removed from the list. An earlier binding
    /// is replaced, but the worker stays in the earlier thread's list. The thread must not be null;
    /// this is not checked.
    ///
    /// Subclasses that override it call this one.
    virtual void setThreadForInterrupt(Thread* thread);

    /// Makes \a child a sub-worker of this one; adding it twice leaves it there once. If this
    /// worker is bound the child is bound to the same thread at once, otherwise together with this
    /// worker. A worker must not become a sub-worker of itself, at any level; this is not checked.
    void addThreadableChild(Threadable& child);

    /// Asks the bound thread to stop (Thread::requestInterruption()), and with it every worker that
    /// is bound to it. Without a thread nothing happens.
    void requestInterruption();

    /// Whether the bound thread's interruption has been requested; false without a thread.
    /// Long-running work checks this between its steps, and returns early.
    bool isInterruptionRequested() const;

    /// Emits the bound thread's Thread::progressThread() with \a progress_level1 and
    /// \a progress_level2, on the calling thread.
    /// Without a thread nothing happens.
    void emitThreadProgressMessages(const QString& progress_level1, const QString& progress_level2);

    /// Emits the bound thread's Thread::progressed() with \a done, \a total and \a what, on the
    /// calling thread. Without a thread nothing happens.
    ///
    /// \code
    /// for (int i = 0; i < mFiles.size() && !isInterruptionRequested(); ++i) {
    ///     emitThreadProgress(i, mFiles.size(), mFiles.at(i)); // "3 of 40" for the host's bar
    ///     importOne(mFiles.at(i));
    /// }
    /// \endcode
    void emitThreadProgress(int done, int total, const QString& what);

    /// Puts the *calling* thread to sleep, whatever thread this worker is bound to.
    void sleep(unsigned long seconds) const;

    /// Puts the *calling* thread to sleep for \a ms milliseconds, whatever thread this worker is
    /// bound to.
    void msleep(unsigned long ms) const;

private:
    const std::unique_ptr<OrvaUtilsPrivate::ThreadablePrivate> d;
};

#endif // ORVAUTILS_THREADABLE_H

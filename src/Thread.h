// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Thread: a worker thread that can be asked to stop, reports progress, and is stopped before its
// owner is destroyed or the application quits.

#ifndef ORVAUTILS_THREAD_H
#define ORVAUTILS_THREAD_H

#include "orvautils_export.h"

#include <QList>
#include <QPointer>
#include <QThread>

#include <chrono>
#include <memory>

class Threadable;

namespace OrvaUtilsPrivate {
class ThreadPrivate;
} // namespace OrvaUtilsPrivate

/// A QThread with cooperative cancellation, progress and a guard that stops it in time.
///
/// Derive from it and implement run(), or bind Threadable workers to it and call them from run():
///
/// \code
/// class ImportThread : public Thread
/// {
/// public:
///     explicit ImportThread(PhotoImporter& importer)
///         : mImporter(importer)
///     {
///         addThreadableChild(importer); // a Threadable: it now sees this thread's interruption
///     }
///
/// protected:
///     void run() override { mImporter.importAll(); }
///
/// private:
///     PhotoImporter& mImporter;
/// };
/// \endcode
///
/// There are two independent ways to ask a thread to stop:
/// - the *interruption request* of Qt: requestInterruption(), read with isInterruptionRequested();
///   the guard, stopAndWait() and Threadable use this one;
/// - the *cancel flag*: setCancelFlag(), read with isCancelRequested(). The library never sets it;
///   it is a channel between the host's controller and its worker.
///
/// \par The guard
/// A thread with a parent is tied to the parent's QObject::destroyed() signal; a thread without one
/// becomes a child of the application object and is tied to QCoreApplication::aboutToQuit(). When
/// that signal comes, lastChanceBeforeDestroyed() asks the thread to stop and waits at most three
/// seconds for it. A thread with a parent of its own is not tied to aboutToQuit(): when the
/// application quits while the parent lives, nothing asks the thread to stop.
///
/// \par Threads
/// The object belongs to the thread that created it, as every QObject; a Thread without a parent
/// must be created on the application object's thread. Unless a function says otherwise it is
/// called on the owning thread. The cancel flag is the only state that is shared between threads.
class ORVAUTILS_EXPORT Thread : public QThread
{
    Q_OBJECT

public:
    /// A thread that is not started yet, owned by \a parent.
    ///
    /// Without a parent the application object becomes the parent; it must exist, which is not
    /// checked. In both cases the guard described above is set up, and the thread's own finished()
    /// signal is connected to onFinished().
    explicit Thread(QObject* parent = nullptr);

    /// Destroys the thread. Nothing is logged unless the thread is running.
    ///
    /// Destroying a running thread is a misuse. It is logged with LogType 4, as "Thread Thread is
    /// still running on Destructor call! \n => terminate()" (the class name is always "Thread": the
    /// subclass has already been destroyed); then terminate() ends the thread by force, and "Thread
    /// Terminated! #BRUTAL" is logged with LogType 4.
    ///
    /// Deliberately the destructor does *not* wait after that. A forced end takes effect only when
    /// the thread next reaches a point where it may be ended, and Qt aborts the program when a
    /// QThread is destroyed before that. To keep the program running, call stopAndWait(), or
    /// terminate() and wait(), before the object is destroyed.
    ~Thread() override;

    /// Whether the cancel flag is set. May be called from any thread.
    bool isCancelRequested() const;

    /// Asks the thread to stop: wakes all threads that wait in mainWaitForCondition(), then
    /// requests the interruption that QThread::isInterruptionRequested() reports, then wakes them
    /// once more, for those that checked for the request before it was made. Qt ignores the request
    /// unless the thread is running. May be called from any thread.
    ///
    /// \warning A worker in `while (!isInterruptionRequested()) mainWaitForCondition();` can still
    /// miss it, by beginning to wait between the request and the last wake. stopAndWait() wakes it
    /// again; a caller that does not wait calls mainWake() until the worker has reacted.
    ///
    /// The cancel flag is not touched, and the bound workers are not visited: they query this
    /// thread themselves.
    virtual void requestInterruption();

    /// Emits progressThread() with \a progress_level1 and \a progress_level2, on the calling
    /// thread. May be called from any thread; in general it is the worker's.
    void emitThreadProgress(const QString& progress_level1, const QString& progress_level2);

    /// With true the object deletes itself, by deleteLater(), once the thread has finished; calling
    /// it twice is the same as calling it once. With false it no longer does so.
    void enableThreadDeleteOnFinished(bool enabled);

    /// Binds \a child to this thread: calls its Threadable::setThreadForInterrupt() with this
    /// thread. The child is not owned. Binding it twice has no further effect.
    void addThreadableChild(Threadable& child);

    /// Wakes all threads that wait in mainWaitForCondition(). May be called from any thread.
    ///
    /// \warning The wake is not remembered. One that comes before the other side has begun to wait
    /// is lost, because no lock is taken and no state is kept: that wait goes on until the next
    /// wake. The caller should therefore wake again until the other side has shown that it has
    /// continued.
    void mainWake();

    /// Blocks the calling thread, without time limit, until mainWake() or requestInterruption() is
    /// called by another thread.
    ///
    /// \warning A wake that came before this call is lost and does not end the wait; see
    /// mainWake(). An interruption that was requested before does not end it either: check
    /// isInterruptionRequested() first, and let the requesting side wake again.
    ///
    /// The lock of the cancel flag is released during the wait, so isCancelRequested() and
    /// setCancelFlag() do not block meanwhile.
    void mainWaitForCondition();

    /// Calls requestInterruption() (the most derived one) and waits for the thread to finish for
    /// at most \a ms milliseconds. Meanwhile it repeatedly wakes the threads that wait in
    /// mainWaitForCondition(), so that a worker that missed the first wake sees the request, too.
    ///
    /// Returns whether the thread has finished; one that was never started or is already done
    /// counts as finished. With 0 it makes the request and does not wait: true only for a thread
    /// that has finished. Called on the thread that is to stop, it returns false at once, with a
    /// warning from Qt.
    bool stopAndWait(unsigned long ms);

    /// The same with a duration; a negative one counts as 0, and more than 24 days as no limit:
    ///
    /// \code
    /// using namespace std::chrono_literals;
    /// if (!importThread.stopAndWait(3s))
    ///     showBusyCursor();
    /// \endcode
    bool stopAndWait(std::chrono::milliseconds timeout);

    /// Waits for all of \a threads to finish, for at most \a timeout in all, counted as by
    /// stopAndWait(). Returns whether all have finished; threads that were never started, that are
    /// done and that have been destroyed count as finished.
    ///
    /// No thread is asked to stop. To stop them, ask all of them first, so that they stop in
    /// parallel; threads that were asked are woken repeatedly, as by stopAndWait():
    ///
    /// \code
    /// for (Thread* thread : {importThread, hashThread})
    ///     thread->requestInterruption();
    /// const bool allStopped = Thread::waitForAll({importThread, hashThread}, 3s);
    /// \endcode
    ///
    /// To be called on the thread that owns the objects, and not on one of \a threads. Objects that
    /// delete themselves do so in the event loop, and therefore not during the call.
    static bool waitForAll(const QList<QPointer<Thread>>& threads,
                           std::chrono::milliseconds timeout = std::chrono::milliseconds::max());

    /// The same for any container of pointers to threads, of any class derived from Thread:
    ///
    /// \code
    /// QVector<ImportThread*> threads;
    /// ...
    /// Thread::waitForAll(threads, 3s);
    /// \endcode
    template <typename Container>
    static bool waitForAll(const Container& threads,
                           std::chrono::milliseconds timeout = std::chrono::milliseconds::max())
    {
        QList<QPointer<Thread>> group;
        for (const auto& thread : threads)
            group.append(QPointer<Thread>(static_cast<Thread*>(thread)));
        return waitForAll(group, timeout);
    }

public Q_SLOTS:
    /// Sets or clears the cancel flag, which is initially clear. May be called from any thread.
    void setCancelFlag(bool b);

    /// Called after the thread has finished, for subclasses; does nothing here. It is connected to
    /// finished() and therefore runs on the thread that owns the object, once its event loop gets
    /// to it.
    virtual void onFinished();

    /// Called by the guard before the owner is destroyed or the application quits. A thread that is
    /// not running is left alone, and false is returned.
    ///
    /// Otherwise it is logged with LogType 1, as "<class name> Thread is still running on
    /// lastChanceBeforeDestroyed call! \n => stopAndWait(3000)"; then requestInterruption() is
    /// called, and the call waits for the thread to finish for at most 3000 milliseconds. Returns
    /// whether it has finished. A thread that does not stop in time is not ended by force here.
    bool lastChanceBeforeDestroyed();

    /// Ends the thread by force, wherever it is in its work; see QThread::terminate() for the
    /// dangers. Takes effect only when the thread reaches a point where it may be ended; use wait()
    /// to find out when.
    ///
    /// An object that was to delete itself on finishing (enableThreadDeleteOnFinished()) stays
    /// alive: whoever ends a thread by force is responsible for deleting it.
    void terminate();

Q_SIGNALS:
    /// How far the work has come, in two texts: \a progress_level1 for the whole,
    /// \a progress_level2 for the current step. Emitted by emitThreadProgress() and
    /// Threadable::emitThreadProgressMessages() on the thread that calls them.
    void progressThread(const QString& progress_level1, const QString& progress_level2);

    /// How far the work has come, in numbers: \a done of \a total steps; \a what is the current
    /// item, a file for example. A total of 0 or less means that it is not known yet. Emitted by
    /// Threadable::emitThreadProgress() on the thread that calls it, and by run() itself:
    ///
    /// \code
    /// Q_EMIT progressed(3, 40, path); // in run()
    ///
    /// connect(&thread, &Thread::progressed, &dialog, [&](int done, int total, const QString& what)
    /// {
    ///     dialog.setMaximum(total); // a QProgressDialog: 0 shows that it is busy
    ///     dialog.setValue(done);
    ///     dialog.setLabelText(what);
    /// });
    /// \endcode
    ///
    /// The library never emits it in addition to progressThread(): a worker that also serves older
    /// hosts emits both.
    void progressed(int done, int total, const QString& what);

protected:
    /// The workers that were bound to this thread, in the order of binding, each once. One that has
    /// been destroyed appears as null until the next worker is bound. For subclasses that visit
    /// their workers, on the thread that owns the object.
    const QList<QPointer<Threadable>>& threadables() const;

private:
    friend class GenericThread;
    friend class Threadable;

    const std::unique_ptr<OrvaUtilsPrivate::ThreadPrivate> d;
};

#endif // ORVAUTILS_THREAD_H

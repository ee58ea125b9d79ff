// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ImageImporter.h"

#include "Thread.h"
#include "pictureimport_p.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMutex>
#include <QPointer>
#include <QWaitCondition>

#include <deque>
#include <vector>

namespace OrvaUtilsPrivate {

namespace {

/// The memory for pictures that are being imported, in bytes. Two photographs of twelve megapixels
/// that are scaled down fit into it; a picture that does not fit is imported alone.
const qint64 mostBytes = Q_INT64_C(96) * 1024 * 1024;

struct Job
{
    QString src;
    QString dst;
    ImageImport how;
};

struct Done
{
    int index = 0;
    ImageImportResult result;
};

/// The data that the importer and its threads share, protected by a mutex.
class ImportQueue
{
public:
    explicit ImportQueue(QObject* receiver)
        : mReceiver(receiver)
    { }

    int add(const Job& job);
    int count() const;

    /// Waits for a job. Returns false if the thread is to end.
    bool next(Job* job, int* index);

    /// Takes memory for a job, waiting while others use too much. Returns false if the jobs are
    /// cancelled.
    bool take(qint64 bytes);

    /// Releases memory.
    void release(qint64 bytes);

    void report(const Done& done);
    bool takeReport(Done* done);

    void cancel();
    bool isCancelled() const;

    /// Makes the threads end as soon as no job is left.
    void close();
    void reopen();

private:
    QObject* const mReceiver;
    mutable QMutex mLock;
    QWaitCondition mHasJobs;
    QWaitCondition mHasMemory;
    std::vector<Job> mJobs;
    int mNext = 0;
    std::deque<Done> mDone;
    qint64 mTaken = 0;
    quint64 mLastTicket = 0; // memory is granted in the order of the requests
    quint64 mServedTicket = 0;
    bool mIsCancelled = false;
    bool mIsClosed = false;
};

int ImportQueue::add(const Job& job)
{
    const QMutexLocker locker(&mLock);
    mJobs.push_back(job);
    mHasJobs.wakeOne();
    return int(mJobs.size()) - 1;
}

int ImportQueue::count() const
{
    const QMutexLocker locker(&mLock);
    return int(mJobs.size());
}

bool ImportQueue::next(Job* job, int* index)
{
    const QMutexLocker locker(&mLock);
    while (mNext == int(mJobs.size())) {
        if (mIsClosed)
            return false;
        mHasJobs.wait(&mLock);
    }
    *index = mNext++;
    *job = mJobs[std::size_t(*index)];
    return true;
}

bool ImportQueue::take(qint64 bytes)
{
    const QMutexLocker locker(&mLock);
    const quint64 ticket = mLastTicket++;
    while (mServedTicket != ticket || (mTaken > 0 && mTaken + bytes > mostBytes && !mIsCancelled))
        mHasMemory.wait(&mLock);
    ++mServedTicket;
    mTaken += bytes;
    mHasMemory.wakeAll();
    return !mIsCancelled;
}

void ImportQueue::release(qint64 bytes)
{
    const QMutexLocker locker(&mLock);
    mTaken -= bytes;
    mHasMemory.wakeAll();
}

void ImportQueue::report(const Done& done)
{
    const QMutexLocker locker(&mLock);
    mDone.push_back(done);
    // Each report has its own event: while one is being handled, a receiver may run a nested event
    // loop, which only further events reach.
    QCoreApplication::postEvent(mReceiver, new QEvent(QEvent::User));
}

bool ImportQueue::takeReport(Done* done)
{
    const QMutexLocker locker(&mLock);
    if (mDone.empty())
        return false;
    *done = mDone.front();
    mDone.pop_front();
    return true;
}

void ImportQueue::cancel()
{
    const QMutexLocker locker(&mLock);
    mIsCancelled = true;
    mHasMemory.wakeAll();
}

bool ImportQueue::isCancelled() const
{
    const QMutexLocker locker(&mLock);
    return mIsCancelled;
}

void ImportQueue::close()
{
    const QMutexLocker locker(&mLock);
    mIsClosed = true;
    mHasJobs.wakeAll();
}

void ImportQueue::reopen()
{
    const QMutexLocker locker(&mLock);
    mIsClosed = false;
    mIsCancelled = false;
}

/// One job's share of the memory, released when the job is done.
class JobControl : public ImportControl
{
public:
    explicit JobControl(ImportQueue* queue)
        : mQueue(queue)
    { }
    ~JobControl() override
    {
        if (mTaken > 0)
            mQueue->release(mTaken);
    }

    bool mayTake(qint64 bytes) override
    {
        mTaken = bytes;
        return mQueue->take(bytes);
    }
    bool isCancelled() const override { return mQueue->isCancelled(); }

private:
    Q_DISABLE_COPY(JobControl)

    ImportQueue* const mQueue;
    qint64 mTaken = 0;
};

class ImportThread : public Thread
{
public:
    ImportThread(ImportQueue* queue, QObject* parent)
        : Thread(parent)
        , mQueue(queue)
    { }

protected:
    void run() override
    {
        Job job;
        int index = 0;
        while (mQueue->next(&job, &index)) {
            Done done;
            done.index = index;
            {
                JobControl control(mQueue);
                done.result = importPicture(job.src, job.dst, job.how, &control);
            }
            mQueue->report(done);
        }
    }

private:
    ImportQueue* const mQueue;
};

} // namespace

class ImageImporterPrivate
{
public:
    explicit ImageImporterPrivate(ImageImporter* importer)
        : mImporter(importer)
        , mQueue(importer)
    { }

    /// Starts as many threads as are wanted and have something to do.
    void startThreads();
    /// Ends all threads and waits for them.
    void endThreads();
    void stop();

    ImageImporter* const mImporter;
    ImportQueue mQueue;
    std::vector<std::unique_ptr<ImportThread>> mThreads;
    bool mIsRunning = false;
    int mWantedThreads = 1;
    int mFirst = 0; // index of this run
    int mDone = 0; // in this run
};

void ImageImporterPrivate::startThreads()
{
    const int jobs = mQueue.count() - mFirst - mDone;
    const int wanted = qMin(mWantedThreads, jobs);
    while (int(mThreads.size()) < wanted) {
        mThreads.push_back(std::make_unique<ImportThread>(&mQueue, mImporter));
        mThreads.back()->start();
    }
}

void ImageImporterPrivate::endThreads()
{
    mQueue.close();
    for (const auto& thread : mThreads)
        thread->wait();
    mThreads.clear();
}

void ImageImporterPrivate::stop()
{
    mQueue.cancel();
    endThreads();
}

} // namespace OrvaUtilsPrivate

using namespace OrvaUtilsPrivate;

ImageImporter::ImageImporter(QObject* parent)
    : QObject(parent)
    , d(new ImageImporterPrivate(this))
{
    qRegisterMetaType<ImageImportResult>();
    if (QCoreApplication::instance()) {
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
                [this] { d->stop(); });
    }
}

ImageImporter::~ImageImporter()
{
    d->stop();
}

int ImageImporter::add(const QString& src, const QString& dst, const ImageImport& how)
{
    // A thread may finish the job before this function returns; imported() is emitted only later.
    const int index = d->mQueue.add({src, dst, how});
    if (d->mIsRunning)
        d->startThreads();
    return index;
}

int ImageImporter::count() const
{
    return d->mQueue.count();
}

bool ImageImporter::isRunning() const
{
    return d->mIsRunning;
}

void ImageImporter::start(int threads)
{
    if (d->mIsRunning)
        return;
    d->mIsRunning = true;
    d->mFirst += d->mDone;
    d->mDone = 0;
    d->mWantedThreads = threads > 0 ? threads : qMax(1, QThread::idealThreadCount());
    d->mQueue.reopen();
    d->startThreads();
    // Even if there is nothing to do, so that finished() is emitted.
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void ImageImporter::cancel()
{
    if (d->mIsRunning)
        d->mQueue.cancel();
}

void ImageImporter::customEvent(QEvent* event)
{
    Q_UNUSED(event)
    // A receiver may delete this object, add pictures, or run a nested event loop.
    const QPointer<ImageImporter> self(this);
    Done done;
    while (d->mQueue.takeReport(&done)) {
        const int count = ++d->mDone;
        const int total = d->mQueue.count() - d->mFirst;
        Q_EMIT imported(done.index, done.result);
        // If the receiver ran an event loop, further results may have been reported meanwhile.
        if (self && count == d->mDone)
            Q_EMIT progress(count, total);
        if (!self)
            return;
    }
    if (!d->mIsRunning || d->mDone < d->mQueue.count() - d->mFirst)
        return;
    d->endThreads();
    d->mIsRunning = false;
    Q_EMIT finished(!d->mQueue.isCancelled());
}

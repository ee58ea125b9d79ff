// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "treetask_p.h"

#include <QCoreApplication>
#include <QDebug>

namespace OrvaUtilsPrivate {

namespace {

/// The shortest time between two reports, in milliseconds.
const qint64 reportInterval = 50;

} // namespace

TreeTask::TreeTask(FileUtils::TreeObserver observer, QString* error)
    : mObserver(std::move(observer))
    , mError(error)
{ }

void TreeTask::setTotals(int files, qint64 bytes)
{
    mProgress.totalFiles = files;
    mProgress.totalBytes = bytes;
}

bool TreeTask::advance(const QString& path, qint64 bytes)
{
    if (!mObserver || mIsCancelled)
        return !mIsCancelled;
    ++mProgress.files;
    mProgress.bytes += bytes;
    mProgress.path = path;
    if (mSinceReport.isValid() && mSinceReport.elapsed() < reportInterval)
        return true;
    return report();
}

bool TreeTask::finish()
{
    if (mObserver) {
        mProgress.totalFiles = mProgress.files;
        mProgress.totalBytes = mProgress.bytes;
        mObserver(mProgress);
    }
    return true;
}

bool TreeTask::report()
{
    mIsCancelled = !mObserver(mProgress);
    mSinceReport.start();
    return !mIsCancelled
        || fail(QT_TRANSLATE_NOOP("FileUtils", "The operation was cancelled"), QString());
}

bool TreeTask::fail(const char* text, const QString& path, const QString& reason)
{
    if (mError && !mHasFailed) {
        *mError = QCoreApplication::translate("FileUtils", text);
        // Also for an empty path.
        if (mError->contains(QLatin1String("%1")))
            *mError = mError->arg(path);
        if (!reason.isEmpty())
            *mError += QStringLiteral(" (%1)").arg(reason);
    }
    mHasFailed = true;
    return false;
}

} // namespace OrvaUtilsPrivate

QDebug operator<<(QDebug debug, const FileUtils::TreeProgress& progress)
{
    const QDebugStateSaver saver(debug);
    const auto total = [](qint64 number) {
        return number < 0 ? QByteArray("?") : QByteArray::number(number);
    };
    debug.nospace() << "TreeProgress(" << progress.files << " of "
                    << total(progress.totalFiles).constData() << " files, " << progress.bytes
                    << " of " << total(progress.totalBytes).constData() << " bytes, "
                    << progress.path << ')';
    return debug;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TreeTask: the progress, the cancellation and the first error of an operation on a folder tree.

#ifndef ORVAUTILS_TREETASK_P_H
#define ORVAUTILS_TREETASK_P_H

#include "FileUtils.h"

#include <QElapsedTimer>

namespace OrvaUtilsPrivate {

class TreeTask
{
public:
    /// A task without an observer.
    TreeTask() = default;

    /// A task that reports its progress to \a observer and its first error in \a error; both may be
    /// null.
    TreeTask(FileUtils::TreeObserver observer, QString* error);

    bool isObserved() const { return bool(mObserver); }

    /// Limits the task to the entries of the source for whose absolute paths \a filter returns
    /// true.
    void setFilter(std::function<bool(const QString& path)> filter) { mFilter = std::move(filter); }

    bool isWanted(const QString& path) const { return !mFilter || mFilter(path); }

    /// Sets the totals to report; -1 for a number that is not known.
    void setTotals(int files, qint64 bytes);

    /// Counts a file. Returns false if the operation is to end.
    bool advance(const QString& path, qint64 bytes);

    /// Reports the end, which is too late to cancel anything. Returns true.
    bool finish();

    bool isCancelled() const { return mIsCancelled; }

    /// Keeps the first reason for a failure, translated from \a text with its arguments. Returns
    /// false.
    bool fail(const char* text, const QString& path, const QString& reason = QString());

private:
    bool report();

    FileUtils::TreeObserver mObserver;
    std::function<bool(const QString& path)> mFilter;
    QString* mError = nullptr;
    bool mHasFailed = false;
    bool mIsCancelled = false;
    FileUtils::TreeProgress mProgress;
    QElapsedTimer mSinceReport;
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_TREETASK_P_H

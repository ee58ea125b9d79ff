// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// StreamedDocument: helpers that show that a large document is streamed rather than built in
// memory.

#ifndef STREAMEDDOCUMENT_H
#define STREAMEDDOCUMENT_H

#include <QIODevice>
#include <QVariant>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

/// A device that discards what is written and keeps only the sizes.
class CountingDevice : public QIODevice
{
public:
    CountingDevice() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

    bool isSequential() const override { return true; }
    qint64 total() const { return mTotal; } ///< bytes
    qint64 largest() const { return mLargest; } ///< the largest single write, in bytes

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override
    {
        mTotal += size;
        mLargest = std::max(mLargest, size);
        return size;
    }

private:
    qint64 mTotal = 0;
    qint64 mLargest = 0;
};

/// A list whose literal has more than \a size bytes but which uses hardly any memory: all elements
/// share one text.
inline QVariantList listOfSize(int size)
{
    const QVariant text(QString(9999, QLatin1Char('x')));
    QVariantList list;
    for (int i = 0; i <= size / 10000; ++i)
        list.append(text);
    return list;
}

/// The peak memory of this process in KiB, or -1 where it is unknown. Sanitizers hold freed memory
/// back, so that the figure means nothing there.
inline qint64 peakMemory()
{
#if !defined(Q_OS_LINUX) || defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)          \
    || QT_HAS_FEATURE(address_sanitizer) || QT_HAS_FEATURE(thread_sanitizer)
    return -1;
#else
    rusage usage{};
    return getrusage(RUSAGE_SELF, &usage) == 0 ? qint64(usage.ru_maxrss) : -1;
#endif
}

#endif // STREAMEDDOCUMENT_H

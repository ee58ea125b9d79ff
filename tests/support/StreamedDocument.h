// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// StreamedDocument: what shows that a large document is written bit by bit, and not built first.

#ifndef STREAMEDDOCUMENT_H
#define STREAMEDDOCUMENT_H

#include <QIODevice>
#include <QVariant>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

/// A device that forgets what is written to it, but for the sizes.
class CountingDevice : public QIODevice
{
public:
    CountingDevice() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

    bool isSequential() const override { return true; }
    qint64 total() const { return mTotal; } ///< bytes
    qint64 largest() const { return mLargest; } ///< bytes that came at once

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

/// A list whose literal has more than \a size bytes, though it needs next to no memory itself: all
/// its elements are one text.
inline QVariantList listOfSize(int size)
{
    const QVariant text(QString(9999, QLatin1Char('x')));
    QVariantList list;
    for (int i = 0; i <= size / 10000; ++i)
        list.append(text);
    return list;
}

/// The most memory in KiB that this process has had so far, or -1 where nobody tells. Sanitizers
/// keep freed memory back, so that the figure says nothing there.
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

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Devices with unusual behaviour: a sequential one, one that records where it is written to, and
// one that fails once.

#ifndef ODDDEVICES_H
#define ODDDEVICES_H

#include <QBuffer>
#include <QByteArray>
#include <QPair>
#include <QVector>

#include <algorithm>

/// A sequential device.
class SequentialDevice : public QIODevice
{
public:
    QByteArray content;

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override
    {
        return content.size() - mRead + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const QByteArray part = content.mid(mRead, int(size));
        std::copy(part.begin(), part.end(), data);
        mRead += int(part.size());
        return part.size();
    }
    qint64 writeData(const char* data, qint64 size) override
    {
        content.append(data, int(size));
        return size;
    }

private:
    int mRead = 0;
};

/// A buffer that records where it is written to and fails after a number of bytes.
class WatchedBuffer : public QBuffer
{
public:
    using QBuffer::QBuffer;

    QVector<QPair<qint64, qint64>> writes; // position, size
    qint64 capacity = -1; // the bytes that it still accepts; unlimited if negative
    bool failsOnce = false; // whether it accepts data again after it has failed

protected:
    qint64 writeData(const char* data, qint64 size) override
    {
        writes.append({pos(), size});
        if (capacity < 0)
            return QBuffer::writeData(data, size);
        const qint64 taken = qMin(size, capacity);
        capacity -= taken;
        const bool fails = taken < size;
        if (fails && failsOnce)
            capacity = -1;
        if (taken == 0)
            return -1;
        return QBuffer::writeData(data, taken);
    }
};

/// A buffer that fails once, at a given read or seek.
class FaultyBuffer : public QBuffer
{
public:
    FaultyBuffer(const QByteArray& content, int failing)
    {
        setData(content);
        open(QIODevice::ReadWrite);
        mCalls = 0;
        mFailing = failing;
    }

    bool hasFailed() const { return mCalls > mFailing; }

    bool seek(qint64 position) override { return !failsNow() && QBuffer::seek(position); }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        return failsNow() ? -1 : QBuffer::readData(data, size);
    }

private:
    bool failsNow() { return mCalls++ == mFailing; }

    int mCalls = 0;
    int mFailing = -1;
};

#endif // ODDDEVICES_H

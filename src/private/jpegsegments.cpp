// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "jpegsegments_p.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <cstring>

namespace OrvaUtilsPrivate {

namespace {

const int headSize = 4; // marker and length

quint16 bigEndian16(const char* bytes)
{
    return qFromBigEndian<quint16>(reinterpret_cast<const uchar*>(bytes));
}

/// Whether a byte after 0xFF makes a marker that begins a segment or ends the image. The others are
/// scan data, fill bytes and stand-alone markers.
bool isMarkerByte(char byte)
{
    const auto code = static_cast<quint8>(byte);
    const bool isRestart = code >= 0xD0 && code <= 0xD7;
    const bool isTemporary = code == 0x01;
    return code != 0x00 && code != 0xFF && !isRestart && !isTemporary;
}

/// The first byte that makes a marker, or \a end if there is none. \a isBehindFF says whether the
/// byte before \a bytes was 0xFF, and is updated for the next call.
const char* findMarkerByte(const char* bytes, const char* end, bool* isBehindFF)
{
    while (bytes != end) {
        if (*isBehindFF && isMarkerByte(*bytes))
            return bytes;
        *isBehindFF = *bytes == '\xFF';
        ++bytes;
        if (*isBehindFF)
            continue;
        const void* const found = std::memchr(bytes, 0xFF, static_cast<std::size_t>(end - bytes));
        bytes = found ? static_cast<const char*>(found) : end;
    }
    return end;
}

} // namespace

JpegSegments::JpegSegments(QIODevice* device, Markers markers)
    : mDevice(device)
    , mMarkers(markers)
    , mStart(device->pos())
    , mSize(device->isSequential() ? 0 : device->size())
{ }

bool JpegSegments::begin()
{
    char bytes[2];
    return readRaw(bytes, 2) == 2 && bigEndian16(bytes) == JpegMarker::StartOfImage && readHead();
}

bool JpegSegments::next()
{
    return !isBroken() && skipPayload() && readHead();
}

int JpegSegments::size() const
{
    const qint64 available = mSize - mStart - payloadPosition();
    return static_cast<int>(qBound(Q_INT64_C(0), available, qint64(mClaimedSize)));
}

bool JpegSegments::startsWith(const char* name)
{
    const int size = static_cast<int>(std::strlen(name));
    if (mName.size() < size)
        mName = read(size);
    return mName.startsWith(name);
}

QByteArray JpegSegments::read(int size)
{
    QByteArray bytes = mName;
    mName.clear();
    qint64 wanted =
        qMin(qint64(size) - bytes.size(), mPosition + headSize + mClaimedSize - mReadPosition);
    if (!mDevice->isSequential())
        wanted = qMin(wanted, mSize - mStart - mReadPosition);
    if (wanted <= 0)
        return bytes;
    const int known = int(bytes.size());
    bytes.resize(known + static_cast<int>(wanted));
    bytes.truncate(known + static_cast<int>(readRaw(bytes.data() + known, wanted)));
    return bytes;
}

QByteArray JpegSegments::head(quint16 marker, int payloadSize)
{
    QByteArray head(headSize, Qt::Uninitialized);
    auto* const bytes = reinterpret_cast<uchar*>(head.data());
    qToBigEndian(marker, bytes);
    qToBigEndian(static_cast<quint16>(payloadSize + 2), bytes + 2);
    return head;
}

bool JpegSegments::hasMoreThan(int limit, QIODevice* device)
{
    const qint64 position = device->pos();
    JpegSegments segments(device, Markers::Standard);
    int count = 0;
    for (bool found = segments.begin(); found && count <= limit; found = segments.next())
        ++count;
    device->seek(position);
    return count > limit;
}

/// Skips the payload. Returns false if the device ends before its end.
bool JpegSegments::skipPayload()
{
    mName.clear();
    const qint64 end = payloadPosition() + mClaimedSize;
    const int left = static_cast<int>(end - mReadPosition);
    mReadPosition = end;
    if (mDevice->isSequential())
        return QDataStream(mDevice).skipRawData(left) == left;
    // Never seeks beyond the end: a file would accept it, a buffer would grow, and Qt may warn.
    return mStart + end <= mSize && moveTo(end);
}

/// Reads the marker and the length of the segment at the current position, or in a standard walk of
/// the next segment after it.
bool JpegSegments::readHead()
{
    char head[headSize];
    if (mMarkers == Markers::AllHaveLengths) {
        mPosition = mReadPosition;
        if (readRaw(head, headSize) != headSize)
            return false;
        mMarker = bigEndian16(head);
    } else if (!findMarker() || readRaw(head + 2, 2) != 2) {
        return false;
    }
    mLength = bigEndian16(head + 2);
    mClaimedSize = qMax(0, mLength - 2);
    return true;
}

/// Skips to the byte after the next marker that begins a segment. Returns false at the end.
bool JpegSegments::findMarker()
{
    // Usually it is the next two bytes. A sequential device is not read beyond the marker.
    char bytes[16 * 1024];
    const qint64 chunkSize = mDevice->isSequential() ? 1 : qint64(sizeof bytes);
    bool isBehindFF = false;
    for (qint64 size = readRaw(bytes, 2); size > 0; size = readRaw(bytes, chunkSize)) {
        const char* const end = bytes + size;
        const char* const code = findMarkerByte(bytes, end, &isBehindFF);
        if (code == end)
            continue;
        mMarker = static_cast<quint16>(0xFF00 | static_cast<quint8>(*code));
        const qint64 surplus = end - (code + 1);
        mReadPosition -= surplus;
        mPosition = mReadPosition - 2;
        return (surplus == 0 || moveTo(mReadPosition)) && mMarker != JpegMarker::EndOfImage
            && mMarker != JpegMarker::StartOfImage;
    }
    return false;
}

/// Moves the device to a position in the JPEG.
bool JpegSegments::moveTo(qint64 position)
{
    const bool isMoved = mDevice->seek(mStart + position);
    mHasFailed = mHasFailed || !isMoved;
    return isMoved;
}

/// Reads up to \a size bytes without interpreting them, and returns how many were read.
qint64 JpegSegments::readRaw(char* data, qint64 size)
{
    const qint64 result = mDevice->read(data, size);
    mHasFailed = mHasFailed || result < 0;
    const qint64 got = qMax(Q_INT64_C(0), result);
    mReadPosition += got;
    return got;
}

} // namespace OrvaUtilsPrivate

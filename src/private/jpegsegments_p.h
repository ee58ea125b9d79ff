// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// JpegSegments: walks the segments of a JPEG; the only code in the library that does.
//
//     JpegSegments segments(&file, JpegSegments::Markers::Standard);
//     for (bool found = segments.begin(); found; found = segments.next()) {
//         if (segments.marker() == JpegMarker::App1 && segments.startsWith("Exif"))
//             return segments.read(segments.claimedSize());
//     }

#ifndef ORVAUTILS_JPEGSEGMENTS_P_H
#define ORVAUTILS_JPEGSEGMENTS_P_H

#include <QByteArray>
#include <QtGlobal>

class QIODevice;

namespace OrvaUtilsPrivate {

namespace JpegMarker {

const quint16 StartOfImage = 0xFFD8;
const quint16 EndOfImage = 0xFFD9;
const quint16 StartOfScan = 0xFFDA;
const quint16 App0 = 0xFFE0;
const quint16 App1 = 0xFFE1;
const quint16 App2 = 0xFFE2;
const quint16 App13 = 0xFFED;
const quint16 Comment = 0xFFFE;

} // namespace JpegMarker

/// Walks the segments of the JPEG that begins at the current position of a device, which may be
/// sequential. Nothing else may change the position of the device meanwhile.
class JpegSegments
{
public:
    enum class Markers {
        /// Any two bytes are a marker and the two bytes after them a length. Fill bytes, scan data
        /// and the end of the image are not recognised.
        AllHaveLengths,
        /// As decoders read a JPEG: fill bytes, stray bytes, scan data and markers without a
        /// segment are skipped, and the walk ends with the image.
        Standard
    };

    /// The maximum size of a payload in bytes: the 16-bit length counts itself.
    static constexpr int MaximumPayload = 65533;

    JpegSegments(QIODevice* device, Markers markers);

    /// Moves to the first segment. Returns false if there is no JPEG, or no segment in it.
    bool begin();

    /// Moves to the next segment. Returns false at the end of the image or of the device, and
    /// after a segment whose length is too small to be valid.
    bool next();

    /// The marker of the segment.
    quint16 marker() const { return mMarker; }

    /// The position of the marker, counted from the first byte of the JPEG.
    qint64 position() const { return mPosition; }

    /// The position of the payload, counted in the same way.
    qint64 payloadPosition() const { return mPosition + 4; }

    /// Whether the length of the segment is too small to be valid.
    bool isBroken() const { return mLength < 2; }

    /// The size of the payload in bytes, according to the segment's length.
    int claimedSize() const { return mClaimedSize; }

    /// The size of the payload up to the end of the device, which must not be sequential.
    int size() const;

    /// Whether the payload begins with \a name. To be called before read().
    bool startsWith(const char* name);

    /// Reads up to \a size bytes of the payload, from where the last call stopped. They are fewer
    /// if the device ends; unless it is sequential, no more is allocated than it has.
    QByteArray read(int size);

    /// Whether the device reported an error, so that segments may be missing.
    bool hasFailed() const { return mHasFailed; }

    /// The marker and the length at the beginning of a segment.
    static QByteArray head(quint16 marker, int payloadSize);

    /// Whether the JPEG at the current position of \a device, which must not be sequential, has
    /// more than \a limit segments (a scan is one). A decoder spends time and memory on each, so
    /// that a small file can keep it busy for hours. The position of the device is restored.
    static bool hasMoreThan(int limit, QIODevice* device);

private:
    bool skipPayload();
    bool readHead();
    bool findMarker();
    bool moveTo(qint64 position);
    qint64 readRaw(char* data, qint64 size);

    QIODevice* const mDevice;
    const Markers mMarkers;
    const qint64 mStart; // of the JPEG in the device
    const qint64 mSize; // of the device, queried once
    quint16 mMarker = 0;
    int mLength = 0; // as in the file
    int mClaimedSize = 0;
    qint64 mPosition = 0;
    qint64 mReadPosition = 0; // of the next read, in the JPEG
    bool mHasFailed = false;
    QByteArray mName; // the part of the payload that startsWith() has read
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_JPEGSEGMENTS_P_H

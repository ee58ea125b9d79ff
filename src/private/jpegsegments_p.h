// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// JpegSegments: walks the segments of a JPEG, the only code of the library that does.
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

/// Goes from segment to segment through the JPEG that begins at the current position of a device,
/// which may be sequential. Nothing else may change the position of the device meanwhile.
class JpegSegments
{
public:
    enum class Markers {
        /// Any two bytes are a marker and the two bytes behind them a length. Fill bytes, the data
        /// of scans and the end of the image are not known.
        AllHaveLengths,
        /// As decoders read a JPEG: fill bytes, bytes that belong to nothing and markers without a
        /// segment are passed over, the data of a scan too, and the walk ends with the image.
        Standard
    };

    /// The most that a payload can hold: the 16-bit length counts itself.
    static constexpr int MaximumPayload = 65533;

    JpegSegments(QIODevice* device, Markers markers);

    /// Goes to the first segment. False where there is no JPEG or no segment in it.
    bool begin();

    /// Goes to the next segment. False at the end of the image or of the device, and behind a
    /// segment whose length is too small to be one.
    bool next();

    /// The marker of the segment.
    quint16 marker() const { return mMarker; }

    /// Where the marker stands, counted from the first byte of the JPEG.
    qint64 position() const { return mPosition; }

    /// Where the payload begins.
    qint64 payloadPosition() const { return mPosition + 4; }

    /// Whether the length of the segment is too small to be one.
    bool isBroken() const { return mLength < 2; }

    /// The bytes of the payload, as the segment's length says.
    int claimedSize() const { return mClaimedSize; }

    /// The bytes of the payload up to the end of the device, which must not be sequential.
    int size() const;

    /// Whether the payload begins with \a name and nothing of it has been read before.
    bool startsWith(const char* name);

    /// Up to \a size bytes of the payload, from where the last call stopped. They are fewer where
    /// the device ends; never more is allocated than it has.
    QByteArray read(int size);

    /// Whether the device reported an error, so that segments may be missing.
    bool hasFailed() const { return mHasFailed; }

    /// The marker and the length that a segment begins with.
    static QByteArray head(quint16 marker, int payloadSize);

    /// Whether the JPEG at the current position of \a device, which must not be sequential, has
    /// more than \a limit segments (a scan is one). A decoder spends time and memory on each, so
    /// that a small file can keep it busy for hours. The position is the same afterwards.
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
    const qint64 mSize; // of the device, asked for once
    quint16 mMarker = 0;
    int mLength = 0; // as it stands in the file
    int mClaimedSize = 0;
    qint64 mPosition = 0;
    qint64 mReadPosition = 0; // in the JPEG, of what is read next
    bool mHasFailed = false;
    QByteArray mName; // what startsWith() has read of the payload already
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_JPEGSEGMENTS_P_H

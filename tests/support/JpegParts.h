// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// JpegParts: builds JPEG files for tests from their segments, and splits them again.

#ifndef JPEGPARTS_H
#define JPEGPARTS_H

#include "TiffBuilder.h"

#include <QByteArray>
#include <QVector>

// Segments

inline QByteArray segment(unsigned marker, const QByteArray& payload)
{
    return TiffBuilder(big).u16(marker).u16(static_cast<unsigned>(payload.size() + 2)).raw(payload);
}

inline QByteArray exifPayload(const QByteArray& block)
{
    return QByteArray("Exif\0\0", 6) + block;
}

inline QByteArray exifSegment(const QByteArray& block)
{
    return segment(0xFFE1, exifPayload(block));
}

inline QByteArray soi()
{
    return hex("FFD8");
}

inline QByteArray jfif()
{
    return segment(0xFFE0, QByteArray("JFIF\0\1\1\0\0\1\0\1\0\0", 14));
}

inline QByteArray xmp()
{
    return segment(0xFFE1, QByteArray("http://ns.adobe.com/xap/1.0/\0<x/>", 33));
}

inline QByteArray dqt()
{
    return segment(0xFFDB, QByteArray(65, '\1'));
}

/// A start of scan, some coded data and the end-of-image marker.
inline QByteArray scan()
{
    return segment(0xFFDA, QByteArray("\1\1\0\0\77\0", 6)) + hex("123456FF00789A FFD9");
}

// Files

/// A JPEG file split into its segments, up to and including the first start of scan, and the rest.
struct JpegParts
{
    struct Part
    {
        unsigned marker;
        QByteArray bytes; // including marker and length
        bool isJfif() const { return marker == 0xFFE0 && bytes.mid(4, 4) == "JFIF"; }
        bool isExif() const { return marker == 0xFFE1 && bytes.mid(4, 4) == "Exif"; }
    };
    QVector<Part> parts;
    QByteArray rest;

    explicit JpegParts(const QByteArray& file)
    {
        int at = 2;
        unsigned marker = 0;
        while (at + 4 <= file.size() && marker != 0xFFDA) {
            const auto byteAt = [&file](int i) { return unsigned(uchar(file.at(i))); };
            marker = byteAt(at) << 8 | byteAt(at + 1);
            const int length = int(byteAt(at + 2) << 8 | byteAt(at + 3));
            parts.append({marker, file.mid(at, 2 + length)});
            at += 2 + length;
        }
        rest = file.mid(at);
    }

    int exifCount() const
    {
        int count = 0;
        for (const Part& part : parts)
            count += part.isExif() ? 1 : 0;
        return count;
    }

    /// The index of the EXIF segment that a save replaces, or -1 if there is none.
    int replaced() const
    {
        const int candidate = !parts.isEmpty() && parts.first().isJfif() ? 1 : 0;
        return candidate < parts.size() && parts[candidate].isExif() ? candidate : -1;
    }

    /// The first APP1 segment, whatever it contains.
    QByteArray firstApp1() const
    {
        for (const Part& part : parts) {
            if (part.marker == 0xFFE1)
                return part.bytes;
        }
        return QByteArray();
    }
};

#endif // JPEGPARTS_H

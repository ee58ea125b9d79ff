// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TestPictures: makes and encodes pictures for tests, and measures how similar two pictures are.

#ifndef TESTPICTURES_H
#define TESTPICTURES_H

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QVector>
#include <QtEndian>

#include <cmath>

/// A picture that looks different in each of the eight orientations.
inline QImage picture(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const bool mark = x < width / 3 && y < height / 4;
            row[x] = qRgb(mark ? 250 : 200 * x / width, 180 * y / height, mark ? 20 : 120);
        }
    }
    return image;
}

/// Noise of all sizes, from the whole picture down to one pixel, each finer level weaker by the
/// factor falloff: 0.5 resembles photographs, 0.95 has far more detail.
inline QImage landscape(int width, int height, double falloff)
{
    quint32 state = 1;
    const auto random = [&state] {
        state = state * 1664525u + 1013904223u;
        return double(state >> 8) / double(1 << 24) - 0.5;
    };
    QVector<double> values(width * height, 0.0);
    double strength = 160;
    for (int cell = 512; cell >= 1; cell /= 2, strength *= falloff) {
        const int columns = width / cell + 2;
        const int rows = height / cell + 2;
        QVector<double> grid(columns * rows);
        for (double& value : grid)
            value = random() * strength;
        for (int y = 0; y < height; ++y) {
            const double fy = double(y % cell) / cell;
            for (int x = 0; x < width; ++x) {
                const double fx = double(x % cell) / cell;
                const double* corner = grid.constData() + (y / cell) * columns + x / cell;
                values[y * width + x] += (1 - fy) * ((1 - fx) * corner[0] + fx * corner[1])
                    + fy * ((1 - fx) * corner[columns] + fx * corner[columns + 1]);
            }
        }
    }
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const double v = 128 + values[y * width + x];
            row[x] = qRgb(qBound(0, int(v * 1.05), 255), qBound(0, int(v), 255),
                          qBound(0, int(v * 0.9 + 10), 255));
        }
    }
    return image;
}

/// The PSNR of the luma of two pictures of the same size, in decibels; 99 if they are equal.
inline double psnr(const QImage& first, const QImage& second)
{
    if (first.size() != second.size() || first.isNull())
        return 0;
    const QImage a = first.convertToFormat(QImage::Format_RGB32);
    const QImage b = second.convertToFormat(QImage::Format_RGB32);
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        const QRgb* p = reinterpret_cast<const QRgb*>(a.constScanLine(y));
        const QRgb* q = reinterpret_cast<const QRgb*>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            const double difference = 0.299 * (qRed(p[x]) - qRed(q[x]))
                + 0.587 * (qGreen(p[x]) - qGreen(q[x])) + 0.114 * (qBlue(p[x]) - qBlue(q[x]));
            sum += difference * difference;
        }
    }
    return sum == 0 ? 99 : 10 * std::log10(255.0 * 255.0 * a.width() * a.height() / sum);
}

inline QByteArray encoded(const QImage& image, const char* format, int quality = -1)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, quality);
    return bytes;
}

/// A JPEG with an EXIF orientation, or without one if it is 0.
inline QByteArray jpeg(const QImage& image, int orientation = 0, int quality = 95)
{
    QByteArray bytes = encoded(image, "jpeg", quality);
    if (orientation != 0) {
        QByteArray exif = QByteArray::fromHex("ffe10022457869660000"
                                              "49492a0008000000"
                                              "0100"
                                              "120103000100000000000000"
                                              "00000000");
        exif[28] = char(orientation);
        bytes.insert(2, exif);
    }
    return bytes;
}

/// The checksum of a PNG chunk, as stored in the file.
inline QByteArray pngChecksum(const QByteArray& typeAndData)
{
    quint32 crc = 0xFFFFFFFF;
    for (const char byte : typeAndData) {
        crc ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    crc = qToBigEndian(~crc);
    return QByteArray(reinterpret_cast<const char*>(&crc), 4);
}

/// A PNG chunk.
inline QByteArray pngChunk(const char* type, const QByteArray& data)
{
    const quint32 size = qToBigEndian(quint32(data.size()));
    return QByteArray(reinterpret_cast<const char*>(&size), 4) + type + data
        + pngChecksum(type + data);
}

/// The frame marker of a JPEG: 0xC0 for baseline, 0xC2 for progressive; 0 if there is none.
inline int frameMarker(const QByteArray& bytes)
{
    for (int at = 2; at + 4 <= bytes.size() && uchar(bytes[at]) == 0xFF;) {
        const int marker = uchar(bytes[at + 1]);
        if (marker >= 0xC0 && marker <= 0xCF && marker != 0xC4)
            return marker;
        at += 2 + (uchar(bytes[at + 2]) << 8 | uchar(bytes[at + 3]));
    }
    return 0;
}

inline bool isProgressive(const QByteArray& bytes)
{
    return frameMarker(bytes) == 0xC2;
}

/// All quantisation tables of a JPEG, which depend on its quality.
inline QByteArray quantisation(const QByteArray& bytes)
{
    QByteArray tables;
    for (int at = 2; at + 4 <= bytes.size() && uchar(bytes[at]) == 0xFF;) {
        const int length = uchar(bytes[at + 2]) << 8 | uchar(bytes[at + 3]);
        if (uchar(bytes[at + 1]) == 0xDB)
            tables += bytes.mid(at + 4, length - 2);
        if (uchar(bytes[at + 1]) == 0xDA)
            break;
        at += 2 + length;
    }
    return tables;
}

inline QByteArray quantisationOf(int quality)
{
    return quantisation(encoded(picture(16, 16), "jpeg", quality));
}

#endif // TESTPICTURES_H

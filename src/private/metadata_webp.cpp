// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Metadata in a WebP: in chunks of its own, which an extended header announces.

#include "picturemetadata_p.h"

#include <QtEndian>

#include <algorithm>

namespace OrvaUtilsPrivate {

namespace {

// Bits of the extended header.
const int alphaFlag = 0x10;
const int exifFlag = 0x08;
const int xmpFlag = 0x04;

struct Chunk
{
    QByteArray type;
    QByteArray data; // valid as long as the file is
};

struct Chunks
{
    QList<Chunk> list;
    bool isComplete = false;
    qint64 end = 0; // of the picture, as its header states it
};

quint32 littleEndian32(const char* bytes)
{
    return qFromLittleEndian<quint32>(reinterpret_cast<const uchar*>(bytes));
}

Chunks chunksOf(const QByteArray& file)
{
    Chunks chunks;
    const int headerSize = 12;
    if (file.size() < headerSize || !file.startsWith("RIFF") || file.mid(8, 4) != "WEBP")
        return chunks; // GCOVR_EXCL_LINE: a reader has found the signature
    chunks.end = qint64(littleEndian32(file.constData() + 4)) + 8;
    const int end = int(qMin(chunks.end, qint64(file.size())));
    int at = headerSize;
    while (end - at >= 8) {
        const quint32 size = littleEndian32(file.constData() + at + 4);
        if (size > quint32(end - at - 8))
            break;
        chunks.list.append({QByteArray(file.constData() + at, 4),
                            QByteArray::fromRawData(file.constData() + at + 8, int(size))});
        at += 8 + int(size) + int(size & 1);
    }
    chunks.isComplete = at >= chunks.end && chunks.end <= file.size();
    return chunks;
}

QByteArray chunk(const QByteArray& type, const QByteArray& data)
{
    QByteArray size(4, '\0');
    qToLittleEndian(quint32(data.size()), reinterpret_cast<uchar*>(size.data()));
    return type + size + data + QByteArray(data.size() & 1, '\0');
}

/// The extended header of a picture that has none: a byte of flags, three that are reserved, and
/// width and height minus one in three bytes each; null if the size cannot be found.
QByteArray extendedHeader(const Chunk& pixels)
{
    const auto byte = [&](int at) { return quint32(uchar(pixels.data.at(at))); };
    quint32 width = 0;
    quint32 height = 0;
    int flags = 0;
    if (pixels.type == "VP8 " && pixels.data.size() >= 10) {
        width = (byte(6) | byte(7) << 8) & 0x3FFF;
        height = (byte(8) | byte(9) << 8) & 0x3FFF;
    } else if (pixels.type == "VP8L" && pixels.data.size() >= 5) {
        const quint32 bits = littleEndian32(pixels.data.constData() + 1);
        width = (bits & 0x3FFF) + 1;
        height = (bits >> 14 & 0x3FFF) + 1;
        flags = bits >> 28 & 1 ? alphaFlag : 0;
    }
    if (width == 0 || height == 0)
        return QByteArray();
    QByteArray header(10, '\0');
    header[0] = char(flags);
    for (int i = 0; i < 3; ++i) {
        header[4 + i] = char((width - 1) >> (8 * i) & 0xFF);
        header[7 + i] = char((height - 1) >> (8 * i) & 0xFF);
    }
    return header;
}

/// An EXIF block without the name that a JPEG needs and that some programs also write here.
QByteArray withoutName(const QByteArray& exif)
{
    const QByteArray name = QByteArrayLiteral("Exif\0\0");
    const QByteArray order = exif.mid(name.size(), 2);
    const bool isNamed = exif.startsWith(name) && (order == "II" || order == "MM");
    return isNamed ? exif.mid(name.size()) : exif;
}

bool holdsPixels(const Chunk& chunk)
{
    return chunk.type == "VP8 " || chunk.type == "VP8L" || chunk.type == "ANMF";
}

bool belongsToPicture(const Chunk& chunk)
{
    return chunk.type.startsWith("VP8") || chunk.type == "ALPH" || chunk.type == "ANIM"
        || chunk.type == "ANMF" || chunk.type == "ICCP";
}

} // namespace

MetadataFindings readWebpMetadata(const QByteArray& file)
{
    const Chunks chunks = chunksOf(file);
    MetadataFindings findings;
    for (const Chunk& chunk : chunks.list) {
        const QByteArray data(chunk.data.constData(), chunk.data.size());
        if (chunk.type == "EXIF")
            findings.metadata.exif = withoutName(data);
        else if (chunk.type == "XMP ")
            findings.metadata.xmp = data;
        else if (chunk.type == "ICCP")
            findings.profile = data;
        else if (!belongsToPicture(chunk))
            findings.metadata.others.append(OrvaUtilsPrivate::chunk(chunk.type, chunk.data));
    }
    findings.hasProfile = !findings.profile.isEmpty();
    findings.isTruncated = !chunks.isComplete;
    findings.hasTrailer = chunks.isComplete && chunks.end < file.size();
    return findings;
}

QByteArray webpWithMetadata(const QByteArray& file, const PictureMetadata& metadata)
{
    const Chunks chunks = chunksOf(file);
    if (std::none_of(chunks.list.begin(), chunks.list.end(), holdsPixels))
        return QByteArray();
    const int wanted =
        (metadata.exif.isEmpty() ? 0 : exifFlag) | (metadata.xmp.isEmpty() ? 0 : xmpFlag);

    QByteArray body;
    body.reserve(file.size() + metadata.exif.size() + metadata.xmp.size());
    const Chunk& first = chunks.list.first();
    if (first.type == "VP8X" && !first.data.isEmpty()) {
        QByteArray header(first.data.constData(), first.data.size());
        header[0] = char((header.at(0) & ~(exifFlag | xmpFlag)) | wanted);
        body += chunk("VP8X", header);
    } else if (wanted != 0) {
        QByteArray header = extendedHeader(first);
        if (header.isEmpty())
            return QByteArray();
        header[0] = char(header.at(0) | wanted);
        body += chunk("VP8X", header);
    }
    for (const Chunk& part : chunks.list) {
        if (belongsToPicture(part) && part.type != "VP8X")
            body += chunk(part.type, part.data);
    }
    if (!metadata.exif.isEmpty())
        body += chunk("EXIF", metadata.exif);
    if (!metadata.xmp.isEmpty())
        body += chunk("XMP ", metadata.xmp);
    for (const QByteArray& other : metadata.others)
        body += other;
    return chunk("RIFF", "WEBP" + body);
}

} // namespace OrvaUtilsPrivate

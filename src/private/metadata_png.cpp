// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Metadata in a PNG: in chunks of text, and in eXIf.

#include "picturemetadata_p.h"

#include <QVector>
#include <QtEndian>

#include <algorithm>

namespace OrvaUtilsPrivate {

namespace {

QByteArray signature()
{
    return QByteArrayLiteral("\x89PNG\r\n\x1a\n");
}

QByteArray xmpKeyword()
{
    return QByteArrayLiteral("XML:com.adobe.xmp\0");
}

struct Chunk
{
    QByteArray type;
    QByteArray data; // valid as long as the file is
    QByteArray whole; // with length and checksum; valid as long as the file is
};

struct Chunks
{
    QList<Chunk> list;
    int end = 0; // of the last one in the file
};

Chunks chunksOf(const QByteArray& file)
{
    Chunks chunks;
    if (!file.startsWith(signature()))
        return chunks; // GCOVR_EXCL_LINE: a reader has found the signature
    const int frame = 12; // length, type and checksum
    chunks.end = int(signature().size());
    while (file.size() - chunks.end >= frame) {
        const char* const begin = file.constData() + chunks.end;
        const auto length = qFromBigEndian<quint32>(reinterpret_cast<const uchar*>(begin));
        if (length > quint32(file.size() - chunks.end - frame))
            break;
        chunks.list.append({QByteArray(begin + 4, 4),
                            QByteArray::fromRawData(begin + 8, int(length)),
                            QByteArray::fromRawData(begin, int(length) + frame)});
        chunks.end += int(length) + frame;
        if (chunks.list.last().type == "IEND")
            break;
    }
    return chunks;
}

bool holdsPixels(const Chunk& chunk)
{
    return chunk.type == "IDAT";
}

bool isText(const Chunk& chunk)
{
    return chunk.type == "tEXt" || chunk.type == "zTXt" || chunk.type == "iTXt";
}

/// Whether the chunk is needed to show the picture: all critical chunks, and those about colours,
/// the density and the frames of an animation.
bool belongsToPicture(const Chunk& chunk)
{
    const bool isCritical = (chunk.type.at(0) & 0x20) == 0;
    static const char* const known[] = {"tRNS", "gAMA", "cHRM", "sRGB", "iCCP", "cICP", "sBIT",
                                        "bKGD", "hIST", "pHYs", "sPLT", "acTL", "fcTL", "fdAT"};
    return isCritical || std::any_of(std::begin(known), std::end(known), [&](const char* type) {
               return chunk.type == type;
           });
}

/// The checksum of a chunk, over its type and its data.
quint32 checksum(const QByteArray& bytes)
{
    static const QVector<quint32> table = [] {
        QVector<quint32> made(256);
        for (int i = 0; i < 256; ++i) {
            auto value = quint32(i);
            for (int bit = 0; bit < 8; ++bit)
                value = value >> 1 ^ (value & 1 ? 0xEDB88320u : 0);
            made[i] = value;
        }
        return made;
    }();
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : bytes)
        sum = sum >> 8 ^ table.at(int((sum ^ uchar(byte)) & 0xFF));
    return ~sum;
}

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, reinterpret_cast<uchar*>(bytes.data()));
    return bytes;
}

QByteArray chunk(const QByteArray& type, const QByteArray& data)
{
    const QByteArray checked = type + data;
    return bigEndian(quint32(data.size())) + checked + bigEndian(checksum(checked));
}

/// The XMP packet of a chunk that contains one: its keyword is followed by a flag and a method for
/// compression, a language and a translated keyword.
QByteArray xmpPacket(const Chunk& chunk)
{
    const int flags = int(xmpKeyword().size());
    const int language = flags + 2;
    const int translated = int(chunk.data.indexOf('\0', language) + 1);
    const int text = int(translated == 0 ? 0 : chunk.data.indexOf('\0', translated) + 1);
    if (text == 0)
        return QByteArray();
    const QByteArray packet(chunk.data.constData() + text, chunk.data.size() - text);
    // XMP must not be compressed; if it is, it is treated like any other text.
    return chunk.data.at(flags) == 0 ? packet : QByteArray();
}

QByteArray xmpChunk(const QByteArray& packet)
{
    return chunk("iTXt", xmpKeyword() + QByteArray(4, '\0') + packet);
}

} // namespace

MetadataFindings readPngMetadata(const QByteArray& file)
{
    const Chunks chunks = chunksOf(file);
    MetadataFindings findings;
    PictureMetadata& metadata = findings.metadata;
    for (const Chunk& chunk : chunks.list) {
        const QByteArray packet = chunk.type == "iTXt" && chunk.data.startsWith(xmpKeyword())
            ? xmpPacket(chunk)
            : QByteArray();
        if (chunk.type == "eXIf" && metadata.exif.isEmpty())
            metadata.exif = QByteArray(chunk.data.constData(), chunk.data.size());
        else if (!packet.isEmpty() && metadata.xmp.isEmpty())
            metadata.xmp = packet;
        else if (isText(chunk))
            metadata.comments.append(QByteArray(chunk.whole.constData(), chunk.whole.size()));
        else if (!belongsToPicture(chunk))
            metadata.others.append(QByteArray(chunk.whole.constData(), chunk.whole.size()));
        findings.hasProfile = findings.hasProfile || chunk.type == "iCCP";
    }
    findings.isTruncated = chunks.list.isEmpty() || chunks.list.last().type != "IEND";
    findings.hasTrailer = !findings.isTruncated && chunks.end < file.size();
    return findings;
}

QByteArray pngWithMetadata(const QByteArray& file, const PictureMetadata& metadata)
{
    const Chunks chunks = chunksOf(file);
    if (chunks.list.isEmpty() || chunks.list.first().type != "IHDR"
        || std::none_of(chunks.list.cbegin(), chunks.list.cend(), holdsPixels))
        return QByteArray();
    QByteArray added;
    if (!metadata.exif.isEmpty())
        added += chunk("eXIf", metadata.exif);
    if (!metadata.xmp.isEmpty())
        added += xmpChunk(metadata.xmp);
    const QList<QByteArray> others = metadata.comments + metadata.others;
    for (const QByteArray& other : others)
        added += other;

    // Everything that is not part of the pixels may follow the header.
    QByteArray result = signature() + chunks.list.first().whole + added;
    result.reserve(file.size() + added.size());
    for (auto chunk = chunks.list.cbegin() + 1; chunk != chunks.list.cend(); ++chunk) {
        if (belongsToPicture(*chunk))
            result += chunk->whole;
    }
    return result;
}

} // namespace OrvaUtilsPrivate

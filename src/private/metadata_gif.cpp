// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Metadata in a GIF: in comments, and in Adobe's extension for XMP.

#include "picturemetadata_p.h"

#include <algorithm>

namespace OrvaUtilsPrivate {

namespace {

const char extensionMark = 0x21;
const char imageMark = 0x2C;
const char endMark = 0x3B;

QByteArray xmpName()
{
    return QByteArrayLiteral("XMP DataXMP");
}

struct Block
{
    char label = 0; // of an extension; 0 for a picture or padding
    bool isPadding = false;
    QByteArray whole; // valid as long as the file is
    QByteArray content; // of an extension: its concatenated pieces
};

struct Blocks
{
    QByteArray head; // up to the first block
    QList<Block> list;
    bool endsProperly = false;
    int end = 0; // of the picture in the file
};

int colorTableSize(char flags)
{
    return flags & 0x80 ? 3 << ((flags & 7) + 1) : 0;
}

/// Appends the pieces from \a at on, each of which begins with its size, up to an empty one.
/// Returns the position after that one; -1 if the file ends before.
int behindPieces(const QByteArray& file, int at, QByteArray* content)
{
    while (at < file.size() && file.at(at) != 0) {
        const int size = uchar(file.at(at));
        content->append(file.mid(at + 1, size));
        at += 1 + size;
    }
    return at < file.size() ? at + 1 : -1;
}

/// Reads the block at \a at and returns where it ends; -1 if there is none, or only a part of an
/// extension.
int readBlock(const QByteArray& file, int at, Block* block)
{
    QByteArray unused;
    int end = -1;
    if (file.at(at) == extensionMark && at + 1 < file.size()) {
        block->label = file.at(at + 1);
        end = behindPieces(file, at + 2, &block->content);
    } else if (file.at(at) == imageMark && at + 10 < file.size()) {
        const int data = at + 10 + colorTableSize(file.at(at + 9)) + 1; // the size of a code, too
        end = behindPieces(file, data, &unused);
    }
    // A truncated picture is shown as far as it goes.
    if (end < 0 && file.at(at) == imageMark)
        end = int(file.size());
    if (end > 0)
        block->whole = QByteArray::fromRawData(file.constData() + at, end - at);
    return end;
}

int readPadding(const QByteArray& file, int at, Block* block)
{
    int end = at;
    while (end < file.size() && file.at(end) == 0)
        ++end;
    block->isPadding = true;
    block->whole = QByteArray::fromRawData(file.constData() + at, end - at);
    return end;
}

bool beginsBlock(char byte)
{
    return byte == extensionMark || byte == imageMark;
}

/// The blocks of a GIF. Some encoders pad them with zeros, which stay, because readers disagree on
/// where a block without content ends. Other bytes that begin no block are left out: readers that
/// do not stop there skip them.
Blocks blocksOf(const QByteArray& file)
{
    Blocks blocks;
    const int headSize = 13;
    if (!file.startsWith("GIF8") || file.size() < headSize)
        return blocks;
    int at = headSize + colorTableSize(file.at(10));
    if (at > file.size())
        return blocks;
    blocks.head = file.left(at);
    while (at > 0 && at < file.size() && file.at(at) != endMark) {
        Block block;
        if (file.at(at) == 0) {
            at = readPadding(file, at, &block);
        } else if (beginsBlock(file.at(at))) {
            at = readBlock(file, at, &block);
        } else {
            ++at;
            continue;
        }
        if (at > 0)
            blocks.list.append(block);
    }
    blocks.endsProperly = at > 0 && at < file.size();
    blocks.end = int(blocks.endsProperly ? at + 1 : file.size());
    return blocks;
}

bool isComment(const Block& block)
{
    return block.label == char(0xFE);
}

bool isXmp(const Block& block)
{
    return block.label == char(0xFF) && block.whole.mid(3, xmpName().size()) == xmpName();
}

/// XMP is stored as it is, without sizes: a reader that takes its bytes for sizes ends up in a tail
/// of descending numbers, each of which leads to the last one.
QByteArray xmpTail()
{
    QByteArray tail(1, 1);
    for (int i = 0xFF; i >= 0; --i)
        tail.append(char(i));
    return tail + '\0';
}

QByteArray xmpPacket(const Block& block)
{
    const int begin = int(3 + xmpName().size());
    const int end = int(block.whole.size() - xmpTail().size());
    return QByteArray(block.whole.constData() + begin, qMax(0, end - begin));
}

bool isMetadata(const Block& block)
{
    return isComment(block) || isXmp(block);
}

QByteArray commentBlock(const QByteArray& comment)
{
    QByteArray block("\x21\xFE", 2);
    for (int at = 0; at < comment.size(); at += 255) {
        const QByteArray piece = comment.mid(at, 255);
        block += char(piece.size());
        block += piece;
    }
    return block + '\0';
}

} // namespace

MetadataFindings readGifMetadata(const QByteArray& file)
{
    const Blocks blocks = blocksOf(file);
    MetadataFindings findings;
    for (const Block& block : blocks.list) {
        if (isXmp(block))
            findings.metadata.xmp = xmpPacket(block);
        else if (isComment(block))
            findings.metadata.comments.append(block.content);
    }
    findings.isTruncated = !blocks.endsProperly;
    findings.hasTrailer = blocks.end < file.size();
    return findings;
}

QByteArray gifWithMetadata(const QByteArray& file, const PictureMetadata& metadata)
{
    const Blocks blocks = blocksOf(file);
    const bool hasNoPicture =
        std::all_of(blocks.list.begin(), blocks.list.end(),
                    [](const Block& block) { return isMetadata(block) || block.isPadding; });
    if (blocks.head.isEmpty() || (hasNoPicture && !blocks.endsProperly))
        return QByteArray(); // GCOVR_EXCL_LINE: an import refuses it before
    QByteArray added;
    for (const QByteArray& comment : metadata.comments)
        added += commentBlock(comment);
    if (!metadata.xmp.isEmpty())
        added += QByteArray("\x21\xFF\x0B", 3) + xmpName() + metadata.xmp + xmpTail();

    QByteArray result = blocks.head;
    result.reserve(file.size() + added.size());
    const int last = int(blocks.list.size()) - 1;
    for (int i = 0; i <= last; ++i) {
        // After a truncated picture, everything would be taken for a part of it.
        if (i == last && !blocks.endsProperly)
            result += added;
        if (!isMetadata(blocks.list.at(i)))
            result += blocks.list.at(i).whole;
    }
    if (blocks.endsProperly)
        result += added + endMark;
    return result;
}

} // namespace OrvaUtilsPrivate

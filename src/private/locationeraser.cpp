// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "locationeraser_p.h"

#include "exifblock_p.h"
#include "jpegsegments_p.h"

#include <QCryptographicHash>
#include <QMap>
#include <QVector>
#include <QtEndian>

#include <algorithm>

namespace OrvaUtilsPrivate {

namespace {

template <typename Integer>
Integer bigEndian(const QByteArray& bytes, int at)
{
    const bool isThere = at >= 0 && at + int(sizeof(Integer)) <= bytes.size();
    return isThere ? qFromBigEndian<Integer>(reinterpret_cast<const uchar*>(bytes.constData() + at))
                   : Integer(0);
}

// Pieces of a file

struct Piece
{
    int begin;
    int size;
};
using Pieces = QVector<Piece>;

QByteArray joined(const QByteArray& file, const Pieces& pieces)
{
    QByteArray bytes;
    for (const Piece& piece : pieces)
        bytes += file.mid(piece.begin, piece.size);
    return bytes;
}

void overwrite(QByteArray* file, const Pieces& pieces, const QByteArray& bytes)
{
    int at = 0;
    for (const Piece& piece : pieces) {
        std::copy_n(bytes.constData() + at, piece.size, file->data() + piece.begin);
        at += piece.size;
    }
}

/// The end of the APP1 segment whose payload begins at a position; -1 if there is none.
int endOfApp1(const QByteArray& file, int payload)
{
    const int length = bigEndian<quint16>(file, payload - 2);
    const bool isApp1 = bigEndian<quint16>(file, payload - 4) == JpegMarker::App1;
    return int(isApp1 && length >= 2 ? qMin(payload - 2 + length, file.size()) : -1);
}

// EXIF

QByteArray exifName()
{
    return QByteArrayLiteral("Exif\0\0");
}

bool beginsBlock(const QByteArray& file, int at)
{
    const auto head = bigEndian<quint32>(file, at);
    return head == 0x49492A00 || head == 0x4D4D002A;
}

/// The pieces of the block after a name: usually one; a large block continues in later segments.
Pieces blockAt(const QByteArray& file, int name)
{
    const int maximumSize = 1024 * 1024; // of a block outside of any segment
    const int nameSize = int(exifName().size());
    int end = endOfApp1(file, name);
    if (end < 0)
        return {{name + nameSize, int(qMin(maximumSize, file.size() - name - nameSize))}};
    Pieces pieces = {{name + nameSize, end - name - nameSize}};
    for (;;) {
        const int next = end + 4;
        end = endOfApp1(file, next);
        if (end < next + nameSize || file.mid(next, nameSize) != exifName()
            || beginsBlock(file, next + nameSize))
            return pieces;
        pieces.append({next + nameSize, end - next - nameSize});
    }
}

/// Erases the GPS directories of one block. Returns false if it may still state a position.
bool eraseExifLocation(QByteArray* file, const Pieces& pieces)
{
    const QByteArray before = joined(*file, pieces);
    ExifBlock block;
    if (!block.parse(before))
        return !ExifBlock::mayTellGps(before);
    block.removeGps();
    QByteArray after = block.composed();
    if (after.size() > before.size() || ExifBlock::mayTellGps(after))
        return false;
    after.append(QByteArray(before.size() - after.size(), '\0'));
    overwrite(file, pieces, after);
    return true;
}

bool eraseExifLocations(QByteArray* file)
{
    // Readers ignore the byte after the NUL, and some of them what follows the byte order.
    const QByteArray name = exifName().left(5);
    const int nameSize = int(exifName().size());
    for (int at = 0; (at = int(file->indexOf(name, at))) >= 0; at += nameSize) {
        const QByteArray order = file->mid(at + nameSize, 2);
        if ((order == "II" || order == "MM") && !eraseExifLocation(file, blockAt(*file, at)))
            return false;
    }
    return true;
}

/// Blocks among Photoshop's resources: signature, number, name, size, data. They need no name of
/// their own.
bool eraseResourceLocations(QByteArray* file)
{
    const QByteArray head("8BIM\x04\x22", 6); // EXIF
    for (int at = 0; (at = int(file->indexOf(head, at))) >= 0; at += int(head.size())) {
        const int name = int(at + head.size());
        const int nameSize = name < file->size() ? uchar(file->at(name)) + 1 : 1;
        const int size = name + nameSize + nameSize % 2;
        const qint64 begin = qint64(size) + 4;
        const qint64 left = file->size() - begin;
        const qint64 data = qMin(left, qint64(bigEndian<quint32>(*file, size)));
        if (data > 0 && beginsBlock(*file, int(begin))
            && !eraseExifLocation(file, {{int(begin), int(data)}}))
            return false;
    }
    return true;
}

// XMP

bool namesLocation(const QByteArray& qualifiedName)
{
    if (qualifiedName.startsWith("xmlns"))
        return false;
    const QByteArray name = qualifiedName.mid(qualifiedName.lastIndexOf(':') + 1).toLower();
    return name.startsWith("gps") || name.contains("latitude") || name.contains("longitude")
        || name.contains("longtitude");
}

/// Overwrites with blanks what states a location in XML: attributes, and elements with everything
/// in them.
class LocationEraser
{
public:
    explicit LocationEraser(QByteArray* xml)
        : mXml(*xml)
    { }

    void run()
    {
        int at = 0;
        while ((at = int(mXml.indexOf('<', at))) >= 0)
            at = passMarkup(at);
    }

private:
    struct Tag
    {
        QByteArray name;
        int nameEnd = 0;
        int end = 0; // after ">"
        bool isClosing = false;
        bool isEmpty = false;
    };

    /// Erases what states a location in the markup at \a at. Returns the position after it.
    int passMarkup(int at)
    {
        const int other = passOther(at);
        if (other >= 0)
            return other;
        const Tag tag = tagAt(at);
        if (tag.isClosing)
            return tag.end;
        if (namesLocation(tag.name)) {
            const int end = tag.isEmpty ? tag.end : endOfElement(tag);
            erase(at, end);
            return end;
        }
        eraseAttributes(tag);
        return tag.end;
    }

    /// The position after a comment, a processing instruction or a CDATA section; -1 for anything
    /// else.
    int passOther(int at) const
    {
        const char* const kinds[][2] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
        for (const auto& kind : kinds) {
            const QByteArray beginning = kind[0];
            if (mXml.mid(at, beginning.size()) != beginning)
                continue;
            const int end = int(mXml.indexOf(kind[1], at + beginning.size()));
            return int(end < 0 ? mXml.size() : end + int(qstrlen(kind[1])));
        }
        return -1;
    }

    Tag tagAt(int at) const
    {
        Tag tag;
        tag.isClosing = mXml.mid(at + 1, 1) == "/";
        const int nameBegin = at + (tag.isClosing ? 2 : 1);
        tag.nameEnd = nameBegin;
        while (tag.nameEnd < mXml.size() && !isSpace(tag.nameEnd) && mXml.at(tag.nameEnd) != '>'
               && mXml.at(tag.nameEnd) != '/')
            ++tag.nameEnd;
        tag.name = mXml.mid(nameBegin, tag.nameEnd - nameBegin);
        char quote = '\0';
        int end = tag.nameEnd;
        for (; end < mXml.size() && (quote != '\0' || mXml.at(end) != '>'); ++end) {
            const char character = mXml.at(end);
            if (quote == '\0' && (character == '"' || character == '\''))
                quote = character;
            else if (character == quote)
                quote = '\0';
        }
        tag.isEmpty = mXml.mid(end - 1, 1) == "/";
        tag.end = int(qMin(end + 1, mXml.size()));
        return tag;
    }

    int endOfElement(const Tag& start) const
    {
        int depth = 1;
        int at = start.end;
        while ((at = int(mXml.indexOf('<', at))) >= 0) {
            const int other = passOther(at);
            if (other >= 0) {
                at = other;
                continue;
            }
            const Tag tag = tagAt(at);
            at = tag.end;
            if (tag.name != start.name || tag.isEmpty)
                continue;
            depth += tag.isClosing ? -1 : 1;
            if (depth == 0)
                return at;
        }
        return int(mXml.size());
    }

    void eraseAttributes(const Tag& tag)
    {
        int at = tag.nameEnd;
        while (at < tag.end) {
            while (at < tag.end && isSpace(at))
                ++at;
            const int begin = at;
            const int equals = int(mXml.indexOf('=', at));
            if (equals < 0 || equals >= tag.end)
                return;
            int quote = equals + 1;
            while (quote < tag.end && isSpace(quote))
                ++quote;
            const int valueEnd =
                int(quote < tag.end ? mXml.indexOf(mXml.at(quote), quote + 1) : -1);
            if (valueEnd < 0 || valueEnd >= tag.end)
                return;
            at = valueEnd + 1;
            if (namesLocation(mXml.mid(begin, equals - begin).trimmed()))
                erase(begin, at);
        }
    }

    bool isSpace(int at) const
    {
        const char character = mXml.at(at);
        return character == ' ' || (character >= '\t' && character <= '\r');
    }

    void erase(int begin, int end) { std::fill(mXml.data() + begin, mXml.data() + end, ' '); }

    QByteArray& mXml;
};

/// Erasing something from a malformed packet may leave markup that states another location, so that
/// it takes several runs. Returns false if the last one permitted still found something.
bool eraseUntilNothingIsFound(QByteArray* xml)
{
    const int mostRuns = 5;
    QByteArray before;
    for (int run = 0; run < mostRuns && *xml != before; ++run) {
        before = *xml;
        LocationEraser(xml).run();
    }
    return *xml == before;
}

bool eraseXmpLocation(QByteArray* file, const Pieces& pieces)
{
    QByteArray xml = joined(*file, pieces);
    if (!eraseLocationInXmp(&xml))
        return false;
    overwrite(file, pieces, xml);
    return true;
}

/// Packets that fit into one piece, in segments of their own or anywhere else.
bool eraseXmpLocations(QByteArray* file)
{
    const QByteArray end("</x:xmpmeta>");
    for (int at = 0; (at = int(file->indexOf("<x:xmpmeta", at))) >= 0; ++at) {
        const int found = int(file->indexOf(end, at));
        if (found < 0)
            break;
        const int size = int(found + end.size() - at);
        QByteArray xml = file->mid(at, size);
        eraseUntilNothingIsFound(&xml);
        overwrite(file, {{at, size}}, xml);
    }
    const QByteArray name("http://ns.adobe.com/xap/1.0/\0", 29);
    for (int at = 0; (at = int(file->indexOf(name, at))) >= 0; at += int(name.size())) {
        const int segmentEnd = endOfApp1(*file, at);
        const int begin = int(at + name.size());
        if (segmentEnd > begin && !eraseXmpLocation(file, {{begin, segmentEnd - begin}}))
            return false;
    }
    return true;
}

/// Packets that are spread over several segments, each with the packet's digest.
bool eraseExtendedXmpLocations(QByteArray* file)
{
    const QByteArray name("http://ns.adobe.com/xmp/extension/\0", 35);
    const int digestSize = 32;
    QMap<QByteArray, QMap<quint32, Piece>> packets; // by digest; the pieces by their offsets
    for (int at = 0; (at = int(file->indexOf(name, at))) >= 0; at += int(name.size())) {
        const int begin = int(at + name.size() + digestSize + 8); // after digest, size and offset
        const int end = endOfApp1(*file, at);
        if (end > begin)
            packets[file->mid(at + name.size(), digestSize)].insert(
                bigEndian<quint32>(*file, begin - 4), {begin, end - begin});
    }
    for (auto packet = packets.cbegin(); packet != packets.cend(); ++packet) {
        const Pieces pieces = packet.value().values().toVector();
        const QByteArray before = joined(*file, pieces);
        if (!eraseXmpLocation(file, pieces))
            return false;
        const QByteArray after = joined(*file, pieces);
        if (after == before)
            continue;
        const QByteArray digest =
            QCryptographicHash::hash(after, QCryptographicHash::Md5).toHex().toUpper();
        file->replace(packet.key(), digest);
    }
    return true;
}

// Videos

/// Turns the boxes with a video's location into free space. They follow the picture.
void eraseFilmLocations(QByteArray* file)
{
    for (const char* const type : {"\xA9xyz", "loci"}) {
        for (int at = 4; (at = int(file->indexOf(type, at))) >= 0; at += 4) {
            const qint64 size = bigEndian<quint32>(*file, at - 4);
            const int maximumSize = 512;
            if (size < 12 || size > maximumSize || at - 4 + size > file->size())
                continue;
            std::fill(file->data() + at, file->data() + at - 4 + size, '\0');
            std::copy_n("free", 4, file->data() + at);
        }
    }
}

} // namespace

bool eraseLocation(QByteArray* file)
{
    if (!eraseExifLocations(file) || !eraseResourceLocations(file) || !eraseXmpLocations(file)
        || !eraseExtendedXmpLocations(file))
        return false;
    eraseFilmLocations(file);
    return true;
}

bool eraseLocationInXmp(QByteArray* packet)
{
    int end = int(packet->size());
    while (end > 0 && packet->at(end - 1) == '\0')
        --end; // some writers terminate it like a C string
    if (packet->left(end).contains('\0'))
        return false;
    return eraseUntilNothingIsFound(packet);
}

} // namespace OrvaUtilsPrivate

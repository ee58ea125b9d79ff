// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Metadata in a JPEG: in APP segments and comments between its other segments.

#include "asconst_p.h"
#include "jpegsegments_p.h"
#include "picturemetadata_p.h"

#include <QBuffer>
#include <QMap>

#include <algorithm>

namespace OrvaUtilsPrivate {

namespace {

// What the payloads of segments begin with. Each ends with a NUL, the first one with two.
const char exifName[] = "Exif\0";
const char xmpName[] = "http://ns.adobe.com/xap/1.0/";
const char profileName[] = "ICC_PROFILE";
const char multiPictureName[] = "MPF";
const char iptcName[] = "Photoshop 3.0";

/// One of these with its NUL.
template <int size>
QByteArray withNul(const char (&name)[size])
{
    return QByteArray::fromRawData(name, size);
}

/// The segments of one file, each with what follows it up to the next marker: the data of a scan.
struct Segment
{
    quint16 marker;
    QByteArray payload;
    QByteArray whole;
};

struct Segments
{
    QList<Segment> list;
    bool endsProperly = false;
    bool isBroken = false; // in the middle, so that the rest of the file is unknown
    qint64 end = 0; // of the picture in the file
};

/// Not a copy: it is valid as long as \a file is.
QByteArray part(const QByteArray& file, qint64 begin, qint64 end)
{
    end = qMin(end, qint64(file.size()));
    return begin < end ? QByteArray::fromRawData(file.constData() + begin, int(end - begin))
                       : QByteArray();
}

Segments segmentsOf(const QByteArray& file)
{
    Segments result;
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    JpegSegments walker(&buffer, JpegSegments::Markers::Standard);
    qint64 begin = -1; // of the segment that is not complete yet
    const auto closeAt = [&](qint64 end) {
        if (begin >= 0)
            result.list.last().whole = part(file, begin, end);
    };
    for (bool found = walker.begin(); found; found = walker.next()) {
        closeAt(walker.position());
        begin = walker.position();
        const qint64 payload = walker.payloadPosition();
        result.list.append(
            {walker.marker(), part(file, payload, payload + walker.claimedSize()), QByteArray()});
    }
    result.endsProperly = walker.marker() == JpegMarker::EndOfImage;
    result.isBroken = walker.marker() == JpegMarker::StartOfImage || walker.isBroken();
    result.end = result.endsProperly ? walker.position() + 2 : file.size();
    closeAt(result.endsProperly ? walker.position() : result.end);
    return result;
}

/// Whether the file contains as many bytes of the segment as it claims. A truncated segment would
/// swallow what follows it in another file.
bool isComplete(const Segment& segment)
{
    return segment.whole.startsWith(
        JpegSegments::head(segment.marker, int(segment.payload.size())));
}

bool isProfile(const Segment& segment)
{
    return segment.marker == JpegMarker::App2 && segment.payload.startsWith(withNul(profileName));
}

/// Whether the segment is needed to decode the picture or to show its colours correctly.
bool belongsToPicture(const Segment& segment)
{
    const quint16 app14 = 0xFFEE;
    if (segment.marker == JpegMarker::App0)
        return segment.payload.startsWith(QByteArrayLiteral("JFIF\0"));
    if (segment.marker == app14)
        return segment.payload.startsWith("Adobe"); // how the colours are stored
    if (isProfile(segment))
        return true;
    const quint16 app15 = 0xFFEF;
    const bool isApp = segment.marker >= JpegMarker::App0 && segment.marker <= app15;
    return !isApp && segment.marker != JpegMarker::Comment;
}

/// The segment that contains \a name and \a payload; empty if they are too long for one.
QByteArray segment(quint16 marker, const QByteArray& name, const QByteArray& payload)
{
    const int size = int(name.size() + payload.size());
    if (size > JpegSegments::MaximumPayload)
        return QByteArray();
    return JpegSegments::head(marker, size) + name + payload;
}

/// A profile, in as many segments as it takes; empty if it takes more than 255.
QByteArray profileSegments(const QByteArray& profile)
{
    const int most = int(JpegSegments::MaximumPayload) - int(sizeof profileName) - 2;
    const int count = int((profile.size() + most - 1) / most);
    if (count > 255)
        return QByteArray(); // GCOVR_EXCL_LINE: a profile from a JPEG fits into one
    QByteArray bytes;
    for (int i = 0; i < count; ++i) {
        const char place[] = {char(i + 1), char(count)};
        bytes += segment(JpegMarker::App2, withNul(profileName) + QByteArray(place, 2),
                         profile.mid(i * most, most));
    }
    return bytes;
}

QByteArray metadataSegments(const PictureMetadata& metadata)
{
    QByteArray bytes;
    if (!metadata.exif.isEmpty())
        bytes += segment(JpegMarker::App1, withNul(exifName), metadata.exif);
    if (!metadata.xmp.isEmpty())
        bytes += segment(JpegMarker::App1, withNul(xmpName), metadata.xmp);
    if (!metadata.iptc.isEmpty())
        bytes += segment(JpegMarker::App13, QByteArray(), metadata.iptc);
    for (const QByteArray& other : metadata.others)
        bytes += other;
    for (const QByteArray& comment : metadata.comments)
        bytes += segment(JpegMarker::Comment, QByteArray(), comment);
    return bytes;
}

/// The profile, joined from its numbered parts.
QByteArray profileOf(const Segments& segments)
{
    QMap<int, QByteArray> parts;
    for (const Segment& segment : segments.list) {
        if (isProfile(segment) && segment.payload.size() > int(sizeof profileName) + 2)
            parts.insert(uchar(segment.payload.at(int(sizeof profileName))), segment.payload);
    }
    QByteArray profile;
    for (const QByteArray& payload : asConst(parts))
        profile += payload.mid(int(sizeof profileName) + 2);
    return profile;
}

void takeMetadata(const Segment& segment, MetadataFindings* findings)
{
    PictureMetadata& metadata = findings->metadata;
    const QByteArray& payload = segment.payload;
    const auto detached = [](const QByteArray& bytes) {
        return QByteArray(bytes.constData(), bytes.size());
    };
    if (segment.marker == JpegMarker::App1 && payload.startsWith(withNul(exifName))) {
        if (metadata.exif.isEmpty()) // of several, readers take the first one
            metadata.exif = payload.mid(int(sizeof exifName));
    } else if (segment.marker == JpegMarker::App1 && payload.startsWith(withNul(xmpName))) {
        if (metadata.xmp.isEmpty())
            metadata.xmp = payload.mid(int(sizeof xmpName));
    } else if (segment.marker == JpegMarker::App13 && payload.startsWith(withNul(iptcName))
               && metadata.iptc.isEmpty()) {
        metadata.iptc = detached(payload);
    } else if (segment.marker == JpegMarker::Comment) {
        metadata.comments.append(detached(payload));
    } else if (!belongsToPicture(segment)
               && isComplete(segment)
               // Its offsets would be wrong, and what it points to is dropped.
               && !payload.startsWith(withNul(multiPictureName))) {
        // Without stray bytes before the next marker.
        metadata.others.append(JpegSegments::head(segment.marker, int(payload.size())) + payload);
    }
}

} // namespace

MetadataFindings readJpegMetadata(const QByteArray& file)
{
    const Segments segments = segmentsOf(file);
    MetadataFindings findings;
    for (const Segment& segment : segments.list)
        takeMetadata(segment, &findings);
    findings.profile = profileOf(segments);
    findings.hasProfile = !findings.profile.isEmpty();
    findings.isTruncated = !segments.endsProperly;
    findings.hasTrailer = segments.end < file.size();
    return findings;
}

QByteArray jpegWithMetadata(const QByteArray& file, const PictureMetadata& metadata,
                            const QByteArray& profile)
{
    const Segments segments = segmentsOf(file);
    const auto isKept = [&](const Segment& segment) {
        return belongsToPicture(segment) && (profile.isEmpty() || !isProfile(segment));
    };
    if (segments.isBroken || std::none_of(segments.list.begin(), segments.list.end(), isKept))
        return QByteArray();
    QByteArray result;
    result.reserve(file.size() + metadata.exif.size() + metadata.xmp.size());
    result += file.left(2);
    const QByteArray added = metadataSegments(metadata) + profileSegments(profile);
    bool isAdded = false;
    for (const Segment& segment : segments.list) {
        // Behind the last one of a truncated file, bytes of another marker may follow.
        const bool mayBreakOff = &segment == &segments.list.last() && !segments.endsProperly;
        if (!isAdded
            && (segment.marker != JpegMarker::App0 || !isComplete(segment) || mayBreakOff)) {
            result += added;
            isAdded = true;
        }
        if (isKept(segment))
            result += segment.whole;
    }
    if (!isAdded)
        result += added;
    if (segments.endsProperly)
        result += file.mid(int(segments.end) - 2, 2);
    return result;
}

} // namespace OrvaUtilsPrivate

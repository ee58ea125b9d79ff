// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Metadata in a TIFF: among the tags of its first picture, in the same directories as in an EXIF
// block. It is read only, for a picture that is imported in another format.

#include "picturemetadata_p.h"

#include "QExifImageHeader.h"
#include "exifblock_p.h"
#include "jpegsegments_p.h"
#include "tiffblock_p.h"

#include <algorithm>

namespace OrvaUtilsPrivate {

namespace {

using Header = QExifImageHeader;

const quint16 xmpTag = 0x02BC;

/// Whether a tag of IFD0 says something about the photograph, not about how its pixels are stored.
bool describesPhotograph(quint16 tag)
{
    const quint16 tags[] = {Header::ImageDescription, Header::Make,     Header::Model,
                            Header::Software,         Header::DateTime, Header::Artist,
                            Header::Copyright};
    return std::find(std::begin(tags), std::end(tags), tag) != std::end(tags);
}

/// Copies the metadata of a file to a block of its own. No more is read than a JPEG can hold: a
/// file may state the same gigabyte as the value of each of its tags.
class TiffMetadata
{
public:
    explicit TiffMetadata(const QByteArray& file)
        : mReader(file)
    {
        const Bytes head = mReader.next(tiffHeaderSize);
        if (head.size < tiffHeaderSize)
            return; // GCOVR_EXCL_LINE: such a file is not recognised as a TIFF
        mReader.setOrder(head.data[0] == 'I' ? QDataStream::LittleEndian : QDataStream::BigEndian);
        const auto offset = decode<quint32>(head.data + 4, mReader.order());
        for (const ExifIfdHeader& entry : directory(offset))
            readImageEntry(entry);
    }

    PictureMetadata metadata() const
    {
        PictureMetadata metadata;
        if (!mKept.isEmpty())
            metadata.exif = mKept.composed();
        metadata.xmp = mXmp;
        return metadata;
    }

private:
    std::vector<ExifIfdHeader> directory(quint32 offset)
    {
        const QVector<ExifIfdHeader> entries =
            mReader.seek(offset) ? mReader.entries() : QVector<ExifIfdHeader>();
        return {entries.begin(), entries.end()};
    }

    void readImageEntry(const ExifIfdHeader& entry)
    {
        const bool isExif = entry.tag == Header::ExifIfdPointer;
        if (isExif || entry.tag == Header::GpsInfoIfdPointer)
            copyDirectory(isExif ? ExifBlock::Exif : ExifBlock::Gps, entry.offset);
        else if (entry.tag == xmpTag)
            readXmp(entry);
        else if (describesPhotograph(entry.tag))
            copy(ExifBlock::Image, entry);
    }

    void copyDirectory(ExifBlock::Directory kind, quint32 offset)
    {
        if (mFound.contains(kind))
            return; // a file may have many pointers
        mFound.append(kind);
        for (const ExifIfdHeader& entry : directory(offset)) {
            // A maker note refers to places in the file.
            if (entry.tag != Header::MakerNote)
                copy(kind, entry);
        }
    }

    void copy(ExifBlock::Directory kind, const ExifIfdHeader& entry)
    {
        const TiffType* const type = TiffType::find(entry.type);
        if (!type || !type->read || !takeRoom(quint64(type->elementSize) * entry.count))
            return;
        // In Latin-1 every byte is a character, so that texts are copied as they are.
        mKept.setValue(kind, entry.tag, mReader.value(entry), ExifBlock::TextCodec::Latin1);
    }

    void readXmp(const ExifIfdHeader& entry)
    {
        const bool areBytes = entry.type == QExifValue::Byte || entry.type == QExifValue::Undefined;
        if (areBytes && takeRoom(entry.count) && mReader.seek(entry.offset)) {
            const Bytes packet = mReader.next(entry.count);
            mXmp = QByteArray(packet.data, packet.size);
        }
    }

    bool takeRoom(quint64 size)
    {
        const quint64 needed = size + entrySize;
        if (needed > mRoom)
            return false;
        mRoom -= needed;
        return true;
    }

    TiffReader mReader;
    quint64 mRoom = quint64(2) * JpegSegments::MaximumPayload; // a segment of EXIF, and one of XMP
    QVector<ExifBlock::Directory> mFound;
    ExifBlock mKept;
    QByteArray mXmp;
};

} // namespace

MetadataFindings readTiffMetadata(const QByteArray& file)
{
    MetadataFindings findings;
    findings.metadata = TiffMetadata(file).metadata();
    return findings;
}

} // namespace OrvaUtilsPrivate

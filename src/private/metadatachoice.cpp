// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "metadatachoice_p.h"

#include "QExifImageHeader.h"
#include "exifblock_p.h"
#include "locationeraser_p.h"

#include <algorithm>

namespace OrvaUtilsPrivate {

namespace {

using Header = QExifImageHeader;

// Texts are copied between blocks as bytes: in Latin-1 every byte is a character.
const ExifBlock::TextCodec bytewise = ExifBlock::TextCodec::Latin1;

/// An EXIF block with the author, the copyright and the date of a photograph; empty if unknown.
QByteArray copyrightAndDate(const QByteArray& exif)
{
    ExifBlock found;
    ExifBlock kept;
    if (!found.parse(exif))
        return QByteArray();
    const auto keep = [&](ExifBlock::Directory directory, quint16 tag) {
        kept.setValue(directory, tag, found.value(directory, tag, bytewise), bytewise);
    };
    keep(ExifBlock::Image, Header::Artist);
    keep(ExifBlock::Image, Header::Copyright);
    keep(ExifBlock::Exif, Header::DateTimeOriginal);
    if (found.contains(ExifBlock::Exif, Header::DateTimeOriginal)) {
        keep(ExifBlock::Exif, Header::SubSecTimeOriginal);
        keep(ExifBlock::Exif, Header::OffsetTimeOriginal);
    }
    return kept.isEmpty() ? QByteArray() : kept.composed();
}

/// The text chunks of a PNG with the same information.
QList<QByteArray> copyrightAndDate(const QList<QByteArray>& comments)
{
    const int keywordAt = 8; // after length and type
    const char* const keywords[] = {"Copyright", "Author", "Creation Time"};
    QList<QByteArray> kept;
    for (const QByteArray& comment : comments) {
        const QByteArray keyword =
            comment.mid(keywordAt, comment.indexOf('\0', keywordAt) - keywordAt);
        if (std::any_of(std::begin(keywords), std::end(keywords),
                        [&](const char* known) { return keyword == known; }))
            kept.append(comment);
    }
    return kept;
}

QByteArray withoutGps(const QByteArray& exif)
{
    ExifBlock block;
    if (!block.parse(exif))
        return QByteArray(); // its contents are unknown
    block.removeGps();
    const QByteArray without = block.composed();
    return ExifBlock::mayTellGps(without) ? QByteArray() : without;
}

/// Whether a comment of a JPEG or GIF, or a text chunk of a PNG, may reveal a location.
bool mayTellLocation(const QByteArray& comment)
{
    // A PNG may contain EXIF and XMP as hexadecimal digits, XMP also compressed or twice.
    const QByteArray text = comment.mid(8); // after length and type
    QByteArray without = comment;
    return text.startsWith("Raw profile type") || text.startsWith("XML:com.adobe.xmp")
        || !eraseLocation(&without) || without != comment;
}

PictureMetadata withoutLocation(const PictureMetadata& found)
{
    PictureMetadata kept = found;
    if (!found.exif.isEmpty())
        kept.exif = withoutGps(found.exif);
    if (!eraseLocationInXmp(&kept.xmp))
        kept.xmp.clear();
    if (!eraseLocation(&kept.iptc))
        kept.iptc.clear();
    kept.others.clear();
    kept.comments.erase(std::remove_if(kept.comments.begin(), kept.comments.end(), mayTellLocation),
                        kept.comments.end());
    return kept;
}

/// The XMP packet, with any orientation that it states set to upright.
QByteArray uprightXmp(QByteArray xmp)
{
    const QByteArray name = QByteArrayLiteral("tiff:Orientation");
    for (int at = 0; (at = int(xmp.indexOf(name, at))) >= 0; at += int(name.size())) {
        int value = int(at + name.size());
        while (value < xmp.size()
               && (xmp.at(value) == '=' || xmp.at(value) == '>' || xmp.at(value) == '"'
                   || xmp.at(value) == '\''))
            ++value;
        if (value < xmp.size() && xmp.at(value) >= '2' && xmp.at(value) <= '8')
            xmp[value] = '1';
    }
    return xmp;
}

/// Replaces a number in a block; does nothing if the block does not contain it.
void correct(ExifBlock* block, ExifBlock::Directory directory, quint16 tag, int number)
{
    if (block->contains(directory, tag))
        block->setValue(directory, tag, QExifValue(quint32(number)), bytewise);
}

} // namespace

PictureMetadata chosenMetadata(const PictureMetadata& found, ImageImport::Metadata choice)
{
    PictureMetadata chosen;
    switch (choice) {
    case ImageImport::NoMetadata:
        break;
    case ImageImport::CopyrightAndDate:
        chosen.exif = copyrightAndDate(found.exif);
        chosen.comments = copyrightAndDate(found.comments);
        break;
    case ImageImport::AllButLocation:
        chosen = withoutLocation(found);
        break;
    case ImageImport::AllMetadata:
        chosen = found;
        break;
    }
    return chosen;
}

PictureMetadata withOrientation(const PictureMetadata& metadata, int orientation)
{
    if (orientation <= 1 || orientationIn(metadata) == orientation)
        return metadata;
    PictureMetadata result = metadata;
    ExifBlock block;
    block.parse(metadata.exif);
    block.setValue(ExifBlock::Image, Header::Orientation, QExifValue(quint16(orientation)),
                   bytewise);
    result.exif = block.composed();
    return result;
}

PictureMetadata adaptedMetadata(const PictureMetadata& metadata, const QSize& size, bool isUpright)
{
    PictureMetadata adapted = metadata;
    ExifBlock block;
    if (block.parse(metadata.exif)) {
        block.removeThumbnail();
        correct(&block, ExifBlock::Exif, Header::PixelXDimension, size.width());
        correct(&block, ExifBlock::Exif, Header::PixelYDimension, size.height());
        correct(&block, ExifBlock::Image, Header::ImageWidth, size.width());
        correct(&block, ExifBlock::Image, Header::ImageLength, size.height());
        if (isUpright && block.contains(ExifBlock::Image, Header::Orientation)) {
            block.setValue(ExifBlock::Image, Header::Orientation, QExifValue(quint16(1)), bytewise);
        }
        adapted.exif = block.composed();
    }
    if (isUpright)
        adapted.xmp = uprightXmp(metadata.xmp);
    return adapted;
}

int orientationIn(const PictureMetadata& metadata)
{
    ExifBlock block;
    if (!block.parse(metadata.exif))
        return 0;
    const QExifValue value = block.value(ExifBlock::Image, Header::Orientation, bytewise);
    const qint64 number = value.type() == QExifValue::Short ? value.toShort() : value.toLong();
    return number >= 1 && number <= 8 ? int(number) : 0;
}

} // namespace OrvaUtilsPrivate

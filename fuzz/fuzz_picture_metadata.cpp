// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Metadata of a JPEG, PNG, WebP or GIF: it is removed completely, the pixels are kept, and metadata
// without location contains no GPS position.

#include "Fuzz.h"

#include "../src/private/metadatachoice_p.h"
#include "../src/private/picturemetadata_p.h"
#include "../src/private/picturereader_p.h"
#include "../tests/support/TiffWalk.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QXmlStreamReader>

using namespace OrvaUtilsPrivate;

namespace {

/// Whether a GIF has an extension with fewer bytes than its kind needs. Qt takes what is missing
/// from the blocks before it, which may be metadata, and reads a byte too many of an empty one.
bool hasShortExtension(const QByteArray& gif)
{
    for (int at = 0; at + 2 < gif.size(); ++at) {
        const int size = uchar(gif.at(at + 2));
        const int needed = gif.at(at + 1) == '\xF9' ? 4 : gif.at(at + 1) == '\xFF' ? 11 : 0;
        if (gif.at(at) == '\x21' && size < needed)
            return true;
    }
    return false;
}

/// The picture, if it is small enough to be decoded quickly; otherwise null, also if the library
/// would not decode it, or if Qt reads it in a way of its own.
QImage decoded(const QByteArray& file, const QByteArray& format)
{
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    if (claimsMissingBytes(&buffer, PngChunks::All) || (format == "gif" && hasShortExtension(file)))
        return QImage();
    QImageReader reader(&buffer, format);
    reader.setAutoTransform(false);
    const QSize size = canvasOf(reader);
    const qint64 smallSize = 64 * 64;
    const bool isSmall = size.isValid() && qint64(size.width()) * size.height() <= smallSize;
    return isSmall ? reader.read() : QImage();
}

bool namesGps(const QStringRef& name)
{
    return name.startsWith(QLatin1String("GPS"), Qt::CaseInsensitive);
}

/// Whether an XMP packet that an XML reader understands states a GPS position.
bool tellsGps(const QByteArray& xmp)
{
    if (xmp.contains('\0') || xmp.contains('\xFE')) // UTF-16, which XMP in a picture never is
        return false;
    QXmlStreamReader reader(xmp);
    bool tells = false;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        tells = tells || namesGps(reader.name());
        for (const QXmlStreamAttribute& attribute : reader.attributes())
            tells = tells || namesGps(attribute.name());
    }
    return tells && !reader.hasError();
}

bool tellsGps(const PictureMetadata& metadata)
{
    for (const QByteArray& entry : TiffWalk(metadata.exif).entries()) {
        if (entry.contains("GPS "))
            return true;
    }
    return tellsGps(metadata.xmp);
}

/// Whether a file has the metadata that was put into it. A WebP that does not begin with its pixels
/// accepts none, because its size is unknown.
bool comesOut(const QByteArray& file, const QByteArray& format, const PictureMetadata& metadata)
{
    const QByteArray changed = withMetadata(file, format, metadata);
    return changed.isEmpty() ? format == "webp"
                             : readMetadata(changed, format).metadata == metadata;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const char* const formats[] = {"jpeg", "png", "webp", "gif"};
    if (size < 1)
        return 0;
    const QByteArray format = formats[data[0] % 4];
    const QByteArray file(reinterpret_cast<const char*>(data) + 1, int(size) - 1);
    const MetadataFindings found = readMetadata(file, format);
    const QByteArray bare = withMetadata(file, format, PictureMetadata());
    if (bare.isEmpty())
        return 0;
    const MetadataFindings left = readMetadata(bare, format);
    FUZZ_PROMISE(left.metadata == PictureMetadata());
    FUZZ_PROMISE(!left.hasTrailer);
    FUZZ_PROMISE(left.hasProfile == found.hasProfile && left.profile == found.profile);
    FUZZ_PROMISE(withMetadata(bare, format, PictureMetadata()) == bare);
    const QImage pixels = decoded(file, format);
    if (!pixels.isNull())
        FUZZ_PROMISE(decoded(bare, format) == pixels);

    // Metadata that is put into a picture can be read back.
    FUZZ_PROMISE(comesOut(bare, format, found.metadata));

    for (const auto choice : {ImageImport::CopyrightAndDate, ImageImport::AllButLocation}) {
        const PictureMetadata chosen = chosenMetadata(found.metadata, choice);
        FUZZ_PROMISE(!tellsGps(chosen));
        FUZZ_PROMISE(comesOut(file, format, chosen));
        adaptedMetadata(withOrientation(chosen, 6), QSize(4, 3), true);
    }
    return 0;
}

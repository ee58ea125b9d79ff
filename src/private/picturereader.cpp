// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "picturereader_p.h"

#include "intactfile_p.h"
#include "jpegsegments_p.h"
#include "logrecord_p.h"
#include "orientation_p.h"
#include "picturesize_p.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QtEndian>

#include <cmath>
#include <limits>

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#endif

namespace OrvaUtilsPrivate {

namespace {

/// No camera writes more segments or scans than this. A decoder goes through all scans repeatedly,
/// and keeps the contents of segments in lists that it traverses from the beginning.
const int mostSegments = 1000;

/// Whether more segments than that precede the picture itself.
bool hasEndlessHeader(QIODevice* device)
{
    const qint64 start = device->pos();
    JpegSegments segments(device, JpegSegments::Markers::Standard);
    int count = 0;
    for (bool found = segments.begin();
         found && segments.marker() != JpegMarker::StartOfScan && count <= mostSegments;
         found = segments.next())
        ++count;
    device->seek(start);
    return count > mostSegments;
}

/// What the segments of a JPEG reveal about its pixels.
struct JpegOutline
{
    bool isEndless = false;
    /// The number of bits that a pixel takes in the file, on average.
    double bitsPerPixel = 0;
    /// The binary logarithm of the geometric mean of the luma quantisation steps.
    double quantisation = 0;
};

/// The mean of the logarithms of a quantisation table: 64 numbers of one or two bytes, the most
/// significant first, after a byte that states which.
double meanLogarithm(const QByteArray& table)
{
    const int count = 64;
    const int bytes = !table.isEmpty() && (table.at(0) & 0xF0) != 0 ? 2 : 1;
    if (table.size() < 1 + count * bytes)
        return 0;
    double sum = 0;
    for (int i = 0; i < count; ++i) {
        int step = 0;
        for (int byte = 0; byte < bytes; ++byte)
            step = step << 8 | uchar(table.at(1 + i * bytes + byte));
        sum += std::log2(qMax(1, step));
    }
    return sum / count;
}

JpegOutline outlineOf(const QByteArray& bytes, const QSize& size)
{
    const quint16 quantisationTables = 0xFFDB; // the first one is for luma
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    JpegSegments segments(&buffer, JpegSegments::Markers::Standard);
    JpegOutline outline;
    qint64 pixelsBegin = -1;
    int count = 0;
    for (bool found = segments.begin(); found && count <= mostSegments; found = segments.next()) {
        ++count;
        if (segments.marker() == quantisationTables && outline.quantisation == 0)
            outline.quantisation = meanLogarithm(segments.read(segments.claimedSize()));
        if (segments.marker() == JpegMarker::StartOfScan && pixelsBegin < 0)
            pixelsBegin = segments.position();
    }
    outline.isEndless = count > mostSegments;
    const bool endsProperly = segments.marker() == JpegMarker::EndOfImage;
    const qint64 end = endsProperly ? segments.position() : bytes.size();
    outline.bitsPerPixel =
        double(end - qMax(Q_INT64_C(0), pixelsBegin)) * 8 / (double(size.width()) * size.height());
    return outline;
}

/// The memory that an image reader takes for a pixel of its current picture.
int bytesPerPixel(const QImageReader& reader)
{
    const int usual = 4; // most readers do not report it; what they report is converted to this
    // What a reader reports without having understood the header is arbitrary.
    if (!reader.size().isValid())
        return usual;
    const int format = reader.imageFormat();
    if (format <= QImage::Format_Invalid || format >= QImage::NImageFormats)
        return usual;
    return qMax(usual, QImage::toPixelFormat(QImage::Format(format)).bitsPerPixel() / 8);
}

bool fitsInMemory(const QImageReader& reader)
{
    return OrvaUtilsPrivate::fitsInMemory(canvasOf(reader), bytesPerPixel(reader));
}

/// Lets \a reader decode its picture into \a image, which is null on failure.
///
/// Since Qt 6, a reader creates no image of more than QImageReader::allocationLimit(), 128 MiB by
/// default, which a photograph of 34 million pixels exceeds. The limit applies to the whole process
/// and is left as the application has it. But a reader decodes into an image of the right size and
/// format that it is given, and whether a picture fits into memory is checked before.
bool read(QImageReader& reader, QImage* image)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    const int limit = QImageReader::allocationLimit();
    const qint64 pixels = qint64(reader.size().width()) * reader.size().height();
    const bool isRefused = limit > 0 && pixels * bytesPerPixel(reader) > qint64(limit) << 20;
    if (isRefused && reader.imageFormat() != QImage::Format_Invalid)
        *image = QImage(reader.size(), reader.imageFormat());
    if (reader.read(image))
        return true;
    if (isRefused)
        ORVAUTILS_LOG_WARNING() << "picture of" << reader.size() << "is beyond the limit of"
                                << limit << "MB, see QImageReader::setAllocationLimit()";
    *image = QImage();
    return false;
#else
    return reader.read(image);
#endif
}

/// How much fine detail a picture has: the mean square of the second difference between
/// neighbouring pixels, along rows and columns, in grey levels, from a sample of its rows.
double fineDetail(const QImage& image)
{
    const int rowStep = qMax(1, image.height() / 50);
    qint64 sum = 0;
    qint64 count = 0;
    for (int y = 0; y + 2 < image.height(); y += rowStep) {
        const QImage rows =
            image.copy(0, y, image.width(), 3).convertToFormat(QImage::Format_RGB32);
        const QRgb* row[3];
        for (int i = 0; i < 3; ++i)
            row[i] = reinterpret_cast<const QRgb*>(rows.constScanLine(i));
        for (int x = 0; x + 2 < rows.width(); ++x) {
            const int level = qGray(row[0][x]);
            const int across = level - 2 * qGray(row[0][x + 1]) + qGray(row[0][x + 2]);
            const int down = level - 2 * qGray(row[1][x]) + qGray(row[2][x]);
            sum += across * across + down * down;
            count += 2;
        }
    }
    return count == 0 ? 0 : double(sum) / double(count);
}

/// The variance, in the whole photograph, of white noise that has as much fine detail as \a image,
/// the photograph reduced to so many eighths: averaging pixels weakens it.
double grainVariance(const QImage& image, int eighths)
{
    const double detailOfUnitVariance = 6; // 1 + 4 + 1: of a second difference
    return fineDetail(image) / detailOfUnitVariance * 64 / (eighths * eighths);
}

/// The standard deviation of the white noise for which a JPEG spends as many bits, slightly
/// overestimated for safety. Determined with photographs to which noise was added, at qualities
/// from 60 to 97.
double expectedGrain(const JpegOutline& outline)
{
    const double bitsOfOneStep = 2.65;
    return std::exp2(outline.quantisation + outline.bitsPerPixel - bitsOfOneStep);
}

/// The largest acceptable mean square error of luma: 38 dB (PSNR) are 10.3, and rounding takes 0.5.
const double mostError = 9.8;

/// How a whole picture is reduced by the decoder, and then scaled.
struct Reduction
{
    Reduction(const QSize& whole, const QSize& reduced, const QSize& target)
        : density(qMin(double(reduced.width()) / target.width(),
                       double(reduced.height()) / target.height()))
        , scale(density * whole.width() / reduced.width())
        , isSafe(density >= 2.5 || reduced == target)
    { }

    /// The mean square difference between the scaled picture and one made from the whole picture,
    /// for white noise of \a variance. An upper bound of what was measured at scales from 1.3 to
    /// 12, for each number of eighths.
    double error(double variance) const
    {
        return 0.3 * variance / (scale * std::pow(density, 3.2));
    }

    double density; ///< reduced pixels for a pixel of the target, along a side
    double scale; ///< whole pixels for a pixel of the target, along a side
    bool isSafe; ///< whatever the picture shows
};

/// Whether a picture may be decoded at so many eighths of its size. Five and six save no time, so
/// they are only for pictures that take much memory.
bool canReduce(const QSize& whole, int eighths)
{
    const qint64 manyPixels = 8000000;
    const bool isLarge = qint64(whole.width()) * whole.height() > manyPixels;
    return whole.width() * qint64(eighths) % 8 == 0 && whole.height() * qint64(eighths) % 8 == 0
        && (eighths < 5 || isLarge);
}

/// The smallest number of eighths at which a picture may be decoded, judging by its file.
int eighthsFor(const JpegOutline& outline, const QSize& whole, const QSize& target)
{
    const double grain = expectedGrain(outline);
    for (const int eighths : {1, 2, 4, 5, 6}) {
        if (!target.isValid() || !canReduce(whole, eighths))
            continue;
        const Reduction reduction(whole, whole * eighths / 8, target);
        if (reduction.density >= 1
            && (reduction.isSafe || reduction.error(grain * grain) <= mostError))
            return eighths;
    }
    return 8;
}

/// An image to decode into, in large pages of memory if the system provides them on request: a
/// photograph takes thousands of small ones, and their page faults cost about as much time as
/// scaling it.
QImage imageInLargePages(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
#ifdef Q_OS_LINUX
    const quintptr page = quintptr(2) * 1024 * 1024;
    uchar* const bits = image.bits();
    const auto start = reinterpret_cast<quintptr>(bits);
    const quintptr end = start + quintptr(image.bytesPerLine()) * quintptr(image.height());
    const quintptr firstPage = (start + page - 1) / page * page;
    if (end > firstPage)
        madvise(bits + (firstPage - start), (end - firstPage) / page * page, MADV_HUGEPAGE);
#endif
    return image;
}

/// Decodes a JPEG to \a size, which is its own or some eighths of it. The caller then scales it to
/// \a target, if that is valid.
///
/// If it is scaled down enough, the decoder need not smooth the colours between pixels, which Qt
/// leaves out below a quality of 50: scaling averages several pixels anyway.
///
/// The file is passed as bytes because Qt gives the decoder all of them at once; it gives a file in
/// pieces of 4 KiB, and with less than 3 KiB available the decoder takes a slow and careful path.
bool decodeJpegAt(const QSize& size, const QByteArray& bytes, const QSize& target, QImage* image)
{
    if (!OrvaUtilsPrivate::fitsInMemory(size))
        return false;
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, "jpeg");
    if (size != reader.size())
        reader.setScaledSize(size);
    if (target.isValid() && !exceeds(target * 3, size * 2))
        reader.setQuality(49);
    // A reader uses the image that it is given, if size and format are right.
    *image = reader.imageFormat() == QImage::Format_Grayscale8
        ? QImage(size, QImage::Format_Grayscale8)
        : imageInLargePages(size);
    return reader.read(image);
}

} // namespace

bool claimsMissingBytes(QIODevice* device, PngChunks chunks)
{
    const QByteArray signature = QByteArrayLiteral("\x89PNG\r\n\x1a\n");
    const int headSize = 8; // length and type; a checksum follows the data
    const int frameSize = headSize + 4;
    const qint64 mostMissing = Q_INT64_C(1024) * 1024;
    if (device->peek(signature.size()) != signature)
        return false;
    const qint64 start = device->pos();
    const qint64 end = device->size();
    bool claims = false;
    for (qint64 at = start + signature.size(); at < end && device->seek(at);) {
        const QByteArray head = device->read(headSize);
        const QByteArray type = head.mid(4);
        const bool arePixels = type == "IDAT";
        if (head.size() < headSize || type == "IEND"
            || (arePixels && chunks == PngChunks::BeforePixels))
            break;
        at += frameSize + qFromBigEndian<quint32>(reinterpret_cast<const uchar*>(head.constData()));
        claims = !arePixels && at > end + mostMissing;
    }
    device->seek(start);
    return claims;
}

QSize canvasOf(const QImageReader& reader)
{
    const QSize size = reader.size();
    if (reader.format() != "gif")
        return size;
    // The reader reports the size of the first frame if it considers that of the screen absurd, but
    // allocates memory for the screen all the same.
    const int sizesEnd = 10;
    QIODevice* const device = reader.device();
    const qint64 position = device->pos();
    device->seek(0);
    const QByteArray head = device->read(sizesEnd);
    device->seek(position);
    if (head.size() < sizesEnd)
        return size;
    const auto* const sides = reinterpret_cast<const uchar*>(head.constData() + 6);
    return size.expandedTo(
        QSize(qFromLittleEndian<quint16>(sides), qFromLittleEndian<quint16>(sides + 2)));
}

PictureHeader readPictureHeader(const QString& path)
{
    PictureHeader header;
    IntactFile file(path);
    if (!file.isIntact())
        return header;
    QImageReader reader(&file);
    header.format = reader.format().toLower();
    const bool isEndless = hasEndlessHeader(&file);
    if (!isEndless && !claimsMissingBytes(&file, PngChunks::BeforePixels)) {
        header.size = reader.size();
        header.canvas = canvasOf(reader);
        header.bytesPerPixel = bytesPerPixel(reader);
        header.orientation = orientationOf(reader.transformation());
    }
    header.isIntact = file.isIntact() && !isEndless;
    return header;
}

bool loadWhole(const QString& path, QImage* image)
{
    IntactFile file(path);
    if (!file.isIntact() || JpegSegments::hasMoreThan(mostSegments, &file)
        || claimsMissingBytes(&file, PngChunks::All))
        return false;
    QImageReader reader(&file);
    return fitsInMemory(reader) && read(reader, image) && file.isIntact();
}

bool readWholeFile(const QString& path, QByteArray* bytes)
{
    IntactFile file(path);
    if (!file.isIntact() || file.size() > std::numeric_limits<int>::max() / 2)
        return false;
    *bytes = file.readAll();
    return file.isIntact();
}

bool decodeAsStored(const QByteArray& bytes, const QByteArray& format, QImage* image)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    if (claimsMissingBytes(&buffer, PngChunks::All))
        return false;
    QImageReader reader(&buffer, format);
    reader.setAutoTransform(false);
    return fitsInMemory(reader) && read(reader, image);
}

// JPEG stores blocks of 8 x 8 pixels, from which the decoder can make blocks of 1 to 8 pixels a
// side. It makes blocks of 1, 2 and 4 much faster than whole ones, in a fraction of the memory;
// blocks of 5 and 6 take as much time as whole ones, but still less memory. It rounds the size of
// the picture up if it is not a multiple, which would shift the pixels; such a picture is not
// reduced that far.
//
// Scaling averages over areas. Where the edge of an area falls inside a pixel of the reduced
// picture, that pixel is spread over both sides, and detail that was finer does not stay where it
// belongs. The error decreases with the density, which is the number of reduced pixels for a pixel
// of the target along a side, and increases with the detail. From a density of 2.5 on it is
// negligible (39 dB and better, on seventy pictures). Below that, it is estimated from the detail:
// - before decoding, from the bits that the file spends on a pixel. One more bit means detail of
//   twice the strength, relative to the quantisation steps; so nothing is decoded twice merely
//   because it is grainy.
// - after decoding, from the reduced picture itself: detail that is concentrated in a part of the
//   picture costs few bits. Only then is the photograph decoded again, whole.
bool decodeJpeg(const QByteArray& bytes, const QSize& whole, const QSize& target, QImage* image)
{
    const JpegOutline outline = outlineOf(bytes, whole);
    if (outline.isEndless)
        return false;
    const int eighths = eighthsFor(outline, whole, target);
    if (eighths == 8)
        return decodeJpegAt(whole, bytes, target, image);
    const QSize reduced = whole * eighths / 8;
    if (!decodeJpegAt(reduced, bytes, target, image))
        return false;
    const Reduction reduction(whole, reduced, target);
    if (reduction.isSafe || reduction.error(grainVariance(*image, eighths)) <= mostError)
        return true;
    *image = QImage();
    return decodeJpegAt(whole, bytes, target, image);
}

QSize decodedJpegSize(const QByteArray& bytes, const QSize& whole, const QSize& target)
{
    const int eighths = eighthsFor(outlineOf(bytes, whole), whole, target);
    return eighths == 8 ? whole : whole * eighths / 8;
}

} // namespace OrvaUtilsPrivate

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "picturereader_p.h"

#include "intactfile_p.h"
#include "jpegsegments_p.h"
#include "orientation_p.h"
#include "picturesize_p.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>

#include <limits>

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#endif

namespace OrvaUtilsPrivate {

namespace {

/// No camera writes more segments or scans than this. A decoder goes through all scans again and
/// again, and keeps what is in the segments in lists that it walks from their beginning.
const int mostSegments = 1000;

/// Whether more segments than that stand before the picture itself.
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

bool hasTooManySegments(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    return buffer.open(QIODevice::ReadOnly) && JpegSegments::hasMoreThan(mostSegments, &buffer);
}

/// The memory that an image reader takes for a pixel of the picture it has before it.
int bytesPerPixel(const QImageReader& reader)
{
    const int usual = 4; // most readers do not tell; and what they tell is converted to this
    // What a reader tells without having understood the header is any number.
    if (!reader.size().isValid())
        return usual;
    const int format = reader.imageFormat();
    if (format <= QImage::Format_Invalid || format >= QImage::NImageFormats)
        return usual;
    return qMax(usual, QImage::toPixelFormat(QImage::Format(format)).bitsPerPixel() / 8);
}

bool fitsInMemory(const QImageReader& reader)
{
    return OrvaUtilsPrivate::fitsInMemory(reader.size(), bytesPerPixel(reader));
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

/// An image to decode into, in large pages of memory where the system gives them to those who ask:
/// of small ones a photograph takes thousands, and the faults that fetch them cost about as much
/// time as scaling it.
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

/// Decodes a JPEG to size, which is its own or the half, quarter or eighth of it, and which is then
/// scaled to target, if that is valid.
///
/// Where it is scaled down enough, the decoder is spared smoothing the colours between pixels, as
/// Qt has it below a quality of 50: scaling takes the mean of several pixels anyhow.
///
/// The file comes as bytes, because of them Qt shows the decoder all at once; of a file it shows
/// 4 KiB at a time, and with less than 3 KiB before it the decoder goes a slow and careful way.
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
    // A reader uses the image that it is given, if size and format are right; grey ones are not.
    *image = imageInLargePages(size);
    return reader.read(image);
}

} // namespace

PictureHeader readPictureHeader(const QString& path)
{
    PictureHeader header;
    IntactFile file(path);
    if (!file.isIntact())
        return header;
    QImageReader reader(&file);
    header.format = reader.format().toLower();
    const bool isEndless = hasEndlessHeader(&file);
    if (!isEndless) {
        header.size = reader.size();
        header.bytesPerPixel = bytesPerPixel(reader);
        header.orientation = orientationOf(reader.transformation());
    }
    header.isIntact = file.isIntact() && !isEndless;
    return header;
}

bool loadWhole(const QString& path, QImage* image)
{
    IntactFile file(path);
    if (!file.isIntact() || JpegSegments::hasMoreThan(mostSegments, &file))
        return false;
    QImageReader reader(&file);
    return fitsInMemory(reader) && reader.read(image) && file.isIntact();
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
    QImageReader reader(&buffer, format);
    reader.setAutoTransform(false);
    return fitsInMemory(reader) && reader.read(image);
}

// JPEG stores blocks of 8 x 8 pixels, from which the decoder makes blocks of 1, 2 or 4 pixels a
// side much faster and in a fraction of the memory. It rounds the size of the picture up where it
// is not a multiple, which would shift the pixels; such a picture is not reduced that far.
//
// Scaling takes means over areas. Where the edge of an area falls inside a pixel of the reduced
// picture, that pixel is spread over both sides, and detail that was finer than it does not stay
// where it belongs. The error falls with the square of the density, which is how many reduced
// pixels a pixel of the target has along a side, and grows with the detail. So much for the
// theory; measured on seventy pictures, against scaling the whole one, at densities from 1 to 4:
// - from 2.5 on the luma always stayed within 39 dB (PSNR);
// - below, a half whose detail the condition accepts stayed within 39 dB; an eighth and a quarter
//   would have to be refused too often to be worth a try.
bool decodeJpeg(const QByteArray& bytes, const QSize& whole, const QSize& target, QImage* image)
{
    if (hasTooManySegments(bytes))
        return false;
    for (const int divisor : {8, 4, 2}) {
        if (!target.isValid() || whole.width() % divisor != 0 || whole.height() % divisor != 0)
            continue;
        const QSize reduced = whole / divisor;
        const double density = qMin(double(reduced.width()) / target.width(),
                                    double(reduced.height()) / target.height());
        const bool ample = density >= 2.5;
        if (density < 1 || (!ample && divisor != 2))
            continue;
        if (decodeJpegAt(reduced, bytes, target, image)
            && (ample || reduced == target || fineDetail(*image) <= 200 * density * density))
            return true;
        *image = QImage();
    }
    return decodeJpegAt(whole, bytes, target, image);
}

} // namespace OrvaUtilsPrivate

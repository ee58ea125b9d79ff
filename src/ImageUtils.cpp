// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ImageUtils.h"

#include "ExifUtils.h"
#include "FileUtils.h"
#include "filecopy_p.h"
#include "filesystem_p.h"
#include "intactfile_p.h"
#include "logrecord_p.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QLabel>
#include <QPainter>
#include <QSaveFile>
#include <QTransform>

#include <cerrno>
#include <cmath>
#include <limits>

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#endif

using namespace OrvaUtilsPrivate;

namespace {

const QSize emptyCanvas(20, 20); // the size of what is made of a null image

// Sizes

/// Whether a picture of that many pixels may be held in memory. 2 GiB is what an image can have in
/// the oldest Qt that we support; newer ones would follow a forged header much further.
bool fitsInMemory(double width, double height)
{
    return width * height * 4 <= std::numeric_limits<int>::max();
}

bool fitsInMemory(const QSize& size)
{
    return fitsInMemory(size.width(), size.height());
}

bool exceeds(const QSize& size, const QSize& maximum)
{
    return size.width() > maximum.width() || size.height() > maximum.height();
}

/// The maximum size that copyImageFile() works with: a side of 0 is computed from the size of the
/// picture, two of them are no maximum.
QSize effectiveMaximum(const QSize& maximum, const QSize& picture)
{
    if (maximum.width() == 0 && maximum.height() == 0)
        return QSize(-1, -1);
    if (maximum.height() == 0)
        return picture.scaled(999999999, 1, Qt::KeepAspectRatio);
    if (maximum.width() == 0)
        return picture.scaled(1, 999999999, Qt::KeepAspectRatio);
    return maximum;
}

QSize doubled(const QSize& size)
{
    const int most = std::numeric_limits<int>::max() / 2;
    return QSize(qMin(size.width(), most) * 2, qMin(size.height(), most) * 2);
}

/// The size that QImage::scaled() gives a picture, or an invalid one where it could not be held.
QSize scaledSize(const QSize& picture, const QSize& target, Qt::AspectRatioMode mode)
{
    if (mode == Qt::KeepAspectRatioByExpanding) {
        // The side that exceeds the target may exceed the numbers, too.
        const double factor = qMax(double(target.width()) / picture.width(),
                                   double(target.height()) / picture.height());
        if (!fitsInMemory(factor * picture.width(), factor * picture.height()))
            return QSize();
    }
    const QSize size = picture.scaled(target, mode).expandedTo(QSize(1, 1));
    return fitsInMemory(size) ? size : QSize();
}

/// round(side x numerator / denominator), within the numbers.
int proportional(int side, int numerator, int denominator)
{
    if (denominator == 0)
        return 0;
    const double most = std::numeric_limits<int>::max() - 1;
    return qRound(qBound(-most, double(side) * numerator / denominator, most));
}

// Loading

/// Loads the whole picture and returns whether the image reader did.
bool loadWhole(const QString& path, QImage* image)
{
    IntactFile file(path);
    if (!file.isIntact())
        return false;
    QImageReader reader(&file);
    return fitsInMemory(reader.size()) && reader.read(image) && file.isIntact();
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
bool decodeJpeg(const QByteArray& bytes, const QSize& size, const QSize& target, QImage* image)
{
    if (!fitsInMemory(size))
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

/// Loads a JPEG of the size whole that is to be scaled to target, or stay as it is where target is
/// invalid: at a reduced size where nobody will see it, else whole. Returns whether the image
/// reader did.
///
/// JPEG stores blocks of 8 x 8 pixels, from which the decoder makes blocks of 1, 2 or 4 pixels a
/// side much faster and in a fraction of the memory. It rounds the size of the picture up where it
/// is not a multiple, which would shift the pixels; such a picture is not reduced that far.
///
/// Scaling takes means over areas. Where the edge of an area falls inside a pixel of the reduced
/// picture, that pixel is spread over both sides, and detail that was finer than it does not stay
/// where it belongs. The error falls with the square of the density, which is how many reduced
/// pixels a pixel of the target has along a side, and grows with the detail. So much for the
/// theory; measured on seventy pictures, against scaling the whole one, at densities from 1 to 4:
/// - from 2.5 on the luma always stayed within 39 dB (PSNR);
/// - below, a half whose detail the condition accepts stayed within 39 dB; an eighth and a quarter
///   would have to be refused too often to be worth a try.
bool loadJpeg(const QString& path, const QSize& whole, const QSize& target, QImage* image)
{
    IntactFile file(path);
    const QByteArray bytes = file.isIntact() ? file.readAll() : QByteArray();
    if (!file.isIntact())
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
        if (decodeJpeg(bytes, reduced, target, image)
            && (ample || reduced == target || fineDetail(*image) <= 200 * density * density))
            return true;
        *image = QImage();
    }
    return decodeJpeg(bytes, whole, target, image);
}

// Saving

/// How a picture is written.
struct Encoding
{
    QByteArray format;
    int quality;
    bool progressive;
};

/// Writes the picture to file, which is opened for it, down to the operating system. Where that
/// fails, error tells why.
bool encode(const QImage& image, QFileDevice& file, const Encoding& encoding, QString* error)
{
    QImageWriter writer(&file, encoding.format);
    if (encoding.progressive) {
        writer.setCompression(encoding.quality);
        writer.setProgressiveScanWrite(true);
    } else {
        writer.setQuality(qMin(encoding.quality, 100));
    }
    if (!writer.write(image)) {
        *error = writer.errorString();
        return false;
    }
    // The last bytes are still in the buffer of the file: a full disk may show only now.
    if (!file.flush()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

void logProgressiveFailure(const QImage& image, const QString& path, const QString& error)
{
    ORVAUTILS_LOG_WARNING_IN("writeProgressiveImage")
        << "can't save writeProgressiveImage " << path << " errorString=" << error
        << " size=" << image.size();
}

enum class SaveResult {
    Saved,
    CannotRemove, ///< what stands at the destination cannot be replaced
    CannotSave
};

/// Puts the picture in the place of what stands at dst.
///
/// What stands there may be the only copy of a photograph, and even be the file that image was
/// loaded from. So it is not removed first and the picture saved then: the picture is saved beside
/// it, under a hidden name of its own, and takes the place of dst when it is complete. A link is
/// replaced, as removing it would do.
SaveResult replaceFile(const QImage& image, const QString& dst, const Encoding& encoding)
{
    const bool replaces = QFileInfo::exists(dst);
    QFile file(FileSystem::pathBeside(dst));
    // A folder in which no file can be made does not let go of one either.
    if (!file.open(QIODevice::WriteOnly) && replaces)
        return SaveResult::CannotRemove;

    QString error;
    bool encoded = encode(image, file, encoding, &error);
    // Not even a power failure may find the old picture gone and the new one not there yet.
    if (encoded && replaces && !FileSystem::putOnDisk(file.handle())) {
        error = qt_error_string(errno);
        encoded = false;
    }
    file.close();
    // Some file systems tell only now that they are full.
    if (encoded && file.error() != QFileDevice::NoError) {
        error = file.errorString();
        encoded = false;
    }
    if (encoded && FileSystem::moveOver(file.fileName(), dst, &error))
        return SaveResult::Saved;
    file.remove();
    if (encoded && replaces)
        return SaveResult::CannotRemove;
    if (encoding.progressive)
        logProgressiveFailure(image, dst, error);
    return SaveResult::CannotSave;
}

} // namespace

// Import

int ImageUtils::defaultJpegCompression()
{
    return 80;
}

bool ImageUtils::writeProgressiveImage(const QImage& image, const QString& path,
                                       const QByteArray& format, int quality)
{
    // A writer on a file takes the suffix for the format where none is given; one on a device
    // would not.
    const QByteArray written =
        format.isEmpty() ? QFileInfo(path).suffix().toLower().toLatin1() : format;
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    QString error;
    if (encode(image, file, {written, quality, true}, &error)) {
        // commit() syncs too, but puts the new picture in the old one's place where that fails.
        if (!FileSystem::putOnDisk(file.handle()))
            error = qt_error_string(errno);
        else if (file.commit())
            return true;
        else
            error = file.errorString();
    }
    logProgressiveFailure(image, path, error);
    return false;
}

bool ImageUtils::copyImageFile(const QString& src, const QString& dst, bool keepAspectRatio,
                               const QSize& maxSize, OptionsImageCopy options, int quality)
{
    FileUtils::old::forceDirectoryCreationForAFile(dst);
    const QString source = src.startsWith(QLatin1String("file://")) ? src.mid(7) : src;

    const auto cannotLoad = [&source] {
        ORVAUTILS_LOG_WARNING_IN("copyImageFile") << "importImageFile can't load " << source;
        return false;
    };

    QByteArray format;
    QSize wholeSize;
    IntactFile file(source);
    if (file.isIntact()) {
        QImageReader reader(&file);
        format = reader.format().toLower();
        wholeSize = reader.size();
    }
    if (format.isEmpty()) {
        ORVAUTILS_LOG_WARNING() << "importImageFile format null";
        return false;
    }
    if (!file.isIntact())
        return cannotLoad();
    file.close();

    const QSize maximum = effectiveMaximum(maxSize, wholeSize);
    if (maximum.width() < 1 || maximum.height() < 1) {
        ORVAUTILS_LOG_CRITICAL() << "copyImageFile maxSizeImage invalid !!  = " << maximum;
        return false;
    }

    if (format == "gif" || format == "svg")
        return copyOver(source, dst);

    int rotation = 0;
    if (options.testFlag(UseExifRotation)) {
        IntactFile photo(source);
        rotation = ExifUtils::imageExifRotation(&photo);
        if (!photo.isIntact())
            return cannotLoad();
    }
    if (rotation == 0) {
        const bool progressiveAlways =
            options.testFlag(ProgressiveJpeg) && !options.testFlag(ProgressiveOnlyWhenReencoded);
        const bool reencode = !options.testFlag(NoResize)
            && (progressiveAlways || !keepAspectRatio || exceeds(wholeSize, maximum));
        if (!reencode) {
            const bool copied = copyOver(source, dst);
            if (!copied)
                ORVAUTILS_LOG_WARNING() << "FileUtils::forceCopy";
            return copied;
        }
    }

    Qt::AspectRatioMode mode = keepAspectRatio ? Qt::KeepAspectRatio : Qt::IgnoreAspectRatio;
    if (options.testFlag(ExpandToFill))
        mode = Qt::KeepAspectRatioByExpanding;
    const QSize target = options.testFlag(Retina) ? doubled(maximum) : maximum;
    const auto needsScaling = [&](const QSize& size) {
        return exceeds(size, maximum) && !options.testFlag(NoResize);
    };

    QImage image;
    const bool isJpeg = format == "jpeg";
    const QSize wanted = needsScaling(wholeSize) ? scaledSize(wholeSize, target, mode) : QSize();
    if (!(isJpeg ? loadJpeg(source, wholeSize, wanted, &image) : loadWhole(source, &image)))
        return cannotLoad();
    if (image.isNull())
        ORVAUTILS_LOG_WARNING() << "copyImageFile img.size() = " << image.size();

    // A JPEG may have been decoded at a reduced size, but stands for the whole picture. Of any
    // other the image tells the size: some formats turn a picture while it is loaded, and the size
    // that they state before is not turned.
    const QSize loadedSize = isJpeg ? wholeSize : image.size();
    if (needsScaling(loadedSize)) {
        const QSize size = scaledSize(loadedSize, target, mode);
        image = size.isValid() ? image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                               : QImage();
        if (image.isNull()) {
            ORVAUTILS_LOG_WARNING() << "copyImageFile #2 img.size() = " << image.size() << target;
            return false;
        }
    }

    if (image.isNull())
        ORVAUTILS_LOG_WARNING() << "copyImageFile #3 img.size() = " << image.size();
    if (rotation != 0) {
        image = image.transformed(QTransform().rotate(rotation), Qt::SmoothTransformation);
        if (image.isNull())
            ORVAUTILS_LOG_WARNING() << "copyImageFile #4 img.size() = " << image.size();
    }

    if (options.testFlag(Quality85))
        quality = 85;
    else if (quality < 0)
        quality = defaultJpegCompression();
    switch (replaceFile(image, dst, {format, quality, options.testFlag(ProgressiveJpeg)})) {
    case SaveResult::Saved:
        return true;
    case SaveResult::CannotRemove:
        ORVAUTILS_LOG_CRITICAL() << "copyImageFile : can't remove" << dst;
        return false;
    case SaveResult::CannotSave:
        break;
    }
    ORVAUTILS_LOG_WARNING() << "importImageFile can't save " << dst << QString::fromLatin1(format)
                            << image.size() << "maxSizeImage=" << maximum;
    return false;
}

QSize ImageUtils::imageSize(const QString& path)
{
    return QImageReader(path).size();
}

QPixmap ImageUtils::scaledPixmapFromFilepath(const QString& path, const QSize& maxSize)
{
    QImage image;
    if (loadWhole(path, &image) && exceeds(image.size(), maxSize))
        image = image.scaled(maxSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return QPixmap::fromImage(image);
}

bool ImageUtils::fusionImage(const QString& folder, const QString& background,
                             const QString& overlay, const QColor& color, const QString& output)
{
    Q_UNUSED(color)
    QImage above;
    if (!loadWhole(folder + overlay, &above))
        return false;
    QImage picture;
    if (!loadWhole(folder + background, &picture))
        return true;

    // Palettes cannot be painted on, and grey would take the colours from the overlay.
    picture = picture.convertToFormat(
        picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    // Pixel on pixel, also for files named "@2x".
    picture.setDevicePixelRatio(1);
    above.setDevicePixelRatio(1);
    QPainter painter(&picture);
    painter.drawImage(0, 0, above);
    painter.end();
    picture.save(folder + output, "PNG");
    return true;
}

// Names of web images

QStringList ImageUtils::imageExtensionsAccordingImageFormat(const QStringList& formats)
{
    const auto holds = [&](const char* format) {
        return formats.contains(QLatin1String(format), Qt::CaseInsensitive);
    };
    QStringList extensions;
    if (holds("jpeg") || holds("jpg"))
        extensions << QStringLiteral("jpeg") << QStringLiteral("jpg");
    if (holds("gif"))
        extensions << QStringLiteral("gif");
    if (holds("png"))
        extensions << QStringLiteral("png");
    if (holds("svg"))
        extensions << QStringLiteral("svg");
    return extensions;
}

bool ImageUtils::imageNameIsVectoriel(const QString& name)
{
    return QFileInfo(name).suffix().compare(QLatin1String("svg"), Qt::CaseInsensitive) == 0;
}

bool ImageUtils::filenameHasWebImageExtension(const QString& name)
{
    const QString suffix = QFileInfo(name).suffix();
    for (const char* extension : {"jpg", "jpeg", "png", "gif", "svg"}) {
        if (suffix.compare(QLatin1String(extension), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

// Sizes

QSize ImageUtils::resizeImageToWidthKeepingRatio(int width, const QSize& size)
{
    return QSize(width, proportional(width, size.height(), size.width()));
}

QSize ImageUtils::resizeImageToHeightKeepingRatio(int height, const QSize& size)
{
    return QSize(proportional(height, size.width(), size.height()), height);
}

QRect ImageUtils::retinaRect(const QPixmap& pixmap)
{
    return QRect(0, 0, qRound(pixmap.width() / 2.0), qRound(pixmap.height() / 2.0));
}

bool ImageUtils::resizeImageToSquare(QImage& image, const QSize& maxSize)
{
    const int limit = maxSize.width() < 1 || maxSize.height() < 1 ? std::numeric_limits<int>::max()
                                                                  : maxSize.width();
    const int side = qMin(image.width(), image.height());
    const bool square = image.width() == image.height();
    if (square && side <= limit)
        return false;

    if (!square)
        image = image.copy((image.width() - side) / 2, (image.height() - side) / 2, side, side);
    if (side > limit)
        image = image.scaled(limit, limit, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return true;
}

bool ImageUtils::resizeImageToSquare(QPixmap& pixmap, bool transparentBackground)
{
    if (pixmap.width() == pixmap.height())
        return false;

    const int side = qMax(pixmap.width(), pixmap.height());
    QPixmap square(side, side);
    square.fill(transparentBackground ? Qt::transparent : Qt::white);
    QPainter painter(&square);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRect((side - pixmap.width()) / 2, (side - pixmap.height()) / 2,
                             pixmap.width(), pixmap.height()),
                       pixmap);
    painter.end();
    square.setDevicePixelRatio(pixmap.devicePixelRatio());
    pixmap = square;
    return true;
}

void ImageUtils::setLabelPixmap(QLabel* label, int size, const QPixmap& pixmap)
{
    const int side = qBound(0, size, QWIDGETSIZE_MAX);
    const QSize shown = pixmap.size().scaled(side, side, Qt::KeepAspectRatio);
    label->setFixedSize(shown);
    const QSize sharp = scaledSize(pixmap.size(), doubled(shown), Qt::KeepAspectRatio);
    // What is too large to be held, or nothing at all, is left to the label's own scaling.
    label->setPixmap(pixmap.isNull() || shown.isEmpty() || !sharp.isValid()
                         ? pixmap
                         : pixmap.scaled(sharp, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    label->setScaledContents(true);
}

// Pixels

bool ImageUtils::hasTransparentPixel(const QImage& image)
{
    if (!image.hasAlphaChannel())
        return false;
    // Only whether there is one is told, not which: rows are scanned, as they lie in memory.
    const bool argb = image.format() == QImage::Format_ARGB32
        || image.format() == QImage::Format_ARGB32_Premultiplied;
    for (int y = 0; y < image.height(); ++y) {
        QRgb lowest = 0xFFFFFFFF;
        if (argb) {
            const QRgb* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
            for (int x = 0; x < image.width(); ++x)
                lowest = qMin(lowest, row[x]);
        } else {
            for (int x = 0; x < image.width(); ++x)
                lowest = qMin(lowest, image.pixel(x, y));
        }
        if (lowest <= 0xFFFFFF)
            return true;
    }
    return false;
}

bool ImageUtils::applyOpacity(QImage& image, double opacity)
{
    if (opacity >= 1)
        return true;
    image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return true;
    // The comparison is false for NaN, too.
    const int alpha = opacity > 0 ? qRound(opacity * 255) : 0;
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(image.rect(), QColor(0, 0, 0, alpha));
    return true;
}

bool ImageUtils::applyOpacity(QPixmap& pixmap, double opacity)
{
    QImage image = pixmap.toImage();
    applyOpacity(image, opacity);
    pixmap = QPixmap::fromImage(image);
    return true;
}

QImage ImageUtils::createTransparentPixmap(const QImage& image, const QColor& color, int opacity)
{
    if (opacity < 1 || opacity > 100)
        return QImage();
    QImage canvas(image.isNull() ? emptyCanvas : image.size(), QImage::Format_ARGB32_Premultiplied);
    canvas.fill(color.isValid() ? color : QColor(0, 0, 0, 0));
    if (!image.isNull()) {
        QPainter painter(&canvas);
        painter.drawImage(canvas.rect(), image);
        painter.end();
        canvas.setDevicePixelRatio(image.devicePixelRatio());
    }
    applyOpacity(canvas, opacity);
    return canvas;
}

QPixmap ImageUtils::toGray(const QPixmap& pixmap)
{
    return QPixmap::fromImage(toGray(pixmap.toImage()));
}

QImage ImageUtils::toGray(const QImage& image)
{
    QImage gray = image;
    // Grey of premultiplied colours is premultiplied grey: that format needs no detour.
    if (image.format() != QImage::Format_ARGB32_Premultiplied) {
        gray = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                             : QImage::Format_RGB32);
    }
    for (int y = 0; y < gray.height(); ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(gray.scanLine(y));
        for (int x = 0; x < gray.width(); ++x) {
            const int level = (11 * qRed(row[x]) + 16 * qGreen(row[x]) + 5 * qBlue(row[x])) >> 5;
            row[x] = qRgba(level, level, level, qAlpha(row[x]));
        }
    }
    return gray;
}

void ImageUtils::colorize(QPixmap& pixmap, const QColor& color)
{
    if (pixmap.isNull())
        return;
    // A pixmap without an alpha channel could not become transparent.
    QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    QColor opaque = color;
    opaque.setAlpha(255);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(image.rect(), opaque);
    if (color.alphaF() < 1) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(image.rect(), color);
    }
    painter.end();
    pixmap = QPixmap::fromImage(image);
}

QPixmap ImageUtils::colorized(const QPixmap& pixmap, const QColor& color)
{
    QPixmap copy = pixmap;
    colorize(copy, color);
    return copy;
}

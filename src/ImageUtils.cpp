// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ImageUtils.h"

#include "ExifUtils.h"
#include "FileUtils.h"
#include "filecopy_p.h"
#include "intactfile_p.h"
#include "logrecord_p.h"
#include "orientation_p.h"
#include "pictureimport_p.h"
#include "picturereader_p.h"
#include "picturesize_p.h"
#include "picturewriter_p.h"

#include <QFileInfo>
#include <QImageReader>
#include <QLabel>
#include <QPainter>

#include <limits>

using namespace OrvaUtilsPrivate;

namespace {

const QSize emptyCanvas(20, 20); // the size of an image made from a null image

/// round(side x numerator / denominator), limited to the range of int.
int proportional(int side, int numerator, int denominator)
{
    if (denominator == 0)
        return 0;
    const double most = std::numeric_limits<int>::max() - 1;
    return qRound(qBound(-most, double(side) * numerator / denominator, most));
}

void logProgressiveFailure(const QImage& image, const QString& path, const QString& error)
{
    ORVAUTILS_LOG_WARNING_IN("writeProgressiveImage")
        << "can't save writeProgressiveImage " << path << " errorString=" << error
        << " size=" << image.size();
}

/// The maximum size that copyImageFile() works with: a side of 0 is computed from the size of the
/// picture; if both are 0, there is no valid maximum.
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

/// The parameters of copyImageFile().
struct CopyWishes
{
    bool keepAspectRatio;
    QSize maxSize;
    ImageUtils::OptionsImageCopy options;
    int quality;
};

/// One call of copyImageFile(), step by step. Each step logs its failures.
class ImageFileCopy
{
public:
    ImageFileCopy(const QString& source, const QString& destination, const CopyWishes& wishes)
        : mSource(source)
        , mDestination(destination)
        , mWishes(wishes)
    { }

    bool run();

private:
    bool inspect();
    bool readRotation();
    bool mustReencode() const;
    bool copy() const;
    bool load();
    bool fit();
    void turn();
    bool store() const;

    bool cannotLoad() const;
    bool has(ImageUtils::OptionImageCopy option) const { return mWishes.options.testFlag(option); }
    bool needsScaling(const QSize& size) const;
    Qt::AspectRatioMode aspectRatioMode() const;
    QSize target() const { return has(ImageUtils::Retina) ? doubled(mMaximum) : mMaximum; }
    int quality() const;

    const QString mSource;
    const QString mDestination;
    const CopyWishes mWishes;

    QByteArray mFormat;
    QSize mWholeSize; // as the header states it
    QSize mMaximum;
    int mRotation = 0;
    QImage mImage;
};

bool ImageFileCopy::run()
{
    if (!inspect())
        return false;
    if (mFormat == "gif" || mFormat == "svg")
        return copyFile(mSource, mDestination, OldFile::Kept);
    if (has(ImageUtils::UseExifRotation) && !readRotation())
        return false;
    if (!mustReencode())
        return copy();
    if (!load() || !fit())
        return false;
    turn();
    return store();
}

/// Reads format and size from the header, and computes the maximum size from them.
bool ImageFileCopy::inspect()
{
    const PictureHeader header = readPictureHeader(mSource);
    if (header.format.isEmpty()) {
        ORVAUTILS_LOG_WARNING_IN("copyImageFile") << "importImageFile format null";
        return false;
    }
    if (!header.isIntact)
        return cannotLoad();
    mFormat = header.format;
    mWholeSize = header.size;

    mMaximum = effectiveMaximum(mWishes.maxSize, mWholeSize);
    if (mMaximum.width() < 1 || mMaximum.height() < 1) {
        ORVAUTILS_LOG_CRITICAL_IN("copyImageFile")
            << "copyImageFile maxSizeImage invalid !!  = " << mMaximum;
        return false;
    }
    return true;
}

bool ImageFileCopy::readRotation()
{
    IntactFile file(mSource);
    mRotation = ExifUtils::imageExifRotation(&file);
    return file.isIntact() || cannotLoad();
}

bool ImageFileCopy::mustReencode() const
{
    if (mRotation != 0)
        return true;
    if (has(ImageUtils::NoResize))
        return false;
    const bool progressiveAlways =
        has(ImageUtils::ProgressiveJpeg) && !has(ImageUtils::ProgressiveOnlyWhenReencoded);
    return progressiveAlways || !mWishes.keepAspectRatio || exceeds(mWholeSize, mMaximum);
}

bool ImageFileCopy::copy() const
{
    const bool copied = copyFile(mSource, mDestination, OldFile::Kept);
    if (!copied)
        ORVAUTILS_LOG_WARNING_IN("copyImageFile") << "FileUtils::forceCopy";
    return copied;
}

bool ImageFileCopy::load()
{
    bool loaded = false;
    if (mFormat == "jpeg") {
        const QSize wanted = needsScaling(mWholeSize)
            ? scaledSize(mWholeSize, target(), aspectRatioMode())
            : QSize();
        QByteArray bytes;
        loaded = readWholeFile(mSource, &bytes) && decodeJpeg(bytes, mWholeSize, wanted, &mImage);
    } else {
        loaded = loadWhole(mSource, &mImage);
    }
    if (!loaded)
        return cannotLoad();
    if (mImage.isNull()) {
        ORVAUTILS_LOG_WARNING_IN("copyImageFile") << "copyImageFile img.size() = " << mImage.size();
    }
    return true;
}

/// Scales the picture if it is too large.
bool ImageFileCopy::fit()
{
    // A JPEG may have been decoded at a reduced size, but stands for the whole picture. For other
    // formats the size of the image counts: some rotate a picture while it is loaded, so that the
    // size in their header does not apply.
    const QSize loadedSize = mFormat == "jpeg" ? mWholeSize : mImage.size();
    if (needsScaling(loadedSize)) {
        const QSize size = scaledSize(loadedSize, target(), aspectRatioMode());
        mImage = size.isValid()
            ? mImage.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            : QImage();
        if (mImage.isNull()) {
            ORVAUTILS_LOG_WARNING_IN("copyImageFile")
                << "copyImageFile #2 img.size() = " << mImage.size() << target();
            return false;
        }
    }
    if (mImage.isNull()) {
        ORVAUTILS_LOG_WARNING_IN("copyImageFile")
            << "copyImageFile #3 img.size() = " << mImage.size();
    }
    return true;
}

void ImageFileCopy::turn()
{
    if (mRotation == 0)
        return;
    mImage = upright(mImage, mRotation == 180 ? 3 : mRotation == 90 ? 6 : 8);
    if (mImage.isNull()) {
        ORVAUTILS_LOG_WARNING_IN("copyImageFile")
            << "copyImageFile #4 img.size() = " << mImage.size();
    }
}

bool ImageFileCopy::store() const
{
    const bool progressive = has(ImageUtils::ProgressiveJpeg);
    QString error;
    switch (replacePicture(mImage, mDestination, {mFormat, quality(), progressive}, &error)) {
    case SaveResult::Saved:
        return true;
    case SaveResult::CannotRemove:
        ORVAUTILS_LOG_CRITICAL_IN("copyImageFile")
            << "copyImageFile : can't remove" << mDestination;
        return false;
    case SaveResult::CannotSave:
        break;
    }
    if (progressive)
        logProgressiveFailure(mImage, mDestination, error);
    ORVAUTILS_LOG_WARNING_IN("copyImageFile")
        << "importImageFile can't save " << mDestination << QString::fromLatin1(mFormat)
        << mImage.size() << "maxSizeImage=" << mMaximum;
    return false;
}

bool ImageFileCopy::cannotLoad() const
{
    ORVAUTILS_LOG_WARNING_IN("copyImageFile") << "importImageFile can't load " << mSource;
    return false;
}

bool ImageFileCopy::needsScaling(const QSize& size) const
{
    return exceeds(size, mMaximum) && !has(ImageUtils::NoResize);
}

Qt::AspectRatioMode ImageFileCopy::aspectRatioMode() const
{
    if (has(ImageUtils::ExpandToFill))
        return Qt::KeepAspectRatioByExpanding;
    return mWishes.keepAspectRatio ? Qt::KeepAspectRatio : Qt::IgnoreAspectRatio;
}

int ImageFileCopy::quality() const
{
    if (has(ImageUtils::Quality85))
        return 85;
    return mWishes.quality < 0 ? ImageUtils::defaultJpegCompression() : mWishes.quality;
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
    // Without a format, a QImageWriter on a file derives it from the suffix; one on a device would
    // not.
    const QByteArray written =
        format.isEmpty() ? QFileInfo(path).suffix().toLower().toLatin1() : format;
    QString error;
    if (writePicture(image, path, {written, quality, true}, &error))
        return true;
    logProgressiveFailure(image, path, error);
    return false;
}

bool ImageUtils::copyImageFile(const QString& src, const QString& dst, bool keepAspectRatio,
                               const QSize& maxSize, OptionsImageCopy options, int quality)
{
    FileUtils::old::forceDirectoryCreationForAFile(dst);
    const QString source = src.startsWith(QLatin1String("file://")) ? src.mid(7) : src;
    return ImageFileCopy(source, dst, {keepAspectRatio, maxSize, options, quality}).run();
}

ImageImportResult ImageUtils::importImage(const QString& src, const QString& dst,
                                          const ImageImport& how)
{
    return importPicture(src, dst, how);
}

QSize ImageUtils::imageSize(const QString& path)
{
    const PictureHeader header = readPictureHeader(path);
    // A path that cannot be opened may still be one to which QImageReader adds a suffix. The system
    // would end it at a NUL.
    const bool mayLackSuffix = header.format.isEmpty() && !path.contains(QChar());
    return mayLackSuffix ? QImageReader(path).size() : header.size;
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

    // Indexed images cannot be painted on, and grey ones would lose the colours of the overlay.
    picture = picture.convertToFormat(
        picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    // Pixel by pixel, also for files named "@2x".
    picture.setDevicePixelRatio(1);
    above.setDevicePixelRatio(1);
    QPainter painter(&picture);
    painter.drawImage(0, 0, above);
    painter.end();
    QString ignored;
    writePicture(picture, folder + output, {"png", -1, false}, &ignored);
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
    if (!label)
        return;
    const int side = qBound(0, size, QWIDGETSIZE_MAX);
    const QSize shown = pixmap.size().scaled(side, side, Qt::KeepAspectRatio);
    label->setFixedSize(shown);
    const QSize sharp = scaledSize(pixmap.size(), doubled(shown), Qt::KeepAspectRatio);
    // A pixmap that is empty or would become too large is left to the label's own scaling.
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
    // The order does not matter for the result, so rows are scanned in the order of memory.
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
    // Grey of premultiplied colours is premultiplied grey: that format needs no conversion.
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

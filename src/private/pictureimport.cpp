// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "pictureimport_p.h"

#include "FileUtils.h"
#include "filecopy_p.h"
#include "logrecord_p.h"
#include "metadatachoice_p.h"
#include "orientation_p.h"
#include "picturemetadata_p.h"
#include "picturereader_p.h"
#include "picturesize_p.h"
#include "picturewriter_p.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QPainter>

#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
#include <QColorSpace>
#endif

#include <algorithm>
#include <iterator>
#include <limits>

namespace OrvaUtilsPrivate {

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("ImageImport", text);
}

/// The canonical name of a format, in lower case.
QByteArray formatNamed(const QByteArray& name)
{
    const QByteArray lower = name.toLower();
    if (lower == "jpg")
        return QByteArrayLiteral("jpeg");
    return lower == "tif" ? QByteArrayLiteral("tiff") : lower;
}

/// Whether a file of the format contains nothing but pixels.
bool holdsPixelsAlone(const QByteArray& format)
{
    const char* const formats[] = {"bmp", "cur", "ico",  "pbm", "pgm",
                                   "ppm", "tga", "wbmp", "xbm", "xpm"};
    return std::any_of(std::begin(formats), std::end(formats),
                       [&](const char* known) { return format == known; });
}

/// Draws a picture with transparent pixels on white.
QImage onWhite(const QImage& image)
{
    QImage opaque(image.size(), QImage::Format_RGB32);
    if (opaque.isNull())
        return opaque; // GCOVR_EXCL_LINE: memory ran out
    opaque.fill(Qt::white);
    QPainter painter(&opaque);
    painter.drawImage(0, 0, image);
    painter.end();
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    opaque.setColorSpace(image.colorSpace());
#endif
    return opaque;
}

/// One import, step by step. A step that fails sets the status of the result.
class PictureImport
{
public:
    PictureImport(const QString& src, const QString& dst, const ImageImport& how,
                  ImportControl* control)
        : mSource(src.startsWith(QLatin1String("file://")) ? src.mid(7) : src)
        , mDestination(dst)
        , mHow(how)
        , mControl(control)
    { }

    ImageImportResult run();

private:
    bool inspect();
    bool read();
    bool examine();
    bool mustReencode() const;
    bool holdsPicture();
    bool copy();
    bool load();
    bool decode(const QSize& wanted, QImage* image) const;
    bool fit();
    bool finishPixels();
    bool store();

    bool fail(ImageImportResult::Status status, const QString& error);
    bool failsWithName(ImageImportResult::Status status, const char* error);
    bool failsAsTooLarge();
    bool isCancelled();
    bool isCopiedAlways() const;
    bool mustTurn() const { return mHow.upright && mResult.orientation > 1; }
    bool mustConvert() const;
    bool mayExceed() const;
    QSize limit() const;
    QSize targetSize(const QSize& picture) const;
    qint64 memoryNeeded() const;
    PictureMetadata metadata() const;
    QByteArray splicedProfile() const;

    const QString mSource;
    const QString mDestination;
    const ImageImport mHow;
    ImportControl* const mControl;

    ImageImportResult mResult;
    PictureHeader mHeader;
    QByteArray mFormat; // of the destination
    QByteArray mBytes; // the source
    MetadataFindings mFound;
    QImage mImage;
    bool mWasGrey = false;
};

ImageImportResult PictureImport::run()
{
    const bool done = inspect() && read() && examine()
        && (mustReencode() ? load() && fit() && finishPixels() && store()
                           : holdsPicture() && copy());
    if (done)
        mResult.format = mFormat;
    return mResult;
}

/// Reads the header, and refuses what cannot be imported.
bool PictureImport::inspect()
{
    if (isCancelled())
        return false;
    const QFileInfo info(mSource);
    if (!info.exists())
        return failsWithName(ImageImportResult::NotFound, "There is no file \"%1\".");
    if (info.isDir())
        return failsWithName(ImageImportResult::NotAnImage, "\"%1\" is no picture.");
    mHeader = readPictureHeader(mSource);
    mResult.format = formatNamed(mHeader.format);
    mResult.sourceSize = mHeader.size;
    if (!mHeader.isIntact) {
        return failsWithName(ImageImportResult::NotReadable, "\"%1\" cannot be read.");
    }
    if (mHeader.format.isEmpty())
        return failsWithName(ImageImportResult::NotAnImage, "\"%1\" is no picture.");

    const qint64 pixels = qint64(mHeader.canvas.width()) * mHeader.canvas.height();
    const bool isTooLong = info.size() > std::numeric_limits<int>::max() / 2;
    if ((mHow.maxPixels > 0 && pixels > mHow.maxPixels) || isTooLong
        || !fitsInMemory(mHeader.canvas, mHeader.bytesPerPixel))
        return failsAsTooLarge();
    mFormat = mHow.format.isEmpty() ? mResult.format : formatNamed(mHow.format);
    // A pipe or a device must not become a file.
    const QFileInfo old(mDestination);
    if (old.exists() && !old.isFile() && !old.isDir())
        return failsWithName(ImageImportResult::NotWritable, "\"%1\" cannot be saved.");
    return !isCancelled();
}

bool PictureImport::read()
{
    if (readWholeFile(mSource, &mBytes))
        return true;
    const auto status = ImageImportResult::NotReadable; // GCOVR_EXCL_LINE: the header was readable
    return failsWithName(status, "\"%1\" cannot be read."); // GCOVR_EXCL_LINE: as above
}

/// Reads what the file contains besides the pixels.
bool PictureImport::examine()
{
    mFound = readMetadata(mBytes, mResult.format);
    // A reader with nothing to transform does not tell whether the file states an orientation.
    const int readersWord = mHeader.orientation > 1 ? mHeader.orientation : 0;
    mResult.orientation = mResult.format == "jpeg" ? orientationIn(mFound.metadata) : readersWord;
    mResult.truncated = mFound.isTruncated;
    if (mResult.truncated && mHow.refuseTruncated)
        return failsWithName(ImageImportResult::Truncated, "\"%1\" is incomplete.");
    return !isCancelled();
}

bool PictureImport::mustReencode() const
{
    if (isCopiedAlways())
        return false;
    const bool holdsUnknown = !canCarryMetadata(mFormat) && !holdsPixelsAlone(mFormat)
        && mHow.metadata != ImageImport::AllMetadata;
    return mFormat != mResult.format || holdsUnknown || mustTurn() || mustConvert() || mayExceed();
}

/// Whether there is anything to decode in a truncated file. Otherwise, a copy of it would not be a
/// picture.
bool PictureImport::holdsPicture()
{
    if (!mResult.truncated)
        return true;
    if (mControl && !mControl->mayTake(memoryNeeded()))
        return fail(ImageImportResult::Cancelled, translated("The import was cancelled."));
    QImage image;
    if (decode(QSize(), &image))
        return true;
    return failsWithName(ImageImportResult::Truncated, "\"%1\" is incomplete.");
}

/// Copies the file, or all of it except for some metadata.
bool PictureImport::copy()
{
    FileUtils::old::forceDirectoryCreationForAFile(mDestination);
    const bool keepsAll = mHow.metadata == ImageImport::AllMetadata || mFormat == "svg"
        || holdsPixelsAlone(mFormat) || (metadata() == mFound.metadata && !mFound.hasTrailer);
    bool copied = false;
    if (keepsAll) {
        copied = copyFile(mSource, mDestination, OldFile::Kept);
    } else {
        const QByteArray bytes = withMetadata(mBytes, mFormat, metadata());
        if (bytes.isEmpty())
            return failsWithName(ImageImportResult::NotReadable, "\"%1\" is damaged.");
        QString error;
        copied = replaceBytes(bytes, mDestination, &error) == SaveResult::Saved;
    }
    if (!copied)
        return failsWithName(ImageImportResult::NotWritable, "\"%1\" cannot be saved.");
    mResult.status = ImageImportResult::Copied;
    mResult.size = mHeader.size;
    return true;
}

bool PictureImport::load()
{
    if (!QImageWriter::supportedImageFormats().contains(mFormat)) {
        return fail(ImageImportResult::NotWritable,
                    translated("Pictures cannot be saved in the format \"%1\".")
                        .arg(QString::fromLatin1(mFormat)));
    }
    if (mControl && !mControl->mayTake(memoryNeeded()))
        return fail(ImageImportResult::Cancelled, translated("The import was cancelled."));
    if (decode(targetSize(mHeader.size), &mImage)) {
        mWasGrey = mImage.format() == QImage::Format_Grayscale8;
        mBytes = QByteArray();
        return !isCancelled();
    }
    return mResult.truncated ? failsWithName(ImageImportResult::Truncated, "\"%1\" is incomplete.")
                             : failsWithName(ImageImportResult::NotReadable, "\"%1\" is damaged.");
}

/// Decodes the source; a JPEG may be decoded at a reduced size if \a wanted is valid.
bool PictureImport::decode(const QSize& wanted, QImage* image) const
{
    const bool decoded = mResult.format == "jpeg" ? decodeJpeg(mBytes, mHeader.size, wanted, image)
                                                  : decodeAsStored(mBytes, mResult.format, image);
    return decoded && !image->isNull();
}

/// Scales the picture if it is too large.
bool PictureImport::fit()
{
    // A JPEG may have been decoded at a reduced size. Others may not state theirs in advance.
    const QSize whole = mResult.format == "jpeg" ? mHeader.size : mImage.size();
    const QSize target = targetSize(whole);
    if (target.isValid() && target != mImage.size()) {
        mImage = mImage.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        if (mImage.isNull())
            return failsAsTooLarge(); // GCOVR_EXCL_LINE: memory ran out
    }
    return !isCancelled();
}

/// Turns the picture, and converts its colours as requested and as the format requires.
bool PictureImport::finishPixels()
{
    if (mustTurn())
        mImage = upright(mImage, mResult.orientation);
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    if (mustConvert() && mImage.colorSpace().isValid())
        mImage.convertToColorSpace(QColorSpace::SRgb);
#endif
    const bool hasNoAlpha = mFormat == "jpeg" || mFormat == "ppm" || mFormat == "pgm";
    if (hasNoAlpha && mImage.hasAlphaChannel())
        mImage = onWhite(mImage);
    if (mWasGrey && mImage.format() == QImage::Format_RGB32) // scaling made it one
        mImage = mImage.convertToFormat(QImage::Format_Grayscale8);
    if (mImage.isNull())
        return failsAsTooLarge(); // GCOVR_EXCL_LINE: memory ran out
    return !isCancelled();
}

bool PictureImport::store()
{
    QByteArray bytes;
    QString error;
    const Encoding encoding = {mFormat, qBound(0, mHow.quality, 100), mHow.progressive};
    if (!encodeInMemory(mImage, encoding, &bytes, &error))
        return failsWithName(ImageImportResult::NotWritable, "\"%1\" cannot be saved.");
    mResult.size = mImage.size();
    mImage = QImage();
    if (canCarryMetadata(mFormat)) {
        const QByteArray carrying = withMetadata(bytes, mFormat, metadata(), splicedProfile());
        if (!carrying.isEmpty())
            bytes = carrying;
    }
    if (isCancelled())
        return false;
    FileUtils::old::forceDirectoryCreationForAFile(mDestination);
    if (replaceBytes(bytes, mDestination, &error) != SaveResult::Saved)
        return failsWithName(ImageImportResult::NotWritable, "\"%1\" cannot be saved.");
    mResult.status = ImageImportResult::Imported;
    return true;
}

bool PictureImport::fail(ImageImportResult::Status status, const QString& error)
{
    mResult.status = status;
    mResult.error = error;
    mResult.size = QSize();
    if (status != ImageImportResult::Cancelled) {
        LogRecord(2, "ImageUtils", "importImage", __LINE__)
            << "status" << int(status) << mSource << mDestination;
    }
    return false;
}

bool PictureImport::failsWithName(ImageImportResult::Status status, const char* error)
{
    const QString path = status == ImageImportResult::NotWritable ? mDestination : mSource;
    return fail(status, translated(error).arg(QFileInfo(path).fileName()));
}

bool PictureImport::failsAsTooLarge()
{
    return failsWithName(ImageImportResult::TooLarge, "\"%1\" is too large.");
}

bool PictureImport::isCancelled()
{
    return mControl && mControl->isCancelled()
        && !fail(ImageImportResult::Cancelled, translated("The import was cancelled."));
}

/// Whether the format is one that Qt does not write, and no other one is requested.
bool PictureImport::isCopiedAlways() const
{
    return mFormat == mResult.format && (mFormat == "gif" || mFormat == "svg");
}

/// Whether the colours have to be converted to sRGB.
bool PictureImport::mustConvert() const
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    if (mHow.colorProfile != ImageImport::ConvertToSrgb || !mFound.hasProfile)
        return false;
    return mFound.profile.isEmpty()
        || QColorSpace::fromIccProfile(mFound.profile) != QColorSpace(QColorSpace::SRgb);
#else
    return false;
#endif
}

/// Whether the picture is too large, or may be because it does not state its size.
bool PictureImport::mayExceed() const
{
    const bool isLimited = mHow.maxSize.width() > 0 || mHow.maxSize.height() > 0;
    return mHeader.size.isValid() ? exceeds(mHeader.size, limit()) : isLimited;
}

/// The maximum size of the picture as it is stored.
QSize PictureImport::limit() const
{
    const int none = std::numeric_limits<int>::max();
    const QSize most(mHow.maxSize.width() < 1 ? none : mHow.maxSize.width(),
                     mHow.maxSize.height() < 1 ? none : mHow.maxSize.height());
    return isSideways(mResult.orientation) ? most.transposed() : most;
}

/// The size to which a picture has to be scaled; invalid if it fits.
QSize PictureImport::targetSize(const QSize& picture) const
{
    return exceeds(picture, limit()) ? scaledSize(picture, limit(), Qt::KeepAspectRatio) : QSize();
}

/// About how much memory the import takes from here on, in bytes: the file, and the picture as it
/// is decoded and as it is scaled.
qint64 PictureImport::memoryNeeded() const
{
    const QSize target = targetSize(mHeader.size);
    const QSize decoded = mResult.format == "jpeg" && target.isValid()
        ? decodedJpegSize(mBytes, mHeader.size, target)
        : mHeader.canvas;
    const auto pixels = [](const QSize& size) {
        return size.isValid() ? qint64(size.width()) * size.height() : 0;
    };
    return mBytes.size() + (pixels(decoded) + pixels(target)) * mHeader.bytesPerPixel;
}

/// The metadata of the imported file.
PictureMetadata PictureImport::metadata() const
{
    PictureMetadata chosen = chosenMetadata(mFound.metadata, mHow.metadata);
    if (mFormat != mResult.format) { // each format has its own
        chosen.iptc.clear();
        chosen.comments.clear();
        chosen.others.clear();
    }
    const bool isEncoded = mResult.size.isValid();
    PictureMetadata adapted =
        isEncoded ? adaptedMetadata(chosen, mResult.size, mustTurn()) : chosen;
    if (mustTurn())
        return adapted;
    // The orientation is kept whatever else is removed: the picture is shown by it.
    return withOrientation(adapted, qMax(mResult.orientation, orientationIn(mFound.metadata)));
}

/// The profile that a JPEG takes unchanged from a JPEG; empty if it keeps what Qt writes.
QByteArray PictureImport::splicedProfile() const
{
    if (mResult.format != "jpeg" || mFormat != "jpeg" || mustConvert())
        return QByteArray();
    const QByteArray kind = mFound.profile.mid(16, 4);
    return kind == (mWasGrey ? "GRAY" : "RGB ") ? mFound.profile : QByteArray();
}

} // namespace

ImageImportResult importPicture(const QString& src, const QString& dst, const ImageImport& how,
                                ImportControl* control)
{
    return PictureImport(src, dst, how, control).run();
}

} // namespace OrvaUtilsPrivate

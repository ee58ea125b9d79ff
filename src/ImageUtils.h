// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// ImageUtils: image files on their way into a project, and small operations on pixels.

#ifndef ORVAUTILS_IMAGEUTILS_H
#define ORVAUTILS_IMAGEUTILS_H

#include "ImageImport.h"
#include "ImageImportResult.h"
#include "orvautils_export.h"

#include <QByteArray>
#include <QColor>
#include <QFlags>
#include <QImage>
#include <QPixmap>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>

class QLabel;

/// Import of image files, recognition of web images, operations on pixels.
///
/// \code
/// // A photograph, upright, 1600 x 1600 at most, as a progressive JPEG:
/// ImageUtils::copyImageFile(photo, site + QStringLiteral("/images/boat.jpg"), true,
///                           QSize(1600, 1600),
///                           ImageUtils::UseExifRotation | ImageUtils::ProgressiveJpeg);
/// \endcode
///
/// All functions are static and synchronous. Those that take a QPixmap or a QLabel belong to the
/// GUI thread and need a QGuiApplication; all others may be called from any thread, also
/// concurrently. Sizes are in pixels of the picture; its device pixel ratio is ignored.
///
/// Nothing is logged unless a function says so.
class ORVAUTILS_EXPORT ImageUtils
{
public:
    ImageUtils() = delete;

    /// What copyImageFile() does in addition to copying.
    enum OptionImageCopy {
        /// Rotate the picture according to its EXIF orientation; a rotation forces re-encoding.
        UseExifRotation = 0x01,
        /// Save with writeProgressiveImage(). Forces re-encoding unless combined with
        /// ProgressiveOnlyWhenReencoded.
        ProgressiveJpeg = 0x02,
        /// Scale with Qt::KeepAspectRatioByExpanding: the maximum size is filled, and one side may
        /// exceed it.
        ExpandToFill = 0x04,
        /// Save with quality 85, whatever the quality argument says.
        Quality85 = 0x08,
        /// Never scale. The file is copied unless it has to be rotated.
        NoResize = 0x10,
        /// Scale to twice the maximum size.
        Retina = 0x20,
        /// With ProgressiveJpeg: do not re-encode for the sake of progressive scans alone.
        ProgressiveOnlyWhenReencoded = 0x40
    };
    /// Any combination of OptionImageCopy.
    Q_DECLARE_FLAGS(OptionsImageCopy, OptionImageCopy)

    /// \name Import
    /// @{

    /// The quality that is used if the caller specifies none: 80, out of 100.
    static int defaultJpegCompression();

    /// Writes \a image to \a path in \a format ("jpeg", "png" …), with progressive scans if the
    /// format supports them.
    ///
    /// An empty \a format is taken from the suffix of \a path.
    ///
    /// \a quality is passed to the writer as its compression setting, not as its quality setting.
    /// This is deliberate: a JPEG therefore always has Qt's default quality, 75, and a PNG is
    /// compressed more strongly the higher the number is.
    ///
    /// An existing file at \a path is replaced only once the new one is complete; on failure it is
    /// unchanged, and no partial file is left behind. Its permissions stay, and a link is followed.
    /// (If the folder is not writable but the file is, or if \a path is a device or a pipe, it is
    /// overwritten with the complete picture, without that guarantee.)
    ///
    /// Returns false on failure, and logs with LogType 2 "can't save writeProgressiveImage ",
    /// \a path, " errorString=", the writer's message, " size=" and the image's size.
    static bool writeProgressiveImage(const QImage& image, const QString& path,
                                      const QByteArray& format, int quality);

    /// Imports the image file \a src as \a dst: copies it byte for byte if that is enough,
    /// otherwise loads, scales, rotates and writes it in its own format (that of its content,
    /// whatever the suffixes are). Missing folders of \a dst are created, and stay if the import
    /// fails. A leading "file://" of \a src is dropped. Returns whether \a dst is the imported
    /// picture now.
    ///
    /// \code
    /// // 4000 x 3000, orientation 6  ->  1200 x 1600, upright
    /// ImageUtils::copyImageFile(src, dst, true, QSize(1600, 1600), ImageUtils::UseExifRotation);
    /// \endcode
    ///
    /// GIF and SVG files are always copied, provided that Qt can read them. Any other file is
    /// copied unless
    /// - UseExifRotation is set and the EXIF orientation asks for a rotation
    ///   (see ExifUtils::imageExifRotation()), or
    /// - NoResize is not set and one of these is true: ProgressiveJpeg is set without
    ///   ProgressiveOnlyWhenReencoded; \a keepAspectRatio is false; the picture is wider or taller
    ///   than \a maxSize.
    ///
    /// All of these are flags of \a options. So NoResize with ProgressiveJpeg copies a picture that
    /// needs no rotation, baseline or not.
    ///
    /// A picture that is re-encoded and is wider or taller than \a maxSize is scaled smoothly
    /// (never with NoResize): into \a maxSize keeping its aspect ratio, to exactly \a maxSize when
    /// \a keepAspectRatio is false, or over it with ExpandToFill, which takes precedence over the
    /// argument; with Retina the target is twice \a maxSize, which may enlarge the picture. The
    /// rotation comes after the scaling, so \a maxSize applies to the picture as it is stored.
    ///
    /// The quality is 85 with Quality85, else \a quality, or defaultJpegCompression() if that is
    /// negative. With ProgressiveJpeg it is treated as by writeProgressiveImage(): a JPEG gets 75.
    ///
    /// A side of \a maxSize that is 0 is computed: the picture's size is scaled into a box of
    /// 999999999 x 1 (height 0) or 1 x 999999999 (width 0), keeping its aspect ratio. This yields
    /// a side of one pixel, not an unlimited one, and is deliberate.
    ///
    /// \a src is only read, and an existing file at \a dst is never lost: the new one, copied or
    /// re-encoded, is completed beside it and then replaces it, so that \a dst may be \a src
    /// itself. A symbolic link at \a dst is replaced and its target is left alone; one that points
    /// to \a src stays if copying is enough.
    ///
    /// A JPEG that is to become smaller may be decoded at a multiple of one eighth of its size, the
    /// smallest with which the luma of the result stays within 38 dB (PSNR) of what scaling the
    /// whole photograph gives. The size of the result is still computed from the whole size. A
    /// truncated file gives what Qt's reader makes of it. A picture that would take more than 2 GiB
    /// once decoded cannot be loaded, nor can a JPEG of more than a thousand segments or scans,
    /// which no camera writes and which would keep the reader busy for hours.
    ///
    /// \warning Re-encoding keeps the pixels, comments and, from Qt 5.14 on, a colour profile that
    /// consists of a matrix and curves, as those of cameras and displays do. It loses everything
    /// else: EXIF, XMP and IPTC, including date and copyright, any other profile, also that of a
    /// CMYK picture (which becomes RGB), the palette of a PNG that is scaled, and every frame but
    /// the first of an animated WebP. The mirrored orientations 2, 4, 5 and 7 count as no rotation
    /// and are lost with the EXIF block. A file that is only copied keeps everything, including the
    /// place where a photograph was taken.
    ///
    /// Returns false on failure, and logs it as function "copyImageFile", with LogType 2 unless
    /// stated otherwise:
    /// - "importImageFile format null": \a src is missing or not an image that Qt reads;
    /// - "copyImageFile maxSizeImage invalid !!  = " and the maximum (LogType 4): one of its sides
    ///   is below 1 after the rule for 0; (0, 0) is shown as (-1, -1);
    /// - "FileUtils::forceCopy": copying failed (not logged for GIF and SVG); the reason is logged
    ///   before, with the records of FileUtils::forceCopy();
    /// - "importImageFile can't load " and \a src: it cannot be decoded, or reading it fails;
    /// - "copyImageFile #2 img.size() = ", the size, the target: the picture cannot be scaled;
    /// - "copyImageFile : can't remove" and \a dst (LogType 4): what is at \a dst cannot be
    ///   replaced;
    /// - "importImageFile can't save ", \a dst, the format, the picture's size, "maxSizeImage=",
    ///   the maximum.
    ///
    /// A folder of \a dst that cannot be created is logged by
    /// FileUtils::old::forceDirectoryCreationForAFile(), before the resulting failure.
    ///
    /// An image plugin that returns an empty picture as read is logged with "copyImageFile
    /// img.size() = ", "copyImageFile #3 img.size() = " and "copyImageFile #4 img.size() = " before
    /// saving fails.
    static bool copyImageFile(const QString& src, const QString& dst, bool keepAspectRatio,
                              const QSize& maxSize, OptionsImageCopy options = OptionsImageCopy(),
                              int quality = -1);

    /// Imports the picture \a src as \a dst according to \a how: upright, limited in size, with its
    /// colour profile and the metadata that is wanted. Missing folders of \a dst are created. A
    /// leading "file://" of \a src is dropped.
    ///
    /// \code
    /// ImageImport how;
    /// how.maxSize = QSize(1600, 1600);
    /// const ImageImportResult result = ImageUtils::importImage(photo, site + "/boat.jpg", how);
    /// if (!result)
    ///     QMessageBox::warning(this, tr("Import"), result.error);
    /// \endcode
    ///
    /// Pixels are copied as they are stored, whatever the format, if the picture need not be
    /// scaled, rotated, converted to sRGB or written in another format; its metadata is still
    /// reduced to ImageImport::Metadata, and if nothing has to be removed the result is the source,
    /// byte for byte. Otherwise, and if its size is unknown although ImageImport::maxSize sets a
    /// limit, the picture is decoded and re-encoded:
    /// - its orientation, one of all eight, is that of EXIF in a JPEG, and what Qt's reader reports
    ///   for other formats. If the reader reports none although a PNG or WebP has one in EXIF, it
    ///   stays there;
    /// - a JPEG that is to become smaller is decoded at a reduced size, as by copyImageFile();
    /// - metadata is carried into a JPEG, PNG or WebP. It then says that the picture is upright,
    ///   states its new size, and has no thumbnail of the old one;
    /// - a picture with transparent pixels is painted on white if the format has no transparency.
    ///
    /// GIF and SVG files are not encoded: without another ImageImport::format they are copied
    /// whatever their size is, except for the metadata of a GIF. The metadata of a TIFF (EXIF
    /// without a maker note, and XMP) is carried into another format, up to 128 KB of it; a TIFF
    /// never gets any. That of formats that are not named here is not analysed: unless all of it is
    /// wanted, the picture is re-encoded without it.
    ///
    /// \a src is only read, and nothing is lost at \a dst, as with copyImageFile(): unless the
    /// import succeeds, what was there is unchanged. Nothing is written to a pipe or a device. A
    /// picture that is too large is refused after reading its header, and so is a JPEG of more than
    /// a thousand segments or scans.
    ///
    /// May be called from any thread; for many pictures see ImageImporter. Failures are logged with
    /// LogType 2.
    static ImageImportResult importImage(const QString& src, const QString& dst,
                                         const ImageImport& how = ImageImport());

    /// The size that the header of the image file \a path states; the picture is not decoded.
    /// Invalid, (-1, -1), if there is none, and if more than a thousand segments precede the pixels
    /// of a JPEG. The EXIF orientation is not applied.
    static QSize imageSize(const QString& path);

    /// The picture in the file \a path, scaled smoothly into \a maxSize, keeping its aspect ratio,
    /// when it is wider or taller. A null pixmap when it cannot be loaded or when a side of
    /// \a maxSize is below 1.
    static QPixmap scaledPixmapFromFilepath(const QString& path, const QSize& maxSize);

    /// Loads the pictures \a folder + \a overlay and \a folder + \a background (the names are
    /// simply joined: \a folder ends with "/"), paints the overlay over the background at (0, 0)
    /// and saves the result as a PNG in \a folder + \a output, as writeProgressiveImage() does: a
    /// file that is there is replaced only once the new one is complete.
    ///
    /// Returns false only when the overlay cannot be loaded; this is deliberate. If the background
    /// cannot be loaded, nothing is written. \a color is not used.
    static bool fusionImage(const QString& folder, const QString& background,
                            const QString& overlay, const QColor& color, const QString& output);

    /// @}
    /// \name Names of web images
    /// @{

    /// The file suffixes that belong to \a formats, always in this order: "jpeg" and "jpg" for
    /// "jpeg" or "jpg", "gif", "png", "svg". Case is ignored.
    ///
    /// \code
    /// imageExtensionsAccordingImageFormat({"JPG", "png"}) == {"jpeg", "jpg", "png"}
    /// \endcode
    static QStringList imageExtensionsAccordingImageFormat(const QStringList& formats);

    /// Whether the suffix of \a name is "svg", in any case.
    static bool imageNameIsVectoriel(const QString& name);

    /// Whether the suffix of \a name is "jpg", "jpeg", "png", "gif" or "svg", in any case.
    static bool filenameHasWebImageExtension(const QString& name);

    /// @}
    /// \name Sizes
    /// @{

    /// \a size scaled to the width \a width, that is, (width, round(width x height / width of
    /// size)). The height is 0 if the width of \a size is.
    static QSize resizeImageToWidthKeepingRatio(int width, const QSize& size);

    /// \a size scaled to the height \a height, that is, (round(height x width / height of size),
    /// height). The width is 0 if the height of \a size is.
    static QSize resizeImageToHeightKeepingRatio(int height, const QSize& size);

    /// Half of \a pixmap's size, each side rounded, as a rectangle at (0, 0).
    static QRect retinaRect(const QPixmap& pixmap);

    /// Cuts the largest centred square out of \a image and scales it down to the width of
    /// \a maxSize if it is larger. An image that is square already is only scaled.
    ///
    /// Returns whether \a image was replaced: false for a square image that is not wider than
    /// \a maxSize. A \a maxSize with a side below 1 sets no limit.
    static bool resizeImageToSquare(QImage& image, const QSize& maxSize);

    /// Makes \a pixmap square by centring it in a square of its larger side, whose background is
    /// transparent if \a transparentBackground is true, else white. Returns false if it is square
    /// already.
    static bool resizeImageToSquare(QPixmap& pixmap, bool transparentBackground);

    /// Shows \a pixmap in \a label, sharp on a display of double density: the label gets the fixed
    /// size that \a pixmap has when scaled into \a size x \a size keeping its aspect ratio, the
    /// pixmap is scaled smoothly to twice that size, and the label scales its contents. Does
    /// nothing for a null \a label; a null \a pixmap leaves the label empty, in a square of
    /// \a size.
    static void setLabelPixmap(QLabel* label, int size, const QPixmap& pixmap);

    /// @}
    /// \name Pixels
    /// @{

    /// Whether a pixel of \a image is fully transparent, that is, whether its whole 32-bit value
    /// (QImage::pixel()) is at most 0xFFFFFF. False for an image without pixels and for one whose
    /// format has no alpha channel.
    static bool hasTransparentPixel(const QImage& image);

    /// Multiplies the alpha of every pixel by \a opacity, in steps of 1/255. \a image becomes one
    /// in QImage::Format_ARGB32_Premultiplied. With 1 or more nothing is changed, not even the
    /// format; values below 0 and NaN count as 0. Always returns true.
    static bool applyOpacity(QImage& image, double opacity);
    /// The same for a \a pixmap and its \a opacity.
    static bool applyOpacity(QPixmap& pixmap, double opacity);

    /// A canvas of the size of \a image, filled with \a color, with \a image drawn over it; if
    /// \a image is null, a canvas of 20 x 20 pixels that is only filled. An invalid \a color is
    /// transparent.
    ///
    /// A null image is returned unless \a opacity is in the range 1 to 100. It has no other
    /// effect: it is passed to applyOpacity() as it is, where any value from 1 on means opaque.
    /// This is deliberate.
    static QImage createTransparentPixmap(const QImage& image, const QColor& color, int opacity);

    /// A grey copy: each pixel becomes (11 x red + 16 x green + 5 x blue) / 32, its alpha stays.
    /// An image in another format than QImage::Format_ARGB32, Format_ARGB32_Premultiplied or
    /// Format_RGB32 is returned as ARGB32, or as RGB32 if it has no alpha channel.
    static QPixmap toGray(const QPixmap& pixmap);
    /// The same for an \a image.
    static QImage toGray(const QImage& image);

    /// Paints \a color over the opaque parts of \a pixmap, whose shape is kept. An alpha of
    /// \a color below 1 multiplies the alpha of the pixmap. A null pixmap stays null.
    static void colorize(QPixmap& pixmap, const QColor& color);

    /// A copy of \a pixmap after colorize() with \a color.
    static QPixmap colorized(const QPixmap& pixmap, const QColor& color);

    /// @}
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ImageUtils::OptionsImageCopy)

#endif // ORVAUTILS_IMAGEUTILS_H

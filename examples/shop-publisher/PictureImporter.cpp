// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PictureImporter.h"

#include <FileUtils.h>
#include <ImageUtils.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QStorageInfo>
#include <QXmlStreamReader>

namespace {

const QSize imageLimit(1600, 1600);
const QSize thumbLimit(320, 320);

QString tr(const char* text)
{
    return QCoreApplication::translate("PictureImporter", text);
}

/// A browser shows an SVG as a picture only when it is well-formed and names its namespace; the
/// library, which copies it as it is, need not look inside.
QString svgDefect(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return tr("cannot be opened (%1)").arg(file.errorString());
    QXmlStreamReader xml(&file);
    if (xml.readNextStartElement()
        && (xml.name() != QLatin1String("svg")
            || xml.namespaceUri() != QLatin1String("http://www.w3.org/2000/svg")))
        return tr("is not an SVG picture: its first element is not svg in the SVG namespace");
    while (!xml.atEnd())
        xml.readNext();
    if (xml.hasError())
        return tr("is not a well-formed SVG picture (line %1: %2)")
            .arg(xml.lineNumber())
            .arg(xml.errorString());
    return QString();
}

/// Why the picture cannot be published whatever the library does, empty when nothing speaks
/// against it. Cheap: only a file that is copied without being decoded is looked at as a whole.
QString sourceDefect(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return tr("cannot be opened (%1)").arg(file.errorString());
    if (file.size() == 0)
        return tr("is empty");
    const bool namedSvg = ImageUtils::imageNameIsVectoriel(path);
    if (namedSvg) {
        const QString defect = svgDefect(path);
        if (!defect.isEmpty())
            return defect;
        if (!QImageReader::supportedImageFormats().contains("svg"))
            return tr("cannot be read: the SVG plugin of Qt is not installed");
    }

    QImageReader reader(path);
    const QByteArray format = reader.format().toLower();
    if (format.isEmpty())
        return tr("cannot be decoded (it is not a JPEG, PNG, GIF or SVG picture)");
    if (!QList<QByteArray>{"jpeg", "jpg", "png", "gif", "svg"}.contains(format))
        return tr("holds a picture of the kind %1, which is not a JPEG, PNG, GIF or SVG")
            .arg(QString::fromLatin1(format));
    // A browser goes by the content among the other kinds, but not here.
    if (namedSvg != (format == "svg"))
        return tr("holds a picture of the kind %1, which does not go with its name")
            .arg(QString::fromLatin1(format));
    if (format == "gif" && reader.read().isNull())
        return tr("cannot be decoded (%1)").arg(reader.errorString());
    return QString();
}

/// Why the library could not import a picture that looked well, found by trying its steps and, for
/// the step that is left, from what it logged.
QString importDefect(const QString& path, const QString& siteFolder, const QString& log)
{
    QImageReader reader(path);
    if (reader.read().isNull())
        return tr("cannot be decoded (%1)").arg(reader.errorString());
    if (log.contains(QLatin1String("can't save")) || log.contains(QLatin1String("can't copy")))
        return tr("cannot be saved in the site, where %1 are free")
            .arg(FileUtils::fileSizeToString(QStorageInfo(siteFolder).bytesAvailable()));
    return tr("cannot be imported (%1)").arg(log);
}

/// Size in CSS pixels of a small picture: it fills the limit, but only a drawing is enlarged.
QSize shownSize(const QSize& pixels, bool drawing)
{
    if (drawing && pixels.isEmpty())
        return thumbLimit;
    const bool fits =
        pixels.width() <= thumbLimit.width() && pixels.height() <= thumbLimit.height();
    if (fits && !drawing)
        return pixels;
    return pixels.scaled(thumbLimit, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

} // namespace

bool PictureImporter::import(const Photograph& photograph, PublishedPicture* published,
                             QString* reason)
{
    mLog.take();
    if (mSite->contains(photograph.source)) {
        *reason = tr("is a link into the site itself");
        return false;
    }
    *reason = sourceDefect(photograph.source);
    if (!reason->isEmpty())
        return false;

    // The suffix stays: it is part of how readers recognise a file.
    const QString suffix = QLatin1Char('.') + QFileInfo(photograph.siteName).suffix();
    const QString image = mSite->draft(QStringLiteral("image") + suffix);
    const QString thumb = mSite->draft(QStringLiteral("thumb") + suffix);
    const bool made =
        makeDraft(photograph, image, false, reason) && makeDraft(photograph, thumb, true, reason);
    if (made) {
        published->name = photograph.siteName;
        published->imageSize = ImageUtils::imageSize(image);
        published->thumbSize = shownSize(ImageUtils::imageSize(thumb),
                                         ImageUtils::imageNameIsVectoriel(photograph.siteName));
    }
    const bool done = made
        && mSite->publish(thumb, QLatin1String("thumbs/") + photograph.siteName, reason)
        && mSite->publish(image, QLatin1String("images/") + photograph.siteName, reason);
    QFile::remove(image);
    QFile::remove(thumb);
    return done;
}

bool PictureImporter::makeDraft(const Photograph& photograph, const QString& draft, bool thumb,
                                QString* reason)
{
    // ProgressiveJpeg for the small one too: a picture that is re-encoded carries no metadata. A
    // copy would keep its orientation tag, which a browser applies by itself: the thumbnail of a
    // mirrored photograph would look different from the large picture. It would also publish
    // where the photograph was taken.
    QFlags<ImageUtils::OptionImageCopy> options =
        ImageUtils::UseExifRotation | ImageUtils::ProgressiveJpeg;
    if (thumb)
        options |= ImageUtils::Retina;
    const bool keepAspectRatio = true;
    const int quality = -1; // the library's default
    if (ImageUtils::copyImageFile(photograph.source, draft, keepAspectRatio,
                                  thumb ? thumbLimit : imageLimit, options, quality))
        return true;
    *reason =
        importDefect(photograph.source, mSite->folder(), mLog.take().join(QLatin1String("; ")));
    return false;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PictureCheck.h"

#include <ImageUtils.h>

#include <QFile>
#include <QImageReader>

namespace {

/// A larger SVG is not suitable for a page.
const qint64 bytesOfMiB = Q_INT64_C(1024) * 1024;
const qint64 maxSvgMiB = 20;

Defect svgDefect(QFile* file)
{
    if (file->size() > maxSvgMiB * bytesOfMiB)
        return {WorkItem::Unsuitable,
                PictureCheck::tr("is an SVG picture of more than %1 MiB").arg(maxSvgMiB)};
    Defect defect = SvgGuard::defectOf(file);
    if (defect || QImageReader::supportedImageFormats().contains("svg"))
        return defect;
    return {WorkItem::Unreadable,
            PictureCheck::tr("cannot be read: the SVG plugin of Qt is not installed")};
}

/// Uses only the header, before any pixel is decoded.
Defect sizeDefect(const QString& path)
{
    const QSize size = ImageUtils::imageSize(path);
    if (qint64(size.width()) * size.height() <= PictureCheck::maxPixels)
        return {};
    return {WorkItem::Unsuitable,
            PictureCheck::tr("%1 × %2 pixels: larger than %3 million pixels")
                .arg(QString::number(size.width()), QString::number(size.height()),
                     QString::number(PictureCheck::maxPixels / 1000000))};
}

} // namespace

const qint64 PictureCheck::maxPixels;

Defect PictureCheck::defectOf(const Photograph& photograph)
{
    QFile file(photograph.source);
    if (!file.open(QIODevice::ReadOnly))
        return {WorkItem::Unreadable, tr("cannot be opened (%1)").arg(file.errorString())};
    if (file.size() == 0)
        return {WorkItem::Undecodable, tr("is empty")};
    if (ImageUtils::imageNameIsVectoriel(photograph.name))
        return svgDefect(&file);

    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format().toLower();
    const QString kind = QString::fromLatin1(format);
    if (format.isEmpty())
        return {WorkItem::Undecodable,
                tr("cannot be decoded (it is not a JPEG, PNG, GIF, SVG, WebP or TIFF picture)")};
    // A server would send it with the type of its name, and a visitor's browser would not show it.
    if (format.startsWith("svg"))
        return {WorkItem::Unsuitable,
                tr("holds a picture of the kind %1, which does not go with its name").arg(kind)};
    if (!QList<QByteArray>{"jpeg", "jpg", "png", "gif", "webp", "tiff"}.contains(format))
        return {WorkItem::Unsuitable,
                tr("holds a picture of the kind %1, which is not published").arg(kind)};
    if (Defect defect = sizeDefect(photograph.source))
        return defect;
    if (format == "gif" && reader.read().isNull())
        return {WorkItem::Undecodable, tr("cannot be decoded (%1)").arg(reader.errorString())};
    return {};
}

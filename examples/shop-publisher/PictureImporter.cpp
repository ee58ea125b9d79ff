// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PictureImporter.h"

#include "LogKeeper.h"
#include "PictureCheck.h"

#include <FileUtils.h>
#include <ImageUtils.h>

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QStorageInfo>

namespace {

const QSize imageLimit(1600, 1600);
const QSize thumbLimit(320, 320);

/// Why the library could not import a picture that looked well, found by trying its steps and, for
/// the step that is left, from what it logged.
Defect importDefect(const QString& path, const QString& siteFolder, const QString& log)
{
    QImageReader reader(path);
    if (reader.read().isNull())
        return {WorkItem::Undecodable,
                PictureImporter::tr("cannot be decoded (%1)").arg(reader.errorString())};
    if (log.contains(QLatin1String("can't save")) || log.contains(QLatin1String("can't copy"))) {
        const QString free = FileUtils::fileSizeToString(QStorageInfo(siteFolder).bytesAvailable());
        return {WorkItem::Unwritable,
                PictureImporter::tr("cannot be saved in the site, where %1 are free").arg(free)};
    }
    return {WorkItem::Undecodable, PictureImporter::tr("cannot be imported (%1)").arg(log)};
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

/// Makes one size of a picture, without metadata and upright.
bool makeDraft(const QString& source, const QString& draft, bool thumb)
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
    return ImageUtils::copyImageFile(source, draft, keepAspectRatio,
                                     thumb ? thumbLimit : imageLimit, options, quality);
}

} // namespace

QVector<PublishedPicture> PictureImporter::importAll(const QVector<Photograph>& photographs)
{
    LogKeeper log;
    QVector<PublishedPicture> published;
    const auto progress = [this, &photographs](int done, const QString& step) {
        emitThreadProgressMessages(QStringLiteral("%1/%2").arg(done).arg(photographs.size()), step);
    };
    for (int i = 0; i < photographs.size() && !isInterruptionRequested(); ++i) {
        const Photograph& photograph = photographs.at(i);
        progress(i, photograph.name);
        PublishedPicture picture;
        QString reason;
        if (import(photograph, &log, &picture, &reason)) {
            published.append(picture);
            progress(i + 1, photograph.name);
        } else {
            progress(i + 1, tr("%1: FAILED, %2").arg(photograph.name, reason));
        }
    }
    return published;
}

bool PictureImporter::import(const Photograph& photograph, LogKeeper* log,
                             PublishedPicture* published, QString* reason)
{
    auto* const item = new WorkItem(WorkItem::Picture, photograph.name, this);
    ORVAUTILS_ADD_ERRORABLE_CHILD(*item);
    log->take();
    if (mSite->contains(photograph.source)) {
        *reason = tr("is a link into the site itself");
        item->ORVAUTILS_SET_ERROR(item->failure(WorkItem::Unsuitable, *reason));
        return false;
    }
    if (const Defect defect = PictureCheck::defectOf(photograph)) {
        *reason = defect.reason;
        item->ORVAUTILS_SET_ERROR(item->failure(defect.failure, *reason));
        return false;
    }

    // The suffix stays: it is part of how readers recognise a file.
    const QString suffix = QLatin1Char('.') + QFileInfo(photograph.siteName).suffix();
    const QString image = mSite->draft(QStringLiteral("image") + suffix);
    const QString thumb = mSite->draft(QStringLiteral("thumb") + suffix);
    bool done = false;
    if (!makeDraft(photograph.source, image, false) || !makeDraft(photograph.source, thumb, true)) {
        const Defect defect =
            importDefect(photograph.source, mSite->folder(), log->take().join(QLatin1String("; ")));
        *reason = defect.reason;
        item->ORVAUTILS_SET_ERROR(item->failure(defect.failure, *reason));
    } else {
        published->photograph = photograph.name;
        published->name = photograph.siteName;
        published->imageSize = ImageUtils::imageSize(image);
        published->thumbSize = shownSize(ImageUtils::imageSize(thumb),
                                         ImageUtils::imageNameIsVectoriel(photograph.siteName));
        done = mSite->publish(thumb, QLatin1String("thumbs/") + photograph.siteName, reason)
            && mSite->publish(image, QLatin1String("images/") + photograph.siteName, reason);
        if (!done)
            item->ORVAUTILS_SET_ERROR(item->failure(WorkItem::Unwritable, *reason));
    }
    QFile::remove(image);
    QFile::remove(thumb);
    return done;
}

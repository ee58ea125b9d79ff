// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PictureImporter.h"

#include <FileUtils.h>
#include <ImageImporter.h>
#include <ImageUtils.h>

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <QTimer>

namespace {

const QSize imageLimit(1600, 1600);
const QSize thumbLimit(320, 320);
const int interruptionMilliseconds = 20;

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

/// The format for a picture that a browser does not show as it is; empty for that of the source.
QByteArray formatFor(const Photograph& photograph)
{
    const QString from = QFileInfo(photograph.name).suffix();
    const QString to = QFileInfo(photograph.siteName).suffix();
    return from.compare(to, Qt::CaseInsensitive) == 0 ? QByteArray() : QByteArrayLiteral("jpeg");
}

} // namespace

/// One photograph on its way.
struct PictureImporter::Work
{
    const Photograph* photograph = nullptr;
    WorkItem* item = nullptr;
    Defect defect; ///< found before it was imported
    QString image; ///< drafts
    QString thumb;
    ImageImportResult imageResult;
    ImageImportResult thumbResult;
    int missingResults = 0;
};

QVector<PublishedPicture> PictureImporter::importAll(const QVector<Photograph>& photographs)
{
    mPublished.clear();
    ImageImport how;
    how.refuseTruncated = !mOptions.acceptTruncated;
    how.maxPixels = PictureCheck::maxPixels;

    QVector<Work> works(photographs.size());
    ImageImporter importer;
    QVector<int> workOfImport;
    for (int i = 0; i < photographs.size() && !isInterruptionRequested(); ++i) {
        Work& work = works[i];
        work.photograph = &photographs.at(i);
        work.item = new WorkItem(WorkItem::Picture, work.photograph->name, this);
        ORVAUTILS_ADD_ERRORABLE_CHILD(*work.item);
        work.defect = mSite->contains(work.photograph->source)
            ? Defect{WorkItem::Unsuitable, tr("is a link into the site itself")}
            : PictureCheck::defectOf(*work.photograph);
        if (work.defect)
            continue;
        // The suffix stays: it is part of how readers recognise a file.
        const QString suffix = QLatin1Char('.') + QFileInfo(work.photograph->siteName).suffix();
        work.image = mSite->draft(QStringLiteral("image-%1").arg(i) + suffix);
        work.thumb = mSite->draft(QStringLiteral("thumb-%1").arg(i) + suffix);
        work.missingResults = 2;
        how.format = formatFor(*work.photograph);
        how.maxSize = imageLimit;
        importer.add(work.photograph->source, work.image, how);
        how.maxSize = thumbLimit * 2; // twice the pixels, for dense screens
        importer.add(work.photograph->source, work.thumb, how);
        workOfImport += {i, i};
    }

    // Results come in any order, pictures go to their places in theirs.
    int next = 0;
    const auto progress = [this, &works](int done, const QString& step) {
        emitThreadProgressMessages(QStringLiteral("%1/%2").arg(done).arg(works.size()), step);
    };
    const auto begin = [&] {
        if (next < works.size() && !isInterruptionRequested() && !mSiteIsFull)
            progress(next, works.at(next).photograph->name);
    };
    const auto advance = [&] {
        while (next < works.size() && works.at(next).photograph
               && works.at(next).missingResults == 0 && !isInterruptionRequested()
               && !mSiteIsFull) {
            conclude(&works[next]);
            if (mSiteIsFull)
                break;
            const Work& work = works.at(next);
            progress(++next,
                     work.defect
                         ? tr("%1: FAILED, %2").arg(work.photograph->name, work.defect.reason)
                         : work.photograph->name);
            begin();
        }
        if (isInterruptionRequested() || mSiteIsFull)
            importer.cancel();
    };

    QEventLoop loop;
    connect(&importer, &ImageImporter::imported, &loop,
            [&](int index, const ImageImportResult& result) {
                Work& work = works[workOfImport.at(index)];
                const bool isImage = index % 2 == 0;
                (isImage ? work.imageResult : work.thumbResult) = result;
                --work.missingResults;
                advance();
            });
    connect(&importer, &ImageImporter::finished, &loop, &QEventLoop::quit);
    QTimer interruption;
    connect(&interruption, &QTimer::timeout, &loop, advance);
    interruption.start(interruptionMilliseconds);
    begin();
    advance();
    if (importer.count() > 0) {
        importer.start(mOptions.jobs);
        loop.exec();
    }
    const QVector<Work>& imported = works; // a constant one is not copied by the loop
    for (const Work& work : imported) {
        QFile::remove(work.image);
        QFile::remove(work.thumb);
    }
    return mPublished;
}

/// Brings a picture that is ready to its place, or tells why it is not.
void PictureImporter::conclude(Work* work)
{
    PublishedPicture published;
    if (!work->defect) {
        work->defect = importDefect(work->imageResult);
        if (!work->defect)
            work->defect = importDefect(work->thumbResult);
        // What breaks off in front of its pixels is no picture, even where that is accepted.
        if (!work->defect && !ImageUtils::imageNameIsVectoriel(work->image)
            && !ImageUtils::imageSize(work->image).isValid())
            work->defect = {WorkItem::Undecodable,
                            tr("cannot be decoded (its content is damaged)")};
    }
    if (work->defect) {
        work->item->ORVAUTILS_SET_ERROR(
            work->item->failure(work->defect.failure, work->defect.reason));
        return;
    }
    const Photograph& photograph = *work->photograph;
    published.photograph = photograph.name;
    published.name = photograph.siteName;
    published.imageSize = ImageUtils::imageSize(work->image);
    published.thumbSize = shownSize(ImageUtils::imageSize(work->thumb),
                                    ImageUtils::imageNameIsVectoriel(photograph.siteName));
    if (mSite->publish(work->thumb, QLatin1String("thumbs/") + photograph.siteName,
                       &work->defect.reason)
        && mSite->publish(work->image, QLatin1String("images/") + photograph.siteName,
                          &work->defect.reason)) {
        mPublished.append(published);
        return;
    }
    work->defect.failure = WorkItem::Unwritable;
    work->item->ORVAUTILS_SET_ERROR(work->item->failure(work->defect.failure, work->defect.reason));
}

/// What the result of an import means for a user.
Defect PictureImporter::importDefect(const ImageImportResult& result)
{
    switch (result.status) {
    case ImageImportResult::Imported:
    case ImageImportResult::Copied:
        return {};
    case ImageImportResult::NotWritable: {
        // The working folder is the program's own: the next picture would fare no better.
        mSiteIsFull = true;
        const QString free =
            FileUtils::fileSizeToString(QStorageInfo(mSite->folder()).bytesAvailable());
        return {WorkItem::Unwritable,
                tr("cannot be saved in the site, where %1 are free; nothing more was published")
                    .arg(free)};
    }
    case ImageImportResult::Truncated:
        return {WorkItem::Undecodable,
                tr("breaks off before its end (--accept-truncated publishes it all the same)")};
    case ImageImportResult::TooLarge:
        return {WorkItem::Unsuitable, tr("has more pixels than fit into memory")};
    case ImageImportResult::NotFound:
        return {WorkItem::Missing, tr("has gone")};
    case ImageImportResult::NotAnImage:
    case ImageImportResult::NotReadable:
    case ImageImportResult::Cancelled:
        break;
    }
    return {WorkItem::Undecodable, tr("cannot be decoded (its content is damaged)")};
}

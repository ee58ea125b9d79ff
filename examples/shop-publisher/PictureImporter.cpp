// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "PictureImporter.h"

#include <FileUtils.h>
#include <ImageImporter.h>
#include <ImageUtils.h>

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QPair>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>

namespace {

/// Pixels of the longer side.
const int imageLimit = 1600;
const int thumbLimit = 320;

/// The thumbnail has twice the pixels at which it is shown, for high-density screens. Pictures of
/// products also exist with the same number and with three times as many.
const int thumbPixels = 2 * thumbLimit;
const int moreSizes[] = {thumbLimit, 3 * thumbLimit};

const int interruptionMilliseconds = 20;

/// WebP is offered besides another format if it takes at most this percentage of its bytes.
const int webpPercent = 80;

/// The bytes of the name of a file, at most, on most systems. ".webp" is added to it.
const int longestName = 255;

/// Size in CSS pixels of a thumbnail: it fills the limit, but only a drawing is enlarged.
QSize shownSize(const QSize& pixels, bool isDrawing)
{
    const QSize limit(thumbLimit, thumbLimit);
    if (isDrawing && pixels.isEmpty())
        return limit;
    if (!isDrawing && pixels.boundedTo(limit) == pixels)
        return pixels;
    return pixels.scaled(limit, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

/// The format for a picture that browsers cannot show; empty for that of the source.
QByteArray formatFor(const Photograph& photograph)
{
    const QString from = QFileInfo(photograph.name).suffix();
    const QString to = QFileInfo(photograph.siteName).suffix();
    return from.compare(to, Qt::CaseInsensitive) == 0 ? QByteArray() : QByteArrayLiteral("jpeg");
}

} // namespace

/// One file that is made of a photograph.
struct PictureImporter::Draft
{
    QString place; ///< its path in the site
    int limit; ///< pixels of its longer side
    QByteArray format; ///< empty for that of the source
    QString path;
    ImageImportResult result;
};

/// One photograph that is being imported.
struct PictureImporter::Work
{
    const Photograph* photograph = nullptr;
    Defect defect; ///< found before it was imported
    QVector<Draft> drafts; ///< the large picture, the thumbnail, and further ones
    int missingResults = 0;

    void removeDrafts() const
    {
        for (const Draft& draft : drafts)
            QFile::remove(draft.path);
    }
};

PictureImporter::PictureImporter(Site* site, const ImportOptions& options, QObject* parent)
    : Threadable(parent)
    , mSite(site)
    , mScratch(site ? nullptr : new QTemporaryDir)
    , mOptions(options)
{ }

PictureImporter::~PictureImporter() = default;

QVector<PictureImporter::Draft> PictureImporter::draftsOf(const Photograph& photograph)
{
    const QByteArray format = formatFor(photograph);
    const QString& name = photograph.siteName;
    QVector<Draft> drafts;
    const auto add = [&drafts](const QString& place, int limit, const QByteArray& kind) {
        drafts.append({place, limit, kind, QString(), ImageImportResult()});
    };
    add(QLatin1String("images/") + name, imageLimit, format);
    add(QLatin1String("thumbs/") + name, thumbPixels, format);
    const QString suffix = QFileInfo(name).suffix().toLower();
    if (!photograph.ofProduct || suffix == QLatin1String("svg") || suffix == QLatin1String("gif"))
        return drafts;
    const auto place = [&name](int size) { return QStringLiteral("sizes/%1/").arg(size) + name; };
    for (const int size : moreSizes)
        add(place(size), size, format);
    static const bool hasWebp = QImageWriter::supportedImageFormats().contains("webp");
    const bool hasRoom = QFile::encodeName(QFileInfo(name).fileName()).size() <= longestName - 5;
    if (suffix == QLatin1String("webp") || !hasWebp || !hasRoom)
        return drafts;
    for (const int size : {moreSizes[0], thumbPixels, moreSizes[1]})
        add(place(size) + QLatin1String(".webp"), size, QByteArrayLiteral("webp"));
    return drafts;
}

QStringList PictureImporter::placesOf(const Photograph& photograph)
{
    QStringList places;
    const QVector<Draft> drafts = draftsOf(photograph);
    for (const Draft& draft : drafts)
        places.append(draft.place);
    return places;
}

/// Finds out whether a photograph can be imported, and what to make of it.
void PictureImporter::prepare(const Photograph& photograph, Work* work)
{
    work->photograph = &photograph;
    work->defect = mSite && mSite->contains(photograph.source)
        ? Defect{WorkItem::Unsuitable, tr("is a link into the site itself")}
        : PictureCheck::defectOf(photograph);
    if (work->defect)
        return;
    if (mSite) {
        work->drafts = draftsOf(photograph);
        for (Draft& draft : work->drafts)
            draft.path = mSite->draft(draft.place);
    } else {
        // The smallest of pictures shows whether it can be imported.
        const QString name =
            QStringLiteral("%1.%2").arg(++mChecked).arg(QFileInfo(photograph.siteName).suffix());
        work->drafts = QVector<Draft>{
            {name, 16, formatFor(photograph), mScratch->path() + QLatin1Char('/') + name, {}}};
    }
    work->missingResults = int(work->drafts.size());
}

QVector<PublishedPicture> PictureImporter::import(const QVector<Photograph>& photographs, int first,
                                                  int count)
{
    mPublished.clear();
    ImageImport how;
    how.refuseTruncated = !mOptions.acceptTruncated;
    how.maxPixels = PictureCheck::maxPixels;

    QVector<Work> works(count);
    ImageImporter importer;
    QVector<QPair<int, int>> draftOfImport; // work and draft
    for (int i = 0; i < count && goesOn(); ++i) {
        const Photograph& photograph = photographs.at(first + i);
        prepare(photograph, &works[i]);
        const QVector<Draft>& drafts = works.at(i).drafts;
        for (int j = 0; j < drafts.size(); ++j) {
            how.format = drafts.at(j).format;
            how.maxSize = QSize(drafts.at(j).limit, drafts.at(j).limit);
            importer.add(photograph.source, drafts.at(j).path, how);
            draftOfImport.append({i, j});
        }
    }

    // Results arrive in any order; pictures are put in place in their own order.
    const int total = int(photographs.size());
    int next = 0;
    const auto begin = [&] {
        if (next < count && goesOn())
            emitThreadProgress(first + next, total, photographs.at(first + next).name);
    };
    const auto advance = [&] {
        while (next < count && works.at(next).photograph && works.at(next).missingResults == 0
               && goesOn()) {
            conclude(&works[next]);
            if (mSiteIsFull)
                break;
            const Work& work = works.at(next);
            emitThreadProgress(
                first + ++next, total,
                work.defect ? tr("%1: FAILED, %2").arg(work.photograph->name, work.defect.reason)
                            : work.photograph->name);
            begin();
        }
        if (!goesOn())
            importer.cancel();
    };

    QEventLoop loop;
    connect(&importer, &ImageImporter::imported, &loop,
            [&](int index, const ImageImportResult& result) {
                Work& work = works[draftOfImport.at(index).first];
                work.drafts[draftOfImport.at(index).second].result = result;
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
    const QVector<Work>& left = works; // const, so that the loop does not detach it
    for (const Work& work : left)
        work.removeDrafts();
    return mPublished;
}

/// Puts a picture that is ready in its place, or reports why it is not.
void PictureImporter::conclude(Work* work)
{
    for (int i = 0; i < work->drafts.size() && !work->defect; ++i)
        work->defect = importDefect(work->drafts.at(i).result);
    if (!work->defect && mSite) {
        const PublishedPicture published = chooseSizes(work);
        QVector<Site::Draft> drafts; // the large one last: without it there is no picture
        for (auto draft = work->drafts.constBegin(); draft != work->drafts.constEnd(); ++draft)
            drafts.prepend({draft->path, draft->place});
        work->defect = {WorkItem::Unwritable, mSite->put(drafts)};
        if (!work->defect) {
            mPublished.append(published);
            work->drafts.clear(); // they belong to the site
        }
    }
    work->removeDrafts();
    if (!work->defect)
        return;
    auto* const item = new WorkItem(WorkItem::Picture, work->photograph->name, this);
    ORVAUTILS_ADD_ERRORABLE_CHILD(*item);
    item->ORVAUTILS_SET_ERROR(item->failure(work->defect.failure, work->defect.reason));
}

/// Chooses the drafts for the site: no size twice, as a small photograph would give, and WebP only
/// where it is worth it.
PublishedPicture PictureImporter::chooseSizes(Work* work)
{
    const bool isDrawing = ImageUtils::imageNameIsVectoriel(work->photograph->siteName);
    PublishedPicture published;
    published.photograph = work->photograph->name;
    published.name = work->photograph->siteName;
    published.imageSize = work->drafts.at(0).result.size;
    published.thumbSize = shownSize(work->drafts.at(1).result.size, isDrawing);

    qint64 bytes = 0;
    qint64 webpBytes = 0;
    for (int i = 1; i < work->drafts.size(); ++i) { // the first is always used
        const Draft& draft = work->drafts.at(i);
        const bool isWebp = draft.format == "webp";
        QVector<PictureSize>& sizes = isWebp ? published.webp : published.sizes;
        const int width = draft.result.size.width();
        const bool isThere =
            std::any_of(sizes.cbegin(), sizes.cend(),
                        [width](const PictureSize& size) { return size.width == width; });
        if (isThere)
            continue;
        sizes.append({draft.place, width});
        (isWebp ? webpBytes : bytes) += QFileInfo(draft.path).size();
    }
    std::sort(published.sizes.begin(), published.sizes.end(),
              [](const PictureSize& a, const PictureSize& b) { return a.width < b.width; });
    if (100 * webpBytes > webpPercent * bytes)
        published.webp.clear();

    const QStringList places = published.places();
    const auto isLeftOut = [&places](const Draft& draft) {
        return !places.contains(draft.place) && QFile::remove(draft.path);
    };
    work->drafts.erase(std::remove_if(work->drafts.begin(), work->drafts.end(), isLeftOut),
                       work->drafts.end());
    return published;
}

/// What the result of an import means for a user.
Defect PictureImporter::importDefect(const ImageImportResult& result)
{
    switch (result.status) {
    case ImageImportResult::Imported:
    case ImageImportResult::Copied:
        return {};
    case ImageImportResult::NotWritable: {
        // The working folder is the program's own: the next picture would fail, too.
        mSiteIsFull = true;
        if (!mSite)
            return {WorkItem::Unwritable,
                    tr("cannot be checked: there is no room in the folder for temporary files")};
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

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Publication.h"

#include "ContactSheet.h"
#include "ShopData.h"
#include "ShopPage.h"
#include "StaticFiles.h"

#include <FileUtils.h>

#include <QFileInfo>

#include <algorithm>

namespace {

/// Tells whether two photographs are the same, byte by byte.
QByteArray contentOf(const QString& path)
{
    return FileUtils::sha1(path).toLatin1();
}

} // namespace

Publication::Publication(const Project& project, Site* site, Published* published,
                         const PublicationOptions& options, const QSet<QString>& changed)
    : mProject(project)
    , mSite(site)
    , mFolder(WorkItem::Folder, project.photosFolder(), this)
    , mShopFile(project, this)
    , mImporter(site, options.import, this)
    , mPublished(published)
    , mChanged(changed)
    , mOptions(options)
{
    ORVAUTILS_ADD_ERRORABLE_CHILD(mFolder);
    ORVAUTILS_ADD_ERRORABLE_CHILD(mShopFile);
    ORVAUTILS_ADD_ERRORABLE_CHILD(mImporter);
    addThreadableChild(mImporter);
}

void Publication::run()
{
    QVector<Photograph> photographs = mProject.photographs(
        &mFolder, [this] { return isInterruptionRequested(); }, &mUnpublished);
    mPhotographs = int(photographs.size());
    // A folder that cannot be read, such as one of a disk that was taken off, has not lost its
    // photographs.
    const QVector<ErrorableCode> errors = mFolder.errorStack();
    mAllFoldersRead = std::none_of(errors.begin(), errors.end(), [](const ErrorableCode& error) {
        return error.code == WorkItem::Unreadable;
    });
    const bool first = !mPublished->anything;
    const QString reason = first && !isInterruptionRequested() ? refusal(photographs) : QString();
    if (!reason.isEmpty()) {
        mRefused = true;
        mFolder.ORVAUTILS_SET_ERROR(mFolder.failure(WorkItem::Missing, reason));
        return;
    }
    const FileStamp shopFile = FileStamp::of(mProject.shopFile());
    Shop shop;
    const bool hasShop =
        mShopFile.exists() && !isInterruptionRequested() && mShopFile.read(photographs, &shop);

    markProducts(hasShop ? &shop : nullptr, &photographs);

    if (mAllFoldersRead && !isInterruptionRequested())
        removeVanished(photographs);
    const QVector<PublishedPicture> pictures = import(photographs);
    mImported = int(pictures.size());
    // A page of the pictures so far would take the others from the page that may stand there.
    mStopped = isInterruptionRequested();
    if (mStopped || mImporter.siteIsFull())
        return;
    if (first)
        copyStaticFiles();
    if (!first && !mPicturesChanged && shopFile == mPublished->shopFile)
        return;
    mPublished->anything = true;
    mPublished->shopFile = shopFile;
    const QStringList before = mPublished->shopPages + mPublished->sheetPages;
    if (!mShopFile.exists())
        mPublished->shopPages.clear();
    if (hasShop && writeShop(shop, pictures))
        mShopLanguages = shop.languages;
    mPageWritten = writeContactSheet(pictures);
    const QStringList pages = mPublished->shopPages + mPublished->sheetPages;
    for (const QString& place : before) {
        if (!pages.contains(place))
            remove(place);
    }
    writeRecord(mPublished->pictures);
}

QVector<ErrorableCode> Publication::failures() const
{
    QVector<ErrorableCode> failures = errorStack();
    std::reverse(failures.begin(), failures.end());
    return failures;
}

/// Why nothing at all is published; empty where nothing is in the way.
QString Publication::refusal(const QVector<Photograph>& photographs) const
{
    // Rather a wrong folder, or a disk that is not there, than a shop without pictures.
    if (photographs.isEmpty())
        return tr("there is no photograph, so nothing was published");
    const QMap<QString, Published::Picture>& before = mPublished->pictures;
    const bool isSame = mPublished->project.isEmpty() || mPublished->project == mProject.identity()
        || before.isEmpty()
        || std::any_of(photographs.begin(), photographs.end(),
                       [&before](const Photograph& one) { return before.contains(one.name); });
    if (isSame || mOptions.force)
        return QString();
    return tr("SITE shows the photographs of another project, and none of these; --force replaces "
              "them");
}

/// Marks the photographs that the shop shows; without a \a shop those whose pictures the pages that
/// stay in the site may show.
void Publication::markProducts(const Shop* shop, QVector<Photograph>* photographs) const
{
    QSet<QString> names;
    if (shop) {
        for (const ShopProduct& product : shop->products) {
            for (const QString& photo : product.photos)
                names.insert(photo);
        }
    }
    for (Photograph& photograph : *photographs)
        photograph.ofProduct = names.contains(photograph.name)
            || (!shop && mShopFile.exists()
                && mPublished->pictures.value(photograph.name).ofProduct);
}

/// Whether the site has the pictures of \a photograph as it is now, \a stamp, so that they need not
/// be made again.
bool Publication::isPublished(const Published::Picture& known, const Photograph& photograph,
                              const FileStamp& stamp) const
{
    if (known.siteName != photograph.siteName || mChanged.contains(photograph.name))
        return false;
    if (!known.imported)
        return known.stamp == stamp; // it would fail again
    if (known.ofProduct != photograph.ofProduct)
        return false;
    for (auto it = known.files.begin(); it != known.files.end(); ++it) {
        if (it.value() != siteStamp(it.key()))
            return false;
    }
    // A copy of the project, or a clock that was set, gives other stamps to the same photograph.
    return known.stamp == stamp || known.content == contentOf(photograph.source);
}

/// Brings the record in the site up to date. It may name more pictures than there are, so that none
/// is forgotten where the program is killed.
void Publication::writeRecord(const QMap<QString, Published::Picture>& pictures)
{
    Published record;
    record.project = mProject.identity();
    record.pictures = pictures;
    record.shopPages = mPublished->shopPages;
    record.sheetPages = mPublished->sheetPages;
    write({{Published::fileName(), record.toJson()}});
}

/// Records what a photograph that was imported has in the site, and takes away what an earlier
/// version of it had beside that.
void Publication::recordFiles(const Photograph& photograph, Published::Picture* entry)
{
    entry->content = contentOf(photograph.source);
    entry->ofProduct = photograph.ofProduct;
    entry->files.clear();
    const QStringList places = entry->picture.places();
    for (const QString& place : places)
        entry->files.insert(place, siteStamp(place));
    const QStringList possible = PictureImporter::placesOf(photograph);
    for (const QString& place : possible) {
        if (!entry->files.contains(place))
            remove(place);
    }
}

/// The pictures of all \a photographs that are in the site then, in their order.
QVector<PublishedPicture> Publication::import(const QVector<Photograph>& photographs)
{
    QVector<Photograph> news;
    QMap<QString, Published::Picture> known;
    if (!mAllFoldersRead)
        known = mPublished->pictures;
    for (const Photograph& photograph : photographs) {
        Published::Picture picture = mPublished->pictures.value(photograph.name);
        const FileStamp stamp = FileStamp::of(photograph.source);
        if (!isPublished(picture, photograph, stamp)) {
            QMap<QString, FileStamp> files = picture.files; // they may still be there
            const QStringList places = PictureImporter::placesOf(photograph);
            for (const QString& place : places)
                files.insert(place, FileStamp());
            picture = Published::Picture();
            picture.siteName = photograph.siteName;
            picture.files = files;
            news.append(photograph);
        }
        picture.stamp = stamp;
        known.insert(photograph.name, picture);
    }
    mPicturesChanged = !news.isEmpty() || !mRemovedNames.isEmpty();
    writeRecord(known);

    const QVector<PublishedPicture> imported = mImporter.importAll(news);
    for (const PublishedPicture& picture : imported) {
        Published::Picture& entry = known[picture.photograph];
        entry.imported = true;
        entry.picture = picture;
        mImportedNames.append(picture.photograph);
    }
    const QVector<Photograph>& looked = news;
    for (const Photograph& photograph : looked) {
        Published::Picture& entry = known[photograph.name];
        if (entry.imported)
            recordFiles(photograph, &entry);
        if (FileStamp::of(photograph.source) != entry.stamp)
            mOvertakenNames.append(photograph.name);
        // What was not reached is looked at by the next run.
        if (!entry.imported && (isInterruptionRequested() || mImporter.siteIsFull()))
            entry.stamp = FileStamp();
    }
    mPublished->pictures = known;
    mPublished->project = mProject.identity();
    writeRecord(known);

    QVector<PublishedPicture> pictures;
    for (const Photograph& photograph : photographs) {
        const Published::Picture picture = known.value(photograph.name);
        if (picture.imported)
            pictures.append(picture.picture);
    }
    return pictures;
}

/// Takes the pictures of photographs that have gone out of the site, before others are imported: on
/// a system that does not tell "a.jpg" from "A.JPG" one of them may get the place.
void Publication::removeVanished(const QVector<Photograph>& photographs)
{
    QSet<QString> present;
    QSet<QString> places;
    for (const Photograph& photograph : photographs) {
        present.insert(photograph.name);
        const QStringList wanted = PictureImporter::placesOf(photograph);
        for (const QString& place : wanted)
            places.insert(place);
    }
    for (auto it = mPublished->pictures.begin(); it != mPublished->pictures.end(); ++it) {
        const QStringList files = it.value().files.keys();
        for (const QString& place : files) {
            // One that is there and has another place now leaves its former one.
            if (!places.contains(place))
                remove(place);
        }
        if (!present.contains(it.key()))
            mRemovedNames.append(it.key());
    }
}

FileStamp Publication::siteStamp(const QString& place) const
{
    return FileStamp::of(mSite->folder() + QLatin1Char('/') + place);
}

/// Takes a file out of the site, and tells where that fails.
void Publication::remove(const QString& place)
{
    QString reason;
    if (mSite->remove(place, &reason))
        return;
    auto* const file = new WorkItem(WorkItem::SitePage, place, this);
    ORVAUTILS_ADD_ERRORABLE_CHILD(*file);
    file->ORVAUTILS_SET_ERROR(file->failure(WorkItem::Unwritable, reason));
}

void Publication::copyStaticFiles()
{
    const QString source = mProject.staticFolder();
    if (source.isEmpty() || !QFileInfo(source).isDir())
        return;
    const StaticFiles files(source);
    if (files.refusals().isEmpty()
        && files.areCopiedIn(mSite->folder() + QLatin1Char('/') + Project::staticName()))
        return;
    const auto fail = [this](const QString& name, WorkItem::Failure failure,
                             const QString& reason) {
        auto* const item = new WorkItem(WorkItem::StaticFiles, name, this);
        ORVAUTILS_ADD_ERRORABLE_CHILD(*item);
        item->ORVAUTILS_SET_ERROR(item->failure(failure, reason));
    };
    const QVector<StaticFiles::Refusal> refusals = files.refusals();
    for (const StaticFiles::Refusal& refusal : refusals)
        fail(Project::staticName() + QLatin1Char('/') + refusal.name, WorkItem::Unsuitable,
             refusal.reason);
    QString reason;
    const QString draft = mSite->draft(Project::staticName());
    if (!files.copyTo(draft, &reason)
        || !mSite->publishFolder(draft, Project::staticName(), &reason))
        fail(Project::staticName(), WorkItem::Unwritable, reason);
}

bool Publication::writeShop(const Shop& shop, const QVector<PublishedPicture>& pictures)
{
    QMap<QString, PublishedPicture> byPhotograph;
    for (const PublishedPicture& picture : pictures)
        byPhotograph.insert(picture.photograph, picture);
    for (const ShopProduct& product : shop.products) {
        for (const QString& photo : product.photos) {
            if (byPhotograph.contains(photo))
                continue;
            mShopFile.ORVAUTILS_SET_ERROR(mShopFile.failure(
                WorkItem::Missing,
                tr("the shop is not written, because the photograph \"%1\" of one of its products "
                   "could not be imported")
                    .arg(photo)));
            return false;
        }
    }

    QVector<SiteFile> files{
        {QStringLiteral("data/products.js"), ShopData::productsJs(shop, byPhotograph)},
        {QStringLiteral("config/config.php"), ShopData::configPhp(shop)}};
    files += ShopPage::files(shop, byPhotograph);
    return write(files, &mPublished->shopPages);
}

/// The page of a site without a shop; with one, a page beside it.
bool Publication::writeContactSheet(const QVector<PublishedPicture>& pictures)
{
    const bool isFrontPage = mPublished->shopPages.isEmpty();
    return write(ContactSheet::files(mProject.title(), pictures, isFrontPage),
                 &mPublished->sheetPages);
}

/// Writes files and names them in \a places.
bool Publication::write(const QVector<SiteFile>& files, QStringList* places)
{
    if (!write(files))
        return false;
    places->clear();
    for (const SiteFile& file : files)
        places->append(file.place);
    return true;
}

bool Publication::write(const QVector<SiteFile>& files)
{
    SiteFile failed;
    QString reason;
    if (mSite->write(files, &failed, &reason))
        return true;
    auto* const page = new WorkItem(WorkItem::SitePage, failed.place, this);
    ORVAUTILS_ADD_ERRORABLE_CHILD(*page);
    page->ORVAUTILS_SET_ERROR(page->failure(WorkItem::Unwritable, reason));
    return false;
}

PublicationThread::PublicationThread(Publication* publication)
    : mPublication(publication)
{
    addThreadableChild(*publication);
    publication->moveToThread(this);
}

void PublicationThread::run()
{
    mPublication->run();
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Publication.h"

#include "Pages.h"

#include <FileUtils.h>

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

/// The number of photographs to import before the record is updated, or, if that is more, an eighth
/// of those that are done, because writing a large record takes time. A run that is killed leaves
/// the recorded ones to the next run.
const int batchSize = 500;
const int batchShare = 8;

/// The path in the site of the static file \a name.
QString staticPlace(const QString& name)
{
    return Project::staticName() + QLatin1Char('/') + name;
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
    const auto stops = [this] { return isInterruptionRequested(); };
    QVector<Photograph> photographs = mProject.photographs(&mFolder, stops, &mOutcome.unpublished);
    const QVector<ProjectFile> staticFiles = mProject.staticFiles(&mFolder, stops);
    mOutcome.photographs = int(photographs.size());
    // The photographs of a folder that cannot be read, such as one on a disk that was unmounted,
    // are not lost.
    const QVector<ErrorableCode> errors = mFolder.errorStack();
    mAllFoldersRead = std::none_of(errors.begin(), errors.end(), [](const ErrorableCode& error) {
        return error.code == WorkItem::Unreadable;
    });
    const QString reason = goesOn() ? refusal(photographs) : QString();
    if (!reason.isEmpty())
        mFolder.ORVAUTILS_SET_ERROR(mFolder.failure(WorkItem::Missing, reason));
    Shop shop;
    const bool hasShop = goesOn() && mShopFile.exists() && (!mSite || reason.isEmpty())
        && mShopFile.read(photographs, &shop);
    mOutcome.stopped = isInterruptionRequested();
    if (mOutcome.stopped || (mSite && !reason.isEmpty()))
        return;
    if (mSite)
        mNow = *mPublished;
    markProducts(hasShop ? &shop : nullptr, &photographs);
    import(photographs);
    // A page of the pictures so far would lack those on a page that may exist already.
    if (goesOn() && mSite)
        copyStaticFiles(staticFiles);
    if (goesOn() && mSite)
        writePages(hasShop ? &shop : nullptr, photographs);
    mOutcome.stopped = isInterruptionRequested();
    if (mSite)
        conclude();
}

QVector<ErrorableCode> Publication::failures() const
{
    QVector<ErrorableCode> failures = errorStack();
    std::reverse(failures.begin(), failures.end());
    return failures;
}

bool Publication::goesOn() const
{
    return !isInterruptionRequested() && !mSiteIsFull && !mImporter.siteIsFull();
}

/// Why nothing at all may be published; empty if it may.
QString Publication::refusal(const QVector<Photograph>& photographs) const
{
    if (mPublished && mPublished->anything)
        return QString();
    // More likely a wrong folder, or a missing disk, than a shop without pictures.
    if (photographs.isEmpty())
        return tr("there is no photograph, so nothing was published");
    if (!mPublished || mOptions.force)
        return QString();
    const QMap<QString, Published::Picture>& before = mPublished->pictures;
    const bool isSame = mPublished->project.isEmpty() || mPublished->project == mProject.identity()
        || before.isEmpty()
        || std::any_of(photographs.begin(), photographs.end(),
                       [&before](const Photograph& one) { return before.contains(one.name); });
    if (isSame)
        return QString();
    return tr("SITE shows the photographs of another project, and none of these; --force replaces "
              "them");
}

/// Marks the photographs that the shop shows; without a \a shop those whose pictures may be shown
/// by the pages that stay in the site.
void Publication::markProducts(const Shop* shop, QVector<Photograph>* photographs) const
{
    QSet<QString> names;
    if (shop) {
        for (const ShopProduct& product : shop->products) {
            for (const QString& photo : product.photos)
                names.insert(photo);
        }
    }
    const bool pagesStay = !shop && mShopFile.exists();
    for (Photograph& photograph : *photographs)
        photograph.ofProduct = names.contains(photograph.name)
            || (pagesStay && mNow.pictures.value(photograph.name).ofProduct);
}

// Photographs

/// Imports what is new.
void Publication::import(const QVector<Photograph>& photographs)
{
    const QVector<Photograph> news = mSite ? compare(photographs) : photographs;
    if (mRecordIsOld)
        writeRecord();
    int count = 0;
    for (int first = 0; first < news.size() && goesOn(); first += count) {
        count = qMin(qMax(batchSize, first / batchShare), int(news.size()) - first);
        const QVector<PublishedPicture> imported = mImporter.import(news, first, count);
        for (const PublishedPicture& picture : imported) {
            Published::Picture& entry = mNow.pictures[picture.photograph];
            entry.imported = true;
            entry.picture = picture;
        }
        for (int i = first; mSite && i < first + count; ++i)
            take(news.at(i));
        if (mSite && goesOn())
            writeRecord();
    }
    mOutcome.imported =
        int(std::count_if(mNow.pictures.cbegin(), mNow.pictures.cend(),
                          [](const Published::Picture& one) { return one.imported; }));
}

/// Separates the photographs to be imported from those that are already published, and removes from
/// the site what is no longer wanted.
QVector<Photograph> Publication::compare(const QVector<Photograph>& photographs)
{
    QVector<Photograph> news;
    QSet<QString> wanted;
    if (mAllFoldersRead)
        mNow.pictures.clear();
    for (const Photograph& photograph : photographs) {
        Published::Picture picture = mPublished->pictures.value(photograph.name);
        const QString stamp = FileUtils::fileStamp(photograph.source);
        const bool isNew = !isPublished(picture, photograph, stamp);
        const QStringList former = picture.files.keys();
        const QStringList places = isNew ? PictureImporter::placesOf(photograph) : former;
        for (const QString& place : places)
            wanted.insert(place);
        if (isNew) {
            news.append(photograph);
            picture = Published::Picture();
            picture.siteName = photograph.siteName;
            const QStringList possible = former + places; // the former may still exist
            for (const QString& place : possible)
                picture.files.insert(place, QString());
        }
        mRecordIsOld = mRecordIsOld || picture.stamp != stamp;
        picture.stamp = stamp;
        mNow.pictures.insert(photograph.name, picture);
    }
    for (auto it = mPublished->pictures.cbegin(); it != mPublished->pictures.cend(); ++it) {
        const QStringList places = it.value().files.keys();
        for (const QString& place : places) {
            if (mAllFoldersRead && !wanted.contains(place))
                mSite->remove(place);
        }
        if (mNow.pictures.contains(it.key()))
            continue;
        mRecordIsOld = true;
        mOutcome.changes.append({"removed", QT_TRANSLATE_NOOP("Watch", "Removed: %1"), it.key()});
    }
    return news;
}

/// Whether the site has the pictures of \a photograph in its current state, \a stamp, so that they
/// need not be made again.
bool Publication::isPublished(const Published::Picture& known, const Photograph& photograph,
                              const QString& stamp) const
{
    const bool isSame = known.stamp == stamp && !mChanged.contains(photograph.name);
    if (known.siteName != photograph.siteName)
        return false;
    if (!known.imported)
        return isSame; // it would fail again
    if (known.ofProduct != photograph.ofProduct)
        return false;
    for (auto it = known.files.cbegin(); it != known.files.cend(); ++it) {
        if (it.value().isEmpty() || it.value() != FileUtils::fileStamp(mSite->path(it.key())))
            return false;
    }
    // A copy of the project, or a changed clock, gives the same photograph a different stamp.
    return isSame || known.content == FileUtils::sha1(photograph.source);
}

/// Records the result of importing \a photograph.
void Publication::take(const Photograph& photograph)
{
    Published::Picture& entry = mNow.pictures[photograph.name];
    if (FileUtils::fileStamp(photograph.source) != entry.stamp)
        mOutcome.overtaken.insert(photograph.name);
    // What was not reached is left to the next run.
    if (!entry.imported && !goesOn())
        entry.stamp.clear();
    if (!entry.imported)
        return;
    entry.content = FileUtils::sha1(photograph.source);
    entry.ofProduct = photograph.ofProduct;
    const QStringList former = entry.files.keys();
    const QStringList places = entry.picture.places();
    entry.files.clear();
    for (const QString& place : places) {
        const bool isAwaited = mSite->isAwaited(place);
        entry.files.insert(place, isAwaited ? QString() : FileUtils::fileStamp(mSite->path(place)));
        if (isAwaited)
            mAwaited.insert(photograph.name);
    }
    // Further files that an earlier version of the photograph had.
    for (const QString& place : former) {
        if (!places.contains(place))
            mSite->remove(place);
    }
    mOutcome.changes.append(
        {"imported", QT_TRANSLATE_NOOP("Watch", "Imported: %1"), photograph.name});
}

// Static files

void Publication::copyStaticFiles(const QVector<ProjectFile>& files)
{
    const QString folder = mSite->path(Project::staticName());
    const QFileInfo source(mProject.staticFolder());
    const bool hasFolder = !mProject.staticFolder().isEmpty() && source.isDir();
    QString reason;
    if (hasFolder && mSite->overlaps(source.canonicalFilePath()))
        reason = tr("leads into the site itself");
    else if (!files.isEmpty())
        reason = mSite->obstacle(staticPlace(QString()));
    if (!isWritten(WorkItem::StaticFiles, Project::staticName(), reason))
        return;
    QSet<QString> wanted;
    for (const ProjectFile& file : files)
        wanted.insert(file.name);
    // The whole folder is the program's if the project has one, otherwise only its own copies.
    QStringList ours = mNow.staticFiles.keys();
    if (hasFolder) {
        QDirIterator there(folder, QDir::Files | QDir::Hidden | QDir::System,
                           QDirIterator::Subdirectories);
        while (there.hasNext())
            ours.append(there.next().mid(folder.size() + 1));
    }
    ours.removeDuplicates();
    const QStringList present = ours;
    for (const QString& file : present) {
        if (!mAllFoldersRead || wanted.contains(file))
            continue;
        mSite->remove(staticPlace(file));
        mRecordIsOld = mNow.staticFiles.remove(file) > 0 || mRecordIsOld;
        mOutcome.changes.append(
            {"removed", QT_TRANSLATE_NOOP("Watch", "Removed: %1"), staticPlace(file)});
    }
    for (const ProjectFile& file : files) {
        if (goesOn())
            copyStaticFile(file);
    }
}

void Publication::copyStaticFile(const ProjectFile& file)
{
    const QString place = staticPlace(file.name);
    const QPair<QString, QString> known = mNow.staticFiles.value(file.name);
    const QPair<QString, QString> now(FileUtils::fileStamp(file.source),
                                      FileUtils::fileStamp(mSite->path(place)));
    if (known == now && !mChanged.contains(place))
        return;
    mRecordIsOld = true;
    if (!now.second.isEmpty() && !QFileInfo(mSite->path(place)).isSymLink()
        && FileUtils::sha1(file.source) == FileUtils::sha1(mSite->path(place))) {
        mNow.staticFiles.insert(file.name, now);
        return;
    }
    QFile source(file.source);
    const QString draft = mSite->draft(place);
    if (!source.open(QIODevice::ReadOnly)) {
        // One that was deleted meanwhile is reported next.
        if (source.exists())
            fail(WorkItem::StaticFiles, place, WorkItem::Unreadable,
                 tr("cannot be opened (%1)").arg(source.errorString()));
    } else if (!source.copy(draft)) {
        mSiteIsFull = true;
        fail(WorkItem::StaticFiles, place, WorkItem::Unwritable,
             tr("cannot be copied (%1)").arg(source.errorString()));
    } else if (isWritten(WorkItem::StaticFiles, place, mSite->put({{draft, place}}))) {
        mNow.staticFiles.insert(file.name, {now.first, QString()});
        mOutcome.changes.append({"copied", QT_TRANSLATE_NOOP("Watch", "Copied: %1"), place});
    }
    if (FileUtils::fileStamp(file.source) != now.first)
        mOutcome.overtaken.insert(place);
}

// Pages

void Publication::writePages(const Shop* shop, const QVector<Photograph>& photographs)
{
    QVector<PublishedPicture> pictures;
    QMap<QString, Published::Picture> others = mNow.pictures; // of folders that cannot be read
    for (const Photograph& photograph : photographs) {
        const Published::Picture picture = others.take(photograph.name);
        if (picture.imported)
            pictures.append(picture.picture);
    }
    for (auto it = others.cbegin(); it != others.cend(); ++it) {
        if (it.value().imported)
            pictures.append(it.value().picture);
    }
    if (!mShopFile.exists())
        mNow.shopPages.clear();
    if (shop && writeShop(*shop, pictures))
        mOutcome.shopLanguages = shop->languages;
    // The front page of a site without a shop; with one, an additional page.
    const bool isFrontPage = mNow.shopPages.isEmpty();
    mOutcome.pageWritten =
        write(ContactSheet::files(mProject.title(), pictures, isFrontPage), &mNow.sheetPages);
    const QStringList pages = mNow.shopPages + mNow.sheetPages;
    const QStringList before = mPublished->shopPages + mPublished->sheetPages;
    mRecordIsOld = mRecordIsOld || pages != before;
    for (const QString& place : before) {
        if (!pages.contains(place))
            mSite->remove(place);
    }
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

    return write(ShopData::files(shop, byPhotograph) + ShopPage::files(shop, byPhotograph),
                 &mNow.shopPages);
}

/// Writes files that belong together, all or none, and lists them in \a places.
bool Publication::write(const QVector<SiteFile>& files, QStringList* places)
{
    for (const SiteFile& file : files) {
        if (!isWritten(WorkItem::SitePage, file.place, mSite->obstacle(file.place)))
            return false;
    }
    places->clear();
    for (const SiteFile& file : files) {
        if (!isWritten(WorkItem::SitePage, file.place, mSite->write(file))) {
            mSiteIsFull = true;
            return false;
        }
        places->append(file.place);
        if (mSite->isAwaited(file.place))
            mOutcome.changes.append(
                {"written", QT_TRANSLATE_NOOP("Watch", "Written: %1"), file.place});
    }
    return true;
}

// The end

/// Turns the old site into the new one, or leaves it as it was.
void Publication::conclude()
{
    if (mSiteIsFull || mImporter.siteIsFull()) {
        mSite->forget();
        mOutcome.changes.clear();
        mOutcome.pageWritten = false;
        return;
    }
    const QMap<QString, QString> failures = mSite->commit();
    for (auto it = failures.begin(); it != failures.end(); ++it)
        fail(WorkItem::SitePage, it.key(), WorkItem::Unwritable, it.value());
    // Stamps of the files that have only now been moved to their places.
    const auto stampNow = [this, &failures](const QString& place) {
        return failures.contains(place) ? QString() : FileUtils::fileStamp(mSite->path(place));
    };
    const QSet<QString> awaited = mAwaited;
    for (const QString& name : awaited) {
        QMap<QString, QString>& files = mNow.pictures[name].files;
        for (auto file = files.begin(); file != files.end(); ++file)
            file.value() = stampNow(file.key());
    }
    for (auto it = mNow.staticFiles.begin(); it != mNow.staticFiles.end(); ++it) {
        if (it.value().second.isEmpty())
            it.value().second = stampNow(staticPlace(it.key()));
    }
    mNow.project = mProject.identity();
    mNow.anything = true;
    *mPublished = mNow;
    if (mRecordIsOld)
        writeRecord();
}

/// Updates the record in the site. It may name more pictures than exist, so that none is forgotten
/// if the program is killed.
void Publication::writeRecord()
{
    Published record = mNow;
    record.project = mProject.identity();
    for (auto it = mPublished->pictures.cbegin(); it != mPublished->pictures.cend(); ++it) {
        if (!record.pictures.contains(it.key()))
            record.pictures.insert(it.key(), it.value());
    }
    if (!isWritten(WorkItem::SitePage, Published::fileName(), mSite->writeRecord(record)))
        mSiteIsFull = true;
}

/// Whether \a name was written to the site: \a reason, which says why it was not, becomes a
/// failure.
bool Publication::isWritten(WorkItem::Kind kind, const QString& name, const QString& reason)
{
    if (!reason.isEmpty())
        fail(kind, name, WorkItem::Unwritable, reason);
    return reason.isEmpty();
}

void Publication::fail(WorkItem::Kind kind, const QString& name, WorkItem::Failure failure,
                       const QString& reason)
{
    auto* const item = new WorkItem(kind, name, this);
    ORVAUTILS_ADD_ERRORABLE_CHILD(*item);
    item->ORVAUTILS_SET_ERROR(item->failure(failure, reason));
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Publication.h"

#include "ContactSheet.h"
#include "ShopData.h"
#include "ShopPage.h"

#include <QMap>

#include <algorithm>

Publication::Publication(const Project& project, Site* site)
    : mProject(project)
    , mSite(site)
    , mFolder(WorkItem::Folder, project.photosFolder(), this)
    , mShopFile(project, this)
    , mImporter(site, this)
{
    ORVAUTILS_ADD_ERRORABLE_CHILD(mFolder);
    ORVAUTILS_ADD_ERRORABLE_CHILD(mShopFile);
    ORVAUTILS_ADD_ERRORABLE_CHILD(mImporter);
    addThreadableChild(mImporter);
}

void Publication::run()
{
    const QVector<Photograph> photographs =
        mProject.photographs(&mFolder, [this] { return isInterruptionRequested(); });
    mPhotographs = photographs.size();
    Shop shop;
    const bool hasShop =
        mShopFile.exists() && !isInterruptionRequested() && mShopFile.read(photographs, &shop);

    const QVector<PublishedPicture> pictures = mImporter.importAll(photographs);
    mImported = pictures.size();
    // A page of the pictures so far would take the others from the page that may stand there.
    mStopped = isInterruptionRequested();
    if (mStopped)
        return;
    if (hasShop && writeShop(shop, pictures))
        mShopLanguages = shop.languages;
    mPageWritten = writeContactSheet(pictures, mShopLanguages);
}

QVector<ErrorableCode> Publication::failures() const
{
    QVector<ErrorableCode> failures = errorStack();
    std::reverse(failures.begin(), failures.end());
    return failures;
}

bool Publication::writeShop(const Shop& shop, const QVector<PublishedPicture>& pictures)
{
    QMap<QString, PublishedPicture> byPhotograph;
    for (const PublishedPicture& picture : pictures)
        byPhotograph.insert(picture.photograph, picture);
    for (const ShopProduct& product : shop.products) {
        if (byPhotograph.contains(product.photo))
            continue;
        mShopFile.ORVAUTILS_SET_ERROR(
            mShopFile.failure(WorkItem::Missing,
                              tr("the shop is not written, because the photograph \"%1\" of one of "
                                 "its products could not be imported")
                                  .arg(product.photo)));
        return false;
    }

    QVector<SiteFile> files{
        {QStringLiteral("data/products.js"), ShopData::productsJs(shop, byPhotograph)},
        {QStringLiteral("config/config.php"), ShopData::configPhp(shop)}};
    for (const QString& language : shop.languages)
        files.append({ShopPage::fileName(language), ShopPage(shop, byPhotograph, language).html()});
    return write(files);
}

bool Publication::writeContactSheet(const QVector<PublishedPicture>& pictures,
                                    const QStringList& languages)
{
    ContactSheet sheet(mProject.title());
    for (const PublishedPicture& picture : pictures)
        sheet.add(picture);
    for (const QString& language : languages)
        sheet.link(ShopPage::fileName(language), ShopPage::languageName(language));
    return write({{QStringLiteral("index.html"), sheet.html()}});
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

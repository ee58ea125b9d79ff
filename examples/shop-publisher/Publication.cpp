// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "Publication.h"

#include "ContactSheet.h"

#include <algorithm>

Publication::Publication(const Project& project, Site* site)
    : mProject(project)
    , mSite(site)
    , mFolder(WorkItem::Folder, project.photosFolder(), this)
    , mImporter(site, this)
{
    ORVAUTILS_ADD_ERRORABLE_CHILD(mFolder);
    ORVAUTILS_ADD_ERRORABLE_CHILD(mImporter);
    addThreadableChild(mImporter);
}

void Publication::run()
{
    const QVector<Photograph> photographs =
        mProject.photographs(&mFolder, [this] { return isInterruptionRequested(); });
    mPhotographs = photographs.size();
    const QVector<PublishedPicture> pictures = mImporter.importAll(photographs);
    mImported = pictures.size();
    // A page of the pictures so far would take the others from the page that may stand there.
    mStopped = isInterruptionRequested();
    if (!mStopped)
        writePage(pictures);
}

QVector<ErrorableCode> Publication::failures() const
{
    QVector<ErrorableCode> failures = errorStack();
    std::reverse(failures.begin(), failures.end());
    return failures;
}

void Publication::writePage(const QVector<PublishedPicture>& pictures)
{
    ContactSheet sheet(mProject.title());
    for (const PublishedPicture& picture : pictures)
        sheet.add(picture);

    auto* const page = new WorkItem(WorkItem::SitePage, QStringLiteral("index.html"), this);
    ORVAUTILS_ADD_ERRORABLE_CHILD(*page);
    QString reason;
    mPageWritten = mSite->write(page->name(), sheet.html(), &reason);
    if (!mPageWritten)
        page->ORVAUTILS_SET_ERROR(page->failure(WorkItem::Unwritable, reason));
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

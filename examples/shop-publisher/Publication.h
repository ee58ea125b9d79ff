// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Publication: the whole work of one run, from the photographs to the page that shows them. Where
// the project is watched, each run after the first takes up what has changed since the one before.

#ifndef PUBLICATION_H
#define PUBLICATION_H

#include "PictureImporter.h"
#include "Project.h"
#include "Published.h"
#include "Shop.h"
#include "ShopFile.h"
#include "Site.h"
#include "WorkItem.h"

#include <Errorable.h>
#include <Thread.h>
#include <Threadable.h>

#include <QMap>
#include <QSet>
#include <QStringList>
#include <QVector>

struct PublicationOptions
{
    ImportOptions import;
    bool force = false; ///< take the place of what another project has published
};

/// The worker of a PublicationThread, and the root of the tree of errors: below it the folder of
/// the photographs with what was found there and cannot be used, the importer with its pictures,
/// shop.json with its products, and the pages.
class Publication : public Threadable, public Errorable
{
    Q_OBJECT

public:
    /// \a site is open. All outlive this object, which is made on the main thread.
    ///
    /// \a published is what the runs before have published, nothing for the first of them; it is
    /// brought up to date, in the site too. A photograph that is as it was is not imported again,
    /// unless \a changed names it.
    Publication(const Project& project, Site* site, Published* published,
                const PublicationOptions& options, const QSet<QString>& changed = QSet<QString>());

    /// Does everything. Ends early when the interruption of the thread is requested: the picture
    /// at hand is finished, and the pages stay as they were.
    void run();

    // What came of it.

    /// All failures in the order in which they happened.
    QVector<ErrorableCode> failures() const;

    /// How many photographs there are, and how many of them were imported.
    int photographs() const { return mPhotographs; }
    int imported() const { return mImported; }

    /// The photographs that this run imported, and those that have gone since the run before and
    /// whose pictures it removed.
    QStringList importedNames() const { return mImportedNames; }
    QStringList removedNames() const { return mRemovedNames; }

    /// The photographs that were written to, or went, while this run imported them.
    QStringList overtakenNames() const { return mOvertakenNames; }

    /// The contact sheet was written. A run that finds nothing new writes none.
    bool pageWritten() const { return mPageWritten; }

    /// The languages in which the page of the shop was written; none where there is no shop, or
    /// something is wrong with it.
    QStringList shopLanguages() const { return mShopLanguages; }

    /// It ended early, and something was left undone.
    bool stopped() const { return mStopped; }

    /// Pictures of kinds that are not published.
    QStringList unpublished() const { return mUnpublished; }

    /// The first run had nothing to publish, or was refused, and the site stays as it was.
    bool refused() const { return mRefused; }

private:
    QString refusal(const QVector<Photograph>& photographs) const;
    bool isPublished(const Published::Picture& known, const Photograph& photograph,
                     const FileStamp& stamp) const;
    void markProducts(const Shop* shop, QVector<Photograph>* photographs) const;
    void writeRecord(const QMap<QString, Published::Picture>& pictures);
    void recordFiles(const Photograph& photograph, Published::Picture* entry);
    QVector<PublishedPicture> import(const QVector<Photograph>& photographs);
    void removeVanished(const QVector<Photograph>& photographs);
    FileStamp siteStamp(const QString& place) const;
    void remove(const QString& place);
    void copyStaticFiles();
    bool writeShop(const Shop& shop, const QVector<PublishedPicture>& pictures);
    bool writeContactSheet(const QVector<PublishedPicture>& pictures);
    bool write(const QVector<SiteFile>& files, QStringList* places);
    bool write(const QVector<SiteFile>& files);

    const Project& mProject;
    Site* mSite;
    WorkItem mFolder;
    ShopFile mShopFile;
    PictureImporter mImporter;
    Published* mPublished;
    QSet<QString> mChanged;
    QStringList mImportedNames;
    QStringList mRemovedNames;
    QStringList mOvertakenNames;
    QStringList mUnpublished;
    int mPhotographs = 0;
    int mImported = 0;
    bool mPicturesChanged = false;
    bool mAllFoldersRead = true;
    bool mRefused = false;
    const PublicationOptions mOptions;
    bool mPageWritten = false;
    QStringList mShopLanguages;
    bool mStopped = false;
};

/// The thread on which it runs.
class PublicationThread : public Thread
{
    Q_OBJECT

public:
    /// Moves \a publication, which outlives this object, to the thread: until that has finished,
    /// nobody else touches it.
    explicit PublicationThread(Publication* publication);

protected:
    void run() override;

private:
    Publication* mPublication;
};

#endif // PUBLICATION_H

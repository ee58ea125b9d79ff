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
    /// \a site is open. All outlive this object, which is made on the main thread. Without a site
    /// it only checks the project: nothing is written, and what would fail does.
    ///
    /// \a published is what the runs before have published, nothing for the first of them; it is
    /// brought up to date, in the site too. A photograph that is as it was is not imported again,
    /// nor is a static file copied; one that \a changed names is looked into.
    Publication(const Project& project, Site* site, Published* published,
                const PublicationOptions& options, const QSet<QString>& changed = QSet<QString>());

    /// Does everything. Ends early when the interruption of the thread is requested: the picture
    /// at hand is finished, and the pages stay as they were. When the site takes no more, as on a
    /// full disk, the old site stays as it was.
    void run();

    // What came of it.

    /// All failures in the order in which they happened.
    QVector<ErrorableCode> failures() const;

    /// What this run has done in the site.
    struct Change
    {
        const char* event; ///< for programs
        const char* text; ///< for people, to be translated in the context "Watch"; %1 is the name
        QString name;
    };

    struct Outcome
    {
        int photographs = 0; ///< how many there are
        int imported = 0; ///< how many of them
        QStringList unpublished; ///< pictures of kinds that are not published
        QVector<Change> changes;
        /// The photographs and static files that were written to, or went, while they were read.
        QSet<QString> overtaken;
        bool pageWritten = false; ///< the pages show what there is
        /// The languages in which the page of the shop was written; none where there is no shop, or
        /// something is wrong with it.
        QStringList shopLanguages;
        bool stopped = false; ///< it ended early, and something was left undone
    };
    const Outcome& outcome() const { return mOutcome; }

private:
    bool goesOn() const;
    QString refusal(const QVector<Photograph>& photographs) const;
    void markProducts(const Shop* shop, QVector<Photograph>* photographs) const;
    bool isPublished(const Published::Picture& known, const Photograph& photograph,
                     const QString& stamp) const;
    QVector<Photograph> compare(const QVector<Photograph>& photographs);
    void import(const QVector<Photograph>& photographs);
    void take(const Photograph& photograph);
    void copyStaticFiles(const QVector<ProjectFile>& files);
    void copyStaticFile(const ProjectFile& file);
    void writePages(const Shop* shop, const QVector<Photograph>& photographs);
    bool writeShop(const Shop& shop, const QVector<PublishedPicture>& pictures);
    bool write(const QVector<SiteFile>& files, QStringList* places);
    void conclude();
    void writeRecord();
    bool isWritten(WorkItem::Kind kind, const QString& name, const QString& reason);
    void fail(WorkItem::Kind kind, const QString& name, WorkItem::Failure failure,
              const QString& reason);

    const Project& mProject;
    Site* const mSite;
    WorkItem mFolder;
    ShopFile mShopFile;
    PictureImporter mImporter;
    Published* const mPublished;
    Published mNow; ///< what it becomes
    const QSet<QString> mChanged;
    const PublicationOptions mOptions;
    QSet<QString> mAwaited; ///< photographs whose pictures come with commit()
    bool mRecordIsOld = false;
    bool mAllFoldersRead = true;
    bool mSiteIsFull = false;
    Outcome mOutcome;
};

/// The thread on which it runs.
class PublicationThread : public Thread
{
    Q_OBJECT

public:
    /// Moves \a publication, which outlives this object, to the thread: until that has finished,
    /// nobody else touches it.
    explicit PublicationThread(Publication* publication)
        : mPublication(publication)
    {
        addThreadableChild(*publication);
        publication->moveToThread(this);
    }
    ~PublicationThread() override { stopAndWait(std::chrono::milliseconds::max()); }

protected:
    void run() override { mPublication->run(); }

private:
    Publication* const mPublication;
};

#endif // PUBLICATION_H

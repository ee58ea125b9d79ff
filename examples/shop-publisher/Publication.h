// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Publication: the whole work of one run, from the photographs to the page that shows them. If the
// project is watched, each run after the first processes what has changed since the one before.

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
    bool force = false; ///< replace what another project has published
};

/// The worker of a PublicationThread, and the root of the error tree: below it are the folder of
/// the photographs with everything in it that cannot be used, the importer with its pictures,
/// shop.json with its products, and the pages.
class Publication : public Threadable, public Errorable
{
    Q_OBJECT

public:
    /// \a site is open. All outlive this object, which is made on the main thread. Without a site
    /// it only checks the project: nothing is written, and what would fail is reported.
    ///
    /// \a published is what the runs before have published, nothing for the first of them; it is
    /// brought up to date, in the site too. An unchanged photograph is not imported again, nor is
    /// an unchanged static file copied; those named by \a changed are checked again.
    Publication(const Project& project, Site* site, Published* published,
                const PublicationOptions& options, const QSet<QString>& changed = QSet<QString>());

    /// Does everything. Ends early when the interruption of the thread is requested: the current
    /// picture is finished, and the pages stay as they were. When nothing more can be written, as
    /// on a full disk, the old site stays as it was.
    void run();

    // The outcome.

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
        /// The photographs and static files that were modified or deleted while they were read.
        QSet<QString> overtaken;
        bool pageWritten = false; ///< the pages are up to date
        /// The languages in which the page of the shop was written; none if there is no shop, or if
        /// it has errors.
        QStringList shopLanguages;
        bool stopped = false; ///< it ended early, with something left undone
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
    Published mNow; ///< the state after this run
    const QSet<QString> mChanged;
    const PublicationOptions mOptions;
    QSet<QString> mAwaited; ///< photographs whose pictures appear with commit()
    bool mRecordIsOld = false;
    bool mAllFoldersRead = true;
    bool mSiteIsFull = false;
    Outcome mOutcome;
};

/// The thread on which a publication runs.
class PublicationThread : public Thread
{
    Q_OBJECT

public:
    /// Moves \a publication, which outlives this object, to the thread: until the thread has
    /// finished, nothing else may access it.
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

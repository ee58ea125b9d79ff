// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PictureImporter: imports photographs into the site, upright, in two sizes, those of products in
// more.

#ifndef PICTUREIMPORTER_H
#define PICTUREIMPORTER_H

#include "PictureCheck.h"
#include "Project.h"
#include "Published.h"
#include "Site.h"
#include "WorkItem.h"

#include <Errorable.h>
#include <ImageImportResult.h>
#include <Threadable.h>

#include <QStringList>
#include <QVector>

#include <memory>

class QTemporaryDir;

/// How photographs are imported.
struct ImportOptions
{
    bool acceptTruncated = false; ///< accept pictures that are cut short
    int jobs = 0; ///< how many at a time; 0: as many as the processor works on
};

/// A worker of the thread that imports. Each picture that fails is an item below it in the error
/// tree.
class PictureImporter : public Threadable, public Errorable
{
    Q_OBJECT

public:
    /// \a site is open and outlives this object. Without one photographs are only checked: what is
    /// made of them is discarded.
    PictureImporter(Site* site, const ImportOptions& options, QObject* parent);
    ~PictureImporter() override;

    /// Imports \a count of \a photographs from \a first on, several at a time, and returns those
    /// that are ready: in the site, or about to be with its commit(). Ends early when the
    /// interruption of the thread is requested, or when nothing more can be written to the site, as
    /// on a full disk: each picture is either ready in all its sizes or not touched.
    ///
    /// Progress is reported through the thread before and after each picture: how many of all
    /// photographs are done, and the name of the picture, after a failure with the reason.
    QVector<PublishedPicture> import(const QVector<Photograph>& photographs, int first, int count);

    /// Whether import() ended early because nothing more could be written to the site.
    bool siteIsFull() const { return mSiteIsFull; }

    /// The paths in the site of all files that may be made of \a photograph.
    static QStringList placesOf(const Photograph& photograph);

private:
    struct Draft;
    struct Work;

    static QVector<Draft> draftsOf(const Photograph& photograph);
    void prepare(const Photograph& photograph, Work* work);
    bool goesOn() const { return !isInterruptionRequested() && !mSiteIsFull; }
    void conclude(Work* work);
    static PublishedPicture chooseSizes(Work* work);
    Defect importDefect(const ImageImportResult& result);

    Site* const mSite;
    const std::unique_ptr<QTemporaryDir> mScratch;
    int mChecked = 0;
    const ImportOptions mOptions;
    QVector<PublishedPicture> mPublished;
    bool mSiteIsFull = false;
};

#endif // PICTUREIMPORTER_H

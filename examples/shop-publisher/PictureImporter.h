// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PictureImporter: brings one photograph into the site, upright, in its two sizes.

#ifndef PICTUREIMPORTER_H
#define PICTUREIMPORTER_H

#include "Project.h"
#include "Site.h"
#include "WorkItem.h"

#include <Errorable.h>
#include <Threadable.h>

#include <QSize>
#include <QVector>

class LogKeeper;

/// What the pages need to know of a picture of the site.
struct PublishedPicture
{
    QString photograph; ///< path of the photograph below the photographs' folder
    QString name; ///< path below SITE/images and SITE/thumbs
    QSize imageSize; ///< pixels of the large picture; for an SVG its nominal size
    QSize thumbSize; ///< size in CSS pixels at which the small picture is meant to be shown
};

/// A worker of the thread that imports. Each picture that fails is an item below it in the tree of
/// errors.
class PictureImporter : public Threadable, public Errorable
{
    Q_OBJECT

public:
    /// \a site is open and outlives this object.
    PictureImporter(Site* site, QObject* parent)
        : Threadable(parent)
        , mSite(site)
    { }

    /// Imports \a photographs one after the other and returns those that are in the site then.
    /// Stops between two pictures when the interruption of the thread is requested: each picture
    /// is either there in both sizes or not touched.
    ///
    /// Progress goes to the thread before and after each picture: how many are done, as "3/12",
    /// and the name of the picture, after a failure with the reason.
    QVector<PublishedPicture> importAll(const QVector<Photograph>& photographs);

private:
    bool import(const Photograph& photograph, LogKeeper* log, PublishedPicture* published,
                QString* reason);

    Site* mSite;
};

#endif // PICTUREIMPORTER_H

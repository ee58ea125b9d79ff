// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// PictureImporter: brings one photograph into the site, upright, in its two sizes.

#ifndef PICTUREIMPORTER_H
#define PICTUREIMPORTER_H

#include "LogKeeper.h"
#include "Project.h"
#include "Site.h"

#include <QSize>

/// What the pages need to know of a picture of the site.
struct PublishedPicture
{
    QString name; ///< path below SITE/images and SITE/thumbs
    QSize imageSize; ///< pixels of the large picture; for an SVG its nominal size
    QSize thumbSize; ///< size in CSS pixels at which the small picture is meant to be shown
};

class PictureImporter
{
public:
    /// \a site is open and outlives this object.
    explicit PictureImporter(Site* site)
        : mSite(site)
    { }

    /// Makes images/NAME (1600 x 1600 at most) and thumbs/NAME (320 x 320 at most, in twice as
    /// many pixels for dense screens). On failure \a reason says why, and neither file is new.
    bool import(const Photograph& photograph, PublishedPicture* published, QString* reason);

private:
    bool makeDraft(const Photograph& photograph, const QString& draft, bool thumb, QString* reason);

    Site* mSite;
    LogKeeper mLog;
};

#endif // PICTUREIMPORTER_H

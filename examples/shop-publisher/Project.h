// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Project: what the shop owner has. The program only ever reads here.

#ifndef PROJECT_H
#define PROJECT_H

#include "Failure.h"

#include <QString>
#include <QVector>

/// One picture file of the project.
struct Photograph
{
    QString source; ///< absolute path of the file itself, no link
    QString name; ///< path below the photographs' folder: "bowls/blue bowl.jpg"
    QString siteName; ///< its path below SITE/images and SITE/thumbs
};

class Project
{
public:
    /// \a path is a folder that holds the folder "photos", or is itself a folder of photographs.
    explicit Project(const QString& path);

    /// False when there is no such folder.
    bool exists() const { return !mFolder.isEmpty(); }

    /// Absolute path of the project's folder, links resolved.
    QString folder() const { return mFolder; }

    /// Absolute path of the folder of the photographs, links resolved: it may lie elsewhere.
    QString photosFolder() const { return mPhotosFolder; }

    /// The project's name: that of its folder.
    QString title() const;

    /// All pictures in the photographs' folder and its sub-folders, in the order of the page: by
    /// name, case ignored, each folder's own pictures before those of its sub-folders.
    ///
    /// JPEG, PNG, GIF and SVG files are recognised by the suffix of their name. Hidden files and
    /// folders are left out. What looks like a picture and cannot be one (a folder that cannot be
    /// read, a link that leads nowhere …) is added to \a failures, so that nothing is lost in
    /// silence. Every picture's \a siteName is distinct even on a system that does not tell
    /// "a.jpg" from "A.JPG": the first keeps its name, the next becomes "A-2.JPG".
    QVector<Photograph> photographs(Failures* failures) const;

private:
    QString mFolder;
    QString mPhotosFolder;
};

#endif // PROJECT_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Project: the folder of the shop owner. The program only reads it; while it runs, the lock file of
// the project is in that folder.

#ifndef PROJECT_H
#define PROJECT_H

#include "WorkItem.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/// A file of the project that the site shows, or contains unchanged.
struct ProjectFile
{
    QString source; ///< absolute path of the file itself, no link
    QString name; ///< path below its folder: "bowls/blue bowl.jpg"
    QString siteName; ///< of a photograph: its path below SITE/images and SITE/thumbs
    bool ofProduct = false; ///< the shop shows it, in more sizes
};

using Photograph = ProjectFile;

class Project
{
    Q_DECLARE_TR_FUNCTIONS(Project)

public:
    /// \a path is a folder that contains the folder "photos", or is itself a folder of photographs.
    explicit Project(const QString& path);

    /// False when there is no such folder.
    bool exists() const { return !mFolder.isEmpty(); }

    /// Absolute path of the project's folder, links resolved.
    QString folder() const { return mFolder; }

    /// Absolute path of the folder of the photographs, links resolved: it may be elsewhere.
    QString photosFolder() const { return mPhotosFolder; }

    /// The folder of the files that are copied to the site unchanged. It may come and go. Empty for
    /// a plain folder of photographs, where a sub-folder of any name contains photographs.
    QString staticFolder() const { return mStaticFolder; }

    /// "static", the name of that folder in the project and in the site.
    static QString staticName() { return QStringLiteral("static"); }

    /// The file that describes the shop; there need not be one.
    QString shopFile() const { return mFolder + QStringLiteral("/shop.json"); }

    /// Distinguishes this project from others, without revealing its location.
    QString identity() const;

    /// The project's name: that of its folder.
    QString title() const;

    /// All pictures in the photographs' folder and its sub-folders, in the order of the page: by
    /// name, case ignored, each folder's own pictures before those of its sub-folders.
    ///
    /// JPEG, PNG, GIF, SVG, WebP and TIFF files are recognised by the suffix of their name; a TIFF
    /// becomes a JPEG in the site. Pictures of other kinds are named in \a unpublished. Hidden
    /// files and folders are skipped. What looks like a picture but cannot be read (an unreadable
    /// folder, a dangling link …) becomes an item below \a errors with its error, so that nothing
    /// is lost silently. Every picture's \a siteName is distinct even on a system that does not
    /// distinguish "a.jpg" from "A.JPG": the first keeps its name, the next becomes "A-2.JPG".
    ///
    /// The search ends early when \a stopped returns true; what was found until then is returned.
    QVector<Photograph> photographs(WorkItem* errors, const std::function<bool()>& stopped,
                                    QStringList* unpublished) const;

    /// All files in the folder of the static files, which need not exist, and in its sub-folders,
    /// hidden ones too. A link is followed only to a file in that folder: what is outside was never
    /// meant to be published. What is refused becomes an item below \a errors.
    QVector<ProjectFile> staticFiles(WorkItem* errors, const std::function<bool()>& stopped) const;

    /// Whether a file of that name is taken for a photograph.
    static bool isPhotographName(const QString& name);

private:
    QString mFolder;
    QString mPhotosFolder;
    QString mStaticFolder;
};

#endif // PROJECT_H

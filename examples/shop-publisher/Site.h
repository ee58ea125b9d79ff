// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Site: the folder of the web site, the only place where the program writes.
//
// Every file is completed in a working folder inside the site and then moved to its place. So no
// half-written file is ever seen there, and a link in the place of a file is replaced by the file:
// its target, perhaps a source photograph, is never written to.

#ifndef SITE_H
#define SITE_H

#include "Project.h"
#include "Published.h"

#include <ProjectFileLocker.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QMap>
#include <QSet>
#include <QString>
#include <QTemporaryDir>
#include <QVector>

#include <memory>

/// A small file of the site.
struct SiteFile
{
    QString place; ///< path below the site: "index.html"
    QByteArray content;
};

class Site
{
    Q_DECLARE_TR_FUNCTIONS(Site)

public:
    /// Creates and changes nothing yet. \a path need not exist.
    explicit Site(const QString& path);

    /// Absolute path without links, even if its last folders do not exist yet.
    QString folder() const { return mFolder; }

    /// Why \a project must not be published here; empty if it may be: the site must neither be
    /// inside the project or its photographs nor contain them.
    QString refusal(const Project& project) const;

    /// Why the program must not write here; empty if it may: the folder is not empty and was not
    /// made by this program. Names what would be replaced.
    QString ownersRefusal() const;

    /// The result of opening it.
    enum Opened {
        Ready,
        InUse, ///< another instance publishes into the site
        NotWritable
    };

    /// Creates the folder and its working folder, and removes those left by killed programs. The
    /// site is then locked until this object is destroyed. If it is not ready \a reason says why.
    Opened open(QString* reason);

    /// What has been published here before.
    Published record() const;

    /// True if the folder, whose path contains no link, is inside the site or contains it.
    bool overlaps(const QString& folder) const;

    /// True if the file is inside the site, so that publishing could replace it.
    bool contains(const QString& absolutePath) const;

    /// Absolute path of the file at \a place, a path below the site such as "images/a.jpg".
    QString path(const QString& place) const;

    /// Absolute path at which to write a new file for \a place. The working folder and what is left
    /// in it are removed with this object.
    QString draft(const QString& place);

    /// A completed file.
    struct Draft
    {
        QString path;
        QString place;
    };

    /// Why no file can be put at \a place, or into it if it ends with "/"; empty if one can.
    QString obstacle(const QString& place) const;

    /// Moves \a drafts, which belong together, to their places. If none of them replaces another
    /// file they are moved at once, so that a long run that is killed leaves them to the next one;
    /// otherwise with commit(). Missing folders are created; a folder that is a link is refused,
    /// because it leads out of the site. Returns why they cannot be moved there, or nothing, as do
    /// the next two.
    QString put(const QVector<Draft>& drafts);

    /// Writes a small file, which is moved to its place by commit(), unless an identical one is
    /// there. There is no obstacle() to it; but the disk may be full.
    QString write(const SiteFile& file);

    /// Whether commit() will move a file to \a place.
    bool isAwaited(const QString& place) const { return mMoves.contains(place); }

    /// Writes what record() will read, at once.
    QString writeRecord(const Published& record);

    /// Removes the file at \a place with the next commit(), and the sub-folders that are empty
    /// then. It need not exist. A place outside the site is ignored.
    void remove(const QString& place);

    /// Turns the old site into the new one. All drafts are complete by then, so this needs no disk
    /// space and hardly any time. Returns the reasons for what could not be done, by place.
    QMap<QString, QString> commit();

    /// Leaves the old site as it is.
    void forget();

private:
    QString recordPath() const;
    void removeLeftBehind() const;
    bool isFree(const QString& place) const;
    QString move(const Draft& draft) const;
    QString removeNow(const QString& place) const;

    QString mFolder;
    ProjectFileLocker mLock;
    std::unique_ptr<QTemporaryDir> mDrafts;
    int mLastDraft = 0;
    QSet<QString> mRemovals;
    QMap<QString, QString> mMoves; ///< drafts by place
};

#endif // SITE_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Site: the folder of the web site, the only place where the program writes.
//
// Every file is made complete in a working folder inside the site and then moved to its place. So
// no half-written file is ever seen there, and a link that stands in the place of a file is
// replaced by the file: what it points to, perhaps a source photograph, is never written to.

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
    /// Nothing is made or touched yet. \a path need not exist.
    explicit Site(const QString& path);

    /// Absolute path without links, also where the last folders of it do not exist yet.
    QString folder() const { return mFolder; }

    /// What forbids publishing \a project here, empty when nothing does: the site must neither lie
    /// in the project or its photographs nor contain them.
    QString refusal(const Project& project) const;

    /// What forbids writing here, empty when nothing does: the folder has something in it and was
    /// not made by this program. Names what would be replaced.
    QString ownersRefusal() const;

    /// What opening it came to.
    enum Opened {
        Ready,
        InUse, ///< another instance publishes into the site
        NotWritable
    };

    /// Makes the folder and its working folder, and takes away those that killed programs left. The
    /// site belongs to this object then, until it goes. If it is not ready \a reason says why.
    Opened open(QString* reason);

    /// What has been published here before.
    Published record() const;

    /// True when the folder, whose path holds no link, lies in the site or contains it.
    bool overlaps(const QString& folder) const;

    /// True when the file lies in the site, so that publishing could replace it.
    bool contains(const QString& absolutePath) const;

    /// Absolute path of what stands at \a place, a path below the site such as "images/a.jpg".
    QString path(const QString& place) const;

    /// Absolute path for a new file in the making, which is to come to \a place. The working folder
    /// and what is left in it go with this object.
    QString draft(const QString& place);

    /// A file that is complete.
    struct Draft
    {
        QString path;
        QString place;
    };

    /// Why no file can come to \a place, or into it where it ends with "/"; empty where one can.
    QString obstacle(const QString& place) const;

    /// Brings \a drafts, which belong together, to their places. Where none of them stands in the
    /// place of another file they go there at once, so that a long run that is killed leaves them
    /// to the next one; otherwise with commit(). Missing folders are made; a folder that is a link
    /// is refused, because it leads out of the site. Returns why they cannot be brought there, or
    /// nothing, as do the next two.
    QString put(const QVector<Draft>& drafts);

    /// Writes a small file, which goes to its place with commit(), unless it is there already, byte
    /// for byte. There is no obstacle() to it; but the disk may be full.
    QString write(const SiteFile& file);

    /// Whether a file is to go to \a place with commit().
    bool isAwaited(const QString& place) const { return mMoves.contains(place); }

    /// Writes what record() will read, at once.
    QString writeRecord(const Published& record);

    /// Takes the file at \a place away with the next commit(), and the sub-folders that are empty
    /// then. One that is not there is fine.
    void remove(const QString& place);

    /// Makes the new site of the old one. All drafts are complete by then, so that this needs no
    /// room on the disk and next to no time. Returns why something could not be done, by place.
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

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

#include <QByteArray>
#include <QCoreApplication>
#include <QLockFile>
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

    /// Absolute path for a file \a name in the making. The working folder and what is left in it
    /// go with this object.
    QString draft(const QString& name) const;

    /// Moves a finished draft to \a place, a path below the site such as "images/a.jpg", replacing
    /// what stands there. Missing folders are made; a folder that is a link is refused, because it
    /// leads out of the site. On failure \a reason says why.
    bool publish(const QString& draftPath, const QString& place, QString* reason);

    /// Moves a finished folder to \a folder, a name in the site such as "static", in the place of
    /// the one that stands there; what was in that one goes. In one step where the system has one
    /// for it (Linux, macOS from 10.12). A link is refused. On failure \a reason says why, and the
    /// old folder is where it was.
    bool publishFolder(const QString& draftPath, const QString& folder, QString* reason);

    /// Takes the file at \a place away, as publish() put it there, and the sub-folders that are
    /// empty then. A file that is not there is fine. On failure \a reason says why.
    bool remove(const QString& place, QString* reason) const;

    /// Writes files that belong together and are not there already, byte for byte, for example the
    /// pages of the shop. All are made complete before the first of them goes to its place, so that
    /// a disk which is full leaves the old ones as they were. On failure \a failed is the file and
    /// \a reason says why.
    bool write(const QVector<SiteFile>& wanted, SiteFile* failed, QString* reason);

private:
    QString recordPath() const;
    void removeLeftBehind() const;
    bool makeFolderFor(const QString& place, QString* reason) const;

    QString mFolder;
    std::unique_ptr<QLockFile> mLock;
    std::unique_ptr<QTemporaryDir> mDrafts;
    std::unique_ptr<QLockFile> mDraftsLock;
};

#endif // SITE_H

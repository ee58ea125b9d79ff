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

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <memory>

class Site
{
public:
    /// Nothing is made or touched yet. \a path need not exist.
    explicit Site(const QString& path);

    /// Absolute path without links, also where the last folders of it do not exist yet.
    QString folder() const { return mFolder; }

    /// What forbids publishing \a project here, empty when nothing does: the site must neither lie
    /// in the project or its photographs nor contain them.
    QString refusal(const Project& project) const;

    /// Makes the folder and its working folder. On failure \a reason says why.
    bool open(QString* reason);

    /// True when the file lies in the site, so that publishing could replace it.
    bool contains(const QString& absolutePath) const;

    /// Absolute path for a file \a name in the making. The working folder and what is left in it
    /// go with this object.
    QString draft(const QString& name) const;

    /// Moves a finished draft to \a place, a path below the site such as "images/a.jpg", replacing
    /// what stands there. Missing folders are made; a folder that is a link is refused, because it
    /// leads out of the site. On failure \a reason says why.
    bool publish(const QString& draftPath, const QString& place, QString* reason);

    /// Writes a small file of the site at once, for example a page.
    bool write(const QString& place, const QByteArray& content, QString* reason);

private:
    bool makeFolderFor(const QString& place, QString* reason) const;

    QString mFolder;
    std::unique_ptr<QTemporaryDir> mDrafts;
};

#endif // SITE_H

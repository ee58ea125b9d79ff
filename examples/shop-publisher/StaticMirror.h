// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// StaticMirror: keeps the site's copy of the project's static files in step while it is watched.

#ifndef STATICMIRROR_H
#define STATICMIRROR_H

#include "FileStamp.h"
#include "Project.h"
#include "Site.h"

#include <DirectorySynchronizer.h>

#include <QCoreApplication>
#include <QObject>
#include <QString>
#include <QStringList>

/// A DirectorySynchronizer follows the changes, in place. What it could not do at once, because the
/// file had gone again or a folder was renamed, is often settled a moment later: its complaints are
/// kept until settle(), which sets right what is still out of step and tells what cannot be.
///
/// Hidden files are copied by the first publication alone, and a folder is made in the site when it
/// has a file: that is how the synchroniser works.
class StaticMirror : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this object. \a site is open.
    StaticMirror(const Project& project, const Site& site);

    /// Begins to follow the project's static folder, or goes over to another one that stands in its
    /// place. There need not be one. Call it again when the project's folder has changed. Returns
    /// whether what is there now is followed from now on, and was not before.
    bool follow();

    /// Sets right what differs between the folder and its copy, and returns what cannot be, one
    /// line for each.
    QStringList settle();

Q_SIGNALS:
    /// A file of the site was copied or removed; "static/…" is its path in the site.
    void copied(const QString& place);
    void removed(const QString& place);

    /// Something happened there and perhaps went wrong, for the moment: settle() is to be called
    /// when it is quiet.
    void changed();

private:
    QString refusal() const;
    void setRight(QStringList* failures);
    void onLog(const QString& message);
    void onError(const QString& message);

    const Site& mSite;
    const QString mSource;
    const QString mMirror;
    FileStamp mFollowed;
    DirectorySynchronizer mSynchronizer;
    bool mFollows = false;
    bool mWatchFailed = false;
    bool mSettling = false;
    bool mFailed = false; // while it settles
};

#endif // STATICMIRROR_H

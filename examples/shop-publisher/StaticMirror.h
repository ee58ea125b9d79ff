// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// StaticMirror: keeps the site's copy of the project's static files in step while it is watched.

#ifndef STATICMIRROR_H
#define STATICMIRROR_H

#include "FileStamp.h"
#include "Project.h"
#include "Site.h"

#include <DirectoryWatcher.h>

#include <QCoreApplication>
#include <QObject>
#include <QString>
#include <QStringList>

/// A DirectoryWatcher tells when something has happened; settle() then compares the folder with its
/// copy. Every file is copied beside its place first and takes it in one step, as all files of the
/// site do.
class StaticMirror : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this object. \a site is open.
    StaticMirror(const Project& project, Site* site);

    /// Begins to follow the project's static folder, or goes over to another one that stands in its
    /// place. There need not be one. Call it again when the project's folder has changed. Returns
    /// whether what is there now is followed from now on, and was not before.
    bool follow();

    /// Sets right what differs between the folder and its copy, and returns what cannot be, one
    /// line for each. What is refused for long is told once.
    QStringList settle();

Q_SIGNALS:
    /// A file of the site was copied or removed; "static/…" is its path in the site.
    void copied(const QString& place);
    void removed(const QString& place);

    /// Something happened there: settle() is to be called when it is quiet.
    void changed();

private:
    QString refusal() const;
    QStringList newRefusals();
    void setRight(QStringList* failures);

    Site* const mSite;
    const QString mSource;
    const QString mMirror;
    FileStamp mFollowed;
    DirectoryWatcher mWatcher;
    bool mFollows = false;
    bool mWatchFailed = false;
    QStringList mTold;
};

#endif // STATICMIRROR_H

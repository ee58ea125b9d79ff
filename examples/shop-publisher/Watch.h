// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Watch: watches the project after it was published, until Ctrl-C.

#ifndef WATCH_H
#define WATCH_H

#include "Console.h"
#include "Project.h"
#include "Publication.h"
#include "Site.h"

#include <DirectoryWatcher.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileSystemWatcher>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

#include <memory>

/// The watchers only report that something may have changed. A moment after the last report, so
/// that a photograph which is still being written is not imported twice, a Publication finds what
/// has changed, imports it on its thread and writes the pages again.
class Watch : public QObject
{
    Q_OBJECT

public:
    /// All outlive this object; \a site is open, and \a published is what was published into it.
    Watch(const Project& project, Site* site, Published* published,
          const PublicationOptions& options, Console* console);

    /// Returns when stop() was called, before or meanwhile, and a running publication has finished
    /// the current picture. \a told are the failures that the first publication reported.
    void run(const QVector<ErrorableCode>& told);

    void stop();

private:
    void follow(DirectoryWatcher* watcher, const QString& folder);
    void onFile(const QString& path);
    void onProjectFolder();
    void soon();
    void publish();
    void onPublished();
    QVector<ErrorableCode> newFailures();

    const Project& mProject;
    Site* const mSite;
    Published* const mPublished;
    const PublicationOptions mOptions;
    Console* const mConsole;

    QEventLoop mLoop;
    QFileSystemWatcher mProjectFolder;
    DirectoryWatcher mPhotographs;
    DirectoryWatcher mStaticFiles;
    QTimer mQuietMoment;
    QElapsedTimer mFirstNews;
    QSet<QString> mChanged; // names of files, as failures name them
    bool mHasNews = false;
    bool mStopped = false;
    QStringList mToldFailures; // a lasting failure is reported once

    std::unique_ptr<Publication> mPublication;
    std::unique_ptr<PublicationThread> mThread;
};

#endif // WATCH_H

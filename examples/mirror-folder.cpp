// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// mirror-folder: locks a project folder, copies it and keeps the copy up to date until it is
// stopped.
//
//     mirror-folder PROJECT MIRROR

#include <DirectorySynchronizer.h>
#include <ProjectFileLocker.h>
#include <TextStreamUTF8.h>

#include <QCoreApplication>
#include <QDebug>
#include <QDir>

namespace {

/// A line for the user, at once.
void say(const QString& line)
{
    TextStreamUTF8 out(stdout);
    out << line << '\n';
}

/// Takes the lock of the project. If somebody else has it, says who.
bool lock(ProjectFileLocker& locker, const QString& project)
{
    QString error;
    if (!locker.openNewProjectFolder(project, QDir(project).dirName(), &error)) {
        const ProjectFileLocker::LockHolder holder = ProjectFileLocker::holder(project);
        say(error);
        if (holder.isRunning) {
            say(QStringLiteral("It is open in %1 on %2, process %3.")
                    .arg(holder.application, holder.host)
                    .arg(holder.processId));
            qDebug() << holder;
        }
        return false;
    }
    if (locker.lockState() == ProjectFileLocker::LockState::Lenient)
        say(QStringLiteral("Nothing keeps others from opening this project."));
    else
        say(QStringLiteral("Locked %1").arg(locker.lockedPath()));
    return true;
}

/// Says what happens to the mirror.
void report(DirectorySynchronizer& synchronizer)
{
    QObject::connect(&synchronizer, &DirectorySynchronizer::mirrored,
                     [](const QString&, const QString& mirror) {
                         say(QStringLiteral("copied %1").arg(mirror));
                     });
    QObject::connect(&synchronizer, &DirectorySynchronizer::removed,
                     [](const QString& mirror) { say(QStringLiteral("removed %1").arg(mirror)); });
    QObject::connect(&synchronizer, &DirectorySynchronizer::failed,
                     [](const QString& path, const QString& reason) {
                         say(QStringLiteral("failed %1: %2").arg(path, reason));
                     });
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        say(QStringLiteral("Usage: mirror-folder PROJECT MIRROR"));
        return 2;
    }
    // Absolute paths stay valid if the current folder changes.
    const QString project = QDir(arguments.at(1)).absolutePath();
    const QString mirror = QDir(arguments.at(2)).absolutePath();
    if (!QDir(project).exists()) {
        say(QStringLiteral("There is no folder %1.").arg(project));
        return 1;
    }

    // The lock of a process that is killed is taken over by the next one.
    ProjectFileLocker locker;
    if (!lock(locker, project))
        return 1;

    DirectorySynchronizer synchronizer;
    report(synchronizer);
    synchronizer.setFilter([](const QString& path) { return path != QLatin1String("lockfile"); });

    // Watch first: what changes during the copy is copied again.
    if (!synchronizer.startWatcher(project, mirror))
        return 1;
    QString error;
    const auto progress = [](const FileUtils::TreeProgress& tree) {
        say(QStringLiteral("%1 of %2 files").arg(tree.files).arg(tree.totalFiles));
        qDebug() << tree; // with the current path
        return true;
    };
    if (!synchronizer.fullSync(project, mirror, progress, &error)) {
        say(error);
        return 1;
    }
    QStringList differences;
    if (!synchronizer.isEqual(&differences))
        say(QStringLiteral("Changed meanwhile: %1").arg(differences.join(QStringLiteral(", "))));
    say(QStringLiteral("Watching %1").arg(project));
    // Stop copying before the lock is released.
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &synchronizer,
                     &DirectorySynchronizer::stop);
    return QCoreApplication::exec();
}

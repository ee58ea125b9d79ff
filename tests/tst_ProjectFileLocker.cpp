// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ProjectFileLocker.h"

#include "Columns.h"
#include "KillMoments.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "Sandbox.h"
#include "SystemCalls.h"

#include <QLockFile>
#include <QProcess>
#include <QTranslator>
#include <QtTest>

#include <cstdio>

class tst_ProjectFileLocker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void suffix();
    void fileLockLiesBesideTheProject();
    void sameFileTwoLockers();
    void sameFileSameLocker();
    void unlockAndOpenAgain();
    void unlockWithoutLock();
    void destructorReleases();
    void anotherProjectReplacesTheLock();
    void failureKeepsTheFormerLock();
    void errorPointerMayBeNull();
    void errorIsNotClearedOnSuccess();
    void permission();
    void otherError();
    void pathWithNul();
    void placeholdersInNames();
    void translated();
    void folderLockLiesInside();
    void folderIsMade();
    void folderThatCannotBeMade();
    void folderEmpty();
    void folderRelative();
    void folderAlreadyOpen();
    void nothingIsLogged();
    void heldByAnotherProcess();
    void releasedByAnotherProcess();
    void killedOwnerIsReplaced();
    void oldLockOfARunningOwner();
    void raceHasOneWinner();
    void currentFolderChanges_data();
    void currentFolderChanges();
    void states();
    void holder_data();
    void holder();
    void holderThatDied();
    void holderElsewhere();
    void nobodyHolds();
    void somethingElse_data();
    void somethingElse();
    void debugOutput();
    void abandoned_data();
    void abandoned();
    void beingMade();
    void killedAtAnyMoment();

private:
    QString path(const QString& name) const { return mDir->root() + QLatin1Char('/') + name; }

    QScopedPointer<Sandbox> mDir;
};

namespace {

/// Another instance of an application: this program with --hold, which opens a project, reports
/// whether it has the lock, and keeps it until its input is closed.
class OtherInstance
{
public:
    explicit OtherInstance(const QString& project, const QString& role = QStringLiteral("--hold"))
    {
        mProcess.start(QCoreApplication::applicationFilePath(), {role, project});
        if (!mProcess.waitForStarted())
            qFatal("cannot start the other instance");
    }
    ~OtherInstance() { close(); }

    /// "held", or the error message.
    QString answer()
    {
        while (!mProcess.canReadLine() && mProcess.waitForReadyRead()) { }
        return QString::fromUtf8(mProcess.readLine()).trimmed();
    }

    void close()
    {
        mProcess.closeWriteChannel();
        mProcess.waitForFinished();
    }

    void kill()
    {
        mProcess.kill(); // SIGKILL
        mProcess.waitForFinished();
    }

private:
    QProcess mProcess;
};

/// A translator that marks what it translates, as long as it exists.
class Marker : public QTranslator
{
public:
    Marker() { QCoreApplication::installTranslator(this); }
    ~Marker() override { QCoreApplication::removeTranslator(this); }

    QString translate(const char* context, const char* text, const char*, int) const override
    {
        return QByteArray(context) == "ProjectFileLocker"
            ? QLatin1Char('<') + QString::fromUtf8(text) + QLatin1Char('>')
            : QString();
    }
    bool isEmpty() const override { return false; }
};

/// The message for a lock that could not be created.
QString lockFailed(const char* project, const char* reason, const QString& folder)
{
    return QStringLiteral("Lock failed on '") + QLatin1String(project)
        + QStringLiteral("' : error=") + QLatin1String(reason) + QStringLiteral(" folder=") + folder
        + QStringLiteral(" machinehost=") + QSysInfo::machineHostName();
}

QString alreadyOpened(const QString& project, const QString& folder)
{
    return QStringLiteral("Project ") + project + QStringLiteral(" already opened !\nFolder : ")
        + folder;
}

int hold(const QString& project)
{
    ProjectFileLocker locker;
    QString error;
    const QString answer = locker.openNewProjectFile(project, &error)
        ? QStringLiteral("held")
        : error.replace(QLatin1Char('\n'), QLatin1Char('|'));
    std::puts(qPrintable(answer));
    std::fflush(stdout);
    while (std::getchar() != EOF) { }
    return 0;
}

/// Opens and closes a project until it is killed.
int openAndClose(const QString& project)
{
    std::puts("ready");
    std::fflush(stdout);
    for (;;) {
        ProjectFileLocker locker;
        locker.openNewProjectFile(project);
    }
}

} // namespace

void tst_ProjectFileLocker::init()
{
    mDir.reset(new Sandbox);
}

void tst_ProjectFileLocker::suffix()
{
    QCOMPARE(ProjectFileLocker::suffixLockedFile(), QStringLiteral(".locked"));
}

void tst_ProjectFileLocker::fileLockLiesBesideTheProject()
{
    ProjectFileLocker locker;
    QVERIFY(!QFile::exists(path(QStringLiteral("a.proj.locked"))));
    QVERIFY(locker.openNewProjectFile(path(QStringLiteral("a.proj"))));
    QVERIFY(QFile::exists(path(QStringLiteral("a.proj.locked"))));
    QVERIFY(!QFile::exists(path(QStringLiteral("a.proj"))));
}

void tst_ProjectFileLocker::sameFileTwoLockers()
{
    ProjectFileLocker first;
    ProjectFileLocker second;
    QVERIFY(first.openNewProjectFile(path(QStringLiteral("a.proj"))));
    QString error;
    QVERIFY(!second.openNewProjectFile(path(QStringLiteral("a.proj")), &error));
    QCOMPARE(error, alreadyOpened(QStringLiteral("a.proj"), mDir->root()));
}

void tst_ProjectFileLocker::sameFileSameLocker()
{
    ProjectFileLocker locker;
    QVERIFY(locker.openNewProjectFile(path(QStringLiteral("a.proj"))));
    QString error;
    QVERIFY(!locker.openNewProjectFile(path(QStringLiteral("a.proj")), &error));
    QCOMPARE(error, alreadyOpened(QStringLiteral("a.proj"), mDir->root()));
    QVERIFY(QFile::exists(path(QStringLiteral("a.proj.locked"))));
    QVERIFY(!ProjectFileLocker().openNewProjectFile(path(QStringLiteral("a.proj"))));
}

void tst_ProjectFileLocker::unlockAndOpenAgain()
{
    ProjectFileLocker locker;
    QVERIFY(locker.openNewProjectFile(path(QStringLiteral("a.proj"))));
    QVERIFY(locker.unlock());
    QVERIFY(!QFile::exists(path(QStringLiteral("a.proj.locked"))));
    QVERIFY(ProjectFileLocker().openNewProjectFile(path(QStringLiteral("a.proj"))));
    QVERIFY(locker.openNewProjectFile(path(QStringLiteral("a.proj"))));
}

void tst_ProjectFileLocker::unlockWithoutLock()
{
    ProjectFileLocker locker;
    QVERIFY(locker.unlock());
    QVERIFY(locker.unlock());
}

void tst_ProjectFileLocker::destructorReleases()
{
    {
        ProjectFileLocker locker;
        QVERIFY(locker.openNewProjectFile(path(QStringLiteral("a.proj"))));
    }
    QVERIFY(!QFile::exists(path(QStringLiteral("a.proj.locked"))));
}

void tst_ProjectFileLocker::anotherProjectReplacesTheLock()
{
    ProjectFileLocker locker;
    QVERIFY(locker.openNewProjectFile(path(QStringLiteral("a.proj"))));
    QVERIFY(locker.openNewProjectFile(path(QStringLiteral("b.proj"))));
    QVERIFY(!QFile::exists(path(QStringLiteral("a.proj.locked"))));
    QVERIFY(QFile::exists(path(QStringLiteral("b.proj.locked"))));
    QVERIFY(locker.openNewProjectFolder(path(QStringLiteral("c")), QStringLiteral("C")));
    QVERIFY(!QFile::exists(path(QStringLiteral("b.proj.locked"))));
    QVERIFY(QFile::exists(path(QStringLiteral("c/lockfile"))));
}

void tst_ProjectFileLocker::failureKeepsTheFormerLock()
{
    ProjectFileLocker other;
    QVERIFY(other.openNewProjectFile(path(QStringLiteral("b.proj"))));
    ProjectFileLocker locker;
    QVERIFY(locker.openNewProjectFile(path(QStringLiteral("a.proj"))));
    QVERIFY(!locker.openNewProjectFile(path(QStringLiteral("b.proj"))));
    QVERIFY(!locker.openNewProjectFolder(QString(), QStringLiteral("none")));
    QVERIFY(QFile::exists(path(QStringLiteral("a.proj.locked"))));
    QVERIFY(!ProjectFileLocker().openNewProjectFile(path(QStringLiteral("a.proj"))));
}

void tst_ProjectFileLocker::errorPointerMayBeNull()
{
    ProjectFileLocker first;
    ProjectFileLocker second;
    QVERIFY(first.openNewProjectFile(path(QStringLiteral("a.proj")), nullptr));
    QVERIFY(!second.openNewProjectFile(path(QStringLiteral("a.proj")), nullptr));
    QVERIFY(!second.openNewProjectFolder(path(QStringLiteral("a.proj.locked")), QStringLiteral("A"),
                                         nullptr));
}

void tst_ProjectFileLocker::errorIsNotClearedOnSuccess()
{
    ProjectFileLocker locker;
    QString error = QStringLiteral("from before");
    QVERIFY(locker.openNewProjectFile(path(QStringLiteral("a.proj")), &error));
    QVERIFY(locker.openNewProjectFolder(path(QStringLiteral("b")), QStringLiteral("B"), &error));
    QCOMPARE(error, QStringLiteral("from before"));
}

void tst_ProjectFileLocker::permission()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    QVERIFY(QDir(mDir->root()).mkdir(QStringLiteral("closed")));
    const QString folder = path(QStringLiteral("closed"));
    QVERIFY(QFile::setPermissions(mDir->root(), QFile::Permissions(0x7755)));
    QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x5555)));
    const OrdinaryUser user;
    ProjectFileLocker locker;
    QString error;
    QVERIFY(!locker.openNewProjectFile(folder + QStringLiteral("/a.proj"), &error));
    QCOMPARE(error,
             lockFailed("a.proj",
                        "The lock file could not be created, for lack of permissions in the "
                        "parent directory. ",
                        folder));
    QVERIFY(!locker.openNewProjectFolder(folder, QStringLiteral("Shop"), &error));
    QCOMPARE(error,
             lockFailed("Shop",
                        "The lock file could not be created, for lack of permissions in the "
                        "parent directory. ",
                        folder + QLatin1Char('/')));

    const Marker marker;
    QVERIFY(!locker.openNewProjectFile(folder + QStringLiteral("/a.proj"), &error));
    QVERIFY2(error.contains(QStringLiteral(" : error=<The lock file could not be created, for lack "
                                           "of permissions in the parent directory.>  folder=")),
             qPrintable(error));
}

void tst_ProjectFileLocker::otherError()
{
    // A missing folder: neither held nor forbidden.
    const QString folder = path(QStringLiteral("missing"));
    ProjectFileLocker locker;
    QString error;
    QVERIFY(!locker.openNewProjectFile(folder + QStringLiteral("/a.proj"), &error));
    QCOMPARE(error,
             lockFailed("a.proj",
                        "Another error happened, for instance a full partition prevented writing "
                        "out the lock file ",
                        folder));
}

/// The system would end the path at the NUL, and the lock would take the place of another file.
void tst_ProjectFileLocker::pathWithNul()
{
    const QString project = path(QStringLiteral("a.proj"));
    const QString longer = project + QChar() + QStringLiteral("b");
    LogCapture log;
    ProjectFileLocker locker;
    QString error;
    QVERIFY(!locker.openNewProjectFile(longer, &error));
    QVERIFY2(error.startsWith(QStringLiteral("Lock failed on 'a.proj") + QChar()
                              + QStringLiteral("b' : error=Another error happened")),
             qPrintable(error));
    QVERIFY(!locker.isLocked());
    QVERIFY(!locker.openNewProjectFolder(longer, QStringLiteral("Shop")));
    QVERIFY(!locker.isLocked());
    QCOMPARE(ProjectFileLocker::holder(longer).processId, Q_INT64_C(0));
    QCOMPARE(QDir(mDir->root()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             QStringList());
}

void tst_ProjectFileLocker::placeholdersInNames()
{
    const QString folder = path(QStringLiteral("%3 missing"));
    ProjectFileLocker locker;
    QString error;
    QVERIFY(!locker.openNewProjectFile(folder + QStringLiteral("/%2%4.proj"), &error));
    QVERIFY2(error.startsWith(QStringLiteral("Lock failed on '%2%4.proj' : error=Another")),
             qPrintable(error));
    QVERIFY2(error.contains(QStringLiteral("  folder=") + folder + QStringLiteral(" machinehost=")),
             qPrintable(error));

    ProjectFileLocker first;
    QVERIFY(first.openNewProjectFile(path(QStringLiteral("%1.proj"))));
    QVERIFY(!locker.openNewProjectFile(path(QStringLiteral("%1.proj")), &error));
    QCOMPARE(error, alreadyOpened(QStringLiteral("%1.proj"), mDir->root()));
}

void tst_ProjectFileLocker::translated()
{
    const Marker marker;
    ProjectFileLocker first;
    ProjectFileLocker second;
    QString error;
    QVERIFY(first.openNewProjectFile(path(QStringLiteral("a.proj"))));
    QVERIFY(!second.openNewProjectFile(path(QStringLiteral("a.proj")), &error));
    QCOMPARE(error, QStringLiteral("<Project a.proj already opened !>\nFolder : ") + mDir->root());
    QVERIFY(!second.openNewProjectFile(path(QStringLiteral("missing/a.proj")), &error));
    QVERIFY2(error.startsWith(QStringLiteral(
                 "<Lock failed on 'a.proj' : error=<Another error happened, for instance a full "
                 "partition prevented writing out the lock file>  folder=")),
             qPrintable(error));
}

void tst_ProjectFileLocker::folderLockLiesInside()
{
    QVERIFY(QDir(mDir->root()).mkdir(QStringLiteral("shop")));
    ProjectFileLocker locker;
    QVERIFY(locker.openNewProjectFolder(path(QStringLiteral("shop")), QStringLiteral("Shop")));
    QVERIFY(QFile::exists(path(QStringLiteral("shop/lockfile"))));
    locker.unlock();
    QVERIFY(!QFile::exists(path(QStringLiteral("shop/lockfile"))));
    QVERIFY(locker.openNewProjectFolder(path(QStringLiteral("shop/")), QStringLiteral("Shop")));
    QVERIFY(QFile::exists(path(QStringLiteral("shop/lockfile"))));
}

void tst_ProjectFileLocker::folderIsMade()
{
    ProjectFileLocker locker;
    QVERIFY(locker.openNewProjectFolder(path(QStringLiteral("new/shop")), QStringLiteral("Shop")));
    QVERIFY(QFile::exists(path(QStringLiteral("new/shop/lockfile"))));
}

void tst_ProjectFileLocker::folderThatCannotBeMade()
{
    QFile file(path(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    ProjectFileLocker locker;
    QString error;
    const QString folder = path(QStringLiteral("file/shop"));
    QVERIFY(!locker.openNewProjectFolder(folder, QStringLiteral("Shop"), &error));
    QCOMPARE(error, QStringLiteral("(fileMkPath) Cant create folder '%1' !").arg(folder));
}

void tst_ProjectFileLocker::folderEmpty()
{
    ProjectFileLocker locker;
    QString error = QStringLiteral("from before");
    QVERIFY(!locker.openNewProjectFolder(QString(), QStringLiteral("Shop"), &error));
    QCOMPARE(error, QStringLiteral("from before"));
}

void tst_ProjectFileLocker::folderRelative()
{
    const CurrentFolder current(mDir->root());
    ProjectFileLocker locker;
    QVERIFY(locker.openNewProjectFile(path(QStringLiteral("a.proj"))));
    // True without a lock, and the former lock is kept.
    QVERIFY(locker.openNewProjectFolder(QStringLiteral("shop"), QStringLiteral("Shop")));
    QVERIFY(QDir(path(QStringLiteral("shop"))).exists());
    QVERIFY(!QFile::exists(path(QStringLiteral("shop/lockfile"))));
    QVERIFY(QFile::exists(path(QStringLiteral("a.proj.locked"))));
}

void tst_ProjectFileLocker::folderAlreadyOpen()
{
    const QString folder = path(QStringLiteral("shop"));
    ProjectFileLocker first;
    ProjectFileLocker second;
    QVERIFY(first.openNewProjectFolder(folder, QStringLiteral("Shop")));
    QString error;
    QVERIFY(!second.openNewProjectFolder(folder, QStringLiteral("My Shop"), &error));
    QCOMPARE(error, alreadyOpened(QStringLiteral("My Shop"), folder + QLatin1Char('/')));
}

void tst_ProjectFileLocker::nothingIsLogged()
{
    LogCapture log;
    ProjectFileLocker first;
    ProjectFileLocker second;
    QVERIFY(first.openNewProjectFile(path(QStringLiteral("a.proj"))));
    QVERIFY(!second.openNewProjectFile(path(QStringLiteral("a.proj"))));
#ifndef Q_OS_WIN // where Qt itself logs it
    QVERIFY(!second.openNewProjectFile(path(QStringLiteral("missing/a.proj"))));
#endif
    QVERIFY(
        !second.openNewProjectFolder(path(QStringLiteral("a.proj.locked")), QStringLiteral("A")));
    QCOMPARE(log.lines(), QStringList());
}

void tst_ProjectFileLocker::heldByAnotherProcess()
{
    OtherInstance other(path(QStringLiteral("a.proj")));
    QCOMPARE(other.answer(), QStringLiteral("held"));
    ProjectFileLocker locker;
    QString error;
    QVERIFY(!locker.openNewProjectFile(path(QStringLiteral("a.proj")), &error));
    QCOMPARE(error, alreadyOpened(QStringLiteral("a.proj"), mDir->root()));

    OtherInstance third(path(QStringLiteral("a.proj")));
    QCOMPARE(third.answer(),
             alreadyOpened(QStringLiteral("a.proj"), mDir->root())
                 .replace(QLatin1Char('\n'), QLatin1Char('|')));
}

void tst_ProjectFileLocker::releasedByAnotherProcess()
{
    OtherInstance other(path(QStringLiteral("a.proj")));
    QCOMPARE(other.answer(), QStringLiteral("held"));
    other.close();
    QVERIFY(!QFile::exists(path(QStringLiteral("a.proj.locked"))));
    QVERIFY(ProjectFileLocker().openNewProjectFile(path(QStringLiteral("a.proj"))));
}

void tst_ProjectFileLocker::killedOwnerIsReplaced()
{
    OtherInstance other(path(QStringLiteral("a.proj")));
    QCOMPARE(other.answer(), QStringLiteral("held"));
    other.kill();
    // The stale lock still exists, and is taken over.
    QVERIFY(QFile::exists(path(QStringLiteral("a.proj.locked"))));
    ProjectFileLocker locker;
    QVERIFY(locker.openNewProjectFile(path(QStringLiteral("a.proj"))));
    OtherInstance next(path(QStringLiteral("a.proj")));
    QVERIFY(next.answer() != QStringLiteral("held"));
}

void tst_ProjectFileLocker::oldLockOfARunningOwner()
{
    SKIP_ON_WINDOWS("the lock file is closed to others");
    OtherInstance other(path(QStringLiteral("a.proj")));
    QCOMPARE(other.answer(), QStringLiteral("held"));
    // A project that has been open for an hour: the owner's file lock still protects it.
    const QByteArray lock = QFile::encodeName(path(QStringLiteral("a.proj.locked")));
    timeval times[2] = {};
    times[0].tv_sec = times[1].tv_sec = decltype(times[0].tv_sec)(time(nullptr) - 3600);
    QCOMPARE(utimes(lock.constData(), times), 0);
    ProjectFileLocker locker;
    QString error;
    QVERIFY(!locker.openNewProjectFile(path(QStringLiteral("a.proj")), &error));
    QCOMPARE(error, alreadyOpened(QStringLiteral("a.proj"), mDir->root()));
}

void tst_ProjectFileLocker::raceHasOneWinner()
{
    // Two instances compete for the same lock; half of the locks were left behind by a killed
    // owner.
    for (int round = 0; round < 100; ++round) {
        const QString project = path(QStringLiteral("race%1.proj").arg(round));
        if (round % 2 == 0) {
            OtherInstance left(project);
            QCOMPARE(left.answer(), QStringLiteral("held"));
            left.kill();
        }
        OtherInstance one(project);
        OtherInstance two(project);
        const int winners =
            (one.answer() == QStringLiteral("held")) + (two.answer() == QStringLiteral("held"));
        QVERIFY2(winners <= 1, qPrintable(QStringLiteral("round %1").arg(round)));
        // Without a stale lock one of them always succeeds.
        if (round % 2 == 1)
            QCOMPARE(winners, 1);
    }
}

void tst_ProjectFileLocker::currentFolderChanges_data()
{
    // project: a folder if it ends with "/"
    const auto row = namedByText(columns<QString, QString>("project", "lock"));
    row("a.proj", "a.proj.locked");
    row("shop/a.proj", "shop/a.proj.locked");
    row("./", "lockfile");
    row("shop/", "shop/lockfile"); // a folder that contains itself
}

// A lock remains in the place where it was taken.
void tst_ProjectFileLocker::currentFolderChanges()
{
    QFETCH(QString, project);
    QFETCH(QString, lock);
    for (const char* place : {"one/shop/shop", "other/shop/shop"})
        mDir->folder(QString::fromLatin1(place));
    const CurrentFolder one(path(QStringLiteral("one")));
    ProjectFileLocker locker;
    if (project.endsWith(QLatin1Char('/')))
        QVERIFY(locker.openNewProjectFolder(project, QStringLiteral("Shop")));
    else
        QVERIFY(locker.openNewProjectFile(project));
    const QString held = path(QStringLiteral("one/") + lock);
    QVERIFY(QFile::exists(held));
    QCOMPARE(locker.lockedPath(), QDir::cleanPath(path(QStringLiteral("one/") + project)));

    // The lock of another instance, at the place where the same relative path leads now.
    const QString other = path(QStringLiteral("other/") + lock);
    const CurrentFolder moved(path(QStringLiteral("other")));
    QLockFile others(other);
    QVERIFY(others.tryLock(0));
    locker.unlock();
    QVERIFY(!QFile::exists(held));
    QVERIFY(QFile::exists(other));
}

void tst_ProjectFileLocker::states()
{
    using State = ProjectFileLocker::LockState;
    static_assert(ProjectFileLocker::Locked == State::Locked, "both can be written");
    const CurrentFolder current(mDir->root());
    ProjectFileLocker locker;
    QVERIFY(!locker.isLocked());
    QVERIFY(locker.lockState() == State::NotLocked);
    QCOMPARE(locker.lockedPath(), QString());

    QVERIFY(locker.openNewProjectFile(path(QStringLiteral("a.proj"))));
    QVERIFY(locker.isLocked());
    QVERIFY(locker.lockState() == State::Locked);
    QCOMPARE(locker.lockedPath(), path(QStringLiteral("a.proj")));
    // A failure changes nothing.
    QVERIFY(!locker.openNewProjectFile(path(QStringLiteral("missing/a.proj"))));
    QVERIFY(locker.lockState() == State::Locked);
    QCOMPARE(locker.lockedPath(), path(QStringLiteral("a.proj")));
    // In lenient mode a project is opened and the lock of the other one is kept.
    QVERIFY(locker.openNewProjectFolder(QStringLiteral("shop"), QStringLiteral("Shop")));
    QVERIFY(locker.lockState() == State::Lenient);
    QVERIFY(locker.isLocked());
    QCOMPARE(locker.lockedPath(), path(QStringLiteral("a.proj")));

    QVERIFY(locker.openNewProjectFolder(path(QStringLiteral("shop/")), QStringLiteral("Shop")));
    QVERIFY(locker.lockState() == State::Locked);
    QCOMPARE(locker.lockedPath(), path(QStringLiteral("shop")));
    QVERIFY(locker.unlock());
    QVERIFY(!locker.isLocked());
    QVERIFY(locker.lockState() == State::NotLocked);
    QCOMPARE(locker.lockedPath(), QString());
}

void tst_ProjectFileLocker::holder_data()
{
    const auto row = columns<bool>("isFolder");
    row("project file", false);
    row("project folder", true);
}

void tst_ProjectFileLocker::holder()
{
    QFETCH(bool, isFolder);
    const QString project =
        isFolder ? mDir->folder(QStringLiteral("shop")) : path(QStringLiteral("a.proj"));
    const QDateTime before = QDateTime::currentDateTime().addSecs(-2);
    ProjectFileLocker locker;
    if (isFolder)
        QVERIFY(locker.openNewProjectFolder(project, QStringLiteral("Shop")));
    else
        QVERIFY(locker.openNewProjectFile(project));
    const ProjectFileLocker::LockHolder holder = ProjectFileLocker::holder(project);
    QCOMPARE(holder.processId, qint64(getpid()));
    // On Windows QLockFile writes the name in capitals.
    QCOMPARE(holder.host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive), 0);
    QCOMPARE(holder.application, QStringLiteral("tst_ProjectFileLocker"));
    QVERIFY(holder.since >= before && holder.since <= QDateTime::currentDateTime());
    QVERIFY(holder.isRunning);
    QVERIFY(locker.isLocked());
}

void tst_ProjectFileLocker::holderThatDied()
{
    const QString project = path(QStringLiteral("a.proj"));
    OtherInstance other(project);
    QCOMPARE(other.answer(), QStringLiteral("held"));
    const ProjectFileLocker::LockHolder running = ProjectFileLocker::holder(project);
    QVERIFY(running.isRunning);
    QVERIFY(running.processId != getpid());
    other.kill();
    const ProjectFileLocker::LockHolder dead = ProjectFileLocker::holder(project);
    QCOMPARE(dead.processId, running.processId);
    QVERIFY(!dead.isRunning);

    // The number of a process that runs a different program.
    writeFile(project + QStringLiteral(".locked"),
              QByteArray::number(getppid()) + "\nshop-editor\n"
                  + QSysInfo::machineHostName().toUtf8() + '\n');
    QVERIFY(!ProjectFileLocker::holder(project).isRunning);
}

void tst_ProjectFileLocker::holderElsewhere()
{
    const QString project = path(QStringLiteral("a.proj"));
    writeFile(project + QStringLiteral(".locked"), "4711\nshop-editor\ncounter\n");
    const ProjectFileLocker::LockHolder holder = ProjectFileLocker::holder(project);
    QCOMPARE(holder.processId, Q_INT64_C(4711));
    QCOMPARE(holder.host, QStringLiteral("counter"));
    QCOMPARE(holder.application, QStringLiteral("shop-editor"));
    QVERIFY(holder.isRunning);
}

void tst_ProjectFileLocker::nobodyHolds()
{
    const QString project = path(QStringLiteral("a.proj"));
    for (const bool isEmptyFile : {false, true}) {
        if (isEmptyFile)
            writeFile(project + QStringLiteral(".locked"), "");
        const ProjectFileLocker::LockHolder holder = ProjectFileLocker::holder(project);
        QCOMPARE(holder.processId, Q_INT64_C(0));
        QVERIFY(!holder.isRunning);
        QVERIFY(holder.since.isNull());
    }
    QCOMPARE(ProjectFileLocker::holder(QString()).processId, Q_INT64_C(0));
}

void tst_ProjectFileLocker::somethingElse_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("isPipe");
    const QString lock = QStringLiteral(".locked");
    QTest::newRow("pipe") << lock << true;
    QTest::newRow("pipe for the helper") << lock + QStringLiteral(".rmlock") << true;
    QTest::newRow("large file") << lock << false;
    QTest::newRow("large file for the helper") << lock + QStringLiteral(".rmlock") << false;
}

void tst_ProjectFileLocker::somethingElse()
{
    SKIP_ON_WINDOWS("there are no pipes in folders there");
    // Reading a pipe waits for a writer, and reading a line of a large file takes its size.
    QFETCH(QString, suffix);
    QFETCH(bool, isPipe);
    const QString project = path(QStringLiteral("a.proj"));
    const QString other = project + suffix;
    const QByteArray content(1 << 17, '5');
    if (isPipe)
        mDir->pipe(QStringLiteral("a.proj") + suffix);
    else
        writeFile(other, content);

    QCOMPARE(ProjectFileLocker::holder(project).processId, Q_INT64_C(0));
    ProjectFileLocker locker;
    QString error;
    QVERIFY(!locker.openNewProjectFile(project, &error));
    QVERIFY2(error.startsWith(QStringLiteral("Lock failed on 'a.proj'")), qPrintable(error));
    QVERIFY(!locker.isLocked());
    QCOMPARE(QFileInfo(other).isFile(), !isPipe); // nothing is lost
    if (!isPipe)
        QCOMPARE(QFileInfo(other).size(), qint64(content.size()));
    QVERIFY(QFile::remove(other));
    QVERIFY(locker.openNewProjectFile(project));

    // A path with a NUL is no other project's path.
    QVERIFY(
        !locker.openNewProjectFile(path(QStringLiteral("b")) + QChar() + QLatin1Char('c'), &error));
    QVERIFY2(error.startsWith(QStringLiteral("Lock failed on 'b")), qPrintable(error));
}

void tst_ProjectFileLocker::debugOutput()
{
    QString text;
    ProjectFileLocker::LockHolder holder;
    QDebug(&text) << holder << 1;
    QCOMPARE(text.trimmed(), QStringLiteral("LockHolder(nobody) 1"));
    holder.processId = 4711;
    holder.application = QStringLiteral("shop-editor");
    holder.host = QStringLiteral("counter");
    holder.since = QDateTime(QDate(2026, 3, 1), QTime(9, 30));
    holder.isRunning = true;
    text.clear();
    QDebug(&text) << holder;
    QCOMPARE(text.trimmed(),
             QStringLiteral("LockHolder(process 4711, \"shop-editor\" on \"counter\", since "
                            "2026-03-01T09:30:00, running)"));
    holder.isRunning = false;
    text.clear();
    QDebug(&text) << holder;
    QVERIFY2(text.trimmed().endsWith(QStringLiteral("09:30:00, not running)")), qPrintable(text));
}

void tst_ProjectFileLocker::abandoned_data()
{
    // What a killed process left of the lock, its helper, and the helper of that. "-" means
    // nothing.
    const auto row = columns<QStringList>("left");
    const QString none = QStringLiteral("-");
    const QString dead = QStringLiteral("dead");
    row("empty lock", {QString()});
    row("half a lock", {QStringLiteral("x")});
    row("empty helper", {dead, QString()});
    row("empty helper alone", {none, QString()});
    row("both empty", {QString(), QString()});
    row("dead helper", {dead, dead});
    row("empty lock, dead helper", {QString(), dead});
    row("empty helper of a dead helper", {dead, dead, QString()});
    row("all empty", {QString(), QString(), QString()});
}

void tst_ProjectFileLocker::abandoned()
{
    QFETCH(QStringList, left);
    const QString project = path(QStringLiteral("a.proj"));
    QByteArray dead;
    {
        OtherInstance other(project);
        QCOMPARE(other.answer(), QStringLiteral("held"));
        other.kill();
        dead = contentOf(project + QStringLiteral(".locked"));
        QVERIFY(QFile::remove(project + QStringLiteral(".locked")));
    }
    QString lock = project + QStringLiteral(".locked");
    for (const QString& content : left) {
        if (content == QLatin1String("dead"))
            writeFile(lock, dead);
        else if (content != QLatin1String("-"))
            writeFile(lock, content.toUtf8());
        lock += QStringLiteral(".rmlock");
    }
    ProjectFileLocker locker;
    QString error;
    QVERIFY2(locker.openNewProjectFile(project, &error), qPrintable(error));
    QCOMPARE(ProjectFileLocker::holder(project).processId, qint64(getpid()));
    QVERIFY(!ProjectFileLocker().openNewProjectFile(project));
}

// A lock that is empty because its process has not filled it yet.
void tst_ProjectFileLocker::beingMade()
{
    const QString project = path(QStringLiteral("a.proj"));
    QFile made(project + QStringLiteral(".locked"));
    QVERIFY(made.open(QIODevice::ReadWrite));
    ProjectFileLocker locker;
    QString error;
    QVERIFY(!locker.openNewProjectFile(project, &error));
    QCOMPARE(error, alreadyOpened(QStringLiteral("a.proj"), mDir->root()));
    QVERIFY(QFile::exists(made.fileName()));
    made.close();
    QVERIFY(locker.openNewProjectFile(project));
}

void tst_ProjectFileLocker::killedAtAnyMoment()
{
    KillMoments moments;
    const QString project = path(QStringLiteral("a.proj"));
    const int kills = KillMoments::countInEach(1);
    int empty = 0;
    for (int kill = 0; kill < kills; ++kill) {
        OtherInstance other(project, QStringLiteral("--open-and-close"));
        QCOMPARE(other.answer(), QStringLiteral("ready"));
        moments.wait(3000);
        other.kill();
        const QFileInfo left(project + QStringLiteral(".locked"));
        empty += left.exists() && left.size() == 0;
        ProjectFileLocker locker;
        QString error;
        QVERIFY2(locker.openNewProjectFile(project, &error), qPrintable(error));
    }
    qInfo("kills: %d while a lock was made and removed, %d of them left an empty file, seed %u; "
          "locks that could not be taken over: 0",
          kills, empty, moments.seed());
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--hold") == 0)
        return hold(app.arguments().at(2));
    if (argc == 3 && qstrcmp(argv[1], "--open-and-close") == 0)
        return openAndClose(app.arguments().at(2));
    KillMoments::allowTime();
    tst_ProjectFileLocker test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ProjectFileLocker.moc"

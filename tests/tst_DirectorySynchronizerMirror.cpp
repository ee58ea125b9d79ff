// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DirectorySynchronizer under heavy load: what the mirror contains during and after it.

#include "ChildRole.h"
#include "Columns.h"
#include "DirectorySynchronizer.h"
#include "DirectoryWatcher.h"
#include "KillMoments.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "Sandbox.h"
#include "SpiedSignals.h"

#include <QPointer>
#include <QProcess>
#include <QSignalSpy>
#include <QThread>
#include <QtTest>

#include <atomic>
#include <cstdio>
#include <functional>
#include <memory>
#include <thread>

namespace {

void renameTo(const QString& path, const QString& newPath)
{
    if (!renameOver(path, newPath))
        qFatal("cannot rename %s to %s", qPrintable(path), qPrintable(newPath));
}

/// The content of a file that is always written as a whole, one version after the other.
QByteArray versionOf(int number)
{
    return QByteArray(200000 + 1000 * (number % 7), char('a' + number % 26));
}

bool isVersion(const QByteArray& content)
{
    return !content.isEmpty() && content.count(content.at(0)) == content.size()
        && content.size() >= 200000 && content.size() % 1000 == 0;
}

/// Mirrors a folder until the process is killed.
int mirrorUntilKilled()
{
    int argc = 1;
    char name[] = "mirror";
    char* argv[] = {name, nullptr};
    QCoreApplication application(argc, argv);
    const QString root = QString::fromLocal8Bit(qgetenv("ORVAUTILS_KILLS_PATH"));
    DirectorySynchronizer synchronizer;
    if (!synchronizer.startWatcher(root + QStringLiteral("/src"), root + QStringLiteral("/dst")))
        return 3;
    std::puts("ready");
    std::fflush(stdout);
    return application.exec();
}

/// The number of storms: ORVAUTILS_STORMS, or three.
/// Lets \a synchronizer treat changes as complete after a moment.
void settleQuickly(const DirectorySynchronizer& synchronizer)
{
    synchronizer.findChild<DirectoryWatcher*>()->setSettleTime(150);
}

int stormCount()
{
    const int wanted = qEnvironmentVariableIntValue("ORVAUTILS_STORMS");
    return wanted > 0 ? wanted : 3;
}

} // namespace

class tst_DirectorySynchronizerMirror : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void overlappingFoldersAreRefused_data();
    void overlappingFoldersAreRefused();
    void deletedByReceiver_data();
    void deletedByReceiver();
    void tellsWhatAndWhy();
    void unwatchedIsAFailure();
    void otherKindOfEntry();
    void inTheWay_data();
    void inTheWay();
    void nothingIsClearedForAMissingFile();
    void unreadableForAMoment_data();
    void unreadableForAMoment();
    void filter();
    void filterOfFullSync();
    void currentFolderChanges();
    void filterChangesItself();
    void filterDestroysIt();
    void observedFullSync();
    void cancelledFullSync();
    void observerDestroysIt();
    void isEqual();
    void isEqualMeetsAPipe();
    void isEqualNeedsFolders_data();
    void isEqualNeedsFolders();
    void stops();
    void storms_data();
    void storms();
    void slowReceiver();
    void readersMeetWholeFiles();
    void killedWhileCopying();
    void cleanupTestCase();

private:
    void fillAndStart(DirectorySynchronizer* synchronizer);

    QScopedPointer<Sandbox> mSandbox;
    QString mSource;
    QString mDestination;
    QStringList mFigures;
};

namespace {

/// A synchronizer with its signals.
class SpiedSynchronizer : public DirectorySynchronizer
{
public:
    QSignalSpy errors{this, &DirectorySynchronizer::error};
    QSignalSpy logged{this, &DirectorySynchronizer::log};
    QSignalSpy mirrors{this, &DirectorySynchronizer::mirrored};
    QSignalSpy removals{this, &DirectorySynchronizer::removed};
    QSignalSpy failures{this, &DirectorySynchronizer::failed};
};

QStringList argumentsOf(const QSignalSpy& spy, int index)
{
    QStringList texts;
    for (const QVariant& argument : spy.at(index))
        texts.append(argument.toString());
    return texts;
}

} // namespace

void tst_DirectorySynchronizerMirror::init()
{
    mSandbox.reset(new Sandbox);
    mSource = mSandbox->folder(QStringLiteral("src"));
    mDestination = mSandbox->folder(QStringLiteral("dst"));
}

void tst_DirectorySynchronizerMirror::fillAndStart(DirectorySynchronizer* synchronizer)
{
    for (int i = 0; i < 30; ++i)
        writeFile(mSource + QStringLiteral("/d%1/f%2").arg(i % 3).arg(i), QByteArray::number(i));
    QVERIFY(synchronizer->fullSync(mSource, mDestination));
    QVERIFY(synchronizer->startWatcher(mSource, mDestination));
}

void tst_DirectorySynchronizerMirror::overlappingFoldersAreRefused_data()
{
    const auto row = columns<QString, QString>("source", "destination");
    row("inside", "src", "src/mirror");
    row("deep inside", "src", "src/x/y/mirror");
    row("contains", "src/x", "src");
    row("same", "src", "./src/");
    row("through a link", "src", "link/mirror");
}

void tst_DirectorySynchronizerMirror::overlappingFoldersAreRefused()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, source);
    QFETCH(QString, destination);
    mSandbox->link(QStringLiteral("link"), mSource);
    mSandbox->file(QStringLiteral("src/x/file"));
    const QStringList before = treeOf(mSandbox->root());
    LogCapture records;
    SpiedSynchronizer synchronizer;
    // The former source is not followed any more either.
    QVERIFY(synchronizer.startWatcher(mSource, mDestination));
    QVERIFY(!synchronizer.startWatcher((*mSandbox)(source), (*mSandbox)(destination)));
    QCOMPARE(textsOf(synchronizer.errors), QStringList(QStringLiteral("Watcher fail")));
    QCOMPARE(records.lines(),
             QStringList(QStringLiteral(
                 "critical orvautils DirectorySynchronizer startWatcher: Watcher fail")));
    QCOMPARE(argumentsOf(synchronizer.failures, 0),
             QStringList({QDir::cleanPath((*mSandbox)(source)),
                          QStringLiteral("A folder cannot be mirrored into itself, into a folder "
                                         "that contains it, or nowhere.")}));
    mSandbox->file(QStringLiteral("src/x/file"), "changed");
    handleEvents();
    QCOMPARE(synchronizer.mirrors.count(), 0);
    mSandbox->file(QStringLiteral("src/x/file"));
    QCOMPARE(treeOf(mSandbox->root()), before);
}

void tst_DirectorySynchronizerMirror::deletedByReceiver_data()
{
    const auto row = columns<QString, QString>("signal", "act");
    row("error, missing source", SIGNAL(error(QString)), "missing");
    row("failed, missing source", SIGNAL(failed(QString, QString)), "missing");
    row("error, nested", SIGNAL(error(QString)), "nested");
    row("error, copy", SIGNAL(error(QString)), "cannot copy");
    row("failed, copy", SIGNAL(failed(QString, QString)), "cannot copy");
    row("error, removal", SIGNAL(error(QString)), "cannot remove");
    row("log, copy", SIGNAL(log(QString)), "copy");
    row("mirrored", SIGNAL(mirrored(QString, QString)), "copy");
    row("log, removal", SIGNAL(log(QString)), "remove");
    row("removed", SIGNAL(removed(QString)), "remove");
}

namespace {

/// Deletes an object from within one of its signals.
class Deleter : public QObject
{
    Q_OBJECT

public:
    explicit Deleter(QObject* object)
        : mObject(object)
    { }

public Q_SLOTS:
    void act() { delete mObject; }

private:
    const QPointer<QObject> mObject;
};

/// A thread that works until it is told to stop, at the latest when this object is destroyed.
class Worker
{
public:
    Worker(std::atomic<bool>* isOver, const std::function<void()>& work)
        : mIsOver(isOver)
        , mThread(work)
    { }
    ~Worker() { stop(); }

    void stop()
    {
        *mIsOver = true;
        if (mThread.joinable())
            mThread.join();
    }

private:
    Q_DISABLE_COPY(Worker)

    std::atomic<bool>* const mIsOver;
    std::thread mThread;
};

} // namespace

void tst_DirectorySynchronizerMirror::deletedByReceiver()
{
    QFETCH(QString, signal);
    QFETCH(QString, act);
    LogCapture quiet;
    auto* synchronizer = new DirectorySynchronizer;
    const QPointer<DirectorySynchronizer> guard(synchronizer);
    Deleter deleter(synchronizer);
    writeFile(mSource + QStringLiteral("/kept"));
    if (!act.contains(QLatin1String("ing")))
        fillAndStart(synchronizer);
    QVERIFY(connect(synchronizer, signal.toLatin1().constData(), &deleter, SLOT(act())));
    if (act == QLatin1String("missing")) {
        QVERIFY(!synchronizer->startWatcher((*mSandbox)(QStringLiteral("none")), mDestination));
    } else if (act == QLatin1String("nested")) {
        QVERIFY(!synchronizer->startWatcher(mSource, mSource + QStringLiteral("/x")));
    } else if (act == QLatin1String("cannot copy")) {
        synchronizer->onFileAddedOrModified(mSource + QStringLiteral("/none"));
    } else if (act == QLatin1String("cannot remove")) {
        synchronizer->onFileDeleted(mSource + QStringLiteral("/none"));
    } else if (act == QLatin1String("copy")) {
        for (int i = 0; i < 5; ++i)
            writeFile(mSource + QStringLiteral("/new%1").arg(i));
    } else {
        for (int i = 0; i < 5; ++i)
            QFile::remove(mSource + QStringLiteral("/d0/f%1").arg(3 * i));
    }
    QTRY_VERIFY(guard.isNull());
    handleEvents();
}

void tst_DirectorySynchronizerMirror::tellsWhatAndWhy()
{
    LogCapture quiet;
    SpiedSynchronizer synchronizer;
    QVERIFY(synchronizer.startWatcher(mSource, mDestination));
    const QString file = mSource + QStringLiteral("/x/a");
    const QString mirror = mDestination + QStringLiteral("/x/a");
    writeFile(file);
    synchronizer.onFileAddedOrModified(file);
    QCOMPARE(argumentsOf(synchronizer.mirrors, 0), QStringList({file, mirror}));
    synchronizer.onFileDeleted(file);
    QCOMPARE(argumentsOf(synchronizer.removals, 0), QStringList(mirror));
    QCOMPARE(synchronizer.failures.count(), 0);

    QFile missing(mirror);
    QVERIFY(!missing.remove());
    const QString noSuchFile = missing.errorString();
    synchronizer.onFileDeleted(file);
    QCOMPARE(argumentsOf(synchronizer.failures, 0), QStringList({mirror, noSuchFile}));
    const QString none = mSource + QStringLiteral("/none");
    synchronizer.onFileAddedOrModified(none);
    QCOMPARE(argumentsOf(synchronizer.failures, 1).at(0), none);
    const QString elsewhere = mSandbox->file(QStringLiteral("elsewhere"));
    synchronizer.onFileAddedOrModified(elsewhere);
    QCOMPARE(argumentsOf(synchronizer.failures, 2),
             QStringList({elsewhere, QStringLiteral("The file is not in the source folder.")}));
    QCOMPARE(synchronizer.errors.count(), 3);
    QCOMPARE(synchronizer.logged.count(), 2);
}

void tst_DirectorySynchronizerMirror::unwatchedIsAFailure()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    LogCapture quiet;
    const QString file = mSandbox->file(QStringLiteral("src/closed"));
    changeMode(file, 0);
    SpiedSynchronizer synchronizer;
    const OrdinaryUser user;
    QVERIFY(!synchronizer.startWatcher(mSource, mDestination));
    QCOMPARE(argumentsOf(synchronizer.failures, 0),
             QStringList({file, QStringLiteral("Permission to read is missing.")}));
}

// What blocks a new file in the mirror has been removed from the source.
void tst_DirectorySynchronizerMirror::otherKindOfEntry()
{
    SKIP_ON_WINDOWS("a watched folder stays until its watcher knows");
    LogCapture quiet;
    writeFile(mSource + QStringLiteral("/x/a"));
    writeFile(mSource + QStringLiteral("/x/.hidden"));
    DirectorySynchronizer synchronizer;
    QVERIFY(synchronizer.fullSync(mSource, mDestination));
    QVERIFY(synchronizer.startWatcher(mSource, mDestination));
    for (int round = 0; round < 3; ++round) {
        QVERIFY(QDir(mSource + QStringLiteral("/x")).removeRecursively());
        writeFile(mSource + QStringLiteral("/x"), "file");
        QTRY_COMPARE(treeOf(mDestination), QStringList(QStringLiteral("x=file")));
        QVERIFY(QFile::remove(mSource + QStringLiteral("/x")));
        writeFile(mSource + QStringLiteral("/x/y/b"), "in a folder");
        QTRY_COMPARE(treeOf(mDestination),
                     QStringList({QStringLiteral("x/"), QStringLiteral("x/y/"),
                                  QStringLiteral("x/y/b=in a folder")}));
    }
}

void tst_DirectorySynchronizerMirror::inTheWay_data()
{
    const auto row = columns<QString, QString>("obstacle", "target");
    row("a file above", "dst/x", QString());
    row("a broken link above", "dst/x", "nowhere");
    row("a broken link", "dst/x/b", "nowhere");
    row("a link to a folder", "dst/x/b", "../../outside");
}

// Whatever occupies the place of the mirror, or of a folder above it, is removed; the target of a
// link is kept.
void tst_DirectorySynchronizerMirror::inTheWay()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, obstacle);
    QFETCH(QString, target);
    const QString file = mSandbox->file(QStringLiteral("src/x/b"), "new");
    const QString kept = mSandbox->file(QStringLiteral("outside/kept"));
    DirectorySynchronizer synchronizer;
    QVERIFY(synchronizer.startWatcher(mSource, mDestination));
    if (target.isEmpty()) {
        mSandbox->file(obstacle);
    } else {
        makeFolder(QFileInfo((*mSandbox)(obstacle)).path());
        mSandbox->link(obstacle, target);
    }
    synchronizer.onFileAddedOrModified(file);
    QCOMPARE(treeOf(mDestination), QStringList({QStringLiteral("x/"), QStringLiteral("x/b=new")}));
    QCOMPARE(contentOf(kept), QByteArray("content"));
}

void tst_DirectorySynchronizerMirror::nothingIsClearedForAMissingFile()
{
    LogCapture quiet;
    DirectorySynchronizer synchronizer;
    QVERIFY(synchronizer.startWatcher(mSource, mDestination));
    mSandbox->file(QStringLiteral("dst/x/a"));
    synchronizer.onFileAddedOrModified(mSource + QStringLiteral("/x"));
    QCOMPARE(contentOf((*mSandbox)(QStringLiteral("dst/x/a"))), QByteArray("content"));
}

void tst_DirectorySynchronizerMirror::unreadableForAMoment_data()
{
    const auto row = columns<QString>("closed");
    row("file", "src/d1/f1");
    row("folder", "src/d1");
}

void tst_DirectorySynchronizerMirror::unreadableForAMoment()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    QFETCH(QString, closed);
    LogCapture quiet;
    changeMode(mDestination, 0777);
    DirectorySynchronizer synchronizer;
    fillAndStart(&synchronizer);
    const auto whole = filesBelow(mDestination);
    {
        const OrdinaryUser user;
        handleEvents();
    }
    mSandbox->lock((*mSandbox)(closed), 0);
    {
        const OrdinaryUser user;
        handleEvents();
        synchronizer.findChild<DirectoryWatcher*>()->onDirMod(mSource);
        handleEvents();
    }
    QCOMPARE(filesBelow(mDestination), whole);
    changeMode((*mSandbox)(closed), 0755);
    handleEvents();
    writeFile(mSource + QStringLiteral("/d1/f1"), "changed");
    QTRY_COMPARE(contentOf(mDestination + QStringLiteral("/d1/f1")), QByteArray("changed"));
    QCOMPARE(filesBelow(mDestination), filesBelow(mSource));
}

void tst_DirectorySynchronizerMirror::filter()
{
    SpiedSynchronizer synchronizer;
    QStringList asked;
    synchronizer.setFilter([&](const QString& path) {
        asked.append(path);
        return path != QLatin1String("lockfile") && path != QLatin1String("drafts");
    });
    QVERIFY(synchronizer.startWatcher(mSource, mDestination));
    writeFile(mSource + QStringLiteral("/lockfile"));
    writeFile(mSource + QStringLiteral("/drafts/a/b"));
    writeFile(mSource + QStringLiteral("/x/lockfile"));
    QTRY_COMPARE(synchronizer.mirrors.count(), 1);
    handleEvents();
    QCOMPARE(treeOf(mDestination),
             QStringList({QStringLiteral("x/"), QStringLiteral("x/lockfile=content")}));
    asked.removeDuplicates();
    asked.sort();
    QCOMPARE(asked,
             QStringList({QStringLiteral("drafts"), QStringLiteral("lockfile"), QStringLiteral("x"),
                          QStringLiteral("x/lockfile")}));
    // What is left out is not removed either.
    mSandbox->file(QStringLiteral("dst/lockfile"), "of the mirror");
    QVERIFY(QFile::remove(mSource + QStringLiteral("/lockfile")));
    QVERIFY(QFile::remove(mSource + QStringLiteral("/x/lockfile")));
    QTRY_COMPARE(synchronizer.removals.count(), 1);
    handleEvents();
    QVERIFY(QFile::exists((*mSandbox)(QStringLiteral("dst/lockfile"))));
    QVERIFY(synchronizer.isEqual());
    QCOMPARE(synchronizer.errors.count(), 0);
    synchronizer.setFilter(nullptr);
    QStringList differences;
    QVERIFY(!synchronizer.isEqual(&differences));
    QCOMPARE(differences, QStringList({QStringLiteral("drafts/a/b"), QStringLiteral("lockfile")}));
}

void tst_DirectorySynchronizerMirror::filterOfFullSync()
{
    for (const char* file : {"lockfile", "a", ".hidden", "drafts/b", "x/lockfile"})
        writeFile(mSource + QLatin1Char('/') + QString::fromLatin1(file));
    mSandbox->file(QStringLiteral("dst/old"));
    DirectorySynchronizer synchronizer;
    synchronizer.setFilter([](const QString& path) {
        return path != QLatin1String("lockfile") && path != QLatin1String("drafts");
    });
    // Also if the source is given by another path.
    QVERIFY(synchronizer.fullSync(mSource + QStringLiteral("/../src/"), mDestination));
    QCOMPARE(treeOf(mDestination),
             QStringList({QStringLiteral(".hidden=content"), QStringLiteral("a=content"),
                          QStringLiteral("x/"), QStringLiteral("x/lockfile=content")}));
}

void tst_DirectorySynchronizerMirror::currentFolderChanges()
{
    // What has the same relative path below another folder is not the mirror.
    const QString source = QStringLiteral("src");
    const QString file = QStringLiteral("src/a");
    const QString mirror = QStringLiteral("dst/a");
    mSandbox->file(file, "new");
    const QString other = mSandbox->file(QStringLiteral("other/dst/a"), "only copy");
    mSandbox->file(QStringLiteral("other/src/a"), "other");
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(mSandbox->root()));
    SpiedSynchronizer synchronizer;
    QVERIFY(synchronizer.startWatcher(source, QStringLiteral("dst")));
    synchronizer.onFileAddedOrModified(file);
    QVERIFY(QDir::setCurrent((*mSandbox)(QStringLiteral("other"))));
    synchronizer.onFileAddedOrModified(file);
    synchronizer.onFileDeleted(file);
    QVERIFY(QDir::setCurrent(before));

    QCOMPARE(synchronizer.mirrors.size(), 1);
    QCOMPARE(synchronizer.removals.size(), 0);
    QCOMPARE(textsOf(synchronizer.errors),
             QStringList({QStringLiteral("unable to copy ") + file,
                          QStringLiteral("unable to remove ") + mirror}));
    const QString reason =
        QStringLiteral("The current folder has changed, and the path is relative to it.");
    QCOMPARE(argumentsOf(synchronizer.failures, 0), QStringList({file, reason}));
    QCOMPARE(argumentsOf(synchronizer.failures, 1), QStringList({mirror, reason}));
    QFile kept(other);
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("only copy"));
}

void tst_DirectorySynchronizerMirror::filterChangesItself()
{
    // The filter that is running stays in force for the path that it was asked about.
    DirectorySynchronizer synchronizer;
    fillAndStart(&synchronizer);
    QStringList asked;
    const QString kept(1000, QLatin1Char('x')); // large, so that the filter is on the heap
    const auto once = [&synchronizer, &asked, kept](const QString& path) {
        synchronizer.setFilter(nullptr);
        asked += path + QString::number(kept.size());
        return true;
    };
    synchronizer.setFilter(once);
    synchronizer.onFileAddedOrModified(mSource + QStringLiteral("/d0/f0"));
    QCOMPARE(asked, QStringList({QStringLiteral("d01000"), QStringLiteral("d0/f01000")}));
    synchronizer.setFilter(once);
    QVERIFY(synchronizer.isEqual());
}

void tst_DirectorySynchronizerMirror::filterDestroysIt()
{
    for (const bool isDeleted : {false, true}) {
        QPointer<DirectorySynchronizer> synchronizer = new DirectorySynchronizer;
        fillAndStart(synchronizer);
        synchronizer->setFilter([&](const QString&) {
            delete synchronizer;
            return true;
        });
        const QString file = mSource + QStringLiteral("/d0/f0");
        if (isDeleted)
            synchronizer->onFileDeleted(file);
        else
            synchronizer->onFileAddedOrModified(file);
        QVERIFY(!synchronizer);
        QVERIFY(QFile::exists(mDestination + QStringLiteral("/d0/f0")));
    }
}

void tst_DirectorySynchronizerMirror::observedFullSync()
{
    for (int i = 0; i < 20; ++i)
        writeFile(mSource + QStringLiteral("/f%1").arg(i), "content");
    DirectorySynchronizer synchronizer;
    QVector<FileUtils::TreeProgress> reports;
    QString error = QStringLiteral("from before");
    QVERIFY(synchronizer.fullSync(
        mSource, mDestination,
        [&](const FileUtils::TreeProgress& progress) {
            reports.append(progress);
            return true;
        },
        &error));
    QCOMPARE(error, QStringLiteral("from before"));
    QVERIFY(!reports.isEmpty());
    QCOMPARE(reports.last().files, 20);
    QCOMPARE(reports.last().bytes, Q_INT64_C(140));
    QCOMPARE(filesBelow(mDestination), filesBelow(mSource));

    LogCapture records;
    QVERIFY(
        !synchronizer.fullSync((*mSandbox)(QStringLiteral("none")), mDestination, nullptr, &error));
    QCOMPARE(
        error,
        QStringLiteral("The folder %1 does not exist").arg((*mSandbox)(QStringLiteral("none"))));
    QCOMPARE(records.lines().last(),
             QStringLiteral("critical orvautils DirectorySynchronizer fullSync: FullSync fail"));
}

void tst_DirectorySynchronizerMirror::cancelledFullSync()
{
    LogCapture records;
    for (int i = 0; i < 20; ++i)
        writeFile(mSource + QStringLiteral("/f%1").arg(i), "content");
    DirectorySynchronizer synchronizer;
    QString error;
    QVERIFY(!synchronizer.fullSync(
        mSource, mDestination, [](const FileUtils::TreeProgress&) { return false; }, &error));
    QCOMPARE(error, QStringLiteral("The operation was cancelled"));
    QVERIFY(filesBelow(mDestination).size() < 20);
}

// A call of the observer ends normally even if it destroys the synchronizer, and with it the
// filter.
void tst_DirectorySynchronizerMirror::observerDestroysIt()
{
    for (const char* name : {"a", "b", "c/d", "e"})
        mSandbox->file(QStringLiteral("src/") + QString::fromLatin1(name));
    QPointer<DirectorySynchronizer> synchronizer = new DirectorySynchronizer;
    const QString left = QStringLiteral("e");
    synchronizer->setFilter([left](const QString& path) { return path != left; });
    const auto destroy = [&](const FileUtils::TreeProgress&) {
        delete synchronizer;
        return true;
    };
    QVERIFY(synchronizer->fullSync(mSource, mDestination, destroy));
    QVERIFY(!synchronizer);
    QCOMPARE(filesBelow(mDestination).keys(),
             QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c/d")}));
}

void tst_DirectorySynchronizerMirror::isEqual()
{
    DirectorySynchronizer synchronizer;
    fillAndStart(&synchronizer);
    synchronizer.stop();
    QStringList differences(QStringLiteral("from before"));
    QVERIFY(synchronizer.isEqual(&differences));
    QVERIFY(synchronizer.isEqual());
    QCOMPARE(differences.size(), 1);

    writeFile(mSource + QStringLiteral("/d0/f0"), "x"); // same size as before
    writeFile(mSource + QStringLiteral("/d1/f1"), "longer");
    QVERIFY(QFile::remove(mDestination + QStringLiteral("/d2/f2")));
    writeFile(mDestination + QStringLiteral("/a/more"));
    writeFile(mDestination + QStringLiteral("/.hidden"));
    writeFile(mSource + QStringLiteral("/.hidden too"));
    makeFolder(mSource + QStringLiteral("/empty"));
    QVERIFY(!synchronizer.isEqual(&differences));
    QCOMPARE(
        differences,
        QStringList({QStringLiteral("from before"), QStringLiteral("a/more"),
                     QStringLiteral("d0/f0"), QStringLiteral("d1/f1"), QStringLiteral("d2/f2")}));
    QVERIFY(!synchronizer.isEqual());
}

void tst_DirectorySynchronizerMirror::isEqualMeetsAPipe()
{
    SKIP_ON_WINDOWS("there are no pipes in folders there");
    // Opening it would wait for a writer.
    DirectorySynchronizer synchronizer;
    fillAndStart(&synchronizer);
    synchronizer.stop();
    QVERIFY(QFile::remove(mDestination + QStringLiteral("/d2/f2")));
    mSandbox->pipe(QStringLiteral("dst/d2/f2"));
    QStringList differences;
    QVERIFY(!synchronizer.isEqual(&differences));
    QCOMPARE(differences, QStringList(QStringLiteral("d2/f2")));
}

void tst_DirectorySynchronizerMirror::isEqualNeedsFolders_data()
{
    const auto row = columns<QString>("unreadable");
    row("source", "src/x");
    row("destination", "dst/x");
}

void tst_DirectorySynchronizerMirror::isEqualNeedsFolders()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    QFETCH(QString, unreadable);
    DirectorySynchronizer synchronizer;
    QVERIFY(!synchronizer.isEqual());
    mSandbox->file(QStringLiteral("src/x/a"));
    fillAndStart(&synchronizer);
    mSandbox->lock((*mSandbox)(unreadable), 0);
    QStringList differences;
    {
        const OrdinaryUser user;
        QVERIFY(!synchronizer.isEqual(&differences));
    }
    // The folder that cannot be read, and the file that seems to be missing from the source.
    QCOMPARE(differences, QStringList({QStringLiteral("x"), QStringLiteral("x/a")}));
}

void tst_DirectorySynchronizerMirror::stops()
{
    SpiedSynchronizer synchronizer;
    fillAndStart(&synchronizer);
    QVERIFY(QMetaObject::invokeMethod(&synchronizer, "stop"));
    writeFile(mSource + QStringLiteral("/new"));
    handleEvents();
    QCOMPARE(synchronizer.mirrors.count(), 0);
    QVERIFY(synchronizer.startWatcher(mSource, mDestination));
    writeFile(mSource + QStringLiteral("/newer"));
    QTRY_COMPARE(synchronizer.mirrors.count(), 1);
}

void tst_DirectorySynchronizerMirror::storms_data()
{
    const auto row = columns<QString>("step");
    row("renamed over each other",
        "mv d0/f0 d0/f3; echo $i > d0/f0; mv d1/f1 d0/f0; echo $i > d1/f1");
    row("written beside and renamed", "echo $i > .t; mv .t d0/f0; echo $i > d2/t; mv d2/t d1/f1");
    row("folders that change places", "mv d0 d9; mv d1 d0; mv d9 d1; echo $i > d0/f$((i%5))");
    row("files and folders",
        "rm -rf e; echo $i > e; rm e; mkdir e; echo $i > e/f; mv e d0/e$((i%3))x "
        "2>/dev/null; rm -rf d0/e$((i%3))x; mkdir -p e");
}

// The mirror ends up like the source, whatever is renamed and however fast.
void tst_DirectorySynchronizerMirror::storms()
{
    SKIP_ON_WINDOWS("there is no shell");
    QFETCH(QString, step);
    LogCapture quiet; // files that vanish before they are copied are logged
    int equal = 0;
    QStringList differences;
    const int storms = stormCount();
    for (int storm = 0; storm < storms; ++storm) {
        init();
        DirectorySynchronizer synchronizer;
        settleQuickly(synchronizer);
        fillAndStart(&synchronizer);
        QProcess process;
        process.start(QStringLiteral("sh"),
                      {QStringLiteral("-c"),
                       QStringLiteral("cd \"$0\" && i=0; while [ $i -lt 60 ]; do %1; i=$((i+1)); "
                                      "done")
                           .arg(step),
                       mSource});
        QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 60000);
        QSignalSpy settled(synchronizer.findChild<DirectoryWatcher*>(), &DirectoryWatcher::settled);
        QTRY_VERIFY_WITH_TIMEOUT(settled.count() > 0, 20000);
        equal += synchronizer.isEqual(&differences);
    }
    mFigures.append(QStringLiteral("storms (%1): the mirror equals the source in %2 of %3 runs")
                        .arg(QLatin1String(QTest::currentDataTag()))
                        .arg(equal)
                        .arg(storms));
    QVERIFY2(equal == storms, qPrintable(differences.join(QLatin1Char('\n'))));
}

// Each copy keeps the receiver busy while the tree grows.
void tst_DirectorySynchronizerMirror::slowReceiver()
{
    SKIP_ON_WINDOWS("there is no shell");
    LogCapture quiet;
    int equal = 0;
    const int runs = stormCount();
    for (int run = 0; run < runs; ++run) {
        init();
        SpiedSynchronizer synchronizer;
        settleQuickly(synchronizer);
        fillAndStart(&synchronizer);
        connect(&synchronizer, &DirectorySynchronizer::mirrored, [] { QThread::msleep(40); });
        QProcess process;
        process.start(QStringLiteral("sh"),
                      {QStringLiteral("-c"),
                       QStringLiteral("cd \"$0\" && for i in 1 2 3; do mkdir -p n$i/s/t; echo $i > "
                                      "n$i/a; sleep 0.03; echo $i > n$i/s/b; sleep 0.03; echo $i > "
                                      "n$i/s/t/c; mkdir n$i/u; echo $i > n$i/u/d; done"),
                       mSource});
        QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 60000);
        QSignalSpy settled(synchronizer.findChild<DirectoryWatcher*>(), &DirectoryWatcher::settled);
        QTRY_VERIFY_WITH_TIMEOUT(settled.count() > 0, 20000);
        equal += synchronizer.isEqual();
    }
    mFigures.append(QStringLiteral("slow receiver: the mirror equals the source in %1 of %2 runs")
                        .arg(equal)
                        .arg(runs));
    QCOMPARE(equal, runs);
}

void tst_DirectorySynchronizerMirror::readersMeetWholeFiles()
{
    const QString file = mSource + QStringLiteral("/file");
    const QString mirror = mDestination + QStringLiteral("/file");
    writeFile(file, versionOf(0));
    SpiedSynchronizer synchronizer;
    fillAndStart(&synchronizer);
    std::atomic<bool> isOver(false);
    std::atomic<int> whole(0);
    std::atomic<int> broken(0);
    Worker reader(&isOver, [&] {
        while (!isOver) {
            const QByteArray content = contentOf(mirror);
#ifdef Q_OS_WIN
            // On Windows a file cannot be opened while it is replaced, nor replaced while it is
            // open.
            QThread::msleep(2);
            if (content == "(cannot be read)")
                continue;
#endif
            ++(isVersion(content) ? whole : broken);
        }
    });
    for (int version = 1; version <= 40; ++version) {
        writeFile(mSource + QStringLiteral("/.fresh"), versionOf(version));
        renameTo(mSource + QStringLiteral("/.fresh"), file);
        QTRY_VERIFY(synchronizer.mirrors.count() >= version);
    }
    reader.stop();
    QCOMPARE(broken.load(), 0);
    QVERIFY(whole > 0);
    QTRY_VERIFY(synchronizer.isEqual());
    // No other file is left next to it.
    QCOMPARE(QDir(mDestination).entryList(QDir::Files | QDir::Hidden),
             QStringList(QStringLiteral("file")));
}

void tst_DirectorySynchronizerMirror::killedWhileCopying()
{
    KillMoments moments;
    const QString file = mSource + QStringLiteral("/file");
    const QString mirror = mDestination + QStringLiteral("/file");
    writeFile(file, versionOf(0));
    writeFile(mirror, versionOf(0));
    const int kills = KillMoments::countInEach(1);
    int version = 0;
    int mixtures = 0;
    int changed = 0;
    for (int kill = 0; kill < kills; ++kill) {
        qputenv("ORVAUTILS_KILLS_PATH", QFile::encodeName(mSandbox->root()));
        QProcess process;
        process.start(
            QCoreApplication::applicationFilePath(),
            {QStringLiteral("--child-role"), QStringLiteral("mirrors until it is killed")});
        QVERIFY(process.waitForStarted());
        while (!process.canReadLine() && process.waitForReadyRead()) { }
        QCOMPARE(process.readLine().trimmed(), QByteArray("ready"));
        const QByteArray before = contentOf(mirror);
        for (int change = 0; change < 3; ++change) {
            writeFile(mSource + QStringLiteral("/.fresh"), versionOf(++version));
            // Windows refuses it while the file is being copied.
            bool isRenamed = false;
            QTRY_VERIFY(
                (isRenamed = isRenamed || renameOver(mSource + QStringLiteral("/.fresh"), file)));
        }
        moments.wait(3000);
        process.kill();
        QVERIFY(process.waitForFinished());
        const QByteArray after = contentOf(mirror);
        mixtures += !isVersion(after);
        changed += after != before;
    }
    const int left = int(QDir(mDestination).entryList(QDir::Files | QDir::Hidden).size() - 1);
    mFigures.append(QStringLiteral("kills: %1 of a mirror, %2 of them after a copy, seed %3; "
                                   "mixtures: %4; copies left beside the mirror: %5")
                        .arg(kills)
                        .arg(changed)
                        .arg(moments.seed())
                        .arg(mixtures)
                        .arg(left));
    QCOMPARE(mixtures, 0);
}

void tst_DirectorySynchronizerMirror::cleanupTestCase()
{
    for (const QString& figure : qAsConst(mFigures))
        qInfo("%s", qPrintable(figure));
}

int main(int argc, char** argv)
{
    if (const ChildRole role =
            childRole(argc, argv, {{"mirrors until it is killed", mirrorUntilKilled}}))
        return role();
    KillMoments::allowTime();
    QCoreApplication application(argc, argv);
    tst_DirectorySynchronizerMirror test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_DirectorySynchronizerMirror.moc"

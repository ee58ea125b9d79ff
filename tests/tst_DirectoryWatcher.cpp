// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DirectoryWatcher.h"

#include "Columns.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "Sandbox.h"
#include "SpiedSignals.h"
#include "SystemCalls.h"

#include <QDir>
#include <QFile>
#include <QFileSystemWatcher>
#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

namespace {

QStringList pathsOf(const QSignalSpy& spy)
{
    QStringList paths = textsOf(spy);
    paths.sort();
    return paths;
}

// The records of the library: the platform logs a warning of its own for each refusal.
QStringList ownLines(const LogCapture& log)
{
    return log.lines().filter(QStringLiteral(" orvautils "));
}

using Counts = QPair<int, int>; // numbers of files added and deleted

/// A watcher with all its signals.
class SpiedWatcher : public DirectoryWatcher
{
public:
    void settle() { ::settle({&added, &modified, &deleted}); }

    Counts settledCounts()
    {
        settle();
        return Counts(added.count(), deleted.count());
    }

    QSignalSpy added{this, &DirectoryWatcher::addedFiles};
    QSignalSpy modified{this, &DirectoryWatcher::modifiedFile};
    QSignalSpy deleted{this, &DirectoryWatcher::deletedFile};
};

} // namespace

class tst_DirectoryWatcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void metaObject();
    void idleUntilSetPath();
    void missingRoot();
    void signalsStayBlockedOrNot_data();
    void signalsStayBlockedOrNot();
    void initialScanIsSilent();
    void addModifyDelete();
    void newFileInSubfolder();
    void hiddenFiles();
    void renamedFile();
    void replacedByRename();
    void deletedAndMadeAgain();
    void newFolderWithFiles();
    void renamedFolder();
    void removedTree();
    void folderMadeAgain();
    void rootVanishes();
    void rootWithSlashOrRelative_data();
    void rootWithSlashOrRelative();
    void addDirOfMissingFolder();
    void addDirOfAnotherTree();
    void addDirReportsWhatIsNew();
    void anotherPath();
    void anotherPathFromReceiver();
    void deletedByReceiver();
    void deletedAtOnceByReceiver_data();
    void deletedAtOnceByReceiver();
    void deletedAtOnceInSecondLook_data();
    void deletedAtOnceInSecondLook();
    void anotherPathInSecondLook();
    void newsByReceiverInSecondLook();
    void destroyedBeforeSecondLook();
    void slotsByHand();
    void manyFilesInOneFolder();
    void manyFoldersAsATree();
    void churn();
    void refusedFile();
    void refusedFolder();
    void limitOfThePlatform();

private:
    void makeNestedFiles() const;
    QString path(const QString& name) const { return mRoot + QLatin1Char('/') + name; }

    QScopedPointer<Sandbox> mDir;
    QString mRoot;
};

void tst_DirectoryWatcher::init()
{
    mDir.reset(new Sandbox);
    mRoot = mDir->folder(QStringLiteral("root"));
}

/// "x/a" and "x/y/b".
void tst_DirectoryWatcher::makeNestedFiles() const
{
    makeFolder(path(QStringLiteral("x/y")));
    writeFile(path(QStringLiteral("x/a")), "a");
    writeFile(path(QStringLiteral("x/y/b")), "b");
}

/// The order is part of the binary interface: connections may be made by number.
void tst_DirectoryWatcher::metaObject()
{
    QCOMPARE(
        ownMethods(DirectoryWatcher::staticMetaObject),
        QStringList({QStringLiteral("signal deletedFile(QString)"),
                     QStringLiteral("signal addedFiles(QString)"),
                     QStringLiteral("signal modifiedFile(QString)"),
                     QStringLiteral("signal unwatched(QStringList,QString)"),
                     QStringLiteral("signal settled()"), QStringLiteral("slot onDirMod(QString)"),
                     QStringLiteral("slot onFilemod(QString)"), QStringLiteral("slot stop()")}));
}

void tst_DirectoryWatcher::idleUntilSetPath()
{
    LogCapture log;
    QObject parent;
    DirectoryWatcher* watcher = new DirectoryWatcher(&parent);
    QCOMPARE(watcher->parent(), &parent);
    QCOMPARE(watcher->findChildren<QFileSystemWatcher*>().size(), 0);
    QVERIFY(!watcher->addDir(mRoot));
    QVERIFY(watcher->setPath(mRoot));
    QCOMPARE(watcher->findChildren<QFileSystemWatcher*>().size(), 1);
    QCOMPARE(log.lines(), QStringList());
}

void tst_DirectoryWatcher::missingRoot()
{
    LogCapture log;
    DirectoryWatcher watcher;
    QVERIFY(!watcher.setPath(path(QStringLiteral("missing"))));
    QVERIFY(!watcher.signalsBlocked());
    QCOMPARE(
        log.lines(),
        QStringList(QStringLiteral("critical orvautils DirectoryWatcher setPath: Wrong path")));
}

void tst_DirectoryWatcher::signalsStayBlockedOrNot_data()
{
    const auto row = columns<bool>("blocked");
    row("blocked", true);
    row("not blocked", false);
}

void tst_DirectoryWatcher::signalsStayBlockedOrNot()
{
    QFETCH(bool, blocked);
    DirectoryWatcher watcher;
    watcher.blockSignals(blocked);
    QVERIFY(watcher.setPath(mRoot));
    QCOMPARE(watcher.signalsBlocked(), blocked);
}

void tst_DirectoryWatcher::initialScanIsSilent()
{
    makeFolder(path(QStringLiteral("sub")));
    writeFile(path(QStringLiteral("a")), "a");
    writeFile(path(QStringLiteral("sub/b")), "b");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    watcher.settle();
    QCOMPARE(watcher.added.count(), 0);
    const auto* platform = watcher.findChild<QFileSystemWatcher*>();
    QStringList files = platform->files();
    files.sort();
    QCOMPARE(files, QStringList({path(QStringLiteral("a")), path(QStringLiteral("sub/b"))}));
    QStringList folders = platform->directories();
    folders.sort();
    QCOMPARE(folders, QStringList({mRoot, path(QStringLiteral("sub"))}));
}

void tst_DirectoryWatcher::addModifyDelete()
{
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    const QStringList file(path(QStringLiteral("a")));

    writeFile(file.at(0), "");
    QTRY_COMPARE(pathsOf(watcher.added), file);
    QCOMPARE(watcher.settledCounts(), Counts(1, 0));
    watcher.modified.clear();

    writeFile(file.at(0), "content");
    QTRY_VERIFY(watcher.modified.count() > 0);
    QCOMPARE(watcher.modified.at(0).at(0).toString(), file.at(0));
    QCOMPARE(watcher.deleted.count(), 0);

    QVERIFY(QFile::remove(file.at(0)));
    QTRY_COMPARE(pathsOf(watcher.deleted), file);
    QCOMPARE(watcher.settledCounts(), Counts(1, 1));
}

void tst_DirectoryWatcher::newFileInSubfolder()
{
    makeFolder(path(QStringLiteral("x/y")));
    writeFile(path(QStringLiteral("x/y/old")), "old");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));

    writeFile(path(QStringLiteral("x/y/new")), "new");
    QTRY_COMPARE(pathsOf(watcher.added), QStringList(path(QStringLiteral("x/y/new"))));
    writeFile(path(QStringLiteral("x/y/old")), "changed");
    QTRY_VERIFY(pathsOf(watcher.modified).contains(path(QStringLiteral("x/y/old"))));
    QVERIFY(QFile::remove(path(QStringLiteral("x/y/old"))));
    QTRY_COMPARE(pathsOf(watcher.deleted), QStringList(path(QStringLiteral("x/y/old"))));
    QCOMPARE(watcher.settledCounts(), Counts(1, 1));
}

void tst_DirectoryWatcher::hiddenFiles()
{
    writeFile(path(QStringLiteral(".old")), "x");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    writeFile(path(QStringLiteral(".new")), "x");
    makeFolder(path(QStringLiteral(".folder")));
    writeFile(path(QStringLiteral(".folder/file")), "x");
    writeFile(path(QStringLiteral(".old")), "y");
    QVERIFY(QFile::remove(path(QStringLiteral(".old"))));
    writeFile(path(QStringLiteral("visible")), "x");
    QTRY_COMPARE(pathsOf(watcher.added), QStringList(path(QStringLiteral("visible"))));
    QCOMPARE(watcher.settledCounts(), Counts(1, 0));
    QVERIFY(!pathsOf(watcher.modified).contains(path(QStringLiteral(".old"))));
}

void tst_DirectoryWatcher::renamedFile()
{
    writeFile(path(QStringLiteral("a")), "a");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(QFile::rename(path(QStringLiteral("a")), path(QStringLiteral("b"))));
    QTRY_COMPARE(pathsOf(watcher.added), QStringList(path(QStringLiteral("b"))));
    QTRY_COMPARE(pathsOf(watcher.deleted), QStringList(path(QStringLiteral("a"))));
    watcher.settle();
    watcher.modified.clear();
    writeFile(path(QStringLiteral("b")), "changed");
    QTRY_VERIFY(pathsOf(watcher.modified).contains(path(QStringLiteral("b"))));
    QCOMPARE(watcher.settledCounts(), Counts(1, 1));
}

// The way in which editors save.
void tst_DirectoryWatcher::replacedByRename()
{
    writeFile(path(QStringLiteral("a")), "a");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    for (int i = 0; i < 3; ++i) {
        writeFile(path(QStringLiteral(".a.new")), QByteArray::number(i));
        QVERIFY(renameOver(path(QStringLiteral(".a.new")), path(QStringLiteral("a"))));
        QTRY_VERIFY(watcher.modified.count() > 0);
        watcher.settle();
        watcher.modified.clear();
    }
    // The new file of that name is watched.
    writeFile(path(QStringLiteral("a")), "in place");
    QTRY_VERIFY(watcher.modified.count() > 0);
    QCOMPARE(pathsOf(watcher.modified).at(0), path(QStringLiteral("a")));
    QCOMPARE(watcher.deleted.count(), 0);
}

void tst_DirectoryWatcher::deletedAndMadeAgain()
{
    writeFile(path(QStringLiteral("a")), "a");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    for (int i = 1; i < 4; ++i) {
        QVERIFY(QFile::remove(path(QStringLiteral("a"))));
        QTRY_COMPARE(watcher.deleted.count(), i);
        writeFile(path(QStringLiteral("a")), "again");
        QTRY_COMPARE(watcher.added.count(), i);
        QCOMPARE(watcher.settledCounts(), Counts(i, i));
    }
    watcher.settle();
    watcher.modified.clear();
    writeFile(path(QStringLiteral("a")), "changed");
    QTRY_VERIFY(watcher.modified.count() > 0);

#ifndef Q_OS_WIN // where an open file cannot be removed
    // Another program has the file open when it is removed.
    QFile open(path(QStringLiteral("a")));
    QVERIFY(open.open(QIODevice::ReadOnly));
    QVERIFY(QFile::remove(path(QStringLiteral("a"))));
    QTRY_COMPARE(watcher.deleted.count(), 4);
    writeFile(path(QStringLiteral("a")), "again");
    QTRY_COMPARE(watcher.added.count(), 4);
    open.close();
    QCOMPARE(watcher.settledCounts(), Counts(4, 4));
#endif
}

void tst_DirectoryWatcher::newFolderWithFiles()
{
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    makeNestedFiles();
    const QStringList both({path(QStringLiteral("x/a")), path(QStringLiteral("x/y/b"))});
    QTRY_COMPARE(pathsOf(watcher.added), both);
    // The new folders are watched too.
    writeFile(path(QStringLiteral("x/y/c")), "c");
    QTRY_COMPARE(pathsOf(watcher.added), both + QStringList(path(QStringLiteral("x/y/c"))));
    watcher.settle();
    QCOMPARE(watcher.added.count(), 3);
}

void tst_DirectoryWatcher::renamedFolder()
{
    makeNestedFiles();
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(QDir().rename(path(QStringLiteral("x")), path(QStringLiteral("z"))));
    QTRY_COMPARE(pathsOf(watcher.added),
                 QStringList({path(QStringLiteral("z/a")), path(QStringLiteral("z/y/b"))}));
    QTRY_COMPARE(pathsOf(watcher.deleted),
                 QStringList({path(QStringLiteral("x/a")), path(QStringLiteral("x/y/b"))}));
    QCOMPARE(watcher.settledCounts(), Counts(2, 2));

    watcher.modified.clear();
    writeFile(path(QStringLiteral("z/y/b")), "changed");
    QTRY_VERIFY(pathsOf(watcher.modified).contains(path(QStringLiteral("z/y/b"))));
    writeFile(path(QStringLiteral("z/y/c")), "new");
    QTRY_VERIFY(pathsOf(watcher.added).contains(path(QStringLiteral("z/y/c"))));
    QCOMPARE(watcher.settledCounts(), Counts(3, 2));
}

void tst_DirectoryWatcher::removedTree()
{
    SKIP_ON_WINDOWS("a watched folder stays until its watcher knows");
    makeNestedFiles();
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(QDir(path(QStringLiteral("x"))).removeRecursively());
    QTRY_COMPARE(pathsOf(watcher.deleted),
                 QStringList({path(QStringLiteral("x/a")), path(QStringLiteral("x/y/b"))}));
    QCOMPARE(watcher.settledCounts(), Counts(0, 2));
}

void tst_DirectoryWatcher::folderMadeAgain()
{
    SKIP_ON_WINDOWS("a watched folder stays until its watcher knows");
    makeFolder(path(QStringLiteral("x")));
    writeFile(path(QStringLiteral("x/a")), "a");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    for (int i = 1; i < 4; ++i) {
        QVERIFY(QDir(path(QStringLiteral("x"))).removeRecursively());
        if (i != 2) // one of them without letting the watcher notice that it is gone
            QTRY_COMPARE(watcher.deleted.count(), i);
        makeFolder(path(QStringLiteral("x")));
        watcher.settle();
        writeFile(path(QStringLiteral("x/a")), "again");
        QTRY_COMPARE(watcher.added.count(), i);
        QCOMPARE(watcher.settledCounts(), Counts(i, i));
    }
}

void tst_DirectoryWatcher::rootVanishes()
{
    writeFile(path(QStringLiteral("a")), "a");
    LogCapture log;
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(QDir(mRoot).removeRecursively());
    QTRY_COMPARE(pathsOf(watcher.deleted), QStringList(path(QStringLiteral("a"))));
    QCOMPARE(watcher.settledCounts(), Counts(0, 1));
    QCOMPARE(log.lines(), QStringList());
}

void tst_DirectoryWatcher::rootWithSlashOrRelative_data()
{
    const auto row = columns<QString, bool>("suffix", "relative");
    row("with slash", "/", false);
    row("relative", QString(), true);
    row("relative with slash", "/", true);
}

void tst_DirectoryWatcher::rootWithSlashOrRelative()
{
    QFETCH(QString, suffix);
    QFETCH(bool, relative);
    const QString former = QDir::currentPath();
    QVERIFY(QDir::setCurrent(mDir->root()));
    makeFolder(path(QStringLiteral("sub")));
    writeFile(path(QStringLiteral("sub/old")), "old");
    SpiedWatcher watcher;
    const QString root = relative ? QStringLiteral("root") : mRoot;
    QVERIFY(watcher.setPath(root + suffix));
    writeFile(path(QStringLiteral("a")), "a");
    writeFile(path(QStringLiteral("sub/b")), "b");
    QTRY_COMPARE(pathsOf(watcher.added),
                 QStringList({root + QStringLiteral("/a"), root + QStringLiteral("/sub/b")}));
    watcher.settle();
    QCOMPARE(watcher.added.count(), 2);
    QVERIFY(QDir::setCurrent(former));
}

void tst_DirectoryWatcher::addDirOfMissingFolder()
{
    LogCapture log;
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(watcher.addDir(path(QStringLiteral("missing"))));
    QCOMPARE(watcher.added.count(), 0);
    QCOMPARE(log.lines(), QStringList());
}

void tst_DirectoryWatcher::addDirOfAnotherTree()
{
    const QString other = mDir->root() + QStringLiteral("/other");
    makeFolder(other + QStringLiteral("/sub"));
    writeFile(other + QStringLiteral("/a"), "a");
    writeFile(other + QStringLiteral("/sub/b"), "b");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(watcher.addDir(other));
    QCOMPARE(pathsOf(watcher.added),
             QStringList({other + QStringLiteral("/a"), other + QStringLiteral("/sub/b")}));
    writeFile(other + QStringLiteral("/sub/c"), "c");
    QTRY_COMPARE(watcher.added.count(), 3);
}

void tst_DirectoryWatcher::addDirReportsWhatIsNew()
{
    writeFile(path(QStringLiteral("old")), "old");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(watcher.addDir(mRoot));
    QCOMPARE(watcher.added.count(), 0);
    // Before the event loop runs, so that only this call can have noticed it.
    writeFile(path(QStringLiteral("new")), "new");
    QVERIFY(watcher.addDir(mRoot));
    QCOMPARE(pathsOf(watcher.added), QStringList(path(QStringLiteral("new"))));
    QCOMPARE(watcher.settledCounts(), Counts(1, 0));
}

void tst_DirectoryWatcher::anotherPath()
{
    const QString other = mDir->root() + QStringLiteral("/other");
    makeFolder(other);
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(watcher.setPath(other));
    QCOMPARE(watcher.findChildren<QFileSystemWatcher*>().size(), 1);
    writeFile(path(QStringLiteral("a")), "a");
    writeFile(other + QStringLiteral("/b"), "b");
    QTRY_COMPARE(pathsOf(watcher.added), QStringList(other + QStringLiteral("/b")));
    QCOMPARE(watcher.settledCounts(), Counts(1, 0));
}

void tst_DirectoryWatcher::anotherPathFromReceiver()
{
    const QString other = mDir->root() + QStringLiteral("/other");
    makeFolder(other);
    DirectoryWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    int calls = 0;
    connect(&watcher, &DirectoryWatcher::addedFiles, &watcher, [&](const QString&) {
        if (++calls == 1)
            watcher.setPath(other);
    });
    writeFile(path(QStringLiteral("a")), "a");
    writeFile(path(QStringLiteral("b")), "b");
    QTRY_COMPARE(calls, 1);
    handleEvents();
    QCOMPARE(calls, 1);
    writeFile(other + QStringLiteral("/c"), "c");
    QTRY_COMPARE(calls, 2);
    QCOMPARE(watcher.findChildren<QFileSystemWatcher*>().size(), 1);
}

void tst_DirectoryWatcher::deletedByReceiver()
{
    for (int i = 0; i < 3; ++i)
        writeFile(path(QString::number(i)), "x");
    for (const bool onAdd : {true, false}) {
        auto* watcher = new DirectoryWatcher;
        QVERIFY(watcher->setPath(mRoot));
        bool called = false;
        const auto die = [&](const QString&) {
            called = true;
            watcher->deleteLater();
        };
        connect(watcher, &DirectoryWatcher::addedFiles, this, die);
        connect(watcher, &DirectoryWatcher::deletedFile, this, die);
        const QPointer<DirectoryWatcher> guard(watcher);
        if (onAdd)
            writeFile(path(QStringLiteral("new")), "x");
        else
            QVERIFY(QFile::remove(path(QStringLiteral("new"))));
        QTRY_VERIFY(guard.isNull());
        QVERIFY(called);
    }
}

void tst_DirectoryWatcher::deletedAtOnceByReceiver_data()
{
    // byPlatform: otherwise the slot is called directly
    const auto row = columns<bool, QString>("byPlatform", "change");
    for (const bool byPlatform : {true, false}) {
        for (const char* change : {"add", "modify", "remove"}) {
            row((QByteArray(change) + (byPlatform ? "" : ", by hand")).constData(), byPlatform,
                QString::fromLatin1(change));
        }
    }
}

void tst_DirectoryWatcher::deletedAtOnceByReceiver()
{
    QFETCH(bool, byPlatform);
    QFETCH(QString, change);
    const bool adds = change == QLatin1String("add");
    // Several changes, so that the platform still has notifications when the watcher is destroyed.
    QStringList files;
    for (int i = 0; i < 5; ++i)
        files.append(path(QString::number(i)));
    makeFolder(path(QStringLiteral("sub")));
    if (!adds) {
        for (const QString& file : qAsConst(files))
            writeFile(file, "x");
    }
    auto* watcher = new DirectoryWatcher;
    QVERIFY(watcher->setPath(mRoot));
    if (!byPlatform)
        watcher->findChild<QFileSystemWatcher*>()->blockSignals(true);
    const QPointer<DirectoryWatcher> guard(watcher);
    int calls = 0;
    const auto destroy = [&] {
        ++calls;
        delete watcher;
    };
    connect(watcher, &DirectoryWatcher::addedFiles, this, destroy);
    connect(watcher, &DirectoryWatcher::modifiedFile, this, destroy);
    connect(watcher, &DirectoryWatcher::deletedFile, this, destroy);
    for (const QString& file : qAsConst(files)) {
        if (change == QLatin1String("remove"))
            QVERIFY(QFile::remove(file));
        else
            writeFile(file, "content");
    }
    writeFile(path(QStringLiteral("sub/new")), "x");
    if (!byPlatform && adds)
        watcher->onDirMod(mRoot);
    else if (!byPlatform)
        watcher->onFilemod(files.first());
    QTRY_VERIFY(guard.isNull());
    handleEvents();
    QCOMPARE(calls, 1);
}

void tst_DirectoryWatcher::deletedAtOnceInSecondLook_data()
{
    const auto row = columns<bool>("adds");
    row("new file", true);
    row("vanished file", false);
}

void tst_DirectoryWatcher::deletedAtOnceInSecondLook()
{
    QFETCH(bool, adds);
    writeFile(path(QStringLiteral("a")), "a");
    writeFile(path(QStringLiteral("b")), "b");
    auto* watcher = new DirectoryWatcher;
    QVERIFY(watcher->setPath(mRoot));
    // The platform does not report what happens now: the second pass has to find it.
    watcher->findChild<QFileSystemWatcher*>()->blockSignals(true);
    const QPointer<DirectoryWatcher> guard(watcher);
    QStringList calls;
    const auto destroy = [&](const QString& file) {
        calls.append(file);
        delete watcher;
    };
    connect(watcher, adds ? &DirectoryWatcher::addedFiles : &DirectoryWatcher::deletedFile, this,
            destroy);
    watcher->onDirMod(mRoot);
    if (adds) {
        writeFile(path(QStringLiteral("c")), "c");
        writeFile(path(QStringLiteral("d")), "d");
    } else {
        QVERIFY(QFile::remove(path(QStringLiteral("a"))));
        QVERIFY(QFile::remove(path(QStringLiteral("b"))));
    }
    QVERIFY(!guard.isNull());
    QTRY_VERIFY(guard.isNull());
    handleEvents();
    QCOMPARE(calls.size(), 1);
}

void tst_DirectoryWatcher::anotherPathInSecondLook()
{
    const QString other = mDir->root() + QStringLiteral("/other");
    makeFolder(other);
    for (const bool adds : {true, false}) {
        writeFile(path(QStringLiteral("a")), "a");
        writeFile(path(QStringLiteral("b")), "b");
        DirectoryWatcher watcher;
        QVERIFY(watcher.setPath(mRoot));
        watcher.findChild<QFileSystemWatcher*>()->blockSignals(true);
        QStringList calls;
        const auto turnAway = [&](const QString& file) {
            calls.append(file);
            watcher.setPath(other);
        };
        connect(&watcher, adds ? &DirectoryWatcher::addedFiles : &DirectoryWatcher::deletedFile,
                this, turnAway);
        watcher.onDirMod(mRoot);
        if (adds) {
            writeFile(path(QStringLiteral("c")), "c");
            writeFile(path(QStringLiteral("d")), "d");
        } else {
            QVERIFY(QFile::remove(path(QStringLiteral("a"))));
            QVERIFY(QFile::remove(path(QStringLiteral("b"))));
        }
        QTRY_VERIFY(!calls.isEmpty());
        handleEvents();
        QCOMPARE(calls.size(), 1); // the files of the former tree do not matter any more
    }
}

void tst_DirectoryWatcher::newsByReceiverInSecondLook()
{
    const QStringList files = {path(QStringLiteral("a")), path(QStringLiteral("b"))};
    for (const QString& file : files)
        writeFile(file, "x");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    watcher.findChild<QFileSystemWatcher*>()->blockSignals(true);
    connect(&watcher, &DirectoryWatcher::deletedFile, &watcher, [&](const QString& file) {
        if (watcher.deleted.count() == 1)
            watcher.onFilemod(file == files.at(0) ? files.at(1) : files.at(0));
    });
    watcher.onDirMod(mRoot);
    for (const QString& file : files)
        QVERIFY(QFile::remove(file));
    QTRY_COMPARE(watcher.deleted.count(), 2);
    handleEvents();
    QCOMPARE(pathsOf(watcher.deleted), files);
}

void tst_DirectoryWatcher::destroyedBeforeSecondLook()
{
    writeFile(path(QStringLiteral("a")), "a");
    {
        SpiedWatcher watcher;
        QVERIFY(watcher.setPath(mRoot));
        watcher.onDirMod(mRoot);
    }
    handleEvents();

    // And the pass applies to the path that it was asked for.
    const QString other = mDir->root() + QStringLiteral("/other");
    makeFolder(other);
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    watcher.onDirMod(mRoot);
    QVERIFY(watcher.setPath(other));
    writeFile(path(QStringLiteral("b")), "b");
    watcher.settle();
    QCOMPARE(watcher.added.count(), 0);
}

void tst_DirectoryWatcher::slotsByHand()
{
    writeFile(path(QStringLiteral("a")), "a");
    SpiedWatcher watcher;
    // Also before anything can be watched.
    QVERIFY(QMetaObject::invokeMethod(&watcher, "onFilemod",
                                      Q_ARG(QString, path(QStringLiteral("a")))));
    QCOMPARE(pathsOf(watcher.modified), QStringList(path(QStringLiteral("a"))));
    QVERIFY(QMetaObject::invokeMethod(&watcher, "onFilemod",
                                      Q_ARG(QString, path(QStringLiteral("missing")))));
    QCOMPARE(pathsOf(watcher.deleted), QStringList(path(QStringLiteral("missing"))));
    QVERIFY(QMetaObject::invokeMethod(&watcher, "onDirMod", Q_ARG(QString, mRoot)));
    QVERIFY(QMetaObject::invokeMethod(&watcher, "onDirMod",
                                      Q_ARG(QString, path(QStringLiteral("missing")))));
    handleEvents();

    // At once, and again in the next turn of the event loop.
    QVERIFY(watcher.setPath(mRoot));
    QCOMPARE(watcher.added.count(), 0);
    writeFile(path(QStringLiteral("b")), "b");
    watcher.onDirMod(mRoot);
    QCOMPARE(pathsOf(watcher.added), QStringList(path(QStringLiteral("b"))));
    writeFile(path(QStringLiteral("c")), "c");
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(pathsOf(watcher.added),
             QStringList({path(QStringLiteral("b")), path(QStringLiteral("c"))}));
}

void tst_DirectoryWatcher::manyFilesInOneFolder()
{
    SKIP_ON_WINDOWS("there is no shell");
    const int count = 2000;
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    // Made by another process, so that they appear while the watcher is busy.
    QProcess maker;
    maker.start(QStringLiteral("sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("cd \"$0\" && i=0; while [ $i -lt %1 ]; do echo x > f$i; "
                                "i=$((i+1)); done")
                     .arg(count),
                 mRoot});
    QTRY_COMPARE_WITH_TIMEOUT(maker.state(), QProcess::NotRunning, 60000);
    QTRY_VERIFY_WITH_TIMEOUT(watcher.added.count() >= count, 60000);
    watcher.settle();
    QStringList expected;
    for (int i = 0; i < count; ++i)
        expected.append(path(QStringLiteral("f%1").arg(i)));
    expected.sort();
    QCOMPARE(pathsOf(watcher.added), expected);
}

void tst_DirectoryWatcher::manyFoldersAsATree()
{
    SKIP_ON_WINDOWS("there is no shell");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    // 10 folders with 20 folders each, which hold two files each.
    QProcess maker;
    maker.start(QStringLiteral("sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("cd \"$0\" && for a in 0 1 2 3 4 5 6 7 8 9; do i=0; while [ $i -lt "
                                "20 ]; do mkdir -p $a/$i; echo x > $a/$i/one; echo x > $a/$i/two; "
                                "i=$((i+1)); done; done"),
                 mRoot});
    QTRY_COMPARE_WITH_TIMEOUT(maker.state(), QProcess::NotRunning, 60000);
    QTRY_VERIFY_WITH_TIMEOUT(watcher.added.count() >= 400, 60000);
    watcher.settle();
    QStringList expected;
    for (int a = 0; a < 10; ++a) {
        for (int i = 0; i < 20; ++i) {
            expected.append(path(QStringLiteral("%1/%2/one").arg(a).arg(i)));
            expected.append(path(QStringLiteral("%1/%2/two").arg(a).arg(i)));
        }
    }
    expected.sort();
    QCOMPARE(pathsOf(watcher.added), expected);
}

// Files that come and go while the watcher scans: those that remain are reported exactly once.
void tst_DirectoryWatcher::churn()
{
    SKIP_ON_WINDOWS("there is no shell");
    LogCapture quiet; // a file that vanishes between listing and watching is logged
    DirectoryWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QSet<QString> present;
    bool twice = false;
    connect(&watcher, &DirectoryWatcher::addedFiles, this, [&](const QString& file) {
        twice = twice || present.contains(file);
        present.insert(file);
    });
    connect(&watcher, &DirectoryWatcher::deletedFile, this,
            [&](const QString& file) { present.remove(file); });
    QSignalSpy all(&watcher, &DirectoryWatcher::addedFiles);
    QProcess maker;
    maker.start(QStringLiteral("sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("cd \"$0\" && i=0; while [ $i -lt 300 ]; do d=d$((i%7)); mkdir -p "
                                "$d; echo x > $d/f$i; echo x > t$i; mv t$i k$i; [ $((i%3)) = 0 ] "
                                "&& rm k$i; [ $((i%50)) = 49 ] && mv d0 e$i; i=$((i+1)); done"),
                 mRoot});
    QTRY_COMPARE_WITH_TIMEOUT(maker.state(), QProcess::NotRunning, 60000);
    settle({&all});

    QSet<QString> expected;
    QDirIterator entries(mRoot, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext())
        expected.insert(entries.next());
    QVERIFY(expected.size() > 400);
    QTRY_COMPARE(present.size(), expected.size());
    QCOMPARE(present, expected);
    QVERIFY(!twice);
}

// A file that cannot be read cannot be watched either.
void tst_DirectoryWatcher::refusedFile()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    makeFolder(path(QStringLiteral("sub")));
    for (const char* const name : {"a", "b", "c", "sub/d"})
        writeFile(path(QLatin1String(name)), "x");
    for (const char* const name : {"b", "c"})
        QVERIFY(QFile::setPermissions(path(QLatin1String(name)), QFile::Permissions()));
    LogCapture log;
    SpiedWatcher watcher;
    {
        const OrdinaryUser user;
        QVERIFY(!watcher.setPath(mRoot));
    }
    const QString head = QStringLiteral(
        "critical orvautils DirectoryWatcher addDir: Impossible to add to Watcher : (");
    const QString b = path(QStringLiteral("b"));
    const QString c = path(QStringLiteral("c"));
    const QStringList lines = ownLines(log);
    QCOMPARE(lines.size(), 1);
    // The order is that of the listing.
    QVERIFY2(lines.at(0) == head + b + QStringLiteral(", ") + c + QLatin1Char(')')
                 || lines.at(0) == head + c + QStringLiteral(", ") + b + QLatin1Char(')'),
             qPrintable(lines.at(0)));
    QCOMPARE(watcher.added.count(), 0);
    const auto* platform = watcher.findChild<QFileSystemWatcher*>();
    QCOMPARE(platform->files().size(), 2);
    // Folders are not watched in a pass that failed because of files.
    QCOMPARE(platform->directories(), QStringList(mRoot));

    // With the permission restored the next pass reports these two, which were not watched before.
    for (const QString& file : {b, c})
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
    QVERIFY(watcher.addDir(mRoot));
    QCOMPARE(pathsOf(watcher.added), QStringList({b, c}));
    QCOMPARE(platform->directories().size(), 2);
}

void tst_DirectoryWatcher::refusedFolder()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    makeFolder(path(QStringLiteral("closed")));
    makeFolder(path(QStringLiteral("open")));
    writeFile(path(QStringLiteral("a")), "x");
    QVERIFY(QFile::setPermissions(path(QStringLiteral("closed")), QFile::Permissions()));
    LogCapture log;
    DirectoryWatcher watcher;
    QVERIFY(watcher.setPath(mDir->root() + QStringLiteral("/root")));
    log.take();
    DirectoryWatcher other;
    QSignalSpy added(&other, &DirectoryWatcher::addedFiles);
    makeFolder(mDir->root() + QStringLiteral("/empty"));
    QVERIFY(other.setPath(mDir->root() + QStringLiteral("/empty")));
    {
        const OrdinaryUser user;
        QVERIFY(!other.addDir(mRoot));
    }
    QCOMPARE(ownLines(log),
             QStringList(QStringLiteral("critical orvautils DirectoryWatcher addDir: Impossible to "
                                        "add to Watcher : (%1)")
                             .arg(path(QStringLiteral("closed")))));
    // Files come before folders: they have already been reported.
    QCOMPARE(pathsOf(added), QStringList(path(QStringLiteral("a"))));
    QVERIFY(QFile::setPermissions(path(QStringLiteral("closed")), QFile::Permissions(0x7700)));
}

void tst_DirectoryWatcher::limitOfThePlatform()
{
    QFile limit(QStringLiteral("/proc/sys/fs/inotify/max_user_watches"));
    if (!limit.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        QSKIP("only root on Linux may lower the platform's limit");
    const QByteArray former = limit.readAll();
    QStringList files;
    for (int i = 0; i < 60; ++i) {
        files.append(path(QString::number(i)));
        writeFile(files.last(), "x");
    }

    limit.write("30");
    QFileSystemWatcher plain;
    const bool enforced = !plain.addPaths(files).isEmpty();
    plain.removePaths(plain.files());
    LogCapture log;
    DirectoryWatcher watcher;
    const bool complete = watcher.setPath(mRoot);
    const QStringList lines = ownLines(log);
    limit.seek(0);
    limit.write(former);
    if (!enforced)
        QSKIP("this system does not keep to its own limit");

    QVERIFY(!complete);
    QCOMPARE(lines.size(), 1);
    const QString head = QStringLiteral(
        "critical orvautils DirectoryWatcher addDir: Impossible to add to Watcher : (");
    QVERIFY2(lines.at(0).startsWith(head), qPrintable(lines.at(0)));
    QString refused = lines.at(0).mid(head.size());
    refused.chop(1);
    const auto* platform = watcher.findChild<QFileSystemWatcher*>();
    QCOMPARE(refused.split(QStringLiteral(", ")).size() + platform->files().size(), 60);
}

QTEST_GUILESS_MAIN(tst_DirectoryWatcher)
#include "tst_DirectoryWatcher.moc"

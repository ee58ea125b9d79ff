// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DirectoryWatcher.h"

#include "LogCapture.h"
#include "OrdinaryUser.h"

#include <QDir>
#include <QFile>
#include <QFileSystemWatcher>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/resource.h>

namespace {

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

void makeFolder(const QString& path)
{
    if (!QDir().mkpath(path))
        qFatal("cannot make %s", qPrintable(path));
}

QStringList pathsOf(const QSignalSpy& spy)
{
    QStringList paths;
    for (const QList<QVariant>& arguments : spy)
        paths.append(arguments.at(0).toString());
    paths.sort();
    return paths;
}

// What the library logged: the platform writes a warning of its own for each refusal.
QStringList ownLines(const LogCapture& log)
{
    return log.lines().filter(QStringLiteral("orvautils"));
}

// Runs the event loop until nothing has come through the spies for a while.
void settle(const QList<QSignalSpy*>& spies)
{
    int before = -1;
    for (;;) {
        int now = 0;
        for (const QSignalSpy* spy : spies)
            now += spy->count();
        if (now == before)
            return;
        before = now;
        QTest::qWait(100);
    }
}

} // namespace

class tst_DirectoryWatcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
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
    QString path(const QString& name) const { return mRoot + QLatin1Char('/') + name; }

    QScopedPointer<QTemporaryDir> mDir;
    QString mRoot;
};

void tst_DirectoryWatcher::init()
{
    mDir.reset(new QTemporaryDir);
    QVERIFY(mDir->isValid());
    mRoot = mDir->path() + QStringLiteral("/root");
    makeFolder(mRoot);
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
    QTest::addColumn<bool>("blocked");
    QTest::newRow("blocked") << true;
    QTest::newRow("not blocked") << false;
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
    write(path(QStringLiteral("a")), "a");
    write(path(QStringLiteral("sub/b")), "b");
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QVERIFY(watcher.setPath(mRoot));
    settle({&added});
    QCOMPARE(added.count(), 0);
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
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QSignalSpy modified(&watcher, &DirectoryWatcher::modifiedFile);
    QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    QVERIFY(watcher.setPath(mRoot));
    const QStringList file(path(QStringLiteral("a")));

    write(file.at(0), "");
    QTRY_COMPARE(pathsOf(added), file);
    settle({&added, &modified, &deleted});
    QCOMPARE(added.count(), 1);
    modified.clear();

    write(file.at(0), "content");
    QTRY_VERIFY(modified.count() > 0);
    QCOMPARE(modified.at(0).at(0).toString(), file.at(0));
    QCOMPARE(deleted.count(), 0);

    QVERIFY(QFile::remove(file.at(0)));
    QTRY_COMPARE(pathsOf(deleted), file);
    settle({&added, &modified, &deleted});
    QCOMPARE(deleted.count(), 1);
    QCOMPARE(added.count(), 1);
}

void tst_DirectoryWatcher::newFileInSubfolder()
{
    makeFolder(path(QStringLiteral("x/y")));
    write(path(QStringLiteral("x/y/old")), "old");
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QSignalSpy modified(&watcher, &DirectoryWatcher::modifiedFile);
    QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    QVERIFY(watcher.setPath(mRoot));

    write(path(QStringLiteral("x/y/new")), "new");
    QTRY_COMPARE(pathsOf(added), QStringList(path(QStringLiteral("x/y/new"))));
    write(path(QStringLiteral("x/y/old")), "changed");
    QTRY_VERIFY(pathsOf(modified).contains(path(QStringLiteral("x/y/old"))));
    QVERIFY(QFile::remove(path(QStringLiteral("x/y/old"))));
    QTRY_COMPARE(pathsOf(deleted), QStringList(path(QStringLiteral("x/y/old"))));
    settle({&added});
    QCOMPARE(added.count(), 1);
}

void tst_DirectoryWatcher::hiddenFiles()
{
    write(path(QStringLiteral(".old")), "x");
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QSignalSpy modified(&watcher, &DirectoryWatcher::modifiedFile);
    QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    QVERIFY(watcher.setPath(mRoot));
    write(path(QStringLiteral(".new")), "x");
    makeFolder(path(QStringLiteral(".folder")));
    write(path(QStringLiteral(".folder/file")), "x");
    write(path(QStringLiteral(".old")), "y");
    QVERIFY(QFile::remove(path(QStringLiteral(".old"))));
    write(path(QStringLiteral("visible")), "x");
    QTRY_COMPARE(pathsOf(added), QStringList(path(QStringLiteral("visible"))));
    settle({&added, &modified, &deleted});
    QCOMPARE(added.count(), 1);
    QCOMPARE(deleted.count(), 0);
    QVERIFY(!pathsOf(modified).contains(path(QStringLiteral(".old"))));
}

void tst_DirectoryWatcher::renamedFile()
{
    write(path(QStringLiteral("a")), "a");
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QSignalSpy modified(&watcher, &DirectoryWatcher::modifiedFile);
    QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(QFile::rename(path(QStringLiteral("a")), path(QStringLiteral("b"))));
    QTRY_COMPARE(pathsOf(added), QStringList(path(QStringLiteral("b"))));
    QTRY_COMPARE(pathsOf(deleted), QStringList(path(QStringLiteral("a"))));
    settle({&added, &modified, &deleted});
    modified.clear();
    write(path(QStringLiteral("b")), "changed");
    QTRY_VERIFY(pathsOf(modified).contains(path(QStringLiteral("b"))));
    settle({&added, &deleted});
    QCOMPARE(added.count(), 1);
    QCOMPARE(deleted.count(), 1);
}

// The way in which editors save.
void tst_DirectoryWatcher::replacedByRename()
{
    write(path(QStringLiteral("a")), "a");
    DirectoryWatcher watcher;
    QSignalSpy modified(&watcher, &DirectoryWatcher::modifiedFile);
    QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    QVERIFY(watcher.setPath(mRoot));
    for (int i = 0; i < 3; ++i) {
        write(path(QStringLiteral(".a.new")), QByteArray::number(i));
        QCOMPARE(std::rename(qPrintable(path(QStringLiteral(".a.new"))),
                             qPrintable(path(QStringLiteral("a")))),
                 0);
        QTRY_VERIFY(modified.count() > 0);
        settle({&modified});
        modified.clear();
    }
    // The file that stands there now is the one that is watched.
    write(path(QStringLiteral("a")), "in place");
    QTRY_VERIFY(modified.count() > 0);
    QCOMPARE(pathsOf(modified).at(0), path(QStringLiteral("a")));
    QCOMPARE(deleted.count(), 0);
}

void tst_DirectoryWatcher::deletedAndMadeAgain()
{
    write(path(QStringLiteral("a")), "a");
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QSignalSpy modified(&watcher, &DirectoryWatcher::modifiedFile);
    QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    QVERIFY(watcher.setPath(mRoot));
    for (int i = 1; i < 4; ++i) {
        QVERIFY(QFile::remove(path(QStringLiteral("a"))));
        QTRY_COMPARE(deleted.count(), i);
        write(path(QStringLiteral("a")), "again");
        QTRY_COMPARE(added.count(), i);
        settle({&added, &deleted});
        QCOMPARE(added.count(), i);
        QCOMPARE(deleted.count(), i);
    }
    settle({&modified});
    modified.clear();
    write(path(QStringLiteral("a")), "changed");
    QTRY_VERIFY(modified.count() > 0);

    // A program that still has the file open when it is removed.
    QFile open(path(QStringLiteral("a")));
    QVERIFY(open.open(QIODevice::ReadOnly));
    QVERIFY(QFile::remove(path(QStringLiteral("a"))));
    QTRY_COMPARE(deleted.count(), 4);
    write(path(QStringLiteral("a")), "again");
    QTRY_COMPARE(added.count(), 4);
    open.close();
    settle({&added, &deleted});
    QCOMPARE(deleted.count(), 4);
    QCOMPARE(added.count(), 4);
}

void tst_DirectoryWatcher::newFolderWithFiles()
{
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QVERIFY(watcher.setPath(mRoot));
    makeFolder(path(QStringLiteral("x/y")));
    write(path(QStringLiteral("x/a")), "a");
    write(path(QStringLiteral("x/y/b")), "b");
    const QStringList both({path(QStringLiteral("x/a")), path(QStringLiteral("x/y/b"))});
    QTRY_COMPARE(pathsOf(added), both);
    // The new folders are watched as well.
    write(path(QStringLiteral("x/y/c")), "c");
    QTRY_COMPARE(pathsOf(added), both + QStringList(path(QStringLiteral("x/y/c"))));
    settle({&added});
    QCOMPARE(added.count(), 3);
}

void tst_DirectoryWatcher::renamedFolder()
{
    makeFolder(path(QStringLiteral("x/y")));
    write(path(QStringLiteral("x/a")), "a");
    write(path(QStringLiteral("x/y/b")), "b");
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QSignalSpy modified(&watcher, &DirectoryWatcher::modifiedFile);
    QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(QDir().rename(path(QStringLiteral("x")), path(QStringLiteral("z"))));
    QTRY_COMPARE(pathsOf(added),
                 QStringList({path(QStringLiteral("z/a")), path(QStringLiteral("z/y/b"))}));
    QTRY_COMPARE(pathsOf(deleted),
                 QStringList({path(QStringLiteral("x/a")), path(QStringLiteral("x/y/b"))}));
    settle({&added, &modified, &deleted});
    QCOMPARE(added.count(), 2);
    QCOMPARE(deleted.count(), 2);

    modified.clear();
    write(path(QStringLiteral("z/y/b")), "changed");
    QTRY_VERIFY(pathsOf(modified).contains(path(QStringLiteral("z/y/b"))));
    write(path(QStringLiteral("z/y/c")), "new");
    QTRY_VERIFY(pathsOf(added).contains(path(QStringLiteral("z/y/c"))));
    settle({&added, &modified, &deleted});
    QCOMPARE(added.count(), 3);
    QCOMPARE(deleted.count(), 2);
}

void tst_DirectoryWatcher::removedTree()
{
    makeFolder(path(QStringLiteral("x/y")));
    write(path(QStringLiteral("x/a")), "a");
    write(path(QStringLiteral("x/y/b")), "b");
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(QDir(path(QStringLiteral("x"))).removeRecursively());
    QTRY_COMPARE(pathsOf(deleted),
                 QStringList({path(QStringLiteral("x/a")), path(QStringLiteral("x/y/b"))}));
    settle({&added, &deleted});
    QCOMPARE(deleted.count(), 2);
    QCOMPARE(added.count(), 0);
}

void tst_DirectoryWatcher::folderMadeAgain()
{
    makeFolder(path(QStringLiteral("x")));
    write(path(QStringLiteral("x/a")), "a");
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    QVERIFY(watcher.setPath(mRoot));
    for (int i = 1; i < 4; ++i) {
        QVERIFY(QDir(path(QStringLiteral("x"))).removeRecursively());
        if (i != 2) // once without letting the watcher see it gone
            QTRY_COMPARE(deleted.count(), i);
        makeFolder(path(QStringLiteral("x")));
        settle({&added, &deleted});
        write(path(QStringLiteral("x/a")), "again");
        QTRY_COMPARE(added.count(), i);
        settle({&added, &deleted});
        QCOMPARE(added.count(), i);
        QCOMPARE(deleted.count(), i);
    }
}

void tst_DirectoryWatcher::rootVanishes()
{
    write(path(QStringLiteral("a")), "a");
    LogCapture log;
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(QDir(mRoot).removeRecursively());
    QTRY_COMPARE(pathsOf(deleted), QStringList(path(QStringLiteral("a"))));
    settle({&added, &deleted});
    QCOMPARE(deleted.count(), 1);
    QCOMPARE(added.count(), 0);
    QCOMPARE(log.lines(), QStringList());
}

void tst_DirectoryWatcher::rootWithSlashOrRelative_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("relative");
    QTest::newRow("with slash") << QStringLiteral("/") << false;
    QTest::newRow("relative") << QString() << true;
    QTest::newRow("relative with slash") << QStringLiteral("/") << true;
}

void tst_DirectoryWatcher::rootWithSlashOrRelative()
{
    QFETCH(QString, suffix);
    QFETCH(bool, relative);
    const QString former = QDir::currentPath();
    QVERIFY(QDir::setCurrent(mDir->path()));
    makeFolder(path(QStringLiteral("sub")));
    write(path(QStringLiteral("sub/old")), "old");
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    const QString root = relative ? QStringLiteral("root") : mRoot;
    QVERIFY(watcher.setPath(root + suffix));
    write(path(QStringLiteral("a")), "a");
    write(path(QStringLiteral("sub/b")), "b");
    QTRY_COMPARE(pathsOf(added),
                 QStringList({root + QStringLiteral("/a"), root + QStringLiteral("/sub/b")}));
    settle({&added});
    QCOMPARE(added.count(), 2);
    QVERIFY(QDir::setCurrent(former));
}

void tst_DirectoryWatcher::addDirOfMissingFolder()
{
    LogCapture log;
    DirectoryWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QVERIFY(watcher.addDir(path(QStringLiteral("missing"))));
    QCOMPARE(added.count(), 0);
    QCOMPARE(log.lines(), QStringList());
}

void tst_DirectoryWatcher::addDirOfAnotherTree()
{
    const QString other = mDir->path() + QStringLiteral("/other");
    makeFolder(other + QStringLiteral("/sub"));
    write(other + QStringLiteral("/a"), "a");
    write(other + QStringLiteral("/sub/b"), "b");
    DirectoryWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QVERIFY(watcher.addDir(other));
    QCOMPARE(pathsOf(added),
             QStringList({other + QStringLiteral("/a"), other + QStringLiteral("/sub/b")}));
    write(other + QStringLiteral("/sub/c"), "c");
    QTRY_COMPARE(added.count(), 3);
}

void tst_DirectoryWatcher::addDirReportsWhatIsNew()
{
    write(path(QStringLiteral("old")), "old");
    DirectoryWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QVERIFY(watcher.addDir(mRoot));
    QCOMPARE(added.count(), 0);
    // Before the event loop has its turn, so that only this call can have seen it.
    write(path(QStringLiteral("new")), "new");
    QVERIFY(watcher.addDir(mRoot));
    QCOMPARE(pathsOf(added), QStringList(path(QStringLiteral("new"))));
    settle({&added});
    QCOMPARE(added.count(), 1);
}

void tst_DirectoryWatcher::anotherPath()
{
    const QString other = mDir->path() + QStringLiteral("/other");
    makeFolder(other);
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QVERIFY(watcher.setPath(mRoot));
    QVERIFY(watcher.setPath(other));
    QCOMPARE(watcher.findChildren<QFileSystemWatcher*>().size(), 1);
    write(path(QStringLiteral("a")), "a");
    write(other + QStringLiteral("/b"), "b");
    QTRY_COMPARE(pathsOf(added), QStringList(other + QStringLiteral("/b")));
    settle({&added});
    QCOMPARE(added.count(), 1);
}

void tst_DirectoryWatcher::anotherPathFromReceiver()
{
    const QString other = mDir->path() + QStringLiteral("/other");
    makeFolder(other);
    DirectoryWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    int calls = 0;
    connect(&watcher, &DirectoryWatcher::addedFiles, &watcher, [&](const QString&) {
        if (++calls == 1)
            watcher.setPath(other);
    });
    write(path(QStringLiteral("a")), "a");
    write(path(QStringLiteral("b")), "b");
    QTRY_COMPARE(calls, 1);
    QTest::qWait(50);
    QCOMPARE(calls, 1);
    write(other + QStringLiteral("/c"), "c");
    QTRY_COMPARE(calls, 2);
    QCOMPARE(watcher.findChildren<QFileSystemWatcher*>().size(), 1);
}

void tst_DirectoryWatcher::deletedByReceiver()
{
    for (int i = 0; i < 3; ++i)
        write(path(QString::number(i)), "x");
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
            write(path(QStringLiteral("new")), "x");
        else
            QVERIFY(QFile::remove(path(QStringLiteral("new"))));
        QTRY_VERIFY(guard.isNull());
        QVERIFY(called);
    }
}

void tst_DirectoryWatcher::deletedAtOnceByReceiver_data()
{
    QTest::addColumn<bool>("byPlatform"); // or the slot is called by hand
    QTest::addColumn<QString>("change");
    for (const bool byPlatform : {true, false}) {
        for (const char* change : {"add", "modify", "remove"}) {
            QTest::newRow((QByteArray(change) + (byPlatform ? "" : ", by hand")).constData())
                << byPlatform << QString::fromLatin1(change);
        }
    }
}

void tst_DirectoryWatcher::deletedAtOnceByReceiver()
{
    QFETCH(bool, byPlatform);
    QFETCH(QString, change);
    const bool adds = change == QLatin1String("add");
    // Several, so that the platform has more to tell when the watcher is gone.
    QStringList files;
    for (int i = 0; i < 5; ++i)
        files.append(path(QString::number(i)));
    makeFolder(path(QStringLiteral("sub")));
    if (!adds) {
        for (const QString& file : qAsConst(files))
            write(file, "x");
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
            write(file, "content");
    }
    write(path(QStringLiteral("sub/new")), "x");
    if (!byPlatform && adds)
        watcher->onDirMod(mRoot);
    else if (!byPlatform)
        watcher->onFilemod(files.first());
    QTRY_VERIFY(guard.isNull());
    QTest::qWait(50);
    QCOMPARE(calls, 1);
}

void tst_DirectoryWatcher::deletedAtOnceInSecondLook_data()
{
    QTest::addColumn<bool>("adds");
    QTest::newRow("new file") << true;
    QTest::newRow("vanished file") << false;
}

void tst_DirectoryWatcher::deletedAtOnceInSecondLook()
{
    QFETCH(bool, adds);
    write(path(QStringLiteral("a")), "a");
    write(path(QStringLiteral("b")), "b");
    auto* watcher = new DirectoryWatcher;
    QVERIFY(watcher->setPath(mRoot));
    // What happens now the platform does not tell: the second look has to find it.
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
        write(path(QStringLiteral("c")), "c");
        write(path(QStringLiteral("d")), "d");
    } else {
        QVERIFY(QFile::remove(path(QStringLiteral("a"))));
        QVERIFY(QFile::remove(path(QStringLiteral("b"))));
    }
    QVERIFY(!guard.isNull());
    QTRY_VERIFY(guard.isNull());
    QTest::qWait(20);
    QCOMPARE(calls.size(), 1);
}

void tst_DirectoryWatcher::anotherPathInSecondLook()
{
    const QString other = mDir->path() + QStringLiteral("/other");
    makeFolder(other);
    for (const bool adds : {true, false}) {
        write(path(QStringLiteral("a")), "a");
        write(path(QStringLiteral("b")), "b");
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
            write(path(QStringLiteral("c")), "c");
            write(path(QStringLiteral("d")), "d");
        } else {
            QVERIFY(QFile::remove(path(QStringLiteral("a"))));
            QVERIFY(QFile::remove(path(QStringLiteral("b"))));
        }
        QTRY_VERIFY(!calls.isEmpty());
        QTest::qWait(20);
        QCOMPARE(calls.size(), 1); // what stands in the former tree is nobody's concern any more
    }
}

void tst_DirectoryWatcher::newsByReceiverInSecondLook()
{
    const QStringList files = {path(QStringLiteral("a")), path(QStringLiteral("b"))};
    for (const QString& file : files)
        write(file, "x");
    DirectoryWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    watcher.findChild<QFileSystemWatcher*>()->blockSignals(true);
    const QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    connect(&watcher, &DirectoryWatcher::deletedFile, &watcher, [&](const QString& file) {
        if (deleted.count() == 1)
            watcher.onFilemod(file == files.at(0) ? files.at(1) : files.at(0));
    });
    watcher.onDirMod(mRoot);
    for (const QString& file : files)
        QVERIFY(QFile::remove(file));
    QTRY_COMPARE(deleted.count(), 2);
    QTest::qWait(20);
    QCOMPARE(pathsOf(deleted), files);
}

void tst_DirectoryWatcher::destroyedBeforeSecondLook()
{
    write(path(QStringLiteral("a")), "a");
    {
        DirectoryWatcher watcher;
        QVERIFY(watcher.setPath(mRoot));
        watcher.onDirMod(mRoot);
    }
    QTest::qWait(20);

    // And the look belongs to the path that it was asked for.
    const QString other = mDir->path() + QStringLiteral("/other");
    makeFolder(other);
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QVERIFY(watcher.setPath(mRoot));
    watcher.onDirMod(mRoot);
    QVERIFY(watcher.setPath(other));
    write(path(QStringLiteral("b")), "b");
    settle({&added});
    QCOMPARE(added.count(), 0);
}

void tst_DirectoryWatcher::slotsByHand()
{
    write(path(QStringLiteral("a")), "a");
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QSignalSpy modified(&watcher, &DirectoryWatcher::modifiedFile);
    QSignalSpy deleted(&watcher, &DirectoryWatcher::deletedFile);
    // Also before there is anything to watch with.
    QVERIFY(QMetaObject::invokeMethod(&watcher, "onFilemod",
                                      Q_ARG(QString, path(QStringLiteral("a")))));
    QCOMPARE(pathsOf(modified), QStringList(path(QStringLiteral("a"))));
    QVERIFY(QMetaObject::invokeMethod(&watcher, "onFilemod",
                                      Q_ARG(QString, path(QStringLiteral("missing")))));
    QCOMPARE(pathsOf(deleted), QStringList(path(QStringLiteral("missing"))));
    QVERIFY(QMetaObject::invokeMethod(&watcher, "onDirMod", Q_ARG(QString, mRoot)));
    QVERIFY(QMetaObject::invokeMethod(&watcher, "onDirMod",
                                      Q_ARG(QString, path(QStringLiteral("missing")))));
    QTest::qWait(20);

    // At once, and once more at the next turn of the event loop.
    QVERIFY(watcher.setPath(mRoot));
    QCOMPARE(added.count(), 0);
    write(path(QStringLiteral("b")), "b");
    watcher.onDirMod(mRoot);
    QCOMPARE(pathsOf(added), QStringList(path(QStringLiteral("b"))));
    write(path(QStringLiteral("c")), "c");
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(pathsOf(added), QStringList({path(QStringLiteral("b")), path(QStringLiteral("c"))}));
}

void tst_DirectoryWatcher::manyFilesInOneFolder()
{
    const int count = 2000;
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QVERIFY(watcher.setPath(mRoot));
    // By another process, so that they appear while the watcher is at work.
    QProcess maker;
    maker.start(QStringLiteral("sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("cd \"$0\" && i=0; while [ $i -lt %1 ]; do echo x > f$i; "
                                "i=$((i+1)); done")
                     .arg(count),
                 mRoot});
    QTRY_COMPARE_WITH_TIMEOUT(maker.state(), QProcess::NotRunning, 60000);
    QTRY_VERIFY_WITH_TIMEOUT(added.count() >= count, 60000);
    settle({&added});
    QStringList expected;
    for (int i = 0; i < count; ++i)
        expected.append(path(QStringLiteral("f%1").arg(i)));
    expected.sort();
    QCOMPARE(pathsOf(added), expected);
}

void tst_DirectoryWatcher::manyFoldersAsATree()
{
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
    QVERIFY(watcher.setPath(mRoot));
    // 10 folders with 20 folders in each, two files in each of these.
    QProcess maker;
    maker.start(QStringLiteral("sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("cd \"$0\" && for a in 0 1 2 3 4 5 6 7 8 9; do i=0; while [ $i -lt "
                                "20 ]; do mkdir -p $a/$i; echo x > $a/$i/one; echo x > $a/$i/two; "
                                "i=$((i+1)); done; done"),
                 mRoot});
    QTRY_COMPARE_WITH_TIMEOUT(maker.state(), QProcess::NotRunning, 60000);
    QTRY_VERIFY_WITH_TIMEOUT(added.count() >= 400, 60000);
    settle({&added});
    QStringList expected;
    for (int a = 0; a < 10; ++a) {
        for (int i = 0; i < 20; ++i) {
            expected.append(path(QStringLiteral("%1/%2/one").arg(a).arg(i)));
            expected.append(path(QStringLiteral("%1/%2/two").arg(a).arg(i)));
        }
    }
    expected.sort();
    QCOMPARE(pathsOf(added), expected);
}

// Files that come and go while the watcher looks: what stands at the end has been reported once.
void tst_DirectoryWatcher::churn()
{
    LogCapture quiet; // a file that vanishes between being listed and being watched is logged
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

// A file that may not be read may not be watched either.
void tst_DirectoryWatcher::refusedFile()
{
    makeFolder(path(QStringLiteral("sub")));
    for (const char* const name : {"a", "b", "c", "sub/d"})
        write(path(QLatin1String(name)), "x");
    for (const char* const name : {"b", "c"})
        QVERIFY(QFile::setPermissions(path(QLatin1String(name)), QFile::Permissions()));
    QVERIFY(QFile::setPermissions(mDir->path(), QFile::Permissions(0x7777)));
    LogCapture log;
    DirectoryWatcher watcher;
    QSignalSpy added(&watcher, &DirectoryWatcher::addedFiles);
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
    // The order is that in which the system lists them.
    QVERIFY2(lines.at(0) == head + b + QStringLiteral(", ") + c + QLatin1Char(')')
                 || lines.at(0) == head + c + QStringLiteral(", ") + b + QLatin1Char(')'),
             qPrintable(lines.at(0)));
    QCOMPARE(added.count(), 0);
    const auto* platform = watcher.findChild<QFileSystemWatcher*>();
    QCOMPARE(platform->files().size(), 2);
    // Folders are not watched in a pass that failed over files.
    QCOMPARE(platform->directories(), QStringList(mRoot));

    // With the permission back, the next pass reports all four: none of them has been before.
    for (const QString& file : {b, c})
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
    QVERIFY(watcher.addDir(mRoot));
    QCOMPARE(pathsOf(added),
             QStringList({path(QStringLiteral("a")), b, c, path(QStringLiteral("sub/d"))}));
    QCOMPARE(platform->directories().size(), 2);
}

void tst_DirectoryWatcher::refusedFolder()
{
    makeFolder(path(QStringLiteral("closed")));
    makeFolder(path(QStringLiteral("open")));
    write(path(QStringLiteral("a")), "x");
    QVERIFY(QFile::setPermissions(path(QStringLiteral("closed")), QFile::Permissions()));
    QVERIFY(QFile::setPermissions(mDir->path(), QFile::Permissions(0x7777)));
    LogCapture log;
    DirectoryWatcher watcher;
    QVERIFY(watcher.setPath(mDir->path() + QStringLiteral("/root")));
    log.take();
    DirectoryWatcher other;
    QSignalSpy added(&other, &DirectoryWatcher::addedFiles);
    makeFolder(mDir->path() + QStringLiteral("/empty"));
    QVERIFY(other.setPath(mDir->path() + QStringLiteral("/empty")));
    {
        const OrdinaryUser user;
        QVERIFY(!other.addDir(mRoot));
    }
    QCOMPARE(ownLines(log),
             QStringList(QStringLiteral("critical orvautils DirectoryWatcher addDir: Impossible to "
                                        "add to Watcher : (%1)")
                             .arg(path(QStringLiteral("closed")))));
    // Files come before folders: they have been reported.
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
        write(files.last(), "x");
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

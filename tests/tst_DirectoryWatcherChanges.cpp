// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DirectoryWatcher while the tree changes: slow receivers, files and folders that replace each
// other, permissions that are withdrawn and restored, and a root that vanishes.

#include "DirectoryWatcher.h"

#include "Columns.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "Sandbox.h"
#include "SpiedSignals.h"
#include "Text.h"

#include <QFileSystemWatcher>
#include <QPointer>
#include <QSet>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include <cstdio>

namespace {

void renameTo(const QString& path, const QString& newPath)
{
    if (!renameOver(path, newPath))
        qFatal("cannot rename %s to %s", qPrintable(path), qPrintable(newPath));
}

void removeFile(const QString& path)
{
    if (!QFile::remove(path))
        qFatal("cannot remove %s", qPrintable(path));
}

void removeTree(const QString& path)
{
    if (!QDir(path).removeRecursively())
        qFatal("cannot remove %s", qPrintable(path));
}

void empty(const QString& folder)
{
    const QDir dir(folder);
    for (const QString& name : dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        removeTree(dir.filePath(name));
    for (const QString& name : dir.entryList(QDir::Files))
        removeFile(dir.filePath(name));
}

} // namespace

class tst_DirectoryWatcherChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void growsWhileReceiversRun();
    void madeWhileTheTreeIsScanned();
    void unreadableForAMoment_data();
    void unreadableForAMoment();
    void replacedByUnreadable();
    void unreadableDoesNotHideOthers();
    void unreadableRoot();
    void relativeRootIsReplaced();
    void emptyRoot();
    void renamedOverEachOther_data();
    void renamedOverEachOther();
    void swappedFolder_data();
    void swappedFolder();
    void awayWhileReported();
    void anotherKind_data();
    void anotherKind();
    void rootGoesAndComes_data();
    void rootGoesAndComes();
    void rootBehindALink();
    void unwatchedFolder();
    void unwatchedByReceiverWhoDeletes();
    void manyFiles();
    void counts();
    void settles();
    void settlesNotBeforeAnything();
    void stops();
    void stopsFromReceiver();
    void stopsAtFirstReport_data();
    void stopsAtFirstReport();
    void stopsAtFileOfReplacedFolder();

private:
    QString path(const QString& name) const { return mRoot + QLatin1Char('/') + name; }
    QString names(const QSignalSpy& spy) const;

    QScopedPointer<Sandbox> mSandbox;
    QString mRoot;
};

namespace {

/// A watcher with all its signals.
class SpiedWatcher : public DirectoryWatcher
{
public:
    void clear()
    {
        for (QSignalSpy* spy : {&added, &modified, &deleted, &refused})
            spy->clear();
    }

    QSignalSpy added{this, &DirectoryWatcher::addedFiles};
    QSignalSpy modified{this, &DirectoryWatcher::modifiedFile};
    QSignalSpy deleted{this, &DirectoryWatcher::deletedFile};
    QSignalSpy refused{this, &DirectoryWatcher::unwatched};
    QSignalSpy quiet{this, &DirectoryWatcher::settled};
};

} // namespace

void tst_DirectoryWatcherChanges::init()
{
    mSandbox.reset(new Sandbox);
    mRoot = mSandbox->folder(QStringLiteral("root"));
}

/// The files of the signals, relative to the root and sorted, without repetition: "a x/b".
QString tst_DirectoryWatcherChanges::names(const QSignalSpy& spy) const
{
    QStringList relative;
    for (const QString& file : textsOf(spy))
        relative.append(file.mid(mRoot.size() + 1));
    relative.removeDuplicates();
    relative.sort();
    return relative.join(QLatin1Char(' '));
}

// While a receiver is busy, files and folders are made in folders that are not watched yet.
void tst_DirectoryWatcherChanges::growsWhileReceiversRun()
{
    SpiedWatcher watcher;
    connect(&watcher, &DirectoryWatcher::addedFiles, this, [this](const QString& file) {
        if (file == path(QStringLiteral("x/a"))) { // in the first pass
            writeFile(path(QStringLiteral("x/b")));
            writeFile(path(QStringLiteral("x/sub/c")));
        } else if (file == path(QStringLiteral("x/sub/c"))) { // in the second pass
            writeFile(path(QStringLiteral("x/sub/d")));
            writeFile(path(QStringLiteral("x/sub/deep/e")));
        } else if (file == path(QStringLiteral("x/sub/deep/e"))) {
            writeFile(path(QStringLiteral("x/sub/deep/f")));
            writeFile(path(QStringLiteral("x/sub/deep/deeper/g")));
        }
    });
    QVERIFY(watcher.setPath(mRoot));
    writeFile(path(QStringLiteral("x/a")));
    const QString all =
        QStringLiteral("x/a x/b x/sub/c x/sub/d x/sub/deep/deeper/g x/sub/deep/e x/sub/deep/f");
    QTRY_COMPARE(names(watcher.added), all);
    handleEvents();
    QCOMPARE(watcher.added.count(), 7);
    // The whole tree is watched.
    watcher.clear();
    writeFile(path(QStringLiteral("x/sub/deep/deeper/h")));
    QTRY_COMPARE(names(watcher.added), QStringLiteral("x/sub/deep/deeper/h"));
}

// A file that is made before its folder is watched causes no notification.
void tst_DirectoryWatcherChanges::madeWhileTheTreeIsScanned()
{
    makeFolder(path(QStringLiteral("x")));
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    watcher.findChild<QFileSystemWatcher*>()->blockSignals(true);
    writeFile(path(QStringLiteral("x/a")));
    QTRY_COMPARE(names(watcher.added), QStringLiteral("x/a"));
}

void tst_DirectoryWatcherChanges::unreadableForAMoment_data()
{
    const auto row = columns<QString>("closed");
    row("file", "x/y/a");
    row("folder", "x/y");
    row("folder above", "x");
}

void tst_DirectoryWatcherChanges::unreadableForAMoment()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    QFETCH(QString, closed);
    const QString file = path(QStringLiteral("x/y/a"));
    writeFile(file);
    writeFile(path(QStringLiteral("x/b")));
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    {
        const OrdinaryUser user;
        handleEvents();
    }
    mSandbox->lock(path(closed), 0);
    {
        const OrdinaryUser user;
        handleEvents();
        watcher.onDirMod(path(QStringLiteral("x")));
        watcher.onDirMod(mRoot);
        handleEvents();
        QTRY_VERIFY(watcher.quiet.count() > 0 || closed != QStringLiteral("x/y/a"));
    }
    QCOMPARE(names(watcher.deleted), QString());
    changeMode(path(closed), 0755);
    {
        const OrdinaryUser user;
        handleEvents();
    }
    watcher.clear();
    // Everything is still watched.
    writeFile(file, "changed");
    QTRY_COMPARE(names(watcher.modified), QStringLiteral("x/y/a"));
    writeFile(path(QStringLiteral("x/y/new")));
    QTRY_COMPARE(names(watcher.added), QStringLiteral("x/y/new"));
    removeFile(file);
    QTRY_COMPARE(names(watcher.deleted), QStringLiteral("x/y/a"));
}

void tst_DirectoryWatcherChanges::replacedByUnreadable()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    LogCapture log;
    const QString file = path(QStringLiteral("a"));
    writeFile(file);
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    QCOMPARE(watcher.watchedFiles(), 1);
    const QString other = mSandbox->file(QStringLiteral("other"));
    changeMode(other, 0);
    renameTo(other, file);
    {
        const OrdinaryUser user;
        handleEvents();
        QTRY_COMPARE(watcher.refused.count(), 1);
        QCOMPARE(watcher.refused.at(0).at(0).toStringList(), QStringList(file));
        QCOMPARE(watcher.refused.at(0).at(1).toString(),
                 QStringLiteral("Permission to read is missing."));
        QCOMPARE(watcher.watchedFiles(), 0);
        QVERIFY(!watcher.addDir(mRoot));
        QCOMPARE(watcher.refused.count(), 1); // reported only once
    }
    QCOMPARE(names(watcher.deleted), QString());
    watcher.modified.clear();
    changeMode(file, 0644);
    {
        const OrdinaryUser user;
        QTRY_COMPARE(names(watcher.modified), QStringLiteral("a"));
        QTRY_COMPARE(watcher.watchedFiles(), 1);
        QVERIFY(watcher.addDir(mRoot));
    }
    watcher.modified.clear();
    writeFile(file, "changed");
    QTRY_COMPARE(names(watcher.modified), QStringLiteral("a"));
    QCOMPARE(names(watcher.added), QString());
}

// A file that cannot be watched does not prevent others from being reported.
void tst_DirectoryWatcherChanges::unreadableDoesNotHideOthers()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    LogCapture log;
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    {
        const OrdinaryUser user;
        handleEvents();
    }
    writeFile(path(QStringLiteral("closed")));
    changeMode(path(QStringLiteral("closed")), 0);
    writeFile(path(QStringLiteral("open")));
    writeFile(path(QStringLiteral("x/a")));
    watcher.setSettleTime(0);
    {
        const OrdinaryUser user;
        QTRY_COMPARE(names(watcher.added), QStringLiteral("open x/a"));
        QCOMPARE(watcher.watchedFolders(), 2);
        QCOMPARE(watcher.refused.count(), 1);
        QTRY_COMPARE(watcher.quiet.count(), 1);
        QCOMPARE(watcher.refused.count(), 1);
    }
    // Without a notification, the comparison when all is quiet finds the permission.
    watcher.findChild<QFileSystemWatcher*>()->blockSignals(true);
    changeMode(path(QStringLiteral("closed")), 0644);
    watcher.onFilemod(path(QStringLiteral("open")));
    QTRY_COMPARE(names(watcher.added), QStringLiteral("closed open x/a"));
}

void tst_DirectoryWatcherChanges::unreadableRoot()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    LogCapture log;
    mSandbox->lock(mRoot, 0);
    SpiedWatcher watcher;
    const OrdinaryUser user;
    QVERIFY(watcher.setPath(mRoot)); // the signal alone reports it
    QCOMPARE(watcher.refused.count(), 1);
    QCOMPARE(watcher.refused.at(0).at(0).toStringList(), QStringList(mRoot));
    QCOMPARE(watcher.watchedFolders(), 0);
    QCOMPARE(log.lines().filter(text(" orvautils ")), QStringList()); // Qt logs a record itself
}

void tst_DirectoryWatcherChanges::relativeRootIsReplaced()
{
    SKIP_ON_WINDOWS("a watched folder stays until its watcher knows");
    const CurrentFolder current(mSandbox->root());
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(text("root")));
    handleEvents();
    renameTo(mRoot, (*mSandbox)(text("away")));
    makeFolder(mRoot);
    QVERIFY(watcher.addDir(text("root")));
    QCOMPARE(watcher.watchedFolders(), 1);
    handleEvents();
    writeFile(path(text("a")));
    QTRY_COMPARE(textsOf(watcher.added), QStringList(text("root/a")));
}

// Files of the current folder are named as if they were in the root of the file system.
void tst_DirectoryWatcherChanges::emptyRoot()
{
    writeFile(path(text("a")));
    makeFolder(path(text("x")));
    const CurrentFolder current(mRoot);
    LogCapture log;
    SpiedWatcher watcher;
    QVERIFY(!watcher.setPath(QString()));
    QCOMPARE(log.lines().filter(text(" orvautils ")),
             QStringList(text("critical orvautils DirectoryWatcher addDir: "
                              "Impossible to add to Watcher : (/a)")));
    QCOMPARE(watcher.refused.count(), 0); // nothing of that name exists
    QCOMPARE(watcher.watchedFiles(), 0);
}

void tst_DirectoryWatcherChanges::renamedOverEachOther_data()
{
    const auto row = columns<int>("handledEvery"); // steps
    row("handled at once", 1);
    row("handled every other time", 2);
    row("handled seldom", 7);
    row("handled at the end", 1000);
}

void tst_DirectoryWatcherChanges::renamedOverEachOther()
{
    QFETCH(int, handledEvery);
    const QString a = path(QStringLiteral("a"));
    const QString b = path(QStringLiteral("b"));
    writeFile(a, "0");
    writeFile(b, "0");
    SpiedWatcher watcher;
    // What the receiver has learned from the signals.
    QMap<QString, QByteArray> known = filesBelow(mRoot);
    const auto read = [&](const QString& file) {
        known.insert(file.mid(mRoot.size() + 1), contentOf(file));
    };
    connect(&watcher, &DirectoryWatcher::addedFiles, this, read);
    connect(&watcher, &DirectoryWatcher::modifiedFile, this, read);
    connect(&watcher, &DirectoryWatcher::deletedFile, this,
            [&](const QString& file) { known.remove(file.mid(mRoot.size() + 1)); });
    QVERIFY(watcher.setPath(mRoot));
    for (int step = 1; step <= 60; ++step) {
        renameTo(a, b);
        if (step % handledEvery == 0)
            QCoreApplication::processEvents();
        writeFile(a, QByteArray::number(step));
        if (step % handledEvery == handledEvery / 2)
            QCoreApplication::processEvents();
    }
    QTRY_COMPARE(known, filesBelow(mRoot));
    QTRY_VERIFY(watcher.quiet.count() > 0);
    QCOMPARE(known, filesBelow(mRoot));
    // And each is watched under its own name.
    for (const QString& file : {a, b}) {
        watcher.clear();
        watcher.quiet.clear();
        writeFile(file, "in place");
        QTRY_COMPARE(names(watcher.modified), file.mid(mRoot.size() + 1));
#ifdef Q_OS_WIN
        // Truncating the file and writing to it are reported separately.
        QTRY_VERIFY(watcher.quiet.count() > 0);
#endif
    }
}

void tst_DirectoryWatcherChanges::swappedFolder_data()
{
    const auto row = columns<QString>("folder");
    row("in the root", "s");
    row("further down", "s/a");
    row("at the bottom", "s/a/b");
}

// A folder is exchanged for another in one step, without a notification about the folder itself.
void tst_DirectoryWatcherChanges::swappedFolder()
{
    SKIP_ON_WINDOWS("changes in a swapped folder may be reported twice");
    QFETCH(QString, folder);
    const auto fill = [](const QString& root, const QByteArray& content) {
        for (const char* name : {"/s/a/b/same", "/s/a/b/changed", "/s/a/b/gone", "/s/a/other"})
            writeFile(root + QString::fromLatin1(name), content);
    };
    fill(mRoot, "old");
    const QString fresh = mSandbox->folder(QStringLiteral("fresh"));
    fill(fresh, "new");
    removeFile(fresh + QStringLiteral("/s/a/b/gone"));
    writeFile(fresh + QStringLiteral("/s/a/b/c/added"));
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    handleEvents();

    renameTo(path(folder), (*mSandbox)(QStringLiteral("former")));
    renameTo(fresh + QLatin1Char('/') + folder, path(folder));
    QTRY_COMPARE(names(watcher.added), QStringLiteral("s/a/b/c/added"));
    QTRY_COMPARE(names(watcher.deleted), QStringLiteral("s/a/b/gone"));
    QTRY_VERIFY(names(watcher.modified).contains(QStringLiteral("s/a/b/changed s/a/b/same")));
    // The folder that was moved away is no longer watched; the new one is.
    watcher.clear();
    const QString former = (*mSandbox)(QStringLiteral("former/"))
        + QStringLiteral("s/a/b/same").mid(folder.size() + 1);
    writeFile(former, "not ours");
    writeFile(path(QStringLiteral("s/a/b/c/second")));
    QTRY_COMPARE(names(watcher.added), QStringLiteral("s/a/b/c/second"));
    handleEvents();
    QCOMPARE(names(watcher.modified), QString());
    writeFile(path(QStringLiteral("s/a/b/same")), "ours");
    QTRY_COMPARE(names(watcher.modified), QStringLiteral("s/a/b/same"));
}

// A receiver that finds no files because a folder is missing for a moment is notified again.
void tst_DirectoryWatcherChanges::awayWhileReported()
{
    SKIP_ON_WINDOWS("a watched folder stays until its watcher knows");
    const QString file = path(QStringLiteral("x/a"));
    const QString away = (*mSandbox)(QStringLiteral("away"));
    makeFolder(path(QStringLiteral("x")));
    SpiedWatcher watcher;
    QByteArray known;
    int missed = 0;
    const auto read = [&](const QString& reported) {
        // First the folder is missing, then another one has its name.
        if (missed < 2) {
            renameTo(path(QStringLiteral("x")), away);
            if (missed == 1)
                writeFile(file, "another");
            QTimer::singleShot(0, this, [&] {
                QDir(path(QStringLiteral("x"))).removeRecursively();
                renameTo(away, path(QStringLiteral("x")));
            });
            ++missed;
        }
        known = contentOf(reported);
    };
    connect(&watcher, &DirectoryWatcher::addedFiles, this, read);
    connect(&watcher, &DirectoryWatcher::modifiedFile, this, read);
    QVERIFY(watcher.setPath(mRoot));
    writeFile(file, "ours");
    QTRY_COMPARE(missed, 2);
    QTRY_COMPARE(known, QByteArray("ours"));
}

void tst_DirectoryWatcherChanges::anotherKind_data()
{
    const auto row = columns<bool>("isSeenGone");
    row("after a while", true);
    row("at once", false);
}

void tst_DirectoryWatcherChanges::anotherKind()
{
    SKIP_ON_WINDOWS("a watched folder stays until its watcher knows");
    QFETCH(bool, isSeenGone);
    writeFile(path(QStringLiteral("x/a")));
    writeFile(path(QStringLiteral("x/y/b")));
    SpiedWatcher watcher;
    QStringList order;
    connect(&watcher, &DirectoryWatcher::addedFiles, this,
            [&](const QString& file) { order.append(QLatin1Char('+') + file.mid(mRoot.size())); });
    connect(&watcher, &DirectoryWatcher::deletedFile, this,
            [&](const QString& file) { order.append(QLatin1Char('-') + file.mid(mRoot.size())); });
    QVERIFY(watcher.setPath(mRoot));
    for (int round = 0; round < 3; ++round) {
        // The folder becomes a file ...
        order.clear();
        removeTree(path(QStringLiteral("x")));
        if (isSeenGone)
            handleEvents();
        writeFile(path(QStringLiteral("x")));
        QTRY_COMPARE(order.size(), 3);
        QCOMPARE(order.last(), QStringLiteral("+/x"));
        handleEvents();
        watcher.clear();
        writeFile(path(QStringLiteral("x")), "changed");
        QTRY_COMPARE(names(watcher.modified), QStringLiteral("x"));
        handleEvents();

        // ... and a folder again.
        order.clear();
        removeFile(path(QStringLiteral("x")));
        if (isSeenGone)
            handleEvents();
        writeFile(path(QStringLiteral("x/a")));
        writeFile(path(QStringLiteral("x/y/b")));
        QTRY_COMPARE(order.size(), 3);
        QCOMPARE(order.first(), QStringLiteral("-/x"));
        handleEvents();
        watcher.clear();
        writeFile(path(QStringLiteral("x/y/b")), "changed");
        QTRY_COMPARE(names(watcher.modified), QStringLiteral("x/y/b"));
        handleEvents();
        QCOMPARE(order.size(), 3);
    }
}

void tst_DirectoryWatcherChanges::rootGoesAndComes_data()
{
    QTest::addColumn<QString>("moved"); // including the root
    QTest::addColumn<bool>("isMadeAnew");
    QTest::addColumn<bool>("isSeenGone");
    for (const bool isSeenGone : {true, false}) {
        const char* when = isSeenGone ? ", after a while" : ", at once";
        const auto row = [&](const char* name) -> QTestData& {
            return QTest::newRow((QByteArray(name) + when).constData());
        };
        row("the root comes back") << QStringLiteral("p/q/root") << false << isSeenGone;
        row("the root is made anew") << QStringLiteral("p/q/root") << true << isSeenGone;
        row("the folder above comes back") << QStringLiteral("p/q") << false << isSeenGone;
        row("the folder above is made anew") << QStringLiteral("p/q") << true << isSeenGone;
        row("folders further up are made anew") << QStringLiteral("p") << true << isSeenGone;
    }
}

void tst_DirectoryWatcherChanges::rootGoesAndComes()
{
    SKIP_ON_WINDOWS("a watched folder stays until its watcher knows");
    QFETCH(QString, moved);
    QFETCH(bool, isMadeAnew);
    QFETCH(bool, isSeenGone);
    mRoot = mSandbox->folder(QStringLiteral("p/q/root"));
    const QString file = path(QStringLiteral("x/a"));
    writeFile(file, "old");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    handleEvents();

    for (int round = 0; round < 2; ++round) {
        watcher.clear();
        const QString away = (*mSandbox)(QStringLiteral("away%1").arg(round));
        renameTo((*mSandbox)(moved), away);
        if (isSeenGone) {
            QTRY_COMPARE(names(watcher.deleted), QStringLiteral("x/a"));
            handleEvents();
        }
        if (isMadeAnew)
            writeFile(file, "new");
        else
            renameTo(away, (*mSandbox)(moved));
        if (isSeenGone)
            QTRY_COMPARE(names(watcher.added), QStringLiteral("x/a"));
        else if (isMadeAnew)
            QTRY_COMPARE(names(watcher.modified), QStringLiteral("x/a"));
        handleEvents();
        watcher.clear();
        writeFile(path(QStringLiteral("x/b")));
        QTRY_COMPARE(names(watcher.added), QStringLiteral("x/b"));
        writeFile(file, "changed");
        QTRY_VERIFY(names(watcher.modified).contains(QStringLiteral("x/a")));
        removeFile(path(QStringLiteral("x/b")));
        QTRY_COMPARE(names(watcher.deleted), QStringLiteral("x/b"));
    }
}

// A site goes live by redirecting a link.
void tst_DirectoryWatcherChanges::rootBehindALink()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    for (const char* version : {"1", "2"})
        mSandbox->file(QStringLiteral("v%1/a").arg(QString::fromLatin1(version)), version);
    mRoot = mSandbox->link(QStringLiteral("live"), (*mSandbox)(QStringLiteral("v1")));
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    handleEvents();
    renameTo(mSandbox->link(QStringLiteral("next"), (*mSandbox)(QStringLiteral("v2"))), mRoot);
    QTRY_COMPARE(names(watcher.modified), QStringLiteral("a"));
    handleEvents();
    mSandbox->file(QStringLiteral("v2/b"));
    QTRY_COMPARE(names(watcher.added), QStringLiteral("b"));
}

void tst_DirectoryWatcherChanges::unwatchedFolder()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    LogCapture log;
    makeFolder(path(QStringLiteral("closed")));
    changeMode(path(QStringLiteral("closed")), 0);
    SpiedWatcher watcher;
    const OrdinaryUser user;
    QVERIFY(!watcher.setPath(mRoot));
    // Announced although signals are blocked during the scan.
    QCOMPARE(watcher.refused.count(), 1);
    QCOMPARE(watcher.refused.at(0).at(0).toStringList(),
             QStringList(path(QStringLiteral("closed"))));
}

void tst_DirectoryWatcherChanges::unwatchedByReceiverWhoDeletes()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    LogCapture log;
    writeFile(path(QStringLiteral("closed")));
    changeMode(path(QStringLiteral("closed")), 0);
    auto* watcher = new DirectoryWatcher;
    connect(watcher, &DirectoryWatcher::unwatched, this, [&] { delete watcher; });
    const QPointer<DirectoryWatcher> guard(watcher);
    const OrdinaryUser user;
    QVERIFY(!watcher->setPath(mRoot));
    QVERIFY(guard.isNull());
}

// More files than one watcher of the platform accepts; each of them is reported once.
void tst_DirectoryWatcherChanges::manyFiles()
{
    const int count = 4500;
    for (int i = 0; i < count; ++i)
        writeFile(path(QStringLiteral("%1/%2").arg(i % 3).arg(i)), "x");
    SpiedWatcher watcher;
    if (!watcher.setPath(mRoot))
        QSKIP("the system grants too few watches");
    QCOMPARE(watcher.findChildren<QFileSystemWatcher*>().size(), 4);
    QCOMPARE(watcher.watchedFiles(), count);
    settle({&watcher.added});
    QCOMPARE(watcher.added.count(), 0);

    // Whichever watcher has the file: changed, removed and made again, replaced, and new.
    QStringList touched;
    for (int i = 0; i < count; i += 375) {
        touched.append(QStringLiteral("%1/%2").arg(i % 3).arg(i));
        writeFile(path(touched.last()), "changed");
    }
    touched.sort();
    const QString all = touched.join(QLatin1Char(' '));
    QTRY_COMPARE(names(watcher.modified), all);
    for (const QString& file : qAsConst(touched))
        removeFile(path(file));
    QTRY_COMPARE(names(watcher.deleted), all);
    settle({&watcher.deleted});
    QCOMPARE(watcher.deleted.count(), touched.size());
    QCOMPARE(watcher.watchedFiles(), count - touched.size());
    QCOMPARE(watcher.added.count(), 0);

    watcher.clear();
    for (const QString& file : qAsConst(touched))
        writeFile(path(file), "again");
    QTRY_COMPARE(names(watcher.added), all);
    settle({&watcher.added});
    QCOMPARE(watcher.added.count(), touched.size());
    QCOMPARE(watcher.watchedFiles(), count);

    watcher.clear();
    for (const QString& file : qAsConst(touched)) {
        const QString draft = mSandbox->file(QStringLiteral("draft"), "replaced");
        renameTo(draft, path(file));
    }
    QTRY_COMPARE(names(watcher.modified), all);
    watcher.clear();
    for (const QString& file : qAsConst(touched))
        writeFile(path(file), "still watched");
    QTRY_COMPARE(names(watcher.modified), all);

    watcher.stop();
    QCOMPARE(watcher.findChildren<QFileSystemWatcher*>().size(), 0);
    QVERIFY(watcher.setPath(path(QStringLiteral("0"))));
    QCOMPARE(watcher.watchedFiles(), count / 3);
}

void tst_DirectoryWatcherChanges::counts()
{
    SKIP_ON_WINDOWS("a watched folder stays until its watcher knows");
    SpiedWatcher watcher;
    QCOMPARE(watcher.watchedFiles(), 0);
    QCOMPARE(watcher.watchedFolders(), 0);
    writeFile(path(QStringLiteral("x/a")));
    writeFile(path(QStringLiteral("x/y/b")));
    writeFile(path(QStringLiteral(".hidden")));
    QVERIFY(watcher.setPath(mRoot));
    QCOMPARE(watcher.watchedFiles(), 2);
    QCOMPARE(watcher.watchedFolders(), 3); // including the root
    removeTree(path(QStringLiteral("x/y")));
    QTRY_COMPARE(watcher.watchedFolders(), 2);
    QTRY_COMPARE(watcher.watchedFiles(), 1);
}

void tst_DirectoryWatcherChanges::settles()
{
    SpiedWatcher watcher;
    QCOMPARE(watcher.settleTime(), 500);
#ifdef Q_OS_WIN
    const int settleTime = 500; // a thread delivers the notifications, at any time
#else
    const int settleTime = 50;
#endif
    watcher.setSettleTime(settleTime);
    QCOMPARE(watcher.settleTime(), settleTime);
    QVERIFY(watcher.setPath(mRoot));
    for (int round = 1; round <= 3; ++round) {
        for (int i = 0; i < 5; ++i) {
            writeFile(path(QString::number(i)), QByteArray::number(round));
            handleEvents();
        }
        QCOMPARE(watcher.quiet.count(), round - 1);
        QTRY_COMPARE(watcher.quiet.count(), round);
        QCOMPARE(watcher.added.count(), 5);
    }
}

void tst_DirectoryWatcherChanges::settlesNotBeforeAnything()
{
    SpiedWatcher watcher;
    watcher.setSettleTime(0);
    QVERIFY(watcher.setPath(mRoot));
    writeFile(path(QStringLiteral(".hidden"))); // never reported
    handleEvents();
    QCOMPARE(watcher.quiet.count(), 0);
    writeFile(path(QStringLiteral("a")));
    QTRY_COMPARE(watcher.quiet.count(), 1);
    QCOMPARE(watcher.added.count(), 1);
}

void tst_DirectoryWatcherChanges::stops()
{
    SpiedWatcher watcher;
    watcher.stop(); // has no effect and does no harm
    writeFile(path(QStringLiteral("a")));
    QVERIFY(watcher.setPath(mRoot));
    watcher.stop();
    QCOMPARE(watcher.watchedFiles() + watcher.watchedFolders(), 0);
    QVERIFY(!watcher.addDir(mRoot));
    writeFile(path(QStringLiteral("a")), "changed");
    writeFile(path(QStringLiteral("b")));
    handleEvents();
    QCOMPARE(watcher.added.count() + watcher.modified.count(), 0);
    QVERIFY(watcher.setPath(mRoot));
    writeFile(path(QStringLiteral("c")));
    QTRY_COMPARE(names(watcher.added), QStringLiteral("c"));
}

void tst_DirectoryWatcherChanges::stopsFromReceiver()
{
    SpiedWatcher watcher;
    connect(&watcher, &DirectoryWatcher::addedFiles, &watcher, &DirectoryWatcher::stop);
    QVERIFY(watcher.setPath(mRoot));
    writeFile(path(QStringLiteral("a")));
    writeFile(path(QStringLiteral("b")));
    QTRY_COMPARE(watcher.added.count(), 1);
    handleEvents();
    QCOMPARE(watcher.added.count(), 1);
}

void tst_DirectoryWatcherChanges::stopsAtFirstReport_data()
{
    // before, after: the files below the root; folders end with "/"
    const auto row = columns<QStringList, QStringList, bool>("before", "after", "byPlatform");
    const struct
    {
        const char* name;
        QStringList before;
        QStringList after;
    } changes[] = {
        {"a folder becomes a file", {text("x/a"), text("x/b")}, {text("x")}},
        {"a file becomes a folder", {text("x")}, {text("x/a"), text("x/b")}},
        {"a file becomes an empty folder", {text("x"), text("y")}, {text("x/"), text("y/")}},
        {"another folder, without two files",
         {text("x/a"), text("x/b"), text("x/y/c")},
         {text("x/b")}},
        {"another folder, with other contents",
         {text("x/a"), text("x/b")},
         {text("x/a"), text("x/b")}},
        {"everything goes", {text("a"), text("x/b")}, {}},
    };
    for (const auto& change : changes) {
        for (const bool byPlatform : {true, false}) {
            row((QByteArray(change.name) + (byPlatform ? "" : ", by hand")).constData(),
                change.before, change.after, byPlatform);
        }
    }
}

// A receiver that stops watching gets no more signals, whatever else has changed.
void tst_DirectoryWatcherChanges::stopsAtFirstReport()
{
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    QFETCH(bool, byPlatform);
    // The names of the entries of the root.
    const auto heads = [](const QStringList& entries, bool areFolders) {
        QSet<QString> names;
        for (const QString& entry : entries) {
            if (!areFolders || entry.contains(QLatin1Char('/')))
                names.insert(entry.section(QLatin1Char('/'), 0, 0));
        }
        return names;
    };
    if (heads(before, true).intersects(heads(after, false))) {
        SKIP_ON_WINDOWS("a watched folder stays until its watcher knows");
    }
    int version = 0;
    const auto make = [&](const QStringList& entries) {
        ++version;
        for (const QString& entry : entries) {
            if (entry.endsWith(QLatin1Char('/')))
                makeFolder(path(entry));
            else
                writeFile(path(entry), QByteArray(version, 'x'));
        }
    };
    for (const bool deletes : {false, true}) {
        make(before);
        auto* watcher = new DirectoryWatcher(this);
        QVERIFY(watcher->setPath(mRoot));
        handleEvents();
        if (!byPlatform)
            watcher->findChild<QFileSystemWatcher*>()->blockSignals(true);
        int reports = 0;
        const auto end = [&] {
            ++reports;
            if (deletes)
                delete watcher;
            else
                watcher->stop();
        };
        connect(watcher, &DirectoryWatcher::addedFiles, this, end);
        connect(watcher, &DirectoryWatcher::modifiedFile, this, end);
        connect(watcher, &DirectoryWatcher::deletedFile, this, end);
        empty(mRoot);
        make(after);
        if (!byPlatform)
            watcher->onDirMod(mRoot);
        QTRY_COMPARE(reports, 1);
        handleEvents();
        QCOMPARE(reports, 1);
        if (!deletes)
            delete watcher;
        empty(mRoot);
    }
}

// The old folder is kept elsewhere, so that the new one cannot have its inode number.
void tst_DirectoryWatcherChanges::stopsAtFileOfReplacedFolder()
{
    SKIP_ON_WINDOWS("a watched folder stays until its watcher knows");
    writeFile(path(text("x/a")), "old");
    writeFile(path(text("x/b")), "old");
    SpiedWatcher watcher;
    QVERIFY(watcher.setPath(mRoot));
    handleEvents();
    // Without notifications for single files, the second pass has to find them.
    watcher.findChild<QFileSystemWatcher*>()->blockSignals(true);
    renameTo(path(text("x")), (*mSandbox)(text("away")));
    writeFile(path(text("x/a")), "another");
    writeFile(path(text("x/b")), "another");
    connect(&watcher, &DirectoryWatcher::modifiedFile, &watcher, &DirectoryWatcher::stop);
    watcher.onDirMod(mRoot);
    QTRY_COMPARE(watcher.modified.count(), 1);
    handleEvents();
    QCOMPARE(watcher.modified.count(), 1);
    QCOMPARE(watcher.added.count() + watcher.deleted.count(), 0);
}

QTEST_GUILESS_MAIN(tst_DirectoryWatcherChanges)
#include "tst_DirectoryWatcherChanges.moc"

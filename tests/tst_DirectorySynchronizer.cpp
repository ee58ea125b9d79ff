// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DirectorySynchronizer.h"

#include "DirectoryWatcher.h"
#include "LogCapture.h"
#include "Sandbox.h"
#include "SpiedSignals.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

class tst_DirectorySynchronizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void metaObject();
    void ownsItsWatcher();
    void startCopiesNothing();
    void startWithMissingSource();
    void checkDirs();
    void fullSync();
    void fullSyncFails();
    void added();
    void modified();
    void deleted();
    void deletedWithoutMirror();
    void unreadableSource();
    void everyOccurrenceIsReplaced();
    void mirrorOutsideOfTheDestination();
    void pathsAreCleaned();
    void outsideOfTheSource();
    void editingSession();

private:
    QString path(const QString& name) const { return mDir->root() + QLatin1Char('/') + name; }

    QScopedPointer<Sandbox> mDir;
};

namespace {

/// A synchronizer with its signals.
class SpiedSynchronizer : public DirectorySynchronizer
{
public:
    QSignalSpy errors{this, &DirectorySynchronizer::error};
    QSignalSpy logged{this, &DirectorySynchronizer::log};
};

} // namespace

void tst_DirectorySynchronizer::init()
{
    mDir.reset(new Sandbox);
    QVERIFY(QDir().mkpath(path(QStringLiteral("src"))));
    QVERIFY(QDir().mkpath(path(QStringLiteral("dst"))));
}

/// The order is part of the binary interface: connections may be made by number.
void tst_DirectorySynchronizer::metaObject()
{
    QCOMPARE(
        ownMethods(DirectorySynchronizer::staticMetaObject),
        QStringList({QStringLiteral("signal error(QString)"), QStringLiteral("signal log(QString)"),
                     QStringLiteral("signal mirrored(QString,QString)"),
                     QStringLiteral("signal removed(QString)"),
                     QStringLiteral("signal failed(QString,QString)"),
                     QStringLiteral("slot onFileDeleted(QString)"),
                     QStringLiteral("slot onFileAddedOrModified(QString)"),
                     QStringLiteral("slot stop()")}));
}

void tst_DirectorySynchronizer::ownsItsWatcher()
{
    QObject parent;
    auto* synchronizer = new DirectorySynchronizer(&parent);
    QCOMPARE(synchronizer->parent(), &parent);
    QCOMPARE(synchronizer->findChildren<DirectoryWatcher*>().size(), 1);
}

void tst_DirectorySynchronizer::startCopiesNothing()
{
    writeFile(path(QStringLiteral("src/a")), "a");
    SpiedSynchronizer synchronizer;
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    handleEvents();
    QVERIFY(filesBelow(path(QStringLiteral("dst"))).isEmpty());
    QCOMPARE(synchronizer.errors.count() + synchronizer.logged.count(), 0);
}

void tst_DirectorySynchronizer::startWithMissingSource()
{
    LogCapture records;
    SpiedSynchronizer synchronizer;
    const QString source = path(QStringLiteral("missing"));
    QVERIFY(!synchronizer.startWatcher(source, path(QStringLiteral("dst"))));
    QCOMPARE(
        textsOf(synchronizer.errors),
        QStringList({source + QStringLiteral(" doesn't exist"), QStringLiteral("Watcher fail")}));
    QCOMPARE(records.lines(),
             QStringList({QStringLiteral("critical orvautils DirectorySynchronizer checkDirs: ")
                              + source + QStringLiteral(" doesn't exist"),
                          QStringLiteral("critical orvautils DirectoryWatcher setPath: Wrong path"),
                          QStringLiteral("critical orvautils DirectorySynchronizer startWatcher: "
                                         "Watcher fail")}));
}

void tst_DirectorySynchronizer::checkDirs()
{
    SKIP_ON_WINDOWS("a watched folder stays until its watcher knows");
    SpiedSynchronizer synchronizer;
    // The destination is not examined.
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("none"))));
    QVERIFY(synchronizer.checkDirs());
    QCOMPARE(synchronizer.errors.count(), 0);
    QVERIFY(QDir(path(QStringLiteral("src"))).removeRecursively());
    LogCapture records;
    QVERIFY(synchronizer.checkDirs());
    const QString message = path(QStringLiteral("src")) + QStringLiteral(" doesn't exist");
    QCOMPARE(textsOf(synchronizer.errors), QStringList(message));
    QCOMPARE(records.lines(),
             QStringList(QStringLiteral("critical orvautils DirectorySynchronizer checkDirs: ")
                         + message));
}

void tst_DirectorySynchronizer::fullSync()
{
    writeFile(path(QStringLiteral("src/a")), "a");
    writeFile(path(QStringLiteral("src/x/.b")), "hidden");
    writeFile(path(QStringLiteral("dst/old")), "old");
    SpiedSynchronizer synchronizer;
    QVERIFY(synchronizer.fullSync(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    QCOMPARE(filesBelow(path(QStringLiteral("dst"))), filesBelow(path(QStringLiteral("src"))));
    QCOMPARE(contentOf(path(QStringLiteral("dst/x/.b"))), QByteArray("hidden"));
    QVERIFY(!QFile::exists(path(QStringLiteral("dst/old"))));
    QCOMPARE(synchronizer.errors.count() + synchronizer.logged.count(), 0);
}

void tst_DirectorySynchronizer::fullSyncFails()
{
    LogCapture records;
    SpiedSynchronizer synchronizer;
    QVERIFY(!synchronizer.fullSync(path(QStringLiteral("missing")), path(QStringLiteral("dst"))));
    QCOMPARE(synchronizer.errors.count(), 0);
    QCOMPARE(records.lines(),
             QStringList({QStringLiteral("critical orvautils FileUtils copyDir: ")
                              + path(QStringLiteral("missing")) + QStringLiteral(" Doesnt exists"),
                          QStringLiteral("critical orvautils DirectorySynchronizer fullSync: "
                                         "FullSync fail")}));
}

void tst_DirectorySynchronizer::added()
{
    SpiedSynchronizer synchronizer;
    QVERIFY(QDir().mkpath(path(QStringLiteral("src/x"))));
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    writeFile(path(QStringLiteral("src/x/y.txt")), "content");
    QTRY_COMPARE(contentOf(path(QStringLiteral("dst/x/y.txt"))), QByteArray("content"));
    QVERIFY(textsOf(synchronizer.logged)
                .contains(QStringLiteral("[MOD] ") + path(QStringLiteral("dst/x/y.txt"))));
    QCOMPARE(synchronizer.errors.count(), 0);
}

void tst_DirectorySynchronizer::modified()
{
    writeFile(path(QStringLiteral("src/x/y.txt")), "before");
    SpiedSynchronizer synchronizer;
    QVERIFY(synchronizer.fullSync(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    writeFile(path(QStringLiteral("src/x/y.txt")), "after");
    QTRY_COMPARE(contentOf(path(QStringLiteral("dst/x/y.txt"))), QByteArray("after"));
    QTRY_VERIFY(textsOf(synchronizer.logged)
                    .contains(QStringLiteral("[MOD] ") + path(QStringLiteral("dst/x/y.txt"))));
}

void tst_DirectorySynchronizer::deleted()
{
    writeFile(path(QStringLiteral("src/x/y.txt")), "content");
    SpiedSynchronizer synchronizer;
    QVERIFY(synchronizer.fullSync(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    QVERIFY(QFile::remove(path(QStringLiteral("src/x/y.txt"))));
    QTRY_VERIFY(!QFile::exists(path(QStringLiteral("dst/x/y.txt"))));
    QTRY_COMPARE(textsOf(synchronizer.logged),
                 QStringList(QStringLiteral("[DEL] ") + path(QStringLiteral("dst/x/y.txt"))));
    QCOMPARE(synchronizer.errors.count(), 0);
}

void tst_DirectorySynchronizer::deletedWithoutMirror()
{
    writeFile(path(QStringLiteral("src/a")), "a");
    SpiedSynchronizer synchronizer;
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    QVERIFY(QFile::remove(path(QStringLiteral("src/a"))));
    QTRY_COMPARE(textsOf(synchronizer.errors),
                 QStringList(QStringLiteral("unable to remove ") + path(QStringLiteral("dst/a"))));
    QCOMPARE(synchronizer.logged.count(), 0);
    // The synchronizer continues.
    writeFile(path(QStringLiteral("src/b")), "b");
    QTRY_COMPARE(contentOf(path(QStringLiteral("dst/b"))), QByteArray("b"));
}

void tst_DirectorySynchronizer::unreadableSource()
{
    LogCapture records;
    SpiedSynchronizer synchronizer;
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    // Deleted before it could be copied; its folder is made in the mirror nevertheless.
    synchronizer.onFileAddedOrModified(path(QStringLiteral("src/x/gone")));
    QCOMPARE(textsOf(synchronizer.errors),
             QStringList(QStringLiteral("unable to copy ") + path(QStringLiteral("src/x/gone"))));
    QVERIFY(QDir(path(QStringLiteral("dst/x"))).exists());
}

void tst_DirectorySynchronizer::everyOccurrenceIsReplaced()
{
    const QString source = path(QStringLiteral("src"));
    const QString again = source + source; // the path of the source twice
    writeFile(again + QStringLiteral("/a"), "a");
    SpiedSynchronizer synchronizer;
    const QString destination = path(QStringLiteral("dst"));
    QVERIFY(synchronizer.startWatcher(source, destination));
    synchronizer.onFileAddedOrModified(again + QStringLiteral("/a"));
    QCOMPARE(
        textsOf(synchronizer.logged),
        QStringList(QStringLiteral("[MOD] ") + destination + destination + QStringLiteral("/a")));
    QCOMPARE(contentOf(destination + destination + QStringLiteral("/a")), QByteArray("a"));
}

// Of the root folder every "/" is an occurrence: the mirror is not below the destination, and
// nothing is removed to make room for it.
void tst_DirectorySynchronizer::mirrorOutsideOfTheDestination()
{
    SKIP_ON_WINDOWS("a path there does not begin with a slash");
    LogCapture records;
    SpiedSynchronizer synchronizer;
    const QString destination = path(QStringLiteral("dst"));
    QVERIFY(!synchronizer.startWatcher(QStringLiteral("/"), destination));
    const QString file = path(QStringLiteral("src/a"));
    writeFile(file, "a");
    QString mirror = file;
    mirror.replace(QLatin1Char('/'), destination);
    writeFile(mirror + QStringLiteral("/kept"), "kept");
    synchronizer.onFileAddedOrModified(file);
    QCOMPARE(textsOf(synchronizer.errors).last(), QStringLiteral("unable to copy ") + file);
    QCOMPARE(contentOf(mirror + QStringLiteral("/kept")), QByteArray("kept"));
}

void tst_DirectorySynchronizer::pathsAreCleaned()
{
    DirectorySynchronizer synchronizer;
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("dst/../src//")),
                                      path(QStringLiteral("./dst/"))));
    writeFile(path(QStringLiteral("src/x/a")), "a");
    QTRY_COMPARE(contentOf(path(QStringLiteral("dst/x/a"))), QByteArray("a"));
}

void tst_DirectorySynchronizer::outsideOfTheSource()
{
    writeFile(path(QStringLiteral("elsewhere")), "precious");
    SpiedSynchronizer synchronizer;
    const QString file = path(QStringLiteral("elsewhere"));
    for (const bool started : {false, true}) {
        if (started)
            QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")),
                                              path(QStringLiteral("dst"))));
        synchronizer.errors.clear();
        synchronizer.onFileDeleted(file);
        synchronizer.onFileAddedOrModified(file);
        QCOMPARE(textsOf(synchronizer.errors),
                 QStringList({QStringLiteral("unable to remove ") + file,
                              QStringLiteral("unable to copy ") + file}));
        QCOMPARE(contentOf(file), QByteArray("precious"));

        synchronizer.errors.clear();
        const QString missing = path(QStringLiteral("nowhere/file"));
        synchronizer.onFileAddedOrModified(missing);
        QCOMPARE(textsOf(synchronizer.errors),
                 QStringList(QStringLiteral("unable to copy ") + missing));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("nowhere"))));
    }
}

// Simulates a user in another process who copies, edits, renames and deletes.
void tst_DirectorySynchronizer::editingSession()
{
    SKIP_ON_WINDOWS("there is no shell");
    for (int i = 0; i < 50; ++i)
        writeFile(path(QStringLiteral("src/d%1/f%2").arg(i % 5).arg(i)), QByteArray::number(i));
    DirectorySynchronizer synchronizer;
    const QString source = path(QStringLiteral("src"));
    const QString destination = path(QStringLiteral("dst"));
    QVERIFY(synchronizer.fullSync(source, destination));
    QVERIFY(synchronizer.startWatcher(source, destination));
    LogCapture quiet; // files that vanish before they are copied are logged
    QProcess session;
    session.start(
        QStringLiteral("sh"),
        {QStringLiteral("-c"),
         QStringLiteral("cd \"$0\" && i=0; while [ $i -lt 200 ]; do d=d$((i%5)); mkdir -p $d; echo "
                        "$i > $d/n$i; echo more >> $d/n$i; cp $d/n$i c$i; echo safe$i > .t; mv .t "
                        "c$((i/2)); [ $((i%4)) = 0 ] && rm -f c$((i-3)); [ $((i%7)) = 0 ] && mv "
                        "$d/n$i r$i; [ $((i%60)) = 59 ] && mv d1 old$i; [ $((i%90)) = 89 ] && rm "
                        "-r d2; i=$((i+1)); done"),
         source});
    QTRY_COMPARE_WITH_TIMEOUT(session.state(), QProcess::NotRunning, 60000);
    QTRY_COMPARE_WITH_TIMEOUT(filesBelow(destination).keys(), filesBelow(source).keys(), 20000);
    QTRY_COMPARE_WITH_TIMEOUT(filesBelow(destination), filesBelow(source), 20000);
    QVERIFY(filesBelow(source).size() > 150);
}

QTEST_GUILESS_MAIN(tst_DirectorySynchronizer)
#include "tst_DirectorySynchronizer.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DirectorySynchronizer.h"

#include "DirectoryWatcher.h"
#include "LogCapture.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

class tst_DirectorySynchronizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
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
    void pathsAreCleaned();
    void outsideOfTheSource();
    void editingSession();

private:
    QString path(const QString& name) const { return mDir->path() + QLatin1Char('/') + name; }

    QScopedPointer<QTemporaryDir> mDir;
};

namespace {

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

QByteArray read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

// The visible files of a tree with their content.
QMap<QString, QByteArray> contentOf(const QString& root)
{
    QMap<QString, QByteArray> content;
    QDirIterator entries(root, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString file = entries.next();
        content.insert(file.mid(root.size()), read(file));
    }
    return content;
}

QStringList texts(const QSignalSpy& spy)
{
    QStringList all;
    for (const QList<QVariant>& arguments : spy)
        all.append(arguments.at(0).toString());
    return all;
}

} // namespace

void tst_DirectorySynchronizer::init()
{
    mDir.reset(new QTemporaryDir);
    QVERIFY(mDir->isValid());
    QVERIFY(QDir().mkpath(path(QStringLiteral("src"))));
    QVERIFY(QDir().mkpath(path(QStringLiteral("dst"))));
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
    write(path(QStringLiteral("src/a")), "a");
    DirectorySynchronizer synchronizer;
    QSignalSpy error(&synchronizer, &DirectorySynchronizer::error);
    QSignalSpy log(&synchronizer, &DirectorySynchronizer::log);
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    QTest::qWait(100);
    QVERIFY(contentOf(path(QStringLiteral("dst"))).isEmpty());
    QCOMPARE(error.count() + log.count(), 0);
}

void tst_DirectorySynchronizer::startWithMissingSource()
{
    LogCapture records;
    DirectorySynchronizer synchronizer;
    QSignalSpy error(&synchronizer, &DirectorySynchronizer::error);
    const QString source = path(QStringLiteral("missing"));
    QVERIFY(!synchronizer.startWatcher(source, path(QStringLiteral("dst"))));
    QCOMPARE(
        texts(error),
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
    DirectorySynchronizer synchronizer;
    QSignalSpy error(&synchronizer, &DirectorySynchronizer::error);
    // The destination is not looked at.
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("none"))));
    QVERIFY(synchronizer.checkDirs());
    QCOMPARE(error.count(), 0);
    QVERIFY(QDir(path(QStringLiteral("src"))).removeRecursively());
    LogCapture records;
    QVERIFY(synchronizer.checkDirs());
    const QString message = path(QStringLiteral("src")) + QStringLiteral(" doesn't exist");
    QCOMPARE(texts(error), QStringList(message));
    QCOMPARE(records.lines(),
             QStringList(QStringLiteral("critical orvautils DirectorySynchronizer checkDirs: ")
                         + message));
}

void tst_DirectorySynchronizer::fullSync()
{
    write(path(QStringLiteral("src/a")), "a");
    write(path(QStringLiteral("src/x/.b")), "hidden");
    write(path(QStringLiteral("dst/old")), "old");
    DirectorySynchronizer synchronizer;
    QSignalSpy error(&synchronizer, &DirectorySynchronizer::error);
    QSignalSpy log(&synchronizer, &DirectorySynchronizer::log);
    QVERIFY(synchronizer.fullSync(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    QCOMPARE(contentOf(path(QStringLiteral("dst"))), contentOf(path(QStringLiteral("src"))));
    QCOMPARE(read(path(QStringLiteral("dst/x/.b"))), QByteArray("hidden"));
    QVERIFY(!QFile::exists(path(QStringLiteral("dst/old"))));
    QCOMPARE(error.count() + log.count(), 0);
}

void tst_DirectorySynchronizer::fullSyncFails()
{
    LogCapture records;
    DirectorySynchronizer synchronizer;
    QSignalSpy error(&synchronizer, &DirectorySynchronizer::error);
    QVERIFY(!synchronizer.fullSync(path(QStringLiteral("missing")), path(QStringLiteral("dst"))));
    QCOMPARE(error.count(), 0);
    QCOMPARE(records.lines(),
             QStringList({QStringLiteral("critical orvautils FileUtils copyDir: ")
                              + path(QStringLiteral("missing")) + QStringLiteral(" Doesnt exists"),
                          QStringLiteral("critical orvautils DirectorySynchronizer fullSync: "
                                         "FullSync fail")}));
}

void tst_DirectorySynchronizer::added()
{
    DirectorySynchronizer synchronizer;
    QSignalSpy error(&synchronizer, &DirectorySynchronizer::error);
    QSignalSpy log(&synchronizer, &DirectorySynchronizer::log);
    QVERIFY(QDir().mkpath(path(QStringLiteral("src/x"))));
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    write(path(QStringLiteral("src/x/y.txt")), "content");
    QTRY_COMPARE(read(path(QStringLiteral("dst/x/y.txt"))), QByteArray("content"));
    QVERIFY(texts(log).contains(QStringLiteral("[MOD] ") + path(QStringLiteral("dst/x/y.txt"))));
    QCOMPARE(error.count(), 0);
}

void tst_DirectorySynchronizer::modified()
{
    write(path(QStringLiteral("src/x/y.txt")), "before");
    DirectorySynchronizer synchronizer;
    QSignalSpy log(&synchronizer, &DirectorySynchronizer::log);
    QVERIFY(synchronizer.fullSync(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    write(path(QStringLiteral("src/x/y.txt")), "after");
    QTRY_COMPARE(read(path(QStringLiteral("dst/x/y.txt"))), QByteArray("after"));
    QTRY_VERIFY(
        texts(log).contains(QStringLiteral("[MOD] ") + path(QStringLiteral("dst/x/y.txt"))));
}

void tst_DirectorySynchronizer::deleted()
{
    write(path(QStringLiteral("src/x/y.txt")), "content");
    DirectorySynchronizer synchronizer;
    QSignalSpy error(&synchronizer, &DirectorySynchronizer::error);
    QSignalSpy log(&synchronizer, &DirectorySynchronizer::log);
    QVERIFY(synchronizer.fullSync(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    QVERIFY(QFile::remove(path(QStringLiteral("src/x/y.txt"))));
    QTRY_VERIFY(!QFile::exists(path(QStringLiteral("dst/x/y.txt"))));
    QTRY_COMPARE(texts(log),
                 QStringList(QStringLiteral("[DEL] ") + path(QStringLiteral("dst/x/y.txt"))));
    QCOMPARE(error.count(), 0);
}

void tst_DirectorySynchronizer::deletedWithoutMirror()
{
    write(path(QStringLiteral("src/a")), "a");
    DirectorySynchronizer synchronizer;
    QSignalSpy error(&synchronizer, &DirectorySynchronizer::error);
    QSignalSpy log(&synchronizer, &DirectorySynchronizer::log);
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    QVERIFY(QFile::remove(path(QStringLiteral("src/a"))));
    QTRY_COMPARE(texts(error),
                 QStringList(QStringLiteral("unable to remove ") + path(QStringLiteral("dst/a"))));
    QCOMPARE(log.count(), 0);
    // It goes on.
    write(path(QStringLiteral("src/b")), "b");
    QTRY_COMPARE(read(path(QStringLiteral("dst/b"))), QByteArray("b"));
}

void tst_DirectorySynchronizer::unreadableSource()
{
    LogCapture records;
    DirectorySynchronizer synchronizer;
    QSignalSpy error(&synchronizer, &DirectorySynchronizer::error);
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")), path(QStringLiteral("dst"))));
    // Gone before it could be copied; the folder of its mirror is made all the same.
    synchronizer.onFileAddedOrModified(path(QStringLiteral("src/x/gone")));
    QCOMPARE(texts(error),
             QStringList(QStringLiteral("unable to copy ") + path(QStringLiteral("src/x/gone"))));
    QVERIFY(QDir(path(QStringLiteral("dst/x"))).exists());
}

void tst_DirectorySynchronizer::everyOccurrenceIsReplaced()
{
    const QString source = path(QStringLiteral("src"));
    const QString again = source + source; // the source's path once more, further down
    write(again + QStringLiteral("/a"), "a");
    DirectorySynchronizer synchronizer;
    QSignalSpy log(&synchronizer, &DirectorySynchronizer::log);
    const QString destination = path(QStringLiteral("dst"));
    QVERIFY(synchronizer.startWatcher(source, destination));
    synchronizer.onFileAddedOrModified(again + QStringLiteral("/a"));
    QCOMPARE(
        texts(log),
        QStringList(QStringLiteral("[MOD] ") + destination + destination + QStringLiteral("/a")));
    QCOMPARE(read(destination + destination + QStringLiteral("/a")), QByteArray("a"));
}

void tst_DirectorySynchronizer::pathsAreCleaned()
{
    DirectorySynchronizer synchronizer;
    QVERIFY(synchronizer.startWatcher(path(QStringLiteral("dst/../src//")),
                                      path(QStringLiteral("./dst/"))));
    write(path(QStringLiteral("src/x/a")), "a");
    QTRY_COMPARE(read(path(QStringLiteral("dst/x/a"))), QByteArray("a"));
}

void tst_DirectorySynchronizer::outsideOfTheSource()
{
    write(path(QStringLiteral("elsewhere")), "precious");
    DirectorySynchronizer synchronizer;
    QSignalSpy error(&synchronizer, &DirectorySynchronizer::error);
    const QString file = path(QStringLiteral("elsewhere"));
    for (const bool started : {false, true}) {
        if (started)
            QVERIFY(synchronizer.startWatcher(path(QStringLiteral("src")),
                                              path(QStringLiteral("dst"))));
        error.clear();
        synchronizer.onFileDeleted(file);
        synchronizer.onFileAddedOrModified(file);
        QCOMPARE(texts(error),
                 QStringList({QStringLiteral("unable to remove ") + file,
                              QStringLiteral("unable to copy ") + file}));
        QCOMPARE(read(file), QByteArray("precious"));

        error.clear();
        const QString missing = path(QStringLiteral("nowhere/file"));
        synchronizer.onFileAddedOrModified(missing);
        QCOMPARE(texts(error), QStringList(QStringLiteral("unable to copy ") + missing));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("nowhere"))));
    }
}

// A person at work, by another process: copies, edits, renames and deletes.
void tst_DirectorySynchronizer::editingSession()
{
    for (int i = 0; i < 50; ++i)
        write(path(QStringLiteral("src/d%1/f%2").arg(i % 5).arg(i)), QByteArray::number(i));
    DirectorySynchronizer synchronizer;
    const QString source = path(QStringLiteral("src"));
    const QString destination = path(QStringLiteral("dst"));
    QVERIFY(synchronizer.fullSync(source, destination));
    QVERIFY(synchronizer.startWatcher(source, destination));
    LogCapture quiet; // what comes and goes faster than it can be copied is logged
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
    QTRY_COMPARE_WITH_TIMEOUT(contentOf(destination).keys(), contentOf(source).keys(), 20000);
    QTRY_COMPARE_WITH_TIMEOUT(contentOf(destination), contentOf(source), 20000);
    QVERIFY(contentOf(source).size() > 150);
}

QTEST_GUILESS_MAIN(tst_DirectorySynchronizer)
#include "tst_DirectorySynchronizer.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Observed operations on folder trees: their progress, cancellation, and the reason of a failure.

#include "FileUtils.h"

#include "Columns.h"
#include "FileLimit.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "PortableFiles.h"
#include "Sandbox.h"
#include "Text.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QThread>
#include <QtTest>

#include <cerrno>

#if defined(__clang__)
// QSKIP() is a macro with optional arguments.
#pragma clang diagnostic ignored "-Wgnu-zero-variadic-macro-arguments"
#endif

namespace {

/// 25 files of 100 bytes in five folders, below "s".
class TreeBox : public Sandbox
{
public:
    TreeBox()
    {
        for (int i = 0; i < 25; ++i)
            file(QStringLiteral("s/%1/%2").arg(i / 5).arg(i % 5), QByteArray(100, 'x'));
    }
};

int countFiles(const QString& folder)
{
    return int(filesBelow(folder).size());
}

/// Records its calls, takes some time for each, and cancels after a number of them.
struct Watcher
{
    explicit Watcher(int mostCalls = -1)
        : calls(mostCalls)
    { }

    QVector<FileUtils::TreeProgress> seen;
    QVector<qint64> times;
    QElapsedTimer clock;
    int calls;
    int pause = 0;

    FileUtils::TreeObserver observer()
    {
        clock.start();
        return [this](const FileUtils::TreeProgress& progress) {
            seen.append(progress);
            times.append(clock.elapsed());
            QThread::msleep(static_cast<unsigned long>(pause));
            return seen.size() != calls;
        };
    }
};

} // namespace

class tst_FileUtilsWatched : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copyDir();
    void copyDirCancelled();
    void copyDirReasons_data();
    void copyDirReasons();
    void copyDirOfAFileThatGoes();
    void copyDirOntoAFullDisk();
    void reportsAreRare();
    void removeContentDirectory();
    void removeContentDirectoryCancelled();
    void removeContentDirectoryReasons();
    void folderSize();
    void folderSizeCancelled();
    void folderSizeReasons();
    void errorIsNeverCleared();
    void debug();
};

void tst_FileUtilsWatched::copyDir()
{
    TreeBox box;
    Watcher watcher;
    QString error;
    QVERIFY(FileUtils::copyDir(box(text("s")), box(text("d")), false, watcher.observer(), &error));
    QCOMPARE(error, QString());
    QCOMPARE(treeOf(box(text("d"))), treeOf(box(text("s"))));
    QVERIFY(watcher.seen.size() >= 2);
    const FileUtils::TreeProgress first = watcher.seen.first();
    QCOMPARE(first.files, 1);
    QCOMPARE(first.totalFiles, 25);
    QCOMPARE(first.bytes, qint64(100));
    QCOMPARE(first.totalBytes, qint64(-1));
    QVERIFY(first.path.startsWith(box(text("d/"))));
    const FileUtils::TreeProgress last = watcher.seen.last();
    QCOMPARE(last.files, 25);
    QCOMPARE(last.totalFiles, 25);
    QCOMPARE(last.bytes, qint64(2500));
    QCOMPARE(last.totalBytes, qint64(2500));
}

void tst_FileUtilsWatched::copyDirCancelled()
{
    TreeBox box;
    Watcher watcher(1);
    QString error;
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box(text("s")), box(text("d")), false, watcher.observer(), &error));
    QCOMPARE(error, text("The operation was cancelled"));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(watcher.seen.size(), 1);
    QCOMPARE(countFiles(box(text("d"))), 1);
}

void tst_FileUtilsWatched::copyDirReasons_data()
{
    const auto row = columns<QString, QString, QString>("source", "destination", "error");
    row("missing", "nowhere", "d", "The folder %1/nowhere does not exist");
    row("into itself", "s", "s/d", "%1/s cannot be copied");
    row("folder cannot be made", "s", "file/d", "The folder %1/file/d cannot be made");
    row("unreadable file", "s", "d", "%1/s/secret cannot be copied (Permission denied)");
}

void tst_FileUtilsWatched::copyDirReasons()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    QFETCH(QString, source);
    QFETCH(QString, destination);
    QFETCH(QString, error);
    Sandbox box;
    box.file(text("file"));
    box.lock(box.file(text("s/secret")), 0);
    const OrdinaryUser user;
    QString reason;
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box(source), box(destination), true, nullptr, &reason));
    QCOMPARE(reason, error.arg(box.root()));
    QVERIFY(!log.lines().isEmpty());
}

void tst_FileUtilsWatched::copyDirOfAFileThatGoes()
{
    TreeBox box;
    const LogCapture log;
    const auto removeSource = [&box](const FileUtils::TreeProgress&) {
        QDir(box(text("s"))).removeRecursively();
        return true;
    };
    QString error;
    QVERIFY(!FileUtils::copyDir(box(text("s")), box(text("d")), false, removeSource, &error));
    QVERIFY2(error.endsWith(text(" cannot be copied (%1)").arg(qt_error_string(ENOENT))),
             qPrintable(error));
}

void tst_FileUtilsWatched::copyDirOntoAFullDisk()
{
#ifdef Q_OS_WIN
    SKIP_ON_WINDOWS("there is no limit of the size of files");
#else
    // Small files and large ones are copied in different ways, and so are those that replace one.
    const LogCapture log;
    for (const int size : {20000, 2000000}) {
        for (const bool isReplaced : {false, true}) {
            Sandbox box;
            const QString file = box.file(text("s/file"), QByteArray(size, 'x'));
            if (isReplaced)
                box.file(text("d/file"));
            QString error;
            {
                const FileLimit limit(RLIMIT_FSIZE, 10000);
                QVERIFY(!FileUtils::copyDir(box(text("s")), box(text("d")), true, nullptr, &error));
            }
            QCOMPARE(error, file + text(" cannot be copied (%1)").arg(qt_error_string(EFBIG)));
        }
    }
#endif
}

void tst_FileUtilsWatched::reportsAreRare()
{
    // An observer that takes 20 ms is called for the first file of a fast copy and at its end, and
    // in between at least 50 ms after its last call.
    TreeBox box;
    Watcher watcher;
    watcher.pause = 20;
    QVERIFY(FileUtils::copyDir(box(text("s")), box(text("d")), false, watcher.observer()));
    for (int i = 1; i + 1 < watcher.times.size(); ++i)
        QVERIFY(watcher.times.at(i) - watcher.times.at(i - 1) >= 50);
}

void tst_FileUtilsWatched::removeContentDirectory()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    TreeBox box;
    box.link(text("s/link"), text("0"));
    Watcher watcher;
    QString error;
    QVERIFY(FileUtils::removeContentDirectory(box(text("s")), true, watcher.observer(), &error));
    QCOMPARE(error, QString());
    QCOMPARE(treeOf(box.root()), QStringList(text("s/")));
    QCOMPARE(watcher.seen.first().totalFiles, 26);
    QCOMPARE(watcher.seen.last().files, 26);
    QCOMPARE(watcher.seen.last().bytes, qint64(0));
}

void tst_FileUtilsWatched::removeContentDirectoryCancelled()
{
    TreeBox box;
    Watcher watcher(1);
    QString error;
    LogCapture log;
    QVERIFY(!FileUtils::removeContentDirectory(box(text("s")), true, watcher.observer(), &error));
    QCOMPARE(error, text("The operation was cancelled"));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(countFiles(box(text("s"))), 24);
}

void tst_FileUtilsWatched::removeContentDirectoryReasons()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    Sandbox box;
    const QString file = box.file(text("s/locked/file"));
    box.lock(box(text("s/locked")), 0555);
    const OrdinaryUser user;
    LogCapture log;
    QString error;
    QVERIFY(!FileUtils::removeContentDirectory(box(text("s")), true, nullptr, &error));
    QCOMPARE(error, file + text(" cannot be removed"));
    QVERIFY(!FileUtils::removeContentDirectory(box(text("none")), true, nullptr, &error));
    QCOMPARE(error, text("The folder %1 does not exist").arg(box(text("none"))));
    QVERIFY(!FileUtils::removeContentDirectory(text("s"), true, nullptr, &error));
    QCOMPARE(error, text("\"s\" is no path of a folder to empty"));
}

void tst_FileUtilsWatched::folderSize()
{
    TreeBox box;
    Watcher watcher;
    QString error;
    int count = 0;
    QDateTime latest;
    QCOMPARE(FileUtils::folderSize(box(text("s")), &count, &latest, watcher.observer(), &error),
             qint64(2500));
    QCOMPARE(error, QString());
    QCOMPARE(count, 25);
    QVERIFY(latest.isValid());
    QCOMPARE(watcher.seen.first().totalFiles, -1);
    const FileUtils::TreeProgress last = watcher.seen.last();
    QCOMPARE(last.files, 25);
    QCOMPARE(last.totalFiles, 25);
    QCOMPARE(last.totalBytes, qint64(2500));
}

void tst_FileUtilsWatched::folderSizeCancelled()
{
    TreeBox box;
    Watcher watcher(1);
    QString error;
    int count = 0;
    QCOMPARE(FileUtils::folderSize(box(text("s")), &count, nullptr, watcher.observer(), &error),
             qint64(100));
    QCOMPARE(count, 1);
    QCOMPARE(error, text("The operation was cancelled"));
}

void tst_FileUtilsWatched::folderSizeReasons()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    if (portable && getuid() == 0)
        QSKIP("QDir answers for the user who started the process, and root reads every folder");
    Sandbox box;
    box.file(text("s/a"), "123");
    box.lock(box.folder(text("s/locked")), 0);
    const OrdinaryUser user;
    QString error;
    QCOMPARE(FileUtils::folderSize(box(text("s")), nullptr, nullptr, nullptr, &error), qint64(3));
    QCOMPARE(error, text("The folder %1 cannot be read").arg(box(text("s/locked"))));
    error.clear();
    QCOMPARE(FileUtils::folderSize(box(text("x")), nullptr, nullptr, nullptr, &error), qint64(0));
    QCOMPARE(error, text("The folder %1 does not exist").arg(box(text("x"))));
}

void tst_FileUtilsWatched::errorIsNeverCleared()
{
    TreeBox box;
    QString error = text("before");
    QVERIFY(FileUtils::copyDir(box(text("s")), box(text("d")), false, nullptr, &error));
    FileUtils::folderSize(box(text("s")), nullptr, nullptr, nullptr, &error);
    QVERIFY(FileUtils::removeContentDirectory(box(text("d")), true, nullptr, &error));
    QCOMPARE(error, text("before"));
}

void tst_FileUtilsWatched::debug()
{
    FileUtils::TreeProgress progress;
    QString written;
    QDebug(&written) << progress << 1;
    QCOMPARE(written.trimmed(), text("TreeProgress(0 of ? files, 0 of ? bytes, \"\") 1"));
    progress.files = 3;
    progress.totalFiles = 40;
    progress.bytes = progress.totalBytes = Q_INT64_C(5000000000);
    progress.path = text("/a b");
    written.clear();
    QDebug(&written) << progress;
    QCOMPARE(written.trimmed(),
             text("TreeProgress(3 of 40 files, 5000000000 of 5000000000 bytes, \"/a b\")"));
}

QTEST_MAIN(tst_FileUtilsWatched)
#include "tst_FileUtilsWatched.moc"

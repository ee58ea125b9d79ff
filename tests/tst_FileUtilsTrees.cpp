// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Measuring, listing and removing folder trees.

#include "FileUtils.h"

#include "Columns.h"
#include "FileLimit.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "PortableFiles.h"
#include "Sandbox.h"
#include "SystemCalls.h"
#include "Text.h"

#include <QDateTime>
#include <QRegExp>
#include <QtTest>

#include <atomic>
#include <thread>

#if defined(__clang__)
// QSKIP() is a macro with optional arguments.
#pragma clang diagnostic ignored "-Wgnu-zero-variadic-macro-arguments"
#endif

class tst_FileUtilsTrees : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void folderSize();
    void folderSizeOfNothing();
    void folderSizeLeavesOutDsStore();
    void folderSizeFollowsLinks();
    void folderSizeLatestModification();

    void listFilesInFileSystem_data();
    void listFilesInFileSystem();
    void listFilesOfNothing();
    void listFilesAppends();
    void listFilesIgnoresWhatIsNeither();
    void listDirectoriesInFileSystem();
    void listDirectoriesOfNothing();
    void listFolderName();
    void listResources();
    void listEntries();
    void listEntriesThatAreNoText();
    void listEntriesRefusals_data();
    void listEntriesRefusals();
    void listEntriesOfAFolderThatGoes();
    void linkLoopsAreWalkedOnce();
    void namesThatAreNoText();
    void folderNamesThatAreNoText();
    void manyLevels();

    void removeContentDirectoryGuards_data();
    void removeContentDirectoryGuards();
    void removeContentDirectory_data();
    void removeContentDirectory();
    void removeContentDirectoryLinks();
    void removeContentDirectoryStopsAtAFile();
    void removeContentDirectoryStopsAtAFolder();
    void removeContentDirectoryLeavesWhatComesLater();
    void removeContentDirectoryUnreadable();

    void removeEmptyDirs_data();
    void removeEmptyDirs();
    void removeEmptyDirsLeavesLinks();

    void forceDirectoryCreation_data();
    void forceDirectoryCreation();
    void forceDirectoryCreationFailure();
    void removeDirectory();
    void removeDirectoryRefusals_data();
    void removeDirectoryRefusals();
    void removeDirectoryDepth();
    void removeDirectoryDefaultDepth();
    void removeDirectoryOrder();
    void removeDirectoryNotRecursive();
    void removeDirectoryCannotRemoveFile();
    void removeDirectoryCannotRemoveFolder();
    void removeDirectoryLeavesSpecialFiles();
    void removeDirectoryLinks();
    void removeDirectoryLeavesBrokenLinks();
    void removeDirectoryOfALink_data();
    void removeDirectoryOfALink();
};

void tst_FileUtilsTrees::cleanup()
{
    QLocale::setDefault(QLocale::c());
}

// folderSize

void tst_FileUtilsTrees::folderSize()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    box.file(text("t/a"), QByteArray(1000, 'a'));
    box.file(text("t/.hidden"), QByteArray(200, 'b'));
    box.file(text("t/sub/c"), QByteArray(30, 'c'));
    box.file(text("t/.hiddenSub/deep/d"), QByteArray(4, 'd'));
    box.file(text("t/empty"), QByteArray());
    box.folder(text("t/emptyFolder"));
    box.pipe(text("t/pipe"));
    box.link(text("t/broken"), text("nowhere"));
    QCOMPARE(FileUtils::folderSize(box(text("t"))), qint64(1234));
    int count = 7;
    QCOMPARE(FileUtils::folderSize(box(text("t")), &count), qint64(1234));
    QCOMPARE(count, 7 + 5);
    QCOMPARE(FileUtils::folderSize(box(text("x/..//t/")), &count, nullptr), qint64(1234));
    QCOMPARE(count, 7 + 5 + 5);
    const CurrentFolder current(box.root());
    QCOMPARE(FileUtils::folderSize(text("t")), qint64(1234));
}

void tst_FileUtilsTrees::folderSizeOfNothing()
{
    Sandbox box;
    const QString file = box.file(text("file"));
    int count = 3;
    QDateTime latest;
    for (const QString& path : {QString(), box(text("missing")), file}) {
        QCOMPARE(FileUtils::folderSize(path, &count, &latest), qint64(0));
        QCOMPARE(count, 3);
        QVERIFY(latest.isNull());
    }
    QCOMPARE(FileUtils::folderSize(box.folder(text("empty")), &count, &latest), qint64(0));
    QCOMPARE(count, 3);
    QVERIFY(latest.isNull());
}

void tst_FileUtilsTrees::folderSizeLeavesOutDsStore()
{
    Sandbox box;
    box.file(text("only/.DS_Store"));
    box.file(text("only/sub/.ds_store"));
    int count = 3;
    QDateTime latest;
    QCOMPARE(FileUtils::folderSize(box(text("only")), &count, &latest), qint64(0));
    QCOMPARE(count, 3);
    QVERIFY(latest.isNull());
    // A folder of that name is entered, and other hidden files are counted.
    box.file(text("other/.DS_Store/a"), "12");
    box.file(text("other/.DS_Store2"), "345");
    QCOMPARE(FileUtils::folderSize(box(text("other")), &count), qint64(5));
    QCOMPARE(count, 5);
}

void tst_FileUtilsTrees::folderSizeFollowsLinks()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    box.file(text("elsewhere/a"), "12345");
    box.file(text("file"), "123");
    box.folder(text("t"));
    box.link(text("t/folder"), text("../elsewhere"));
    box.link(text("t/file"), text("../file"));
    int count = 0;
    QCOMPARE(FileUtils::folderSize(box(text("t")), &count), qint64(8));
    QCOMPARE(count, 2);
}

void tst_FileUtilsTrees::folderSizeLatestModification()
{
    Sandbox box;
    const auto touch = [](const QString& path, qint64 msecs) {
        struct timespec times[2];
        times[0].tv_sec = times[1].tv_sec = time_t(msecs / 1000);
        times[0].tv_nsec = times[1].tv_nsec = long(msecs % 1000) * 1000000;
        QCOMPARE(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    };
    touch(box.file(text("t/a")), 1000000000123);
    touch(box.file(text("t/sub/b")), 1000000000456);
    touch(box.file(text("t/sub/c")), 1000000000455);
    touch(box.file(text("t/.DS_Store")), 1900000000000);
    const auto at = [](qint64 msecs) { return QDateTime::fromMSecsSinceEpoch(msecs); };

    QDateTime latest;
    FileUtils::folderSize(box(text("t")), nullptr, &latest);
    QCOMPARE(latest, at(1000000000456));
    QCOMPARE(latest, QFileInfo(box(text("t/sub/b"))).lastModified());
    QCOMPARE(latest.timeSpec(), Qt::LocalTime);

    latest = at(1000000000455);
    FileUtils::folderSize(box(text("t")), nullptr, &latest);
    QCOMPARE(latest, at(1000000000456));

    // A later date is kept, in whatever time zone.
    latest = at(1000000000457).toUTC();
    FileUtils::folderSize(box(text("t")), nullptr, &latest);
    QCOMPARE(latest, at(1000000000457));
    QCOMPARE(latest.timeSpec(), Qt::UTC);

    // So is the same date.
    latest = at(1000000000456).toUTC();
    FileUtils::folderSize(box(text("t")), nullptr, &latest);
    QCOMPARE(latest.timeSpec(), Qt::UTC);

    // Files older than 1970.
    touch(box.file(text("old/a")), -86400000);
    latest = QDateTime();
    FileUtils::folderSize(box(text("old")), nullptr, &latest);
    QCOMPARE(latest, at(-86400000));
    latest = at(-86400001);
    FileUtils::folderSize(box(text("old")), nullptr, &latest);
    QCOMPARE(latest, at(-86400000));
}

// Listings

void tst_FileUtilsTrees::listFilesInFileSystem_data()
{
    const auto row = columns<bool, QString, QString, QStringList, QStringList>(
        "recursive", "filter", "prefix", "files", "oldFiles");
    const QString none;
    row("flat", false, none, none, QStringList({text("1"), text("2.txt")}),
        QStringList({text("/1"), text("/2.txt")}));
    row("recursive", true, none, none,
        QStringList({text("1"), text("2.txt"), text("a/3"), text("a/b/4"), text("ab/5")}),
        QStringList({text("/1"), text("/2.txt"), text("/a/3"), text("/a/b/4"), text("/ab/5")}));
    row("prefix", true, none, "p",
        QStringList({text("p/1"), text("p/2.txt"), text("p/a/3"), text("p/a/b/4"), text("p/ab/5")}),
        QStringList(
            {text("p/1"), text("p/2.txt"), text("p/a/3"), text("p/a/b/4"), text("p/ab/5")}));
    row("prefix with slash", false, none, "p/q/", QStringList({text("p/q/1"), text("p/q/2.txt")}),
        QStringList({text("p/q/1"), text("p/q/2.txt")}));
    row("slash as prefix", false, none, "/", QStringList({text("/1"), text("/2.txt")}),
        QStringList({text("/1"), text("/2.txt")}));
    row("filter matches no folder", true, "zzz", none, QStringList({text("1"), text("2.txt")}),
        QStringList({text("/1"), text("/2.txt")}));
    row("filter matches whole names", true, "a", none,
        QStringList({text("1"), text("2.txt"), text("a/3")}),
        QStringList({text("/1"), text("/2.txt"), text("/a/3")}));
    row("filter at every level", true, "a|b", none,
        QStringList({text("1"), text("2.txt"), text("a/3"), text("a/b/4")}),
        QStringList({text("/1"), text("/2.txt"), text("/a/3"), text("/a/b/4")}));
    row("filter without recursion", false, "a", none, QStringList({text("1"), text("2.txt")}),
        QStringList({text("/1"), text("/2.txt")}));
}

void tst_FileUtilsTrees::listFilesInFileSystem()
{
    QFETCH(bool, recursive);
    QFETCH(QString, filter);
    QFETCH(QString, prefix);
    QFETCH(QStringList, files);
    QFETCH(QStringList, oldFiles);
    Sandbox box;
    box.file(text("t/1"));
    box.file(text("t/2.txt"));
    box.file(text("t/.hidden"));
    box.file(text("t/a/3"));
    box.file(text("t/a/b/4"));
    box.file(text("t/ab/5"));
    box.file(text("t/.hiddenFolder/6"));
    box.folder(text("t/empty"));
    QRegExp expression(filter);
    QRegExp* const folderFilter = filter.isEmpty() ? nullptr : &expression;
    for (const QString& path : {box(text("t")), box(text("t/"))}) {
        QStringList list;
        QCOMPARE(FileUtils::listFilesInFileSystem(path, list, recursive, folderFilter, prefix),
                 files.size());
        QCOMPARE(sorted(list), files);
        QStringList oldList;
        QCOMPARE(
            FileUtils::old::listFilesInFileSystem(path, oldList, recursive, folderFilter, prefix),
            oldFiles.size());
        QCOMPARE(sorted(oldList), oldFiles);
    }
}

void tst_FileUtilsTrees::listFilesOfNothing()
{
    Sandbox box;
    box.file(text("file"));
    const CurrentFolder current(box.root());
    QStringList list;
    QCOMPARE(FileUtils::listFilesInFileSystem(QString(), list, true), 0);
    QCOMPARE(FileUtils::listFilesInFileSystem(box(text("missing")), list, true), 0);
    QCOMPARE(FileUtils::listFilesInFileSystem(box(text("file")), list, true), 0);
    QCOMPARE(FileUtils::old::listFilesInFileSystem(box(text("missing")), list, true), 0);
    QCOMPARE(list, QStringList());
    // The older function treats an empty path as the current folder.
    QCOMPARE(FileUtils::old::listFilesInFileSystem(QString(), list, true), 1);
    QCOMPARE(list, QStringList(text("/file")));
    QCOMPARE(FileUtils::listFilesInFileSystem(text("."), list, true), 1);
    QCOMPARE(list, QStringList({text("/file"), text("file")}));
}

void tst_FileUtilsTrees::listFilesAppends()
{
    Sandbox box;
    box.file(text("t/a"));
    QStringList list{text("before")};
    QCOMPARE(FileUtils::listFilesInFileSystem(box(text("t")), list, false), 1);
    QCOMPARE(FileUtils::old::listFilesInFileSystem(box(text("t")), list, false), 1);
    QCOMPARE(list, QStringList({text("before"), text("a"), text("/a")}));
}

void tst_FileUtilsTrees::listFilesIgnoresWhatIsNeither()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    box.file(text("outside/b"));
    box.folder(text("t"));
    box.link(text("t/broken"), text("nowhere"));
    box.pipe(text("t/pipe"));
    box.link(text("t/file"), text("../outside/b"));
    box.link(text("t/folder"), text("../outside"));
    QStringList list;
    QCOMPARE(FileUtils::listFilesInFileSystem(box(text("t")), list, true), 2);
    QCOMPARE(sorted(list), QStringList({text("file"), text("folder/b")}));
}

void tst_FileUtilsTrees::listDirectoriesInFileSystem()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    box.folder(text("t/a/b/c"));
    box.folder(text("t/d"));
    box.folder(text("t/.hidden/e"));
    box.file(text("t/file"));
    box.folder(text("outside/f"));
    box.link(text("t/link"), text("../outside"));
    box.link(text("t/broken"), text("nowhere"));
    QStringList list{text("before")};
    QVERIFY(FileUtils::listDirectoriesInFileSystem(box(text("t")), list, false));
    QCOMPARE(list.takeFirst(), text("before"));
    const QStringList flat{box(text("t/a")), box(text("t/d")), box(text("t/link"))};
    QCOMPARE(sorted(list), flat);

    const QStringList all{box(text("t/a")), box(text("t/a/b")),  box(text("t/a/b/c")),
                          box(text("t/d")), box(text("t/link")), box(text("t/link/f"))};
    QStringList deep;
    QVERIFY(FileUtils::listDirectoriesInFileSystem(box(text("t/")), deep, true));
    QCOMPARE(sorted(deep), all);
    // A folder is followed by its own sub-folders.
    const int a = int(deep.indexOf(box(text("t/a"))));
    QCOMPARE(deep.mid(a, 3),
             QStringList({box(text("t/a")), box(text("t/a/b")), box(text("t/a/b/c"))}));
    QCOMPARE(deep.at(deep.indexOf(box(text("t/link"))) + 1), box(text("t/link/f")));

    const CurrentFolder current(box(text("t")));
    for (const QString& path : {QString(), text("."), text("../t")}) {
        QStringList relative;
        QVERIFY(FileUtils::listDirectoriesInFileSystem(path, relative, true));
        QCOMPARE(sorted(relative), all);
    }
}

void tst_FileUtilsTrees::listDirectoriesOfNothing()
{
    Sandbox box;
    const QString file = box.file(text("file"));
    QStringList list;
    for (const QString& path : {box(text("missing")), file}) {
        QVERIFY(!FileUtils::listDirectoriesInFileSystem(path, list, true));
        QVERIFY(!FileUtils::listFolderName(path, list));
    }
    const QString empty = box.folder(text("empty"));
    QVERIFY(FileUtils::listDirectoriesInFileSystem(empty, list, true));
    QVERIFY(FileUtils::listFolderName(empty, list));
    QCOMPARE(list, QStringList());
}

void tst_FileUtilsTrees::listFolderName()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    box.folder(text("t/a/b"));
    box.folder(text("t/c d"));
    box.folder(text("t/.hidden"));
    box.file(text("t/file"));
    box.link(text("t/link"), text("a"));
    QStringList list{text("before")};
    QVERIFY(FileUtils::listFolderName(box(text("t")), list));
    QCOMPARE(list.takeFirst(), text("before"));
    QCOMPARE(sorted(list), QStringList({text("a"), text("c d"), text("link")}));
    const CurrentFolder current(box(text("t/a")));
    QStringList here;
    QVERIFY(FileUtils::listFolderName(QString(), here));
    QCOMPARE(here, QStringList(text("b")));
}

void tst_FileUtilsTrees::listResources()
{
    QStringList files;
    QCOMPARE(FileUtils::listFilesInFileSystem(text(":/tree"), files, true), 2);
    QCOMPARE(sorted(files), QStringList({text("a.txt"), text("sub/b.txt")}));
    QStringList folders;
    QVERIFY(FileUtils::listDirectoriesInFileSystem(text(":/tree"), folders, true));
    QCOMPARE(folders, QStringList(text(":/tree/sub")));
    int count = 0;
    QCOMPARE(FileUtils::folderSize(text(":/tree"), &count), qint64(11 + 8));
    QCOMPARE(count, 2);
}

namespace {

/// "name" and its kind: "/" for a folder, "=" for a file, "@" for a link, "." for a hidden entry,
/// "!" for one that cannot be reached by a path.
QStringList entriesOf(const QVector<FileUtils::Entry>& entries)
{
    QStringList list;
    for (const FileUtils::Entry& entry : entries)
        list.append(entry.name + text(entry.isFolder ? "/" : "") + text(entry.isFile ? "=" : "")
                    + text(entry.isLink ? "@" : "") + text(entry.isHidden ? "." : "")
                    + text(entry.isReachable ? "" : "!"));
    return sorted(list);
}

} // namespace

void tst_FileUtilsTrees::listEntries()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    box.file(text("t/a"));
    box.file(text("t/.hidden"));
    box.file(text("t/sub/not seen"));
    box.folder(text("t/.sub"));
    box.link(text("t/toA"), text("a"));
    box.link(text("t/toSub"), text("sub"));
    box.link(text("t/broken"), text("nowhere"));
    box.pipe(text("t/pipe"));
    LogCapture log;
    QString error = text("as before");
    const QStringList expected =
        sorted({text("a="), text(".hidden=."), text("sub/"), text(".sub/."), text("toA=@"),
                text("toSub/@"), text("broken@"), text("pipe")});
    for (const char* path : {"t", "t/", "t//", "sub/../t"}) {
        QVector<FileUtils::Entry> entries;
        box.folder(text("sub"));
        QVERIFY(FileUtils::listEntries(box(text(path)), entries, &error));
        QCOMPARE(entriesOf(entries), expected);
    }
    QVector<FileUtils::Entry> entries;
    const CurrentFolder current(box(text("t")));
    QVERIFY(FileUtils::listEntries(text("sub"), entries)); // relative, and appended
    QVERIFY(FileUtils::listEntries(text("../t/sub"), entries, &error));
    QVERIFY(FileUtils::listEntries(text(":/tree"), entries));
    QVERIFY(FileUtils::listEntries(box.folder(text("empty")), entries));
    QCOMPARE(entriesOf(entries),
             QStringList({text("a.txt="), text("not seen="), text("not seen="), text("sub/")}));
    QCOMPARE(error, text("as before"));
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtilsTrees::listEntriesThatAreNoText()
{
    if (portable)
        QSKIP("Qt's classes do not show such names, and Linux alone has them");
    Sandbox box;
    const QByteArray folder = QFile::encodeName(box.folder(text("s")));
    const QByteArray file = folder + "/caf\xe9";
    const QByteArray sub = folder + "/\xe9t\xe9";
    const int made = ::open(file.constData(), O_CREAT | O_WRONLY, 0644);
    if (made < 0)
        QSKIP("this file system does not take such names");
    ::close(made);
    QCOMPARE(::mkdir(sub.constData(), 0755), 0);
    box.file(QString(text("s/caf")) + QChar(0xe9));
    // A name that really contains the replacement character can be reached.
    box.file(text("s/caf") + QChar(0xfffd));
    QVector<FileUtils::Entry> entries;
    QVERIFY(FileUtils::listEntries(box(text("s")), entries));
    const QString unknown(QChar(0xfffd));
    QCOMPARE(
        entriesOf(entries),
        sorted({text("caf") + QChar(0xe9) + text("="), text("caf") + unknown + text("="),
                text("caf") + unknown + text("=!"), unknown + text("t") + unknown + text("/!")}));
    ::unlink(file.constData());
    ::rmdir(sub.constData());
}

void tst_FileUtilsTrees::listEntriesRefusals_data()
{
    const auto row = columns<QString, QString>("path", "error");
    row("no path", QString(), "No such file or directory");
    row("missing", "%1/nowhere", "No such file or directory");
    row("file", "%1/file", "Not a directory");
    row("link to a file", "%1/link", "Not a directory");
    row("broken link", "%1/broken", "No such file or directory");
    row("not to be read", "%1/locked", "Permission denied");
    row("NUL", QString(text("%1") + QChar() + text("x")), "No such file or directory");
    row("missing resource", ":/nowhere", "No such file or directory");
}

void tst_FileUtilsTrees::listEntriesRefusals()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, path);
    QFETCH(QString, error);
    if (portable && path == text("%1/locked"))
        QSKIP("QDir answers for the user who started the process, and root reads every folder");
    Sandbox box;
    box.link(text("link"), box.file(text("file")));
    box.link(text("broken"), text("nowhere"));
    box.file(text("locked/file"));
    box.lock(box(text("locked")), 0333);
    const OrdinaryUser user;
    LogCapture log;
    QVector<FileUtils::Entry> entries(1);
    QString reason;
    QVERIFY(!FileUtils::listEntries(path.replace(text("%1"), box.root()), entries, &reason));
    QCOMPARE(reason, error);
    QVERIFY(!FileUtils::listEntries(path, entries));
    QCOMPARE(entries.size(), 1);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtilsTrees::listEntriesOfAFolderThatGoes()
{
    if (portable)
        QSKIP("Qt's classes ask step by step what a folder is");
    // While it is listed repeatedly another thread creates and removes it: a folder is reported
    // with its content or not at all.
    Sandbox box;
    const QString folder = box(text("comes and goes"));
    std::atomic<bool> isOver{false};
    std::thread other([&] {
        while (!isOver) {
            QDir().mkdir(folder);
            QDir().rmdir(folder);
        }
    });
    int missing = 0;
    int there = 0;
    QVector<FileUtils::Entry> entries;
    while ((missing == 0 || there == 0) && entries.isEmpty()) {
        QString error;
        if (FileUtils::listEntries(folder, entries, &error))
            ++there;
        else if (error == text("No such file or directory"))
            ++missing;
        else
            entries.append({error, false, false, false, false, false});
    }
    isOver = true;
    other.join();
    QCOMPARE(entriesOf(entries), QStringList());
}

void tst_FileUtilsTrees::linkLoopsAreWalkedOnce()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    // Without a check these three loops would produce more folders than there are atoms.
    Sandbox box;
    box.file(text("t/a/file"), "123");
    box.folder(text("t/b"));
    box.link(text("t/a/self"), text("."));
    box.link(text("t/a/up"), text(".."));
    box.link(text("t/a/toB"), text("../b"));
    box.link(text("t/b/toA"), text("../a"));
    box.link(text("t/b/up"), box(text("t")));
    // t/a/file; t/a/toB contains only links back; t/b/toA/file.
    int count = 0;
    QCOMPARE(FileUtils::folderSize(box(text("t")), &count), qint64(6));
    QCOMPARE(count, 2);
    QStringList files;
    QCOMPARE(FileUtils::listFilesInFileSystem(box(text("t")), files, true), 2);
    QCOMPARE(sorted(files), QStringList({text("a/file"), text("b/toA/file")}));
    QStringList folders;
    QVERIFY(FileUtils::listDirectoriesInFileSystem(box(text("t")), folders, true));
    QCOMPARE(sorted(folders),
             QStringList({box(text("t/a")), box(text("t/a/self")), box(text("t/a/toB")),
                          box(text("t/a/toB/toA")), box(text("t/a/toB/up")), box(text("t/a/up")),
                          box(text("t/b")), box(text("t/b/toA")), box(text("t/b/toA/self")),
                          box(text("t/b/toA/toB")), box(text("t/b/toA/up")), box(text("t/b/up"))}));
    QVERIFY(FileUtils::copyDir(box(text("t")), box(text("d")), false));
    QCOMPARE(treeOf(box(text("d"))),
             QStringList({text("a/"), text("a/file=123"), text("a/toB/"), text("b/"),
                          text("b/toA/"), text("b/toA/file=123")}));
}

/// Folders with an entry whose name cannot be decoded, in the folder "s", are neither copied nor
/// removed.
static void compareRefusals(const Sandbox& box)
{
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box(text("s")), box(text("d")), false));
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils copyDir: unable to copy ")
                         + box(text("s/caf\ufffd")) + text(" to ") + box(text("d/caf\ufffd"))));
    log.take();
    QVERIFY(!FileUtils::removeContentDirectory(box(text("s")), true));
    QCOMPARE(
        log.lines(),
        QStringList(
            text(
                "critical orvautils FileUtils removeContentDirectory: enable to removeRecursively ")
            + box(text("s/caf\ufffd"))));
    QVERIFY(!FileUtils::old::removeDirectory(box(text("s")), true));
}

/// A path in the new folder "s" with a name in Latin-1 on a UTF-8 system, as from an old archive.
static QByteArray pathThatIsNoText(const Sandbox& box)
{
    return QFile::encodeName(box.folder(text("s")) + text("/caf")) + '\xe9';
}

void tst_FileUtilsTrees::namesThatAreNoText()
{
    if (portable)
        QSKIP("Qt's classes do not show such names, and Linux alone has them");
    const Sandbox box;
    const QByteArray path = pathThatIsNoText(box);
    const int file = ::open(path.constData(), O_CREAT | O_WRONLY, 0644);
    if (file < 0)
        QSKIP("this file system does not take such names");
    ::close(file);
    // It is neither listed nor lost silently.
    QStringList list;
    QCOMPARE(FileUtils::listFilesInFileSystem(box(text("s")), list, true), 0);
    compareRefusals(box);
    struct stat status;
    QCOMPARE(lstat(path.constData(), &status), 0);
    ::unlink(path.constData());
}

void tst_FileUtilsTrees::folderNamesThatAreNoText()
{
    if (portable)
        QSKIP("Qt's classes do not show such names, and Linux alone has them");
    const Sandbox box;
    const QByteArray path = pathThatIsNoText(box);
    if (::mkdir(path.constData(), 0755) != 0)
        QSKIP("this file system does not take such names");
    const QByteArray inside = path + "/file";
    const int file = ::open(inside.constData(), O_CREAT | O_WRONLY, 0644);
    QVERIFY(file >= 0);
    QCOMPARE(::write(file, "12345", 5), ssize_t(5));
    ::close(file);

    QStringList list;
    QCOMPARE(FileUtils::listFilesInFileSystem(box(text("s")), list, true), 0);
    QVERIFY(FileUtils::listDirectoriesInFileSystem(box(text("s")), list, true));
    QVERIFY(FileUtils::listFolderName(box(text("s")), list));
    QCOMPARE(list, QStringList());
    QCOMPARE(FileUtils::folderSize(box(text("s"))), qint64(0));
    QCOMPARE(FileUtils::removeEmptyDirs(box(text("s")), true), 0);
    compareRefusals(box);
    struct stat status;
    QCOMPARE(lstat(inside.constData(), &status), 0);
    ::unlink(inside.constData());
    ::rmdir(path.constData());
}

void tst_FileUtilsTrees::manyLevels()
{
    SKIP_ON_WINDOWS("there is no limit of files and their size");
    // More levels than a process may have open folders.
    const FileLimit limit(RLIMIT_NOFILE, 64);
    Sandbox box;
    QString deep = text("s");
    for (int level = 0; level < 150; ++level)
        deep += text("/d");
    box.file(deep + text("/file"), "12345");
    QCOMPARE(FileUtils::folderSize(box(text("s"))), qint64(5));
    QStringList list;
    QCOMPARE(FileUtils::listFilesInFileSystem(box(text("s")), list, true), 1);
    QVERIFY(FileUtils::copyDir(box(text("s")), box(text("c")), false));
    QCOMPARE(contentOf(box(text("c") + deep.mid(1) + text("/file"))), QByteArray("12345"));
    QVERIFY(FileUtils::old::removeDirectory(box(text("c")), true, nullptr, 151));
    QVERIFY(!isThere(box(text("c"))));
    QVERIFY(FileUtils::removeContentDirectory(box(text("s")), true));
    QCOMPARE(treeOf(box.root()), QStringList(text("s/")));
}

// removeContentDirectory

void tst_FileUtilsTrees::removeContentDirectoryGuards_data()
{
    const auto row = columns<QString>("path");
    row("empty", QString());
    row("current folder", ".");
    row("parent folder", "..");
    row("bare name", "folder");
    row("missing", "./missing");
    row("file", "./file");
}

void tst_FileUtilsTrees::removeContentDirectoryGuards()
{
    QFETCH(QString, path);
    Sandbox box;
    box.file(text("t/file"));
    box.file(text("t/folder/file"));
    const QStringList before = treeOf(box.root());
    const CurrentFolder current(box(text("t")));
    LogCapture log;
    QVERIFY(!FileUtils::removeContentDirectory(path, true));
    QVERIFY(!FileUtils::removeContentDirectory(path, false));
    QCOMPARE(treeOf(box.root()), before);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtilsTrees::removeContentDirectory_data()
{
    const auto row = columns<bool, QStringList>("recursive", "left");
    row("recursive", true, QStringList());
    row("not recursive", false,
        QStringList({text(".hiddenSub/"), text(".hiddenSub/d=4"), text("sub/"), text("sub/c=3"),
                     text("sub/deep/")}));
}

void tst_FileUtilsTrees::removeContentDirectory()
{
    QFETCH(bool, recursive);
    QFETCH(QStringList, left);
    for (const QString& spelling : {text("t"), text("t/"), text("./t")}) {
        Sandbox box;
        box.file(text("t/a"), "1");
        box.file(text("t/.hidden"), "2");
        box.file(text("t/sub/c"), "3");
        box.folder(text("t/sub/deep"));
        box.file(text("t/.hiddenSub/d"), "4");
        const CurrentFolder current(box.root());
        LogCapture log;
        const QString path = spelling.startsWith(QLatin1Char('.')) ? spelling : box(spelling);
        QVERIFY(FileUtils::removeContentDirectory(path, recursive));
        QCOMPARE(treeOf(box(text("t"))), left);
        QVERIFY(QFileInfo(box(text("t"))).isDir());
        QCOMPARE(log.lines(), QStringList());
    }
}

void tst_FileUtilsTrees::removeContentDirectoryLinks()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    for (const bool recursive : {true, false}) {
        Sandbox box;
        box.file(text("outside/sentinel"), "kept");
        box.file(text("sentinel"), "kept");
        const QStringList outside = treeOf(box(text("outside")));
        box.folder(text("t"));
        box.link(text("t/toFolder"), text("../outside"));
        box.link(text("t/toFile"), text("../sentinel"));
        box.link(text("t/loop"), text("."));
        if (recursive) {
            box.folder(text("t/sub"));
            box.link(text("t/sub/toFolder"), text("../../outside"));
            box.link(text("t/sub/toTop"), text(".."));
        }
        QVERIFY(FileUtils::removeContentDirectory(box(text("t")), recursive));
        QCOMPARE(treeOf(box(text("t"))), QStringList());
        QCOMPARE(treeOf(box(text("outside"))), outside);
        QCOMPARE(contentOf(box(text("sentinel"))), QByteArray("kept"));
    }
}

void tst_FileUtilsTrees::removeContentDirectoryStopsAtAFile()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    Sandbox box;
    box.file(text("t/a"));
    box.file(text("t/b"));
    box.lock(box(text("t")), 0555);
    const OrdinaryUser user;
    LogCapture log;
    QVERIFY(!FileUtils::removeContentDirectory(box(text("t")), true));
    // One record: the first file, whichever it is, stops the removal.
    QCOMPARE(log.lines().size(), 1);
    const QString start =
        text("critical orvautils FileUtils removeContentDirectory: enable to removeRecursively ");
    QVERIFY2(log.lines().at(0) == start + box(text("t/a"))
                 || log.lines().at(0) == start + box(text("t/b")),
             qPrintable(log.lines().at(0)));
    QCOMPARE(treeOf(box(text("t"))).size(), 2);
}

void tst_FileUtilsTrees::removeContentDirectoryStopsAtAFolder()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    Sandbox box;
    box.file(text("t/sub/a"));
    changeMode(box(text("t")), 0777);
    box.lock(box(text("t/sub")), 0555);
    const OrdinaryUser user;
    LogCapture log;
    QVERIFY(FileUtils::removeContentDirectory(box(text("t")), false));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(!FileUtils::removeContentDirectory(box(text("t")), true));
    QCOMPARE(
        log.lines(),
        QStringList(
            text(
                "critical orvautils FileUtils removeContentDirectory: enable to removeRecursively ")
            + box(text("t/sub"))));
}

void tst_FileUtilsTrees::removeContentDirectoryLeavesWhatComesLater()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    // None of the three folders can be removed, only one of the files in it. The first folder,
    // whichever it is, stops the removal.
    Sandbox box;
    for (const QString& name : {text("t/a/"), text("t/b/"), text("t/c/")}) {
        box.file(name + text("loose"));
        box.file(name + text("locked/file"));
        box.lock(box(name + text("locked")), 0555);
        changeMode(box(name), 0777);
    }
    changeMode(box(text("t")), 0777);
    const OrdinaryUser user;
    LogCapture log;
    QVERIFY(!FileUtils::removeContentDirectory(box(text("t")), true));
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(treeOf(box(text("t"))).filter(text("/loose")).size(), 2);
}

void tst_FileUtilsTrees::removeContentDirectoryUnreadable()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    if (portable && getuid() == 0)
        QSKIP("QDir answers for the user who started the process, and root reads every folder");
    Sandbox box;
    box.file(text("t/a"));
    box.lock(box(text("t")), 0333);
    LogCapture log;
    {
        const OrdinaryUser user;
        QVERIFY(!FileUtils::removeContentDirectory(box(text("t")), true));
    }
    QCOMPARE(
        log.lines(),
        QStringList(
            text(
                "critical orvautils FileUtils removeContentDirectory: enable to removeRecursively ")
            + box(text("t"))));
    QVERIFY(isThere(box(text("t/a"))));
}

// removeEmptyDirs

void tst_FileUtilsTrees::removeEmptyDirs_data()
{
    const auto row =
        columns<QStringList, bool, int, QStringList>("entries", "recursive", "removed", "left");
    const QStringList empties{text("t/a/b/"), text("t/a/c/"), text("t/d/")};
    row("empty folders", empties, true, 5, QStringList());
    row("empty folders, not recursive", empties, false, 0,
        QStringList({text("t/"), text("t/a/"), text("t/a/b/"), text("t/a/c/"), text("t/d/")}));
    row("one empty folder", QStringList(text("t/")), true, 1, QStringList());
    row("one empty folder, not recursive", QStringList(text("t/")), false, 1, QStringList());
    row("only an empty sub-folder, not recursive", QStringList(text("t/a/")), false, 0,
        QStringList({text("t/"), text("t/a/")}));
    row("a file keeps its folders", QStringList({text("t/a/b/"), text("t/c/file")}), true, 2,
        QStringList({text("t/"), text("t/c/"), text("t/c/file=content")}));
    row("a hidden file cannot be removed", QStringList({text("t/a/.DS_Store"), text("t/b/")}), true,
        1, QStringList({text("t/"), text("t/a/"), text("t/a/.DS_Store=content")}));
    row("only a hidden file", QStringList(text("t/.DS_Store")), true, 0,
        QStringList({text("t/"), text("t/.DS_Store=content")}));
    row("hidden folders are not visited", QStringList(text("t/.hidden/a/")), true, 0,
        QStringList({text("t/"), text("t/.hidden/"), text("t/.hidden/a/")}));
    row("missing", QStringList(), true, 0, QStringList());
}

void tst_FileUtilsTrees::removeEmptyDirs()
{
    QFETCH(QStringList, entries);
    QFETCH(bool, recursive);
    QFETCH(int, removed);
    QFETCH(QStringList, left);
    for (const QString& spelling : {text("t"), text("t/"), text("./x/..//t")}) {
        Sandbox box;
        for (const QString& entry : qAsConst(entries)) {
            if (entry.endsWith(QLatin1Char('/')))
                box.folder(entry);
            else
                box.file(entry);
        }
        box.folder(text("x"));
        LogCapture log;
        QCOMPARE(FileUtils::removeEmptyDirs(box(spelling), recursive), removed);
        QVERIFY(QDir(box.root()).rmdir(text("x")));
        QCOMPARE(treeOf(box.root()), left);
        QCOMPARE(log.lines(), QStringList());
    }
    Sandbox box;
    box.folder(text("empty"));
    const CurrentFolder current(box.root());
    QCOMPARE(FileUtils::removeEmptyDirs(QString(), true), 0);
    QCOMPARE(treeOf(box.root()), QStringList(text("empty/")));
}

void tst_FileUtilsTrees::removeEmptyDirsLeavesLinks()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    box.folder(text("outside/empty"));
    box.folder(text("t/a"));
    box.link(text("t/link"), text("../outside"));
    box.link(text("t/loop"), text("."));
    QCOMPARE(FileUtils::removeEmptyDirs(box(text("t")), true), 1);
    QCOMPARE(treeOf(box.root()),
             QStringList({text("outside/"), text("outside/empty/"), text("t/"),
                          text("t/link -> ../outside"), text("t/loop -> .")}));
    QCOMPARE(FileUtils::removeEmptyDirs(box(text("t/link")), false), 0);
}

// Older variants

void tst_FileUtilsTrees::forceDirectoryCreation_data()
{
    const auto row = columns<QString, QString>("path", "made");
    row("several levels", "a/b/c/file", "a/b/c");
    row("present", "present/file", "present");
    row("one more level", "present/b/file", "present/b");
    row("folder path", "a/b/", "a/b");
    row("two slashes", "a//b//file", "a/b");
    row("through a link", "link/b/file", "present/b");
}

void tst_FileUtilsTrees::forceDirectoryCreation()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, path);
    QFETCH(QString, made);
    for (const bool relative : {false, true}) {
        Sandbox box;
        box.folder(text("present"));
        box.link(text("link"), text("present"));
        const CurrentFolder current(box.root());
        LogCapture log;
        QString error = text("untouched");
        QVERIFY(
            FileUtils::old::forceDirectoryCreationForAFile(relative ? path : box(path), &error));
        QVERIFY(QFileInfo(box(made)).isDir());
        QVERIFY(!isThere(box(text("a/b/c/file"))));
        QVERIFY(FileUtils::old::forceDirectoryCreationForAFile(box(path)));
        QVERIFY(FileUtils::old::forceDirectoryCreationForAFile(text("file"), &error));
        QVERIFY(FileUtils::old::forceDirectoryCreationForAFile(QString(), &error));
        QVERIFY(!isThere(box(text("file"))));
        QCOMPARE(error, text("untouched"));
        QCOMPARE(log.lines(), QStringList());
    }
}

void tst_FileUtilsTrees::forceDirectoryCreationFailure()
{
    Sandbox box;
    box.file(text("file"));
    const QString start = text("warning orvautils FileUtils forceDirectoryCreationForAFile: ");
    QString error;
    LogCapture log;
    QVERIFY(!FileUtils::old::forceDirectoryCreationForAFile(box(text("file/b/c/x")), &error));
    QCOMPARE(error, text("The folder '") + box(text("file/b/c/")) + text("' cannot be created!"));
    // Every level is tried, and each failure is logged.
    const QStringList lines{
        start + text("Mkdir fail on \"") + box(text("file")) + text("\""),
        start + text("Mkdir fail on \"") + box(text("file/b")) + text("\""),
        start + text("Mkdir fail on \"") + box(text("file/b/c")) + text("\""),
        start + text("The folder '") + box(text("file/b/c/")) + text("' cannot be created!"),
    };
    QCOMPARE(log.lines(), lines);
    QVERIFY(!FileUtils::old::forceDirectoryCreationForAFile(box(text("file/b/c/x"))));
    QCOMPARE(log.lines(), lines + lines);
    // Names that look like placeholders of a message.
    log.take();
    QVERIFY(!FileUtils::old::forceDirectoryCreationForAFile(box(text("file/%1/x")), &error));
    QCOMPARE(error, text("The folder '") + box(text("file/%1/")) + text("' cannot be created!"));
}

void tst_FileUtilsTrees::removeDirectory()
{
    Sandbox box;
    box.file(text("outside"), "kept");
    for (const QString& spelling : {text("t"), text("t/"), text("x/..//t")}) {
        box.folder(text("x"));
        box.file(text("t/a"));
        box.file(text("t/.hidden"));
        box.file(text("t/sub/deep/b"));
        box.folder(text("t/.git/empty"));
        LogCapture log;
        QString error = text("untouched");
        QVERIFY(FileUtils::old::removeDirectory(box(spelling), true, &error));
        QCOMPARE(treeOf(box.root()), QStringList({text("outside=kept"), text("x/")}));
        QCOMPARE(error, text("untouched"));
        QCOMPARE(log.lines(), QStringList());
    }
    // Files alone need no recursion, and a relative path works.
    box.file(text("t/a"));
    const CurrentFolder current(box.root());
    QVERIFY(FileUtils::old::removeDirectory(text("t"), false));
    QCOMPARE(treeOf(box.root()), QStringList({text("outside=kept"), text("x/")}));
}

void tst_FileUtilsTrees::removeDirectoryRefusals_data()
{
    const auto row = columns<QString, int, QString>("path", "depth", "message");
    row("empty", QString(), 64, "untouched");
    row("empty, without a budget", QString(), 0, "untouched");
    row("no budget", "t", 0, "FileUtils::removeDirectory t profondeur max atteinte !");
    row("less than no budget", "t", -1, "FileUtils::removeDirectory t profondeur max atteinte !");
    row("missing", "missing", 64, "FileUtils::removeDirectory: missing doesn't exist");
    row("missing, without a budget", "missing", 0,
        "FileUtils::removeDirectory missing profondeur max atteinte !");
    row("file", "t/a", 64, "FileUtils::removeDirectory: t/a doesn't exist");
    row("broken link", "broken", 64, "FileUtils::removeDirectory: broken doesn't exist");
}

void tst_FileUtilsTrees::removeDirectoryRefusals()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, path);
    QFETCH(int, depth);
    Sandbox box;
    box.file(text("t/a"));
    box.link(text("broken"), text("nowhere"));
    const QStringList before = treeOf(box.root());
    const CurrentFolder current(box.root());
    LogCapture log;
    QString error = text("untouched");
    QVERIFY(!FileUtils::old::removeDirectory(path, true, &error, depth));
    QTEST(error, "message");
    QVERIFY(!FileUtils::old::removeDirectory(path, true, nullptr, depth));
    QCOMPARE(treeOf(box.root()), before);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtilsTrees::removeDirectoryDepth()
{
    Sandbox box;
    box.file(text("t/a"), "1");
    box.file(text("t/sub/b"), "2");
    box.file(text("t/z"), "3");
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box(text("t")), true, &error, 1));
    QCOMPARE(error,
             text("FileUtils::removeDirectory ") + box(text("t/sub"))
                 + text(" profondeur max atteinte !"));
    QCOMPARE(treeOf(box(text("t"))), QStringList({text("sub/"), text("sub/b=2"), text("z=3")}));
    QVERIFY(FileUtils::old::removeDirectory(box(text("t")), true, &error, 2));
    QVERIFY(!isThere(box(text("t"))));
}

void tst_FileUtilsTrees::removeDirectoryDefaultDepth()
{
    // Level 1 is the folder itself, so 64 levels have 63 below it.
    const auto nested = [](int levels) { return text("t") + text("/d").repeated(levels - 1); };
    Sandbox box;
    box.folder(nested(64));
    QVERIFY(FileUtils::old::removeDirectory(box(text("t")), true));
    QVERIFY(!isThere(box(text("t"))));
    box.folder(nested(65));
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box(text("t")), true, &error));
    QCOMPARE(error,
             text("FileUtils::removeDirectory ") + box(nested(65))
                 + text(" profondeur max atteinte !"));
    QVERIFY(isThere(box(nested(65))));
}

void tst_FileUtilsTrees::removeDirectoryOrder()
{
    // The one in the middle when sorted without regard to case stops the removal.
    Sandbox box;
    for (const QString& name : {text("B"), text("a"), text("D"), text("e")})
        box.file(text("t/") + name, QByteArray());
    box.folder(text("t/c"));
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box(text("t")), false, &error));
    QCOMPARE(treeOf(box(text("t"))), QStringList({text("D="), text("c/"), text("e=")}));
}

void tst_FileUtilsTrees::removeDirectoryNotRecursive()
{
    Sandbox box;
    box.file(text("t/%2 sub/a"));
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box(text("t")), false, &error));
    QCOMPARE(error, text("Failed to remove file: %2 sub (non recursive operation)"));
    QVERIFY(!FileUtils::old::removeDirectory(box(text("t")), false));
    QVERIFY(isThere(box(text("t/%2 sub/a"))));
}

void tst_FileUtilsTrees::removeDirectoryCannotRemoveFile()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    Sandbox box;
    box.file(text("t/sub/%2 a"));
    box.file(text("t/sub/b"));
    box.file(text("t/z"));
    changeMode(box(text("t")), 0777);
    box.lock(box(text("t/sub")), 0555);
    const OrdinaryUser user;
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box(text("t")), true, &error));
    QCOMPARE(error,
             text("Failed to remove file: ") + box(text("t/sub/%2 a"))
                 + text(" (Permission denied)"));
    QCOMPARE(treeOf(box(text("t"))).size(), 4);
}

void tst_FileUtilsTrees::removeDirectoryCannotRemoveFolder()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    Sandbox box;
    box.folder(text("locked/t"));
    box.lock(box(text("locked")), 0555);
    const CurrentFolder current(box(text("locked")));
    const OrdinaryUser user;
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(text("t"), true, &error));
    // The system's error if a folder is removed like a file.
    QFile asFile(text("t"));
    QVERIFY(!asFile.remove());
    QCOMPARE(error, text("Failed to remove directory: t (") + asFile.errorString() + text(")"));
    QVERIFY(!FileUtils::old::removeDirectory(text("t"), true));
}

void tst_FileUtilsTrees::removeDirectoryLeavesSpecialFiles()
{
    SKIP_ON_WINDOWS("no folder there has named pipes");
    Sandbox box;
    box.file(text("t/a"));
    box.pipe(text("t/m"));
    box.file(text("t/z"));
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box(text("t")), true, &error));
    QCOMPARE(treeOf(box(text("t"))), QStringList(text("m|")));
    QFile asFile(box(text("t")));
    QVERIFY(!asFile.remove());
    QCOMPARE(error,
             text("Failed to remove directory: ") + box(text("t")) + text(" (")
                 + asFile.errorString() + text(")"));
}

void tst_FileUtilsTrees::removeDirectoryLinks()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    for (const bool recursive : {true, false}) {
        Sandbox box;
        box.file(text("outside/sub/sentinel"), "kept");
        const QStringList outside = treeOf(box(text("outside")));
        box.folder(text("t"));
        box.link(text("t/toFolder"), text("../outside"));
        box.link(text("t/toFile"), text("../outside/sub/sentinel"));
        box.link(text("t/loop"), text("."));
        if (recursive) {
            box.folder(text("t/sub"));
            box.link(text("t/sub/toOutside"), box(text("outside")));
            box.link(text("t/sub/toTop"), text(".."));
        }
        QString error = text("untouched");
        QVERIFY2(FileUtils::old::removeDirectory(box(text("t")), recursive, &error),
                 qPrintable(error));
        QVERIFY(!isThere(box(text("t"))));
        QCOMPARE(treeOf(box(text("outside"))), outside);
    }
}

void tst_FileUtilsTrees::removeDirectoryLeavesBrokenLinks()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    // They are neither files nor folders.
    Sandbox box;
    box.file(text("t/a"));
    box.link(text("t/broken"), text("nowhere"));
    box.link(text("t/self"), text("self"));
    box.file(text("t/z"));
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box(text("t")), true, &error));
    QVERIFY2(error.startsWith(text("Failed to remove directory: ") + box(text("t"))),
             qPrintable(error));
    QCOMPARE(treeOf(box(text("t"))),
             QStringList({text("broken -> nowhere"), text("self -> self")}));
}

void tst_FileUtilsTrees::removeDirectoryOfALink_data()
{
    const auto row = columns<QString>("spelling");
    row("link", "link");
    row("link with slash", "link/");
}

void tst_FileUtilsTrees::removeDirectoryOfALink()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, spelling);
    Sandbox box;
    box.file(text("outside/sentinel"), "kept");
    box.link(text("link"), text("outside"));
    QVERIFY(FileUtils::old::removeDirectory(box(spelling), true));
    QCOMPARE(treeOf(box.root()), QStringList({text("outside/"), text("outside/sentinel=kept")}));
}

QTEST_MAIN(tst_FileUtilsTrees)
#include "tst_FileUtilsTrees.moc"

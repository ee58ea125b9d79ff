// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Copies of files and folder trees, and the folders that they need.

#include "FileUtils.h"

#include "Columns.h"
#include "FileLimit.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "PortableFiles.h"
#include "Sandbox.h"
#include "SystemCalls.h"
#include "Text.h"

#include <QBuffer>
#include <QtTest>

#if defined(__clang__)
// QSKIP() is a macro with optional arguments.
#pragma clang diagnostic ignored "-Wgnu-zero-variadic-macro-arguments"
#endif

namespace {

/// The permissions of a file as the system reports them.
int modeOf(const QString& path)
{
    struct stat status;
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 07777)
                                                                   : -1;
}

/// A device that counts reads and writes, and whose data may run out.
class CountingDevice : public QIODevice
{
public:
    explicit CountingDevice(const QByteArray& content, qint64 claimed = -1)
        : mContent(content)
        , mClaimed(claimed)
    {
        open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return mClaimed >= 0 ? mClaimed : mContent.size(); }

    QVector<qint64> reads;
    QVector<QByteArray> writes;

protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        reads += maxSize;
        const int size = int(qMin(maxSize, qint64(mContent.size())));
        memcpy(data, mContent.constData(), size_t(size));
        mContent.remove(0, size);
        return size;
    }

    qint64 writeData(const char* data, qint64 size) override
    {
        writes += QByteArray(data, int(size));
        return size;
    }

private:
    QByteArray mContent;
    qint64 mClaimed;
};

} // namespace

class tst_FileUtilsCopies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void forceCopy_data();
    void forceCopy();
    void forceCopyPermissions_data();
    void forceCopyPermissions();
    void copiedPermissionsAreThoseOfQFile();
    void forceCopyMissingSource();
    void forceCopyCannotRemove();
    void forceCopyCannotCopy();
    void forceCopyLeavesNothingBehindAFailure();
    void forceCopyOntoItself_data();
    void forceCopyOntoItself();
    void forceCopyReplacesALink();
    void forceCopyLargeFile();
    void forceCopySparesTheDestination_data();
    void forceCopySparesTheDestination();
    void forceCopyResource();
    void fileMkPath();
    void fileMkPathFailure();

    void copyDir();
    void copyDirMergeDecides_data();
    void copyDirMergeDecides();
    void copyDirNestedFoldersAreMerged();
    void copyDirMissingSource_data();
    void copyDirMissingSource();
    void copyDirCannotRemove();
    void copyDirCannotMkdir_data();
    void copyDirCannotMkdir();
    void copyDirStopsAtAFile();
    void copyDirStopsAtTheFirstFailure_data();
    void copyDirStopsAtTheFirstFailure();
    void copyDirStopsInAFolder();
    void copyDirUnreadableFolder();
    void copyDirSparesTheDestination();
    void copyDirOntoItself_data();
    void copyDirOntoItself();
    void copyDirBesideItself();
    void copyDirFollowsLinks();
    void copyDirDeletesLinksAsLinks();
    void copyDirReplacesALink();
    void copyDirLinkIntoTheSource();
    void copyDirLinkAroundBoth();
    void copyDirRelativePaths();
    void copyDirEmptyDestination();
    void copyDirResources();

    void segmentedCopy_data();
    void segmentedCopy();
    void segmentedCopyStopsOnAnEmptyRead_data();
    void segmentedCopyStopsOnAnEmptyRead();
    void segmentedCopyCountsWhatWasRequested();
    void segmentedCopyLeavesDevicesOpen();
};

void tst_FileUtilsCopies::cleanup()
{
    QLocale::setDefault(QLocale::c());
}

// forceCopy and fileMkPath

void tst_FileUtilsCopies::forceCopy_data()
{
    const auto row = columns<QString>("destination");
    row("beside", "copy");
    row("over a file", "present");
    row("into a folder", "folder/copy");
    row("into folders to be made", "x/y/z/copy");
#ifdef Q_OS_WIN
    row("odd name", "x/a 'é%1$b");
#else
    row("odd name", "x/a \"é%1\n$b");
#endif
}

void tst_FileUtilsCopies::forceCopy()
{
    QFETCH(QString, destination);
    Sandbox box;
    const QString source = box.file(text("source"), QByteArray("a\0b\r\n", 5));
    box.file(text("present"), "something longer that has to go");
    box.folder(text("folder"));
    LogCapture log;
    QVERIFY(FileUtils::forceCopy(source, box(destination)));
    QCOMPARE(contentOf(box(destination)), QByteArray("a\0b\r\n", 5));
    QCOMPARE(contentOf(source), QByteArray("a\0b\r\n", 5));
    // No temporary file is left next to the copy.
    const QFileInfo info(box(destination));
    QVERIFY(info.dir().entryList({text("*temp*")}, QDir::AllEntries | QDir::Hidden).isEmpty());
    QCOMPARE(log.lines(), QStringList());
    // Once more, now over the copy.
    QVERIFY(FileUtils::forceCopy(box.file(text("source"), "new"), box(destination)));
    QCOMPARE(contentOf(box(destination)), QByteArray("new"));
}

void tst_FileUtilsCopies::forceCopyPermissions_data()
{
    const auto row = columns<int>("mode");
    for (const int mode : {0644, 0600, 0755, 0666, 0777, 0744, 0640})
        row(qPrintable(QString::number(mode, 8)), mode);
}

void tst_FileUtilsCopies::forceCopyPermissions()
{
    SKIP_ON_WINDOWS("there are no modes of POSIX");
    QFETCH(int, mode);
    Sandbox box;
    const QString source = box.file(text("source"));
    changeMode(source, mode_t(mode));
    const auto before = umask(077);
    const bool copied = FileUtils::forceCopy(source, box(text("copy")));
    umask(before);
    QVERIFY(copied);
    QCOMPARE(QFile::permissions(box(text("copy"))), QFile::permissions(source));
    QCOMPARE(modeOf(box(text("copy"))), mode);
}

void tst_FileUtilsCopies::copiedPermissionsAreThoseOfQFile()
{
    SKIP_ON_WINDOWS("there are no modes of POSIX");
    Sandbox box;
    const QString source = box.file(text("tree/file"));
    // All combinations of the owner's permissions, and some of the others', which make no
    // difference.
    for (mode_t index = 0; index < 32; ++index) {
        const mode_t others[] = {0, 044, 066, 011};
        changeMode(source, (index % 8) << 6 | others[index / 8]);
        // A user who may not read the file is refused by all of them.
        const bool expected = QFile::copy(source, box(text("expected")));
        const int mode = modeOf(box(text("expected")));
        LogCapture log;
        QCOMPARE(FileUtils::forceCopy(source, box(text("copy"))), expected);
        QCOMPARE(FileUtils::copyDir(box(text("tree")), box(text("trees")), false), expected);
        QCOMPARE(modeOf(box(text("copy"))), mode);
        QCOMPARE(modeOf(box(text("trees/file"))), mode);
        QFile::remove(box(text("expected")));
        QFile::remove(box(text("copy")));
    }
}

void tst_FileUtilsCopies::forceCopyMissingSource()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    box.file(text("destination"), "kept");
    box.link(text("broken"), text("nowhere"));
    for (const QString& name : {text("missing"), text("broken")}) {
        LogCapture log;
        QVERIFY(!FileUtils::forceCopy(box(name), box(text("destination"))));
        QCOMPARE(log.lines(),
                 QStringList(text("warning orvautils FileUtils forceCopy: ") + box(name)
                             + text("  est introuvable !! (forceCopy)")));
        QCOMPARE(contentOf(box(text("destination"))), QByteArray("kept"));
    }
}

void tst_FileUtilsCopies::forceCopyCannotRemove()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    Sandbox box;
    const QString source = box.file(text("source"));
    const QString folder = box.folder(text("folder"));
    box.file(text("locked/file"), "kept");
    box.lock(box(text("locked")), 0555);
    const OrdinaryUser user;
    for (const QString& destination : {folder, box(text("locked/file"))}) {
        LogCapture log;
        QVERIFY(!FileUtils::forceCopy(source, destination));
        QCOMPARE(
            log.lines(),
            QStringList(
                text("warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't remove  ")
                + destination));
    }
    QCOMPARE(contentOf(box(text("locked/file"))), QByteArray("kept"));
}

void tst_FileUtilsCopies::forceCopyCannotCopy()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    const QString source = box.file(text("source"));
    const QString unreadable = box.file(text("unreadable"));
    changeMode(unreadable, 0);
    const QString folder = box.folder(text("folder"));
    box.folder(text("locked"));
    box.lock(box(text("locked")), 0555);
    box.file(text("notAFolder"));
    const QString broken = box.link(text("broken"), text("nowhere/at/all"));
    const QVector<QPair<QString, QString>> pairs{
        {source, box(text("locked/copy"))},
        {source, box(text("notAFolder/copy"))},
        {source, broken},
        {unreadable, box(text("copy"))},
        {folder, box(text("copy"))},
    };
    const OrdinaryUser user;
    for (const auto& pair : pairs) {
        LogCapture log;
        QVERIFY(!FileUtils::forceCopy(pair.first, pair.second));
        // 14 is QFileDevice::CopyError.
        QCOMPARE(log.lines(),
                 QStringList(
                     text("warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't copy ")
                     + pair.first + text(" ") + pair.second + text("  error= 14")));
    }
    QVERIFY(!isThere(box(text("copy"))));
    QVERIFY(isThere(broken));
}

void tst_FileUtilsCopies::forceCopyLeavesNothingBehindAFailure()
{
    SKIP_ON_WINDOWS("there is no limit of files and their size");
    // The disk accepts the first part of the file and refuses the rest.
    Sandbox box;
    const QString source = box.file(text("source"), QByteArray(100000, 'a'));
    for (const QString& destination : {text("copy"), text("folder/copy")}) {
        LogCapture log;
        {
            const FileLimit limit(RLIMIT_FSIZE, 50000);
            QVERIFY(!FileUtils::forceCopy(source, box(destination)));
        }
        QCOMPARE(log.lines(),
                 QStringList(
                     text("warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't copy ")
                     + source + text(" ") + box(destination) + text("  error= 14")));
    }
    QCOMPARE(
        sorted(QDir(box.root()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)),
        QStringList({text("folder"), text("source")}));
    QVERIFY(treeOf(box(text("folder"))).isEmpty());
}

void tst_FileUtilsCopies::forceCopyOntoItself_data()
{
    const auto row = columns<QString, QString>("source", "destination");
    row("same path", "file", "file");
    row("other spelling", "file", "folder/..//file");
    row("destination is a link to it", "file", "link");
    row("source is a link to it", "link", "file");
    row("link onto itself", "link", "link");
    row("through a folder link", "file", "here/file");
    row("link to a link", "linkToLink", "file");
    row("hard link", "file", "hard");
}

void tst_FileUtilsCopies::forceCopyOntoItself()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, source);
    QFETCH(QString, destination);
    Sandbox box;
    box.file(text("file"), "only copy");
    box.folder(text("folder"));
    box.link(text("link"), text("file"));
    box.link(text("linkToLink"), box(text("link")));
    box.link(text("here"), text("."));
    QCOMPARE(::link(QFile::encodeName(box(text("file"))).constData(),
                    QFile::encodeName(box(text("hard"))).constData()),
             0);
    const QStringList before = treeOf(box.root());
    LogCapture log;
    QVERIFY(FileUtils::forceCopy(box(source), box(destination)));
    QCOMPARE(treeOf(box.root()), before);
    QCOMPARE(contentOf(box(text("file"))), QByteArray("only copy"));
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtilsCopies::forceCopyReplacesALink()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    const QString source = box.file(text("source"), "new");
    const QString sentinel = box.file(text("sentinel"), "kept");
    box.folder(text("folder"));
    for (const QString& target : {text("sentinel"), text("folder")}) {
        const QString link = box.link(text("link"), target);
        QVERIFY(FileUtils::forceCopy(source, link));
        QVERIFY(!QFileInfo(link).isSymLink());
        QCOMPARE(contentOf(link), QByteArray("new"));
        QVERIFY(QFile::remove(link));
    }
    QCOMPARE(contentOf(sentinel), QByteArray("kept"));
}

void tst_FileUtilsCopies::forceCopyLargeFile()
{
    Sandbox box;
    QByteArray content;
    for (int i = 0; content.size() < 5000011; ++i)
        content += QByteArray::number(i);
    QVERIFY(FileUtils::forceCopy(box.file(text("source"), content), box(text("copy"))));
    QVERIFY(contentOf(box(text("copy"))) == content);
    QVERIFY(FileUtils::forceCopy(box.file(text("source"), QByteArray()), box(text("copy"))));
    QCOMPARE(QFileInfo(box(text("copy"))).size(), qint64(0));
}

void tst_FileUtilsCopies::forceCopySparesTheDestination_data()
{
    const auto row = columns<QString>("source");
    row("folder", "folder");
    row("unreadable", "unreadable");
    row("pipe, which would never end", "pipe");
}

void tst_FileUtilsCopies::forceCopySparesTheDestination()
{
    SKIP_ON_WINDOWS("no folder there has named pipes");
    QFETCH(QString, source);
    Sandbox box;
    box.folder(text("folder"));
    changeMode(box.file(text("unreadable")), 0);
    box.pipe(text("pipe"));
    box.file(text("destination"), "kept");
    const OrdinaryUser user;
    for (const QString& destination : {text("destination"), text("new")}) {
        LogCapture log;
        QVERIFY(!FileUtils::forceCopy(box(source), box(destination)));
        QCOMPARE(log.lines(),
                 QStringList(
                     text("warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't copy ")
                     + box(source) + text(" ") + box(destination) + text("  error= 14")));
    }
    QCOMPARE(contentOf(box(text("destination"))), QByteArray("kept"));
    QVERIFY(!isThere(box(text("new"))));
}

void tst_FileUtilsCopies::forceCopyResource()
{
    Sandbox box;
    QVERIFY(FileUtils::forceCopy(text(":/tree/a.txt"), box(text("x/a.txt"))));
    QCOMPARE(contentOf(box(text("x/a.txt"))), QByteArray("a resource\n"));
    QVERIFY(FileUtils::forceCopy(text(":/tree/sub/b.txt"), box(text("x/a.txt"))));
    QCOMPARE(contentOf(box(text("x/a.txt"))), QByteArray("another\n"));
#ifndef Q_OS_WIN
    // A file on disk may have a colon in its name.
    const CurrentFolder current(box.root());
    box.file(text("a:b"), "colon");
    QVERIFY(FileUtils::forceCopy(text("a:b"), text("c:d")));
    QCOMPARE(contentOf(box(text("c:d"))), QByteArray("colon"));
#endif
}

void tst_FileUtilsCopies::fileMkPath()
{
    Sandbox box;
    QString error = text("untouched");
    QVERIFY(FileUtils::fileMkPath(box(text("a/b/c/file.txt")), &error));
    QVERIFY(QFileInfo(box(text("a/b/c"))).isDir());
    QVERIFY(!isThere(box(text("a/b/c/file.txt"))));
    QVERIFY(FileUtils::fileMkPath(box(text("a/b/c/file.txt")), &error));
    QVERIFY(FileUtils::fileMkPath(box(text("a/b/d/"))));
    QVERIFY(QFileInfo(box(text("a/b/d"))).isDir());
    const CurrentFolder current(box.root());
    QVERIFY(FileUtils::fileMkPath(text("e/f"), &error));
    QVERIFY(QFileInfo(box(text("e"))).isDir());
    QVERIFY(FileUtils::fileMkPath(text("file"), &error));
    QCOMPARE(error, text("untouched"));
}

void tst_FileUtilsCopies::fileMkPathFailure()
{
    Sandbox box;
    box.file(text("file"));
    LogCapture log;
    QString error;
    QVERIFY(!FileUtils::fileMkPath(box(text("file/sub/a")), &error));
    QCOMPARE(error,
             text("(fileMkPath) Cant create folder '") + box(text("file/sub")) + text("' !"));
    QVERIFY(!FileUtils::fileMkPath(box(text("file/sub/a"))));
    QVERIFY(!FileUtils::fileMkPath(box(text("file/sub/a")), nullptr));
    const CurrentFolder current(box.root());
    QVERIFY(!FileUtils::fileMkPath(text("file/%1/a"), &error));
    QCOMPARE(error, text("(fileMkPath) Cant create folder '") + box(text("file/%1")) + text("' !"));
    QCOMPARE(log.lines(), QStringList());
}

// copyDir

void tst_FileUtilsCopies::copyDir()
{
    Sandbox box;
    box.file(text("s/a"), "1");
    box.file(text("s/.hidden"), "2");
    box.file(text("s/.DS_Store"), "3");
    box.file(text("s/sub/deep/b"), "4");
    box.file(text("s/.git/c"), QByteArray());
    box.folder(text("s/empty"));
#ifdef Q_OS_WIN
    box.file(text("s/naïve '%1'"), "5");
#else
    box.file(text("s/naïve \"%1\""), "5");
#endif
    changeMode(box(text("s/a")), 0640);
    const QStringList source = treeOf(box(text("s")));
    QCOMPARE(source.size(), 10);
    LogCapture log;
    for (const bool merge : {false, true}) {
        const QString destination = box(text("new/%1/d").arg(merge));
        QVERIFY(FileUtils::copyDir(box(text("s")), destination, merge));
        QCOMPARE(treeOf(destination), source);
        QCOMPARE(QFile::permissions(destination + text("/a")),
                 QFile::permissions(box(text("s/a"))));
    }
    QVERIFY(FileUtils::copyDir(box(text("s/")), box(text("slashes/")), false));
    QCOMPARE(treeOf(box(text("slashes"))), source);
    QCOMPARE(treeOf(box(text("s"))), source);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtilsCopies::copyDirMergeDecides_data()
{
    const auto row = columns<bool, QStringList>("merge", "result");
    row("exact copy", false, QStringList({text("a=new"), text("sub/"), text("sub/b=new")}));
    row("merged", true,
        QStringList({text(".mine=old"), text("a=new"), text("mine/"), text("mine/c=old"),
                     text("sub/"), text("sub/b=new"), text("sub/mine=old")}));
}

void tst_FileUtilsCopies::copyDirMergeDecides()
{
    QFETCH(bool, merge);
    Sandbox box;
    box.file(text("s/a"), "new");
    box.file(text("s/sub/b"), "new");
    box.file(text("d/a"), "old");
    box.file(text("d/.mine"), "old");
    box.file(text("d/sub/b"), "old");
    box.file(text("d/sub/mine"), "old");
    box.file(text("d/mine/c"), "old");
    QVERIFY(FileUtils::copyDir(box(text("s")), box(text("d")), merge));
    QTEST(treeOf(box(text("d"))), "result");
    QCOMPARE(treeOf(box(text("s"))), QStringList({text("a=new"), text("sub/"), text("sub/b=new")}));
}

void tst_FileUtilsCopies::copyDirNestedFoldersAreMerged()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    // A link to a folder in the destination counts as an existing folder and is merged into.
    Sandbox box;
    box.file(text("s/sub/a"), "new");
    box.folder(text("d"));
    box.file(text("shared/kept"), "old");
    box.link(text("d/sub"), text("../shared"));
    QVERIFY(FileUtils::copyDir(box(text("s")), box(text("d")), true));
    QCOMPARE(treeOf(box(text("shared"))), QStringList({text("a=new"), text("kept=old")}));
}

void tst_FileUtilsCopies::copyDirMissingSource_data()
{
    const auto row = columns<QString>("name");
    row("missing", "missing");
    row("file", "file");
    row("broken link", "broken");
}

void tst_FileUtilsCopies::copyDirMissingSource()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, name);
    Sandbox box;
    box.file(text("file"));
    box.link(text("broken"), text("nowhere"));
    box.file(text("d/kept"), "old");
    const QStringList before = treeOf(box.root());
    for (const bool merge : {false, true}) {
        LogCapture log;
        QVERIFY(!FileUtils::copyDir(box(name), box(text("d")), merge));
        QCOMPARE(log.lines(),
                 QStringList(text("critical orvautils FileUtils copyDir: ") + box(name)
                             + text(" Doesnt exists")));
        QCOMPARE(treeOf(box.root()), before);
    }
    // An empty path does not mean the current folder.
    const CurrentFolder current(box(text("d")));
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(QString(), box(text("copy")), false));
    QCOMPARE(log.lines(),
             QStringList(text("critical orvautils FileUtils copyDir:  Doesnt exists")));
    QCOMPARE(treeOf(box.root()), before);
}

void tst_FileUtilsCopies::copyDirCannotRemove()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    Sandbox box;
    box.file(text("s/a"));
    box.file(text("d/sub/kept"), "old");
    changeMode(box(text("d")), 0777);
    box.lock(box(text("d/sub")), 0555);
    const OrdinaryUser user;
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box(text("s")), box(text("d")), false));
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils copyDir: unable to removeRecursively ")
                         + box(text("d"))));
    QCOMPARE(treeOf(box(text("d"))), QStringList({text("sub/"), text("sub/kept=old")}));
}

void tst_FileUtilsCopies::copyDirCannotMkdir_data()
{
    const auto row = columns<QString>("destination");
    row("a file is in the way", "file");
    row("a parent is a file", "file/d");
    row("not permitted", "locked/x/d");
    row("broken link", "broken");
}

void tst_FileUtilsCopies::copyDirCannotMkdir()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, destination);
    Sandbox box;
    box.file(text("s/a"), "new");
    box.file(text("file"), "kept");
    box.link(text("broken"), text("nowhere/at/all"));
    box.folder(text("locked"));
    box.lock(box(text("locked")), 0555);
    const QStringList before = treeOf(box.root());
    const OrdinaryUser user;
    for (const bool merge : {false, true}) {
        LogCapture log;
        QVERIFY(!FileUtils::copyDir(box(text("s")), box(destination), merge));
        QCOMPARE(log.lines(),
                 QStringList(text("warning orvautils FileUtils copyDir: unable to mkdir ")
                             + box(destination)));
        QCOMPARE(treeOf(box.root()), before);
    }
}

void tst_FileUtilsCopies::copyDirStopsAtAFile()
{
    Sandbox box;
    box.file(text("s/a"), "new");
    // A folder cannot be replaced by a file.
    box.file(text("d/a/kept"), "old");
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box(text("s")), box(text("d")), true));
    QCOMPARE(log.lines(),
             QStringList(
                 {text("warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't remove "
                       " ")
                      + box(text("d/a")),
                  text("warning orvautils FileUtils copyDir: unable to copy ") + box(text("s/a"))
                      + text(" to ") + box(text("d/a"))}));
    QCOMPARE(treeOf(box(text("d"))), QStringList({text("a/"), text("a/kept=old")}));
}

void tst_FileUtilsCopies::copyDirStopsAtTheFirstFailure_data()
{
    const auto row = columns<QString>("file"); // in the folder or sub-folder %1
    row("files", "%1");
    row("files in sub-folders", "%1/x");
}

void tst_FileUtilsCopies::copyDirStopsAtTheFirstFailure()
{
    QFETCH(QString, file);
    // Every file has a folder in its way. Which one is tried first is up to the system.
    Sandbox box;
    for (const QString& name : {text("a"), text("b"), text("c")}) {
        box.file(text("s/") + file.arg(name), "new");
        box.file(text("d/") + file.arg(name) + text("/kept"), "old");
    }
    const QStringList before = treeOf(box(text("d")));
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box(text("s")), box(text("d")), true));
    QCOMPARE(log.lines().size(), 2); // of forceCopy() and copyDir(), about one file
    QCOMPARE(treeOf(box(text("d"))), before);
}

void tst_FileUtilsCopies::copyDirStopsInAFolder()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    Sandbox box;
    box.file(text("s/sub/deep/a"), "new");
    box.file(text("d/sub/deep"), "old");
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box(text("s")), box(text("d")), true));
    // The level that failed has logged; those above it do not log again.
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils copyDir: unable to mkdir ")
                         + box(text("d/sub/deep"))));
    QCOMPARE(treeOf(box(text("d"))), QStringList({text("sub/"), text("sub/deep=old")}));

    // What was copied before is kept.
    changeMode(box.file(text("t/x/unreadable")), 0);
    const OrdinaryUser user;
    LogCapture second;
    QVERIFY(!FileUtils::copyDir(box(text("t")), box(text("e")), false));
    QCOMPARE(second.lines(),
             QStringList(
                 {text("warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't copy ")
                      + box(text("t/x/unreadable")) + text(" ") + box(text("e/x/unreadable"))
                      + text("  error= 14"),
                  text("warning orvautils FileUtils copyDir: unable to copy ")
                      + box(text("t/x/unreadable")) + text(" to ") + box(text("e/x/unreadable"))}));
    QCOMPARE(treeOf(box(text("e"))), QStringList(text("x/")));
}

void tst_FileUtilsCopies::copyDirUnreadableFolder()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    // A folder that cannot be listed is not treated as empty.
    if (portable && getuid() == 0)
        QSKIP("QDir answers for the user who started the process, and root reads every folder");
    Sandbox box;
    box.file(text("s/sub/a"));
    box.lock(box(text("s/sub")), 0);
    LogCapture log;
    {
        const OrdinaryUser user;
        QVERIFY(!FileUtils::copyDir(box(text("s")), box(text("d")), false));
    }
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils copyDir: unable to copy ")
                         + box(text("s/sub")) + text(" to ") + box(text("d/sub"))));
}

void tst_FileUtilsCopies::copyDirSparesTheDestination()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    // An unreadable source does not destroy the destination.
    if (portable && getuid() == 0)
        QSKIP("QDir answers for the user who started the process, and root reads every folder");
    Sandbox box;
    box.file(text("s/a"));
    box.file(text("d/b"));
    changeMode(box(text("d")), 0777);
    box.lock(box(text("s")), 0);
    LogCapture log;
    {
        const OrdinaryUser user;
        QVERIFY(!FileUtils::copyDir(box(text("s")), box(text("d")), false));
    }
    QCOMPARE(treeOf(box(text("d"))), QStringList(text("b=content")));
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils copyDir: unable to copy ")
                         + box(text("s")) + text(" to ") + box(text("d"))));
}

void tst_FileUtilsCopies::copyDirOntoItself_data()
{
    const auto row = columns<QString, QString>("source", "destination");
    row("itself", "p/s", "p/s");
    row("itself, other spelling", "p/s", "p/x/..//s/");
    row("itself through a link", "p/s", "link");
    row("itself from a link", "link", "p/s");
    row("link onto itself", "link", "link");
    row("inside it, present", "p/s", "p/s/sub");
    row("inside it, to be made", "p/s", "p/s/sub/new/deeper");
    row("inside it through a link", "p/s", "link/new");
    row("its parent", "p/s", "p");
    row("further up", "p/s/sub", "p");
    row("its parent through a link", "p/s", "parent");
    row("the place of the link that is copied", "holder/link", "holder");
}

void tst_FileUtilsCopies::copyDirOntoItself()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, source);
    QFETCH(QString, destination);
    Sandbox box;
    box.file(text("p/s/a"), "only copy");
    box.file(text("p/s/sub/b"), "only copy");
    box.file(text("p/c"), "only copy");
    box.file(text("holder/d"), "only copy");
    box.link(text("link"), text("p/s"));
    box.link(text("parent"), text("p"));
    box.link(text("holder/link"), text("../p/s"));
    const QStringList before = treeOf(box.root());
    for (const bool merge : {false, true}) {
        LogCapture log;
        QVERIFY(!FileUtils::copyDir(box(source), box(destination), merge));
        QCOMPARE(treeOf(box.root()), before);
        QCOMPARE(log.lines(),
                 QStringList(text("warning orvautils FileUtils copyDir: unable to copy ")
                             + box(source) + text(" to ") + QDir::cleanPath(box(destination))));
    }
}

void tst_FileUtilsCopies::copyDirBesideItself()
{
    // A name that merely starts with that of the source is another folder.
    Sandbox box;
    box.file(text("s/a"), "1");
    QVERIFY(FileUtils::copyDir(box(text("s")), box(text("s2")), false));
    QVERIFY(FileUtils::copyDir(box(text("s2")), box(text("s")), false));
    QCOMPARE(treeOf(box.root()),
             QStringList({text("s/"), text("s/a=1"), text("s2/"), text("s2/a=1")}));
}

void tst_FileUtilsCopies::copyDirFollowsLinks()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    box.file(text("outside/a"), "1");
    box.file(text("file"), "2");
    box.folder(text("s"));
    box.link(text("s/folder"), text("../outside"));
    box.link(text("s/file"), text("../file"));
    box.link(text("s/broken"), text("nowhere"));
    box.pipe(text("s/pipe"));
    QVERIFY(FileUtils::copyDir(box(text("s")), box(text("d")), false));
    QCOMPARE(treeOf(box(text("d"))),
             QStringList({text("file=2"), text("folder/"), text("folder/a=1")}));
}

void tst_FileUtilsCopies::copyDirDeletesLinksAsLinks()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    box.file(text("outside/sentinel"), "kept");
    box.file(text("s/a"), "new");
    box.folder(text("d/sub"));
    box.link(text("d/toFolder"), text("../outside"));
    box.link(text("d/sub/toFile"), text("../../outside/sentinel"));
    box.link(text("d/sub/loop"), text(".."));
    box.link(text("d/broken"), text("nowhere"));
    QVERIFY(FileUtils::copyDir(box(text("s")), box(text("d")), false));
    QCOMPARE(treeOf(box(text("d"))), QStringList(text("a=new")));
    QCOMPARE(treeOf(box(text("outside"))), QStringList(text("sentinel=kept")));
}

void tst_FileUtilsCopies::copyDirReplacesALink()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    Sandbox box;
    box.file(text("outside/sentinel"), "kept");
    box.file(text("s/a"), "new");
    box.link(text("d"), text("outside"));
    QVERIFY(FileUtils::copyDir(box(text("s")), box(text("d/")), false));
    QVERIFY(!QFileInfo(box(text("d"))).isSymLink());
    QCOMPARE(treeOf(box(text("d"))), QStringList(text("a=new")));
    QCOMPARE(treeOf(box(text("outside"))), QStringList(text("sentinel=kept")));
    // With merge, the link counts as an existing folder.
    box.link(text("m"), text("outside"));
    QVERIFY(FileUtils::copyDir(box(text("s")), box(text("m")), true));
    QCOMPARE(treeOf(box(text("outside"))), QStringList({text("a=new"), text("sentinel=kept")}));
}

void tst_FileUtilsCopies::copyDirLinkIntoTheSource()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    // A folder in the destination is a link into the source: copying through it would overwrite
    // files that are still to be copied.
    Sandbox box;
    box.file(text("s/x/f"), "x");
    box.file(text("s/y/f"), "y");
    box.folder(text("d"));
    box.link(text("d/x"), text("../s/y"));
    const QStringList source = treeOf(box(text("s")));
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box(text("s")), box(text("d")), true));
    QCOMPARE(treeOf(box(text("s"))), source);
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils copyDir: unable to copy ")
                         + box(text("s/x")) + text(" to ") + box(text("d/x"))));
}

void tst_FileUtilsCopies::copyDirLinkAroundBoth()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    // A link in the source leads to a folder that contains the destination: an endless copy.
    Sandbox box;
    box.file(text("p/s/a"), "1");
    box.link(text("p/s/up"), text(".."));
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box(text("p/s")), box(text("p/d")), false));
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils copyDir: unable to copy ")
                         + box(text("p/s/up")) + text(" to ") + box(text("p/d/up"))));
    QVERIFY(!isThere(box(text("p/d/up"))));
}

void tst_FileUtilsCopies::copyDirRelativePaths()
{
    Sandbox box;
    box.file(text("s/sub/a"), "1");
    const CurrentFolder current(box(text("s")));
    QVERIFY(FileUtils::copyDir(text("sub"), text("../d/./e"), false));
    QCOMPARE(treeOf(box(text("d"))), QStringList({text("e/"), text("e/a=1")}));
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(text("missing"), text("d"), false));
    QVERIFY(!FileUtils::copyDir(text("."), text("new"), false));
    QCOMPARE(log.lines(),
             QStringList({text("critical orvautils FileUtils copyDir: ") + box(text("s/missing"))
                              + text(" Doesnt exists"),
                          text("warning orvautils FileUtils copyDir: unable to copy ")
                              + box(text("s")) + text(" to ") + box(text("s/new"))}));
}

void tst_FileUtilsCopies::copyDirEmptyDestination()
{
    Sandbox box;
    box.file(text("s/a"), "new");
    box.file(text("here/kept"), "old");
    const QStringList before = treeOf(box.root());
    const CurrentFolder current(box(text("here")));
    for (const bool merge : {false, true}) {
        LogCapture log;
        QVERIFY(!FileUtils::copyDir(box(text("s")), QString(), merge));
        QCOMPARE(log.lines(),
                 QStringList(text("warning orvautils FileUtils copyDir: unable to mkdir ")));
    }
    QCOMPARE(treeOf(box.root()), before);
}

void tst_FileUtilsCopies::copyDirResources()
{
    Sandbox box;
#ifndef Q_OS_WIN // where the current folder cannot be removed
    const CurrentFolder current(box.folder(text("d")));
#endif
    for (const bool merge : {true, false}) {
        QVERIFY(FileUtils::copyDir(text(":/tree"), box(text("d")), merge));
        QCOMPARE(
            treeOf(box(text("d"))),
            QStringList({text("a.txt=a resource\n"), text("sub/"), text("sub/b.txt=another\n")}));
    }
}

// segmentedCopy

void tst_FileUtilsCopies::segmentedCopy_data()
{
    const auto row = columns<int, QVector<qint64>>("segmentSize", "reads");
    row("in pieces", 4, QVector<qint64>({4, 4, 2}));
    row("in whole pieces", 5, QVector<qint64>({5, 5}));
    row("at once", 10, QVector<qint64>({10}));
    row("larger than the source", 4096, QVector<qint64>({10}));
    row("byte by byte", 1, QVector<qint64>(10, 1));
}

void tst_FileUtilsCopies::segmentedCopy()
{
    QFETCH(int, segmentSize);
    CountingDevice source("0123456789");
    CountingDevice destination{QByteArray()};
    QCOMPARE(FileUtils::segmentedCopy(source, destination, segmentSize), 10);
    QTEST(source.reads, "reads");
    QCOMPARE(destination.writes.size(), source.reads.size());
    QByteArray written;
    for (const QByteArray& piece : qAsConst(destination.writes))
        written += piece;
    QCOMPARE(written, QByteArray("0123456789"));
    // There is nothing left to copy.
    QCOMPARE(FileUtils::segmentedCopy(source, destination, segmentSize), 0);
}

void tst_FileUtilsCopies::segmentedCopyStopsOnAnEmptyRead_data()
{
    const auto row =
        columns<QByteArray, qint64, int, int>("content", "claimed", "segmentSize", "total");
    row("dry from the start", QByteArray(), qint64(10), 4, 0);
    row("dries up", "01234567", qint64(10), 4, 8);
    row("segment size 0", "0123", qint64(4), 0, 0);
    row("negative segment size", "0123", qint64(4), -1, 0);
}

void tst_FileUtilsCopies::segmentedCopyStopsOnAnEmptyRead()
{
    QFETCH(QByteArray, content);
    QFETCH(qint64, claimed);
    QFETCH(int, segmentSize);
    CountingDevice source(content, claimed);
    CountingDevice destination{QByteArray()};
    QTEST(FileUtils::segmentedCopy(source, destination, segmentSize), "total");
}

void tst_FileUtilsCopies::segmentedCopyCountsWhatWasRequested()
{
    // The source reports 6 bytes, returns 2 at the second read and then none: 4 + 4 were requested.
    CountingDevice source("012345", 6);
    CountingDevice destination{QByteArray()};
    QCOMPARE(FileUtils::segmentedCopy(source, destination, 4), 8);
    QCOMPARE(destination.writes, QVector<QByteArray>({"0123", "45"}));
}

void tst_FileUtilsCopies::segmentedCopyLeavesDevicesOpen()
{
    QBuffer source;
    source.setData("0123456789");
    QVERIFY(source.open(QIODevice::ReadOnly));
    source.seek(3);
    QBuffer destination;
    QVERIFY(destination.open(QIODevice::WriteOnly));
    QCOMPARE(FileUtils::segmentedCopy(source, destination, 3), 7);
    QCOMPARE(destination.data(), QByteArray("3456789"));
    QVERIFY(source.isOpen());
    QVERIFY(destination.isOpen());
    // A destination that accepts nothing is not noticed.
    QBuffer closed;
    source.seek(0);
    LogCapture log;
    QCOMPARE(FileUtils::segmentedCopy(source, closed, 5), 10);
}

QTEST_MAIN(tst_FileUtilsCopies)
#include "tst_FileUtilsCopies.moc"

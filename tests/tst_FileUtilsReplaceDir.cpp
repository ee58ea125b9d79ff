// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Replacing whole folder trees.

#include "FileUtils.h"

#include "Columns.h"
#include "FileLimit.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "PortableFiles.h"
#include "Sandbox.h"
#include "SystemCalls.h"
#include "Text.h"

#include <QtTest>

#include <cerrno>

#ifndef Q_OS_WIN
#include <sys/wait.h>
#endif
#if defined(Q_OS_LINUX)
#include <sys/xattr.h>
#endif

#if defined(__clang__)
// QSKIP() is a macro with optional arguments.
#pragma clang diagnostic ignored "-Wgnu-zero-variadic-macro-arguments"
#endif

namespace {

/// A tree below "s" with all kinds of entries that can be copied, and another one below "d".
void makeTrees(Sandbox& box)
{
    box.file(text("s/a"), "new");
    box.file(text("s/sub/deep/b"), QByteArray(100000, 'b'));
    box.file(text("s/.hidden/c"), "hidden");
    box.file(text("s/sub/program"), "#!");
    box.folder(text("s/empty"));
#ifndef Q_OS_WIN
    box.link(text("s/link"), text("sub/deep"));
    box.link(text("s/broken"), text("nowhere"));
#endif
    box.file(text("d/a"), "old");
    box.file(text("d/old/gone"), "old");
}

struct stat statusOf(const QString& path)
{
    struct stat status = {};
    if (lstat(QFile::encodeName(path).constData(), &status) != 0)
        qFatal("cannot look at %s", qPrintable(path));
    return status;
}

#ifndef Q_OS_WIN
void setTime(const QString& path, time_t seconds, long nanoseconds)
{
    const struct timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    if (utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, AT_SYMLINK_NOFOLLOW) != 0)
        qFatal("cannot set the time of %s", qPrintable(path));
}

bool haveSameTime(const struct stat& one, const struct stat& other)
{
    return one.st_mtim.tv_sec == other.st_mtim.tv_sec
        && one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

/// Replaces a folder in a process that is killed halfway.
void killWhileReplacing(const QString& source, const QString& destination)
{
    const pid_t child = fork();
    if (child == 0) {
        FileUtils::replaceDir(source, destination, [](const FileUtils::TreeProgress&) {
            std::raise(SIGKILL);
            return true;
        });
        _exit(1);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFSIGNALED(status))
        qFatal("no process was killed");
}

#else
void killWhileReplacing(const QString&, const QString&)
{
    qFatal("no process is killed");
}
#endif

/// The hidden folders in which copies are prepared.
QStringList stagesIn(const QString& folder)
{
    return QDir(folder).entryList({text(".orvautils-*")},
                                  QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

class tst_FileUtilsReplaceDir : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replaces_data();
    void replaces();
    void keepsTimesAndPermissions();
    void keepsReadOnlyFolders();
    void keepsHoles();
    void keepsExtendedAttributes();
    void inheritedAttributesGo();
    void destinationLinkStays();
    void slashesAtTheEnd();
    void withoutPath();
    void specialEntries();
    void refusals_data();
    void refusals();
    void unreadableFile();
    void fullDisk();
    void killed();
    void replacedMeanwhile();
    void namesThatAreNoText();
    void cancelled_data();
    void cancelled();
    void progress();
    void moveOver();
    void moveOverRefusals_data();
    void moveOverRefusals();
    void replaceFileContent();
    void replaceFileContentFailures();
    void replaceFileContentOfAPipe();
};

void tst_FileUtilsReplaceDir::replaces_data()
{
    const auto row = columns<QString>("destination");
    row("over a tree", "d");
    row("where nothing is", "new/folder");
    row("with a slash", "d/");
}

void tst_FileUtilsReplaceDir::replaces()
{
    QFETCH(QString, destination);
    Sandbox box;
    makeTrees(box);
    const QStringList source = treeOf(box(text("s")));
    QString error;
    LogCapture log;
    QVERIFY2(FileUtils::replaceDir(box(text("s")), box(destination), nullptr, &error),
             qPrintable(error));
    QCOMPARE(treeOf(QDir(box(destination)).absolutePath()), source);
    QCOMPARE(treeOf(box(text("s"))), source);
    QCOMPARE(error, QString());
    QCOMPARE(log.lines(), QStringList());
    // Nothing else is left next to it.
    QVERIFY(treeOf(box.root()).filter(text(".orvautils-")).isEmpty());
}

void tst_FileUtilsReplaceDir::keepsTimesAndPermissions()
{
#ifdef Q_OS_WIN
    SKIP_ON_WINDOWS("permissions are those of POSIX");
#else
    Sandbox box;
    makeTrees(box);
    changeMode(box(text("s/sub/program")), 04750);
    changeMode(box(text("s/a")), 0444);
    changeMode(box(text("s/.hidden")), 0700);
    changeMode(box(text("s/sub")), 02775);
    changeMode(box(text("s")), 0711);
    const QStringList names = {
        text("a"),        text("broken"), text("link"),    text("sub/program"), text("sub/deep/b"),
        text("sub/deep"), text("sub"),    text(".hidden"), text("empty"),       text(".")};
    for (int i = 0; i < names.size(); ++i)
        setTime(box(text("s/")) + names.at(i), 1000000000 + i, 123456789);
    QVERIFY(FileUtils::replaceDir(box(text("s")), box(text("d"))));
    for (const QString& name : names) {
        const struct stat from = statusOf(box(text("s/")) + name);
        const struct stat to = statusOf(box(text("d/")) + name);
        QVERIFY2(haveSameTime(from, to), qPrintable(name));
        QVERIFY2(from.st_mode == to.st_mode, qPrintable(name));
        QVERIFY2(from.st_uid == to.st_uid && from.st_gid == to.st_gid, qPrintable(name));
    }
#endif
}

void tst_FileUtilsReplaceDir::keepsReadOnlyFolders()
{
    SKIP_ON_WINDOWS("folders there take new files whatever their mode");
    // A read-only folder is copied, and is removed when it is replaced.
    Sandbox box;
    const OrdinaryUser user;
    box.file(text("s/sub/a"), "new");
    box.file(text("d/sub/b"), "old");
    box.lock(box(text("s/sub")), 0555);
    changeMode(box(text("d/sub")), 0555);
    QVERIFY(FileUtils::replaceDir(box(text("s")), box(text("d"))));
    QCOMPARE(treeOf(box(text("d"))), treeOf(box(text("s"))));
    QCOMPARE(statusOf(box(text("d/sub"))).st_mode & 0777, mode_t(0555));
    QVERIFY(treeOf(box.root()).filter(text(".orvautils-")).isEmpty());
    QVERIFY(FileUtils::replaceDir(box(text("s")), box(text("d"))));
    QVERIFY(treeOf(box.root()).filter(text(".orvautils-")).isEmpty());
    changeMode(box(text("d/sub")), 0777);
}

void tst_FileUtilsReplaceDir::keepsHoles()
{
#ifdef Q_OS_WIN
    SKIP_ON_WINDOWS("the blocks of a file are not told");
#else
    Sandbox box;
    const QString path = box.file(text("s/sparse"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.resize(64 << 20));
    QVERIFY(file.seek(32 << 20));
    QCOMPARE(file.write("in the middle"), qint64(13));
    file.close();
    if (qint64(statusOf(path).st_blocks) * 512 >= qint64(64 << 20))
        QSKIP("the file system has no sparse files");
    QVERIFY(FileUtils::replaceDir(box(text("s")), box(text("d"))));
    const struct stat copy = statusOf(box(text("d/sparse")));
    QCOMPARE(qint64(copy.st_size), qint64(64 << 20));
    QVERIFY(qint64(copy.st_blocks) * 512 < qint64(1 << 20));
    QVERIFY(contentOf(box(text("d/sparse"))) == contentOf(path));
#endif
}

void tst_FileUtilsReplaceDir::keepsExtendedAttributes()
{
#if defined(Q_OS_LINUX)
    if (portable)
        QSKIP("built without them");
    Sandbox box;
    const QByteArray file = QFile::encodeName(box.file(text("s/a")));
    const QByteArray folder = QFile::encodeName(box.folder(text("s/sub")));
    for (const QByteArray& path : {file, folder}) {
        if (setxattr(path.constData(), "user.comment", "a note", 6, 0) != 0)
            QSKIP("the file system has no extended attributes");
    }
    QVERIFY(FileUtils::replaceDir(box(text("s")), box(text("d"))));
    for (const QString& name : {text("d/a"), text("d/sub")}) {
        char value[16] = {};
        QCOMPARE(
            getxattr(QFile::encodeName(box(name)).constData(), "user.comment", value, sizeof value),
            ssize_t(6));
        QCOMPARE(QByteArray(value), QByteArray("a note"));
    }
#else
    QSKIP("Linux alone is asked for them");
#endif
}

/// A folder may pass on an access control list to whatever is made in it, here to the copy.
void tst_FileUtilsReplaceDir::inheritedAttributesGo()
{
#if defined(Q_OS_LINUX)
    if (portable)
        QSKIP("built without them");
    Sandbox box;
    box.file(text("s/a"), "new");
    box.folder(text("s/sub"));
    const QByteArray shared = QFile::encodeName(box.folder(text("shared")));
    // Version 2; then tag, permissions and user: the owner, user 12345, the group, the mask of all
    // rights but the owner's, and everybody else.
    const QByteArray list = QByteArray::fromHex("02000000"
                                                "01000700ffffffff"
                                                "0200070039300000"
                                                "04000500ffffffff"
                                                "10000700ffffffff"
                                                "20000500ffffffff");
    if (setxattr(shared.constData(), "system.posix_acl_default", list.constData(),
                 size_t(list.size()), 0)
        != 0)
        QSKIP("the file system has no access control lists");
    const auto sizeOfAttributes = [&box](const QString& name) {
        return listxattr(QFile::encodeName(box(name)).constData(), nullptr, 0);
    };
    box.folder(text("shared/made"));
    QVERIFY(sizeOfAttributes(text("shared/made")) > 0);

    QVERIFY(FileUtils::replaceDir(box(text("s")), box(text("shared/d"))));
    QCOMPARE(treeOf(box(text("shared/d"))), treeOf(box(text("s"))));
    for (const QString& name : {QString(), text("/a"), text("/sub")}) {
        QCOMPARE(sizeOfAttributes(text("shared/d") + name), sizeOfAttributes(text("s") + name));
        QCOMPARE(statusOf(box(text("shared/d") + name)).st_mode,
                 statusOf(box(text("s") + name)).st_mode);
    }
#else
    QSKIP("Linux alone is asked for them");
#endif
}

void tst_FileUtilsReplaceDir::destinationLinkStays()
{
    SKIP_ON_WINDOWS("a test makes no links");
    Sandbox box;
    makeTrees(box);
    box.link(text("toD"), text("d"));
    QVERIFY(FileUtils::replaceDir(box(text("s")), box(text("toD"))));
    QVERIFY(QFileInfo(box(text("toD"))).isSymLink());
    QCOMPARE(treeOf(box(text("d"))), treeOf(box(text("s"))));
}

void tst_FileUtilsReplaceDir::slashesAtTheEnd()
{
    Sandbox box;
    makeTrees(box);
    QString error;
    QVERIFY2(FileUtils::replaceDir(box(text("s//")), box(text("d//")), nullptr, &error),
             qPrintable(error));
    QCOMPARE(treeOf(box(text("d"))), treeOf(box(text("s"))));
    QVERIFY2(FileUtils::replaceDir(box(text("s///")), box(text("new//")), nullptr, &error),
             qPrintable(error));
    QCOMPARE(treeOf(box(text("new"))), treeOf(box(text("s"))));
}

void tst_FileUtilsReplaceDir::withoutPath()
{
    Sandbox box;
    makeTrees(box);
    QString error;
    const LogCapture log;
    QVERIFY(!FileUtils::replaceDir(QString(), box(text("d")), nullptr, &error));
    QCOMPARE(error, text("The folder  does not exist"));
    QVERIFY(!FileUtils::replaceDir(box(text("s")), QString(), nullptr, &error));
    QCOMPARE(error, text(" is not a folder"));
    QVERIFY(!FileUtils::removeContentDirectory(QString(), true, nullptr, &error));
    QCOMPARE(error, text("\"\" is no path of a folder to empty"));
}

void tst_FileUtilsReplaceDir::specialEntries()
{
    SKIP_ON_WINDOWS("there are no named pipes in folders");
    Sandbox box;
    makeTrees(box);
    const QString one = box.pipe(text("s/pipe"));
    const QString other = box.pipe(text("s/sub/deep/pipe"));
    const QStringList before = treeOf(box.root());
    QString error;
    LogCapture log;
    QVERIFY(!FileUtils::replaceDir(box(text("s")), box(text("d")), nullptr, &error));
    QVERIFY2(error.startsWith(text("These cannot be copied: ")), qPrintable(error));
    QVERIFY(error.contains(one) && error.contains(other));
    QCOMPARE(treeOf(box.root()), before);
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.lines().first().startsWith(
        text("warning orvautils FileUtils replaceDir: unable to replace ")));
}

void tst_FileUtilsReplaceDir::refusals_data()
{
    const auto row = columns<QString, QString, QString>("source", "destination", "error");
    row("missing source", "none", "d", "The folder %1/none does not exist");
    row("file as destination", "s", "s2", "%1/s2 is not a folder");
#ifndef Q_OS_WIN
    row("broken link as destination", "s", "s/broken", "%1/s/broken is not a folder");
#endif
    row("onto itself", "s", "s", "%1/s cannot be copied");
    row("into itself", "s", "s/x/y", "%1/s cannot be copied");
    row("around itself", "s/sub", "s", "%1/s/sub cannot be copied");
    row("below a file", "s", "s2/d", "The folder %1/s2/d cannot be made");
    row("slashes at the end", "s//", "s/", "%1/s cannot be copied");
}

void tst_FileUtilsReplaceDir::refusals()
{
    QFETCH(QString, source);
    QFETCH(QString, destination);
    QFETCH(QString, error);
    Sandbox box;
    makeTrees(box);
    box.file(text("s2"));
    const QStringList before = treeOf(box.root());
    QString reason;
    LogCapture log;
    QVERIFY(!FileUtils::replaceDir(box(source), box(destination), nullptr, &reason));
    QCOMPARE(reason, error.arg(box.root()));
    QCOMPARE(treeOf(box.root()), before);
    QCOMPARE(log.lines().size(), 1);
}

void tst_FileUtilsReplaceDir::unreadableFile()
{
    SKIP_ON_WINDOWS("a mode makes no file unreadable");
    Sandbox box;
    makeTrees(box);
    const QStringList before = treeOf(box(text("d")));
    box.lock(box(text("s/sub/deep/b")), 0);
    const OrdinaryUser user;
    QString error;
    LogCapture log;
    QVERIFY(!FileUtils::replaceDir(box(text("s")), box(text("d")), nullptr, &error));
    QCOMPARE(error, box(text("s/sub/deep/b")) + text(" cannot be copied (Permission denied)"));
    QCOMPARE(treeOf(box(text("d"))), before);
    QVERIFY(treeOf(box.root()).filter(text(".orvautils-")).isEmpty());
}

void tst_FileUtilsReplaceDir::fullDisk()
{
    SKIP_ON_WINDOWS("there is no limit of the size of files");
    Sandbox box;
    makeTrees(box);
    const QStringList before = treeOf(box.root());
    QString error;
    LogCapture log;
    {
        const FileLimit limit(RLIMIT_FSIZE, 50000);
        QVERIFY(!FileUtils::replaceDir(box(text("s")), box(text("d")), nullptr, &error));
    }
    QVERIFY(error.startsWith(box(text("s/sub/deep/b")) + text(" cannot be copied")));
    QCOMPARE(treeOf(box.root()), before);
}

void tst_FileUtilsReplaceDir::killed()
{
    SKIP_ON_WINDOWS("no signal kills a process in its midst");
    Sandbox box;
    makeTrees(box);
    box.file(text("e/a"), "other");
    const QStringList before = treeOf(box(text("d")));
    killWhileReplacing(box(text("s")), box(text("d")));
    killWhileReplacing(box(text("s")), box(text("d")));
    killWhileReplacing(box(text("s")), box(text("e")));
    QCOMPARE(treeOf(box(text("d"))), before);
    // Each is removed by the next replacement of its folder, even if that is killed or fails.
    QCOMPARE(stagesIn(box.root()).size(), 2);
    QVERIFY(FileUtils::replaceDir(box(text("s")), box(text("d"))));
    QCOMPARE(treeOf(box(text("d"))), treeOf(box(text("s"))));
    QCOMPARE(stagesIn(box.root()).size(), 1);
    const LogCapture log;
    QVERIFY(!FileUtils::replaceDir(box(text("none")), box(text("e"))));
    QCOMPARE(stagesIn(box.root()), QStringList());
    QCOMPARE(treeOf(box(text("e"))), QStringList(text("a=other")));
}

void tst_FileUtilsReplaceDir::replacedMeanwhile()
{
    SKIP_ON_WINDOWS("no signal kills a process in its midst");
    // The files of a running process are not removed, although they are for the same folder.
    Sandbox box;
    makeTrees(box);
    box.file(text("other/a"), "other");
    killWhileReplacing(box(text("s")), box(text("d")));
    int calls = 0;
    const auto replaceToo = [&](const FileUtils::TreeProgress&) {
        if (++calls == 1) {
            if (!FileUtils::replaceDir(box(text("other")), box(text("d"))))
                return false;
            return stagesIn(box.root()).size() == 1
                && treeOf(box(text("d"))) == QStringList(text("a=other"));
        }
        return true;
    };
    QVERIFY(FileUtils::replaceDir(box(text("s")), box(text("d")), replaceToo));
    QVERIFY(calls > 1);
    QCOMPARE(treeOf(box(text("d"))), treeOf(box(text("s"))));
    QCOMPARE(stagesIn(box.root()), QStringList());
}

void tst_FileUtilsReplaceDir::namesThatAreNoText()
{
#ifdef Q_OS_WIN
    SKIP_ON_WINDOWS("every name is a text");
#else
    Sandbox box;
    makeTrees(box);
    const QByteArray folder = QFile::encodeName(box(text("d/old/"))) + "\xFF\xFE";
    if (mkdir(folder.constData(), 0755) != 0)
        QSKIP("the file system has no such names");
    QVERIFY(close(creat((folder + "/\xFD").constData(), 0644)) == 0);
    QVERIFY(FileUtils::replaceDir(box(text("s")), box(text("d"))));
    QCOMPARE(treeOf(box(text("d"))), treeOf(box(text("s"))));
    QCOMPARE(stagesIn(box.root()), QStringList());
#endif
}

void tst_FileUtilsReplaceDir::cancelled_data()
{
    const auto row = columns<QString>("destination");
    row("over a tree", "d");
    row("where nothing is", "new");
}

void tst_FileUtilsReplaceDir::cancelled()
{
    QFETCH(QString, destination);
    Sandbox box;
    makeTrees(box);
    const QStringList before = treeOf(box.root());
    QString error;
    LogCapture log;
    const auto cancel = [](const FileUtils::TreeProgress&) { return false; };
    QVERIFY(!FileUtils::replaceDir(box(text("s")), box(destination), cancel, &error));
    QCOMPARE(error, text("The operation was cancelled"));
    QCOMPARE(treeOf(box.root()), before);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtilsReplaceDir::progress()
{
    Sandbox box;
    makeTrees(box);
    QVector<FileUtils::TreeProgress> seen;
    const auto observer = [&](const FileUtils::TreeProgress& progress) {
        seen.append(progress);
        return true;
    };
    QVERIFY(FileUtils::replaceDir(box(text("s")), box(text("d")), observer));
    QCOMPARE(seen.first().files, 1);
#ifdef Q_OS_WIN
    const int total = 4;
#else
    const int total = 6; // four files and two links
#endif
    QCOMPARE(seen.first().totalFiles, total);
    QCOMPARE(seen.last().files, total);
    QCOMPARE(seen.last().bytes, qint64(3 + 100000 + 6 + 2));
}

// Single files, and trees that are already complete

void tst_FileUtilsReplaceDir::moveOver()
{
    Sandbox box;
    makeTrees(box);
    const QStringList tree = treeOf(box(text("s")));
    QVERIFY(FileUtils::moveOver(box(text("s")), box(text("d"))));
    QCOMPARE(treeOf(box(text("d"))), tree);
    QVERIFY(!isThere(box(text("s"))));
    box.file(text("draft"), "draft");
#ifdef Q_OS_WIN
    box.file(text("link"), "a file, where tests make no links");
#else
    box.link(text("link"), text("d/a"));
#endif
    QVERIFY(FileUtils::moveOver(box(text("draft")), box(text("link"))));
    QVERIFY(!QFileInfo(box(text("link"))).isSymLink());
    QCOMPARE(contentOf(box(text("link"))), QByteArray("draft"));
    QVERIFY(FileUtils::moveOver(box(text("link")), box(text("d/a"))));
    QVERIFY(FileUtils::moveOver(box(text("d")), box(text("new"))));
    QCOMPARE(contentOf(box(text("new/a"))), QByteArray("draft"));
    box.file(text("again/b"), "again");
    QVERIFY(FileUtils::moveOver(box(text("again/")), box(text("new/"))));
    QCOMPARE(treeOf(box(text("new"))), QStringList(text("b=again")));
    QCOMPARE(QDir(box.root()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList(text("new")));
}

void tst_FileUtilsReplaceDir::moveOverRefusals_data()
{
    const auto row = columns<QString, QString>("path", "newPath");
    row("file over folder", "file", "d");
    row("folder over file", "d", "file");
    row("nothing", "none", "file");
#ifndef Q_OS_WIN
    row("folder over link", "s", "toD");
#endif
    // The system would stop at the NUL and use another file.
    row("over a NUL", "file", text("d/a") + QChar() + text("b"));
    row("from a NUL", text("file") + QChar() + text("b"), "d/a");
    row("folder over a NUL", "s", text("d") + QChar());
}

void tst_FileUtilsReplaceDir::moveOverRefusals()
{
    QFETCH(QString, path);
    QFETCH(QString, newPath);
    Sandbox box;
    makeTrees(box);
    box.file(text("file"));
#ifndef Q_OS_WIN
    box.link(text("toD"), text("d"));
#endif
    const QStringList before = treeOf(box.root());
    QString error;
    QVERIFY(!FileUtils::moveOver(box(path), box(newPath), &error));
    QVERIFY(!error.isEmpty());
    QCOMPARE(treeOf(box.root()), before);
}

void tst_FileUtilsReplaceDir::replaceFileContent()
{
    Sandbox box;
    const QString path = box.file(text("file"), "old");
#ifdef Q_OS_WIN
    QVERIFY(FileUtils::replaceFileContent(path, "new"));
    QCOMPARE(treeOf(box.root()), QStringList(text("file=new")));
#else
    const QString link = box.link(text("link"), text("file"));
    changeMode(path, 0640);
    QVERIFY(FileUtils::replaceFileContent(link, "new"));
    QCOMPARE(treeOf(box.root()), QStringList({text("file=new"), text("link -> file")}));
    QCOMPARE(statusOf(path).st_mode & 0777, mode_t(0640));
#endif
    QVERIFY(FileUtils::replaceFileContent(box(text("a/b/new")), QByteArray()));
    QCOMPARE(contentOf(box(text("a/b/new"))), QByteArray());
}

void tst_FileUtilsReplaceDir::replaceFileContentFailures()
{
    Sandbox box;
    box.file(text("file"), "old");
    box.file(text("other"), "other");
    const QStringList before = treeOf(box.root());
    QString error;
#ifndef Q_OS_WIN
    {
        const FileLimit limit(RLIMIT_FSIZE, 1000);
        QVERIFY(!FileUtils::replaceFileContent(box(text("file")), QByteArray(100000, 'x'), &error));
    }
    QVERIFY(!error.isEmpty());
#endif
    error.clear();
    QVERIFY(!FileUtils::replaceFileContent(box(text("file/in/file")), "x", &error));
    QVERIFY(error.startsWith(text("(fileMkPath) ")));
    QVERIFY(!FileUtils::replaceFileContent(QString(), "x"));
    QVERIFY(!FileUtils::replaceFileContent(box(text("file")) + QChar() + text("x"), "x"));
    {
        const LogCapture log;
        QVERIFY(!FileUtils::forceCopy(box(text("file")), box(text("copy")) + QChar() + text("x")));
        QVERIFY(!FileUtils::forceCopy(box(text("other")), box(text("file")) + QChar()));
    }
    QVERIFY(!FileUtils::replaceFileContent(box.root(), "x"));
    error.clear();
    QVERIFY(!FileUtils::replaceFileContent(text(":/file"), "x", &error)); // a resource
    QVERIFY(!error.isEmpty());
    QCOMPARE(treeOf(box.root()), before);
}

void tst_FileUtilsReplaceDir::replaceFileContentOfAPipe()
{
    SKIP_ON_WINDOWS("there are no named pipes in folders");
    // Opening it would wait for a reader. A device must not become a file, either.
    Sandbox box;
    const QString pipe = box.pipe(text("pipe"));
    box.link(text("device"), text("/dev/null"));
    const QStringList before = treeOf(box.root());
    for (const QString& path : {pipe, box(text("device"))}) {
        QString error;
        QVERIFY(!FileUtils::replaceFileContent(path, "x", &error));
        QCOMPARE(error, qt_error_string(EINVAL));
    }
    QCOMPARE(treeOf(box.root()), before);
}

QTEST_MAIN(tst_FileUtilsReplaceDir)
#include "tst_FileUtilsReplaceDir.moc"

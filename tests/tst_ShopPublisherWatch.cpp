// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The example program shop-publisher: the lock of the project, the check of the site, the static
// files, and following a project while it is edited.

#include "PublisherTest.h"
#include "SystemCalls.h"

#include "Columns.h"

#include <QRegularExpression>
#include <QtTest>

#include <functional>

#include <sys/file.h>

namespace {

const int projectIsOpen = 3;

/// Far longer than anything takes, even under a sanitizer on a busy machine.
const int patience = 120000;

QByteArray jpeg(int width, int height)
{
    return encoded(corners(width, height), "jpg");
}

/// The visible files below \a folder, with their content.
QMap<QString, QByteArray> visibleContentOf(const QString& folder)
{
    QMap<QString, QByteArray> content;
    const QStringList names = filesIn(folder);
    for (const QString& name : names) {
        if (!name.startsWith(QLatin1Char('.')) && !name.contains(text("/.")))
            content.insert(name, readFile(folder + QLatin1Char('/') + name));
    }
    return content;
}

QStringList visibleFilesIn(const QString& folder)
{
    return visibleContentOf(folder).keys();
}

} // namespace

class tst_ShopPublisherWatch : public PublisherTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void lockIsThereOnlyMeanwhile();
    void secondInstance_data();
    void secondInstance();
    void lockAfterAnEnd_data();
    void lockAfterAnEnd();
    void emptyLock();
    void workingFoldersLeftBehind();
    void projectThatCannotBeWritten();
    void lockFileIsNoPicture();
    void siteThatCannotBeWritten();
    void staticFilesAreCopiedOnce();
    void staticFilesOfEarlierRuns();
    void staticPlacesThatAreRefused();
    void plainFolderHasNoStaticFiles();
    void watchFollowsStaticFiles();
    void watchFollowsAStaticFolderThatComesAndGoes();
    void watchFollowsPhotographs();
    void watchReportsBrokenPhotographs();
    void watchKeepsPicturesOfALostFolder();
    void watchFollowsTheShop();
    void stops_data();
    void stops();
    void quietWatch();
    void editingSession();

private:
    void prepareFolders(mode_t project, mode_t site);
    QString image(const char* name) const { return mSite + text("/images/") + text(name); }
    QString staticFile(const char* name) const { return mProject + text("/static/") + text(name); }
    QString mirror(const char* name) const { return mSite + text("/static/") + text(name); }
    QByteArray page() const { return readFile(mSite + text("/index.html")); }
    QString lockFile() const { return mProject + text("/lockfile"); }

    /// Starts watching and returns when the program follows changes.
    bool watch(const QStringList& options = QStringList());
    bool becomes(const std::function<bool()>& condition);
    bool prints(const QString& line);
    void read();
    int stop(int signal = SIGINT);

    std::unique_ptr<QProcess> mProcess;
    QString mOut;
    QString mErr;
};

void tst_ShopPublisherWatch::init()
{
    PublisherTest::init();
    mOut.clear();
    mErr.clear();
}

void tst_ShopPublisherWatch::cleanup()
{
    if (QTest::currentTestFailed() && mProcess) {
        read();
        qWarning("printed:\n%s\n%s", qPrintable(mOut), qPrintable(mErr));
    }
    if (mProcess && mProcess->state() != QProcess::NotRunning) {
        mProcess->kill();
        mProcess->waitForFinished();
    }
    mProcess.reset();
    PublisherTest::cleanup();
}

bool tst_ShopPublisherWatch::watch(const QStringList& options)
{
    mProcess.reset(new QProcess);
    start(mProcess.get(), options + QStringList(text("--watch")));
    if (options.contains(text("--quiet")))
        return becomes([this] { return !page().isEmpty(); });
    return prints(text("Watching %1, Ctrl-C ends").arg(mProject));
}

bool tst_ShopPublisherWatch::becomes(const std::function<bool()>& condition)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < patience) {
        if (condition())
            return true;
        if (mProcess->state() == QProcess::NotRunning)
            return false;
        mProcess->waitForReadyRead(20);
        read();
    }
    return false;
}

bool tst_ShopPublisherWatch::prints(const QString& line)
{
    return becomes([this, &line] {
        return mOut.startsWith(line + QLatin1Char('\n'))
            || mOut.contains(QLatin1Char('\n') + line + QLatin1Char('\n'));
    });
}

void tst_ShopPublisherWatch::read()
{
    mOut += printed(mProcess->readAllStandardOutput());
    mErr += printed(mProcess->readAllStandardError());
}

int tst_ShopPublisherWatch::stop(int signal)
{
#ifdef Q_OS_WIN
    // A program cannot be stopped by a signal there: its last output is not checked.
    Q_UNUSED(signal)
    mProcess->kill();
    mProcess->waitForFinished(patience);
    read();
    return stopped;
#else
    ::kill(pid_t(mProcess->processId()), signal);
    if (!mProcess->waitForFinished(patience) || mProcess->exitStatus() != QProcess::NormalExit)
        return -1;
    read();
    return mProcess->exitCode();
#endif
}

void tst_ShopPublisherWatch::lockIsThereOnlyMeanwhile()
{
    writeFile(photo("a.jpg"), jpeg(40, 30));
    const QStringList before = snapshot(root(), mSite);
    QVERIFY(watch());
    QVERIFY(QFileInfo::exists(lockFile()));
    QCOMPARE(stop(), stopped);
#ifndef Q_OS_WIN // where it was killed, and left its lock
    QCOMPARE(snapshot(root(), mSite), before);
#endif
    QCOMPARE(publish().exitCode, allImported);
    QCOMPARE(snapshot(root(), mSite), before);
    // A usage error, found while the lock is held.
    writeFile(root() + text("/file"), "text");
    QCOMPARE(run({mProject, root() + text("/file/site")}, mHome).exitCode, ::badUsage);
    QVERIFY(!QFileInfo::exists(lockFile()));
}

void tst_ShopPublisherWatch::secondInstance_data()
{
    const auto row = columns<QString, QString>(
        "language", "message"); // %1 the project, %2 the process, %3 the machine
    row("English", "en",
        "shop-publisher: Project project already opened !\n"
        "  Folder : %1/\n"
        "  Held by process %2 (shop-publisher) on %3\n");
    row("French", "fr",
        "shop-publisher: Le projet project est déjà ouvert !\n"
        "  Folder : %1/\n"
        "  Détenu par le processus %2 (shop-publisher) sur %3\n");
    row("German", "de",
        "shop-publisher: Das Projekt project ist schon geöffnet!\n"
        "  Folder : %1/\n"
        "  Gehalten von Prozess %2 (shop-publisher) auf %3\n");
}

void tst_ShopPublisherWatch::secondInstance()
{
    QFETCH(QString, language);
    QFETCH(QString, message);
    writeFile(photo("a.jpg"), jpeg(40, 30));
    QVERIFY(watch());
    const QString other = root() + text("/other");
    const Outcome outcome = run({text("--language"), language, mProject, other}, mHome);
    QCOMPARE(outcome.exitCode, projectIsOpen);
    QCOMPARE(outcome.out, QString());
#ifdef Q_OS_WIN
    const QString host = QSysInfo::machineHostName().toUpper().left(15);
#else
    const QString host = QSysInfo::machineHostName();
#endif
    QCOMPARE(outcome.err, message.arg(mProject, QString::number(mProcess->processId()), host));
    QVERIFY(!QFileInfo::exists(other));
    // The first continues as before.
    QVERIFY(QFileInfo::exists(lockFile()));
    writeFile(photo("b.jpg"), jpeg(40, 30));
    QVERIFY(becomes([this] { return page().contains("images/b.jpg"); }));
    QCOMPARE(stop(), stopped);
}

void tst_ShopPublisherWatch::lockAfterAnEnd_data()
{
    const auto row = columns<int, bool>("signal", "left");
    row("Ctrl-C", SIGINT, false);
    row("killed", SIGKILL, true);
}

void tst_ShopPublisherWatch::lockAfterAnEnd()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    QFETCH(int, signal);
    QFETCH(bool, left);
    writeFile(photo("a.jpg"), jpeg(40, 30));
    QVERIFY(watch());
    stop(signal);
    QCOMPARE(mProcess->state(), QProcess::NotRunning);
    QCOMPARE(QFileInfo::exists(lockFile()), left);
    const Outcome outcome = publish();
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QVERIFY(!QFileInfo::exists(lockFile()));
}

// The remains of a program that was killed between creating its lock and filling it.
void tst_ShopPublisherWatch::emptyLock()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    writeFile(photo("a.jpg"), jpeg(40, 30));
    writeFile(lockFile(), QByteArray());
    // Another program holds it, and is about to fill it.
    const int held = ::open(QFile::encodeName(lockFile()).constData(), O_RDWR);
    QVERIFY(held >= 0);
    QCOMPARE(::flock(held, LOCK_EX | LOCK_NB), 0);
    QCOMPARE(publish().exitCode, projectIsOpen);
    QVERIFY(QFileInfo::exists(lockFile()));
    ::close(held);

    const Outcome outcome = publish();
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QVERIFY(!QFileInfo::exists(lockFile()));
}

// Those of killed programs are removed.
void tst_ShopPublisherWatch::workingFoldersLeftBehind()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    writeFile(photo("a.jpg"), jpeg(40, 30));
    QVERIFY(watch());
    const auto workingFolders = [this] {
        return QDir(mSite).entryList({text(".shop-publisher-*")}, QDir::AllEntries | QDir::Hidden);
    };
    const QStringList own = workingFolders();
    QCOMPARE(own.size(), 1);

    // Without a lock, with an empty lock, with that of a process that has ended; entries with other
    // names, or which are no folders, are kept.
    writeFile(mSite + text("/.shop-publisher-AAAAAA/image.jpg"), "half");
    writeFile(mSite + text("/.shop-publisher-BBBBBB/lock"), QByteArray());
    QVERIFY(QDir().mkpath(mSite + text("/.shop-publisher-CCCCCC/old-static")));
    QProcess gone;
    gone.start(text("true"), QStringList());
    QVERIFY(gone.waitForStarted());
    const qint64 pid = gone.processId();
    QVERIFY(gone.waitForFinished());
    writeFile(mSite + text("/.shop-publisher-CCCCCC/lock"),
              QByteArray::number(pid) + "\nshop-publisher\n" + QSysInfo::machineHostName().toUtf8()
                  + '\n');
    const QString outside = root() + text("/outside");
    writeFile(outside + text("/keep.txt"), "keep me");
    QVERIFY(QFile::link(outside, mSite + text("/.shop-publisher-DDDDDD")));
    writeFile(mSite + text("/.shop-publisher-EEEEEE"), "file");
    writeFile(mSite + text("/.shop-publisher-of-mine/keep.txt"), "keep me");

    // Another project cannot use the same site.
    const QString second = root() + text("/second");
    writeFile(second + text("/photos/a.jpg"), jpeg(40, 30));
    Outcome outcome = run({second, mSite}, mHome);
    QCOMPARE(outcome.exitCode, projectIsOpen);
    QCOMPARE(outcome.err,
             text("shop-publisher: Another instance publishes into SITE (%1).\n").arg(mSite));
    // The running program has lost nothing.
    writeFile(photo("c.jpg"), jpeg(40, 30));
    QVERIFY(becomes([this] { return page().contains("images/c.jpg"); }));
    QCOMPARE(stop(SIGKILL), -1);

    outcome = publish();
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QStringList expected = {text(".shop-publisher-DDDDDD"), text(".shop-publisher-EEEEEE"),
                            text(".shop-publisher-of-mine")};
    QCOMPARE(workingFolders(), expected);
    QCOMPARE(filesIn(outside), QStringList(text("keep.txt")));
}

/// A photograph, and the modes of the two folders for an ordinary process.
void tst_ShopPublisherWatch::prepareFolders(mode_t project, mode_t site)
{
    writeFile(photo("a.jpg"), jpeg(40, 30));
    QVERIFY(QDir().mkpath(mSite));
    QCOMPARE(::chmod(QFile::encodeName(root()).constData(), 0755), 0);
    QCOMPARE(::chmod(QFile::encodeName(mProject).constData(), project), 0);
    QCOMPARE(::chmod(QFile::encodeName(mSite).constData(), site), 0);
}

void tst_ShopPublisherWatch::projectThatCannotBeWritten()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    prepareFolders(0555, 0777);
    const QString line =
        text("No lock: the project's folder %1 cannot be written to\n").arg(mProject);

    OrdinaryProcess process;
    Outcome outcome = run(process, {mProject, mSite}, QString());
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QVERIFY(!outcome.out.contains(line));
    outcome = run(process, {text("--verbose"), mProject, mSite}, QString());
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QVERIFY2(outcome.out.startsWith(line), qPrintable(outcome.out));

    // A lock that is held is respected even by those who could not create it.
    QVERIFY(watch());
    outcome = run(process, {mProject, mSite}, QString());
    QCOMPARE(outcome.exitCode, projectIsOpen);
    QVERIFY2(outcome.err.contains(text("already opened")), qPrintable(outcome.err));
    QCOMPARE(stop(), stopped);
}

void tst_ShopPublisherWatch::lockFileIsNoPicture()
{
    // In a plain folder of photographs the lock is among them.
    writeFile(mProject + text("/plain/a.jpg"), jpeg(40, 30));
    mProject += text("/plain");
    QVERIFY(watch());
    QVERIFY(QFileInfo::exists(lockFile()));
    QCOMPARE(filesIn(mSite + text("/images")), QStringList(text("a.jpg")));
    writeFile(mProject + text("/b.jpg"), jpeg(40, 30));
    QVERIFY(becomes([this] { return page().contains("images/b.jpg"); }));
    QCOMPARE(stop(), stopped);
    QCOMPARE(filesIn(mSite + text("/images")), QStringList({text("a.jpg"), text("b.jpg")}));
    QCOMPARE(mErr, QString());
}

void tst_ShopPublisherWatch::siteThatCannotBeWritten()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    prepareFolders(0777, 0555);
    OrdinaryProcess process;
    const Outcome outcome = run(process, {mProject, mSite}, QString());
    QCOMPARE(outcome.exitCode, ::badUsage);
    QCOMPARE(outcome.out, QString());
    QCOMPARE(outcome.err,
             text("shop-publisher: The folder %1 cannot be written to (Permission "
                  "denied).\nTry 'shop-publisher --help' for more.\n")
                 .arg(mSite));
    QCOMPARE(filesIn(mSite), QStringList());
    QVERIFY(!QFileInfo::exists(lockFile()));
}

void tst_ShopPublisherWatch::staticFilesAreCopiedOnce()
{
    writeFile(photo("a.jpg"), jpeg(40, 30));
    writeFile(staticFile("style.css"), "body {}");
    writeFile(staticFile("deep/er/script.js"), "1");
    writeFile(staticFile(".htaccess"), "hidden");
    writeFile(staticFile("picture.jpg"), "no picture, and nobody asks");
    const QStringList before = snapshot(root(), mSite);
    const Outcome outcome = publish();
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, allImported);
    QCOMPARE(filesIn(mSite + text("/static")), filesIn(mProject + text("/static")));
    QCOMPARE(visibleContentOf(mSite + text("/static")),
             visibleContentOf(mProject + text("/static")));
    QCOMPARE(filesIn(mSite + text("/images")), QStringList(text("a.jpg")));
    QCOMPARE(snapshot(root(), mSite), before);
    // Nothing of the working folder is left.
    QCOMPARE(
        QDir(mSite).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name),
        QStringList(
            {recordName, text("images"), text("index.html"), text("static"), text("thumbs")}));
}

void tst_ShopPublisherWatch::staticFilesOfEarlierRuns()
{
    // If the project has none, SITE/static does not belong to the program.
    writeFile(photo("a.jpg"), jpeg(40, 30));
    QCOMPARE(publish().exitCode, allImported);
    writeFile(mirror("own.txt"), "own");
    QCOMPARE(publish().exitCode, allImported);
    QCOMPARE(readFile(mirror("own.txt")), QByteArray("own"));

    writeFile(staticFile("a.txt"), "a");
    QCOMPARE(publish().exitCode, allImported);
    QCOMPARE(filesIn(mSite + text("/static")), QStringList(text("a.txt")));
    QVERIFY(QFile::rename(staticFile("a.txt"), staticFile("b.txt")));
    QCOMPARE(publish().exitCode, allImported);
    QCOMPARE(filesIn(mSite + text("/static")), QStringList(text("b.txt")));
}

void tst_ShopPublisherWatch::staticPlacesThatAreRefused()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    writeFile(photo("a.jpg"), jpeg(40, 30));
    writeFile(staticFile("a.txt"), "a");
    const QString outside = root() + text("/outside");
    writeFile(outside + text("/keep.txt"), "keep me");
    QVERIFY(QDir().mkpath(mSite));
    QVERIFY(QFile::link(outside, mSite + text("/static")));
    Outcome outcome = publish({text("--force")});
    QCOMPARE(outcome.exitCode, someFailed);
    QCOMPARE(outcome.err,
             text("1 failure:\n  static: cannot be written: static is a link that leads out of "
                  "the site\n"));
    QCOMPARE(filesIn(outside), QStringList(text("keep.txt")));

    // Also while it is watched.
    QVERIFY(watch());
    writeFile(staticFile("b.txt"), "b");
    writeFile(photo("b.jpg"), jpeg(40, 30));
    QVERIFY(becomes([this] { return page().contains("images/b.jpg"); }));
    QCOMPARE(stop(), stopped);
    QCOMPARE(filesIn(outside), QStringList(text("keep.txt")));

    QVERIFY(QFile::remove(mSite + text("/static")));
    writeFile(mSite + text("/static"), "file");
    outcome = publish();
    QCOMPARE(outcome.exitCode, someFailed);
    QCOMPARE(outcome.err,
             text("1 failure:\n  static: cannot be written: the folder static cannot be made\n"));
    QCOMPARE(readFile(mSite + text("/static")), QByteArray("file"));

    // A static folder elsewhere is protected like the photographs.
    QVERIFY(QDir(mProject + text("/static")).removeRecursively());
    QVERIFY(QFile::link(outside, mProject + text("/static")));
    outcome = run({mProject, outside + text("/site")}, mHome);
    QCOMPARE(outcome.exitCode, ::badUsage);
    QVERIFY2(outcome.err.contains(text("SITE lies in the folder of the static files")),
             qPrintable(outcome.err));
    outcome = run({mProject, outside}, mHome);
    QCOMPARE(outcome.exitCode, ::badUsage);
    QCOMPARE(filesIn(outside), QStringList(text("keep.txt")));
}

void tst_ShopPublisherWatch::plainFolderHasNoStaticFiles()
{
    writeFile(mProject + text("/plain/static/a.jpg"), jpeg(40, 30));
    QCOMPARE(run({mProject + text("/plain"), mSite}, mHome).exitCode, allImported);
    QCOMPARE(filesIn(mSite),
             QStringList(
                 {text("images/static/a.jpg"), text("index.html"), text("thumbs/static/a.jpg")}));
}

void tst_ShopPublisherWatch::watchFollowsStaticFiles()
{
    writeFile(photo("a.jpg"), jpeg(40, 30));
    writeFile(staticFile("style.css"), "body {}");
    QVERIFY(watch());
    QCOMPARE(readFile(mirror("style.css")), QByteArray("body {}"));

    writeFile(staticFile("new/script.js"), "1");
    QVERIFY(becomes([this] { return readFile(mirror("new/script.js")) == "1"; }));
    QVERIFY(prints(text("Copied: static/new/script.js")));
    writeFile(staticFile("style.css"), "body { color: red }");
    QVERIFY(becomes([this] { return readFile(mirror("style.css")) == "body { color: red }"; }));
    QVERIFY(prints(text("Copied: static/style.css")));
    QVERIFY(QFile::rename(staticFile("style.css"), staticFile("other.css")));
    QVERIFY(becomes([this] {
        return !QFileInfo::exists(mirror("style.css"))
            && readFile(mirror("other.css")) == "body { color: red }";
    }));
    QVERIFY(prints(text("Removed: static/style.css")));
    QVERIFY(QFile::remove(staticFile("other.css")));
    QVERIFY(becomes([this] { return !QFileInfo::exists(mirror("other.css")); }));
    QVERIFY(QDir().rename(staticFile("new"), staticFile("old")));
    QVERIFY(becomes([this] {
        return readFile(mirror("old/script.js")) == "1" && !QFileInfo::exists(mirror("new"));
    }));
    QVERIFY(QDir().rename(staticFile("old"), staticFile("new")));
    QVERIFY(becomes([this] { return QFileInfo::exists(mirror("new/script.js")); }));

    // A folder gets the name of a file, and a file that of a folder.
    SKIP_ON_WINDOWS("a watched folder stays until its watcher knows, whom wine does not tell");
    QVERIFY(QDir(staticFile("new")).removeRecursively());
    writeFile(staticFile("new"), "file");
    QVERIFY(becomes([this] { return readFile(mirror("new")) == "file"; }));
    QVERIFY(QFile::remove(staticFile("new")));
    writeFile(staticFile("new/again.js"), "2");
    QVERIFY(becomes([this] { return readFile(mirror("new/again.js")) == "2"; }));

    QCOMPARE(stop(), stopped);
    QCOMPARE(mErr, QString());
    QCOMPARE(visibleContentOf(mSite + text("/static")),
             visibleContentOf(mProject + text("/static")));
}

void tst_ShopPublisherWatch::watchFollowsAStaticFolderThatComesAndGoes()
{
    writeFile(photo("a.jpg"), jpeg(40, 30));
    QVERIFY(watch());
    for (const char* content : {"first", "second"}) {
        writeFile(staticFile("a.txt"), content);
        QVERIFY(becomes([this, content] { return readFile(mirror("a.txt")) == content; }));
        writeFile(staticFile("b.txt"), content);
        QVERIFY(becomes([this, content] { return readFile(mirror("b.txt")) == content; }));
        QVERIFY(QDir(mProject + text("/static")).removeRecursively());
        QVERIFY(becomes([this] { return filesIn(mSite + text("/static")).isEmpty(); }));
    }
    QCOMPARE(stop(), stopped);
}

void tst_ShopPublisherWatch::watchFollowsPhotographs()
{
    writeFile(photo("a.jpg"), jpeg(40, 30));
    QVERIFY(watch());
    const auto pageShows = [this](const QByteArray& name) {
        return page().contains("images/" + name + '"');
    };
    QVERIFY(pageShows("a.jpg"));

    writeFile(photo("bowls/b.jpg"), jpeg(60, 20));
    QVERIFY(becomes([&] { return pageShows("bowls/b.jpg"); }));
    QCOMPARE(QImage(image("bowls/b.jpg")).size(), QSize(60, 20));
    QVERIFY(prints(text("Imported: bowls/b.jpg")));
    QVERIFY(prints(text("Written: index.html")));
    QVERIFY(!mOut.contains(text("Imported: a.jpg"))); // unchanged

    writeFile(photo("a.jpg"), jpeg(44, 22));
    QVERIFY(becomes([&] { return QImage(image("a.jpg")).size() == QSize(44, 22); }));
    QVERIFY(prints(text("Imported: a.jpg")));
    QVERIFY(becomes([&] { return page().contains("width=\"44\""); }));

    // Replaced by an older file, as by programs that save in one step.
    writeFile(mProject + text("/saved"), jpeg(30, 44));
    QVERIFY(renameOver(mProject + text("/saved"), photo("a.jpg")));
    QVERIFY(becomes([&] { return QImage(image("a.jpg")).size() == QSize(30, 44); }));

    QVERIFY(QDir().rename(photo("bowls"), photo("cups")));
    QVERIFY(becomes([&] { return pageShows("cups/b.jpg") && !pageShows("bowls/b.jpg"); }));
    QVERIFY(prints(text("Removed: bowls/b.jpg")));
    QVERIFY(prints(text("Imported: cups/b.jpg")));
    QVERIFY(!QFileInfo::exists(image("bowls")));

    QVERIFY(QFile::remove(photo("a.jpg")));
    QVERIFY(becomes([&] { return !pageShows("a.jpg"); }));
    QVERIFY(prints(text("Removed: a.jpg")));
    QCOMPARE(filesIn(mSite + text("/images")), QStringList(text("cups/b.jpg")));
    QCOMPARE(filesIn(mSite + text("/thumbs")), QStringList(text("cups/b.jpg")));
    QCOMPARE(stop(), stopped);
    QCOMPARE(mErr, QString());
}

void tst_ShopPublisherWatch::watchReportsBrokenPhotographs()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    writeFile(photo("a.jpg"), jpeg(40, 30));
    writeFile(photo("broken.jpg"), "broken");
    QVERIFY(QFile::link(photo("nowhere"), photo("lost.jpg")));
    QVERIFY(watch());
    writeFile(photo("b.jpg"), QByteArray());
    QVERIFY(becomes([this] { return mErr.contains(text("  b.jpg: is empty\n")); }));
    writeFile(photo("b.jpg"), jpeg(40, 30));
    QVERIFY(becomes([this] { return page().contains("images/b.jpg"); }));
    writeFile(photo("broken.jpg"), jpeg(40, 30));
    QVERIFY(becomes([this] { return page().contains("images/broken.jpg"); }));
    QCOMPARE(stop(), stopped);
    // A lasting error is reported once.
    QCOMPARE(mErr.count(text("lost.jpg: is a link that leads nowhere")), 1);
    QCOMPARE(mErr.count(text("broken.jpg: cannot be decoded")), 1);
}

void tst_ShopPublisherWatch::watchKeepsPicturesOfALostFolder()
{
    // As if a disk is unmounted: the photographs do not count as deleted.
    writeFile(photo("a.jpg"), jpeg(40, 30));
    writeFile(photo("b.jpg"), jpeg(40, 30));
    QVERIFY(watch());
    const QByteArray before = page();
    QVERIFY(QDir().rename(mProject + text("/photos"), mProject + text("/away")));
    QVERIFY(becomes([this] { return mErr.contains(text("/photos: cannot be read (")); }));
    QCOMPARE(filesIn(mSite + text("/images")), QStringList({text("a.jpg"), text("b.jpg")}));
    QCOMPARE(page(), before);

    QVERIFY(QFile::remove(mProject + text("/away/b.jpg")));
    QVERIFY(QDir().rename(mProject + text("/away"), mProject + text("/photos")));
    QVERIFY(becomes([this] { return !page().contains("images/b.jpg"); }));
    QVERIFY(becomes([this] { return !QFileInfo::exists(image("b.jpg")); }));
    writeFile(photo("c.jpg"), jpeg(40, 30));
    QVERIFY(becomes([this] { return page().contains("images/c.jpg"); }));
    QCOMPARE(stop(), stopped);
    QCOMPARE(filesIn(mSite + text("/images")), QStringList({text("a.jpg"), text("c.jpg")}));
}

void tst_ShopPublisherWatch::watchFollowsTheShop()
{
    writeFile(photo("a.jpg"), jpeg(40, 30));
    const QByteArray shop = R"({"name": "Shop", "description": "", "languages": ["en"],
        "currency": "EUR", "country": "FR", "font": "Roboto", "products": [{"name": "Bowl",
        "description": "", "netPrice": 10, "taxCategory": 0, "photo": "a.jpg"}]})";
    QVERIFY(watch());
    const auto shopPage = [this] { return readFile(mSite + text("/shop-en.html")); };
    QVERIFY(shopPage().isEmpty());
    writeFile(mProject + text("/shop.json"), shop);
    QVERIFY(becomes([&] { return shopPage().contains("Bowl"); }));
    writeFile(mProject + text("/shop.json"), QByteArray(shop).replace("Bowl", "Cup"));
    QVERIFY(becomes([&] { return shopPage().contains("Cup"); }));
    QCOMPARE(stop(), stopped);
}

void tst_ShopPublisherWatch::stops_data()
{
    const auto row = columns<int>("signal");
    row("Ctrl-C", SIGINT);
    row("kill", SIGTERM);
    row("closed terminal", SIGHUP);
}

void tst_ShopPublisherWatch::stops()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    QFETCH(int, signal);
    writeFile(photo("a.jpg"), jpeg(40, 30));
    QVERIFY(watch());
    QCOMPARE(stop(signal), stopped);
    QCOMPARE(mErr, QString());

    // In the middle of a publication: each picture exists in both sizes or not at all.
    QVERIFY(watch());
    const QByteArray large = jpeg(2400, 1800);
    for (int i = 0; i < 12; ++i)
        writeFile(photo(qPrintable(text("p%1.jpg").arg(i))), large);
    QVERIFY(becomes([this] { return filesIn(mSite + text("/images")).size() > 2; }));
    QCOMPARE(stop(signal), stopped);
    QCOMPARE(filesIn(mSite + text("/images")), filesIn(mSite + text("/thumbs")));
    QVERIFY(!QFileInfo::exists(lockFile()));
    QCOMPARE(
        QDir(mSite).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name),
        QStringList({recordName, text("images"), text("index.html"), text("thumbs")}));
}

void tst_ShopPublisherWatch::quietWatch()
{
    writeFile(photo("a.jpg"), jpeg(40, 30));
    QVERIFY(watch({text("--quiet")}));
    writeFile(photo("b.jpg"), jpeg(40, 30));
    QVERIFY(becomes([this] { return page().contains("images/b.jpg"); }));
    QCOMPARE(stop(), stopped);
    QCOMPARE(mOut + mErr, QString());
}

void tst_ShopPublisherWatch::editingSession()
{
    // Some seconds of copying, editing, renaming and deleting, as fast as a script can.
    const QByteArray pictures[] = {jpeg(40, 30), jpeg(700, 500)};
    writeFile(photo("first.jpg"), pictures[0]);
    writeFile(staticFile("first.css"), "first");
    QVERIFY(watch());

    quint32 state = 20;
    const auto random = [&state](int below) {
        state = state * 1664525u + 1013904223u;
        return int((state >> 16) % quint32(below));
    };
    const QString photos = mProject + text("/photos/");
    const QString files = mProject + text("/static/");
    for (int step = 0; step < 400; ++step) {
        const QString picture = text("p%1.jpg").arg(random(8));
        const QString file = text("f%1.txt").arg(random(8));
        const QString folder = text("d%1").arg(random(4));
        switch (random(14)) {
        case 0:
        case 1:
            writeFile(photos + picture, pictures[random(2)]);
            break;
        case 2:
            QFile::remove(photos + picture);
            break;
        case 3:
            QDir().mkpath(photos + folder);
            QFile::rename(photos + picture, photos + folder + QLatin1Char('/') + picture);
            break;
        case 4:
            QDir().rename(photos + folder, photos + text("renamed%1").arg(step));
            break;
        case 5:
            QFile::copy(photos + text("first.jpg"), photos + picture);
            break;
        case 6:
            // Saved next to it and moved into place.
            writeFile(photos + text(".saving"), pictures[random(2)]);
            renameOver(photos + text(".saving"), photos + picture);
            break;
        case 7:
        case 8:
            writeFile(files + file, QByteArray::number(step));
            break;
        case 9:
            QFile::remove(files + file);
            break;
        case 10:
            writeFile(files + folder + text("/deep/") + file, QByteArray::number(step));
            break;
        case 11:
            QDir().rename(files + folder, files + text("renamed%1").arg(step));
            break;
        case 12:
            QDir(files + folder).removeRecursively();
            break;
        case 13:
            QFile::rename(files + file, files + text("g%1.txt").arg(step));
            break;
        }
        mProcess->waitForReadyRead(random(50));
        read();
        QCOMPARE(mProcess->state(), QProcess::Running);
    }

    const QMap<QString, QByteArray> expected = visibleContentOf(mProject + text("/static"));
    QVERIFY(becomes([&] { return visibleContentOf(mSite + text("/static")) == expected; }));
    const QStringList names = visibleFilesIn(mProject + text("/photos"));
    const auto picturesFollow = [&] {
        const QByteArray shown = page();
        if (visibleFilesIn(mSite + text("/images")) != names
            || visibleFilesIn(mSite + text("/thumbs")) != names)
            return false;
        return std::all_of(names.begin(), names.end(),
                           [&](const QString& name) {
                               return shown.contains("images/" + name.toUtf8() + '"')
                                   && QImage(mSite + text("/images/") + name).size()
                                   == QImage(photos + name).size();
                           })
            && shown.count("href=\"images/") == names.size();
    };
    QVERIFY(becomes(picturesFollow));
    QCOMPARE(stop(), stopped);
    QVERIFY(visibleContentOf(mSite + text("/static")) == expected);
    QVERIFY(picturesFollow());

    // As if it had been published from scratch.
    const QString fresh = root() + text("/fresh");
    QCOMPARE(run({mProject, fresh}, mHome).exitCode, allImported);
    QCOMPARE(visibleContentOf(mSite), visibleContentOf(fresh));
}

QTEST_GUILESS_MAIN(tst_ShopPublisherWatch)
#include "tst_ShopPublisherWatch.moc"

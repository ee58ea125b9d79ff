// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The example shop-publisher, killed with SIGKILL at random moments while it publishes and while it
// follows a project: the photographs of the project are untouched, each file of the site is the old
// or the new one, and the next run completes the site and removes temporary files.
//
// ORVAUTILS_KILLS=200 sets the number of kills, divided equally among the three ways, instead of
// ten each; ORVAUTILS_KILLS_SEED=N repeats the moments of a run.

#include "KillMoments.h"
#include "PublisherTest.h"

#include <QElapsedTimer>
#include <QtTest>

#include <cstdio>

namespace {

using Files = QMap<QString, QByteArray>; // content by path

const int ways = 3;

/// Far longer than anything takes, even under a sanitizer on a busy machine.
const int patience = 120000;

/// A project in one of two versions, which differ in every file that the site shows.
Files projectFiles(bool second)
{
    const auto picture = [second](int width, int height, const char* format) {
        const QImage image = second ? corners(height, width).mirrored() : corners(width, height);
        return encoded(image, format);
    };
    const QByteArray svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"10\">"
        + QByteArray(second ? 90000 : 70000, ' ') + "</svg>";
    return {
        {text("photos/a.jpg"), picture(700, 400, "jpg")},
        {text("photos/bowls/b.jpg"), picture(500, 300, "jpg")},
        {text("photos/c.png"), picture(300, 200, "png")},
        {text("photos/d.svg"), svg},
        {text("photos/e.jpg"), picture(640, 480, "jpg")},
        {text("static/shop.jpg"), picture(800, 600, "jpg")},
        {text("static/style.css"), QByteArray(30000, second ? '2' : '1')},
    };
}

/// Replaces the files of the project, each in one step, as a careful program would.
void write(const Files& files, const QString& project)
{
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QString path = project + QLatin1Char('/') + file.key();
        const QString draft = QFileInfo(project).path() + text("/draft");
        writeFile(draft, file.value());
        QDir().mkpath(QFileInfo(path).path());
        if (std::rename(QFile::encodeName(draft).constData(), QFile::encodeName(path).constData())
            != 0)
            qFatal("cannot write %s", qPrintable(path));
    }
}

/// Describes what is wrong with a site after a kill.
QStringList defects(const Files& left, const Files& oldFiles, const Files& newFiles)
{
    QStringList defects;
    for (auto file = left.begin(); file != left.end(); ++file) {
        const QString name = file.key();
        // The working folder, unfinished files in it, and the lock.
        if (name.startsWith(text(".shop-publisher")))
            continue;
        const bool isOld = oldFiles.contains(name) && file.value() == oldFiles.value(name);
        const bool isNew = newFiles.contains(name) && file.value() == newFiles.value(name);
        if (!isOld && !isNew)
            defects.append(text("%1 is neither the old nor the new one").arg(name));
    }
    for (auto file = oldFiles.begin(); file != oldFiles.end(); ++file) {
        if (!left.contains(file.key()))
            defects.append(text("%1 is gone").arg(file.key()));
    }
    return defects;
}

} // namespace

class tst_KillsPublisher : public PublisherTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void firstPublication();
    void laterPublication();
    void watchedProject();
    void cleanupTestCase();

private:
    void killSoon(int longest);
    bool isAsBefore(const Files& oldSite, const Files& newSite, const Files& project);
    bool becomesWhole(const Files& site);

    KillMoments mMoments;
    Files mProjects[2];
    Files mSites[2]; ///< the site that results from each version of the project
    int mDuration = 0; ///< of publishing, in milliseconds
    QProcess mProcess;

    int mKills = 0;
    int mDuringWork = 0;
    int mDefects = 0;
};

void tst_KillsPublisher::init()
{
    PublisherTest::init();
    for (const bool second : {false, true}) {
        mProjects[second] = projectFiles(second);
        write(mProjects[second], mProject);
        QElapsedTimer timer;
        timer.start();
        const Outcome outcome = run({mProject, mSite}, mHome);
        mDuration = int(timer.elapsed());
        QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
        mSites[second] = filesOfSite(mSite);
    }
    // Five pictures in two sizes, the page and the static files, all different.
    QCOMPARE(mSites[0].size(), 13);
    QCOMPARE(mSites[1].keys(), mSites[0].keys());
    const QStringList names = mSites[0].keys();
    for (const QString& name : names)
        QVERIFY2(mSites[0].value(name) != mSites[1].value(name), qPrintable(name));
}

void tst_KillsPublisher::cleanup()
{
    mProcess.kill();
    mProcess.waitForFinished();
    PublisherTest::cleanup();
}

/// Kills the program at a random moment within \a longest milliseconds, if it still runs.
void tst_KillsPublisher::killSoon(int longest)
{
    mMoments.wait(unsigned(longest) * 1000);
    mProcess.kill();
    mProcess.waitForFinished(patience);
    ++mKills;
    const QStringList names =
        QDir(mSite).entryList({text(".shop-publisher-*")}, QDir::Dirs | QDir::Hidden);
    if (mProcess.exitStatus() == QProcess::CrashExit && !names.isEmpty())
        ++mDuringWork;
}

bool tst_KillsPublisher::isAsBefore(const Files& oldSite, const Files& newSite,
                                    const Files& project)
{
    Files left = filesBelow(mProject);
    left.remove(text("lockfile"));
    QStringList found = defects(filesOfSite(mSite), oldSite, newSite);
    if (left != project)
        found.append(text("the project was touched"));
    if (found.isEmpty())
        return true;
    mDefects += int(found.size());
    qWarning("%s", qPrintable(found.join(QLatin1Char('\n'))));
    return false;
}

/// Whatever is left, the next run succeeds and completes the site.
bool tst_KillsPublisher::becomesWhole(const Files& site)
{
    const Outcome outcome = run({mProject, mSite}, mHome);
    if (outcome.exitCode != allImported || !outcome.err.isEmpty()) {
        qWarning("the next run ended with %d: %s", outcome.exitCode, qPrintable(outcome.err));
        return false;
    }
    const QStringList entries =
        QDir(mSite).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    if (entries
        != QStringList(
            {recordName, text("images"), text("index.html"), text("static"), text("thumbs")})) {
        qWarning("in the site: %s", qPrintable(entries.join(QLatin1Char(' '))));
        return false;
    }
    return filesOfSite(mSite) == site && !QFileInfo::exists(mProject + text("/lockfile"));
}

// Publishing to a site that does not exist yet.
void tst_KillsPublisher::firstPublication()
{
    for (int kill = 0; kill < KillMoments::countInEach(ways); ++kill) {
        QVERIFY(QDir(mSite).removeRecursively());
        start(&mProcess);
        killSoon(mDuration);
        QVERIFY2(isAsBefore(Files(), mSites[1], mProjects[1]), qPrintable(QString::number(kill)));
        QVERIFY2(becomesWhole(mSites[1]), qPrintable(QString::number(kill)));
    }
}

// Publishing over the pictures of another version of the project.
void tst_KillsPublisher::laterPublication()
{
    for (int kill = 0; kill < KillMoments::countInEach(ways); ++kill) {
        const int next = kill % 2;
        write(mProjects[next], mProject);
        start(&mProcess);
        killSoon(mDuration);
        QVERIFY2(isAsBefore(mSites[1 - next], mSites[next], mProjects[next]),
                 qPrintable(QString::number(kill)));
        QVERIFY2(becomesWhole(mSites[next]), qPrintable(QString::number(kill)));
    }
}

// Killed while the photographs of a followed project change. The page may show a mixture of old and
// new ones for a while.
void tst_KillsPublisher::watchedProject()
{
    const auto picturesOf = [](const Files& site) {
        Files pictures;
        for (auto file = site.begin(); file != site.end(); ++file) {
            if (file.key().startsWith(text("images/")) || file.key().startsWith(text("thumbs/")))
                pictures.insert(file.key(), file.value());
        }
        return pictures;
    };
    for (int kill = 0; kill < KillMoments::countInEach(ways); ++kill) {
        const int next = kill % 2;
        start(&mProcess, {text("--watch")});
        QByteArray printed;
        while (!printed.contains("Watching ") && mProcess.waitForReadyRead(patience))
            printed += mProcess.readAllStandardOutput();
        QVERIFY2(printed.contains("Watching "), printed.constData());
        write(mProjects[next], mProject);
        killSoon(mDuration + 200); // it waits for a tenth of a second without changes
        QCOMPARE(mProcess.exitStatus(), QProcess::CrashExit);

        Files left = filesOfSite(mSite);
        QVERIFY(readFile(mSite + text("/index.html")).endsWith("</html>\n"));
        Files project = filesBelow(mProject);
        project.remove(text("lockfile"));
        QCOMPARE(project.keys(), mProjects[next].keys());
        QVERIFY(project == mProjects[next]);
        for (const QString& name : {text("static/shop.jpg"), text("static/style.css")}) {
            QVERIFY2(!left.contains(name) || left.value(name) == mSites[0].value(name)
                         || left.value(name) == mSites[1].value(name),
                     qPrintable(name));
        }
        const QStringList found =
            defects(picturesOf(left), picturesOf(mSites[1 - next]), picturesOf(mSites[next]));
        mDefects += int(found.size());
        QVERIFY2(found.isEmpty(), qPrintable(found.join(QLatin1Char('\n'))));
        QVERIFY2(becomesWhole(mSites[next]), qPrintable(QString::number(kill)));
    }
}

void tst_KillsPublisher::cleanupTestCase()
{
    qInfo("kills: %d of the publisher, %d of them at work, seed %u; mixtures: %d", mKills,
          mDuringWork, mMoments.seed(), mDefects);
}

int main(int argc, char** argv)
{
    KillMoments::allowTime();
    QCoreApplication application(argc, argv);
    tst_KillsPublisher test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_KillsPublisher.moc"

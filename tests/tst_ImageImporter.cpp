// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ImageImporter.h"

#include "Columns.h"
#include "ImageUtils.h"
#include "LogCapture.h"
#include "Sandbox.h"
#include "TestPictures.h"

#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

class tst_ImageImporter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void importsAll_data();
    void importsAll();
    void sameAsOneByOne();
    void nothingToDo();
    void addedWhileRunning();
    void secondRun();
    void failuresDoNotStopIt();
    void cancelled();
    void cancelledInTheMiddle();
    void deletedWhileRunning();
    void deletedByReceiver();
    void slowReceiver();
    void largePicturesTakeTurns();
    void receiversRunInItsThread();
    void endsWithTheApplication();

private:
    QString path(const QString& name) const { return (*mSandbox)(name); }
    QString source(int index) const { return path(QStringLiteral("source%1.jpg").arg(index)); }
    QString copy(int index) const { return path(QStringLiteral("copy/%1.jpg").arg(index)); }

    /// Writes \a count pictures and adds them.
    void addPictures(ImageImporter* importer, int count) const;

    QScopedPointer<Sandbox> mSandbox;
};

namespace {

ImageImport small()
{
    ImageImport how;
    how.maxSize = QSize(100, 100);
    return how;
}

/// The indexes of the signals imported(), in order.
QList<int> indexesOf(const QSignalSpy& spy)
{
    QList<int> indexes;
    for (const QList<QVariant>& arguments : spy)
        indexes.append(arguments.at(0).toInt());
    return indexes;
}

int statusOf(const QSignalSpy& spy, int index)
{
    for (const QList<QVariant>& arguments : spy) {
        if (arguments.at(0).toInt() == index)
            return int(arguments.at(1).value<ImageImportResult>().status);
    }
    return -1;
}

QList<int> countTo(int count)
{
    QList<int> numbers;
    for (int i = 0; i < count; ++i)
        numbers.append(i);
    return numbers;
}

} // namespace

void tst_ImageImporter::init()
{
    mSandbox.reset(new Sandbox);
}

void tst_ImageImporter::cleanup()
{
    mSandbox.reset();
}

void tst_ImageImporter::addPictures(ImageImporter* importer, int count) const
{
    for (int i = 0; i < count; ++i) {
        writeFile(source(i), jpeg(picture(400 + 8 * i, 300), 6));
        QCOMPARE(importer->add(source(i), copy(i), small()), i);
    }
    QCOMPARE(importer->count(), count);
}

void tst_ImageImporter::importsAll_data()
{
    const auto row = columns<int>("threads");
    row("as many as the processor has", 0);
    row("one", 1);
    row("two", 2);
    row("more than pictures", 50);
    row("negative", -3);
}

void tst_ImageImporter::importsAll()
{
    QFETCH(int, threads);
    ImageImporter importer;
    QSignalSpy imported(&importer, &ImageImporter::imported);
    QSignalSpy progress(&importer, &ImageImporter::progress);
    QSignalSpy finished(&importer, &ImageImporter::finished);
    const int count = 12;
    addPictures(&importer, count);
    QVERIFY(!importer.isRunning());
    importer.start(threads);
    QVERIFY(importer.isRunning());
    QVERIFY(finished.wait(60000));
    QVERIFY(!importer.isRunning());
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().first().toBool(), true);

    QList<int> indexes = indexesOf(imported);
    if (threads == 1)
        QCOMPARE(indexes, countTo(count));
    std::sort(indexes.begin(), indexes.end());
    QCOMPARE(indexes, countTo(count));
    QCOMPARE(progress.size(), count);
    for (int i = 0; i < count; ++i) {
        QCOMPARE(progress.at(i), QList<QVariant>({i + 1, count}));
        QCOMPARE(statusOf(imported, i), int(ImageImportResult::Imported));
        QCOMPARE(QImage(copy(i)).height(), 100);
    }
}

void tst_ImageImporter::sameAsOneByOne()
{
    ImageImporter importer;
    QSignalSpy finished(&importer, &ImageImporter::finished);
    addPictures(&importer, 6);
    importer.start();
    QVERIFY(finished.wait(60000));
    for (int i = 0; i < 6; ++i) {
        QVERIFY(ImageUtils::importImage(source(i), path(QStringLiteral("one.jpg")), small()));
        QCOMPARE(contentOf(copy(i)), contentOf(path(QStringLiteral("one.jpg"))));
    }
}

void tst_ImageImporter::nothingToDo()
{
    ImageImporter importer;
    QSignalSpy imported(&importer, &ImageImporter::imported);
    QSignalSpy finished(&importer, &ImageImporter::finished);
    importer.cancel(); // not running
    importer.start();
    QCOMPARE(finished.size(), 0);
    QVERIFY(finished.wait());
    QCOMPARE(finished.first().first().toBool(), true);
    QCOMPARE(imported.size(), 0);
}

void tst_ImageImporter::addedWhileRunning()
{
    ImageImporter importer;
    QSignalSpy progress(&importer, &ImageImporter::progress);
    QSignalSpy finished(&importer, &ImageImporter::finished);
    addPictures(&importer, 2);
    bool isAdded = false;
    connect(&importer, &ImageImporter::imported, this, [&] {
        if (!isAdded)
            importer.add(source(0), path(QStringLiteral("later.jpg")), small());
        isAdded = true;
    });
    importer.start(1);
    importer.start(1); // already running
    QVERIFY(finished.wait(60000));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(progress.last(), QList<QVariant>({3, 3}));
    QVERIFY(QFile::exists(path(QStringLiteral("later.jpg"))));
}

void tst_ImageImporter::secondRun()
{
    ImageImporter importer;
    QSignalSpy imported(&importer, &ImageImporter::imported);
    QSignalSpy progress(&importer, &ImageImporter::progress);
    QSignalSpy finished(&importer, &ImageImporter::finished);
    addPictures(&importer, 2);
    importer.start();
    QVERIFY(finished.wait(60000));
    QCOMPARE(importer.add(source(0), path(QStringLiteral("later.jpg")), small()), 2);
    QCoreApplication::processEvents();
    QCOMPARE(imported.size(), 2);
    importer.start();
    QVERIFY(finished.wait(60000));
    QCOMPARE(imported.last().first().toInt(), 2);
    QCOMPARE(progress.last(), QList<QVariant>({1, 1}));
}

void tst_ImageImporter::failuresDoNotStopIt()
{
    ImageImporter importer;
    QSignalSpy imported(&importer, &ImageImporter::imported);
    QSignalSpy finished(&importer, &ImageImporter::finished);
    addPictures(&importer, 2);
    writeFile(path(QStringLiteral("text.jpg")), "no picture");
    importer.add(path(QStringLiteral("none.jpg")), copy(2), small());
    importer.add(path(QStringLiteral("text.jpg")), copy(3), small());
    importer.add(source(0), copy(4), small());
    LogCapture log;
    importer.start(2);
    QVERIFY(finished.wait(60000));
    QCOMPARE(finished.first().first().toBool(), true);
    QCOMPARE(statusOf(imported, 2), int(ImageImportResult::NotFound));
    QCOMPARE(statusOf(imported, 3), int(ImageImportResult::NotAnImage));
    QCOMPARE(statusOf(imported, 4), int(ImageImportResult::Imported));
    QVERIFY(!QFile::exists(copy(2)));
    QCOMPARE(log.lines().filter(QStringLiteral("ImageUtils importImage")).size(), 2);
}

void tst_ImageImporter::cancelled()
{
    ImageImporter importer;
    QSignalSpy imported(&importer, &ImageImporter::imported);
    QSignalSpy progress(&importer, &ImageImporter::progress);
    QSignalSpy finished(&importer, &ImageImporter::finished);
    const int count = 30;
    addPictures(&importer, count);
    importer.start(2);
    importer.cancel();
    QVERIFY(importer.isRunning());
    QVERIFY(finished.wait(60000));
    QCOMPARE(finished.first().first().toBool(), false);
    QList<int> indexes = indexesOf(imported);
    std::sort(indexes.begin(), indexes.end());
    QCOMPARE(indexes, countTo(count));
    QCOMPARE(progress.last(), QList<QVariant>({count, count}));
    QCOMPARE(statusOf(imported, count - 1), int(ImageImportResult::Cancelled));
    for (int i = 0; i < count; ++i)
        QCOMPARE(QFile::exists(copy(i)), statusOf(imported, i) == int(ImageImportResult::Imported));
}

void tst_ImageImporter::cancelledInTheMiddle()
{
    ImageImporter importer;
    QSignalSpy imported(&importer, &ImageImporter::imported);
    QSignalSpy finished(&importer, &ImageImporter::finished);
    const int count = 200;
    addPictures(&importer, count);
    connect(&importer, &ImageImporter::progress, &importer, [&](int done) {
        if (done == 3)
            importer.cancel();
    });
    importer.start(2);
    QVERIFY(finished.wait(60000));
    QCOMPARE(finished.first().first().toBool(), false);
    QCOMPARE(imported.size(), count);
    // The one that was reported first was complete before; which one it is depends on the threads.
    const auto first = imported.first().at(1).value<ImageImportResult>();
    QCOMPARE(int(first.status), int(ImageImportResult::Imported));
    QVERIFY(first.error.isEmpty());

    // Cancelled files can be added again.
    QCOMPARE(importer.add(source(5), path(QStringLiteral("again.jpg")), small()), count);
    importer.start();
    QVERIFY(finished.wait(60000));
    QCOMPARE(finished.last().first().toBool(), true);
    QCOMPARE(statusOf(imported, count), int(ImageImportResult::Imported));
}

void tst_ImageImporter::deletedWhileRunning()
{
    LogCapture log;
    for (int round = 0; round < 5; ++round) {
        auto importer = std::make_unique<ImageImporter>();
        addPictures(importer.get(), 20);
        importer->start(3);
        QSignalSpy progress(importer.get(), &ImageImporter::progress);
        if (round > 0)
            QTRY_VERIFY(progress.size() >= round);
        importer.reset();
    }
    // No thread was terminated, and no partial file is left.
    QCOMPARE(log.lines(), QStringList());
    for (const QString& name :
         QDir(path(QStringLiteral("copy"))).entryList(QDir::Files | QDir::Hidden))
        QVERIFY2(QImage(path(QStringLiteral("copy/") + name)).height() == 100, qPrintable(name));
}

void tst_ImageImporter::deletedByReceiver()
{
    for (const bool early : {true, false}) {
        QPointer<ImageImporter> importer = new ImageImporter;
        addPictures(importer, 5);
        if (early)
            connect(importer, &ImageImporter::imported, this, [importer] { delete importer; });
        else
            connect(importer, &ImageImporter::finished, this, [importer] { delete importer; });
        importer->start(2);
        QTRY_VERIFY_WITH_TIMEOUT(!importer, 60000);
    }
}

void tst_ImageImporter::slowReceiver()
{
    // A receiver that runs an event loop gets the other results meanwhile, each once.
    ImageImporter importer;
    QSignalSpy imported(&importer, &ImageImporter::imported);
    QSignalSpy progress(&importer, &ImageImporter::progress);
    QSignalSpy finished(&importer, &ImageImporter::finished);
    addPictures(&importer, 8);
    bool isFirst = true;
    connect(&importer, &ImageImporter::imported, this, [&] {
        const bool waits = isFirst;
        isFirst = false;
        if (waits)
            QTRY_COMPARE(imported.size(), 8);
    });
    importer.start(2);
    // Not by wait(): on Windows its loop sleeps until the next event when a loop inside of it was
    // the one to receive the signal.
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, 60000);
    QList<int> indexes = indexesOf(imported);
    std::sort(indexes.begin(), indexes.end());
    QCOMPARE(indexes, countTo(8));
    // Progress does not go back when the first receiver returns.
    QCOMPARE(progress.last(), QList<QVariant>({8, 8}));
}

void tst_ImageImporter::largePicturesTakeTurns()
{
    // Each import needs more memory than all together may use: they would wait for each other
    // forever if a single one were not allowed.
    ImageImporter importer;
    QSignalSpy imported(&importer, &ImageImporter::imported);
    QSignalSpy finished(&importer, &ImageImporter::finished);
    QImage large(6000, 4500, QImage::Format_RGB32);
    large.fill(Qt::darkGreen);
    writeFile(path(QStringLiteral("large.png")), encoded(large, "png"));
    for (int i = 0; i < 4; ++i)
        importer.add(path(QStringLiteral("large.png")), path(QStringLiteral("%1.png").arg(i)),
                     small());
    importer.start(4);
    QVERIFY(finished.wait(120000));
    for (int i = 0; i < 4; ++i)
        QCOMPARE(statusOf(imported, i), int(ImageImportResult::Imported));
}

void tst_ImageImporter::receiversRunInItsThread()
{
    ImageImporter importer;
    QSignalSpy finished(&importer, &ImageImporter::finished);
    addPictures(&importer, 4);
    QList<QThread*> threads;
    const auto note = [&] { threads.append(QThread::currentThread()); };
    connect(&importer, &ImageImporter::imported, note);
    connect(&importer, &ImageImporter::progress, note);
    connect(&importer, &ImageImporter::finished, note);
    importer.start(2);
    QVERIFY(finished.wait(60000));
    QCOMPARE(threads.size(), 9);
    QCOMPARE(threads.count(QThread::currentThread()), 9);
}

void tst_ImageImporter::endsWithTheApplication()
{
    ImageImporter importer;
    const int count = 40;
    addPictures(&importer, count);
    importer.start(2);
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    QCOMPARE(QCoreApplication::exec(), 0);
    // Imports that had begun are complete, and no thread continues.
    QList<int> imported;
    for (int i = 0; i < count; ++i) {
        if (QFile::exists(copy(i))) {
            imported.append(i);
            QCOMPARE(QImage(copy(i)).height(), 100);
        }
    }
    importer.cancel();
    QCoreApplication::processEvents();
    for (int i = 0; i < count; ++i)
        QCOMPARE(QFile::exists(copy(i)), imported.contains(i));
}

QTEST_GUILESS_MAIN(tst_ImageImporter)
#include "tst_ImageImporter.moc"

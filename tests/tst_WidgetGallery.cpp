// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The example program widget-gallery, run as a process as its users run it: the pictures of its
// pages, at scale one and two, and its answers to wrong usage.

#include "Columns.h"

#include <QDir>
#include <QHash>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const int allWell = 0;
const int failed = 1;
const int badUsage = 2;

/// The pages, one for each topic.
const QStringList pages = {
    QStringLiteral("colours"), QStringLiteral("currencies"), QStringLiteral("fonts"),
    QStringLiteral("keys"),    QStringLiteral("pictures"),   QStringLiteral("shapes"),
    QStringLiteral("windows"), QStringLiteral("work"),
};

struct Outcome
{
    int exitCode = -1;
    QString out;
    QString err;
};

/// Runs the program without a display, with QT_SCALE_FACTOR set to \a scaleFactor unless it is
/// empty.
Outcome run(const QStringList& arguments, const QString& scaleFactor = QString())
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"QT_QPA_PLATFORM", "QT_SCALE_FACTOR", "DISPLAY", "WAYLAND_DISPLAY"})
        environment.remove(QString::fromLatin1(name));
    if (!scaleFactor.isEmpty())
        environment.insert(QStringLiteral("QT_SCALE_FACTOR"), scaleFactor);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(WIDGET_GALLERY), arguments);
    Outcome outcome;
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        outcome.err = process.errorString();
        return outcome;
    }
    if (process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.err = QString::fromUtf8(process.readAllStandardError());
#ifdef Q_OS_WIN
    for (QString* printed : {&outcome.out, &outcome.err})
        printed->replace(QLatin1String("\r\n"), QLatin1String("\n"));
#endif
    return outcome;
}

QStringList filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

QImage pageIn(const QString& folder, const QString& page)
{
    return QImage(folder + QLatin1Char('/') + page + QStringLiteral(".png"));
}

/// The number of colours in \a part of \a image, and the share of the most frequent one.
void countColours(const QImage& image, const QRect& part, int* colours, double* commonest)
{
    QHash<QRgb, int> counts;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            ++counts[image.pixel(x, y)];
    }
    int most = 0;
    for (const int count : counts)
        most = qMax(most, count);
    *colours = int(counts.size());
    *commonest = double(most) / (double(part.width()) * part.height());
}

/// The number of squares of two by two pixels with several colours: none in a picture that was
/// drawn at half the density and enlarged.
int unevenSquares(const QImage& image)
{
    int count = 0;
    for (int y = 0; y + 1 < image.height(); y += 2) {
        for (int x = 0; x + 1 < image.width(); x += 2) {
            const QRgb first = image.pixel(x, y);
            if (image.pixel(x + 1, y) != first || image.pixel(x, y + 1) != first
                || image.pixel(x + 1, y + 1) != first)
                ++count;
        }
    }
    return count;
}

} // namespace

class tst_WidgetGallery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void savesOnePicturePerPage();
    void noPageIsBlank_data();
    void noPageIsBlank();
    void pagesDiffer();
    void scaleDoublesThePixels_data();
    void scaleDoublesThePixels();
    void scaleOptionWinsOverEnvironment();
    void makesMissingFolders();
    void replacesPicturesAndKeepsTheRest();
    void saysWhyPicturesCannotBeSaved_data();
    void saysWhyPicturesCannotBeSaved();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    QTemporaryDir mDir;
    QString mPlain; ///< the pictures at scale 1
    QString mDouble; ///< and at scale 2
    Outcome mPlainOutcome;
};

void tst_WidgetGallery::initTestCase()
{
    QVERIFY(mDir.isValid());
    mPlain = mDir.filePath(QStringLiteral("plain"));
    mDouble = mDir.filePath(QStringLiteral("double"));
    mPlainOutcome = run({QStringLiteral("--screenshot"), mPlain});
    QVERIFY2(mPlainOutcome.exitCode == allWell, qPrintable(mPlainOutcome.err));
    const Outcome outcome = run(
        {QStringLiteral("--screenshot"), mDouble, QStringLiteral("--scale"), QStringLiteral("2")});
    QVERIFY2(outcome.exitCode == allWell, qPrintable(outcome.err));
}

void tst_WidgetGallery::savesOnePicturePerPage()
{
    QStringList expected;
    for (const QString& page : pages)
        expected.append(page + QStringLiteral(".png"));
    QCOMPARE(filesIn(mPlain), expected);
    QCOMPARE(filesIn(mDouble), expected);
    QCOMPARE(mPlainOutcome.out, QStringLiteral("8 pages saved in %1\n").arg(mPlain));

    const QSize size = pageIn(mPlain, pages.first()).size();
    QVERIFY2(size.width() >= 800 && size.height() >= 500, "large enough for a page");
    QVERIFY2(size.width() <= 1600 && size.height() <= 1000, "as a window on a screen");
    for (const QString& page : pages)
        QVERIFY2(pageIn(mPlain, page).size() == size, qPrintable(page));
}

void tst_WidgetGallery::noPageIsBlank_data()
{
    const auto row = columns<QString>("page");
    for (const QString& page : pages)
        row(qPrintable(page), page);
}

void tst_WidgetGallery::noPageIsBlank()
{
    QFETCH(QString, page);
    const QImage image = pageIn(mPlain, page);
    QVERIFY(!image.isNull());
    // The page without the list and the menu: the samples in its left half, the code in its right
    // half.
    const QRect content = image.rect().adjusted(image.width() / 5, 50, 0, 0);
    const QRect left = content.adjusted(0, 0, -content.width() / 2, 0);
    const QRect right = content.adjusted(content.width() / 2, 0, 0, 0);
    for (const QRect& half : {left, right}) {
        int colours = 0;
        double commonest = 1;
        countColours(image, half, &colours, &commonest);
        QVERIFY2(colours >= 50, qPrintable(QString::number(colours)));
        QVERIFY2(commonest < 0.96, qPrintable(QString::number(commonest)));
    }
}

void tst_WidgetGallery::pagesDiffer()
{
    for (int i = 0; i < pages.size(); ++i) {
        for (int j = 0; j < i; ++j)
            QVERIFY2(pageIn(mPlain, pages[i]) != pageIn(mPlain, pages[j]), qPrintable(pages[i]));
    }
}

void tst_WidgetGallery::scaleDoublesThePixels_data()
{
    noPageIsBlank_data();
}

void tst_WidgetGallery::scaleDoublesThePixels()
{
    QFETCH(QString, page);
    const QImage plain = pageIn(mPlain, page);
    const QImage dense = pageIn(mDouble, page);
    QCOMPARE(dense.size(), plain.size() * 2);
    QVERIFY2(unevenSquares(dense) > 5000, "drawn with all pixels, not enlarged");
}

void tst_WidgetGallery::scaleOptionWinsOverEnvironment()
{
    const QSize plain = pageIn(mPlain, pages.first()).size();
    const QString folder = mDir.filePath(QStringLiteral("environment"));
    QCOMPARE(run({QStringLiteral("--screenshot"), folder}, QStringLiteral("2")).exitCode, allWell);
    QCOMPARE(pageIn(folder, pages.first()).size(), plain * 2);
    QCOMPARE(run({QStringLiteral("--screenshot"), folder, QStringLiteral("--scale=1")},
                 QStringLiteral("2"))
                 .exitCode,
             allWell);
    QCOMPARE(pageIn(folder, pages.first()).size(), plain);
}

void tst_WidgetGallery::makesMissingFolders()
{
    const QString folder = mDir.filePath(QStringLiteral("a/b c/d"));
    QCOMPARE(run({QStringLiteral("--screenshot"), folder}).exitCode, allWell);
    QCOMPARE(filesIn(folder).size(), pages.size());
}

void tst_WidgetGallery::replacesPicturesAndKeepsTheRest()
{
    const QString folder = mDir.filePath(QStringLiteral("twice"));
    QVERIFY(QDir().mkpath(folder));
    for (const char* name : {"fonts.png", "notes.txt"}) {
        QFile file(folder + QLatin1Char('/') + QString::fromLatin1(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("old"), qint64(3));
    }
    QCOMPARE(run({QStringLiteral("--screenshot"), folder}).exitCode, allWell);
    QCOMPARE(filesIn(folder).size(), pages.size() + 1);
    QCOMPARE(pageIn(folder, QStringLiteral("fonts")), pageIn(mPlain, QStringLiteral("fonts")));
    QFile notes(folder + QStringLiteral("/notes.txt"));
    QVERIFY(notes.open(QIODevice::ReadOnly));
    QCOMPARE(notes.readAll(), QByteArray("old"));
}

void tst_WidgetGallery::saysWhyPicturesCannotBeSaved_data()
{
    const auto row = columns<QString, QString>("obstacle", "named");
    row("a file in the place of the folder", QString(),
        "widget-gallery: The folder %1 cannot be made.");
    row("a folder in the place of a picture", "fonts.png", "%1/fonts.png cannot be saved: ");
}

void tst_WidgetGallery::saysWhyPicturesCannotBeSaved()
{
    QFETCH(QString, obstacle);
    QFETCH(QString, named);
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("pictures"));
    if (obstacle.isEmpty()) {
        QFile file(folder);
        QVERIFY(file.open(QIODevice::WriteOnly));
    } else {
        QVERIFY(QDir().mkpath(folder + QLatin1Char('/') + obstacle));
    }
    const Outcome outcome = run({QStringLiteral("--screenshot"), folder});
    QCOMPARE(outcome.exitCode, failed);
    QCOMPARE(outcome.out, QString());
    QVERIFY2(outcome.err.contains(named.arg(folder)), qPrintable(outcome.err));
}

void tst_WidgetGallery::refusesWrongUsage_data()
{
    const auto row = columns<QStringList, QString>("arguments", "reason");
    const QString screenshot = QStringLiteral("--screenshot");
    const QString scale = QStringLiteral("--scale");
    const QString folder = mDir.filePath(QStringLiteral("never"));
    const auto noScale = [](const char* text) {
        return QStringLiteral("The scale \"%1\" is not a whole number from 1 to 4.")
            .arg(QString::fromLatin1(text));
    };
    row("unknown option", QStringList{QStringLiteral("--colour")}, "Unknown option 'colour'.");
    row("argument", QStringList{screenshot, folder, QStringLiteral("fonts")},
        "\"fonts\" is no option.");
    row("no folder", QStringList{screenshot}, "Missing value after '--screenshot'.");
    row("empty folder", QStringList{screenshot, QString()}, "The name of the folder is empty.");
    row("no scale", QStringList{screenshot, folder, scale}, "Missing value after '--scale'.");
    for (const char* text : {"0", "5", "-1", "two", "1.5"}) {
        row(text,
            QStringList{screenshot, folder, scale + QLatin1Char('=') + QString::fromLatin1(text)},
            noScale(text));
    }
    row("scale of a window", QStringList{scale, QStringLiteral("9")}, noScale("9"));
}

void tst_WidgetGallery::refusesWrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.exitCode, badUsage);
    QCOMPARE(outcome.out, QString());
    QCOMPARE(
        outcome.err,
        QStringLiteral("widget-gallery: %1\nTry 'widget-gallery --help' for more.\n").arg(reason));
    QVERIFY(!QDir(mDir.filePath(QStringLiteral("never"))).exists());
}

void tst_WidgetGallery::helps()
{
    const Outcome help = run({QStringLiteral("--help")});
    QCOMPARE(help.exitCode, allWell);
    QVERIFY2(help.out.contains(QStringLiteral("--screenshot <FOLDER>")), qPrintable(help.out));
    QVERIFY2(help.out.contains(QStringLiteral("--scale <N>")), qPrintable(help.out));
    const Outcome version = run({QStringLiteral("--version")});
    QCOMPARE(version.exitCode, allWell);
    QCOMPARE(version.out, QStringLiteral("widget-gallery " WIDGET_GALLERY_VERSION "\n"));
}

QTEST_GUILESS_MAIN(tst_WidgetGallery)

#include "tst_WidgetGallery.moc"

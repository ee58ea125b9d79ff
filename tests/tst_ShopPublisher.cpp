// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The example program shop-publisher, run as a process as its users run it: its answers, its
// output, the files that it writes, and above all those that it never changes.

#include "PublisherTest.h"
#include "SystemCalls.h"

#include "Columns.h"

#include <QImage>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <stdlib.h>
#ifndef Q_OS_WIN
#include <sys/ioctl.h>
#endif

namespace {

// Test pictures: four coloured corners.

char nearestColor(QRgb pixel)
{
    const struct
    {
        QColor color;
        char name;
    } known[] = {{red, 'R'}, {green, 'G'}, {yellow, 'Y'}, {blue, 'B'}};
    char best = '?';
    int bestDistance = 90; // of 765: a JPEG changes far less, and another colour differs far more
    for (const auto& candidate : known) {
        const int distance = qAbs(qRed(pixel) - candidate.color.red())
            + qAbs(qGreen(pixel) - candidate.color.green())
            + qAbs(qBlue(pixel) - candidate.color.blue());
        if (distance < bestDistance) {
            bestDistance = distance;
            best = candidate.name;
        }
    }
    return best;
}

/// The colours of the corners, clockwise from the upper left one.
QString cornersOf(const QImage& image, const QRect& part)
{
    const int dx = part.width() / 4;
    const int dy = part.height() / 4;
    const QPoint points[] = {{part.left() + dx, part.top() + dy},
                             {part.right() - dx, part.top() + dy},
                             {part.right() - dx, part.bottom() - dy},
                             {part.left() + dx, part.bottom() - dy}};
    QString names;
    for (const QPoint& point : points)
        names += QLatin1Char(nearestColor(image.pixel(point)));
    return names;
}

QString cornersOf(const QImage& image)
{
    return image.isNull() ? QString() : cornersOf(image, image.rect());
}

QByteArray bigEndian16(int value)
{
    uchar bytes[2];
    qToBigEndian(quint16(value), bytes);
    return QByteArray(reinterpret_cast<const char*>(bytes), 2);
}

/// A JPEG with an EXIF block after its JFIF segment whose only entry is the orientation.
QByteArray jpegWithOrientation(const QImage& image, int orientation)
{
    QByteArray jpeg = encoded(image, "jpg");
    QByteArray exif("Exif\0\0MM\0*\0\0\0\x08\0\1\x01\x12\0\3\0\0\0\1", 24);
    exif += bigEndian16(orientation) + QByteArray(2 + 4, '\0');
    const int jfifEnd = 4 + qFromBigEndian<quint16>(jpeg.constData() + 4);
    jpeg.insert(jfifEnd, "\xff\xe1" + bigEndian16(int(exif.size() + 2)) + exif);
    return jpeg;
}

/// A GIF of two frames of one pixel each.
QByteArray animatedGif()
{
    const QByteArray header = QByteArray::fromHex("474946383961 01000100 800000 ff0000 ffffff");
    const QByteArray frame =
        QByteArray::fromHex("21f904000a000000 2c000000000100010000 02024401 00");
    return header + frame + frame + ';';
}

/// The markers of a JPEG up to its first scan.
QVector<int> markersOf(const QByteArray& jpeg)
{
    QVector<int> markers;
    int at = 2;
    while (at + 4 <= jpeg.size() && uchar(jpeg.at(at)) == 0xff) {
        const int marker = uchar(jpeg.at(at + 1));
        markers.append(marker);
        if (marker == 0xda)
            break;
        at += 2 + qFromBigEndian<quint16>(jpeg.constData() + at + 2);
    }
    return markers;
}

#ifdef Q_OS_WIN
Outcome runOnTerminal(const QStringList&, int)
{
    return {};
}
#else
/// The same with a terminal of \a columns as standard output.
Outcome runOnTerminal(const QStringList& arguments, int columns)
{
    Outcome outcome;
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0)
        return outcome;
    // Kept open here, so that the terminal outlives the program and no output is lost.
    const QByteArray slaveName(::ptsname(master));
    const int slave = ::open(slaveName.constData(), O_RDWR | O_NOCTTY);
    winsize size = {};
    size.ws_col = static_cast<unsigned short>(columns);
    size.ws_row = 24;
    ::ioctl(master, TIOCSWINSZ, &size);
    ::fcntl(master, F_SETFL, O_NONBLOCK);

    QProcess process;
    process.setProcessEnvironment(environmentFor(QString()));
    process.setStandardOutputFile(QString::fromLatin1(slaveName), QIODevice::Append);
    process.start(QStringLiteral(SHOP_PUBLISHER), arguments);
    QByteArray shown;
    const auto drain = [&shown, master] {
        char buffer[4096];
        for (;;) {
            const auto count = ::read(master, buffer, sizeof buffer);
            if (count <= 0)
                return;
            shown.append(buffer, int(count));
        }
    };
    QElapsedTimer clock;
    clock.start();
    while (!process.waitForFinished(20) && process.state() != QProcess::NotRunning
           && clock.elapsed() < 240000)
        drain();
    drain();
    if (process.state() == QProcess::NotRunning && process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    ::close(slave);
    ::close(master);
    outcome.out = QString::fromUtf8(shown);
    outcome.err = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}
#endif

/// The pictures of \a name in SITE as a browser sees them: one line each, "src width height".
QStringList picturesInBrowser(const QString& site, const QString& name = text("index.html"))
{
    // A copy of the page that loads every picture at once, with a script that reports.
    const QByteArray script = R"html(<script>
      window.addEventListener('load', () => {
        const lines = Array.from(document.images, img =>
          img.getAttribute('src') + ' ' + img.naturalWidth + ' ' + img.naturalHeight);
        const report = document.createElement('pre');
        report.textContent = 'BEGIN\n' + lines.join('\n') + '\nEND';
        document.body.append(report);
      });</script></body>)html";
    QByteArray page = readFile(site + QLatin1Char('/') + name);
    page.replace("loading=\"lazy\"", "").replace("</body>", script);
    const QString copy = site + QStringLiteral("/check.html");
    writeFile(copy, page);
    const QString dom = QString::fromUtf8(runChromium(
        {QStringLiteral("--dump-dom"), QUrl::fromLocalFile(copy).toString(QUrl::FullyEncoded)}));
    QFile::remove(copy);
    const int begin = int(dom.indexOf(QLatin1String("<pre>BEGIN\n")));
    const int end = int(dom.indexOf(QLatin1String("\nEND</pre>")));
    if (begin < 0 || end < begin)
        return {QStringLiteral("no report from the browser")};
    const QString report = dom.mid(begin + 11, end - begin - 11);
    return nonEmptyParts(report, QLatin1Char('\n'));
}

} // namespace

class tst_ShopPublisher : public PublisherTest
{
    Q_OBJECT

private Q_SLOTS:
    void helpAndVersion();
    void badUsage_data();
    void badUsage();
    void refusedSites_data();
    void refusedSites();
    void orientations_data();
    void orientations();
    void sizes_data();
    void sizes();
    void publishedJpegsCarryNoMetadata();
    void otherKinds();
    void plainFolder();
    void emptyProject();
    void subfoldersAndHiddenFiles();
    void hostileNames();
    void nameCollisions();
    void failures_data();
    void failures();
    void unreadableSources();
    void undecodableNames();
    void placesThatCannotBeWritten();
    void fullDisk();
    void fullDiskLeavesTheOldSite();
    void check();
    void checkOfAGoodProject();
    void newProject_data();
    void newProject();
    void forPrograms();
    void linksInTheSite();
    void linkedFolderInTheSite();
    void sourceInsideTheSite();
    void secondRun();
    void failedPictureLeavesThePage();
    void pipedOutput();
    void quiet();
    void readerThatGoesAway();
    void terminal_data();
    void terminal();
    void page();
    void browserLoadsEveryPicture();
    void browserShowsPicturesTurnedOnce();
    void sampleShop_data();
    void sampleShop();
    void realPhotographs();

private:
    QString image(const QString& name) const { return mSite + QStringLiteral("/images/") + name; }
    QString thumb(const QString& name) const { return mSite + QStringLiteral("/thumbs/") + name; }
    /// All pages of the contact sheet.
    QString index() const
    {
        QByteArray pages;
        const QStringList names =
            QDir(mSite).entryList({text("index.html"), text("photographs-*.html")});
        for (const QString& name : names)
            pages += readFile(mSite + QLatin1Char('/') + name);
        return QString::fromUtf8(pages);
    }
};

void tst_ShopPublisher::helpAndVersion()
{
    for (const char* option : {"--help", "-h"}) {
        const Outcome outcome = run({QLatin1String(option)});
        QCOMPARE(outcome.exitCode, allImported);
        QCOMPARE(outcome.err, QString());
        for (const char* word :
             {"PROJECT", "SITE", "--quiet", "--watch", "--version", "--json", "check PROJECT",
              "init FOLDER", "Careful: in SITE the program replaces", "is lost",
              "2 bad usage, 130 stopped", "3 the project is open"})
            QVERIFY2(outcome.out.contains(QLatin1String(word)), word);
    }
    for (const char* option : {"--version", "-v"}) {
        const Outcome outcome = run({QLatin1String(option)});
        QCOMPARE(outcome.exitCode, allImported);
        QCOMPARE(outcome.err, QString());
        QCOMPARE(outcome.out, QStringLiteral("shop-publisher " SHOP_PUBLISHER_VERSION "\n"));
    }
}

void tst_ShopPublisher::badUsage_data()
{
    // arguments: @ stands for the test's folder
    const auto row = columns<QStringList, QString>("arguments", "message");
    row("nothing", QStringList(), "Two folders are needed");
    row("one folder", QStringList{text("@/project")}, "Two folders are needed");
    row("three folders", QStringList{text("@/project"), text("@/site"), text("@/more")},
        "Two folders are needed");
    row("check without a folder", QStringList{text("check")},
        "One folder is needed after \"check\"; 0 given");
    row("init with two folders", QStringList{text("init"), text("@/a"), text("@/b")},
        "One folder is needed after \"init\"; 2 given");
    row("check of no folder", QStringList{text("check"), text("@/nowhere")},
        "There is no folder @/nowhere");
    row("init over a file", QStringList{text("init"), text("@/file")},
        "The folder @/file cannot be made");
    row("unknown option", QStringList{text("--fast"), text("@/project"), text("@/site")}, "fast");
    row("value for a switch", QStringList{text("--quiet=1"), text("@/project"), text("@/site")},
        "quiet");
    row("empty project", QStringList{QString(), text("@/site")}, "empty");
    row("empty site", QStringList{text("@/project"), QString()}, "empty");
    row("no such project", QStringList{text("@/nowhere"), text("@/site")},
        "There is no folder @/nowhere");
    row("project is a file", QStringList{text("@/file"), text("@/site")},
        "There is no folder @/file");
    row("site is a file", QStringList{text("@/project"), text("@/file")},
        "SITE is not a folder (@/file)");
    row("site below a file", QStringList{text("@/project"), text("@/file/site")},
        "@/file/site cannot be made");
    row("site is a link that leads nowhere", QStringList{text("@/project"), text("@/nowhere-link")},
        "@/nowhere-link cannot be");
}

void tst_ShopPublisher::badUsage()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const QString root = QFileInfo(mProject).path();
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    writeFile(root + QStringLiteral("/file"), "text");
    QVERIFY(QFile::link(root + QStringLiteral("/nowhere"), root + QStringLiteral("/nowhere-link")));
    const QStringList before = snapshot(root, QStringLiteral("-"));

    const Outcome outcome = run(arguments.replaceInStrings(QStringLiteral("@"), root), mHome);
    QCOMPARE(outcome.exitCode, ::badUsage);
    QCOMPARE(outcome.out, QString());
    QVERIFY2(outcome.err.contains(message.replace(QLatin1Char('@'), root)),
             qPrintable(outcome.err));
    QVERIFY2(outcome.err.contains(QLatin1String("--help")), qPrintable(outcome.err));
    QCOMPARE(snapshot(root, QStringLiteral("-")), before);
}

void tst_ShopPublisher::refusedSites_data()
{
    const auto row = columns<QString, QString>("project", "site");
    row("the project itself", "@/project", "@/project");
    row("the photographs", "@/project", "@/project/photos");
    row("trailing slash", "@/project/", "@/project/photos/");
    row("in the project", "@/project", "@/project/site");
    row("in the photographs", "@/project", "@/project/photos/new/site");
    row("plain folder in the site", "@/project/photos", "@/project");
    row("around the project", "@/project", "@");
    row("root of all", "@/project", "/");
    row("by way of ..", "@/project", "@/home/../project/photos");
    row("by way of a .. that does not exist", "@/project", "@/home/new/../../project/site");
    row("site is a link to the photographs", "@/project", "@/to-photos");
    row("site lies behind a link", "@/project", "@/to-photos/new");
    row("project is a link into the site", "@/to-project", "@");
    row("project is a link, site is real", "@/to-project", "@/project/site");
    row("photos is a link to the site", "@/linked", "@/elsewhere");
    row("photos is a link into the site", "@/linked", "@/elsewhere/..");
    row("photos is a link, the site lies in it", "@/linked", "@/elsewhere/site");
}

void tst_ShopPublisher::refusedSites()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, project);
    QFETCH(QString, site);
    const QString root = QFileInfo(mProject).path();
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    writeFile(root + QStringLiteral("/elsewhere/b.jpg"), encoded(corners(40, 30), "jpg"));
    QVERIFY(QDir().mkpath(root + QStringLiteral("/linked")));
    QVERIFY(
        QFile::link(root + QStringLiteral("/elsewhere"), root + QStringLiteral("/linked/photos")));
    QVERIFY(QFile::link(mProject, root + QStringLiteral("/to-project")));
    QVERIFY(QFile::link(mProject + QStringLiteral("/photos"), root + QStringLiteral("/to-photos")));
    const QStringList before = snapshot(root, QStringLiteral("-"));

    const Outcome outcome =
        run({project.replace(QLatin1Char('@'), root), site.replace(QLatin1Char('@'), root)}, mHome);
    QCOMPARE(outcome.exitCode, ::badUsage);
    QCOMPARE(outcome.out, QString());
    QVERIFY2(QRegularExpression(QStringLiteral("SITE (lies in|contains) the"))
                 .match(outcome.err)
                 .hasMatch(),
             qPrintable(outcome.err));
    QCOMPARE(snapshot(root, QStringLiteral("-")), before);
}

void tst_ShopPublisher::orientations_data()
{
    // The corners clockwise from the upper left one, stored as red, green, yellow, blue.
    const auto row = columns<int, QString, bool>("orientation", "expected", "sidesSwapped");
    row("1", 1, "RGYB", false);
    row("2", 2, "GRBY", false);
    row("3", 3, "YBRG", false);
    row("4", 4, "BYGR", false);
    row("5", 5, "RBYG", true);
    row("6", 6, "BRGY", true);
    row("7", 7, "YGRB", true);
    row("8", 8, "GYBR", true);
    row("no such orientation", 9, "RGYB", false);
}

void tst_ShopPublisher::orientations()
{
    QFETCH(int, orientation);
    QFETCH(QString, expected);
    QFETCH(bool, sidesSwapped);
    writeFile(photo("large.jpg"), jpegWithOrientation(corners(2000, 1000), orientation));
    writeFile(photo("small.jpg"), jpegWithOrientation(corners(120, 80), orientation));
    const Outcome outcome = publish();
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, allImported);

    const auto size = [sidesSwapped](int width, int height) {
        return sidesSwapped ? QSize(height, width) : QSize(width, height);
    };
    const struct
    {
        QString path;
        QSize size;
    } made[] = {{image(text("large.jpg")), size(1600, 800)},
                {thumb(text("large.jpg")), size(640, 320)},
                {image(text("small.jpg")), size(120, 80)},
                {thumb(text("small.jpg")), size(120, 80)}};
    for (const auto& file : made) {
        const QImage result(file.path);
        QCOMPARE(result.size(), file.size);
        QCOMPARE(cornersOf(result), expected);
    }
}

void tst_ShopPublisher::sizes_data()
{
    const auto row = columns<QSize, QSize, QSize, QSize>("source", "image", "thumb", "shown");
    row("fits both", QSize(320, 200), QSize(320, 200), QSize(320, 200), QSize(320, 200));
    row("twice the small limit", QSize(640, 640), QSize(640, 640), QSize(640, 640),
        QSize(320, 320));
    row("just within", QSize(1600, 1600), QSize(1600, 1600), QSize(640, 640), QSize(320, 320));
    row("wide", QSize(3200, 800), QSize(1600, 400), QSize(640, 160), QSize(320, 80));
    row("tall", QSize(400, 3200), QSize(200, 1600), QSize(80, 640), QSize(40, 320));
}

void tst_ShopPublisher::sizes()
{
    QFETCH(QSize, source);
    writeFile(photo("a.jpg"), encoded(corners(source.width(), source.height()), "jpg"));
    QCOMPARE(publish().exitCode, allImported);
    QTEST(QImageReader(image(text("a.jpg"))).size(), "image");
    QTEST(QImageReader(thumb(text("a.jpg"))).size(), "thumb");
    QFETCH(QSize, shown);
    QVERIFY(index().contains(
        QStringLiteral("width=\"%1\" height=\"%2\"").arg(shown.width()).arg(shown.height())));
}

void tst_ShopPublisher::publishedJpegsCarryNoMetadata()
{
    writeFile(photo("large.jpg"), jpegWithOrientation(corners(2000, 1000), 5));
    writeFile(photo("small.jpg"), jpegWithOrientation(corners(120, 80), 2));
    QVERIFY(markersOf(readFile(photo("small.jpg"))).contains(0xe1));
    QCOMPARE(publish().exitCode, allImported);
    for (const char* name : {"large.jpg", "small.jpg"}) {
        for (const QString& path : {image(text(name)), thumb(text(name))}) {
            const QVector<int> markers = markersOf(readFile(path));
            QVERIFY2(!markers.contains(0xe1), qPrintable(path)); // no EXIF
            QVERIFY2(markers.contains(0xc2), qPrintable(path)); // progressive
            QVERIFY2(!markers.contains(0xc0), qPrintable(path));
        }
    }
}

void tst_ShopPublisher::otherKinds()
{
    SKIP_ON_WINDOWS("Qt is made there without its plugins for SVG, TIFF and WebP");
    QImage cutOut(700, 350, QImage::Format_ARGB32);
    cutOut.fill(Qt::transparent);
    {
        QPainter painter(&cutOut);
        painter.fillRect(350, 0, 350, 350, red);
    }
    writeFile(photo("cut.PNG"), encoded(cutOut, "png"));
    const QByteArray gif = animatedGif();
    writeFile(photo("moving.Gif"), gif);
    const QByteArray svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 8 4\">"
                           "<rect width=\"8\" height=\"4\" fill=\"red\"/></svg>";
    writeFile(photo("sign.SVG"), svg);
    writeFile(photo("photo.JPEG"), encoded(corners(40, 30), "jpg"));
    writeFile(photo("notes.txt"), "not a picture");
    writeFile(photo("film.NEF"), "not for the web");
    writeFile(photo("phone.heic"), "not for the web");
    writeFile(photo("scan.tif"), encoded(corners(40, 30), "tif"));
    writeFile(photo("new.webp"), encoded(corners(40, 30), "webp"));

    const Outcome outcome = publish();
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, allImported);
    QVERIFY2(
        outcome.out.contains(text("Not published, because of their kind: film.NEF, phone.heic\n")),
        qPrintable(outcome.out));
    const QStringList names{text("cut.PNG"),    text("moving.Gif"), text("new.webp"),
                            text("photo.JPEG"), text("scan.jpg"),   text("sign.SVG")};
    QCOMPARE(QImageReader(image(text("scan.jpg"))).format(), QByteArray("jpeg"));
    QCOMPARE(cornersOf(QImage(thumb(text("scan.jpg")))), text("RGYB"));
    QCOMPARE(filesIn(mSite + QStringLiteral("/images")), names);
    QCOMPARE(filesIn(mSite + QStringLiteral("/thumbs")), names);

    for (const QString& path : {image(names.at(0)), thumb(names.at(0))}) {
        QCOMPARE(QImageReader(path).format(), QByteArray("png"));
        const QImage result(path);
        QCOMPARE(qAlpha(result.pixel(10, 10)), 0);
        QCOMPARE(nearestColor(result.pixel(result.width() - 10, 10)), 'R');
    }
    QCOMPARE(QImageReader(thumb(names.at(0))).size(), QSize(640, 320));
    QCOMPARE(readFile(image(names.at(1))), gif);
    QCOMPARE(readFile(thumb(names.at(1))), gif);
    QCOMPARE(readFile(image(names.last())), svg);
    QCOMPARE(readFile(thumb(names.last())), svg);
    // A drawing fills the frame.
    QVERIFY(index().contains(QLatin1String("alt=\"sign\" width=\"320\" height=\"160\"")));
}

void tst_ShopPublisher::plainFolder()
{
    QVERIFY(QDir(mProject).removeRecursively());
    writeFile(mProject + QStringLiteral("/a.jpg"), encoded(corners(40, 30), "jpg"));
    // A file of that name does not make it a project with a folder of photographs.
    writeFile(mProject + QStringLiteral("/photos"), "text");
    QCOMPARE(run({mProject + QStringLiteral("///"), mSite + QStringLiteral("/")}).exitCode,
             allImported);
    QCOMPARE(filesIn(mSite),
             QStringList({text("images/a.jpg"), text("index.html"), text("thumbs/a.jpg")}));
}

void tst_ShopPublisher::emptyProject()
{
    Outcome outcome = publish();
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.contains(text("there is no photograph, so nothing was published\n")),
             qPrintable(outcome.err));
    QCOMPARE(filesIn(mSite), QStringList());

    // A good site is kept if the photographs are missing.
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    QCOMPARE(publish().exitCode, allImported);
    const QStringList before = snapshot(mSite, QStringLiteral("-"));
    QVERIFY(QDir().rename(mProject + text("/photos"), root() + text("/away")));
    outcome = publish();
    QCOMPARE(outcome.exitCode, someFailed);
    QCOMPARE(snapshot(mSite, QStringLiteral("-")), before);
}

void tst_ShopPublisher::subfoldersAndHiddenFiles()
{
    const QByteArray picture = encoded(corners(40, 30), "jpg");
    writeFile(photo("z.jpg"), picture);
    writeFile(photo("bowls/a.jpg"), picture);
    writeFile(photo("bowls/deep/deeper/b.jpg"), picture);
    writeFile(photo("like.jpg/c.jpg"), picture);
    writeFile(photo("._z.jpg"), "what some systems leave beside a picture");
    writeFile(photo(".trash/d.jpg"), picture);
    const Outcome outcome = publish();
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, allImported);
    const QStringList expected{text("bowls/a.jpg"), text("bowls/deep/deeper/b.jpg"),
                               text("like.jpg/c.jpg"), text("z.jpg")};
    QCOMPARE(filesIn(mSite + QStringLiteral("/images")), expected);
    QCOMPARE(filesIn(mSite + QStringLiteral("/thumbs")), expected);
    // On the page the pictures of a folder precede those of its sub-folders.
    const QString html = index();
    const int positions[] = {int(html.indexOf(QLatin1String("images/z.jpg"))),
                             int(html.indexOf(QLatin1String("<h2><bdi>bowls</bdi>"))),
                             int(html.indexOf(QLatin1String("images/bowls/a.jpg"))),
                             int(html.indexOf(QLatin1String("<h2><bdi>bowls/deep/deeper</bdi>"))),
                             int(html.indexOf(QLatin1String("images/bowls/deep/deeper/b.jpg"))),
                             int(html.indexOf(QLatin1String("images/like.jpg/c.jpg")))};
    QVERIFY(positions[0] > 0);
    for (int i = 1; i < 6; ++i)
        QVERIFY2(positions[i] > positions[i - 1], qPrintable(QString::number(i)));
}

void tst_ShopPublisher::hostileNames()
{
    SKIP_ON_WINDOWS("names there hold no such characters");
    const QByteArray picture = encoded(corners(40, 30), "jpg");
    const QStringList names{
        text("-rf.jpg"),
        text("100% %41 #1?.jpg"),
        text("<script>alert(1)<\u002fscript>.jpg").replace(QLatin1Char('/'), QLatin1Char('|')),
        text("a\nb\x1b[31m.jpg"),
        text("back\\slash.jpg"),
        text("blanks  and\ttab .jpg"),
        text("c:drive;$(id)`id`.jpg"),
        text("d'été \"œuvre\" & fils.jpg"),
        text("emoji \U0001F600 漢字.jpg"),
        text("file://a.jpg").replace(QLatin1Char('/'), QLatin1Char('-')),
        text("turn\u202Egpj.jpg"),
        QString(240, QLatin1Char('x')) + text(".jpg"),
    };
    for (const QString& name : names)
        writeFile(mProject + QStringLiteral("/photos/folder & #1/") + name, picture);
    writeFile(photo("-.jpg"), picture);

    const Outcome outcome = publish();
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, allImported);
    QStringList expected(text("-.jpg"));
    for (const QString& name : names)
        expected.append(text("folder & #1/") + name);
    expected.sort();
    QCOMPARE(filesIn(mSite + QStringLiteral("/images")), expected);
    QCOMPARE(filesIn(mSite + QStringLiteral("/thumbs")), expected);

    // A name cannot forge lines or control the terminal …
    QCOMPARE(outcome.out.count(QLatin1Char('\n')), expected.size() + 1);
    QVERIFY(!outcome.out.contains(QChar(0x1b)));
    QVERIFY(!outcome.out.contains(QChar(0x202e)));
    QVERIFY(outcome.out.contains(QLatin1String("a\\u000ab\\u001b[31m.jpg")));
    // … or insert markup.
    const QString html = index();
    QVERIFY(!html.contains(QLatin1String("<script")));
    QVERIFY(!html.contains(QChar(0x1b)));
    QVERIFY(html.contains(text("d&#39;été &quot;œuvre&quot; &amp; fils.jpg")));

    if (chromium().isEmpty())
        QSKIP("the page's addresses are judged by Chromium, which is not installed");
    const QStringList seen = picturesInBrowser(mSite);
    QCOMPARE(seen.size(), expected.size());
    for (const QString& line : seen)
        QVERIFY2(line.endsWith(QLatin1String(" 40 30")), qPrintable(line));
}

void tst_ShopPublisher::nameCollisions()
{
    // One file on a system that ignores case or composes accents.
    const struct
    {
        const char* name;
        int width;
    } pictures[] = {{"A.JPG", 10},      {"a.jpg", 20},       {"a-2.jpg", 30}, {"a.png", 40},
                    {"\u00e9.jpg", 50}, {"e\u0301.jpg", 60}, {"b.c.jpg", 70}, {"B.C.jpg", 80}};
    for (const auto& picture : pictures)
        writeFile(
            photo(picture.name),
            encoded(corners(picture.width, 10), QByteArray(picture.name).right(3).constData()));
    if (filesIn(mProject).size() != 8)
        QSKIP("this file system does not tell such names apart");
    const Outcome outcome = publish();
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, allImported);

    const QStringList names = filesIn(mSite + QStringLiteral("/images"));
    QCOMPARE(names.size(), 8);
    QSet<QString> keys;
    QSet<int> widths;
    for (const QString& name : names) {
        keys.insert(name.normalized(QString::NormalizationForm_C).toCaseFolded());
        widths.insert(QImageReader(image(name)).size().width());
        QVERIFY(QFile::exists(thumb(name)));
    }
    QCOMPARE(keys.size(), 8);
    QCOMPARE(widths, QSet<int>({10, 20, 30, 40, 50, 60, 70, 80}));
    QVERIFY(names.contains(text("a-3.jpg"))); // a-2.jpg is a picture of its own
    QCOMPARE(QImageReader(image(text("a-2.jpg"))).size().width(), 30);
}

void tst_ShopPublisher::failures_data()
{
    const auto row = columns<QString, QByteArray, QString>("name", "content", "reason");
    const QByteArray jpeg = encoded(corners(400, 300), "jpg");
    const QByteArray png = encoded(corners(40, 30), "png");
    row("empty", "nothing.jpg", QByteArray(), "is empty");
    row("text", "t.jpg", "hello", "cannot be decoded (");
    row("JPEG cut in its header", "h.jpg", jpeg.left(100), "breaks off before its end");
    row("PNG cut in its header", "h.png", png.left(20), "breaks off before its end");
    row("JPEG cut in its picture", "c.jpg", jpeg.left(jpeg.size() - 600),
        "breaks off before its end");
    row("GIF without a picture", "h.gif", QByteArray("GIF89a\2\0\2\0", 10), "cannot be decoded (");
    row("SVG that is not well-formed", "a.svg",
        "<svg xmlns=\"http://www.w3.org/2000/svg\">\n<g></svg>",
        "is not a well-formed SVG picture (line 2:");
    row("SVG without its namespace", "n.svg", "<svg width=\"8\" height=\"8\"/>",
        "is not an SVG picture");
    row("HTML under the name of an SVG", "p.svg", "<html><body/></html>", "is not an SVG picture");
    row("PNG under the name of an SVG", "i.svg", png, "SVG picture");
#ifndef Q_OS_WIN // for which Qt is made without its plugin for SVG
    row("SVG under the name of a JPEG", "s.jpg",
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"8\" height=\"8\"/>",
        "which does not go with its name");
#endif
    row("a kind that is not for the web", "w.png", encoded(corners(40, 30), "bmp"),
        "holds a picture of the kind bmp");
}

void tst_ShopPublisher::failures()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const QByteArray good = encoded(corners(40, 30), "jpg");
    writeFile(photo("a good one.jpg"), good);
    writeFile(photo("z good one.jpg"), good);
    writeFile(mProject + QStringLiteral("/photos/") + name, content);
    const QStringList before = snapshot(root(), mSite);
    Outcome outcome = publish();
    QCOMPARE(outcome.exitCode, someFailed);

    // Listed with its reason at the end, and on its own line. (libpng writes to the standard error
    // directly, bypassing message handlers, from several threads at a time.)
    if (outcome.err.contains(QLatin1String("libpng ")))
        outcome.err.remove(0, outcome.err.indexOf(QLatin1String("1 failure:\n")));
    QVERIFY2(outcome.err.startsWith(QLatin1String("1 failure:\n  ") + name + QLatin1String(": ")),
             qPrintable(outcome.err));
    QVERIFY2(outcome.err.contains(reason), qPrintable(outcome.err));
    QCOMPARE(outcome.err.count(QLatin1Char('\n')), 2);
    QVERIFY2(outcome.out.contains(name + QLatin1String(": FAILED, ")), qPrintable(outcome.out));
    QVERIFY(outcome.out.contains(QLatin1String("2 of 3 photographs imported")));

    // The others exist, this one does not.
    QCOMPARE(filesIn(mSite),
             QStringList({text("images/a good one.jpg"), text("images/z good one.jpg"),
                          text("index.html"), text("thumbs/a good one.jpg"),
                          text("thumbs/z good one.jpg")}));
    QVERIFY(!index().contains(QLatin1String("\"images/") + name));
    QCOMPARE(snapshot(root(), mSite), before);
}

void tst_ShopPublisher::unreadableSources()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    const QByteArray good = encoded(corners(40, 30), "jpg");
    writeFile(photo("good.jpg"), good);
    writeFile(photo("secret.jpg"), good);
    writeFile(photo("closed/b.jpg"), good);
    QVERIFY(QFile::link(photo("nowhere"), photo("lost.jpg")));
    QVERIFY(QFile::link(mProject, photo("circle")));
    QVERIFY(QFile::link(photo("good.jpg"), photo("linked.jpg")));
    QCOMPARE(::mkfifo(QFile::encodeName(photo("pipe.jpg")).constData(), 0600), 0);
    QVERIFY(QFile::setPermissions(photo("secret.jpg"), QFileDevice::Permissions()));
    QVERIFY(QFile::setPermissions(photo("closed"), QFileDevice::Permissions()));
    // The program, which runs as an ordinary user, needs access and a place to write.
    const QString root = PublisherTest::root();
    QCOMPARE(::chmod(QFile::encodeName(root).constData(), 0755), 0);
    QVERIFY(QDir().mkpath(mSite));
    QCOMPARE(::chmod(QFile::encodeName(mSite).constData(), 0777), 0);
    OrdinaryProcess process;
    const Outcome outcome = run(process, {mProject, mSite}, QString());
    ::chmod(QFile::encodeName(photo("closed")).constData(), 0755);
    QVERIFY2(outcome.exitCode == someFailed, qPrintable(outcome.err));
    QCOMPARE(filesIn(mSite + QStringLiteral("/images")),
             QStringList({text("good.jpg"), text("linked.jpg")}));
    for (const char* line :
         {"5 failures:\n", "  secret.jpg: cannot be opened (Permission denied)\n",
          "  closed/: cannot be read (Permission denied)\n",
          "  lost.jpg: is a link that leads nowhere\n", "  pipe.jpg: is not a file\n",
          "  circle/: is a link to a folder, which is not followed\n"})
        QVERIFY2(outcome.err.contains(text(line)), qPrintable(outcome.err));
}

void tst_ShopPublisher::undecodableNames()
{
    SKIP_ON_WINDOWS("every name is a text");
    writeFile(photo("good.jpg"), encoded(corners(40, 30), "jpg"));
    const QByteArray folder = QFile::encodeName(mProject + QStringLiteral("/photos/"));
    const QByteArray name = folder + "caf\xe9.jpg";
    const int file = ::open(name.constData(), O_WRONLY | O_CREAT, 0644);
    if (file < 0)
        QSKIP("this file system takes UTF-8 names alone");
    ::close(file);
    QCOMPARE(::mkdir((folder + "\xe9t\xe9").constData(), 0755), 0);
    const Outcome outcome = publish();
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.contains(text("caf\ufffd.jpg: has a name that is not valid UTF-8")),
             qPrintable(outcome.err));
    QVERIFY2(outcome.err.contains(text("\ufffdt\ufffd: has a name that is not valid UTF-8")),
             qPrintable(outcome.err));
    QVERIFY(QFile::exists(image(text("good.jpg"))));
    ::unlink(name.constData());
    ::rmdir((folder + "\xe9t\xe9").constData());
}

void tst_ShopPublisher::placesThatCannotBeWritten()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    writeFile(photo("sub/b.jpg"), encoded(corners(40, 30), "jpg"));
    // A folder has the name of a picture, a file that of a folder.
    QVERIFY(QDir().mkpath(image(text("a.jpg"))));
    writeFile(thumb(text("sub")), "file");
    QVERIFY(QDir().mkpath(mSite + QStringLiteral("/index.html")));
    Outcome outcome = publish({text("--force")});
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.startsWith(QLatin1String("3 failures:\n")), qPrintable(outcome.err));
    for (const char* line :
         {"  a.jpg: cannot be written to images/a.jpg (Is a directory)\n",
          "  sub/b.jpg: cannot be written: the folder thumbs/sub cannot be made\n",
          "  index.html: cannot be written to index.html (Is a directory)"})
        QVERIFY2(outcome.err.contains(text(line)), qPrintable(outcome.err));
    QCOMPARE(readFile(thumb(text("sub"))), QByteArray("file"));

    // A site that cannot be written to is a usage error.
    QVERIFY(QDir(mSite).removeRecursively());
    QVERIFY(QDir().mkpath(mSite));
    QCOMPARE(::chmod(QFile::encodeName(root()).constData(), 0755), 0);
    QCOMPARE(::chmod(QFile::encodeName(mSite).constData(), 0555), 0);
    OrdinaryProcess process;
    outcome = run(process, {mProject, mSite}, QString());
    QVERIFY2(outcome.exitCode == ::badUsage, qPrintable(outcome.err));
    QVERIFY2(outcome.err.contains(mSite + QLatin1String(" cannot be written to")),
             qPrintable(outcome.err));
    QCOMPARE(filesIn(mSite), QStringList());
}

void tst_ShopPublisher::fullDisk()
{
    SKIP_ON_WINDOWS("there is no limit of files and their size");
    // Files cannot grow beyond 30 kB, as on a full disk. A noisy picture needs more.
    QImage noise(600, 600, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < noise.height(); ++y) {
        for (int x = 0; x < noise.width(); ++x) {
            state = state * 1664525u + 1013904223u;
            noise.setPixel(x, y, state >> 8);
        }
    }
    writeFile(photo("plain.jpg"), encoded(corners(40, 30), "jpg"));
    QCOMPARE(publish().exitCode, allImported);
    const QStringList before = snapshot(mSite, mSite + QLatin1Char('/') + recordName);
    for (const char* format : {"jpg", "png"})
        writeFile(photo(text("noise.") + QLatin1String(format)), encoded(noise, format));
    writeFile(photo("other.jpg"), encoded(corners(40, 30), "jpg"));
    LimitedProcess process;
    const Outcome outcome = run(process, {mProject, mSite}, mHome);
    QVERIFY2(outcome.exitCode == someFailed, qPrintable(outcome.err));
    // It stops at the first that does not fit, and the old site is unchanged.
    QVERIFY2(outcome.err.startsWith(
                 QLatin1String("1 failure:\n  noise.jpg: cannot be saved in the site, where ")),
             qPrintable(outcome.err));
    QCOMPARE(outcome.err.count(QLatin1Char('\n')), 2);
    QCOMPARE(snapshot(mSite, mSite + QLatin1Char('/') + recordName), before);

    // With more space the next run completes the site.
    QCOMPARE(publish().exitCode, allImported);
    QCOMPARE(filesIn(mSite).size(), 2 * 4 + 1);
}

void tst_ShopPublisher::fullDiskLeavesTheOldSite()
{
    SKIP_ON_WINDOWS("there is no limit of files and their size");
    for (const char* name : {"a.jpg", "gone.jpg", "moved.jpg"})
        writeFile(photo(name), encoded(corners(40, 30), "jpg"));
    writeFile(mProject + text("/static/a.txt"), "old");
    QCOMPARE(publish().exitCode, allImported);
    const QStringList before = snapshot(mSite, mSite + QLatin1Char('/') + recordName);

    // The first of these could be replaced before there is no space for the last.
    writeFile(photo("a.jpg"), encoded(corners(30, 40), "jpg"));
    QVERIFY(QFile::remove(photo("gone.jpg")));
    QVERIFY(QFile::rename(photo("moved.jpg"), photo("z.jpg")));
    writeFile(mProject + text("/static/a.txt"), "new");
    writeFile(mProject + text("/static/large.txt"), QByteArray(100000, 'x'));
    LimitedProcess process;
    Outcome outcome = run(process, {mProject, mSite}, mHome);
    QVERIFY2(outcome.exitCode == someFailed, qPrintable(outcome.err));
    QVERIFY2(outcome.err.startsWith(text("1 failure:\n  static/large.txt: cannot be copied (")),
             qPrintable(outcome.err));
    QStringList left = snapshot(mSite, mSite + QLatin1Char('/') + recordName);
    // New files are kept next to the old ones, for the next run.
    const QStringList added = left.filter(QLatin1String("/z.jpg "));
    QCOMPARE(added.size(), 2);
    for (const QString& line : added)
        left.removeAll(line);
    QCOMPARE(left, before);

    outcome = publish();
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QCOMPARE(filesIn(mSite + text("/images")), QStringList({text("a.jpg"), text("z.jpg")}));
    QCOMPARE(QImageReader(image(text("a.jpg"))).size(), QSize(30, 40));
    QCOMPARE(siteFile(text("static/a.txt")), QByteArray("new"));
}

// check, init and --json

void tst_ShopPublisher::check()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    const QByteArray jpeg = encoded(corners(400, 300), "jpg");
    writeFile(photo("a.jpg"), jpeg);
    writeFile(photo("b.jpg"), jpeg.left(jpeg.size() - 600));
    writeFile(photo("c.jpg"), "broken");
    writeFile(photo("phone.heic"), "not for the web");
    QVERIFY(QFile::link(root() + text("/outside"), mProject + text("/photos/lost.jpg")));
    writeFile(mProject + text("/static/a.txt"), "a");
    QVERIFY(QFile::link(text("/"), mProject + text("/static/root")));
    writeFile(mProject + text("/shop.json"), "{\"name\": 1}");
    const QStringList before = snapshot(root(), text("-"));
    const Outcome outcome = run({text("check"), mProject}, mHome);
    QCOMPARE(outcome.exitCode, someFailed);
    for (const char* line : {"  lost.jpg: is a link that leads nowhere\n",
                             "  static/root/: is a link to a folder", "  shop.json, name: ",
                             "  b.jpg: breaks off before its end", "  c.jpg: cannot be decoded ("})
        QVERIFY2(outcome.err.contains(text(line)), qPrintable(outcome.err));
    QVERIFY2(outcome.out.contains(text("Not published, because of their kind: phone.heic\n")),
             qPrintable(outcome.out));
    QCOMPARE(snapshot(root(), text("-")), before);
}

void tst_ShopPublisher::checkOfAGoodProject()
{
    SKIP_ON_WINDOWS("Qt is made there without its plugins for SVG, TIFF and WebP");
    const QString project = text(SAMPLE_SHOP_DIR);
    const QStringList before = snapshot(project, text("-"));
    const Outcome outcome = run({text("check"), text("--quiet"), project}, mHome);
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QCOMPARE(outcome.out + outcome.err, QString());
    QCOMPARE(snapshot(project, text("-")), before);
    QCOMPARE(filesIn(mHome), QStringList());

    // Without any photograph.
    QCOMPARE(run({text("check"), mProject}, mHome).exitCode, someFailed);
}

void tst_ShopPublisher::newProject_data()
{
    const auto row = columns<QString, QString>("language", "word"); // of the README
    row("English", "en", "Put your photographs into `photos/`");
    row("French", "fr", "Mettez vos photographies dans `photos/`");
    row("German", "de", "Legen Sie Ihre Fotografien in `photos/`");
}

void tst_ShopPublisher::newProject()
{
    QFETCH(QString, language);
    QFETCH(QString, word);
    const QString folder = root() + text("/new/shop");
    const QStringList init{text("--language"), language, text("init"), folder};
    QCOMPARE(run(init, mHome).exitCode, allImported);
    QCOMPARE(filesIn(folder), QStringList({text("README.md"), text("shop.json")}));
    QVERIFY(readFile(folder + text("/README.md")).contains(word.toUtf8()));
    QVERIFY(QFileInfo(folder + text("/photos")).isDir());

    // Nothing is ever replaced.
    const QStringList before = snapshot(root(), text("-"));
    const Outcome again = run(init, mHome);
    QCOMPARE(again.exitCode, ::badUsage);
    QVERIFY2(again.err.contains(folder + text("/README.md")), qPrintable(again.err));
    QCOMPARE(snapshot(root(), text("-")), before);

    // It becomes a shop as soon as its picture exists.
    writeFile(folder + text("/photos/product.jpg"), encoded(corners(40, 30), "jpg"));
    Outcome outcome = run({text("check"), folder}, mHome);
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    outcome = run({folder, mSite}, mHome);
    QVERIFY2(outcome.exitCode == allImported, qPrintable(outcome.err));
    QVERIFY(!siteFile(text("shop-%1.html").arg(language)).isEmpty());
}

void tst_ShopPublisher::forPrograms()
{
    SKIP_ON_WINDOWS("names there hold no such characters");
    writeFile(photo("a\nb.jpg"), encoded(corners(40, 30), "jpg"));
    writeFile(photo("broken.jpg"), "broken");
    writeFile(photo("phone.heic"), "not for the web");
    const auto eventsOf = [](const Outcome& outcome) {
        QMultiMap<QString, QJsonObject> events;
        const QStringList lines = nonEmptyParts(outcome.out, QLatin1Char('\n'));
        for (const QString& line : lines) {
            const QJsonObject object = QJsonDocument::fromJson(line.toUtf8()).object();
            events.insert(object.value(text("event")).toString(), object);
        }
        return events;
    };
    Outcome outcome = publish({text("--json")});
    QCOMPARE(outcome.exitCode, someFailed);
    QCOMPARE(outcome.err, QString());
    auto events = eventsOf(outcome);
    QCOMPARE(
        events.uniqueKeys(),
        QStringList({text("failure"), text("progress"), text("published"), text("unpublished")}));
    QCOMPARE(events.count(text("progress")), 2);
    const auto steps = events.values(text("progress"));
    QVERIFY(std::any_of(steps.begin(), steps.end(), [](const QJsonObject& step) {
        return step
            == QJsonObject{{text("event"), text("progress")},
                           {text("done"), 1},
                           {text("total"), 2},
                           {text("text"), text("a\nb.jpg")}};
    }));
    const QJsonObject failure = events.value(text("failure"));
    QCOMPARE(failure.value(text("kind")).toString(), text("Picture"));
    QCOMPARE(failure.value(text("code")).toString(), text("Undecodable"));
    QVERIFY(failure.value(text("text")).toString().startsWith(text("broken.jpg: ")));
    const QJsonObject published = events.value(text("published"));
    QCOMPARE(published.value(text("imported")).toInt(), 1);
    QCOMPARE(published.value(text("photographs")).toInt(), 2);
    QCOMPARE(published.value(text("page")).toString(), mSite + text("/index.html"));
    QCOMPARE(events.value(text("unpublished")).value(text("names")).toArray().toVariantList(),
             QVariantList{text("phone.heic")});

    outcome = run({text("--json"), mProject, mProject}, mHome);
    QCOMPARE(outcome.exitCode, ::badUsage);
    QCOMPARE(outcome.err, QString());
    QVERIFY(eventsOf(outcome)
                .value(text("refused"))
                .value(text("text"))
                .toString()
                .startsWith(text("SITE ")));
}

void tst_ShopPublisher::linksInTheSite()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    // Whatever has the name of a picture in the site is replaced, never written through.
    const QString root = QFileInfo(mProject).path();
    const QByteArray picture = encoded(corners(2000, 1000), "jpg");
    for (const char* name : {"source.jpg", "outside.jpg", "nowhere.jpg", "hard.jpg"})
        writeFile(photo(name), picture);
    const QByteArray gif = animatedGif();
    writeFile(photo("copied.gif"), gif);
    writeFile(root + QStringLiteral("/outside.txt"), "keep me");
    QVERIFY(QDir().mkpath(mSite + QStringLiteral("/images")));
    QVERIFY(QDir().mkpath(mSite + QStringLiteral("/thumbs")));
    for (const QString& folder : {image(QString()), thumb(QString())}) {
        QVERIFY(QFile::link(photo("source.jpg"), folder + text("source.jpg")));
        QVERIFY(QFile::link(photo("copied.gif"), folder + text("copied.gif")));
        QVERIFY(QFile::link(root + text("/outside.txt"), folder + text("outside.jpg")));
        QVERIFY(QFile::link(root + text("/not there"), folder + text("nowhere.jpg")));
        QCOMPARE(::link(QFile::encodeName(photo("hard.jpg")).constData(),
                        QFile::encodeName(folder + text("hard.jpg")).constData()),
                 0);
    }
    QVERIFY(QFile::link(root + text("/outside.txt"), mSite + text("/index.html")));
    const QStringList before = snapshot(root, mSite);

    const Outcome outcome = publish({text("--force")});
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, allImported);
    QCOMPARE(snapshot(root, mSite), before);
    for (const QString& name : filesIn(mSite))
        QVERIFY2(!QFileInfo(mSite + QLatin1Char('/') + name).isSymLink(), qPrintable(name));
    for (const char* name : {"source.jpg", "outside.jpg", "nowhere.jpg", "hard.jpg"}) {
        QCOMPARE(QImageReader(image(text(name))).size(), QSize(1600, 800));
        QCOMPARE(QImageReader(thumb(text(name))).size(), QSize(640, 320));
    }
    QCOMPARE(readFile(image(text("copied.gif"))), gif);
    QVERIFY(index().startsWith(QLatin1String("<!DOCTYPE html>")));
}

void tst_ShopPublisher::linkedFolderInTheSite()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    const QString root = QFileInfo(mProject).path();
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    writeFile(photo("bowls/b.jpg"), encoded(corners(40, 30), "jpg"));
    QVERIFY(QDir().mkpath(mSite + QStringLiteral("/images")));
    QVERIFY(QDir().mkpath(root + QStringLiteral("/outside")));
    QVERIFY(QFile::link(root + QStringLiteral("/outside"), image(text("bowls"))));
    const QStringList before = snapshot(root, mSite);
    Outcome outcome = publish({text("--force")});
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.contains(text("  bowls/b.jpg: cannot be written: images/bowls is a link")),
             qPrintable(outcome.err));
    QCOMPARE(snapshot(root, mSite), before);
    QVERIFY(QFile::exists(image(text("a.jpg"))));
    QVERIFY(!index().contains(QLatin1String("b.jpg")));

    // The same for the folder of all pictures, even if it leads to the photographs.
    QVERIFY(QDir(mSite).removeRecursively());
    QVERIFY(QDir().mkpath(mSite));
    QVERIFY(QFile::link(mProject + QStringLiteral("/photos"), mSite + QStringLiteral("/images")));
    outcome = publish({text("--force")});
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.startsWith(QLatin1String("2 failures:\n")), qPrintable(outcome.err));
    QCOMPARE(snapshot(root, mSite), before);
}

void tst_ShopPublisher::sourceInsideTheSite()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    // A photograph that is a link to a file of the site could be replaced by its own import.
    writeFile(image(text("a.jpg")), jpegWithOrientation(corners(2000, 1000), 6));
    QVERIFY(QFile::link(image(text("a.jpg")), photo("a.jpg")));
    const QByteArray before = readFile(image(text("a.jpg")));
    const Outcome outcome = publish({text("--force")});
    QCOMPARE(outcome.exitCode, someFailed);
    QVERIFY2(outcome.err.contains(text("  a.jpg: is a link into the site itself")),
             qPrintable(outcome.err));
    QCOMPARE(readFile(image(text("a.jpg"))), before);
}

void tst_ShopPublisher::secondRun()
{
    writeFile(photo("a.jpg"), jpegWithOrientation(corners(2000, 1000), 6));
    writeFile(photo("sub/b.png"), encoded(corners(40, 30), "png"));
    writeFile(photo("broken.jpg"), "broken");
    const QStringList before = snapshot(root(), mSite);
    QCOMPARE(publish().exitCode, someFailed);
    QMap<QString, QByteArray> first;
    for (const QString& name : filesIn(mSite))
        first.insert(name, readFile(mSite + QLatin1Char('/') + name));
    QCOMPARE(first.size(), 5);

    // The program leaves other files in the site alone.
    writeFile(mSite + QStringLiteral("/images/other.txt"), "other");
    QCOMPARE(publish().exitCode, someFailed);
    QMap<QString, QByteArray> second;
    for (const QString& name : filesIn(mSite))
        second.insert(name, readFile(mSite + QLatin1Char('/') + name));
    QCOMPARE(second.take(text("images/other.txt")), QByteArray("other"));
    QCOMPARE(second, first);
    QCOMPARE(snapshot(root(), mSite), before);
}

void tst_ShopPublisher::failedPictureLeavesThePage()
{
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    writeFile(photo("b.jpg"), encoded(corners(40, 30), "jpg"));
    QCOMPARE(publish().exitCode, allImported);
    QVERIFY(index().contains(QLatin1String("images/a.jpg")));
    writeFile(photo("a.jpg"), "broken now");
    QCOMPARE(publish().exitCode, someFailed);
    QVERIFY(!index().contains(QLatin1String("images/a.jpg")));
    QVERIFY(index().contains(QLatin1String("images/b.jpg")));
}

void tst_ShopPublisher::pipedOutput()
{
    for (int i = 1; i <= 10; ++i)
        writeFile(mProject + QStringLiteral("/photos/p%1.jpg").arg(i, 2, 10, QLatin1Char('0')),
                  encoded(corners(40, 30), "jpg"));
    const Outcome outcome = publish();
    QCOMPARE(outcome.exitCode, allImported);
    QCOMPARE(outcome.err, QString());
    QStringList expected;
    for (int i = 1; i <= 10; ++i)
        expected.append(
            QStringLiteral("[%1/10] p%2.jpg").arg(i, 2).arg(i, 2, 10, QLatin1Char('0')));
    expected.append(QStringLiteral("10 of 10 photographs imported: %1/index.html").arg(mSite));
    QCOMPARE(outcome.out, expected.join(QLatin1Char('\n')) + QLatin1Char('\n'));
}

void tst_ShopPublisher::quiet()
{
    SKIP_ON_WINDOWS("there are no pseudo-terminals");
    writeFile(photo("a.jpg"), encoded(corners(40, 30), "jpg"));
    for (const char* option : {"--quiet", "-q"}) {
        const Outcome outcome = run({QLatin1String(option), mProject, mSite});
        QCOMPARE(outcome.exitCode, allImported);
        QCOMPARE(outcome.out + outcome.err, QString());
    }
    const Outcome shown = runOnTerminal({QStringLiteral("--quiet"), mProject, mSite}, 80);
    QCOMPARE(shown.exitCode, allImported);
    QCOMPARE(shown.out + shown.err, QString());

    writeFile(photo("b.jpg"), "broken");
    const Outcome failed = run({mProject, QStringLiteral("--quiet"), mSite});
    QCOMPARE(failed.exitCode, someFailed);
    QCOMPARE(failed.out, QString());
    QVERIFY(failed.err.contains(QLatin1String("  b.jpg: cannot be decoded (")));
}

void tst_ShopPublisher::readerThatGoesAway()
{
    SKIP_ON_WINDOWS("there are no devices in folders");
    for (int i = 0; i < 5; ++i)
        writeFile(mProject + QStringLiteral("/photos/%1.jpg").arg(i),
                  encoded(corners(40, 30), "jpg"));
    QProcess shell;
    shell.setProcessEnvironment(environmentFor(mHome));
    shell.start(QStringLiteral("/bin/sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("(\"$0\" \"$1\" \"$2\"; echo code $? >&2) | true"),
                 QStringLiteral(SHOP_PUBLISHER), mProject, mSite});
    QVERIFY(shell.waitForFinished(60000));
    QCOMPARE(shell.readAllStandardError(), QByteArray("code 0\n"));
    QCOMPARE(filesIn(mSite).size(), 11);
}

void tst_ShopPublisher::terminal_data()
{
    const auto row = columns<int>("columns");
    row("usual", 80);
    row("narrow", 40);
    row("very narrow", 12);
}

void tst_ShopPublisher::terminal()
{
    SKIP_ON_WINDOWS("there are no pseudo-terminals");
    QFETCH(int, columns);
    const QStringList names{text("a.jpg"), text("broken.jpg"), text("漢字漢字漢字漢字漢字漢字.jpg"),
                            QString(200, QLatin1Char('n')) + text(".jpg")};
    for (const QString& name : names)
        writeFile(mProject + QStringLiteral("/photos/") + name, encoded(corners(40, 30), "jpg"));
    writeFile(photo("broken.jpg"), "broken");
    const Outcome outcome = runOnTerminal({mProject, mSite}, columns);
    QCOMPARE(outcome.exitCode, someFailed);

    // The bar is one line that is redrawn; only the result ends with a line break.
    QCOMPARE(outcome.out.count(QLatin1Char('\n')), 1);
    QVERIFY(outcome.out.endsWith(QLatin1String("\r\n")));
    QStringList frames = nonEmptyParts(outcome.out, QLatin1Char('\r'));
    QCOMPARE(frames.takeLast(), QStringLiteral("\n"));
    QCOMPARE(frames.takeLast(),
             QStringLiteral("3 of 4 photographs imported: %1/index.html").arg(mSite));
    QCOMPARE(frames.takeLast(), QString(columns - 1, QLatin1Char(' ')));
    QCOMPARE(frames.size(), 8); // twice per picture
    const QStringList drawn = frames;
    for (const QString& frame : drawn) {
        int width = 0;
        for (const QChar character : frame)
            width += character.unicode() >= 0x2e80 ? 2 : 1;
        QCOMPARE(width, columns - 3); // room for a ^C
    }
    if (columns == 80) {
        const QChar full(0x2588);
        const QChar empty(0x2591);
        QCOMPARE(frames.first().trimmed(), QString(24, empty) + QStringLiteral(" 0/4  a.jpg"));
        QCOMPARE(frames.at(1).trimmed(),
                 QString(6, full) + QString(18, empty) + QStringLiteral(" 1/4  a.jpg"));
        QVERIFY(frames.last().startsWith(QString(24, full) + QStringLiteral(" 4/4  ")));
    }
    QVERIFY2(outcome.err.startsWith(QLatin1String("1 failure:\n  broken.jpg: cannot be decoded (")),
             qPrintable(outcome.err));
}

void tst_ShopPublisher::page()
{
    SKIP_ON_WINDOWS("names there hold no such characters");
    QVERIFY(QDir(mProject).rename(mProject, mProject + QStringLiteral(" & <Söhne>")));
    mProject += QStringLiteral(" & <Söhne>");
    writeFile(photo("blue_bowl-2 \"x\".jpg"), encoded(corners(400, 200), "jpg"));
    QCOMPARE(publish().exitCode, allImported);
    const QString html = index();
    QVERIFY(html.startsWith(QLatin1String("<!DOCTYPE html>\n<html lang=\"en\">")));
    QVERIFY(html.contains(text("<meta charset=\"utf-8\">")));
    QVERIFY(html.contains(text("<title>project &amp; &lt;Söhne&gt;</title>")));
    QVERIFY(html.contains(text("<p>1 photograph</p>")));
    QVERIFY(html.contains(
        text("<a href=\"images/blue_bowl-2%20%22x%22.jpg\">"
             "<img src=\"thumbs/blue_bowl-2%20%22x%22.jpg\" alt=\"blue bowl 2 &quot;x&quot;\" "
             "width=\"320\" height=\"160\" loading=\"lazy\"")));
    QVERIFY(html.contains(text("400 × 200")));
    // Self-contained: no link leads elsewhere.
    QVERIFY(!html.contains(QLatin1String("http")));
    QVERIFY(!html.contains(QLatin1String("url(")));
    QVERIFY(!html.contains(mSite));
}

void tst_ShopPublisher::browserLoadsEveryPicture()
{
    if (chromium().isEmpty())
        QSKIP("Chromium is not installed");
    const QString project = QStringLiteral(SAMPLE_SHOP_DIR);
    QCOMPARE(run({project, mSite}).exitCode, allImported);
    const QStringList seen = picturesInBrowser(mSite, text("photographs.html"));
    QCOMPARE(seen.size(), filesIn(project + QStringLiteral("/photos")).size());
    for (const QString& line : seen) {
        const QStringList parts = line.split(QLatin1Char(' '));
        QVERIFY2(parts.size() == 3 && parts.at(1).toInt() > 0 && parts.at(2).toInt() > 0,
                 qPrintable(line));
        const QString path =
            mSite + QLatin1Char('/') + QUrl::fromPercentEncoding(parts.at(0).toLatin1());
        QCOMPARE(QSize(parts.at(1).toInt(), parts.at(2).toInt()), QImageReader(path).size());
    }
}

void tst_ShopPublisher::browserShowsPicturesTurnedOnce()
{
    if (chromium().isEmpty())
        QSKIP("Chromium is not installed");
    // A browser turns a picture if the file still has an orientation. All eight, large and small,
    // side by side on a page: each must look like the pixels of the file.
    QString html = QStringLiteral("<!DOCTYPE html><body style='margin:0;font-size:0'>");
    for (int orientation = 1; orientation <= 8; ++orientation) {
        writeFile(mProject + QStringLiteral("/photos/%1.jpg").arg(orientation),
                  jpegWithOrientation(corners(120, 80), orientation));
        for (const char* folder : {"images", "thumbs"})
            html += QStringLiteral("<img src='%1/%2.jpg' width=40 height=40>")
                        .arg(QLatin1String(folder))
                        .arg(orientation);
    }
    QCOMPARE(publish().exitCode, allImported);
    const QString wrapper = mSite + QStringLiteral("/wrapper.html");
    writeFile(wrapper, html.toUtf8());
    const QString shot = mHome + QStringLiteral("/shot.png");
    runChromium({QStringLiteral("--window-size=640,200"), QLatin1String("--screenshot=") + shot,
                 QUrl::fromLocalFile(wrapper).toString()});
    const QImage seen(shot);
    QVERIFY(!seen.isNull());
    const char* const expected[] = {"RGYB", "GRBY", "YBRG", "BYGR", "RBYG", "BRGY", "YGRB", "GYBR"};
    for (int i = 0; i < 16; ++i)
        QCOMPARE(cornersOf(seen, QRect(40 * i, 0, 40, 40)), text(expected[i / 2]));
}

void tst_ShopPublisher::sampleShop_data()
{
    const auto row = columns<QString, QSize>("name", "size");
    row("1", "ceramics/Bol bleu d'été.jpg", QSize(960, 720));
    row("2", "ceramics/Plates, mirrored - orientation 2.jpg", QSize(960, 720));
    row("3", "ceramics/Teapot - orientation 3.jpg", QSize(960, 720));
    row("4", "ceramics/Yellow bowl, mirrored - orientation 4.jpg", QSize(960, 720));
    row("5", "light/Candles, mirrored - orientation 5.JPG", QSize(720, 960));
    row("6", "light/Lampe d’atelier - orientation 6.jpg", QSize(720, 960));
    row("7", "Oranges & more, mirrored - orientation 7.jpeg", QSize(960, 720));
    row("8", "ceramics/Vase céladon - orientation 8.jpg", QSize(720, 960));
    row("larger than the limit", "Pears 100% ripe #1.jpg", QSize(1600, 1200));
}

void tst_ShopPublisher::sampleShop()
{
    SKIP_ON_WINDOWS("Qt is made there without its plugins for SVG, TIFF and WebP");
    QFETCH(QString, name);
    QFETCH(QSize, size);
    const QString project = QStringLiteral(SAMPLE_SHOP_DIR);
    for (const QString& file : filesIn(project + QStringLiteral("/photos")))
        QVERIFY2(QFileInfo(project + QStringLiteral("/photos/") + file).size() < 60000,
                 qPrintable(file));
    // One picture of it is enough here: the whole shop is imported above.
    const QString source = project + QStringLiteral("/photos/") + name;
    writeFile(mProject + QStringLiteral("/photos/") + name, readFile(source));
    QCOMPARE(publish().exitCode, allImported);
    const QImage result(image(name));
    QCOMPARE(result.size(), size);
    // Each has a red tag in its upper left corner once it is upright. The tag begins at 24/1000 of
    // the width from both edges and is 110/1000 wide.
    const int x = (24 + 25) * size.width() / 1000;
    const QPoint found[] = {{x, x},
                            {size.width() - 1 - x, x},
                            {x, size.height() - 1 - x},
                            {size.width() - 1 - x, size.height() - 1 - x}};
    for (int i = 0; i < 4; ++i) {
        const QColor color(result.pixel(found[i]));
        const bool isTag = color.red() > 180 && color.green() < 90 && color.blue() < 90;
        QCOMPARE(isTag, i == 0);
    }
}

void tst_ShopPublisher::realPhotographs()
{
    const QString folder = QStringLiteral(ORVAUTILS_PHOTOS_DIR);
    if (!QFileInfo(folder).isDir())
        QSKIP("the folder of real photographs is not there");
    const QString djpeg = QStandardPaths::findExecutable(QStringLiteral("djpeg"));
    if (djpeg.isEmpty())
        QSKIP("djpeg, which judges what can be decoded, is not installed");
    const QJsonObject facts =
        QJsonDocument::fromJson(readFile(folder + QStringLiteral("/expected.json")))
            .object()
            .value(QStringLiteral("files"))
            .toObject();
    const QStringList before = snapshot(folder, QStringLiteral("-"));
    const Outcome outcome = run({text("--accept-truncated"), folder, mSite}, mHome);
    QCOMPARE(snapshot(folder, QStringLiteral("-")), before);

    const QStringList published = filesIn(mSite + QStringLiteral("/images"));
    QCOMPARE(filesIn(mSite + QStringLiteral("/thumbs")), published);
    int undecodable = 0;
    const QStringList names =
        QDir(folder).entryList({QStringLiteral("*.jpg"), QStringLiteral("*.png"),
                                QStringLiteral("*.gif"), QStringLiteral("*.svg")},
                               QDir::Files);
    for (const QString& name : names) {
        bool decodable = true;
        if (name.endsWith(QLatin1String(".jpg"))) {
            // 1 is an error; with a warning the picture was decoded completely.
            QProcess judge;
            judge.setStandardOutputFile(QProcess::nullDevice());
            judge.start(djpeg, {folder + QLatin1Char('/') + name});
            QVERIFY(judge.waitForFinished());
            decodable = judge.exitCode() != 1;
        }
        QVERIFY2(published.contains(name) == decodable, qPrintable(name + outcome.err));
        QCOMPARE(index().contains(QLatin1String("\"images/") + name), decodable);
        QCOMPARE(outcome.err.contains(QLatin1String("  ") + name + QLatin1String(": ")),
                 !decodable);
        undecodable += decodable ? 0 : 1;
        if (!decodable || !name.endsWith(QLatin1String(".jpg")))
            continue;
        const QJsonObject fact = facts.value(name).toObject();
        QSize size(fact.value(QStringLiteral("width")).toInt(),
                   fact.value(QStringLiteral("height")).toInt());
        QVERIFY2(size.isValid(), qPrintable(name));
        if (size.width() > 1600 || size.height() > 1600)
            size.scale(1600, 1600, Qt::KeepAspectRatio);
        const QSize made = QImageReader(image(name)).size();
        // Where files may state their orientation is tested by the library's own tests.
        const QRegularExpressionMatch turned =
            QRegularExpression(QStringLiteral("^orientation-.*-([5-8])\\.jpg$")).match(name);
        if (name.startsWith(QLatin1String("orientation-")))
            QCOMPARE(made, turned.hasMatch() ? size.transposed() : size);
        else
            QVERIFY2(made == size || made == size.transposed(), qPrintable(name));
    }
    QCOMPARE(published.size(), names.size() - undecodable);
    QCOMPARE(outcome.exitCode, undecodable == 0 ? allImported : someFailed);

    if (chromium().isEmpty())
        return;
    for (const QString& line : picturesInBrowser(mSite))
        QVERIFY2(QRegularExpression(QStringLiteral(" [1-9]\\d* [1-9]\\d*$")).match(line).hasMatch(),
                 qPrintable(line));
}

QTEST_MAIN(tst_ShopPublisher)
#include "tst_ShopPublisher.moc"

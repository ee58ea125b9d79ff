// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The example program shop-publisher: how it stops, its languages, and its errors.

#include "PublisherTest.h"
#include "SystemCalls.h"

#include "Columns.h"

#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

const int manyPictures = 60;

/// The lines "[ 3/60] name" of an output.
int stepsIn(const QString& output)
{
    return int(output.count(
        QRegularExpression(QStringLiteral("^\\[ *\\d+/"), QRegularExpression::MultilineOption)));
}

QStringList foldersIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

/// "%1", "%n" … in a text, sorted.
QStringList placesIn(const QString& text)
{
    QStringList places;
    QRegularExpressionMatchIterator it =
        QRegularExpression(QStringLiteral("%[0-9n]")).globalMatch(text);
    while (it.hasNext())
        places.append(it.next().captured());
    places.sort();
    return places;
}

} // namespace

class tst_ShopPublisherFrame : public PublisherTest
{
    Q_OBJECT

private Q_SLOTS:
    void stops_data();
    void stops();
    void stoppedRunKeepsThePage();
    void runAfterAStop();
    void quietStop();
    void ignoredSignal();
    void stopWithFailures();
    void verbose();
    void verboseNames();
    void languages_data();
    void languages();
    void systemLanguage_data();
    void systemLanguage();
    void unknownLanguage();
    void withoutTranslations();
    void translationsAreComplete_data();
    void translationsAreComplete();

private:
    void makeManyPictures();
};

void tst_ShopPublisherFrame::makeManyPictures()
{
    // Together they take seconds: far longer than a signal needs to arrive.
    const QString original = mProject + text("/original.jpg");
    writeFile(original, encoded(corners(2400, 1800), "jpg"));
    for (int i = 1; i <= manyPictures; ++i)
        QVERIFY(QFile::link(original, photo(text("p%1.jpg").arg(i, 2, 10, QLatin1Char('0')))));
}

void tst_ShopPublisherFrame::stops_data()
{
    const auto row =
        columns<int, int>("signal", "afterSteps"); // -1: as soon as the working folder exists
    row("Ctrl-C at the very beginning", SIGINT, -1);
    row("Ctrl-C after the first picture", SIGINT, 1);
    row("Ctrl-C in the middle", SIGINT, 8);
    row("kill", SIGTERM, 2);
    row("closed terminal", SIGHUP, 2);
}

void tst_ShopPublisherFrame::stops()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    QFETCH(int, signal);
    QFETCH(int, afterSteps);
    makeManyPictures();
    const QStringList before = snapshot(root(), mSite);

    QProcess process;
    start(&process);
    QString out;
    const auto ready = [this, &out, afterSteps] {
        return afterSteps < 0 ? !foldersIn(mSite).isEmpty() : stepsIn(out) >= afterSteps;
    };
    while (!ready() && process.state() == QProcess::Running) {
        process.waitForReadyRead(2);
        out += QString::fromUtf8(process.readAllStandardOutput());
    }
    // The process number remains valid until the process is waited for; afterwards it would be 0,
    // which means this very test.
    const auto program = pid_t(process.processId());
    QVERIFY(program > 0);
    ::kill(program, signal);
    QVERIFY(process.waitForFinished(60000));
    out += QString::fromUtf8(process.readAllStandardOutput());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), stopped);
    QCOMPARE(process.readAllStandardError(), QByteArray());

    // Pictures that were begun are complete, in both sizes; nothing else is there, not even hidden.
    const QStringList images = filesIn(mSite + text("/images"));
    QVERIFY(images.size() < manyPictures);
    QVERIFY(images.size() >= afterSteps);
    QCOMPARE(filesIn(mSite + text("/thumbs")), images);
    for (const QString& name : images) {
        QCOMPARE(QImage(mSite + text("/images/") + name).size(), QSize(1600, 1200));
        QCOMPARE(QImage(mSite + text("/thumbs/") + name).size(), QSize(640, 480));
    }
    QCOMPARE(filesIn(mSite).size(), 2 * images.size());
    QCOMPARE(foldersIn(mSite),
             images.isEmpty() ? QStringList() : QStringList({text("images"), text("thumbs")}));
    QCOMPARE(snapshot(root(), mSite), before);

    // The summary reports it.
    QCOMPARE(stepsIn(out), images.size());
    QVERIFY2(out.endsWith(text("Stopped: %1 of %2 photographs imported, no page written\n")
                              .arg(images.size())
                              .arg(manyPictures))
                 || (images.isEmpty() && out.startsWith(text("Stopped: 0 of "))),
             qPrintable(out));
}

void tst_ShopPublisherFrame::stoppedRunKeepsThePage()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    writeFile(photo(text("a.jpg")), encoded(corners(40, 30), "jpg"));
    QCOMPARE(publish().exitCode, allImported);
    const QByteArray page = readFile(mSite + text("/index.html"));
    QVERIFY(page.contains("images/a.jpg"));

    makeManyPictures();
    QCOMPARE(startAndStop().exitCode, stopped);
    QCOMPARE(readFile(mSite + text("/index.html")), page);
}

void tst_ShopPublisherFrame::runAfterAStop()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    const QByteArray jpeg = encoded(corners(2400, 1800), "jpg");
    for (int i = 0; i < 8; ++i)
        writeFile(photo(text("%1.jpg").arg(i)), jpeg);
    QCOMPARE(publish().exitCode, allImported);
    const QMap<QString, QByteArray> expected = filesOfSite(mSite);
    QVERIFY(QDir(mSite).removeRecursively());

    QCOMPARE(startAndStop().exitCode, stopped);
    QCOMPARE(publish().exitCode, allImported);
    QCOMPARE(filesOfSite(mSite), expected);
}

void tst_ShopPublisherFrame::quietStop()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    makeManyPictures();
    QProcess process;
    start(&process, {text("--quiet")});
    while (foldersIn(mSite).size() < 2 && process.state() == QProcess::Running)
        process.waitForFinished(2);
    process.terminate();
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), stopped);
    QCOMPARE(process.readAll() + process.readAllStandardError(), QByteArray());
}

void tst_ShopPublisherFrame::ignoredSignal()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    // As with nohup: the caller of the program decides that it continues.
    const QByteArray jpeg = encoded(corners(2400, 1800), "jpg");
    for (int i = 0; i < 5; ++i)
        writeFile(photo(text("%1.jpg").arg(i)), jpeg);
    QProcess process;
    process.setProcessEnvironment(environmentFor(mHome));
    process.start(text("/bin/sh"),
                  {text("-c"), text("trap '' HUP; exec \"$0\" \"$1\" \"$2\""), text(SHOP_PUBLISHER),
                   mProject, mSite});
    QVERIFY(process.waitForReadyRead(60000));
    const auto program = pid_t(process.processId());
    QVERIFY(program > 0);
    ::kill(program, SIGHUP);
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), allImported);
    QCOMPARE(filesIn(mSite).size(), 11);
}

void tst_ShopPublisherFrame::stopWithFailures()
{
    SKIP_ON_WINDOWS("no signal stops a program there");
    makeManyPictures();
    writeFile(photo(text("a broken one.jpg")), "broken");
    const Outcome outcome = startAndStop();
    QCOMPARE(outcome.exitCode, stopped);
    QVERIFY2(outcome.err.startsWith(text("1 failure:\n  a broken one.jpg: cannot be decoded (")),
             qPrintable(outcome.err));
}

void tst_ShopPublisherFrame::verbose()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    writeFile(photo(text("a.jpg")), "broken");
    writeFile(photo(text("b.jpg")), QByteArray());
    QVERIFY(QFile::link(photo(text("nowhere")), photo(text("lost.jpg"))));
    QVERIFY(QDir().mkpath(mSite + text("/index.html")));
    const Outcome plain = publish({text("--force")});
    QCOMPARE(plain.exitCode, someFailed);
    QCOMPARE(plain.err.count(QLatin1Char('\n')), 5);
    QVERIFY(!plain.err.contains(text("=>")));

    const Outcome outcome = publish({text("--verbose")});
    QCOMPARE(outcome.exitCode, someFailed);
    QCOMPARE(outcome.out, plain.out);
    // This test need not know which lines of the sources appear there.
    QString err = outcome.err;
    err.replace(QRegularExpression(text("\\.cpp:[1-9]\\d*\n")), text(".cpp:LINE\n"));
    err.replace(QRegularExpression(text("=>\\S*/")), text("=>"));
    QCOMPARE(
        err,
        text("4 failures:\n"
             "  lost.jpg: is a link that leads nowhere\n"
             "      Picture:Missing (#2) (lost.jpg: is a link that leads nowhere)\n"
             "      #Call Stack\n"
             "      =>Project.cpp:LINE\n"
             "      =>Project.cpp:LINE\n"
             "      =>Publication.cpp:LINE\n"
             "  a.jpg: cannot be decoded (it is not a JPEG, PNG, GIF, SVG, WebP or TIFF picture)\n"
             "      Picture:Undecodable (#4) (a.jpg: cannot be decoded (it is not a JPEG, PNG, "
             "GIF, SVG, WebP or TIFF picture))\n"
             "      #Call Stack\n"
             "      =>PictureImporter.cpp:LINE\n"
             "      =>PictureImporter.cpp:LINE\n"
             "      =>Publication.cpp:LINE\n"
             "  b.jpg: is empty\n"
             "      Picture:Undecodable (#4) (b.jpg: is empty)\n"
             "      #Call Stack\n"
             "      =>PictureImporter.cpp:LINE\n"
             "      =>PictureImporter.cpp:LINE\n"
             "      =>Publication.cpp:LINE\n"
             "  index.html: cannot be written to index.html (Is a directory)\n"
             "      SitePage:Unwritable (#5) (index.html: cannot be written to index.html (Is a "
             "directory))\n"
             "      #Call Stack\n"
             "      =>Publication.cpp:LINE\n"
             "      =>Publication.cpp:LINE\n"));

    // Nothing failed: no further output.
    QVERIFY(QDir(mProject + text("/photos")).removeRecursively());
    QVERIFY(QDir(mSite).removeRecursively());
    writeFile(photo(text("a.jpg")), encoded(corners(40, 30), "jpg"));
    QCOMPARE(publish({text("--verbose")}).err, QString());
}

void tst_ShopPublisherFrame::verboseNames()
{
    SKIP_ON_WINDOWS("names there hold no such characters");
    // A name cannot forge a step or control the terminal, and a "%2" in it is not replaced.
    writeFile(photo(text("%1 %2\n=>forged.cpp:1\x1b[31m.jpg")), "broken");
    const Outcome outcome = publish({text("--verbose")});
    QCOMPARE(outcome.exitCode, someFailed);
    const QString shown = text("%1 %2\\u000a=>forged.cpp:1\\u001b[31m.jpg");
    QCOMPARE(outcome.err.section(QLatin1Char('\n'), 1, 1).left(2 + shown.size()),
             QLatin1String("  ") + shown);
    QVERIFY(outcome.out.contains(shown));
    QVERIFY(!outcome.err.contains(QChar(0x1b)));
    QCOMPARE(
        outcome.err.count(QRegularExpression(text("^ *=>"), QRegularExpression::MultilineOption)),
        3);
}

void tst_ShopPublisherFrame::languages_data()
{
    // result: of one photograph; @ is the site
    const auto row = columns<QString, QString, QString, QString, QString, QString>(
        "code", "result", "failure", "lang", "count", "refusal");
    row("English", "en", "1 of 1 photograph imported: @/index.html\n",
        "1 failure:\n  b.jpg: is empty\n", "en", "1 photograph<", "Two folders are needed");
    row("French", "fr", "Photographies importées : 1 sur 1. Page : @/index.html\n",
        "1 échec :\n  b.jpg: est vide\n", "fr", "1 photographie<", "Il faut deux dossiers");
    row("German", "de", "1 von 1 Foto importiert: @/index.html\n",
        "1 Fehlschlag:\n  b.jpg: ist leer\n", "de", "1 Foto<", "Es braucht zwei Ordner");
    row("French of Canada", "fr_CA", "Photographies importées : 1 sur 1. Page : @/index.html\n",
        "1 échec :\n  b.jpg: est vide\n", "fr", "1 photographie<", "Il faut deux dossiers");
}

void tst_ShopPublisherFrame::languages()
{
    QFETCH(QString, code);
    QFETCH(QString, result);
    QFETCH(QString, failure);
    QFETCH(QString, lang);
    QFETCH(QString, count);
    QFETCH(QString, refusal);
    const QStringList option{text("--language"), code};
    writeFile(photo(text("a.jpg")), encoded(corners(40, 30), "jpg"));
    Outcome outcome = publish(option);
    QCOMPARE(outcome.exitCode, allImported);
    QCOMPARE(outcome.err, QString());
    QVERIFY2(outcome.out.endsWith(result.replace(QLatin1Char('@'), mSite)),
             qPrintable(outcome.out));
    const QString page = QString::fromUtf8(readFile(mSite + text("/index.html")));
    QVERIFY(page.contains(text("<html lang=\"%1\">").arg(lang)));
    QVERIFY(page.contains(count));

    writeFile(photo(text("b.jpg")), QByteArray());
    QCOMPARE(publish(option).err, failure);

    outcome = run(option + QStringList(mProject), mHome);
    QCOMPARE(outcome.exitCode, badUsage);
    QVERIFY2(outcome.err.contains(refusal), qPrintable(outcome.err));
}

void tst_ShopPublisherFrame::systemLanguage_data()
{
    const auto row = namedByText(columns<QString, QString>("locale", "message"));
    row("fr_BE.UTF-8", "Il faut deux dossiers");
    row("de_AT.UTF-8", "Es braucht zwei Ordner");
    row("it_IT.UTF-8", "Two folders are needed"); // not one of ours
    row("C", "Two folders are needed");
}

void tst_ShopPublisherFrame::systemLanguage()
{
    SKIP_ON_WINDOWS("the system's language is not told by the environment");
    QFETCH(QString, locale);
    QFETCH(QString, message);
    QProcessEnvironment environment = environmentFor(mHome);
    environment.insert(text("LC_ALL"), locale);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(text(SHOP_PUBLISHER), QStringList());
    QVERIFY(process.waitForFinished(60000));
    const QString err = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(err.contains(message), qPrintable(err));

    // An explicit language precedes that of the system.
    process.start(text(SHOP_PUBLISHER), {text("-l"), text("en")});
    QVERIFY(process.waitForFinished(60000));
    QVERIFY(process.readAllStandardError().contains("Two folders are needed"));
}

void tst_ShopPublisherFrame::unknownLanguage()
{
    for (const char* code : {"it", "xx", "../fr", "C", "fr/../de"}) {
        const Outcome outcome = publish({text("--language"), text(code)});
        QCOMPARE(outcome.exitCode, badUsage);
        QCOMPARE(outcome.out, QString());
        QVERIFY2(outcome.err.contains(
                     text("There are no texts in the language %1, only in: de, en, fr.\n")
                         .arg(text(code))),
                 qPrintable(outcome.err));
        QVERIFY(!QFileInfo::exists(mSite));
    }
    // The option without its value.
    QCOMPARE(run({mProject, mSite, text("--language")}, mHome).exitCode, badUsage);
    QVERIFY(!QFileInfo::exists(mSite));
}

void tst_ShopPublisherFrame::withoutTranslations()
{
    // Only the program, without the files next to it.
    const QString folder = root() + text("/alone/bin");
    QVERIFY(QDir().mkpath(folder));
    const QString program = folder + text("/shop-publisher");
    QVERIFY(QFile::copy(QFileInfo(text(SHOP_PUBLISHER)).canonicalFilePath(), program));
    writeFile(photo(text("a.jpg")), encoded(corners(40, 30), "jpg"));

    QProcess process;
    process.setProcessEnvironment(environmentFor(mHome));
    process.start(program, {text("--language"), text("en"), mProject, mSite});
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), allImported);
    QCOMPARE(process.readAllStandardError(), QByteArray());
    process.start(program, {text("--language"), text("fr"), mProject, mSite});
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), badUsage);
    QVERIFY(process.readAllStandardError().contains(
        "There are no texts in the language fr, only in: en."));
}

void tst_ShopPublisherFrame::translationsAreComplete_data()
{
    const auto row = columns<QString>("language");
    for (const char* language : {"en", "fr", "de"})
        row(language, text(language));
}

void tst_ShopPublisherFrame::translationsAreComplete()
{
    QFETCH(QString, language);
    QFile file(text(SAMPLE_SHOP_DIR "/../translations/app_%1.ts").arg(language));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    QString source;
    int count = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")
                   || xml.name() == QLatin1String("numerusform")) {
            QVERIFY2(!xml.attributes().hasAttribute(text("type")), qPrintable(source));
            const bool holdsForms =
                xml.name() == QLatin1String("translation") && (source.contains(text("%n")));
            if (holdsForms)
                continue;
            const QString translation = xml.readElementText();
            QVERIFY2(!translation.isEmpty(), qPrintable(source));
            // Every translation has the same placeholders as the source text.
            QCOMPARE(placesIn(translation), placesIn(source));
            ++count;
        }
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QVERIFY(count >= (language == text("en") ? 8 : 50));
}

QTEST_MAIN(tst_ShopPublisherFrame)
#include "tst_ShopPublisherFrame.moc"

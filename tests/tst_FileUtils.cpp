// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FileUtils.h"

#include "ApplicationUtils.h"
#include "FileLimit.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "PiecesBetween.h"
#include "Sandbox.h"
#include "SystemCalls.h"
#include "Text.h"

#include <QFileIconProvider>
#include <QFontMetrics>
#include <QLocale>
#include <QTranslator>
#include <QtTest>

#include <limits>
#include <sys/stat.h>

#if defined(__clang__)
// QSKIP() is a macro with optional arguments.
#pragma clang diagnostic ignored "-Wgnu-zero-variadic-macro-arguments"
#endif

class tst_FileUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void lastPartOfFolder_data();
    void lastPartOfFolder();
    void parentFolder_data();
    void parentFolder();
    void elidedFolderThatFits_data();
    void elidedFolderThatFits();
    void elidedFolderIsCutAtASlash();
    void elidedFolderWithoutUsefulRest();
    void normalizeFilename_data();
    void normalizeFilename();
    void normalizeFilenameKeepsOnlyThePortableSet();
    void normalizeFilenameOfEachCharacter();
    void normalizeFilenameOfManyAccents();
    void regExpFilename();
    void fileSizeToString_data();
    void fileSizeToString();
    void fileSizeToStringFollowsTheDefaultLocale_data();
    void fileSizeToStringFollowsTheDefaultLocale();
    void folderExists_data();
    void folderExists();
    void directoryIsEmpty_data();
    void directoryIsEmpty();
    void nameValidity_data();
    void nameValidity();
    void setFileHiddenOnWindowsDoesNothing();

    void readFileContent_data();
    void readFileContent();
    void readFileContentThatCannotBeOpened_data();
    void readFileContentThatCannotBeOpened();
    void readFileContentTooLarge();
    void writeFileContent_data();
    void writeFileContent();
    void writeFileContentReplaces();
    void writeFileContentThatCannotBeOpened();
    void writeFileContentHalfWay_data();
    void writeFileContentHalfWay();
    void replaceInFile_data();
    void replaceInFile();
    void replaceInFileLeavesAlone_data();
    void replaceInFileLeavesAlone();
    void replaceInFileThatCannotBeWritten();
    void digests_data();
    void digests();
    void fileStamp();
    void fileStampOfAChange_data();
    void fileStampOfAChange();
    void fileStampOfOthers();
    void digestOfMissingFile();
    void writingRight_data();
    void writingRight();
    void writingRightRefused();
    void writingRightOnAFullDisk();
    void writingRightOfNoFolder_data();
    void writingRightOfNoFolder();
    void workingFolderBlocked_data();
    void workingFolderBlocked();
    void contentTextsAreTranslated();

    void iconOfTheApplication_data();
    void iconOfTheApplication();
    void showFileInFolderWithoutFinder();
};

void tst_FileUtils::cleanup()
{
    QLocale::setDefault(QLocale::c());
}

// Paths and names as text

void tst_FileUtils::lastPartOfFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("name");
    QTest::newRow("folder with slash") << text("/a/b/") << text("b/") << text("b");
    QTest::newRow("folder without slash") << text("/a/b") << text("b") << text("b");
    QTest::newRow("bare name") << text("b") << text("b") << text("b");
    QTest::newRow("bare name with slash") << text("b/") << text("b/") << text("b");
    QTest::newRow("longer bare name") << text("photos") << text("photos") << text("photos");
    QTest::newRow("relative") << text("a/bc") << text("bc") << text("bc");
    QTest::newRow("below the root") << text("/a") << text("a") << text("a");
    QTest::newRow("empty") << QString() << QString() << QString();
    QTest::newRow("root") << text("/") << text("/") << QString();
    QTest::newRow("two slashes at the end") << text("/a//") << text("/") << QString();
    QTest::newRow("only two slashes") << text("//") << text("/") << QString();
    QTest::newRow("accents") << text("/été/à la mer/") << text("à la mer/") << text("à la mer");
}

void tst_FileUtils::lastPartOfFolder()
{
    QFETCH(QString, path);
    QTEST(FileUtils::lastPartOfFolder(path), "part");
    QTEST(FileUtils::nameOfLastPartFolder(path), "name");
}

void tst_FileUtils::parentFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("parent");
    QTest::newRow("folder with slash") << text("/a/b/") << text("/a/");
#ifdef Q_OS_WIN
    // What begins with a slash lies on the current drive.
    const QString drive = QDir::currentPath().left(2);
#else
    const QString drive;
#endif
    QTest::newRow("folder without slash") << text("/a/b") << drive + text("/a/");
    QTest::newRow("below the root, with slash") << text("/a/") << text("/");
    QTest::newRow("below the root") << text("/a") << drive + text("//");
    QTest::newRow("relative with slash") << text("a/") << text("a/");
    QTest::newRow("deeper relative with slash") << text("a/b/") << text("a/");
    QTest::newRow("root") << text("/") << text("/");
    QTest::newRow("empty") << QString() << text("/");
    QTest::newRow("bare name") << text("b") << QDir::currentPath() + text("/");
    QTest::newRow("relative") << text("a/b") << QDir::currentPath() + text("/a/");
}

void tst_FileUtils::parentFolder()
{
    QFETCH(QString, path);
    QTEST(FileUtils::parentFolder(path), "parent");
}

void tst_FileUtils::elidedFolderThatFits_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("absolute") << text("/home/photos/2016");
    QTest::newRow("relative") << text("photos/2016/a.jpg");
    QTest::newRow("bare name") << text("photos");
    QTest::newRow("with slash") << text("photos/");
    QTest::newRow("empty") << QString();
}

void tst_FileUtils::elidedFolderThatFits()
{
    QFETCH(QString, path);
    const QFontMetrics metrics{QFont()};
    QString passed = path;
    QCOMPARE(FileUtils::elidedFolder(metrics, passed, 10000), path);
    QCOMPARE(passed, path);
}

void tst_FileUtils::elidedFolderIsCutAtASlash()
{
    const QFontMetrics metrics{QFont()};
    const QString path = text("/home/somebody/pictures/2016/summer/holidays/a.jpg");
    int cut = 0;
    for (int width = metrics.size(0, path).width(); width > 0; --width) {
        const QString elided = metrics.elidedText(path, Qt::ElideLeft, width);
        if (elided == path)
            continue;
        QString passed = path;
        const QString shown = FileUtils::elidedFolder(metrics, passed, width);
        QCOMPARE(passed, path);
        const int slash = int(elided.indexOf(QLatin1Char('/')));
        if (slash < 0) {
            QCOMPARE(shown, elided);
            continue;
        }
        // Whole components behind three full stops, as many as the font's own text still holds.
        QVERIFY2(shown.startsWith(text(".../")), qPrintable(shown));
        QVERIFY(path.endsWith(shown.mid(3)));
        QCOMPARE(shown.mid(3), elided.mid(slash));
        ++cut;
    }
    QVERIFY(cut > 10);
}

void tst_FileUtils::elidedFolderWithoutUsefulRest()
{
    const QFontMetrics metrics{QFont()};
    // Nothing but the separator is left behind the ellipsis.
    QString folder = text("/home/averyveryverylongnameofafolder/");
    bool met = false;
    for (int width = metrics.size(0, folder).width(); width > 0 && !met; --width) {
        const QString elided = metrics.elidedText(folder, Qt::ElideLeft, width);
        if (elided.count(QLatin1Char('/')) != 1 || elided.startsWith(QLatin1Char('/')))
            continue;
        met = true;
        QVERIFY(elided.endsWith(QLatin1Char('/')));
        QCOMPARE(FileUtils::elidedFolder(metrics, folder, width), elided);
    }
    QVERIFY(met);
    // No separator is left at all.
    QString name = text("/home/averyveryverylongname");
    const int width = metrics.size(0, text("verylongname")).width();
    const QString elided = metrics.elidedText(name, Qt::ElideLeft, width);
    QVERIFY(!elided.contains(QLatin1Char('/')) && elided.size() > 3);
    QCOMPARE(FileUtils::elidedFolder(metrics, name, width), elided);
}

void tst_FileUtils::normalizeFilename_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("portable");
    QTest::newRow("accents, slash and degree") << text(" Été 2016 / n°3 ") << text("Ete 2016  n3");
    QTest::newRow("plain") << text("Photo_01-(b).JPG") << text("Photo_01-(b).JPG");
    QTest::newRow("white space becomes one blank")
        << text("\ta \n b\u00a0\u2003c ") << text("a b c");
    QTest::newRow("composed") << text("\u00e9\u00c7\u00f1") << text("eCn");
    QTest::newRow("decomposed") << text("e\u0301") << text("e");
    QTest::newRow("no base letter") << text("ß\u00f8\u00e6x") << text("x");
    QTest::newRow("other alphabets") << text("\u65e5\u672c \u03b1\u03b2") << text(" ");
    QTest::newRow("beyond 16 bits") << text("a\U0001f600b") << text("ab");
    QTest::newRow("other digits") << text("\u0663\u0967\u00b2 1") << text(" 1");
    QTest::newRow("blank left at the end") << text("a °") << text("a ");
    QTest::newRow("nothing left") << text("°/*") << QString();
    QTest::newRow("empty") << QString() << QString();
}

void tst_FileUtils::normalizeFilename()
{
    QFETCH(QString, name);
    QTEST(FileUtils::normalizeFilename(name), "portable");
}

void tst_FileUtils::normalizeFilenameKeepsOnlyThePortableSet()
{
    QString kept;
    for (ushort code = 0x21; code < 0x7f; ++code)
        kept += FileUtils::normalizeFilename(QString(QChar(code)));
    QCOMPARE(kept, text("()-.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz"));
}

/// The rule told in full: decompose, simplify, drop what is not portable.
void tst_FileUtils::normalizeFilenameOfEachCharacter()
{
    const QRegExp dropped(text("[^a-zA-Z0-9()\\s\\-\\_\\.]"));
    for (uint code = 0; code <= 0x10ffff; ++code) {
        const QString name = text(" A") + QString::fromUcs4(&code, 1) + text("B  C ");
        const QString expected =
            piecesBetween(name.normalized(QString::NormalizationForm_D).simplified(), dropped)
                .join(QString());
        const QString portable = FileUtils::normalizeFilename(name);
        if (portable != expected)
            QCOMPARE(QString::number(code, 16) + portable, QString::number(code, 16) + expected);
    }
}

/// Takes a time that is proportional to the length.
void tst_FileUtils::normalizeFilenameOfManyAccents()
{
    const int count = 2 << 20;
    QVERIFY(FileUtils::normalizeFilename(QString(count, QChar(0xe9)))
            == QString(count, QLatin1Char('e')));
}

void tst_FileUtils::regExpFilename()
{
    QCOMPARE(FileUtils::regExpFilename(), QString::fromLatin1("[\\w()\\s\\-\\_]+"));
    QVERIFY(QRegExp(FileUtils::regExpFilename()).exactMatch(text("My photo_(1)-b")));
    QVERIFY(!QRegExp(FileUtils::regExpFilename()).exactMatch(text("a/b")));
}

void tst_FileUtils::fileSizeToString_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("french");
    const QStringList bytes{text("B"), text("octets")};
    const QStringList kilo{text("kB"), text("Ko")};
    const QStringList mega{text("MB"), text("Mo")};
    const QStringList giga{text("GB"), text("Go")};
    const auto row = [](const char* name, qint64 size, const char* value, const QStringList& unit) {
        QTest::newRow(name) << size << QString::fromLatin1(value) << unit[0] << unit[1];
    };
    row("zero in kilobytes", 0, "0", kilo);
    row("one byte", 1, "1", bytes);
    row("bytes", 512, "512", bytes);
    row("last in bytes", 1024, "1024", bytes);
    row("negative", -5, "-5", bytes);
    row("very negative", -5000000000, "-5000000000", bytes);
    row("most negative", std::numeric_limits<qint64>::min(), "-9223372036854775808", bytes);
    row("first in kilobytes", 1025, "1.00", kilo);
    row("kilobytes", 1536, "1.50", kilo);
    row("5000", 5000, "4.88", kilo); // 4.8828125
    row("just below 1024 kB", 1048575, "1024.00", kilo);
    row("last in kilobytes", 1048576, "1024.00", kilo);
    row("first in megabytes", 1048577, "1.00", mega);
    row("megabytes", 3407872, "3.25", mega);
    // At this size a float holds multiples of 64 only. 1048581242 is 1000.00499 MB and becomes
    // 1048581248, which is 1000.00500488 MB; 1048612701 is 1000.03500080 MB and becomes
    // 1048612672, which is 1000.03497314 MB.
    row("single precision, upwards", 1048581242, "1000.01", mega);
    row("single precision, downwards", 1048612701, "1000.03", mega);
    row("last in megabytes", 1073741824, "1024.00", mega);
    row("first in gigabytes", 1073741825, "1.00", giga);
    row("gigabytes", 1610612736, "1.50", giga);
    // 1000.00500000 GB less 81 bytes; as a float it would be 1073747132416 and round up.
    row("gigabytes are in double precision", 1073747132331, "1000.00", giga);
    row("more gigabytes", 1000000000000, "931.32", giga);
    row("largest", std::numeric_limits<qint64>::max(), "8589934592.00", giga);
}

void tst_FileUtils::fileSizeToString()
{
    QFETCH(qint64, size);
    QFETCH(QString, value);
    QFETCH(QString, english);
    QFETCH(QString, french);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QCOMPARE(FileUtils::fileSizeToString(size), value + text(" ") + english);
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    QCOMPARE(FileUtils::fileSizeToString(size), value + text(" ") + french);
}

void tst_FileUtils::fileSizeToStringFollowsTheDefaultLocale_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("C") << text("C") << text("1.50 kB");
    QTest::newRow("French") << text("fr_FR") << text("1.50 Ko");
    QTest::newRow("Canadian French") << text("fr_CA") << text("1.50 Ko");
    QTest::newRow("Swiss French") << text("fr_CH") << text("1.50 Ko");
    QTest::newRow("British") << text("en_GB") << text("1.50 kB");
    QTest::newRow("German, decimal comma") << text("de_DE") << text("1.50 kB");
    QTest::newRow("Friulian") << text("fur_IT") << text("1.50 kB");
    QTest::newRow("Western Frisian") << text("fy_NL") << text("1.50 kB");
    QTest::newRow("Arabic, other digits") << text("ar_EG") << text("1.50 kB");
}

void tst_FileUtils::fileSizeToStringFollowsTheDefaultLocale()
{
    QFETCH(QString, locale);
    QLocale::setDefault(QLocale(locale));
    QCOMPARE(QLocale().name(), locale);
    QTEST(FileUtils::fileSizeToString(1536), "text");
}

void tst_FileUtils::folderExists_data()
{
    QTest::addColumn<QString>("relative");
    QTest::addColumn<bool>("expected");
    QTest::newRow("folder") << text("folder") << true;
    QTest::newRow("with slash") << text("folder/") << true;
    QTest::newRow("not clean") << text("missing/..//folder/.") << true;
    QTest::newRow("link to a folder") << text("link") << true;
    QTest::newRow("file") << text("file") << false;
    QTest::newRow("link to a file") << text("fileLink") << false;
    QTest::newRow("broken link") << text("broken") << false;
    QTest::newRow("missing") << text("missing") << false;
    QTest::newRow("blanks belong to the name") << text("folder ") << false;
}

void tst_FileUtils::folderExists()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, relative);
    Sandbox box;
    box.folder(text("folder"));
    box.file(text("file"));
    box.link(text("link"), text("folder"));
    box.link(text("fileLink"), text("file"));
    box.link(text("broken"), text("nowhere"));
    QTEST(FileUtils::folderExists(box(relative)), "expected");
    const CurrentFolder current(box.root());
    QTEST(FileUtils::folderExists(relative), "expected");
    // Blanks are no folder even where one of that name exists.
    box.folder(text("  "));
    QVERIFY(!FileUtils::folderExists(QString()));
    QVERIFY(!FileUtils::folderExists(text("  ")));
    QVERIFY(!FileUtils::folderExists(text(" \t\n")));
}

void tst_FileUtils::directoryIsEmpty_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("expected");
    QTest::newRow("nothing") << QString() << true;
    QTest::newRow("file") << text("file") << false;
    QTest::newRow("folder") << text("folder/") << false;
    QTest::newRow("hidden file") << text(".DS_Store") << true;
    QTest::newRow("hidden folder") << text(".git/") << true;
    QTest::newRow("link to a folder") << text("link>/tmp") << false;
    QTest::newRow("broken link") << text("link>nowhere") << true;
    QTest::newRow("pipe") << text("pipe|") << true;
}

void tst_FileUtils::directoryIsEmpty()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    QFETCH(QString, entry);
    QFETCH(bool, expected);
    Sandbox box;
    box.folder(text("folder"));
    if (entry.contains(QLatin1Char('>')))
        box.link(text("folder/") + entry.section(QLatin1Char('>'), 0, 0),
                 entry.section(QLatin1Char('>'), 1));
    else if (entry.endsWith(QLatin1Char('|')))
        box.pipe(text("folder/") + entry);
    else if (entry.endsWith(QLatin1Char('/')))
        box.folder(text("folder/") + entry);
    else if (!entry.isEmpty())
        box.file(text("folder/") + entry);
    QCOMPARE(FileUtils::directoryIsEmpty(box(text("folder"))), expected);
    QCOMPARE(FileUtils::directoryIsEmpty(box(text("folder/"))), expected);
    QCOMPARE(FileUtils::directoryIsEmpty(box(text("x/../folder//"))), expected);
    QVERIFY(FileUtils::directoryIsEmpty(box(text("missing"))));
}

void tst_FileUtils::nameValidity_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("fixed");
    QTest::newRow("good") << text("a.b") << text("a.b");
    QTest::newRow("colon") << text("a:b") << text("a_b");
    QTest::newRow("slash and star") << text("a/b*c") << text("a_b_c");
    QTest::newRow("one for one") << text("a//??b") << text("a____b");
    QTest::newRow("all forbidden") << text("/\\|?<>\":*") << text("_________");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("accents, quote and others")
        << text("d'été %&;,!#[]{}~`^$@+=\t.") << text("d'été %&;,!#[]{}~`^$@+=\t.");
    QTest::newRow("several lines") << text("a\nb:c") << text("a\nb_c");
}

void tst_FileUtils::nameValidity()
{
    QFETCH(QString, name);
    QFETCH(QString, fixed);
    QCOMPARE(FileUtils::checkNameFileValidity(name), name == fixed);
    QCOMPARE(FileUtils::fixNameFileValidity(name), fixed);
    QVERIFY(FileUtils::checkNameFileValidity(fixed));
}

void tst_FileUtils::setFileHiddenOnWindowsDoesNothing()
{
#ifdef Q_OS_WIN
    QSKIP("this is the platform on which the function does something");
#endif
    Sandbox box;
    const QString file = box.file(text("file"));
    const QStringList before = treeOf(box.root());
    FileUtils::setFileHiddenOnWindows(file);
    FileUtils::setFileHiddenOnWindows(box(text("missing")));
    FileUtils::setFileHiddenOnWindows(QString());
    QCOMPARE(treeOf(box.root()), before);
    QVERIFY(!QFileInfo(file).isHidden());
}

// File content

void tst_FileUtils::readFileContent_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("one byte") << QByteArray("x");
    QTest::newRow("text is not touched") << QByteArray("a\r\nb\n\xef\xbb\xbf\xc3\xa9\xff");
    QTest::newRow("zero bytes") << QByteArray("a\0b\0", 4);
    QTest::newRow("large") << QByteArray(3000000, 'z') + QByteArray("end");
}

void tst_FileUtils::readFileContent()
{
    QFETCH(QByteArray, content);
    Sandbox box;
    const QString path = box.file(text(u8"\u00e9t\u00e9/a b.bin"), content);
    LogCapture log;
    QVERIFY(FileUtils::readFileContent(path) == content);
    QVERIFY(FileUtils::readFileContent(path, false) == content);
    QVERIFY(contentOf(path) == content);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::readFileContentThatCannotBeOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << text("missing");
    QTest::newRow("missing folder") << text("missing/file");
    QTest::newRow("folder") << text("folder");
    QTest::newRow("not allowed") << text("locked");
}

void tst_FileUtils::readFileContentThatCannotBeOpened()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    QFETCH(QString, name);
    Sandbox box;
    box.folder(text("folder"));
    box.lock(box.file(text("locked")), 0);
    const OrdinaryUser ordinary;
    LogCapture log;
    QCOMPARE(FileUtils::readFileContent(box(name), false), QByteArray());
    QCOMPARE(FileUtils::readFileContent(QString(), false), QByteArray());
    QCOMPARE(FileUtils::readFileContent(QString(), true), QByteArray());
    QCOMPARE(FileUtils::readFileContent(text("")), QByteArray());
    QCOMPARE(log.lines(), QStringList());
    const QString record =
        text("info orvautils FileUtils readFileContent: FileUtils::readFileContent error :  ")
        + box(name) + text("  ne peut etre ouvert !");
    QCOMPARE(FileUtils::readFileContent(box(name), true), QByteArray());
    QCOMPARE(FileUtils::readFileContent(box(name)), QByteArray()); // logs by default
    QCOMPARE(log.lines(), QStringList({record, record}));
}

void tst_FileUtils::readFileContentTooLarge()
{
    Sandbox box;
    const QString path = box.file(text("file"));
    QVERIFY(QFile::resize(path, qint64(3) << 30)); // takes no space
    LogCapture log;
    QCOMPARE(FileUtils::readFileContent(path), QByteArray());
    QCOMPARE(log.lines(),
             QStringList(text("info orvautils FileUtils readFileContent: "
                              "FileUtils::readFileContent error :  ")
                         + path + text("  ne peut etre ouvert !")));
}

void tst_FileUtils::writeFileContent_data()
{
    readFileContent_data();
}

void tst_FileUtils::writeFileContent()
{
    QFETCH(QByteArray, content);
    Sandbox box;
    LogCapture log;
    QString error = text("from before");
    // The folder is made.
    QVERIFY(FileUtils::writeFileContent(box(text("new/folder/file")), content, &error));
    QVERIFY(contentOf(box(text("new/folder/file"))) == content);
    QVERIFY(FileUtils::writeFileContent(box(text("new/other")), content));
    QVERIFY(contentOf(box(text("new/other"))) == content);
    QCOMPARE(error, text("from before"));
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::writeFileContentReplaces()
{
    Sandbox box;
    const QString path = box.file(text("file"), "something longer");
    QVERIFY(FileUtils::writeFileContent(path, "short"));
    QCOMPARE(contentOf(path), QByteArray("short"));
    QVERIFY(FileUtils::writeFileContent(path, QByteArray()));
    QCOMPARE(contentOf(path), QByteArray());
}

void tst_FileUtils::writeFileContentThatCannotBeOpened()
{
    Sandbox box;
    const QString folder = box.folder(text("folder"));
    const QString file = box.file(text("file"), "kept");
    LogCapture log;
    QString error = text("from before");
    QVERIFY(!FileUtils::writeFileContent(QString(), "data", &error));
    QCOMPARE(error, text("from before"));
    // The folder cannot be made: its message, no record.
    QVERIFY(!FileUtils::writeFileContent(file + text("/sub/x"), "data", &error));
    QCOMPARE(error, text("(fileMkPath) Cant create folder '") + file + text("/sub' !"));
    QCOMPARE(log.lines(), QStringList());
    // A folder stands in the way.
    QVERIFY(!FileUtils::writeFileContent(folder, "data", &error));
    QCOMPARE(error, text("Cannot open (WriteOnly) ") + folder);
    QVERIFY(!FileUtils::writeFileContent(folder, "data"));
    const QString record =
        text("warning orvautils FileUtils writeFileContent: cannot open file  ") + folder;
    QCOMPARE(log.lines(), QStringList({record, record}));
    QCOMPARE(contentOf(file), QByteArray("kept"));
}

void tst_FileUtils::writeFileContentHalfWay_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("nothing fits but a little") << 5000;
    QTest::newRow("more than any buffer") << 1000000;
}

// A disk that is full, played by the limit of the size of a file.
void tst_FileUtils::writeFileContentHalfWay()
{
    SKIP_ON_WINDOWS("there is no limit of files and their size");
    QFETCH(int, size);
    Sandbox box;
    const QString path = box(text("file"));
    QString error;
    bool written = true;
    LogCapture log;
    {
        const FileLimit limit(RLIMIT_FSIZE, 4096);
        written = FileUtils::writeFileContent(path, QByteArray(size, 'x'), &error);
    }
    QVERIFY(!written);
    QCOMPARE(error, text("Cannot write datas (WriteOnly) in ") + path);
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils writeFileContent: cannot open file  ")
                         + path));
}

void tst_FileUtils::replaceInFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QByteArray>("result");
    QTest::newRow("every occurrence")
        << QByteArray("a-b-a") << text("a") << text("xy") << QByteArray("xy-b-xy");
    QTest::newRow("case") << QByteArray("aA") << text("A") << text("b") << QByteArray("ab");
    QTest::newRow("accents") << QByteArray("prix: 5 \xe2\x82\xac") << text(u8"\u20ac")
                             << text(u8"\u00a3") << QByteArray("prix: 5 \xc2\xa3");
    QTest::newRow("nothing to replace")
        << QByteArray("abc") << text("x") << text("y") << QByteArray("abc");
    QTest::newRow("zero byte") << QByteArray("ab\0cd", 5) << text("b") << text("c")
                               << QByteArray("ac");
    QTest::newRow("zero byte, nothing to replace")
        << QByteArray("ab\0cd", 5) << text("x") << text("y") << QByteArray("ab");
    QTest::newRow("to nothing") << QByteArray("abc") << text("abc") << QString() << QByteArray();
    QTest::newRow("empty text to find")
        << QByteArray("abc") << QString() << text("x") << QByteArray("abc");
    QTest::newRow("line ends stay")
        << QByteArray("a\r\nb\n") << text("a") << text("c") << QByteArray("c\r\nb\n");
    QTest::newRow("not UTF-8") << QByteArray("a\xff") << text("a") << text("b")
                               << QByteArray("b\xef\xbf\xbd");
}

void tst_FileUtils::replaceInFile()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QByteArray, result);
    Sandbox box;
    const QString path = box.file(text("file"), content);
    QVERIFY(FileUtils::replaceInFile(path, before, after));
    QCOMPARE(contentOf(path), result);
}

void tst_FileUtils::replaceInFileLeavesAlone_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no path") << QString();
    QTest::newRow("missing") << text("missing");
    QTest::newRow("empty") << text("empty");
    QTest::newRow("zero byte first") << text("zero");
    QTest::newRow("folder") << text("folder");
}

void tst_FileUtils::replaceInFileLeavesAlone()
{
    QFETCH(QString, name);
    Sandbox box;
    box.file(text("empty"), "");
    box.file(text("zero"), QByteArray("\0ab", 3));
    box.folder(text("folder"));
    const QStringList before = treeOf(box.root());
    LogCapture log;
    QVERIFY(!FileUtils::replaceInFile(name.isEmpty() ? name : box(name), text("a"), text("b")));
    QCOMPARE(treeOf(box.root()), before);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::replaceInFileThatCannotBeWritten()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    Sandbox box;
    const QString path = box.file(text("file"), "abc");
    box.lock(path, 0444);
    const OrdinaryUser ordinary;
    LogCapture log;
    // True all the same.
    QVERIFY(FileUtils::replaceInFile(path, text("a"), text("b")));
    QCOMPARE(contentOf(path), QByteArray("abc"));
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils writeFileContent: cannot open file  ")
                         + path));
}

void tst_FileUtils::digests_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("md5");
    QTest::addColumn<QString>("sha1");
    // From RFC 1321 and RFC 3174, and from md5sum and sha1sum.
    QTest::newRow("nothing") << QByteArray("") << text("d41d8cd98f00b204e9800998ecf8427e")
                             << text("da39a3ee5e6b4b0d3255bfef95601890afd80709");
    QTest::newRow("abc") << QByteArray("abc") << text("900150983cd24fb0d6963f7d28e17f72")
                         << text("a9993e364706816aba3e25717850c26c9cd0d89d");
    QTest::newRow("a million times a")
        << QByteArray(1000000, 'a') << text("7707d6ae4e027c70eea2a935c2296f21")
        << text("34aa973cd4c4daa4f61eeb2bdbad27316534016f");
}

void tst_FileUtils::digests()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, md5);
    QFETCH(QString, sha1);
    Sandbox box;
    const QString path = box.file(text("file"), content);
    QCOMPARE(FileUtils::md5FromDatas(content), md5);
    QCOMPARE(FileUtils::md5(path), md5);
    QCOMPARE(FileUtils::sha1(path), sha1);
}

void tst_FileUtils::digestOfMissingFile()
{
    Sandbox box;
    LogCapture log;
    QCOMPARE(FileUtils::md5(box(text("missing"))), FileUtils::md5FromDatas(QByteArray()));
    QCOMPARE(FileUtils::sha1(box(text("missing"))),
             text("da39a3ee5e6b4b0d3255bfef95601890afd80709"));
    QCOMPARE(FileUtils::md5(QString()), FileUtils::md5FromDatas(QByteArray()));
    QCOMPARE(FileUtils::md5(box.root()), FileUtils::md5FromDatas(QByteArray()));
    QCOMPARE(log.lines(), QStringList());
}

// fileStamp

void tst_FileUtils::fileStamp()
{
    Sandbox box;
    const QString path = box.file(text("a"), "12345");
    const QString before = FileUtils::fileStamp(path);
    QVERIFY(!before.isEmpty());
    QCOMPARE(contentOf(path), QByteArray("12345"));
    QCOMPARE(FileUtils::fileStamp(path), before); // to be read changes nothing
#ifndef Q_OS_WIN // which looks at no folder that the path leaves again
    QCOMPARE(FileUtils::fileStamp(box.link(text("link"), text("a"))), before);
    QCOMPARE(FileUtils::fileStamp(box(text("x/../a"))), QString());
#endif
    box.folder(text("x"));
    QCOMPARE(FileUtils::fileStamp(box(text("x/../a"))), before);

    // Another one in its place, of the same bytes and time.
    const QString other = box.file(text("b"), "12345");
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
#ifdef Q_OS_WIN
    const timespec times[] = {{status.st_atime, 0}, {status.st_mtime, 0}};
#else
    const timespec times[] = {status.st_atim, status.st_mtim};
#endif
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(other).constData(), times, 0), 0);
    QVERIFY(FileUtils::fileStamp(other) != before);
    QVERIFY(FileUtils::moveOver(other, path));
    QVERIFY(FileUtils::fileStamp(path) != before);
}

void tst_FileUtils::fileStampOfAChange_data()
{
    QTest::addColumn<int>("change");
    QTest::newRow("larger") << 0;
    QTest::newRow("same size") << 1;
#ifndef Q_OS_WIN // which has none of them
    QTest::newRow("permissions") << 2;
#endif
    QTest::newRow("time set back") << 3;
}

void tst_FileUtils::fileStampOfAChange()
{
    QFETCH(int, change);
    Sandbox box;
    const QString path = box.file(text("a"), "12345");
    const QByteArray name = QFile::encodeName(path);
    const QString before = FileUtils::fileStamp(path);
    const auto alter = [&] {
        const timespec epoch[] = {{1, 0}, {1, 0}};
        if (change < 2)
            writeFile(path, change == 0 ? "123456" : "54321");
        else if (change == 2)
            changeMode(path, 0600);
        else
            ::utimensat(AT_FDCWD, name.constData(), epoch, 0);
        return FileUtils::fileStamp(path);
    };
    QTRY_VERIFY(alter() != before); // as soon as the clock of the file system has moved
    QVERIFY(!alter().isEmpty());
}

void tst_FileUtils::fileStampOfOthers()
{
    SKIP_ON_WINDOWS("no folder there has named pipes");
    Sandbox box;
    QVERIFY(!FileUtils::fileStamp(box.folder(text("folder"))).isEmpty());
    QVERIFY(!FileUtils::fileStamp(box.file(text("empty"), QByteArray())).isEmpty());
    QVERIFY(!FileUtils::fileStamp(box.pipe(text("pipe"))).isEmpty()); // without waiting for it
    box.file(text("locked/file"));
    box.lock(box.file(text("unreadable")), 0);
    box.lock(box(text("locked")), 0);
    box.link(text("broken"), text("nowhere"));
    const OrdinaryUser user;
    QVERIFY(!FileUtils::fileStamp(box(text("unreadable"))).isEmpty());
    LogCapture log;
    for (const QString& path :
         {QString(), box(text("missing")), box(text("broken")), box(text("locked/file")),
          box(text("empty/x")), QString(box(text("empty")) + QChar() + text("x"))})
        QCOMPARE(FileUtils::fileStamp(path), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::writingRight_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("as it is") << text("folder");
    QTest::newRow("with slash") << text("folder/");
    QTest::newRow("not clean") << text("./folder//x/..");
    QTest::newRow("made") << text("new/one");
}

void tst_FileUtils::writingRight()
{
    QFETCH(QString, folder);
    Sandbox box;
    box.file(text("folder/kept"));
    LogCapture log;
    QString error = text("from before");
    QVERIFY(FileUtils::checkWritingRightInFolder(box(folder), text("label"), &error));
    QVERIFY(FileUtils::checkWritingRightInFolder(box(folder), QString()));
    QCOMPARE(error, text("from before"));
    QVERIFY(QDir(QDir::cleanPath(box(folder))).exists());
    QVERIFY(!treeOf(box.root()).join(QLatin1Char(' ')).contains(text("check_write")));
    QVERIFY(QFile::exists(box(text("folder/kept"))));
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::writingRightRefused()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    Sandbox box;
    const QString folder = box.folder(text("folder"));
    box.lock(folder, 0555);
    const OrdinaryUser ordinary;
    LogCapture quiet;
    const QString reason = text("Cannot open (WriteOnly) ") + folder + text("/check_write");
    QString error;
    QVERIFY(!FileUtils::checkWritingRightInFolder(folder, QString(), &error));
    QCOMPARE(error, reason);
    QVERIFY(!FileUtils::checkWritingRightInFolder(folder, text("Photos"), &error));
    QCOMPARE(error, text("Cant write in Photos error=") + reason);
    // Filled in one pass.
    QVERIFY(!FileUtils::checkWritingRightInFolder(folder, text("%2 %1"), &error));
    QCOMPARE(error, text("Cant write in %2 %1 error=") + reason);
    QVERIFY(!FileUtils::checkWritingRightInFolder(folder, text("Photos")));
    QCOMPARE(treeOf(folder), QStringList());
}

void tst_FileUtils::writingRightOnAFullDisk()
{
    SKIP_ON_WINDOWS("there is no limit of files and their size");
    Sandbox box;
    QString error;
    {
        const FileLimit limit(RLIMIT_FSIZE, 4);
        QVERIFY(!FileUtils::checkWritingRightInFolder(box.root(), QString(), &error));
    }
    QCOMPARE(error, text("Cannot write datas (WriteOnly) in ") + box(text("check_write")));
    QCOMPARE(treeOf(box.root()), QStringList());
}

void tst_FileUtils::writingRightOfNoFolder_data()
{
    QTest::addColumn<QString>("label");
    QTest::newRow("without label") << QString();
    QTest::newRow("with label") << text("Photos");
}

void tst_FileUtils::writingRightOfNoFolder()
{
    QFETCH(QString, label);
    QString error;
    QVERIFY(!FileUtils::checkWritingRightInFolder(QString(), label, &error));
    QCOMPARE(error, text("Folder is not valid ! (empty)"));
    QVERIFY(!FileUtils::checkWritingRightInFolder(QString(), label));

#ifndef Q_OS_WIN // which ends names before their blanks
    // Blanks are a name: they are not trimmed.
    Sandbox box;
    const QString former = QDir::currentPath();
    QVERIFY(QDir::setCurrent(box.root()));
    const bool writable = FileUtils::checkWritingRightInFolder(text("  "), label);
    QVERIFY(QDir::setCurrent(former));
    QVERIFY(writable);
    QCOMPARE(treeOf(box.root()), QStringList(text("  /")));
#endif
}

void tst_FileUtils::workingFolderBlocked_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("label");
    QTest::newRow("plain")
        << text("/shop") << text("https://example.org/doc")
        << text("Your working folder /shop seem not accessible en write, change it or consult <a "
                "href='https://example.org/doc'>Documentation</a>");
    QTest::newRow("line feeds and placeholders")
        << text("/a\n%2\nb") << text("%1")
        << text("Your working folder /a<br>%2<br>b seem not accessible en write, change it or "
                "consult <a href='%1'>Documentation</a>");
}

void tst_FileUtils::workingFolderBlocked()
{
    QFETCH(QString, folder);
    QFETCH(QString, address);
    QFETCH(QString, label);
    QCOMPARE(FileUtils::labelWorkingFolderBlocked(folder, address), label);
}

void tst_FileUtils::contentTextsAreTranslated()
{
    // A translator that marks what goes through it, over two lines.
    class Marker : public QTranslator
    {
    public:
        QString translate(const char* context, const char* source, const char*, int) const override
        {
            return QByteArray(context) == "FileUtils" ? text("<\n") + text(source) : QString();
        }
        bool isEmpty() const override { return false; }
    };
    Sandbox box;
    const QString folder = box.folder(text("folder"));
    Marker marker;
    QCoreApplication::installTranslator(&marker);
    LogCapture log;
    QString error;
    FileUtils::writeFileContent(folder, "data", &error);
    QCOMPARE(error, text("<\nCannot open (WriteOnly) ") + folder);
    FileUtils::checkWritingRightInFolder(QString(), QString(), &error);
    QCOMPARE(error, text("<\nFolder is not valid ! (empty)"));
    const QString blocked = FileUtils::labelWorkingFolderBlocked(text("/x"), text("doc"));
    QCOMPARE(blocked,
             text("<<br>Your working folder /x seem not accessible en write, change it or consult "
                  "<a href='doc'><<br>Documentation</a>"));
    QCoreApplication::removeTranslator(&marker);
    // What is logged is not translated.
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils writeFileContent: cannot open file  ")
                         + folder));
}

// Files on the desktop

void tst_FileUtils::iconOfTheApplication_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shipped"); // its name in the folder of the application's icons
    QTest::newRow("suffix") << text("a.pdf") << text("file.pdf");
    QTest::newRow("upper case") << text("/x/y.b/A.B.PDF") << text("file.pdf");
    QTest::newRow("none shipped") << text("a.odt") << text("file.pdf");
}

void tst_FileUtils::iconOfTheApplication()
{
    QFETCH(QString, name);
    QFETCH(QString, shipped);
    // The folder of the application's own data, beside the test program.
    const QString icons = ApplicationUtils::pathDatas() + text("suffix_icons/");
    QVERIFY(QDir().mkpath(icons));
    QFile file(icons + shipped);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    const bool ours = QFileInfo(name).suffix().toLower() == text("pdf");
    const QIcon icon = FileUtils::iconFromFilename(name);
    const QIcon expected = QFileIconProvider().icon(QFileInfo(ours ? file.fileName() : name));
    QVERIFY(file.remove());
    QVERIFY(QDir().rmpath(icons));
    QCOMPARE(icon.pixmap(32, 32).toImage(), expected.pixmap(32, 32).toImage());
    QCOMPARE(icon.name(), expected.name());
}

void tst_FileUtils::showFileInFolderWithoutFinder()
{
    if (QFile::exists(text("/usr/bin/osascript")))
        QSKIP("would reach for the Finder of the person at this machine");
    LogCapture log;
    FileUtils::showFileInFolder(text("/a b.jpg"));
    QCOMPARE(log.lines(), QStringList());
}

QTEST_MAIN(tst_FileUtils)
#include "tst_FileUtils.moc"

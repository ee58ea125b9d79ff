// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FileUtils.h"

#include "ApplicationUtils.h"
#include "Columns.h"
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

namespace {

/// A translator that marks what it translates, on two lines.
class Marker : public QTranslator
{
public:
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        return QByteArray(context) == "FileUtils" ? text("<\n") + text(source) : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

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
    void writingRightProbe();
    void writingRightRefused();
    void writingRightOnAFullDisk();
    void writingRightOfNoFolder_data();
    void writingRightOfNoFolder();
    void workingFolderBlocked_data();
    void workingFolderBlocked();
    void contentTextsAreTranslated();
    void textOfAFullDiskIsTranslated();

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
    const auto row = columns<QString, QString, QString>("path", "part", "name");
    row("folder with slash", "/a/b/", "b/", "b");
    row("folder without slash", "/a/b", "b", "b");
    row("bare name", "b", "b", "b");
    row("bare name with slash", "b/", "b/", "b");
    row("longer bare name", "photos", "photos", "photos");
    row("relative", "a/bc", "bc", "bc");
    row("below the root", "/a", "a", "a");
    row("empty", QString(), QString(), QString());
    row("root", "/", "/", QString());
    row("two slashes at the end", "/a//", "/", QString());
    row("only two slashes", "//", "/", QString());
    row("accents", "/été/à la mer/", "à la mer/", "à la mer");
}

void tst_FileUtils::lastPartOfFolder()
{
    QFETCH(QString, path);
    QTEST(FileUtils::lastPartOfFolder(path), "part");
    QTEST(FileUtils::nameOfLastPartFolder(path), "name");
}

void tst_FileUtils::parentFolder_data()
{
    const auto row = columns<QString, QString>("path", "parent");
    row("folder with slash", "/a/b/", "/a/");
#ifdef Q_OS_WIN
    // A path that begins with a slash is on the current drive.
    const QString drive = QDir::currentPath().left(2);
#else
    const QString drive;
#endif
    row("folder without slash", "/a/b", drive + text("/a/"));
    row("below the root, with slash", "/a/", "/");
    row("below the root", "/a", drive + text("//"));
    row("relative with slash", "a/", "a/");
    row("deeper relative with slash", "a/b/", "a/");
    row("root", "/", "/");
    row("empty", QString(), "/");
    row("bare name", "b", QDir::currentPath() + text("/"));
    row("relative", "a/b", QDir::currentPath() + text("/a/"));
}

void tst_FileUtils::parentFolder()
{
    QFETCH(QString, path);
    QTEST(FileUtils::parentFolder(path), "parent");
}

void tst_FileUtils::elidedFolderThatFits_data()
{
    const auto row = columns<QString>("path");
    row("absolute", "/home/photos/2016");
    row("relative", "photos/2016/a.jpg");
    row("bare name", "photos");
    row("with slash", "photos/");
    row("empty", QString());
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
        // Whole components after three full stops, as many as the font's own elided text keeps.
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
    // Only the separator is left after the ellipsis.
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
    const auto row = columns<QString, QString>("name", "portable");
    row("accents, slash and degree", " Été 2016 / n°3 ", "Ete 2016  n3");
    row("plain", "Photo_01-(b).JPG", "Photo_01-(b).JPG");
    row("white space becomes one blank", "\ta \n b\u00a0\u2003c ", "a b c");
    row("composed", "\u00e9\u00c7\u00f1", "eCn");
    row("decomposed", "e\u0301", "e");
    row("no base letter", "ß\u00f8\u00e6x", "x");
    row("other alphabets", "\u65e5\u672c \u03b1\u03b2", " ");
    row("beyond 16 bits", "a\U0001f600b", "ab");
    row("other digits", "\u0663\u0967\u00b2 1", " 1");
    row("blank left at the end", "a °", "a ");
    row("nothing left", "°/*", QString());
    row("empty", QString(), QString());
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

/// The rule spelled out: decompose, simplify, drop what is not portable.
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

/// The time must be proportional to the length.
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
    const auto table =
        columns<qint64, QString, QString, QString>("size", "value", "english", "french");
    const QStringList bytes{text("B"), text("octets")};
    const QStringList kilo{text("kB"), text("Ko")};
    const QStringList mega{text("MB"), text("Mo")};
    const QStringList giga{text("GB"), text("Go")};
    const auto row = [&](const char* name, qint64 size, const char* value,
                         const QStringList& unit) {
        table(name, size, QString::fromLatin1(value), unit[0], unit[1]);
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
    const auto row = namedByText(columns<QString, QString>("locale", "text"));
    row("C", "1.50 kB");
    row("fr_FR", "1.50 Ko");
    row("fr_CA", "1.50 Ko");
    row("fr_CH", "1.50 Ko");
    row("en_GB", "1.50 kB");
    row("de_DE", "1.50 kB"); // uses a decimal comma
    row("fur_IT", "1.50 kB"); // Friulian
    row("fy_NL", "1.50 kB"); // Western Frisian
    row("ar_EG", "1.50 kB"); // uses digits of its own
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
    const auto row = columns<QString, bool>("relative", "expected");
    row("folder", "folder", true);
    row("with slash", "folder/", true);
    row("not clean", "missing/..//folder/.", true);
    row("link to a folder", "link", true);
    row("file", "file", false);
    row("link to a file", "fileLink", false);
    row("broken link", "broken", false);
    row("missing", "missing", false);
    row("blanks belong to the name", "folder ", false);
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
    // Blanks are not a folder, even if a folder of that name exists.
    box.folder(text("  "));
    QVERIFY(!FileUtils::folderExists(QString()));
    QVERIFY(!FileUtils::folderExists(text("  ")));
    QVERIFY(!FileUtils::folderExists(text(" \t\n")));
}

void tst_FileUtils::directoryIsEmpty_data()
{
    const auto row = columns<QString, bool>("entry", "expected");
    row("nothing", QString(), true);
    row("file", "file", false);
    row("folder", "folder/", false);
    row("hidden file", ".DS_Store", true);
    row("hidden folder", ".git/", true);
    row("link to a folder", "link>/tmp", false);
    row("broken link", "link>nowhere", true);
    row("pipe", "pipe|", true);
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
    const auto row = columns<QString, QString>("name", "fixed");
    row("good", "a.b", "a.b");
    row("colon", "a:b", "a_b");
    row("slash and star", "a/b*c", "a_b_c");
    row("one for one", "a//??b", "a____b");
    row("all forbidden", "/\\|?<>\":*", "_________");
    row("empty", QString(), QString());
    row("accents, quote and others", "d'été %&;,!#[]{}~`^$@+=\t.", "d'été %&;,!#[]{}~`^$@+=\t.");
    row("several lines", "a\nb:c", "a\nb_c");
    row("NUL", text("a") + QChar() + text(":b"), text("a") + QChar() + text("_b"));
    // What is left of an emoji when a name is cut off in the middle of it.
    const QString halfEmoji = text("\U0001f600").left(1);
    row("half a character", text("a:b") + halfEmoji, text("a_b") + halfEmoji);
    row("half a character alone", halfEmoji, halfEmoji);
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
    const auto row = columns<QByteArray>("content");
    row("empty", "");
    row("one byte", "x");
    row("text is not touched", QByteArray("a\r\nb\n\xef\xbb\xbf\xc3\xa9\xff"));
    row("zero bytes", QByteArray("a\0b\0", 4));
    row("large", QByteArray(3000000, 'z') + QByteArray("end"));
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
    const auto row = columns<QString>("name");
    row("missing", "missing");
    row("missing folder", "missing/file");
    row("folder", "folder");
    row("not allowed", "locked");
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
    QCOMPARE(FileUtils::readFileContent(box(name)), QByteArray()); // logged by default
    QCOMPARE(log.lines(), QStringList({record, record}));
}

void tst_FileUtils::readFileContentTooLarge()
{
    Sandbox box;
    const QString path = box.file(text("file"));
    QVERIFY(QFile::resize(path, qint64(3) << 30)); // a sparse file
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
    // The folder is created.
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
    // The folder cannot be created: an error, but no record.
    QVERIFY(!FileUtils::writeFileContent(file + text("/sub/x"), "data", &error));
    QCOMPARE(error, text("(fileMkPath) Cant create folder '") + file + text("/sub' !"));
    QCOMPARE(log.lines(), QStringList());
    // A folder has that name.
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
    const auto row = columns<int>("size");
    row("nothing fits but a little", 5000);
    row("more than any buffer", 1000000);
}

// A full disk, simulated by a limit on the file size.
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
    const auto row =
        columns<QByteArray, QString, QString, QByteArray>("content", "before", "after", "result");
    row("every occurrence", "a-b-a", "a", "xy", "xy-b-xy");
    row("case", "aA", "A", "b", "ab");
    row("accents", QByteArray("prix: 5 \xe2\x82\xac"), text(u8"\u20ac"), text(u8"\u00a3"),
        QByteArray("prix: 5 \xc2\xa3"));
    row("nothing to replace", "abc", "x", "y", "abc");
    row("zero byte", QByteArray("ab\0cd", 5), "b", "c", "ac");
    row("zero byte, nothing to replace", QByteArray("ab\0cd", 5), "x", "y", "ab");
    row("to nothing", "abc", "abc", QString(), QByteArray());
    row("empty text to find", "abc", QString(), "x", "abc");
    row("line ends stay", "a\r\nb\n", "a", "c", "c\r\nb\n");
    row("not UTF-8", QByteArray("a\xff"), "a", "b", QByteArray("b\xef\xbf\xbd"));
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
    const auto row = columns<QString>("name");
    row("no path", QString());
    row("missing", "missing");
    row("empty", "empty");
    row("zero byte first", "zero");
    row("folder", "folder");
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
    // The result is true nevertheless.
    QVERIFY(FileUtils::replaceInFile(path, text("a"), text("b")));
    QCOMPARE(contentOf(path), QByteArray("abc"));
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils writeFileContent: cannot open file  ")
                         + path));
}

void tst_FileUtils::digests_data()
{
    const auto row = columns<QByteArray, QString, QString>("content", "md5", "sha1");
    // From RFC 1321 and RFC 3174, and from md5sum and sha1sum.
    row("nothing", "", "d41d8cd98f00b204e9800998ecf8427e",
        "da39a3ee5e6b4b0d3255bfef95601890afd80709");
    row("abc", "abc", "900150983cd24fb0d6963f7d28e17f72",
        "a9993e364706816aba3e25717850c26c9cd0d89d");
    row("a million times a", QByteArray(1000000, 'a'), "7707d6ae4e027c70eea2a935c2296f21",
        "34aa973cd4c4daa4f61eeb2bdbad27316534016f");
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
    QCOMPARE(FileUtils::fileStamp(path), before); // reading changes nothing
#ifndef Q_OS_WIN // which does not check folders that the path leaves again
    QCOMPARE(FileUtils::fileStamp(box.link(text("link"), text("a"))), before);
    QCOMPARE(FileUtils::fileStamp(box(text("x/../a"))), QString());
#endif
    box.folder(text("x"));
    QCOMPARE(FileUtils::fileStamp(box(text("x/../a"))), before);

    // Another file in its place, with the same bytes and time.
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
    const auto row = columns<int>("change");
    row("larger", 0);
    row("same size", 1);
#ifndef Q_OS_WIN // which has none
    row("permissions", 2);
#endif
    row("time set back", 3);
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
    QTRY_VERIFY(alter() != before); // as soon as the clock of the file system advances
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
    const auto row = columns<QString>("folder");
    row("as it is", "folder");
    row("with slash", "folder/");
    row("not clean", "./folder//x/..");
    row("made", "new/one");
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

void tst_FileUtils::writingRightProbe()
{
    SKIP_ON_WINDOWS("tests make no symbolic links there");
    // What is written ends up where a link of that name leads, and only the link is removed.
    Sandbox box;
    const QString target = box.file(text("target"), "something longer that has to go");
    box.folder(text("folder"));
    box.link(text("folder/check_write"), text("../target"));
    QVERIFY(FileUtils::checkWritingRightInFolder(box(text("folder")), QString()));
    QCOMPARE(contentOf(target), QByteArray("data_test"));
    QCOMPARE(treeOf(box(text("folder"))), QStringList());
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
    // All places are filled in one pass.
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
    const auto row = columns<QString>("label");
    row("without label", QString());
    row("with label", "Photos");
}

void tst_FileUtils::writingRightOfNoFolder()
{
    QFETCH(QString, label);
    QString error;
    QVERIFY(!FileUtils::checkWritingRightInFolder(QString(), label, &error));
    QCOMPARE(error, text("Folder is not valid ! (empty)"));
    QVERIFY(!FileUtils::checkWritingRightInFolder(QString(), label));

#ifndef Q_OS_WIN // which ignores blanks at the end of a name
    // A name may consist of blanks: they are not trimmed.
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
    const auto row = columns<QString, QString, QString>("folder", "address", "label");
    row("plain", "/shop", "https://example.org/doc",
        "Your working folder /shop seem not accessible en write, change it or consult <a "
        "href='https://example.org/doc'>Documentation</a>");
    row("line feeds and placeholders", "/a\n%2\nb", "%1",
        "Your working folder /a<br>%2<br>b seem not accessible en write, change it or "
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
    const QString inAFile = box.file(text("file")) + text("/sub");
    FileUtils::checkWritingRightInFolder(inAFile, text("Photos"), &error);
    QCOMPARE(error,
             text("<\nCant write in Photos error=(fileMkPath) Cant create folder '") + inAFile
                 + text("' !"));
    const QString blocked = FileUtils::labelWorkingFolderBlocked(text("/x"), text("doc"));
    QCOMPARE(blocked,
             text("<<br>Your working folder /x seem not accessible en write, change it or consult "
                  "<a href='doc'><<br>Documentation</a>"));
    QCoreApplication::removeTranslator(&marker);
    // Log records are not translated.
    QCOMPARE(log.lines(),
             QStringList(text("warning orvautils FileUtils writeFileContent: cannot open file  ")
                         + folder));
}

void tst_FileUtils::textOfAFullDiskIsTranslated()
{
    SKIP_ON_WINDOWS("there is no limit of files and their size");
    Sandbox box;
    const QString path = box(text("file"));
    Marker marker;
    QCoreApplication::installTranslator(&marker);
    QString error;
    {
        const FileLimit limit(RLIMIT_FSIZE, 4096);
        FileUtils::writeFileContent(path, QByteArray(5000, 'x'), &error);
    }
    QCoreApplication::removeTranslator(&marker);
    QCOMPARE(error, text("<\nCannot write datas (WriteOnly) in ") + path);
}

// Files on the desktop

void tst_FileUtils::iconOfTheApplication_data()
{
    // shipped: the name in the folder of the application's icons
    const auto row = namedByText(columns<QString, QString>("name", "shipped"));
    row("a.pdf", "file.pdf");
    row("/x/y.b/A.B.PDF", "file.pdf");
    row("a.odt", "file.pdf"); // none is shipped for these
}

void tst_FileUtils::iconOfTheApplication()
{
    QFETCH(QString, name);
    QFETCH(QString, shipped);
    // The folder of the application's own data, next to the test program.
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

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "FileUtils.h"

#include "ApplicationUtils.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"

#include <QBuffer>
#include <QFileIconProvider>
#include <QFontMetrics>
#include <QLocale>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <fcntl.h>
#include <limits>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#if defined(__clang__)
// QSKIP() is a macro with optional arguments.
#pragma clang diagnostic ignored "-Wgnu-zero-variadic-macro-arguments"
#endif

namespace {

QString operator""_s(const char* text, size_t size)
{
    return QString::fromUtf8(text, int(size));
}

QLatin1Char operator""_L1(char c)
{
    return QLatin1Char(c);
}

/// A folder of its own for each test, in which anybody may write; gone afterwards.
class Sandbox
{
public:
    Sandbox()
    {
        // Some file systems are reached through a link; what the tests compare is free of links.
        mRoot = QFileInfo(mFolder.path()).canonicalFilePath();
        chmod(mRoot, 0777);
    }

    ~Sandbox()
    {
        // A test that failed may have left a folder that cannot be entered.
        for (const QString& path : qAsConst(mLocked))
            chmod(path, 0777);
    }

    QString operator()(const QString& relative) const { return mRoot + "/"_s + relative; }
    QString root() const { return mRoot; }

    /// Makes a file with its folders and returns its path.
    QString file(const QString& relative, const QByteArray& content = "content") const
    {
        const QString path = (*this)(relative);
        folder(QFileInfo(relative).path());
        QFile out(path);
        if (!out.open(QIODevice::WriteOnly) || out.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    QString folder(const QString& relative) const
    {
        const QString path = QDir::cleanPath((*this)(relative));
        if (!QDir().mkpath(path))
            qFatal("cannot make %s", qPrintable(path));
        return path;
    }

    QString link(const QString& relative, const QString& target) const
    {
        const QString path = (*this)(relative);
        if (symlink(QFile::encodeName(target).constData(), QFile::encodeName(path).constData())
            != 0)
            qFatal("cannot link %s", qPrintable(path));
        return path;
    }

    QString pipe(const QString& relative) const
    {
        const QString path = (*this)(relative);
        if (mkfifo(QFile::encodeName(path).constData(), 0666) != 0)
            qFatal("cannot make the pipe %s", qPrintable(path));
        return path;
    }

    /// Sets the permissions of a path until the sandbox goes.
    void lock(const QString& path, mode_t mode)
    {
        mLocked.prepend(path);
        chmod(path, mode);
    }

    static void chmod(const QString& path, mode_t mode)
    {
        if (::chmod(QFile::encodeName(path).constData(), mode) != 0)
            qFatal("cannot chmod %s", qPrintable(path));
    }

private:
    QTemporaryDir mFolder;
    QString mRoot;
    QStringList mLocked;
};

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
}

/// Every entry below \a folder, sorted: "a/", "a/file=content", "link -> target", "pipe|". Links
/// are not followed.
QStringList treeOf(const QString& folder)
{
    QStringList tree;
    QDirIterator entry(folder,
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (entry.hasNext()) {
        entry.next();
        const QFileInfo info = entry.fileInfo();
        const QString name = entry.filePath().mid(folder.size() + 1);
        char target[4096];
        const ssize_t size =
            readlink(QFile::encodeName(entry.filePath()).constData(), target, sizeof target);
        if (size >= 0)
            tree += name + " -> "_s + QString::fromUtf8(target, int(size));
        else if (info.isDir())
            tree += name + "/"_s;
        else if (info.isFile())
            tree += name + "="_s + QString::fromUtf8(contentOf(entry.filePath()));
        else
            tree += name + "|"_s;
    }
    tree.sort();
    return tree;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

bool exists(const QString& path)
{
    struct stat status;
    return lstat(QFile::encodeName(path).constData(), &status) == 0;
}

/// Makes a folder the current one for as long as it lives.
class CurrentFolder
{
public:
    explicit CurrentFolder(const QString& path) { QDir::setCurrent(path); }
    ~CurrentFolder() { QDir::setCurrent(mPrevious); }

private:
    const QString mPrevious = QDir::currentPath();
};

/// While it lives, this process has less of something than it would have.
class FileLimit
{
public:
    FileLimit(int resource, rlim_t limit)
        : mResource(resource)
    {
        mSignal = signal(SIGXFSZ, SIG_IGN);
        get(&mPrevious);
        struct rlimit lowered = mPrevious;
        lowered.rlim_cur = limit;
        set(lowered);
    }

    ~FileLimit()
    {
        set(mPrevious);
        signal(SIGXFSZ, mSignal);
    }

private:
    Q_DISABLE_COPY(FileLimit)

    // The type of the first argument differs between platforms.
    void get(struct rlimit* limit) const
    {
        if (mResource == RLIMIT_FSIZE)
            getrlimit(RLIMIT_FSIZE, limit);
        else
            getrlimit(RLIMIT_NOFILE, limit);
    }
    void set(const struct rlimit& limit) const
    {
        const int result = mResource == RLIMIT_FSIZE ? setrlimit(RLIMIT_FSIZE, &limit)
                                                     : setrlimit(RLIMIT_NOFILE, &limit);
        if (result != 0)
            qFatal("cannot set a limit");
    }

    const int mResource;
    struct rlimit mPrevious;
    void (*mSignal)(int);
};

/// A device whose reads and writes are counted, and whose reads may dry up.
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

#ifdef ORVAUTILS_PORTABLE_FILE_SYSTEM
const bool portable = true;
#else
const bool portable = false;
#endif

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

    void folderSize();
    void folderSizeOfNothing();
    void folderSizeLeavesOutDsStore();
    void folderSizeFollowsLinks();
    void folderSizeLatestModification();

    void forceCopy_data();
    void forceCopy();
    void forceCopyPermissions_data();
    void forceCopyPermissions();
    void forceCopyPermissionsAreThoseOfQFile();
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

    void removeContentDirectoryGuards_data();
    void removeContentDirectoryGuards();
    void removeContentDirectory_data();
    void removeContentDirectory();
    void removeContentDirectoryLinks();
    void removeContentDirectoryStopsAtAFile();
    void removeContentDirectoryStopsAtAFolder();
    void removeContentDirectoryUnreadable();

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
    void copyDirStopsInAFolder();
    void copyDirUnreadableFolder();
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

    void removeEmptyDirs_data();
    void removeEmptyDirs();
    void removeEmptyDirsLeavesLinks();

    void segmentedCopy_data();
    void segmentedCopy();
    void segmentedCopyStopsOnAnEmptyRead_data();
    void segmentedCopyStopsOnAnEmptyRead();
    void segmentedCopyCountsWhatWasRequested();
    void segmentedCopyLeavesDevicesOpen();

    void listFilesInFileSystem_data();
    void listFilesInFileSystem();
    void listFilesOfNothing();
    void listFilesAppends();
    void listFilesIgnoresWhatIsNeither();
    void listDirectoriesInFileSystem();
    void listDirectoriesOfNothing();
    void listFolderName();

    void listResources();

    void linkLoopsAreWalkedOnce();
    void namesThatAreNoText();
    void folderNamesThatAreNoText();
    void manyLevels();

    void forceDirectoryCreation_data();
    void forceDirectoryCreation();
    void forceDirectoryCreationFailure();

    void removeDirectory();
    void removeDirectoryRefusals_data();
    void removeDirectoryRefusals();
    void removeDirectoryDepth();
    void removeDirectoryDefaultDepth();
    void removeDirectoryOrder();
    void removeDirectoryNotRecursive();
    void removeDirectoryCannotRemoveFile();
    void removeDirectoryCannotRemoveFolder();
    void removeDirectoryLeavesSpecialFiles();
    void removeDirectoryLinks();
    void removeDirectoryOfALink_data();
    void removeDirectoryOfALink();

    void readFileContent_data();
    void readFileContent();
    void readFileContentThatCannotBeOpened_data();
    void readFileContentThatCannotBeOpened();
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
    void digestOfMissingFile();
    void writingRight_data();
    void writingRight();
    void writingRightRefused();
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

// ---- Paths and names as text -------------------------------------------------------------------

void tst_FileUtils::lastPartOfFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("name");
    QTest::newRow("folder with slash") << "/a/b/"_s
                                       << "b/"_s
                                       << "b"_s;
    QTest::newRow("folder without slash") << "/a/b"_s
                                          << "b"_s
                                          << "b"_s;
    QTest::newRow("bare name") << "b"_s
                               << "b"_s
                               << "b"_s;
    QTest::newRow("bare name with slash") << "b/"_s
                                          << "b/"_s
                                          << "b"_s;
    QTest::newRow("longer bare name") << "photos"_s
                                      << "photos"_s
                                      << "photos"_s;
    QTest::newRow("relative") << "a/bc"_s
                              << "bc"_s
                              << "bc"_s;
    QTest::newRow("below the root") << "/a"_s
                                    << "a"_s
                                    << "a"_s;
    QTest::newRow("empty") << QString() << QString() << QString();
    QTest::newRow("root") << "/"_s
                          << "/"_s << QString();
    QTest::newRow("two slashes at the end") << "/a//"_s
                                            << "/"_s << QString();
    QTest::newRow("only two slashes") << "//"_s
                                      << "/"_s << QString();
    QTest::newRow("accents") << "/été/à la mer/"_s
                             << "à la mer/"_s
                             << "à la mer"_s;
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
    QTest::newRow("folder with slash") << "/a/b/"_s
                                       << "/a/"_s;
    QTest::newRow("folder without slash") << "/a/b"_s
                                          << "/a/"_s;
    QTest::newRow("below the root, with slash") << "/a/"_s
                                                << "/"_s;
    QTest::newRow("below the root") << "/a"_s
                                    << "//"_s;
    QTest::newRow("relative with slash") << "a/"_s
                                         << "a/"_s;
    QTest::newRow("deeper relative with slash") << "a/b/"_s
                                                << "a/"_s;
    QTest::newRow("root") << "/"_s
                          << "/"_s;
    QTest::newRow("empty") << QString() << "/"_s;
    QTest::newRow("bare name") << "b"_s << QDir::currentPath() + "/"_s;
    QTest::newRow("relative") << "a/b"_s << QDir::currentPath() + "/a/"_s;
}

void tst_FileUtils::parentFolder()
{
    QFETCH(QString, path);
    QTEST(FileUtils::parentFolder(path), "parent");
}

void tst_FileUtils::elidedFolderThatFits_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("absolute") << "/home/photos/2016"_s;
    QTest::newRow("relative") << "photos/2016/a.jpg"_s;
    QTest::newRow("bare name") << "photos"_s;
    QTest::newRow("with slash") << "photos/"_s;
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
    const QString path = "/home/somebody/pictures/2016/summer/holidays/a.jpg"_s;
    int cut = 0;
    for (int width = metrics.size(0, path).width(); width > 0; --width) {
        const QString elided = metrics.elidedText(path, Qt::ElideLeft, width);
        if (elided == path)
            continue;
        QString passed = path;
        const QString shown = FileUtils::elidedFolder(metrics, passed, width);
        QCOMPARE(passed, path);
        const int slash = elided.indexOf('/'_L1);
        if (slash < 0) {
            QCOMPARE(shown, elided);
            continue;
        }
        // Whole components behind three full stops, as many as the font's own text still holds.
        QVERIFY2(shown.startsWith(".../"_s), qPrintable(shown));
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
    QString folder = "/home/averyveryverylongnameofafolder/"_s;
    bool met = false;
    for (int width = metrics.size(0, folder).width(); width > 0 && !met; --width) {
        const QString elided = metrics.elidedText(folder, Qt::ElideLeft, width);
        if (elided.count('/'_L1) != 1 || elided.startsWith('/'_L1))
            continue;
        met = true;
        QVERIFY(elided.endsWith('/'_L1));
        QCOMPARE(FileUtils::elidedFolder(metrics, folder, width), elided);
    }
    QVERIFY(met);
    // No separator is left at all.
    QString name = "/home/averyveryverylongname"_s;
    const int width = metrics.size(0, "verylongname"_s).width();
    const QString elided = metrics.elidedText(name, Qt::ElideLeft, width);
    QVERIFY(!elided.contains('/'_L1) && elided.size() > 3);
    QCOMPARE(FileUtils::elidedFolder(metrics, name, width), elided);
}

void tst_FileUtils::normalizeFilename_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("portable");
    QTest::newRow("accents, slash and degree") << " Été 2016 / n°3 "_s
                                               << "Ete 2016  n3"_s;
    QTest::newRow("plain") << "Photo_01-(b).JPG"_s
                           << "Photo_01-(b).JPG"_s;
    QTest::newRow("white space becomes one blank") << "\ta \n b\u00a0\u2003c "_s
                                                   << "a b c"_s;
    QTest::newRow("composed") << "\u00e9\u00c7\u00f1"_s
                              << "eCn"_s;
    QTest::newRow("decomposed") << "e\u0301"_s
                                << "e"_s;
    QTest::newRow("no base letter") << "ß\u00f8\u00e6x"_s
                                    << "x"_s;
    QTest::newRow("other alphabets") << "\u65e5\u672c \u03b1\u03b2"_s
                                     << " "_s;
    QTest::newRow("beyond 16 bits") << "a\U0001f600b"_s
                                    << "ab"_s;
    QTest::newRow("other digits") << "\u0663\u0967\u00b2 1"_s
                                  << " 1"_s;
    QTest::newRow("blank left at the end") << "a °"_s
                                           << "a "_s;
    QTest::newRow("nothing left") << "°/*"_s << QString();
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
    QCOMPARE(kept, "()-.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz"_s);
}

/// The rule told in full: decompose, simplify, drop what is not portable.
void tst_FileUtils::normalizeFilenameOfEachCharacter()
{
    const QRegExp dropped("[^a-zA-Z0-9()\\s\\-\\_\\.]"_s);
    for (uint code = 0; code <= 0x10ffff; ++code) {
        const QString name = " A"_s + QString::fromUcs4(&code, 1) + "B  C "_s;
        const QString expected =
            name.normalized(QString::NormalizationForm_D).simplified().remove(dropped);
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
    QVERIFY(QRegExp(FileUtils::regExpFilename()).exactMatch("My photo_(1)-b"_s));
    QVERIFY(!QRegExp(FileUtils::regExpFilename()).exactMatch("a/b"_s));
}

void tst_FileUtils::fileSizeToString_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("french");
    const QStringList bytes{"B"_s, "octets"_s};
    const QStringList kilo{"kB"_s, "Ko"_s};
    const QStringList mega{"MB"_s, "Mo"_s};
    const QStringList giga{"GB"_s, "Go"_s};
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
    QCOMPARE(FileUtils::fileSizeToString(size), value + " "_s + english);
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    QCOMPARE(FileUtils::fileSizeToString(size), value + " "_s + french);
}

void tst_FileUtils::fileSizeToStringFollowsTheDefaultLocale_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("C") << "C"_s
                       << "1.50 kB"_s;
    QTest::newRow("French") << "fr_FR"_s
                            << "1.50 Ko"_s;
    QTest::newRow("Canadian French") << "fr_CA"_s
                                     << "1.50 Ko"_s;
    QTest::newRow("Swiss French") << "fr_CH"_s
                                  << "1.50 Ko"_s;
    QTest::newRow("British") << "en_GB"_s
                             << "1.50 kB"_s;
    QTest::newRow("German, decimal comma") << "de_DE"_s
                                           << "1.50 kB"_s;
    QTest::newRow("Friulian") << "fur_IT"_s
                              << "1.50 kB"_s;
    QTest::newRow("Western Frisian") << "fy_NL"_s
                                     << "1.50 kB"_s;
    QTest::newRow("Arabic, other digits") << "ar_EG"_s
                                          << "1.50 kB"_s;
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
    QTest::newRow("folder") << "folder"_s << true;
    QTest::newRow("with slash") << "folder/"_s << true;
    QTest::newRow("not clean") << "missing/..//folder/."_s << true;
    QTest::newRow("link to a folder") << "link"_s << true;
    QTest::newRow("file") << "file"_s << false;
    QTest::newRow("link to a file") << "fileLink"_s << false;
    QTest::newRow("broken link") << "broken"_s << false;
    QTest::newRow("missing") << "missing"_s << false;
    QTest::newRow("blanks belong to the name") << "folder "_s << false;
}

void tst_FileUtils::folderExists()
{
    QFETCH(QString, relative);
    Sandbox box;
    box.folder("folder"_s);
    box.file("file"_s);
    box.link("link"_s, "folder"_s);
    box.link("fileLink"_s, "file"_s);
    box.link("broken"_s, "nowhere"_s);
    QTEST(FileUtils::folderExists(box(relative)), "expected");
    const CurrentFolder current(box.root());
    QTEST(FileUtils::folderExists(relative), "expected");
    // Blanks are no folder even where one of that name exists.
    box.folder("  "_s);
    QVERIFY(!FileUtils::folderExists(QString()));
    QVERIFY(!FileUtils::folderExists("  "_s));
    QVERIFY(!FileUtils::folderExists(" \t\n"_s));
}

void tst_FileUtils::directoryIsEmpty_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("expected");
    QTest::newRow("nothing") << QString() << true;
    QTest::newRow("file") << "file"_s << false;
    QTest::newRow("folder") << "folder/"_s << false;
    QTest::newRow("hidden file") << ".DS_Store"_s << true;
    QTest::newRow("hidden folder") << ".git/"_s << true;
    QTest::newRow("link to a folder") << "link>/tmp"_s << false;
    QTest::newRow("broken link") << "link>nowhere"_s << true;
    QTest::newRow("pipe") << "pipe|"_s << true;
}

void tst_FileUtils::directoryIsEmpty()
{
    QFETCH(QString, entry);
    QFETCH(bool, expected);
    Sandbox box;
    box.folder("folder"_s);
    if (entry.contains('>'_L1))
        box.link("folder/"_s + entry.section('>'_L1, 0, 0), entry.section('>'_L1, 1));
    else if (entry.endsWith('|'_L1))
        box.pipe("folder/"_s + entry);
    else if (entry.endsWith('/'_L1))
        box.folder("folder/"_s + entry);
    else if (!entry.isEmpty())
        box.file("folder/"_s + entry);
    QCOMPARE(FileUtils::directoryIsEmpty(box("folder"_s)), expected);
    QCOMPARE(FileUtils::directoryIsEmpty(box("folder/"_s)), expected);
    QCOMPARE(FileUtils::directoryIsEmpty(box("x/../folder//"_s)), expected);
    QVERIFY(FileUtils::directoryIsEmpty(box("missing"_s)));
}

void tst_FileUtils::nameValidity_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("fixed");
    QTest::newRow("good") << "a.b"_s
                          << "a.b"_s;
    QTest::newRow("colon") << "a:b"_s
                           << "a_b"_s;
    QTest::newRow("slash and star") << "a/b*c"_s
                                    << "a_b_c"_s;
    QTest::newRow("one for one") << "a//??b"_s
                                 << "a____b"_s;
    QTest::newRow("all forbidden") << "/\\|?<>\":*"_s
                                   << "_________"_s;
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("accents, quote and others") << "d'été %&;,!#[]{}~`^$@+=\t."_s
                                               << "d'été %&;,!#[]{}~`^$@+=\t."_s;
    QTest::newRow("several lines") << "a\nb:c"_s
                                   << "a\nb_c"_s;
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
    const QString file = box.file("file"_s);
    const QStringList before = treeOf(box.root());
    FileUtils::setFileHiddenOnWindows(file);
    FileUtils::setFileHiddenOnWindows(box("missing"_s));
    FileUtils::setFileHiddenOnWindows(QString());
    QCOMPARE(treeOf(box.root()), before);
    QVERIFY(!QFileInfo(file).isHidden());
}

// ---- folderSize --------------------------------------------------------------------------------

void tst_FileUtils::folderSize()
{
    Sandbox box;
    box.file("t/a"_s, QByteArray(1000, 'a'));
    box.file("t/.hidden"_s, QByteArray(200, 'b'));
    box.file("t/sub/c"_s, QByteArray(30, 'c'));
    box.file("t/.hiddenSub/deep/d"_s, QByteArray(4, 'd'));
    box.file("t/empty"_s, QByteArray());
    box.folder("t/emptyFolder"_s);
    box.pipe("t/pipe"_s);
    box.link("t/broken"_s, "nowhere"_s);
    QCOMPARE(FileUtils::folderSize(box("t"_s)), qint64(1234));
    int count = 7;
    QCOMPARE(FileUtils::folderSize(box("t"_s), &count), qint64(1234));
    QCOMPARE(count, 7 + 5);
    QCOMPARE(FileUtils::folderSize(box("x/..//t/"_s), &count, nullptr), qint64(1234));
    QCOMPARE(count, 7 + 5 + 5);
    const CurrentFolder current(box.root());
    QCOMPARE(FileUtils::folderSize("t"_s), qint64(1234));
}

void tst_FileUtils::folderSizeOfNothing()
{
    Sandbox box;
    const QString file = box.file("file"_s);
    int count = 3;
    QDateTime latest;
    for (const QString& path : {QString(), box("missing"_s), file}) {
        QCOMPARE(FileUtils::folderSize(path, &count, &latest), qint64(0));
        QCOMPARE(count, 3);
        QVERIFY(latest.isNull());
    }
    QCOMPARE(FileUtils::folderSize(box.folder("empty"_s), &count, &latest), qint64(0));
    QCOMPARE(count, 3);
    QVERIFY(latest.isNull());
}

void tst_FileUtils::folderSizeLeavesOutDsStore()
{
    Sandbox box;
    box.file("only/.DS_Store"_s);
    box.file("only/sub/.ds_store"_s);
    int count = 3;
    QDateTime latest;
    QCOMPARE(FileUtils::folderSize(box("only"_s), &count, &latest), qint64(0));
    QCOMPARE(count, 3);
    QVERIFY(latest.isNull());
    // A folder of that name is walked, and other hidden files count.
    box.file("other/.DS_Store/a"_s, "12");
    box.file("other/.DS_Store2"_s, "345");
    QCOMPARE(FileUtils::folderSize(box("other"_s), &count), qint64(5));
    QCOMPARE(count, 5);
}

void tst_FileUtils::folderSizeFollowsLinks()
{
    Sandbox box;
    box.file("elsewhere/a"_s, "12345");
    box.file("file"_s, "123");
    box.folder("t"_s);
    box.link("t/folder"_s, "../elsewhere"_s);
    box.link("t/file"_s, "../file"_s);
    int count = 0;
    QCOMPARE(FileUtils::folderSize(box("t"_s), &count), qint64(8));
    QCOMPARE(count, 2);
}

void tst_FileUtils::folderSizeLatestModification()
{
    Sandbox box;
    const auto touch = [](const QString& path, qint64 msecs) {
        struct timespec times[2];
        times[0].tv_sec = times[1].tv_sec = time_t(msecs / 1000);
        times[0].tv_nsec = times[1].tv_nsec = long(msecs % 1000) * 1000000;
        QCOMPARE(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    };
    touch(box.file("t/a"_s), 1000000000123);
    touch(box.file("t/sub/b"_s), 1000000000456);
    touch(box.file("t/sub/c"_s), 1000000000455);
    touch(box.file("t/.DS_Store"_s), 1900000000000);
    const auto at = [](qint64 msecs) { return QDateTime::fromMSecsSinceEpoch(msecs); };

    QDateTime latest;
    FileUtils::folderSize(box("t"_s), nullptr, &latest);
    QCOMPARE(latest, at(1000000000456));
    QCOMPARE(latest, QFileInfo(box("t/sub/b"_s)).lastModified());
    QCOMPARE(latest.timeSpec(), Qt::LocalTime);

    latest = at(1000000000455);
    FileUtils::folderSize(box("t"_s), nullptr, &latest);
    QCOMPARE(latest, at(1000000000456));

    // A later date stays, whatever it is written in.
    latest = at(1000000000457).toUTC();
    FileUtils::folderSize(box("t"_s), nullptr, &latest);
    QCOMPARE(latest, at(1000000000457));
    QCOMPARE(latest.timeSpec(), Qt::UTC);

    // As does the very same one.
    latest = at(1000000000456).toUTC();
    FileUtils::folderSize(box("t"_s), nullptr, &latest);
    QCOMPARE(latest.timeSpec(), Qt::UTC);

    // Files older than 1970.
    touch(box.file("old/a"_s), -86400000);
    latest = QDateTime();
    FileUtils::folderSize(box("old"_s), nullptr, &latest);
    QCOMPARE(latest, at(-86400000));
    latest = at(-86400001);
    FileUtils::folderSize(box("old"_s), nullptr, &latest);
    QCOMPARE(latest, at(-86400000));
}

// ---- forceCopy and fileMkPath ------------------------------------------------------------------

void tst_FileUtils::forceCopy_data()
{
    QTest::addColumn<QString>("destination");
    QTest::newRow("beside") << "copy"_s;
    QTest::newRow("over a file") << "present"_s;
    QTest::newRow("into a folder") << "folder/copy"_s;
    QTest::newRow("into folders to be made") << "x/y/z/copy"_s;
    QTest::newRow("odd name") << "x/a \"é%1\n$b"_s;
}

void tst_FileUtils::forceCopy()
{
    QFETCH(QString, destination);
    Sandbox box;
    const QString source = box.file("source"_s, QByteArray("a\0b\r\n", 5));
    box.file("present"_s, "something longer that has to go");
    box.folder("folder"_s);
    LogCapture log;
    QVERIFY(FileUtils::forceCopy(source, box(destination)));
    QCOMPARE(contentOf(box(destination)), QByteArray("a\0b\r\n", 5));
    QCOMPARE(contentOf(source), QByteArray("a\0b\r\n", 5));
    // Nothing temporary stays beside the copy.
    const QFileInfo info(box(destination));
    QVERIFY(info.dir().entryList({"*temp*"_s}, QDir::AllEntries | QDir::Hidden).isEmpty());
    QCOMPARE(log.lines(), QStringList());
    // And once more, now over itself.
    QVERIFY(FileUtils::forceCopy(box.file("source"_s, "new"), box(destination)));
    QCOMPARE(contentOf(box(destination)), QByteArray("new"));
}

void tst_FileUtils::forceCopyPermissions_data()
{
    QTest::addColumn<int>("mode");
    for (const int mode : {0644, 0600, 0755, 0666, 0777, 0744, 0640})
        QTest::newRow(qPrintable(QString::number(mode, 8))) << mode;
}

void tst_FileUtils::forceCopyPermissions()
{
    QFETCH(int, mode);
    Sandbox box;
    const QString source = box.file("source"_s);
    Sandbox::chmod(source, mode_t(mode));
    const mode_t before = umask(077);
    const bool copied = FileUtils::forceCopy(source, box("copy"_s));
    umask(before);
    QVERIFY(copied);
    QCOMPARE(QFile::permissions(box("copy"_s)), QFile::permissions(source));
    struct stat status;
    QCOMPARE(stat(QFile::encodeName(box("copy"_s)).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 07777), mode);
}

void tst_FileUtils::forceCopyPermissionsAreThoseOfQFile()
{
    Sandbox box;
    const QString source = box.file("source"_s);
    // Every right of the owner beside some, which decide nothing, of the others.
    for (mode_t index = 0; index < 32; ++index) {
        const mode_t others[] = {0, 044, 066, 011};
        Sandbox::chmod(source, (index % 8) << 6 | others[index / 8]);
        // Who may not read it sees it refused by both.
        const bool expected = QFile::copy(source, box("expected"_s));
        LogCapture log;
        QCOMPARE(FileUtils::forceCopy(source, box("copy"_s)), expected);
        if (expected) {
            struct stat expectedStatus;
            struct stat status;
            QCOMPARE(stat(QFile::encodeName(box("expected"_s)).constData(), &expectedStatus), 0);
            QCOMPARE(stat(QFile::encodeName(box("copy"_s)).constData(), &status), 0);
            QCOMPARE(status.st_mode, expectedStatus.st_mode);
            QVERIFY(QFile::remove(box("expected"_s)));
            QVERIFY(QFile::remove(box("copy"_s)));
        }
    }
}

void tst_FileUtils::forceCopyMissingSource()
{
    Sandbox box;
    box.file("destination"_s, "kept");
    box.link("broken"_s, "nowhere"_s);
    for (const QString& name : {"missing"_s, "broken"_s}) {
        LogCapture log;
        QVERIFY(!FileUtils::forceCopy(box(name), box("destination"_s)));
        QCOMPARE(log.lines(),
                 QStringList("warning orvautils FileUtils forceCopy: "_s + box(name)
                             + "  est introuvable !! (forceCopy)"_s));
        QCOMPARE(contentOf(box("destination"_s)), QByteArray("kept"));
    }
}

void tst_FileUtils::forceCopyCannotRemove()
{
    Sandbox box;
    const QString source = box.file("source"_s);
    const QString folder = box.folder("folder"_s);
    box.file("locked/file"_s, "kept");
    box.lock(box("locked"_s), 0555);
    const OrdinaryUser user;
    for (const QString& destination : {folder, box("locked/file"_s)}) {
        LogCapture log;
        QVERIFY(!FileUtils::forceCopy(source, destination));
        QCOMPARE(log.lines(),
                 QStringList(
                     "warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't remove  "_s
                     + destination));
    }
    QCOMPARE(contentOf(box("locked/file"_s)), QByteArray("kept"));
}

void tst_FileUtils::forceCopyCannotCopy()
{
    Sandbox box;
    const QString source = box.file("source"_s);
    const QString unreadable = box.file("unreadable"_s);
    Sandbox::chmod(unreadable, 0);
    const QString folder = box.folder("folder"_s);
    box.folder("locked"_s);
    box.lock(box("locked"_s), 0555);
    box.file("notAFolder"_s);
    const QString broken = box.link("broken"_s, "nowhere/at/all"_s);
    const QVector<QPair<QString, QString>> pairs{
        {source, box("locked/copy"_s)},
        {source, box("notAFolder/copy"_s)},
        {source, broken},
        {unreadable, box("copy"_s)},
        {folder, box("copy"_s)},
    };
    const OrdinaryUser user;
    for (const auto& pair : pairs) {
        LogCapture log;
        QVERIFY(!FileUtils::forceCopy(pair.first, pair.second));
        // 14 is QFileDevice::CopyError.
        QCOMPARE(
            log.lines(),
            QStringList("warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't copy "_s
                        + pair.first + " "_s + pair.second + "  error= 14"_s));
    }
    QVERIFY(!exists(box("copy"_s)));
    QVERIFY(exists(broken));
}

void tst_FileUtils::forceCopyLeavesNothingBehindAFailure()
{
    // The disk takes the first piece of the file and refuses the rest.
    Sandbox box;
    const QString source = box.file("source"_s, QByteArray(100000, 'a'));
    for (const QString& destination : {"copy"_s, "folder/copy"_s}) {
        LogCapture log;
        {
            const FileLimit limit(RLIMIT_FSIZE, 50000);
            QVERIFY(!FileUtils::forceCopy(source, box(destination)));
        }
        QCOMPARE(
            log.lines(),
            QStringList("warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't copy "_s
                        + source + " "_s + box(destination) + "  error= 14"_s));
    }
    QCOMPARE(
        sorted(QDir(box.root()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)),
        QStringList({"folder"_s, "source"_s}));
    QVERIFY(treeOf(box("folder"_s)).isEmpty());
}

void tst_FileUtils::forceCopyOntoItself_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("destination");
    QTest::newRow("same path") << "file"_s
                               << "file"_s;
    QTest::newRow("other spelling") << "file"_s
                                    << "folder/..//file"_s;
    QTest::newRow("destination is a link to it") << "file"_s
                                                 << "link"_s;
    QTest::newRow("source is a link to it") << "link"_s
                                            << "file"_s;
    QTest::newRow("link onto itself") << "link"_s
                                      << "link"_s;
    QTest::newRow("through a folder link") << "file"_s
                                           << "here/file"_s;
    QTest::newRow("link to a link") << "linkToLink"_s
                                    << "file"_s;
    QTest::newRow("hard link") << "file"_s
                               << "hard"_s;
}

void tst_FileUtils::forceCopyOntoItself()
{
    QFETCH(QString, source);
    QFETCH(QString, destination);
    Sandbox box;
    box.file("file"_s, "only copy");
    box.folder("folder"_s);
    box.link("link"_s, "file"_s);
    box.link("linkToLink"_s, box("link"_s));
    box.link("here"_s, "."_s);
    QCOMPARE(::link(QFile::encodeName(box("file"_s)).constData(),
                    QFile::encodeName(box("hard"_s)).constData()),
             0);
    const QStringList before = treeOf(box.root());
    LogCapture log;
    QVERIFY(FileUtils::forceCopy(box(source), box(destination)));
    QCOMPARE(treeOf(box.root()), before);
    QCOMPARE(contentOf(box("file"_s)), QByteArray("only copy"));
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::forceCopyReplacesALink()
{
    Sandbox box;
    const QString source = box.file("source"_s, "new");
    const QString sentinel = box.file("sentinel"_s, "kept");
    box.folder("folder"_s);
    for (const QString& target : {"sentinel"_s, "folder"_s}) {
        const QString link = box.link("link"_s, target);
        QVERIFY(FileUtils::forceCopy(source, link));
        QVERIFY(!QFileInfo(link).isSymLink());
        QCOMPARE(contentOf(link), QByteArray("new"));
        QVERIFY(QFile::remove(link));
    }
    QCOMPARE(contentOf(sentinel), QByteArray("kept"));
}

void tst_FileUtils::forceCopyLargeFile()
{
    Sandbox box;
    QByteArray content;
    for (int i = 0; content.size() < 5000011; ++i)
        content += QByteArray::number(i);
    QVERIFY(FileUtils::forceCopy(box.file("source"_s, content), box("copy"_s)));
    QVERIFY(contentOf(box("copy"_s)) == content);
    QVERIFY(FileUtils::forceCopy(box.file("source"_s, QByteArray()), box("copy"_s)));
    QCOMPARE(QFileInfo(box("copy"_s)).size(), qint64(0));
}

void tst_FileUtils::forceCopySparesTheDestination_data()
{
    QTest::addColumn<QString>("source");
    QTest::newRow("folder") << "folder"_s;
    QTest::newRow("unreadable") << "unreadable"_s;
    QTest::newRow("pipe, which would never end") << "pipe"_s;
}

void tst_FileUtils::forceCopySparesTheDestination()
{
    QFETCH(QString, source);
    Sandbox box;
    box.folder("folder"_s);
    Sandbox::chmod(box.file("unreadable"_s), 0);
    box.pipe("pipe"_s);
    box.file("destination"_s, "kept");
    const OrdinaryUser user;
    for (const QString& destination : {"destination"_s, "new"_s}) {
        LogCapture log;
        QVERIFY(!FileUtils::forceCopy(box(source), box(destination)));
        QCOMPARE(
            log.lines(),
            QStringList("warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't copy "_s
                        + box(source) + " "_s + box(destination) + "  error= 14"_s));
    }
    QCOMPARE(contentOf(box("destination"_s)), QByteArray("kept"));
    QVERIFY(!exists(box("new"_s)));
}

void tst_FileUtils::forceCopyResource()
{
    Sandbox box;
    QVERIFY(FileUtils::forceCopy(":/tree/a.txt"_s, box("x/a.txt"_s)));
    QCOMPARE(contentOf(box("x/a.txt"_s)), QByteArray("a resource\n"));
    QVERIFY(FileUtils::forceCopy(":/tree/sub/b.txt"_s, box("x/a.txt"_s)));
    QCOMPARE(contentOf(box("x/a.txt"_s)), QByteArray("another\n"));
    // A file of the disk may have a colon in its name as well.
    const CurrentFolder current(box.root());
    box.file("a:b"_s, "colon");
    QVERIFY(FileUtils::forceCopy("a:b"_s, "c:d"_s));
    QCOMPARE(contentOf(box("c:d"_s)), QByteArray("colon"));
}

void tst_FileUtils::fileMkPath()
{
    Sandbox box;
    QString error = "untouched"_s;
    QVERIFY(FileUtils::fileMkPath(box("a/b/c/file.txt"_s), &error));
    QVERIFY(QFileInfo(box("a/b/c"_s)).isDir());
    QVERIFY(!exists(box("a/b/c/file.txt"_s)));
    QVERIFY(FileUtils::fileMkPath(box("a/b/c/file.txt"_s), &error));
    QVERIFY(FileUtils::fileMkPath(box("a/b/d/"_s)));
    QVERIFY(QFileInfo(box("a/b/d"_s)).isDir());
    const CurrentFolder current(box.root());
    QVERIFY(FileUtils::fileMkPath("e/f"_s, &error));
    QVERIFY(QFileInfo(box("e"_s)).isDir());
    QVERIFY(FileUtils::fileMkPath("file"_s, &error));
    QCOMPARE(error, "untouched"_s);
}

void tst_FileUtils::fileMkPathFailure()
{
    Sandbox box;
    box.file("file"_s);
    LogCapture log;
    QString error;
    QVERIFY(!FileUtils::fileMkPath(box("file/sub/a"_s), &error));
    QCOMPARE(error, "(fileMkPath) Cant create folder '"_s + box("file/sub"_s) + "' !"_s);
    QVERIFY(!FileUtils::fileMkPath(box("file/sub/a"_s)));
    QVERIFY(!FileUtils::fileMkPath(box("file/sub/a"_s), nullptr));
    const CurrentFolder current(box.root());
    QVERIFY(!FileUtils::fileMkPath("file/%1/a"_s, &error));
    QCOMPARE(error, "(fileMkPath) Cant create folder '"_s + box("file/%1"_s) + "' !"_s);
    QCOMPARE(log.lines(), QStringList());
}

// ---- removeContentDirectory --------------------------------------------------------------------

void tst_FileUtils::removeContentDirectoryGuards_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("empty") << QString();
    QTest::newRow("current folder") << "."_s;
    QTest::newRow("parent folder") << ".."_s;
    QTest::newRow("bare name") << "folder"_s;
    QTest::newRow("missing") << "./missing"_s;
    QTest::newRow("file") << "./file"_s;
}

void tst_FileUtils::removeContentDirectoryGuards()
{
    QFETCH(QString, path);
    Sandbox box;
    box.file("t/file"_s);
    box.file("t/folder/file"_s);
    const QStringList before = treeOf(box.root());
    const CurrentFolder current(box("t"_s));
    LogCapture log;
    QVERIFY(!FileUtils::removeContentDirectory(path, true));
    QVERIFY(!FileUtils::removeContentDirectory(path, false));
    QCOMPARE(treeOf(box.root()), before);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::removeContentDirectory_data()
{
    QTest::addColumn<bool>("recursive");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("recursive") << true << QStringList();
    QTest::newRow("not recursive")
        << false
        << QStringList({".hiddenSub/"_s, ".hiddenSub/d=4"_s, "sub/"_s, "sub/c=3"_s, "sub/deep/"_s});
}

void tst_FileUtils::removeContentDirectory()
{
    QFETCH(bool, recursive);
    QFETCH(QStringList, left);
    for (const QString& spelling : {"t"_s, "t/"_s, "./t"_s}) {
        Sandbox box;
        box.file("t/a"_s, "1");
        box.file("t/.hidden"_s, "2");
        box.file("t/sub/c"_s, "3");
        box.folder("t/sub/deep"_s);
        box.file("t/.hiddenSub/d"_s, "4");
        const CurrentFolder current(box.root());
        LogCapture log;
        const QString path = spelling.startsWith('.'_L1) ? spelling : box(spelling);
        QVERIFY(FileUtils::removeContentDirectory(path, recursive));
        QCOMPARE(treeOf(box("t"_s)), left);
        QVERIFY(QFileInfo(box("t"_s)).isDir());
        QCOMPARE(log.lines(), QStringList());
    }
}

void tst_FileUtils::removeContentDirectoryLinks()
{
    for (const bool recursive : {true, false}) {
        Sandbox box;
        box.file("outside/sentinel"_s, "kept");
        box.file("sentinel"_s, "kept");
        const QStringList outside = treeOf(box("outside"_s));
        box.folder("t"_s);
        box.link("t/toFolder"_s, "../outside"_s);
        box.link("t/toFile"_s, "../sentinel"_s);
        box.link("t/broken"_s, "nowhere"_s);
        box.link("t/loop"_s, "."_s);
        box.link("t/self"_s, "self"_s);
        if (recursive) {
            box.folder("t/sub"_s);
            box.link("t/sub/toFolder"_s, "../../outside"_s);
            box.link("t/sub/toTop"_s, ".."_s);
        }
        QVERIFY(FileUtils::removeContentDirectory(box("t"_s), recursive));
        QCOMPARE(treeOf(box("t"_s)), QStringList());
        QCOMPARE(treeOf(box("outside"_s)), outside);
        QCOMPARE(contentOf(box("sentinel"_s)), QByteArray("kept"));
    }
}

void tst_FileUtils::removeContentDirectoryStopsAtAFile()
{
    Sandbox box;
    box.file("t/a"_s);
    box.file("t/b"_s);
    box.lock(box("t"_s), 0555);
    const OrdinaryUser user;
    LogCapture log;
    QVERIFY(!FileUtils::removeContentDirectory(box("t"_s), true));
    // One record: the first file, whichever it is, ends it.
    QCOMPARE(log.lines().size(), 1);
    const QString start =
        "critical orvautils FileUtils removeContentDirectory: enable to removeRecursively "_s;
    QVERIFY2(log.lines().at(0) == start + box("t/a"_s) || log.lines().at(0) == start + box("t/b"_s),
             qPrintable(log.lines().at(0)));
    QCOMPARE(treeOf(box("t"_s)).size(), 2);
}

void tst_FileUtils::removeContentDirectoryStopsAtAFolder()
{
    Sandbox box;
    box.file("t/sub/a"_s);
    Sandbox::chmod(box("t"_s), 0777);
    box.lock(box("t/sub"_s), 0555);
    const OrdinaryUser user;
    LogCapture log;
    QVERIFY(FileUtils::removeContentDirectory(box("t"_s), false));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(!FileUtils::removeContentDirectory(box("t"_s), true));
    QCOMPARE(
        log.lines(),
        QStringList(
            "critical orvautils FileUtils removeContentDirectory: enable to removeRecursively "_s
            + box("t/sub"_s)));
}

void tst_FileUtils::removeContentDirectoryUnreadable()
{
    if (portable && getuid() == 0)
        QSKIP("QDir answers for the user who started the process, and root reads every folder");
    Sandbox box;
    box.file("t/a"_s);
    box.lock(box("t"_s), 0333);
    LogCapture log;
    {
        const OrdinaryUser user;
        QVERIFY(!FileUtils::removeContentDirectory(box("t"_s), true));
    }
    QCOMPARE(
        log.lines(),
        QStringList(
            "critical orvautils FileUtils removeContentDirectory: enable to removeRecursively "_s
            + box("t"_s)));
    QVERIFY(exists(box("t/a"_s)));
}

// ---- copyDir -----------------------------------------------------------------------------------

void tst_FileUtils::copyDir()
{
    Sandbox box;
    box.file("s/a"_s, "1");
    box.file("s/.hidden"_s, "2");
    box.file("s/.DS_Store"_s, "3");
    box.file("s/sub/deep/b"_s, "4");
    box.file("s/.git/c"_s, QByteArray());
    box.folder("s/empty"_s);
    box.file("s/naïve \"%1\""_s, "5");
    Sandbox::chmod(box("s/a"_s), 0640);
    const QStringList source = treeOf(box("s"_s));
    QCOMPARE(source.size(), 10);
    LogCapture log;
    for (const bool merge : {false, true}) {
        const QString destination = box("new/%1/d"_s.arg(merge));
        QVERIFY(FileUtils::copyDir(box("s"_s), destination, merge));
        QCOMPARE(treeOf(destination), source);
        QCOMPARE(QFile::permissions(destination + "/a"_s), QFile::permissions(box("s/a"_s)));
    }
    QVERIFY(FileUtils::copyDir(box("s/"_s), box("slashes/"_s), false));
    QCOMPARE(treeOf(box("slashes"_s)), source);
    QCOMPARE(treeOf(box("s"_s)), source);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::copyDirMergeDecides_data()
{
    QTest::addColumn<bool>("merge");
    QTest::addColumn<QStringList>("result");
    QTest::newRow("exact copy") << false << QStringList({"a=new"_s, "sub/"_s, "sub/b=new"_s});
    QTest::newRow("merged") << true
                            << QStringList({".mine=old"_s, "a=new"_s, "mine/"_s, "mine/c=old"_s,
                                            "sub/"_s, "sub/b=new"_s, "sub/mine=old"_s});
}

void tst_FileUtils::copyDirMergeDecides()
{
    QFETCH(bool, merge);
    Sandbox box;
    box.file("s/a"_s, "new");
    box.file("s/sub/b"_s, "new");
    box.file("d/a"_s, "old");
    box.file("d/.mine"_s, "old");
    box.file("d/sub/b"_s, "old");
    box.file("d/sub/mine"_s, "old");
    box.file("d/mine/c"_s, "old");
    QVERIFY(FileUtils::copyDir(box("s"_s), box("d"_s), merge));
    QTEST(treeOf(box("d"_s)), "result");
    QCOMPARE(treeOf(box("s"_s)), QStringList({"a=new"_s, "sub/"_s, "sub/b=new"_s}));
}

void tst_FileUtils::copyDirNestedFoldersAreMerged()
{
    // A link in the destination to a folder is a folder that is present: it is merged into.
    Sandbox box;
    box.file("s/sub/a"_s, "new");
    box.folder("d"_s);
    box.file("shared/kept"_s, "old");
    box.link("d/sub"_s, "../shared"_s);
    QVERIFY(FileUtils::copyDir(box("s"_s), box("d"_s), true));
    QCOMPARE(treeOf(box("shared"_s)), QStringList({"a=new"_s, "kept=old"_s}));
}

void tst_FileUtils::copyDirMissingSource_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << "missing"_s;
    QTest::newRow("file") << "file"_s;
    QTest::newRow("broken link") << "broken"_s;
}

void tst_FileUtils::copyDirMissingSource()
{
    QFETCH(QString, name);
    Sandbox box;
    box.file("file"_s);
    box.link("broken"_s, "nowhere"_s);
    box.file("d/kept"_s, "old");
    const QStringList before = treeOf(box.root());
    for (const bool merge : {false, true}) {
        LogCapture log;
        QVERIFY(!FileUtils::copyDir(box(name), box("d"_s), merge));
        QCOMPARE(log.lines(),
                 QStringList("critical orvautils FileUtils copyDir: "_s + box(name)
                             + " Doesnt exists"_s));
        QCOMPARE(treeOf(box.root()), before);
    }
    // The current folder is not meant by an empty path.
    const CurrentFolder current(box("d"_s));
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(QString(), box("copy"_s), false));
    QCOMPARE(log.lines(), QStringList("critical orvautils FileUtils copyDir:  Doesnt exists"_s));
    QCOMPARE(treeOf(box.root()), before);
}

void tst_FileUtils::copyDirCannotRemove()
{
    Sandbox box;
    box.file("s/a"_s);
    box.file("d/sub/kept"_s, "old");
    Sandbox::chmod(box("d"_s), 0777);
    box.lock(box("d/sub"_s), 0555);
    const OrdinaryUser user;
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box("s"_s), box("d"_s), false));
    QCOMPARE(log.lines(),
             QStringList("warning orvautils FileUtils copyDir: unable to removeRecursively "_s
                         + box("d"_s)));
    QCOMPARE(treeOf(box("d"_s)), QStringList({"sub/"_s, "sub/kept=old"_s}));
}

void tst_FileUtils::copyDirCannotMkdir_data()
{
    QTest::addColumn<QString>("destination");
    QTest::newRow("a file is in the way") << "file"_s;
    QTest::newRow("a parent is a file") << "file/d"_s;
    QTest::newRow("not permitted") << "locked/x/d"_s;
    QTest::newRow("broken link") << "broken"_s;
}

void tst_FileUtils::copyDirCannotMkdir()
{
    QFETCH(QString, destination);
    Sandbox box;
    box.file("s/a"_s, "new");
    box.file("file"_s, "kept");
    box.link("broken"_s, "nowhere/at/all"_s);
    box.folder("locked"_s);
    box.lock(box("locked"_s), 0555);
    const QStringList before = treeOf(box.root());
    const OrdinaryUser user;
    for (const bool merge : {false, true}) {
        LogCapture log;
        QVERIFY(!FileUtils::copyDir(box("s"_s), box(destination), merge));
        QCOMPARE(log.lines(),
                 QStringList("warning orvautils FileUtils copyDir: unable to mkdir "_s
                             + box(destination)));
        QCOMPARE(treeOf(box.root()), before);
    }
}

void tst_FileUtils::copyDirStopsAtAFile()
{
    Sandbox box;
    box.file("s/a"_s, "new");
    // A folder cannot be overwritten by a file.
    box.file("d/a/kept"_s, "old");
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box("s"_s), box("d"_s), true));
    QCOMPARE(
        log.lines(),
        QStringList({"warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't remove "
                     " "_s
                         + box("d/a"_s),
                     "warning orvautils FileUtils copyDir: unable to copy "_s + box("s/a"_s)
                         + " to "_s + box("d/a"_s)}));
    QCOMPARE(treeOf(box("d"_s)), QStringList({"a/"_s, "a/kept=old"_s}));
}

void tst_FileUtils::copyDirStopsInAFolder()
{
    Sandbox box;
    box.file("s/sub/deep/a"_s, "new");
    box.file("d/sub/deep"_s, "old");
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box("s"_s), box("d"_s), true));
    // The level that failed has logged, the ones above it add nothing.
    QCOMPARE(log.lines(),
             QStringList("warning orvautils FileUtils copyDir: unable to mkdir "_s
                         + box("d/sub/deep"_s)));
    QCOMPARE(treeOf(box("d"_s)), QStringList({"sub/"_s, "sub/deep=old"_s}));

    // What was copied before stays.
    Sandbox::chmod(box.file("t/x/unreadable"_s), 0);
    const OrdinaryUser user;
    LogCapture second;
    QVERIFY(!FileUtils::copyDir(box("t"_s), box("e"_s), false));
    QCOMPARE(second.lines(),
             QStringList(
                 {"warning orvautils FileUtils forceCopy: FileUtils::forceCopy can't copy "_s
                      + box("t/x/unreadable"_s) + " "_s + box("e/x/unreadable"_s) + "  error= 14"_s,
                  "warning orvautils FileUtils copyDir: unable to copy "_s + box("t/x/unreadable"_s)
                      + " to "_s + box("e/x/unreadable"_s)}));
    QCOMPARE(treeOf(box("e"_s)), QStringList("x/"_s));
}

void tst_FileUtils::copyDirUnreadableFolder()
{
    // A folder that cannot be listed is no empty folder.
    if (portable && getuid() == 0)
        QSKIP("QDir answers for the user who started the process, and root reads every folder");
    Sandbox box;
    box.file("s/sub/a"_s);
    box.lock(box("s/sub"_s), 0);
    LogCapture log;
    {
        const OrdinaryUser user;
        QVERIFY(!FileUtils::copyDir(box("s"_s), box("d"_s), false));
    }
    QCOMPARE(log.lines(),
             QStringList("warning orvautils FileUtils copyDir: unable to copy "_s + box("s/sub"_s)
                         + " to "_s + box("d/sub"_s)));
}

void tst_FileUtils::copyDirOntoItself_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("destination");
    QTest::newRow("itself") << "p/s"_s
                            << "p/s"_s;
    QTest::newRow("itself, other spelling") << "p/s"_s
                                            << "p/x/..//s/"_s;
    QTest::newRow("itself through a link") << "p/s"_s
                                           << "link"_s;
    QTest::newRow("itself from a link") << "link"_s
                                        << "p/s"_s;
    QTest::newRow("link onto itself") << "link"_s
                                      << "link"_s;
    QTest::newRow("inside it, present") << "p/s"_s
                                        << "p/s/sub"_s;
    QTest::newRow("inside it, to be made") << "p/s"_s
                                           << "p/s/sub/new/deeper"_s;
    QTest::newRow("inside it through a link") << "p/s"_s
                                              << "link/new"_s;
    QTest::newRow("its parent") << "p/s"_s
                                << "p"_s;
    QTest::newRow("further up") << "p/s/sub"_s
                                << "p"_s;
    QTest::newRow("its parent through a link") << "p/s"_s
                                               << "parent"_s;
    QTest::newRow("the place of the link that is copied") << "holder/link"_s
                                                          << "holder"_s;
}

void tst_FileUtils::copyDirOntoItself()
{
    QFETCH(QString, source);
    QFETCH(QString, destination);
    Sandbox box;
    box.file("p/s/a"_s, "only copy");
    box.file("p/s/sub/b"_s, "only copy");
    box.file("p/c"_s, "only copy");
    box.file("holder/d"_s, "only copy");
    box.link("link"_s, "p/s"_s);
    box.link("parent"_s, "p"_s);
    box.link("holder/link"_s, "../p/s"_s);
    const QStringList before = treeOf(box.root());
    for (const bool merge : {false, true}) {
        LogCapture log;
        QVERIFY(!FileUtils::copyDir(box(source), box(destination), merge));
        QCOMPARE(treeOf(box.root()), before);
        QCOMPARE(log.lines(),
                 QStringList("warning orvautils FileUtils copyDir: unable to copy "_s + box(source)
                             + " to "_s + QDir::cleanPath(box(destination))));
    }
}

void tst_FileUtils::copyDirBesideItself()
{
    // A name that merely begins like the source's is another folder.
    Sandbox box;
    box.file("s/a"_s, "1");
    QVERIFY(FileUtils::copyDir(box("s"_s), box("s2"_s), false));
    QVERIFY(FileUtils::copyDir(box("s2"_s), box("s"_s), false));
    QCOMPARE(treeOf(box.root()), QStringList({"s/"_s, "s/a=1"_s, "s2/"_s, "s2/a=1"_s}));
}

void tst_FileUtils::copyDirFollowsLinks()
{
    Sandbox box;
    box.file("outside/a"_s, "1");
    box.file("file"_s, "2");
    box.folder("s"_s);
    box.link("s/folder"_s, "../outside"_s);
    box.link("s/file"_s, "../file"_s);
    box.link("s/broken"_s, "nowhere"_s);
    box.pipe("s/pipe"_s);
    QVERIFY(FileUtils::copyDir(box("s"_s), box("d"_s), false));
    QCOMPARE(treeOf(box("d"_s)), QStringList({"file=2"_s, "folder/"_s, "folder/a=1"_s}));
}

void tst_FileUtils::copyDirDeletesLinksAsLinks()
{
    Sandbox box;
    box.file("outside/sentinel"_s, "kept");
    box.file("s/a"_s, "new");
    box.folder("d/sub"_s);
    box.link("d/toFolder"_s, "../outside"_s);
    box.link("d/sub/toFile"_s, "../../outside/sentinel"_s);
    box.link("d/sub/loop"_s, ".."_s);
    box.link("d/broken"_s, "nowhere"_s);
    QVERIFY(FileUtils::copyDir(box("s"_s), box("d"_s), false));
    QCOMPARE(treeOf(box("d"_s)), QStringList("a=new"_s));
    QCOMPARE(treeOf(box("outside"_s)), QStringList("sentinel=kept"_s));
}

void tst_FileUtils::copyDirReplacesALink()
{
    Sandbox box;
    box.file("outside/sentinel"_s, "kept");
    box.file("s/a"_s, "new");
    box.link("d"_s, "outside"_s);
    QVERIFY(FileUtils::copyDir(box("s"_s), box("d/"_s), false));
    QVERIFY(!QFileInfo(box("d"_s)).isSymLink());
    QCOMPARE(treeOf(box("d"_s)), QStringList("a=new"_s));
    QCOMPARE(treeOf(box("outside"_s)), QStringList("sentinel=kept"_s));
    // With merge the link is an existing folder.
    box.link("m"_s, "outside"_s);
    QVERIFY(FileUtils::copyDir(box("s"_s), box("m"_s), true));
    QCOMPARE(treeOf(box("outside"_s)), QStringList({"a=new"_s, "sentinel=kept"_s}));
}

void tst_FileUtils::copyDirLinkIntoTheSource()
{
    // A folder of the destination is a link into the source: copying through it would overwrite
    // what is still to be copied.
    Sandbox box;
    box.file("s/x/f"_s, "x");
    box.file("s/y/f"_s, "y");
    box.folder("d"_s);
    box.link("d/x"_s, "../s/y"_s);
    const QStringList source = treeOf(box("s"_s));
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box("s"_s), box("d"_s), true));
    QCOMPARE(treeOf(box("s"_s)), source);
    QCOMPARE(log.lines(),
             QStringList("warning orvautils FileUtils copyDir: unable to copy "_s + box("s/x"_s)
                         + " to "_s + box("d/x"_s)));
}

void tst_FileUtils::copyDirLinkAroundBoth()
{
    // A link in the source leads to a folder that holds the destination: a copy without an end.
    Sandbox box;
    box.file("p/s/a"_s, "1");
    box.link("p/s/up"_s, ".."_s);
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box("p/s"_s), box("p/d"_s), false));
    QCOMPARE(log.lines(),
             QStringList("warning orvautils FileUtils copyDir: unable to copy "_s + box("p/s/up"_s)
                         + " to "_s + box("p/d/up"_s)));
    QVERIFY(!exists(box("p/d/up"_s)));
}

void tst_FileUtils::copyDirRelativePaths()
{
    Sandbox box;
    box.file("s/sub/a"_s, "1");
    const CurrentFolder current(box("s"_s));
    QVERIFY(FileUtils::copyDir("sub"_s, "../d/./e"_s, false));
    QCOMPARE(treeOf(box("d"_s)), QStringList({"e/"_s, "e/a=1"_s}));
    LogCapture log;
    QVERIFY(!FileUtils::copyDir("missing"_s, "d"_s, false));
    QVERIFY(!FileUtils::copyDir("."_s, "new"_s, false));
    QCOMPARE(log.lines(),
             QStringList({"critical orvautils FileUtils copyDir: "_s + box("s/missing"_s)
                              + " Doesnt exists"_s,
                          "warning orvautils FileUtils copyDir: unable to copy "_s + box("s"_s)
                              + " to "_s + box("s/new"_s)}));
}

void tst_FileUtils::copyDirEmptyDestination()
{
    Sandbox box;
    box.file("s/a"_s, "new");
    box.file("here/kept"_s, "old");
    const QStringList before = treeOf(box.root());
    const CurrentFolder current(box("here"_s));
    for (const bool merge : {false, true}) {
        LogCapture log;
        QVERIFY(!FileUtils::copyDir(box("s"_s), QString(), merge));
        QCOMPARE(log.lines(),
                 QStringList("warning orvautils FileUtils copyDir: unable to mkdir "_s));
    }
    QCOMPARE(treeOf(box.root()), before);
}

void tst_FileUtils::copyDirResources()
{
    Sandbox box;
    const CurrentFolder current(box.folder("d"_s));
    for (const bool merge : {true, false}) {
        QVERIFY(FileUtils::copyDir(":/tree"_s, box("d"_s), merge));
        QCOMPARE(treeOf(box("d"_s)),
                 QStringList({"a.txt=a resource\n"_s, "sub/"_s, "sub/b.txt=another\n"_s}));
    }
}

// ---- removeEmptyDirs ---------------------------------------------------------------------------

void tst_FileUtils::removeEmptyDirs_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<bool>("recursive");
    QTest::addColumn<int>("removed");
    QTest::addColumn<QStringList>("left");
    const QStringList empties{"t/a/b/"_s, "t/a/c/"_s, "t/d/"_s};
    QTest::newRow("empty folders") << empties << true << 5 << QStringList();
    QTest::newRow("empty folders, not recursive")
        << empties << false << 0
        << QStringList({"t/"_s, "t/a/"_s, "t/a/b/"_s, "t/a/c/"_s, "t/d/"_s});
    QTest::newRow("one empty folder") << QStringList("t/"_s) << true << 1 << QStringList();
    QTest::newRow("one empty folder, not recursive")
        << QStringList("t/"_s) << false << 1 << QStringList();
    QTest::newRow("only an empty sub-folder, not recursive")
        << QStringList("t/a/"_s) << false << 0 << QStringList({"t/"_s, "t/a/"_s});
    QTest::newRow("a file keeps its folders")
        << QStringList({"t/a/b/"_s, "t/c/file"_s}) << true << 2
        << QStringList({"t/"_s, "t/c/"_s, "t/c/file=content"_s});
    QTest::newRow("a hidden file cannot be removed")
        << QStringList({"t/a/.DS_Store"_s, "t/b/"_s}) << true << 1
        << QStringList({"t/"_s, "t/a/"_s, "t/a/.DS_Store=content"_s});
    QTest::newRow("only a hidden file") << QStringList("t/.DS_Store"_s) << true << 0
                                        << QStringList({"t/"_s, "t/.DS_Store=content"_s});
    QTest::newRow("hidden folders are not visited")
        << QStringList("t/.hidden/a/"_s) << true << 0
        << QStringList({"t/"_s, "t/.hidden/"_s, "t/.hidden/a/"_s});
    QTest::newRow("missing") << QStringList() << true << 0 << QStringList();
}

void tst_FileUtils::removeEmptyDirs()
{
    QFETCH(QStringList, entries);
    QFETCH(bool, recursive);
    QFETCH(int, removed);
    QFETCH(QStringList, left);
    for (const QString& spelling : {"t"_s, "t/"_s, "./x/..//t"_s}) {
        Sandbox box;
        for (const QString& entry : qAsConst(entries)) {
            if (entry.endsWith('/'_L1))
                box.folder(entry);
            else
                box.file(entry);
        }
        box.folder("x"_s);
        LogCapture log;
        QCOMPARE(FileUtils::removeEmptyDirs(box(spelling), recursive), removed);
        QVERIFY(QDir(box.root()).rmdir("x"_s));
        QCOMPARE(treeOf(box.root()), left);
        QCOMPARE(log.lines(), QStringList());
    }
    Sandbox box;
    box.folder("empty"_s);
    const CurrentFolder current(box.root());
    QCOMPARE(FileUtils::removeEmptyDirs(QString(), true), 0);
    QCOMPARE(treeOf(box.root()), QStringList("empty/"_s));
}

void tst_FileUtils::removeEmptyDirsLeavesLinks()
{
    Sandbox box;
    box.folder("outside/empty"_s);
    box.folder("t/a"_s);
    box.link("t/link"_s, "../outside"_s);
    box.link("t/loop"_s, "."_s);
    QCOMPARE(FileUtils::removeEmptyDirs(box("t"_s), true), 1);
    QCOMPARE(treeOf(box.root()),
             QStringList({"outside/"_s, "outside/empty/"_s, "t/"_s, "t/link -> ../outside"_s,
                          "t/loop -> ."_s}));
    QCOMPARE(FileUtils::removeEmptyDirs(box("t/link"_s), false), 0);
}

// ---- segmentedCopy -----------------------------------------------------------------------------

void tst_FileUtils::segmentedCopy_data()
{
    QTest::addColumn<int>("segmentSize");
    QTest::addColumn<QVector<qint64>>("reads");
    QTest::newRow("in pieces") << 4 << QVector<qint64>({4, 4, 2});
    QTest::newRow("in whole pieces") << 5 << QVector<qint64>({5, 5});
    QTest::newRow("at once") << 10 << QVector<qint64>({10});
    QTest::newRow("larger than the source") << 4096 << QVector<qint64>({10});
    QTest::newRow("byte by byte") << 1 << QVector<qint64>(10, 1);
}

void tst_FileUtils::segmentedCopy()
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
    // Nothing is left to copy.
    QCOMPARE(FileUtils::segmentedCopy(source, destination, segmentSize), 0);
}

void tst_FileUtils::segmentedCopyStopsOnAnEmptyRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<qint64>("claimed");
    QTest::addColumn<int>("segmentSize");
    QTest::addColumn<int>("total");
    QTest::newRow("dry from the start") << QByteArray() << qint64(10) << 4 << 0;
    QTest::newRow("dries up") << QByteArray("01234567") << qint64(10) << 4 << 8;
    QTest::newRow("segment size 0") << QByteArray("0123") << qint64(4) << 0 << 0;
    QTest::newRow("negative segment size") << QByteArray("0123") << qint64(4) << -1 << 0;
}

void tst_FileUtils::segmentedCopyStopsOnAnEmptyRead()
{
    QFETCH(QByteArray, content);
    QFETCH(qint64, claimed);
    QFETCH(int, segmentSize);
    CountingDevice source(content, claimed);
    CountingDevice destination{QByteArray()};
    QTEST(FileUtils::segmentedCopy(source, destination, segmentSize), "total");
}

void tst_FileUtils::segmentedCopyCountsWhatWasRequested()
{
    // The source says 6 and gives 2 at the second read, then nothing more: 4 + 4 were requested.
    CountingDevice source("012345", 6);
    CountingDevice destination{QByteArray()};
    QCOMPARE(FileUtils::segmentedCopy(source, destination, 4), 8);
    QCOMPARE(destination.writes, QVector<QByteArray>({"0123", "45"}));
}

void tst_FileUtils::segmentedCopyLeavesDevicesOpen()
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
    // A destination that takes nothing is not noticed.
    QBuffer closed;
    source.seek(0);
    LogCapture log;
    QCOMPARE(FileUtils::segmentedCopy(source, closed, 5), 10);
}

// ---- Listings ----------------------------------------------------------------------------------

void tst_FileUtils::listFilesInFileSystem_data()
{
    QTest::addColumn<bool>("recursive");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("oldFiles");
    const QString none;
    QTest::newRow("flat") << false << none << none << QStringList({"1"_s, "2.txt"_s})
                          << QStringList({"/1"_s, "/2.txt"_s});
    QTest::newRow("recursive") << true << none << none
                               << QStringList({"1"_s, "2.txt"_s, "a/3"_s, "a/b/4"_s, "ab/5"_s})
                               << QStringList(
                                      {"/1"_s, "/2.txt"_s, "/a/3"_s, "/a/b/4"_s, "/ab/5"_s});
    QTest::newRow("prefix")
        << true << none << "p"_s
        << QStringList({"p/1"_s, "p/2.txt"_s, "p/a/3"_s, "p/a/b/4"_s, "p/ab/5"_s})
        << QStringList({"p/1"_s, "p/2.txt"_s, "p/a/3"_s, "p/a/b/4"_s, "p/ab/5"_s});
    QTest::newRow("prefix with slash")
        << false << none << "p/q/"_s << QStringList({"p/q/1"_s, "p/q/2.txt"_s})
        << QStringList({"p/q/1"_s, "p/q/2.txt"_s});
    QTest::newRow("slash as prefix") << false << none << "/"_s << QStringList({"/1"_s, "/2.txt"_s})
                                     << QStringList({"/1"_s, "/2.txt"_s});
    QTest::newRow("filter matches no folder")
        << true << "zzz"_s << none << QStringList({"1"_s, "2.txt"_s})
        << QStringList({"/1"_s, "/2.txt"_s});
    QTest::newRow("filter matches whole names")
        << true << "a"_s << none << QStringList({"1"_s, "2.txt"_s, "a/3"_s})
        << QStringList({"/1"_s, "/2.txt"_s, "/a/3"_s});
    QTest::newRow("filter at every level")
        << true << "a|b"_s << none << QStringList({"1"_s, "2.txt"_s, "a/3"_s, "a/b/4"_s})
        << QStringList({"/1"_s, "/2.txt"_s, "/a/3"_s, "/a/b/4"_s});
    QTest::newRow("filter without recursion")
        << false << "a"_s << none << QStringList({"1"_s, "2.txt"_s})
        << QStringList({"/1"_s, "/2.txt"_s});
}

void tst_FileUtils::listFilesInFileSystem()
{
    QFETCH(bool, recursive);
    QFETCH(QString, filter);
    QFETCH(QString, prefix);
    QFETCH(QStringList, files);
    QFETCH(QStringList, oldFiles);
    Sandbox box;
    box.file("t/1"_s);
    box.file("t/2.txt"_s);
    box.file("t/.hidden"_s);
    box.file("t/a/3"_s);
    box.file("t/a/b/4"_s);
    box.file("t/ab/5"_s);
    box.file("t/.hiddenFolder/6"_s);
    box.folder("t/empty"_s);
    QRegExp expression(filter);
    QRegExp* const folderFilter = filter.isEmpty() ? nullptr : &expression;
    for (const QString& path : {box("t"_s), box("t/"_s)}) {
        QStringList list;
        QCOMPARE(FileUtils::listFilesInFileSystem(path, list, recursive, folderFilter, prefix),
                 files.size());
        QCOMPARE(sorted(list), files);
        QStringList oldList;
        QCOMPARE(
            FileUtils::old::listFilesInFileSystem(path, oldList, recursive, folderFilter, prefix),
            oldFiles.size());
        QCOMPARE(sorted(oldList), oldFiles);
    }
}

void tst_FileUtils::listFilesOfNothing()
{
    Sandbox box;
    box.file("file"_s);
    const CurrentFolder current(box.root());
    QStringList list;
    QCOMPARE(FileUtils::listFilesInFileSystem(QString(), list, true), 0);
    QCOMPARE(FileUtils::listFilesInFileSystem(box("missing"_s), list, true), 0);
    QCOMPARE(FileUtils::listFilesInFileSystem(box("file"_s), list, true), 0);
    QCOMPARE(FileUtils::old::listFilesInFileSystem(box("missing"_s), list, true), 0);
    QCOMPARE(list, QStringList());
    // The older one takes an empty path for the current folder.
    QCOMPARE(FileUtils::old::listFilesInFileSystem(QString(), list, true), 1);
    QCOMPARE(list, QStringList("/file"_s));
    QCOMPARE(FileUtils::listFilesInFileSystem("."_s, list, true), 1);
    QCOMPARE(list, QStringList({"/file"_s, "file"_s}));
}

void tst_FileUtils::listFilesAppends()
{
    Sandbox box;
    box.file("t/a"_s);
    QStringList list{"before"_s};
    QCOMPARE(FileUtils::listFilesInFileSystem(box("t"_s), list, false), 1);
    QCOMPARE(FileUtils::old::listFilesInFileSystem(box("t"_s), list, false), 1);
    QCOMPARE(list, QStringList({"before"_s, "a"_s, "/a"_s}));
}

void tst_FileUtils::listFilesIgnoresWhatIsNeither()
{
    Sandbox box;
    box.file("outside/b"_s);
    box.folder("t"_s);
    box.link("t/broken"_s, "nowhere"_s);
    box.pipe("t/pipe"_s);
    box.link("t/file"_s, "../outside/b"_s);
    box.link("t/folder"_s, "../outside"_s);
    QStringList list;
    QCOMPARE(FileUtils::listFilesInFileSystem(box("t"_s), list, true), 2);
    QCOMPARE(sorted(list), QStringList({"file"_s, "folder/b"_s}));
}

void tst_FileUtils::listDirectoriesInFileSystem()
{
    Sandbox box;
    box.folder("t/a/b/c"_s);
    box.folder("t/d"_s);
    box.folder("t/.hidden/e"_s);
    box.file("t/file"_s);
    box.folder("outside/f"_s);
    box.link("t/link"_s, "../outside"_s);
    box.link("t/broken"_s, "nowhere"_s);
    QStringList list{"before"_s};
    QVERIFY(FileUtils::listDirectoriesInFileSystem(box("t"_s), list, false));
    QCOMPARE(list.takeFirst(), "before"_s);
    const QStringList flat{box("t/a"_s), box("t/d"_s), box("t/link"_s)};
    QCOMPARE(sorted(list), flat);

    const QStringList all{box("t/a"_s), box("t/a/b"_s),  box("t/a/b/c"_s),
                          box("t/d"_s), box("t/link"_s), box("t/link/f"_s)};
    QStringList deep;
    QVERIFY(FileUtils::listDirectoriesInFileSystem(box("t/"_s), deep, true));
    QCOMPARE(sorted(deep), all);
    // A folder is followed by its own sub-folders.
    const int a = deep.indexOf(box("t/a"_s));
    QCOMPARE(deep.mid(a, 3), QStringList({box("t/a"_s), box("t/a/b"_s), box("t/a/b/c"_s)}));
    QCOMPARE(deep.at(deep.indexOf(box("t/link"_s)) + 1), box("t/link/f"_s));

    const CurrentFolder current(box("t"_s));
    for (const QString& path : {QString(), "."_s, "../t"_s}) {
        QStringList relative;
        QVERIFY(FileUtils::listDirectoriesInFileSystem(path, relative, true));
        QCOMPARE(sorted(relative), all);
    }
}

void tst_FileUtils::listDirectoriesOfNothing()
{
    Sandbox box;
    const QString file = box.file("file"_s);
    QStringList list;
    for (const QString& path : {box("missing"_s), file}) {
        QVERIFY(!FileUtils::listDirectoriesInFileSystem(path, list, true));
        QVERIFY(!FileUtils::listFolderName(path, list));
    }
    const QString empty = box.folder("empty"_s);
    QVERIFY(FileUtils::listDirectoriesInFileSystem(empty, list, true));
    QVERIFY(FileUtils::listFolderName(empty, list));
    QCOMPARE(list, QStringList());
}

void tst_FileUtils::listFolderName()
{
    Sandbox box;
    box.folder("t/a/b"_s);
    box.folder("t/c d"_s);
    box.folder("t/.hidden"_s);
    box.file("t/file"_s);
    box.link("t/link"_s, "a"_s);
    QStringList list{"before"_s};
    QVERIFY(FileUtils::listFolderName(box("t"_s), list));
    QCOMPARE(list.takeFirst(), "before"_s);
    QCOMPARE(sorted(list), QStringList({"a"_s, "c d"_s, "link"_s}));
    const CurrentFolder current(box("t/a"_s));
    QStringList here;
    QVERIFY(FileUtils::listFolderName(QString(), here));
    QCOMPARE(here, QStringList("b"_s));
}

void tst_FileUtils::listResources()
{
    QStringList files;
    QCOMPARE(FileUtils::listFilesInFileSystem(":/tree"_s, files, true), 2);
    QCOMPARE(sorted(files), QStringList({"a.txt"_s, "sub/b.txt"_s}));
    QStringList folders;
    QVERIFY(FileUtils::listDirectoriesInFileSystem(":/tree"_s, folders, true));
    QCOMPARE(folders, QStringList(":/tree/sub"_s));
    int count = 0;
    QCOMPARE(FileUtils::folderSize(":/tree"_s, &count), qint64(11 + 8));
    QCOMPARE(count, 2);
}

void tst_FileUtils::linkLoopsAreWalkedOnce()
{
    // Followed to the end, these three loops would make more folders than there are atoms.
    Sandbox box;
    box.file("t/a/file"_s, "123");
    box.folder("t/b"_s);
    box.link("t/a/self"_s, "."_s);
    box.link("t/a/up"_s, ".."_s);
    box.link("t/a/toB"_s, "../b"_s);
    box.link("t/b/toA"_s, "../a"_s);
    box.link("t/b/up"_s, box("t"_s));
    // t/a/file, t/a/toB holds only what leads back, t/b/toA/file.
    int count = 0;
    QCOMPARE(FileUtils::folderSize(box("t"_s), &count), qint64(6));
    QCOMPARE(count, 2);
    QStringList files;
    QCOMPARE(FileUtils::listFilesInFileSystem(box("t"_s), files, true), 2);
    QCOMPARE(sorted(files), QStringList({"a/file"_s, "b/toA/file"_s}));
    QStringList folders;
    QVERIFY(FileUtils::listDirectoriesInFileSystem(box("t"_s), folders, true));
    QCOMPARE(sorted(folders),
             QStringList({box("t/a"_s), box("t/a/self"_s), box("t/a/toB"_s), box("t/a/toB/toA"_s),
                          box("t/a/toB/up"_s), box("t/a/up"_s), box("t/b"_s), box("t/b/toA"_s),
                          box("t/b/toA/self"_s), box("t/b/toA/toB"_s), box("t/b/toA/up"_s),
                          box("t/b/up"_s)}));
    QVERIFY(FileUtils::copyDir(box("t"_s), box("d"_s), false));
    QCOMPARE(
        treeOf(box("d"_s)),
        QStringList({"a/"_s, "a/file=123"_s, "a/toB/"_s, "b/"_s, "b/toA/"_s, "b/toA/file=123"_s}));
}

void tst_FileUtils::namesThatAreNoText()
{
    if (portable)
        QSKIP("Qt's classes do not show such names, and Linux alone has them");
    // A name in Latin 1 on a system that writes UTF-8, as old archives bring it.
    Sandbox box;
    box.folder("s"_s);
    const QByteArray path = QFile::encodeName(box("s/caf"_s)) + '\xe9';
    const int file = ::open(path.constData(), O_CREAT | O_WRONLY, 0644);
    if (file < 0)
        QSKIP("this file system does not take such names");
    ::close(file);
    // It is neither listed nor lost without a word.
    QStringList list;
    QCOMPARE(FileUtils::listFilesInFileSystem(box("s"_s), list, true), 0);
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box("s"_s), box("d"_s), false));
    QCOMPARE(log.lines(),
             QStringList("warning orvautils FileUtils copyDir: unable to copy "_s
                         + box("s/caf\ufffd"_s) + " to "_s + box("d/caf\ufffd"_s)));
    log.take();
    QVERIFY(!FileUtils::removeContentDirectory(box("s"_s), true));
    QCOMPARE(
        log.lines(),
        QStringList(
            "critical orvautils FileUtils removeContentDirectory: enable to removeRecursively "_s
            + box("s/caf\ufffd"_s)));
    QVERIFY(!FileUtils::old::removeDirectory(box("s"_s), true));
    struct stat status;
    QCOMPARE(lstat(path.constData(), &status), 0);
    ::unlink(path.constData());
}

void tst_FileUtils::folderNamesThatAreNoText()
{
    if (portable)
        QSKIP("Qt's classes do not show such names, and Linux alone has them");
    Sandbox box;
    box.folder("s"_s);
    const QByteArray path = QFile::encodeName(box("s/caf"_s)) + '\xe9';
    if (::mkdir(path.constData(), 0755) != 0)
        QSKIP("this file system does not take such names");
    const QByteArray inside = path + "/file";
    const int file = ::open(inside.constData(), O_CREAT | O_WRONLY, 0644);
    QVERIFY(file >= 0);
    QCOMPARE(::write(file, "12345", 5), ssize_t(5));
    ::close(file);

    QStringList list;
    QCOMPARE(FileUtils::listFilesInFileSystem(box("s"_s), list, true), 0);
    QVERIFY(FileUtils::listDirectoriesInFileSystem(box("s"_s), list, true));
    QVERIFY(FileUtils::listFolderName(box("s"_s), list));
    QCOMPARE(list, QStringList());
    QCOMPARE(FileUtils::folderSize(box("s"_s)), qint64(0));
    QCOMPARE(FileUtils::removeEmptyDirs(box("s"_s), true), 0);
    LogCapture log;
    QVERIFY(!FileUtils::copyDir(box("s"_s), box("d"_s), false));
    QCOMPARE(log.lines(),
             QStringList("warning orvautils FileUtils copyDir: unable to copy "_s
                         + box("s/caf\ufffd"_s) + " to "_s + box("d/caf\ufffd"_s)));
    log.take();
    QVERIFY(!FileUtils::removeContentDirectory(box("s"_s), true));
    QCOMPARE(
        log.lines(),
        QStringList(
            "critical orvautils FileUtils removeContentDirectory: enable to removeRecursively "_s
            + box("s/caf\ufffd"_s)));
    QVERIFY(!FileUtils::old::removeDirectory(box("s"_s), true));
    struct stat status;
    QCOMPARE(lstat(inside.constData(), &status), 0);
    ::unlink(inside.constData());
    ::rmdir(path.constData());
}

void tst_FileUtils::manyLevels()
{
    // More levels than a process may have open folders.
    const FileLimit limit(RLIMIT_NOFILE, 64);
    Sandbox box;
    QString deep = "s"_s;
    for (int level = 0; level < 150; ++level)
        deep += "/d"_s;
    box.file(deep + "/file"_s, "12345");
    QCOMPARE(FileUtils::folderSize(box("s"_s)), qint64(5));
    QStringList list;
    QCOMPARE(FileUtils::listFilesInFileSystem(box("s"_s), list, true), 1);
    QVERIFY(FileUtils::copyDir(box("s"_s), box("c"_s), false));
    QCOMPARE(contentOf(box("c"_s + deep.mid(1) + "/file"_s)), QByteArray("12345"));
    QVERIFY(FileUtils::old::removeDirectory(box("c"_s), true, nullptr, 151));
    QVERIFY(!exists(box("c"_s)));
    QVERIFY(FileUtils::removeContentDirectory(box("s"_s), true));
    QCOMPARE(treeOf(box.root()), QStringList("s/"_s));
}

// ---- Older variants ----------------------------------------------------------------------------

void tst_FileUtils::forceDirectoryCreation_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("made");
    QTest::newRow("several levels") << "a/b/c/file"_s
                                    << "a/b/c"_s;
    QTest::newRow("present") << "present/file"_s
                             << "present"_s;
    QTest::newRow("one more level") << "present/b/file"_s
                                    << "present/b"_s;
    QTest::newRow("folder path") << "a/b/"_s
                                 << "a/b"_s;
    QTest::newRow("two slashes") << "a//b//file"_s
                                 << "a/b"_s;
    QTest::newRow("through a link") << "link/b/file"_s
                                    << "present/b"_s;
}

void tst_FileUtils::forceDirectoryCreation()
{
    QFETCH(QString, path);
    QFETCH(QString, made);
    for (const bool relative : {false, true}) {
        Sandbox box;
        box.folder("present"_s);
        box.link("link"_s, "present"_s);
        const CurrentFolder current(box.root());
        LogCapture log;
        QString error = "untouched"_s;
        QVERIFY(
            FileUtils::old::forceDirectoryCreationForAFile(relative ? path : box(path), &error));
        QVERIFY(QFileInfo(box(made)).isDir());
        QVERIFY(!exists(box("a/b/c/file"_s)));
        QVERIFY(FileUtils::old::forceDirectoryCreationForAFile(box(path)));
        QVERIFY(FileUtils::old::forceDirectoryCreationForAFile("file"_s, &error));
        QVERIFY(FileUtils::old::forceDirectoryCreationForAFile(QString(), &error));
        QVERIFY(!exists(box("file"_s)));
        QCOMPARE(error, "untouched"_s);
        QCOMPARE(log.lines(), QStringList());
    }
}

void tst_FileUtils::forceDirectoryCreationFailure()
{
    Sandbox box;
    box.file("file"_s);
    const QString start = "warning orvautils FileUtils forceDirectoryCreationForAFile: "_s;
    QString error;
    LogCapture log;
    QVERIFY(!FileUtils::old::forceDirectoryCreationForAFile(box("file/b/c/x"_s), &error));
    QCOMPARE(error, "The folder '"_s + box("file/b/c/"_s) + "' cannot be created!"_s);
    // Every level is tried, and each that fails is logged.
    const QStringList lines{
        start + "Mkdir fail on \""_s + box("file"_s) + "\""_s,
        start + "Mkdir fail on \""_s + box("file/b"_s) + "\""_s,
        start + "Mkdir fail on \""_s + box("file/b/c"_s) + "\""_s,
        start + "The folder '"_s + box("file/b/c/"_s) + "' cannot be created!"_s,
    };
    QCOMPARE(log.lines(), lines);
    QVERIFY(!FileUtils::old::forceDirectoryCreationForAFile(box("file/b/c/x"_s)));
    QCOMPARE(log.lines(), lines + lines);
    // Names that look like the places of a message.
    log.take();
    QVERIFY(!FileUtils::old::forceDirectoryCreationForAFile(box("file/%1/x"_s), &error));
    QCOMPARE(error, "The folder '"_s + box("file/%1/"_s) + "' cannot be created!"_s);
}

void tst_FileUtils::removeDirectory()
{
    Sandbox box;
    box.file("outside"_s, "kept");
    for (const QString& spelling : {"t"_s, "t/"_s, "x/..//t"_s}) {
        box.folder("x"_s);
        box.file("t/a"_s);
        box.file("t/.hidden"_s);
        box.file("t/sub/deep/b"_s);
        box.folder("t/.git/empty"_s);
        LogCapture log;
        QString error = "untouched"_s;
        QVERIFY(FileUtils::old::removeDirectory(box(spelling), true, &error));
        QCOMPARE(treeOf(box.root()), QStringList({"outside=kept"_s, "x/"_s}));
        QCOMPARE(error, "untouched"_s);
        QCOMPARE(log.lines(), QStringList());
    }
    // Files alone need no recursion, and a relative path will do.
    box.file("t/a"_s);
    const CurrentFolder current(box.root());
    QVERIFY(FileUtils::old::removeDirectory("t"_s, false));
    QCOMPARE(treeOf(box.root()), QStringList({"outside=kept"_s, "x/"_s}));
}

void tst_FileUtils::removeDirectoryRefusals_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("depth");
    QTest::addColumn<QString>("message");
    QTest::newRow("empty") << QString() << 64 << "untouched"_s;
    QTest::newRow("empty, without a budget") << QString() << 0 << "untouched"_s;
    QTest::newRow("no budget") << "t"_s << 0
                               << "FileUtils::removeDirectory t profondeur max atteinte !"_s;
    QTest::newRow("less than no budget")
        << "t"_s << -1 << "FileUtils::removeDirectory t profondeur max atteinte !"_s;
    QTest::newRow("missing") << "missing"_s << 64
                             << "FileUtils::removeDirectory: missing doesn't exist"_s;
    QTest::newRow("missing, without a budget")
        << "missing"_s << 0 << "FileUtils::removeDirectory missing profondeur max atteinte !"_s;
    QTest::newRow("file") << "t/a"_s << 64 << "FileUtils::removeDirectory: t/a doesn't exist"_s;
    QTest::newRow("broken link") << "broken"_s << 64
                                 << "FileUtils::removeDirectory: broken doesn't exist"_s;
}

void tst_FileUtils::removeDirectoryRefusals()
{
    QFETCH(QString, path);
    QFETCH(int, depth);
    Sandbox box;
    box.file("t/a"_s);
    box.link("broken"_s, "nowhere"_s);
    const QStringList before = treeOf(box.root());
    const CurrentFolder current(box.root());
    LogCapture log;
    QString error = "untouched"_s;
    QVERIFY(!FileUtils::old::removeDirectory(path, true, &error, depth));
    QTEST(error, "message");
    QVERIFY(!FileUtils::old::removeDirectory(path, true, nullptr, depth));
    QCOMPARE(treeOf(box.root()), before);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::removeDirectoryDepth()
{
    Sandbox box;
    box.file("t/a"_s, "1");
    box.file("t/sub/b"_s, "2");
    box.file("t/z"_s, "3");
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box("t"_s), true, &error, 1));
    QCOMPARE(error,
             "FileUtils::removeDirectory "_s + box("t/sub"_s) + " profondeur max atteinte !"_s);
    QCOMPARE(treeOf(box("t"_s)), QStringList({"sub/"_s, "sub/b=2"_s, "z=3"_s}));
    QVERIFY(FileUtils::old::removeDirectory(box("t"_s), true, &error, 2));
    QVERIFY(!exists(box("t"_s)));
}

void tst_FileUtils::removeDirectoryDefaultDepth()
{
    // Level 1 is the folder itself, so 64 levels have 63 below it.
    const auto nested = [](int levels) { return "t"_s + "/d"_s.repeated(levels - 1); };
    Sandbox box;
    box.folder(nested(64));
    QVERIFY(FileUtils::old::removeDirectory(box("t"_s), true));
    QVERIFY(!exists(box("t"_s)));
    box.folder(nested(65));
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box("t"_s), true, &error));
    QCOMPARE(error,
             "FileUtils::removeDirectory "_s + box(nested(65)) + " profondeur max atteinte !"_s);
    QVERIFY(exists(box(nested(65))));
}

void tst_FileUtils::removeDirectoryOrder()
{
    // The folder in the middle of the names, ignoring case, stops the deletion.
    Sandbox box;
    for (const QString& name : {"B"_s, "a"_s, "D"_s, "e"_s})
        box.file("t/"_s + name, QByteArray());
    box.folder("t/c"_s);
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box("t"_s), false, &error));
    QCOMPARE(treeOf(box("t"_s)), QStringList({"D="_s, "c/"_s, "e="_s}));
}

void tst_FileUtils::removeDirectoryNotRecursive()
{
    Sandbox box;
    box.file("t/%2 sub/a"_s);
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box("t"_s), false, &error));
    QCOMPARE(error, "Failed to remove file: %2 sub (non recursive operation)"_s);
    QVERIFY(!FileUtils::old::removeDirectory(box("t"_s), false));
    QVERIFY(exists(box("t/%2 sub/a"_s)));
}

void tst_FileUtils::removeDirectoryCannotRemoveFile()
{
    Sandbox box;
    box.file("t/sub/%2 a"_s);
    box.file("t/sub/b"_s);
    box.file("t/z"_s);
    Sandbox::chmod(box("t"_s), 0777);
    box.lock(box("t/sub"_s), 0555);
    const OrdinaryUser user;
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box("t"_s), true, &error));
    QCOMPARE(error, "Failed to remove file: "_s + box("t/sub/%2 a"_s) + " (Permission denied)"_s);
    QCOMPARE(treeOf(box("t"_s)).size(), 4);
}

void tst_FileUtils::removeDirectoryCannotRemoveFolder()
{
    Sandbox box;
    box.folder("locked/t"_s);
    box.lock(box("locked"_s), 0555);
    const CurrentFolder current(box("locked"_s));
    const OrdinaryUser user;
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory("t"_s, true, &error));
    // What the system says when a folder is removed as a file.
    QFile asFile("t"_s);
    QVERIFY(!asFile.remove());
    QCOMPARE(error, "Failed to remove directory: t ("_s + asFile.errorString() + ")"_s);
    QVERIFY(!FileUtils::old::removeDirectory("t"_s, true));
}

void tst_FileUtils::removeDirectoryLeavesSpecialFiles()
{
    Sandbox box;
    box.file("t/a"_s);
    box.pipe("t/m"_s);
    box.file("t/z"_s);
    QString error;
    QVERIFY(!FileUtils::old::removeDirectory(box("t"_s), true, &error));
    QCOMPARE(treeOf(box("t"_s)), QStringList("m|"_s));
    QFile asFile(box("t"_s));
    QVERIFY(!asFile.remove());
    QCOMPARE(error,
             "Failed to remove directory: "_s + box("t"_s) + " ("_s + asFile.errorString() + ")"_s);
}

void tst_FileUtils::removeDirectoryLinks()
{
    for (const bool recursive : {true, false}) {
        Sandbox box;
        box.file("outside/sub/sentinel"_s, "kept");
        const QStringList outside = treeOf(box("outside"_s));
        box.folder("t"_s);
        box.link("t/toFolder"_s, "../outside"_s);
        box.link("t/toFile"_s, "../outside/sub/sentinel"_s);
        box.link("t/broken"_s, "nowhere"_s);
        box.link("t/loop"_s, "."_s);
        box.link("t/self"_s, "self"_s);
        if (recursive) {
            box.folder("t/sub"_s);
            box.link("t/sub/toOutside"_s, box("outside"_s));
            box.link("t/sub/toTop"_s, ".."_s);
        }
        QString error = "untouched"_s;
        QVERIFY2(FileUtils::old::removeDirectory(box("t"_s), recursive, &error), qPrintable(error));
        QVERIFY(!exists(box("t"_s)));
        QCOMPARE(treeOf(box("outside"_s)), outside);
    }
}

void tst_FileUtils::removeDirectoryOfALink_data()
{
    QTest::addColumn<QString>("spelling");
    QTest::newRow("link") << "link"_s;
    QTest::newRow("link with slash") << "link/"_s;
}

void tst_FileUtils::removeDirectoryOfALink()
{
    QFETCH(QString, spelling);
    Sandbox box;
    box.file("outside/sentinel"_s, "kept");
    box.link("link"_s, "outside"_s);
    QVERIFY(FileUtils::old::removeDirectory(box(spelling), true));
    QCOMPARE(treeOf(box.root()), QStringList({"outside/"_s, "outside/sentinel=kept"_s}));
}

// ---- File content ------------------------------------------------------------------------------

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
    const QString path = box.file(u8"\u00e9t\u00e9/a b.bin"_s, content);
    LogCapture log;
    QVERIFY(FileUtils::readFileContent(path) == content);
    QVERIFY(FileUtils::readFileContent(path, false) == content);
    QVERIFY(contentOf(path) == content);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::readFileContentThatCannotBeOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << "missing"_s;
    QTest::newRow("missing folder") << "missing/file"_s;
    QTest::newRow("folder") << "folder"_s;
    QTest::newRow("not allowed") << "locked"_s;
}

void tst_FileUtils::readFileContentThatCannotBeOpened()
{
    QFETCH(QString, name);
    Sandbox box;
    box.folder("folder"_s);
    box.lock(box.file("locked"_s), 0);
    const OrdinaryUser ordinary;
    LogCapture log;
    QCOMPARE(FileUtils::readFileContent(box(name), false), QByteArray());
    QCOMPARE(FileUtils::readFileContent(QString(), false), QByteArray());
    QCOMPARE(FileUtils::readFileContent(QString(), true), QByteArray());
    QCOMPARE(FileUtils::readFileContent(""_s), QByteArray());
    QCOMPARE(log.lines(), QStringList());
    const QString record =
        "info orvautils FileUtils readFileContent: FileUtils::readFileContent error :  "_s
        + box(name) + "  ne peut etre ouvert !"_s;
    QCOMPARE(FileUtils::readFileContent(box(name), true), QByteArray());
    QCOMPARE(FileUtils::readFileContent(box(name)), QByteArray()); // logs by default
    QCOMPARE(log.lines(), QStringList({record, record}));
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
    QString error = "from before"_s;
    // The folder is made.
    QVERIFY(FileUtils::writeFileContent(box("new/folder/file"_s), content, &error));
    QVERIFY(contentOf(box("new/folder/file"_s)) == content);
    QVERIFY(FileUtils::writeFileContent(box("new/other"_s), content));
    QVERIFY(contentOf(box("new/other"_s)) == content);
    QCOMPARE(error, "from before"_s);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::writeFileContentReplaces()
{
    Sandbox box;
    const QString path = box.file("file"_s, "something longer");
    QVERIFY(FileUtils::writeFileContent(path, "short"));
    QCOMPARE(contentOf(path), QByteArray("short"));
    QVERIFY(FileUtils::writeFileContent(path, QByteArray()));
    QCOMPARE(contentOf(path), QByteArray());
}

void tst_FileUtils::writeFileContentThatCannotBeOpened()
{
    Sandbox box;
    const QString folder = box.folder("folder"_s);
    const QString file = box.file("file"_s, "kept");
    LogCapture log;
    QString error = "from before"_s;
    QVERIFY(!FileUtils::writeFileContent(QString(), "data", &error));
    QCOMPARE(error, "from before"_s);
    // The folder cannot be made: its message, no record.
    QVERIFY(!FileUtils::writeFileContent(file + "/sub/x"_s, "data", &error));
    QCOMPARE(error, "(fileMkPath) Cant create folder '"_s + file + "/sub' !"_s);
    QCOMPARE(log.lines(), QStringList());
    // A folder stands in the way.
    QVERIFY(!FileUtils::writeFileContent(folder, "data", &error));
    QCOMPARE(error, "Cannot open (WriteOnly) "_s + folder);
    QVERIFY(!FileUtils::writeFileContent(folder, "data"));
    const QString record =
        "warning orvautils FileUtils writeFileContent: cannot open file  "_s + folder;
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
    QFETCH(int, size);
    Sandbox box;
    const QString path = box("file"_s);
    QString error;
    bool written = true;
    LogCapture log;
    {
        rlimit former;
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &former), 0);
        const rlimit small = {4096, former.rlim_max};
        const auto formerHandler = signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        written = FileUtils::writeFileContent(path, QByteArray(size, 'x'), &error);
        setrlimit(RLIMIT_FSIZE, &former);
        signal(SIGXFSZ, formerHandler);
    }
    QVERIFY(!written);
    QCOMPARE(error, "Cannot write datas (WriteOnly) in "_s + path);
    QCOMPARE(
        log.lines(),
        QStringList("warning orvautils FileUtils writeFileContent: cannot open file  "_s + path));
}

void tst_FileUtils::replaceInFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QByteArray>("result");
    QTest::newRow("every occurrence") << QByteArray("a-b-a") << "a"_s
                                      << "xy"_s << QByteArray("xy-b-xy");
    QTest::newRow("case") << QByteArray("aA") << "A"_s
                          << "b"_s << QByteArray("ab");
    QTest::newRow("accents") << QByteArray("prix: 5 \xe2\x82\xac") << u8"\u20ac"_s << u8"\u00a3"_s
                             << QByteArray("prix: 5 \xc2\xa3");
    QTest::newRow("nothing to replace") << QByteArray("abc") << "x"_s
                                        << "y"_s << QByteArray("abc");
    QTest::newRow("zero byte") << QByteArray("ab\0cd", 5) << "b"_s
                               << "c"_s << QByteArray("ac");
    QTest::newRow("zero byte, nothing to replace") << QByteArray("ab\0cd", 5) << "x"_s
                                                   << "y"_s << QByteArray("ab");
    QTest::newRow("to nothing") << QByteArray("abc") << "abc"_s << QString() << QByteArray();
    QTest::newRow("empty text to find")
        << QByteArray("abc") << QString() << "x"_s << QByteArray("abc");
    QTest::newRow("line ends stay") << QByteArray("a\r\nb\n") << "a"_s
                                    << "c"_s << QByteArray("c\r\nb\n");
    QTest::newRow("not UTF-8") << QByteArray("a\xff") << "a"_s
                               << "b"_s << QByteArray("b\xef\xbf\xbd");
}

void tst_FileUtils::replaceInFile()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QByteArray, result);
    Sandbox box;
    const QString path = box.file("file"_s, content);
    QVERIFY(FileUtils::replaceInFile(path, before, after));
    QCOMPARE(contentOf(path), result);
}

void tst_FileUtils::replaceInFileLeavesAlone_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no path") << QString();
    QTest::newRow("missing") << "missing"_s;
    QTest::newRow("empty") << "empty"_s;
    QTest::newRow("zero byte first") << "zero"_s;
    QTest::newRow("folder") << "folder"_s;
}

void tst_FileUtils::replaceInFileLeavesAlone()
{
    QFETCH(QString, name);
    Sandbox box;
    box.file("empty"_s, "");
    box.file("zero"_s, QByteArray("\0ab", 3));
    box.folder("folder"_s);
    const QStringList before = treeOf(box.root());
    LogCapture log;
    QVERIFY(!FileUtils::replaceInFile(name.isEmpty() ? name : box(name), "a"_s, "b"_s));
    QCOMPARE(treeOf(box.root()), before);
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::replaceInFileThatCannotBeWritten()
{
    Sandbox box;
    const QString path = box.file("file"_s, "abc");
    box.lock(path, 0444);
    const OrdinaryUser ordinary;
    LogCapture log;
    // True all the same.
    QVERIFY(FileUtils::replaceInFile(path, "a"_s, "b"_s));
    QCOMPARE(contentOf(path), QByteArray("abc"));
    QCOMPARE(
        log.lines(),
        QStringList("warning orvautils FileUtils writeFileContent: cannot open file  "_s + path));
}

void tst_FileUtils::digests_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("md5");
    QTest::addColumn<QString>("sha1");
    // From RFC 1321 and RFC 3174, and from md5sum and sha1sum.
    QTest::newRow("nothing") << QByteArray("") << "d41d8cd98f00b204e9800998ecf8427e"_s
                             << "da39a3ee5e6b4b0d3255bfef95601890afd80709"_s;
    QTest::newRow("abc") << QByteArray("abc") << "900150983cd24fb0d6963f7d28e17f72"_s
                         << "a9993e364706816aba3e25717850c26c9cd0d89d"_s;
    QTest::newRow("a million times a")
        << QByteArray(1000000, 'a') << "7707d6ae4e027c70eea2a935c2296f21"_s
        << "34aa973cd4c4daa4f61eeb2bdbad27316534016f"_s;
}

void tst_FileUtils::digests()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, md5);
    QFETCH(QString, sha1);
    Sandbox box;
    const QString path = box.file("file"_s, content);
    QCOMPARE(FileUtils::md5FromDatas(content), md5);
    QCOMPARE(FileUtils::md5(path), md5);
    QCOMPARE(FileUtils::sha1(path), sha1);
}

void tst_FileUtils::digestOfMissingFile()
{
    Sandbox box;
    LogCapture log;
    QCOMPARE(FileUtils::md5(box("missing"_s)), FileUtils::md5FromDatas(QByteArray()));
    QCOMPARE(FileUtils::sha1(box("missing"_s)), "da39a3ee5e6b4b0d3255bfef95601890afd80709"_s);
    QCOMPARE(FileUtils::md5(QString()), FileUtils::md5FromDatas(QByteArray()));
    QCOMPARE(FileUtils::md5(box.root()), FileUtils::md5FromDatas(QByteArray()));
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::writingRight_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("as it is") << "folder"_s;
    QTest::newRow("with slash") << "folder/"_s;
    QTest::newRow("not clean") << "./folder//x/.."_s;
    QTest::newRow("made") << "new/one"_s;
}

void tst_FileUtils::writingRight()
{
    QFETCH(QString, folder);
    Sandbox box;
    box.file("folder/kept"_s);
    LogCapture log;
    QString error = "from before"_s;
    QVERIFY(FileUtils::checkWritingRightInFolder(box(folder), "label"_s, &error));
    QVERIFY(FileUtils::checkWritingRightInFolder(box(folder), QString()));
    QCOMPARE(error, "from before"_s);
    QVERIFY(QDir(QDir::cleanPath(box(folder))).exists());
    QVERIFY(!treeOf(box.root()).join(QLatin1Char(' ')).contains("check_write"_s));
    QVERIFY(QFile::exists(box("folder/kept"_s)));
    QCOMPARE(log.lines(), QStringList());
}

void tst_FileUtils::writingRightRefused()
{
    Sandbox box;
    const QString folder = box.folder("folder"_s);
    box.lock(folder, 0555);
    const OrdinaryUser ordinary;
    LogCapture quiet;
    const QString reason = "Cannot open (WriteOnly) "_s + folder + "/check_write"_s;
    QString error;
    QVERIFY(!FileUtils::checkWritingRightInFolder(folder, QString(), &error));
    QCOMPARE(error, reason);
    QVERIFY(!FileUtils::checkWritingRightInFolder(folder, "Photos"_s, &error));
    QCOMPARE(error, "Cant write in Photos error="_s + reason);
    // Filled in one pass.
    QVERIFY(!FileUtils::checkWritingRightInFolder(folder, "%2 %1"_s, &error));
    QCOMPARE(error, "Cant write in %2 %1 error="_s + reason);
    QVERIFY(!FileUtils::checkWritingRightInFolder(folder, "Photos"_s));
    QCOMPARE(treeOf(folder), QStringList());
}

void tst_FileUtils::writingRightOfNoFolder_data()
{
    QTest::addColumn<QString>("label");
    QTest::newRow("without label") << QString();
    QTest::newRow("with label") << "Photos"_s;
}

void tst_FileUtils::writingRightOfNoFolder()
{
    QFETCH(QString, label);
    QString error;
    QVERIFY(!FileUtils::checkWritingRightInFolder(QString(), label, &error));
    QCOMPARE(error, "Folder is not valid ! (empty)"_s);
    QVERIFY(!FileUtils::checkWritingRightInFolder(QString(), label));

    // Blanks are a name: they are not trimmed.
    Sandbox box;
    const QString former = QDir::currentPath();
    QVERIFY(QDir::setCurrent(box.root()));
    const bool writable = FileUtils::checkWritingRightInFolder("  "_s, label);
    QVERIFY(QDir::setCurrent(former));
    QVERIFY(writable);
    QCOMPARE(treeOf(box.root()), QStringList("  /"_s));
}

void tst_FileUtils::workingFolderBlocked_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("text");
    QTest::newRow("plain")
        << "/shop"_s
        << "https://example.org/doc"_s
        << "Your working folder /shop seem not accessible en write, change it or consult <a href='https://example.org/doc'>Documentation</a>"_s;
    QTest::newRow("line feeds and placeholders")
        << "/a\n%2\nb"_s
        << "%1"_s
        << "Your working folder /a<br>%2<br>b seem not accessible en write, change it or consult <a href='%1'>Documentation</a>"_s;
}

void tst_FileUtils::workingFolderBlocked()
{
    QFETCH(QString, folder);
    QFETCH(QString, address);
    QFETCH(QString, text);
    QCOMPARE(FileUtils::labelWorkingFolderBlocked(folder, address), text);
}

void tst_FileUtils::contentTextsAreTranslated()
{
    // A translator that marks what goes through it, over two lines.
    class Marker : public QTranslator
    {
    public:
        QString translate(const char* context, const char* text, const char*, int) const override
        {
            return QByteArray(context) == "FileUtils" ? "<\n"_s + QString::fromUtf8(text)
                                                      : QString();
        }
        bool isEmpty() const override { return false; }
    };
    Sandbox box;
    const QString folder = box.folder("folder"_s);
    Marker marker;
    QCoreApplication::installTranslator(&marker);
    LogCapture log;
    QString error;
    FileUtils::writeFileContent(folder, "data", &error);
    QCOMPARE(error, "<\nCannot open (WriteOnly) "_s + folder);
    FileUtils::checkWritingRightInFolder(QString(), QString(), &error);
    QCOMPARE(error, "<\nFolder is not valid ! (empty)"_s);
    const QString blocked = FileUtils::labelWorkingFolderBlocked("/x"_s, "doc"_s);
    QCOMPARE(
        blocked,
        "<<br>Your working folder /x seem not accessible en write, change it or consult <a href='doc'><<br>Documentation</a>"_s);
    QCoreApplication::removeTranslator(&marker);
    // What is logged is not translated.
    QCOMPARE(
        log.lines(),
        QStringList("warning orvautils FileUtils writeFileContent: cannot open file  "_s + folder));
}

// ---- Files on the desktop ----------------------------------------------------------------------

void tst_FileUtils::iconOfTheApplication_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shipped"); // its name in the folder of the application's icons
    QTest::newRow("suffix") << "a.pdf"_s
                            << "file.pdf"_s;
    QTest::newRow("upper case") << "/x/y.b/A.B.PDF"_s
                                << "file.pdf"_s;
    QTest::newRow("none shipped") << "a.odt"_s
                                  << "file.pdf"_s;
}

void tst_FileUtils::iconOfTheApplication()
{
    QFETCH(QString, name);
    QFETCH(QString, shipped);
    // The folder of the application's own data, beside the test program.
    const QString icons = ApplicationUtils::pathDatas() + "suffix_icons/"_s;
    QVERIFY(QDir().mkpath(icons));
    QFile file(icons + shipped);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    const bool ours = QFileInfo(name).suffix().toLower() == "pdf"_s;
    const QIcon icon = FileUtils::iconFromFilename(name);
    const QIcon expected = QFileIconProvider().icon(QFileInfo(ours ? file.fileName() : name));
    QVERIFY(file.remove());
    QVERIFY(QDir().rmpath(icons));
    QCOMPARE(icon.pixmap(32, 32).toImage(), expected.pixmap(32, 32).toImage());
    QCOMPARE(icon.name(), expected.name());
}

void tst_FileUtils::showFileInFolderWithoutFinder()
{
    if (QFile::exists("/usr/bin/osascript"_s))
        QSKIP("would reach for the Finder of the person at this machine");
    LogCapture log;
    FileUtils::showFileInFolder("/a b.jpg"_s);
    QCOMPARE(log.lines(), QStringList());
}

QTEST_MAIN(tst_FileUtils)
#include "tst_FileUtils.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GoogleFontLoader.h"

#include "ApplicationUtils.h"
#include "Bracketing.h"
#include "Columns.h"
#include "CoreApplicationUtils.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "SystemCalls.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/// A catalogue of one family with the given name and date.
QByteArray listOf(const char* family, const char* date)
{
    return QByteArray(R"({"items": [{"family": ")") + family + R"(", "lastModified": ")" + date
        + R"("}]})";
}

/// A new loader uses the list of the library.
void loadTheBuiltInList()
{
    GoogleFontLoader loader;
    QVERIFY(loader.load());
    QCOMPARE(loader.fontNames().size(), 1365);
}

} // namespace

class tst_GoogleFontLoader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void notLoadedAtFirst();
    void paths();
    void builtInListIsCompiledIn();
    void fontNames();
    void findItem_data();
    void findItem();
    void queriesLoad();
    void informations();
    void informationsAreTranslated();
    void laterCustomListReplaces();
    void customListThatIsNotLater_data();
    void customListThatIsNotLater();
    void unusableCustomList_data();
    void unusableCustomList();
    void customListThatCannotBeOpened();
    void loadedInstanceLooksNoMore();
    void allInstancesShareTheCatalogue();
    void unchangedCustomListIsNotParsedAgain();
    void changedCustomListIsParsedAgain_data();
    void changedCustomListIsParsedAgain();
    void customListChangedAtOnce();
    void brokenCustomListIsLoggedOnce();

private:
    QString customPath() const;
    void writeCustom(const QByteArray& content);
    void setTimeOfCustom(time_t seconds);

    time_t mTime = 1600000000;
    QTemporaryDir mHome;
};

void tst_GoogleFontLoader::initTestCase()
{
    SKIP_ON_WINDOWS("the folder of settings is the user's own");
    // Wherever the settings folder is searched for, it is in here.
    QVERIFY(mHome.isValid());
    qputenv("HOME", QFile::encodeName(mHome.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(mHome.path() + QStringLiteral("/data")));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(mHome.path() + QStringLiteral("/config")));
    CoreApplicationUtils::setApplicationName(QStringLiteral("fonttest"));
    QVERIFY(customPath().startsWith(mHome.path()));
    QVERIFY(QDir().mkpath(QFileInfo(customPath()).path()));
}

void tst_GoogleFontLoader::cleanup()
{
    QFile::remove(customPath());
}

QString tst_GoogleFontLoader::customPath() const
{
    return GoogleFontLoader::customFilepath_JsonGoogleFont();
}

/// Writes the custom list, each time with a different time: tests write faster than the resolution
/// of a file system.
void tst_GoogleFontLoader::writeCustom(const QByteArray& content)
{
    QFile file(customPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
    file.close();
    setTimeOfCustom(++mTime);
}

void tst_GoogleFontLoader::setTimeOfCustom(time_t seconds)
{
    utimbuf times = {seconds, seconds};
    QCOMPARE(utime(QFile::encodeName(customPath()).constData(), &times), 0);
}

void tst_GoogleFontLoader::notLoadedAtFirst()
{
    QObject parent;
    auto* loader = new GoogleFontLoader(&parent);
    QCOMPARE(loader->parent(), &parent);
    QVERIFY(!loader->isLoaded());
    QVERIFY(loader->load());
    QVERIFY(loader->isLoaded());
    QVERIFY(loader->load());
}

void tst_GoogleFontLoader::paths()
{
    QCOMPARE(GoogleFontLoader::GOOGLE_DEFINITION_FILENAME, QStringLiteral("google.json"));
    QCOMPARE(GoogleFontLoader::builinGoogleJsonFilePath(),
             QStringLiteral(":/orvautils/google.json"));
    QCOMPARE(GoogleFontLoader::customFilepath_JsonGoogleFont(),
             ApplicationUtils::pathApplicationSettings() + QStringLiteral("google.json"));
}

void tst_GoogleFontLoader::builtInListIsCompiledIn()
{
    GoogleFontLoader loader;
    QVERIFY(loader.load()); // in a static library this registers the resource
    QFile compiledIn(GoogleFontLoader::builinGoogleJsonFilePath());
    QVERIFY(compiledIn.open(QIODevice::ReadOnly));
    QFile source(QStringLiteral(ORVAUTILS_RESOURCES_DIR "/google.json"));
    QVERIFY(source.open(QIODevice::ReadOnly));
    QVERIFY(compiledIn.readAll() == source.readAll());
}

void tst_GoogleFontLoader::fontNames()
{
    QFile source(QStringLiteral(ORVAUTILS_RESOURCES_DIR "/google.json"));
    QVERIFY(source.open(QIODevice::ReadOnly));
    QStringList expected;
    for (const QJsonValue& item :
         QJsonDocument::fromJson(source.readAll()).object()[QStringLiteral("items")].toArray())
        expected += item.toObject()[QStringLiteral("family")].toString();
    QCOMPARE(expected.size(), 1365);
    GoogleFontLoader loader;
    QCOMPARE(loader.fontNames(), expected);
}

void tst_GoogleFontLoader::findItem_data()
{
    const auto row = namedByText(columns<QString, bool, QString>("name", "isFound", "valid"));
    row("Open Sans", true, "Open Sans");
    row("opensans", true, "Open Sans");
    row("OPEN sans", true, "Open Sans");
    row("abeezee", true, "ABeeZee");
    // Only validName() trims.
    row(" opensans\t", false, "Open Sans");
    row("\n Abel ", false, "Abel");
    row("Open  Sans", false, "");
    row("Comic Sans MS", false, "");
    row("", false, "");
    row("   ", false, "");
}

void tst_GoogleFontLoader::findItem()
{
    QFETCH(QString, name);
    QFETCH(bool, isFound);
    QFETCH(QString, valid);
    QJsonObject untouched;
    untouched[QStringLiteral("family")] = QStringLiteral("untouched");

    GoogleFontLoader loader;
    GoogleFontItem item(untouched);
    QCOMPARE(loader.findItemByName(name, item), isFound);
    QCOMPARE(item.family(), isFound ? valid : QStringLiteral("untouched"));
    QCOMPARE(loader.validName(name), valid);
}

void tst_GoogleFontLoader::queriesLoad()
{
    GoogleFontItem item;
    GoogleFontLoader byNames;
    byNames.fontNames();
    QVERIFY(byNames.isLoaded());
    GoogleFontLoader byFinding;
    byFinding.findItemByName(QStringLiteral("no such font"), item);
    QVERIFY(byFinding.isLoaded());
    GoogleFontLoader byValidName;
    byValidName.validName(QString());
    QVERIFY(byValidName.isLoaded());
    GoogleFontLoader byInformations;
    byInformations.stringInformations();
    QVERIFY(byInformations.isLoaded());
    GoogleFontLoader byPaths;
    byPaths.builinGoogleJsonFilePath();
    byPaths.customFilepath_JsonGoogleFont();
    QVERIFY(!byPaths.isLoaded());
}

void tst_GoogleFontLoader::informations()
{
    GoogleFontLoader loader;
    QCOMPARE(loader.stringInformations(),
             QStringLiteral("1365 google font available\n(Last update : 2022-02-25)"));
}

void tst_GoogleFontLoader::informationsAreTranslated()
{
    GoogleFontLoader loader;
    Bracketing translator;
    QCoreApplication::installTranslator(&translator);
    QCOMPARE(loader.stringInformations(),
             QStringLiteral("[GoogleFontLoader: 1365 google font available]\n"
                            "[GoogleFontLoader: (Last update : 2022-02-25)]"));
    QCoreApplication::removeTranslator(&translator);
}

void tst_GoogleFontLoader::laterCustomListReplaces()
{
    writeCustom(listOf("My Font", "2022-02-26"));
    LogCapture log;
    GoogleFontLoader loader;
    QVERIFY(loader.load());
    QCOMPARE(loader.fontNames(), QStringList(QStringLiteral("My Font")));
    GoogleFontItem item;
    QVERIFY(loader.findItemByName(QStringLiteral("myfont"), item));
    QVERIFY(!loader.findItemByName(QStringLiteral("Open Sans"), item)); // entirely replaced
    QCOMPARE(loader.stringInformations(),
             QStringLiteral("1 google font available\n(Last update : 2022-02-26)"));
    QCOMPARE(log.lines(), QStringList());
}

void tst_GoogleFontLoader::customListThatIsNotLater_data()
{
    const auto row = columns<QByteArray>("content");
    row("same date", listOf("My Font", "2022-02-25"));
    row("older", listOf("My Font", "2022-02-24"));
    row("no readable date", listOf("My Font", "tomorrow"));
    row("no family", "{}");
}

void tst_GoogleFontLoader::customListThatIsNotLater()
{
    QFETCH(QByteArray, content);
    writeCustom(content);
    LogCapture log;
    loadTheBuiltInList();
    QCOMPARE(log.lines(), QStringList());
}

void tst_GoogleFontLoader::unusableCustomList_data()
{
    const auto row = columns<QByteArray>("content");
    row("empty", QByteArray());
    row("cut short", listOf("My Font", "2022-02-26").chopped(3));
    row("no JSON", "<html></html>");
}

void tst_GoogleFontLoader::unusableCustomList()
{
    QFETCH(QByteArray, content);
    writeCustom(content);
    LogCapture log;
    loadTheBuiltInList();
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.lines().at(0).startsWith(
        QStringLiteral("warning orvautils GoogleFontFile loadJsonGFontFromBynaryDatas: "
                       "GFonts file parsing error: ")));
}

void tst_GoogleFontLoader::customListThatCannotBeOpened()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    writeCustom(listOf("My Font", "2022-02-26"));
    QVERIFY(QFile::setPermissions(mHome.path(), QFileDevice::Permissions(0x7777)));
    QVERIFY(QFile::setPermissions(customPath(), QFileDevice::Permissions()));
    const QString record = QStringLiteral(
        "warning orvautils GoogleFontFile loadJsonGFontFromFilePath: GFonts file opening error");
    LogCapture log;
    {
        OrdinaryUser ordinary;
        for (int i = 0; i < 2; ++i) {
            loadTheBuiltInList();
        }
    }
    // A file that could not be read is read again, although it has not changed.
    QCOMPARE(log.lines(), QStringList({record, record}));
    QVERIFY(QFile::setPermissions(customPath(), QFileDevice::ReadOwner));
    GoogleFontLoader loader;
    QCOMPARE(loader.fontNames(), QStringList(QStringLiteral("My Font")));
}

void tst_GoogleFontLoader::loadedInstanceLooksNoMore()
{
    GoogleFontLoader loader;
    QVERIFY(loader.load());
    writeCustom(listOf("My Font", "2022-02-26"));
    QVERIFY(loader.load());
    QCOMPARE(loader.fontNames().size(), 1365);
}

void tst_GoogleFontLoader::allInstancesShareTheCatalogue()
{
    GoogleFontLoader early;
    QCOMPARE(early.fontNames().size(), 1365);
    writeCustom(listOf("My Font", "2022-02-26"));
    GoogleFontLoader late;
    QVERIFY(late.load());
    QCOMPARE(early.fontNames(), QStringList(QStringLiteral("My Font")));
    QVERIFY(QFile::remove(customPath()));
    GoogleFontLoader last;
    QVERIFY(last.load());
    QCOMPARE(early.fontNames().size(), 1365);
}

void tst_GoogleFontLoader::unchangedCustomListIsNotParsedAgain()
{
    writeCustom(listOf("My Font", "2022-02-26"));
    setTimeOfCustom(1700000000);
    GoogleFontLoader first;
    QCOMPARE(first.fontNames(), QStringList(QStringLiteral("My Font")));
    // Different content with the same size and time: a second parse would notice it.
    writeCustom(listOf("No Font", "2022-02-26"));
    setTimeOfCustom(1700000000);
    GoogleFontLoader second;
    QCOMPARE(second.fontNames(), QStringList(QStringLiteral("My Font")));
}

void tst_GoogleFontLoader::changedCustomListIsParsedAgain_data()
{
    const auto row = columns<QByteArray, int, QString>("family", "seconds", "application");
    row("another time", "No Font", 1, "fonttest");
    row("another size", "Some Font", 0, "fonttest");
    row("another path", "No Font", 0, "fontcopy");
}

void tst_GoogleFontLoader::changedCustomListIsParsedAgain()
{
    QFETCH(QByteArray, family);
    QFETCH(int, seconds);
    QFETCH(QString, application);
    writeCustom(listOf("My Font", "2022-02-26"));
    setTimeOfCustom(1700000000);
    GoogleFontLoader first;
    QCOMPARE(first.fontNames(), QStringList(QStringLiteral("My Font")));

    CoreApplicationUtils::setApplicationName(application);
    QVERIFY(QDir().mkpath(QFileInfo(customPath()).path()));
    writeCustom(listOf(family.constData(), "2022-02-26"));
    setTimeOfCustom(1700000000 + seconds);
    GoogleFontLoader second;
    QCOMPARE(second.fontNames(), QStringList(QString::fromLatin1(family)));
    QFile::remove(customPath());
    CoreApplicationUtils::setApplicationName(QStringLiteral("fonttest"));
}

/// The time of a file that is written again within a moment may stay the same.
void tst_GoogleFontLoader::customListChangedAtOnce()
{
    for (int i = 0; i < 50; ++i) {
        const QByteArray family = i % 2 == 0 ? "My Font" : "No Font";
        QFile file(customPath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(listOf(family.constData(), "2022-02-26"));
        file.close();
        GoogleFontLoader loader;
        QCOMPARE(loader.fontNames(), QStringList(QString::fromLatin1(family)));
    }
}

void tst_GoogleFontLoader::brokenCustomListIsLoggedOnce()
{
    writeCustom("{");
    LogCapture log;
    for (int i = 0; i < 3; ++i) {
        GoogleFontLoader loader;
        QCOMPARE(loader.fontNames().size(), 1365);
    }
    QCOMPARE(log.lines().size(), 1);
}

QTEST_GUILESS_MAIN(tst_GoogleFontLoader)
#include "tst_GoogleFontLoader.moc"

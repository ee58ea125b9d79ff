// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "GoogleFontFile.h"

#include "Columns.h"
#include "LogCapture.h"
#include "OrdinaryUser.h"
#include "SystemCalls.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString realList()
{
    return QStringLiteral(ORVAUTILS_RESOURCES_DIR "/google.json");
}

/// A catalogue of families that have only a name.
QByteArray listOf(const QStringList& families)
{
    QJsonArray items;
    for (const QString& family : families) {
        QJsonObject item;
        item[QStringLiteral("family")] = family;
        items += item;
    }
    QJsonObject list;
    list[QStringLiteral("items")] = items;
    return QJsonDocument(list).toJson();
}

/// A reference for indexOf() that uses no index.
int firstMatch(const QList<GoogleFontItem>& items, const QString& name)
{
    for (int i = 0; i < items.size(); ++i)
        if (items.at(i).family().compare(name, Qt::CaseInsensitive) == 0
            || items.at(i).compressedFamily().compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

} // namespace

class tst_GoogleFontFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void emptyByDefault();
    void loadsInFileOrder();
    void keepsTheDocument();
    void clearForgets();
    void latestModification_data();
    void latestModification();
    void documentsWithoutFamilies_data();
    void documentsWithoutFamilies();
    void itemsThatAreNoObjects();
    void parseErrors_data();
    void parseErrors();
    void missingFile();
    void fileThatCannotBeOpened();
    void folder();
    void brokenFile();
    void loadsAFile();
    void realListWhole();
    void indexFollowsFileOrder_data();
    void indexFollowsFileOrder();
    void indexAgreesWithLinearSearch();
    void indexOfEveryCase();
    void indexOfHalfCharacters();
    void copiesAreValues();

private:
    void checkEmpty(const GoogleFontFile& file);

    QTemporaryDir mFolder;
    GoogleFontFile mLoaded;
};

void tst_GoogleFontFile::init()
{
    QVERIFY(mFolder.isValid());
    QVERIFY(mLoaded.loadJsonGFontFromBynaryDatas(
        R"({"items": [{"family": "Abel", "lastModified": "2021-05-06"}]})"));
}

void tst_GoogleFontFile::checkEmpty(const GoogleFontFile& file)
{
    QVERIFY(!file.isValid());
    QCOMPARE(file.count(), 0);
    QVERIFY(file.items().isEmpty());
    QVERIFY(!file.lastModification().isValid());
    QVERIFY(file.doc().isNull());
    QCOMPARE(file.indexOf(QStringLiteral("Abel")), -1);
    QCOMPARE(file.indexOf(QString()), -1);
}

void tst_GoogleFontFile::emptyByDefault()
{
    checkEmpty(GoogleFontFile());
}

void tst_GoogleFontFile::loadsInFileOrder()
{
    LogCapture log;
    GoogleFontFile file;
    QVERIFY(file.loadJsonGFontFromBynaryDatas(
        listOf({QStringLiteral("Zeta"), QStringLiteral("Alpha"), QStringLiteral("Mid Dle")})));
    QVERIFY(file.isValid());
    QCOMPARE(file.count(), 3);
    QCOMPARE(file.items().size(), 3);
    QCOMPARE(file.items().at(0).family(), QStringLiteral("Zeta"));
    QCOMPARE(file.items().at(1).family(), QStringLiteral("Alpha"));
    QCOMPARE(file.items().at(2).family(), QStringLiteral("Mid Dle"));
    QVERIFY(!file.lastModification().isValid());
    // A second load replaces the first one.
    QVERIFY(file.loadJsonGFontFromBynaryDatas(listOf({QStringLiteral("Beta")})));
    QCOMPARE(file.count(), 1);
    QCOMPARE(file.indexOf(QStringLiteral("Zeta")), -1);
    QCOMPARE(log.lines(), QStringList());
}

void tst_GoogleFontFile::keepsTheDocument()
{
    const QByteArray text = R"({"kind": "list", "items": [{"family": "A", "files": {"x": "y"}}]})";
    GoogleFontFile file;
    QVERIFY(file.loadJsonGFontFromBynaryDatas(text));
    QCOMPARE(file.doc(), QJsonDocument::fromJson(text));
    QCOMPARE(file.items().at(0).object(),
             QJsonDocument::fromJson(R"({"family": "A", "files": {"x": "y"}})").object());
}

void tst_GoogleFontFile::clearForgets()
{
    QVERIFY(mLoaded.isValid());
    QCOMPARE(mLoaded.indexOf(QStringLiteral("Abel")), 0);
    mLoaded.clear();
    checkEmpty(mLoaded);
}

void tst_GoogleFontFile::latestModification_data()
{
    const auto row = columns<QString, QDate>("dates", "latest");
    row("one", "2021-01-02", QDate(2021, 1, 2));
    row("last is latest", "2021-01-02 2021-01-03", QDate(2021, 1, 3));
    row("first is latest", "2022-01-02 2021-12-31 2020-01-01", QDate(2022, 1, 2));
    row("unreadable ones do not count", "never 2021-01-02 9999-99-99", QDate(2021, 1, 2));
    row("none readable", "never 2021-02-30", QDate());
}

void tst_GoogleFontFile::latestModification()
{
    QFETCH(QString, dates);
    QFETCH(QDate, latest);
    QJsonArray items;
    for (const QString& date : dates.split(QLatin1Char(' '))) {
        QJsonObject item;
        item[QStringLiteral("lastModified")] = date;
        items += item;
    }
    QJsonObject list;
    list[QStringLiteral("items")] = items;
    GoogleFontFile file;
    QVERIFY(file.loadJsonGFontFromBynaryDatas(QJsonDocument(list).toJson()));
    QCOMPARE(file.lastModification(), latest);
    QCOMPARE(file.count(), items.size());
}

void tst_GoogleFontFile::documentsWithoutFamilies_data()
{
    const auto row = columns<QByteArray>("text");
    row("no items", "{}");
    row("empty items", QByteArray(R"({"items": []})"));
    row("items that are no array", QByteArray(R"({"items": {"family": "A"}})"));
    row("an array", QByteArray(R"([{"family": "A"}])"));
}

void tst_GoogleFontFile::documentsWithoutFamilies()
{
    QFETCH(QByteArray, text);
    LogCapture log;
    QVERIFY(mLoaded.loadJsonGFontFromBynaryDatas(text));
    QVERIFY(mLoaded.isValid());
    QCOMPARE(mLoaded.count(), 0);
    QVERIFY(!mLoaded.lastModification().isValid());
    QVERIFY(!mLoaded.doc().isNull());
    QCOMPARE(log.lines(), QStringList());
}

void tst_GoogleFontFile::itemsThatAreNoObjects()
{
    GoogleFontFile file;
    QVERIFY(file.loadJsonGFontFromBynaryDatas(R"({"items": [1, "A", null, {"family": "B"}]})"));
    QCOMPARE(file.count(), 4);
    QCOMPARE(file.items().at(0).family(), QString());
    QCOMPARE(file.indexOf(QStringLiteral("b")), 3);
    QCOMPARE(file.indexOf(QString()), 0);
}

void tst_GoogleFontFile::parseErrors_data()
{
    const auto row = columns<QByteArray>("text");
    row("nothing", QByteArray());
    row("no JSON", "<html>");
    row("cut short", QByteArray(R"({"items": [{"family": "A"})"));
    row("garbage behind", QByteArray(R"({"items": []} x)"));
    row("unterminated text", QByteArray(R"({"items": ["A]})"));
    row("too deep", QByteArray(2000, '['));
    row("zero bytes", QByteArray(64, '\0'));
}

void tst_GoogleFontFile::parseErrors()
{
    QFETCH(QByteArray, text);
    QJsonParseError error;
    QJsonDocument::fromJson(text, &error);
    LogCapture log;
    QVERIFY(!mLoaded.loadJsonGFontFromBynaryDatas(text));
    checkEmpty(mLoaded);
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("warning orvautils GoogleFontFile "
                                        "loadJsonGFontFromBynaryDatas: GFonts file parsing error: ")
                         + error.errorString()));
}

void tst_GoogleFontFile::missingFile()
{
    LogCapture log;
    QVERIFY(!mLoaded.loadJsonGFontFromFilePath(mFolder.filePath(QStringLiteral("missing.json"))));
    checkEmpty(mLoaded);
    QVERIFY(!mLoaded.loadJsonGFontFromFilePath(QString()));
    QCOMPARE(log.lines(), QStringList());
}

void tst_GoogleFontFile::fileThatCannotBeOpened()
{
    SKIP_ON_WINDOWS(
        "no permission there refuses reading, and under wine none refuses writing to root");
    const QString path = mFolder.filePath(QStringLiteral("locked.json"));
    write(path, listOf({QStringLiteral("A")}));
    QVERIFY(QFile::setPermissions(mFolder.path(), QFileDevice::Permissions(0x7777)));
    QVERIFY(QFile::setPermissions(path, QFileDevice::Permissions()));
    LogCapture log;
    {
        OrdinaryUser ordinary;
        QVERIFY(!mLoaded.loadJsonGFontFromFilePath(path));
    }
    checkEmpty(mLoaded);
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("warning orvautils GoogleFontFile "
                                        "loadJsonGFontFromFilePath: GFonts file opening error")));
}

void tst_GoogleFontFile::folder()
{
    LogCapture log;
    QVERIFY(!mLoaded.loadJsonGFontFromFilePath(mFolder.path()));
    checkEmpty(mLoaded);
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("warning orvautils GoogleFontFile "
                                        "loadJsonGFontFromFilePath: GFonts file opening error")));
}

void tst_GoogleFontFile::brokenFile()
{
    const QString path = mFolder.filePath(QStringLiteral("broken.json"));
    write(path, "{");
    LogCapture log;
    QVERIFY(!mLoaded.loadJsonGFontFromFilePath(path));
    checkEmpty(mLoaded);
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.lines().at(0).startsWith(
        QStringLiteral("warning orvautils GoogleFontFile loadJsonGFontFromBynaryDatas: "
                       "GFonts file parsing error: ")));
    // The file is not changed.
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("{"));
}

void tst_GoogleFontFile::loadsAFile()
{
    const QString path = mFolder.filePath(QStringLiteral("fonts \u00e9.json"));
    write(path, listOf({QStringLiteral("A"), QStringLiteral("B \u20ac")}));
    LogCapture log;
    GoogleFontFile file;
    QVERIFY(file.loadJsonGFontFromFilePath(path));
    QVERIFY(file.isValid());
    QCOMPARE(file.count(), 2);
    QCOMPARE(file.items().at(1).family(), QStringLiteral("B \u20ac"));
    QCOMPARE(log.lines(), QStringList());
}

void tst_GoogleFontFile::realListWhole()
{
    GoogleFontFile file;
    QVERIFY(file.loadJsonGFontFromFilePath(realList()));
    QCOMPARE(file.count(), 1365);
    QCOMPARE(file.items().size(), 1365);
    QCOMPARE(file.lastModification(), QDate(2022, 2, 25));
    QCOMPARE(file.items().first().family(), QStringLiteral("ABeeZee"));
    // The only family whose single style is italic.
    const GoogleFontItem molle = file.items().at(file.indexOf(QStringLiteral("molle")));
    QCOMPARE(molle.family(), QStringLiteral("Molle"));
    QCOMPARE(molle.availableWeights().keys(), QList<int>{400});
    QVERIFY(molle.availableWeights().value(400).hasItalic);
    QVERIFY(!molle.availableWeights().value(400).hasNormal);
    // Every family has a readable date, and weights that are multiples of 100.
    for (const GoogleFontItem& item : file.items()) {
        QVERIFY2(item.lastModified().isValid(), qPrintable(item.family()));
        QVERIFY2(!item.availableWeights().isEmpty(), qPrintable(item.family()));
        for (int weight : item.availableWeights().keys()) {
            QVERIFY2(weight % 100 == 0 && weight >= 100 && weight <= 900,
                     qPrintable(item.family()));
        }
    }
}

void tst_GoogleFontFile::indexFollowsFileOrder_data()
{
    // families: separated by "|"
    const auto row = columns<QString, QString, int>("families", "name", "position");
    row("exact", "Abel|Open Sans", "Open Sans", 1);
    row("any case", "Abel|Open Sans", "oPEN sANS", 1);
    row("without blanks", "Abel|Open Sans", "OpenSans", 1);
    row("without blanks, any case", "Abel|Open Sans", "OPENSANS", 1);
    row("blank too many", "Abel|Open Sans", "Open  Sans", -1);
    row("blank in another place", "Abel|Open Sans", "OpenS ans", -1);
    row("some of the blanks", "A B C", "A BC", -1);
    row("blanks around", "Abel|Open Sans", " Open Sans ", -1);
    row("a part", "Abel|Open Sans", "Open", -1);
    row("nothing", "Abel|Open Sans", "", -1);
    row("twice the same", "Abel|Twin|Twin", "twin", 1);
    row("twice in different cases", "TWIN|twin", "twin", 0);
    row("compressed before whole", "Open Sans|OpenSans", "opensans", 0);
    row("whole before compressed", "OpenSans|Open Sans", "opensans", 0);
    row("only the second has the blank", "OpenSans|Open Sans", "open sans", 1);
    row("name of blanks", "Abel|  ", "", 1);
    row("name of blanks itself", "Abel|  ", "  ", 1);
    row("accents", "Abel|\u00c9t\u00e9 Sans", "\u00e9T\u00c9SANS", 1);
    // Case is folded character by character.
    row("sharp s", "Stra\u00dfe", "STRASSE", -1);
    row("capital sharp s", "Stra\u00dfe", "STRA\u1e9eE", 0);
    row("beyond the BMP", "A|\U00010400x", "\U00010428X", 1);
}

void tst_GoogleFontFile::indexFollowsFileOrder()
{
    QFETCH(QString, families);
    QFETCH(QString, name);
    QFETCH(int, position);
    GoogleFontFile file;
    QVERIFY(file.loadJsonGFontFromBynaryDatas(listOf(families.split(QLatin1Char('|')))));
    QCOMPARE(firstMatch(file.items(), name), position);
    QCOMPARE(file.indexOf(name), position);
}

void tst_GoogleFontFile::indexAgreesWithLinearSearch()
{
    GoogleFontFile file;
    QVERIFY(file.loadJsonGFontFromFilePath(realList()));
    const QList<GoogleFontItem> items = file.items();
    for (int i = 0; i < items.size(); i += 7) {
        const QString family = items.at(i).family();
        for (const QString& name :
             {family, family.toLower(), family.toUpper(), items.at(i).compressedFamily(),
              items.at(i).compressedFamily().toLower(), family + QLatin1Char('x'),
              QString(QLatin1Char(' ') + family), family.left(family.size() - 1)})
            QCOMPARE(file.indexOf(name), firstMatch(items, name));
    }
}

void tst_GoogleFontFile::indexOfEveryCase()
{
    // A family for every character that a case conversion changes: a name that compares equal
    // without regard to case must be found, and nothing else.
    QStringList families;
    QVector<uint> characters;
    for (uint c = 0x21; c < 0x1f000; ++c) {
        if (!QChar::isSurrogate(c)
            && (QChar::toUpper(c) != c || QChar::toLower(c) != c || QChar::toCaseFolded(c) != c)) {
            characters += c;
            families += QString::fromUcs4(&c, 1);
        }
    }
    QVERIFY(families.size() > 2000);
    GoogleFontFile file;
    QVERIFY(file.loadJsonGFontFromBynaryDatas(listOf(families)));
    for (int i = 0; i < families.size(); ++i) {
        const uint c = characters.at(i);
        for (const uint variant : {c, uint(QChar::toUpper(c)), uint(QChar::toLower(c)),
                                   uint(QChar::toTitleCase(c)), uint(QChar::toCaseFolded(c))}) {
            const QString name = QString::fromUcs4(&variant, 1);
            const int found = file.indexOf(name);
            const bool same = families.at(i).compare(name, Qt::CaseInsensitive) == 0;
            // The first match is this family or an earlier one that compares equal.
            QVERIFY2(!same || (found >= 0 && found <= i), qPrintable(families.at(i)));
            QVERIFY2(found < 0 || families.at(found).compare(name, Qt::CaseInsensitive) == 0,
                     qPrintable(name));
        }
    }
}

void tst_GoogleFontFile::indexOfHalfCharacters()
{
    // A high surrogate at the end and before another character, written as an escape in JSON.
    GoogleFontFile file;
    QVERIFY(file.loadJsonGFontFromBynaryDatas(
        R"({"items": [{"family": "a\ud801"}, {"family": "\ud801b"}, {"family": "\udc00C"}]})"));
    QCOMPARE(file.indexOf(QStringLiteral("A") + QChar(0xd801)), 0);
    QCOMPARE(file.indexOf(QChar(0xd801) + QStringLiteral("B")), 1);
    QCOMPARE(file.indexOf(QChar(0xdc00) + QStringLiteral("c")), 2);
    QCOMPARE(file.indexOf(QString(QChar(0xd801))), -1);
}

void tst_GoogleFontFile::copiesAreValues()
{
    const GoogleFontFile copy = mLoaded;
    mLoaded.clear();
    QVERIFY(copy.isValid());
    QCOMPARE(copy.count(), 1);
    QCOMPARE(copy.indexOf(QStringLiteral("ABEL")), 0);
    QCOMPARE(copy.lastModification(), QDate(2021, 5, 6));
}

QTEST_GUILESS_MAIN(tst_GoogleFontFile)
#include "tst_GoogleFontFile.moc"

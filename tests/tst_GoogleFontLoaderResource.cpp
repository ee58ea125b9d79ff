// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The loader with built-in lists that this test adds and removes, as no program that links to the
// library can: the behaviour without any catalogue, and how often the list is parsed.

#include "ApplicationUtils.h"
#include "GoogleFontLoader.h"

#include "LogCapture.h"

#include <QFile>
#include <QResource>
#include <QTemporaryDir>
#include <QtTest>

// Replaces the parts of the library that the loader calls.

static QString settingsFolder;

QString ApplicationUtils::pathApplicationSettings()
{
    return settingsFolder;
}

int qInitResources_webfonts()
{
    return 0; // nothing is compiled in: the test registers the lists
}

namespace {

/// A built-in list that exists as long as the object lives.
class BuiltIn
{
public:
    explicit BuiltIn(const char* name)
        : mPath(QStringLiteral(LOADER_LISTS_DIR "/loader_%1.rcc").arg(QLatin1String(name)))
    {
        if (!QResource::registerResource(mPath))
            qFatal("cannot register %s", qPrintable(mPath));
    }
    ~BuiltIn() { QResource::unregisterResource(mPath); }

private:
    Q_DISABLE_COPY(BuiltIn)

    const QString mPath;
};

} // namespace

class tst_GoogleFontLoaderResource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    // In this order: what is loaded stays loaded.
    void noCatalogueAtAll();
    void brokenCatalogue();
    void customAlone();
    void nextQueryTriesAgain();
    void builtInIsParsedOnce();

private:
    QTemporaryDir mFolder;
};

void tst_GoogleFontLoaderResource::initTestCase()
{
    QVERIFY(mFolder.isValid());
    settingsFolder = mFolder.path() + QLatin1Char('/');
    QVERIFY(!QFile::exists(GoogleFontLoader::builinGoogleJsonFilePath()));
}

void tst_GoogleFontLoaderResource::noCatalogueAtAll()
{
    LogCapture log;
    GoogleFontLoader loader;
    QVERIFY(!loader.load());
    QVERIFY(!loader.isLoaded());
    QCOMPARE(loader.fontNames(), QStringList());
    QJsonObject object;
    object[QStringLiteral("family")] = QStringLiteral("kept");
    GoogleFontItem item(object);
    QVERIFY(!loader.findItemByName(QStringLiteral("Abel"), item));
    QVERIFY(!loader.findItemByName(QString(), item));
    QCOMPARE(item.family(), QStringLiteral("kept"));
    QCOMPARE(loader.validName(QStringLiteral("Abel")), QString());
    QCOMPARE(loader.stringInformations(), QStringLiteral("No google font available !"));
    QVERIFY(!loader.isLoaded());
    QCOMPARE(log.lines(), QStringList());
}

void tst_GoogleFontLoaderResource::brokenCatalogue()
{
    BuiltIn broken("broken");
    LogCapture log;
    GoogleFontLoader loader;
    QVERIFY(!loader.load());
    QCOMPARE(loader.stringInformations(), QStringLiteral("No google font available !"));
    // Each query has tried again, and each time the list was damaged.
    QCOMPARE(log.lines().size(), 2);
    for (const QString& line : log.lines()) {
        QVERIFY2(line.startsWith(QStringLiteral(
                     "warning orvautils GoogleFontFile loadJsonGFontFromBynaryDatas: "
                     "GFonts file parsing error: ")),
                 qPrintable(line));
    }
}

void tst_GoogleFontLoaderResource::customAlone()
{
    QFile file(GoogleFontLoader::customFilepath_JsonGoogleFont());
    QVERIFY(file.open(QIODevice::WriteOnly));
    // Without a date it is not later than a missing list, and is ignored.
    file.write(R"({"items": [{"family": "Custom"}]})");
    file.close();
    GoogleFontLoader dateless;
    QVERIFY(!dateless.load());

    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"items": [{"family": "Custom", "lastModified": "1990-01-01"}]})");
    file.close();
    GoogleFontLoader loader;
    QVERIFY(loader.load());
    QCOMPARE(loader.fontNames(), QStringList(QStringLiteral("Custom")));
    QVERIFY(file.remove());
}

void tst_GoogleFontLoaderResource::nextQueryTriesAgain()
{
    GoogleFontLoader loader;
    QCOMPARE(loader.fontNames(), QStringList());
    QVERIFY(!loader.isLoaded());
    BuiltIn first("first");
    QCOMPARE(loader.fontNames(),
             QStringList({QStringLiteral("First One"), QStringLiteral("Abel")}));
    QVERIFY(loader.isLoaded());
}

void tst_GoogleFontLoaderResource::builtInIsParsedOnce()
{
    // Another list has replaced the first by now: a second parse would notice it.
    BuiltIn second("second");
    LogCapture log;
    GoogleFontLoader loader;
    QVERIFY(!loader.isLoaded());
    QVERIFY(loader.load());
    QCOMPARE(loader.fontNames(),
             QStringList({QStringLiteral("First One"), QStringLiteral("Abel")}));
    QCOMPARE(loader.stringInformations(),
             QStringLiteral("2 google font available\n(Last update : 2020-01-02)"));
    QCOMPARE(log.lines(), QStringList());
}

QTEST_GUILESS_MAIN(tst_GoogleFontLoaderResource)
#include "tst_GoogleFontLoaderResource.moc"

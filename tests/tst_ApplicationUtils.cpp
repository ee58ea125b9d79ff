// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ApplicationUtils.h"

#include "ChildProgram.h"
#include "Columns.h"
#include "CoreApplicationUtils.h"
#include "LogCapture.h"
#include "SystemCalls.h"
#include "TextStreamUTF8.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QScopedPointer>
#include <QScreen>
#include <QTemporaryDir>
#include <QUrl>
#include <QWidget>
#include <QWindow>
#include <QtTest>

#include <cstdio>
#include <memory>

namespace {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // deprecated since Qt 6
    const Qt::ApplicationAttribute pixmapsOfHighDpi = Qt::AA_UseHighDpiPixmaps;
const Qt::ApplicationAttribute scalingOfHighDpi = Qt::AA_EnableHighDpiScaling;
QT_WARNING_POP

// What the child reports about itself, one line each.
void report(QTextStream& out)
{
    using Utils = ApplicationUtils;
    out << "documents=" << Utils::pathDocuments() << '\n'
        << "images=" << Utils::pathImages() << '\n'
        << "temp=" << Utils::tempPath() << '\n'
        << "settings=" << Utils::pathSettingsOrvanel() << '\n'
        << "applicationSettings=" << Utils::pathApplicationSettings() << '\n'
        << "data=" << Utils::pathDatas() << '\n'
        << "extraBinaries=" << Utils::pathExtraBinaries() << '\n'
        << "version=" << Utils::pathVersion() << '\n'
        << "languages=" << Utils::pathLanguages() << '\n'
        << "qualification=" << Utils::detectQualificationMode() << '\n'
        << "developer=" << Utils::detectDeveloperMode() << '\n'
        << "either=" << Utils::detectDeveloperModeOrQualifMode() << '\n'
        << "quillo=" << Utils::detectIsQuillo() << '\n'
        << "label=" << Utils::labelDeveloperMode_QualifMode() << '\n';
}

int runAsChild(const QByteArray& mode, int& argc, char** argv)
{
    TextStreamUTF8 out(stdout);
    if (mode == "report") {
        QCoreApplication application(argc, argv);
        CoreApplicationUtils::setApplicationName(QStringLiteral("My Shop"));
        report(out);
        return 0;
    }
    if (mode == "report before") {
        CoreApplicationUtils::setApplicationName(QStringLiteral("My Shop"));
        report(out);
        return 0;
    }
    if (mode == "report after") {
        CoreApplicationUtils::setApplicationName(QStringLiteral("My Shop"));
        {
            QCoreApplication application(argc, argv);
            ApplicationUtils::pathDatas();
        }
        report(out);
        return 0;
    }
    if (mode == "high dpi") {
        const auto attributes = [] {
            return QString::number(QCoreApplication::testAttribute(pixmapsOfHighDpi))
                + QString::number(QCoreApplication::testAttribute(scalingOfHighDpi));
        };
        out << attributes() << '\n';
        ApplicationUtils::enableHightDPIMode();
        out << attributes() << '\n';
        QApplication application(argc, argv);
        out << attributes() << '\n';
        out << ApplicationUtils::devicePixelRatio(nullptr) << '\n';
        return 0;
    }
    if (mode == "no windows") {
        out << ApplicationUtils::isDailogAsyncOpeningSafe() << '\n';
        out << (ApplicationUtils::screenAt(QPoint(0, 0)) == nullptr) << '\n';
        QApplication application(argc, argv);
        out << ApplicationUtils::isDailogAsyncOpeningSafe() << '\n';
        return 0;
    }
    return 99;
}

// The lines "name=value" of a report.
QMap<QString, QString> values(const ChildResult& result)
{
    QMap<QString, QString> map;
    for (const QString& line : result.output)
        map.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1));
    return map;
}

const QString account = QStringLiteral(ORVAUTILS_DEVELOPER_ACCOUNT);

} // namespace

class tst_ApplicationUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void folders_data();
    void folders();
    void modes_data();
    void modes();
    void shippedFolders_data();
    void shippedFolders();
    void standardLocations_data();
    void standardLocations();
    void secondStandardLocation();
    void withoutApplicationName();
    void withoutApplicationObject_data();
    void withoutApplicationObject();
    void highDpiBeforeTheApplicationObject();
    void highDpiTooLate();
    void devicePixelRatio();
    void screenAt();
    void asyncOpeningWithoutWindows();
    void asyncOpening_data();
    void asyncOpening();
    void mimeDataFormats_data();
    void mimeDataFormats();
    void mimeDataOfAllKinds();
    void mimeDataOfAPicture();

private:
    // Runs this program from the folder \a place with the home folder \a home, both below mRoot.
    ChildResult runFrom(const QString& place, const QString& home,
                        const QString& mode = QStringLiteral("report"),
                        const QMap<QString, QString>& environment = {});

    std::unique_ptr<QTemporaryDir> mTemporaryDir;
    QString mRoot; // contains none of the words that the modes look for
};

void tst_ApplicationUtils::initTestCase()
{
    // The random letters of the folder must not form a word that the modes look for.
    const auto suits = [](const QString& path) {
        return !path.contains(QStringLiteral("bin")) && !path.contains(QStringLiteral("MacOS"))
            && !path.contains(account);
    };
    for (int i = 0; i < 20 && !(mTemporaryDir && suits(mRoot)); ++i) {
        mTemporaryDir.reset(new QTemporaryDir);
        QVERIFY(mTemporaryDir->isValid());
        mRoot = QDir(mTemporaryDir->path()).canonicalPath();
    }
    QVERIFY2(suits(mRoot), "the folder for temporary files has \"bin\" in its path");
}

ChildResult tst_ApplicationUtils::runFrom(const QString& place, const QString& home,
                                          const QString& mode,
                                          const QMap<QString, QString>& environment)
{
    const QDir root(mRoot);
    root.mkpath(place);
    root.mkpath(home);
    root.mkpath(QStringLiteral("temporary"));
    const QString program = root.filePath(place + QStringLiteral("/program"));
    if (!QFile::exists(program))
        QFile::copy(QCoreApplication::applicationFilePath(), program);

    QMap<QString, QString> variables = environment;
    const auto setDefault = [&variables](const char* name, const QString& value) {
        const QString key = QString::fromLatin1(name);
        if (!variables.contains(key))
            variables.insert(key, value);
    };
    setDefault("HOME", root.filePath(home));
    setDefault("TMPDIR", root.filePath(QStringLiteral("temporary")));
    setDefault("XDG_CONFIG_HOME", QString());
    setDefault("XDG_DATA_HOME", QString());
    setDefault("XDG_DATA_DIRS", QString());
    return runChildProgram(program, {QStringLiteral("--child"), mode}, variables);
}

void tst_ApplicationUtils::folders_data()
{
    const auto row =
        columns<QString, QString, QString>("place", "name", "expected"); // below the root

    const QString installed = QStringLiteral("Applications/X.app/Contents/MacOS");
    const QString bundle = QStringLiteral("Applications/X.app/Contents/");
    const QVector<QPair<QString, QString>> installedFolders = {
        {QStringLiteral("documents"), QStringLiteral("home/ann/Documents/")},
        {QStringLiteral("images"), QStringLiteral("home/ann/Pictures/")},
        {QStringLiteral("temp"), QStringLiteral("temporary/")},
        {QStringLiteral("settings"), QStringLiteral("home/ann/.local/share/Orvanel/")},
        {QStringLiteral("applicationSettings"),
         QStringLiteral("home/ann/.local/share/Orvanel/My Shop/")},
        {QStringLiteral("data"), bundle + QStringLiteral("Resources/data/")},
        {QStringLiteral("extraBinaries"), bundle + QStringLiteral("Frameworks/extraBinaries/")},
        {QStringLiteral("version"), bundle + QStringLiteral("Resources/data/version/")},
        {QStringLiteral("languages"), bundle + QStringLiteral("Resources/data/languages/")},
    };
    for (const auto& folder : installedFolders) {
#ifdef Q_OS_WIN // where the system, not the environment, determines the folders of a user
        if (!folder.second.startsWith(bundle))
            continue;
#endif
        row(qPrintable(QStringLiteral("installed: ") + folder.first), installed, folder.first,
            folder.second);
    }

    const QString built = QStringLiteral("work/proj/bin/debug/X.app/Contents/MacOS");
    const QVector<QPair<QString, QString>> buildFolders = {
        {QStringLiteral("documents"), QStringLiteral("home/ann/Documents/")},
        {QStringLiteral("images"), QStringLiteral("home/ann/Pictures/")},
        {QStringLiteral("temp"),
         QStringLiteral("home/ann/Documents/Orvanel Temp developper/My Shop/")},
        {QStringLiteral("settings"),
         QStringLiteral("home/ann/Documents/Orvanel Settings developper/")},
        {QStringLiteral("applicationSettings"),
         QStringLiteral("home/ann/Documents/Orvanel Settings developper/My Shop/")},
        {QStringLiteral("data"), QStringLiteral("work/proj/data/")},
        {QStringLiteral("extraBinaries"), QStringLiteral("work/proj/extraBinaries/")},
        {QStringLiteral("version"), QStringLiteral("work/proj/data/version/")},
        {QStringLiteral("languages"), QStringLiteral("work/proj/data/languages/")},
    };
    for (const auto& folder : buildFolders) {
#ifdef Q_OS_WIN
        if (!folder.second.startsWith(QStringLiteral("work/")))
            continue;
#endif
        row(qPrintable(QStringLiteral("build tree: ") + folder.first), built, folder.first,
            folder.second);
    }
}

void tst_ApplicationUtils::folders()
{
    QFETCH(QString, place);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    const ChildResult result = runFrom(place, QStringLiteral("home/ann"));
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(values(result).value(name), mRoot + QLatin1Char('/') + expected);
}

void tst_ApplicationUtils::modes_data()
{
    // modes: qualification, developer, either, developer of the account
    const auto row = columns<QString, QString, QString, QString>("place", "home", "modes", "label");

    const QString anyone = QStringLiteral("home/ann");
    const QString developer = QStringLiteral("home/") + account;
    const QString both = QStringLiteral("#dev mode# #qualif mode#");
    Q_UNUSED(both)
    const QString qualification = QStringLiteral("#qualif mode#");

    row("installed", "opt/shop", anyone, "0000", QString());
    row("installed at the developer's", "opt/shop", developer, "0000", QString());
    row("build tree", "work/bin", anyone, "1010", qualification);
#ifndef Q_OS_WIN // where the system determines the home folder, and "Bin" is "bin"
    row("build tree at the developer's", "work/bin", developer, "1111", both);
#endif
    row("the letters within a word", "cabin", anyone, "1010", qualification);
    row("the letters higher up", "robins/shop", anyone, "1010", qualification);
#ifndef Q_OS_WIN
    row("another case", "work/Bin", anyone, "0000", QString());
    row("the account within a name", "work/bin",
        QStringLiteral("home/old-") + account + QStringLiteral("-2"), "1111", both);
    row("the account higher up", "work/bin", account + QStringLiteral("/home"), "1111", both);
    row("the account in another case", "work/bin", QStringLiteral("home/") + account.toUpper(),
        "1010", qualification);
#endif
}

void tst_ApplicationUtils::modes()
{
    QFETCH(QString, place);
    QFETCH(QString, home);
    QFETCH(QString, modes);
    QFETCH(QString, label);
    const ChildResult result = runFrom(place, home);
    QCOMPARE(result.exitCode, 0);
    const auto value = values(result);
    QCOMPARE(value[QStringLiteral("qualification")] + value[QStringLiteral("developer")]
                 + value[QStringLiteral("either")] + value[QStringLiteral("quillo")],
             modes);
    QCOMPARE(value[QStringLiteral("label")], label);
}

void tst_ApplicationUtils::shippedFolders_data()
{
    const auto row = columns<QString, QString, QString>("place", "data", "extraBinaries");

    row("installed bundle", "Applications/X.app/Contents/MacOS",
        "Applications/X.app/Contents/Resources/data/",
        "Applications/X.app/Contents/Frameworks/extraBinaries/");
    row("every MacOS", "MacOS/X.app/Contents/MacOS", "/X.app/Contents/Resources/data/",
        "/X.app/Contents/Frameworks/extraBinaries/");
    row("MacOS within words", "aMacOSb/X.app/Contents/MacOSMacOS",
        "ab/X.app/Contents/Resources/data/", "ab/X.app/Contents/Frameworks/extraBinaries/");
    row("MacOS in another case", "X.app/Contents/macos", "X.app/Contents/macosResources/data/",
        "X.app/Contents/macosFrameworks/extraBinaries/");
    row("no bundle", "opt/shop", "opt/shopResources/data/", "opt/shopFrameworks/extraBinaries/");

    row("debug", "work/proj/bin/debug/X.app/Contents/MacOS", "work/proj/data/",
        "work/proj/extraBinaries/");
    row("release", "work/proj/bin/release/X.app/Contents/MacOS", "work/proj/data/",
        "work/proj/extraBinaries/");
    row("debug with a suffix", "work/proj/bin/debug-x86/sub/X.app/Contents/MacOS",
        "work/proj/data/", "work/proj/extraBinaries/");
    row("within a longer word", "work/cabin/debug/X.app/Contents/MacOS", "work/ca/data/",
        "work/ca/extraBinaries/");
    row("greedy", "p/bin/debug/a.app/Contents/MacOS/b.app/Contents/MacOS", "p/data/",
        "p/extraBinaries/");
    row("what follows stays", "p/bin/debug/a.app/Contents/MacOS/sub", "p//sub/data/",
        "p//sub/extraBinaries/");
    row("debug swallows release",
        "p/bin/debug/a.app/Contents/MacOS/bin/release/b.app/Contents/MacOS", "p/data/",
        "p/extraBinaries/");
    row("debug, then release", "p/bin/release/a.app/Contents/MacOS/bin/debug/b.app/Contents/MacOS",
        "p//data/", "p//extraBinaries/");
    row("cabin", "cabin", "cabin/data/", "cabin/extraBinaries/");
    row("no bundle in the build tree", "proj/bin/debug", "proj/bin/debug/data/",
        "proj/bin/debug/extraBinaries/");
    row("nothing between debug and the suffix", "bin/debug.app/Contents/MacOS",
        "bin/debug.app/Contents/MacOS/data/", "bin/debug.app/Contents/MacOS/extraBinaries/");
    row("the point is a point", "bin/debug/Xzapp/Contents/MacOS",
        "bin/debug/Xzapp/Contents/MacOS/data/", "bin/debug/Xzapp/Contents/MacOS/extraBinaries/");
#ifndef Q_OS_WIN // where it is the same folder
    row("debug in another case", "bin/Debug/X.app/Contents/MacOS",
        "bin/Debug/X.app/Contents/MacOS/data/", "bin/Debug/X.app/Contents/MacOS/extraBinaries/");
#endif
    row("another folder of bin", "bin/profile/X.app/Contents/MacOS",
        "bin/profile/X.app/Contents/MacOS/data/",
        "bin/profile/X.app/Contents/MacOS/extraBinaries/");
}

void tst_ApplicationUtils::shippedFolders()
{
    QFETCH(QString, place);
    QFETCH(QString, data);
    QFETCH(QString, extraBinaries);
    // On a developer's machine the rule of the build tree is the same.
    for (const QString& home : {QStringLiteral("home/ann"), QStringLiteral("home/") + account}) {
        const ChildResult result = runFrom(place, home);
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(values(result).value(QStringLiteral("data")), mRoot + QLatin1Char('/') + data);
        QCOMPARE(values(result).value(QStringLiteral("extraBinaries")),
                 mRoot + QLatin1Char('/') + extraBinaries);
    }
}

void tst_ApplicationUtils::standardLocations_data()
{
    // documentsDir: as configured by the user
    // settings: ignored if null
    const auto row = columns<QString, QString, QString, QString>("place", "documentsDir",
                                                                 "documents", "settings");

    const QString installed = QStringLiteral("opt/shop");
    const QString built = QStringLiteral("work/bin");
    row("as configured", installed, "/srv/papers", "/srv/papers/", QString());
    row("the root is not tidied", built, "/", "//", "//Orvanel Settings developper/");
    row("blanks around stay", installed, " /srv/a ", " /srv/a /", QString());
    row("nothing but blanks is none", built, " \t ", QString(), "Orvanel Settings developper/");
}

void tst_ApplicationUtils::standardLocations()
{
    SKIP_ON_WINDOWS("the system tells the folders of a user, not the environment");
    QFETCH(QString, place);
    QFETCH(QString, documentsDir);
    QFETCH(QString, documents);
    QFETCH(QString, settings);

    const QString home = QStringLiteral("home/configured");
    QVERIFY(QDir(mRoot).mkpath(home + QStringLiteral("/.config")));
    QFile config(mRoot + QLatin1Char('/') + home + QStringLiteral("/.config/user-dirs.dirs"));
    QVERIFY(config.open(QIODevice::WriteOnly));
    config.write("XDG_DOCUMENTS_DIR=\"" + documentsDir.toUtf8() + "\"\n");
    config.close();

    const ChildResult result = runFrom(place, home);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(values(result).value(QStringLiteral("documents")), documents);
    if (!settings.isNull()) {
        QCOMPARE(values(result).value(QStringLiteral("settings")), settings);
        QCOMPARE(values(result).value(QStringLiteral("applicationSettings")),
                 settings + QStringLiteral("My Shop/"));
    }
}

void tst_ApplicationUtils::secondStandardLocation()
{
    SKIP_ON_WINDOWS("the system tells the folders of a user, not the environment");
    const ChildResult result =
        runFrom(QStringLiteral("opt/shop"), QStringLiteral("home/ann"), QStringLiteral("report"),
                {{QStringLiteral("XDG_DATA_HOME"), QStringLiteral("   ")},
                 {QStringLiteral("XDG_DATA_DIRS"), QStringLiteral("/srv/first:/srv/second")}});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(values(result).value(QStringLiteral("settings")),
             QStringLiteral("/srv/first/Orvanel/"));
}

void tst_ApplicationUtils::withoutApplicationName()
{
    CoreApplicationUtils::setApplicationName(QString());
    QCOMPARE(ApplicationUtils::pathApplicationSettings(),
             ApplicationUtils::pathSettingsOrvanel() + QStringLiteral("/"));
}

void tst_ApplicationUtils::withoutApplicationObject_data()
{
    const auto row = columns<QString>("mode");
    row("before", "report before");
    row("after", "report after");
}

void tst_ApplicationUtils::withoutApplicationObject()
{
    SKIP_ON_WINDOWS("the system tells the folders of a user, not the environment");
    QFETCH(QString, mode);
    const QString home = QStringLiteral("home/") + account;
    const ChildResult result = runFrom(QStringLiteral("work/bin"), home, mode);
    QVERIFY(result.exitedNormally);
    QCOMPARE(result.exitCode, 0);
    const QString homePath = mRoot + QLatin1Char('/') + home;
    QCOMPARE(
        result.output,
        QStringList(
            {QStringLiteral("documents=") + homePath + QStringLiteral("/Documents/"),
             QStringLiteral("images=") + homePath + QStringLiteral("/Pictures/"),
             QStringLiteral("temp=") + mRoot + QStringLiteral("/temporary/"),
             QStringLiteral("settings=") + homePath + QStringLiteral("/.local/share/Orvanel/"),
             QStringLiteral("applicationSettings=") + homePath
                 + QStringLiteral("/.local/share/Orvanel/My Shop/"),
             QStringLiteral("data=Resources/data/"),
             QStringLiteral("extraBinaries=Frameworks/extraBinaries/"),
             QStringLiteral("version=Resources/data/version/"),
             QStringLiteral("languages=Resources/data/languages/"),
             QStringLiteral("qualification=0"), QStringLiteral("developer=0"),
             QStringLiteral("either=0"), QStringLiteral("quillo=0"), QStringLiteral("label=")}));
}

void tst_ApplicationUtils::highDpiBeforeTheApplicationObject()
{
    const ChildResult result =
        runFrom(QStringLiteral("opt/shop"), QStringLiteral("home/ann"), QStringLiteral("high dpi"));
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output,
             QStringList({QStringLiteral("00"), QStringLiteral("11"), QStringLiteral("11"),
                          QStringLiteral("1")}));
    QVERIFY(!result.errors.join(QLatin1Char('\n')).contains(QStringLiteral("enableHightDPIMode")));
}

void tst_ApplicationUtils::highDpiTooLate()
{
    LogCapture log;
    ApplicationUtils::enableHightDPIMode();
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("critical orvautils ApplicationUtils enableHightDPIMode: "
                                        "enableHightDPIMode() has to be called BEFORE "
                                        "QApplication")));
    QVERIFY(!QCoreApplication::testAttribute(pixmapsOfHighDpi));
    QVERIFY(!QCoreApplication::testAttribute(scalingOfHighDpi));
}

void tst_ApplicationUtils::devicePixelRatio()
{
    QWidget widget;
    QCOMPARE(ApplicationUtils::devicePixelRatio(&widget), 1.0);
    QCOMPARE(ApplicationUtils::devicePixelRatio(nullptr), 1.0);
}

void tst_ApplicationUtils::screenAt()
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    QVERIFY(!screens.isEmpty());
    QRect desktop;
    for (QScreen* screen : screens) {
        const QRect area = screen->geometry();
        desktop |= area;
        QCOMPARE(ApplicationUtils::screenAt(area.center()), screen);
        QCOMPARE(ApplicationUtils::screenAt(area.topLeft()), screen);
        QCOMPARE(ApplicationUtils::screenAt(area.topRight()), screen);
        QCOMPARE(ApplicationUtils::screenAt(area.bottomLeft()), screen);
        QCOMPARE(ApplicationUtils::screenAt(area.bottomRight()), screen);
    }
    QVERIFY(!ApplicationUtils::screenAt(desktop.topLeft() - QPoint(1, 0)));
    QVERIFY(!ApplicationUtils::screenAt(desktop.topLeft() - QPoint(0, 1)));
    QVERIFY(!ApplicationUtils::screenAt(desktop.bottomRight() + QPoint(1, 0)));
    QVERIFY(!ApplicationUtils::screenAt(desktop.bottomRight() + QPoint(0, 1)));
}

void tst_ApplicationUtils::asyncOpeningWithoutWindows()
{
    const ChildResult result = runFrom(QStringLiteral("opt/shop"), QStringLiteral("home/ann"),
                                       QStringLiteral("no windows"));
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output,
             QStringList({QStringLiteral("1"), QStringLiteral("1"), QStringLiteral("1")}));
}

void tst_ApplicationUtils::asyncOpening_data()
{
    const auto row = columns<int, bool>("modality", "safe");
    row("non-modal", int(Qt::NonModal), true);
    row("window modal", int(Qt::WindowModal), false);
    row("application modal", int(Qt::ApplicationModal), false);
}

void tst_ApplicationUtils::asyncOpening()
{
    QFETCH(int, modality);
    QFETCH(bool, safe);
    QVERIFY(ApplicationUtils::isDailogAsyncOpeningSafe());
    {
        QWindow other;
        QWindow window;
        window.setModality(static_cast<Qt::WindowModality>(modality));
        QWindow another;
        QCOMPARE(ApplicationUtils::isDailogAsyncOpeningSafe(), safe); // not even shown
        window.show();
        QCOMPARE(ApplicationUtils::isDailogAsyncOpeningSafe(), safe);
    }
    QVERIFY(ApplicationUtils::isDailogAsyncOpeningSafe());
}

void tst_ApplicationUtils::mimeDataFormats_data()
{
    const auto row = columns<QString, QString>("format", "stored");
    row("plain", "application/x-shop-price", "application/x-shop-price");
    row("native name", "application/x-qt-windows-mime;value=\"Rich Text Format\"",
        "Rich Text Format");
    row("another wrapping", "application/x-qtfoo\"name\"", "name");
    row("the first two quotes", "application/x-qt;a=\"one\";b=\"two\"", "one");
    row("one quote", "application/x-qt;value=\"open", "open");
    row("no quote", "application/x-qt-thing", "application/x-qt-thing");
    row("quotes in other formats", "application/x-shop;value=\"a\"",
        "application/x-shop;value=\"a\"");
    row("another case", "Application/x-qt;value=\"a\"", "Application/x-qt;value=\"a\"");
    row("not at the start", "x-application/x-qt;value=\"a\"", "x-application/x-qt;value=\"a\"");
}

void tst_ApplicationUtils::mimeDataFormats()
{
    QFETCH(QString, format);
    QFETCH(QString, stored);
    const QByteArray bytes("a\0b\xff", 4);
    QScopedPointer<QMimeData> source(new QMimeData);
    source->setData(format, bytes);
    const QScopedPointer<QMimeData> copy(ApplicationUtils::mimeDataCopy(source.data()));
    QCOMPARE(source->formats(), QStringList(format));
    source.reset();
    QCOMPARE(copy->formats(), QStringList(stored));
    QCOMPARE(copy->data(stored), bytes);
}

void tst_ApplicationUtils::mimeDataOfAllKinds()
{
    QMimeData source;
    source.setText(QStringLiteral("\u00e9t\u00e9"));
    source.setHtml(QStringLiteral("<b>\u00e9</b>"));
    source.setUrls({QUrl(QStringLiteral("file:///a%20b")), QUrl(QStringLiteral("http://c.d/"))});
    source.setData(QStringLiteral("application/x-qt;value=\"Native\""), "1");
    const QScopedPointer<QMimeData> copy(ApplicationUtils::mimeDataCopy(&source));
    QVERIFY(!copy->parent());
    QCOMPARE(copy->text(), QStringLiteral("\u00e9t\u00e9"));
    QCOMPARE(copy->html(), QStringLiteral("<b>\u00e9</b>"));
    QCOMPARE(copy->urls(), source.urls());
    QCOMPARE(copy->data(QStringLiteral("Native")), QByteArray("1"));
    QCOMPARE(copy->formats().size(), 4);

    const QMimeData empty;
    const QScopedPointer<QMimeData> emptyCopy(ApplicationUtils::mimeDataCopy(&empty));
    QCOMPARE(emptyCopy->formats(), QStringList());
}

// Qt has no size in bytes for a picture; the format is there nevertheless.
void tst_ApplicationUtils::mimeDataOfAPicture()
{
    QMimeData source;
    source.setImageData(QImage(3, 2, QImage::Format_RGB32));
    const QScopedPointer<QMimeData> copy(ApplicationUtils::mimeDataCopy(&source));
    QCOMPARE(copy->formats(), QStringList(QStringLiteral("application/x-qt-image")));
    QVERIFY(copy->data(QStringLiteral("application/x-qt-image")).isEmpty());
}

int main(int argc, char* argv[])
{
    return testOrChild<tst_ApplicationUtils>(argc, argv, runAsChild);
}

#include "tst_ApplicationUtils.moc"

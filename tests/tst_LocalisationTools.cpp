// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Uses real translation files: those of the application are compiled by lrelease when the tests are
// built, those of Qt come from the system. The system's language is Italian, see main().

#include "LocalisationTools.h"

#include "ApplicationUtils.h"
#include "ChildProgram.h"
#include "Columns.h"
#include "CoreApplicationUtils.h"
#include "LogCapture.h"
#include "SystemCalls.h"

#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QPointer>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <cstdio>
#include <cstring>
#include <functional>

namespace {

QStringList words(const char* blankSeparated)
{
    const QString text = QString::fromLatin1(blankSeparated);
    return text.isEmpty() ? QStringList() : text.split(QLatin1Char(' '));
}

QString greeting()
{
    return QCoreApplication::translate("Test", "greeting");
}
QString onlyEnglish()
{
    return QCoreApplication::translate("Test", "only English");
}

void touch(const QString& path)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
}

/// Counts the notifications of the application that its translators have changed, and can respond
/// to one of them.
class LanguageChanges : public QObject
{
public:
    LanguageChanges() { QCoreApplication::instance()->installEventFilter(this); }
    int count = 0;
    int answered = 0; ///< the notification to respond to; 0 for none
    std::function<void()> answer;

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::LanguageChange && ++count == answered)
            answer();
        return false;
    }
};

} // namespace

class tst_LocalisationTools : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void findLanguages_data();
    void findLanguages();
    void languagesAreNotSorted();
    void applicationLanguages();
    void translationKeys_data();
    void translationKeys();
    void folders_data();
    void folders();

    void installedTranslatorStaysTheCallers();
    void clearDeletes();
    void clearAfterTheHostDeleted();
    void defaultLanguage();
    void defaultLanguageMissing_data();
    void defaultLanguageMissing();
    void defaultLanguageBroken();

    void frenchAboveEnglish();
    void regionAndItsFallback();
    void severalKeys();
    void everyChangeStartsAfresh();
    void changedAgainMeanwhile_data();
    void changedAgainMeanwhile();
    void languageWithoutFiles();
    void brokenFileOfTheLanguage();
    void fileWithoutTexts();
    void defaultLocaleComesLast();
    void noFilesAtAll();
    void emptyCodeIsTheSystem();
    void byLocale();
    void withoutApplication();

    void languageMatch_data();
    void languageMatch();

    void translateQt();
    void messages_data();
    void messages();
    void messagesOutsideTheTable_data();
    void messagesOutsideTheTable();
    void messagesInFrenchAndGerman_data();
    void messagesInFrenchAndGerman();
    void ownTextsInFrench();
    void applicationNameIsPutInAsItIs();

private:
    void provide(const char* names);
    void provideQt(const char* codes);
    QStringList translators() const;

    QString mLanguages;
};

void tst_LocalisationTools::initTestCase()
{
    QCOMPARE(QLocale::system().name(), QStringLiteral("it_IT"));
    const QString languages = ApplicationUtils::pathLanguages();
    const QString bundle = QCoreApplication::applicationDirPath().section(QLatin1Char('/'), 0, -3);
    QVERIFY(languages.startsWith(bundle) && languages.endsWith(QLatin1String("/languages/")));
    mLanguages = languages; // the tests empty this folder
    CoreApplicationUtils::setApplicationName(QStringLiteral("Fern & Co"));
}

void tst_LocalisationTools::init()
{
    QVERIFY(QDir(mLanguages).removeRecursively());
    QVERIFY(QDir().mkpath(mLanguages));
    QLocale::setDefault(QLocale::c());
}

void tst_LocalisationTools::cleanup()
{
    LocalisationTools::clearAppTranslators();
    QCOMPARE(translators(), QStringList());
    QLocale::setDefault(QLocale::c());
}

void tst_LocalisationTools::cleanupTestCase()
{
    QVERIFY(mLanguages.isEmpty() || QDir(mLanguages).removeRecursively());
}

/// Copies the compiled file "app_fr" of the application to the languages folder.
void tst_LocalisationTools::provide(const char* names)
{
    for (const QString& name : words(names)) {
        const QString file = name + QStringLiteral(".qm");
        QVERIFY2(QFile::copy(QStringLiteral(TRANSLATIONS_DIR "/") + file, mLanguages + file),
                 qPrintable(file));
    }
}

/// Copies Qt's own files for the languages to where they are searched for.
void tst_LocalisationTools::provideQt(const char* codes)
{
    QVERIFY(QDir().mkpath(mLanguages + QStringLiteral("qtbase")));
    for (const QString& code : words(codes)) {
        const QString file = QStringLiteral("qtbase_%1.qm").arg(code);
        QVERIFY2(QFile::copy(QLibraryInfo::location(QLibraryInfo::TranslationsPath)
                                 + QLatin1Char('/') + file,
                             mLanguages + QStringLiteral("qtbase/") + file),
                 "Qt's translations are missing (Debian: qttranslations5-l10n)");
    }
}

/// The translations of each translator of the application object, in the order of creation: the
/// name of one of our files, "qtbase" for a text of Qt, or "empty".
QStringList tst_LocalisationTools::translators() const
{
    QStringList texts;
    for (const QTranslator* translator : QCoreApplication::instance()->findChildren<QTranslator*>(
             QString(), Qt::FindDirectChildrenOnly)) {
        const QString file = translator->translate("Test", "file");
        const QString cancel = translator->translate("QPlatformTheme", "Cancel");
        texts += !file.isEmpty() ? file
            : !cancel.isEmpty()  ? QStringLiteral("qtbase ") + cancel
                                 : QStringLiteral("empty");
    }
    return texts;
}

void tst_LocalisationTools::findLanguages_data()
{
    const auto row = columns<QString, QString, QString>("files", "prefix", "codes");
    row("two", "app_fr.qm app_pt_BR.qm", "app_", "fr pt_BR");
    row("others left out", "app_fr.qm qtbase_fr.qm app_fr.ts readme", "app_", "fr");
    row("first point", "app_fr.old.qm app_de.x.y.qm", "app_", "de fr");
    row("no prefix", "app_fr.qm fr.qm", "", "app_fr fr");
    row("another prefix", "app_fr.qm qtbase_de.qm", "qtbase_", "de");
    row("letter case does not count", "APP_FR.QM", "app_", "FR");
    row("wildcard in the prefix", "app_fr.qm", "?pp_", "fr");
    row("none", "qtbase_fr.qm", "app_", "");
    row("empty folder", "", "app_", "");
}

void tst_LocalisationTools::findLanguages()
{
    QFETCH(QString, files);
    QFETCH(QString, prefix);
    QFETCH(QString, codes);
    for (const QString& file : words(files.toLatin1().constData()))
        touch(mLanguages + file);
    QStringList found = LocalisationTools::findLanguagesFromTranslationMask(mLanguages, prefix);
    found.sort();
    QCOMPARE(found, words(codes.toLatin1().constData()));
}

void tst_LocalisationTools::languagesAreNotSorted()
{
    QStringList expected;
    for (const char* code : {"zu", "b", "m", "aa", "fr", "de", "k", "q"})
        touch(mLanguages + QStringLiteral("app_%1.qm").arg(QLatin1String(code)));
    for (const QString& file : QDir(mLanguages).entryList(QDir::Files, QDir::Unsorted))
        expected += file.mid(4).chopped(3);
    QCOMPARE(
        LocalisationTools::findLanguagesFromTranslationMask(mLanguages, QStringLiteral("app_")),
        expected);
    QCOMPARE(LocalisationTools::findLanguagesFromTranslationMask(
                 mLanguages + QStringLiteral("missing"), QStringLiteral("app_")),
             QStringList());
    // A missing file does not hide others that match the same pattern.
    QVERIFY(QDir().mkpath(mLanguages + QStringLiteral("sub/app_it.qm")));
    QCOMPARE(LocalisationTools::findLanguagesFromTranslationMask(mLanguages + QStringLiteral("sub"),
                                                                 QStringLiteral("app_")),
             QStringList(QStringLiteral("it")));
}

void tst_LocalisationTools::applicationLanguages()
{
    QCOMPARE(LocalisationTools::applicationLanguages(), QList<QLocale>());
    provide("app_fr app_pt_BR shop_fr");
    QList<QLocale> expected;
    for (const QString& code :
         LocalisationTools::findLanguagesFromTranslationMask(mLanguages, QStringLiteral("app_")))
        expected += QLocale(code);
    QCOMPARE(expected.size(), 2);
    QVERIFY(expected.contains(QLocale(QLocale::French, QLocale::France)));
    QVERIFY(expected.contains(QLocale(QLocale::Portuguese, QLocale::Brazil)));
    QCOMPARE(LocalisationTools::applicationLanguages(), expected);
}

void tst_LocalisationTools::translationKeys_data()
{
    const auto row =
        namedByText(columns<QString, QString>("files", "keys")); // after "qtbase_", sorted
    row("", ""); // empty folder
    row("app_fr.qm", "app_"); // one
    row("app_en.qm app_fr.qm app_de.qm", "app_"); // without doubles
    row("app_fr.qm shop_fr.qm", "app_ shop_"); // two
    row("app_en.qm app_fr.qm qtbase_fr.qm", "app_"); // qtbase_ appears once
    row("qtbase_fr.qm", ""); // qtbase_ only
    row("app_pt_BR.qm", "app_"); // with a region
    row("readme.qm", ""); // no separator
    row("app_fr.ts", ""); // not a translation file
    row("_fr.qm", "_"); // separator first
    row("___.qm", "__"); // separators only
    row("x_y_fr.qm", "x_"); // a short middle part is taken for a language
    // "_help_fr.qm" has 11 characters, and "help_fr" is not a locale.
    row("qt_help_fr.qm", "qt_help_");
    // "_abc_d.qm" has 9 characters, "_abc_de.qm" has 10.
    row("x_abc_d.qm", "x_");
    row("x_abc_de.qm", "x_abc_");
    // "_fil_PH.qm" has 10 characters, but QLocale also calls it fil_PH.
    row("app_fil_PH.qm", "app_");
    // "_zh_Hans.qm" has 11 characters, and the name of that locale is zh_CN.
    row("app_zh_Hans.qm", "app_zh_");
    // Cut at "_pt_BR.qm" first, then "a_fil_PH_pt_BR" is not a locale.
    row("a_fil_PH_pt_BR.qm", "a_fil_PH_");
    row("app_fil_PH.old.qm", "app_"); // region after a dot
}

void tst_LocalisationTools::translationKeys()
{
    QFETCH(QString, files);
    QFETCH(QString, keys);
    for (const QString& file : words(files.toLatin1().constData()))
        touch(mLanguages + file);
    QStringList found = LocalisationTools::applicationTranslationKeys();
    QVERIFY(!found.isEmpty());
    QCOMPARE(found.takeFirst(), QStringLiteral("qtbase_"));
    found.sort();
    QCOMPARE(found, words(keys.toLatin1().constData()));
}

void tst_LocalisationTools::folders_data()
{
    const auto row = columns<QString>("folder"); // within the languages folder
    row("app_", "");
    row("qt_", "qt/");
    row("qtbase_", "qtbase/");
    row("QT_", "");
    row("Qtbase_", "");
    row("qt", "");
    row("qt_help_", "");
    row("", "");
}

void tst_LocalisationTools::folders()
{
    QFETCH(QString, folder);
    QCOMPARE(LocalisationTools::pathFile_QM(QLatin1String(QTest::currentDataTag())),
             mLanguages + folder);
}

void tst_LocalisationTools::installedTranslatorStaysTheCallers()
{
    QTranslator own;
    QVERIFY(own.load(QStringLiteral(TRANSLATIONS_DIR "/app_it.qm")));
    LocalisationTools::installTranslator(&own);
    QCOMPARE(greeting(), QStringLiteral("Buongiorno"));
    LocalisationTools::clearAppTranslators();
    QCOMPARE(greeting(), QStringLiteral("Buongiorno"));
    QVERIFY(QCoreApplication::removeTranslator(&own));
    QCOMPARE(greeting(), QStringLiteral("greeting"));
}

void tst_LocalisationTools::clearDeletes()
{
    provide("app_en app_fr");
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    QList<QPointer<QTranslator>> before;
    for (QTranslator* translator : QCoreApplication::instance()->findChildren<QTranslator*>())
        before += translator;
    QCOMPARE(before.size(), 3);
    QCOMPARE(greeting(), QStringLiteral("Bonjour"));
    LocalisationTools::clearAppTranslators();
    for (const QPointer<QTranslator>& translator : before)
        QVERIFY(translator.isNull());
    QCOMPARE(greeting(), QStringLiteral("greeting"));
    LocalisationTools::clearAppTranslators();
}

void tst_LocalisationTools::clearAfterTheHostDeleted()
{
    provide("app_en app_fr");
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator*>());
    LocalisationTools::clearAppTranslators();
    QCOMPARE(greeting(), QStringLiteral("greeting"));
}

void tst_LocalisationTools::defaultLanguage()
{
    provide("app_en app_fr");
    LogCapture log;
    LocalisationTools::loadDefaultLanguage(QStringLiteral("app_"));
    QCOMPARE(translators(), words("app_en"));
    QCOMPARE(greeting(), QStringLiteral("Good morning"));
    QCOMPARE(log.lines(), QStringList());
}

void tst_LocalisationTools::defaultLanguageMissing_data()
{
    const auto row = columns<QString>("path"); // of the record, within the languages folder
    row("app_", "app_en.qm");
    row("qt_", "qt/qt_en.qm");
    row("qtbase_", "");
    // Files that end like Qt's are skipped.
    row("my_qtbase_", "");
}

void tst_LocalisationTools::defaultLanguageMissing()
{
    QFETCH(QString, path);
    provide("app_fr");
    LogCapture log;
    LocalisationTools::loadDefaultLanguage(QLatin1String(QTest::currentDataTag()));
    QCOMPARE(translators(), words("empty")); // kept nevertheless
    QStringList expected;
    if (!path.isEmpty()) {
        expected += QStringLiteral(
                        "info orvautils LocalisationTools loadDefaultLanguage: ERROR reading :  ")
            + mLanguages + path;
    }
    QCOMPARE(log.lines(), expected);
    // It is installed: the application can remove it.
    QVERIFY(QCoreApplication::removeTranslator(
        QCoreApplication::instance()->findChild<QTranslator*>()));
}

void tst_LocalisationTools::defaultLanguageBroken()
{
    touch(mLanguages + QStringLiteral("app_en.qm"));
    LogCapture log;
    LocalisationTools::loadDefaultLanguage(QStringLiteral("app_"));
    QCOMPARE(translators(), words("empty"));
    QCOMPARE(log.lines(), QStringList()); // the file exists
}

void tst_LocalisationTools::frenchAboveEnglish()
{
    provide("app_en app_fr");
    provideQt("fr");
    touch(mLanguages + QStringLiteral("qtbase_fr.qm")); // not where Qt's files are searched for
    LogCapture log;
    LanguageChanges changes;
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    QCOMPARE(translators(),
             QStringList({QStringLiteral("empty"), QStringLiteral("qtbase Annuler"),
                          QStringLiteral("app_en"), QStringLiteral("app_fr")}));
    // The application is notified of every translator that is not empty.
    QCOMPARE(changes.count, 3);
    QCOMPARE(greeting(), QStringLiteral("Bonjour"));
    QCOMPARE(onlyEnglish(), QStringLiteral("English alone"));
    QCOMPARE(QLocale(), QLocale(QLocale::French, QLocale::France));
    QCOMPARE(log.lines(), QStringList());
    // All four are installed.
    for (QTranslator* translator : QCoreApplication::instance()->findChildren<QTranslator*>())
        QVERIFY(QCoreApplication::removeTranslator(translator));
}

void tst_LocalisationTools::regionAndItsFallback()
{
    provide("app_en app_fr app_pt_BR");
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("pt_BR")));
    QCOMPARE(greeting(), QStringLiteral("Bom dia"));
    QCOMPARE(QLocale(), QLocale(QLocale::Portuguese, QLocale::Brazil));
    // A region without its own file uses that of the language.
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("fr_CA")));
    QCOMPARE(greeting(), QStringLiteral("Bonjour"));
    QCOMPARE(QLocale(), QLocale(QLocale::French, QLocale::Canada));
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("en")));
    QCOMPARE(greeting(), QStringLiteral("Good morning"));
    QCOMPARE(translators(), words("empty app_en app_en"));
    QCOMPARE(QLocale().language(), QLocale::English);
}

void tst_LocalisationTools::severalKeys()
{
    provide("app_en shop_fr");
    LogCapture log;
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    // One key exists only in English, the other only in French: that is sufficient.
    QStringList installed = translators();
    QCOMPARE(installed.takeFirst(), QStringLiteral("empty")); // qtbase_
    installed.sort(); // the order of the other keys depends on the folder
    QCOMPARE(installed, words("app_en empty shop_fr"));
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("info orvautils LocalisationTools loadDefaultLanguage: "
                                        "ERROR reading :  ")
                         + mLanguages + QStringLiteral("shop_en.qm")));
    QCOMPARE(QLocale().language(), QLocale::French);
    QCOMPARE(onlyEnglish(), QStringLiteral("English alone"));
}

void tst_LocalisationTools::everyChangeStartsAfresh()
{
    provide("app_en app_fr app_it");
    for (int i = 0; i < 5; ++i) {
        QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
        QCOMPARE(translators(), words("empty app_en app_fr"));
        QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("it")));
        QCOMPARE(translators(), words("empty app_en app_it"));
        QCOMPARE(greeting(), QStringLiteral("Buongiorno"));
    }
}

void tst_LocalisationTools::changedAgainMeanwhile_data()
{
    const auto row = columns<int, bool>("event", "byCode");
    // The three translators of the former language are removed, then English and French added.
    for (const bool byCode : {true, false}) {
        for (int event = 1; event <= 5; ++event)
            row(QByteArray(byCode ? "by code, event " : "by locale, event ")
                    + QByteArray::number(event),
                event, byCode);
    }
}

void tst_LocalisationTools::changedAgainMeanwhile()
{
    QFETCH(int, event);
    QFETCH(bool, byCode);
    provide("app_en app_fr app_it");
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("en")));
    LanguageChanges changes;
    changes.answered = event;
    changes.answer = [] {
        QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("it")));
    };
    if (byCode)
        QVERIFY(!LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    else
        LocalisationTools::changeApplicationLanguageByLocale(QLocale(QLocale::French));
    QVERIFY2(changes.count >= event, qPrintable(QString::number(changes.count)));
    QCOMPARE(translators(), words("empty app_en app_it")); // one set only
    QCOMPARE(greeting(), QStringLiteral("Buongiorno"));
    QCOMPARE(QLocale().language(), QLocale::Italian);
}

void tst_LocalisationTools::languageWithoutFiles()
{
    SKIP_ON_WINDOWS("the system's language is not told by the environment");
    provide("app_en app_fr app_it");
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    for (const char* code : {"de", "no language", "_"}) {
        LogCapture log;
        QVERIFY(!LocalisationTools::changeApplicationLanguage(QLatin1String(code)));
        // The translators are for the system's language; the default locale stays the same.
        QCOMPARE(translators(), words("empty app_en app_it"));
        QCOMPARE(greeting(), QStringLiteral("Buongiorno"));
        QCOMPARE(QLocale(), QLocale(QLocale::French, QLocale::France));
        QCOMPARE(log.lines(), QStringList());
    }
}

void tst_LocalisationTools::brokenFileOfTheLanguage()
{
    SKIP_ON_WINDOWS("the system's language is not told by the environment");
    provide("app_en app_it");
    QFile broken(mLanguages + QStringLiteral("app_fr.qm"));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write(QByteArray(4096, 'x'));
    broken.close();
    LogCapture log;
    QVERIFY(!LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    QCOMPARE(greeting(), QStringLiteral("Buongiorno"));
    QCOMPARE(log.lines(), QStringList());
}

void tst_LocalisationTools::fileWithoutTexts()
{
    // Only the header of a compiled translation file.
    QFile empty(mLanguages + QStringLiteral("app_fr.qm"));
    QVERIFY(empty.open(QIODevice::WriteOnly));
    empty.write("\x3c\xb8\x64\x18\xca\xef\x9c\x95\xcd\x21\x1c\xbf\x60\xa1\xbd\xdd");
    empty.close();
    provide("app_en");
    LogCapture log;
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    QCOMPARE(QLocale().language(), QLocale::French);
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("warning orvautils LocalisationTools "
                                        "changeApplicationLanguage: installTranslator error  ")
                         + mLanguages + QStringLiteral("app_fr.qm")));
}

void tst_LocalisationTools::defaultLocaleComesLast()
{
    provide("app_en app_fr");
    LanguageChanges changes;
    QLocale seen;
    changes.answered = 2; // English, French
    changes.answer = [&seen] { seen = QLocale(); };
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    QCOMPARE(changes.count, 2);
    QCOMPARE(seen, QLocale::c());
    QCOMPARE(QLocale().language(), QLocale::French);
}

void tst_LocalisationTools::noFilesAtAll()
{
    QVERIFY(QDir(mLanguages).removeRecursively());
    QCOMPARE(LocalisationTools::applicationTranslationKeys(), words("qtbase_"));
    QCOMPARE(LocalisationTools::applicationLanguages(), QList<QLocale>());
    LogCapture log;
    QVERIFY(!LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    QCOMPARE(translators(), words("empty"));
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(QLocale(), QLocale::c());
}

void tst_LocalisationTools::emptyCodeIsTheSystem()
{
    SKIP_ON_WINDOWS("the system's language is not told by the environment");
    provide("app_en app_fr app_it");
    provideQt("it");
    QVERIFY(LocalisationTools::changeApplicationLanguage(QString()));
    QCOMPARE(translators(),
             QStringList({QStringLiteral("empty"), QStringLiteral("qtbase Annulla"),
                          QStringLiteral("app_en"), QStringLiteral("app_it")}));
    QCOMPARE(greeting(), QStringLiteral("Buongiorno"));
    QCOMPARE(QLocale(), QLocale::c()); // unchanged
    // Also if there is no file for the system's language.
    QVERIFY(QFile::remove(mLanguages + QStringLiteral("app_it.qm")));
    QVERIFY(QDir(mLanguages + QStringLiteral("qtbase")).removeRecursively());
    QVERIFY(LocalisationTools::changeApplicationLanguage(QLatin1String("")));
    QCOMPARE(greeting(), QStringLiteral("Good morning"));
}

void tst_LocalisationTools::byLocale()
{
    provide("app_en app_fr");
    provideQt("de");
    LogCapture log;
    LocalisationTools::changeApplicationLanguageByLocale(QLocale(QStringLiteral("fr_CA")));
    QCOMPARE(translators(), words("empty app_en app_fr"));
    QCOMPARE(greeting(), QStringLiteral("Bonjour"));
    QCOMPARE(onlyEnglish(), QStringLiteral("English alone"));
    QCOMPARE(QLocale(), QLocale::c()); // unchanged
    LocalisationTools::changeApplicationLanguageByLocale(QLocale(QStringLiteral("de_AT")));
    QCOMPARE(translators(),
             QStringList({QStringLiteral("empty"), QStringLiteral("qtbase Abbrechen"),
                          QStringLiteral("app_en")}));
    QCOMPARE(greeting(), QStringLiteral("Good morning"));
    QCOMPARE(log.lines(), QStringList());
}

/// A process without an application object, where the languages folder is relative.
static int changeWithoutApplication()
{
    LogCapture log;
    const bool changed = LocalisationTools::changeApplicationLanguage(QStringLiteral("fr"));
    std::printf("%s %s\n", changed ? "true" : "false", QLocale().name().toLatin1().constData());
    for (const CapturedRecord& record : log.records()) {
        if (record.category == "orvautils") {
            std::printf("%d %s %s\n", int(record.type), record.function.constData(),
                        record.text.toLatin1().constData());
        }
    }
    LocalisationTools::clearAppTranslators();
    return 0;
}

void tst_LocalisationTools::withoutApplication()
{
    QTemporaryDir folder;
    const QString languages = folder.path() + QStringLiteral("/Resources/data/languages/");
    QVERIFY(QDir().mkpath(languages));
    for (const char* name : {"app_en.qm", "app_fr.qm"}) {
        QVERIFY(QFile::copy(QStringLiteral(TRANSLATIONS_DIR "/") + QLatin1String(name),
                            languages + QLatin1String(name)));
    }
    const ChildResult child =
        runChildProgram(QCoreApplication::applicationFilePath(),
                        {QStringLiteral("--without-application"), folder.path()});
    QVERIFY(child.exitedNormally);
    QCOMPARE(child.exitCode, 0);
    // The translator is rejected, but the language counts as loaded.
    QCOMPARE(child.output,
             QStringList({QStringLiteral("true fr_FR"),
                          QStringLiteral("%1 changeApplicationLanguage installTranslator error  "
                                         "Resources/data/languages/app_fr.qm")
                              .arg(int(QtWarningMsg))}));
}

void tst_LocalisationTools::languageMatch_data()
{
    const auto row = columns<QString, QString, bool>("locale", "code", "match");
    row("language", "fr_FR", "fr", true);
    row("whole name", "fr_FR", "fr_FR", true);
    row("another region", "fr_CA", "fr_FR", false);
    row("language of a region", "fr_CA", "fr", true);
    row("another language", "fr_FR", "en", false);
    row("half a code", "fr_FR", "f", false);
    row("a code and a bit", "fr_FR", "fr_", false);
    row("letter case counts", "fr_FR", "FR", false);
    row("empty code", "fr_FR", "", false);
    row("three letters", "fil_PH", "fi", false);
    row("no language", "C", "C", true);
}

void tst_LocalisationTools::languageMatch()
{
    QFETCH(QString, locale);
    QFETCH(QString, code);
    QFETCH(bool, match);
    QLocale::setDefault(QLocale(locale));
    QCOMPARE(LocalisationTools::currentLanguageMatch(code), match);
}

void tst_LocalisationTools::translateQt()
{
    QCOMPARE(LocalisationTools::translateQt("QPlatformTheme", "Cancel"), QStringLiteral("Cancel"));
    QCOMPARE(LocalisationTools::translateQt("QPlatformTheme", "\xc3\xa9"),
             QStringLiteral("\u00e9"));
    provideQt("de");
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("de")));
    QCOMPARE(LocalisationTools::translateQt("QPlatformTheme", "Cancel"),
             QStringLiteral("Abbrechen"));
    QCOMPARE(LocalisationTools::translateQt("NoSuchContext", "Cancel"), QStringLiteral("Cancel"));
}

void tst_LocalisationTools::messages_data()
{
    const auto table = columns<int, int, QByteArray, QByteArray, QString>(
        "message", "number", "context", "source", "untranslated");
    const auto row = [&](int message, int number, const char* context, const char* source,
                         const char* untranslated = nullptr) {
        table(source, message, number, QByteArray(context), QByteArray(source),
              QString::fromLatin1(untranslated ? untranslated : source));
    };
    using L = LocalisationTools;
    row(L::MacPreferences, 0, "MAC_APPLICATION_MENU", "Preferences...");
    row(L::MacAbout, 1, "MAC_APPLICATION_MENU", "About %1", "About Fern & Co");
    row(L::ButtonOk, 2, "QPlatformTheme", "Ok");
    row(L::ButtonCancel, 3, "QPlatformTheme", "Cancel");
    row(L::ButtonClose, 4, "QPlatformTheme", "Close");
    row(L::MacQuit, 5, "MAC_APPLICATION_MENU", "Quit %1", "Quit Fern & Co");
    row(L::WizardDone, 6, "QWizard", "Done");
    row(L::WizardNext, 7, "QWizard", "&Next >");
    row(L::WizardBack, 8, "QWizard", "< &Back");
    row(L::ShortcutDelete, 9, "QShortcut", "Delete");
    row(L::MenuCut, 10, "QCocoaMenuItem", "Cut");
    row(L::MenuCopy, 11, "QCocoaMenuItem", "Copy");
    row(L::MenuPaste, 12, "QCocoaMenuItem", "Paste");
    row(L::MenuSelectAll, 13, "QCocoaMenuItem", "Select All");
    row(L::ShortcutSearch, 14, "QShortcut", "Search");
    row(L::ButtonSave, 15, "QPlatformTheme", "Save");
    row(L::ButtonApply, 16, "QPlatformTheme", "Apply");
    row(L::ButtonReset, 17, "QPlatformTheme", "Reset");
    row(L::FileDialogAllFiles, 18, "QFileDialog", "All Files (*)");
    row(L::StandardPathsPictures, 19, "QStandardPaths", "Pictures");
    row(L::FileDialogListView, 20, "QFileDialog", "List View");
    row(L::FileDialogDetailView, 21, "QFileDialog", "Detail View");
    row(L::FileDialogRename, 22, "QFileDialog", "&Rename");
    row(L::FileDialogDelete, 23, "QFileDialog", "Delete");
    row(L::FileDialogNewFolder, 24, "QFileDialog", "Create New Folder");
    row(L::FileDialogConfirmDelete, 25, "QFileDialog", "Are you sure you want to delete '%1'?");
    row(L::Duplicate, 26, "LocalisationTools", "Duplicate");
    row(L::UnselectAll, 27, "LocalisationTools", "Unselect All");
}

void tst_LocalisationTools::messages()
{
    QFETCH(int, message);
    QFETCH(int, number);
    QFETCH(QByteArray, context);
    QFETCH(QByteArray, source);
    QFETCH(QString, untranslated);
    QCOMPARE(message, number);
    const auto value = LocalisationTools::QtMessages(message);
    QCOMPARE(LocalisationTools::trQtMessages(value), untranslated);

    // The context and the source text that are passed to a translator.
    class Asked : public QTranslator
    {
    public:
        QString translate(const char* context, const char* source, const char* disambiguation,
                          int n) const override
        {
            return QStringLiteral("<%1|%2|%3|%4>")
                .arg(QLatin1String(context), QLatin1String(source),
                     QLatin1String(disambiguation ? disambiguation : ""), QString::number(n));
        }
        bool isEmpty() const override { return false; }
    } asked;
    QCoreApplication::installTranslator(&asked);
    QString expected = QStringLiteral("<%1|%2||-1>")
                           .arg(QString::fromLatin1(context), QString::fromLatin1(source));
    if (number == 1 || number == 5)
        expected.replace(QLatin1String("%1"), QLatin1String("Fern & Co"));
    QCOMPARE(LocalisationTools::trQtMessages(value), expected);
    QCoreApplication::removeTranslator(&asked);
}

void tst_LocalisationTools::messagesOutsideTheTable_data()
{
    const auto row = columns<int>("number");
    row("first behind", 28);
    row("1000", 1000);
    row("-1", -1);
    row("largest", std::numeric_limits<int>::max());
    row("smallest", std::numeric_limits<int>::min());
}

void tst_LocalisationTools::messagesOutsideTheTable()
{
    QFETCH(int, number);
    QCOMPARE(LocalisationTools::trQtMessages(LocalisationTools::QtMessages(number)), QString());
}

void tst_LocalisationTools::messagesInFrenchAndGerman_data()
{
    // As in Qt's own dialogs in French and German.
    const auto table = columns<QString, QString>("french", "german");
    const char* rows[][2] = {
        {u8"Préférences...", u8"Einstellungen..."},
        {u8"À propos de Fern & Co", u8"Über Fern & Co"},
        {u8"Ok", u8"Ok"}, // Qt's files contain only "OK"
        {u8"Annuler", u8"Abbrechen"},
        {u8"Fermer", u8"Schließen"},
        {u8"Quitter Fern & Co", u8"Fern & Co beenden"},
        {u8"Terminer", u8"Fertig"},
        {u8"&Suivant >", u8"&Weiter >"},
        {u8"< &Précédent", u8"< &Zurück"},
        {u8"Supprimer", u8"Löschen"},
        {u8"Couper", u8"Ausschneiden"},
        {u8"Copier", u8"Kopieren"},
        {u8"Coller", u8"Einfügen"},
        {u8"Tout sélectionner", u8"Alles auswählen"},
        {u8"Recherche", u8"Suchen"},
        {u8"Enregistrer", u8"Speichern"},
        {u8"Appliquer", u8"Anwenden"},
        {u8"Réinitialiser", u8"Zurücksetzen"},
        {u8"Tous les fichiers (*)", u8"Alle Dateien (*)"},
        {u8"Images", u8"Bilder"},
        {u8"Vue en liste", u8"Liste"},
        {u8"Vue détaillée", u8"Details"},
        {u8"&Renommer", u8"&Umbenennen"},
        {u8"Supprimer", u8"Löschen"},
        {u8"Créer un nouveau dossier", u8"Neuen Ordner erstellen"},
        {u8"Êtes-vous sûr de vouloir supprimer \"%1\" ?",
         u8"Sind Sie sicher, dass Sie '%1' löschen möchten?"},
    };
    int number = 0;
    for (const auto& row : rows) {
        table(qPrintable(QString::number(number++)), QString::fromUtf8(row[0]),
              QString::fromUtf8(row[1]));
    }
}

void tst_LocalisationTools::messagesInFrenchAndGerman()
{
    QFETCH(QString, french);
    QFETCH(QString, german);
    const auto message = LocalisationTools::QtMessages(QByteArray(QTest::currentDataTag()).toInt());
    provideQt("fr de");
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    QCOMPARE(LocalisationTools::trQtMessages(message), french);
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("de")));
    QCOMPARE(LocalisationTools::trQtMessages(message), german);
}

void tst_LocalisationTools::ownTextsInFrench()
{
    provide("app_fr");
    QVERIFY(LocalisationTools::changeApplicationLanguage(QStringLiteral("fr")));
    QCOMPARE(LocalisationTools::trQtMessages(LocalisationTools::Duplicate),
             QStringLiteral("Dupliquer"));
    QCOMPARE(LocalisationTools::trQtMessages(LocalisationTools::UnselectAll),
             QStringLiteral("Tout d\u00e9s\u00e9lectionner"));
}

void tst_LocalisationTools::applicationNameIsPutInAsItIs()
{
    CoreApplicationUtils::setApplicationName(QStringLiteral("%1 100%2"));
    QCOMPARE(LocalisationTools::trQtMessages(LocalisationTools::MacQuit),
             QStringLiteral("Quit %1 100%2"));
    CoreApplicationUtils::setApplicationName(QStringLiteral("Fern & Co"));
}

int main(int argc, char** argv)
{
    // An Italian system, whatever the machine uses; Qt reads these variables once in a process.
    qunsetenv("LANGUAGE");
    qunsetenv("LC_ALL");
    for (const char* category :
         {"LANG", "LC_MESSAGES", "LC_NUMERIC", "LC_TIME", "LC_MONETARY", "LC_MEASUREMENT"})
        qputenv(category, "it_IT.UTF-8");
    if (argc > 2 && std::strcmp(argv[1], "--without-application") == 0)
        return QDir::setCurrent(QString::fromLocal8Bit(argv[2])) ? changeWithoutApplication() : 1;
    QCoreApplication application(argc, argv);
    tst_LocalisationTools test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_LocalisationTools.moc"

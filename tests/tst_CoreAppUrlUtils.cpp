// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CoreAppUrlUtils.h"

#include "LogCapture.h"

#include <QLocale>
#include <QtTest>

#include <cstdio>
#include <cstdlib>

namespace {

/// What the translation service is asked for: \a encodedPage is percent-encoded by hand.
QString service(const QString& encodedPage, const QString& language)
{
    return QStringLiteral("https://" ORVAUTILS_TRANSLATION_HOST "/translate?hl=") + language
        + QStringLiteral("&sl=auto&tl=") + language + QStringLiteral("&u=") + encodedPage;
}

QStringList codes(const char* blankSeparated)
{
    return QString::fromLatin1(blankSeparated).split(QLatin1Char(' '));
}

const QStringList frEn = codes("fr en");

const char lastPage[] = "https://example.org/last";

/// Asks for an address when static objects are destroyed; the test's report is written already.
struct LastVisitor
{
    LastVisitor() { QLocale::setDefault(QLocale::c()); } // Qt keeps its locale for longer

    ~LastVisitor()
    {
        // Takes the memory that the class has let go of, if it has.
        const QString decoy(int(sizeof lastPage) - 1, QLatin1Char('x'));
        if (!expects
            || (CoreAppUrlUtils::urlContactUs() == QLatin1String(lastPage)
                && decoy.startsWith(QLatin1Char('x'))))
            return;
        std::fputs("the addresses are gone at exit\n", stderr);
        std::_Exit(1);
    }

    bool expects = false;
} lastVisitor;

} // namespace

class tst_CoreAppUrlUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void beforeRegistration_data(); // first: it sees the class as a program finds it
    void beforeRegistration();
    void map_data();
    void map();
    void mapWithoutFoundNeverMatches();
    void autoTranslated_data();
    void autoTranslated();
    void translationService_data();
    void translationService();
    void pagesByLanguage_data();
    void pagesByLanguage();
    void pairsAreIndependent();
    void registrationOverwrites();
    void documentation_data();
    void documentation();
    void nothingIsLogged();
    void cleanupTestCase();

private:
    void clearAddresses();
};

void tst_CoreAppUrlUtils::clearAddresses()
{
    CoreAppUrlUtils::initOrvanelWebSite(QString(), QStringList());
    CoreAppUrlUtils::initApplicationWebSite(QString(), QStringList());
    CoreAppUrlUtils::initDocumentation(QString(), QStringList());
    CoreAppUrlUtils::initContactUs(QString(), QStringList());
}

void tst_CoreAppUrlUtils::init()
{
    QLocale::setDefault(QLocale::c());
}

void tst_CoreAppUrlUtils::cleanup()
{
    clearAddresses();
    QLocale::setDefault(QLocale::c());
}

void tst_CoreAppUrlUtils::beforeRegistration_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("documentationPage");
    QTest::newRow("French user") << "fr_FR" << QString() << QStringLiteral("/index.html");
    QTest::newRow("German user") << "de_DE" << service(QString(), QStringLiteral("de_DE"))
                                 << service(QStringLiteral("%2Findex.html"),
                                            QStringLiteral("de_DE"));
}

void tst_CoreAppUrlUtils::beforeRegistration()
{
    QFETCH(QString, locale);
    QFETCH(QString, address);
    QFETCH(QString, documentationPage);
    QLocale::setDefault(QLocale(locale));
    QCOMPARE(CoreAppUrlUtils::urlOrvanelCompanynWebsite(), address);
    QCOMPARE(CoreAppUrlUtils::urlApplicationWebsite(), address);
    QCOMPARE(CoreAppUrlUtils::urlContactUs(), address);
    QCOMPARE(CoreAppUrlUtils::urlDocumentation(QString()), address);
    QCOMPARE(CoreAppUrlUtils::urlDocumentation(QStringLiteral("index.html")), documentationPage);
}

void tst_CoreAppUrlUtils::map_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("url");
    QTest::addColumn<QStringList>("langs");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QString>("address");

    const QString pattern = QStringLiteral("https://x.org/{{lang}}/p");
    QTest::newRow("first code") << "fr_FR" << pattern << frEn << true << "https://x.org/fr/p";
    QTest::newRow("second code") << "en_US" << pattern << frEn << true << "https://x.org/en/p";
    QTest::newRow("another country") << "fr_CA" << pattern << frEn << true << "https://x.org/fr/p";
    QTest::newRow("code with a country")
        << "fr_CA" << pattern << codes("en fr_FR") << true << "https://x.org/fr_FR/p";
    QTest::newRow("code kept as written")
        << "fr_FR" << pattern << codes("en FR-fr") << true << "https://x.org/FR-fr/p";
    QTest::newRow("first of two matches")
        << "pt_BR" << pattern << codes("en pt_PT pt_BR") << true << "https://x.org/pt_PT/p";
    QTest::newRow("no match") << "de_DE" << pattern << frEn << false << "https://x.org/fr/p";
    QTest::newRow("no language at all") << "de_DE" << pattern << QStringList() << false << pattern;
    QTest::newRow("placeholder twice")
        << "en_GB" << QStringLiteral("{{lang}}.x.org/{{lang}}{{lang}}") << frEn << true
        << "en.x.org/enen";
    QTest::newRow("placeholder twice, no match")
        << "de_DE" << QStringLiteral("{{lang}}.x.org/{{lang}}") << frEn << false << "fr.x.org/fr";
    QTest::newRow("no placeholder, match")
        << "en_GB" << QStringLiteral("https://x.org/") << frEn << true << "https://x.org/";
    QTest::newRow("no placeholder, no match")
        << "de_DE" << QStringLiteral("https://x.org/") << frEn << false << "https://x.org/";
    QTest::newRow("placeholder in capitals is text")
        << "en_GB" << QStringLiteral("/{{LANG}}/{lang}") << frEn << true << "/{{LANG}}/{lang}";
    QTest::newRow("code that holds the placeholder")
        << "de_DE" << pattern << codes("{{lang}}") << false << pattern;
    QTest::newRow("empty pattern") << "fr_FR" << QString() << frEn << true << QString();
}

void tst_CoreAppUrlUtils::map()
{
    QFETCH(QString, locale);
    QFETCH(QString, url);
    QFETCH(QStringList, langs);
    QFETCH(bool, found);
    QFETCH(QString, address);
    QLocale::setDefault(QLocale(locale));
    // The flag is written in both cases, whatever it was.
    for (bool before : {false, true}) {
        bool answer = before;
        QCOMPARE(CoreAppUrlUtils::mapUrlApplication(url, &answer, langs), address);
        QCOMPARE(answer, found);
    }
}

void tst_CoreAppUrlUtils::mapWithoutFoundNeverMatches()
{
    QLocale::setDefault(QLocale(QStringLiteral("en_US")));
    const QString pattern = QStringLiteral("/{{lang}}/");
    QCOMPARE(CoreAppUrlUtils::mapUrlApplication(pattern, nullptr, frEn), QStringLiteral("/fr/"));
    QCOMPARE(CoreAppUrlUtils::mapUrlApplication(pattern, nullptr, QStringList()), pattern);
}

void tst_CoreAppUrlUtils::autoTranslated_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("address");
    const QString encoded = QStringLiteral("https%3A%2F%2Fx.org%2F");
    QTest::newRow("French") << "fr_FR" << QStringLiteral("https://x.org/");
    QTest::newRow("French of Canada") << "fr_CA" << QStringLiteral("https://x.org/");
    QTest::newRow("German") << "de_DE" << service(encoded, QStringLiteral("de_DE"));
    QTest::newRow("English") << "en_US" << service(encoded, QStringLiteral("en_US"));
    QTest::newRow("no locale") << "C" << service(encoded, QStringLiteral("C"));
}

void tst_CoreAppUrlUtils::autoTranslated()
{
    QFETCH(QString, locale);
    QFETCH(QString, address);
    QLocale::setDefault(QLocale(locale));
    QCOMPARE(CoreAppUrlUtils::autoTranslatedUrl(QStringLiteral("https://x.org/")), address);
}

void tst_CoreAppUrlUtils::translationService_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("encoded");
    QTest::newRow("unreserved stay") << QStringLiteral("aZ09-._~") << "de_DE"
                                     << "aZ09-._~";
    QTest::newRow("reserved") << QStringLiteral(":/?#[]@!$&'()*+,;=") << "de_DE"
                              << "%3A%2F%3F%23%5B%5D%40%21%24%26%27%28%29%2A%2B%2C%3B%3D";
    QTest::newRow("blank and percent") << QStringLiteral("a b%20") << "it"
                                       << "a%20b%2520";
    QTest::newRow("beyond ASCII") << QStringLiteral("\u00e9\u20ac") << "it"
                                  << "%C3%A9%E2%82%AC";
    // Both values are filled in one pass.
    QTest::newRow("placeholder in the language") << QStringLiteral("x") << "%2"
                                                 << "x";
    QTest::newRow("digit after an encoded character") << QStringLiteral("\u0011") << "it"
                                                      << "%11";
    QTest::newRow("language as it is") << QStringLiteral("x") << "a&b c"
                                       << "x";
}

void tst_CoreAppUrlUtils::translationService()
{
    QFETCH(QString, url);
    QFETCH(QString, language);
    QFETCH(QString, encoded);
    QLocale::setDefault(QLocale(QStringLiteral("fr_FR"))); // plays no part here
    QCOMPARE(CoreAppUrlUtils::urlGoogleTranslated(url, language), service(encoded, language));
}

void tst_CoreAppUrlUtils::pagesByLanguage_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QStringList>("langs");
    QTest::addColumn<QString>("address");
    QTest::newRow("in the list") << "en_GB" << frEn << QStringLiteral("https://x.org/en");
    QTest::newRow("German user") << "de_DE" << frEn
                                 << service(QStringLiteral("https%3A%2F%2Fx.org%2Ffr"),
                                            QStringLiteral("de_DE"));
    QTest::newRow("French user, no French page")
        << "fr_FR" << codes("en de") << QStringLiteral("https://x.org/en");
}

void tst_CoreAppUrlUtils::pagesByLanguage()
{
    QFETCH(QString, locale);
    QFETCH(QStringList, langs);
    QFETCH(QString, address);
    const QString pattern = QStringLiteral("https://x.org/{{lang}}");
    QLocale::setDefault(QLocale(locale));

    CoreAppUrlUtils::initOrvanelWebSite(pattern, langs);
    QCOMPARE(CoreAppUrlUtils::urlOrvanelCompanynWebsite(), address);
    CoreAppUrlUtils::initApplicationWebSite(pattern, langs);
    QCOMPARE(CoreAppUrlUtils::urlApplicationWebsite(), address);
    CoreAppUrlUtils::initContactUs(pattern, langs);
    QCOMPARE(CoreAppUrlUtils::urlContactUs(), address);
    CoreAppUrlUtils::initDocumentation(pattern, langs);
    QCOMPARE(CoreAppUrlUtils::urlDocumentation(QString()), address);
}

void tst_CoreAppUrlUtils::pairsAreIndependent()
{
    QLocale::setDefault(QLocale(QStringLiteral("en_US")));
    CoreAppUrlUtils::initOrvanelWebSite(QStringLiteral("maker/{{lang}}"), {QStringLiteral("en")});
    CoreAppUrlUtils::initApplicationWebSite(QStringLiteral("app/{{lang}}"),
                                            {QStringLiteral("en_US")});
    CoreAppUrlUtils::initDocumentation(QStringLiteral("doc/{{lang}}"), {QStringLiteral("en_GB")});
    CoreAppUrlUtils::initContactUs(QStringLiteral("contact/{{lang}}"), {QStringLiteral("en_AU")});
    QCOMPARE(CoreAppUrlUtils::urlOrvanelCompanynWebsite(), QStringLiteral("maker/en"));
    QCOMPARE(CoreAppUrlUtils::urlApplicationWebsite(), QStringLiteral("app/en_US"));
    QCOMPARE(CoreAppUrlUtils::urlDocumentation(QString()), QStringLiteral("doc/en_GB"));
    QCOMPARE(CoreAppUrlUtils::urlContactUs(), QStringLiteral("contact/en_AU"));
}

void tst_CoreAppUrlUtils::registrationOverwrites()
{
    QLocale::setDefault(QLocale(QStringLiteral("en_US")));
    CoreAppUrlUtils::initContactUs(QStringLiteral("old/{{lang}}"), {QStringLiteral("en_US")});
    CoreAppUrlUtils::initContactUs(QStringLiteral("new/{{lang}}"), {QStringLiteral("en")});
    QCOMPARE(CoreAppUrlUtils::urlContactUs(), QStringLiteral("new/en"));
}

void tst_CoreAppUrlUtils::documentation_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("address");
    const QString open = QStringLiteral("https://d.org/{{lang}}");
    const QString closed = QStringLiteral("https://d.org/{{lang}}/");
    QTest::newRow("slash added") << "en_US" << open << "a.html"
                                 << "https://d.org/en/a.html";
    QTest::newRow("slash there") << "en_US" << closed << "a.html"
                                 << "https://d.org/en/a.html";
    QTest::newRow("no page, no slash") << "en_US" << open << QString() << "https://d.org/en";
    QTest::newRow("no page, slash kept") << "en_US" << closed << QString() << "https://d.org/en/";
    QTest::newRow("page with a slash") << "en_US" << closed << "/a"
                                       << "https://d.org/en//a";
    QTest::newRow("placeholder in the page") << "en_US" << closed << "{{lang}}"
                                             << "https://d.org/en/{{lang}}";
    QTest::newRow("translated with its page")
        << "de_DE" << open << "a.html"
        << service(QStringLiteral("https%3A%2F%2Fd.org%2Ffr%2Fa.html"), QStringLiteral("de_DE"));
    QTest::newRow("translated without a page")
        << "de_DE" << open << QString()
        << service(QStringLiteral("https%3A%2F%2Fd.org%2Ffr"), QStringLiteral("de_DE"));
}

void tst_CoreAppUrlUtils::documentation()
{
    QFETCH(QString, locale);
    QFETCH(QString, pattern);
    QFETCH(QString, page);
    QFETCH(QString, address);
    QLocale::setDefault(QLocale(locale));
    CoreAppUrlUtils::initDocumentation(pattern, frEn);
    QCOMPARE(CoreAppUrlUtils::urlDocumentation(page), address);
}

void tst_CoreAppUrlUtils::nothingIsLogged()
{
    LogCapture log;
    bool found = true;
    CoreAppUrlUtils::mapUrlApplication(QString(), &found, {QStringLiteral("no language")});
    CoreAppUrlUtils::urlDocumentation(QStringLiteral("x"));
    CoreAppUrlUtils::urlContactUs();
    QCOMPARE(log.lines(), QStringList());
}

void tst_CoreAppUrlUtils::cleanupTestCase()
{
    QLocale::setDefault(QLocale(QLocale::French));
    CoreAppUrlUtils::initContactUs(QString::fromLatin1(lastPage), frEn);
    lastVisitor.expects = true;
}

QTEST_GUILESS_MAIN(tst_CoreAppUrlUtils)
#include "tst_CoreAppUrlUtils.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CoreAppUrlUtils.h"

#include "Columns.h"
#include "LogCapture.h"

#include <QLocale>
#include <QtTest>

#include <cstdio>
#include <cstdlib>

namespace {

/// The request to the translation service: \a encodedPage is percent-encoded by hand.
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

/// Asks for an address while static objects are destroyed, after the report of the test is written.
struct LastVisitor
{
    LastVisitor() { QLocale::setDefault(QLocale::c()); } // Qt keeps its own locale longer

    ~LastVisitor()
    {
        // Reuses the memory that the class has released, if it has.
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

    void beforeRegistration_data(); // first: it needs the class before anything is registered
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
    const auto row = columns<QString, QString, QString>("locale", "address", "documentationPage");
    row("French user", "fr_FR", QString(), "/index.html");
    row("German user", "de_DE", service(QString(), QStringLiteral("de_DE")),
        service(QStringLiteral("%2Findex.html"), QStringLiteral("de_DE")));
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
    const auto row = columns<QString, QString, QStringList, bool, QString>("locale", "url", "langs",
                                                                           "found", "address");

    const QString pattern = QStringLiteral("https://x.org/{{lang}}/p");
    row("first code", "fr_FR", pattern, frEn, true, "https://x.org/fr/p");
    row("second code", "en_US", pattern, frEn, true, "https://x.org/en/p");
    row("another country", "fr_CA", pattern, frEn, true, "https://x.org/fr/p");
    row("code with a country", "fr_CA", pattern, codes("en fr_FR"), true, "https://x.org/fr_FR/p");
    row("code kept as written", "fr_FR", pattern, codes("en FR-fr"), true, "https://x.org/FR-fr/p");
    row("first of two matches", "pt_BR", pattern, codes("en pt_PT pt_BR"), true,
        "https://x.org/pt_PT/p");
    row("no match", "de_DE", pattern, frEn, false, "https://x.org/fr/p");
    row("no language at all", "de_DE", pattern, QStringList(), false, pattern);
    row("placeholder twice", "en_GB", "{{lang}}.x.org/{{lang}}{{lang}}", frEn, true,
        "en.x.org/enen");
    row("placeholder twice, no match", "de_DE", "{{lang}}.x.org/{{lang}}", frEn, false,
        "fr.x.org/fr");
    row("no placeholder, match", "en_GB", "https://x.org/", frEn, true, "https://x.org/");
    row("no placeholder, no match", "de_DE", "https://x.org/", frEn, false, "https://x.org/");
    row("placeholder in capitals is text", "en_GB", "/{{LANG}}/{lang}", frEn, true,
        "/{{LANG}}/{lang}");
    row("code that holds the placeholder", "de_DE", pattern, codes("{{lang}}"), false, pattern);
    row("empty pattern", "fr_FR", QString(), frEn, true, QString());
}

void tst_CoreAppUrlUtils::map()
{
    QFETCH(QString, locale);
    QFETCH(QString, url);
    QFETCH(QStringList, langs);
    QFETCH(bool, found);
    QFETCH(QString, address);
    QLocale::setDefault(QLocale(locale));
    // The flag is written in both cases, whatever its value was.
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
    const auto row = columns<QString, QString>("locale", "address");
    const QString encoded = QStringLiteral("https%3A%2F%2Fx.org%2F");
    row("French", "fr_FR", "https://x.org/");
    row("French of Canada", "fr_CA", "https://x.org/");
    row("German", "de_DE", service(encoded, QStringLiteral("de_DE")));
    row("English", "en_US", service(encoded, QStringLiteral("en_US")));
    row("no locale", "C", service(encoded, QStringLiteral("C")));
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
    const auto row = columns<QString, QString, QString>("url", "language", "encoded");
    row("unreserved stay", "aZ09-._~", "de_DE", "aZ09-._~");
    row("reserved", ":/?#[]@!$&'()*+,;=", "de_DE",
        "%3A%2F%3F%23%5B%5D%40%21%24%26%27%28%29%2A%2B%2C%3B%3D");
    row("blank and percent", "a b%20", "it", "a%20b%2520");
    row("beyond ASCII", "\u00e9\u20ac", "it", "%C3%A9%E2%82%AC");
    // Both values are replaced in one pass.
    row("placeholder in the language", "x", "%2", "x");
    row("digit after an encoded character", "\u0011", "it", "%11");
    row("language as it is", "x", "a&b c", "x");
}

void tst_CoreAppUrlUtils::translationService()
{
    QFETCH(QString, url);
    QFETCH(QString, language);
    QFETCH(QString, encoded);
    QLocale::setDefault(QLocale(QStringLiteral("fr_FR"))); // makes no difference here
    QCOMPARE(CoreAppUrlUtils::urlGoogleTranslated(url, language), service(encoded, language));
}

void tst_CoreAppUrlUtils::pagesByLanguage_data()
{
    const auto row = columns<QString, QStringList, QString>("locale", "langs", "address");
    row("in the list", "en_GB", frEn, "https://x.org/en");
    row("German user", "de_DE", frEn,
        service(QStringLiteral("https%3A%2F%2Fx.org%2Ffr"), QStringLiteral("de_DE")));
    row("French user, no French page", "fr_FR", codes("en de"), "https://x.org/en");
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
    const auto row =
        columns<QString, QString, QString, QString>("locale", "pattern", "page", "address");
    const QString open = QStringLiteral("https://d.org/{{lang}}");
    const QString closed = QStringLiteral("https://d.org/{{lang}}/");
    row("slash added", "en_US", open, "a.html", "https://d.org/en/a.html");
    row("slash there", "en_US", closed, "a.html", "https://d.org/en/a.html");
    row("no page, no slash", "en_US", open, QString(), "https://d.org/en");
    row("no page, slash kept", "en_US", closed, QString(), "https://d.org/en/");
    row("page with a slash", "en_US", closed, "/a", "https://d.org/en//a");
    row("placeholder in the page", "en_US", closed, "{{lang}}", "https://d.org/en/{{lang}}");
    row("translated with its page", "de_DE", open, "a.html",
        service(QStringLiteral("https%3A%2F%2Fd.org%2Ffr%2Fa.html"), QStringLiteral("de_DE")));
    row("translated without a page", "de_DE", open, QString(),
        service(QStringLiteral("https%3A%2F%2Fd.org%2Ffr"), QStringLiteral("de_DE")));
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

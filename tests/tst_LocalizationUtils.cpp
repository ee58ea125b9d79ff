// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "LocalizationUtils.h"

#include "ChildProgram.h"
#include "Columns.h"
#include "LogCapture.h"
#include "SystemCalls.h"

#include <QLocale>
#include <QtTest>

#include <cstdio>
#include <cstring>

class tst_LocalizationUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void languageNames_data();
    void languageNames();
    void systemCode_data();
    void systemCode();
    void defaultLocalePlaysNoPart();
    void nothingIsLogged();
};

void tst_LocalizationUtils::languageNames_data()
{
    const auto row = columns<QString>("name");
    // With a region the native name of the language, without one the English name.
    row("fr_FR", "fran\u00e7ais");
    row("fr", "French");
    row("pt_BR", "portugu\u00eas");
    row("pt", "Portuguese");
    row("de_DE", "Deutsch");
    row("de", "German");
    row("ru_RU", "\u0440\u0443\u0441\u0441\u043a\u0438\u0439");
    row("ru", "Russian");
    // A "-" does not separate a region.
    row("fr-FR", "French");
    row("xx_yy", QString());
    row("xx", "C");
    row("", "C");
    row("_", QString());
}

void tst_LocalizationUtils::languageNames()
{
    QFETCH(QString, name);
    QCOMPARE(LocalizationUtils::isoLangCodeToString(QLatin1String(QTest::currentDataTag())), name);
}

void tst_LocalizationUtils::systemCode_data()
{
    const auto row = columns<QString>("code");
    row("fr_FR.UTF-8", "fr_fr");
    row("pt_BR.UTF-8", "pt_br");
    row("en_US.UTF-8", "en_us");
    row("C", "c");
}

void tst_LocalizationUtils::systemCode()
{
    SKIP_ON_WINDOWS("the language is that of the user, not of LC_ALL");
    QFETCH(QString, code);
    // The system's settings are read once in a process.
    const ChildResult child =
        runChildProgram(QCoreApplication::applicationFilePath(), {QStringLiteral("--system-code")},
                        {{QStringLiteral("LC_ALL"), QString::fromLatin1(QTest::currentDataTag())}});
    QVERIFY(child.exitedNormally);
    QCOMPARE(child.exitCode, 0);
    QCOMPARE(child.output, QStringList(code));
}

void tst_LocalizationUtils::defaultLocalePlaysNoPart()
{
    const QString code = LocalizationUtils::currentSystemLangCode();
    QLocale::setDefault(QLocale(QStringLiteral("ja_JP")));
    QCOMPARE(LocalizationUtils::currentSystemLangCode(), code);
    QCOMPARE(LocalizationUtils::isoLangCodeToString(QStringLiteral("fr")),
             QStringLiteral("French"));
    QLocale::setDefault(QLocale::c());
}

void tst_LocalizationUtils::nothingIsLogged()
{
    LogCapture log;
    LocalizationUtils::isoLangCodeToString(QStringLiteral("no language"));
    QCOMPARE(log.lines(), QStringList());
}

int main(int argc, char** argv)
{
    if (argc > 1 && std::strcmp(argv[1], "--system-code") == 0) {
        std::puts(LocalizationUtils::currentSystemLangCode().toLatin1().constData());
        return 0;
    }
    QCoreApplication application(argc, argv);
    tst_LocalizationUtils test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_LocalizationUtils.moc"

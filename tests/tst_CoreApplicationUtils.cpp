// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CoreApplicationUtils.h"

#include "ChildProgram.h"
#include "Columns.h"
#include "LogCapture.h"
#include "QObjectEventFilter.h"

#include <QApplication>
#include <QDialog>
#include <QIcon>
#include <QLineEdit>
#include <QMetaEnum>
#include <QTextStream>
#include <QtTest>

#include <cstdio>
#include <limits>

namespace {

using App = CoreApplicationUtils;

const char staticNameVariable[] = "ORVAUTILS_TEST_STATIC_NAME";

// Fills the store before main() and reads it again while static objects are destroyed.
struct StaticUser
{
    StaticUser()
    {
        if (qEnvironmentVariableIsSet(staticNameVariable))
            App::setApplicationName(QString::fromUtf8(qgetenv(staticNameVariable)));
    }
    ~StaticUser()
    {
        if (qEnvironmentVariableIsSet(staticNameVariable))
            std::printf("at the end: %s\n", App::applicationName().toUtf8().constData());
    }
};
const StaticUser staticUser;

void fill(App::CodeApplication code)
{
    App::setApplicationName(QStringLiteral("Shop"));
    App::setApplicationVersion(QStringLiteral("4.1.12"));
    App::setApplicationRevision(QStringLiteral("r77"));
    App::setApplicationCompanyName(QStringLiteral("Acme Corp"));
    App::setApplicationCode(code);
}

void writeStore(QTextStream& out, const char* when)
{
    out << when << ": " << App::applicationName() << '|' << App::applicationVersion() << '|'
        << App::applicationRevision() << '|' << App::applicationCompanyName() << '|'
        << int(App::applicationCode()) << '\n';
}

void writeQt(QTextStream& out, const char* when)
{
    out << when << ": " << QCoreApplication::organizationName() << '|'
        << QCoreApplication::organizationDomain() << '|' << QCoreApplication::applicationVersion()
        << '\n';
}

// What this program does as a child process, depending on the mode.
int runAsChild(const QByteArray& mode, int& argc, char** argv)
{
    QTextStream out(stdout);
    if (mode == "no application object") {
        writeStore(out, "store");
        out << "code not set: " << App::initStartupVars() << '\n';
        fill(App::Lexaro);
        out << "code set: " << App::initStartupVars() << '\n';
        writeQt(out, "Qt");
        // Unless the library sets a name, Qt has none before the application object exists.
        out << "name: " << QCoreApplication::applicationName() << '\n';
        App::fixOSXDialogFocusBug();
        out << "gui: " << App::applicationGuiName() << ' ' << App::applicationVersionNumber() << ' '
            << App::iconApplication() << '\n';
        return 0;
    }
    if (mode == "before, during and after") {
        fill(App::Tamsel);
        writeStore(out, "before");
        {
            QApplication application(argc, argv);
            writeStore(out, "during");
        }
        writeStore(out, "after");
        out << "handed over: " << App::initStartupVars() << '\n';
        return 0;
    }
    if (mode == "no windows") {
        QCoreApplication application(argc, argv);
        fill(App::Lexaro);
        out << "result: " << App::initStartupVars() << '\n';
        writeQt(out, "Qt");
        out << "name: " << QCoreApplication::applicationName() << '\n';
        App::fixOSXDialogFocusBug();
        out << "filters: " << application.findChildren<QObjectEventFilter*>().size() << '\n';
        return 0;
    }
    if (mode == "static") {
        writeStore(out, "main");
        return 0;
    }
    return 99;
}

ChildResult child(const QString& mode, const QMap<QString, QString>& environment = {})
{
    return runChildProgram(QCoreApplication::applicationFilePath(),
                           {QStringLiteral("--child"), mode}, environment);
}

// Counts how often it was raised.
class Dialog : public QDialog
{
public:
    bool event(QEvent* event) override
    {
        raised += event->type() == QEvent::ZOrderChange;
        return QDialog::event(event);
    }

    int raised = 0;
};

class FocusCounter : public QObject
{
public:
    bool event(QEvent* event) override
    {
        focused += event->type() == QEvent::FocusIn;
        return QObject::event(event);
    }

    int focused = 0;
};

void send(QObject* object, QEvent::Type type)
{
    QFocusEvent event(type);
    QCoreApplication::sendEvent(object, &event);
}

int installedFilters()
{
    return int(qApp->findChildren<QObjectEventFilter*>().size());
}

} // namespace

class tst_CoreApplicationUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void isAnObject();
    void codeValues_data();
    void codeValues();
    void storeIsEmptyAtFirst();
    void settersOverwrite();
    void texts_data();
    void texts();
    void keyOfTheStoredCode();
    void versionOfNumbers_data();
    void versionOfNumbers();
    void versionOfText_data();
    void versionOfText();
    void iconPath();
    void initWithoutCode();
    void initHandsOver();
    void organizationDomain_data();
    void organizationDomain();
    void initWithoutApplicationObject();
    void initWithoutWindows();
    void storeOutlivesTheApplicationObject();
    void storeInStaticObjects();
    void noFilterWithoutModalWidget();
    void filterRaisesTheModalWidget();
    void everyCallInstallsAFilter();
    void filterRaisesTheModalWidgetOfTheMoment();
};

void tst_CoreApplicationUtils::init()
{
    App::setApplicationName(QString());
    App::setApplicationVersion(QString());
    App::setApplicationRevision(QString());
    App::setApplicationCompanyName(QString());
    App::setApplicationCode(App::Undefined);
    qDeleteAll(qApp->findChildren<QObjectEventFilter*>());
}

void tst_CoreApplicationUtils::isAnObject()
{
    QObject parent;
    auto* object = new App(&parent);
    QCOMPARE(object->parent(), &parent);
    QCOMPARE(object->metaObject()->className(), "CoreApplicationUtils");
    App withoutParent;
    QVERIFY(!withoutParent.parent());
}

void tst_CoreApplicationUtils::codeValues_data()
{
    const auto row = columns<int, int>("value", "enumerator");
    row("Undefined", 0, int(App::Undefined));
    row("Lorn", 1, int(App::Lorn));
    row("Dunvale", 2, int(App::Dunvale));
    row("Sorrel", 3, int(App::Sorrel));
    row("Tamsel", 4, int(App::Tamsel));
    row("Lexaro", 5, int(App::Lexaro));
    row("Portwin", 6, int(App::Portwin));
}

void tst_CoreApplicationUtils::codeValues()
{
    QFETCH(int, value);
    QFETCH(int, enumerator);
    QCOMPARE(enumerator, value);
    QCOMPARE(sizeof(App::CodeApplication), std::size_t(4));
    QCOMPARE(QMetaEnum::fromType<App::CodeApplication>().valueToKey(value),
             QTest::currentDataTag());
}

void tst_CoreApplicationUtils::storeIsEmptyAtFirst()
{
    const ChildResult result = child(QStringLiteral("no application object"));
    QVERIFY(result.exitedNormally);
    QCOMPARE(result.output.value(0), QStringLiteral("store: ||||0"));
}

void tst_CoreApplicationUtils::settersOverwrite()
{
    fill(App::Sorrel);
    QCOMPARE(App::applicationName(), QStringLiteral("Shop"));
    QCOMPARE(App::applicationVersion(), QStringLiteral("4.1.12"));
    QCOMPARE(App::applicationRevision(), QStringLiteral("r77"));
    QCOMPARE(App::applicationCompanyName(), QStringLiteral("Acme Corp"));
    QCOMPARE(App::applicationCode(), App::Sorrel);

    // Nothing is validated, and a copy does not change with the original.
    const QString before = App::applicationName();
    App::setApplicationName(QStringLiteral(" /..\n"));
    QCOMPARE(before, QStringLiteral("Shop"));
    QCOMPARE(App::applicationName(), QStringLiteral(" /..\n"));
    App::setApplicationVersion(QStringLiteral("not a version"));
    QCOMPARE(App::applicationVersion(), QStringLiteral("not a version"));
    App::setApplicationRevision(QString());
    QCOMPARE(App::applicationRevision(), QString());
    App::setApplicationCompanyName(QStringLiteral("\u00c9t\u00e9"));
    QCOMPARE(App::applicationCompanyName(), QStringLiteral("\u00c9t\u00e9"));
    App::setApplicationCode(static_cast<App::CodeApplication>(-2147483647));
    QCOMPARE(int(App::applicationCode()), -2147483647);
}

void tst_CoreApplicationUtils::texts_data()
{
    // guiName: if null, the stored application name is used
    const auto row = columns<int, QString, QString, QString>("code", "guiName", "shortName", "key");

    const QString undefined = QStringLiteral("undefined key");
    row("Undefined", 0, QString(), undefined, undefined);
    row("Lorn", 1, "Palnor Grid", "Lorn", "lorn");
    row("Dunvale", 2, QString(), "Dunvale", "dunvend");
    row("Sorrel", 3, "Palnor Fx", "Sorrel", "sorrel");
    row("Tamsel", 4, "Tamsel", "Tamsel 2", "tamsel2");
    row("Lexaro", 5, "Lexaro", "Lexaro", "lexaro");
    row("Portwin", 6, "Portwin", "Portwin", "portwin");
    row("7", 7, QString(), undefined, undefined);
    row("-1", -1, QString(), undefined, undefined);
    row("greatest", std::numeric_limits<int>::max(), QString(), undefined, undefined);
    row("least", std::numeric_limits<int>::min(), QString(), undefined, undefined);
}

void tst_CoreApplicationUtils::texts()
{
    QFETCH(int, code);
    QFETCH(QString, guiName);
    QFETCH(QString, shortName);
    QFETCH(QString, key);

    const auto value = static_cast<App::CodeApplication>(code);
    App::setApplicationCode(value);
    LogCapture log;
    for (const QString& name : {QString(), QStringLiteral("My Shop")}) {
        App::setApplicationName(name);
        QCOMPARE(App::applicationGuiName(), guiName.isNull() ? name : guiName);
    }
    QCOMPARE(App::applicationKeyToString(value), key);
    QCOMPARE(App::applicationKey(), key);
    QCOMPARE(log.lines(), QStringList());

    QCOMPARE(App::applicationShortName(), shortName);
    QStringList lines;
    if (shortName == QLatin1String("undefined key"))
        lines += QStringLiteral("info orvautils CoreApplicationUtils applicationShortName: "
                                "CoreApplicationUtils  ")
            + QString::number(code);
    QCOMPARE(log.lines(), lines);
}

void tst_CoreApplicationUtils::keyOfTheStoredCode()
{
    App::setApplicationCode(App::Dunvale);
    QCOMPARE(App::applicationKey(), QStringLiteral("dunvend"));
    QCOMPARE(App::applicationKeyToString(App::Lorn), QStringLiteral("lorn"));
}

void tst_CoreApplicationUtils::versionOfNumbers_data()
{
    const auto row = columns<int, int, int, int>("majorPart", "minorPart", "patchPart", "number");
    row("1.2.3", 1, 2, 3, 66051);
    row("2.0.0", 2, 0, 0, 131072);
    row("0.0.0", 0, 0, 0, 0);
    row("all fields full", 255, 255, 255, 0xFFFFFF);
    row("minor hides major", 1, 300, 0, 76800);
    row("the same without major", 0, 300, 0, 76800);
    row("OR, not a sum", 0, 1, 256, 256);
    row("patch runs into minor", 0, 2, 257, 0x301);
    row("negative patch", 1, 2, -1, -1);
    row("negative major", -1, 0, 1, -65535);
    row("major runs out", 0x10000, 0, 5, 5);
}

void tst_CoreApplicationUtils::versionOfNumbers()
{
    QFETCH(int, majorPart);
    QFETCH(int, minorPart);
    QFETCH(int, patchPart);
    QFETCH(int, number);
    QCOMPARE(App::versionToNumber(majorPart, minorPart, patchPart), number);
}

void tst_CoreApplicationUtils::versionOfText_data()
{
    const auto row = columns<QString, int>("text", "number");
    row("three parts", "4.1.12", 262412);
    row("two parts", "4.1", 0);
    row("four parts", "4.1.12.7", 0);
    row("four parts, the last empty", "4.1.12.", 0);
    row("a letter", "4.x.2", 262146);
    row("a letter behind the number", "1.2.3b", 66048);
    row("hexadecimal does not parse", "0x1.0.5", 5);
    row("decimal with a leading zero", "1.010.0", 65536 + 2560);
    row("too great to parse", "99999999999.0.1", 1);
    row("empty", QString(), 0);
    row("an empty part", "1..2", 65538);
    row("three empty parts", "..", 0);
    row("one part", "7", 0);
    row("minor hides major", "1.300.0", 76800);
    row("other separators", "4,1,12", 0);
}

void tst_CoreApplicationUtils::versionOfText()
{
    QFETCH(QString, text);
    QFETCH(int, number);
    QCOMPARE(App::versionToNumber(text), number);
    App::setApplicationVersion(text);
    QCOMPARE(App::applicationVersionNumber(), number);
}

void tst_CoreApplicationUtils::iconPath()
{
    QCOMPARE(App::iconApplication(), QStringLiteral(":/app-icons/icon.png"));
}

void tst_CoreApplicationUtils::initWithoutCode()
{
    fill(App::Undefined);
    QCoreApplication::setApplicationName(QStringLiteral("unchanged"));
    QCoreApplication::setOrganizationName(QStringLiteral("unchanged"));
    LogCapture log;
    QVERIFY(!App::initStartupVars());
    QCOMPARE(log.lines(),
             QStringList(QStringLiteral("debug default: initStartupVars FAILED ! "
                                        "initCoreApplication must be called in main.cpp !!!!")));
    QCOMPARE(QCoreApplication::applicationName(), QStringLiteral("unchanged"));
    QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("unchanged"));
}

void tst_CoreApplicationUtils::initHandsOver()
{
    fill(App::Portwin);
    QGuiApplication::setWindowIcon(QIcon());
    LogCapture log;
    QVERIFY(App::initStartupVars());
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Acme Corp"));
    QCOMPARE(QCoreApplication::organizationDomain(), QStringLiteral("acme corp.com"));
    QCOMPARE(QCoreApplication::applicationName(), QStringLiteral("Shop"));
    QCOMPARE(QCoreApplication::applicationVersion(), QStringLiteral("4.1.12"));
    const QImage icon = QGuiApplication::windowIcon().pixmap(16, 16).toImage();
    QCOMPARE(icon.size(), QSize(16, 16));
    QCOMPARE(icon.pixelColor(8, 8), QColor(0x33, 0x66, 0xcc));
}

void tst_CoreApplicationUtils::organizationDomain_data()
{
    const auto row = columns<QString, QString>("company", "domain");
    row("capitals and blanks", "Acme Corp", "acme corp.com");
    row("outer blanks", " A ", " a .com");
    row("accents", "\u00c9T\u00c9", "\u00e9t\u00e9.com");
    row("empty", QString(), ".com");
}

void tst_CoreApplicationUtils::organizationDomain()
{
    QFETCH(QString, company);
    QFETCH(QString, domain);
    App::setApplicationCode(static_cast<App::CodeApplication>(99)); // any value but 0 is accepted
    App::setApplicationCompanyName(company);
    QVERIFY(App::initStartupVars());
    QCOMPARE(QCoreApplication::organizationName(), company);
    QCOMPARE(QCoreApplication::organizationDomain(), domain);
}

void tst_CoreApplicationUtils::initWithoutApplicationObject()
{
    const ChildResult result = child(QStringLiteral("no application object"));
    QVERIFY(result.exitedNormally);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output,
             QStringList({QStringLiteral("store: ||||0"), QStringLiteral("code not set: 0"),
                          QStringLiteral("code set: 1"), QStringLiteral("Qt: ||"),
                          QStringLiteral("name: "),
                          QStringLiteral("gui: Lexaro 262412 :/app-icons/icon.png")}));
    QCOMPARE(result.errors,
             QStringList(QStringLiteral("initStartupVars FAILED ! initCoreApplication must be "
                                        "called in main.cpp !!!!")));
}

void tst_CoreApplicationUtils::initWithoutWindows()
{
    const ChildResult result = child(QStringLiteral("no windows"));
    QVERIFY(result.exitedNormally);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output,
             QStringList({QStringLiteral("result: 1"),
                          QStringLiteral("Qt: Acme Corp|acme corp.com|4.1.12"),
                          QStringLiteral("name: Shop"), QStringLiteral("filters: 0")}));
    QCOMPARE(result.errors, QStringList());
}

void tst_CoreApplicationUtils::storeOutlivesTheApplicationObject()
{
    const ChildResult result = child(QStringLiteral("before, during and after"));
    QVERIFY(result.exitedNormally);
    QCOMPARE(result.exitCode, 0);
    const QString store = QStringLiteral("Shop|4.1.12|r77|Acme Corp|4");
    QCOMPARE(result.output,
             QStringList({QStringLiteral("before: ") + store, QStringLiteral("during: ") + store,
                          QStringLiteral("after: ") + store, QStringLiteral("handed over: 1")}));
}

void tst_CoreApplicationUtils::storeInStaticObjects()
{
    const ChildResult result =
        child(QStringLiteral("static"),
              {{QString::fromLatin1(staticNameVariable), QStringLiteral("Static Shop")}});
    QVERIFY(result.exitedNormally);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output,
             QStringList({QStringLiteral("main: Static Shop||||0"),
                          QStringLiteral("at the end: Static Shop")}));
}

void tst_CoreApplicationUtils::noFilterWithoutModalWidget()
{
    App::fixOSXDialogFocusBug();
    QDialog dialog;
    dialog.show();
    QVERIFY(!QApplication::activeModalWidget());
    App::fixOSXDialogFocusBug();
    QCOMPARE(installedFilters(), 0);
}

void tst_CoreApplicationUtils::filterRaisesTheModalWidget()
{
    Dialog dialog;
    dialog.setModal(true);
    dialog.show();
    QCOMPARE(QApplication::activeModalWidget(), static_cast<QWidget*>(&dialog));
    App::fixOSXDialogFocusBug();
    QCOMPARE(installedFilters(), 1);
    QCOMPARE(qApp->findChildren<QObjectEventFilter*>().first()->parent(),
             static_cast<QObject*>(qApp));

    dialog.raised = 0;
    FocusCounter widget;
    send(&widget, QEvent::FocusOut);
    QCOMPARE(dialog.raised, 0);
    send(&widget, QEvent::FocusIn);
    QCOMPARE(dialog.raised, 1);
    QCOMPARE(widget.focused, 1);
    send(&widget, QEvent::FocusIn);
    QCOMPARE(dialog.raised, 2);
    QCOMPARE(widget.focused, 2);

    QEvent event(QEvent::FocusIn);
    QVERIFY(!qApp->findChildren<QObjectEventFilter*>().first()->eventFilter(&widget, &event));
    QEvent other(QEvent::User);
    QVERIFY(!qApp->findChildren<QObjectEventFilter*>().first()->eventFilter(&widget, &other));
}

void tst_CoreApplicationUtils::everyCallInstallsAFilter()
{
    Dialog dialog;
    dialog.setModal(true);
    dialog.show();
    for (int calls = 1; calls <= 3; ++calls) {
        App::fixOSXDialogFocusBug();
        QCOMPARE(installedFilters(), calls);
        dialog.raised = 0;
        FocusCounter widget;
        send(&widget, QEvent::FocusIn);
        QCOMPARE(dialog.raised, calls);
        QCOMPARE(widget.focused, 1);
    }
    dialog.hide();
    QCOMPARE(installedFilters(), 3);
}

void tst_CoreApplicationUtils::filterRaisesTheModalWidgetOfTheMoment()
{
    Dialog first;
    first.setModal(true);
    first.show();
    App::fixOSXDialogFocusBug();

    Dialog second;
    second.setModal(true);
    second.show();
    QCOMPARE(QApplication::activeModalWidget(), static_cast<QWidget*>(&second));
    first.raised = second.raised = 0;
    FocusCounter widget;
    send(&widget, QEvent::FocusIn);
    QCOMPARE(first.raised, 0);
    QCOMPARE(second.raised, 1);

    second.hide();
    first.hide();
    QVERIFY(!QApplication::activeModalWidget());
    first.raised = second.raised = 0;
    send(&widget, QEvent::FocusIn);
    QCOMPARE(first.raised, 0);
    QCOMPARE(second.raised, 0);
    QCOMPARE(widget.focused, 2);
}

int main(int argc, char* argv[])
{
    return testOrChild<tst_CoreApplicationUtils>(argc, argv, runAsChild);
}

#include "tst_CoreApplicationUtils.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "MetaObjectUtils.h"

#include "Columns.h"
#include "LogCapture.h"

#include <QSignalSpy>
#include <QThread>
#include <QtTest>

class Target : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void invokable() { calls += QStringLiteral("invokable"); }

    QStringList calls;
    QThread* calledIn = nullptr;
    bool answer = false;

public Q_SLOTS:
    void doSomething()
    {
        calls += QStringLiteral("doSomething");
        calledIn = QThread::currentThread();
    }
    void withDefault(int value = 7) { calls += QString::number(value); }
    void withArgument(int) { calls += QStringLiteral("withArgument"); }
    bool isReady()
    {
        calls += QStringLiteral("isReady");
        return answer;
    }
    int number()
    {
        calls += QStringLiteral("number");
        return 1;
    }

Q_SIGNALS:
    void happened();
};

class tst_MetaObjectUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void invokes_data();
    void invokes();
    void constCharFormIsUtf8();
    void invokesAtOnce();
    void invokesInTheThreadOfTheObject();
    void failsToInvoke_data();
    void failsToInvoke();
    void nullNameAndNullObject();
    void hasMethod_data();
    void warningsOfQt();
    void hasMethod();
    void returnsBoolean_data();
    void returnsBoolean();
    void failsToReturnBoolean_data();
    void failsToReturnBoolean();
    void noBooleanFromAnotherThread();
};

namespace {

QString addressOf(const QObject* object)
{
    return QString::asprintf("%#llx", static_cast<unsigned long long>(quintptr(object)));
}

// The library's own records; Qt warns as well.
QStringList libraryLines(const LogCapture& log)
{
    return log.lines().filter(QStringLiteral(" orvautils "));
}

} // namespace

void tst_MetaObjectUtils::invokes_data()
{
    const auto row = columns<QString, QString>("name", "called");
    const QString doSomething = QStringLiteral("doSomething");
    const QString happened = QStringLiteral("happened");
    row("bare", doSomething, doSomething);
    row("signature", "doSomething()", doSomething);
    row("SLOT", QString::fromLatin1(SLOT(doSomething())).section(QChar(0), 0, 0), doSomething);
    row("code 1", "1doSomething()", doSomething);
    row("code 2 and blanks", "2 doSomething ( )", doSomething);
    row("white space of all kinds", " \t1\n doSomething \r\n (\t) ", doSomething);
    row("blanks inside the name", "do Some  thing", doSomething);
    row("every pair of parentheses", "doSomething()()", doSomething);
    row("parentheses in the middle", "do()Something", doSomething);
    row("a signal", happened, happened);
    row("SIGNAL", QString::fromLatin1(SIGNAL(happened())).section(QChar(0), 0, 0), happened);
    row("invokable", "invokable()", "invokable");
    row("default argument", "withDefault", "7");
    row("an answer that nobody wants", "isReady", "isReady");
}

void tst_MetaObjectUtils::invokes()
{
    QFETCH(QString, name);
    QFETCH(QString, called);
    Target target;
    connect(&target, &Target::happened, [&]() { target.calls += QStringLiteral("happened"); });
    LogCapture log;
    QVERIFY(MetaObjectUtils::invokeSignalOrSlot(&target, name));
    QVERIFY(MetaObjectUtils::invokeSignalOrSlot(&target, name.toUtf8().constData()));
    QCOMPARE(target.calls, QStringList({called, called}));
    QCOMPARE(log.lines(), QStringList());
}

void tst_MetaObjectUtils::constCharFormIsUtf8()
{
    Target target;
    LogCapture log;
    QVERIFY(!MetaObjectUtils::invokeSignalOrSlot(&target, "\xc3\xa9"));
    QCOMPARE(libraryLines(log),
             QStringList(QStringLiteral("critical orvautils MetaObjectUtils invokeSignalOrSlot: "
                                        "Impossible dinvoquer  \u00e9  sur  %1")
                             .arg(addressOf(&target))));
}

void tst_MetaObjectUtils::invokesAtOnce()
{
    Target target;
    QVERIFY(MetaObjectUtils::invokeSignalOrSlot(&target, SLOT(doSomething())));
    QCOMPARE(target.calls.size(), 1);
    QCOMPARE(target.calledIn, QThread::currentThread());
}

void tst_MetaObjectUtils::invokesInTheThreadOfTheObject()
{
    QThread thread;
    Target target;
    target.moveToThread(&thread);
    QVERIFY(MetaObjectUtils::invokeSignalOrSlot(&target, SLOT(doSomething())));
    QVERIFY(MetaObjectUtils::invokeSignalOrSlot(&target, SIGNAL(happened())));
    QVERIFY(target.calls.isEmpty());
    connect(&target, &Target::happened, &thread, &QThread::quit, Qt::DirectConnection);
    thread.start();
    QVERIFY(thread.wait(60000));
    QCOMPARE(target.calls, QStringList(QStringLiteral("doSomething")));
    QCOMPARE(target.calledIn, &thread);
}

void tst_MetaObjectUtils::failsToInvoke_data()
{
    const auto row = columns<QString, QString>("name", "logged");
    row("unknown", "nothing", "nothing");
    row("normalised in the record", " 2 no thing ( ) ", "nothing");
    row("another case", "DoSomething", "DoSomething");
    row("only one code is dropped", "12doSomething()", "2doSomething");
    row("code 0 is none", "0doSomething()", "0doSomething");
    row("an argument is wanted", "withArgument", "withArgument");
    row("a signature with an argument", "withArgument(int)", "withArgument(int)");
    row("empty", QString(), QString());
    row("parentheses alone", "()", QString());
}

void tst_MetaObjectUtils::failsToInvoke()
{
    QFETCH(QString, name);
    QFETCH(QString, logged);
    Target target;
    const QString line = QStringLiteral("critical orvautils MetaObjectUtils invokeSignalOrSlot: "
                                        "Impossible dinvoquer  ")
        + logged + QStringLiteral("  sur  ") + addressOf(&target);
    LogCapture log;
    QVERIFY(!MetaObjectUtils::invokeSignalOrSlot(&target, name));
    QVERIFY(!MetaObjectUtils::invokeSignalOrSlot(&target, name.toUtf8().constData()));
    QCOMPARE(libraryLines(log), QStringList({line, line}));
    QVERIFY(target.calls.isEmpty());
}

void tst_MetaObjectUtils::nullNameAndNullObject()
{
    Target target;
    LogCapture log;
    QVERIFY(!MetaObjectUtils::invokeSignalOrSlot(&target, static_cast<const char*>(nullptr)));
    QVERIFY(!MetaObjectUtils::invokeSignalOrSlot(nullptr, QStringLiteral("doSomething")));
    bool result = true;
    QVERIFY(
        !MetaObjectUtils::invokeSlotReturningBoolean(nullptr, QStringLiteral("isReady"), result));
    QVERIFY(result);
    QCOMPARE(libraryLines(log),
             QStringList({QStringLiteral("critical orvautils MetaObjectUtils invokeSignalOrSlot: "
                                         "Impossible dinvoquer    sur  ")
                              + addressOf(&target),
                          QStringLiteral("critical orvautils MetaObjectUtils invokeSignalOrSlot: "
                                         "Impossible dinvoquer  doSomething  sur  0x0"),
                          QStringLiteral("critical orvautils MetaObjectUtils "
                                         "invokeSlotReturningBoolean: "
                                         "Impossible dinvoquer  isReady  sur  0x0")}));
}

void tst_MetaObjectUtils::hasMethod_data()
{
    const auto row = columns<QByteArray, bool>("method", "found");
    row("signature", "doSomething()", true);
    row("bare name", "doSomething", false);
    row("SLOT", "1doSomething()", true);
    row("SIGNAL", "2happened()", true);
    row("the kind does not matter", "2doSomething()", true);
    row("code 0 is none", "0doSomething()", false);
    row("blanks", " 1 do Something\t( ) ", true);
    row("with argument", "withArgument( int )", true);
    row("other argument", "withArgument(double)", false);
    row("without its argument", "withArgument()", false);
    row("default argument given", "withDefault(int)", true);
    row("default argument left out", "withDefault()", true);
    row("invokable, the last of all", "invokable()", true);
    row("inherited, the first of all", "destroyed(QObject*)", true);
    row("inherited slot", "deleteLater()", true);
    row("another case", "dosomething()", false);
    row("unknown", "nothing()", false);
    row("empty", "", false);
    row("null", QByteArray(), false);
}

void tst_MetaObjectUtils::warningsOfQt()
{
    Target target;
    LogCapture log;
    QVERIFY(!MetaObjectUtils::invokeSignalOrSlot(nullptr, QStringLiteral("doSomething")));
    QCOMPARE(log.lines(), libraryLines(log));
    QVERIFY(!MetaObjectUtils::invokeSignalOrSlot(&target, QStringLiteral("withArgument")));
    QCOMPARE(log.lines().size(), libraryLines(log).size() + 1);
    const QString warning = log.lines().at(1);
    QVERIFY2(warning.contains(QLatin1String("No such method Target::withArgument()")),
             qPrintable(warning));
    QVERIFY2(warning.contains(QLatin1String("withArgument(int)")), qPrintable(warning));
}

void tst_MetaObjectUtils::hasMethod()
{
    QFETCH(QByteArray, method);
    QFETCH(bool, found);
    Target target;
    LogCapture log;
    QCOMPARE(MetaObjectUtils::hasMethod(&target, method.isNull() ? nullptr : method.constData()),
             found);
    QCOMPARE(log.lines(), QStringList());
}

void tst_MetaObjectUtils::returnsBoolean_data()
{
    const auto row = columns<QString, bool>("name", "answer");
    for (const bool answer : {false, true}) {
        const QByteArray suffix = answer ? " true" : " false";
        row("bare" + suffix, "isReady", answer);
        row("SLOT" + suffix, "1isReady()", answer);
        row("blanks" + suffix, " 2 is Ready ( ) ", answer);
    }
}

void tst_MetaObjectUtils::returnsBoolean()
{
    QFETCH(QString, name);
    QFETCH(bool, answer);
    Target target;
    target.answer = answer;
    LogCapture log;
    bool result = !answer;
    QVERIFY(MetaObjectUtils::invokeSlotReturningBoolean(&target, name, result));
    QCOMPARE(result, answer);
    QCOMPARE(target.calls, QStringList(QStringLiteral("isReady")));
    QCOMPARE(log.lines(), QStringList());
}

void tst_MetaObjectUtils::failsToReturnBoolean_data()
{
    const auto row = columns<QString, QString>("name", "logged");
    row("unknown", "1 nothing()", "nothing");
    row("returns nothing", "doSomething", "doSomething");
    row("returns a number", "number()", "number");
    row("empty", QString(), QString());
}

void tst_MetaObjectUtils::failsToReturnBoolean()
{
    QFETCH(QString, name);
    QFETCH(QString, logged);
    Target target;
    for (const bool before : {false, true}) {
        LogCapture log;
        bool result = before;
        QVERIFY(!MetaObjectUtils::invokeSlotReturningBoolean(&target, name, result));
        QCOMPARE(result, before);
        QCOMPARE(libraryLines(log),
                 QStringList(QStringLiteral("critical orvautils MetaObjectUtils "
                                            "invokeSlotReturningBoolean: Impossible dinvoquer  ")
                             + logged + QStringLiteral("  sur  ") + addressOf(&target)));
    }
    QVERIFY(target.calls.isEmpty());
}

void tst_MetaObjectUtils::noBooleanFromAnotherThread()
{
    QThread thread;
    Target target;
    target.answer = true;
    target.moveToThread(&thread);
    LogCapture log;
    bool result = false;
    QVERIFY(
        !MetaObjectUtils::invokeSlotReturningBoolean(&target, QStringLiteral("isReady"), result));
    QVERIFY(!result);
    QVERIFY(target.calls.isEmpty());
    QCOMPARE(libraryLines(log).size(), 1);
}

QTEST_GUILESS_MAIN(tst_MetaObjectUtils)
#include "tst_MetaObjectUtils.moc"

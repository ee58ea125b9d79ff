// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "MetaObjectUtils.h"

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

// The library's own records; Qt warns besides.
QStringList libraryLines(const LogCapture& log)
{
    return log.lines().filter(QStringLiteral(" orvautils "));
}

} // namespace

void tst_MetaObjectUtils::invokes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("called");
    const QString doSomething = QStringLiteral("doSomething");
    const QString happened = QStringLiteral("happened");
    QTest::newRow("bare") << doSomething << doSomething;
    QTest::newRow("signature") << QStringLiteral("doSomething()") << doSomething;
    QTest::newRow("SLOT") << QString::fromLatin1(SLOT(doSomething())).section(QChar(0), 0, 0)
                          << doSomething;
    QTest::newRow("code 1") << QStringLiteral("1doSomething()") << doSomething;
    QTest::newRow("code 2 and blanks") << QStringLiteral("2 doSomething ( )") << doSomething;
    QTest::newRow("white space of all kinds")
        << QStringLiteral(" \t1\n doSomething \r\n (\t) ") << doSomething;
    QTest::newRow("blanks inside the name") << QStringLiteral("do Some  thing") << doSomething;
    QTest::newRow("every pair of parentheses") << QStringLiteral("doSomething()()") << doSomething;
    QTest::newRow("parentheses in the middle") << QStringLiteral("do()Something") << doSomething;
    QTest::newRow("a signal") << happened << happened;
    QTest::newRow("SIGNAL") << QString::fromLatin1(SIGNAL(happened())).section(QChar(0), 0, 0)
                            << happened;
    QTest::newRow("invokable") << QStringLiteral("invokable()") << QStringLiteral("invokable");
    QTest::newRow("default argument") << QStringLiteral("withDefault") << QStringLiteral("7");
    QTest::newRow("an answer that nobody wants")
        << QStringLiteral("isReady") << QStringLiteral("isReady");
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
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("logged");
    QTest::newRow("unknown") << QStringLiteral("nothing") << QStringLiteral("nothing");
    QTest::newRow("normalised in the record")
        << QStringLiteral(" 2 no thing ( ) ") << QStringLiteral("nothing");
    QTest::newRow("another case") << QStringLiteral("DoSomething") << QStringLiteral("DoSomething");
    QTest::newRow("only one code is dropped")
        << QStringLiteral("12doSomething()") << QStringLiteral("2doSomething");
    QTest::newRow("code 0 is none")
        << QStringLiteral("0doSomething()") << QStringLiteral("0doSomething");
    QTest::newRow("an argument is wanted")
        << QStringLiteral("withArgument") << QStringLiteral("withArgument");
    QTest::newRow("a signature with an argument")
        << QStringLiteral("withArgument(int)") << QStringLiteral("withArgument(int)");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("parentheses alone") << QStringLiteral("()") << QString();
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
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<bool>("found");
    QTest::newRow("signature") << QByteArray("doSomething()") << true;
    QTest::newRow("bare name") << QByteArray("doSomething") << false;
    QTest::newRow("SLOT") << QByteArray("1doSomething()") << true;
    QTest::newRow("SIGNAL") << QByteArray("2happened()") << true;
    QTest::newRow("the kind does not matter") << QByteArray("2doSomething()") << true;
    QTest::newRow("code 0 is none") << QByteArray("0doSomething()") << false;
    QTest::newRow("blanks") << QByteArray(" 1 do Something\t( ) ") << true;
    QTest::newRow("with argument") << QByteArray("withArgument( int )") << true;
    QTest::newRow("other argument") << QByteArray("withArgument(double)") << false;
    QTest::newRow("without its argument") << QByteArray("withArgument()") << false;
    QTest::newRow("default argument given") << QByteArray("withDefault(int)") << true;
    QTest::newRow("default argument left out") << QByteArray("withDefault()") << true;
    QTest::newRow("invokable, the last of all") << QByteArray("invokable()") << true;
    QTest::newRow("inherited, the first of all") << QByteArray("destroyed(QObject*)") << true;
    QTest::newRow("inherited slot") << QByteArray("deleteLater()") << true;
    QTest::newRow("another case") << QByteArray("dosomething()") << false;
    QTest::newRow("unknown") << QByteArray("nothing()") << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("null") << QByteArray() << false;
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
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("answer");
    for (const bool answer : {false, true}) {
        const QByteArray suffix = answer ? " true" : " false";
        QTest::newRow("bare" + suffix) << QStringLiteral("isReady") << answer;
        QTest::newRow("SLOT" + suffix) << QStringLiteral("1isReady()") << answer;
        QTest::newRow("blanks" + suffix) << QStringLiteral(" 2 is Ready ( ) ") << answer;
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
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("logged");
    QTest::newRow("unknown") << QStringLiteral("1 nothing()") << QStringLiteral("nothing");
    QTest::newRow("returns nothing")
        << QStringLiteral("doSomething") << QStringLiteral("doSomething");
    QTest::newRow("returns a number") << QStringLiteral("number()") << QStringLiteral("number");
    QTest::newRow("empty") << QString() << QString();
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

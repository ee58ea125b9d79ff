// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ComputerIdentifier.h"

#include "Columns.h"
#include "LogCapture.h"
#include "SystemCalls.h"
#include "stringhash_p.h"

#include <QNetworkInterface>
#include <QProcess>
#include <QStandardPaths>
#include <QtTest>

#include <cstdio>

class tst_ComputerIdentifier : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noProductId();
    void addressOfThisMachine();
    void identifierIsTheAddress();
    void hashIsHexadecimal();
    void hashIsThatOfQt5_data();
    void hashIsThatOfQt5();
    void debugWritesFourWarnings();
    void interfacesOfAnotherMachine_data();
    void interfacesOfAnotherMachine();
    void noInterfaces();
};

void tst_ComputerIdentifier::noProductId()
{
    QCOMPARE(ComputerIdentifier::productId(), QString());
}

void tst_ComputerIdentifier::addressOfThisMachine()
{
    QString expected;
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& candidate : interfaces) {
        if (candidate.name() == QStringLiteral("en0")) {
            expected = candidate.hardwareAddress();
            break;
        }
        if (expected.isEmpty())
            expected = candidate.hardwareAddress();
    }
    QCOMPARE(ComputerIdentifier::primaryMACAddress(), expected);
}

void tst_ComputerIdentifier::identifierIsTheAddress()
{
    QCOMPARE(ComputerIdentifier::uniqueIdentifier(), ComputerIdentifier::primaryMACAddress());
}

void tst_ComputerIdentifier::hashIsHexadecimal()
{
    const QString hash = ComputerIdentifier::hashedUniqueIdentifier();
    bool ok = false;
    const uint number = hash.toUInt(&ok, 16);
    QVERIFY(ok);
    QCOMPARE(number, OrvaUtilsPrivate::stringHash(ComputerIdentifier::uniqueIdentifier()));
    QCOMPARE(hash, hash.toLower());
    QVERIFY(hash == QStringLiteral("0") || !hash.startsWith(QLatin1Char('0')));
}

void tst_ComputerIdentifier::hashIsThatOfQt5_data()
{
    const auto row = columns<QString, quint32>("text", "hash");
    // Calculated by hand and, with Qt 5, compared with qHash(text, 0) below.
    row("empty", "", quint32(0x00000000));
    row("loopback", "00:00:00:00:00:00", quint32(0xb28f5e3a));
    row("address", "02:00:5E:10:00:07", quint32(0xd0120c2e));
    row("product", "C02-02:00:5E:10:00:07", quint32(0x435e55e6));
    row("accents", "\u00e9\u20ac", quint32(0x00003ce3));
    row("beyond the first plane", "\U0001F600 machine", quint32(0xb28bda8a));
}

void tst_ComputerIdentifier::hashIsThatOfQt5()
{
    QFETCH(QString, text);
    QTEST(OrvaUtilsPrivate::stringHash(text), "hash");
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCOMPARE(quint32(qHash(text, 0)), OrvaUtilsPrivate::stringHash(text));
#endif
}

void tst_ComputerIdentifier::debugWritesFourWarnings()
{
    LogCapture log;
    ComputerIdentifier::debug();
    const QString address = ComputerIdentifier::primaryMACAddress();
    QCOMPARE(log.lines(),
             QStringList({QStringLiteral("warning default: Product Id: "),
                          QStringLiteral("warning default: First MAC: ") + address,
                          QStringLiteral("warning default: Unique Identifier: ") + address,
                          QStringLiteral("warning default: Hashed Unique Identifier: ")
                              + ComputerIdentifier::hashedUniqueIdentifier()}));
}

void tst_ComputerIdentifier::interfacesOfAnotherMachine_data()
{
    // commands: create the interfaces
    const auto row = columns<QString, QString>("commands", "address");
    // A new network namespace has only the loopback interface, whose address is all zeros.
    row("loopback only", "true", "00:00:00:00:00:00");
    row("en0 goes first",
        "ip link add aa0 address 02:00:00:00:00:01 type veth peer name en0 && "
        "ip link set en0 address 02:00:5e:10:00:07",
        "02:00:5E:10:00:07");
    row("en1 is no en0", "ip link add en1 type veth peer name en2", "00:00:00:00:00:00");
}

void tst_ComputerIdentifier::interfacesOfAnotherMachine()
{
    QFETCH(QString, commands);
    QFETCH(QString, address);
    const QString unshare = QStandardPaths::findExecutable(QStringLiteral("unshare"));
    const QString ip = QStandardPaths::findExecutable(
        QStringLiteral("ip"),
        {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin"), QStringLiteral("/usr/bin")});
    if (unshare.isEmpty() || ip.isEmpty()
        || QProcess::execute(unshare, {QStringLiteral("-rn"), QStringLiteral("true")}) != 0)
        QSKIP("this system lets nobody make network namespaces");

    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"),
                       environment.value(QStringLiteral("PATH"))
                           + QStringLiteral(":/usr/sbin:/sbin"));
    child.setProcessEnvironment(environment);
    child.start(unshare,
                {QStringLiteral("-rn"), QStringLiteral("sh"), QStringLiteral("-c"),
                 commands + QStringLiteral(" && exec \"$0\" --identify"),
                 QCoreApplication::applicationFilePath()});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitCode(), 0);
    QCOMPARE(QString::fromLatin1(child.readAllStandardOutput()), address);
}

void tst_ComputerIdentifier::noInterfaces()
{
    SKIP_ON_WINDOWS("there is no limit of files and their size");
    // Qt uses a socket, which cannot be opened if the limit of open files is reached.
    struct rlimit usual;
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const struct rlimit none = {0, usual.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
    const QString address = ComputerIdentifier::primaryMACAddress();
    const QString identifier = ComputerIdentifier::uniqueIdentifier();
    const QString hash = ComputerIdentifier::hashedUniqueIdentifier();
    const int interfaces = int(QNetworkInterface::allInterfaces().size());
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &usual), 0);
    QCOMPARE(interfaces, 0);
    QCOMPARE(address, QString());
    QCOMPARE(identifier, QString());
    QCOMPARE(hash, QStringLiteral("0"));
}

// With --identify the program acts as another machine: it prints its address and exits.
int main(int argc, char** argv)
{
    if (argc == 2 && qstrcmp(argv[1], "--identify") == 0) {
        std::fputs(qPrintable(ComputerIdentifier::primaryMACAddress()), stdout);
        return 0;
    }
    QCoreApplication app(argc, argv);
    tst_ComputerIdentifier test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ComputerIdentifier.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ListUtils.h"

#include <QTimer>
#include <QtTest>

class Base : public QObject
{
    Q_OBJECT
};

class Derived : public Base
{
    Q_OBJECT
};

class tst_ListUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void inherits_data();
    void inherits();
    void sameClass_data();
    void sameClass();
    void stopsAtTheFirst();
};

namespace {

// The objects that the letters of \a kinds name: o a QObject, b a Base, d a Derived, t a timer.
QList<QObject*> make(const QString& kinds, QObject* parent)
{
    QList<QObject*> list;
    for (const QChar kind : kinds) {
        QObject* object = kind == QLatin1Char('b') ? new Base
            : kind == QLatin1Char('d')             ? new Derived
            : kind == QLatin1Char('t')             ? new QTimer
                                                   : new QObject;
        object->setParent(parent);
        list += object;
    }
    return list;
}

} // namespace

void tst_ListUtils::inherits_data()
{
    QTest::addColumn<QString>("kinds");
    QTest::addColumn<QByteArray>("className");
    QTest::addColumn<bool>("all");
    QTest::newRow("empty") << QString() << QByteArray("QObject") << false;
    QTest::newRow("the class itself") << QStringLiteral("b") << QByteArray("Base") << true;
    QTest::newRow("derived") << QStringLiteral("d") << QByteArray("Base") << true;
    QTest::newRow("base") << QStringLiteral("b") << QByteArray("Derived") << false;
    QTest::newRow("all of them") << QStringLiteral("bdbd") << QByteArray("Base") << true;
    QTest::newRow("everything is an object")
        << QStringLiteral("obdt") << QByteArray("QObject") << true;
    QTest::newRow("not the first") << QStringLiteral("tbd") << QByteArray("Base") << false;
    QTest::newRow("not the last") << QStringLiteral("bdt") << QByteArray("Base") << false;
    QTest::newRow("another case") << QStringLiteral("b") << QByteArray("base") << false;
    QTest::newRow("unknown") << QStringLiteral("b") << QByteArray("NoClass") << false;
}

void tst_ListUtils::inherits()
{
    QFETCH(QString, kinds);
    QFETCH(QByteArray, className);
    QFETCH(bool, all);
    QObject parent;
    QCOMPARE(ListUtils::allObjectInherits(make(kinds, &parent), className.constData()), all);
}

void tst_ListUtils::sameClass_data()
{
    QTest::addColumn<QString>("kinds");
    QTest::addColumn<bool>("same");
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("one") << QStringLiteral("b") << true;
    QTest::newRow("several") << QStringLiteral("ddd") << true;
    QTest::newRow("derived behind base") << QStringLiteral("bd") << false;
    QTest::newRow("base behind derived") << QStringLiteral("db") << false;
    QTest::newRow("the last is another") << QStringLiteral("bbt") << false;
}

void tst_ListUtils::sameClass()
{
    QFETCH(QString, kinds);
    QFETCH(bool, same);
    QObject parent;
    QCOMPARE(ListUtils::allObjectIsSameClass(make(kinds, &parent)), same);
}

// Behind the first that differs nothing is looked at: a null there would crash.
void tst_ListUtils::stopsAtTheFirst()
{
    QObject parent;
    QList<QObject*> list = make(QStringLiteral("bt"), &parent);
    list += nullptr;
    QVERIFY(!ListUtils::allObjectInherits(list, "Base"));
    QVERIFY(!ListUtils::allObjectIsSameClass(list));
}

QTEST_GUILESS_MAIN(tst_ListUtils)
#include "tst_ListUtils.moc"

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ListUtils.h"

#include "Columns.h"

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

// The objects that \a kinds describes: o a QObject, b a Base, d a Derived, t a timer.
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
    const auto row = columns<QString, QByteArray, bool>("kinds", "className", "all");
    row("empty", QString(), "QObject", false);
    row("the class itself", "b", "Base", true);
    row("derived", "d", "Base", true);
    row("base", "b", "Derived", false);
    row("all of them", "bdbd", "Base", true);
    row("everything is an object", "obdt", "QObject", true);
    row("not the first", "tbd", "Base", false);
    row("not the last", "bdt", "Base", false);
    row("another case", "b", "base", false);
    row("unknown", "b", "NoClass", false);
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
    const auto row = columns<QString, bool>("kinds", "same");
    row("empty", QString(), false);
    row("one", "b", true);
    row("several", "ddd", true);
    row("derived behind base", "bd", false);
    row("base behind derived", "db", false);
    row("the last is another", "bbt", false);
}

void tst_ListUtils::sameClass()
{
    QFETCH(QString, kinds);
    QFETCH(bool, same);
    QObject parent;
    QCOMPARE(ListUtils::allObjectIsSameClass(make(kinds, &parent)), same);
}

// Elements after the first difference are not accessed: a null there would crash.
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

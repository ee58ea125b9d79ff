// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TypeUtils.h"

#include <QtTest>

#include <typeinfo>

namespace Gallery {
template <typename T>
struct Frame
{
};
} // namespace Gallery

class tst_TypeUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void demangle_data();
    void demangle();
    void nameOfAType();
};

void tst_TypeUtils::demangle_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("readable");
    // Mangled by hand after the rules of the Itanium C++ ABI.
    QTest::newRow("class") << QByteArray("7QObject") << QStringLiteral("QObject");
    QTest::newRow("built-in type") << QByteArray("i") << QStringLiteral("int");
    QTest::newRow("pointer to constant") << QByteArray("PKc") << QStringLiteral("char const*");
    QTest::newRow("nested template")
        << QByteArray("N7Gallery5FrameIiEE") << QStringLiteral("Gallery::Frame<int>");
    QTest::newRow("not a mangled name") << QByteArray("no name!") << QStringLiteral("no name!");
    QTest::newRow("empty") << QByteArray("") << QString(QLatin1String(""));
}

void tst_TypeUtils::demangle()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, readable);
    QCOMPARE(TypeUtils::demangle(name.constData()), readable);
    QCOMPARE(TypeUtils::name(name.constData()), readable);
}

void tst_TypeUtils::nameOfAType()
{
    QCOMPARE(TypeUtils::name(typeid(Gallery::Frame<QObject>).name()),
             QStringLiteral("Gallery::Frame<QObject>"));
    QCOMPARE(TypeUtils::demangle(nullptr), QString());
}

QTEST_GUILESS_MAIN(tst_TypeUtils)
#include "tst_TypeUtils.moc"

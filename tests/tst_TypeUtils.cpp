// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TypeUtils.h"

#include "Columns.h"

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
    const auto row = columns<QByteArray, QString>("name", "readable");
    // Mangled by hand according to the Itanium C++ ABI.
    row("class", "7QObject", "QObject");
    row("built-in type", "i", "int");
    row("pointer to constant", "PKc", "char const*");
    row("nested template", "N7Gallery5FrameIiEE", "Gallery::Frame<int>");
    row("not a mangled name", "no name!", "no name!");
    row("empty", "", QString(QLatin1String("")));
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

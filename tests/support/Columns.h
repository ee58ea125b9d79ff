// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// columns(): declares the columns of a data-driven test and returns a function that adds its rows.

#ifndef COLUMNS_H
#define COLUMNS_H

#include "Text.h"

#include <QString>
#include <QtTest>
#include <initializer_list>

/// A cell of a text column: a literal in UTF-8, or a QString, which may be null.
class TextCell
{
public:
    TextCell(const char* utf8)
        : mText(text(utf8))
    { }
    TextCell(const QString& text)
        : mText(text)
    { }
    const QString& value() const { return mText; }

private:
    QString mText;
};

/// A cell of a column of any other type is a value of that type.
template <typename T>
struct CellOf
{
    using Type = T;
    static const T& valueOf(const T& cell) { return cell; }
};

template <>
struct CellOf<QString>
{
    using Type = TextCell;
    static const QString& valueOf(const TextCell& cell) { return cell.value(); }
};

/// The result of columns(). Each call adds a row: its name, then a cell for each column. A missing
/// cell, or one of another type, does not compile.
template <typename... Types>
class Rows
{
public:
    void operator()(const char* name, const typename CellOf<Types>::Type&... cells) const
    {
        QTestData& row = QTest::newRow(name);
        static_cast<void>(std::initializer_list<int>{(row << CellOf<Types>::valueOf(cells), 0)...});
    }
};

/// Declares the columns of a data-driven test:
/// \code
/// const auto row = columns<QString, int>("path", "depth");
/// row("root", "/", 0);
/// row("two folders", "/a/b", 2);
/// \endcode
template <typename... Types, typename... Names>
Rows<Types...> columns(const Names&... names)
{
    static_assert(sizeof...(Types) == sizeof...(Names), "each column has a type and a name");
    static_cast<void>(std::initializer_list<int>{(QTest::addColumn<Types>(names), 0)...});
    return {};
}

/// The result of namedByText().
template <typename... Rest>
class RowsNamedByText
{
public:
    void operator()(const char* utf8, const typename CellOf<Rest>::Type&... cells) const
    {
        Rows<QString, Rest...>()(utf8, utf8, cells...);
    }
};

/// Adds rows that are named by their first cell:
/// \code
/// const auto row = namedByText(columns<QString, QString>("url", "encoded"));
/// row("a b", "a%20b");
/// \endcode
template <typename... Rest>
RowsNamedByText<Rest...> namedByText(const Rows<QString, Rest...>&)
{
    return {};
}

#endif // COLUMNS_H

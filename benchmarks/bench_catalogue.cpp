// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The web font catalogue compared with the least possible work: only parsing its JSON, and walking
// a list of names that are prepared for comparison. Before anything is measured, both are checked
// to find the same families.
//
// compare_catalogue.py runs this program and prints the ratios.

#include "Benchmarks.h"
#include "GoogleFontFile.h"
#include "GoogleFontLoader.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

namespace {

// Loading

const QByteArray& text()
{
    static const QByteArray content = [] {
        QFile file(GoogleFontLoader::builinGoogleJsonFilePath());
        check(file.open(QIODevice::ReadOnly), "the built-in list");
        return file.readAll();
    }();
    return content;
}

/// From the compressed resource to families that can be looked up.
void load(benchmark::State& state)
{
    GoogleFontFile catalogue;
    for (auto _ : state)
        benchmark::DoNotOptimize(
            catalogue.loadJsonGFontFromFilePath(GoogleFontLoader::builinGoogleJsonFilePath()));
}

/// From the text in memory to a JSON document.
void parseAlone(benchmark::State& state)
{
    QJsonDocument document;
    for (auto _ : state) {
        document = QJsonDocument::fromJson(text());
        benchmark::DoNotOptimize(document.isNull());
    }
}

void secondLoader(benchmark::State& state)
{
    for (auto _ : state) {
        GoogleFontLoader loader;
        benchmark::DoNotOptimize(loader.load());
    }
}

// Looking up

/// Ten thousand names as hosts ask for them: spelled correctly, without blanks, in lower case, in
/// upper case, and one in eight that does not exist.
const QStringList& names()
{
    static const QStringList asked = [] {
        const QStringList families = GoogleFontLoader().fontNames();
        QStringList made;
        for (int i = 0; made.size() < 10000; ++i) {
            QString name = families.at(int(i * 7919LL % families.size()));
            if (i % 2)
                name.remove(QLatin1Char(' '));
            if (i % 3 == 1)
                name = name.toLower();
            else if (i % 3 == 2)
                name = name.toUpper();
            if (i % 8 == 0)
                name += QLatin1Char('x');
            made += name;
        }
        return made;
    }();
    return asked;
}

/// The names that a linear search compares, prepared once.
struct PreparedNames
{
    QStringList families;
    QStringList compressed;
};

const PreparedNames& prepared()
{
    static const PreparedNames lists = [] {
        PreparedNames made;
        made.families = GoogleFontLoader().fontNames();
        for (const QString& family : qAsConst(made.families))
            made.compressed += QString(family).remove(QLatin1Char(' '));
        return made;
    }();
    return lists;
}

int findLinearly(const QString& name)
{
    for (int i = 0; i < prepared().families.size(); ++i) {
        if (prepared().families.at(i).compare(name, Qt::CaseInsensitive) == 0
            || prepared().compressed.at(i).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

void lookUp(benchmark::State& state)
{
    GoogleFontLoader loader;
    loader.load();
    GoogleFontItem item;
    for (auto _ : state) {
        for (const QString& name : names())
            benchmark::DoNotOptimize(loader.findItemByName(name, item));
    }
}

void linearSearch(benchmark::State& state)
{
    for (auto _ : state) {
        for (const QString& name : names())
            benchmark::DoNotOptimize(findLinearly(name));
    }
}

void checkThatAllAgree()
{
    GoogleFontLoader loader;
    check(loader.load(), "the catalogue"); // and registers it, where the library is static
    GoogleFontFile catalogue;
    check(catalogue.loadJsonGFontFromFilePath(GoogleFontLoader::builinGoogleJsonFilePath()),
          "the built-in list");
    check(catalogue.doc() == QJsonDocument::fromJson(text()), "the document");
    check(catalogue.count() == prepared().families.size(), "the number of families");
    for (const QString& name : names()) {
        GoogleFontItem item;
        const int position = findLinearly(name);
        check(loader.findItemByName(name, item) == (position >= 0), "what is found");
        check(position < 0 || item.family() == prepared().families.at(position), "a family");
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv); // its folder determines where a custom list would be
    checkThatAllAgree();
    benchmark::RegisterBenchmark("load", load);
    benchmark::RegisterBenchmark("fromJson", parseAlone);
    benchmark::RegisterBenchmark("second loader", secondLoader);
    benchmark::RegisterBenchmark("10,000 look-ups", lookUp);
    benchmark::RegisterBenchmark("linear search", linearSearch);
    return runBenchmarks(argc, argv);
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The folder tree operations of FileUtils, measured inside one process. With --once the program
// does a single operation and ends, so that compare_trees.py can measure a process against a
// process:
//
//     bench_trees --once copyDir|copyDirWatched|replaceDir SOURCE DESTINATION
//     bench_trees --once folderSize|folderSizeWithDate|listFiles|removeDirectory|removeContent PATH
//     bench_trees --once nothing

#include "Benchmarks.h"

#include <FileUtils.h>

#include <benchmark/benchmark.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <clocale>
#include <cstdio>
#include <cstring>

namespace {

/// A tree of 50 folders with 40 files each, made once and removed when the program ends.
class SampleTree
{
public:
    static const int folders = 50;
    static const int filesPerFolder = 40;

    SampleTree()
        : mFolder(root() + QStringLiteral("/bench_trees-XXXXXX"))
    {
        for (int i = 0; i < folders; ++i) {
            const QString folder = source() + QStringLiteral("/d%1/e%2").arg(i / 10).arg(i % 10);
            QDir().mkpath(folder);
            for (int k = 0; k < filesPerFolder; ++k) {
                QFile file(folder + QStringLiteral("/file-%1.dat").arg(k));
                if (file.open(QIODevice::WriteOnly))
                    file.write(QByteArray(1024 + (i * 7 + k * 131) % 3072, 'x'));
            }
        }
    }

    QString source() const { return mFolder.path() + QStringLiteral("/source"); }
    QString copy() const { return mFolder.path() + QStringLiteral("/copy"); }

private:
    /// In memory if possible: the disk is not measured.
    static QString root()
    {
        const QString memory = QStringLiteral("/dev/shm");
        return QDir(memory).exists() ? memory : QDir::tempPath();
    }

    QTemporaryDir mFolder;
};

const SampleTree& tree()
{
    static const SampleTree sample;
    return sample;
}

void countFiles(benchmark::State& state)
{
    state.SetItemsProcessed(int64_t(state.iterations()) * SampleTree::folders
                            * SampleTree::filesPerFolder);
}

template <typename Function>
void reading(benchmark::State& state, Function read)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(read(tree().source()));
    countFiles(state);
}

void folderSize(benchmark::State& state)
{
    reading(state, [](const QString& path) {
        int count = 0;
        return FileUtils::folderSize(path, &count);
    });
}
BENCHMARK(folderSize)->Unit(benchmark::kMillisecond);

void folderSizeWithDate(benchmark::State& state)
{
    reading(state, [](const QString& path) {
        QDateTime latest;
        return FileUtils::folderSize(path, nullptr, &latest);
    });
}
BENCHMARK(folderSizeWithDate)->Unit(benchmark::kMillisecond);

void listFilesInFileSystem(benchmark::State& state)
{
    reading(state, [](const QString& path) {
        QStringList files;
        return FileUtils::listFilesInFileSystem(path, files, true);
    });
}
BENCHMARK(listFilesInFileSystem)->Unit(benchmark::kMillisecond);

void copyDir(benchmark::State& state)
{
    for (auto _ : state) {
        if (!FileUtils::copyDir(tree().source(), tree().copy(), false))
            state.SkipWithError("the copy failed");
        state.PauseTiming();
        QDir(tree().copy()).removeRecursively();
        state.ResumeTiming();
    }
    countFiles(state);
}
BENCHMARK(copyDir)->Unit(benchmark::kMillisecond);

template <typename Remove>
void removing(benchmark::State& state, Remove remove)
{
    for (auto _ : state) {
        state.PauseTiming();
        FileUtils::copyDir(tree().source(), tree().copy(), false);
        state.ResumeTiming();
        if (!remove(tree().copy()))
            state.SkipWithError("the deletion failed");
    }
    countFiles(state);
}

void removeDirectory(benchmark::State& state)
{
    removing(state,
             [](const QString& path) { return FileUtils::old::removeDirectory(path, true); });
}
BENCHMARK(removeDirectory)->Unit(benchmark::kMillisecond);

void removeContentDirectory(benchmark::State& state)
{
    removing(state,
             [](const QString& path) { return FileUtils::removeContentDirectory(path, true); });
}
BENCHMARK(removeContentDirectory)->Unit(benchmark::kMillisecond);

/// Runs one operation, as a separate program would; returns the exit code.
int once(const QStringList& arguments)
{
    const QString operation = arguments.value(0);
    const QString path = arguments.value(1);
    bool done = true;
    if (operation == QLatin1String("nothing")) {
        done = true;
    } else if (operation == QLatin1String("copyDir")) {
        done = FileUtils::copyDir(path, arguments.value(2), false);
    } else if (operation == QLatin1String("copyDirWatched")) {
        const auto observer = [](const FileUtils::TreeProgress&) { return true; };
        done = FileUtils::copyDir(path, arguments.value(2), false, observer);
    } else if (operation == QLatin1String("replaceDir")) {
        done = FileUtils::replaceDir(path, arguments.value(2));
    } else if (operation == QLatin1String("folderSize")) {
        std::printf("%lld\n", FileUtils::folderSize(path));
    } else if (operation == QLatin1String("folderSizeWithDate")) {
        int count = 0;
        QDateTime latest;
        const qint64 size = FileUtils::folderSize(path, &count, &latest);
        std::printf("%lld %d %lld\n", size, count, latest.toMSecsSinceEpoch());
    } else if (operation == QLatin1String("listFiles")) {
        QStringList files;
        FileUtils::listFilesInFileSystem(path, files, true);
        // In parts, which use the same memory again.
        for (int start = 0; start < files.size(); start += 500) {
            const QStringList portion = files.mid(start, 500);
            std::puts(QFile::encodeName(portion.join(QLatin1Char('\n'))).constData());
        }
    } else if (operation == QLatin1String("removeDirectory")) {
        done = FileUtils::old::removeDirectory(path, true);
    } else if (operation == QLatin1String("removeContent")) {
        done = FileUtils::removeContentDirectory(path, true);
    } else {
        std::fprintf(stderr, "bench_trees: unknown operation %s\n", qPrintable(operation));
        return 2;
    }
    return done ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    // File names in the user's encoding, for which the application object of a program provides.
    std::setlocale(LC_ALL, "");
    if (argc > 1 && std::strcmp(argv[1], "--once") == 0) {
        QStringList arguments;
        for (int i = 2; i < argc; ++i)
            arguments += QFile::decodeName(argv[i]);
        return once(arguments);
    }
    return runBenchmarks(argc, argv);
}

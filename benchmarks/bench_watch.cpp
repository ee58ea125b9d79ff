// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Watching a folder tree compared with QFileSystemWatcher alone, and digests of large files.
//
// As a Google Benchmark program it times the digests in process. With --once it does one job for
// compare_watch.py, so that process is measured against process:
//
//     bench_watch --once md5|sha1 FILE             prints the digest
//     bench_watch --once register ours|qt TREE     prints the seconds that registering takes
//     bench_watch --once latency ours|qt TREE N    prints the median seconds to a notification
//     bench_watch --once appear ours|steps TREE N  prints the CPU seconds spent on N new files,
//                                                  made by somebody else after it printed "ready"

#include "Benchmarks.h"

#include <DirectoryWatcher.h>
#include <FileUtils.h>

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileSystemWatcher>
#include <QSet>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <vector>

namespace {

/// The obvious way of watching a tree: everything is listed, and registered paths are requested
/// from QFileSystemWatcher, at each notification and once more after it.
class StepByStepWatcher : public QObject
{
public:
    explicit StepByStepWatcher(std::function<void(const QString&)> added)
        : mAdded(std::move(added))
    {
        connect(&mWatcher, &QFileSystemWatcher::directoryChanged, this,
                [this](const QString& path) {
                    addDir(path);
                    QTimer::singleShot(0, this, [this, path] { addDir(path); });
                });
    }

    void addDir(const QString& folder)
    {
        mWatcher.addPath(folder);
        const QStringList listBefore = mWatcher.files();
        const QSet<QString> before(listBefore.begin(), listBefore.end());
        QStringList files;
        FileUtils::old::listFilesInFileSystem(folder, files, true, nullptr, folder);
        if (!files.isEmpty())
            mWatcher.addPaths(files);
        const QStringList listAfter = mWatcher.files();
        const QSet<QString> after(listAfter.begin(), listAfter.end());
        const QSet<QString> fresh = after - before;
        for (const QString& file : fresh)
            mAdded(file);
        QStringList folders;
        FileUtils::listDirectoriesInFileSystem(folder, folders, true);
        if (!folders.isEmpty())
            mWatcher.addPaths(folders);
    }

private:
    QFileSystemWatcher mWatcher;
    std::function<void(const QString&)> mAdded;
};

void listTree(const QString& tree, QStringList* files, QStringList* folders)
{
    QDirIterator entries(tree, QDir::AllEntries | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        (entries.fileInfo().isDir() ? folders : files)->append(path);
    }
    folders->append(tree);
}

double cpuSeconds()
{
    timespec now = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

void say(double seconds)
{
    std::printf("%.9f\n", seconds);
    std::fflush(stdout);
}

int registerTree(bool ours, const QString& tree)
{
    // Only registering is measured for Qt: the paths are prepared.
    QStringList files;
    QStringList folders;
    listTree(tree, &files, &folders);
    QElapsedTimer clock;
    if (ours) {
        DirectoryWatcher watcher;
        clock.start();
        const bool complete = watcher.setPath(tree);
        say(double(clock.nsecsElapsed()) / 1e9);
        return complete ? 0 : 1;
    }
    QFileSystemWatcher watcher;
    clock.start();
    const QStringList refused = watcher.addPaths(files) + watcher.addPaths(folders);
    say(double(clock.nsecsElapsed()) / 1e9);
    return refused.isEmpty() ? 0 : 1;
}

int latency(bool ours, const QString& tree, int count)
{
    QEventLoop loop;
    DirectoryWatcher watcher;
    QFileSystemWatcher qt;
    if (ours) {
        QObject::connect(&watcher, &DirectoryWatcher::addedFiles, &loop, &QEventLoop::quit);
        if (!watcher.setPath(tree))
            return 1;
    } else {
        QStringList files;
        QStringList folders;
        listTree(tree, &files, &folders);
        QObject::connect(&qt, &QFileSystemWatcher::directoryChanged, &loop, &QEventLoop::quit);
        if (!(qt.addPaths(files) + qt.addPaths(folders)).isEmpty())
            return 1;
    }
    std::vector<double> seconds;
    for (int i = 0; i < count; ++i) {
        QFile file(tree + QStringLiteral("/new-%1-%2").arg(ours).arg(i));
        QElapsedTimer clock;
        clock.start();
        if (!file.open(QIODevice::WriteOnly))
            return 1;
        file.close();
        QTimer::singleShot(10000, &loop, [] { std::exit(1); });
        loop.exec();
        seconds.push_back(double(clock.nsecsElapsed()) / 1e9);
        // The effects of this file must not be counted for the next one.
        QEventLoop rest;
        QTimer::singleShot(60, &rest, &QEventLoop::quit);
        rest.exec();
        file.remove();
        QEventLoop restOfRemoval;
        QTimer::singleShot(60, &restOfRemoval, &QEventLoop::quit);
        restOfRemoval.exec();
    }
    std::nth_element(seconds.begin(), seconds.begin() + count / 2, seconds.end());
    say(seconds[size_t(count / 2)]);
    return 0;
}

int appear(bool ours, const QString& tree, int count)
{
    QSet<QString> reported;
    bool twice = false;
    QEventLoop loop;
    QTimer quiet;
    quiet.setSingleShot(true);
    quiet.setInterval(500);
    QObject::connect(&quiet, &QTimer::timeout, &loop, &QEventLoop::quit);
    const auto added = [&](const QString& file) {
        twice = twice || reported.contains(file);
        reported.insert(file);
        if (reported.size() >= count)
            quiet.start();
    };
    DirectoryWatcher watcher;
    bool counting = false;
    StepByStepWatcher steps([&](const QString& file) {
        if (counting)
            added(file);
    });
    if (ours) {
        if (!watcher.setPath(tree))
            return 1;
        QObject::connect(&watcher, &DirectoryWatcher::addedFiles, added);
    } else {
        steps.addDir(tree);
        counting = true;
    }
    // The effects of registering the tree must not be counted for the new files.
    QEventLoop start;
    QTimer::singleShot(500, &start, &QEventLoop::quit);
    start.exec();
    QTimer::singleShot(300000, &loop, [] { std::exit(1); });
    const double before = cpuSeconds();
    std::puts("ready");
    std::fflush(stdout);
    loop.exec();
    const double spent = cpuSeconds() - before;
    if (reported.size() != count || twice)
        return 1;
    say(spent);
    return 0;
}

int runOnce(const QStringList& arguments)
{
    const QString job = arguments.value(0);
    if (job == QStringLiteral("md5") || job == QStringLiteral("sha1")) {
        const QString digest = job == QStringLiteral("md5") ? FileUtils::md5(arguments.value(1))
                                                            : FileUtils::sha1(arguments.value(1));
        std::puts(qPrintable(digest));
        return 0;
    }
    const bool ours = arguments.value(1) == QStringLiteral("ours");
    const QString tree = arguments.value(2);
    const int count = arguments.value(3).toInt();
    if (job == QStringLiteral("register"))
        return registerTree(ours, tree);
    if (job == QStringLiteral("latency"))
        return latency(ours, tree, count);
    if (job == QStringLiteral("appear"))
        return appear(ours, tree, count);
    return 2;
}

void digestInMemory(benchmark::State& state)
{
    const QByteArray data(int(state.range(0)), 'x');
    for (auto _ : state)
        benchmark::DoNotOptimize(FileUtils::md5FromDatas(data));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(digestInMemory)->Arg(64)->Arg(1 << 20);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc > 2 && qstrcmp(argv[1], "--once") == 0)
        return runOnce(app.arguments().mid(2));
    return runBenchmarks(argc, argv);
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// What all benchmarks do: check ends one whose contenders do not do the same, and runBenchmarks()
// measures.

#ifndef BENCHMARKS_H
#define BENCHMARKS_H

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

/// Unless they \a agreed on \a what, nothing is measured: the program says so and fails.
inline void check(bool agreed, const char* what)
{
    if (agreed)
        return;
    std::fprintf(stderr, "The contenders do not agree on %s\n", what);
    std::exit(1);
}

/// The end of main(): measures what the arguments ask for. Returns what the program does.
inline int runBenchmarks(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

#endif // BENCHMARKS_H

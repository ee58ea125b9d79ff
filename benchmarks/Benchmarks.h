// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Shared by all benchmarks: check() ends a program whose contenders give different results, and
// runBenchmarks() measures.

#ifndef BENCHMARKS_H
#define BENCHMARKS_H

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

/// Ends the program with an error unless the contenders have \a agreed on \a what.
inline void check(bool agreed, const char* what)
{
    if (agreed)
        return;
    std::fprintf(stderr, "The contenders do not agree on %s\n", what);
    std::exit(1);
}

/// The end of main(): runs the benchmarks that the arguments select. Returns the exit code.
inline int runBenchmarks(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

#endif // BENCHMARKS_H

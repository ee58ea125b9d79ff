// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// A program that links to the library without using it: its start shows what the library costs
// every program. With an argument it prints the nanoseconds that the first price waits for the
// currencies.

#include "CurrencyUtils.h"

#include <chrono>
#include <cstdio>

int main(int argc, char**)
{
    if (argc > 1) {
        const auto start = std::chrono::steady_clock::now();
        CurrencyUtils::init();
        const std::chrono::nanoseconds taken = std::chrono::steady_clock::now() - start;
        std::printf("%lld\n", static_cast<long long>(taken.count()));
    }
    return 0;
}

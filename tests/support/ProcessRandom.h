// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The generator that StringUtils uses, for tests that seed it or draw from it as well.

#ifndef PROCESSRANDOM_H
#define PROCESSRANDOM_H

#include <QtGlobal>

#include <cstdlib>

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
inline void seedProcessRandom(unsigned int seed)
{
    std::srand(seed);
}

inline int processRandom()
{
    return std::rand();
}
#else
inline void seedProcessRandom(unsigned int seed)
{
    qsrand(seed);
}

inline int processRandom()
{
    return qrand();
}
#endif

#endif // PROCESSRANDOM_H

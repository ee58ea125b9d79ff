// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// KillMoments: how often and when a test kills a process.

#ifndef KILLMOMENTS_H
#define KILLMOMENTS_H

#include "SystemCalls.h"

#include <QByteArray>

#include <random>

/// Random moments that can be reproduced: the seed is ORVAUTILS_KILLS_SEED, or a different one in
/// each run. The result of a test must not depend on them.
class KillMoments
{
public:
    KillMoments()
        : mSeed(qEnvironmentVariableIsSet("ORVAUTILS_KILLS_SEED")
                    ? unsigned(qEnvironmentVariableIntValue("ORVAUTILS_KILLS_SEED"))
                    : std::random_device()())
        , mRandom(mSeed)
    { }

    unsigned seed() const { return mSeed; }

    /// The number of kills for each of the \a ways of a test: ORVAUTILS_KILLS divided among them,
    /// or ten for each.
    static int countInEach(int ways)
    {
        const int wanted = qEnvironmentVariableIntValue("ORVAUTILS_KILLS");
        return wanted > 0 ? (wanted + ways - 1) / ways : 10;
    }

    /// Raises the time limit of a test function to what many kills need; must be called first in
    /// main().
    static void allowTime()
    {
        if (!qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT"))
            qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray("7200000"));
    }

    /// Waits for a random time of less than \a microseconds.
    void wait(unsigned microseconds)
    {
        usleep(std::uniform_int_distribution<unsigned>(0, microseconds)(mRandom));
    }

private:
    const unsigned mSeed;
    std::mt19937 mRandom;
};

#endif // KILLMOMENTS_H

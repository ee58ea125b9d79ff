// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// KillMoments: how often, and when, a test kills a process.

#ifndef KILLMOMENTS_H
#define KILLMOMENTS_H

#include "SystemCalls.h"

#include <QByteArray>

#include <random>

/// Random moments that can be repeated: their seed is ORVAUTILS_KILLS_SEED, or another one in every
/// run. The result of a test must not depend on them.
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

    /// How often a process is killed in each of the \a ways of a test: ORVAUTILS_KILLS times in all
    /// of them together, or ten times in each.
    static int countInEach(int ways)
    {
        const int wanted = qEnvironmentVariableIntValue("ORVAUTILS_KILLS");
        return wanted > 0 ? (wanted + ways - 1) / ways : 10;
    }

    /// Lets a test function take as long as many kills take; to be called first in main().
    static void allowTime()
    {
        if (!qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT"))
            qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray("7200000"));
    }

    /// Waits for less than \a microseconds, as chance has it.
    void wait(unsigned microseconds)
    {
        usleep(std::uniform_int_distribution<unsigned>(0, microseconds)(mRandom));
    }

private:
    const unsigned mSeed;
    std::mt19937 mRandom;
};

#endif // KILLMOMENTS_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "MathUtils.h"

#include "logrecord_p.h"
#include "processstate_p.h"

#include <QTime>

#include <cstdlib>

using namespace OrvaUtilsPrivate;

namespace {

/// The generator itself belongs to the C runtime.
struct Generator
{
    bool isSeeded = false;
};

Generator& generator()
{
    return processState<Generator>();
}

int draw()
{
    if (!generator().isSeeded)
        MathUtils::srandom();
    return std::rand();
}

} // namespace

void MathUtils::srandom()
{
    std::srand(static_cast<unsigned int>(QTime::currentTime().msec()));
    generator().isSeeded = true;
}

int MathUtils::random(int min, int max)
{
    // In 64 bits, so that the whole range of int does not overflow.
    const qint64 span = qint64(max) - min + 1;
    if (span < 1)
        return min;
    return int(min + draw() % span);
}

bool MathUtils::randomTriggerOneIn(int n)
{
    if (n < 1)
        ORVAUTILS_LOG_CRITICAL() << "bad usage!!";
    // Nothing can be divided by zero.
    return n != 0 && draw() % n == 0;
}

bool MathUtils::counterTriggerOneIn(int n, int& counter)
{
    if (qint64(counter) + 1 >= n) {
        counter = 0;
        return true;
    }
    ++counter;
    return false;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// MathUtils: random numbers and triggers that fire once in n.

#ifndef ORVAUTILS_MATHUTILS_H
#define ORVAUTILS_MATHUTILS_H

#include "orvautils_export.h"

/// Draws from the C runtime's pseudo-random generator (`rand`), which is seeded once for the whole
/// process, at the first draw made here or by srandom(). The draws are meant for visual variety,
/// not for secrets. The generator and its seeded flag are shared by all threads without a lock.
class ORVAUTILS_EXPORT MathUtils
{
public:
    /// Seeds the generator with the millisecond part, 0 to 999, of the current time and marks it as
    /// seeded. There are thus only a thousand different sequences.
    static void srandom();

    /// A number from \a min to \a max, both included; srandom() is called first if the generator
    /// has not been seeded yet. With \a max below \a min there is nothing to draw from, and \a min
    /// is returned.
    ///
    /// \code
    /// int dots = MathUtils::random(1, 6);
    /// \endcode
    static int random(int min, int max);

    /// True once in \a n draws on average; always with \a n equal to 1. srandom() is called first
    /// if the generator has not been seeded yet.
    ///
    /// With \a n below 1 the record "bad usage!!" is logged (LogType 4). A negative \a n then
    /// counts without its sign; with 0 the result is false.
    static bool randomTriggerOneIn(int n);

    /// Counts calls in \a counter and returns true for every \a n-th one, which resets \a counter
    /// to 0. Starting at 0 with \a n equal to 3 the results are false, false, true, false, false,
    /// true. With \a n of 1 or less every result is true.
    static bool counterTriggerOneIn(int n, int& counter);
};

#endif // ORVAUTILS_MATHUTILS_H

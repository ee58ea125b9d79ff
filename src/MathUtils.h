// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// MathUtils: random draws and triggers that fire once in n.

#ifndef ORVAUTILS_MATHUTILS_H
#define ORVAUTILS_MATHUTILS_H

#include "orvautils_export.h"

/// Draws from the C runtime's pseudo-random generator (`rand`), which is seeded once for the whole
/// process, at the first draw made here or by srandom(). The draws are for variety on the screen,
/// not for secrets. The generator and its seeded flag are shared by all threads without a lock.
class ORVAUTILS_EXPORT MathUtils
{
public:
    /// Seeds the generator with the millisecond part, 0 to 999, of the current time and marks it as
    /// seeded. There are thus a thousand different sequences, no more.
    static void srandom();

    /// A number from \a min to \a max, both included; srandom() runs first where nothing has seeded
    /// the generator yet. With \a max below \a min there is nothing to draw from, and \a min is
    /// returned.
    ///
    /// \code
    /// int dots = MathUtils::random(1, 6);
    /// \endcode
    static int random(int min, int max);

    /// True once in \a n draws on average; always with \a n equal to 1. srandom() runs first where
    /// nothing has seeded the generator yet. With \a n below 1 the record "bad usage!!" is logged
    /// (LogType 4) and the answer is false.
    static bool randomTriggerOneIn(int n);

    /// Counts in \a counter and answers true at every \a n-th call, when it sets \a counter back to
    /// 0. Starting at 0 with \a n equal to 3 the answers are false, false, true, false, false,
    /// true. With \a n of 1 or less every answer is true.
    static bool counterTriggerOneIn(int n, int& counter);
};

#endif // ORVAUTILS_MATHUTILS_H

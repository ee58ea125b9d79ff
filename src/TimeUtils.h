// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TimeUtils: durations in words.

#ifndef ORVAUTILS_TIMEUTILS_H
#define ORVAUTILS_TIMEUTILS_H

#include "orvautils_export.h"

#include <QString>

/// Durations in words.
///
/// All functions are static, keep no state and may be called from any thread. Nothing is logged.
class ORVAUTILS_EXPORT TimeUtils
{
public:
    TimeUtils() = delete;

    /// The smallest unit that msecToString() shows.
    enum TimePrecision {
        Year = 1, ///< nothing is shown: no unit is as long as a year
        Month = 2, ///< nothing is shown
        Week = 3, ///< nothing is shown
        Day = 4, ///< "1j"
        Hour = 5, ///< "1j 1h"
        Minute = 6, ///< "1j 1h 1mn"
        Second = 7, ///< "1j 1h 1mn 1sec"
        Millisecond = 8 ///< the same as Second
    };

    /// The duration \a ms, in milliseconds, as days, hours, minutes and seconds down to \a
    /// precision, separated by spaces. Units whose number is zero are left out.
    ///
    /// \code
    /// TimeUtils::msecToString(90061500, TimeUtils::Second); // "1j 1h 1mn 1sec"
    /// TimeUtils::msecToString(90061500, TimeUtils::Hour); // "1j 1h"
    /// TimeUtils::msecToString(1500, TimeUtils::Second); // "1sec 5ms"
    /// \endcode
    ///
    /// A duration of less than a minute also shows its fraction of a second. Deliberate: the number
    /// before "ms" is tenths of a second (last example).
    ///
    /// A precision coarser than Day and a negative duration give an empty string. The units do not
    /// depend on the language.
    static QString msecToString(qint64 ms, TimePrecision precision);
};

#endif // ORVAUTILS_TIMEUTILS_H

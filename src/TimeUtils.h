// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// TimeUtils: a duration in words, as the applications show it to their users.

#ifndef ORVAUTILS_TIMEUTILS_H
#define ORVAUTILS_TIMEUTILS_H

#include "orvautils_export.h"

#include <QString>

/// A duration in words. Nothing is kept and nothing is logged. Thread: any.
class ORVAUTILS_EXPORT TimeUtils
{
public:
    TimeUtils() = delete;

    /// The smallest unit that is shown.
    enum TimePrecision {
        Year = 1, ///< nothing is shown: there is no unit of a year
        Month = 2, ///< nothing is shown, likewise
        Week = 3, ///< nothing is shown, likewise
        Day = 4, ///< "1j"
        Hour = 5, ///< "1j 1h"
        Minute = 6, ///< "1j 1h 1mn"
        Second = 7, ///< "1j 1h 1mn 1sec"
        Millisecond = 8 ///< the same as Second
    };

    /// The duration \a ms, in milliseconds, as days, hours, minutes and seconds down to \a
    /// precision, with one blank between the pieces and pieces of zero left out.
    ///
    /// \code
    /// TimeUtils::msecToString(90061500, TimeUtils::Second); // "1j 1h 1mn 1sec"
    /// TimeUtils::msecToString(90061500, TimeUtils::Hour); // "1j 1h"
    /// TimeUtils::msecToString(1500, TimeUtils::Second); // "1sec 5ms"
    /// \endcode
    ///
    /// A duration of less than a minute also shows its fraction of a second. Deliberate: the figure
    /// in front of "ms" is the tenths of a second (last example).
    ///
    /// A precision coarser than Day and a negative duration give the empty text. The units are the
    /// same in all languages.
    static QString msecToString(qint64 ms, TimePrecision precision);
};

#endif // ORVAUTILS_TIMEUTILS_H

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DateUtils: dates in words, relative to today.

#ifndef ORVAUTILS_DATEUTILS_H
#define ORVAUTILS_DATEUTILS_H

#include "orvautils_export.h"

#include <QString>
#include <Qt>

class QDateTime;

/// Dates in words, relative to today.
///
/// All functions are static, keep no state and may be called from any thread. Nothing is logged.
class ORVAUTILS_EXPORT DateUtils
{
public:
    DateUtils() = delete;

    /// \a dt as "Today at 18:05", "Yesterday at 18:05" or "Day before yesterday at 18:05", and in
    /// \a format if it is older than that.
    ///
    /// \code
    /// DateUtils::dateTimeToStringAccordingNow(QDateTime::currentDateTime().addDays(-1),
    ///                                         Qt::ISODate); // "Yesterday at 18:05"
    /// \endcode
    ///
    /// Days are calendar days, counted by QDateTime::daysTo() up to the current date-time: at one
    /// minute past midnight, two minutes ago is yesterday. The time of day is shown in the time
    /// zone of \a dt.
    ///
    /// Deliberate: a date-time in the future is "Today", whatever its day. So is an invalid one,
    /// with nothing after "at".
    ///
    /// The three texts are translated in the context "DateUtils".
    static QString dateTimeToStringAccordingNow(const QDateTime& dt, Qt::DateFormat format);
};

#endif // ORVAUTILS_DATEUTILS_H

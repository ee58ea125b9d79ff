// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// DateUtils: a date as people say it, seen from today.

#ifndef ORVAUTILS_DATEUTILS_H
#define ORVAUTILS_DATEUTILS_H

#include "orvautils_export.h"

#include <QString>
#include <Qt>

class QDateTime;

/// A date in words, relative to today. Nothing is kept and nothing is logged. Thread: any.
class ORVAUTILS_EXPORT DateUtils
{
public:
    DateUtils() = delete;

    /// \a dt as "Today at 18:05", "Yesterday at 18:05" or "Day before yesterday at 18:05", and in
    /// \a format where it is older than that.
    ///
    /// \code
    /// DateUtils::dateTimeToStringAccordingNow(QDateTime::currentDateTime().addDays(-1),
    ///                                         Qt::ISODate); // "Yesterday at 18:05"
    /// \endcode
    ///
    /// Days are calendar days, counted by QDateTime::daysTo() to the current date-time: one minute
    /// past midnight, two minutes ago is yesterday. The time of day is that of \a dt as it stands,
    /// in its own time zone.
    ///
    /// Deliberate: a moment in the future is "Today", whatever its day. So is an invalid date-time,
    /// with no time behind "at".
    ///
    /// The three texts are translated in the context "DateUtils" on the calling thread.
    static QString dateTimeToStringAccordingNow(const QDateTime& dt, Qt::DateFormat format);
};

#endif // ORVAUTILS_DATEUTILS_H

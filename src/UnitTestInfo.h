// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// UnitTestInfo: one timed step of an operation.

#ifndef ORVAUTILS_UNITTESTINFO_H
#define ORVAUTILS_UNITTESTINFO_H

#include "orvautils_export.h"

#include <QString>

class QElapsedTimer;

/// A label and the milliseconds that the step took. A plain value.
class ORVAUTILS_EXPORT UnitTestInfo
{
public:
    /// The step \a stepLabel, which ends now: its milliseconds are what \a timer, which must be
    /// running, has counted since it was started. The timer is read and restarted at once, so that
    /// no time is lost between one step and the next.
    UnitTestInfo(const QString& stepLabel, QElapsedTimer& timer);

    /// The label, one space, and the milliseconds as StringUtils::formatDurationFromMSec() writes
    /// them, which is nothing for 0 and ends with a space for more: "scan 1s 500ms ".
    QString toString() const;

    QString label; ///< what the step did
    qint64 milliseconds; ///< time since the step before
};

#endif // ORVAUTILS_UNITTESTINFO_H

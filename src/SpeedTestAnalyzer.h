// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// SpeedTestAnalyzer: times the steps of an operation and prints a report.

#ifndef ORVAUTILS_SPEEDTESTANALYZER_H
#define ORVAUTILS_SPEEDTESTANALYZER_H

#include "orvautils_export.h"

#include <QString>

#include <memory>

namespace OrvaUtilsPrivate {
class SpeedTestAnalyzerPrivate;
} // namespace OrvaUtilsPrivate

/// A stopwatch with laps. It starts when it is constructed; each step lasts from the end of the
/// step before.
///
/// \code
/// SpeedTestAnalyzer speed(QStringLiteral("Import"));
/// scan();
/// speed << QStringLiteral("scan");
/// copy();
/// speed << QStringLiteral("copy");
/// qDebug().noquote() << speed.toString();
/// \endcode
///
/// While disabled, it records nothing and reports nothing, so that it may stay in the code. It owns
/// its steps. Not copyable; to be used by one thread.
class ORVAUTILS_EXPORT SpeedTestAnalyzer
{
public:
    /// Starts the total timer and the step timer; \a name begins the report. The analyzer is
    /// enabled.
    explicit SpeedTestAnalyzer(const QString& name);
    /// Deletes its steps.
    ~SpeedTestAnalyzer();

    /// Switches recording and reporting on or off. The timers keep running in either case, and
    /// steps that were already recorded are kept.
    void setEnabled(bool enabled);

    /// Ends a step: records \a label with the milliseconds since the step before and restarts the
    /// step timer. Does nothing when disabled, the timer included.
    void append(const QString& label);

    /// The same as append().
    SpeedTestAnalyzer& operator<<(const QString& label);

    /// Milliseconds since construction, or -1 when disabled.
    qint64 elapsed() const;

    /// elapsed() as StringUtils::formatDurationFromMSec() writes it ("1s 500ms "), or an empty
    /// string when disabled.
    QString speedTotalToString() const;

    /// The report: the name, " Speed total =", the total and a line break, then the text of each
    /// step (see UnitTestInfo::toString()) followed by a line break. Empty when disabled.
    QString toString() const;

private:
    Q_DISABLE_COPY(SpeedTestAnalyzer)

    const std::unique_ptr<OrvaUtilsPrivate::SpeedTestAnalyzerPrivate> d;
};

#endif // ORVAUTILS_SPEEDTESTANALYZER_H

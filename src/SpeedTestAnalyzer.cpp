// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "SpeedTestAnalyzer.h"

#include "StringUtils.h"
#include "UnitTestInfo.h"

SpeedTestAnalyzer::SpeedTestAnalyzer(const QString& name)
    : mName(name)
{
    mTotalTimer.start();
    mStepTimer.start();
}

SpeedTestAnalyzer::~SpeedTestAnalyzer()
{
    qDeleteAll(mSteps);
}

void SpeedTestAnalyzer::setEnabled(bool enabled)
{
    mEnabled = enabled;
}

void SpeedTestAnalyzer::append(const QString& label)
{
    if (mEnabled)
        mSteps.append(new UnitTestInfo(label, mStepTimer));
}

SpeedTestAnalyzer& SpeedTestAnalyzer::operator<<(const QString& label)
{
    append(label);
    return *this;
}

qint64 SpeedTestAnalyzer::elapsed() const
{
    return mEnabled ? mTotalTimer.elapsed() : -1;
}

QString SpeedTestAnalyzer::speedTotalToString() const
{
    return mEnabled ? StringUtils::formatDurationFromMSec(quint64(elapsed())) : QString();
}

QString SpeedTestAnalyzer::toString() const
{
    if (!mEnabled)
        return QString();
    QString report =
        mName + QStringLiteral(" Speed total =") + speedTotalToString() + QLatin1Char('\n');
    for (const UnitTestInfo* step : mSteps)
        report += step->toString() + QLatin1Char('\n');
    return report;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "SpeedTestAnalyzer.h"

#include "StringUtils.h"
#include "UnitTestInfo.h"
#include "asconst_p.h"

#include <QElapsedTimer>
#include <QList>

using namespace OrvaUtilsPrivate;

class OrvaUtilsPrivate::SpeedTestAnalyzerPrivate
{
public:
    explicit SpeedTestAnalyzerPrivate(const QString& analyzerName)
        : name(analyzerName)
    {
        totalTimer.start();
        stepTimer.start();
    }

    QElapsedTimer totalTimer;
    QElapsedTimer stepTimer;
    QList<UnitTestInfo> steps;
    QString name;
    bool enabled = true;
};

SpeedTestAnalyzer::SpeedTestAnalyzer(const QString& name)
    : d(new SpeedTestAnalyzerPrivate(name))
{ }

SpeedTestAnalyzer::~SpeedTestAnalyzer() = default;

void SpeedTestAnalyzer::setEnabled(bool enabled)
{
    d->enabled = enabled;
}

void SpeedTestAnalyzer::append(const QString& label)
{
    if (d->enabled)
        d->steps.append(UnitTestInfo(label, d->stepTimer));
}

SpeedTestAnalyzer& SpeedTestAnalyzer::operator<<(const QString& label)
{
    append(label);
    return *this;
}

qint64 SpeedTestAnalyzer::elapsed() const
{
    return d->enabled ? d->totalTimer.elapsed() : -1;
}

QString SpeedTestAnalyzer::speedTotalToString() const
{
    return d->enabled ? StringUtils::formatDurationFromMSec(quint64(elapsed())) : QString();
}

QString SpeedTestAnalyzer::toString() const
{
    if (!d->enabled)
        return QString();
    QString report =
        d->name + QStringLiteral(" Speed total =") + speedTotalToString() + QLatin1Char('\n');
    for (const UnitTestInfo& step : asConst(d->steps))
        report += step.toString() + QLatin1Char('\n');
    return report;
}

// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "UnitTestInfo.h"

#include "StringUtils.h"

#include <QElapsedTimer>

UnitTestInfo::UnitTestInfo(const QString& stepLabel, QElapsedTimer& timer)
    : label(stepLabel)
    , milliseconds(timer.restart())
{ }

QString UnitTestInfo::toString() const
{
    return label + QLatin1Char(' ') + StringUtils::formatDurationFromMSec(quint64(milliseconds));
}

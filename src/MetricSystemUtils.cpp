// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "MetricSystemUtils.h"

MetricSystemUtils::MetricSystemUtils(QObject* parent)
    : QObject(parent)
{ }

MetricSystemUtils::~MetricSystemUtils() = default;

QString MetricSystemUtils::symbol(TypeGrandeur quantity, SystemMetric system, Display display)
{
    if (system != Metric || display != ShortSymbol)
        return QString();
    switch (quantity) {
    case Length:
        return QStringLiteral("m");
    case Weight:
        return QStringLiteral("Kg");
    case Distance:
        return QStringLiteral("Km");
    }
    return QString();
}

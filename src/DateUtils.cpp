// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "DateUtils.h"

#include <QCoreApplication>
#include <QDateTime>

QString DateUtils::dateTimeToStringAccordingNow(const QDateTime& dt, Qt::DateFormat format)
{
    const qint64 days = dt.daysTo(QDateTime::currentDateTime());
    if (days >= 3)
        return dt.toString(format);

    const QString time = dt.toString(QStringLiteral("HH:mm"));
    if (days == 2)
        return QCoreApplication::translate("DateUtils", "Day before yesterday at %1").arg(time);
    if (days == 1)
        return QCoreApplication::translate("DateUtils", "Yesterday at %1").arg(time);
    return QCoreApplication::translate("DateUtils", "Today at %1").arg(time);
}

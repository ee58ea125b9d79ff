// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TimeUtils.h"

namespace {

void appendPiece(QString& text, qint64 number, const char* unit)
{
    if (number <= 0)
        return;
    if (!text.isEmpty())
        text += QLatin1Char(' ');
    text += QString::number(number);
    text += QLatin1String(unit);
}

} // namespace

QString TimeUtils::msecToString(qint64 ms, TimePrecision precision)
{
    const qint64 days = ms / 86400000;
    const qint64 hours = ms / 3600000 % 24;
    const qint64 minutes = ms / 60000 % 60;
    const qint64 seconds = ms / 1000 % 60;
    const qint64 tenths = ms % 1000 / 100;

    QString text;
    if (precision >= Day)
        appendPiece(text, days, "j");
    if (precision >= Hour)
        appendPiece(text, hours, "h");
    if (precision >= Minute)
        appendPiece(text, minutes, "mn");
    if (precision >= Second) {
        appendPiece(text, seconds, "sec");
        if (days == 0 && hours == 0 && minutes == 0)
            appendPiece(text, tenths, "ms");
    }
    return text;
}

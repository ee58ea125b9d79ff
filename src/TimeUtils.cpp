// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "TimeUtils.h"

#include "durationtext_p.h"

using namespace OrvaUtilsPrivate;

QString TimeUtils::msecToString(qint64 ms, TimePrecision precision)
{
    const qint64 days = ms / 86400000;
    const qint64 hours = ms / 3600000 % 24;
    const qint64 minutes = ms / 60000 % 60;
    const qint64 seconds = ms / 1000 % 60;
    const qint64 tenths = ms % 1000 / 100;

    DurationText text;
    if (precision >= Day && days > 0)
        text.add(quint64(days), "j ");
    if (precision >= Hour && hours > 0)
        text.add(quint64(hours), "h ");
    if (precision >= Minute && minutes > 0)
        text.add(quint64(minutes), "mn ");
    if (precision >= Second && seconds > 0)
        text.add(quint64(seconds), "sec ");
    if (precision >= Second && tenths > 0 && days == 0 && hours == 0 && minutes == 0)
        text.add(quint64(tenths), "ms ");

    QString pieces = text.toString();
    pieces.chop(1); // the blank after the last piece
    return pieces;
}

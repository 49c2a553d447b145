// SPDX-License-Identifier: MIT
#include "tracedate.h"

QDateTime traceDate(qint64 time)
{
    constexpr qint64 microseconds = 1000; // of a millisecond
    constexpr int lastYear = 9999;
    const QDateTime date = QDateTime::fromMSecsSinceEpoch(time / microseconds);
    if (time <= 0 || date.date().year() > lastYear)
        return QDateTime();
    return date.toOffsetFromUtc(date.offsetFromUtc());
}

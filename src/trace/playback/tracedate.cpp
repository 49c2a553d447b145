// SPDX-License-Identifier: MIT
#include "tracedate.h"

#include <system/amounts.h>

QDateTime traceDate(qint64 time)
{
    constexpr int lastYear = 9999;
    const QDateTime date = QDateTime::fromMSecsSinceEpoch(time / Microseconds::ofMillisecond);
    if (time <= 0 || date.date().year() > lastYear)
        return QDateTime();
    return date.toOffsetFromUtc(date.offsetFromUtc());
}

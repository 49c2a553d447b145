// SPDX-License-Identifier: MIT
#include "recordedtime.h"

#include <trace/files/timeofday.h>

qint64 RecordedTime::timeOf(const QCanBusFrame &frame, qint64 now, std::optional<qint64> busTime)
{
    const qint64 noted = FrameClock::stampOf(frame);
    const qint64 stamp = noted == 0 ? busTime.value_or(0) : noted;
    return TimeOfDay::isOne(stamp) ? stamp : m_begin + m_clock.timeOf(stamp, now);
}

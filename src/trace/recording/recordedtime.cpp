// SPDX-License-Identifier: MIT
#include "recordedtime.h"

#include <system/amounts.h>
#include <trace/files/timeofday.h>

#include <QCanBusFrame>

namespace {

/*! 0 when there is none. */
qint64 stampOf(const QCanBusFrame &frame)
{
    const QCanBusFrame::TimeStamp stamp = frame.timeStamp();
    const bool isPlausible = stamp.seconds() >= 0 && stamp.seconds() < (Q_INT64_C(1) << 40);
    return isPlausible ? stamp.seconds() * Microseconds::ofSecond + stamp.microSeconds() : 0;
}

} // namespace

qint64 RecordedTime::timeOf(const QCanBusFrame &frame, qint64 now, std::optional<qint64> busTime)
{
    const qint64 noted = stampOf(frame);
    const qint64 stamp = noted == 0 ? busTime.value_or(0) : noted;
    return TimeOfDay::isOne(stamp) ? stamp : m_begin + m_clock.timeOf(stamp, now);
}

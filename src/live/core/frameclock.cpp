// SPDX-License-Identifier: MIT
#include "frameclock.h"

#include <system/amounts.h>

#include <QCanBusFrame>

#include <algorithm>

qint64 FrameClock::stampOf(const QCanBusFrame &frame)
{
    const QCanBusFrame::TimeStamp stamp = frame.timeStamp();
    const bool isPlausible = stamp.seconds() >= 0 && stamp.seconds() < (Q_INT64_C(1) << 40);
    return isPlausible ? stamp.seconds() * Microseconds::ofSecond + stamp.microSeconds() : 0;
}

qint64 FrameClock::timeOf(qint64 stamp, qint64 now)
{
    // Of stamps that no clock has, only differences would overflow.
    constexpr qint64 latestStamp = Q_INT64_C(1) << 62;
    if (stamp <= 0 || stamp >= latestStamp)
        return m_last = timeAt(now);
    const qint64 offset = now - stamp;
    const bool hasJumped = m_hasOffset && std::abs(offset - m_offset) > largestDrift;
    if (!m_hasOffset || hasJumped)
        startAt(offset, now);
    else
        follow(stamp, now);
    m_jumps += hasJumped ? 1 : 0;
    m_stamp = stamp;
    m_last = std::max(m_last, stamp + m_offset);
    return m_last;
}

void FrameClock::startAt(qint64 offset, qint64 now)
{
    m_hasOffset = true;
    m_offset = offset;
    m_smallest = offset;
    m_smallestBefore = offset;
    m_windowBegin = now;
}

void FrameClock::follow(qint64 stamp, qint64 now)
{
    const qint64 offset = now - stamp;
    if (now - m_windowBegin >= window) {
        m_smallestBefore = m_smallest;
        m_smallest = offset;
        m_windowBegin = now;
    }
    m_smallest = std::min(m_smallest, offset);
    const qint64 smallest = std::min(m_smallest, m_smallestBefore);
    const bool isBehind = smallest > m_offset + tolerance && stamp != m_stamp; // equal stamps are equal times
    if (smallest < m_offset || isBehind)
        m_offset = smallest;
}

qint64 FrameClock::timeAt(qint64 now) const
{
    return std::max(m_last, now);
}

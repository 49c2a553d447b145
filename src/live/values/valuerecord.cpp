// SPDX-License-Identifier: MIT
#include "valuerecord.h"

#include <algorithm>

namespace {

constexpr int periodsUntilLate = 3;
constexpr int smoothing = 8;
constexpr qint64 leastSilence = 200000; // us

} // namespace

void ValueRecord::add(qint64 time, double number)
{
    const qint64 gap = std::max<qint64>(0, time - m_time);
    if (m_count == 1)
        m_heard = gap;
    else if (m_count > 1)
        m_heard += (gap - m_heard) / smoothing;
    m_smallest = m_count == 0 ? number : std::min(m_smallest, number);
    m_largest = m_count == 0 ? number : std::max(m_largest, number);
    ++m_count;
    m_sum += number;
    m_last = number;
    m_time = time;
}

bool ValueRecord::isLate(qint64 now) const
{
    const qint64 period = m_told > 0 ? m_told : m_heard;
    return m_count > 0 && period > 0 && now - m_time > std::max(leastSilence, periodsUntilLate * period);
}

// SPDX-License-Identifier: MIT
#include "heartbeatrecord.h"

#include <cstdlib>
#include <limits>

namespace {

constexpr quint64 intervalsToKnow = 3;   // until a median tells something
constexpr quint64 intervalsToRenew = 16; // the median is made anew after so many
constexpr int periodsUntilLost = 3;
constexpr qint64 leastSilence = 2'000'000; // us
constexpr double most = 0.95;

constexpr bool isLate(qint64 interval, qint64 period)
{
    return period > 0 && 2 * interval > 3 * period;
}

} // namespace

void HeartbeatRecord::beat(qint64 time, CanOpen::NmtState state)
{
    // The time from a boot-up message to the first heartbeat is not the period.
    const bool follows = m_last && m_state != CanOpen::NmtState::BootUp && state != CanOpen::NmtState::BootUp;
    if (follows && time >= *m_last)
        addInterval(time - *m_last);
    m_last = time;
    m_state = state;
    ++m_count;
}

void HeartbeatRecord::addInterval(qint64 interval)
{
    const auto sample = static_cast<qint32>(std::min<qint64>(interval, std::numeric_limits<qint32>::max()));
    m_intervals.add(sample);
    if (m_intervals.count() == intervalsToKnow || m_intervals.count() % intervalsToRenew == 0)
        m_usual = m_intervals.quantile(0.5).value_or(0);
    if (m_intervals.count() == intervalsToKnow) { // those before as well
        for (int i = 0; i + 1 < m_intervals.size(); ++i) {
            m_missed += missedIn(m_intervals.at(i), expected());
            m_late += isLate(m_intervals.at(i), expected()) ? 1 : 0;
        }
    }
    if (m_intervals.count() < intervalsToKnow)
        return;
    m_missed += missedIn(sample, expected());
    m_late += isLate(sample, expected()) ? 1 : 0;
}

/*! What the node tells has precedence over what is heard; 0: neither is known. */
qint64 HeartbeatRecord::expected() const
{
    return m_configured.value_or(0) > 0 ? *m_configured : m_usual;
}

quint64 HeartbeatRecord::missedIn(qint64 interval, qint64 period)
{
    return isLate(interval, period) ? static_cast<quint64>((2 * interval + period) / (2 * period) - 1) : 0;
}

qint64 HeartbeatRecord::silence(qint64 now) const
{
    const bool isExpected = !m_intervals.isEmpty() || m_configured.value_or(0) > 0;
    return m_last && isExpected ? std::max<qint64>(0, now - *m_last) : 0;
}

std::optional<qint64> HeartbeatRecord::period() const
{
    const std::optional<qint32> median = m_intervals.quantile(0.5);
    return median ? std::optional<qint64>(*median) : std::nullopt;
}

std::optional<qint64> HeartbeatRecord::jitter() const
{
    const qint64 usual = period().value_or(0);
    if (m_intervals.isEmpty())
        return std::nullopt;
    SampleRing<kept> distances;
    for (int i = 0; i < m_intervals.size(); ++i)
        distances.add(static_cast<qint32>(std::abs(m_intervals.at(i) - usual)));
    return distances.quantile(most).value_or(0);
}

std::optional<qint64> HeartbeatRecord::longestGap(qint64 now) const
{
    const std::optional<qint32> longest = m_intervals.largest();
    return longest ? std::optional(std::max<qint64>(*longest, silence(now))) : std::nullopt;
}

quint64 HeartbeatRecord::late(qint64 now) const
{
    return m_late + (isLate(silence(now), expected()) ? 1 : 0);
}

quint64 HeartbeatRecord::missed(qint64 now) const
{
    return m_missed + missedIn(silence(now), expected());
}

bool HeartbeatRecord::isLost(qint64 now) const
{
    const qint64 usual = std::max(expected(), m_intervals.isEmpty() ? 0 : period().value_or(0));
    return usual > 0 && silence(now) > std::max(leastSilence, periodsUntilLost * usual);
}

// SPDX-License-Identifier: MIT
#include "trafficmeter.h"

#include <algorithm>
#include <numeric>

namespace {

void addTo(TrafficMeter::Counts *sum, const TrafficMeter::Counts &counts)
{
    sum->bits += counts.bits;
    for (std::size_t kind = 0; kind < counts.frames.size(); ++kind)
        sum->frames[kind] += counts.frames[kind];
}

} // namespace

quint64 TrafficMeter::Counts::allFrames() const
{
    return std::accumulate(frames.begin(), frames.end(), quint64(0))
           - frames[static_cast<std::size_t>(FrameKind::Error)];
}

void TrafficMeter::start(qint64 time)
{
    *this = TrafficMeter();
    m_start = time;
    m_slotEnd = time + slotLength;
}

void TrafficMeter::advance(qint64 time)
{
    if (time < m_slotEnd)
        return;
    const qint64 passed = (time - m_slotEnd) / slotLength + 1;
    // After so many slots all that is kept of the last second is nothing.
    const qint64 steps = std::min<qint64>(passed, slotCount + 1);
    for (qint64 i = 0; i < steps; ++i)
        closeSlot();
    m_closed += static_cast<quint64>(passed - steps);
    m_slotEnd += passed * slotLength;
}

void TrafficMeter::closeSlot()
{
    Counts &oldest = m_ring[m_closed % slotCount];
    m_bitsOfRing += m_now.bits - oldest.bits;
    oldest = m_now;
    addTo(&m_before, m_now);
    m_now = Counts();
    ++m_closed;
    m_mostBits = std::max(m_mostBits, m_bitsOfRing);
}

TrafficMeter::Counts TrafficMeter::total() const
{
    Counts sum = m_before;
    addTo(&sum, m_now);
    return sum;
}

std::optional<TrafficMeter::Counts> TrafficMeter::lastSecond() const
{
    if (m_closed < slotCount)
        return std::nullopt;
    Counts sum;
    for (const Counts &slot : m_ring)
        addTo(&sum, slot);
    return sum;
}

std::optional<quint64> TrafficMeter::mostBits() const
{
    return m_closed < slotCount ? std::nullopt : std::optional(m_mostBits);
}

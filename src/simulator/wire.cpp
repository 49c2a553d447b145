// SPDX-License-Identifier: MIT
#include "wire.h"

#include <canopen/framebits.h>

#include <algorithm>

namespace Simulator {

namespace {

constexpr int knownBitRates[] = {10000, 20000, 50000, 100000, 125000, 250000, 500000, 800000, 1000000};

/*! What arbitration compares: a standard frame wins over an extended one with the same leading eleven bits.
 */
quint64 priority(const QCanBusFrame &frame)
{
    constexpr int extensionBits = 18;
    const quint64 identifier = frame.frameId();
    return frame.hasExtendedFrameFormat() ? identifier << 1 | 1 : identifier << (extensionBits + 1);
}

} // namespace

bool isKnownBitRate(int bitRate)
{
    return std::find(std::begin(knownBitRates), std::end(knownBitRates), bitRate) != std::end(knownBitRates);
}

Wire::Wire(int bitRate)
    : m_bitRate(bitRate)
{
}

Wire::Time Wire::frameTime(const QCanBusFrame &frame) const
{
    constexpr qint64 second = 1000000000; // ns
    return Time(CanOpen::frameBits(frame) * second / m_bitRate);
}

void Wire::queue(const QCanBusFrame &frame, quint64 station, Time readyAt)
{
    m_stations[station].push_back(Waiting{frame, readyAt, m_queued++});
}

std::optional<Wire::Time> Wire::nextEnd()
{
    if (!m_current)
        arbitrate();
    return m_current ? std::optional<Time>(m_current->end) : std::nullopt;
}

void Wire::arbitrate()
{
    if (m_stations.empty())
        return;
    Time earliest = Time::max();
    for (const auto &station : m_stations)
        earliest = std::min(earliest, station.second.front().readyAt);
    const Time start = std::max(earliest, m_freeAt);

    auto winner = m_stations.end();
    for (auto station = m_stations.begin(); station != m_stations.end(); ++station) {
        const Waiting &candidate = station->second.front();
        if (candidate.readyAt > start)
            continue;
        if (winner == m_stations.end()) {
            winner = station;
            continue;
        }
        const Waiting &best = winner->second.front();
        const quint64 candidatePriority = priority(candidate.frame);
        const quint64 bestPriority = priority(best.frame);
        if (candidatePriority < bestPriority
            || (candidatePriority == bestPriority && candidate.number < best.number))
            winner = station;
    }

    const QCanBusFrame frame = winner->second.front().frame;
    m_current = Transmission{frame, winner->first, start + frameTime(frame)};
    winner->second.pop_front();
    if (winner->second.empty())
        m_stations.erase(winner);
}

std::optional<Wire::Transmission> Wire::take(Time now)
{
    const std::optional<Time> end = nextEnd();
    if (!end || *end > now)
        return std::nullopt;
    std::optional<Transmission> through;
    through.swap(m_current);
    m_freeAt = through->end;
    return through;
}

int Wire::waiting(quint64 station) const
{
    const auto found = m_stations.find(station);
    const int queued = found != m_stations.end() ? static_cast<int>(found->second.size()) : 0;
    return queued + (m_current && m_current->station == station ? 1 : 0);
}

void Wire::clear()
{
    m_stations.clear();
    m_current.reset();
}

} // namespace Simulator

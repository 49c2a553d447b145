// SPDX-License-Identifier: MIT
#include "restartwatch.h"

#include <algorithm>

RestartWatch::RestartWatch(const Clock &clock)
    : m_clock(clock)
{
}

void RestartWatch::noteBootUp(quint8 nodeId)
{
    QVector<std::chrono::milliseconds> &times = m_bootUps[nodeId];
    times.append(m_clock());
    if (times.size() > loopLength)
        times.removeFirst();
    m_starting.insert(nodeId);
}

void RestartWatch::clear()
{
    m_bootUps.clear();
    m_starting.clear();
}

bool RestartWatch::keepsRestarting(quint8 nodeId) const
{
    const QVector<std::chrono::milliseconds> times = m_bootUps.value(nodeId);
    const std::chrono::milliseconds now = m_clock();
    const auto recent = std::count_if(times.cbegin(), times.cend(),
                                      [now](std::chrono::milliseconds time) { return now - time <= memory; });
    return recent >= (m_starting.contains(nodeId) ? shortLoopLength : loopLength);
}

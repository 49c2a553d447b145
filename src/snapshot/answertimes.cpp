// SPDX-License-Identifier: MIT
#include "answertimes.h"

#include <algorithm>
#include <limits>

void AnswerTimes::add(qint64 time)
{
    m_counts.resize(longestCounted + 1);
    ++m_counts[static_cast<int>(std::clamp<qint64>(time, 0, longestCounted))];
    ++m_total;
    m_longest = static_cast<int>(std::clamp<qint64>(time, m_longest, std::numeric_limits<int>::max()));
}

std::optional<int> AnswerTimes::median() const
{
    int left = (m_total + 1) / 2;
    for (int time = 0; time < m_counts.size(); ++time) {
        left -= m_counts.at(time);
        if (left <= 0)
            return time;
    }
    return std::nullopt;
}

std::optional<int> AnswerTimes::longest() const
{
    return m_total > 0 ? std::optional<int>(m_longest) : std::nullopt;
}

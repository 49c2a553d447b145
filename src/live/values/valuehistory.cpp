// SPDX-License-Identifier: MIT
#include "valuehistory.h"

#include <algorithm>

void ValueHistory::add(qint64 time, double number)
{
    const auto value = static_cast<float>(number);
    if (!m_points.empty()) {
        Point &newest = m_points[(m_oldest + m_points.size() - 1) % m_points.size()];
        if (time >= newest.time && time - newest.time < pointLength) {
            newest.lowest = std::min(newest.lowest, value);
            newest.highest = std::max(newest.highest, value);
            newest.last = value;
            return;
        }
    }
    const Point point{time, value, value, value};
    if (m_points.size() < mostPoints) {
        m_points.push_back(point);
        return;
    }
    m_points[m_oldest] = point;
    m_oldest = (m_oldest + 1) % mostPoints;
}

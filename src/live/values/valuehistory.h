// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <vector>

/*! An hour of a value at ten points a second, for plots. Of what comes faster a point keeps the lowest and the highest, so
 *  that no peak is lost; what is older than the last 36000 points is forgotten.
 */
class ValueHistory
{
public:
    static constexpr std::size_t mostPoints = 36000;
    static constexpr qint64 pointLength = 100000; // us

    struct Point
    {
        qint64 time = 0; // us, of the first value
        float lowest = 0;
        float highest = 0;
        float last = 0;
    };

    void add(qint64 time, double number);

    std::size_t size() const { return m_points.size(); }
    /*! From 0, the oldest, to size() - 1. */
    const Point &at(std::size_t position) const { return m_points[(m_oldest + position) % m_points.size()]; }

private:
    std::vector<Point> m_points; // a ring when it is full
    std::size_t m_oldest = 0;
};

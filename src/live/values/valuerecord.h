// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <optional>

/*! A value that comes again and again: the last, the smallest, the largest, the mean, and whether it is late. Times in us.
 */
class ValueRecord
{
public:
    /*! How long it is between two at most, as its sender says; 0: not known, then what is heard counts. */
    void setPeriod(qint64 period) { m_told = period; }

    void add(qint64 time, double number);

    quint64 count() const { return m_count; }
    double last() const { return m_last; }
    double smallest() const { return m_smallest; }
    double largest() const { return m_largest; }
    double mean() const { return m_count > 0 ? m_sum / double(m_count) : 0; }
    /*! Of the last one. */
    qint64 time() const { return m_time; }

    /*! Whether it has not come for three of its periods. Never before it has come. */
    bool isLate(qint64 now) const;

private:
    quint64 m_count = 0;
    double m_last = 0;
    double m_smallest = 0;
    double m_largest = 0;
    double m_sum = 0;
    qint64 m_time = 0;
    qint64 m_told = 0;
    qint64 m_heard = 0; // period, smoothed
};

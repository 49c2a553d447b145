// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <optional>

/*! The last \a capacity of a row of numbers, of which shares are asked for; and the smallest and the largest of all. */
template<int capacity>
class SampleRing
{
public:
    void add(qint32 sample)
    {
        m_samples[static_cast<std::size_t>(m_count % capacity)] = sample;
        m_smallest = m_count == 0 ? sample : std::min(m_smallest, sample);
        m_largest = m_count == 0 ? sample : std::max(m_largest, sample);
        ++m_count;
    }

    quint64 count() const { return m_count; }
    bool isEmpty() const { return m_count == 0; }
    /*! Those that are kept. */
    int size() const { return static_cast<int>(std::min<quint64>(m_count, capacity)); }
    qint32 at(int position) const { return m_samples[static_cast<std::size_t>(position)]; }

    std::optional<qint32> smallest() const { return isEmpty() ? std::nullopt : std::optional(m_smallest); }
    std::optional<qint32> largest() const { return isEmpty() ? std::nullopt : std::optional(m_largest); }

    /*! The least number that \a share of those that are kept do not exceed: 0.5 is the median, of two the lower. */
    std::optional<qint32> quantile(double share) const
    {
        if (isEmpty())
            return std::nullopt;
        std::array<qint32, capacity> sorted = m_samples;
        const int rank = static_cast<int>(double(size()) * share + 0.999999) - 1;
        const auto place = sorted.begin() + std::clamp(rank, 0, size() - 1);
        std::nth_element(sorted.begin(), place, sorted.begin() + size());
        return *place;
    }

    void clear() { m_count = 0; }

private:
    std::array<qint32, capacity> m_samples{};
    quint64 m_count = 0;
    qint32 m_smallest = 0;
    qint32 m_largest = 0;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <array>

/*! Tells when SDO aborts of a node come in a burst. */
class AbortBursts
{
public:
    static constexpr int least = 5;              // aborts
    static constexpr qint64 longest = 1'000'000; // us

    /*! An abort at \a time (us): how many are to be told of, 0 when there are too few yet. */
    quint32 note(qint64 time)
    {
        const bool goesOn = m_isBurst && time - m_last <= longest && time >= m_last;
        m_last = time;
        m_times[static_cast<std::size_t>(m_count % least)] = time;
        ++m_count;
        if (goesOn)
            return 1;
        // The place of the next one has the time of the oldest.
        const qint64 first = m_times[static_cast<std::size_t>(m_count % least)];
        m_isBurst = m_count >= least && time - first <= longest && time >= first;
        if (m_isBurst)
            m_count = 0;
        return m_isBurst ? least : 0;
    }

private:
    std::array<qint64, least> m_times{};
    quint64 m_count = 0;
    qint64 m_last = 0;
    bool m_isBurst = false;
};

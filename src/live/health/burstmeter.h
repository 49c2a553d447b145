// SPDX-License-Identifier: MIT
#pragma once

#include <system/amounts.h>

#include <QtGlobal>

#include <algorithm>

/*! The longest row of frames with no room between them, by the times at which they ended.
 *
 *  A frame follows at once when it ends no later than one and a half times its own length after the one before. It is as
 *  exact as the times are: adapters that hand over frames in heaps make rows that were none.
 */
class BurstMeter
{
public:
    /*! A frame of \a bits that ended at \a time (us); nothing is counted without a \a bitRate (bit/s). */
    void add(qint64 time, int bits, int bitRate)
    {
        const qint64 gap = time - m_last;
        const bool follows
            = gap < Microseconds::ofSecond && 2 * gap * bitRate <= 3 * Microseconds::ofSecond * bits;
        m_current = follows ? m_current + 1 : 1;
        m_last = time;
        if (bitRate > 0)
            m_longest = std::max(m_longest, m_current);
    }

    /*! Frames; 0: unknown. */
    int longest() const { return m_longest; }

private:
    qint64 m_last = -1'000'000;
    int m_current = 0;
    int m_longest = 0;
};

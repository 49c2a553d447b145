// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class QCanBusFrame;

/*! Gives frames their times on one line that only goes forward.
 *
 *  A driver's time stamps are exact, and of a clock that people and servers set, or there are none. A steady clock never
 *  jumps, and says only when the program came round to look. So the stamps count as long as they go with the steady clock;
 *  when they have jumped, the line goes on where the steady clock is.
 *
 *  Times are in us.
 */
class FrameClock
{
public:
    /*! How far stamps may go astray from the steady clock before they have jumped. */
    static constexpr qint64 largestDrift = 2'000'000;

    /*! The driver's stamp of a frame in us; 0: none that can be one. */
    static qint64 stampOf(const QCanBusFrame &frame);

    /*! The time of a frame with a driver's \a stamp (0: none), of which the program learnt at \a now of a clock that
     *  never goes backward.
     */
    qint64 timeOf(qint64 stamp, qint64 now);

    /*! The time of what is no received frame. Frames that come afterwards may be older: they were on their way. */
    qint64 timeAt(qint64 now) const;

    /*! How often stamps have jumped. */
    int jumps() const { return m_jumps; }

private:
    bool m_hasOffset = false;
    qint64 m_offset = 0; // steady clock less stamps
    qint64 m_last = 0;
    int m_jumps = 0;
};

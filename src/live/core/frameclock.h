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
 *  How far the two are apart is what the frame says that came with the least delay of the last seconds. Delays that are over
 *  move nothing then, and a driver's clock that goes slow, or was set back a little, is followed.
 *
 *  Times are in us.
 */
class FrameClock
{
public:
    /*! How far stamps may go astray from the steady clock before they have jumped. */
    static constexpr qint64 largestDrift = 2'000'000;
    /*! Stamps that have fallen behind for twice as long are followed; delays that are over sooner than this move nothing. */
    static constexpr qint64 window = 3'000'000;
    /*! How far stamps may fall behind without being followed. The least delays of two windows differ too, and times that
     *  follow each of them would not be as exact as the stamps.
     */
    static constexpr qint64 tolerance = 10'000;

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
    void startAt(qint64 offset, qint64 now);
    void follow(qint64 stamp, qint64 now);

    bool m_hasOffset = false;
    qint64 m_offset = 0;         // steady clock less stamps
    qint64 m_smallest = 0;       // offset of the window that began at m_windowBegin
    qint64 m_smallestBefore = 0; // and of the window before
    qint64 m_windowBegin = 0;
    qint64 m_stamp = 0; // of the last frame that had one
    qint64 m_last = 0;
    int m_jumps = 0;
};

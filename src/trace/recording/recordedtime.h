// SPDX-License-Identifier: MIT
#pragma once

#include <live/core/frameclock.h>

#include <optional>

class QCanBusFrame;

/*! The times that frames get when they are recorded: us since 1970.
 *
 *  A driver's stamps of the time of day are kept to the us, so that other programs on the same bus have the same. With other
 *  stamps, or none, times go on steadily from that at the beginning.
 */
class RecordedTime
{
public:
    /*! \a begin: the time of day (us since 1970) at 0 of the steady clock. */
    explicit RecordedTime(qint64 begin)
        : m_begin(begin)
    {
    }

    /*! Of a frame of which the program learnt at \a now (us) of a steady clock. \a busTime: of a bus with a time of its own,
     *  as a trace that is played; what has no stamp there, as the program's own frames, has that time.
     */
    qint64 timeOf(const QCanBusFrame &frame, qint64 now, std::optional<qint64> busTime = {});

private:
    qint64 m_begin;
    FrameClock m_clock;
};

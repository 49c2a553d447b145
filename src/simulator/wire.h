// SPDX-License-Identifier: MIT
#pragma once

#include <QCanBusFrame>

#include <chrono>
#include <deque>
#include <map>
#include <optional>

namespace Simulator {

/*! Bit rates in bit/s that CAN interfaces know (CiA 301). */
bool isKnownBitRate(int bitRate);

/*! The bus as a wire: one frame at a time, each for its bits, the lowest identifier first when several wait.
 *
 *  Arithmetic only: it knows no clock. Every station sends its own frames in their order, as controllers with
 *  a queue do.
 */
class Wire
{
public:
    using Time = std::chrono::nanoseconds; // since a moment that is the same in all calls

    struct Transmission
    {
        QCanBusFrame frame;
        quint64 station = 0; // who sent it
        Time end{0};         // when its last bit was through
    };

    /*! \a bitRate in bit/s, positive. */
    explicit Wire(int bitRate);

    Time frameTime(const QCanBusFrame &frame) const;

    /*! Puts \a frame behind the others of \a station; it may begin from \a readyAt on. */
    void queue(const QCanBusFrame &frame, quint64 station, Time readyAt);

    /*! When the frame that is on the wire, or the next one, is through; empty when none waits.
     *  Settles who is next when the wire is free.
     */
    std::optional<Time> nextEnd();

    /*! Takes the next frame that is through at \a now. */
    std::optional<Transmission> take(Time now);

    /*! Frames of \a station that are not through yet. */
    int waiting(quint64 station) const;

    /*! Drops every frame. */
    void clear();

private:
    struct Waiting
    {
        QCanBusFrame frame;
        Time readyAt;
        quint64 number; // in order of queueing
    };

    void arbitrate();

    int m_bitRate;
    std::map<quint64, std::deque<Waiting>> m_stations; // none of them empty
    std::optional<Transmission> m_current;
    Time m_freeAt{0};
    quint64 m_queued = 0;
};

} // namespace Simulator

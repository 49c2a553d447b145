// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <chrono>
#include <optional>

class QCanBusFrame;

namespace CanOpen {

/*! How much of the time of a bus its frames take, by their bits. Knows no clock.
 *
 *  The load between two moments: keep bits() at the first, and ask for share() at the second.
 */
class BusLoad
{
public:
    /*! From this share on a bus counts as crowded: a message of low priority may have to wait for long. */
    static constexpr double crowdedShare = 0.8;
    /*! From this share on it counts as full: such a message may find no room at all. */
    static constexpr double fullShare = 0.95;

    /*! In bit/s; 0: unknown. */
    void setBitRate(int bitRate) { m_bitRate = bitRate; }

    /*! Counts a frame that was sent or received; error frames count nothing. */
    void note(const QCanBusFrame &frame);

    quint64 bits() const { return m_bits; }

    /*! The share of \a time that the frames took since bits() was \a bits: 0 for an idle bus, 1 for one without any
     *  gap, or a little more, as stuffing is estimated. Empty when bit rate or time is 0.
     */
    std::optional<double> share(quint64 bits, std::chrono::milliseconds time) const;

    /*! Whether that is known, and fullShare or more. */
    bool isFull(quint64 bits, std::chrono::milliseconds time) const;

private:
    int m_bitRate = 0;
    quint64 m_bits = 0;
};

} // namespace CanOpen

// SPDX-License-Identifier: MIT
#pragma once

#include <live/core/liveframe.h>

#include <array>
#include <optional>

/*! Bits and frames of a bus: in all, in the last second, and in the busiest second. Times in us.
 *
 *  A second is ten slots of 100 ms, so that the busiest one may begin at any tenth. It costs the same whatever comes.
 */
class TrafficMeter
{
public:
    static constexpr qint64 slotLength = 100000; // us
    static constexpr int slotCount = 10;

    struct Counts
    {
        quint64 bits = 0;
        std::array<quint64, frameKinds> frames{};

        quint64 allFrames() const;
    };

    /*! Begins to count at \a time. */
    void start(qint64 time);

    void add(qint64 time, FrameKind kind, int bits)
    {
        if (time >= m_slotEnd)
            advance(time);
        m_now.bits += static_cast<quint64>(bits);
        ++m_now.frames[static_cast<std::size_t>(kind)];
    }

    /*! Lets the time go on without a frame. */
    void advance(qint64 time);

    /*! Since start(). */
    Counts total() const;
    qint64 duration(qint64 now) const { return std::max<qint64>(0, now - m_start); }

    /*! Of the last full second; empty before one is over. */
    std::optional<Counts> lastSecond() const;
    /*! The most bits of a second; empty before one is over. */
    std::optional<quint64> mostBits() const;

private:
    void closeSlot();

    qint64 m_start = 0;
    qint64 m_slotEnd = slotLength;
    quint64 m_closed = 0; // slots so far
    Counts m_now;         // of the slot that is open
    Counts m_before;      // of those that are closed
    std::array<Counts, slotCount> m_ring{};
    quint64 m_bitsOfRing = 0;
    quint64 m_mostBits = 0;
};

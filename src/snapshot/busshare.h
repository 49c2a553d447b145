// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <chrono>

/*! How much of a bus our questions and their answers may take: a bucket that fills with the share of the bit rate and
 *  is emptied by what went over the wire.
 *
 *  What a transfer costs is known at its end only, so the bucket may run into debt; nothing is asked until that is paid
 *  back. The share holds on average, over the time of one transfer. Takes the time from its caller.
 */
class BusShare
{
public:
    static constexpr int usualPercent = 60;
    /*! No limit: what is asked follows the answers at once. */
    static constexpr int everything = 100;
    /*! Of the vehicles of CiA 454, for a bus whose bit rate is not known; bit/s. */
    static constexpr int usualBitRate = 250000;

    /*! From 1 to 100; what is beyond counts as the nearest. */
    void setPercent(int percent);
    int percent() const { return m_percent; }

    /*! In bit/s; 0 or less: not known. */
    void setBitRate(int bitRate);

    /*! \a bits have gone over the wire, or are about to; \a now never goes back. */
    void spend(int bits, std::chrono::milliseconds now);

    /*! How long to wait before something is asked, 0: not at all. */
    std::chrono::milliseconds wait(std::chrono::milliseconds now);

private:
    qint64 rate() const { return qint64(m_bitRate) * m_percent; }
    void fill(std::chrono::milliseconds now);

    // In 1/100000 bits: a millisecond then gives bit rate times percent of them.
    qint64 m_content = 0;
    std::chrono::milliseconds m_filled{-1}; // when it was filled last
    int m_bitRate = usualBitRate;
    int m_percent = usualPercent;
};

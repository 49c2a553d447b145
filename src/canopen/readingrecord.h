// SPDX-License-Identifier: MIT
#pragma once

#include "readingcheck.h"
#include "segmentmemory.h"

#include <QByteArray>

#include <optional>

namespace CanOpen {

/*! The readings of one object, one after the other: what is known of each, for ReadingCheck to decide.
 *
 *  The line is that of the server's SegmentMemory, which every call is given.
 */
class ReadingRecord
{
public:
    /*! How often an object is read in all. */
    static constexpr int maximumReadings = 24;

    using Verdict = ReadingCheck::Verdict;

    /*! Begins with a new object. */
    void start(SegmentMemory &memory);
    /*! Begins a reading. */
    void begin(const SegmentMemory &memory);

    /*! A segment of this reading. */
    void note(SegmentMemory &memory, const QByteArray &payload);
    /*! One that was seen before has come once more. */
    void noteCopy(SegmentMemory &memory, const QByteArray &payload);
    /*! A segment may be missing without anybody noticing. */
    void noteGap() { m_reading.isRepeating = true; }

    /*! The reading is at its end with \a data, in so many \a segments. Empty when there were too many readings. */
    std::optional<Verdict> judgeSegments(const SegmentMemory &memory, const QByteArray &data, int segments);
    /*! The same of a block transfer, whose segments are numbered; \a hasCrc: with a CRC that was right. */
    std::optional<Verdict> judgeBlocks(const SegmentMemory &memory, const QByteArray &data, bool hasCrc);

    /*! Of the last reading. */
    const QByteArray &data() const { return m_reading.data; }
    void clearData() { m_reading.data.clear(); }
    /*! Whether a segment of this reading was also seen elsewhere. */
    bool isKnown() const { return m_reading.isKnown; }
    /*! When this reading has begun, in ms. */
    qint64 begunAt() const { return m_begunAt; }

    /*! Whether the next reading follows the last one at once. */
    bool isContinuing() const { return m_isContinuing; }
    void interrupt() { m_isContinuing = false; }

private:
    std::optional<Verdict> judge(const SegmentMemory &memory);
    void compareWithLine(const SegmentMemory &memory);

    ReadingCheck m_check;
    quint32 m_origin = 0;
    int m_readings = 0;
    qint64 m_runBegan = -1; // ms; the first reading of those that agree; -1: there is none
    int m_runTrouble = 0;   // 0: none, 1: copies on the spot, 2: more
    bool m_isContinuing = false;

    // Of the reading under way, or of the last one
    ReadingCheck::Reading m_reading;
    bool m_hasBabble = false;  // among its segments
    bool m_begunAlone = false; // nothing from before it can come, however late
    qint64 m_begunAt = 0;      // ms
};

} // namespace CanOpen

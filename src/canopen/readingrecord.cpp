// SPDX-License-Identifier: MIT
#include "readingrecord.h"

namespace CanOpen {

void ReadingRecord::start(SegmentMemory &memory)
{
    m_check.reset();
    m_origin = memory.newOrigin();
    m_readings = 0;
    m_runBegan = -1;
    m_isContinuing = false;
}

void ReadingRecord::begin(const SegmentMemory &memory)
{
    m_reading = ReadingCheck::Reading();
    m_hasBabble = false;
    m_reading.begunClear = memory.timeUntilClear() <= 0;
    m_begunAlone = memory.timeUntilGone() <= 0;
    m_begunAt = memory.time();
}

void ReadingRecord::note(SegmentMemory &memory, const QByteArray &payload)
{
    const SegmentMemory::Sighting sighting = memory.note(payload, m_origin, static_cast<quint32>(m_readings));
    m_reading.isKnown = m_reading.isKnown || sighting.isKnown;
    m_reading.isRepeating = m_reading.isRepeating || sighting.isRepeated;
    m_hasBabble = m_hasBabble || sighting.isBabble;
}

void ReadingRecord::noteCopy(SegmentMemory &memory, const QByteArray &payload)
{
    memory.note(payload, m_origin, static_cast<quint32>(m_readings));
    memory.noteUnasked();
}

std::optional<ReadingRecord::Verdict> ReadingRecord::judgeSegments(const SegmentMemory &memory,
                                                                   const QByteArray &data, int segments)
{
    m_reading.data = data;
    m_reading.segments = segments;
    return judge(memory);
}

std::optional<ReadingRecord::Verdict> ReadingRecord::judgeBlocks(const SegmentMemory &memory,
                                                                 const QByteArray &data, bool hasCrc)
{
    m_reading.data = data;
    m_reading.hasCrc = hasCrc;
    m_reading.isRepeating = false;
    m_reading.segments = 2;
    return judge(memory);
}

std::optional<ReadingRecord::Verdict> ReadingRecord::judge(const SegmentMemory &memory)
{
    if (++m_readings > maximumReadings)
        return std::nullopt;
    compareWithLine(memory);
    // What was read before the trouble, or before it grew, was read with less care.
    const int trouble = memory.isTroubled() + memory.isLate();
    if (trouble > m_runTrouble)
        m_check.breakOff();
    const Verdict verdict = m_check.take(m_reading, memory.isTroubled(), memory.isBabbling());
    if (m_check.isFirst()) {
        m_runBegan = m_begunAt;
        m_runTrouble = trouble;
    }
    m_isContinuing = verdict == Verdict::ReadAgain;
    return verdict;
}

void ReadingRecord::compareWithLine(const SegmentMemory &memory)
{
    // On a line that was clear only a node that babbles can have sent what is known from elsewhere.
    const bool mayBeBabble = m_hasBabble || memory.hasBabbledSince(m_runBegan < 0 ? m_begunAt : m_runBegan);
    m_reading.isBabble = m_reading.isKnown && memory.isTroubled() && mayBeBabble;
    if (memory.isLate()) {
        m_reading.isKnown = false;
        m_reading.begunClear = m_begunAlone;
    }
}

} // namespace CanOpen

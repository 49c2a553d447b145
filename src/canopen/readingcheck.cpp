// SPDX-License-Identifier: MIT
#include "readingcheck.h"

namespace CanOpen {

namespace {

constexpr int enough = 2;        // readings that agree
constexpr int enoughOfKnown = 3; // the same, of segments that were also seen elsewhere

} // namespace

ReadingCheck::Verdict ReadingCheck::take(const Reading &reading, bool isTroubled, bool isBabbling)
{
    const bool differs = m_agreeing > 0 && reading.data != m_data;
    const bool agrees = m_agreeing > 0 && !differs;
    m_data = reading.data;
    m_agreeing = agrees ? m_agreeing + 1 : 1;
    m_isKnown = reading.isKnown || (agrees && m_isKnown);
    ++m_readings;
    if (differs)
        ++m_changes;

    if (isTroubled) {
        if (!reading.isBabble && !reading.isRepeating && (agrees || reading.begunClear))
            return judgeInTrouble(reading, isBabbling);
        m_agreeing = 0;
        return Verdict::ReadWhenClear;
    }
    if (reading.hasCrc && !m_isKnown)
        return Verdict::Believe;
    if (m_agreeing >= (m_isKnown ? enoughOfKnown : enough))
        return Verdict::Believe;
    if (m_readings < maximumReadings)
        return Verdict::ReadAgain;
    return m_isKnown ? Verdict::ReadWhenClear : Verdict::Listen;
}

ReadingCheck::Verdict ReadingCheck::judgeInTrouble(const Reading &reading, bool isBabbling)
{
    const bool standsAlone = reading.segments > 1 || isBabbling;
    if (m_agreeing >= (m_isKnown ? enoughOfKnown : enough) && (reading.begunClear || !standsAlone))
        return Verdict::Believe;
    if (m_changes >= enough && reading.segments == 1 && reading.begunClear)
        return Verdict::Listen;
    return standsAlone ? Verdict::ReadWhenClear : Verdict::ReadAgain;
}

} // namespace CanOpen

// SPDX-License-Identifier: MIT
#include "busshare.h"

#include <algorithm>

namespace {

using std::chrono::milliseconds;

constexpr qint64 unitsPerBit = 100000;
constexpr qint64 burst = 8 * 120 * unitsPerBit; // four questions with their answers
// Timers come this much late; until then the bucket must not overflow.
constexpr qint64 longestLateness = 5; // ms

} // namespace

void BusShare::setPercent(int percent)
{
    m_percent = std::clamp(percent, 1, everything);
}

void BusShare::setBitRate(int bitRate)
{
    m_bitRate = bitRate > 0 ? bitRate : usualBitRate;
}

void BusShare::spend(int bits, milliseconds now)
{
    fill(now);
    m_content -= qint64(bits) * unitsPerBit;
}

milliseconds BusShare::wait(milliseconds now)
{
    if (m_percent == everything)
        return milliseconds{0};
    fill(now);
    if (m_content > 0)
        return milliseconds{0};
    return milliseconds{-m_content / rate() + 1};
}

void BusShare::fill(milliseconds now)
{
    const qint64 capacity = std::max(burst, longestLateness * rate());
    if (m_filled.count() < 0)
        m_content = capacity;
    else if (now > m_filled)
        m_content = std::min(capacity, m_content + (now - m_filled).count() * rate());
    m_filled = std::max(now, m_filled);
}

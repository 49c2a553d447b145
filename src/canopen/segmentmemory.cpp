// SPDX-License-Identifier: MIT
#include "segmentmemory.h"

#include <algorithm>
#include <cstring>

namespace CanOpen {

namespace {

quint64 numberOf(const QByteArray &payload)
{
    quint64 number = 0;
    std::memcpy(&number, payload.constData(),
                std::min<std::size_t>(sizeof number, std::size_t(payload.size())));
    return number;
}

} // namespace

SegmentMemory::Sighting SegmentMemory::note(const QByteArray &payload, quint32 origin, quint32 reading)
{
    const quint64 number = numberOf(payload);
    const int position = find(number);
    if (position < 0) {
        add(number, origin, reading);
        return {};
    }
    Entry &entry = m_entries[static_cast<std::size_t>(position)];
    // Doubtful from now on, also for its first origin: the next copy is no less doubtful than this one.
    if (entry.origin != origin)
        entry.origin = strayOrigin;
    Sighting sighting;
    sighting.isKnown = entry.origin == strayOrigin;
    sighting.isRepeated = !sighting.isKnown && entry.reading == reading;
    sighting.isBabble = entry.strays > maximumCopies;
    if (!sighting.isBabble)
        entry.strays = 0; // the next ones may be copies of this one
    entry.time = m_now;
    entry.reading = reading;
    return sighting;
}

void SegmentMemory::noteStray(const QByteArray &payload)
{
    const quint64 number = numberOf(payload);
    const int position = find(number);
    if (position >= 0) {
        Entry &entry = m_entries[static_cast<std::size_t>(position)];
        entry.time = m_now;
        entry.origin = strayOrigin;
        ++entry.strays;
        return;
    }
    m_babbledAt = m_now;
    add(number, strayOrigin, 0).strays = maximumCopies + 1;
}

bool SegmentMemory::knows(const QByteArray &payload) const
{
    return find(numberOf(payload)) >= 0;
}

void SegmentMemory::noteOpenRequest()
{
    m_closedAt = std::max(m_closedAt, m_now + ageLimit());
}

qint64 SegmentMemory::timeUntilClosed() const
{
    return std::max<qint64>(m_closedAt - m_now, 0);
}

qint64 SegmentMemory::timeUntilClear() const
{
    const qint64 limit = isTroubled() && !isLate() ? shortLifetime + m_answerTime : ageLimit();
    return std::max(timeUntilClosed(), m_askedAt + limit - m_now);
}

qint64 SegmentMemory::timeUntilGone() const
{
    return std::max(timeUntilClosed(), m_askedAt + ageLimit() - m_now);
}

void SegmentMemory::noteFrame(const QByteArray &payload)
{
    m_lastFrame = (m_lastFrame + 1) % m_lastFrames.size();
    m_lastFrames[m_lastFrame].payload = numberOf(payload);
    m_lastFrames[m_lastFrame].time = m_now;
}

void SegmentMemory::noteTrouble()
{
    m_troubleUntil = m_now + troubleTime;
    m_lateUntil = m_troubleUntil;
}

void SegmentMemory::noteUnasked()
{
    m_troubleUntil = m_now + troubleTime;
    const Frame &last = m_lastFrames[m_lastFrame];
    const auto isTwin = [this, &last](const Frame &frame) {
        return &frame != &last && frame.payload == last.payload && m_now - frame.time <= onTheSpot;
    };
    if (std::none_of(m_lastFrames.begin(), m_lastFrames.end(), isTwin))
        m_lateUntil = m_troubleUntil;
}

int SegmentMemory::find(quint64 payload) const
{
    const auto matches = [this, payload](const Entry &entry) {
        return entry.payload == payload && m_now - entry.time < ageLimit();
    };
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), matches);
    return found != m_entries.end() ? static_cast<int>(found - m_entries.begin()) : -1;
}

SegmentMemory::Entry &SegmentMemory::add(quint64 payload, quint32 origin, quint32 reading)
{
    const Entry entry{payload, m_now, origin, reading, 0};
    if (m_entries.size() < capacity)
        return m_entries.emplace_back(entry);
    const auto oldest = std::min_element(m_entries.begin(), m_entries.end(),
                                         [](const Entry &a, const Entry &b) { return a.time < b.time; });
    if (m_now - oldest->time < ageLimit())
        noteOpenRequest(); // what is forgotten is as good as never seen
    return *oldest = entry;
}

} // namespace CanOpen

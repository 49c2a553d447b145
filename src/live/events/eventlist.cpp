// SPDX-License-Identifier: MIT
#include "eventlist.h"

#include <limits>

EventList EventList::of(const std::vector<LiveEvent> &events)
{
    EventList list;
    for (const LiveEvent &event : events) {
        list.append(event);
        list.m_events.back().lastTime = event.lastTime;
    }
    ++list.m_revision;
    return list;
}

void EventList::add(const LiveEvent &event)
{
    ++m_revision;
    Source &source = m_sources[event.nodeId % m_sources.size()];
    if (countWith(source.last, event))
        return;
    if (event.time - source.windowStart >= window || event.time < source.windowStart) {
        source.windowStart = event.time;
        source.inWindow = 0;
    }
    if (++source.inWindow <= mostInWindow) {
        append(event);
        source.last = m_events.back().number;
        return;
    }
    LiveEvent flood;
    flood.kind = EventKind::Flood;
    flood.nodeId = event.nodeId;
    flood.time = event.time;
    if (countWith(source.flood, flood))
        return;
    append(flood);
    source.flood = m_events.back().number;
}

void EventList::explain(quint8 nodeId, const QMap<quint16, QString> &emergencyTexts)
{
    ++m_revision;
    for (LiveEvent &event : m_events) {
        if (event.nodeId == nodeId && event.kind == EventKind::Emergency)
            event.detail = emergencyTexts.value(static_cast<quint16>(event.code));
    }
}

LiveEvent *EventList::find(quint64 number)
{
    // Numbers have no gaps.
    if (m_events.empty() || number < m_events.front().number || number > m_events.back().number)
        return nullptr;
    return &m_events[static_cast<std::size_t>(number - m_events.front().number)];
}

bool EventList::countWith(quint64 number, const LiveEvent &event)
{
    LiveEvent *known = find(number);
    if (known == nullptr || !known->isSame(event))
        return false;
    if (event.time - known->lastTime > window || event.time < known->lastTime)
        return false;
    constexpr quint32 most = std::numeric_limits<quint32>::max();
    known->count = known->count > most - event.count ? most : known->count + event.count;
    known->lastTime = event.time;
    return true;
}

void EventList::append(const LiveEvent &event)
{
    m_events.push_back(event);
    m_events.back().number = m_next++;
    m_events.back().lastTime = event.time;
    if (m_events.size() <= mostEvents)
        return;
    m_events.pop_front();
    ++m_forgotten;
}

// SPDX-License-Identifier: MIT
#pragma once

#include "liveevent.h"

#include <QMap>
#include <QString>
#include <QtGlobal>

#include <array>
#include <deque>
#include <vector>

/*! The events of a bus in their order, the newest last. It does not grow without end, whatever the bus brings:
 *
 *  - the same event of a node within a second of the last one is counted and not listed again;
 *  - of more than 20 events of a node in a second the others are one event, which counts them;
 *  - the oldest leave when there are 20000.
 */
class EventList
{
public:
    static constexpr std::size_t mostEvents = 20000;
    static constexpr qint64 window = 1'000'000; // us
    static constexpr int mostInWindow = 20;     // of a node

    /*! Adds an event, or counts it with the one before. \a event's number does not matter. */
    void add(const LiveEvent &event);
    void clear() { *this = EventList(); }

    /*! What the maker calls the emergencies of a node, by error code; those that were listed before are called so, too. */
    void explain(quint8 nodeId, const QMap<quint16, QString> &emergencyTexts);

    /*! A list of events that were listed before, as they were. The oldest leave when there are too many. */
    static EventList of(const std::vector<LiveEvent> &events);

    const std::deque<LiveEvent> &events() const { return m_events; }
    /*! Changes with each call of add() and explain(). */
    quint64 revision() const { return m_revision; }
    /*! Events that left because there were too many. */
    quint64 forgotten() const { return m_forgotten; }

private:
    struct Source // a node, or all that is of none
    {
        quint64 last = 0; // numbers
        quint64 flood = 0;
        qint64 windowStart = 0;
        int inWindow = 0;
    };

    LiveEvent *find(quint64 number);
    bool countWith(quint64 number, const LiveEvent &event);
    void append(const LiveEvent &event);

    std::deque<LiveEvent> m_events;
    std::array<Source, 128> m_sources;
    quint64 m_next = 1;
    quint64 m_revision = 0;
    quint64 m_forgotten = 0;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "abortbursts.h"
#include "eventlist.h"

#include <bus/interfacehealth.h>
#include <canopen/cobid.h>
#include <live/core/liveframe.h>
#include <live/health/heartbeatrecord.h>

#include <array>

/*! Makes events of what a bus brings. Sends nothing. Times in us, of a FrameClock. */
class EventRecorder
{
public:
    /*! The producer heartbeat time of a node (1017h), in ms: it is lost by it, also when it was heard only once. */
    void setConfiguredHeartbeat(quint8 nodeId, int milliseconds);

    /*! Takes every frame. */
    void handle(const LiveFrame &frame);

    /*! Lets the time go on: nodes are lost by it. To be called a few times a second. */
    void advance(qint64 now);

    /*! What the maker calls the emergencies of a node, by error code; see EventList::explain(). */
    void setEmergencyTexts(quint8 nodeId, const QMap<quint16, QString> &texts);

    /*! The controller of the adapter is in another state. */
    void setController(InterfaceHealth::State state, qint64 now);
    /*! The adapter is gone; \a reason in words. Nodes are not lost by it. */
    void loseInterface(const QString &reason, qint64 now);
    void findInterface(qint64 now);

    const EventList &list() const { return m_list; }
    void clear() { m_list.clear(); }

private:
    struct Node
    {
        HeartbeatRecord heartbeat;
        AbortBursts aborts;
        QMap<quint16, QString> emergencyTexts;
        bool isKnown = false; // it was heard by a heartbeat
        bool isLost = false;
    };

    void handleHeartbeat(const LiveFrame &frame);
    void handleState(Node *node, const LiveFrame &frame, CanOpen::NmtState state);
    void handleEmergency(const LiveFrame &frame);
    void handleAbort(const LiveFrame &frame);
    void handleCommand(const LiveFrame &frame);
    void handleError(const LiveFrame &frame);
    void add(EventKind kind, quint8 nodeId, qint64 time, quint32 code = 0, quint32 count = 1);

    EventList m_list;
    std::array<Node, CanOpen::lastNodeId + 1> m_nodes;
    InterfaceHealth::State m_controller = InterfaceHealth::State::Unknown;
    bool m_isInterfaceGone = false;
};

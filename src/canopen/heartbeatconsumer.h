// SPDX-License-Identifier: MIT
#pragma once

#include "cobid.h"
#include "heartbeat.h"

#include <QObject>
#include <QTimer>

#include <array>
#include <chrono>
#include <functional>

namespace CanOpen {

/*! Follows the NMT states of all nodes by their heartbeats (CiA 301, heartbeat consumer).
 *
 *  Opens no bus itself: frames come in through handleFrame(). A node is lost when its heartbeat stays away
 *  for longer than three of its own periods (measured), but at least for the minimum time-out. The time
 *  from a boot-up message to the first heartbeat tells nothing of the period, so a node is not lost before
 *  two heartbeats were heard. Slots of all signals may delete the consumer.
 */
class HeartbeatConsumer : public QObject
{
    Q_OBJECT

public:
    explicit HeartbeatConsumer(QObject *parent = nullptr);

    /*! The least silence after which a node counts as lost; 2000 ms at first. Must be positive. */
    void setMinimumTimeout(std::chrono::milliseconds timeout);

    /*! Takes one frame from the bus; what is no heartbeat is ignored. */
    void handleFrame(const QCanBusFrame &frame);

    /*! Forgets every node; nothing is emitted. */
    void clear();

    /*! Last known state; empty while the node was never heard or is lost. */
    std::optional<NmtState> state(quint8 nodeId) const;

    /*! Number of nodes that are heard now. */
    int activeNodeCount() const { return m_activeCount; }

    /*! Looks for lost nodes; called by a timer, and by tests with a time of their own (ms on the same
     *  clock).
     */
    void checkTimeouts(qint64 now);

    /*! The clock, in ms, that never goes backward; empty: the steady one of this computer, as at first. Another one is for a bus
     *  that has a time of its own, and for tests.
     */
    void setClock(const std::function<qint64()> &clock);

signals:
    /*! Every heartbeat and boot-up message. */
    void heartbeatReceived(quint8 nodeId);
    /*! The state is another one than before, or the node is heard for the first time (again). */
    void stateChanged(quint8 nodeId, CanOpen::NmtState state);
    void nodeLost(quint8 nodeId);

private:
    struct Node
    {
        qint64 lastHeard = 0; // ms
        qint64 period = 0;    // ms between heartbeats, the longer ones believed first; 0 while unknown
        std::optional<NmtState> state;
    };

    std::array<Node, lastNodeId + 1> m_nodes;
    int m_activeCount = 0;
    std::chrono::milliseconds m_minimumTimeout{2000};
    std::function<qint64()> m_clock;
    QTimer m_timer;
};

} // namespace CanOpen

// SPDX-License-Identifier: MIT
#include "heartbeatconsumer.h"

#include <QCanBusFrame>
#include <QElapsedTimer>
#include <QPointer>

#include <algorithm>

namespace CanOpen {

namespace {

constexpr int periodsUntilLost = 3;
constexpr int checkInterval = 100; // ms
// A longer period is believed at once, a shorter one by this part of the difference: a doubled frame does not
// make a slow node a fast one.
constexpr int periodSmoothing = 4;

qint64 monotonicMilliseconds()
{
    static const QElapsedTimer timer = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    return timer.elapsed();
}

qint64 smoothedPeriod(qint64 period, qint64 measured)
{
    return measured >= period ? measured : period - (period - measured) / periodSmoothing;
}

} // namespace

HeartbeatConsumer::HeartbeatConsumer(QObject *parent)
    : QObject(parent)
    , m_clock(monotonicMilliseconds)
{
    m_timer.setInterval(checkInterval);
    connect(&m_timer, &QTimer::timeout, this, [this] { checkTimeouts(m_clock()); });
}

void HeartbeatConsumer::setMinimumTimeout(std::chrono::milliseconds timeout)
{
    if (timeout.count() > 0)
        m_minimumTimeout = timeout;
}

void HeartbeatConsumer::handleFrame(const QCanBusFrame &frame)
{
    const std::optional<Heartbeat> heartbeat = parseHeartbeatFrame(frame);
    if (!heartbeat)
        return;

    Node &node = m_nodes[heartbeat->nodeId];
    const qint64 now = m_clock();
    const bool isNew = !node.state;
    // The time from boot-up to the first heartbeat is not the node's period.
    const bool follows = !isNew && *node.state != NmtState::BootUp && heartbeat->state != NmtState::BootUp;
    const bool changed = isNew || *node.state != heartbeat->state;
    if (follows)
        node.period = smoothedPeriod(node.period, now - node.lastHeard);
    node.lastHeard = now;
    node.state = heartbeat->state;
    if (isNew && ++m_activeCount == 1)
        m_timer.start();

    const QPointer<HeartbeatConsumer> self(this);
    emit heartbeatReceived(heartbeat->nodeId);
    if (self && changed)
        emit stateChanged(heartbeat->nodeId, heartbeat->state);
}

void HeartbeatConsumer::clear()
{
    m_nodes.fill(Node());
    m_activeCount = 0;
    m_timer.stop();
}

std::optional<NmtState> HeartbeatConsumer::state(quint8 nodeId) const
{
    return isNodeId(nodeId) ? m_nodes[nodeId].state : std::nullopt;
}

void HeartbeatConsumer::checkTimeouts(qint64 now)
{
    const QPointer<HeartbeatConsumer> self(this);
    for (quint8 nodeId = firstNodeId; nodeId <= lastNodeId; ++nodeId) {
        Node &node = m_nodes[nodeId];
        if (!node.state || node.period == 0)
            continue;
        const qint64 timeout = std::max<qint64>(m_minimumTimeout.count(), periodsUntilLost * node.period);
        if (now - node.lastHeard <= timeout)
            continue;
        node = Node();
        if (--m_activeCount == 0)
            m_timer.stop();
        emit nodeLost(nodeId);
        if (!self)
            return;
    }
}

void HeartbeatConsumer::setClock(const std::function<qint64()> &clock)
{
    m_clock = clock ? clock : monotonicMilliseconds;
}

} // namespace CanOpen

// SPDX-License-Identifier: MIT
#include "nodescan.h"

#include "sdoclient.h"

#include <QPointer>

namespace CanOpen {

namespace {

constexpr ObjectKey deviceType{0x1000, 0};

bool isSignOfLife(const SdoOutcome &outcome)
{
    return !outcome.isUnasked && outcome.kind != SdoOutcome::Kind::Timeout
           && outcome.kind != SdoOutcome::Kind::Cancelled;
}

QVector<quint8> nodesOf(const std::bitset<lastNodeId + 1> &set)
{
    QVector<quint8> nodeIds;
    for (quint8 nodeId = firstNodeId; nodeId <= lastNodeId; ++nodeId) {
        if (set.test(nodeId))
            nodeIds.append(nodeId);
    }
    return nodeIds;
}

} // namespace

NodeScan::NodeScan(SdoClient *client, QObject *parent)
    : QObject(parent)
    , m_client(client)
{
    connect(client, &SdoClient::finished, this, &NodeScan::handleOutcome);
}

NodeScan::~NodeScan()
{
    disconnect(m_client, nullptr, this, nullptr);
    for (const SdoTicket ticket : m_tickets) {
        if (ticket != 0)
            m_client->cancel(ticket);
    }
}

void NodeScan::start()
{
    if (isRunning())
        return;
    m_found.reset();
    m_silent.reset();
    m_next = firstNodeId;
    for (int count = 0; count < maximumSideBySide; ++count)
        askNext();
}

void NodeScan::askNext()
{
    if (m_next > lastNodeId)
        return;
    const quint8 nodeId = m_next++;
    m_tickets[nodeId] = m_client->upload(nodeId, deviceType, DataType::Unsigned32);
    ++m_waiting;
}

QVector<quint8> NodeScan::foundNodes() const
{
    return nodesOf(m_found);
}

QVector<quint8> NodeScan::silentNodes() const
{
    return nodesOf(m_silent);
}

QVector<quint8> NodeScan::unaskedNodes() const
{
    return nodesOf(~(m_found | m_silent));
}

void NodeScan::handleOutcome(const SdoOutcome &outcome)
{
    if (!isNodeId(outcome.nodeId) || m_tickets[outcome.nodeId] != outcome.ticket)
        return;
    m_tickets[outcome.nodeId] = 0;
    --m_waiting;
    if (outcome.kind == SdoOutcome::Kind::Cancelled)
        m_next = lastNodeId + 1;
    m_silent.set(outcome.nodeId,
                 outcome.kind == SdoOutcome::Kind::Timeout && !outcome.isUnasked && !outcome.isCrowdedOut);
    askNext();
    const QPointer<NodeScan> self(this);
    if (isSignOfLife(outcome)) {
        m_found.set(outcome.nodeId);
        emit found(outcome.nodeId);
    }
    if (self && !isRunning())
        emit finished(foundNodes());
}

} // namespace CanOpen

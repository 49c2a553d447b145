// SPDX-License-Identifier: MIT
#include "heartbeathub.h"

#include <canopen/cobid.h>
#include <canopen/heartbeatconsumer.h>

#include <chrono>

namespace {

using namespace std::chrono_literals;

constexpr auto announceDelay = 200ms; // the plug-in rebuilds its tree after it asked

} // namespace

HeartbeatHub::HeartbeatHub(CanOpen::HeartbeatConsumer *consumer, QObject *parent)
    : QObject(parent)
{
    qRegisterMetaType<NmtSender::NmtState>("NmtSender::NmtState");
    for (quint8 nodeId = CanOpen::firstNodeId; nodeId <= CanOpen::lastNodeId; ++nodeId) {
        m_receivers[nodeId] = new HeartbeatReceiver(this);
        m_sources[nodeId] = new NmtStateSource(this);
    }
    m_announceTimer.setSingleShot(true);
    m_announceTimer.setInterval(announceDelay);
    connect(&m_announceTimer, &QTimer::timeout, this, &HeartbeatHub::announceStates);

    using CanOpen::HeartbeatConsumer;
    connect(consumer, &HeartbeatConsumer::heartbeatReceived, this, &HeartbeatHub::handleHeartbeat);
    connect(consumer, &HeartbeatConsumer::stateChanged, this, &HeartbeatHub::handleState);
    connect(consumer, &HeartbeatConsumer::nodeLost, this, &HeartbeatHub::handleLoss);
}

HeartbeatHub::~HeartbeatHub() = default;

QObject *HeartbeatHub::getReceiver(quint16 cobId)
{
    const quint8 nodeId = CanOpen::nodeIdOf(cobId, CanOpen::errorControlBase);
    if (nodeId == 0)
        return nullptr;
    emit receiverAsked();
    return m_receivers[nodeId];
}

QObject *HeartbeatHub::getNmtStateSource(quint8 nodeId)
{
    if (!CanOpen::isNodeId(nodeId))
        return nullptr;
    m_toAnnounce.insert(nodeId);
    m_announceTimer.start();
    return m_sources[nodeId];
}

void HeartbeatHub::forgetNodes()
{
    for (quint8 nodeId = CanOpen::firstNodeId; nodeId <= CanOpen::lastNodeId; ++nodeId) {
        if (m_states[nodeId] != NmtSender::Unknown)
            report(nodeId, NmtSender::Unknown);
    }
}

NmtSender::NmtState HeartbeatHub::toHostState(CanOpen::NmtState state)
{
    switch (state) {
    case CanOpen::NmtState::BootUp:
        return NmtSender::BootUp;
    case CanOpen::NmtState::Stopped:
        return NmtSender::Stopped;
    case CanOpen::NmtState::Operational:
        return NmtSender::Operational;
    case CanOpen::NmtState::PreOperational:
        return NmtSender::PreOperational;
    }
    return NmtSender::Unknown;
}

void HeartbeatHub::handleHeartbeat(quint8 nodeId)
{
    if (CanOpen::isNodeId(nodeId))
        emit m_receivers[nodeId]->received(static_cast<quint16>(CanOpen::errorControlCobId(nodeId)));
}

void HeartbeatHub::handleState(quint8 nodeId, CanOpen::NmtState state)
{
    if (CanOpen::isNodeId(nodeId))
        report(nodeId, toHostState(state));
}

void HeartbeatHub::handleLoss(quint8 nodeId)
{
    if (CanOpen::isNodeId(nodeId))
        report(nodeId, NmtSender::Unknown);
}

void HeartbeatHub::report(quint8 nodeId, NmtSender::NmtState state)
{
    m_states[nodeId] = state;
    emit m_sources[nodeId]->newNmtState(nodeId, state);
}

void HeartbeatHub::announceStates()
{
    QSet<quint8> nodes;
    nodes.swap(m_toAnnounce);
    for (const quint8 nodeId : qAsConst(nodes)) {
        if (m_states[nodeId] != NmtSender::Unknown)
            emit m_sources[nodeId]->newNmtState(nodeId, m_states[nodeId]);
    }
}

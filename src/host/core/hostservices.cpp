// SPDX-License-Identifier: MIT
#include "hostservices.h"

#include <canopen/cobid.h>

HostServices::HostServices(const ReadObserver::Clock &clock, QObject *parent)
    : QObject(parent)
    , m_sdoClient(&m_bus)
    , m_hub(&m_bus.heartbeats())
    , m_reads(clock)
    , m_restarts(clock)
    , m_pace(clock)
    , m_health([this] { return InterfaceHealth::stateOf(m_bus.device()); })
    , m_clock(clock)
{
    connect(&m_bus, &BusConnection::stateChanged, this, &HostServices::handleBusState);
    connect(&m_bus, &BusConnection::frameReceived, &m_health, &InterfaceHealth::handleFrame);
    connect(&m_bus.heartbeats(), &CanOpen::HeartbeatConsumer::heartbeatReceived, this,
            &HostServices::handleHeartbeat);
    connect(&m_hub, &HeartbeatHub::receiverAsked, &m_reads, &ReadObserver::receiverAsked);
    connect(&m_sdoClient, &HostSdoClient::uploadStarted, this, &HostServices::handleUploadStart);
    connect(&m_sdoClient, &HostSdoClient::uploadEnded, this, &HostServices::handleUploadEnd);
    connect(&m_reads, &ReadObserver::detectionStarted, this, &HostServices::handleDetection);
    connect(&m_reads, &ReadObserver::phaseChanged, this, &HostServices::handleReadPhase);
    connect(&m_reads, &ReadObserver::settled, &m_sdoClient, &HostSdoClient::endCancelling);
}

HostServices::~HostServices() = default;

void HostServices::cancelRead()
{
    if (!m_reads.isReading())
        return;
    m_reads.cancel();
    m_sdoClient.cancelRun();
}

void HostServices::handleBusState(BusConnection::State state)
{
    if (state == BusConnection::State::Connected)
        m_health.start();
    else
        m_health.stop();
    if (state != BusConnection::State::Connected)
        m_hub.forgetNodes();
    if (state == BusConnection::State::Lost || state == BusConnection::State::Disconnected)
        m_reads.busLeft(m_bus.lossReason());
    if (state == BusConnection::State::Connecting)
        m_restarts.clear();
}

ReadWords::Silence HostServices::silenceOf(quint8 nodeId)
{
    if (m_restarts.keepsRestarting(nodeId))
        return ReadWords::Silence::Restarting;
    if (m_bus.heartbeats().state(nodeId) == CanOpen::NmtState::Stopped)
        return ReadWords::Silence::Stopped;
    const bool isBusFull = nodeId == 0 ? wasBusFull() : m_bus.sdoClient().isCrowdedOut(nodeId);
    return isBusFull ? ReadWords::Silence::BusFull : ReadWords::Silence::Unexplained;
}

bool HostServices::wasBusFull() const
{
    return m_detectionBegan ? m_bus.load().isFull(m_bitsBefore, m_clock() - *m_detectionBegan) : m_wasBusFull;
}

void HostServices::handleHeartbeat(quint8 nodeId)
{
    if (m_bus.heartbeats().state(nodeId) == CanOpen::NmtState::BootUp)
        m_restarts.noteBootUp(nodeId);
    else
        m_restarts.noteHeartbeat(nodeId);
}

// What is left of the run before must not end during this one: the plug-in would take it for an answer of its own.
// While it detects it ignores the FFFFFFFFh.
void HostServices::handleDetection()
{
    m_bitsBefore = m_bus.load().bits();
    m_detectionBegan = m_clock();
    m_sdoClient.cancelRun();
    if (!m_reads.isLeftOverDue())
        m_sdoClient.endCancelling();
}

void HostServices::handleReadPhase(ReadObserver::Phase phase)
{
    if (m_detectionBegan && phase != ReadObserver::Phase::Detecting) {
        m_wasBusFull = wasBusFull();
        m_detectionBegan.reset();
    }
    if (phase != ReadObserver::Phase::Reading || m_reads.isCancelled())
        return;
    m_sdoClient.endCancelling();
    const quint8 firstNode = m_reads.summary().nodeId;
    m_pace.begin(heardNodes(), CanOpen::isNodeId(firstNode) ? firstNode : quint8(0));
}

QSet<quint8> HostServices::heardNodes()
{
    QSet<quint8> nodes;
    for (quint8 nodeId = CanOpen::firstNodeId; nodeId <= CanOpen::lastNodeId; ++nodeId) {
        if (m_bus.heartbeats().state(nodeId))
            nodes.insert(nodeId);
    }
    return nodes;
}

void HostServices::handleUploadStart(quint8 nodeId, CanOpen::ObjectKey key)
{
    m_reads.uploadStarted(nodeId, key);
    if (m_reads.phase() == ReadObserver::Phase::Reading && CanOpen::isNodeId(nodeId))
        m_pace.noteRequest(nodeId);
}

void HostServices::handleUploadEnd(quint8 nodeId, CanOpen::ObjectKey key, HostSdoClient::Ending ending,
                                   quint32 code)
{
    m_reads.uploadEnded(nodeId, key, ending, code, m_bus.lossReason());
}

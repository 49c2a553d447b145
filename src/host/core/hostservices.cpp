// SPDX-License-Identifier: MIT
#include "hostservices.h"

HostServices::HostServices(QObject *parent)
    : QObject(parent)
    , m_sdoClient(&m_bus)
    , m_hub(&m_bus.heartbeats())
    , m_health([this] { return InterfaceHealth::stateOf(m_bus.device()); })
{
    connect(&m_bus, &BusConnection::stateChanged, this, &HostServices::handleBusState);
    connect(&m_bus, &BusConnection::frameReceived, &m_health, &InterfaceHealth::handleFrame);
    connect(&m_hub, &HeartbeatHub::receiverAsked, &m_reads, &ReadObserver::receiverAsked);
    connect(&m_sdoClient, &HostSdoClient::uploadStarted, &m_reads, &ReadObserver::uploadStarted);
    connect(&m_sdoClient, &HostSdoClient::uploadEnded, &m_reads, &ReadObserver::uploadEnded);
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
}

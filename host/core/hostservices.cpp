// SPDX-License-Identifier: MIT
#include "hostservices.h"

HostServices::HostServices(QObject *parent)
    : QObject(parent)
    , m_sdoClient(&m_bus)
    , m_hub(&m_bus.heartbeats())
{
    connect(&m_bus, &BusConnection::stateChanged, this, &HostServices::handleBusState);
}

HostServices::~HostServices() = default;

void HostServices::handleBusState(BusConnection::State state)
{
    if (state != BusConnection::State::Connected)
        m_hub.forgetNodes();
}

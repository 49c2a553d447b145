// SPDX-License-Identifier: MIT
#include "vehiclewatch.h"

#include "hostservices.h"
#include "shownvehicle.h"

#include <canopen/heartbeatconsumer.h>

VehicleWatch::VehicleWatch(HostServices *services, ShownVehicle *vehicle, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_vehicle(vehicle)
{
    BusConnection &bus = services->bus();
    connect(&bus, &BusConnection::stateChanged, this, &VehicleWatch::handleBus);
    connect(&bus.heartbeats(), &CanOpen::HeartbeatConsumer::stateChanged, this,
            &VehicleWatch::lookForSilentNodes);
    connect(&bus.heartbeats(), &CanOpen::HeartbeatConsumer::nodeLost, this,
            &VehicleWatch::lookForSilentNodes);
    connect(&services->reads(), &ReadObserver::detectionStarted, vehicle, &ShownVehicle::beginRead);
    connect(&services->sdoClient(), &HostSdoClient::resultReceived, vehicle, &ShownVehicle::handleValue);
    connect(&services->reads(), &ReadObserver::readEnded, this, [this](const ReadSummary &summary) {
        m_vehicle->endRead(summary.end == ReadSummary::End::Complete, m_clock(),
                           summary.record.total().failed);
        lookForSilentNodes();
    });
    handleBus();
}

void VehicleWatch::handleBus()
{
    m_vehicle->setConnected(m_services->bus().state() == BusConnection::State::Connected);
}

void VehicleWatch::lookForSilentNodes()
{
    QSet<quint8> silent;
    const QSet<quint8> nodes = m_vehicle->nodes();
    for (const quint8 node : nodes) {
        if (!m_services->bus().heartbeats().state(node))
            silent.insert(node);
    }
    m_vehicle->setSilentNodes(silent);
}

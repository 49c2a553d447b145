// SPDX-License-Identifier: MIT
#include "vehicleonbus.h"

#include "vehicle.h"

namespace Simulator {

namespace {

// A node that sends more than the bus takes loses the rest, as a controller's full buffer does.
constexpr int nodeQueueLength = 256; // frames

} // namespace

VehicleOnBus::VehicleOnBus(Vehicle *vehicle, SimulatedBus *bus)
    : m_vehicle(vehicle)
    , m_bus(bus)
{
    m_bus->attach(this);
    m_vehicle->setSender([this](const QCanBusFrame &frame, quint8 nodeId) {
        m_bus->send(this, frame, nodeId, m_bus->bitRate() > 0 ? nodeQueueLength : SimulatedBus::noQueueLimit);
    });
}

VehicleOnBus::~VehicleOnBus()
{
    m_vehicle->setSender(nullptr);
    m_bus->detach(this);
}

void VehicleOnBus::receive(const QCanBusFrame &frame)
{
    m_vehicle->handleFrame(frame);
}

} // namespace Simulator

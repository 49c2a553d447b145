// SPDX-License-Identifier: MIT
#pragma once

#include "simulatedbus.h"

namespace Simulator {

class Vehicle;

/*! Connects a vehicle with a simulated bus for as long as it exists. Both stay the caller's and must outlive
 *  it.
 */
class VehicleOnBus : public BusParticipant
{
public:
    VehicleOnBus(Vehicle *vehicle, SimulatedBus *bus);
    ~VehicleOnBus() override;

    VehicleOnBus(const VehicleOnBus &) = delete;
    VehicleOnBus &operator=(const VehicleOnBus &) = delete;

    void receive(const QCanBusFrame &frame) override;
    bool isSimulated() const override { return true; }

private:
    Vehicle *m_vehicle;
    SimulatedBus *m_bus;
};

} // namespace Simulator

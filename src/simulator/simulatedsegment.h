// SPDX-License-Identifier: MIT
#pragma once

#include "simulatedbus.h"
#include "vehicle.h"
#include "vehicleonbus.h"

#include <QString>

#include <memory>

namespace Simulator {

/*! A bus with its vehicle, which runs for as long as somebody holds the segment. */
class SimulatedSegment
{
public:
    SimulatedSegment(const VehicleDescription &description, int bitRate);
    ~SimulatedSegment();

    SimulatedSegment(const SimulatedSegment &) = delete;
    SimulatedSegment &operator=(const SimulatedSegment &) = delete;

    /*! The segment that devices with this interface name share, made when there is none. \a bitRate in bit/s,
     *  0: unpaced, negative: the running bus' or else the vehicle's own. Null on an error, with its reason in
     *  \a errorMessage.
     */
    static std::shared_ptr<SimulatedSegment> join(const QString &interfaceName, int bitRate,
                                                  QString *errorMessage);

    /*! Loses the bus as \a fault says. */
    void orderLoss(const Faults::BusLoss &fault);

    const std::shared_ptr<SimulatedBus> &bus() const { return m_bus; }
    Vehicle &vehicle() { return m_vehicle; }

private:
    std::shared_ptr<SimulatedBus> m_bus;
    Vehicle m_vehicle;
    VehicleOnBus m_vehicleOnBus;
};

} // namespace Simulator

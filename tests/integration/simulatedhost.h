// SPDX-License-Identifier: MIT
#pragma once

#include <host/core/hostservices.h>
#include <simulator/simulatedbus.h>
#include <simulator/simulateddevice.h>
#include <simulator/vehicle.h>
#include <simulator/vehicleonbus.h>

#include <QPointer>

#include <functional>
#include <memory>

/*! The host's services on a bus of this process with a simulated vehicle, which a test can lose and restore. */
class SimulatedHost
{
public:
    explicit SimulatedHost(const Simulator::VehicleDescription &description, int bitRate = 0);
    Q_DISABLE_COPY(SimulatedHost)

    /*! A shipped vehicle; without its behaviours, so that every read gives the same values. */
    static Simulator::VehicleDescription stillVehicle(const QString &name);

    bool connectToBus();

    HostServices &services() { return m_services; }
    Simulator::SimulatedBus &bus() { return *m_bus; }
    Simulator::Vehicle &vehicle() { return m_vehicle; }

    /*! Prepares every device before it connects. */
    std::function<void(Simulator::SimulatedCanDevice &)> prepare;

private:
    std::shared_ptr<Simulator::SimulatedBus> m_bus;
    Simulator::Vehicle m_vehicle;
    Simulator::VehicleOnBus m_vehicleOnBus;
    HostServices m_services;
};

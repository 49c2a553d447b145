// SPDX-License-Identifier: MIT
#include "simulatedhost.h"

#include <simulator/vehiclefile.h>

SimulatedHost::SimulatedHost(const Simulator::VehicleDescription &description, int bitRate)
    : m_bus(std::make_shared<Simulator::SimulatedBus>(bitRate))
    , m_vehicle(description)
    , m_vehicleOnBus(&m_vehicle, m_bus.get())
{
    m_services.bus().interfaceWatch().setLister([](const QString &) { return QStringList(); });
    m_services.bus().setDeviceFactory(
        [this](const QString &, const QString &, QString *errorMessage) -> QCanBusDevice * {
            if (m_bus->isLost()) {
                *errorMessage = QStringLiteral("The bus is lost");
                return nullptr;
            }
            auto *device = new Simulator::SimulatedCanDevice(m_bus);
            if (prepare)
                prepare(*device);
            return device;
        });
    m_vehicle.start();
}

Simulator::VehicleDescription SimulatedHost::stillVehicle(const QString &name)
{
    QString error;
    std::optional<Simulator::VehicleDescription> vehicle = Simulator::readVehicleFile(
        QStringLiteral(VEHICLE_FOLDER "/") + name + QStringLiteral(".json"), &error);
    if (!vehicle)
        qFatal("%s", qUtf8Printable(error));
    for (Simulator::NodeDescription &node : vehicle->nodes) {
        node.behaviours.clear();
        node.heartbeatMs = quint16(50); // found quickly
    }
    return *vehicle;
}

bool SimulatedHost::connectToBus()
{
    BusSettings settings;
    settings.address.plugin = QStringLiteral("simulated");
    settings.address.interfaceName = QStringLiteral("test");
    return m_services.bus().connectToBus(settings, nullptr);
}

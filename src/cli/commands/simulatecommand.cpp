// SPDX-License-Identifier: MIT
#include "simulatecommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/exitstatus.h>
#include <cli/core/interruptibleloop.h>
#include <cli/core/optionnames.h>
#include <cli/core/vehiclefromfile.h>

#include <bus/busconnection.h>
#include <simulator/vehicle.h>
#include <simulator/vehiclefile.h>

namespace {

struct SimulateCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(SimulateCommand)
};

using MaybeVehicle = std::optional<Simulator::VehicleDescription>;

MaybeVehicle loadSavedVehicle(const QString &fileName, QString *error)
{
    QStringList warnings;
    MaybeVehicle vehicle = vehicleFromFile(fileName, error, &warnings);
    for (const QString &warning : qAsConst(warnings))
        Console::printError(warning);
    return vehicle;
}

MaybeVehicle loadVehicle(const QString &name, QString *error)
{
    if (isSavedVehicle(name))
        return loadSavedVehicle(name, error);
    const QString path = Simulator::findVehicleFile(name, error);
    return path.isEmpty() ? std::nullopt : Simulator::readVehicleFile(path, error);
}

/*! Switches the vehicle on and off with its bus, and says so. */
void followBus(Simulator::Vehicle &vehicle, BusConnection &bus)
{
    const QString address = bus.settings().address.toString();
    switch (bus.state()) {
    case BusConnection::State::Connected:
        vehicle.start();
        Console::print(SimulateCommandTr::tr("%1 is on %2 with %3 nodes; Ctrl+C ends it.")
                           .arg(vehicle.name(), address, QString::number(vehicle.nodeIds().size())));
        break;
    case BusConnection::State::Lost:
        vehicle.stop();
        Console::printError(
            SimulateCommandTr::tr("The bus was lost: %1 Waiting for it ...").arg(bus.errorString()));
        break;
    case BusConnection::State::Connecting:
    case BusConnection::State::Disconnected:
        vehicle.stop();
        break;
    }
}

ExitStatus simulate(const Simulator::VehicleDescription &description, const BusSettings &settings)
{
    InterruptibleLoop loop;
    BusConnection bus;
    bus.openGate();
    Simulator::Vehicle vehicle(description);
    vehicle.setSender([&bus](const QCanBusFrame &frame, quint8) { bus.send(frame); });
    QObject::connect(&bus, &BusConnection::frameReceived, &vehicle, &Simulator::Vehicle::handleFrame);
    QObject::connect(&bus, &BusConnection::stateChanged, &vehicle, [&] { followBus(vehicle, bus); });

    QString error;
    if (!bus.connectToBus(settings, &error)) {
        Console::printBusError(error);
        return Exit::busNotOpened;
    }
    loop.run();
    vehicle.stop();
    bus.disconnectFromBus();
    Console::printError(SimulateCommandTr::tr("The simulation has ended."));
    return loop.status();
}

/*! Takes --speed; an exit status when it is wrong. */
std::optional<ExitStatus> readSpeed(const CommandArguments &options, std::optional<double> *speed)
{
    if (!options.isSet(speedOption))
        return std::nullopt;
    bool isNumber = false;
    const double number = options.value(speedOption).toDouble(&isNumber);
    if (!isNumber || !Simulator::isVehicleSpeed(number))
        return options.complain(SimulateCommandTr::tr("--speed takes a number from %1 to %2, not \"%3\".")
                                    .arg(QString::number(Simulator::slowestVehicle),
                                         QString::number(Simulator::fastestVehicle),
                                         options.value(speedOption)));
    *speed = number;
    return std::nullopt;
}

} // namespace

ExitStatus runSimulateCommand(const QStringList &arguments)
{
    CommandArguments options(
        QStringLiteral("simulate"),
        SimulateCommandTr::tr(
            "Puts a simulated vehicle on a bus: a shipped one by its name, a vehicle file, or "
            "what a snapshot, an exchange file or a support bundle holds."));
    options.addBusOptions();
    options.addPositional(
        QStringLiteral("VEHICLE"),
        SimulateCommandTr::tr(
            "A name such as pedelec, ride or full-bus, FILE.json, FILE.dxsnap, FILE.dxxml or FILE.zip."));
    options.addOption({speedOption,
                       SimulateCommandTr::tr(
                           "Its values move so many times as fast; heartbeats and PDOs keep their times."),
                       SimulateCommandTr::tr("FACTOR")});
    if (const std::optional<ExitStatus> status = options.parse(arguments))
        return *status;
    std::optional<double> speed;
    if (const std::optional<ExitStatus> status = readSpeed(options, &speed))
        return *status;

    QString error;
    MaybeVehicle vehicle = loadVehicle(options.positional(), &error);
    if (!vehicle) {
        Console::printError(error);
        return Exit::fileFailed;
    }
    vehicle->speed = speed.value_or(vehicle->speed);
    return simulate(*vehicle, options.bus());
}

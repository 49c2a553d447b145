// SPDX-License-Identifier: MIT
// A simulated node with faults of any kind, ordered and taken back while frames arrive and time passes.
#include "framereader.h"

#include <simulator/fault.h>
#include <simulator/vehicle.h>

#include <QCoreApplication>
#include <QJsonObject>

namespace {

using namespace Simulator;

constexpr quint8 nodeId = 5;

VehicleDescription makeVehicle()
{
    using namespace CanOpen;
    NodeDescription node;
    node.id = nodeId;
    node.heartbeatMs = 500;
    const auto add = [&node](ObjectKey key, DataType type, const QByteArray &data) {
        ObjectEntry entry;
        entry.type = type;
        entry.access = Access::ReadWrite;
        entry.data = data;
        node.dictionary.insert(key, entry);
    };
    add({0x1008, 0}, DataType::VisibleString, QByteArray(24, 'b'));
    add({0x1017, 0}, DataType::Unsigned16, QByteArray(2, '\1'));
    add({0x2000, 0}, DataType::Unsigned16, QByteArray(2, 'c'));
    VehicleDescription vehicle;
    vehicle.nodes.append(node);
    return vehicle;
}

/*! A fault as a vehicle file orders it, with one of its parameters set. */
std::optional<Fault> faultFrom(ByteReader &reader)
{
    const QStringList names = faultNames();
    const QString name = names.at(reader.byte() % names.size());
    QJsonObject json{{QStringLiteral("kind"), name}};
    const QStringList parameters = faultParameters(name);
    if (!parameters.isEmpty()) {
        const QString parameter = parameters.at(reader.byte() % parameters.size());
        if (parameter == QLatin1String("object"))
            json.insert(parameter, QStringLiteral("2000"));
        else
            json.insert(parameter, int(reader.byte()) - 1);
    }
    QString problem;
    const std::optional<Fault> fault = parseFault(json, &problem);
    require(fault.has_value() == problem.isEmpty());
    return fault;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);

    ByteReader reader(data, size);
    qint64 now = 0; // microseconds
    Vehicle vehicle(makeVehicle());
    vehicle.setClock([&now] { return now; });
    vehicle.setSender([](const QCanBusFrame &frame, quint8) { require(frame.isValid()); });
    vehicle.start();
    int faults = 0;
    while (!reader.atEnd()) {
        const quint8 action = reader.byte();
        switch (action & 0x07) {
        case 0:
            if (const std::optional<Fault> fault = ++faults < 20 ? faultFrom(reader) : std::nullopt)
                vehicle.addFault((action & 0x08) != 0 ? nodeId : quint8(0), *fault);
            break;
        case 1:
            vehicle.removeFaults(nodeId, reader.byte() % std::variant_size_v<Fault>);
            break;
        case 2:
            now += (action >> 3) * 1000;
            vehicle.processDue();
            break;
        case 3:
            vehicle.handleFrame(frameFrom(reader, 0));
            break;
        default:
            vehicle.handleFrame(QCanBusFrame(0x600 + nodeId, reader.payload()));
        }
    }
    vehicle.clearFaults();
    vehicle.stop();
    return 0;
}

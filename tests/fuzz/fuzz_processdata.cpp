// SPDX-License-Identifier: MIT
// PDOs, SYNC and emergencies of two devices with chance parameters, mappings and orders: whatever they say to each other
// and whatever is written into them comes to an end, and no frame is broken. Mappings are read as a listener reads them.
#include "bytereader.h"
#include "framereader.h"

#include <canopen/emergency.h>
#include <canopen/pdomapping.h>
#include <canopen/pdoparameter.h>
#include <simulator/vehicle.h>

#include <QCoreApplication>

namespace {

using namespace CanOpen;
using namespace Simulator;

constexpr quint8 nodeIds[] = {4, 5};
constexpr int mostFramesAtOnce = 20000;

void add(NodeDescription *node, quint16 index, quint8 sub, DataType type, const QVariant &value)
{
    ObjectEntry entry;
    entry.type = type;
    entry.access = Access::ReadWrite;
    entry.data = encodeValue(type, value).value_or(QByteArray());
    node->dictionary.insert({index, sub}, entry);
}

/*! A PDO's parameter and mapping; COB-IDs are few, so that the nodes hear each other. */
void addPdo(ByteReader &reader, NodeDescription *node, quint16 index)
{
    const quint8 flags = reader.byte();
    const quint32 cobId = (0x80u + (flags & 0x0Fu)) | quint32(flags & 0xE0) << 24;
    add(node, index, 1, DataType::Unsigned32, cobId);
    add(node, index, 2, DataType::Unsigned8, uint(reader.byte()));
    add(node, index, 3, DataType::Unsigned16, uint(reader.byte()));
    add(node, index, 5, DataType::Unsigned16, uint(reader.byte()));
    add(node, index, 6, DataType::Unsigned8, uint(reader.byte()));
    const auto mapping = static_cast<quint16>(index + 0x200);
    const quint8 count = reader.byte();
    add(node, mapping, 0, DataType::Unsigned8, uint(count));
    for (quint8 sub = 1; sub <= (count & 0x0F); ++sub)
        add(node, mapping, sub, DataType::Unsigned32,
            0x20000000u | uint(reader.byte() & 0x07) << 8 | uint(reader.byte()));
}

NodeDescription nodeFrom(ByteReader &reader, quint8 id)
{
    NodeDescription node;
    node.id = id;
    node.heartbeatMs = quint16(100);
    const DataType types[]
        = {DataType::Unsigned8, DataType::Integer16, DataType::Unsigned32,   DataType::Unsigned64,
           DataType::Boolean,   DataType::Real32,    DataType::VisibleString};
    quint8 sub = 1;
    for (const DataType type : types)
        add(&node, 0x2000, sub++, type, 1);
    Behaviour behaviour;
    behaviour.object = {0x2000, 3};
    behaviour.kind = BehaviourKind::Counter;
    behaviour.intervalMs = 3;
    node.behaviours.append(behaviour);
    add(&node, 0x1001, 0, DataType::Unsigned8, uint(reader.byte()));
    add(&node, 0x1003, 0, DataType::Unsigned8, uint(reader.byte()));
    add(&node, 0x1003, 1, DataType::Unsigned32, 0);
    add(&node, 0x1005, 0, DataType::Unsigned32, 0x80u | uint(reader.byte()) << 24);
    add(&node, 0x1006, 0, DataType::Unsigned32, uint(reader.word()));
    add(&node, 0x1014, 0, DataType::Unsigned32, 0x80u + (reader.byte() & 0x0F));
    add(&node, 0x1015, 0, DataType::Unsigned16, uint(reader.byte()));
    add(&node, 0x1019, 0, DataType::Unsigned8, uint(reader.byte()));
    for (const quint16 index : {0x1400, 0x1401, 0x1800, 0x1801})
        addPdo(reader, &node, index);
    return node;
}

Fault faultFrom(ByteReader &reader)
{
    switch (reader.byte() % 4) {
    case 0: {
        Faults::PdoLength fault;
        fault.length = reader.byte() % 9;
        return fault;
    }
    case 1: {
        Faults::LyingMapping fault;
        fault.entries = reader.byte();
        fault.bits = reader.byte();
        return fault;
    }
    case 2:
        return Faults::BabbleEmergency();
    default: {
        Faults::Emergency fault;
        fault.code = 0x100u + reader.byte();
        fault.after = std::chrono::milliseconds(reader.byte());
        fault.length = std::chrono::milliseconds(reader.byte());
        if (reader.byte() % 2 == 0) {
            fault.object = ObjectKey{0x2000, static_cast<quint8>(reader.byte() % 9)};
            fault.above = reader.byte();
        }
        fault.preOperational = reader.byte() % 2 == 0;
        return fault;
    }
    }
}

void listen(ByteReader &reader)
{
    const ObjectLookup lookup = [&reader](ObjectKey key) -> std::optional<quint32> {
        const quint8 shape = reader.byte();
        if (shape == 0)
            return std::nullopt;
        return key.subIndex == 0 ? quint32(shape) : reader.doubleWord();
    };
    const PdoMapping mapping = readPdoMapping(lookup, firstTransmitMapping);
    require(mapping.bits() <= mostPdoBits && mapping.entries.size() <= mostMappedObjects);
    const QCanBusFrame frame = frameFrom(reader, 0x180);
    for (const PdoValue &value : unpackPdo(mapping, frame.payload())) {
        require(value.data.isEmpty() || value.data.size() == (value.bits + 7) / 8);
        const auto type = static_cast<DataType>(reader.byte() & 0x1F);
        if (const auto data = widenMapped(type, value.data, value.bits))
            require(byteSize(type) == 0 || data->size() == byteSize(type));
    }
    readPdoParameter(lookup, firstTransmitPdo);
    if (const auto emergency = parseEmergency(frame))
        require(!emergencyText(emergency->errorCode).isEmpty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);

    ByteReader reader(data, size);
    VehicleDescription description;
    for (const quint8 id : nodeIds)
        description.nodes.append(nodeFrom(reader, id));
    qint64 now = 0; // microseconds
    int frames = 0; // since the last action
    Vehicle vehicle(description);
    vehicle.setClock([&now] { return now; });
    vehicle.setSender([&frames](const QCanBusFrame &frame, quint8) {
        require(frame.isValid() && frame.payload().size() <= 8);
        require(++frames < mostFramesAtOnce);
    });
    vehicle.start();
    int faults = 0;
    while (!reader.atEnd()) {
        frames = 0;
        const quint8 action = reader.byte();
        const quint8 node = nodeIds[action >> 7];
        switch (action & 0x07) {
        case 0:
            if (++faults < 20)
                vehicle.addFault(node, faultFrom(reader));
            break;
        case 1:
            vehicle.clearFaults();
            break;
        case 2:
            now += (action >> 3) * 1000;
            vehicle.processDue();
            break;
        case 3:
            vehicle.handleFrame(frameFrom(reader, 0x80u + (reader.byte() & 0x0F)));
            break;
        case 4: // NMT
            vehicle.handleFrame(frameFrom(reader, 0));
            break;
        case 5:
            listen(reader);
            break;
        default:
            vehicle.handleFrame(QCanBusFrame(0x600u + node, reader.payload()));
        }
    }
    vehicle.stop();
    return 0;
}

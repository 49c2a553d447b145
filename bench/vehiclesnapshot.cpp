// SPDX-License-Identifier: MIT
#include "vehiclesnapshot.h"

#include <interpreter/objectdescriptions.h>
#include <simulator/vehiclefile.h>

#include <QSet>

#include <algorithm>

namespace {

using CanOpen::ObjectKey;

constexpr quint32 noSuchObject = 0x06020000;
constexpr ObjectKey serialNumber{0x1018, 4};
constexpr quint16 firstMeasured = 0x6040;
constexpr int lastIndexOfTable = 0xFFFF;

/*! What is asked for: the objects of the device, and those of the table that it does not have. */
QVector<ObjectKey> keysOf(const CanOpen::ObjectDictionary &dictionary)
{
    QVector<ObjectKey> keys = dictionary.keys();
    for (int index = 1; index <= lastIndexOfTable; ++index) {
        const auto number = static_cast<quint16>(index);
        if (objectDescriptions().find(number) != nullptr && !dictionary.containsIndex(number))
            keys.append({number, 0});
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

} // namespace

VehicleSnapshots::VehicleSnapshots(const QString &name)
{
    QString error;
    const auto vehicle
        = Simulator::readVehicleFile(QStringLiteral(VEHICLE_FOLDER "/%1.json").arg(name), &error);
    if (vehicle)
        m_vehicle = *vehicle;
}

Snapshot VehicleSnapshots::visit(int vehicle, int number)
{
    Snapshot snapshot;
    m_time = 0;
    snapshot.program = QStringLiteral("draxel 1.0.0");
    snapshot.time = QDateTime(QDate(2024, 1, 1), QTime(8, 0), Qt::OffsetFromUTC, 3600)
                        .addSecs(qint64(number) * 7 * 24 * 3600 + vehicle * 60);
    snapshot.bus = QStringLiteral("socketcan:can0");
    snapshot.bitRate = m_vehicle.bitRate;
    snapshot.notes.customer = QStringLiteral("Customer %1").arg(vehicle);
    snapshot.notes.note = QStringLiteral("Service %1: brakes adjusted, battery charged").arg(number);
    for (const Simulator::NodeDescription &node : qAsConst(m_vehicle.nodes))
        snapshot.nodes.append(nodeOf(node, vehicle));
    std::sort(snapshot.nodes.begin(), snapshot.nodes.end(),
              [](const SnapshotNode &a, const SnapshotNode &b) { return a.id < b.id; });
    snapshot.duration = m_time;
    return snapshot;
}

SnapshotNode VehicleSnapshots::nodeOf(const Simulator::NodeDescription &description, int vehicle)
{
    SnapshotNode node;
    node.id = description.id;
    node.nmtState = CanOpen::NmtState::Operational;
    node.medianAnswer = 5;
    node.longestAnswer = 12;
    m_time = node.id; // the nodes are asked at the same time
    for (const ObjectKey key : keysOf(description.dictionary))
        node.entries.append(entryOf(description, key, vehicle));
    return node;
}

SnapshotEntry VehicleSnapshots::entryOf(const Simulator::NodeDescription &description, ObjectKey key,
                                        int vehicle)
{
    std::uniform_int_distribution<int> wait(4, 8);
    std::uniform_int_distribution<int> noise(0, 15);
    m_time += wait(m_random);
    SnapshotEntry entry;
    entry.key = key;
    entry.ms = m_time;
    const CanOpen::ObjectEntry *object = description.dictionary.find(key);
    if (object == nullptr) {
        entry.gap = SnapshotGap::Absent;
        entry.abortCode = noSuchObject;
        return entry;
    }
    entry.type = object->type;
    entry.raw = object->data;
    if (key == serialNumber)
        entry.raw = *CanOpen::encodeValue(*entry.type, 1000 * description.id + vehicle);
    else if (key.index >= firstMeasured && key.subIndex > 0 && CanOpen::byteSize(*entry.type) >= 2)
        entry.raw[0] = static_cast<char>(entry.raw.at(0) ^ noise(m_random));
    entry.value = CanOpen::decodeValue(*entry.type, entry.raw).value_or(QVariant());
    return entry;
}

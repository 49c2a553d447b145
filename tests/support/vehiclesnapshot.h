// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/sdoabort.h>
#include <simulator/vehiclefile.h>
#include <snapshot/objecttypes.h>
#include <snapshot/snapshot.h>

#include <QMap>
#include <QString>
#include <QtTest>

/*! Snapshots as a full one of a healthy simulated vehicle is, made without a bus. */
namespace VehicleSnapshot {

constexpr quint32 noObject = 0x06020000;
constexpr quint32 noSubIndex = 0x06090011;

inline SnapshotEntry entryOf(CanOpen::ObjectKey key, const QByteArray &raw)
{
    SnapshotEntry entry;
    entry.key = key;
    entry.raw = raw;
    entry.type = ObjectTypes::matching(ObjectTypes::known(key), raw);
    entry.value = entry.type ? CanOpen::decodeValue(*entry.type, raw).value_or(QVariant())
                             : ObjectTypes::unsignedValue(raw);
    return entry;
}

inline SnapshotEntry absent(CanOpen::ObjectKey key)
{
    SnapshotEntry entry;
    entry.key = key;
    entry.gap = SnapshotGap::Absent;
    entry.abortCode = key.subIndex == 0 ? noObject : noSubIndex;
    return entry;
}

/*! What a node of a vehicle answers; what it does not have is absent. */
inline SnapshotNode nodeOf(const Simulator::NodeDescription &description)
{
    constexpr quint16 asked[][2] = {{0x1000, 0x1029}, {0x6000, 0x6725}};
    constexpr int mostCells = 40;
    SnapshotNode node;
    node.id = description.id;
    node.nmtState = CanOpen::NmtState::Operational;
    node.bootUps = 1;
    node.medianAnswer = 2;
    node.longestAnswer = 5;
    for (const auto &range : asked) {
        for (int i = range[0]; i <= range[1]; ++i) {
            const auto index = static_cast<quint16>(i);
            if (description.dictionary.find({index, 0}) == nullptr)
                node.entries.append(absent({index, 0}));
        }
    }
    for (const CanOpen::ObjectKey key : description.dictionary.keys()) {
        if (key.subIndex != 0)
            continue;
        const bool isArray = description.dictionary.find({key.index, 1}) != nullptr
                             || description.dictionary.find({key.index, 2}) != nullptr;
        const int count = isArray ? description.dictionary.value(key).toInt() : 0;
        for (int sub = 1; sub <= qMin(count, mostCells); ++sub)
            node.insert(absent({key.index, static_cast<quint8>(sub)}));
    }
    for (const CanOpen::ObjectKey key : description.dictionary.keys())
        node.insert(entryOf(key, description.dictionary.find(key)->data));
    return node;
}

/*! Of a vehicle file that is shipped, read anew. */
inline Snapshot read(const QString &vehicle)
{
    QString error;
    const auto description = Simulator::readVehicleFile(
        QStringLiteral(OVERVIEW_SOURCE_DIR "/src/simulator/vehicles/%1.json").arg(vehicle), &error);
    Snapshot snapshot;
    if (!description) {
        qFatal("%s", qPrintable(error));
        return snapshot;
    }
    snapshot.program = QStringLiteral("test");
    snapshot.time = QDateTime(QDate(2026, 9, 3), QTime(10, 12), Qt::OffsetFromUTC, 7200);
    snapshot.duration = 12000;
    snapshot.bus = QStringLiteral("simulated:%1").arg(vehicle);
    snapshot.bitRate = description->bitRate;
    for (const Simulator::NodeDescription &node : description->nodes)
        snapshot.nodes.append(nodeOf(node));
    return snapshot;
}

/*! Of a vehicle file that is shipped: "pedelec". Read once; each caller gets a copy. */
inline Snapshot of(const QString &vehicle)
{
    static QMap<QString, Snapshot> snapshots;
    auto known = snapshots.constFind(vehicle);
    if (known == snapshots.cend())
        known = snapshots.insert(vehicle, read(vehicle));
    return *known;
}

/*! Gives an object bytes of its own, least significant first, as hexadecimal digits. */
inline void setRaw(Snapshot *snapshot, quint8 nodeId, CanOpen::ObjectKey key, const char *hex)
{
    snapshot->find(nodeId)->insert(entryOf(key, QByteArray::fromHex(hex)));
}

/*! Gives an object a number in as many bytes as it has, or has to have when it was absent. */
inline void setNumber(Snapshot *snapshot, quint8 nodeId, CanOpen::ObjectKey key, qint64 number, int size = 0)
{
    const SnapshotEntry *old = snapshot->find(nodeId)->find(key);
    const int bytes = size != 0 ? size : (old != nullptr && !old->raw.isEmpty() ? old->raw.size() : 2);
    QByteArray raw;
    for (int i = 0; i < bytes; ++i)
        raw.append(static_cast<char>(static_cast<quint64>(number) >> (8 * i)));
    snapshot->find(nodeId)->insert(entryOf(key, raw));
}

} // namespace VehicleSnapshot

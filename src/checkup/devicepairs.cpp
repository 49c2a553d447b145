// SPDX-License-Identifier: MIT
#include "devicepairs.h"

#include <QHash>
#include <QSet>

namespace {

using Relation = DevicePair::Relation;

/*! A device that stands for one device only: who is there twice cannot be told from its twin. */
QHash<QString, const SnapshotNode *> devicesByKey(const Snapshot &snapshot)
{
    QHash<QString, const SnapshotNode *> devices;
    QSet<QString> twins;
    for (const SnapshotNode &node : snapshot.nodes) {
        const QString key = DeviceIdentity::of(node).toKey();
        if (!key.isEmpty() && devices.contains(key))
            twins.insert(key);
        devices.insert(key, &node);
    }
    devices.remove(QString());
    for (const QString &key : qAsConst(twins))
        devices.remove(key);
    return devices;
}

/*! What to make of two devices on the same node that are not known to be the same. */
Relation relationOnNode(const SnapshotNode &before, const SnapshotNode &after)
{
    const DeviceIdentity was = DeviceIdentity::of(before);
    const DeviceIdentity is = DeviceIdentity::of(after);
    if (!was.isKnownToDiffer(is))
        return Relation::Same;
    return was.isSameMake(is) ? Relation::Replaced : Relation::Added;
}

} // namespace

QVector<DevicePair> pairDevices(const Snapshot &before, const Snapshot &after)
{
    const QHash<QString, const SnapshotNode *> known = devicesByKey(before);
    const QHash<QString, const SnapshotNode *> now = devicesByKey(after);
    QVector<DevicePair> pairs;
    QSet<quint8> found; // nodes before
    for (auto device = now.cbegin(); device != now.cend(); ++device) {
        if (const SnapshotNode *was = known.value(device.key()))
            found.insert(was->id);
    }
    for (const SnapshotNode &node : after.nodes) {
        const QString key = DeviceIdentity::of(node).toKey();
        const SnapshotNode *was = now.contains(key) ? known.value(key) : nullptr;
        if (was != nullptr) {
            pairs.append({was->id == node.id ? Relation::Same : Relation::Moved, was, &node});
            continue;
        }
        was = found.contains(node.id) ? nullptr : before.find(node.id);
        const Relation relation = was != nullptr ? relationOnNode(*was, node) : Relation::Added;
        if (relation != Relation::Added)
            found.insert(node.id);
        pairs.append({relation, relation != Relation::Added ? was : nullptr, &node});
    }
    for (const SnapshotNode &node : before.nodes) {
        if (!found.contains(node.id))
            pairs.append({Relation::Removed, &node, nullptr});
    }
    return pairs;
}

// SPDX-License-Identifier: MIT
#include "snapshotexchange.h"

#include <canopen/cobid.h>
#include <store/nodestore.h>

#include <algorithm>

namespace {

constexpr quint16 leftOverIndex = 0x0000;

bool isWholeNumber(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return true;
    case QMetaType::ULongLong:
        return value.toULongLong() <= static_cast<qulonglong>(std::numeric_limits<qlonglong>::max());
    default:
        return false;
    }
}

SnapshotNode nodeOf(quint8 nodeId, const ObjectMap &objects)
{
    SnapshotNode node;
    node.id = nodeId;
    node.entries.reserve(objects.size());
    for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
        if (object.key().index == leftOverIndex)
            continue;
        SnapshotEntry entry;
        entry.key = {object.key().index, object.key().subIndex};
        entry.value = object.value();
        node.entries.append(entry);
    }
    return node;
}

} // namespace

void SnapshotExchange::fillStore(const Snapshot &snapshot, NodeStore &store)
{
    store.clear();
    store.clearNodeList();
    for (const SnapshotNode &node : snapshot.nodes) {
        store.appendNode(node.id);
        for (const SnapshotEntry &entry : node.entries) {
            if (entry.hasValue() && isWholeNumber(entry.value))
                store.setValue(node.id, entry.key.index, entry.key.subIndex, entry.value);
        }
    }
}

Snapshot SnapshotExchange::fromStore(const NodeStore &store)
{
    QList<quint8> nodeIds = store.nodeList();
    std::sort(nodeIds.begin(), nodeIds.end());
    nodeIds.erase(std::unique(nodeIds.begin(), nodeIds.end()), nodeIds.end());

    Snapshot snapshot;
    snapshot.scope = SnapshotScope::Imported;
    for (const quint8 nodeId : qAsConst(nodeIds)) {
        if (CanOpen::isNodeId(nodeId))
            snapshot.nodes.append(nodeOf(nodeId, store.objects(nodeId)));
    }
    return snapshot;
}

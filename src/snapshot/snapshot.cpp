// SPDX-License-Identifier: MIT
#include "snapshot.h"

#include <canopen/sdoabort.h>

#include <algorithm>

namespace {

template<typename Entries>
auto placeOf(Entries &entries, CanOpen::ObjectKey key)
{
    return std::lower_bound(
        entries.begin(), entries.end(), key,
        [](const SnapshotEntry &entry, CanOpen::ObjectKey wanted) { return entry.key < wanted; });
}

template<typename Nodes>
auto nodePlace(Nodes &nodes, quint8 nodeId)
{
    return std::find_if(nodes.begin(), nodes.end(),
                        [nodeId](const SnapshotNode &node) { return node.id == nodeId; });
}

} // namespace

bool SnapshotEntry::isGap() const
{
    const bool isWriteOnly
        = gap == SnapshotGap::Abort && abortCode == static_cast<quint32>(CanOpen::SdoAbort::WriteOnly);
    return gap != SnapshotGap::None && gap != SnapshotGap::Absent && !isWriteOnly;
}

const SnapshotEntry *SnapshotNode::find(CanOpen::ObjectKey key) const
{
    const auto place = placeOf(entries, key);
    return place != entries.end() && place->key == key ? &*place : nullptr;
}

QVariant SnapshotNode::value(quint16 index, quint8 subIndex) const
{
    const SnapshotEntry *entry = find(index, subIndex);
    return entry != nullptr ? entry->value : QVariant();
}

void SnapshotNode::insert(const SnapshotEntry &entry)
{
    const auto place = placeOf(entries, entry.key);
    if (place != entries.end() && place->key == entry.key)
        *place = entry;
    else
        entries.insert(place, entry);
}

int SnapshotNode::valueCount() const
{
    return static_cast<int>(std::count_if(entries.begin(), entries.end(),
                                          [](const SnapshotEntry &entry) { return entry.hasValue(); }));
}

int SnapshotNode::gapCount() const
{
    return static_cast<int>(std::count_if(entries.begin(), entries.end(),
                                          [](const SnapshotEntry &entry) { return entry.isGap(); }));
}

const SnapshotNode *Snapshot::find(quint8 nodeId) const
{
    const auto place = nodePlace(nodes, nodeId);
    return place != nodes.end() ? &*place : nullptr;
}

SnapshotNode *Snapshot::find(quint8 nodeId)
{
    const auto place = nodePlace(nodes, nodeId);
    return place != nodes.end() ? &*place : nullptr;
}

int Snapshot::valueCount() const
{
    int count = 0;
    for (const SnapshotNode &node : nodes)
        count += node.valueCount();
    return count;
}

int Snapshot::gapCount() const
{
    int count = 0;
    for (const SnapshotNode &node : nodes)
        count += node.gapCount();
    return count;
}

bool Snapshot::isComplete() const
{
    return std::all_of(nodes.begin(), nodes.end(), [](const SnapshotNode &node) {
        return node.end == SnapshotEnd::Complete && node.gapCount() == 0;
    });
}

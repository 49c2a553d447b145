// SPDX-License-Identifier: MIT
#include "checkuprecord.h"

#include <algorithm>

const CheckedComponent *CheckupRecord::component(quint8 nodeId) const
{
    const auto found
        = std::find_if(result.components.cbegin(), result.components.cend(),
                       [nodeId](const CheckedComponent &component) { return component.nodeId == nodeId; });
    return found == result.components.cend() ? nullptr : &*found;
}

QVector<Change> CheckupRecord::changesOf(quint8 nodeId) const
{
    QVector<Change> changes;
    if (!comparison)
        return changes;
    const QVector<Change> &all = comparison->comparison.changes;
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(changes),
                 [nodeId](const Change &change) { return change.nodeId == nodeId; });
    return changes;
}

std::array<int, CanOpen::lastNodeId + 1> CheckupRecord::changeCounts() const
{
    std::array<int, CanOpen::lastNodeId + 1> counts{};
    if (!comparison)
        return counts;
    for (const Change &change : comparison->comparison.changes)
        ++counts.at(CanOpen::isNodeId(change.nodeId) ? change.nodeId : 0);
    return counts;
}

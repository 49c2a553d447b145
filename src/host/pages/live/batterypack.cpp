// SPDX-License-Identifier: MIT
#include "batterypack.h"

#include "batteryobjects.h"

#include <algorithm>
#include <map>

namespace {

bool isBefore(const BatteryPack::Cell &a, const BatteryPack::Cell &b)
{
    return a.value < b.value;
}

} // namespace

QVector<BatteryPack> BatteryPack::of(const LiveValues &values, qint64 now)
{
    std::map<int, BatteryPack> packs; // by node and object
    for (const LiveValue &value : values.values()) {
        const CanOpen::ObjectKey object = value.object;
        const bool isCell = BatteryObjects::areCells(object.index) && object.subIndex > 0;
        if (!isCell || value.record.count() == 0)
            continue;
        BatteryPack &pack = packs[value.nodeId << 16 | object.index];
        pack.nodeId = value.nodeId;
        pack.object = object.index;
        pack.unit = value.unit;
        pack.divisor = value.divisor;
        pack.cells.append({object.subIndex, value.record.last(), value.record.isLate(now)});
    }
    QVector<BatteryPack> list;
    for (auto &[key, pack] : packs) {
        std::sort(pack.cells.begin(), pack.cells.end(),
                  [](const Cell &a, const Cell &b) { return a.number < b.number; });
        list.append(pack);
    }
    return list;
}

int BatteryPack::lowest() const
{
    return cells.isEmpty()
               ? -1
               : static_cast<int>(std::min_element(cells.cbegin(), cells.cend(), isBefore) - cells.cbegin());
}

int BatteryPack::highest() const
{
    return cells.isEmpty()
               ? -1
               : static_cast<int>(std::max_element(cells.cbegin(), cells.cend(), isBefore) - cells.cbegin());
}

double BatteryPack::spread() const
{
    return cells.isEmpty() ? 0 : cells.at(highest()).value - cells.at(lowest()).value;
}

QVector<LiveValue> BatteryPack::others(const LiveValues &values, quint8 nodeId)
{
    QVector<LiveValue> found;
    for (const CanOpen::ObjectKey object : BatteryObjects::others) {
        const int position = values.find(nodeId, object);
        if (position >= 0 && values.values()[static_cast<std::size_t>(position)].record.count() > 0)
            found.append(values.values()[static_cast<std::size_t>(position)]);
    }
    return found;
}

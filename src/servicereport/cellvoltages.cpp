// SPDX-License-Identifier: MIT
#include "cellvoltages.h"

#include <snapshot/snapshot.h>

#include <algorithm>

namespace {

constexpr quint16 firstPack = 0x6165;
constexpr quint16 lastPack = 0x6174;
constexpr quint16 highestCellVoltage = 0x6126;
constexpr quint16 lowestCellVoltage = 0x6127;

std::optional<double> numberOf(const QVariant &value)
{
    bool isNumber = false;
    const double number = value.type() == QVariant::String ? 0 : value.toDouble(&isNumber);
    return isNumber ? std::optional<double>(number) : std::nullopt;
}

/*! A pack without a limit of its own has that of the first one. */
std::optional<double> limitOf(const SnapshotNode &node, quint16 index, int pack)
{
    const SnapshotEntry *own = node.find(index, static_cast<quint8>(pack));
    const bool isAbsent = own == nullptr || own->gap == SnapshotGap::Absent;
    return numberOf(isAbsent ? node.value(index, 1) : own->value);
}

CellVoltages packOf(const SnapshotNode &node, int pack)
{
    CellVoltages voltages;
    voltages.pack = pack;
    voltages.highestAllowed = limitOf(node, highestCellVoltage, pack);
    voltages.lowestAllowed = limitOf(node, lowestCellVoltage, pack);
    for (const SnapshotEntry &entry : node.entries) {
        if (entry.key.index == firstPack + pack - 1 && entry.key.subIndex > 0
            && entry.gap != SnapshotGap::Absent)
            voltages.cells.append({entry.key.subIndex, numberOf(entry.value)});
    }
    return voltages;
}

/*! The position of the cell of which \a isBefore says that it comes before all others. */
template<typename Compare>
int extreme(const QVector<CellVoltages::Cell> &cells, Compare isBefore)
{
    int found = -1;
    for (int i = 0; i < cells.size(); ++i) {
        if (cells.at(i).millivolts
            && (found < 0 || isBefore(*cells.at(i).millivolts, *cells.at(found).millivolts)))
            found = i;
    }
    return found;
}

} // namespace

int CellVoltages::lowest() const
{
    return extreme(cells, std::less<>());
}

int CellVoltages::highest() const
{
    return extreme(cells, std::greater<>());
}

bool CellVoltages::isOutside(const Cell &cell) const
{
    return cell.millivolts
           && ((lowestAllowed && *cell.millivolts < *lowestAllowed)
               || (highestAllowed && *cell.millivolts > *highestAllowed));
}

QVector<CellVoltages> CellVoltages::of(const SnapshotNode &node)
{
    QVector<CellVoltages> packs;
    for (int pack = 1; pack <= lastPack - firstPack + 1; ++pack) {
        const CellVoltages voltages = packOf(node, pack);
        if (!voltages.cells.isEmpty())
            packs.append(voltages);
    }
    return packs;
}

bool CellVoltages::isCellObject(quint16 index)
{
    return (index >= firstPack && index <= lastPack) || index == highestCellVoltage
           || index == lowestCellVoltage;
}

// SPDX-License-Identifier: MIT
#include "vehiclemodel.h"

#include "lighticon.h"
#include "plaintooltip.h"

#include <QLocale>

#include <algorithm>

void VehicleModel::setVehicles(const QVector<VehicleInfo> &vehicles)
{
    beginResetModel();
    m_vehicles = vehicles;
    endResetModel();
}

int VehicleModel::rowOf(qint64 vehicleId) const
{
    const auto found = std::find_if(m_vehicles.cbegin(), m_vehicles.cend(),
                                    [vehicleId](const VehicleInfo &info) { return info.id == vehicleId; });
    return found == m_vehicles.cend() ? -1 : static_cast<int>(found - m_vehicles.cbegin());
}

int VehicleModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_vehicles.size();
}

int VehicleModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant VehicleModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_vehicles.size())
        return QVariant();
    const VehicleInfo &vehicle = m_vehicles.at(index.row());
    if (role == Qt::DecorationRole && index.column() == NameColumn && vehicle.lastVerdict)
        return LightIcon::of(ReportMarks::of(vehicle.lastVerdict->verdict));
    if (role == Qt::ToolTipRole)
        return plainToolTip(vehicle.called);
    if (role == Qt::TextAlignmentRole && index.column() == VisitsColumn)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (index.column()) {
    case NameColumn:
        return vehicle.called.simplified();
    case CustomerColumn:
        return vehicle.lastCustomer.simplified();
    case VisitsColumn:
        return vehicle.visitCount;
    case LastColumn:
        return QLocale().toString(vehicle.lastTime.toLocalTime().date(), QLocale::ShortFormat);
    default:
        return QVariant();
    }
}

QVariant VehicleModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case NameColumn:
        return tr("Vehicle");
    case CustomerColumn:
        return tr("Customer");
    case VisitsColumn:
        return tr("Visits");
    case LastColumn:
        return tr("Last visit");
    default:
        return QVariant();
    }
}

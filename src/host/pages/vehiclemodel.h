// SPDX-License-Identifier: MIT
#pragma once

#include <archive/visit.h>

#include <QAbstractTableModel>

/*! The vehicles of the archive as a table. */
class VehicleModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, CustomerColumn, VisitsColumn, LastColumn, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void setVehicles(const QVector<VehicleInfo> &vehicles);
    int rowOf(qint64 vehicleId) const;
    const VehicleInfo &vehicle(int row) const { return m_vehicles.at(row); }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QVector<VehicleInfo> m_vehicles;
};

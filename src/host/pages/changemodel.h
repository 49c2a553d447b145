// SPDX-License-Identifier: MIT
#pragma once

#include <checkup/comparison.h>

#include <QAbstractTableModel>
#include <QCoreApplication>

/*! The changes between two snapshots as a table. */
class ChangeModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { KindColumn, TextColumn, ObjectColumn, BeforeColumn, AfterColumn, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void setChanges(const QVector<Change> &changes);

    /*! "replaced", "counter": what kind of change it is, translated. */
    static QString kind(Change::Kind kind);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QVector<Change> m_changes;
};

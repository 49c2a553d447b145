// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <QVector>

/*! Rows of texts that are replaced now and then. What is chosen stays as long as there are as many rows. */
class RowsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /*! Every row as long as \a head. */
    void setRows(const QStringList &head, const QVector<QStringList> &rows);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    /*! All of it, cells with tabs between them. */
    QString toText() const;

private:
    QStringList m_head;
    QVector<QStringList> m_rows;
};

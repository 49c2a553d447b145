// SPDX-License-Identifier: MIT
#pragma once

#include <archive/visit.h>

#include <QAbstractTableModel>

/*! The visits of one vehicle as a table. */
class VisitModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TimeColumn, VerdictColumn, KindColumn, ValuesColumn, NoteColumn, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void setVisits(const QVector<VisitInfo> &visits);
    const VisitInfo &visit(int row) const { return m_visits.at(row); }

    /*! What was found, in words: "2 faults, 1 warning". */
    static QString verdictText(const VisitInfo &visit);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    static QString kindText(const VisitInfo &visit);
    static QString toolTip(const VisitInfo &visit);

    QVector<VisitInfo> m_visits;
};

// SPDX-License-Identifier: MIT
#include "rowsmodel.h"

void RowsModel::setRows(const QStringList &head, const QVector<QStringList> &rows)
{
    if (head == m_head && rows.size() == m_rows.size()) {
        m_rows = rows;
        if (!rows.isEmpty())
            emit dataChanged(index(0, 0), index(rows.size() - 1, head.size() - 1), {Qt::DisplayRole});
        return;
    }
    beginResetModel();
    m_head = head;
    m_rows = rows;
    endResetModel();
}

int RowsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int RowsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_head.size();
}

QVariant RowsModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid() || index.row() >= m_rows.size())
        return QVariant();
    return m_rows.at(index.row()).value(index.column());
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    return m_head.value(section);
}

QString RowsModel::toText() const
{
    QString text = m_head.join(QLatin1Char('\t')) + QLatin1Char('\n');
    for (const QStringList &row : m_rows)
        text += row.join(QLatin1Char('\t')) + QLatin1Char('\n');
    return text;
}

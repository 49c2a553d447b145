// SPDX-License-Identifier: MIT
#include "tablewriter.h"

#include <QBrush>
#include <QTableWidget>

namespace {
enum Column { NameColumn, ValueColumn };
}

int TableWriter::rowCount() const
{
    return m_table.rowCount();
}

void TableWriter::clear()
{
    m_table.clearContents();
    for (int row = m_table.rowCount() - 1; row >= 0; --row)
        m_table.removeRow(row);
}

void TableWriter::insertRow(int position, const DetailRow &row)
{
    if (!isInReach(position))
        return;
    m_table.insertRow(position);
    setName(position, row.name, row.toolTip);

    auto item = std::make_unique<QTableWidgetItem>(row.text);
    if (!row.toolTip.isEmpty())
        item->setToolTip(row.toolTip);
    if (row.color)
        item->setForeground(QBrush(*row.color));
    m_table.setItem(position, ValueColumn, item.release());
}

void TableWriter::insertWidgetRow(int position, const QString &name, const QString &toolTip,
                                  std::unique_ptr<QWidget> widget)
{
    if (!isInReach(position))
        return;
    m_table.insertRow(position);
    setName(position, name, toolTip);
    m_table.setCellWidget(position, ValueColumn, widget.release());
}

void TableWriter::insertSeparator(int position)
{
    if (isInReach(position))
        m_table.insertRow(position);
}

// The table itself inserts nothing beyond its end, and it would lose the items placed there.
bool TableWriter::isInReach(int position) const
{
    return position >= 0 && position <= m_table.rowCount();
}

void TableWriter::setName(int position, const QString &name, const QString &toolTip)
{
    auto item = std::make_unique<QTableWidgetItem>(name);
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    if (!toolTip.isEmpty())
        item->setToolTip(toolTip);
    m_table.setItem(position, NameColumn, item.release());
}

// SPDX-License-Identifier: MIT
#include "tablewriter.h"

#include <QBrush>
#include <QComboBox>
#include <QTableWidget>

#include <memory>

namespace {

enum CellColumn { NameCell, ValueCell };

/*! A list without a frame on the background of the table's row. */
std::unique_ptr<QComboBox> listBox(const QStringList &entries, const QPalette &tablePalette)
{
    constexpr int fontSize = 10; // points

    auto box = std::make_unique<QComboBox>();
    box->addItems(entries);

    QPalette palette = tablePalette;
    palette.setBrush(QPalette::Base, QBrush(QColor(255, 0, 0, 0)));
    // Only what is set explicitly holds against the application's own palette, which may be a dark one.
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::ButtonText, QPalette::WindowText})
        palette.setBrush(role, palette.brush(role));
    box->setPalette(palette);

    const QString highlight = QString::number(palette.highlight().color().rgb(), 16).mid(2); // without alpha
    box->setStyleSheet(QStringLiteral("QComboBox { background-color: rgba(0, 0, 0, 0);\nborder: 0px;}"
                                      "QComboBox QAbstractItemView { selection-color: black;"
                                      "selection-background-color: #%1;}")
                           .arg(highlight));

    QFont font = box->font();
    font.setPointSize(fontSize);
    box->setFont(font);
    return box;
}

} // namespace

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

void TableWriter::placeRow(int position, const DetailRow &row)
{
    m_table.insertRow(position);
    setName(position, row.name, row.toolTip);

    auto item = std::make_unique<QTableWidgetItem>(row.text);
    if (!row.toolTip.isEmpty())
        item->setToolTip(row.toolTip);
    if (row.color)
        item->setForeground(QBrush(*row.color));
    m_table.setItem(position, ValueCell, item.release());
}

void TableWriter::placeListRow(int position, const QString &name, const QString &toolTip,
                               const QStringList &entries)
{
    m_table.insertRow(position);
    setName(position, name, toolTip);
    m_table.setCellWidget(position, ValueCell, listBox(entries, m_table.palette()).release());
}

void TableWriter::placeSeparator(int position)
{
    m_table.insertRow(position);
}

void TableWriter::setName(int position, const QString &name, const QString &toolTip)
{
    auto item = std::make_unique<QTableWidgetItem>(name);
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    if (!toolTip.isEmpty())
        item->setToolTip(toolTip);
    m_table.setItem(position, NameCell, item.release());
}

// SPDX-License-Identifier: MIT
#include "componenttree.h"

#include <details/components.h>
#include <reader/datareader.h>

#include <QTreeWidget>

namespace {

enum Column { NameColumn, NodeColumn, NmtStateColumn, DeviceStateColumn };

constexpr int nodeIdRole = Qt::UserRole; // of the name column

} // namespace

quint8 ComponentTree::nodeId(const QTreeWidgetItem &row)
{
    return static_cast<quint8>(row.data(NameColumn, nodeIdRole).toUInt() & 0xFF);
}

void ComponentTree::clear()
{
    m_tree.clear();
}

void ComponentTree::addNodes(const DataReader &reader)
{
    QList<QTreeWidgetItem *> rows;
    const QList<quint8> nodeIds = reader.getNodeList();
    for (const quint8 nodeId : nodeIds) {
        const QVector<Component> components = componentsOf(reader.node(nodeId));
        for (const Component &component : components)
            rows.append(makeRow(component).release());
    }
    m_tree.addTopLevelItems(rows); // becomes their owner
    // Every row would be the current one in its turn; only the last one stays so, and showing a row takes its
    // time.
    m_tree.setCurrentItem(m_tree.topLevelItem(m_tree.topLevelItemCount() - 1));
    m_tree.resizeColumnToContents(NameColumn);
}

std::unique_ptr<QTreeWidgetItem> ComponentTree::makeRow(const Component &component)
{
    auto row = std::make_unique<QTreeWidgetItem>();
    row->setData(NameColumn, nodeIdRole, static_cast<int>(component.nodeId));
    row->setText(NameColumn, component.name);
    if (component.icon != nullptr)
        row->setIcon(NameColumn, iconOf(component));
    row->setText(NodeColumn, QString::number(component.nodeId));
    row->setText(DeviceStateColumn, component.deviceState);
    if (!component.toolTip.isEmpty())
        row->setToolTip(DeviceStateColumn, component.toolTip);
    return row;
}

// Reading a picture takes longer than all the rest of a row, and few classes make many rows.
QIcon ComponentTree::iconOf(const Component &component)
{
    QIcon &icon = m_icons[component.icon];
    if (icon.isNull())
        icon = QIcon(QLatin1String(component.icon));
    return icon;
}

void ComponentTree::showNmtState(quint8 node, NmtSender::NmtState state)
{
    for (int i = 0; i < m_tree.topLevelItemCount(); ++i) {
        QTreeWidgetItem *row = m_tree.topLevelItem(i);
        if (nodeId(*row) == node) {
            row->setText(NmtStateColumn, nmtStateText(state));
            return;
        }
    }
}

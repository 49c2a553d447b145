// SPDX-License-Identifier: MIT
#include "componenttree.h"

#include <details/components.h>
#include <reader/datareader.h>

#include <QIcon>
#include <QTreeWidget>

#include <memory>

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
    const QList<quint8> nodeIds = reader.getNodeList();
    for (const quint8 nodeId : nodeIds) {
        const QVector<Component> components = componentsOf(reader.node(nodeId));
        for (const Component &component : components)
            addRow(component);
    }
    // Every row would be the current one in its turn; only the last one stays so, and showing a row takes its
    // time.
    m_tree.setCurrentItem(m_tree.topLevelItem(m_tree.topLevelItemCount() - 1));
    m_tree.resizeColumnToContents(NameColumn);
}

void ComponentTree::addRow(const Component &component)
{
    auto row = std::make_unique<QTreeWidgetItem>();
    row->setData(NameColumn, nodeIdRole, static_cast<int>(component.nodeId));
    row->setText(NameColumn, component.name);
    if (component.icon != nullptr)
        row->setIcon(NameColumn, QIcon(QLatin1String(component.icon)));
    row->setText(NodeColumn, QString::number(component.nodeId));
    row->setText(DeviceStateColumn, component.deviceState);
    if (!component.toolTip.isEmpty())
        row->setToolTip(DeviceStateColumn, component.toolTip);
    m_tree.addTopLevelItem(row.release());
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

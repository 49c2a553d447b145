// SPDX-License-Identifier: MIT
#include "componenttree.h"

#include <details/components.h>
#include <reader/datareader.h>

#include <QHeaderView>
#include <QLoggingCategory>
#include <QSet>
#include <QTreeWidget>

#include <algorithm>

namespace {

Q_LOGGING_CATEGORY(lcTree, "ui.tree")

enum Column { NameColumn, NodeColumn, NmtStateColumn, DeviceStateColumn };

constexpr int nodeIdRole = Qt::UserRole;   // of the name column
constexpr int nmtStateRole = Qt::UserRole; // of the NMT state's column; absent while no state is known

/*! 127 nodes, each with as many virtual devices as the tree looks at. */
constexpr int maximumRows = 127 * 127;

QVector<Component> allComponents(const DataReader &reader)
{
    QVector<Component> components;
    const QList<quint8> nodeIds = reader.getNodeList();
    for (const quint8 nodeId : nodeIds) {
        // A list that an import has filled may hold a node many times over.
        if (components.size() >= maximumRows) {
            qCDebug(lcTree) << "The tree ends at" << maximumRows << "rows, more than any bus has";
            break;
        }
        components += componentsOf(reader.node(nodeId));
    }
    return components;
}

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
    const QVector<Component> components = allComponents(reader);
    QList<QTreeWidgetItem *> rows;
    for (const Component &component : components)
        rows.append(makeRow(component).release());
    m_tree.addTopLevelItems(rows); // becomes their owner
    // Every row would be the current one in its turn; only the last one stays so, and showing a row takes its
    // time.
    QTreeWidgetItem *last = m_tree.topLevelItem(m_tree.topLevelItemCount() - 1);
    m_tree.scrollToItem(last); // or selecting it would add up the heights of all rows before
    m_tree.setCurrentItem(last);
    fitColumns();
}

void ComponentTree::retranslate(const DataReader &reader)
{
    const QVector<Component> components = allComponents(reader);
    if (components.size() != m_tree.topLevelItemCount())
        return;
    for (int i = 0; i < components.size(); ++i) {
        if (nodeId(*m_tree.topLevelItem(i)) != components.at(i).nodeId)
            return;
    }
    for (int i = 0; i < components.size(); ++i)
        fillRow(*m_tree.topLevelItem(i), components.at(i));
    fitColumns();
}

std::unique_ptr<QTreeWidgetItem> ComponentTree::makeRow(const Component &component)
{
    auto row = std::make_unique<QTreeWidgetItem>();
    row->setData(NameColumn, nodeIdRole, static_cast<int>(component.nodeId));
    if (component.icon != nullptr)
        row->setIcon(NameColumn, iconOf(component));
    row->setText(NodeColumn, QString::number(component.nodeId));
    fillRow(*row, component);
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

void ComponentTree::fillRow(QTreeWidgetItem &row, const Component &component)
{
    row.setText(NameColumn, component.name);
    row.setText(DeviceStateColumn, component.deviceState);
    if (!component.toolTip.isEmpty())
        row.setToolTip(DeviceStateColumn, component.toolTip);
    const QVariant state = row.data(NmtStateColumn, nmtStateRole);
    if (state.isValid())
        row.setText(NmtStateColumn, nmtStateText(state.toInt()));
}

void ComponentTree::fitColumns()
{
    m_tree.header()->resizeSection(NameColumn, contentsWidth(NameColumn));
    widenColumns();
}

// With a large font a state is wider than a column is at first.
void ComponentTree::widenColumns()
{
    for (const int column : {NodeColumn, NmtStateColumn}) {
        const int width = contentsWidth(column);
        if (m_tree.columnWidth(column) < width)
            m_tree.setColumnWidth(column, width);
    }
}

// What QTreeView::resizeColumnToContents() makes of a column, with each text laid out once instead of once a row.
int ComponentTree::contentsWidth(int column) const
{
    int width = m_tree.header()->sectionSizeHint(column);
    const int indentation = column == NameColumn && m_tree.rootIsDecorated() ? m_tree.indentation() : 0;
    QSet<QString> measured;
    for (int i = 0; i < m_tree.topLevelItemCount(); ++i) {
        const QTreeWidgetItem *row = m_tree.topLevelItem(i);
        // Rows of one name have one picture.
        if (measured.contains(row->text(column)))
            continue;
        measured.insert(row->text(column));
        const QModelIndex index = m_tree.model()->index(i, column);
        width = std::max(width, m_tree.sizeHintForIndex(index).width() + indentation);
    }
    return width;
}

void ComponentTree::showNmtState(quint8 node, NmtSender::NmtState state)
{
    for (int i = 0; i < m_tree.topLevelItemCount(); ++i) {
        QTreeWidgetItem *row = m_tree.topLevelItem(i);
        if (nodeId(*row) == node) {
            row->setData(NmtStateColumn, nmtStateRole, static_cast<int>(state));
            row->setText(NmtStateColumn, nmtStateText(state));
            widenColumns();
            return;
        }
    }
}

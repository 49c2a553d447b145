// SPDX-License-Identifier: MIT
#include "componenttree.h"

#include "objecttooltip.h"
#include "overviewtr.h"

#include <interpreter/componentclass.h>
#include <interpreter/datainterpreter.h>
#include <reader/datareader.h>

#include <QDebug>
#include <QIcon>
#include <QTreeWidget>

#include <iterator>
#include <memory>

namespace {

enum Column { NameColumn, NodeColumn, NmtStateColumn, DeviceStateColumn };

constexpr int nodeIdRole = Qt::UserRole; // of the name column

constexpr quint16 virtualDevices = 0x6000;
constexpr quint16 deviceStatus = 0x6002;
constexpr quint32 virtualDeviceLimit = 128; // sub-indices of 6000h from here on are not looked at

constexpr const char *nmtStateTexts[] = {
    QT_TRANSLATE_NOOP("OverviewForm", "Unknown"), QT_TRANSLATE_NOOP("OverviewForm", "Boot-up"),
    QT_TRANSLATE_NOOP("OverviewForm", "Pre-Op"),  QT_TRANSLATE_NOOP("OverviewForm", "Operational"),
    QT_TRANSLATE_NOOP("OverviewForm", "Stopped"),
};
static_assert(std::size(nmtStateTexts) == NmtSender::Stopped + 1);

} // namespace

quint8 ComponentTree::nodeId(const QTreeWidgetItem &row)
{
    return static_cast<quint8>(row.data(NameColumn, nodeIdRole).toUInt() & 0xFF);
}

QString ComponentTree::nmtStateText(NmtSender::NmtState state)
{
    const auto number = static_cast<std::size_t>(state);
    return number < std::size(nmtStateTexts) ? Tr::tr(nmtStateTexts[number]) : QString();
}

void ComponentTree::clear()
{
    m_tree.clear();
}

void ComponentTree::addNodes(const DataReader &reader)
{
    const QList<quint8> nodeIds = reader.getNodeList();
    for (const quint8 nodeId : nodeIds)
        addNode(reader.node(nodeId));
    // Every row would be the current one in its turn; only the last one stays so, and showing a row takes its
    // time.
    m_tree.setCurrentItem(m_tree.topLevelItem(m_tree.topLevelItemCount() - 1));
    m_tree.resizeColumnToContents(NameColumn);
}

void ComponentTree::addNode(const NodeView &node)
{
    qDebug() << "Handling of node" << node.nodeId();
    const quint32 count = node.entryCount(virtualDevices).value_or(0) & 0xFF;
    qDebug() << "sub0 value = " << count;

    for (quint32 s = 1; s <= count && s < virtualDeviceLimit; ++s) {
        const std::optional<QVariant> entry = node.value(virtualDevices, static_cast<quint8>(s));
        if (!entry)
            continue;
        if (const ComponentClass *componentClass
            = findComponentClass(static_cast<quint8>(entry->toUInt() & 0xFF)))
            addRow(node, *componentClass);
    }
}

void ComponentTree::addRow(const NodeView &node, const ComponentClass &componentClass)
{
    auto row = std::make_unique<QTreeWidgetItem>();
    row->setData(NameColumn, nodeIdRole, static_cast<int>(node.nodeId()));
    row->setText(NameColumn, componentClassName(componentClass, node.nodeId()));
    if (componentClass.icon != nullptr)
        row->setIcon(NameColumn, QIcon(QLatin1String(componentClass.icon)));
    row->setText(NodeColumn, QString::number(node.nodeId()));

    // The state is the node's: all its rows show that of the first virtual device.
    if (const std::optional<QVariant> status = node.value(deviceStatus, 1)) {
        QString flags;
        QString state;
        DataInterpreter::interpretDeviceStatus(*status, flags, state);
        row->setText(DeviceStateColumn, state);
        row->setToolTip(DeviceStateColumn, objectToolTip(deviceStatus, *status));
    }

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

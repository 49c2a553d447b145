// SPDX-License-Identifier: MIT
#pragma once

#include <plugin/interface/nmtsender.h>

#include <QString>

class DataReader;
class NodeView;
class QTreeWidget;
class QTreeWidgetItem;
struct ComponentClass;

/*! Fills the tree of components: one top-level row for each virtual device of each node found.
 *
 *  Columns: name and icon of the component class, node ID, NMT state, state of the device. Only the first row
 * of a node shows its NMT state. A light object around a tree that it does not own.
 */
class ComponentTree
{
public:
    explicit ComponentTree(QTreeWidget &tree)
        : m_tree(tree)
    {
    }

    /*! The node of a row. */
    static quint8 nodeId(const QTreeWidgetItem &row);

    /*! The text of an NMT state, empty for a number that is none. */
    static QString nmtStateText(NmtSender::NmtState state);

    void clear();

    /*! Adds the rows of the nodes that \a reader knows; the last one becomes the current row. */
    void addNodes(const DataReader &reader);

    /*! Writes a node's NMT state into its first row; does nothing for a node without a row. */
    void showNmtState(quint8 nodeId, NmtSender::NmtState state);

private:
    void addNode(const NodeView &node);
    void addRow(const NodeView &node, const ComponentClass &componentClass);

    QTreeWidget &m_tree;
};

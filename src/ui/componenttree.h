// SPDX-License-Identifier: MIT
#pragma once

#include <interface/nmtsender.h>

#include <QHash>
#include <QIcon>

#include <memory>

class DataReader;
class QTreeWidget;
class QTreeWidgetItem;
struct Component;

/*! Fills the tree of components: one top-level row for each virtual device of each node found.
 *
 *  Columns: name and icon of the component class, node ID, NMT state, state of the device. Only the first row
 *  of a node shows its NMT state. A light object around a tree that it does not own.
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

    void clear();

    /*! Adds the rows of the nodes that \a reader knows; the last one becomes the current row. Ends, with a debug line,
     *  after the node with which the tree has more rows than a bus can have components.
     */
    void addNodes(const DataReader &reader);

    /*! Writes the texts of the rows again in the language of now; which row is current and the NMT states stay.
     *  Does nothing when the rows are not those of \a reader.
     */
    void retranslate(const DataReader &reader);

    /*! Writes a node's NMT state into its first row; does nothing for a node without a row. */
    void showNmtState(quint8 nodeId, NmtSender::NmtState state);

    /*! Makes the first column as wide as its contents and header, and others wider where they need it. */
    void fitColumns();

private:
    std::unique_ptr<QTreeWidgetItem> makeRow(const Component &component);
    QIcon iconOf(const Component &component);
    static void fillRow(QTreeWidgetItem &row, const Component &component);
    void widenColumns();
    int contentsWidth(int column) const;

    QTreeWidget &m_tree;
    QHash<const char *, QIcon> m_icons; // by their resource
};

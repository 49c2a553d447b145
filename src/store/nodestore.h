// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMap>
#include <QVariant>
#include <QVector>

/*! Index and sub-index of one object dictionary entry (CiA 301). Ordered by index, then by sub-index. */
struct ObjectKey
{
    quint16 index = 0;
    quint8 subIndex = 0;
};
Q_DECLARE_TYPEINFO(ObjectKey, Q_PRIMITIVE_TYPE);

constexpr bool operator==(ObjectKey a, ObjectKey b)
{
    return a.index == b.index && a.subIndex == b.subIndex;
}
constexpr bool operator!=(ObjectKey a, ObjectKey b)
{
    return !(a == b);
}
constexpr bool operator<(ObjectKey a, ObjectKey b)
{
    return a.index != b.index ? a.index < b.index : a.subIndex < b.subIndex;
}

/*! Everything known of one node, in the order of the keys. */
using ObjectMap = QMap<ObjectKey, QVariant>;

/*! All object values known of the bus, node by node, and beside them the list of the nodes found.
 *
 *  A value is what the host's SDO client delivered, or a `qlonglong` when it came from an exchange file. The
 *  two halves are independent: values are kept for nodes that are not listed, and clear() leaves the list
 *  alone.
 */
class NodeStore
{
public:
    static constexpr int nodeCount = 128; //!< node IDs 0 to 127; 0 is a slot like the others

    /*! Copies the value to \a value and returns true; without the entry \a value stays as it is. */
    bool getValue(quint8 nodeId, quint16 index, quint8 subIndex, QVariant &value) const;

    /*! Adds or replaces a value. Node IDs of 128 and more have no place and are dropped. */
    void setValue(quint8 nodeId, quint16 index, quint8 subIndex, const QVariant &value);

    /*! The indices that a node has values of, ascending, each once. */
    QList<quint16> getIndexList(quint8 nodeId) const;

    /*! The sub-indices that a node has values of under \a index, ascending. */
    QList<quint8> getSubIndexList(quint8 nodeId, quint16 index) const;

    /*! Forgets all values; the list of nodes stays. */
    void clear();

    /*! A node's values in key order, empty for a node without any. The reference is good until the next
     *  change of the store; a copy is cheap, since it shares the values.
     */
    const ObjectMap &objects(quint8 nodeId) const;

    /*! The node IDs found, in the order in which they were found, sorted or imported. */
    const QList<quint8> &nodeList() const { return m_nodeList; }

    /*! Appends a node ID, whether it is listed already or not. */
    void appendNode(quint8 nodeId) { m_nodeList.append(nodeId); }

    void sortNodeList();
    void clearNodeList() { m_nodeList.clear(); }

private:
    QVector<ObjectMap> m_nodes; // no maps until the first clear() or setValue(), then nodeCount
    QList<quint8> m_nodeList;
};

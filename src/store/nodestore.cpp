// SPDX-License-Identifier: MIT
#include "nodestore.h"

#include <algorithm>

bool NodeStore::getValue(quint8 nodeId, quint16 index, quint8 subIndex, QVariant &value) const
{
    const ObjectMap &map = objects(nodeId);
    const auto entry = map.constFind(ObjectKey{index, subIndex});
    if (entry == map.constEnd())
        return false;
    value = *entry;
    return true;
}

void NodeStore::setValue(quint8 nodeId, quint16 index, quint8 subIndex, const QVariant &value)
{
    if (nodeId >= nodeCount)
        return;
    if (m_nodes.isEmpty())
        m_nodes.resize(nodeCount);
    m_nodes[nodeId].insert(ObjectKey{index, subIndex}, value);
}

QList<quint16> NodeStore::getIndexList(quint8 nodeId) const
{
    QList<quint16> indices;
    const ObjectMap &map = objects(nodeId);
    for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry) {
        if (indices.isEmpty() || indices.constLast() != entry.key().index)
            indices.append(entry.key().index);
    }
    return indices;
}

QList<quint8> NodeStore::getSubIndexList(quint8 nodeId, quint16 index) const
{
    QList<quint8> subIndices;
    const ObjectMap &map = objects(nodeId);
    for (auto entry = map.lowerBound(ObjectKey{index, 0}); entry != map.constEnd(); ++entry) {
        if (entry.key().index != index)
            break;
        subIndices.append(entry.key().subIndex);
    }
    return subIndices;
}

void NodeStore::clear()
{
    m_nodes.clear();
    m_nodes.resize(nodeCount);
}

const ObjectMap &NodeStore::objects(quint8 nodeId) const
{
    static const ObjectMap noObjects;
    return nodeId < m_nodes.size() ? m_nodes.at(nodeId) : noObjects;
}

void NodeStore::sortNodeList()
{
    std::sort(m_nodeList.begin(), m_nodeList.end());
}

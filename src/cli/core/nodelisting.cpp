// SPDX-License-Identifier: MIT
#include "nodelisting.h"

#include <details/nodedetails.h>
#include <store/nodestore.h>
#include <store/nodeview.h>

#include <QSet>

ListedNode listNode(const NodeStore &store, quint8 nodeId)
{
    TextRows parameters;
    TextRows values;
    NodeDetails(store, parameters, values).showNode(nodeId);

    ListedNode node;
    node.id = nodeId;
    node.components = componentsOf(NodeView(store, nodeId));
    node.parameters = parameters.rows();
    node.values = values.rows();
    return node;
}

QVector<ListedNode> listNodes(const NodeStore &store)
{
    QVector<ListedNode> nodes;
    QSet<quint8> listed;
    for (const quint8 nodeId : store.nodeList()) {
        if (listed.contains(nodeId))
            continue;
        listed.insert(nodeId);
        nodes.append(listNode(store, nodeId));
    }
    return nodes;
}

// SPDX-License-Identifier: MIT
#pragma once

#include <details/components.h>
#include <details/textrows.h>

#include <QVector>

class NodeStore;
class QByteArray;

/*! What is shown of one node. */
struct ListedNode
{
    quint8 id = 0;
    QString nmtState; //!< empty when it is not known
    QVector<Component> components;
    QVector<TextRows::Row> parameters;
    QVector<TextRows::Row> values;
};

/*! One node as the window would show it. */
ListedNode listNode(const NodeStore &store, quint8 nodeId);

/*! The nodes of the store's list in its order, each once, whether they hold components or not. */
QVector<ListedNode> listNodes(const NodeStore &store);

/*! The nodes as text for people: the components as in the window's tree, then the two tables of each node.
 */
QString listingText(const QVector<ListedNode> &nodes);

/*! The nodes as JSON (RFC 8259, UTF-8), with a line end. Empty rows are left out; the texts are unchanged. */
QByteArray listingJson(const QVector<ListedNode> &nodes);

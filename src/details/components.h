// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

class NodeView;

/*! One component of the bus: a virtual device of a node (CiA 454), as the tree shows it. */
struct Component
{
    quint8 nodeId = 0;
    QString name;               //!< of the component class, translated
    const char *icon = nullptr; //!< resource path of the 32 pixel icon; null for a class without one
    QString deviceState;        //!< the node's, whichever virtual device this is; empty when not stored
    QString toolTip;            //!< of the state; empty when there is none
};

/*! The components of one node, in the order of their sub-indices of object 6000h; none when it has no virtual
 *  device of a known class. Writes two debug lines.
 */
QVector<Component> componentsOf(const NodeView &node);

/*! The text of an NMT state by its number in the host's list of states: 0 unknown, 1 boot-up, 2
 *  pre-operational, 3 operational, 4 stopped. Empty for any other number.
 */
QString nmtStateText(int state);

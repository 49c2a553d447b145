// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/deviceidentity.h>
#include <snapshot/snapshot.h>

#include <QVector>

/*! A device in two snapshots. */
struct DevicePair
{
    enum class Relation : quint8 {
        Same,     //!< on the same node
        Moved,    //!< the same on another node
        Replaced, //!< another one of the same make on the same node
        Added,
        Removed
    };

    Relation relation = Relation::Same;
    const SnapshotNode *before = nullptr; //!< null when added
    const SnapshotNode *after = nullptr;  //!< null when removed
};

/*! Finds the devices of one snapshot in another: by identity, which may be on another node, then by the node. A device
 *  that did not tell all of its identity in one of them is taken for the one on its node, unless what it told is of another
 *  one. Ordered by the node after, those that
 *  were removed last.
 */
QVector<DevicePair> pairDevices(const Snapshot &before, const Snapshot &after);

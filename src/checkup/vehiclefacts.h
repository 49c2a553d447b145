// SPDX-License-Identifier: MIT
#pragma once

#include "devicename.h"
#include "fact.h"
#include "operand.h"

#include <canopen/objectkey.h>
#include <snapshot/deviceidentity.h>
#include <snapshot/snapshot.h>

#include <QVector>

/*! A fact, or what would have had to be read for it. */
struct FactValue
{
    Operand operand;
    QVector<CanOpen::ObjectKey> missing; //!< of the node that was asked about
};

/*! What a snapshot says about its nodes as a whole: who they are, who is there twice, what their versions are.
 *  Collected once; the snapshot has to outlive it.
 */
class VehicleFacts
{
public:
    /*! The names of devices that did not tell theirs are taken from \a earlier, which may be null. */
    explicit VehicleFacts(const Snapshot &snapshot, const Snapshot *earlier = nullptr);

    const Snapshot &snapshot() const { return m_snapshot; }
    int nodeCount() const { return m_nodes.size(); }

    /*! Null for position -1, the vehicle. */
    const SnapshotNode *node(int position) const;
    const DeviceIdentity &identity(int position) const { return m_nodes.at(position).identity; }
    const DeviceName &name(int position) const { return m_nodes.at(position).name; }

    /*! See unreadClasses(). */
    const QVector<CanOpen::ObjectKey> &missingClasses(int position) const
    {
        return m_nodes.at(position).missingClasses;
    }

    /*! Of the number facts; \a position -1: of the vehicle. */
    FactValue number(Fact fact, int position) const;
    /*! Of the text facts. */
    QString text(Fact fact, int position) const;

private:
    struct Node
    {
        DeviceIdentity identity;
        DeviceName name;
        QVector<CanOpen::ObjectKey> missingClasses;
        QVector<CanOpen::ObjectKey> missingIdentity;
        QVector<quint8> twins; // IDs
    };

    void findTwins();
    void findVersions();
    FactValue numberOfNode(Fact fact, int position) const;
    Operand behaviour(Fact fact, const SnapshotNode &node) const;

    const Snapshot &m_snapshot;
    QVector<Node> m_nodes;
    int m_usualBootUps = 0; // of a node that was only switched on
    int m_versionConflicts = 0;
    QString m_versionNodes;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "devicename.h"
#include "factsource.h"

#include <snapshot/deviceidentity.h>
#include <snapshot/snapshot.h>

#include <QVector>

/*! What a snapshot says about its nodes as a whole: who they are, who is there twice, what their versions are.
 *  Collected once; the snapshot has to outlive it.
 */
class VehicleFacts : public FactSource
{
public:
    /*! The names of devices that did not tell theirs are taken from \a earlier, which may be null. */
    explicit VehicleFacts(const Snapshot &snapshot, const Snapshot *earlier = nullptr);

    const Snapshot &snapshot() const { return m_snapshot; }
    int nodeCount() const { return m_nodes.size(); }

    /*! Null for position -1, the vehicle. */
    const SnapshotNode *node(int position) const override;
    quint8 nodeId(int position) const override;
    const DeviceIdentity &identity(int position) const { return m_nodes.at(position).identity; }
    const DeviceName &name(int position) const { return m_nodes.at(position).name; }

    /*! See unreadClasses(). */
    const QVector<CanOpen::ObjectKey> &missingClasses(int position) const
    {
        return m_nodes.at(position).missingClasses;
    }

    FactValue number(Fact fact, int position) const override;
    QString text(Fact fact, int position) const override;

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

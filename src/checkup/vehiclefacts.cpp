// SPDX-License-Identifier: MIT
#include "vehiclefacts.h"

#include <interpreter/objects.h>

#include <QHash>
#include <QMap>
#include <QStringList>

#include <algorithm>

using CanOpen::ObjectKey;

namespace {

constexpr quint8 identityEntries[] = {1, 2, 4}; // vendor, product, serial number

bool isMissing(const SnapshotNode &node, ObjectKey key)
{
    const SnapshotEntry *entry = node.find(key);
    return entry == nullptr || entry->isGap();
}

QVector<ObjectKey> missingIdentity(const SnapshotNode &node)
{
    QVector<ObjectKey> missing;
    for (const quint8 sub : identityEntries) {
        if (isMissing(node, {Object::identity, sub}))
            missing.append({Object::identity, sub});
    }
    return missing;
}

int medianBootUps(const Snapshot &snapshot)
{
    QVector<int> bootUps;
    for (const SnapshotNode &node : snapshot.nodes)
        bootUps.append(node.bootUps);
    std::sort(bootUps.begin(), bootUps.end());
    return bootUps.isEmpty() ? 0 : bootUps.at(bootUps.size() / 2);
}

QString listOf(const QVector<quint8> &nodes)
{
    QStringList texts;
    for (const quint8 node : nodes)
        texts.append(QString::number(node));
    return texts.join(QStringLiteral(", "));
}

/*! Number of a profile and its part: the upper 16 bits of an implemented profile version (600Eh). */
constexpr quint32 partOf(quint32 version)
{
    return version >> 16;
}

/*! "454.1.2.0": as interpretSpecificationVersions() writes it. */
QString versionText(quint32 version)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(version >> 22)
        .arg(version >> 16 & 0x3F)
        .arg(version >> 8 & 0xFF)
        .arg(version & 0xFF);
}

} // namespace

VehicleFacts::VehicleFacts(const Snapshot &snapshot, const Snapshot *earlier)
    : m_snapshot(snapshot)
{
    m_nodes.reserve(snapshot.nodes.size());
    for (const SnapshotNode &node : snapshot.nodes)
        m_nodes.append({DeviceIdentity::of(node),
                        DeviceName::of(node, earlier),
                        unreadClasses(node),
                        missingIdentity(node),
                        {}});
    m_usualBootUps = qMin(medianBootUps(snapshot), 1);
    findTwins();
    findVersions();
}

void VehicleFacts::findTwins()
{
    QHash<QString, QVector<int>> positions;
    for (int i = 0; i < m_nodes.size(); ++i) {
        if (m_nodes.at(i).identity.isUnique())
            positions[m_nodes.at(i).identity.toKey()].append(i);
    }
    for (const QVector<int> &same : qAsConst(positions)) {
        for (const int position : same) {
            for (const int other : same) {
                if (other != position)
                    m_nodes[position].twins.append(m_snapshot.nodes.at(other).id);
            }
        }
    }
}

void VehicleFacts::findVersions()
{
    QMap<quint32, QVector<quint8>> nodesOfVersion;
    for (const SnapshotNode &node : m_snapshot.nodes) {
        const uint count = qMin(node.value(Object::profileVersions, 0).toUInt(), 0xFFu);
        for (uint sub = 1; sub <= count; ++sub) {
            const QVariant version = node.value(Object::profileVersions, static_cast<quint8>(sub));
            QVector<quint8> &nodes = nodesOfVersion[version.toUInt()];
            if (nodes.isEmpty() || nodes.last() != node.id)
                nodes.append(node.id);
        }
    }
    nodesOfVersion.remove(0); // an entry that says nothing
    QMap<quint32, QStringList> versionsOfPart;
    for (auto version = nodesOfVersion.cbegin(); version != nodesOfVersion.cend(); ++version)
        versionsOfPart[partOf(version.key())].append(
            QStringLiteral("%1 (%2)").arg(versionText(version.key()), listOf(version.value())));
    QStringList conflicts;
    for (const QStringList &versions : qAsConst(versionsOfPart)) {
        if (versions.size() > 1)
            conflicts.append(versions.join(QStringLiteral(", ")));
    }
    m_versionConflicts = conflicts.size();
    m_versionNodes = conflicts.join(QStringLiteral("; "));
}

const SnapshotNode *VehicleFacts::node(int position) const
{
    return position >= 0 ? &m_snapshot.nodes.at(position) : nullptr;
}

quint8 VehicleFacts::nodeId(int position) const
{
    return position >= 0 ? m_snapshot.nodes.at(position).id : quint8(0);
}

FactValue VehicleFacts::number(Fact fact, int position) const
{
    if (isBusFact(fact))
        return {Operand::absent(), {}};
    switch (fact) {
    case Fact::VehicleNodes:
        return {Operand::of(m_nodes.size()), {}};
    case Fact::VehicleSeconds:
        return {Operand::of(static_cast<double>(m_snapshot.duration) / 1000), {}};
    case Fact::VehicleVersionConflicts:
        return {Operand::of(m_versionConflicts), {}};
    default:
        return position >= 0 ? numberOfNode(fact, position) : FactValue();
    }
}

FactValue VehicleFacts::numberOfNode(Fact fact, int position) const
{
    const SnapshotNode &node = m_snapshot.nodes.at(position);
    const Node &known = m_nodes.at(position);
    switch (fact) {
    case Fact::NodeId:
        return {Operand::of(node.id), {}};
    case Fact::NodeIsSilent:
        return {Operand::truth(node.end == SnapshotEnd::Silent), {}};
    case Fact::NodeValues:
        return {Operand::of(node.valueCount()), {}};
    case Fact::NodeTwins:
        if (!known.missingIdentity.isEmpty())
            return {Operand::unknown(), known.missingIdentity};
        return {known.identity.isUnique() ? Operand::of(known.twins.size()) : Operand::absent(), {}};
    default:
        return {behaviour(fact, node), {}};
    }
}

/*! How a node behaved on the bus, which an exchange file does not tell. A trace may be shorter than the time between two
 *  heartbeats.
 */
Operand VehicleFacts::behaviour(Fact fact, const SnapshotNode &node) const
{
    const bool isStateUnknown = m_snapshot.scope == SnapshotScope::Recorded && !node.nmtState
                                && (fact == Fact::NodeState || fact == Fact::NodeIsHeard);
    if (m_snapshot.scope == SnapshotScope::Imported || isStateUnknown)
        return Operand::unknown();
    switch (fact) {
    case Fact::NodeState:
        return node.nmtState ? Operand::of(static_cast<double>(*node.nmtState)) : Operand::absent();
    case Fact::NodeIsHeard:
        return Operand::truth(node.nmtState.has_value());
    case Fact::NodeIsStopped:
        return Operand::truth(node.end == SnapshotEnd::Stopped
                              || node.nmtState == CanOpen::NmtState::Stopped);
    case Fact::NodeRestarts:
        return Operand::of(qMax(0, node.bootUps - m_usualBootUps));
    case Fact::NodeAnswer:
        return node.medianAnswer ? Operand::of(*node.medianAnswer) : Operand::absent();
    case Fact::NodeLongestAnswer:
        return node.longestAnswer ? Operand::of(*node.longestAnswer) : Operand::absent();
    default:
        return Operand::absent();
    }
}

QString VehicleFacts::text(Fact fact, int position) const
{
    switch (fact) {
    case Fact::NodeTwinNodes:
        return position >= 0 ? listOf(m_nodes.at(position).twins) : QString();
    case Fact::NodeName:
        return position >= 0 ? m_nodes.at(position).name.text : QString();
    case Fact::VehicleVersionNodes:
        return m_versionNodes;
    default:
        return QString();
    }
}

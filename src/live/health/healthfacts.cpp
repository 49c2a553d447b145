// SPDX-License-Identifier: MIT
#include "healthfacts.h"

#include <bus/buswords.h>

namespace {

constexpr double percent = 100;
constexpr double millisecondsOfSecond = 1000;

Operand countOperand(quint64 number)
{
    return Operand::of(double(number));
}

Operand orAbsent(std::optional<double> number)
{
    return number ? Operand::of(*number) : Operand::absent();
}

/*! A load is there whether the bit rate is known or not. */
Operand loadOperand(std::optional<double> load)
{
    return load ? Operand::of(*load * percent) : Operand::unknown();
}

Operand controllerOperand(InterfaceHealth::State state)
{
    switch (state) {
    case InterfaceHealth::State::Good:
        return Operand::of(0);
    case InterfaceHealth::State::Warning:
        return Operand::of(1);
    case InterfaceHealth::State::Passive:
        return Operand::of(2);
    case InterfaceHealth::State::BusOff:
        return Operand::of(3);
    case InterfaceHealth::State::Unknown:
        break;
    }
    return Operand::absent();
}

} // namespace

FactValue HealthFacts::number(Fact fact, int position) const
{
    const Operand ofAll = ofBus(fact);
    if (ofAll.kind != Operand::Kind::Absent || position < 0)
        return {ofAll, {}};
    return {ofNode(fact, m_numbers.nodes.at(position)), {}};
}

Operand HealthFacts::ofBus(Fact fact) const
{
    switch (fact) {
    case Fact::VehicleNodes:
    case Fact::BusNodes:
        return Operand::of(m_numbers.heardNodes());
    case Fact::VehicleSeconds:
        return Operand::of(m_numbers.duration / millisecondsOfSecond);
    case Fact::BusBitRate:
        return m_numbers.bitRate > 0 ? Operand::of(m_numbers.bitRate) : Operand::unknown();
    case Fact::BusLoad:
        return loadOperand(m_numbers.meanLoad);
    case Fact::BusPeak:
        return loadOperand(m_numbers.peakLoad);
    case Fact::BusFrames:
        return countOperand(m_numbers.frames);
    case Fact::BusController:
        return controllerOperand(m_numbers.controller);
    case Fact::BusOverruns:
        return errorOperand(m_numbers.overruns);
    case Fact::BusErrors:
        return errorOperand(m_numbers.busErrors);
    case Fact::BusForeignNodes:
        return Operand::of(m_numbers.nodesAskedByOthers().size());
    default:
        return Operand::absent();
    }
}

Operand HealthFacts::errorOperand(quint64 number) const
{
    return m_numbers.areErrorsKnown() ? countOperand(number) : Operand::unknown();
}

Operand HealthFacts::ofNode(Fact fact, const NodeNumbers &node)
{
    switch (fact) {
    case Fact::NodeId:
        return Operand::of(node.id);
    case Fact::NodeState:
        return node.state ? Operand::of(double(*node.state)) : Operand::absent();
    case Fact::NodeIsHeard:
        return Operand::truth(node.frames > 0);
    case Fact::NodeIsAway:
        return Operand::truth(node.isAway);
    case Fact::NodeIsStopped:
        return Operand::truth(node.state == CanOpen::NmtState::Stopped);
    case Fact::NodeRestarts:
        return countOperand(node.restarts);
    case Fact::NodeEmergencies:
        return countOperand(node.emergencies);
    case Fact::NodeLastEmergency:
        return node.lastEmergency ? Operand::of(*node.lastEmergency) : Operand::absent();
    case Fact::NodeHasError:
        return Operand::truth(node.hasOpenError);
    default:
        break;
    }
    const Operand heartbeat = ofHeartbeat(fact, node);
    return heartbeat.kind != Operand::Kind::Absent ? heartbeat : ofSdo(fact, node.sdo);
}

Operand HealthFacts::ofHeartbeat(Fact fact, const NodeNumbers &node)
{
    const HeartbeatNumbers &heartbeat = node.heartbeat;
    switch (fact) {
    case Fact::NodeHeartbeats:
        return countOperand(heartbeat.count);
    case Fact::NodeHeartbeatPeriod:
        return orAbsent(heartbeat.period);
    case Fact::NodeConfiguredHeartbeat:
        return orAbsent(heartbeat.configured);
    case Fact::NodeHeartbeatJitter:
        return orAbsent(heartbeat.jitter);
    case Fact::NodeLongestGap:
        return orAbsent(heartbeat.longestGap);
    case Fact::NodeLateHeartbeats:
        return countOperand(heartbeat.late);
    case Fact::NodeMissedHeartbeats:
        return countOperand(heartbeat.missed);
    case Fact::NodeIsLost:
        return Operand::truth(heartbeat.isLost);
    default:
        return Operand::absent();
    }
}

Operand HealthFacts::ofSdo(Fact fact, const SdoNumbers &sdo)
{
    switch (fact) {
    case Fact::NodeAnswer:
        return orAbsent(sdo.median);
    case Fact::NodeLongestAnswer:
        return orAbsent(sdo.longest);
    case Fact::NodeUnanswered:
        return countOperand(sdo.unanswered);
    case Fact::NodeRefusals:
        return countOperand(sdo.refusals);
    case Fact::NodeForeignRequests:
        return countOperand(sdo.foreignRequests);
    default:
        return Operand::absent();
    }
}

QString HealthFacts::text(Fact fact, int position) const
{
    Q_UNUSED(position)
    if (fact != Fact::BusForeignNodeIds)
        return QString();
    const QVector<quint8> asked = m_numbers.nodesAskedByOthers();
    return BusWords::nodes(asked.toList());
}

const SnapshotNode *HealthFacts::node(int position) const
{
    Q_UNUSED(position)
    return nullptr;
}

quint8 HealthFacts::nodeId(int position) const
{
    return position >= 0 ? m_numbers.nodes.at(position).id : quint8(0);
}

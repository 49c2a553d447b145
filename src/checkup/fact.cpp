// SPDX-License-Identifier: MIT
#include "fact.h"

namespace {

struct NamedFact
{
    const char *name;
    Fact fact;
    bool isText;
};

constexpr NamedFact facts[] = {
    {"node.id", Fact::NodeId, false},
    {"node.state", Fact::NodeState, false},
    {"node.heard", Fact::NodeIsHeard, false},
    {"node.silent", Fact::NodeIsSilent, false},
    {"node.stopped", Fact::NodeIsStopped, false},
    {"node.values", Fact::NodeValues, false},
    {"node.restarts", Fact::NodeRestarts, false},
    {"node.answer", Fact::NodeAnswer, false},
    {"node.longestAnswer", Fact::NodeLongestAnswer, false},
    {"node.twins", Fact::NodeTwins, false},
    {"node.twinNodes", Fact::NodeTwinNodes, true},
    {"node.name", Fact::NodeName, true},
    {"vehicle.nodes", Fact::VehicleNodes, false},
    {"vehicle.seconds", Fact::VehicleSeconds, false},
    {"vehicle.versionConflicts", Fact::VehicleVersionConflicts, false},
    {"vehicle.versionNodes", Fact::VehicleVersionNodes, true},
    {"node.heartbeats", Fact::NodeHeartbeats, false},
    {"node.heartbeatPeriod", Fact::NodeHeartbeatPeriod, false},
    {"node.configuredHeartbeat", Fact::NodeConfiguredHeartbeat, false},
    {"node.heartbeatJitter", Fact::NodeHeartbeatJitter, false},
    {"node.longestGap", Fact::NodeLongestGap, false},
    {"node.lateHeartbeats", Fact::NodeLateHeartbeats, false},
    {"node.missedHeartbeats", Fact::NodeMissedHeartbeats, false},
    {"node.lost", Fact::NodeIsLost, false},
    {"node.away", Fact::NodeIsAway, false},
    {"node.unanswered", Fact::NodeUnanswered, false},
    {"node.refusals", Fact::NodeRefusals, false},
    {"node.foreignRequests", Fact::NodeForeignRequests, false},
    {"node.emergencies", Fact::NodeEmergencies, false},
    {"node.lastEmergency", Fact::NodeLastEmergency, false},
    {"node.hasError", Fact::NodeHasError, false},
    {"bus.bitRate", Fact::BusBitRate, false},
    {"bus.load", Fact::BusLoad, false},
    {"bus.peak", Fact::BusPeak, false},
    {"bus.frames", Fact::BusFrames, false},
    {"bus.nodes", Fact::BusNodes, false},
    {"bus.controller", Fact::BusController, false},
    {"bus.overruns", Fact::BusOverruns, false},
    {"bus.errors", Fact::BusErrors, false},
    {"bus.foreignNodes", Fact::BusForeignNodes, false},
    {"bus.foreignNodeIds", Fact::BusForeignNodeIds, true},
};

} // namespace

std::optional<Fact> findFact(const QString &name)
{
    for (const NamedFact &named : facts) {
        if (name == QLatin1String(named.name))
            return named.fact;
    }
    return std::nullopt;
}

bool isTextFact(Fact fact)
{
    for (const NamedFact &named : facts) {
        if (named.fact == fact)
            return named.isText;
    }
    return false;
}

bool isBusFact(Fact fact)
{
    return fact >= Fact::NodeHeartbeats;
}

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

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/*! What rules may ask of a node or the vehicle besides objects. docs/rules.md has the list. */
enum class Fact : quint8 {
    NodeId,
    NodeState,         //!< NMT state by its heartbeat code (CiA 301); absent without a heartbeat
    NodeIsHeard,       //!< 1 when its heartbeat was heard
    NodeIsSilent,      //!< 1 when it did not answer to the end
    NodeIsStopped,     //!< 1 when it is in the NMT state Stopped
    NodeValues,        //!< number of values that were read
    NodeRestarts,      //!< boot-up messages, less the one with which a vehicle is switched on
    NodeAnswer,        //!< median of the times to an answer, ms
    NodeLongestAnswer, //!< ms
    NodeTwins,         //!< number of other nodes with the same identity; absent when it has no unique one
    NodeTwinNodes,     //!< text: their IDs
    NodeName,          //!< text
    VehicleNodes,      //!< number of nodes
    VehicleSeconds,    //!< how long the snapshot took
    VehicleVersionConflicts, //!< parts of the profile that nodes implement in different versions (600Eh)
    VehicleVersionNodes,     //!< text: which nodes have which versions of them
};

/*! The fact with a name of rules, for example "node.state"; empty for another name. */
std::optional<Fact> findFact(const QString &name);

/*! Whether a fact is a text: it can be shown, and not calculated with. */
bool isTextFact(Fact fact);

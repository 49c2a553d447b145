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

    // What is heard on a bus; absent in a check-up
    NodeHeartbeats,          //!< number of heartbeats
    NodeHeartbeatPeriod,     //!< ms, as heard; absent before two heartbeats
    NodeConfiguredHeartbeat, //!< ms (1017h); absent when nobody has asked for it
    NodeHeartbeatJitter,     //!< ms, within which 95 of 100 are
    NodeLongestGap,          //!< ms
    NodeLateHeartbeats,
    NodeMissedHeartbeats,
    NodeIsLost,          //!< 1 when its heartbeat has stopped
    NodeIsAway,          //!< 1 when it was heard before the bus was interrupted, and not since
    NodeUnanswered,      //!< SDO requests of any client without an answer
    NodeRefusals,        //!< SDO aborts that say more than that an object is not there
    NodeForeignRequests, //!< SDO requests of other clients
    NodeEmergencies,     //!< emergencies that told of an error
    NodeLastEmergency,   //!< error code; absent without one
    NodeHasError,        //!< 1 when the last emergency told of an error that is not gone
    BusBitRate,          //!< bit/s
    BusLoad,             //!< mean, %; unknown without a bit rate
    BusPeak,             //!< of the busiest second, %
    BusFrames,           //!< number of frames
    BusNodes,            //!< number of nodes that were heard, since the bus was interrupted last
    BusController,   //!< 0 good, 1 warning, 2 error-passive, 3 bus-off; absent when the driver does not tell
    BusOverruns,     //!< reports of lost frames
    BusErrors,       //!< errors on the bus that the driver reported
    BusForeignNodes, //!< number of nodes that other SDO clients ask
    BusForeignNodeIds, //!< text: their IDs
};

/*! The fact with a name of rules, for example "node.state"; empty for another name. */
std::optional<Fact> findFact(const QString &name);

/*! Whether a fact is a text: it can be shown, and not calculated with. */
bool isTextFact(Fact fact);

/*! Whether it is heard on a bus over some time, so that a snapshot does not have it. */
bool isBusFact(Fact fact);

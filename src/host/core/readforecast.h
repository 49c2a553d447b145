// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

#include <chrono>

namespace CanOpen {
class HeartbeatConsumer;
}

/*! Why a read that starts now would not get far. */
struct ReadForecast
{
    /*! Node 1, the bus controller, was not heard: plug-ins read nothing then. */
    bool isControllerMissing = false;
    /*! Nodes in the NMT state Stopped, ascending: they send heartbeats and answer no SDO (CiA 301), so the
     *  read ends at the first of them.
     */
    QVector<quint8> stoppedNodes;

    bool isGood() const { return !isControllerMissing && stoppedNodes.isEmpty(); }

    /*! Time in which every node sends a heartbeat. */
    static constexpr std::chrono::milliseconds hearingTime{2000};

    /*! From what \a heartbeats has heard of the bus in \a listened. Before the hearing time has passed,
     *  nothing is said of node 1: the read itself may still hear it.
     */
    static ReadForecast make(const CanOpen::HeartbeatConsumer &heartbeats,
                             std::chrono::milliseconds listened);
};

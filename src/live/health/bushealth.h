// SPDX-License-Identifier: MIT
#pragma once

#include "burstmeter.h"
#include "controllerrecord.h"
#include "healthnumbers.h"
#include "nodehealth.h"
#include "trafficmeter.h"

#include <canopen/cobid.h>

#include <array>

/*! Follows how well a bus is, from its frames alone. Sends nothing.
 *
 *  Takes the same memory whatever the bus brings. Times in us, of a FrameClock.
 */
class BusHealth
{
public:
    /*! Begins anew. */
    void start(qint64 time);

    /*! In bit/s; 0: not known. */
    void setBitRate(int bitRate) { m_bitRate = bitRate; }
    /*! Whether the back end brings error frames when something is wrong, see BackEnd. */
    void setErrorsTold(bool areErrorsTold) { m_areErrorsTold = areErrorsTold; }
    /*! What the back end tells of its controller. */
    void setController(InterfaceHealth::State state) { m_controllerState = state; }
    /*! The producer heartbeat time of a node (1017h), in ms. */
    void setConfiguredHeartbeat(quint8 nodeId, int milliseconds);

    /*! Takes every frame, received and sent. */
    void handle(const LiveFrame &frame);

    /*! The bus was away: that nothing was heard tells nothing of the nodes, and the controller begins anew. */
    void interrupt();

    HealthNumbers numbers(qint64 now);

private:
    NodeNumbers numbersOf(quint8 nodeId, qint64 now) const;
    void addLoads(HealthNumbers *numbers, qint64 duration) const;
    void addKinds(HealthNumbers *numbers, qint64 duration) const;

    int m_bitRate = 0;
    bool m_areErrorsTold = false;
    InterfaceHealth::State m_controllerState = InterfaceHealth::State::Unknown;
    TrafficMeter m_traffic;
    BurstMeter m_bursts;
    ControllerRecord m_controller;
    std::array<NodeHealth, CanOpen::lastNodeId + 1> m_nodes;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "heartbeatrecord.h"
#include "sdowatch.h"

#include <live/core/liveframe.h>

#include <optional>

/*! What is heard of one node. */
class NodeHealth
{
public:
    void handle(const LiveFrame &frame);
    void interrupt();

    HeartbeatRecord &heartbeat() { return m_heartbeat; }
    const HeartbeatRecord &heartbeat() const { return m_heartbeat; }
    const SdoWatch &sdo() const { return m_sdo; }

    /*! Whether it has sent anything. */
    bool isHeard() const { return m_frames > 0; }
    /*! Whether it was heard before the last interruption, and not since. */
    bool isAway() const { return m_isAway; }
    quint64 frames() const { return m_frames; }
    quint64 bits() const { return m_bits; }
    /*! Boot-up messages of a node that had been heard before. */
    quint64 restarts() const { return m_restarts; }
    /*! Emergencies that tell of an error. */
    quint64 emergencies() const { return m_emergencies; }
    std::optional<quint16> lastEmergency() const { return m_lastEmergency; }
    /*! Whether the last emergency told of an error, and none since that it is gone. */
    bool hasOpenError() const { return m_hasOpenError; }

private:
    void handleHeartbeat(const LiveFrame &frame);
    void handleEmergency(const LiveFrame &frame);

    HeartbeatRecord m_heartbeat;
    SdoWatch m_sdo;
    bool m_isAway = false;
    quint64 m_frames = 0;
    quint64 m_bits = 0;
    quint64 m_restarts = 0;
    quint64 m_emergencies = 0;
    std::optional<quint16> m_lastEmergency;
    bool m_hasOpenError = false;
};

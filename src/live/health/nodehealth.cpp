// SPDX-License-Identifier: MIT
#include "nodehealth.h"

#include "heartbeatstate.h"

namespace {

constexpr int emergencySize = 8;
constexpr quint16 highestReset = 0x00FF; // error codes 00xxh: fewer errors than before, or none

} // namespace

void NodeHealth::handle(const LiveFrame &frame)
{
    if (frame.isRemote)
        return;
    if (frame.kind == FrameKind::Sdo && !frame.isSdoAnswer()) {
        m_sdo.handleRequest(frame);
        return;
    }
    if (!frame.isFromNode())
        return;
    if (frame.kind == FrameKind::Heartbeat)
        handleHeartbeat(frame);
    else if (frame.kind == FrameKind::Sdo)
        m_sdo.handleAnswer(frame);
    else if (frame.kind == FrameKind::Emergency)
        handleEmergency(frame);
    m_isAway = false;
    ++m_frames;
    m_bits += static_cast<quint64>(frame.bits);
}

void NodeHealth::handleHeartbeat(const LiveFrame &frame)
{
    const std::optional<CanOpen::NmtState> state = heartbeatStateOf(frame);
    if (!state)
        return;
    // The first thing that is heard may be the boot-up message of a vehicle that was switched on.
    if (*state == CanOpen::NmtState::BootUp && isHeard())
        ++m_restarts;
    if (*state == CanOpen::NmtState::BootUp)
        m_sdo.endBlocks();
    m_heartbeat.beat(frame.time, *state);
}

void NodeHealth::handleEmergency(const LiveFrame &frame)
{
    if (frame.payload.size() != emergencySize)
        return;
    const auto code = static_cast<quint16>(frame.byteAt(0) | frame.byteAt(1) << 8);
    const quint8 errorRegister = frame.byteAt(2);
    m_hasOpenError = code > highestReset || (errorRegister != 0 && m_hasOpenError);
    if (code <= highestReset)
        return;
    ++m_emergencies;
    m_lastEmergency = code;
}

void NodeHealth::interrupt()
{
    m_isAway = isHeard();
    m_heartbeat.interrupt();
    m_sdo.interrupt();
}

// SPDX-License-Identifier: MIT
#include "heartbeat.h"

#include "cobid.h"

#include <QCanBusFrame>

namespace CanOpen {

namespace {

constexpr quint8 stateMask = 0x7F; // the bit above is the toggle bit of node guarding

std::optional<NmtState> nmtStateOf(quint8 code)
{
    const auto state = static_cast<NmtState>(code & stateMask);
    switch (state) {
    case NmtState::BootUp:
    case NmtState::Stopped:
    case NmtState::Operational:
    case NmtState::PreOperational:
        return state;
    }
    return {};
}

} // namespace

QCanBusFrame makeHeartbeatFrame(Heartbeat heartbeat)
{
    return QCanBusFrame(errorControlCobId(heartbeat.nodeId),
                        QByteArray(1, static_cast<char>(heartbeat.state)));
}

std::optional<Heartbeat> parseHeartbeatFrame(const QCanBusFrame &frame)
{
    const quint8 nodeId = nodeIdOf(frame.frameId(), errorControlBase);
    if (nodeId == 0 || frame.frameType() != QCanBusFrame::DataFrame || frame.hasExtendedFrameFormat())
        return {};
    const QByteArray payload = frame.payload();
    if (payload.isEmpty())
        return {};
    const std::optional<NmtState> state = nmtStateOf(static_cast<quint8>(payload.at(0)));
    if (!state)
        return {};
    return Heartbeat{nodeId, *state};
}

} // namespace CanOpen

// SPDX-License-Identifier: MIT
#include "nmt.h"

#include "cobid.h"

#include <QCanBusFrame>

namespace CanOpen {

namespace {

bool isNmtCommand(quint8 code)
{
    switch (static_cast<NmtCommand>(code)) {
    case NmtCommand::Start:
    case NmtCommand::Stop:
    case NmtCommand::EnterPreOperational:
    case NmtCommand::ResetNode:
    case NmtCommand::ResetCommunication:
        return true;
    }
    return false;
}

} // namespace

QCanBusFrame makeNmtFrame(NmtMessage message)
{
    QByteArray payload(nmtFrameSize, '\0');
    payload[0] = static_cast<char>(message.command);
    payload[1] = static_cast<char>(message.nodeId);
    return QCanBusFrame(nmtCommandCobId, payload);
}

std::optional<NmtMessage> parseNmtFrame(const QCanBusFrame &frame)
{
    if (frame.frameId() != nmtCommandCobId || frame.frameType() != QCanBusFrame::DataFrame
        || frame.hasExtendedFrameFormat())
        return {};
    const QByteArray payload = frame.payload();
    if (payload.size() != nmtFrameSize)
        return {};
    const auto command = static_cast<quint8>(payload.at(0));
    const auto nodeId = static_cast<quint8>(payload.at(1));
    if (!isNmtCommand(command) || nodeId > lastNodeId)
        return {};
    return NmtMessage{static_cast<NmtCommand>(command), nodeId};
}

} // namespace CanOpen

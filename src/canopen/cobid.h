// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! COB-IDs of the predefined connection set (CiA 301). Node IDs run from 1 to 127. */
namespace CanOpen {

constexpr quint8 firstNodeId = 1;
constexpr quint8 lastNodeId = 127;

constexpr quint32 nmtCommandCobId = 0x000;
constexpr quint32 syncCobId = 0x080;
constexpr quint32 sdoResponseBase = 0x580;  // server to client
constexpr quint32 sdoRequestBase = 0x600;   // client to server
constexpr quint32 errorControlBase = 0x700; // boot-up and heartbeat

constexpr bool isNodeId(int number)
{
    return number >= firstNodeId && number <= lastNodeId;
}

constexpr quint32 sdoRequestCobId(quint8 nodeId)
{
    return sdoRequestBase + nodeId;
}
constexpr quint32 sdoResponseCobId(quint8 nodeId)
{
    return sdoResponseBase + nodeId;
}
constexpr quint32 errorControlCobId(quint8 nodeId)
{
    return errorControlBase + nodeId;
}

/*! The node ID of \a cobId when it belongs to the 127 nodes above \a base, else 0. */
constexpr quint8 nodeIdOf(quint32 cobId, quint32 base)
{
    return cobId > base && cobId <= base + lastNodeId ? static_cast<quint8>(cobId - base) : quint8(0);
}

} // namespace CanOpen

// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! COB-IDs of the predefined connection set (CiA 301). Node IDs run from 1 to 127. */
namespace CanOpen {

constexpr quint8 firstNodeId = 1;
constexpr quint8 lastNodeId = 127;

constexpr quint32 nmtCommandCobId = 0x000;
constexpr quint32 syncCobId = 0x080;
constexpr quint32 emergencyBase = 0x080;
constexpr quint32 transmitPdoBases[] = {0x180, 0x280, 0x380, 0x480}; // of PDO 1 to 4, seen from the device
constexpr quint32 receivePdoBases[] = {0x200, 0x300, 0x400, 0x500};
constexpr quint32 sdoResponseBase = 0x580;  // server to client
constexpr quint32 sdoRequestBase = 0x600;   // client to server
constexpr quint32 errorControlBase = 0x700; // boot-up and heartbeat

constexpr bool isNodeId(int number)
{
    return number >= firstNodeId && number <= lastNodeId;
}

/*! \file
 *  A COB-ID as an object holds it (1005h, 1014h, 1400h, 1800h): bits 0 to 28 the identifier, bit 29 whether it is one of 29
 *  bits. What bits 30 and 31 mean differs.
 */
constexpr quint32 cobIdExtendedBit = 1u << 29;
constexpr quint32 cobIdBit30 = 1u << 30;
constexpr quint32 cobIdBit31 = 1u << 31;

constexpr bool isExtendedCobId(quint32 value)
{
    return (value & cobIdExtendedBit) != 0;
}
/*! The identifier in \a value: of 11 bits, or of 29 when bit 29 is set. */
constexpr quint32 identifierOf(quint32 value)
{
    return value & (isExtendedCobId(value) ? 0x1FFFFFFFu : 0x7FFu);
}

constexpr quint32 emergencyCobId(quint8 nodeId)
{
    return emergencyBase + nodeId;
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

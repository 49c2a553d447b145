// SPDX-License-Identifier: MIT
#pragma once

#include "nmt.h"

#include <optional>

class QCanBusFrame;

namespace CanOpen {

/*! The producer heartbeat time of a device, UNSIGNED16 in ms. */
constexpr quint16 producerHeartbeatTime = 0x1017;

/*! The bit above the state that the answers of node guarding toggle. */
constexpr quint8 guardingToggle = 0x80;

struct Heartbeat
{
    quint8 nodeId;  // 1 to 127
    NmtState state; // BootUp for the boot-up message
};

/*! COB-ID 700h + node ID, one byte: bits 6 to 0 state, bit 7 reserved (0). */
QCanBusFrame makeHeartbeatFrame(Heartbeat heartbeat);

/*! The heartbeat in \a frame. The top bit of the state byte is ignored, as node guarding toggles it; remote frames,
 *  extended identifiers, frames without data and unknown states give nothing.
 */
std::optional<Heartbeat> parseHeartbeatFrame(const QCanBusFrame &frame);

} // namespace CanOpen

// SPDX-License-Identifier: MIT
#include "heartbeatstate.h"

std::optional<CanOpen::NmtState> heartbeatStateOf(const LiveFrame &frame)
{
    constexpr quint8 stateMask = 0x7F;
    if (frame.isRemote || frame.payload.size() != 1)
        return std::nullopt;
    const auto state = static_cast<CanOpen::NmtState>(frame.byteAt(0) & stateMask);
    switch (state) {
    case CanOpen::NmtState::BootUp:
    case CanOpen::NmtState::Stopped:
    case CanOpen::NmtState::Operational:
    case CanOpen::NmtState::PreOperational:
        return state;
    }
    return std::nullopt;
}

// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/nmt.h>
#include <live/core/liveframe.h>

#include <optional>

/*! The NMT state in a frame of the kind Heartbeat; bit 7, which node guarding toggles, is ignored. Empty for what is none. */
std::optional<CanOpen::NmtState> heartbeatStateOf(const LiveFrame &frame);

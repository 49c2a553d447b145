// SPDX-License-Identifier: MIT
// For platforms whose timers are no better than QTimer.
#include "precisealarm.h"

namespace Simulator {

PreciseAlarm::~PreciseAlarm() = default;

std::unique_ptr<PreciseAlarm> PreciseAlarm::make(std::function<void()> ring)
{
    static_cast<void>(ring);
    return nullptr;
}

} // namespace Simulator

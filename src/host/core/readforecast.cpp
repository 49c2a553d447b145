// SPDX-License-Identifier: MIT
#include "readforecast.h"

#include <canopen/cobid.h>
#include <canopen/heartbeatconsumer.h>

namespace {

constexpr quint8 controllerNodeId = 1;

} // namespace

ReadForecast ReadForecast::make(const CanOpen::HeartbeatConsumer &heartbeats,
                                std::chrono::milliseconds listened)
{
    ReadForecast forecast;
    forecast.isControllerMissing = listened >= hearingTime && !heartbeats.state(controllerNodeId);
    for (quint8 nodeId = CanOpen::firstNodeId; nodeId <= CanOpen::lastNodeId; ++nodeId) {
        if (heartbeats.state(nodeId) == CanOpen::NmtState::Stopped)
            forecast.stoppedNodes.append(nodeId);
    }
    return forecast;
}

// SPDX-License-Identifier: MIT
#include "tracemoment.h"

#include <system/amounts.h>
#include <trace/decoding/tracelines.h>

#include <algorithm>

namespace {

std::optional<FrameKind> kindOf(EventKind kind)
{
    switch (kind) {
    case EventKind::NodeHeard:
    case EventKind::StateChanged:
    case EventKind::NodeRestarted:
    case EventKind::NodeBack:
        return FrameKind::Heartbeat;
    case EventKind::NmtCommand:
        return FrameKind::Nmt;
    case EventKind::Emergency:
    case EventKind::EmergencyReset:
        return FrameKind::Emergency;
    case EventKind::AbortBurst:
        return FrameKind::Sdo;
    case EventKind::ControllerGood:
    case EventKind::ControllerWarning:
    case EventKind::ControllerPassive:
    case EventKind::BusOff:
    case EventKind::Overrun:
        return FrameKind::Error;
    case EventKind::NodeLost:
    case EventKind::Flood:
    case EventKind::InterfaceGone:
    case EventKind::InterfaceBack:
        break;
    }
    return std::nullopt;
}

} // namespace

TraceMoment TraceMoment::of(const LiveEvent &event, const QDateTime &time)
{
    TraceMoment moment;
    moment.time = time.toMSecsSinceEpoch() * Microseconds::ofMillisecond;
    moment.nodeId = event.nodeId;
    moment.kind = kindOf(event.kind);
    return moment;
}

std::optional<std::size_t> TraceMoment::lineIn(const TraceLines &lines) const
{
    if (lines.size() == 0)
        return std::nullopt;
    const auto rank = [this, &lines](std::size_t line) {
        const bool isOfNode = nodeId == 0 || lines.at(line).nodeId == nodeId;
        const bool isOfKind = kind && lines.at(line).kind == *kind;
        return (isOfNode ? 2 : 0) + (isOfKind ? 1 : 0);
    };
    const auto distance = [this, &lines](std::size_t line) { return qAbs(lines.time(line) - time); };
    std::optional<std::size_t> best;
    for (std::size_t line = lines.rowAt(time - tolerance);
         kind && line < lines.size() && lines.time(line) <= time + tolerance; ++line) {
        if (rank(line) < 2) // of another node
            continue;
        if (!best || rank(line) > rank(*best)
            || (rank(line) == rank(*best) && distance(line) < distance(*best)))
            best = line;
    }
    return best ? best : std::min(lines.rowAt(time), lines.size() - 1);
}

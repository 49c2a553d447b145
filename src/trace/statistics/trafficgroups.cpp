// SPDX-License-Identifier: MIT
#include "trafficgroups.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace {

void addTo(TraceCount *sum, const TraceCount &count)
{
    sum->first = sum->frames == 0 ? count.first : std::min(sum->first, count.first);
    sum->last = sum->frames == 0 ? count.last : std::max(sum->last, count.last);
    sum->frames += count.frames;
    sum->bits += count.bits;
}

FrameKind kindOf(const IdentifierCount &row)
{
    return row.isExtended ? FrameKind::Other : frameKindOf(row.id);
}

quint64 errorFrames(const TraceStatistics &statistics)
{
    quint64 frames = 0;
    for (const ChannelCount &channel : statistics.channels())
        frames += channel.errorFrames;
    return frames;
}

} // namespace

QVector<TrafficGroups::Kind> TrafficGroups::byKind(const TraceStatistics &statistics)
{
    std::array<TraceCount, frameKinds> sums;
    for (const IdentifierCount &row : statistics.identifiers())
        addTo(&sums[static_cast<std::size_t>(kindOf(row))], row.count);
    sums[static_cast<std::size_t>(FrameKind::Error)].frames = errorFrames(statistics);
    QVector<Kind> kinds;
    for (std::size_t kind = 0; kind < sums.size(); ++kind) {
        if (sums[kind].frames > 0)
            kinds.append({static_cast<FrameKind>(kind), sums[kind]});
    }
    return kinds;
}

QVector<TrafficGroups::Node> TrafficGroups::byNode(const TraceStatistics &statistics)
{
    std::map<std::pair<quint8, quint8>, TraceCount> sums;
    for (const IdentifierCount &row : statistics.identifiers()) {
        const quint8 nodeId = row.isExtended ? quint8(0) : frameNodeOf(row.id);
        if (nodeId != 0)
            addTo(&sums[{row.channel, nodeId}], row.count);
    }
    QVector<Node> nodes;
    for (const auto &[place, count] : sums)
        nodes.append({place.second, place.first, count});
    return nodes;
}

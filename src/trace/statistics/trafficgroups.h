// SPDX-License-Identifier: MIT
#pragma once

#include "tracestatistics.h"

#include <live/core/liveframe.h>

#include <QVector>

/*! The frames of a trace by what they are and whose they are, as their identifiers tell in the predefined connection set
 *  (CiA 301).
 */
namespace TrafficGroups {

struct Kind
{
    FrameKind kind = FrameKind::Other;
    TraceCount count;
};

struct Node
{
    quint8 nodeId = 0; //!< 1 to 127
    quint8 channel = 0;
    TraceCount count; //!< of all frames from it and to it
};

/*! In the order of FrameKind, those that there are; error frames without times. */
QVector<Kind> byKind(const TraceStatistics &statistics);
/*! By channel and node, those that there are. */
QVector<Node> byNode(const TraceStatistics &statistics);

} // namespace TrafficGroups

// SPDX-License-Identifier: MIT
#pragma once

#include <live/core/liveframe.h>
#include <live/events/liveevent.h>

#include <QDateTime>

#include <cstddef>
#include <optional>

class TraceLines;

/*! Something that somebody wants to see in a trace. */
struct TraceMoment
{
    /*! us within which a line may be meant although its time is another one: events have times of another clock. */
    static constexpr qint64 tolerance = 1000000;

    qint64 time = 0;   //!< us since 1970
    quint8 nodeId = 0; //!< 0: of no single node
    std::optional<FrameKind> kind;

    /*! That of an event, whose time was \a time. */
    static TraceMoment of(const LiveEvent &event, const QDateTime &time);

    /*! The line that is meant: near the time the nearest of the node and kind, else of the node, else the first one not
     *  before. Behind all lines: the last one. Empty when there are none.
     */
    std::optional<std::size_t> lineIn(const TraceLines &lines) const;
};

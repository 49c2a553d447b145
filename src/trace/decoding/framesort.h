// SPDX-License-Identifier: MIT
#pragma once

#include "tracemark.h"

#include <live/core/liveframe.h>

struct PdoLayout;
struct SdoTransfer;
struct TraceFrame;

/*! What sort of a line something in a trace makes; without words, since it is asked for by the million. */
struct FrameSort
{
    FrameKind kind = FrameKind::Other;
    quint8 nodeId = 0; //!< of an NMT command the node that it is for; 0: of no single node, or for all
    TraceMark mark = TraceMark::Plain;

    /*! \a layout: what the frame carries, where that is known; may be null. */
    static FrameSort of(const TraceFrame &frame, const PdoLayout *layout);
    static FrameSort of(const SdoTransfer &transfer);
};

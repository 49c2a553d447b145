// SPDX-License-Identifier: MIT
#pragma once

#include "traceformat.h"

#include <trace/core/trace.h>

/*! Which of what not every format can hold there is in a trace. */
class TraceDetails
{
public:
    void add(const TraceFrame &frame);

    /*! What of it cannot be kept in \a format, a piece of a sentence each. \a head: of the trace at its end. */
    QStringList lostIn(TraceFormat format, const TraceHead &head) const;

private:
    bool has(TraceFormats::Detail detail, const TraceHead &head) const;

    bool m_hasErrorFrames = false;
    bool m_hasSent = false;
    bool m_hasFineTimes = false;
    bool m_hasEarlyTimes = false;
    bool m_hasLateTimes = false;
};

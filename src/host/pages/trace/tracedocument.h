// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/trace.h>
#include <trace/decoding/tracebook.h>
#include <trace/decoding/tracelines.h>

#include <QString>

/*! A trace with all that is needed to show it: its lines, and what is known of its devices. */
struct TraceDocument
{
    TraceDocument()
        : lines(&trace.frames, &book)
    {
    }
    Q_DISABLE_COPY(TraceDocument)

    QString fileName; //!< empty: what is heard
    Trace trace;
    TraceDevices devices; //!< that the book was told
    TraceBook book;
    TraceLines lines;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <trace/files/bytesink.h>
#include <trace/files/frameencoder.h>
#include <trace/files/tracewriter.h>

/*! A trace as the bytes of a format. */
inline QByteArray encoded(const Trace &trace, TraceFormat format)
{
    QByteArray bytes;
    TraceWriter writer(FrameEncoder::of(format), std::make_unique<MemorySink>(&bytes));
    writer.setHead(trace.head);
    for (const TraceFrame &frame : trace.frames)
        writer.write(frame);
    writer.finish();
    return bytes;
}

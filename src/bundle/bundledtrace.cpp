// SPDX-License-Identifier: MIT
#include "bundledtrace.h"

#include <trace/files/bytesource.h>
#include <trace/files/frameencoder.h>
#include <trace/files/packingsinks.h>
#include <trace/files/tracefile.h>
#include <trace/files/tracewriter.h>

#include <memory>

QByteArray BundledTrace::toBytes(const Trace &trace)
{
    QByteArray bytes;
    auto sink = std::make_unique<GzipSink>(std::make_unique<MemorySink>(&bytes));
    TraceWriter writer(FrameEncoder::of(TraceFormat::Candump), std::move(sink));
    writer.setHead(trace.head);
    for (const TraceFrame &frame : trace.frames)
        writer.write(frame);
    writer.finish();
    return bytes;
}

std::optional<Trace> BundledTrace::fromBytes(const QByteArray &bytes, QString *errorMessage)
{
    const std::unique_ptr<TraceReader> reader
        = TraceFile::open(std::make_unique<MemoryBytes>(bytes), QString::fromLatin1(fileName), errorMessage);
    if (!reader)
        return std::nullopt;
    return TraceFile::load(reader.get(), TraceFile::Limits());
}

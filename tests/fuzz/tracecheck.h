// SPDX-License-Identifier: MIT
#pragma once

#include "bytereader.h"

#include <trace/files/bytesink.h>
#include <trace/files/bytesource.h>
#include <trace/files/candumpreader.h>
#include <trace/files/frameencoder.h>
#include <trace/files/tracefile.h>

#include <algorithm>

/*! What must hold of every frame, whatever it was read from. */
inline void checkFrame(const TraceFrame &frame, const TraceHead &head)
{
    require(frame.length <= TraceFrame::mostBytes);
    require(frame.channel < head.channels.size());
    require(frame.id <= (frame.isExtended() || frame.isError() ? TraceFrame::highestExtendedId
                                                               : TraceFrame::highestStandardId));
    require(!frame.isError() || (!frame.isExtended() && !frame.isRemote()));
    require(std::all_of(frame.bytes.begin() + frame.size(), frame.bytes.end(),
                        [](quint8 byte) { return byte == 0; }));
}

/*! Reads what \a reader has, and what is written of it once more. */
inline void checkReader(TraceReader *reader)
{
    constexpr size_t mostFrames = 10'000;
    const Trace trace = TraceFile::load(reader, {mostFrames, 100});
    require(trace.problems.size() <= 100 && trace.unread >= trace.problems.size());
    for (const TraceFrame &frame : trace.frames)
        checkFrame(frame, trace.head);
    for (const TraceProblem &problem : trace.problems) {
        require(!problem.text.isEmpty() && problem.text.size() < 500);
        for (const QChar character : problem.text)
            require(character.category() != QChar::Other_Control);
    }

    QByteArray log;
    TraceWriter writer(FrameEncoder::of(TraceFormat::Candump), std::make_unique<MemorySink>(&log));
    writer.setHead(trace.head);
    for (const TraceFrame &frame : trace.frames)
        require(writer.write(frame));
    require(writer.finish());
    CandumpReader again(std::make_unique<MemoryBytes>(log));
    const Trace same = TraceFile::load(&again, {mostFrames, 100});
    require(same.frames.size() == trace.frames.size());
    for (size_t i = 0; i < same.frames.size(); ++i) {
        TraceFrame frame = same.frames[i];
        frame.channel = trace.frames[i].channel; // of names that are alike when they are written
        require(frame == trace.frames[i]);
    }
}

inline QByteArray bytesOf(const uint8_t *data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size));
}

// SPDX-License-Identifier: MIT
// Whatever frames a trace has, in whatever order of time, and whatever devices say of their PDOs: every frame stands in one
// line, every line has its words, its frames and its bytes, and as a stream the same lines come.
#include "bytereader.h"

#include <trace/decoding/linestream.h>
#include <trace/decoding/linewriting.h>
#include <trace/decoding/tracelines.h>
#include <trace/core/trace.h>

#include <algorithm>

namespace {

constexpr std::size_t mostFrames = 400;

/*! Mostly SDOs of two nodes; a first byte says what else. */
TraceFrame frameFrom(ByteReader &reader, qint64 *time)
{
    TraceFrame frame;
    const quint8 what = reader.byte();
    constexpr quint32 ids[] = {0x601, 0x581, 0x602, 0x582, 0x181, 0x281, 0x701, 0x081,
                               0x000, 0x100, 0x080, 0x201, 0x7E5, 0x601, 0x581, 0x581};
    frame.id = ids[what & 0x0F];
    if ((what & 0x10) != 0) {
        frame.flags = reader.byte() & 0x0F;
        frame.channel = reader.byte() & 0x03;
        frame.length = std::min<quint8>(8, reader.byte() & 0x0F);
        if ((frame.flags & (TraceFrame::Extended | TraceFrame::Error)) != 0)
            frame.id = reader.doubleWord() & TraceFrame::highestExtendedId;
    } else {
        frame.length = 8;
    }
    *time += (what & 0x20) != 0 ? qint64(qint32(reader.doubleWord())) * 1000 : 100;
    frame.time = *time;
    const QByteArray bytes = reader.bytes(frame.size());
    std::copy(bytes.begin(), bytes.end(), frame.bytes.begin());
    return frame;
}

/*! Every frame is in one line, and none in two. */
void checkFrames(const TraceLines &lines, std::size_t frames)
{
    std::vector<int> seen(frames, 0);
    for (std::size_t row = 0; row < lines.size(); ++row) {
        for (const std::size_t position : lines.frames(row)) {
            require(position < frames);
            require(lines.rowOfFrame(position) == row);
            ++seen[position];
        }
    }
    for (const int count : seen)
        require(count == 1);
}

void checkWords(const TraceLines &lines)
{
    for (std::size_t row = 0; row < lines.size(); ++row) {
        const TraceText text = lines.text(row);
        require(!text.text.isEmpty());
        require(text.mark == lines.at(row).mark);
        for (const QVector<FramePart> &parts : lines.parts(row)) {
            for (const FramePart &part : parts)
                require(part.count > 0 && part.first >= 0 && part.first + part.count <= 8);
        }
        const std::optional<SdoTransfer> transfer = lines.transfer(row);
        require(!transfer || std::size_t(transfer->frames) == lines.frames(row).size());
    }
}

std::size_t streamed(const std::vector<TraceFrame> &frames, LineStream::Order order)
{
    TraceBook book;
    const TraceDecoder decoder(&book);
    LineStream stream(&book, order);
    std::size_t count = 0;
    const auto take = [&] {
        for (const StreamedLine &line : stream.take()) {
            ++count;
            LineWriting::toJson(line, decoder, TraceHead());
        }
    };
    for (const TraceFrame &frame : frames) {
        stream.handle(frame);
        take();
    }
    stream.finish();
    take();
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    ByteReader reader(data, size);
    std::vector<TraceFrame> frames;
    qint64 time = 0;
    while (!reader.atEnd() && frames.size() < mostFrames)
        frames.push_back(frameFrom(reader, &time));

    TraceBook book;
    TraceLines lines(&frames, &book);
    lines.advance(frames.size() / 2);
    lines.finish();
    checkFrames(lines, frames.size());
    checkWords(lines);
    TraceFilter wrong;
    wrong.isWrongOnly = true;
    for (const quint32 row : lines.filtered(wrong))
        require(isWrong(lines.at(row).mark));
    require(streamed(frames, LineStream::Order::AsTheyBegin) == lines.size());
    require(streamed(frames, LineStream::Order::AsTheyEnd) == lines.size());
    return 0;
}

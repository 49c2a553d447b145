// SPDX-License-Identifier: MIT
// Traces of any frames as vehicles: played at any pace, asked anything, made a snapshot of.
#include "bytereader.h"

#include <snapshot/snapshotfile.h>
#include <trace/playback/recordedvehicle.h>
#include <trace/playback/traceplayer.h>
#include <trace/playback/tracesnapshot.h>

namespace {

constexpr int mostFrames = 400;

/*! A frame of a few nodes, mostly of SDO, with times of any size. */
TraceFrame frameFrom(ByteReader &reader)
{
    constexpr quint32 bases[] = {0x580, 0x600, 0x580, 0x600, 0x700, 0x080, 0x180, 0x000};
    const quint8 shape = reader.byte();
    TraceFrame frame;
    frame.id = bases[shape & 7] + (shape >> 3 & 3);
    frame.flags = shape >> 5 == 7 ? reader.byte() & 0x07 : quint8(0);
    frame.length = shape >> 5 == 6 ? reader.byte() & 7 : quint8(8);
    const quint8 pause = reader.byte();
    frame.time = pause == 0xFF ? static_cast<qint64>(quint64(reader.doubleWord()) << 32) : pause * 1000;
    for (int i = 0; i < frame.length; ++i)
        frame.bytes[static_cast<size_t>(i)] = reader.byte();
    return frame;
}

/*! A time grows by its pause, unless it is one of any size. */
std::vector<TraceFrame> traceFrom(ByteReader &reader)
{
    constexpr qint64 largestPause = 0xFF * 1000;
    std::vector<TraceFrame> frames;
    const int count = reader.byte() * 2 % mostFrames;
    qint64 time = 0;
    for (int i = 0; i < count; ++i) {
        TraceFrame frame = frameFrom(reader);
        if (frame.time >= 0 && frame.time <= largestPause)
            frame.time = time += frame.time;
        frames.push_back(frame);
    }
    return frames;
}

void play(const std::vector<TraceFrame> &frames, ByteReader &reader)
{
    TracePlayer player(&frames);
    player.setSpeed(0.01 + reader.byte());
    player.setPace(static_cast<TracePlayer::Pace>(reader.byte() % 3));
    player.start(0);
    qint64 now = 0;
    for (size_t turns = 0; turns < frames.size() * 2; ++turns) {
        player.step(reader.byte());
        const std::optional<qint64> due = player.nextDue();
        require(due.has_value() || player.isAtEnd() || player.pace() == TracePlayer::Pace::Stepped);
        now = std::max(now, due.value_or(now));
        require((player.take(now) != nullptr) == due.has_value());
    }
}

void ask(const std::vector<TraceFrame> &frames, ByteReader &reader)
{
    const auto knowledge = static_cast<RecordedVehicle::Knowledge>(reader.byte() % 2);
    RecordedVehicle vehicle(RecordedAnswers::of(frames), knowledge);
    while (!reader.atEnd()) {
        const auto nodeId = static_cast<quint8>(reader.byte() & 7);
        const quint32 id = 0x600 + nodeId;
        const size_t present = reader.byte();
        const QVector<QCanBusFrame> answers
            = vehicle.handleFrame(QCanBusFrame(id, reader.payload()), present);
        require(answers.size() <= 127);
        for (const QCanBusFrame &answer : answers)
            require(answer.frameId() == id - 0x80 && answer.payload().size() == 8);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    ByteReader reader(data, size);
    const std::vector<TraceFrame> frames = traceFrom(reader);
    TraceSnapshot maker;
    for (const TraceFrame &frame : frames)
        maker.handle(frame);
    TraceHead head;
    head.hasTimeOfDay = (reader.byte() & 1) != 0;
    const Snapshot snapshot = maker.finish(head, QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC));
    // What is made of any trace is a file that can be read.
    const QByteArray text = SnapshotFile::toJson(snapshot);
    QString error;
    const std::optional<Snapshot> again = SnapshotFile::fromJson(text, &error);
    require(again.has_value() && SnapshotFile::toJson(*again) == text);
    play(frames, reader);
    ask(frames, reader);
    return 0;
}

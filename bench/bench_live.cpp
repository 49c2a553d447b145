// SPDX-License-Identifier: MIT
#include <canopen/objectdictionary.h>
#include <live/core/frameclock.h>
#include <live/events/eventrecorder.h>
#include <live/health/bushealth.h>
#include <live/values/livevalues.h>
#include <live/values/pdosource.h>

#include <benchmark/benchmark.h>

#include <QCanBusDevice>
#include <QCanBusFrame>

#include <chrono>
#include <memory>

namespace {

constexpr int turn = 32;          // frames that a device has at once
constexpr qint64 frameTime = 125; // us: 8000 frames a second

/*! A device that has frames. */
class Source : public QCanBusDevice
{
public:
    bool writeFrame(const QCanBusFrame &frame) override
    {
        Q_UNUSED(frame)
        return false;
    }
    QString interpretErrorFrame(const QCanBusFrame &errorFrame) override
    {
        Q_UNUSED(errorFrame)
        return QString();
    }
    void give(const QVector<QCanBusFrame> &frames) { enqueueReceivedFrames(frames); }

protected:
    bool open() override
    {
        setState(ConnectedState);
        return true;
    }
    void close() override { setState(UnconnectedState); }
};

/*! What a riding vehicle sends: mostly PDOs, some heartbeats and SDO transfers, a SYNC. */
QVector<QCanBusFrame> traffic()
{
    QVector<QCanBusFrame> frames;
    for (int i = 0; i < turn; ++i) {
        const auto node = static_cast<quint32>(1 + i % 7);
        const QByteArray data = QByteArray::fromHex("1122334455667788");
        if (i == 0)
            frames.append(QCanBusFrame(0x080, QByteArray()));
        else if (i % 8 == 1)
            frames.append(QCanBusFrame(0x700 + node, QByteArray(1, '\5')));
        else if (i % 8 == 2)
            frames.append(QCanBusFrame(0x600 + node, QByteArray::fromHex("4018100100000000")));
        else if (i % 8 == 3)
            frames.append(QCanBusFrame(0x580 + node - 1, QByteArray::fromHex("4318100111223344")));
        else
            frames.append(QCanBusFrame(0x180 + node, data));
    }
    return frames;
}

/*! Seven nodes with a PDO of four values each. */
void learn(LiveValues *values)
{
    for (quint8 node = 1; node <= 7; ++node) {
        CanOpen::ObjectDictionary dictionary;
        const auto set = [&dictionary](quint16 index, quint8 sub, quint32 value) {
            CanOpen::ObjectEntry entry;
            entry.data = CanOpen::encodeValue(entry.type, value).value_or(QByteArray());
            dictionary.insert({index, sub}, entry);
        };
        set(0x1800, 1, 0x180U + node);
        set(0x1A00, 0, 4);
        for (quint8 entry = 1; entry <= 4; ++entry)
            set(0x1A00, entry, 0x60400010U | quint32(entry) << 8);
        values->learn(PdoSource::of(node, dictionary));
    }
}

struct Listeners
{
    Listeners()
    {
        health.start(0);
        health.setBitRate(1000000);
        learn(&values);
        for (std::size_t i = 0; i < values.values().size() && i < 20; ++i)
            values.setWatched(static_cast<int>(i), true);
    }

    BusHealth health;
    EventRecorder events;
    LiveValues values;
    FrameClock clock;
    qint64 time = 0;
};

/*! Time of one turn in seconds. */
double readTurn(Source *source, Listeners *listeners)
{
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < turn; ++i) {
        const QCanBusFrame frame = source->readFrame();
        benchmark::DoNotOptimize(frame);
        if (listeners == nullptr)
            continue;
        listeners->time += frameTime;
        const LiveFrame live
            = LiveFrame::of(frame, listeners->clock.timeOf(listeners->time, listeners->time));
        listeners->health.handle(live);
        listeners->events.handle(live);
        listeners->values.handle(live);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/*! Both in turn, so that both meet the same machine. */
void frameThroughAll(benchmark::State &state)
{
    Source source;
    source.connectDevice();
    const QVector<QCanBusFrame> frames = traffic();
    const auto listeners = std::make_unique<Listeners>();
    double alone = 0;
    double together = 0;
    qint64 count = 0;
    for (auto _ : state) {
        source.give(frames);
        alone += readTurn(&source, nullptr);
        source.give(frames);
        together += readTurn(&source, listeners.get());
        count += turn;
    }
    constexpr double nanoseconds = 1e9;
    state.counters["readFrame_ns"] = alone / double(count) * nanoseconds;
    state.counters["listening_ns"] = (together - alone) / double(count) * nanoseconds;
    state.counters["ratio"] = (together - alone) / alone;
}

template<typename Handle>
void handleAll(benchmark::State &state, const Handle &handle)
{
    const QVector<QCanBusFrame> frames = traffic();
    const auto listeners = std::make_unique<Listeners>();
    for (auto _ : state) {
        for (const QCanBusFrame &frame : frames) {
            listeners->time += frameTime;
            handle(listeners.get(), frame);
        }
    }
    state.SetItemsProcessed(state.iterations() * frames.size());
}

void frameTakenApart(benchmark::State &state)
{
    handleAll(state, [](Listeners *listeners, const QCanBusFrame &frame) {
        benchmark::DoNotOptimize(LiveFrame::of(frame, listeners->time));
    });
}

void numbersOfHealth(benchmark::State &state)
{
    const auto listeners = std::make_unique<Listeners>();
    for (const QCanBusFrame &frame : traffic())
        listeners->health.handle(LiveFrame::of(frame, listeners->time += frameTime));
    for (auto _ : state)
        benchmark::DoNotOptimize(listeners->health.numbers(listeners->time));
}

} // namespace

BENCHMARK(frameThroughAll);
BENCHMARK(frameTakenApart);
BENCHMARK(numbersOfHealth)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();

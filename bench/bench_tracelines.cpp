// SPDX-License-Identifier: MIT
#include <trace/decoding/tracelines.h>

#include <benchmark/benchmark.h>

#include <QByteArray>

#include <algorithm>
#include <memory>
#include <random>

namespace {

constexpr std::size_t million = 1'000'000;
constexpr qint64 frameTime = 125; // us: 8000 frames a second
constexpr std::size_t page = 50;  // lines

TraceFrame frameOf(quint32 id, const QByteArray &hex)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    TraceFrame frame;
    frame.id = id;
    frame.length = static_cast<quint8>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), frame.bytes.begin());
    return frame;
}

/*! Somebody asks seven nodes for their PDOs; then they ride: mostly PDOs with measured values, some heartbeats and
 *  transfers, a SYNC.
 */
class Ride
{
public:
    Ride()
    {
        for (quint32 node = 1; node <= 7; ++node) {
            read(node, 0x1800, 1, 0x180 + node, 4);
            read(node, 0x1A00, 0, 3, 1);
            read(node, 0x1A00, 1, 0x60400120, 4);
            read(node, 0x1A00, 2, 0x61050110, 4);
            read(node, 0x1A00, 3, 0x61640210, 4);
        }
        while (m_frames.size() < million)
            addTurn();
        m_frames.resize(million);
    }

    const std::vector<TraceFrame> &frames() const { return m_frames; }

private:
    void add(TraceFrame frame)
    {
        frame.time = qint64(m_frames.size()) * frameTime;
        m_frames.push_back(frame);
    }
    void ask(quint32 node, const QByteArray &request, const QByteArray &answer)
    {
        add(frameOf(0x600 + node, request + "00000000"));
        add(frameOf(0x580 + node, answer));
    }
    void read(quint32 node, quint16 index, quint8 sub, quint32 value, int bytes)
    {
        const auto hex = [](quint32 number, int count) {
            QByteArray text;
            for (int i = 0; i < count; ++i)
                text += QByteArray(1, static_cast<char>(number >> (8 * i))).toHex();
            return text;
        };
        const QByteArray key = hex(index, 2) + hex(sub, 1);
        const quint32 command = 0x43U | static_cast<quint32>(4 - bytes) << 2;
        ask(node, "40" + key, hex(command, 1) + key + hex(value, 4));
    }
    void addTurn()
    {
        for (quint32 i = 0; i < 32; ++i) {
            const quint32 node = 1 + i % 7;
            if (i == 0)
                add(frameOf(0x080, ""));
            else if (i % 8 == 1)
                add(frameOf(0x700 + node, "05"));
            else if (i % 8 == 2)
                ask(node, "40646102", "4B646102D0200000");
            else
                addPdo(node);
        }
    }
    /*! Measured values: a voltage with noise in the last places, a temperature, a state of charge. */
    void addPdo(quint32 node)
    {
        TraceFrame frame = frameOf(0x180 + node, "8499000030010020");
        frame.bytes[0] = static_cast<quint8>(m_random());
        frame.bytes[1] = static_cast<quint8>(0x96 + (m_random() & 0x07));
        frame.bytes[4] = static_cast<quint8>(0x30 + (m_random() & 0x03));
        add(frame);
    }

    std::vector<TraceFrame> m_frames;
    std::mt19937 m_random{7};
};

const Ride &ride()
{
    static const Ride made;
    return made;
}

struct Listed
{
    Listed()
        : lines(&ride().frames(), &book)
    {
        lines.finish();
    }
    TraceBook book;
    TraceLines lines;
};

const TraceLines &listed()
{
    static const Listed made;
    return made.lines;
}

void linesOfAMillionFrames(benchmark::State &state)
{
    ride();
    for (auto _ : state) {
        TraceBook book;
        TraceLines lines(&ride().frames(), &book);
        lines.finish();
        benchmark::DoNotOptimize(lines.size());
    }
}

/*! Lines and the words of all of them. */
void wordsOfAMillionFrames(benchmark::State &state)
{
    ride();
    for (auto _ : state) {
        TraceBook book;
        TraceLines lines(&ride().frames(), &book);
        lines.finish();
        for (std::size_t row = 0; row < lines.size(); ++row)
            benchmark::DoNotOptimize(lines.text(row));
    }
}

void wordsOfAPage(benchmark::State &state)
{
    const TraceLines &lines = listed();
    std::size_t first = 0;
    for (auto _ : state) {
        for (std::size_t row = first; row < first + page; ++row)
            benchmark::DoNotOptimize(lines.text(row));
        first = (first + 7919) % (lines.size() - page);
    }
}

void filterOf(benchmark::State &state, const TraceFilter &filter)
{
    const TraceLines &lines = listed();
    std::size_t found = 0;
    for (auto _ : state)
        found = lines.filtered(filter).size();
    state.counters["found"] = double(found);
}

void filterByNodeAndKind(benchmark::State &state)
{
    TraceFilter filter;
    filter.nodes.set(3);
    filter.kinds.set(std::size_t(FrameKind::Pdo));
    filterOf(state, filter);
}

void filterByObject(benchmark::State &state)
{
    TraceFilter filter;
    filter.objects.append({0x6164, 2});
    filterOf(state, filter);
}

void filterWhatIsWrong(benchmark::State &state)
{
    TraceFilter filter;
    filter.isWrongOnly = true;
    filterOf(state, filter);
}

void filterByText(benchmark::State &state)
{
    TraceFilter filter;
    filter.text = QStringLiteral("39.30");
    filterOf(state, filter);
}

} // namespace

BENCHMARK(linesOfAMillionFrames)->Unit(benchmark::kMillisecond);
BENCHMARK(wordsOfAMillionFrames)->Unit(benchmark::kMillisecond);
BENCHMARK(wordsOfAPage)->Unit(benchmark::kMicrosecond);
BENCHMARK(filterByNodeAndKind)->Unit(benchmark::kMillisecond);
BENCHMARK(filterByObject)->Unit(benchmark::kMillisecond);
BENCHMARK(filterWhatIsWrong)->Unit(benchmark::kMillisecond);
BENCHMARK(filterByText)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();

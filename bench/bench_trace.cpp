// SPDX-License-Identifier: MIT
#include <trace/files/tracefile.h>
#include <trace/recording/flightrecorder.h>
#include <trace/recording/tracerecording.h>

#include <benchmark/benchmark.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>

namespace {

constexpr int frames = 1'000'000;
constexpr qint64 frameTime = 125; // us: 8000 frames a second

TraceFrame frameOf(int i)
{
    TraceFrame frame;
    frame.time = 1436509052249713 + i * frameTime;
    frame.id = static_cast<quint32>(0x180 + i % 0x500);
    frame.length = 8;
    for (size_t byte = 0; byte < 8; ++byte)
        frame.bytes[byte] = static_cast<quint8>(static_cast<quint32>(i) * 7919U >> byte);
    return frame;
}

const Trace &million()
{
    static const Trace trace = [] {
        Trace made;
        made.head = {{QStringLiteral("can0")}, true};
        for (int i = 0; i < frames; ++i)
            made.frames.push_back(frameOf(i));
        return made;
    }();
    return trace;
}

/*! A million frames in a file with that suffix, made once. */
QString fileOf(const QString &suffix)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("million") + suffix);
    QString error;
    if (!QFile::exists(path) && !TraceFile::save(path, million(), &error))
        qFatal("%s", qPrintable(error));
    return path;
}

const char *const suffixes[] = {".log", ".asc", ".trc", ".pcap", ".pcapng", ".log.gz", ".log.zst"};

/*! Memory of this process, bytes. */
double residentMemory()
{
    std::ifstream file("/proc/self/statm");
    double size = 0;
    double resident = 0;
    file >> size >> resident;
    constexpr double page = 4096;
    return resident * page;
}

void openMillion(benchmark::State &state)
{
    const QString suffix = QLatin1String(suffixes[state.range(0)]);
    const QString path = fileOf(suffix);
    state.SetLabel(suffix.toStdString());
    double memory = 0;
    for (auto _ : state) {
        const double before = residentMemory();
        QString error;
        const auto trace = TraceFile::load(path, TraceFile::Limits(), &error);
        if (!trace || trace->frames.size() != size_t(frames))
            qFatal("%s", qPrintable(error));
        memory = std::max(memory, residentMemory() - before);
    }
    state.counters["bytesPerFrame"] = memory / frames;
}
BENCHMARK(openMillion)->DenseRange(0, 6)->Unit(benchmark::kMillisecond);

/*! Runs a program, and gives the s that it took. */
double secondsOf(const QString &program, const QStringList &arguments)
{
    const auto begin = std::chrono::steady_clock::now();
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(-1);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/*! The log of candump, to what "wc -l" costs for the same file in the same run. */
void openMillionToWc(benchmark::State &state)
{
    const QString path = fileOf(QStringLiteral(".log"));
    double wc = 0;
    double ours = 0;
    for (auto _ : state) {
        wc += secondsOf(QStringLiteral("wc"), {QStringLiteral("-l"), path});
        const auto begin = std::chrono::steady_clock::now();
        QString error;
        const auto trace = TraceFile::load(path, TraceFile::Limits(), &error);
        benchmark::DoNotOptimize(trace);
        ours += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }
    state.counters["wcMs"] = wc / static_cast<double>(state.iterations()) * 1000;
    state.counters["toWc"] = ours / wc;
}
BENCHMARK(openMillionToWc)->Unit(benchmark::kMillisecond);

/*! The same, to what python-can takes to read it. Slow, so it is asked for by name: TRACE_PYTHON=1. */
void openMillionToPythonCan(benchmark::State &state)
{
    if (!qEnvironmentVariableIsSet("TRACE_PYTHON")) {
        state.SkipWithError("only with TRACE_PYTHON=1");
        return;
    }
    const QString path = fileOf(QStringLiteral(".log"));
    const QString script = QStringLiteral("import can, sys\nfor m in can.LogReader(sys.argv[1]): pass");
    for (auto _ : state) {
        const double python
            = secondsOf(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), script, path});
        const auto begin = std::chrono::steady_clock::now();
        QString error;
        const auto trace = TraceFile::load(path, TraceFile::Limits(), &error);
        benchmark::DoNotOptimize(trace);
        const double ours = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        state.counters["pythonS"] = python;
        state.counters["timesFaster"] = python / ours;
    }
}
BENCHMARK(openMillionToPythonCan)->Iterations(1)->Unit(benchmark::kMillisecond);

void saveMillion(benchmark::State &state)
{
    const QString suffix = QLatin1String(suffixes[state.range(0)]);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a") + suffix);
    state.SetLabel(suffix.toStdString());
    for (auto _ : state) {
        QString error;
        if (!TraceFile::save(path, million(), &error))
            qFatal("%s", qPrintable(error));
    }
    state.counters["MB"] = static_cast<double>(QFileInfo(path).size()) / 1e6;
}
BENCHMARK(saveMillion)->DenseRange(0, 6)->Unit(benchmark::kMillisecond);

/*! A frame into a recording, with all that comes once a second or with the size. */
void recordFrame(benchmark::State &state)
{
    const QTemporaryDir folder;
    TraceRecording::Settings settings;
    settings.path = folder.filePath(QStringLiteral("a") + QLatin1String(suffixes[state.range(0)]));
    settings.rotateSize = 20'000'000;
    settings.keep = 2;
    settings.reserve = 0;
    state.SetLabel(suffixes[state.range(0)]);
    TraceRecording recording(settings);
    recording.begin({{QStringLiteral("can0")}, true}, 0);
    int i = 0;
    for (auto _ : state) {
        if (!recording.add(frameOf(i % frames), i * frameTime))
            qFatal("%s", qPrintable(recording.errorString()));
        ++i;
    }
}
BENCHMARK(recordFrame)->Arg(0)->Arg(4)->Arg(5)->Arg(6);

/*! A frame into the flight recorder, which is full. */
void keepFrame(benchmark::State &state)
{
    constexpr int tenMinutes = 4'800'000;
    const double before = residentMemory();
    FlightRecorder recorder;
    int i = 0;
    for (; i < tenMinutes; ++i)
        recorder.add(frameOf(i));
    state.counters["bytesPerFrame"] = (residentMemory() - before) / tenMinutes;
    for (auto _ : state)
        recorder.add(frameOf(i++));
}
BENCHMARK(keepFrame)->Iterations(5000000);

} // namespace

BENCHMARK_MAIN();

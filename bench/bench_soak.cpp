// SPDX-License-Identifier: MIT
// The window on a full bus for as many seconds as SOAK_SECONDS says (60): whether its memory stays as it is, and a click
// too.
#include "benchwindow.h"
#include "stallwatch.h"

#include <host/pages/live/livesession.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>

#include <unistd.h>

namespace {

constexpr qint64 second = 1000;   // ms
constexpr int usualDuration = 60; // s
constexpr int looks = 60;         // at the memory, evenly over the time
constexpr std::size_t mostWatched = 20;

/*! How long it lasts, in ms. */
qint64 duration()
{
    bool isNumber = false;
    const int count = qEnvironmentVariableIntValue("SOAK_SECONDS", &isNumber);
    return second * (isNumber ? std::max(count, 1) : usualDuration);
}

/*! The memory of this program that is not swapped out, in MB. */
double residentMemory()
{
    constexpr int residentColumn = 1;
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const double pages = file.readAll().split(' ').value(residentColumn).toDouble();
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

/*! Learns what the vehicle sends, and draws it. */
void watchEverything(LiveSession &live)
{
    live.questions().learn();
    while (live.questions().isLearning())
        BenchWindow::pass(100);
    const std::vector<LiveValue> &values = live.live().values().values();
    for (std::size_t i = 0; i < std::min(values.size(), mostWatched); ++i) {
        WatchedItem item;
        item.nodeId = values.at(i).nodeId;
        item.object = values.at(i).object;
        live.watch().add(item);
    }
    for (int row = 0; row < live.watch().items().size(); ++row)
        live.watch().setPlotted(row, true);
}

/*! 8000 frames a second beside a vehicle that rides, with everything that it sends drawn. */
void soak(benchmark::State &state)
{
    BenchWindow window(BenchWindow::shipped("ride"));
    window.trigger("actionPageLive");
    watchEverything(window.window().live());
    const Flood flood(window.bus());
    while (state.KeepRunning()) {
        StallWatch watch;
        const qint64 pause = duration() / looks;
        BenchWindow::pass(pause);
        state.counters["first_MB"] = residentMemory();
        for (int i = 1; i < looks; ++i) {
            BenchWindow::pass(pause);
            state.counters["highest_MB"] = std::max<double>(state.counters["highest_MB"], residentMemory());
            if (i == looks / 2)
                state.counters["half_MB"] = residentMemory();
        }
        state.counters["last_MB"] = residentMemory();
        state.counters["longest_ms"] = watch.longest();
        state.counters["longest_busy_ms"] = watch.longestBusy();
    }
    state.counters["frames"] = static_cast<double>(flood.sentCount());
    state.counters["watched"] = window.window().live().watch().items().size();
}
BENCHMARK(soak)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir settings; // the watch list is remembered
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    const QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("bench_soak"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

// SPDX-License-Identifier: MIT
#include "million.h"
#include "stallwatch.h"

#include <host/pages/trace/traceexport.h>
#include <host/pages/trace/tracepage.h>
#include <host/pages/trace/tracesession.h>
#include <tests/support/fakebus.h>
#include <trace/files/tracefile.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <utility>

namespace {

/*! The page with a million frames out of a file. */
struct Shown
{
    Shown()
        : session(&bus)
        , page(&session)
    {
        QString error;
        file = folder.filePath(QStringLiteral("ride.log"));
        if (!TraceFile::save(file, millionFrames(), &error))
            qFatal("%s", qPrintable(error));
        page.resize(1000, 600);
        page.show();
    }

    void open()
    {
        session.open(file);
        until([this] { return !session.loading().isRunning(); });
    }

    static void until(const std::function<bool()> &isDone)
    {
        while (!isDone())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }

    QTemporaryDir folder;
    QString file;
    BusConnection bus;
    TraceSession session;
    TracePage page;
};

/*! How long the window is held meanwhile: processor time, ms. */
void note(benchmark::State *state, const StallWatch &watch)
{
    state->counters["held"] = watch.longestBusy();
}

void openMillion(benchmark::State &state)
{
    Shown shown;
    StallWatch watch;
    while (state.KeepRunning())
        shown.open();
    note(&state, watch);
}
BENCHMARK(openMillion)->Unit(benchmark::kMillisecond)->Name("openMillionInThePage");

/*! 0: words that stand in few lines, 1: that stand in most, 2: in none. */
void filterMillion(benchmark::State &state)
{
    static const char *const words[] = {"4210h", "PDO", "unicorn"};
    Shown shown;
    shown.open();
    auto *field = shown.page.findChild<QLineEdit *>(QStringLiteral("filterText"));
    StallWatch watch;
    while (state.KeepRunning()) {
        field->setText(QLatin1String(words[state.range(0)]));
        Shown::until([&shown] { return !shown.page.model().isLooking(); });
        state.PauseTiming();
        field->clear();
        state.ResumeTiming();
    }
    note(&state, watch);
}
BENCHMARK(filterMillion)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->Name("filterMillionInThePage");

/*! 8000 frames a second while the list is full and its older half leaves. */
void hearBeyondAMillion(benchmark::State &state)
{
    constexpr int before = 60000; // frames that are missing: 7.5 s
    FakeBus fake;
    BusConnection bus;
    bus.setDeviceFactory(fake.factory());
    TraceSession session(&bus);
    TracePage page(&session);
    page.resize(1000, 600);
    page.show();
    bus.connectToBus(fakeSettings(), nullptr);
    const Trace frames = millionFrames();
    int sent = 0;
    const auto send = [&](int count) {
        for (int end = sent + count; sent < end; ++sent)
            emit bus.frameReceived(frames.frames[static_cast<std::size_t>(sent % million)].toCanBusFrame());
    };
    while (sent < million - before) {
        send(20000);
        QCoreApplication::processEvents();
    }
    Shown::until([&session] { return session.document()->lines.size() > million / 2; });
    Shown::until([&session, lines = std::size_t(0)]() mutable {
        return std::exchange(lines, session.document()->lines.size()) == session.document()->lines.size();
    });
    while (state.KeepRunning()) {
        QElapsedTimer clock;
        clock.start();
        const StallWatch watch;
        const int first = sent;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout,
                         [&] { send(first + static_cast<int>(clock.elapsed() * 8) - sent); });
        timer.start(10);
        QEventLoop loop;
        QTimer::singleShot(static_cast<int>(state.range(0)), &loop, &QEventLoop::quit);
        loop.exec();
        note(&state, watch);
    }
    state.counters["frames"] = static_cast<double>(session.document()->trace.frames.size());
}
BENCHMARK(hearBeyondAMillion)->Arg(20000)->Iterations(1)->Unit(benchmark::kMillisecond);

/*! What exporting the lines of what is heard costs before it goes on in the background. 0: all, 1: all but heartbeats. */
void takeShown(benchmark::State &state)
{
    Shown shown;
    shown.open();
    if (state.range(0) == 1) {
        TraceFilter filter;
        filter.kinds.set().reset(static_cast<std::size_t>(FrameKind::Heartbeat));
        shown.page.model().setFilter(filter);
        Shown::until([&shown] { return !shown.page.model().isLooking(); });
    }
    while (state.KeepRunning())
        benchmark::DoNotOptimize(TraceExport::shown(*shown.session.document(), shown.page.model().rows()));
}
BENCHMARK(takeShown)->DenseRange(0, 1)->Unit(benchmark::kMillisecond)->Name("takeWhatIsShownOfAMillion");

/*! One picture after the other, each of another place. */
void scrollMillion(benchmark::State &state)
{
    Shown shown;
    shown.open();
    auto *table = shown.page.findChild<QTableView *>(QStringLiteral("traceTable"));
    int row = 0;
    while (state.KeepRunning()) {
        row = (row + 7919 * 31) % table->model()->rowCount();
        table->verticalScrollBar()->setValue(row);
        QCoreApplication::processEvents();
    }
}
BENCHMARK(scrollMillion)->Unit(benchmark::kMillisecond)->Name("scrollAMillionLines");

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

// SPDX-License-Identifier: MIT
// A support bundle with a million frames in the window: made, masked and opened, and how long the window is held meanwhile.
#include "benchwindow.h"
#include "million.h"
#include "stallwatch.h"

#include <host/bundlefiles.h>
#include <host/pages/trace/tracesession.h>
#include <system/amounts.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDateTime>
#include <QEventLoop>
#include <QTemporaryDir>

#include <functional>

namespace {

constexpr qint64 settlingTime = 3000; // ms, until all lines are there

void until(const std::function<bool()> &isDone)
{
    while (!isDone())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
}

/*! The window when a million frames were heard in the last minutes. */
class Million
{
public:
    Million()
    {
        BundleFiles &bundles = m_window.window().bundles();
        QObject::connect(&bundles, &BundleFiles::succeeded, [this] { m_isDone = true; });
        QObject::connect(&bundles, &BundleFiles::failed,
                         [](const QString &sentence) { qFatal("%s", qPrintable(sentence)); });
        BusConnection &bus = m_window.services().bus();
        Trace ride = millionFrames();
        const qint64 now = QDateTime::currentMSecsSinceEpoch() * Microseconds::ofMillisecond;
        const qint64 distance = now - ride.frames.back().time; // what is old is not kept
        for (TraceFrame &frame : ride.frames) {
            frame.time += distance;
            emit bus.frameReceived(frame.toCanBusFrame());
        }
        BenchWindow::pass(settlingTime);
    }

    void save(bool isMasked)
    {
        m_isDone = false;
        m_window.window().bundles().write(bundle(), isMasked);
        until([this] { return m_isDone; });
    }

    void open()
    {
        m_window.openFile(bundle());
        until([this] { return !m_window.window().trace().isLive(); });
        if (m_window.window().trace().document()->trace.frames.size() < std::size_t(million))
            qFatal("frames are missing");
    }

private:
    QString bundle() const { return m_folder.filePath(QStringLiteral("bundle.zip")); }
    QTemporaryDir m_folder;
    BenchWindow m_window;
    bool m_isDone = false;
};

/*! 1: masked. */
void saveBundle(benchmark::State &state)
{
    Million million;
    while (state.KeepRunning()) {
        const StallWatch watch;
        million.save(state.range(0) != 0);
        state.counters["held"] = watch.longestBusy();
    }
}
BENCHMARK(saveBundle)->DenseRange(0, 1)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

void openBundle(benchmark::State &state)
{
    Million million;
    million.save(false);
    while (state.KeepRunning()) {
        const StallWatch watch;
        million.open();
        state.counters["held"] = watch.longestBusy();
    }
}
BENCHMARK(openBundle)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir settings; // the window's
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", settings.path().toLocal8Bit());
    const QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("bench_bundle"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

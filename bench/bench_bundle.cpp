// SPDX-License-Identifier: MIT
// A support bundle with a million frames in the window: made, masked and opened, and how long the window is held meanwhile.
#include "benchwindow.h"
#include "million.h"
#include "stallwatch.h"

#include <host/bundlefiles.h>
#include <host/pages/trace/tracesession.h>
#include <trace/files/tracefile.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QEventLoop>
#include <QTemporaryDir>

#include <functional>

namespace {

void until(const std::function<bool()> &isDone)
{
    while (!isDone())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
}

/*! The window with a million frames out of a file. */
class Million
{
public:
    Million()
    {
        QString error;
        const QString file = m_folder.filePath(QStringLiteral("ride.log"));
        if (!TraceFile::save(file, millionFrames(), &error))
            qFatal("%s", qPrintable(error));
        QObject::connect(&m_window.window().bundles(), &BundleFiles::succeeded, [this] { m_isDone = true; });
        QObject::connect(&m_window.window().bundles(), &BundleFiles::failed,
                         [](const QString &sentence) { qFatal("%s", qPrintable(sentence)); });
        m_window.window().trace().open(file);
        waitForLoading();
    }

    void save(bool isMasked)
    {
        m_isDone = false;
        m_window.window().bundles().write(bundle(), isMasked);
        until([this] { return m_isDone; });
    }

    void open()
    {
        const std::shared_ptr<TraceDocument> before = m_window.window().trace().document();
        m_window.openFile(bundle());
        until([&] { return m_window.window().trace().document() != before; });
    }

private:
    QString bundle() const { return m_folder.filePath(QStringLiteral("bundle.zip")); }
    void waitForLoading()
    {
        until([this] { return !m_window.window().trace().loading().isRunning(); });
    }

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

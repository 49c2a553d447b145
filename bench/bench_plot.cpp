// SPDX-License-Identifier: MIT
#include <host/pages/live/eventmodel.h>
#include <host/pages/live/liveplot.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 tenth = 100'000; // us
constexpr int curveCount = 20;
constexpr qint64 hour = 36000 * tenth;

/*! An hour at ten values a second, which never stands still. */
std::shared_ptr<ValueHistory> historyOf(int number)
{
    auto history = std::make_shared<ValueHistory>();
    for (int i = 0; i < 36000; ++i)
        history->add(i * tenth, std::sin(i / (50.0 + number)) * 10 + i * 7919 % 101 / 50.0 + number);
    return history;
}

/*! Draws the hour anew, a tenth of a second later each time. */
void follow(benchmark::State &state, LivePlot *plot, const QVector<LivePlot::Curve> &curves)
{
    plot->setCurves(curves);
    plot->show();
    QCoreApplication::processEvents();
    qint64 to = hour;
    while (state.KeepRunning()) {
        to += tenth;
        plot->showTime(to - hour, to); // while nothing is held
        QCoreApplication::processEvents();
    }
}

/*! 20 curves with so many points that they are just not, or just, drawn pixel by pixel: which is the most work for lines. */
void redrawNoise(benchmark::State &state)
{
    const auto width = static_cast<int>(state.range(0));
    LivePlot plot;
    plot.resize(width, static_cast<int>(state.range(1)));
    const int points = width * static_cast<int>(state.range(2)) / 100;
    QVector<LivePlot::Curve> curves;
    for (int i = 0; i < curveCount; ++i) {
        auto history = std::make_shared<ValueHistory>();
        for (int point = 0; point < points; ++point)
            history->add(point * hour / points, point * 7919 % 101 / 50.0 + i);
        curves.append(
            {history, i % 2 == 0 ? QStringLiteral("A") : QStringLiteral("V"),
             QPen(QColor::fromHsv(i * 17, 200, 200), 1.6, i % 3 == 0 ? Qt::DashLine : Qt::SolidLine)});
    }
    follow(state, &plot, curves);
}
BENCHMARK(redrawNoise)
    ->ArgsProduct({{600, 1800}, {500}, {10, 20, 24, 40, 100, 190, 250}})
    ->Unit(benchmark::kMillisecond)
    ->Name("plotNoiseOf20Curves");

/*! 20 curves of an hour, drawn anew as once in a tenth of a second. */
void redraw(benchmark::State &state)
{
    LivePlot plot;
    plot.resize(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    QVector<LivePlot::Curve> curves;
    for (int i = 0; i < curveCount; ++i)
        curves.append({historyOf(i), i % 2 == 0 ? QStringLiteral("A") : QStringLiteral("V"),
                       QPen(QColor::fromHsv(i * 17, 200, 200), 1.6)});
    follow(state, &plot, curves);
}
BENCHMARK(redraw)
    ->Args({600, 150})
    ->Args({1150, 500})
    ->Args({1800, 800})
    ->Unit(benchmark::kMillisecond)
    ->Name("plotHourOf20Curves");

/*! The longest list of events, searched anew. */
void searchEvents(benchmark::State &state)
{
    EventList list;
    for (std::size_t i = 0; i < EventList::mostEvents; ++i) {
        LiveEvent event;
        event.kind = EventKind::Emergency;
        event.code = static_cast<quint32>(i % 0xFFFF);
        event.errorRegister = 9;
        event.manufacturer = {1, 2, 3, 4, 5};
        event.nodeId = static_cast<quint8>(1 + i % 127);
        event.time = static_cast<qint64>(i) * tenth;
        list.add(event);
    }
    EventModel model;
    model.setSource(&list, [](qint64) { return QDateTime(); });
    QElapsedTimer clock;
    while (state.KeepRunning()) {
        if (state.range(0) == 0)
            model.reset(); // no words yet
        qint64 longest = 0;
        const auto measure = [&clock, &longest](const auto &slice) {
            clock.start();
            slice();
            longest = std::max(longest, clock.nsecsElapsed());
        };
        measure([&model] { model.setFilter(Severity::Note, QStringLiteral("temperature")); });
        while (model.isFiltering())
            measure([] { QCoreApplication::processEvents(); });
        benchmark::DoNotOptimize(model.rowCount());
        measure([&model] { model.setFilter(Severity::Note, QString()); });
        state.SetIterationTime(double(longest) / 1e9);
    }
}
BENCHMARK(searchEvents)
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Name("longestSliceOfSearching20000Events");

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

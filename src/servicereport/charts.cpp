// SPDX-License-Identifier: MIT
#include "charts.h"

#include "cellvoltages.h"
#include "chartscale.h"
#include "reporttr.h"
#include "reportwords.h"

#include <algorithm>
#include <cmath>

namespace {

using Anchor = DrawnItem::Anchor;

constexpr double millivoltsPerVolt = 1000;

/*! The frame of a chart, small enough that its letters can be read on a telephone. */
constexpr qreal chartWidth = 400;
constexpr qreal chartHeight = 190;
constexpr qreal roomLeft = 40;
constexpr qreal roomRight = 10;
constexpr qreal roomTop = 16;
constexpr qreal roomBottom = 22;
constexpr qreal smallLetters = 10;

class Frame
{
public:
    Frame(const ChartScale &scale, const ReportWords &words, const QString &unitText)
        : m_scale(scale)
    {
        drawing.size = QSizeF(chartWidth, chartHeight);
        for (const double tick : scale.ticks) {
            drawing.line(Ink::Rule, {{roomLeft, y(tick)}, {chartWidth - roomRight, y(tick)}}, 0.7);
            drawing.label(Ink::Faint, {roomLeft - 5, y(tick) + 3.5}, words.number(tick, scale.decimals),
                          Anchor::End, smallLetters);
        }
        drawing.label(Ink::Faint, {roomLeft - 5, roomTop - 6}, unitText, Anchor::End, smallLetters);
    }

    qreal y(double value) const { return bottomLine() - m_scale.share(value) * (bottomLine() - roomTop); }
    static qreal bottomLine() { return chartHeight - roomBottom; }
    static qreal plotWidth() { return chartWidth - roomLeft - roomRight; }

    ReportDrawing drawing;

private:
    ChartScale m_scale;
};

ChartScale cellScale(const CellVoltages &voltages)
{
    QVector<double> volts;
    for (const CellVoltages::Cell &cell : voltages.cells) {
        if (cell.millivolts)
            volts.append(*cell.millivolts / millivoltsPerVolt);
    }
    for (const auto &limit : {voltages.lowestAllowed, voltages.highestAllowed}) {
        if (limit)
            volts.append(*limit / millivoltsPerVolt);
    }
    if (volts.isEmpty())
        return ChartScale::around(0, 5);
    const auto range = std::minmax_element(volts.cbegin(), volts.cend());
    return ChartScale::around(*range.first, *range.second);
}

/*! Every how many cells one has its number below it, so that the numbers have room. */
int numberedCells(int count)
{
    for (const int step : {1, 2, 5, 10, 20}) {
        if (count <= 24 * step)
            return step;
    }
    return 50;
}

Ink barInk(const CellVoltages &voltages, int position)
{
    if (voltages.isOutside(voltages.cells.at(position)))
        return Ink::Fault;
    return position == voltages.lowest() || position == voltages.highest() ? Ink::Accent : Ink::Bar;
}

void drawBar(Frame &frame, const CellVoltages &voltages, int position, qreal middle)
{
    constexpr qreal widestBar = 26;
    const CellVoltages::Cell &cell = voltages.cells.at(position);
    if (!cell.millivolts) {
        frame.drawing.label(Ink::NotChecked, {middle, Frame::bottomLine() - 4}, QStringLiteral("?"),
                            Anchor::Middle, 12, true);
        return;
    }
    const qreal half = qMin(Frame::plotWidth() / voltages.cells.size() * 0.72, widestBar) / 2;
    frame.drawing.box(barInk(voltages, position),
                      QRectF(QPointF(middle - half, frame.y(*cell.millivolts / millivoltsPerVolt)),
                             QPointF(middle + half, Frame::bottomLine())));
}

void drawBars(Frame &frame, const CellVoltages &voltages)
{
    const int count = voltages.cells.size();
    const qreal slot = Frame::plotWidth() / count;
    const int step = numberedCells(count);
    for (int i = 0; i < count; ++i) {
        const CellVoltages::Cell &cell = voltages.cells.at(i);
        const qreal middle = roomLeft + slot * (i + 0.5);
        if (cell.number % step == 0 || step == 1)
            frame.drawing.label(Ink::Faint, {middle, chartHeight - 8}, QString::number(cell.number),
                                Anchor::Middle, smallLetters);
        drawBar(frame, voltages, i, middle);
    }
}

/*! The cells that have their value above them. */
QVector<int> labelledCells(const CellVoltages &voltages)
{
    if (voltages.lowest() < 0)
        return {};
    if (voltages.lowest() == voltages.highest())
        return {voltages.lowest()};
    return {voltages.lowest(), voltages.highest()};
}

void drawBarLabels(Frame &frame, const CellVoltages &voltages, const ReportWords &words)
{
    constexpr qreal halfLabel = 14;
    const qreal slot = Frame::plotWidth() / voltages.cells.size();
    for (const int position : labelledCells(voltages)) {
        const double volts = *voltages.cells.at(position).millivolts / millivoltsPerVolt;
        const qreal middle = qBound(roomLeft + halfLabel, roomLeft + slot * (position + 0.5),
                                    chartWidth - roomRight - halfLabel);
        const QPointF base(middle, frame.y(volts) - 4);
        // A limit may run behind it.
        frame.drawing.box(Ink::Paper, QRectF(base - QPointF(halfLabel + 2, smallLetters),
                                             QSizeF(2 * halfLabel + 4, smallLetters + 2)));
        frame.drawing.label(Ink::Text, base, words.number(volts, 3), Anchor::Middle, smallLetters, true);
    }
}

void drawLimits(Frame &frame, const CellVoltages &voltages)
{
    for (const auto &limit : {voltages.lowestAllowed, voltages.highestAllowed}) {
        if (!limit)
            continue;
        const qreal y = frame.y(*limit / millivoltsPerVolt);
        frame.drawing.line(Ink::Fault, {{roomLeft, y}, {chartWidth - roomRight, y}}, 1.2, true);
    }
}

QString volts(double millivolts, const ReportWords &words)
{
    return words.inUnit(millivolts, QStringLiteral("mV"), 3);
}

QString spreadText(const CellVoltages &voltages, const ReportWords &words)
{
    const CellVoltages::Cell &lowest = voltages.cells.at(voltages.lowest());
    const CellVoltages::Cell &highest = voltages.cells.at(voltages.highest());
    return ReportTr::tr("Lowest %1 (cell %2), highest %3 (cell %4), difference %5 mV.")
        .arg(volts(*lowest.millivolts, words), QString::number(lowest.number),
             volts(*highest.millivolts, words), QString::number(highest.number),
             words.number(*highest.millivolts - *lowest.millivolts, 0));
}

QString limitText(const CellVoltages &voltages, const ReportWords &words)
{
    if (voltages.lowestAllowed && voltages.highestAllowed) {
        return ReportTr::tr("The battery allows %1 to %2 (dashed lines).")
            .arg(volts(*voltages.lowestAllowed, words), volts(*voltages.highestAllowed, words));
    }
    if (voltages.highestAllowed)
        return ReportTr::tr("The battery allows up to %1 (dashed line).")
            .arg(volts(*voltages.highestAllowed, words));
    if (voltages.lowestAllowed)
        return ReportTr::tr("The battery allows no less than %1 (dashed line).")
            .arg(volts(*voltages.lowestAllowed, words));
    return ReportTr::tr("The battery names no limits.");
}

/*! The numbers of the cells that \a belongs says yes to, "3, 4"; empty for none. */
template<typename Belongs>
QString cellList(const CellVoltages &voltages, Belongs belongs)
{
    QStringList numbers;
    for (const CellVoltages::Cell &cell : voltages.cells) {
        if (belongs(cell))
            numbers.append(QString::number(cell.number));
    }
    return numbers.join(QStringLiteral(", "));
}

QStringList cellSentences(const CellVoltages &voltages, const ReportWords &words)
{
    QStringList sentences;
    if (voltages.lowest() >= 0)
        sentences << spreadText(voltages, words);
    sentences << limitText(voltages, words);
    const QString outside
        = cellList(voltages, [&](const CellVoltages::Cell &cell) { return voltages.isOutside(cell); });
    if (!outside.isEmpty())
        sentences << ReportTr::tr("Outside of that: cell %1.").arg(outside);
    const QString unread
        = cellList(voltages, [](const CellVoltages::Cell &cell) { return !cell.millivolts; });
    if (!unread.isEmpty())
        sentences << ReportTr::tr("Not read: cell %1.").arg(unread);
    return sentences;
}

ChartScale healthScale(const HealthTrend &trend)
{
    const auto range
        = std::minmax_element(trend.points.cbegin(), trend.points.cend(),
                              [](const auto &a, const auto &b) { return a.percent < b.percent; });
    return ChartScale::around(range.first->percent, range.second->percent);
}

/*! Where a visit stands on the axis of time. */
qreal timeX(const HealthTrend &trend, const HealthTrend::Point &point)
{
    constexpr qreal edge = 20;
    const qint64 all = trend.points.first().time.msecsTo(trend.points.last().time);
    if (all <= 0)
        return roomLeft + Frame::plotWidth() / 2;
    const qint64 done = trend.points.first().time.msecsTo(point.time);
    return roomLeft + edge + double(done) / double(all) * (Frame::plotWidth() - 2 * edge);
}

void drawHealth(Frame &frame, const HealthTrend &trend, const ReportWords &words)
{
    QVector<QPointF> line;
    for (const HealthTrend::Point &point : trend.points)
        line.append({timeX(trend, point), frame.y(point.percent)});
    frame.drawing.line(Ink::Accent, line, 2);
    for (const QPointF &point : qAsConst(line))
        frame.drawing.disc(Ink::Accent, point, 3.2);
    const auto label = [&](int position, Anchor anchor) {
        const HealthTrend::Point &point = trend.points.at(position);
        frame.drawing.label(Ink::Text, line.at(position) - QPointF(0, 8), words.number(point.percent, 1),
                            Anchor::Middle, smallLetters, true);
        frame.drawing.label(Ink::Faint,
                            {anchor == Anchor::Start ? roomLeft : chartWidth - roomRight, chartHeight - 8},
                            words.date(point.time), anchor, smallLetters);
    };
    if (trend.points.size() > 1)
        label(0, Anchor::Start);
    label(trend.points.size() - 1, Anchor::End);
}

QString percent(double value, const ReportWords &words)
{
    constexpr double hundredths = 100;
    return words.inUnit(value * hundredths, QStringLiteral("%"), 1);
}

} // namespace

ReportPicture ReportCharts::cellVoltages(const CellVoltages &voltages, const QString &title,
                                         const ReportWords &words)
{
    ReportPicture picture;
    picture.title = title;
    Frame frame(cellScale(voltages), words, QStringLiteral("V"));
    drawLimits(frame, voltages);
    drawBars(frame, voltages);
    drawBarLabels(frame, voltages, words);
    picture.drawing = frame.drawing;
    picture.words = cellSentences(voltages, words).join(QLatin1Char('\n'));
    return picture;
}

ReportPicture ReportCharts::health(const HealthTrend &trend, const QString &title, const ReportWords &words)
{
    ReportPicture picture;
    picture.title = title;
    Frame frame(healthScale(trend), words, QStringLiteral("%"));
    drawHealth(frame, trend, words);
    picture.drawing = frame.drawing;
    const HealthTrend::Point &first = trend.points.first();
    const HealthTrend::Point &last = trend.points.last();
    picture.words = ReportTr::tr("%1 on %2, %3 on %4.")
                        .arg(percent(first.percent, words), words.date(first.time),
                             percent(last.percent, words), words.date(last.time));
    return picture;
}

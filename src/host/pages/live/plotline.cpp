// SPDX-License-Identifier: MIT
#include "plotline.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 leastGap = 10'000'000; // us
constexpr qint64 usualDistances = 5;    // a gap is more than so many of them

/*! The first point that is not before \a time. */
std::size_t positionOf(const ValueHistory &history, qint64 time)
{
    std::size_t first = 0;
    std::size_t count = history.size();
    while (count > 0) {
        const std::size_t half = count / 2;
        if (history.at(first + half).time < time) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

/*! Makes columns of points that come in their order. */
class Maker
{
public:
    Maker(PlotLine *line, qint64 from, double pixels, qint64 gap)
        : m_line(line)
        , m_from(from)
        , m_pixels(pixels)
        , m_gap(gap)
    {
    }

    void add(const ValueHistory::Point &point)
    {
        const double place = double(point.time - m_from) * m_pixels;
        const bool isBehindGap = m_last != 0 && point.time - m_last > m_gap;
        m_last = point.time;
        QVector<PlotLine::Column> &columns = m_line->columns;
        if (m_line->isDense && !columns.isEmpty() && !isBehindGap
            && std::floor(place) == std::floor(columns.last().place)) {
            PlotLine::Column &column = columns.last();
            column.lowest = std::min(column.lowest, point.lowest);
            column.highest = std::max(column.highest, point.highest);
            column.last = point.last;
            return;
        }
        columns.append({place, point.lowest, point.highest, point.last, isBehindGap});
    }

private:
    PlotLine *m_line;
    qint64 m_from;
    double m_pixels; // in a us
    qint64 m_gap;
    qint64 m_last = 0;
};

void findRange(PlotLine *line)
{
    if (line->columns.isEmpty())
        return;
    line->lowest = line->columns.first().lowest;
    line->highest = line->columns.first().highest;
    for (const PlotLine::Column &column : qAsConst(line->columns)) {
        line->lowest = std::min(line->lowest, column.lowest);
        line->highest = std::max(line->highest, column.highest);
    }
}

} // namespace

PlotLine PlotLine::of(const ValueHistory &history, qint64 from, qint64 to, int width)
{
    PlotLine line;
    if (history.size() == 0 || to <= from || width <= 0)
        return line;
    std::size_t first = positionOf(history, from);
    const std::size_t end = std::min(positionOf(history, to) + 1, history.size());
    if (first > 0)
        --first;
    if (first >= end)
        return line;
    const std::size_t count = end - first;
    line.isDense = count > 2 * static_cast<std::size_t>(width);
    line.columns.reserve(line.isDense ? width + 2 : static_cast<int>(count));
    const qint64 time = history.at(end - 1).time - history.at(first).time;
    const qint64 gap = std::max(leastGap, usualDistances * time
                                              / static_cast<qint64>(std::max<std::size_t>(1, count - 1)));
    Maker maker(&line, from, double(width) / double(to - from), gap);
    for (std::size_t i = first; i < end; ++i)
        maker.add(history.at(i));
    findRange(&line);
    return line;
}

std::optional<float> PlotLine::valueAt(const ValueHistory &history, qint64 time)
{
    const std::size_t behind = positionOf(history, time + 1);
    if (behind == 0)
        return std::nullopt;
    return history.at(behind - 1).last;
}

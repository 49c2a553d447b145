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

} // namespace

PlotLine PlotLine::of(const ValueHistory &history, qint64 from, qint64 to, int width)
{
    PlotLine line;
    line.follow(history, from, to, width);
    return line;
}

void PlotLine::follow(const ValueHistory &history, qint64 from, qint64 to, int width)
{
    if (canGoOn(from, to, width))
        goOn(history, from, to);
    else
        begin(history, from, to, width);
    m_from = from;
    m_to = to;
    m_width = width;
    place(from, to);
}

bool PlotLine::canGoOn(qint64 from, qint64 to, int width) const
{
    return isDense && !columns.isEmpty() && width == m_width && to - from == m_to - m_from && from >= m_from
           && from < m_to;
}

void PlotLine::begin(const ValueHistory &history, qint64 from, qint64 to, int width)
{
    *this = PlotLine();
    if (history.size() == 0 || to <= from || width <= 0)
        return;
    std::size_t first = positionOf(history, from);
    const std::size_t end = std::min(positionOf(history, to) + 1, history.size());
    if (first > 0)
        --first;
    if (first >= end)
        return;
    const std::size_t count = end - first;
    isDense = count > 2 * static_cast<std::size_t>(width);
    columns.reserve(isDense ? width + 3 : static_cast<int>(count));
    const qint64 time = history.at(end - 1).time - history.at(first).time;
    m_gap = std::max(leastGap,
                     usualDistances * time / static_cast<qint64>(std::max<std::size_t>(1, count - 1)));
    m_bucket = double(to - from) / double(width);
    add(history, first, end);
}

/*! The newest bucket again, because more may have come to it, and those behind it. */
void PlotLine::goOn(const ValueHistory &history, qint64 from, qint64 to)
{
    const qint64 newest = columns.last().bucket;
    while (!columns.isEmpty() && columns.last().bucket == newest)
        columns.removeLast();
    const auto firstSeen = static_cast<qint64>(std::floor(double(from) / m_bucket));
    auto seen = std::find_if(columns.begin(), columns.end(),
                             [firstSeen](const Column &column) { return column.bucket >= firstSeen; });
    if (seen != columns.begin())
        --seen; // one more, so that the line goes on
    columns.erase(columns.begin(), seen);
    const std::size_t first = positionOf(history, static_cast<qint64>(std::ceil(double(newest) * m_bucket)));
    m_last = first > 0 ? history.at(first - 1).time : noTime;
    add(history, first, std::min(positionOf(history, to) + 1, history.size()));
}

void PlotLine::add(const ValueHistory &history, std::size_t first, std::size_t end)
{
    for (std::size_t i = first; i < end; ++i)
        addPoint(history.at(i));
}

void PlotLine::addPoint(const ValueHistory::Point &point)
{
    const auto bucket = static_cast<qint64>(std::floor(double(point.time) / m_bucket));
    const bool isBehindGap = m_last != noTime && point.time - m_last > m_gap;
    m_last = point.time;
    if (isDense && !columns.isEmpty() && !isBehindGap && bucket == columns.last().bucket) {
        Column &column = columns.last();
        column.lowest = std::min(column.lowest, point.lowest);
        column.highest = std::max(column.highest, point.highest);
        column.last = point.last;
        return;
    }
    columns.append({double(point.time), point.lowest, point.highest, point.last, bucket, isBehindGap});
}

/*! Times become pixels, and the range is found. */
void PlotLine::place(qint64 from, qint64 to)
{
    lowest = 0;
    highest = 0;
    if (columns.isEmpty())
        return;
    const double pixels = double(m_width) / double(to - from);
    lowest = columns.first().lowest;
    highest = columns.first().highest;
    for (Column &column : columns) {
        const double time = isDense ? double(column.bucket) * m_bucket : column.time;
        column.place = (time - double(from)) * pixels;
        lowest = std::min(lowest, column.lowest);
        highest = std::max(highest, column.highest);
    }
}

std::optional<float> PlotLine::valueAt(const ValueHistory &history, qint64 time)
{
    const std::size_t behind = positionOf(history, time + 1);
    if (behind == 0)
        return std::nullopt;
    return history.at(behind - 1).last;
}

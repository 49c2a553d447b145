// SPDX-License-Identifier: MIT
#include "columnpen.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int dash = 8; // widths of a usual line
constexpr double usualWidth = 1.6;
constexpr double leastCover = 1.0 / 32; // of a pixel that is seen
constexpr double farAway = 1e6;         // pixels: no column is longer

} // namespace

ColumnPen::ColumnPen(QPainter *painter, const QPen &pen, double width, Edges edges)
    : m_painter(painter)
    , m_colour(pen.color())
    , m_style(pen.style())
    , m_half(width / 2)
    , m_dash(std::max(4, static_cast<int>(dash * width / usualWidth)))
    , m_edges(edges)
{
}

void ColumnPen::lineTo(double x, double y)
{
    if (std::isnan(y)) { // a device may send that
        lift();
        return;
    }
    y = std::clamp(y, -farAway, farAway);
    const auto column = static_cast<int>(std::floor(x));
    if (!m_isDown) {
        m_isDown = true;
        m_column = column;
        m_top = m_bottom = y;
    }
    const double slope = x > m_x ? (y - m_y) / (x - m_x) : 0;
    while (m_column < column)
        nextColumn(m_y + slope * (m_column + 1 - m_x));
    include(y);
    m_x = x;
    m_y = y;
}

void ColumnPen::lift()
{
    if (m_isDown)
        paintColumn();
    m_isDown = false;
}

void ColumnPen::include(double y)
{
    m_top = std::min(m_top, y);
    m_bottom = std::max(m_bottom, y);
}

/*! The line leaves the column at \a y. */
void ColumnPen::nextColumn(double y)
{
    include(y);
    paintColumn();
    ++m_column;
    m_top = m_bottom = y;
}

void ColumnPen::paintColumn()
{
    const int length = m_style == Qt::DotLine ? m_dash / 4 : m_style == Qt::DashLine ? m_dash : m_dash / 2;
    if (m_style != Qt::SolidLine && m_column / length % 2 != 0)
        return;
    const double top = m_top - m_half;
    const double bottom = m_bottom + m_half;
    const bool isSmooth = m_edges == Edges::Smooth;
    const auto first = static_cast<int>(isSmooth ? std::ceil(top) : std::floor(top + 0.5));
    const auto end = static_cast<int>(isSmooth ? std::floor(bottom) : std::floor(bottom + 0.5));
    m_painter->fillRect(m_column, first, 1, std::max(end - first, isSmooth ? 0 : 1), m_colour);
    if (!isSmooth)
        return;
    if (end < first) { // within one pixel
        paintPart(end, bottom - top);
        return;
    }
    paintPart(first - 1, first - top);
    paintPart(end, bottom - end);
}

void ColumnPen::paintPart(int y, double share)
{
    if (share < leastCover)
        return;
    QColor colour = m_colour;
    colour.setAlphaF(colour.alphaF() * std::min(1.0, share));
    m_painter->fillRect(m_column, y, 1, 1, colour);
}

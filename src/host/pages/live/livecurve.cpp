// SPDX-License-Identifier: MIT
#include "livecurve.h"

#include <QPainter>

#include <qwt_scale_map.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int dash = 8; // pixels, of curves that are told apart by it

bool isDrawn(Qt::PenStyle style, double place)
{
    if (style == Qt::SolidLine)
        return true;
    const int length = style == Qt::DotLine ? dash / 4 : style == Qt::DashLine ? dash : dash / 2;
    return int(place) / length % 2 == 0;
}

} // namespace

LiveCurve::LiveCurve(std::shared_ptr<const ValueHistory> history, const QPen &pen)
    : m_history(std::move(history))
    , m_pen(pen)
{
    setItemAttribute(AutoScale, false);
    setItemAttribute(Legend, false);
}

void LiveCurve::follow(qint64 from, qint64 to, int width)
{
    m_line.follow(*m_history, from, to, width);
}

void LiveCurve::setOwnRange(double lowest, double highest)
{
    m_hasOwnRange = true;
    m_lowest = lowest;
    m_highest = highest;
}

void LiveCurve::draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                     const QRectF &) const
{
    QwtScaleMap scale = yMap;
    if (m_hasOwnRange)
        scale.setScaleInterval(m_lowest, m_highest);
    const double left = xMap.p1();
    if (m_line.isDense)
        drawColumns(painter, scale, left);
    else
        drawPoints(painter, scale, left);
}

void LiveCurve::drawPoints(QPainter *painter, const QwtScaleMap &yMap, double left) const
{
    painter->setPen(m_pen);
    painter->setRenderHint(QPainter::Antialiasing);
    QPolygonF part;
    for (const PlotLine::Column &column : m_line.columns) {
        if (column.isBehindGap) {
            painter->drawPolyline(part);
            part.clear();
        }
        const double x = left + column.place;
        if (column.lowest < column.highest)
            part << QPointF(x, yMap.transform(double(column.lowest)))
                 << QPointF(x, yMap.transform(double(column.highest)));
        part << QPointF(x, yMap.transform(double(column.last)));
    }
    if (part.size() == 1)
        painter->drawPoint(part.first());
    painter->drawPolyline(part);
}

/*! Each column from its lowest to its highest, and to the column before. */
void LiveCurve::drawColumns(QPainter *painter, const QwtScaleMap &yMap, double left) const
{
    for (int i = 0; i < m_line.columns.size(); ++i) {
        const PlotLine::Column &column = m_line.columns.at(i);
        if (!isDrawn(m_pen.style(), column.place))
            continue;
        const bool goesOn = i > 0 && !column.isBehindGap;
        const float before = goesOn ? m_line.columns.at(i - 1).last : column.lowest;
        const auto x = static_cast<int>(std::floor(left + column.place));
        const float lowest = std::min(before, column.lowest);
        const float highest = std::max(goesOn ? before : column.highest, column.highest);
        const int top = qRound(yMap.transform(double(highest)));
        const int bottom = qRound(yMap.transform(double(lowest)));
        painter->fillRect(x, top, 1, bottom - top + 1, m_pen.color()); // several times as fast as a line
    }
}

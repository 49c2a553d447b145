// SPDX-License-Identifier: MIT
#include "livecurve.h"

#include "columnpen.h"

#include <QPainter>

#include <qwt_scale_map.h>

#include <utility>

LiveCurve::LiveCurve(std::shared_ptr<const ValueHistory> history, QPen pen)
    : m_history(std::move(history))
    , m_pen(std::move(pen))
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
    const double ratio = painter->device()->devicePixelRatioF();
    painter->save();
    painter->scale(1 / ratio, 1 / ratio);
    const auto edges = m_line.isDense ? ColumnPen::Edges::Sharp : ColumnPen::Edges::Smooth;
    ColumnPen pen(painter, m_pen, (m_line.isDense ? 1 : m_pen.widthF()) * ratio, edges);
    for (const PlotLine::Column &column : m_line.columns) {
        if (column.isBehindGap)
            pen.lift();
        const double x = (xMap.p1() + column.place) * ratio;
        if (column.lowest < column.highest) {
            pen.lineTo(x, scale.transform(double(column.lowest)) * ratio);
            pen.lineTo(x, scale.transform(double(column.highest)) * ratio);
        }
        pen.lineTo(x, scale.transform(double(column.last)) * ratio);
    }
    pen.lift();
    painter->restore();
}

// SPDX-License-Identifier: MIT
#pragma once

#include "plotline.h"

#include <QPen>
#include <QString>

#include <qwt_plot_item.h>

#include <memory>

/*! The curve of a value in a plot. */
class LiveCurve : public QwtPlotItem
{
public:
    LiveCurve(std::shared_ptr<const ValueHistory> history, QPen pen);

    /*! Takes what there is from \a from to \a to (us), for \a width pixels. */
    void follow(qint64 from, qint64 to, int width);

    const PlotLine &line() const { return m_line; }
    const ValueHistory &history() const { return *m_history; }

    /*! Draws it between these numbers in the whole height, without an axis. */
    void setOwnRange(double lowest, double highest);

    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
              const QRectF &canvas) const override;

private:
    std::shared_ptr<const ValueHistory> m_history;
    QPen m_pen;
    PlotLine m_line;
    bool m_hasOwnRange = false;
    double m_lowest = 0;
    double m_highest = 0;
};

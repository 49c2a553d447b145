// SPDX-License-Identifier: MIT
#pragma once

#include <archive/visit.h>

#include <qwt_plot.h>

#include <QVector>

class QwtPlotGrid;

/*! A value over the visits of a vehicle: one line for each device that has it. */
class TrendPlot : public QwtPlot
{
    Q_OBJECT

public:
    explicit TrendPlot(QWidget *parent = nullptr);

    /*! \a trendValue as in TrendValues; points in the order of their times. */
    void setTrend(int trendValue, const QVector<TrendPoint> &points);

    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void takeColours();

    QwtPlotGrid *m_grid;
};

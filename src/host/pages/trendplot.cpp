// SPDX-License-Identifier: MIT
#include "trendplot.h"

#include "trendvalues.h"

#include <qwt_date_scale_draw.h>
#include <qwt_date_scale_engine.h>
#include <qwt_legend.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_symbol.h>

#include <QLocale>
#include <QMap>
#include <QPen>

#include <algorithm>

namespace {

constexpr int symbolSize = 7;
constexpr double room = 0.15; // above and below, of the range of values
constexpr double dayInMs = 24.0 * 3600 * 1000;

const QRgb inks[] = {0xFF1F6FB2, 0xFFB25A1F, 0xFF2F8F4E, 0xFF8A3FA0, 0xFF6B6B6B};
const QwtSymbol::Style shapes[]
    = {QwtSymbol::Ellipse, QwtSymbol::Rect, QwtSymbol::Triangle, QwtSymbol::Diamond, QwtSymbol::DTriangle};

/*! Dates as the user's language writes them. */
class Dates : public QwtDateScaleDraw
{
public:
    Dates()
        : QwtDateScaleDraw(Qt::LocalTime)
    {
    }

    QwtText label(double value) const override
    {
        return QLocale().toString(toDateTime(value).date(), QLocale::ShortFormat);
    }
};

/*! The same device is one line, wherever it was. */
QString lineOf(const TrendPoint &point)
{
    const QString key = point.identity.toKey();
    return key.isEmpty() ? QString::number(point.nodeId) : key;
}

/*! Two batteries of a vehicle are told apart by their serial numbers. */
QString nameOf(const TrendPoint &point)
{
    const QString number = QString::number(point.identity.serial.value_or(point.nodeId));
    return point.identity.displayName(point.nodeId) + QLatin1Char(' ') + number;
}

} // namespace

TrendPlot::TrendPlot(QWidget *parent)
    : QwtPlot(parent)
    , m_grid(new QwtPlotGrid) // the plot's
{
    setObjectName(QStringLiteral("trendPlot"));
    setAxisScaleDraw(xBottom, new Dates);
    setAxisScaleEngine(xBottom, new QwtDateScaleEngine(Qt::LocalTime));
    setAxisMaxMajor(xBottom, 4);
    setAxisMaxMajor(yLeft, 5);
    static_cast<QwtPlotCanvas *>(canvas())->setFrameStyle(QFrame::NoFrame);
    m_grid->attach(this);
    takeColours();
    insertLegend(new QwtLegend, BottomLegend);
}

void TrendPlot::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        takeColours();
    QwtPlot::changeEvent(event);
}

void TrendPlot::takeColours()
{
    setCanvasBackground(palette().brush(QPalette::Base));
    m_grid->setPen(palette().color(QPalette::Midlight), 1);
}

QSize TrendPlot::minimumSizeHint() const
{
    return {120, 90};
}

void TrendPlot::setTrend(int trendValue, const QVector<TrendPoint> &points)
{
    detachItems(QwtPlotItem::Rtti_PlotCurve);
    QMap<QString, QPolygonF> lines;
    QMap<QString, QString> names;
    double lowest = 0;
    double highest = 0;
    bool isFirst = true;
    for (const TrendPoint &point : points) {
        const double number = TrendValues::number(trendValue, point.value);
        lines[lineOf(point)].append({static_cast<double>(point.time.toMSecsSinceEpoch()), number});
        names[lineOf(point)] = nameOf(point);
        lowest = isFirst ? number : std::min(lowest, number);
        highest = isFirst ? number : std::max(highest, number);
        isFirst = false;
    }
    int position = 0;
    for (auto line = lines.cbegin(); line != lines.cend(); ++line, ++position) {
        QwtText title(names.value(line.key()).simplified(), QwtText::PlainText);
        auto *curve = new QwtPlotCurve(title);
        const QColor ink(inks[position % 5]);
        curve->setPen(ink, 2);
        curve->setSymbol(
            new QwtSymbol(shapes[position % 5], ink, QPen(Qt::white), QSize(symbolSize, symbolSize)));
        curve->setRenderHint(QwtPlotItem::RenderAntialiased);
        curve->setSamples(line.value());
        curve->attach(this);
    }
    const double margin = highest > lowest ? (highest - lowest) * room : std::max(1.0, highest * room);
    setAxisScale(yLeft, lowest - margin, highest + margin);
    if (!points.isEmpty()) {
        const auto first = static_cast<double>(points.first().time.toMSecsSinceEpoch());
        const auto last = static_cast<double>(points.last().time.toMSecsSinceEpoch());
        const double aside = std::max(dayInMs, (last - first) * room / 2);
        setAxisScale(xBottom, first - aside, last + aside);
    }
    legend()->setVisible(lines.size() > 1);
    replot();
}

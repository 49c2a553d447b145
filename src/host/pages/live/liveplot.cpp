// SPDX-License-Identifier: MIT
#include "liveplot.h"

#include "livecurve.h"

#include <system/amounts.h>

#include <QEvent>
#include <QMouseEvent>
#include <QRubberBand>
#include <QWheelEvent>

#include <qwt_date_scale_draw.h>
#include <qwt_date_scale_engine.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_marker.h>
#include <qwt_text.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 shortestTime = 500000;    // us that are shown at least
constexpr qint64 longestTime = 7200000000; // us
constexpr double room = 0.08;              // above and below, of the range of values
constexpr double zoomFactor = 1.25;
constexpr int leastDrag = 6; // pixels; less is a click
constexpr int wheelStep = 120;

class Times : public QwtDateScaleDraw
{
public:
    Times()
        : QwtDateScaleDraw(Qt::LocalTime)
    {
    }

    QwtText label(double value) const override
    {
        return toDateTime(value).time().toString(QStringLiteral("HH:mm:ss"));
    }
};

} // namespace

LivePlot::LivePlot(QWidget *parent)
    : QwtPlot(parent)
    , m_grid(new QwtPlotGrid)     // the plot's
    , m_cursor(new QwtPlotMarker) // the plot's
    , m_band(new QRubberBand(QRubberBand::Rectangle, canvas()))
{
    setObjectName(QStringLiteral("livePlot"));
    setSizePolicy(QSizePolicy::Expanding,
                  QSizePolicy::Expanding); // else it is never lower than it would like to be
    setAxisScaleDraw(xBottom, new Times);
    setAxisScaleEngine(xBottom, new QwtDateScaleEngine(Qt::LocalTime));
    setAxisMaxMajor(xBottom, 5);
    setAxisMaxMajor(yLeft, 5);
    setAxisMaxMajor(yRight, 5);
    static_cast<QwtPlotCanvas *>(canvas())->setFrameStyle(QFrame::NoFrame);
    plotLayout()->setAlignCanvasToScales(true);
    canvas()->setCursor(Qt::CrossCursor);
    canvas()->installEventFilter(this);
    m_grid->attach(this);
    m_cursor->setLineStyle(QwtPlotMarker::VLine);
    m_cursor->attach(this);
    m_cursor->hide();
    takeColours();
}

QSize LivePlot::minimumSizeHint() const
{
    constexpr int lines = 6;
    return {120, lines * fontMetrics().height()};
}

void LivePlot::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        takeColours();
    QwtPlot::changeEvent(event);
}

void LivePlot::takeColours()
{
    setCanvasBackground(palette().brush(QPalette::Base));
    QColor line = palette().color(QPalette::Text);
    line.setAlphaF(0.15);
    m_grid->setPen(line, 1);
    m_cursor->setLinePen(palette().color(QPalette::Text), 1, Qt::DashLine);
}

void LivePlot::setCurves(const QVector<Curve> &curves)
{
    for (const Shown &shown : qAsConst(m_shown))
        delete shown.curve; // detaches itself
    m_shown.clear();
    m_units.clear();
    for (const Curve &curve : curves) {
        if (!m_units.contains(curve.unit))
            m_units.append(curve.unit);
        const int group = m_units.indexOf(curve.unit);
        auto *item = new LiveCurve(curve.history, curve.pen);
        item->setYAxis(group == 1 ? yRight : yLeft);
        item->attach(this);
        m_shown.append({item, group});
    }
    enableAxis(yRight, m_units.size() > 1);
    setAxisTitle(yLeft, QwtText(m_units.value(0), QwtText::PlainText));
    setAxisTitle(yRight, QwtText(m_units.value(1), QwtText::PlainText));
}

void LivePlot::showTime(qint64 from, qint64 to)
{
    m_from = from;
    m_to = std::max(to, from + 1);
    setAxisScale(xBottom, double(m_start + m_from / Microseconds::ofMillisecond),
                 double(m_start + m_to / Microseconds::ofMillisecond));
    const int width = canvas()->width();
    for (const Shown &shown : qAsConst(m_shown))
        shown.curve->follow(m_from, m_to, width);
    scaleAxes();
    replot();
}

void LivePlot::scaleAxes()
{
    for (int group = 0; group < m_units.size(); ++group)
        scaleGroup(group);
}

void LivePlot::scaleGroup(int group)
{
    bool isFirst = true;
    double lowest = 0;
    double highest = 0;
    for (const Shown &shown : qAsConst(m_shown)) {
        const PlotLine &line = shown.curve->line();
        if (shown.group != group || line.columns.isEmpty())
            continue;
        lowest = isFirst ? double(line.lowest) : std::min(lowest, double(line.lowest));
        highest = isFirst ? double(line.highest) : std::max(highest, double(line.highest));
        isFirst = false;
    }
    const double margin
        = highest > lowest ? (highest - lowest) * room : std::max(0.5, std::fabs(highest) * room);
    if (group < 2) {
        setAxisScale(group == 0 ? yLeft : yRight, lowest - margin, highest + margin);
        return;
    }
    for (const Shown &shown : qAsConst(m_shown)) {
        if (shown.group == group)
            shown.curve->setOwnRange(lowest - margin, highest + margin);
    }
}

void LivePlot::setCursorTime(qint64 time)
{
    m_cursor->setVisible(time >= 0);
    m_cursor->setXValue(double(m_start) + double(time) / double(Microseconds::ofMillisecond));
}

qint64 LivePlot::timeAt(int place) const
{
    const int width = std::max(1, canvas()->width());
    return m_from + qint64(double(m_to - m_from) * double(place) / double(width));
}

void LivePlot::press(const QPoint &place)
{
    m_pressed = place;
    m_isPressed = true;
}

void LivePlot::drag(const QPoint &place)
{
    const bool isDrag = std::abs(place.x() - m_pressed.x()) >= leastDrag;
    m_band->setVisible(isDrag);
    m_band->setGeometry(
        QRect(QPoint(m_pressed.x(), 0), QPoint(place.x(), canvas()->height() - 1)).normalized());
}

void LivePlot::release(const QPoint &place)
{
    m_isPressed = false;
    m_band->hide();
    const qint64 first = timeAt(std::min(m_pressed.x(), place.x()));
    const qint64 last = timeAt(std::max(m_pressed.x(), place.x()));
    if (std::abs(place.x() - m_pressed.x()) < leastDrag)
        emit cursorChosen(first);
    else
        emit timeChosen(first, std::max(last, first + shortestTime));
}

/*! The time under the pointer stays there. */
void LivePlot::zoom(const QPoint &place, int steps)
{
    const double factor = std::pow(zoomFactor, -steps);
    const qint64 middle = timeAt(place.x());
    const auto length = qBound(shortestTime, qint64(double(m_to - m_from) * factor), longestTime);
    const double part = double(middle - m_from) / double(std::max<qint64>(1, m_to - m_from));
    const qint64 first = middle - qint64(double(length) * part);
    emit timeChosen(first, first + length);
}

void LivePlot::handleMouse(const QMouseEvent &mouse)
{
    if (mouse.type() == QEvent::MouseMove) {
        if (m_isPressed)
            drag(mouse.pos());
    } else if (mouse.button() == Qt::LeftButton) {
        if (mouse.type() == QEvent::MouseButtonPress)
            press(mouse.pos());
        else if (m_isPressed)
            release(mouse.pos());
    }
}

bool LivePlot::eventFilter(QObject *object, QEvent *event)
{
    if (object != canvas())
        return QwtPlot::eventFilter(object, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        handleMouse(*static_cast<QMouseEvent *>(event));
        return true;
    case QEvent::MouseButtonDblClick:
        emit resetRequested();
        return true;
    case QEvent::Wheel: {
        auto *wheel = static_cast<QWheelEvent *>(event);
        zoom(wheel->pos(), wheel->angleDelta().y() / wheelStep);
        return true;
    }
    default:
        return QwtPlot::eventFilter(object, event);
    }
}

// SPDX-License-Identifier: MIT
#include "plotview.h"

#include "curveink.h"
#include "liveplot.h"
#include "livesession.h"
#include "plotline.h"
#include "watchmodel.h"

#include <host/pages/heightkeeper.h>
#include <host/pages/pagelayout.h>
#include <system/amounts.h>

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QToolButton>

#include <algorithm>

namespace {

constexpr qint64 spans[]
    = {60 * Microseconds::ofSecond, 300 * Microseconds::ofSecond, 3600 * Microseconds::ofSecond};

} // namespace

PlotView::PlotView(LiveSession *session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_span(new QComboBox(this))
    , m_hold(new QToolButton(this))
    , m_readings(new QLabel(this))
    , m_empty(new QLabel(this))
    , m_plot(new LivePlot(this))
{
    build();
    connect(m_span, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { hold(false); });
    connect(m_hold, &QToolButton::clicked, this, &PlotView::hold);
    connect(m_plot, &LivePlot::timeChosen, this, &PlotView::zoomTo);
    connect(m_plot, &LivePlot::cursorChosen, this, &PlotView::setCursorTime);
    connect(m_plot, &LivePlot::resetRequested, this, [this] { hold(false); });
    connect(&session->watch(), &LiveWatch::changed, this, &PlotView::takeCurves);
    connect(session, &LiveSession::started, this, [this] {
        m_cursor = -1;
        hold(false);
        takeCurves();
    });
    retranslate();
    takeCurves();
}

void PlotView::build()
{
    m_span->setObjectName(QStringLiteral("plotSpan"));
    m_hold->setObjectName(QStringLiteral("holdPlot"));
    m_hold->setCheckable(true);
    m_hold->setFocusPolicy(Qt::TabFocus);
    m_readings->setObjectName(QStringLiteral("plotReadings"));
    m_readings->setTextFormat(Qt::PlainText);
    m_readings->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_readings->setMinimumWidth(1);
    m_readings->setWordWrap(true);
    new HeightKeeper(m_readings);
    m_empty->setTextFormat(Qt::PlainText);
    m_empty->setWordWrap(true);
    m_empty->setAlignment(Qt::AlignCenter);
    auto *top = new QHBoxLayout;
    top->addWidget(m_span);
    top->addWidget(m_hold);
    top->addWidget(m_readings, 1);
    auto *layout = new PageLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    layout->addLayout(top);
    layout->addWidget(m_plot, 1);
    layout->addWidget(m_empty, 1);
}

qint64 PlotView::span() const
{
    return spans[qBound(0, m_span->currentIndex(), 2)];
}

/*! Those that are ticked, as far as they were heard. */
void PlotView::takeCurves()
{
    QVector<LivePlot::Curve> curves;
    bool isAny = false;
    const QVector<WatchedItem> &items = m_session->watch().items();
    for (int row = 0; row < items.size(); ++row) {
        if (!items.at(row).isPlotted)
            continue;
        isAny = true;
        const LiveValue *value = m_session->watch().value(row);
        if (value != nullptr && value->history != nullptr)
            curves.append({value->history, value->unit, CurveInk::pen(row)});
    }
    m_bound = curves.size();
    m_plot->setStart(m_session->live().timeOfDay(0).toMSecsSinceEpoch());
    m_plot->setCurves(curves);
    m_plot->setVisible(isAny);
    m_empty->setVisible(!isAny);
    draw();
}

/*! Values that were heard for the first time have a history now. */
void PlotView::bindCurves()
{
    int bound = 0;
    const QVector<WatchedItem> &items = m_session->watch().items();
    for (int row = 0; row < items.size(); ++row) {
        const LiveValue *value = items.at(row).isPlotted ? m_session->watch().value(row) : nullptr;
        if (value != nullptr && value->history != nullptr)
            ++bound;
    }
    if (bound != m_bound)
        takeCurves();
}

void PlotView::refresh()
{
    bindCurves();
    if (!m_isHeld)
        draw();
}

void PlotView::draw()
{
    if (!m_isHeld) {
        m_to = m_session->now();
        m_from = m_to - span();
    }
    m_plot->setCursorTime(m_cursor);
    if (m_plot->isVisible())
        m_plot->showTime(m_from, m_to);
    showReadings();
}

void PlotView::hold(bool isHeld)
{
    m_isHeld = isHeld;
    m_hold->setChecked(isHeld);
    draw();
}

void PlotView::zoomTo(qint64 from, qint64 to)
{
    hold(true);
    m_from = from;
    m_to = to;
    draw();
}

void PlotView::setCursorTime(qint64 time)
{
    m_cursor = std::max<qint64>(0, time);
    draw();
}

void PlotView::showTime(qint64 time)
{
    m_cursor = time;
    draw(); // up to now, unless it is held
    if (time < m_from || time > m_to)
        zoomTo(time - span() / 2, time + span() / 2);
}

void PlotView::showReadings()
{
    m_readings->setText(readings());
    m_readings->setToolTip(m_readings->text());
}

/*! What the curves are at the cursor, without one now. */
QString PlotView::readings() const
{
    constexpr int lengthOfTime = 10; // "12:03:11.2"
    QStringList parts;
    if (m_cursor >= 0)
        parts.append(m_session->live()
                         .timeOfDay(m_cursor)
                         .toString(QStringLiteral("HH:mm:ss.zzz"))
                         .left(lengthOfTime));
    const LiveWatch &watch = m_session->watch();
    for (int row = 0; row < watch.items().size(); ++row) {
        const LiveValue *value = watch.items().at(row).isPlotted ? watch.value(row) : nullptr;
        if (value == nullptr || value->history == nullptr || m_cursor < 0)
            continue;
        const std::optional<float> number = PlotLine::valueAt(*value->history, m_cursor);
        const QString text
            = number ? WatchModel::numberText(double(*number), *value) + QLatin1Char(' ') + value->unit
                     : QStringLiteral("–");
        parts.append(watch.name(row) + QLatin1Char(' ') + text.trimmed());
    }
    return parts.join(QStringLiteral(" · "));
}

void PlotView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void PlotView::retranslate()
{
    const int chosen = m_span->currentIndex() < 0 ? 1 : m_span->currentIndex();
    const QSignalBlocker blocker(m_span);
    m_span->clear();
    m_span->addItems({tr("1 min"), tr("5 min"), tr("1 h")});
    m_span->setCurrentIndex(chosen);
    m_span->setToolTip(tr("How much of the time is shown"));
    m_hold->setText(tr("&Pause"));
    m_hold->setToolTip(
        tr("Holds the plot; the values are still collected. Drag to see a part, turn the wheel to see "
           "more or less, double-click to follow again."));
    m_empty->setText(tr("Tick values in the watch list: they are plotted here."));
}

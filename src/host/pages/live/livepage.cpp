// SPDX-License-Identifier: MIT
#include "livepage.h"

#include "batteryview.h"
#include "eventview.h"
#include "lightstrip.h"
#include "livesession.h"
#include "numbersdialog.h"
#include "plotview.h"
#include "watchview.h"

#include <host/pages/heightkeeper.h>
#include <host/pages/pagelayout.h>
#include <system/amounts.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>

namespace {

constexpr int margin = 9;
constexpr int share = 100;       // of a splitter
constexpr int ticksOfLights = 5; // half a second: nobody reads faster

} // namespace

LivePage::LivePage(LiveSession *session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
{
    setObjectName(QStringLiteral("livePage"));
    auto *layout = new PageLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(margin - 3);
    layout->addWidget(buildTop());
    layout->addWidget(buildCentre(), 1);
    connect(session, &LiveSession::started, this, &LivePage::begin);
    connect(session, &LiveSession::stopped, this, &LivePage::refreshAll);
    connect(session, &LiveSession::ticked, this, [this] {
        if (isVisible())
            refresh();
    });
    connectParts();
    retranslate();
    if (!session->isEmpty())
        begin();
}

void LivePage::connectParts()
{
    connect(m_events, &EventView::succeeded, this,
            [this](const QString &sentence) { emit told(sentence, {}); });
    connect(m_events, &EventView::failed, this, &LivePage::failed);
    connect(m_events, &EventView::eventChosen, this, [this](const LiveEvent &event) {
        if (!m_isRecorded)
            m_plot->showTime(event.time);
        emit eventChosen(event, timeOfDay(event.time));
    });
    connect(m_events, &EventView::traceRequested, this,
            [this](const LiveEvent &event) { emit traceRequested(event, timeOfDay(event.time)); });
    connect(m_watch, &WatchView::told, this, &LivePage::told);
    connect(m_watch, &WatchView::failed, this, &LivePage::failed);
}

void LivePage::setFolder(const std::function<QString()> &folder)
{
    m_events->setFolder(folder);
    m_watch->setFolder(folder);
}

bool LivePage::showEventAt(const QDateTime &time)
{
    return m_events->chooseNearest(m_isRecorded ? time.toMSecsSinceEpoch() * Microseconds::ofMillisecond
                                                : m_session->live().timeOf(time));
}

QDateTime LivePage::timeOfDay(qint64 time) const
{
    return m_isRecorded ? QDateTime::fromMSecsSinceEpoch(time / Microseconds::ofMillisecond)
                        : m_session->live().timeOfDay(time);
}

bool LivePage::showRecorded(const std::vector<LiveEvent> &events)
{
    if (m_session->isListening())
        return false;
    m_isRecorded = true;
    m_recorded = EventList::of(events);
    m_events->model().setSource(&m_recorded, [this](qint64 time) { return timeOfDay(time); });
    refreshAll();
    return true;
}

QWidget *LivePage::buildTop()
{
    auto *top = new QWidget(this);
    m_lights = new LightStrip(top);
    m_numbers = new QToolButton(top);
    m_numbers->setObjectName(QStringLiteral("allNumbers"));
    m_numbers->setFocusPolicy(Qt::TabFocus);
    connect(m_numbers, &QToolButton::clicked, this, &LivePage::showNumbers);
    auto *layout = new QHBoxLayout(top);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_lights, 1);
    layout->addWidget(m_numbers, 0, Qt::AlignTop);
    new HeightKeeper(top);
    return top;
}

QWidget *LivePage::buildCentre()
{
    m_centre = new QStackedWidget(this);
    m_empty = new QLabel(m_centre);
    m_empty->setObjectName(QStringLiteral("liveEmpty"));
    m_empty->setTextFormat(Qt::PlainText);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setWordWrap(true);
    m_centre->addWidget(m_empty);
    m_centre->addWidget(buildParts());
    return m_centre;
}

QWidget *LivePage::buildParts()
{
    auto *parts = new QSplitter(m_centre);
    parts->setObjectName(QStringLiteral("liveSplitter"));
    parts->setChildrenCollapsible(false);
    auto *left = new QSplitter(Qt::Vertical, parts);
    left->setObjectName(QStringLiteral("watchSplitter"));
    left->setChildrenCollapsible(false);
    m_watch = new WatchView(m_session, left);
    m_battery = new BatteryView(m_session, left);
    left->addWidget(m_watch);
    left->addWidget(m_battery);
    left->setSizes({3 * share, share});
    auto *right = new QSplitter(Qt::Vertical, parts);
    right->setObjectName(QStringLiteral("plotSplitter"));
    right->setChildrenCollapsible(false);
    m_plot = new PlotView(m_session, right);
    m_events = new EventView(right);
    right->addWidget(m_plot);
    right->addWidget(m_events);
    right->setSizes({3 * share, 2 * share});
    parts->addWidget(left);
    parts->addWidget(right);
    parts->setSizes({4 * share, 6 * share});
    return parts;
}

void LivePage::begin()
{
    LiveBus &live = m_session->live();
    m_isRecorded = false;
    m_events->model().setSource(&live.events().list(), [&live](qint64 time) { return live.timeOfDay(time); });
    refreshAll();
}

void LivePage::refresh()
{
    ++m_refreshes;
    m_events->model().update();
    m_watch->refresh();
    m_battery->refresh();
    m_plot->refresh();
    if (m_ticks++ % ticksOfLights == 0)
        showLights();
}

/*! Also the lights, whose turn it may not be. */
void LivePage::refreshAll()
{
    m_ticks = 0;
    m_centre->setCurrentIndex(m_session->isEmpty() && !m_isRecorded ? 0 : 1);
    m_numbers->setEnabled(!m_session->isEmpty());
    if (isVisible())
        refresh();
}

void LivePage::showLights()
{
    m_lights->setLights(m_session->isEmpty() ? QVector<HealthLight>()
                                             : m_session->judge(m_session->numbers()));
}

void LivePage::showNumbers()
{
    (new NumbersDialog(m_session, window()))->show();
}

void LivePage::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void LivePage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    refreshAll();
}

void LivePage::retranslate()
{
    m_numbers->setText(tr("All &numbers..."));
    m_numbers->setToolTip(tr("Loads, frames, heartbeats and answering times of the bus and each device"));
    m_empty->setText(
        tr("Connect a bus (Ctrl+K): what is heard on it is shown here. Listening sends nothing."));
    refreshAll();
}

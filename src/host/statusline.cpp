// SPDX-License-Identifier: MIT
#include "statusline.h"

#include <bus/buswords.h>
#include <host/core/hostservices.h>
#include <host/pages/elidedlabel.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QStyle>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace {

using namespace std::chrono_literals;

constexpr auto refreshInterval = 500ms;
constexpr int progressWidth = 120; // pixels
constexpr double millisecondsPerSecond = 1000.0;

QLabel *makeLabel(const QString &name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

StatusLine::StatusLine(HostServices *services, QWidget *parent)
    : QWidget(parent)
    , m_services(services)
    , m_bus(&services->bus())
    , m_state(new ElidedLabel("stateLabel", Qt::ElideRight, this))
    , m_progress(new QProgressBar(this))
    , m_timeLeft(makeLabel(QStringLiteral("timeLeftLabel"), this))
    , m_cancel(new QToolButton(this))
    , m_frames(makeLabel(QStringLiteral("framesLabel"), this))
    , m_nodes(makeLabel(QStringLiteral("nodesLabel"), this))
    , m_uploads(makeLabel(QStringLiteral("uploadsLabel"), this))
{
    build();
    connect(m_bus, &BusConnection::stateChanged, this, &StatusLine::handleState);
    connect(&services->reads(), &ReadObserver::detectionStarted, this, [this] { m_notice.clear(); });
    connect(&services->reads(), &ReadObserver::phaseChanged, this, &StatusLine::refresh);
    connect(m_cancel, &QToolButton::clicked, this, &StatusLine::cancelRequested);
    connect(&m_timer, &QTimer::timeout, this, &StatusLine::refresh);
    m_timer.start(refreshInterval);
    m_sinceMeasured.start();
    refresh();
}

void StatusLine::build()
{
    // A long sentence must not widen the window.
    m_state->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 0, 6, 0);
    layout->setSpacing(18);
    layout->addWidget(m_state, 1);
    layout->addWidget(m_progress);
    layout->addWidget(m_timeLeft);
    layout->addWidget(m_cancel);
    layout->addWidget(m_frames);
    layout->addWidget(m_nodes);
    layout->addWidget(m_uploads);
    m_progress->setObjectName(QStringLiteral("readProgress"));
    m_progress->setTextVisible(false);
    m_progress->setMaximumWidth(progressWidth);
    m_progress->setMaximumHeight(m_state->sizeHint().height());
    m_cancel->setObjectName(QStringLiteral("cancelButton"));
    m_cancel->setFocusPolicy(Qt::NoFocus);                        // comes and goes
    m_cancel->setMaximumHeight(m_state->sizeHint().height() + 2); // the bar keeps its height
}

void StatusLine::showNotice(const QString &sentence)
{
    m_notice = sentence;
    refresh();
}

void StatusLine::refresh()
{
    measureFrameRate();
    const bool isConnected = m_bus->state() == BusConnection::State::Connected;
    const QString text = isConnected ? newsText() : stateText();
    m_state->setText(text);
    m_state->setToolTip(text);
    showProgress();
    m_cancel->setText(tr("Cancel"));
    m_cancel->setToolTip(tr("End the read; what was read stays (Esc)"));
    m_cancel->setVisible(m_services->reads().isReading());
    m_cancel->setEnabled(!m_services->reads().isCancelled());
    m_frames->setText(tr("Frames: %1/s").arg(m_framesPerSecond));
    m_nodes->setText(tr("Nodes: %1").arg(m_bus->heartbeats().activeNodeCount()));

    const BusCounters counters = m_bus->counters();
    m_uploads->setText(uploadText());
    m_uploads->setToolTip(
        tr("Objects of this read, or of the last one. Since the bus was connected: requests repeated: %1, "
           "frames sent again: %2, overruns: %3")
            .arg(counters.uploadRepeats)
            .arg(counters.writeRetries)
            .arg(m_services->interfaceHealth().overruns()));
    showFigures();
}

void StatusLine::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    showFigures();
}

// The sentence is worth more than the figures: only those stand beside it that leave it whole.
void StatusLine::showFigures()
{
    const bool isConnected = m_bus->state() == BusConnection::State::Connected;
    const bool isReading = m_services->reads().isReading(); // its place needs the room
    const QMargins margins = layout()->contentsMargins();
    int room = width() - margins.left() - margins.right()
               - m_state->fontMetrics().horizontalAdvance(m_state->text());
    const auto place = [this, &room](QWidget *widget, bool isWanted) {
        const int needed = widget->sizeHint().width() + layout()->spacing();
        const bool isShown = isWanted && needed <= room;
        room -= isShown ? needed : 0;
        return isShown;
    };
    for (QWidget *widget : {static_cast<QWidget *>(m_progress), static_cast<QWidget *>(m_timeLeft),
                            static_cast<QWidget *>(m_cancel)}) {
        if (!widget->isHidden())
            room -= std::min(widget->sizeHint().width(), widget->maximumWidth()) + layout()->spacing();
    }
    m_nodes->setVisible(place(m_nodes, isConnected));
    m_frames->setVisible(place(m_frames, isConnected));
    m_uploads->setVisible(place(m_uploads, !isReading));
}

void StatusLine::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        refresh();
    QWidget::changeEvent(event);
}

QString StatusLine::stateText() const
{
    switch (m_bus->state()) {
    case BusConnection::State::Disconnected:
        return tr("Not connected.");
    case BusConnection::State::Connecting:
        return BusWords::connecting(m_bus->settings());
    case BusConnection::State::Connected:
        return BusWords::connected(m_bus->settings());
    case BusConnection::State::Lost:
        return tr("Connection lost: %1 Trying to connect again ...").arg(m_bus->errorString());
    }
    return QString();
}

// There is room for one sentence; that the bus is connected shows by itself.
QString StatusLine::newsText() const
{
    if (m_services->reads().isReading())
        return m_notice.isEmpty() ? readText() : readText() + QLatin1Char(' ') + m_notice;
    return m_notice.isEmpty() ? stateText() : m_notice;
}

QString StatusLine::readText() const
{
    const ReadObserver &reads = m_services->reads();
    if (reads.isCancelled())
        return tr("Ending the read ...");
    if (reads.phase() == ReadObserver::Phase::Detecting)
        return tr("Looking for nodes ...");
    return ReadWords::place(m_services->pace(), reads.summary().nodeId, reads.summary().key);
}

void StatusLine::showProgress()
{
    const ReadObserver &reads = m_services->reads();
    m_progress->setVisible(reads.isReading());
    const bool isDetecting = reads.phase() == ReadObserver::Phase::Detecting;
    m_progress->setRange(0, isDetecting ? 0 : 100); // without a range it only shows that something happens
    m_progress->setValue(m_services->pace().percent());
    m_timeLeft->setText(
        reads.phase() == ReadObserver::Phase::Reading ? ReadWords::timeLeft(m_services->pace()) : QString());
    m_timeLeft->setVisible(!m_timeLeft->text().isEmpty());
}

QString StatusLine::uploadText() const
{
    const ReadCounts counts = m_services->reads().summary().record.total();
    if (counts.objects() == 0)
        return QString();
    return tr("SDO: %1 read, %2 not there, %3 failed")
        .arg(QString::number(counts.values), QString::number(counts.missing), QString::number(counts.failed));
}

void StatusLine::handleState(BusConnection::State state)
{
    if (state == BusConnection::State::Connecting || state == BusConnection::State::Connected)
        m_notice.clear();
    m_lastFrames = m_bus->counters().framesReceived;
    m_framesPerSecond = 0;
    m_sinceMeasured.start();
    refresh();
}

void StatusLine::measureFrameRate()
{
    const qint64 elapsed = m_sinceMeasured.elapsed();
    if (elapsed < refreshInterval.count())
        return;
    const quint64 frames = m_bus->counters().framesReceived;
    m_framesPerSecond = static_cast<int>(std::lround(static_cast<double>(frames - m_lastFrames)
                                                     * millisecondsPerSecond / static_cast<double>(elapsed)));
    m_lastFrames = frames;
    m_sinceMeasured.start();
}

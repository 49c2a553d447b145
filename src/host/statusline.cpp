// SPDX-License-Identifier: MIT
#include "statusline.h"

#include <host/core/hostservices.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QToolButton>

#include <cmath>

namespace {

using namespace std::chrono_literals;

constexpr auto refreshInterval = 500ms;
constexpr double millisecondsPerSecond = 1000.0;
constexpr double bitsPerKilobit = 1000.0;

/*! A line of text that ends in "..." where the room ends. */
class ElidedLabel : public QLabel
{
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, width());
        style()->drawItemText(&painter, rect(), Qt::AlignVCenter | Qt::AlignLeft, palette(), isEnabled(),
                              shown, foregroundRole());
    }
};

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
    , m_state(new ElidedLabel(this))
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
    m_state->setObjectName(QStringLiteral("stateLabel"));
    m_state->setTextFormat(Qt::PlainText);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 0, 6, 0);
    layout->setSpacing(18);
    layout->addWidget(m_state, 1);
    layout->addWidget(m_cancel);
    layout->addWidget(m_frames);
    layout->addWidget(m_nodes);
    layout->addWidget(m_uploads);
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
    m_cancel->setText(tr("Cancel"));
    m_cancel->setToolTip(tr("End the read; what was read stays (Esc)"));
    m_cancel->setVisible(m_services->reads().isReading());
    m_cancel->setEnabled(!m_services->reads().isCancelled());
    m_frames->setVisible(isConnected);
    m_nodes->setVisible(isConnected);
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
}

void StatusLine::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        refresh();
    QWidget::changeEvent(event);
}

QString StatusLine::stateText() const
{
    const BusSettings &settings = m_bus->settings();
    const QString address = settings.address.toString();
    switch (m_bus->state()) {
    case BusConnection::State::Disconnected:
        return tr("Not connected.");
    case BusConnection::State::Connecting:
        return tr("Connecting to %1 ...").arg(address);
    case BusConnection::State::Connected:
        if (settings.bitRate && *settings.bitRate > 0)
            return tr("Connected to %1 at %2 kbit/s.").arg(address).arg(*settings.bitRate / bitsPerKilobit);
        return tr("Connected to %1.").arg(address);
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
    const ReadSummary &summary = reads.summary();
    return tr("Reading node %1, object %2 ...")
        .arg(QString::number(summary.nodeId), CanOpen::indexText(summary.key.index));
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

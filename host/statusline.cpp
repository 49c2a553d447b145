// SPDX-License-Identifier: MIT
#include "statusline.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>

#include <cmath>

namespace {

using namespace std::chrono_literals;

constexpr auto refreshInterval = 500ms;
constexpr double millisecondsPerSecond = 1000.0;
constexpr double bitsPerKilobit = 1000.0;

QLabel *makeLabel(const QString &name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

StatusLine::StatusLine(BusConnection *bus, QWidget *parent)
    : QWidget(parent)
    , m_bus(bus)
    , m_state(makeLabel(QStringLiteral("stateLabel"), this))
    , m_frames(makeLabel(QStringLiteral("framesLabel"), this))
    , m_nodes(makeLabel(QStringLiteral("nodesLabel"), this))
    , m_uploads(makeLabel(QStringLiteral("uploadsLabel"), this))
{
    // A long sentence must not widen the window.
    m_state->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_state->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 0, 6, 0);
    layout->setSpacing(18);
    layout->addWidget(m_state, 1);
    layout->addWidget(m_frames);
    layout->addWidget(m_nodes);
    layout->addWidget(m_uploads);

    connect(m_bus, &BusConnection::stateChanged, this, &StatusLine::handleState);
    connect(&m_timer, &QTimer::timeout, this, &StatusLine::refresh);
    m_timer.start(refreshInterval);
    m_sinceMeasured.start();
    refresh();
}

void StatusLine::showNotice(const QString &sentence)
{
    m_notice = sentence;
    refresh();
}

void StatusLine::refresh()
{
    measureFrameRate();
    const QString text = m_notice.isEmpty() ? stateText() : stateText() + QLatin1Char(' ') + m_notice;
    m_state->setText(text);
    m_state->setToolTip(text);

    const bool isConnected = m_bus->state() == BusConnection::State::Connected;
    m_frames->setVisible(isConnected);
    m_nodes->setVisible(isConnected);
    m_frames->setText(tr("%n frame(s)/s", nullptr, m_framesPerSecond));
    m_nodes->setText(tr("%n node(s) heard", nullptr, m_bus->heartbeats().activeNodeCount()));

    const BusCounters counters = m_bus->counters();
    m_uploads->setText(tr("SDO: %1 read, %2 refused, %3 without answer")
                           .arg(counters.uploadsDone)
                           .arg(counters.uploadsAborted)
                           .arg(counters.uploadsTimedOut));
    m_uploads->setToolTip(
        tr("Uploads since the bus was connected; %1 requests were repeated, %2 frames sent again")
            .arg(counters.uploadRepeats)
            .arg(counters.writeRetries));
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

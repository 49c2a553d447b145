// SPDX-License-Identifier: MIT
#include "replaysender.h"

#include <system/amounts.h>

#include <QCanBusFrame>

#include <algorithm>
#include <utility>

namespace {

constexpr qint64 longestWait = 60 * 1000; // ms; looking again costs nothing

// That may wait in the port; the trace waits then.
constexpr int mostWaiting = 64;
// Back ends tell that a frame is written when it is in a socket of theirs, and forget it when they are closed; ms.
constexpr int lingeringTime = 200;
// Frames of one turn of the event loop.
constexpr int mostAtOnce = 500;

} // namespace

ReplaySender::ReplaySender(std::unique_ptr<CanOpen::CanPort> port, const std::vector<TraceFrame> *frames,
                           QObject *parent)
    : QObject(parent)
    , m_port(std::move(port))
    , m_player(frames)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_lingering.setSingleShot(true);
    m_lingering.setInterval(lingeringTime);
    connect(&m_timer, &QTimer::timeout, this, &ReplaySender::sendDue);
    connect(&m_lingering, &QTimer::timeout, this, &ReplaySender::finished);
    connect(m_port.get(), &CanOpen::CanPort::written, this, [this] { settle(&m_sent); });
    connect(m_port.get(), &CanOpen::CanPort::dropped, this, [this] { settle(&m_dropped); });
    connect(m_port.get(), &CanOpen::CanPort::lost, this, &ReplaySender::handleLoss);
}

ReplaySender::~ReplaySender() = default;

bool ReplaySender::start(QString *errorMessage)
{
    if (!m_port->open(errorMessage))
        return false;
    m_isRunning = true;
    m_clock.start();
    m_player.start(now());
    m_timer.start(0);
    return true;
}

void ReplaySender::stop()
{
    m_isRunning = false;
    m_timer.stop();
    m_lingering.stop();
    m_port->close();
}

qint64 ReplaySender::now() const
{
    return m_clock.nsecsElapsed() / Nanoseconds::ofMicrosecond;
}

void ReplaySender::sendDue()
{
    const qint64 present = now();
    for (int count = 0; m_isRunning && m_waiting < mostWaiting && count < mostAtOnce; ++count) {
        const TraceFrame *frame = m_player.take(present);
        if (frame == nullptr)
            break;
        const CanOpen::Sending sending = m_port->send(frame->toCanBusFrame());
        m_waiting += sending == CanOpen::Sending::Waiting ? 1 : 0;
        m_sent += sending == CanOpen::Sending::Written ? 1 : 0;
        m_dropped += sending == CanOpen::Sending::Dropped ? 1 : 0;
    }
    if (!m_isRunning)
        return;
    const std::optional<qint64> due = m_player.nextDue();
    if (due && m_waiting < mostWaiting) {
        const qint64 rest = (*due - now() + Microseconds::ofMillisecond - 1) / Microseconds::ofMillisecond;
        m_timer.start(static_cast<int>(std::clamp<qint64>(rest, 0, longestWait)));
    } else if (!due && m_waiting == 0) {
        m_isRunning = false;
        m_lingering.start();
    }
}

/*! A frame that waited is through, or given up. */
void ReplaySender::settle(quint64 *count)
{
    ++*count;
    m_waiting = std::max(0, m_waiting - 1);
    // From the event loop: slots of the port must not end it.
    if (m_isRunning && !m_timer.isActive())
        m_timer.start(0);
}

void ReplaySender::handleLoss(const QString &reason)
{
    if (!m_isRunning)
        return;
    m_lossReason = reason;
    m_isRunning = false;
    m_timer.stop();
    emit finished();
}

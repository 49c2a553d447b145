// SPDX-License-Identifier: MIT
#include "livebus.h"

#include <bus/backends.h>
#include <canopen/edsfile.h>
#include <canopen/heartbeat.h>
#include <live/values/pdosource.h>
#include <system/amounts.h>
#include <trace/playback/playbackstate.h>

#include <QCanBusFrame>

#include <algorithm>
#include <chrono>

namespace {

using namespace std::chrono_literals;

constexpr quint32 longestHeartbeat = 0xFFFF; // ms

constexpr auto tickInterval = 100ms;

} // namespace

LiveBus::LiveBus(BusConnection *bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_interface([bus] { return InterfaceHealth::stateOf(bus->device()); })
{
    m_timer.setInterval(tickInterval);
    connect(&m_timer, &QTimer::timeout, this, &LiveBus::tick);
    connect(bus, &BusConnection::frameReceived, this, &LiveBus::handleReceived);
    connect(bus, &BusConnection::frameSent, this, &LiveBus::handleSent);
    connect(bus, &BusConnection::stateChanged, this, &LiveBus::handleState);
    connect(&m_interface, &InterfaceHealth::stateChanged, this, [this](InterfaceHealth::State state) {
        m_health.setController(state);
        m_events.setController(state, now());
    });
}

void LiveBus::start()
{
    m_steady.start();
    followTrace();
    m_start.setOffsetFromUtc(m_start.offsetFromUtc()); // so that it is written with it
    m_clock = FrameClock();
    m_events = EventRecorder();
    m_values = LiveValues();
    m_health.start(0);
    followInterface();
    m_isListening = true;
    m_interface.start();
    m_interface.poll();
    m_timer.start();
}

void LiveBus::followInterface()
{
    m_health.setBitRate(m_bus->bitRate());
    m_health.setErrorsTold(BackEnd::find(m_bus->settings().address.plugin).tellsErrors);
}

/*! Where the time begins: with that of a trace that is played, which may be any, or now. */
void LiveBus::followTrace()
{
    constexpr qint64 latest = Q_INT64_C(1) << 60;
    m_playedFrom = m_bus->busTime();
    if (m_playedFrom && (*m_playedFrom < 0 || *m_playedFrom > latest))
        m_playedFrom.reset();
    m_played = 0;
    const std::optional<PlaybackState> played = PlaybackState::of(m_bus->device());
    m_start = played && m_playedFrom ? played->timeOfDay() : QDateTime();
    if (!m_start.isValid())
        m_start = QDateTime::currentDateTime();
}

void LiveBus::stop()
{
    m_isListening = false;
    m_timer.stop();
    m_interface.stop();
}

void LiveBus::learn(const PdoSource &source)
{
    m_values.learn(source);
    const std::optional<quint32> period = source.lookup({CanOpen::producerHeartbeatTime, 0});
    if (!period || *period > longestHeartbeat)
        return;
    m_health.setConfiguredHeartbeat(source.nodeId, static_cast<int>(*period));
    m_events.setConfiguredHeartbeat(source.nodeId, static_cast<int>(*period));
}

void LiveBus::learn(quint8 nodeId, const CanOpen::EdsFile &sheet)
{
    learn(PdoSource::of(nodeId, sheet.dictionary));
    m_events.setEmergencyTexts(nodeId, sheet.emergencyTexts);
}

qint64 LiveBus::steadyNow() const
{
    const std::optional<qint64> played = m_playedFrom ? m_bus->busTime() : std::nullopt;
    if (played)
        return *played - *m_playedFrom;
    return m_steady.isValid() ? m_steady.nsecsElapsed() / Nanoseconds::ofMicrosecond : 0;
}

qint64 LiveBus::now() const
{
    return m_clock.timeAt(steadyNow());
}

QDateTime LiveBus::timeOfDay(qint64 time) const
{
    return m_start.addMSecs(time / Microseconds::ofMillisecond);
}

qint64 LiveBus::timeOf(const QDateTime &timeOfDay) const
{
    return m_start.msecsTo(timeOfDay) * Microseconds::ofMillisecond;
}

void LiveBus::handleReceived(const QCanBusFrame &frame)
{
    if (!m_isListening)
        return;
    m_interface.handleFrame(frame);
    handle(LiveFrame::of(frame, heardAt(frame)));
}

qint64 LiveBus::heardAt(const QCanBusFrame &frame)
{
    if (!m_playedFrom)
        return m_clock.timeOf(FrameClock::stampOf(frame), steadyNow());
    // Frames of a trace may come all at once.
    m_played = std::max(m_played, FrameClock::stampOf(frame) - *m_playedFrom);
    return m_played;
}

void LiveBus::handleSent(const QCanBusFrame &frame)
{
    if (m_isListening)
        handle(LiveFrame::of(frame, now(), FrameSource::Ourselves));
}

void LiveBus::handle(const LiveFrame &frame)
{
    m_health.handle(frame);
    m_events.handle(frame);
    m_values.handle(frame);
}

void LiveBus::handleState(BusConnection::State state)
{
    if (!m_isListening)
        return;
    if (state == BusConnection::State::Lost) {
        m_health.interrupt();
        m_interface.stop();
        m_events.loseInterface(m_bus->lossReason(), now());
    } else if (state == BusConnection::State::Connected) {
        followInterface();
        m_interface.start();
        m_events.findInterface(now());
    }
}

void LiveBus::tick()
{
    m_events.advance(now());
    emit ticked();
}

// SPDX-License-Identifier: MIT
#include "bundlelistening.h"

#include <system/amounts.h>

#include <QCanBusFrame>
#include <QDateTime>

#include <limits>
#include <utility>

BundleListening::BundleListening(BusConnection *bus)
    : m_bus(bus)
    , m_live(bus)
    , m_recorder({std::numeric_limits<qint64>::max() / 4, mostFrames})
{
    connect(bus, &BusConnection::frameReceived, this,
            [this](const QCanBusFrame &frame) { take(frame, TraceFrame::Flag(0)); });
    connect(bus, &BusConnection::frameSent, this,
            [this](const QCanBusFrame &frame) { take(frame, TraceFrame::Sent); });
}

void BundleListening::begin(const BusAddress &address)
{
    m_steady.start();
    m_time = RecordedTime(QDateTime::currentMSecsSinceEpoch() * Microseconds::ofMillisecond);
    // "can0", also of "tcp://localhost:35468/can0"
    m_recorder.setHead({{address.interfaceName.section(QLatin1Char('/'), -1)}, true});
    // Not before: a trace that is played tells its time when it is open.
    connect(m_bus, &BusConnection::stateChanged, this, [this](BusConnection::State state) {
        if (state == BusConnection::State::Connected && !std::exchange(m_hasBegun, true))
            m_live.start();
    });
}

void BundleListening::take(const QCanBusFrame &frame, TraceFrame::Flag flag)
{
    if (!TraceFrame::canHold(frame))
        return;
    const qint64 now = m_steady.nsecsElapsed() / Nanoseconds::ofMicrosecond;
    const qint64 time = m_time.timeOf(frame, now, m_bus->busTime());
    TraceFrame taken = TraceFrame::of(frame, time);
    taken.flags |= flag;
    m_recorder.add(taken);
}

std::vector<LiveEvent> BundleListening::events() const
{
    const auto timeOf = [this](qint64 time) {
        return m_live.timeOfDay(time).toMSecsSinceEpoch() * Microseconds::ofMillisecond;
    };
    std::vector<LiveEvent> events;
    for (LiveEvent event : m_live.events().list().events()) {
        event.time = timeOf(event.time);
        event.lastTime = timeOf(event.lastTime);
        events.push_back(event);
    }
    return events;
}

// SPDX-License-Identifier: MIT
#include "busrecorder.h"

#include <cli/core/terminal.h>
#include <system/amounts.h>

#include <QCanBusFrame>
#include <QDateTime>

#include <utility>

namespace {

constexpr int tickInterval = 250; // ms

/*! "can0", also of "tcp://localhost:35468/can0". */
QString channelName(const BusAddress &address)
{
    return address.interfaceName.section(QLatin1Char('/'), -1);
}

} // namespace

BusRecorder::BusRecorder(const TraceRecording::Settings &settings)
    : m_isToStandardOutput(settings.path == QLatin1String("-"))
    , m_recording(settings)
    , m_interface([this] { return InterfaceHealth::stateOf(m_bus.device()); })
{
    m_timer.setInterval(tickInterval);
    connect(&m_timer, &QTimer::timeout, this, &BusRecorder::tick);
    connect(&m_bus, &BusConnection::frameReceived, this, &BusRecorder::handle);
}

bool BusRecorder::begin(const BusSettings &bus, QString *errorMessage, bool *isBusTrouble)
{
    // The bus first: a file that is there is not written anew for nothing.
    *isBusTrouble = true;
    if (!m_bus.connectToBus(bus, errorMessage))
        return false;
    *isBusTrouble = false;
    m_steady.start();
    m_time = RecordedTime(QDateTime::currentMSecsSinceEpoch() * Microseconds::ofMillisecond);
    if (!m_recording.begin({{channelName(bus.address)}, true}, now())) {
        *errorMessage = m_recording.errorString();
        return false;
    }
    m_interface.start();
    m_timer.start();
    return true;
}

bool BusRecorder::finish()
{
    m_timer.stop();
    m_interface.stop();
    m_bus.disconnectFromBus();
    return m_recording.finish() && m_recording.errorString().isEmpty();
}

bool BusRecorder::hasReader() const
{
    return !m_isToStandardOutput || Terminal::hasReader(Terminal::Stream::Output);
}

qint64 BusRecorder::now() const
{
    return m_steady.nsecsElapsed() / Nanoseconds::ofMicrosecond;
}

void BusRecorder::handle(const QCanBusFrame &frame)
{
    m_interface.handleFrame(frame);
    if (!m_recording.isRecording())
        return;
    if (!TraceFrame::canHold(frame)) {
        ++m_unrecorded;
        return;
    }
    const qint64 present = now();
    if (!m_recording.add(TraceFrame::of(frame, m_time.timeOf(frame, present)), present))
        emit ended();
}

void BusRecorder::tick()
{
    if (m_recording.keepsTooMany() && !std::exchange(m_hasToldOfFiles, true))
        emit keepsTooMany(m_recording.files().first());
    // A silent bus gives nothing to write by which it would be noticed.
    if (!m_recording.advance(now()) || !hasReader())
        emit ended();
}

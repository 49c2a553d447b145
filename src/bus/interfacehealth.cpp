// SPDX-License-Identifier: MIT
#include "interfacehealth.h"

#include "errorframe.h"

#include <QCanBusDevice>
#include <QCanBusFrame>

#include <chrono>
#include <utility>

namespace {

using namespace std::chrono_literals;

constexpr auto pollInterval = 500ms;

constexpr quint8 warningBits = 0x0C;
constexpr quint8 passiveBits = 0x30;
constexpr quint8 activeBit = 0x40;

} // namespace

InterfaceHealth::InterfaceHealth(StateGetter getter, QObject *parent)
    : QObject(parent)
    , m_getter(std::move(getter))
{
    m_timer.setInterval(pollInterval);
    connect(&m_timer, &QTimer::timeout, this, &InterfaceHealth::poll);
}

InterfaceHealth::State InterfaceHealth::stateOf(const QCanBusDevice *device)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    if (device == nullptr || !device->hasBusStatus())
        return State::Unknown;
    switch (device->busStatus()) {
    case QCanBusDevice::CanBusStatus::Good:
        return State::Good;
    case QCanBusDevice::CanBusStatus::Warning:
        return State::Warning;
    case QCanBusDevice::CanBusStatus::Error:
        return State::Passive;
    case QCanBusDevice::CanBusStatus::BusOff:
        return State::BusOff;
    case QCanBusDevice::CanBusStatus::Unknown:
        break;
    }
#else
    Q_UNUSED(device)
#endif
    return State::Unknown;
}

void InterfaceHealth::start()
{
    m_state = State::Unknown;
    m_overruns = 0;
    m_timer.start();
}

void InterfaceHealth::stop()
{
    m_timer.stop();
    m_state = State::Unknown;
}

void InterfaceHealth::handleFrame(const QCanBusFrame &frame)
{
    if (frame.frameType() == QCanBusFrame::ErrorFrame)
        handleErrorFrame(frame);
    else if (m_state == State::BusOff) // receives nothing in that state, so it is over
        setState(State::Good);
}

void InterfaceHealth::poll()
{
    const State state = m_getter();
    if (state != State::Unknown)
        setState(state);
}

void InterfaceHealth::handleErrorFrame(const QCanBusFrame &frame)
{
    const QCanBusFrame::FrameErrors errors = frame.error();
    const QByteArray payload = frame.payload();
    const quint8 bits
        = errors.testFlag(QCanBusFrame::ControllerError) && payload.size() > ErrorFrame::controllerByte
              ? static_cast<quint8>(payload.at(ErrorFrame::controllerByte))
              : quint8{0};
    if ((bits & ErrorFrame::receiveOverflow) != 0) {
        ++m_overruns;
        emit overrunReported();
    }

    if (errors.testFlag(QCanBusFrame::BusOffError))
        setState(State::BusOff);
    else if ((bits & passiveBits) != 0)
        setState(State::Passive);
    else if ((bits & warningBits) != 0)
        setState(State::Warning);
    else if ((bits & activeBit) != 0 || errors.testFlag(QCanBusFrame::ControllerRestartError))
        setState(State::Good);
}

void InterfaceHealth::setState(State state)
{
    if (state == m_state)
        return;
    m_state = state;
    emit stateChanged(state);
}

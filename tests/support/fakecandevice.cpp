// SPDX-License-Identifier: MIT
#include "fakecandevice.h"

#include <algorithm>

FakeCanDevice::FakeCanDevice(QObject *parent)
    : QCanBusDevice(parent)
{
    m_drainTimer.setInterval(0);
    connect(&m_drainTimer, &QTimer::timeout, this, &FakeCanDevice::drain);
}

bool FakeCanDevice::writeFrame(const QCanBusFrame &frame)
{
    ++m_writeCalls;
    if (state() != ConnectedState)
        return false;
    const bool failsNow = m_failEvery > 0 && m_writeCalls % m_failEvery == 0;
    if (m_unplugged || failsNow || isQueueFull()) {
        setError(QStringLiteral("No buffer space available"), WriteError);
        return false;
    }

    switch (m_isSending) {
    case Sending::AtOnce:
        putOnBus(frame);
        emit framesWritten(1);
        break;
    case Sending::Unreported:
        putOnBus(frame);
        break;
    case Sending::DriverQueue:
        m_driverQueue.append(frame);
        m_drainTimer.start();
        emit framesWritten(1);
        break;
    case Sending::DeviceQueue:
        enqueueOutgoingFrame(frame);
        m_drainTimer.start();
        break;
    case Sending::StuckQueue:
        enqueueOutgoingFrame(frame);
        break;
    }
    m_mostFramesToWrite = std::max(m_mostFramesToWrite, static_cast<int>(framesToWrite()));
    return true;
}

QString FakeCanDevice::interpretErrorFrame(const QCanBusFrame &errorFrame)
{
    Q_UNUSED(errorFrame)
    return QStringLiteral("error frame");
}

bool FakeCanDevice::open()
{
    switch (m_connecting) {
    case Connecting::AtOnce:
        setState(ConnectedState);
        return true;
    case Connecting::InBackground:
        QTimer::singleShot(1, this, [this] { setState(ConnectedState); });
        return true;
    case Connecting::InBackgroundInVain:
        QTimer::singleShot(1, this, [this] {
            setError(QStringLiteral("nobody there"), ConnectionError);
            setState(UnconnectedState);
        });
        return true;
    case Connecting::Never:
        return true;
    case Connecting::Refused:
        setError(QStringLiteral("no such interface"), ConnectionError);
        return false;
    }
    return false;
}

void FakeCanDevice::close()
{
    m_drainTimer.stop();
    setState(UnconnectedState);
}

void FakeCanDevice::putOnBus(const QCanBusFrame &frame)
{
    m_written.append(frame);
    emit sent(frame);
}

bool FakeCanDevice::isQueueFull() const
{
    return m_queueLimit > 0 && framesToWrite() + m_driverQueue.size() >= m_queueLimit;
}

// One frame in each turn of the event loop.
void FakeCanDevice::drain()
{
    if (!m_driverQueue.isEmpty()) {
        putOnBus(m_driverQueue.takeFirst());
    } else if (hasOutgoingFrames()) {
        const QCanBusFrame frame = dequeueOutgoingFrame();
        ++m_drained;
        if (m_loseEvery > 0 && m_drained % m_loseEvery == 0) {
            setError(QStringLiteral("transmission failed"), WriteError);
        } else {
            putOnBus(frame);
            emit framesWritten(1);
        }
    }
    if (m_driverQueue.isEmpty() && !hasOutgoingFrames())
        m_drainTimer.stop();
}

// SPDX-License-Identifier: MIT
#include "receivequeue.h"

#include "errorframe.h"

namespace {

constexpr int interval = 500; // ms

} // namespace

ReceiveQueue::ReceiveQueue(QObject *parent)
    : QObject(parent)
{
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &ReceiveQueue::check);
}

void ReceiveQueue::start(const Counter &counter)
{
    m_counter = counter;
    const std::optional<quint32> dropped = m_counter();
    m_dropped = dropped.value_or(0);
    if (dropped)
        m_timer.start();
    else
        m_timer.stop();
}

void ReceiveQueue::stop()
{
    m_timer.stop();
}

void ReceiveQueue::check()
{
    const std::optional<quint32> dropped = m_counter();
    if (!dropped || *dropped == m_dropped)
        return;
    m_dropped = *dropped;
    emit overflowed();
}

QCanBusFrame ReceiveQueue::overflowFrame()
{
    QByteArray payload(ErrorFrame::size, '\0');
    payload[ErrorFrame::controllerByte] = static_cast<char>(ErrorFrame::receiveOverflow);
    QCanBusFrame frame(QCanBusFrame::ErrorFrame);
    frame.setError(QCanBusFrame::ControllerError);
    frame.setPayload(payload);
    return frame;
}

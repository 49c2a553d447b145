// SPDX-License-Identifier: MIT
#include "canport.h"

#include <system/systemerrortext.h>

#include <QEventLoop>
#include <QPointer>
#include <QVariant>

#include <algorithm>
#include <utility>

namespace CanOpen {

namespace {

constexpr int usualConnectTime = 5000; // ms
constexpr int firstRetryDelay = 1;     // ms
constexpr int longestRetryDelay = 20;  // ms
constexpr int stallInterval = 100;     // ms

} // namespace

void clearDefaultBitRate(QCanBusDevice &device)
{
    device.setConfigurationParameter(QCanBusDevice::BitRateKey, QVariant());
}

// Marks that the device is on the stack, so that it must neither be disconnected nor deleted before it
// returns.
class CanPort::DeviceSignal
{
public:
    explicit DeviceSignal(CanPort *port)
        : m_port(port)
    {
        ++port->m_deviceSignalDepth;
    }
    ~DeviceSignal()
    {
        if (m_port)
            --m_port->m_deviceSignalDepth;
    }
    Q_DISABLE_COPY(DeviceSignal)

private:
    const QPointer<CanPort> m_port;
};

CanPort::CanPort(std::unique_ptr<QCanBusDevice> device, QObject *parent)
    : QObject(parent)
    , m_device(std::move(device))
{
    m_device->setParent(nullptr);
    m_clock.start();
    m_retryTimer.setSingleShot(true);
    m_retryTimer.setTimerType(Qt::PreciseTimer);
    m_stallTimer.setSingleShot(true);
    m_stallTimer.setInterval(stallInterval);
    m_deliveryTimer.setSingleShot(true);
    m_deliveryTimer.setInterval(0);

    connect(&m_retryTimer, &QTimer::timeout, this, &CanPort::writeWaiting);
    connect(&m_stallTimer, &QTimer::timeout, this, &CanPort::handleStall);
    connect(&m_deliveryTimer, &QTimer::timeout, this, &CanPort::deliverFrames);
    connect(m_device.get(), &QCanBusDevice::stateChanged, this, &CanPort::handleState);
    connect(m_device.get(), &QCanBusDevice::errorOccurred, this, &CanPort::handleError);
    connect(m_device.get(), &QCanBusDevice::framesWritten, this, &CanPort::handleFramesWritten);
    connect(m_device.get(), &QCanBusDevice::framesReceived, this, &CanPort::handleFramesReceived);
}

CanPort::~CanPort()
{
    close();
    disconnect(m_device.get(), nullptr, this, nullptr);
    if (m_deviceSignalDepth > 0)
        m_device.release()->deleteLater();
}

bool CanPort::open(QString *errorMessage)
{
    if (m_state == State::Open)
        return true;
    if (!connectDevice(errorMessage))
        return false;
    m_state = State::Open;
    if (m_device->framesAvailable() > 0)
        m_deliveryTimer.start();
    return true;
}

void CanPort::close()
{
    if (m_state == State::Closed)
        return;
    stop(State::Closed);
    disconnectDevice();
}

Sending CanPort::send(const QCanBusFrame &frame)
{
    if (m_state != State::Open || !frame.isValid())
        return Sending::Dropped;
    const bool tryAtOnce = m_waiting.empty() && canWrite();
    if (tryAtOnce && write(frame, false)) {
        if (m_inDevice.empty())
            return m_state == State::Open ? Sending::Written : Sending::Dropped;
        m_inDevice.back().isAwaited = true;
        return Sending::Waiting;
    }
    if (m_waiting.size() >= maximumQueueLength)
        dropOldest();
    m_waiting.push_back({frame, m_clock.elapsed()});
    if (tryAtOnce)
        handleFailedWrite();
    if (m_state == State::Open && !m_stallTimer.isActive())
        m_stallTimer.start();
    return m_state == State::Open ? Sending::Waiting : Sending::Dropped;
}

void CanPort::dropOldest()
{
    const QCanBusFrame frame = m_waiting.front().frame;
    m_waiting.pop_front();
    emit dropped(frame);
}

bool CanPort::connectDevice(QString *errorMessage)
{
    if (m_device->state() == QCanBusDevice::UnconnectedState && !m_device->connectDevice()) {
        *errorMessage = systemErrorText(m_device->errorString());
        return false;
    }
    if (m_device->state() == QCanBusDevice::ConnectingState) {
        const QPointer<CanPort> self(this);
        waitUntilConnected();
        if (!self)
            return false;
    }
    if (m_device->state() == QCanBusDevice::ConnectedState)
        return true;

    *errorMessage
        = m_device->error() != QCanBusDevice::NoError
              ? systemErrorText(m_device->errorString())
              : tr("The CAN interface did not connect within %1 seconds.").arg(connectTime() / 1000);
    disconnectDevice();
    return false;
}

/*! How long may be waited, in ms: what the device says, if it does. */
int CanPort::connectTime() const
{
    const QVariant told = m_device->property("connectTime");
    return told.isValid() ? told.toInt() : usualConnectTime;
}

void CanPort::waitUntilConnected()
{
    QEventLoop loop;
    connect(m_device.get(), &QCanBusDevice::stateChanged, &loop, &QEventLoop::quit);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    QTimer::singleShot(connectTime(), &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

void CanPort::disconnectDevice()
{
    const QCanBusDevice::CanBusDeviceState state = m_device->state();
    if (state == QCanBusDevice::UnconnectedState || state == QCanBusDevice::ClosingState)
        return;
    if (m_deviceSignalDepth == 0)
        m_device->disconnectDevice();
    else
        QMetaObject::invokeMethod(m_device.get(), &QCanBusDevice::disconnectDevice, Qt::QueuedConnection);
}

void CanPort::handleState()
{
    if (m_state == State::Open && m_device->state() != QCanBusDevice::ConnectedState)
        lose(tr("The CAN interface was disconnected."));
}

void CanPort::handleError(QCanBusDevice::CanBusError error)
{
    if (m_state != State::Open)
        return;
    if (error == QCanBusDevice::ConnectionError || error == QCanBusDevice::ReadError) {
        lose(tr("The CAN interface failed: %1.").arg(systemErrorText(m_device->errorString())));
        return;
    }
    // Within writeFrame() its result tells the same.
    if (error != QCanBusDevice::WriteError || m_isWriting)
        return;
    // The device may have kept the frame in its queue for another try; else it has lost the oldest one.
    const bool frameIsLost = m_device->framesToWrite() < static_cast<qint64>(m_inDevice.size());
    if (!frameIsLost)
        return;
    m_waiting.push_front({m_inDevice.front().frame, m_clock.elapsed()});
    m_inDevice.pop_front();
    handleFailedWrite();
}

void CanPort::handleFramesWritten()
{
    // write() looks itself.
    if (m_state != State::Open || m_isWriting)
        return;
    const DeviceSignal inSignal(this);
    settleWritten();
    writeWaiting();
}

void CanPort::handleFramesReceived()
{
    if (m_deliveryTimer.isActive())
        return;
    const DeviceSignal inSignal(this);
    deliverFrames();
}

void CanPort::deliverFrames()
{
    const QPointer<CanPort> self(this);
    QCanBusFrame frame;
    for (int count = 0; count < maximumFramesPerTurn; ++count) {
        if (m_state != State::Open || !readNext(&frame))
            return;
        ++m_framesReceived;
        if (frame.frameType() == QCanBusFrame::ErrorFrame || frame.frameType() == QCanBusFrame::InvalidFrame)
            ++m_errorFrames;
        emit frameReceived(frame);
        if (!self)
            return;
    }
    m_deliveryTimer.start();
}

bool CanPort::readNext(QCanBusFrame *frame)
{
    if (m_inboxPosition >= m_inbox.size()) {
        m_inbox.clear();
        m_inboxPosition = 0;
        if (m_device->state() != QCanBusDevice::ConnectedState)
            return false;
        const qint64 available = m_device->framesAvailable();
        if (available == 0)
            return false;
        // Taking frames one by one from a long queue moves all the others each time.
        if (available == 1) {
            *frame = m_device->readFrame();
            return true;
        }
        m_inbox = m_device->readAllFrames();
        if (m_inbox.isEmpty())
            return false;
    }
    *frame = m_inbox.at(m_inboxPosition++);
    return true;
}

bool CanPort::canWrite() const
{
    return !m_isWriting && !m_retryTimer.isActive() && m_inDevice.size() < maximumFramesInDevice;
}

// False when the device refused the frame.
bool CanPort::write(const QCanBusFrame &frame, bool isAwaited)
{
    m_isWriting = true;
    const bool accepted = m_device->writeFrame(frame);
    m_isWriting = false;
    if (m_state != State::Open)
        return true; // nothing is sent any more
    if (accepted) {
        m_inDevice.push_back({frame, isAwaited});
        settleWritten();
    }
    return accepted;
}

void CanPort::writeWaiting()
{
    while (m_state == State::Open && !m_waiting.empty() && canWrite()) {
        WaitingFrame next = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (!write(next.frame, true)) {
            m_waiting.push_front(std::move(next));
            handleFailedWrite();
        }
    }
    if (m_waiting.empty())
        m_stallTimer.stop();
}

// Frames that are no longer in the device's queue have been written. Some back ends write at once and have no
// queue, and not every one reports with framesWritten().
void CanPort::settleWritten()
{
    const auto inDevice = static_cast<std::size_t>(std::max<qint64>(m_device->framesToWrite(), 0));
    if (m_inDevice.size() <= inDevice)
        return;
    m_framesSent += m_inDevice.size() - inDevice;
    m_failingSince = -1;
    m_retryDelay = 0;
    while (m_inDevice.size() > inDevice) {
        const FrameInDevice first = m_inDevice.front();
        m_inDevice.pop_front();
        if (first.isAwaited)
            emit written(first.frame);
    }
}

void CanPort::handleFailedWrite()
{
    const qint64 now = m_clock.elapsed();
    if (m_failingSince < 0)
        m_failingSince = now;
    const qint64 failingFor = now - m_failingSince;
    if (failingFor >= writeLimit) {
        lose(tr("The CAN interface does not send any more: %1.")
                 .arg(systemErrorText(m_device->errorString())));
        return;
    }
    // The device may refuse only this one frame.
    if (failingFor >= frameTimeLimit && m_waiting.size() > 1)
        dropOldest();

    ++m_writeRetries;
    m_retryDelay = std::clamp(2 * m_retryDelay, firstRetryDelay, longestRetryDelay);
    m_retryTimer.start(m_retryDelay);
}

// Frames wait, and nothing has moved them for a while.
void CanPort::handleStall()
{
    if (m_state != State::Open)
        return;
    settleWritten();
    if (m_inDevice.size() >= maximumFramesInDevice) {
        const qint64 oldest = m_clock.elapsed() - frameTimeLimit;
        while (!m_waiting.empty() && m_waiting.front().since < oldest)
            dropOldest();
    }
    writeWaiting();
    if (m_state == State::Open && !m_waiting.empty())
        m_stallTimer.start();
}

void CanPort::lose(const QString &reason)
{
    stop(State::Lost);
    const auto report = [this, reason] {
        if (m_state == State::Lost)
            emit lost(reason);
    };
    QMetaObject::invokeMethod(this, report, Qt::QueuedConnection);
}

void CanPort::stop(State state)
{
    m_state = state;
    m_waiting.clear();
    m_inDevice.clear();
    m_inbox.clear();
    m_inboxPosition = 0;
    m_retryTimer.stop();
    m_stallTimer.stop();
    m_deliveryTimer.stop();
}

} // namespace CanOpen

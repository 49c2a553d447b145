// SPDX-License-Identifier: MIT
#include "simulateddevice.h"

#include "simulatedsegment.h"
#include "vehiclefile.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace Simulator {

SimulatedCanDevice::SimulatedCanDevice(const QString &interfaceName, QObject *parent)
    : QCanBusDevice(parent)
    , m_interfaceName(interfaceName)
{
}

SimulatedCanDevice::SimulatedCanDevice(std::shared_ptr<SimulatedBus> bus, QObject *parent)
    : QCanBusDevice(parent)
    , m_givenBus(std::move(bus))
{
}

SimulatedCanDevice::~SimulatedCanDevice()
{
    leaveBus();
}

void SimulatedCanDevice::setConfigurationParameter(int key, const QVariant &value)
{
    QCanBusDevice::setConfigurationParameter(key, value);
    switch (key) {
    case UnplugKey:
        m_isUnplugged = value.toBool();
        break;
    case DropKey:
        if (value.toBool())
            drop();
        break;
    case FaultKey:
        orderFault(value.toByteArray());
        break;
    case FailEveryKey:
        m_failEvery = value.toInt();
        break;
    case SendQueueKey:
        m_queueLength = value.toInt();
        break;
    default:
        break;
    }
}

bool SimulatedCanDevice::open()
{
    if (m_givenBus) {
        if (m_givenBus->isLost()) {
            setError(tr("The simulated bus is down"), ConnectionError);
            return false;
        }
        m_bus = m_givenBus;
    } else if (!joinSegment()) {
        return false;
    }
    m_received.clear();
    m_isUnplugged = false;
    QCanBusDevice::setConfigurationParameter(BitRateKey, m_bus->bitRate());
    m_bus->attach(this);
    setState(ConnectedState);
    return true;
}

bool SimulatedCanDevice::joinSegment()
{
    constexpr int ownRate = -1;
    const QVariant configured = configurationParameter(BitRateKey);
    bool isNumber = true;
    const int bitRate = configured.isValid() ? configured.toInt(&isNumber) : ownRate;
    if (!isNumber || (configured.isValid() && bitRate != 0 && !isKnownBitRate(bitRate))) {
        setError(tr("%1 bit/s is no bit rate of CAN; possible are 10000, 20000, 50000, 100000, 125000, "
                    "250000, 500000, "
                    "800000 and 1000000, or 0 for as fast as possible")
                     .arg(configured.toString()),
                 ConfigurationError);
        return false;
    }
    QString problem;
    m_segment = SimulatedSegment::join(m_interfaceName, bitRate, &problem);
    if (!m_segment) {
        setError(problem, ConnectionError);
        return false;
    }
    m_bus = m_segment->bus();
    return true;
}

void SimulatedCanDevice::leaveBus()
{
    if (m_bus)
        m_bus->detach(this);
    m_received.clear();
    while (hasOutgoingFrames())
        dequeueOutgoingFrame();
    m_segment.reset();
    m_bus.reset();
}

void SimulatedCanDevice::close()
{
    leaveBus();
    setState(UnconnectedState);
}

bool SimulatedCanDevice::writeFrame(const QCanBusFrame &frame)
{
    if (state() != ConnectedState)
        return false;
    if (!frame.isValid() || frame.hasFlexibleDataRateFormat()
        || (frame.frameType() != QCanBusFrame::DataFrame
            && frame.frameType() != QCanBusFrame::RemoteRequestFrame)) {
        setError(tr("Cannot write this kind of frame"), WriteError);
        return false;
    }
    ++m_writes;
    const bool isOrderedToFail = m_failEvery > 0 && m_writes % static_cast<quint64>(m_failEvery) == 0;
    if (m_isUnplugged) {
        setError(tr("No such device or address"), WriteError);
        return false;
    }
    if (isOrderedToFail || !m_bus->send(this, frame, 0, m_queueLength)) {
        setError(tr("No buffer space available"), WriteError);
        return false;
    }
    if (m_bus->bitRate() > 0)
        enqueueOutgoingFrame(frame); // until it is through
    else
        emit framesWritten(1);
    return true;
}

void SimulatedCanDevice::sent()
{
    dequeueOutgoingFrame();
    emit framesWritten(1);
}

QString SimulatedCanDevice::interpretErrorFrame(const QCanBusFrame &errorFrame)
{
    Q_UNUSED(errorFrame)
    return QString(); // the simulated bus has none
}

void SimulatedCanDevice::receive(const QCanBusFrame &frame)
{
    if (!m_isUnplugged)
        m_received.append(frame);
}

void SimulatedCanDevice::batchReceived()
{
    if (m_received.isEmpty())
        return;
    QVector<QCanBusFrame> frames;
    frames.swap(m_received);
    enqueueReceivedFrames(frames);
}

void SimulatedCanDevice::busLost(BusLoss loss)
{
    m_isUnplugged = true;
    while (hasOutgoingFrames()) {
        dequeueOutgoingFrame();
        setError(tr("No such device or address"), WriteError);
    }
    if (loss == BusLoss::Disconnected)
        drop();
}

void SimulatedCanDevice::drop()
{
    if (state() != ConnectedState)
        return;
    leaveBus();
    setError(tr("The simulated bus is gone"), ConnectionError);
    setState(UnconnectedState);
}

void SimulatedCanDevice::orderFault(const QByteArray &json)
{
    if (!m_segment)
        return;
    Vehicle &vehicle = m_segment->vehicle();
    if (json.trimmed().isEmpty()) {
        vehicle.clearFaults();
        return;
    }
    QJsonObject object = QJsonDocument::fromJson(json).object();
    const int nodeId = object.take(QLatin1String("node")).toInt();
    QString problem;
    const std::optional<Fault> fault = parseFault(object, &problem);
    if (!fault) {
        setError(problem, ConfigurationError);
    } else if (const auto *loss = std::get_if<Faults::BusLoss>(&*fault)) {
        m_segment->orderLoss(*loss);
    } else if (nodeId < 0 || nodeId > 127 || !vehicle.addFault(static_cast<quint8>(nodeId), *fault)) {
        setError(tr("There is no node %1 for the fault \"%2\"").arg(nodeId).arg(faultName(*fault)),
                 ConfigurationError);
    }
}

QList<QCanBusDeviceInfo> SimulatedCanDevice::interfaces()
{
    constexpr int onlyChannel = 0;
    QList<QCanBusDeviceInfo> infos;
    const QVector<ShippedVehicle> vehicles = shippedVehicles();
    for (const ShippedVehicle &vehicle : vehicles)
        infos.append(
            createDeviceInfo(vehicle.name, QString(), vehicle.description, onlyChannel, true, false));
    return infos;
}

} // namespace Simulator
